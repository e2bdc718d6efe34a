// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "ViewAxes.h"

#include "FrameHold.h"
#include "GAxis.h"

#include <vtkRenderer.h>

namespace morrow {

namespace {

vtkSmartPointer<GAxis> make_axis(MRUtil::AxisType type, vtkRenderer& renderer)
{
  auto axis = vtkSmartPointer<GAxis>::New();
  axis->set_type(type);
  axis->set_renderer(&renderer);
  return axis;
}

} // namespace

ViewAxes::ViewAxes(vtkRenderer& renderer) : mRenderer(renderer) {}

ViewAxes::~ViewAxes() = default;

void ViewAxes::make_triad()
{
  mTriad = make_axis(MRUtil::AXIS_2D, mRenderer);
  this->set_triad_visible(true);
}

void ViewAxes::delete_triad()
{
  this->set_triad_visible(false);
  mTriad = nullptr;
}

void ViewAxes::set_triad_visible(bool on)
{
  if (mTriad == nullptr || on == mIsTriadVisible) {
    return;
  }
  mIsTriadVisible = on;
  if (on) {
    mRenderer.AddViewProp(mTriad);
  } else {
    remove_prop(mRenderer, mTriad);
  }
}

bool ViewAxes::is_on_triad(int x, int y) const
{
  if (!mIsTriadVisible || mRenderer.GetVTKWindow() == nullptr) {
    return false;
  }
  int bounds[4];
  mTriad->get_screen_bounds(&mRenderer, bounds);
  return bounds[0] <= x && x <= bounds[1] && bounds[2] <= y && y <= bounds[3];
}

void ViewAxes::set_triad_label_color(BrantColor color)
{
  if (mTriad != nullptr) {
    mHasOwnColor = true;
    mTriad->set_label_color(color);
  }
}

void ViewAxes::follow_background(BrantColor color)
{
  if (mTriad != nullptr && !mHasOwnColor) {
    mTriad->set_label_color(color);
  }
}

bool ViewAxes::is_axis_visible() const
{
  return mAxis != nullptr;
}

void ViewAxes::set_axis_visible(bool on)
{
  if (on == this->is_axis_visible()) {
    return;
  }
  if (on) {
    mAxis = make_axis(mAxisType, mRenderer);
    mRenderer.AddViewProp(mAxis);
  } else {
    remove_prop(mRenderer, mAxis);
    mAxis = nullptr;
  }
}

void ViewAxes::set_axis_type(MRUtil::AxisType type)
{
  if (type == mAxisType) {
    return;
  }
  mAxisType = type;
  if (mAxis != nullptr && mAxis->get_type() != type) {
    this->set_axis_visible(false);
    this->set_axis_visible(true);
  }
}

} // namespace morrow
