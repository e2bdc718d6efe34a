// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <array>
#include <vector>

namespace morrow {

/// The edges of VTK's linear cells with a fixed number of points, as VTK orders and directs them.
class LinearCellEdges
{
public:
  struct Edge
  {
    int a; // both count the cell's points from 0
    int b;
  };

  struct Cell
  {
    int points = 0; // 0: not a linear cell with a fixed number of points
    std::vector<Edge> edges;
  };

  /// Asks VTK.
  LinearCellEdges();

  /// type is one of VTK's cell types; any other number is none.
  [[nodiscard]] const Cell& of(int type) const noexcept
  {
    return mCells[type >= 0 && type < NumTypes ? static_cast<std::size_t>(type) : 0];
  }

private:
  static constexpr int NumTypes = 20; // all linear ones are below; 0 is the empty cell

  std::array<Cell, NumTypes> mCells;
};

} // namespace morrow
