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

} // namespace
