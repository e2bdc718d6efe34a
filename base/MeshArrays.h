// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <type_traits>
#include <vector>

#include <vtkCellType.h>
#include <vtkSmartPointer.h>
#include <vtkType.h>

class vtkCellArray;
class vtkIdList;
class vtkPointSet;
class vtkPolyData;
class vtkUnsignedCharArray;
class vtkUnstructuredGrid;

namespace morrow {

/// The points and cells of a point set, read as they lie in memory where that is possible. It refers to the
/// data set's arrays, and stands as long as nobody changes them.
class MeshArrays
{
public:
  explicit MeshArrays(vtkPointSet& data);
  ~MeshArrays();
  MeshArrays(const MeshArrays&) = delete;
  MeshArrays& operator=(const MeshArrays&) = delete;

  [[nodiscard]] vtkIdType points() const noexcept { return mPoints; }
  /// Those that a 32-bit id can name; ids go from 0.
  [[nodiscard]] vtkIdType cells() const noexcept { return mCells; }
  /// Whether there are more cells than those.
  [[nodiscard]] bool has_more_cells() const noexcept { return mHasMoreCells; }

  /// Whether it is polygon data whose ids have to be settled.
  [[nodiscard]] bool may_have_own_ids() const;

  /// Finds out, with a look at each cell, whether the cells of polygon data have ids in another order than in
  /// their arrays, or types of their own, as deleted ones have. If so, either gives them the ids of the
  /// arrays, or reads them through the data set from now on.
  void settle_ids(bool may_change_ids);

  /// One for each cell of an unstructured grid; null for other data.
  [[nodiscard]] const unsigned char* types() const noexcept { return mTypes; }

  /// Whether the cells are read from arrays, not asked for one by one.
  [[nodiscard]] bool has_cell_arrays() const noexcept { return mPartCount > 0; }

  /// How many ids of points the cells have together, for cells in arrays.
  [[nodiscard]] vtkIdType connectivity_size() const noexcept;

  /// Identifies what has been read: the newest of all modification times, the places and sizes of all arrays.
  [[nodiscard]] std::vector<std::uintptr_t> state() const;

  /// Calls function(xyz) with the points' coordinates, three floats or doubles each.
  template<typename Function>
  decltype(auto) with_points(Function&& function) const
  {
    return mFloats != nullptr ? function(mFloats) : function(mDoubles);
  }

  /// Calls visit(id, type, count, ids) for the cells from first to last, the latter excluded, in order; it
  /// returns whether to go on. The ids of points are 32 or 64 bits wide. A cell that leaves its array, or has
  /// a point that does not exist, has the count -1. Returns whether all calls did.
  template<typename Visit>
  bool visit(vtkIdType first, vtkIdType last, Visit&& visit) const
  {
    if (mPartCount == 0) {
      return this->visit_by_id(first, last, visit);
    }
    for (int i = 0; i < mPartCount; ++i) {
      const Part& part = mParts[i];
      const vtkIdType begin = std::max(first - part.first, vtkIdType{0});
      const vtkIdType end = std::min(last - part.first, part.count);
      if (begin >= end) {
        continue;
      }
      const bool goes_on = part.is_wide
                               ? this->walk(part, begin, end, static_cast<const vtkTypeInt64*>(part.offsets),
                                            static_cast<const vtkTypeInt64*>(part.ids), visit)
                               : this->walk(part, begin, end, static_cast<const vtkTypeInt32*>(part.offsets),
                                            static_cast<const vtkTypeInt32*>(part.ids), visit);
      if (!goes_on) {
        return false;
      }
    }
    return true;
  }

  /// Calls function(ids) with the ids of the points of the cells from first to last, the latter excluded,
  /// when these are triangles that lie in one array, and have points that exist: 3 ids each, one cell after
  /// the other. Returns whether they are.
  template<typename Function>
  bool with_triangles(vtkIdType first, vtkIdType last, Function&& function) const
  {
    bool are_sound = false;
    this->with_ids(first, last, [&](const Part& part, const auto* offsets, const auto* ids) {
      are_sound = this->are_triangles(part, first - part.first, last - part.first, offsets, ids);
      if (are_sound) {
        function(ids + offsets[first - part.first]);
      }
    });
    return are_sound;
  }

  /// The same when all cells of the mesh are known to be such triangles, without a look.
  template<typename Function>
  void with_known_triangles(vtkIdType first, vtkIdType last, Function&& function) const
  {
    this->with_ids(first, last, [&](const Part& part, const auto* offsets, const auto* ids) {
      function(ids + offsets[0] + 3 * (first - part.first)); // the offsets stay unread
    });
  }

private:
  /// One array of cells.
  struct Part
  {
    const void* offsets;
    const void* ids;
    bool is_wide; // 64 bits
    vtkIdType first;
    vtkIdType count;
    vtkIdType size;         // of ids
    int smallest;           // number of points of a cell; below is an empty one
    unsigned char types[3]; // with smallest points, one more, and any number beyond
    vtkCellArray* array;
  };

  void read_points();
  void read_poly_data(vtkPolyData& data);
  void read_grid(vtkUnstructuredGrid& grid);
  void add_part(vtkCellArray& cells, int smallest, unsigned char type, unsigned char next,
                unsigned char beyond);
  void limit_cells(vtkIdType cells);
  vtkIdType ask_for_cell(vtkIdType id, int& type, const vtkIdType*& ids) const;

  /// Calls function(part, offsets, ids) with the array that has all of the cells, if there is one.
  template<typename Function>
  void with_ids(vtkIdType first, vtkIdType last, Function&& function) const
  {
    for (int i = 0; i < mPartCount; ++i) {
      const Part& part = mParts[i];
      if (first < part.first || first >= last || last > part.first + part.count) {
        continue;
      }
      if (part.is_wide) {
        function(part, static_cast<const vtkTypeInt64*>(part.offsets),
                 static_cast<const vtkTypeInt64*>(part.ids));
      } else {
        function(part, static_cast<const vtkTypeInt32*>(part.offsets),
                 static_cast<const vtkTypeInt32*>(part.ids));
      }
      return;
    }
  }

  // Without a branch for each cell: what is wrong anywhere is collected.
  template<typename Id>
  [[nodiscard]] bool are_triangles(const Part& part, vtkIdType begin, vtkIdType end, const Id* offsets,
                                   const Id* all_ids) const
  {
    using Bits = std::make_unsigned_t<Id>; // wraps around
    const Id from = offsets[begin];
    if (!has_type(part, begin, end, VTK_TRIANGLE) || from < 0 || 3 * (end - begin) > part.size - from) {
      return false;
    }
    Bits odd = 0;
    for (vtkIdType i = begin; i < end; ++i) {
      odd |= (static_cast<Bits>(offsets[i + 1]) - static_cast<Bits>(offsets[i])) ^ Bits { 3 };
    }
    const auto last = static_cast<Bits>(std::min(mPoints - 1, vtkIdType{std::numeric_limits<Id>::max()}));
    const Id* ids = all_ids + from;
    Bits wrong = 0; // the highest bit is set by a negative id and by one beyond the last
    for (vtkIdType i = 0; i < 3 * (end - begin); ++i) {
      wrong |= static_cast<Bits>(ids[i]) | (last - static_cast<Bits>(ids[i]));
    }
    return odd == 0 && static_cast<Id>(wrong) >= 0 && mPoints > 0;
  }

  [[nodiscard]] bool has_type(const Part& part, vtkIdType begin, vtkIdType end, unsigned char type) const
  {
    return mTypes == nullptr ? part.smallest == 3 && part.types[0] == type
                             : std::all_of(mTypes + begin, mTypes + end,
                                           [type](unsigned char of_cell) { return of_cell == type; });
  }

  template<typename Id>
  [[nodiscard]] bool are_points(const Id* ids, vtkIdType count) const
  {
    bool is_sound = true;
    for (vtkIdType i = 0; i < count; ++i) {
      is_sound &= static_cast<std::uint64_t>(ids[i]) < static_cast<std::uint64_t>(mPoints);
    }
    return is_sound;
  }

  template<typename Id, typename Visit>
  bool walk(const Part& part, vtkIdType begin, vtkIdType end, const Id* offsets, const Id* all_ids,
            Visit& visit) const
  {
    for (vtkIdType i = begin; i < end; ++i) {
      const vtkIdType from = offsets[i];
      vtkIdType count = offsets[i + 1] - from;
      const Id* ids = all_ids;
      int type = 0;
      if (from < 0 || count < 0 || offsets[i + 1] > part.size) {
        count = -1;
      } else {
        ids += from;
        count = this->are_points(ids, count) ? count : -1;
        type = mTypes != nullptr ? mTypes[i] : type_of(part, count);
        count = type == 0 && mTypes == nullptr ? std::min(count, vtkIdType{0}) : count;
      }
      if (!visit(part.first + i, type, count, ids)) {
        return false;
      }
    }
    return true;
  }

  [[nodiscard]] static int type_of(const Part& part, vtkIdType count)
  {
    const vtkIdType beyond = count - part.smallest;
    return beyond < 0 ? 0 : part.types[beyond > 1 ? 2 : beyond];
  }

  template<typename Visit>
  bool visit_by_id(vtkIdType first, vtkIdType last, Visit& visit) const
  {
    for (vtkIdType id = first; id < last; ++id) {
      int type = 0;
      const vtkIdType* ids = nullptr;
      const vtkIdType count = this->ask_for_cell(id, type, ids);
      if (!visit(id, type, count, ids)) {
        return false;
      }
    }
    return true;
  }

  vtkPointSet& mData;
  const float* mFloats = nullptr;
  const double* mDoubles = nullptr;
  std::vector<double> mConverted; // coordinates of any other kind
  vtkIdType mPoints = 0;
  vtkIdType mCells = 0;
  bool mHasMoreCells = false;
  Part mParts[4] = {};
  int mPartCount = 0;
  vtkUnsignedCharArray* mTypeArray = nullptr; // of a grid's cells
  const unsigned char* mTypes = nullptr;      // its values
  vtkSmartPointer<vtkIdList> mAsked;
};

} // namespace morrow
