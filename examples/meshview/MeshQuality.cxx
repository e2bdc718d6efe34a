// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "MeshQuality.h"

#include "BrantVector.h"

#include <vtkCellData.h>
#include <vtkCellType.h>
#include <vtkDataSet.h>
#include <vtkDoubleArray.h>
#include <vtkGenericCell.h>
#include <vtkHexahedron.h>
#include <vtkMath.h>
#include <vtkMeshQuality.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkQuad.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace {

// --- Corners of wedges and pyramids

/// A corner and its three neighbours, right-handed where the element is upright.
struct Corner
{
  int tip;
  int neighbours[3];
};

/// An element type: its corners with three edges, and those edges in the ideal element as columns of a
/// matrix.
struct Ideal
{
  std::vector<Corner> corners;
  double edges[3][3];
};

const double kHalfRoot3 = std::sqrt(3.0) / 2.0;
const double kRootHalf = std::sqrt(0.5);

/// On an equilateral triangle.
const Ideal& ideal_wedge()
{
  static const Ideal kWedge = {
      {{0, {1, 2, 3}}, {1, {2, 0, 4}}, {2, {0, 1, 5}}, {3, {5, 4, 0}}, {4, {3, 5, 1}}, {5, {4, 3, 2}}},
      {{1.0, 0.5, 0.0}, {0.0, kHalfRoot3, 0.0}, {0.0, 0.0, 1.0}}};
  return kWedge;
}

/// Half an octahedron; its tip has four edges and does not count.
const Ideal& ideal_pyramid()
{
  static const Ideal kPyramid = {{{0, {1, 3, 4}}, {1, {2, 0, 4}}, {2, {3, 1, 4}}, {3, {0, 2, 4}}},
                                 {{1.0, 0.0, 0.5}, {0.0, 1.0, 0.5}, {0.0, 0.0, kRootHalf}}};
  return kPyramid;
}

/// How a corner's edges come out of those of the ideal element: determinant and sum of squares of the matrix.
struct Distortion
{
  double determinant;
  double squares;
};

Distortion distortion_at(const Corner& corner, vtkPoints& points, const double inverse_ideal[3][3])
{
  const BrantVector tip(points.GetPoint(corner.tip));
  double edges[3][3];
  for (int i = 0; i < 3; ++i) {
    const BrantVector edge = BrantVector(points.GetPoint(corner.neighbours[i])) - tip;
    edges[0][i] = edge.x();
    edges[1][i] = edge.y();
    edges[2][i] = edge.z();
  }
  double matrix[3][3];
  vtkMath::Multiply3x3(edges, inverse_ideal, matrix);
  double squares = 0.0;
  for (const auto& row : matrix) {
    squares += row[0] * row[0] + row[1] * row[1] + row[2] * row[2];
  }
  return {vtkMath::Determinant3x3(matrix), squares};
}

/// Writers do not agree which way round these elements are, so either is upright, but not a mixture.
double shape_from_corners(const Ideal& ideal, vtkPoints& points)
{
  double inverse[3][3];
  vtkMath::Invert3x3(ideal.edges, inverse);
  double sum = 0.0;
  int upright = 0;
  for (const Corner& corner : ideal.corners) {
    const Distortion distortion = distortion_at(corner, points, inverse);
    if (distortion.determinant == 0.0) {
      return 0.0;
    }
    upright += distortion.determinant > 0.0 ? 1 : -1;
    sum += distortion.squares / (3.0 * std::cbrt(distortion.determinant * distortion.determinant));
  }
  const auto count = static_cast<int>(ideal.corners.size());
  return std::abs(upright) == count ? count / sum : 0.0;
}

// --- Elements whose points VTK has in another order

/// The same points as an element of another type; point i of it is point order[i] of the cell.
template<class Element>
vtkSmartPointer<Element> reordered(vtkCell& cell, const std::vector<int>& order)
{
  auto element = vtkSmartPointer<Element>::New();
  for (std::size_t i = 0; i < order.size(); ++i) {
    element->GetPoints()->SetPoint(static_cast<vtkIdType>(i), cell.GetPoints()->GetPoint(order[i]));
  }
  return element;
}

} // namespace

namespace MeshQuality {

const char* array_name()
{
  return "element shape";
}

const char* measure_name()
{
  return "shape (mean ratio)";
}

/// VTK's functions read the corners alone, which curved elements have first.
std::optional<double> of_cell(vtkGenericCell& cell)
{
  switch (cell.GetCellType()) {
  case VTK_TRIANGLE:
  case VTK_QUADRATIC_TRIANGLE:
  case VTK_BIQUADRATIC_TRIANGLE:
    return vtkMeshQuality::TriangleShape(&cell);
  case VTK_QUAD:
  case VTK_QUADRATIC_QUAD:
  case VTK_BIQUADRATIC_QUAD:
  case VTK_QUADRATIC_LINEAR_QUAD:
    return vtkMeshQuality::QuadShape(&cell);
  case VTK_PIXEL:
    return vtkMeshQuality::QuadShape(reordered<vtkQuad>(cell, {0, 1, 3, 2}));
  case VTK_TETRA:
  case VTK_QUADRATIC_TETRA:
    return vtkMeshQuality::TetShape(&cell);
  case VTK_HEXAHEDRON:
  case VTK_QUADRATIC_HEXAHEDRON:
  case VTK_BIQUADRATIC_QUADRATIC_HEXAHEDRON:
  case VTK_TRIQUADRATIC_HEXAHEDRON:
    return vtkMeshQuality::HexShape(&cell);
  case VTK_VOXEL:
    return vtkMeshQuality::HexShape(reordered<vtkHexahedron>(cell, {0, 1, 3, 2, 4, 5, 7, 6}));
  case VTK_WEDGE:
  case VTK_QUADRATIC_WEDGE:
  case VTK_QUADRATIC_LINEAR_WEDGE:
  case VTK_BIQUADRATIC_QUADRATIC_WEDGE:
    return shape_from_corners(ideal_wedge(), *cell.GetPoints());
  case VTK_PYRAMID:
  case VTK_QUADRATIC_PYRAMID:
  case VTK_TRIQUADRATIC_PYRAMID:
    return shape_from_corners(ideal_pyramid(), *cell.GetPoints());
  default:
    return std::nullopt;
  }
}

void add_to(vtkDataSet& mesh)
{
  vtkNew<vtkDoubleArray> array;
  array->SetName(array_name());
  array->SetNumberOfValues(mesh.GetNumberOfCells());
  vtkNew<vtkGenericCell> cell;
  for (vtkIdType i = 0; i < mesh.GetNumberOfCells(); ++i) {
    mesh.GetCell(i, cell);
    const double quality = of_cell(*cell).value_or(std::numeric_limits<double>::quiet_NaN());
    array->SetValue(i, std::clamp(quality, 0.0, 1.0)); // NaN stays; rounding may go beyond 1
  }
  mesh.GetPointData()->RemoveArray(array_name()); // which colouring would prefer
  mesh.GetCellData()->AddArray(array);
}

} // namespace MeshQuality
