// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "ScalarBar.h"
#include "ViewFixture.h"

#include <vtkLookupTable.h>
#include <vtkPropCollection.h>
#include <vtkRenderWindowInteractor.h>
#include <vtkScalarBarActor.h>
#include <vtkScalarBarRepresentation.h>
#include <vtkScalarBarWidget.h>
#include <vtkTextProperty.h>

#include <limits>

namespace {

using namespace morrow_test;

using Widget = vtkSmartPointer<vtkScalarBarWidget>;

constexpr double Nan = std::numeric_limits<double>::quiet_NaN();
constexpr double Inf = std::numeric_limits<double>::infinity();

/// A view without anything but its scalar bar, in a window that is 250 × 250 pixels.
class ScalarBarTest : public ViewRenderTest
{
protected:
  ScalarBarTest() : mView(make_view(250, 250)) {}

  [[nodiscard]] vtkRenderWindow* window() const { return mView->get_render_window(); }
  [[nodiscard]] vtkScalarBarWidget* widget() const { return mView->get_scalar_bar(); }
  [[nodiscard]] vtkScalarBarActor* actor() const { return widget()->GetScalarBarActor(); }
  [[nodiscard]] vtkLookupTable* table() const
  {
    return vtkLookupTable::SafeDownCast(actor()->GetLookupTable());
  }
  [[nodiscard]] int num_props() const { return mView->get_renderer()->GetViewProps()->GetNumberOfItems(); }

  void set_up(double min = 0.0, double max = 1.0) { mView->setup_scalar_bar(min, max, false, {}); }

  /// Gives the view's window an interactor that is not initialised, and so asks for no events.
  vtkSmartPointer<vtkRenderWindowInteractor> add_interactor()
  {
    auto interactor = vtkSmartPointer<vtkRenderWindowInteractor>::New();
    interactor->SetRenderWindow(window());
    return interactor;
  }

  std::shared_ptr<GView> mView;
};

bool is_bar_seen(const Image& image)
{
  return count_pixels(image, colour_is(kBlue, 8)) > 20 && count_pixels(image, colour_is(kRed, 8)) > 20;
}

// --- The lookup table
// ---------------------------------------------------------------------------------------------------

TEST_F(ScalarBarTest, HuesGoFromBlueToRed)
{
  const auto table = morrow::make_lookup_table({2.0, 5.0, false, {}});
  EXPECT_EQ(table->GetTableRange()[0], 2.0);
  EXPECT_EQ(table->GetTableRange()[1], 5.0);
  EXPECT_EQ(table->GetHueRange()[0], 0.6666666666666666);
  EXPECT_EQ(table->GetHueRange()[1], 0.0);
  EXPECT_EQ(table->GetTableValue(0)[2], 1.0);
  EXPECT_EQ(table->GetTableValue(table->GetNumberOfTableValues() - 1)[0], 1.0);
}

TEST_F(ScalarBarTest, HuesAreVtksWhenTheyAreKept)
{
  const auto table = morrow::make_lookup_table({0.0, 1.0, true, {}});
  const vtkNew<vtkLookupTable> vtks;
  EXPECT_EQ(table->GetHueRange()[0], vtks->GetHueRange()[0]);
  EXPECT_EQ(table->GetHueRange()[1], vtks->GetHueRange()[1]);
  EXPECT_EQ(table->GetTableValue(0)[0], 1.0);
}

TEST_F(ScalarBarTest, ColoursBecomeTheValuesOfTheTable)
{
  const std::vector<BrantColor> colors = {{255, 0, 51, 102}, {0, 255, 0}, BRANT_BLUE};
  const auto table = morrow::make_lookup_table({0.0, 1.0, false, colors});
  ASSERT_EQ(table->GetNumberOfTableValues(), 3);
  const double* first = table->GetTableValue(0);
  EXPECT_NEAR(first[0], 1.0, 1e-12);
  EXPECT_NEAR(first[1], 0.0, 1e-12);
  EXPECT_NEAR(first[2], 0.2, 1e-12);
  EXPECT_NEAR(first[3], 0.4, 1e-12);
  EXPECT_EQ(table->GetTableValue(1)[1], 1.0);
  EXPECT_EQ(table->GetTableValue(2)[2], 1.0);
}

TEST_F(ScalarBarTest, LimitsMayComeInAnyOrder)
{
  const auto table = morrow::make_lookup_table({5.0, -2.0, false, {}});
  EXPECT_EQ(table->GetTableRange()[0], -2.0);
  EXPECT_EQ(table->GetTableRange()[1], 5.0);
}

// --- Set-up
// -------------------------------------------------------------------------------------------------------------

TEST_F(ScalarBarTest, IsSetUp)
{
  set_up(10.0, 20.0);
  ASSERT_NE(widget(), nullptr);
  EXPECT_EQ(actor()->GetWidth(), 0.003);
  ASSERT_NE(table(), nullptr);
  EXPECT_EQ(table()->GetTableRange()[1], 20.0);
  EXPECT_EQ(actor()->GetLabelTextProperty()->GetShadow(), 1);
  EXPECT_STREQ(actor()->GetLabelFormat(), "%.1f");
}

TEST_F(ScalarBarTest, TextsGetTheLabelColourForTheBackground)
{
  set_up();
  EXPECT_EQ(actor()->GetLabelTextProperty()->GetColor()[0], 1.0); // on black
  mView->set_background(9);
  mView->set_background2(9);
  EXPECT_EQ(actor()->GetLabelTextProperty()->GetColor()[0], 1.0); // when it is set up
  set_up();
  EXPECT_EQ(actor()->GetLabelTextProperty()->GetColor()[0], 0.0);
  EXPECT_EQ(actor()->GetTitleTextProperty()->GetColor()[0], 0.0);
}

TEST_F(ScalarBarTest, LabelColoursAreKeptForLaterWidgets)
{
  const double rgb[3] = {0.25, 0.5, 0.75};
  mView->set_scalar_bar_label_color(rgb); // without a widget
  const Widget first = Widget::New();
  mView->set_scalar_bar(first);
  EXPECT_EQ(actor()->GetLabelTextProperty()->GetColor()[2], 0.75);
  const double other[3] = {0.0, 1.0, 0.0};
  mView->set_scalar_bar_label_color(other);
  EXPECT_EQ(actor()->GetLabelTextProperty()->GetColor()[2], 0.0);
  mView->set_scalar_bar_label_color(nullptr);
  const double bad[3] = {0.0, Nan, 0.0};
  mView->set_scalar_bar_label_color(bad);
  EXPECT_EQ(actor()->GetLabelTextProperty()->GetColor()[1], 1.0);
}

TEST_F(ScalarBarTest, ANewWidgetsTextIsWhite)
{
  const Widget first = Widget::New();
  first->GetScalarBarActor()->GetLabelTextProperty()->SetColor(0.0, 0.0, 0.0);
  mView->set_scalar_bar(first);
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(actor()->GetLabelTextProperty()->GetColor()[i], 1.0);
  }
}

TEST_F(ScalarBarTest, LimitsThatAreNotFiniteDoNothing)
{
  for (const auto& [min, max] :
       {std::pair(Nan, 1.0), {0.0, Nan}, {-Inf, 0.0}, {0.0, Inf}, {-1.7e308, 1.7e308}}) {
    set_up(min, max);
    EXPECT_EQ(widget(), nullptr);
  }
}

TEST_F(ScalarBarTest, AnyLimitsAndNumbersOfColoursAreDrawn)
{
  for (const auto& [min, max] :
       {std::pair(1.0, 1.0), {0.0, 0.0}, {2.0, 1.0}, {1e6, 1e6 + 1e-3}, {-1e300, 1e300}}) {
    set_up(min, max);
    EXPECT_GT(count_pixels(picture(*mView), colour_is_not(kBlack)), 100) << min;
  }
  for (const std::size_t count : {1U, 2U, 1000U, 1000000U}) {
    mView->setup_scalar_bar(0.0, 1.0, false, std::vector<BrantColor>(count, BRANT_GREEN));
    EXPECT_GT(count_pixels(picture(*mView), colour_is(kGreen, 2)), 100) << count;
  }
}

// --- Without an interactor
// ----------------------------------------------------------------------------------------------

TEST_F(ScalarBarTest, IsSeenWithoutAnInteractor)
{
  set_up();
  EXPECT_EQ(widget()->GetEnabled(), 0);
  const Image image = picture(*mView);
  EXPECT_TRUE(is_bar_seen(image));
  const PixelRegion bar = find_pixels(image, colour_is_not(kBlack, 40));
  EXPECT_GT(bar.min_x, 250 * 8 / 10); // VTK's place for scalar bars
  EXPECT_LT(bar.max_x, 250);
  EXPECT_GT(bar.height(), 250 * 6 / 10);
}

TEST_F(ScalarBarTest, IsSeenInAnOffscreenWindow)
{
  GView::set_offscreen(true);
  mView = make_view(250, 250);
  set_up();
  EXPECT_TRUE(is_bar_seen(picture(*mView)));
}

TEST_F(ScalarBarTest, TheSamePictureWithAndWithoutAnInteractor)
{
  set_up();
  const Image without = picture(*mView);
  const auto interactor = add_interactor();
  EXPECT_TRUE(picture(*mView) == without);
  EXPECT_EQ(widget()->GetEnabled(), 1);
  EXPECT_EQ(widget()->GetInteractor(), interactor.Get());
  EXPECT_EQ(num_props(), 1);
}

TEST_F(ScalarBarTest, AnInteractorThatIsThereIsTakenAtOnce)
{
  const auto interactor = add_interactor();
  set_up();
  EXPECT_EQ(widget()->GetEnabled(), 1);
  EXPECT_EQ(widget()->GetInteractor(), interactor.Get());
  EXPECT_EQ(widget()->GetCurrentRenderer(), mView->get_renderer());
  EXPECT_TRUE(is_bar_seen(picture(*mView)));
}

// The overlay is in front of the main renderer.
TEST_F(ScalarBarTest, TheBarIsInTheMainRenderer)
{
  const auto interactor = add_interactor();
  mView->enable_overlay();
  mView->get_overlay_renderer()->InteractiveOn();
  set_up();
  EXPECT_EQ(widget()->GetCurrentRenderer(), mView->get_renderer());
}

TEST_F(ScalarBarTest, OutlivesTheInteractor)
{
  auto interactor = add_interactor();
  set_up();
  const Image before = picture(*mView);
  window()->SetInteractor(nullptr);
  interactor = nullptr;
  EXPECT_TRUE(picture(*mView) == before);
  EXPECT_EQ(widget()->GetInteractor(), nullptr);
  EXPECT_EQ(num_props(), 1);
}

TEST_F(ScalarBarTest, FollowsTheInteractorThatReplacesAnother)
{
  const auto first = add_interactor();
  set_up();
  const Image before = picture(*mView);
  const auto second = add_interactor();
  ASSERT_EQ(window()->GetInteractor(), second.Get());
  EXPECT_TRUE(picture(*mView) == before);
  EXPECT_EQ(widget()->GetInteractor(), second.Get());
  EXPECT_EQ(widget()->GetEnabled(), 1);
}

TEST_F(ScalarBarTest, WhoeverSwitchesTheWidgetOffIsRespected)
{
  const auto interactor = add_interactor();
  set_up();
  widget()->Off();
  EXPECT_FALSE(is_bar_seen(picture(*mView)));
  window()->SetInteractor(nullptr);
  EXPECT_FALSE(is_bar_seen(picture(*mView))); // also then
  const auto other = add_interactor();
  EXPECT_FALSE(is_bar_seen(picture(*mView)));
  widget()->On();
  EXPECT_TRUE(is_bar_seen(picture(*mView)));
}

// --- Another window
// -----------------------------------------------------------------------------------------------------

TEST_F(ScalarBarTest, MovesToAnotherWindowWithTheView)
{
  set_up();
  const Image before = picture(*mView);
  for (const bool has_interactor : {true, false, true}) {
    const auto other = make_window(250, 250);
    const vtkNew<vtkRenderWindowInteractor> interactor;
    if (has_interactor) {
      interactor->SetRenderWindow(other);
    }
    mView->set_render_window(other);
    other->SetSize(250, 250);
    EXPECT_EQ(widget()->GetInteractor(), has_interactor ? interactor.Get() : nullptr);
    EXPECT_EQ(widget()->GetEnabled(), has_interactor ? 1 : 0);
    EXPECT_TRUE(picture(*mView) == before);
    EXPECT_EQ(num_props(), 1);
    mView->set_render_window(nullptr);
    EXPECT_EQ(widget()->GetInteractor(), nullptr);
  }
}

// --- Widgets of the host
// -----------------------------------------------------------------------------------------------

TEST_F(ScalarBarTest, AHostsWidgetIsAttachedAndStaysOff)
{
  const auto interactor = add_interactor();
  const Widget own = Widget::New();
  mView->set_scalar_bar(own);
  EXPECT_EQ(widget(), own.Get());
  EXPECT_EQ(own->GetInteractor(), interactor.Get());
  EXPECT_EQ(own->GetEnabled(), 0);
  EXPECT_EQ(own->GetReferenceCount(), 2);
  mView->set_scalar_bar(own);
  EXPECT_EQ(own->GetReferenceCount(), 2);
}

TEST_F(ScalarBarTest, TheWidgetOfBeforeIsSwitchedOffAndLetGo)
{
  const auto interactor = add_interactor();
  set_up();
  const Widget old = widget();
  static_cast<void>(picture(*mView));
  ASSERT_EQ(old->GetEnabled(), 1);
  const Widget own = Widget::New();
  mView->set_scalar_bar(own);
  EXPECT_EQ(old->GetEnabled(), 0);
  EXPECT_EQ(old->GetInteractor(), nullptr);
  EXPECT_EQ(old->GetReferenceCount(), 1);
  EXPECT_EQ(num_props(), 0);
  mView->set_scalar_bar(nullptr);
  EXPECT_EQ(widget(), nullptr);
  EXPECT_EQ(own->GetInteractor(), nullptr);
  EXPECT_EQ(own->GetReferenceCount(), 1);
  mView->set_scalar_bar(nullptr);
}

TEST_F(ScalarBarTest, NullHidesTheBarThatIsShownWithoutAnInteractor)
{
  set_up();
  ASSERT_TRUE(is_bar_seen(picture(*mView)));
  mView->set_scalar_bar(nullptr);
  EXPECT_EQ(num_props(), 0);
  EXPECT_FALSE(is_bar_seen(picture(*mView)));
}

TEST_F(ScalarBarTest, AWidgetThatWasOnComesAlongSwitchedOn)
{
  const auto source = make_view(250, 250);
  const vtkNew<vtkRenderWindowInteractor> its_interactor;
  its_interactor->SetRenderWindow(source->get_render_window());
  source->setup_scalar_bar(0.0, 1.0, false, {});
  const auto interactor = add_interactor();
  const Widget shared = source->get_scalar_bar();
  mView->set_scalar_bar(shared);
  EXPECT_EQ(shared->GetEnabled(), 1);
  EXPECT_EQ(shared->GetInteractor(), interactor.Get());
  EXPECT_TRUE(is_bar_seen(picture(*mView)));
}

// The view that takes it last has it; the other one neither fights for it nor takes it down.
TEST_F(ScalarBarTest, OneWidgetInTwoViewsBelongsToTheLast)
{
  for (const bool has_interactor : {false, true}) {
    auto other = make_view(250, 250);
    const vtkNew<vtkRenderWindowInteractor> its_interactor;
    const vtkNew<vtkRenderWindowInteractor> own_interactor;
    if (has_interactor) {
      its_interactor->SetRenderWindow(other->get_render_window());
      own_interactor->SetRenderWindow(window());
    }
    other->setup_scalar_bar(0.0, 1.0, false, {});
    ASSERT_TRUE(is_bar_seen(picture(*other)));
    const Widget shared = other->get_scalar_bar();
    mView->set_scalar_bar(shared);
    if (has_interactor) {
      EXPECT_TRUE(is_bar_seen(picture(*mView)));
    }
    EXPECT_FALSE(is_bar_seen(picture(*other)));
    other.reset();
    EXPECT_EQ(shared->GetInteractor(), window()->GetInteractor());
    if (has_interactor) {
      EXPECT_TRUE(is_bar_seen(picture(*mView)));
    }
    mView->set_scalar_bar(nullptr);
  }
}

TEST_F(ScalarBarTest, AWidgetTakenBackBelongsToTheViewAgain)
{
  const auto other = make_view(250, 250);
  const auto interactor = add_interactor();
  set_up();
  const Widget shared = widget();
  other->set_scalar_bar(shared);
  EXPECT_EQ(shared->GetInteractor(), nullptr);
  mView->set_scalar_bar(shared);
  EXPECT_EQ(shared->GetInteractor(), interactor.Get());
}

TEST_F(ScalarBarTest, AWidgetOutlivesTheView)
{
  const auto interactor = add_interactor();
  set_up();
  static_cast<void>(picture(*mView));
  const Widget kept = widget();
  const vtkSmartPointer<vtkRenderWindow> window = mView->get_render_window();
  mView.reset();
  EXPECT_EQ(kept->GetEnabled(), 0);
  EXPECT_EQ(kept->GetInteractor(), nullptr);
  EXPECT_EQ(kept->GetDefaultRenderer(), nullptr);
  window->Render();
}

// A host may take the widget's parts away.
TEST_F(ScalarBarTest, AWidgetWithoutItsActorIsNoTrouble)
{
  const Widget own = Widget::New();
  own->GetScalarBarActor();
  own->SetScalarBarActor(nullptr);
  mView->set_scalar_bar(own);
  const double rgb[3] = {0.0, 0.0, 0.0};
  mView->set_scalar_bar_label_color(rgb);
  mView->set_scalar_bar(nullptr);
}

// --- Host code that the widget calls
// ------------------------------------------------------------------------------------

TEST_F(ScalarBarTest, MayGoWhileItIsSwitchedOff)
{
  const auto interactor = add_interactor();
  set_up();
  const Widget old = widget();
  const EventHook off(old, vtkCommand::DisableEvent, [&] { mView->set_scalar_bar(nullptr); });
  mView->set_scalar_bar(nullptr);
  EXPECT_EQ(widget(), nullptr);
  EXPECT_EQ(old->GetInteractor(), nullptr);
  EXPECT_EQ(num_props(), 0);
}

TEST_F(ScalarBarTest, AWidgetTakenWhileAnotherIsSwitchedOffIsLetGoAgain)
{
  const auto interactor = add_interactor();
  set_up();
  const Widget old = widget();
  const Widget between = Widget::New();
  const EventHook off(old, vtkCommand::DisableEvent, [&] { mView->set_scalar_bar(between); });
  set_up(2.0, 3.0);
  ASSERT_NE(widget(), nullptr);
  ASSERT_NE(widget(), between.Get());
  EXPECT_EQ(table()->GetTableRange()[0], 2.0);
  EXPECT_EQ(widget()->GetEnabled(), 1);
  EXPECT_EQ(between->GetInteractor(), nullptr);
  EXPECT_EQ(between->GetReferenceCount(), 1);
  EXPECT_EQ(num_props(), 1);
}

TEST_F(ScalarBarTest, AWidgetMayGoToAnotherViewWhileItIsSwitchedOff)
{
  const auto other = make_view(250, 250);
  const auto interactor = add_interactor();
  set_up();
  const Widget old = widget();
  const EventHook off(old, vtkCommand::DisableEvent, [&] { other->set_scalar_bar(old); });
  mView->set_scalar_bar(nullptr);
  EXPECT_EQ(widget(), nullptr);
  EXPECT_EQ(other->get_scalar_bar(), old.Get());
  EXPECT_EQ(old->GetDefaultRenderer(), other->get_renderer());
}

TEST_F(ScalarBarTest, AWidgetMayGoWhileItChangesItsInteractor)
{
  const auto first = add_interactor();
  set_up();
  const Widget old = widget();
  const EventHook off(old, vtkCommand::DisableEvent, [&] { mView->set_scalar_bar(nullptr); });
  const auto second = add_interactor();
  EXPECT_FALSE(is_bar_seen(picture(*mView)));
  EXPECT_EQ(widget(), nullptr);
  EXPECT_EQ(old->GetInteractor(), nullptr);
}

TEST_F(ScalarBarTest, TheViewMayGoWhileABarIsSwitchedOff)
{
  for (const bool is_replaced : {false, true}) {
    mView = make_view(250, 250);
    const auto interactor = add_interactor();
    set_up();
    const Widget old = widget();
    const EventHook off(old, vtkCommand::DisableEvent, [&] { mView.reset(); });
    if (is_replaced) {
      mView->setup_scalar_bar(0.0, 1.0, false, {});
    } else {
      mView->set_render_window(nullptr);
    }
    EXPECT_EQ(mView, nullptr);
    EXPECT_EQ(old->GetInteractor(), nullptr);
    EXPECT_EQ(old->GetReferenceCount(), 1);
  }
}

// The widget gets the interactor at the start of a frame.
TEST_F(ScalarBarTest, TheViewMayGoWhenAFrameSwitchesTheBarOn)
{
  set_up();
  mView->set_cube_axes_vis(true);
  const Widget bar = widget();
  const EventHook on(bar, vtkCommand::EnableEvent, [&] { mView.reset(); });
  const auto interactor = add_interactor();
  mView->render();
  EXPECT_EQ(mView, nullptr);
  EXPECT_EQ(bar->GetEnabled(), 0);
}

// --- In the middle of a frame
// --------------------------------------------------------------------------------------------

TEST_F(ScalarBarTest, MayGoInTheMiddleOfAFrame)
{
  for (const bool has_interactor : {false, true}) {
    const auto prop = CallingProp::make();
    show(*mView, prop);
    const vtkNew<vtkRenderWindowInteractor> interactor;
    if (has_interactor) {
      interactor->SetRenderWindow(window());
    }
    set_up();
    prop->on_opaque = [&] { mView->set_scalar_bar(nullptr); };
    static_cast<void>(picture(*mView));
    EXPECT_FALSE(is_bar_seen(picture(*mView)));
    mView->remove_props({prop});
    window()->SetInteractor(nullptr);
  }
}

} // namespace
