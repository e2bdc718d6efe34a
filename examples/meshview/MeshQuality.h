// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Mesh.h" // ValueRange

#include <optional>

class vtkDataSet;
class vtkGenericCell;

/// The quality of elements is the measure that VTK calls shape, a mean ratio: 1 for equilateral triangles and
/// tetrahedra, squares and cubes, towards 0 the flatter or more distorted an element is, and 0 for degenerate
/// and inverted ones. It does not depend on size. Wedges and pyramids, for which VTK has none, have the same
/// measure as its hexahedra: the harmonic mean of the mean ratios at their corners; 1 for an upright wedge on
/// an equilateral triangle as high as its sides are long, and for half an octahedron. Curved elements have
/// that of their corners. Other cells (vertices, lines, polygons, strips, polyhedra) have none.
namespace MeshQuality {

/// Of one cell; none when its type has none.
[[nodiscard]] std::optional<double> of_cell(vtkGenericCell& cell);

/// The cell array that add_to() adds. Mesh files have none of this name.
[[nodiscard]] const char* array_name();

/// From the worst to the best there can be.
inline constexpr ValueRange kRange = {0.0, 1.0};

/// The name of the measure, for people.
[[nodiscard]] const char* measure_name();

/// Adds the quality of all cells as a cell array of doubles, NaN for those without.
void add_to(vtkDataSet& mesh);

} // namespace MeshQuality
