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

  /// Where everything in the box is projected to, with what rounding may add. False when some of it lies
  /// behind the eye, or so near to it or so far out that this cannot be told.
  [[nodiscard]] bool project(const BlockBox& box, ScreenBox& screen) const noexcept;

private:
  double mMatrix[4][4];
  double mOrigin[2];
  double mSpan[2];
};

} // namespace morrow
