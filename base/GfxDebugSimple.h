// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "GfxDebug.h"
#include "morrow_base_export.h"

class GGenericModel;
class GView;

/// Debug drawing into a generic model: each call adds to the model what it draws, in the colour that
/// BrantColorTable has for the number, an unknown one in the default colour. The host connects the model to
/// the views that are to show it.
///
///   GGenericModel model;
///   GfxDebugSimple drawing(&model);
///   GfxDebug::set_instance(&drawing);
///   GfxDebug::draw_point(position, 3);
///   GfxDebug::flush();
///
/// Where nothing else is said, primitives have MRUtil::DRAW_OUTLINE: outlines without light. Nothing is
/// rendered but by p_display_all(), p_flush(), p_zoom() and p_mouse_xforms().
///
/// Counts below 1, empty boxes and null texts draw nothing. Null arrays and broken lists draw nothing either,
/// polylines of one point and polygons of one or two among them, and the model tells of them; see
/// GGenericModel. Operations that need a view do nothing while the model has none.
class MORROW_BASE_EXPORT GfxDebugSimple : public GfxDebug
{
public:
  /// Draws into the model, which is not owned and must live as long as this object is called; null draws
  /// nothing.
  explicit GfxDebugSimple(GGenericModel* model);

  /// What was drawn stays in the model. An installed object is uninstalled.
  ~GfxDebugSimple() override;

  /// The first connected view of the model, in the order of their addresses; null when there is none.
  [[nodiscard]] GView* get_first_view() const;

  /// Removes everything from the model, also what the host has put there in other ways.
  void p_clear() override;
  /// Removes everything and renders; both flags are ignored.
  void p_display_all(bool first_flag, bool second_flag) override;
  /// Renders every view of the model; nothing unless the graphics status is normal.
  void p_flush() override;

  /// Nothing: highlights stay until everything is removed.
  void p_clear_highlight() override;
  /// These do nothing.
  void p_drawing_mode(int mode) override;
  void p_draw_mref_entity_mesh(MRefEntity* entity, int color) override;
  void p_draw_facet(BrantFacet* facet, int color, int option) override;
  void p_draw_facet_edge(BrantFacetEdge* edge, int color) override;

  /// Draws the outlines of the six faces.
  void p_draw_box(BrantBox& box, int color) override;
  void p_draw_point(const BrantVector& point, int color) override;
  /// The same as the operation above it, which an override of that also changes.
  void p_draw_point(float x, float y, float z, int color) override;
  void p_draw_line(const BrantVector& from, const BrantVector& to, int color) override;
  /// The same as the operation above it, which an override of that also changes.
  void p_draw_line(float x1, float y1, float z1, float x2, float y2, float z2, int color) override;
  void p_draw_polyline(const BrantVector* points, int count, int color) override;
  /// Filled polygons have MRUtil::DRAW_FILLED. `option` is ignored.
  void p_draw_polygon(const BrantVector* points, int count, int color, int option, bool filled) override;
  /// points: 4, or 3.
  void p_draw_quad(const BrantVector* points, int color) override;
  void p_draw_tri(const BrantVector* points, int color) override;
  /// Draws shaft and head; two equal points give a point.
  void p_draw_vector(const BrantVector& tail, const BrantVector& head, int color) override;
  void p_draw_shell(int num_points, const BrantVector* points, int face_list_length, const int* face_list,
                    int color) override;
  void p_draw_shell(int num_points, const BrantVector* points, int face_list_length, const int* face_list,
                    const BrantColor* colors) override;
  /// text is UTF-8; the point is the label's lower left corner.
  void p_draw_label(const char* text, float x, float y, float z, int color) override;
  void p_draw_label(int number, float x, float y, float z, int color) override;

  /// Frames the box in the first view at once; see GView::zoom_box().
  void p_zoom(BrantBox& box) override;
  /// The length at the depth of the world's origin in the first view; see GView::pixel_to_model_length().
  /// 1.0 without a view, and for one whose window has no size.
  void p_display_to_world_length(double pixels, double& length) override;
  /// Prints "Entering mouse mode.  Press 'q' in graphics window to exit mouse mode\n" as information, then
  /// runs the event loop of the first view's interactor until it ends; without an interactor there is none.
  /// Meanwhile the interactor may render; afterwards that setting is what it was before. The 'q' key and
  /// vtkRenderWindowInteractor::ExitCallback() end the loop, unless the host observes the exit event; its
  /// TerminateApp() does too, but closes the window while events wait, which X takes amiss. The loop needs a
  /// display. Not to be called from inside a frame, nor from an event loop of the interactor: VTK's do not
  /// nest. An exception of host code that ends the loop passes on.
  void p_mouse_xforms() override;

  /// Highlights, in the model's highlight colour.
  void p_highlight_points(int count, const BrantVector* points) override;
  void p_highlight_polylines(int num_points, const BrantVector* points, int list_length,
                             const int* list) override;
  void p_highlight_polygons(int num_points, const BrantVector* points, int list_length,
                            const int* list) override;

private:
  GGenericModel* mModel;
};
