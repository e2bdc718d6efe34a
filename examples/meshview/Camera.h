// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "BrantVector.h"

#include <string>
#include <vector>

class GView;
class vtkPolyData;

/// The size of the part of its window that a view draws in, in pixels.
void drawn_size(const GView& view, int& width, int& height);

/// The names that look_from() knows: "iso", and "+x", "-x", … for the sides that face these axes.
[[nodiscard]] const std::vector<std::string>& view_names();

/// Parts of a picture's width and height, 0 to 1, that are kept free of the mesh on its sides.
struct Margins
{
  double left = 0.0;
  double right = 0.0;
  double bottom = 0.0;
  double top = 0.0;
};

/// What a picture has to hold, and where.
struct Framing
{
  std::vector<vtkPolyData*> surfaces;
  std::vector<BrantVector> points; ///< that are to be seen besides
  Margins margins;
  bool all_round = false; ///< also while the mesh turns about turn_axis()
};

/// An axis in space: a point of it and its direction.
struct Axis
{
  BrantVector origin;
  BrantVector direction;
};

/// The upright axis of the named view through the middle of the surfaces.
[[nodiscard]] Axis turn_axis(const std::string& name, const std::vector<vtkPolyData*>& surfaces);

/// Places the view's camera on the named side, as near as everything is inside the margins of the window, in
/// the projection that the view has, and renders one frame. z points up, except in the views along z, where y
/// does.
void look_from(const std::string& name, GView& view, const Framing& framing);
