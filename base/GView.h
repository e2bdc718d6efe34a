// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <exception> // std::exception_ptr
#include <initializer_list>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "BrantColor.h" // by value
#include "MRUtil.h"     // MRUtil::AxisType
#include "morrow_base_export.h"

#include <vtkSmartPointer.h> // props, members

class GCameraState;
class GModel;
class GModelSet;
class GViewRenderPass;
class vtkCallbackCommand;
class vtkObject;
class vtkProp;
class vtkRenderer;
class vtkRenderWindow;
class vtkScalarBarWidget;

namespace morrow {
class CameraMotion;
class PropList;
struct ViewDecorations;
} // namespace morrow

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
/// mapped, switching stereo on and mouse_xforms(). Rendering needs a reachable display with OpenGL 3.2;
/// without one VTK ends the process.
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

  /// A view with the smallest free id, no name, the global backgrounds, one light and the triad, bound to a
  /// new window with the preferred position and size. It is not registered. Switches stereo off for all
  /// windows bound from now on.
  GView();
  GView(const GView&) = delete;
  GView& operator=(const GView&) = delete;

  /// Takes the decorations out of the main renderer, but for the title, and leaves the model set and the
  /// window. What the view has handed out, renderers, scalar bar and viewport command, stays harmless.
  ~GView();

  // ---- Window and renderers

  /// Leaves the bound window and binds this one, with a reference; null only leaves. The window gets the
  /// preferred position and size, two layers, alpha bit planes, no multisampling, double buffering,
  /// off-screen rendering if set_offscreen() asked for it, stereo if it is on, and the main renderer. A
  /// window that is mapped already is finalised first and started again. Its interactor is made ready again.
  /// The overlay is disabled. Nothing happens while the bound window draws, or while the new one renders a
  /// frame, as that of another view.
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

  // ---- Camera: placement
  //
  // All of this works on the active camera of the main renderer. Operations with steps and smooth are
  // animated: they bring the models up to date, then move the camera step by step and render a frame after
  // each, softly at both ends when smooth asks for it. They stop where they are as soon as
  // AppUtil::instance()->interrupt() is true before a step; nothing else bounds the length of an animation.
  // Where no frame can be shown (no window, graphics status not normal) the camera moves all the same.
  //
  // An exception of host code ends an operation where it is and reaches the caller. An operation that host
  // code begins inside a frame, or inside another operation of the same view, is made in a single step,
  // without a frame of its own and without reading the interrupt flag.

  /// Moves the focal point, the eye or the up direction to p (3 doubles, world). Below 2 steps at once, in
  /// one frame; otherwise in steps frames of equal length, of which smooth >= 1 softens the first and the
  /// last: smooth frames in, steps - smooth full ones, smooth out, steps + smooth in all (the soft form's sum
  /// is not forced to reach p). With smooth above steps the frames are equal. Auto-centre goes off. Null and
  /// points that are not finite do nothing.
  void set_at(const double* p, int steps, int smooth);
  void set_from(const double* p, int steps, int smooth);
  void set_up(const double* p, int steps, int smooth);

  /// The focal point, the eye and the up direction: 3 doubles are written, world; null does nothing.
  void get_at(double* p) const;
  void get_from(double* p) const;
  void get_up(double* p) const;

  /// Half the height of the window in world units, in parallel projection. Not above 0 or not finite does
  /// nothing. Renders nothing.
  void set_parallel_scale(double scale);
  [[nodiscard]] double get_parallel_scale() const;

  /// Perspective (true) or parallel projection. Going parallel frames everything visible first. Renders
  /// nothing.
  void set_perspective(bool on);
  [[nodiscard]] bool get_perspective() const;

  /// The angle of view in degrees, across the window's shorter side. Default 30. Not finite does nothing; VTK
  /// keeps it from 0.00000001 to 179. Renders nothing.
  void set_perspective_angle(double degrees);
  [[nodiscard]] double get_perspective_angle() const;

  /// Brings the models up to date and frames everything visible from the direction that the camera has, with
  /// a view angle of 30 degrees; puts auto-centre on. Renders nothing.
  void reset_camera();
  static void reset_camera_all();

  /// The same from the positive z axis, with y up.
  void complete_reset_camera();
  static void complete_reset_camera_all();

  // ---- Camera: motion

  /// Frames a box (6 doubles xmin, xmax, ymin, ymax, zmin, zmax, world), made a cube first, from the
  /// direction that the camera has; looks along direction (3 doubles) when that is neither null nor zero.
  /// Sides at 1e37 and beyond are put at 1 or -1; boxes far smaller than what is visible are enlarged. With
  /// steps 1 at once. Otherwise max(steps, 1) parts from what is visible now, in frames as a rotation has
  /// them, one every 50 ms; all but the first read the interrupt flag. A null box, NaN and directions that
  /// are not finite do nothing. A box that host code asks for inside another zoom_box(), of any view, is
  /// framed as it is.
  void zoom_box(const double* box, int steps, int smooth, const double* direction);

  /// Comes nearer by factor, or goes away for factors below 1; -n is 1/n. 0 and 1, and what is not finite, do
  /// nothing. Auto-centre goes off. max(steps, 1) parts; smooth from 1 to that number softens as many frames
  /// at each end, which cannot be interrupted. In parallel projection each frame multiplies the scale, so
  /// that only a single step comes to factor exactly; the clipping range stays, and with fewer than 2 steps
  /// nothing is rendered. What would leave a camera that no zoom can lead back, at its focal point or with a
  /// scale of 0, does nothing.
  void zoom_screen(double factor, int steps, int smooth);

  /// Moves the scene across the window, in steps parts, none below 1. mode 1: dx and dy are fractions of the
  /// window's width and height at the depth of the focal point; mode 2: lengths in world units along the
  /// window's sides; any other mode, and what is not finite, does nothing. smooth, at most steps, frames are
  /// soft at each end, and steps + smooth there are in all; a smooth below 0 leaves that many out.
  void pan(double dx, double dy, int steps, int smooth, int mode);

  /// Turns the camera by angle degrees in n = max(steps, 1) parts, around its focal point (x elevation, y
  /// azimuth, z roll), around itself (x pitch, y yaw, z roll), or around a world axis through the origin. Any
  /// other axis is the error "Invalid Rotation Axis Specified"; angles that are not finite do nothing. With
  /// smooth from 1 to n there are n + smooth frames, which go up to a part too far; a smooth below 0 leaves
  /// that many frames out.
  void rotate_about_target(double angle, char axis, int steps, int smooth);
  void rotate_about_camera(double angle, char axis, int steps, int smooth);
  void rotate_about_world(double angle, char axis, int steps, int smooth);

  /// Turns the camera around the line from p1 towards p2 (3 doubles each, world), counter-clockwise for who
  /// looks from p2 to p1. Points that coincide, null and what is not finite do nothing.
  void rotate_about_world(double angle, const double* p1, const double* p2, int steps, int smooth);

  // ---- Camera: conversions

  /// A display point in pixels from the bottom left, depth z from 0 (near) to 1 (far), as world point: 4
  /// doubles are written, of which the last is 1. What has no place in the world, as its homogeneous
  /// coordinate is 0, is left undivided. Null does nothing.
  void display_to_world(double x, double y, double z, double* world) const;

  /// The other way: 3 doubles are written. Null does nothing.
  void world_to_display(double x, double y, double z, double* display) const;

  /// The world length, at the depth of point (3 doubles, world; null is the origin), of the part of the
  /// window's width that pixels are of its shorter side: of so many pixels, unless the window is wider than
  /// high. length is left as it is for a renderer without pixels or camera.
  void pixel_to_model_length(double pixels, double& length, const double* point) const;
  static void pixel_to_model_length(vtkRenderer* renderer, double pixels, double& length,
                                    const double* point);

  // ---- Camera: modes and report

  /// Makes the window's interactor ready again, if there is one, which needs a display; whether it is enabled
  /// stays. Nothing happens inside a frame.
  void mouse_xforms();

  /// Looks straight down on the rectangle in parallel projection, with the scale of its longer side; a
  /// rectangle without a size leaves the scale as it is. Auto-centre goes off; the view is 2-D ever after.
  /// Numbers that are not finite do nothing. Renders nothing.
  void set_2d_mode(double xmin, double ymin, double xmax, double ymax);
  [[nodiscard]] bool get_2d_mode() const;

  /// The angle between the eyes in degrees, for every registered view. Not finite does nothing.
  static void set_stereo_separation(double degrees);

  /// Prints the camera as information, in nine messages: eye, focal point, up, direction, distance, size of
  /// the window, angle of view, auto-centre and triad.
  void list_view() const;

  // ---- Saved views: cameras under names, shared by all views of the process; see GCameraState. Nothing is
  // rendered. Names are any bytes and differ in letter case.

  /// Saves this view's camera; a camera saved under the name before is overwritten.
  void save_view(const std::string& name);

  /// Puts this view's camera into the state saved under the name, from this or any other view; nothing when
  /// there is none. If auto-centre was on, everything visible is framed from the restored direction.
  void restore_view(const std::string& name);

  // ---- Title
  //
  // Title, triad, axis prop, cube axes, legend and scalar bar are props of the main renderer. They may come
  // and go at any time, also in the middle of a frame, but not while VTK asks a prop for its bounds. Text and
  // lines whose colour the host has not chosen are black or white from frame to frame, whatever can be read
  // on the background.

  /// Makes the title's actor, which set_title() and set_title_color() do by themselves: centred at the top.
  /// Nothing when there is one.
  void create_title();

  /// Shows text (UTF-8, copied) as title; null or empty hides it. Bytes that are not UTF-8 are shown as
  /// question marks. Lines that are wider than the window are cut off at its sides.
  void set_title(const char* text);

  /// 3 doubles from 0 to 1. Until then the title is black or white, whatever can be read on the background's
  /// upper colour. Null and what is not finite do nothing.
  void set_title_color(const double* rgb);

  /// In points, for this view's title and for all made later. Default 12. Not above 0 does nothing; above 500
  /// is 500.
  void set_title_font_size(int points);

  // ---- Axes

  /// The axis triad in the bottom left corner, which turns with the camera. Default shown.
  void set_triad_vis(bool on);
  [[nodiscard]] bool get_triad_vis() const;

  /// Whether the display point (pixels from the bottom left) is on the triad, its border included. Never when
  /// it is hidden, or without a window.
  [[nodiscard]] bool triad_clicked(int x, int y) const;

  /// The colour of the triad's letters; alpha is ignored. Until then black or white, whatever can be read on
  /// the background's lower colour.
  void set_triad_label_color(BrantColor color);

  /// The axis prop, a GAxis, by default hidden, and its form. Default MRUtil::AXIS_3D. Another form replaces
  /// a prop that is shown.
  void set_axis_vis(bool on);
  [[nodiscard]] bool get_axis_vis() const;
  void set_axis_type(MRUtil::AxisType type);
  [[nodiscard]] MRUtil::AxisType get_axis_type() const;

  /// Axes with five numbers each along the outer edges of the box around everything visible. Each axis prints
  /// as many digits as its own range needs. Axes that are too short on the screen, because the box is flat or
  /// is seen from the side, are left out. They take no part in camera resets. Default hidden.
  void set_cube_axes_vis(bool on);
  [[nodiscard]] bool get_cube_axes_vis() const;

  // ---- Legend and scalar bar

  /// The scale of lengths at the bottom. In perspective it cannot be shown: the information "Legend can only
  /// be turned on when 'perspective' mode is off\n" is printed. Default hidden.
  void set_legend_vis(bool on);
  [[nodiscard]] bool get_legend_vis() const;

  /// Takes the widget in place of the one held, which is switched off and detached from its interactor; null
  /// only lets go. The view keeps a reference. The widget gets the main renderer and the window's interactor,
  /// also one that comes or is replaced later, or that of another window of the view; it stays on or off as
  /// it is. Its text gets the label colour. A widget that another view takes belongs to that view from then
  /// on.
  void set_scalar_bar(vtkScalarBarWidget* widget);
  /// The widget held, or null.
  [[nodiscard]] vtkScalarBarWidget* get_scalar_bar() const;

  /// Makes and shows a scalar bar from min to max: of these colours, if there are any; otherwise of hues from
  /// blue to red, or VTK's default hues with keep_hues. The text gets the label colour for the background of
  /// this moment, and the numbers as many digits as the range needs. While the window has no interactor,
  /// which VTK's widget needs, the bar is shown by itself in the same place. Limits in falling order are
  /// exchanged; limits that are not finite do nothing.
  void setup_scalar_bar(double min, double max, bool keep_hues, const std::vector<BrantColor>& colors);

  /// The colour of the bar's text, now and for widgets taken later: 3 doubles from 0 to 1, default (1, 1, 1).
  /// Null and what is not finite do nothing.
  void set_scalar_bar_label_color(const double* rgb);

  /// The colour id of labels that can be read on the background: 0 when the mean channel of both backgrounds
  /// is above 0.6, otherwise 9.
  [[nodiscard]] int get_label_color_from_background() const;

  // ---- Lighting of all registered views, and of those made later; components from 0 to 1, which VTK gets
  // as 0.5 to 2. The getters are exact to the precision of float.

  /// Light intensity 0.3 and ambient intensity 1/3, the defaults: 0.95 and 1 for VTK.
  static void reset_lighting();

  /// The ambient colour. A component that is not from 0 to 1 is the warning "Ambient light intensity must be
  /// between 0 and 1\n" and nothing changes.
  static void set_ambient_light_intensity(float r, float g, float b);
  static void get_ambient_light_intensity(float& r, float& g, float& b);

  /// The colour of every light; its intensity becomes the components' mean. Likewise "Light intensity must be
  /// between 0 and 1\n". A new view's light takes the second component for its third: deliberate.
  static void set_light_intensity(float r, float g, float b);
  static void get_light_intensity(float& r, float& g, float& b);

  // ---- Export

  // Both kinds of file have codes of their own, so that an int can name either.

  enum ImageFileType : int
  {
    JPEG = 5, ///< quality 95 of 100
    PNG = 6,
    BMP = 7,
    PNM = 8, ///< binary
    TIFF = 9,
    POSTSCRIPT = 10
  };

  enum ModelFileType : int
  {
    VRML = 100, ///< VRML 2.0
    OOGL = 101, ///< Geomview
    OBJ = 102,  ///< Wavefront
    IV = 103    ///< Open Inventor
  };

  /// Renders as render() does, into off-screen buffers, and writes the picture to the file: all that the
  /// window shows, RGB, in the window's size in pixels; width and height are ignored. The window's next frame
  /// is drawn on the screen again: its off-screen buffers are off, whatever they were before. A window that
  /// was never rendered appears on the screen, unless rendering is off-screen. While the graphics status is
  /// not normal nothing is rendered, and the picture is that of the last frame.
  ///
  /// False, and nothing happens, for a type that is none of the enumerators, a null or empty file name,
  /// without a window, from inside a frame of the view or its window, and when there is no picture because
  /// the window was never rendered or host code in the frame has taken the view to another one. Otherwise
  /// true, also when the file could not be written: VTK's writer reports that as a VTK error. An exception
  /// from host code in the frame is thrown and nothing is written.
  bool write_image(const char* filename, ImageFileType type, int width, int height);

  /// Brings the models up to date and writes the scene: what is visible in the main renderer, with camera,
  /// lights and the bottom background colour. Needs no frame and no display.
  ///
  /// Written are actors with polygonal data, also in assemblies and in blocks of composite data, as points,
  /// lines and polygons in world coordinates with the actors' properties and textures; colours of points and
  /// cells go with lines and polygons (not into OBJ, and in OOGL with polygons only). IV files have the
  /// coordinates of vertices, but VTK's exporter does not say that they are to be drawn. Surfaces are written
  /// as such, whatever their representation or MRUtil::RENDER_MODE() is, and whole, not cut by clipping
  /// planes of their mappers. Props with the MRUtil::VERTEX_VISIBILITY() key are written while vertices are
  /// visible. Cells with a coordinate that is not finite, 2-D props and the view's decorations are no part of
  /// the scene. What else has no place in the file is left out with a warning for each kind: "Model export
  /// leaves out props of class vtkVolume: 2\n".
  ///
  /// For OBJ the file name is a prefix: the files are filename + ".obj", filename + ".mtl" and, for each
  /// texture, filename + "texture" + a number + ".png".
  ///
  /// False, and nothing happens, for a type that is none of the enumerators, a null or empty file name,
  /// without a window and from inside a frame of the view or its window. Otherwise true, also when the file
  /// could not be written, or is not because there are no actors: VTK's exporter reports that as a VTK error.
  /// An exception from the models' update is thrown and nothing is written.
  ///
  /// Deliberate: each call leaks VTK's exporter object, less than 1 kB, and nothing that it has referred to.
  bool write_model(const char* filename, ModelFileType type);

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
  /// to date and fits the decorations to what is visible, to the background and to the window.
  static void StartRender(vtkObject* caller, unsigned long event, void* client_data, void* call_data);

private:
  friend class GCameraState;
  friend class GModel;
  friend class GModelSet;
  friend class morrow::CameraMotion;

  class FlagScope;

  static void render_views(const std::vector<GView*>& views);
  void forget_model_set(GModelSet* set);

  void make_renderers();
  void make_lights();
  void make_observers();
  [[nodiscard]] bool is_drawing() const;
  [[nodiscard]] bool can_export() const;
  void leave_window();
  void leave_window_for_good();
  void enter_window(vtkRenderWindow* window);
  void hold_overlay(bool hold);
  void fit_view_angle(vtkRenderWindow& window);
  void frame_visible();
  void prepare_frame(vtkRenderWindow& window);
  void prepare_decorations();
  [[nodiscard]] bool is_in_frame() const;
  [[nodiscard]] bool can_render() const;
  void run_frame(std::initializer_list<void (GView::*)()> steps);
  void draw_frame();
  void draw_window();
  void switch_stereo(bool on);
  static vtkSmartPointer<vtkCallbackCommand>
  make_command(void (*callback)(vtkObject*, unsigned long, void*, void*), GView* view);

  vtkSmartPointer<vtkRenderWindow> mRenderWindow;
  vtkSmartPointer<vtkRenderer> mRenderer;
  vtkSmartPointer<vtkRenderer> mOverlayRenderer;
  vtkSmartPointer<GViewRenderPass> mRenderPass;
  std::unique_ptr<morrow::PropList> mPropList;
  std::shared_ptr<morrow::ViewDecorations> mDecorations; // outlives the view in calls of host code
  GModelSet* mModelSet = nullptr;
  int mId = -1;
  std::string mName;
  vtkSmartPointer<vtkCallbackCommand> mStartRenderObserver;
  int mBackground;
  int mBackground2;
  bool mIs2dMode = false;
  bool mIsAutoCenterOff = false;
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
  static std::map<std::string, GCameraState*>& mSavedViews;

  std::shared_ptr<GView*> mHandle;
  bool mIsOverlayHeld = false;
  bool mIsPreparing = false;                      // at the start of a frame, before VTK draws
  bool mIsRendering = false;                      // inside render()
  bool mIsUpdating = false;                       // inside the models' update_parts()
  bool mIsMoving = false;                         // inside a camera operation
  std::shared_ptr<std::exception_ptr> mException; // the first one since render() has thrown
};
