// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "BrantBox.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

constexpr double gInfinity = std::numeric_limits<double>::infinity();
constexpr double gNaN = std::numeric_limits<double>::quiet_NaN();

const BrantBox& unit_box()
{
  static const BrantBox box({0, 0, 0}, {1, 1, 1});
  return box;
}

void expect_corners(const BrantBox& box, const BrantVector& minimum, const BrantVector& maximum)
{
  EXPECT_FALSE(box.is_empty());
  EXPECT_EQ(box.minimum(), minimum);
  EXPECT_EQ(box.maximum(), maximum);
}

// Empty

static_assert(BrantBox().is_empty());

TEST(BrantBoxTest, AnEmptyBoxHasInvertedFiniteCorners)
{
  const BrantBox box;
  EXPECT_TRUE(box.is_empty());
  EXPECT_EQ(box.minimum(), BrantVector(1, 1, 1));
  EXPECT_EQ(box.maximum(), BrantVector(-1, -1, -1));
}

TEST(BrantBoxTest, ResetMakesAnyBoxEmptyAgain)
{
  BrantBox box({0, 0, 0}, {1, 1, 1});
  box.reset();
  EXPECT_TRUE(box.is_empty());
  box.reset();
  EXPECT_TRUE(box.is_empty());
  // No trace of the old content: the next point stands alone.
  box |= BrantVector(5, 5, 5);
  expect_corners(box, {5, 5, 5}, {5, 5, 5});
}

// Making

TEST(BrantBoxTest, ResetToAPointIsAFlatBoxThatIsNotEmpty)
{
  BrantBox box({0, 0, 0}, {1, 1, 1});
  box.reset(BrantVector(2, 3, 4));
  expect_corners(box, {2, 3, 4}, {2, 3, 4});
}

TEST(BrantBoxTest, TakesItsTwoCorners)
{
  expect_corners(BrantBox({-1, 2, 0}, {3, 2, 5}), {-1, 2, 0}, {3, 2, 5});
  BrantBox box;
  box.reset({-1, 2, 0}, {3, 2, 5});
  expect_corners(box, {-1, 2, 0}, {3, 2, 5});
}

TEST(BrantBoxTest, SwappedCornersChangePlacesAlongEachAxis)
{
  expect_corners(BrantBox({1, 1, 1}, {-1, -1, -1}), {-1, -1, -1}, {1, 1, 1});
  expect_corners(BrantBox({1, -2, 3}, {-1, 2, -3}), {-1, -2, -3}, {1, 2, 3});
}

TEST(BrantBoxTest, ResetsFromItsOwnCorners)
{
  BrantBox box({0, 0, 0}, {1, 2, 3});
  box.reset(box.minimum(), box.maximum());
  expect_corners(box, {0, 0, 0}, {1, 2, 3});
  box.reset(box.maximum());
  expect_corners(box, {1, 2, 3}, {1, 2, 3});
}

TEST(BrantBoxTest, ACornerWithANaNIsIgnored)
{
  expect_corners(BrantBox({gNaN, 0, 0}, {1, 2, 3}), {1, 2, 3}, {1, 2, 3});
  expect_corners(BrantBox({1, 2, 3}, {9, gNaN, 9}), {1, 2, 3}, {1, 2, 3});
  EXPECT_TRUE(BrantBox({gNaN, 0, 0}, {0, 0, gNaN}).is_empty());
}

TEST(BrantBoxTest, ResetToANaNIsEmpty)
{
  BrantBox box({0, 0, 0}, {1, 1, 1});
  box.reset(BrantVector(0, 0, gNaN));
  EXPECT_TRUE(box.is_empty());
}

// Growing

TEST(BrantBoxTest, GrowsToHoldAPointInEveryDirection)
{
  BrantBox box = unit_box();
  box |= BrantVector(-1, 0.5, 2);
  expect_corners(box, {-1, 0, 0}, {1, 1, 2});
  box |= BrantVector(0, 0, 0);
  expect_corners(box, {-1, 0, 0}, {1, 1, 2});
}

TEST(BrantBoxTest, GrowsToHoldABox)
{
  BrantBox box = unit_box();
  box |= BrantBox({2, -3, 0.25}, {4, -2, 0.75});
  expect_corners(box, {0, -3, 0}, {4, 1, 1});
}

TEST(BrantBoxTest, GrowthCanBeChained)
{
  BrantBox box;
  (box |= BrantVector(1, 0, 0)) |= BrantBox({0, 2, 0}, {0, 3, 0});
  expect_corners(box, {0, 0, 0}, {1, 3, 0});
}

TEST(BrantBoxTest, AnEmptyBoxAddsNothing)
{
  // Its inverted corners (1 and -1) must not leak into the union.
  BrantBox box({5, 5, 5}, {6, 6, 6});
  box |= BrantBox();
  expect_corners(box, {5, 5, 5}, {6, 6, 6});
}

TEST(BrantBoxTest, AnEmptyBoxBecomesWhatItIsGiven)
{
  BrantBox from_point;
  from_point |= BrantVector(7, 8, 9);
  expect_corners(from_point, {7, 8, 9}, {7, 8, 9});

  BrantBox from_box;
  from_box |= unit_box();
  expect_corners(from_box, {0, 0, 0}, {1, 1, 1});

  BrantBox from_empty;
  from_empty |= BrantBox();
  EXPECT_TRUE(from_empty.is_empty());
}

TEST(BrantBoxTest, GrowsByItselfWithoutChange)
{
  BrantBox box({0, 0, 0}, {1, 2, 3});
  const BrantBox& same = box;
  box |= same;
  expect_corners(box, {0, 0, 0}, {1, 2, 3});
}

TEST(BrantBoxTest, APointWithANaNAddsNothingNotEvenItsOtherCoordinates)
{
  BrantBox box = unit_box();
  box |= BrantVector(gNaN, 9, 9);
  box |= BrantVector(9, gNaN, 9);
  box |= BrantVector(9, 9, gNaN);
  expect_corners(box, {0, 0, 0}, {1, 1, 1});

  BrantBox empty;
  empty |= BrantVector(gNaN, 0, 0);
  EXPECT_TRUE(empty.is_empty());
}

TEST(BrantBoxTest, TakesInfiniteCoordinates)
{
  BrantBox box = unit_box();
  box |= BrantVector(gInfinity, 0, -gInfinity);
  expect_corners(box, {0, 0, -gInfinity}, {gInfinity, 1, 1});
}

// Overlap

TEST(BrantBoxTest, BoxesThatShareSpaceOverlap)
{
  EXPECT_TRUE(unit_box().overlap(0.0, BrantBox({0.5, 0.5, 0.5}, {2, 2, 2})));
  // Contained, and containing, without any corner or face in common.
  EXPECT_TRUE(unit_box().overlap(0.0, BrantBox({0.4, 0.4, 0.4}, {0.6, 0.6, 0.6})));
  EXPECT_TRUE(unit_box().overlap(0.0, BrantBox({-9, -9, -9}, {9, 9, 9})));
  EXPECT_TRUE(unit_box().overlap(0.0, unit_box()));
}

TEST(BrantBoxTest, TouchingCountsAtToleranceZero)
{
  EXPECT_TRUE(unit_box().overlap(0.0, BrantBox({1, 0, 0}, {2, 1, 1})));
  EXPECT_TRUE(unit_box().overlap(0.0, BrantBox({1, 1, 1}, {2, 2, 2})));
  EXPECT_TRUE(unit_box().overlap(0.0, BrantBox({1, 1, 1}, {1, 1, 1})));
}

TEST(BrantBoxTest, ASeparationAlongAnySingleAxisAndSideIsNoOverlap)
{
  for (int axis = 0; axis < 3; ++axis) {
    for (const double shift : {-1.5, 1.5}) {
      BrantVector offset;
      offset[axis] = shift;
      const BrantBox other(offset, BrantVector(1, 1, 1) + offset);
      EXPECT_FALSE(unit_box().overlap(0.0, other)) << axis << ' ' << shift;
      EXPECT_FALSE(other.overlap(0.0, unit_box())) << axis << ' ' << shift;
    }
  }
}

TEST(BrantBoxTest, TheToleranceBridgesAGapOfExactlyItsSize)
{
  const BrantBox far_box({1.5, 0, 0}, {2, 1, 1});
  EXPECT_TRUE(unit_box().overlap(0.5, far_box));
  EXPECT_TRUE(far_box.overlap(0.5, unit_box()));
  EXPECT_FALSE(unit_box().overlap(0.49, far_box));
  EXPECT_FALSE(far_box.overlap(0.49, unit_box()));
}

TEST(BrantBoxTest, ANegativeToleranceAsksForMoreThanATouch)
{
  EXPECT_FALSE(unit_box().overlap(-0.25, BrantBox({1, 0, 0}, {2, 1, 1})));
  EXPECT_TRUE(unit_box().overlap(-0.25, BrantBox({0.75, 0, 0}, {2, 1, 1})));
}

TEST(BrantBoxTest, NothingOverlapsAnEmptyBox)
{
  const BrantBox empty;
  const BrantBox everything({-gInfinity, -gInfinity, -gInfinity}, {gInfinity, gInfinity, gInfinity});
  for (const double tolerance : {0.0, 10.0, gInfinity}) {
    EXPECT_FALSE(unit_box().overlap(tolerance, empty)) << tolerance;
    EXPECT_FALSE(empty.overlap(tolerance, unit_box())) << tolerance;
    EXPECT_FALSE(empty.overlap(tolerance, empty)) << tolerance;
    EXPECT_FALSE(empty.overlap(tolerance, everything)) << tolerance;
  }
}

TEST(BrantBoxTest, AToleranceThatIsNoNumberFindsNothing)
{
  EXPECT_FALSE(unit_box().overlap(gNaN, unit_box()));
}

// Closest point

TEST(BrantBoxTest, APointInsideIsItsOwnClosestPoint)
{
  EXPECT_EQ(unit_box().closest_point({0.25, 0.5, 0.75}), BrantVector(0.25, 0.5, 0.75));
  EXPECT_EQ(unit_box().closest_point({0, 1, 0.5}), BrantVector(0, 1, 0.5));
}

TEST(BrantBoxTest, ThePointClosestToOutsideLiesOnTheFaceEdgeOrCorner)
{
  EXPECT_EQ(unit_box().closest_point({5, 0.5, 0.25}), BrantVector(1, 0.5, 0.25));
  EXPECT_EQ(unit_box().closest_point({-5, 5, 0.25}), BrantVector(0, 1, 0.25));
  EXPECT_EQ(unit_box().closest_point({-5, 5, -5}), BrantVector(0, 1, 0));
  EXPECT_EQ(unit_box().closest_point({gInfinity, -gInfinity, 0.5}), BrantVector(1, 0, 0.5));
}

TEST(BrantBoxTest, TheOnlyPointOfAFlatBoxIsTheClosest)
{
  EXPECT_EQ(BrantBox({2, 3, 4}, {2, 3, 4}).closest_point({-9, 9, 4}), BrantVector(2, 3, 4));
}

TEST(BrantBoxTest, ANaNCoordinateStaysNaNInTheClosestPoint)
{
  const BrantVector closest = unit_box().closest_point({5, gNaN, -5});
  EXPECT_EQ(closest.x(), 1.0);
  EXPECT_NE(closest.y(), closest.y());
  EXPECT_EQ(closest.z(), 0.0);
}

TEST(BrantBoxTest, AnEmptyBoxIsInfinitelyFarFromEveryPoint)
{
  const BrantVector point(0, 0, 0);
  EXPECT_EQ(BrantBox().closest_point(point), BrantVector(gInfinity, gInfinity, gInfinity));
  // So that "within a radius of the closest point" is never true.
  EXPECT_GT(BrantBox().closest_point(point).distance_between(point), 1e308);
}

} // namespace
