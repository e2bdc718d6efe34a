// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "PickBounds.h"

#include "MRUtil.h"
#include "PlanarTests.h"
#include "PolygonGrid.h"
#include "ViewCalls.h" // exceptions that wait

#include <algorithm>
#include <array>

namespace {

/// The part of the triangle's question that all regions share: anchor is a point of the region, which tells
/// of a triangle that surrounds it.
bool touches_triangle(const PickBounds& region, const double* anchor, const double* a, const double* b,
                      const double* c)
{
  return region.intersects_with_point(a) || region.intersects_with_line(a, b) ||
         region.intersects_with_line(b, c) || region.intersects_with_line(c, a) ||
         morrow::point_in_triangle(anchor, a, b, c);
}

} // namespace

// ---------------------------------------------------------------------------------------------------------

PickBox::PickBox()
{
  box.reset(BrantVector());
}

void PickBox::set_box(double* b)
{
  if (!b) {
    return;
  }
  xmin = b[0];
  ymin = b[1];
  xmax = b[2];
  ymax = b[3];
  box.reset({xmin, ymin, 0.0}, {xmax, ymax, 0.0});
}

bool PickBox::intersects_with_point(const double* p) const
{
  return xmin <= p[0] && p[0] <= xmax && ymin <= p[1] && p[1] <= ymax;
}

bool PickBox::intersects_with_line(const double* p1, const double* p2) const
{
  return intersects_with_point(p1) || intersects_with_point(p2) ||
         morrow::crosses_sides(xmin, ymin, xmax, ymax, p1, p2);
}

bool PickBox::intersects_with_triangle(const double* a, const double* b, const double* c) const
{
  const double corner[2] = {xmin, ymin};
  return touches_triangle(*this, corner, a, b, c);
}

bool PickBox::intersects_with_bbox(const BrantBox& other) const
{
  return box.overlap(0.0, other);
}

// ---------------------------------------------------------------------------------------------------------

PickPolygon::PickPolygon() = default;
PickPolygon::PickPolygon(const PickPolygon&) = default;
PickPolygon::PickPolygon(PickPolygon&&) noexcept = default;
PickPolygon& PickPolygon::operator=(const PickPolygon&) = default;
PickPolygon& PickPolygon::operator=(PickPolygon&&) noexcept = default;
PickPolygon::~PickPolygon() = default;

void PickPolygon::set_polygon(int n, const double (*pts)[2])
{
  const int count = pts ? std::max(n, 0) : 0;
  std::vector<std::array<double, 3>> ring;
  ring.reserve(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) {
    ring.push_back({pts[i][0], pts[i][1], 0.0});
  }
  const std::exception_ptr thrown = morrow::exception_of([&] {
    auto* const corners = reinterpret_cast<double(*)[3]>(ring.data());
    MRUtil::triangulate_polygon(count, corners, triangles, edges, points);
  });
  createBoundingBox();
  if (thrown != nullptr) {
    std::rethrow_exception(thrown);
  }
}

void PickPolygon::createBoundingBox()
{
  mGrid.reset();
  if (points.size() < 2) {
    return;
  }
  BrantBox around;
  around.reset({points[0], points[1], points.size() > 2 ? points[2] : 0.0});
  for (std::size_t i = 3; i + 2 < points.size(); i += 3) {
    around |= BrantVector(&points[i]);
  }
  bbox = around;
}

const morrow::PolygonGrid& PickPolygon::grid() const
{
  if (!mGrid) {
    mGrid = std::make_shared<const morrow::PolygonGrid>(points, triangles, edges);
  }
  return *mGrid;
}

bool PickPolygon::intersects_with_point(const double* p) const
{
  return grid().contains(p);
}

bool PickPolygon::intersects_with_line(const double* p1, const double* p2) const
{
  return intersects_with_point(p1) || intersects_with_point(p2) || grid().crosses_edge(p1, p2);
}

bool PickPolygon::intersects_with_triangle(const double* a, const double* b, const double* c) const
{
  return points.size() >= 9 && touches_triangle(*this, points.data(), a, b, c);
}

bool PickPolygon::intersects_with_bbox(const BrantBox& box) const
{
  return bbox.overlap(0.0, box);
}

// ---------------------------------------------------------------------------------------------------------

void PickCircle::set_circle(const double* center, double r)
{
  if (center) {
    center_x = center[0];
    center_y = center[1];
    radius = r;
  }
}

bool PickCircle::intersects_with_point(const double* p) const
{
  return morrow::disc_holds(center_x, center_y, radius, p);
}

bool PickCircle::intersects_with_line(const double* p1, const double* p2) const
{
  // Not the squared radius: deliberate.
  return radius >= morrow::squared_distance_to_segment(center_x, center_y, p1, p2);
}

bool PickCircle::intersects_with_triangle(const double* a, const double* b, const double* c) const
{
  const double center[2] = {center_x, center_y};
  return touches_triangle(*this, center, a, b, c);
}

bool PickCircle::intersects_with_bbox(const BrantBox& box) const
{
  const BrantVector center(center_x, center_y, 0.0);
  return radius >= center.distance_between(box.closest_point(center));
}
