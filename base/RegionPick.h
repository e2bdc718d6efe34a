// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <vector>

#include "DepthProjection.h" // ScreenFrame
#include "MultiCellPicker.h" // SubCellPick

class PickBounds;
class vtkMatrix4x4;
class vtkPointSet;
class vtkRenderer;

namespace morrow {

class CellBlocksCache;
class WindowDepth;

/// What a region pick asks of a data set.
struct RegionQuestion
{
  /// Whole cells, visible or not. The renderer must have a window.
  RegionQuestion(const PickBounds& region, vtkMatrix4x4& to_view, vtkRenderer& renderer);

  const PickBounds& region;
  vtkMatrix4x4& to_view; // from the data set's coordinates, depth 0 to 1
  vtkRenderer& renderer;
  ScreenFrame frame;
  bool takes_touching_cells = false;
  const WindowDepth* depth = nullptr;                         // null: everything is visible
  std::vector<MultiCellPicker::SubCellPick>* spare = nullptr; // memory to use for many cells; may be null
};

/// The cells of the data set to record, in the order of their ids; none when it has no record.
[[nodiscard]] std::vector<MultiCellPicker::SubCellPick>
cells_in_region(const RegionQuestion& question, vtkPointSet& data, CellBlocksCache& blocks);

} // namespace morrow
