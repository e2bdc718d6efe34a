// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "brant_util_export.h"

class BrantBox;
class BrantColor;
class BrantFacet;
class BrantFacetEdge;
class BrantVector;
class MRefEntity;

/// Debug drawing: temporary points, lines, boxes, polygons, facets and labels, from any code, without knowing
/// of views.
///
/// Code that draws calls the static operations. Each hands its arguments unchanged to the installed back end,
/// to the virtual operation of the same name with `p_` in front; while none is installed it does nothing. So
/// debug drawing may stay in code that also runs without graphics.
///
/// Colours are ids of BrantColorTable. Coordinates and lengths are in model space unless a comment says
/// otherwise. Pointers and references need to live only for the call. What null pointers, counts and lists
/// that do not fit do is up to the back end.
///
/// A face or polyline list is a sequence of runs: a number n, then n indices into the points given, from 0;
/// its length counts all ints, the n included. A single triangle is 3, 0, 1, 2, of length 4.
class BRANT_UTIL_EXPORT GfxDebug
{
public:
  GfxDebug(const GfxDebug&) = delete;
  GfxDebug& operator=(const GfxDebug&) = delete;

  /// An installed back end may be destroyed: none is installed afterwards.
  virtual ~GfxDebug();

  /// The installed back end; null while there is none.
  [[nodiscard]] static GfxDebug* instance() noexcept;

  /// Installs a back end and returns the one before, null when there was none. Null uninstalls. The back end
  /// is not owned; see the destructor.
  static GfxDebug* set_instance(GfxDebug* instance) noexcept;

  /// Removes everything that was drawn.
  static void clear();
  /// Shows the display as a whole again; what the two flags select is up to the back end.
  static void display_all(bool first_flag, bool second_flag);
  /// Brings what was drawn so far to the screen.
  static void flush();
  /// Removes the highlights.
  static void clear_highlight();
  /// Chooses among the drawing modes of the back end.
  static void drawing_mode(int mode);

  /// Draws the mesh of a mesh entity.
  static void draw_mref_entity_mesh(MRefEntity* entity, int color);
  /// Draws a facet; what `option` selects is up to the back end.
  static void draw_facet(BrantFacet* facet, int color, int option);
  /// Draws an edge of a facet.
  static void draw_facet_edge(BrantFacetEdge* edge, int color);

  /// Draws the six faces of a box.
  static void draw_box(BrantBox& box, int color);
  static void draw_point(const BrantVector& point, int color);
  static void draw_point(float x, float y, float z, int color);
  static void draw_line(const BrantVector& from, const BrantVector& to, int color);
  static void draw_line(float x1, float y1, float z1, float x2, float y2, float z2, int color);
  /// Draws one open line through `count` points.
  static void draw_polyline(const BrantVector* points, int count, int color);
  /// Draws the polygon of `count` points, filled or as an outline; what `option` selects is up to the back
  /// end.
  static void draw_polygon(const BrantVector* points, int count, int color, int option, bool filled);
  /// Draws the quadrilateral of 4 points, given around it.
  static void draw_quad(const BrantVector* points, int color);
  /// Draws the triangle of 3 points.
  static void draw_tri(const BrantVector* points, int color);
  /// Draws an arrow from `tail` to `head`.
  static void draw_vector(const BrantVector& tail, const BrantVector& head, int color);
  /// Draws the polygons of a face list, all in one colour.
  static void draw_shell(int num_points, const BrantVector* points, int face_list_length,
                         const int* face_list, int color);
  /// Draws the polygons of a face list; `colors` holds one colour per face.
  static void draw_shell(int num_points, const BrantVector* points, int face_list_length,
                         const int* face_list, const BrantColor* colors);
  /// Writes a text, in the encoding of the back end, at a point.
  static void draw_label(const char* text, float x, float y, float z, int color);
  /// Writes a number in decimal form at a point.
  static void draw_label(int number, float x, float y, float z, int color);

  /// Moves the camera until it shows the box.
  static void zoom(BrantBox& box);
  /// Stores the length in model space that `pixels` pixels of the screen show; 1.0 while no back end is
  /// installed.
  static void display_to_world_length(double pixels, double& length);
  /// Lets the user move the camera with the mouse, and returns when they are done.
  static void mouse_xforms();

  /// Highlights `count` points.
  static void highlight_points(int count, const BrantVector* points);
  /// Highlights the polylines of a list of `list_length` ints.
  static void highlight_polylines(int num_points, const BrantVector* points, int list_length,
                                  const int* list);
  /// Highlights the polygons of a list of `list_length` ints.
  static void highlight_polygons(int num_points, const BrantVector* points, int list_length, const int* list);

  // The back end's side: what the static operations of the same names promise.
  virtual void p_clear() = 0;
  virtual void p_display_all(bool first_flag, bool second_flag) = 0;
  virtual void p_flush() = 0;
  virtual void p_clear_highlight() = 0;
  virtual void p_drawing_mode(int mode) = 0;
  virtual void p_draw_mref_entity_mesh(MRefEntity* entity, int color) = 0;
  virtual void p_draw_facet(BrantFacet* facet, int color, int option) = 0;
  virtual void p_draw_facet_edge(BrantFacetEdge* edge, int color) = 0;
  virtual void p_draw_box(BrantBox& box, int color) = 0;
  virtual void p_draw_point(const BrantVector& point, int color) = 0;
  virtual void p_draw_point(float x, float y, float z, int color) = 0;
  virtual void p_draw_line(const BrantVector& from, const BrantVector& to, int color) = 0;
  virtual void p_draw_line(float x1, float y1, float z1, float x2, float y2, float z2, int color) = 0;
  virtual void p_draw_polyline(const BrantVector* points, int count, int color) = 0;
  virtual void p_draw_polygon(const BrantVector* points, int count, int color, int option, bool filled) = 0;
  virtual void p_draw_quad(const BrantVector* points, int color) = 0;
  virtual void p_draw_tri(const BrantVector* points, int color) = 0;
  virtual void p_draw_vector(const BrantVector& tail, const BrantVector& head, int color) = 0;
  virtual void p_draw_shell(int num_points, const BrantVector* points, int face_list_length,
                            const int* face_list, int color) = 0;
  virtual void p_draw_shell(int num_points, const BrantVector* points, int face_list_length,
                            const int* face_list, const BrantColor* colors) = 0;
  virtual void p_draw_label(const char* text, float x, float y, float z, int color) = 0;
  virtual void p_draw_label(int number, float x, float y, float z, int color) = 0;
  virtual void p_zoom(BrantBox& box) = 0;
  virtual void p_display_to_world_length(double pixels, double& length) = 0;
  virtual void p_mouse_xforms() = 0;
  virtual void p_highlight_points(int count, const BrantVector* points) = 0;
  virtual void p_highlight_polylines(int num_points, const BrantVector* points, int list_length,
                                     const int* list) = 0;
  virtual void p_highlight_polygons(int num_points, const BrantVector* points, int list_length,
                                    const int* list) = 0;

protected:
  GfxDebug() noexcept = default;
};
