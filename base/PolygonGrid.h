// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "CellLists.h"   // by value
#include "PlanarTests.h" // inlined

namespace morrow {

/// A polygon in the plane, split into triangles, that is asked for many points and segments. Every answer is
/// the one of asking all triangles or all boundary edges in turn, to the bit: also on borders, for triangles
/// without area, for segments along an edge, and for values that are not finite.
///
/// A grid over the polygon names for each of its cells the triangles that may hold a point of it and the
/// edges that pass near it. What keeps the answers the same:
///
/// - Triangles: a cell is "inside" a triangle, or free of it, only where the sign of one of the three
///   products is beyond what rounding can change.
/// - Edges: where a segment meets an edge at an angle, rounding moves the crossing by less than the gap that
///   edges of other cells keep. Where the two are almost parallel it may move it anywhere. So the edges are
///   also kept by their direction, and those that run along with a segment are always tried.
/// - Triangles too thin to say that a point far outside is none of theirs are tried for all points there.
/// - Whatever is farther away than this reasoning reaches, or not finite, is asked of everything in turn, and
///   so are small polygons and those with more triangles than a grid would be good for.
class PolygonGrid
{
public:
  enum class Place : std::uint8_t
  {
    Outside, ///< no point is inside, and no edge is near
    Inside,  ///< all points are inside
    Unknown
  };

  /// points: three doubles for each vertex; triangles: three indices for each triangle; edges: two indices
  /// for each boundary edge. What names a vertex that is not there is left out. All are copied. Memory: some
  /// 100 KiB and the copies for lassos drawn by hand, 40 MiB and the copies at most: where the lists of the
  /// triangles' or the edges' cells would grow longer than max_entries, the cells are made larger.
  PolygonGrid(const std::vector<double>& points, const std::vector<int>& triangles,
              const std::vector<int>& edges, std::size_t max_entries = 2'000'000);

  /// Does the point lie in any of the triangles, by `point_in_triangle`?
  [[nodiscard]] bool contains(const double* p) const
  {
    const double column = (p[0] - mX) * mScaleX;
    const double row = (p[1] - mY) * mScaleY;
    if (column >= 0.0 && row >= 0.0 && column < mSide && row < mSide) {
      const std::size_t cell = static_cast<std::size_t>(row) * mStride + static_cast<std::size_t>(column);
      return mStates[cell] == State::Inside || (mStates[cell] == State::Listed && is_in_listed(p, cell));
    }
    return contains_outside(p);
  }

  /// Does the segment cross any of the boundary edges, by `segments_cross`?
  [[nodiscard]] bool crosses_edge(const double* p1, const double* p2) const;

  /// Where the points of a box are, its sides included. What is Outside may still be touched by a segment
  /// along an edge's line, up to rounding.
  [[nodiscard]] Place place_of_box(double xmin, double ymin, double xmax, double ymax) const
  {
    const double left = (xmin - mX) * mScaleX;
    const double right = (xmax - mX) * mScaleX;
    const double bottom = (ymin - mY) * mScaleY;
    const double top = (ymax - mY) * mScaleY;
    if (!(left >= 0.0 && bottom >= 0.0 && right < mSide && top < mSide && left <= right && bottom <= top)) {
      return Place::Unknown; // not within the grid, not a number, or inverted
    }
    return place_of_cells(static_cast<std::size_t>(left), static_cast<std::size_t>(bottom),
                          static_cast<std::size_t>(right), static_cast<std::size_t>(top));
  }

  /// Is there a grid, or is everything asked in turn?
  [[nodiscard]] bool has_cells() const { return mStride != 0; }

  /// Cells in each direction; 0 without a grid.
  [[nodiscard]] std::size_t cells_per_side() const { return mStride; }

  /// The sides of the grid, which lie a little outside the polygon's box, and how far from the lower left
  /// corner is_solid() tells something.
  struct Extent
  {
    double left;
    double right;
    double bottom;
    double top;
    double reach;
  };
  /// For a grid with cells only.
  [[nodiscard]] Extent extent() const
  {
    // A little more, so that rounding puts no point of the grid beyond them.
    const double more = 1e-6;
    return {mX - more / mScaleX, mX + (mSide + more) / mScaleX, mY - more / mScaleY,
            mY + (mSide + more) / mScaleY, mReach};
  }

  /// True when no point beyond these sides is in a triangle, as far as the reach.
  [[nodiscard]] bool is_solid() const { return has_cells() && mThin.empty(); }

private:
  class Builder;

  enum class State : std::uint8_t
  {
    Outside, // of all triangles
    Inside,  // of one of them
    Listed   // some may hold a point of the cell
  };

  /// Of a range of columns and rows, the last ones included.
  [[nodiscard]] Place place_of_cells(std::size_t left, std::size_t bottom, std::size_t right,
                                     std::size_t top) const
  {
    const Place place = mPlaces[bottom * mStride + left];
    for (std::size_t row = bottom; row <= top && place != Place::Unknown; ++row) {
      for (std::size_t column = left; column <= right; ++column) {
        if (mPlaces[row * mStride + column] != place) {
          return Place::Unknown;
        }
      }
    }
    return place;
  }

  [[nodiscard]] bool is_in_listed(const double* p, std::size_t cell) const;
  [[nodiscard]] bool contains_outside(const double* p) const;
  [[nodiscard]] bool crosses_any(const double* p1, const double* p2) const;
  [[nodiscard]] bool crosses_near(const double* p1, const double* p2, const double* u1,
                                  const double* u2) const;
  [[nodiscard]] bool crosses_in_row(const double* p1, const double* p2, std::size_t row, double first,
                                    double last) const;

  std::vector<double> mTriangles; // x, y of three corners each
  std::vector<double> mEdges;     // x, y of two ends each

  double mX = 0.0; // where the grid begins
  double mY = 0.0;
  double mScaleX = 0.0; // cells for each pixel
  double mScaleY = 0.0;
  double mSide = 0.0; // cells in each direction; 0: no grid
  std::size_t mStride = 0;
  double mReach = -1.0; // how far from the grid's start the reasoning above holds
  double mShortest = 0.0;
  std::vector<State> mStates;
  std::vector<Place> mPlaces;
  CellLists mTrianglesOf;
  CellLists mEdgesOf;
  CellLists mEdgesAlong;            // by direction
  std::vector<std::uint32_t> mThin; // triangles
};

} // namespace morrow
