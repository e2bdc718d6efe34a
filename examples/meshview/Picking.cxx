// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "Picking.h"

#include "MeshModel.h"

#include <GModelSet.h>
#include <GPickerBase.h>
#include <GView.h>
#include <MRUtil.h>

#include <cstdio>
#include <string>

namespace {

std::vector<std::unique_ptr<MeshPicker>> make_pickers(const MeshModel& model)
{
  std::vector<std::unique_ptr<MeshPicker>> pickers;
  for (const EntityKind kind : kEntityKinds) {
    pickers.push_back(std::make_unique<MeshPicker>(kind, model));
    GPickerBase::register_picker(name_of(kind), pickers.back().get());
  }
  return pickers;
}

/// The library prints to C's stream.
void flush()
{
  std::fflush(stdout);
}

} // namespace

Picking::Picking(const MeshModel& model, GModelSet& models, GView& view)
    : mView(view), mModels(models), mPickers(make_pickers(model)),
      mHighlight([this](EntityKind kind) -> const auto& {
        return mPickers[static_cast<std::size_t>(kind)]->targets();
      })
{
  mModels.add_model(&mHighlight.picked());
  mModels.add_model(&mHighlight.pre_selected());
  set_kind(EntityKind::Face, true);
}

/// The lists are the library's own, and outlive the view. The pickers leave the registry as they go.
Picking::~Picking()
{
  mModels.remove_model(&mHighlight.picked());
  mModels.remove_model(&mHighlight.pre_selected());
  clear();
}

EntityKind Picking::kind() const
{
  for (const EntityKind kind : kEntityKinds) {
    if (GPickerBase::is_filtered(name_of(kind))) {
      return kind;
    }
  }
  return EntityKind::Face;
}

void Picking::set_kind(EntityKind kind, bool quiet)
{
  end_hover();
  GPickerBase::set_pick_type(name_of(kind), quiet);
  flush();
}

MeshPicker& Picking::picker()
{
  return *mPickers[static_cast<std::size_t>(kind())];
}

void Picking::pick(const PickRegion& region, bool add)
{
  end_hover();
  auto points = region.points;
  if (region.shape == PickShape::Point) {
    return click(points[0][0], points[0][1], add);
  }
  picker().begin_pick(add);
  switch (region.shape) {
  case PickShape::Box:
    picker().compute_pick_by_box(mView.get_renderer(), points[0].data(), points[1].data());
    break;
  case PickShape::Circle:
    picker().compute_pick_by_circle(mView.get_renderer(), points[0].data(), region.radius);
    break;
  default:
    picker().compute_pick_by_polygon(mView.get_renderer(), static_cast<int>(points.size()),
                                     reinterpret_cast<int(*)[2]>(points.data()));
  }
  if (picker().get_selection_buffer().empty()) {
    MRUtil::print_info("nothing there\n");
  }
  picker().end_pick_box();
  flush();
}

void Picking::click(int x, int y, bool add)
{
  picker().begin_pick(add);
  picker().compute_pick(mView.get_renderer(), x, y);
  if (picker().get_selection_buffer().empty()) {
    MRUtil::print_info("nothing there\n");
  }
  picker().end_pick();
  GPickerBase::print_currently_selected_entity();
  flush();
}

bool Picking::hover(int x, int y)
{
  const GPicked::PickedEntity* before = GPickerBase::get_current_pre_selection();
  picker().begin_pre_select();
  picker().compute_pick(mView.get_renderer(), x, y);
  picker().end_pre_select();
  return GPickerBase::get_current_pre_selection() != before;
}

bool Picking::end_hover()
{
  const bool had_one = GPickerBase::get_current_pre_selection() != nullptr;
  GPickerBase::set_pre_selection({});
  return had_one;
}

void Picking::step(bool forward)
{
  if (forward) {
    GPickerBase::step_next_possible_selection();
  } else {
    GPickerBase::step_previous_possible_selection();
  }
  GPickerBase::print_currently_selected_entity();
  flush();
}

void Picking::clear()
{
  end_hover();
  GPickerBase::clear_possible_selections();
  GPickerBase::clear_picked_list();
}
