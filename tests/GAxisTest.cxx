// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "GAxis.h"

#include "AxisFixture.h"
#include "BrantColor.h"
#include "ViewFixture.h"

#include <vtkMath.h>
#include <vtkViewport.h>

#include <array>
#include <sstream>
#include <string>

namespace {

using namespace morrow_test;

using ScreenBounds = std::array<int, 4>;

ScreenBounds screen_bounds(GAxis& triad, vtkRenderer* renderer)
{
  ScreenBounds bounds = {77, 77, 77, 77};
  triad.get_screen_bounds(renderer, bounds.data());
  return bounds;
}

/// The half side of the bounds, which must be a cube around the origin; NaN for no bounds.
double half_side(GAxis& triad)
{
  const double* bounds = triad.GetBounds();
  if (bounds == nullptr) {
    return kNan;
  }
  for (int i = 0; i < 6; ++i) {
    EXPECT_DOUBLE_EQ(bounds[i], i % 2 == 0 ? -bounds[1] : bounds[1]) << i;
  }
  return bounds[1];
}

std::string printed(vtkObject& object)
{
  std::ostringstream text;
  object.Print(text);
  return text.str();
}

/// A viewport that is no renderer.
class BareViewport : public vtkViewport
{
public:
  static vtkSmartPointer<BareViewport> make()
  {
    auto* viewport = new BareViewport;
    viewport->InitializeObjectBase();
    return vtkSmartPointer<BareViewport>::Take(viewport);
  }
  BareViewport(const BareViewport&) = delete;
  BareViewport& operator=(const BareViewport&) = delete;

  vtkWindow* GetVTKWindow() override { return nullptr; }
  vtkAssemblyPath* PickProp(double /*x*/, double /*y*/) override { return nullptr; }
  vtkAssemblyPath* PickProp(double /*x1*/, double /*y1*/, double /*x2*/, double /*y2*/) override
  {
    return nullptr;
  }

protected:
  BareViewport() = default;
  ~BareViewport() override = default;
};

Drawn draw(GAxis& triad, vtkViewport* viewport)
{
  Drawn drawn;
  drawn.opaque = triad.RenderOpaqueGeometry(viewport);
  drawn.translucent = triad.RenderTranslucentPolygonalGeometry(viewport);
  drawn.overlay = triad.RenderOverlay(viewport);
  return drawn;
}

// --- Settings -------------------------------------------------------------------------------------------

using GAxisTest = ViewTest;

TEST_F(GAxisTest, IsAtFirstA3dTriadOfNoRenderer)
{
  const vtkNew<GAxis> triad;
  EXPECT_EQ(triad->get_type(), MRUtil::AXIS_3D);
  EXPECT_EQ(triad->get_renderer(), nullptr);
  EXPECT_NE(triad->GetVisibility(), 0);
  EXPECT_NE(triad->GetUseBounds(), 0);
  EXPECT_EQ(triad->HasTranslucentPolygonalGeometry(), 0);
  EXPECT_STREQ(triad->GetClassName(), "GAxis");
  EXPECT_TRUE(triad->IsA("vtkProp"));
}

TEST_F(GAxisTest, IsNeverPickableInANewForm)
{
  const vtkNew<GAxis> triad;
  EXPECT_EQ(triad->GetPickable(), 0);
  for (const auto type : {MRUtil::AXIS_2D, MRUtil::AXIS_1D, MRUtil::AXIS_3D}) {
    triad->PickableOn();
    triad->set_type(type);
    EXPECT_EQ(triad->GetPickable(), 0) << type;
  }
}

TEST_F(GAxisTest, KeepsEverythingWhenTheTypeIsThePresentOne)
{
  for (const auto type : {MRUtil::AXIS_3D, MRUtil::AXIS_2D, MRUtil::AXIS_1D, NoType}) {
    const Triad triad = make_triad(type);
    triad->PickableOn(); // a new form would switch it off
    const vtkMTimeType time = triad->GetMTime();
    triad->set_type(type);
    EXPECT_EQ(triad->GetMTime(), time);
    EXPECT_NE(triad->GetPickable(), 0);
  }
}

TEST_F(GAxisTest, IsModifiedByANewTypeColourOrRenderer)
{
  const vtkNew<GAxis> triad;
  const vtkNew<vtkRenderer> renderer;
  vtkMTimeType time = triad->GetMTime();
  triad->set_type(MRUtil::AXIS_2D);
  EXPECT_GT(triad->GetMTime(), time);
  time = triad->GetMTime();
  triad->set_label_color(BRANT_RED);
  EXPECT_GT(triad->GetMTime(), time);
  time = triad->GetMTime();
  triad->set_renderer(renderer);
  EXPECT_GT(triad->GetMTime(), time);
}

TEST_F(GAxisTest, KeepsAValueThatIsNoType)
{
  const Triad triad = make_triad(NoType);
  EXPECT_EQ(triad->get_type(), NoType);
  triad->set_label_color(BRANT_RED); // there are no labels
  triad->ReleaseGraphicsResources(nullptr);
  triad->set_type(MRUtil::AXIS_1D);
  EXPECT_EQ(triad->get_type(), MRUtil::AXIS_1D);
}

TEST_F(GAxisTest, TakesALabelColourInEveryForm)
{
  for (const auto type : Forms) {
    make_triad(type)->set_label_color(BRANT_CORAL);
  }
}

TEST_F(GAxisTest, DoesNotKeepItsRendererAlive)
{
  const vtkNew<GAxis> triad;
  {
    const vtkNew<vtkRenderer> renderer;
    triad->set_renderer(renderer);
    EXPECT_EQ(triad->get_renderer(), renderer);
    EXPECT_EQ(renderer->GetReferenceCount(), 1);
  }
  EXPECT_EQ(triad->get_renderer(), nullptr);
  EXPECT_EQ(triad->GetBounds(), nullptr);
}

TEST_F(GAxisTest, PrintsItsSettings)
{
  const std::string text = printed(*make_triad(MRUtil::AXIS_2D));
  EXPECT_NE(text.find("Type: 1\n"), std::string::npos);
  EXPECT_NE(text.find("Size Fraction: 0.05\n"), std::string::npos);
  EXPECT_NE(text.find("Position Fractions: 0.06, 0.06\n"), std::string::npos);
}

// --- Screen bounds --------------------------------------------------------------------------------------

TEST_F(GAxisTest, HasTheSquareAroundItsCornerAsScreenBounds)
{
  const auto view = make_view(800, 600);
  EXPECT_EQ(screen_bounds(*make_triad(MRUtil::AXIS_2D), view->get_renderer()), (ScreenBounds{18, 78, 6, 66}));
}

// 0.06 as float is a little less, and 50 times that, as double too; as float it is 3.
TEST_F(GAxisTest, ComputesScreenBoundsInFloatsAndTruncates)
{
  const auto view = make_view(50, 777);
  EXPECT_EQ(screen_bounds(*make_triad(MRUtil::AXIS_2D), view->get_renderer()), (ScreenBounds{1, 5, 44, 48}));
}

TEST_F(GAxisTest, HasScreenBoundsAroundTheFirstPixelInTheOtherForms)
{
  const auto view = make_view(800, 600);
  for (const auto type : {MRUtil::AXIS_3D, MRUtil::AXIS_1D, NoType}) {
    EXPECT_EQ(screen_bounds(*make_triad(type), view->get_renderer()), (ScreenBounds{-30, 30, -30, 30}));
  }
}

TEST_F(GAxisTest, HasScreenBoundsWithoutPixelsWhenThereIsNoRenderer)
{
  const Triad triad = make_triad(MRUtil::AXIS_2D);
  EXPECT_EQ(screen_bounds(*triad, nullptr), (ScreenBounds{0, -1, 0, -1}));
  const auto view = make_view();
  triad->get_screen_bounds(view->get_renderer(), nullptr); // nothing to write to
}

// --- Bounds ---------------------------------------------------------------------------------------------

// 5 of 100 pixels, which show 2 units.
TEST_F(GAxisTest, IsBoundedByTheCubeOfAnArrowsLength)
{
  const auto view = make_view();
  for (const auto type : {MRUtil::AXIS_3D, MRUtil::AXIS_1D, NoType}) {
    EXPECT_NEAR(half_side(*make_triad(type, view->get_renderer())), 0.1, 1e-7) << type;
  }
}

TEST_F(GAxisTest, HasHalfTheBoundsAtTwiceTheZoom)
{
  const auto view = make_view();
  const Triad triad = make_triad(MRUtil::AXIS_3D, view->get_renderer());
  view->get_renderer()->GetActiveCamera()->SetParallelScale(0.5);
  EXPECT_NEAR(half_side(*triad), 0.05, 1e-7);
}

TEST_F(GAxisTest, IsBoundedByWhatTheViewTakesForThatManyPixels)
{
  const auto view = make_view(300, 200);
  vtkRenderer* renderer = view->get_renderer();
  renderer->GetActiveCamera()->ParallelProjectionOff();
  renderer->GetActiveCamera()->SetPosition(3.0, 4.0, 5.0);
  double length = 0.0;
  GView::pixel_to_model_length(renderer, 200 * 0.05F, length, nullptr);
  ASSERT_GT(length, 0.0);
  EXPECT_DOUBLE_EQ(half_side(*make_triad(MRUtil::AXIS_3D, renderer)), length);
}

TEST_F(GAxisTest, HasNoBoundsInTheCorner)
{
  const auto view = make_view();
  EXPECT_EQ(make_triad(MRUtil::AXIS_2D, view->get_renderer())->GetBounds(), nullptr);
}

TEST_F(GAxisTest, HasNoBoundsWhileNothingGivesTheScale)
{
  const Triad triad = make_triad(MRUtil::AXIS_3D);
  EXPECT_EQ(triad->GetBounds(), nullptr) << "no renderer";
  const vtkNew<vtkRenderer> renderer;
  triad->set_renderer(renderer);
  EXPECT_EQ(triad->GetBounds(), nullptr) << "no camera";
  renderer->GetActiveCamera();
  EXPECT_EQ(triad->GetBounds(), nullptr) << "no window";
}

TEST_F(GAxisTest, HasNoBoundsThatAreNotFinite)
{
  const auto view = make_view();
  const Triad triad = make_triad(MRUtil::AXIS_3D, view->get_renderer());
  for (const double scale : {kNan, 0.0, kInfinity}) {
    view->get_renderer()->GetActiveCamera()->SetParallelScale(scale);
    EXPECT_EQ(triad->GetBounds(), nullptr) << scale;
  }
}

TEST_F(GAxisTest, TakesPartInCameraResetsInSpaceOnly)
{
  const auto view = make_view();
  const Triad triad = make_triad(MRUtil::AXIS_2D, view->get_renderer());
  show(*view, triad);
  double bounds[6];
  view->get_renderer()->ComputeVisiblePropBounds(bounds);
  EXPECT_EQ(vtkMath::AreBoundsInitialized(bounds), 0);
  view->get_renderer()->ResetCamera();
  triad->set_type(MRUtil::AXIS_3D);
  view->get_renderer()->ComputeVisiblePropBounds(bounds);
  EXPECT_NE(vtkMath::AreBoundsInitialized(bounds), 0);
  EXPECT_EQ(bounds[5], half_side(*triad));
}

// --- Passes that draw nothing ---------------------------------------------------------------------------

TEST_F(GAxisTest, DrawsNothingOutsideOfARenderedWindow)
{
  const auto view = make_view();
  const auto bare = BareViewport::make();
  const vtkNew<vtkRenderer> loose;
  for (const auto type : Forms) {
    const Triad triad = make_triad(type);
    EXPECT_EQ(draw(*triad, nullptr), Nothing) << type;
    EXPECT_EQ(draw(*triad, bare), Nothing) << type;
    EXPECT_EQ(draw(*triad, loose), Nothing) << type;
    EXPECT_EQ(draw(*triad, view->get_renderer()), Nothing) << type << ": a window without context";
  }
}

TEST_F(GAxisTest, ReleasesWhatItNeverHad)
{
  const auto view = make_view();
  for (const auto type : {MRUtil::AXIS_3D, MRUtil::AXIS_2D, MRUtil::AXIS_1D, NoType}) {
    const Triad triad = make_triad(type);
    triad->ReleaseGraphicsResources(nullptr);
    triad->ReleaseGraphicsResources(view->get_render_window());
  }
}

} // namespace
