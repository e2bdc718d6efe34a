// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "RingCrossings.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
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

// Whether a point on the line of the side lies between its ends, and is none of them.
bool is_between_ends(const std::vector<double>& ring, std::size_t side, std::size_t point)
{
  double product = 0.0;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const double p = ring[3 * point + axis];
    product += (p - ring[3 * side + axis]) * (p - ring[(3 * side + 3) % ring.size() + axis]);
  }
  return product < 0.0;
}

bool are_on_one_line(const std::vector<double>& ring, std::size_t a, std::size_t b)
{
  return std::all_of(std::begin(Projections), std::end(Projections), [&](Projection projection) {
    const Side line = side_of(ring, a, projection);
    const Side side = side_of(ring, b, projection);
    return turn(line, side.from) == 0.0 && turn(line, side.to) == 0.0;
  });
}

// Whether one of them ends inside the other, on the same line.
bool overlap(const std::vector<double>& ring, std::size_t a, std::size_t b)
{
  const std::size_t num_sides = ring.size() / 3;
  return are_on_one_line(ring, a, b) &&
         (is_between_ends(ring, a, b) || is_between_ends(ring, a, (b + 1) % num_sides) ||
          is_between_ends(ring, b, a) || is_between_ends(ring, b, (a + 1) % num_sides));
}

template<typename Question>
int count_in_sample(std::size_t num_sides, Question&& question)
{
  std::mt19937 random; // its sequence is the same everywhere, unlike that of a distribution
  int count = 0;
  for (int i = 0; i < SampleSize; ++i) {
    const std::size_t a = random() % num_sides;
    const std::size_t b = (a + 1 + random() % (num_sides - 1)) % num_sides; // any but a
    count += question(a, b) ? 1 : 0;
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
    count = std::max(count, count_in_sample(num_sides, [&](std::size_t a, std::size_t b) {
                       return cross(side_of(ring, a, projection), side_of(ring, b, projection));
                     }));
  }
  count += count_in_sample(num_sides, [&](std::size_t a, std::size_t b) { return overlap(ring, a, b); });
  const double num_pairs = 0.5 * static_cast<double>(num_sides) * static_cast<double>(num_sides - 1);
  return num_pairs * count / SampleSize;
}

} // namespace morrow
