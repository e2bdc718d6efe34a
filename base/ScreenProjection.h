// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "CellBlocks.h"      // BlockBox
#include "DepthProjection.h" // ScreenFrame

class vtkMatrix4x4;

namespace morrow {

/// A rectangle on the screen, in pixels.
struct ScreenBox
{
  double lower[2];
  double upper[2];
};

/// Projects the points of a data set to the screen, with the operations of vtkMatrix4x4::MultiplyPoint() and
/// MRPickUtil::view_to_display() in their order, so that the numbers are the same to the last bit.
class ScreenProjection
{
public:
  ScreenProjection(const vtkMatrix4x4& to_view, const ScreenFrame& frame);

  /// x and y in pixels, then the depth.
  template<typename Number>
  void project(const Number* point, double (&screen)[3]) const noexcept
  {
    double view[4];
    for (int i = 0; i < 4; ++i) {
      view[i] = static_cast<double>(point[0]) * mMatrix[i][0] +
                static_cast<double>(point[1]) * mMatrix[i][1] +
                static_cast<double>(point[2]) * mMatrix[i][2] + mMatrix[i][3];
    }
    for (int i = 0; i < 2; ++i) {
      screen[i] = mOrigin[i] + mSpan[i] * (view[i] / view[3] + 1.0) * 0.5;
    }
    screen[2] = view[2] / view[3];
  }

  /// The same without the depth, which becomes 0.
  template<typename Number>
  void project_flat(const Number* point, double (&screen)[3]) const noexcept
  {
    const auto x = static_cast<double>(point[0]);
    const auto y = static_cast<double>(point[1]);
    const auto z = static_cast<double>(point[2]);
    const double w = x * mMatrix[3][0] + y * mMatrix[3][1] + z * mMatrix[3][2] + mMatrix[3][3];
    for (int i = 0; i < 2; ++i) {
      const double at = x * mMatrix[i][0] + y * mMatrix[i][1] + z * mMatrix[i][2] + mMatrix[i][3];
      screen[i] = mOrigin[i] + mSpan[i] * (at / w + 1.0) * 0.5;
    }
    screen[2] = 0.0;
  }

  /// The same as project() for many points, 3 × count numbers; x, y and depth have count numbers each.
  template<typename Number>
  void project(const Number* points, int count, double* x, double* y, double* depth) const noexcept
  {
    for (int i = 0; i < count; ++i) {
      x[i] = static_cast<double>(points[3 * i]);
      y[i] = static_cast<double>(points[3 * i + 1]);
      depth[i] = static_cast<double>(points[3 * i + 2]);
    }
    this->project_in_place(count, x, y, depth);
  }

  /// Where everything in the box is projected to, with what rounding may add. False when some of it lies
  /// behind the eye, or so near to it or so far out that this cannot be told.
  [[nodiscard]] bool project(const BlockBox& box, ScreenBox& screen) const noexcept;

  /// Row i of the matrix: 4 numbers.
  [[nodiscard]] const double* row(int i) const noexcept { return mMatrix[i]; }
  /// Pixels: where x (0) or y (1) begins, and how far it reaches.
  [[nodiscard]] double origin(int axis) const noexcept { return mOrigin[axis]; }
  [[nodiscard]] double span(int axis) const noexcept { return mSpan[axis]; }

  /// For each of the view coordinates of points in the box, what the terms that it is the sum of come to at
  /// most.
  void sizes_in(const BlockBox& box, double (&sizes)[4]) const noexcept;

private:
  void project_in_place(int count, double* x, double* y, double* z) const noexcept;

  double mMatrix[4][4];
  double mOrigin[2];
  double mSpan[2];
};

} // namespace morrow
