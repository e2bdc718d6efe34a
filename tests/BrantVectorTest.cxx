// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "BrantVector.h"

#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>

namespace {

constexpr double gInfinity = std::numeric_limits<double>::infinity();
constexpr double gNaN = std::numeric_limits<double>::quiet_NaN();

// The arithmetic is usable in constant expressions, and the literals below are the test.
static_assert(BrantVector() == BrantVector(0, 0, 0));
static_assert(BrantVector(1, 2, 3) + BrantVector(10, 20, 30) == BrantVector(11, 22, 33));
static_assert(BrantVector(1, 2, 3) - BrantVector(10, 20, 30) == BrantVector(-9, -18, -27));
static_assert(BrantVector(1, 2, 3).dot({4, -5, 6}) == 12);

TEST(BrantVectorTest, StartsAsTheZeroVector)
{
  const BrantVector vector;
  EXPECT_EQ(vector.x(), 0.0);
  EXPECT_EQ(vector.y(), 0.0);
  EXPECT_EQ(vector.z(), 0.0);
}

TEST(BrantVectorTest, KeepsItsComponentsInOrder)
{
  const BrantVector vector(1, 2, 3);
  EXPECT_EQ(vector.x(), 1.0);
  EXPECT_EQ(vector.y(), 2.0);
  EXPECT_EQ(vector.z(), 3.0);
  for (int axis = 0; axis < 3; ++axis) {
    EXPECT_EQ(vector[axis], axis + 1.0);
  }
}

TEST(BrantVectorTest, CopiesThreeDoublesAndDoesNotKeepThePointer)
{
  double xyz[] = {1, 2, 3};
  const BrantVector vector(xyz);
  xyz[1] = 99;
  EXPECT_EQ(vector, BrantVector(1, 2, 3));
}

TEST(BrantVectorTest, ANullPointerGivesTheZeroVector)
{
  const double* none = nullptr;
  EXPECT_EQ(BrantVector(none), BrantVector());
}

TEST(BrantVectorTest, WritesOneComponentByIndex)
{
  BrantVector vector(1, 2, 3);
  vector[1] = 7;
  EXPECT_EQ(vector, BrantVector(1, 7, 3));
}

#ifndef NDEBUG
TEST(BrantVectorDeathTest, AnIndexThatIsNoAxisStopsABuildWithAssertions)
{
  BrantVector vector(1, 2, 3);
  const BrantVector& constant = vector;
  for (const int axis : {-1, 3}) {
    EXPECT_DEATH(vector[axis] = 0.0, "axis");
    EXPECT_DEATH(static_cast<void>(constant[axis]), "axis");
  }
}
#endif

TEST(BrantVectorTest, AnArrayOfVectorsIsAnArrayOfDoubles)
{
  const BrantVector vectors[] = {{1, 2, 3}, {4, 5, 6}};
  // Read as bytes: the layout is the claim, not pointer arithmetic across objects.
  double doubles[6];
  static_assert(sizeof doubles == sizeof vectors);
  std::memcpy(doubles, vectors, sizeof doubles);
  for (int i = 0; i < 6; ++i) {
    EXPECT_EQ(doubles[i], i + 1.0);
  }
}

TEST(BrantVectorTest, HandsOutItsDoublesInPlace)
{
  BrantVector vector(1, 2, 3);
  const double* xyz = vector.data();
  vector[2] = 9;
  EXPECT_EQ(xyz[0], 1.0);
  EXPECT_EQ(xyz[1], 2.0);
  EXPECT_EQ(xyz[2], 9.0);
}

TEST(BrantVectorTest, AddsAndSubtractsByComponents)
{
  BrantVector vector(1, 2, 3);
  vector += BrantVector(10, 20, 30);
  EXPECT_EQ(vector, BrantVector(11, 22, 33));
  vector -= BrantVector(1, 1, 1);
  EXPECT_EQ(vector, BrantVector(10, 21, 32));
  EXPECT_EQ(vector + BrantVector(1, 0, -1), BrantVector(11, 21, 31));
  EXPECT_EQ(vector - BrantVector(1, 0, -1), BrantVector(9, 21, 33));
}

TEST(BrantVectorTest, ScalesFromEitherSideAndInPlace)
{
  BrantVector vector(1, -2, 4);
  EXPECT_EQ(vector * 3, BrantVector(3, -6, 12));
  EXPECT_EQ(3 * vector, BrantVector(3, -6, 12));
  EXPECT_EQ(vector / 4, BrantVector(0.25, -0.5, 1));
  vector *= 2;
  EXPECT_EQ(vector, BrantVector(2, -4, 8));
  vector /= 8;
  EXPECT_EQ(vector, BrantVector(0.25, -0.5, 1));
}

TEST(BrantVectorTest, UsesItselfAsItsOwnArgument)
{
  BrantVector vector(1, 2, 3);
  const BrantVector& same = vector;
  vector += same;
  EXPECT_EQ(vector, BrantVector(2, 4, 6));
  vector -= same;
  EXPECT_EQ(vector, BrantVector());
  // The factor is a copy: the first product must not change what the other two are multiplied by.
  BrantVector scaled(2, 3, 4);
  scaled *= scaled[0];
  EXPECT_EQ(scaled, BrantVector(4, 6, 8));
}

TEST(BrantVectorTest, NegatesEveryComponent)
{
  EXPECT_EQ(-BrantVector(1, -2, 3), BrantVector(-1, 2, -3));
}

TEST(BrantVectorTest, DividesByZeroAsDoublesDo)
{
  const BrantVector quotient = BrantVector(1, -1, 0) / 0.0;
  EXPECT_EQ(quotient.x(), gInfinity);
  EXPECT_EQ(quotient.y(), -gInfinity);
  EXPECT_TRUE(std::isnan(quotient.z()));
}

TEST(BrantVectorTest, ComparesExactly)
{
  EXPECT_TRUE(BrantVector(1, 2, 3) == BrantVector(1, 2, 3));
  EXPECT_FALSE(BrantVector(1, 2, 3) != BrantVector(1, 2, 3));
  EXPECT_TRUE(BrantVector(0, 0, 0) == BrantVector(-0.0, 0, 0));
  // A difference in any one component counts, down to the last bit.
  const double next = std::nextafter(1.0, 2.0);
  EXPECT_TRUE(BrantVector(1, 1, 1) != BrantVector(next, 1, 1));
  EXPECT_TRUE(BrantVector(1, 1, 1) != BrantVector(1, next, 1));
  EXPECT_TRUE(BrantVector(1, 1, 1) != BrantVector(1, 1, next));
}

TEST(BrantVectorTest, AVectorWithANaNDiffersFromItself)
{
  const BrantVector vector(0, gNaN, 0);
  EXPECT_FALSE(vector == vector);
  EXPECT_TRUE(vector != vector);
}

TEST(BrantVectorTest, CrossProductIsRightHanded)
{
  const BrantVector x(1, 0, 0);
  const BrantVector y(0, 1, 0);
  const BrantVector z(0, 0, 1);
  EXPECT_EQ(x.cross(y), z);
  EXPECT_EQ(y.cross(z), x);
  EXPECT_EQ(z.cross(x), y);
  EXPECT_EQ(y.cross(x), -z);
  EXPECT_EQ(BrantVector(1, 2, 3).cross({4, 5, 6}), BrantVector(-3, 6, -3));
}

TEST(BrantVectorTest, ParallelVectorsHaveNoCrossProduct)
{
  EXPECT_EQ(BrantVector(1, 2, 3).cross({-2, -4, -6}), BrantVector());
}

TEST(BrantVectorTest, LengthIsExactWhereTheRootIs)
{
  EXPECT_EQ(BrantVector(2, 3, 6).length_squared(), 49.0);
  EXPECT_EQ(BrantVector(2, 3, 6).length(), 7.0);
  EXPECT_EQ(BrantVector(-2, 3, -6).length(), 7.0);
  EXPECT_EQ(BrantVector().length(), 0.0);
}

TEST(BrantVectorTest, DistanceIsTrueAndSymmetric)
{
  const BrantVector a(1, 1, 1);
  const BrantVector b(4, 5, 1);
  // A 3-4-5 triangle: 5, where a squared distance would be 25.
  EXPECT_EQ(a.distance_between(b), 5.0);
  EXPECT_EQ(b.distance_between(a), 5.0);
  EXPECT_EQ(a.distance_between(a), 0.0);
}

TEST(BrantVectorTest, NormalizesToTheSameDirection)
{
  const BrantVector unit = BrantVector(0, -3, 4).normalized();
  EXPECT_DOUBLE_EQ(unit.x(), 0.0);
  EXPECT_DOUBLE_EQ(unit.y(), -0.6);
  EXPECT_DOUBLE_EQ(unit.z(), 0.8);
}

TEST(BrantVectorTest, NormalizesLengthsWhoseSquareIsNoDouble)
{
  // The squares are 1e400 and 1e-400: infinite and zero as doubles.
  for (const double size : {1e200, 1e-200, std::numeric_limits<double>::denorm_min()}) {
    const BrantVector unit = BrantVector(size, -size, 0).normalized();
    EXPECT_DOUBLE_EQ(unit.x(), std::sqrt(0.5)) << size;
    EXPECT_DOUBLE_EQ(unit.y(), -std::sqrt(0.5)) << size;
    EXPECT_EQ(unit.z(), 0.0) << size;
  }
}

TEST(BrantVectorTest, WithoutADirectionNormalizesToZero)
{
  EXPECT_EQ(BrantVector().normalized(), BrantVector());
  EXPECT_EQ(BrantVector(-0.0, -0.0, -0.0).normalized(), BrantVector());
  // Infinity over infinity is NaN: these must not be divided.
  EXPECT_EQ(BrantVector(gInfinity, 0, 0).normalized(), BrantVector());
  EXPECT_EQ(BrantVector(1, gNaN, 1).normalized(), BrantVector());
  EXPECT_EQ(BrantVector(gNaN, 1, 1).normalized(), BrantVector());
}

TEST(BrantVectorTest, IsFiniteOnlyWhenEveryComponentIs)
{
  EXPECT_TRUE(BrantVector(1, -2, 1e308).is_finite());
  EXPECT_FALSE(BrantVector(gNaN, 0, 0).is_finite());
  EXPECT_FALSE(BrantVector(0, gInfinity, 0).is_finite());
  EXPECT_FALSE(BrantVector(0, 0, -gInfinity).is_finite());
}

} // namespace
