// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <list>
#include <optional>
#include <set>

/// The plainest data groups: every operation walks the chain. Entities and groups are numbers.
namespace morrow_test {

struct LiteralGroup
{
  int id;
  std::uint32_t limit;
  std::multiset<int> entities;
  bool is_modified = false;
};

/// A chain; operations start at a group of it, by place.
class LiteralChain
{
public:
  explicit LiteralChain(std::uint32_t limit) : mGroups{make(limit)} {}

  [[nodiscard]] const std::list<LiteralGroup>& groups() const { return mGroups; }
  [[nodiscard]] LiteralGroup& at(std::size_t place) { return *this->place_of(place); }

  /// The group that is to be shown now, if there is one.
  std::optional<int> add(std::size_t start, int entity)
  {
    const auto first = this->place_of(start);
    auto taken = first;
    if (first->limit != 0) {
      while (taken != mGroups.end() && taken->entities.size() >= first->limit) {
        ++taken;
      }
      if (taken == mGroups.end()) {
        mGroups.push_back(make(mGroups.back().limit));
        taken = std::prev(mGroups.end());
      }
    }
    const bool was_empty = taken->entities.empty();
    taken->entities.insert(entity);
    taken->is_modified = true;
    return was_empty ? std::optional<int>(taken->id) : std::nullopt;
  }

  /// The group that is to be hidden now, if there is one.
  std::optional<int> remove(std::size_t start, int entity)
  {
    const auto head = this->place_of(start);
    for (auto group = head; group != mGroups.end(); ++group) {
      const auto found = group->entities.find(entity);
      if (found == group->entities.end()) {
        continue;
      }
      group->entities.erase(found);
      group->is_modified = true;
      if (!group->entities.empty()) {
        return std::nullopt;
      }
      const int id = group->id;
      if (group != head) {
        mGroups.erase(group);
      }
      return id;
    }
    return std::nullopt;
  }

  void forget(int entity)
  {
    for (LiteralGroup& group : mGroups) {
      if (group.entities.erase(entity) != 0) {
        group.is_modified = true;
      }
    }
  }

  /// Destroys a group behind the head, and so those behind it.
  void cut(std::size_t place) { mGroups.erase(this->place_of(place), mGroups.end()); }

private:
  static LiteralGroup make(std::uint32_t limit)
  {
    static int next_id = 0;
    return {next_id++, limit, {}};
  }

  std::list<LiteralGroup>::iterator place_of(std::size_t place)
  {
    return std::next(mGroups.begin(), static_cast<std::ptrdiff_t>(place));
  }

  std::list<LiteralGroup> mGroups;
};

} // namespace morrow_test
