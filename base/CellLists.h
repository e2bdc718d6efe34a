// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace morrow {

/// For each of a number of cells the items that were put into it, in that order.
class CellLists
{
public:
  /// A cell and an item of it.
  using Entry = std::pair<std::uint32_t, std::uint32_t>;

  CellLists() = default;
  CellLists(std::size_t cells, const std::vector<Entry>& entries) : mStarts(cells + 1), mItems(entries.size())
  {
    for (const Entry& entry : entries) {
      ++mStarts[entry.first];
    }
    std::uint32_t end = 0;
    for (std::uint32_t& start : mStarts) {
      start = end += start;
    }
    // Each start stands at the end of its cell and walks back to where it belongs.
    for (std::size_t i = entries.size(); i-- > 0;) {
      mItems[--mStarts[entries[i].first]] = entries[i].second;
    }
  }

  /// Is the test true for an item of the cell? Stops at the first one.
  template<typename Test>
  [[nodiscard]] bool any_of(std::size_t cell, Test&& test) const
  {
    for (std::uint32_t i = mStarts[cell]; i < mStarts[cell + 1]; ++i) {
      if (test(mItems[i])) {
        return true;
      }
    }
    return false;
  }

  [[nodiscard]] bool is_empty(std::size_t cell) const { return mStarts[cell] == mStarts[cell + 1]; }

private:
  std::vector<std::uint32_t> mStarts; // of each cell in mItems, and the end
  std::vector<std::uint32_t> mItems;
};

} // namespace morrow
