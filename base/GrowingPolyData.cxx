// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "GrowingPolyData.h"

#include <algorithm>
#include <type_traits>

#include "BrantColor.h"
#include "BrantVector.h"

#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkCellType.h>
#include <vtkFloatArray.h>
#include <vtkIdList.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyDataInternals.h>

namespace morrow {

namespace {

constexpr int NumChannels = 4;

vtkSmartPointer<vtkPoints> make_points()
{
  auto points = Stamped<vtkPoints>::make();
  points->SetData(GrowingArray<vtkFloatArray>::make(3));
  return points;
}

vtkSmartPointer<vtkCellArray> make_cells()
{
  auto cells = Stamped<vtkCellArray>::make();
  const auto offsets = GrowingArray<vtkTypeInt64Array>::make(1);
  offsets->push(0);
  cells->SetData(offsets.Get(), GrowingArray<vtkTypeInt64Array>::make(1).Get());
  return cells;
}

// What VTK takes a cell for when all it knows is how many points it has and in which array it is.
int type_by_size(int type, vtkIdType count)
{
  switch (type) {
  case VTK_VERTEX:
    return count == 1 ? VTK_VERTEX : VTK_POLY_VERTEX;
  case VTK_LINE:
    return count == 2 ? VTK_LINE : VTK_POLY_LINE;
  case VTK_POLYGON:
    return count == 3 ? VTK_TRIANGLE : count == 4 ? VTK_QUAD : VTK_POLYGON;
  default:
    return VTK_EMPTY_CELL;
  }
}

} // namespace

// No type macro, deliberately: the class is seen as vtkPolyData, and vtkPolyData are made from it.
vtkSmartPointer<GrowingPolyData> GrowingPolyData::make(ColourBinding binding)
{
  auto* data = new GrowingPolyData(binding);
  data->InitializeObjectBase();
  return vtkSmartPointer<GrowingPolyData>::Take(data);
}

GrowingPolyData::GrowingPolyData(ColourBinding binding) : mBinding(binding)
{
  this->Allocate(1, 100);
  this->Cells = nullptr;
  this->SetVerts(make_cells());
  this->SetLines(make_cells());
  this->SetPolys(make_cells());
  this->SetStrips(make_cells());
  this->find_points();
  this->find_colours();
}

GrowingPolyData::~GrowingPolyData() = default;

void GrowingPolyData::set_sharer(vtkPolyData* data)
{
  mSharer = data;
}

// ---------------------------------------------------------------------------------------------------------
// Arrays

// Whether all is our own, and where it was the last time. Inline, as everything that a single primitive
// needs: calls are what most of its time would go into.
inline bool GrowingPolyData::has_found(int cell_type) const
{
  const Target& target = mTarget;
  return cell_type == mCellType && this->Points == mPoints.Get() && mCoordinates != nullptr &&
         mPoints->GetData() == mCoordinates && target.ids != nullptr && target.offsets != nullptr &&
         target.place->Get() == target.cells.Get() && target.cells->IsStorage64Bit() &&
         target.cells->GetConnectivityArray64() == target.ids &&
         target.cells->GetOffsetsArray64() == target.offsets &&
         this->coloured()->vtkObject::GetMTime() == mColouredTime;
}

vtkIdType GrowingPolyData::begin(int cell_type)
{
  if (this->has_found(cell_type)) {
    return mCoordinates->num_values() / 3;
  }
  mCellType = cell_type;
  if (this->Points == nullptr || this->Points != mPoints || mPoints->GetData() != mCoordinates) {
    this->find_points();
  }
  this->find_cells();
  if (this->coloured()->vtkObject::GetMTime() != mColouredTime) {
    this->find_colours();
  }
  return mCoordinates != nullptr ? mCoordinates->num_values() / 3 : mPoints->GetNumberOfPoints();
}

void GrowingPolyData::find_points()
{
  if (this->Points == nullptr) {
    this->SetPoints(make_points());
  }
  mPoints = this->Points;
  mOwnPoints = dynamic_cast<Stamped<vtkPoints>*>(mPoints.Get());
  mCoordinates = dynamic_cast<GrowingArray<vtkFloatArray>*>(mPoints->GetData());
}

void GrowingPolyData::find_cells()
{
  vtkSmartPointer<vtkCellArray>& cells = this->cell_array();
  if (cells == nullptr) {
    cells = make_cells();
    this->Cells = nullptr;
  }
  const bool is_wide = cells->IsStorage64Bit();
  vtkTypeInt64Array* ids = is_wide ? cells->GetConnectivityArray64() : nullptr;
  vtkTypeInt64Array* offsets = is_wide ? cells->GetOffsetsArray64() : nullptr;
  mTarget.place = &cells;
  if (cells != mTarget.cells || ids != mTarget.ids || offsets != mTarget.offsets) {
    mTarget.cells = cells;
    mTarget.own = dynamic_cast<Stamped<vtkCellArray>*>(cells.Get());
    mTarget.ids = dynamic_cast<Ids*>(ids);
    mTarget.offsets = dynamic_cast<Ids*>(offsets);
  }
}

vtkSmartPointer<vtkCellArray>& GrowingPolyData::cell_array()
{
  switch (mCellType) {
  case VTK_VERTEX:
  case VTK_POLY_VERTEX:
    return this->Verts;
  case VTK_LINE:
  case VTK_POLY_LINE:
    return this->Lines;
  case VTK_TRIANGLE_STRIP:
    return this->Strips;
  default:
    return this->Polys;
  }
}

inline vtkDataSetAttributes* GrowingPolyData::coloured() const
{
  return mBinding == ColourBinding::Cells ? static_cast<vtkDataSetAttributes*>(this->CellData)
                                          : static_cast<vtkDataSetAttributes*>(this->PointData);
}

void GrowingPolyData::find_colours()
{
  vtkDataSetAttributes* attributes = this->coloured();
  mColours = dynamic_cast<GrowingArray<vtkUnsignedCharArray>*>(attributes->GetAbstractArray("Color"));
  if (mColours == nullptr || mColours->GetNumberOfComponents() != NumChannels) {
    this->make_colours();
  }
  mColouredTime = attributes->vtkObject::GetMTime();
}

// What is there keeps its colours; where it has none, those of what was given none.
void GrowingPolyData::make_colours()
{
  vtkDataSetAttributes* attributes = this->coloured();
  const vtkSmartPointer<vtkDataArray> before = attributes->GetArray("Color");
  mColours = GrowingArray<vtkUnsignedCharArray>::make(NumChannels);
  mColours->SetName("Color");
  if (before != nullptr && before->GetNumberOfComponents() == NumChannels) {
    mColours->DeepCopy(before);
  } else {
    const bool by_cells = mBinding == ColourBinding::Cells;
    this->append_colours(BRANT_DEFAULT_COLOR,
                         by_cells ? this->GetNumberOfCells() : this->GetNumberOfPoints());
  }
  attributes->SetScalars(mColours);
}

// ---------------------------------------------------------------------------------------------------------
// Appending

void GrowingPolyData::append_points(const BrantVector* points, vtkIdType count)
{
  if (mCoordinates == nullptr) {
    this->append_foreign_points(points, count);
  } else {
    this->write_points(points, count);
  }
}

template<typename Count>
inline void GrowingPolyData::write_points(const BrantVector* points, Count count)
{
  float* to = mCoordinates->extend(3 * count);
  for (vtkIdType i = 0; i < count; ++i) {
    *to++ = static_cast<float>(points[i].x());
    *to++ = static_cast<float>(points[i].y());
    *to++ = static_cast<float>(points[i].z());
  }
}

void GrowingPolyData::append_foreign_points(const BrantVector* points, vtkIdType count)
{
  std::for_each(points, points + count,
                [this](const BrantVector& point) { mPoints->InsertNextPoint(point.data()); });
}

template<typename IdOf>
void GrowingPolyData::append_cell_of(vtkIdType count, IdOf&& id_of)
{
  this->note_cell(count);
  if (mTarget.ids == nullptr || mTarget.offsets == nullptr) {
    this->append_foreign_cell(count, id_of);
  } else {
    this->write_cell(count, id_of);
  }
}

template<typename Count, typename IdOf>
inline void GrowingPolyData::write_cell(Count count, IdOf&& id_of)
{
  vtkTypeInt64* to = mTarget.ids->extend(count);
  for (vtkIdType i = 0; i < count; ++i) {
    to[i] = id_of(i);
  }
  mTarget.offsets->push(mTarget.ids->num_values());
}

template<typename IdOf>
void GrowingPolyData::append_foreign_cell(vtkIdType count, IdOf&& id_of)
{
  const vtkNew<vtkIdList> list;
  for (vtkIdType i = 0; i < count; ++i) {
    list->InsertNextId(id_of(i));
  }
  mTarget.cells->InsertNextCell(list);
}

// Cells by number, with their types, are kept only where they are not what VTK makes of the arrays when it is
// asked: that is the case for as long as all cells are in one array and of the type for their number of
// points.
inline bool GrowingPolyData::is_implied(vtkIdType count) const
{
  return this->Cells == nullptr && mBinding == ColourBinding::Cells &&
         type_by_size(mCellType, count) == mCellType;
}

void GrowingPolyData::note_cell(vtkIdType count)
{
  if (this->is_implied(count)) {
    return;
  }
  if (this->Cells == nullptr) {
    this->BuildCells();
  }
  this->Cells->InsertNextCell(mTarget.cells->GetNumberOfCells(), static_cast<VTKCellType>(mCellType));
}

void GrowingPolyData::append_cell(vtkIdType first, const int* ids, vtkIdType count)
{
  this->append_cell_of(count, [=](vtkIdType i) { return first + ids[i]; });
}

void GrowingPolyData::append_cell(vtkIdType first, const vtkIdType* ids, vtkIdType count)
{
  this->append_cell_of(count, [=](vtkIdType i) { return first + ids[i]; });
}

void GrowingPolyData::append_sequence(vtkIdType first, vtkIdType count)
{
  this->append_cell_of(count, [=](vtkIdType i) { return first + i; });
}

void GrowingPolyData::append_vertices(vtkIdType first, vtkIdType count)
{
  for (vtkIdType i = first; i < first + count; ++i) {
    this->append_sequence(i, 1);
  }
}

void GrowingPolyData::append_colours(const BrantColor& colour, vtkIdType count)
{
  unsigned char* to = mColours->extend(NumChannels * count);
  for (vtkIdType i = 0; i < count; ++i) {
    *to++ = colour.red();
    *to++ = colour.green();
    *to++ = colour.blue();
    *to++ = colour.alpha();
  }
}

template<typename Count>
inline void GrowingPolyData::write_new_cell(const BrantVector* points, Count count)
{
  const vtkIdType first = mCoordinates->num_values() / 3;
  this->write_points(points, count);
  this->write_cell(count, [=](vtkIdType i) { return first + i; });
}

void GrowingPolyData::append_one(int cell_type, const BrantVector* points, vtkIdType count,
                                 const BrantColor& colour)
{
  if (!this->has_found(cell_type) || !this->is_implied(count)) {
    const vtkIdType first = this->begin(cell_type);
    this->append_points(points, count);
    this->append_sequence(first, count);
  } else if (count == 1) { // loops of a known length
    this->write_new_cell(points, std::integral_constant<int, 1>());
  } else if (count == 2) {
    this->write_new_cell(points, std::integral_constant<int, 2>());
  } else if (count == 4) {
    this->write_new_cell(points, std::integral_constant<int, 4>());
  } else {
    this->write_new_cell(points, count);
  }
  this->append_colours(colour, 1);
  this->mark_modified();
}

// Of somebody else's objects it cannot be told.
inline bool GrowingPolyData::is_observed() const
{
  return this->SubjectHelper != nullptr || mTarget.own == nullptr || mTarget.own->is_observed() ||
         mOwnPoints == nullptr || mOwnPoints->is_observed() || mCoordinates == nullptr ||
         mCoordinates->is_observed() || mColours->is_observed();
}

// Held meanwhile: an observer may clear the model, or replace the arrays.
void GrowingPolyData::tell_observers()
{
  const vtkSmartPointer<vtkObject> marked[] = {mTarget.cells.Get(), mColours.Get(), mPoints.Get(), this};
  for (const auto& object : marked) {
    object->Modified(); // points tell their array
  }
}

// One time for all: taking it is what Modified() spends most on.
void GrowingPolyData::mark_modified()
{
  if (mSharer != nullptr && !mSharer->NeedToBuildCells()) {
    mSharer->DeleteCells();
  }
  if (this->is_observed()) {
    this->tell_observers();
    return;
  }
  vtkTimeStamp now;
  now.Modified();
  mTarget.own->stamp(now);
  mColours->stamp(now);
  mCoordinates->stamp(now);
  mOwnPoints->stamp(now);
  this->MTime = now;
}

void GrowingPolyData::mark_all_modified()
{
  const vtkSmartPointer<GrowingPolyData> kept = this;
  for (const auto& cells : {this->Verts, this->Lines, this->Polys, this->Strips}) {
    if (cells != nullptr) {
      cells->Modified();
    }
  }
  this->mark_modified();
}

} // namespace morrow
