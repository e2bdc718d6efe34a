// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <vtkCellArray.h>
#include <vtkMatrix4x4.h>
#include <vtkPolyData.h>

#include <cstddef>
#include <vector>

/// Silhouette edges as one would write them down first: what the silhouette mapper must agree with, float for
/// float, and what its speed is measured against.
namespace morrow_test {

class LiteralSilhouette
{
public:
  static void run(vtkMatrix4x4* matrix, vtkPolyData* data, std::vector<float>& out)
  {
    out.clear();
    LiteralSilhouette(matrix, data, out).visit_cells();
  }

private:
  struct Projected
  {
    float x;
    float y;
  };

  static constexpr float kMarker = 1.0e38F; // not projected yet

  LiteralSilhouette(vtkMatrix4x4* matrix, vtkPolyData* data, std::vector<float>& out)
      : mMatrix(matrix), mData(data), mOut(out),
        mFront(static_cast<std::size_t>(data->GetNumberOfPoints()), 0),
        mBack(static_cast<std::size_t>(data->GetNumberOfPoints()), 0)
  {}

  void visit_cells()
  {
    vtkCellArray* polys = mData->GetPolys();
    if (polys->GetNumberOfCells() == 0) {
      return;
    }
    mProjected.assign(mFront.size(), {kMarker, 0.0F});
    vtkIdType count = 0;
    const vtkIdType* ids = nullptr;
    polys->InitTraversal();
    while (polys->GetNextCell(count, ids) != 0) {
      if (is_drawable(count, ids)) {
        visit(count, ids);
      }
    }
  }

  // Fewer than three points, or one that the data does not have: as if the cell were not there.
  [[nodiscard]] bool is_drawable(vtkIdType count, const vtkIdType* ids) const
  {
    if (count < 3) {
      return false;
    }
    for (vtkIdType i = 0; i < count; ++i) {
      if (ids[i] < 0 || ids[i] >= mData->GetNumberOfPoints()) {
        return false;
      }
    }
    return true;
  }

  void visit(vtkIdType count, const vtkIdType* ids)
  {
    for (vtkIdType i = 0; i < count; ++i) {
      project(ids[i]);
    }
    const Projected a = projected(ids[0]);
    const Projected b = projected(ids[1]);
    const Projected c = projected(ids[2]);
    const float s = (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
    std::vector<char>& own = s > 0 ? mFront : mBack;
    const std::vector<char>& other = s > 0 ? mBack : mFront;
    for (vtkIdType i = 0; i < count; ++i) {
      own[static_cast<std::size_t>(ids[i])] = 1;
    }
    for (vtkIdType i = 0; i < count; ++i) {
      const vtkIdType p = ids[i];
      const vtkIdType q = ids[(i + 1) % count];
      if (other[static_cast<std::size_t>(p)] != 0 && other[static_cast<std::size_t>(q)] != 0) {
        append(p);
        append(q);
      }
    }
  }

  void project(vtkIdType id)
  {
    Projected& to = mProjected[static_cast<std::size_t>(id)];
    if (to.x != kMarker) {
      return;
    }
    double point[4] = {0.0, 0.0, 0.0, 1.0};
    mData->GetPoint(id, point);
    double image[4];
    mMatrix->MultiplyPoint(point, image);
    to.x = static_cast<float>(image[0] / image[3]);
    to.y = static_cast<float>(image[1] / image[3]);
  }

  [[nodiscard]] Projected projected(vtkIdType id) const { return mProjected[static_cast<std::size_t>(id)]; }

  void append(vtkIdType id)
  {
    double point[3];
    mData->GetPoint(id, point);
    for (const double coordinate : point) {
      mOut.push_back(static_cast<float>(coordinate));
    }
  }

  vtkMatrix4x4* mMatrix;
  vtkPolyData* mData;
  std::vector<float>& mOut;
  std::vector<char> mFront;
  std::vector<char> mBack;
  std::vector<Projected> mProjected;
};

} // namespace morrow_test
