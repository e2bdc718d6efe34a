// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "GModelSet.h"

#include <algorithm>
#include <cstddef>
#include <exception>

#include "GModel.h"
#include "GView.h"
#include "MRUtil.h"

namespace {

template<typename T>
bool contains(const std::vector<T*>& list, const T* entry)
{
  return std::find(list.begin(), list.end(), entry) != list.end();
}

template<typename T>
void erase(std::vector<T*>& list, const T* entry)
{
  list.erase(std::remove(list.begin(), list.end(), entry), list.end());
}

void update(GModel& model)
{
  if (model.is_hooked_to_views()) {
    model.update_parts();
  }
}

} // namespace

GModelSet::GModelSet() : mIsAlive(std::make_shared<bool>(true)) {}

GModelSet::~GModelSet()
{
  while (!mViews.empty()) {
    this->remove_view(mViews.front()); // clears the view's link as well
  }
  while (!mModels.empty()) {
    this->remove_model(mModels.front());
  }
  *mIsAlive = false;
}

bool GModelSet::has(const GView* view) const
{
  return contains(mViews, view);
}

bool GModelSet::has(const GModel* model) const
{
  return contains(mModels, model);
}

// The loops below run over copies and look again before each step: prop functions and props are the host's
// and may take anything out of the set.

void GModelSet::add_view(GView* view)
{
  if (view == nullptr || this->has(view)) {
    return;
  }
  if (view->get_model_set() != this) {
    view->set_model_set(this); // comes back here with the link made
    return;
  }
  mViews.push_back(view);
  const std::shared_ptr<bool> alive = mIsAlive;
  try {
    this->connect(view);
  } catch (...) {
    if (*alive) {
      this->remove_view(view);
    }
    throw;
  }
}

void GModelSet::connect(GView* view)
{
  const std::vector<GModel*> models = mModels;
  const std::shared_ptr<bool> alive = mIsAlive;
  for (GModel* model : models) {
    if (*alive && this->has(view) && this->has(model)) {
      model->add_view(view);
    }
  }
}

void GModelSet::add_model(GModel* model)
{
  if (model == nullptr || this->has(model)) {
    return;
  }
  mModels.push_back(model);
  model->mSets.push_back(this);
  const std::shared_ptr<bool> alive = mIsAlive;
  try {
    this->connect(model);
  } catch (...) {
    if (*alive) {
      this->remove_model(model);
    }
    throw;
  }
}

void GModelSet::connect(GModel* model)
{
  const std::vector<GView*> views = mViews;
  const std::shared_ptr<bool> alive = mIsAlive;
  for (GView* view : views) {
    if (*alive && this->has(view) && this->has(model)) {
      model->add_view(view);
    }
  }
}

void GModelSet::remove_view(GView* view)
{
  if (view == nullptr || !this->has(view)) {
    return;
  }
  const std::shared_ptr<bool> alive = mIsAlive;
  const std::vector<GModel*> models = mModels;
  for (GModel* model : models) {
    if (*alive && this->has(view) && this->has(model)) {
      model->remove_view(view);
    }
  }
  if (*alive && this->has(view)) {
    erase(mViews, view);
    view->forget_model_set(this);
  }
}

void GModelSet::remove_model(GModel* model)
{
  if (model == nullptr || !this->has(model)) {
    return;
  }
  const std::shared_ptr<bool> alive = mIsAlive;
  const std::vector<GView*> views = mViews;
  for (GView* view : views) {
    if (*alive && this->has(view) && this->has(model)) {
      model->remove_view(view);
    }
  }
  if (*alive && this->has(model)) {
    this->forget_model(model);
  }
}

void GModelSet::forget_model(GModel* model)
{
  erase(mModels, model);
  erase(model->mSets, this);
}

void GModelSet::render()
{
  const MRUtil::GraphicsStatus status = MRUtil::get_graphics_status();
  if (status == MRUtil::GRAPHICS_DISABLED || status == MRUtil::GRAPHICS_SUSPENDED) {
    return;
  }
  GView::render_views(mViews);
}

void GModelSet::update_model_parts()
{
  const std::shared_ptr<bool> alive = mIsAlive;
  const std::vector<GModel*> models = mModels;
  std::exception_ptr first;
  for (std::size_t i = 0; *alive && i < models.size(); ++i) {
    const bool in_place = i < mModels.size() && mModels[i] == models[i];
    if (!in_place && !this->has(models[i])) {
      continue;
    }
    try {
      update(*models[i]);
    } catch (...) {
      first = first != nullptr ? first : std::current_exception();
    }
  }
  if (first != nullptr) {
    std::rethrow_exception(first);
  }
}
