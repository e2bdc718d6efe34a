// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

#include <vtkSmartPointer.h>
#include <vtkWeakPointer.h>

class vtkCallbackCommand;
class vtkObject;
class vtkPointSet;

namespace morrow {

class CellBlocks;
class MeshArrays;

/// The blocks of the data sets that pickers have picked in. They are made by the first pick, made anew when
/// the data set has changed since, and go when it dies.
class CellBlocksCache
{
public:
  /// The one that all pickers share; it lives as long as one of them.
  [[nodiscard]] static std::shared_ptr<CellBlocksCache> shared();

  CellBlocksCache();
  ~CellBlocksCache();
  CellBlocksCache(const CellBlocksCache&) = delete;
  CellBlocksCache& operator=(const CellBlocksCache&) = delete;

  /// The blocks of the data set, whose arrays the mesh has; null when there are few cells, or cells that are
  /// not in arrays. Settles the mesh's ids, unless it has been picked in since it has changed.
  [[nodiscard]] std::shared_ptr<const CellBlocks> blocks_of(vtkPointSet& data, MeshArrays& mesh,
                                                            bool may_change_ids);

  [[nodiscard]] std::size_t size() const noexcept { return mEntries.size(); }
  [[nodiscard]] std::size_t bytes() const noexcept;

private:
  struct Entry
  {
    std::vector<std::uintptr_t> state; // of the arrays
    std::shared_ptr<const CellBlocks> blocks;
    vtkWeakPointer<vtkObject> data; // dead when a host has removed the observer
    unsigned long tag;              // of the observer
  };

  void forget(vtkObject* data);

  std::unordered_map<vtkObject*, Entry> mEntries;
  vtkSmartPointer<vtkCallbackCommand> mDeletion;
};

} // namespace morrow
