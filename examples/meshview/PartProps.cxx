// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "PartProps.h"

#include "GModel.h"
#include "GView.h"
#include "MeshLines.h"

#include <BrantColorTable.h>

#include <vtkActor.h>
#include <vtkInformation.h>
#include <vtkInformationIntegerKey.h>
#include <vtkNew.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>
#include <vtkProperty.h>
#include <vtkRenderer.h>

#include <algorithm>

namespace {

/// Distinct hues of about the same brightness, light enough for dark edges and labels.
constexpr BrantColor kPalette[] = {BrantColor(141, 186, 230), BrantColor(249, 202, 123),
                                   BrantColor(160, 211, 156), BrantColor(240, 150, 137),
                                   BrantColor(192, 169, 227), BrantColor(123, 209, 209),
                                   BrantColor(253, 177, 211), BrantColor(199, 199, 132),
                                   BrantColor(179, 190, 199), BrantColor(222, 179, 148)};

constexpr BrantColor kDarkGrey(64, 64, 64);     // of lines on surfaces or a light background
constexpr BrantColor kLightGrey(190, 190, 190); // of lines on a dark background

constexpr double kAmbient =
    0.22; // with the view's two lights never more than 1 in all: colours keep their hue

void set_color(vtkProperty& property, BrantColor color)
{
  property.SetColor(color.red() / 255.0, color.green() / 255.0, color.blue() / 255.0);
}

/// Edges are drawn in a dark shade of the part, so that fine meshes do not turn black.
BrantColor edge_color(BrantColor color)
{
  return BrantColor(color.red() * 3 / 10, color.green() * 3 / 10, color.blue() * 3 / 10);
}

/// Facets stay flat: the mesh itself is what its maker wants to see.
vtkSmartPointer<vtkActor> make_actor(vtkDataObject* data, const PartStyle& style, GView& view)
{
  const auto mapper = GModel::create_mapper(data, &view);
  mapper->ScalarVisibilityOff();
  style.scale.apply(*vtkPolyDataMapper::SafeDownCast(mapper), *style.surface);
  auto actor = vtkSmartPointer<vtkActor>::New();
  actor->SetMapper(mapper);
  vtkProperty& property = *actor->GetProperty();
  set_color(property, style.color);
  property.SetInterpolationToFlat();
  property.SetAmbient(kAmbient);
  property.SetDiffuse(0.68);
  return actor;
}

/// Meshes of lines or vertices have nothing else to be seen by.
void embolden(vtkActor& actor, const PartStyle& style)
{
  const BrantColor color = style.color;
  set_color(*actor.GetProperty(),
            BrantColor(color.red() * 6 / 10, color.green() * 6 / 10, color.blue() * 6 / 10));
  actor.GetProperty()->SetLineWidth(3.0F); // pixels
  actor.GetProperty()->SetPointSize(7.0F);
}

/// VTK draws polygon edges inside the polygons' own fragments, so they cannot fight for depth.
void show_polygon_edges(vtkActor& actor, const PartStyle& style)
{
  const BrantColor color = edge_color(style.color);
  actor.GetProperty()->EdgeVisibilityOn();
  actor.GetProperty()->SetEdgeColor(color.red() / 255.0, color.green() / 255.0, color.blue() / 255.0);
}

/// VTK's OpenGL does not light with the ambient colour of a renderer, so the material does. Colours by values
/// take its brightness only.
void set_ambient_light(vtkActor& actor, vtkRenderer& renderer)
{
  vtkProperty& property = *actor.GetProperty();
  const double* light = renderer.GetAmbient();
  const double* color = property.GetColor();
  const double brightest = std::max({light[0], light[1], light[2]});
  if (brightest > 0.0) {
    property.SetAmbientColor(color[0] * light[0] / brightest, color[1] * light[1] / brightest,
                             color[2] * light[2] / brightest);
  }
  property.SetAmbient(kAmbient * brightest);
}

/// Surfaces in one colour without shading.
void make_flat(vtkActor& actor)
{
  actor.GetProperty()->LightingOff();
  actor.GetProperty()->SetAmbient(1.0);
  actor.GetProperty()->SetDiffuse(0.0);
}

/// The view's render pass reads the mode.
void hide(vtkActor& actor, bool with_hidden_lines)
{
  vtkNew<vtkInformation> keys;
  keys->Set(MRUtil::RENDER_MODE(),
            with_hidden_lines ? MRUtil::RENDER_HIDDEN_LINE_DASH : MRUtil::RENDER_HIDDEN_LINE);
  actor.SetPropertyKeys(keys);
}

void set_surface(vtkActor& actor, const PartStyle& style, GView& view)
{
  switch (style.draw.surface) {
  case Surface::Shaded:
    set_ambient_light(actor, *view.get_renderer());
    break;
  case Surface::Flat:
    make_flat(actor);
    break;
  case Surface::Hidden:
    hide(actor, style.draw.hidden_lines);
    break;
  }
}

/// Are all edges drawn as part of the surface? Not those of curved cells, and not if it is not seen.
bool has_edges_of_its_own(const PartStyle& style)
{
  return style.draw.wire == Wire::All && !style.lines->is_curved() && style.draw.surface != Surface::Hidden;
}

bool has_lines_on_it(const PartStyle& style)
{
  const bool has_wire = style.draw.wire != Wire::None && !has_edges_of_its_own(style);
  return has_wire || style.draw.silhouette || style.draw.hidden_lines || style.draw.has_drawings;
}

/// What can be read on the view's background.
BrantColor ink_color(GView& view)
{
  return BrantColorTable::lookup_color(view.get_label_color_from_background());
}

/// Lines on surfaces are dark, as these are light. Where surfaces are hidden the lines are on the background.
BrantColor wire_color(const PartStyle& style, GView& view)
{
  if (style.draw.surface == Surface::Hidden && ink_color(view).red() > 127) {
    return kLightGrey;
  }
  return style.draw.wire == Wire::All ? edge_color(style.color) : kDarkGrey;
}

} // namespace

vtkSmartPointer<vtkActor> make_surface_actor(vtkDataObject* data, const PartStyle& style, GView& view)
{
  auto actor = make_actor(data, style, view);
  if (!has_polygons(style)) {
    embolden(*actor, style);
    return actor;
  }
  set_surface(*actor, style, view);
  if (has_edges_of_its_own(style)) {
    show_polygon_edges(*actor, style);
  }
  if (has_lines_on_it(style)) {
    step_back(*actor);
  }
  return actor;
}

vtkPolyData* wire_lines(const PartStyle& style)
{
  switch (style.draw.wire) {
  case Wire::All:
    return has_edges_of_its_own(style) ? nullptr : style.lines->unique_edges();
  case Wire::Unique:
    return style.lines->unique_edges();
  case Wire::Features:
    return style.lines->features();
  case Wire::None:
    break;
  }
  return nullptr;
}

vtkSmartPointer<vtkActor> make_wire_actor(vtkDataObject* data, const PartStyle& style, GView& view)
{
  return make_line_actor(data, wire_color(style, view));
}

vtkSmartPointer<vtkActor> make_outline_actor(const PartStyle& style, GView& view)
{
  return make_silhouette_actor(style.lines->outline_faces(), ink_color(view));
}

BrantColor palette_color(std::size_t number)
{
  return kPalette[number % std::size(kPalette)];
}

bool has_polygons(const PartStyle& style)
{
  return style.surface->GetNumberOfPolys() + style.surface->GetNumberOfStrips() > 0;
}
