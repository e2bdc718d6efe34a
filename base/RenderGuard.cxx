// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "RenderGuard.h"

#include "GLabelMapper.h"
#include "OpenGLStateSnapshot.h"
#include "VTKSeam.h"

#include <vtkRenderWindow.h>
#include <vtkSmartPointer.h>

namespace morrow {

void render_guarded(vtkRenderWindow& window)
{
  const vtkSmartPointer<vtkRenderWindow> alive(&window);
  OpenGLStateSnapshot state(window);
  try {
    window.Render();
  } catch (...) {
    clear_in_render_status(window);
    state.restore();
    zBufferHelper::instance().forget();
    throw;
  }
}

} // namespace morrow
