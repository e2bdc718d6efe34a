// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>
#include <vector>

namespace morrow {

/// The texts of an OpenGL program.
struct ShaderTexts
{
  std::string vertex;
  std::string geometry;
  std::string fragment;
};

/// Those that draw stippled lines in one colour. Tests may put others in their place.
[[nodiscard]] ShaderTexts& silhouette_shaders();

/// What the lines of a frame have in common.
struct SilhouetteLook
{
  float matrix[16];  // world to device, column after column
  float viewport[2]; // pixels
  int stipple;
  float line_width; // pixels
};

/// The OpenGL program of one context that draws silhouettes. The context must be the current one in every
/// call; the destructor calls nothing.
class SilhouetteProgram
{
public:
  [[nodiscard]] bool is_built() const noexcept { return mProgram != 0; }

  /// Makes program, vertex array and buffer. Logs of what the driver refuses go to standard output.
  void build();

  /// Makes the program, vertex array and buffer current. False, with nothing of it current, when the program
  /// has not been linked.
  [[nodiscard]] bool begin(const SilhouetteLook& look);

  /// Draws lines between vertices of 3 floats, two and two, in a colour of 4 floats.
  void draw(const std::vector<float>& vertices, const float* rgba);

  void end();

  /// Deletes what build() made. Nothing when nothing is built.
  void release();

  /// That of the current context, pixels.
  [[nodiscard]] static float line_width();

private:
  void build_program();
  void build_buffers();
  void find_uniforms();

  unsigned int mProgram = 0;
  unsigned int mLinkStatus = 0;
  unsigned int mVertexShader = 0;
  unsigned int mGeometryShader = 0;
  unsigned int mFragmentShader = 0;
  unsigned int mVertexArray = 0;
  unsigned int mVertexBuffer = 0;
  int mViewportSize = -1; // locations of uniforms
  int mStipplePattern = -1;
  int mMatrix = -1;
  int mColor = -1;
};

} // namespace morrow
