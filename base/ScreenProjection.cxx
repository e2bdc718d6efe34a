// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "ScreenProjection.h"

#include <vtkMatrix4x4.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace morrow {

ScreenProjection::ScreenProjection(const vtkMatrix4x4& to_view, const ScreenFrame& frame)
{
  std::copy_n(to_view.GetData(), 16, &mMatrix[0][0]);
  const double size[2] = {static_cast<double>(frame.width), static_cast<double>(frame.height)};
  for (int i = 0; i < 2; ++i) {
    mOrigin[i] = frame.viewport[i] * size[i];
    mSpan[i] = (frame.viewport[i + 2] - frame.viewport[i]) * size[i];
  }
}

bool ScreenProjection::project(const BlockBox& box, ScreenBox& screen) const noexcept
{
  constexpr double infinity = std::numeric_limits<double>::infinity();
  constexpr double farthest = 1.0e6;   // pixels
  constexpr double rounding = 1.0e-14; // of the largest number that takes part
  double sizes[4];                     // of the terms that a coordinate is the sum of
  for (int i = 0; i < 4; ++i) {
    sizes[i] = std::abs(mMatrix[i][3]);
    for (int axis = 0; axis < 3; ++axis) {
      sizes[i] += std::abs(mMatrix[i][axis]) *
                  static_cast<double>(std::max(std::abs(box.lower[axis]), std::abs(box.upper[axis])));
    }
  }
  screen = {{infinity, infinity}, {-infinity, -infinity}};
  double nearest = infinity;
  for (unsigned corner = 0; corner < 8; ++corner) {
    const double point[3] = {static_cast<double>((corner & 1U) != 0 ? box.upper[0] : box.lower[0]),
                             static_cast<double>((corner & 2U) != 0 ? box.upper[1] : box.lower[1]),
                             static_cast<double>((corner & 4U) != 0 ? box.upper[2] : box.lower[2])};
    double at[3];
    this->project(point, at);
    nearest = std::min(nearest, point[0] * mMatrix[3][0] + point[1] * mMatrix[3][1] +
                                    point[2] * mMatrix[3][2] + mMatrix[3][3]);
    for (int axis = 0; axis < 2; ++axis) {
      screen.lower[axis] = std::min(screen.lower[axis], at[axis]);
      screen.upper[axis] = std::max(screen.upper[axis], at[axis]);
    }
  }
  const double reach = std::max({-screen.lower[0], -screen.lower[1], screen.upper[0], screen.upper[1]});
  const double span = std::abs(mSpan[0]) + std::abs(mSpan[1]);
  const double margin =
      rounding * ((std::max(sizes[0], sizes[1]) * span + sizes[3] * (reach + span)) / nearest + reach);
  for (int axis = 0; axis < 2; ++axis) {
    screen.lower[axis] -= margin;
    screen.upper[axis] += margin;
  }
  return nearest > 1.0e-9 * sizes[3] && sizes[3] < infinity && reach < farthest && margin < 1.0;
}

} // namespace morrow
