// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "GDataGroup.h"

#include <exception>
#include <utility>

#include "GView.h"
#include "ViewCalls.h"

#include <vtkMultiBlockDataSet.h>
#include <vtkProp.h>
#include <vtkRenderWindow.h>

/// A prop that shows a group, and the window that it is drawn in; both may be null.
struct GDataGroup::ShownProp
{
  vtkSmartPointer<vtkProp> prop;
  vtkSmartPointer<vtkRenderWindow> window;
};

// ---------------------------------------------------------------------------------------------------------
// The chain

/// What the groups of a chain share.
struct GDataGroup::Chain
{
  explicit Chain(GDataGroup* group) : first(group), last(group), room(group) {}

  GDataGroup* first;
  GDataGroup* last;

  // All groups before this one hold room_limit entities or more: an addition need not look at them.
  GDataGroup* room;
  std::uint32_t room_limit = 0;

  Cursor* cursors = nullptr; // those that walk the chain, the innermost first
};

/// Walks a chain that host code may change meanwhile.
class GDataGroup::Cursor
{
public:
  explicit Cursor(GDataGroup& start) : mChain(start.mChain), mOuter(mChain->cursors), mNext(&start)
  {
    mChain->cursors = this;
  }
  ~Cursor() { mChain->cursors = mOuter; }
  Cursor(const Cursor&) = delete;
  Cursor& operator=(const Cursor&) = delete;

  /// Goes to the first group, then to the next; false at the end of the chain.
  bool advance()
  {
    mCurrent = mCurrent != nullptr ? mCurrent->mNext : mNext;
    mNext = nullptr;
    return mCurrent != nullptr;
  }

  /// The group reached; null once it has left the chain.
  [[nodiscard]] GDataGroup* group() const { return mCurrent; }

  /// To be called before a group leaves the chain.
  static void step_off(const GDataGroup& leaving)
  {
    for (Cursor* cursor = leaving.mChain->cursors; cursor != nullptr; cursor = cursor->mOuter) {
      if (cursor->mCurrent == &leaving || cursor->mNext == &leaving) {
        cursor->mCurrent = nullptr;
        cursor->mNext = leaving.mNext;
      }
    }
  }

private:
  std::shared_ptr<Chain> mChain;
  Cursor* mOuter;
  GDataGroup* mCurrent = nullptr;
  GDataGroup* mNext; // while there is no current one
};

GDataGroup::GDataGroup() : mOwnChain(std::make_shared<Chain>(this)), mChain(mOwnChain) {}

GDataGroup::~GDataGroup()
{
  for (GDataGroupEntity* entity : mEntities) {
    entity->remove_owning_group(this);
  }
  while (GDataGroup* next = mNext) { // one by one: a destructor that called the next would need a deep stack
    next->leave_chain();
    delete next;
  }
  this->leave_chain();
}

// The group is then alone in a chain of its own again.
void GDataGroup::leave_chain()
{
  Cursor::step_off(*this);
  if (mPrevious == nullptr) {
    return; // a head that is being destroyed; all others have gone
  }
  if (mChain->room == this) {
    mChain->room = mPrevious;
  }
  mPrevious->mNext = mNext;
  (mNext != nullptr ? mNext->mPrevious : mChain->last) = mPrevious;
  mPrevious = nullptr;
  mNext = nullptr;
  mChain = mOwnChain;
}

bool GDataGroup::is_reached_from(const GDataGroup& start) const
{
  return mChain == start.mChain && mPosition >= start.mPosition;
}

std::vector<GDataGroup::DataSets> GDataGroup::all_groups(const GDataGroup* group)
{
  std::vector<DataSets> all;
  for (; group != nullptr; group = group->mNext) {
    all.push_back(group->mDataSets);
  }
  return all;
}

// ---------------------------------------------------------------------------------------------------------
// Adding

GDataGroup::DataSets GDataGroup::add_entity(GDataGroupEntity* entity)
{
  if (entity == nullptr) {
    return {};
  }
  GDataGroup* group = this->group_with_room();
  DataSets to_show = group->is_empty() ? group->mDataSets : DataSets();
  group->insert(entity);
  return to_show;
}

GDataGroup* GDataGroup::group_with_room()
{
  const std::uint32_t limit = mNumberPerGroup;
  if (limit == 0) {
    return this;
  }
  GDataGroup* group = this->find_room(limit);
  return group != nullptr ? group : this->append_group();
}

// The first group from this one on that holds fewer entities than the limit; null if there is none.
GDataGroup* GDataGroup::find_room(std::uint32_t limit)
{
  Chain& chain = *mChain;
  if (chain.room_limit != limit) {
    chain.room_limit = limit;
    chain.room = chain.first;
  }
  const bool skips_groups = chain.room->mPosition < mPosition;
  GDataGroup* group = skips_groups ? this : chain.room;
  while (group->mEntities.size() >= limit && group->mNext != nullptr) {
    group = group->mNext;
  }
  if (!skips_groups) {
    chain.room = group;
  }
  return group->mEntities.size() < limit ? group : nullptr;
}

// The new last group; the one that is last if the host has none to give.
GDataGroup* GDataGroup::append_group()
{
  GDataGroup* group = mChain->last->new_group();
  GDataGroup* last = mChain->last;
  const bool is_alone = group != nullptr && group != this && group->mPrevious == nullptr &&
                        group->mNext == nullptr && group->mChain->cursors == nullptr;
  if (!is_alone) {
    return last;
  }
  group->mChain = mChain;
  group->mPosition = last->mPosition + 1;
  group->mPrevious = last;
  last->mNext = group;
  mChain->last = group;
  return group;
}

void GDataGroup::insert(GDataGroupEntity* entity)
{
  const auto place = mEntities.insert(entity);
  try {
    entity->add_owning_group(this);
  } catch (...) {
    mEntities.erase(place);
    throw;
  }
  this->modified();
}

// ---------------------------------------------------------------------------------------------------------
// Removing

GDataGroup::DataSets GDataGroup::remove_entity(GDataGroupEntity* entity)
{
  GDataGroup* group = entity != nullptr ? this->first_group_of(*entity) : nullptr;
  if (group == nullptr) {
    return {};
  }
  group->erase(entity);
  if (!group->is_empty()) {
    return {};
  }
  DataSets to_hide = group->mDataSets;
  if (group != this) {
    group->leave_chain();
    delete group;
  }
  return to_hide;
}

// The first group from this one on that the entity belongs to; null if there is none. An entity of few groups
// is asked for them, else the groups are asked.
GDataGroup* GDataGroup::first_group_of(const GDataGroupEntity& entity)
{
  constexpr std::size_t Few = 16;
  const std::multiset<GDataGroup*>& owners = entity.owning_groups();
  GDataGroup* first = nullptr;
  if (owners.size() <= Few) {
    for (GDataGroup* group : owners) {
      if (group->is_reached_from(*this) && (first == nullptr || first->is_reached_from(*group))) {
        first = group;
      }
    }
    return first;
  }
  for (first = this; first != nullptr && owners.count(first) == 0;) {
    first = first->mNext;
  }
  return first;
}

void GDataGroup::erase(GDataGroupEntity* entity)
{
  entity->remove_owning_group(this);
  const auto place = mEntities.find(entity);
  if (place != mEntities.end()) {
    mEntities.erase(place);
  }
  if (mPosition < mChain->room->mPosition) {
    mChain->room = this;
  }
  this->modified();
}

// ---------------------------------------------------------------------------------------------------------
// Updating

void GDataGroup::update_all(const ViewProps& views)
{
  ViewHandles handles; // the host may destroy views while it updates a group
  for (const auto& [view, parts] : views) {
    if (view != nullptr) {
      handles.emplace(view, view->handle());
    }
  }
  std::exception_ptr first;
  Cursor cursor(*this);
  while (cursor.advance()) {
    if (!cursor.group()->is_modified()) {
      continue;
    }
    const std::vector<ShownProp> shown = cursor.group()->shown_props(views, handles);
    morrow::keep_first(first, morrow::exception_of([&] { release_graphics_resources(shown); }));
    if (GDataGroup* group = cursor.group()) { // letting a prop's resources go may run host code
      morrow::keep_first(first, morrow::exception_of([=] { group->update_data(); }));
    }
  }
  if (first != nullptr) {
    std::rethrow_exception(first);
  }
}

std::vector<GDataGroup::ShownProp> GDataGroup::shown_props(const ViewProps& views,
                                                           const ViewHandles& handles) const
{
  std::vector<ShownProp> all;
  for (vtkMultiBlockDataSet* data_set : mDataSets) {
    for (const auto& [view, parts] : views) {
      const auto shown = parts.find(data_set);
      const auto handle = handles.find(view);
      if (handle == handles.end() || *handle->second == nullptr || shown == parts.end()) {
        continue;
      }
      for (const auto& prop : shown->second) {
        all.push_back({prop, view->get_render_window()});
      }
    }
  }
  return all;
}

void GDataGroup::release_graphics_resources(const std::vector<ShownProp>& props)
{
  for (const auto& [prop, window] : props) {
    if (prop != nullptr) {
      prop->ReleaseGraphicsResources(window);
    }
  }
}

// ---------------------------------------------------------------------------------------------------------
// Entities

GDataGroupEntity::~GDataGroupEntity()
{
  while (!mOwningGroups.empty()) {
    (*mOwningGroups.begin())->remove_entity(this);
  }
}

void GDataGroupEntity::add_owning_group(GDataGroup* group)
{
  if (group != nullptr) {
    mOwningGroups.insert(group);
  }
}

void GDataGroupEntity::remove_owning_group(GDataGroup* group)
{
  const auto place = mOwningGroups.find(group);
  if (place != mOwningGroups.end()) {
    mOwningGroups.erase(place);
  }
}

void GDataGroupEntity::modify_owning_groups()
{
  for (GDataGroup* group : mOwningGroups) {
    group->modified();
  }
}
