// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// What happens to a view when the host's code that its frames call renders again, or throws.
#include "GView.h"

#include "ViewFixture.h"

#include <vtk_glew.h>

#include <string>
#include <tuple>

namespace {

using namespace morrow_test;

using Props = GView::Props;

// --- Nested requests
// ----------------------------------------------------------------------------------------------

using NestedRenderTest = ViewRenderTest;

TEST_F(NestedRenderTest, FromAnUpdateAreIgnored)
{
  ViewStage stage;
  show(*stage.view, flat_square());
  const FrameCounter frames(stage.window());
  stage.model.on_update = [&] {
    stage.view->render();
    stage.view->update_models();
    stage.model.Render();
    stage.set.render();
  };
  EXPECT_EQ(count_pixels(picture(*stage.view), colour_is(kRed)), 50 * 50);
  EXPECT_EQ(frames.starts(), 1);
  EXPECT_EQ(stage.model.updates, 2);
}

TEST_F(NestedRenderTest, FromAnUpdateInAFrameOfTheWindowAreIgnored)
{
  ViewStage stage;
  show(*stage.view, flat_square());
  GView::add_global_view(stage.view);
  const FrameCounter frames(stage.window());
  stage.model.on_update = [&] {
    stage.view->render();
    stage.view->update_models();
    GView::render_all();
    stage.window()->Render();
  };
  EXPECT_EQ(count_pixels(picture(stage.window()), colour_is(kRed)), 50 * 50);
  EXPECT_EQ(frames.starts(), 1);
  EXPECT_EQ(stage.model.updates, 1);
}

// The window's own Render() is VTK's, and the view is not in a frame of the window yet.
TEST_F(NestedRenderTest, OfTheWindowFromAnUpdateEnd)
{
  ViewStage stage;
  show(*stage.view, flat_square());
  const FrameCounter frames(stage.window());
  stage.model.on_update = [&] { stage.window()->Render(); };
  EXPECT_EQ(count_pixels(picture(*stage.view), colour_is(kRed)), 50 * 50);
  EXPECT_LE(frames.starts(), 2);
  EXPECT_EQ(frames.starts(), frames.ends());
  EXPECT_LE(stage.model.updates, 2);
}

TEST_F(NestedRenderTest, FromAPropFunctionAreIgnored)
{
  ViewStage stage;
  const FrameCounter frames(stage.window());
  const auto data = quad(-0.5, -0.5, 0.5, 0.5);
  stage.model.on_update = [&] {
    stage.model.add_part(data, [&](vtkDataObject*, GView* view) -> Props {
      view->render();
      return {flat_square()};
    });
  };
  EXPECT_EQ(count_pixels(picture(*stage.view), colour_is(kRed)), 50 * 50);
  EXPECT_EQ(frames.starts(), 1);
}

TEST_F(NestedRenderTest, FromAPropFunctionOutsideOfAFrameRender)
{
  ViewStage stage;
  const FrameCounter frames(stage.window());
  const auto data = quad(-0.5, -0.5, 0.5, 0.5);
  stage.model.add_part(data, [&](vtkDataObject*, GView* view) -> Props {
    view->render();
    return {flat_square()};
  });
  EXPECT_EQ(frames.ends(), 1);
  EXPECT_EQ(count_pixels(picture(*stage.view), colour_is(kRed)), 50 * 50);
}

TEST_F(NestedRenderTest, FromObserversOfTheWindowAndTheRendererAreIgnored)
{
  for (const unsigned long event : {vtkCommand::StartEvent, vtkCommand::EndEvent}) {
    ViewStage stage;
    show(*stage.view, flat_square());
    const FrameCounter frames(stage.window());
    const EventHook of_window(stage.window(), event, [&] { stage.view->render(); });
    const EventHook of_renderer(stage.view->get_renderer(), event, [&] { stage.view->render(); });
    EXPECT_EQ(count_pixels(picture(*stage.view), colour_is(kRed)), 50 * 50);
    EXPECT_EQ(frames.starts(), 1);
    EXPECT_EQ(stage.model.updates, 2);
  }
}

TEST_F(NestedRenderTest, FromPropsThatAreBeingDrawnAreIgnored)
{
  ViewStage stage;
  const auto prop = CallingProp::make();
  stage.view->add_props({prop, flat_square()});
  const FrameCounter frames(stage.window());
  const auto render = [&] {
    stage.view->render();
    stage.window()->Render();
  };
  prop->on_opaque = prop->on_ask = prop->on_translucent = prop->on_overlay = render;
  prop->is_translucent = true;
  EXPECT_EQ(count_pixels(picture(*stage.view), colour_is(kRed)), 50 * 50);
  EXPECT_EQ(frames.starts(), 1);
  EXPECT_EQ(stage.model.updates, 2);
}

TEST_F(NestedRenderTest, FromPropsThatAreBeingDrawnInAFrameOfTheWindowAreIgnored)
{
  ViewStage stage;
  const auto prop = CallingProp::make();
  stage.view->add_props({prop, flat_square()});
  stage.view->get_renderer()->GetActiveCamera()->SetClippingRange(1.0, 20.0);
  const FrameCounter frames(stage.window());
  prop->on_opaque = prop->on_overlay = [&] { stage.view->render(); };
  EXPECT_EQ(count_pixels(picture(stage.window()), colour_is(kRed)), 50 * 50);
  EXPECT_EQ(frames.starts(), 1);
  EXPECT_EQ(stage.model.updates, 1);
  EXPECT_EQ(stage.view->get_renderer()->GetActiveCamera()->GetClippingRange()[1], 20.0);
}

TEST_F(NestedRenderTest, OfTwoViewsInEachOthersUpdatesEnd)
{
  ViewStage a;
  ViewStage b;
  show(*a.view, flat_square());
  show(*b.view, flat_square(kGreen));
  a.model.on_update = [&] { b.view->render(); };
  b.model.on_update = [&] { a.view->render(); };
  EXPECT_EQ(count_pixels(picture(*a.view), colour_is(kRed)), 50 * 50);
  EXPECT_EQ(count_pixels(picture(*b.view), colour_is(kGreen)), 50 * 50);
  EXPECT_LE(a.model.updates, 8);
  EXPECT_LE(b.model.updates, 8);
}

TEST_F(NestedRenderTest, OfAnotherViewFromAPropLeaveThisOnesPictureAlone)
{
  const auto a = make_view();
  const auto b = make_view(60, 40);
  const auto prop = CallingProp::make();
  a->add_props({prop, flat_square()});
  show(*b, flat_square(kGreen));
  const Image alone = picture(*a);
  prop->on_overlay = [&] { b->render(); };
  EXPECT_TRUE(picture(*a) == alone);
  EXPECT_EQ(count_pixels(read_pixels(b->get_render_window()), colour_is(kGreen)), 20 * 20);
}

// --- Changes while the window draws
// ----------------------------------------------------------------------------------------------

using ChangesWhileDrawingTest = ViewRenderTest;

/// Has a prop of the view call a function in each stage of a frame of the view and of one of the window; the
/// pictures must be those of a frame without it.
void expect_undisturbed(FullViewStage& stage, const std::function<void()>& function)
{
  const auto prop = CallingProp::make();
  prop->is_translucent = true;
  show(*stage.view, prop);
  const Image before = picture(*stage.view);
  int calls = 0;
  prop->on_opaque = prop->on_translucent = prop->on_overlay = [&] {
    ++calls;
    function();
  };
  EXPECT_TRUE(picture(*stage.view) == before);
  EXPECT_TRUE(picture(stage.window()) == before);
  EXPECT_GE(calls, 6);
  prop->on_opaque = prop->on_translucent = prop->on_overlay = nullptr;
  EXPECT_TRUE(picture(*stage.view) == before);
}

TEST_F(ChangesWhileDrawingTest, TheWindowIsNotLeft)
{
  FullViewStage stage;
  const vtkSmartPointer<vtkRenderWindow> window = stage.window();
  const auto other = make_window();
  expect_undisturbed(stage, [&] {
    stage.view->set_render_window(nullptr);
    stage.view->set_render_window(other);
    stage.view->set_render_window(window);
  });
  EXPECT_EQ(stage.window(), window);
}

TEST_F(ChangesWhileDrawingTest, TheOverlayIsNeitherEnabledNorDisabled)
{
  for (const bool enabled : {false, true}) {
    FullViewStage stage;
    stage.view->get_overlay_renderer()->AddActor(flat_actor(quad(-0.1, -0.1, 0.1, 0.1), kWhite));
    if (enabled) {
      stage.view->enable_overlay();
    }
    expect_undisturbed(stage, [&] {
      stage.view->enable_overlay();
      stage.view->disable_overlay();
      stage.view->enable_overlay();
    });
  }
}

TEST_F(ChangesWhileDrawingTest, AnotherViewDoesNotBindTheWindow)
{
  FullViewStage stage;
  GView::set_preferred_window_size(100, 100);
  const auto other = make_view();
  const vtkSmartPointer<vtkRenderWindow> own = other->get_render_window();
  show(*other, flat_square(kWhite));
  expect_undisturbed(stage, [&] { other->set_render_window(stage.window()); });
  EXPECT_EQ(other->get_render_window(), own);
  EXPECT_EQ(count_pixels(picture(*other), colour_is(kWhite)), 50 * 50);
}

// Nor at the frame's start: it is finalised for it, and would draw on without a context.
TEST_F(ChangesWhileDrawingTest, AnotherViewDoesNotBindTheWindowInAnUpdate)
{
  FullViewStage stage;
  const auto other = make_view();
  const vtkSmartPointer<vtkRenderWindow> own = other->get_render_window();
  const Image before = picture(*stage.view);
  stage.model.on_update = [&] {
    if (stage.window()->CheckInRenderStatus() != 0) {
      other->set_render_window(stage.window());
      EXPECT_EQ(other->get_render_window(), own);
    }
  };
  const int updates = stage.model.updates;
  EXPECT_TRUE(picture(*stage.view) == before);
  EXPECT_EQ(stage.model.updates, updates + 2); // before the frame and at its start
  stage.model.on_update = nullptr;
  other->set_render_window(stage.window()); // afterwards it may
  EXPECT_EQ(other->get_render_window(), stage.window());
}

TEST_F(ChangesWhileDrawingTest, StereoIsNotSwitchedUnderTheFrame)
{
  FullViewStage stage;
  GView::add_global_view(stage.view);
  expect_undisturbed(stage, [&] {
    GView::set_stereo_mode(true);
    GView::set_stereo_mode(false);
  });
}

TEST_F(ChangesWhileDrawingTest, StereoMayBeSwitchedInAnUpdate)
{
  FullViewStage stage;
  GView::add_global_view(stage.view);
  const Image before = picture(*stage.view);
  stage.model.on_update = [] { GView::set_stereo_mode(true); };
  stage.view->render();
  stage.window()->Render();
  EXPECT_NE(stage.window()->GetStereoRender(), 0);
  stage.model.on_update = [] { GView::set_stereo_mode(false); };
  EXPECT_TRUE(picture(stage.window()) == before);
}

// --- Exceptions
// ---------------------------------------------------------------------------------------------------

/// How many framebuffer bindings are left behind cannot be asked, but which one is in effect can.
int bound_framebuffer(vtkRenderWindow* window)
{
  window->MakeCurrent();
  GLint name = -1;
  glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &name);
  return name;
}

using ViewExceptionTest = ViewRenderTest;

/// The view's picture when nothing is wrong; afterwards every frame must give it again.
class HealthCheck
{
public:
  explicit HealthCheck(GView& view) : mView(view), mPicture(picture(view)), mBinding(binding()) {}

  void expect_healthy() const
  {
    EXPECT_EQ(mView.get_render_window()->CheckInRenderStatus(), 0);
    const FrameCounter frames(mView.get_render_window());
    for (int time = 0; time < 2; ++time) {
      std::string error = "none";
      try {
        mView.render();
      } catch (const std::exception& exception) {
        error = exception.what();
      }
      EXPECT_EQ(error, "none");
      EXPECT_EQ(frames.starts(), 1 + time);
      EXPECT_EQ(frames.ends(), 1 + time);
      EXPECT_TRUE(read_pixels(mView.get_render_window()) == mPicture);
      EXPECT_EQ(binding(), mBinding);
    }
    EXPECT_TRUE(picture(mView.get_render_window()) == mPicture);
  }

  [[nodiscard]] const Image& healthy_picture() const { return mPicture; }

private:
  [[nodiscard]] int binding() const { return bound_framebuffer(mView.get_render_window()); }

  GView& mView;
  Image mPicture;
  int mBinding;
};

/// A stage whose picture has opaque and translucent props and a label.
struct ShownStage : FullViewStage
{
  HealthCheck health;
  ShownStage() : health(*view) {}
};

TEST_F(ViewExceptionTest, FromAnUpdateReachesTheCallerAfterTheFrame)
{
  ShownStage stage;
  const FrameCounter frames(stage.window());
  stage.model.on_update = [] { throw HostError("update"); };
  EXPECT_EQ(thrown_by([&] { stage.view->render(); }), "update");
  EXPECT_EQ(frames.starts(), 1);
  EXPECT_EQ(frames.ends(), 1);
  EXPECT_TRUE(read_pixels(stage.window()) == stage.health.healthy_picture());
  stage.model.on_update = nullptr;
  stage.health.expect_healthy();
}

TEST_F(ViewExceptionTest, NeedNotBeAStandardOne)
{
  ShownStage stage;
  stage.model.on_update = [] { throw 42; };
  EXPECT_THROW(stage.view->render(), int);
  stage.model.on_update = nullptr;
  stage.health.expect_healthy();
}

TEST_F(ViewExceptionTest, OfSeveralInAFrameTheFirstIsThrown)
{
  ShownStage stage;
  int count = 0;
  stage.model.on_update = [&] { throw HostError("update " + std::to_string(++count)); };
  const auto prop = CallingProp::make();
  prop->on_opaque = [] { throw HostError("opaque"); };
  show(*stage.view, prop);
  EXPECT_EQ(thrown_by([&] { stage.view->render(); }), "update 1");
  EXPECT_EQ(count, 2);
  stage.model.on_update = nullptr;
  EXPECT_EQ(thrown_by([&] { stage.view->render(); }), "opaque");
  stage.view->remove_props({prop});
  stage.health.expect_healthy();
}

TEST_F(ViewExceptionTest, FromAFrameOfTheWindowIsThrownByTheNextRender)
{
  ShownStage stage;
  stage.model.on_update = [] { throw HostError("update"); };
  EXPECT_NO_THROW(stage.window()->Render());
  EXPECT_TRUE(read_pixels(stage.window()) == stage.health.healthy_picture());
  stage.model.on_update = nullptr;
  EXPECT_EQ(thrown_by([&] { stage.view->render(); }), "update");
  stage.health.expect_healthy();
}

TEST_F(ViewExceptionTest, FromSeveralFramesOfTheWindowTheFirstIsThrown)
{
  ShownStage stage;
  int count = 0;
  stage.model.on_update = [&] { throw HostError(std::to_string(++count)); };
  stage.window()->Render();
  stage.window()->Render();
  stage.model.on_update = nullptr;
  EXPECT_EQ(thrown_by([&] { stage.view->render(); }), "1");
  stage.health.expect_healthy();
}

TEST_F(ViewExceptionTest, FromAPropInAFrameOfTheWindowIsThrownByTheNextRender)
{
  ShownStage stage;
  const auto prop = CallingProp::make();
  prop->on_opaque = [] { throw HostError("opaque"); };
  show(*stage.view, prop);
  EXPECT_NO_THROW(stage.window()->Render());
  stage.view->remove_props({prop});
  EXPECT_EQ(thrown_by([&] { stage.view->render(); }), "opaque");
  stage.health.expect_healthy();
}

TEST_F(ViewExceptionTest, FromAPropInAnEarlierFrameComesBeforeTheOneOfAnUpdate)
{
  ShownStage stage;
  const auto prop = CallingProp::make();
  prop->on_opaque = [] { throw HostError("earlier"); };
  show(*stage.view, prop);
  EXPECT_NO_THROW(stage.window()->Render());
  stage.view->remove_props({prop});
  stage.model.on_update = [] { throw HostError("later"); };
  EXPECT_EQ(thrown_by([&] { stage.view->render(); }), "earlier");
  stage.model.on_update = nullptr;
  stage.health.expect_healthy();
}

TEST_F(ViewExceptionTest, FromAPropFunctionReachesTheCallerAfterTheFrame)
{
  ShownStage stage;
  const auto data = quad(0.0, 0.0, 1.0, 1.0);
  stage.model.on_update = [&] {
    stage.model.add_part(data, [](vtkDataObject*, GView*) -> Props { throw HostError("props"); });
  };
  EXPECT_EQ(thrown_by([&] { stage.view->render(); }), "props");
  EXPECT_TRUE(read_pixels(stage.window()) == stage.health.healthy_picture());
  stage.model.on_update = nullptr;
  stage.health.expect_healthy();
}

TEST_F(ViewExceptionTest, FromDrawingAPropReachesTheCallerAndTheOtherPropsAreDrawn)
{
  using Hook = std::function<void()> CallingProp::*;
  const std::pair<const char*, Hook> hooks[] = {{"opaque", &CallingProp::on_opaque},
                                                {"ask", &CallingProp::on_ask},
                                                {"translucent", &CallingProp::on_translucent},
                                                {"overlay", &CallingProp::on_overlay}};
  ShownStage stage;
  const auto prop = CallingProp::make();
  prop->is_translucent = true;
  // Before the others: VTK asks no further when it has found one translucent prop.
  stage.view->remove_props({stage.square, stage.veil});
  stage.view->add_props({prop, stage.square, stage.veil});
  for (const auto& [name, hook] : hooks) {
    SCOPED_TRACE(name);
    const std::string text = name;
    (*prop).*hook = [text] { throw HostError(text); };
    const FrameCounter frames(stage.window());
    EXPECT_EQ(thrown_by([&] { stage.view->render(); }), text);
    EXPECT_EQ(frames.ends(), 1);
    EXPECT_TRUE(read_pixels(stage.window()) == stage.health.healthy_picture()); // the others are drawn
    (*prop).*hook = nullptr;
    stage.health.expect_healthy();
  }
}

TEST_F(ViewExceptionTest, FromAskingAPropForItsBoundsReachesTheCaller)
{
  ShownStage stage;
  const auto prop = CallingProp::make();
  show(*stage.view, prop);
  prop->on_bounds = [] { throw HostError("bounds"); };
  EXPECT_EQ(thrown_by([&] { stage.view->render(); }), "bounds");
  prop->on_bounds = nullptr;
  stage.health.expect_healthy();
}

// VTK asks once more in the frame, for its cullers.
TEST_F(ViewExceptionTest, FromAskingAPropForItsBoundsInTheFrameReachesTheCaller)
{
  ShownStage stage;
  const auto prop = CallingProp::make();
  show(*stage.view, prop);
  const EventHook start(stage.window(), vtkCommand::StartEvent,
                        [&] { prop->on_bounds = [] { throw HostError("bounds"); }; });
  EXPECT_EQ(thrown_through_vtk_by([&] { stage.view->render(); }), "bounds");
  prop->on_bounds = nullptr;
  stage.view->remove_props({prop});
}

class ObserverExceptionTest
    : public ViewRenderTest,
      public ::testing::WithParamInterface<std::tuple<unsigned long, float, bool, bool>>
{};

// Before and after the library's own observer of the start event.
TEST_P(ObserverExceptionTest, ReachesTheCallerAndTheNextFrameIsDrawn)
{
  const auto [event, priority, of_window, overlay] = GetParam();
  FullViewStage stage;
  if (overlay) {
    stage.view->enable_overlay();
    stage.view->get_overlay_renderer()->AddActor(flat_actor(quad(-0.1, -0.1, 0.1, 0.1), kWhite));
  }
  const HealthCheck health(*stage.view);
  {
    vtkObject* object = stage.view->get_renderer();
    if (of_window) {
      object = stage.window();
    }
    const EventHook hook(
        object, event, [] { throw HostError("observer"); }, priority);
    for (int time = 0; time < 3; ++time) {
      EXPECT_EQ(thrown_through_vtk_by([&] { stage.view->render(); }), "observer");
    }
  }
  health.expect_healthy();
}

INSTANTIATE_TEST_SUITE_P(
    Events, ObserverExceptionTest,
    ::testing::Combine(::testing::Values(static_cast<unsigned long>(vtkCommand::StartEvent),
                                         static_cast<unsigned long>(vtkCommand::EndEvent)),
                       ::testing::Values(-1.0F, 1.0F), ::testing::Bool(), ::testing::Bool()));

using ForeignPropTest = ViewRenderTest;

// The overlay renderer has no pass of ours.
TEST_F(ForeignPropTest, ThatThrowsInTheOverlayReachesTheCaller)
{
  FullViewStage stage;
  stage.view->enable_overlay();
  const LeaksIgnored of_vtk; // it forgets the pass that draws translucent geometry in such a renderer
  const auto prop = CallingProp::make();
  prop->is_translucent = true;
  stage.view->get_overlay_renderer()->AddViewProp(prop);
  stage.view->get_overlay_renderer()->AddActor(flat_actor(quad(-0.1, -0.1, 0.1, 0.1), kWhite));
  const HealthCheck health(*stage.view);
  for (auto hook : {&CallingProp::on_opaque, &CallingProp::on_translucent, &CallingProp::on_overlay}) {
    (*prop).*hook = [] { throw HostError("overlay"); };
    for (int time = 0; time < 3; ++time) {
      EXPECT_EQ(thrown_through_vtk_by([&] { stage.view->render(); }), "overlay");
    }
    (*prop).*hook = nullptr;
    health.expect_healthy();
  }
}

TEST_F(ForeignPropTest, ThatThrowsInARendererOfTheHostReachesTheCaller)
{
  FullViewStage stage;
  const vtkNew<vtkRenderer> of_host;
  stage.window()->AddRenderer(of_host);
  of_host->SetViewport(0.9, 0.9, 1.0, 1.0);
  const auto prop = CallingProp::make();
  of_host->AddViewProp(prop);
  const HealthCheck health(*stage.view);
  prop->on_opaque = [] { throw HostError("host"); };
  EXPECT_EQ(thrown_through_vtk_by([&] { stage.view->render(); }), "host");
  prop->on_opaque = nullptr;
  health.expect_healthy();
}

// In a frame that the host has started at the window the host catches the exception itself, and says so.
TEST_F(ForeignPropTest, MayThrowInAFrameOfTheWindowThatTheHostCleans)
{
  FullViewStage stage;
  const HealthCheck health(*stage.view);
  {
    const EventHook hook(stage.window(), vtkCommand::StartEvent, [] { throw HostError("host"); });
    EXPECT_EQ(thrown_through_vtk_by([&] { stage.window()->Render(); }), "host");
  }
  stage.window()->ClearInRenderStatus();
  health.expect_healthy();
}

TEST_F(ViewExceptionTest, InRenderAllIsPassedOnWhenAllHaveRendered)
{
  ViewStage a;
  ViewStage b;
  GView::add_global_view(a.view);
  GView::add_global_view(b.view);
  a.model.on_update = b.model.on_update = [] { throw HostError("update"); };
  const FrameCounter frames_a(a.window());
  const FrameCounter frames_b(b.window());
  EXPECT_EQ(thrown_by([] { GView::render_all(); }), "update");
  EXPECT_EQ(frames_a.ends(), 1);
  EXPECT_EQ(frames_b.ends(), 1);
  a.model.on_update = b.model.on_update = nullptr;
  EXPECT_NO_THROW(GView::render_all()); // each view has handed its exception out
}

TEST_F(ViewExceptionTest, InOneOfTwoViewsOfAWindowBelongsToThatView)
{
  ViewStage a;
  ViewStage b;
  b.view->set_render_window(a.window());
  a.model.on_update = [] { throw HostError("a"); };
  EXPECT_NO_THROW(b.view->render());
  a.model.on_update = nullptr;
  EXPECT_EQ(thrown_by([&] { a.view->render(); }), "a");
  EXPECT_NO_THROW(b.view->render());
}

TEST_F(ViewExceptionTest, InAnUpdateWhoseStatusChangeAbortsTheFrame)
{
  ShownStage stage;
  stage.model.on_update = [] {
    MRUtil::set_graphics_status(MRUtil::GRAPHICS_SUSPENDED);
    throw HostError("update");
  };
  EXPECT_EQ(thrown_by([&] { stage.view->render(); }), "update");
  stage.model.on_update = nullptr;
  MRUtil::set_graphics_status(MRUtil::GRAPHICS_RESUME);
  stage.health.expect_healthy();
}

TEST_F(ViewExceptionTest, InANestedRenderOfAnotherViewStaysWithTheInnerCaller)
{
  ShownStage outer;
  ViewStage inner;
  inner.model.on_update = [] { throw HostError("inner"); };
  std::string caught;
  outer.model.on_update = [&] { caught = thrown_by([&] { inner.view->render(); }); };
  EXPECT_EQ(thrown_by([&] { outer.view->render(); }), "");
  EXPECT_EQ(caught, "inner");
  outer.model.on_update = nullptr;
  outer.health.expect_healthy();
}

} // namespace
