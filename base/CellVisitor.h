// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <algorithm>
#include <cstdint>
#include <iterator>

#include <vtkCellArray.h>
#include <vtkCellType.h>
#include <vtkGenericCell.h>
#include <vtkNew.h>
#include <vtkPointSet.h>
#include <vtkPolyData.h>
#include <vtkUnsignedCharArray.h>
#include <vtkUnstructuredGrid.h>

namespace morrow {

/// Visits the cells of a point set in the order of their ids, reading the arrays of polygon data and
/// unstructured grids as they lie in memory.
///
/// visit(cell, type, count, ids) is called with the cell's id, VTK's cell type and the cell's point ids,
/// which are 32 or 64 bits wide; it returns whether to go on. A cell that leaves its array, that has no type,
/// or that has fewer points than polygon data allows for its kind, comes with count -1.
namespace cell_visitor {

/// The kinds of cells of polygon data, in the order of their ids.
struct PolyCells
{
  vtkCellArray* cells;
  int smallest; // number of points
  int types[3]; // with smallest points, one more, and any number beyond
};

[[nodiscard]] inline int type_of(const PolyCells& kind, std::int64_t count)
{
  const std::int64_t beyond = count - kind.smallest;
  return kind.types[beyond > 1 ? 2 : beyond > 0 ? 1 : 0];
}

/// All cells of one array. type(i, count) is the type of cell i of the array; the cells' ids begin at first.
template<typename Type, typename Visit>
bool visit_array(vtkCellArray& cells, vtkIdType first, int smallest, Type&& type, Visit&& visit)
{
  const auto walk = [&](const auto* offsets, const auto* ids, vtkIdType size) {
    const vtkIdType count = cells.GetNumberOfCells();
    for (vtkIdType i = 0; i < count; ++i) {
      const vtkIdType begin = offsets[i];
      const vtkIdType end = offsets[i + 1];
      const bool is_whole = begin >= 0 && end - begin >= smallest && end <= size;
      if (!visit(first + i, type(i, end - begin), is_whole ? end - begin : -1,
                 ids + (is_whole ? begin : 0))) {
        return false;
      }
    }
    return true;
  };
  if (cells.IsStorage64Bit()) {
    return walk(cells.GetOffsetsArray64()->GetPointer(0), cells.GetConnectivityArray64()->GetPointer(0),
                cells.GetConnectivityArray64()->GetNumberOfValues());
  }
  return walk(cells.GetOffsetsArray32()->GetPointer(0), cells.GetConnectivityArray32()->GetPointer(0),
              cells.GetConnectivityArray32()->GetNumberOfValues());
}

/// Whether the cells' ids count the four arrays through, as they do unless cells have been deleted or mixed
/// kinds been inserted one by one.
[[nodiscard]] inline bool is_in_array_order(vtkPolyData& data, const PolyCells (&kinds)[4])
{
  if (data.NeedToBuildCells()) {
    return true;
  }
  // Those of one kind can only lie in their order.
  const bool is_mixed = std::count_if(std::begin(kinds), std::end(kinds), [](const PolyCells& kind) {
                          return kind.cells->GetNumberOfCells() > 0;
                        }) > 1;
  vtkIdType cell = 0;
  for (const PolyCells& kind : kinds) {
    for (vtkIdType i = 0; i < kind.cells->GetNumberOfCells(); ++i, ++cell) {
      const int type = data.GetCellType(cell);
      const bool is_of_kind = type == kind.types[0] || type == kind.types[1] || type == kind.types[2];
      if (!is_of_kind || (is_mixed && data.GetCellIdRelativeToCellArray(cell) != i)) {
        return false;
      }
    }
  }
  return true;
}

template<typename Visit>
void visit_built_cells(vtkPolyData& data, Visit&& visit)
{
  for (vtkIdType cell = 0; cell < data.GetNumberOfCells(); ++cell) {
    vtkIdType count = 0;
    const vtkIdType* ids = nullptr;
    const int type = data.GetCellPoints(cell, count, ids);
    if (!visit(cell, type, count, ids)) {
      return;
    }
  }
}

template<typename Visit>
void visit_poly_data(vtkPolyData& data, Visit&& visit)
{
  const PolyCells kinds[4] = {
      {data.GetVerts(), 1, {VTK_VERTEX, VTK_POLY_VERTEX, VTK_POLY_VERTEX}},
      {data.GetLines(), 2, {VTK_LINE, VTK_POLY_LINE, VTK_POLY_LINE}},
      {data.GetPolys(), 3, {VTK_TRIANGLE, VTK_QUAD, VTK_POLYGON}},
      {data.GetStrips(), 3, {VTK_TRIANGLE_STRIP, VTK_TRIANGLE_STRIP, VTK_TRIANGLE_STRIP}}};
  if (!is_in_array_order(data, kinds)) {
    visit_built_cells(data, visit);
    return;
  }
  vtkIdType first = 0;
  for (const PolyCells& kind : kinds) {
    const auto type = [&kind](vtkIdType, vtkIdType count) { return type_of(kind, count); };
    if (!visit_array(*kind.cells, first, kind.smallest, type, visit)) {
      return;
    }
    first += std::max<vtkIdType>(kind.cells->GetNumberOfCells(), 0); // VTK counts -1 without any offset
  }
}

template<typename Visit>
void visit_unstructured_grid(vtkUnstructuredGrid& grid, Visit&& visit)
{
  vtkUnsignedCharArray& types = *grid.GetCellTypesArray();
  const unsigned char* first = types.GetPointer(0);
  const vtkIdType typed = types.GetNumberOfValues();
  const auto type = [first, typed](vtkIdType i, vtkIdType) {
    return i < typed ? static_cast<int>(first[i]) : int{VTK_EMPTY_CELL};
  };
  visit_array(*grid.GetCells(), 0, 0, type, [&](vtkIdType cell, int kind, vtkIdType count, const auto* ids) {
    return visit(cell, kind, cell < typed ? count : -1, ids);
  });
}

template<typename Visit>
void visit_any(vtkPointSet& data, Visit&& visit)
{
  vtkNew<vtkGenericCell> cell;
  for (vtkIdType i = 0; i < data.GetNumberOfCells(); ++i) {
    data.GetCell(i, cell);
    if (!visit(i, cell->GetCellType(), cell->GetNumberOfPoints(), cell->GetPointIds()->GetPointer(0))) {
      return;
    }
  }
}

} // namespace cell_visitor

/// See cell_visitor. The data must have cells.
template<typename Visit>
void visit_cells(vtkPointSet& data, Visit&& visit)
{
  if (auto* poly_data = vtkPolyData::SafeDownCast(&data)) {
    cell_visitor::visit_poly_data(*poly_data, visit);
  } else if (auto* grid = vtkUnstructuredGrid::SafeDownCast(&data)) {
    cell_visitor::visit_unstructured_grid(*grid, visit);
  } else {
    cell_visitor::visit_any(data, visit);
  }
}

} // namespace morrow
