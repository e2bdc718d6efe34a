// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "morrow_base_export.h"

#include <vtkPolyDataAlgorithm.h> // superclass

/// Turns a point set (polygon data, unstructured grid, structured grid, …) into its vertices and its unique
/// edges.
///
/// The output has
/// - the input's own vtkPoints, shared, so that point ids stay, and its point data;
/// - a vertex for each point of each VTK_VERTEX and VTK_POLY_VERTEX cell, in the order of cells and points;
/// - a line for each different edge, in the order and direction in which the cells bring it first. A polyline
///   brings its pieces, a higher-order edge the straight pieces into which VTK triangulates it;
/// - the cell data of the cell that each vertex and line comes from: tuple i belongs to vertex i, tuple
///   V + j to line j, V being the number of vertices. An array with fewer tuples than there are cells counts
///   as filled up with zeros.
///
/// Time and memory grow with the number of points and edges: beside the output, 16 bytes a point and 4 an
/// edge while it runs. A million triangles take a seventh of vtkExtractEdges' time with all points kept or
/// less. Progress is reported about ten times; an abort keeps what has been made.
///
/// Without points or cells the output has the points and nothing else. Cells with too few points, with points
/// that the input does not have, without a type, and Lagrange and Bézier cells whose number of points is not
/// that of their degrees, are left out, and one error tells how many. Data sets that are no point sets
/// (images, rectilinear grids) have no points to share: the output is empty, with an error. So it is when the
/// memory does not suffice.
class MORROW_BASE_EXPORT GExtractEdges : public vtkPolyDataAlgorithm
{
public:
  static GExtractEdges* New();
  vtkTypeMacro(GExtractEdges, vtkPolyDataAlgorithm)
  void PrintSelf(ostream& os, vtkIndent indent) override;

protected:
  GExtractEdges() = default;
  ~GExtractEdges() override = default;

  int FillInputPortInformation(int port, vtkInformation* info) override;
  int RequestData(vtkInformation* request, vtkInformationVector** input_vector,
                  vtkInformationVector* output_vector) override;

private:
  GExtractEdges(const GExtractEdges&) = delete;
  void operator=(const GExtractEdges&) = delete;
};
