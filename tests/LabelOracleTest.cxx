// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "LabelOracle.h"

#include <gtest/gtest.h>

#include <vtkMatrix4x4.h>
#include <vtkNew.h>

#include <algorithm>
#include <array>
#include <limits>
#include <numeric>
#include <random>

// An oracle is trusted because it is short and because the answers here were worked out by hand.

namespace {

using morrow_test::judge_label;
using morrow_test::LabelFrame;
using morrow_test::LabelResult;
using morrow_test::LabelVerdict;
using morrow_test::LiteralLabelKeys;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

LiteralLabelKeys keys_with(int count)
{
  LiteralLabelKeys keys;
  for (int i = 0; i < count; ++i) {
    keys.add();
  }
  return keys;
}

using Ints = std::vector<int>;

// --- Keys ----------------------------------------------------------------------------------------

TEST(LiteralLabelKeysTest, HandsOutKeysDenselyFromZero)
{
  LiteralLabelKeys keys;
  EXPECT_EQ(keys.add(), 0);
  EXPECT_EQ(keys.add(), 1);
  EXPECT_EQ(keys.add(), 2);
  EXPECT_EQ(keys.size(), 3U);
  EXPECT_EQ(keys.live_keys(), (Ints{0, 1, 2}));
}

TEST(LiteralLabelKeysTest, ReusesTheOldestFreedKeyFirst)
{
  LiteralLabelKeys keys = keys_with(3);
  keys.remove(1);
  keys.remove(0);
  EXPECT_EQ(keys.freed_keys(), (Ints{1, 0}));
  EXPECT_EQ(keys.add(), 1); // freed before 0
  EXPECT_EQ(keys.add(), 0);
  EXPECT_EQ(keys.add(), 3); // none waits: 0 to 2 are in use
}

TEST(LiteralLabelKeysTest, RemovalMovesTheLaterLabelsDownAndTheKeyToTheEnd)
{
  LiteralLabelKeys keys = keys_with(4);
  keys.remove(1);
  // Slots 0, 1, 2 now hold keys 0, 2, 3; key 1 waits behind them.
  EXPECT_EQ(keys.slot_to_key(), (Ints{0, 2, 3, 1}));
  EXPECT_EQ(keys.key_to_slot(), (Ints{0, -1, 1, 2}));
  keys.remove(3);
  // Key 1 had been freed earlier, so it stays in front of key 3, and its −1 is not decremented.
  EXPECT_EQ(keys.slot_to_key(), (Ints{0, 2, 1, 3}));
  EXPECT_EQ(keys.key_to_slot(), (Ints{0, -1, 1, -1}));
}

TEST(LiteralLabelKeysTest, AReusedKeyIsDrawnLast)
{
  LiteralLabelKeys keys = keys_with(3);
  keys.remove(0);
  EXPECT_EQ(keys.add(), 0);
  EXPECT_EQ(keys.live_keys(), (Ints{1, 2, 0})); // appended behind the others in spite of its small number
  EXPECT_EQ(keys.slot_of(0), 2);
}

TEST(LiteralLabelKeysTest, RemovingWhatIsNotThereChangesNothing)
{
  LiteralLabelKeys keys = keys_with(2);
  keys.remove(1);
  const Ints slots = keys.slot_to_key();
  const Ints back = keys.key_to_slot();
  const long long low_half_is_zero = 1LL << 32; // cut to 32 bits this would be the live key 0
  for (const long long key : {-1LL, 1LL, 2LL, low_half_is_zero, std::numeric_limits<long long>::min(),
                              std::numeric_limits<long long>::max()}) {
    keys.remove(key);
    EXPECT_EQ(keys.slot_to_key(), slots) << key;
    EXPECT_EQ(keys.key_to_slot(), back) << key;
    EXPECT_EQ(keys.size(), 1U) << key;
    EXPECT_FALSE(keys.is_live(key)) << key;
  }
}

TEST(LiteralLabelKeysTest, AnEmptyListTakesRemovalsAndClears)
{
  LiteralLabelKeys keys;
  keys.remove(0);
  keys.clear();
  EXPECT_EQ(keys.size(), 0U);
  EXPECT_EQ(keys.live_keys(), Ints{});
  EXPECT_EQ(keys.add(), 0);
}

TEST(LiteralLabelKeysTest, KeysRestartAtZeroAfterClear)
{
  LiteralLabelKeys keys = keys_with(5);
  keys.remove(3);
  keys.clear();
  EXPECT_EQ(keys.size(), 0U);
  EXPECT_FALSE(keys.is_live(0));
  EXPECT_EQ(keys.add(), 0); // not the freed 3
}

TEST(LiteralLabelKeysTest, RandomCallsKeepTheListsInversePermutations)
{
  std::mt19937 random(7);
  LiteralLabelKeys keys;
  for (int call = 0; call < 2000; ++call) {
    if (random() % 3 != 0) {
      keys.add();
    } else {
      keys.remove(static_cast<long long>(random() % 60) - 5);
    }
    Ints sorted = keys.slot_to_key();
    std::sort(sorted.begin(), sorted.end());
    Ints all(sorted.size());
    std::iota(all.begin(), all.end(), 0);
    ASSERT_EQ(sorted, all);
    const Ints live = keys.live_keys();
    for (std::size_t slot = 0; slot < live.size(); ++slot) {
      ASSERT_EQ(keys.slot_of(live[slot]), static_cast<int>(slot));
    }
    for (const int key : keys.freed_keys()) {
      ASSERT_EQ(keys.slot_of(key), -1);
    }
  }
}

// --- Visibility ----------------------------------------------------------------------------------

constexpr int kWidth = 10;
constexpr int kHeight = 8;
constexpr std::size_t kRow = kWidth + 1;

/// A window of 10 × 8 pixels under the identity matrix: x and y from −1 to 1 span the viewport, z is the
/// depth.
class LabelVisibilityTest : public ::testing::Test
{
protected:
  LabelVisibilityTest()
  {
    // The column and the row beyond the pixels hold a trap: read, they would hide every label.
    mDepth.fill(-5.0F);
    for (std::size_t y = 0; y < kHeight; ++y) {
      std::fill_n(mDepth.begin() + static_cast<std::ptrdiff_t>(y * kRow), kWidth, 1.0F);
    }
    mFrame.matrix = mMatrix;
    mFrame.width = kWidth;
    mFrame.height = kHeight;
    mFrame.depth = mDepth.data();
  }

  void set_depth(std::size_t x, std::size_t y, float depth) { mDepth[y * kRow + x] = depth; }

  [[nodiscard]] LabelResult judge(double x, double y, double z) const
  {
    const double point[3] = {x, y, z};
    return judge_label(mFrame, point);
  }
  [[nodiscard]] LabelVerdict verdict(double x, double y, double z) const { return judge(x, y, z).verdict; }

  vtkNew<vtkMatrix4x4> mMatrix;
  std::array<float, kRow*(kHeight + 1)> mDepth{};
  LabelFrame mFrame;
};

TEST_F(LabelVisibilityTest, ProjectsIntoTheMiddleOfTheWindow)
{
  const LabelResult result = judge(0.0, 0.0, 0.5);
  EXPECT_EQ(result.x, 5.0);
  EXPECT_EQ(result.y, 4.0);
  EXPECT_EQ(result.depth, 0.5);
  EXPECT_TRUE(result.visible());
  EXPECT_TRUE(result.asked_depth);
}

TEST_F(LabelVisibilityTest, ProjectsIntoTheViewport)
{
  // The right half of the window: the middle of the view is at three quarters of the width.
  mFrame.viewport[0] = 0.5;
  EXPECT_EQ(judge(0.0, 0.0, 0.5).x, 7.5);
  EXPECT_EQ(judge(-1.0, 0.0, 0.5).x, 5.0);
  // Left of the viewport but inside the window: the test is against the window.
  EXPECT_EQ(verdict(-1.5, 0.0, 0.5), LabelVerdict::Visible);
}

TEST_F(LabelVisibilityTest, ReadsTheDepthOfThePixelUnderTheAnchor)
{
  set_depth(5, 4, 0.3F);
  EXPECT_EQ(verdict(0.0, 0.0, 0.5), LabelVerdict::Hidden);  // pixel (5, 4) exactly
  EXPECT_EQ(verdict(0.19, 0.0, 0.5), LabelVerdict::Hidden); // 5.95 truncates to 5
  EXPECT_EQ(verdict(0.2, 0.0, 0.5), LabelVerdict::Visible); // pixel 6
  EXPECT_EQ(verdict(-0.01, 0.0, 0.5), LabelVerdict::Visible);
  EXPECT_EQ(verdict(0.0, -0.01, 0.5), LabelVerdict::Visible); // 3.96 truncates to row 3
}

TEST_F(LabelVisibilityTest, ToleranceIsAddedToTheBuffer)
{
  set_depth(5, 4, 0.5F);
  mFrame.tolerance = 0.25;                                   // exact in binary, as 0.5 and 0.75 are
  EXPECT_EQ(verdict(0.0, 0.0, 0.75), LabelVerdict::Visible); // equal passes
  EXPECT_EQ(verdict(0.0, 0.0, 0.7500001), LabelVerdict::Hidden);
  mFrame.tolerance = -0.25; // not clamped
  EXPECT_EQ(verdict(0.0, 0.0, 0.25), LabelVerdict::Visible);
  EXPECT_EQ(verdict(0.0, 0.0, 0.2500001), LabelVerdict::Hidden);
}

TEST_F(LabelVisibilityTest, TheFarPlaneIsOut)
{
  EXPECT_EQ(verdict(0.0, 0.0, 1.0), LabelVerdict::BeyondFar);
  EXPECT_EQ(verdict(0.0, 0.0, 0.999999), LabelVerdict::Visible);
  EXPECT_TRUE(judge(0.0, 0.0, 2.0).asked_depth); // the buffer is read before the far plane is looked at
}

TEST_F(LabelVisibilityTest, TheNearPlaneIsIn)
{
  EXPECT_EQ(verdict(0.0, 0.0, 0.0), LabelVerdict::Visible);
  EXPECT_EQ(verdict(0.0, 0.0, -1e-9), LabelVerdict::OffScreen);
  EXPECT_FALSE(judge(0.0, 0.0, -1.0).asked_depth);
}

TEST_F(LabelVisibilityTest, TheEdgesOfTheWindowPass)
{
  EXPECT_EQ(verdict(-1.0, -1.0, 0.5), LabelVerdict::Visible);
  EXPECT_EQ(verdict(1.0, 0.0, 0.5), LabelVerdict::Visible);
  EXPECT_EQ(verdict(0.0, 1.0, 0.5), LabelVerdict::Visible);
  for (const double beyond : {1.0001, -1.0001}) {
    EXPECT_EQ(verdict(beyond, 0.0, 0.5), LabelVerdict::OffScreen);
    EXPECT_EQ(verdict(0.0, beyond, 0.5), LabelVerdict::OffScreen);
    EXPECT_FALSE(judge(beyond, 0.0, 0.5).asked_depth);
  }
}

TEST_F(LabelVisibilityTest, RightAndTopEdgeCompareAgainstDepthOne)
{
  std::fill(mDepth.begin(), mDepth.end(),
            0.0F); // everything is hidden, and the row and column beyond are 0 too
  EXPECT_EQ(verdict(0.0, 0.0, 0.5), LabelVerdict::Hidden);
  EXPECT_EQ(verdict(1.0, 0.0, 0.5), LabelVerdict::Visible);
  EXPECT_EQ(judge(1.0, 0.0, 0.5).buffer_depth, 1.0);
  EXPECT_EQ(verdict(0.0, 1.0, 0.5), LabelVerdict::Visible);
  EXPECT_EQ(verdict(1.0, 1.0, 0.5), LabelVerdict::Visible);
  EXPECT_EQ(verdict(1.0, 0.0, 1.0), LabelVerdict::BeyondFar);
  // Left and bottom edge are in the first pixels.
  EXPECT_EQ(verdict(-1.0, 0.0, 0.5), LabelVerdict::Hidden);
  EXPECT_EQ(verdict(0.0, -1.0, 0.5), LabelVerdict::Hidden);
}

TEST_F(LabelVisibilityTest, DividesByTheHomogeneousCoordinate)
{
  mMatrix->SetElement(3, 3, 2.0);
  const LabelResult result = judge(1.0, -1.0, 1.0);
  EXPECT_EQ(result.x, 7.5);
  EXPECT_EQ(result.y, 2.0);
  EXPECT_EQ(result.depth, 0.5);
}

TEST_F(LabelVisibilityTest, AZeroHomogeneousCoordinateIsNotDrawn)
{
  mMatrix->SetElement(3, 3, 0.0);
  EXPECT_EQ(verdict(0.0, 0.0, 0.5), LabelVerdict::NoPerspective);
  EXPECT_FALSE(judge(0.0, 0.0, 0.5).asked_depth);
  mMatrix->SetElement(3, 3, -0.0); // minus zero is zero
  EXPECT_EQ(verdict(-0.0, -0.0, -0.0), LabelVerdict::NoPerspective);
}

TEST_F(LabelVisibilityTest, BehindTheCameraMirrorsAsTheStepsSay)
{
  // w = −1: the signs of all coordinates turn, and only the depth says that the point is behind.
  mMatrix->SetElement(3, 3, -1.0);
  EXPECT_EQ(verdict(0.0, 0.0, 0.5), LabelVerdict::OffScreen);
  EXPECT_EQ(verdict(0.0, 0.0, -0.5), LabelVerdict::Visible);
}

TEST_F(LabelVisibilityTest, NotANumberIsNotDrawn)
{
  for (const int axis : {0, 1, 2}) {
    double point[3] = {0.0, 0.0, 0.5};
    point[axis] = kNan;
    const LabelResult result = judge_label(mFrame, point);
    // Each row of the product takes every coordinate (times 0), so the depth is not a number: not below 1.
    EXPECT_EQ(result.verdict, LabelVerdict::BeyondFar) << axis;
    // No comparison with the window's edges is true, so the label got as far as the buffer, in no pixel of
    // it.
    EXPECT_TRUE(result.asked_depth) << axis;
    EXPECT_EQ(result.buffer_depth, 1.0) << axis;
  }
}

TEST_F(LabelVisibilityTest, InfinityIsNotDrawn)
{
  for (const double infinite : {kInfinity, -kInfinity}) {
    EXPECT_FALSE(judge(infinite, 0.0, 0.5).visible());
    EXPECT_FALSE(judge(0.0, infinite, 0.5).visible());
    EXPECT_FALSE(judge(0.0, 0.0, infinite).visible());
  }
}

TEST_F(LabelVisibilityTest, HugeCoordinatesLieOutsideWithoutOverflow)
{
  EXPECT_EQ(verdict(1e300, 0.0, 0.5), LabelVerdict::OffScreen);
  EXPECT_EQ(verdict(0.0, -1e300, 0.5), LabelVerdict::OffScreen);
  EXPECT_EQ(verdict(0.0, 0.0, 1e308), LabelVerdict::BeyondFar);
}

TEST_F(LabelVisibilityTest, APositionThatIsNoNumberIsComparedWithDepthOne)
{
  // x' = 10x + 10y overflows to Inf − Inf, depth and w stay finite: no edge is crossed and no pixel is hit.
  mMatrix->SetElement(0, 0, 10.0);
  mMatrix->SetElement(0, 1, 10.0);
  mMatrix->SetElement(1, 1, 0.0);
  std::fill(mDepth.begin(), mDepth.end(), 0.0F);
  const LabelResult result = judge(1.5e308, -1.5e308, 0.5);
  EXPECT_NE(result.x, result.x);
  EXPECT_EQ(result.depth, 0.5);
  EXPECT_EQ(result.buffer_depth, 1.0);
  EXPECT_TRUE(result.visible());
}

TEST_F(LabelVisibilityTest, ABufferValueThatIsNoNumberHides)
{
  set_depth(5, 4, std::numeric_limits<float>::quiet_NaN());
  EXPECT_EQ(verdict(0.0, 0.0, 0.5), LabelVerdict::Hidden);
}

TEST_F(LabelVisibilityTest, AWindowWithoutPixelsReadsNoDepth)
{
  mFrame.width = 0;
  mFrame.height = 0;
  mFrame.depth = nullptr; // must not be touched
  EXPECT_EQ(judge(0.0, 0.0, 0.5).buffer_depth, 1.0);
  EXPECT_TRUE(morrow_test::is_label_visible(mFrame, std::array<double, 3>{0.0, 0.0, 0.5}.data()));
}

} // namespace
