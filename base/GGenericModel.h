// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "GModel.h" // superclass

class vtkPolyData;

namespace morrow {
class GrowingPolyData;
enum class ColourBinding;
struct PrimitiveSlots;
} // namespace morrow

/// The model of loose primitives: points, lines, polygons, boxes, arrows, whole polygon data and text
/// markers, each with a colour and a draw mode. For debug drawing, charts and temporary graphics.
///
/// Primitives of the same draw mode and kind share one vtkPolyData, a slot, which is made with the first of
/// them, becomes one part, and grows in place; so a million points are one actor in each view. What is added
/// shows in the next frame after update_parts(), which a GModelSet calls before each frame of its views.
/// Nothing is taken back one by one: clear() removes everything.
///
/// | draw mode         | how its primitives look                                                         |
/// | ----------------- | ------------------------------------------------------------------------------- |
/// | DRAW_DEFAULT 0    | lit; surfaces as wireframe while the model's render mode is below 3              |
/// | DRAW_OUTLINE 1    | unlit, in exactly their colours; polygons as outlines                           |
/// | DRAW_FILLED 2     | lit, surfaces whatever the render mode                                          |
/// | DRAW_HIGHLIGHT 3  | lit, all in the highlight colour, with the highlight line width                 |
/// | DRAW_OVERLAY 4    | lit, half transparent                                                           |
///
/// Lines and points are 1 and 6 pixels wide, highlighted lines 3. Polygons are moved back a little
/// (GModel::set_polygon_offset(1, 1)), so that lines and points on them are seen.
///
/// # What the operations that add have in common
///
/// Points are BrantVectors in world coordinates, stored as floats; arrays are copied. Coordinates are not
/// checked: VTK does not draw what has a coordinate that is not a number. Cells have the alpha of their
/// colour; below 255 they are translucent.
///
/// A list is a sequence of runs, `list_length` ints in all: a count n, then n point numbers, each from 0 to
/// num_points - 1. All points of a call are appended, then the runs in order. A broken run adds nothing: one
/// with a point number out of range, a polyline of fewer than 2 points, a polygon of fewer than 3. It is
/// passed over and reading goes on. A run with a negative count, or one that is longer than the list, ends
/// the reading, as the rest cannot be told apart. One warning message for each call tells of broken runs.
///
/// Counts of zero or below add nothing. A null array where there should be numbers, a draw mode that does not
/// exist, and a null text add nothing and are an error message.
class MORROW_BASE_EXPORT GGenericModel : public GModel
{
public:
  /// An empty model, without any slot. Highlight colour BRANT_ORANGE.
  GGenericModel();

  /// Calls clear(), then leaves sets and views. Data and props that somebody holds live on.
  ~GGenericModel() override;

  // ---- Primitives

  /// Vertices, count of each.
  void add_points(int count, const BrantVector* points, BrantColor color, MRUtil::DrawMode mode);

  /// Open lines, one for each run.
  void add_polylines(int num_points, const BrantVector* points, int list_length, const int* list,
                     BrantColor color, MRUtil::DrawMode mode);

  /// A line, always in DRAW_OUTLINE.
  void add_line(const BrantVector& a, const BrantVector& b, BrantColor color);

  /// Polygons, one for each run: closed by themselves, flat, best convex.
  void add_polygons(int num_points, const BrantVector* points, int list_length, const int* list,
                    BrantColor color, MRUtil::DrawMode mode);

  /// The same with a colour for each run, broken ones included: run i has colors[i].
  void add_polygons(int num_points, const BrantVector* points, int list_length, const int* list,
                    const BrantColor* colors, MRUtil::DrawMode mode);

  /// A polygon of 3 points, of 4, of count points, given around it.
  void add_tri(const BrantVector* points, BrantColor color, MRUtil::DrawMode mode);
  void add_quad(const BrantVector* points, BrantColor color, MRUtil::DrawMode mode);
  void add_polygon(int count, const BrantVector* points, BrantColor color, MRUtil::DrawMode mode);

  /// The six faces of a box as quadrilaterals that face outwards; corners are 2 points, the minimum and the
  /// maximum. Each face has 4 points of its own.
  void add_cube(const BrantVector* corners, BrantColor color, MRUtil::DrawMode mode);

  /// An arrow. The shaft is a line from tail to head in DRAW_OUTLINE. The head is a pyramid of four triangles
  /// without base in DRAW_DEFAULT: its apex is the head, its base lies a fifth of the length before it, with
  /// corners 0.07 of the length off the axis. With a shaft to draw, a vector of length zero is a point.
  void add_vector(const BrantVector& tail, const BrantVector& head, BrantColor color, bool draw_shaft);

  /// All points and cells of data, in one colour that belongs to the points. data may be a slot of this
  /// model. A cell that names points which data does not have, or fewer than its type needs, is left out,
  /// with one warning message for all; so are cells that were deleted, without. Null is an error message.
  void add_polydata(vtkPolyData* data, BrantColor color, MRUtil::DrawMode mode);

  /// The same in DRAW_HIGHLIGHT.
  void add_points_highlight(int count, const BrantVector* points);
  void add_polylines_highlight(int num_points, const BrantVector* points, int list_length, const int* list);
  void add_polygons_highlight(int num_points, const BrantVector* points, int list_length, const int* list);

  /// Marks a place by a text in 2-D, which begins 20 pixels right of it and above it. text is UTF-8 and
  /// copied. See create_locate_view().
  void add_locate(const BrantVector& position, const char* text);

  // ---- Settings. They hold for what was added before, too. Sizes and widths are not checked: OpenGL has
  // none of 0 and below, reports an error in each frame that asks for one, and draws with another.

  /// Shows DRAW_DEFAULT in wireframe below mode 3, else its surfaces; then as GModel does.
  void set_render_mode(MRUtil::RenderMode mode) override;

  /// Point size of all but highlights: 6 f pixels. Until the first call it is 6, which is f = 1.
  void set_point_size(float f);

  /// Line width of all but highlights in pixels, initially 1.
  void set_line_width(float f);

  /// Line width of highlights in pixels, initially 3.
  void set_highlight_line_width(float f);

  /// Colour of highlights, initially BRANT_ORANGE; its alpha is ignored.
  void set_highlight_color(BrantColor c);

  // ---- Model

  /// Brings what was added since the last time to the mappers. Cheap when nothing was; else VTK computes the
  /// normals of all polygons of the slots that have changed.
  void update_parts() override;

  /// As GModel does, and lets go of all slots. The settings stay.
  void clear() override;

  // ---- Slots and props, for derived models

  /// The data of a slot, made and shown if it is not there: coloured by cells or by points, with an array
  /// "Color" of 4 unsigned chars (red, green, blue, alpha) as scalars. kind is 0 for vertices, 1 for lines, 2
  /// for polygons. The model owns it, until clear(). Another mode or kind gives null and an error message;
  /// null also when host code destroys or clears the model meanwhile.
  ///
  /// Who adds to it by himself keeps colours and cells (points) equally many, calls Modified() of what he
  /// changes, and puts in no polygon of fewer than 3 points. Its part is the output of a vtkPolyDataNormals
  /// on it.
  vtkPolyData* initialize_cell_data(MRUtil::DrawMode mode, int kind);
  vtkPolyData* initialize_point_data(MRUtil::DrawMode mode, int kind);

  /// The prop function of slots: one vtkActor with the model's property of the mode, and a mapper of
  /// GModel::create_mapper() that is not static. Polygons get the offset (1, 1); highlights ignore scalars.
  /// No prop, and an error message, when model is null or the mode does not exist.
  static std::vector<vtkSmartPointer<vtkProp>>
  create_data_view(vtkDataObject* data, GView* view, GGenericModel* model, MRUtil::DrawMode mode, int kind);

  /// The prop function of text markers: one vtkCaptionActor2D, without border and leader, at the first point
  /// of a vtkPolyData, with the text of the vtkCharArray "Label" in its field data, up to the first zero. The
  /// text is neither bold nor italic nor shadowed, 0.03 of the window high, and in a colour that can be read
  /// on the view's background at this time; white without a view. No prop, and an error message, when the
  /// data lack any of this.
  static std::vector<vtkSmartPointer<vtkProp>> create_locate_view(vtkDataObject* data, GView* view);

private:
  struct Points;

  template<typename ColourOf>
  void add_runs(const char* operation, const Points& points, int list_length, const int* list, int kind,
                MRUtil::DrawMode mode, ColourOf&& colour_of);
  void add_one(int kind, int count, const BrantVector* points, BrantColor color, MRUtil::DrawMode mode);
  [[nodiscard]] morrow::GrowingPolyData* cell_slot(MRUtil::DrawMode mode, int kind);
  morrow::GrowingPolyData* make_slot(morrow::ColourBinding binding, MRUtil::DrawMode mode, int kind);
  void make_properties();
  template<typename Call>
  void for_plain_properties(Call&& call);

  static constexpr int NumModes = 5;

  std::shared_ptr<morrow::PrimitiveSlots> mSlots; // never null
  vtkSmartPointer<vtkProperty> mProperties[NumModes];
  BrantColor mHighlightColor;
  float mLineWidth = 1.0F;
  float mPointSize = 6.0F;
  float mHighlightLineWidth = 3.0F;
};
