// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <vtkSmartPointer.h>

class vtkMatrix4x4;
class vtkPolyData;
class vtkUnsignedCharArray;

namespace morrow {

/// The colours of a mesh: 4 bytes (red, green, blue, alpha) for each point or each cell.
struct MeshColors
{
  vtkUnsignedCharArray* rgba = nullptr; ///< null for none; not owned
  bool per_cell = false;                ///< in VTK's order: vertices, lines, polygons, strips
};

/// A mesh in the form that every exporter can write: data sets of one kind of cell each, in world
/// coordinates, with colours per point. Null where there is no such cell.
struct ExportMesh
{
  vtkSmartPointer<vtkPolyData> faces; ///< polygons; normals and two texture coordinates if the mesh has any
  vtkSmartPointer<vtkPolyData> lines; ///< polylines
  vtkSmartPointer<vtkPolyData> vertices; ///< one cell with all of them, without colours
};

/// Makes it of any mesh and the matrix that places it in the world. Strips become triangles; faces that the
/// matrix mirrors are turned round. Cells with too few points, with a point that does not exist or with one
/// that is not finite are dropped, and so is each point that no cell uses. With colours per cell no two cells
/// share a point.
[[nodiscard]] ExportMesh make_export_mesh(vtkPolyData& mesh, const vtkMatrix4x4& placement,
                                          const MeshColors& colors);

} // namespace morrow
