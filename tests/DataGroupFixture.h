// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "GDataGroup.h"
#include "MRUtil.h"

#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkPolyData.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <set>
#include <utility>
#include <vector>

/// What the tests of data groups share.
namespace morrow_test {

using DataSets = GDataGroup::DataSets;

class Entity : public GDataGroupEntity
{};

/// A group with one block for each entity in each of its data sets.
class Group : public GDataGroup
{
public:
  explicit Group(int limit = 400, std::size_t num_data_sets = 1) : mLimit(limit)
  {
    this->set_number_per_group(limit);
    for (std::size_t i = 0; i < num_data_sets; ++i) {
      this->mutable_data_sets().push_back(vtkSmartPointer<vtkMultiBlockDataSet>::New());
    }
    ++alive;
  }
  ~Group() override { --alive; }
  Group(const Group&) = delete;
  Group& operator=(const Group&) = delete;

  GDataGroup* new_group() override
  {
    ++asked;
    return on_new_group ? on_new_group() : new Group(mLimit, this->data_sets().size());
  }

  void update_data() override
  {
    ++updates;
    if (on_update) {
      const std::function<void()> running = on_update; // it may destroy the group
      running();
      return;
    }
    this->rebuild();
  }

  void rebuild()
  {
    for (vtkMultiBlockDataSet* data_set : this->data_sets()) {
      data_set->SetNumberOfBlocks(0);
      unsigned int block = 0;
      for (GDataGroupEntity* entity : this->entities()) {
        vtkNew<vtkPolyData> data;
        data_set->SetBlock(block++, data);
        mTied.push_back(data);
        MRUtil::set_back_pointer(data, entity);
      }
    }
    this->clear_modified();
  }

  using GDataGroup::clear_modified;
  using GDataGroup::mutable_data_sets;

  std::function<GDataGroup*()> on_new_group; ///< not handed on to the groups that are made
  std::function<void()> on_update;
  int asked = 0; ///< for a further group
  int updates = 0;

  static inline int alive = 0; ///< groups of this process

private:
  /// Ends the ties of its data sets, which would keep their arrays else.
  struct Ties : std::vector<vtkSmartPointer<vtkPolyData>>
  {
    ~Ties()
    {
      for (vtkPolyData* data : *this) {
        MRUtil::set_back_pointer(data, nullptr);
      }
    }
  };

  int mLimit;
  Ties mTied;
};

/// The groups of a chain from this one on.
inline std::vector<GDataGroup*> chain_of(GDataGroup& head)
{
  std::vector<GDataGroup*> chain;
  for (GDataGroup* group = &head; group != nullptr; group = group->next()) {
    chain.push_back(group);
  }
  return chain;
}

/// How many entities each group of the chain holds.
inline std::vector<std::size_t> sizes(const GDataGroup& head)
{
  std::vector<std::size_t> all;
  for (const GDataGroup* group = &head; group != nullptr; group = group->next()) {
    all.push_back(group->entities().size());
  }
  return all;
}

inline void clear_modified(GDataGroup& head)
{
  for (GDataGroup* group : chain_of(head)) {
    static_cast<Group*>(group)->clear_modified();
  }
}

inline Group& group_at(GDataGroup& head, std::size_t index)
{
  return *static_cast<Group*>(chain_of(head).at(index));
}

inline std::vector<std::unique_ptr<Entity>> make_entities(std::size_t count)
{
  std::vector<std::unique_ptr<Entity>> all(count);
  for (auto& entity : all) {
    entity = std::make_unique<Entity>();
  }
  return all;
}

/// Adds each; drops what is to be shown.
inline void add_all(GDataGroup& head, const std::vector<std::unique_ptr<Entity>>& entities)
{
  for (const auto& entity : entities) {
    head.add_entity(entity.get());
  }
}

} // namespace morrow_test
