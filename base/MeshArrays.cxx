// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "MeshArrays.h"

#include "CellVisitor.h"

#include <vtkCellArray.h>
#include <vtkCellType.h>
#include <vtkDoubleArray.h>
#include <vtkFloatArray.h>
#include <vtkIdList.h>
#include <vtkPointSet.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkUnsignedCharArray.h>
#include <vtkUnstructuredGrid.h>

#include <limits>

namespace morrow {

namespace {

constexpr vtkIdType MostCells = vtkIdType{std::numeric_limits<std::int32_t>::max()} + 1;

std::uintptr_t address(const void* pointer)
{
  return reinterpret_cast<std::uintptr_t>(pointer);
}

} // namespace

MeshArrays::MeshArrays(vtkPointSet& data) : mData(data), mAsked(vtkSmartPointer<vtkIdList>::New())
{
  this->read_points();
  if (auto* poly_data = vtkPolyData::SafeDownCast(&data)) {
    this->read_poly_data(*poly_data);
  } else if (auto* grid = vtkUnstructuredGrid::SafeDownCast(&data)) {
    this->read_grid(*grid);
  } else {
    this->limit_cells(data.GetNumberOfCells());
  }
}

MeshArrays::~MeshArrays() = default;

void MeshArrays::read_points()
{
  vtkPoints* points = mData.GetPoints();
  mPoints = points != nullptr ? points->GetNumberOfPoints() : 0;
  if (mPoints == 0) {
    return;
  }
  if (auto* floats = vtkFloatArray::SafeDownCast(points->GetData())) {
    mFloats = floats->GetPointer(0);
  } else if (auto* doubles = vtkDoubleArray::SafeDownCast(points->GetData())) {
    mDoubles = doubles->GetPointer(0);
  } else {
    mConverted.resize(static_cast<std::size_t>(mPoints) * 3);
    for (vtkIdType i = 0; i < mPoints; ++i) {
      points->GetPoint(i, &mConverted[static_cast<std::size_t>(i) * 3]);
    }
    mDoubles = mConverted.data();
  }
}

void MeshArrays::limit_cells(vtkIdType cells)
{
  mCells = std::clamp(cells, vtkIdType{0}, MostCells);
  mHasMoreCells = cells > MostCells;
}

void MeshArrays::add_part(vtkCellArray& cells, int smallest, unsigned char type, unsigned char next,
                          unsigned char beyond)
{
  Part& part = mParts[mPartCount];
  part.array = &cells;
  part.first = mPartCount > 0 ? mParts[mPartCount - 1].first + mParts[mPartCount - 1].count : 0;
  part.count = std::max(cells.GetNumberOfCells(), vtkIdType{0}); // VTK counts -1 without any offset
  part.smallest = smallest;
  part.types[0] = type;
  part.types[1] = next;
  part.types[2] = beyond;
  part.is_wide = cells.IsStorage64Bit();
  if (part.is_wide) {
    part.offsets = cells.GetOffsetsArray64()->GetPointer(0);
    part.ids = cells.GetConnectivityArray64()->GetPointer(0);
    part.size = cells.GetConnectivityArray64()->GetNumberOfValues();
  } else {
    part.offsets = cells.GetOffsetsArray32()->GetPointer(0);
    part.ids = cells.GetConnectivityArray32()->GetPointer(0);
    part.size = cells.GetConnectivityArray32()->GetNumberOfValues();
  }
  ++mPartCount;
}

void MeshArrays::read_poly_data(vtkPolyData& data)
{
  this->add_part(*data.GetVerts(), 1, VTK_VERTEX, VTK_POLY_VERTEX, VTK_POLY_VERTEX);
  this->add_part(*data.GetLines(), 2, VTK_LINE, VTK_POLY_LINE, VTK_POLY_LINE);
  this->add_part(*data.GetPolys(), 3, VTK_TRIANGLE, VTK_QUAD, VTK_POLYGON);
  this->add_part(*data.GetStrips(), 3, VTK_TRIANGLE_STRIP, VTK_TRIANGLE_STRIP, VTK_TRIANGLE_STRIP);
  this->limit_cells(mParts[3].first + mParts[3].count);
}

void MeshArrays::read_grid(vtkUnstructuredGrid& grid)
{
  vtkUnsignedCharArray* types = grid.GetCellTypesArray();
  if (grid.GetCells() == nullptr || types == nullptr) {
    return;
  }
  this->add_part(*grid.GetCells(), 0, 0, 0, 0);
  mTypeArray = types;
  mTypes = types->GetPointer(0);
  mParts[0].count = std::min(mParts[0].count, types->GetNumberOfValues()); // a cell needs both
  this->limit_cells(mParts[0].count);
}

bool MeshArrays::may_have_own_ids() const
{
  auto* data = vtkPolyData::SafeDownCast(&mData);
  return data != nullptr && !data->NeedToBuildCells();
}

void MeshArrays::settle_ids(bool may_change_ids)
{
  auto* data = vtkPolyData::SafeDownCast(&mData);
  if (data == nullptr || data->NeedToBuildCells()) {
    return;
  }
  const cell_visitor::PolyCells kinds[4] = {
      {data->GetVerts(), 1, {VTK_VERTEX, VTK_POLY_VERTEX, VTK_POLY_VERTEX}},
      {data->GetLines(), 2, {VTK_LINE, VTK_POLY_LINE, VTK_POLY_LINE}},
      {data->GetPolys(), 3, {VTK_TRIANGLE, VTK_QUAD, VTK_POLYGON}},
      {data->GetStrips(), 3, {VTK_TRIANGLE_STRIP, VTK_TRIANGLE_STRIP, VTK_TRIANGLE_STRIP}}};
  if (cell_visitor::is_in_array_order(*data, kinds)) {
    return;
  }
  if (may_change_ids) {
    data->BuildCells();
  } else {
    mPartCount = 0;
  }
}

vtkIdType MeshArrays::connectivity_size() const noexcept
{
  vtkIdType size = 0;
  for (int i = 0; i < mPartCount; ++i) {
    size += mParts[i].size;
  }
  return size;
}

std::vector<std::uintptr_t> MeshArrays::state() const
{
  vtkMTimeType newest = mData.GetMTime();
  std::vector<std::uintptr_t> state = {address(mFloats), address(mDoubles), address(mTypes),
                                       static_cast<std::uintptr_t>(mPoints)};
  if (vtkPoints* points = mData.GetPoints()) {
    newest = std::max({newest, points->GetMTime(), points->GetData()->GetMTime()});
  }
  if (mTypeArray != nullptr) {
    newest = std::max(newest, mTypeArray->GetMTime());
  }
  for (int i = 0; i < mPartCount; ++i) {
    const Part& part = mParts[i];
    newest = std::max({newest, part.array->GetMTime(), part.array->GetOffsetsArray()->GetMTime(),
                       part.array->GetConnectivityArray()->GetMTime()});
    state.insert(state.end(),
                 {address(part.offsets), address(part.ids), static_cast<std::uintptr_t>(part.count),
                  static_cast<std::uintptr_t>(part.size)});
  }
  state.push_back(static_cast<std::uintptr_t>(newest));
  return state;
}

vtkIdType MeshArrays::ask_for_cell(vtkIdType id, int& type, const vtkIdType*& ids) const
{
  mData.GetCellPoints(id, mAsked);
  type = mData.GetCellType(id);
  ids = mAsked->GetPointer(0);
  const vtkIdType count = mAsked->GetNumberOfIds();
  return this->are_points(ids, count) ? count : -1;
}

} // namespace morrow
