// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "GAxis.h"
#include "GView.h"
#include "ViewFixture.h"
#include "vtkLegendActor.h"

#include <vtkCubeAxesActor2D.h>
#include <vtkPropCollection.h>
#include <vtkProperty2D.h>
#include <vtkRenderWindowInteractor.h>
#include <vtkRendererCollection.h>
#include <vtkScalarBarActor.h>
#include <vtkScalarBarWidget.h>
#include <vtkTextActor.h>
#include <vtkTextProperty.h>

#include <array>
#include <limits>

namespace {

using namespace morrow_test;

constexpr double Nan = std::numeric_limits<double>::quiet_NaN();

/// The first prop of a kind in a view's main renderer.
template<typename Prop>
Prop* find(const GView& view)
{
  for (vtkProp* prop : props_of(view.get_renderer())) {
    if (auto* found = Prop::SafeDownCast(prop)) {
      return found;
    }
  }
  return nullptr;
}

int num_props(const GView& view)
{
  return view.get_renderer()->GetViewProps()->GetNumberOfItems();
}

/// Shows everything there is.
void decorate(GView& view)
{
  view.set_title("title");
  view.set_triad_vis(true);
  view.set_axis_vis(true);
  view.set_cube_axes_vis(true);
  view.get_renderer()->GetActiveCamera()->ParallelProjectionOn();
  view.set_legend_vis(true);
  view.setup_scalar_bar(0.0, 1.0, false, {});
}

/// Hides it again.
void undecorate(GView& view)
{
  view.set_title("");
  view.set_triad_vis(false);
  view.set_axis_vis(false);
  view.set_cube_axes_vis(false);
  view.set_legend_vis(false);
  view.set_scalar_bar(nullptr);
}

class GViewDecorationsTest : public ViewRenderTest
{
protected:
  GViewDecorationsTest() : mView(make_view(300, 300)) {}

  void TearDown() override
  {
    mView.reset();
    GView().set_title_font_size(12);
    ViewRenderTest::TearDown();
  }

  std::shared_ptr<GView> mView;
};

// --- Title
// --------------------------------------------------------------------------------------------------------------

TEST_F(GViewDecorationsTest, ATitleComesAndGoes)
{
  mView->create_title();
  EXPECT_EQ(num_props(*mView), 0);
  mView->set_title("title");
  ASSERT_NE(find<vtkTextActor>(*mView), nullptr);
  EXPECT_GT(count_pixels(picture(*mView), colour_is_not(kBlack)), 20);
  mView->set_title("");
  EXPECT_EQ(count_pixels(picture(*mView), colour_is_not(kBlack)), 0);
  mView->set_title("title");
  EXPECT_GT(count_pixels(picture(*mView), colour_is_not(kBlack)), 20);
  mView->set_title(nullptr);
  EXPECT_EQ(num_props(*mView), 0);
}

TEST_F(GViewDecorationsTest, ATitleHasItsColour)
{
  const double red[3] = {1.0, 0.0, 0.0};
  mView->set_title_color(red);
  mView->set_title("title");
  EXPECT_GT(count_pixels(picture(*mView), colour_is(kRed, 60)), 10);
  const double bad[3] = {0.0, Nan, 0.0};
  mView->set_title_color(nullptr);
  mView->set_title_color(bad);
  EXPECT_EQ(find<vtkTextActor>(*mView)->GetTextProperty()->GetColor()[0], 1.0);
}

// Until it has a colour it can be read on the background that is at the top.
TEST_F(GViewDecorationsTest, ATitleCanBeReadOnAnyBackground)
{
  mView->set_title("title");
  const auto color = [this] {
    mView->render();
    return find<vtkTextActor>(*mView)->GetTextProperty()->GetColor()[0];
  };
  EXPECT_EQ(color(), 1.0);
  mView->set_background2(9); // black below, white above
  EXPECT_EQ(color(), 0.0);
  mView->set_background(9);
  EXPECT_EQ(color(), 0.0);
  mView->set_background2(0);
  EXPECT_EQ(color(), 1.0);
}

TEST_F(GViewDecorationsTest, TheTitlesSizeIsForThisViewAndForLaterTitles)
{
  const auto other = make_view();
  mView->set_title("title");
  other->set_title("title");
  mView->set_title_font_size(24);
  const auto later = make_view();
  later->set_title("title");
  EXPECT_EQ(find<vtkTextActor>(*mView)->GetTextProperty()->GetFontSize(), 24);
  EXPECT_EQ(find<vtkTextActor>(*other)->GetTextProperty()->GetFontSize(), 12);
  EXPECT_EQ(find<vtkTextActor>(*later)->GetTextProperty()->GetFontSize(), 24);
  mView->set_title_font_size(0);
  mView->set_title_font_size(-5);
  EXPECT_EQ(find<vtkTextActor>(*mView)->GetTextProperty()->GetFontSize(), 24);
}

// --- Triad
// --------------------------------------------------------------------------------------------------------------

TEST_F(GViewDecorationsTest, ANewViewHasATriad)
{
  const GView view;
  EXPECT_TRUE(view.get_triad_vis());
  auto* triad = find<GAxis>(view);
  ASSERT_NE(triad, nullptr);
  EXPECT_EQ(triad->get_type(), MRUtil::AXIS_2D);
  EXPECT_EQ(triad->get_renderer(), view.get_renderer());
}

TEST_F(GViewDecorationsTest, TheTriadComesAndGoes)
{
  EXPECT_FALSE(mView->get_triad_vis());
  EXPECT_EQ(count_pixels(picture(*mView), colour_is_not(kBlack)), 0);
  mView->set_triad_vis(true);
  mView->set_triad_vis(true);
  EXPECT_EQ(num_props(*mView), 1);
  const GAxis* triad = find<GAxis>(*mView);
  const PixelRegion seen = find_pixels(picture(*mView), colour_is_not(kBlack));
  EXPECT_GT(seen.count, 20);
  EXPECT_LT(seen.max_x, 100); // bottom left
  EXPECT_LT(seen.max_y, 100);
  mView->set_triad_vis(false);
  EXPECT_EQ(num_props(*mView), 0);
  mView->set_triad_vis(true);
  EXPECT_EQ(find<GAxis>(*mView), triad); // the same
}

TEST_F(GViewDecorationsTest, TheTriadsBorderBelongsToIt)
{
  mView->set_triad_vis(true);
  mView->render();
  int bounds[4]; // xmin, xmax, ymin, ymax
  find<GAxis>(*mView)->get_screen_bounds(mView->get_renderer(), bounds);
  ASSERT_LT(bounds[0], bounds[1]);
  for (const int x : {bounds[0], bounds[1]}) {
    for (const int y : {bounds[2], bounds[3]}) {
      EXPECT_TRUE(mView->triad_clicked(x, y));
    }
  }
  EXPECT_TRUE(mView->triad_clicked((bounds[0] + bounds[1]) / 2, (bounds[2] + bounds[3]) / 2));
  EXPECT_FALSE(mView->triad_clicked(bounds[0] - 1, bounds[2]));
  EXPECT_FALSE(mView->triad_clicked(bounds[1] + 1, bounds[2]));
  EXPECT_FALSE(mView->triad_clicked(bounds[0], bounds[2] - 1));
  EXPECT_FALSE(mView->triad_clicked(bounds[0], bounds[3] + 1));
  for (const int far : {-2147483647 - 1, 2147483647}) {
    EXPECT_FALSE(mView->triad_clicked(far, far));
  }
  mView->set_triad_vis(false);
  EXPECT_FALSE(mView->triad_clicked(bounds[0], bounds[2]));
}

TEST_F(GViewDecorationsTest, AViewWithoutPixelsHasNoTriadToClick)
{
  mView->set_triad_vis(true);
  mView->set_render_window(nullptr);
  for (const int x : {0, 1, -1}) {
    EXPECT_FALSE(mView->triad_clicked(x, x)) << x;
  }
}

TEST_F(GViewDecorationsTest, TheTriadsLabelsFollowTheBackgroundUntilTheyHaveAColour)
{
  const auto num = [this](Rgb colour) { return count_pixels(picture(*mView), colour_is(colour, 60)); };
  mView->set_triad_vis(true);
  EXPECT_GT(num(kWhite), 5);
  mView->set_background(9);
  mView->set_background2(9);
  const int num_black = num(kBlack); // there is some in the arrows' shades
  EXPECT_GT(num_black, 5);
  mView->set_triad_label_color(BRANT_MAGENTA);
  EXPECT_GT(num({255, 0, 255}), 5);
  EXPECT_LT(num(kBlack), num_black);
}

// --- Axis prop
// ----------------------------------------------------------------------------------------------------------

TEST_F(GViewDecorationsTest, TheAxisPropComesAndGoes)
{
  EXPECT_FALSE(mView->get_axis_vis());
  EXPECT_EQ(mView->get_axis_type(), MRUtil::AXIS_3D);
  mView->set_axis_vis(false);
  EXPECT_EQ(num_props(*mView), 0);
  mView->set_axis_vis(true);
  mView->set_axis_vis(true);
  EXPECT_TRUE(mView->get_axis_vis());
  EXPECT_EQ(num_props(*mView), 1);
  const vtkWeakPointer<GAxis> axis = find<GAxis>(*mView);
  ASSERT_NE(axis, nullptr);
  EXPECT_EQ(axis->get_type(), MRUtil::AXIS_3D);
  EXPECT_EQ(axis->get_renderer(), mView->get_renderer());
  EXPECT_GT(count_pixels(picture(*mView), colour_is_not(kBlack)), 20);
  mView->set_axis_vis(false);
  EXPECT_EQ(axis, nullptr);
  EXPECT_EQ(num_props(*mView), 0);
}

TEST_F(GViewDecorationsTest, AnotherTypeReplacesTheAxisProp)
{
  mView->set_axis_type(MRUtil::AXIS_1D); // while hidden: for later
  EXPECT_EQ(mView->get_axis_type(), MRUtil::AXIS_1D);
  EXPECT_EQ(num_props(*mView), 0);
  mView->set_axis_vis(true);
  const vtkWeakPointer<GAxis> first = find<GAxis>(*mView);
  EXPECT_EQ(first->get_type(), MRUtil::AXIS_1D);
  mView->set_axis_type(MRUtil::AXIS_1D);
  EXPECT_EQ(find<GAxis>(*mView), first.Get());
  mView->set_axis_type(MRUtil::AXIS_2D);
  EXPECT_EQ(first, nullptr);
  ASSERT_NE(find<GAxis>(*mView), nullptr);
  EXPECT_EQ(find<GAxis>(*mView)->get_type(), MRUtil::AXIS_2D);
  EXPECT_EQ(find<GAxis>(*mView)->get_renderer(), mView->get_renderer());
  EXPECT_EQ(num_props(*mView), 1);
}

// The host may change the prop's type behind the view's back: then it stays.
TEST_F(GViewDecorationsTest, AnAxisPropThatHasTheTypeAlreadyStays)
{
  mView->set_axis_vis(true);
  GAxis* axis = find<GAxis>(*mView);
  axis->set_type(MRUtil::AXIS_1D);
  mView->set_axis_type(MRUtil::AXIS_1D);
  EXPECT_EQ(find<GAxis>(*mView), axis);
}

TEST_F(GViewDecorationsTest, ATypeThatIsNoneShowsNothing)
{
  mView->set_axis_vis(true);
  mView->set_axis_type(static_cast<MRUtil::AxisType>(77));
  EXPECT_EQ(count_pixels(picture(*mView), colour_is_not(kBlack)), 0);
  mView->set_axis_type(MRUtil::AXIS_3D);
  EXPECT_GT(count_pixels(picture(*mView), colour_is_not(kBlack)), 20);
}

// --- Cube axes
// ----------------------------------------------------------------------------------------------------------

TEST_F(GViewDecorationsTest, CubeAxesFollowWhatIsVisible)
{
  EXPECT_FALSE(mView->get_cube_axes_vis());
  mView->set_cube_axes_vis(true);
  mView->set_cube_axes_vis(true);
  EXPECT_TRUE(mView->get_cube_axes_vis());
  auto* axes = find<vtkCubeAxesActor2D>(*mView);
  ASSERT_NE(axes, nullptr);
  EXPECT_EQ(num_props(*mView), 1);
  EXPECT_EQ(count_pixels(picture(*mView), colour_is_not(kBlack)), 0); // around nothing
  const auto square = flat_square();
  show(*mView, square);
  EXPECT_GT(count_pixels(picture(*mView), colour_is(kWhite, 40)), 50);
  double bounds[6];
  axes->GetBounds(bounds);
  EXPECT_EQ(bounds[0], -0.5);
  EXPECT_EQ(bounds[1], 0.5);
  square->SetPosition(0.25, 0.0, 0.0);
  mView->render();
  axes->GetBounds(bounds);
  EXPECT_EQ(bounds[1], 0.75);
  mView->set_cube_axes_vis(false);
  EXPECT_FALSE(mView->get_cube_axes_vis());
  EXPECT_EQ(num_props(*mView), 1);
}

TEST_F(GViewDecorationsTest, CubeAxesSeeWithTheRenderersPresentCamera)
{
  mView->set_cube_axes_vis(true);
  const vtkNew<vtkCamera> other;
  mView->get_renderer()->SetActiveCamera(other);
  mView->render();
  EXPECT_EQ(find<vtkCubeAxesActor2D>(*mView)->GetCamera(), other.Get());
}

TEST_F(GViewDecorationsTest, CubeAxesCanBeReadOnTheBackground)
{
  mView->set_cube_axes_vis(true);
  mView->render();
  auto* axes = find<vtkCubeAxesActor2D>(*mView);
  EXPECT_EQ(axes->GetProperty()->GetColor()[0], 1.0);
  mView->set_background(9);
  mView->set_background2(9);
  mView->render();
  EXPECT_EQ(axes->GetProperty()->GetColor()[0], 0.0);
  EXPECT_EQ(axes->GetAxisLabelTextProperty()->GetColor()[0], 0.0);
}

// Asking for bounds is host code too.
TEST_F(GViewDecorationsTest, BoundsThatThrowReachTheCallerOfRender)
{
  const auto prop = CallingProp::make();
  show(*mView, prop);
  mView->set_cube_axes_vis(true);
  int frames = 0;
  prop->on_overlay = [&] { ++frames; };
  bool is_throwing = false;
  const EventHook start(
      mView->get_render_window(), vtkCommand::StartEvent, [&] { is_throwing = true; }, 1.0F);
  prop->on_bounds = [&] {
    if (is_throwing) {
      is_throwing = false;
      throw HostError("bounds");
    }
  };
  EXPECT_EQ(thrown_by([&] { mView->render(); }), "bounds");
  EXPECT_EQ(frames, 1);
}

// --- Legend
// -------------------------------------------------------------------------------------------------------------

TEST_F(GViewDecorationsTest, TheLegendComesAndGoes)
{
  const PrintCapture printed;
  EXPECT_FALSE(mView->get_legend_vis());
  mView->set_legend_vis(false);
  mView->set_legend_vis(true);
  mView->set_legend_vis(true);
  EXPECT_TRUE(mView->get_legend_vis());
  const vtkWeakPointer<vtkLegendActor> legend = find<vtkLegendActor>(*mView);
  ASSERT_NE(legend, nullptr);
  EXPECT_EQ(num_props(*mView), 1);
  const PixelRegion seen = find_pixels(picture(*mView), colour_is_not(kBlack));
  EXPECT_GT(seen.count, 50);
  EXPECT_LT(seen.max_y, 40);
  mView->set_legend_vis(false);
  EXPECT_EQ(legend, nullptr);
  EXPECT_EQ(num_props(*mView), 0);
  EXPECT_TRUE(printed.calls().empty());
}

TEST_F(GViewDecorationsTest, InPerspectiveThereIsNoLegend)
{
  mView->get_renderer()->GetActiveCamera()->ParallelProjectionOff();
  const PrintCapture printed;
  mView->set_legend_vis(true);
  EXPECT_EQ(printed.info(), "Legend can only be turned on when 'perspective' mode is off\n");
  EXPECT_EQ(printed.calls().size(), 1U);
  EXPECT_FALSE(mView->get_legend_vis());
  EXPECT_EQ(num_props(*mView), 0);
}

TEST_F(GViewDecorationsTest, ALegendThatIsThereStaysInPerspective)
{
  mView->set_legend_vis(true);
  mView->get_renderer()->GetActiveCamera()->ParallelProjectionOff();
  const PrintCapture printed;
  mView->set_legend_vis(true); // nothing to do
  EXPECT_TRUE(printed.calls().empty());
  EXPECT_TRUE(mView->get_legend_vis());
  mView->render();
  mView->set_legend_vis(false);
  EXPECT_FALSE(mView->get_legend_vis());
}

// --- Label colour
// -------------------------------------------------------------------------------------------------------

TEST_F(GViewDecorationsTest, LabelsAreDarkOnLightBackgroundsOnly)
{
  EXPECT_EQ(mView->get_label_color_from_background(), 9); // black
  mView->set_background(9);
  EXPECT_EQ(mView->get_label_color_from_background(), 9); // a mean of 0.5
  mView->set_background2(9);
  EXPECT_EQ(mView->get_label_color_from_background(), 0);                // white
  const int grey = BrantColorTable::add_color(nullptr, {153, 153, 153}); // 0.6 exactly
  mView->set_background(grey);
  mView->set_background2(grey);
  EXPECT_EQ(mView->get_label_color_from_background(), 9);
  EXPECT_TRUE(BrantColorTable::set_color(grey, {153, 153, 154}));
  EXPECT_EQ(mView->get_label_color_from_background(), 0);
  mView->set_background(-7); // not in the table: black
  mView->set_background2(12345678);
  EXPECT_EQ(mView->get_label_color_from_background(), 9);
}

// --- All of them
// -------------------------------------------------------------------------------------------------------

TEST_F(GViewDecorationsTest, EverythingIsShownTogether)
{
  show(*mView, flat_square());
  decorate(*mView);
  EXPECT_EQ(num_props(*mView), 7);
  const Image image = picture(*mView);
  EXPECT_GT(count_pixels(image, colour_is_not(kBlack)), 2000);
  undecorate(*mView);
  EXPECT_EQ(num_props(*mView), 1);
}

TEST_F(GViewDecorationsTest, WindowsOfAnySizeAreDrawn)
{
  show(*mView, flat_square());
  decorate(*mView);
  for (const auto& [width, height] : {std::pair(1, 1), {2, 300}, {300, 2}, {20, 20}, {640, 480}}) {
    mView->get_render_window()->SetSize(width, height);
    mView->render();
    static_cast<void>(mView->triad_clicked(0, 0));
  }
  const auto unseen = make_view(0, 0); // X has no such windows: VTK makes them larger when they are mapped
  decorate(*unseen);
  static_cast<void>(unseen->triad_clicked(0, 0));
  unseen->render();
}

TEST_F(GViewDecorationsTest, AViewWithoutAWindowIsDecorated)
{
  const auto window = vtkSmartPointer<vtkRenderWindow>(mView->get_render_window());
  mView->set_render_window(nullptr);
  decorate(*mView);
  undecorate(*mView);
  decorate(*mView);
  mView->set_render_window(window);
  EXPECT_GT(count_pixels(picture(*mView), colour_is_not(kBlack)), 500);
}

TEST_F(GViewDecorationsTest, TheyMoveToAnotherWindow)
{
  GView::set_preferred_window_size(300, 300);
  show(*mView, flat_square());
  decorate(*mView);
  const Image before = picture(*mView);
  const auto other = make_window(300, 300);
  mView->set_render_window(other);
  EXPECT_TRUE(picture(*mView) == before);
}

TEST_F(GViewDecorationsTest, TwoViewsHaveEachTheirOwn)
{
  const auto other = make_view(300, 300);
  decorate(*mView);
  decorate(*other);
  undecorate(*other);
  EXPECT_EQ(num_props(*mView), 6);
  EXPECT_EQ(num_props(*other), 0);
  static_cast<void>(picture(*other));
  EXPECT_GT(count_pixels(picture(*mView), colour_is_not(kBlack)), 500);
}

// --- The end of a view
// --------------------------------------------------------------------------------------------------

// Only the title stays in a renderer that the host keeps: the view never removes it.
TEST_F(GViewDecorationsTest, WhatTheHostHoldsOutlivesTheView)
{
  decorate(*mView);
  mView->render();
  const vtkSmartPointer<vtkRenderer> renderer = mView->get_renderer();
  const vtkSmartPointer<vtkRenderWindow> window = mView->get_render_window();
  const vtkSmartPointer<vtkLegendActor> legend = find<vtkLegendActor>(*mView);
  const vtkSmartPointer<vtkCubeAxesActor2D> axes = find<vtkCubeAxesActor2D>(*mView);
  const vtkSmartPointer<GAxis> triad = find<GAxis>(*mView);
  const vtkSmartPointer<vtkScalarBarWidget> bar = mView->get_scalar_bar();
  mView.reset();
  ASSERT_EQ(renderer->GetViewProps()->GetNumberOfItems(), 1);
  EXPECT_NE(vtkTextActor::SafeDownCast(renderer->GetViewProps()->GetLastProp()), nullptr);
  for (vtkObject* kept : {static_cast<vtkObject*>(legend), static_cast<vtkObject*>(axes),
                          static_cast<vtkObject*>(triad), static_cast<vtkObject*>(bar)}) {
    EXPECT_EQ(kept->GetReferenceCount(), 1) << kept->GetClassName();
  }
  renderer->AddViewProp(legend);
  renderer->AddViewProp(axes);
  renderer->AddViewProp(triad);
  window->AddRenderer(renderer);
  window->Render();
}

TEST_F(GViewDecorationsTest, NothingIsLeftBehind)
{
  std::vector<vtkWeakPointer<vtkObject>> all;
  decorate(*mView);
  mView->render();
  for (vtkObject* each :
       {static_cast<vtkObject*>(find<vtkLegendActor>(*mView)),
        static_cast<vtkObject*>(find<vtkCubeAxesActor2D>(*mView)),
        static_cast<vtkObject*>(find<GAxis>(*mView)), static_cast<vtkObject*>(find<vtkTextActor>(*mView)),
        static_cast<vtkObject*>(mView->get_scalar_bar()), static_cast<vtkObject*>(mView->get_renderer())}) {
    all.emplace_back(each);
  }
  mView.reset();
  for (const auto& each : all) {
    EXPECT_EQ(each, nullptr);
  }
}

/// The stages of a frame at which a prop is called.
using Stage = CallingProp::Function CallingProp::*;

class InTheMiddleOfAFrameTest : public GViewDecorationsTest, public ::testing::WithParamInterface<Stage>
{};

INSTANTIATE_TEST_SUITE_P(Stages, InTheMiddleOfAFrameTest,
                         ::testing::Values(&CallingProp::on_opaque, &CallingProp::on_ask,
                                           &CallingProp::on_overlay));

TEST_P(InTheMiddleOfAFrameTest, AllOfThemMayGo)
{
  const auto prop = CallingProp::make();
  show(*mView, prop);
  decorate(*mView);
  prop.Get()->*GetParam() = [&] { undecorate(*mView); };
  static_cast<void>(picture(*mView));
  EXPECT_EQ(num_props(*mView), 1);
  EXPECT_EQ(count_pixels(picture(*mView), colour_is_not(kBlack)), 0);
}

TEST_P(InTheMiddleOfAFrameTest, AllOfThemMayCome)
{
  const auto prop = CallingProp::make();
  show(*mView, prop);
  prop.Get()->*GetParam() = [&] { decorate(*mView); };
  static_cast<void>(picture(*mView));
  EXPECT_GT(count_pixels(picture(*mView), colour_is_not(kBlack)), 500);
}

TEST_P(InTheMiddleOfAFrameTest, TheViewMayGoWithAllOfThem)
{
  for (const bool has_interactor : {false, true}) {
    auto doomed = make_view(300, 300);
    const vtkSmartPointer<vtkRenderWindow> window = doomed->get_render_window();
    const vtkNew<vtkRenderWindowInteractor> interactor;
    if (has_interactor) {
      interactor->SetRenderWindow(window);
    }
    const auto prop = CallingProp::make();
    show(*doomed, prop);
    decorate(*doomed);
    prop.Get()->*GetParam() = [&] { doomed.reset(); };
    doomed->render();
    EXPECT_EQ(doomed, nullptr);
    window->Render();
    EXPECT_EQ(window->GetRenderers()->GetNumberOfItems(), 0);
    window->SetInteractor(nullptr);
  }
}

} // namespace
