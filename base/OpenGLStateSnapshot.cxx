// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "OpenGLStateSnapshot.h"

#include <vtkOpenGLRenderWindow.h>
#include <vtkOpenGLState.h>
#include <vtk_glew.h>

namespace morrow {

namespace {

// VTK keeps the framebuffers that it will return to on a stack; no frame needs as many.
constexpr int DeepestNesting = 16;

int bound_framebuffer(GLenum target)
{
  GLint framebuffer = 0;
  glGetIntegerv(target, &framebuffer);
  return framebuffer;
}

// False for a window without a context, be it that it never had one or that it was finalised.
bool make_current(vtkOpenGLRenderWindow* window)
{
  if (window == nullptr || window->GetNeverRendered() != 0) {
    return false;
  }
  window->MakeCurrent();
  return window->IsCurrent();
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

OpenGLStateSnapshot::OpenGLStateSnapshot(vtkRenderWindow& window)
    : mWindow(vtkOpenGLRenderWindow::SafeDownCast(&window))
{
  if (make_current(mWindow)) {
    mDrawFramebuffer = bound_framebuffer(GL_DRAW_FRAMEBUFFER_BINDING);
    mReadFramebuffer = bound_framebuffer(GL_READ_FRAMEBUFFER_BINDING);
  }
}

void OpenGLStateSnapshot::restore()
{
  if (!make_current(mWindow)) {
    return;
  }
  vtkOpenGLState& state = *mWindow->GetState();
  // The two have a stack each, and VTK does not always push on both.
  for (int i = 0; i < DeepestNesting && bound_framebuffer(GL_DRAW_FRAMEBUFFER_BINDING) != mDrawFramebuffer;
       ++i) {
    state.PopDrawFramebufferBinding();
  }
  for (int i = 0; i < DeepestNesting && bound_framebuffer(GL_READ_FRAMEBUFFER_BINDING) != mReadFramebuffer;
       ++i) {
    state.PopReadFramebufferBinding();
  }
  set_state_between_props(state);
}

} // namespace morrow
