// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "BrantBox.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

bool has_nan(const BrantVector& point)
{
  return std::isnan(point.x()) || std::isnan(point.y()) || std::isnan(point.z());
}

BrantVector smaller(const BrantVector& a, const BrantVector& b)
{
  return {std::min(a.x(), b.x()), std::min(a.y(), b.y()), std::min(a.z(), b.z())};
}

BrantVector larger(const BrantVector& a, const BrantVector& b)
{
  return {std::max(a.x(), b.x()), std::max(a.y(), b.y()), std::max(a.z(), b.z())};
}

} // namespace

BrantBox::BrantBox(const BrantVector& minimum, const BrantVector& maximum) noexcept
{
  reset(minimum, maximum);
}

void BrantBox::reset() noexcept
{
  *this = BrantBox();
}

void BrantBox::reset(const BrantVector& point) noexcept
{
  reset(point, point);
}

void BrantBox::reset(const BrantVector& minimum, const BrantVector& maximum) noexcept
{
  // Built apart: the arguments may be the corners of this very box.
  BrantBox box;
  box |= minimum;
  box |= maximum;
  *this = box;
}

BrantBox& BrantBox::operator|=(const BrantBox& other) noexcept
{
  if (is_empty()) {
    return *this = other;
  }
  if (!other.is_empty()) {
    mMinimum = smaller(mMinimum, other.mMinimum);
    mMaximum = larger(mMaximum, other.mMaximum);
  }
  return *this;
}

BrantBox& BrantBox::operator|=(const BrantVector& point) noexcept
{
  if (!has_nan(point)) {
    BrantBox other;
    other.mMinimum = other.mMaximum = point;
    *this |= other;
  }
  return *this;
}

BrantVector BrantBox::closest_point(const BrantVector& point) const noexcept
{
  if (is_empty()) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    return {infinity, infinity, infinity};
  }
  return {std::clamp(point.x(), mMinimum.x(), mMaximum.x()),
          std::clamp(point.y(), mMinimum.y(), mMaximum.y()),
          std::clamp(point.z(), mMinimum.z(), mMaximum.z())};
}
