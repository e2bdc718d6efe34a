// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <memory>

#include "BrantColor.h" // passed by value
#include "MRUtil.h"     // AxisType
#include "morrow_base_export.h"

#include <vtkProp.h>        // superclass
#include <vtkWeakPointer.h> // members

class vtkRenderer;
class vtkWindow;

namespace morrow {
class AxisForm;
struct AxisFrame;
} // namespace morrow

/// The axis triad of a view, in one of three forms.
///
/// MRUtil::AXIS_3D: red, green and blue arrows along the world's x, y and z axes at the world's origin, with
/// the labels "X", "Y" and "Z" at their tips. A label is drawn while no geometry lies in front of the tip, as
/// the depth buffer has it when overlays are drawn.
/// MRUtil::AXIS_2D: the same arrows and labels drawn flat in the lower left corner of the viewport, over
/// everything else, turning with the camera.
/// MRUtil::AXIS_1D: a small yellow ball at the world's origin.
///
/// The size is the same on the screen whatever the camera does: an arrow is as long as 5 % of the viewport's
/// shorter side, in space the length that GView::pixel_to_model_length() gives for so many pixels at the
/// origin (in a viewport wider than high that is longer than in the corner). The ball's radius is a quarter
/// of it. A viewport less than 2 pixels wide or high shows nothing, and one less than about 330 pixels leaves
/// only the tips of arrows whose shafts are thinner than a pixel.
///
/// The prop can be shown in several renderers, one after the other; each window that shows it makes it build
/// its graphics resources anew, so one triad for each view is the better way. It takes no part in picking.
class MORROW_BASE_EXPORT GAxis : public vtkProp
{
public:
  /// A triad of type MRUtil::AXIS_3D without a renderer.
  static GAxis* New();
  vtkTypeMacro(GAxis, vtkProp)
  void PrintSelf(ostream& os, vtkIndent indent) override;

  /// Changes the form. The present type does nothing; another one discards the form with the colour of its
  /// labels, switches picking off again and builds the new form. A value that is no AxisType is kept as type
  /// and shows nothing until another type is set. Requests no render.
  void set_type(MRUtil::AxisType type);
  /// As set; initially MRUtil::AXIS_3D.
  [[nodiscard]] MRUtil::AxisType get_type() const { return mType; }

  /// Colour of the three labels, white in a new form; alpha is ignored. Nothing in a form without labels.
  void set_label_color(BrantColor color);

  /// The renderer that the triad belongs to, which gives the scale of GetBounds(); drawing goes by the
  /// renderer that draws. Not owned, may be null (the default), and may die before the triad.
  void set_renderer(vtkRenderer* renderer);
  [[nodiscard]] vtkRenderer* get_renderer() const;

  /// The square around the triad's corner: bounds receives 4 ints (xmin, xmax, ymin, ymax), in pixels from
  /// the lower left corner of ren's viewport, all inclusive. Made for MRUtil::AXIS_2D; the other forms have
  /// no corner and give the square around pixel (0, 0). A null renderer gives (0, -1, 0, -1), which holds no
  /// pixel; null bounds do nothing.
  void get_screen_bounds(vtkRenderer* ren, int* bounds);

  /// World coordinates (xmin, xmax, ymin, ymax, zmin, zmax): the cube around the origin whose half side is an
  /// arrow's length at the present zoom. Null, so without part in camera resets, for MRUtil::AXIS_2D, and
  /// also while nothing gives the scale: without a renderer, and while that has no pixels or no camera. Valid
  /// until the next call.
  double* GetBounds() override;

  /// Draw their share of the present form and return the number of parts that VTK says it has drawn. 0 for a
  /// viewport that is null, no vtkRenderer or in no rendered window, and while the triad is invisible.
  int RenderOpaqueGeometry(vtkViewport* viewport) override;
  int RenderTranslucentPolygonalGeometry(vtkViewport* viewport) override;
  int RenderOverlay(vtkViewport* viewport) override;

  void ReleaseGraphicsResources(vtkWindow* window) override;

protected:
  GAxis();
  ~GAxis() override;

private:
  GAxis(const GAxis&) = delete;
  void operator=(const GAxis&) = delete;

  struct Corner
  {
    int x, y; // pixels from the viewport's lower left corner
  };

  void construct(MRUtil::AxisType type);
  void destruct();
  bool start_frame(vtkViewport* viewport, morrow::AxisFrame& frame);
  void adopt_window(vtkWindow* window);
  [[nodiscard]] Corner corner(vtkRenderer& renderer) const;
  [[nodiscard]] float pixel_length(vtkRenderer& renderer) const;
  [[nodiscard]] double model_length(vtkRenderer& renderer) const;

  MRUtil::AxisType mType = MRUtil::AXIS_3D;
  float mSizeFraction = 0.05F; // of the viewport's shorter side
  float mXPositionFraction = 0.0F;
  float mYPositionFraction = 0.0F;
  double mBounds[6] = {};
  vtkWeakPointer<vtkRenderer> mRenderer;
  vtkWeakPointer<vtkWindow> mWindow;       // has the form's graphics resources
  std::shared_ptr<morrow::AxisForm> mForm; // shared by the pass that is drawing
};
