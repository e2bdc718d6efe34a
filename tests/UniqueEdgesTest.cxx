// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "UniqueEdges.h"

#include "GrowingBuffer.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <limits>
#include <new>
#include <random>
#include <set>
#include <stdexcept>
#include <utility>
#include <vector>

using morrow::GrowingBuffer;
using morrow::UniqueEdges;

namespace {

template<typename Index>
class UniqueEdgesTest : public ::testing::Test
{};

using Widths = ::testing::Types<std::int32_t, std::int64_t>;

class WidthNames
{
public:
  template<typename Index>
  static std::string GetName(int /*number*/)
  {
    return std::to_string(8 * sizeof(Index)) + "bit";
  }
};

TYPED_TEST_SUITE(UniqueEdgesTest, Widths, WidthNames);

template<typename Index>
std::vector<std::pair<vtkIdType, vtkIdType>> pairs(UniqueEdges<Index>& edges)
{
  std::vector<std::pair<vtkIdType, vtkIdType>> all;
  for (vtkIdType i = 0; i < edges.size(); ++i) {
    all.emplace_back(edges.ends().data()[2 * i], edges.ends().data()[2 * i + 1]);
  }
  return all;
}

} // namespace

TYPED_TEST(UniqueEdgesTest, KeepsEachEdgeOnceAsItCameFirst)
{
  UniqueEdges<TypeParam> edges(4);
  edges.make_room(5);
  edges.insert(2, 1, 10);
  edges.insert(1, 2, 11);
  edges.insert(1, 3, 12);
  edges.insert(0, 0, 13);
  edges.insert(0, 0, 14);
  edges.finish();
  EXPECT_EQ(pairs(edges), (std::vector<std::pair<vtkIdType, vtkIdType>>{{2, 1}, {1, 3}, {0, 0}}));
  EXPECT_EQ(std::vector<TypeParam>(edges.cells(), edges.cells() + 3), (std::vector<TypeParam>{10, 12, 13}));
}

TYPED_TEST(UniqueEdgesTest, NoEdgesAndNoPointsAreFine)
{
  UniqueEdges<TypeParam> edges(0);
  edges.make_room(0);
  edges.finish();
  EXPECT_EQ(edges.size(), 0);
  EXPECT_EQ(edges.ends().size(), 0U);
}

TYPED_TEST(UniqueEdgesTest, AgreesWithASetOverManyRandomEdges)
{
  std::mt19937 random(7);
  UniqueEdges<TypeParam> edges(50);
  std::set<std::pair<vtkIdType, vtkIdType>> seen;
  std::vector<std::pair<vtkIdType, vtkIdType>> expected;
  for (vtkIdType i = 0; i < 3000; ++i) {
    const auto a = static_cast<vtkIdType>(random() % 50);
    const auto b = static_cast<vtkIdType>(random() % 50);
    edges.make_room(1);
    edges.insert(a, b, i);
    if (seen.insert({std::min(a, b), std::max(a, b)}).second) {
      expected.emplace_back(a, b);
    }
  }
  EXPECT_EQ(pairs(edges), expected);
}

TEST(UniqueEdgesLimitTest, RefusesMoreEdgesThanTheIndexCanCount)
{
  UniqueEdges<std::int32_t> edges(1);
  EXPECT_THROW(edges.make_room(std::size_t{1} << 31), std::length_error);
}

TEST(GrowingBufferTest, KeepsItsNumbersWhileItGrows)
{
  GrowingBuffer<int> buffer;
  for (int i = 0; i < 100'000; ++i) {
    buffer.make_room(1);
    buffer.push(i);
  }
  buffer.shrink();
  ASSERT_EQ(buffer.size(), 100'000U);
  for (int i = 0; i < 100'000; ++i) {
    ASSERT_EQ(buffer.data()[i], i);
  }
}

// Beyond some millions of bytes the system is asked for larger pages.
TEST(GrowingBufferTest, KeepsMillionsOfNumbers)
{
  GrowingBuffer<long long> buffer;
  const std::size_t count = 3'000'000;
  long long* numbers = buffer.extend(count);
  for (std::size_t i = 0; i < count; ++i) {
    numbers[i] = static_cast<long long>(i);
  }
  buffer.make_room(count);
  buffer.shrink();
  ASSERT_EQ(buffer.size(), count);
  for (std::size_t i = 0; i < count; ++i) {
    ASSERT_EQ(buffer.data()[i], static_cast<long long>(i));
  }
}

TEST(GrowingBufferTest, HandsItsMemoryOutAndIsEmptyAfterwards)
{
  GrowingBuffer<double> buffer;
  EXPECT_EQ(buffer.release(), nullptr);
  buffer.make_room(2);
  buffer.push(1.5);
  double* memory = buffer.release();
  EXPECT_EQ(memory[0], 1.5);
  std::free(memory);
  EXPECT_EQ(buffer.size(), 0U);
  buffer.make_room(1);
  buffer.push(2.5);
  EXPECT_EQ(buffer.data()[0], 2.5);
}

TEST(GrowingBufferTest, RoomBeyondAllMemoryIsRefusedAndNothingIsLost)
{
  GrowingBuffer<double> buffer;
  buffer.make_room(1);
  buffer.push(3.5);
  EXPECT_THROW(buffer.make_room(std::numeric_limits<std::size_t>::max()), std::bad_alloc);
  EXPECT_THROW(buffer.make_room(std::numeric_limits<std::size_t>::max() / 32), std::bad_alloc);
  ASSERT_EQ(buffer.size(), 1U);
  EXPECT_EQ(buffer.data()[0], 3.5);
}
