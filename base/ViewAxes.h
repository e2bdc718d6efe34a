// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "BrantColor.h" // by value
#include "MRUtil.h"     // MRUtil::AxisType

#include <vtkSmartPointer.h>

class GAxis;
class vtkRenderer;

namespace morrow {

/// The triad in the corner of a renderer and the axis prop among its models.
class ViewAxes
{
public:
  /// The renderer is not owned.
  explicit ViewAxes(vtkRenderer& renderer);
  ~ViewAxes();
  ViewAxes(const ViewAxes&) = delete;
  ViewAxes& operator=(const ViewAxes&) = delete;

  /// Makes the triad and shows it. Before that, and after delete_triad(), there is none, and nothing below
  /// has an effect on it.
  void make_triad();
  void delete_triad();

  void set_triad_visible(bool on);
  [[nodiscard]] bool is_triad_visible() const { return mIsTriadVisible; }
  [[nodiscard]] bool is_on_triad(int x, int y) const;

  /// The colour of the triad's labels, from now on whatever the background.
  void set_triad_label_color(BrantColor color);

  /// The same until the other is called.
  void follow_background(BrantColor color);

  void set_axis_visible(bool on);
  [[nodiscard]] bool is_axis_visible() const;
  void set_axis_type(MRUtil::AxisType type);
  [[nodiscard]] MRUtil::AxisType axis_type() const { return mAxisType; }

private:
  vtkRenderer& mRenderer;
  vtkSmartPointer<GAxis> mTriad;
  bool mIsTriadVisible = false;
  bool mHasOwnColor = false;
  MRUtil::AxisType mAxisType = MRUtil::AXIS_3D;
  vtkSmartPointer<GAxis> mAxis; // null while hidden
};

} // namespace morrow
