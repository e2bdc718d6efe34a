// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "DepthProjection.h"

#include "BrantVector.h"

#include <vtkMatrix4x4.h>
#include <vtkType.h>

namespace morrow {

bool project_to_screen(const vtkMatrix4x4& world_to_clip, const ScreenFrame& frame, const BrantVector& point,
                       ScreenPoint& screen)
{
  const double world[4] = {point.x(), point.y(), point.z(), 1.0};
  double clip[4];
  vtkMatrix4x4::MultiplyPoint(world_to_clip.GetData(), world, clip);
  if (clip[3] == 0.0) {
    return false;
  }
  const double* v = frame.viewport;
  const double w = frame.width;
  const double h = frame.height;
  screen.x = v[0] * w + (v[2] - v[0]) * w * (clip[0] / clip[3] + 1.0) * 0.5;
  screen.y = v[1] * h + (v[3] - v[1]) * h * (clip[1] / clip[3] + 1.0) * 0.5;
  screen.depth = clip[2] / clip[3];
  const bool outside = screen.x > w || screen.depth < 0.0 || screen.y < 0.0 || screen.x < 0.0 || screen.y > h;
  return !outside;
}

double depth_under(const float* buffer, int width, int height, const ScreenPoint& screen)
{
  // Compared before the conversion: a coordinate that is not a number must not reach an integer.
  const bool on_a_pixel = screen.x >= 0.0 && screen.y >= 0.0 && screen.x < width && screen.y < height;
  if (!on_a_pixel) {
    return 1.0;
  }
  const auto column = static_cast<vtkIdType>(screen.x);
  const auto row = static_cast<vtkIdType>(screen.y);
  const vtkIdType row_length = static_cast<vtkIdType>(width) + 1;
  return static_cast<double>(buffer[row_length * row + column]);
}

bool is_in_front(double anchor_depth, double buffer_depth, double tolerance)
{
  return anchor_depth < 1.0 && buffer_depth + tolerance >= anchor_depth;
}

} // namespace morrow
