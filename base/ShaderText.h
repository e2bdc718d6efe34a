// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

class BrantString;

namespace morrow {

/// The texts of GLSL that the mappers of models are given. VTK completes them: it puts its declarations and
/// its code where the marks "//VTK::…" stand. Each mark occurs once in VTK's own shader; the texts below keep
/// those that VTK still has to find.

/// Makes VTK's fragment shader for polygon data move each fragment by factor × (slope of its depth) +
/// 0.000016 × units, in depths of the window from 0 to 1; positive numbers move it away from the eye. Both
/// are written with six decimals and a point, in every locale and in any length. With the factor 0 the text
/// does not ask for the slope. Numbers that are not finite are written as "nan" and "inf", which the text
/// then declares as zeros.
[[nodiscard]] BrantString depth_offset_fragment_shader(const char* vtk_shader, double factor, double units);

/// A geometry shader that passes lines on with the coordinate "stippleCoord" along them: 0 at the first end,
/// the distance of the ends / 32 at the second. The distance is taken in clip space, which is two units wide,
/// times the uniform "ViewportSize" in pixels: it is two for each pixel of the line.
[[nodiscard]] const char* stipple_geometry_shader();

/// Makes VTK's fragment shader for polygon data drop the fragments where the 16 bits of the uniform
/// "StipplePattern" have a 0. The bits stand for sixteenths of the fraction of "stippleCoord", the lowest
/// first.
[[nodiscard]] BrantString stipple_fragment_shader(const char* vtk_shader);

} // namespace morrow
