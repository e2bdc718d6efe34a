// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "GAxis.h"

#include "AxisFixture.h"
#include "BrantColor.h"
#include "ViewFixture.h"

#include <vtkCellPicker.h>
#include <vtkPropPicker.h>
#include <vtk_glew.h>

namespace {

using namespace morrow_test;

/// What the passes return within a frame of the view.
Drawn draw_in_frame(GAxis& triad, GView& view)
{
  Drawn drawn;
  vtkRenderer* renderer = view.get_renderer();
  const auto caller = CallingProp::make();
  caller->on_opaque = [&] { drawn.opaque = triad.RenderOpaqueGeometry(renderer); };
  caller->on_overlay = [&] {
    drawn.translucent = triad.RenderTranslucentPolygonalGeometry(renderer);
    drawn.overlay = triad.RenderOverlay(renderer);
  };
  show(view, caller);
  view.render();
  view.remove_props({caller});
  return drawn;
}

// --- Drawing --------------------------------------------------------------------------------------------

/// A view of 500 × 500 pixels in which an arrow is 25 pixels long and the origin is at (250, 250).
class GAxisRenderTest : public ViewRenderTest
{
protected:
  std::shared_ptr<GView> view = make_view(500, 500);

  Triad show_triad(MRUtil::AxisType type)
  {
    Triad triad = make_triad(type, view->get_renderer());
    triad->set_label_color(BRANT_MAGENTA);
    show(*view, triad);
    return triad;
  }
  void look_from(double x, double y, double z, double up_x, double up_y, double up_z)
  {
    vtkCamera* camera = view->get_renderer()->GetActiveCamera();
    camera->SetPosition(x, y, z);
    camera->SetViewUp(up_x, up_y, up_z);
    view->get_renderer()->ResetCameraClippingRange();
  }
  void TearDown() override
  {
    view = nullptr;
    ViewRenderTest::TearDown();
  }
};

// Shading darkens an arrow but mixes in no other colour; a label's shadow is black.
bool is_reddish(Rgb p)
{
  return p.r > 40 && p.g == 0 && p.b == 0;
}
bool is_greenish(Rgb p)
{
  return p.g > 40 && p.r == 0 && p.b == 0;
}
bool is_bluish(Rgb p)
{
  return p.b > 40 && p.r == 0 && p.g == 0;
}
bool is_label(Rgb p) // of magenta
{
  return p.r > 128 && p.b > 128 && p.g == 0;
}

PixelRegion region(const Image& image, bool (*wanted)(Rgb))
{
  return find_pixels(image, wanted);
}

/// How many label pixels are in the square where the label of a tip stands, up and right of it.
int label_pixels(const Image& image, int x, int y)
{
  return count_pixels(crop(image, x - 2, y - 4, x + 12, y + 12), is_label);
}

void expect_to_point_right(const PixelRegion& arrow, int from_x, int from_y)
{
  EXPECT_GE(arrow.min_x, from_x - 3);
  EXPECT_NEAR(arrow.max_x, from_x + 23, 1); // the last pixels of the tip are too thin for a pixel's centre
  EXPECT_NEAR(arrow.centre_y, from_y, 1.0);
  EXPECT_LE(arrow.height(), 6);
}

void expect_to_point_up(const PixelRegion& arrow, int from_x, int from_y)
{
  EXPECT_GE(arrow.min_y, from_y - 3);
  EXPECT_NEAR(arrow.max_y, from_y + 23, 1);
  EXPECT_NEAR(arrow.centre_x, from_x, 1.0);
  EXPECT_LE(arrow.width(), 6);
}

TEST_F(GAxisRenderTest, PointsAlongTheWorldsAxes)
{
  this->show_triad(MRUtil::AXIS_3D);
  const Image front = picture(*view);
  expect_to_point_right(region(front, is_reddish), 250, 250);
  expect_to_point_up(region(front, is_greenish), 250, 250);
  this->look_from(10, 0, 0, 0, 0, 1);
  const Image side = picture(*view);
  expect_to_point_right(region(side, is_greenish), 250, 250);
  expect_to_point_up(region(side, is_bluish), 250, 250);
}

TEST_F(GAxisRenderTest, PointsTheSameWayInTheCorner)
{
  this->show_triad(MRUtil::AXIS_2D);
  const Image front = picture(*view);
  expect_to_point_right(region(front, is_reddish), 30, 30);
  expect_to_point_up(region(front, is_greenish), 30, 30);
  this->look_from(10, 0, 0, 0, 0, 1);
  const Image side = picture(*view);
  expect_to_point_right(region(side, is_greenish), 30, 30);
  expect_to_point_up(region(side, is_bluish), 30, 30);
}

TEST_F(GAxisRenderTest, IsAYellowBallWithoutShadingInItsThirdForm)
{
  this->show_triad(MRUtil::AXIS_1D);
  const Image image = picture(*view);
  const PixelRegion ball = find_pixels(image, colour_is(kYellow));
  EXPECT_EQ(count_pixels(image, colour_is_not(kBlack)), ball.count) << "one colour only";
  EXPECT_NEAR(ball.centre_x, 250.0, 1.0);
  EXPECT_NEAR(ball.centre_y, 250.0, 1.0);
  EXPECT_GE(ball.width(), 10); // 12.5 for a ball that were round
  EXPECT_LE(ball.width(), 13);
}

TEST_F(GAxisRenderTest, StaysAsLargeOnTheScreenWhateverTheZoom)
{
  for (const auto type : Forms) {
    const Triad triad = this->show_triad(type);
    vtkCamera* camera = view->get_renderer()->GetActiveCamera();
    const PixelRegion before = find_pixels(picture(*view), colour_is_not(kBlack));
    ASSERT_GT(before.count, 0);
    camera->SetParallelScale(20.0);
    view->get_renderer()->ResetCameraClippingRange();
    const PixelRegion after = find_pixels(picture(*view), colour_is_not(kBlack));
    EXPECT_NEAR(after.width(), before.width(), 1) << type;
    EXPECT_NEAR(after.height(), before.height(), 1) << type;
    camera->SetParallelScale(1.0);
    view->remove_props({triad});
  }
}

TEST_F(GAxisRenderTest, LeavesTheCornerOnlyWithTheViewport)
{
  this->show_triad(MRUtil::AXIS_2D);
  const Image before = picture(*view);
  vtkCamera* camera = view->get_renderer()->GetActiveCamera();
  camera->SetPosition(7.0, 3.0, 10.0);
  camera->SetFocalPoint(7.0, 3.0, 0.0);
  EXPECT_EQ(picture(*view), before) << "the same direction from elsewhere";
  view->get_render_window()->SetSize(400, 400);
  EXPECT_NEAR(find_pixels(picture(*view), is_reddish).max_x, 24 + 18, 1);
}

TEST_F(GAxisRenderTest, IsDrawnOverGeometryInTheCorner)
{
  show(*view, flat_actor(quad(-1, -1, 1, 1, 5), kYellow));
  this->show_triad(MRUtil::AXIS_2D);
  const Image image = picture(*view);
  expect_to_point_right(region(image, is_reddish), 30, 30);
  EXPECT_GT(count_pixels(image, [](Rgb p) { return p.b > 200 && p.g < 60; }), 0) << "labels, too";
}

TEST_F(GAxisRenderTest, IsHiddenByGeometryInSpace)
{
  show(*view, flat_actor(quad(-1, -1, 1, 1, 5), kYellow));
  for (const auto type : {MRUtil::AXIS_3D, MRUtil::AXIS_1D}) {
    const Triad triad = this->show_triad(type);
    EXPECT_EQ(count_pixels(picture(*view), colour_is_not(kYellow)), 0) << type;
    view->remove_props({triad});
  }
}

// --- Labels

TEST_F(GAxisRenderTest, HasItsLabelsAtTheTips)
{
  this->show_triad(MRUtil::AXIS_3D);
  this->look_from(0.001, 0.001, 10, 0, 1, 0); // straight on, half a pixel decides where a tip is
  Image image = picture(*view);
  EXPECT_GT(label_pixels(image, 275, 250), 5) << "X";
  EXPECT_GT(label_pixels(image, 250, 275), 5) << "Y";
  EXPECT_GT(label_pixels(image, 250, 250), 5) << "Z";
  this->look_from(10, 0.001, 0.001, 0, 0, 1);
  image = picture(*view);
  EXPECT_GT(label_pixels(image, 250, 250), 5) << "X";
  EXPECT_GT(label_pixels(image, 275, 250), 5) << "Y";
  EXPECT_GT(label_pixels(image, 250, 275), 5) << "Z";
}

TEST_F(GAxisRenderTest, HasItsLabelsAtTheTipsInTheCorner)
{
  this->show_triad(MRUtil::AXIS_2D);
  Image image = picture(*view);
  EXPECT_GT(label_pixels(image, 55, 30), 5) << "X";
  EXPECT_GT(label_pixels(image, 30, 55), 5) << "Y";
  EXPECT_GT(label_pixels(image, 30, 30), 5) << "Z";
  this->look_from(0, 0, -10, 0, 1, 0);
  image = picture(*view);
  EXPECT_GT(label_pixels(image, 5, 30), 5) << "X, to the left now";
  EXPECT_EQ(label_pixels(image, 55, 30), 0);
}

TEST_F(GAxisRenderTest, HidesALabelWhileGeometryHidesItsTip)
{
  const Triad triad = this->show_triad(MRUtil::AXIS_3D);
  const auto plate = flat_actor(quad(0.06, -0.05, 0.3, 0.05, 5), kYellow); // x from 265 to 325
  for (const bool hidden : {false, true, false, true}) {
    if (hidden) {
      show(*view, plate);
    } else {
      view->remove_props({plate});
    }
    const Image image = picture(*view);
    EXPECT_EQ(label_pixels(image, 275, 250) == 0, hidden) << "X";
    EXPECT_GT(label_pixels(image, 250, 275), 5) << "Y";
    EXPECT_EQ(draw_in_frame(*triad, *view).overlay, hidden ? 2 : 3);
  }
}

TEST_F(GAxisRenderTest, IsNotHiddenByGeometryBehindTheTips)
{
  show(*view, flat_actor(quad(-1, -1, 1, 1, -1), kYellow));
  EXPECT_EQ(draw_in_frame(*this->show_triad(MRUtil::AXIS_3D), *view).overlay, 3);
}

TEST_F(GAxisRenderTest, HasNoLabelOfATipOutsideTheWindow)
{
  const Triad triad = this->show_triad(MRUtil::AXIS_3D);
  vtkCamera* camera = view->get_renderer()->GetActiveCamera();
  struct Case
  {
    double x, y; // of the camera; the origin goes the other way by 250 pixels for each unit
    int labels;
  };
  const Case cases[] = {
      {1.04, 0.0, 1},  // the origin is 10 pixels left of the window: X alone reaches in
      {-0.95, 0.0, 2}, // 12 pixels from the right side: X is out
      {0.0, 1.04, 1},  // 10 pixels below
      {0.0, -0.95, 2}, // 12 from the top
      {1.2, 1.2, 0},   {-1.2, 0.0, 0}, {1e12, 0.0, 0}, {-1e300, 1e300, 0},
  };
  for (const Case& c : cases) {
    camera->SetPosition(c.x, c.y, 10.0);
    camera->SetFocalPoint(c.x, c.y, 0.0);
    EXPECT_EQ(draw_in_frame(*triad, *view).overlay, c.labels) << c.x << ", " << c.y;
  }
}

TEST_F(GAxisRenderTest, HasWhiteLabelsInEachNewForm)
{
  const Triad triad = this->show_triad(MRUtil::AXIS_3D);
  EXPECT_GT(count_pixels(picture(*view), is_label), 0);
  for (const auto type : {MRUtil::AXIS_2D, MRUtil::AXIS_3D}) {
    triad->set_type(type);
    const Image image = picture(*view);
    EXPECT_EQ(count_pixels(image, is_label), 0) << type;
    EXPECT_GT(count_pixels(image, colour_is(kWhite, 60)), 0) << type;
    triad->set_label_color(BrantColor(255, 0, 255, 0));
    EXPECT_GT(count_pixels(picture(*view), is_label), 0) << "alpha does not count";
  }
}

// --- What passes return

TEST_F(GAxisRenderTest, ReturnsHowManyPartsWereDrawn)
{
  EXPECT_EQ(draw_in_frame(*make_triad(MRUtil::AXIS_3D), *view), (Drawn{6, 3, 3}));
  EXPECT_EQ(draw_in_frame(*make_triad(MRUtil::AXIS_2D), *view), (Drawn{6, 6, 6}));
  EXPECT_EQ(draw_in_frame(*make_triad(MRUtil::AXIS_1D), *view), (Drawn{1, 0, 0}));
  EXPECT_EQ(draw_in_frame(*make_triad(NoType), *view), Nothing);
}

TEST_F(GAxisRenderTest, ReturnsNothingWhileItIsInvisible)
{
  for (const auto type : Forms) {
    const Triad triad = make_triad(type);
    triad->VisibilityOff();
    EXPECT_EQ(draw_in_frame(*triad, *view), Nothing);
  }
}

TEST_F(GAxisRenderTest, DrawsNothingInAViewportOfLessThanTwoPixels)
{
  vtkRenderer* renderer = view->get_renderer();
  for (const auto type : Forms) {
    const Triad triad = make_triad(type);
    renderer->SetViewport(0.0, 0.0, 1.0 / 500, 1.0);
    ASSERT_EQ(renderer->GetSize()[0], 1);
    EXPECT_EQ(draw_in_frame(*triad, *view), Nothing);
    renderer->SetViewport(0.0, 0.0, 1.0, 1.0 / 500);
    EXPECT_EQ(draw_in_frame(*triad, *view), Nothing);
    renderer->SetViewport(0.0, 0.0, 2.0 / 500, 2.0 / 500);
    EXPECT_GT(draw_in_frame(*triad, *view).opaque, 0);
  }
}

// --- Hostile cameras

TEST_F(GAxisRenderTest, SurvivesCamerasThatShowNothing)
{
  for (const auto type : Forms) {
    const Triad triad = this->show_triad(type);
    vtkCamera* camera = view->get_renderer()->GetActiveCamera();
    const Image before = picture(*view);
    for (const double scale : {kNan, 0.0, 1e300, 1e-300}) {
      camera->SetParallelScale(scale);
      view->render();
    }
    camera->SetParallelScale(1.0);
    camera->SetPosition(0.0, 0.0, 1e300);
    view->render();
    {
      const ExpectedVtkErrors of_the_camera({"Jacobi"});
      camera->SetPosition(kNan, 0.0, 0.0);
      camera->GetOrientationWXYZ();
      view->render();
      camera->SetPosition(0.0, 0.0, 10.0);
    }
    view->get_renderer()->ResetCameraClippingRange();
    EXPECT_EQ(picture(*view), before) << type;
    view->remove_props({triad});
  }
}

TEST_F(GAxisRenderTest, SurvivesAPerspectiveCameraAtTheOriginAndBeyond)
{
  vtkCamera* camera = view->get_renderer()->GetActiveCamera();
  camera->ParallelProjectionOff();
  for (const auto type : Forms) {
    const Triad triad = this->show_triad(type);
    for (const double z : {10.0, 0.01, 0.0, -0.01, -10.0}) {
      camera->SetFocalPoint(0.0, 0.0, z - 1.0);
      camera->SetPosition(0.0, 0.0, z);
      view->get_renderer()->ResetCameraClippingRange();
      view->render();
    }
    view->remove_props({triad});
  }
}

// --- Changing the form

TEST_F(GAxisRenderTest, LooksLikeANewOneAfterEachChangeOfForm)
{
  const Triad triad = this->show_triad(MRUtil::AXIS_3D);
  for (const auto type : {MRUtil::AXIS_2D, MRUtil::AXIS_1D, NoType, MRUtil::AXIS_3D, NoType, MRUtil::AXIS_2D,
                          MRUtil::AXIS_3D, MRUtil::AXIS_1D, MRUtil::AXIS_2D}) {
    triad->set_type(type);
    const Image changed = picture(*view);
    triad->VisibilityOff();
    const Triad fresh = make_triad(type, view->get_renderer());
    show(*view, fresh);
    EXPECT_EQ(changed, picture(*view)) << type;
    view->remove_props({fresh});
    triad->VisibilityOn();
  }
}

TEST_F(GAxisRenderTest, ShowsNothingWithAValueThatIsNoType)
{
  this->show_triad(NoType);
  EXPECT_EQ(count_pixels(picture(*view), colour_is_not(kBlack)), 0);
}

TEST_F(GAxisRenderTest, ChangesItsFormInTheMiddleOfAFrame)
{
  const Triad triad = this->show_triad(MRUtil::AXIS_3D);
  int turn = 0;
  const auto change = [&] { triad->set_type(Forms[++turn % 3]); };
  const auto caller = CallingProp::make();
  caller->on_opaque = change;
  caller->on_overlay = change;
  show(*view, caller);
  for (int i = 0; i < 6; ++i) {
    view->render();
  }
  EXPECT_EQ(turn, 12);
}

/// How many of the first few thousand names are live buffers or textures of the window's context.
int graphics_objects(vtkRenderWindow& window)
{
  window.MakeCurrent();
  int count = 0;
  for (GLuint name = 1; name < 4000; ++name) {
    count += glIsBuffer(name) + glIsTexture(name);
  }
  return count;
}

TEST_F(GAxisRenderTest, LeavesNothingInTheContextWhenItsFormChanges)
{
  const Triad triad = this->show_triad(MRUtil::AXIS_1D);
  view->render();
  const int ball = graphics_objects(*view->get_render_window());
  triad->set_type(MRUtil::AXIS_3D);
  view->render();
  const int arrows = graphics_objects(*view->get_render_window());
  EXPECT_GT(arrows, ball);
  for (int i = 0; i < 30; ++i) {
    triad->set_type(Forms[i % 3]);
    view->render();
  }
  triad->set_type(MRUtil::AXIS_3D);
  view->render();
  EXPECT_EQ(graphics_objects(*view->get_render_window()), arrows);
}

// Before its first piece of geometry is drawn VTK asks whether to go on, at most five times in a second.
TEST_F(GAxisRenderTest, ChangesItsFormWhileItIsDrawn)
{
  const Triad triad = this->show_triad(MRUtil::AXIS_3D);
  bool asked = false;
  const EventHook hook(view->get_render_window(), vtkCommand::AbortCheckEvent, [&] {
    asked = true;
    triad->set_type(MRUtil::AXIS_1D);
  });
  view->render();
  EXPECT_TRUE(asked);
  EXPECT_GT(count_pixels(picture(*view), colour_is(kYellow)), 50);
}

TEST_F(GAxisRenderTest, DiesWhileItIsDrawn)
{
  Triad triad = this->show_triad(MRUtil::AXIS_3D);
  const vtkWeakPointer<GAxis> watched(triad);
  const EventHook hook(view->get_render_window(), vtkCommand::AbortCheckEvent, [&] {
    view->remove_props({triad});
    triad = nullptr;
  });
  view->render();
  EXPECT_EQ(watched, nullptr);
  EXPECT_EQ(count_pixels(picture(*view), colour_is_not(kBlack)), 0);
}

// --- Picking

TEST_F(GAxisRenderTest, IsNotPickedByRays)
{
  for (const auto type : {MRUtil::AXIS_3D, MRUtil::AXIS_1D}) {
    const Triad triad = this->show_triad(type);
    view->render();
    const vtkNew<vtkCellPicker> picker;
    EXPECT_EQ(picker->Pick(250, 250, 0.0, view->get_renderer()), 0) << type;
    view->remove_props({triad});
  }
}

TEST_F(GAxisRenderTest, IsNotPickedByPixels)
{
  const Scene scene(200, 200);
  vtkRenderer* renderer = scene.renderer();
  for (const auto type : Forms) {
    const Triad triad = make_triad(type, renderer);
    renderer->AddViewProp(triad);
    scene.window()->Render();
    const int place = type == MRUtil::AXIS_2D ? 12 : 100;
    const vtkNew<vtkPropPicker> picker;
    EXPECT_EQ(picker->PickProp(place, place, renderer), 0) << type;
    renderer->RemoveViewProp(triad);
  }
  const auto square = flat_square(); // that the pick finds something at all
  renderer->AddViewProp(square);
  scene.window()->Render();
  const vtkNew<vtkPropPicker> picker;
  EXPECT_NE(picker->PickProp(100, 100, renderer), 0);
}

// --- Windows and lifetimes

// Otherwise the second window is drawn with the names of the first one's textures.
TEST_F(GAxisRenderTest, IsShownByTwoWindowsInTurn)
{
  const auto other = make_view(500, 500);
  for (const auto type : Forms) {
    const Triad triad = this->show_triad(type);
    show(*other, triad);
    const Image expected = picture(*view);
    for (int i = 0; i < 3; ++i) {
      EXPECT_EQ(picture(*other), expected) << type;
      EXPECT_EQ(picture(*view), expected) << type;
    }
    view->remove_props({triad});
    EXPECT_EQ(picture(*other), expected) << type;
    other->remove_props({triad});
  }
}

TEST_F(GAxisRenderTest, IsShownAgainAfterItsWindowIsGone)
{
  for (const auto type : Forms) {
    const Triad triad = this->show_triad(type);
    const Image before = picture(*view);
    view = make_view(500, 500);
    EXPECT_EQ(triad->get_renderer(), nullptr);
    EXPECT_EQ(triad->GetBounds(), nullptr);
    show(*view, triad);
    EXPECT_EQ(picture(*view), before) << type;
    view->remove_props({triad});
  }
}

TEST_F(GAxisRenderTest, ChangesItsFormAfterItsWindowIsGone)
{
  for (const auto type : Forms) {
    const Triad triad = this->show_triad(type);
    view->render();
    view = make_view(500, 500);
    triad->set_type(NoType);
  }
}

TEST_F(GAxisRenderTest, IsRemovedAndAddedAgain)
{
  for (const auto type : Forms) {
    const Triad triad = this->show_triad(type);
    const Image before = picture(*view);
    view->remove_props({triad});
    EXPECT_EQ(count_pixels(picture(*view), colour_is_not(kBlack)), 0);
    show(*view, triad);
    EXPECT_EQ(picture(*view), before) << type;
    view->remove_props({triad});
  }
}

TEST_F(GAxisRenderTest, LeavesNothingOnTheScreenWhenItDies)
{
  for (const auto type : Forms) {
    Triad triad = this->show_triad(type);
    view->render();
    view->remove_props({triad});
    triad = nullptr;
    EXPECT_EQ(count_pixels(picture(*view), colour_is_not(kBlack)), 0);
  }
}

/// Shows a triad in a renderer of VTK's that begins at this fraction of the window's width.
Triad show_in(vtkRenderWindow* window, double begin, MRUtil::AxisType type)
{
  const vtkNew<vtkRenderer> renderer;
  renderer->SetViewport(begin, 0.0, 1.0, 1.0);
  window->AddRenderer(renderer);
  vtkCamera* camera = renderer->GetActiveCamera();
  camera->ParallelProjectionOn();
  camera->SetPosition(1.0, 2.0, 10.0);
  camera->SetParallelScale(1.0);
  Triad triad = make_triad(type, renderer);
  renderer->AddViewProp(triad);
  return triad;
}

TEST_F(GAxisRenderTest, LooksTheSameInAPartOfAWindow)
{
  for (const auto type : Forms) {
    const auto whole = make_window(200, 200);
    const auto half = make_window(400, 200);
    const Triad in_whole = show_in(whole, 0.0, type);
    const Triad in_half = show_in(half, 0.5, type);
    const Image expected = picture(whole);
    EXPECT_GT(count_pixels(expected, colour_is_not(kBlack)), 10) << type;
    EXPECT_EQ(crop(picture(half), 200, 0, 399, 199), expected) << type;
  }
}

TEST_F(GAxisRenderTest, OutlivesAWindowWithoutAView)
{
  for (const auto type : Forms) {
    auto window = make_window(200, 200);
    const Triad triad = show_in(window, 0.0, type);
    window->Render();
    window = nullptr;
    EXPECT_EQ(triad->get_renderer(), nullptr);
    triad->set_type(NoType);
  }
}

} // namespace
