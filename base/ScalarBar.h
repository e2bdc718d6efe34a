// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <vector>

#include "BrantColor.h" // by value

#include <vtkSmartPointer.h>

class vtkLookupTable;
class vtkProp;
class vtkRenderWindow;
class vtkRenderWindowInteractor;
class vtkRenderer;
class vtkScalarBarWidget;

namespace morrow {

/// What a scalar bar shows.
struct ScalarBarScale
{
  double minimum;
  double maximum;
  bool keeps_hues;                       // of VTK, red to blue, instead of blue to red
  const std::vector<BrantColor>& colors; // in place of hues, unless empty
};

/// The place of a view's scalar bar widget.
///
/// VTK's widget can be shown only with an interactor. Until the window has one, and when it has lost it, the
/// same bar is shown here as a plain prop; whoever switches the widget on or off meanwhile is respected. A
/// widget belongs to the view that took it last: its default renderer tells whose it is.
///
/// Switching a widget on or off calls its observers, host code, which may come back here. Whoever calls this
/// keeps it alive meanwhile.
class ScalarBar
{
public:
  /// The renderer is not owned and must outlive this object.
  explicit ScalarBar(vtkRenderer& renderer);
  ~ScalarBar();
  ScalarBar(const ScalarBar&) = delete;
  ScalarBar& operator=(const ScalarBar&) = delete;

  /// Takes the widget with a reference and attaches it to the window's interactor; it stays as enabled as it
  /// is. The one held before is disabled, detached and let go, and so is one that host code sets meanwhile.
  /// Null only lets go.
  void set_widget(vtkScalarBarWidget* widget);
  [[nodiscard]] vtkScalarBarWidget* widget() const;

  /// Takes a new widget that shows a scale, enabled. False, and nothing, for limits that are not finite.
  bool set_up(const ScalarBarScale& scale);

  /// The colour of the bar's text, 3 doubles, now and for widgets that come.
  void set_label_color(const double* rgb);

  /// Attaches the widget to the interactor that the renderer's window has now. For changes of the window and
  /// the start of each frame.
  void update();

private:
  void let_go();
  void color_text();
  [[nodiscard]] bool is_owner() const;
  void note_whether_shown();
  void attach(vtkRenderWindowInteractor* interactor);
  void show_without_interactor(bool on);

  vtkRenderer& mRenderer;
  vtkSmartPointer<vtkScalarBarWidget> mWidget;
  vtkSmartPointer<vtkProp> mPlainProp; // in the renderer while there is no interactor
  bool mIsShown = false;
  double mLabelColor[3] = {1.0, 1.0, 1.0};
};

/// The lookup table of a scale: its limits in ascending order.
vtkSmartPointer<vtkLookupTable> make_lookup_table(const ScalarBarScale& scale);

} // namespace morrow
