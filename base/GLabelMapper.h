// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "BrantColor.h" // passed by value
#include "morrow_base_export.h"

#include <vtkCommand.h>      // superclass of zBufferHelper
#include <vtkMapper2D.h>     // superclass of GLabelMapper
#include <vtkSmartPointer.h> // members
#include <vtkWeakPointer.h>  // member

class BrantVector;
class GModel;
class vtkCallbackCommand;
class vtkFloatArray;
class vtkMatrix4x4;
class vtkRenderer;
class vtkRenderWindow;
class vtkTextProperty;
class vtkWindow;

namespace morrow {
struct Label;
class LabelStore;
struct ScreenFrame;
} // namespace morrow

/// Draws text labels anchored at points in space, as 2-D overlay text, where their anchors are not hidden.
///
/// Give it to a vtkActor2D and add that to a renderer; GModel does so for its own labels. Each anchor is
/// projected with the renderer's camera and compared with the window's depth buffer, so the geometry that
/// hides labels must be drawn before overlays are, as views do. The text's lower left corner stands at the
/// anchor, unless the text property says otherwise. The depth buffer is read at most once in each render of a
/// window, by the first label mapper that needs it, whatever the number of mappers.
class MORROW_BASE_EXPORT GLabelMapper : public vtkMapper2D
{
public:
  static GLabelMapper* New();
  vtkTypeMacro(GLabelMapper, vtkMapper2D)
  void PrintSelf(ostream& os, vtkIndent indent) override;

  /// Appends a label and returns its key, 0 or above.
  ///
  /// Keys are handed out densely from 0; a freed key is used again, the one freed first before the others.
  /// The label keeps the look that the text property has now; a later change inside that property does not
  /// reach it, SetLabelTextProperty does. Takes constant time on average.
  ///
  /// @param point  world coordinates; one that is not finite is drawn only while there is no depth test
  /// @param label  UTF-8, copied; null is an empty text
  /// @param color  alpha is ignored
  long long add_point(const BrantVector& point, const char* label, BrantColor color);

  /// Removes the label of that key. A key that is negative, was never issued or is removed already does
  /// nothing. Takes constant time on average.
  void remove_point(long long key);

  /// Removes all labels and forgets all keys: the next one is 0 again.
  void clear();

  /// Number of labels.
  [[nodiscard]] std::size_t size() const;

  /// Names the model that owns the labels; it is not owned and must live as long as this mapper draws. While
  /// the model's render mode is 0, and also while there is no model, every label is drawn without a depth
  /// test.
  void set_model(GModel* model);

  /// The look of the labels; each keeps its own colour. The mapper shares prop. With null the mapper lets its
  /// property go and draws nothing until it gets another, but reports the VTK error "Need text property to
  /// render labels" at each draw. Initially 12 pixel Arial, bold, italic, with shadow.
  virtual void SetLabelTextProperty(vtkTextProperty* prop);
  virtual vtkTextProperty* GetLabelTextProperty();

  /// Slack of the depth test in units of the depth buffer (0 near plane, 1 far plane). Default 0.001, any
  /// value is taken.
  virtual double GetTolerance();
  virtual void SetTolerance(double tolerance);

  /// Draws the labels that are seen. Does nothing when an earlier draw took longer than the actor's allocated
  /// render time. Only renderers have a camera: in any other viewport nothing is hidden.
  void RenderOverlay(vtkViewport* viewport, vtkActor2D* actor) override;

  void ReleaseGraphicsResources(vtkWindow* window) override;

protected:
  GLabelMapper();
  ~GLabelMapper() override;

private:
  GLabelMapper(const GLabelMapper&) = delete;
  void operator=(const GLabelMapper&) = delete;

  vtkTextProperty* current_style();
  bool hides_labels() const;
  void draw_labels(vtkViewport* viewport, vtkActor2D* actor);
  void draw_visible_labels(vtkRenderer& renderer, vtkRenderWindow& window, vtkActor2D* actor);
  void draw_label(morrow::Label& label, vtkViewport* viewport, vtkActor2D* actor);
  std::size_t place_of_window(vtkWindow* window);

  vtkSmartPointer<vtkTextProperty> LabelTextProperty;
  double Tolerance = 0.001;
  GModel* mModel = nullptr;
  std::unique_ptr<morrow::LabelStore> mLabels;

  // Text holds graphics resources of one window, so each label has a text mapper for each window that has
  // drawn it. This says which is whose; the place of a window that is gone is used again.
  std::vector<vtkWeakPointer<vtkWindow>> mWindows;
  std::size_t mWindowPlace = 0; // of the window that is being drawn

  // A frozen copy of LabelTextProperty, shared by the labels added while it stood; renewed when the original
  // has changed since.
  vtkSmartPointer<vtkTextProperty> mStyle;
  vtkMTimeType mStyleTime = 0;
};

/// The depth buffer and the projection of one render of one window, shared by all label mappers drawn in it.
///
/// There is one in the process. It watches the window whose frame it serves and forgets all when that frame
/// ends, when another one starts, when the window goes away, or when another window draws labels.
class MORROW_BASE_EXPORT zBufferHelper : public vtkCommand
{
public:
  vtkTypeMacro(zBufferHelper, vtkCommand)
  zBufferHelper(const zBufferHelper&) = delete;
  void operator=(const zBufferHelper&) = delete;

  /// The one of this process.
  static zBufferHelper& instance();

  /// Acts on vtkCommand::EndEvent only: forgets everything and stops watching the caller.
  void Execute(vtkObject* caller, unsigned long event, void* call_data) override;

  /// Makes this the window whose frame is served; what was kept of another one is forgotten.
  void watch(vtkRenderWindow& window);

  /// World to clip coordinates, depth from 0 at the near plane to 1 at the far plane. Computed once in a
  /// frame, with the camera of the first renderer that asks.
  const vtkMatrix4x4& projection(vtkRenderer& renderer);

  /// The depth of the watched window's frame: (width + 1) × (height + 1) floats, rows bottom up, the last
  /// column and row undefined. Read once in a frame. Null when it cannot be read. Valid until the frame ends.
  const float* depth(int& width, int& height);

  /// Forgets depth and projection and stops watching.
  void forget();

  /// How often the depth of any window has been read since the library was loaded.
  [[nodiscard]] unsigned long depth_reads() const { return mDepthReads; }

protected:
  zBufferHelper();
  ~zBufferHelper() override;

private:
  friend class zBufferHelperHolder;
  static zBufferHelper* New();

  vtkSmartPointer<vtkCallbackCommand> mFrameStart; // forgets what a frame that never ended has left
  vtkSmartPointer<vtkFloatArray> mDepth;
  vtkSmartPointer<vtkMatrix4x4> mProjection;
  vtkWeakPointer<vtkRenderWindow> mWindow;
  int mDepthSize[2] = {0, 0};
  unsigned long mDepthReads = 0;
};
