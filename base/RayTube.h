// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "CellBlocks.h" // BlockBox

#include <cmath>
#include <cstdint>

namespace morrow {

/// A segment and how far from it things are still hit, in the coordinates of a data set.
struct PickRay
{
  double p1[3];
  double p2[3];
  double tolerance;
};

/// What surely lies outside of a ray's reach. Its answers are on the safe side: what they let through may
/// still miss the ray, by what rounding does to things as far out as bounds.
class RayTube
{
public:
  /// bounds: 6 doubles, those of the data set.
  RayTube(const PickRay& ray, const double* bounds);

  /// One bit for each of the six sides on which a point lies beyond reach: two pairs across the ray, one
  /// along. What has a bit in common for all corners, and keeps between them, is not hit. No bit for a
  /// point that is not finite.
  template<typename Number>
  [[nodiscard]] unsigned sides_of(const Number* point) const noexcept
  {
    const double d[3] = {static_cast<double>(point[0]) - mStart[0], static_cast<double>(point[1]) - mStart[1],
                         static_cast<double>(point[2]) - mStart[2]};
    unsigned sides = 0;
    for (int i = 0; i < 3; ++i) {
      const double at = d[0] * mAxes[i][0] + d[1] * mAxes[i][1] + d[2] * mAxes[i][2];
      sides |= static_cast<unsigned>(at < mLowest[i] && at > -Far) << (2 * i);
      sides |= static_cast<unsigned>(at > mHighest[i] && at < Far) << (2 * i + 1);
    }
    return sides;
  }

  /// Whether something between these corners may be hit; corners that are not finite always may.
  template<typename Number>
  [[nodiscard]] bool may_meet(const Number (&lower)[3], const Number (&upper)[3]) const noexcept
  {
    double center[3];
    double half[3];
    for (int i = 0; i < 3; ++i) {
      const auto low = static_cast<double>(lower[i]);
      const auto high = static_cast<double>(upper[i]);
      center[i] = 0.5 * (low + high) - mStart[i];
      half[i] = 0.5 * (high - low);
    }
    const double slack = Looseness * (half[0] + half[1] + half[2]);
    bool is_beyond = false;
    for (int i = 0; i < 3; ++i) {
      const double* axis = mAxes[i];
      const double at = center[0] * axis[0] + center[1] * axis[1] + center[2] * axis[2];
      const double reach =
          half[0] * std::abs(axis[0]) + half[1] * std::abs(axis[1]) + half[2] * std::abs(axis[2]) + slack;
      is_beyond = is_beyond || at + reach < mLowest[i] || at - reach > mHighest[i];
    }
    return !is_beyond;
  }

  [[nodiscard]] bool may_meet(const BlockBox& box) const noexcept
  {
    return this->may_meet(box.lower, box.upper);
  }

private:
  static constexpr double Far = 1.0e300;
  static constexpr double Looseness = 1.0e-6; // VTK takes a polygon for a little larger than it is

  double mStart[3];
  double mAxes[3][3]; // across, across, along
  double mLowest[3];
  double mHighest[3];
};

} // namespace morrow
