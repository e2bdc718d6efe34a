// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// Views and their render windows: binding, leaving, sharing, the overlay, off-screen and stereo rendering.
#include "GView.h"

#include "ViewFixture.h"

#include <vtkRenderWindowInteractor.h>
#include <vtkRendererCollection.h>
#include <vtkTextActor.h>
#include <vtkTextProperty.h>

#include <X11/Xlib.h>

#include <tuple>

namespace {

using namespace morrow_test;

using WindowPointer = vtkSmartPointer<vtkRenderWindow>;

WindowPointer new_window()
{
  return WindowPointer::New();
}

int num_renderers(vtkRenderWindow* window)
{
  return window->GetRenderers()->GetNumberOfItems();
}

std::pair<int, int> size_of(const GView& view)
{
  int width = -1;
  int height = -1;
  view.get_size(width, height);
  return {width, height};
}

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

/// A stage with the picture that any window of 100 × 100 pixels must show of it.
struct PicturedStage : FullViewStage
{
  Image expected;

  PicturedStage()
  {
    GView::set_preferred_window_size(100, 100);
    expected = picture(*view);
  }
};

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
