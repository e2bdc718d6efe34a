// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "CameraRamp.h"

#include "CameraOracle.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <numeric>
#include <utility>
#include <vector>

namespace {

namespace oracle = morrow_test::oracle;

constexpr std::int64_t kMax = INT_MAX;

std::vector<std::pair<int, int>> pairs()
{
  std::vector<std::pair<int, int>> all;
  for (const int steps : {-7, -1, 0, 1, 2, 3, 4, 5, 10, 17, 100}) {
    for (const int smooth : {-200, -3, -1, 0, 1, 2, 3, 4, 5, 6, 10, 17, 18, 100, 101}) {
      all.emplace_back(steps, smooth);
    }
  }
  return all;
}

template<typename Ramp>
std::vector<double> factors_of(const Ramp& ramp)
{
  std::vector<double> factors;
  for (std::int64_t frame = 0; frame < ramp.frame_count(); ++frame) {
    factors.push_back(ramp.factor(frame));
  }
  return factors;
}

void expect_same(const std::vector<double>& ours, const std::vector<double>& theirs)
{
  ASSERT_EQ(ours.size(), theirs.size());
  for (std::size_t i = 0; i < ours.size(); ++i) {
    EXPECT_NEAR(ours[i], theirs[i], 1e-12) << "frame " << i;
  }
}

double sum_of(const std::vector<double>& factors)
{
  return std::accumulate(factors.begin(), factors.end(), 0.0);
}

TEST(EaseTest, RisesFrom0To1WithTenDecimalsOfPi)
{
  EXPECT_EQ(morrow::ease(0.0), 0.0);
  EXPECT_NEAR(morrow::ease(1.0), 1.0, 1e-15);
  EXPECT_NEAR(morrow::ease(0.5), 0.5, 1e-10);
  EXPECT_GT(std::abs(morrow::ease(0.5) - 0.5), 1e-11) << "the short constant, deliberately";
}

TEST(PointRampTest, IsThePlainOneFrameByFrame)
{
  for (const auto& [steps, smooth] : pairs()) {
    SCOPED_TRACE(testing::Message() << steps << " steps, smooth " << smooth);
    std::vector<double> expected;
    for (const oracle::Frame& frame : oracle::three_phases(steps, smooth)) {
      expected.push_back(frame.factor);
    }
    expect_same(factors_of(morrow::PointRamp(steps, smooth)), expected);
  }
}

TEST(PointRampTest, TenStepsWithThreeSmoothOnesAreThreeSevenAndThree)
{
  const morrow::PointRamp ramp(10, 3);
  EXPECT_EQ(ramp.frame_count(), 13);
  EXPECT_LT(ramp.factor(2), 1.0);
  EXPECT_EQ(ramp.factor(3), 1.0);
  EXPECT_EQ(ramp.factor(9), 1.0);
  EXPECT_LT(ramp.factor(10), 1.0);
  EXPECT_NEAR(sum_of(factors_of(ramp)), 10.0, 1e-8);
}

TEST(PointRampTest, EveryFrameReadsTheInterruptFlag)
{
  const morrow::PointRamp ramp(5, 2);
  for (std::int64_t frame = 0; frame < ramp.frame_count(); ++frame) {
    EXPECT_TRUE(ramp.reads_interrupt(frame));
  }
}

TEST(ZoomRampTest, OnlyFullFramesReadTheInterruptFlag)
{
  for (const auto& [steps, smooth] : pairs()) {
    SCOPED_TRACE(testing::Message() << steps << " steps, smooth " << smooth);
    const morrow::ZoomRamp ramp(steps, smooth);
    const std::vector<oracle::Frame> expected = oracle::three_phases(steps, smooth);
    ASSERT_EQ(ramp.frame_count(), static_cast<std::int64_t>(expected.size()));
    for (std::size_t i = 0; i < expected.size(); ++i) {
      const auto frame = static_cast<std::int64_t>(i);
      EXPECT_EQ(ramp.reads_interrupt(frame), expected[i].full);
      EXPECT_NEAR(ramp.factor(frame), expected[i].factor, 1e-12);
    }
  }
}

TEST(TurnRampTest, IsThePlainOneFrameByFrame)
{
  for (const auto& [steps, smooth] : pairs()) {
    SCOPED_TRACE(testing::Message() << steps << " steps, smooth " << smooth);
    const morrow::TurnRamp ramp(steps, smooth);
    expect_same(factors_of(ramp), oracle::turn(steps, smooth));
    if (ramp.frame_count() > 0) {
      EXPECT_TRUE(ramp.reads_interrupt(0));
      EXPECT_TRUE(ramp.reads_interrupt(ramp.frame_count() - 1));
    }
  }
}

// With a soft end there is one full frame more than an even ramp would have.
TEST(TurnRampTest, ASoftTurnGoesALittleTooFar)
{
  const morrow::TurnRamp ramp(10, 3);
  EXPECT_EQ(ramp.factor(3), 1.0);
  EXPECT_EQ(ramp.factor(10), 1.0);
  EXPECT_LT(ramp.factor(11), 1.0);
  EXPECT_NEAR(sum_of(factors_of(ramp)), 11.0 - oracle::s(0.75), 1e-8);
}

TEST(TurnRampTest, AnglesArePartedInSinglePrecision)
{
  const int steps = 16777217; // the first int without a float of its own
  EXPECT_EQ(morrow::TurnRamp(steps, 0).part_of_angle(90.0), 90.0 / 16777216.0);
  EXPECT_EQ(morrow::TurnRamp(steps, 0).part_of_length(90.0), 90.0 / 16777217.0);
  EXPECT_EQ(morrow::TurnRamp(4, 0).part_of_angle(90.0), 22.5);
  EXPECT_EQ(morrow::TurnRamp(-4, 0).part_of_angle(90.0), 90.0);
}

TEST(BoxRampTest, AllFramesButTheFirstWaitAndReadTheInterruptFlag)
{
  const morrow::BoxRamp ramp(4, 2);
  expect_same(factors_of(ramp), oracle::turn(4, 2));
  for (std::int64_t frame = 0; frame < ramp.frame_count(); ++frame) {
    EXPECT_EQ(ramp.waits(frame), frame != 0);
    EXPECT_EQ(ramp.reads_interrupt(frame), frame != 0);
  }
}

TEST(PanRampTest, IsThePlainOneFrameByFrame)
{
  for (const auto& [steps, smooth] : pairs()) {
    SCOPED_TRACE(testing::Message() << steps << " steps, smooth " << smooth);
    const morrow::PanRamp ramp(steps, smooth);
    expect_same(factors_of(ramp), oracle::pan(steps, smooth));
    if (steps > 0 && smooth >= 0) {
      EXPECT_NEAR(sum_of(factors_of(ramp)), steps, 1e-8);
    }
  }
}

// Ramps hold no tables, and the sums of two ints do not overflow.
template<typename Ramp>
class LongRampTest : public testing::Test
{};
using Ramps =
    testing::Types<morrow::PointRamp, morrow::ZoomRamp, morrow::TurnRamp, morrow::BoxRamp, morrow::PanRamp>;
TYPED_TEST_SUITE(LongRampTest, Ramps);

TYPED_TEST(LongRampTest, TheLargestNumbersOfSteps)
{
  EXPECT_LE(sizeof(TypeParam), 2 * sizeof(std::int64_t));
  EXPECT_EQ(TypeParam(INT_MAX, 0).frame_count(), kMax);
  EXPECT_EQ(TypeParam(INT_MAX, 1).frame_count(), kMax + 1);
  const TypeParam longest(INT_MAX, INT_MAX);
  EXPECT_EQ(longest.frame_count(), 2 * kMax);
  EXPECT_NEAR(longest.factor(kMax / 2), 0.5, 1e-6);
  EXPECT_NEAR(longest.factor(kMax - 1), 1.0, 1e-6);
  EXPECT_NEAR(longest.factor(kMax + kMax / 2), 0.5, 1e-6);
  EXPECT_NEAR(longest.factor(2 * kMax - 1), 0.0, 1e-6);
}

TYPED_TEST(LongRampTest, TheSmallestNumbersHaveAtMostOneFrame)
{
  EXPECT_LE(TypeParam(INT_MIN, 0).frame_count(), 1);
  EXPECT_LE(TypeParam(INT_MIN, INT_MIN).frame_count(), 1);
  EXPECT_LE(TypeParam(INT_MIN, INT_MAX).frame_count(), 1);
  EXPECT_LE(TypeParam(1, INT_MIN).frame_count(), 1);
  EXPECT_LE(TypeParam(1, INT_MAX).frame_count(), 1);
}

} // namespace
