// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <array>

#include "BrantVector.h" // by value

/// The geometry of framing a box with a camera.
namespace morrow {

/// xmin, xmax, ymin, ymax, zmin, zmax.
using BoxBounds = std::array<double, 6>;

[[nodiscard]] BoxBounds bounds_from(const double* six);
[[nodiscard]] bool has_nan(const BoxBounds& box);
[[nodiscard]] bool is_finite(const BoxBounds& box);

[[nodiscard]] BrantVector centre_of(const BoxBounds& box);
/// Maximum minus minimum of each axis; negative where the box is inverted.
[[nodiscard]] BrantVector extents_of(const BoxBounds& box);

/// The box that is framed when this one is asked for: its open sides (1e37 and beyond) are put at 1 or -1, a
/// box far smaller than what is visible is enlarged, and the result is made a cube about its centre. visible:
/// the bounds of what is visible; null when nothing is.
[[nodiscard]] BoxBounds adjusted_for_zoom(const BoxBounds& box, const BoxBounds* visible);

/// start + fraction × (end - start).
[[nodiscard]] BoxBounds between(const BoxBounds& start, const BoxBounds& end, double fraction);

/// The radius that is framed for a box: 0.55 of its diagonal; 1 for a point.
[[nodiscard]] double framing_radius(const BoxBounds& box);

/// From where a camera of this view angle in degrees frames the radius.
[[nodiscard]] double framing_distance(double radius, double view_angle);

/// A rotation in degrees about an axis of length 1 through the point looked at.
struct ViewTurn
{
  BrantVector axis;
  double angle = 0.0;
};

/// What turns one direction of projection into another one, both of length 1. Angle 0 for directions that are
/// almost parallel; about up for such as are almost opposite.
[[nodiscard]] ViewTurn turn_between(const BrantVector& from, const BrantVector& to, const BrantVector& up);

/// The view up for a camera that is to look along direction after it has looked along before: up itself, or,
/// when that is parallel to the new direction, the one that is reached by tilting the camera.
[[nodiscard]] BrantVector up_for(const BrantVector& direction, const BrantVector& before,
                                 const BrantVector& up);

} // namespace morrow
