// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "OpenGLStateGuard.h"

#include <vtkOpenGLRenderWindow.h>
#include <vtkOpenGLState.h>
#include <vtk_glew.h>

namespace morrow {

namespace {

// VTK keeps the framebuffers that it will return to on a stack; no frame needs as many.
constexpr int DeepestNesting = 16;

int bound_framebuffer()
{
  GLint framebuffer = 0;
  glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &framebuffer);
  return framebuffer;
}

bool has_rendered(vtkOpenGLRenderWindow* window)
{
  return window != nullptr && window->GetNeverRendered() == 0;
}

void set_state_between_props(vtkOpenGLState& state)
{
  state.vtkglEnable(GL_BLEND);
  state.vtkglEnable(GL_DEPTH_TEST);
  state.vtkglBlendEquation(GL_FUNC_ADD);
  state.vtkglBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
  state.vtkglDepthFunc(GL_LEQUAL);
  state.vtkglDepthMask(GL_TRUE);
  state.vtkglColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
}

} // namespace

OpenGLStateGuard::OpenGLStateGuard(vtkRenderWindow& window)
    : mWindow(vtkOpenGLRenderWindow::SafeDownCast(&window)), mFramebuffer(0)
{
  if (has_rendered(mWindow)) {
    mWindow->MakeCurrent();
    mFramebuffer = bound_framebuffer();
  }
}

OpenGLStateGuard::~OpenGLStateGuard() = default;

void OpenGLStateGuard::restore()
{
  if (!has_rendered(mWindow)) {
    return;
  }
  mWindow->MakeCurrent();
  vtkOpenGLState& state = *mWindow->GetState();
  for (int i = 0; i < DeepestNesting && bound_framebuffer() != mFramebuffer; ++i) {
    state.PopFramebufferBindings();
  }
  set_state_between_props(state);
}

} // namespace morrow
