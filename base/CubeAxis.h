// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <array>
#include <vector>

#include <vtkAxisActor2D.h>

class vtkViewport;

namespace morrow {

/// Where a label lies, in pixels of the viewport. A label that is not shown lies nowhere.
struct LabelBox
{
  std::array<double, 2> low = {0.0, 0.0};
  std::array<double, 2> high = {0.0, 0.0};
  bool is_shown = false;
};

/// Whether two shown labels come nearer to each other than a legible gap.
[[nodiscard]] bool collide(const LabelBox& a, const LabelBox& b);

/// Every how many labels of a row can be shown without a collision: 1, 2, 4, … or, for the two ends alone,
/// count - 1. All boxes are shown.
[[nodiscard]] int label_step(const std::vector<LabelBox>& row);

/// One of the cube axes. It chooses its number format by itself, see scale_format(), and keeps its labels
/// from each other.
class CubeAxis : public vtkAxisActor2D
{
public:
  static CubeAxis* New();
  vtkTypeMacro(CubeAxis, vtkAxisActor2D)
  CubeAxis(const CubeAxis&) = delete;
  void operator=(const CubeAxis&) = delete;

  using vtkAxisActor2D::SetRange;
  void SetRange(double first, double last) override;

  /// The cube hands one format to all of its axes: which one does not matter.
  void SetLabelFormat(const char* format) override;

  /// Whether the axis is long enough on the screen, and its range wide enough for doubles.
  [[nodiscard]] bool has_room();

  /// The labels as they will be drawn. What follows holds until the axis is built anew, as it is when it has
  /// moved.
  [[nodiscard]] std::vector<LabelBox> labels(vtkViewport& viewport) const;

  /// Hides as many labels as it takes for the others not to collide.
  void thin_out(vtkViewport& viewport);

  /// Moves a label by so many pixels away from the axis.
  void push(int label, double pixels, vtkViewport& viewport);
  void hide(int label);

protected:
  CubeAxis() = default;
  ~CubeAxis() override = default;

private:
  [[nodiscard]] LabelBox label(int i, vtkViewport& viewport) const;
};

/// Moves labels of different axes that collide away from their axes; where that does not help, the later ones
/// are hidden.
void keep_labels_apart(const std::vector<CubeAxis*>& axes, vtkViewport& viewport);

} // namespace morrow
