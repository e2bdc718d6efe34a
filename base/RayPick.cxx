// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "RayPick.h"

#include "CellBlocks.h"
#include "CellBlocksCache.h"
#include "CellSoundness.h"
#include "MeshArrays.h"
#include "RayTube.h"
#include "TriangleSieve.h"

#include <vtkBox.h>
#include <vtkCellType.h>
#include <vtkDoubleArray.h>
#include <vtkGenericCell.h>
#include <vtkNew.h>
#include <vtkPointSet.h>
#include <vtkPoints.h>
#include <vtkTransform.h>
#include <vtkTriangle.h>

#include <algorithm>
#include <limits>
#include <memory>

namespace morrow {

namespace {

using Hits = std::vector<MultiCellPicker::SubCellPick>;

/// Asks VTK's cells.
class ExactTest
{
public:
  ExactTest(const PickRay& ray, const double* bounds, vtkTransform& to_world, vtkGenericCell& cell,
            Hits& hits)
      : mRay(ray), mSieve(ray, bounds), mToWorld(to_world), mCell(cell),
        mCorners(static_cast<vtkDoubleArray*>(mTriangle->GetPoints()->GetData())->GetPointer(0)), mHits(hits)
  {}

  /// With the cell that is there.
  void run(vtkIdType id) { this->test(mCell, id, TriangleSieve::Distance::Unclear); }

  /// With one that is made of these points.
  template<typename Number, typename Id>
  void run(vtkIdType id, int type, vtkIdType count, const Id* ids, const Number* xyz, bool may_be_direct)
  {
    mCell.SetCellType(type);
    vtkPoints* points = mCell.GetPoints();
    if (points->GetNumberOfPoints() != count) {
      points->SetNumberOfPoints(count);
      mCell.GetPointIds()->SetNumberOfIds(count);
    }
    vtkIdType* own_ids = mCell.GetPointIds()->GetPointer(0);
    double* own = static_cast<vtkDoubleArray*>(points->GetData())->GetPointer(0);
    for (vtkIdType i = 0; i < count; ++i) {
      own_ids[i] = ids[i];
      const Number* point = xyz + 3 * static_cast<vtkIdType>(ids[i]);
      std::copy(point, point + 3, own + 3 * i);
    }
    using Distance = TriangleSieve::Distance;
    this->test(mCell, id, may_be_direct ? Distance::Unclear : Distance::Far);
  }

  /// With a triangle at these points.
  template<typename Number, typename Id>
  void run_triangle(vtkIdType id, const Id* ids, const Number* xyz)
  {
    double corners[9];
    for (int i = 0; i < 3; ++i) {
      const Number* point = xyz + 3 * static_cast<vtkIdType>(ids[i]);
      std::copy(point, point + 3, corners + 3 * i);
    }
    const TriangleSieve::Distance distance = mSieve.distance_to(corners, corners + 3, corners + 6);
    if (distance != TriangleSieve::Distance::Beyond) {
      std::copy(corners, corners + 9, mCorners);
      this->test(*mTriangle, id, distance);
    }
  }

private:
  template<typename Cell>
  void test(Cell& cell, vtkIdType id, TriangleSieve::Distance distance)
  {
    using Distance = TriangleSieve::Distance;
    double t = 0.0;
    double x[3] = {0.0, 0.0, 0.0};
    double pcoords[3];
    int sub_id = 0;
    if (cell.IntersectWithLine(mRay.p1, mRay.p2, mRay.tolerance, t, x, pcoords, sub_id) == 0) {
      return;
    }
    double ignored[3];
    const bool is_direct =
        distance == Distance::Near ||
        (distance != Distance::Far &&
         cell.IntersectWithLine(mRay.p1, mRay.p2, mRay.tolerance * 0.5, t, ignored, pcoords, sub_id) != 0);
    double world[3];
    mToWorld.InternalTransformPoint(x, world); // it is up to date
    mHits.push_back(
        {static_cast<std::int32_t>(id),
         {static_cast<float>(world[0]), static_cast<float>(world[1]), static_cast<float>(world[2])},
         is_direct,
         true});
  }

  const PickRay& mRay;
  TriangleSieve mSieve;
  vtkTransform& mToWorld;
  vtkGenericCell& mCell;
  vtkNew<vtkTriangle> mTriangle;
  double* mCorners; // the triangle's
  Hits& mHits;
};

/// The cells of a mesh in arrays.
template<typename Number>
class MeshOnRay
{
public:
  MeshOnRay(const MeshArrays& mesh, const Number* xyz, const RayTube& tube, const RayTube& half_tube,
            vtkPointSet& data, vtkGenericCell& cell, ExactTest& exact)
      : mMesh(mesh), mXyz(xyz), mTube(tube), mHalfTube(half_tube), mData(data), mCell(cell), mExact(exact)
  {}

  /// Looks only into the boxes that the ray can meet.
  void visit(const CellBlocks& blocks)
  {
    using Verdict = CellBlocks::Verdict;
    blocks.walk([&](const BlockBox& box) { return mTube.may_meet(box) ? Verdict::Open : Verdict::Skip; },
                [&](vtkIdType first, vtkIdType last, Verdict verdict) {
                  if (verdict == Verdict::Open && blocks.are_known_triangles()) {
                    this->visit_triangles(first, last, [this](auto id) {
                      return mTube.sides_across(mXyz + 3 * static_cast<vtkIdType>(id));
                    });
                  } else if (verdict == Verdict::Open) {
                    this->visit(first, last, [this](auto id) {
                      return mTube.sides_of(mXyz + 3 * static_cast<vtkIdType>(id));
                    });
                  }
                  return true;
                });
  }

  /// Looks at all cells. Where they share points it looks at these first.
  void visit_all(bool are_known_triangles)
  {
    if (mMesh.connectivity_size() < mMesh.points()) {
      this->visit(0, mMesh.cells(),
                  [this](auto id) { return mTube.sides_of(mXyz + 3 * static_cast<vtkIdType>(id)); });
      return;
    }
    const auto count = static_cast<std::size_t>(mMesh.points());
    const std::unique_ptr<unsigned char[]> sides(new unsigned char[count]);
    mTube.sides_across(mXyz, count, sides.get());
    const auto sides_of = [&sides](auto id) -> unsigned { return sides[static_cast<std::size_t>(id)]; };
    if (are_known_triangles) {
      this->visit_triangles(0, mMesh.cells(), sides_of);
    } else {
      this->visit(0, mMesh.cells(), sides_of);
    }
  }

private:
  template<typename SidesOf>
  void visit_triangles(vtkIdType first, vtkIdType last, SidesOf&& sides_of)
  {
    mMesh.with_known_triangles(first, last, [&](const auto* ids) {
      for (vtkIdType id = first; id < last; ++id, ids += 3) {
        if ((sides_of(ids[0]) & sides_of(ids[1]) & sides_of(ids[2])) == 0) {
          mExact.run_triangle(id, ids, mXyz);
        }
      }
    });
  }

  template<typename SidesOf>
  void visit(vtkIdType first, vtkIdType last, SidesOf&& sides_of)
  {
    mMesh.visit(first, last, [&](vtkIdType id, int type, vtkIdType count, const auto* ids) {
      const CellForm form = form_of(type);
      if (form == CellForm::Curved) {
        this->test_curved(id, type, count);
        return true;
      }
      unsigned common = ~0U;
      for (vtkIdType i = 0; i < count && common != 0; ++i) {
        common &= sides_of(ids[i]);
      }
      if (count > 0 && (common == 0 || (form == CellForm::Boxed && this->box_may_meet(count, ids))) &&
          count >= fewest_points(type)) {
        mExact.run(id, type, count, ids, mXyz, form != CellForm::Hull || this->may_be_direct(count, ids));
      }
      return true;
    });
  }

  template<typename Id>
  [[nodiscard]] bool may_be_direct(vtkIdType count, const Id* ids) const
  {
    unsigned common = ~0U;
    for (vtkIdType i = 0; i < count; ++i) {
      common &= mHalfTube.sides_of(mXyz + 3 * static_cast<vtkIdType>(ids[i]));
    }
    return common == 0;
  }

  // VTK takes the plane of a polygon that is not plane, and all of it that lies in the polygon's bounds.
  template<typename Id>
  [[nodiscard]] bool box_may_meet(vtkIdType count, const Id* ids) const
  {
    constexpr Number infinity = std::numeric_limits<Number>::infinity();
    Number lower[3] = {infinity, infinity, infinity};
    Number upper[3] = {-infinity, -infinity, -infinity};
    for (vtkIdType i = 0; i < count; ++i) {
      const Number* point = mXyz + 3 * static_cast<vtkIdType>(ids[i]);
      for (int axis = 0; axis < 3; ++axis) {
        lower[axis] = std::min(lower[axis], point[axis]);
        upper[axis] = std::max(upper[axis], point[axis]);
      }
    }
    return mTube.may_meet(lower, upper);
  }

  void test_curved(vtkIdType id, int type, vtkIdType count)
  {
    if (count >= fewest_points(type) && count > 0 && is_sound_cell(mData, id, type)) {
      mData.GetCell(id, &mCell);
      mExact.run(id);
    }
  }

  const MeshArrays& mMesh;
  const Number* mXyz;
  const RayTube& mTube;
  const RayTube& mHalfTube; // of half the tolerance
  vtkPointSet& mData;
  vtkGenericCell& mCell;
  ExactTest& mExact;
};

/// Data without arrays of cells, and curved cells among others: one by one.
void visit_one_by_one(vtkDataSet& data, vtkGenericCell& cell, ExactTest& exact)
{
  const vtkIdType count =
      std::min(data.GetNumberOfCells(), vtkIdType{std::numeric_limits<std::int32_t>::max()} + 1);
  for (vtkIdType id = 0; id < count; ++id) {
    data.GetCell(id, &cell);
    exact.run(id);
  }
}

void visit_points_and_cells(const MeshArrays& mesh, vtkPointSet& data, vtkGenericCell& cell, ExactTest& exact)
{
  mesh.visit(0, mesh.cells(), [&](vtkIdType id, int type, vtkIdType count, const auto*) {
    if (count > 0 && count >= fewest_points(type)) {
      data.GetCell(id, &cell);
      exact.run(id);
    }
    return true;
  });
}

void visit_point_set(const PickRay& ray, const double* bounds, vtkPointSet& data, vtkGenericCell& cell,
                     CellBlocksCache& cache, ExactTest& exact)
{
  MeshArrays mesh(data);
  const std::shared_ptr<const CellBlocks> blocks = cache.blocks_of(data, mesh, true);
  if (!mesh.has_cell_arrays()) {
    visit_points_and_cells(mesh, data, cell, exact);
    return;
  }
  const bool are_triangles = blocks != nullptr && blocks->are_known_triangles();
  const bool are_round = blocks != nullptr && blocks->are_round();
  const RayTube::Reach reach = are_round ? RayTube::Reach::Round : RayTube::Reach::Axes;
  const RayTube tube(ray, bounds, reach);
  PickRay half_as_wide = ray;
  half_as_wide.tolerance *= 0.5;
  const RayTube half_tube(half_as_wide, bounds, reach);
  mesh.with_points([&](const auto* xyz) {
    MeshOnRay on_ray(mesh, xyz, tube, half_tube, data, cell, exact);
    if (blocks != nullptr && !blocks->are_scattered() && !blocks->has_curved_cells()) {
      on_ray.visit(*blocks);
    } else {
      on_ray.visit_all(are_triangles);
    }
  });
}

bool meets_bounds(const PickRay& ray, const double* of_data)
{
  double bounds[6];
  double direction[3];
  for (int i = 0; i < 3; ++i) {
    bounds[2 * i] = of_data[2 * i] - ray.tolerance;
    bounds[2 * i + 1] = of_data[2 * i + 1] + ray.tolerance;
    direction[i] = ray.p2[i] - ray.p1[i];
  }
  double entry[3];
  double t = 0.0;
  return vtkBox::IntersectBox(bounds, ray.p1, direction, entry, t) != 0;
}

} // namespace

std::vector<MultiCellPicker::SubCellPick> cells_on_ray(const PickRay& ray, vtkDataSet& data,
                                                       vtkTransform& to_world, vtkGenericCell& scratch,
                                                       CellBlocksCache& blocks)
{
  Hits hits;
  double bounds[6];
  data.GetBounds(bounds);
  if (!meets_bounds(ray, bounds)) {
    return hits;
  }
  to_world.Update();
  ExactTest exact(ray, bounds, to_world, scratch, hits);
  if (auto* points = vtkPointSet::SafeDownCast(&data)) {
    visit_point_set(ray, bounds, *points, scratch, blocks, exact);
  } else {
    visit_one_by_one(data, scratch, exact);
  }
  return hits;
}

} // namespace morrow
