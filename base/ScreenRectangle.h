// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cmath>

#include "CellBlocks.h" // BlockBox

namespace morrow {

class ScreenProjection;

/// The sides of a rectangle on the screen, in pixels. Numbers that are none stand for no rectangle.
struct ScreenSides
{
  double left;
  double right;
  double bottom;
  double top;
};

/// A rectangle on the screen as four planes in the coordinates of a data set: it tells where boxes are
/// projected to without projecting them. Its answers are on the safe side of all rounding.
class ScreenRectangle
{
public:
  /// whole: around all boxes to come. depth: by so many pixels what is Inside lies within the sides at least;
  /// infinity where nothing is to be Inside.
  ScreenRectangle(const ScreenProjection& projection, const ScreenSides& sides, double depth,
                  const BlockBox& whole);

  enum class Place
  {
    Outside, ///< beyond one of the sides, at a distance that is not extreme
    Inside,
    Unknown
  };

  /// Of everything in the box. Unknown too when some of it lies behind the eye or near to it.
  [[nodiscard]] Place place_of(const BlockBox& box) const noexcept
  {
    double center[3];
    double half[3];
    for (int i = 0; i < 3; ++i) {
      center[i] = 0.5 * (static_cast<double>(box.upper[i]) + static_cast<double>(box.lower[i]));
      half[i] = 0.5 * (static_cast<double>(box.upper[i]) - static_cast<double>(box.lower[i]));
    }
    if (!(mEye.at(center) - mEye.reach(half) > mEye.within)) {
      return Place::Unknown;
    }
    bool is_inside = true;
    for (const Plane& plane : mSides) {
      const double at = plane.at(center);
      const double reach = plane.reach(half);
      if (at + reach < plane.beyond) {
        return Place::Outside;
      }
      is_inside = is_inside && at - reach > plane.within;
    }
    return is_inside ? Place::Inside : Place::Unknown;
  }

private:
  /// Positive towards the rectangle.
  struct Plane
  {
    double normal[3];
    double offset;
    double beyond; // below are those beyond the plane
    double within; // above are those within

    [[nodiscard]] double at(const double* p) const noexcept
    {
      return p[0] * normal[0] + p[1] * normal[1] + p[2] * normal[2] + offset;
    }
    [[nodiscard]] double reach(const double* half) const noexcept
    {
      return half[0] * std::abs(normal[0]) + half[1] * std::abs(normal[1]) + half[2] * std::abs(normal[2]);
    }
  };

  Plane mEye;
  Plane mSides[4];
};

} // namespace morrow
