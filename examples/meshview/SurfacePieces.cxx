// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "SurfacePieces.h"

#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkIdList.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>

#include <array>
#include <numeric>

/// The piece that is being made.
class SurfacePieces::Piece
{
public:
  explicit Piece(SurfacePieces& maker) : mMaker(maker) { mMaker.mPoints->Reset(); }

  /// Clears the list of new ids for the next piece.
  ~Piece()
  {
    for (const vtkIdType point : *mMaker.mPoints) {
      mMaker.mNewIds[static_cast<std::size_t>(point)] = -1;
    }
  }
  Piece(const Piece&) = delete;
  Piece& operator=(const Piece&) = delete;

  void add_cell(vtkCellArray& cells, const vtkIdType* points, vtkIdType count)
  {
    cells.InsertNextCell(static_cast<int>(count));
    for (vtkIdType i = 0; i < count; ++i) {
      cells.InsertCellPoint(new_id(points[i]));
    }
  }

  [[nodiscard]] vtkSmartPointer<vtkPolyData> with_points() const
  {
    vtkPoints* from = mMaker.mSurface.GetPoints();
    vtkNew<vtkPoints> points;
    points->SetDataType(from->GetDataType());
    points->SetNumberOfPoints(mMaker.mPoints->GetNumberOfIds());
    from->GetPoints(mMaker.mPoints, points);
    auto data = vtkSmartPointer<vtkPolyData>::New();
    data->SetPoints(points);
    return data;
  }

private:
  vtkIdType new_id(vtkIdType point)
  {
    vtkIdType& id = mMaker.mNewIds[static_cast<std::size_t>(point)];
    if (id < 0) {
      id = mMaker.mPoints->InsertNextId(point);
    }
    return id;
  }

  SurfacePieces& mMaker;
};

namespace {

/// Copies the values of these tuples to the front.
void copy_values(vtkDataSetAttributes& from, vtkIdList& ids, vtkDataSetAttributes& to)
{
  const vtkIdType count = ids.GetNumberOfIds();
  vtkNew<vtkIdList> front;
  front->SetNumberOfIds(count);
  std::iota(front->begin(), front->end(), vtkIdType(0));
  to.CopyAllOn();
  to.CopyAllocate(&from, count);
  to.CopyData(&from, &ids, front);
}

} // namespace

SurfacePieces::SurfacePieces(vtkPolyData& surface)
    : mSurface(surface), mNewIds(static_cast<std::size_t>(surface.GetNumberOfPoints()), -1)
{}

SurfacePieces::~SurfacePieces() = default;

vtkSmartPointer<vtkPolyData> SurfacePieces::cells(const Ids& ids)
{
  const std::array<vtkCellArray*, 4> kinds = {mSurface.GetVerts(), mSurface.GetLines(), mSurface.GetPolys(),
                                              mSurface.GetStrips()};
  std::array<vtkNew<vtkCellArray>, 4> lists;
  vtkNew<vtkIdList> copied;
  Piece piece(*this);
  for (const vtkIdType id : ids) {
    std::size_t kind = 0;
    vtkIdType place = id;
    while (place >= kinds[kind]->GetNumberOfCells()) {
      place -= kinds[kind++]->GetNumberOfCells();
    }
    vtkIdType count = 0;
    const vtkIdType* points = nullptr;
    kinds[kind]->GetCellAtId(place, count, points);
    piece.add_cell(*lists[kind], points, count);
    copied->InsertNextId(id);
  }
  auto data = piece.with_points();
  data->SetVerts(lists[0]);
  data->SetLines(lists[1]);
  data->SetPolys(lists[2]);
  data->SetStrips(lists[3]);
  copy_values(*mSurface.GetPointData(), *mPoints, *data->GetPointData());
  copy_values(*mSurface.GetCellData(), *copied, *data->GetCellData());
  return data;
}

vtkSmartPointer<vtkPolyData> SurfacePieces::lines(const std::vector<const Ids*>& lists)
{
  vtkNew<vtkCellArray> cells;
  Piece piece(*this);
  for (const Ids* points : lists) {
    piece.add_cell(*cells, points->data(), static_cast<vtkIdType>(points->size()));
  }
  auto data = piece.with_points();
  data->SetLines(cells);
  return data;
}
