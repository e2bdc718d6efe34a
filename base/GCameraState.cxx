// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "GCameraState.h"

#include "GView.h"

#include <vtkCamera.h>
#include <vtkRenderer.h>

GCameraState::GCameraState(GView* view)
{
  this->save(view);
}

void GCameraState::save(GView* view)
{
  if (view == nullptr) {
    return;
  }
  vtkCamera* camera = view->get_renderer()->GetActiveCamera();
  camera->GetFocalPoint(mFocalPoint);
  camera->GetPosition(mPosition);
  camera->GetViewUp(mViewUp);
  camera->GetClippingRange(mClippingRange);
  mParallelScale = camera->GetParallelScale();
  mIsAutoCenter = !view->mIsAutoCenterOff;
}

void GCameraState::restore(GView* view) const
{
  if (view == nullptr) {
    return;
  }
  vtkCamera* camera = view->get_renderer()->GetActiveCamera();
  camera->SetFocalPoint(mFocalPoint);
  camera->SetPosition(mPosition);
  camera->SetFocalPoint(mFocalPoint); // VTK pushes it away from an eye that was there before
  camera->SetViewUp(mViewUp);
  camera->SetParallelScale(mParallelScale);
  camera->SetClippingRange(mClippingRange);
  camera->ComputeViewPlaneNormal();
  view->mIsAutoCenterOff = !mIsAutoCenter;
  if (mIsAutoCenter) {
    view->reset_camera();
  }
}
