// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <initializer_list>
#include <random>
#include <utility>
#include <vector>

/// Closed rings of points, and plain answers about them.
namespace morrow_test {

using Point3 = std::array<double, 3>;

/// The plane that a ring of the plane z = 0 is turned into.
enum class Plane
{
  XY,
  YZ,
  ZX,
  Tilted ///< seen edge-on along no axis, and x = y in it
};

class Ring
{
public:
  using Points = std::vector<Point3>;

  Ring() = default;
  Ring(std::initializer_list<Point3> given) : points(given) {}
  explicit Ring(Points given) : points(std::move(given)) {}

  [[nodiscard]] Ring in(Plane plane) const
  {
    Ring turned = *this;
    for (Point3& p : turned.points) {
      const double x = p[0];
      const double y = p[1];
      switch (plane) {
      case Plane::XY:
        break;
      case Plane::YZ:
        p = {5.0, x, y};
        break;
      case Plane::ZX:
        p = {y, -3.0, x};
        break;
      case Plane::Tilted:
        p = {x, x, y}; // its areas are sqrt(2) times as large
        break;
      }
    }
    return turned;
  }

  [[nodiscard]] Ring reversed() const { return Ring(Points(points.rbegin(), points.rend())); }

  /// x, y, z of each point.
  [[nodiscard]] std::vector<double> coords() const
  {
    std::vector<double> all;
    for (const Point3& p : points) {
      all.insert(all.end(), p.begin(), p.end());
    }
    return all;
  }

  Points points;
};

inline Ring circle(int count)
{
  Ring ring;
  for (int i = 0; i < count; ++i) {
    const double angle = 2.0 * std::acos(-1.0) * i / count;
    ring.points.push_back({std::cos(angle), std::sin(angle), 0.0});
  }
  return ring;
}

/// A star of an odd number of points whose sides all cross each other.
inline Ring star(int count)
{
  const Ring round = circle(count);
  Ring ring;
  for (int i = 0; i < count; ++i) {
    ring.points.push_back(round.points[static_cast<std::size_t>(i) * static_cast<std::size_t>(count / 2) %
                                       static_cast<std::size_t>(count)]);
  }
  return ring;
}

/// Points in the unit square of z = 0, on a grid of grid x grid if that is not 0.
inline Ring random_ring(int count, unsigned int seed, unsigned int grid = 0)
{
  std::mt19937 random(seed);
  const auto coordinate = [&] {
    return grid != 0 ? static_cast<double>(random() % grid) / grid
                     : static_cast<double>(random()) / static_cast<double>(std::mt19937::max());
  };
  Ring ring;
  for (int i = 0; i < count; ++i) {
    const double x = coordinate();
    ring.points.push_back({x, coordinate(), 0.0});
  }
  return ring;
}

// ---------------------------------------------------------------------------------------------------------
// The odd rule, in the plane z = 0

/// Where the sides of the ring cross the line of this y, in ascending order.
inline std::vector<double> crossings_at(const Ring& ring, double y)
{
  std::vector<double> all;
  for (std::size_t i = 0; i < ring.points.size(); ++i) {
    const Point3& a = ring.points[i];
    const Point3& b = ring.points[(i + 1) % ring.points.size()];
    if ((a[1] <= y) != (b[1] <= y)) {
      all.push_back(a[0] + (y - a[1]) / (b[1] - a[1]) * (b[0] - a[0]));
    }
  }
  std::sort(all.begin(), all.end());
  return all;
}

inline bool is_inside(const Ring& ring, double x, double y)
{
  const std::vector<double> all = crossings_at(ring, y);
  return (std::lower_bound(all.begin(), all.end(), x) - all.begin()) % 2 == 1;
}

/// The heights of all points and of all crossings of two sides, in ascending order.
inline std::vector<double> heights(const Ring& ring)
{
  std::vector<double> all;
  const std::size_t n = ring.points.size();
  for (std::size_t i = 0; i < n; ++i) {
    const Point3& a = ring.points[i];
    const Point3& b = ring.points[(i + 1) % n];
    all.push_back(a[1]);
    for (std::size_t j = i + 1; j < n; ++j) {
      const Point3& c = ring.points[j];
      const Point3& d = ring.points[(j + 1) % n];
      const double turn = (b[0] - a[0]) * (d[1] - c[1]) - (b[1] - a[1]) * (d[0] - c[0]);
      const double t = ((c[0] - a[0]) * (d[1] - c[1]) - (c[1] - a[1]) * (d[0] - c[0])) / turn;
      if (turn != 0.0 && t > 0.0 && t < 1.0) { // crossings of the second side's line do no harm
        all.push_back(a[1] + t * (b[1] - a[1]));
      }
    }
  }
  std::sort(all.begin(), all.end());
  return all;
}

/// The area inside: between two neighbouring heights it is made of trapezia.
inline double odd_area(const Ring& ring)
{
  const std::vector<double> levels = heights(ring);
  double area = 0.0;
  for (std::size_t i = 0; i + 1 < levels.size(); ++i) {
    const std::vector<double> all = crossings_at(ring, 0.5 * (levels[i] + levels[i + 1]));
    for (std::size_t k = 0; k + 1 < all.size(); k += 2) {
      area += (levels[i + 1] - levels[i]) * (all[k + 1] - all[k]);
    }
  }
  return area;
}

} // namespace morrow_test
