// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "PickableProps.h"

#include <vtkAbstractVolumeMapper.h>
#include <vtkActor.h>
#include <vtkAssemblyNode.h>
#include <vtkCompositeDataIterator.h>
#include <vtkCompositeDataSet.h>
#include <vtkExecutive.h>
#include <vtkLODProp3D.h>
#include <vtkMapper.h>
#include <vtkPropCollection.h>
#include <vtkProperty.h>
#include <vtkVolume.h>

namespace morrow {

namespace {

bool is_seen(vtkProperty* property)
{
  return property == nullptr || !(property->GetOpacity() <= 0.0);
}

vtkAbstractMapper3D* mapper_of(vtkLODProp3D& prop)
{
  const int lod = prop.GetPickLODID();
  vtkAbstractMapper3D* mapper = prop.GetLODMapper(lod);
  if (vtkMapper::SafeDownCast(mapper) == nullptr) {
    return mapper; // a volume's, which has no opacity of its own
  }
  vtkProperty* property = nullptr;
  prop.GetLODProperty(lod, &property);
  return is_seen(property) ? mapper : nullptr;
}

// Null for what cannot be picked.
vtkAbstractMapper3D* mapper_of(vtkProp* prop)
{
  if (auto* actor = vtkActor::SafeDownCast(prop)) {
    return is_seen(actor->GetProperty()) ? actor->GetMapper() : nullptr;
  }
  if (auto* lod_prop = vtkLODProp3D::SafeDownCast(prop)) {
    return mapper_of(*lod_prop);
  }
  auto* volume = vtkVolume::SafeDownCast(prop);
  return volume != nullptr ? volume->GetMapper() : nullptr;
}

void add_if_pickable(vtkAssemblyPath& path, std::vector<PickableProp>& found)
{
  vtkAssemblyNode* node = path.GetLastNode();
  vtkProp* prop = node != nullptr ? node->GetViewProp() : nullptr;
  if (prop == nullptr || prop->GetPickable() == 0 || prop->GetVisibility() == 0) {
    return;
  }
  vtkAbstractMapper3D* mapper = mapper_of(prop);
  if (mapper != nullptr && node->GetMatrix() != nullptr) {
    found.push_back({&path, vtkProp3D::SafeDownCast(prop), mapper, node->GetMatrix()});
  }
}

} // namespace

std::vector<PickableProp> pickable_props(vtkPropCollection& props)
{
  std::vector<PickableProp> found;
  vtkCollectionSimpleIterator at;
  props.InitTraversal(at);
  while (vtkProp* prop = props.GetNextProp(at)) {
    prop->InitPathTraversal();
    while (vtkAssemblyPath* path = prop->GetNextPath()) {
      add_if_pickable(*path, found);
    }
  }
  return found;
}

std::vector<vtkSmartPointer<vtkDataSet>> data_sets_of(vtkAbstractMapper3D* mapper)
{
  std::vector<vtkSmartPointer<vtkDataSet>> found;
  if (vtkMapper::SafeDownCast(mapper) == nullptr || mapper->GetNumberOfInputConnections(0) == 0) {
    return found;
  }
  vtkDataObject* input = mapper->GetExecutive()->GetInputData(0, 0);
  if (auto* data = vtkDataSet::SafeDownCast(input)) {
    found.emplace_back(data);
  } else if (auto* composite = vtkCompositeDataSet::SafeDownCast(input)) {
    const auto at = vtkSmartPointer<vtkCompositeDataIterator>::Take(composite->NewIterator());
    for (at->InitTraversal(); !at->IsDoneWithTraversal(); at->GoToNextItem()) {
      if (auto* leaf = vtkDataSet::SafeDownCast(at->GetCurrentDataObject())) {
        found.emplace_back(leaf);
      }
    }
  }
  return found;
}

} // namespace morrow
