// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "LiteralPickBounds.h"
#include "MRUtil.h"
#include "PickInputs.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

namespace morrow_test {

/// A ring of points x, y.
using Ring = std::vector<std::array<double, 2>>;

/// A lasso as a hand draws it: round (300, 250), its radius going up and down, in whole pixels.
inline Ring hand_drawn(std::size_t count, bool clockwise = false)
{
  Ring ring;
  for (std::size_t i = 0; i < count; ++i) {
    const double turn = 2.0 * 3.14159265358979323846 * static_cast<double>(i) / static_cast<double>(count);
    const double radius = 150.0 + 60.0 * std::sin(5.0 * turn);
    const double angle = clockwise ? -turn : turn;
    ring.push_back(
        {std::round(300.0 + radius * std::cos(angle)), std::round(250.0 + radius * std::sin(angle))});
  }
  return ring;
}

/// Anything: it crosses itself about count² / 6 times.
inline Ring random_ring(std::size_t count, PickInputs& inputs)
{
  Ring ring;
  for (std::size_t i = 0; i < count; ++i) {
    ring.push_back({inputs.between(0.0, 500.0), inputs.between(0.0, 500.0)});
  }
  return ring;
}

/// On a coarse lattice: collinear runs, edges on top of each other, equal points.
inline Ring lattice_ring(std::size_t count, PickInputs& inputs)
{
  Ring ring;
  for (std::size_t i = 0; i < count; ++i) {
    ring.push_back({50.0 * inputs.below(8), 50.0 * inputs.below(8)});
  }
  return ring;
}

/// The same in another place and size.
inline Ring moved(Ring ring, double scale, double dx, double dy)
{
  for (auto& point : ring) {
    point = {point[0] * scale + dx, point[1] * scale + dy};
  }
  return ring;
}

struct Triangulation
{
  std::vector<double> points;
  std::vector<int> triangles;
  std::vector<int> edges;

  explicit Triangulation(const Ring& ring)
  {
    std::vector<std::array<double, 3>> flat;
    for (const auto& point : ring) {
      flat.push_back({point[0], point[1], 0.0});
    }
    MRUtil::triangulate_polygon(static_cast<int>(flat.size()), reinterpret_cast<double(*)[3]>(flat.data()),
                                triangles, edges, points);
  }

  [[nodiscard]] LiteralPolygon literal() const { return {points, triangles, edges}; }
};

/// Points and segments to ask a polygon for: all over it and about it, on its vertices, edges and their
/// lines, on multiples of 25 pixels, far away, and not finite.
class LassoQueries
{
public:
  LassoQueries(const Triangulation& polygon, std::uint64_t seed) : mPoints(polygon.points), mInputs(seed)
  {
    for (const int index : polygon.edges) {
      mEnds.push_back(static_cast<std::size_t>(index));
    }
    for (std::size_t i = 0; i + 2 < mPoints.size(); i += 3) {
      mBox |= BrantVector(&mPoints[i]);
    }
  }

  void point(double* p)
  {
    switch (mInputs.below(12)) {
    case 0:
      at_vertex(p);
      break;
    case 1:
    case 2:
      on_line_of_edge(p, mInputs.below(3) == 0 ? 4.0 : 0.5);
      break;
    case 3:
      in_box(p, 0.0, 25.0);
      break;
    case 4:
      in_box(p, 3.0, 0.0);
      break;
    case 5:
      far_away(p);
      break;
    default:
      in_box(p, 0.1, 0.0);
      break;
    }
  }

  void segment(double* p1, double* p2)
  {
    point(p1);
    switch (mInputs.below(8)) {
    case 0:
      point(p2);
      break;
    case 1: // along an edge, up to rounding
    case 2:
      along_edge(p1, p2);
      break;
    case 3:
      beside(p1, p2, 0.3, 0.0);
      break;
    case 4:
      beside(p1, p2, 0.01, 25.0);
      break;
    case 5:
      beside(p1, p2, 1e-18, 0.0);
      break;
    default:
      beside(p1, p2, 0.01, 0.0);
      break;
    }
  }

  [[nodiscard]] PickInputs& inputs() { return mInputs; }

private:
  [[nodiscard]] double size() const
  {
    return mBox.is_empty() ? 1.0 : 1e-300 + (mBox.maximum() - mBox.minimum()).length();
  }
  void at_vertex(double* p)
  {
    if (mPoints.empty()) {
      return in_box(p, 0.0, 0.0);
    }
    const std::size_t vertex = mInputs.below(static_cast<std::uint32_t>(mPoints.size() / 3));
    p[0] = mPoints[3 * vertex];
    p[1] = mPoints[3 * vertex + 1];
  }
  [[nodiscard]] std::array<const double*, 2> edge()
  {
    const std::size_t at = 2 * mInputs.below(static_cast<std::uint32_t>(mEnds.size() / 2));
    return {&mPoints[3 * mEnds[at]], &mPoints[3 * mEnds[at + 1]]};
  }
  void on_line_of_edge(double* p, double range)
  {
    if (mEnds.empty()) {
      return in_box(p, 0.0, 0.0);
    }
    const auto [a, b] = edge();
    const double t =
        mInputs.below(2) == 0 ? 0.25 * mInputs.below(5) : mInputs.between(0.5 - range, 0.5 + range);
    p[0] = a[0] + t * (b[0] - a[0]);
    p[1] = a[1] + t * (b[1] - a[1]);
  }
  void along_edge(double* p1, double* p2)
  {
    if (mEnds.empty()) {
      return beside(p1, p2, 0.3, 0.0);
    }
    const auto [a, b] = edge();
    const double t1 = mInputs.between(-3.0, 3.0);
    const double t2 = t1 + mInputs.between(-0.5, 0.5);
    const double slip = mInputs.below(2) == 0 ? 1e-16 * size() * mInputs.between(-4.0, 4.0) : 0.0;
    p1[0] = a[0] + t1 * (b[0] - a[0]);
    p1[1] = a[1] + t1 * (b[1] - a[1]) + slip;
    p2[0] = a[0] + t2 * (b[0] - a[0]);
    p2[1] = a[1] + t2 * (b[1] - a[1]);
  }
  void beside(const double* p1, double* p2, double range, double step)
  {
    for (int i = 0; i < 2; ++i) {
      p2[i] = p1[i] + range * size() * mInputs.between(-1.0, 1.0);
      p2[i] = step > 0.0 ? step * std::round(p2[i] / step) : p2[i];
    }
  }
  void in_box(double* p, double border, double step)
  {
    for (int i = 0; i < 2; ++i) {
      p[i] = mInputs.between(mBox.minimum()[i] - border * size(), mBox.maximum()[i] + border * size());
      p[i] = step > 0.0 ? step * std::round(p[i] / step) : p[i];
    }
  }
  void far_away(double* p)
  {
    const double far_off[] = {1e3, 1e4, 1e7, 1e12, 1e17, 1e30, 1e200};
    in_box(p, 1.0, 0.0);
    const std::uint32_t axis = mInputs.below(2);
    switch (mInputs.below(6)) {
    case 0:
      p[axis] = std::numeric_limits<double>::quiet_NaN();
      break;
    case 1:
      p[axis] = std::numeric_limits<double>::infinity();
      break;
    case 2:
      p[axis] = -std::numeric_limits<double>::infinity();
      break;
    case 3:
      p[0] = p[1] = size() * far_off[mInputs.below(7)];
      break;
    default:
      p[axis] += size() * far_off[mInputs.below(7)] * mInputs.between(-1.0, 1.0);
      break;
    }
  }

  std::vector<double> mPoints;
  std::vector<std::size_t> mEnds; // vertices, two for each edge
  BrantBox mBox;
  PickInputs mInputs;
};

} // namespace morrow_test
