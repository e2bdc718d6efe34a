// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace morrow {

struct PickRay;

/// Says of a triangle what VTK will find when it is asked whether the ray hits it, as far as this is clear
/// beyond all rounding. Most triangles in a ray's tube lie beside the hit disc in their plane; VTK need not
/// be asked for them, and no second time for the others.
///
/// VTK takes the point where the ray meets the triangle's plane, and measures from there to the triangle.
class TriangleSieve
{
public:
  /// bounds: 6 doubles, those of the data set.
  TriangleSieve(const PickRay& ray, const double* bounds);

  enum class Distance
  {
    Unclear,
    Near,  ///< less than half the tolerance
    Far,   ///< more than half the tolerance
    Beyond ///< more than the tolerance: there is no hit
  };

  /// Of the triangle a, b, c, 3 finite doubles each, from the point where the ray's line meets its plane.
  [[nodiscard]] Distance distance_to(const double* a, const double* b, const double* c) const noexcept;

private:
  double mStart[3];
  double mDirection[3]; // of length 1
  double mSquaredTolerance;
  // Squares; what makes everything unclear where the ray or its tolerance are of no use.
  double mNear;
  double mFar;
  double mBeyond;
};

} // namespace morrow
