// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// Views and their render windows: binding, leaving, interactors, sizes.
#include "GView.h"

#include "WindowFixture.h"

#include <vtkRenderWindowInteractor.h>
#include <vtkTextProperty.h>

#include <X11/Xlib.h>

namespace {

using namespace morrow_test;

// --- Binding a window that is not mapped
// -------------------------------------------------------------------------------

using BindWindowTest = ViewTest;

TEST_F(BindWindowTest, PutsTheMainRendererIntoTheNewWindow)
{
  GView view;
  const WindowPointer window = new_window();
  view.set_render_window(window);
  EXPECT_EQ(view.get_render_window(), window);
  EXPECT_EQ(view.get_renderer()->GetRenderWindow(), window);
  EXPECT_EQ(num_renderers(window), 1);
  EXPECT_NE(window->HasRenderer(view.get_renderer()), 0);
}

TEST_F(BindWindowTest, LeavesTheOldWindow)
{
  GView view;
  const WindowPointer old = view.get_render_window();
  view.set_render_window(new_window());
  EXPECT_EQ(num_renderers(old), 0);
  EXPECT_EQ(old->HasObserver(vtkCommand::StartEvent), 0);
  EXPECT_EQ(old->GetReferenceCount(), 1);
}

TEST_F(BindWindowTest, LetsGoOfTheOldWindow)
{
  GView view;
  const vtkWeakPointer<vtkRenderWindow> old = view.get_render_window();
  view.set_render_window(new_window());
  EXPECT_EQ(old, nullptr);
}

TEST_F(BindWindowTest, HoldsTheNewOne)
{
  GView view;
  WindowPointer window = new_window();
  const int references = window->GetReferenceCount();
  view.set_render_window(window);
  EXPECT_EQ(window->GetReferenceCount(), references + 1);
  const vtkWeakPointer<vtkRenderWindow> watched = window.Get();
  window = nullptr; // the host deletes its window
  EXPECT_NE(watched, nullptr);
  view.set_render_window(nullptr);
  EXPECT_EQ(watched, nullptr);
}

TEST_F(BindWindowTest, SetsTheWindowUp)
{
  const WindowPointer window = new_window();
  window->SetMultiSamples(8);
  window->SetAlphaBitPlanes(0);
  window->SetDoubleBuffer(0);
  window->SetNumberOfLayers(1);
  window->SetSize(70, 80);
  window->SetPosition(90, 100);
  GView::set_preferred_window_size(320, 240);
  GView::set_preferred_window_position(11, 12);
  GView view;
  view.set_render_window(window);
  EXPECT_EQ(window->GetMultiSamples(), 0);
  EXPECT_NE(window->GetAlphaBitPlanes(), 0);
  EXPECT_NE(window->GetDoubleBuffer(), 0);
  EXPECT_EQ(window->GetNumberOfLayers(), 2);
  EXPECT_EQ(window->GetSize()[0], 320);
  EXPECT_EQ(window->GetSize()[1], 240);
  EXPECT_EQ(window->GetPosition()[0], 11);
  EXPECT_EQ(window->GetPosition()[1], 12);
}

TEST_F(BindWindowTest, GoesByThePreferencesOfThatMoment)
{
  GView view;
  GView::set_preferred_window_size(320, 240);
  GView::set_preferred_window_position(11, 12);
  view.set_render_window(new_window());
  EXPECT_EQ(size_of(view), std::make_pair(320, 240));
  EXPECT_EQ(view.get_render_window()->GetPosition()[0], 11);
  EXPECT_EQ(view.get_render_window()->GetPosition()[1], 12);
}

TEST_F(BindWindowTest, NeitherMapsNorRendersIt)
{
  GView view;
  const WindowPointer window = new_window();
  const FrameCounter frames(window);
  view.set_render_window(window);
  EXPECT_EQ(window->GetMapped(), 0);
  EXPECT_NE(window->GetNeverRendered(), 0);
  EXPECT_EQ(frames.starts(), 0);
}

TEST_F(BindWindowTest, NullOnlyLeaves)
{
  GView view;
  view.set_render_window(nullptr);
  EXPECT_EQ(view.get_render_window(), nullptr);
  EXPECT_EQ(view.get_renderer()->GetRenderWindow(), nullptr);
  EXPECT_EQ(size_of(view), std::make_pair(0, 0));
  view.set_render_window(nullptr);
  EXPECT_EQ(view.get_render_window(), nullptr);
}

TEST_F(BindWindowTest, WorksAgainAfterNull)
{
  GView view;
  view.set_render_window(nullptr);
  const WindowPointer window = new_window();
  view.set_render_window(window);
  EXPECT_EQ(view.get_render_window(), window);
  EXPECT_EQ(num_renderers(window), 1);
}

TEST_F(BindWindowTest, WithoutAWindowEverythingIsANoOp)
{
  GView view;
  view.set_render_window(nullptr);
  view.render();
  view.update_models();
  view.set_title_bar("title");
  view.set_title_bar(nullptr);
  view.enable_overlay();
  view.disable_overlay();
  view.set_background(3);
  view.set_vertex_visibility(true);
  GView::set_stereo_mode(true);
  EXPECT_EQ(size_of(view), std::make_pair(0, 0));
  EXPECT_EQ(view.get_overlay_renderer()->GetRenderWindow(), nullptr);
}

TEST_F(BindWindowTest, TheSameOneTwiceIsBoundOnce)
{
  GView view;
  vtkRenderWindow* window = view.get_render_window();
  view.set_render_window(window); // the view holds the only reference
  EXPECT_EQ(view.get_render_window(), window);
  EXPECT_EQ(window->GetReferenceCount(), 1);
  EXPECT_EQ(num_renderers(window), 1);
  EXPECT_EQ(view.get_renderer()->GetRenderWindow(), window);
}

TEST_F(BindWindowTest, TheSameOneTwiceGetsThePreferencesOfThatMoment)
{
  GView view;
  GView::set_preferred_window_size(320, 240);
  view.set_render_window(view.get_render_window());
  EXPECT_EQ(size_of(view), std::make_pair(320, 240));
}

TEST_F(BindWindowTest, LeavesTheHostsRenderersAndObserversAlone)
{
  GView view;
  const WindowPointer window = new_window();
  const vtkNew<vtkRenderer> of_host;
  window->AddRenderer(of_host);
  const EventHook hook(window, vtkCommand::StartEvent, [] {});
  view.set_render_window(window);
  EXPECT_EQ(num_renderers(window), 2);
  view.set_render_window(nullptr);
  EXPECT_EQ(num_renderers(window), 1);
  EXPECT_NE(window->HasRenderer(of_host), 0);
  EXPECT_NE(window->HasObserver(vtkCommand::StartEvent), 0);
}

TEST_F(BindWindowTest, KeepsPropsCameraBackgroundAndModels)
{
  ViewStage stage;
  stage.view->add_props({flat_square()});
  const vtkSmartPointer<vtkCamera> camera = stage.view->get_renderer()->GetActiveCamera();
  stage.view->set_background(4);
  stage.view->set_render_window(new_window());
  EXPECT_EQ(stage.view->get_renderer()->GetViewProps()->GetNumberOfItems(), 2); // with the model's labels
  EXPECT_EQ(stage.view->get_renderer()->GetActiveCamera(), camera);
  EXPECT_EQ(stage.view->get_background(), 4);
  EXPECT_EQ(stage.view->get_model_set(), &stage.set);
}

TEST_F(BindWindowTest, TakesTheOverlayAway)
{
  GView view;
  const WindowPointer old = view.get_render_window();
  view.enable_overlay();
  const WindowPointer window = new_window();
  view.set_render_window(window);
  EXPECT_EQ(num_renderers(old), 0);
  EXPECT_EQ(num_renderers(window), 1);
  EXPECT_EQ(view.get_overlay_renderer()->GetRenderWindow(), nullptr);
}

TEST_F(BindWindowTest, OffscreenIsSwitchedOnOnly)
{
  GView view;
  const WindowPointer window = new_window();
  window->OffScreenRenderingOn(); // the host's own choice
  view.set_render_window(window);
  EXPECT_NE(window->GetOffScreenRendering(), 0);
  GView::set_offscreen(true);
  const WindowPointer other = new_window();
  view.set_render_window(other);
  EXPECT_NE(other->GetOffScreenRendering(), 0);
}

TEST_F(BindWindowTest, StereoIsSwitchedOnOnly)
{
  GView view;
  const WindowPointer window = new_window();
  window->StereoCapableWindowOn();
  window->StereoRenderOn();
  view.set_render_window(window);
  EXPECT_NE(window->GetStereoRender(), 0);
  GView::set_stereo_mode(true);
  const WindowPointer other = new_window();
  view.set_render_window(other);
  EXPECT_NE(other->GetStereoCapableWindow(), 0);
  EXPECT_NE(other->GetStereoRender(), 0);
}

TEST_F(BindWindowTest, MayBeDoneToAWindowWithAnInteractor)
{
  GView view;
  const WindowPointer window = new_window();
  const vtkNew<vtkRenderWindowInteractor> interactor;
  interactor->SetRenderWindow(window);
  view.set_render_window(window);
  EXPECT_EQ(window->GetInteractor(), interactor);
  EXPECT_EQ(window->GetMapped(), 0);
}

// --- Binding windows that are rendered
// ---------------------------------------------------------------------------------

using BoundWindowTest = ViewRenderTest;

TEST_F(BoundWindowTest, ShowsTheSameInEveryWindow)
{
  PicturedStage stage;
  ASSERT_EQ(count_pixels(stage.expected, colour_is(kGreen)), 15 * 15);
  const WindowPointer first = stage.window();
  for (int i = 0; i < 3; ++i) {
    stage.view->set_render_window(new_window());
    EXPECT_TRUE(picture(*stage.view) == stage.expected) << i;
  }
  stage.view->set_render_window(first);
  EXPECT_TRUE(picture(*stage.view) == stage.expected);
}

TEST_F(BoundWindowTest, StaysMappedWhenItIsBoundWhileMapped)
{
  PicturedStage stage;
  for (int i = 0; i < 3; ++i) {
    ASSERT_NE(stage.window()->GetMapped(), 0);
    stage.view->set_render_window(stage.window());
    EXPECT_NE(stage.window()->GetMapped(), 0);
    EXPECT_TRUE(picture(*stage.view) == stage.expected) << i;
  }
}

TEST_F(BoundWindowTest, OfTheHostMayHaveBeenRendered)
{
  PicturedStage stage;
  Scene scene(60, 60);
  scene.renderer()->AddActor(flat_square(kWhite));
  scene.look_down(1.0);
  ASSERT_EQ(count_pixels(scene.render(), colour_is(kWhite)), 30 * 30);
  scene.window()->RemoveRenderer(scene.renderer());
  stage.view->set_render_window(scene.window());
  EXPECT_NE(scene.window()->GetMapped(), 0);
  EXPECT_EQ(size_of(*stage.view), std::make_pair(100, 100));
  EXPECT_TRUE(picture(*stage.view) == stage.expected);
}

// All who draw in the window are told.
TEST_F(BoundWindowTest, OfTheHostIsFinalisedExactlyWhenItIsMapped)
{
  Scene scene(60, 60);
  int releases = 0;
  const auto prop = CallingProp::make();
  scene.renderer()->AddViewProp(prop);
  prop->on_release = [&] { ++releases; };
  GView view;
  view.set_render_window(scene.window());
  EXPECT_EQ(releases, 0);
  view.set_render_window(nullptr);
  static_cast<void>(scene.render());
  releases = 0;
  view.set_render_window(scene.window());
  EXPECT_GE(releases, 1);
  prop->on_release = nullptr;
}

// Finalising takes the graphics resources of everything in the window: the host's props are drawn from
// scratch.
TEST_F(BoundWindowTest, OfTheHostKeepsTheHostsRenderer)
{
  Scene scene(100, 100);
  scene.renderer()->AddActor(flat_square(kWhite));
  scene.renderer()->SetViewport(0.0, 0.0, 0.5, 0.5);
  scene.look_down(1.0);
  ASSERT_EQ(count_pixels(scene.render(), colour_is(kWhite)), 25 * 25);
  GView::set_preferred_window_size(100, 100);
  const auto view = make_view();
  view->get_renderer()->SetViewport(0.5, 0.5, 1.0, 1.0);
  show(*view, flat_square(kRed));
  view->set_render_window(scene.window());
  const Image image = picture(*view);
  EXPECT_EQ(count_pixels(image, colour_is(kWhite)), 25 * 25);
  EXPECT_EQ(count_pixels(image, colour_is(kRed)), 25 * 25);
}

TEST_F(BoundWindowTest, ThatWasLeftShowsAndUpdatesNothingOfTheView)
{
  PicturedStage stage;
  const WindowPointer left = stage.window();
  stage.view->set_render_window(nullptr);
  stage.model.updates = 0;
  const vtkNew<vtkRenderer> blank;
  left->AddRenderer(blank);
  EXPECT_EQ(count_pixels(picture(left), colour_is_not(kBlack)), 0);
  EXPECT_EQ(stage.model.updates, 0);
}

TEST_F(BoundWindowTest, ThatWasLeftMayRenderWithoutAnyRenderer)
{
  PicturedStage stage;
  const WindowPointer left = stage.window();
  stage.view->set_render_window(nullptr);
  const FrameCounter frames(left);
  left->Render();
  EXPECT_EQ(frames.ends(), 1);
}

// One observer and one renderer, not two of each.
TEST_F(BoundWindowTest, ThatIsBoundTwiceUpdatesOncePerFrame)
{
  ViewStage stage;
  stage.view->set_render_window(stage.window());
  stage.view->set_render_window(stage.window());
  stage.window()->Render();
  EXPECT_EQ(stage.model.updates, 1);
}

// What the view lets go of belongs to its own window, whichever is the current one.
TEST_F(BoundWindowTest, IsLeftWithoutHarmToTheOneOfAnotherView)
{
  for (const bool destroyed : {false, true}) {
    FullViewStage leaving;
    FullViewStage staying;
    leaving.view->render();
    const Image before = picture(*staying.view);
    const WindowPointer window = leaving.window();
    if (destroyed) {
      leaving.view.reset();
    } else {
      leaving.view->set_render_window(nullptr);
    }
    EXPECT_TRUE(picture(*staying.view) == before) << destroyed;
  }
}

TEST_F(BoundWindowTest, MayBeExchangedWithTheOneOfAnotherView)
{
  GView::set_preferred_window_size(100, 100);
  const auto a = make_view();
  const auto b = make_view();
  show(*a, flat_square(kRed));
  show(*b, flat_square(kGreen));
  const Image red = picture(*a);
  const Image green = picture(*b);
  const WindowPointer of_a = a->get_render_window();
  const WindowPointer of_b = b->get_render_window();
  a->set_render_window(nullptr);
  b->set_render_window(of_a);
  a->set_render_window(of_b);
  EXPECT_TRUE(picture(*a) == red);
  EXPECT_TRUE(picture(*b) == green);
}

TEST_F(BoundWindowTest, MayBeLeftInAnUpdate)
{
  PicturedStage stage;
  stage.model.on_update = [&] { stage.view->set_render_window(nullptr); };
  stage.view->render();
  EXPECT_EQ(stage.view->get_render_window(), nullptr);
  stage.model.on_update = nullptr;
  stage.view->set_render_window(new_window());
  EXPECT_TRUE(picture(*stage.view) == stage.expected);
}

TEST_F(BoundWindowTest, MayBeChangedInAnUpdate)
{
  PicturedStage stage;
  const WindowPointer other = new_window();
  stage.model.on_update = [&] {
    if (stage.window() != other) {
      stage.view->set_render_window(other);
    }
  };
  stage.view->render();
  EXPECT_EQ(stage.window(), other);
  EXPECT_TRUE(picture(*stage.view) == stage.expected);
}

TEST_F(BoundWindowTest, MayBeLeftInAnUpdateOfItsOwnFrame)
{
  PicturedStage stage;
  const WindowPointer window = stage.window();
  stage.model.on_update = [&] { stage.view->set_render_window(nullptr); };
  window->Render();
  EXPECT_EQ(stage.view->get_render_window(), nullptr);
  EXPECT_EQ(num_renderers(window), 0);
  stage.model.on_update = nullptr;
  stage.view->set_render_window(window);
  EXPECT_TRUE(picture(*stage.view) == stage.expected);
}

// --- Interactors
// -----------------------------------------------------------------------------------------------------------

using InteractorTest = ViewRenderTest;

vtkSmartPointer<vtkRenderWindowInteractor> interactor_of(vtkRenderWindow* window)
{
  auto interactor = vtkSmartPointer<vtkRenderWindowInteractor>::New();
  interactor->SetRenderWindow(window);
  interactor->Initialize();
  return interactor;
}

TEST_F(InteractorTest, RendersFramesOfTheView)
{
  PicturedStage stage;
  const auto interactor = interactor_of(stage.window());
  stage.model.updates = 0;
  interactor->Render();
  EXPECT_EQ(stage.model.updates, 1);
  EXPECT_TRUE(read_pixels(stage.window()) == stage.expected);
}

TEST_F(InteractorTest, MayBeThereBeforeTheFirstFrame)
{
  GView::set_preferred_window_size(100, 100);
  const auto view = make_view();
  const auto interactor = interactor_of(view->get_render_window());
  show(*view, flat_square());
  EXPECT_EQ(count_pixels(picture(*view), colour_is(kRed)), 50 * 50);
  interactor->ProcessEvents();
  EXPECT_EQ(count_pixels(picture(*view), colour_is(kRed)), 50 * 50);
}

/// Presses the left button over the window, on the window's own connection.
void press_button(vtkRenderWindow* window)
{
  auto* display = static_cast<Display*>(window->GetGenericDisplayId());
  const auto id = reinterpret_cast<Window>(window->GetGenericWindowId());
  XEvent event = {};
  event.xbutton.type = ButtonPress;
  event.xbutton.window = id;
  event.xbutton.button = Button1;
  XSendEvent(display, id, False, ButtonPressMask, &event);
  XSync(display, False);
}

/// Whether the interactor hears of what happens in its window.
bool hears(vtkRenderWindowInteractor* interactor)
{
  int presses = 0;
  const EventHook hook(
      interactor, vtkCommand::LeftButtonPressEvent, [&] { ++presses; }, 1.0F);
  interactor->SetInteractorStyle(nullptr); // a style would follow the mouse until the button is let go
  press_button(interactor->GetRenderWindow());
  interactor->ProcessEvents();
  return presses == 1;
}

TEST_F(InteractorTest, HearsOfAButtonInItsWindow)
{
  PicturedStage stage;
  const auto interactor = interactor_of(stage.window());
  EXPECT_TRUE(hears(interactor));
}

TEST_F(InteractorTest, HearsOfAButtonAfterAViewHasBoundItsWindow)
{
  PicturedStage stage;
  const auto interactor = interactor_of(stage.window());
  stage.view->set_render_window(stage.window());
  EXPECT_TRUE(hears(interactor));
}

TEST_F(InteractorTest, StaysDisabledWhenAViewBindsItsWindow)
{
  PicturedStage stage;
  const auto interactor = interactor_of(stage.window());
  interactor->Disable();
  stage.view->set_render_window(stage.window());
  EXPECT_EQ(interactor->GetEnabled(), 0);
  EXPECT_FALSE(hears(interactor));
}

TEST_F(InteractorTest, HearsOfAButtonAfterStereoHasBeenSwitchedOn)
{
  PicturedStage stage;
  GView::add_global_view(stage.view);
  const auto interactor = interactor_of(stage.window());
  GView::set_stereo_mode(true);
  EXPECT_TRUE(hears(interactor));
}

TEST_F(InteractorTest, OfAMappedWindowStaysUsableWhenAViewBindsIt)
{
  PicturedStage stage;
  const auto interactor = interactor_of(stage.window());
  interactor->ProcessEvents();
  for (int i = 0; i < 3; ++i) {
    stage.view->set_render_window(stage.window());
    EXPECT_EQ(stage.window()->GetInteractor(), interactor);
    EXPECT_TRUE(picture(*stage.view) == stage.expected);
    interactor->ProcessEvents();
    interactor->Render();
    EXPECT_TRUE(read_pixels(stage.window()) == stage.expected);
  }
}

TEST_F(InteractorTest, OfAMappedWindowSurvivesSwitchingStereoOn)
{
  PicturedStage stage;
  GView::add_global_view(stage.view);
  const auto interactor = interactor_of(stage.window());
  interactor->ProcessEvents();
  GView::set_stereo_mode(true);
  stage.view->render();
  interactor->ProcessEvents();
  GView::set_stereo_mode(false);
  EXPECT_TRUE(picture(*stage.view) == stage.expected);
  interactor->ProcessEvents();
}

TEST_F(InteractorTest, OutlivesTheView)
{
  PicturedStage stage;
  const auto interactor = interactor_of(stage.window());
  const WindowPointer window = stage.window();
  stage.view.reset();
  const FrameCounter frames(window);
  interactor->Render();
  interactor->ProcessEvents(); // may render once more: the window has been mapped
  EXPECT_GE(frames.ends(), 1);
}

TEST_F(InteractorTest, OutlivesAllOtherReferencesOnTheWindow)
{
  PicturedStage stage;
  const vtkWeakPointer<vtkRenderWindow> window = stage.window();
  auto interactor = interactor_of(window);
  stage.view.reset();
  EXPECT_NE(window, nullptr);
  interactor->Render();
  interactor = nullptr;
  EXPECT_EQ(window, nullptr);
}

// --- Sizes
// ----------------------------------------------------------------------------------------------------------

using WindowSizeTest = ViewRenderTest;

TEST_F(WindowSizeTest, IsWhatTheHostHasMadeIt)
{
  const auto view = make_view(30, 70);
  EXPECT_EQ(size_of(*view), std::make_pair(30, 70));
  view->render();
  EXPECT_EQ(size_of(*view), std::make_pair(30, 70));
  view->get_render_window()->SetSize(71, 31);
  EXPECT_EQ(size_of(*view), std::make_pair(71, 31));
  view->render();
  EXPECT_EQ(size_of(*view), std::make_pair(71, 31));
}

TEST_F(WindowSizeTest, MayBePreferredToBeAnything)
{
  for (const auto& [width, height] :
       {std::make_pair(1, 1), std::make_pair(1500, 3), std::make_pair(3, 1200)}) {
    GView::set_preferred_window_size(width, height);
    GView view;
    EXPECT_EQ(size_of(view), std::make_pair(width, height));
    view.render();
    EXPECT_EQ(size_of(view), std::make_pair(width, height));
  }
}

TEST_F(WindowSizeTest, MayChangeInAnUpdate)
{
  ViewStage stage;
  show(*stage.view, flat_square());
  stage.view->render();
  stage.model.on_update = [&] { stage.window()->SetSize(60, 40); };
  EXPECT_EQ(count_pixels(picture(*stage.view), colour_is(kRed)), 20 * 20);
}

} // namespace
