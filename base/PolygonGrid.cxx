// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "PolygonGrid.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace morrow {

namespace {

// The bounds of rounding below are several times as large as the errors they cover. D is the larger extent of
// the polygon, and the grid's box is larger than the polygon's by D / 64 on each side.

constexpr double kBorder = 1.0 / 64.0;

/// Points are within reach up to so many times D: there a triangle that is not thin does not hold them, since
/// the product of an edge's length and a distance is beyond the rounding of products of such distances.
constexpr double kReach = 1e4;
/// A triangle is thin when its smallest height is below so many times D.
constexpr double kThin = 1e-7;
/// Within the grid, the rounding of a product is below so many times D².
constexpr double kProductRounding = 1e-13;
/// So many cells to each side, where segments are within reach.
constexpr double kSegmentReach = 1e5;
/// Rounding of a position within the grid, in cells.
constexpr double kCellRounding = 1e-6;
/// Edges pass by the cells that do not list them at a distance of so many cells, in x or in y. A crossing
/// with a segment within reach at an angle above 1e-5 is moved by less.
constexpr double kGap = 1.0 / 16.0;

/// Directions are told apart in so many parts of the half circle, and count as almost parallel up to a
/// difference of so many parts: more than an angle of 1e-5 anywhere.
constexpr std::size_t kDirections = 1024;
constexpr double kAlmostParallel = 0.05;

constexpr std::size_t kMaxSide = 128;
constexpr std::size_t kMinSide = 8;
/// Polygons with more triangles are asked in turn.
constexpr std::size_t kMaxTriangles = 1'000'000;

/// x and y of the vertices that the indices name, one after the other. A triangle or edge with an index that
/// names no vertex is left out, and so is an incomplete one at the end.
std::vector<double> gathered(const std::vector<double>& points, const std::vector<int>& indices,
                             std::size_t corners)
{
  const std::size_t vertices = (points.size() + 1) / 3; // of the last one z may be missing
  const auto names_vertex = [vertices](int index) {
    return index >= 0 && static_cast<std::size_t>(index) < vertices;
  };
  std::vector<double> xy;
  xy.reserve(2 * indices.size());
  for (std::size_t i = 0; i + corners <= indices.size(); i += corners) {
    const int* const shape = &indices[i];
    if (std::all_of(shape, shape + corners, names_vertex)) {
      for (std::size_t k = 0; k < corners; ++k) {
        const std::size_t at = 3 * static_cast<std::size_t>(shape[k]);
        xy.insert(xy.end(), {points[at], points[at + 1]});
      }
    }
  }
  return xy;
}

double size_of(double dx, double dy)
{
  return std::max(std::abs(dx), std::abs(dy));
}

/// Where a direction, or its opposite, lies on the half circle, from 0 to the number of parts, which is the
/// same as 0.
double part_of(double dx, double dy)
{
  if (dy < 0.0 || (dy == 0.0 && dx < 0.0)) {
    dx = -dx;
    dy = -dy;
  }
  return (1.0 - dx / (std::abs(dx) + dy)) * (0.5 * static_cast<double>(kDirections));
}

std::uint32_t wrapped(double part)
{
  // The sum of a part just below 0 rounds to the whole.
  return static_cast<std::uint32_t>(part + static_cast<double>(kDirections)) % kDirections;
}

/// A range of numbers; empty when it is inverted.
struct Range
{
  double first = -std::numeric_limits<double>::infinity();
  double last = std::numeric_limits<double>::infinity();

  /// Keeps the x for which factor × x >= limit.
  void keep(double factor, double limit)
  {
    if (factor > 0.0) {
      first = std::max(first, limit / factor);
    } else if (factor < 0.0) {
      last = std::min(last, limit / factor);
    } else if (limit > 0.0) {
      last = -std::numeric_limits<double>::infinity();
    }
  }
};

/// The product that says on which side of a triangle's edge a point lies: x × X + y × Y + c, positive inside.
struct Side
{
  double x;
  double y;
  double c;
};

Side side_of(const double* a, const double* b, double sign)
{
  const double dx = b[0] - a[0];
  const double dy = b[1] - a[1];
  return {-sign * dy, sign * dx, sign * (a[0] * dy - a[1] * dx)};
}

} // namespace

// ---------------------------------------------------------------------------------------------------------

/// Fills the cells of a grid.
class PolygonGrid::Builder
{
public:
  Builder(PolygonGrid& grid, std::size_t side, std::size_t max_entries)
      : mGrid(grid), mSide(side), mMaxEntries(max_entries)
  {}

  static void build(PolygonGrid& grid, std::size_t max_entries);

private:
  bool place();
  [[nodiscard]] bool has_tiny_edge() const;
  bool fill();
  bool add_triangle(std::uint32_t triangle);
  void fill_row(std::uint32_t triangle, std::size_t row, const std::array<Side, 3>& sides, double rounding);
  void add_cells(std::uint32_t triangle, std::size_t row, const Range& outer, const Range& inner);
  void add_edge(std::uint32_t edge);
  void add_direction(std::uint32_t edge);
  void set_places();
  [[nodiscard]] std::size_t index_in(double position) const;

  PolygonGrid& mGrid;
  std::size_t mSide;
  std::size_t mMaxEntries;
  double mSize = 0.0; // D
  std::vector<CellLists::Entry> mTriangleEntries;
  std::vector<CellLists::Entry> mEdgeEntries;
  std::vector<CellLists::Entry> mDirectionEntries;
};

void PolygonGrid::Builder::build(PolygonGrid& grid, std::size_t max_entries)
{
  const std::size_t count = grid.mTriangles.size() / 6;
  if (count == 0 || count > kMaxTriangles) {
    return;
  }
  for (std::size_t side = kMaxSide; side >= kMinSide; side /= 2) {
    Builder builder(grid, side, max_entries);
    if (!builder.place()) {
      break;
    }
    if (builder.fill()) {
      return;
    }
  }
  // No grid then.
  grid.mSide = 0.0;
  grid.mStride = 0;
  grid.mReach = -1.0;
}

/// Lays the grid over the triangles; false when their numbers are beyond what its reasoning covers.
bool PolygonGrid::Builder::place()
{
  Range x = {mGrid.mTriangles[0], mGrid.mTriangles[0]};
  Range y = {mGrid.mTriangles[1], mGrid.mTriangles[1]};
  const auto widen = [&](const std::vector<double>& xy) {
    for (std::size_t i = 0; i < xy.size(); i += 2) {
      x = {std::min(x.first, xy[i]), std::max(x.last, xy[i])};
      y = {std::min(y.first, xy[i + 1]), std::max(y.last, xy[i + 1])};
    }
  };
  widen(mGrid.mTriangles);
  widen(mGrid.mEdges);
  mSize = std::max(x.last - x.first, y.last - y.first);
  const auto is_finite = [](double value) { return std::isfinite(value); };
  if (!(mSize > 1e-100 && mSize < 1e100) ||
      !std::all_of(mGrid.mTriangles.begin(), mGrid.mTriangles.end(), is_finite) ||
      !std::all_of(mGrid.mEdges.begin(), mGrid.mEdges.end(), is_finite)) {
    return false;
  }
  const double border = kBorder * mSize;
  mGrid.mX = x.first - border;
  mGrid.mY = y.first - border;
  mGrid.mSide = static_cast<double>(mSide);
  mGrid.mStride = mSide;
  mGrid.mScaleX = mGrid.mSide / (x.last - x.first + 2.0 * border);
  mGrid.mScaleY = mGrid.mSide / (y.last - y.first + 2.0 * border);
  mGrid.mReach = kReach * mSize;
  mGrid.mShortest = 1e-40 * mSize;
  return !has_tiny_edge();
}

/// An edge so short that its products may vanish, while it is not of length 0.
bool PolygonGrid::Builder::has_tiny_edge() const
{
  for (std::size_t i = 0; i < mGrid.mEdges.size(); i += 4) {
    const double size =
        size_of(mGrid.mEdges[i + 2] - mGrid.mEdges[i], mGrid.mEdges[i + 3] - mGrid.mEdges[i + 1]);
    if (size > 0.0 && size < mGrid.mShortest) {
      return true;
    }
  }
  return false;
}

/// False when the lists grow too long.
bool PolygonGrid::Builder::fill()
{
  mGrid.mThin.clear();
  mGrid.mStates.assign(mSide * mSide, State::Outside);
  const std::size_t triangles = mGrid.mTriangles.size() / 6;
  for (std::size_t i = 0; i < triangles; ++i) {
    if (!add_triangle(static_cast<std::uint32_t>(i))) {
      return false;
    }
  }
  const std::size_t edges = mGrid.mEdges.size() / 4;
  for (std::size_t i = 0; i < edges && mEdgeEntries.size() <= mMaxEntries; ++i) {
    add_edge(static_cast<std::uint32_t>(i));
    add_direction(static_cast<std::uint32_t>(i));
  }
  if (mEdgeEntries.size() > mMaxEntries) {
    return false;
  }
  mGrid.mTrianglesOf = CellLists(mSide * mSide, mTriangleEntries);
  mGrid.mEdgesOf = CellLists(mSide * mSide, mEdgeEntries);
  mGrid.mEdgesAlong = CellLists(kDirections, mDirectionEntries);
  set_places();
  return true;
}

void PolygonGrid::Builder::set_places()
{
  mGrid.mPlaces.assign(mSide * mSide, Place::Unknown);
  for (std::size_t cell = 0; cell < mGrid.mPlaces.size(); ++cell) {
    const State state = mGrid.mStates[cell];
    if (state != State::Listed && mGrid.mEdgesOf.is_empty(cell)) {
      mGrid.mPlaces[cell] = state == State::Inside ? Place::Inside : Place::Outside;
    }
  }
}

std::size_t PolygonGrid::Builder::index_in(double position) const
{
  return static_cast<std::size_t>(std::clamp(position, 0.0, mGrid.mSide - 1.0));
}

/// False when the list grows too long.
bool PolygonGrid::Builder::add_triangle(std::uint32_t triangle)
{
  double corner[6];
  for (std::size_t i = 0; i < 6; ++i) {
    corner[i] = mGrid.mTriangles[6 * triangle + i] - (i % 2 == 0 ? mGrid.mX : mGrid.mY);
  }
  const double* given = &mGrid.mTriangles[6 * triangle];
  const double turn = orientation(given, given + 2, given + 4);
  const double sign = turn > 0.0 ? 1.0 : -1.0; // without an area it counts as clockwise
  const std::array<Side, 3> sides = {side_of(corner, corner + 2, sign), side_of(corner + 2, corner + 4, sign),
                                     side_of(corner + 4, corner, sign)};
  const auto length_of = [](const Side& side) { return size_of(side.x, side.y); };
  const double longest = std::max({length_of(sides[0]), length_of(sides[1]), length_of(sides[2])});
  const double shortest = std::min({length_of(sides[0]), length_of(sides[1]), length_of(sides[2])});
  if (!(std::abs(turn) > 2.0 * kThin * mSize * longest)) {
    mGrid.mThin.push_back(triangle);
  }
  // Moving all sides out by `moved` reaches farther than that beyond sharp corners: in the ratio of the
  // triangle's size and its inner radius.
  const double rounding = kProductRounding * mSize * mSize;
  const double moved = rounding / shortest;
  const double radius = std::abs(turn) / (6.0 * longest);
  const double reach = moved / radius * 2.0 * longest;
  const double bottom = std::min({corner[1], corner[3], corner[5]}) - (std::isfinite(reach) ? reach : mSize);
  const double top =
      std::max({corner[1], corner[3], corner[5]}) + (std::isfinite(reach) ? reach : 2.0 * mSize);
  const std::size_t end = index_in(top * mGrid.mScaleY + kCellRounding) + 1;
  for (std::size_t row = index_in(bottom * mGrid.mScaleY - kCellRounding); row < end; ++row) {
    fill_row(triangle, row, sides, rounding);
  }
  return mTriangleEntries.size() <= mMaxEntries;
}

void PolygonGrid::Builder::fill_row(std::uint32_t triangle, std::size_t row, const std::array<Side, 3>& sides,
                                    double rounding)
{
  const double bottom = (static_cast<double>(row) - kCellRounding) / mGrid.mScaleY;
  const double top = (static_cast<double>(row + 1) + kCellRounding) / mGrid.mScaleY;
  Range outer;
  Range inner;
  for (const Side& side : sides) {
    const bool rises = side.y > 0.0;
    outer.keep(side.x, -rounding - side.c - side.y * (rises ? top : bottom));
    inner.keep(side.x, rounding - side.c - side.y * (rises ? bottom : top));
  }
  add_cells(triangle, row, outer, inner);
}

void PolygonGrid::Builder::add_cells(std::uint32_t triangle, std::size_t row, const Range& outer,
                                     const Range& inner)
{
  const double first = std::max(outer.first * mGrid.mScaleX - kCellRounding, 0.0);
  const double last = std::min(outer.last * mGrid.mScaleX + kCellRounding, mGrid.mSide);
  const double inner_first = inner.first * mGrid.mScaleX + kCellRounding;
  const double inner_last = inner.last * mGrid.mScaleX - kCellRounding;
  if (!(first <= last)) {
    return;
  }
  const std::size_t end = index_in(last) + 1;
  for (std::size_t column = index_in(first); column < end; ++column) {
    const std::size_t cell = row * mSide + column;
    State& state = mGrid.mStates[cell];
    if (inner_first <= static_cast<double>(column) && static_cast<double>(column + 1) <= inner_last) {
      state = State::Inside;
    } else if (state != State::Inside) {
      state = State::Listed;
      mTriangleEntries.emplace_back(static_cast<std::uint32_t>(cell), triangle);
    }
  }
}

void PolygonGrid::Builder::add_edge(std::uint32_t edge)
{
  const double* given = &mGrid.mEdges[std::size_t{4} * edge];
  const double x1 = (given[0] - mGrid.mX) * mGrid.mScaleX;
  const double y1 = (given[1] - mGrid.mY) * mGrid.mScaleY;
  const double x2 = (given[2] - mGrid.mX) * mGrid.mScaleX;
  const double y2 = (given[3] - mGrid.mY) * mGrid.mScaleY;
  const double dy = y2 - y1;
  const double gap = kGap + kCellRounding;
  const std::size_t end = index_in(std::max(y1, y2) + gap) + 1;
  for (std::size_t row = index_in(std::min(y1, y2) - gap); row < end; ++row) {
    // The parameters where the edge is in the row; an edge within one row or nearly so is there as a whole.
    double from = 0.0;
    double to = 1.0;
    if (std::abs(dy) > gap) {
      const double below = (static_cast<double>(row) - gap - y1) / dy;
      const double above = (static_cast<double>(row + 1) + gap - y1) / dy;
      from = std::clamp(std::min(below, above), 0.0, 1.0);
      to = std::clamp(std::max(below, above), 0.0, 1.0);
    }
    const double start = x1 + from * (x2 - x1);
    const double stop = x1 + to * (x2 - x1);
    const std::size_t last = index_in(std::max(start, stop) + gap);
    for (std::size_t column = index_in(std::min(start, stop) - gap); column <= last; ++column) {
      mEdgeEntries.emplace_back(static_cast<std::uint32_t>(row * mSide + column), edge);
    }
  }
}

void PolygonGrid::Builder::add_direction(std::uint32_t edge)
{
  const double* given = &mGrid.mEdges[std::size_t{4} * edge];
  const double dx = given[2] - given[0];
  const double dy = given[3] - given[1];
  if (dx == 0.0 && dy == 0.0) {
    return; // parallel to everything
  }
  const double part = part_of(dx, dy);
  const std::uint32_t before = wrapped(part - kAlmostParallel);
  const std::uint32_t after = wrapped(part + kAlmostParallel);
  mDirectionEntries.emplace_back(before, edge);
  if (after != before) {
    mDirectionEntries.emplace_back(after, edge);
  }
}

// ---------------------------------------------------------------------------------------------------------

PolygonGrid::PolygonGrid(const std::vector<double>& points, const std::vector<int>& triangles,
                         const std::vector<int>& edges, std::size_t max_entries)
    : mTriangles(gathered(points, triangles, 3)), mEdges(gathered(points, edges, 2))
{
  Builder::build(*this, max_entries);
}

bool PolygonGrid::is_in_listed(const double* p, std::size_t cell) const
{
  return mTrianglesOf.any_of(cell, [&](std::size_t triangle) {
    const double* corner = &mTriangles[6 * triangle];
    return point_in_triangle(p, corner, corner + 2, corner + 4);
  });
}

bool PolygonGrid::contains_outside(const double* p) const
{
  if (std::abs(p[0] - mX) <= mReach && std::abs(p[1] - mY) <= mReach) {
    return std::any_of(mThin.begin(), mThin.end(), [&](std::size_t triangle) {
      const double* corner = &mTriangles[6 * triangle];
      return point_in_triangle(p, corner, corner + 2, corner + 4);
    });
  }
  for (std::size_t i = 0; i < mTriangles.size(); i += 6) {
    if (point_in_triangle(p, &mTriangles[i], &mTriangles[i + 2], &mTriangles[i + 4])) {
      return true;
    }
  }
  return false;
}

bool PolygonGrid::crosses_any(const double* p1, const double* p2) const
{
  for (std::size_t i = 0; i < mEdges.size(); i += 4) {
    if (segments_cross(p1, p2, &mEdges[i], &mEdges[i + 2])) {
      return true;
    }
  }
  return false;
}

bool PolygonGrid::crosses_edge(const double* p1, const double* p2) const
{
  const double u1[2] = {(p1[0] - mX) * mScaleX, (p1[1] - mY) * mScaleY};
  const double u2[2] = {(p2[0] - mX) * mScaleX, (p2[1] - mY) * mScaleY};
  const bool is_within_reach = std::abs(u1[0]) <= kSegmentReach && std::abs(u1[1]) <= kSegmentReach &&
                               std::abs(u2[0]) <= kSegmentReach && std::abs(u2[1]) <= kSegmentReach;
  const double dx = p2[0] - p1[0];
  const double dy = p2[1] - p1[1];
  if (!is_within_reach || mStride == 0 || !(size_of(dx, dy) >= mShortest)) {
    return crosses_any(p1, p2);
  }
  const auto crosses = [&](std::size_t edge) {
    return segments_cross(p1, p2, &mEdges[4 * edge], &mEdges[4 * edge + 2]);
  };
  return mEdgesAlong.any_of(wrapped(part_of(dx, dy)), crosses) || crosses_near(p1, p2, u1, u2);
}

bool PolygonGrid::crosses_near(const double* p1, const double* p2, const double* u1, const double* u2) const
{
  const double left = std::min(u1[0], u2[0]);
  const double right = std::max(u1[0], u2[0]);
  const double bottom = std::min(u1[1], u2[1]);
  const double top = std::max(u1[1], u2[1]);
  if (right < 0.0 || top < 0.0 || left >= mSide || bottom >= mSide) {
    return false;
  }
  const auto first_row = static_cast<std::size_t>(std::max(bottom, 0.0));
  const auto last_row = static_cast<std::size_t>(std::min(top, mSide - 1.0));
  if (top - bottom < 1.0) {
    return crosses_in_row(p1, p2, first_row, left, right) ||
           (last_row != first_row && crosses_in_row(p1, p2, last_row, left, right));
  }
  const double slope = (u2[0] - u1[0]) / (u2[1] - u1[1]);
  for (std::size_t row = first_row; row <= last_row; ++row) {
    const double start = u1[0] + (std::max(bottom, static_cast<double>(row)) - u1[1]) * slope;
    const double stop = u1[0] + (std::min(top, static_cast<double>(row + 1)) - u1[1]) * slope;
    if (crosses_in_row(p1, p2, row, std::min(start, stop), std::max(start, stop))) {
      return true;
    }
  }
  return false;
}

/// first and last: in cells, inclusive.
bool PolygonGrid::crosses_in_row(const double* p1, const double* p2, std::size_t row, double first,
                                 double last) const
{
  if (last < 0.0 || first >= mSide) {
    return false;
  }
  const std::size_t end = row * mStride + static_cast<std::size_t>(std::min(last, mSide - 1.0)) + 1;
  for (std::size_t cell = row * mStride + static_cast<std::size_t>(std::max(first, 0.0)); cell < end;
       ++cell) {
    if (mEdgesOf.any_of(cell, [&](std::size_t edge) {
          return segments_cross(p1, p2, &mEdges[4 * edge], &mEdges[4 * edge + 2]);
        })) {
      return true;
    }
  }
  return false;
}

} // namespace morrow
