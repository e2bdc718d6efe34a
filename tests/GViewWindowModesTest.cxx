// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// Windows and models that views share, the overlay, off-screen and stereo rendering.
#include "GView.h"

#include "WindowFixture.h"

#include <tuple>

namespace {

using namespace morrow_test;

// --- Two views in one window
// ---------------------------------------------------------------------------------------------

using SharedWindowTest = ViewRenderTest;

/// Two views side by side in one window of 120 × 60, each with a square of 30 × 30 pixels in the middle of
/// its half: red on the left, green on the right.
struct SharedWindow
{
  GModelSet set_a, set_b;
  ScriptedModel model_a, model_b;
  std::shared_ptr<GView> a, b;

  SharedWindow()
  {
    GView::set_preferred_window_size(120, 60);
    a = make_view(120, 60);
    b = make_view();
    b->set_render_window(a->get_render_window());
    a->get_renderer()->SetViewport(0.0, 0.0, 0.5, 1.0);
    b->get_renderer()->SetViewport(0.5, 0.0, 1.0, 1.0);
    set_a.add_model(&model_a);
    set_b.add_model(&model_b);
    a->set_model_set(&set_a);
    b->set_model_set(&set_b);
    show(*a, flat_square(kRed));
    show(*b, flat_square(kGreen));
  }

  [[nodiscard]] vtkRenderWindow* window() const { return b->get_render_window(); }
};

TEST_F(SharedWindowTest, HasTheRenderersOfBoth)
{
  const SharedWindow shared;
  EXPECT_EQ(shared.a->get_render_window(), shared.b->get_render_window());
  EXPECT_EQ(num_renderers(shared.window()), 2);
  EXPECT_EQ(shared.window()->GetReferenceCount(), 2);
}

TEST_F(SharedWindowTest, ShowsBothWhicheverRenders)
{
  const SharedWindow shared;
  for (const auto& view : {shared.a, shared.b, shared.a}) {
    const Image image = picture(*view);
    EXPECT_EQ(find_pixels(image, colour_is(kRed)).count, 30 * 30);
    EXPECT_EQ(find_pixels(image, colour_is(kRed)).centre_x, 30.0);
    EXPECT_EQ(find_pixels(image, colour_is(kGreen)).count, 30 * 30);
    EXPECT_EQ(find_pixels(image, colour_is(kGreen)).centre_x, 90.0);
  }
}

TEST_F(SharedWindowTest, UpdatesTheModelsOfBothInEachFrame)
{
  SharedWindow shared;
  shared.window()->Render();
  EXPECT_EQ(shared.model_a.updates, 1);
  EXPECT_EQ(shared.model_b.updates, 1);
  shared.a->render();
  EXPECT_EQ(shared.model_a.updates, 3);
  EXPECT_EQ(shared.model_b.updates, 2);
}

TEST_F(SharedWindowTest, StaysWithTheOneWhenTheOtherLeaves)
{
  for (const bool a_leaves : {true, false}) {
    SharedWindow shared;
    shared.a->render();
    const auto& leaving = a_leaves ? shared.a : shared.b;
    const auto& staying = a_leaves ? shared.b : shared.a;
    leaving->set_render_window(nullptr);
    staying->get_renderer()->SetViewport(0.0, 0.0, 1.0, 1.0); // else nobody would clear the other half
    const Image image = picture(*staying);
    EXPECT_EQ(count_pixels(image, colour_is(kRed)), a_leaves ? 0 : 30 * 30);
    EXPECT_EQ(count_pixels(image, colour_is(kGreen)), a_leaves ? 30 * 30 : 0);
    EXPECT_EQ(num_renderers(staying->get_render_window()), 1);
  }
}

TEST_F(SharedWindowTest, StaysWithTheOneWhenTheOtherIsDestroyed)
{
  for (const bool a_goes : {true, false}) {
    SharedWindow shared;
    shared.a->render();
    const vtkWeakPointer<vtkRenderWindow> window = shared.window();
    auto& going = a_goes ? shared.a : shared.b;
    auto& staying = a_goes ? shared.b : shared.a;
    going.reset();
    staying->get_renderer()->SetViewport(0.0, 0.0, 1.0, 1.0);
    const Image image = picture(*staying);
    EXPECT_EQ(count_pixels(image, colour_is(kRed)), a_goes ? 0 : 30 * 30);
    EXPECT_EQ(count_pixels(image, colour_is(kGreen)), a_goes ? 30 * 30 : 0);
    staying.reset();
    EXPECT_EQ(window, nullptr);
  }
}

TEST_F(SharedWindowTest, MayBeBoundByTheSecondWhileItIsMapped)
{
  GView::set_preferred_window_size(120, 60);
  const auto a = make_view(120, 60);
  a->get_renderer()->SetViewport(0.0, 0.0, 0.5, 1.0);
  show(*a, flat_square(kRed));
  a->render();
  const auto b = make_view();
  b->get_renderer()->SetViewport(0.5, 0.0, 1.0, 1.0);
  show(*b, flat_square(kGreen));
  b->set_render_window(a->get_render_window());
  const Image image = picture(*a);
  EXPECT_EQ(count_pixels(image, colour_is(kRed)), 30 * 30);
  EXPECT_EQ(count_pixels(image, colour_is(kGreen)), 30 * 30);
}

TEST_F(SharedWindowTest, HasTheOverlaysOfBoth)
{
  const SharedWindow shared;
  shared.a->enable_overlay();
  shared.b->enable_overlay();
  EXPECT_EQ(num_renderers(shared.window()), 4);
  shared.a->disable_overlay();
  EXPECT_EQ(num_renderers(shared.window()), 3);
  EXPECT_EQ(shared.b->get_overlay_renderer()->GetRenderWindow(), shared.window());
}

TEST_F(SharedWindowTest, ServesModelsOfOneSet)
{
  SharedWindow shared;
  shared.b->set_model_set(&shared.set_a);
  const auto data = quad(-0.9, -0.9, -0.7, -0.7); // 6 × 6 pixels
  shared.model_a.add_part(data, show_flat(kBlue));
  EXPECT_EQ(count_pixels(picture(*shared.a), colour_is(kBlue)), 2 * 6 * 6);
  shared.a.reset();
  shared.b->get_renderer()->SetViewport(0.0, 0.0, 1.0, 1.0);
  EXPECT_EQ(count_pixels(picture(*shared.b), colour_is(kBlue)), 6 * 6);
}

// --- One model in two windows
// ---------------------------------------------------------------------------------------------------

using ModelInTwoViewsTest = ViewRenderTest;

/// One model with a part and a label in two views, each with a window of its own.
struct TwoViews
{
  ViewStage first;
  std::shared_ptr<GView> second = make_view();

  TwoViews()
  {
    first.model.add_part(quad(-0.9, -0.9, -0.6, -0.6), show_flat(kGreen));
    first.model.add_label("label", BrantVector(-0.5, 0.5, 0.0), BrantColor(255, 255, 0));
  }
};

// Every frame of the one window comes after a frame of the other, which drew the same label.
TEST_F(ModelInTwoViewsTest, LooksTheSameInEveryFrameOfBoth)
{
  TwoViews views;
  const Image alone = picture(*views.first.view);
  ASSERT_GT(count_pixels(alone, colour_is(kYellow, 100)), 5);
  views.second->set_model_set(&views.first.set);
  for (int frame = 0; frame < 3; ++frame) {
    EXPECT_TRUE(picture(*views.second) == alone) << frame;
    EXPECT_TRUE(picture(*views.first.view) == alone) << frame;
  }
}

TEST_F(ModelInTwoViewsTest, LooksTheSameAfterTheOtherIsGone)
{
  TwoViews views;
  const Image alone = picture(*views.first.view);
  views.second->set_model_set(&views.first.set);
  views.second->render();
  views.second.reset();
  EXPECT_TRUE(picture(*views.first.view) == alone);
}

TEST_F(ModelInTwoViewsTest, LooksTheSameAfterTheOtherHasLetItGo)
{
  TwoViews views;
  const Image alone = picture(*views.first.view);
  views.second->set_model_set(&views.first.set);
  views.second->render();
  views.second->set_model_set(nullptr);
  EXPECT_TRUE(picture(*views.first.view) == alone);
}

// --- Overlay
// ---------------------------------------------------------------------------------------------------------

using OverlayTest = ViewTest;

TEST_F(OverlayTest, IsEnabledOnceAndDisabled)
{
  GView view;
  vtkRenderWindow* window = view.get_render_window();
  view.enable_overlay();
  view.enable_overlay();
  EXPECT_EQ(num_renderers(window), 2);
  EXPECT_EQ(view.get_overlay_renderer()->GetRenderWindow(), window);
  view.disable_overlay();
  EXPECT_EQ(num_renderers(window), 1);
  EXPECT_EQ(view.get_overlay_renderer()->GetRenderWindow(), nullptr);
  view.disable_overlay();
  EXPECT_EQ(num_renderers(window), 1);
  EXPECT_EQ(view.get_renderer()->GetRenderWindow(), window);
}

TEST_F(OverlayTest, MayBeEnabledAgain)
{
  GView view;
  view.enable_overlay();
  view.disable_overlay();
  view.enable_overlay();
  EXPECT_EQ(num_renderers(view.get_render_window()), 2);
}

TEST_F(OverlayTest, StaysOnItsLayer)
{
  GView view;
  view.enable_overlay();
  EXPECT_EQ(view.get_overlay_renderer()->GetLayer(), 1);
  EXPECT_EQ(view.get_render_window()->GetNumberOfLayers(), 2);
}

TEST_F(OverlayTest, IsNotEnabledLaterByAskingWithoutAWindow)
{
  GView view;
  view.set_render_window(nullptr);
  view.enable_overlay();
  view.set_render_window(new_window());
  EXPECT_EQ(num_renderers(view.get_render_window()), 1);
}

using OverlayPictureTest = ViewRenderTest;

void look_down(vtkRenderer* renderer)
{
  vtkCamera* camera = renderer->GetActiveCamera();
  camera->ParallelProjectionOn();
  camera->SetParallelScale(1.0);
  camera->SetPosition(0.0, 0.0, 10.0);
  camera->SetFocalPoint(0.0, 0.0, 0.0);
  camera->SetClippingRange(1.0, 20.0);
}

TEST_F(OverlayPictureTest, IsDrawnAboveEverythingNearer)
{
  const auto view = make_view();
  const auto veil = flat_actor(quad(-1.0, -1.0, 1.0, 1.0, 2.0), kBlue);
  veil->GetProperty()->SetOpacity(0.5);
  view->add_props({flat_actor(quad(-1.0, -1.0, 1.0, 1.0, 1.0), kRed), veil});
  look_down(view->get_overlay_renderer());
  view->get_overlay_renderer()->AddActor(flat_actor(quad(-0.5, -0.5, 0.5, 0.5, -5.0), kGreen));
  EXPECT_EQ(count_pixels(picture(*view), colour_is(kGreen)), 0); // not enabled yet
  view->enable_overlay();
  EXPECT_EQ(count_pixels(picture(*view), colour_is(kGreen)), 50 * 50);
  view->disable_overlay();
  EXPECT_EQ(count_pixels(picture(*view), colour_is(kGreen)), 0);
}

TEST_F(OverlayPictureTest, LeavesThePictureBelowAlone)
{
  PicturedStage stage;
  stage.view->enable_overlay();
  EXPECT_TRUE(picture(*stage.view) == stage.expected);
  EXPECT_TRUE(picture(stage.window()) == stage.expected);
  stage.view->disable_overlay();
  EXPECT_TRUE(picture(*stage.view) == stage.expected);
}

TEST_F(OverlayPictureTest, HasACameraOfItsOwn)
{
  const auto view = make_view();
  look_down(view->get_overlay_renderer());
  view->get_overlay_renderer()->AddActor(flat_square(kGreen));
  view->enable_overlay();
  const Image before = picture(*view);
  view->get_renderer()->GetActiveCamera()->SetPosition(10.0, 0.0, 0.0);
  view->get_renderer()->GetActiveCamera()->SetParallelScale(7.0);
  EXPECT_TRUE(picture(*view) == before);
  EXPECT_NE(view->get_renderer()->GetActiveCamera(), view->get_overlay_renderer()->GetActiveCamera());
}

TEST_F(OverlayPictureTest, FollowsTheViewToAnotherWindowWhenEnabledThere)
{
  GView::set_preferred_window_size(100, 100);
  const auto view = make_view();
  look_down(view->get_overlay_renderer());
  view->get_overlay_renderer()->AddActor(flat_square(kGreen));
  view->enable_overlay();
  const Image expected = picture(*view);
  view->set_render_window(new_window());
  EXPECT_EQ(count_pixels(picture(*view), colour_is(kGreen)), 0);
  view->enable_overlay();
  EXPECT_TRUE(picture(*view) == expected);
}

TEST_F(OverlayPictureTest, MayBeSwitchedInAnUpdate)
{
  ViewStage stage;
  look_down(stage.view->get_overlay_renderer());
  stage.view->get_overlay_renderer()->AddActor(flat_square(kGreen));
  for (int i = 0; i < 3; ++i) {
    stage.model.on_update = [&] { stage.view->enable_overlay(); };
    EXPECT_EQ(count_pixels(picture(stage.window()), colour_is(kGreen)), 50 * 50);
    stage.model.on_update = [&] { stage.view->disable_overlay(); };
    EXPECT_EQ(count_pixels(picture(stage.window()), colour_is(kGreen)), 0);
  }
}

// --- Off-screen
// --------------------------------------------------------------------------------------------------------

using OffscreenTest = ViewRenderTest;

TEST_F(OffscreenTest, DrawsTheSamePictureWithoutMappingTheWindow)
{
  const PicturedStage on_screen;
  GView::set_offscreen(true);
  FullViewStage stage;
  EXPECT_TRUE(picture(*stage.view) == on_screen.expected);
  EXPECT_EQ(stage.window()->GetMapped(), 0);
  EXPECT_NE(on_screen.window()->GetMapped(), 0);
}

TEST_F(OffscreenTest, FollowsTheWindowsSize)
{
  GView::set_offscreen(true);
  const auto view = make_view();
  show(*view, flat_square());
  const std::tuple<int, int, int> cases[] = {{100, 100, 50}, {200, 60, 30}, {10, 10, 5}, {100, 100, 50}};
  for (const auto& [width, height, side] : cases) {
    view->get_render_window()->SetSize(width, height);
    EXPECT_EQ(count_pixels(picture(*view), colour_is(kRed)), side * side) << width << " x " << height;
  }
}

TEST_F(OffscreenTest, MayBeBoundAgain)
{
  GView::set_offscreen(true);
  PicturedStage stage;
  stage.view->set_render_window(stage.window());
  EXPECT_TRUE(picture(*stage.view) == stage.expected);
  stage.view->set_render_window(new_window());
  EXPECT_TRUE(picture(*stage.view) == stage.expected);
  EXPECT_EQ(stage.window()->GetMapped(), 0);
}

TEST_F(OffscreenTest, IsLeftByBindingAnOnScreenWindow)
{
  GView::set_offscreen(true);
  PicturedStage stage;
  GView::set_offscreen(false);
  stage.view->set_render_window(new_window());
  EXPECT_TRUE(picture(*stage.view) == stage.expected);
  EXPECT_NE(stage.window()->GetMapped(), 0);
}

// --- Stereo
// ---------------------------------------------------------------------------------------------------------

using StereoTest = ViewRenderTest;

/// A perspective view of a white square far behind the point that both eyes look at: in red-blue stereo its
/// two pictures lie apart.
std::shared_ptr<GView> deep_view()
{
  auto view = make_view();
  vtkCamera* camera = view->get_renderer()->GetActiveCamera();
  camera->ParallelProjectionOff();
  show(*view, flat_actor(quad(-3.0, -3.0, 3.0, 3.0, -20.0), kWhite));
  return view;
}

int num_coloured(const Image& image)
{
  return count_pixels(image, [](Rgb pixel) {
    return channel_difference(pixel, {pixel.r, pixel.r, pixel.r}) > 0;
  });
}

TEST_F(StereoTest, IsOffAtFirst)
{
  EXPECT_FALSE(GView::get_stereo_mode());
  EXPECT_EQ(num_coloured(picture(*deep_view())), 0);
}

TEST_F(StereoTest, ShowsTwoPicturesInRegisteredViews)
{
  const auto view = deep_view();
  const auto loose = deep_view();
  GView::add_global_view(view);
  const Image flat = picture(*view);
  GView::set_stereo_mode(true);
  EXPECT_TRUE(GView::get_stereo_mode());
  EXPECT_GT(num_coloured(picture(*view)), 50);
  EXPECT_EQ(num_coloured(picture(*loose)), 0);
  GView::set_stereo_mode(false);
  EXPECT_FALSE(GView::get_stereo_mode());
  EXPECT_TRUE(picture(*view) == flat);
}

TEST_F(StereoTest, KeepsMappedWindowsMapped)
{
  const auto view = deep_view();
  GView::add_global_view(view);
  view->render();
  GView::set_stereo_mode(true);
  EXPECT_NE(view->get_render_window()->GetMapped(), 0);
  EXPECT_NE(view->get_render_window()->GetStereoRender(), 0);
}

TEST_F(StereoTest, DoesNotMapWindowsThatAreNot)
{
  const auto view = deep_view();
  GView::add_global_view(view);
  GView::set_stereo_mode(true);
  EXPECT_EQ(view->get_render_window()->GetMapped(), 0);
  EXPECT_NE(view->get_render_window()->GetStereoCapableWindow(), 0);
  EXPECT_NE(view->get_render_window()->GetStereoRender(), 0);
  EXPECT_GT(num_coloured(picture(*view)), 50);
}

TEST_F(StereoTest, IsThereInWindowsBoundWhileItIsOn)
{
  const auto view = deep_view();
  GView::set_preferred_window_size(100, 100);
  GView::set_stereo_mode(true); // the view is not registered
  view->set_render_window(new_window());
  EXPECT_GT(num_coloured(picture(*view)), 50);
}

TEST_F(StereoTest, MayBeSwitchedManyTimes)
{
  const auto view = deep_view();
  GView::add_global_view(view);
  const Image flat = picture(*view);
  GView::set_stereo_mode(true);
  const Image deep = picture(*view);
  for (int i = 0; i < 3; ++i) {
    GView::set_stereo_mode(false);
    EXPECT_TRUE(picture(*view) == flat);
    GView::set_stereo_mode(true);
    EXPECT_TRUE(picture(*view) == deep);
  }
}

TEST_F(StereoTest, UpdatesTheModelsOncePerFrame)
{
  ViewStage stage;
  GView::add_global_view(stage.view);
  GView::set_stereo_mode(true);
  stage.window()->Render();
  EXPECT_EQ(stage.model.updates, 1); // one frame, two eyes
}

TEST_F(StereoTest, ShowsLabelsPartsAndTranslucentGeometry)
{
  PicturedStage stage; // in parallel projection there is one picture for both eyes, but for their mixing
  GView::add_global_view(stage.view);
  GView::set_stereo_mode(true);
  const Image image = picture(*stage.view);
  EXPECT_GT(count_pixels(image, colour_is_not(kBlack)), 3000);
  GView::set_stereo_mode(false);
  EXPECT_TRUE(picture(*stage.view) == stage.expected);
}

} // namespace
