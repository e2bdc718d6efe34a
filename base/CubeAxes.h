// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <vtkSmartPointer.h>

class vtkCubeAxesActor2D;
class vtkRenderer;

namespace morrow {

/// The axes with numbers around everything visible in a renderer.
///
/// Each axis prints its numbers as scale_format() says. One that is too short on the screen for them, because
/// the box is flat or is seen along the axis, is left out; nothing is drawn around nothing, or around bounds
/// that are not finite. The axes take no part in anybody's bounds.
class CubeAxes
{
public:
  /// The renderer is not owned.
  explicit CubeAxes(vtkRenderer& renderer);

  void set_visible(bool on);
  [[nodiscard]] bool is_visible() const;

  /// The colour of lines and text, 3 doubles. Nothing while they are hidden.
  void set_color(const double* rgb);

  /// Puts them around what is visible now, as the renderer's present camera sees it. Asks props for their
  /// bounds, which may be host code that destroys this.
  void fit() const;

  /// Null while they are hidden.
  [[nodiscard]] vtkCubeAxesActor2D* actor() const;

private:
  vtkRenderer& mRenderer;
  vtkSmartPointer<vtkCubeAxesActor2D> mActor;
};

} // namespace morrow
