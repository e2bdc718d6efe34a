// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "PickBounds.h"

#include "LassoInputs.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <stdexcept>
#include <utility>
#include <vector>

namespace {

using morrow_test::hand_drawn;
using morrow_test::LassoQueries;
using morrow_test::PickInputs;
using morrow_test::PrintCapture;
using morrow_test::Ring;
using morrow_test::Triangulation;

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

struct Point
{
  double xyz[3];
  Point(double x, double y) : xyz{x, y, kNan} {} // z is never read
  operator const double*() const { return xyz; }
};

PickBox box_of(double xmin, double ymin, double xmax, double ymax)
{
  double corners[4] = {xmin, ymin, xmax, ymax};
  PickBox box;
  box.set_box(corners);
  return box;
}

PickPolygon polygon_of(const Ring& ring)
{
  PickPolygon polygon;
  polygon.set_polygon(static_cast<int>(ring.size()), reinterpret_cast<const double(*)[2]>(ring.data()));
  return polygon;
}

PickCircle circle_of(double x, double y, double radius)
{
  const double center[2] = {x, y};
  PickCircle circle;
  circle.set_circle(center, radius);
  return circle;
}

BrantBox flat_box(double xmin, double ymin, double xmax, double ymax)
{
  return {BrantVector(xmin, ymin, 0.0), BrantVector(xmax, ymax, 0.0)};
}

/// The four corners of the unit square times 10, counter-clockwise.
const Ring kSquare = {{0, 0}, {10, 0}, {10, 10}, {0, 10}};

// ---------------------------------------------------------------------------------------------------------
// Box

TEST(PickBoxTest, HoldsItsPointsAndBorder)
{
  const PickBox box = box_of(1, 2, 5, 4);
  EXPECT_TRUE(box.intersects_with_point(Point(3, 3)));
  for (const Point& corner : {Point(1, 2), Point(5, 2), Point(5, 4), Point(1, 4), Point(3, 2)}) {
    EXPECT_TRUE(box.intersects_with_point(corner));
  }
  EXPECT_FALSE(box.intersects_with_point(Point(std::nextafter(1.0, 0.0), 3)));
  EXPECT_FALSE(box.intersects_with_point(Point(3, std::nextafter(4.0, 5.0))));
  EXPECT_EQ(box.box.minimum(), BrantVector(1, 2, 0));
  EXPECT_EQ(box.box.maximum(), BrantVector(5, 4, 0));
  EXPECT_TRUE(PickBox().intersects_with_point(Point(0, 0)));
  EXPECT_TRUE(PickBox().intersects_with_bbox(flat_box(-1, -1, 1, 1)));
}

TEST(PickBoxTest, SegmentsAreFoundByTheirEndsOrByCrossingASide)
{
  const PickBox box = box_of(0, 0, 10, 10);
  EXPECT_TRUE(box.intersects_with_line(Point(5, 5), Point(50, 50)));
  EXPECT_TRUE(box.intersects_with_line(Point(50, 50), Point(5, 5)));
  EXPECT_TRUE(box.intersects_with_line(Point(-5, 5), Point(15, 6))); // right through
  EXPECT_TRUE(box.intersects_with_line(Point(-5, 5), Point(5, 15))); // touches the corner (0, 10)
  EXPECT_FALSE(box.intersects_with_line(Point(-5, 5.1), Point(5, 15.1)));
  EXPECT_TRUE(box.intersects_with_line(Point(2, 10), Point(8, 10)));    // along a side: by its ends
  EXPECT_FALSE(box.intersects_with_line(Point(12, 10), Point(18, 10))); // on its line, beside it
  EXPECT_TRUE(box.intersects_with_line(Point(-5, 10), Point(15, 10)));  // crosses the two other sides
  EXPECT_FALSE(box.intersects_with_line(Point(-5, 11), Point(15, 11)));
}

TEST(PickBoxTest, TrianglesAreFoundByACornerAnEdgeOrTheBoxesOwnCorner)
{
  const PickBox box = box_of(0, 0, 10, 10);
  EXPECT_TRUE(box.intersects_with_triangle(Point(5, 5), Point(50, 5), Point(5, 50)));
  EXPECT_TRUE(box.intersects_with_triangle(Point(50, 5), Point(5, 50), Point(5, 5)));
  EXPECT_TRUE(box.intersects_with_triangle(Point(-5, 5), Point(15, 5), Point(5, 90)));
  EXPECT_TRUE(box.intersects_with_triangle(Point(-50, -50), Point(90, -50), Point(-50, 90))); // around it
  EXPECT_FALSE(box.intersects_with_triangle(Point(20, 20), Point(90, 20), Point(20, 90)));
  const PickBox dot = box_of(0, 0, 0, 0); // no side of it can be crossed
  EXPECT_TRUE(dot.intersects_with_triangle(Point(-3, -1), Point(0, 3), Point(3, -1)));
  // Its corner on the edge of a triangle without any other contact: clockwise only.
  EXPECT_TRUE(dot.intersects_with_triangle(Point(-3, 0), Point(0, 3), Point(3, 0)));
  EXPECT_FALSE(dot.intersects_with_triangle(Point(3, 0), Point(0, 3), Point(-3, 0)));
}

TEST(PickBoxTest, BoxesTouchWhenTheyOverlap)
{
  const PickBox box = box_of(0, 0, 10, 10);
  EXPECT_TRUE(box.intersects_with_bbox(flat_box(10, 10, 20, 20)));
  EXPECT_FALSE(box.intersects_with_bbox(flat_box(10.1, 0, 20, 20)));
  EXPECT_FALSE(box.intersects_with_bbox(BrantBox()));
  EXPECT_FALSE(box.intersects_with_bbox(BrantBox({0, 0, 1}, {10, 10, 2}))); // above the plane
  EXPECT_TRUE(box.intersects_with_bbox(flat_box(-kInf, -kInf, kInf, kInf)));
}

TEST(PickBoxTest, BadCornersAreStoredUnchanged)
{
  PickBox box = box_of(10, 10, 0, 0);
  EXPECT_EQ(box.xmin, 10.0);
  EXPECT_EQ(box.ymax, 0.0);
  EXPECT_FALSE(box.intersects_with_point(Point(5, 5)));
  EXPECT_TRUE(box.intersects_with_line(Point(-5, 5), Point(15, 6))); // its sides are there
  EXPECT_TRUE(box.intersects_with_bbox(flat_box(2, 2, 3, 3)));
  box.set_box(nullptr);
  EXPECT_EQ(box.xmin, 10.0);
  const PickBox nan = box_of(kNan, 0, 10, 10);
  EXPECT_TRUE(std::isnan(nan.xmin));
  EXPECT_FALSE(nan.intersects_with_point(Point(5, 5)));
  EXPECT_FALSE(nan.intersects_with_bbox(flat_box(2, 2, 3, 3)));
  EXPECT_TRUE(nan.intersects_with_bbox(flat_box(2, 2, 30, 30))); // at the corner that is one
}

/// Answers for points what it is told.
class EagerBox : public PickBox
{
public:
  bool intersects_with_point(const double*) const override { return true; }
};

TEST(PickBoundsTest, SegmentsAndTrianglesAskThroughTheVirtualFunctions)
{
  const EagerBox box;
  EXPECT_TRUE(box.intersects_with_line(Point(50, 50), Point(60, 60)));
  EXPECT_TRUE(box.intersects_with_triangle(Point(50, 50), Point(60, 60), Point(50, 60)));
  class Circle : public PickCircle
  {
  public:
    bool intersects_with_line(const double*, const double*) const override { return true; }
  };
  EXPECT_TRUE(Circle().intersects_with_triangle(Point(50, 50), Point(60, 60), Point(50, 60)));
  class Polygon : public PickPolygon
  {
  public:
    bool intersects_with_point(const double*) const override { return true; }
  };
  EXPECT_TRUE(Polygon().intersects_with_line(Point(50, 50), Point(60, 60)));
}

// ---------------------------------------------------------------------------------------------------------
// Polygon

TEST(PickPolygonTest, HoldsWhatIsInsideAndTouchesWhatCrossesIt)
{
  const PickPolygon polygon = polygon_of({{0, 0}, {10, 0}, {10, 10}, {5, 5}, {0, 10}}); // notched from above
  EXPECT_TRUE(polygon.intersects_with_point(Point(2, 1)));
  EXPECT_FALSE(polygon.intersects_with_point(Point(5, 8)));
  EXPECT_FALSE(polygon.intersects_with_point(Point(11, 5)));
  EXPECT_TRUE(polygon.intersects_with_line(Point(5, 9), Point(2, 1)));
  EXPECT_TRUE(polygon.intersects_with_line(Point(5, 9), Point(5, -9)));
  EXPECT_FALSE(polygon.intersects_with_line(Point(5, 9), Point(5, 6)));
  EXPECT_FALSE(polygon.intersects_with_triangle(Point(5, 9), Point(5, 6), Point(6, 8)));
  EXPECT_TRUE(polygon.intersects_with_triangle(Point(-50, -50), Point(90, -50), Point(-50, 90)));
  EXPECT_TRUE(polygon.intersects_with_triangle(Point(5, 6), Point(7, 8), Point(5, 4)));
  EXPECT_TRUE(polygon.intersects_with_bbox(flat_box(4.9, 8, 5.1, 9))); // in the notch, all the same
  EXPECT_FALSE(polygon.intersects_with_bbox(flat_box(11, 0, 12, 10)));
}

TEST(PickPolygonTest, KeepsTheTriangulation)
{
  const PickPolygon square = polygon_of(kSquare);
  EXPECT_EQ(square.points, (std::vector<double>{0, 0, 0, 10, 0, 0, 10, 10, 0, 0, 10, 0}));
  EXPECT_EQ(square.triangles.size(), 6u);
  EXPECT_EQ(square.edges.size(), 8u);
  EXPECT_EQ(square.bbox.minimum(), BrantVector(0, 0, 0));
  EXPECT_EQ(square.bbox.maximum(), BrantVector(10, 10, 0));
  const PickPolygon bow_tie = polygon_of({{0, 0}, {10, 10}, {10, 0}, {0, 10}});
  EXPECT_EQ(bow_tie.points.size(), 15u);
  EXPECT_TRUE(bow_tie.intersects_with_point(Point(1, 5)));
  EXPECT_FALSE(bow_tie.intersects_with_point(Point(5, 1)));
}

// The triangulation runs the way the ring does, and the triangle's rule decides.
TEST(PickPolygonTest, TheBorderBelongsToAClockwiseLassoOnly)
{
  Ring clockwise(kSquare.rbegin(), kSquare.rend());
  const Point on_border(10, 5);
  const PickPolygon polygon = polygon_of(kSquare);
  const PickPolygon reversed = polygon_of(clockwise);
  EXPECT_FALSE(polygon.intersects_with_point(on_border));
  EXPECT_TRUE(reversed.intersects_with_point(on_border));
}

TEST(PickPolygonTest, FewerThanThreeVerticesTouchBoxesOnly)
{
  const double pts[2][2] = {{2, 3}, {6, 7}};
  for (int count = 1; count <= 2; ++count) {
    PickPolygon polygon;
    polygon.set_polygon(count, pts);
    EXPECT_TRUE(polygon.triangles.empty());
    EXPECT_FALSE(polygon.intersects_with_point(Point(2, 3)));
    EXPECT_FALSE(polygon.intersects_with_line(Point(0, 3), Point(9, 3)));
    EXPECT_FALSE(polygon.intersects_with_triangle(Point(-50, -50), Point(90, -50), Point(-50, 90)));
    EXPECT_TRUE(polygon.intersects_with_bbox(flat_box(0, 0, 2, 3)));
    EXPECT_FALSE(polygon.intersects_with_bbox(flat_box(0, 0, 1, 1)));
    EXPECT_EQ(polygon.intersects_with_bbox(flat_box(6, 7, 9, 9)), count == 2);
  }
  const PickPolygon collinear = polygon_of({{0, 0}, {5, 5}, {10, 10}});
  EXPECT_FALSE(collinear.intersects_with_point(Point(5, 5)));
  EXPECT_FALSE(collinear.intersects_with_line(Point(0, 10), Point(10, 0)));
  // A triangle around its first vertex, by the rule of all polygons.
  EXPECT_TRUE(collinear.intersects_with_triangle(Point(-5, -5), Point(5, -5), Point(0, 5)));
}

TEST(PickPolygonTest, NoPointsAtAll)
{
  PickPolygon polygon;
  const double pts[3][2] = {{2, 3}, {6, 3}, {6, 7}};
  EXPECT_FALSE(polygon.intersects_with_bbox(flat_box(-kInf, -kInf, kInf, kInf)));
  EXPECT_FALSE(polygon.intersects_with_triangle(Point(-50, -50), Point(90, -50), Point(-50, 90)));
  polygon.set_polygon(0, pts);
  polygon.set_polygon(-7, pts);
  polygon.set_polygon(std::numeric_limits<int>::min(), pts);
  polygon.set_polygon(3, nullptr);
  EXPECT_TRUE(polygon.bbox.is_empty());
  EXPECT_FALSE(polygon.intersects_with_point(Point(5, 3.5)));
  polygon.set_polygon(3, pts);
  EXPECT_TRUE(polygon.intersects_with_point(Point(5, 3.5)));
  polygon.set_polygon(0, pts); // the box stays, the polygon goes
  EXPECT_TRUE(polygon.points.empty() && polygon.triangles.empty() && polygon.edges.empty());
  EXPECT_FALSE(polygon.intersects_with_point(Point(5, 3.5)));
  EXPECT_TRUE(polygon.intersects_with_bbox(flat_box(5, 5, 9, 9)));
}

TEST(PickPolygonTest, CoordinatesThatAreNotFiniteAreAMessage)
{
  for (const double bad : {kNan, kInf, -kInf}) {
    const PrintCapture printed;
    const PickPolygon polygon = polygon_of({{0, 0}, {10, 0}, {bad, 10}, {0, 10}});
    EXPECT_NE(printed.errors().find("Tesselation Error: "), std::string::npos);
    EXPECT_TRUE(polygon.triangles.empty());
    EXPECT_FALSE(polygon.intersects_with_point(Point(1, 1)));
    EXPECT_FALSE(polygon.intersects_with_line(Point(1, 1), Point(2, 2)));
  }
}

// What the print function throws leaves the new polygon behind, not a part of the old one.
TEST(PickPolygonTest, AMessageThatThrowsComesOutWhenThePolygonIsSet)
{
  PickPolygon polygon = polygon_of(kSquare);
  EXPECT_TRUE(polygon.intersects_with_point(Point(3, 1)));
  EXPECT_TRUE(polygon.intersects_with_line(Point(3, -1), Point(3, 11)));
  MRUtil::PrintFunction before = nullptr;
  MRUtil::get_print_function(before);
  MRUtil::set_print_function([](const char*, int, bool) { throw std::runtime_error("host"); });
  const double pts[3][2] = {{20, 20}, {30, 20}, {kNan, 30}};
  EXPECT_THROW(polygon.set_polygon(3, pts), std::runtime_error);
  MRUtil::set_print_function(before);
  EXPECT_EQ(polygon.points.size(), 9u);
  EXPECT_FALSE(polygon.intersects_with_point(Point(3, 1)));
  EXPECT_FALSE(polygon.intersects_with_line(Point(3, -1), Point(3, 11)));
  EXPECT_FALSE(polygon.intersects_with_bbox(flat_box(1, 1, 2, 2)));
  EXPECT_TRUE(polygon.intersects_with_bbox(flat_box(25, 15, 26, 25)));
}

TEST(PickPolygonTest, ChangedByHandItAsksAnewAfterCreateBoundingBox)
{
  PickPolygon polygon = polygon_of(kSquare);
  EXPECT_TRUE(polygon.intersects_with_point(Point(3, 1)));
  for (double& value : polygon.points) {
    value *= 10.0;
  }
  polygon.createBoundingBox();
  EXPECT_EQ(polygon.bbox.maximum(), BrantVector(100, 100, 0));
  EXPECT_TRUE(polygon.intersects_with_point(Point(83, 51)));
  EXPECT_TRUE(polygon.intersects_with_line(Point(-5, 51), Point(105, 52)));
  polygon.points.resize(3);
  polygon.triangles.clear();
  polygon.edges.clear();
  polygon.createBoundingBox();
  EXPECT_EQ(polygon.bbox.maximum(), BrantVector(0, 0, 0)); // a single vertex
}

TEST(PickPolygonTest, BrokenArraysAreNoDanger)
{
  PickPolygon polygon = polygon_of(kSquare);
  polygon.triangles.insert(polygon.triangles.begin(), {0, 1, 4, -1, 0, 1});
  polygon.edges.insert(polygon.edges.begin(), {99, 0});
  polygon.createBoundingBox();
  EXPECT_TRUE(polygon.intersects_with_point(Point(3, 1)));
  EXPECT_FALSE(polygon.intersects_with_point(Point(13, 1)));
  EXPECT_TRUE(polygon.intersects_with_line(Point(3, -1), Point(3, 11)));

  // Fewer than six values are the first vertex, of fewer than two there is none.
  for (const std::size_t size : {5u, 4u, 3u, 2u}) {
    polygon.points = {7, 8, 0, 20, 30};
    polygon.points.resize(size);
    polygon.bbox.reset();
    polygon.createBoundingBox();
    EXPECT_EQ(polygon.bbox.minimum(), BrantVector(7, 8, 0)) << size;
    EXPECT_EQ(polygon.bbox.maximum(), BrantVector(7, 8, 0)) << size;
    EXPECT_FALSE(polygon.intersects_with_point(Point(3, 1)));
    EXPECT_FALSE(polygon.intersects_with_triangle(Point(-50, -50), Point(90, -50), Point(-50, 90)));
  }
  polygon.points.resize(1);
  polygon.createBoundingBox();
  EXPECT_EQ(polygon.bbox.maximum(), BrantVector(7, 8, 0)); // as it was
}

TEST(PickPolygonTest, IsAPlainValue)
{
  PickPolygon first = polygon_of(kSquare);
  EXPECT_TRUE(first.intersects_with_point(Point(3, 1)));
  PickPolygon second = first;
  first.set_polygon(0, nullptr);
  EXPECT_TRUE(second.intersects_with_point(Point(3, 1)));
  EXPECT_FALSE(first.intersects_with_point(Point(3, 1)));
  first = second;
  EXPECT_TRUE(first.intersects_with_point(Point(3, 1)));
  PickPolygon third = std::move(second);
  EXPECT_TRUE(third.intersects_with_line(Point(-3, 1), Point(13, 2)));
  first = PickPolygon();
  EXPECT_FALSE(first.intersects_with_point(Point(3, 1)));
  first = std::move(third);
  EXPECT_TRUE(first.intersects_with_triangle(Point(-50, -50), Point(90, -50), Point(-50, 90)));
}

TEST(PickPolygonTest, EqualPointsAndManyCrossingsAreTaken)
{
  const PickPolygon one_place = polygon_of(Ring(100, {5.0, 5.0}));
  EXPECT_FALSE(one_place.intersects_with_point(Point(5, 5)));
  EXPECT_FALSE(one_place.intersects_with_line(Point(0, 5), Point(9, 5)));
  PickInputs inputs(1);
  const PickPolygon scribble = polygon_of(random_ring(150, inputs));
  EXPECT_GT(scribble.points.size(), 3u * 1000u);
  int inside = 0;
  for (int i = 0; i < 1000; ++i) {
    inside += scribble.intersects_with_point(Point(inputs.between(0, 500), inputs.between(0, 500))) ? 1 : 0;
  }
  EXPECT_GT(inside, 100);
  EXPECT_LT(inside, 900);
}

// ---------------------------------------------------------------------------------------------------------
// Circle

TEST(PickCircleTest, PointsAreComparedWithTheSquaredRadiusAndSegmentsWithTheRadius)
{
  const PickCircle circle = circle_of(0, 0, 2);
  EXPECT_TRUE(circle.intersects_with_point(Point(1.5, 0)));
  EXPECT_TRUE(circle.intersects_with_point(Point(0, -2)));
  EXPECT_FALSE(circle.intersects_with_point(Point(2.1, 0)));
  EXPECT_FALSE(circle.intersects_with_line(Point(-9, 1.5), Point(9, 1.5))); // 2.25 > 2
  EXPECT_TRUE(circle.intersects_with_line(Point(-9, 1.4), Point(9, 1.4)));  // 1.96 <= 2
  // Its ends are not asked as points.
  EXPECT_FALSE(circle.intersects_with_line(Point(1.5, 0), Point(9, 0)));
  EXPECT_FALSE(circle.intersects_with_line(Point(9, 0), Point(1.5, 0)));
  // Below 1 it is the other way round.
  const PickCircle small = circle_of(0, 0, 0.25);
  EXPECT_TRUE(small.intersects_with_line(Point(-9, 0.5), Point(9, 0.5)));
  EXPECT_FALSE(small.intersects_with_point(Point(0, 0.5)));
}

TEST(PickCircleTest, ASegmentThatIsAPointIsMeasuredFromItsFirstEnd)
{
  const PickCircle circle = circle_of(0, 0, 4);
  EXPECT_TRUE(circle.intersects_with_line(Point(2, 0), Point(2, 0)));
  EXPECT_FALSE(circle.intersects_with_line(Point(2.1, 0), Point(2.1, 0)));
  // Of length 1 and 1.1e5 away from the centre; only its first end counts. The radius is the square of that.
  const PickCircle wide = circle_of(0, 0, 1.1e5 * 1.1e5);
  EXPECT_FALSE(wide.intersects_with_line(Point(1.1e5 + 1.0, 0), Point(1.1e5, 0)));
  EXPECT_TRUE(wide.intersects_with_line(Point(1.1e5, 0), Point(1.1e5 + 1.0, 0)));
}

TEST(PickCircleTest, TrianglesAndBoxes)
{
  const PickCircle circle = circle_of(10, 10, 2);
  EXPECT_TRUE(circle.intersects_with_triangle(Point(11.5, 10), Point(50, 10), Point(50, 11)));  // corner a
  EXPECT_FALSE(circle.intersects_with_triangle(Point(50, 10), Point(11.5, 10), Point(50, 11))); // b is none
  EXPECT_TRUE(circle.intersects_with_triangle(Point(0, 11), Point(20, 11), Point(10, 50)));
  EXPECT_TRUE(circle.intersects_with_triangle(Point(-50, -50), Point(90, -50), Point(0, 90))); // around it
  EXPECT_FALSE(circle.intersects_with_triangle(Point(50, 50), Point(60, 50), Point(50, 60)));
  EXPECT_TRUE(circle.intersects_with_bbox(flat_box(12, 0, 20, 20)));
  EXPECT_FALSE(circle.intersects_with_bbox(flat_box(12.1, 0, 20, 20)));
  EXPECT_FALSE(circle.intersects_with_bbox(flat_box(11.5, 11.5, 20, 20))); // 2.12 from its corner
  EXPECT_FALSE(circle.intersects_with_bbox(BrantBox()));
  EXPECT_TRUE(circle.intersects_with_bbox(flat_box(-kInf, -kInf, kInf, kInf)));
}

TEST(PickCircleTest, BadRadii)
{
  const PickCircle none;
  EXPECT_EQ(none.radius, 0.0);
  EXPECT_TRUE(none.intersects_with_point(Point(0, 0)));
  EXPECT_TRUE(none.intersects_with_line(Point(-1, 0), Point(1, 0)));
  EXPECT_FALSE(none.intersects_with_point(Point(1e-9, 0)));
  EXPECT_TRUE(none.intersects_with_bbox(flat_box(0, 0, 1, 1)));
  PickCircle negative = circle_of(0, 0, -2);
  EXPECT_TRUE(negative.intersects_with_point(Point(1, 1))); // squared
  EXPECT_FALSE(negative.intersects_with_line(Point(-1, 0), Point(1, 0)));
  EXPECT_FALSE(negative.intersects_with_bbox(flat_box(-1, -1, 1, 1)));
  negative.set_circle(nullptr, 7.0);
  EXPECT_EQ(negative.radius, -2.0);
  const PickCircle nan = circle_of(0, 0, kNan);
  EXPECT_FALSE(nan.intersects_with_point(Point(0, 0)));
  EXPECT_FALSE(nan.intersects_with_line(Point(-1, 0), Point(1, 0)));
  EXPECT_FALSE(nan.intersects_with_bbox(flat_box(-1, -1, 1, 1)));
  EXPECT_TRUE(nan.intersects_with_triangle(Point(-9, -9), Point(9, -9), Point(0, 9))); // around its centre
  EXPECT_FALSE(circle_of(kNan, 0, 5).intersects_with_point(Point(0, 0)));
  EXPECT_TRUE(circle_of(0, 0, kInf).intersects_with_line(Point(1e30, 0), Point(1e30, 1)));
}

// ---------------------------------------------------------------------------------------------------------
// What is not a number

// The triangle's rule takes a side that is no number for clockwise: such a triangle has nothing beyond it.
TEST(PickBoundsTest, NotANumberTouchesNothingButByTheRuleOfTheTriangle)
{
  const Point nowhere(kNan, kNan);
  const Point away(50, 50);
  const PickBox box = box_of(0, 0, 10, 10);
  const PickCircle circle = circle_of(5, 5, 4);
  const PickPolygon lasso = polygon_of(kSquare);
  const PickPolygon clockwise = polygon_of(Ring(kSquare.rbegin(), kSquare.rend()));
  for (const PickBounds* region :
       {static_cast<const PickBounds*>(&box), static_cast<const PickBounds*>(&circle),
        static_cast<const PickBounds*>(&lasso)}) {
    EXPECT_FALSE(region->intersects_with_point(nowhere));
    EXPECT_FALSE(region->intersects_with_point(Point(5, kNan)));
    EXPECT_FALSE(region->intersects_with_line(nowhere, away));
    EXPECT_FALSE(region->intersects_with_line(away, Point(kNan, 5)));
    EXPECT_TRUE(region->intersects_with_triangle(nowhere, nowhere, nowhere));
    EXPECT_TRUE(region->intersects_with_triangle(nowhere, Point(50, 50), Point(50, 0))); // it is on the right
    EXPECT_FALSE(region->intersects_with_triangle(nowhere, Point(50, 0), Point(50, 50))); // on the left
  }
  EXPECT_TRUE(clockwise.intersects_with_point(nowhere));
  EXPECT_TRUE(clockwise.intersects_with_line(away, nowhere));
}

// ---------------------------------------------------------------------------------------------------------
// All of them beside the literal versions

void expect_literal_answers(const PickBounds& region, const PickBounds& literal, LassoQueries& queries,
                            int questions)
{
  for (int i = 0; i < questions; ++i) {
    double p[3][2];
    queries.segment(p[0], p[1]);
    queries.segment(p[1], p[2]);
    ASSERT_EQ(region.intersects_with_point(p[0]), literal.intersects_with_point(p[0])) << i;
    ASSERT_EQ(region.intersects_with_line(p[0], p[1]), literal.intersects_with_line(p[0], p[1])) << i;
    ASSERT_EQ(region.intersects_with_triangle(p[0], p[1], p[2]),
              literal.intersects_with_triangle(p[0], p[1], p[2]))
        << i;
    const BrantBox box({p[0][0], p[0][1], 0.0}, {p[1][0], p[1][1], 0.0});
    ASSERT_EQ(region.intersects_with_bbox(box), literal.intersects_with_bbox(box)) << i;
  }
}

TEST(PickBoundsTest, BoxesAndCirclesAnswerAsTheLiteralOnes)
{
  const Triangulation around(hand_drawn(32));
  PickInputs inputs(31);
  for (int i = 0; i < 60; ++i) {
    LassoQueries queries(around, static_cast<std::uint64_t>(i));
    const auto kind = static_cast<PickInputs::Kind>(i % PickInputs::NumberOfKinds);
    double corners[4] = {25.0 * inputs.below(12), 25.0 * inputs.below(12), 25.0 * inputs.below(20),
                         25.0 * inputs.below(20)};
    if (i % 2 == 1) {
      inputs.fill(kind, corners, 4);
    }
    const PickBox box = box_of(corners[0], corners[1], corners[2], corners[3]);
    expect_literal_answers(box, morrow_test::LiteralBox(corners), queries, 2000);
    const double radius = i % 4 == 3 ? inputs.number(kind) : inputs.between(0.0, 300.0);
    const PickCircle circle = circle_of(corners[0], corners[1], radius);
    const morrow_test::LiteralCircle literal(corners[0], corners[1], radius);
    expect_literal_answers(circle, literal, queries, 2000);
  }
}

TEST(PickBoundsTest, PolygonsAnswerAsTheLiteralOnes)
{
  PickInputs inputs(33);
  for (int i = 0; i < 30; ++i) {
    const Ring rings[] = {hand_drawn(3 + inputs.below(80), i % 2 == 0),
                          random_ring(3 + inputs.below(20), inputs), lattice_ring(inputs.below(20), inputs)};
    for (const Ring& ring : rings) {
      const Triangulation triangulation(ring);
      LassoQueries queries(triangulation, static_cast<std::uint64_t>(i));
      expect_literal_answers(polygon_of(ring), triangulation.literal(), queries, 500);
    }
  }
}

} // namespace
