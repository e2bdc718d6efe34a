// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "ZoomBoxGeometry.h"

#include <algorithm>
#include <cmath>

namespace morrow {

namespace {

constexpr double Pi = 3.141592653589793;
constexpr double DegreesPerRadian = 57.29577951308232;
constexpr double OpenSide = 1e37;
constexpr double TinyRatio = 1e-06;   // of squared diagonals: the box counts for nothing below
constexpr double SmallRatio = 0.0001; // and is left as it is from here on
constexpr double SmallestPart = 0.001;
constexpr double FramingFactor = 0.55; // a tenth more than half the diagonal
constexpr double SameDirection = 0.0001;
constexpr double ParallelSine = 1e-6;

BoxBounds box_about(const BrantVector& centre, const BrantVector& half)
{
  const BrantVector low = centre - half;
  const BrantVector high = centre + half;
  return {low.x(), high.x(), low.y(), high.y(), low.z(), high.z()};
}

BoxBounds closed(BoxBounds box)
{
  for (double& side : box) {
    side = side >= OpenSide ? 1.0 : side <= -OpenSide ? -1.0 : side;
  }
  return box;
}

BoxBounds enlarged(const BoxBounds& box, const BoxBounds& visible)
{
  const BrantVector own = extents_of(box);
  const BrantVector whole = extents_of(visible);
  const double ratio = own.length_squared() / whole.length_squared();
  if (ratio < TinyRatio) {
    return box_about(centre_of(box), whole * SmallestPart / 2.0);
  }
  if (ratio < SmallRatio) {
    const double t = ratio / SmallRatio;
    return box_about(centre_of(box), (1.0 - t) * SmallestPart * whole + t * own);
  }
  return box;
}

BoxBounds cube_about(const BoxBounds& box)
{
  const BrantVector own = extents_of(box);
  const double half = std::max({own.x(), own.y(), own.z()}) / 2.0;
  return box_about(centre_of(box), {half, half, half});
}

// The axis that is farthest from a direction.
BrantVector axis_across(const BrantVector& direction)
{
  const double x = std::abs(direction.x());
  const double y = std::abs(direction.y());
  const double z = std::abs(direction.z());
  if (y <= x && y <= z) {
    return {0.0, 1.0, 0.0};
  }
  return x <= z ? BrantVector(1.0, 0.0, 0.0) : BrantVector(0.0, 0.0, 1.0);
}

bool are_parallel(const BrantVector& a, const BrantVector& b)
{
  return a.cross(b).length() < ParallelSine;
}

} // namespace

BoxBounds bounds_from(const double* six)
{
  BoxBounds box{};
  std::copy_n(six, box.size(), box.begin());
  return box;
}

bool has_nan(const BoxBounds& box)
{
  return std::any_of(box.begin(), box.end(), [](double side) { return std::isnan(side); });
}

bool is_finite(const BoxBounds& box)
{
  return std::all_of(box.begin(), box.end(), [](double side) { return std::isfinite(side); });
}

BrantVector centre_of(const BoxBounds& box)
{
  return {(box[0] + box[1]) / 2.0, (box[2] + box[3]) / 2.0, (box[4] + box[5]) / 2.0};
}

BrantVector extents_of(const BoxBounds& box)
{
  return {box[1] - box[0], box[3] - box[2], box[5] - box[4]};
}

BoxBounds adjusted_for_zoom(const BoxBounds& box, const BoxBounds* visible)
{
  const BoxBounds framed = closed(box);
  return cube_about(visible != nullptr ? enlarged(framed, *visible) : framed);
}

BoxBounds between(const BoxBounds& start, const BoxBounds& end, double fraction)
{
  BoxBounds box{};
  for (std::size_t side = 0; side < box.size(); ++side) {
    box[side] = start[side] + fraction * (end[side] - start[side]);
  }
  return box;
}

double framing_radius(const BoxBounds& box)
{
  const double diagonal = extents_of(box).length();
  return diagonal == 0.0 ? 1.0 : FramingFactor * diagonal;
}

double framing_distance(double radius, double view_angle)
{
  return radius / std::tan(view_angle * Pi / 360.0);
}

ViewTurn turn_between(const BrantVector& from, const BrantVector& to, const BrantVector& up)
{
  const double cosine = std::clamp(from.dot(to), -1.0, 1.0);
  if (cosine > 1.0 - SameDirection) {
    return {};
  }
  const BrantVector axis = cosine < SameDirection - 1.0 ? up : from.cross(to).normalized();
  return {axis, std::acos(cosine) * DegreesPerRadian};
}

BrantVector up_for(const BrantVector& direction, const BrantVector& before, const BrantVector& up)
{
  if (!are_parallel(direction, up)) {
    return up;
  }
  const BrantVector tilted = direction.dot(up) < 0.0 ? before : -before;
  return are_parallel(direction, tilted) ? axis_across(direction) : tilted;
}

} // namespace morrow
