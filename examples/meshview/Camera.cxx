// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "Camera.h"

#include "BrantBox.h"
#include "GView.h"

#include <vtkCamera.h>
#include <vtkMath.h>
#include <vtkPolyData.h>
#include <vtkRenderer.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

struct NamedView
{
  const char* name;
  BrantVector towards_eye; // from the mesh
  BrantVector up;
};

const NamedView kViews[] = {{"iso", {1, -1, 0.8}, {0, 0, 1}}, {"+x", {1, 0, 0}, {0, 0, 1}},
                            {"-x", {-1, 0, 0}, {0, 0, 1}},    {"+y", {0, 1, 0}, {0, 0, 1}},
                            {"-y", {0, -1, 0}, {0, 0, 1}},    {"+z", {0, 0, 1}, {0, 1, 0}},
                            {"-z", {0, 0, -1}, {0, 1, 0}}};

const NamedView& find_view(const std::string& name)
{
  const auto* found = std::find_if(std::begin(kViews), std::end(kViews),
                                   [&name](const NamedView& view) { return view.name == name; });
  return found == std::end(kViews) ? kViews[0] : *found;
}

/// The axes of a camera that looks along a named view.
struct Axes
{
  explicit Axes(const NamedView& view)
      : back(view.towards_eye.normalized()), right(view.up.cross(back).normalized()), up(back.cross(right))
  {}

  BrantVector back;
  BrantVector right;
  BrantVector up;
};

/// One direction across the picture: how near the eye may come, and where between the outermost points it
/// must then be.
///
/// A point at (s, b), s across and b back along the line of sight, is in the free part of the picture of an
/// eye at (S, B) when -l (B - b) <= s - S <= h (B - b), l and h being the tangents of the angles from the
/// line of sight to the sides of that part. So S + h B must reach the largest s + h b, and l B - S the
/// largest l b - s; the two together give both unknowns.
///
/// With all b = 0 the same sums are those of parallel projection, where B is the scale.
class Fit
{
public:
  Fit(double low, double high) : mLow(low), mHigh(high) {}

  void add(double across, double back)
  {
    mPlus = std::max(mPlus, mHigh * back + across);
    mMinus = std::max(mMinus, mLow * back - across);
  }

  /// The nearest place of the eye.
  [[nodiscard]] double back() const { return (mPlus + mMinus) / (mLow + mHigh); }

  /// The middle of the places for an eye as far back as this, or farther than it must.
  [[nodiscard]] double across(double back) const
  {
    return ((mPlus - mHigh * back) + (mLow * back - mMinus)) / 2.0;
  }

private:
  double mLow;
  double mHigh;
  double mPlus = std::numeric_limits<double>::lowest();
  double mMinus = std::numeric_limits<double>::lowest();
};

/// Is the view's window higher than wide?
bool is_upright(const GView& view)
{
  int width = 0;
  int height = 0;
  view.get_size(width, height);
  return width < height;
}

/// The two directions across a picture of a view, without its margins.
struct Window
{
  Window(const GView& view, const Margins& margins) : is_perspective(view.get_perspective())
  {
    int width = 0;
    int height = 0;
    drawn_size(view, width, height);
    // Views apply the view angle to the side that is the shorter one of the window, and the scale to the
    // height.
    const double unit = is_perspective && is_upright(view) ? width : height;
    const double half =
        is_perspective ? std::tan(vtkMath::RadiansFromDegrees(view.get_perspective_angle()) / 2.0) : 1.0;
    const double across = half * width / unit;
    const double up = half * height / unit;
    horizontal = Fit(across * (1.0 - 2.0 * margins.left), across * (1.0 - 2.0 * margins.right));
    vertical = Fit(up * (1.0 - 2.0 * margins.bottom), up * (1.0 - 2.0 * margins.top));
  }

  bool is_perspective;
  Fit horizontal{1.0, 1.0};
  Fit vertical{1.0, 1.0};
};

/// All points of a scene in the two directions across, and how far they reach along the line of sight.
class Extent
{
public:
  Extent(const Axes& axes, const Window& window) : mAxes(axes), mWindow(window) {}

  void add(const BrantVector& point)
  {
    const double back = point.dot(mAxes.back);
    const double depth = mWindow.is_perspective ? back : 0.0;
    mWindow.horizontal.add(point.dot(mAxes.right), depth);
    mWindow.vertical.add(point.dot(mAxes.up), depth);
    mNearest = std::max(mNearest, back);
    mFarthest = std::min(mFarthest, back);
  }

  void add(vtkPolyData& surface)
  {
    for (vtkIdType i = 0; i < surface.GetNumberOfPoints(); ++i) {
      add(BrantVector(surface.GetPoint(i)));
    }
  }

  /// Half of what the eye sees of parallel projection; how far back it must be in perspective.
  [[nodiscard]] double reach() const { return std::max(mWindow.horizontal.back(), mWindow.vertical.back()); }

  /// The point in the middle of the line of sight.
  [[nodiscard]] BrantVector focus() const
  {
    return mAxes.right * mWindow.horizontal.across(reach()) + mAxes.up * mWindow.vertical.across(reach()) +
           mAxes.back * middle();
  }

  /// From the focus to the eye. In parallel projection any distance will do that is before all points.
  [[nodiscard]] double distance() const
  {
    return mWindow.is_perspective ? reach() - middle() : mNearest - mFarthest + reach();
  }

private:
  [[nodiscard]] double middle() const { return (mNearest + mFarthest) / 2.0; }

  Axes mAxes;
  Window mWindow;
  double mNearest = std::numeric_limits<double>::lowest();
  double mFarthest = std::numeric_limits<double>::max();
};

/// The points that all points of the surfaces stay between while they turn about the axis: two circles.
std::vector<BrantVector> drum(const Axis& axis, const std::vector<vtkPolyData*>& surfaces)
{
  double radius = 0.0;
  double low = std::numeric_limits<double>::max();
  double high = std::numeric_limits<double>::lowest();
  for (vtkPolyData* surface : surfaces) {
    for (vtkIdType i = 0; i < surface->GetNumberOfPoints(); ++i) {
      const BrantVector arm = BrantVector(surface->GetPoint(i)) - axis.origin;
      const double height = arm.dot(axis.direction);
      radius = std::max(radius, (arm - axis.direction * height).length());
      low = std::min(low, height);
      high = std::max(high, height);
    }
  }
  constexpr int kCorners = 64;
  const double corner_radius = radius / std::cos(vtkMath::Pi() / kCorners);
  const BrantVector any = std::abs(axis.direction.z()) > 0.5 ? BrantVector(1, 0, 0) : BrantVector(0, 0, 1);
  const BrantVector across = axis.direction.cross(any).normalized();
  const BrantVector along = axis.direction.cross(across);
  std::vector<BrantVector> points;
  for (int i = 0; i < kCorners; ++i) {
    const double angle = 2.0 * vtkMath::Pi() * i / kCorners;
    const BrantVector arm = (across * std::cos(angle) + along * std::sin(angle)) * corner_radius;
    points.push_back(axis.origin + arm + axis.direction * low);
    points.push_back(axis.origin + arm + axis.direction * high);
  }
  return points;
}

/// One frame for the whole placement: only the last step goes through the view, which renders it. It also
/// tells the view that the camera has been placed, so that a saved view is restored as it was.
void place(GView& view, const Axes& axes, const Extent& extent)
{
  const BrantVector focus = extent.focus();
  // A mesh may be a single point, and only rounding keeps the eye away from it.
  const double least = 1e-12 * focus.length();
  const double distance = extent.distance() > least ? extent.distance() : std::max(1.0, focus.length());
  const BrantVector eye = focus + axes.back * distance;
  vtkCamera& camera = *view.get_renderer()->GetActiveCamera();
  camera.SetFocalPoint(focus.x(), focus.y(), focus.z());
  camera.SetViewUp(axes.up.x(), axes.up.y(), axes.up.z());
  if (!view.get_perspective()) {
    view.set_parallel_scale(extent.reach() > least ? extent.reach() : distance);
  }
  const double position[3] = {eye.x(), eye.y(), eye.z()};
  view.set_from(position, 1, 0);
}

} // namespace

void drawn_size(const GView& view, int& width, int& height)
{
  view.get_size(width, height);
  const double* part = view.get_renderer()->GetViewport();
  width = std::max(1, static_cast<int>(std::lround((part[2] - part[0]) * width)));
  height = std::max(1, static_cast<int>(std::lround((part[3] - part[1]) * height)));
}

const std::vector<std::string>& view_names()
{
  static const std::vector<std::string> kNames = [] {
    std::vector<std::string> names;
    for (const NamedView& view : kViews) {
      names.emplace_back(view.name);
    }
    return names;
  }();
  return kNames;
}

Axis turn_axis(const std::string& name, const std::vector<vtkPolyData*>& surfaces)
{
  BrantBox box;
  for (vtkPolyData* surface : surfaces) {
    for (vtkIdType i = 0; i < surface->GetNumberOfPoints(); ++i) {
      box |= BrantVector(surface->GetPoint(i));
    }
  }
  return {(box.minimum() + box.maximum()) / 2.0, find_view(name).up};
}

void look_from(const std::string& name, GView& view, const Framing& framing)
{
  const Axes axes(find_view(name));
  Extent extent(axes, Window(view, framing.margins));
  for (const BrantVector& point : framing.points) {
    extent.add(point);
  }
  if (framing.all_round) {
    for (const BrantVector& point : drum(turn_axis(name, framing.surfaces), framing.surfaces)) {
      extent.add(point);
    }
  } else {
    for (vtkPolyData* surface : framing.surfaces) {
      extent.add(*surface);
    }
  }
  place(view, axes, extent);
}
