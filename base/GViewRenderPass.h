// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <exception> // std::exception_ptr
#include <vector>

#include "morrow_base_export.h"

#include <vtkRenderPass.h>   // superclass
#include <vtkSmartPointer.h> // member

class vtkActor;
class vtkDepthPeelingPass;
class vtkOpenGLRenderer;
class vtkProp;
class vtkRenderer;

/// The order in which a view draws its props.
///
/// 1. Surfaces: actors whose property has surface representation, by their MRUtil::RENDER_MODE() key.
///    Modes 0 and 7 are left out, 1 and 2 fill the depth buffer only, all others are drawn. No key means
///    mode 6, which draws.
/// 2. Lines and points: all other props. An actor with the MRUtil::VERTEX_VISIBILITY() key, whatever the
///    key's value and the actor's representation, is drawn here exactly when vertices are visible; so a
///    surface with the key is drawn twice.
/// 3. Translucent geometry by depth peeling, with the renderer's occlusion ratio and number of peels; before
///    that, translucent silhouettes (GSilhouetteMapper), which cannot be peeled: they are blended over opaque
///    geometry only, and hide translucent geometry behind them.
/// 4. Overlays.
///
/// Within a stage props are drawn in the renderer's order. When the window's render has been aborted before
/// the pass starts, nothing is drawn and nothing is cleared.
///
/// A hardware selection (vtkHardwareSelector, vtkPropPicker) gets the props that steps 1 and 2 draw, those
/// that only fill the depth buffer included.
///
/// An exception thrown by a prop does not leave the frame: the other props are drawn, and take_exception()
/// hands it out afterwards. A prop may remove any prop from the renderer, which shows in the next frame, and
/// may render another window.
class MORROW_BASE_EXPORT GViewRenderPass : public vtkRenderPass
{
public:
  static GViewRenderPass* New();
  vtkTypeMacro(GViewRenderPass, vtkRenderPass)
  void PrintSelf(ostream& os, vtkIndent indent) override;

  /// Draws one frame of the state's renderer.
  void Render(const vtkRenderState* state) override;

  /// Draws the state's props; cameras and lights are already set up.
  void UpdateGeometry(const vtkRenderState* state);

  /// Whether props with the MRUtil::VERTEX_VISIBILITY() key are drawn; default false. Takes effect with the
  /// next frame and requests none.
  void set_vertex_visibility(bool on) { mVertexVisibility = on; }
  [[nodiscard]] bool get_vertex_visibility() const { return mVertexVisibility; }

  void ReleaseGraphicsResources(vtkWindow* w) override;

  /// Releases the graphics resources and lets go of the depth-peeling pass, which can draw in one window
  /// only. To be called when the renderer leaves its window.
  void forget_window(vtkWindow* w);

  /// The first exception that a prop has thrown since the last call; null when there was none.
  [[nodiscard]] std::exception_ptr take_exception();

  /// The pass that draws translucent geometry; null until a frame has needed it.
  [[nodiscard]] vtkRenderPass* depth_peeling_pass() const;

protected:
  GViewRenderPass();
  ~GViewRenderPass() override;

private:
  GViewRenderPass(const GViewRenderPass&) = delete;
  void operator=(const GViewRenderPass&) = delete;

  class TranslucentStage;

  struct Item
  {
    vtkSmartPointer<vtkProp> prop; // kept: host code may remove it in the middle of the frame
    vtkActor* actor;               // null for a prop that is not an actor
    int render_mode;
    bool is_surface;
    bool is_vertex;
    bool is_stock; // an actor of VTK's own class
  };

  static Item classify(vtkProp* prop);
  void classify_props(const vtkRenderState& state);
  void draw_opaque(const Item& item, vtkRenderer& renderer);
  void draw_surfaces(vtkOpenGLRenderer& renderer);
  void draw_surface(const Item& item, vtkOpenGLRenderer& renderer);
  void draw_lines_and_points(vtkRenderer& renderer);
  [[nodiscard]] bool draws_with_lines(const Item& item) const;
  void draw_for_selection(vtkOpenGLRenderer& renderer);
  [[nodiscard]] bool has_translucent_props(vtkRenderer& renderer);
  void draw_translucent(const vtkRenderState& state, vtkOpenGLRenderer& renderer);
  void draw_unpeelable(vtkOpenGLRenderer& renderer);
  void make_depth_peeling_pass(vtkOpenGLRenderer& renderer);
  void draw_overlays(vtkRenderer& renderer);

  template<typename Ask>
  void caught(Ask&& ask);
  template<typename Draw>
  void guarded(vtkRenderer& renderer, Draw&& draw);
  template<typename Draw>
  void guarded(vtkRenderer& renderer, const Item& item, Draw&& draw);

  bool mVertexVisibility = false;
  std::vector<Item> mItems; // one per prop of the frame, empty between frames
  vtkSmartPointer<vtkDepthPeelingPass> mDepthPeelingPass;
  std::exception_ptr mException;
};
