// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

class BrantVector;
class vtkMatrix4x4;

namespace morrow {

/// A point on the screen. x and y in pixels of the window, origin at its lower left corner; depth 0 at the
/// near plane and 1 at the far plane.
struct ScreenPoint
{
  double x;
  double y;
  double depth;
};

/// Where a renderer's picture lies: its viewport in fractions of the window (x0, y0, x1, y1), and the
/// window's width and height in pixels.
struct ScreenFrame
{
  double viewport[4];
  int width;
  int height;
};

/// Projects a world point. The matrix takes world coordinates to clip coordinates with a depth range of 0
/// to 1. False, and nothing useful in screen, when the point lies outside the window, in front of the near
/// plane, or has no projection (w = 0). The window's edges count as inside. A coordinate that is not finite
/// may give true with a depth that is not a number, which passes no later test.
bool project_to_screen(const vtkMatrix4x4& world_to_clip, const ScreenFrame& frame, const BrantVector& point,
                       ScreenPoint& screen);

/// Depth of the pixel under a screen point, in a buffer of (width + 1) × (height + 1) floats, rows bottom up,
/// whose last column and row are never read. Outside width × height pixels: 1, the far plane.
double depth_under(const float* buffer, int width, int height, const ScreenPoint& screen);

/// Whether a point at anchor_depth is seen when the nearest geometry of its pixel lies at buffer_depth. The
/// far plane itself is never seen; tolerance is in depth units.
bool is_in_front(double anchor_depth, double buffer_depth, double tolerance);

} // namespace morrow
