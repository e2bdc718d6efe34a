// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "ChartNumbers.h"

#include <gtest/gtest.h>

#include <climits>
#include <vector>

namespace {

using morrow::count_ticks;
using morrow::sum_of_counts;
using morrow::total_of;
using Ticks = std::vector<long long>;

TEST(ChartNumbersTest, ASumThatDoesNotFitIsNone)
{
  EXPECT_EQ(sum_of_counts(17, 8), 25);
  EXPECT_EQ(sum_of_counts(0, 0), 0);
  EXPECT_EQ(sum_of_counts(INT_MAX, 0), INT_MAX);
  EXPECT_EQ(sum_of_counts(INT_MAX, 1), 0);
  EXPECT_EQ(sum_of_counts(INT_MAX, INT_MAX), 0);
  EXPECT_EQ(sum_of_counts(INT_MIN, -1), 0);
  EXPECT_EQ(sum_of_counts(-3, 1), -2);
}

TEST(ChartNumbersTest, TotalsGoBeyond32Bits)
{
  const std::vector<int> large(5, INT_MAX);
  EXPECT_EQ(total_of(large.data(), 5), 5LL * INT_MAX);
  const std::vector<int> negative(3, INT_MIN);
  EXPECT_EQ(total_of(negative.data(), 3), 3LL * INT_MIN);
  EXPECT_EQ(total_of(large.data(), 0), 0);
  EXPECT_EQ(total_of(large.data(), -1), 0);
  EXPECT_EQ(total_of(nullptr, 5), 0);
}

TEST(ChartNumbersTest, TicksAreQuartersBelowTheTopTenth)
{
  EXPECT_EQ(count_ticks(10), (Ticks{0, 2, 4, 6, 8, 10})); // 10 · 8 < 9 · 10
  EXPECT_EQ(count_ticks(100), (Ticks{0, 25, 50, 75, 100}));
  EXPECT_EQ(count_ticks(7), (Ticks{0, 1, 2, 3, 4, 5, 6, 7}));
  // 80 is below 81, and 160 below 171.
  EXPECT_EQ(count_ticks(9), (Ticks{0, 2, 4, 6, 8, 9}));
  EXPECT_EQ(count_ticks(19), (Ticks{0, 4, 8, 12, 16, 19}));
}

TEST(ChartNumbersTest, SmallTotalsHaveLargerParts)
{
  EXPECT_EQ(count_ticks(4), (Ticks{0, 1, 2, 3, 4}));
  EXPECT_EQ(count_ticks(3), (Ticks{0, 1, 2, 3}));
  EXPECT_EQ(count_ticks(2), (Ticks{0, 1, 2}));
  EXPECT_EQ(count_ticks(1), (Ticks{0, 1}));
}

TEST(ChartNumbersTest, NothingToCountHasZeroAlone)
{
  EXPECT_EQ(count_ticks(0), Ticks{0});
  EXPECT_EQ(count_ticks(-1), Ticks{0});
  EXPECT_EQ(count_ticks(LLONG_MIN), Ticks{0});
}

// The rule as it is written, for all totals where its products fit.
TEST(ChartNumbersTest, TicksAreThoseOfTheRuleInProducts)
{
  for (const long long first : {1LL, 238609294LL, 2147483600LL, 100'000'000'000'000'000LL}) {
    for (long long total = first; total < first + 200; ++total) {
      const long long step = total >= 4 ? total / 4 : 1;
      Ticks expected = {0};
      for (long long k = step; 10 * k < 9 * total; k += step) {
        expected.push_back(k);
      }
      expected.push_back(total);
      ASSERT_EQ(count_ticks(total), expected) << total;
    }
  }
}

TEST(ChartNumbersTest, TheLargestTotalThatThereCanBeHasTicks)
{
  const long long total = static_cast<long long>(INT_MAX) * INT_MAX;
  EXPECT_EQ(count_ticks(total), (Ticks{0, total / 4, total / 4 * 2, total / 4 * 3, total}));
}

} // namespace
