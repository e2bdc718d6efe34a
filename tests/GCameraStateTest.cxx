// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "GCameraState.h"
#include "ViewFixture.h"

#include <array>
#include <type_traits>

namespace {

using namespace morrow_test;

/// Needs no display: nothing renders.
using GCameraStateTest = ViewTest;

using Point = std::array<double, 3>;

/// What a state holds, as a camera has it.
struct Camera
{
  Point focal_point{};
  Point position{};
  Point view_up{};
  std::array<double, 2> clipping_range{};
  double parallel_scale = 0.0;
};

bool operator==(const Camera& a, const Camera& b)
{
  return a.focal_point == b.focal_point && a.position == b.position && a.view_up == b.view_up &&
         a.clipping_range == b.clipping_range && a.parallel_scale == b.parallel_scale;
}

vtkCamera* camera_of(const GView& view)
{
  return view.get_renderer()->GetActiveCamera();
}

Camera read(const GView& view)
{
  Camera camera;
  camera_of(view)->GetFocalPoint(camera.focal_point.data());
  camera_of(view)->GetPosition(camera.position.data());
  camera_of(view)->GetViewUp(camera.view_up.data());
  camera_of(view)->GetClippingRange(camera.clipping_range.data());
  camera.parallel_scale = camera_of(view)->GetParallelScale();
  return camera;
}

/// A view whose camera was placed, which switches auto-centre off.
std::shared_ptr<GView> placed_view(double x = 1.0)
{
  auto view = make_view();
  const double at[3] = {x, 2.0, 3.0};
  const double from[3] = {x + 4.0, 5.0, 9.0};
  const double up[3] = {0.0, 0.0, 1.0};
  MRUtil::set_graphics_status(MRUtil::GRAPHICS_SUSPENDED); // placing renders
  view->set_at(at, 0, 0);
  view->set_from(from, 0, 0);
  view->set_up(up, 0, 0);
  MRUtil::set_graphics_status(MRUtil::GRAPHICS_NORMAL);
  camera_of(*view)->SetParallelScale(7.5);
  camera_of(*view)->SetClippingRange(0.25, 64.0);
  return view;
}

TEST_F(GCameraStateTest, IsAPlainValue)
{
  static_assert(!std::is_polymorphic_v<GCameraState>);
  static_assert(std::is_standard_layout_v<GCameraState>);
  static_assert(std::is_trivially_copyable_v<GCameraState>);
  static_assert(sizeof(GCameraState) == 13 * sizeof(double)); // the flag, then 2 + 3 × 3 + 1 numbers
  SUCCEED();
}

TEST_F(GCameraStateTest, APlacedCameraIsRestoredExactly)
{
  const auto view = placed_view();
  const Camera saved = read(*view);
  const GCameraState state(view.get());
  view->complete_reset_camera();
  ASSERT_FALSE(read(*view) == saved);
  state.restore(view.get());
  EXPECT_TRUE(read(*view) == saved);
}

TEST_F(GCameraStateTest, AStateMovesToAnotherView)
{
  const auto view = placed_view();
  const auto other = make_view();
  GCameraState(view.get()).restore(other.get());
  EXPECT_TRUE(read(*other) == read(*view));
}

// VTK moves a focal point by 1e-20 from an eye that is in the same place, here the eye of before.
TEST_F(GCameraStateTest, TheEyeMayHaveBeenWhereTheFocalPointGoes)
{
  const auto view = make_view();
  const double origin[3] = {0.0, 0.0, 0.0};
  const double away[3] = {10.0, 0.0, 0.0};
  MRUtil::set_graphics_status(MRUtil::GRAPHICS_SUSPENDED);
  view->set_at(origin, 0, 0);
  MRUtil::set_graphics_status(MRUtil::GRAPHICS_NORMAL);
  const Camera saved = read(*view);
  const GCameraState state(view.get());
  camera_of(*view)->SetFocalPoint(away);
  camera_of(*view)->SetPosition(origin);
  state.restore(view.get());
  EXPECT_TRUE(read(*view) == saved);
}

TEST_F(GCameraStateTest, TheViewPlaneNormalIsThatOfTheRestoredCamera)
{
  const auto view = placed_view();
  const GCameraState state(view.get());
  view->complete_reset_camera();
  state.restore(view.get());
  Point normal{};
  camera_of(*view)->GetViewPlaneNormal(normal.data());
  // From (1, 2, 3) to (5, 5, 9).
  EXPECT_NEAR(normal[0], 4.0 / std::sqrt(61.0), 1e-12);
  EXPECT_NEAR(normal[1], 3.0 / std::sqrt(61.0), 1e-12);
  EXPECT_NEAR(normal[2], 6.0 / std::sqrt(61.0), 1e-12);
}

TEST_F(GCameraStateTest, ViewAngleProjectionAndWindowSizeAreNotPartOfIt)
{
  const auto view = placed_view();
  const GCameraState state(view.get());
  camera_of(*view)->SetViewAngle(47.0);
  camera_of(*view)->ParallelProjectionOff();
  view->get_render_window()->SetSize(70, 60);
  state.restore(view.get());
  EXPECT_EQ(camera_of(*view)->GetViewAngle(), 47.0);
  EXPECT_EQ(camera_of(*view)->GetParallelProjection(), 0);
  int width = 0;
  int height = 0;
  view->get_size(width, height);
  EXPECT_EQ(width, 70);
  EXPECT_EQ(height, 60);
}

TEST_F(GCameraStateTest, WithAutoCentreTheVisibleIsFramedFromTheSavedDirection)
{
  const auto view = make_view();
  camera_of(*view)->SetPosition(10.0, 0.0, 0.0); // by the host itself: auto-centre stays on
  const GCameraState state(view.get());
  show(*view, flat_actor(sphere(5.0), kRed));
  camera_of(*view)->SetViewAngle(47.0);
  camera_of(*view)->SetPosition(0.0, 0.0, 3.0);
  state.restore(view.get());
  const Camera camera = read(*view);
  EXPECT_NEAR(camera.focal_point[0], 0.0, 1e-6);
  EXPECT_GT(camera.position[0], 10.0); // further away along the same direction
  EXPECT_NEAR(camera.position[1], 0.0, 1e-6);
  EXPECT_NEAR(camera.position[2], 0.0, 1e-6);
  EXPECT_GT(camera.parallel_scale, 5.0);
  EXPECT_EQ(camera_of(*view)->GetViewAngle(), 30.0);
}

TEST_F(GCameraStateTest, RestoringPutsAutoCentreBack)
{
  const auto view = placed_view();
  const GCameraState placed(view.get());
  view->reset_camera(); // auto-centre on
  const GCameraState centred(view.get());
  show(*view, flat_actor(sphere(5.0), kRed));
  placed.restore(view.get());
  const Camera exact = read(*view);
  GCameraState(view.get()).restore(view.get()); // saved with auto-centre off again
  EXPECT_TRUE(read(*view) == exact);
  centred.restore(view.get());
  const Camera framed = read(*view);
  GCameraState(view.get()).restore(view.get()); // and on
  EXPECT_NEAR(framed.focal_point[0], 0.0, 1e-6);
  EXPECT_NEAR(read(*view).focal_point[0], 0.0, 1e-6);
}

TEST_F(GCameraStateTest, SavingAgainOverwrites)
{
  const auto view = placed_view();
  GCameraState state(view.get());
  const auto other = placed_view(100.0);
  state.save(other.get());
  state.restore(view.get());
  EXPECT_TRUE(read(*view) == read(*other));
}

TEST_F(GCameraStateTest, WithoutAViewNothingIsSavedOrRestored)
{
  const auto view = placed_view();
  GCameraState state(view.get());
  state.save(nullptr);
  state.restore(nullptr);
  const Camera saved = read(*view);
  view->complete_reset_camera();
  state.restore(view.get());
  EXPECT_TRUE(read(*view) == saved);
}

TEST_F(GCameraStateTest, AStateOfNoViewIsVtksDefaultCamera)
{
  const auto view = placed_view();
  GCameraState(nullptr).restore(view.get()); // nothing is visible, so nothing is framed
  EXPECT_EQ(read(*view).focal_point, (Point{0.0, 0.0, 0.0}));
  EXPECT_EQ(read(*view).view_up, (Point{0.0, 1.0, 0.0}));
}

TEST_F(GCameraStateTest, AViewWithoutWindowSavesAndRestores)
{
  const auto view = placed_view();
  const Camera saved = read(*view);
  view->set_render_window(nullptr);
  const GCameraState state(view.get());
  camera_of(*view)->SetPosition(0.0, 0.0, 1.0);
  state.restore(view.get());
  EXPECT_TRUE(read(*view) == saved);
  view->reset_camera();
  GCameraState(view.get()).restore(view.get()); // and frames
}

// ---------------------------------------------------------------------------------------------------------
// Under names

TEST_F(GCameraStateTest, AnUnknownNameChangesAndPrintsNothing)
{
  const PrintCapture printed;
  const auto view = placed_view();
  const Camera before = read(*view);
  view->restore_view("never saved");
  EXPECT_TRUE(read(*view) == before);
  EXPECT_TRUE(printed.calls().empty());
}

TEST_F(GCameraStateTest, NamesAreSharedByAllViews)
{
  Camera saved;
  {
    const auto view = placed_view();
    view->save_view("shared");
    saved = read(*view);
  }
  const auto other = make_view();
  other->restore_view("shared");
  EXPECT_TRUE(read(*other) == saved);
}

TEST_F(GCameraStateTest, SavingTwiceUnderANameKeepsTheSecondCamera)
{
  const auto first = placed_view(1.0);
  const auto second = placed_view(50.0);
  first->save_view("twice");
  second->save_view("twice");
  first->restore_view("twice");
  EXPECT_TRUE(read(*first) == read(*second));
}

TEST_F(GCameraStateTest, NamesDifferInLetterCase)
{
  const auto lower = placed_view(1.0);
  const auto upper = placed_view(50.0);
  lower->save_view("front");
  upper->save_view("Front");
  const auto view = make_view();
  view->restore_view("front");
  EXPECT_TRUE(read(*view) == read(*lower));
  view->restore_view("Front");
  EXPECT_TRUE(read(*view) == read(*upper));
  view->restore_view("FRONT");
  EXPECT_TRUE(read(*view) == read(*upper));
}

TEST_F(GCameraStateTest, AnyBytesMakeAName)
{
  const std::vector<std::string> names = {"", std::string("a\0b", 3), std::string("a\0c", 3), "\xff\xfe",
                                          std::string(100000, 'x')};
  double x = 0.0;
  for (const std::string& name : names) {
    placed_view(x += 10.0)->save_view(name);
  }
  const auto view = make_view();
  x = 0.0;
  for (const std::string& name : names) {
    view->restore_view(name);
    EXPECT_EQ(read(*view).focal_point[0], x += 10.0);
  }
}

TEST_F(GCameraStateTest, NothingIsRendered)
{
  const auto view = placed_view();
  const FrameCounter frames(view->get_render_window());
  view->save_view("silent");
  view->restore_view("silent");
  view->reset_camera();
  view->save_view("silent");
  view->restore_view("silent");
  EXPECT_EQ(frames.starts(), 0);
}

} // namespace
