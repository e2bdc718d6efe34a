// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "morrow_base_export.h"

#include <vtkNew.h>         // members
#include <vtkProp.h>        // superclass
#include <vtkTimeStamp.h>   // member
#include <vtkWeakPointer.h> // member

class vtkActor2D;
class vtkCoordinate;
class vtkPoints;
class vtkPolyData;
class vtkPolyDataMapper2D;
class vtkTextMapper;
class vtkTextProperty;
class vtkWindow;

/// A scale bar along the bottom of a view.
///
/// A bar of four blocks, black, white, black, white, over the middle third of the viewport, from 10 to 20
/// pixels above its bottom. Below the bar stand "0" at the left end, and at the middle and the right end the
/// distances in world units that this much of the bar covers at the present zoom, as "%g" prints them. The
/// distances are those in the plane through the near end of what the camera sees: all depths have the same
/// while the camera looks in parallel projection, which is what this prop is for.
///
/// It has no bounds, so it takes no part in camera resets. It lays itself out anew in each frame.
class MORROW_BASE_EXPORT vtkLegendActor : public vtkProp
{
public:
  static vtkLegendActor* New();
  vtkTypeMacro(vtkLegendActor, vtkProp)
  void PrintSelf(ostream& os, vtkIndent indent) override;

  /// 0 stands for distances, the default, any other value for x and y coordinates. The value is kept and
  /// printed; what is drawn does not depend on it.
  virtual void SetLabelMode(int mode);
  virtual int GetLabelMode();

  /// Whether the legend is laid out and drawn; 1, the default, or 0. Independent of vtkProp's visibility,
  /// which leaves the legend out of a renderer's work altogether.
  virtual void SetLegendVisibility(int visibility);
  virtual int GetLegendVisibility();
  virtual void LegendVisibilityOn();
  virtual void LegendVisibilityOff();

  /// The look of a title: 10 point Arial, bold, italic, with shadow, centred, standing on its point. No title
  /// is drawn. Never null; owned by the legend.
  vtkTextProperty* GetLegendTitleProperty();
  /// The look of the numbers: the same, hanging from their points. Changes show in the next frame. Never
  /// null; owned by the legend.
  vtkTextProperty* GetLegendLabelProperty();

  /// Lays out bar and numbers for the viewport's size and, if it is a vtkRenderer, its camera. Without a
  /// window, pixels or camera the distance is 0. While LegendVisibility is 0, and for a null viewport,
  /// everything stays where it is. Always marks the build time.
  virtual void BuildRepresentation(vtkViewport* viewport);

  /// Lays the legend out, then draws its parts. They return how many of the 6 parts took part, and 0 while
  /// LegendVisibility is 0 and for a null viewport.
  int RenderOpaqueGeometry(vtkViewport* viewport) override;
  /// The same without the layout, which is that of the frame's opaque pass. 0 also for a viewport in no
  /// rendered window.
  int RenderOverlay(vtkViewport* viewport) override;

  void ReleaseGraphicsResources(vtkWindow* window) override;

protected:
  vtkLegendActor();
  ~vtkLegendActor() override;

  static constexpr int NumberOfLabels = 5; // one under each end of a block

  int LabelMode = 0;
  int LegendVisibility = 1;

  vtkNew<vtkPolyData> Legend;
  vtkNew<vtkPoints> LegendPoints; // 0 to 4 lower edge, 5 to 9 upper edge, left to right
  vtkNew<vtkPolyDataMapper2D> LegendMapper;
  vtkNew<vtkActor2D> LegendActor;

  vtkNew<vtkTextMapper> LabelMappers[NumberOfLabels];
  vtkNew<vtkActor2D> LabelActors[NumberOfLabels];
  vtkNew<vtkTextProperty> LegendTitleProperty;
  vtkNew<vtkTextProperty> LegendLabelProperty;

  vtkNew<vtkCoordinate> Coordinate; // display
  vtkTimeStamp BuildTime;

private:
  vtkLegendActor(const vtkLegendActor&) = delete;
  void operator=(const vtkLegendActor&) = delete;

  template<typename Function>
  void for_each_part(Function&& function);
  void make_bar();
  void make_labels();
  void place_bar(double width);
  void place_labels();
  void write_distances(vtkViewport& viewport, double width);
  void adopt_window(vtkWindow* window);

  vtkWeakPointer<vtkWindow> mWindow; // has the graphics resources
};
