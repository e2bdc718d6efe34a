// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "VtkMessages.h"

#include <vtkLogger.h>
#include <vtkObject.h>
#include <vtkObjectFactory.h>
#include <vtkOutputWindow.h>

#include <cstring>
#include <sstream>

namespace {

constexpr std::size_t kLongest = 200; // bytes; VTK quotes as much of a damaged file as it likes

/// "ERROR: In file, line 12\nvtkClass (0x55): text\n\n" → "text". Other forms stay as they are.
std::string without_heading(const std::string& message)
{
  const auto heading_end = message.find('\n');
  const auto object_end = message.find("): ", heading_end);
  if (heading_end == std::string::npos) {
    return message;
  }
  return message.substr(object_end == std::string::npos ? heading_end + 1 : object_end + 3);
}

/// Words with single blanks between them.
std::string as_one_line(const std::string& text)
{
  std::istringstream words(text.substr(0, kLongest));
  std::string line;
  for (std::string word; words >> word;) {
    line += (line.empty() ? "" : " ") + word;
  }
  return line;
}

} // namespace

/// VTK's place for messages.
class VtkMessages::Window : public vtkOutputWindow
{
public:
  static Window* New();
  vtkTypeMacro(Window, vtkOutputWindow)
  Window(const Window&) = delete;
  void operator=(const Window&) = delete;

  void DisplayText(const char* /*text*/) override {}
  void DisplayErrorText(const char* text) override { keep(mError, text); }
  void DisplayWarningText(const char* text) override { keep(mWarning, text); }
  void DisplayGenericWarningText(const char* text) override { keep(mWarning, text); }

  std::string mError;
  std::string mWarning;

protected:
  Window() = default;
  ~Window() override = default;

private:
  /// The pipeline's own complaint about a failure says less than what came before it, if anything did.
  static void keep(std::string& first, const char* text)
  {
    const bool is_echo = text == nullptr || std::strstr(text, "returned failure for request") != nullptr;
    if (first.empty() && !is_echo) {
      first = as_one_line(without_heading(text));
    }
  }
};

vtkStandardNewMacro(VtkMessages::Window)

VtkMessages::VtkMessages()
    : mWindow(vtkSmartPointer<Window>::New()), mOuter(vtkOutputWindow::GetInstance()),
      mOuterDisplay(vtkObject::GetGlobalWarningDisplay())
{
  vtkLogger::SetStderrVerbosity(vtkLogger::VERBOSITY_OFF); // the log repeats every message
  vtkOutputWindow::SetInstance(mWindow);
  vtkObject::SetGlobalWarningDisplay(1);
}

VtkMessages::~VtkMessages()
{
  vtkObject::SetGlobalWarningDisplay(mOuterDisplay);
  vtkOutputWindow::SetInstance(mOuter);
}

std::string VtkMessages::first_error() const
{
  return mWindow->mError;
}

std::string VtkMessages::first_warning() const
{
  return mWindow->mWarning;
}
