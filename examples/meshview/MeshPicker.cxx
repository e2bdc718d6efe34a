// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "MeshPicker.h"

#include "MeshModel.h"
#include "PickTargets.h"

#include <MRPickUtil.h>
#include <PickBounds.h>

#include <vtkActor.h>
#include <vtkCamera.h>
#include <vtkCellType.h>
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
#include <utility>
#include <vector>

namespace {

using CellPick = MultiCellPicker::CellPick;
using SubCellPick = MultiCellPicker::SubCellPick;
using Point = std::array<double, 3>;

constexpr double kReach = 0.01;        // of edges, nodes, lines and points, of the window's diagonal
constexpr double kReachOfArea = 1e-6;  // of what is under the cursor itself
constexpr double kReachOfRay = 0.005;  // likewise, of the length of a ray in space
constexpr double kHiddenRank = 2.0;    // behind all that is seen, 0 to 1 for direct and 1 to 2 for other hits
constexpr double kBefore = 1.0 - 1e-3; // of a line of sight: what ends it does not hide what is there
constexpr std::size_t kMostSights = 16; // lines of sight in one pick, for those that are nearest to the ray

/// Where a ray has hit an entity.
struct Place
{
  float point[3];
  double depth;  ///< how far along the ray, 0 to 1
  double offset; ///< how far beside it, 0 to 1 for what is in reach
};

bool is_line(int type)
{
  return type == VTK_LINE || type == VTK_POLY_LINE;
}

/// No surface, so that a cursor can only be near it.
bool is_thin(const CellPick& record, const SubCellPick& hit)
{
  const int type = record.DataSet->GetCellType(hit.CellId);
  return is_line(type) || type == VTK_VERTEX || type == VTK_POLY_VERTEX;
}

/// VTK gives the point of the ray that is next to a line, which is not on the line.
void move_to_line(const CellPick& record, vtkIdType cell, Point& point)
{
  if (!is_line(record.DataSet->GetCellType(cell))) {
    return;
  }
  vtkNew<vtkIdList> ends;
  record.DataSet->GetCellPoints(cell, ends);
  Point p1 = {record.P1[0], record.P1[1], record.P1[2]};
  Point p2 = {record.P2[0], record.P2[1], record.P2[2]};
  double nearest = std::numeric_limits<double>::infinity();
  for (vtkIdType i = 1; i < ends->GetNumberOfIds(); ++i) {
    Point a;
    Point b;
    Point on_ray;
    Point on_line;
    double t[2];
    record.DataSet->GetPoint(ends->GetId(i - 1), a.data());
    record.DataSet->GetPoint(ends->GetId(i), b.data());
    const double squared = vtkLine::DistanceBetweenLineSegments(p1.data(), p2.data(), a.data(), b.data(),
                                                                on_ray.data(), on_line.data(), t[0], t[1]);
    if (squared < nearest) {
      nearest = squared;
      point = on_line;
    }
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
      if (!is_thin(*record, hit)) {
        front = std::min(front, place_of(*record, hit).depth);
      }
    }
  }
  return front;
}

/// What is beside the cursor may be so much behind what is under it.
double slack_of(const CellPick& record)
{
  return 2.0 * record.Tolerance / std::sqrt(vtkMath::Distance2BetweenPoints(record.P1, record.P2));
}

/// A line in space is picked in as vtkPicker does along a line of sight.
void pick_along(MultiCellPicker& picker, const double* from, const double* to, double reach, vtkActor& actor)
{
  picker.Initialize();
  picker.IntersectWithLine(from, to, reach, nullptr, &actor, actor.GetMapper());
}

/// An entity of lines or points, and where it is nearest to a ray.
struct Candidate
{
  MeshEntity::Which entity;
  Place place;
  bool is_direct;
  const CellPick* record;
};

/// Each entity once, those first that are nearest to the ray.
std::vector<Candidate> candidates_of(const MultiCellPicker& picker, const PickTargets& targets)
{
  std::map<std::pair<std::size_t, long long>, Candidate> nearest;
  for (const CellPick* record : picker.get_cell_picks()) {
    for (const SubCellPick& hit : record->SubPicks) {
      if (is_thin(*record, hit)) {
        const auto entity = targets.entity_of(record->DataSet, hit.CellId);
        const Candidate candidate = {entity, place_of(*record, hit), hit.Direct, record};
        const auto [found, is_new] = nearest.try_emplace({entity.block, entity.id}, candidate);
        if (!is_new && candidate.place.offset < found->second.place.offset) {
          found->second = candidate;
        }
      }
    }
  }
  std::vector<Candidate> all;
  for (const auto& [key, candidate] : nearest) {
    all.push_back(candidate);
  }
  std::stable_sort(all.begin(), all.end(),
                   [](const Candidate& a, const Candidate& b) { return a.place.offset < b.place.offset; });
  return all;
}

/// Where the line of sight to a place begins: on the front plane, or without a renderer where the ray does.
Point start_of_sight(const Candidate& candidate, vtkRenderer* renderer)
{
  const float* p1 = candidate.record->P1;
  Point start = {p1[0], p1[1], p1[2]};
  if (renderer != nullptr) {
    const float* point = candidate.place.point;
    renderer->SetWorldPoint(point[0], point[1], point[2], 1.0);
    renderer->WorldToDisplay();
    renderer->GetDisplayPoint(start.data());
    renderer->SetDisplayPoint(start[0], start[1], 0.0);
    renderer->DisplayToWorld();
    const double* world = renderer->GetWorldPoint();
    std::transform(world, world + 3, start.begin(), [world](double x) { return x / world[3]; });
  }
  return start;
}

/// For one pick: what it finds is told apart by what is seen, also where all of it counts.
class VisibleScope
{
public:
  VisibleScope() : mBefore(std::exchange(MultiCellPicker::mSelectVisibleOnly, true)) {}
  ~VisibleScope() { MultiCellPicker::mSelectVisibleOnly = mBefore; }
  VisibleScope(const VisibleScope&) = delete;
  VisibleScope& operator=(const VisibleScope&) = delete;

private:
  bool mBefore;
};

void pick_in_region(MultiCellPicker& picker, PickBounds& bounds, vtkRenderer& renderer)
{
  const VisibleScope scope;
  picker.PickByBounds(&bounds, &renderer);
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
  mThinCells->SetTolerance(kReach);
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
  for (MultiCellPicker* picker : {mCells.Get(), mThinCells.Get()}) {
    picker->PickFromListOn();
    picker->AddPickList(mTargets->actor());
  }
  if (!is_area()) {
    mSurfaces = std::make_unique<PickTargets>(EntityKind::Block, mModel);
  }
}

int MeshPicker::compute_pick(vtkRenderer* renderer, int x, int y)
{
  if (renderer == nullptr || renderer->GetRenderWindow() == nullptr) {
    return 0;
  }
  prepare();
  mCells->Pick(x, y, 0.0, renderer); // whatever it returns: the records tell what was hit
  if (is_area() && mTargets->has_lines_or_vertices()) {
    mThinCells->Pick(x, y, 0.0, renderer);
  }
  return add_ray_hits(renderer);
}

int MeshPicker::compute_pick_by_ray(vtkRenderer* /*renderer*/, const double* from, const double* to)
{
  if (from == nullptr || to == nullptr) {
    return 0;
  }
  prepare();
  const double length = std::sqrt(vtkMath::Distance2BetweenPoints(from, to));
  pick_along(*mCells, from, to, is_area() ? 0.0 : kReachOfRay * length, *mTargets->actor());
  if (is_area() && mTargets->has_lines_or_vertices()) {
    pick_along(*mThinCells, from, to, kReachOfRay * length, *mTargets->actor());
  }
  return add_ray_hits(nullptr);
}

int MeshPicker::add_ray_hits(vtkRenderer* renderer)
{
  return is_area() ? add_surface_hits() + add_thin_hits(*mThinCells, renderer)
                   : add_thin_hits(*mCells, renderer);
}

int MeshPicker::add_surface_hits()
{
  const double front = front_of(*mCells);
  int count = 0;
  for (const CellPick* record : mCells->get_cell_picks()) {
    const double slack = slack_of(*record);
    for (const SubCellPick& hit : record->SubPicks) {
      if (!is_thin(*record, hit)) {
        const Place place = place_of(*record, hit);
        count += add_found(mTargets->entity_of(record->DataSet, hit.CellId), place.point,
                           static_cast<float>(place.depth), {hit.Direct, place.depth <= front + slack});
      }
    }
  }
  return count;
}

/// Each has its own line of sight; where there are too many of them, the ray stands for those of the rest.
int MeshPicker::add_thin_hits(const MultiCellPicker& picker, vtkRenderer* renderer)
{
  const std::vector<Candidate> all = candidates_of(picker, *mTargets);
  double front = 0.0; // of the ray
  if (all.size() > kMostSights) {
    const float* p1 = all.front().record->P1;
    const float* p2 = all.front().record->P2;
    front = front_along(Point{p1[0], p1[1], p1[2]}.data(), Point{p2[0], p2[1], p2[2]}.data());
  }
  int count = 0;
  for (std::size_t i = 0; i < all.size(); ++i) {
    const Place& place = all[i].place;
    const Point end = {place.point[0], place.point[1], place.point[2]};
    const bool is_visible = i < kMostSights
                                ? front_along(start_of_sight(all[i], renderer).data(), end.data()) >= kBefore
                                : place.depth <= front + slack_of(*all[i].record);
    const double rank = is_area() ? place.depth : place.offset + (is_visible ? 0.0 : kHiddenRank);
    count += add_found(all[i].entity, place.point, static_cast<float>(rank), {all[i].is_direct, is_visible});
  }
  return count;
}

/// How far along a line the first surface is, 0 to 1; infinite without one. A surface's border hides, too.
double MeshPicker::front_along(const double* from, const double* to)
{
  const PickTargets& surfaces = mSurfaces != nullptr ? *mSurfaces : *mTargets;
  const double length = std::sqrt(vtkMath::Distance2BetweenPoints(from, to));
  pick_along(*mHidingCells, from, to, kReachOfArea * length, *surfaces.actor());
  return front_of(*mHidingCells);
}

int MeshPicker::compute_pick_by_bounds(vtkRenderer* renderer, PickBounds* bounds)
{
  if (renderer == nullptr || renderer->GetRenderWindow() == nullptr || bounds == nullptr) {
    return 0;
  }
  prepare();
  pick_in_region(*mCells, *bounds, *renderer);
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
