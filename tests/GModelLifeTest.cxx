// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// How parts, views and models end: clearing, deferred garbage collection, destruction in any order.
#include "GModel.h"

#include "ModelFixture.h"

#include <ostream>

namespace {

using namespace morrow_test;

// --- Clearing
// ---------------------------------------------------------------------------------------------------

class GModelClearTest : public ModelTest
{};

TEST_F(GModelClearTest, RemovesAllPartsAndKeepsViews)
{
  const auto views = sorted_views(2);
  Maker maker(2);
  show_all(views, maker);
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
