// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <vector>

#include <vtkCubeAxesActor2D.h>

namespace morrow {

class CubeAxis;
struct LabelBox;

/// Cube axes that can be read: each axis has a number format for its own range, see scale_format(), where VTK
/// prints three significant digits whatever the range. Axes without room for their numbers on the screen are
/// left out, and all are when the bounds are empty or not finite. Numbers do not overlap: along an axis some
/// are left out, and where two axes meet they move away from their axes.
class CubeAxesActor : public vtkCubeAxesActor2D
{
public:
  static CubeAxesActor* New();
  vtkTypeMacro(CubeAxesActor, vtkCubeAxesActor2D)
  void PrintSelf(ostream& os, vtkIndent indent) override;
  CubeAxesActor(const CubeAxesActor&) = delete;
  void operator=(const CubeAxesActor&) = delete;

  int RenderOpaqueGeometry(vtkViewport* viewport) override;
  int RenderOverlay(vtkViewport* viewport) override;

  /// The numbers that the last frame has drawn in this viewport.
  [[nodiscard]] std::vector<LabelBox> labels(vtkViewport& viewport) const;

protected:
  CubeAxesActor();
  ~CubeAxesActor() override = default;

private:
  [[nodiscard]] bool has_bounds() const;
  [[nodiscard]] std::vector<CubeAxis*> drawn_axes() const;
};

} // namespace morrow
