// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "GModel.h"

#include <cmath>
#include <iterator>
#include <limits>
#include <utility>

#include "BrantVector.h"
#include "DeferredCollection.h"
#include "GLabelMapper.h"
#include "GModelSet.h"
#include "GView.h"

#include <vtkActor2D.h>
#include <vtkDataObject.h>
#include <vtkProp.h>
#include <vtkProperty.h>
#include <vtkRenderer.h>
#include <vtkTextProperty.h>

bool GModel::mNormalDirectedLighting = false;

namespace {

constexpr int BaseFontSize = 12;  // pixels
constexpr double PointSize = 6.0; // pixels

// Made by the first model, released by the last.
int gNumModels = 0;
vtkTextProperty* gTextProperty = nullptr;

struct Material
{
  double ambient;
  double diffuse;
  double specular;
  double red;
  double green;
  double blue;
};

constexpr Material SurfaceFront = {1.0, 1.0, 1.0, 0.0, 0.0, 0.0};
constexpr Material SurfaceBack = {0.7, 0.0, 0.0, 1.0, 0.0, 0.0};
constexpr Material Curve = {1.0, 1.0, 1.0, 1.0, 0.0, 0.0};

vtkSmartPointer<vtkProperty> make_property(const Material& material)
{
  auto property = vtkSmartPointer<vtkProperty>::New();
  property->SetPointSize(static_cast<float>(PointSize));
  property->SetAmbient(material.ambient);
  property->SetDiffuse(material.diffuse);
  property->SetSpecular(material.specular);
  property->SetColor(material.red, material.green, material.blue);
  return property;
}

} // namespace

// ---------------------------------------------------------------------------------------------------------
// Life

GModel::GModel() : mIsAlive(std::make_shared<bool>(true))
{
  count_instance();
  this->make_label_overlay();
  this->make_properties();
  mNormalDirectedLighting = false;
}

GModel::~GModel()
{
  while (!mSets.empty()) {
    mSets.back()->remove_model(this);
  }
  while (!mViews.empty()) {
    this->remove_view(mViews.begin()->first);
  }
  this->GModel::clear();
  *mIsAlive = false;
  mLabelMapper->set_model(nullptr); // a renderer of the host may keep the actor
  mLabelActor = nullptr;
  mLabelMapper = nullptr;
  discount_instance();
}

void GModel::count_instance()
{
  if (gNumModels == 0) {
    vtkObject::SetGlobalWarningDisplay(0);
    gTextProperty = vtkTextProperty::New();
    gTextProperty->ShadowOff();
    gTextProperty->BoldOff();
    gTextProperty->SetFontSize(BaseFontSize);
  }
  ++gNumModels;
}

void GModel::discount_instance()
{
  if (--gNumModels == 0) {
    gTextProperty->Delete();
    gTextProperty = nullptr;
  }
}

void GModel::make_label_overlay()
{
  mLabelActor = vtkSmartPointer<vtkActor2D>::New();
  mLabelMapper = vtkSmartPointer<GLabelMapper>::New();
  mLabelActor->SetMapper(mLabelMapper);
  mLabelMapper->SetLabelTextProperty(gTextProperty);
  mLabelMapper->set_model(this);
}

void GModel::make_properties()
{
  mSurfaceFront = make_property(SurfaceFront);
  mSurfaceFront->SetInterpolationToFlat();
  mSurfaceBack = make_property(SurfaceBack);
  mCurve = make_property(Curve);
}

// ---------------------------------------------------------------------------------------------------------
// Views

bool GModel::has_view(GView* view) const
{
  return mViews.find(view) != mViews.end();
}

// A view that was destroyed without leaving its models is noticed here, before anything is asked of it.
void GModel::drop_dead_views()
{
  for (auto it = mHandles.begin(); it != mHandles.end();) {
    if (*it->second != nullptr) {
      ++it;
      continue;
    }
    mViews.erase(it->first);
    it = mHandles.erase(it);
  }
}

// In the order of their addresses; null when there is none.
GView* GModel::first_view()
{
  this->drop_dead_views();
  return mViews.empty() ? nullptr : mViews.begin()->first;
}

// A copy to loop over: prop functions may connect and disconnect views.
std::vector<GView*> GModel::connected_views()
{
  this->drop_dead_views();
  std::vector<GView*> views;
  views.reserve(mViews.size());
  for (const auto& [view, parts] : mViews) {
    views.push_back(view);
  }
  return views;
}

GModel::ViewProps& GModel::view_props()
{
  this->drop_dead_views();
  return mViews;
}

void GModel::add_view(GView* view)
{
  this->drop_dead_views();
  if (view == nullptr || this->has_view(view)) {
    return;
  }
  mHandles.emplace(view, view->handle());
  mViews.emplace(view, PartProps());
  if (!mHooked) {
    return;
  }
  const std::shared_ptr<bool> alive = mIsAlive;
  bool connected = false;
  try {
    connected = this->make_and_show_all(view);
  } catch (...) {
    if (*alive) {
      this->remove_view(view);
    }
    throw;
  }
  if (connected && mHooked) {
    view->add_props({mLabelActor});
  }
}

// False when host code has disconnected the view or destroyed the model.
bool GModel::make_and_show_all(GView* view)
{
  std::vector<vtkDataObject*> parts;
  parts.reserve(mParts.size());
  for (const auto& [data, make_props] : mParts) {
    parts.push_back(data);
  }
  const std::shared_ptr<bool> alive = mIsAlive;
  for (vtkDataObject* data : parts) {
    this->make_and_show(data, view);
    if (!*alive) {
      return false;
    }
  }
  return this->has_view(view);
}

// False when host code has destroyed the model. Calls the part's function for the view and keeps what it
// made, unless part or view have gone in the meantime or got their props another way.
bool GModel::make_and_show(vtkDataObject* data, GView* view)
{
  this->drop_dead_views();
  const auto part = mParts.find(data);
  const auto connected = mViews.find(view);
  if (part == mParts.end() || connected == mViews.end() || connected->second.count(data) != 0) {
    return true;
  }
  const std::shared_ptr<bool> alive = mIsAlive;
  const PartPropFunction make_props = part->second; // copies: the part may be removed while it runs
  const vtkSmartPointer<vtkDataObject> kept_data = data;
  PropVector props = make_props(data, view);
  if (!*alive) {
    return false;
  }
  this->drop_dead_views();
  const auto still_connected = mViews.find(view);
  if (mParts.count(data) == 0 || still_connected == mViews.end()) {
    return true;
  }
  const auto [kept, is_new] = still_connected->second.emplace(data, std::move(props));
  if (is_new && mHooked) {
    const PropVector shown = kept->second; // whoever observes the renderer may remove the part
    view->add_props(shown);
  }
  return *alive;
}

void GModel::remove_view(GView* view)
{
  this->drop_dead_views();
  const auto connected = mViews.find(view);
  if (connected == mViews.end()) {
    return;
  }
  const PartProps leaving = std::move(connected->second);
  mViews.erase(connected);
  mHandles.erase(view);
  if (mHooked) {
    view->remove_props(all_props(leaving));
    view->remove_props({mLabelActor});
  }
}

// Calls each connected view with the props of all its parts. Props are the host's, and may disconnect views
// when they are let go.
template<typename Call>
void GModel::for_each_view(Call&& call)
{
  const std::shared_ptr<bool> alive = mIsAlive;
  for (GView* view : this->connected_views()) {
    const auto connected = *alive ? mViews.find(view) : mViews.end();
    if (*alive && connected != mViews.end() && *mHandles.at(view) != nullptr) {
      call(*view, all_props(connected->second));
    }
  }
}

GModel::PropVector GModel::all_props(const PartProps& parts)
{
  PropVector all;
  for (const auto& [data, props] : parts) {
    all.insert(all.end(), props.begin(), props.end());
  }
  return all;
}

void GModel::unhook_from_views()
{
  if (!mHooked) {
    return;
  }
  mHooked = false;
  this->hide_props();
  this->for_each_view([this](GView& view, PropVector&&) { view.remove_props({mLabelActor}); });
}

void GModel::hook_to_views()
{
  if (mHooked) {
    return;
  }
  mHooked = true;
  this->show_props();
  this->for_each_view([this](GView& view, PropVector&&) { view.add_props({mLabelActor}); });
}

void GModel::Render()
{
  const MRUtil::GraphicsStatus status = MRUtil::get_graphics_status();
  if (status == MRUtil::GRAPHICS_DISABLED || status == MRUtil::GRAPHICS_SUSPENDED) {
    return;
  }
  GView::render_views(this->connected_views());
}

// ---------------------------------------------------------------------------------------------------------
// Parts

void GModel::add_part(vtkDataObject* data, const PartPropFunction& make_props)
{
  if (data == nullptr || mParts.count(data) != 0) {
    return;
  }
  mParts.emplace(data, make_props);
  data->Register(nullptr);
  const std::shared_ptr<bool> alive = mIsAlive;
  try {
    for (GView* view : this->connected_views()) {
      if (!this->make_and_show(data, view)) {
        return;
      }
    }
  } catch (...) {
    if (*alive) {
      this->GModel::remove_part(data);
    }
    throw;
  }
}

void GModel::remove_part(vtkDataObject* data)
{
  const auto part = mParts.find(data);
  if (part == mParts.end()) {
    return;
  }
  const morrow::DeferredCollection bracket;
  const auto reference = vtkSmartPointer<vtkDataObject>::Take(data); // the model's own, given back at the end
  const PartPropFunction leaving = std::move(part->second);
  mParts.erase(part);
  const std::shared_ptr<bool> alive = mIsAlive;
  for (GView* view : this->connected_views()) {
    if (*alive) {
      this->let_go(data, view);
    }
  }
}

void GModel::let_go(vtkDataObject* data, GView* view)
{
  this->drop_dead_views();
  const auto connected = mViews.find(view);
  if (connected == mViews.end()) {
    return;
  }
  const auto shown = connected->second.find(data);
  if (shown == connected->second.end()) {
    return;
  }
  const PropVector props = std::move(shown->second);
  connected->second.erase(shown);
  if (mHooked) {
    view->remove_props(props);
  }
}

void GModel::hide_props()
{
  this->for_each_view([](GView& view, PropVector&& props) { view.remove_props(props); });
}

void GModel::show_props()
{
  this->for_each_view([](GView& view, PropVector&& props) { view.add_props(props); });
}

void GModel::clear()
{
  const morrow::DeferredCollection bracket;
  if (mHooked) {
    this->hide_props(); // in one sweep: one by one each removal would search VTK's list
  }
  const std::shared_ptr<bool> alive = mIsAlive;
  try {
    this->remove_all_parts();
  } catch (...) {
    if (*alive && mHooked) {
      this->show_props();
    }
    throw;
  }
  if (*alive) {
    mLabelMapper->clear();
  }
}

void GModel::remove_all_parts()
{
  const std::shared_ptr<bool> alive = mIsAlive;
  while (*alive && !mParts.empty()) {
    vtkDataObject* first = mParts.begin()->first;
    this->remove_part(first);
    if (*alive) {
      this->GModel::remove_part(first); // an override that keeps the part must not keep us here for ever
    }
  }
}

// ---------------------------------------------------------------------------------------------------------
// Modes, labels, properties

void GModel::set_render_mode(MRUtil::RenderMode mode)
{
  mRenderMode = mode;
}

MRUtil::RenderMode GModel::get_render_mode()
{
  return mRenderMode;
}

GModel::LabelKey GModel::add_label(const char* text, const BrantVector& position, BrantColor color)
{
  return static_cast<LabelKey>(mLabelMapper->add_point(position, text, color));
}

void GModel::remove_label(LabelKey key)
{
  mLabelMapper->remove_point(key);
}

vtkProperty* GModel::surface_normal_front_property() const
{
  return mSurfaceFront;
}

vtkProperty* GModel::surface_normal_back_property() const
{
  return mSurfaceBack;
}

vtkProperty* GModel::curve_normal_property() const
{
  return mCurve;
}

void GModel::surface_back_property_color(double r, double g, double b)
{
  mSurfaceBack->SetColor(r, g, b);
}

vtkTextProperty* GModel::text_property()
{
  return gTextProperty;
}

void GModel::set_font_size_factor(double f)
{
  const double size = f * BaseFontSize;
  if (gTextProperty != nullptr && std::abs(size) <= std::numeric_limits<int>::max()) {
    gTextProperty->SetFontSize(static_cast<int>(size));
  }
}

double GModel::get_font_size_factor()
{
  return gTextProperty != nullptr ? gTextProperty->GetFontSize() / static_cast<double>(BaseFontSize) : 1.0;
}
