// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "PickBounds.h"

namespace morrow {

/// A rectangle on the screen, in pixels.
struct ScreenBox
{
  double lower[2];
  double upper[2];
};

/// What can be told of a region without asking it: where it surely ends, and what it surely holds. It knows
/// boxes, circles and polygons; of a host's own kind of region it tells nothing.
class RegionLimits
{
public:
  explicit RegionLimits(const PickBounds& region);

  /// One bit for each of the four sides of the region on which the point (x, y in pixels) lies. What has a
  /// bit in common for all of its corners does not touch the region. No bit for what lies so far out that
  /// rounding may let it touch all the same, and for what is not a number.
  [[nodiscard]] unsigned sides_of(const double* p) const noexcept
  {
    const bool is_near = p[0] > -Farthest && p[0] < Farthest && p[1] > -Farthest && p[1] < Farthest;
    const unsigned sides = static_cast<unsigned>(p[0] < mLimits.lower[0]) |
                           static_cast<unsigned>(p[0] > mLimits.upper[0]) << 1U |
                           static_cast<unsigned>(p[1] < mLimits.lower[1]) << 2U |
                           static_cast<unsigned>(p[1] > mLimits.upper[1]) << 3U;
    return is_near ? sides : 0U;
  }
  static constexpr unsigned AllSides = 15;

  /// The region's own answer.
  [[nodiscard]] bool contains(const double* p) const
  {
    if (mBox != nullptr) {
      return mBox->xmin <= p[0] && p[0] <= mBox->xmax && mBox->ymin <= p[1] && p[1] <= mBox->ymax;
    }
    return (sides_of(p) & AllSides) == 0 && mRegion.intersects_with_point(p);
  }

  /// Whether nothing between these corners, more than margin pixels away from them, touches the region.
  [[nodiscard]] bool excludes(const ScreenBox& box, double margin) const noexcept;
  /// Whether it holds all points between these corners and up to margin pixels away from them.
  [[nodiscard]] bool holds(const ScreenBox& box, double margin) const noexcept;

  static constexpr double Farthest = 1.0e6; // pixels

private:
  const PickBounds& mRegion;
  const PickBox* mBox = nullptr;
  const PickCircle* mCircle = nullptr;
  ScreenBox mLimits;
};

} // namespace morrow
