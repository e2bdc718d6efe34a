// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "MeshLines.h"

#include "GExtractEdges.h"
#include "GModel.h"
#include "GSilhouetteMapper.h"
#include "MeshFaces.h"
#include "SilhouetteFaces.h"
#include "SurfacePieces.h"

#include <vtkActor.h>
#include <vtkCleanPolyData.h>
#include <vtkMapper.h>
#include <vtkNew.h>
#include <vtkPolyData.h>
#include <vtkProperty.h>
#include <vtkTriangleFilter.h>

namespace {

constexpr float kSilhouetteWidth = 2.0F; // pixels

/// Polygons alone: the silhouette mapper passes over strips, and the cleaning filter would take them apart.
vtkSmartPointer<vtkPolyData> polygons_of(vtkPolyData& surface)
{
  auto polygons = vtkSmartPointer<vtkPolyData>::New();
  polygons->SetPoints(surface.GetPoints());
  polygons->SetPolys(surface.GetPolys());
  if (surface.GetNumberOfStrips() == 0) {
    return polygons;
  }
  polygons->SetStrips(surface.GetStrips());
  vtkNew<vtkTriangleFilter> filter;
  filter->SetInputData(polygons);
  filter->Update();
  return filter->GetOutput();
}

/// Points at the very same place become one.
vtkSmartPointer<vtkPolyData> merge_points(vtkPolyData& polygons)
{
  vtkNew<vtkCleanPolyData> filter;
  filter->SetInputData(&polygons);
  filter->SetTolerance(0.0);
  filter->ConvertPolysToLinesOff();
  filter->Update();
  return filter->GetOutput();
}

/// All edges.
vtkSmartPointer<vtkPolyData> edges_of(const MeshFaces& faces, vtkPolyData& surface)
{
  std::vector<const SurfacePieces::Ids*> lines;
  for (vtkIdType i = 0; i < faces.number_of_edges(); ++i) {
    lines.push_back(&faces.edge(i).points);
  }
  return SurfacePieces(surface).lines(lines);
}

/// One colour, whatever the lights are. Drawn after all surfaces, as all that is wireframe.
void set_ink(vtkActor& actor, BrantColor color)
{
  vtkProperty& property = *actor.GetProperty();
  property.SetColor(color.red() / 255.0, color.green() / 255.0, color.blue() / 255.0);
  property.SetAmbient(1.0);
  property.SetDiffuse(0.0);
  property.LightingOff();
  property.SetRepresentationToWireframe();
}

} // namespace

MeshLines::MeshLines(const MeshBlock& block) : mSurface(block.surface), mCurvedEdges(block.edges) {}

MeshLines::~MeshLines() = default;

vtkPolyData* MeshLines::unique_edges()
{
  if (is_curved()) {
    return mCurvedEdges;
  }
  if (mUniqueEdges == nullptr) {
    mUniqueEdges = extract_unique_edges(*mSurface);
  }
  return mUniqueEdges;
}

const MeshFaces& MeshLines::faces()
{
  if (mFaces == nullptr) {
    mFaces = std::make_unique<MeshFaces>(*mSurface);
  }
  return *mFaces;
}

vtkPolyData* MeshLines::features()
{
  if (mFeatures == nullptr) {
    mFeatures = edges_of(faces(), *mSurface);
  }
  return mFeatures;
}

vtkPolyData* MeshLines::outline_faces()
{
  if (mOutlineFaces == nullptr) {
    mOutlineFaces = silhouette_faces(*closed_surface());
  }
  return mOutlineFaces;
}

vtkPolyData* MeshLines::closed_surface()
{
  if (mClosedSurface == nullptr) {
    mClosedSurface = merge_points(*polygons_of(*mSurface));
  }
  return mClosedSurface;
}

vtkSmartPointer<vtkPolyData> extract_unique_edges(vtkDataSet& mesh)
{
  vtkNew<GExtractEdges> filter;
  filter->SetInputData(&mesh);
  filter->Update();
  return filter->GetOutput();
}

void set_lines(vtkActor& actor, vtkDataObject* lines, BrantColor color)
{
  const auto mapper = GModel::create_mapper(lines, nullptr);
  mapper->ScalarVisibilityOff();
  actor.SetMapper(mapper);
  set_ink(actor, color);
}

vtkSmartPointer<vtkActor> make_line_actor(vtkDataObject* lines, BrantColor color)
{
  auto actor = vtkSmartPointer<vtkActor>::New();
  set_lines(*actor, lines, color);
  return actor;
}

vtkSmartPointer<vtkActor> make_silhouette_actor(vtkPolyData* faces, BrantColor color)
{
  vtkNew<GSilhouetteMapper> mapper;
  mapper->SetInputDataObject(faces);
  mapper->ScalarVisibilityOff();
  auto actor = vtkSmartPointer<vtkActor>::New();
  actor->SetMapper(mapper);
  set_ink(*actor, color);
  actor->GetProperty()->SetLineWidth(kSilhouetteWidth);
  return actor;
}

void step_back(vtkActor& surface)
{
  GModel::set_polygon_offset(surface.GetMapper(), 1.0, 1.0);
}
