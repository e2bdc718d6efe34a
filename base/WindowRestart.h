// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

class vtkRenderWindow;

namespace morrow {

/// Takes a mapped window off the screen while it lives, so that what a native window is made with can be
/// changed, and puts it back at its end. The window's interactor, if it was ready, is made ready for the new
/// native window. Does nothing for a window that is not mapped. The window must outlive this object.
class WindowRestart
{
public:
  explicit WindowRestart(vtkRenderWindow& window);
  ~WindowRestart();
  WindowRestart(const WindowRestart&) = delete;
  WindowRestart& operator=(const WindowRestart&) = delete;

private:
  vtkRenderWindow& mWindow;
  bool mWasMapped;
};

} // namespace morrow
