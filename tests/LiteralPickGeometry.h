// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cfloat>
#include <cmath>

/// The pick geometry as its rules read, step by step and without any sharing: what the library's functions
/// are compared with, value for value. What a rule does not write is not written here either.
namespace morrow_test::literal {

inline double dot(const double* a, const double* b)
{
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

inline double distance2(const double* a, const double* b)
{
  return (a[0] - b[0]) * (a[0] - b[0]) + (a[1] - b[1]) * (a[1] - b[1]) + (a[2] - b[2]) * (a[2] - b[2]);
}

inline void subtract(const double* a, const double* b, double* c)
{
  c[0] = a[0] - b[0];
  c[1] = a[1] - b[1];
  c[2] = a[2] - b[2];
}

inline void cross(const double* a, const double* b, double* c)
{
  c[0] = a[1] * b[2] - a[2] * b[1];
  c[1] = a[2] * b[0] - a[0] * b[2];
  c[2] = a[0] * b[1] - a[1] * b[0];
}

inline double distance_to_line(const double* x, const double* p1, const double* p2, double& t,
                               double* closest)
{
  double d[3];
  double to_x[3];
  subtract(p2, p1, d);
  subtract(x, p1, to_x);
  const double num = dot(to_x, d);
  const double denom = dot(d, d);
  const double tolerance = std::fabs(1e-5 * num);
  if (denom <= 0.0 || (-tolerance < denom && denom < tolerance)) {
    for (int i = 0; i < 3; ++i) {
      closest[i] = p1[i];
    }
    return distance2(closest, x);
  }
  t = num / denom;
  for (int i = 0; i < 3; ++i) {
    if (t < 0.0) {
      closest[i] = p1[i];
    } else if (t > 1.0) {
      closest[i] = p2[i];
    } else {
      closest[i] = p1[i] + t * d[i];
    }
  }
  return distance2(closest, x);
}

inline bool line_with_line(const double* p1, const double* p2, const double* q1, const double* q2, double tol,
                           double& u, double* closest, double& v, double& dist2)
{
  v = 0.0;
  u = 0.0;
  double d1[3];
  double d2[3];
  double w[3];
  subtract(p2, p1, d1);
  subtract(q2, q1, d2);
  subtract(q1, p1, w);
  const double a = dot(d1, d1);
  const double b = dot(d1, d2);
  const double c = dot(d2, d2);
  const double D = a * c - b * b;
  if (!(D == 0.0)) {
    u = (c * dot(w, d1) - b * dot(w, d2)) / D;
    v = (b * dot(w, d1) - a * dot(w, d2)) / D;
    if (!(u >= 0.0 && u <= 1.0 && v >= 0.0 && v <= 1.0)) {
      if (u < 0.0) {
        u = 0.0;
        dist2 = distance_to_line(p1, q1, q2, v, closest);
        return tol * tol >= dist2;
      }
      if (u > 1.0) {
        u = 1.0;
        dist2 = distance_to_line(p2, q1, q2, v, closest);
        return tol * tol >= dist2;
      }
      if (v < 0.0) {
        v = 0.0;
        dist2 = distance_to_line(q1, p1, p2, u, closest);
        return tol * tol >= dist2;
      }
      if (v > 1.0) {
        v = 1.0;
        dist2 = distance_to_line(q2, p1, p2, u, closest);
        return tol * tol >= dist2;
      }
      return false;
    }
  }
  double on_p[3];
  for (int i = 0; i < 3; ++i) {
    closest[i] = q1[i] + v * d2[i];
    on_p[i] = p1[i] + u * d1[i];
  }
  dist2 = distance2(closest, on_p);
  return tol * tol >= dist2;
}

/// Step 6 of the triangle for a point outside: NaN when no sign says where.
inline double outside_distance2(const double* x, const double* pt1, const double* pt2, const double* pt3,
                                const double* pcoords)
{
  double t = 0.0;
  double c[3];
  const auto smallest = [](double a, double b, double d) {
    double least = a;
    if (b < least) {
      least = b;
    }
    if (d < least) {
      least = d;
    }
    return least;
  };
  if (pcoords[0] < 0.0 && pcoords[1] < 0.0) {
    return smallest(distance2(x, pt3), distance_to_line(x, pt1, pt3, t, c),
                    distance_to_line(x, pt3, pt2, t, c));
  }
  if (pcoords[1] < 0.0 && pcoords[2] < 0.0) {
    return smallest(distance2(x, pt1), distance_to_line(x, pt1, pt3, t, c),
                    distance_to_line(x, pt1, pt2, t, c));
  }
  if (pcoords[0] < 0.0 && pcoords[2] < 0.0) {
    return smallest(distance2(x, pt2), distance_to_line(x, pt2, pt3, t, c),
                    distance_to_line(x, pt1, pt2, t, c));
  }
  if (pcoords[0] < 0.0) {
    return distance_to_line(x, pt2, pt3, t, c);
  }
  if (pcoords[1] < 0.0) {
    return distance_to_line(x, pt1, pt3, t, c);
  }
  if (pcoords[2] < 0.0) {
    return distance_to_line(x, pt1, pt2, t, c);
  }
  return std::nan("");
}

/// The weights of the corners at cp, in the plane without the longest axis of m; false where the triangle has
/// no area.
inline bool weights_at(const double* cp, const double* pt1, const double* pt2, const double* pt3,
                       const double* m, double* pcoords)
{
  const double m0 = std::isnan(m[0]) ? 0.0 : std::fabs(m[0]);
  const double m1 = std::isnan(m[1]) ? 0.0 : std::fabs(m[1]);
  const double m2 = std::isnan(m[2]) ? 0.0 : std::fabs(m[2]);
  int i = 1; // the kept axes
  int j = 2;
  if (m1 > m0 && m1 >= m2) {
    i = 0;
  } else if (m2 > m0 && m2 > m1) {
    i = 0;
    j = 1;
  }
  const double c1i = pt1[i] - pt3[i];
  const double c1j = pt1[j] - pt3[j];
  const double c2i = pt2[i] - pt3[i];
  const double c2j = pt2[j] - pt3[j];
  const double ri = cp[i] - pt3[i];
  const double rj = cp[j] - pt3[j];
  const double det = c1i * c2j - c2i * c1j;
  if (det == 0.0) {
    return false;
  }
  pcoords[0] = (ri * c2j - c2i * rj) / det;
  pcoords[1] = (c1i * rj - ri * c1j) / det;
  pcoords[2] = 1.0 - pcoords[0] - pcoords[1];
  return true;
}

inline int triangle_with_line(const double* pt1, const double* pt2, const double* pt3, const double* p1,
                              const double* p2, double tol, double& t, double* x, double* pcoords,
                              double& dist2)
{
  double e1[3];
  double e2[3];
  double m[3];
  subtract(pt3, pt2, e1);
  subtract(pt1, pt2, e2);
  cross(e1, e2, m);
  double n[3] = {m[0], m[1], m[2]};
  const double length = std::sqrt(dot(n, n));
  if (length != 0.0) {
    n[0] /= length;
    n[1] /= length;
    n[2] /= length;
  }
  double d[3];
  subtract(p2, p1, d);
  const double num = dot(n, pt1) - dot(n, p1);
  const double den = dot(n, d);
  pcoords[0] = pcoords[1] = pcoords[2] = 0.0;
  if (std::fabs(den) <= 1e-6 * std::fabs(num)) {
    t = DBL_MAX;
    return 0;
  }
  t = num / den;
  for (int i = 0; i < 3; ++i) {
    x[i] = p1[i] + t * d[i];
  }
  if (t < 0.0 || t > 1.0) {
    return 0;
  }
  double cp[3] = {x[0], x[1], x[2]};
  const double mm = dot(m, m);
  if (mm != 0.0) {
    double from[3];
    subtract(x, pt1, from);
    const double s = dot(from, m);
    for (int i = 0; i < 3; ++i) {
      cp[i] = x[i] - m[i] * s / mm;
    }
  }
  if (!weights_at(cp, pt1, pt2, pt3, m, pcoords)) {
    return 0; // the coordinates are clear: no edge is tested
  }
  int status = 0;
  double distance = 0.0;
  if (pcoords[0] >= 0.0 && pcoords[0] <= 1.0 && pcoords[1] >= 0.0 && pcoords[1] <= 1.0 && pcoords[2] >= 0.0 &&
      pcoords[2] <= 1.0) {
    status = 1;
    distance = distance2(cp, x);
  } else {
    distance = outside_distance2(x, pt1, pt2, pt3, pcoords);
  }
  if (distance <= tol * tol) {
    pcoords[2] = 0.0;
    dist2 = distance;
    return 1;
  }
  return status;
}

inline bool quad_with_line(const double* pt1, const double* pt2, const double* pt3, const double* pt4,
                           const double* p1, const double* p2, double tol, double& t, double* x,
                           double* pcoords, double& dist2)
{
  double ta = 0.0;
  double tb = 0.0;
  double xa[3];
  double xb[3];
  double ca[3];
  double cb[3];
  double da = 0.0; // the library's own choice where the triangle's test writes none
  double db = 0.0;
  int hit_a = 0;
  int hit_b = 0;
  if (distance2(pt1, pt3) < distance2(pt2, pt4)) {
    hit_a = triangle_with_line(pt1, pt2, pt3, p1, p2, tol, ta, xa, ca, da);
    if (hit_a == 1) {
      ca[0] += ca[1];
    }
    hit_b = triangle_with_line(pt3, pt4, pt1, p1, p2, tol, tb, xb, cb, db);
    if (hit_b == 1) {
      cb[0] = 1.0 - (cb[0] + cb[1]);
      cb[1] = 1.0 - cb[1];
    }
  } else {
    hit_a = triangle_with_line(pt1, pt2, pt4, p1, p2, tol, ta, xa, ca, da);
    hit_b = triangle_with_line(pt3, pt4, pt2, pt1, p2, tol, tb, xb, cb, db);
  }
  if (hit_a == 0 && hit_b == 0) {
    return false;
  }
  bool take_a = hit_a == 1;
  if (hit_a == 1 && hit_b == 1) {
    take_a = db > da;
  }
  t = take_a ? ta : tb;
  dist2 = take_a ? da : db;
  for (int i = 0; i < 3; ++i) {
    x[i] = take_a ? xa[i] : xb[i];
    pcoords[i] = take_a ? ca[i] : cb[i];
  }
  return true;
}

inline bool line_intersects_line(const double* a1, const double* a2, const double* b1, const double* b2)
{
  const double d1x = a2[0] - a1[0];
  const double d1y = a2[1] - a1[1];
  const double d2x = b2[0] - b1[0];
  const double d2y = b2[1] - b1[1];
  const double den = d2y * d1x - d2x * d1y;
  if (den == 0.0) {
    return false;
  }
  const double ua = (d2x * (a1[1] - b1[1]) - d2y * (a1[0] - b1[0])) / den;
  if (ua > 1.0 || ua < 0.0) {
    return false;
  }
  const double ub = (d1x * (a1[1] - b1[1]) - d1y * (a1[0] - b1[0])) / den;
  return 0.0 <= ub && ub <= 1.0;
}

inline double cross_2d(double ux, double uy, double vx, double vy)
{
  return ux * vy - uy * vx;
}

inline bool point_in_triangle(const double* p, const double* a, const double* b, const double* c)
{
  const bool o = cross_2d(b[0] - a[0], b[1] - a[1], c[0] - b[0], c[1] - b[1]) > 0.0;
  const bool s1 = cross_2d(a[0] - p[0], a[1] - p[1], b[0] - p[0], b[1] - p[1]) > 0.0;
  if (s1 != o) {
    return false;
  }
  const bool s2 = cross_2d(b[0] - p[0], b[1] - p[1], c[0] - p[0], c[1] - p[1]) > 0.0;
  if (s2 != o) {
    return false;
  }
  const bool s3 = cross_2d(c[0] - p[0], c[1] - p[1], a[0] - p[0], a[1] - p[1]) > 0.0;
  return s3 == o;
}

} // namespace morrow_test::literal
