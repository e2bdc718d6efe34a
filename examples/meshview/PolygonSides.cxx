// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "PolygonSides.h"

#include <algorithm>
#include <numeric>

namespace {

/// A stable counting sort by one of the ends.
void sort_by(vtkIdType std::pair<vtkIdType, vtkIdType>::*end, vtkIdType number_of_points,
             const std::vector<PolygonSide>& from, std::vector<PolygonSide>& to)
{
  std::vector<std::size_t> places(static_cast<std::size_t>(number_of_points) + 1, 0);
  for (const PolygonSide& side : from) {
    ++places[static_cast<std::size_t>(side.ends.*end) + 1];
  }
  std::partial_sum(places.begin(), places.end(), places.begin());
  for (const PolygonSide& side : from) {
    to[places[static_cast<std::size_t>(side.ends.*end)]++] = side;
  }
}

} // namespace

void add_sides(const vtkIdType* corners, vtkIdType count, std::size_t polygon,
               std::vector<PolygonSide>& sides)
{
  for (vtkIdType i = 0; i < count; ++i) {
    const vtkIdType from = corners[i];
    const vtkIdType to = corners[(i + 1) % count];
    if (from != to) {
      sides.push_back({std::minmax(from, to), from < to, polygon});
    }
  }
}

void sort_sides(std::vector<PolygonSide>& sides, vtkIdType number_of_points)
{
  std::vector<PolygonSide> by_second(sides.size());
  sort_by(&std::pair<vtkIdType, vtkIdType>::second, number_of_points, sides, by_second);
  sort_by(&std::pair<vtkIdType, vtkIdType>::first, number_of_points, by_second, sides);
}
