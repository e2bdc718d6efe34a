// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "LiteralMultiCellPicker.h"

#include "BrantBox.h"
#include "MRPickUtil.h"
#include "PickBounds.h"

#include <vtkAbstractVolumeMapper.h>
#include <vtkActor.h>
#include <vtkAssemblyNode.h>
#include <vtkAssemblyPath.h>
#include <vtkBox.h>
#include <vtkCamera.h>
#include <vtkCellType.h>
#include <vtkCommand.h>
#include <vtkCompositeDataIterator.h>
#include <vtkCompositeDataSet.h>
#include <vtkExecutive.h>
#include <vtkFieldData.h>
#include <vtkFloatArray.h>
#include <vtkIdList.h>
#include <vtkLODProp3D.h>
#include <vtkMapper.h>
#include <vtkMatrix4x4.h>
#include <vtkObjectFactory.h>
#include <vtkPointSet.h>
#include <vtkPolyData.h>
#include <vtkPropCollection.h>
#include <vtkProperty.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkSmartPointer.h>
#include <vtkTransform.h>
#include <vtkVolume.h>

#include <algorithm>
#include <cstring>
#include <sstream>

namespace morrow_test {

vtkStandardNewMacro(LiteralMultiCellPicker)

namespace {

template<typename Data>
std::vector<Data*> candidates(vtkMapper* mapper)
{
  std::vector<Data*> found;
  vtkDataObject* input =
      mapper->GetNumberOfInputConnections(0) > 0 ? mapper->GetExecutive()->GetInputData(0, 0) : nullptr;
  if (auto* data = Data::SafeDownCast(input)) {
    found.push_back(data);
  } else if (auto* composite = vtkCompositeDataSet::SafeDownCast(input)) {
    const auto at = vtkSmartPointer<vtkCompositeDataIterator>::Take(composite->NewIterator());
    for (at->InitTraversal(); !at->IsDoneWithTraversal(); at->GoToNextItem()) {
      if (auto* leaf = Data::SafeDownCast(at->GetCurrentDataObject())) {
        found.push_back(leaf);
      }
    }
  }
  return found;
}

float to_float(double value)
{
  return static_cast<float>(value);
}

} // namespace

LiteralMultiCellPicker::LiteralMultiCellPicker()
{
  this->SetTolerance(static_cast<double>(0.01F));
}

void LiteralMultiCellPicker::Initialize()
{
  records.clear();
  this->Superclass::Initialize();
}

LiteralMultiCellPicker::Record LiteralMultiCellPicker::make_record(vtkProp3D* prop, vtkDataSet* data) const
{
  Record record;
  record.prop = prop;
  record.data = data;
  std::copy_n(this->Transform->GetMatrix()->GetData(), 16, record.transform.begin());
  return record;
}

// ---------------------------------------------------------------------------------------------------------
// Ray

double LiteralMultiCellPicker::IntersectWithLine(const double p1[3], const double p2[3], double tol,
                                                 vtkAssemblyPath* /*path*/, vtkProp3D* prop,
                                                 vtkAbstractMapper3D* mapper)
{
  auto* of_geometry = vtkMapper::SafeDownCast(mapper);
  if (of_geometry == nullptr) {
    return static_cast<double>(1e38F);
  }
  for (vtkDataSet* data : candidates<vtkDataSet>(of_geometry)) {
    double bounds[6];
    data->GetBounds(bounds);
    double direction[3];
    for (int i = 0; i < 3; ++i) {
      bounds[2 * i] -= tol;
      bounds[2 * i + 1] += tol;
      direction[i] = p2[i] - p1[i];
    }
    double t = 0.0;
    double entry[3];
    if (vtkBox::IntersectBox(bounds, p1, direction, entry, t) == 0) {
      continue;
    }
    if (auto* poly_data = vtkPolyData::SafeDownCast(data)) {
      poly_data->BuildCells();
    }
    Record record;
    for (vtkIdType id = 0; id < data->GetNumberOfCells(); ++id) {
      data->GetCell(id, mCell);
      double x[3] = {0.0, 0.0, 0.0};
      double pcoords[3];
      int sub_id = 0;
      if (mCell->IntersectWithLine(p1, p2, tol, t, x, pcoords, sub_id) == 0) {
        continue;
      }
      double half_x[3];
      const bool is_direct = mCell->IntersectWithLine(p1, p2, tol * 0.5, t, half_x, pcoords, sub_id) != 0;
      this->Transform->Update();
      double world[3];
      this->Transform->TransformPoint(x, world);
      if (record.cells.empty()) {
        record = this->make_record(prop, data);
        std::transform(p1, p1 + 3, record.ends.begin(), to_float);
        std::transform(p2, p2 + 3, record.ends.begin() + 3, to_float);
        record.tolerance = tol;
      }
      record.cells.push_back({static_cast<int>(id),
                              {to_float(world[0]), to_float(world[1]), to_float(world[2])},
                              is_direct,
                              true});
    }
    if (!record.cells.empty()) {
      records.push_back(record);
    }
  }
  return 2.0;
}

// ---------------------------------------------------------------------------------------------------------
// Region

int LiteralMultiCellPicker::pick_by_bounds(PickBounds* region, vtkRenderer* renderer)
{
  this->Initialize();
  this->Renderer = renderer;
  vtkMatrix4x4* camera = renderer->GetActiveCamera()->GetCompositeProjectionTransformMatrix(
      renderer->GetTiledAspectRatio(), 0.0, 1.0);
  this->InvokeEvent(vtkCommand::StartPickEvent, nullptr);
  vtkPropCollection* props = this->PickFromList != 0 ? this->GetPickList() : renderer->GetViewProps();
  this->Transform->PostMultiply();
  vtkCollectionSimpleIterator at;
  props->InitTraversal(at);
  while (vtkProp* prop = props->GetNextProp(at)) {
    prop->InitPathTraversal();
    while (vtkAssemblyPath* path = prop->GetNextPath()) {
      this->visit_path(region, camera, path, renderer);
    }
  }
  this->InvokeEvent(vtkCommand::EndPickEvent, nullptr);
  return records.empty() ? 0 : 1;
}

void LiteralMultiCellPicker::visit_path(PickBounds* region, vtkMatrix4x4* camera, vtkAssemblyPath* path,
                                        vtkRenderer* renderer)
{
  vtkProp* prop = path->GetLastNode()->GetViewProp();
  if (prop->GetPickable() == 0 || prop->GetVisibility() == 0) {
    return;
  }
  vtkAbstractMapper3D* mapper = nullptr;
  vtkProperty* property = nullptr;
  if (auto* actor = vtkActor::SafeDownCast(prop)) {
    mapper = actor->GetMapper();
    property = actor->GetProperty();
  } else if (auto* lod = vtkLODProp3D::SafeDownCast(prop)) {
    mapper = lod->GetLODMapper(lod->GetPickLODID());
    if (vtkMapper::SafeDownCast(mapper) != nullptr) {
      lod->GetLODProperty(lod->GetPickLODID(), &property);
    }
  } else if (auto* volume = vtkVolume::SafeDownCast(prop)) {
    mapper = volume->GetMapper();
  }
  if (mapper == nullptr || (property != nullptr && property->GetOpacity() <= 0.0)) {
    return;
  }
  vtkMatrix4x4* of_prop = path->GetLastNode()->GetMatrix();
  this->Transform->SetMatrix(of_prop);
  vtkNew<vtkMatrix4x4> combined;
  vtkMatrix4x4::Multiply4x4(camera, of_prop, combined);
  this->intersect_with_bounds(region, combined, vtkProp3D::SafeDownCast(prop), mapper, renderer);
}

void LiteralMultiCellPicker::intersect_with_bounds(PickBounds* region, vtkMatrix4x4* matrix, vtkProp3D* prop,
                                                   vtkAbstractMapper3D* mapper, vtkRenderer* renderer)
{
  if (auto* of_geometry = vtkMapper::SafeDownCast(mapper)) {
    for (vtkPointSet* data : candidates<vtkPointSet>(of_geometry)) {
      this->intersect_data(region, matrix, prop, data, renderer);
    }
  }
}

std::vector<LiteralMultiCellPicker::Display>
LiteralMultiCellPicker::display_points(vtkMatrix4x4* matrix, vtkPointSet* data, vtkRenderer* renderer) const
{
  const int* size = renderer->GetRenderWindow()->GetSize();
  vtkNew<vtkFloatArray> depth;
  if (visible_only) {
    renderer->GetRenderWindow()->GetZbufferData(0, 0, size[0], size[1], depth);
  }
  std::vector<Display> points(static_cast<std::size_t>(data->GetNumberOfPoints()));
  for (vtkIdType id = 0; id < data->GetNumberOfPoints(); ++id) {
    double model[4] = {0.0, 0.0, 0.0, 1.0};
    data->GetPoint(id, model);
    double view[4];
    matrix->MultiplyPoint(model, view);
    view[0] /= view[3];
    view[1] /= view[3];
    view[2] /= view[3];
    Display& point = points[static_cast<std::size_t>(id)];
    MRPickUtil::view_to_display(view, point.at, size, renderer->GetViewport());
    point.at[2] = view[2];
    point.is_visible = false;
    // What an integer cannot hold is outside of the window.
    const bool is_inside =
        point.at[0] > -1.0 && point.at[1] > -1.0 && point.at[0] < size[0] && point.at[1] < size[1];
    if (visible_only && is_inside) {
      const vtkIdType pixel = static_cast<vtkIdType>(static_cast<int>(point.at[1])) * (size[0] + 1) +
                              static_cast<int>(point.at[0]);
      point.is_visible = static_cast<double>(depth->GetValue(pixel)) + 0.01 >= point.at[2];
    }
  }
  return points;
}

bool LiteralMultiCellPicker::shape_touches(const PickBounds* region, int type,
                                           const std::vector<Display>& points)
{
  const std::size_t count = points.size();
  bool touches = false;
  if (type == VTK_LINE || type == VTK_POLY_LINE) {
    for (std::size_t i = 0; i + 1 < count && !touches; ++i) {
      touches = region->intersects_with_line(points[i].at, points[i + 1].at);
    }
  } else if (type == VTK_TRIANGLE || type == VTK_POLYGON || type == VTK_QUAD) {
    for (std::size_t i = 1; i + 1 < count && !touches; ++i) {
      touches = region->intersects_with_triangle(points[0].at, points[i].at, points[i + 1].at);
    }
  }
  return touches;
}

void LiteralMultiCellPicker::intersect_data(PickBounds* region, vtkMatrix4x4* matrix, vtkProp3D* prop,
                                            vtkPointSet* data, vtkRenderer* renderer)
{
  const bool has_pointers = data->GetFieldData()->GetAbstractArray("Pointers") != nullptr;
  double bounds[6];
  data->GetBounds(bounds);
  if (!region->intersects_with_bbox(
          MRPickUtil::convert_world_bbox_to_display_bbox(bounds, matrix, renderer))) {
    return;
  }
  const std::vector<Display> display = this->display_points(matrix, data, renderer);
  Record record = this->make_record(prop, data);
  vtkIdType accepted = 0;
  vtkNew<vtkIdList> ids;
  for (vtkIdType cell = 0; cell < data->GetNumberOfCells(); ++cell) {
    data->GetCellPoints(cell, ids);
    std::vector<Display> points;
    std::size_t inside = 0;
    std::size_t visible = 0;
    for (vtkIdType i = 0; i < ids->GetNumberOfIds(); ++i) {
      const Display& point = display[static_cast<std::size_t>(ids->GetId(i))];
      points.push_back(point);
      inside += region->intersects_with_point(point.at) ? 1U : 0U;
      const bool has_depth = touching_cells || (point.at[2] >= 0.0 && point.at[2] < 1.0);
      visible += point.is_visible && has_depth ? 1U : 0U;
    }
    const bool is_accepted = touching_cells
                                 ? shape_touches(region, data->GetCellType(cell), points) || inside > 0
                                 : inside == points.size();
    accepted += is_accepted ? 1 : 0;
    if (is_accepted || (has_pointers && inside > 0)) {
      record.cells.push_back(
          {static_cast<int>(cell), {1e38F, 1e38F, 1e38F}, true, !visible_only || visible == points.size()});
    }
  }
  const bool is_whole = accepted == data->GetNumberOfCells();
  if (accepted > 0 && (is_whole || has_pointers || touching_cells)) {
    records.push_back(record);
  }
}

// ---------------------------------------------------------------------------------------------------------
// Comparison

namespace {

bool same_number(float a, float b)
{
  return a == b || (a != a && b != b);
}

bool same_cell(const MultiCellPicker::SubCellPick& a, const MultiCellPicker::SubCellPick& b)
{
  return a.CellId == b.CellId && a.Direct == b.Direct && a.Visible == b.Visible &&
         std::equal(a.Point, a.Point + 3, b.Point, same_number);
}

std::string print(const MultiCellPicker::SubCellPick& cell)
{
  std::ostringstream text;
  text << "cell " << cell.CellId << " at (" << cell.Point[0] << ", " << cell.Point[1] << ", " << cell.Point[2]
       << ")" << (cell.Direct ? " direct" : "") << (cell.Visible ? " visible" : "");
  return text.str();
}

std::string difference(const LiteralMultiCellPicker::Record& expected, const MultiCellPicker::CellPick& found)
{
  if (expected.prop != found.Prop || expected.data != found.DataSet) {
    return "another prop or data set; ";
  }
  if (!std::equal(expected.transform.begin(), expected.transform.end(),
                  found.Transform->GetMatrix()->GetData())) {
    return "another transform; ";
  }
  const bool has_ends = std::equal(found.P1, found.P1 + 3, expected.ends.begin(), same_number) &&
                        std::equal(found.P2, found.P2 + 3, expected.ends.begin() + 3, same_number);
  const bool has_tolerance = expected.tolerance == found.Tolerance ||
                             (expected.tolerance != expected.tolerance && found.Tolerance != found.Tolerance);
  if (!has_ends || !has_tolerance) {
    return "another ray; ";
  }
  const std::size_t common = std::min(expected.cells.size(), found.SubPicks.size());
  for (std::size_t i = 0; i < common; ++i) {
    if (!same_cell(expected.cells[i], found.SubPicks[i])) {
      return print(expected.cells[i]) + " expected, " + print(found.SubPicks[i]) + " found; ";
    }
  }
  return expected.cells.size() == found.SubPicks.size()
             ? std::string()
             : std::to_string(expected.cells.size()) + " cells expected, " +
                   std::to_string(found.SubPicks.size()) + " found; ";
}

} // namespace

std::string difference(const std::vector<LiteralMultiCellPicker::Record>& expected,
                       const std::vector<MultiCellPicker::CellPick*>& found)
{
  if (expected.size() != found.size()) {
    return std::to_string(expected.size()) + " records expected, " + std::to_string(found.size()) + " found";
  }
  std::string all;
  for (std::size_t i = 0; i < expected.size(); ++i) {
    all += difference(expected[i], *found[i]);
  }
  return all;
}

} // namespace morrow_test
