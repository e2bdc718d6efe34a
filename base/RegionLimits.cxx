// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "RegionLimits.h"

#include "BrantVector.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <typeinfo>

namespace morrow {

namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double Margin = 1.0e-6; // pixels, for what rounding does to crossings

/// A derived class answers for itself.
template<typename Region>
const Region* exactly(const PickBounds& region)
{
  return typeid(region) == typeid(Region) ? static_cast<const Region*>(&region) : nullptr;
}

/// Whether all triangles have an area to speak of: one without holds points that lie far away from it.
bool has_sound_triangles(const PickPolygon& polygon)
{
  constexpr double smallest = 1.0e-7; // square pixels, twice
  const auto corner = [&polygon](int index) { return &polygon.points[static_cast<std::size_t>(index) * 3]; };
  for (std::size_t i = 0; i + 2 < polygon.triangles.size(); i += 3) {
    const double* a = corner(polygon.triangles[i]);
    const double* b = corner(polygon.triangles[i + 1]);
    const double* c = corner(polygon.triangles[i + 2]);
    const double area = (b[0] - a[0]) * (c[1] - b[1]) - (b[1] - a[1]) * (c[0] - b[0]);
    if (!(std::abs(area) > smallest)) {
      return false;
    }
  }
  return true;
}

ScreenBox limits_of(const PickBox& box)
{
  return {{box.xmin, box.ymin}, {box.xmax, box.ymax}};
}

// A segment is found up to the root of the radius away.
ScreenBox limits_of(const PickCircle& circle)
{
  const double reach = std::max(std::abs(circle.radius), std::sqrt(std::max(circle.radius, 0.0)));
  return {{circle.center_x - reach, circle.center_y - reach},
          {circle.center_x + reach, circle.center_y + reach}};
}

ScreenBox limits_of(const PickPolygon& polygon)
{
  ScreenBox box = {{Infinity, Infinity}, {-Infinity, -Infinity}};
  for (std::size_t i = 0; i + 2 < polygon.points.size(); i += 3) {
    for (std::size_t axis = 0; axis < 2; ++axis) {
      box.lower[axis] = std::min(box.lower[axis], polygon.points[i + axis]);
      box.upper[axis] = std::max(box.upper[axis], polygon.points[i + axis]);
    }
  }
  return box;
}

bool is_ordered(const ScreenBox& box)
{
  return std::abs(box.lower[0]) < RegionLimits::Farthest && std::abs(box.lower[1]) < RegionLimits::Farthest &&
         std::abs(box.upper[0]) < RegionLimits::Farthest && std::abs(box.upper[1]) < RegionLimits::Farthest &&
         box.lower[0] <= box.upper[0] && box.lower[1] <= box.upper[1];
}

} // namespace

RegionLimits::RegionLimits(const PickBounds& region)
    : mRegion(region), mLimits({{-Infinity, -Infinity}, {Infinity, Infinity}})
{
  ScreenBox limits = {{Infinity, Infinity}, {-Infinity, -Infinity}};
  const auto* polygon = exactly<PickPolygon>(region);
  mBox = exactly<PickBox>(region);
  mCircle = exactly<PickCircle>(region);
  if (mBox != nullptr) {
    limits = limits_of(*mBox);
  } else if (mCircle != nullptr) {
    limits = limits_of(*mCircle);
  } else if (polygon != nullptr && has_sound_triangles(*polygon)) {
    limits = limits_of(*polygon);
  }
  if (!is_ordered(limits)) {
    mBox = nullptr;
    mCircle = nullptr;
    return;
  }
  for (int axis = 0; axis < 2; ++axis) {
    mLimits.lower[axis] = limits.lower[axis] - Margin;
    mLimits.upper[axis] = limits.upper[axis] + Margin;
  }
}

bool RegionLimits::excludes(const ScreenBox& box, double margin) const noexcept
{
  return box.upper[0] + margin < mLimits.lower[0] || box.lower[0] - margin > mLimits.upper[0] ||
         box.upper[1] + margin < mLimits.lower[1] || box.lower[1] - margin > mLimits.upper[1];
}

bool RegionLimits::holds(const ScreenBox& box, double margin) const noexcept
{
  if (mBox != nullptr) {
    return box.lower[0] - margin > mBox->xmin && box.upper[0] + margin < mBox->xmax &&
           box.lower[1] - margin > mBox->ymin && box.upper[1] + margin < mBox->ymax;
  }
  if (mCircle != nullptr) {
    const double x =
        std::max(std::abs(box.lower[0] - mCircle->center_x), std::abs(box.upper[0] - mCircle->center_x)) +
        margin;
    const double y =
        std::max(std::abs(box.lower[1] - mCircle->center_y), std::abs(box.upper[1] - mCircle->center_y)) +
        margin;
    const double inner = std::max(std::abs(mCircle->radius) - Margin, 0.0);
    return x * x + y * y < inner * inner;
  }
  return false;
}

} // namespace morrow
