// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "RingCrossings.h"

#include <algorithm>
#include <cstddef>
#include <random>

namespace morrow {

namespace {

constexpr int SampleSize = 1 << 16;

struct Point
{
  double u;
  double v;
};

struct Side
{
  Point from;
  Point to;
};

// One of the three views along an axis: the coordinates that it shows.
struct Projection
{
  std::size_t u;
  std::size_t v;
};

constexpr Projection Projections[] = {{0, 1}, {1, 2}, {2, 0}};

Point project(const std::vector<double>& ring, std::size_t index, Projection projection)
{
  const std::size_t point = index % (ring.size() / 3);
  return {ring[3 * point + projection.u], ring[3 * point + projection.v]};
}

Side side_of(const std::vector<double>& ring, std::size_t index, Projection projection)
{
  return {project(ring, index, projection), project(ring, index + 1, projection)};
}

// On which side of the line the point is: positive on the left, 0 on the line.
double turn(const Side& line, const Point& point)
{
  return (line.to.u - line.from.u) * (point.v - line.from.v) -
         (line.to.v - line.from.v) * (point.u - line.from.u);
}

bool separates(const Side& line, const Side& side)
{
  const double from = turn(line, side.from);
  const double to = turn(line, side.to);
  return (from < 0.0 && to > 0.0) || (from > 0.0 && to < 0.0);
}

bool cross(const Side& a, const Side& b)
{
  return separates(a, b) && separates(b, a);
}

int count_in_sample(const std::vector<double>& ring, Projection projection)
{
  const std::size_t num_sides = ring.size() / 3;
  std::mt19937 random; // its sequence is the same everywhere, unlike that of a distribution
  int count = 0;
  for (int i = 0; i < SampleSize; ++i) {
    const std::size_t a = random() % num_sides;
    const std::size_t b = (a + 1 + random() % (num_sides - 1)) % num_sides; // any but a
    count += cross(side_of(ring, a, projection), side_of(ring, b, projection)) ? 1 : 0;
  }
  return count;
}

} // namespace

// Two of the three views may show the plane of the ring from its edge, where nothing crosses.
double estimate_crossings(const std::vector<double>& ring)
{
  const std::size_t num_sides = ring.size() / 3;
  if (num_sides < 4) {
    return 0.0;
  }
  int count = 0;
  for (const Projection projection : Projections) {
    count = std::max(count, count_in_sample(ring, projection));
  }
  const double num_pairs = 0.5 * static_cast<double>(num_sides) * static_cast<double>(num_sides - 1);
  return num_pairs * count / SampleSize;
}

} // namespace morrow
