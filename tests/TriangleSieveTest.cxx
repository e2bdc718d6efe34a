// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "TriangleSieve.h"

#include "PickScene.h"
#include "RayTube.h"

#include <gtest/gtest.h>

#include <vtkNew.h>
#include <vtkPoints.h>
#include <vtkTriangle.h>

#include <algorithm>
#include <limits>
#include <vector>

namespace {

using Distance = morrow::TriangleSieve::Distance;
using morrow::PickRay;
using morrow::RayTube;
using morrow::TriangleSieve;
using morrow_test::Random;

constexpr double kBounds[6] = {-1, 1, -1, 1, -1, 1};

bool vtk_hits(const double (&corners)[3][3], const PickRay& ray, double tolerance)
{
  vtkNew<vtkTriangle> triangle;
  for (int i = 0; i < 3; ++i) {
    triangle->GetPoints()->SetPoint(i, corners[i]);
  }
  double t = 0.0;
  double x[3];
  double pcoords[3];
  int sub_id = 0;
  return triangle->IntersectWithLine(ray.p1, ray.p2, tolerance, t, x, pcoords, sub_id) != 0;
}

/// Of any size near the ray, every third nearly without area and every fifth nearly along the ray.
void make_triangle(Random& random, int i, double (&corners)[3][3])
{
  const double sizes[] = {1.0, 0.1, 0.01, 1.0e-4};
  const double size = sizes[random.below(4)];
  const double at[3] = {random.between(-0.05, 0.05), random.between(-0.05, 0.05), random.between(-0.9, 0.9)};
  for (auto& corner : corners) {
    for (int k = 0; k < 3; ++k) {
      corner[k] = at[k] + random.between(-size, size);
    }
    corner[0] = i % 5 == 0 ? at[0] + 1.0e-6 * (corner[0] - at[0]) : corner[0];
  }
  for (int k = 0; k < 3 && i % 3 == 0; ++k) {
    corners[2][k] = 0.5 * (corners[0][k] + corners[1][k]) + 1.0e-9 * (corners[2][k] - at[k]);
  }
}

TEST(TriangleSieveTest, AgreesWithWhatVtkFinds)
{
  Random random(3);
  int counts[4] = {0, 0, 0, 0};
  for (const double tolerance : {0.03, 0.001, 1.0e-6}) {
    for (int i = 0; i < 40'000; ++i) {
      const PickRay ray = {
          {random.between(-0.05, 0.05), 0.0, 3.0}, {0.0, random.between(-0.05, 0.05), -3.0}, tolerance};
      const TriangleSieve sieve(ray, kBounds);
      double corners[3][3];
      make_triangle(random, i, corners);
      const Distance distance = sieve.distance_to(corners[0], corners[1], corners[2]);
      const bool is_hit = vtk_hits(corners, ray, tolerance);
      const bool is_direct = vtk_hits(corners, ray, 0.5 * tolerance);
      ++counts[static_cast<int>(distance)];
      if (distance == Distance::Beyond) {
        ASSERT_FALSE(is_hit) << i << ", tolerance " << tolerance;
      } else if (distance == Distance::Far) {
        ASSERT_FALSE(is_direct) << i << ", tolerance " << tolerance;
      } else if (distance == Distance::Near && is_hit) {
        ASSERT_TRUE(is_direct) << i << ", tolerance " << tolerance;
      }
    }
  }
  for (const Distance distance : {Distance::Near, Distance::Far, Distance::Beyond}) {
    EXPECT_GT(counts[static_cast<int>(distance)], 500);
  }
}

TEST(TriangleSieveTest, TellsNearFromFarFromBeyond)
{
  const TriangleSieve sieve({{0, 0, 1}, {0, 0, -1}, 0.1}, kBounds);
  const auto distance_at = [&sieve](double x) {
    const double a[3] = {x, -1, 0};
    const double b[3] = {x + 1, 0, 0};
    const double c[3] = {x, 1, 0};
    return sieve.distance_to(a, b, c);
  };
  EXPECT_EQ(Distance::Near, distance_at(-0.5)); // around the ray
  EXPECT_EQ(Distance::Near, distance_at(0.04));
  EXPECT_EQ(Distance::Unclear, distance_at(0.05)); // half the tolerance
  EXPECT_EQ(Distance::Far, distance_at(0.06));
  EXPECT_EQ(Distance::Far, distance_at(0.1)); // whether VTK hits it is VTK's to say
  EXPECT_EQ(Distance::Beyond, distance_at(0.11));
}

TEST(TriangleSieveTest, LeavesToVtkWhatIsNotPlain)
{
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  constexpr double infinity = std::numeric_limits<double>::infinity();
  const double a[3] = {5, 0, 0};
  const double b[3] = {6, 0, 0};
  const double c[3] = {5, 1, 0};
  const double bad[3] = {nan, 0, 0};
  const double far[3] = {infinity, 0, 0};
  const double above[3] = {5, 0, 1};
  const PickRay plain = {{0, 0, 1}, {0, 0, -1}, 0.1};
  const TriangleSieve sieve(plain, kBounds);
  EXPECT_EQ(Distance::Beyond, sieve.distance_to(a, b, c));
  EXPECT_EQ(Distance::Unclear, sieve.distance_to(a, b, bad));
  EXPECT_EQ(Distance::Unclear, sieve.distance_to(far, b, c));
  EXPECT_EQ(Distance::Unclear, sieve.distance_to(a, a, a));
  EXPECT_EQ(Distance::Unclear, sieve.distance_to(a, a, b));
  EXPECT_EQ(Distance::Unclear, sieve.distance_to(a, b, above)); // along the ray
  for (const double tolerance : {0.0, -0.1, nan, infinity}) {
    const PickRay ray = {{0, 0, 1}, {0, 0, -1}, tolerance};
    EXPECT_EQ(Distance::Unclear, TriangleSieve(ray, kBounds).distance_to(a, b, c)) << tolerance;
  }
  const PickRay point = {{0, 0, 1}, {0, 0, 1}, 0.1};
  EXPECT_EQ(Distance::Unclear, TriangleSieve(point, kBounds).distance_to(a, b, c));
}

// The tube lies beside it: it leaves out what is farther than the tolerance, and codes of many points are
// those of each but for what numbers of 32 bits round.
TEST(RayTubeTest, SidesOfManyPointsAreThoseOfEach)
{
  const PickRay ray = {{0, 0, 3}, {0.5, 0.25, -3}, 0.05};
  const RayTube tube(ray, kBounds, RayTube::Reach::Round);
  Random random(5);
  std::vector<float> floats(3000);
  std::generate(floats.begin(), floats.end(), [&] { return static_cast<float>(random.between(-1, 1)); });
  floats[0] = std::numeric_limits<float>::infinity();
  floats[4] = std::numeric_limits<float>::quiet_NaN();
  const std::vector<double> doubles(floats.begin(), floats.end());
  std::vector<unsigned char> of_floats(1000);
  std::vector<unsigned char> of_doubles(1000);
  tube.sides_across(floats.data(), 1000, of_floats.data());
  tube.sides_across(doubles.data(), 1000, of_doubles.data());
  EXPECT_EQ(0, of_floats[0]);
  EXPECT_EQ(0, of_floats[1]);
  int equal = 0;
  for (std::size_t i = 0; i < 1000; ++i) {
    EXPECT_EQ(of_doubles[i], tube.sides_across(&doubles[3 * i])) << i;
    EXPECT_EQ(of_doubles[i], tube.sides_of(&doubles[3 * i]) & 15U) << i;
    EXPECT_EQ(0, of_floats[i] & ~of_doubles[i]) << i;
    equal += of_floats[i] == of_doubles[i] ? 1 : 0;
  }
  EXPECT_GT(equal, 990);
}

} // namespace
