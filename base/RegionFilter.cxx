// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "RegionFilter.h"

#include "PickBounds.h"

#include <algorithm>
#include <limits>
#include <typeinfo>

namespace morrow {

namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

} // namespace

RegionFilter::RegionFilter(const PickBounds& region)
    : mRegion(&region), mLeft(kNone), mRight(kNone), mBottom(kNone), mTop(kNone)
{
  if (typeid(region) == typeid(PickBox)) {
    take_box(static_cast<const PickBox&>(region));
  } else if (typeid(region) == typeid(PickPolygon)) {
    take_polygon(static_cast<const PickPolygon&>(region));
  } else if (typeid(region) == typeid(PickCircle)) {
    take_circle(static_cast<const PickCircle&>(region));
  }
}

void RegionFilter::take_box(const PickBox& box)
{
  mKind = Kind::Box;
  mXMin = box.xmin;
  mYMin = box.ymin;
  mXMax = box.xmax;
  mYMax = box.ymax;
  // Swapped corners hold nothing, but their sides can be crossed.
  set_sides(std::min(mXMin, mXMax), std::min(mYMin, mYMax), std::max(mXMin, mXMax), std::max(mYMin, mYMax));
}

void RegionFilter::take_polygon(const PickPolygon& polygon)
{
  mKind = Kind::Polygon;
  mGrid = &polygon.grid();
  mHoldsNoTriangle = polygon.points.size() < 9;
  if (!mHoldsNoTriangle) {
    mXMin = polygon.points[0];
    mYMin = polygon.points[1];
  }
  if (mGrid->has_cells()) {
    const PolygonGrid::Extent extent = mGrid->extent();
    mLeft = extent.left;
    mRight = extent.right;
    mBottom = extent.bottom;
    mTop = extent.top;
    mReach = extent.reach;
    mIsSolid = mGrid->is_solid();
  }
}

void RegionFilter::take_circle(const PickCircle& circle)
{
  mKind = Kind::Circle;
  mXMin = circle.center_x;
  mYMin = circle.center_y;
  mRadius = circle.radius;
  // Points are held by the radius' size, segments up to its root.
  const double reach = std::max(std::abs(mRadius), std::sqrt(std::max(mRadius, 0.0)));
  set_sides(mXMin - reach, mYMin - reach, mXMin + reach, mYMin + reach);
}

/// The sides of a box or a circle, moved out by more than the tests can round within the reach.
void RegionFilter::set_sides(double xmin, double ymin, double xmax, double ymax)
{
  const double size = std::max({std::abs(xmin), std::abs(ymin), std::abs(xmax), std::abs(ymax)});
  const bool is_number = !std::isnan(xmin + ymin) && !std::isnan(xmax + ymax) && !std::isnan(mRadius);
  if (!is_number || size > 1e100) {
    return;
  }
  const double margin = 1e-6 + 1e-9 * size;
  mLeft = xmin - margin;
  mRight = xmax + margin;
  mBottom = ymin - margin;
  mTop = ymax + margin;
  mReach = 1e6 * (1.0 + size);
}

bool RegionFilter::asks_for_point(const double* p) const
{
  return mRegion->intersects_with_point(p);
}

bool RegionFilter::crosses(const double* p1, const double* p2) const
{
  switch (mKind) {
  case Kind::Box:
    return crosses_sides(mXMin, mYMin, mXMax, mYMax, p1, p2);
  case Kind::Polygon:
    return mGrid->crosses_edge(p1, p2);
  case Kind::Circle:
    return mRadius >= squared_distance_to_segment(mXMin, mYMin, p1, p2);
  default:
    return mRegion->intersects_with_line(p1, p2);
  }
}

bool RegionFilter::touches_line(const double* p1, const double* p2) const
{
  const bool asks_ends = mKind == Kind::Box || mKind == Kind::Polygon;
  return (asks_ends && (contains(p1) || contains(p2))) || crosses(p1, p2);
}

bool RegionFilter::touches_triangle(const double* a, const double* b, const double* c) const
{
  if (mKind == Kind::Other) {
    return mRegion->intersects_with_triangle(a, b, c);
  }
  if (mHoldsNoTriangle) {
    return false;
  }
  // A circle takes its corners b and c as parts of segments only.
  return contains(a) || (mKind != Kind::Circle && (contains(b) || contains(c))) ||
         touches_triangle_between(a, b, c);
}

bool RegionFilter::touches_triangle_between(const double* a, const double* b, const double* c) const
{
  if (mKind == Kind::Other) {
    return mRegion->intersects_with_triangle(a, b, c);
  }
  const double anchor[2] = {mXMin, mYMin};
  return !mHoldsNoTriangle &&
         (crosses(a, b) || crosses(b, c) || crosses(c, a) || point_in_triangle(anchor, a, b, c));
}

ScreenSides RegionFilter::sides() const
{
  return mIsSolid ? ScreenSides{mLeft, mRight, mBottom, mTop} : ScreenSides{kNone, kNone, kNone, kNone};
}

double RegionFilter::depth() const
{
  const double depth = 2.0 * std::max({mXMin - mLeft, mRight - mXMax, mYMin - mBottom, mTop - mYMax});
  return mKind == Kind::Box && mXMin <= mXMax && mYMin <= mYMax ? depth
                                                                : std::numeric_limits<double>::infinity();
}

PolygonGrid::Place RegionFilter::place_of_box(double xmin, double ymin, double xmax, double ymax) const
{
  const bool is_beyond = xmax < mLeft || xmin > mRight || ymax < mBottom || ymin > mTop;
  const bool is_within_reach = std::abs(xmin - mLeft) <= mReach && std::abs(xmax - mLeft) <= mReach &&
                               std::abs(ymin - mBottom) <= mReach && std::abs(ymax - mBottom) <= mReach;
  if (!is_within_reach || !(xmin <= xmax) || !(ymin <= ymax)) {
    return PolygonGrid::Place::Unknown;
  }
  if (is_beyond) {
    return mIsSolid ? PolygonGrid::Place::Outside : PolygonGrid::Place::Unknown;
  }
  if (mKind == Kind::Polygon) {
    return mGrid->place_of_box(xmin, ymin, xmax, ymax);
  }
  const double lower_left[2] = {xmin, ymin};
  const double lower_right[2] = {xmax, ymin};
  const double upper_left[2] = {xmin, ymax};
  const double upper_right[2] = {xmax, ymax};
  const bool is_inside =
      contains(lower_left) && contains(lower_right) && contains(upper_left) && contains(upper_right);
  return is_inside ? PolygonGrid::Place::Inside : PolygonGrid::Place::Unknown;
}

} // namespace morrow
