// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// The parts of a model, the views it is shown in, and the props between them.
#include "GModel.h"

#include "ModelFixture.h"

namespace {

using namespace morrow_test;

// --- Parts and views
// --------------------------------------------------------------------------------------------

class GModelPartsTest : public ModelTest
{};

TEST_F(GModelPartsTest, AddPartMakesPropsForEachViewInAscendingOrder)
{
  const auto views = sorted_views(3);
  for (const std::size_t i : {1U, 2U, 0U}) {
    mModel.add_view(views[i].get());
  }
  mModel.add_part(mData[0], mMaker.function());
  const std::vector<Call> expected = {
      {mData[0], views[0].get()}, {mData[0], views[1].get()}, {mData[0], views[2].get()}};
  EXPECT_EQ(mMaker.calls, expected);
}

TEST_F(GModelPartsTest, AddViewMakesPropsOfEachPartInAscendingOrder)
{
  for (const std::size_t i : {2U, 0U, 1U}) {
    mModel.add_part(mData[i], mMaker.function());
  }
  EXPECT_TRUE(mMaker.calls.empty()); // no view, nothing to make props for
  mModel.add_view(&mView);
  const std::vector<Call> expected = {{mData[0], &mView}, {mData[1], &mView}, {mData[2], &mView}};
  EXPECT_EQ(mMaker.calls, expected);
}

TEST_F(GModelPartsTest, AddViewShowsPartsInOrderAndThenLabels)
{
  const vtkNew<vtkActor> a0;
  const vtkNew<vtkActor> a1;
  const vtkNew<vtkActor> b0;
  mModel.add_part(mData[1], always(b0));
  mModel.add_part(mData[0], [&](vtkDataObject*, GView*) { return Props{a1.Get(), a0.Get()}; });
  mModel.add_view(&mView);
  const PropPointers all = shown(mView);
  ASSERT_EQ(all.size(), 4U);
  EXPECT_EQ(PropPointers(all.begin(), all.begin() + 3),
            (PropPointers{a1, a0, b0})); // vector order within a part
  EXPECT_TRUE(is_label_actor(all[3]));
}

TEST_F(GModelPartsTest, LaterPartsAreAppended)
{
  const vtkNew<vtkActor> first;
  const vtkNew<vtkActor> second;
  mModel.add_view(&mView);
  mModel.add_part(mData[1], always(first));
  mModel.add_part(mData[0], always(second));
  const PropPointers all = shown(mView);
  ASSERT_EQ(all.size(), 3U);
  EXPECT_TRUE(is_label_actor(all[0]));
  EXPECT_EQ(all[1], first);
  EXPECT_EQ(all[2], second);
}

TEST_F(GModelPartsTest, PropsAreAddedBehindThoseOfTheHost)
{
  const vtkNew<vtkActor> of_host;
  const vtkNew<vtkActor> of_part;
  mView.get_renderer()->AddViewProp(of_host);
  mModel.add_part(mData[0], always(of_part));
  mModel.add_view(&mView);
  EXPECT_EQ(shown(mView).front(), of_host);
  mModel.remove_view(&mView);
  EXPECT_EQ(shown(mView), PropPointers{of_host});
}

TEST_F(GModelPartsTest, PartIsMadeOnceForEachView)
{
  const auto views = sorted_views(2);
  mModel.add_view(views[0].get());
  mModel.add_part(mData[0], mMaker.function());
  mModel.add_view(views[1].get());
  mModel.add_part(mData[1], mMaker.function());
  mModel.add_view(views[0].get());
  mModel.unhook_from_views();
  mModel.hook_to_views();
  EXPECT_EQ(mMaker.calls.size(), 4U);
  for (const std::size_t i : {0U, 1U}) {
    for (const auto& view : views) {
      EXPECT_EQ(std::count(mMaker.calls.begin(), mMaker.calls.end(), Call{mData[i], view.get()}), 1);
    }
  }
}

TEST_F(GModelPartsTest, AddPartTwiceKeepsTheFirstFunction)
{
  PlainView before;
  PlainView after;
  Maker first;
  Maker second;
  mModel.add_view(&before);
  mModel.add_part(mData[0], first.function());
  mModel.add_part(mData[0], second.function());
  mModel.add_view(&after);
  EXPECT_EQ(first.calls.size(), 2U);
  EXPECT_TRUE(second.calls.empty());
  EXPECT_EQ(num_part_props(before), 1);
}

TEST_F(GModelPartsTest, AddPartTwiceTakesOneReference)
{
  mModel.add_part(mData[0], nothing());
  mModel.add_part(mData[0], nothing());
  EXPECT_EQ(mData[0]->GetReferenceCount(), 2);
}

TEST_F(GModelPartsTest, KeepsACopyOfTheFunction)
{
  {
    PartPropFunction function = mMaker.function();
    mModel.add_part(mData[0], function);
    function = nullptr;
  }
  mModel.add_view(&mView);
  EXPECT_EQ(mMaker.calls.size(), 1U);
}

TEST_F(GModelPartsTest, AddViewTwiceDoesNothing)
{
  mModel.add_part(mData[0], mMaker.function());
  mModel.add_view(&mView);
  const PropPointers before = shown(mView);
  mModel.add_view(&mView);
  EXPECT_EQ(mMaker.calls.size(), 1U);
  EXPECT_EQ(shown(mView), before);
}

TEST_F(GModelPartsTest, PartKeepsItsDataAlive)
{
  auto data = vtkSmartPointer<vtkPolyData>::New();
  const vtkWeakPointer<vtkPolyData> watched(data);
  mModel.add_part(data, nothing());
  data = nullptr;
  ASSERT_NE(watched, nullptr);
  EXPECT_EQ(watched->GetReferenceCount(), 1);
  mModel.remove_part(watched);
  EXPECT_EQ(watched, nullptr);
}

TEST_F(GModelPartsTest, RemovePartGivesTheReferenceBack)
{
  mModel.add_view(&mView);
  mModel.add_part(mData[0], nothing());
  mModel.remove_part(mData[0]);
  EXPECT_EQ(mData[0]->GetReferenceCount(), 1);
}

TEST_F(GModelPartsTest, RemovePartLetsPropsGoInEveryView)
{
  const auto views = sorted_views(2);
  Maker leaving(2);
  Maker staying(1);
  for (const auto& view : views) {
    mModel.add_view(view.get());
  }
  mModel.add_part(mData[0], leaving.function());
  mModel.add_part(mData[1], staying.function());
  mModel.remove_part(mData[0]);
  for (const auto& prop : leaving.made) {
    EXPECT_EQ(prop, nullptr);
  }
  ASSERT_EQ(staying.made.size(), 2U);
  EXPECT_TRUE(shows(*views[0], staying.made[0]));
  EXPECT_TRUE(shows(*views[1], staying.made[1]));
  EXPECT_EQ(num_part_props(*views[0]), 1);
  EXPECT_EQ(num_part_props(*views[1]), 1);
}

TEST_F(GModelPartsTest, RemovePartLetsTheFunctionGo)
{
  const auto held = std::make_shared<int>(0);
  mModel.add_part(mData[0], [held](vtkDataObject*, GView*) { return Props(); });
  EXPECT_EQ(held.use_count(), 2);
  mModel.remove_part(mData[0]);
  EXPECT_EQ(held.use_count(), 1);
}

// Only what was taken may be given back.
TEST_F(GModelPartsTest, RemovingAnAbsentPartLeavesItsReferences)
{
  mModel.add_part(mData[0], nothing());
  mModel.remove_part(mData[1]);
  EXPECT_EQ(mData[1]->GetReferenceCount(), 1);
  mModel.remove_part(mData[0]);
  mModel.remove_part(mData[0]);
  EXPECT_EQ(mData[0]->GetReferenceCount(), 1);
}

TEST_F(GModelPartsTest, PartMayComeBackWithAnotherFunction)
{
  mModel.add_view(&mView);
  const vtkNew<vtkActor> before;
  const vtkNew<vtkActor> after;
  mModel.add_part(mData[0], always(before));
  mModel.remove_part(mData[0]);
  mModel.add_part(mData[0], always(after));
  EXPECT_FALSE(shows(mView, before));
  EXPECT_TRUE(shows(mView, after));
}

TEST_F(GModelPartsTest, RemoveViewLetsItsPropsGoAndNoOthers)
{
  const auto views = sorted_views(2);
  for (const auto& view : views) {
    mModel.add_view(view.get());
  }
  mModel.add_part(mData[0], mMaker.function());
  mModel.remove_view(views[0].get());
  ASSERT_EQ(mMaker.made.size(), 2U);
  EXPECT_EQ(mMaker.made[0], nullptr);
  EXPECT_TRUE(shown(*views[0]).empty());
  EXPECT_TRUE(shows(*views[1], mMaker.made[1]));
  EXPECT_EQ(label_actors(*views[1]).size(), 1U);
}

TEST_F(GModelPartsTest, RemovedViewGetsNothingMore)
{
  mModel.add_view(&mView);
  mModel.remove_view(&mView);
  mModel.add_part(mData[0], mMaker.function());
  mModel.unhook_from_views();
  mModel.hook_to_views();
  EXPECT_TRUE(mMaker.calls.empty());
  EXPECT_TRUE(shown(mView).empty());
}

TEST_F(GModelPartsTest, ViewThatComesBackGetsNewProps)
{
  mModel.add_part(mData[0], mMaker.function());
  mModel.add_view(&mView);
  mModel.remove_view(&mView);
  mModel.add_view(&mView);
  EXPECT_EQ(mMaker.calls.size(), 2U);
  EXPECT_EQ(num_part_props(mView), 1);
  EXPECT_EQ(label_actors(mView).size(), 1U);
}

TEST_F(GModelPartsTest, RemovingAnAbsentViewDoesNothing)
{
  PlainView connected;
  PlainView stranger;
  const vtkNew<vtkActor> prop;
  mModel.add_part(mData[0], always(prop));
  mModel.add_view(&connected);
  stranger.add_props({prop.Get()});
  mModel.remove_view(&stranger);
  EXPECT_TRUE(shows(stranger, prop));
  EXPECT_TRUE(shows(connected, prop));
}

TEST_F(GModelPartsTest, NullArgumentsDoNothing)
{
  mModel.add_view(&mView);
  mModel.add_part(nullptr, mMaker.function());
  mModel.remove_part(nullptr);
  mModel.add_view(nullptr);
  mModel.remove_view(nullptr);
  EXPECT_TRUE(mMaker.calls.empty());
  EXPECT_EQ(shown(mView).size(), 1U);
  EXPECT_EQ(mModel.add_label(nullptr, BrantVector(0, 0, 0), BRANT_RED), 0); // an empty text
}

TEST_F(GModelPartsTest, ModelsOfOneViewDoNotTouchEachOther)
{
  ScriptedModel one;
  ScriptedModel other;
  Maker of_one;
  Maker of_other;
  for (ScriptedModel* model : {&one, &other}) {
    model->add_view(&mView);
  }
  one.add_part(mData[0], of_one.function());
  other.add_part(mData[0], of_other.function());
  EXPECT_EQ(mData[0]->GetReferenceCount(), 3);
  one.clear();
  EXPECT_EQ(mData[0]->GetReferenceCount(), 2);
  EXPECT_EQ(of_one.made[0], nullptr);
  EXPECT_TRUE(shows(mView, of_other.made[0]));
  EXPECT_EQ(label_actors(mView).size(), 2U);
  one.remove_view(&mView);
  EXPECT_EQ(label_actors(mView).size(), 1U);
  EXPECT_TRUE(shows(mView, of_other.made[0]));
}

// --- Odd props
// --------------------------------------------------------------------------------------------------

class GModelPropsTest : public ModelTest
{};

TEST_F(GModelPropsTest, PartWithoutPropsIsStillAPart)
{
  mModel.add_view(&mView);
  mModel.add_part(mData[0], nothing());
  EXPECT_EQ(mData[0]->GetReferenceCount(), 2);
  EXPECT_EQ(num_part_props(mView), 0);
}

TEST_F(GModelPropsTest, NullPropsArePassedOver)
{
  const vtkNew<vtkActor> prop;
  mModel.add_part(mData[0], [&](vtkDataObject*, GView*) { return Props{nullptr, prop.Get(), nullptr}; });
  mModel.add_view(&mView);
  EXPECT_EQ(num_part_props(mView), 1);
  EXPECT_TRUE(shows(mView, prop));
  mModel.unhook_from_views();
  mModel.hook_to_views();
  EXPECT_TRUE(shows(mView, prop));
  mModel.remove_part(mData[0]);
  EXPECT_EQ(num_part_props(mView), 0);
}

// A renderer holds a prop once.
TEST_F(GModelPropsTest, RepeatedPropIsPropPointersOnce)
{
  const vtkNew<vtkActor> prop;
  mModel.add_part(mData[0], [&](vtkDataObject*, GView*) { return Props{prop.Get(), prop.Get()}; });
  mModel.add_view(&mView);
  EXPECT_EQ(num_part_props(mView), 1);
  mModel.remove_part(mData[0]);
  EXPECT_EQ(num_part_props(mView), 0);
  EXPECT_EQ(prop->GetReferenceCount(), 1);
}

TEST_F(GModelPropsTest, OnePropMayStandInTwoViews)
{
  const auto views = sorted_views(2);
  const vtkNew<vtkActor> prop;
  mModel.add_view(views[0].get());
  mModel.add_view(views[1].get());
  mModel.add_part(mData[0], always(prop));
  mModel.remove_view(views[0].get());
  EXPECT_FALSE(shows(*views[0], prop));
  EXPECT_TRUE(shows(*views[1], prop));
  mModel.clear();
  EXPECT_EQ(prop->GetReferenceCount(), 1);
}

// As with the renderer's own calls: it knows the prop once and forgets it at the first removal.
TEST_F(GModelPropsTest, PropOfTwoPartsLeavesWithTheFirstOfThem)
{
  const vtkNew<vtkActor> prop;
  mModel.add_view(&mView);
  mModel.add_part(mData[0], always(prop));
  mModel.add_part(mData[1], always(prop));
  EXPECT_EQ(num_part_props(mView), 1);
  mModel.remove_part(mData[0]);
  EXPECT_EQ(num_part_props(mView), 0);
  mModel.unhook_from_views();
  mModel.hook_to_views(); // the other part still has it
  EXPECT_TRUE(shows(mView, prop));
}

TEST_F(GModelPropsTest, HostMayTakeAPropOutOfTheRenderer)
{
  mModel.add_view(&mView);
  mModel.add_part(mData[0], mMaker.function());
  mView.get_renderer()->RemoveViewProp(mMaker.made[0]);
  EXPECT_NE(mMaker.made[0], nullptr); // the model still keeps it
  mModel.remove_part(mData[0]);
  EXPECT_EQ(mMaker.made[0], nullptr);
}

TEST_F(GModelPropsTest, AreHeldByModelAndRendererOnly)
{
  mModel.add_view(&mView);
  mModel.add_part(mData[0], mMaker.function());
  EXPECT_EQ(mMaker.made[0]->GetReferenceCount(), 2);
  mModel.unhook_from_views();
  EXPECT_EQ(mMaker.made[0]->GetReferenceCount(), 1);
  EXPECT_FALSE(mMaker.made[0]->IsConsumer(mView.get_renderer()));
  mModel.hook_to_views();
  EXPECT_EQ(mMaker.made[0]->GetReferenceCount(), 2);
  EXPECT_TRUE(mMaker.made[0]->IsConsumer(mView.get_renderer()));
}

// --- Hooking
// ----------------------------------------------------------------------------------------------------

class GModelHookingTest : public ModelTest
{};

TEST_F(GModelHookingTest, UnhookTakesPropsAndLabelsOutAndKeepsThem)
{
  const auto views = sorted_views(2);
  Maker maker(2);
  show_all(views, maker);
  mModel.unhook_from_views();
  EXPECT_FALSE(mModel.is_hooked_to_views());
  EXPECT_TRUE(shown(*views[0]).empty());
  EXPECT_TRUE(shown(*views[1]).empty());
  for (const auto& prop : maker.made) {
    EXPECT_NE(prop, nullptr);
  }
}

TEST_F(GModelHookingTest, HookPutsTheSamePropsBackInOrder)
{
  Maker maker(2);
  mModel.add_view(&mView);
  mModel.add_part(mData[1], maker.function());
  mModel.add_part(mData[0], maker.function());
  mModel.unhook_from_views();
  mModel.hook_to_views();
  EXPECT_TRUE(mModel.is_hooked_to_views());
  const PropPointers all = shown(mView);
  ASSERT_EQ(all.size(), 5U);
  // By part in ascending order, whatever the order of their adding, and then the labels.
  EXPECT_EQ(PropPointers(all.begin(), all.begin() + 4),
            (PropPointers{maker.made[2], maker.made[3], maker.made[0], maker.made[1]}));
  EXPECT_TRUE(is_label_actor(all[4]));
  EXPECT_EQ(maker.calls.size(), 2U);
}

TEST_F(GModelHookingTest, UnhookTwiceIsUnhookOnce)
{
  mModel.add_view(&mView);
  mModel.add_part(mData[0], mMaker.function());
  mModel.unhook_from_views();
  mView.add_props({mMaker.made[0].Get()}); // by the host, behind the model's back
  mModel.unhook_from_views();
  EXPECT_TRUE(shows(mView, mMaker.made[0]));
}

TEST_F(GModelHookingTest, HookTwiceIsHookOnce)
{
  mModel.add_view(&mView);
  mModel.add_part(mData[0], mMaker.function());
  mView.remove_props({mMaker.made[0].Get()}); // by the host, behind the model's back
  mModel.hook_to_views();
  EXPECT_FALSE(shows(mView, mMaker.made[0]));
  EXPECT_EQ(label_actors(mView).size(), 1U);
}

TEST_F(GModelHookingTest, ViewAddedWhileUnhookedGetsNothing)
{
  mModel.add_part(mData[0], mMaker.function());
  mModel.unhook_from_views();
  mModel.add_view(&mView);
  EXPECT_TRUE(mMaker.calls.empty());
  EXPECT_TRUE(shown(mView).empty());
}

TEST_F(GModelHookingTest, HookDoesNotMakeWhatWasNeverMade)
{
  mModel.add_part(mData[0], mMaker.function());
  mModel.unhook_from_views();
  mModel.add_view(&mView);
  mModel.hook_to_views();
  EXPECT_TRUE(mMaker.calls.empty());
  EXPECT_EQ(num_part_props(mView), 0);
  EXPECT_EQ(label_actors(mView).size(), 1U);
}

TEST_F(GModelHookingTest, PartAddedWhileUnhookedIsMadeButNotPropPointers)
{
  mModel.unhook_from_views();
  mModel.add_view(&mView);
  mModel.add_part(mData[0], mMaker.function());
  EXPECT_EQ(mMaker.calls.size(), 1U);
  EXPECT_TRUE(shown(mView).empty());
  mModel.hook_to_views();
  EXPECT_EQ(mMaker.calls.size(), 1U);
  EXPECT_EQ(num_part_props(mView), 1);
  EXPECT_TRUE(shows(mView, mMaker.made[0]));
  EXPECT_EQ(label_actors(mView).size(), 1U);
}

TEST_F(GModelHookingTest, ViewAddedWhileUnhookedGetsLaterPartsOnly)
{
  Maker before;
  Maker after;
  mModel.add_part(mData[0], before.function());
  mModel.unhook_from_views();
  mModel.add_view(&mView);
  mModel.add_part(mData[1], after.function());
  mModel.hook_to_views();
  EXPECT_TRUE(before.calls.empty());
  EXPECT_EQ(num_part_props(mView), 1);
  EXPECT_TRUE(shows(mView, after.made[0]));
}

TEST_F(GModelHookingTest, PartRemovedWhileUnhookedDoesNotComeBack)
{
  mModel.add_view(&mView);
  mModel.add_part(mData[0], mMaker.function());
  mModel.unhook_from_views();
  mModel.remove_part(mData[0]);
  EXPECT_EQ(mMaker.made[0], nullptr);
  mModel.hook_to_views();
  EXPECT_EQ(num_part_props(mView), 0);
}

// What the host has put into the renderer meanwhile is not the model's to take out.
TEST_F(GModelHookingTest, RemovalWhileUnhookedLeavesTheRendererAlone)
{
  const vtkNew<vtkActor> prop;
  mModel.add_view(&mView);
  mModel.add_part(mData[0], always(prop));
  mModel.add_part(mData[1], always(prop));
  mModel.unhook_from_views();
  mView.add_props({prop.Get()});
  mModel.remove_part(mData[0]);
  EXPECT_TRUE(shows(mView, prop));
  mModel.remove_view(&mView);
  EXPECT_TRUE(shows(mView, prop));
}

TEST_F(GModelHookingTest, ViewRemovedWhileUnhookedDoesNotComeBack)
{
  mModel.add_view(&mView);
  mModel.add_part(mData[0], mMaker.function());
  mModel.unhook_from_views();
  mModel.remove_view(&mView);
  mModel.hook_to_views();
  EXPECT_TRUE(shown(mView).empty());
  EXPECT_EQ(mMaker.made[0], nullptr);
}

TEST_F(GModelHookingTest, WithoutViewsOnlyTheFlagChanges)
{
  mModel.unhook_from_views();
  EXPECT_FALSE(mModel.is_hooked_to_views());
  mModel.hook_to_views();
  EXPECT_TRUE(mModel.is_hooked_to_views());
}

} // namespace
