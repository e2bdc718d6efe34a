// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "CubeAxes.h"
#include "ScalarBar.h"
#include "ViewAxes.h"
#include "ViewLegend.h"
#include "ViewTitle.h"

#include <vtkSmartPointer.h>

namespace morrow {

/// What a view shows in its main renderer besides the models.
///
/// Members that call host code (see there) may see the view go: hold a reference to this around them.
struct ViewDecorations
{
  /// Nothing is there yet. Holds a reference to the renderer.
  explicit ViewDecorations(vtkRenderer& main_renderer);

  /// Removes everything but the title, in the order in which views always have.
  void take_down();

  /// Gives text and lines whose colour the host has not chosen one that can be read on a background of these
  /// colour ids.
  void follow_background(int background, int background2);

  vtkSmartPointer<vtkRenderer> renderer; // above those that use it
  ViewTitle title;
  ViewAxes axes;
  CubeAxes cube_axes;
  ViewLegend legend;
  ScalarBar scalar_bar;
};

} // namespace morrow
