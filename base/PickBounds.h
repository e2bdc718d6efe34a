// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <memory>
#include <vector>

#include "BrantBox.h" // by value

#include "morrow_base_export.h"

namespace morrow {
class PolygonGrid;
class RegionFilter;
} // namespace morrow

/// A region of the screen that a box, polygon or circle pick sweeps. The picker projects the scene to the
/// screen and asks the region what it touches. A host may derive regions of its own; the picker then asks
/// nothing but these four questions, in no particular order and as often as it likes.
///
/// All coordinates are display coordinates: pixels, origin at the window's lower left corner. Of a point, 3
/// doubles, only x and y are read. Every question is answered for every double; NaN touches nothing unless it
/// is said otherwise: a triangle with a corner that is no number holds what its other side does not exclude,
/// as told at `MRPickUtil::is_point_in_triangle`, and with more than one such corner it touches everything.
/// No answer throws, but where it is said so. Regions are plain values: they may be copied, and hold no
/// pointer to anything outside.
class MORROW_BASE_EXPORT PickBounds
{
public:
  virtual ~PickBounds() = default;

  /// Does the point lie in the region?
  [[nodiscard]] virtual bool intersects_with_point(const double* p) const = 0;

  /// Does the segment p1-p2 touch the region?
  [[nodiscard]] virtual bool intersects_with_line(const double* p1, const double* p2) const = 0;

  /// Does the filled triangle a, b, c touch the region?
  [[nodiscard]] virtual bool intersects_with_triangle(const double* a, const double* b,
                                                      const double* c) const = 0;

  /// May something in the box touch the region? A quick question, asked first: true may be wrong. The region
  /// lies in the plane z = 0, and a box that does not reach it is not touched. An empty box touches nothing.
  [[nodiscard]] virtual bool intersects_with_bbox(const BrantBox& box) const = 0;

protected:
  PickBounds() = default;
  PickBounds(const PickBounds&) = default;
  PickBounds& operator=(const PickBounds&) = default;
};

/// A rectangle with sides along the axes.
///
/// - point: xmin <= x <= xmax and ymin <= y <= ymax.
/// - segment: one of its ends is inside, or it crosses one of the sides left, bottom, right, top by
///   `MRPickUtil::does_line_intersect_line`. One that runs along a side is thus found by its ends only.
/// - triangle: a is inside, or an edge (a, b), (b, c), (c, a) touches the box, or the corner (xmin, ymin)
///   lies in the triangle by `MRPickUtil::is_point_in_triangle`.
/// - box: it overlaps `box`; touching counts.
///
/// Segment and triangle ask through the virtual functions, so that a derived class which answers for points
/// changes them too.
class MORROW_BASE_EXPORT PickBox : public PickBounds
{
public:
  /// The single point (0, 0).
  PickBox();

  /// b: 4 doubles, xmin, ymin, xmax, ymax, which are stored unchanged: the caller orders the corners. A box
  /// with swapped corners holds no point, while its sides can still be crossed and `box` is the ordered one;
  /// a NaN likewise is stored, and leaves `box` at the other corner, or empty. Null changes nothing.
  void set_box(double* b);

  [[nodiscard]] bool intersects_with_point(const double* p) const override;
  [[nodiscard]] bool intersects_with_line(const double* p1, const double* p2) const override;
  [[nodiscard]] bool intersects_with_triangle(const double* a, const double* b,
                                              const double* c) const override;
  [[nodiscard]] bool intersects_with_bbox(const BrantBox& box) const override;

  double xmin = 0.0;
  double ymin = 0.0;
  double xmax = 0.0;
  double ymax = 0.0;
  /// From (xmin, ymin, 0) to (xmax, ymax, 0). Written by set_box only.
  BrantBox box;
};

/// A lasso: a closed polygon, which may be concave, cross itself, and run either way round; what an odd
/// number of windings surrounds is inside.
///
/// - point: it lies in one of the triangles by `MRPickUtil::is_point_in_triangle`. Points on the border or on
///   a line where two triangles meet are therefore inside when the triangles are clockwise and outside when
///   they are not, and so is a point that is no number.
/// - segment: one of its ends is inside, or it crosses a boundary edge by
///   `MRPickUtil::does_line_intersect_line`.
/// - triangle: a is inside, or an edge (a, b), (b, c), (c, a) touches the polygon, or the polygon's first
///   vertex lies in the triangle. Fewer than three vertices touch no triangle.
/// - box: it overlaps `bbox`, not the outline: one in a notch counts.
///
/// Segment and triangle ask through the virtual functions. The answers are those of trying all triangles and
/// edges in turn, bit for bit; the first question builds a grid that names the few that matter at a place, in
/// less than a millisecond for a lasso drawn by hand, so that the time of a question hardly depends on the
/// number of vertices. That first question may throw std::bad_alloc. Where the arrays were changed by hand, a
/// triangle or edge that names a vertex which is not there is left out.
class MORROW_BASE_EXPORT PickPolygon : public PickBounds
{
public:
  /// The empty polygon, which touches nothing.
  PickPolygon();
  PickPolygon(const PickPolygon&);
  PickPolygon(PickPolygon&&) noexcept;
  PickPolygon& operator=(const PickPolygon&);
  PickPolygon& operator=(PickPolygon&&) noexcept;
  ~PickPolygon() override;

  /// pts: n points x, y in the order of the ring, not closed; they are copied. Fewer than three, n <= 0 and
  /// null included, make a polygon without triangles, which touches nothing but boxes. A coordinate that is
  /// not finite gives the error message of `MRUtil::triangulate_polygon` and no triangles. The work grows
  /// with n and with the number of crossings, which is up to n²/2. May throw std::bad_alloc; what the print
  /// function throws comes out when the polygon is set.
  void set_polygon(int n, const double (*pts)[2]);

  /// Sets `bbox` around all of `points`; called by set_polygon. Fewer than 2 values in `points` leave it as
  /// it is, so that an empty polygon keeps the box of the one before; with fewer than 6 it is the first
  /// vertex, and what is left over at the end is ignored. Whoever changes the arrays by hand
  /// calls this afterwards: until then the questions may be answered by what was there before.
  void createBoundingBox();

  [[nodiscard]] bool intersects_with_point(const double* p) const override;
  [[nodiscard]] bool intersects_with_line(const double* p1, const double* p2) const override;
  [[nodiscard]] bool intersects_with_triangle(const double* a, const double* b,
                                              const double* c) const override;
  [[nodiscard]] bool intersects_with_bbox(const BrantBox& box) const override;

  /// Three doubles for each vertex, x, y, 0: first the n points of the ring, then those where it crosses
  /// itself.
  std::vector<double> points;
  /// Three indices of vertices for each triangle.
  std::vector<int> triangles;
  /// Two indices of vertices, start and end, for each boundary edge.
  std::vector<int> edges;
  /// Around the vertices; empty at first.
  BrantBox bbox;

private:
  friend class morrow::RegionFilter;

  const morrow::PolygonGrid& grid() const;

  mutable std::shared_ptr<const morrow::PolygonGrid> mGrid; // made by the first question, shared by copies
};

/// A disc. With D the squared distance from the centre:
///
/// - point: radius² >= D.
/// - segment: **radius** >= D of the segment's point that is closest by the rule of `DistanceToLine`, in the
///   plane. The radius is not squared here: for radii above 1 pixel a segment must come within the root of
///   the radius, nearer than a point; for radii below 1 it may be farther away. Its ends are not asked as
///   points.
/// - triangle: a is inside as a point, or an edge (a, b), (b, c), (c, a) touches the circle as a segment, or
///   the centre lies in the triangle by `MRPickUtil::is_point_in_triangle`.
/// - box: radius >= the true distance of the box.
///
/// Triangle asks through the virtual functions. A negative radius holds the points of the positive one and
/// touches no segment and no box; NaN touches nothing but triangles around the centre.
class MORROW_BASE_EXPORT PickCircle : public PickBounds
{
public:
  /// Centre (0, 0), radius 0.
  PickCircle() = default;

  /// center: 2 doubles, pixels; null changes nothing. radius: pixels, stored unchanged.
  void set_circle(const double* center, double radius);

  [[nodiscard]] bool intersects_with_point(const double* p) const override;
  [[nodiscard]] bool intersects_with_line(const double* p1, const double* p2) const override;
  [[nodiscard]] bool intersects_with_triangle(const double* a, const double* b,
                                              const double* c) const override;
  [[nodiscard]] bool intersects_with_bbox(const BrantBox& box) const override;

  double center_x = 0.0;
  double center_y = 0.0;
  double radius = 0.0;
};
