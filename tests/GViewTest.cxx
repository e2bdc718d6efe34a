// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "GView.h"

#include "GAxis.h"
#include "GViewRenderPass.h"
#include "ViewFixture.h"

#include <vtkLight.h>
#include <vtkLightCollection.h>
#include <vtkMapper.h>
#include <vtkPropCollection.h>
#include <vtkRendererCollection.h>
#include <vtkShaderProgram.h>
#include <vtkShaderProperty.h>

#include <climits>

namespace {

using namespace morrow_test;

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
