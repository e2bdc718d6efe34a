// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "PickedList.h"

#include "EntityOrder.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace morrow {

namespace {

void sort_and_keep_one_of_each(PickedList::Selections& selections)
{
  std::stable_sort(selections.begin(), selections.end());
  selections.erase(std::unique(selections.begin(), selections.end(), same_entity), selections.end());
}

} // namespace

bool PickedList::contains(const GPicked::PickedEntity* entity) const
{
  return std::any_of(mSelections.begin(), mSelections.end(), [entity](const EntitySelection& selection) {
    return is_same(selection.entity(), entity);
  });
}

PickedList::Selections PickedList::add(int count, const EntitySelection* list)
{
  Selections added;
  std::copy_if(list, list + count, std::back_inserter(added),
               [](const EntitySelection& selection) { return selection.entity() != nullptr; });
  sort_and_keep_one_of_each(added);
  drop_those_in(added, mSelections.data(), mSelections.size());
  mSelections.insert(mSelections.end(), added.begin(), added.end());
  return added;
}

PickedList::Selections PickedList::remove(int count, const GPicked::PickedEntity* const* entities)
{
  const EntityLookup wanted(std::vector<const GPicked::PickedEntity*>(entities, entities + count));
  std::vector<std::pair<std::size_t, std::size_t>> found; // places in the order given and in the list
  for (std::size_t i = 0; i < mSelections.size(); ++i) {
    if (const auto place = wanted.find(mSelections[i].entity())) {
      found.emplace_back(*place, i);
    }
  }
  std::sort(found.begin(), found.end());
  Selections removed;
  removed.reserve(found.size());
  for (const auto& [place, i] : found) {
    removed.push_back(std::move(mSelections[i])); // leaves an empty one
  }
  mSelections.erase(std::remove_if(mSelections.begin(), mSelections.end(),
                                   [](const EntitySelection& s) { return s.entity() == nullptr; }),
                    mSelections.end());
  return removed;
}

PickedList::Selections PickedList::clear()
{
  return std::exchange(mSelections, {});
}

} // namespace morrow
