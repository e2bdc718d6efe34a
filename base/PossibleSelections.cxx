// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "PossibleSelections.h"

#include "EntityOrder.h"
#include "GPicked.h"

#include <algorithm>
#include <iterator>

namespace morrow {

const EntitySelection* PossibleSelections::current() const
{
  return mCurrent < mSelections.size() ? &mSelections[mCurrent] : nullptr;
}

void PossibleSelections::set(int count, const EntitySelection* list)
{
  std::vector<EntitySelection> selections;
  if (list != nullptr && count > 0) {
    std::copy_if(list, list + count, std::back_inserter(selections),
                 [](const EntitySelection& selection) { return selection.entity() != nullptr; });
  }
  mSelections.swap(selections); // the entities of before may be deleted at the end, and call back
  mCurrent = mSelections.size();
  ++mRevision;
}

void PossibleSelections::move_to_next()
{
  mCurrent = mCurrent + 1 < mSelections.size() ? mCurrent + 1 : 0;
  ++mRevision;
}

void PossibleSelections::move_to_previous()
{
  const std::size_t before = mCurrent > 0 ? mCurrent : mSelections.size();
  mCurrent = before > 0 ? before - 1 : 0;
  ++mRevision;
}

void PossibleSelections::remove(const GPicked::PickedEntity* entity)
{
  if (entity == nullptr) {
    return;
  }
  const auto is_the_one = [&](const EntitySelection& s) { return is_same(s.entity(), entity); };
  const auto has_its_key = [&](const EntitySelection& s) { return s.entity()->key() == entity->key(); };
  auto found = std::find_if(mSelections.begin(), mSelections.end(), is_the_one);
  if (found == mSelections.end()) {
    found = std::find_if(mSelections.begin(), mSelections.end(), has_its_key);
  }
  if (found == mSelections.end()) {
    return;
  }
  const auto place = static_cast<std::size_t>(found - mSelections.begin());
  const EntitySelection removed =
      *found; // may be the last reference: the entity goes after the list is right
  mSelections.erase(found);
  if (mCurrent == place) {
    mCurrent = mSelections.size();
  } else if (mCurrent > place) {
    --mCurrent;
  }
}

} // namespace morrow
