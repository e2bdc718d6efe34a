// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "EntityOrder.h"

#include "EntitySelection.h"
#include "GPicked.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <iterator>
#include <typeinfo>

namespace morrow {

namespace {

/// Negative, 0 or positive, as strcmp; null is the empty text.
int compare_texts(const char* a, const char* b)
{
  return std::strcmp(a != nullptr ? a : "", b != nullptr ? b : "");
}

/// Any order will do for finding; this one asks nothing of the entities.
template<typename Entry>
bool has_less(const Entry& entry, const std::type_index& type, long long key)
{
  return entry.type != type ? entry.type < type : entry.key < key;
}

} // namespace

bool comes_before(const GPicked::PickedEntity* a, const GPicked::PickedEntity* b)
{
  if (a == nullptr || b == nullptr) {
    return a == nullptr && b != nullptr;
  }
  const std::type_info& type_of_a = typeid(*a);
  const std::type_info& type_of_b = typeid(*b);
  if (type_of_a == type_of_b) {
    return a->key() < b->key();
  }
  const int order = compare_texts(a->type_name(), b->type_name());
  return order != 0 ? order < 0 : type_of_a.before(type_of_b);
}

bool is_same(const GPicked::PickedEntity* a, const GPicked::PickedEntity* b)
{
  return a != nullptr && b != nullptr && typeid(*a) == typeid(*b) && a->key() == b->key();
}

EntityLookup::EntityLookup(const std::vector<const GPicked::PickedEntity*>& entities)
{
  mEntries.reserve(entities.size());
  for (std::size_t i = 0; i < entities.size(); ++i) {
    append(entities[i], i);
  }
  sort();
}

EntityLookup::EntityLookup(const std::vector<EntitySelection>& selections)
{
  mEntries.reserve(selections.size());
  for (std::size_t i = 0; i < selections.size(); ++i) {
    append(selections[i].entity(), i);
  }
  sort();
}

void EntityLookup::append(const GPicked::PickedEntity* entity, std::size_t place)
{
  if (entity != nullptr) {
    mEntries.push_back({typeid(*entity), entity->key(), place});
  }
}

void EntityLookup::sort()
{
  std::stable_sort(mEntries.begin(), mEntries.end(),
                   [](const Entry& a, const Entry& b) { return has_less(a, b.type, b.key); });
}

std::optional<std::size_t> EntityLookup::find(const GPicked::PickedEntity* entity) const
{
  if (entity == nullptr) {
    return std::nullopt;
  }
  const std::type_index type = typeid(*entity);
  const long long key = entity->key();
  const auto found =
      std::lower_bound(mEntries.begin(), mEntries.end(), key,
                       [&](const Entry& entry, long long wanted) { return has_less(entry, type, wanted); });
  if (found == mEntries.end() || found->type != type || found->key != key) {
    return std::nullopt;
  }
  return found->place;
}

void drop_those_in(std::vector<EntitySelection>& list, const EntitySelection* others, std::size_t count)
{
  const EntityLookup lookup(list);
  std::vector<bool> is_among_others(list.size());
  for (std::size_t i = 0; i < count; ++i) {
    if (const auto place = lookup.find(others[i].entity())) {
      is_among_others[*place] = true;
    }
  }
  const auto is_dropped = [&](const EntitySelection& selection) {
    const auto place = lookup.find(selection.entity());
    return place.has_value() && is_among_others[*place];
  };
  std::vector<EntitySelection> kept;
  std::copy_if(list.begin(), list.end(), std::back_inserter(kept), std::not_fn(is_dropped));
  list.swap(kept);
}

} // namespace morrow
