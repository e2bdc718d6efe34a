// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
//
// What a view shows besides the models, its light, and saved views: members of GView.
#include "GView.h"

#include <algorithm>

#include "BackgroundColor.h"
#include "GCameraState.h"
#include "Lighting.h"
#include "ViewDecorations.h"

#include <vtkRenderer.h>

namespace {

constexpr float DefaultLight = 0.95F;
constexpr float DefaultAmbient = 1.0F;

std::vector<vtkSmartPointer<vtkRenderer>> registered_renderers()
{
  std::vector<vtkSmartPointer<vtkRenderer>> renderers;
  for (const auto& view : GView::all_views()) {
    renderers.emplace_back(view->get_renderer());
  }
  return renderers;
}

} // namespace

// Never destroyed: states live until the process ends.
std::map<std::string, GCameraState*>& GView::mSavedViews = *new std::map<std::string, GCameraState*>;
float GView::mLightIntensity[3] = {DefaultLight, DefaultLight, DefaultLight};
float GView::mAmbientIntensity[3] = {DefaultAmbient, DefaultAmbient, DefaultAmbient};

// ---------------------------------------------------------------------------------------------------------
// Saved views

void GView::save_view(const std::string& name)
{
  const auto found = mSavedViews.find(name);
  if (found != mSavedViews.end()) {
    found->second->save(this);
  } else {
    mSavedViews.emplace(name, new GCameraState(this));
  }
}

void GView::restore_view(const std::string& name)
{
  const auto found = mSavedViews.find(name);
  if (found != mSavedViews.end()) {
    found->second->restore(this);
  }
}

// ---------------------------------------------------------------------------------------------------------
// Title

void GView::create_title()
{
  mDecorations->title.create();
}

void GView::set_title(const char* text)
{
  mDecorations->title.set_text(text);
}

void GView::set_title_color(const double* rgb)
{
  if (morrow::is_color(rgb)) {
    mDecorations->title.set_color(rgb);
  }
}

void GView::set_title_font_size(int points)
{
  mDecorations->title.set_font_size(points);
}

// ---------------------------------------------------------------------------------------------------------
// Axes

void GView::set_triad_vis(bool on)
{
  mDecorations->axes.set_triad_visible(on);
}

bool GView::get_triad_vis() const
{
  return mDecorations->axes.is_triad_visible();
}

bool GView::triad_clicked(int x, int y) const
{
  return mDecorations->axes.is_on_triad(x, y);
}

void GView::set_triad_label_color(BrantColor color)
{
  mDecorations->axes.set_triad_label_color(color);
}

void GView::set_axis_vis(bool on)
{
  mDecorations->axes.set_axis_visible(on);
}

bool GView::get_axis_vis() const
{
  return mDecorations->axes.is_axis_visible();
}

void GView::set_axis_type(MRUtil::AxisType type)
{
  mDecorations->axes.set_axis_type(type);
}

MRUtil::AxisType GView::get_axis_type() const
{
  return mDecorations->axes.axis_type();
}

void GView::set_cube_axes_vis(bool on)
{
  mDecorations->cube_axes.set_visible(on);
}

bool GView::get_cube_axes_vis() const
{
  return mDecorations->cube_axes.is_visible();
}

// ---------------------------------------------------------------------------------------------------------
// Legend and scalar bar

void GView::set_legend_vis(bool on)
{
  mDecorations->legend.set_visible(on);
}

bool GView::get_legend_vis() const
{
  return mDecorations->legend.is_visible();
}

// The widget's observers are host code, which may destroy the view.
void GView::set_scalar_bar(vtkScalarBarWidget* widget)
{
  const std::shared_ptr<morrow::ViewDecorations> decorations = mDecorations;
  decorations->scalar_bar.set_widget(widget);
}

vtkScalarBarWidget* GView::get_scalar_bar() const
{
  return mDecorations->scalar_bar.widget();
}

void GView::setup_scalar_bar(double min, double max, bool keep_hues, const std::vector<BrantColor>& colors)
{
  const std::shared_ptr<morrow::ViewDecorations> decorations = mDecorations;
  double rgb[3];
  morrow::look_up_color(this->get_label_color_from_background(), rgb);
  if (decorations->scalar_bar.set_up({min, max, keep_hues, colors})) {
    decorations->scalar_bar.set_label_color(rgb);
  }
}

void GView::set_scalar_bar_label_color(const double* rgb)
{
  if (morrow::is_color(rgb)) {
    mDecorations->scalar_bar.set_label_color(rgb);
  }
}

int GView::get_label_color_from_background() const
{
  return morrow::label_color_id(mBackground, mBackground2);
}

// ---------------------------------------------------------------------------------------------------------
// Lighting

void GView::reset_lighting()
{
  std::fill_n(mLightIntensity, 3, DefaultLight);
  std::fill_n(mAmbientIntensity, 3, DefaultAmbient);
  constexpr double Light[3] = {0.95, 0.95, 0.95};
  for (const auto& renderer : registered_renderers()) {
    renderer->SetAmbient(1.0, 1.0, 1.0);
    morrow::set_lights(*renderer, Light, Light[0]);
  }
}

void GView::set_ambient_light_intensity(float r, float g, float b)
{
  if (!morrow::are_intensities(r, g, b)) {
    MRUtil::print_warning("Ambient light intensity must be between 0 and 1\n");
    return;
  }
  const float rgb[3] = {r, g, b};
  std::transform(rgb, rgb + 3, mAmbientIntensity, morrow::light_for_renderer);
  for (const auto& renderer : registered_renderers()) {
    renderer->SetAmbient(mAmbientIntensity[0], mAmbientIntensity[1], mAmbientIntensity[2]);
  }
}

void GView::get_ambient_light_intensity(float& r, float& g, float& b)
{
  r = morrow::light_for_host(mAmbientIntensity[0]);
  g = morrow::light_for_host(mAmbientIntensity[1]);
  b = morrow::light_for_host(mAmbientIntensity[2]);
}

void GView::set_light_intensity(float r, float g, float b)
{
  if (!morrow::are_intensities(r, g, b)) {
    MRUtil::print_warning("Light intensity must be between 0 and 1\n");
    return;
  }
  const float rgb[3] = {r, g, b};
  std::transform(rgb, rgb + 3, mLightIntensity, morrow::light_for_renderer);
  const double light[3] = {mLightIntensity[0], mLightIntensity[1], mLightIntensity[2]};
  for (const auto& renderer : registered_renderers()) {
    morrow::set_lights(*renderer, light, morrow::mean_intensity(mLightIntensity));
  }
}

void GView::get_light_intensity(float& r, float& g, float& b)
{
  r = morrow::light_for_host(mLightIntensity[0]);
  g = morrow::light_for_host(mLightIntensity[1]);
  b = morrow::light_for_host(mLightIntensity[2]);
}
