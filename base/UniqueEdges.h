// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <algorithm>
#include <cstddef>
#include <limits>
#include <stdexcept>

#include "GrowingBuffer.h"

#include <vtkType.h>

namespace morrow {

/// The different edges among those that are inserted, in the order in which each came first, and the cell
/// that brought it.
///
/// Each point has a bundle of the larger ends of the edges of which it is the smaller end; further bundles
/// hang on it. In most meshes three ends are the average, so a search reads one cache line, whatever the
/// order of the cells. Index is the type of what is stored of points and cells: 32 bits halve the memory, and
/// with it most of the time.
template<typename Index>
class UniqueEdges
{
public:
  /// For point ids from 0 to points - 1. Throws std::bad_alloc, and std::length_error when Index cannot count
  /// them.
  explicit UniqueEdges(vtkIdType points)
  {
    const auto count = static_cast<std::size_t>(points);
    this->make_room_for_bundles(count);
    std::fill_n(mBundles.extend(count), count, Bundle());
  }

  /// Says that about so many edges will be kept, which saves copying them later. Throws std::bad_alloc.
  void expect(std::size_t count)
  {
    mEnds.make_room(2 * count);
    mCells.make_room(count);
  }

  /// Room for count more edges. Throws std::bad_alloc, and std::length_error when Index cannot count them.
  void make_room(std::size_t count)
  {
    if (count > mRoom) {
      this->make_room_for_bundles(count);
      this->expect(count);
      mRoom = std::min({mBundles.room(), mEnds.room() / 2, mCells.room()});
    }
    mRoom -= count;
  }

  /// Keeps the edge from a to b unless it, or the one from b to a, is kept already. There must be room.
  void insert(vtkIdType a, vtkIdType b, vtkIdType cell) noexcept
  {
    if (this->is_new(static_cast<std::size_t>(std::min(a, b)), static_cast<Index>(std::max(a, b)))) {
      mEnds.push(a);
      mEnds.push(b);
      mCells.push(static_cast<Index>(cell));
    }
  }

  [[nodiscard]] vtkIdType size() const noexcept { return static_cast<vtkIdType>(mCells.size()); }

  /// 2 × size() point ids, both ends of edge after edge, as they were inserted.
  [[nodiscard]] GrowingBuffer<vtkIdType>& ends() noexcept { return mEnds; }

  /// size() cells.
  [[nodiscard]] const Index* cells() const noexcept { return mCells.data(); }

  /// Ends the inserting and frees what only that has needed.
  void finish() noexcept
  {
    mBundles = {};
    mEnds.shrink();
    mCells.shrink();
    mRoom = 0;
  }

private:
  static constexpr Index Nothing = -1;

  struct Bundle
  {
    Index ends[3] = {Nothing, Nothing, Nothing};
    Index next = Nothing;
  };

  void make_room_for_bundles(std::size_t count)
  {
    if (count > static_cast<std::size_t>(std::numeric_limits<Index>::max()) - mBundles.size()) {
      throw std::length_error("too many edges");
    }
    mBundles.make_room(count);
  }

  /// Remembers the edge.
  [[nodiscard]] bool is_new(std::size_t smaller, Index larger) noexcept
  {
    Bundle* bundle = mBundles.data() + smaller;
    while (true) {
      for (Index& end : bundle->ends) {
        if (end == larger) {
          return false;
        }
        if (end == Nothing) {
          end = larger;
          return true;
        }
      }
      if (bundle->next == Nothing) {
        bundle->next = static_cast<Index>(mBundles.size());
        mBundles.push(Bundle());
      }
      bundle = mBundles.data() + bundle->next;
    }
  }

  GrowingBuffer<Bundle> mBundles; // the first ones by point
  GrowingBuffer<vtkIdType> mEnds;
  GrowingBuffer<Index> mCells;
  std::size_t mRoom = 0; // for so many edges there is room in all of them
};

} // namespace morrow
