// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "SilhouetteProgram.h"

#include <algorithm>
#include <cstdio>
#include <limits>

#include <vtk_glew.h>

namespace morrow {

namespace {

// Texts of GLSL, drawn as they stand: a driver may word its complaints by their lines.
constexpr const char* VertexShader = "#version 150\n"
                                     "\n"
                                     "in vec4 vertexMC;\n"
                                     "uniform mat4 MCDCMatrix;\n"
                                     "void main()\n"
                                     "{\n"
                                     " gl_Position = MCDCMatrix * vertexMC;\n"
                                     "}\n"
                                     "\n";

constexpr const char* GeometryShader = "#version 150\n"
                                       "\n"
                                       "layout(lines) in;\n"
                                       "layout(line_strip, max_vertices=2) out;\n"
                                       "\n"
                                       "uniform vec2 ViewportSize;\n"
                                       "out float stippleCoord;\n"
                                       "\n"
                                       "void main()\n"
                                       "{\n"
                                       "  int i=0;\n"
                                       "  vec4 pos0 = gl_in[0].gl_Position;\n"
                                       "  vec2 p0 = pos0.xy / pos0.w * ViewportSize;\n"
                                       "  gl_Position = pos0;\n"
                                       "  stippleCoord = 0.0;\n"
                                       "  EmitVertex();\n"
                                       "\n"
                                       "  i=1;\n"
                                       "  vec4 pos1 = gl_in[i].gl_Position;\n"
                                       "  vec2 p1 = pos1.xy / pos1.w * ViewportSize;\n"
                                       "  float len = length(p0.xy - p1.xy);\n"
                                       "  gl_Position = pos1;\n"
                                       "  stippleCoord = len / 32.0;\n"
                                       "  EmitVertex();\n"
                                       "}\n";

constexpr const char* FragmentShader =
    "#version 150\n"
    "\n"
    "out vec4 colorOut;\n"
    "uniform vec4 uniform_color;\n"
    "in float stippleCoord;\n"
    "uniform int StipplePattern;\n"
    "\n"
    "void main()\n"
    "{\n"
    "  int stip = 0x1 & (StipplePattern >> int(fract(stippleCoord)*16.0));\n"
    "  if (stip == 0)\n"
    "    discard;\n"
    " colorOut = uniform_color;\n"
    "}\n"
    "\n";

using GetStatus = void (*)(GLuint, GLenum, GLint*);
using GetLog = void (*)(GLuint, GLsizei, GLsizei*, GLchar*);

/// A log of one character is its closing zero.
void print_log(GLuint object, GetStatus get_status, GetLog get_log)
{
  GLint length = 0;
  get_status(object, GL_INFO_LOG_LENGTH, &length);
  if (length >= 2) {
    std::string log(static_cast<std::size_t>(length), '\0');
    get_log(object, length, nullptr, log.data());
    std::puts(log.c_str());
  }
}

GLuint compile(GLenum kind, const std::string& text)
{
  const GLuint shader = glCreateShader(kind);
  const char* source = text.c_str();
  glShaderSource(shader, 1, &source, nullptr);
  glCompileShader(shader);
  GLint status = 0;
  glGetShaderiv(shader, GL_COMPILE_STATUS, &status);
  if (status == 0) {
    print_log(shader, glGetShaderiv, glGetShaderInfoLog);
  }
  return shader;
}

void unbind()
{
  glUseProgram(0);
  glBindBuffer(GL_ARRAY_BUFFER, 0);
  glBindVertexArray(0);
}

} // namespace

ShaderTexts& silhouette_shaders()
{
  static ShaderTexts& texts = *new ShaderTexts{VertexShader, GeometryShader, FragmentShader};
  return texts;
}

void SilhouetteProgram::build()
{
  this->build_program();
  this->build_buffers();
  this->find_uniforms();
}

void SilhouetteProgram::build_program()
{
  const ShaderTexts& texts = silhouette_shaders();
  mVertexShader = compile(GL_VERTEX_SHADER, texts.vertex);
  mGeometryShader = compile(GL_GEOMETRY_SHADER, texts.geometry);
  mFragmentShader = compile(GL_FRAGMENT_SHADER, texts.fragment);
  mProgram = glCreateProgram();
  for (const GLuint shader : {mVertexShader, mGeometryShader, mFragmentShader}) {
    glAttachShader(mProgram, shader);
  }
  glLinkProgram(mProgram);
  GLint status = 0;
  glGetProgramiv(mProgram, GL_LINK_STATUS, &status);
  mLinkStatus = static_cast<unsigned int>(status);
  if (mLinkStatus == 0) {
    print_log(mProgram, glGetProgramiv, glGetProgramInfoLog);
  }
}

void SilhouetteProgram::build_buffers()
{
  constexpr GLuint first_attribute = 0;
  glGenVertexArrays(1, &mVertexArray);
  glBindVertexArray(mVertexArray);
  glGenBuffers(1, &mVertexBuffer);
  glBindBuffer(GL_ARRAY_BUFFER, mVertexBuffer);
  glVertexAttribPointer(first_attribute, 3, GL_FLOAT, GL_FALSE, 0, nullptr);
  glEnableVertexAttribArray(first_attribute);
}

// A program that has not been linked has no locations to ask for.
void SilhouetteProgram::find_uniforms()
{
  if (mLinkStatus == 0) {
    return;
  }
  const GLint attribute = glGetAttribLocation(mProgram, "vertexMC");
  if (attribute >= 0) {
    glBindAttribLocation(mProgram, static_cast<GLuint>(attribute), "vertexMC");
  }
  mViewportSize = glGetUniformLocation(mProgram, "ViewportSize");
  mStipplePattern = glGetUniformLocation(mProgram, "StipplePattern");
  mMatrix = glGetUniformLocation(mProgram, "MCDCMatrix");
  mColor = glGetUniformLocation(mProgram, "uniform_color");
}

bool SilhouetteProgram::begin(const SilhouetteLook& look)
{
  if (mProgram != 0 && mLinkStatus == 0) {
    unbind();
    return false;
  }
  glUseProgram(mProgram);
  glBindVertexArray(mVertexArray);
  glBindBuffer(GL_ARRAY_BUFFER, mVertexBuffer);
  glUniformMatrix4fv(mMatrix, 1, GL_FALSE, look.matrix);
  glUniform2fv(mViewportSize, 1, look.viewport);
  glUniform1i(mStipplePattern, look.stipple);
  return true;
}

void SilhouetteProgram::draw(const std::vector<float>& vertices, const float* rgba)
{
  glUniform4fv(mColor, 1, rgba);
  glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(vertices.size() * sizeof(float)), vertices.data(),
               GL_STREAM_DRAW);
  constexpr std::size_t most = std::numeric_limits<GLsizei>::max() - 1; // even, as lines have two ends
  glDrawArrays(GL_LINES, 0, static_cast<GLsizei>(std::min(vertices.size() / 3, most)));
}

void SilhouetteProgram::end()
{
  unbind();
}

float SilhouetteProgram::line_width()
{
  GLfloat width = 1.0F;
  glGetFloatv(GL_LINE_WIDTH, &width);
  return width;
}

void SilhouetteProgram::release()
{
  if (mProgram == 0) {
    return;
  }
  glUseProgram(0);
  for (const GLuint shader : {mVertexShader, mFragmentShader, mGeometryShader}) {
    glDetachShader(mProgram, shader);
  }
  for (const GLuint shader : {mVertexShader, mFragmentShader, mGeometryShader}) {
    glDeleteShader(shader);
  }
  glDeleteProgram(mProgram);
  glDeleteVertexArrays(1, &mVertexArray);
  glDeleteBuffers(1, &mVertexBuffer);
  *this = SilhouetteProgram();
}

} // namespace morrow
