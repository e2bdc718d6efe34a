// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>
#include <optional>
#include <typeindex>
#include <vector>

class EntitySelection;

namespace GPicked {
class PickedEntity;
}

namespace morrow {

/// The order and the identity of EntitySelection, for entities that no selection holds: nothing here takes a
/// reference. Null is allowed.
[[nodiscard]] bool comes_before(const GPicked::PickedEntity* a, const GPicked::PickedEntity* b);
[[nodiscard]] bool is_same(const GPicked::PickedEntity* a, const GPicked::PickedEntity* b);

/// Finds entities in a list. Of the list's entities only classes and keys are kept.
class EntityLookup
{
public:
  /// Nulls are left out.
  explicit EntityLookup(const std::vector<const GPicked::PickedEntity*>& entities);
  explicit EntityLookup(const std::vector<EntitySelection>& selections);

  /// The first place in the list where the same entity stands.
  [[nodiscard]] std::optional<std::size_t> find(const GPicked::PickedEntity* entity) const;

private:
  struct Entry
  {
    std::type_index type;
    long long key;
    std::size_t place;
  };
  void append(const GPicked::PickedEntity* entity, std::size_t place);
  void sort();

  std::vector<Entry> mEntries;
};

/// Takes out of list what stands among these count others too.
void drop_those_in(std::vector<EntitySelection>& list, const EntitySelection* others, std::size_t count);

} // namespace morrow
