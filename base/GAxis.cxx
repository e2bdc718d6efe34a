// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "GAxis.h"

#include <algorithm>
#include <cmath>

#include "AxisForm.h"
#include "GView.h"

#include <vtkObjectFactory.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>

vtkStandardNewMacro(GAxis)

namespace {

constexpr float SizeFraction = 0.05F;
constexpr float CornerFraction = 0.06F; // of the 2-D form, in both directions
constexpr int SmallestViewport = 2;     // pixels
constexpr int NoPixels[4] = {0, -1, 0, -1};

float shorter_side(vtkRenderer& renderer)
{
  const int* size = renderer.GetSize();
  return static_cast<float>(std::min(size[0], size[1]));
}

std::unique_ptr<morrow::AxisForm> make_form(MRUtil::AxisType type)
{
  switch (type) {
  case MRUtil::AXIS_3D:
    return morrow::make_axis_form_3d();
  case MRUtil::AXIS_2D:
    return morrow::make_axis_form_2d();
  case MRUtil::AXIS_1D:
    return morrow::make_axis_form_1d();
  }
  return nullptr;
}

} // namespace

// ---------------------------------------------------------------------------------------------------------
// The form

GAxis::GAxis()
{
  this->construct(MRUtil::AXIS_3D);
}

GAxis::~GAxis()
{
  this->destruct();
}

void GAxis::set_type(MRUtil::AxisType type)
{
  if (type != mType) {
    this->destruct();
    this->construct(type);
    this->Modified();
  }
}

void GAxis::construct(MRUtil::AxisType type)
{
  mType = type;
  mSizeFraction = SizeFraction;
  mXPositionFraction = type == MRUtil::AXIS_2D ? CornerFraction : 0.0F;
  mYPositionFraction = mXPositionFraction;
  mForm = make_form(type);
  this->PickableOff();
}

void GAxis::destruct()
{
  this->adopt_window(nullptr);
  mForm = nullptr;
}

// The resources of a form are of one window.
void GAxis::adopt_window(vtkWindow* window)
{
  if (window != mWindow && mWindow != nullptr && mForm != nullptr) {
    mForm->release(mWindow);
  }
  mWindow = window;
}

void GAxis::ReleaseGraphicsResources(vtkWindow* window)
{
  if (mForm != nullptr) {
    mForm->release(window);
  }
  if (window == mWindow) {
    mWindow = nullptr;
  }
  this->Superclass::ReleaseGraphicsResources(window);
}

void GAxis::set_label_color(BrantColor color)
{
  if (mForm != nullptr) {
    mForm->set_label_color(color);
    this->Modified();
  }
}

// ---------------------------------------------------------------------------------------------------------
// Size and place

void GAxis::set_renderer(vtkRenderer* renderer)
{
  if (renderer != mRenderer) {
    mRenderer = renderer;
    this->Modified();
  }
}

vtkRenderer* GAxis::get_renderer() const
{
  return mRenderer;
}

void GAxis::get_screen_bounds(vtkRenderer* ren, int* bounds)
{
  if (bounds == nullptr) {
    return;
  }
  if (ren == nullptr) {
    std::copy_n(NoPixels, 4, bounds);
    return;
  }
  const Corner corner = this->corner(*ren);
  const int radius = static_cast<int>(this->pixel_length(*ren));
  bounds[0] = corner.x - radius;
  bounds[1] = corner.x + radius;
  bounds[2] = corner.y - radius;
  bounds[3] = corner.y + radius;
}

float GAxis::pixel_length(vtkRenderer& renderer) const
{
  return shorter_side(renderer) * mSizeFraction;
}

GAxis::Corner GAxis::corner(vtkRenderer& renderer) const
{
  const int* size = renderer.GetSize();
  return {static_cast<int>(static_cast<float>(size[0]) * mXPositionFraction),
          static_cast<int>(static_cast<float>(size[1]) * mYPositionFraction)};
}

// 0 when nothing gives the scale.
double GAxis::model_length(vtkRenderer& renderer) const
{
  double length = 0.0;
  GView::pixel_to_model_length(&renderer, this->pixel_length(renderer), length, nullptr);
  return std::isfinite(length) ? length : 0.0;
}

double* GAxis::GetBounds()
{
  if (mType == MRUtil::AXIS_2D || mRenderer == nullptr) {
    return nullptr;
  }
  const double length = this->model_length(*mRenderer);
  if (length == 0.0) {
    return nullptr;
  }
  for (int i = 0; i < 6; i += 2) {
    mBounds[i] = -length;
    mBounds[i + 1] = length;
  }
  return mBounds;
}

// ---------------------------------------------------------------------------------------------------------
// Drawing

bool GAxis::start_frame(vtkViewport* viewport, morrow::AxisFrame& frame)
{
  vtkRenderer* renderer = vtkRenderer::SafeDownCast(viewport);
  if (renderer == nullptr || this->GetVisibility() == 0 || mForm == nullptr) {
    return false;
  }
  vtkRenderWindow* window = renderer->GetRenderWindow();
  if (window == nullptr || window->GetNeverRendered() != 0 || shorter_side(*renderer) < SmallestViewport) {
    return false;
  }
  this->adopt_window(window);
  const Corner corner = this->corner(*renderer);
  frame = {renderer, this->pixel_length(*renderer), this->model_length(*renderer), corner.x, corner.y};
  return true;
}

// VTK asks the window's observers in the midst of each pass whether to go on. They may change the form, or
// give up the triad: neither it nor its members are used once its form draws.

int GAxis::RenderOpaqueGeometry(vtkViewport* viewport)
{
  morrow::AxisFrame frame;
  if (!this->start_frame(viewport, frame)) {
    return 0;
  }
  const std::shared_ptr<morrow::AxisForm> form = mForm;
  form->place(frame);
  return form->render_opaque(viewport);
}

int GAxis::RenderTranslucentPolygonalGeometry(vtkViewport* viewport)
{
  morrow::AxisFrame frame;
  if (!this->start_frame(viewport, frame)) {
    return 0;
  }
  const std::shared_ptr<morrow::AxisForm> form = mForm;
  return form->render_translucent(viewport);
}

int GAxis::RenderOverlay(vtkViewport* viewport)
{
  morrow::AxisFrame frame;
  if (!this->start_frame(viewport, frame)) {
    return 0;
  }
  const std::shared_ptr<morrow::AxisForm> form = mForm;
  form->place(frame);
  form->place_labels(frame);
  return form->render_overlay(viewport);
}

void GAxis::PrintSelf(ostream& os, vtkIndent indent)
{
  this->Superclass::PrintSelf(os, indent);
  os << indent << "Type: " << static_cast<int>(mType) << "\n";
  os << indent << "Size Fraction: " << mSizeFraction << "\n";
  os << indent << "Position Fractions: " << mXPositionFraction << ", " << mYPositionFraction << "\n";
  os << indent << "Renderer: " << mRenderer.Get() << "\n";
}
