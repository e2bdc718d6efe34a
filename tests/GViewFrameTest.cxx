// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// The frames of a view: what they show, whose models they update, and when there is none.
#include "GView.h"

#include "ViewFixture.h"

#include <vtkInformation.h>
#include <vtkInformationIntegerKey.h>
#include <vtkPropCollection.h>
#include <vtkTextActor.h>
#include <vtkTextProperty.h>

namespace {

using namespace morrow_test;

using Props = GView::Props;

// --- Props in frames -------------------------------------------------------------------------------------

using ViewFrameTest = ViewRenderTest;

TEST_F(ViewFrameTest, ShowsItsProps)
{
  const auto view = make_view();
  const auto square = flat_square();
  show(*view, square);
  // Half of each direction of 100 pixels.
  EXPECT_EQ(count_pixels(picture(*view), colour_is(kRed)), 50 * 50);
  view->remove_props({square});
  EXPECT_EQ(count_pixels(picture(*view), colour_is(kRed)), 0);
}

TEST_F(ViewFrameTest, LetsGoOfAShownPropsGraphicsResourcesWhenItIsRemoved)
{
  const auto a = make_view();
  const auto b = make_view();
  const auto square = flat_square();
  show(*a, square);
  const Image first = picture(*a);
  a->remove_props({square});
  show(*b, square); // its resources belong to another context now
  EXPECT_TRUE(picture(*b) == first);
  EXPECT_EQ(count_pixels(picture(*a), colour_is_not(kBlack)), 0);
}

TEST_F(ViewFrameTest, HidesVerticesUnlessToldOtherwise)
{
  const auto view = make_view();
  const auto square = flat_square();
  const vtkNew<vtkInformation> keys;
  keys->Set(MRUtil::VERTEX_VISIBILITY(), 0);
  square->SetPropertyKeys(keys);
  square->GetProperty()->SetRepresentationToWireframe();
  show(*view, square);
  EXPECT_EQ(count_pixels(picture(*view), colour_is(kRed)), 0);
  view->set_vertex_visibility(true);
  EXPECT_GT(count_pixels(picture(*view), colour_is(kRed)), 100);
  view->set_vertex_visibility(false);
  EXPECT_EQ(count_pixels(picture(*view), colour_is(kRed)), 0);
}

TEST_F(ViewFrameTest, AChangeOfVertexVisibilityRequestsNoFrame)
{
  const auto view = make_view();
  view->render();
  const FrameCounter frames(view->get_render_window());
  view->set_vertex_visibility(true);
  EXPECT_EQ(frames.starts(), 0);
}

// Translucent squares one behind the other come out in depth order, whichever was added first.
TEST_F(ViewFrameTest, PeelsTranslucentProps)
{
  const auto draw = [](bool near_one_first) {
    const auto view = make_view();
    const auto near_square = flat_actor(quad(-0.5, -0.5, 0.5, 0.5, 1.0), kRed);
    const auto far_square = flat_actor(quad(-0.5, -0.5, 0.5, 0.5, 0.0), kGreen);
    near_square->GetProperty()->SetOpacity(0.75);
    far_square->GetProperty()->SetOpacity(0.75);
    if (near_one_first) {
      view->add_props({near_square, far_square});
    } else {
      view->add_props({far_square, near_square});
    }
    return picture(*view);
  };
  const Image image = draw(true);
  EXPECT_TRUE(image == draw(false));
  EXPECT_TRUE(colour_is({191, 48, 0}, 2)(image.at(50, 50))); // 0.75 red over 0.25 × 0.75 green over black
}

TEST_F(ViewFrameTest, ShadesWithItsHeadlightAndAmbientLight)
{
  const auto view = make_view();
  const auto square = lit_actor(quad(-0.5, -0.5, 0.5, 0.5), kWhite);
  show(*view, square);
  // Facing the headlight: its colour times its intensity.
  EXPECT_TRUE(colour_is({230, 230, 230}, 1)(picture(*view).at(50, 50))); // 0.95 × 0.95 × 255
  square->GetProperty()->SetDiffuse(0.0);
  square->GetProperty()->SetAmbient(0.4);
  EXPECT_TRUE(colour_is({102, 102, 102}, 1)(picture(*view).at(50, 50))); // 1 × 0.4 × 255
}

// --- Frames and updates
// -------------------------------------------------------------------------------------------

// Once by render() itself and once by the observer of the window's start event.
TEST_F(ViewFrameTest, UpdatesTheModelsTwiceInAFrameOfItsOwn)
{
  ViewStage stage;
  stage.view->render();
  EXPECT_EQ(stage.model.updates, 2);
  stage.view->render();
  EXPECT_EQ(stage.model.updates, 4);
}

TEST_F(ViewFrameTest, UpdatesTheModelsOnceInAFrameThatTheWindowStarts)
{
  ViewStage stage;
  stage.window()->Render();
  EXPECT_EQ(stage.model.updates, 1);
  stage.window()->Render();
  EXPECT_EQ(stage.model.updates, 2);
}

TEST_F(ViewFrameTest, RendersTheWindowOnce)
{
  ViewStage stage;
  const FrameCounter window(stage.window());
  const FrameCounter renderer(stage.view->get_renderer());
  stage.view->render();
  EXPECT_EQ(window.starts(), 1);
  EXPECT_EQ(window.ends(), 1);
  EXPECT_EQ(renderer.starts(), 1);
}

TEST_F(ViewFrameTest, ShowsAPartInTheFrameWhoseUpdateAddedIt)
{
  for (const bool by_window : {false, true}) {
    ViewStage stage;
    const auto data = quad(-0.5, -0.5, 0.5, 0.5);
    stage.model.on_update = [&] { stage.model.add_part(data, show_flat(kGreen)); };
    stage.view->get_renderer()->GetActiveCamera()->SetClippingRange(1.0, 20.0);
    const Image image = by_window ? picture(stage.window()) : picture(*stage.view);
    EXPECT_EQ(count_pixels(image, colour_is(kGreen)), 50 * 50) << by_window;
  }
}

TEST_F(ViewFrameTest, HidesAPartInTheFrameWhoseUpdateRemovedIt)
{
  ViewStage stage;
  const auto data = quad(-0.5, -0.5, 0.5, 0.5);
  stage.model.add_part(data, show_flat(kGreen));
  ASSERT_EQ(count_pixels(picture(*stage.view), colour_is(kGreen)), 50 * 50);
  stage.model.on_update = [&] { stage.model.remove_part(data); };
  EXPECT_EQ(count_pixels(picture(stage.window()), colour_is(kGreen)), 0);
}

TEST_F(ViewFrameTest, FitsTheClippingRangeAfterTheUpdate)
{
  ViewStage stage;
  const auto far_away = quad(-0.5, -0.5, 0.5, 0.5, -5000.0);
  stage.model.on_update = [&] { stage.model.add_part(far_away, show_flat(kGreen)); };
  stage.view->get_renderer()->GetActiveCamera()->SetClippingRange(1.0, 20.0);
  EXPECT_EQ(count_pixels(picture(*stage.view), colour_is(kGreen)), 50 * 50);
  EXPECT_GT(stage.view->get_renderer()->GetActiveCamera()->GetClippingRange()[1], 5010.0);
}

TEST_F(ViewFrameTest, AFrameOfTheWindowLeavesTheClippingRangeAlone)
{
  const auto view = make_view();
  show(*view, flat_actor(quad(-0.5, -0.5, 0.5, 0.5, -5000.0), kGreen));
  view->get_renderer()->GetActiveCamera()->SetClippingRange(1.0, 20.0);
  EXPECT_EQ(count_pixels(picture(view->get_render_window()), colour_is(kGreen)), 0);
  EXPECT_EQ(view->get_renderer()->GetActiveCamera()->GetClippingRange()[1], 20.0);
}

TEST_F(ViewFrameTest, RendersWithoutModelsAndProps)
{
  const auto view = make_view(20, 10);
  EXPECT_EQ(count_pixels(picture(*view), colour_is(kBlack)), 200);
}

TEST_F(ViewFrameTest, DoesNothingWithoutAWindow)
{
  ViewStage stage;
  stage.view->set_render_window(nullptr);
  stage.view->render();
  EXPECT_EQ(stage.model.updates, 0);
}

TEST_F(ViewFrameTest, AllRendersTheRegisteredViewsInRegistryOrder)
{
  const auto a = make_view(20, 20);
  const auto b = make_view(20, 20);
  const auto loose = make_view(20, 20);
  GView::add_global_view(a);
  GView::add_global_view(b);
  std::vector<const GView*> order;
  const EventHook hook_a(a->get_render_window(), vtkCommand::StartEvent, [&] { order.push_back(a.get()); });
  const EventHook hook_b(b->get_render_window(), vtkCommand::StartEvent, [&] { order.push_back(b.get()); });
  const FrameCounter loose_frames(loose->get_render_window());
  GView::render_all();
  std::vector<const GView*> expected;
  for (const auto& view : GView::all_views()) {
    expected.push_back(view.get());
  }
  EXPECT_EQ(order, expected);
  EXPECT_EQ(order.size(), 2U);
  EXPECT_EQ(loose_frames.starts(), 0);
}

TEST_F(ViewFrameTest, AllUpdatesTheModelsAndFitsTheClippingRange)
{
  ViewStage stage;
  show(*stage.view, flat_actor(quad(-0.5, -0.5, 0.5, 0.5, -5000.0), kGreen));
  GView::add_global_view(stage.view);
  GView::render_all();
  EXPECT_EQ(stage.model.updates, 2);
  EXPECT_EQ(count_pixels(read_pixels(stage.window()), colour_is(kGreen)), 50 * 50);
}

TEST_F(ViewFrameTest, AllWithoutRegisteredViewsDoesNothing)
{
  EXPECT_NO_THROW(GView::render_all());
}

TEST_F(ViewFrameTest, AllHoldsViewsThatLeaveTheRegistryMeanwhile)
{
  GModelSet set;
  ScriptedModel model;
  set.add_model(&model);
  model.on_update = [] {
    while (!GView::all_views().empty()) {
      GView::remove_global_view(*GView::all_views().begin());
    }
  };
  std::vector<std::shared_ptr<GView* const>> handles;
  const vtkSmartPointer<vtkRenderWindow> windows[2] = {make_window(), make_window()};
  for (const auto& window : windows) {
    auto view = make_view(20, 20);
    view->set_render_window(window);
    view->set_model_set(&set);
    handles.push_back(view->handle());
    GView::add_global_view(view);
  }
  const FrameCounter first(windows[0]);
  const FrameCounter second(windows[1]);
  GView::render_all();
  EXPECT_EQ(first.ends(), 1);
  EXPECT_EQ(second.ends(), 1);
  EXPECT_EQ(*handles[0], nullptr); // let go of afterwards
  EXPECT_EQ(*handles[1], nullptr);
}

TEST_F(ViewFrameTest, AllDoesNotRenderViewsThatJoinMeanwhile)
{
  ViewStage stage;
  GView::add_global_view(stage.view);
  const auto late = make_view(20, 20);
  const FrameCounter late_frames(late->get_render_window());
  stage.model.on_update = [&] { GView::add_global_view(late); };
  GView::render_all();
  EXPECT_EQ(late_frames.starts(), 0);
  stage.model.on_update = nullptr;
  GView::render_all();
  EXPECT_EQ(late_frames.starts(), 1);
}

// --- Updates alone
// ------------------------------------------------------------------------------------------------

using ViewUpdateTest = ViewTest;

TEST_F(ViewUpdateTest, UpdatesOnceWithoutRendering)
{
  ViewStage stage;
  const FrameCounter frames(stage.window());
  stage.view->update_models();
  EXPECT_EQ(stage.model.updates, 1);
  EXPECT_EQ(frames.starts(), 0);
  EXPECT_NE(stage.window()->GetNeverRendered(), 0);
}

TEST_F(ViewUpdateTest, DoesNothingWithoutAModelSet)
{
  ViewStage stage;
  stage.view->set_model_set(nullptr);
  stage.view->update_models();
  EXPECT_EQ(stage.model.updates, 0);
}

TEST_F(ViewUpdateTest, NeedsNoWindow)
{
  ViewStage stage;
  stage.view->set_render_window(nullptr);
  stage.view->update_models();
  EXPECT_EQ(stage.model.updates, 1);
}

TEST_F(ViewUpdateTest, DoesNothingWhileTheStatusIsNotNormal)
{
  ViewStage stage;
  for (const auto status : {MRUtil::GRAPHICS_DISABLED, MRUtil::GRAPHICS_SUSPENDED}) {
    MRUtil::set_graphics_status(status);
    stage.view->update_models();
    EXPECT_EQ(stage.model.updates, 0) << status;
  }
  MRUtil::set_graphics_status(MRUtil::GRAPHICS_NORMAL);
  stage.view->update_models();
  EXPECT_EQ(stage.model.updates, 1);
}

TEST_F(ViewUpdateTest, DoesNothingFromInsideAnUpdate)
{
  ViewStage stage;
  stage.model.on_update = [&] { stage.view->update_models(); };
  stage.view->update_models();
  EXPECT_EQ(stage.model.updates, 1);
}

TEST_F(ViewUpdateTest, PassesAnExceptionOnAndWorksAgain)
{
  ViewStage stage;
  stage.model.on_update = [] { throw HostError("update"); };
  EXPECT_EQ(thrown_by([&] { stage.view->update_models(); }), "update");
  stage.model.on_update = nullptr;
  stage.view->update_models();
  EXPECT_EQ(stage.model.updates, 2);
}

// --- Model set
// ----------------------------------------------------------------------------------------------------

using ViewModelSetTest = ViewTest;

TEST_F(ViewModelSetTest, TakesTheViewIn)
{
  GModelSet set;
  PlainView view;
  view.set_model_set(&set);
  EXPECT_EQ(view.get_model_set(), &set);
  EXPECT_EQ(set.views(), std::vector<GView*>{&view});
  view.set_model_set(&set);
  EXPECT_EQ(set.views(), std::vector<GView*>{&view});
}

TEST_F(ViewModelSetTest, TheSameOneAgainChangesNothing)
{
  GModelSet set;
  ScriptedModel model;
  set.add_model(&model);
  const auto data = one_triangle();
  int calls = 0;
  model.add_part(data, [&](vtkDataObject*, GView*) -> Props {
    ++calls;
    return {flat_square()};
  });
  GView a;
  GView b;
  a.set_model_set(&set);
  b.set_model_set(&set);
  a.set_model_set(&set);
  EXPECT_EQ(set.views(), (std::vector<GView*>{&a, &b}));
  EXPECT_EQ(calls, 2);
}

TEST_F(ViewModelSetTest, ChangesFromOneToAnother)
{
  GModelSet a;
  GModelSet b;
  ScriptedModel model;
  a.add_model(&model);
  const auto data = one_triangle();
  model.add_part(data, show_flat(kRed));
  PlainView view;
  view.set_model_set(&a);
  EXPECT_EQ(view.get_renderer()->GetViewProps()->GetNumberOfItems(), 2); // the part and the labels
  view.set_model_set(&b);
  EXPECT_EQ(view.get_model_set(), &b);
  EXPECT_TRUE(a.views().empty());
  EXPECT_EQ(b.views(), std::vector<GView*>{&view});
  EXPECT_EQ(view.get_renderer()->GetViewProps()->GetNumberOfItems(), 0);
}

TEST_F(ViewModelSetTest, NullLeavesIt)
{
  GModelSet set;
  PlainView view;
  view.set_model_set(nullptr);
  view.set_model_set(&set);
  view.set_model_set(nullptr);
  EXPECT_EQ(view.get_model_set(), nullptr);
  EXPECT_TRUE(set.views().empty());
}

TEST_F(ViewModelSetTest, AgreesWithASetThatIsChangedByHand)
{
  PlainView view;
  {
    GModelSet set;
    set.add_view(&view);
    EXPECT_EQ(view.get_model_set(), &set);
    set.remove_view(&view);
    EXPECT_EQ(view.get_model_set(), nullptr);
    set.add_view(&view);
  }
  EXPECT_EQ(view.get_model_set(), nullptr); // the set is gone
}

TEST_F(ViewModelSetTest, IsLeftWhenItsPropFunctionThrows)
{
  GModelSet set;
  ScriptedModel model;
  set.add_model(&model);
  const auto data = one_triangle();
  model.add_part(data, [](vtkDataObject*, GView*) -> Props { throw HostError("props"); });
  PlainView view;
  EXPECT_EQ(thrown_by([&] { view.set_model_set(&set); }), "props");
  EXPECT_EQ(view.get_model_set(), nullptr);
  EXPECT_TRUE(set.views().empty());
  EXPECT_EQ(view.get_renderer()->GetViewProps()->GetNumberOfItems(), 0);
}

TEST_F(ViewModelSetTest, MayBeChangedFromAPropFunction)
{
  GModelSet a;
  GModelSet b;
  ScriptedModel model;
  a.add_model(&model);
  PlainView view;
  const auto data = one_triangle();
  model.add_part(data, [&](vtkDataObject*, GView*) -> Props {
    view.set_model_set(&b);
    return {flat_square()};
  });
  view.set_model_set(&a);
  EXPECT_EQ(view.get_model_set(), &b);
  EXPECT_TRUE(a.views().empty());
  EXPECT_EQ(b.views(), std::vector<GView*>{&view});
  EXPECT_EQ(view.get_renderer()->GetViewProps()->GetNumberOfItems(), 0);
}

// --- Graphics status
// ----------------------------------------------------------------------------------------------

using ViewStatusTest = ViewRenderTest;

TEST_F(ViewStatusTest, NothingIsRenderedOrUpdatedWhileItIsNotNormal)
{
  ViewStage stage;
  GView::add_global_view(stage.view);
  const FrameCounter frames(stage.window());
  for (const auto status : {MRUtil::GRAPHICS_DISABLED, MRUtil::GRAPHICS_SUSPENDED}) {
    MRUtil::set_graphics_status(status);
    stage.view->render();
    GView::render_all();
    EXPECT_EQ(frames.starts(), 0) << status;
    EXPECT_EQ(stage.model.updates, 0) << status;
  }
}

TEST_F(ViewStatusTest, AResumedViewRendersAgain)
{
  ViewStage stage;
  const FrameCounter frames(stage.window());
  MRUtil::set_graphics_status(MRUtil::GRAPHICS_SUSPENDED);
  stage.view->render();
  MRUtil::set_graphics_status(MRUtil::GRAPHICS_RESUME);
  stage.view->render();
  EXPECT_EQ(frames.ends(), 1);
  EXPECT_EQ(stage.model.updates, 2);
}

TEST_F(ViewStatusTest, ADisabledViewIsNotResumed)
{
  ViewStage stage;
  const FrameCounter frames(stage.window());
  MRUtil::set_graphics_status(MRUtil::GRAPHICS_DISABLED);
  MRUtil::set_graphics_status(MRUtil::GRAPHICS_RESUME);
  stage.view->render();
  EXPECT_EQ(frames.starts(), 0);
}

TEST_F(ViewStatusTest, AFrameOfTheWindowIsAbortedBeforeTheUpdate)
{
  ViewStage stage;
  stage.view->render();
  stage.model.updates = 0;
  for (const auto status : {MRUtil::GRAPHICS_DISABLED, MRUtil::GRAPHICS_SUSPENDED}) {
    MRUtil::set_graphics_status(status);
    stage.window()->Render();
    EXPECT_NE(stage.window()->GetAbortRender(), 0) << status;
    EXPECT_EQ(stage.model.updates, 0) << status;
  }
}

TEST_F(ViewStatusTest, AFrameIsNotAbortedWhileItIsNormal)
{
  const auto view = make_view();
  view->get_render_window()->Render();
  EXPECT_EQ(view->get_render_window()->GetAbortRender(), 0);
}

void expect_an_expose_keeps_the_picture(FullViewStage& stage)
{
  const Image before = picture(*stage.view);
  ASSERT_GT(count_pixels(before, colour_is(kRed)), 500);
  ASSERT_GT(count_pixels(before, colour_is(kGreen)), 100);
  ASSERT_GT(count_pixels(before, colour_is({0, 0, 128}, 2)), 500);
  ASSERT_GT(count_pixels(before, colour_is(kYellow, 100)), 5);
  stage.square->VisibilityOff(); // a frame that is drawn would show it
  for (const auto status : {MRUtil::GRAPHICS_DISABLED, MRUtil::GRAPHICS_SUSPENDED}) {
    MRUtil::set_graphics_status(status);
    for (int time = 0; time < 3; ++time) {
      EXPECT_TRUE(picture(stage.window()) == before) << status << " " << time;
    }
  }
  MRUtil::set_graphics_status(MRUtil::GRAPHICS_NORMAL);
  EXPECT_EQ(count_pixels(picture(*stage.view), colour_is(kRed)), 0);
}

TEST_F(ViewStatusTest, AnExposeKeepsThePictureOfTheLastFrame)
{
  FullViewStage stage;
  expect_an_expose_keeps_the_picture(stage);
}

TEST_F(ViewStatusTest, AnExposeKeepsThePictureOffscreen)
{
  GView::set_offscreen(true);
  FullViewStage stage;
  expect_an_expose_keeps_the_picture(stage);
}

TEST_F(ViewStatusTest, AnExposeKeepsThePictureWithAnEmptyOverlay)
{
  FullViewStage stage;
  stage.view->enable_overlay();
  expect_an_expose_keeps_the_picture(stage);
}

TEST_F(ViewStatusTest, AnExposeKeepsThePictureWithGeometryInTheOverlay)
{
  FullViewStage stage;
  stage.view->enable_overlay();
  stage.view->get_overlay_renderer()->AddActor(flat_actor(quad(-0.1, -0.1, 0.1, 0.1), kWhite));
  expect_an_expose_keeps_the_picture(stage);
}

// Text has soft edges: drawn a second time over itself, it would not look the same.
TEST_F(ViewStatusTest, AnExposeKeepsThePictureWithTextInTheOverlay)
{
  FullViewStage stage;
  stage.view->enable_overlay();
  const vtkNew<vtkTextActor> text;
  text->SetInput("overlay");
  text->GetTextProperty()->SetColor(1.0, 1.0, 1.0);
  text->SetPosition(5, 5);
  stage.view->get_overlay_renderer()->AddActor(text);
  expect_an_expose_keeps_the_picture(stage);
}

TEST_F(ViewStatusTest, AnExposeKeepsThePictureWithTranslucentGeometryInTheOverlay)
{
  FullViewStage stage;
  stage.view->enable_overlay();
  const auto veil = flat_actor(quad(-0.1, -0.1, 0.1, 0.1), kWhite);
  veil->GetProperty()->SetOpacity(0.5);
  stage.view->get_overlay_renderer()->AddActor(veil);
  expect_an_expose_keeps_the_picture(stage);
}

TEST_F(ViewStatusTest, AnExposeKeepsTheHostsChoiceWhetherTheOverlayIsDrawn)
{
  for (const int draw : {0, 1}) {
    const auto view = make_view();
    view->enable_overlay();
    view->get_overlay_renderer()->SetDraw(draw);
    view->render();
    MRUtil::set_graphics_status(MRUtil::GRAPHICS_SUSPENDED);
    view->get_render_window()->Render();
    view->get_render_window()->Render();
    MRUtil::set_graphics_status(MRUtil::GRAPHICS_RESUME);
    view->render();
    EXPECT_EQ(view->get_overlay_renderer()->GetDraw(), draw);
  }
}

TEST_F(ViewStatusTest, AnExposeKeepsThePictureOfTwoViewsInOneWindow)
{
  FullViewStage stage;
  const auto second = make_view();
  second->set_render_window(stage.window());
  stage.window()->SetSize(100, 100);
  stage.view->get_renderer()->SetViewport(0.0, 0.0, 1.0, 0.9);
  second->get_renderer()->SetViewport(0.0, 0.9, 1.0, 1.0);
  show(*second, flat_square(kWhite));
  stage.view->get_renderer()->GetActiveCamera()->SetParallelScale(0.9); // 50 pixels per unit as before
  expect_an_expose_keeps_the_picture(stage);
}

TEST_F(ViewStatusTest, AFirstFrameMayBeAborted)
{
  ViewStage stage;
  show(*stage.view, flat_square());
  MRUtil::set_graphics_status(MRUtil::GRAPHICS_SUSPENDED);
  stage.window()->Render();
  MRUtil::set_graphics_status(MRUtil::GRAPHICS_RESUME);
  EXPECT_EQ(count_pixels(picture(*stage.view), colour_is(kRed)), 50 * 50);
}

TEST_F(ViewStatusTest, TheSizeMayChangeBeforeAnAbortedFrame)
{
  ViewStage stage;
  show(*stage.view, flat_square());
  stage.view->render();
  MRUtil::set_graphics_status(MRUtil::GRAPHICS_SUSPENDED);
  stage.window()->SetSize(60, 40);
  stage.window()->Render();
  MRUtil::set_graphics_status(MRUtil::GRAPHICS_RESUME);
  EXPECT_EQ(count_pixels(picture(*stage.view), colour_is(kRed)), 20 * 20);
}

TEST_F(ViewStatusTest, MayChangeInTheMiddleOfAnUpdate)
{
  ViewStage stage;
  const FrameCounter frames(stage.window());
  stage.model.on_update = [] { MRUtil::set_graphics_status(MRUtil::GRAPHICS_SUSPENDED); };
  stage.view->render();
  EXPECT_EQ(stage.model.updates, 1); // the window's frame is started, and aborted before the second update
  stage.model.on_update = nullptr;
  MRUtil::set_graphics_status(MRUtil::GRAPHICS_RESUME);
  stage.view->render();
  EXPECT_EQ(stage.model.updates, 3);
}

// --- Framing ---------------------------------------------------------------------------------------------

TEST_F(ViewFrameTest, AResetBeforeTheFirstFrameIsTheOneAfterIt)
{
  for (const auto& [width, height] : {std::make_pair(80, 80), std::make_pair(120, 80)}) {
    const auto view = make_view(width, height);
    view->get_renderer()->GetActiveCamera()->ParallelProjectionOff();
    show(*view, lit_actor(sphere(3.0, 32), kRed));
    view->get_renderer()->ResetCamera();
    const Image first = picture(*view);
    view->get_renderer()->ResetCamera();
    EXPECT_TRUE(first == picture(*view)) << width << " x " << height;
  }
}

TEST_F(ViewFrameTest, FollowsItsWindowsSize)
{
  const auto view = make_view();
  show(*view, flat_actor(quad(-1.0, -1.0, 1.0, 1.0), kRed));
  const std::pair<int, int> sizes[] = {{100, 100}, {1, 1}, {200, 50}, {3, 400}, {100, 100}};
  for (const auto& [width, height] : sizes) {
    view->get_render_window()->SetSize(width, height);
    const Image image = picture(*view);
    EXPECT_EQ(image.width(), width);
    EXPECT_EQ(image.height(), height);
    EXPECT_GT(count_pixels(image, colour_is(kRed)), 0) << width << " x " << height;
  }
}

} // namespace
