// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "MRUtil.h"

#include <cstdarg>
#include <cstdio>

#include "BrantString.h"
#include "GView.h"
#include "MorrowVTKOutputWindow.h"
#include "VTKSeam.h"

#include <vtkInformationIntegerKey.h>
#include <vtkNew.h>
#include <vtkRenderWindow.h>
#include <vtkVersion.h>

namespace MRUtil {

namespace {

constexpr std::size_t MessageSize = 1024;

enum MessageKind : int
{
  Information = 0,
  Warning = 1,
  Error = 2
};

PrintFunction gPrintFunction = DefaultPrintFunction;
GraphicsStatus gCurrentGraphicsStatus = GRAPHICS_NORMAL;

// Made at load and never freed: VTK's key registry holds them until it ends itself.
vtkInformationIntegerKey* const gRenderModeKey = vtkInformationIntegerKey::MakeKey("RENDER_MODE", "MRUtil");
vtkInformationIntegerKey* const gVertexVisibilityKey =
    vtkInformationIntegerKey::MakeKey("VERTEX_VISIBILITY", "MRUtil");

[[gnu::format(printf, 2, 0)]] void print_formatted(MessageKind kind, const char* format, va_list arguments)
{
  char text[MessageSize] = "";
  std::vsnprintf(text, sizeof text, format, arguments);
  gPrintFunction(text, kind, true);
}

} // namespace

const char* const MouseFuncNames[NumMouseFunctions] = {
    "Rotate",
    "Rotate XY",
    "Rotate Z",
    "Rotate Camera",
    "Zoom",
    "Zoom Telephoto",
    "Zoom Navigate",
    "Zoom Box",
    "Pan",
    "Center On Click",
    "Zoom In Click",
    "Zoom Out Click",
    "Select",
    "Add Select",
    "Echo Selection",
    "Select Box",
    "Select Circle",
    "Select And Echo",
    "Pop_Up_Menu", // the underscores are deliberate: hosts have stored this name in their settings
    "Do Nothing",
    "Select Polygon",
    "Rotate About Mouse Cursor",
    "None",
};

vtkInformationIntegerKey* RENDER_MODE()
{
  return gRenderModeKey;
}

vtkInformationIntegerKey* VERTEX_VISIBILITY()
{
  return gVertexVisibilityKey;
}

// The three differ on purpose in how they treat null and empty formats.

void print_info(const char* format, ...)
{
  if (format == nullptr) {
    return;
  }
  if (format[0] == '\0') {
    gPrintFunction(nullptr, Information, false);
    return;
  }
  va_list arguments;
  va_start(arguments, format);
  print_formatted(Information, format, arguments);
  va_end(arguments);
}

void print_warning(const char* format, ...)
{
  if (format == nullptr) {
    gPrintFunction(nullptr, Warning, false);
    return;
  }
  va_list arguments;
  va_start(arguments, format);
  print_formatted(Warning, format, arguments);
  va_end(arguments);
}

void print_error(const char* format, ...)
{
  if (format == nullptr) {
    gPrintFunction(nullptr, Error, false);
    return;
  }
  va_list arguments;
  va_start(arguments, format);
  print_formatted(Error, format, arguments);
  va_end(arguments);
}

void print_no_more()
{
  gPrintFunction(nullptr, Information, false);
}

void set_print_function(PrintFunction f)
{
  gPrintFunction = f != nullptr ? f : NoPrint;
}

void get_print_function(PrintFunction& f)
{
  f = gPrintFunction;
}

bool is_print_function_NoPrint()
{
  return gPrintFunction == NoPrint;
}

void NoPrint(const char* /*text*/, int /*kind*/, bool /*has_text*/) {}

void DefaultPrintFunction(const char* text, int kind, bool /*has_text*/)
{
  if (text == nullptr) {
    return;
  }
  switch (kind) {
  case Warning:
    std::printf("Warning: %s", text);
    break;
  case Error:
    std::printf("Error: %s", text);
    break;
  default:
    std::printf("%s", text);
  }
}

void setup_vtk_output_window_to_stdout()
{
  vtkNew<MorrowVTKOutputWindow> window;
  vtkOutputWindow::SetInstance(window);
}

GraphicsStatus get_graphics_status()
{
  return gCurrentGraphicsStatus;
}

void set_graphics_status(GraphicsStatus s)
{
  if (s != GRAPHICS_RESUME) {
    gCurrentGraphicsStatus = s;
  } else if (gCurrentGraphicsStatus != GRAPHICS_DISABLED) {
    gCurrentGraphicsStatus = GRAPHICS_NORMAL;
  }
}

std::string get_graphics_version()
{
  return "VTK Version 8.0.1";
}

std::string get_vtk_version()
{
  return vtkVersion::GetVTKVersion();
}

std::string get_gl_info()
{
  BrantString info("Displaying using:\n");
  if (const char* vendor = morrow::gl_string(morrow::GlString::Vendor)) {
    info += BrantString::format("    Vendor: %s\n", vendor);
  }
  if (const char* renderer = morrow::gl_string(morrow::GlString::Renderer)) {
    info += BrantString::format("  Renderer: %s\n", renderer);
  }
  if (const char* version = morrow::gl_string(morrow::GlString::Version)) {
    info += BrantString::format("   Version: %s\n", version);
  }
  return info.str();
}

void setup_preferred_window_size()
{
  vtkNew<vtkRenderWindow> window;
  const int half_height = window->GetScreenSize()[1] / 2;
  GView::set_preferred_window_size(half_height, half_height);
}

} // namespace MRUtil
