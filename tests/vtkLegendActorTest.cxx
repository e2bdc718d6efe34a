// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "vtkLegendActor.h"

#include "ViewFixture.h"

#include <vtkActor2D.h>
#include <vtkCellData.h>
#include <vtkIdList.h>
#include <vtkMath.h>
#include <vtkPoints.h>
#include <vtkPolyDataMapper2D.h>
#include <vtkPropCollection.h>
#include <vtkTextMapper.h>
#include <vtkTextProperty.h>
#include <vtkUnsignedCharArray.h>

#include <array>
#include <cstdlib>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace morrow_test;

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

/// A legend whose parts a test may look at.
class OpenLegend : public vtkLegendActor
{
public:
  static vtkSmartPointer<OpenLegend> make()
  {
    auto* legend = new OpenLegend;
    legend->InitializeObjectBase();
    return vtkSmartPointer<OpenLegend>::Take(legend);
  }
  OpenLegend(const OpenLegend&) = delete;
  OpenLegend& operator=(const OpenLegend&) = delete;

  /// 10 points of 3 coordinates.
  std::vector<double> points()
  {
    std::vector<double> xyz;
    for (vtkIdType i = 0; i < this->Legend->GetNumberOfPoints(); ++i) {
      const double* p = this->Legend->GetPoint(i);
      xyz.insert(xyz.end(), p, p + 3);
    }
    return xyz;
  }
  std::string text(int i)
  {
    const char* input = this->LabelMappers[i]->GetInput();
    return input != nullptr ? input : "";
  }
  std::array<double, 2> label_position(int i)
  {
    const double* position = this->LabelActors[i]->GetPosition();
    return {position[0], position[1]};
  }
  vtkMTimeType build_time() { return this->BuildTime.GetMTime(); }

  using vtkLegendActor::LabelMappers;
  using vtkLegendActor::Legend;
  using vtkLegendActor::LegendActor;
  using vtkLegendActor::LegendMapper;

protected:
  OpenLegend() = default;
  ~OpenLegend() override = default;
};

std::string number(double value)
{
  std::ostringstream text; // "%g" is what a stream does by itself
  text << value;
  return text.str();
}

/// 1200 × 100 pixels which show 24 × 2 units: 50 pixels are one unit.
std::shared_ptr<GView> make_wide_view()
{
  return make_view(1200, 100);
}

// --- Parts ----------------------------------------------------------------------------------------------

using vtkLegendActorTest = ViewTest;

TEST_F(vtkLegendActorTest, IsAPropOfItsOwnName)
{
  const vtkNew<vtkLegendActor> legend;
  EXPECT_STREQ(legend->GetClassName(), "vtkLegendActor");
  for (const char* name : {"vtkLegendActor", "vtkProp", "vtkObject"}) {
    EXPECT_TRUE(legend->IsA(name)) << name;
  }
  EXPECT_FALSE(legend->IsA("vtkActor2D"));
  EXPECT_EQ(legend->GetBounds(), nullptr);
}

TEST_F(vtkLegendActorTest, ShowsDistancesAtFirst)
{
  const vtkNew<vtkLegendActor> legend;
  EXPECT_EQ(legend->GetLabelMode(), 0);
  EXPECT_EQ(legend->GetLegendVisibility(), 1);
}

TEST_F(vtkLegendActorTest, HasABarOfFourQuadsInBlackAndWhite)
{
  const auto legend = OpenLegend::make();
  const vtkIdType quads[4][4] = {{0, 1, 6, 5}, {1, 2, 7, 6}, {2, 3, 8, 7}, {3, 4, 9, 8}};
  const unsigned char colors[4] = {0, 255, 0, 255};
  ASSERT_EQ(legend->Legend->GetNumberOfPoints(), 10);
  ASSERT_EQ(legend->Legend->GetNumberOfCells(), 4);
  auto* scalars = vtkUnsignedCharArray::SafeDownCast(legend->Legend->GetCellData()->GetScalars());
  ASSERT_NE(scalars, nullptr);
  ASSERT_EQ(scalars->GetNumberOfComponents(), 3);
  ASSERT_EQ(scalars->GetNumberOfTuples(), 4);
  const vtkNew<vtkIdList> ids;
  for (vtkIdType cell = 0; cell < 4; ++cell) {
    EXPECT_EQ(legend->Legend->GetCellType(cell), VTK_QUAD);
    legend->Legend->GetCellPoints(cell, ids);
    for (vtkIdType i = 0; i < 4; ++i) {
      EXPECT_EQ(ids->GetId(i), quads[cell][i]) << cell;
    }
    for (int i = 0; i < 3; ++i) {
      EXPECT_EQ(scalars->GetTypedComponent(cell, i), colors[cell]) << cell;
    }
  }
  EXPECT_EQ(legend->LegendMapper->GetInput(), legend->Legend.Get());
  EXPECT_EQ(legend->LegendActor->GetMapper(), legend->LegendMapper.Get());
}

void expect_legend_style(vtkTextProperty& property, int vertical_justification)
{
  EXPECT_EQ(property.GetJustification(), 1);
  EXPECT_EQ(property.GetVerticalJustification(), vertical_justification);
  EXPECT_NE(property.GetBold(), 0);
  EXPECT_NE(property.GetItalic(), 0);
  EXPECT_NE(property.GetShadow(), 0);
  EXPECT_STREQ(property.GetFontFamilyAsString(), "Arial");
  EXPECT_EQ(property.GetFontSize(), 10);
}

TEST_F(vtkLegendActorTest, HasTextPropertiesForATitleAndTheLabels)
{
  const auto legend = OpenLegend::make();
  expect_legend_style(*legend->GetLegendTitleProperty(), 0);
  expect_legend_style(*legend->GetLegendLabelProperty(), 2);
  for (const auto& mapper : legend->LabelMappers) {
    EXPECT_EQ(mapper->GetTextProperty(), legend->GetLegendLabelProperty());
  }
}

TEST_F(vtkLegendActorTest, GivesNoActors)
{
  const vtkNew<vtkLegendActor> legend;
  const vtkNew<vtkPropCollection> actors;
  legend->GetActors2D(actors);
  EXPECT_EQ(actors->GetNumberOfItems(), 0);
}

// --- Settings -------------------------------------------------------------------------------------------

TEST_F(vtkLegendActorTest, IsModifiedBySettingsThatChange)
{
  const vtkNew<vtkLegendActor> legend;
  const auto modifies = [&](auto&& change) {
    const vtkMTimeType time = legend->GetMTime();
    change();
    return legend->GetMTime() != time;
  };
  EXPECT_FALSE(modifies([&] { legend->SetLabelMode(0); }));
  EXPECT_TRUE(modifies([&] { legend->SetLabelMode(-3); }));
  EXPECT_FALSE(modifies([&] { legend->SetLabelMode(-3); }));
  EXPECT_EQ(legend->GetLabelMode(), -3);
  EXPECT_FALSE(modifies([&] { legend->LegendVisibilityOn(); }));
  EXPECT_TRUE(modifies([&] { legend->LegendVisibilityOff(); }));
  EXPECT_EQ(legend->GetLegendVisibility(), 0);
  EXPECT_FALSE(modifies([&] { legend->SetLegendVisibility(0); }));
  EXPECT_TRUE(modifies([&] { legend->SetLegendVisibility(2); }));
  EXPECT_EQ(legend->GetLegendVisibility(), 2);
  EXPECT_TRUE(modifies([&] { legend->LegendVisibilityOn(); }));
  EXPECT_EQ(legend->GetLegendVisibility(), 1);
}

std::string address(const void* object)
{
  std::ostringstream text;
  text << object;
  return text.str();
}

/// What the legend prints after what every prop prints.
std::string printed(vtkLegendActor& legend, vtkIndent indent)
{
  std::ostringstream all;
  legend.PrintSelf(all, indent);
  std::ostringstream inherited;
  legend.vtkProp::PrintSelf(inherited, indent);
  EXPECT_EQ(all.str().compare(0, inherited.str().size(), inherited.str()), 0);
  return all.str().substr(inherited.str().size());
}

TEST_F(vtkLegendActorTest, PrintsItsSettings)
{
  const vtkNew<vtkLegendActor> legend;
  const std::string properties = "  Legend Title Property: " + address(legend->GetLegendTitleProperty()) +
                                 "\n  Legend Label Property: " + address(legend->GetLegendLabelProperty()) +
                                 "\n";
  EXPECT_EQ(printed(*legend, vtkIndent(2)), "  Label Mode: Distance\n  Legend Visibility: On\n" + properties);
  legend->SetLabelMode(1);
  legend->LegendVisibilityOff();
  EXPECT_EQ(printed(*legend, vtkIndent(2)),
            "  Label Mode: XY_Coordinates\n  Legend Visibility: Off\n" + properties);
  legend->SetLabelMode(-1);
  EXPECT_EQ(printed(*legend, vtkIndent()).find("Label Mode: XY_Coordinates\n"), 0U);
}

// --- Layout ---------------------------------------------------------------------------------------------

TEST_F(vtkLegendActorTest, LaysTheBarOverTheMiddleThird)
{
  const auto view = make_wide_view();
  const auto legend = OpenLegend::make();
  legend->BuildRepresentation(view->get_renderer());
  const std::vector<double> xyz = legend->points();
  for (std::size_t i = 0; i < 10; ++i) {
    const double x = 1200 * 0.33333 + static_cast<double>(i % 5) * 0.25 * 1200 * 0.33333;
    EXPECT_NEAR(xyz[3 * i], x, 1e-4) << i;
    EXPECT_EQ(xyz[3 * i + 1], i < 5 ? 10.0 : 20.0) << i;
    EXPECT_EQ(xyz[3 * i + 2], 0.0) << i;
  }
  EXPECT_NEAR(xyz[0], 399.996, 1e-4);
  EXPECT_NEAR(xyz[3 * 4], 799.992, 1e-4);
}

TEST_F(vtkLegendActorTest, HangsTheLabelsOnePixelUnderTheBlocksEnds)
{
  const auto view = make_wide_view();
  const auto legend = OpenLegend::make();
  legend->BuildRepresentation(view->get_renderer());
  for (int i = 0; i < 5; ++i) {
    EXPECT_NEAR(legend->label_position(i)[0], 399.996 + i * 99.999, 1e-4) << i;
    EXPECT_EQ(legend->label_position(i)[1], 9.0) << i;
  }
}

// The distance is that of 0.33334 of the width, which shows 24 units.
TEST_F(vtkLegendActorTest, WritesTheDistancesOfTheMiddleAndTheEnd)
{
  const auto view = make_wide_view();
  const auto legend = OpenLegend::make();
  legend->BuildRepresentation(view->get_renderer());
  EXPECT_EQ(legend->text(0), "0");
  EXPECT_EQ(legend->text(1), "");
  EXPECT_EQ(legend->text(2), "4.00008");
  EXPECT_EQ(legend->text(3), "");
  EXPECT_EQ(legend->text(4), "8.00016");
}

TEST_F(vtkLegendActorTest, WritesHalfTheDistancesAtTwiceTheZoom)
{
  const auto view = make_wide_view();
  const auto legend = OpenLegend::make();
  legend->BuildRepresentation(view->get_renderer());
  const std::vector<double> points = legend->points();
  view->get_renderer()->GetActiveCamera()->SetParallelScale(0.5);
  legend->BuildRepresentation(view->get_renderer());
  EXPECT_EQ(legend->text(2), "2.00004");
  EXPECT_EQ(legend->text(4), "4.00008");
  EXPECT_EQ(legend->points(), points);
}

TEST_F(vtkLegendActorTest, WritesTheSameDistancesWhereverTheCameraLooks)
{
  const auto view = make_wide_view();
  const auto legend = OpenLegend::make();
  vtkCamera* camera = view->get_renderer()->GetActiveCamera();
  camera->SetPosition(30.0, -40.0, 50.0);
  camera->SetFocalPoint(1.0, 2.0, 3.0);
  legend->BuildRepresentation(view->get_renderer());
  EXPECT_EQ(legend->text(4), "8.00016");
}

TEST_F(vtkLegendActorTest, WritesLargeAndSmallDistancesWithExponents)
{
  const auto view = make_wide_view();
  const auto legend = OpenLegend::make();
  for (const double scale : {1e9, 1e-9}) {
    view->get_renderer()->GetActiveCamera()->SetParallelScale(scale);
    legend->BuildRepresentation(view->get_renderer());
    EXPECT_EQ(legend->text(4), number(8.00016 * scale));
    EXPECT_NE(legend->text(4).find('e'), std::string::npos);
  }
}

TEST_F(vtkLegendActorTest, DependsOnTheLabelModeInNothing)
{
  const auto view = make_wide_view();
  const auto legend = OpenLegend::make();
  legend->SetLabelMode(1);
  legend->BuildRepresentation(view->get_renderer());
  EXPECT_EQ(legend->text(0), "0");
  EXPECT_EQ(legend->text(4), "8.00016");
  EXPECT_NEAR(legend->points()[0], 399.996, 1e-4);
}

TEST_F(vtkLegendActorTest, StaysAsItIsWhileSwitchedOff)
{
  const auto view = make_wide_view();
  const auto legend = OpenLegend::make();
  legend->BuildRepresentation(view->get_renderer());
  const std::vector<double> points = legend->points();
  const vtkMTimeType built = legend->build_time();
  legend->LegendVisibilityOff();
  view->get_render_window()->SetSize(600, 100);
  view->get_renderer()->GetActiveCamera()->SetParallelScale(7.0);
  legend->BuildRepresentation(view->get_renderer());
  EXPECT_EQ(legend->points(), points);
  EXPECT_EQ(legend->text(4), "8.00016");
  EXPECT_GT(legend->build_time(), built) << "the build time is marked all the same";
}

TEST_F(vtkLegendActorTest, MarksEachBuild)
{
  const auto view = make_wide_view();
  const auto legend = OpenLegend::make();
  vtkMTimeType built = legend->build_time();
  for (vtkViewport* viewport :
       {static_cast<vtkViewport*>(view->get_renderer()), static_cast<vtkViewport*>(view->get_renderer()),
        static_cast<vtkViewport*>(nullptr)}) {
    legend->BuildRepresentation(viewport);
    EXPECT_GT(legend->build_time(), built);
    built = legend->build_time();
  }
}

TEST_F(vtkLegendActorTest, HasNoDistanceWithoutPixelsOrCamera)
{
  const auto legend = OpenLegend::make();
  const vtkNew<vtkRenderer> renderer;
  legend->BuildRepresentation(renderer); // neither window nor camera
  EXPECT_EQ(legend->text(2), "0");
  EXPECT_EQ(legend->text(4), "0");
  renderer->GetActiveCamera();
  legend->BuildRepresentation(renderer);
  EXPECT_EQ(legend->text(4), "0");
  for (const double x : legend->points()) {
    EXPECT_TRUE(x == 0.0 || x == 10.0 || x == 20.0) << x;
  }
  const auto view = make_wide_view();
  view->get_renderer()->SetViewport(0.5, 0.0, 0.5, 1.0);
  ASSERT_EQ(view->get_renderer()->GetSize()[0], 0);
  legend->BuildRepresentation(view->get_renderer());
  EXPECT_EQ(legend->points()[3 * 4], 0.0);
  EXPECT_EQ(legend->text(4), "0");
}

TEST_F(vtkLegendActorTest, WritesDistancesThatAreNoneAsTheyAre)
{
  const auto view = make_wide_view();
  const auto legend = OpenLegend::make();
  vtkCamera* camera = view->get_renderer()->GetActiveCamera();
  camera->SetParallelScale(NaN);
  legend->BuildRepresentation(view->get_renderer());
  EXPECT_EQ(legend->text(4), "nan");
  camera->SetParallelScale(0.0);
  legend->BuildRepresentation(view->get_renderer());
  EXPECT_EQ(legend->text(4).find("inf"), std::string::npos);
  camera->SetParallelScale(1.0);
  legend->BuildRepresentation(view->get_renderer());
  EXPECT_EQ(legend->text(4), "8.00016");
}

// --- Passes without a window ----------------------------------------------------------------------------

TEST_F(vtkLegendActorTest, BuildsInTheOpaquePassOnly)
{
  const auto view = make_wide_view();
  const auto legend = OpenLegend::make();
  EXPECT_EQ(legend->RenderOpaqueGeometry(view->get_renderer()), 6);
  const vtkMTimeType built = legend->build_time();
  EXPECT_EQ(legend->text(4), "8.00016");
  EXPECT_EQ(legend->RenderOverlay(view->get_renderer()), 0) << "a window without context";
  EXPECT_EQ(legend->build_time(), built);
}

TEST_F(vtkLegendActorTest, DrawsNothingWithoutAViewport)
{
  const vtkNew<vtkLegendActor> legend;
  EXPECT_EQ(legend->RenderOpaqueGeometry(nullptr), 0);
  EXPECT_EQ(legend->RenderTranslucentPolygonalGeometry(nullptr), 0);
  EXPECT_EQ(legend->RenderOverlay(nullptr), 0);
  const vtkNew<vtkRenderer> renderer;
  EXPECT_EQ(legend->RenderOverlay(renderer), 0);
  legend->ReleaseGraphicsResources(nullptr);
}

TEST_F(vtkLegendActorTest, BuildsButDrawsNothingWhileSwitchedOff)
{
  const auto view = make_wide_view();
  const auto legend = OpenLegend::make();
  legend->LegendVisibilityOff();
  EXPECT_EQ(legend->RenderOpaqueGeometry(view->get_renderer()), 0);
  EXPECT_GT(legend->build_time(), 0U);
  EXPECT_EQ(legend->RenderOverlay(view->get_renderer()), 0);
}

// --- Pictures -------------------------------------------------------------------------------------------

using vtkLegendActorRenderTest = ViewRenderTest;

/// A blue view, so that both of the bar's colours are seen. 0.33333 of 300 pixels are 100.
std::shared_ptr<GView> make_blue_view(int width = 300, int height = 100)
{
  auto view = make_view(width, height);
  const int blue = BrantColorTable::num_fixed_colors();
  int id = 0;
  while (id < blue && BrantColorTable::lookup_color(id) != BRANT_BLUE) {
    ++id;
  }
  view->set_background(id);
  view->set_background2(id);
  return view;
}

vtkSmartPointer<vtkLegendActor> show_legend(GView& view)
{
  auto legend = vtkSmartPointer<vtkLegendActor>::New();
  show(view, legend);
  return legend;
}

bool has_legend(const Image& image)
{
  return count_pixels(image, colour_is_not(kBlue)) > 0;
}

TEST_F(vtkLegendActorRenderTest, DrawsBlocksInTurnBlackAndWhite)
{
  const auto view = make_blue_view();
  show_legend(*view);
  const Image image = picture(*view);
  const Rgb colors[4] = {kBlack, kWhite, kBlack, kWhite};
  for (int block = 0; block < 4; ++block) {
    const int left = 100 + 25 * block;
    const Image inside = crop(image, left + 1, 11, left + 23, 18);
    EXPECT_EQ(count_pixels(inside, colour_is(colors[block])), 23 * 8) << block;
  }
  const Image bar = crop(image, 0, 10, 299, 99);
  const PixelRegion region = find_pixels(bar, colour_is_not(kBlue));
  EXPECT_EQ(region.min_y, 0);
  EXPECT_NEAR(region.height(), 10, 1);
  EXPECT_NEAR(region.min_x, 100, 1);
  EXPECT_NEAR(region.width(), 100, 1);
}

TEST_F(vtkLegendActorRenderTest, DrawsTheNumbersUnderTheEndsAndTheMiddle)
{
  const auto view = make_blue_view(600, 100);
  show_legend(*view);
  const Image under = crop(picture(*view), 0, 0, 599, 8);
  for (const int end : {200, 300, 400}) {
    const PixelRegion number = find_pixels(crop(under, end - 40, 0, end + 40, 8), colour_is(kWhite, 120));
    EXPECT_GT(number.count, 5) << end;
    EXPECT_NEAR(number.centre_x, 40.5, 4.0) << end;
    EXPECT_GT(number.min_y, 0) << "the shadow has the lowest row";
  }
  for (const int between : {250, 350}) {
    EXPECT_FALSE(has_legend(crop(under, between - 10, 0, between + 10, 8))) << between;
  }
}

TEST_F(vtkLegendActorRenderTest, ReturnsItsPartsFromBothPasses)
{
  const auto view = make_blue_view();
  const vtkNew<vtkLegendActor> legend;
  int opaque = -1;
  int overlay = -1;
  const auto caller = CallingProp::make();
  caller->on_opaque = [&] { opaque = legend->RenderOpaqueGeometry(view->get_renderer()); };
  caller->on_overlay = [&] { overlay = legend->RenderOverlay(view->get_renderer()); };
  show(*view, caller);
  view->render();
  EXPECT_EQ(opaque, 6);
  EXPECT_EQ(overlay, 6);
  legend->LegendVisibilityOff();
  view->render();
  EXPECT_EQ(opaque, 0);
  EXPECT_EQ(overlay, 0);
}

TEST_F(vtkLegendActorRenderTest, IsSwitchedOffAndOnAgain)
{
  const auto view = make_blue_view();
  const auto legend = show_legend(*view);
  const Image on = picture(*view);
  legend->LegendVisibilityOff();
  EXPECT_FALSE(has_legend(picture(*view)));
  legend->LegendVisibilityOn();
  EXPECT_EQ(picture(*view), on);
  legend->SetLabelMode(1);
  EXPECT_EQ(picture(*view), on);
}

TEST_F(vtkLegendActorRenderTest, FollowsTheViewport)
{
  const auto view = make_blue_view();
  show_legend(*view);
  EXPECT_TRUE(has_legend(picture(*view)));
  view->get_render_window()->SetSize(600, 100);
  const Image wide = picture(*view);
  const auto other = make_blue_view(600, 100);
  show_legend(*other);
  EXPECT_EQ(wide, picture(*other));
}

TEST_F(vtkLegendActorRenderTest, ShowsNewNumbersInTheNextFrame)
{
  const auto view = make_blue_view();
  const auto legend = show_legend(*view);
  const Image before = picture(*view);
  view->get_renderer()->GetActiveCamera()->SetParallelScale(2.0);
  const Image after = picture(*view);
  EXPECT_NE(crop(after, 0, 0, 299, 9), crop(before, 0, 0, 299, 9));
  EXPECT_EQ(crop(after, 0, 10, 299, 99), crop(before, 0, 10, 299, 99)) << "the bar";
}

TEST_F(vtkLegendActorRenderTest, TakesChangesOfTheLabelsLook)
{
  const auto view = make_blue_view();
  const auto legend = show_legend(*view);
  EXPECT_EQ(count_pixels(picture(*view), colour_is(kRed, 100)), 0);
  legend->GetLegendLabelProperty()->SetColor(1.0, 0.0, 0.0);
  EXPECT_GT(count_pixels(picture(*view), colour_is(kRed, 100)), 5);
}

TEST_F(vtkLegendActorRenderTest, SurvivesCamerasAndViewportsThatShowNothing)
{
  const auto view = make_blue_view();
  show_legend(*view);
  const Image before = picture(*view);
  vtkCamera* camera = view->get_renderer()->GetActiveCamera();
  for (const double scale : {NaN, 0.0, 1e300, 1e-300, std::numeric_limits<double>::infinity()}) {
    camera->SetParallelScale(scale);
    view->render();
  }
  camera->SetParallelScale(1.0);
  camera->ParallelProjectionOff();
  view->render();
  camera->ParallelProjectionOn();
  view->get_renderer()->SetViewport(0.5, 0.5, 0.5, 0.5);
  view->render();
  view->get_renderer()->SetViewport(0.0, 0.0, 1.0, 1.0);
  view->get_render_window()->SetSize(1, 1);
  view->render();
  view->get_render_window()->SetSize(300, 100);
  EXPECT_EQ(picture(*view), before);
}

TEST_F(vtkLegendActorRenderTest, TakesNoPartInCameraResets)
{
  const auto view = make_blue_view();
  show_legend(*view);
  view->render();
  double bounds[6];
  view->get_renderer()->ComputeVisiblePropBounds(bounds);
  EXPECT_EQ(vtkMath::AreBoundsInitialized(bounds), 0);
}

// --- Windows and lifetimes

// Otherwise the second window is drawn with the names of the first one's textures.
TEST_F(vtkLegendActorRenderTest, IsShownByTwoWindowsInTurn)
{
  const auto view = make_blue_view();
  const auto other = make_blue_view();
  const auto legend = show_legend(*view);
  show(*other, legend);
  const Image expected = picture(*view);
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(picture(*other), expected);
    EXPECT_EQ(picture(*view), expected);
  }
}

TEST_F(vtkLegendActorRenderTest, OutlivesItsView)
{
  auto view = make_blue_view();
  const auto legend = show_legend(*view);
  const Image before = picture(*view);
  view = make_blue_view();
  show(*view, legend);
  EXPECT_EQ(picture(*view), before);
}

TEST_F(vtkLegendActorRenderTest, IsRemovedWhileShown)
{
  const auto view = make_blue_view();
  auto legend = show_legend(*view);
  const Image before = picture(*view);
  view->remove_props({legend});
  EXPECT_FALSE(has_legend(picture(*view)));
  show(*view, legend);
  EXPECT_EQ(picture(*view), before);
  view->remove_props({legend});
  legend = nullptr;
  EXPECT_FALSE(has_legend(picture(*view)));
}

TEST_F(vtkLegendActorRenderTest, DiesWithItsView)
{
  auto view = make_blue_view();
  const vtkWeakPointer<vtkLegendActor> legend(show_legend(*view));
  view->render();
  view = nullptr;
  EXPECT_EQ(legend, nullptr);
}

TEST_F(vtkLegendActorRenderTest, LooksTheSameInAPartOfAWindow)
{
  const auto window_with_legend = [](int width, double begin) {
    auto window = make_window(width, 100);
    const vtkNew<vtkRenderer> renderer;
    renderer->SetViewport(begin, 0.0, 1.0, 1.0);
    renderer->SetBackground(0.0, 0.0, 1.0);
    renderer->GetActiveCamera()->ParallelProjectionOn();
    window->AddRenderer(renderer);
    const vtkNew<vtkLegendActor> legend;
    renderer->AddViewProp(legend);
    return window;
  };
  const Image whole = picture(window_with_legend(300, 0.0));
  const Image half = picture(window_with_legend(600, 0.5));
  EXPECT_TRUE(has_legend(whole));
  EXPECT_EQ(crop(half, 300, 0, 599, 99), whole);
}

} // namespace
