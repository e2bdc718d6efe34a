// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "MRPickUtil.h"

#include "PlanarTests.h"
#include "PointDifference.h"

#include <vtkMatrix4x4.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

using morrow::way_between;

/// origin + t × direction.
void write_point_at(const double* origin, double t, const BrantVector& direction, double* point)
{
  for (int i = 0; i < 3; ++i) {
    point[i] = origin[i] + t * direction[i];
  }
}

void clear(double* pcoords)
{
  std::fill_n(pcoords, 3, 0.0);
}

bool is_in_unit_range(double value)
{
  return value >= 0.0 && value <= 1.0;
}

// ---------------------------------------------------------------------------------------------------------
// Segment and triangle

struct Triangle
{
  double* pt1;
  double* pt2;
  double* pt3;
};

/// (pt3 - pt2) × (pt1 - pt2).
BrantVector normal_of(const Triangle& triangle)
{
  return way_between(triangle.pt2, triangle.pt3).cross(way_between(triangle.pt2, triangle.pt1));
}

BrantVector unit_normal_of(const Triangle& triangle)
{
  const BrantVector normal = normal_of(triangle);
  const double length = normal.length();
  return length != 0.0 ? normal / length : normal;
}

/// Where the segment meets the triangle's plane; false when it does not.
bool meets_plane(const Triangle& triangle, const double* p1, const double* p2, double& t, double* x)
{
  const BrantVector normal = unit_normal_of(triangle);
  const BrantVector direction = way_between(p1, p2);
  const double numerator = MRPickUtil::Dot(normal.data(), triangle.pt1) - MRPickUtil::Dot(normal.data(), p1);
  const double denominator = normal.dot(direction);
  if (std::abs(denominator) <= 1e-6 * std::abs(numerator)) {
    t = std::numeric_limits<double>::max();
    return false;
  }
  t = numerator / denominator;
  write_point_at(p1, t, direction, x);
  return !(t < 0.0 || t > 1.0);
}

BrantVector projected(const double* x, const double* origin, const BrantVector& normal)
{
  const double length_squared = normal.length_squared();
  const BrantVector point(x[0], x[1], x[2]);
  return length_squared != 0.0 ? point - normal * way_between(origin, x).dot(normal) / length_squared : point;
}

/// The axis along which the normal is longest, the lower one of equals; a NaN is never the longest.
int axis_to_drop(const BrantVector& normal)
{
  int drop = 0;
  double longest = 0.0;
  for (int axis = 0; axis < 3; ++axis) {
    if (std::abs(normal[axis]) > longest) {
      longest = std::abs(normal[axis]);
      drop = axis;
    }
  }
  return drop;
}

double determinant(const double (&first)[2], const double (&second)[2])
{
  return first[0] * second[1] - second[0] * first[1];
}

/// The weights of the corners at a point of the triangle's plane; false when the triangle has no area.
bool weights_at(const Triangle& triangle, const BrantVector& normal, const BrantVector& point,
                double* pcoords)
{
  const int drop = axis_to_drop(normal);
  const int kept[2] = {drop == 0 ? 1 : 0, drop == 2 ? 1 : 2};
  double column1[2];
  double column2[2];
  double right[2];
  for (int i = 0; i < 2; ++i) {
    const int axis = kept[i];
    column1[i] = triangle.pt1[axis] - triangle.pt3[axis];
    column2[i] = triangle.pt2[axis] - triangle.pt3[axis];
    right[i] = point[axis] - triangle.pt3[axis];
  }
  const double whole = determinant(column1, column2);
  if (whole == 0.0) {
    return false;
  }
  pcoords[0] = determinant(right, column2) / whole;
  pcoords[1] = determinant(column1, right) / whole;
  pcoords[2] = 1.0 - pcoords[0] - pcoords[1];
  return true;
}

/// The edges of a triangle without area. The coordinates have just been cleared, so no test of this chain
/// ever runs; it stands for what a caller of other coordinates would get.
int meets_edges(const Triangle& triangle, double* p1, double* p2, double tol, double& t, double* x,
                double* pcoords, double& dist2)
{
  const auto meets = [&](double* from, double* to) {
    return MRPickUtil::IntersectLineWithLine(from, to, p1, p2, tol, t, x, pcoords[0], dist2);
  };
  if ((pcoords[2] < 0.0 && meets(triangle.pt1, triangle.pt2)) ||
      (pcoords[0] < 0.0 && meets(triangle.pt2, triangle.pt3)) ||
      (pcoords[1] < 0.0 && meets(triangle.pt3, triangle.pt1))) {
    pcoords[2] = 0.0;
    return 1;
  }
  clear(pcoords);
  return 0;
}

double squared_distance_to_segment(double* x, double* p1, double* p2)
{
  double t = 0.0;
  double closest[3];
  return DistanceToLine(x, p1, p2, t, closest);
}

/// The smallest of the squared distances to a corner and to the two sides it belongs to.
double squared_distance_to_corner(double* x, double* corner, double* from1, double* to1, double* from2,
                                  double* to2)
{
  return std::min({MRPickUtil::DistanceBetweenPoints(x, corner), squared_distance_to_segment(x, from1, to1),
                   squared_distance_to_segment(x, from2, to2)});
}

/// The squared distance of a point beside the triangle from the part of the border that its weights name.
/// NaN, which is within no tolerance, when they are not numbers.
double squared_distance_beside(const Triangle& triangle, double* x, const double* pcoords)
{
  double* const pt1 = triangle.pt1;
  double* const pt2 = triangle.pt2;
  double* const pt3 = triangle.pt3;
  const bool beyond1 = pcoords[0] < 0.0;
  const bool beyond2 = pcoords[1] < 0.0;
  const bool beyond3 = pcoords[2] < 0.0;
  if (beyond1 && beyond2) {
    return squared_distance_to_corner(x, pt3, pt1, pt3, pt3, pt2);
  }
  if (beyond2 && beyond3) {
    return squared_distance_to_corner(x, pt1, pt1, pt3, pt1, pt2);
  }
  if (beyond1 && beyond3) {
    return squared_distance_to_corner(x, pt2, pt2, pt3, pt1, pt2);
  }
  if (beyond1) {
    return squared_distance_to_segment(x, pt2, pt3);
  }
  if (beyond2) {
    return squared_distance_to_segment(x, pt1, pt3);
  }
  return beyond3 ? squared_distance_to_segment(x, pt1, pt2) : std::numeric_limits<double>::quiet_NaN();
}

// ---------------------------------------------------------------------------------------------------------
// Quadrilateral

/// What the test of one triangle left behind.
struct Hit
{
  bool is_hit;
  double t;
  double x[3];
  double pcoords[3];
  double dist2;
};

Hit hit_of(const Triangle& triangle, double* p1, double* p2, double tol)
{
  // A hit without a distance is one that goes through the triangle: none is nearer.
  Hit hit = {};
  hit.is_hit = MRPickUtil::IntersectTriangleWithLine(triangle.pt1, triangle.pt2, triangle.pt3, p1, p2, tol,
                                                     hit.t, hit.x, hit.pcoords, hit.dist2) != 0;
  return hit;
}

void map_first_half(double* pcoords)
{
  pcoords[0] += pcoords[1];
}

void map_second_half(double* pcoords)
{
  pcoords[0] = 1.0 - (pcoords[0] + pcoords[1]);
  pcoords[1] = 1.0 - pcoords[1];
}

/// Null when neither is one.
const Hit* better_of(const Hit& first, const Hit& second)
{
  if (first.is_hit && (!second.is_hit || second.dist2 > first.dist2)) {
    return &first;
  }
  return second.is_hit ? &second : nullptr;
}

// ---------------------------------------------------------------------------------------------------------
// Boxes on the screen

/// Corner `index` of the bounds: its bit 0 chooses the side in x, bit 1 that in y, bit 2 that in z.
BrantVector corner_on_screen(const double* bounds, int index, vtkMatrix4x4* matrix, const int* size,
                             const double* viewport)
{
  const double corner[4] = {bounds[index & 1], bounds[2 + (index >> 1 & 1)], bounds[4 + (index >> 2)], 1.0};
  double view[4];
  matrix->MultiplyPoint(corner, view);
  const double flat[2] = {view[0] / view[3], view[1] / view[3]};
  double display[2];
  MRPickUtil::view_to_display(flat, display, size, viewport);
  return {display[0], display[1], 0.0};
}

BrantBox whole_plane()
{
  constexpr double infinity = std::numeric_limits<double>::infinity();
  return {BrantVector(-infinity, -infinity, 0.0), BrantVector(infinity, infinity, 0.0)};
}

} // namespace

double DistanceToLine(double* x, double* p1, double* p2, double& t, double* closest)
{
  const BrantVector d = way_between(p1, p2);
  const double num = way_between(p1, x).dot(d);
  const double denom = d.length_squared();
  const double* end = p1;
  if (!morrow::is_degenerate_segment(denom, num)) {
    t = num / denom;
    end = t < 0.0 ? p1 : t > 1.0 ? p2 : nullptr;
  }
  if (end) {
    std::copy_n(end, 3, closest);
  } else {
    write_point_at(p1, t, d, closest);
  }
  return MRPickUtil::DistanceBetweenPoints(closest, x);
}

namespace MRPickUtil {

double Dot(const double* a, const double* b)
{
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

double DistanceBetweenPoints(const double* a, const double* b)
{
  return way_between(b, a).length_squared();
}

bool IntersectLineWithLine(double* p1, double* p2, double* q1, double* q2, double tol, double& u,
                           double* closest, double& v, double& dist2)
{
  v = 0.0;
  u = 0.0;
  const BrantVector d1 = way_between(p1, p2);
  const BrantVector d2 = way_between(q1, q2);
  const BrantVector w = way_between(p1, q1);
  const double a = d1.length_squared();
  const double b = d1.dot(d2);
  const double c = d2.length_squared();
  const double D = a * c - b * b;
  if (D != 0.0) {
    u = (c * w.dot(d1) - b * w.dot(d2)) / D;
    v = (b * w.dot(d1) - a * w.dot(d2)) / D;
  }
  if (!is_in_unit_range(u) || !is_in_unit_range(v)) {
    // The order of these tests decides; each writes the other parameter as well.
    if (u < 0.0) {
      u = 0.0;
      dist2 = DistanceToLine(p1, q1, q2, v, closest);
    } else if (u > 1.0) {
      u = 1.0;
      dist2 = DistanceToLine(p2, q1, q2, v, closest);
    } else if (v < 0.0) {
      v = 0.0;
      dist2 = DistanceToLine(q1, p1, p2, u, closest);
    } else if (v > 1.0) {
      v = 1.0;
      dist2 = DistanceToLine(q2, p1, p2, u, closest);
    } else {
      return false; // not a number
    }
    return tol * tol >= dist2;
  }
  double on_p[3];
  write_point_at(p1, u, d1, on_p);
  write_point_at(q1, v, d2, closest);
  dist2 = DistanceBetweenPoints(closest, on_p);
  return tol * tol >= dist2;
}

int IntersectTriangleWithLine(double* pt1, double* pt2, double* pt3, double* p1, double* p2, double tol,
                              double& t, double* x, double* pcoords, double& dist2)
{
  const Triangle triangle = {pt1, pt2, pt3};
  if (!meets_plane(triangle, p1, p2, t, x)) {
    clear(pcoords);
    return 0;
  }
  const BrantVector normal = normal_of(triangle);
  const BrantVector nearest = projected(x, pt1, normal);
  if (!weights_at(triangle, normal, nearest, pcoords)) {
    clear(pcoords);
    return meets_edges(triangle, p1, p2, tol, t, x, pcoords, dist2);
  }
  const bool is_inside = std::all_of(pcoords, pcoords + 3, is_in_unit_range);
  const double d =
      is_inside ? DistanceBetweenPoints(nearest.data(), x) : squared_distance_beside(triangle, x, pcoords);
  if (d <= tol * tol) {
    pcoords[2] = 0.0;
    dist2 = d;
    return 1;
  }
  return is_inside ? 1 : 0; // within the triangle whatever d is; dist2 stays as it was
}

bool IntersectQuadWithLine(double* pt1, double* pt2, double* pt3, double* pt4, double* p1, double* p2,
                           double tol, double& t, double* x, double* pcoords, double& dist2)
{
  const bool is_split_13 = DistanceBetweenPoints(pt1, pt3) < DistanceBetweenPoints(pt2, pt4);
  Hit first = hit_of(is_split_13 ? Triangle{pt1, pt2, pt3} : Triangle{pt1, pt2, pt4}, p1, p2, tol);
  // From pt1, not from p1, in the other split: deliberate.
  Hit second = is_split_13 ? hit_of({pt3, pt4, pt1}, p1, p2, tol) : hit_of({pt3, pt4, pt2}, pt1, p2, tol);
  if (is_split_13) {
    map_first_half(first.pcoords);
    map_second_half(second.pcoords);
  }
  const Hit* hit = better_of(first, second);
  if (!hit) {
    return false;
  }
  t = hit->t;
  std::copy_n(hit->x, 3, x);
  std::copy_n(hit->pcoords, 3, pcoords);
  dist2 = hit->dist2;
  return true;
}

bool does_line_intersect_line(const double* a1, const double* a2, const double* b1, const double* b2)
{
  return morrow::segments_cross(a1, a2, b1, b2);
}

bool is_point_in_triangle(const double* p, const double* A, const double* B, const double* C)
{
  return morrow::point_in_triangle(p, A, B, C);
}

void view_to_display(const double* view, double* display, const int* size, const double* viewport)
{
  for (int axis = 0; axis < 2; ++axis) {
    const double length = size[axis];
    display[axis] =
        viewport[axis] * length + (viewport[axis + 2] - viewport[axis]) * length * (view[axis] + 1.0) * 0.5;
  }
}

BrantBox convert_world_bbox_to_display_bbox(const double* bounds, vtkMatrix4x4* matrix, vtkRenderer* renderer)
{
  vtkRenderWindow* window = renderer ? renderer->GetRenderWindow() : nullptr;
  BrantBox box;
  if (!bounds || !matrix || !window) {
    box.reset(BrantVector());
    return box;
  }
  const int* size = window->GetSize();
  const double* viewport = renderer->GetViewport();
  for (int index = 0; index < 8; ++index) {
    box |= corner_on_screen(bounds, index, matrix, size, viewport);
  }
  return box.is_empty() ? whole_plane() : box;
}

} // namespace MRPickUtil
