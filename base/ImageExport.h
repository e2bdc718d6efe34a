// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <vtkSmartPointer.h>

class vtkImageWriter;
class vtkRenderWindow;

namespace morrow {

/// The writer for a GView::ImageFileType; null for any other code.
[[nodiscard]] vtkSmartPointer<vtkImageWriter> make_image_writer(int type);

/// Makes a window draw into off-screen buffers while it lives. At the end they are off, whatever they were
/// before: a window that is shown draws on the screen again. One that never is stays off the screen and keeps
/// drawing.
class OffScreenBuffers
{
public:
  explicit OffScreenBuffers(vtkRenderWindow& window);
  ~OffScreenBuffers();
  OffScreenBuffers(const OffScreenBuffers&) = delete;
  OffScreenBuffers& operator=(const OffScreenBuffers&) = delete;

private:
  vtkSmartPointer<vtkRenderWindow> mWindow;
};

/// Writes the picture that the window has drawn last, without rendering again. The window must have been
/// rendered once.
void write_picture(vtkRenderWindow& window, vtkImageWriter& writer, const char* filename);

} // namespace morrow
