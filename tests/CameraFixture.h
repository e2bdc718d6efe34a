// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "AppUtil.h"
#include "ViewFixture.h"

#include <vtkMath.h>

#include <limits>

/// What the tests of a view's camera share.
namespace morrow_test {

/// The host's interrupt flag while it lives: counts how often it is read and is raised after so many reads.
class InterruptAfter : public AppUtil
{
public:
  explicit InterruptAfter(int reads = std::numeric_limits<int>::max())
      : mLimit(reads), mBefore(AppUtil::set_instance(this))
  {}
  ~InterruptAfter() override { AppUtil::set_instance(mBefore); }
  InterruptAfter(const InterruptAfter&) = delete;
  InterruptAfter& operator=(const InterruptAfter&) = delete;

  std::function<void()> on_read;

  [[nodiscard]] bool interrupt() const override
  {
    ++mReads;
    if (on_read) {
      const std::function<void()> running = on_read; // it may replace itself
      running();
    }
    return mReads > mLimit;
  }

  [[nodiscard]] int reads() const { return mReads; }

private:
  int mLimit;
  AppUtil* mBefore;
  mutable int mReads = 0;
};

/// Where a camera stands.
struct CameraPlace
{
  BrantVector at;
  BrantVector from;
  BrantVector up;
  double scale = 0.0;

  CameraPlace() = default;
  explicit CameraPlace(vtkCamera& camera)
      : at(camera.GetFocalPoint()), from(camera.GetPosition()), up(camera.GetViewUp()),
        scale(camera.GetParallelScale())
  {}
  explicit CameraPlace(const GView& view) : CameraPlace(*view.get_renderer()->GetActiveCamera()) {}
};

inline void expect_near(const BrantVector& a, const BrantVector& b, double tolerance = 1e-12)
{
  EXPECT_LE(a.distance_between(b), tolerance) << "(" << a.x() << ", " << a.y() << ", " << a.z() << ") and ("
                                              << b.x() << ", " << b.y() << ", " << b.z() << ")";
}

inline void expect_near(const CameraPlace& a, const CameraPlace& b, double tolerance = 1e-12)
{
  expect_near(a.at, b.at, tolerance);
  expect_near(a.from, b.from, tolerance);
  expect_near(a.up, b.up, tolerance);
  EXPECT_NEAR(a.scale, b.scale, tolerance);
}

inline void expect_near(const std::vector<CameraPlace>& a, const std::vector<CameraPlace>& b,
                        double tolerance = 1e-12)
{
  ASSERT_EQ(a.size(), b.size());
  for (std::size_t i = 0; i < a.size(); ++i) {
    SCOPED_TRACE(testing::Message() << "frame " << i);
    expect_near(a[i], b[i], tolerance);
  }
}

/// Notes where a view's camera stands in each frame that its window completes.
class FrameLog
{
public:
  explicit FrameLog(GView& view)
      : mView(view), mHook(view.get_render_window(), vtkCommand::EndEvent, [this] { this->note(); })
  {}
  FrameLog(const FrameLog&) = delete;
  FrameLog& operator=(const FrameLog&) = delete;
  ~FrameLog() = default;

  [[nodiscard]] const std::vector<CameraPlace>& places() const { return mPlaces; }
  [[nodiscard]] std::size_t size() const { return mPlaces.size(); }

  /// Whether the clipping range of each frame was the one that fits what is visible.
  [[nodiscard]] bool is_clipped() const { return mIsClipped; }

private:
  void note()
  {
    vtkCamera* camera = mView.get_renderer()->GetActiveCamera();
    mPlaces.emplace_back(*camera);
    double before[2];
    camera->GetClippingRange(before);
    mView.get_renderer()->ResetCameraClippingRange();
    const double* fitting = camera->GetClippingRange();
    mIsClipped = mIsClipped && before[0] == fitting[0] && before[1] == fitting[1];
    camera->SetClippingRange(before);
  }

  GView& mView;
  std::vector<CameraPlace> mPlaces;
  bool mIsClipped = true;
  EventHook mHook;
};

/// A view of a small window onto a red square, with a skew camera in perspective.
struct CameraStage : ViewStage
{
  explicit CameraStage(int width = 40, int height = 40) : ViewStage(width, height)
  {
    show(*view, flat_actor(quad(-0.5, -0.5, 0.5, 0.5), kRed));
    camera()->ParallelProjectionOff();
    camera()->SetPosition(3.0, 2.0, 8.0);
    camera()->SetFocalPoint(0.25, -0.5, 0.125);
    camera()->SetViewUp(0.1, 1.0, 0.2);
  }

  [[nodiscard]] vtkCamera* camera() const { return view->get_renderer()->GetActiveCamera(); }

  /// A camera of the test's own that stands where the view's does.
  [[nodiscard]] vtkSmartPointer<vtkCamera> twin() const
  {
    auto twin = vtkSmartPointer<vtkCamera>::New();
    twin->DeepCopy(this->camera());
    return twin;
  }
};

/// Whether the view's report says that auto-centre is off.
inline bool is_auto_center_off(const GView& view)
{
  const PrintCapture printed;
  view.list_view();
  return printed.info().find("AutoCenter OFF") != std::string::npos;
}

} // namespace morrow_test
