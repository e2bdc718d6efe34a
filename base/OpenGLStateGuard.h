// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <vtkSmartPointer.h>

class vtkOpenGLRenderWindow;
class vtkRenderWindow;

namespace morrow {

/// Remembers which framebuffer a window draws into, so that drawing can go on after an exception has left VTK
/// in the middle of something.
class OpenGLStateGuard
{
public:
  explicit OpenGLStateGuard(vtkRenderWindow& window);
  ~OpenGLStateGuard();
  OpenGLStateGuard(const OpenGLStateGuard&) = delete;
  OpenGLStateGuard& operator=(const OpenGLStateGuard&) = delete;

  /// Binds that framebuffer again, and sets blending, depth test and write masks as VTK has them between two
  /// props. Does nothing for a window that has not rendered yet.
  void restore();

private:
  vtkSmartPointer<vtkOpenGLRenderWindow> mWindow; // null when it draws another way
  int mFramebuffer;
};

} // namespace morrow
