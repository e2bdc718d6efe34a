// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <array>

#include "BrantVector.h" // by value

/// Shapes made of polygons: their points, and the runs of GGenericModel::add_polygons().
namespace morrow {

/// The apex, then the corners of the base around it. An arrow without length has all of them at its head.
[[nodiscard]] std::array<BrantVector, 5> arrowhead_points(const BrantVector& tail, const BrantVector& head);

/// Four triangles, the apex the first point of each.
inline constexpr int ArrowheadRuns[16] = {3, 0, 1, 2, 3, 0, 2, 3, 3, 0, 3, 4, 3, 0, 4, 1};

/// The corners of the six faces, four after four, around each counter-clockwise as seen from outside when
/// minimum is the smaller one on all axes.
[[nodiscard]] std::array<BrantVector, 24> box_face_points(const BrantVector& minimum,
                                                          const BrantVector& maximum);

/// Six quadrilaterals.
inline constexpr int BoxFaceRuns[30] = {4, 0,  1,  2,  3,  4, 4,  5,  6,  7,  4, 8,  9,  10, 11,
                                        4, 12, 13, 14, 15, 4, 16, 17, 18, 19, 4, 20, 21, 22, 23};

} // namespace morrow
