// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "RayTube.h"

#include <vtkMath.h>

#include <algorithm>
#include <limits>

namespace morrow {

namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double Diagonal = 1.7320509; // a vertex is hit within the tolerance along each axis by itself
constexpr double Rounding = 1.0e-9;    // of the largest coordinate

double largest(const double* values, int count, double so_far)
{
  for (int i = 0; i < count; ++i) {
    so_far = std::max(so_far, std::abs(values[i]));
  }
  return so_far;
}

} // namespace

RayTube::RayTube(const PickRay& ray, const double* bounds)
{
  for (int i = 0; i < 3; ++i) {
    mStart[i] = ray.p1[i];
    mAxes[2][i] = ray.p2[i] - ray.p1[i];
  }
  const double length = vtkMath::Normalize(mAxes[2]);
  vtkMath::Perpendiculars(mAxes[2], mAxes[0], mAxes[1], 0.0);
  const double scale = largest(bounds, 6, largest(ray.p1, 3, largest(ray.p2, 3, 0.0)));
  const double margin = std::abs(ray.tolerance) * Diagonal + Rounding * scale;
  // A ray without direction, and numbers that are none, leave nothing out.
  const bool is_usable = length > 0.0 && length < Far && margin < Far;
  const double reach = is_usable ? margin : Infinity;
  for (int i = 0; i < 3; ++i) {
    mLowest[i] = -reach;
    mHighest[i] = i == 2 ? length + reach : reach;
  }
}

} // namespace morrow
