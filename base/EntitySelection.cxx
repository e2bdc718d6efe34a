// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "EntitySelection.h"

#include "EntityOrder.h"
#include "GPicked.h"

#include <algorithm>
#include <utility>

EntitySelection::EntitySelection(GPicked::PickedEntity* entity, const float* point, float distance)
    : mEntity(entity), mDistance(distance)
{
  if (mEntity != nullptr) {
    mEntity->add_reference();
  }
  if (point != nullptr) {
    std::copy_n(point, 3, mPoint);
  }
}

EntitySelection::EntitySelection(const EntitySelection& other)
    : EntitySelection(other.mEntity, other.mPoint, other.mDistance)
{}

EntitySelection::EntitySelection(EntitySelection&& other) noexcept
{
  swap(other);
}

EntitySelection& EntitySelection::operator=(const EntitySelection& other)
{
  EntitySelection(other).swap(*this);
  return *this;
}

EntitySelection& EntitySelection::operator=(EntitySelection&& other) noexcept
{
  EntitySelection(std::move(other)).swap(*this);
  return *this;
}

EntitySelection::~EntitySelection()
{
  if (mEntity != nullptr) {
    mEntity->release();
  }
}

void EntitySelection::release_to_owner()
{
  if (mEntity != nullptr) {
    mEntity->release_to_owner();
    mEntity = nullptr;
  }
}

void EntitySelection::swap(EntitySelection& other) noexcept
{
  std::swap(mEntity, other.mEntity);
  std::swap(mPoint, other.mPoint);
  std::swap(mDistance, other.mDistance);
}

bool operator<(const EntitySelection& a, const EntitySelection& b)
{
  return morrow::comes_before(a.entity(), b.entity());
}

bool same_entity(const EntitySelection& a, const EntitySelection& b)
{
  return morrow::is_same(a.entity(), b.entity());
}
