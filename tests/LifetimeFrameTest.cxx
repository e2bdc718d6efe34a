// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// Views, models and the process end in the middle of a frame, or with views alive.
#include "GModelSet.h"
#include "LifetimeFixture.h"

#include <vtkRenderWindowInteractor.h>
#include <vtkRendererCollection.h>

#include <cstdlib>

namespace {

using namespace morrow_test;

// --- A view ends in its own frame
// ------------------------------------------------------------------------------------------

/// A view whose only holder can be let go of at any moment; the window is the host's.
struct Doomed
{
  GModelSet set;
  ScriptedModel model;
  WindowPointer window = make_window(100, 100);
  ViewPointer view = make_view();
  std::shared_ptr<GView* const> handle = view->handle();

  Doomed()
  {
    GView::set_preferred_window_size(100, 100);
    view->set_render_window(window);
    set.add_model(&model);
    view->set_model_set(&set);
    model.add_part(quad(-0.9, -0.9, -0.6, -0.6), show_flat(kGreen));
    model.add_label("label", BrantVector(-0.5, 0.6, 0.0), BrantColor(255, 255, 0));
    const auto veil = flat_square(kBlue);
    veil->GetProperty()->SetOpacity(0.5);
    view->add_props({flat_square(kRed), veil});
    view->enable_overlay();
  }

  void destroy() { view.reset(); }
  [[nodiscard]] bool is_destroyed() const { return *handle == nullptr; }
};

/// The view is gone and the window is as good as new.
void expect_only_the_view_is_gone(Doomed& doomed)
{
  EXPECT_TRUE(doomed.is_destroyed());
  EXPECT_TRUE(doomed.set.views().empty());
  EXPECT_EQ(doomed.window->GetRenderers()->GetNumberOfItems(), 0);
  EXPECT_EQ(doomed.window->CheckInRenderStatus(), 0);
  doomed.model.on_update = nullptr;
  const auto next = make_view();
  next->set_render_window(doomed.window);
  show(*next, flat_square(kWhite));
  EXPECT_EQ(count_pixels(picture(*next), colour_is(kWhite)), 50 * 50);
}

TEST_F(LifetimeTest, AViewMayEndInTheFirstUpdateOfItsFrame)
{
  Doomed doomed;
  doomed.view->render();
  doomed.model.on_update = [&] { doomed.destroy(); };
  doomed.view->render();
  expect_only_the_view_is_gone(doomed);
}

TEST_F(LifetimeTest, AViewMayEndInTheSecondUpdateOfItsFrame)
{
  Doomed doomed;
  doomed.view->render();
  doomed.model.updates = 0;
  doomed.model.on_update = [&] {
    if (doomed.model.updates == 2) {
      doomed.destroy();
    }
  };
  doomed.view->render();
  expect_only_the_view_is_gone(doomed);
}

TEST_F(LifetimeTest, AViewMayEndInAnUpdateThatThrows)
{
  Doomed doomed;
  doomed.view->render();
  doomed.model.on_update = [&] {
    doomed.destroy();
    throw HostError("both");
  };
  GView* view = doomed.view.get();
  EXPECT_EQ(thrown_by([&] { view->render(); }), "both");
  expect_only_the_view_is_gone(doomed);
}

TEST_F(LifetimeTest, AViewMayEndInAnUpdateOfAFrameOfTheWindow)
{
  Doomed doomed;
  doomed.view->render();
  doomed.model.on_update = [&] { doomed.destroy(); };
  doomed.window->Render();
  expect_only_the_view_is_gone(doomed);
}

TEST_F(LifetimeTest, AViewMayEndInItsFirstFrame)
{
  for (const bool by_window : {false, true}) {
    Doomed doomed;
    doomed.model.on_update = [&] { doomed.destroy(); };
    if (by_window) {
      doomed.window->Render();
    } else {
      doomed.view->render();
    }
    expect_only_the_view_is_gone(doomed);
  }
}

TEST_F(LifetimeTest, AViewMayEndInAnUpdateOnItsOwn)
{
  Doomed doomed;
  doomed.model.on_update = [&] { doomed.destroy(); };
  doomed.view->update_models();
  expect_only_the_view_is_gone(doomed);
}

TEST_F(LifetimeTest, AViewMayEndInAPropFunctionOfItsFrame)
{
  Doomed doomed;
  doomed.view->render();
  const auto data = quad(0.0, 0.0, 1.0, 1.0);
  doomed.model.on_update = [&] {
    doomed.model.add_part(data, [&](vtkDataObject*, GView*) -> GView::Props {
      doomed.destroy();
      return {flat_square()};
    });
  };
  doomed.view->render();
  expect_only_the_view_is_gone(doomed);
}

TEST_F(LifetimeTest, AViewMayEndInAPropFunctionOutsideOfAFrame)
{
  Doomed doomed;
  doomed.view->render();
  const auto data = quad(0.0, 0.0, 1.0, 1.0);
  doomed.model.add_part(data, [&](vtkDataObject*, GView*) -> GView::Props {
    doomed.destroy();
    return {flat_square()};
  });
  expect_only_the_view_is_gone(doomed);
}

TEST_F(LifetimeTest, AViewMayEndWhileItJoinsASet)
{
  Doomed doomed;
  GModelSet other;
  ScriptedModel model;
  other.add_model(&model);
  const auto data = quad(0.0, 0.0, 1.0, 1.0);
  model.add_part(data, [&](vtkDataObject*, GView*) -> GView::Props {
    doomed.destroy();
    return {flat_square()};
  });
  doomed.view->set_model_set(&other);
  EXPECT_TRUE(other.views().empty());
  expect_only_the_view_is_gone(doomed);
}

struct Moment
{
  const char* name;
  CallingProp::Function CallingProp::*hook;
};

void PrintTo(const Moment& moment, std::ostream* out)
{
  *out << moment.name;
}

class EndWhileDrawnTest : public LifetimeTest, public ::testing::WithParamInterface<Moment>
{};

TEST_P(EndWhileDrawnTest, IsSoundInAFrameOfTheView)
{
  Doomed doomed;
  const auto prop = CallingProp::make();
  prop->is_translucent = true;
  show(*doomed.view, prop);
  doomed.view->render();
  (*prop).*GetParam().hook = [&] { doomed.destroy(); };
  doomed.view->render();
  expect_only_the_view_is_gone(doomed);
}

TEST_P(EndWhileDrawnTest, IsSoundInAFrameOfTheWindow)
{
  Doomed doomed;
  const auto prop = CallingProp::make();
  prop->is_translucent = true;
  show(*doomed.view, prop);
  doomed.view->render();
  (*prop).*GetParam().hook = [&] { doomed.destroy(); };
  doomed.window->Render();
  expect_only_the_view_is_gone(doomed);
}

INSTANTIATE_TEST_SUITE_P(Moments, EndWhileDrawnTest,
                         ::testing::Values(Moment{"opaque", &CallingProp::on_opaque},
                                           Moment{"translucent", &CallingProp::on_translucent},
                                           Moment{"overlay", &CallingProp::on_overlay}));

/// As the view does, or as a host does that knows only the window.
void render(Doomed& doomed, bool by_window)
{
  if (by_window) {
    doomed.window->Render();
  } else {
    doomed.view->render();
  }
}

class EndInObserverTest : public LifetimeTest,
                          public ::testing::WithParamInterface<std::tuple<unsigned long, float, bool>>
{};

TEST_P(EndInObserverTest, IsSound)
{
  const auto [event, priority, by_window] = GetParam();
  Doomed doomed;
  doomed.view->render();
  const EventHook hook(
      doomed.window, event, [&] { doomed.destroy(); }, priority);
  render(doomed, by_window);
  expect_only_the_view_is_gone(doomed);
}

INSTANTIATE_TEST_SUITE_P(
    Events, EndInObserverTest,
    ::testing::Combine(::testing::Values(static_cast<unsigned long>(vtkCommand::StartEvent),
                                         static_cast<unsigned long>(vtkCommand::EndEvent)),
                       ::testing::Values(-1.0F, 1.0F), ::testing::Values(false, true)));

class EndInRendererObserverTest : public LifetimeTest,
                                  public ::testing::WithParamInterface<std::tuple<unsigned long, bool>>
{};

TEST_P(EndInRendererObserverTest, IsSound)
{
  const auto [event, by_window] = GetParam();
  Doomed doomed;
  doomed.view->render();
  const EventHook hook(doomed.view->get_renderer(), event, [&] { doomed.destroy(); });
  render(doomed, by_window);
  expect_only_the_view_is_gone(doomed);
}

INSTANTIATE_TEST_SUITE_P(
    Events, EndInRendererObserverTest,
    ::testing::Combine(::testing::Values(static_cast<unsigned long>(vtkCommand::StartEvent),
                                         static_cast<unsigned long>(vtkCommand::EndEvent)),
                       ::testing::Values(false, true)));

// The window may go with the view: its own render() keeps it until the frame is over.
TEST_F(LifetimeTest, AViewMayEndInItsFrameWithTheOnlyReferenceOnItsWindow)
{
  for (const int update : {1, 2}) {
    ViewStage stage;
    stage.view->render();
    stage.model.updates = 0;
    const vtkWeakPointer<vtkRenderWindow> window = stage.window();
    stage.model.on_update = [&] {
      if (stage.model.updates == update) {
        stage.view.reset();
      }
    };
    GView* view = stage.view.get();
    view->render();
    EXPECT_EQ(stage.view, nullptr);
    EXPECT_EQ(window, nullptr);
  }
}

TEST_F(LifetimeTest, AViewMayEndInTheFrameOfAnother)
{
  Doomed doomed;
  doomed.view->render();
  ViewStage other;
  show(*other.view, flat_square(kRed));
  other.model.on_update = [&] { doomed.destroy(); };
  EXPECT_EQ(count_pixels(picture(*other.view), colour_is(kRed)), 50 * 50);
  expect_only_the_view_is_gone(doomed);
}

TEST_F(LifetimeTest, OneOfTwoViewsOfAWindowMayEndInTheirFrame)
{
  for (const bool by_window : {false, true}) {
    Doomed doomed;
    ViewStage other;
    other.view->set_render_window(doomed.window);
    show(*other.view, flat_square(kWhite));
    doomed.view->render();
    doomed.model.on_update = [&] { doomed.destroy(); };
    if (by_window) {
      doomed.window->Render();
    } else {
      other.view->render();
    }
    EXPECT_TRUE(doomed.is_destroyed());
    EXPECT_EQ(count_pixels(picture(*other.view), colour_is(kWhite)), 50 * 50);
  }
}

TEST_F(LifetimeTest, AModelMayEndInItsUpdate)
{
  const auto view = make_view();
  GModelSet set;
  view->set_model_set(&set);
  auto model = std::make_unique<ScriptedModel>();
  ScriptedModel second;
  set.add_model(model.get());
  set.add_model(&second);
  model->add_part(quad(-0.5, -0.5, 0.5, 0.5), show_flat(kGreen));
  ASSERT_EQ(count_pixels(picture(*view), colour_is(kGreen)), 50 * 50);
  second.updates = 0;
  model->on_update = [&] { model.reset(); };
  EXPECT_EQ(count_pixels(picture(*view), colour_is(kGreen)), 0);
  EXPECT_EQ(set.models(), std::vector<GModel*>{&second});
  EXPECT_EQ(second.updates, 2);
}

TEST_F(LifetimeTest, ASetMayBeLeftInAnUpdate)
{
  FullViewStage stage;
  stage.view->render();
  stage.model.on_update = [&] { stage.view->set_model_set(nullptr); };
  EXPECT_EQ(count_pixels(picture(*stage.view), colour_is(kGreen)), 0);
  EXPECT_EQ(stage.view->get_model_set(), nullptr);
  EXPECT_GT(count_pixels(read_pixels(stage.window()), colour_is(kRed)), 100);
}

TEST_F(LifetimeTest, AWindowMayBeFinalizedByTheHost)
{
  FullViewStage stage;
  const Image before = picture(*stage.view);
  stage.window()->Finalize();
  EXPECT_TRUE(picture(*stage.view) == before);
  stage.window()->Finalize();
  const WindowPointer window = stage.window();
  stage.view.reset();
  window->Render();
  EXPECT_EQ(window->CheckInRenderStatus(), 0);
}

// --- The process ends
// ----------------------------------------------------------------------------------------------------

/// Each of these runs in a process of its own, which it ends with status 7.
class EndOfProcessTest : public ViewRenderTest
{
protected:
  void SetUp() override
  {
    ViewRenderTest::SetUp();
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // the OpenGL driver has threads: start anew, do not fork
  }
};

constexpr int kStatus = 7;

[[noreturn]] void leave()
{
  std::exit(kStatus);
}

void expect_this_is_not_reached()
{
  std::_Exit(1);
}

void end_in_an_update(bool registered, bool by_window)
{
  FullViewStage stage;
  if (registered) {
    GView::add_global_view(stage.view);
  }
  stage.view->render();
  stage.model.on_update = leave;
  if (by_window) {
    stage.window()->Render();
  } else {
    stage.view->render();
  }
  expect_this_is_not_reached();
}

TEST_F(EndOfProcessTest, InAnUpdateOfAFrameOfTheView)
{
  EXPECT_EXIT(end_in_an_update(false, false), ::testing::ExitedWithCode(kStatus), "^$");
}

TEST_F(EndOfProcessTest, InAnUpdateOfAFrameOfTheWindow)
{
  EXPECT_EXIT(end_in_an_update(false, true), ::testing::ExitedWithCode(kStatus), "^$");
}

TEST_F(EndOfProcessTest, InAnUpdateOfARegisteredView)
{
  EXPECT_EXIT(end_in_an_update(true, false), ::testing::ExitedWithCode(kStatus), "^$");
  EXPECT_EXIT(end_in_an_update(true, true), ::testing::ExitedWithCode(kStatus), "^$");
}

void end_in_a_prop_function()
{
  ViewStage stage;
  GView::add_global_view(stage.view);
  stage.view->render();
  stage.model.add_part(quad(0, 0, 1, 1), [](vtkDataObject*, GView*) -> GView::Props { leave(); });
  expect_this_is_not_reached();
}

TEST_F(EndOfProcessTest, InAPropFunction)
{
  EXPECT_EXIT(end_in_a_prop_function(), ::testing::ExitedWithCode(kStatus), "^$");
}

void end_while_drawn(CallingProp::Function CallingProp::*hook)
{
  FullViewStage stage;
  GView::add_global_view(stage.view);
  stage.view->enable_overlay();
  const auto prop = CallingProp::make();
  prop->is_translucent = true;
  show(*stage.view, prop);
  stage.view->render();
  (*prop).*hook = leave;
  stage.view->render();
  expect_this_is_not_reached();
}

TEST_F(EndOfProcessTest, WhileAPropIsDrawn)
{
  EXPECT_EXIT(end_while_drawn(&CallingProp::on_opaque), ::testing::ExitedWithCode(kStatus), "^$");
  EXPECT_EXIT(end_while_drawn(&CallingProp::on_translucent), ::testing::ExitedWithCode(kStatus), "^$");
  EXPECT_EXIT(end_while_drawn(&CallingProp::on_overlay), ::testing::ExitedWithCode(kStatus), "^$");
}

void end_in_an_observer(unsigned long event)
{
  FullViewStage stage;
  GView::add_global_view(stage.view);
  stage.view->render();
  const EventHook hook(stage.window(), event, leave);
  stage.view->render();
  expect_this_is_not_reached();
}

TEST_F(EndOfProcessTest, InAnObserverOfTheWindow)
{
  EXPECT_EXIT(end_in_an_observer(vtkCommand::StartEvent), ::testing::ExitedWithCode(kStatus), "^$");
  EXPECT_EXIT(end_in_an_observer(vtkCommand::EndEvent), ::testing::ExitedWithCode(kStatus), "^$");
}

void end_with_registered_views(bool with_interactor)
{
  FullViewStage stage;
  GView::add_global_view(stage.view);
  GView::add_global_view(make_view());
  GView::render_all();
  vtkSmartPointer<vtkRenderWindowInteractor> interactor;
  if (with_interactor) {
    interactor = vtkSmartPointer<vtkRenderWindowInteractor>::New();
    interactor->SetRenderWindow(stage.window());
    interactor->Initialize();
  }
  leave();
}

TEST_F(EndOfProcessTest, WithRegisteredViews)
{
  EXPECT_EXIT(end_with_registered_views(false), ::testing::ExitedWithCode(kStatus), "^$");
  EXPECT_EXIT(end_with_registered_views(true), ::testing::ExitedWithCode(kStatus), "^$");
}

void end_with_a_registered_view_alone()
{
  GView::add_global_view(make_view());
  GView::render_all();
  leave();
}

TEST_F(EndOfProcessTest, WithAViewThatOnlyTheRegistryHolds)
{
  EXPECT_EXIT(end_with_a_registered_view_alone(), ::testing::ExitedWithCode(kStatus), "^$");
}

// Destroyed by the host's static destructors, after the library's own statics or before them.
void end_with_static_objects(bool in_a_frame)
{
  static GModelSet set;
  static ScriptedModel model;
  static ViewPointer view = make_view();
  set.add_model(&model);
  view->set_model_set(&set);
  model.add_part(quad(-0.5, -0.5, 0.5, 0.5), show_flat(kGreen));
  model.add_label("label", BrantVector(-0.5, 0.6, 0.0), BrantColor(255, 255, 0));
  view->render();
  if (in_a_frame) {
    model.on_update = leave;
    view->render();
    expect_this_is_not_reached();
  }
  leave();
}

TEST_F(EndOfProcessTest, WithStaticObjects)
{
  EXPECT_EXIT(end_with_static_objects(false), ::testing::ExitedWithCode(kStatus), "^$");
}

TEST_F(EndOfProcessTest, InAFrameOfStaticObjects)
{
  EXPECT_EXIT(end_with_static_objects(true), ::testing::ExitedWithCode(kStatus), "^$");
}

} // namespace
