// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "LiteralPickGeometry.h"
#include "MRUtil.h"
#include "PickBounds.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

/// The pick regions as their rules read: every triangle and every edge is asked in turn.
namespace morrow_test {

class LiteralBounds : public PickBounds
{
protected:
  [[nodiscard]] bool touches_triangle(const double* anchor, const double* a, const double* b,
                                      const double* c) const
  {
    return intersects_with_point(a) || intersects_with_line(a, b) || intersects_with_line(b, c) ||
           intersects_with_line(c, a) || literal::point_in_triangle(anchor, a, b, c);
  }
};

class LiteralBox : public LiteralBounds
{
public:
  explicit LiteralBox(const double* b)
      : x0(b[0]), y0(b[1]), x1(b[2]), y1(b[3]), region({x0, y0, 0}, {x1, y1, 0})
  {}

  bool intersects_with_point(const double* p) const override
  {
    return x0 <= p[0] && p[0] <= x1 && y0 <= p[1] && p[1] <= y1;
  }
  bool intersects_with_line(const double* p1, const double* p2) const override
  {
    if (intersects_with_point(p1) || intersects_with_point(p2)) {
      return true;
    }
    const double sides[4][2][2] = {
        {{x0, y0}, {x0, y1}}, {{x0, y0}, {x1, y0}}, {{x1, y1}, {x1, y0}}, {{x1, y1}, {x0, y1}}};
    for (const auto& side : sides) {
      if (literal::line_intersects_line(p1, p2, side[0], side[1])) {
        return true;
      }
    }
    return false;
  }
  bool intersects_with_triangle(const double* a, const double* b, const double* c) const override
  {
    const double corner[2] = {x0, y0};
    return touches_triangle(corner, a, b, c);
  }
  bool intersects_with_bbox(const BrantBox& box) const override { return region.overlap(0.0, box); }

private:
  double x0, y0, x1, y1;
  BrantBox region;
};

class LiteralPolygon : public LiteralBounds
{
public:
  /// For a triangulation as it is.
  LiteralPolygon(std::vector<double> p, std::vector<int> t, std::vector<int> e)
      : points(std::move(p)), triangles(std::move(t)), edges(std::move(e))
  {
    for (std::size_t i = 0; i + 2 < points.size(); i += 3) {
      bbox |= BrantVector(points[i], points[i + 1], points[i + 2]);
    }
  }

  bool intersects_with_point(const double* p) const override
  {
    for (std::size_t i = 0; i < triangles.size(); i += 3) {
      if (literal::point_in_triangle(p, vertex(triangles[i]), vertex(triangles[i + 1]),
                                     vertex(triangles[i + 2]))) {
        return true;
      }
    }
    return false;
  }
  bool intersects_with_line(const double* p1, const double* p2) const override
  {
    return intersects_with_point(p1) || intersects_with_point(p2) || crosses_an_edge(p1, p2);
  }
  [[nodiscard]] bool crosses_an_edge(const double* p1, const double* p2) const
  {
    for (std::size_t i = 0; i < edges.size(); i += 2) {
      if (literal::line_intersects_line(p1, p2, vertex(edges[i]), vertex(edges[i + 1]))) {
        return true;
      }
    }
    return false;
  }
  bool intersects_with_triangle(const double* a, const double* b, const double* c) const override
  {
    return points.size() >= 9 && touches_triangle(points.data(), a, b, c);
  }
  bool intersects_with_bbox(const BrantBox& box) const override { return bbox.overlap(0.0, box); }

private:
  [[nodiscard]] const double* vertex(int index) const { return &points[3 * static_cast<std::size_t>(index)]; }

  std::vector<double> points;
  std::vector<int> triangles;
  std::vector<int> edges;
  BrantBox bbox;
};

class LiteralCircle : public LiteralBounds
{
public:
  LiteralCircle(double x, double y, double r) : centre{x, y}, radius(r) {}

  bool intersects_with_point(const double* p) const override
  {
    const double dx = p[0] - centre[0];
    const double dy = p[1] - centre[1];
    return radius * radius >= dx * dx + dy * dy;
  }
  bool intersects_with_line(const double* p1, const double* p2) const override
  {
    const double dx = p2[0] - p1[0];
    const double dy = p2[1] - p1[1];
    const double num = (centre[0] - p1[0]) * dx + (centre[1] - p1[1]) * dy;
    const double denom = dx * dx + dy * dy;
    const double tolerance = std::fabs(1e-5 * num);
    double x = p1[0];
    double y = p1[1];
    if (!(denom <= 0.0 || (-tolerance < denom && denom < tolerance))) {
      const double t = num / denom;
      if (t > 1.0) {
        x = p2[0];
        y = p2[1];
      } else if (!(t < 0.0)) {
        x = p1[0] + t * dx;
        y = p1[1] + t * dy;
      }
    }
    return radius >= (x - centre[0]) * (x - centre[0]) + (y - centre[1]) * (y - centre[1]);
  }
  bool intersects_with_triangle(const double* a, const double* b, const double* c) const override
  {
    return touches_triangle(centre, a, b, c);
  }
  bool intersects_with_bbox(const BrantBox& box) const override
  {
    const BrantVector middle(centre[0], centre[1], 0.0);
    const BrantVector nearest = box.closest_point(middle);
    return radius >= middle.distance_between(nearest);
  }

private:
  double centre[2];
  double radius;
};

} // namespace morrow_test
