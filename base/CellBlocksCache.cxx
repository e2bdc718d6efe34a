// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "CellBlocksCache.h"

#include "CellBlocks.h"
#include "MeshArrays.h"

#include <vtkCallbackCommand.h>
#include <vtkCommand.h>
#include <vtkPointSet.h>

#include <utility>

namespace morrow {

namespace {

constexpr vtkIdType FewestCells = 512; // below, looking at all cells costs less

} // namespace

std::shared_ptr<CellBlocksCache> CellBlocksCache::shared()
{
  static std::weak_ptr<CellBlocksCache> present;
  std::shared_ptr<CellBlocksCache> cache = present.lock();
  if (cache == nullptr) {
    cache = std::make_shared<CellBlocksCache>();
    present = cache;
  }
  return cache;
}

CellBlocksCache::CellBlocksCache() : mDeletion(vtkSmartPointer<vtkCallbackCommand>::New())
{
  mDeletion->SetClientData(this);
  mDeletion->SetCallback([](vtkObject* data, unsigned long, void* cache, void*) {
    static_cast<CellBlocksCache*>(cache)->forget(data);
  });
}

CellBlocksCache::~CellBlocksCache()
{
  for (const auto& [address, entry] : mEntries) {
    if (entry.data != nullptr) {
      entry.data->RemoveObserver(entry.tag);
    }
  }
}

void CellBlocksCache::forget(vtkObject* data)
{
  mEntries.erase(data);
}

std::shared_ptr<const CellBlocks> CellBlocksCache::blocks_of(vtkPointSet& data, MeshArrays& mesh,
                                                             bool may_change_ids)
{
  if (!mesh.has_cell_arrays()) {
    return nullptr;
  }
  if (mesh.cells() < FewestCells) {
    mesh.settle_ids(may_change_ids);
    return nullptr;
  }
  std::vector<std::uintptr_t> state = mesh.state();
  const auto known = mEntries.find(&data);
  if (known != mEntries.end() && known->second.state == state) {
    return known->second.blocks;
  }
  mesh.settle_ids(may_change_ids);
  if (!mesh.has_cell_arrays()) {
    return nullptr;
  }
  auto blocks = std::make_shared<const CellBlocks>(mesh); // may throw: nothing is known of the data set then
  Entry& entry = mEntries[&data];
  if (entry.data == nullptr) {
    entry.data = &data;
    entry.tag = data.AddObserver(vtkCommand::DeleteEvent, mDeletion);
  }
  entry.state = std::move(state);
  entry.blocks = std::move(blocks);
  return entry.blocks;
}

std::size_t CellBlocksCache::bytes() const noexcept
{
  std::size_t bytes = 0;
  for (const auto& [data, entry] : mEntries) {
    bytes += entry.blocks->bytes();
  }
  return bytes;
}

} // namespace morrow
