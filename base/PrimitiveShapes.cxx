// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "PrimitiveShapes.h"

#include <cstddef>

#include <vtkMath.h>

namespace morrow {

namespace {

constexpr double HeadLength = 0.2;  // of the arrow's
constexpr double HeadRadius = 0.07; // likewise

// Corners by number: bits 0, 1 and 2 choose the maximum of x, y and z.
constexpr int BoxFaces[6][4] = {{0, 4, 6, 2}, {1, 3, 7, 5}, {0, 1, 5, 4},
                                {2, 6, 7, 3}, {0, 2, 3, 1}, {4, 5, 7, 6}};

BrantVector box_corner(int number, const BrantVector& minimum, const BrantVector& maximum)
{
  return {(number & 1) != 0 ? maximum.x() : minimum.x(), (number & 2) != 0 ? maximum.y() : minimum.y(),
          (number & 4) != 0 ? maximum.z() : minimum.z()};
}

} // namespace

std::array<BrantVector, 5> arrowhead_points(const BrantVector& tail, const BrantVector& head)
{
  const BrantVector d = head - tail;
  const double length = d.length();
  const BrantVector centre = head - HeadLength * d;
  if (length == 0.0) { // without a direction nothing is perpendicular
    return {head, centre, centre, centre, centre};
  }
  double u[3];
  double v[3];
  vtkMath::Perpendiculars(d.data(), u, v, 0.0);
  const BrantVector across = HeadRadius * length * BrantVector(u);
  const BrantVector up = HeadRadius * length * BrantVector(v);
  return {head, centre + across, centre + up, centre - across, centre - up};
}

std::array<BrantVector, 24> box_face_points(const BrantVector& minimum, const BrantVector& maximum)
{
  std::array<BrantVector, 24> points;
  std::size_t i = 0;
  for (const auto& face : BoxFaces) {
    for (const int corner : face) {
      points[i++] = box_corner(corner, minimum, maximum);
    }
  }
  return points;
}

} // namespace morrow
