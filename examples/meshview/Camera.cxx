// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "Camera.h"

#include "BrantVector.h"

#include <vtkCamera.h>
#include <vtkMath.h>
#include <vtkPolyData.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double kMargin = 0.92; // part of the picture that the mesh fills

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
/// A point at (s, b), s across and b back along the line of sight, is in the picture of an eye at (S, B) when
/// |s - S| <= t (B - b), t being the tangent of half the view angle. So S + t B must reach the largest s + t
/// b and t B - S the largest t b - s; the two together give both unknowns.
class Fit
{
public:
  explicit Fit(double tangent) : mTangent(tangent) {}

  void add(double across, double back)
  {
    mPlus = std::max(mPlus, mTangent * back + across);
    mMinus = std::max(mMinus, mTangent * back - across);
  }

  [[nodiscard]] double eye_back() const { return (mPlus + mMinus) / (2.0 * mTangent); }
  [[nodiscard]] double eye_across() const { return (mPlus - mMinus) / 2.0; }

private:
  double mTangent;
  double mPlus = std::numeric_limits<double>::lowest();
  double mMinus = std::numeric_limits<double>::lowest();
};

/// All points of the surfaces in the two directions across, and how far they reach along the line of sight.
struct Extent
{
  Fit horizontal;
  Fit vertical;
  double nearest = std::numeric_limits<double>::lowest();
  double farthest = std::numeric_limits<double>::max();

  void add(vtkPolyData& surface, const Axes& axes)
  {
    for (vtkIdType i = 0; i < surface.GetNumberOfPoints(); ++i) {
      const BrantVector point(surface.GetPoint(i));
      const double back = point.dot(axes.back);
      horizontal.add(point.dot(axes.right), back);
      vertical.add(point.dot(axes.up), back);
      nearest = std::max(nearest, back);
      farthest = std::min(farthest, back);
    }
  }
};

void place(vtkCamera& camera, const Axes& axes, const Extent& extent)
{
  const BrantVector across =
      axes.right * extent.horizontal.eye_across() + axes.up * extent.vertical.eye_across();
  const double middle = (extent.nearest + extent.farthest) / 2.0;
  const BrantVector focus = across + axes.back * middle;
  const double fitting = std::max(extent.horizontal.eye_back(), extent.vertical.eye_back()) - middle;
  // A mesh may be a single point, and only rounding keeps the eye away from it.
  const double least = 1e-12 * focus.length();
  const double distance = fitting > least ? fitting : std::max(1.0, focus.length());
  const BrantVector position = focus + axes.back * distance;
  camera.SetPosition(position.x(), position.y(), position.z());
  camera.SetFocalPoint(focus.x(), focus.y(), focus.z());
  camera.SetViewUp(axes.up.x(), axes.up.y(), axes.up.z());
}

} // namespace

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

void look_from(const std::string& name, vtkCamera& camera, const std::vector<vtkPolyData*>& surfaces,
               int width, int height)
{
  const Axes axes(find_view(name));
  // Views apply the view angle to the shorter side of the window.
  const double shorter = std::min(width, height);
  const double tangent = kMargin * std::tan(vtkMath::RadiansFromDegrees(camera.GetViewAngle()) / 2.0);
  Extent extent{Fit(tangent * width / shorter), Fit(tangent * height / shorter)};
  for (vtkPolyData* surface : surfaces) {
    extent.add(*surface, axes);
  }
  place(camera, axes, extent);
}
