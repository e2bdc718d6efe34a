// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "ShaderText.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <string>

#include "BrantString.h"

namespace morrow {

namespace {

struct Replacement
{
  const char* mark;
  const char* text;
};

// The slope is taken where all fragments pass: elsewhere its derivatives are undefined.
constexpr Replacement DepthSlope = {
    "//VTK::UniformFlow::Impl",
    "float brant_c_scale = length(vec2(dFdx(gl_FragCoord.z),dFdy(gl_FragCoord.z)));\n"
    "  //VTK::UniformFlow::Impl\n"};

// VTK's own treatment of coincident geometry would write the depth a second time.
constexpr Replacement NoCoincident = {"//VTK::Coincident::Dec", ""};

// Numbers that are not finite are written as words. With these they are numbers again: VTK crashes with a
// shader that OpenGL refuses.
constexpr Replacement NotFinite = {"//VTK::Coincident::Dec", "const float nan = 0.0;\n"
                                                             "const float inf = 0.0;\n"};

constexpr const char* DepthMark = "//VTK::Depth::Impl";

constexpr Replacement StippleDeclaration = {"//VTK::TCoord::Dec", "\n"
                                                                  "   //VTK::TCoord::Dec\n"
                                                                  "   in float stippleCoord;\n"
                                                                  "   uniform int StipplePattern;\n"};

constexpr Replacement StippleTest = {
    "//VTK::TCoord::Impl", "\n"
                           "   //VTK::TCoord::Impl\n"
                           "   int stip = 0x1 & (StipplePattern >> int(fract(stippleCoord)*16.0));\n"
                           "   if (stip == 0)\n"
                           "     discard;\n"};

constexpr const char* StippleGeometryShader = "#version 150\n"
                                              "\n"
                                              "layout(lines) in;\n"
                                              "layout(line_strip, max_vertices=2) out;\n"
                                              "\n"
                                              "uniform vec2 ViewportSize;\n"
                                              "out float stippleCoord;\n"
                                              "\n"
                                              "//VTK::PositionVC::Dec\n"
                                              "//VTK::Normal::Dec\n"
                                              "//VTK::Light::Dec\n"
                                              "//VTK::TCoord::Dec\n"
                                              "//VTK::Color::Dec\n"
                                              "//VTK::Clip::Dec\n"
                                              "\n"
                                              "void main()\n"
                                              "{\n"
                                              "  int i=0;\n"
                                              "  //VTK::Color::Impl\n"
                                              "  //VTK::Light::Impl\n"
                                              "  //VTK::Normal::Impl\n"
                                              "  //VTK::TCoord::Impl\n"
                                              "  //VTK::Clip::Impl\n"
                                              "  //VTK::PositionVC::Impl\n"
                                              "  vec4 pos0 = gl_in[0].gl_Position;\n"
                                              "  vec2 p0 = pos0.xy / pos0.w * ViewportSize;\n"
                                              "  gl_Position = pos0;\n"
                                              "  stippleCoord = 0.0;\n"
                                              "  EmitVertex();\n"
                                              "\n"
                                              "  i=1;\n"
                                              "  //VTK::Color::Impl\n"
                                              "  //VTK::Light::Impl\n"
                                              "  //VTK::Normal::Impl\n"
                                              "  //VTK::TCoord::Impl\n"
                                              "  //VTK::Clip::Impl\n"
                                              "  //VTK::PositionVC::Impl\n"
                                              "  vec4 pos1 = gl_in[i].gl_Position;\n"
                                              "  vec2 p1 = pos1.xy / pos1.w * ViewportSize;\n"
                                              "  float len = length(p0.xy - p1.xy);\n"
                                              "  gl_Position = pos1;\n"
                                              "  stippleCoord = len / 32.0;\n"
                                              "  EmitVertex();\n"
                                              "}\n";

void replace(BrantString& shader, const Replacement& replacement)
{
  shader.replace(replacement.mark, replacement.text);
}

/// As printf's "%f" in the "C" locale.
std::string with_six_decimals(double value)
{
  constexpr int Decimals = 6;
  char digits[std::numeric_limits<double>::max_exponent10 + Decimals + 4]; // sign, first digit, point
  const auto end = std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed, Decimals);
  return {digits, end.ptr};
}

} // namespace

BrantString depth_offset_fragment_shader(const char* vtk_shader, double factor, double units)
{
  const bool has_slope = factor != 0.0;
  const std::string slope = has_slope ? with_six_decimals(factor) + "*brant_c_scale + " : "";
  const std::string depth =
      "gl_FragDepth = gl_FragCoord.z + " + slope + "0.000016*" + with_six_decimals(units);
  BrantString shader = vtk_shader;
  replace(shader, std::isfinite(factor) && std::isfinite(units) ? NoCoincident : NotFinite);
  if (has_slope) {
    replace(shader, DepthSlope);
  }
  shader.replace(DepthMark, depth + ";\n");
  return shader;
}

const char* stipple_geometry_shader()
{
  return StippleGeometryShader;
}

BrantString stipple_fragment_shader(const char* vtk_shader)
{
  BrantString shader = vtk_shader;
  replace(shader, StippleDeclaration);
  replace(shader, StippleTest);
  return shader;
}

} // namespace morrow
