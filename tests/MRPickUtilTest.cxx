// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "MRPickUtil.h"

#include "CountedAllocations.h"
#include "LiteralPickGeometry.h"
#include "PickInputs.h"

#include <gtest/gtest.h>

#include <vtkMatrix4x4.h>
#include <vtkNew.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>

#include <cfloat>
#include <cmath>
#include <cstring>
#include <limits>
#include <string>

namespace {

namespace literal = morrow_test::literal;
using morrow_test::PickInputs;

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
/// Stands in each result before a call, to see what the call leaves unwritten.
constexpr double kUnwritten = -12345.678;

/// To the bit, but for the payload of a NaN.
bool same(double a, double b)
{
  return std::memcmp(&a, &b, sizeof(double)) == 0 || (std::isnan(a) && std::isnan(b));
}

/// All that one of the functions may write, and what it returns.
struct Results
{
  double answer = kUnwritten;
  double t = kUnwritten;
  double x[3] = {kUnwritten, kUnwritten, kUnwritten};
  double pcoords[3] = {kUnwritten, kUnwritten, kUnwritten};
  double dist2 = kUnwritten;

  bool operator==(const Results& other) const
  {
    bool equal = same(answer, other.answer) && same(t, other.t) && same(dist2, other.dist2);
    for (int i = 0; i < 3; ++i) {
      equal = equal && same(x[i], other.x[i]) && same(pcoords[i], other.pcoords[i]);
    }
    return equal;
  }
};

std::ostream& operator<<(std::ostream& out, const Results& r)
{
  out.precision(17);
  return out << r.answer << " t " << r.t << " x " << r.x[0] << " " << r.x[1] << " " << r.x[2] << " pcoords "
             << r.pcoords[0] << " " << r.pcoords[1] << " " << r.pcoords[2] << " dist2 " << r.dist2;
}

/// Calls both with points of every kind, `runs` of each, and wants the same of them.
template<std::size_t Points, typename Ours, typename Literal>
void compare(int runs, Ours&& ours, Literal&& theirs)
{
  for (int kind = 0; kind < PickInputs::NumberOfKinds; ++kind) {
    PickInputs inputs(static_cast<std::uint64_t>(kind) + 1);
    for (int run = 0; run < runs; ++run) {
      double points[Points][3];
      inputs.fill(static_cast<PickInputs::Kind>(kind), points[0], 3 * Points);
      if constexpr (Points > 2) {
        if (run % 3 == 0) { // a point on the line through two others
          const double at = 0.25 * static_cast<double>(inputs.below(7)) - 0.25;
          for (int i = 0; i < 3; ++i) {
            points[0][i] = points[1][i] + at * (points[2][i] - points[1][i]);
          }
        }
      }
      const double tolerances[] = {0.0, 1e-9, 0.5, 1.0, 10.0, -1.0, kInf, kNan};
      const double tol = tolerances[run % 8];
      const Results mine = ours(points, tol);
      const Results expected = theirs(points, tol);
      ASSERT_EQ(mine, expected) << "kind " << kind << " run " << run;
    }
  }
}

// ---------------------------------------------------------------------------------------------------------
// Products and distances

TEST(PickGeometryTest, DotAndSquaredDistance)
{
  const double a[3] = {1.0, 2.0, 3.0};
  const double b[3] = {4.0, -5.0, 6.5};
  EXPECT_EQ(MRPickUtil::Dot(a, b), 4.0 - 10.0 + 19.5);
  EXPECT_EQ(MRPickUtil::DistanceBetweenPoints(a, b), 9.0 + 49.0 + 12.25); // no root
  compare<2>(
      20000,
      [](auto& p, double) {
        Results r;
        r.answer = MRPickUtil::Dot(p[0], p[1]);
        r.dist2 = MRPickUtil::DistanceBetweenPoints(p[0], p[1]);
        return r;
      },
      [](auto& p, double) {
        Results r;
        r.answer = literal::dot(p[0], p[1]);
        r.dist2 = literal::distance2(p[0], p[1]);
        return r;
      });
}

struct PointToLine
{
  double distance2;
  double t = kUnwritten;
  double closest[3];

  PointToLine(double px, double py, double p1x, double p2x)
  {
    double x[3] = {px, py, 0.0};
    double p1[3] = {p1x, 0.0, 0.0};
    double p2[3] = {p2x, 0.0, 0.0};
    distance2 = DistanceToLine(x, p1, p2, t, closest);
  }
};

TEST(DistanceToLineTest, IsSquaredAndItsParameterIsNotClamped)
{
  const PointToLine beside(1.0, 3.0, 0.0, 4.0);
  EXPECT_EQ(beside.distance2, 9.0);
  EXPECT_EQ(beside.t, 0.25);
  EXPECT_EQ(beside.closest[0], 1.0);
  const PointToLine before(-4.0, 3.0, 0.0, 4.0);
  EXPECT_EQ(before.distance2, 25.0);
  EXPECT_EQ(before.t, -1.0);
  EXPECT_EQ(before.closest[0], 0.0);
  const PointToLine behind(8.0, 3.0, 0.0, 4.0);
  EXPECT_EQ(behind.distance2, 25.0);
  EXPECT_EQ(behind.t, 2.0);
  EXPECT_EQ(behind.closest[0], 4.0);
}

TEST(DistanceToLineTest, ASegmentThatIsAPointLeavesTheParameterUnwritten)
{
  const PointToLine point(3.0, 4.0, 0.0, 0.0);
  EXPECT_EQ(point.distance2, 25.0);
  EXPECT_EQ(point.t, kUnwritten);
  // Of length 1, seen from 1e5 and a little more: denom = 1 is below 1e-5 × num.
  const PointToLine far_away(1.1e5, 0.0, 0.0, 1.0);
  EXPECT_EQ(far_away.t, kUnwritten);
  EXPECT_EQ(far_away.closest[0], 0.0); // the first end, although the second one is nearer
  const PointToLine nearer(0.9e5, 0.0, 0.0, 1.0);
  EXPECT_EQ(nearer.t, 0.9e5);
  EXPECT_EQ(nearer.closest[0], 1.0);
}

TEST(DistanceToLineTest, IsTheLiteralOne)
{
  compare<3>(
      60000,
      [](auto& p, double) {
        Results r;
        r.answer = DistanceToLine(p[0], p[1], p[2], r.t, r.x);
        return r;
      },
      [](auto& p, double) {
        Results r;
        r.answer = literal::distance_to_line(p[0], p[1], p[2], r.t, r.x);
        return r;
      });
}

// ---------------------------------------------------------------------------------------------------------
// Segment and segment

Results lines(double (*p)[3], double tol)
{
  Results r;
  r.answer = MRPickUtil::IntersectLineWithLine(p[0], p[1], p[2], p[3], tol, r.t, r.x, r.pcoords[0], r.dist2);
  return r;
}

TEST(IntersectLineWithLineTest, ParallelSegmentsMeasureTheirStarts)
{
  // They overlap from 3 to 4, but start 3 apart.
  double p[4][3] = {{0, 0, 0}, {4, 0, 0}, {3, 0, 0}, {9, 0, 0}};
  const Results r = lines(p, 1.0);
  EXPECT_EQ(r.answer, 0.0);
  EXPECT_EQ(r.t, 0.0);
  EXPECT_EQ(r.pcoords[0], 0.0);
  EXPECT_EQ(r.dist2, 9.0);
  EXPECT_EQ(r.x[0], 3.0);
  EXPECT_EQ(lines(p, 3.0).answer, 1.0); // tol² >= dist2, equal included
  EXPECT_EQ(lines(p, -3.0).answer, 1.0);
  EXPECT_EQ(lines(p, kNan).answer, 0.0);
}

TEST(IntersectLineWithLineTest, TheClosestPointIsOnTheSecondSegmentUnlessOneOfThemIsClamped)
{
  double crossing[4][3] = {{0, 0, 0}, {4, 0, 0}, {1, -1, 2}, {1, 1, 2}};
  const Results r = lines(crossing, 2.0);
  EXPECT_EQ(r.answer, 1.0);
  EXPECT_EQ(r.t, 0.25);
  EXPECT_EQ(r.pcoords[0], 0.5);
  EXPECT_EQ(r.dist2, 4.0);
  EXPECT_EQ(r.x[2], 2.0); // on Q
  // v < 0: the start of Q against P, so the closest point is on P and u is the unclamped parameter there.
  double beyond[4][3] = {{0, 0, 0}, {4, 0, 0}, {6, 1, 0}, {7, 3, 0}};
  const Results b = lines(beyond, 3.0);
  EXPECT_EQ(b.t, 1.0); // u > 1 comes first: P's end against Q
  EXPECT_LT(b.pcoords[0], 0.0);
  EXPECT_EQ(b.x[0], 6.0);
  EXPECT_EQ(b.dist2, 5.0);
  double above[4][3] = {{0, 0, 0}, {4, 0, 0}, {1, 1, 0}, {1, 3, 0}};
  const Results a = lines(above, 1.0);
  EXPECT_EQ(a.answer, 1.0);
  EXPECT_EQ(a.pcoords[0], 0.0);
  EXPECT_EQ(a.t, 0.25);
  EXPECT_EQ(a.x[1], 0.0); // on P
  double before[4][3] = {{0, 0, 0}, {4, 0, 0}, {-1, -1, 0}, {-1, 1, 0}};
  const Results f = lines(before, 1.0);
  EXPECT_EQ(f.t, 0.0);
  EXPECT_EQ(f.pcoords[0], 0.5);
  EXPECT_EQ(f.x[0], -1.0);
  double below[4][3] = {{0, 0, 0}, {4, 0, 0}, {1, -3, 0}, {1, -1, 0}};
  EXPECT_EQ(lines(below, 1.0).pcoords[0], 1.0);
}

TEST(IntersectLineWithLineTest, NotANumberWritesNothingMore)
{
  double p[4][3] = {{0, 0, kNan}, {4, 0, 0}, {1, -1, 2}, {1, 1, 2}};
  const Results r = lines(p, 2.0);
  EXPECT_EQ(r.answer, 0.0);
  EXPECT_TRUE(std::isnan(r.t) && std::isnan(r.pcoords[0]));
  EXPECT_EQ(r.dist2, kUnwritten);
  EXPECT_EQ(r.x[0], kUnwritten);
}

TEST(IntersectLineWithLineTest, IsTheLiteralOne)
{
  compare<4>(60000, lines, [](auto& p, double tol) {
    Results r;
    r.answer = literal::line_with_line(p[0], p[1], p[2], p[3], tol, r.t, r.x, r.pcoords[0], r.dist2);
    return r;
  });
}

// ---------------------------------------------------------------------------------------------------------
// Triangle and quadrilateral

Results triangle(double (*p)[3], double tol)
{
  Results r;
  r.answer =
      MRPickUtil::IntersectTriangleWithLine(p[2], p[3], p[4], p[0], p[1], tol, r.t, r.x, r.pcoords, r.dist2);
  return r;
}

/// A segment along z through (x, y) from z0 to z1, and the triangle (0, 0), (4, 0), (0, 4) in the plane z =
/// 0.
Results through(double x, double y, double z0, double z1, double tol)
{
  double p[5][3] = {{x, y, z0}, {x, y, z1}, {0, 0, 0}, {4, 0, 0}, {0, 4, 0}};
  return triangle(p, tol);
}

TEST(IntersectTriangleWithLineTest, HitsInsideWithEndsIncluded)
{
  const Results middle = through(1.0, 1.0, 1.0, -3.0, 0.0);
  EXPECT_EQ(middle.answer, 1.0);
  EXPECT_EQ(middle.t, 0.25);
  EXPECT_EQ(middle.x[2], 0.0);
  EXPECT_EQ(middle.pcoords[0], 0.5); // the weight of the first corner
  EXPECT_EQ(middle.pcoords[1], 0.25);
  EXPECT_EQ(middle.pcoords[2], 0.0); // cleared, not the third weight
  EXPECT_EQ(middle.dist2, 0.0);
  EXPECT_EQ(through(1.0, 1.0, 0.0, -3.0, 0.0).answer, 1.0);
  EXPECT_EQ(through(1.0, 1.0, 3.0, 0.0, 0.0).answer, 1.0);
  const Results below = through(1.0, 1.0, -1.0, -3.0, 0.0);
  EXPECT_EQ(below.answer, 0.0);
  EXPECT_EQ(below.t, -0.5); // written all the same
  EXPECT_EQ(below.x[2], 0.0);
  EXPECT_EQ(below.pcoords[0], 0.0);
  EXPECT_EQ(below.dist2, kUnwritten);
}

TEST(IntersectTriangleWithLineTest, NearMissesAreMeasuredFromTheNearestPartOfTheBorder)
{
  EXPECT_EQ(through(2.0, -1.0, 1.0, -1.0, 1.0).answer, 1.0); // beside pt1-pt2
  EXPECT_EQ(through(2.0, -1.0, 1.0, -1.0, 0.9).answer, 0.0);
  EXPECT_EQ(through(2.0, -1.0, 1.0, -1.0, 1.0).dist2, 1.0);
  EXPECT_EQ(through(-2.0, 1.0, 1.0, -1.0, 2.0).dist2, 4.0);   // beside pt1-pt3
  EXPECT_EQ(through(-3.0, -4.0, 1.0, -1.0, 5.0).dist2, 25.0); // beyond pt1
  EXPECT_EQ(through(7.0, 0.0, 1.0, -1.0, 3.0).dist2, 9.0);    // beyond pt2
  EXPECT_EQ(through(-1.0, 9.0, 1.0, -1.0, 6.0).dist2, 26.0);  // beyond pt3
  EXPECT_EQ(through(4.0, 4.0, 1.0, -1.0, 3.0).dist2, 8.0);    // beside pt2-pt3
  const Results far_away = through(2.0, -1.0, 1.0, -1.0, 0.5);
  EXPECT_EQ(far_away.pcoords[0], 0.75); // as computed
  EXPECT_EQ(far_away.pcoords[2], -0.25);
  EXPECT_EQ(far_away.dist2, kUnwritten);
}

TEST(IntersectTriangleWithLineTest, ACrossingInsideIsAHitWhateverItsDistance)
{
  const Results r = through(1.0, 1.0, 1.0, -3.0, kNan); // nothing is within that tolerance
  EXPECT_EQ(r.answer, 1.0);
  EXPECT_EQ(r.dist2, kUnwritten);
  EXPECT_EQ(r.pcoords[2], 0.25);
}

TEST(IntersectTriangleWithLineTest, ASegmentInThePlaneOrATriangleWithoutAreaIsNoHit)
{
  double in_plane[5][3] = {{-1, 1, 0}, {5, 1, 0}, {0, 0, 0}, {4, 0, 0}, {0, 4, 0}};
  const Results r = triangle(in_plane, 1.0);
  EXPECT_EQ(r.answer, 0.0);
  EXPECT_EQ(r.t, DBL_MAX);
  EXPECT_EQ(r.x[0], kUnwritten);
  EXPECT_EQ(r.pcoords[0], 0.0);
  double no_area[5][3] = {{1, 0, 1}, {1, 0, -1}, {0, 0, 0}, {2, 0, 0}, {4, 0, 0}};
  EXPECT_EQ(triangle(no_area, 1.0).answer, 0.0);
  // Its normal underflows to 0 in the product, but not the determinant's columns.
  double tiny[5][3] = {{0, 0, 1}, {0, 0, -1}, {0, 0, 0}, {1e-200, 0, 0}, {0, 1e-200, 0}};
  EXPECT_EQ(triangle(tiny, 1.0).answer, 0.0);
}

TEST(IntersectTriangleWithLineTest, IsTheLiteralOne)
{
  compare<5>(100000, triangle, [](auto& p, double tol) {
    Results r;
    r.answer = literal::triangle_with_line(p[2], p[3], p[4], p[0], p[1], tol, r.t, r.x, r.pcoords, r.dist2);
    return r;
  });
}

Results quad(double (*p)[3], double tol)
{
  Results r;
  r.answer = MRPickUtil::IntersectQuadWithLine(p[2], p[3], p[4], p[5], p[0], p[1], tol, r.t, r.x, r.pcoords,
                                               r.dist2);
  return r;
}

TEST(IntersectQuadWithLineTest, SplitAlongTheFirstDiagonalMapsTheCoordinates)
{
  // |pt1 - pt3| = 2 < |pt2 - pt4| = 8: a rhombus.
  double first[6][3] = {{0.5, -0.5, 1}, {0.5, -0.5, -1}, {-1, 0, 0}, {0, -4, 0}, {1, 0, 0}, {0, 4, 0}};
  const Results a = quad(first, 0.0);
  EXPECT_EQ(a.answer, 1.0);
  EXPECT_EQ(a.t, 0.5);
  // The weights of pt1, pt2 at that point are 3/16 and 1/8.
  EXPECT_EQ(a.pcoords[0], 0.3125);
  EXPECT_EQ(a.pcoords[1], 0.125);
  double second[6][3] = {{0.5, 0.5, 1}, {0.5, 0.5, -1}, {-1, 0, 0}, {0, -4, 0}, {1, 0, 0}, {0, 4, 0}};
  const Results b = quad(second, 0.0);
  // Of pt3, pt4: 11/16 and 1/8.
  EXPECT_EQ(b.pcoords[0], 1.0 - 0.8125);
  EXPECT_EQ(b.pcoords[1], 0.875);
}

TEST(IntersectQuadWithLineTest, SplitAlongTheSecondDiagonalTestsTheSecondHalfFromTheFirstCorner)
{
  // A square, whose diagonals are equal: pt2-pt4 it is. The point lies in (pt3, pt4, pt2) only.
  double p[6][3] = {{3, 3, 1}, {3, 3, -1}, {0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {0, 4, 0}};
  // From pt1 = (0, 0, 0), which lies in the plane at t = 0, to p2: it meets the plane in pt1, far off.
  const Results r = quad(p, 0.0);
  EXPECT_EQ(r.answer, 0.0);
  EXPECT_EQ(r.t, kUnwritten); // no hit writes nothing
  EXPECT_EQ(r.x[0], kUnwritten);
  EXPECT_EQ(r.pcoords[0], kUnwritten);
  EXPECT_EQ(r.dist2, kUnwritten);
  // Farther out, beyond the tolerance of the first half, which reaches from pt1 to the diagonal: a hit, at
  // pt1.
  double far_out[6][3] = {{5, 5, 1}, {5, 5, -1}, {0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {0, 4, 0}};
  const Results found = quad(far_out, 3.0);
  EXPECT_EQ(found.answer, 1.0);
  EXPECT_EQ(found.t, 0.0);
  EXPECT_EQ(found.x[0], 0.0);
  EXPECT_EQ(found.dist2, 8.0);
  // The first half is tested from p1.
  double q[6][3] = {{1, 1, 1}, {1, 1, -1}, {0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {0, 4, 0}};
  const Results first = quad(q, 0.0);
  EXPECT_EQ(first.answer, 1.0);
  EXPECT_EQ(first.t, 0.5);
  EXPECT_EQ(first.pcoords[0], 0.5); // not mapped
  EXPECT_EQ(first.pcoords[1], 0.25);
}

TEST(IntersectQuadWithLineTest, OfTwoHitsTheSecondWinsUnlessItIsFartherAway)
{
  // On the diagonal of a rhombus both triangles are hit at distance 0: the second wins.
  double p[6][3] = {{0, 0, 1}, {0, 0, -1}, {-1, 0, 0}, {0, -4, 0}, {1, 0, 0}, {0, 4, 0}};
  const Results tie = quad(p, 1.0);
  EXPECT_EQ(tie.pcoords[0], 0.5); // 1 - (0.5 + 0)
  EXPECT_EQ(tie.pcoords[1], 1.0); // 1 - 0; the first one's would be 0
  // In the first triangle, within the tolerance of the second.
  double q[6][3] = {{0, -0.5, 1}, {0, -0.5, -1}, {-1, 0, 0}, {0, -4, 0}, {1, 0, 0}, {0, 4, 0}};
  const Results first = quad(q, 1.0);
  EXPECT_EQ(first.dist2, 0.0);
  EXPECT_EQ(first.pcoords[1], 0.125);
  // Without a tolerance both count with distance 0 when they are hit, so a hit reports 0.
  EXPECT_EQ(quad(p, kNan).dist2, 0.0);
}

TEST(IntersectQuadWithLineTest, IsTheLiteralOne)
{
  compare<6>(60000, quad, [](auto& p, double tol) {
    Results r;
    r.answer = literal::quad_with_line(p[2], p[3], p[4], p[5], p[0], p[1], tol, r.t, r.x, r.pcoords, r.dist2);
    return r;
  });
}

// ---------------------------------------------------------------------------------------------------------
// In the plane

TEST(DoesLineIntersectLineTest, EndsCountAndParallelsNever)
{
  const double o[2] = {0, 0};
  const double a[2] = {4, 0};
  const double b[2] = {4, 3};
  const double c[2] = {2, 0};
  const double d[2] = {6, 0};
  const double e[2] = {2, -1};
  const double f[2] = {2, 1};
  EXPECT_TRUE(MRPickUtil::does_line_intersect_line(o, a, a, b)); // a shared end
  EXPECT_TRUE(MRPickUtil::does_line_intersect_line(o, a, c, f)); // an end on the other
  EXPECT_TRUE(MRPickUtil::does_line_intersect_line(o, a, e, f));
  EXPECT_FALSE(MRPickUtil::does_line_intersect_line(o, a, c, d)); // overlapping on one line
  EXPECT_FALSE(MRPickUtil::does_line_intersect_line(o, a, o, a));
  EXPECT_FALSE(MRPickUtil::does_line_intersect_line(o, o, e, f)); // a point
  EXPECT_FALSE(MRPickUtil::does_line_intersect_line(a, d, e, f));
  EXPECT_FALSE(MRPickUtil::does_line_intersect_line(o, a, f, b));
}

TEST(IsPointInTriangleTest, AnEdgeIsInsideAClockwiseTriangleOnly)
{
  const double a[2] = {0, 0};
  const double b[2] = {4, 0};
  const double c[2] = {0, 4};
  const double inside[2] = {1, 1};
  const double on_edge[2] = {2, 0};
  const double outside[2] = {3, 3};
  EXPECT_TRUE(MRPickUtil::is_point_in_triangle(inside, a, b, c));
  EXPECT_TRUE(MRPickUtil::is_point_in_triangle(inside, a, c, b));
  EXPECT_FALSE(MRPickUtil::is_point_in_triangle(outside, a, b, c));
  EXPECT_FALSE(MRPickUtil::is_point_in_triangle(outside, a, c, b));
  for (const double* point : {on_edge, a, b, c}) {
    EXPECT_FALSE(MRPickUtil::is_point_in_triangle(point, a, b, c));
    EXPECT_TRUE(MRPickUtil::is_point_in_triangle(point, a, c, b));
  }
  // Without an area: the points of its line, if all signs agree; three equal corners hold everything.
  const double d[2] = {2, 0};
  const double beyond[2] = {9, 0};
  EXPECT_TRUE(MRPickUtil::is_point_in_triangle(beyond, a, d, b));
  EXPECT_FALSE(MRPickUtil::is_point_in_triangle(inside, a, d, b));
  EXPECT_TRUE(MRPickUtil::is_point_in_triangle(outside, a, a, a));
  // No number is above 0.
  const double nowhere[2] = {kNan, kNan};
  EXPECT_TRUE(MRPickUtil::is_point_in_triangle(nowhere, a, c, b));
  EXPECT_FALSE(MRPickUtil::is_point_in_triangle(nowhere, a, b, c));
  EXPECT_TRUE(MRPickUtil::is_point_in_triangle(inside, nowhere, c, b));
  EXPECT_FALSE(MRPickUtil::is_point_in_triangle(inside, nowhere, b, c));
  EXPECT_TRUE(MRPickUtil::is_point_in_triangle(outside, nowhere, b, nowhere));
}

TEST(PickGeometryTest, TheTestsInThePlaneAreTheLiteralOnes)
{
  compare<4>(
      100000,
      [](auto& p, double) {
        Results r;
        r.answer = MRPickUtil::does_line_intersect_line(p[0], p[1], p[2], p[3]) ? 1.0 : 0.0;
        r.t = MRPickUtil::is_point_in_triangle(p[0], p[1], p[2], p[3]) ? 1.0 : 0.0;
        return r;
      },
      [](auto& p, double) {
        Results r;
        r.answer = literal::line_intersects_line(p[0], p[1], p[2], p[3]) ? 1.0 : 0.0;
        r.t = literal::point_in_triangle(p[0], p[1], p[2], p[3]) ? 1.0 : 0.0;
        return r;
      });
}

// ---------------------------------------------------------------------------------------------------------
// To the screen

TEST(ViewToDisplayTest, MapsTheViewportAndClampsNothing)
{
  const int size[2] = {400, 300};
  const double viewport[4] = {0.25, 0.5, 0.75, 1.0};
  const double corners[4][2] = {{-1, -1}, {1, 1}, {0, 0}, {3, -3}};
  const double expected[4][2] = {{100, 150}, {300, 300}, {200, 225}, {500, 0}};
  for (int i = 0; i < 4; ++i) {
    double display[2] = {corners[i][0], corners[i][1]};
    MRPickUtil::view_to_display(display, display, size, viewport); // in place
    EXPECT_EQ(display[0], expected[i][0]);
    EXPECT_EQ(display[1], expected[i][1]);
  }
}

TEST(ViewToDisplayTest, IsTheFormulaInItsOrder)
{
  PickInputs inputs(7);
  const int size[2] = {1279, 1023};
  for (int i = 0; i < 20000; ++i) {
    double view[2];
    double v[4];
    inputs.fill(PickInputs::Plain, view, 2);
    inputs.fill(PickInputs::Plain, v, 4);
    double display[2];
    MRPickUtil::view_to_display(view, display, size, v);
    const double w = 1279.0;
    const double h = 1023.0;
    ASSERT_TRUE(same(display[0], v[0] * w + (v[2] - v[0]) * w * (view[0] + 1.0) * 0.5));
    ASSERT_TRUE(same(display[1], v[1] * h + (v[3] - v[1]) * h * (view[1] + 1.0) * 0.5));
  }
}

/// A renderer of a window that is never shown.
class DisplayBoxTest : public ::testing::Test
{
protected:
  DisplayBoxTest()
  {
    window->SetSize(400, 200);
    window->AddRenderer(renderer);
  }

  [[nodiscard]] BrantBox box_of(const double (&bounds)[6]) const
  {
    return MRPickUtil::convert_world_bbox_to_display_bbox(bounds, matrix, renderer);
  }

  vtkNew<vtkRenderWindow> window;
  vtkNew<vtkRenderer> renderer;
  vtkNew<vtkMatrix4x4> matrix;
};

void expect_box(const BrantBox& box, double xmin, double ymin, double xmax, double ymax)
{
  EXPECT_FALSE(box.is_empty());
  EXPECT_EQ(box.minimum(), BrantVector(xmin, ymin, 0.0));
  EXPECT_EQ(box.maximum(), BrantVector(xmax, ymax, 0.0));
}

TEST_F(DisplayBoxTest, HoldsTheEightProjectedCorners)
{
  expect_box(box_of({-0.5, 0.5, -0.5, 1.0, 3.0, 9.0}), 100, 50, 300, 200);
  renderer->SetViewport(0.5, 0.0, 1.0, 0.5);
  expect_box(box_of({-0.5, 0.5, -0.5, 1.0, 3.0, 9.0}), 250, 25, 350, 100);
  expect_box(box_of({0.5, -0.5, 1.0, -0.5, 9.0, 3.0}), 250, 25, 350, 100); // inverted bounds
  renderer->SetViewport(0.0, 0.0, 1.0, 1.0);
  // x grows with z: every corner counts, not only two of them.
  matrix->SetElement(0, 2, 0.25);
  expect_box(box_of({-0.5, 0.5, 0.0, 0.0, -2.0, 2.0}), 0, 100, 400, 100);
}

TEST_F(DisplayBoxTest, DividesByW)
{
  matrix->SetElement(3, 2, 1.0);
  matrix->SetElement(3, 3, 0.0); // w = z
  expect_box(box_of({-1.0, 1.0, -1.0, 1.0, 1.0, 2.0}), 0, 0, 400, 200);
  expect_box(box_of({-1.0, 1.0, -1.0, 1.0, 2.0, 4.0}), 100, 50, 300, 150);
  // Behind the eye: mirrored.
  expect_box(box_of({0.5, 1.0, 0.0, 0.0, -1.0, -1.0}), 0, 100, 100, 100);
}

TEST_F(DisplayBoxTest, CornersAtInfinityReachThereAndCornersThatAreNoNumbersAreLeftOut)
{
  matrix->SetElement(3, 2, 1.0);
  matrix->SetElement(3, 3, 0.0); // w = z
  expect_box(box_of({-1.0, 1.0, -1.0, 1.0, 0.0, 1.0}), -kInf, -kInf, kInf, kInf);
  expect_box(box_of({1.0, 1.0, 1.0, 1.0, 0.0, 1.0}), 400, 200, kInf, kInf);
  // At z = 0 all is 0 / 0; what remains is at z = 1.
  expect_box(box_of({0.0, 0.0, 0.0, 0.0, 0.0, 1.0}), 200, 100, 200, 100);
  // Comparisons stay defined.
  EXPECT_TRUE(box_of({1.0, 1.0, 1.0, 1.0, 0.0, 1.0}).overlap(0.0, BrantBox({900, 900, 0}, {901, 901, 0})));
}

TEST_F(DisplayBoxTest, WithNoCornerLeftItHoldsEverything)
{
  expect_box(box_of({kNan, kNan, 0.0, 1.0, 0.0, 1.0}), -kInf, -kInf, kInf, kInf);
  matrix->Zero();
  expect_box(box_of({0.0, 1.0, 0.0, 1.0, 0.0, 1.0}), -kInf, -kInf, kInf, kInf);
}

TEST_F(DisplayBoxTest, WithoutAWindowItIsThePointAtTheOrigin)
{
  const double bounds[6] = {-1, 1, -1, 1, -1, 1};
  vtkNew<vtkRenderer> alone;
  expect_box(MRPickUtil::convert_world_bbox_to_display_bbox(bounds, matrix, alone), 0, 0, 0, 0);
  expect_box(MRPickUtil::convert_world_bbox_to_display_bbox(bounds, matrix, nullptr), 0, 0, 0, 0);
  expect_box(MRPickUtil::convert_world_bbox_to_display_bbox(bounds, nullptr, renderer), 0, 0, 0, 0);
  expect_box(MRPickUtil::convert_world_bbox_to_display_bbox(nullptr, matrix, renderer), 0, 0, 0, 0);
}

TEST_F(DisplayBoxTest, NoFunctionAllocates)
{
  double p[6][3] = {{0, -0.5, 1}, {0, -0.5, -1}, {-1, 0, 0}, {0, -4, 0}, {1, 0, 0}, {0, 4, 0}};
  const double bounds[6] = {-1, 1, -1, 1, -1, 1};
  const int* size = window->GetSize();
  double t = 0.0;
  double display[3];
  const std::uint64_t before = morrow_test::gAllocations;
  double sum = MRPickUtil::Dot(p[0], p[1]) + MRPickUtil::DistanceBetweenPoints(p[0], p[1]);
  sum += DistanceToLine(p[0], p[1], p[2], t, display);
  int hits = lines(p, 10.0).answer > 0.0 ? 1 : 0;
  hits += triangle(p, 10.0).answer > 0.0 ? 1 : 0;
  hits += quad(p, 10.0).answer > 0.0 ? 1 : 0;
  hits += MRPickUtil::does_line_intersect_line(p[2], p[4], p[3], p[5]) ? 1 : 0;
  hits += MRPickUtil::is_point_in_triangle(p[0], p[2], p[3], p[4]) ? 1 : 0;
  MRPickUtil::view_to_display(p[0], display, size, renderer->GetViewport());
  const BrantBox box = MRPickUtil::convert_world_bbox_to_display_bbox(bounds, matrix, renderer);
  const std::uint64_t after = morrow_test::gAllocations;
  EXPECT_EQ(after, before);
  EXPECT_EQ(hits, 5);
  EXPECT_GT(sum, 0.0);
  EXPECT_FALSE(box.is_empty());
}

TEST_F(DisplayBoxTest, IsTheLiteralOne)
{
  PickInputs inputs(11);
  renderer->SetViewport(0.1, 0.2, 0.7, 0.9);
  const double v[4] = {0.1, 0.2, 0.7, 0.9};
  for (int run = 0; run < 5000; ++run) {
    const auto kind = static_cast<PickInputs::Kind>(run % PickInputs::NumberOfKinds);
    double bounds[6];
    inputs.fill(kind, bounds, 6);
    inputs.fill(kind, matrix->GetData(), 16);
    BrantBox expected;
    for (int i = 0; i < 8; ++i) {
      const double corner[4] = {bounds[i & 1], bounds[2 + ((i >> 1) & 1)], bounds[4 + ((i >> 2) & 1)], 1.0};
      double out[4];
      matrix->MultiplyPoint(corner, out);
      const double x = v[0] * 400.0 + (v[2] - v[0]) * 400.0 * (out[0] / out[3] + 1.0) * 0.5;
      const double y = v[1] * 200.0 + (v[3] - v[1]) * 200.0 * (out[1] / out[3] + 1.0) * 0.5;
      expected |= BrantVector(x, y, 0.0);
    }
    const BrantBox box = MRPickUtil::convert_world_bbox_to_display_bbox(bounds, matrix, renderer);
    ASSERT_FALSE(box.is_empty());
    if (!expected.is_empty()) {
      ASSERT_EQ(box.minimum(), expected.minimum());
      ASSERT_EQ(box.maximum(), expected.maximum());
    }
  }
}

} // namespace
