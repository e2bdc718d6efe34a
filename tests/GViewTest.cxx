// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "GView.h"

#include "BrantVector.h"
#include "GAxis.h"
#include "GViewRenderPass.h"
#include "ViewFixture.h"

#include <vtkActor2D.h>
#include <vtkInformation.h>
#include <vtkInformationIntegerKey.h>
#include <vtkLight.h>
#include <vtkLightCollection.h>
#include <vtkMapper.h>
#include <vtkOpenGLPolyDataMapper.h>
#include <vtkPropCollection.h>
#include <vtkProperty.h>
#include <vtkRendererCollection.h>
#include <vtkShaderProgram.h>
#include <vtkShaderProperty.h>
#include <vtkTextActor.h>
#include <vtkTextProperty.h>
#include <vtk_glew.h>

#include <climits>
#include <stdexcept>
#include <string>
#include <tuple>

namespace {

using namespace morrow_test;

using Props = GView::Props;

std::vector<vtkProp*> props_of(vtkRenderer* renderer)
{
  std::vector<vtkProp*> props;
  vtkCollectionSimpleIterator cookie;
  renderer->GetViewProps()->InitTraversal(cookie);
  while (vtkProp* prop = renderer->GetViewProps()->GetNextProp(cookie)) {
    props.push_back(prop);
  }
  return props;
}

// --- A new view
// ---------------------------------------------------------------------------------------------------

using NewViewTest = ViewTest;

TEST_F(NewViewTest, IsBoundToAWindowThatIsNotMappedAndWasNeverRendered)
{
  const GView view;
  ASSERT_NE(view.get_render_window(), nullptr);
  EXPECT_EQ(view.get_render_window()->GetMapped(), 0);
  EXPECT_NE(view.get_render_window()->GetNeverRendered(), 0);
}

TEST_F(NewViewTest, HoldsTheOnlyReferenceOnItsWindow)
{
  auto view = std::make_unique<GView>();
  EXPECT_EQ(view->get_render_window()->GetReferenceCount(), 1);
  const vtkWeakPointer<vtkRenderWindow> window = view->get_render_window();
  view.reset();
  EXPECT_EQ(window, nullptr);
}

TEST_F(NewViewTest, HasAWindowAndRenderersOfItsOwn)
{
  const GView a;
  const GView b;
  EXPECT_NE(a.get_render_window(), b.get_render_window());
  EXPECT_NE(a.get_renderer(), b.get_renderer());
  EXPECT_NE(a.get_overlay_renderer(), b.get_overlay_renderer());
  EXPECT_NE(a.get_renderer(), a.get_overlay_renderer());
  EXPECT_NE(a.get_renderer()->GetPass(), b.get_renderer()->GetPass());
}

TEST_F(NewViewTest, PeelsAtMost40TimesWithOcclusionRatioOneTenth)
{
  const GView view;
  EXPECT_NE(view.get_renderer()->GetUseDepthPeeling(), 0);
  EXPECT_EQ(view.get_renderer()->GetOcclusionRatio(), 0.1);
  EXPECT_EQ(view.get_renderer()->GetMaximumNumberOfPeels(), 40);
}

TEST_F(NewViewTest, DrawsItsMainRendererWithItsRenderPass)
{
  const GView view;
  EXPECT_NE(GViewRenderPass::SafeDownCast(view.get_renderer()->GetPass()), nullptr);
  EXPECT_EQ(view.get_overlay_renderer()->GetPass(), nullptr);
}

TEST_F(NewViewTest, HasTheOverlayRendererOnLayer1AndWithoutInteraction)
{
  const GView view;
  EXPECT_EQ(view.get_overlay_renderer()->GetLayer(), 1);
  EXPECT_EQ(view.get_overlay_renderer()->GetInteractive(), 0);
  EXPECT_EQ(view.get_renderer()->GetLayer(), 0);
  EXPECT_NE(view.get_renderer()->GetInteractive(), 0);
}

TEST_F(NewViewTest, HasOnlyTheMainRendererInItsWindow)
{
  const GView view;
  vtkRenderWindow* window = view.get_render_window();
  EXPECT_EQ(window->GetRenderers()->GetNumberOfItems(), 1);
  EXPECT_NE(window->HasRenderer(view.get_renderer()), 0);
  EXPECT_EQ(view.get_renderer()->GetRenderWindow(), window);
  EXPECT_EQ(view.get_overlay_renderer()->GetRenderWindow(), nullptr);
}

TEST_F(NewViewTest, SetsUpItsWindowsBuffers)
{
  const GView view;
  vtkRenderWindow* window = view.get_render_window();
  EXPECT_EQ(window->GetNumberOfLayers(), 2);
  EXPECT_NE(window->GetAlphaBitPlanes(), 0);
  EXPECT_EQ(window->GetMultiSamples(), 0);
  EXPECT_NE(window->GetDoubleBuffer(), 0);
}

TEST_F(NewViewTest, IsMonoscopicAndOnScreen)
{
  const GView view;
  EXPECT_EQ(view.get_render_window()->GetStereoRender(), 0);
  EXPECT_EQ(view.get_render_window()->GetStereoCapableWindow(), 0);
  EXPECT_EQ(view.get_render_window()->GetOffScreenRendering(), 0);
}

TEST_F(NewViewTest, HasAWindowOf500By500AtTheOrigin)
{
  const GView view;
  EXPECT_EQ(view.get_render_window()->GetSize()[0], 500);
  EXPECT_EQ(view.get_render_window()->GetSize()[1], 500);
  EXPECT_EQ(view.get_render_window()->GetPosition()[0], 0);
  EXPECT_EQ(view.get_render_window()->GetPosition()[1], 0);
}

TEST_F(NewViewTest, WatchesTheStartOfItsWindowsRenders)
{
  const GView view;
  EXPECT_NE(view.get_render_window()->HasObserver(vtkCommand::StartEvent), 0);
}

TEST_F(NewViewTest, HasNoNameAndNoModelSet)
{
  const GView view;
  EXPECT_EQ(view.get_name(), "");
  EXPECT_EQ(view.get_model_set(), nullptr);
}

TEST_F(NewViewTest, HasId1AndIsNotRegistered)
{
  const GView view;
  EXPECT_EQ(view.get_id(), 1);
  EXPECT_TRUE(GView::all_views().empty());
  EXPECT_EQ(GView::get_current_view(), nullptr);
}

TEST_F(NewViewTest, ShowsItsTriadAndNothingElse)
{
  const GView view;
  EXPECT_TRUE(view.get_triad_vis());
  const auto props = props_of(view.get_renderer());
  ASSERT_EQ(props.size(), 1U);
  auto* triad = GAxis::SafeDownCast(props.front());
  ASSERT_NE(triad, nullptr);
  EXPECT_EQ(triad->get_type(), MRUtil::AXIS_2D);
  EXPECT_EQ(triad->get_renderer(), view.get_renderer());
  EXPECT_EQ(view.get_overlay_renderer()->GetViewProps()->GetNumberOfItems(), 0);
}

// The window gets its title before the view asks for an id, so the title tells the id of a view without one.
TEST_F(NewViewTest, IsTitledBeforeItHasAnId)
{
  const GView view;
  EXPECT_STREQ(view.get_render_window()->GetWindowName(), "Brant (-1)");
}

TEST_F(NewViewTest, TakesTheCurrentTitleOfAllViews)
{
  GView::set_title_bars("Mesher");
  const GView view;
  EXPECT_STREQ(view.get_render_window()->GetWindowName(), "Mesher");
}

TEST_F(NewViewTest, HasAGradientFromWhiteToBlack)
{
  const GView view;
  EXPECT_EQ(view.get_background(), 9);
  EXPECT_EQ(view.get_background2(), 0);
  const vtkRenderer* renderer = view.get_renderer();
  EXPECT_TRUE(const_cast<vtkRenderer*>(renderer)->GetGradientBackground());
  for (int channel = 0; channel < 3; ++channel) {
    EXPECT_EQ(view.get_renderer()->GetBackground()[channel], 1.0);
    EXPECT_EQ(view.get_renderer()->GetBackground2()[channel], 0.0);
  }
}

TEST_F(NewViewTest, TakesTheGlobalBackgrounds)
{
  GView::set_all_background(3);
  GView::set_all_background2(3);
  const GView view;
  EXPECT_EQ(view.get_background(), 3);
  EXPECT_EQ(view.get_background2(), 3);
  EXPECT_FALSE(view.get_renderer()->GetGradientBackground()); // two equal ids
  double rgb[3] = {-1.0, -1.0, -1.0};
  ASSERT_TRUE(BrantColorTable::color_id_to_rgb(3, rgb));
  for (int channel = 0; channel < 3; ++channel) {
    EXPECT_EQ(view.get_renderer()->GetBackground()[channel], rgb[channel]);
    EXPECT_EQ(view.get_renderer()->GetBackground2()[channel], rgb[channel]);
  }
}

TEST_F(NewViewTest, HasOneHeadlightOf95Percent)
{
  const GView view;
  vtkLightCollection* lights = view.get_renderer()->GetLights();
  ASSERT_EQ(lights->GetNumberOfItems(), 1);
  auto* light = vtkLight::SafeDownCast(lights->GetItemAsObject(0));
  EXPECT_TRUE(light->LightTypeIsHeadlight());
  const double expected = static_cast<double>(0.95F); // the intensities are floats
  for (int channel = 0; channel < 3; ++channel) {
    EXPECT_EQ(light->GetDiffuseColor()[channel], expected);
    EXPECT_EQ(light->GetSpecularColor()[channel], expected);
  }
  EXPECT_NEAR(light->GetIntensity(), expected, 1e-7); // the mean of three equal components
}

TEST_F(NewViewTest, HasFullAmbientLight)
{
  const GView view;
  for (int channel = 0; channel < 3; ++channel) {
    EXPECT_EQ(view.get_renderer()->GetAmbient()[channel], 1.0);
  }
}

TEST_F(NewViewTest, SwitchesStereoOffForWindowsBoundLater)
{
  GView first;
  GView::set_stereo_mode(true);
  const GView second;
  EXPECT_FALSE(GView::get_stereo_mode());
  EXPECT_EQ(second.get_render_window()->GetStereoRender(), 0);
  first.set_render_window(vtkSmartPointer<vtkRenderWindow>::New());
  EXPECT_EQ(first.get_render_window()->GetStereoRender(), 0);
}

TEST_F(NewViewTest, LeavesTheStereoOfExistingWindowsAlone)
{
  GView first;
  GView::set_stereo_mode(true);
  first.set_render_window(vtkSmartPointer<vtkRenderWindow>::New());
  const GView second;
  EXPECT_NE(first.get_render_window()->GetStereoRender(), 0);
}

// Also one that is built in the memory of an earlier one, which VTK's renderers do not clean.
TEST_F(NewViewTest, KnowsItsAspectRatioBeforeTheFirstFrame)
{
  GView::set_preferred_window_size(60, 120);
  for (int i = 0; i < 20; ++i) {
    const GView view;
    for (vtkRenderer* renderer : {view.get_renderer(), view.get_overlay_renderer()}) {
      renderer->SetRenderWindow(view.get_render_window());
      renderer->ResetCamera(-1.0, 1.0, -1.0, 1.0, -1.0, 1.0);
      EXPECT_EQ(renderer->GetAspect()[0], 0.5) << i;
    }
    view.get_overlay_renderer()->SetRenderWindow(nullptr);
  }
}

TEST_F(NewViewTest, HasAViewportCommandForItself)
{
  GView view;
  vtkCallbackCommand* command = view.update_viewport_command();
  ASSERT_NE(command, nullptr);
  EXPECT_EQ(command->GetClientData(), &view);
  EXPECT_EQ(command->Callback, &GView::SetViewportShaderUniform);
}

TEST_F(NewViewTest, HandsOutACellWithItsAddress)
{
  auto view = std::make_unique<GView>();
  const auto handle = view->handle();
  EXPECT_EQ(*handle, view.get());
  EXPECT_EQ(view->handle(), handle);
  view.reset();
  EXPECT_EQ(*handle, nullptr);
}

// --- Backgrounds
// --------------------------------------------------------------------------------------------------

using BackgroundTest = ViewTest;

TEST_F(BackgroundTest, EqualIdsSwitchTheGradientOff)
{
  GView view;
  view.set_background(4);
  view.set_background2(4);
  EXPECT_FALSE(view.get_renderer()->GetGradientBackground());
  view.set_background2(5);
  EXPECT_TRUE(view.get_renderer()->GetGradientBackground());
  view.set_background(5);
  EXPECT_FALSE(view.get_renderer()->GetGradientBackground());
}

// It is the ids that count: two ids of the same colour still make a gradient, of one colour.
TEST_F(BackgroundTest, TwoIdsOfOneColourAreAGradient)
{
  const int copy_of_black = BrantColorTable::add_color("night", BrantColor(0, 0, 0));
  GView view;
  view.set_background(copy_of_black);
  EXPECT_EQ(view.get_background2(), 0);
  EXPECT_TRUE(view.get_renderer()->GetGradientBackground());
}

TEST_F(BackgroundTest, MinusOneTakesTheGlobalIds)
{
  GView view;
  GView::set_all_background(6); // the view is not registered
  GView::set_all_background2(7);
  view.set_background(2);
  view.set_background2(3);
  view.set_background(-1);
  view.set_background2(-1);
  EXPECT_EQ(view.get_background(), 6);
  EXPECT_EQ(view.get_background2(), 7);
}

TEST_F(BackgroundTest, TheColoursComeFromTheTable)
{
  GView view;
  for (int id = 0; id < BrantColorTable::num_fixed_colors(); ++id) {
    double rgb[3] = {-1.0, -1.0, -1.0};
    ASSERT_TRUE(BrantColorTable::color_id_to_rgb(id, rgb));
    view.set_background(id);
    view.set_background2(id);
    for (int channel = 0; channel < 3; ++channel) {
      EXPECT_EQ(view.get_renderer()->GetBackground()[channel], rgb[channel]) << id;
      EXPECT_EQ(view.get_renderer()->GetBackground2()[channel], rgb[channel]) << id;
    }
  }
}

TEST_F(BackgroundTest, TakesTheHostsColours)
{
  const int id = BrantColorTable::add_color("sand", BrantColor(51, 102, 255));
  GView view;
  view.set_background(id);
  EXPECT_EQ(view.get_renderer()->GetBackground()[0], 51 / 255.0);
  EXPECT_EQ(view.get_renderer()->GetBackground()[1], 102 / 255.0);
  EXPECT_EQ(view.get_renderer()->GetBackground()[2], 1.0);
}

TEST_F(BackgroundTest, AnUnknownIdIsKeptAndShowsTheDefaultColour)
{
  GView view;
  for (const int id : {-2, 17, INT_MAX, INT_MIN}) {
    view.set_background(id);
    EXPECT_EQ(view.get_background(), id);
    for (int channel = 0; channel < 3; ++channel) {
      EXPECT_EQ(view.get_renderer()->GetBackground()[channel], 0.0) << id; // black
    }
  }
}

TEST_F(BackgroundTest, OneColourLeavesTheOtherAlone)
{
  GView view;
  view.set_background(2);
  EXPECT_EQ(view.get_background2(), 0);
  EXPECT_EQ(view.get_renderer()->GetBackground2()[0], 0.0);
  view.set_background2(9);
  EXPECT_EQ(view.get_background(), 2);
}

TEST_F(BackgroundTest, OfAllViewsIsWhiteAndBlackAtFirst)
{
  EXPECT_EQ(GView::get_all_background(), 9);
  EXPECT_EQ(GView::get_all_background2(), 0);
}

TEST_F(BackgroundTest, OfAllViewsReachesTheRegisteredOnesOnly)
{
  const auto registered = std::make_shared<GView>();
  const auto loose = std::make_shared<GView>();
  GView::add_global_view(registered);
  GView::set_all_background(3);
  GView::set_all_background2(4);
  EXPECT_EQ(GView::get_all_background(), 3);
  EXPECT_EQ(GView::get_all_background2(), 4);
  EXPECT_EQ(registered->get_background(), 3);
  EXPECT_EQ(registered->get_background2(), 4);
  EXPECT_TRUE(registered->get_renderer()->GetGradientBackground());
  EXPECT_EQ(loose->get_background(), 9);
  EXPECT_EQ(loose->get_background2(), 0);
}

TEST_F(BackgroundTest, OfAllViewsReplacesOwnChoices)
{
  const auto view = std::make_shared<GView>();
  GView::add_global_view(view);
  view->set_background(2);
  GView::set_all_background(5);
  EXPECT_EQ(view->get_background(), 5);
}

TEST_F(BackgroundTest, MinusOneForAllViewsBringsTheDefaultsBack)
{
  const auto view = std::make_shared<GView>();
  GView::add_global_view(view);
  GView::set_all_background(3);
  GView::set_all_background2(4);
  GView::set_all_background(-1);
  GView::set_all_background2(-1);
  EXPECT_EQ(GView::get_all_background(), 9);
  EXPECT_EQ(GView::get_all_background2(), 0);
  EXPECT_EQ(view->get_background(), 9);
  EXPECT_EQ(view->get_background2(), 0);
}

using BackgroundPictureTest = ViewRenderTest;

TEST_F(BackgroundPictureTest, OneColourFillsTheWindow)
{
  const auto view = make_view(40, 30);
  const int id = BrantColorTable::add_color("sand", BrantColor(51, 102, 255));
  view->set_background(id);
  view->set_background2(id);
  const Image image = picture(*view);
  EXPECT_EQ(count_pixels(image, colour_is({51, 102, 255})), 40 * 30);
}

TEST_F(BackgroundPictureTest, AGradientHasTheFirstColourAtTheBottom)
{
  const auto view = make_view(40, 100);
  view->set_background(9);
  view->set_background2(0);
  const Image image = picture(*view);
  EXPECT_TRUE(colour_is(kWhite, 3)(image.at(20, 0)));
  EXPECT_TRUE(colour_is({128, 128, 128}, 3)(image.at(20, 50)));
  EXPECT_TRUE(colour_is(kBlack, 3)(image.at(20, 99)));
}

// --- Preferences
// --------------------------------------------------------------------------------------------------

using PreferencesTest = ViewTest;

std::pair<int, int> preferred_size()
{
  int width = -1;
  int height = -1;
  GView::get_preferred_window_size(width, height);
  return {width, height};
}

std::pair<int, int> position_of_a_new_window()
{
  const GView view;
  const int* position = view.get_render_window()->GetPosition();
  return {position[0], position[1]};
}

TEST_F(PreferencesTest, TheSizeIs500By500AtFirst)
{
  EXPECT_EQ(preferred_size(), std::make_pair(500, 500));
}

TEST_F(PreferencesTest, ASizeComponentThatIsNotPositiveIsLeftAsItIs)
{
  GView::set_preferred_window_size(0, 300);
  EXPECT_EQ(preferred_size(), std::make_pair(500, 300));
  GView::set_preferred_window_size(200, -7);
  EXPECT_EQ(preferred_size(), std::make_pair(200, 300));
  GView::set_preferred_window_size(INT_MIN, 0);
  EXPECT_EQ(preferred_size(), std::make_pair(200, 300));
  GView::set_preferred_window_size(1, 1);
  EXPECT_EQ(preferred_size(), std::make_pair(1, 1));
}

TEST_F(PreferencesTest, APositionComponentOfMinusOneIsLeftAsItIs)
{
  GView::set_preferred_window_position(30, 40);
  EXPECT_EQ(position_of_a_new_window(), std::make_pair(30, 40));
  GView::set_preferred_window_position(-1, 50);
  EXPECT_EQ(position_of_a_new_window(), std::make_pair(30, 50));
  GView::set_preferred_window_position(60, -1);
  EXPECT_EQ(position_of_a_new_window(), std::make_pair(60, 50));
  GView::set_preferred_window_position(-1, -1);
  EXPECT_EQ(position_of_a_new_window(), std::make_pair(60, 50));
}

// Screens to the left of and above the first one have negative coordinates.
TEST_F(PreferencesTest, OtherNegativePositionsAreTaken)
{
  GView::set_preferred_window_position(-2, -300);
  EXPECT_EQ(position_of_a_new_window(), std::make_pair(-2, -300));
  GView::set_preferred_window_position(0, 0);
  EXPECT_EQ(position_of_a_new_window(), std::make_pair(0, 0));
}

TEST_F(PreferencesTest, SizeAndPositionAreForWindowsBoundAfterwards)
{
  GView before;
  GView::set_preferred_window_size(320, 240);
  GView::set_preferred_window_position(11, 12);
  EXPECT_EQ(before.get_render_window()->GetSize()[0], 500);
  EXPECT_EQ(before.get_render_window()->GetPosition()[0], 0);
  const GView after;
  EXPECT_EQ(after.get_render_window()->GetSize()[0], 320);
  EXPECT_EQ(after.get_render_window()->GetSize()[1], 240);
  EXPECT_EQ(after.get_render_window()->GetPosition()[0], 11);
  EXPECT_EQ(after.get_render_window()->GetPosition()[1], 12);
}

TEST_F(PreferencesTest, OffscreenIsForWindowsBoundAfterwards)
{
  EXPECT_FALSE(GView::get_offscreen());
  const GView before;
  GView::set_offscreen(true);
  EXPECT_TRUE(GView::get_offscreen());
  EXPECT_EQ(before.get_render_window()->GetOffScreenRendering(), 0);
  const GView after;
  EXPECT_NE(after.get_render_window()->GetOffScreenRendering(), 0);
  GView::set_offscreen(false);
  EXPECT_FALSE(GView::get_offscreen());
  EXPECT_NE(after.get_render_window()->GetOffScreenRendering(), 0);
}

// --- Props
// --------------------------------------------------------------------------------------------------------

using ViewPropsTest = ViewTest;

TEST_F(ViewPropsTest, AreAddedToTheMainRendererInVectorOrder)
{
  PlainView view;
  const auto a = vtkSmartPointer<vtkActor>::New();
  const auto b = vtkSmartPointer<vtkActor>::New();
  const auto c = vtkSmartPointer<vtkActor>::New();
  view.add_props({c, a});
  view.add_props({b});
  EXPECT_EQ(props_of(view.get_renderer()), (std::vector<vtkProp*>{c, a, b}));
  EXPECT_TRUE(props_of(view.get_overlay_renderer()).empty());
}

TEST_F(ViewPropsTest, AreRemovedAndTheOthersKeepTheirOrder)
{
  PlainView view;
  const auto a = vtkSmartPointer<vtkActor>::New();
  const auto b = vtkSmartPointer<vtkActor>::New();
  const auto c = vtkSmartPointer<vtkActor>::New();
  view.add_props({a, b, c});
  view.remove_props({b});
  EXPECT_EQ(props_of(view.get_renderer()), (std::vector<vtkProp*>{a, c}));
  view.remove_props({c, a});
  EXPECT_TRUE(props_of(view.get_renderer()).empty());
}

TEST_F(ViewPropsTest, NullRepeatedAndAbsentOnesArePassedOver)
{
  PlainView view;
  const auto a = vtkSmartPointer<vtkActor>::New();
  const auto b = vtkSmartPointer<vtkActor>::New();
  view.add_props({nullptr, a, a, nullptr});
  view.add_props({a});
  EXPECT_EQ(props_of(view.get_renderer()), (std::vector<vtkProp*>{a}));
  view.remove_props({b, nullptr, a, a});
  EXPECT_TRUE(props_of(view.get_renderer()).empty());
  view.add_props({});
  view.remove_props({});
  EXPECT_TRUE(props_of(view.get_renderer()).empty());
}

TEST_F(ViewPropsTest, CanBeChangedWithoutAWindow)
{
  PlainView view;
  view.set_render_window(nullptr);
  const auto a = vtkSmartPointer<vtkActor>::New();
  view.add_props({a});
  EXPECT_EQ(props_of(view.get_renderer()), (std::vector<vtkProp*>{a}));
  view.remove_props({a});
  EXPECT_TRUE(props_of(view.get_renderer()).empty());
  EXPECT_EQ(a->GetReferenceCount(), 1);
}

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

// --- Viewport command
// ---------------------------------------------------------------------------------------------

using ViewportCommandTest = ViewRenderTest;

/// A square over the whole window whose colour is the window's size: red is the width, green the height.
vtkSmartPointer<vtkActor> size_meter(const char* uniform)
{
  const auto actor = flat_actor(quad(-50.0, -50.0, 50.0, 50.0), kBlue);
  vtkShaderProperty* shader = actor->GetShaderProperty();
  const std::string name = uniform;
  shader->AddFragmentShaderReplacement("//VTK::CustomUniforms::Dec", true,
                                       "uniform vec2 " + name + ";\n//VTK::CustomUniforms::Dec", false);
  shader->AddFragmentShaderReplacement("//VTK::Light::Impl", true,
                                       "gl_FragData[0] = vec4(" + name + " / 255.0, 0.0, 1.0);", false);
  return actor;
}

TEST_F(ViewportCommandTest, TellsTheShaderTheWindowsSize)
{
  const auto view = make_view(120, 70);
  const auto meter = size_meter("ViewportSize");
  meter->GetMapper()->AddObserver(vtkCommand::UpdateShaderEvent, view->update_viewport_command());
  show(*view, meter);
  EXPECT_EQ(count_pixels(picture(*view), colour_is({120, 70, 0})), 120 * 70);
  view->get_render_window()->SetSize(33, 44);
  EXPECT_EQ(count_pixels(picture(*view), colour_is({33, 44, 0})), 33 * 44);
}

TEST_F(ViewportCommandTest, SetsNoOtherUniform)
{
  const auto view = make_view(120, 70);
  const auto meter = size_meter("OtherSize");
  meter->GetMapper()->AddObserver(vtkCommand::UpdateShaderEvent, view->update_viewport_command());
  show(*view, meter);
  EXPECT_EQ(count_pixels(picture(*view), colour_is(kBlack)), 120 * 70);
}

TEST_F(ViewportCommandTest, IsHarmlessInAShaderWithoutUniforms)
{
  const auto view = make_view();
  const auto square = flat_square();
  square->GetMapper()->AddObserver(vtkCommand::UpdateShaderEvent, view->update_viewport_command());
  show(*view, square);
  EXPECT_EQ(count_pixels(picture(*view), colour_is(kRed)), 50 * 50);
}

TEST_F(ViewportCommandTest, TakesNullForAnything)
{
  const auto view = make_view();
  const auto event = static_cast<unsigned long>(vtkCommand::UpdateShaderEvent);
  GView::SetViewportShaderUniform(nullptr, event, view.get(), nullptr);
  GView::SetViewportShaderUniform(nullptr, event, nullptr, nullptr);
  const vtkNew<vtkShaderProgram> program;
  GView::SetViewportShaderUniform(nullptr, event, nullptr, program);
  view->set_render_window(nullptr);
  GView::SetViewportShaderUniform(nullptr, event, view.get(), nullptr);
  view->update_viewport_command()->Execute(nullptr, event, nullptr);
}

TEST_F(ViewportCommandTest, OfADeadViewDoesNothing)
{
  auto view = make_view();
  const vtkSmartPointer<vtkCallbackCommand> command = view->update_viewport_command();
  const auto meter = size_meter("ViewportSize");
  meter->GetMapper()->AddObserver(vtkCommand::UpdateShaderEvent, command);
  show(*view, meter);
  view->render();
  view.reset();
  EXPECT_EQ(command->GetClientData(), nullptr);
  const auto other = make_view(120, 70);
  show(*other, meter);
  EXPECT_EQ(count_pixels(picture(*other), colour_is(kBlack)), 120 * 70); // nobody sets the uniform
}

} // namespace
