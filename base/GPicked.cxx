// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "GPicked.h"

#include <limits>

namespace GPicked {

namespace {

constexpr std::uint32_t gMostReferences = std::numeric_limits<std::uint32_t>::max();

} // namespace

PickedEntity::~PickedEntity() = default;

void PickedEntity::add_reference()
{
  if (mReferences != gMostReferences) {
    ++mReferences;
  }
}

void PickedEntity::release_to_owner()
{
  if (mReferences != 0 && mReferences != gMostReferences) {
    --mReferences;
  }
}

void PickedEntity::release()
{
  const bool had_reference = mReferences != 0;
  release_to_owner();
  if (had_reference && mReferences == 0) {
    delete this;
  }
}

PickCallbackNow::~PickCallbackNow() = default;

} // namespace GPicked
