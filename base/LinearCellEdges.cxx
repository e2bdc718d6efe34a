// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "LinearCellEdges.h"

#include <vtkCellType.h>
#include <vtkGenericCell.h>
#include <vtkNew.h>

namespace morrow {

namespace {

constexpr int Types[] = {VTK_TRIANGLE,       VTK_PIXEL,   VTK_QUAD,
                         VTK_TETRA,          VTK_VOXEL,   VTK_HEXAHEDRON,
                         VTK_WEDGE,          VTK_PYRAMID, VTK_PENTAGONAL_PRISM,
                         VTK_HEXAGONAL_PRISM};

LinearCellEdges::Cell ask(vtkGenericCell& cell, int type)
{
  cell.SetCellType(type);
  const int points = static_cast<int>(cell.GetNumberOfPoints());
  for (int i = 0; i < points; ++i) {
    cell.GetPointIds()->SetId(i, i);
  }
  LinearCellEdges::Cell answer;
  answer.points = points;
  for (int i = 0; i < cell.GetNumberOfEdges(); ++i) {
    vtkCell* edge = cell.GetEdge(i);
    answer.edges.push_back({static_cast<int>(edge->GetPointId(0)), static_cast<int>(edge->GetPointId(1))});
  }
  return answer;
}

} // namespace

LinearCellEdges::LinearCellEdges()
{
  vtkNew<vtkGenericCell> cell;
  for (const int type : Types) {
    mCells.at(static_cast<std::size_t>(type)) = ask(*cell, type);
  }
}

} // namespace morrow
