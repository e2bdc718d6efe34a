// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "MRUtil.h"
#include "PolygonOracle.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <limits>
#include <map>
#include <new>
#include <random>
#include <stdexcept>
#include <string>

namespace {

long gAllocationsToGo = -1; // the allocation after so many fails; never if negative

} // namespace

// Not inlined: GCC would miss that they belong together.
[[gnu::noinline]] void* operator new(std::size_t size)
{
  void* memory = gAllocationsToGo == 0 ? nullptr : std::malloc(size);
  if (memory == nullptr) {
    throw std::bad_alloc();
  }
  gAllocationsToGo -= gAllocationsToGo > 0 ? 1 : 0;
  return memory;
}

[[gnu::noinline]] void operator delete(void* memory) noexcept
{
  std::free(memory);
}

[[gnu::noinline]] void operator delete(void* memory, std::size_t /*size*/) noexcept
{
  std::free(memory);
}

namespace {

using namespace morrow_test;
using Indices = std::vector<int>;

struct Triangulation
{
  // Filled, to see that nothing of it stays.
  Indices triangles = {7};
  Indices edges = {7, 7, 7};
  std::vector<double> coords = {7.0};

  [[nodiscard]] std::size_t num_points() const { return coords.size() / 3; }
  [[nodiscard]] Point3 point(int index) const
  {
    const std::size_t i = 3 * static_cast<std::size_t>(index);
    return {coords.at(i), coords.at(i + 1), coords.at(i + 2)};
  }
};

Triangulation triangulate(Ring ring)
{
  Triangulation result;
  MRUtil::triangulate_polygon(static_cast<int>(ring.points.size()),
                              reinterpret_cast<double(*)[3]>(ring.points.data()), result.triangles,
                              result.edges, result.coords);
  return result;
}

double area_of(const Point3& a, const Point3& b, const Point3& c)
{
  const Point3 ab = {b[0] - a[0], b[1] - a[1], b[2] - a[2]};
  const Point3 ac = {c[0] - a[0], c[1] - a[1], c[2] - a[2]};
  return 0.5 * std::hypot(ab[1] * ac[2] - ab[2] * ac[1], ab[2] * ac[0] - ab[0] * ac[2],
                          ab[0] * ac[1] - ab[1] * ac[0]);
}

double total_area(const Triangulation& t)
{
  double area = 0.0;
  for (std::size_t i = 0; i + 2 < t.triangles.size(); i += 3) {
    area += area_of(t.point(t.triangles[i]), t.point(t.triangles[i + 1]), t.point(t.triangles[i + 2]));
  }
  return area;
}

/// The sides that belong to one triangle only, in the order of the triangles and of their corners.
Indices sides_of_one_triangle(const Indices& triangles)
{
  std::map<std::pair<int, int>, int> uses;
  const auto for_each_side = [&](auto&& call) {
    for (std::size_t i = 0; i < triangles.size(); ++i) {
      call(triangles[i], triangles[i % 3 == 2 ? i - 2 : i + 1]);
    }
  };
  for_each_side([&](int from, int to) { ++uses[std::minmax(from, to)]; });
  Indices sides;
  for_each_side([&](int from, int to) {
    if (uses[std::minmax(from, to)] == 1) {
      sides.insert(sides.end(), {from, to});
    }
  });
  return sides;
}

/// What holds for each ring.
void expect_is_sound(const Triangulation& t, const Ring& ring)
{
  ASSERT_EQ(t.triangles.size() % 3, 0U);
  ASSERT_EQ(t.edges.size() % 2, 0U);
  ASSERT_EQ(t.coords.size() % 3, 0U);
  const std::vector<double> given = ring.coords();
  ASSERT_GE(t.coords.size(), given.size());
  ASSERT_TRUE(std::equal(given.begin(), given.end(), t.coords.begin()));
  const auto is_valid = [&](int index) {
    return index >= 0 && static_cast<std::size_t>(index) < t.num_points();
  };
  ASSERT_TRUE(std::all_of(t.triangles.begin(), t.triangles.end(), is_valid));
  ASSERT_TRUE(std::all_of(t.edges.begin(), t.edges.end(), is_valid));
}

// ---------------------------------------------------------------------------------------------------------
// Literal rings

const Ring kSquare = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};
const Ring kBowTie = {{0, 0, 0}, {2, 2, 0}, {2, 0, 0}, {0, 2, 0}};
const Ring kL = {{0, 0, 0}, {2, 0, 0}, {2, 1, 0}, {1, 1, 0}, {1, 2, 0}, {0, 2, 0}};

TEST(TriangulatePolygon, AConvexQuadrilateralIsTwoTrianglesAndFourEdges)
{
  for (const Ring& ring : {kSquare, kSquare.reversed(), kSquare.in(Plane::Tilted)}) {
    const Triangulation t = triangulate(ring);
    expect_is_sound(t, ring);
    EXPECT_EQ(t.triangles.size(), 6U);
    EXPECT_EQ(t.num_points(), 4U);
    EXPECT_EQ(t.edges, sides_of_one_triangle(t.triangles));
    ASSERT_EQ(t.edges.size(), 8U);
    for (std::size_t i = 0; i < 8; i += 2) { // neighbours in the ring, so not the diagonal
      EXPECT_EQ(std::abs(t.edges[i] - t.edges[i + 1]) % 2, 1);
    }
  }
}

TEST(TriangulatePolygon, ATriangleIsItself)
{
  const Ring ring = {{0, 0, 1}, {1, 0, 1}, {0, 1, 1}};
  const Triangulation t = triangulate(ring);
  expect_is_sound(t, ring);
  Indices corners = t.triangles;
  std::sort(corners.begin(), corners.end());
  EXPECT_EQ(corners, (Indices{0, 1, 2}));
  const Indices& c = t.triangles;
  EXPECT_EQ(t.edges, (Indices{c[0], c[1], c[1], c[2], c[2], c[0]}));
}

TEST(TriangulatePolygon, ABowTieHasAPointAtItsCrossing)
{
  const Triangulation t = triangulate(kBowTie);
  expect_is_sound(t, kBowTie);
  ASSERT_EQ(t.num_points(), 5U);
  EXPECT_EQ(t.point(4), (Point3{1.0, 1.0, 0.0}));
  EXPECT_EQ(t.triangles.size(), 6U);
  EXPECT_EQ(t.edges.size(), 12U);
  EXPECT_EQ(std::count(t.triangles.begin(), t.triangles.end(), 4), 2);
  EXPECT_NEAR(total_area(t), 2.0, 1e-12);
}

TEST(TriangulatePolygon, TakesRingsOfAnyShapeInAnyPlaneEitherWayRound)
{
  const Ring twice_round = {{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0},
                            {0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};
  const std::vector<std::pair<Ring, double>> rings = {
      {kSquare, 1.0}, {kL, 3.0}, {kBowTie, 2.0}, {twice_round, 3.0} /* wound twice is outside */};
  for (const auto& [ring, area] : rings) {
    for (const Plane plane : {Plane::XY, Plane::YZ, Plane::ZX, Plane::Tilted}) {
      const double factor = plane == Plane::Tilted ? std::sqrt(2.0) : 1.0;
      EXPECT_NEAR(total_area(triangulate(ring.in(plane))), area * factor, 1e-9);
      EXPECT_NEAR(total_area(triangulate(ring.in(plane).reversed())), area * factor, 1e-9);
    }
  }
}

TEST(TriangulatePolygon, FlatRingsHaveNoTriangles)
{
  const Ring::Points line = {{0, 0, 0}, {3, 3, 3}, {1, 1, 1}, {2, 2, 2}};
  const std::vector<Ring> rings = {Ring{{1, 2, 3}}, Ring{{0, 0, 0}, {1, 1, 1}}, Ring(line),
                                   Ring(Ring::Points(500, {1, 1, 1}))};
  for (const Ring& ring : rings) {
    const Triangulation t = triangulate(ring);
    expect_is_sound(t, ring);
    EXPECT_TRUE(t.triangles.empty());
    EXPECT_TRUE(t.edges.empty());
  }
}

TEST(TriangulatePolygon, TakesPointsThatComeTwice)
{
  const Ring doubled = {{0, 0, 0}, {0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {1, 1, 0}, {0, 1, 0}, {0, 0, 0}};
  const Triangulation t = triangulate(doubled);
  expect_is_sound(t, doubled);
  EXPECT_NEAR(total_area(t), 1.0, 1e-12);
  EXPECT_EQ(t.triangles.size(), 6U);
}

TEST(TriangulatePolygon, AnEmptyPolygonHasNothing)
{
  double points[1][3] = {{1, 2, 3}};
  const std::vector<std::pair<int, double(*)[3]>> empty = {
      {0, points}, {-1, points}, {INT_MIN, points}, {0, nullptr}, {5, nullptr}};
  for (const auto& [count, given] : empty) {
    Triangulation t;
    MRUtil::triangulate_polygon(count, given, t.triangles, t.edges, t.coords);
    EXPECT_TRUE(t.triangles.empty());
    EXPECT_TRUE(t.edges.empty());
    EXPECT_TRUE(t.coords.empty());
  }
}

TEST(TriangulatePolygon, ThePointsMayLieInTheVectorThatIsFilled)
{
  Triangulation t;
  t.coords = kBowTie.coords();
  MRUtil::triangulate_polygon(4, reinterpret_cast<double(*)[3]>(t.coords.data()), t.triangles, t.edges,
                              t.coords);
  EXPECT_EQ(t.coords, triangulate(kBowTie).coords);
  EXPECT_EQ(t.triangles, triangulate(kBowTie).triangles);
}

// ---------------------------------------------------------------------------------------------------------
// Random and large rings

// GLU weighs the ends of crossing sides with floats, so that crossings in the unit square are that far off.
constexpr double kCombined = 2e-6;

TEST(TriangulatePolygon, RandomRingsAreTiledAsTheOddRuleSays)
{
  for (unsigned int seed = 0; seed < 120; ++seed) {
    SCOPED_TRACE(seed);
    const Ring ring = random_ring(3 + static_cast<int>(seed % 28), seed);
    const Triangulation t = triangulate(ring);
    expect_is_sound(t, ring);
    EXPECT_NEAR(total_area(t), odd_area(ring), kCombined);
    EXPECT_EQ(t.edges, sides_of_one_triangle(t.triangles));
    for (std::size_t i = 0; i < t.triangles.size(); i += 3) {
      const Point3 a = t.point(t.triangles[i]);
      const Point3 b = t.point(t.triangles[i + 1]);
      const Point3 c = t.point(t.triangles[i + 2]);
      if (area_of(a, b, c) > kCombined) {
        ASSERT_TRUE(is_inside(ring, (a[0] + b[0] + c[0]) / 3.0, (a[1] + b[1] + c[1]) / 3.0));
      }
    }
  }
}

// Points and sides on a coarse grid fall on each other all the time, and their crossings are joined again.
TEST(TriangulatePolygon, RingsThatTouchThemselvesHaveTheRightArea)
{
  for (unsigned int seed = 0; seed < 150; ++seed) {
    SCOPED_TRACE(seed);
    const Ring ring = random_ring(3 + static_cast<int>(seed % 30), seed, 2 + seed % 5);
    const Triangulation t = triangulate(ring);
    expect_is_sound(t, ring);
    EXPECT_NEAR(total_area(t), odd_area(ring), 50.0 * kCombined);
  }
}

TEST(TriangulatePolygon, CoordinatesOfAnySizeAreTaken)
{
  for (const double scale : {5e-324, 1e-300, 1e-20, 1e20, 1e100, 1e150}) {
    for (unsigned int seed = 0; seed < 20; ++seed) {
      Ring ring = random_ring(12, seed);
      for (Point3& p : ring.points) {
        p = {p[0] * scale, (p[1] - 0.5) * scale, p[2]};
      }
      expect_is_sound(triangulate(ring), ring);
    }
  }
}

TEST(TriangulatePolygon, AHundredThousandPointsAreNoTrouble)
{
  const Ring ring = circle(100'000);
  const Triangulation t = triangulate(ring);
  expect_is_sound(t, ring);
  EXPECT_EQ(t.triangles.size(), 3U * 99'998U);
  EXPECT_EQ(t.edges.size(), 2U * 100'000U);
  EXPECT_NEAR(total_area(t), std::acos(-1.0), 1e-6);
}

TEST(TriangulatePolygon, RefusesAPolygonThatCrossesItselfTooOften)
{
  const PrintCapture printed;
  const Ring crossed = random_ring(10'000, 1);
  const Triangulation none = triangulate(crossed);
  EXPECT_TRUE(none.triangles.empty());
  EXPECT_TRUE(none.edges.empty());
  EXPECT_EQ(none.coords, crossed.coords());
  EXPECT_EQ(printed.errors(), "Tesselation Error: the polygon crosses itself too often\n");
}

// GLU's time for them grows with the cube of their number: these would take two minutes.
TEST(TriangulatePolygon, RefusesManyPointsThatGoToAndFroOnOneLine)
{
  const PrintCapture printed;
  Ring line;
  for (const Point3& p : random_ring(4'000, 1).points) {
    line.points.push_back({p[0], p[0], 0.0});
  }
  const Triangulation none = triangulate(line);
  EXPECT_TRUE(none.triangles.empty());
  EXPECT_TRUE(none.edges.empty());
  EXPECT_EQ(none.coords, line.coords());
  EXPECT_EQ(printed.errors(), "Tesselation Error: the polygon crosses itself too often\n");
}

// ---------------------------------------------------------------------------------------------------------
// Errors

TEST(TriangulatePolygon, ACoordinateThatIsNotFiniteIsAnErrorWithoutTriangles)
{
  constexpr double Infinity = std::numeric_limits<double>::infinity();
  for (const double value : {std::nan(""), Infinity, -Infinity}) {
    for (std::size_t place = 0; place < 12; ++place) {
      const PrintCapture printed;
      Ring ring = kSquare;
      ring.points[place / 3][place % 3] = value;
      const Triangulation t = triangulate(ring);
      EXPECT_TRUE(t.triangles.empty());
      EXPECT_TRUE(t.edges.empty());
      EXPECT_EQ(t.num_points(), 4U);
      EXPECT_EQ(printed.errors(), "Tesselation Error: a coordinate is not finite\n");
      ASSERT_EQ(printed.calls().size(), 1U);
    }
  }
}

// The tessellator says so of each such point and goes on, with the largest number that it takes.
TEST(TriangulatePolygon, ACoordinateThatIsTooLargeIsAnErrorAndTheTriangulationGoesOn)
{
  const std::string message = "Tesselation Error: a coordinate is too large\n";
  for (const double value : {1.1e150, 1e151, 1e308}) {
    Ring ring = kSquare;
    for (Point3& point : ring.points) {
      for (double& coordinate : point) {
        coordinate *= value;
      }
    }
    const PrintCapture printed;
    const Triangulation t = triangulate(ring);
    EXPECT_EQ(t.triangles.size(), 6U);
    EXPECT_EQ(t.edges.size(), 8U);
    EXPECT_EQ(t.coords, ring.coords());
    EXPECT_EQ(printed.errors(), message + message + message);
  }
}

TEST(TriangulatePolygon, RandomRingsOfHugeNumbersNameOnlyPointsThatAreThere)
{
  const PrintCapture printed;
  std::mt19937 random; // NOLINT(cert-msc51-cpp): the same rings each time
  constexpr double Numbers[] = {1e308, -1e308, 1e151, -1e150, 1e75, 1.0, 0.0, -1e-300};
  for (int i = 0; i < 500; ++i) {
    Ring ring;
    const std::size_t count = 3 + random() % 12;
    while (ring.points.size() < count) {
      ring.points.push_back({Numbers[random() % 8], Numbers[random() % 8], Numbers[random() % 8]});
    }
    const Triangulation t = triangulate(ring);
    EXPECT_EQ(t.triangles.size() % 3, 0U);
    for (const int index : t.triangles) {
      EXPECT_LT(static_cast<std::size_t>(index), t.num_points());
    }
  }
}

TEST(TriangulatePolygon, ThePrintFunctionMayTriangulateAndThrow)
{
  const PrintCapture printed; // puts the print function back
  static std::size_t num_indices = 0;
  MRUtil::set_print_function([](const char*, int, bool) {
    num_indices = triangulate(kBowTie).triangles.size();
    throw std::runtime_error("printed");
  });
  Ring ring = kSquare;
  ring.points[2][1] = std::nan("");
  EXPECT_THROW(triangulate(ring), std::runtime_error);
  EXPECT_EQ(num_indices, 6U);
  EXPECT_EQ(triangulate(kSquare).triangles.size(), 6U);
}

TEST(TriangulatePolygon, RunningOutOfMemoryPassesOnFromEveryAllocation)
{
  const Ring ring = random_ring(20, 1);
  const Triangulation whole = triangulate(ring);
  bool is_done = false;
  int num_failures = 0;
  for (long good = 0; !is_done; ++good) {
    Ring points = ring;
    Triangulation t;
    gAllocationsToGo = good;
    try {
      MRUtil::triangulate_polygon(20, reinterpret_cast<double(*)[3]>(points.points.data()), t.triangles,
                                  t.edges, t.coords);
      is_done = true;
    } catch (const std::bad_alloc&) {
      ++num_failures;
    }
    gAllocationsToGo = -1;
    if (is_done) {
      EXPECT_EQ(t.triangles, whole.triangles);
      EXPECT_EQ(t.coords, whole.coords);
    }
  }
  EXPECT_GT(num_failures, 5);
  EXPECT_EQ(triangulate(ring).edges, whole.edges);
}

} // namespace
