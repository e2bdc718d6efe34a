// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "PickHighlight.h"

#include "PickTargets.h"

#include <GPickerBase.h>

#include <vtkActor.h>
#include <vtkCellArray.h>
#include <vtkCellType.h>
#include <vtkIdList.h>
#include <vtkNew.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>
#include <vtkProperty.h>

#include <map>
#include <utility>

namespace {

constexpr BrantColor kPicked(226, 62, 20);
constexpr BrantColor kPreSelected(255, 214, 0);

/// has_edges: of elements, which are told apart. Surfaces keep their shading; lines and points are bold. All
/// of it comes a little nearer than the mesh.
std::vector<vtkSmartPointer<vtkProp>> make_props(vtkDataObject* data, BrantColor color, bool has_edges)
{
  auto* shape = vtkPolyData::SafeDownCast(data);
  const bool is_surface = shape->GetNumberOfPolys() + shape->GetNumberOfStrips() > 0;
  vtkNew<vtkPolyDataMapper> mapper;
  mapper->SetInputData(shape);
  mapper->ScalarVisibilityOff();
  auto actor = vtkSmartPointer<vtkActor>::New();
  actor->SetMapper(mapper);
  actor->PickableOff();
  vtkProperty& property = *actor->GetProperty();
  property.SetColor(color.red() / 255.0, color.green() / 255.0, color.blue() / 255.0);
  property.SetInterpolationToFlat();
  property.SetAmbient(is_surface ? 0.35 : 1.0);
  property.SetDiffuse(is_surface ? 0.6 : 0.0);
  property.SetLighting(is_surface);
  property.SetEdgeVisibility(has_edges && is_surface);
  property.SetEdgeColor(color.red() / 550.0, color.green() / 550.0, color.blue() / 550.0);
  property.SetLineWidth(has_edges && is_surface ? 1.0F : 4.0F); // pixels
  property.SetPointSize(9.0F);
  if (shape->GetNumberOfLines() > 0 && !is_surface) {
    property.SetRepresentationToWireframe(); // drawn after all surfaces
  }
  const bool is_points = shape->GetNumberOfVerts() > 0 && !is_surface && shape->GetNumberOfLines() == 0;
  // A point is as near at its sides as in its middle, so half of it would be within a slope.
  const double units = is_surface ? -1.0 : is_points ? -120.0 : -8.0;
  GModel::set_polygon_offset(mapper, is_surface ? -1.0 : -2.0, units);
  return {actor};
}

/// Which of vtkPolyData's arrays has cells of this type: vertices, lines, polygons or strips.
std::size_t array_of(int type)
{
  switch (type) {
  case VTK_VERTEX:
  case VTK_POLY_VERTEX:
    return 0;
  case VTK_LINE:
  case VTK_POLY_LINE:
    return 1;
  case VTK_TRIANGLE_STRIP:
    return 3;
  default:
    return 2;
  }
}

/// Some cells of the data, over the same points.
vtkSmartPointer<vtkPolyData> extract(vtkPolyData& data, const std::vector<vtkIdType>& cells)
{
  vtkNew<vtkCellArray> arrays[4];
  for (const vtkIdType cell : cells) {
    vtkNew<vtkIdList> points;
    data.GetCellPoints(cell, points);
    arrays[array_of(data.GetCellType(cell))]->InsertNextCell(points);
  }
  auto extracted = vtkSmartPointer<vtkPolyData>::New();
  extracted->SetPoints(data.GetPoints());
  extracted->SetVerts(arrays[0]);
  extracted->SetLines(arrays[1]);
  extracted->SetPolys(arrays[2]);
  extracted->SetStrips(arrays[3]);
  return extracted;
}

} // namespace

HighlightModel::HighlightModel(BrantColor color, TargetsOf targets_of)
    : mColor(color), mTargetsOf(std::move(targets_of))
{}

void HighlightModel::show(std::vector<MeshEntity::Which> entities)
{
  mEntities = std::move(entities);
  mIsChanged = true;
}

void HighlightModel::update_parts()
{
  if (!std::exchange(mIsChanged, false)) {
    return;
  }
  clear();
  std::map<vtkPolyData*, std::vector<vtkIdType>> shared;
  for (const MeshEntity::Which& entity : mEntities) {
    const PickTargets& targets = mTargetsOf(entity.kind);
    vtkPolyData* data = targets.data_of(entity);
    if (targets.is_whole()) {
      add_highlight(data, false);
    } else {
      const std::vector<vtkIdType> cells = targets.cells_of(entity);
      shared[data].insert(shared[data].end(), cells.begin(), cells.end());
    }
  }
  for (const auto& [data, cells] : shared) {
    add_highlight(extract(*data, cells), true);
  }
}

void HighlightModel::add_highlight(vtkPolyData* data, bool has_edges)
{
  add_part(data, [color = mColor, has_edges](vtkDataObject* part, GView* /*view*/) {
    return make_props(part, color, has_edges);
  });
}

PickHighlight::PickHighlight(const HighlightModel::TargetsOf& targets_of)
    : mPicked(kPicked, targets_of), mPreSelected(kPreSelected, targets_of)
{
  GPickerBase::add_pick_observer(this);
  GPickerBase::add_pre_selection_observer(this);
}

PickHighlight::~PickHighlight()
{
  GPickerBase::remove_pick_observer(this);
  GPickerBase::remove_pre_selection_observer(this);
}

void PickHighlight::picked_list_changed(int /*count*/, const GPicked::PickedEntity* const* /*entities*/,
                                        const float* const* /*points*/, bool /*added*/)
{
  std::vector<MeshEntity::Which> all;
  for (int i = 0; i < GPickerBase::current_selection_count(); ++i) {
    all.push_back(static_cast<MeshEntity*>(GPickerBase::get_selection(i))->which());
  }
  mPicked.show(std::move(all));
}

void PickHighlight::pre_selection_changed(GPicked::PickedEntity* entity, const float* /*point*/, bool on)
{
  std::vector<MeshEntity::Which> all;
  if (on) {
    all.push_back(static_cast<MeshEntity*>(entity)->which());
  }
  mPreSelected.show(std::move(all));
}
