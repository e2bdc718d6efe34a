// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// What the host's code does when a model calls it: prop functions that throw, that call back, and that
// destroy what they are called for.
#include "GModel.h"

#include "ModelFixture.h"

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

} // namespace
