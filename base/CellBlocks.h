// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include <vtkType.h>

namespace morrow {

class MeshArrays;

/// An axis-aligned box. One that reaches to infinity on all sides stands for what has no bounds.
struct BlockBox
{
  float lower[3];
  float upper[3];
};

/// Boxes around runs of cells with neighbouring ids, in levels: a leaf holds 32 cells, any other box 16 of
/// the level below. That is 0.8 bytes a cell, and what is visited through it comes in the order of the ids.
class CellBlocks
{
public:
  static constexpr vtkIdType CellsInLeaf = 32;
  static constexpr int LogFanOut = 4;
  static constexpr std::size_t FanOut = std::size_t{1} << LogFanOut;

  /// The mesh must have its cells in arrays.
  explicit CellBlocks(const MeshArrays& mesh);

  /// Whether the cells lie about so wildly that boxes around them are of no use; then there are none.
  [[nodiscard]] bool are_scattered() const noexcept { return mLevels.empty(); }

  /// Whether there are cells without points, or broken ones: boxes tell nothing of them.
  [[nodiscard]] bool has_empty_cells() const noexcept { return mHasEmptyCells; }

  /// Whether the cells are triangles in one array, with points that exist, so that none needs to be looked
  /// at.
  [[nodiscard]] bool are_known_triangles() const noexcept { return mAreTriangles; }

  /// Whether VTK measures the distance of a ray from all of the cells along the shortest way.
  [[nodiscard]] bool are_round() const noexcept { return mAreRound; }

  /// Whether there are triangles, or parts of quadrilaterals and polygons, whose corners are one point.
  [[nodiscard]] bool has_collapsed_cells() const noexcept { return mHasCollapsedCells; }

  /// Whether VTK may find a ray to hit a cell outside of the box around its points.
  [[nodiscard]] bool has_curved_cells() const noexcept { return mHasCurvedCells; }

  /// Around all cells with points. There must be boxes.
  [[nodiscard]] BlockBox whole() const;

  enum class Verdict
  {
    Skip, ///< nothing in the box is of interest
    Take, ///< all of it is
    Open  ///< look inside
  };

  /// Calls judge(box) from the largest boxes down, and visit(first, last, verdict) with runs of cells, the
  /// last excluded: those skipped, those taken, and leaves still to be opened. visit() returns whether to go
  /// on. There must be boxes.
  template<typename Judge, typename Visit>
  bool walk(Judge&& judge, Visit&& visit) const
  {
    const std::size_t top = mLevels.size() - 1;
    return this->walk_level(top, 0, mLevels[top].size(), judge, visit);
  }

  /// Memory in use.
  [[nodiscard]] std::size_t bytes() const noexcept;

private:
  using Level = std::vector<BlockBox>;

  void make_leaves(const MeshArrays& mesh);
  [[nodiscard]] bool are_too_large() const;
  void make_levels();

  template<typename Judge, typename Visit>
  bool walk_level(std::size_t level, std::size_t first, std::size_t last, Judge& judge, Visit& visit) const
  {
    for (std::size_t i = first; i < last; ++i) {
      const Verdict verdict = judge(mLevels[level][i]);
      if (verdict == Verdict::Open && level > 0) {
        const std::size_t end = std::min((i + 1) * FanOut, mLevels[level - 1].size());
        if (!this->walk_level(level - 1, i * FanOut, end, judge, visit)) {
          return false;
        }
        continue;
      }
      const vtkIdType cells = CellsInLeaf << (LogFanOut * static_cast<int>(level));
      const vtkIdType begin = static_cast<vtkIdType>(i) * cells;
      if (!visit(begin, std::min(begin + cells, mCells), verdict)) {
        return false;
      }
    }
    return true;
  }

  vtkIdType mCells;
  bool mAreTriangles = true;
  bool mAreRound = false;
  bool mHasEmptyCells = false;
  bool mHasCollapsedCells = false;
  bool mHasCurvedCells = false;
  std::vector<Level> mLevels; // leaves first
};

} // namespace morrow
