// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// The values, resets, conversions, modes and the report of a view's camera.
#include "GView.h"

#include "CameraFixture.h"

#include <vtkCoordinate.h>
#include <vtkMatrix4x4.h>
#include <vtkRenderWindowInteractor.h>

#include <climits>
#include <cmath>

namespace {

using namespace morrow_test;

// --- Values
// -----------------------------------------------------------------------------------------------------

using CameraValuesTest = ViewTest;

TEST_F(CameraValuesTest, AreThoseOfTheActiveCamera)
{
  const auto view = make_view();
  vtkCamera* camera = view->get_renderer()->GetActiveCamera();
  camera->SetFocalPoint(1.0, 2.0, 3.0);
  camera->SetPosition(4.0, 5.0, 6.0);
  camera->SetViewUp(0.0, 0.0, 2.0);
  double p[3];
  view->get_at(p);
  expect_near(BrantVector(p), {1.0, 2.0, 3.0}, 0.0);
  view->get_from(p);
  expect_near(BrantVector(p), {4.0, 5.0, 6.0}, 0.0);
  view->get_up(p);
  expect_near(BrantVector(p), {0.0, 0.0, 1.0}, 0.0);
}

TEST_F(CameraValuesTest, TheParallelScaleIsAboveZero)
{
  const auto view = make_view();
  view->set_parallel_scale(2.5);
  EXPECT_EQ(view->get_parallel_scale(), 2.5);
  for (const double bad : {0.0, -1.0, kNan, kInfinity}) {
    view->set_parallel_scale(bad);
    EXPECT_EQ(view->get_parallel_scale(), 2.5);
  }
}

TEST_F(CameraValuesTest, ThePerspectiveAngleIsInDegrees)
{
  const auto view = make_view();
  EXPECT_EQ(view->get_perspective_angle(), 30.0);
  view->set_perspective_angle(45.5);
  EXPECT_EQ(view->get_perspective_angle(), 45.5);
  for (const double bad : {kNan, kInfinity, -kInfinity}) {
    view->set_perspective_angle(bad);
    EXPECT_EQ(view->get_perspective_angle(), 45.5);
  }
  view->set_perspective_angle(500.0);
  EXPECT_EQ(view->get_perspective_angle(), 179.0);
  view->set_perspective_angle(-3.0);
  EXPECT_EQ(view->get_perspective_angle(), 0.00000001);
}

// --- Resets
// -----------------------------------------------------------------------------------------------------

using CameraResetTest = ViewRenderTest;

TEST_F(CameraResetTest, FramesWhatIsVisibleFromTheSameDirection)
{
  CameraStage stage;
  const BrantVector direction(stage.camera()->GetDirectionOfProjection());
  stage.view->set_at(BrantVector(7.0, 7.0, 7.0).data(), 1, 0);
  stage.view->set_at(BrantVector(0.25, -0.5, 0.125).data(), 1, 0);
  stage.view->set_perspective_angle(70.0);
  EXPECT_TRUE(is_auto_center_off(*stage.view));
  const FrameCounter frames(stage.window());
  stage.view->reset_camera();
  EXPECT_EQ(frames.starts(), 0);
  EXPECT_EQ(stage.view->get_perspective_angle(), 30.0);
  EXPECT_FALSE(is_auto_center_off(*stage.view));
  const CameraPlace place(*stage.view);
  expect_near(place.at, {0.0, 0.0, 0.0});
  const double radius = std::sqrt(0.5);
  expect_near(place.from, -direction * (radius / std::sin(15.0 * vtkMath::Pi() / 180.0)), 1e-9);
}

TEST_F(CameraResetTest, ACompleteOneIsFromTheZAxis)
{
  CameraStage stage;
  stage.view->set_from(BrantVector(7.0, 7.0, 7.0).data(), 1, 0);
  stage.view->set_perspective_angle(70.0);
  stage.view->complete_reset_camera();
  EXPECT_EQ(stage.view->get_perspective_angle(), 30.0);
  EXPECT_FALSE(is_auto_center_off(*stage.view));
  const CameraPlace place(*stage.view);
  expect_near(place.at, {0.0, 0.0, 0.0});
  expect_near(place.from, {0.0, 0.0, std::sqrt(0.5) / std::sin(15.0 * vtkMath::Pi() / 180.0)}, 1e-9);
  expect_near(place.up, {0.0, 1.0, 0.0});
}

TEST_F(CameraResetTest, ACompleteOneOfAnEmptySceneIsTheDefaultPlace)
{
  const auto view = make_view();
  view->rotate_about_target(40.0, 'y', 1, 0);
  view->complete_reset_camera();
  expect_near(CameraPlace(*view).from, {0.0, 0.0, 1.0});
  expect_near(CameraPlace(*view).at, {0.0, 0.0, 0.0});
  view->reset_camera();
  expect_near(CameraPlace(*view).from, {0.0, 0.0, 1.0});
}

TEST_F(CameraResetTest, ACompleteOneHealsACameraThatHasLostItsPlace)
{
  CameraStage stage;
  stage.camera()->SetPosition(kNan, kNan, kNan);
  stage.camera()->SetFocalPoint(kNan, 0.0, kInfinity);
  stage.camera()->SetViewUp(kNan, 0.0, 0.0);
  stage.view->complete_reset_camera();
  const CameraPlace place(*stage.view);
  expect_near(place.at, {0.0, 0.0, 0.0});
  expect_near(place.from, {0.0, 0.0, std::sqrt(0.5) / std::sin(15.0 * vtkMath::Pi() / 180.0)}, 1e-9);
  EXPECT_GT(count_pixels(picture(*stage.view), colour_is(kRed)), 100);
}

TEST_F(CameraResetTest, BringsTheModelsUpToDateFirst)
{
  for (const bool complete : {false, true}) {
    ViewStage stage;
    stage.model.on_update = [&] {
      if (stage.model.updates == 1) {
        show(*stage.view, flat_actor(quad(4.0, 4.0, 6.0, 6.0), kRed));
      }
    };
    complete ? stage.view->complete_reset_camera() : stage.view->reset_camera();
    expect_near(CameraPlace(*stage.view).at, {5.0, 5.0, 0.0});
    EXPECT_EQ(stage.model.updates, 1);
  }
}

// The view angle is that of the shorter side, which is not the height in an upright window: the framing must
// not wait for a frame to know that.
TEST_F(CameraResetTest, FramesAnUprightWindowBeforeItsFirstFrameAsAfterIt)
{
  using Operation = void (*)(GView&);
  for (const Operation reset :
       {Operation([](GView& view) { view.reset_camera(); }),
        Operation([](GView& view) { view.complete_reset_camera(); }), Operation([](GView& view) {
          view.set_perspective(false);
          view.set_perspective(true);
        })}) {
    CameraStage stage(30, 60);
    reset(*stage.view);
    const CameraPlace before(*stage.view);
    stage.view->render();
    reset(*stage.view);
    expect_near(CameraPlace(*stage.view), before, 1e-9);
    stage.window()->SetSize(60, 30);
    reset(*stage.view);
    const CameraPlace lying(*stage.view);
    stage.view->render();
    reset(*stage.view);
    expect_near(CameraPlace(*stage.view), lying, 1e-9);
  }
}

TEST_F(CameraResetTest, OfAllReachesEveryRegisteredView)
{
  CameraStage a;
  CameraStage b;
  CameraStage unregistered;
  GView::add_global_view(a.view);
  GView::add_global_view(b.view);
  for (const bool complete : {false, true}) {
    for (CameraStage* stage : {&a, &b, &unregistered}) {
      stage->view->set_perspective_angle(50.0);
    }
    complete ? GView::complete_reset_camera_all() : GView::reset_camera_all();
    EXPECT_EQ(a.view->get_perspective_angle(), 30.0);
    EXPECT_EQ(b.view->get_perspective_angle(), 30.0);
    EXPECT_EQ(unregistered.view->get_perspective_angle(), 50.0);
  }
}

TEST_F(CameraResetTest, OfAllEndsWhateverTheHostDoesToTheRegistry)
{
  CameraStage a;
  CameraStage b;
  for (CameraStage* stage : {&a, &b}) {
    GView::add_global_view(stage->view);
    stage->model.on_update = [] {
      reset_what_views_share();
      GView::add_global_view(std::make_shared<GView>());
      GView::reset_camera_all();
      throw HostError("an update");
    };
    stage->view->set_perspective_angle(50.0);
  }
  EXPECT_EQ(thrown_by([] { GView::reset_camera_all(); }), "an update");
  EXPECT_EQ(a.model.updates, 1);
  EXPECT_EQ(b.model.updates, 1);
}

// --- Perspective
// ------------------------------------------------------------------------------------------------

using PerspectiveTest = ViewRenderTest;

TEST_F(PerspectiveTest, IsOnAtFirst)
{
  EXPECT_TRUE(std::make_shared<GView>()->get_perspective());
}

TEST_F(PerspectiveTest, GoingParallelFramesWhatIsVisible)
{
  CameraStage stage;
  const FrameCounter frames(stage.window());
  stage.view->set_perspective(false);
  EXPECT_FALSE(stage.view->get_perspective());
  expect_near(CameraPlace(*stage.view).at, {0.0, 0.0, 0.0});
  EXPECT_NEAR(stage.view->get_parallel_scale(), std::sqrt(0.5), 1e-9);
  EXPECT_EQ(frames.starts(), 0);
  EXPECT_EQ(stage.model.updates, 1);
}

TEST_F(PerspectiveTest, ComingBackLeavesTheCameraWhereItIs)
{
  CameraStage stage;
  stage.camera()->ParallelProjectionOn();
  const CameraPlace before(*stage.view);
  stage.view->set_perspective(true);
  EXPECT_TRUE(stage.view->get_perspective());
  expect_near(CameraPlace(*stage.view), before, 0.0);
}

// --- Conversions
// ------------------------------------------------------------------------------------------------

class ConversionTest : public ViewRenderTest, public testing::WithParamInterface<bool>
{
protected:
  ConversionTest()
  {
    mStage.camera()->SetParallelProjection(GetParam());
    mStage.view->render();
  }

  CameraStage mStage{60, 40};
};
INSTANTIATE_TEST_SUITE_P(Projection, ConversionTest, testing::Bool(),
                         [](const auto& test) { return test.param ? "Parallel" : "Perspective"; });

const BrantVector kPoints[] = {{0.0, 0.0, 0.0}, {0.3, -0.2, 0.5}, {-1.0, 2.0, 1.0}};

TEST_P(ConversionTest, FromTheWorldIsVtksOwn)
{
  for (const BrantVector& p : kPoints) {
    vtkNew<vtkCoordinate> coordinate;
    coordinate->SetCoordinateSystemToWorld();
    coordinate->SetValue(p.x(), p.y(), p.z());
    const double* pixel = coordinate->GetComputedDoubleDisplayValue(mStage.view->get_renderer());
    double display[3];
    mStage.view->world_to_display(p.x(), p.y(), p.z(), display);
    EXPECT_NEAR(display[0], pixel[0], 1e-9);
    EXPECT_NEAR(display[1], pixel[1], 1e-9);
  }
}

TEST_P(ConversionTest, FromTheDisplayIsTheOtherWayRound)
{
  for (const BrantVector& p : kPoints) {
    double display[3];
    mStage.view->world_to_display(p.x(), p.y(), p.z(), display);
    double world[4];
    mStage.view->display_to_world(display[0], display[1], display[2], world);
    expect_near(BrantVector(world), p, 1e-6);
    EXPECT_EQ(world[3], 1.0);
  }
}

TEST_P(ConversionTest, TheLengthOfPixelsIsTheirDistanceInTheWorld)
{
  const CameraPlace place(*mStage.view);
  for (const BrantVector& p : kPoints) {
    double length = -1.0;
    mStage.view->pixel_to_model_length(10.0, length, p.data());
    const BrantVector direction(mStage.camera()->GetDirectionOfProjection());
    const double depth = (p - place.from).dot(direction);
    const double half = GetParam() ? place.scale : depth * std::tan(15.0 * vtkMath::Pi() / 180.0);
    // Its 10 pixels are of the height; the offset in view coordinates is taken along the wider side.
    EXPECT_NEAR(length, 10.0 * half / 20.0 * 60.0 / 40.0, 1e-6 * length);
    double of_renderer = -1.0;
    GView::pixel_to_model_length(mStage.view->get_renderer(), 10.0, of_renderer, p.data());
    EXPECT_EQ(of_renderer, length);
  }
}

TEST_P(ConversionTest, WithoutAPointTheLengthIsThatAtTheOrigin)
{
  const double origin[3] = {0.0, 0.0, 0.0};
  double expected = -1.0;
  mStage.view->pixel_to_model_length(3.0, expected, origin);
  double length = -2.0;
  mStage.view->pixel_to_model_length(3.0, length, nullptr);
  EXPECT_EQ(length, expected);
}

TEST_P(ConversionTest, NullsDoNothing)
{
  mStage.view->display_to_world(1.0, 2.0, 0.5, nullptr);
  mStage.view->world_to_display(1.0, 2.0, 0.5, nullptr);
  double length = 17.0;
  GView::pixel_to_model_length(nullptr, 10.0, length, nullptr);
  EXPECT_EQ(length, 17.0);
  const vtkNew<vtkRenderer> without_window;
  without_window->GetActiveCamera();
  GView::pixel_to_model_length(without_window, 10.0, length, nullptr);
  EXPECT_EQ(length, 17.0);
  const vtkNew<vtkRenderer> without_camera;
  mStage.window()->AddRenderer(without_camera);
  GView::pixel_to_model_length(without_camera, 10.0, length, nullptr);
  EXPECT_EQ(length, 17.0);
  EXPECT_EQ(without_camera->IsActiveCameraCreated(), 0);
}

// The points are kept by the renderer, which tells its observers.
TEST_P(ConversionTest, AnObserverOfTheRendererMayDestroyTheView)
{
  using Conversion = void (*)(GView&);
  const Conversion conversions[] = {[](GView& view) {
                                      double world[4];
                                      view.display_to_world(7.0, 9.0, 0.25, world);
                                    },
                                    [](GView& view) {
                                      double display[3];
                                      view.world_to_display(7.0, 9.0, 0.25, display);
                                    },
                                    [](GView& view) { view.pan(0.1, 0.1, 3, 1, 1); }};
  for (const Conversion convert : conversions) {
    CameraStage stage;
    stage.camera()->SetParallelProjection(GetParam());
    GView& view = *stage.view;
    const EventHook hook(view.get_renderer(), vtkCommand::ModifiedEvent, [&] { stage.view.reset(); });
    convert(view);
    EXPECT_EQ(stage.view, nullptr);
    stage.view = make_view();
  }
}

using PointAtInfinityTest = ViewRenderTest;

// A projection that exchanges z and w: the homogeneous coordinate is the display depth.
TEST_F(PointAtInfinityTest, IsNotDivided)
{
  const auto view = make_view(40, 40);
  vtkNew<vtkMatrix4x4> exchange;
  exchange->SetElement(2, 2, 0.0);
  exchange->SetElement(2, 3, 1.0);
  exchange->SetElement(3, 2, 1.0);
  exchange->SetElement(3, 3, 0.0);
  vtkCamera* camera = view->get_renderer()->GetActiveCamera();
  camera->SetExplicitProjectionTransformMatrix(exchange);
  camera->UseExplicitProjectionTransformMatrixOn();
  double world[4] = {-7.0, -7.0, -7.0, -7.0};
  view->display_to_world(30.0, 10.0, 0.0, world);
  EXPECT_NEAR(world[0], 0.5, 1e-12);
  EXPECT_NEAR(world[1], -0.5, 1e-12);
  view->display_to_world(30.0, 10.0, 0.5, world);
  EXPECT_NEAR(world[0], 1.0, 1e-12);
  EXPECT_NEAR(world[1], -1.0, 1e-12);
  EXPECT_EQ(world[3], 1.0);
}

// --- Two dimensions
// -----------------------------------------------------------------------------------------------

using TwoDimensionsTest = ViewTest;

TEST_F(TwoDimensionsTest, LooksStraightDownOnTheRectangle)
{
  const auto view = std::make_shared<GView>();
  EXPECT_FALSE(view->get_2d_mode());
  view->set_2d_mode(-1.0, 2.0, 5.0, 4.0);
  EXPECT_TRUE(view->get_2d_mode());
  EXPECT_FALSE(view->get_perspective());
  EXPECT_TRUE(is_auto_center_off(*view));
  expect_near(CameraPlace(*view).at, {2.0, 3.0, 0.0}, 0.0);
  expect_near(CameraPlace(*view).from, {2.0, 3.0, 1.0}, 0.0);
  EXPECT_EQ(view->get_parallel_scale(), 3.0);
  view->complete_reset_camera();
  view->set_perspective(true);
  EXPECT_TRUE(view->get_2d_mode()) << "nothing clears it";
}

TEST_F(TwoDimensionsTest, TheViewUpStaysUnlessItPointsAtTheEye)
{
  const auto view = make_view();
  view->get_renderer()->GetActiveCamera()->SetViewUp(1.0, 0.0, 0.0);
  view->set_2d_mode(0.0, 0.0, 1.0, 1.0);
  expect_near(CameraPlace(*view).up, {1.0, 0.0, 0.0});
  view->get_renderer()->GetActiveCamera()->SetViewUp(0.0, 0.0, 1.0);
  view->set_2d_mode(0.0, 0.0, 1.0, 1.0);
  expect_near(CameraPlace(*view).up, {0.0, 1.0, 0.0});
}

TEST_F(TwoDimensionsTest, ARectangleWithoutASizeLeavesTheScale)
{
  const auto view = make_view();
  view->set_parallel_scale(7.0);
  view->set_2d_mode(2.0, 3.0, 2.0, 3.0);
  expect_near(CameraPlace(*view).at, {2.0, 3.0, 0.0}, 0.0);
  view->set_2d_mode(2.0, 3.0, 1.0, 1.0);
  EXPECT_EQ(view->get_parallel_scale(), 7.0);
  EXPECT_TRUE(view->get_2d_mode());
}

TEST_F(TwoDimensionsTest, NumbersThatAreNoneDoNothing)
{
  const auto view = make_view();
  const CameraPlace before(*view);
  for (const double bad : {kNan, kInfinity, -kInfinity}) {
    view->set_2d_mode(bad, 0.0, 1.0, 1.0);
    view->set_2d_mode(0.0, bad, 1.0, 1.0);
    view->set_2d_mode(0.0, 0.0, bad, 1.0);
    view->set_2d_mode(0.0, 0.0, 1.0, bad);
  }
  expect_near(CameraPlace(*view), before, 0.0);
  EXPECT_FALSE(view->get_2d_mode());
  EXPECT_FALSE(is_auto_center_off(*view));
}

// --- Stereo
// -----------------------------------------------------------------------------------------------------

using StereoTest = ViewRenderTest;

TEST_F(StereoTest, SeparationIsTheEyeAngleOfEveryRegisteredView)
{
  const auto a = make_view();
  const auto b = make_view();
  const auto unregistered = make_view();
  GView::add_global_view(a);
  GView::add_global_view(b);
  const auto angle = [](const std::shared_ptr<GView>& view) {
    return view->get_renderer()->GetActiveCamera()->GetEyeAngle();
  };
  const double before = angle(unregistered);
  GView::set_stereo_separation(3.5);
  EXPECT_EQ(angle(a), 3.5);
  EXPECT_EQ(angle(b), 3.5);
  EXPECT_EQ(angle(unregistered), before);
  GView::set_stereo_separation(kNan);
  EXPECT_EQ(angle(a), 3.5);
}

TEST_F(StereoTest, ModeIsAppliedToRegisteredViewsWhenItChanges)
{
  CameraStage stage;
  GView::add_global_view(stage.view);
  stage.view->render();
  vtkRenderWindow* window = stage.window();
  window->StereoRenderOff();
  GView::set_stereo_mode(false);
  EXPECT_FALSE(GView::get_stereo_mode());
  GView::set_stereo_mode(true);
  EXPECT_TRUE(GView::get_stereo_mode());
  EXPECT_NE(window->GetStereoRender(), 0);
  window->StereoRenderOff();
  GView::set_stereo_mode(true); // no change
  EXPECT_EQ(window->GetStereoRender(), 0);
  window->StereoRenderOn();
  GView::set_stereo_mode(false);
  EXPECT_EQ(window->GetStereoRender(), 0);
}

// --- Interactor
// -------------------------------------------------------------------------------------------------

using MouseTest = ViewRenderTest;

TEST_F(MouseTest, TheInteractorIsMadeReadyAgainAndStaysEnabledOrNot)
{
  CameraStage stage;
  const vtkNew<vtkRenderWindowInteractor> interactor; // of the platform, by VTK's factory
  stage.view->mouse_xforms();                         // without one
  interactor->SetRenderWindow(stage.window());
  stage.view->render();
  interactor->Initialize();
  EXPECT_NE(interactor->GetEnabled(), 0);
  stage.view->mouse_xforms();
  EXPECT_NE(interactor->GetEnabled(), 0);
  EXPECT_NE(interactor->GetInitialized(), 0);
  interactor->Disable();
  stage.view->mouse_xforms();
  EXPECT_EQ(interactor->GetEnabled(), 0);
  EXPECT_NE(interactor->GetInitialized(), 0);
  stage.view->set_render_window(nullptr);
  stage.view->mouse_xforms();
}

// The window has the last reference to the interactor, and the view the last one to the window.
TEST_F(MouseTest, AnObserverOfTheInteractorMayDestroyTheView)
{
  auto view = make_view(40, 40);
  view->render();
  auto interactor = vtkSmartPointer<vtkRenderWindowInteractor>::New();
  interactor->SetRenderWindow(view->get_render_window());
  interactor->Initialize();
  interactor->Disable();
  GView* raw = view.get();
  const EventHook hook(interactor, vtkCommand::ModifiedEvent, [&] { view.reset(); });
  interactor = nullptr;
  raw->mouse_xforms();
  EXPECT_EQ(view, nullptr);
}

// --- Report
// -----------------------------------------------------------------------------------------------------

using ListViewTest = ViewTest;

TEST_F(ListViewTest, PrintsTheCameraLineByLine)
{
  const auto view = make_view(300, 200);
  vtkCamera* camera = view->get_renderer()->GetActiveCamera();
  camera->ParallelProjectionOff();
  camera->SetViewAngle(45.9);
  camera->SetPosition(1.0, -2.5, 1000.25);
  camera->SetFocalPoint(1.0, -2.5, 998.25);
  camera->SetViewUp(0.0, 1.0, 0.0);
  const PrintCapture printed;
  view->list_view();
  EXPECT_EQ(printed.info(), "...Current View Parameters\n"
                            " From: <  1.000000i  -2.500000j 1000.250000k>\n"
                            "   At: <  1.000000i  -2.500000j 998.250000k>\n"
                            "   Up: <  0.000000i   1.000000j   0.000000k>\n"
                            " View: <  0.000000i   0.000000j  -1.000000k> (From to At, normalized)\n\n"
                            " Distance from 'from' to 'at' is 2.000000.\n"
                            " Displayed view size is 300 horizontal by 200 vertical.\n\n"
                            " Perspective Angle is 45 degrees.\n"
                            " AutoCenter ON, Triad " +
                                std::string(view->get_triad_vis() ? "ON" : "OFF") + " \n");
  EXPECT_EQ(printed.calls().size(), 9U);
  EXPECT_EQ(printed.warnings() + printed.errors(), "");
}

TEST_F(ListViewTest, SaysThatThereIsNoPerspectiveAndNoAutoCentre)
{
  const auto view = make_view();
  view->set_2d_mode(0.0, 0.0, 1.0, 1.0);
  view->set_render_window(nullptr);
  const PrintCapture printed;
  view->list_view();
  EXPECT_NE(printed.info().find(" Displayed view size is 0 horizontal by 0 vertical.\n\n"
                                " Perspective is not enabled.\n"
                                " AutoCenter OFF, Triad "),
            std::string::npos)
      << printed.info();
}

TEST_F(ListViewTest, PrintsACameraThatHasLostItsPlace)
{
  const auto view = make_view();
  vtkCamera* camera = view->get_renderer()->GetActiveCamera();
  camera->ParallelProjectionOff();
  camera->SetPosition(kNan, 1e308, -1e308);
  camera->SetFocalPoint(kInfinity, -1e308, 0.0);
  camera->SetViewAngle(kNan);
  const PrintCapture printed;
  view->list_view();
  ASSERT_EQ(printed.calls().size(), 9U);
  EXPECT_EQ(printed.calls()[7].text, " Perspective Angle is 0 degrees.\n");
}

TEST_F(ListViewTest, TheViewMayBeDestroyedByThePrintFunction)
{
  static std::shared_ptr<GView> view;
  static int calls = 0;
  view = make_view();
  calls = 0;
  MRUtil::PrintFunction before = nullptr;
  MRUtil::get_print_function(before);
  MRUtil::set_print_function([](const char*, int, bool) {
    ++calls;
    view.reset();
  });
  view->list_view();
  MRUtil::set_print_function(before);
  EXPECT_EQ(calls, 9);
  EXPECT_EQ(view, nullptr);
}

} // namespace
