// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "ViewTitle.h"

#include "FrameHold.h"

#include <vtkCoordinate.h>
#include <vtkRenderer.h>
#include <vtkTextActor.h>
#include <vtkTextProperty.h>

#include <algorithm>

namespace morrow {

namespace {

constexpr int LargestSize = 500; // VTK needs more than 100 MB for a single line of this size
constexpr double Position[2] = {0.5, 0.99};

} // namespace

int ViewTitle::TitleSize = 12;

ViewTitle::ViewTitle(vtkRenderer& renderer) : mRenderer(renderer) {}

vtkTextActor* ViewTitle::actor() const
{
  return mActor;
}

void ViewTitle::create()
{
  if (mActor != nullptr) {
    return;
  }
  mActor = vtkSmartPointer<vtkTextActor>::New();
  vtkTextProperty* style = mActor->GetTextProperty();
  style->SetJustificationToCentered();
  style->SetVerticalJustificationToTop();
  style->SetFontSize(TitleSize);
  mActor->GetPositionCoordinate()->SetCoordinateSystemToNormalizedDisplay();
  mActor->GetPositionCoordinate()->SetValue(Position[0], Position[1]);
}

void ViewTitle::set_text(const char* text)
{
  this->create();
  const bool is_shown = text != nullptr && *text != '\0';
  mActor->SetInput(is_shown ? text : "");
  if (is_shown) {
    mRenderer.AddViewProp(mActor);
  } else {
    remove_prop(mRenderer, mActor);
  }
}

void ViewTitle::set_color(const double* rgb)
{
  this->create();
  mHasOwnColor = true;
  mActor->GetTextProperty()->SetColor(rgb[0], rgb[1], rgb[2]);
}

void ViewTitle::follow_background(const double* rgb)
{
  if (mActor != nullptr && !mHasOwnColor) {
    mActor->GetTextProperty()->SetColor(rgb[0], rgb[1], rgb[2]);
  }
}

void ViewTitle::fit()
{
  if (mActor != nullptr) {
    const int* size = mRenderer.GetSize();
    mActor->SetVisibility(size[0] > 1 && size[1] > 1);
  }
}

void ViewTitle::set_font_size(int points)
{
  if (points <= 0) {
    return;
  }
  TitleSize = std::min(points, LargestSize);
  if (mActor != nullptr) {
    mActor->GetTextProperty()->SetFontSize(TitleSize);
  }
}

} // namespace morrow
