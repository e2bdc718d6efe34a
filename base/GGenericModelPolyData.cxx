// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// GGenericModel::add_polydata().
#include "GGenericModel.h"

#include <algorithm>

#include "BrantVector.h"
#include "PrimitiveSlots.h"

#include <vtkCellType.h>
#include <vtkIdList.h>
#include <vtkNew.h>

using morrow::GrowingPolyData;

namespace {

constexpr int Polygons = 2;

// The points without which VTK reads beyond a cell; 0 for what is no cell of polygon data.
vtkIdType smallest_size(int type)
{
  switch (type) {
  case VTK_VERTEX:
  case VTK_POLY_VERTEX:
    return 1;
  case VTK_LINE:
  case VTK_POLY_LINE:
    return 2;
  case VTK_TRIANGLE:
  case VTK_POLYGON:
  case VTK_TRIANGLE_STRIP:
    return 3;
  case VTK_QUAD:
    return 4;
  default:
    return 0;
  }
}

bool is_whole(vtkIdList* ids, int type, vtkIdType num_points)
{
  return ids->GetNumberOfIds() >= smallest_size(type) &&
         std::all_of(ids->begin(), ids->end(), [=](vtkIdType id) { return id >= 0 && id < num_points; });
}

// data may be to itself: it grows meanwhile.
void append_points(vtkPolyData& data, vtkIdType count, BrantColor color, GrowingPolyData& to)
{
  for (vtkIdType i = 0; i < count; ++i) {
    double xyz[3];
    data.GetPoint(i, xyz);
    const BrantVector point(xyz);
    to.append_points(&point, 1);
  }
  to.append_colours(color, count);
}

// Returns how many were left out.
int append_cells(vtkPolyData& data, vtkIdType count, vtkIdType num_points, vtkIdType first,
                 GrowingPolyData& to)
{
  const vtkNew<vtkIdList> ids;
  int num_broken = 0;
  for (vtkIdType i = 0; i < count; ++i) {
    const int type = data.GetCellType(i);
    if (smallest_size(type) == 0) {
      continue;
    }
    data.GetCellPoints(i, ids);
    if (is_whole(ids, type, num_points)) {
      to.begin(type);
      to.append_cell(first, ids->GetPointer(0), ids->GetNumberOfIds());
    } else {
      ++num_broken;
    }
  }
  return num_broken;
}

} // namespace

void GGenericModel::add_polydata(vtkPolyData* data, BrantColor color, MRUtil::DrawMode mode)
{
  if (data == nullptr) {
    MRUtil::print_error("GGenericModel::add_polydata: null data\n");
    return;
  }
  const vtkSmartPointer<vtkPolyData> kept_data = data; // host code may let it go
  vtkPolyData* made = this->initialize_point_data(mode, Polygons);
  if (made == nullptr) {
    return;
  }
  auto* slot = static_cast<GrowingPolyData*>(made);
  const vtkIdType num_points = data->GetNumberOfPoints();
  const vtkIdType num_cells = data->GetNumberOfCells();
  const vtkIdType first = slot->begin(VTK_POLYGON);
  append_points(*data, num_points, color, *slot);
  const int num_broken = append_cells(*data, num_cells, num_points, first, *slot);
  slot->mark_all_modified();
  if (num_broken > 0) {
    MRUtil::print_warning("GGenericModel::add_polydata: %d broken cells left out\n", num_broken);
  }
}
