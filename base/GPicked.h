// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint> // std::uint32_t

#include "morrow_base_export.h"

/// What a host writes so that its entities can be picked and its programs hear of it.
namespace GPicked {

/// One entity of the host that can be picked: a face, an edge, an element. The host derives a class for each
/// kind. Two objects of one class with equal keys stand for the same entity.
///
/// Entities are counted. An object starts without a reference; every EntitySelection holds one, and the
/// object is deleted when the last is given back. So an entity that is made with new for a hit and handed to
/// GPicker::add_to_selection_buffer() needs no further care. One that must outlive all selections, or that
/// lies on the stack, is held by a reference of its owner, taken with add_reference() when it is made and not
/// given back with release(). The host must not delete an entity while selections or lists hold it.
///
/// The virtual operations may be called at any time between the first selection and the destructor; they must
/// not throw, and class, type name and key must not change meanwhile.
class MORROW_BASE_EXPORT PickedEntity
{
public:
  /// The host's own object, for the host. The library never calls this.
  [[nodiscard]] virtual void* host_object() const = 0;

  /// The kind of entity in messages, for example "face". Entities of different classes are ordered by this
  /// text, so it should be one and the same for all entities of a class: entities of one class follow their
  /// keys, and with several texts among them an order of all classes need not exist. Null counts as the empty
  /// text.
  [[nodiscard]] virtual const char* type_name() const = 0;

  /// The number that the user knows the entity by.
  [[nodiscard]] virtual int id() const = 0;

  /// The number of the element in messages; -1 when the entity is not an element.
  [[nodiscard]] virtual int element() const = 0;

  /// The name that the user has given the entity; empty or null without one.
  [[nodiscard]] virtual const char* name() const = 0;

  /// Identifies the entity among those of its class and orders them.
  [[nodiscard]] virtual long long key() const = 0;

  virtual ~PickedEntity();

  /// Takes a reference. The count stops at its largest value; an object that has reached it is never deleted.
  void add_reference();

  /// Gives a reference back and deletes the object with the last one. Nothing without a reference.
  void release();

  /// As release(), but leaves an object without references to the caller.
  void release_to_owner();

  [[nodiscard]] std::uint32_t reference_count() const { return mReferences; }

protected:
  PickedEntity() = default;
  /// References are not copied.
  PickedEntity(const PickedEntity& /*other*/) {}
  PickedEntity& operator=(const PickedEntity& /*other*/) { return *this; }

private:
  std::uint32_t mReferences = 0;
};

/// Hears at once of changes to the picked list and of the pre-selection; see GPickerBase::add_pick_observer()
/// and GPickerBase::add_pre_selection_observer().
///
/// Each operation may call everything of GPickerBase, add and remove observers, itself among them, and
/// destroy itself once it is removed. What it throws is passed to whoever made the change, when all observers
/// have been told; of several exceptions the first.
class MORROW_BASE_EXPORT PickCallbackNow
{
public:
  virtual ~PickCallbackNow();

  /// Entities have come to the picked list or gone from it.
  ///
  /// @param count     number of entities, at least 1
  /// @param entities  count entities; valid during the call
  /// @param points    count pointers to 3 floats, the world point at which each was hit; valid likewise
  /// @param added     true for come, false for gone
  virtual void picked_list_changed(int count, const PickedEntity* const* entities, const float* const* points,
                                   bool added) = 0;

  /// The entity under the cursor.
  ///
  /// @param entity  never null; valid during the call
  /// @param point   3 floats, the world point at which it was hit; valid during the call
  /// @param on      true when it becomes the pre-selection, false when it ceases to be
  virtual void pre_selection_changed(PickedEntity* entity, const float* point, bool on) = 0;

protected:
  PickCallbackNow() = default;
  PickCallbackNow(const PickCallbackNow&) = default;
  PickCallbackNow& operator=(const PickCallbackNow&) = default;
};

} // namespace GPicked
