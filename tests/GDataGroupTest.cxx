// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "DataGroupFixture.h"
#include "ViewFixture.h"

#include <climits>
#include <cstdint>
#include <type_traits>

namespace {

using namespace morrow_test;
using Sizes = std::vector<std::size_t>;

// ---------------------------------------------------------------------------------------------------------
// Groups and entities by themselves

TEST(GDataGroup, StartsEmptyAndUnmodifiedWithoutDataSets)
{
  Group group(400, 0);
  EXPECT_TRUE(group.is_empty());
  EXPECT_TRUE(group.entities().empty());
  EXPECT_FALSE(group.is_modified());
  EXPECT_EQ(group.next(), nullptr);
  EXPECT_TRUE(group.data_sets().empty());
  EXPECT_EQ(group.all_groups(), std::vector<DataSets>{DataSets()});
  EXPECT_TRUE(std::is_abstract_v<GDataGroup>);
  EXPECT_TRUE(std::has_virtual_destructor_v<GDataGroup>);
  EXPECT_TRUE(std::has_virtual_destructor_v<GDataGroupEntity>);
  group.modified();
  EXPECT_TRUE(group.is_modified());
}

/// A group that leaves the limit alone.
class DefaultGroup : public GDataGroup
{
public:
  GDataGroup* new_group() override { return new DefaultGroup; }
  void update_data() override {}
};

TEST(GDataGroup, HoldsFourHundredUnlessToldOtherwise)
{
  const auto entities = make_entities(401);
  DefaultGroup head;
  add_all(head, entities);
  EXPECT_EQ(sizes(head), (Sizes{400, 1}));
}

TEST(GDataGroup, NullArgumentsDoNothing)
{
  Group head;
  Entity entity;
  EXPECT_TRUE(head.add_entity(nullptr).empty());
  EXPECT_TRUE(head.remove_entity(nullptr).empty());
  EXPECT_FALSE(head.is_modified());
  EXPECT_TRUE(GDataGroup::all_groups(nullptr).empty());
  entity.add_owning_group(nullptr);
  entity.remove_owning_group(nullptr);
  entity.remove_owning_group(&head); // not one of its groups
  entity.modify_owning_groups();
  EXPECT_TRUE(entity.owning_groups().empty());
  EXPECT_FALSE(head.is_modified());
}

TEST(GDataGroupEntity, CountsItsMembershipsAndMarksItsGroups)
{
  Group one;
  Group two;
  Entity entity;
  entity.add_owning_group(&one);
  entity.add_owning_group(&one);
  entity.add_owning_group(&two);
  EXPECT_EQ(entity.owning_groups(), (std::multiset<GDataGroup*>{&one, &one, &two}));
  entity.remove_owning_group(&one);
  EXPECT_EQ(entity.owning_groups(), (std::multiset<GDataGroup*>{&one, &two}));
  EXPECT_FALSE(one.is_modified());
  entity.modify_owning_groups();
  EXPECT_TRUE(one.is_modified());
  EXPECT_TRUE(two.is_modified());
}

// ---------------------------------------------------------------------------------------------------------
// Adding

TEST(GDataGroup, ReturnsTheDataSetsOfAGroupThatGetsItsFirstEntity)
{
  const auto entities = make_entities(3);
  Group head(2, 3);
  const DataSets first = head.add_entity(entities[0].get());
  EXPECT_EQ(first, head.data_sets());
  EXPECT_EQ(first.size(), 3U);
  EXPECT_TRUE(head.is_modified());
  EXPECT_TRUE(head.add_entity(entities[1].get()).empty());
  EXPECT_EQ(head.asked, 0);
  clear_modified(head);
  const DataSets third = head.add_entity(entities[2].get());
  EXPECT_EQ(head.asked, 1);
  ASSERT_NE(head.next(), nullptr);
  EXPECT_EQ(third, head.next()->data_sets());
  EXPECT_EQ(third.size(), 3U);
  EXPECT_FALSE(head.is_modified());
  EXPECT_TRUE(head.next()->is_modified());
  EXPECT_EQ(sizes(head), (Sizes{2, 1}));
  EXPECT_EQ(entities[2]->owning_groups(), (std::multiset<GDataGroup*>{head.next()}));
  EXPECT_EQ(head.all_groups(), (std::vector<DataSets>{head.data_sets(), third}));
}

TEST(GDataGroup, AsksTheLastGroupForTheNext)
{
  const auto entities = make_entities(3);
  Group head(1);
  add_all(head, entities);
  EXPECT_EQ(sizes(head), (Sizes{1, 1, 1}));
  EXPECT_EQ(head.asked, 1);
  EXPECT_EQ(group_at(head, 1).asked, 1);
  EXPECT_EQ(group_at(head, 2).asked, 0);
}

TEST(GDataGroup, FillsTheFirstGroupWithRoomAlsoAfterRemovals)
{
  const auto entities = make_entities(6);
  const auto more = make_entities(3);
  Group head(2);
  add_all(head, entities);
  head.remove_entity(entities[3].get()); // of the second group
  head.remove_entity(entities[0].get()); // of the first
  EXPECT_EQ(sizes(head), (Sizes{1, 1, 2}));
  head.add_entity(more[0].get());
  EXPECT_EQ(sizes(head), (Sizes{2, 1, 2}));
  head.add_entity(more[1].get());
  EXPECT_EQ(sizes(head), (Sizes{2, 2, 2}));
  head.add_entity(more[2].get());
  EXPECT_EQ(sizes(head), (Sizes{2, 2, 2, 1}));
}

TEST(GDataGroup, ALimitOfZeroPutsAllIntoTheGroupCalled)
{
  const auto entities = make_entities(1000);
  Group head(0);
  add_all(head, entities);
  EXPECT_EQ(sizes(head), Sizes{1000});
  EXPECT_EQ(head.asked, 0);
}

TEST(GDataGroup, ANegativeLimitIsAHugeOne)
{
  const auto entities = make_entities(1000);
  Group head(-1);
  add_all(head, entities);
  head.set_number_per_group(INT_MIN);
  add_all(head, make_entities(1));
  EXPECT_EQ(sizes(head), Sizes{1000});
}

TEST(GDataGroup, AChangedLimitAppliesToLaterAdditions)
{
  const auto entities = make_entities(4);
  const auto more = make_entities(3);
  Group head(2);
  add_all(head, entities);
  head.set_number_per_group(3);
  add_all(head, more);
  EXPECT_EQ(sizes(head), (Sizes{3, 3, 1})); // the first two got room again
  head.set_number_per_group(1);
  Entity late;
  head.add_entity(&late);
  EXPECT_EQ(sizes(head), (Sizes{3, 3, 1, 1})); // nothing is moved
  head.set_number_per_group(4);
  Entity later;
  head.add_entity(&later);
  EXPECT_EQ(sizes(head), (Sizes{4, 3, 1, 1}));
}

TEST(GDataGroup, AnAdditionThroughALaterGroupStartsThere)
{
  const auto entities = make_entities(4);
  Group head(2);
  add_all(head, entities);
  head.remove_entity(entities[0].get());
  Entity late;
  head.next()->add_entity(&late);
  EXPECT_EQ(sizes(head), (Sizes{1, 2, 1}));
  Entity later;
  head.add_entity(&later);
  EXPECT_EQ(sizes(head), (Sizes{2, 2, 1})); // the head still knows of its room
  Entity zero;
  head.next()->set_number_per_group(0);
  head.next()->add_entity(&zero);
  EXPECT_EQ(sizes(head), (Sizes{2, 3, 1}));
}

TEST(GDataGroup, AnEntityAddedTwiceBelongsTwice)
{
  Group head(3);
  Entity entity;
  EXPECT_EQ(head.add_entity(&entity), head.data_sets());
  EXPECT_TRUE(head.add_entity(&entity).empty());
  EXPECT_EQ(head.entities().count(&entity), 2U);
  EXPECT_EQ(entity.owning_groups().count(&head), 2U);
  EXPECT_TRUE(head.remove_entity(&entity).empty());
  EXPECT_EQ(head.entities().count(&entity), 1U);
  EXPECT_EQ(head.remove_entity(&entity), head.data_sets());
  EXPECT_TRUE(head.is_empty());
  EXPECT_TRUE(entity.owning_groups().empty());
}

// ---------------------------------------------------------------------------------------------------------
// Removing

TEST(GDataGroup, RemovingTheOnlyEntityOfALaterGroupDestroysTheGroup)
{
  const auto entities = make_entities(3);
  Group head(1, 2);
  add_all(head, entities);
  const DataSets second = head.next()->data_sets();
  GDataGroup* third = head.next()->next();
  const int alive = Group::alive;
  EXPECT_EQ(head.remove_entity(entities[1].get()), second);
  EXPECT_EQ(Group::alive, alive - 1);
  EXPECT_EQ(head.next(), third);
  EXPECT_EQ(third->entities(), (std::multiset<GDataGroupEntity*>{entities[2].get()}));
  EXPECT_TRUE(entities[1]->owning_groups().empty());
}

TEST(GDataGroup, RemovingTheLastEntityOfTheHeadKeepsTheHead)
{
  const auto entities = make_entities(2);
  Group head(1);
  add_all(head, entities);
  clear_modified(head);
  EXPECT_EQ(head.remove_entity(entities[0].get()), head.data_sets());
  EXPECT_TRUE(head.is_empty());
  EXPECT_TRUE(head.is_modified());
  ASSERT_NE(head.next(), nullptr);
  EXPECT_FALSE(head.next()->is_modified());
  Entity again; // an emptied head is shown anew
  EXPECT_EQ(head.add_entity(&again), head.data_sets());
}

TEST(GDataGroup, RemovesOneMembershipFromTheFirstGroupOfTheChain)
{
  const auto others = make_entities(2);
  Entity entity;
  Group head(2);
  head.add_entity(&entity);
  head.add_entity(others[0].get());
  head.add_entity(&entity);
  head.add_entity(others[1].get());
  clear_modified(head);
  EXPECT_TRUE(head.remove_entity(&entity).empty());
  EXPECT_EQ(sizes(head), (Sizes{1, 2}));
  EXPECT_TRUE(head.is_modified());
  EXPECT_FALSE(head.next()->is_modified());
  EXPECT_TRUE(head.remove_entity(&entity).empty());
  EXPECT_EQ(sizes(head), (Sizes{1, 1}));
  EXPECT_TRUE(head.remove_entity(&entity).empty()); // no more
  EXPECT_EQ(sizes(head), (Sizes{1, 1}));
}

TEST(GDataGroup, AnEntityOfManyGroupsLeavesThemInChainOrder)
{
  constexpr std::size_t Many = 40;
  Entity entity;
  Group head(1);
  for (std::size_t i = 0; i < Many; ++i) {
    head.add_entity(&entity);
  }
  Entity last;
  head.add_entity(&last);
  head.remove_entity(&entity);
  EXPECT_TRUE(head.is_empty());
  for (std::size_t i = 1; i < Many; ++i) {
    const DataSets second = head.next()->data_sets();
    EXPECT_EQ(head.remove_entity(&entity), second);
  }
  EXPECT_EQ(sizes(head), (Sizes{0, 1}));
  EXPECT_EQ(head.next()->entities().count(&last), 1U);
}

TEST(GDataGroup, ARemovalThroughALaterGroupTreatsItAsTheHead)
{
  const auto entities = make_entities(3);
  Group head(1);
  add_all(head, entities);
  GDataGroup* second = head.next();
  EXPECT_TRUE(second->remove_entity(entities[0].get()).empty()); // it is before this group
  EXPECT_EQ(second->remove_entity(entities[1].get()), second->data_sets());
  EXPECT_EQ(sizes(head), (Sizes{1, 0, 1}));
  const DataSets third = second->next()->data_sets();
  EXPECT_EQ(second->remove_entity(entities[2].get()), third);
  EXPECT_EQ(sizes(head), (Sizes{1, 0}));
}

TEST(GDataGroup, LeavesOtherChainsAlone)
{
  Entity entity;
  Group one(1);
  Group two(1);
  one.add_entity(&entity);
  two.add_entity(&entity);
  clear_modified(one);
  EXPECT_EQ(two.remove_entity(&entity), two.data_sets());
  EXPECT_TRUE(two.remove_entity(&entity).empty());
  EXPECT_EQ(one.entities().count(&entity), 1U);
  EXPECT_FALSE(one.is_modified());
}

TEST(GDataGroup, AnEntityThatOnlySaysItBelongsIsTakenAtItsWord)
{
  Group head;
  Entity member;
  Entity stranger;
  head.add_entity(&member);
  clear_modified(head);
  stranger.add_owning_group(&head);
  EXPECT_TRUE(head.remove_entity(&stranger).empty());
  EXPECT_TRUE(stranger.owning_groups().empty());
  EXPECT_TRUE(head.is_modified());
  EXPECT_EQ(head.entities().size(), 1U);
}

// ---------------------------------------------------------------------------------------------------------
// Destroying

TEST(GDataGroup, DestroyingTheHeadDestroysTheChainAndFreesTheEntities)
{
  const auto entities = make_entities(5);
  const int alive = Group::alive;
  auto head = std::make_unique<Group>(2);
  add_all(*head, entities);
  head->add_entity(entities[0].get());
  const vtkWeakPointer<vtkMultiBlockDataSet> data_set(head->next()->data_sets()[0].Get());
  EXPECT_EQ(Group::alive, alive + 3);
  head.reset();
  EXPECT_EQ(Group::alive, alive);
  EXPECT_EQ(data_set, nullptr);
  for (const auto& entity : entities) {
    EXPECT_TRUE(entity->owning_groups().empty());
  }
}

TEST(GDataGroup, DestroyingAGroupBehindTheHeadEndsTheChainThere)
{
  const auto entities = make_entities(8);
  const int alive = Group::alive;
  Group head(2);
  add_all(head, entities);
  delete head.next()->next();
  EXPECT_EQ(Group::alive, alive + 2);
  EXPECT_EQ(sizes(head), (Sizes{2, 2}));
  const auto more = make_entities(3);
  head.add_entity(more[0].get());
  EXPECT_EQ(sizes(head), (Sizes{2, 2, 1}));
  delete head.next();
  EXPECT_EQ(sizes(head), Sizes{2});
  head.add_entity(more[1].get());
  EXPECT_EQ(sizes(head), (Sizes{2, 1}));
}

TEST(GDataGroup, DestroyingAnEntityKeepsTheGroupsItEmpties)
{
  auto entities = make_entities(3);
  Group head(1);
  add_all(head, entities);
  head.add_entity(entities[1].get());
  clear_modified(head);
  entities[1].reset();
  EXPECT_EQ(sizes(head), (Sizes{1, 0, 1, 0}));
  EXPECT_FALSE(head.is_modified());
  EXPECT_TRUE(head.next()->is_modified());
  EXPECT_TRUE(group_at(head, 3).is_modified());
  Entity next; // takes the first room there is
  const DataSets shown = head.add_entity(&next);
  EXPECT_EQ(shown, head.next()->data_sets());
}

TEST(GDataGroup, ALongChainIsDestroyedWithoutADeepStack)
{
  constexpr std::size_t Many = 200'000;
  const int alive = Group::alive;
  Entity entity;
  auto head = std::make_unique<Group>(1, 0);
  for (std::size_t i = 0; i < Many; ++i) {
    head->add_entity(&entity);
  }
  EXPECT_EQ(Group::alive, alive + static_cast<int>(Many));
  EXPECT_EQ(head->all_groups().size(), Many);
  head.reset();
  EXPECT_EQ(Group::alive, alive);
  EXPECT_TRUE(entity.owning_groups().empty());
}

// Walking the chain from its head for each would take 2e10 steps, and the test longer than it may.
TEST(GDataGroup, EntitiesOfALongChainComeAndGoInAnyOrder)
{
  constexpr std::size_t Many = 200'000;
  Group head(1, 0);
  const auto entities = make_entities(Many);
  add_all(head, entities);
  for (std::size_t i = 0; i < Many; ++i) {
    head.remove_entity(entities[(i * 7'654'321) % Many].get());
  }
  EXPECT_EQ(sizes(head), Sizes{0});
}

// ---------------------------------------------------------------------------------------------------------
// Updating

TEST(GDataGroup, UpdatesTheModifiedGroupsOnly)
{
  const auto entities = make_entities(3);
  Group head(1);
  add_all(head, entities);
  head.update_all({});
  EXPECT_EQ(head.updates, 1);
  EXPECT_EQ(group_at(head, 2).updates, 1);
  EXPECT_FALSE(head.is_modified());
  EXPECT_EQ(head.data_sets()[0]->GetNumberOfBlocks(), 1U);
  EXPECT_EQ(MRUtil::get_back_pointer(vtkDataSet::SafeDownCast(head.data_sets()[0]->GetBlock(0))),
            entities[0].get());
  entities[1]->modify_owning_groups();
  head.update_all({});
  EXPECT_EQ(head.updates, 1);
  EXPECT_EQ(group_at(head, 1).updates, 2);
  EXPECT_EQ(group_at(head, 2).updates, 1);
  head.modified();
  head.next()->update_all({}); // from there on
  EXPECT_EQ(head.updates, 1);
  EXPECT_TRUE(head.is_modified());
}

TEST(GDataGroup, DoesNotClearTheFlagItself)
{
  Group head;
  head.on_update = [] {};
  head.modified();
  head.update_all({});
  head.update_all({});
  EXPECT_EQ(head.updates, 2);
  EXPECT_TRUE(head.is_modified());
}

/// Notes the windows that it is to let its graphics resources go of.
class ReleaseNoter : public vtkActor
{
public:
  static vtkSmartPointer<ReleaseNoter> make()
  {
    auto* prop = new ReleaseNoter;
    prop->InitializeObjectBase();
    return vtkSmartPointer<ReleaseNoter>::Take(prop);
  }
  void ReleaseGraphicsResources(vtkWindow* window) override
  {
    windows.push_back(window);
    if (on_release) {
      on_release();
    }
  }
  std::vector<vtkWindow*> windows;
  std::function<void()> on_release;
};

using Windows = std::vector<vtkWindow*>;

TEST(GDataGroup, ReleasesTheGraphicsResourcesOfModifiedGroupsBeforeTheirUpdate)
{
  const auto entities = make_entities(2);
  Group head(1, 2);
  add_all(head, entities);
  clear_modified(head);
  group_at(head, 1).modified();
  GView one;
  GView two;
  const auto of_head = ReleaseNoter::make();
  const auto shared = ReleaseNoter::make();
  const auto in_two = ReleaseNoter::make();
  GDataGroup::ViewProps views;
  views[&one][head.data_sets()[0]] = {of_head};
  views[&one][head.next()->data_sets()[0]] = {shared, nullptr};
  views[&one][head.next()->data_sets()[1]] = {shared};
  views[&two][head.next()->data_sets()[1]] = {in_two};
  group_at(head, 1).on_update = [&] { EXPECT_EQ(in_two->windows.size(), 1U); };
  head.update_all(views);
  EXPECT_EQ(group_at(head, 1).updates, 1);
  EXPECT_TRUE(of_head->windows.empty());
  EXPECT_EQ(shared->windows, (Windows{one.get_render_window(), one.get_render_window()}));
  EXPECT_EQ(in_two->windows, Windows{two.get_render_window()});
}

TEST(GDataGroup, ViewsWithoutWindowAndNullViewsAreTaken)
{
  Group head;
  Entity entity;
  head.add_entity(&entity);
  GView view;
  view.set_render_window(nullptr);
  const auto plain = flat_composite_actor(head.data_sets()[0], kRed);
  const auto noter = ReleaseNoter::make();
  GDataGroup::ViewProps views;
  views[nullptr][head.data_sets()[0]] = {noter};
  views[&view][head.data_sets()[0]] = {plain, noter};
  head.update_all(views);
  EXPECT_EQ(noter->windows, Windows{nullptr});
  EXPECT_FALSE(head.is_modified());
}

TEST(GDataGroup, ViewsMayBeDestroyedWhileGroupsAreUpdated)
{
  const auto entities = make_entities(2);
  Group head(1, 2);
  add_all(head, entities);
  auto view = std::make_unique<GView>();
  const auto noter = ReleaseNoter::make();
  GDataGroup::ViewProps views;
  views[view.get()][head.next()->data_sets()[0]] = {noter};
  head.on_update = [&] { view.reset(); };
  head.update_all(views);
  EXPECT_EQ(group_at(head, 1).updates, 1);
  EXPECT_TRUE(noter->windows.empty());
}

// ---------------------------------------------------------------------------------------------------------
// Host code

TEST(GDataGroup, OverfillsTheLastGroupWhenNoFurtherOneComes)
{
  const auto entities = make_entities(4);
  Group head(1);
  Group other(1);
  Entity one;
  Entity two;
  other.add_entity(&one);
  other.add_entity(&two);
  add_all(head, make_entities(0));
  head.add_entity(entities[0].get());
  const std::vector<GDataGroup*> useless = {nullptr, &head, &other, other.next()};
  for (GDataGroup* group : useless) {
    head.on_new_group = [=] { return group; };
    Entity entity;
    EXPECT_TRUE(head.add_entity(&entity).empty());
    EXPECT_EQ(sizes(head), Sizes{2});
    EXPECT_EQ(sizes(other), (Sizes{1, 1}));
    head.remove_entity(&entity);
  }
  head.on_new_group = nullptr;
  head.add_entity(entities[1].get());
  group_at(head, 1).on_new_group = [&] { return &head; }; // of the chain
  head.add_entity(entities[2].get());
  EXPECT_EQ(sizes(head), (Sizes{1, 2}));
  group_at(head, 1).on_new_group = nullptr;
  head.add_entity(entities[3].get());
  EXPECT_EQ(sizes(head), (Sizes{1, 2, 1}));
}

TEST(GDataGroup, AnExceptionOfNewGroupAddsNothing)
{
  Group head(1);
  Entity one;
  Entity two;
  head.add_entity(&one);
  head.on_new_group = []() -> GDataGroup* { throw std::runtime_error("no group"); };
  EXPECT_THROW(head.add_entity(&two), std::runtime_error);
  EXPECT_EQ(sizes(head), Sizes{1});
  EXPECT_TRUE(two.owning_groups().empty());
  head.on_new_group = nullptr;
  const DataSets shown = head.add_entity(&two);
  EXPECT_EQ(shown, head.next()->data_sets());
}

TEST(GDataGroup, NewGroupMayAddEntitiesItself)
{
  Group head(1);
  Entity one;
  Entity two;
  Entity three;
  head.add_entity(&one);
  head.on_new_group = [&] {
    head.on_new_group = nullptr;
    head.add_entity(&three);
    return new Group(1);
  };
  head.add_entity(&two);
  EXPECT_EQ(sizes(head), (Sizes{1, 1, 1}));
  EXPECT_EQ(group_at(head, 1).entities().count(&three), 1U);
  EXPECT_EQ(group_at(head, 2).entities().count(&two), 1U);
  head.remove_entity(&two);
  EXPECT_EQ(sizes(head), (Sizes{1, 1}));
}

TEST(GDataGroup, UpdatesTheRestWhenOneThrows)
{
  const auto entities = make_entities(3);
  Group head(1);
  add_all(head, entities);
  head.on_update = [] { throw std::runtime_error("first"); };
  group_at(head, 1).on_update = [] { throw std::logic_error("second"); };
  EXPECT_THROW(head.update_all({}), std::runtime_error);
  EXPECT_TRUE(head.is_modified());
  EXPECT_EQ(group_at(head, 1).updates, 1);
  EXPECT_EQ(group_at(head, 2).updates, 1);
  EXPECT_FALSE(group_at(head, 2).is_modified());
  head.on_update = nullptr;
  group_at(head, 1).on_update = nullptr;
  head.update_all({});
  EXPECT_FALSE(head.is_modified());
}

TEST(GDataGroup, UpdateDataMayChangeTheChain)
{
  const auto entities = make_entities(5);
  Entity late;
  Group head(1);
  add_all(head, entities);
  Group* second = &group_at(head, 1);
  group_at(head, 4).on_update = [&] { head.add_entity(&late); };
  head.on_update = [&] { // the next ones go
    head.clear_modified();
    head.remove_entity(entities[1].get());
    head.remove_entity(entities[2].get());
  };
  group_at(head, 3).on_update = [&] { head.remove_entity(entities[3].get()); }; // the group itself goes
  const int alive = Group::alive;
  head.update_all({});
  EXPECT_EQ(Group::alive, alive - 3 + 1);
  EXPECT_EQ(sizes(head), (Sizes{1, 1, 1}));
  EXPECT_NE(head.next(), second);
  EXPECT_EQ(group_at(head, 1).updates, 1);
  EXPECT_EQ(group_at(head, 2).updates, 1); // the one that came
}

TEST(GDataGroup, UpdateDataMayDestroyTheChain)
{
  const auto entities = make_entities(3);
  for (std::size_t destroyer = 0; destroyer < 3; ++destroyer) {
    auto head = std::make_unique<Group>(1);
    add_all(*head, entities);
    group_at(*head, destroyer).on_update = [&] { head.reset(); };
    const int alive = Group::alive;
    head->update_all({});
    EXPECT_EQ(head, nullptr);
    EXPECT_EQ(Group::alive, alive - 3);
  }
}

TEST(GDataGroup, PropsMayThrowOrDestroyTheGroupWhenTheyLetGo)
{
  auto entities = make_entities(2);
  Group head(1);
  add_all(head, entities);
  GView view;
  const auto thrower = ReleaseNoter::make();
  const auto remover = ReleaseNoter::make();
  GDataGroup::ViewProps views;
  views[&view][head.data_sets()[0]] = {thrower};
  views[&view][head.next()->data_sets()[0]] = {remover};
  thrower->on_release = [] { throw std::runtime_error("release"); };
  remover->on_release = [&] {
    views.clear();
    head.remove_entity(entities[1].get());
  };
  EXPECT_THROW(head.update_all(views), std::runtime_error);
  EXPECT_EQ(head.updates, 1);
  EXPECT_EQ(sizes(head), Sizes{1});
}

TEST(GDataGroup, NestedUpdatesWalkTheirOwnWay)
{
  const auto entities = make_entities(3);
  Group head(1);
  add_all(head, entities);
  head.on_update = [&] {
    head.rebuild();
    head.update_all({});
    head.remove_entity(entities[1].get());
  };
  head.update_all({});
  EXPECT_EQ(sizes(head), (Sizes{1, 1}));
  EXPECT_EQ(group_at(head, 1).updates, 1);
  EXPECT_FALSE(group_at(head, 1).is_modified());
}

/// A group that owns its entities.
class OwningGroup : public Group
{
public:
  using Group::Group;
  ~OwningGroup() override { mOwned.clear(); }
  void own(std::unique_ptr<Entity> entity)
  {
    this->add_entity(entity.get());
    mOwned.push_back(std::move(entity));
  }

private:
  std::vector<std::unique_ptr<Entity>> mOwned;
};

TEST(GDataGroup, ADerivedDestructorMayDestroyItsEntities)
{
  Group other;
  {
    OwningGroup head(1);
    auto entity = std::make_unique<Entity>();
    other.add_entity(entity.get());
    head.own(std::move(entity));
    head.own(std::make_unique<Entity>());
    EXPECT_EQ(sizes(head), (Sizes{1, 1}));
  }
  EXPECT_TRUE(other.is_empty());
}

} // namespace
