// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "PrimitiveShapes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <limits>
#include <set>
#include <string>
#include <tuple>

namespace {

using morrow::arrowhead_points;
using morrow::box_face_points;

constexpr double kTolerance = 1e-12;

// Of length 10 along z: the base lies 2 before the head, its corners 0.7 off the axis.
TEST(PrimitiveShapesTest, ArrowheadHasItsApexAtTheHeadAndItsBaseAFifthBefore)
{
  const auto points = arrowhead_points({1.0, 2.0, 3.0}, {1.0, 2.0, 13.0});
  EXPECT_TRUE(points[0] == BrantVector(1.0, 2.0, 13.0));
  const BrantVector centre(1.0, 2.0, 11.0);
  for (std::size_t i = 1; i < points.size(); ++i) {
    EXPECT_NEAR(points[i].z(), 11.0, kTolerance);
    EXPECT_NEAR(points[i].distance_between(centre), 0.7, kTolerance);
  }
  EXPECT_NEAR((points[1] - centre).dot(points[2] - centre), 0.0, kTolerance);
  EXPECT_NEAR((points[1] + points[3]).distance_between(2.0 * centre), 0.0, kTolerance);
  EXPECT_NEAR((points[2] + points[4]).distance_between(2.0 * centre), 0.0, kTolerance);
}

TEST(PrimitiveShapesTest, ArrowheadHasItsShapeInEveryDirection)
{
  for (const BrantVector& d : {BrantVector(1.0, 0.0, 0.0), BrantVector(0.0, -3.0, 0.0),
                               BrantVector(1.0, 2.0, -2.0), BrantVector(-1e-6, 1e-6, 0.0)}) {
    const BrantVector tail(5.0, 6.0, 7.0);
    const auto points = arrowhead_points(tail, tail + d);
    const BrantVector centre = tail + 0.8 * d;
    const double tolerance = 1e-6 * d.length();
    for (std::size_t i = 1; i < points.size(); ++i) {
      EXPECT_NEAR(points[i].distance_between(centre), 0.07 * d.length(), tolerance);
      EXPECT_NEAR((points[i] - centre).dot(d.normalized()), 0.0, tolerance);
    }
  }
}

TEST(PrimitiveShapesTest, ArrowheadTrianglesFaceOutwards)
{
  const auto points = arrowhead_points({0.0, 0.0, 0.0}, {1.0, 2.0, 3.0});
  const int* run = morrow::ArrowheadRuns;
  for (int i = 0; i < 4; ++i, run += 4) {
    ASSERT_EQ(run[0], 3);
    const BrantVector& a = points[static_cast<std::size_t>(run[1])];
    const BrantVector& b = points[static_cast<std::size_t>(run[2])];
    const BrantVector& c = points[static_cast<std::size_t>(run[3])];
    const BrantVector inside(0.85, 1.7, 2.55); // on the axis
    EXPECT_GT((b - a).cross(c - a).dot(a - inside), 0.0) << i;
  }
}

TEST(PrimitiveShapesTest, ArrowheadWithoutLengthIsOnePointFiveTimes)
{
  for (const BrantVector& point : arrowhead_points({1.0, 2.0, 3.0}, {1.0, 2.0, 3.0})) {
    EXPECT_TRUE(point == BrantVector(1.0, 2.0, 3.0));
  }
}

TEST(PrimitiveShapesTest, ArrowheadsThatAreNotFiniteAreHarmless)
{
  for (const double bad :
       {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(), 1e308, -1e308}) {
    const auto points = arrowhead_points({0.0, 0.0, 0.0}, {0.0, bad, 0.0});
    EXPECT_EQ(std::isfinite(points[0].y()), std::isfinite(bad));
    EXPECT_FALSE(points[1].is_finite());
  }
}

TEST(PrimitiveShapesTest, BoxFacesAreTheSixSidesAndFaceOutwards)
{
  const BrantVector minimum(-1.0, 2.0, -3.0);
  const BrantVector maximum(4.0, 5.0, 6.0);
  const BrantVector centre = (minimum + maximum) / 2.0;
  const auto points = box_face_points(minimum, maximum);
  std::set<std::tuple<double, double, double>> normals;
  double area = 0.0;
  const int* run = morrow::BoxFaceRuns;
  for (int face = 0; face < 6; ++face, run += 5) {
    ASSERT_EQ(run[0], 4);
    BrantVector p[4];
    for (int i = 0; i < 4; ++i) {
      ASSERT_EQ(run[i + 1], 4 * face + i);
      p[i] = points[static_cast<std::size_t>(run[i + 1])];
    }
    const BrantVector normal = (p[1] - p[0]).cross(p[2] - p[1]);
    EXPECT_GT(normal.dot(p[0] - centre), 0.0) << face;
    EXPECT_TRUE(p[0] + p[2] == p[1] + p[3]) << face; // a rectangle, as its sides are along the axes
    const BrantVector unit = normal.normalized();
    normals.insert({unit.x(), unit.y(), unit.z()});
    area += normal.length();
  }
  EXPECT_EQ(normals.size(), 6U);
  EXPECT_NEAR(area, 2.0 * (5.0 * 3.0 + 3.0 * 9.0 + 9.0 * 5.0), kTolerance);
}

TEST(PrimitiveShapesTest, BoxesMayBeInvertedOrFlat)
{
  const auto inverted = box_face_points({1.0, 1.0, 1.0}, {-1.0, -1.0, -1.0});
  const auto flat = box_face_points({0.0, 0.0, 2.0}, {1.0, 1.0, 2.0});
  for (std::size_t i = 0; i < inverted.size(); ++i) {
    EXPECT_EQ(std::abs(inverted[i].x()), 1.0);
    EXPECT_EQ(flat[i].z(), 2.0);
  }
}

} // namespace
