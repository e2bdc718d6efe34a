// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "GPickerBase.h"

#include "MRUtil.h"
#include "ObserverList.h"
#include "PickedList.h"
#include "PossibleSelections.h"
#include "ViewCalls.h" // exceptions that wait

#include <string>

namespace {

using Selections = std::vector<EntitySelection>;

/// The arrays that observers get of selections, which must outlive them.
struct ObserverArrays
{
  explicit ObserverArrays(const Selections& selections)
  {
    entities.reserve(selections.size());
    points.reserve(selections.size());
    for (const EntitySelection& selection : selections) {
      entities.push_back(selection.entity());
      points.push_back(selection.point());
    }
  }
  [[nodiscard]] int count() const { return static_cast<int>(entities.size()); }

  std::vector<const GPicked::PickedEntity*> entities;
  std::vector<const float*> points;
};

/// One change to the picked list.
struct ListChange
{
  ListChange(Selections changed, bool is_added)
      : selections(std::move(changed)), arrays(selections), added(is_added)
  {}
  // Moving keeps the selections, into which the arrays point, where they are; copying would not.
  ListChange(ListChange&&) = default;
  ListChange& operator=(ListChange&&) = default;

  Selections selections;
  ObserverArrays arrays;
  bool added;
};

struct PreSelectionChange
{
  EntitySelection selection;
  bool on;
};

using PickObservers = morrow::ObserverList<GPicked::PickCallbackNow*, ListChange>;
using PreSelectionObservers = morrow::ObserverList<GPicked::PickCallbackNow*, PreSelectionChange>;
using EchoObservers = morrow::ObserverList<GPickerBase::EchoObserver, ListChange>;

// Never destroyed: at the end of the process the code of the host's entities may be gone.
auto& gPickedEntities = *new morrow::PickedList;
auto& gPossibleSelections = *new morrow::PossibleSelections;
auto& gPreSelection = *new EntitySelection;
auto& gPickObservers = *new EchoObservers;
auto& gImmediatePickObservers = *new PickObservers;
auto& gPreSelectionObservers = *new PreSelectionObservers;

unsigned gPreSelectionRevision = 0;  // another one after each change
bool gIsPreSelectionLeaving = false; // its observers have been told, or will be

void rethrow(const std::exception_ptr& exception)
{
  if (exception != nullptr) {
    std::rethrow_exception(exception);
  }
}

// These tell the observers and return their first exception.

std::exception_ptr tell_pick_observers(Selections changed, bool added)
{
  if (changed.empty()) {
    return nullptr;
  }
  return gImmediatePickObservers.tell_all(
      {std::move(changed), added}, [](GPicked::PickCallbackNow* observer, const ListChange& change) {
        observer->picked_list_changed(change.arrays.count(), change.arrays.entities.data(),
                                      change.arrays.points.data(), change.added);
      });
}

std::exception_ptr tell_pre_selection_observers(const EntitySelection& selection, bool on)
{
  return gPreSelectionObservers.tell_all(
      {selection, on}, [](GPicked::PickCallbackNow* observer, const PreSelectionChange& change) {
        observer->pre_selection_changed(change.selection.entity(), change.selection.point(), change.on);
      });
}

std::exception_ptr pick(int count, const EntitySelection* list)
{
  return tell_pick_observers(gPickedEntities.add(count, list), true);
}

std::exception_ptr unpick(int count, GPicked::PickedEntity* const* entities)
{
  return tell_pick_observers(gPickedEntities.remove(count, entities), false);
}

void step(void (morrow::PossibleSelections::*move)())
{
  if (gPossibleSelections.selections().empty()) {
    return;
  }
  std::exception_ptr first;
  if (const EntitySelection* current = gPossibleSelections.current()) {
    const auto revision = gPossibleSelections.revision();
    GPicked::PickedEntity* entity = current->entity();
    first = unpick(1, &entity);
    if (gPossibleSelections.revision() != revision || gPossibleSelections.selections().empty()) {
      return rethrow(first);
    }
  }
  (gPossibleSelections.*move)();
  morrow::keep_first(first, pick(1, gPossibleSelections.current()));
  rethrow(first);
}

EntitySelection moved_to(void (morrow::PossibleSelections::*move)())
{
  (gPossibleSelections.*move)();
  const EntitySelection* current = gPossibleSelections.current();
  return current != nullptr ? *current : EntitySelection();
}

void get_array(const Selections& selections, const EntitySelection*& list, int& count)
{
  list = selections.data();
  count = static_cast<int>(selections.size());
}

const char* text_of(const char* text)
{
  return text != nullptr ? text : "";
}

} // namespace

// ---- Picked list

void GPickerBase::add_to_picked_list(int count, const EntitySelection* list)
{
  if (list != nullptr && count > 0) {
    rethrow(pick(count, list));
  }
}

void GPickerBase::remove_from_picked_list(int count, GPicked::PickedEntity** entities)
{
  if (entities != nullptr && count > 0) {
    rethrow(unpick(count, entities));
  }
}

void GPickerBase::clear_picked_list()
{
  rethrow(tell_pick_observers(gPickedEntities.clear(), false));
}

int GPickerBase::current_selection_count()
{
  return static_cast<int>(gPickedEntities.selections().size());
}

GPicked::PickedEntity* GPickerBase::get_selection(int i)
{
  return i >= 0 && i < current_selection_count() ? gPickedEntities.selections().begin()[i].entity() : nullptr;
}

void GPickerBase::get_picked_list(const EntitySelection*& list, int& count)
{
  get_array(gPickedEntities.selections(), list, count);
}

void GPickerBase::print_current_selections()
{
  if (MRUtil::is_print_function_NoPrint()) {
    return;
  }
  const int count = current_selection_count();
  if (count == 1) {
    MRUtil::print_info("1 entity selected\n");
  } else {
    MRUtil::print_info("%d entities selected\n", count);
  }
}

void GPickerBase::echo_ids()
{
  rethrow(gPickObservers.tell_all(
      {gPickedEntities.selections(), true}, [](EchoObserver observer, const ListChange& change) {
        observer(change.arrays.count(), change.arrays.entities.data(), change.arrays.points.data());
      }));
}

// ---- Possible selections

void GPickerBase::set_possible_selections_list(int count, const EntitySelection* list)
{
  gPossibleSelections.set(count, list);
}

void GPickerBase::clear_possible_selections()
{
  gPossibleSelections.set(0, nullptr);
}

void GPickerBase::get_possible_selections(const EntitySelection*& list, int& count)
{
  get_array(gPossibleSelections.selections(), list, count);
}

const EntitySelection* GPickerBase::get_current_possible_selection()
{
  return gPossibleSelections.current();
}

void GPickerBase::step_next_possible_selection()
{
  step(&morrow::PossibleSelections::move_to_next);
}

void GPickerBase::step_previous_possible_selection()
{
  step(&morrow::PossibleSelections::move_to_previous);
}

EntitySelection GPickerBase::get_next_possible_selection()
{
  return moved_to(&morrow::PossibleSelections::move_to_next);
}

EntitySelection GPickerBase::get_previous_possible_selection()
{
  return moved_to(&morrow::PossibleSelections::move_to_previous);
}

void GPickerBase::remove_from_possible_selections_list(GPicked::PickedEntity* entity)
{
  gPossibleSelections.remove(entity);
}

void GPickerBase::print_currently_selected_entity()
{
  const EntitySelection* current = get_current_possible_selection();
  if (current == nullptr) {
    return;
  }
  const EntitySelection held = *current; // the print function may change the list
  const GPicked::PickedEntity& entity = *held.entity();
  const std::string type = text_of(entity.type_name());
  const std::string name = text_of(entity.name());
  const int id = entity.id();
  if (!name.empty() && name != type + " " + std::to_string(id)) {
    MRUtil::print_info("  Current entity is \"%s\" (%s %i).\n", name.c_str(), type.c_str(), id);
  } else if (entity.element() == -1) {
    MRUtil::print_info("  Current entity is %s %i.\n", type.c_str(), id);
  } else {
    MRUtil::print_info("  Current entity is %s %i (Element %d).\n", type.c_str(), id, entity.element());
  }
}

// ---- Pre-selection

void GPickerBase::set_pre_selection(const EntitySelection& selection)
{
  if (same_entity(gPreSelection, selection)) {
    return;
  }
  EntitySelection next = selection; // it may be our own
  std::exception_ptr first;
  if (gPreSelection.entity() != nullptr && !gIsPreSelectionLeaving) {
    const unsigned revision = gPreSelectionRevision;
    gIsPreSelectionLeaving = true;
    first = tell_pre_selection_observers(gPreSelection, false);
    gIsPreSelectionLeaving = false;
    if (gPreSelectionRevision != revision) {
      return rethrow(first);
    }
  }
  ++gPreSelectionRevision;
  gIsPreSelectionLeaving = false;
  std::swap(gPreSelection, next);
  if (gPreSelection.entity() != nullptr) {
    morrow::keep_first(first, tell_pre_selection_observers(gPreSelection, true));
  }
  rethrow(first);
}

GPicked::PickedEntity* GPickerBase::get_current_pre_selection()
{
  return gPreSelection.entity();
}

void GPickerBase::get_pre_selections(const EntitySelection*& list, int& count)
{
  list = &gPreSelection;
  count = 1;
}

// ---- Observers

void GPickerBase::add_echo_observer(EchoObserver observer)
{
  gPickObservers.add(observer);
}

void GPickerBase::remove_echo_observer(EchoObserver observer)
{
  gPickObservers.remove(observer);
}

void GPickerBase::add_pick_observer(GPicked::PickCallbackNow* observer)
{
  gImmediatePickObservers.add(observer);
}

void GPickerBase::remove_pick_observer(GPicked::PickCallbackNow* observer)
{
  gImmediatePickObservers.remove(observer);
}

void GPickerBase::add_pre_selection_observer(GPicked::PickCallbackNow* observer)
{
  gPreSelectionObservers.add(observer);
}

void GPickerBase::remove_pre_selection_observer(GPicked::PickCallbackNow* observer)
{
  gPreSelectionObservers.remove(observer);
}
