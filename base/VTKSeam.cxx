// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "VTKSeam.h"

#include <sstream>

#include <vtkMapper.h>
#include <vtkObject.h>
#include <vtkOpenGLPolyDataMapper.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtk_glew.h>

extern const char* vtkPolyDataFS; // exported by VTK without a header

namespace morrow {

namespace {

/// Switches VTK's messages off and puts back what was before.
class Silence
{
public:
  Silence() { vtkObject::SetGlobalWarningDisplay(0); }
  ~Silence() { vtkObject::SetGlobalWarningDisplay(mBefore); }
  Silence(const Silence&) = delete;
  Silence& operator=(const Silence&) = delete;

private:
  int mBefore = vtkObject::GetGlobalWarningDisplay();
};

/// Never made: these are ways to what VTK keeps for subclasses.
class ObjectInsides : public vtkObject
{
public:
  static constexpr auto Observers = &ObjectInsides::SubjectHelper;
};

class MapperInsides : public vtkMapper
{
public:
  static constexpr auto GivenLookupTable = &MapperInsides::LookupTable;
};

} // namespace

void report_vtk_error(vtkObject& object, const char* file, int line, const std::string& message)
{
  if (!vtkObject::GetGlobalWarningDisplay()) {
    return;
  }
  std::ostringstream text;
  text << object.GetClassName() << " (" << &object << "): " << message;
  vtkOutputWindowDisplayErrorText(file, line, text.str().c_str(), &object);
}

const char* gl_string(GlString which)
{
  constexpr GLenum names[] = {GL_VENDOR, GL_RENDERER, GL_VERSION};
  return reinterpret_cast<const char*>(glGetString(names[static_cast<int>(which)]));
}

void compute_aspect_afresh(vtkRenderer& renderer, vtkRenderWindow& window)
{
  double viewport[4];
  renderer.GetViewport(viewport);
  renderer.SetRenderWindow(&window);
  renderer.SetViewport(0.0, 0.0, 0.25, 0.5); // any other one
  renderer.ComputeAspect();
  renderer.SetViewport(viewport);
  renderer.ComputeAspect();
}

void clear_in_render_status(vtkRenderWindow& window)
{
  window.ClearInRenderStatus();
  window.SetInAbortCheck(0);
}

bool has_ever_been_observed(const vtkObject& object)
{
  return object.*ObjectInsides::Observers != nullptr;
}

vtkScalarsToColors* given_lookup_table(const vtkMapper& mapper)
{
  return mapper.*MapperInsides::GivenLookupTable;
}

const char* polygon_fragment_shader()
{
  return vtkPolyDataFS;
}

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

void set_fragment_shader(vtkOpenGLPolyDataMapper& mapper, const char* text)
{
  const Silence silence;
  mapper.SetFragmentShaderCode(text);
}

void set_geometry_shader(vtkOpenGLPolyDataMapper& mapper, const char* text)
{
  const Silence silence;
  mapper.SetGeometryShaderCode(text);
}

#pragma GCC diagnostic pop

} // namespace morrow
