// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
// What the host's code does when a model calls it: prop functions and overrides that throw, that call back,
// and that destroy what they are called for.
#include "GModel.h"

#include "BrantVector.h"
#include "GView.h"
#include "ModelFixture.h"

#include <gtest/gtest.h>

#include <new>
#include <ostream>
#include <string>

namespace {

using namespace morrow_test;

// --- Prop functions that throw
// ----------------------------------------------------------------------------------

class GModelExceptionTest : public ModelTest
{};

TEST_F(GModelExceptionTest, EmptyFunctionThrowsAndLeavesNothing)
{
  mModel.add_view(&mView);
  EXPECT_THROW(mModel.add_part(mData[0], PartPropFunction()), std::bad_function_call);
  EXPECT_EQ(mData[0]->GetReferenceCount(), 1);
  EXPECT_EQ(num_part_props(mView), 0);
  PlainView next;
  EXPECT_NO_THROW(mModel.add_view(&next)); // the function is not stored either
}

TEST_F(GModelExceptionTest, EmptyFunctionThrowsWhenItsFirstViewComes)
{
  EXPECT_NO_THROW(mModel.add_part(mData[0], PartPropFunction())); // there is nothing to call it for
  EXPECT_EQ(mData[0]->GetReferenceCount(), 2);
  EXPECT_THROW(mModel.add_view(&mView), std::bad_function_call);
  EXPECT_TRUE(shown(mView).empty());
}

TEST_F(GModelExceptionTest, EmptyFunctionThrowsWhileUnhookedToo)
{
  mModel.unhook_from_views();
  mModel.add_view(&mView);
  EXPECT_THROW(mModel.add_part(mData[0], PartPropFunction()), std::bad_function_call);
  EXPECT_EQ(mData[0]->GetReferenceCount(), 1);
}

TEST_F(GModelExceptionTest, PartThatFailsInTheSecondOfThreeViewsIsTakenOutAgain)
{
  const auto views = sorted_views(3);
  for (const auto& view : views) {
    mModel.add_view(view.get());
  }
  const auto held = std::make_shared<int>(0);
  const PartPropFunction make = mMaker.function();
  std::vector<GView*> asked;
  const auto failing = [&, held](vtkDataObject* object, GView* view) -> Props {
    asked.push_back(view);
    if (view == views[1].get()) {
      throw HostError("host");
    }
    return make(object, view);
  };
  const auto uses = held.use_count();
  EXPECT_THROW(mModel.add_part(mData[0], failing), HostError);
  EXPECT_EQ(asked, (std::vector<GView*>{views[0].get(), views[1].get()}));
  EXPECT_EQ(mData[0]->GetReferenceCount(), 1);
  EXPECT_EQ(held.use_count(), uses); // the stored copy is gone
  EXPECT_EQ(mMaker.made[0], nullptr);
  for (const auto& view : views) {
    EXPECT_EQ(num_part_props(*view), 0);
    EXPECT_EQ(label_actors(*view).size(), 1U); // and all views are still connected
  }
}

TEST_F(GModelExceptionTest, PartThatFailedMayBeAddedAgain)
{
  mModel.add_view(&mView);
  EXPECT_THROW(mModel.add_part(mData[0], throwing()), HostError);
  mModel.add_part(mData[0], mMaker.function());
  EXPECT_TRUE(shows(mView, mMaker.made[0]));
  EXPECT_EQ(mData[0]->GetReferenceCount(), 2);
}

TEST_F(GModelExceptionTest, FailingPartLeavesOtherPartsAlone)
{
  mModel.add_view(&mView);
  mModel.add_part(mData[0], mMaker.function());
  const PropPointers before = shown(mView);
  EXPECT_THROW(mModel.add_part(mData[1], throwing()), HostError);
  EXPECT_EQ(shown(mView), before);
  EXPECT_EQ(mData[0]->GetReferenceCount(), 2);
}

TEST_F(GModelExceptionTest, ViewForWhichAPartFailsIsTakenOutAgain)
{
  const auto views = sorted_views(2);
  Maker never;
  mModel.add_view(views[1].get());
  mModel.add_part(mData[0], mMaker.function());
  mModel.add_part(mData[2], never.function());
  mModel.add_part(mData[1], [&](vtkDataObject*, GView* view) -> Props {
    if (view == views[0].get()) {
      throw HostError("host");
    }
    return {};
  });
  const PropPointers before = shown(*views[1]);
  EXPECT_THROW(mModel.add_view(views[0].get()), HostError);
  EXPECT_TRUE(shown(*views[0]).empty());
  EXPECT_EQ(mMaker.made[1], nullptr);  // what the first part made for it
  EXPECT_EQ(never.calls.size(), 1U);   // the part after the failing one was not asked
  EXPECT_EQ(shown(*views[1]), before); // the other view has everything
  mModel.remove_part(mData[1]);        // and without the part that fails
  mModel.add_view(views[0].get());     // the view can be connected
  EXPECT_EQ(num_part_props(*views[0]), 2);
}

TEST_F(GModelExceptionTest, FailingPartMayHaveLeftByItself)
{
  mModel.add_view(&mView);
  EXPECT_THROW(mModel.add_part(mData[0],
                               [&](vtkDataObject* object, GView*) -> Props {
                                 mModel.remove_part(object);
                                 throw HostError("host");
                               }),
               HostError);
  EXPECT_EQ(mData[0]->GetReferenceCount(), 1);
}

TEST_F(GModelExceptionTest, ViewOfAFailingPartMayHaveLeftByItself)
{
  auto view = std::make_unique<PlainView>();
  mModel.add_part(mData[0], [&](vtkDataObject*, GView*) -> Props {
    view.reset();
    throw HostError("host");
  });
  EXPECT_THROW(mModel.add_view(view.get()), HostError);
  EXPECT_EQ(view, nullptr);
}

TEST_F(GModelExceptionTest, ModelOfAFailingPartMayBeGone)
{
  auto model = std::make_unique<ScriptedModel>();
  model->add_view(&mView);
  EXPECT_THROW(model->add_part(mData[0],
                               [&](vtkDataObject*, GView*) -> Props {
                                 model.reset();
                                 throw HostError("host");
                               }),
               HostError);
  EXPECT_EQ(mData[0]->GetReferenceCount(), 1);
  EXPECT_TRUE(shown(mView).empty());
}

// --- Prop functions that call back
// ------------------------------------------------------------------------------

class GModelReentrancyTest : public ModelTest
{};

TEST_F(GModelReentrancyTest, PropFunctionMayAddAnotherPart)
{
  const auto views = sorted_views(2);
  for (const auto& view : views) {
    mModel.add_view(view.get());
  }
  Maker inner;
  mModel.add_part(mData[0],
                  acting_once([&](vtkDataObject*, GView*) { mModel.add_part(mData[1], inner.function()); }));
  EXPECT_EQ(inner.calls, (std::vector<Call>{{mData[1], views[0].get()}, {mData[1], views[1].get()}}));
  EXPECT_EQ(num_part_props(*views[0]), 2);
  EXPECT_EQ(num_part_props(*views[1]), 2);
}

// The new part stands in the map that is being gone through, before or behind the part whose function runs.
TEST_F(GModelReentrancyTest, PropFunctionMayAddPartsWhileAViewIsAdded)
{
  Maker inner;
  mModel.add_part(mData[1], acting_once([&](vtkDataObject*, GView*) {
                    mModel.add_part(mData[0], inner.function());
                    mModel.add_part(mData[2], inner.function());
                  }));
  mModel.add_view(&mView);
  EXPECT_EQ(inner.calls, (std::vector<Call>{{mData[0], &mView}, {mData[2], &mView}}));
  EXPECT_EQ(num_part_props(mView), 3);
}

TEST_F(GModelReentrancyTest, PropFunctionMayAddItsOwnPartAgain)
{
  Maker inner;
  mModel.add_view(&mView);
  mModel.add_part(mData[0], acting_once([&](vtkDataObject* object, GView*) {
                    mModel.add_part(object, inner.function());
                  }));
  EXPECT_TRUE(inner.calls.empty());
  EXPECT_EQ(mData[0]->GetReferenceCount(), 2);
}

TEST_F(GModelReentrancyTest, PropFunctionMayRemoveItsOwnPart)
{
  const auto views = sorted_views(2);
  for (const auto& view : views) {
    mModel.add_view(view.get());
  }
  std::vector<GView*> asked;
  mModel.add_part(mData[0], [&](vtkDataObject* object, GView* view) {
    asked.push_back(view);
    mModel.remove_part(object);
    return Props{vtkSmartPointer<vtkActor>::New()};
  });
  EXPECT_EQ(asked.size(), 1U); // there is no such part when it is the other view's turn
  EXPECT_EQ(mData[0]->GetReferenceCount(), 1);
  EXPECT_EQ(num_part_props(*views[0]), 0);
  EXPECT_EQ(num_part_props(*views[1]), 0);
}

// The function's own captures must outlive its call.
TEST_F(GModelReentrancyTest, FunctionOfARemovedPartRunsToItsEnd)
{
  mModel.add_view(&mView);
  auto text = std::make_shared<std::string>("a text too long to be kept in place by the string itself");
  const std::weak_ptr<std::string> watched = text;
  std::string read;
  mModel.add_part(mData[0], [this, &read, text](vtkDataObject* object, GView*) {
    mModel.remove_part(object);
    read = *text;
    return Props();
  });
  EXPECT_EQ(read, *text);
  text.reset();
  EXPECT_TRUE(watched.expired());
}

TEST_F(GModelReentrancyTest, DataOfARemovedPartLivesToTheEndOfTheCall)
{
  auto data = vtkSmartPointer<vtkPolyData>::New();
  const vtkWeakPointer<vtkPolyData> watched(data);
  bool was_alive = false;
  mModel.add_part(data, [&](vtkDataObject* object, GView*) {
    mModel.remove_part(object);
    was_alive = watched != nullptr;
    return Props();
  });
  data = nullptr; // the part has the last reference
  mModel.add_view(&mView);
  EXPECT_TRUE(was_alive);
  EXPECT_EQ(watched, nullptr);
}

TEST_F(GModelReentrancyTest, PropFunctionMayRemoveOtherParts)
{
  Maker others;
  mModel.add_part(mData[0], others.function());
  mModel.add_part(mData[1], acting_once([&](vtkDataObject*, GView*) {
                    mModel.remove_part(mData[0]);
                    mModel.remove_part(mData[2]);
                  }));
  mModel.add_part(mData[2], others.function());
  mModel.add_view(&mView);
  EXPECT_EQ(others.calls, (std::vector<Call>{{mData[0], &mView}})); // the third is gone before its turn
  EXPECT_EQ(num_part_props(mView), 1);
}

TEST_F(GModelReentrancyTest, PropFunctionMayReplaceItsOwnPart)
{
  Maker inner;
  mModel.add_view(&mView);
  Maker outer;
  const PartPropFunction make = outer.function();
  mModel.add_part(mData[0], [&](vtkDataObject* object, GView* where) {
    mModel.remove_part(object);
    mModel.add_part(object, inner.function());
    return make(object, where);
  });
  // The part that is there now is the inner one; what the removed one made belongs to nobody.
  EXPECT_EQ(num_part_props(mView), 1);
  EXPECT_TRUE(shows(mView, inner.made[0]));
  EXPECT_EQ(outer.made[0], nullptr);
  EXPECT_EQ(mData[0]->GetReferenceCount(), 2);
}

TEST_F(GModelReentrancyTest, PropFunctionMayClearTheModel)
{
  Maker others;
  mModel.add_label("gone", BrantVector(0, 0, 0), BRANT_RED);
  mModel.add_part(mData[0], others.function());
  mModel.add_part(mData[1], acting_once([&](vtkDataObject*, GView*) { mModel.clear(); }));
  mModel.add_part(mData[2], others.function());
  mModel.add_view(&mView);
  EXPECT_EQ(num_part_props(mView), 0);
  EXPECT_EQ(label_actors(mView).size(), 1U); // the view is connected all the same
  EXPECT_EQ(others.calls.size(), 1U);
  for (const auto& each : mData) {
    EXPECT_EQ(each->GetReferenceCount(), 1);
  }
}

TEST_F(GModelReentrancyTest, PropFunctionMayRemoveItsView)
{
  Maker others;
  mModel.add_part(mData[0], others.function());
  mModel.add_part(mData[1], acting_once([&](vtkDataObject*, GView* where) { mModel.remove_view(where); }));
  mModel.add_part(mData[2], others.function());
  mModel.add_view(&mView);
  EXPECT_TRUE(shown(mView).empty()); // no props, no labels
  EXPECT_EQ(others.calls.size(), 1U);
  EXPECT_EQ(others.made[0], nullptr);
}

TEST_F(GModelReentrancyTest, PropFunctionMayRemoveAnotherView)
{
  const auto views = sorted_views(3);
  for (const auto& view : views) {
    mModel.add_view(view.get());
  }
  mModel.add_part(mData[0], acting_once([&](vtkDataObject*, GView*) {
                    mModel.remove_view(views[0].get());
                    mModel.remove_view(views[1].get());
                  }));
  EXPECT_TRUE(shown(*views[0]).empty()); // it was the one being asked for
  EXPECT_TRUE(shown(*views[1]).empty());
  EXPECT_EQ(num_part_props(*views[2]), 1);
}

TEST_F(GModelReentrancyTest, PropFunctionMayAddAnotherView)
{
  const auto views = sorted_views(3);
  mModel.add_view(views[1].get());
  Maker other;
  mModel.add_part(mData[1], other.function());
  mModel.add_part(mData[0], acting_once([&](vtkDataObject*, GView*) {
                    mModel.add_view(views[0].get());
                    mModel.add_view(views[2].get());
                  }));
  for (const auto& view : views) {
    EXPECT_EQ(num_part_props(*view), 2);
    EXPECT_EQ(label_actors(*view).size(), 1U);
  }
  EXPECT_EQ(other.calls.size(), 3U);
}

// What comes back is made at once; when its turn comes it has its props already.
TEST_F(GModelReentrancyTest, PropFunctionMayTakeOutAndPutBackAPartThatWaits)
{
  Maker waiting;
  mModel.add_part(mData[0], acting_once([&](vtkDataObject*, GView*) {
                    mModel.remove_part(mData[1]);
                    mModel.add_part(mData[1], waiting.function());
                  }));
  mModel.add_part(mData[1], nothing());
  mModel.add_view(&mView);
  EXPECT_EQ(waiting.calls, (std::vector<Call>{{mData[1], &mView}}));
  EXPECT_EQ(num_part_props(mView), 2);
}

TEST_F(GModelReentrancyTest, PropFunctionMayTakeOutAndPutBackAViewThatWaits)
{
  const auto views = sorted_views(2);
  for (const auto& view : views) {
    mModel.add_view(view.get());
  }
  std::vector<GView*> asked;
  mModel.add_part(mData[0], [&](vtkDataObject*, GView* view) {
    asked.push_back(view);
    if (asked.size() == 1) {
      mModel.remove_view(views[1].get());
      mModel.add_view(views[1].get());
    }
    return Props{vtkSmartPointer<vtkActor>::New()};
  });
  EXPECT_EQ(asked, (std::vector<GView*>{views[0].get(), views[1].get()}));
  EXPECT_EQ(num_part_props(*views[1]), 1);
}

TEST_F(GModelReentrancyTest, PropFunctionMayAddItsOwnViewAgain)
{
  int calls = 0;
  mModel.add_part(mData[0], [&](vtkDataObject*, GView* where) {
    ++calls;
    mModel.add_view(where);
    return Props{vtkSmartPointer<vtkActor>::New()};
  });
  mModel.add_view(&mView);
  EXPECT_EQ(calls, 1);
  EXPECT_EQ(num_part_props(mView), 1);
}

TEST_F(GModelReentrancyTest, PropFunctionMayUnhook)
{
  mModel.add_view(&mView);
  mModel.add_part(mData[0], nothing());
  mModel.add_part(mData[1], acting_once([&](vtkDataObject*, GView*) { mModel.unhook_from_views(); }));
  EXPECT_TRUE(shown(mView).empty());
  mModel.hook_to_views();
  EXPECT_EQ(num_part_props(mView), 1);
  EXPECT_EQ(label_actors(mView).size(), 1U);
}

TEST_F(GModelReentrancyTest, PropFunctionMayUnhookWhileAViewIsAdded)
{
  mModel.add_part(mData[0], acting_once([&](vtkDataObject*, GView*) { mModel.unhook_from_views(); }));
  mModel.add_part(mData[1], nothing());
  mModel.add_view(&mView);
  EXPECT_TRUE(shown(mView).empty());
  mModel.hook_to_views();
  EXPECT_EQ(label_actors(mView).size(), 1U);
}

TEST_F(GModelReentrancyTest, PropFunctionMayHook)
{
  mModel.unhook_from_views();
  mModel.add_view(&mView);
  mModel.add_part(mData[0], acting_once([&](vtkDataObject*, GView*) { mModel.hook_to_views(); }));
  EXPECT_EQ(num_part_props(mView), 1);
  EXPECT_EQ(label_actors(mView).size(), 1U);
}

TEST_F(GModelReentrancyTest, PropFunctionMayUnhookAndHook)
{
  mModel.add_part(mData[0], nothing());
  mModel.add_part(mData[1], acting_once([&](vtkDataObject*, GView*) {
                    mModel.unhook_from_views();
                    mModel.hook_to_views();
                  }));
  mModel.add_view(&mView);
  EXPECT_EQ(num_part_props(mView), 1);
  EXPECT_EQ(label_actors(mView).size(), 1U);
}

TEST_F(GModelReentrancyTest, PropFunctionMayDestroyItsView)
{
  auto view = std::make_unique<PlainView>();
  Maker other;
  mModel.add_part(mData[0], acting_once([&](vtkDataObject*, GView*) { view.reset(); }));
  mModel.add_part(mData[1], other.function());
  mModel.add_view(view.get());
  EXPECT_EQ(view, nullptr);
  EXPECT_TRUE(other.calls.empty()); // there is no view to ask it for
}

TEST_F(GModelReentrancyTest, PropFunctionMayDestroyAViewThatWaitsForThePart)
{
  auto views = sorted_views(3);
  for (const auto& view : views) {
    mModel.add_view(view.get());
  }
  mModel.add_part(mData[0], acting_once([&](vtkDataObject*, GView*) { views[1].reset(); }));
  EXPECT_EQ(num_part_props(*views[0]), 1);
  EXPECT_EQ(num_part_props(*views[2]), 1);
}

TEST_F(GModelReentrancyTest, PropFunctionMayDestroyTheModelThatGetsThePart)
{
  auto model = std::make_unique<ScriptedModel>();
  const auto views = sorted_views(2);
  for (const auto& view : views) {
    model->add_view(view.get());
  }
  model->add_part(mData[0], acting_once([&](vtkDataObject*, GView*) { model.reset(); }));
  EXPECT_EQ(model, nullptr);
  EXPECT_EQ(mData[0]->GetReferenceCount(), 1);
  EXPECT_TRUE(shown(*views[0]).empty());
  EXPECT_TRUE(shown(*views[1]).empty());
}

TEST_F(GModelReentrancyTest, PropFunctionMayDestroyTheModelThatGetsTheView)
{
  auto model = std::make_unique<ScriptedModel>();
  Maker other;
  model->add_part(mData[0], acting_once([&](vtkDataObject*, GView*) { model.reset(); }));
  model->add_part(mData[1], other.function());
  model->add_view(&mView);
  EXPECT_EQ(model, nullptr);
  EXPECT_TRUE(other.calls.empty());
  EXPECT_TRUE(shown(mView).empty());
}

// --- Clearing
// ---------------------------------------------------------------------------------------------------

class GModelClearTest : public ModelTest
{};

TEST_F(GModelClearTest, RemovesAllPartsAndKeepsViews)
{
  const auto views = sorted_views(2);
  Maker maker(2);
  for (const auto& view : views) {
    mModel.add_view(view.get());
  }
  for (const auto& each : mData) {
    mModel.add_part(each, maker.function());
  }
  mModel.clear();
  for (const auto& each : mData) {
    EXPECT_EQ(each->GetReferenceCount(), 1);
  }
  for (const auto& prop : maker.made) {
    EXPECT_EQ(prop, nullptr);
  }
  Maker next;
  mModel.add_part(mData[0], next.function());
  EXPECT_EQ(next.calls.size(), 2U);
  EXPECT_TRUE(shows(*views[0], next.made[0]));
  EXPECT_EQ(label_actors(*views[0]).size(), 1U);
}

TEST_F(GModelClearTest, RemovesEachPartOnceThroughTheVirtualSlotInOrder)
{
  for (const std::size_t i : {1U, 2U, 0U}) {
    mModel.add_part(mData[i], nothing());
  }
  mModel.clear();
  EXPECT_EQ(mModel.removed, (std::vector<vtkDataObject*>{mData[0], mData[1], mData[2]}));
}

TEST_F(GModelClearTest, ForgetsLabelsAndTheirKeys)
{
  mModel.add_label("a", BrantVector(0, 0, 0), BRANT_RED);
  mModel.add_label("b", BrantVector(0, 0, 0), BRANT_RED);
  const auto mapper = label_mapper(mModel);
  mModel.clear();
  EXPECT_EQ(mapper->size(), 0U);
  EXPECT_EQ(mModel.add_label("c", BrantVector(0, 0, 0), BRANT_RED), 0);
}

TEST_F(GModelClearTest, IsHarmlessWhenEmptyOrRepeated)
{
  mModel.clear();
  mModel.clear();
  mModel.add_view(&mView);
  mModel.clear();
  EXPECT_EQ(shown(mView).size(), 1U);
}

TEST_F(GModelClearTest, WorksWhileUnhooked)
{
  mModel.add_view(&mView);
  for (const auto& each : mData) {
    mModel.add_part(each, mMaker.function());
  }
  mModel.unhook_from_views();
  mModel.clear();
  EXPECT_EQ(mData[0]->GetReferenceCount(), 1);
  EXPECT_FALSE(mModel.is_hooked_to_views());
  mModel.hook_to_views();
  EXPECT_EQ(num_part_props(mView), 0);
}

// An override that does nothing must not keep us in the loop for ever.
TEST_F(GModelClearTest, EndsThoughAnOverrideKeepsTheParts)
{
  mModel.add_view(&mView);
  for (const auto& each : mData) {
    mModel.add_part(each, one_prop());
  }
  mModel.passes_on = false;
  mModel.clear();
  EXPECT_EQ(mModel.removed.size(), 3U);
  EXPECT_EQ(num_part_props(mView), 0);
  EXPECT_EQ(mData[0]->GetReferenceCount(), 1);
  EXPECT_EQ(mData[1]->GetReferenceCount(), 1);
}

TEST_F(GModelClearTest, TakesAllPropsOutBeforeTheFirstRemoval)
{
  mModel.add_view(&mView);
  for (const auto& each : mData) {
    mModel.add_part(each, mMaker.function());
  }
  std::vector<std::ptrdiff_t> seen;
  mModel.on_remove = [&](vtkDataObject*) { seen.push_back(num_part_props(mView)); };
  mModel.clear();
  EXPECT_EQ(seen, (std::vector<std::ptrdiff_t>{0, 0, 0}));
}

TEST_F(GModelClearTest, RemainingPartsArePropPointersWhenAnOverrideThrows)
{
  const auto views = sorted_views(2);
  for (const auto& view : views) {
    mModel.add_view(view.get());
  }
  for (const auto& each : mData) {
    mModel.add_part(each, mMaker.function());
  }
  mModel.add_label("still there", BrantVector(0, 0, 0), BRANT_RED);
  mModel.on_remove = [&](vtkDataObject* object) {
    if (object == mData[1]) {
      throw HostError("host");
    }
  };
  EXPECT_THROW(mModel.clear(), HostError);
  EXPECT_EQ(mData[0]->GetReferenceCount(), 1);
  EXPECT_EQ(mData[1]->GetReferenceCount(), 2);
  EXPECT_EQ(mData[2]->GetReferenceCount(), 2);
  // Two views were asked for each part in turn: the last four props are those of the parts that remain.
  for (std::size_t i = 0; i < mMaker.made.size(); ++i) {
    EXPECT_EQ(mMaker.made[i] == nullptr, i < 2) << i;
  }
  for (std::size_t i = 0; i < 2; ++i) {
    EXPECT_EQ(num_part_props(*views[i]), 2);
    EXPECT_TRUE(shows(*views[i], mMaker.made[2 + i]));
    EXPECT_TRUE(shows(*views[i], mMaker.made[4 + i]));
    EXPECT_EQ(label_actors(*views[i]).size(), 1U);
  }
  EXPECT_EQ(label_mapper(mModel)->size(), 1U);
  mModel.on_remove = nullptr;
  mModel.clear();
  EXPECT_EQ(num_part_props(*views[0]), 0);
}

TEST_F(GModelClearTest, NothingIsPropPointersWhenAnOverrideThrowsWhileUnhooked)
{
  mModel.add_view(&mView);
  mModel.add_part(mData[0], mMaker.function());
  mModel.unhook_from_views();
  mModel.on_remove = [](vtkDataObject*) { throw HostError("host"); };
  EXPECT_THROW(mModel.clear(), HostError);
  EXPECT_TRUE(shown(mView).empty());
  mModel.on_remove = nullptr;
  mModel.hook_to_views();
  EXPECT_TRUE(shows(mView, mMaker.made[0]));
}

TEST_F(GModelClearTest, NothingIsPropPointersWhenAnOverrideUnhooksAndThrows)
{
  mModel.add_view(&mView);
  mModel.add_part(mData[0], mMaker.function());
  mModel.on_remove = [&](vtkDataObject*) {
    mModel.unhook_from_views();
    throw HostError("host");
  };
  EXPECT_THROW(mModel.clear(), HostError);
  EXPECT_TRUE(shown(mView).empty());
}

TEST_F(GModelClearTest, OverrideMayAddParts)
{
  Maker late;
  mModel.add_view(&mView);
  mModel.add_part(mData[1], nothing());
  mModel.on_remove = [&](vtkDataObject* object) {
    if (object == mData[1]) {
      mModel.add_part(mData[0], late.function());
    }
  };
  mModel.clear();
  EXPECT_EQ(mModel.removed, (std::vector<vtkDataObject*>{mData[1], mData[0]}));
  EXPECT_EQ(num_part_props(mView), 0);
  EXPECT_EQ(mData[0]->GetReferenceCount(), 1);
}

TEST_F(GModelClearTest, OverrideMayConnectAndDisconnectViews)
{
  auto views = sorted_views(3);
  mModel.add_view(views[0].get());
  mModel.add_view(views[2].get());
  for (const auto& each : mData) {
    mModel.add_part(each, mMaker.function());
  }
  mModel.on_remove = [&](vtkDataObject* object) {
    if (object == mData[0]) {
      mModel.remove_view(views[0].get());
      mModel.add_view(views[1].get());
      views[2].reset();
    }
  };
  mModel.clear();
  EXPECT_TRUE(shown(*views[0]).empty());
  EXPECT_EQ(shown(*views[1]).size(), 1U); // labels
  for (const auto& prop : mMaker.made) {
    EXPECT_EQ(prop, nullptr);
  }
}

// --- Deferred garbage collection
// --------------------------------------------------------------------------------

class GModelGarbageTest : public ModelTest
{};

/// Calls a function at the end of its life: what a prop function holds goes inside the bracket.
class AtEnd
{
public:
  explicit AtEnd(std::function<void()> act) : mAct(std::move(act)) {}
  ~AtEnd() { mAct(); }
  AtEnd(const AtEnd&) = delete;
  AtEnd& operator=(const AtEnd&) = delete;

private:
  std::function<void()> mAct;
};

TEST_F(GModelGarbageTest, RemovePartDefersCollection)
{
  bool deferred = false;
  vtkWeakPointer<vtkObject> cycle;
  auto held = std::make_shared<AtEnd>([&] {
    cycle = drop_a_cycle();
    deferred = cycle != nullptr;
  });
  mModel.add_part(mData[0], [held](vtkDataObject*, GView*) { return Props(); });
  held.reset();
  ASSERT_TRUE(is_collecting());
  mModel.remove_part(mData[0]);
  EXPECT_TRUE(deferred);
  EXPECT_EQ(cycle, nullptr); // collected when the bracket was closed
  EXPECT_TRUE(is_collecting());
}

TEST_F(GModelGarbageTest, ClearDefersCollectionToItsEnd)
{
  std::vector<vtkWeakPointer<vtkObject>> cycles;
  for (const auto& each : mData) {
    mModel.add_part(each, nothing());
  }
  std::vector<bool> first_is_alive;
  mModel.on_remove = [&](vtkDataObject*) {
    cycles.push_back(drop_a_cycle());
    first_is_alive.push_back(cycles[0] != nullptr);
  };
  mModel.clear();
  ASSERT_EQ(cycles.size(), 3U);
  EXPECT_EQ(first_is_alive, (std::vector<bool>{true, true, true})); // also while the last part goes
  EXPECT_EQ(cycles[0], nullptr);
  EXPECT_EQ(cycles[1], nullptr);
}

// An open bracket would stop collection in the whole process.
TEST_F(GModelGarbageTest, ClearThatThrowsClosesTheBracket)
{
  mModel.add_part(mData[0], nothing());
  mModel.on_remove = [](vtkDataObject*) { throw HostError("host"); };
  EXPECT_THROW(mModel.clear(), HostError);
  EXPECT_TRUE(is_collecting());
}

TEST_F(GModelGarbageTest, PartThatFailsClosesTheBracket)
{
  mModel.add_view(&mView);
  EXPECT_THROW(mModel.add_part(mData[0], throwing()), HostError);
  EXPECT_TRUE(is_collecting());
}

TEST_F(GModelGarbageTest, ViewThatFailsClosesTheBracket)
{
  mModel.add_part(mData[0], throwing());
  EXPECT_THROW(mModel.add_view(&mView), HostError);
  EXPECT_TRUE(is_collecting());
}

TEST_F(GModelGarbageTest, DestructorClosesTheBracket)
{
  {
    ScriptedModel model;
    const auto data = sorted_data(2);
    model.add_part(data[0], nothing());
    model.add_part(data[1], nothing());
  }
  EXPECT_TRUE(is_collecting());
}

// --- Ends of life
// -----------------------------------------------------------------------------------------------

class GModelLifeTest : public ModelTest
{};

TEST_F(GModelLifeTest, DestructorLeavesViewsAndLetsEverythingGo)
{
  const auto views = sorted_views(2);
  const auto held = std::make_shared<int>(0);
  vtkWeakPointer<vtkActor2D> labels;
  {
    ScriptedModel model;
    for (const auto& view : views) {
      model.add_view(view.get());
    }
    model.add_part(mData[0], mMaker.function());
    model.add_part(mData[1], [held](vtkDataObject*, GView*) { return Props(); });
    model.add_label("x", BrantVector(0, 0, 0), BRANT_RED);
    labels = label_actors(*views[0])[0];
  }
  EXPECT_TRUE(shown(*views[0]).empty());
  EXPECT_TRUE(shown(*views[1]).empty());
  EXPECT_EQ(labels, nullptr);
  EXPECT_EQ(held.use_count(), 1);
  EXPECT_EQ(mData[0]->GetReferenceCount(), 1);
  EXPECT_EQ(mData[1]->GetReferenceCount(), 1);
  EXPECT_EQ(mMaker.made[0], nullptr);
  EXPECT_EQ(mMaker.made[1], nullptr);
}

TEST_F(GModelLifeTest, DestructorOfAnUnhookedModelLetsEverythingGo)
{
  {
    ScriptedModel model;
    model.add_view(&mView);
    model.add_part(mData[0], mMaker.function());
    model.unhook_from_views();
  }
  EXPECT_EQ(mMaker.made[0], nullptr);
  EXPECT_EQ(mData[0]->GetReferenceCount(), 1);
}

TEST_F(GModelLifeTest, DestructorOfABusyRendererLeavesTheHostsProps)
{
  const vtkNew<vtkActor> of_host;
  {
    ScriptedModel model;
    const auto data = sorted_data(1);
    model.add_view(&mView);
    mView.get_renderer()->AddViewProp(of_host);
    model.add_part(data[0], one_prop());
  }
  EXPECT_EQ(shown(mView), PropPointers{of_host});
}

/// What a model may be asked for after one of its views was destroyed without leaving it.
struct AfterViewDied
{
  const char* name;
  std::function<void(ScriptedModel&, GView* dead, vtkDataObject* part)> ask;
};

void PrintTo(const AfterViewDied& param, std::ostream* out)
{
  *out << param.name;
}

class GModelDeadViewTest : public ModelTest, public ::testing::WithParamInterface<AfterViewDied>
{};

TEST_P(GModelDeadViewTest, IsNoticedAndItsPropsLetGo)
{
  auto dying = std::make_unique<PlainView>();
  GView* dead = dying.get();
  mModel.add_view(&mView);
  mModel.add_view(dead);
  mModel.add_part(mData[0], mMaker.function());
  mModel.add_label("x", BrantVector(0, 0, 0), BRANT_RED);
  dying.reset();
  GetParam().ask(mModel, dead, mData[0]);
  for (std::size_t i = 0; i < mMaker.calls.size(); ++i) {
    EXPECT_TRUE(mMaker.calls[i].view != dead || mMaker.made[i] == nullptr);
  }
}

INSTANTIATE_TEST_SUITE_P(
    All, GModelDeadViewTest,
    ::testing::Values(
        AfterViewDied{"AddPart",
                      [](auto& model, auto*, auto*) { model.add_part(sorted_data(1)[0], nothing()); }},
        AfterViewDied{"RemovePart", [](auto& model, auto*, auto* part) { model.remove_part(part); }},
        AfterViewDied{"RemoveView", [](auto& model, auto* dead, auto*) { model.remove_view(dead); }},
        AfterViewDied{"AddView",
                      [](auto& model, auto*, auto*) {
                        PlainView another;
                        model.add_view(&another);
                        model.remove_view(&another);
                      }},
        AfterViewDied{"Unhook", [](auto& model, auto*, auto*) { model.unhook_from_views(); }},
        AfterViewDied{"UnhookAndHook",
                      [](auto& model, auto*, auto*) {
                        model.unhook_from_views();
                        model.hook_to_views();
                      }},
        AfterViewDied{"Clear", [](auto& model, auto*, auto*) { model.clear(); }},
        AfterViewDied{"ClearUnhooked",
                      [](auto& model, auto*, auto*) {
                        model.unhook_from_views();
                        model.clear();
                      }}),
    [](const auto& each) { return std::string(each.param.name); });

TEST_F(GModelLifeTest, ViewMayDieBeforeTheModel)
{
  {
    PlainView view;
    mModel.add_view(&view);
    mModel.add_part(mData[0], mMaker.function());
  }
  {
    PlainView view;
    mModel.unhook_from_views();
    mModel.add_view(&view); // and again, unhooked
  }
  EXPECT_EQ(mData[0]->GetReferenceCount(), 2);
}

/// Views at one and the same address, one after the other.
class Place
{
public:
  Place() { renew(); }
  ~Place() { mView->~GView(); }
  Place(const Place&) = delete;
  Place& operator=(const Place&) = delete;

  /// Destroys the view and makes a new one in its place.
  GView* renew()
  {
    if (mView != nullptr) {
      mView->~GView();
    }
    mView = new (mRoom) GView;
    mView->set_triad_vis(false);
    return mView;
  }

  [[nodiscard]] GView* view() const { return mView; }

private:
  alignas(GView) unsigned char mRoom[sizeof(GView)] = {};
  GView* mView = nullptr;
};

TEST_F(GModelLifeTest, NewViewAtTheAddressOfADeadOneIsNotConnected)
{
  Place place;
  mModel.add_view(place.view());
  mModel.add_part(mData[0], mMaker.function());
  GView* next = place.renew();
  mModel.add_part(mData[1], mMaker.function());
  mModel.unhook_from_views();
  mModel.hook_to_views();
  EXPECT_EQ(mMaker.calls.size(), 1U);
  EXPECT_TRUE(shown(*next).empty());
}

TEST_F(GModelLifeTest, NewViewAtTheAddressOfADeadOneCanBeConnected)
{
  Place place;
  mModel.add_part(mData[0], mMaker.function());
  mModel.add_view(place.view());
  GView* next = place.renew();
  mModel.add_view(next);
  EXPECT_EQ(mMaker.calls.size(), 2U);
  EXPECT_EQ(num_part_props(*next), 1);
  EXPECT_TRUE(shows(*next, mMaker.made[1]));
  EXPECT_EQ(label_actors(*next).size(), 1U);
}

TEST_F(GModelLifeTest, RemovingTheDeadViewLeavesANewOneAtItsAddressAlone)
{
  Place place;
  const vtkNew<vtkActor> prop;
  mModel.add_part(mData[0], always(prop));
  mModel.add_view(place.view());
  GView* next = place.renew();
  next->add_props({prop.Get()}); // by the host
  mModel.remove_view(next);
  EXPECT_TRUE(shows(*next, prop));
}

// The address is the same when the function is done, the view is not.
TEST_F(GModelLifeTest, PropFunctionMayReplaceItsViewInPlace)
{
  Place place;
  Maker other;
  mModel.add_part(mData[0], acting_once([&](vtkDataObject*, GView*) { place.renew(); }));
  mModel.add_part(mData[1], other.function());
  mModel.add_view(place.view());
  EXPECT_TRUE(other.calls.empty());
  EXPECT_TRUE(shown(*place.view()).empty());
}

TEST_F(GModelLifeTest, ModelsAndViewsMayGoInAnyOrder)
{
  for (int order = 0; order < 4; ++order) {
    auto one = std::make_unique<ScriptedModel>();
    auto other = std::make_unique<ScriptedModel>();
    auto views = sorted_views(2);
    for (ScriptedModel* model : {one.get(), other.get()}) {
      for (const auto& view : views) {
        model->add_view(view.get());
      }
      model->add_part(mData[0], one_prop());
      model->add_part(mData[1], nothing());
    }
    const bool views_first = order % 2 == 0;
    const bool first_view_first = order / 2 == 0;
    if (!views_first) {
      one.reset();
    }
    views[first_view_first ? 0 : 1].reset();
    if (views_first) {
      one.reset();
    }
    views.clear();
    other.reset();
    EXPECT_EQ(mData[0]->GetReferenceCount(), 1);
    EXPECT_EQ(mData[1]->GetReferenceCount(), 1);
  }
}

} // namespace
