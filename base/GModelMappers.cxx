// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// The operations of GModel that make and prepare mappers for prop functions.
#include "GModel.h"

#include "BrantString.h"
#include "GView.h"
#include "MyCompositePolyDataMapper.h"
#include "ShaderText.h"
#include "VTKSeam.h"

#include <vtkCallbackCommand.h>
#include <vtkCommand.h>
#include <vtkDataObject.h>
#include <vtkMapper.h>
#include <vtkOpenGLPolyDataMapper.h>
#include <vtkPolyDataMapper.h>
#include <vtkProperty.h>
#include <vtkShaderProgram.h>

namespace {

// Of what the host gives: an offset of (1, 1) then also clears lines that are three pixels wide.
constexpr double OffsetScale = 2.0;

void observe_shaders(vtkMapper& mapper, vtkCommand* command)
{
  if (command != nullptr && !mapper.HasObserver(vtkCommand::UpdateShaderEvent, command)) {
    mapper.AddObserver(vtkCommand::UpdateShaderEvent, command, 0.0F);
  }
}

} // namespace

vtkSmartPointer<vtkMapper> GModel::create_mapper(vtkDataObject* data, GView* /*view*/)
{
  vtkSmartPointer<vtkMapper> mapper;
  if (data != nullptr && data->IsA("vtkMultiBlockDataSet")) {
    mapper = vtkSmartPointer<MyCompositePolyDataMapper>::New();
  } else {
    mapper = vtkSmartPointer<vtkPolyDataMapper>::New();
  }
  mapper->SetStatic(1);
  mapper->SetInputDataObject(data);
  return mapper;
}

void GModel::set_polygon_offset(vtkMapper* mapper, double factor, double units)
{
  auto* polygons = vtkOpenGLPolyDataMapper::SafeDownCast(mapper);
  if (polygons == nullptr || (factor == 0.0 && units == 0.0)) {
    return;
  }
  const BrantString shader = morrow::depth_offset_fragment_shader(morrow::polygon_fragment_shader(),
                                                                  OffsetScale * factor, OffsetScale * units);
  morrow::set_fragment_shader(*polygons, shader.c_str());
}

void GModel::setup_stippled_line_mapper(vtkMapper* mapper, GView* view, vtkCommand* uniform_command)
{
  auto* lines = vtkOpenGLPolyDataMapper::SafeDownCast(mapper);
  if (lines == nullptr) {
    return;
  }
  const BrantString shader = morrow::stipple_fragment_shader(morrow::polygon_fragment_shader());
  morrow::set_geometry_shader(*lines, morrow::stipple_geometry_shader());
  morrow::set_fragment_shader(*lines, shader.c_str());
  observe_shaders(*lines, view != nullptr ? view->update_viewport_command() : nullptr);
  observe_shaders(*lines, uniform_command);
}

void GModel::SetStippleShaderUniform(vtkObject* /*caller*/, unsigned long /*event*/, void* client_data,
                                     void* call_data)
{
  auto* property = static_cast<vtkProperty*>(client_data);
  auto* program = static_cast<vtkShaderProgram*>(call_data);
  if (property != nullptr && program != nullptr && program->IsUniformUsed("StipplePattern")) {
    program->SetUniformi("StipplePattern", property->GetLineStipplePattern());
  }
}
