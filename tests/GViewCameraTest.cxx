// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// The placement, rotation and pan of a view's camera, frame by frame; its view angle and first framing.
#include "GView.h"

#include "CameraFixture.h"
#include "CameraOracle.h"

#include <vtkMatrix4x4.h>
#include <vtkTransform.h>

#include <climits>
#include <tuple>

namespace {

using namespace morrow_test;

const std::vector<std::pair<int, int>> kSteps = {{1, 0}, {3, 1}, {4, 2}, {2, 2}, {2, 5}, {-3, 1}, {4, -1}};

// --- Placement
// ----------------------------------------------------------------------------------------------

struct Placement
{
  const char* name;
  void (GView::*set)(const double*, int, int);
  void (GView::*get)(double*) const;
  void (*place)(vtkCamera&, const BrantVector&);
};

const Placement kPlacements[] = {
    {"at", &GView::set_at, &GView::get_at,
     [](vtkCamera& camera, const BrantVector& p) { camera.SetFocalPoint(p.data()); }},
    {"from", &GView::set_from, &GView::get_from,
     [](vtkCamera& camera, const BrantVector& p) { camera.SetPosition(p.data()); }},
    {"up", &GView::set_up, &GView::get_up,
     [](vtkCamera& camera, const BrantVector& p) { camera.SetViewUp(p.data()); }}};

BrantVector get(const GView& view, const Placement& placement)
{
  double p[3];
  (view.*placement.get)(p);
  return BrantVector(p);
}

class PlacementTest : public ViewRenderTest, public testing::WithParamInterface<Placement>
{
protected:
  void set(const BrantVector& p, int steps, int smooth)
  {
    ((*mStage.view).*GetParam().set)(p.data(), steps, smooth);
  }
  [[nodiscard]] BrantVector now() const { return get(*mStage.view, GetParam()); }

  CameraStage mStage;
  const BrantVector mTarget = BrantVector(0.6, 0.0, 0.8); // of length 1, so that it can be a view up
};
INSTANTIATE_TEST_SUITE_P(Camera, PlacementTest, testing::ValuesIn(kPlacements),
                         [](const auto& test) { return test.param.name; });

TEST_P(PlacementTest, BelowTwoStepsIsAtOnceAndInOneFrame)
{
  const BrantVector start = this->now();
  for (const int steps : {1, 0, -5, INT_MIN}) {
    this->set(start, 1, 0);
    const InterruptAfter interrupt(0);
    const FrameLog log(*mStage.view);
    this->set(mTarget, steps, 3);
    ASSERT_EQ(log.size(), 1U);
    expect_near(this->now(), mTarget, 1e-15);
    EXPECT_TRUE(log.is_clipped());
    EXPECT_EQ(interrupt.reads(), 0);
  }
}

TEST_P(PlacementTest, GoesFrameByFrame)
{
  CameraStage stage;
  const auto start = stage.twin();
  for (const auto& [steps, smooth] : kSteps) {
    if (steps < 2) {
      continue;
    }
    SCOPED_TRACE(testing::Message() << steps << " steps, smooth " << smooth);
    stage.camera()->DeepCopy(start);
    const auto twin = stage.twin();
    const BrantVector c = get(*stage.view, GetParam());
    BrantVector d = mTarget - c;
    const double length = d.length();
    d /= length;
    const BrantVector delta = (length / steps) * d;
    std::vector<CameraPlace> expected;
    BrantVector value = c;
    for (const oracle::Frame& frame : oracle::three_phases(steps, smooth)) {
      value += frame.factor * delta;
      GetParam().place(*twin, value);
      expected.emplace_back(*twin);
    }
    const InterruptAfter interrupt;
    const FrameLog log(*stage.view);
    ((*stage.view).*GetParam().set)(mTarget.data(), steps, smooth);
    expect_near(log.places(), expected);
    EXPECT_TRUE(log.is_clipped());
    EXPECT_EQ(interrupt.reads(), static_cast<int>(expected.size()));
  }
}

TEST_P(PlacementTest, TenEqualFramesEndAtThePoint)
{
  const FrameCounter frames(mStage.window());
  this->set(mTarget, 10, 0);
  EXPECT_EQ(frames.ends(), 10);
  expect_near(this->now(), mTarget);
}

TEST_P(PlacementTest, ThreeSmoothStepsOfTenAreThirteenFrames)
{
  const FrameCounter frames(mStage.window());
  this->set(mTarget, 10, 3);
  EXPECT_EQ(frames.ends(), 13);
  expect_near(this->now(), mTarget, 1e-8);
}

TEST_P(PlacementTest, StopsWhereItIsWhenInterrupted)
{
  const BrantVector start = this->now();
  const FrameCounter frames(mStage.window());
  const InterruptAfter interrupt(2);
  this->set(mTarget, 4, 0);
  EXPECT_EQ(frames.ends(), 2);
  EXPECT_EQ(interrupt.reads(), 3);
  const BrantVector half = (start + mTarget) / 2.0;
  expect_near(this->now(), GetParam().get == &GView::get_up ? half.normalized() : half);
}

TEST_P(PlacementTest, BringsTheModelsUpToDateFirst)
{
  mStage.model.on_update = [this] {
    if (mStage.model.updates == 1) {
      EXPECT_NE(this->now(), mTarget);
    }
  };
  this->set(mTarget, 1, 0);
  EXPECT_EQ(mStage.model.updates, 2); // and at the start of the frame
}

TEST_P(PlacementTest, PutsAutoCentreOff)
{
  EXPECT_FALSE(is_auto_center_off(*mStage.view));
  this->set(mTarget, 1, 0);
  EXPECT_TRUE(is_auto_center_off(*mStage.view));
}

TEST_P(PlacementTest, PointsThatAreNoneDoNothing)
{
  const CameraPlace before(*mStage.view);
  const FrameCounter frames(mStage.window());
  for (const double bad : {kNan, kInfinity, -kInfinity}) {
    for (int axis = 0; axis < 3; ++axis) {
      for (const int steps : {1, 3}) {
        BrantVector p = mTarget;
        p[axis] = bad;
        this->set(p, steps, 0);
      }
    }
  }
  ((*mStage.view).*GetParam().set)(nullptr, 1, 0);
  ((*mStage.view).*GetParam().get)(nullptr);
  expect_near(CameraPlace(*mStage.view), before, 0.0);
  EXPECT_EQ(frames.starts(), 0);
  EXPECT_FALSE(is_auto_center_off(*mStage.view));
}

TEST_P(PlacementTest, ToWhereItIsStaysThere)
{
  const CameraPlace before(*mStage.view);
  const FrameCounter frames(mStage.window());
  this->set(this->now(), 2, 1);
  EXPECT_EQ(frames.ends(), 3);
  expect_near(CameraPlace(*mStage.view), before);
}

TEST_P(PlacementTest, ThePointMayChangeMeanwhile)
{
  double p[3] = {mTarget.x(), mTarget.y(), mTarget.z()};
  mStage.model.on_update = [&] { p[0] = p[1] = p[2] = 17.0; };
  ((*mStage.view).*GetParam().set)(p, 2, 0);
  expect_near(this->now(), mTarget);
}

// --- Rotation
// ---------------------------------------------------------------------------------------------------

struct Rotation
{
  const char* name;
  void (*rotate)(GView& view, double angle, int steps, int smooth);
  void (*turn)(vtkCamera& camera, double angle); // one frame
};

void apply_about(vtkCamera& camera, double angle, const BrantVector& point, const BrantVector& axis)
{
  vtkNew<vtkTransform> transform;
  transform->Translate(point.data());
  transform->RotateWXYZ(angle, axis.data());
  transform->Translate(-point.x(), -point.y(), -point.z());
  camera.ApplyTransform(transform);
}

const double kP1[3] = {1.0, 2.0, 3.0};
const double kP2[3] = {3.0, 1.0, 7.0};

const Rotation kRotations[] = {{"TargetX",
                                [](GView& view, double angle, int steps, int smooth) {
                                  view.rotate_about_target(angle, 'x', steps, smooth);
                                },
                                [](vtkCamera& camera, double angle) {
                                  camera.Elevation(angle);
                                  camera.OrthogonalizeViewUp();
                                }},
                               {"TargetY",
                                [](GView& view, double angle, int steps, int smooth) {
                                  view.rotate_about_target(angle, 'y', steps, smooth);
                                },
                                [](vtkCamera& camera, double angle) { camera.Azimuth(angle); }},
                               {"TargetZ",
                                [](GView& view, double angle, int steps, int smooth) {
                                  view.rotate_about_target(angle, 'z', steps, smooth);
                                },
                                [](vtkCamera& camera, double angle) { camera.Roll(angle); }},
                               {"CameraX",
                                [](GView& view, double angle, int steps, int smooth) {
                                  view.rotate_about_camera(angle, 'x', steps, smooth);
                                },
                                [](vtkCamera& camera, double angle) {
                                  camera.Pitch(angle);
                                  camera.OrthogonalizeViewUp();
                                }},
                               {"CameraY",
                                [](GView& view, double angle, int steps, int smooth) {
                                  view.rotate_about_camera(angle, 'y', steps, smooth);
                                },
                                [](vtkCamera& camera, double angle) { camera.Yaw(angle); }},
                               {"CameraZ",
                                [](GView& view, double angle, int steps, int smooth) {
                                  view.rotate_about_camera(angle, 'z', steps, smooth);
                                },
                                [](vtkCamera& camera, double angle) { camera.Roll(angle); }},
                               {"WorldX",
                                [](GView& view, double angle, int steps, int smooth) {
                                  view.rotate_about_world(angle, 'x', steps, smooth);
                                },
                                [](vtkCamera& camera, double angle) {
                                  apply_about(camera, angle, {}, {1.0, 0.0, 0.0});
                                }},
                               {"WorldY",
                                [](GView& view, double angle, int steps, int smooth) {
                                  view.rotate_about_world(angle, 'y', steps, smooth);
                                },
                                [](vtkCamera& camera, double angle) {
                                  apply_about(camera, angle, {}, {0.0, 1.0, 0.0});
                                }},
                               {"WorldZ",
                                [](GView& view, double angle, int steps, int smooth) {
                                  view.rotate_about_world(angle, 'z', steps, smooth);
                                },
                                [](vtkCamera& camera, double angle) {
                                  apply_about(camera, angle, {}, {0.0, 0.0, 1.0});
                                }},
                               {"Line",
                                [](GView& view, double angle, int steps, int smooth) {
                                  view.rotate_about_world(angle, kP1, kP2, steps, smooth);
                                },
                                [](vtkCamera& camera, double angle) {
                                  const BrantVector axis = (BrantVector(kP2) - BrantVector(kP1)).normalized();
                                  apply_about(camera, angle, BrantVector(kP1), axis);
                                }}};

class RotationTest : public ViewRenderTest, public testing::WithParamInterface<Rotation>
{};
INSTANTIATE_TEST_SUITE_P(Camera, RotationTest, testing::ValuesIn(kRotations),
                         [](const auto& test) { return test.param.name; });

TEST_P(RotationTest, GoesFrameByFrame)
{
  CameraStage stage;
  for (const auto& [steps, smooth] : kSteps) {
    SCOPED_TRACE(testing::Message() << steps << " steps, smooth " << smooth);
    stage.model.updates = 0;
    const auto twin = stage.twin();
    const double part = 50.0 / static_cast<double>(static_cast<float>(std::max(steps, 1)));
    std::vector<CameraPlace> expected;
    for (const double factor : oracle::turn(steps, smooth)) {
      GetParam().turn(*twin, factor * part);
      expected.emplace_back(*twin);
    }
    const InterruptAfter interrupt;
    const FrameLog log(*stage.view);
    GetParam().rotate(*stage.view, 50.0, steps, smooth);
    expect_near(log.places(), expected);
    EXPECT_TRUE(log.is_clipped());
    EXPECT_EQ(interrupt.reads(), static_cast<int>(expected.size()));
    EXPECT_EQ(stage.model.updates, 1 + static_cast<int>(expected.size()));
  }
}

TEST_P(RotationTest, StopsWhereItIsWhenInterrupted)
{
  CameraStage stage;
  const auto twin = stage.twin();
  GetParam().turn(*twin, 10.0);
  GetParam().turn(*twin, 10.0);
  const InterruptAfter interrupt(2);
  GetParam().rotate(*stage.view, 50.0, 5, 0);
  expect_near(CameraPlace(*stage.view), CameraPlace(*twin));
  EXPECT_EQ(interrupt.reads(), 3);
}

TEST_P(RotationTest, IsReadyToBeInterruptedBeforeItsOnlyStep)
{
  CameraStage stage;
  const CameraPlace before(*stage.view);
  const InterruptAfter interrupt(0);
  GetParam().rotate(*stage.view, 50.0, 1, 0);
  expect_near(CameraPlace(*stage.view), before, 0.0);
}

TEST_P(RotationTest, AnglesThatAreNoneDoNothing)
{
  CameraStage stage;
  const CameraPlace before(*stage.view);
  const FrameCounter frames(stage.window());
  for (const double angle : {kNan, kInfinity, -kInfinity}) {
    GetParam().rotate(*stage.view, angle, 1, 0);
    GetParam().rotate(*stage.view, angle, 4, 2);
  }
  expect_near(CameraPlace(*stage.view), before, 0.0);
  EXPECT_EQ(frames.starts(), 0);
}

using RotationDetailsTest = ViewRenderTest;

TEST_F(RotationDetailsTest, OneStepOfNinetyDegreesIsOneAzimuth)
{
  const auto view = make_view(40, 40); // from (0, 0, 10)
  const FrameCounter frames(view->get_render_window());
  view->rotate_about_target(90.0, 'y', 1, 0);
  EXPECT_EQ(frames.ends(), 1);
  expect_near(CameraPlace(*view).from, {10.0, 0.0, 0.0});
}

// One elevation of 180 degrees would leave the view up; two of 90 take the camera over the top.
TEST_F(RotationDetailsTest, AHalfTurnOverTheTopTurnsTheViewUpToo)
{
  const auto view = make_view(40, 40);
  const FrameCounter frames(view->get_render_window());
  view->rotate_about_target(180.0, 'x', 1, 0);
  EXPECT_EQ(frames.ends(), 1);
  expect_near(CameraPlace(*view).from, {0.0, 0.0, -10.0});
  expect_near(CameraPlace(*view).up, {0.0, -1.0, 0.0});
}

TEST_F(RotationDetailsTest, ALineTurnsFromItsFirstPointToItsSecond)
{
  const auto view = make_view(40, 40);
  const double p1[3] = {5.0, -1.0, 0.0};
  const double p2[3] = {5.0, 8.0, 0.0};
  view->rotate_about_world(90.0, p1, p2, 1, 0);
  expect_near(CameraPlace(*view).from, {15.0, 0.0, 5.0});
  expect_near(CameraPlace(*view).at, {5.0, 0.0, 5.0});
}

TEST_F(RotationDetailsTest, LinesThatAreNoneDoNothing)
{
  CameraStage stage;
  const CameraPlace before(*stage.view);
  const FrameCounter frames(stage.window());
  stage.view->rotate_about_world(90.0, kP1, kP1, 1, 0);
  stage.view->rotate_about_world(90.0, nullptr, kP2, 1, 0);
  stage.view->rotate_about_world(90.0, kP1, nullptr, 1, 0);
  for (const double bad : {kNan, kInfinity}) {
    const double none[3] = {0.0, bad, 0.0};
    stage.view->rotate_about_world(90.0, none, kP2, 1, 0);
    stage.view->rotate_about_world(90.0, kP1, none, 1, 0);
  }
  const double huge[3] = {1e308, 1e308, 1e308};
  const double opposite[3] = {-1e308, -1e308, -1e308};
  stage.view->rotate_about_world(90.0, huge, opposite, 1, 0);
  expect_near(CameraPlace(*stage.view), before, 0.0);
  EXPECT_EQ(frames.starts(), 0);
}

TEST_F(RotationDetailsTest, AnyOtherAxisIsAnError)
{
  CameraStage stage;
  const CameraPlace before(*stage.view);
  const FrameCounter frames(stage.window());
  for (const char axis : {'q', 'w', 'X', 'Z', '{', '\0', '\xff'}) {
    const PrintCapture printed;
    stage.view->rotate_about_target(90.0, axis, 1, 0);
    stage.view->rotate_about_camera(90.0, axis, 3, 1);
    stage.view->rotate_about_world(90.0, axis, 0, 0);
    ASSERT_EQ(printed.calls().size(), 3U);
    for (const Printed& call : printed.calls()) {
      EXPECT_EQ(call.text, "Invalid Rotation Axis Specified");
      EXPECT_EQ(call.kind, 2);
    }
  }
  expect_near(CameraPlace(*stage.view), before, 0.0);
  EXPECT_EQ(frames.starts(), 0);
  EXPECT_EQ(stage.model.updates, 0);
}

// --- Pan
// --------------------------------------------------------------------------------------------------------

using PanTest = ViewRenderTest;

// The camera moves against the offset.
std::vector<CameraPlace> panned(vtkCamera& twin, const BrantVector& offset, int steps, int smooth)
{
  const BrantVector f(twin.GetFocalPoint());
  const BrantVector p(twin.GetPosition());
  const BrantVector delta = offset / steps;
  double a = 0.0;
  std::vector<CameraPlace> places;
  for (const double factor : oracle::pan(steps, smooth)) {
    a += factor;
    twin.SetFocalPoint((f - a * delta).data());
    twin.SetPosition((p - a * delta).data());
    places.emplace_back(twin);
  }
  return places;
}

TEST_F(PanTest, LengthsAlongTheScreenGoFrameByFrame)
{
  CameraStage stage;
  for (const auto& [steps, smooth] : kSteps) {
    SCOPED_TRACE(testing::Message() << steps << " steps, smooth " << smooth);
    stage.model.updates = 0;
    const auto twin = stage.twin();
    vtkNew<vtkMatrix4x4> transposed;
    vtkMatrix4x4::Transpose(twin->GetViewTransformMatrix(), transposed);
    const double screen[4] = {0.3, -0.2, 0.0, 0.0};
    double world[4];
    transposed->MultiplyPoint(screen, world);
    const std::vector<CameraPlace> expected = panned(*twin, BrantVector(world), steps, smooth);
    const InterruptAfter interrupt;
    const FrameLog log(*stage.view);
    stage.view->pan(0.3, -0.2, steps, smooth, 2);
    expect_near(log.places(), expected);
    EXPECT_TRUE(log.is_clipped());
    EXPECT_EQ(interrupt.reads(), static_cast<int>(expected.size()));
    EXPECT_EQ(stage.model.updates, 1 + static_cast<int>(expected.size()));
  }
}

TEST_F(PanTest, FractionsOfTheWindowMoveTheFocalPointByThem)
{
  for (const bool is_parallel : {false, true}) {
    for (const auto& [steps, smooth] : {std::pair(1, 0), std::pair(4, 0), std::pair(4, 2)}) {
      CameraStage stage(60, 40);
      stage.camera()->SetParallelProjection(is_parallel);
      stage.view->render();
      const CameraPlace before(*stage.view);
      double start[3];
      stage.view->world_to_display(before.at.x(), before.at.y(), before.at.z(), start);
      stage.view->pan(0.25, -0.5, steps, smooth, 1);
      double end[3];
      stage.view->world_to_display(before.at.x(), before.at.y(), before.at.z(), end);
      EXPECT_NEAR(end[0] - start[0], 15.0, 1e-6);
      EXPECT_NEAR(end[1] - start[1], -20.0, 1e-6);
      const CameraPlace after(*stage.view);
      expect_near(after.at - after.from, before.at - before.from);
      expect_near(after.up, before.up);
    }
  }
}

// The square's picture goes along with it.
TEST_F(PanTest, TheSceneMovesWithTheOffset)
{
  const auto view = make_view(40, 40); // 20 pixels per unit
  show(*view, flat_square());
  const Image before = picture(*view);
  view->pan(0.25, 0.1, 1, 0, 1);
  const Image after = picture(*view);
  for (int y = 0; y < 36; ++y) {
    for (int x = 0; x < 30; ++x) {
      ASSERT_EQ(after.at(x + 10, y + 4) == kRed, before.at(x, y) == kRed) << x << ", " << y;
    }
  }
}

TEST_F(PanTest, StopsWhereItIsWhenInterrupted)
{
  const auto view = make_view(40, 40);
  const InterruptAfter interrupt(3);
  view->pan(1.0, 0.0, 4, 0, 2);
  expect_near(CameraPlace(*view).from, {-0.75, 0.0, 10.0});
  EXPECT_EQ(interrupt.reads(), 4);
}

TEST_F(PanTest, OtherModesAndNumbersDoNothing)
{
  CameraStage stage;
  const CameraPlace before(*stage.view);
  const FrameCounter frames(stage.window());
  for (const int mode : {0, 3, -1, INT_MAX, INT_MIN}) {
    stage.view->pan(0.5, 0.5, 1, 0, mode);
  }
  for (const int mode : {1, 2}) {
    for (const double bad : {kNan, kInfinity, -kInfinity}) {
      stage.view->pan(bad, 0.0, 1, 0, mode);
      stage.view->pan(0.0, bad, 4, 2, mode);
    }
    for (const int steps : {0, -1, INT_MIN}) {
      stage.view->pan(0.5, 0.5, steps, 3, mode);
    }
  }
  expect_near(CameraPlace(*stage.view), before, 0.0);
  EXPECT_EQ(frames.starts(), 0);
}

TEST_F(PanTest, LeavesAutoCentreAsItIs)
{
  CameraStage stage;
  stage.view->pan(0.5, 0.5, 1, 0, 2);
  stage.view->rotate_about_target(5.0, 'y', 1, 0);
  EXPECT_FALSE(is_auto_center_off(*stage.view));
}

// --- View angle
// ---------------------------------------------------------------------------------------------------

using ViewAngleTest = ViewRenderTest;

bool is_horizontal(vtkRenderer* renderer)
{
  return renderer->GetActiveCamera()->GetUseHorizontalViewAngle() != 0;
}

TEST_F(ViewAngleTest, IsHorizontalExactlyInWindowsThatAreHigherThanWide)
{
  const auto view = make_view();
  const std::tuple<int, int, bool> cases[] = {{50, 51, true}, {50, 50, false}, {51, 50, false},
                                              {20, 90, true}, {90, 20, false}, {30, 30, false}};
  for (const auto& [width, height, horizontal] : cases) {
    view->get_render_window()->SetSize(width, height);
    view->render();
    EXPECT_EQ(is_horizontal(view->get_renderer()), horizontal) << width << " x " << height;
    EXPECT_EQ(is_horizontal(view->get_overlay_renderer()), horizontal) << width << " x " << height;
  }
}

TEST_F(ViewAngleTest, IsChosenInFramesOfTheWindowAndInAbortedOnes)
{
  const auto view = make_view(40, 60);
  view->get_render_window()->Render();
  EXPECT_TRUE(is_horizontal(view->get_renderer()));
  view->get_render_window()->SetSize(60, 40);
  MRUtil::set_graphics_status(MRUtil::GRAPHICS_SUSPENDED);
  view->get_render_window()->Render();
  EXPECT_FALSE(is_horizontal(view->get_renderer()));
  EXPECT_FALSE(is_horizontal(view->get_overlay_renderer()));
}

TEST_F(ViewAngleTest, AppliesToCamerasThatTheHostPutsIn)
{
  const auto view = make_view(40, 60);
  const vtkNew<vtkCamera> main;
  const vtkNew<vtkCamera> overlay;
  view->get_renderer()->SetActiveCamera(main);
  view->get_overlay_renderer()->SetActiveCamera(overlay);
  view->render();
  EXPECT_NE(main->GetUseHorizontalViewAngle(), 0);
  EXPECT_NE(overlay->GetUseHorizontalViewAngle(), 0);
}

// The angle spans the shorter side, so a scene that fills a square window fits into the others, at the scale
// of the shorter side.
TEST_F(ViewAngleTest, SpansTheShorterSide)
{
  const auto view = make_view(60, 60);
  vtkCamera* camera = view->get_renderer()->GetActiveCamera();
  camera->ParallelProjectionOff();
  camera->SetViewAngle(30.0);
  show(*view, flat_square());
  const PixelRegion in_square = find_pixels(picture(*view), colour_is(kRed));
  for (const auto& [width, height] : {std::make_pair(60, 140), std::make_pair(140, 60)}) {
    view->get_render_window()->SetSize(width, height);
    const PixelRegion region = find_pixels(picture(*view), colour_is(kRed));
    EXPECT_NEAR(region.width(), in_square.width(), 1) << width << " x " << height;
    EXPECT_NEAR(region.height(), in_square.height(), 1) << width << " x " << height;
    EXPECT_NEAR(region.centre_x, width / 2.0, 1.0);
    EXPECT_NEAR(region.centre_y, height / 2.0, 1.0);
  }
}

TEST_F(ViewAngleTest, TheCallbackMindsRenderWindowsOnly)
{
  ViewStage stage;
  stage.window()->SetSize(40, 60);
  GView* view = stage.view.get();
  GView::StartRender(view->get_renderer(), vtkCommand::StartEvent, view, nullptr);
  GView::StartRender(nullptr, vtkCommand::StartEvent, view, nullptr);
  EXPECT_EQ(stage.model.updates, 0);
  EXPECT_FALSE(is_horizontal(view->get_renderer()));
  GView::StartRender(stage.window(), vtkCommand::StartEvent, nullptr, nullptr);
  EXPECT_EQ(stage.model.updates, 0);
  GView::StartRender(stage.window(), vtkCommand::StartEvent, view, nullptr);
  EXPECT_EQ(stage.model.updates, 1);
  EXPECT_TRUE(is_horizontal(view->get_renderer()));
}

// --- Framing
// ------------------------------------------------------------------------------------------------------

class FramingTest : public ViewRenderTest, public ::testing::WithParamInterface<std::tuple<int, int, bool>>
{};

// VTK has no aspect ratio to go by before the first frame.
TEST_P(FramingTest, AResetBeforeTheFirstFrameShowsEverythingCentred)
{
  const auto [width, height, parallel] = GetParam();
  const auto view = make_view(width, height);
  view->get_renderer()->GetActiveCamera()->SetParallelProjection(parallel);
  show(*view, flat_actor(sphere(3.0, 32), kRed));
  view->get_renderer()->ResetCamera();
  const Image image = picture(*view);
  const PixelRegion region = find_pixels(image, colour_is(kRed));
  ASSERT_GT(region.count, 0);
  EXPECT_NEAR(region.centre_x, width / 2.0, 1.5);
  EXPECT_NEAR(region.centre_y, height / 2.0, 1.5);
  EXPECT_NEAR(region.width(), region.height(), 2); // round
  const int shorter = std::min(width, height);
  EXPECT_LE(region.width(), shorter);
  EXPECT_GE(region.width(), shorter / 4);
}

INSTANTIATE_TEST_SUITE_P(Sizes, FramingTest,
                         ::testing::Combine(::testing::Values(60, 120), ::testing::Values(60, 120),
                                            ::testing::Bool()));

} // namespace
