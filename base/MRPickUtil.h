// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "BrantBox.h" // returned by value

#include "morrow_base_export.h"

class vtkMatrix4x4;
class vtkRenderer;

/// The squared distance from the point `x` to the segment p1-p2, in three dimensions.
///
/// d = p2 - p1, num = (x - p1)·d, denom = d·d. The segment counts as a point when denom <= 0 or denom <
/// |1e-5 × num|, that is when it is far shorter than x is away: then p1 is the closest point and **`t` is not
/// written**, so set it before the call if you read it after. Otherwise t = num / denom is written as it is,
/// also outside [0, 1], and the closest point is p1 for t < 0, p2 for t > 1 and p1 + t × d else.
///
/// @param x, p1, p2  3 doubles each, only read
/// @param t          the unclamped parameter on the segment; see above
/// @param closest    3 doubles, always written; may be the array of no other argument
/// @return           |closest - x|², **squared**; NaN when a coordinate is
MORROW_BASE_EXPORT double DistanceToLine(double* x, double* p1, double* p2, double& t, double* closest);

/// The geometry of picking: segments, triangles and quadrilaterals against a segment, two tests in the plane,
/// and the way from the view to the screen.
///
/// Every function is stateless, allocates nothing, and is defined for every double: an infinity or a NaN
/// gives an answer by the rules of IEEE, never a trap. Arrays hold 3 doubles for a point in space and 2 for
/// one in the plane, are read only unless they are named as results, and may be null nowhere but where that
/// is written. A tolerance is a distance in the unit of the points; it is squared before use, so its sign
/// does not matter; NaN never accepts anything.
///
/// The oddities noted here are part of what callers rely on: they decide which of several entities is picked.
namespace MRPickUtil {

/// a·b of two 3-vectors, summed in the order x, y, z.
[[nodiscard]] MORROW_BASE_EXPORT double Dot(const double* a, const double* b);

/// The **squared** distance of two 3-points, despite the name.
[[nodiscard]] MORROW_BASE_EXPORT double DistanceBetweenPoints(const double* a, const double* b);

/// Do the segments P = p1-p2 and Q = q1-q2 pass each other within `tol`? True when tol² >= dist2.
///
/// - u and v are set to 0 first, then to the parameters of the closest approach of the two lines, on P and on
///   Q. When both lie in [0, 1], `closest` is the point q1 + v × (q2 - q1) **on Q** and dist2 its squared
///   distance from p1 + u × (p2 - p1).
/// - Parallel segments (the determinant is exactly 0) keep u = v = 0: only the distance of p1 from q1 is
///   measured, even where the segments come nearer elsewhere.
/// - Otherwise the first of u < 0, u > 1, v < 0, v > 1 decides: that parameter becomes 0 or 1, and that end
///   of its segment is measured by DistanceToLine against the other segment. `closest` then lies **on that
///   other segment**, and the other parameter is the unclamped one of DistanceToLine, or stays as it was when
///   that writes none.
/// - A NaN among the parameters that is not overruled by these gives false; closest and dist2 are then **not
///   written**.
///
/// @param closest  3 doubles
/// @param dist2    the squared distance that was compared
MORROW_BASE_EXPORT bool IntersectLineWithLine(double* p1, double* p2, double* q1, double* q2, double tol,
                                              double& u, double* closest, double& v, double& dist2);

/// Does the segment p1-p2 hit the triangle, or pass its border within `tol`? 1 or 0.
///
/// With n the unit normal, the plane is met at t = (n·pt1 - n·p1) / (n·(p2 - p1)), both ends of the segment
/// included. What is written then:
///
/// - Parallel to the plane or within it, |denominator| <= 1e-6 × |numerator|: t = the largest double and
///   pcoords = (0, 0, 0); x and dist2 are **not written**. 0.
/// - Else t, and x = p1 + t × (p2 - p1).
/// - t < 0 or t > 1, or a triangle without area: pcoords = (0, 0, 0); dist2 is **not written**. 0.
/// - Else pcoords = (a, b, 1 - a - b): the weights of pt1, pt2 and pt3 at the projection of x onto the
///   triangle's plane. With all three in [0, 1], x is inside and d is its squared distance from that
///   projection, which is rounding only; otherwise d is its squared distance from the nearest part of the
///   border.
///   - d <= tol²: pcoords[2] = 0 and dist2 = d. 1.
///   - d > tol²: dist2 is **not written**. 1 inside, whatever d is; 0 outside. Weights that are not numbers
///     count as this far outside.
///
/// @param t        the parameter on the segment
/// @param x        3 doubles: where the segment meets the plane
/// @param pcoords  3 doubles
/// @param dist2    squared; set it before the call if you read it after
MORROW_BASE_EXPORT int IntersectTriangleWithLine(double* pt1, double* pt2, double* pt3, double* p1,
                                                 double* p2, double tol, double& t, double* x,
                                                 double* pcoords, double& dist2);

/// Does the segment p1-p2 hit the quadrilateral, whose corners are given in order round it?
///
/// It is split along its shorter diagonal into two triangles, each tested by IntersectTriangleWithLine with
/// the same tolerance:
///
/// - |pt1 - pt3| < |pt2 - pt4|: (pt1, pt2, pt3), whose first two coordinates become (a + b, b), and
///   (pt3, pt4, pt1), whose first two become (1 - (a + b), 1 - b); both against p1-p2.
/// - otherwise: (pt1, pt2, pt4) against p1-p2, and (pt3, pt4, pt2) against the segment **from pt1** to p2,
///   not from p1; the coordinates stay as the triangle test leaves them.
///
/// When both are hit, the first one's results count only if the second's dist2 is strictly greater. A
/// triangle that is hit without a dist2 (see there) counts with 0: the segment goes through it.
///
/// Returns whether one was hit. t, x, pcoords and dist2 (squared) are that triangle's results; without a hit
/// **none of them is written**.
MORROW_BASE_EXPORT bool IntersectQuadWithLine(double* pt1, double* pt2, double* pt3, double* pt4, double* p1,
                                              double* p2, double tol, double& t, double* x, double* pcoords,
                                              double& dist2);

/// Do two segments in the plane cross? Their ends count: both parameters must lie in [0, 1]. Parallel
/// segments (the denominator is exactly 0) never cross, so two that overlap on one line do not; nor does one
/// whose ends are the same point. Only x and y are read.
[[nodiscard]] MORROW_BASE_EXPORT bool does_line_intersect_line(const double* a1, const double* a2,
                                                               const double* b1, const double* b2);

/// Does the point p lie in the triangle A, B, C of the plane? True when (A - p) × (B - p) > 0,
/// (B - p) × (C - p) > 0 and (C - p) × (A - p) > 0 are each the same as (B - A) × (C - B) > 0.
///
/// So a point **on an edge lies inside a clockwise triangle and outside a counter-clockwise one**. A triangle
/// without area counts as clockwise: it holds the points of its line, which may reach beyond its corners, and
/// one whose three corners coincide holds every point. A NaN is above 0 in none of these comparisons: a
/// triangle with one counts as clockwise, with no point beyond the sides that have one, and a point with one
/// lies in every clockwise triangle. Only x and y are read.
[[nodiscard]] MORROW_BASE_EXPORT bool is_point_in_triangle(const double* p, const double* A, const double* B,
                                                           const double* C);

/// From normalised view coordinates to pixels, origin at the window's lower left corner:
/// display = viewport minimum × size + (viewport extent) × size × (view + 1) × 0.5, for x and for y. Nothing
/// is clamped.
///
/// @param view      x, y; -1 and 1 are the viewport's sides
/// @param display   x, y, written; may be `view` itself
/// @param size      2 ints: the window's width and height in pixels
/// @param viewport  4 doubles: xmin, ymin, xmax, ymax as fractions of the window
MORROW_BASE_EXPORT void view_to_display(const double* view, double* display, const int* size,
                                        const double* viewport);

/// The box in pixels that holds the eight corners of a world box: each corner goes through the matrix, is
/// divided by its w and mapped by view_to_display; z is 0. The box is a bound of what is shown only while the
/// whole box lies in front of the eye: corners behind it (w < 0) are mirrored.
///
/// **Never an empty box.** A corner with w = 0 lies at infinity (x and y ±∞) and makes the box reach there,
/// which all tests of boxes can take; a corner whose x or y is no number at all (0/0, or a NaN in the input)
/// is left out. When none remains, nothing is known, and the box holds the whole plane: minimum (-∞, -∞, 0),
/// maximum (∞, ∞, 0). Without bounds, a matrix, a renderer or its window nothing is shown, and the box is the
/// point (0, 0, 0).
///
/// @param bounds    6 doubles: xmin, xmax, ymin, ymax, zmin, zmax; used as given, also when inverted
/// @param matrix    from world to view coordinates
/// @param renderer  its viewport and its window's size are used; nothing is rendered
[[nodiscard]] MORROW_BASE_EXPORT BrantBox convert_world_bbox_to_display_bbox(const double* bounds,
                                                                             vtkMatrix4x4* matrix,
                                                                             vtkRenderer* renderer);

} // namespace MRPickUtil
