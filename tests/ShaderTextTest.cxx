// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "ShaderText.h"

#include "BrantString.h"
#include "ExportFixture.h"
#include "VTKSeam.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdio>
#include <limits>
#include <string>
#include <vector>

namespace {

using morrow::depth_offset_fragment_shader;
using morrow::polygon_fragment_shader;
using morrow::stipple_fragment_shader;
using morrow::stipple_geometry_shader;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// The marks that the texts replace, in VTK's order, each with something around it.
constexpr const char* kShader = "a\n"
                                "//VTK::TCoord::Dec\n"
                                "b\n"
                                "//VTK::Coincident::Dec\n"
                                "c\n"
                                "  //VTK::UniformFlow::Impl\n"
                                "d\n"
                                "  //VTK::Depth::Impl\n"
                                "e\n"
                                "  //VTK::TCoord::Impl\n"
                                "f\n";

int occurrences(const std::string& text, const std::string& part)
{
  int count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
    ++count;
  }
  return count;
}

/// The line of the text that sets the depth, from "gl_FragDepth" to its end.
std::string depth_line(const BrantString& shader)
{
  const std::size_t begin = shader.str().find("gl_FragDepth = ");
  return begin == std::string::npos ? "" : shader.str().substr(begin, shader.str().find('\n', begin) - begin);
}

std::string printed(double value)
{
  std::vector<char> text(512);
  const int length = std::snprintf(text.data(), text.size(), "%f", value);
  return {text.data(), static_cast<std::size_t>(length)};
}

// --- VTK's shader
// ----------------------------------------------------------------------------------------------------

TEST(VtkPolygonShader, HasEachMarkOnce)
{
  const std::string shader = polygon_fragment_shader();
  for (const char* mark : {"//VTK::Coincident::Dec", "//VTK::UniformFlow::Impl", "//VTK::Depth::Impl",
                           "//VTK::TCoord::Dec", "//VTK::TCoord::Impl"}) {
    EXPECT_EQ(occurrences(shader, mark), 1) << mark;
  }
}

// --- Depth offset
// ----------------------------------------------------------------------------------------------------

TEST(DepthOffsetShader, AddsSlopeAndUnitsToTheDepth)
{
  EXPECT_EQ(depth_offset_fragment_shader(kShader, 2.0, 2.0),
            "a\n"
            "//VTK::TCoord::Dec\n"
            "b\n"
            "\n"
            "c\n"
            "  float brant_c_scale = length(vec2(dFdx(gl_FragCoord.z),dFdy(gl_FragCoord.z)));\n"
            "  //VTK::UniformFlow::Impl\n"
            "\n"
            "d\n"
            "  gl_FragDepth = gl_FragCoord.z + 2.000000*brant_c_scale + 0.000016*2.000000;\n"
            "\n"
            "e\n"
            "  //VTK::TCoord::Impl\n"
            "f\n");
}

TEST(DepthOffsetShader, WithoutFactorHasNoSlope)
{
  for (const double factor : {0.0, -0.0}) {
    EXPECT_EQ(depth_offset_fragment_shader(kShader, factor, 4.0), "a\n"
                                                                  "//VTK::TCoord::Dec\n"
                                                                  "b\n"
                                                                  "\n"
                                                                  "c\n"
                                                                  "  //VTK::UniformFlow::Impl\n"
                                                                  "d\n"
                                                                  "  gl_FragDepth = gl_FragCoord.z + "
                                                                  "0.000016*4.000000;\n"
                                                                  "\n"
                                                                  "e\n"
                                                                  "  //VTK::TCoord::Impl\n"
                                                                  "f\n");
  }
}

TEST(DepthOffsetShader, WithoutUnitsStillNamesThem)
{
  EXPECT_EQ(depth_line(depth_offset_fragment_shader(kShader, -1.5, 0.0)),
            "gl_FragDepth = gl_FragCoord.z + -1.500000*brant_c_scale + 0.000016*0.000000;");
}

// A factor that prints as zero is one all the same.
TEST(DepthOffsetShader, RoundsToSixDecimals)
{
  EXPECT_EQ(depth_line(depth_offset_fragment_shader(kShader, 1e-300, -2.0000005001)),
            "gl_FragDepth = gl_FragCoord.z + 0.000000*brant_c_scale + 0.000016*-2.000001;");
}

TEST(DepthOffsetShader, WritesEveryFiniteNumberAsPrintf)
{
  constexpr double Largest = std::numeric_limits<double>::max();
  for (const double value : {1e300, -1e300, Largest, -Largest, 0.1, 123456789.123456789, 0.0000005,
                             std::numeric_limits<double>::denorm_min()}) {
    EXPECT_EQ(depth_line(depth_offset_fragment_shader(kShader, value, value)),
              "gl_FragDepth = gl_FragCoord.z + " + printed(value) + "*brant_c_scale + 0.000016*" +
                  printed(value) + ";");
  }
}

TEST(DepthOffsetShader, HasPointsWhateverTheHostsLocale)
{
  const morrow_test::CommaLocale host;
  EXPECT_EQ(depth_line(depth_offset_fragment_shader(kShader, 1234567.5, 2.0)),
            "gl_FragDepth = gl_FragCoord.z + 1234567.500000*brant_c_scale + 0.000016*2.000000;");
}

// The words stand for zeros: VTK crashes with a shader that OpenGL refuses.
TEST(DepthOffsetShader, DeclaresTheNumbersThatAreNotFinite)
{
  const BrantString shader = depth_offset_fragment_shader(kShader, kNan, -kInfinity);
  EXPECT_EQ(depth_line(shader), "gl_FragDepth = gl_FragCoord.z + nan*brant_c_scale + 0.000016*-inf;");
  EXPECT_EQ(occurrences(shader.str(), "b\nconst float nan = 0.0;\nconst float inf = 0.0;\n\nc\n"), 1);
  EXPECT_EQ(occurrences(shader.str(), "float brant_c_scale"), 1); // what is not a number is not 0
}

TEST(DepthOffsetShader, DeclaresNothingElse)
{
  const BrantString no_factor = depth_offset_fragment_shader(kShader, 0.0, kInfinity);
  EXPECT_EQ(depth_line(no_factor), "gl_FragDepth = gl_FragCoord.z + 0.000016*inf;");
  EXPECT_EQ(occurrences(no_factor.str(), "const float inf = 0.0;"), 1);
  EXPECT_EQ(occurrences(depth_offset_fragment_shader(kShader, 1.0, 1.0).str(), "const"), 0);
}

TEST(DepthOffsetShader, LeavesATextWithoutMarksAlone)
{
  EXPECT_EQ(depth_offset_fragment_shader("void main() {}", 1.0, 1.0), "void main() {}");
  EXPECT_EQ(depth_offset_fragment_shader("", 1.0, 1.0), "");
  EXPECT_EQ(depth_offset_fragment_shader(nullptr, 1.0, 1.0), "");
}

// --- Stipple
// ---------------------------------------------------------------------------------------------------------

TEST(StippleShader, MeasuresLinesInTheGeometryShader)
{
  EXPECT_STREQ(
      stipple_geometry_shader(),
      "#version 150\n\nlayout(lines) in;\nlayout(line_strip, max_vertices=2) out;\n\nuniform vec2 "
      "ViewportSize;\nout float stippleCoord;\n\n//VTK::PositionVC::Dec\n//VTK::Normal::Dec\n//"
      "VTK::Light::Dec\n//VTK::TCoord::Dec\n//VTK::Color::Dec\n//VTK::Clip::Dec\n\nvoid main()\n{\n  int "
      "i=0;\n  //VTK::Color::Impl\n  //VTK::Light::Impl\n  //VTK::Normal::Impl\n  //VTK::TCoord::Impl\n  //"
      "VTK::Clip::Impl\n  //VTK::PositionVC::Impl\n  vec4 pos0 = gl_in[0].gl_Position;\n  vec2 p0 = pos0.xy "
      "/ pos0.w * ViewportSize;\n  gl_Position = pos0;\n  stippleCoord = 0.0;\n  EmitVertex();\n\n  "
      "i=1;\n  //VTK::Color::Impl\n  //VTK::Light::Impl\n  //VTK::Normal::Impl\n  //VTK::TCoord::Impl\n  //"
      "VTK::Clip::Impl\n  //VTK::PositionVC::Impl\n  vec4 pos1 = gl_in[i].gl_Position;\n  vec2 p1 = pos1.xy "
      "/ pos1.w * ViewportSize;\n  float len = length(p0.xy - p1.xy);\n  gl_Position = pos1;\n  "
      "stippleCoord = len / 32.0;\n  EmitVertex();\n}\n");
}

TEST(StippleShader, DropsFragmentsByTheBitsOfThePattern)
{
  EXPECT_EQ(stipple_fragment_shader(kShader),
            "a\n"
            "\n   //VTK::TCoord::Dec\n   in float stippleCoord;\n   uniform int StipplePattern;\n"
            "\n"
            "b\n"
            "//VTK::Coincident::Dec\n"
            "c\n"
            "  //VTK::UniformFlow::Impl\n"
            "d\n"
            "  //VTK::Depth::Impl\n"
            "e\n"
            "  \n   //VTK::TCoord::Impl\n   int stip = 0x1 & (StipplePattern >> "
            "int(fract(stippleCoord)*16.0));\n   if (stip == 0)\n     discard;\n"
            "\n"
            "f\n");
}

TEST(StippleShader, LeavesATextWithoutMarksAlone)
{
  EXPECT_EQ(stipple_fragment_shader("void main() {}"), "void main() {}");
  EXPECT_EQ(stipple_fragment_shader(nullptr), "");
}

} // namespace
