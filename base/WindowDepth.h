// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <vtkNew.h> // member

class vtkFloatArray;
class vtkRenderer;
class vtkRenderWindow;

namespace morrow {

/// The depth buffer that a renderer leaves behind in its window.
class WindowDepth
{
public:
  WindowDepth();
  ~WindowDepth();
  WindowDepth(const WindowDepth&) = delete;
  WindowDepth& operator=(const WindowDepth&) = delete;

  /// Reads the renderer's depth from its window, which must have one. When another renderer has drawn over it
  /// in the last frame, the window is rendered anew, and the depth read in between; exceptions of host code
  /// in that frame pass through. A window without a frame has no depth. Returns whether it has rendered.
  bool read(vtkRenderer& renderer);

  /// Whether nothing lies more than 0.01 in front of the pixel at (x, y) in depth z. Coordinates are cut to
  /// whole pixels, towards 0; outside of the window, and for what is not a number, nothing is visible.
  /// Without depth nothing hides anything that lies inside the window.
  [[nodiscard]] bool shows(double x, double y, double z) const noexcept
  {
    const bool is_inside = x > -1.0 && y > -1.0 && x < mWidth && y < mHeight;
    if (!is_inside) {
      return false;
    }
    const double depth =
        mBuffer != nullptr
            ? static_cast<double>(mBuffer[mRowLength * static_cast<long long>(y) + static_cast<long long>(x)])
            : 1.0;
    return depth + 0.01 >= z;
  }

private:
  void read_buffer(vtkRenderWindow& window);
  void read_in_frame(vtkRenderer& renderer, vtkRenderWindow& window);

  vtkNew<vtkFloatArray> mArray;
  const float* mBuffer = nullptr; // rows bottom up, the last of their values undefined
  long long mRowLength = 1;
  int mWidth = 0;
  int mHeight = 0;
};

} // namespace morrow
