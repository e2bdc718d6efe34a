// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "MeshPicker.h"

#include "MeshModel.h"
#include "PickTargets.h"

#include <MRPickUtil.h>
#include <PickBounds.h>

#include <vtkActor.h>
#include <vtkCamera.h>
#include <vtkIdList.h>
#include <vtkLine.h>
#include <vtkMapper.h>
#include <vtkMath.h>
#include <vtkMatrix4x4.h>
#include <vtkPolyData.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <map>

namespace {

using CellPick = MultiCellPicker::CellPick;
using SubCellPick = MultiCellPicker::SubCellPick;
using Point = std::array<double, 3>;

constexpr double kReach = 0.01;       // of edges and nodes, of the window's diagonal
constexpr double kReachOfArea = 1e-6; // of what is under the cursor itself
constexpr double kReachOfRay = 0.005; // of edges and nodes, of the length of a ray in space
constexpr float kHiddenRank = 2.0F;   // behind all that is seen, 0 to 1 for direct and 1 to 2 for other hits

/// Where a ray has hit an entity.
struct Place
{
  float point[3];
  double depth;  ///< how far along the ray, 0 to 1
  double offset; ///< how far beside it, 0 to 1 for what is in reach
};

/// VTK gives the point of the ray that is next to a line, which is not on the line.
void move_to_line(const CellPick& record, vtkIdType cell, Point& point)
{
  vtkNew<vtkIdList> ends;
  record.DataSet->GetCellPoints(cell, ends);
  if (record.DataSet->GetCellType(cell) == VTK_LINE) {
    Point p1 = {record.P1[0], record.P1[1], record.P1[2]};
    Point p2 = {record.P2[0], record.P2[1], record.P2[2]};
    Point a;
    Point b;
    Point on_ray;
    double t[2];
    record.DataSet->GetPoint(ends->GetId(0), a.data());
    record.DataSet->GetPoint(ends->GetId(1), b.data());
    vtkLine::DistanceBetweenLineSegments(p1.data(), p2.data(), a.data(), b.data(), on_ray.data(),
                                         point.data(), t[0], t[1]);
  }
}

Place place_of(const CellPick& record, const SubCellPick& hit)
{
  Point p1 = {record.P1[0], record.P1[1], record.P1[2]};
  Point p2 = {record.P2[0], record.P2[1], record.P2[2]};
  Point point = {hit.Point[0], hit.Point[1], hit.Point[2]};
  Point on_ray;
  Place place{};
  move_to_line(record, hit.CellId, point);
  const double squared = DistanceToLine(point.data(), p1.data(), p2.data(), place.depth, on_ray.data());
  place.offset = record.Tolerance > 0.0 ? std::min(std::sqrt(squared) / record.Tolerance, 1.0) : 0.0;
  std::transform(point.begin(), point.end(), place.point, [](double x) { return static_cast<float>(x); });
  return place;
}

/// How far along the ray the first surface is; infinite without one.
double front_of(const MultiCellPicker& surfaces)
{
  double front = std::numeric_limits<double>::infinity();
  for (const CellPick* record : surfaces.get_cell_picks()) {
    for (const SubCellPick& hit : record->SubPicks) {
      front = std::min(front, place_of(*record, hit).depth);
    }
  }
  return front;
}

/// A line in space is picked in as vtkPicker does along a line of sight.
void pick_along(MultiCellPicker& picker, const double* from, const double* to, double reach, vtkActor& actor)
{
  picker.Initialize();
  picker.IntersectWithLine(from, to, reach, nullptr, &actor, actor.GetMapper());
}

/// Takes points to the screen as the region pick does.
class Screen
{
public:
  explicit Screen(vtkRenderer& renderer)
  {
    vtkMatrix4x4* matrix = renderer.GetActiveCamera()->GetCompositeProjectionTransformMatrix(
        renderer.GetTiledAspectRatio(), 0.0, 1.0);
    mMatrix->DeepCopy(matrix);
    std::copy_n(renderer.GetRenderWindow()->GetSize(), 2, mSize);
    renderer.GetViewport(mViewport);
  }

  [[nodiscard]] bool has_inside(vtkPolyData& data, vtkIdType cell, const PickBounds& bounds) const
  {
    vtkNew<vtkIdList> points;
    data.GetCellPoints(cell, points);
    return std::all_of(points->begin(), points->end(), [&](vtkIdType point) {
      double place[4] = {0.0, 0.0, 0.0, 1.0};
      data.GetPoint(point, place);
      mMatrix->MultiplyPoint(place, place);
      const double view[3] = {place[0] / place[3], place[1] / place[3], place[2] / place[3]};
      double display[3] = {};
      MRPickUtil::view_to_display(view, display, mSize, mViewport);
      return bounds.intersects_with_point(display);
    });
  }

private:
  vtkNew<vtkMatrix4x4> mMatrix;
  int mSize[2] = {};
  double mViewport[4] = {};
};

/// What a region has met of an entity.
struct Met
{
  MeshEntity::Which entity;
  std::size_t cells = 0; // those that count
  bool is_visible = false;
  double bounds[6];
};

} // namespace

MeshPicker::MeshPicker(EntityKind kind, const MeshModel& model) : mKind(kind), mModel(model)
{
  mCells->SetTolerance(is_area() ? kReachOfArea : kReach);
  mHidingCells->SetTolerance(kReachOfArea);
}

MeshPicker::~MeshPicker() = default;

bool MeshPicker::is_area() const
{
  return mKind != EntityKind::Edge && mKind != EntityKind::Node;
}

const PickTargets& MeshPicker::targets()
{
  prepare();
  return *mTargets;
}

void MeshPicker::prepare()
{
  if (mTargets != nullptr) {
    return;
  }
  mTargets = std::make_unique<PickTargets>(mKind, mModel);
  mCells->PickFromListOn();
  mCells->AddPickList(mTargets->actor());
  if (!is_area()) {
    mSurfaces = std::make_unique<PickTargets>(EntityKind::Block, mModel);
    mHidingCells->PickFromListOn();
    mHidingCells->AddPickList(mSurfaces->actor());
  }
}

int MeshPicker::compute_pick(vtkRenderer* renderer, int x, int y)
{
  if (renderer == nullptr || renderer->GetRenderWindow() == nullptr) {
    return 0;
  }
  prepare();
  mCells->Pick(x, y, 0.0, renderer); // whatever it returns: the records tell what was hit
  if (!is_area()) {
    mHidingCells->Pick(x, y, 0.0, renderer);
  }
  return add_ray_hits();
}

int MeshPicker::compute_pick_by_ray(vtkRenderer* /*renderer*/, const double* from, const double* to)
{
  if (from == nullptr || to == nullptr) {
    return 0;
  }
  prepare();
  const double length = std::sqrt(vtkMath::Distance2BetweenPoints(from, to));
  pick_along(*mCells, from, to, is_area() ? 0.0 : kReachOfRay * length, *mTargets->actor());
  if (!is_area()) {
    pick_along(*mHidingCells, from, to, 0.0, *mSurfaces->actor());
  }
  return add_ray_hits();
}

int MeshPicker::add_ray_hits()
{
  const double front = front_of(is_area() ? *mCells : *mHidingCells);
  int count = 0;
  for (const CellPick* record : mCells->get_cell_picks()) {
    // An edge beside the cursor may be a little behind what is under the cursor.
    const double slack =
        2.0 * record->Tolerance / std::sqrt(vtkMath::Distance2BetweenPoints(record->P1, record->P2));
    for (const SubCellPick& hit : record->SubPicks) {
      const Place place = place_of(*record, hit);
      const bool is_visible = place.depth <= front + slack;
      const double rank = is_area() ? place.depth : place.offset + (is_visible ? 0.0F : kHiddenRank);
      count += add_found(mTargets->entity_of(record->DataSet, hit.CellId), place.point,
                         static_cast<float>(rank), {hit.Direct, is_visible});
    }
  }
  return count;
}

int MeshPicker::compute_pick_by_bounds(vtkRenderer* renderer, PickBounds* bounds)
{
  if (renderer == nullptr || renderer->GetRenderWindow() == nullptr || bounds == nullptr) {
    return 0;
  }
  prepare();
  mCells->PickByBounds(bounds, renderer);
  // Of data that many entities share, cells are recorded as soon as a point of them is inside.
  const bool is_strict = !MultiCellPicker::mBoxPickAcceptPartialCells && !mTargets->is_whole();
  const Screen screen(*renderer);
  std::map<std::pair<std::size_t, long long>, Met> all;
  for (const CellPick* record : mCells->get_cell_picks()) {
    auto& data = *vtkPolyData::SafeDownCast(record->DataSet);
    for (const SubCellPick& hit : record->SubPicks) {
      const auto entity = mTargets->entity_of(&data, hit.CellId);
      Met& met = all[{entity.block, entity.id}];
      met.entity = entity;
      met.cells += !is_strict || screen.has_inside(data, hit.CellId, *bounds) ? 1U : 0U;
      met.is_visible = met.is_visible || hit.Visible;
      mTargets->is_whole() ? data.GetBounds(met.bounds) : data.GetCellBounds(hit.CellId, met.bounds);
    }
  }
  int count = 0;
  for (const auto& [key, met] : all) {
    if (!is_strict || met.cells == mTargets->cells_of(met.entity).size()) {
      const float middle[3] = {static_cast<float>((met.bounds[0] + met.bounds[1]) / 2),
                               static_cast<float>((met.bounds[2] + met.bounds[3]) / 2),
                               static_cast<float>((met.bounds[4] + met.bounds[5]) / 2)};
      count += add_found(met.entity, middle, 0.0F, {true, met.is_visible});
    }
  }
  return count;
}

int MeshPicker::add_found(const MeshEntity::Which& entity, const float* point, float distance,
                          const MeshEntity::Hit& hit)
{
  if (entity.id < 0 || (MultiCellPicker::mSelectVisibleOnly && !hit.is_visible)) {
    return 0;
  }
  const std::size_t before = get_selection_buffer().size();
  add_to_selection_buffer(new MeshEntity(entity, name_of(entity), hit), point, distance, hit.is_direct);
  return get_selection_buffer().size() > before ? 1 : 0;
}

std::string MeshPicker::name_of(const MeshEntity::Which& entity) const
{
  const std::string& block = mModel.blocks()[entity.block].name;
  if (mKind == EntityKind::Block) {
    return block;
  }
  return mModel.blocks().size() == 1 ? "" : block + ": " + ::name_of(mKind) + " " + std::to_string(entity.id);
}
