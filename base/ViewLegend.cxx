// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "ViewLegend.h"

#include "FrameHold.h"
#include "MRUtil.h"
#include "vtkLegendActor.h"

#include <vtkCamera.h>
#include <vtkRenderer.h>
#include <vtkTextProperty.h>

namespace morrow {

ViewLegend::ViewLegend(vtkRenderer& renderer) : mRenderer(renderer) {}

ViewLegend::~ViewLegend() = default;

bool ViewLegend::is_visible() const
{
  return mActor != nullptr;
}

void ViewLegend::set_visible(bool on)
{
  if (on == this->is_visible()) {
    return;
  }
  if (on) {
    this->show();
  } else {
    remove_prop(mRenderer, mActor);
    mActor = nullptr;
  }
}

void ViewLegend::show()
{
  if (mRenderer.GetActiveCamera()->GetParallelProjection() == 0) {
    MRUtil::print_info("Legend can only be turned on when 'perspective' mode is off\n");
    return;
  }
  mActor = vtkSmartPointer<vtkLegendActor>::New();
  mActor->BuildRepresentation(&mRenderer);
  mRenderer.AddViewProp(mActor);
}

void ViewLegend::set_color(const double* rgb)
{
  if (mActor != nullptr) {
    mActor->GetLegendLabelProperty()->SetColor(rgb[0], rgb[1], rgb[2]);
  }
}

} // namespace morrow
