// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "SceneCopy.h"

#include "ActorCopier.h"
#include "MRUtil.h"

#include <vtkActor.h>
#include <vtkActorCollection.h>
#include <vtkAssemblyNode.h>
#include <vtkAssemblyPath.h>
#include <vtkCamera.h>
#include <vtkInformation.h>
#include <vtkInformationIntegerKey.h>
#include <vtkLight.h>
#include <vtkLightCollection.h>
#include <vtkMatrix4x4.h>
#include <vtkNew.h>
#include <vtkPropCollection.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>

namespace morrow {

namespace {

bool is_vertex_prop(vtkProp& prop)
{
  vtkInformation* keys = prop.GetPropertyKeys();
  return keys != nullptr && keys->Has(MRUtil::VERTEX_VISIBILITY()) != 0;
}

// Each group on the way can hide what is in it.
bool is_visible(vtkAssemblyPath& path)
{
  vtkCollectionSimpleIterator cookie;
  path.InitTraversal(cookie);
  while (vtkAssemblyNode* node = path.GetNextNode(cookie)) {
    if (node->GetViewProp() == nullptr || node->GetViewProp()->GetVisibility() == 0) {
      return false;
    }
  }
  return true;
}

void copy_lights(vtkRenderer& from, vtkRenderer& to)
{
  vtkLightCollection* lights = from.GetLights();
  vtkCollectionSimpleIterator cookie;
  lights->InitTraversal(cookie);
  while (vtkLight* light = lights->GetNextLight(cookie)) {
    to.AddLight(vtkSmartPointer<vtkLight>::Take(light->ShallowClone()));
  }
  to.UpdateLightsGeometryToFollowCamera();
}

} // namespace

SceneCopy::SceneCopy(vtkRenderer& original, const SceneContent& content)
    : mContent(content), mRenderer(vtkSmartPointer<vtkRenderer>::New()),
      mWindow(vtkSmartPointer<vtkRenderWindow>::New())
{
  const vtkSmartPointer<vtkRenderer> alive(&original);
  this->copy_stage(original);
  for (const PlacedProp& placed : visible_props(original)) {
    this->copy_prop(placed);
  }
  if (mRenderer->GetActors()->GetNumberOfItems() == 0 && original.GetActors()->GetNumberOfItems() > 0) {
    mRenderer->AddActor(vtkNew<vtkActor>()); // exporters refuse a scene without actors and skip this one
  }
  mRenderer->ResetCameraClippingRange();
  mWindow->AddRenderer(mRenderer);
}

SceneCopy::~SceneCopy() = default;

vtkRenderWindow* SceneCopy::window() const
{
  return mWindow;
}

void SceneCopy::copy_stage(vtkRenderer& original)
{
  const vtkNew<vtkCamera> camera;
  camera->DeepCopy(original.GetActiveCamera());
  mRenderer->SetActiveCamera(camera);
  copy_lights(original, *mRenderer);
  mRenderer->SetAmbient(original.GetAmbient());
  mRenderer->SetBackground(original.GetBackground());
  mRenderer->SetBackground2(original.GetBackground2());
  mRenderer->SetGradientBackground(original.GetGradientBackground());
}

// All of them before the first is copied: that may call host code, such as a pipeline, which may change the
// renderer and its assemblies.
std::vector<SceneCopy::PlacedProp> SceneCopy::visible_props(vtkRenderer& renderer)
{
  std::vector<PlacedProp> placed;
  vtkPropCollection* all = renderer.GetViewProps();
  vtkCollectionSimpleIterator cookie;
  all->InitTraversal(cookie);
  while (vtkProp* prop = all->GetNextProp(cookie)) {
    prop->InitPathTraversal();
    while (vtkAssemblyPath* path = prop->GetNextPath()) {
      vtkAssemblyNode* last = path->GetLastNode();
      if (last != nullptr && is_visible(*path)) {
        placed.push_back({last->GetViewProp(), last->GetMatrix()});
      }
    }
  }
  return placed;
}

void SceneCopy::copy_prop(const PlacedProp& placed)
{
  vtkProp& prop = *placed.prop;
  if (!mContent.has_vertex_props && is_vertex_prop(prop)) {
    return;
  }
  if (auto* actor = vtkActor::SafeDownCast(&prop)) {
    this->copy_actor(*actor, placed.placement != nullptr ? *placed.placement : *actor->GetMatrix());
  } else if (prop.IsA("vtkProp3D") != 0) {
    this->leave_out(std::string("props of class ") + prop.GetClassName());
  }
}

void SceneCopy::copy_actor(vtkActor& actor, vtkMatrix4x4& placement)
{
  ActorCopier copier(actor, placement, mContent);
  for (const auto& copy : copier.copy()) {
    mRenderer->AddActor(copy);
  }
  for (const std::string& kind : copier.left_out()) {
    this->leave_out(kind);
  }
}

} // namespace morrow
