// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cmath>

/// The tests in the plane that picking rests on, inlined: a region pick asks them for millions of cells. Only
/// x and y of the points are read. What they answer on a border, for degenerate input and for values that are
/// not finite is written at `MRPickUtil`; the operations and their order are fixed, so that every caller gets
/// the same bit.
namespace morrow {

/// `MRPickUtil::does_line_intersect_line`.
[[nodiscard]] inline bool segments_cross(const double* a1, const double* a2, const double* b1,
                                         const double* b2)
{
  const double ax = a2[0] - a1[0];
  const double ay = a2[1] - a1[1];
  const double bx = b2[0] - b1[0];
  const double by = b2[1] - b1[1];
  const double denominator = by * ax - bx * ay;
  if (denominator == 0.0) {
    return false;
  }
  const double wx = a1[0] - b1[0];
  const double wy = a1[1] - b1[1];
  const double on_a = (bx * wy - by * wx) / denominator;
  if (on_a > 1.0 || on_a < 0.0) {
    return false;
  }
  const double on_b = (ax * wy - ay * wx) / denominator;
  return on_b >= 0.0 && on_b <= 1.0;
}

/// (u - p) × (v - p), positive when u, v turn counter-clockwise about p.
[[nodiscard]] inline double turn_about(const double* p, const double* u, const double* v)
{
  return (u[0] - p[0]) * (v[1] - p[1]) - (u[1] - p[1]) * (v[0] - p[0]);
}

/// (b - a) × (c - b): positive for a counter-clockwise triangle.
[[nodiscard]] inline double orientation(const double* a, const double* b, const double* c)
{
  return (b[0] - a[0]) * (c[1] - b[1]) - (b[1] - a[1]) * (c[0] - b[0]);
}

/// `MRPickUtil::is_point_in_triangle`.
[[nodiscard]] inline bool point_in_triangle(const double* p, const double* a, const double* b,
                                            const double* c)
{
  const bool positive = orientation(a, b, c) > 0.0;
  return (turn_about(p, a, b) > 0.0) == positive && (turn_about(p, b, c) > 0.0) == positive &&
         (turn_about(p, c, a) > 0.0) == positive;
}

/// Whether a segment of this squared length counts as a point for someone at a distance: projection is the
/// scalar product of the segment and of the way from its start to there.
[[nodiscard]] inline bool is_degenerate_segment(double length_squared, double projection)
{
  const double tolerance = std::abs(1e-5 * projection);
  return length_squared <= 0.0 || (-tolerance < length_squared && length_squared < tolerance);
}

/// The squared distance of (x, y) from the segment, as `DistanceToLine` in the plane.
[[nodiscard]] inline double squared_distance_to_segment(double x, double y, const double* p1,
                                                        const double* p2)
{
  const double dx = p2[0] - p1[0];
  const double dy = p2[1] - p1[1];
  const double projection = (x - p1[0]) * dx + (y - p1[1]) * dy;
  const double length_squared = dx * dx + dy * dy;
  double nearest[2] = {p1[0], p1[1]};
  if (!is_degenerate_segment(length_squared, projection)) {
    const double t = projection / length_squared;
    if (t > 1.0) {
      nearest[0] = p2[0];
      nearest[1] = p2[1];
    } else if (!(t < 0.0)) {
      nearest[0] = p1[0] + t * dx;
      nearest[1] = p1[1] + t * dy;
    }
  }
  const double away_x = nearest[0] - x;
  const double away_y = nearest[1] - y;
  return away_x * away_x + away_y * away_y;
}

/// Does the segment cross a side of the box: left, bottom, right or top?
[[nodiscard]] inline bool crosses_sides(double xmin, double ymin, double xmax, double ymax, const double* p1,
                                        const double* p2)
{
  const double lower_left[2] = {xmin, ymin};
  const double upper_left[2] = {xmin, ymax};
  const double lower_right[2] = {xmax, ymin};
  const double upper_right[2] = {xmax, ymax};
  return segments_cross(p1, p2, lower_left, upper_left) || segments_cross(p1, p2, lower_left, lower_right) ||
         segments_cross(p1, p2, upper_right, lower_right) || segments_cross(p1, p2, upper_right, upper_left);
}

[[nodiscard]] inline bool disc_holds(double x, double y, double radius, const double* p)
{
  const double dx = p[0] - x;
  const double dy = p[1] - y;
  return radius * radius >= dx * dx + dy * dy;
}

} // namespace morrow
