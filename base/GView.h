// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <exception> // std::exception_ptr
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "morrow_base_export.h"

#include <vtkSmartPointer.h> // props, members

class GModel;
class GModelSet;
class GViewRenderPass;
class vtkCallbackCommand;
class vtkCubeAxesActor2D;
class vtkObject;
class vtkProp;
class vtkRenderer;
class vtkRenderWindow;

namespace morrow {
class PropList;
}

/// One 3-D view, bound to one VTK render window.
///
/// A view has a main renderer, which holds the props of the models and draws them with a GViewRenderPass, and
/// an overlay renderer on the window's second layer, which is empty until the host uses it. It starts with a
/// window of its own, made through VTK and not mapped before the first render; set_render_window() binds
/// another.
///
/// Hosts hold views by shared pointer and register the ones that are to be found by id or name, or reached by
/// the operations on all views; one registered view is the current one. The registry lives until the process
/// ends.
///
/// Nothing in this class touches the display before the first render, except binding a window that is already
/// mapped and switching stereo on. Rendering needs a reachable display with OpenGL 3.2; without one VTK ends
/// the process.
///
/// Everything runs on the caller's thread, which must always be the same. Null arguments, and calls that need
/// a window while there is none, do nothing. A view may be destroyed at any time, also by host code that its
/// own render calls.
///
/// Exceptions thrown by host code in the course of a frame (updating parts, making or drawing props) do not
/// stop the frame; the first of them is thrown by render() at its end. One from a frame that the host or an
/// interactor started at the window itself is thrown by the next render(). An exception from a host's
/// observer of the window, or from a prop of a renderer that is not the view's, passes through VTK and ends
/// the frame; the window can render again when render() had started it. When the host's own
/// vtkRenderWindow::Render() had, the host must call ClearInRenderStatus() on the window.
class MORROW_BASE_EXPORT GView
{
public:
  using Props = std::vector<vtkSmartPointer<vtkProp>>;
  using Registry = std::set<std::shared_ptr<GView>>;

  /// A view with the smallest free id, no name, the global backgrounds and one light, bound to a new window
  /// with the preferred position and size. It is not registered. Switches stereo off for all windows bound
  /// from now on.
  GView();
  GView(const GView&) = delete;
  GView& operator=(const GView&) = delete;

  /// Leaves the model set and the window. What the view has handed out, renderers and viewport command, stays
  /// harmless.
  ~GView();

  // ---- Window and renderers

  /// Leaves the bound window and binds this one, with a reference; null only leaves. The window gets the
  /// preferred position and size, two layers, alpha bit planes, no multisampling, double buffering,
  /// off-screen rendering if set_offscreen() asked for it, stereo if it is on, and the main renderer. A
  /// window that is mapped already is finalised first and started again. Its interactor is made ready again.
  /// The overlay is disabled. Nothing happens while the bound window draws.
  void set_render_window(vtkRenderWindow* window);

  /// The bound window or null. The view keeps its reference.
  [[nodiscard]] vtkRenderWindow* get_render_window() const;

  /// The renderers; never null, owned by the view.
  [[nodiscard]] vtkRenderer* get_renderer() const;
  [[nodiscard]] vtkRenderer* get_overlay_renderer() const;

  /// Puts the overlay renderer on the window's layer 1, above the main one, or takes it away. Initially away.
  /// Nothing happens while the window draws.
  void enable_overlay();
  void disable_overlay();

  /// The window's current size in pixels; 0 × 0 without a window.
  void get_size(int& width, int& height) const;

  /// Sets the window's title. The first "##" in text becomes the view's id in parentheses. Null takes the
  /// current template of all views, initially "Brant ##".
  void set_title_bar(const char* text);

  /// Makes text the template of all views and titles every registered view with it. Null titles them with the
  /// current one.
  static void set_title_bars(const char* text);

  // ---- Id, name and registry

  /// Any id, also one that another view has; no check is made.
  void set_id(int id) { mId = id; }
  [[nodiscard]] int get_id() const { return mId; }

  /// The smallest id at or above max(wanted, 1) that no registered view has; when all of them up to the
  /// largest int are taken, the smallest free one from 1.
  [[nodiscard]] static int get_available_id(int wanted);

  void set_name(const std::string& name) { mName = name; }
  [[nodiscard]] const std::string& get_name() const { return mName; }

  /// The registered views, in ascending order of their addresses.
  [[nodiscard]] static const Registry& all_views();

  /// Registers a view, if it is not registered, and makes it the current one.
  static void add_global_view(const std::shared_ptr<GView>& view);

  /// Takes the view out of the registry. If it was the current one, there is none until the next
  /// get_current_view().
  static void remove_global_view(const std::shared_ptr<GView>& view);

  /// The first registered view with exactly this name, null if none has it.
  [[nodiscard]] static GView* find_view_by_name(const std::string& name);

  /// The first registered view with this id, empty if none has it.
  [[nodiscard]] static std::shared_ptr<GView> find_view_by_id(int id);

  /// The current view. If there is none, the first registered view becomes current; null when none is
  /// registered.
  [[nodiscard]] static GView* get_current_view();

  /// Makes any view current, registered or not; null for none. A view that is destroyed is current no more.
  static void set_current_view(GView* view);

  /// A cell that holds this view's address while the view lives and null afterwards. For those who must know
  /// whether a view they have been told of is still there.
  [[nodiscard]] std::shared_ptr<GView* const> handle() const;

  // ---- Models and props

  /// Puts the view into the set and takes it out of the one it was in. Null for none. The set is not owned.
  void set_model_set(GModelSet* set);
  [[nodiscard]] GModelSet* get_model_set() const { return mModelSet; }

  /// Brings the parts of the set's models up to date now; nothing while the graphics status is not normal, or
  /// from inside such an update.
  void update_models();

  /// Adds props to the main renderer, or removes them, in vector order and in time proportional to their
  /// number. Null props, props added twice and absent ones are passed over.
  void add_props(const Props& props);
  void remove_props(const Props& props);

  // ---- Rendering

  /// Brings the models up to date, fits the camera's clipping range to what is visible and renders the
  /// window. Nothing happens while the graphics status is not normal, or from inside a frame of this view.
  void render();

  /// render() for every registered view, in registry order. An exception from one view's frame is passed on
  /// when all have rendered.
  static void render_all();

  /// Whether props with the MRUtil::VERTEX_VISIBILITY() key are drawn, from the next frame on. Default false.
  void set_vertex_visibility(bool on);

  // ---- Backgrounds: ids of the host colour table. Two different ids give a gradient, the first colour at
  // the bottom.

  /// One view's colours; -1 takes the global one. An id that the table does not have shows the default
  /// colour.
  void set_background(int id);
  void set_background2(int id);
  [[nodiscard]] int get_background() const { return mBackground; }
  [[nodiscard]] int get_background2() const { return mBackground2; }

  /// The global colours, which new views take and which this gives to every registered view. Defaults 9
  /// (white) and 0 (black), which -1 brings back.
  static void set_all_background(int id);
  static void set_all_background2(int id);
  [[nodiscard]] static int get_all_background();
  [[nodiscard]] static int get_all_background2();

  // ---- Preferences for windows bound from now on

  /// Off-screen rendering, in which windows are never mapped. Default false.
  static void set_offscreen(bool on);
  [[nodiscard]] static bool get_offscreen();

  /// In pixels; a component that is not above 0 is left as it is. Default 500 × 500.
  static void set_preferred_window_size(int width, int height);
  static void get_preferred_window_size(int& width, int& height);

  /// Of the window's corner on the screen, in pixels; a component of -1 is left as it is. Default (0, 0).
  static void set_preferred_window_position(int x, int y);

  /// Stereo rendering, for every registered view and for windows bound from now on. Switching it on makes
  /// mapped windows anew, stereo capable. Default false; a new view switches it off for windows bound after
  /// it.
  static void set_stereo_mode(bool on);
  [[nodiscard]] static bool get_stereo_mode();

  // ---- For shaders

  /// The command that sets the shader uniform "ViewportSize" to the window's size in pixels, as two floats.
  /// Attach it to a mapper's vtkCommand::UpdateShaderEvent. It does nothing once the view is gone. Never
  /// null, owned by the view.
  [[nodiscard]] vtkCallbackCommand* update_viewport_command() const;

  /// Callback of update_viewport_command(): client_data is the view, call_data the vtkShaderProgram.
  static void SetViewportShaderUniform(vtkObject* caller, unsigned long event, void* client_data,
                                       void* call_data);

  /// Callback at the start of each render of the window: client_data is the view. Chooses the view angle's
  /// direction, aborts the render while the graphics status is not normal, and otherwise brings the models up
  /// to date.
  static void StartRender(vtkObject* caller, unsigned long event, void* client_data, void* call_data);

private:
  friend class GModel;
  friend class GModelSet;

  class FlagScope;

  static void render_views(const std::vector<GView*>& views);
  void forget_model_set(GModelSet* set);

  void make_renderers();
  void make_lights();
  void make_observers();
  [[nodiscard]] bool is_drawing() const;
  void leave_window();
  void leave_window_for_good();
  void enter_window(vtkRenderWindow* window);
  void hold_overlay(bool hold);
  void fit_view_angle(vtkRenderWindow& window);
  void prepare_frame(vtkRenderWindow& window);
  void draw_frame();
  void switch_stereo(bool on);
  static vtkSmartPointer<vtkCallbackCommand>
  make_command(void (*callback)(vtkObject*, unsigned long, void*, void*), GView* view);

  vtkSmartPointer<vtkRenderWindow> mRenderWindow;
  vtkSmartPointer<vtkRenderer> mRenderer;
  vtkSmartPointer<vtkRenderer> mOverlayRenderer;
  vtkSmartPointer<GViewRenderPass> mRenderPass;
  std::unique_ptr<morrow::PropList> mPropList;
  GModelSet* mModelSet = nullptr;
  int mId = -1;
  std::string mName;
  vtkSmartPointer<vtkCallbackCommand> mStartRenderObserver;
  int mBackground;
  int mBackground2;
  vtkSmartPointer<vtkCubeAxesActor2D> mCubeAxes;
  vtkSmartPointer<vtkCallbackCommand> mViewportObserver;

  // What all views of the process share.
  static Registry& mAllViews;
  static GView* mCurrentView;
  static int mWindowPosition[4]; // x, y, width, height in pixels
  static int mGlobalBackgroundColor;
  static int mGlobalBackgroundColor2;
  static float mLightIntensity[3];
  static float mAmbientIntensity[3];
  static bool mStereoMode;
  static bool mUseOffscreen;

  std::shared_ptr<GView*> mHandle;
  bool mIsOverlayHeld = false;
  bool mIsPreparing = false;                      // at the start of a frame, before VTK draws
  bool mIsRendering = false;                      // inside render()
  bool mIsUpdating = false;                       // inside the models' update_parts()
  std::shared_ptr<std::exception_ptr> mException; // the first one since render() has thrown
};
