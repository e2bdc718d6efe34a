// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// What happens to camera operations when the host's code that their frames call does something of its own,
// and when what they are asked for cannot be shown.
#include "GView.h"

#include "CameraFixture.h"

#include <climits>

namespace {

using namespace morrow_test;

constexpr double kBox[6] = {0.0, 1.0, 1.0, 3.0, -2.0, 1.0};
constexpr double kPoint[3] = {0.5, 0.5, 3.0};

struct Operation
{
  const char* name;
  void (*call)(GView& view, int steps, int smooth);
};

const Operation kOperations[] = {
    {"SetFrom", [](GView& view, int steps, int smooth) { view.set_from(kPoint, steps, smooth); }},
    {"SetUp", [](GView& view, int steps, int smooth) { view.set_up(kPoint, steps, smooth); }},
    {"ZoomBox", [](GView& view, int steps, int smooth) { view.zoom_box(kBox, steps, smooth, kPoint); }},
    {"ZoomScreen", [](GView& view, int steps, int smooth) { view.zoom_screen(2.0, steps, smooth); }},
    {"ZoomScreenInParallel",
     [](GView& view, int steps, int smooth) {
       const std::shared_ptr<GView* const> handle = view.handle();
       const vtkSmartPointer<vtkCamera> camera = view.get_renderer()->GetActiveCamera();
       camera->ParallelProjectionOn();
       if (*handle != nullptr) {
         view.zoom_screen(2.0, steps, smooth);
       }
     }},
    {"PanFractions", [](GView& view, int steps, int smooth) { view.pan(0.1, 0.1, steps, smooth, 1); }},
    {"RotateAboutTarget",
     [](GView& view, int steps, int smooth) { view.rotate_about_target(40.0, 'x', steps, smooth); }},
    {"RotateAboutWorld",
     [](GView& view, int steps, int smooth) { view.rotate_about_world(40.0, 'x', steps, smooth); }},
};

const Operation kImmediate[] = {
    {"ResetCamera", [](GView& view, int, int) { view.reset_camera(); }},
    {"CompleteResetCamera", [](GView& view, int, int) { view.complete_reset_camera(); }},
    {"PerspectiveOff", [](GView& view, int, int) { view.set_perspective(false); }},
    {"Set2dMode", [](GView& view, int, int) { view.set_2d_mode(0.0, 0.0, 1.0, 1.0); }},
    {"MouseXforms", [](GView& view, int, int) { view.mouse_xforms(); }},
};

/// Runs a test with each of the operations.
template<std::size_t Count, typename Test>
void for_each(const Operation (&operations)[Count], Test&& test)
{
  for (const Operation& operation : operations) {
    SCOPED_TRACE(operation.name);
    test(operation);
    reset_what_views_share();
  }
}

/// The same on one stage, which is put back before each operation.
template<std::size_t Count, typename Test>
void for_each_on_stage(const Operation (&operations)[Count], Test&& test)
{
  CameraStage stage;
  const auto start = stage.twin();
  for_each(operations, [&](const Operation& operation) {
    stage.camera()->DeepCopy(start);
    stage.model.on_update = nullptr;
    stage.model.updates = 0;
    test(operation, stage);
  });
}

using AnimationTest = ViewRenderTest;
using AnyOperationTest = ViewRenderTest;

void expect_healthy(GView& view)
{
  const FrameCounter frames(view.get_render_window());
  view.render();
  EXPECT_EQ(frames.ends(), 1);
}

// --- Interruption
// -----------------------------------------------------------------------------------------------

// Without softness: the soft frames of a zoom by a factor cannot be interrupted.
TEST_F(AnimationTest, OfAnyLengthEndsAtOnceWhenInterrupted)
{
  for_each_on_stage(kOperations, [](const Operation& operation, CameraStage& stage) {
    const InterruptAfter interrupt(0);
    const FrameCounter frames(stage.window());
    operation.call(*stage.view, INT_MAX, 0);
    EXPECT_LE(frames.ends(), 1);
    EXPECT_EQ(interrupt.reads(), 1);
    expect_healthy(*stage.view);
  });
}

TEST_F(AnimationTest, OfAnySoftnessEndsAtOnceWhenInterrupted)
{
  for_each_on_stage(kOperations, [](const Operation& operation, CameraStage& stage) {
    if (std::string(operation.name).find("ZoomScreen") == 0) {
      return; // its soft frames cannot be interrupted
    }
    const InterruptAfter interrupt(1);
    const FrameCounter frames(stage.window());
    operation.call(*stage.view, INT_MAX, INT_MAX);
    EXPECT_LE(frames.ends(), 2);
    EXPECT_EQ(interrupt.reads(), 2);
  });
}

TEST_F(AnimationTest, OfTheSmallestNumbersEnds)
{
  for_each_on_stage(kOperations, [](const Operation& operation, CameraStage& stage) {
    const FrameCounter frames(stage.window());
    for (const auto& [steps, smooth] : {std::pair(INT_MIN, INT_MIN), std::pair(INT_MIN, 0),
                                        std::pair(INT_MIN, INT_MAX), std::pair(3, INT_MIN)}) {
      operation.call(*stage.view, steps, smooth);
    }
    EXPECT_LE(frames.ends(), 6);
    EXPECT_EQ(frames.starts(), frames.ends());
  });
}

TEST_F(AnimationTest, TheHostsFlagMayDestroyTheView)
{
  for_each(kOperations, [](const Operation& operation) {
    CameraStage stage;
    InterruptAfter interrupt;
    interrupt.on_read = [&] { stage.view.reset(); };
    operation.call(*stage.view, 3, 0);
    EXPECT_EQ(stage.view, nullptr);
    EXPECT_EQ(interrupt.reads(), 1);
    stage.view = make_view();
  });
}

TEST_F(AnimationTest, TheHostsFlagMayRender)
{
  for_each_on_stage(kOperations, [](const Operation& operation, CameraStage& stage) {
    const FrameCounter frames(stage.window());
    InterruptAfter interrupt;
    interrupt.on_read = [&] { stage.view->render(); };
    operation.call(*stage.view, 3, 0);
    EXPECT_EQ(frames.ends(), 3 + interrupt.reads());
  });
}

TEST_F(AnimationTest, TheHostsFlagMayBeginTheOperationAgain)
{
  for_each_on_stage(kOperations, [](const Operation& operation, CameraStage& stage) {
    const FrameCounter frames(stage.window());
    InterruptAfter interrupt;
    interrupt.on_read = [&] { operation.call(*stage.view, INT_MAX, 5); };
    operation.call(*stage.view, 3, 0);
    EXPECT_EQ(frames.ends(), 3);
    EXPECT_LE(interrupt.reads(), 3);
    expect_healthy(*stage.view);
  });
}

// --- The host's code in the frames
// ------------------------------------------------------------------------------

TEST_F(AnyOperationTest, AnUpdateMayDestroyTheView)
{
  const auto test = [](const Operation& operation) {
    for (const int update : {1, 2, 3}) {
      CameraStage stage;
      stage.model.on_update = [&] {
        if (stage.model.updates == update) {
          stage.view.reset();
        }
      };
      const std::shared_ptr<GView* const> handle = stage.view->handle();
      operation.call(*stage.view, 3, 1);
      EXPECT_EQ(*handle == nullptr, stage.model.updates >= update);
      stage.view = make_view();
    }
  };
  for_each(kOperations, test);
  for_each(kImmediate, test);
}

TEST_F(AnyOperationTest, AFrameMayDestroyTheView)
{
  const auto test = [](const Operation& operation) {
    for (const unsigned long event : {vtkCommand::StartEvent, vtkCommand::EndEvent}) {
      CameraStage stage;
      const vtkSmartPointer<vtkRenderWindow> window = stage.window();
      const EventHook hook(window, event, [&] { stage.view.reset(); });
      const std::shared_ptr<GView* const> handle = stage.view->handle();
      operation.call(*stage.view, 3, 1);
      EXPECT_EQ(*handle, stage.view.get());
      stage.view = make_view();
    }
  };
  for_each(kOperations, test);
  for_each(kImmediate, test);
}

TEST_F(AnyOperationTest, AnObserverOfTheCameraMayDestroyTheView)
{
  const auto test = [](const Operation& operation) {
    CameraStage stage;
    const EventHook hook(stage.camera(), vtkCommand::ModifiedEvent, [&] { stage.view.reset(); });
    const std::shared_ptr<GView* const> handle = stage.view->handle();
    operation.call(*stage.view, 3, 1);
    EXPECT_EQ(*handle, stage.view.get());
    stage.view = make_view();
  };
  for_each(kOperations, test);
  for_each(kImmediate, test);
}

// Also at a later change than its first, of which there are up to six.
TEST_F(AnyOperationTest, AnObserverOfTheCameraMayDestroyTheViewAtAnyChange)
{
  for_each(kImmediate, [](const Operation& operation) {
    for (const int change : {1, 2, 3, 4, 5, 6}) {
      CameraStage stage;
      stage.view->set_perspective_angle(50.0);
      int changes = 0;
      const EventHook hook(stage.camera(), vtkCommand::ModifiedEvent, [&] {
        if (++changes == change) {
          stage.view.reset();
        }
      });
      const std::shared_ptr<GView* const> handle = stage.view->handle();
      operation.call(*stage.view, 1, 0);
      EXPECT_EQ(*handle, stage.view.get());
      stage.view = make_view();
    }
  });
}

// The overlay gets its camera when it is needed first, which its renderer tells its observers.
TEST_F(AnyOperationTest, AnObserverOfTheOverlayMayDestroyTheView)
{
  const auto test = [](const Operation& operation) {
    CameraStage stage;
    const EventHook hook(stage.view->get_overlay_renderer(), vtkCommand::AnyEvent,
                         [&] { stage.view.reset(); });
    const std::shared_ptr<GView* const> handle = stage.view->handle();
    operation.call(*stage.view, 2, 0);
    EXPECT_EQ(*handle, stage.view.get());
    stage.view = make_view();
  };
  for_each(kOperations, test);
  for_each(kImmediate, test);
}

TEST_F(AnyOperationTest, APropThatIsAskedForItsBoundsMayDestroyTheView)
{
  const auto test = [](const Operation& operation) {
    CameraStage stage;
    const auto prop = CallingProp::make();
    show(*stage.view, prop);
    prop->on_bounds = [&] { stage.view.reset(); };
    const std::shared_ptr<GView* const> handle = stage.view->handle();
    operation.call(*stage.view, 3, 1);
    EXPECT_EQ(*handle, stage.view.get());
    prop->on_bounds = nullptr;
    stage.view = make_view();
  };
  for_each(kOperations, test);
  for_each(kImmediate, test);
}

TEST_F(AnyOperationTest, AFrameMayBeginAnyOther)
{
  const auto test = [](const Operation& operation, CameraStage& stage) {
    GView::add_global_view(stage.view);
    const FrameCounter frames(stage.window());
    const auto everything = [&] {
      for (const Operation& other : kOperations) {
        other.call(*stage.view, INT_MAX, 3);
      }
      for (const Operation& other : kImmediate) {
        other.call(*stage.view, 0, 0);
      }
      GView::reset_camera_all();
      stage.view->render();
    };
    const EventHook starts(stage.window(), vtkCommand::StartEvent, everything);
    const EventHook ends(stage.window(), vtkCommand::EndEvent, everything);
    stage.model.on_update = everything;
    operation.call(*stage.view, 2, 1);
    EXPECT_LE(frames.ends(), 40);
    EXPECT_EQ(frames.starts(), frames.ends());
    stage.model.on_update = nullptr;
  };
  for_each_on_stage(kOperations, test);
  for_each_on_stage(kImmediate, test);
}

TEST_F(AnimationTest, AFrameMayTakeTheWindowAway)
{
  for_each(kOperations, [](const Operation& operation) {
    CameraStage stage;
    const vtkSmartPointer<vtkRenderWindow> window = stage.window();
    const FrameCounter frames(window);
    stage.model.on_update = [&] {
      if (stage.model.updates == 2) {
        stage.view->set_render_window(nullptr);
      }
    };
    operation.call(*stage.view, 3, 0);
    EXPECT_EQ(stage.window(), nullptr);
    EXPECT_LE(frames.ends(), 1);
  });
}

TEST_F(AnimationTest, BegunInAFrameIsMadeInOneStep)
{
  for_each(kOperations, [](const Operation& operation) {
    CameraStage nested;
    CameraStage alone;
    for (CameraStage* stage : {&nested, &alone}) {
      stage->view->render();
    }
    int calls = 0;
    const FrameCounter frames(nested.window());
    const InterruptAfter interrupt;
    {
      const EventHook hook(nested.window(), vtkCommand::EndEvent, [&] {
        ++calls;
        operation.call(*nested.view, INT_MAX, 7);
      });
      nested.view->render();
    }
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(frames.ends(), 1);
    EXPECT_EQ(interrupt.reads(), 0);
    operation.call(*alone.view, 1, 0);
    if (std::string(operation.name) == "ZoomBox") {
      EXPECT_NE(CameraPlace(*nested.view).at, BrantVector(0.25, -0.5, 0.125));
    }
    expect_near(CameraPlace(*nested.view), CameraPlace(*alone.view));
  });
}

// A pan in less than one step has no frames, wherever it begins.
TEST_F(AnimationTest, APanOfNoStepsBegunInAFrameDoesNothing)
{
  CameraStage stage;
  const CameraPlace before(*stage.view);
  const EventHook hook(stage.window(), vtkCommand::EndEvent, [&] {
    for (const int steps : {0, -1, INT_MIN}) {
      stage.view->pan(0.1, 0.1, steps, 0, 1);
      stage.view->pan(0.1, 0.1, steps, 3, 2);
    }
  });
  stage.view->render();
  expect_near(CameraPlace(*stage.view), before, 0.0);
}

// --- Exceptions
// -------------------------------------------------------------------------------------------------

TEST_F(AnimationTest, AnExceptionOfAnUpdateEndsItAndReachesTheCaller)
{
  for_each_on_stage(kOperations, [](const Operation& operation, CameraStage& stage) {
    const FrameCounter frames(stage.window());
    stage.model.on_update = [&] {
      if (stage.model.updates >= 3) {
        throw HostError("update " + std::to_string(stage.model.updates));
      }
    };
    EXPECT_EQ(thrown_by([&] { operation.call(*stage.view, 4, 0); }), "update 3");
    EXPECT_EQ(frames.starts(), frames.ends());
    EXPECT_LE(frames.ends(), 2);
    EXPECT_LE(stage.model.updates, 4);
    stage.model.on_update = nullptr;
    expect_healthy(*stage.view);
    const int before = frames.ends();
    operation.call(*stage.view, 2, 0);
    EXPECT_EQ(frames.ends(), before + 2) << "animations render again";
  });
}

TEST_F(AnyOperationTest, AnExceptionOfTheFirstUpdateReachesTheCaller)
{
  const auto test = [](const Operation& operation) {
    if (std::string(operation.name) == "Set2dMode" || std::string(operation.name) == "MouseXforms") {
      return; // they update nothing
    }
    CameraStage stage;
    const CameraPlace before(*stage.view);
    stage.model.on_update = [] { throw HostError("no update"); };
    const FrameCounter frames(stage.window());
    EXPECT_EQ(thrown_by([&] { operation.call(*stage.view, 1, 0); }), "no update");
    EXPECT_EQ(frames.starts(), 0);
    expect_near(CameraPlace(*stage.view), before, 0.0);
  };
  for_each(kOperations, test);
  for_each(kImmediate, test);
}

TEST_F(AnimationTest, AnExceptionOfAPropEndsItAndReachesTheCaller)
{
  for_each(kOperations, [](const Operation& operation) {
    CameraStage stage;
    const auto prop = CallingProp::make();
    show(*stage.view, prop);
    const FrameCounter frames(stage.window());
    prop->on_opaque = [] { throw HostError("a prop"); };
    EXPECT_EQ(thrown_by([&] { operation.call(*stage.view, 4, 0); }), "a prop");
    EXPECT_EQ(frames.starts(), 1);
    EXPECT_EQ(frames.ends(), 1);
    prop->on_opaque = nullptr;
    expect_healthy(*stage.view);
  });
}

TEST_F(AnimationTest, AnExceptionOfAnObserverOfTheWindowPassesThrough)
{
  for_each_on_stage(kOperations, [](const Operation& operation, CameraStage& stage) {
    {
      const EventHook hook(stage.window(), vtkCommand::EndEvent, [] { throw HostError("an observer"); });
      EXPECT_EQ(thrown_through_vtk_by([&] { operation.call(*stage.view, 4, 0); }), "an observer");
    }
    expect_healthy(*stage.view);
  });
}

TEST_F(AnimationTest, AnExceptionOfTheHostsFlagPassesThrough)
{
  for_each_on_stage(kOperations, [](const Operation& operation, CameraStage& stage) {
    {
      InterruptAfter interrupt;
      interrupt.on_read = [] { throw HostError("a flag"); };
      EXPECT_EQ(thrown_by([&] { operation.call(*stage.view, 4, 0); }), "a flag");
    }
    const FrameCounter frames(stage.window());
    operation.call(*stage.view, 2, 0);
    EXPECT_EQ(frames.ends(), 2) << "animations render again";
  });
}

// --- What cannot be shown
// ---------------------------------------------------------------------------------------

TEST_F(AnyOperationTest, WithoutAWindowMovesTheCameraAllTheSame)
{
  const auto test = [](const Operation& operation) {
    if (std::string(operation.name) == "PanFractions") {
      return; // fractions of nothing
    }
    for (const auto& [steps, smooth] : {std::pair(1, 0), std::pair(4, 0), std::pair(4, 2)}) {
      CameraStage shown;
      CameraStage hidden;
      hidden.view->set_render_window(nullptr);
      operation.call(*shown.view, steps, smooth);
      operation.call(*hidden.view, steps, smooth);
      expect_near(CameraPlace(*hidden.view), CameraPlace(*shown.view));
    }
  };
  for_each(kOperations, test);
  for_each(kImmediate, test);
}

TEST_F(AnyOperationTest, RendersNothingWhileGraphicsAreOff)
{
  const auto test = [](const Operation& operation) {
    for (const auto status : {MRUtil::GRAPHICS_DISABLED, MRUtil::GRAPHICS_SUSPENDED}) {
      CameraStage stage;
      const FrameCounter frames(stage.window());
      MRUtil::set_graphics_status(status);
      operation.call(*stage.view, 3, 1);
      EXPECT_EQ(stage.model.updates, 0);
      EXPECT_EQ(frames.starts(), 0);
      MRUtil::set_graphics_status(MRUtil::GRAPHICS_NORMAL);
    }
  };
  for_each(kOperations, test);
  for_each(kImmediate, test);
}

TEST_F(AnyOperationTest, InWindowsOfAPixelOrTwo)
{
  const auto test = [](const Operation& operation) {
    CameraStage stage;
    for (const int size : {0, 1, 2}) {
      SCOPED_TRACE(size);
      stage.window()->SetSize(size, 1);
      operation.call(*stage.view, 2, 0);
      double length = 0.0;
      stage.view->pixel_to_model_length(1.0, length, nullptr);
      EXPECT_TRUE(std::isfinite(length));
      double world[4];
      stage.view->display_to_world(0.0, 0.0, 0.5, world);
      EXPECT_TRUE(BrantVector(world).is_finite());
      expect_healthy(*stage.view);
    }
  };
  for_each(kOperations, test);
  for_each(kImmediate, test);
}

/// Every operation, at once and animated, from a camera that is spoilt before each: it stands somewhere then.
void expect_good_after(const std::function<void(CameraStage&)>& spoil,
                       const std::function<void(CameraStage&)>& repair = nullptr)
{
  const auto test = [&](const Operation& operation, CameraStage& stage) {
    spoil(stage);
    operation.call(*stage.view, 1, 0);
    operation.call(*stage.view, 2, 0);
    if (repair) {
      repair(stage);
    }
    EXPECT_TRUE(CameraPlace(*stage.view).from.is_finite());
    expect_healthy(*stage.view);
  };
  for_each_on_stage(kOperations, test);
  for_each_on_stage(kImmediate, test);
}

TEST_F(AnyOperationTest, OfACameraAtItsOwnTarget)
{
  expect_good_after([](CameraStage& stage) {
    stage.camera()->SetPosition(1.0, 1.0, 1.0);
    stage.camera()->SetFocalPoint(1.0, 1.0, 1.0);
  });
}

TEST_F(AnyOperationTest, OfACameraThatLooksAlongItsViewUp)
{
  expect_good_after([](CameraStage& stage) {
    stage.camera()->SetPosition(0.0, 0.0, 5.0);
    stage.camera()->SetFocalPoint(0.0, 0.0, 0.0);
    stage.camera()->SetViewUp(0.0, 0.0, 1.0);
  });
}

TEST_F(AnyOperationTest, OfACameraThatHasLostItsPlace)
{
  const auto spoil = [](CameraStage& stage) {
    stage.camera()->SetPosition(kNan, kNan, kNan);
    stage.camera()->SetFocalPoint(kNan, kNan, kNan);
  };
  expect_good_after(spoil, [](CameraStage& stage) { stage.view->complete_reset_camera(); });
}

TEST_F(AnyOperationTest, OfAnEmptyScene)
{
  const auto test = [](const Operation& operation) {
    const auto view = make_view(40, 40);
    view->get_renderer()->GetActiveCamera()->ParallelProjectionOff();
    operation.call(*view, 1, 0);
    operation.call(*view, 2, 0);
    EXPECT_TRUE(CameraPlace(*view).from.is_finite());
    expect_healthy(*view);
  };
  for_each(kOperations, test);
  for_each(kImmediate, test);
}

TEST_F(AnyOperationTest, OfASceneWithoutBounds)
{
  const auto test = [](const Operation& operation) {
    CameraStage stage;
    show(*stage.view, flat_actor(quad(-1e308, -1e308, 1e308, 1e308), kRed));
    operation.call(*stage.view, 1, 0);
    operation.call(*stage.view, 2, 0);
    expect_healthy(*stage.view);
  };
  for_each(kOperations, test);
  for_each(kImmediate, test);
}

} // namespace
