// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "MorrowVTKOutputWindow.h"

#include <cstdio>

#include <vtkObjectFactory.h>

vtkStandardNewMacro(MorrowVTKOutputWindow)

namespace {

void write_unchanged(const char* text)
{
  if (text != nullptr) {
    std::printf("%s", text);
  }
}

} // namespace

void MorrowVTKOutputWindow::DisplayText(const char* text)
{
  write_unchanged(text);
}

void MorrowVTKOutputWindow::DisplayErrorText(const char* text)
{
  write_unchanged(text);
}

void MorrowVTKOutputWindow::DisplayWarningText(const char* text)
{
  write_unchanged(text);
}

void MorrowVTKOutputWindow::DisplayGenericWarningText(const char* text)
{
  write_unchanged(text);
}

void MorrowVTKOutputWindow::PrintSelf(ostream& os, vtkIndent indent)
{
  this->Superclass::PrintSelf(os, indent);
}
