// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "GPicker.h"

#include "EntityOrder.h"
#include "GPicked.h"
#include "GPickerBase.h"
#include "PickBounds.h"
#include "RenderGuard.h"
#include "ViewCalls.h" // exceptions that wait

#include <vtkRenderWindow.h>
#include <vtkRenderWindowInteractor.h>
#include <vtkRenderer.h>
#include <vtkSmartPointer.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

namespace {

/// Of distances; NaN is larger than everything else.
bool is_nearer(float a, float b)
{
  return a < b || (std::isnan(b) && !std::isnan(a));
}

bool selections_less_than(const EntitySelection& a, const EntitySelection& b)
{
  return is_nearer(a.distance(), b.distance());
}

void reverse_runs_of_equal_distance(std::vector<EntitySelection>& list)
{
  for (auto run = list.begin(); run != list.end();) {
    const auto end = std::find_if(run + 1, list.end(), [run](const EntitySelection& selection) {
      return selection.distance() != run->distance(); // NaN equals nothing
    });
    std::reverse(run, end);
    run = end;
  }
}

/// The depth buffer of a window whose interactor may render, or that has none, is brought up to date.
void prepare_render_window(vtkRenderer& renderer)
{
  vtkRenderWindow* window = renderer.GetRenderWindow();
  if (window == nullptr || window->CheckInRenderStatus() != 0) {
    return;
  }
  vtkRenderWindowInteractor* interactor = window->GetInteractor();
  if (interactor == nullptr || interactor->GetEnableRender()) {
    morrow::render_guarded(*window);
  }
}

bool is_picked(const EntitySelection& selection)
{
  const EntitySelection* picked = nullptr;
  int count = 0;
  GPickerBase::get_picked_list(picked, count);
  return std::any_of(picked, picked + count,
                     [&](const auto& other) { return same_entity(other, selection); });
}

void drop_picked(std::vector<EntitySelection>& candidates)
{
  const EntitySelection* picked = nullptr;
  int count = 0;
  GPickerBase::get_picked_list(picked, count);
  morrow::drop_those_in(candidates, picked, static_cast<std::size_t>(count));
}

/// Clicking a picked entity again unpicks it. Returns what its observers throw.
std::exception_ptr toggle_first(std::vector<EntitySelection>& candidates)
{
  if (candidates.empty() || !is_picked(candidates.front())) {
    return nullptr;
  }
  const EntitySelection held = std::move(candidates.front());
  candidates.erase(candidates.begin());
  return morrow::exception_of([&] {
    GPicked::PickedEntity* entity = held.entity();
    GPickerBase::remove_from_picked_list(1, &entity);
  });
}

void offer(const std::vector<EntitySelection>& candidates)
{
  GPickerBase::set_possible_selections_list(static_cast<int>(candidates.size()), candidates.data());
  GPickerBase::step_next_possible_selection();
}

} // namespace

GPicker::~GPicker()
{
  GPickerBase::forget_picker(this);
  clear_selection_buffer();
}

// ---- Region picks

int GPicker::pick_in(vtkRenderer& renderer, PickBounds& region)
{
  if (mLife == nullptr) {
    mLife = std::make_shared<const bool>(true);
  }
  const std::weak_ptr<const bool> life = mLife;
  const vtkSmartPointer<vtkRenderer> alive(&renderer); // host code runs in the frame
  prepare_render_window(renderer);
  return life.expired() ? 0 : compute_pick_by_bounds(&renderer, &region);
}

int GPicker::compute_pick_by_box(vtkRenderer* renderer, int* corner1, int* corner2)
{
  if (renderer == nullptr || corner1 == nullptr || corner2 == nullptr) {
    return 0;
  }
  const auto [left, right] = std::minmax({corner1[0], corner2[0]});
  const auto [bottom, top] = std::minmax({corner1[1], corner2[1]});
  double sides[4] = {double(left), double(bottom), double(right), double(top)};
  PickBox box;
  box.set_box(sides);
  return pick_in(*renderer, box);
}

int GPicker::compute_pick_by_polygon(vtkRenderer* renderer, int count, int (*points)[2])
{
  if (renderer == nullptr || points == nullptr || count < 1) {
    return 0;
  }
  const auto size = static_cast<std::size_t>(count);
  const std::unique_ptr<double[][2]> corners(new double[size][2]);
  for (std::size_t i = 0; i < size; ++i) {
    corners[i][0] = points[i][0];
    corners[i][1] = points[i][1];
  }
  PickPolygon polygon;
  polygon.set_polygon(count, corners.get());
  return pick_in(*renderer, polygon);
}

int GPicker::compute_pick_by_circle(vtkRenderer* renderer, int* center, double radius)
{
  if (renderer == nullptr || center == nullptr) {
    return 0;
  }
  const double middle[2] = {static_cast<double>(center[0]), static_cast<double>(center[1])};
  PickCircle circle;
  circle.set_circle(middle, std::fabs(radius));
  return pick_in(*renderer, circle);
}

// ---- Selection buffer

std::set<EntitySelection>::iterator GPicker::find(GPicked::PickedEntity* entity)
{
  EntitySelection wanted(entity, nullptr, 0.0F);
  const auto found = mSelectionBuffer.find(wanted);
  wanted.release_to_owner(); // it may have no other reference
  return found;
}

void GPicker::add_to_selection_buffer(GPicked::PickedEntity* entity, const float* point, float distance,
                                      bool direct)
{
  if (entity == nullptr) {
    return;
  }
  EntitySelection selection(entity, point, direct ? distance : distance + 1.0F);
  const auto found = mSelectionBuffer.find(selection);
  if (found == mSelectionBuffer.end()) {
    mSelectionBuffer.insert(std::move(selection));
  } else if (selections_less_than(selection, *found)) {
    auto node = mSelectionBuffer.extract(found);
    std::swap(node.value(), selection);
    mSelectionBuffer.insert(std::move(node));
  }
}

void GPicker::add_to_selection_buffer(const std::set<EntitySelection>& others)
{
  for (const EntitySelection& selection : others) {
    if (selection.entity() != nullptr) {
      mSelectionBuffer.insert(selection);
    }
  }
}

void GPicker::remove_from_selection_buffer(GPicked::PickedEntity* entity)
{
  const auto found = entity != nullptr ? find(entity) : mSelectionBuffer.end();
  if (found != mSelectionBuffer.end()) {
    const auto removed = mSelectionBuffer.extract(found); // the entity goes when the buffer is whole again
  }
}

void GPicker::clear_selection_buffer()
{
  std::set<EntitySelection> removed;
  removed.swap(mSelectionBuffer); // likewise
}

std::vector<EntitySelection> GPicker::take_selection_buffer()
{
  std::vector<EntitySelection> list(mSelectionBuffer.begin(), mSelectionBuffer.end());
  clear_selection_buffer();
  return list;
}

// ---- Gestures. Observers may destroy the picker: its members are not used after they have been told.

void GPicker::begin_pick(bool additive)
{
  mAdditive = additive;
  clear_selection_buffer();
  GPickerBase::clear_possible_selections();
  if (!additive) {
    GPickerBase::clear_picked_list();
  }
}

void GPicker::end_pick()
{
  std::vector<EntitySelection> candidates = take_selection_buffer();
  sort_possible_selections(candidates);
  std::exception_ptr first;
  if (mAdditive) {
    first = toggle_first(candidates);
  }
  drop_picked(candidates);
  morrow::keep_first(first, morrow::exception_of([&] { offer(candidates); }));
  if (first != nullptr) {
    std::rethrow_exception(first);
  }
}

void GPicker::end_pick_box()
{
  GPickerBase::clear_possible_selections();
  const std::vector<EntitySelection> found = take_selection_buffer();
  if (found.empty()) {
    return;
  }
  std::exception_ptr first = morrow::exception_of(
      [&] { GPickerBase::add_to_picked_list(static_cast<int>(found.size()), found.data()); });
  morrow::keep_first(first, morrow::exception_of([] { GPickerBase::print_current_selections(); }));
  if (first != nullptr) {
    std::rethrow_exception(first);
  }
}

void GPicker::begin_pre_select()
{
  clear_selection_buffer();
}

void GPicker::end_pre_select()
{
  const std::vector<EntitySelection> found = take_selection_buffer();
  const auto best = std::min_element(found.begin(), found.end(), selections_less_than);
  GPickerBase::set_pre_selection(best != found.end() ? *best : EntitySelection());
}

void GPicker::sort_possible_selections(std::vector<EntitySelection>& list)
{
  std::stable_sort(list.begin(), list.end(), selections_less_than);
  reverse_runs_of_equal_distance(list);
}
