// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "ActorCopier.h"

#include <algorithm>

#include "ExportMesh.h"
#include "ExportTexture.h"
#include "SceneCopy.h"

#include <vtkActor.h>
#include <vtkAlgorithmOutput.h>
#include <vtkCellArray.h>
#include <vtkCompositeDataDisplayAttributes.h>
#include <vtkCompositeDataIterator.h>
#include <vtkCompositePolyDataMapper.h>
#include <vtkCompositePolyDataMapper2.h>
#include <vtkDataObjectTree.h>
#include <vtkDataObjectTreeIterator.h>
#include <vtkDataSetMapper.h>
#include <vtkDataSetSurfaceFilter.h>
#include <vtkMatrix4x4.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>
#include <vtkProperty.h>
#include <vtkTexture.h>
#include <vtkUnsignedCharArray.h>

namespace morrow {

namespace {

// Others draw something else than the cells of their input.
bool draws_its_input(vtkMapper& mapper)
{
  return mapper.IsA("vtkPolyDataMapper") != 0 || mapper.IsA("vtkCompositePolyDataMapper") != 0 ||
         mapper.IsA("vtkDataSetMapper") != 0;
}

vtkSmartPointer<vtkDataObject> current_input(vtkMapper& mapper)
{
  if (mapper.GetNumberOfInputConnections(0) == 0) {
    return nullptr;
  }
  if (mapper.GetStatic() == 0) {
    vtkAlgorithmOutput* port = mapper.GetInputConnection(0, 0);
    port->GetProducer()->Update(port->GetIndex());
  }
  return mapper.GetInputDataObject(0, 0);
}

vtkSmartPointer<vtkPolyData> surface_of(vtkDataSet& data)
{
  const vtkNew<vtkDataSetSurfaceFilter> surface;
  surface->SetInputData(&data);
  surface->Update();
  return surface->GetOutput();
}

// The direct children, as the composite mapper visits them.
std::vector<vtkSmartPointer<vtkDataObject>> blocks_of(vtkCompositeDataSet& data)
{
  vtkSmartPointer<vtkCompositeDataIterator> each;
  if (auto* tree = vtkDataObjectTree::SafeDownCast(&data)) {
    auto* children = tree->NewTreeIterator();
    children->VisitOnlyLeavesOff();
    children->TraverseSubTreeOff();
    each.TakeReference(children);
  } else {
    each.TakeReference(data.NewIterator());
  }
  std::vector<vtkSmartPointer<vtkDataObject>> blocks;
  for (each->InitTraversal(); each->IsDoneWithTraversal() == 0; each->GoToNextItem()) {
    blocks.emplace_back(each->GetCurrentDataObject());
  }
  return blocks;
}

// A mapper of its own, so that what the actor's mapper has stored for drawing stays.
MeshColors map_colors(vtkMapper& mapper, vtkPolyData& mesh, double opacity)
{
  MeshColors colors;
  int kind = 0;
  colors.rgba = mapper.MapScalars(&mesh, opacity, kind);
  colors.per_cell = kind == 1;
  const bool fits = kind <= 1 && colors.rgba != nullptr && colors.rgba->GetNumberOfComponents() == 4;
  return fits ? colors : MeshColors{};
}

void turn_vertices_into_lines(vtkPolyData* part)
{
  if (part == nullptr) {
    return;
  }
  const vtkNew<vtkCellArray> lines;
  for (vtkIdType id = 0; id < part->GetNumberOfPoints(); ++id) {
    lines->InsertNextCell(1, &id);
  }
  part->SetVerts(nullptr);
  part->SetLines(lines);
}

} // namespace

ActorCopier::ActorCopier(vtkActor& actor, vtkMatrix4x4& placement, const SceneContent& content)
    : mActor(actor), mPlacement(placement), mContent(content), mMapper(actor.GetMapper())
{}

std::vector<vtkSmartPointer<vtkActor>> ActorCopier::copy()
{
  if (mMapper != nullptr && !draws_its_input(*mMapper)) {
    mLeftOut.push_back(std::string("actors with a mapper of class ") + mMapper->GetClassName());
    return {};
  }
  const vtkSmartPointer<vtkDataObject> data = mMapper != nullptr ? current_input(*mMapper) : nullptr;
  if (data != nullptr) {
    mTexture = this->copy_texture();
    this->copy_data(*data);
  } else {
    mLeftOut.emplace_back("actors without data");
  }
  return mCopies;
}

vtkSmartPointer<vtkTexture> ActorCopier::copy_texture()
{
  vtkTexture* texture = mActor.GetTexture();
  auto copy = texture != nullptr ? copy_texture_for_export(*texture) : nullptr;
  if (copy == nullptr && (texture != nullptr || !mActor.GetProperty()->GetAllTextures().empty())) {
    mLeftOut.emplace_back("textures");
  }
  return copy;
}

void ActorCopier::copy_data(vtkDataObject& data)
{
  Look look{};
  look.opacity = mActor.GetProperty()->GetOpacity();
  look.is_visible = true;
  if (vtkDataSetMapper::SafeDownCast(mMapper) != nullptr && vtkPolyData::SafeDownCast(&data) == nullptr) {
    if (auto* set = vtkDataSet::SafeDownCast(&data)) {
      this->copy_mesh(*surface_of(*set), look);
    }
    return;
  }
  this->copy_block(data, look);
}

void ActorCopier::copy_block(vtkDataObject& block, Look look)
{
  look = this->look_of_block(block, look);
  if (auto* composite = vtkCompositeDataSet::SafeDownCast(&block)) {
    for (const auto& each : blocks_of(*composite)) {
      this->copy_block(*each, look);
    }
  } else if (auto* mesh = vtkPolyData::SafeDownCast(&block); mesh != nullptr && look.is_visible) {
    this->copy_mesh(*mesh, look);
  }
}

ActorCopier::Look ActorCopier::look_of_block(vtkDataObject& block, Look look) const
{
  auto* mapper = vtkCompositePolyDataMapper2::SafeDownCast(mMapper);
  auto* attributes = mapper != nullptr ? mapper->GetCompositeDataDisplayAttributes() : nullptr;
  if (attributes == nullptr) {
    return look;
  }
  if (attributes->HasBlockVisibility(&block)) {
    look.is_visible = attributes->GetBlockVisibility(&block);
  }
  if (attributes->HasBlockOpacity(&block)) {
    look.opacity = attributes->GetBlockOpacity(&block);
  }
  if (attributes->HasBlockColor(&block)) {
    attributes->GetBlockColor(&block, look.color);
    look.has_color = true;
  }
  return look;
}

void ActorCopier::copy_mesh(vtkPolyData& mesh, const Look& look)
{
  const vtkNew<vtkPolyDataMapper> mapper; // owns the colours
  MeshColors colors;
  if (mContent.has_colors) {
    mapper->vtkMapper::ShallowCopy(mMapper);
    mapper->InterpolateScalarsBeforeMappingOff();
    colors = map_colors(*mapper, mesh, look.opacity);
  }
  const ExportMesh parts = make_export_mesh(mesh, mPlacement, colors);
  if (mContent.has_vertices_as_lines) {
    turn_vertices_into_lines(parts.vertices);
  }
  this->add(parts.faces, look, mTexture);
  this->add(parts.lines, look, nullptr);
  this->add(parts.vertices, look, nullptr);
}

void ActorCopier::add(vtkPolyData* part, const Look& look, vtkTexture* texture)
{
  if (part == nullptr) {
    return;
  }
  const vtkNew<vtkPolyDataMapper> mapper;
  mapper->SetInputData(part);
  mapper->SetScalarVisibility(part->GetPointData()->GetScalars() != nullptr);
  const vtkNew<vtkProperty> property;
  property->DeepCopy(mActor.GetProperty());
  property->RemoveAllTextures();
  property->SetOpacity(look.opacity);
  if (look.has_color) {
    property->SetAmbientColor(look.color);
    property->SetDiffuseColor(look.color);
  }
  auto actor = vtkSmartPointer<vtkActor>::New();
  actor->SetMapper(mapper);
  actor->SetProperty(property);
  actor->SetTexture(part->GetPointData()->GetTCoords() != nullptr ? texture : nullptr);
  mCopies.push_back(actor);
}

} // namespace morrow
