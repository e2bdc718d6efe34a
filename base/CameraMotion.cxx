// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "CameraMotion.h"

#include "AppUtil.h"

#include <vtkCamera.h>
#include <vtkRenderer.h>

namespace morrow {

CameraMotion::CameraMotion(GView& view)
    : mView(view.handle()), mRenderer(view.mRenderer), mIsNested(view.mIsMoving || view.is_in_frame())
{
  if (!view.mIsMoving) {
    mMoving.emplace(view, &GView::mIsMoving);
  }
  this->update_models();
}

CameraMotion::~CameraMotion() = default;

bool CameraMotion::can_render() const
{
  return this->view_is_alive() && !mIsNested && (*mView)->can_render();
}

vtkSmartPointer<vtkCamera> CameraMotion::camera() const
{
  return mRenderer->GetActiveCamera();
}

void CameraMotion::update_models()
{
  if (this->view_is_alive() && !(*mView)->is_in_frame()) {
    (*mView)->update_models();
  }
}

bool CameraMotion::may_step(bool reads_interrupt) const
{
  if (!this->view_is_alive()) {
    return false;
  }
  if (!reads_interrupt || mIsNested) {
    return true;
  }
  return !AppUtil::instance()->interrupt() && this->view_is_alive();
}

void CameraMotion::show()
{
  if (this->can_render()) {
    (*mView)->run_frame({&GView::draw_frame});
  } else if (this->view_is_alive()) {
    mRenderer->ResetCameraClippingRange();
  }
}

void CameraMotion::show_updated()
{
  if (this->can_render()) {
    (*mView)->render();
  }
}

void CameraMotion::show_unclipped()
{
  if (this->can_render()) {
    (*mView)->run_frame({&GView::draw_window});
  }
}

} // namespace morrow
