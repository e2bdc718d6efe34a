// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "IndexRuns.h"

#include <gtest/gtest.h>

#include <limits>
#include <ostream>
#include <string>
#include <vector>

namespace {

using morrow::IndexRuns;
using Fault = IndexRuns::Fault;

struct Found
{
  int number;
  std::vector<int> ids;
};

bool operator==(const Found& a, const Found& b)
{
  return a.number == b.number && a.ids == b.ids;
}

void PrintTo(const Found& run, std::ostream* out)
{
  *out << run.number << ':';
  for (const int id : run.ids) {
    *out << ' ' << id;
  }
}

struct Reading
{
  std::vector<Found> runs;
  int num_broken;
  Fault first_fault;
  int first_broken;
};

Reading read(const std::vector<int>& list, int num_points = 4, int smallest = 2)
{
  IndexRuns runs(list.data(), static_cast<int>(list.size()), num_points, smallest);
  Reading reading = {};
  while (runs.next()) {
    reading.runs.push_back({runs.number(), std::vector<int>(runs.ids(), runs.ids() + runs.count())});
  }
  EXPECT_FALSE(runs.next()); // the end stays the end
  reading.num_broken = runs.num_broken();
  reading.first_fault = runs.first_fault();
  reading.first_broken = runs.first_broken();
  return reading;
}

TEST(IndexRunsTest, ReadsRunsInOrder)
{
  const Reading reading = read({2, 0, 1, 3, 3, 2, 1});
  EXPECT_EQ(reading.runs, (std::vector<Found>{{0, {0, 1}}, {1, {3, 2, 1}}}));
  EXPECT_EQ(reading.num_broken, 0);
  EXPECT_EQ(reading.first_fault, Fault::None);
  EXPECT_EQ(reading.first_broken, -1);
}

TEST(IndexRunsTest, EmptyListsHaveNoRuns)
{
  EXPECT_TRUE(read({}).runs.empty());
  for (const int length : {0, -1, std::numeric_limits<int>::min()}) {
    IndexRuns runs(nullptr, length, 4, 2);
    EXPECT_FALSE(runs.next());
    EXPECT_EQ(runs.num_broken(), 0);
  }
}

TEST(IndexRunsTest, PassesOverRunsWithNumbersOutOfRange)
{
  for (const int bad : {4, -1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
    const Reading reading = read({2, 0, 1, 2, bad, 1, 2, 2, 3, 3, 0, 1, bad});
    EXPECT_EQ(reading.runs, (std::vector<Found>{{0, {0, 1}}, {2, {2, 3}}})) << bad;
    EXPECT_EQ(reading.num_broken, 2);
    EXPECT_EQ(reading.first_fault, Fault::NumberOutOfRange);
    EXPECT_EQ(reading.first_broken, 1);
  }
}

TEST(IndexRunsTest, PassesOverRunsThatAreTooShort)
{
  const Reading reading = read({0, 1, 0, 2, 0, 1, 0}, 4, 2);
  EXPECT_EQ(reading.runs, (std::vector<Found>{{2, {0, 1}}}));
  EXPECT_EQ(reading.num_broken, 3);
  EXPECT_EQ(reading.first_fault, Fault::TooFewPoints);
  EXPECT_EQ(reading.first_broken, 0);
  EXPECT_EQ(read({2, 0, 1}, 4, 3).num_broken, 1);
  EXPECT_EQ(read({3, 0, 1, 2}, 4, 3).num_broken, 0);
}

// What comes after cannot be told apart.
TEST(IndexRunsTest, EndsAtACountThatCannotBe)
{
  const struct
  {
    int count;
    Fault fault;
  } cases[] = {{-1, Fault::NegativeCount},
               {std::numeric_limits<int>::min(), Fault::NegativeCount},
               {5, Fault::BeyondTheEnd},
               {std::numeric_limits<int>::max(), Fault::BeyondTheEnd}};
  for (const auto& c : cases) {
    const Reading reading = read({2, 0, 1, c.count, 2, 0, 1, 2});
    EXPECT_EQ(reading.runs, (std::vector<Found>{{0, {0, 1}}})) << c.count;
    EXPECT_EQ(reading.num_broken, 1);
    EXPECT_EQ(reading.first_fault, c.fault);
    EXPECT_EQ(reading.first_broken, 1);
  }
  EXPECT_EQ(read({2, 0, 1, 4, 2, 0, 1, 2}).num_broken, 0); // one less fits
  EXPECT_EQ(read({3}).first_fault, Fault::BeyondTheEnd);
}

TEST(IndexRunsTest, WithoutPointsEveryRunIsBroken)
{
  for (const int num_points : {0, -5}) {
    const Reading reading = read({2, 0, 1, 2, 0, 0}, num_points);
    EXPECT_TRUE(reading.runs.empty());
    EXPECT_EQ(reading.num_broken, 2);
  }
}

TEST(IndexRunsTest, FaultsHaveDescriptionsOfTheirOwn)
{
  EXPECT_STREQ(description(Fault::NumberOutOfRange), "a point number out of range");
  EXPECT_STREQ(description(Fault::TooFewPoints), "too few points");
  EXPECT_STREQ(description(Fault::NegativeCount), "a negative count");
  EXPECT_STREQ(description(Fault::BeyondTheEnd), "a count beyond the end of the list");
  EXPECT_STREQ(description(Fault::None), "nothing wrong");
}

} // namespace
