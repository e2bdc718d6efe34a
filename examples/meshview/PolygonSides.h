// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <vtkType.h> // vtkIdType

#include <cstddef>
#include <utility>
#include <vector>

/// An edge as one polygon has it.
struct PolygonSide
{
  std::pair<vtkIdType, vtkIdType> ends; ///< points, the lower id first
  bool is_upwards;                      ///< the polygon goes from the lower id to the higher one
  std::size_t polygon;
};

/// Appends the sides of a polygon with these corners. A side from a point to itself is left out.
void add_sides(const vtkIdType* corners, vtkIdType count, std::size_t polygon,
               std::vector<PolygonSide>& sides);

/// Brings those of one edge together, in the order in which they were, and the edges in ascending order of
/// their ends, which are below number_of_points. Takes time in proportion to the number of sides and points.
void sort_sides(std::vector<PolygonSide>& sides, vtkIdType number_of_points);

/// Calls visit(first, last) with the range of sides of each edge in turn.
template<class Visit>
void for_each_edge(const std::vector<PolygonSide>& sides, Visit&& visit)
{
  for (auto first = sides.begin(); first != sides.end();) {
    auto last = first;
    while (last != sides.end() && last->ends == first->ends) {
      ++last;
    }
    visit(first, last);
    first = last;
  }
}
