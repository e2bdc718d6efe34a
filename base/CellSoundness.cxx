// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "CellSoundness.h"

#include <vtkCellType.h>
#include <vtkIdList.h>
#include <vtkIdTypeArray.h>
#include <vtkNew.h>
#include <vtkUnstructuredGrid.h>

#include <algorithm>
#include <array>
#include <limits>

namespace morrow {

namespace {

constexpr vtkIdType Never = std::numeric_limits<vtkIdType>::max();

struct NamedKind
{
  int type;
  CellForm form;
  vtkIdType fewest;
};

constexpr NamedKind Kinds[] = {
    {VTK_VERTEX, CellForm::Hull, 1},
    {VTK_POLY_VERTEX, CellForm::Hull, 1},
    {VTK_LINE, CellForm::Hull, 2},
    {VTK_POLY_LINE, CellForm::Hull, 2},
    {VTK_TRIANGLE, CellForm::Hull, 3},
    {VTK_TRIANGLE_STRIP, CellForm::Hull, 3},
    {VTK_POLYGON, CellForm::Boxed, 3},
    {VTK_PIXEL, CellForm::Boxed, 4},
    {VTK_QUAD, CellForm::Hull, 4},
    {VTK_TETRA, CellForm::Hull, 4},
    {VTK_VOXEL, CellForm::Boxed, 8},
    {VTK_HEXAHEDRON, CellForm::Hull, 8},
    {VTK_WEDGE, CellForm::Hull, 6},
    {VTK_PYRAMID, CellForm::Hull, 5},
    {VTK_PENTAGONAL_PRISM, CellForm::Boxed, 10},
    {VTK_HEXAGONAL_PRISM, CellForm::Boxed, 12},
    {VTK_QUADRATIC_EDGE, CellForm::Curved, 3},
    {VTK_QUADRATIC_TRIANGLE, CellForm::Curved, 6},
    {VTK_QUADRATIC_QUAD, CellForm::Curved, 8},
    {VTK_QUADRATIC_TETRA, CellForm::Curved, 10},
    {VTK_QUADRATIC_HEXAHEDRON, CellForm::Curved, 20},
    {VTK_QUADRATIC_WEDGE, CellForm::Curved, 15},
    {VTK_QUADRATIC_PYRAMID, CellForm::Curved, 13},
    {VTK_BIQUADRATIC_QUAD, CellForm::Curved, 9},
    {VTK_TRIQUADRATIC_HEXAHEDRON, CellForm::Curved, 27},
    {VTK_QUADRATIC_LINEAR_QUAD, CellForm::Curved, 6},
    {VTK_QUADRATIC_LINEAR_WEDGE, CellForm::Curved, 12},
    {VTK_BIQUADRATIC_QUADRATIC_WEDGE, CellForm::Curved, 18},
    {VTK_BIQUADRATIC_QUADRATIC_HEXAHEDRON, CellForm::Curved, 24},
    {VTK_BIQUADRATIC_TRIANGLE, CellForm::Curved, 7},
    {VTK_CUBIC_LINE, CellForm::Curved, 4},
    {VTK_QUADRATIC_POLYGON, CellForm::Curved, 6},
    {VTK_TRIQUADRATIC_PYRAMID, CellForm::Curved, 19},
    {VTK_CONVEX_POINT_SET, CellForm::Curved, 4},
    {VTK_POLYHEDRON, CellForm::Curved, 4},
    {VTK_LAGRANGE_CURVE, CellForm::Curved, 2},
    {VTK_LAGRANGE_TRIANGLE, CellForm::Curved, 3},
    {VTK_LAGRANGE_QUADRILATERAL, CellForm::Curved, 4},
    {VTK_LAGRANGE_TETRAHEDRON, CellForm::Curved, 4},
    {VTK_LAGRANGE_HEXAHEDRON, CellForm::Curved, 8},
    {VTK_LAGRANGE_WEDGE, CellForm::Curved, 6},
    {VTK_BEZIER_CURVE, CellForm::Curved, 2},
    {VTK_BEZIER_TRIANGLE, CellForm::Curved, 3},
    {VTK_BEZIER_QUADRILATERAL, CellForm::Curved, 4},
    {VTK_BEZIER_TETRAHEDRON, CellForm::Curved, 4},
    {VTK_BEZIER_HEXAHEDRON, CellForm::Curved, 8},
    {VTK_BEZIER_WEDGE, CellForm::Curved, 6},
};

using KindTable = std::array<CellKinds::Kind, CellKinds::Count>;

constexpr KindTable make_table()
{
  KindTable table = {};
  for (CellKinds::Kind& kind : table) {
    kind = {CellForm::Curved, Never};
  }
  for (const NamedKind& kind : Kinds) {
    table[static_cast<std::size_t>(kind.type)] = {kind.form, kind.fewest};
  }
  return table;
}

constexpr KindTable AllKinds = make_table();

/// Reads a list of faces, each the number of its points and their ids, out of an array.
bool faces_are_among(const vtkIdType* values, vtkIdType size, const vtkIdList& points)
{
  const vtkIdType* ids = const_cast<vtkIdList&>(points).GetPointer(0);
  const vtkIdType* last_id = ids + points.GetNumberOfIds();
  const vtkIdType faces = size > 0 ? values[0] : 0;
  vtkIdType at = 1;
  for (vtkIdType face = 0; face < faces; ++face) {
    const vtkIdType count = at < size ? values[at] : -1;
    if (count < 3 || count > size - at - 1) {
      return false;
    }
    const vtkIdType* corner = values + at + 1;
    if (!std::all_of(corner, corner + count,
                     [&](vtkIdType id) { return std::find(ids, last_id, id) != last_id; })) {
      return false;
    }
    at += count + 1;
  }
  return faces > 0;
}

} // namespace

const CellKinds::Kind* const CellKinds::Table = AllKinds.data();

bool is_sound_cell(vtkDataSet& data, vtkIdType id, int type)
{
  auto* grid = vtkUnstructuredGrid::SafeDownCast(&data);
  if (type != VTK_POLYHEDRON || grid == nullptr) {
    return true;
  }
  vtkIdTypeArray* faces = grid->GetFaces();
  vtkIdTypeArray* places = grid->GetFaceLocations();
  if (faces == nullptr || places == nullptr || id >= places->GetNumberOfValues()) {
    return false;
  }
  const vtkIdType place = places->GetValue(id);
  if (place < 0 || place >= faces->GetNumberOfValues()) {
    return false;
  }
  vtkNew<vtkIdList> points;
  data.GetCellPoints(id, points);
  return faces_are_among(faces->GetPointer(place), faces->GetNumberOfValues() - place, *points);
}

} // namespace morrow
