// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "Display.h"

#include <vtkRenderWindow.h>

#include <X11/Xlib.h>

std::string display_problem()
{
  const std::string name = XDisplayName(nullptr); // what DISPLAY says
  Display* display = XOpenDisplay(nullptr);
  if (display == nullptr) {
    return name.empty() ? "no display: DISPLAY is not set" : "the display " + name + " cannot be reached";
  }
  int opcode = 0;
  int event = 0;
  int error = 0;
  const bool has_opengl = XQueryExtension(display, "GLX", &opcode, &event, &error) != 0;
  XCloseDisplay(display);
  return has_opengl ? "" : "the display " + name + " has no OpenGL";
}

bool has_events(vtkRenderWindow& window)
{
  auto* display = static_cast<Display*>(window.GetGenericDisplayId());
  return display != nullptr && XPending(display) > 0;
}
