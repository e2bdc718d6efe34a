// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "RegionFilter.h"

#include "LassoInputs.h"
#include "PickBounds.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <vector>

namespace {

using morrow::RegionFilter;
using morrow_test::hand_drawn;
using morrow_test::LassoQueries;
using morrow_test::PickInputs;
using morrow_test::Ring;
using morrow_test::Triangulation;
using Place = morrow::PolygonGrid::Place;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

PickPolygon polygon_of(const Ring& ring)
{
  PickPolygon polygon;
  polygon.set_polygon(static_cast<int>(ring.size()), reinterpret_cast<const double(*)[2]>(ring.data()));
  return polygon;
}

/// Regions of every class, good and bad ones.
std::vector<std::unique_ptr<PickBounds>> all_regions()
{
  std::vector<std::unique_ptr<PickBounds>> regions;
  double boxes[][4] = {{200, 150, 400, 300},
                       {400, 300, 200, 150},
                       {kNan, 0, 300, 300},
                       {250, 0, 250, 500},
                       {-1e300, -1e300, 1e300, 1e300}};
  for (auto& corners : boxes) {
    auto box = std::make_unique<PickBox>();
    box->set_box(corners);
    regions.push_back(std::move(box));
  }
  const double circles[][3] = {{300, 250, 100},  {300, 250, 0.25}, {300, 250, -50},  {300, 250, 0},
                               {300, 250, kNan}, {kNan, 250, 100}, {300, 250, 1e200}};
  for (const auto& values : circles) {
    auto circle = std::make_unique<PickCircle>();
    circle->set_circle(values, values[2]);
    regions.push_back(std::move(circle));
  }
  PickInputs inputs(41);
  const Ring rings[] = {hand_drawn(64),          hand_drawn(64, true),          hand_drawn(3),
                        random_ring(12, inputs), lattice_ring(20, inputs),      Ring(),
                        Ring({{1, 1}, {2, 2}}),  Ring({{1, 1}, {2, 2}, {3, 3}})};
  for (const Ring& ring : rings) {
    regions.push_back(std::make_unique<PickPolygon>(polygon_of(ring)));
  }
  return regions;
}

TEST(RegionFilterTest, AnswersExactlyAsTheRegion)
{
  const Triangulation around(hand_drawn(32));
  int number = 0;
  for (const auto& region : all_regions()) {
    const RegionFilter filter(*region);
    EXPECT_TRUE(filter.is_known());
    LassoQueries queries(around, 43);
    for (int i = 0; i < 2000; ++i) {
      double p[3][2];
      queries.segment(p[0], p[1]);
      queries.segment(p[1], p[2]);
      ASSERT_EQ(filter.contains(p[0]), region->intersects_with_point(p[0])) << number << " " << i;
      ASSERT_EQ(filter.touches_line(p[0], p[1]), region->intersects_with_line(p[0], p[1])) << number;
      const bool touches = region->intersects_with_triangle(p[0], p[1], p[2]);
      ASSERT_EQ(filter.touches_triangle(p[0], p[1], p[2]), touches) << number << " " << i;
      if (!filter.contains(p[0]) && !filter.contains(p[1]) && !filter.contains(p[2])) {
        ASSERT_EQ(filter.touches_triangle_between(p[0], p[1], p[2]), touches) << number;
      }
    }
    ++number;
  }
}

// What shares a side is not touched; the exceptions need collinear corners, which plain numbers do not have.
TEST(RegionFilterTest, ASideBitIsTrueOfPointsSegmentsAndTriangles)
{
  const Triangulation around(hand_drawn(32));
  int shared = 0;
  for (const auto& region : all_regions()) {
    const RegionFilter filter(*region);
    LassoQueries queries(around, 47);
    PickInputs inputs(53);
    for (int i = 0; i < 2000; ++i) {
      double p[3][2];
      queries.point(p[0]);
      const unsigned bits = filter.classify(p[0]);
      ASSERT_EQ((bits & RegionFilter::Inside) != 0, region->intersects_with_point(p[0]));
      ASSERT_TRUE((bits & RegionFilter::Inside) == 0 || (bits & RegionFilter::Sides) == 0);
      unsigned all = RegionFilter::Sides;
      for (auto& point : p) {
        point[0] = inputs.between(0.0, 600.0);
        point[1] = inputs.between(0.0, 500.0);
        all &= filter.classify(point);
      }
      if (all != 0) {
        ++shared;
        ASSERT_FALSE(region->intersects_with_line(p[0], p[1]));
        ASSERT_FALSE(region->intersects_with_triangle(p[0], p[1], p[2]));
      }
    }
  }
  EXPECT_GT(shared, 1000);
}

TEST(RegionFilterTest, NothingNearTheBorderIsCalledOutside)
{
  double corners[4] = {100, 100, 200, 200};
  PickBox box;
  box.set_box(corners);
  const RegionFilter filter(box);
  const double inside[2] = {100, 200};
  const double near_by[2] = {100 - 1e-9, 150};
  const double left[2] = {99.9, 150};
  const double upper_right[2] = {201, 201};
  const double far_away[2] = {-1e300, 150};
  EXPECT_EQ(filter.classify(inside), RegionFilter::Inside);
  EXPECT_EQ(filter.classify(near_by), 0);
  EXPECT_EQ(filter.classify(left), RegionFilter::Left);
  EXPECT_EQ(filter.classify(upper_right), RegionFilter::Right | RegionFilter::Above);
  EXPECT_EQ(filter.classify(far_away), 0);
  // Segments come up to the root of the radius, farther than points do.
  const double centre[2] = {100, 100};
  PickCircle circle;
  circle.set_circle(centre, 0.25);
  const RegionFilter small(circle);
  const double reached[2] = {100.4, 100};
  EXPECT_EQ(small.classify(reached), 0);
}

TEST(RegionFilterTest, PlacesOfBoxes)
{
  int counts[3] = {};
  int cleared = 0;
  for (const auto& region : all_regions()) {
    const RegionFilter filter(*region);
    PickInputs inputs(59);
    for (int i = 0; i < 1500; ++i) {
      const double x = inputs.between(0.0, 600.0);
      const double y = inputs.between(0.0, 500.0);
      const double size = inputs.between(0.0, 40.0);
      const Place place = filter.place_of_box(x, y, x + size, y + size);
      ++counts[static_cast<int>(place)];
      double p[3][2];
      for (auto& point : p) {
        point[0] = x + size * inputs.fraction();
        point[1] = y + size * inputs.fraction();
      }
      if (place == Place::Inside) {
        ASSERT_TRUE(region->intersects_with_point(p[0]));
      } else if (place == Place::Outside) {
        ASSERT_FALSE(region->intersects_with_point(p[0]));
        ASSERT_FALSE(region->intersects_with_line(p[0], p[1]));
        ASSERT_FALSE(region->intersects_with_triangle(p[0], p[1], p[2]));
      }
      const bool touches = region->intersects_with_triangle(p[0], p[1], p[2]);
      const bool may_touch = filter.may_touch_triangle(p[0], p[1], p[2]);
      ASSERT_TRUE(may_touch || !touches);
      cleared += may_touch ? 0 : 1;
    }
    EXPECT_EQ(filter.place_of_box(kNan, 0, 1, 1), Place::Unknown);
    EXPECT_EQ(filter.place_of_box(300, 250, 200, 300), Place::Unknown);
    EXPECT_EQ(filter.place_of_box(-1e300, -1e300, 1e300, 1e300), Place::Unknown);
  }
  EXPECT_GT(counts[0], 1000);
  EXPECT_GT(counts[1], 500);
  EXPECT_GT(counts[2], 1000);
  EXPECT_GT(cleared, 500);
}

/// Answers with the opposite of a box.
class InvertedBox : public PickBox
{
public:
  bool intersects_with_point(const double* p) const override { return !PickBox::intersects_with_point(p); }
  bool intersects_with_line(const double*, const double*) const override { return true; }
  bool intersects_with_triangle(const double*, const double*, const double*) const override { return true; }
};

TEST(RegionFilterTest, OfADerivedRegionOnlyItsOwnAnswersCount)
{
  double corners[4] = {100, 100, 200, 200};
  InvertedBox region;
  region.set_box(corners);
  const RegionFilter filter(region);
  EXPECT_FALSE(filter.is_known());
  const double outside[2] = {0, 0};
  const double inside[2] = {150, 150};
  EXPECT_EQ(filter.classify(outside), RegionFilter::Inside);
  EXPECT_EQ(filter.classify(inside), 0);
  EXPECT_TRUE(filter.contains(outside));
  EXPECT_TRUE(filter.touches_line(inside, inside));
  EXPECT_TRUE(filter.touches_triangle(inside, inside, inside));
  EXPECT_TRUE(filter.touches_triangle_between(inside, inside, inside));
  EXPECT_EQ(filter.place_of_box(300, 300, 400, 400), Place::Unknown);
  EXPECT_EQ(filter.place_of_box(120, 120, 130, 130), Place::Unknown);
}

} // namespace
