// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <vtkSmartPointer.h>

class vtkOpenGLRenderWindow;
class vtkRenderWindow;

namespace morrow {

/// Remembers which framebuffers a window draws into and reads from, so that drawing can go on after an
/// exception has left VTK in the middle of something.
class OpenGLStateSnapshot
{
public:
  explicit OpenGLStateSnapshot(vtkRenderWindow& window);

  /// Binds those framebuffers again, and sets blending, depth test and write masks as VTK has them between
  /// two props. Does nothing for a window that has not rendered yet.
  void restore();

private:
  vtkSmartPointer<vtkOpenGLRenderWindow> mWindow; // null when it draws another way
  int mDrawFramebuffer = 0;
  int mReadFramebuffer = 0;
};

} // namespace morrow
