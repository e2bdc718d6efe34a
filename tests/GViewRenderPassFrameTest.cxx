// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// What a frame of the pass does beside drawing its props: camera, lights and windows, and props that throw,
// render or remove others.
#include "GViewRenderPass.h"

#include "RenderPassFixture.h"

#include <vtkLight.h>
#include <vtkOpenGLRenderer.h>
#include <vtkRenderState.h>

namespace {

using namespace morrow_test;

// --- Camera and lights -----------------------------------------------------------------------------------

TEST_F(GViewRenderPassTest, OpaqueSurfacesLookAsVtkDrawsThem)
{
  vtkActor* ball = show(lit_actor(morrow_test::sphere(0.8, 24), {200, 120, 40}));
  ball->GetProperty()->SetSpecular(0.5);
  const vtkNew<vtkLight> light;
  light->SetPosition(3.0, 2.0, 4.0);
  light->SetColor(1.0, 0.5, 0.5);
  mScene.renderer()->AddLight(light);
  mScene.renderer()->SetBackground(0.1, 0.2, 0.3);
  const Image ours = mScene.render();
  mScene.renderer()->SetPass(nullptr);
  EXPECT_TRUE(ours == mScene.render());
  EXPECT_GT(count_pixels(ours, morrow_test::colour_is_not({26, 51, 77}, 1)), 4000);
}

TEST_F(GViewRenderPassTest, CameraAndLightsAreBroughtUpToDateEveryFrame)
{
  show(lit_actor(morrow_test::sphere(0.8, 24)));
  const Image before = mScene.render();
  mScene.renderer()->GetActiveCamera()->SetFocalPoint(0.5, 0.0, 0.0);
  mScene.renderer()->GetActiveCamera()->SetPosition(0.5, 0.0, 10.0);
  const auto centre = [](const Image& image) {
    return morrow_test::find_pixels(image, morrow_test::colour_is_not(kBlack, 8)).centre_x;
  };
  const Image moved = mScene.render();
  EXPECT_LT(centre(moved), centre(before) - 20.0); // half a unit is 25 pixels; the border cuts some off
  mScene.renderer()->RemoveAllLights();
  const vtkNew<vtkLight> light;
  light->SetLightTypeToHeadlight();
  light->SetColor(1.0, 0.0, 0.0);
  mScene.renderer()->AddLight(light);
  const Image red = mScene.render();
  EXPECT_EQ(count_pixels(red, [](Rgb p) { return p.g != 0 || p.b != 0; }), 0);
  EXPECT_GT(count_pixels(red, [](Rgb p) { return p.r > 100; }), 1000);
}

/// A renderer that writes down what is asked of it before its props are drawn.
class RecordingRenderer : public vtkOpenGLRenderer
{
public:
  static vtkSmartPointer<RecordingRenderer> make(Log& log)
  {
    auto* renderer = new RecordingRenderer(log);
    renderer->InitializeObjectBase();
    return vtkSmartPointer<RecordingRenderer>::Take(renderer);
  }
  RecordingRenderer(const RecordingRenderer&) = delete;
  RecordingRenderer& operator=(const RecordingRenderer&) = delete;

  void ClearLights() override
  {
    mLog.emplace_back("clear lights");
    vtkOpenGLRenderer::ClearLights();
  }
  int UpdateCamera() override
  {
    mLog.emplace_back("camera");
    return vtkOpenGLRenderer::UpdateCamera();
  }
  vtkTypeBool UpdateLightsGeometryToFollowCamera() override
  {
    mLog.emplace_back("light geometry");
    return vtkOpenGLRenderer::UpdateLightsGeometryToFollowCamera();
  }
  int UpdateLights() override
  {
    mLog.emplace_back("lights");
    return vtkOpenGLRenderer::UpdateLights();
  }

protected:
  explicit RecordingRenderer(Log& log) : mLog(log) {}
  ~RecordingRenderer() override = default;

private:
  Log& mLog;
};

TEST_F(GViewRenderPassTest, PreparesLightsAndCameraBeforeTheFirstProp)
{
  const auto renderer = RecordingRenderer::make(mLog);
  const auto window = morrow_test::make_window(50, 50);
  window->AddRenderer(renderer);
  window->Render(); // without the pass: the window is ready now
  const auto surface = RecordingActor::make(mLog, "surface");
  vtkProp* props[] = {surface};
  vtkRenderState state(renderer);
  state.SetPropArrayAndCount(props, 1);
  mLog.clear();
  mPass->Render(&state);
  EXPECT_EQ(mLog, (Log{"clear lights", "camera", "light geometry", "lights", "surface.opaque",
                       "surface.asked", "surface.overlay"}));
}

TEST_F(GViewRenderPassTest, MakesItsWindowCurrentBeforeTheFirstProp)
{
  mScene.window()->Render();
  Scene other(50, 50);
  other.window()->Render();
  ASSERT_FALSE(mScene.window()->IsCurrent());
  const auto surface = RecordingActor::make(mLog, "surface");
  bool current = false;
  surface->on_call = [&](const std::string& call) {
    current |= call == "opaque" && mScene.window()->IsCurrent();
  };
  vtkProp* props[] = {surface};
  vtkRenderState state(mScene.renderer());
  state.SetPropArrayAndCount(props, 1);
  mPass->Render(&state);
  EXPECT_TRUE(current);
}

TEST_F(GViewRenderPassTest, DrawsThePropsOfTheStateAndNoOthers)
{
  mScene.window()->Render();
  const auto in_renderer = add_actor("in the renderer");
  const auto first = RecordingActor::make(mLog, "first");
  const auto second = RecordingActor::make(mLog, "second");
  vtkProp* props[] = {second, first};
  vtkRenderState state(mScene.renderer());
  state.SetPropArrayAndCount(props, 2);
  mPass->UpdateGeometry(&state);
  EXPECT_EQ(mLog, (Log{"second.opaque", "first.opaque", "second.asked", "first.asked", "second.overlay",
                       "first.overlay"}));
}

TEST_F(GViewRenderPassTest, DrawsIntoItsViewportOnly)
{
  mScene.renderer()->SetViewport(0.5, 0.0, 1.0, 0.5);
  show(flat_actor(quad(-5.0, -5.0, 5.0, 5.0), kGreen));
  const Image seen = mScene.render();
  const auto region = morrow_test::find_pixels(seen, colour_is(kGreen));
  EXPECT_EQ(region.count, 50 * 50);
  EXPECT_EQ(region.min_x, 50);
  EXPECT_EQ(region.max_y, 49);
}

// --- Exceptions ------------------------------------------------------------------------------------------

class GViewRenderPassThrowTest : public GViewRenderPassTest, public ::testing::WithParamInterface<const char*>
{};

TEST_P(GViewRenderPassThrowTest, TheFrameIsFinishedAndTheExceptionHandedOut)
{
  const std::string where = GetParam();
  const auto bad = add_actor("bad");
  const auto good = add_actor("good");
  bad->is_translucent = where == "translucent"; // else there is no such call
  throw_in(*bad, where, "prop");
  EXPECT_NO_THROW(frame());
  EXPECT_EQ(calls_to(mLog, "good").front(), "opaque");
  EXPECT_EQ(calls_to(mLog, "good").back(), "overlay");
  EXPECT_EQ(calls_to(mLog, "bad").back(), "overlay");
  EXPECT_EQ(thrown(), "prop");
  EXPECT_EQ(thrown(), "(none)");
  EXPECT_TRUE(writes_colour());
}

INSTANTIATE_TEST_SUITE_P(Calls, GViewRenderPassThrowTest,
                         ::testing::Values("opaque", "asked", "translucent", "overlay"),
                         [](const auto& call) { return std::string(call.param); });

TEST_F(GViewRenderPassTest, TheFirstExceptionIsKept)
{
  const auto first = add_actor("first", VTK_WIREFRAME);
  const auto second = add_actor("second"); // drawn before the wireframe
  throw_in(*first, "opaque", "first in the list");
  throw_in(*second, "opaque", "first in the frame");
  frame();
  EXPECT_EQ(thrown(), "first in the frame");
  frame();
  frame(); // not taken meanwhile: the older one stays
  second->on_call = nullptr;
  frame();
  EXPECT_EQ(thrown(), "first in the frame");
  frame();
  EXPECT_EQ(thrown(), "first in the list");
}

TEST_F(GViewRenderPassTest, AnyTypeOfExceptionIsContained)
{
  const auto bad = add_actor("bad");
  bad->on_call = [](const std::string& call) {
    if (call == "opaque") {
      throw 42;
    }
  };
  EXPECT_NO_THROW(frame());
  EXPECT_EQ(thrown(), "(not a std::exception)");
}

TEST_F(GViewRenderPassTest, ColourIsWrittenAgainAfterAnExceptionInADepthOnlySurface)
{
  const auto bad = add_actor("bad");
  set_mode(*bad, MRUtil::RENDER_HIDDEN_LINE);
  throw_in(*bad, "depth", "in the dark");
  const auto good = add_actor("good");
  EXPECT_EQ(calls_of(frame(), "opaque"), (Log{"good.opaque"}));
  EXPECT_EQ(thrown(), "in the dark");
  EXPECT_TRUE(writes_colour());
}

TEST_F(GViewRenderPassTest, AnExceptionInTheQuestionCountsAsNo)
{
  const auto bad = add_actor("bad");
  throw_in(*bad, "asked", "no answer");
  const auto opaque = add_actor("opaque");
  frame();
  EXPECT_EQ(calls_of(mLog, "asked"), (Log{"bad.asked", "opaque.asked"}));
  EXPECT_EQ(mPass->depth_peeling_pass(), nullptr);
  opaque->is_translucent = true;
  frame();
  EXPECT_NE(mPass->depth_peeling_pass(), nullptr);
}

TEST_F(GViewRenderPassTest, TheWindowRendersAgainAfterAnException)
{
  show(flat_actor(quad(-1, -1, 1, 1), kGreen));
  const auto bad = add_actor("bad");
  throw_in(*bad, "overlay", "once");
  frame();
  EXPECT_EQ(mScene.window()->CheckInRenderStatus(), 0);
  bad->on_call = nullptr;
  mScene.renderer()->SetBackground(0.0, 0.0, 1.0);
  EXPECT_EQ(count_pixels(mScene.render(), colour_is(kGreen)), 100 * 100);
}

TEST_F(GViewRenderPassTest, AnExceptionInTheTranslucentStageLeavesTheRestOfTheFrameIntact)
{
  // The peeling draws into framebuffers of its own: an exception must not leave one of them bound, in which
  // the overlays and everything after would be lost.
  show(flat_actor(quad(-1, -1, 1, 1), kGreen));
  const auto bad = add_actor("bad");
  bad->is_translucent = true;
  throw_in(*bad, "translucent", "half peeled");
  const auto square = flat_square(10, 20, 40, 60, kRed);
  mScene.renderer()->AddViewProp(square);
  for (int turn = 0; turn < 2; ++turn) {
    const Image seen = mScene.render();
    EXPECT_EQ(thrown(), "half peeled");
    EXPECT_EQ(seen.at(25, 40), kRed) << turn;
    EXPECT_EQ(seen.at(80, 80), kGreen) << turn;
  }
}

TEST_F(GViewRenderPassTest, TheFrameAfterATranslucentExceptionIsAsIfNothingHadBeen)
{
  show_panes(*mScene.renderer());
  const auto bad = add_actor("bad");
  const Image before = mScene.render();
  bad->is_translucent = true;
  throw_in(*bad, "translucent", "half peeled");
  frame();
  EXPECT_EQ(thrown(), "half peeled");
  bad->on_call = nullptr;
  bad->is_translucent = false;
  EXPECT_TRUE(before == mScene.render());
}

// --- Props that render another window --------------------------------------------------------------------

class GViewRenderPassNestedTest : public GViewRenderPassTest,
                                  public ::testing::WithParamInterface<const char*>
{};

TEST_P(GViewRenderPassNestedTest, WhatFollowsIsDrawnIntoTheRightWindow)
{
  // Each window has its own graphics context, and the other one's is current after its frame.
  const std::string where = GetParam();
  Scene other(60, 80);
  other.look_down(1.0);
  other.renderer()->AddViewProp(flat_actor(quad(-1, -1, 1, 1), kBlue));
  const auto hook = add_actor("hook");
  hook->is_translucent = where == "translucent";
  show(flat_actor(quad(-0.5, -0.5, 0.5, 0.5), kGreen));
  vtkActor* pane = show(flat_actor(quad(-0.8, -0.8, 0.8, 0.0, 1.0), kRed));
  pane->GetProperty()->SetOpacity(0.5);
  const auto square = flat_square(10, 20, 40, 60, kRed);
  mScene.renderer()->AddViewProp(square);
  const Image alone = mScene.render();
  hook->on_call = [&](const std::string& call) {
    if (call == where) {
      other.window()->Render();
    }
  };
  for (int turn = 0; turn < 2; ++turn) {
    EXPECT_TRUE(alone == mScene.render()) << turn;
    EXPECT_EQ(count_pixels(morrow_test::read_pixels(other.window()), colour_is(kBlue)), 60 * 80);
  }
}

INSTANTIATE_TEST_SUITE_P(Calls, GViewRenderPassNestedTest,
                         ::testing::Values("opaque", "asked", "translucent", "overlay"),
                         [](const auto& call) { return std::string(call.param); });

// --- Props that remove others ----------------------------------------------------------------------------

class GViewRenderPassRemovalTest : public GViewRenderPassTest,
                                   public ::testing::WithParamInterface<const char*>
{};

TEST_P(GViewRenderPassRemovalTest, ARemovedPropIsDrawnToTheEndOfTheFrame)
{
  // The renderer holds the only references: what it lets go of must still be there for the rest of the frame.
  const std::string where = GetParam();
  const auto remover = add_actor("remover");
  remover->is_translucent = where == "translucent";
  add_prop("first");
  add_actor("second");
  add_actor("third", VTK_WIREFRAME);
  remover->on_call = [&](const std::string& call) {
    if (call == where) {
      mScene.renderer()->RemoveAllViewProps();
    }
  };
  frame();
  for (const char* name : {"first", "second", "third"}) {
    ASSERT_FALSE(calls_to(mLog, name).empty()) << name;
    EXPECT_EQ(calls_to(mLog, name).front(), "opaque") << name;
    EXPECT_EQ(calls_to(mLog, name).back(), "overlay") << name;
  }
  EXPECT_EQ(frame(), Log{});
}

TEST_F(GViewRenderPassTest, HoldsNoPropBetweenFrames)
{
  vtkWeakPointer<vtkProp> prop = add_actor("a").Get();
  frame();
  EXPECT_NE(prop, nullptr);
  mScene.renderer()->RemoveAllViewProps();
  EXPECT_EQ(prop, nullptr);
}

INSTANTIATE_TEST_SUITE_P(Calls, GViewRenderPassRemovalTest,
                         ::testing::Values("opaque", "asked", "translucent", "overlay"),
                         [](const auto& call) { return std::string(call.param); });

// --- Aborted frames --------------------------------------------------------------------------------------

/// Aborts each frame of the window while it lives.
class FrameAborter
{
public:
  explicit FrameAborter(vtkRenderWindow* window) : mWindow(window)
  {
    mCommand->SetCallback([](vtkObject* caller, unsigned long, void*, void*) {
      static_cast<vtkRenderWindow*>(caller)->SetAbortRender(1);
    });
    mWindow->AddObserver(vtkCommand::StartEvent, mCommand);
  }
  ~FrameAborter() { mWindow->RemoveObserver(mCommand); }
  FrameAborter(const FrameAborter&) = delete;
  FrameAborter& operator=(const FrameAborter&) = delete;

private:
  vtkRenderWindow* mWindow;
  vtkNew<vtkCallbackCommand> mCommand;
};

TEST_F(GViewRenderPassTest, AnAbortedFrameDrawsNothingAndKeepsThePicture)
{
  const auto actor = add_actor("actor");
  show(flat_actor(quad(-0.5, -0.5, 0.5, 0.5), kGreen));
  const Image before = mScene.render();
  EXPECT_EQ(count_pixels(before, colour_is(kGreen)), 50 * 50);
  mScene.renderer()->SetBackground(0.0, 0.0, 1.0);
  show(flat_actor(quad(-1, -1, 0, 0, 1), kRed));
  {
    const FrameAborter aborter(mScene.window());
    EXPECT_EQ(frame(), Log{});
    EXPECT_TRUE(before == morrow_test::read_pixels(mScene.window()));
    EXPECT_EQ(frame(), Log{}); // nor in the second buffer
    EXPECT_TRUE(before == morrow_test::read_pixels(mScene.window()));
  }
  const Image after = mScene.render();
  EXPECT_EQ(count_pixels(after, colour_is(kRed)), 50 * 50);
  EXPECT_EQ(count_pixels(after, colour_is(kGreen)), 75 * 25 + 25 * 25 - 25 * 25);
}

} // namespace
