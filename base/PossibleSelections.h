// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "EntitySelection.h" // by value

namespace morrow {

/// The candidates of a click, and which of them is the current one, or none.
class PossibleSelections
{
public:
  [[nodiscard]] const std::vector<EntitySelection>& selections() const { return mSelections; }

  /// Null when none is current.
  [[nodiscard]] const EntitySelection* current() const;

  /// None is current afterwards. Empty selections are left out. The list may be this one's own.
  void set(int count, const EntitySelection* list);

  /// From the last one, or none, to the first. Nothing without candidates.
  void move_to_next();
  /// From the first one, or none, to the last. Nothing without candidates.
  void move_to_previous();

  /// Takes out the same entity or, without it, the first one with an equal key. The current one stays
  /// current; when it is the one that goes, none is.
  void remove(const GPicked::PickedEntity* entity);

  /// Another number after each set() and each move.
  [[nodiscard]] std::uint64_t revision() const { return mRevision; }

private:
  std::vector<EntitySelection> mSelections;
  std::size_t mCurrent = 0; // the size is none
  std::uint64_t mRevision = 0;
};

} // namespace morrow
