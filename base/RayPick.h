// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <vector>

#include "MultiCellPicker.h" // SubCellPick

class vtkDataSet;
class vtkGenericCell;
class vtkTransform;

namespace morrow {

class CellBlocksCache;

struct PickRay;

/// The cells of the data set that the ray hits, in the order of their ids, with their points mapped by
/// to_world. scratch may hold any cell and is overwritten.
[[nodiscard]] std::vector<MultiCellPicker::SubCellPick> cells_on_ray(const PickRay& ray, vtkDataSet& data,
                                                                     vtkTransform& to_world,
                                                                     vtkGenericCell& scratch,
                                                                     CellBlocksCache& blocks);

} // namespace morrow
