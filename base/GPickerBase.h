// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <vector>

#include "EntitySelection.h" // so that hosts can use what they get
#include "GPicked.h"         // likewise
#include "morrow_base_export.h"

class GPicker;

/// The process-wide registry of pickers by pick type, and the three lists of what is picked: the possible
/// selections of the last click, through which the user steps, the picked list, and the pre-selection under
/// the cursor. Everything is static and lives until the process ends; nothing is locked.
///
/// The lists hold counted references to the host's entities; a list that is emptied gives them back. What the
/// process holds at its end is not given back, because the host's code may be gone by then.
///
/// Observers hear of each change to the picked list after the list is in its new state; of the pre-selection,
/// as set_pre_selection() tells, before the old one goes and after the new one is there. They may call
/// everything here. A change that an observer makes is in the lists at once, but the observers hear of it
/// only when all of them have heard of the first one: each of them hears of all changes in their order, once,
/// if it was there when the change was made and still is when its turn comes. Exceptions of observers are
/// held back until the operation is complete and all have been told; the first one is then thrown by the
/// operation that made the first change.
///
/// Null names, null entities and empty selections are left out; null arrays and counts below 1 stand for an
/// empty list.
class MORROW_BASE_EXPORT GPickerBase
{
public:
  /// Hears of echo_ids(). The arrays hold count entities, and count pointers to 3 floats, the world points at
  /// which they were hit; they are valid during the call.
  using EchoObserver = void (*)(int count, const GPicked::PickedEntity* const* entities,
                                const float* const* points);

  /// Objects carry no state.
  GPickerBase() = default;
  ~GPickerBase() = default;

  // ---- Registry

  /// Registers the picker of a pick type, or gives a registered type another picker. Returns true; false for
  /// a null name.
  ///
  /// @param name    the text is not copied: it must stay where it is, unchanged, until the type is
  ///                unregistered or its picker destroyed. A type that is registered again keeps the pointer
  ///                of the first time.
  /// @param picker  not owned; a picker that is destroyed takes its types out of the registry. Null gives a
  ///                type without picker.
  static bool register_picker(const char* name, GPicker* picker);

  /// Takes the type out. False when it is not registered with this picker. The current type stays the current
  /// one; there is none when it is the one that goes.
  static bool unregister_picker(const char* name, GPicker* picker);

  /// The current type's picker and name; null without a current type, which is how the process starts.
  [[nodiscard]] static GPicker* get_picker();
  [[nodiscard]] static const char* get_pick_type();

  [[nodiscard]] static int get_number_pick_types();

  /// Writes get_number_pick_types() names to the array, in the order of registration.
  static void get_pick_types(const char** names);

  // ---- Pick types and filters

  /// Makes the type the current one, and the only one that is filtered, and says "Now in <name> picking
  /// mode." unless quiet. An unknown name clears all filters and leaves the current type. What the print
  /// function throws comes out when the type is set.
  static void set_pick_type(const char* name, bool quiet);

  /// Filters one more type. Types of one picker are filtered together; with a picker other than the current
  /// type's, the filters are cleared first and the type becomes the current one. Unknown names do nothing.
  static void add_filter_type(const char* name);

  /// Ends the filter of a type. The first type that is still filtered becomes the current one, or none does.
  /// Unknown names do nothing.
  static void remove_filter_type(const char* name);

  /// Clears all filters, and adds these count types one after the other.
  static void set_filter_types(int count, const char** names);

  /// The filtered types in the order of registration.
  ///
  /// @param names  room for get_number_pick_types() pointers; null only counts
  /// @param count  receives their number
  static void get_pick_filters(const char** names, int& count);

  /// False for an unknown name.
  [[nodiscard]] static bool is_filtered(const char* name);

  // ---- Picked list

  /// Appends those of count selections whose entities are not picked yet, and tells the pick observers. One
  /// selection is appended as it is; several in the order of their entities, each entity once.
  static void add_to_picked_list(int count, const EntitySelection* list);

  /// Takes those of count entities that are picked out of the list, and tells the pick observers of them in
  /// the order given; of nothing when there are none.
  static void remove_from_picked_list(int count, GPicked::PickedEntity** entities);

  /// Empties the list, and tells the pick observers of all that was in it.
  static void clear_picked_list();

  [[nodiscard]] static int current_selection_count();

  /// The i-th picked entity, from 0; null when i is out of range.
  [[nodiscard]] static GPicked::PickedEntity* get_selection(int i);

  /// The library's own array of count selections; valid until the next change to the list.
  static void get_picked_list(const EntitySelection*& list, int& count);

  /// "1 entity selected", or "2 entities selected"; nothing while messages are silenced.
  static void print_current_selections();

  /// Calls the echo observers with all picked entities.
  static void echo_ids();

  // ---- Possible selections

  /// Replaces the candidates; none of them is current.
  static void set_possible_selections_list(int count, const EntitySelection* list);
  static void clear_possible_selections();

  /// The library's own array of count selections; valid until the next change to the list.
  static void get_possible_selections(const EntitySelection*& list, int& count);

  /// The current candidate, valid until the next change to the list; null without one.
  [[nodiscard]] static const EntitySelection* get_current_possible_selection();

  /// Takes the current candidate out of the picked list, makes the next one the current one, the first after
  /// the last, and picks it. Nothing without candidates. When an observer that hears of the first change
  /// makes another step, or other candidates, that is where it ends.
  static void step_next_possible_selection();
  /// The same backwards, the last before the first.
  static void step_previous_possible_selection();

  /// Move as the two above do, without a change to the picked list, and return the candidate there; an empty
  /// selection without candidates.
  static EntitySelection get_next_possible_selection();
  static EntitySelection get_previous_possible_selection();

  /// Takes out the candidate of the same entity, or, without it, the first whose entity has an equal key. The
  /// current candidate stays the current one; there is none when it is the one that goes.
  static void remove_from_possible_selections_list(GPicked::PickedEntity* entity);

  /// Says which candidate is the current one, by its type and identifier, its name if it has another one, or
  /// its element number. Nothing without a current candidate.
  static void print_currently_selected_entity();

  // ---- Pre-selection

  /// Tells the pre-selection observers that the old entity is not the pre-selection any more, stores the new
  /// selection, and tells them of its entity. Nothing when it is the same entity. An empty selection ends the
  /// pre-selection. When an observer that hears of the old entity sets another pre-selection, that one stays.
  static void set_pre_selection(const EntitySelection& selection);

  /// Null without one.
  [[nodiscard]] static GPicked::PickedEntity* get_current_pre_selection();

  /// The library's own selection as a list of one, which may be empty; valid until the next change.
  static void get_pre_selections(const EntitySelection*& list, int& count);

  // ---- Observers
  //
  // Not owned: an observer is removed before it is destroyed. One that is there already is not added again.

  static void add_echo_observer(EchoObserver observer);
  static void remove_echo_observer(EchoObserver observer);
  static void add_pick_observer(GPicked::PickCallbackNow* observer);
  static void remove_pick_observer(GPicked::PickCallbackNow* observer);
  static void add_pre_selection_observer(GPicked::PickCallbackNow* observer);
  static void remove_pre_selection_observer(GPicked::PickCallbackNow* observer);

private:
  friend class GPicker; // a picker takes itself out

  struct PickHandler
  {
    const char* name;
    GPicker* picker;
  };

  static int find_type(const char* name);
  static void clear_filters();
  static void erase_type(int index);
  static void forget_picker(const GPicker* picker);

  // Never destroyed: pickers of the host may go after everything else.
  static std::vector<PickHandler>& mPickers;
  static std::vector<bool>& mFilterTypes; // one for each of mPickers
  static int mCurrentPicker;              // -1 without one
};
