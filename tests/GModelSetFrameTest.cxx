// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// Updates and frames of a model set, and how it, its models and its views end.
#include "GModelSet.h"

#include "ModelSetFixture.h"

namespace {

using namespace morrow_test;

// --- Updating
// --------------------------------------------------------------------------------------------------------

TEST_F(GModelSetTest, UpdatesModelsInListOrder)
{
  Models order;
  mOne.on_update = [&] { order.push_back(&mOne); };
  mOther.on_update = [&] { order.push_back(&mOther); };
  mSet.add_model(&mOther);
  mSet.add_model(&mOne);
  mSet.update_model_parts();
  EXPECT_EQ(order, (Models{&mOther, &mOne}));
}

TEST_F(GModelSetTest, AddingUpdatesNothing)
{
  fill();
  EXPECT_EQ(mOne.updates, 0);
}

TEST_F(GModelSetTest, UnhookedModelsAreNotUpdated)
{
  fill();
  mOne.unhook_from_views();
  mSet.update_model_parts();
  EXPECT_EQ(mOne.updates, 0);
  EXPECT_EQ(mOther.updates, 1);
  mOne.hook_to_views();
  mSet.update_model_parts();
  EXPECT_EQ(mOne.updates, 1);
}

TEST_F(GModelSetTest, ModelUnhookedInTheCourseOfAnUpdateIsNotUpdated)
{
  fill();
  mOne.on_update = [&] { mOther.unhook_from_views(); };
  mSet.update_model_parts();
  EXPECT_EQ(mOther.updates, 0);
}

// The set itself does not ask for the graphics status; its callers do.
TEST_F(GModelSetTest, UpdatesWhateverTheGraphicsStatus)
{
  fill();
  MRUtil::set_graphics_status(MRUtil::GRAPHICS_DISABLED);
  mSet.update_model_parts();
  EXPECT_EQ(mOne.updates, 1);
}

TEST_F(GModelSetTest, UpdatesWithoutViews)
{
  mSet.add_model(&mOne);
  mSet.update_model_parts();
  EXPECT_EQ(mOne.updates, 1);
}

TEST_F(GModelSetTest, UpdateMayRemoveItsOwnModel)
{
  fill();
  mOne.on_update = [&] { mSet.remove_model(&mOne); };
  mSet.update_model_parts();
  EXPECT_EQ(mOther.updates, 1); // nobody is passed over
  EXPECT_EQ(mSet.models(), Models{&mOther});
}

TEST_F(GModelSetTest, UpdateMayRemoveALaterModel)
{
  fill();
  mOne.on_update = [&] { mSet.remove_model(&mOther); };
  mSet.update_model_parts();
  EXPECT_EQ(mOther.updates, 0);
}

TEST_F(GModelSetTest, UpdateMayRemoveAnEarlierModel)
{
  ScriptedModel third;
  fill();
  mSet.add_model(&third);
  mOther.on_update = [&] { mSet.remove_model(&mOne); };
  mSet.update_model_parts();
  EXPECT_EQ(mOne.updates, 1);
  EXPECT_EQ(mOther.updates, 1);
  EXPECT_EQ(third.updates, 1); // once, though it has moved up
}

TEST_F(GModelSetTest, UpdateMayAddAModel)
{
  ScriptedModel third;
  fill();
  mOne.on_update = [&] { mSet.add_model(&third); };
  mSet.update_model_parts();
  EXPECT_EQ(third.updates, 0); // its turn comes with the next update
  mSet.update_model_parts();
  EXPECT_EQ(third.updates, 1);
}

TEST_F(GModelSetTest, UpdateMayRemoveAndAddTheSameModel)
{
  fill();
  mOne.on_update = [&] {
    mSet.remove_model(&mOther);
    mSet.add_model(&mOther);
  };
  mSet.update_model_parts();
  EXPECT_EQ(mOther.updates, 1);
}

TEST_F(GModelSetTest, UpdateMayDestroyItsOwnModel)
{
  auto dying = std::make_unique<ScriptedModel>();
  mSet.add_model(dying.get());
  mSet.add_model(&mOne);
  dying->on_update = [&] { dying.reset(); };
  mSet.update_model_parts();
  EXPECT_EQ(mSet.models(), Models{&mOne});
  EXPECT_EQ(mOne.updates, 1);
}

TEST_F(GModelSetTest, UpdateMayDestroyALaterModel)
{
  auto dying = std::make_unique<ScriptedModel>();
  mSet.add_model(&mOne);
  mSet.add_model(dying.get());
  mOne.on_update = [&] { dying.reset(); };
  mSet.update_model_parts();
  EXPECT_EQ(mSet.models(), Models{&mOne});
}

TEST_F(GModelSetTest, UpdateMayChangeTheViews)
{
  fill();
  const auto third = make_view();
  mOne.on_update = [&] {
    mSet.remove_view(mLeft.get());
    mSet.add_view(third.get());
    mRight.reset();
  };
  mSet.update_model_parts();
  EXPECT_EQ(mSet.views(), Views{third.get()});
  EXPECT_EQ(mOther.updates, 1);
  EXPECT_EQ(shown(*third).size(), 4U);
}

TEST_F(GModelSetTest, ExceptionOfAnUpdatePassesOnWhenAllModelsAreUpdated)
{
  fill();
  mOne.on_update = [] { throw HostError("host"); };
  EXPECT_THROW(mSet.update_model_parts(), HostError);
  EXPECT_EQ(mOther.updates, 1);
  mOne.on_update = nullptr;
  mSet.update_model_parts();
  EXPECT_EQ(mOther.updates, 2);
}

class CountingSet : public GModelSet
{
public:
  void update_model_parts() override { ++updates; }

  int updates = 0;
};

TEST_F(GModelSetTest, ViewsUpdateThroughTheVirtualOperation)
{
  CountingSet set;
  set.add_view(mLeft.get());
  mLeft->update_models();
  EXPECT_EQ(set.updates, 1);
  MRUtil::set_graphics_status(MRUtil::GRAPHICS_SUSPENDED);
  mLeft->update_models();
  EXPECT_EQ(set.updates, 1);
}

// --- Ends of life
// ----------------------------------------------------------------------------------------------------

TEST_F(GModelSetTest, DestroyedSetLeavesViewsWithoutSetAndModelsWithoutViews)
{
  {
    GModelSet set;
    set.add_model(&mOne);
    set.add_model(&mOther);
    set.add_view(mLeft.get());
    set.add_view(mRight.get());
    mOne.add_part(mData[0], mOfOne.function());
  }
  EXPECT_EQ(mLeft->get_model_set(), nullptr);
  EXPECT_EQ(mRight->get_model_set(), nullptr);
  EXPECT_TRUE(shown(*mLeft).empty());
  EXPECT_TRUE(shown(*mRight).empty());
  for (const auto& prop : mOfOne.made) {
    EXPECT_EQ(prop, nullptr);
  }
  mOne.add_part(mData[1], mOfOne.function());
  EXPECT_EQ(mOfOne.calls.size(), 2U); // no view is left to make props for
  EXPECT_EQ(mData[0]->GetReferenceCount(), 2);
  mLeft->update_models();
}

TEST_F(GModelSetTest, DestroyedSetLeavesViewsOfModelsThatItDoesNotKnow)
{
  ScriptedModel direct;
  direct.add_view(mLeft.get());
  {
    GModelSet set;
    set.add_model(&mOne);
    set.add_view(mLeft.get());
  }
  EXPECT_EQ(shown(*mLeft).size(), 1U); // its labels
}

TEST_F(GModelSetTest, DestroyedViewLeavesTheSet)
{
  fill();
  mLeft.reset();
  EXPECT_EQ(mSet.views(), Views{mRight.get()});
  mSet.update_model_parts();
  mOne.add_part(mData[1], mOfOne.function());
  EXPECT_EQ(mOfOne.calls.back().view, mRight.get());
}

TEST_F(GModelSetTest, DestroyedModelLeavesTheSet)
{
  auto dying = std::make_unique<ScriptedModel>();
  dying->add_part(mData[0], mOfOne.function());
  mSet.add_model(&mOther);
  mSet.add_model(dying.get());
  mSet.add_view(mLeft.get());
  dying.reset();
  EXPECT_EQ(mSet.models(), Models{&mOther});
  EXPECT_EQ(shown(*mLeft).size(), 1U);
  mSet.update_model_parts();
  EXPECT_EQ(mOther.updates, 1);
}

TEST_F(GModelSetTest, DestroyedModelLeavesAllItsSets)
{
  GModelSet second;
  {
    ScriptedModel model;
    mSet.add_model(&model);
    second.add_model(&model);
  }
  EXPECT_TRUE(mSet.models().empty());
  EXPECT_TRUE(second.models().empty());
}

// A view that was taken out by hand must not remember the set.
TEST_F(GModelSetTest, ViewTakenOutByHandOutlivesTheSet)
{
  auto set = std::make_unique<GModelSet>();
  set->add_model(&mOne);
  mLeft->set_model_set(set.get());
  set->remove_view(mLeft.get());
  set.reset();
  mLeft->update_models();
  mLeft.reset();
}

TEST_F(GModelSetTest, ViewPutInByHandMayDieFirst)
{
  mSet.add_model(&mOne);
  mSet.add_view(mLeft.get());
  mLeft.reset();
  mSet.update_model_parts();
  EXPECT_TRUE(mSet.views().empty());
}

/// One of the six orders in which a set, a view and a model can go.
class GModelSetOrderTest : public ViewTest, public ::testing::WithParamInterface<std::string>
{};

INSTANTIATE_TEST_SUITE_P(, GModelSetOrderTest,
                         ::testing::Values("SetViewModel", "SetModelView", "ViewSetModel", "ViewModelSet",
                                           "ModelSetView", "ModelViewSet"),
                         [](const auto& each) { return each.param; });

TEST_P(GModelSetOrderTest, LeavesNothingBehind)
{
  const auto data = sorted_data(1);
  Maker maker;
  auto set = std::make_unique<GModelSet>();
  auto model = std::make_unique<ScriptedModel>();
  auto view = std::make_shared<PlainView>();
  set->add_model(model.get());
  set->add_view(view.get());
  model->add_part(data[0], maker.function());
  model->add_label("x", BrantVector(0, 0, 0), BRANT_RED);
  std::string order = GetParam();
  while (!order.empty()) {
    switch (order[0]) {
    case 'S':
      set.reset();
      order.erase(0, 3);
      break;
    case 'V':
      view.reset();
      order.erase(0, 4);
      break;
    default:
      model.reset();
      order.erase(0, 5);
    }
    // Whoever is left can do his work.
    if (set != nullptr) {
      EXPECT_EQ(set->views().size(), view != nullptr ? 1U : 0U);
      EXPECT_EQ(set->models().size(), model != nullptr ? 1U : 0U);
      set->update_model_parts();
    }
    if (view != nullptr) {
      EXPECT_EQ(view->get_model_set(), set.get());
      EXPECT_EQ(shown(*view).size(), set != nullptr && model != nullptr ? 2U : 0U);
      view->update_models();
    }
    if (model != nullptr) {
      model->unhook_from_views();
      model->hook_to_views();
    }
  }
  EXPECT_EQ(data[0]->GetReferenceCount(), 1);
  EXPECT_EQ(maker.made[0], nullptr);
}

// --- Frames
// ----------------------------------------------------------------------------------------------------------

class GModelSetFrameTest : public ViewRenderTest
{
protected:
  ScriptedModel mModel;
  std::shared_ptr<GView> mLeft = make_view();
  std::shared_ptr<GView> mRight = make_view();
  GModelSet mSet;
};

TEST_F(GModelSetFrameTest, RendersEachViewOnceHoweverManyModels)
{
  ScriptedModel other;
  mSet.add_model(&mModel);
  mSet.add_model(&other);
  mSet.add_view(mLeft.get());
  mSet.add_view(mRight.get());
  const FrameCounter left(mLeft->get_render_window());
  const FrameCounter right(mRight->get_render_window());
  mSet.render();
  EXPECT_EQ(left.ends(), 1);
  EXPECT_EQ(right.ends(), 1);
}

TEST_F(GModelSetFrameTest, RendersViewsInListOrder)
{
  const auto views = sorted_views(3);
  std::vector<std::size_t> order;
  std::vector<std::unique_ptr<EventHook>> hooks;
  for (const std::size_t i : {1U, 2U, 0U}) {
    mSet.add_view(views[i].get());
    hooks.push_back(std::make_unique<EventHook>(views[i]->get_render_window(), vtkCommand::EndEvent,
                                                [&order, i] { order.push_back(i); }));
  }
  mSet.render();
  EXPECT_EQ(order, (std::vector<std::size_t>{1, 2, 0}));
}

TEST_F(GModelSetFrameTest, RendersNothingUnlessTheGraphicsStatusIsNormal)
{
  mSet.add_model(&mModel);
  mSet.add_view(mLeft.get());
  const FrameCounter frames(mLeft->get_render_window());
  for (const auto status : {MRUtil::GRAPHICS_DISABLED, MRUtil::GRAPHICS_SUSPENDED}) {
    MRUtil::set_graphics_status(status);
    mSet.render();
    EXPECT_EQ(frames.starts(), 0) << status;
    EXPECT_EQ(mModel.updates, 0) << status;
  }
  MRUtil::set_graphics_status(MRUtil::GRAPHICS_NORMAL);
  mSet.render();
  EXPECT_EQ(frames.ends(), 1);
}

TEST_F(GModelSetFrameTest, RendersAllViewsThoughTheFirstThrows)
{
  mSet.add_model(&mModel);
  mSet.add_view(mLeft.get());
  mSet.add_view(mRight.get());
  bool has_thrown = false;
  mModel.on_update = [&] {
    if (!has_thrown) {
      has_thrown = true;
      throw HostError("host");
    }
  };
  const FrameCounter left(mLeft->get_render_window());
  const FrameCounter right(mRight->get_render_window());
  EXPECT_THROW(mSet.render(), HostError);
  EXPECT_EQ(left.ends(), 1);
  EXPECT_EQ(right.ends(), 1);
  EXPECT_NO_THROW(mSet.render());
}

TEST_F(GModelSetFrameTest, FirstOfSeveralExceptionsIsPassedOn)
{
  mSet.add_model(&mModel);
  mSet.add_view(mLeft.get());
  mSet.add_view(mRight.get());
  mModel.on_update = [&] { throw std::runtime_error(std::to_string(mModel.updates)); };
  try {
    mSet.render();
    FAIL() << "nothing was thrown";
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "1");
  }
}

TEST_F(GModelSetFrameTest, ShowsAModelInAllItsViews)
{
  mSet.add_model(&mModel);
  mSet.add_view(mLeft.get());
  mSet.add_view(mRight.get());
  mModel.add_part(quad(-0.5, -0.5, 0.5, 0.5), show_flat(kRed));
  mSet.render();
  EXPECT_EQ(count_pixels(read_pixels(mLeft->get_render_window()), colour_is(kRed)), 50 * 50);
  EXPECT_EQ(count_pixels(read_pixels(mRight->get_render_window()), colour_is(kRed)), 50 * 50);
  mSet.remove_view(mLeft.get());
  EXPECT_EQ(count_pixels(picture(*mLeft), colour_is(kRed)), 0);
  EXPECT_EQ(count_pixels(picture(*mRight), colour_is(kRed)), 50 * 50);
}

TEST_F(GModelSetFrameTest, UpdateMayTakeTheRenderingViewOutOfTheSet)
{
  mSet.add_model(&mModel);
  mSet.add_view(mLeft.get());
  mModel.add_part(quad(-0.5, -0.5, 0.5, 0.5), show_flat(kRed));
  mModel.on_update = [&] { mSet.remove_view(mLeft.get()); };
  EXPECT_EQ(count_pixels(picture(*mLeft), colour_is(kRed)), 0);
  EXPECT_EQ(mModel.updates, 1);
}

TEST_F(GModelSetFrameTest, UpdateMayPutAnotherViewIntoTheSet)
{
  mSet.add_model(&mModel);
  mSet.add_view(mLeft.get());
  mModel.add_part(quad(-0.5, -0.5, 0.5, 0.5), show_flat(kRed));
  mModel.on_update = [&] { mSet.add_view(mRight.get()); };
  const FrameCounter right(mRight->get_render_window());
  mSet.render();
  EXPECT_EQ(right.ends(), 0); // the list was taken before
  mSet.render();
  EXPECT_EQ(right.ends(), 1);
}

TEST_F(GModelSetFrameTest, UpdateMayDestroyTheRenderingView)
{
  mSet.add_model(&mModel);
  mSet.add_view(mLeft.get());
  mSet.add_view(mRight.get());
  mModel.on_update = [&] { mLeft.reset(); };
  const FrameCounter right(mRight->get_render_window());
  mSet.render();
  EXPECT_EQ(mLeft, nullptr);
  EXPECT_EQ(right.ends(), 1);
}

TEST_F(GModelSetFrameTest, UpdateMayDestroyAViewThatWaits)
{
  mSet.add_model(&mModel);
  mSet.add_view(mLeft.get());
  mSet.add_view(mRight.get());
  mModel.on_update = [&] { mRight.reset(); };
  mSet.render();
  EXPECT_EQ(mSet.views(), Views{mLeft.get()});
}

TEST_F(GModelSetFrameTest, UpdateMayRenderTheSet)
{
  mSet.add_model(&mModel);
  mSet.add_view(mLeft.get());
  mSet.add_view(mRight.get());
  mModel.on_update = [&] { mSet.render(); };
  const FrameCounter left(mLeft->get_render_window());
  const FrameCounter right(mRight->get_render_window());
  mSet.render(); // ends
  EXPECT_GE(left.ends(), 1);
  EXPECT_GE(right.ends(), 1);
  EXPECT_EQ(left.starts(), left.ends());
  EXPECT_EQ(right.starts(), right.ends());
}

TEST_F(GModelSetFrameTest, SetMayDieBetweenFrames)
{
  {
    GModelSet set;
    set.add_model(&mModel);
    set.add_view(mLeft.get());
    mModel.add_part(quad(-0.5, -0.5, 0.5, 0.5), show_flat(kRed));
    EXPECT_EQ(count_pixels(picture(*mLeft), colour_is(kRed)), 50 * 50);
  }
  EXPECT_EQ(count_pixels(picture(*mLeft), colour_is(kRed)), 0);
  EXPECT_EQ(mModel.updates, 2); // those of the first frame
}

} // namespace
