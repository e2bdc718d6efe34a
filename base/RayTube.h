// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "CellBlocks.h" // BlockBox

#include <cmath>
#include <cstddef>
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
  /// What VTK measures the tolerance along.
  enum class Reach
  {
    Round, ///< the shortest way: all but vertices
    Axes   ///< each axis by itself: vertices
  };

  /// bounds: 6 doubles, those of the data set.
  RayTube(const PickRay& ray, const double* bounds, Reach reach);

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

  /// The same for the four sides across the ray.
  template<typename Number>
  [[nodiscard]] unsigned sides_across(const Number* point) const noexcept
  {
    return this->sides_between<double>(mAcross, point);
  }

  /// The same for many points, 3 × count numbers, into count bytes.
  void sides_across(const float* points, std::size_t count, unsigned char* sides) const noexcept;
  void sides_across(const double* points, std::size_t count, unsigned char* sides) const noexcept;

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

  /// Two slabs across the ray, in numbers of one kind.
  template<typename Number>
  struct Slabs
  {
    Number axes[2][3];
    Number lowest[2];
    Number highest[2];
    Number far;
  };

  template<typename Wide, typename Number>
  [[nodiscard]] static unsigned sides_between(const Slabs<Wide>& slabs, const Number* point) noexcept
  {
    const auto x = static_cast<Wide>(point[0]);
    const auto y = static_cast<Wide>(point[1]);
    const auto z = static_cast<Wide>(point[2]);
    unsigned sides = 0;
    for (int i = 0; i < 2; ++i) {
      const Wide at = x * slabs.axes[i][0] + y * slabs.axes[i][1] + z * slabs.axes[i][2];
      sides |= static_cast<unsigned>((at < slabs.lowest[i]) & (at > -slabs.far)) << (2 * i);
      sides |= static_cast<unsigned>((at > slabs.highest[i]) & (at < slabs.far)) << (2 * i + 1);
    }
    return sides;
  }

  template<typename Number>
  [[nodiscard]] Slabs<Number> slabs(double scale, double far) const;

  double mStart[3];
  double mAxes[3][3]; // across, across, along
  double mLowest[3];
  double mHighest[3];
  Slabs<double> mAcross;
  Slabs<float> mAcrossInFloats;
};

} // namespace morrow
