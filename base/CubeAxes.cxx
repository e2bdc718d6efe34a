// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "CubeAxes.h"

#include "CubeAxesActor.h"
#include "CubeAxesBounds.h"
#include "FrameHold.h"

#include <vtkProperty2D.h>
#include <vtkRenderer.h>
#include <vtkTextProperty.h>

namespace morrow {

namespace {

constexpr int NumLabels = 5; // of each axis
constexpr int Inertia = 10;  // frames after which the axes may move to other edges

vtkSmartPointer<vtkCubeAxesActor2D> make_actor(vtkRenderer& renderer)
{
  auto actor = vtkSmartPointer<CubeAxesActor>::New();
  actor->SetCamera(renderer.GetActiveCamera());
  actor->SetFlyModeToOuterEdges();
  actor->SetNumberOfLabels(NumLabels);
  actor->SetInertia(Inertia);
  actor->SetCornerOffset(0.0);
  actor->UseBoundsOff(); // those of the last frame say nothing of the next
  return actor;
}

} // namespace

CubeAxes::CubeAxes(vtkRenderer& renderer) : mRenderer(renderer) {}

vtkCubeAxesActor2D* CubeAxes::actor() const
{
  return mActor;
}

bool CubeAxes::is_visible() const
{
  return mActor != nullptr;
}

void CubeAxes::set_visible(bool on)
{
  if (on == this->is_visible()) {
    return;
  }
  if (on) {
    mActor = make_actor(mRenderer);
    mRenderer.AddViewProp(mActor);
  } else {
    remove_prop(mRenderer, mActor);
    mActor = nullptr;
  }
}

void CubeAxes::set_color(const double* rgb)
{
  if (mActor != nullptr) {
    mActor->GetProperty()->SetColor(rgb[0], rgb[1], rgb[2]);
    mActor->GetAxisTitleTextProperty()->SetColor(rgb[0], rgb[1], rgb[2]);
    mActor->GetAxisLabelTextProperty()->SetColor(rgb[0], rgb[1], rgb[2]);
  }
}

void CubeAxes::fit() const
{
  if (mActor != nullptr) {
    const vtkSmartPointer<vtkCubeAxesActor2D> actor = mActor;
    const vtkSmartPointer<vtkRenderer> renderer = &mRenderer;
    actor->SetCamera(renderer->GetActiveCamera());
    fit_cube_axes(*actor, *renderer);
  }
}

} // namespace morrow
