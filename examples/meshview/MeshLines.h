// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "BrantColor.h" // passed by value
#include "Mesh.h"

#include <memory>

class MeshFaces;
class vtkActor;
class vtkDataObject;
class vtkDataSet;

/// The lines that a block can be drawn with. Each kind is worked out when it is first asked for, and kept.
class MeshLines
{
public:
  explicit MeshLines(const MeshBlock& block);
  ~MeshLines();

  /// Are the edges of the surface's polygons not those of the mesh?
  [[nodiscard]] bool is_curved() const noexcept { return mCurvedEdges != nullptr; }

  /// Every edge of the mesh that is on the surface, once.
  [[nodiscard]] vtkPolyData* unique_edges();

  /// The faces of the surface and the edges between them.
  [[nodiscard]] const MeshFaces& faces();

  /// The edges of faces().
  [[nodiscard]] vtkPolyData* features();

  /// See silhouette_faces().
  [[nodiscard]] vtkPolyData* outline_faces();

private:
  /// The surface's polygons with one point where they meet, so that neighbours are seen to be such.
  [[nodiscard]] vtkPolyData* closed_surface();

  vtkSmartPointer<vtkPolyData> mSurface;
  vtkSmartPointer<vtkPolyData> mCurvedEdges; // null unless is_curved()
  vtkSmartPointer<vtkPolyData> mUniqueEdges;
  std::unique_ptr<MeshFaces> mFaces;
  vtkSmartPointer<vtkPolyData> mFeatures;
  vtkSmartPointer<vtkPolyData> mClosedSurface;
  vtkSmartPointer<vtkPolyData> mOutlineFaces;
};

/// Each different edge of the mesh as a line.
[[nodiscard]] vtkSmartPointer<vtkPolyData> extract_unique_edges(vtkDataSet& mesh);

/// Has the actor draw lines in one colour, whatever the lights are, after all surfaces.
/// lines: polygon data or a multiblock data set.
void set_lines(vtkActor& actor, vtkDataObject* lines, BrantColor color);
[[nodiscard]] vtkSmartPointer<vtkActor> make_line_actor(vtkDataObject* lines, BrantColor color);

/// Draws the silhouette of silhouette_faces().
[[nodiscard]] vtkSmartPointer<vtkActor> make_silhouette_actor(vtkPolyData* faces, BrantColor color);

/// Lines on a surface fight with it for depth, so it steps back. To be called once all lines of the actor's
/// own are set, as mesh edges.
void step_back(vtkActor& surface);
