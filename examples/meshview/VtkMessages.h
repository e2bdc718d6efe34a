// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <vtkSmartPointer.h> // members

#include <string>

class vtkOutputWindow;

/// Collects what VTK reports while it lives, instead of letting it reach the terminal. Nests.
///
/// Switches VTK's warning display on meanwhile: without it VTK's errors are not reported at all, and the
/// first GModel of the process switches it off.
class VtkMessages
{
public:
  VtkMessages();
  ~VtkMessages();
  VtkMessages(const VtkMessages&) = delete;
  VtkMessages& operator=(const VtkMessages&) = delete;

  /// The first error, as one line without VTK's heading; empty when there was none.
  [[nodiscard]] std::string first_error() const;

  /// The same for warnings.
  [[nodiscard]] std::string first_warning() const;

private:
  class Window;
  vtkSmartPointer<Window> mWindow;
  vtkSmartPointer<vtkOutputWindow> mOuter;
  int mOuterDisplay;
};
