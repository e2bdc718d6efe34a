// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// Labels in several windows and views, and the helper that reads the depth for them.
#include "GLabelMapper.h"

#include "LabelFixture.h"

#include <vtkInformation.h>
#include <vtkInformationIntegerKey.h>
#include <vtkTextProperty.h>

namespace {

using namespace morrow_test;

// --- The helper ------------------------------------------------------------------------------------------

TEST_F(GLabelDrawingTest, TheWindowIsWatchedOnlyWhileItsFrameLasts)
{
  add("a", 0.0, 0.0, 0.0);
  bool watched_before = true;
  bool watched_after = false;
  mScene.renderer()->RemoveAllViewProps();
  add_hook([&] { watched_before = is_watched(mScene.window()); });
  mMapper = add_mapper(*mScene.renderer());
  add("a", 0.0, 0.0, 0.0);
  add_hook([&] { watched_after = is_watched(mScene.window()); });
  frame();
  EXPECT_FALSE(watched_before);
  EXPECT_TRUE(watched_after);
  EXPECT_FALSE(is_watched(mScene.window()));
  // Nor is anything else left behind, frame after frame.
  EXPECT_FALSE(mScene.window()->HasObserver(vtkCommand::StartEvent));
  EXPECT_FALSE(mScene.window()->HasObserver(vtkCommand::EndEvent));
}

TEST_F(GLabelDrawingTest, NothingIsKeptBetweenFrames)
{
  add("a", 0.0, 0.0, 0.0);
  frame();
  int width = -1;
  int height = -1;
  EXPECT_EQ(zBufferHelper::instance().depth(width, height), nullptr);
  EXPECT_EQ(width, 0);
  EXPECT_EQ(height, 0);
}

TEST_F(GLabelDrawingTest, TheHelperActsOnEndEventsOnly)
{
  zBufferHelper& helper = zBufferHelper::instance();
  mScene.window()->Render();
  helper.watch(*mScene.window());
  for (const unsigned long event : {static_cast<unsigned long>(vtkCommand::StartEvent),
                                    static_cast<unsigned long>(vtkCommand::RenderEvent),
                                    static_cast<unsigned long>(vtkCommand::ModifiedEvent),
                                    static_cast<unsigned long>(vtkCommand::DeleteEvent), 0UL}) {
    helper.Execute(mScene.window(), event, nullptr);
    EXPECT_TRUE(is_watched(mScene.window())) << event;
  }
  helper.Execute(mScene.window(), vtkCommand::EndEvent, nullptr);
  EXPECT_FALSE(is_watched(mScene.window()));
}

TEST_F(GLabelDrawingTest, OneWindowIsWatchedAtATime)
{
  zBufferHelper& helper = zBufferHelper::instance();
  const auto other = morrow_test::make_window(10, 10);
  helper.watch(*mScene.window());
  helper.watch(*other);
  EXPECT_FALSE(is_watched(mScene.window()));
  EXPECT_TRUE(is_watched(other));
  helper.Execute(mScene.window(), vtkCommand::EndEvent, nullptr); // a late one of the other window
  EXPECT_TRUE(is_watched(other));
  helper.forget();
  EXPECT_FALSE(is_watched(other));
}

TEST_F(GLabelDrawingTest, TheHelperLivesThroughTheEndOfItsWindow)
{
  zBufferHelper& helper = zBufferHelper::instance();
  helper.watch(*morrow_test::make_window(10, 10)); // gone at once
  int width = -1;
  int height = -1;
  EXPECT_EQ(helper.depth(width, height), nullptr);
  EXPECT_EQ(width, 0);
  helper.forget();
  add("a", 0.0, 0.0, 0.0);
  EXPECT_EQ(frame(), (Texts{"a"}));
}

TEST_F(GLabelDrawingTest, AWindowThatWasNeverRenderedHasNoDepth)
{
  // VTK itself would end the process.
  zBufferHelper& helper = zBufferHelper::instance();
  helper.watch(*mScene.window());
  int width = -1;
  int height = -1;
  EXPECT_EQ(helper.depth(width, height), nullptr);
  EXPECT_EQ(width, 0);
  EXPECT_EQ(height, 0);
  helper.forget();
}

TEST_F(GLabelDrawingTest, TheDepthIsThatOfTheWindow)
{
  add_wall(); // depth 0.5
  const float* depth = nullptr;
  int width = 0;
  int height = 0;
  bool same_again = false;
  add_hook([&] {
    zBufferHelper& helper = zBufferHelper::instance();
    helper.watch(*mScene.window());
    depth = helper.depth(width, height);
    ASSERT_NE(depth, nullptr);
    EXPECT_NEAR(depth[0], 0.5, 1.0e-5);
    EXPECT_NEAR(depth[101 * 99 + 99], 0.5, 1.0e-5); // rows of 101 values
    same_again = helper.depth(width, height) == depth;
  });
  frame();
  EXPECT_EQ(width, 100);
  EXPECT_EQ(height, 100);
  EXPECT_TRUE(same_again);
}

TEST_F(GLabelDrawingTest, TheHelperIsACommand)
{
  EXPECT_STREQ(zBufferHelper::instance().GetClassName(), "zBufferHelper");
  EXPECT_TRUE(zBufferHelper::instance().IsA("vtkCommand"));
  EXPECT_EQ(&zBufferHelper::instance(), &zBufferHelper::instance());
}

// --- Windows that change in the middle of a frame --------------------------------------------------------

/// A second window, with its own labels and a wall, that is seen from the other side.
class GLabelTwoWindowsTest : public GLabelDrawingTest
{
protected:
  void SetUp() override
  {
    GLabelDrawingTest::SetUp();
    mOther.look_down(1.0);
    mOther.renderer()->GetActiveCamera()->SetPosition(0.0, 0.0, -10.0);
    prepare(*mOther.renderer());
    add_wall(*mOther.renderer());
    mOtherMapper = add_mapper(*mOther.renderer());
    mOtherMapper->add_point({0.0, 0.0, 1.0}, "other z=1", BRANT_RED);
    mOtherMapper->add_point({0.0, 0.0, -1.0}, "other z=-1", BRANT_RED);
    add_wall();
    add("z=1", 0.0, 0.0, 1.0);
    add("z=-1", 0.0, 0.0, -1.0);
  }

  Scene mOther{60, 80};
  vtkSmartPointer<GLabelMapper> mOtherMapper;
};

TEST_F(GLabelTwoWindowsTest, WindowsInTurnHaveTheirOwnDepthAndProjection)
{
  for (int turn = 0; turn < 3; ++turn) {
    EXPECT_EQ(frame(), (Texts{"z=1"}));
    EXPECT_EQ(frame(mOther.window()), (Texts{"other z=-1"}));
  }
}

TEST_F(GLabelTwoWindowsTest, AWindowRenderedInAnothersFrameHasItsOwnDepthAndProjection)
{
  add_hook([&] { mOther.window()->Render(); });
  const auto late = add_mapper(*mScene.renderer()); // drawn after the other window's frame
  late->add_point({0.5, 0.5, 1.0}, "late z=1", BRANT_RED);
  late->add_point({0.5, -0.5, -1.0}, "late z=-1", BRANT_RED);
  const unsigned long before = depth_reads();
  EXPECT_EQ(frame(), (Texts{"z=1", "other z=-1", "late z=1"}));
  EXPECT_EQ(depth_reads(), before + 3); // the first window's again: what was kept of it has been dropped
  EXPECT_FALSE(is_watched(mScene.window()));
  EXPECT_FALSE(is_watched(mOther.window()));
  EXPECT_EQ(frame(), (Texts{"z=1", "other z=-1", "late z=1"}));
}

TEST_F(GLabelTwoWindowsTest, AWindowRenderedBeforeTheFirstLabelOfAFrameDisturbsNothing)
{
  mScene.renderer()->RemoveAllViewProps();
  add_wall();
  add_hook([&] { mOther.window()->Render(); });
  mMapper = add_mapper(*mScene.renderer());
  add("z=1", 0.0, 0.0, 1.0);
  add("z=-1", 0.0, 0.0, -1.0);
  EXPECT_EQ(frame(), (Texts{"other z=-1", "z=1"}));
}

TEST_F(GLabelTwoWindowsTest, AWindowDestroyedAfterItsFrameLeavesNothingBehind)
{
  auto brief = std::make_unique<Scene>(100, 100);
  brief->look_down(1.0);
  const auto mapper = add_mapper(*brief->renderer());
  mapper->add_point({0.0, 0.0, 0.0}, "brief", BRANT_RED);
  EXPECT_EQ(frame(brief->window()), (Texts{"brief"}));
  brief.reset();
  EXPECT_EQ(frame(), (Texts{"z=1"}));
}

TEST_F(GLabelTwoWindowsTest, AWindowDestroyedWhileItIsWatchedIsForgotten)
{
  // Drawn outside of a frame, so no end of a frame lets the helper go. A new window may well stand at the
  // address of the old one, and must not be taken for it.
  for (int turn = 0; turn < 5; ++turn) {
    Scene brief(100, 100);
    brief.look_down(1.0);
    brief.renderer()->ResetCameraClippingRange(-1.0, 1.0, -1.0, 1.0, -5.0, 5.0);
    if (turn % 2 == 0) {
      add_wall(*brief.renderer());
    }
    brief.window()->Render();
    const vtkNew<GLabelMapper> mapper;
    mapper->set_model(&mModel);
    mapper->add_point({0.0, 0.0, -1.0}, "brief", BRANT_RED);
    const vtkNew<vtkActor2D> actor;
    mRecorder.clear();
    mapper->RenderOverlay(brief.renderer(), actor);
    EXPECT_EQ(mRecorder.drawn().size(), turn % 2 == 0 ? 0U : 1U) << turn;
  }
  zBufferHelper::instance().forget();
}

TEST_F(GLabelDrawingTest, AWindowResizedInTheMiddleOfAFrameDoesNoHarm)
{
  add_wall();
  add("before", 0.0, 0.0, 1.0);
  add_hook([&] {
    const int size = mScene.window()->GetSize()[0] == 100 ? 300 : 100;
    mScene.window()->SetSize(size, size);
  });
  const auto late = add_mapper(*mScene.renderer());
  for (int i = 0; i < 100; ++i) { // in every part of the window
    late->add_point({i % 10 / 5.0 - 1.0, i / 10 / 5.0 - 1.0, -1.0}, "late", BRANT_RED);
  }
  for (int turn = 0; turn < 4; ++turn) {
    const Texts texts = frame();
    ASSERT_FALSE(texts.empty());
    EXPECT_EQ(texts[0], "before");
  }
}

TEST_F(GLabelDrawingTest, LabelsAreRightInTheFrameAfterAResizeInTheMiddleOfOne)
{
  add_wall();
  add("before", 0.0, 0.0, 1.0);
  add("behind", 0.0, 0.0, -1.0);
  bool resize = true;
  add_hook([&] {
    if (resize) {
      mScene.window()->SetSize(300, 300);
    }
  });
  frame();
  resize = false;
  EXPECT_EQ(frame(), (Texts{"before"}));
}

TEST_F(GLabelDrawingTest, AFrameThatAnExceptionEndedLeavesNoDepthBehind)
{
  const auto wall = add_wall();
  add("a", 0.0, 0.0, -1.0);
  bool fail = true;
  add_hook([&] {
    if (fail) {
      throw std::runtime_error("in the middle of the frame");
    }
  });
  {
    [[maybe_unused]] const VtkMayLeak scope;
    EXPECT_THROW(mScene.window()->Render(), std::runtime_error);
  }
  fail = false;
  mScene.window()->ClearInRenderStatus(); // what a host must do: VTK has been left in the middle of a frame
  wall->VisibilityOff();
  EXPECT_EQ(frame(), (Texts{"a"}));
}

// --- In a view -------------------------------------------------------------------------------------------

/// A model in a view of 100 × 100 pixels with a wall at z = 0; the camera is that of the other tests.
class GLabelViewTest : public morrow_test::RenderTest
{
protected:
  void SetUp() override
  {
    RenderTest::SetUp();
    prepare(mView);
    mModel.add_view(&mView);
    mWall = flat_actor(quad(-1.0, -1.0, 1.0, 1.0), kGreen);
    mView.add_props({mWall});
  }

  static void prepare(GView& view)
  {
    view.get_render_window()->SetSize(100, 100);
    view.set_background(0);
    view.set_background2(0);
    view.set_triad_vis(false); // its labels would be recorded, too
    vtkCamera* camera = view.get_renderer()->GetActiveCamera();
    camera->ParallelProjectionOn();
    camera->SetParallelScale(1.0);
    camera->SetPosition(0.0, 0.0, 10.0);
    camera->SetFocalPoint(0.0, 0.0, 0.0);
    // The view fits the clipping range to its props: room for labels from z = -2 to 2.
    view.add_props({flat_actor(morrow_test::vertices({0.9, 0.9, -2, 0.9, 0.9, 2}), kBlue)});
  }

  /// The texts drawn in a frame of the view.
  Texts frame() { return frame(mView); }
  Texts frame(GView& view)
  {
    mRecorder.clear();
    view.render();
    return mRecorder.texts();
  }

  void set_wall_mode(int mode)
  {
    const vtkNew<vtkInformation> keys;
    keys->Set(MRUtil::RENDER_MODE(), mode);
    mWall->SetPropertyKeys(keys);
  }

  LabelRecorder mRecorder;
  GView mView;
  TestModel mModel;
  morrow_test::WarningDisplayOn mWarnings;
  vtkSmartPointer<vtkActor> mWall;
};

TEST_F(GLabelViewTest, LabelsOfAModelHideBehindGeometry)
{
  mModel.add_label("behind", {0.0, 0.0, -1.0}, BRANT_RED);
  mModel.add_label("before", {0.0, 0.0, 1.0}, BRANT_RED);
  EXPECT_EQ(frame(), (Texts{"before"}));
  mModel.set_render_mode(MRUtil::RENDER_WIREFRAME);
  EXPECT_EQ(frame(), (Texts{"behind", "before"}));
}

TEST_F(GLabelViewTest, SurfacesThatAreNotSeenHideLabelsByTheirMode)
{
  mModel.add_label("behind", {0.0, 0.0, -1.0}, BRANT_RED);
  set_wall_mode(MRUtil::RENDER_HIDDEN_LINE);
  EXPECT_EQ(frame(), Texts{}); // no colour, but depth
  set_wall_mode(MRUtil::RENDER_NO_SURFACES);
  EXPECT_EQ(frame(), (Texts{"behind"}));
}

TEST_F(GLabelViewTest, TwoModelsInAViewShareOneReadOfTheDepth)
{
  TestModel second;
  second.add_view(&mView);
  mModel.add_label("a", {0.0, 0.0, 0.0}, BRANT_RED);
  second.add_label("b", {0.0, 0.0, 0.0}, BRANT_RED);
  const unsigned long before = depth_reads();
  frame();
  EXPECT_EQ(depth_reads(), before + 1);
}

TEST_F(GLabelViewTest, AnEnabledOverlayDoesNotDisturbTheDepth)
{
  mModel.add_label("behind", {0.0, 0.0, -1.0}, BRANT_RED);
  mModel.add_label("before", {0.0, 0.0, 1.0}, BRANT_RED);
  mView.enable_overlay(); // clears the depth when it is drawn, after the main renderer
  EXPECT_EQ(frame(), (Texts{"before"}));
  EXPECT_EQ(frame(), (Texts{"before"}));
}

TEST_F(GLabelViewTest, OpaqueGeometryHidesLabelsBehindGlassToo)
{
  // Depth peeling leaves the depth of the opaque geometry.
  const auto glass = flat_actor(quad(-1.0, -1.0, 1.0, 1.0, 1.5), kBlue);
  glass->GetProperty()->SetOpacity(0.5);
  mView.add_props({glass});
  mModel.add_label("behind both", {0.0, 0.0, -1.0}, BRANT_RED);
  mModel.add_label("between", {0.0, 0.0, 1.0}, BRANT_RED);
  mModel.add_label("before both", {0.0, 0.0, 1.9}, BRANT_RED);
  EXPECT_EQ(frame(), (Texts{"between", "before both"}));
}

TEST_F(GLabelViewTest, TheFrameAfterAnExceptionOfAPropIsRight)
{
  mModel.add_label("behind", {0.0, 0.0, -1.0}, BRANT_RED);
  const auto hook = overlay_hook([] { throw std::runtime_error("a prop"); });
  mView.add_props({hook});
  mRecorder.clear();
  EXPECT_THROW(mView.render(), std::runtime_error);
  EXPECT_EQ(mRecorder.texts(), Texts{});
  mView.remove_props({hook, mWall});
  EXPECT_EQ(frame(), (Texts{"behind"}));
}

TEST_F(GLabelViewTest, TheFrameAfterAnExceptionOfAnObserverIsRight)
{
  mModel.add_label("behind", {0.0, 0.0, -1.0}, BRANT_RED);
  {
    [[maybe_unused]] const VtkMayLeak scope;
    const vtkNew<vtkCallbackCommand> observer;
    observer->SetCallback(
        [](vtkObject*, unsigned long, void*, void*) { throw std::runtime_error("observer"); });
    // The end of the renderer's part: labels are drawn, the window's end event is still to come.
    mView.get_renderer()->AddObserver(vtkCommand::EndEvent, observer);
    EXPECT_THROW(mView.render(), std::runtime_error);
    mView.get_renderer()->RemoveObserver(observer);
  }
  EXPECT_FALSE(is_watched(mView.get_render_window()));
  mView.remove_props({mWall});
  EXPECT_EQ(frame(), (Texts{"behind"}));
}

TEST_F(GLabelViewTest, LabelsMoveWithAViewThatIsGivenAnotherWindow)
{
  mModel.add_label("###", {-0.5, 0.0, 1.0}, BRANT_RED);
  EXPECT_EQ(frame(), (Texts{"###"}));
  const Image before = morrow_test::read_pixels(mView.get_render_window());
  const auto window = morrow_test::make_window(100, 100);
  window->Render(); // mapped
  mView.set_render_window(window);
  window->SetSize(100, 100);
  EXPECT_EQ(frame(), (Texts{"###"}));
  EXPECT_TRUE(before == morrow_test::read_pixels(window));
}

TEST_F(GLabelViewTest, VtksErrorsAboutALabelAreSilentAsTheFirstModelWantsThem)
{
  vtkObject::GlobalWarningDisplayOff(); // the tests' own switch had put it on again
  mModel.add_label("\xff\xfe", {0.0, 0.0, 1.0}, BRANT_RED);
  frame();
  EXPECT_TRUE(morrow_test::vtk_messages().empty());
  vtkObject::GlobalWarningDisplayOn();
}

// --- In two views ----------------------------------------------------------------------------------------

/// A second view, without a wall.
class GLabelTwoViewsTest : public GLabelViewTest
{
protected:
  void SetUp() override
  {
    GLabelViewTest::SetUp();
    prepare(mOther);
  }

  static int red_pixels(GView& view)
  {
    return count_pixels(morrow_test::read_pixels(view.get_render_window()), is_red);
  }

  GView mOther;
};

TEST_F(GLabelTwoViewsTest, AModelsLabelsAreJudgedInEachViewByItself)
{
  mModel.add_view(&mOther);
  mModel.add_label("behind", {0.0, 0.0, -1.0}, BRANT_RED);
  EXPECT_EQ(frame(), Texts{});
  EXPECT_EQ(frame(mOther), (Texts{"behind"}));
}

/// With and without the depth test, whose read makes a view's context current.
class GLabelSharedModelTest : public GLabelTwoViewsTest,
                              public ::testing::WithParamInterface<MRUtil::RenderMode>
{
protected:
  void SetUp() override
  {
    GLabelTwoViewsTest::SetUp();
    mModel.set_render_mode(GetParam());
    mModel.add_view(&mOther);
    mModel.add_label("###", {-0.5, 0.0, 1.0}, BRANT_RED);
    mModel.add_label("HHH", {-0.5, 0.5, 1.0}, BRANT_RED);
  }
};

TEST_P(GLabelSharedModelTest, LabelsAreDrawnInBothViewsFrameAfterFrame)
{
  // Each window has its own graphics context; what a label keeps in one of them must not be used, nor
  // deleted, in the other.
  mView.render();
  mOther.render();
  const Image first = morrow_test::read_pixels(mView.get_render_window());
  const Image second = morrow_test::read_pixels(mOther.get_render_window());
  EXPECT_GT(count_pixels(first, is_red), 40);
  EXPECT_GT(count_pixels(second, is_red), 40);
  for (int turn = 0; turn < 3; ++turn) {
    mView.render();
    mOther.render();
    EXPECT_TRUE(first == morrow_test::read_pixels(mView.get_render_window())) << turn;
    EXPECT_TRUE(second == morrow_test::read_pixels(mOther.get_render_window())) << turn;
  }
}

TEST_P(GLabelSharedModelTest, FramesInTurnLeaveNoTexturesBehind)
{
  const auto render_in_turn = [&](int turns) {
    for (int turn = 0; turn < turns; ++turn) {
      mView.render();
      mOther.render();
    }
  };
  render_in_turn(2);
  const int first = num_textures(mView.get_render_window());
  const int second = num_textures(mOther.get_render_window());
  render_in_turn(10);
  EXPECT_EQ(num_textures(mView.get_render_window()), first);
  EXPECT_EQ(num_textures(mOther.get_render_window()), second);
}

TEST_P(GLabelSharedModelTest, LabelsAreDrawnInAViewAfterTheOtherWasRenderedInItsFrame)
{
  // The labels of the outer frame come after those of the inner one.
  mModel.remove_view(&mView);
  mView.add_props({overlay_hook([&] { mOther.render(); })});
  mModel.add_view(&mView);
  for (int turn = 0; turn < 2; ++turn) {
    mView.render();
    EXPECT_GT(red_pixels(mView), 40) << turn;
    EXPECT_GT(red_pixels(mOther), 40) << turn;
  }
}

INSTANTIATE_TEST_SUITE_P(Modes, GLabelSharedModelTest,
                         ::testing::Values(MRUtil::RENDER_WIREFRAME, MRUtil::RENDER_FLAT),
                         [](const auto& mode) { return "Mode" + std::to_string(mode.param); });

TEST_F(GLabelTwoViewsTest, AViewThatLeavesTakesNothingFromTheOther)
{
  // Whichever was rendered last, and whichever leaves: its resources are its own.
  for (const bool other_was_last : {false, true}) {
    TestModel model;
    model.add_label("###", {-0.5, 0.0, 1.0}, BRANT_RED);
    model.add_label("HHH", {-0.5, 0.5, 1.0}, BRANT_RED);
    model.add_view(&mOther);
    auto brief = std::make_unique<GView>();
    prepare(*brief);
    model.add_view(brief.get());
    mOther.render();
    const Image before = morrow_test::read_pixels(mOther.get_render_window());
    EXPECT_GT(count_pixels(before, is_red), 40);
    brief->render();
    if (other_was_last) {
      mOther.render();
    }
    model.remove_view(brief.get());
    mOther.render();
    EXPECT_TRUE(before == morrow_test::read_pixels(mOther.get_render_window())) << other_was_last;
    brief.reset();
    mOther.render();
    EXPECT_TRUE(before == morrow_test::read_pixels(mOther.get_render_window())) << other_was_last;
  }
}

TEST_F(GLabelTwoViewsTest, ViewsThatComeAndGoTakeNothingFromTheOther)
{
  mModel.add_label("###", {-0.5, 0.0, 1.0}, BRANT_RED);
  mModel.add_label("HHH", {-0.5, 0.5, 1.0}, BRANT_RED);
  mView.render();
  const Image before = morrow_test::read_pixels(mView.get_render_window());
  for (int turn = 0; turn < 4; ++turn) {
    {
      GView brief; // its window may well stand where the one before did
      prepare(brief);
      mModel.add_view(&brief);
      brief.render();
      EXPECT_GT(red_pixels(brief), 40) << turn;
    }
    mView.render();
    EXPECT_TRUE(before == morrow_test::read_pixels(mView.get_render_window())) << turn;
  }
}

TEST_F(GLabelTwoViewsTest, AReplacedTextPropertyReachesTheLabelInBothWindows)
{
  // Through a mapper of its own: the model's is not to be had.
  const vtkNew<GLabelMapper> mapper;
  mapper->set_model(&mModel);
  mapper->add_point({-0.5, 0.0, 1.0}, "###", BRANT_RED);
  const auto actor = vtkSmartPointer<vtkActor2D>::New();
  actor->SetMapper(mapper);
  mView.add_props({actor});
  mOther.add_props({actor});
  frame(mView);
  frame(mOther);
  const vtkNew<vtkTextProperty> large;
  large->SetFontSize(40);
  mapper->SetLabelTextProperty(large);
  for (GView* view : {&mView, &mOther}) {
    frame(*view);
    ASSERT_EQ(mRecorder.drawn().size(), 1U);
    EXPECT_EQ(mRecorder.drawn()[0].style->GetFontSize(), 40);
    EXPECT_EQ(mRecorder.drawn()[0].style->GetColor()[0], 1.0);
    EXPECT_EQ(mRecorder.drawn()[0].style->GetColor()[1], 0.0);
  }
}

TEST_F(GLabelTwoViewsTest, ALabelIsRemovedFromItsOwnViewWhicheverIsCurrent)
{
  // Its texture has the same name in one context as another one has in the other.
  TestModel other_model;
  other_model.add_view(&mOther);
  other_model.add_label("###", {-0.5, 0.0, 1.0}, BRANT_RED);
  const GModel::LabelKey key = mModel.add_label("###", {-0.5, 0.0, 1.0}, BRANT_RED);
  mView.render();
  mOther.render();
  const Image before = morrow_test::read_pixels(mOther.get_render_window());
  const int own = num_textures(mView.get_render_window());
  const int others = num_textures(mOther.get_render_window()); // whose context is current now
  mModel.remove_label(key);
  EXPECT_EQ(num_textures(mView.get_render_window()), own - 1);
  EXPECT_EQ(num_textures(mOther.get_render_window()), others);
  mOther.render();
  EXPECT_TRUE(before == morrow_test::read_pixels(mOther.get_render_window()));
  mView.render();
  EXPECT_EQ(red_pixels(mView), 0);
}

TEST_F(GLabelTwoViewsTest, AViewRenderedInTheFrameOfAnotherHasItsOwnDepth)
{
  mView.add_props({overlay_hook([&] { mOther.render(); })});
  TestModel other_model;
  other_model.add_view(&mOther);
  TestModel late; // drawn after the other view's frame
  late.add_view(&mView);
  mModel.add_label("behind", {0.0, -0.5, -1.0}, BRANT_RED);
  other_model.add_label("###", {-0.5, 0.0, -1.0}, BRANT_RED);
  late.add_label("late behind", {0.0, 0.5, -1.0}, BRANT_RED);
  late.add_label("late before", {0.0, 0.5, 1.0}, BRANT_RED);
  EXPECT_EQ(frame(), (Texts{"###", "late before"}));
  EXPECT_GT(red_pixels(mOther), 20);
  EXPECT_GT(red_pixels(mView), 20);
}

TEST_F(GLabelTwoViewsTest, LabelsWithoutADepthTestAreDrawnIntoTheirOwnViewAfterTheOtherWasRendered)
{
  // No read of the depth makes the view's context current again.
  mView.add_props({overlay_hook([&] { mOther.render(); })});
  TestModel late;
  late.add_view(&mView);
  late.set_render_mode(MRUtil::RENDER_WIREFRAME);
  late.add_label("###", {-0.5, 0.0, 1.0}, BRANT_RED);
  for (int turn = 0; turn < 2; ++turn) {
    mView.render();
    EXPECT_GT(red_pixels(mView), 20) << turn;
    EXPECT_EQ(red_pixels(mOther), 0) << turn;
  }
}

} // namespace
