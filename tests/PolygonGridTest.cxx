// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "PolygonGrid.h"

#include "LassoInputs.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <climits>
#include <limits>
#include <string>

namespace {

using morrow::PolygonGrid;
using morrow_test::hand_drawn;
using morrow_test::LassoQueries;
using morrow_test::moved;
using morrow_test::PickInputs;
using morrow_test::Ring;
using morrow_test::Triangulation;
using Place = PolygonGrid::Place;

PolygonGrid grid_of(const Triangulation& polygon)
{
  return {polygon.points, polygon.triangles, polygon.edges};
}

PolygonGrid limited_grid_of(const Triangulation& polygon, std::size_t max_entries)
{
  return {polygon.points, polygon.triangles, polygon.edges, max_entries};
}

/// Asks the grid and the literal polygon the same questions.
void expect_literal_answers(const PolygonGrid& grid, const Triangulation& polygon, int questions,
                            const std::string& what)
{
  const morrow_test::LiteralPolygon literal = polygon.literal();
  LassoQueries queries(polygon, 17);
  for (int i = 0; i < questions; ++i) {
    double p[2];
    double q[2];
    queries.segment(p, q);
    ASSERT_EQ(grid.contains(p), literal.intersects_with_point(p))
        << what << ", point " << i << " at " << p[0] << " " << p[1];
    ASSERT_EQ(grid.crosses_edge(p, q), literal.crosses_an_edge(p, q))
        << what << ", segment " << i << " from " << p[0] << " " << p[1] << " to " << q[0] << " " << q[1];
  }
}

void expect_literal_answers(const Triangulation& polygon, int questions, const std::string& what)
{
  expect_literal_answers(grid_of(polygon), polygon, questions, what);
}

void expect_literal_answers(const Ring& ring, int questions, const std::string& what)
{
  expect_literal_answers(Triangulation(ring), questions, what);
}

TEST(PolygonGridTest, AnswersForLassosOfEverySizeAndBothWaysRound)
{
  for (const std::size_t count : {3u, 4u, 5u, 9u, 16u, 64u, 200u}) {
    for (const bool clockwise : {false, true}) {
      expect_literal_answers(hand_drawn(count, clockwise), 4000, "hand-drawn " + std::to_string(count));
    }
  }
}

TEST(PolygonGridTest, AnswersForLassosThatCrossThemselves)
{
  PickInputs inputs(3);
  for (int i = 0; i < 12; ++i) {
    expect_literal_answers(random_ring(4 + inputs.below(30), inputs), 1500, "random " + std::to_string(i));
  }
}

// Collinear points make triangles without area, which hold points of their line at any distance.
TEST(PolygonGridTest, AnswersForLatticesWithEqualPointsAndEdgesOnTopOfEachOther)
{
  PickInputs inputs(5);
  for (int i = 0; i < 60; ++i) {
    expect_literal_answers(lattice_ring(3 + inputs.below(25), inputs), 1000, "lattice " + std::to_string(i));
  }
}

TEST(PolygonGridTest, AnswersForTrianglesWithoutAreaAndSlivers)
{
  Triangulation polygon(hand_drawn(16));
  // A line of its own, three equal corners, a sliver, and one that overlaps others.
  polygon.points.insert(polygon.points.end(), {100, 100, 0, 150, 150, 0, 300, 300, 0, 400, 100.0000000001, 0,
                                               250, 100, 0, 400, 100, 0});
  const int first = 16;
  const auto add = [&](int a, int b, int c) {
    polygon.triangles.insert(polygon.triangles.end(), {first + a, first + b, first + c});
  };
  add(0, 1, 2);
  polygon.edges.insert(polygon.edges.end(), {3, 3}); // parallel to everything
  expect_literal_answers(polygon, 20000, "a line");
  add(3, 4, 5);
  add(0, 5, 3);
  expect_literal_answers(polygon, 20000, "slivers");
  add(1, 1, 1); // holds the whole plane
  expect_literal_answers(polygon, 2000, "a point");
}

TEST(PolygonGridTest, AnswersWhateverTheSizeAndThePlace)
{
  const Ring ring = hand_drawn(24);
  PickInputs inputs(9);
  const Ring turned = random_ring(12, inputs);
  for (const double scale : {1e-140, 1e-99, 1e-12, 1.0 / 3.0, 1e6, 1e99, 1e140}) {
    expect_literal_answers(moved(ring, scale, 0, 0), 3000, "scale " + std::to_string(scale));
    expect_literal_answers(moved(turned, scale, 0, 0), 2000, "crossing, scale " + std::to_string(scale));
  }
  expect_literal_answers(moved(ring, 1.0, 1e9, -1e9), 3000, "moved");
  expect_literal_answers(moved(ring, 1e-3, 1e12, 1e12), 3000, "moved to where few doubles are");
  Ring flat = ring;
  for (auto& point : flat) {
    point[1] = point[1] * 1e-9 + 7.0;
  }
  expect_literal_answers(flat, 3000, "flat");
}

TEST(PolygonGridTest, AnswersForShortEdgesAndLongOnes)
{
  Ring ring = hand_drawn(20);
  ring.insert(ring.begin() + 3, {ring[2][0] + 1e-13, ring[2][1]});
  ring.insert(ring.begin() + 9, {ring[8][0], ring[8][1] + 1e-6});
  ring.push_back({1e5, 250.0});
  ring.push_back({1e5, 250.5});
  expect_literal_answers(ring, 10000, "short and long");
  // So short that the products of its coordinates vanish: no grid.
  expect_literal_answers({{0, 0}, {1e-200, 0}, {5, 5}, {-5, 5}, {0, 1e-200}}, 2000, "vanishing");
}

TEST(PolygonGridTest, HasNoCellsWhereTheyWouldNotHelp)
{
  EXPECT_FALSE(grid_of(Triangulation(Ring())).has_cells());
  EXPECT_FALSE(grid_of(Triangulation({{1, 1}, {2, 2}})).has_cells());
  EXPECT_FALSE(grid_of(Triangulation({{1, 1}, {2, 2}, {3, 3}})).has_cells()); // no triangles
  EXPECT_FALSE(grid_of(Triangulation(moved(hand_drawn(9), 1e140, 0, 0))).has_cells());
  EXPECT_TRUE(grid_of(Triangulation(hand_drawn(3))).has_cells());
  EXPECT_TRUE(grid_of(Triangulation(hand_drawn(64))).is_solid());
  expect_literal_answers(Ring({{1, 1}, {2, 2}}), 500, "two points");
  expect_literal_answers(Ring(), 500, "nothing");
}

TEST(PolygonGridTest, ARandomLassoOfManyCrossingsIsWithinBounds)
{
  PickInputs inputs(21);
  const Triangulation polygon(random_ring(300, inputs));
  ASSERT_GT(polygon.triangles.size(), 3u * 8000u);
  const PolygonGrid grid = grid_of(polygon);
  EXPECT_TRUE(grid.has_cells());
  expect_literal_answers(grid, polygon, 150, "300 random points");
}

// The lists are limited: where very many triangles or edges run across the polygon, the cells are larger.
TEST(PolygonGridTest, LargerCellsForWhatOverlapsEverywhere)
{
  const Triangulation polygon(hand_drawn(64));
  // Lines right across it, each of which lists some 150 of the small cells, or half of that of cells of twice
  // the size. They come first: a cell that is known to be inside lists nothing more.
  std::vector<int> triangles;
  std::vector<int> edges;
  for (int i = 0; i < 1000; ++i) {
    triangles.insert(triangles.end(), {i % 64, (i + 32) % 64, i % 64});
    edges.insert(edges.end(), {i % 64, (i + 32) % 64});
  }
  Triangulation filled = polygon;
  filled.triangles.insert(filled.triangles.begin(), triangles.begin(), triangles.end());
  Triangulation crossed = polygon;
  crossed.edges.insert(crossed.edges.begin(), edges.begin(), edges.end());
  for (const Triangulation* shapes : {&filled, &crossed}) {
    EXPECT_EQ(grid_of(*shapes).cells_per_side(), 128u);
    const PolygonGrid limited = limited_grid_of(*shapes, 100'000);
    EXPECT_EQ(limited.cells_per_side(), 64u);
    expect_literal_answers(limited, *shapes, 1000, "limited");
    const PolygonGrid very_limited = limited_grid_of(*shapes, 15'000);
    EXPECT_EQ(very_limited.cells_per_side(), 8u);
    expect_literal_answers(very_limited, *shapes, 1000, "very limited");
    const PolygonGrid none = limited_grid_of(*shapes, 900); // each shape has a cell at least
    EXPECT_FALSE(none.has_cells());
    expect_literal_answers(none, *shapes, 100, "without cells");
  }
}

TEST(PolygonGridTest, WhatNamesNoVertexIsLeftOut)
{
  const std::vector<double> points = {0, 0, 0, 1, 0, 0, 0, 1, 0};
  const double p[2] = {0.25, 0.25};
  const double below[2] = {0.25, -1.0};
  for (const int bad : {3, -1, INT_MAX, INT_MIN}) {
    const PolygonGrid broken(points, {0, 1, bad}, {0, bad});
    EXPECT_FALSE(broken.contains(p));
    EXPECT_FALSE(broken.crosses_edge(p, below));
    const PolygonGrid partly(points, {0, bad, 2, 0, 1, 2}, {bad, 0, 0, 1});
    EXPECT_TRUE(partly.contains(p));
    EXPECT_TRUE(partly.crosses_edge(p, below));
  }
  const PolygonGrid incomplete(points, {0, 1, 2, 0}, {0, 1, 2}); // what is left over is ignored
  EXPECT_TRUE(incomplete.contains(p));
  const PolygonGrid without_z({0, 0, 0, 1, 0, 0, 0, 1}, {0, 1, 2}, {}); // of the last vertex
  EXPECT_TRUE(without_z.contains(p));
  const PolygonGrid without_y({0, 0, 0, 1, 0, 0, 0}, {0, 1, 2}, {});
  EXPECT_FALSE(without_y.contains(p));
}

TEST(PolygonGridTest, PlacesOfBoxesAreTrueOfAllTheirPoints)
{
  for (const bool clockwise : {false, true}) {
    const Triangulation polygon(hand_drawn(64, clockwise));
    const PolygonGrid grid = grid_of(polygon);
    const morrow_test::LiteralPolygon literal = polygon.literal();
    PickInputs inputs(29);
    int counts[3] = {};
    for (int i = 0; i < 4000; ++i) {
      const double x = inputs.between(90.0, 510.0);
      const double y = inputs.between(40.0, 460.0);
      const double width = inputs.between(0.0, 20.0);
      const Place place = grid.place_of_box(x, y, x + width, y + width);
      ++counts[static_cast<int>(place)];
      for (int k = 0; k < 4 && place != Place::Unknown; ++k) {
        const double p[2] = {x + width * (k & 1), y + width * (k >> 1)};
        const double q[2] = {inputs.between(x, x + width), inputs.between(y, y + width)};
        ASSERT_EQ(literal.intersects_with_point(q), place == Place::Inside);
        ASSERT_FALSE(literal.crosses_an_edge(p, q));
      }
    }
    EXPECT_GT(counts[0], 100);
    EXPECT_GT(counts[1], 100);
    EXPECT_GT(counts[2], 100);
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(grid.place_of_box(nan, 200, 300, 300), Place::Unknown);
    EXPECT_EQ(grid.place_of_box(310, 250, 300, 260), Place::Unknown); // inverted
    EXPECT_EQ(grid.place_of_box(-1000, 250, 300, 260), Place::Unknown);
  }
}

} // namespace
