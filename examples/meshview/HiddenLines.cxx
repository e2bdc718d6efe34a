// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "HiddenLines.h"

#include "MeshLines.h"
#include "MeshModel.h"

#include <vtkCallbackCommand.h>
#include <vtkMapper.h>
#include <vtkNew.h>
#include <vtkObjectFactory.h>
#include <vtkOpenGLActor.h>
#include <vtkOpenGLRenderWindow.h>
#include <vtkOpenGLState.h>
#include <vtkPolyData.h>
#include <vtkProperty.h>
#include <vtkRenderer.h>
#include <vtk_glew.h> // GL_GREATER

namespace {

constexpr int kPattern = 0x3333;                   // short, as it starts anew with each edge
constexpr BrantColor kOnBackground(135, 135, 135); // grey that can be read on dark and light
constexpr BrantColor kOnSurface(64, 64, 64);

/// Draws what is behind that which has been drawn, and leaves no depth.
class BehindActor : public vtkOpenGLActor
{
public:
  static BehindActor* New();
  vtkTypeMacro(BehindActor, vtkOpenGLActor)
  BehindActor(const BehindActor&) = delete;
  BehindActor& operator=(const BehindActor&) = delete;

  void Render(vtkRenderer* renderer, vtkMapper* mapper) override
  {
    auto* window = vtkOpenGLRenderWindow::SafeDownCast(renderer->GetRenderWindow());
    if (window == nullptr) {
      return;
    }
    vtkOpenGLState* state = window->GetState();
    const vtkOpenGLState::ScopedglDepthFunc function(state);
    const vtkOpenGLState::ScopedglDepthMask mask(state);
    state->vtkglDepthFunc(GL_GREATER);
    state->vtkglDepthMask(GL_FALSE);
    mapper->Render(renderer, this);
  }

protected:
  BehindActor() = default;
  ~BehindActor() override = default;
};

vtkStandardNewMacro(BehindActor)

/// The command tells the shader the property's pattern, in each frame.
void set_stipple(vtkActor& actor, GView& view)
{
  vtkNew<vtkCallbackCommand> command;
  command->SetCallback(&GModel::SetStippleShaderUniform);
  command->SetClientData(actor.GetProperty());
  actor.GetProperty()->SetLineStipplePattern(kPattern);
  GModel::setup_stippled_line_mapper(actor.GetMapper(), &view, command);
}

std::vector<vtkSmartPointer<vtkProp>> make_props(vtkDataObject* data, BrantColor color, GView& view)
{
  vtkNew<BehindActor> actor;
  set_lines(*actor, vtkPolyData::SafeDownCast(data), color);
  set_stipple(*actor, view);
  return {actor};
}

} // namespace

void HiddenLines::show(const MeshModel& mesh, const DrawStyle& style)
{
  clear();
  if (!style.hidden_lines) {
    return;
  }
  const BrantColor color = style.surface == Surface::Hidden ? kOnBackground : kOnSurface;
  for (const auto& lines : mesh.lines()) {
    add_part(lines->features(),
             [color](vtkDataObject* data, GView* view) { return make_props(data, color, *view); });
  }
}
