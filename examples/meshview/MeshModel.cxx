// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "MeshModel.h"

#include "GView.h"

#include <vtkActor.h>
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

constexpr double kAmbient =
    0.22; // with the view's two lights never more than 1 in all: colours keep their hue

/// How one part is drawn. The prop function keeps it, for views that come later.
struct PartStyle
{
  BrantColor color;
  bool edges = true;
  vtkSmartPointer<vtkPolyData> curved_edges; // see MeshBlock::edges
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

/// Lines on a surface fight with it for depth, so the surface steps back and the lines step forward, by
/// amounts found by looking at pictures: more where the surface is seen at a slant.
vtkSmartPointer<vtkActor> make_edge_actor(vtkMapper& surface, const PartStyle& style)
{
  surface.SetResolveCoincidentTopologyToPolygonOffset();
  surface.SetRelativeCoincidentTopologyPolygonOffsetParameters(4.0, 4.0);
  auto actor = make_actor(style.curved_edges, style);
  actor->GetMapper()->SetResolveCoincidentTopologyToPolygonOffset();
  actor->GetMapper()->SetRelativeCoincidentTopologyLineOffsetParameters(-4.0, -40.0);
  set_color(*actor->GetProperty(), edge_color(style.color));
  actor->GetProperty()->LightingOff();
  actor->GetProperty()->SetRepresentationToWireframe(); // drawn after all surfaces
  return actor;
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
  set_ambient_light(*actor, *view.get_renderer());
  if (style.curved_edges != nullptr) {
    return {actor, make_edge_actor(*actor->GetMapper(), style)};
  }
  if (style.edges) {
    show_polygon_edges(*actor, style);
  }
  return {actor};
}

} // namespace

MeshModel::MeshModel(bool edges, const ColorScale& scale) : mEdges(edges), mScale(scale) {}

void MeshModel::add_block(const MeshBlock& block)
{
  PartStyle style;
  style.color = mScale.is_empty() ? kPalette[mBlocks.size() % std::size(kPalette)] : kNoValueColor;
  style.edges = mEdges;
  style.curved_edges = block.edges;
  style.scale = mScale;
  mBlocks.push_back(block);
  add_part(block.surface,
           [style](vtkDataObject* data, GView* view) { return make_props(data, style, *view); });
}
