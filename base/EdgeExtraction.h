// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <functional>

#include <vtkType.h>

class vtkPointSet;
class vtkPolyData;

namespace morrow {

/// What has been met on the way.
struct EdgeExtractionReport
{
  vtkIdType broken_cells = 0; // too few points, or points that the data set does not have, …; left out
};

/// Gives the output a vertex for each point of the input's vertex cells, a line for each of its different
/// edges, and their cells' data. The output has the input's points already. The input has points and cells.
///
/// progress is called about ten times with the part of the cells done, from 0 to 1; when it returns true, the
/// cell of that moment is the last one whose edges are taken.
EdgeExtractionReport extract_edges(vtkPointSet& input, vtkPolyData& output,
                                   const std::function<bool(double)>& progress);

} // namespace morrow
