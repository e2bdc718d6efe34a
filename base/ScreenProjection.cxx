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

// One loop for each step, so that the compiler can take several points at once.
void ScreenProjection::project_in_place(int count, double* x, double* y, double* z) const noexcept
{
  double m[4][4]; // what is written cannot lie over it
  std::copy_n(&mMatrix[0][0], 16, &m[0][0]);
  const double left = mOrigin[0];
  const double bottom = mOrigin[1];
  const double width = mSpan[0];
  const double height = mSpan[1];
  for (int i = 0; i < count; ++i) {
    const double u = x[i] * m[0][0] + y[i] * m[0][1] + z[i] * m[0][2] + m[0][3];
    const double v = x[i] * m[1][0] + y[i] * m[1][1] + z[i] * m[1][2] + m[1][3];
    const double depth = x[i] * m[2][0] + y[i] * m[2][1] + z[i] * m[2][2] + m[2][3];
    const double w = x[i] * m[3][0] + y[i] * m[3][1] + z[i] * m[3][2] + m[3][3];
    x[i] = left + width * (u / w + 1.0) * 0.5;
    y[i] = bottom + height * (v / w + 1.0) * 0.5;
    z[i] = depth / w;
  }
}

void ScreenProjection::sizes_in(const BlockBox& box, double (&sizes)[4]) const noexcept
{
  for (int i = 0; i < 4; ++i) {
    sizes[i] = std::abs(mMatrix[i][3]);
    for (int axis = 0; axis < 3; ++axis) {
      sizes[i] += std::abs(mMatrix[i][axis]) *
                  static_cast<double>(std::max(std::abs(box.lower[axis]), std::abs(box.upper[axis])));
    }
  }
}

bool ScreenProjection::project(const BlockBox& box, ScreenBox& screen) const noexcept
{
  constexpr double infinity = std::numeric_limits<double>::infinity();
  constexpr double farthest = 1.0e6;   // pixels
  constexpr double rounding = 1.0e-14; // of the largest number that takes part
  double sizes[4];
  this->sizes_in(box, sizes);
  // x, y and w of a corner: one term for each axis, at its lower and at its upper end.
  double terms[3][3][2];
  constexpr int rows[3] = {0, 1, 3};
  for (int i = 0; i < 3; ++i) {
    for (int axis = 0; axis < 3; ++axis) {
      terms[i][axis][0] = mMatrix[rows[i]][axis] * static_cast<double>(box.lower[axis]);
      terms[i][axis][1] = mMatrix[rows[i]][axis] * static_cast<double>(box.upper[axis]);
    }
  }
  screen = {{infinity, infinity}, {-infinity, -infinity}};
  double nearest = infinity;
  for (unsigned corner = 0; corner < 8; ++corner) {
    double view[3];
    for (int i = 0; i < 3; ++i) {
      view[i] = terms[i][0][corner & 1U] + terms[i][1][(corner >> 1U) & 1U] + terms[i][2][corner >> 2U] +
                mMatrix[rows[i]][3];
    }
    nearest = std::min(nearest, view[2]);
    const double inverse = 0.5 / view[2];
    for (int axis = 0; axis < 2; ++axis) {
      const double at = mOrigin[axis] + mSpan[axis] * (view[axis] * inverse + 0.5);
      screen.lower[axis] = std::min(screen.lower[axis], at);
      screen.upper[axis] = std::max(screen.upper[axis], at);
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
