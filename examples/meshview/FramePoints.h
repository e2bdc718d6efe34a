// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "BrantVector.h"

#include <vtkSmartPointer.h> // members

#include <vector>

class GView;
class vtkMatrix4x4;

/// Where world points are in the last frame of a view, and whether they were seen there.
class FramePoints
{
public:
  /// Reads the depths of the frame that the view has rendered.
  explicit FramePoints(GView& view);

  /// x and y in pixels from the bottom left corner of the view, z the depth from 0 (near) to 1 (far).
  [[nodiscard]] BrantVector project(const BrantVector& world) const;

  /// Is the projected point inside the picture and not behind what was drawn there?
  [[nodiscard]] bool is_visible(const BrantVector& projected) const;

  /// The picture's size in pixels.
  [[nodiscard]] int width() const noexcept { return mWidth; }
  [[nodiscard]] int height() const noexcept { return mHeight; }

private:
  int mWidth = 0;
  int mHeight = 0;
  std::vector<float> mDepths; // mWidth × mHeight, rows from the bottom
  vtkSmartPointer<vtkMatrix4x4> mProjection;
};
