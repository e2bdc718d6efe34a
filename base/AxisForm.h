// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <array>
#include <memory>
#include <vector>

#include "BrantColor.h"

#include <vtkNew.h>
#include <vtkSmartPointer.h>

class vtkActor2D;
class vtkAlgorithmOutput;
class vtkCoordinate;
class vtkGeneralTransform;
class vtkProp;
class vtkRenderer;
class vtkTextMapper;
class vtkTextProperty;
class vtkTransform;
class vtkTransformPolyDataFilter;
class vtkViewport;
class vtkWindow;

/// The three forms of an axis triad (GAxis).
namespace morrow {

/// What a form needs to know of the frame that it is drawn in.
struct AxisFrame
{
  vtkRenderer* renderer;  // in a window, at least 2 × 2 pixels large
  float pixel_length;     // of an arrow
  double model_length;    // the same in world units; finite, 0 when the camera gives none
  int corner_x, corner_y; // of the 2-D form, in pixels from the viewport's lower left corner
};

/// Whether a pixel of this renderer lies under a display point, in pixels of the window; false for a
/// coordinate that is not a number. Only then the point converts to int and has a depth.
[[nodiscard]] bool is_on_renderer(vtkRenderer& renderer, double x, double y);

/// One form: the parts that draw it and where they are. Parts are first the shapes, then the labels, each in
/// the order x, y, z.
class AxisForm
{
public:
  AxisForm();
  virtual ~AxisForm();
  AxisForm(const AxisForm&) = delete;
  AxisForm& operator=(const AxisForm&) = delete;

  /// Size, orientation and place of the shapes.
  virtual void place(const AxisFrame& frame) = 0;
  /// Place and visibility of the labels, once the shapes are placed and drawn.
  virtual void place_labels(const AxisFrame& frame) = 0;

  /// One pass over the parts: the sum of what they return. Labels that are invisible have no overlay.
  int render_opaque(vtkViewport* viewport);
  int render_translucent(vtkViewport* viewport);
  int render_overlay(vtkViewport* viewport);

  /// Nothing for a form without labels.
  void set_label_color(BrantColor color);
  void release(vtkWindow* window);

  [[nodiscard]] const std::vector<vtkSmartPointer<vtkProp>>& shapes() const { return mShapes; }
  [[nodiscard]] const std::vector<vtkSmartPointer<vtkActor2D>>& labels() const { return mLabels; }

protected:
  /// Resets the shared transform, turns it (4 doubles: degrees, axis; null for no turn) and scales it.
  void set_transform(const double* wxyz, double length);

  vtkNew<vtkGeneralTransform> mTransform; // unit arrow or ball to where it is drawn
  std::vector<vtkSmartPointer<vtkProp>> mShapes;
  std::vector<vtkSmartPointer<vtkActor2D>> mLabels;
  vtkSmartPointer<vtkTextProperty> mLabelStyle; // null without labels

private:
  template<typename Function>
  void for_each_part(Function&& function);
};

[[nodiscard]] std::unique_ptr<AxisForm> make_axis_form_3d();
[[nodiscard]] std::unique_ptr<AxisForm> make_axis_form_2d();
[[nodiscard]] std::unique_ptr<AxisForm> make_axis_form_1d();

} // namespace morrow
