// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "GModelSet.h"

#include "ModelSetFixture.h"

namespace {

using namespace morrow_test;

// --- The lists
// -------------------------------------------------------------------------------------------------------

TEST_F(GModelSetTest, StartsEmpty)
{
  EXPECT_TRUE(mSet.views().empty());
  EXPECT_TRUE(mSet.models().empty());
  mSet.update_model_parts();
  mSet.render();
}

TEST_F(GModelSetTest, CannotBeCopied)
{
  EXPECT_FALSE(std::is_copy_constructible_v<GModelSet>);
  EXPECT_FALSE(std::is_copy_assignable_v<GModelSet>);
}

// The destructor takes the first two slots.
TEST_F(GModelSetTest, KeepsTheOrderOfItsVirtualOperations)
{
  EXPECT_TRUE(std::has_virtual_destructor_v<GModelSet>);
  EXPECT_EQ(slot_of(&GModelSet::update_model_parts), 2U);
}

TEST_F(GModelSetTest, ListsKeepTheOrderOfAddition)
{
  const auto views = sorted_views(3);
  const Views order = {views[1].get(), views[2].get(), views[0].get()};
  for (GView* view : order) {
    mSet.add_view(view);
  }
  EXPECT_EQ(mSet.views(), order);
  mSet.add_model(&mOther);
  mSet.add_model(&mOne);
  EXPECT_EQ(mSet.models(), (Models{&mOther, &mOne}));
}

TEST_F(GModelSetTest, RemovalKeepsTheOrderOfTheOthers)
{
  const auto views = sorted_views(3);
  for (const std::size_t i : {2U, 0U, 1U}) {
    mSet.add_view(views[i].get());
  }
  mSet.remove_view(views[0].get());
  EXPECT_EQ(mSet.views(), (Views{views[2].get(), views[1].get()}));
  ScriptedModel third;
  mSet.add_model(&mOther);
  mSet.add_model(&third);
  mSet.add_model(&mOne);
  mSet.remove_model(&third);
  EXPECT_EQ(mSet.models(), (Models{&mOther, &mOne}));
}

TEST_F(GModelSetTest, DuplicatesChangeNothing)
{
  fill();
  const PropPointers left = shown(*mLeft);
  mSet.add_view(mLeft.get());
  mSet.add_model(&mOne);
  EXPECT_EQ(mSet.views(), (Views{mLeft.get(), mRight.get()}));
  EXPECT_EQ(mSet.models(), (Models{&mOne, &mOther}));
  EXPECT_EQ(mOfOne.calls.size(), 2U);
  EXPECT_EQ(shown(*mLeft), left);
}

TEST_F(GModelSetTest, NullsAndStrangersChangeNothing)
{
  fill();
  PlainView stranger;
  ScriptedModel foreign;
  stranger.add_props({vtkSmartPointer<vtkActor>::New()});
  foreign.add_view(&stranger);
  mSet.add_view(nullptr);
  mSet.add_model(nullptr);
  mSet.remove_view(nullptr);
  mSet.remove_model(nullptr);
  mSet.remove_view(&stranger);
  mSet.remove_model(&foreign);
  EXPECT_EQ(mSet.views(), (Views{mLeft.get(), mRight.get()}));
  EXPECT_EQ(mSet.models(), (Models{&mOne, &mOther}));
  EXPECT_EQ(shown(stranger).size(), 2U); // its prop and the foreign model's labels
}

// --- Everything with everything
// --------------------------------------------------------------------------------------

TEST_F(GModelSetTest, ViewGetsEveryModelInListOrder)
{
  mOne.add_part(mData[0], mOfOne.function());
  mOther.add_part(mData[1], mOfOther.function());
  mSet.add_model(&mOther);
  mSet.add_model(&mOne);
  mSet.add_view(mLeft.get());
  const PropPointers all = shown(*mLeft);
  ASSERT_EQ(all.size(), 4U);
  EXPECT_EQ(all[0], mOfOther.made[0]);
  EXPECT_TRUE(is_label_actor(all[1]));
  EXPECT_EQ(all[2], mOfOne.made[0]);
  EXPECT_TRUE(is_label_actor(all[3]));
}

TEST_F(GModelSetTest, ModelGetsEveryViewInListOrder)
{
  const auto views = sorted_views(3);
  const Views order = {views[2].get(), views[0].get(), views[1].get()};
  for (GView* view : order) {
    mSet.add_view(view);
  }
  mOne.add_part(mData[0], mOfOne.function());
  mSet.add_model(&mOne);
  ASSERT_EQ(mOfOne.calls.size(), 3U);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(mOfOne.calls[i].view, order[i]); // the list's order, not the addresses'
  }
}

TEST_F(GModelSetTest, PartFunctionsRunOncePerPartAndView)
{
  mSet.add_view(mLeft.get());
  mSet.add_view(mRight.get());
  mOne.add_part(mData[0], mOfOne.function());
  mOne.add_part(mData[1], mOfOne.function());
  mSet.add_model(&mOne);
  EXPECT_EQ(mOfOne.calls.size(), 4U);
  mSet.add_model(&mOne);
  EXPECT_EQ(mOfOne.calls.size(), 4U);
}

TEST_F(GModelSetTest, RemovedViewLosesAllPropsAndTheOthersKeepTheirs)
{
  fill();
  const PropPointers right = shown(*mRight);
  mSet.remove_view(mLeft.get());
  EXPECT_TRUE(shown(*mLeft).empty());
  EXPECT_EQ(shown(*mRight), right);
  const auto alive = [](const auto& prop) { return prop != nullptr; };
  EXPECT_EQ(std::count_if(mOfOne.made.begin(), mOfOne.made.end(), alive), 1); // for each view there was one
  mOne.add_part(mData[1], mOfOne.function());
  EXPECT_EQ(mOfOne.calls.size(), 3U); // for the right view only
}

TEST_F(GModelSetTest, RemovedModelLeavesEveryView)
{
  fill();
  mSet.remove_model(&mOne);
  EXPECT_EQ(mSet.models(), Models{&mOther});
  for (const auto& prop : mOfOne.made) {
    EXPECT_EQ(prop, nullptr);
  }
  EXPECT_EQ(shown(*mLeft).size(), 2U);
  EXPECT_EQ(shown(*mRight).size(), 2U);
  mSet.remove_model(&mOne);
  EXPECT_EQ(shown(*mLeft).size(), 2U);
}

TEST_F(GModelSetTest, WhatLeftMayComeBackAtTheEnd)
{
  fill();
  mSet.remove_view(mLeft.get());
  mSet.remove_model(&mOne);
  mSet.add_view(mLeft.get());
  mSet.add_model(&mOne);
  EXPECT_EQ(mSet.views(), (Views{mRight.get(), mLeft.get()}));
  EXPECT_EQ(mSet.models(), (Models{&mOther, &mOne}));
  EXPECT_EQ(shown(*mLeft).size(), 4U);
  EXPECT_EQ(shown(*mRight).size(), 4U);
}

TEST_F(GModelSetTest, UnhookedModelIsConnectedWithoutBeingShown)
{
  mOne.add_part(mData[0], mOfOne.function());
  mOne.unhook_from_views();
  mSet.add_view(mLeft.get());
  mSet.add_model(&mOne);
  EXPECT_TRUE(shown(*mLeft).empty());
  mOne.add_part(mData[1], mOfOne.function());
  mOne.hook_to_views();
  EXPECT_EQ(shown(*mLeft).size(), 2U); // the later part and the labels
}

TEST_F(GModelSetTest, ModelMayBeInTwoSets)
{
  GModelSet second;
  mOne.add_part(mData[0], mOfOne.function());
  mSet.add_model(&mOne);
  second.add_model(&mOne);
  mSet.add_view(mLeft.get());
  second.add_view(mRight.get());
  mSet.remove_model(&mOne);
  EXPECT_TRUE(shown(*mLeft).empty());
  EXPECT_EQ(shown(*mRight).size(), 2U);
  EXPECT_EQ(second.models(), Models{&mOne});
}

TEST_F(GModelSetTest, ViewThatAModelAlreadyShowsInIsNotShownTwice)
{
  mOne.add_part(mData[0], mOfOne.function());
  mOne.add_view(mLeft.get());
  mSet.add_model(&mOne);
  mSet.add_view(mLeft.get());
  EXPECT_EQ(mOfOne.calls.size(), 1U);
  EXPECT_EQ(shown(*mLeft).size(), 2U);
}

TEST_F(GModelSetTest, RemovesAViewThatAModelHasLeftByItself)
{
  fill();
  mOne.remove_view(mLeft.get());
  EXPECT_EQ(mSet.views(), (Views{mLeft.get(), mRight.get()})); // the set's business is the set's
  mSet.remove_view(mLeft.get());
  EXPECT_TRUE(shown(*mLeft).empty());
}

// --- Link and list
// -----------------------------------------------------------------------------------------------------

/// A view's link to a set, as both sides tell it.
void expect_in(const GView& view, const GModelSet& set)
{
  EXPECT_EQ(view.get_model_set(), &set);
  EXPECT_EQ(std::count(set.views().begin(), set.views().end(), &view), 1);
}

void expect_not_in(const GView& view, const GModelSet& set)
{
  EXPECT_NE(view.get_model_set(), &set);
  EXPECT_EQ(std::count(set.views().begin(), set.views().end(), &view), 0);
}

TEST_F(GModelSetTest, AddingAViewMakesTheLink)
{
  mSet.add_view(mLeft.get());
  expect_in(*mLeft, mSet);
}

TEST_F(GModelSetTest, LinkingAViewAddsIt)
{
  mLeft->set_model_set(&mSet);
  expect_in(*mLeft, mSet);
}

TEST_F(GModelSetTest, RemovingAViewCutsTheLink)
{
  mLeft->set_model_set(&mSet);
  mSet.remove_view(mLeft.get());
  expect_not_in(*mLeft, mSet);
  EXPECT_EQ(mLeft->get_model_set(), nullptr);
}

TEST_F(GModelSetTest, UnlinkingAViewRemovesIt)
{
  fill();
  mLeft->set_model_set(nullptr);
  expect_not_in(*mLeft, mSet);
  EXPECT_TRUE(shown(*mLeft).empty());
  EXPECT_EQ(mSet.views(), Views{mRight.get()});
}

TEST_F(GModelSetTest, BothSidesAfterEachOtherChangeNothing)
{
  fill();
  const PropPointers before = shown(*mLeft);
  mLeft->set_model_set(&mSet);
  mSet.add_view(mLeft.get());
  expect_in(*mLeft, mSet);
  EXPECT_EQ(shown(*mLeft), before);
  EXPECT_EQ(mOfOne.calls.size(), 2U);
  mSet.remove_view(mLeft.get());
  mLeft->set_model_set(nullptr);
  mSet.remove_view(mLeft.get());
  expect_not_in(*mLeft, mSet);
}

class GModelSetMoveTest : public GModelSetTest, public ::testing::WithParamInterface<bool>
{
protected:
  void move(GModelSet& to) { GetParam() ? to.add_view(mLeft.get()) : mLeft->set_model_set(&to); }

  GModelSet mNext;
};

INSTANTIATE_TEST_SUITE_P(, GModelSetMoveTest, ::testing::Bool(),
                         [](const auto& each) { return each.param ? "BySet" : "ByView"; });

TEST_P(GModelSetMoveTest, ViewInAnotherSetLeavesThatOne)
{
  fill();
  ScriptedModel third;
  mNext.add_model(&third);
  move(mNext);
  expect_in(*mLeft, mNext);
  expect_not_in(*mLeft, mSet);
  EXPECT_EQ(shown(*mLeft).size(), 1U); // the third model's labels
  EXPECT_EQ(shown(*mRight).size(), 4U);
}

TEST_P(GModelSetMoveTest, ModelInBothSetsIsShownAnew)
{
  fill();
  mNext.add_model(&mOne);
  move(mNext);
  EXPECT_EQ(shown(*mLeft).size(), 2U);
  EXPECT_EQ(mOfOne.calls.size(), 3U); // what was made for the view in the first set has gone
  EXPECT_EQ(std::count(mOfOne.made.begin(), mOfOne.made.end(), nullptr), 1);
}

TEST_P(GModelSetMoveTest, ViewIsInNoSetWhenTheNextOneFails)
{
  fill();
  ScriptedModel failing;
  failing.add_part(mData[0], throwing());
  mNext.add_model(&failing);
  EXPECT_THROW(move(mNext), HostError);
  expect_not_in(*mLeft, mNext);
  expect_not_in(*mLeft, mSet);
  EXPECT_EQ(mLeft->get_model_set(), nullptr);
  EXPECT_TRUE(shown(*mLeft).empty());
  move(mSet);
  expect_in(*mLeft, mSet);
}

TEST_P(GModelSetMoveTest, FirstSetMayDieAfterwards)
{
  {
    GModelSet first;
    first.add_model(&mOne);
    first.add_view(mLeft.get());
    move(mNext);
  }
  expect_in(*mLeft, mNext);
}

// --- Prop functions that throw
// -------------------------------------------------------------------------------------------

TEST_F(GModelSetTest, ViewForWhichAModelFailsIsTakenOutAgain)
{
  ScriptedModel never;
  mOne.add_part(mData[0], mOfOne.function());
  mOther.add_part(mData[1], throwing());
  never.add_part(mData[1], mOfOther.function());
  mSet.add_model(&mOne);
  mSet.add_model(&mOther);
  mSet.add_model(&never);
  EXPECT_THROW(mSet.add_view(mLeft.get()), HostError);
  expect_not_in(*mLeft, mSet);
  EXPECT_EQ(mLeft->get_model_set(), nullptr);
  EXPECT_TRUE(shown(*mLeft).empty());
  EXPECT_EQ(mOfOne.made[0], nullptr);
  EXPECT_TRUE(mOfOther.calls.empty());
  EXPECT_EQ(mSet.models().size(), 3U); // the models are as they were
  mOther.clear();
  mSet.add_view(mLeft.get());
  EXPECT_EQ(num_part_props(*mLeft), 2);
}

TEST_F(GModelSetTest, ModelThatFailsInTheSecondViewIsTakenOutAgain)
{
  mSet.add_view(mLeft.get());
  mSet.add_view(mRight.get());
  mOne.add_part(mData[0], [this](vtkDataObject*, GView* view) {
    if (view == mRight.get()) {
      throw HostError("host");
    }
    return Props{vtkSmartPointer<vtkActor>::New()};
  });
  EXPECT_THROW(mSet.add_model(&mOne), HostError);
  EXPECT_TRUE(mSet.models().empty());
  EXPECT_TRUE(shown(*mLeft).empty());
  EXPECT_TRUE(shown(*mRight).empty());
  EXPECT_EQ(mData[0]->GetReferenceCount(), 2); // it is still a part of the model
  expect_in(*mLeft, mSet);
  expect_in(*mRight, mSet);
}

TEST_F(GModelSetTest, EmptyFunctionFailsLikeOneThatThrows)
{
  mSet.add_view(mLeft.get());
  mOne.add_part(mData[0], PartPropFunction());
  EXPECT_THROW(mSet.add_model(&mOne), std::bad_function_call);
  EXPECT_TRUE(mSet.models().empty());
  EXPECT_TRUE(shown(*mLeft).empty());
}

TEST_F(GModelSetTest, ModelThatFailedMayBeDestroyed)
{
  mSet.add_view(mLeft.get());
  {
    ScriptedModel failing;
    failing.add_part(mData[0], throwing());
    EXPECT_THROW(mSet.add_model(&failing), HostError);
  }
  mSet.update_model_parts(); // must not ask the dead one
  EXPECT_TRUE(mSet.models().empty());
}

// --- Prop functions that call back
// ---------------------------------------------------------------------------------------

TEST_F(GModelSetTest, PropFunctionMayTakeItsViewOutOfTheSet)
{
  mOne.add_part(mData[0], acting_once([&](vtkDataObject*, GView* view) { mSet.remove_view(view); }));
  mOther.add_part(mData[1], mOfOther.function());
  mSet.add_model(&mOne);
  mSet.add_model(&mOther);
  mSet.add_view(mLeft.get());
  expect_not_in(*mLeft, mSet);
  EXPECT_TRUE(shown(*mLeft).empty());
  EXPECT_TRUE(mOfOther.calls.empty()); // no turn for a model of the set that the view has left
}

TEST_F(GModelSetTest, PropFunctionMayMoveItsViewToAnotherSet)
{
  GModelSet next;
  next.add_model(&mOther);
  mOne.add_part(mData[0], acting_once([&](vtkDataObject*, GView* view) { next.add_view(view); }));
  mSet.add_model(&mOne);
  mSet.add_view(mLeft.get());
  expect_in(*mLeft, next);
  expect_not_in(*mLeft, mSet);
  EXPECT_EQ(shown(*mLeft).size(), 1U); // labels of the other model
}

TEST_F(GModelSetTest, PropFunctionMayTakeItsModelOutOfTheSet)
{
  mSet.add_view(mLeft.get());
  mSet.add_view(mRight.get());
  mOne.add_part(mData[0], acting_once([&](vtkDataObject*, GView*) { mSet.remove_model(&mOne); }));
  mSet.add_model(&mOne);
  EXPECT_TRUE(mSet.models().empty());
  EXPECT_TRUE(shown(*mLeft).empty());
  EXPECT_TRUE(shown(*mRight).empty());
}

TEST_F(GModelSetTest, PropFunctionMayAddModelsAndViews)
{
  mOther.add_part(mData[1], mOfOther.function());
  mOne.add_part(mData[0], acting_once([&](vtkDataObject*, GView*) {
                  mSet.add_model(&mOther);
                  mSet.add_view(mRight.get());
                }));
  mSet.add_model(&mOne);
  mSet.add_view(mLeft.get());
  EXPECT_EQ(mSet.views(), (Views{mLeft.get(), mRight.get()}));
  EXPECT_EQ(mSet.models(), (Models{&mOne, &mOther}));
  EXPECT_EQ(num_part_props(*mLeft), 2);
  EXPECT_EQ(num_part_props(*mRight), 2);
  EXPECT_EQ(mOfOther.calls.size(), 2U);
}

TEST_F(GModelSetTest, PropFunctionMayDestroyItsView)
{
  mOne.add_part(mData[0], acting_once([&](vtkDataObject*, GView*) { mLeft.reset(); }));
  mOther.add_part(mData[1], mOfOther.function());
  mSet.add_model(&mOne);
  mSet.add_model(&mOther);
  mSet.add_view(mLeft.get());
  EXPECT_TRUE(mSet.views().empty());
  EXPECT_TRUE(mOfOther.calls.empty());
}

TEST_F(GModelSetTest, PropFunctionMayDestroyItsViewAndThrow)
{
  mOne.add_part(mData[0], [&](vtkDataObject*, GView*) -> Props {
    mLeft.reset();
    throw HostError("host");
  });
  mSet.add_model(&mOne);
  EXPECT_THROW(mSet.add_view(mLeft.get()), HostError);
  EXPECT_TRUE(mSet.views().empty());
}

TEST_F(GModelSetTest, PropFunctionMayDestroyItsModel)
{
  auto dying = std::make_unique<ScriptedModel>();
  dying->add_part(mData[0], acting_once([&](vtkDataObject*, GView*) { dying.reset(); }));
  mSet.add_view(mLeft.get());
  mSet.add_view(mRight.get());
  mSet.add_model(dying.get());
  EXPECT_TRUE(mSet.models().empty());
  EXPECT_TRUE(shown(*mLeft).empty());
}

TEST_F(GModelSetTest, PropFunctionMayDestroyItsModelAndThrow)
{
  auto dying = std::make_unique<ScriptedModel>();
  dying->add_part(mData[0], [&](vtkDataObject*, GView*) -> Props {
    dying.reset();
    throw HostError("host");
  });
  mSet.add_view(mLeft.get());
  EXPECT_THROW(mSet.add_model(dying.get()), HostError);
  EXPECT_TRUE(mSet.models().empty());
}

TEST_F(GModelSetTest, PropFunctionMayDestroyAModelThatWaits)
{
  auto dying = std::make_unique<ScriptedModel>();
  mOne.add_part(mData[0], acting_once([&](vtkDataObject*, GView*) { dying.reset(); }));
  mSet.add_model(&mOne);
  mSet.add_model(dying.get());
  mSet.add_view(mLeft.get());
  EXPECT_EQ(mSet.models(), Models{&mOne});
  expect_in(*mLeft, mSet);
}

} // namespace
