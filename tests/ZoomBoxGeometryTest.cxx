// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "ZoomBoxGeometry.h"

#include "CameraOracle.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

namespace {

using morrow::BoxBounds;
namespace oracle = morrow_test::oracle;

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

void expect_near(const BoxBounds& ours, const BoxBounds& theirs)
{
  for (std::size_t side = 0; side < 6; ++side) {
    EXPECT_NEAR(ours[side], theirs[side], 1e-12) << "side " << side;
  }
}

void expect_near(const BrantVector& ours, const BrantVector& theirs)
{
  EXPECT_LT(ours.distance_between(theirs), 1e-12) << ours.x() << " " << ours.y() << " " << ours.z();
}

constexpr BoxBounds kVisible = {-1.0, 1.0, -2.0, 2.0, -3.0, 3.0};

// --- The box

TEST(ZoomBoxTest, BecomesACubeOfItsLargestExtent)
{
  expect_near(morrow::adjusted_for_zoom({0.0, 1.0, 0.0, 2.0, 0.0, 4.0}, nullptr),
              {-1.5, 2.5, -1.0, 3.0, 0.0, 4.0});
}

TEST(ZoomBoxTest, OpenSidesArePutAt1)
{
  expect_near(morrow::adjusted_for_zoom({-1e37, 1e37, -kInf, kInf, -1e38, 1e300}, nullptr),
              {-1.0, 1.0, -1.0, 1.0, -1.0, 1.0});
  const BoxBounds inverted = {1e38, -1e38, 1e38, -1e38, 1e38, -1e38}; // VTK's empty box
  EXPECT_NEAR(morrow::framing_radius(morrow::adjusted_for_zoom(inverted, nullptr)), 0.55 * std::sqrt(12.0),
              1e-12);
  EXPECT_EQ(morrow::adjusted_for_zoom({-9e36, 9e36, 0.0, 0.0, 0.0, 0.0}, nullptr)[0], -9e36);
}

// A hundredth of the visible diagonal, whose square is 0.0001 of the other, is the limit.
TEST(ZoomBoxTest, ABoxThatIsNotFarSmallerStays)
{
  const BoxBounds box = {0.0, 0.02, 0.0, 0.04, 0.0, 0.0601};
  expect_near(morrow::adjusted_for_zoom(box, &kVisible), morrow::adjusted_for_zoom(box, nullptr));
}

TEST(ZoomBoxTest, APointBecomesAThousandthOfWhatIsVisible)
{
  const BoxBounds point = {5.0, 5.0, 6.0, 6.0, 7.0, 7.0};
  expect_near(morrow::adjusted_for_zoom(point, &kVisible), {4.997, 5.003, 5.997, 6.003, 6.997, 7.003});
}

// r = 0.00005, so t = 0.5: half of the extents that are visible, in thousandths, and half of its own.
TEST(ZoomBoxTest, ASmallBoxIsBlended)
{
  const double size = std::sqrt(0.00005);
  const BoxBounds box = {-1.0 * size, 1.0 * size, -2.0 * size, 2.0 * size, -3.0 * size, 3.0 * size};
  const double half = 0.5 * 0.001 * 6.0 + 0.5 * 6.0 * size;
  expect_near(morrow::adjusted_for_zoom(box, &kVisible), {-half, half, -half, half, -half, half});
}

TEST(ZoomBoxTest, IsThePlainOneForAnyBox)
{
  std::mt19937 random(1);
  std::uniform_real_distribution<double> place(-3.0, 3.0);
  std::uniform_real_distribution<double> magnitude(-5.0, 1.0);
  for (int time = 0; time < 2000; ++time) {
    const double size = std::pow(10.0, magnitude(random));
    BoxBounds box{};
    for (std::size_t side = 0; side < 6; side += 2) {
      box[side] = place(random);
      box[side + 1] = box[side] + size * place(random); // inverted ones as well
    }
    expect_near(morrow::adjusted_for_zoom(box, &kVisible), oracle::adjusted(box, &kVisible));
    expect_near(morrow::adjusted_for_zoom(box, nullptr), oracle::adjusted(box, nullptr));
  }
}

TEST(ZoomBoxTest, VisiblePointsAndLinesChangeNothing)
{
  const BoxBounds point = {1.0, 1.0, 1.0, 1.0, 1.0, 1.0};
  expect_near(morrow::adjusted_for_zoom(point, &point), point);
  expect_near(morrow::adjusted_for_zoom(kVisible, &point), morrow::adjusted_for_zoom(kVisible, nullptr));
}

TEST(ZoomBoxTest, NumbersThatAreNoneAreFound)
{
  for (std::size_t side = 0; side < 6; ++side) {
    BoxBounds box = kVisible;
    EXPECT_FALSE(morrow::has_nan(box));
    EXPECT_TRUE(morrow::is_finite(box));
    box[side] = kInf;
    EXPECT_FALSE(morrow::has_nan(box));
    EXPECT_FALSE(morrow::is_finite(box));
    box[side] = kNan;
    EXPECT_TRUE(morrow::has_nan(box));
    EXPECT_FALSE(morrow::is_finite(box));
  }
}

TEST(ZoomBoxTest, BetweenTwoBoxesEachSideMovesByItself)
{
  const BoxBounds end = {1.0, 3.0, -2.0, 2.0, -3.0, 13.0};
  expect_near(morrow::between(kVisible, end, 0.25), {-0.5, 1.5, -2.0, 2.0, -3.0, 5.5});
  expect_near(morrow::between(kVisible, end, 1.0), end);
}

// --- The camera

TEST(FramingTest, TheRadiusIsATenthMoreThanHalfTheDiagonal)
{
  EXPECT_NEAR(morrow::framing_radius({0.0, 3.0, 0.0, 4.0, 0.0, 0.0}), 2.75, 1e-12);
  EXPECT_NEAR(morrow::framing_radius({3.0, 0.0, 4.0, 0.0, 0.0, 0.0}), 2.75, 1e-12);
  EXPECT_EQ(morrow::framing_radius({2.0, 2.0, 2.0, 2.0, 2.0, 2.0}), 1.0);
}

TEST(FramingTest, TheDistanceIsThatAtWhichTheRadiusFillsTheAngle)
{
  EXPECT_NEAR(morrow::framing_distance(1.0, 90.0), 1.0, 1e-12);
  EXPECT_NEAR(morrow::framing_distance(2.0, 60.0), 2.0 * std::sqrt(3.0), 1e-12);
}

// --- The turn

constexpr BrantVector kX(1.0, 0.0, 0.0);
constexpr BrantVector kY(0.0, 1.0, 0.0);
constexpr BrantVector kZ(0.0, 0.0, 1.0);

TEST(ViewTurnTest, IsAboutTheCrossProduct)
{
  const morrow::ViewTurn turn = morrow::turn_between(kX, kY, kZ);
  EXPECT_NEAR(turn.angle, 90.0, 1e-12);
  expect_near(turn.axis, kZ);
  const BrantVector skew = (kX + kY).normalized();
  EXPECT_NEAR(morrow::turn_between(kX, skew, kZ).angle, 45.0, 1e-12);
  expect_near(morrow::turn_between(skew, kX, kZ).axis, -kZ);
}

TEST(ViewTurnTest, AlmostParallelDirectionsAreNotTurned)
{
  EXPECT_EQ(morrow::turn_between(kX, kX, kZ).angle, 0.0);
  const double limit = std::acos(1.0 - 0.0001);
  const auto at = [](double angle) { return BrantVector(std::cos(angle), std::sin(angle), 0.0); };
  EXPECT_EQ(morrow::turn_between(kX, at(0.99 * limit), kZ).angle, 0.0);
  EXPECT_NEAR(morrow::turn_between(kX, at(1.01 * limit), kZ).angle, 1.01 * limit * 57.29577951308232, 1e-9);
}

TEST(ViewTurnTest, AlmostOppositeDirectionsTurnAboutTheViewUp)
{
  const morrow::ViewTurn half = morrow::turn_between(kX, -kX, kZ);
  EXPECT_NEAR(half.angle, 180.0, 1e-12);
  expect_near(half.axis, kZ);
  const auto at = [](double angle) { return BrantVector(-std::cos(angle), std::sin(angle), 0.0); };
  const double limit = std::acos(1.0 - 0.0001);
  expect_near(morrow::turn_between(kX, at(0.99 * limit), -kY).axis, -kY);
  expect_near(morrow::turn_between(kX, at(1.01 * limit), -kY).axis, kZ);
}

TEST(ViewUpTest, StaysUnlessTheCameraLooksAlongIt)
{
  expect_near(morrow::up_for(-kZ, kX, kY), kY);
  const BrantVector skew = (kY - kZ).normalized();
  expect_near(morrow::up_for(-kZ, kX, skew), skew);
}

// A camera that tilts down from the horizon has what was before it at the top of its picture, one that tilts
// up has it at the bottom.
TEST(ViewUpTest, IsWhatTiltingTheCameraGives)
{
  expect_near(morrow::up_for(-kY, -kZ, kY), -kZ);
  expect_near(morrow::up_for(kY, -kZ, kY), kZ);
}

TEST(ViewUpTest, IsAcrossTheDirectionWhenNothingElseIs)
{
  for (const BrantVector& direction : {kX, kY, kZ, -kX, -kY, -kZ}) {
    const BrantVector up = morrow::up_for(direction, direction, direction);
    EXPECT_EQ(up.dot(direction), 0.0);
    EXPECT_EQ(up.length(), 1.0);
  }
}

} // namespace
