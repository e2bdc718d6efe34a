// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <vector>

#include "EntitySelection.h" // by value

namespace morrow {

/// The picked entities, each of them once. The operations return what has come or gone, for the observers.
class PickedList
{
public:
  using Selections = std::vector<EntitySelection>;

  [[nodiscard]] const Selections& selections() const { return mSelections; }
  [[nodiscard]] bool contains(const GPicked::PickedEntity* entity) const;

  /// Appends those that are new: one as it is, several in the order of EntitySelection. The list may be this
  /// one's own.
  Selections add(int count, const EntitySelection* list);

  /// Takes out these entities; what has gone is in the order in which they are given.
  Selections remove(int count, const GPicked::PickedEntity* const* entities);

  Selections clear();

private:
  Selections mSelections;
};

} // namespace morrow
