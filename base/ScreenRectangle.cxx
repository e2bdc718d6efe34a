// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "ScreenRectangle.h"

#include "ScreenProjection.h"

#include <algorithm>
#include <limits>

namespace morrow {

namespace {

constexpr double Rounding = 1.0e-13; // of the largest number that takes part
constexpr double Farthest = 1.0e6;   // pixels

} // namespace

// A point is right of a side when x / w > s, where s is the side's place in view coordinates: when x - s w >
// 0.
ScreenRectangle::ScreenRectangle(const ScreenProjection& projection, const ScreenSides& sides, double depth,
                                 const BlockBox& whole)
    : mEye(), mSides()
{
  double sizes[4];
  projection.sizes_in(whole, sizes);
  const double pixels[4] = {sides.left, sides.right, sides.bottom, sides.top};
  double nearest = 1.0e-9 * sizes[3];
  for (int i = 0; i < 4; ++i) {
    const int axis = i / 2;
    const double sign = i % 2 == 0 ? 1.0 : -1.0;
    const double origin = projection.origin(axis);
    const double span = projection.span(axis);
    const double at = 2.0 * (pixels[i] - origin) / span - 1.0;
    Plane& plane = mSides[i];
    for (int k = 0; k < 3; ++k) {
      plane.normal[k] = sign * (projection.row(axis)[k] - at * projection.row(3)[k]);
    }
    plane.offset = sign * (projection.row(axis)[3] - at * projection.row(3)[3]);
    const double slack =
        Rounding * (sizes[axis] + (std::abs(at) + 2.0 + 2.0 * std::abs(origin / span)) * sizes[3]);
    plane.beyond = -slack;
    plane.within = slack + 2.0 * depth / span * sizes[3];
    // Nearer to the eye some of it might be farther out on the screen.
    nearest = std::max(nearest, std::abs(span) * sizes[axis] / Farthest);
    if (!(span > 0.0) || !(std::abs(origin) + span < Farthest)) {
      nearest = std::numeric_limits<double>::infinity();
    }
  }
  std::copy_n(projection.row(3), 3, mEye.normal);
  mEye.offset = projection.row(3)[3];
  mEye.within = nearest;
}

} // namespace morrow
