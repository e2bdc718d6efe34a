// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <vtkOutputWindow.h> // superclass

#include "morrow_base_export.h"

/// An output window that writes VTK's texts, errors and warnings to standard output exactly as they come: no
/// prefix, no line end, not through the library's print function. Debug texts go the superclass's way.
///
/// MRUtil::setup_vtk_output_window_to_stdout() installs one.
class MORROW_BASE_EXPORT MorrowVTKOutputWindow : public vtkOutputWindow
{
public:
  static MorrowVTKOutputWindow* New();
  vtkTypeMacro(MorrowVTKOutputWindow, vtkOutputWindow)
  void PrintSelf(ostream& os, vtkIndent indent) override;

  /// Each writes text to standard output; a null text writes nothing.
  void DisplayText(const char* text) override;
  void DisplayErrorText(const char* text) override;
  void DisplayWarningText(const char* text) override;
  void DisplayGenericWarningText(const char* text) override;

protected:
  MorrowVTKOutputWindow() = default;
  ~MorrowVTKOutputWindow() override = default;

private:
  MorrowVTKOutputWindow(const MorrowVTKOutputWindow&) = delete;
  void operator=(const MorrowVTKOutputWindow&) = delete;
};
