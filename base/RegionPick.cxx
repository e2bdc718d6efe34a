// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "RegionPick.h"

#include "BrantBox.h"
#include "CellBlocks.h"
#include "CellBlocksCache.h"
#include "CellFan.h"
#include "MRPickUtil.h"
#include "MeshArrays.h"
#include "PickBounds.h"
#include "RegionFilter.h"
#include "ScreenProjection.h"
#include "ScreenRectangle.h"
#include "WindowDepth.h"

#include <vtkCellType.h>
#include <vtkFieldData.h>
#include <vtkMatrix4x4.h>
#include <vtkPointSet.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>

#include <algorithm>
#include <memory>
#include <utility>

namespace morrow {

namespace {

using Hits = std::vector<MultiCellPicker::SubCellPick>;
using Verdict = CellBlocks::Verdict;

constexpr float NoPoint = 1.0e38F;

/// Cells with neighbouring ids, the last excluded.
struct Run
{
  vtkIdType first;
  vtkIdType last;
  Verdict verdict;
};

/// What is known of a point: the region filter's bits and these.
enum PointFlags : unsigned
{
  Visible = 32, // nothing hides it
  Known = 64    // all others have been found out
};

struct DisplayPoint
{
  double at[3];
};

bool line_touches(const RegionFilter& filter, const std::vector<DisplayPoint>& points)
{
  for (std::size_t i = 0; i + 1 < points.size(); ++i) {
    if (filter.touches_line(points[i].at, points[i + 1].at)) {
      return true;
    }
  }
  return false;
}

/// Of a cell without a point inside. has_collapsed: a triangle without extent counts as touching whatever its
/// place is.
bool fan_touches(const RegionFilter& filter, const std::vector<DisplayPoint>& points, bool has_collapsed)
{
  for (std::size_t i = 1; i + 1 < points.size(); ++i) {
    const double* a = points[0].at;
    const double* b = points[i].at;
    const double* c = points[i + 1].at;
    if ((has_collapsed || filter.may_touch_triangle(a, b, c)) && filter.touches_triangle_between(a, b, c)) {
      return true;
    }
  }
  return false;
}

/// Answers the question for one data set.
class RegionCells
{
public:
  RegionCells(const RegionQuestion& question, const MeshArrays& mesh, bool has_pointers)
      : mQuestion(question), mMesh(mesh), mFilter(question.region),
        mProjection(question.to_view, question.frame), mHasPointers(has_pointers)
  {}

  /// Whether the cells' parts decide what is recorded, not the whole of them.
  [[nodiscard]] bool takes_parts() const { return mHasPointers || mQuestion.takes_touching_cells; }

  /// Whether a few cells all over the data set are accepted: if not, they need not all be.
  [[nodiscard]] bool accepts_sample()
  {
    constexpr vtkIdType samples = 64;
    const vtkIdType count = std::min(samples, mMesh.cells());
    for (vtkIdType i = 0; i < count; ++i) {
      const vtkIdType cell = mMesh.cells() * i / count;
      this->look_into({cell, cell + 1, Verdict::Open});
    }
    mHits.clear();
    return std::exchange(mAccepted, 0) == count;
  }

  /// blocks may be null.
  Hits run(const CellBlocks* blocks)
  {
    mMayHaveCollapsed = blocks == nullptr || blocks->has_collapsed_cells();
    mAreTriangles = blocks != nullptr && blocks->are_known_triangles();
    this->plan(blocks);
    vtkIdType most = 0;
    vtkIdType to_open = 0;
    for (const Run& run : mRuns) {
      most += run.verdict != Verdict::Skip ? run.last - run.first : 0;
      to_open += run.verdict == Verdict::Open ? run.last - run.first : 0;
    }
    if (!this->takes_parts() && most < mMesh.cells()) {
      return {};
    }
    this->make_room(static_cast<std::size_t>(most));
    if (to_open > 0) {
      mFlags.reset(new unsigned char[static_cast<std::size_t>(mMesh.points())]());
    }
    if (to_open > mMesh.cells() / 2 && mMesh.connectivity_size() >= mMesh.points()) {
      this->look_at_all_points();
    }
    return this->look_into_runs() ? std::move(mHits) : Hits();
  }

private:
  void plan(const CellBlocks* blocks)
  {
    const bool hides_cells = mQuestion.takes_touching_cells && mMayHaveCollapsed;
    if (blocks == nullptr || blocks->are_scattered() || blocks->has_empty_cells() || hides_cells) {
      mRuns.push_back({0, mMesh.cells(), Verdict::Open});
      return;
    }
    const ScreenRectangle rectangle(mProjection, mFilter.sides(), mFilter.depth(), blocks->whole());
    blocks->walk([&](const BlockBox& box) { return this->judge(box, rectangle); },
                 [this](vtkIdType first, vtkIdType last, Verdict verdict) {
                   if (!mRuns.empty() && mRuns.back().verdict == verdict) {
                     mRuns.back().last = last;
                   } else {
                     mRuns.push_back({first, last, verdict});
                   }
                   return verdict != Verdict::Skip || this->takes_parts(); // else nothing is recorded
                 });
  }

  [[nodiscard]] Verdict judge(const BlockBox& box, const ScreenRectangle& rectangle) const
  {
    const Verdict inside = mQuestion.depth == nullptr ? Verdict::Take : Verdict::Open;
    switch (rectangle.place_of(box)) {
    case ScreenRectangle::Place::Outside:
      return Verdict::Skip;
    case ScreenRectangle::Place::Inside:
      return inside;
    default:
      break;
    }
    ScreenBox screen;
    if (!mFilter.is_known() || mFilter.is_box() || !mProjection.project(box, screen)) {
      return Verdict::Open;
    }
    switch (mFilter.place_of_box(screen.lower[0], screen.lower[1], screen.upper[0], screen.upper[1])) {
    case PolygonGrid::Place::Outside:
      return Verdict::Skip;
    case PolygonGrid::Place::Inside:
      return inside;
    default:
      return Verdict::Open;
    }
  }

  /// False when nothing is to be recorded.
  [[nodiscard]] bool look_into_runs()
  {
    for (const Run& run : mRuns) {
      const vtkIdType before = mAccepted;
      if (run.verdict == Verdict::Take) {
        this->take(run);
      } else if (run.verdict == Verdict::Open) {
        this->look_into(run);
      }
      if (!this->takes_parts() && mAccepted - before < run.last - run.first) {
        return false;
      }
    }
    return mAccepted > 0 && (this->takes_parts() || !mMesh.has_more_cells());
  }

  void look_at_all_points()
  {
    constexpr int piece = 64;
    double x[piece];
    double y[piece];
    double depth[piece];
    mMesh.with_points([&](const auto* xyz) {
      for (vtkIdType first = 0; first < mMesh.points(); first += piece) {
        const auto count = static_cast<int>(std::min(vtkIdType{piece}, mMesh.points() - first));
        mProjection.project(xyz + 3 * first, count, x, y, depth);
        for (int i = 0; i < count; ++i) {
          const double at[3] = {x[i], y[i], depth[i]};
          mFlags[static_cast<std::size_t>(first + i)] = static_cast<unsigned char>(this->look_at(at));
        }
      }
    });
    mKnowsAllPoints = true;
  }

  template<typename Number>
  [[nodiscard]] unsigned look_at_point(const Number* point) const
  {
    double at[3];
    if (mQuestion.depth != nullptr) {
      mProjection.project(point, at);
    } else {
      mProjection.project_flat(point, at);
    }
    return this->look_at(at);
  }

  [[nodiscard]] unsigned look_at(const double (&at)[3]) const
  {
    unsigned flags = Known | mFilter.classify(at);
    if (mQuestion.depth != nullptr) {
      const bool has_depth = mQuestion.takes_touching_cells || (at[2] >= 0.0 && at[2] < 1.0);
      flags |= has_depth && mQuestion.depth->shows(at[0], at[1], at[2]) ? Visible : 0U;
    } else {
      flags |= Visible;
    }
    return flags;
  }

  // Getting fresh pages of memory would cost more than everything else.
  void make_room(std::size_t count)
  {
    constexpr std::size_t many = 4096;
    Hits* spare = mQuestion.spare;
    if (spare != nullptr && count >= many && spare->capacity() >= count && spare->capacity() / 2 <= count) {
      mHits = std::move(*spare);
      *spare = Hits();
      mHits.clear();
    }
    mHits.reserve(count);
  }

  void take(const Run& run)
  {
    static const Hits piece(256,
                            {0, {NoPoint, NoPoint, NoPoint}, true, true}); // stays in the processor's cache
    for (vtkIdType first = run.first; first < run.last;) {
      const std::size_t before = mHits.size();
      const auto end = std::min(static_cast<vtkIdType>(piece.size()), run.last - first);
      mHits.insert(mHits.end(), piece.begin(), piece.begin() + end);
      for (auto hit = mHits.begin() + static_cast<std::ptrdiff_t>(before); hit != mHits.end(); ++hit) {
        hit->CellId = static_cast<std::int32_t>(first++);
      }
    }
    mAccepted += run.last - run.first;
  }

  void look_into(const Run& run)
  {
    mMesh.with_points([this, &run](const auto* xyz) {
      if (mAreTriangles) {
        this->look_into_triangles(run, xyz);
        return;
      }
      mMesh.visit(run.first, run.last, [this, xyz](vtkIdType id, int type, vtkIdType count, const auto* ids) {
        if (count >= 0) {
          this->look_at_cell(static_cast<std::int32_t>(id), type, count, ids, xyz);
        }
        return true;
      });
    });
  }

  template<typename Number>
  void look_into_triangles(const Run& run, const Number* xyz)
  {
    mMesh.with_known_triangles(run.first, run.last, [&](const auto* ids) {
      if (mKnowsAllPoints) {
        this->look_at_triangles(run, ids, xyz,
                                [flags = mFlags.get()](auto id) -> unsigned { return flags[id]; });
      } else {
        this->look_at_triangles(run, ids, xyz, [this, xyz](auto id) { return this->flags_of(id, xyz); });
      }
    });
  }

  // What is recorded is written always, and kept or written over without a branch.
  template<typename Number, typename Id, typename FlagsOf>
  void look_at_triangles(const Run& run, const Id* ids, const Number* xyz, FlagsOf&& flags_of)
  {
    constexpr vtkIdType piece = 256; // stays in the processor's cache
    const bool takes_touching = mQuestion.takes_touching_cells;
    for (vtkIdType first = run.first; first < run.last; first += piece) {
      const vtkIdType last = std::min(first + piece, run.last);
      const std::size_t before = mHits.size();
      mHits.resize(before + static_cast<std::size_t>(last - first));
      auto* hit = mHits.data() + before;
      vtkIdType accepted = 0;
      for (vtkIdType id = first; id < last; ++id, ids += 3) {
        const unsigned a = flags_of(ids[0]);
        const unsigned b = flags_of(ids[1]);
        const unsigned c = flags_of(ids[2]);
        const bool is_inside = ((a | b | c) & RegionFilter::Inside) != 0;
        bool is_accepted = takes_touching ? is_inside : (a & b & c & RegionFilter::Inside) != 0;
        if (takes_touching && !is_inside && (mMayHaveCollapsed || (a & b & c & RegionFilter::Sides) == 0)) {
          is_accepted = this->shape_touches(VTK_TRIANGLE, 3, ids, xyz, a & b & c);
        }
        *hit = {static_cast<std::int32_t>(id), {NoPoint, NoPoint, NoPoint}, true, (a & b & c & Visible) != 0};
        hit += static_cast<int>(is_accepted | (mHasPointers & is_inside));
        accepted += static_cast<int>(is_accepted);
      }
      mHits.resize(static_cast<std::size_t>(hit - mHits.data()));
      mAccepted += accepted;
    }
  }

  template<typename Number>
  [[nodiscard]] unsigned flags_of(vtkIdType id, const Number* xyz)
  {
    if (mFlags == nullptr) {
      return this->look_at_point(xyz + 3 * id);
    }
    unsigned char& known = mFlags[static_cast<std::size_t>(id)];
    if (known == 0) {
      known = static_cast<unsigned char>(this->look_at_point(xyz + 3 * id));
    }
    return known;
  }

  template<typename Number, typename Id>
  void look_at_cell(std::int32_t id, int type, vtkIdType count, const Id* ids, const Number* xyz)
  {
    unsigned of_all = ~0U;
    unsigned of_any = 0;
    for (vtkIdType i = 0; i < count; ++i) {
      const unsigned flags = this->flags_of(static_cast<vtkIdType>(ids[i]), xyz);
      of_all &= flags;
      of_any |= flags;
    }
    const bool is_inside = (of_any & RegionFilter::Inside) != 0;
    bool is_accepted = (of_all & RegionFilter::Inside) != 0;
    if (mQuestion.takes_touching_cells) {
      is_accepted = is_inside || this->shape_touches(type, count, ids, xyz, of_all);
    }
    mAccepted += is_accepted ? 1 : 0;
    if (is_accepted || (mHasPointers && is_inside)) {
      mHits.push_back({id, {NoPoint, NoPoint, NoPoint}, true, (of_all & Visible) != 0});
    }
  }

  /// Of a cell without a point inside.
  template<typename Number, typename Id>
  [[nodiscard]] bool shape_touches(int type, vtkIdType count, const Id* ids, const Number* xyz,
                                   unsigned of_all)
  {
    const bool is_of_lines = type == VTK_LINE || type == VTK_POLY_LINE;
    const bool has_collapsed = mMayHaveCollapsed && is_fan(type) && has_collapsed_triangle(count, ids, xyz);
    const bool is_beside = (of_all & RegionFilter::Sides) != 0 && !has_collapsed;
    if (is_beside || count <= 0 || !(is_of_lines || is_fan(type))) {
      return false;
    }
    mCorners.resize(static_cast<std::size_t>(count));
    for (vtkIdType i = 0; i < count; ++i) {
      mProjection.project_flat(xyz + 3 * static_cast<vtkIdType>(ids[i]),
                               mCorners[static_cast<std::size_t>(i)].at);
    }
    return is_of_lines ? line_touches(mFilter, mCorners) : fan_touches(mFilter, mCorners, has_collapsed);
  }

  const RegionQuestion& mQuestion;
  const MeshArrays& mMesh;
  RegionFilter mFilter;
  ScreenProjection mProjection;
  bool mHasPointers;
  bool mMayHaveCollapsed = true;
  bool mAreTriangles = false; // known to be
  bool mKnowsAllPoints = false;
  std::unique_ptr<unsigned char[]> mFlags; // of the points, 0 while not known; null: not kept
  std::vector<Run> mRuns;
  std::vector<DisplayPoint> mCorners; // scratch
  vtkIdType mAccepted = 0;
  Hits mHits;
};

} // namespace

RegionQuestion::RegionQuestion(const PickBounds& its_region, vtkMatrix4x4& its_matrix,
                               vtkRenderer& its_renderer)
    : region(its_region), to_view(its_matrix), renderer(its_renderer)
{
  const int* size = renderer.GetRenderWindow()->GetSize();
  frame.width = size[0];
  frame.height = size[1];
  renderer.GetViewport(frame.viewport);
}

std::vector<MultiCellPicker::SubCellPick> cells_in_region(const RegionQuestion& question, vtkPointSet& data,
                                                          CellBlocksCache& cache)
{
  vtkFieldData* fields = data.GetFieldData(); // null if the host has set that
  const bool has_pointers = fields != nullptr && fields->GetAbstractArray("Pointers") != nullptr;
  double bounds[6];
  data.GetBounds(bounds);
  if (!question.region.intersects_with_bbox(
          MRPickUtil::convert_world_bbox_to_display_bbox(bounds, &question.to_view, &question.renderer))) {
    return {};
  }
  MeshArrays mesh(data);
  if (mesh.cells() == 0) {
    return {};
  }
  RegionCells cells(question, mesh, has_pointers);
  if (!cells.takes_parts() && !mesh.may_have_own_ids() && !cells.accepts_sample()) {
    return {};
  }
  const std::shared_ptr<const CellBlocks> blocks = cache.blocks_of(data, mesh, false);
  return cells.run(blocks.get());
}

} // namespace morrow
