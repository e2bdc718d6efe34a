// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <algorithm>
#include <cmath>

#include "PlanarTests.h"     // inlined
#include "PolygonGrid.h"     // inlined
#include "ScreenRectangle.h" // ScreenSides

class PickBounds;
class PickBox;
class PickCircle;
class PickPolygon;

namespace morrow {

/// Answers for a pick region without virtual calls, and says quickly which points, boxes and cells the region
/// need not be asked for. Made for one pick: the region must outlive it and not be changed meanwhile.
///
/// It knows `PickBox`, `PickPolygon` and `PickCircle` themselves. A region of a class derived from these, or
/// of any other, may answer what it likes: then is_known() is false, no point has side bits, no box a known
/// place, and the exact answers are those of its virtual functions.
class RegionFilter
{
public:
  explicit RegionFilter(const PickBounds& region);

  [[nodiscard]] bool is_known() const { return mKind != Kind::Other; }

  [[nodiscard]] bool is_box() const { return mKind == Kind::Box; }

  /// What classify() says of a point.
  enum Bits : unsigned char
  {
    Left = 1, ///< beyond the region's left side, that is too far to the left to touch it
    Right = 2,
    Below = 4,
    Above = 8,
    Sides = 15,
    Inside = 16 ///< `intersects_with_point` is true, exactly
  };

  /// The side bits and the inside bit of a point. A point that is inside has no side bits, and one that is
  /// not finite or extremely far away has none either.
  ///
  /// When all points of a vertex, line or triangle share a side bit, the region is not touched, except that:
  /// - a triangle without area, that is one whose corners are collinear or coincide on the screen, holds
  ///   points of its line beyond its corners; three equal corners hold every point. intersects_with_triangle
  ///   is then true when that line passes through the box's corner (xmin, ymin), the polygon's first vertex
  ///   or the circle's centre.
  /// - a segment on the line of a lasso's edge, up to rounding, may count as crossing it at any distance.
  /// Ask touches_… where these are to be found too.
  [[nodiscard]] unsigned char classify(const double* p) const
  {
    const auto sides = static_cast<unsigned char>((p[0] < mLeft ? Left : 0) | (p[0] > mRight ? Right : 0) |
                                                  (p[1] < mBottom ? Below : 0) | (p[1] > mTop ? Above : 0));
    if (sides != 0 && std::abs(p[0] - mLeft) <= mReach && std::abs(p[1] - mBottom) <= mReach &&
        (mIsSolid || !contains(p))) {
      return sides;
    }
    return contains(p) ? Inside : 0;
  }

  /// Beyond one of these sides everything is Outside, as place_of_box() says it, up to extreme distances. Not
  /// numbers where that is not so.
  [[nodiscard]] ScreenSides sides() const;

  /// By so many pixels points must lie within the sides to be inside for that reason alone; infinity where
  /// this is no reason.
  [[nodiscard]] double depth() const;

  /// Where all points of a box are, its sides included: Outside also says that no segment and no triangle
  /// within the box touches the region, with the exceptions told at classify(); Inside that
  /// `intersects_with_point` is true for each.
  [[nodiscard]] PolygonGrid::Place place_of_box(double xmin, double ymin, double xmax, double ymax) const;

  /// False when the triangle is not touched, with the exceptions told at classify(): a quick look for those
  /// that share no side bit and have no corner inside, as most have in the notches of a lasso and beside it.
  [[nodiscard]] bool may_touch_triangle(const double* a, const double* b, const double* c) const
  {
    if (mKind != Kind::Polygon) {
      return true;
    }
    const PolygonGrid::Place place =
        mGrid->place_of_box(std::min({a[0], b[0], c[0]}), std::min({a[1], b[1], c[1]}),
                            std::max({a[0], b[0], c[0]}), std::max({a[1], b[1], c[1]}));
    return place != PolygonGrid::Place::Outside;
  }

  /// `intersects_with_point`, exactly.
  [[nodiscard]] bool contains(const double* p) const
  {
    switch (mKind) {
    case Kind::Box:
      return mXMin <= p[0] && p[0] <= mXMax && mYMin <= p[1] && p[1] <= mYMax;
    case Kind::Polygon:
      return mGrid->contains(p);
    case Kind::Circle:
      return disc_holds(mXMin, mYMin, mRadius, p);
    default:
      return asks_for_point(p);
    }
  }

  /// `intersects_with_line`, exactly.
  [[nodiscard]] bool touches_line(const double* p1, const double* p2) const;

  /// `intersects_with_triangle`, exactly.
  [[nodiscard]] bool touches_triangle(const double* a, const double* b, const double* c) const;

  /// The same for a triangle none of whose corners is inside.
  [[nodiscard]] bool touches_triangle_between(const double* a, const double* b, const double* c) const;

private:
  enum class Kind : unsigned char
  {
    Other,
    Box,
    Polygon,
    Circle
  };

  void take_box(const PickBox& box);
  void take_polygon(const PickPolygon& polygon);
  void take_circle(const PickCircle& circle);
  void set_sides(double xmin, double ymin, double xmax, double ymax);
  [[nodiscard]] bool asks_for_point(const double* p) const;
  [[nodiscard]] bool crosses(const double* p1, const double* p2) const;

  const PickBounds* mRegion;
  const PolygonGrid* mGrid = nullptr;
  Kind mKind = Kind::Other;
  bool mHoldsNoTriangle = false; // a polygon of fewer than three vertices
  bool mIsSolid = true;          // no point beyond the sides is inside
  // Beyond these lie the points with side bits. NaN, which no point is beyond, where none may have any.
  double mLeft;
  double mRight;
  double mBottom;
  double mTop;
  double mReach = 0.0;
  // The region: the box, the centre in the first two, the first vertex there.
  double mXMin = 0.0;
  double mYMin = 0.0;
  double mXMax = 0.0;
  double mYMax = 0.0;
  double mRadius = 0.0;
};

} // namespace morrow
