// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "MeshModel.h"

#include "GView.h"
#include "MeshLines.h"

#include <BrantColorTable.h>

#include <vtkActor.h>
#include <vtkInformation.h>
#include <vtkInformationIntegerKey.h>
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

constexpr BrantColor kNoValueColor(208, 210, 214); // of parts without the array that others are coloured by

constexpr BrantColor kDarkGrey(64, 64, 64);     // of lines on surfaces or a light background
constexpr BrantColor kLightGrey(190, 190, 190); // of lines on a dark background

constexpr double kAmbient =
    0.22; // with the view's two lights never more than 1 in all: colours keep their hue

/// How one part is drawn. The prop function keeps it, for views that come later.
struct PartStyle
{
  BrantColor color;
  DrawStyle draw;
  std::shared_ptr<MeshLines> lines;
  ColorScale scale;
};

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
vtkSmartPointer<vtkActor> make_actor(vtkPolyData* data, const PartStyle& style)
{
  vtkNew<vtkPolyDataMapper> mapper;
  mapper->SetInputData(data);
  mapper->ScalarVisibilityOff();
  mapper->StaticOn(); // the data never change, so frames need not ask
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

/// The lines that are drawn as such, null for none. All edges are part of the surface if it is seen and has
/// them.
vtkPolyData* wire_lines(const PartStyle& style)
{
  switch (style.draw.wire) {
  case Wire::All:
    return style.lines->is_curved() || style.draw.surface == Surface::Hidden ? style.lines->unique_edges()
                                                                             : nullptr;
  case Wire::Unique:
    return style.lines->unique_edges();
  case Wire::Features:
    return style.lines->features();
  case Wire::None:
    break;
  }
  return nullptr;
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

/// The props of one part in one view.
std::vector<vtkSmartPointer<vtkProp>> make_props(vtkDataObject* data, const PartStyle& style, GView& view)
{
  auto* surface = vtkPolyData::SafeDownCast(data);
  auto actor = make_actor(surface, style);
  style.scale.apply(*vtkPolyDataMapper::SafeDownCast(actor->GetMapper()), *surface);
  if (surface->GetNumberOfPolys() + surface->GetNumberOfStrips() == 0) {
    embolden(*actor, style);
    return {actor};
  }
  set_surface(*actor, style, view);
  std::vector<vtkSmartPointer<vtkProp>> props = {actor};
  if (vtkPolyData* lines = wire_lines(style)) {
    props.push_back(make_line_actor(lines, wire_color(style, view)));
  } else if (style.draw.wire == Wire::All) {
    show_polygon_edges(*actor, style);
  }
  if (style.draw.silhouette) {
    props.push_back(make_silhouette_actor(style.lines->outline_faces(), ink_color(view)));
  }
  if (props.size() > 1 || style.draw.hidden_lines || style.draw.has_drawings) {
    step_back(*actor);
  }
  return props;
}

} // namespace

MeshModel::MeshModel(const DrawStyle& style, const ColorScale& scale) : mStyle(style), mScale(scale) {}

MeshModel::~MeshModel() = default;

void MeshModel::add_block(const MeshBlock& block)
{
  mBlocks.push_back(block);
  mLines.push_back(std::make_shared<MeshLines>(block));
  show(mBlocks.size() - 1);
}

void MeshModel::show(std::size_t block)
{
  PartStyle style;
  style.color = mScale.is_empty() ? kPalette[block % std::size(kPalette)] : kNoValueColor;
  style.draw = mStyle;
  style.lines = mLines[block];
  style.scale = mScale;
  add_part(mBlocks[block].surface,
           [style](vtkDataObject* data, GView* view) { return make_props(data, style, *view); });
}

/// Each part goes and comes back with props in the new style; labels stay. Unhooked, this takes time in
/// proportion to the number of parts.
void MeshModel::set_style(const DrawStyle& style)
{
  mStyle = style;
  unhook_from_views();
  for (std::size_t i = 0; i < mBlocks.size(); ++i) {
    remove_part(mBlocks[i].surface);
    show(i);
  }
  hook_to_views();
}
