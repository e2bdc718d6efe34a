// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <functional> // PartPropFunction
#include <map>
#include <memory>
#include <vector>

#include "BrantColor.h" // passed by value
#include "MRUtil.h"     // MRUtil::RenderMode
#include "morrow_base_export.h"

#include <vtkSmartPointer.h> // the props of a part, members

class BrantVector;
class GDataGroup;
class GLabelMapper;
class GModelSet;
class GView;
class vtkActor2D;
class vtkCommand;
class vtkDataObject;
class vtkMapper;
class vtkObject;
class vtkProp;
class vtkProperty;
class vtkTextProperty;

/// Makes the props that show one part in one view. Called once for each pair of part and view. The props may
/// be any number of any kind; null ones are passed over.
using PartPropFunction =
    std::function<std::vector<vtkSmartPointer<vtkProp>>(vtkDataObject* data, GView* view)>;

/// The unit of display: parts, each a VTK data object with the function that makes its props, shown in every
/// view that the model is connected to, and text labels that hide behind geometry.
///
/// Derive from it and implement update_parts(); connect it to views with a GModelSet, or one by one with
/// add_view(). The props of a part in a view are made when the later of the two arrives, and let go when the
/// first of them leaves. Unhooking takes a model's props out of the views' renderers without letting them go.
///
/// Adding what is there, removing what is absent, and null arguments do nothing.
///
/// Prop functions are host code and may call any operation of the model, remove the part or view that they
/// are called for, or throw. What was being added is then taken out again and the exception passes on; an
/// empty function counts as one that throws std::bad_function_call. Views and models may be destroyed in any
/// order.
///
/// The first model in the process switches VTK's global warning display off; the host may switch it on again.
class MORROW_BASE_EXPORT GModel
{
public:
  /// Names a label of this model.
  using LabelKey = int;

  /// The key of no label.
  static constexpr LabelKey InvalidLabelKey = -1;

  /// For the host, which may use it in its prop functions: every model constructor sets it to false and the
  /// library never reads it.
  static bool mNormalDirectedLighting;

  /// A model without parts, labels and views, hooked, in mode MRUtil::RENDER_FLAT.
  GModel();
  GModel(const GModel&) = delete;
  GModel& operator=(const GModel&) = delete;

  /// Leaves its sets and views, then calls clear().
  virtual ~GModel();

  /// A mode for prop functions to read. The model itself only lets all labels show through geometry in mode
  /// 0; a change shows in the next frame.
  virtual void set_render_mode(MRUtil::RenderMode mode);
  [[nodiscard]] virtual MRUtil::RenderMode get_render_mode();

  /// Makes data a part: holds a reference on it, makes its props for each connected view, and shows them if
  /// the model is hooked. When data is a part already, its first function is kept.
  virtual void add_part(vtkDataObject* data, const PartPropFunction& make_props);

  /// Lets go of the part's props in every view, its function and the reference on data.
  virtual void remove_part(vtkDataObject* data);

  /// Brings the parts up to date with the host's data. Called before each frame of a view that the model is
  /// connected to through a set, twice when GView::render() starts the frame; so it must be cheap when
  /// nothing has changed. It may add and remove parts and labels. An exception passes on to the caller of the
  /// view after the frame is drawn.
  virtual void update_parts() = 0;

  /// Renders every connected view; nothing while the graphics status is disabled or suspended.
  virtual void Render();

  /// Takes the props and labels out of all renderers; they are kept.
  virtual void unhook_from_views();

  /// Puts them back. Props that were never made, because a view was added while the model was unhooked, are
  /// not made now.
  virtual void hook_to_views();

  /// Removes all parts, each through remove_part(), and all labels. Views stay connected. All props leave the
  /// renderers before the first remove_part(), so that this takes time in proportion to their number. A part
  /// that an override of remove_part() keeps is removed all the same.
  virtual void clear();

  /// Connects a view: makes the props of all parts for it, in ascending order of the data's addresses, and
  /// shows them and the labels. While the model is unhooked nothing is made and nothing is shown.
  void add_view(GView* view);

  /// Takes props and labels out of the view and lets its props go.
  void remove_view(GView* view);

  /// Whether props and labels are in the renderers of the connected views.
  [[nodiscard]] bool is_hooked_to_views() const { return mHooked; }

  /// Adds a label with its lower left corner at position, in world coordinates. text is UTF-8 and copied; the
  /// colour's alpha is ignored. The key is 0 or above.
  LabelKey add_label(const char* text, const BrantVector& position, BrantColor color);

  /// Removes a label; a key without label does nothing.
  void remove_label(LabelKey key);

  /// Properties for prop functions to use; the model owns them. Never null.
  /// Front faces: flat, black, ambient, diffuse and specular 1. Back faces: red, ambient 0.7 and no other
  /// light. Curves: red, ambient, diffuse and specular 1. Point size 6 pixels in each.
  [[nodiscard]] vtkProperty* surface_normal_front_property() const;
  [[nodiscard]] vtkProperty* surface_normal_back_property() const;
  [[nodiscard]] vtkProperty* curve_normal_property() const;

  /// Colours back faces; each channel from 0 to 1.
  void surface_back_property_color(double r, double g, double b);

  /// The look of the labels of all models: 12 pixel, neither bold nor shadowed at first. Made with the first
  /// model and gone with the last one; null when there is none.
  [[nodiscard]] static vtkTextProperty* text_property();

  /// Sets the font size of the labels added from now on, in every model, to 12 f pixels, truncated; the next
  /// first model starts with 1 again. A negative size becomes 0. Nothing happens while there is no model, or
  /// when the size is not a number that fits an int. Text of some hundred pixels already takes hundreds of
  /// megabytes.
  static void set_font_size_factor(double f);

  /// The font size in units of 12 pixels; 1 while there is no model.
  [[nodiscard]] static double get_font_size_factor();

  // ---- Data groups

  /// The props of each part in each view.
  using ViewProps = std::map<GView*, std::map<vtkDataObject*, std::vector<vtkSmartPointer<vtkProp>>>>;

  /// Sets an attribute of one kind of drawing, in all groups of a chain and in all views: calls apply with
  /// the props that views has for data set number index of each group, group by group in the order of the
  /// chain. views is view_props() of the model that shows the groups; apply may change its parts and views,
  /// but the props that it was given are gone once it has removed theirs, and it must not destroy the model.
  /// Groups without a data set of that number are passed over; a null group does nothing. An empty apply
  /// throws std::bad_function_call when it is first needed; exceptions pass on at once.
  static void set_datagroup_attributes(GDataGroup* group, int index, ViewProps& views,
                                       std::function<void(std::vector<vtkSmartPointer<vtkProp>>&)> apply);

  // ---- Mappers for prop functions

  /// A mapper that draws data: a MyCompositePolyDataMapper for a vtkMultiBlockDataSet, else a
  /// vtkPolyDataMapper, which draws nothing but vtkPolyData; null data gives one without input. The mapper is
  /// static: it spares the check of its pipeline in each frame, so after a change in place call its
  /// SetStatic(0), or make the props anew. It holds a reference on data. The view is not used.
  [[nodiscard]] static vtkSmartPointer<vtkMapper> create_mapper(vtkDataObject* data, GView* view);

  /// Makes the mapper draw everything farther back, so that lines and points on the same surface are seen: by
  /// 2 factor × (slope of the depth across a pixel) + 2 × 0.000016 × units, in depths of the window from 0 to
  /// 1; negative numbers bring it nearer. (1, 1) suits filled polygons. Each of the two that is not finite
  /// once doubled moves nothing.
  ///
  /// This is the mapper's fragment shader: it takes the place of any that was set before, stippled lines
  /// included. VTK gives it to the actors that the mapper draws, in the place of their own shader properties.
  /// Nothing happens for a null mapper, one that is not a vtkOpenGLPolyDataMapper, and (0, 0).
  static void set_polygon_offset(vtkMapper* mapper, double factor, double units);

  /// Makes the mapper draw its lines with the line stipple pattern of a property: 16 bits, read from the
  /// lowest up along 16 pixels, starting anew with each segment; 0xFFFF draws solid lines, 0 nothing.
  ///
  /// view is where the mapper is drawn: in a window of another size dashes have another length.
  /// uniform_command is told of each shader in each frame, and sets its uniform "StipplePattern", as one with
  /// the callback SetStippleShaderUniform() and the actor's property as client data does. The mapper shares
  /// the command. A second call does not add commands that are there. With a null view or command the rest is
  /// done; the uniforms "ViewportSize" and "StipplePattern" are then the host's, and draw nothing before they
  /// are set.
  ///
  /// These are the mapper's geometry and fragment shaders: they take the place of any that were set before,
  /// the polygon offset included, and of the shader properties of its actors. Nothing happens for a null
  /// mapper, and one that is not a vtkOpenGLPolyDataMapper.
  ///
  /// The shaders have limits. Polygons and points are not drawn: each is an error of OpenGL, so give the
  /// mapper data of lines. Colours are the property's or those of points, not of cells. Lines wider than the
  /// driver can draw by itself come one pixel wide. Never switch RenderLinesAsTubes on: VTK crashes.
  static void setup_stippled_line_mapper(vtkMapper* mapper, GView* view, vtkCommand* uniform_command);

  /// Callback for a vtkCallbackCommand: client_data is the vtkProperty whose GetLineStipplePattern() is set
  /// as the uniform "StipplePattern" of call_data, the vtkShaderProgram; a program that does not use it, and
  /// null for either, are left alone. The command does not own the property: it must live as long as the
  /// mapper is drawn, or the host takes it back with SetClientData(nullptr).
  static void SetStippleShaderUniform(vtkObject* caller, unsigned long event, void* client_data,
                                      void* call_data);

protected:
  /// The props of this model's parts in each connected view, for GDataGroup::update_all() and
  /// set_datagroup_attributes(). The model owns it, and changes it as views and parts come and go; add and
  /// remove them through the model only.
  [[nodiscard]] ViewProps& view_props();

private:
  friend class GModelSet;
  friend class GfxDebugSimple;

  using PropVector = std::vector<vtkSmartPointer<vtkProp>>;

  using PartProps = std::map<vtkDataObject*, PropVector>;

  static void count_instance();
  static void discount_instance();
  void make_label_overlay();
  void make_properties();
  [[nodiscard]] bool has_view(GView* view) const;
  [[nodiscard]] std::vector<GView*> connected_views();
  [[nodiscard]] GView* first_view();
  void drop_dead_views();
  bool make_and_show(vtkDataObject* data, GView* view);
  bool make_and_show_all(GView* view);
  static PropVector all_props(const PartProps& parts);
  template<typename Call>
  void for_each_view(Call&& call);
  void let_go(vtkDataObject* data, GView* view);
  void hide_props();
  void show_props();
  void remove_all_parts();

  ViewProps mViews;
  std::map<GView*, std::shared_ptr<GView* const>> mHandles; // of the same views: whether each still lives
  std::map<vtkDataObject*, PartPropFunction> mParts;
  vtkSmartPointer<vtkActor2D> mLabelActor;
  vtkSmartPointer<GLabelMapper> mLabelMapper;
  MRUtil::RenderMode mRenderMode = MRUtil::RENDER_FLAT;
  bool mHooked = true;
  vtkSmartPointer<vtkProperty> mSurfaceFront;
  vtkSmartPointer<vtkProperty> mSurfaceBack;
  vtkSmartPointer<vtkProperty> mCurve;

  std::vector<GModelSet*> mSets;  // kept by the sets
  std::shared_ptr<bool> mIsAlive; // false once destroyed: host code may destroy the model that calls it
};
