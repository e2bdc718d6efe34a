// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>

class vtkMapper;
class vtkObject;
class vtkOpenGLPolyDataMapper;
class vtkRenderer;
class vtkRenderWindow;
class vtkScalarsToColors;

/// Everything whose spelling depends on the VTK version. Moving to another VTK is a change to this header and
/// VTKSeam.cxx.
namespace morrow {

/// Reports an error of object as VTK does: as an ErrorEvent when the object has an observer for it, otherwise
/// to VTK's output window; silent while VTK's global warning display is off. The text is "ERROR: In <file>,
/// line <line>\n<class> (<address>): <message>\n\n".
void report_vtk_error(vtkObject& object, const char* file, int line, const std::string& message);

enum class GlString
{
  Vendor,
  Renderer,
  Version
};

/// glGetString for the current context; null without one.
const char* gl_string(GlString which);

/// Gives the renderer the window and the aspect ratio that it has there. VTK computes it only when the
/// window's size or the viewport differ from the last time, and a new renderer has no last time: it compares
/// with what its memory held before.
void compute_aspect_afresh(vtkRenderer& renderer, vtkRenderWindow& window);

/// Lets a window render again after an exception has left its Render: VTK keeps a flag that would make it
/// ignore every later request.
void clear_in_render_status(vtkRenderWindow& window);

/// Whether anybody observes the object or has done so. VTK itself only tells of one event at a time.
[[nodiscard]] bool has_ever_been_observed(const vtkObject& object);

/// The mapper's lookup table, null if nobody has asked for one; VTK's own question would make one.
[[nodiscard]] vtkScalarsToColors* given_lookup_table(const vtkMapper& mapper);

/// VTK's own fragment shader for polygon data, in GLSL with the marks "//VTK::…" where its mappers put code.
[[nodiscard]] const char* polygon_fragment_shader();

/// Give the mapper another shader text in the place of VTK's own, for every block too if it is a composite
/// one; the next frame draws with it. The mapper keeps a copy. VTK deprecates this on mappers, because its
/// actors can have texts as well; its warning is suppressed.
void set_fragment_shader(vtkOpenGLPolyDataMapper& mapper, const char* text);
void set_geometry_shader(vtkOpenGLPolyDataMapper& mapper, const char* text);

} // namespace morrow
