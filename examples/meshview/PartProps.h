// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "ColorScale.h"
#include "DrawStyle.h"

#include <BrantColor.h>

#include <memory>

class GView;
class MeshLines;
class vtkActor;
class vtkDataObject;

/// How one block is drawn. Prop functions keep it, for views that come later.
struct PartStyle
{
  vtkSmartPointer<vtkPolyData> surface;
  std::shared_ptr<MeshLines> lines;
  BrantColor color;
  DrawStyle draw;
  ColorScale scale;
};

/// Draws the block's surface. data: the surface, or a multiblock data set of the pieces of it.
[[nodiscard]] vtkSmartPointer<vtkActor> make_surface_actor(vtkDataObject* data, const PartStyle& style,
                                                           GView& view);

/// The lines that are drawn as such; null if there are none. All edges are part of the surface if it is seen
/// and has them.
[[nodiscard]] vtkPolyData* wire_lines(const PartStyle& style);

/// Draws lines on the surface as the style draws its wire. data: polygon data or a multiblock data set.
[[nodiscard]] vtkSmartPointer<vtkActor> make_wire_actor(vtkDataObject* data, const PartStyle& style,
                                                        GView& view);

/// Draws the block's outline.
[[nodiscard]] vtkSmartPointer<vtkActor> make_outline_actor(const PartStyle& style, GView& view);

/// Colours for things side by side, one after the other; after the last one the first.
[[nodiscard]] BrantColor palette_color(std::size_t number);

/// Has the block anything but lines and vertices?
[[nodiscard]] bool has_polygons(const PartStyle& style);
