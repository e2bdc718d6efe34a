// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// The zooms of a view, frame by frame.
#include "GView.h"

#include "CameraFixture.h"
#include "CameraOracle.h"

#include <chrono>
#include <climits>

namespace {

using namespace morrow_test;
using oracle::Box;

const std::vector<std::pair<int, int>> kSteps = {{1, 0}, {1, 1}, {3, 1}, {3, 3}, {2, 5}, {0, 0}, {-3, 1}};
const std::vector<double> kFactors = {2.0, 0.5, -2.0, -0.25, 1.3, -1.0, 1e3};

// --- By a factor
// ------------------------------------------------------------------------------------------------

using ZoomScreenTest = ViewRenderTest;

double positive(double factor)
{
  return factor < 0 ? -1 / factor : factor;
}

TEST_F(ZoomScreenTest, InPerspectiveTheCameraComesNearerFrameByFrame)
{
  CameraStage stage;
  const auto start = stage.twin();
  for (const double factor : kFactors) {
    for (const auto& [steps, smooth] : kSteps) {
      SCOPED_TRACE(testing::Message() << factor << " in " << steps << " steps, smooth " << smooth);
      stage.camera()->DeepCopy(start);
      stage.model.updates = 0;
      const auto twin = stage.twin();
      const int n = std::max(steps, 1);
      const BrantVector focal(twin->GetFocalPoint());
      const BrantVector target =
          focal - (twin->GetDistance() / positive(factor)) * BrantVector(twin->GetDirectionOfProjection());
      BrantVector position(twin->GetPosition());
      const BrantVector delta = (target - position) / n;
      std::vector<CameraPlace> expected;
      int reads = 0;
      for (const oracle::Frame& frame : oracle::three_phases(n, smooth)) {
        position += frame.factor * delta;
        twin->SetPosition(position.data());
        expected.emplace_back(*twin);
        reads += frame.full ? 1 : 0;
      }
      const InterruptAfter interrupt;
      const FrameLog log(*stage.view);
      stage.view->zoom_screen(factor, steps, smooth);
      expect_near(log.places(), expected, 1e-12 * std::max(1.0, 10.0 / positive(factor)));
      EXPECT_TRUE(log.is_clipped());
      EXPECT_EQ(interrupt.reads(), reads);
      EXPECT_EQ(stage.model.updates, 1 + 2 * static_cast<int>(expected.size()));
    }
  }
}

TEST_F(ZoomScreenTest, InParallelProjectionTheScaleIsMultipliedFrameByFrame)
{
  CameraStage stage;
  stage.camera()->ParallelProjectionOn();
  stage.view->render();
  stage.camera()->SetClippingRange(0.125, 777.0);
  const auto start = stage.twin();
  for (const double factor : kFactors) {
    for (const auto& [steps, smooth] : kSteps) {
      if (steps < 2) {
        continue;
      }
      SCOPED_TRACE(testing::Message() << factor << " in " << steps << " steps, smooth " << smooth);
      stage.camera()->DeepCopy(start);
      const auto twin = stage.twin();
      const double z = positive(factor);
      const auto f = static_cast<float>(z >= 1 ? (z - 1) / steps + 1 : 1 - (1 - z) / steps);
      std::vector<CameraPlace> expected;
      int reads = 0;
      for (const oracle::Frame& frame : oracle::three_phases(steps, smooth)) {
        twin->Zoom(frame.factor * static_cast<double>(f));
        expected.emplace_back(*twin);
        reads += frame.full ? 1 : 0;
      }
      const InterruptAfter interrupt;
      const FrameLog log(*stage.view);
      stage.view->zoom_screen(factor, steps, smooth);
      expect_near(log.places(), expected);
      EXPECT_EQ(interrupt.reads(), reads);
      EXPECT_EQ(stage.camera()->GetClippingRange()[1], 777.0) << "the clipping range is not fitted";
    }
  }
}

TEST_F(ZoomScreenTest, InParallelProjectionASingleStepRendersNothing)
{
  for (const int steps : {1, 0, -1, INT_MIN}) {
    const auto view = make_view(40, 40);
    const FrameCounter frames(view->get_render_window());
    const InterruptAfter interrupt(0);
    view->zoom_screen(-2.0, steps, 1);
    EXPECT_EQ(view->get_parallel_scale(), 2.0);
    EXPECT_EQ(frames.starts(), 0);
    EXPECT_EQ(interrupt.reads(), 0);
    EXPECT_TRUE(is_auto_center_off(*view));
  }
}

// The partial factor is a float, which 0.1 shows.
TEST_F(ZoomScreenTest, PartialFactorsAreInSinglePrecision)
{
  const auto view = make_view(40, 40);
  view->zoom_screen(1.1, 1, 0);
  EXPECT_EQ(view->get_parallel_scale(), 1.0 / static_cast<double>(1.1F));
}

TEST_F(ZoomScreenTest, OnlyFullFramesCanBeInterrupted)
{
  CameraStage stage;
  const FrameCounter frames(stage.window());
  const InterruptAfter interrupt(0);
  stage.view->zoom_screen(2.0, 2, 2);
  EXPECT_EQ(frames.ends(), 4);
  stage.view->zoom_screen(2.0, 5, 2);
  EXPECT_EQ(frames.ends(), 4 + 2);
  stage.view->zoom_screen(2.0, 1, 0);
  EXPECT_EQ(frames.ends(), 4 + 2);
  EXPECT_EQ(interrupt.reads(), 2);
}

TEST_F(ZoomScreenTest, FactorsThatAreNoneDoNothing)
{
  CameraStage stage;
  const FrameCounter frames(stage.window());
  const CameraPlace before(*stage.view);
  for (const bool is_parallel : {false, true}) {
    stage.camera()->SetParallelProjection(is_parallel);
    for (const double factor : {0.0, -0.0, 1.0, kNan, kInfinity, -kInfinity, -1e-320}) {
      stage.view->zoom_screen(factor, 1, 0);
      stage.view->zoom_screen(factor, 3, 1);
    }
  }
  expect_near(CameraPlace(*stage.view), before, 0.0);
  EXPECT_EQ(frames.starts(), 0);
  EXPECT_FALSE(is_auto_center_off(*stage.view));
}

// At the focal point itself the camera would look nowhere, for good.
TEST_F(ZoomScreenTest, InPerspectiveTheCameraNeverReachesWhatItLooksAt)
{
  CameraStage stage;
  const BrantVector direction(stage.camera()->GetDirectionOfProjection());
  for (const int steps : {1, 3}) {
    stage.view->zoom_screen(1e300, steps, 0);
    expect_near(BrantVector(stage.camera()->GetDirectionOfProjection()), direction);
  }
  for (int i = 0; i < 100; ++i) {
    stage.view->zoom_screen(2.0, 1, 0);
  }
  EXPECT_GT(stage.camera()->GetDistance(), 0.0);
  EXPECT_NEAR(BrantVector(stage.camera()->GetDirectionOfProjection()).length(), 1.0, 1e-12);
  for (int i = 0; i < 60; ++i) {
    stage.view->zoom_screen(0.5, 1, 0);
  }
  EXPECT_GT(stage.camera()->GetDistance(), 1.0) << "and comes back";
}

TEST_F(ZoomScreenTest, InParallelProjectionTheScaleStaysANumberAboveZero)
{
  const auto view = make_view(40, 40);
  for (const double factor : {1e300, 1e-300, 1e38, 1e-38}) {
    for (const auto& [steps, smooth] : {std::pair(1, 0), std::pair(60, 0), std::pair(4, 2)}) {
      view->set_parallel_scale(1.0);
      view->zoom_screen(factor, steps, smooth);
      EXPECT_GT(view->get_parallel_scale(), 0.0) << factor << " in " << steps;
      EXPECT_TRUE(std::isfinite(view->get_parallel_scale())) << factor << " in " << steps;
    }
  }
}

TEST_F(ZoomScreenTest, PutsAutoCentreOff)
{
  CameraStage stage;
  stage.view->zoom_screen(2.0, 1, 0);
  EXPECT_TRUE(is_auto_center_off(*stage.view));
}

// --- To a box, at once
// ------------------------------------------------------------------------------------------

using ZoomBoxTest = ViewRenderTest;

constexpr Box kVisible = {-0.5, 0.5, -0.5, 0.5, 0.0, 0.0}; // of the stage's square
constexpr Box kBox = {0.0, 1.0, 1.0, 3.0, -2.0, 1.0};
constexpr Box kPoint = {0.25, 0.25, 0.125, 0.125, 0.5, 0.5};

// Framed from the direction that the camera has.
void frame(vtkCamera& twin, const Box& box)
{
  const BrantVector normal(twin.GetViewPlaneNormal());
  const double diagonal = oracle::diagonal(box);
  const double radius = diagonal == 0 ? 1 : 0.55 * diagonal;
  double distance = BrantVector(twin.GetPosition()).distance_between(BrantVector(twin.GetFocalPoint()));
  if (twin.GetParallelProjection() != 0) {
    twin.SetParallelScale(radius);
  } else {
    distance = radius / std::tan(twin.GetViewAngle() * 3.141592653589793 / 360);
  }
  twin.SetFocalPoint(oracle::centre(box).data());
  twin.SetPosition((oracle::centre(box) + normal * distance).data());
}

TEST_F(ZoomBoxTest, InOneStepTheBoxIsFramedFromTheSameDirection)
{
  CameraStage stage;
  for (const bool is_parallel : {false, true}) {
    for (const Box& box : {kBox, kPoint, Box{-1e38, 1e38, 0.0, kInfinity, -kInfinity, 0.5}}) {
      stage.camera()->SetParallelProjection(is_parallel);
      stage.camera()->SetViewAngle(40.0);
      const BrantVector direction(stage.camera()->GetDirectionOfProjection());
      const auto twin = stage.twin();
      frame(*twin, oracle::adjusted(box, &kVisible));
      const InterruptAfter interrupt(0);
      const FrameLog log(*stage.view);
      stage.view->zoom_box(box.data(), 1, 7, nullptr);
      ASSERT_EQ(log.size(), 1U);
      expect_near(log.places()[0], CameraPlace(*twin), 1e-11);
      expect_near(BrantVector(stage.camera()->GetDirectionOfProjection()), direction, 1e-9);
      EXPECT_TRUE(log.is_clipped());
      EXPECT_EQ(interrupt.reads(), 0);
    }
  }
}

TEST_F(ZoomBoxTest, TheWholeBoxIsInThePicture)
{
  for (const auto& [width, height] : {std::pair(60, 40), std::pair(40, 60)}) {
    for (const bool is_parallel : {false, true}) {
      CameraStage stage(width, height);
      stage.camera()->SetParallelProjection(is_parallel);
      const Box box = {-0.5, 0.5, -0.5, 0.5, -0.5, 0.5};
      stage.view->zoom_box(box.data(), 1, 0, nullptr);
      for (int corner = 0; corner < 8; ++corner) {
        double display[3];
        stage.view->world_to_display(corner % 2 - 0.5, corner / 2 % 2 - 0.5, corner / 4 - 0.5, display);
        EXPECT_GT(display[1], 0.0);
        EXPECT_LT(display[1], height);
        if (!is_parallel || width > height) { // the parallel scale is that of the height
          EXPECT_GT(display[0], 0.0);
          EXPECT_LT(display[0], width);
        }
      }
    }
  }
}

TEST_F(ZoomBoxTest, InAnEmptySceneNothingIsEnlarged)
{
  const auto view = make_view(40, 40);
  const Box tiny = {0.0, 1e-9, 0.0, 1e-9, 0.0, 1e-9};
  view->zoom_box(tiny.data(), 1, 0, nullptr);
  EXPECT_NEAR(view->get_parallel_scale(), 0.55 * std::sqrt(3.0) * 1e-9, 1e-20);
  view->zoom_box(kPoint.data(), 1, 0, nullptr);
  EXPECT_EQ(view->get_parallel_scale(), 1.0);
}

TEST_F(ZoomBoxTest, LooksAlongADirection)
{
  CameraStage stage;
  const double direction[3] = {-2.0, -2.0, -1.0}; // of length 3
  stage.view->zoom_box(kBox.data(), 1, 0, direction);
  const CameraPlace place(*stage.view);
  const Box cube = oracle::adjusted(kBox, &kVisible);
  const double distance = 0.55 * oracle::diagonal(cube) / std::tan(30.0 * 3.141592653589793 / 360);
  expect_near(place.at, oracle::centre(cube));
  expect_near(place.from, place.at - BrantVector(direction) / 3.0 * distance, 1e-11);
  EXPECT_NEAR(place.up.dot(BrantVector(direction)), 0.0, 1e-12);
  EXPECT_NEAR(place.up.length(), 1.0, 1e-12);
}

// Straight down: the view up is then the direction from which the camera came.
TEST_F(ZoomBoxTest, LooksAlongItsOwnViewUp)
{
  for (const double sign : {-1.0, 1.0}) {
    const auto view = make_view(40, 40);
    show(*view, flat_actor(quad(-0.5, -0.5, 0.5, 0.5), kRed));
    const double direction[3] = {0.0, sign, 0.0};
    const Box box = {-1.0, 1.0, -1.0, 1.0, -1.0, 1.0};
    view->zoom_box(box.data(), 1, 0, direction);
    expect_near(CameraPlace(*view).up, {0.0, 0.0, sign});
    expect_near(CameraPlace(*view).from, {0.0, -sign * 10.0, 0.0});
  }
}

TEST_F(ZoomBoxTest, ADirectionOfNoLengthIsNone)
{
  CameraStage stage;
  const auto twin = stage.twin();
  frame(*twin, oracle::adjusted(kBox, &kVisible));
  const double none[3] = {0.0, 0.0, 0.0};
  stage.view->zoom_box(kBox.data(), 1, 0, none);
  expect_near(CameraPlace(*stage.view), CameraPlace(*twin), 1e-11);
}

TEST_F(ZoomBoxTest, NumbersThatAreNoneDoNothing)
{
  CameraStage stage;
  const CameraPlace before(*stage.view);
  const FrameCounter frames(stage.window());
  stage.view->zoom_box(nullptr, 1, 0, nullptr);
  for (std::size_t side = 0; side < 6; ++side) {
    Box box = kBox;
    box[side] = kNan;
    stage.view->zoom_box(box.data(), 1, 0, nullptr);
    stage.view->zoom_box(box.data(), 2, 0, nullptr);
  }
  for (const double bad : {kNan, kInfinity, -kInfinity}) {
    const double direction[3] = {0.0, bad, 1.0};
    stage.view->zoom_box(kBox.data(), 1, 0, direction);
    stage.view->zoom_box(kBox.data(), 2, 0, direction);
  }
  expect_near(CameraPlace(*stage.view), before, 0.0);
  EXPECT_EQ(frames.starts(), 0);
}

TEST_F(ZoomBoxTest, InvertedBoxesAreFramedLikeOthers)
{
  CameraStage stage;
  const Box inverted = {1.0, -1.0, 2.0, -2.0, 3.0, -3.0};
  const auto twin = stage.twin();
  frame(*twin, oracle::adjusted(inverted, &kVisible));
  stage.view->zoom_box(inverted.data(), 1, 0, nullptr);
  expect_near(CameraPlace(*stage.view), CameraPlace(*twin), 1e-11);
}

TEST_F(ZoomBoxTest, LeavesAutoCentreAsItIs)
{
  CameraStage stage;
  stage.view->zoom_box(kBox.data(), 1, 0, nullptr);
  EXPECT_FALSE(is_auto_center_off(*stage.view));
}

// --- To a box, animated
// -----------------------------------------------------------------------------------------

double seconds_since(std::chrono::steady_clock::time_point start)
{
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

TEST_F(ZoomBoxTest, InStepsItGoesFromWhatIsVisibleToTheBox)
{
  for (const auto& [steps, smooth] :
       {std::pair(3, 0), std::pair(3, 2), std::pair(0, 0), std::pair(-4, 1), std::pair(2, 5)}) {
    SCOPED_TRACE(testing::Message() << steps << " steps, smooth " << smooth);
    CameraStage stage;
    stage.camera()->SetParallelProjection(steps == 3);
    const auto twin = stage.twin();
    const Box end = oracle::adjusted(kBox, &kVisible);
    Box box = kVisible;
    std::vector<CameraPlace> expected;
    for (const double factor : oracle::turn(steps, smooth)) {
      for (std::size_t side = 0; side < 6; ++side) {
        box[side] += factor * (end[side] - kVisible[side]) / std::max(steps, 1);
      }
      frame(*twin, box);
      expected.emplace_back(*twin);
    }
    const auto count = static_cast<int>(expected.size());
    const InterruptAfter interrupt;
    const FrameLog log(*stage.view);
    const auto start = std::chrono::steady_clock::now();
    stage.view->zoom_box(kBox.data(), steps, smooth, nullptr);
    EXPECT_GE(seconds_since(start), 0.05 * (count - 1));
    expect_near(log.places(), expected, 1e-10);
    EXPECT_TRUE(log.is_clipped());
    EXPECT_EQ(interrupt.reads(), count - 1);
    EXPECT_EQ(stage.model.updates, 1 + 2 * count);
  }
}

TEST_F(ZoomBoxTest, InEvenStepsItEndsAtTheBox)
{
  CameraStage stage;
  const auto twin = stage.twin();
  frame(*twin, oracle::adjusted(kBox, &kVisible));
  stage.view->zoom_box(kBox.data(), 4, 0, nullptr);
  expect_near(CameraPlace(*stage.view), CameraPlace(*twin), 1e-10);
}

TEST_F(ZoomBoxTest, TheTurnIntoADirectionIsSpreadEvenly)
{
  CameraStage stage;
  const BrantVector start(stage.camera()->GetDirectionOfProjection());
  const BrantVector end = BrantVector(1.0, -2.0, 2.0) / 3.0;
  const FrameLog log(*stage.view);
  stage.view->zoom_box(kBox.data(), 4, 1, (end * 5.0).data());
  ASSERT_EQ(log.size(), 5U);
  const double part = std::acos(start.dot(end)) / 5.0;
  BrantVector before = start;
  for (const CameraPlace& place : log.places()) {
    const BrantVector direction = (place.at - place.from).normalized();
    EXPECT_NEAR(std::acos(direction.dot(before)), part, 1e-6);
    EXPECT_NEAR(direction.dot(start.cross(end)), 0.0, 1e-9) << "it stays in one plane";
    EXPECT_NEAR(direction.dot(place.up), 0.0, 1e-9);
    before = direction;
  }
  expect_near(before, end, 1e-9);
}

TEST_F(ZoomBoxTest, TheTurnToTheOppositeDirectionIsAboutTheViewUp)
{
  CameraStage stage;
  stage.view->set_up(BrantVector(0.1, 1.0, 0.2).data(), 1, 0);
  const BrantVector start(stage.camera()->GetDirectionOfProjection());
  const FrameLog log(*stage.view);
  stage.view->zoom_box(kBox.data(), 2, 0, (-start).data());
  ASSERT_EQ(log.size(), 2U);
  const BrantVector sideways = (log.places()[0].at - log.places()[0].from).normalized();
  EXPECT_NEAR(sideways.dot(start), 0.0, 1e-9);
  EXPECT_NEAR(sideways.dot(log.places()[0].up), 0.0, 1e-9);
  expect_near(log.places()[0].up, log.places()[1].up, 1e-9);
  expect_near((log.places()[1].at - log.places()[1].from).normalized(), -start, 1e-9);
}

TEST_F(ZoomBoxTest, AlmostTheSameDirectionIsNotTurned)
{
  CameraStage stage;
  const BrantVector start(stage.camera()->GetDirectionOfProjection());
  stage.view->zoom_box(kBox.data(), 2, 0, (start + BrantVector(0.01, 0.0, 0.0)).data());
  expect_near(BrantVector(stage.camera()->GetDirectionOfProjection()), start, 1e-9);
}

TEST_F(ZoomBoxTest, StopsWhereItIsWhenInterrupted)
{
  CameraStage stage;
  const FrameCounter frames(stage.window());
  const InterruptAfter interrupt(1);
  stage.view->zoom_box(kBox.data(), 10, 0, nullptr);
  EXPECT_EQ(frames.ends(), 2);
  EXPECT_EQ(interrupt.reads(), 2);
}

TEST_F(ZoomBoxTest, InAnEmptySceneTheAnimationStaysAtTheBox)
{
  const auto view = make_view(40, 40);
  const FrameLog log(*view);
  const Box box = {0.0, 2.0, 0.0, 2.0, 0.0, 2.0};
  view->zoom_box(box.data(), 2, 0, nullptr);
  ASSERT_EQ(log.size(), 2U);
  for (const CameraPlace& place : log.places()) {
    expect_near(place.at, {1.0, 1.0, 1.0});
    EXPECT_NEAR(place.scale, 0.55 * std::sqrt(12.0), 1e-12);
  }
}

// --- Calls within calls
// -----------------------------------------------------------------------------------------

// Of a point, an outermost call frames a thousandth of what is visible, a call within one the radius 1.
constexpr double kAdjusted = 0.55 * 1.7320508075688772 * 0.001;

TEST_F(ZoomBoxTest, OnlyTheOutermostCallAdjustsItsBox)
{
  CameraStage stage;
  stage.camera()->ParallelProjectionOn();
  stage.view->zoom_box(kPoint.data(), 1, 0, nullptr);
  EXPECT_NEAR(stage.view->get_parallel_scale(), kAdjusted, 1e-12);
  {
    const EventHook hook(stage.window(), vtkCommand::EndEvent,
                         [&] { stage.view->zoom_box(kPoint.data(), 1, 0, nullptr); });
    stage.view->zoom_box(kBox.data(), 1, 0, nullptr);
    EXPECT_EQ(stage.view->get_parallel_scale(), 1.0);
    stage.view->render();
    EXPECT_NEAR(stage.view->get_parallel_scale(), kAdjusted, 1e-12);
  }
  stage.view->zoom_box(kPoint.data(), 1, 0, nullptr);
  EXPECT_NEAR(stage.view->get_parallel_scale(), kAdjusted, 1e-12);
}

TEST_F(ZoomBoxTest, OpenBoxesWithinAnotherCallDoNothing)
{
  CameraStage stage;
  const Box open = {-kInfinity, kInfinity, 0.0, 1.0, 0.0, 1.0};
  const EventHook hook(stage.window(), vtkCommand::EndEvent,
                       [&] { stage.view->zoom_box(open.data(), 1, 0, nullptr); });
  stage.view->zoom_box(kBox.data(), 1, 0, nullptr);
  expect_near(CameraPlace(*stage.view).at, oracle::centre(kBox));
}

TEST_F(ZoomBoxTest, AfterAnExceptionBoxesAreAdjustedAgain)
{
  for (const int steps : {1, 3}) {
    CameraStage stage;
    stage.camera()->ParallelProjectionOn();
    for (const int update : {1, 2}) {
      stage.model.updates = 0;
      stage.model.on_update = [&] {
        if (stage.model.updates == update) {
          throw HostError("no update");
        }
      };
      EXPECT_EQ(thrown_by([&] { stage.view->zoom_box(kBox.data(), steps, 0, nullptr); }), "no update");
    }
    stage.model.on_update = nullptr;
    stage.view->zoom_box(kPoint.data(), 1, 0, nullptr);
    EXPECT_NEAR(stage.view->get_parallel_scale(), kAdjusted, 1e-12);
  }
}

TEST_F(ZoomBoxTest, AfterAViewThatDestroysItselfBoxesAreAdjustedAgain)
{
  {
    CameraStage doomed;
    doomed.model.on_update = [&] { doomed.view.reset(); };
    doomed.view->zoom_box(kBox.data(), 3, 0, nullptr);
    EXPECT_EQ(doomed.view, nullptr);
    doomed.view = make_view(40, 40);
  }
  CameraStage stage;
  stage.camera()->ParallelProjectionOn();
  stage.view->zoom_box(kPoint.data(), 1, 0, nullptr);
  EXPECT_NEAR(stage.view->get_parallel_scale(), kAdjusted, 1e-12);
}

} // namespace
