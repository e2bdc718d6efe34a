// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <vtkSmartPointer.h>

class vtkLegendActor;
class vtkRenderer;

namespace morrow {

/// The scale of lengths at the bottom of a renderer.
class ViewLegend
{
public:
  /// The renderer is not owned.
  explicit ViewLegend(vtkRenderer& renderer);
  ~ViewLegend();
  ViewLegend(const ViewLegend&) = delete;
  ViewLegend& operator=(const ViewLegend&) = delete;

  /// In perspective it is not shown; an information message says so.
  void set_visible(bool on);
  [[nodiscard]] bool is_visible() const;

  /// The colour of the numbers, 3 doubles. Nothing while it is hidden.
  void set_color(const double* rgb);

private:
  void show();

  vtkRenderer& mRenderer;
  vtkSmartPointer<vtkLegendActor> mActor;
};

} // namespace morrow
