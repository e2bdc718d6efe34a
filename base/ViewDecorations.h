// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "CubeAxes.h"
#include "ScalarBar.h"
#include "ViewAxes.h"
#include "ViewLegend.h"
#include "ViewTitle.h"

namespace morrow {

/// What a view shows in its main renderer besides the models.
struct ViewDecorations
{
  /// Nothing is there yet. The renderer is not owned and must outlive this.
  explicit ViewDecorations(vtkRenderer& renderer);

  /// Removes everything but the title, in the order in which views always have.
  void take_down();

  /// Gives text and lines whose colour the host has not chosen one that can be read on a background of these
  /// colour ids.
  void follow_background(int background, int background2);

  ViewTitle title;
  ViewAxes axes;
  CubeAxes cube_axes;
  ViewLegend legend;
  ScalarBar scalar_bar;
};

} // namespace morrow
