// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "TriangleSieve.h"

#include "PointDifference.h"
#include "RayTube.h" // PickRay

#include <vtkMath.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace morrow {

namespace {

double squared_distance(const BrantVector& at, const BrantVector& edge, double squared_length)
{
  const double along = std::clamp(at.dot(edge) / squared_length, 0.0, 1.0);
  return (at - along * edge).length_squared();
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
  const BrantVector ab = way_between(a, b);
  const BrantVector ac = way_between(a, c);
  const BrantVector bc = way_between(b, c);
  const double of_ab = ab.length_squared();
  const double of_ac = ac.length_squared();
  const double of_bc = bc.length_squared();
  const BrantVector normal = ab.cross(ac);
  const BrantVector direction(mDirection[0], mDirection[1], mDirection[2]);
  const double slope = normal.dot(direction);
  const double longest = std::max({of_ab, of_ac, of_bc});
  // Rounding turns the plane of a thin triangle, and moves the point on a plane along the ray: by less than
  // the slack if so.
  constexpr double steadiness = 2.0e-12;
  if (!(square(slope * slope) >
        steadiness * (mSquaredTolerance + longest) * longest * normal.length_squared())) {
    return Distance::Unclear;
  }
  const BrantVector to_start = way_between(a, mStart);
  const double along = -normal.dot(to_start) / slope;
  const BrantVector at = to_start + along * direction; // from a
  const BrantVector from_b = at - ab;
  const bool is_inside = ab.cross(at).dot(normal) >= 0.0 && at.cross(ac).dot(normal) >= 0.0 &&
                         bc.cross(from_b).dot(normal) >= 0.0;
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
