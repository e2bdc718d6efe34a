// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "TriangleSieve.h"

#include "RayTube.h" // PickRay

#include <vtkMath.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace morrow {

namespace {

struct Vector
{
  double x;
  double y;
  double z;
};

Vector between(const double* from, const double* to)
{
  return {to[0] - from[0], to[1] - from[1], to[2] - from[2]};
}

double dot(const Vector& a, const Vector& b)
{
  return a.x * b.x + a.y * b.y + a.z * b.z;
}

Vector cross(const Vector& a, const Vector& b)
{
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

double squared_distance(const Vector& at, const Vector& edge, double squared_length)
{
  const double along = std::clamp(dot(at, edge) / squared_length, 0.0, 1.0);
  const Vector rest = {at.x - along * edge.x, at.y - along * edge.y, at.z - along * edge.z};
  return dot(rest, rest);
}

double square(double value)
{
  return value * value;
}

} // namespace

TriangleSieve::TriangleSieve(const PickRay& ray, const double* bounds)
{
  constexpr double infinity = std::numeric_limits<double>::infinity();
  double scale = 0.0;
  for (int i = 0; i < 3; ++i) {
    mStart[i] = ray.p1[i];
    mDirection[i] = ray.p2[i] - ray.p1[i];
    scale = std::max({scale, std::abs(bounds[2 * i]), std::abs(bounds[2 * i + 1]), std::abs(ray.p1[i]),
                      std::abs(ray.p2[i])});
  }
  const double length = vtkMath::Normalize(mDirection);
  const double tolerance = ray.tolerance;
  // VTK may take the end of an edge for its nearest point, which is off by up to 1e-5 of the distance.
  const double slack = 1.0e-4 * tolerance + 1.0e-9 * scale;
  const bool is_usable = length > 0.0 && length < infinity && tolerance > 0.0 && slack < infinity;
  mSquaredTolerance = square(tolerance);
  mNear = is_usable && 0.5 * tolerance > slack ? square(0.5 * tolerance - slack) : -1.0;
  mFar = is_usable ? square(0.5 * tolerance + slack) : infinity;
  mBeyond = is_usable ? square(tolerance + slack) : infinity;
}

TriangleSieve::Distance TriangleSieve::distance_to(const double* a, const double* b,
                                                   const double* c) const noexcept
{
  const Vector ab = between(a, b);
  const Vector ac = between(a, c);
  const Vector bc = between(b, c);
  const double of_ab = dot(ab, ab);
  const double of_ac = dot(ac, ac);
  const double of_bc = dot(bc, bc);
  const Vector normal = cross(ab, ac);
  const Vector direction = {mDirection[0], mDirection[1], mDirection[2]};
  const double slope = dot(normal, direction);
  const double longest = std::max({of_ab, of_ac, of_bc});
  // Rounding turns the plane of a thin triangle, and moves the point on a plane along the ray: by less than
  // the slack if so.
  constexpr double steadiness = 2.0e-12;
  if (!(square(slope * slope) > steadiness * (mSquaredTolerance + longest) * longest * dot(normal, normal))) {
    return Distance::Unclear;
  }
  const Vector to_start = between(a, mStart);
  const double along = -dot(normal, to_start) / slope;
  const Vector at = {to_start.x + along * direction.x, to_start.y + along * direction.y,
                     to_start.z + along * direction.z}; // from a
  const Vector from_b = {at.x - ab.x, at.y - ab.y, at.z - ab.z};
  const bool is_inside = dot(cross(ab, at), normal) >= 0.0 && dot(cross(at, ac), normal) >= 0.0 &&
                         dot(cross(bc, from_b), normal) >= 0.0;
  const double distance = is_inside
                              ? 0.0
                              : std::min({squared_distance(at, ab, of_ab), squared_distance(at, ac, of_ac),
                                          squared_distance(from_b, bc, of_bc)});
  if (distance > mBeyond) {
    return Distance::Beyond;
  }
  if (distance > mFar) {
    return Distance::Far;
  }
  return distance < mNear ? Distance::Near : Distance::Unclear;
}

} // namespace morrow
