// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "PropList.h"

#include <vtkActor2D.h>
#include <vtkProp.h>
#include <vtkPropCollection.h>
#include <vtkRenderer.h>
#include <vtkWindow.h>

namespace morrow {

namespace {

// Up to this many removals a search from the top of VTK's list for each one is cheaper than rebuilding the
// list.
constexpr std::size_t FewRemovals = 16;

// Then no table of them is needed.
bool come_in_order_of(vtkPropCollection& list, const std::vector<vtkProp*>& props)
{
  auto next = props.begin();
  vtkCollectionSimpleIterator cookie;
  list.InitTraversal(cookie);
  while (vtkProp* prop = list.GetNextProp(cookie)) {
    if (next != props.end() && prop == *next) {
      ++next;
    }
  }
  return next == props.end();
}

/// The props of the list for which leaves(prop) says no; it is called once for each in turn.
template<typename Leaves>
PropList::Props survivors_of(vtkPropCollection& list, Leaves&& leaves)
{
  PropList::Props survivors;
  vtkCollectionSimpleIterator cookie;
  list.InitTraversal(cookie);
  while (vtkProp* prop = list.GetNextProp(cookie)) {
    if (!leaves(prop)) {
      survivors.emplace_back(prop);
    }
  }
  return survivors;
}

PropList::Props survivors_without(const std::vector<vtkProp*>& leaving, vtkPropCollection& list)
{
  if (come_in_order_of(list, leaving)) {
    auto next = leaving.begin();
    return survivors_of(list, [&](vtkProp* prop) {
      const bool leaves = next != leaving.end() && prop == *next;
      next += leaves ? 1 : 0;
      return leaves;
    });
  }
  const std::unordered_set<vtkProp*> table(leaving.begin(), leaving.end());
  return survivors_of(list, [&](vtkProp* prop) { return table.count(prop) != 0; });
}

} // namespace

PropList::PropList(vtkRenderer& renderer) : mRenderer(renderer) {}

void PropList::refresh_members()
{
  vtkPropCollection* list = mRenderer.GetViewProps();
  if (list->GetMTime() == mMembersTime) {
    return;
  }
  mMembers.clear();
  mMembers.reserve(static_cast<std::size_t>(list->GetNumberOfItems()));
  vtkCollectionSimpleIterator cookie;
  list->InitTraversal(cookie);
  while (vtkProp* prop = list->GetNextProp(cookie)) {
    mMembers.insert(prop);
  }
  mMembersTime = list->GetMTime();
}

void PropList::add(const Props& props)
{
  refresh_members();
  vtkPropCollection* list = mRenderer.GetViewProps();
  for (const auto& prop : props) {
    if (prop != nullptr && mMembers.insert(prop).second) {
      list->AddItem(prop);
      prop->AddConsumer(&mRenderer);
    }
  }
  mMembersTime = list->GetMTime();
}

void PropList::remove(const Props& props)
{
  refresh_members();
  const std::vector<vtkProp*> present = take_present(props);
  if (present.empty()) {
    return;
  }
  if (vtkWindow* window = mRenderer.GetVTKWindow()) {
    window->MakeCurrent();
  }
  // What a prop does as it leaves, changes to this list included, is host code, and may throw: until all is
  // done, nothing that was remembered counts.
  mMembersTime = 0;
  const vtkMTimeType time_before = mRenderer.GetViewProps()->GetMTime();
  for (vtkProp* prop : present) {
    detach(prop);
  }
  const bool is_ours_alone = mRenderer.GetViewProps()->GetMTime() == time_before;
  if (present.size() <= FewRemovals) {
    erase_one_by_one(present);
  } else {
    erase_in_one_sweep(present);
  }
  mMembersTime = is_ours_alone ? mRenderer.GetViewProps()->GetMTime() : 0;
}

std::vector<vtkProp*> PropList::take_present(const Props& props)
{
  std::vector<vtkProp*> present;
  present.reserve(props.size());
  for (const auto& prop : props) {
    if (mMembers.erase(prop) != 0) {
      present.push_back(prop);
    }
  }
  return present;
}

void PropList::detach(vtkProp* prop)
{
  prop->ReleaseGraphicsResources(mRenderer.GetVTKWindow());
  prop->RemoveConsumer(&mRenderer);
}

void PropList::erase_one_by_one(const std::vector<vtkProp*>& props)
{
  for (vtkProp* prop : props) {
    mRenderer.GetViewProps()->RemoveItem(prop);
  }
}

// VTK's list gives no way to unlink a known element except the first one, so the survivors are put back into
// the emptied list.
void PropList::erase_in_one_sweep(const std::vector<vtkProp*>& props)
{
  vtkPropCollection* list = mRenderer.GetViewProps();
  const Props survivors = survivors_without(props, *list);
  list->RemoveAllItems();
  for (const auto& prop : survivors) {
    list->AddItem(prop);
  }
}

} // namespace morrow
