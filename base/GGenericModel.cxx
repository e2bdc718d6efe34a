// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "GGenericModel.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "BrantColor.h"
#include "BrantVector.h"
#include "DeferredCollection.h"
#include "IndexRuns.h"
#include "PrimitiveShapes.h"
#include "PrimitiveSlots.h"

#include <vtkActor.h>
#include <vtkCellArray.h>
#include <vtkCellType.h>
#include <vtkMapper.h>
#include <vtkProperty.h>

using morrow::ColourBinding;
using morrow::GrowingPolyData;
using morrow::IndexRuns;
using morrow::PrimitiveSlot;
using morrow::PrimitiveSlots;

namespace {

enum Kind : int
{
  Vertices = 0,
  Lines = 1,
  Polygons = 2
};

constexpr float BasePointSize = 6.0F; // pixels
constexpr double OverlayOpacity = 0.5;
constexpr double MaxChannel = 255.0;

struct KindOfCell
{
  VTKCellType type;
  int smallest; // number of points
};

constexpr KindOfCell CellsOf[PrimitiveSlots::NumKinds] = {{VTK_VERTEX, 1}, {VTK_LINE, 2}, {VTK_POLYGON, 3}};

bool refuses_null(const void* array, const char* operation)
{
  if (array == nullptr) {
    MRUtil::print_error("GGenericModel::%s: null array\n", operation);
  }
  return array == nullptr;
}

void warn_of(const IndexRuns& runs, const char* operation)
{
  if (runs.num_broken() > 0) {
    MRUtil::print_warning("GGenericModel::%s: %d broken runs left out; run %d has %s\n", operation,
                          runs.num_broken(), runs.first_broken(), description(runs.first_fault()));
  }
}

bool has_mode(int mode)
{
  return PrimitiveSlots::has(mode, Vertices);
}

vtkSmartPointer<vtkCellArray> copy_of(vtkCellArray* cells)
{
  auto copy = vtkSmartPointer<vtkCellArray>::New();
  copy->DeepCopy(cells);
  return copy;
}

// Where there are polygons the filter makes points of its own, but passes vertices and lines on: those that
// are added to them before the next update would name points that are not there.
void keep_apart(vtkPolyData& shown, vtkPolyData& growing)
{
  if (shown.GetPoints() == growing.GetPoints()) {
    return;
  }
  if (shown.GetVerts() == growing.GetVerts()) {
    shown.SetVerts(copy_of(growing.GetVerts()));
  }
  if (shown.GetLines() == growing.GetLines()) {
    shown.SetLines(copy_of(growing.GetLines()));
  }
}

void bring_up_to_date(vtkPolyDataNormals& normals)
{
  normals.Update();
  if (auto* growing = vtkPolyData::SafeDownCast(normals.GetInput())) {
    keep_apart(*normals.GetOutput(), *growing);
  }
}

void set_colour(vtkProperty& property, BrantColor colour)
{
  property.SetColor(colour.red() / MaxChannel, colour.green() / MaxChannel, colour.blue() / MaxChannel);
}

} // namespace

struct GGenericModel::Points
{
  int count;
  const BrantVector* points;
};

// ---------------------------------------------------------------------------------------------------------
// Life

GGenericModel::GGenericModel() : mSlots(std::make_shared<PrimitiveSlots>()), mHighlightColor(BRANT_ORANGE)
{
  static_assert(NumModes == PrimitiveSlots::NumModes);
  this->make_properties();
}

GGenericModel::~GGenericModel()
{
  this->GGenericModel::clear(); // while it is whole: host code may look at it when its props go
}

void GGenericModel::make_properties()
{
  for (auto& property : mProperties) {
    property = vtkSmartPointer<vtkProperty>::New();
    property->SetLineWidth(mLineWidth);
    property->SetPointSize(mPointSize);
  }
  vtkProperty& outline = *mProperties[MRUtil::DRAW_OUTLINE];
  outline.SetAmbient(1.0);
  outline.SetDiffuse(0.0);
  outline.SetSpecular(0.0);
  outline.SetRepresentationToWireframe();
  mProperties[MRUtil::DRAW_HIGHLIGHT]->SetLineWidth(mHighlightLineWidth);
  set_colour(*mProperties[MRUtil::DRAW_HIGHLIGHT], mHighlightColor);
  mProperties[MRUtil::DRAW_OVERLAY]->SetOpacity(OverlayOpacity);
}

// ---------------------------------------------------------------------------------------------------------
// Slots

vtkPolyData* GGenericModel::initialize_cell_data(MRUtil::DrawMode mode, int kind)
{
  return this->make_slot(ColourBinding::Cells, mode, kind);
}

vtkPolyData* GGenericModel::initialize_point_data(MRUtil::DrawMode mode, int kind)
{
  return this->make_slot(ColourBinding::Points, mode, kind);
}

GrowingPolyData* GGenericModel::make_slot(ColourBinding binding, MRUtil::DrawMode mode, int kind)
{
  if (!PrimitiveSlots::has(mode, kind)) {
    MRUtil::print_error("GGenericModel: there is no draw mode %d with primitive kind %d\n",
                        static_cast<int>(mode), kind);
    return nullptr;
  }
  const std::shared_ptr<PrimitiveSlots> kept = mSlots; // host code may destroy the model
  PrimitiveSlot& slot = kept->at(binding, mode, kind);
  if (slot.data != nullptr) {
    return slot.data;
  }
  slot.data = GrowingPolyData::make(binding);
  slot.normals = vtkSmartPointer<vtkPolyDataNormals>::New();
  slot.normals->SetInputData(slot.data);
  slot.data->set_sharer(slot.normals->GetOutput()); // where there are no polygons
  try {
    this->add_part(slot.normals->GetOutput(), [=](vtkDataObject* data, GView* view) {
      return create_data_view(data, view, this, mode, kind);
    });
  } catch (...) {
    slot = {}; // it would never be seen
    throw;
  }
  return kept.use_count() > 1 ? slot.data.Get() : nullptr;
}

GrowingPolyData* GGenericModel::cell_slot(MRUtil::DrawMode mode, int kind)
{
  GrowingPolyData* data = has_mode(mode) ? mSlots->at(ColourBinding::Cells, mode, kind).data.Get() : nullptr;
  return data != nullptr ? data : this->make_slot(ColourBinding::Cells, mode, kind);
}

void GGenericModel::update_parts()
{
  const std::shared_ptr<PrimitiveSlots> kept = mSlots;
  for (auto* slots : {&kept->by_cells, &kept->by_points}) {
    for (PrimitiveSlot& slot : *slots) {
      if (const vtkSmartPointer<vtkPolyDataNormals> normals = slot.normals) { // host code may clear the model
        bring_up_to_date(*normals);
      }
    }
  }
}

void GGenericModel::clear()
{
  const std::shared_ptr<PrimitiveSlots> kept = mSlots;
  const morrow::DeferredCollection bracket;
  this->GModel::clear();
  const PrimitiveSlots leaving = std::exchange(*kept, {});
}

// ---------------------------------------------------------------------------------------------------------
// Primitives

void GGenericModel::add_points(int count, const BrantVector* points, BrantColor color, MRUtil::DrawMode mode)
{
  if (count <= 0 || refuses_null(points, "add_points")) {
    return;
  }
  if (count == 1) {
    this->add_one(Vertices, 1, points, color, mode);
    return;
  }
  GrowingPolyData* data = this->cell_slot(mode, Vertices);
  if (data == nullptr) {
    return;
  }
  const vtkIdType first = data->begin(VTK_VERTEX);
  data->append_points(points, count);
  data->append_vertices(first, count);
  data->append_colours(color, count);
  data->mark_modified();
}

template<typename ColourOf>
void GGenericModel::add_runs(const char* operation, const Points& points, int list_length, const int* list,
                             int kind, MRUtil::DrawMode mode, ColourOf&& colour_of)
{
  if ((points.count <= 0 && list_length <= 0) ||
      (points.count > 0 && refuses_null(points.points, operation)) ||
      (list_length > 0 && refuses_null(list, operation))) {
    return;
  }
  GrowingPolyData* data = this->cell_slot(mode, kind);
  if (data == nullptr) {
    return;
  }
  const vtkIdType first = data->begin(CellsOf[kind].type);
  data->append_points(points.points, std::max(points.count, 0));
  IndexRuns runs(list, list_length, points.count, CellsOf[kind].smallest);
  while (runs.next()) {
    data->append_cell(first, runs.ids(), runs.count());
    data->append_colours(colour_of(runs.number()), 1);
  }
  data->mark_modified();
  warn_of(runs, operation);
}

void GGenericModel::add_polylines(int num_points, const BrantVector* points, int list_length, const int* list,
                                  BrantColor color, MRUtil::DrawMode mode)
{
  this->add_runs("add_polylines", {num_points, points}, list_length, list, Lines, mode,
                 [color](int) { return color; });
}

void GGenericModel::add_line(const BrantVector& a, const BrantVector& b, BrantColor color)
{
  const BrantVector points[2] = {a, b};
  this->add_one(Lines, 2, points, color, MRUtil::DRAW_OUTLINE);
}

void GGenericModel::add_polygons(int num_points, const BrantVector* points, int list_length, const int* list,
                                 BrantColor color, MRUtil::DrawMode mode)
{
  this->add_runs("add_polygons", {num_points, points}, list_length, list, Polygons, mode,
                 [color](int) { return color; });
}

void GGenericModel::add_polygons(int num_points, const BrantVector* points, int list_length, const int* list,
                                 const BrantColor* colors, MRUtil::DrawMode mode)
{
  if (list_length > 0 && refuses_null(colors, "add_polygons")) {
    return;
  }
  this->add_runs("add_polygons", {num_points, points}, list_length, list, Polygons, mode,
                 [colors](int run) { return colors[run]; });
}

void GGenericModel::add_tri(const BrantVector* points, BrantColor color, MRUtil::DrawMode mode)
{
  if (!refuses_null(points, "add_tri")) {
    this->add_one(Polygons, 3, points, color, mode);
  }
}

void GGenericModel::add_quad(const BrantVector* points, BrantColor color, MRUtil::DrawMode mode)
{
  if (!refuses_null(points, "add_quad")) {
    this->add_one(Polygons, 4, points, color, mode);
  }
}

void GGenericModel::add_polygon(int count, const BrantVector* points, BrantColor color, MRUtil::DrawMode mode)
{
  if (count <= 0 || refuses_null(points, "add_polygon")) {
    return;
  }
  if (count < CellsOf[Polygons].smallest) { // points that belong to nothing, and the warning
    const int list[3] = {count, 0, 1};
    this->add_runs("add_polygon", {count, points}, count + 1, list, Polygons, mode,
                   [color](int) { return color; });
    return;
  }
  this->add_one(Polygons, count, points, color, mode);
}

// What a list of the one run 0, 1, 2, ... would do, without it.
void GGenericModel::add_one(int kind, int count, const BrantVector* points, BrantColor color,
                            MRUtil::DrawMode mode)
{
  GrowingPolyData* data = this->cell_slot(mode, kind);
  if (data != nullptr) {
    data->append_one(CellsOf[kind].type, points, count, color);
  }
}

void GGenericModel::add_cube(const BrantVector* corners, BrantColor color, MRUtil::DrawMode mode)
{
  if (refuses_null(corners, "add_cube")) {
    return;
  }
  const auto points = morrow::box_face_points(corners[0], corners[1]);
  this->add_polygons(static_cast<int>(points.size()), points.data(), std::size(morrow::BoxFaceRuns),
                     morrow::BoxFaceRuns, color, mode);
}

void GGenericModel::add_vector(const BrantVector& tail, const BrantVector& head, BrantColor color,
                               bool draw_shaft)
{
  const std::shared_ptr<PrimitiveSlots> kept = mSlots; // host code may destroy the model
  const bool is_point = draw_shaft && (head - tail).length() == 0.0;
  const auto points = morrow::arrowhead_points(tail, head); // before anything, as tail may be the model's
  if (is_point) {
    this->add_points(1, &tail, color, MRUtil::DRAW_OUTLINE);
    return;
  }
  if (draw_shaft) {
    this->add_line(tail, head, color);
  }
  if (kept.use_count() > 1) {
    this->add_polygons(static_cast<int>(points.size()), points.data(), std::size(morrow::ArrowheadRuns),
                       morrow::ArrowheadRuns, color, MRUtil::DRAW_DEFAULT);
  }
}

void GGenericModel::add_points_highlight(int count, const BrantVector* points)
{
  this->add_points(count, points, BRANT_DEFAULT_COLOR, MRUtil::DRAW_HIGHLIGHT);
}

void GGenericModel::add_polylines_highlight(int num_points, const BrantVector* points, int list_length,
                                            const int* list)
{
  this->add_polylines(num_points, points, list_length, list, BRANT_DEFAULT_COLOR, MRUtil::DRAW_HIGHLIGHT);
}

void GGenericModel::add_polygons_highlight(int num_points, const BrantVector* points, int list_length,
                                           const int* list)
{
  this->add_polygons(num_points, points, list_length, list, BRANT_DEFAULT_COLOR, MRUtil::DRAW_HIGHLIGHT);
}

// ---------------------------------------------------------------------------------------------------------
// Settings

void GGenericModel::set_render_mode(MRUtil::RenderMode mode)
{
  if (mode < MRUtil::RENDER_FLAT) {
    mProperties[MRUtil::DRAW_DEFAULT]->SetRepresentationToWireframe();
  } else {
    mProperties[MRUtil::DRAW_DEFAULT]->SetRepresentationToSurface();
  }
  this->GModel::set_render_mode(mode);
}

template<typename Call>
void GGenericModel::for_plain_properties(Call&& call)
{
  for (int mode = 0; mode < NumModes; ++mode) {
    if (mode != MRUtil::DRAW_HIGHLIGHT) {
      call(*mProperties[mode]);
    }
  }
}

void GGenericModel::set_point_size(float f)
{
  mPointSize = f;
  this->for_plain_properties([f](vtkProperty& property) { property.SetPointSize(BasePointSize * f); });
}

void GGenericModel::set_line_width(float f)
{
  mLineWidth = f;
  this->for_plain_properties([f](vtkProperty& property) { property.SetLineWidth(f); });
}

void GGenericModel::set_highlight_line_width(float f)
{
  mHighlightLineWidth = f;
  mProperties[MRUtil::DRAW_HIGHLIGHT]->SetLineWidth(f);
}

void GGenericModel::set_highlight_color(BrantColor c)
{
  mHighlightColor = c;
  set_colour(*mProperties[MRUtil::DRAW_HIGHLIGHT], c);
}

// ---------------------------------------------------------------------------------------------------------
// Props

std::vector<vtkSmartPointer<vtkProp>> GGenericModel::create_data_view(vtkDataObject* data, GView* view,
                                                                      GGenericModel* model,
                                                                      MRUtil::DrawMode mode, int kind)
{
  if (model == nullptr || !has_mode(mode)) {
    MRUtil::print_error("GGenericModel::create_data_view: no model, or no draw mode %d\n",
                        static_cast<int>(mode));
    return {};
  }
  const vtkSmartPointer<vtkMapper> mapper = create_mapper(data, view);
  if (kind == Polygons) {
    set_polygon_offset(mapper, 1.0, 1.0);
  }
  mapper->SetStatic(0); // the data grow in place
  if (mode == MRUtil::DRAW_HIGHLIGHT) {
    mapper->SetScalarVisibility(0);
  }
  auto actor = vtkSmartPointer<vtkActor>::New();
  actor->SetProperty(model->mProperties[mode]);
  actor->SetMapper(mapper);
  return {actor};
}
