// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "morrow_base_export.h"

namespace GPicked {
class PickedEntity;
}

/// One candidate or picked entity: a counted reference to the entity, where it was hit, and how it ranks.
class MORROW_BASE_EXPORT EntitySelection
{
public:
  /// Empty: no entity, the origin, distance 0.
  EntitySelection() = default;

  /// Takes a reference to the entity, which may be null.
  ///
  /// @param point     3 floats, the world point of the hit; null is the origin
  /// @param distance  the ranking distance: the smaller, the better; NaN ranks last
  EntitySelection(GPicked::PickedEntity* entity, const float* point, float distance);

  EntitySelection(const EntitySelection& other);
  /// The other one is empty afterwards.
  EntitySelection(EntitySelection&& other) noexcept;
  EntitySelection& operator=(const EntitySelection& other);
  EntitySelection& operator=(EntitySelection&& other) noexcept;

  /// Gives the reference back, which deletes the entity when it is the last one.
  ~EntitySelection();

  /// The entity, or null; valid as long as a selection holds it.
  [[nodiscard]] GPicked::PickedEntity* entity() const { return mEntity; }
  /// 3 floats, valid as long as this selection is not changed.
  [[nodiscard]] const float* point() const { return mPoint; }
  [[nodiscard]] float distance() const { return mDistance; }

  /// Empties this selection, but leaves an entity without references to the caller.
  void release_to_owner();

private:
  void swap(EntitySelection& other) noexcept;

  GPicked::PickedEntity* mEntity = nullptr;
  float mPoint[3] = {0.0F, 0.0F, 0.0F};
  float mDistance = 0.0F;
};

/// A strict order by entity; point and distance do not count. Entities of one class follow their keys, those
/// of different classes their type names as text, and, when these are equal too, an order of the classes that
/// stays the same in one process. An empty selection comes before all others.
[[nodiscard]] MORROW_BASE_EXPORT bool operator<(const EntitySelection& a, const EntitySelection& b);

/// Whether both have an entity and it is the same one: of the same class and with equal keys.
[[nodiscard]] MORROW_BASE_EXPORT bool same_entity(const EntitySelection& a, const EntitySelection& b);
