// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

class vtkCubeAxesActor2D;
class vtkRenderer;

namespace morrow {

/// Puts the cube axes around everything visible in the renderer, themselves not counted. With nothing visible
/// the bounds become (0.5, -0.5) on each axis, minimum above maximum on purpose: the axes then draw nothing.
void fit_cube_axes(vtkCubeAxesActor2D& cube_axes, vtkRenderer& renderer);

} // namespace morrow
