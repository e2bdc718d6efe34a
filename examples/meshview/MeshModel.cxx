// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "MeshModel.h"

#include <vtkActor.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>
#include <vtkProperty.h>

namespace {

/// Distinct hues of about the same brightness, light enough for dark edges and labels.
constexpr BrantColor kPalette[] = {
    BrantColor(126, 166, 205), BrantColor(222, 180, 110), BrantColor(143, 188, 139), BrantColor(214, 134, 122),
    BrantColor(171, 151, 203), BrantColor(110, 187, 187), BrantColor(226, 158, 188), BrantColor(178, 178, 118),
    BrantColor(160, 170, 178), BrantColor(198, 160, 132)};

constexpr BrantColor kNoValueColor(188, 190, 194); // of parts without the array that others are coloured by

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
  property.SetAmbient(0.2);
  property.SetDiffuse(0.82);
  property.SetPointSize(5.0F); // pixels; of meshes that have vertices
  return actor;
}

/// VTK draws polygon edges inside the polygons' own fragments, so they cannot fight for depth.
void show_polygon_edges(vtkActor& actor, const PartStyle& style)
{
  const BrantColor color = edge_color(style.color);
  actor.GetProperty()->EdgeVisibilityOn();
  actor.GetProperty()->SetEdgeColor(color.red() / 255.0, color.green() / 255.0, color.blue() / 255.0);
}

/// Lines on the surface, brought a little nearer to the eye than it.
vtkSmartPointer<vtkActor> make_edge_actor(const PartStyle& style)
{
  auto actor = make_actor(style.curved_edges, style);
  set_color(*actor->GetProperty(), edge_color(style.color));
  actor->GetProperty()->LightingOff();
  actor->GetProperty()->SetRepresentationToWireframe(); // drawn after all surfaces
  actor->GetMapper()->SetResolveCoincidentTopologyToPolygonOffset();
  actor->GetMapper()->SetRelativeCoincidentTopologyLineOffsetParameters(-1.0, -4.0);
  return actor;
}

/// The props of one part in one view.
std::vector<vtkSmartPointer<vtkProp>> make_props(vtkDataObject* data, const PartStyle& style)
{
  auto* surface = vtkPolyData::SafeDownCast(data);
  auto actor = make_actor(surface, style);
  style.scale.apply(*vtkPolyDataMapper::SafeDownCast(actor->GetMapper()), *surface);
  if (style.curved_edges != nullptr) {
    return {actor, make_edge_actor(style)};
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
  add_part(block.surface, [style](vtkDataObject* data, GView* /*view*/) { return make_props(data, style); });
}
