// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <vtkNew.h> // members

#include <array>
#include <vector>

class GView;
class vtkActor2D;
class vtkPoints;
class vtkPolyData;

/// A closed line that is drawn with the mouse, on the view's overlay renderer.
class RubberBand
{
public:
  /// Lives longer than this.
  explicit RubberBand(GView& view);
  ~RubberBand();
  RubberBand(const RubberBand&) = delete;
  RubberBand& operator=(const RubberBand&) = delete;

  /// From the next frame on. corners: pixels from the window's bottom left corner. Blue, or green where what
  /// the line touches counts too, as it is common.
  void show(const std::vector<std::array<double, 2>>& corners, bool is_for_touched);
  void hide();

private:
  GView& mView;
  vtkNew<vtkPoints> mPoints;
  vtkNew<vtkPolyData> mLine;
  vtkNew<vtkActor2D> mActor;
};
