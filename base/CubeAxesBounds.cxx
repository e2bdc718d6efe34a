// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "CubeAxesBounds.h"

#include <vtkCubeAxesActor2D.h>
#include <vtkRenderer.h>

namespace morrow {

namespace {

// VTK's marks for bounds that contain nothing.
constexpr double NothingMinimum = 1e38;
constexpr double NothingMaximum = -1e38;

} // namespace

void fit_cube_axes(vtkCubeAxesActor2D& cube_axes, vtkRenderer& renderer)
{
  cube_axes.SetBounds(NothingMinimum, NothingMaximum, NothingMinimum, NothingMaximum, NothingMinimum,
                      NothingMaximum);
  double bounds[6];
  renderer.ComputeVisiblePropBounds(bounds);
  if (bounds[0] == NothingMinimum || bounds[0] > bounds[1]) {
    for (int axis = 0; axis < 3; ++axis) {
      bounds[2 * axis] = 0.5;
      bounds[2 * axis + 1] = -0.5;
    }
  }
  cube_axes.SetBounds(bounds);
}

} // namespace morrow
