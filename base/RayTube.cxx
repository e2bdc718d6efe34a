// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "RayTube.h"

#include <vtkMath.h>

#include <algorithm>
#include <limits>

namespace morrow {

namespace {

constexpr double Diagonal = 1.7320509; // of a unit cube
constexpr double Looser = 1.001;       // VTK's distances are not exact
constexpr double Rounding = 1.0e-9;    // of the largest coordinate
constexpr double FloatRounding = 1.0e-6;

double largest(const double* values, int count, double so_far)
{
  for (int i = 0; i < count; ++i) {
    so_far = std::max(so_far, std::abs(values[i]));
  }
  return so_far;
}

} // namespace

template<typename Number>
RayTube::Slabs<Number> RayTube::slabs(double scale, double far) const
{
  Slabs<Number> slabs = {};
  const double rounding = sizeof(Number) < sizeof(double) ? FloatRounding * scale : 0.0;
  slabs.far = static_cast<Number>(far);
  for (int i = 0; i < 2; ++i) {
    std::transform(mAxes[i], mAxes[i] + 3, slabs.axes[i],
                   [](double value) { return static_cast<Number>(value); });
    const double start = vtkMath::Dot(mStart, mAxes[i]);
    slabs.lowest[i] = static_cast<Number>(start + mLowest[i] - rounding);
    slabs.highest[i] = static_cast<Number>(start + mHighest[i] + rounding);
  }
  return slabs;
}

RayTube::RayTube(const PickRay& ray, const double* bounds, Reach way)
{
  for (int i = 0; i < 3; ++i) {
    mStart[i] = ray.p1[i];
    mAxes[2][i] = ray.p2[i] - ray.p1[i];
  }
  const double length = vtkMath::Normalize(mAxes[2]);
  vtkMath::Perpendiculars(mAxes[2], mAxes[0], mAxes[1], 0.0);
  const double scale = largest(bounds, 6, largest(ray.p1, 3, largest(ray.p2, 3, 0.0)));
  const double margin = std::abs(ray.tolerance) * (way == Reach::Axes ? Diagonal : Looser) + Rounding * scale;
  // A ray without direction, and numbers that are none, leave nothing out.
  const bool is_usable = length > 0.0 && length < Far && margin < Far;
  const double reach = is_usable ? margin : std::numeric_limits<double>::infinity();
  for (int i = 0; i < 3; ++i) {
    mLowest[i] = -reach;
    mHighest[i] = i == 2 ? length + reach : reach;
  }
  mAcross = this->slabs<double>(scale, Far);
  mAcrossInFloats = this->slabs<float>(scale, static_cast<double>(std::numeric_limits<float>::max()));
}

void RayTube::sides_across(const float* points, std::size_t count, unsigned char* sides) const noexcept
{
  const Slabs<float> slabs = mAcrossInFloats;
  for (std::size_t i = 0; i < count; ++i) {
    sides[i] = static_cast<unsigned char>(sides_between(slabs, points + 3 * i));
  }
}

void RayTube::sides_across(const double* points, std::size_t count, unsigned char* sides) const noexcept
{
  for (std::size_t i = 0; i < count; ++i) {
    sides[i] = static_cast<unsigned char>(sides_between(mAcross, points + 3 * i));
  }
}

} // namespace morrow
