// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "RingCrossings.h"

#include "PolygonOracle.h"

#include <gtest/gtest.h>

namespace {

using morrow::estimate_crossings;
using namespace morrow_test;

TEST(RingCrossings, RingsThatDoNotCrossHaveNone)
{
  EXPECT_EQ(estimate_crossings({}), 0.0);
  EXPECT_EQ(estimate_crossings(Ring{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}.coords()), 0.0);
  EXPECT_EQ(estimate_crossings(Ring{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}.coords()), 0.0);
  EXPECT_EQ(estimate_crossings(circle(10'000).coords()), 0.0);
  EXPECT_EQ(estimate_crossings(Ring(Ring::Points(1'000, {1, 1, 1})).coords()), 0.0);
}

TEST(RingCrossings, CountsPairsInEveryPlane)
{
  // One of the six pairs of sides crosses.
  const Ring bow_tie = {{0, 0, 0}, {1, 1, 0}, {1, 0, 0}, {0, 1, 0}};
  for (const Plane plane : {Plane::XY, Plane::YZ, Plane::ZX, Plane::Tilted}) {
    EXPECT_NEAR(estimate_crossings(bow_tie.in(plane).coords()), 1.0, 0.02);
  }
  // Of a star of an odd number of points each side crosses all but its two neighbours: n (n - 3) / 2.
  for (const int n : {5, 101, 2'001}) {
    EXPECT_NEAR(estimate_crossings(star(n).coords()), 0.5 * n * (n - 3), 0.01 * n * n);
  }
}

TEST(RingCrossings, CountsSidesThatOverlapOnOneLine)
{
  constexpr std::size_t Count = 1'000;
  Ring line;
  for (const Point3& p : random_ring(Count, 1).points) {
    line.points.push_back({p[0], 0.0, 0.0});
  }
  const auto stretch = [&](std::size_t i) {
    return std::minmax(line.points[i][0], line.points[(i + 1) % Count][0]);
  };
  int num_overlaps = 0;
  for (std::size_t i = 0; i < Count; ++i) {
    for (std::size_t j = i + 1; j < Count; ++j) {
      num_overlaps += stretch(i).first < stretch(j).second && stretch(j).first < stretch(i).second ? 1 : 0;
    }
  }
  ASSERT_GT(num_overlaps, 300'000); // of the half million pairs
  for (const Plane plane : {Plane::XY, Plane::YZ, Plane::ZX, Plane::Tilted}) {
    EXPECT_NEAR(estimate_crossings(line.in(plane).coords()), num_overlaps, 0.005 * Count * Count);
  }
}

TEST(RingCrossings, SidesThatMeetAtTheirEndsAreNone)
{
  Ring there_and_back;
  Ring square; // with many points on each of its sides
  for (int i = 0; i < 400; ++i) {
    there_and_back.points.push_back({1.0 * (i % 2), 1.0 * (i % 2), 0.0});
    const double t = 0.25 * (i % 100);
    const Point3 places[] = {{t, 0.0, 0.0}, {25.0, t, 0.0}, {25.0 - t, 25.0, 0.0}, {0.0, 25.0 - t, 0.0}};
    square.points.push_back(places[i / 100]);
  }
  for (const Plane plane : {Plane::XY, Plane::YZ, Plane::ZX, Plane::Tilted}) {
    EXPECT_EQ(estimate_crossings(there_and_back.in(plane).coords()), 0.0);
    EXPECT_EQ(estimate_crossings(square.in(plane).coords()), 0.0);
  }
}

} // namespace
