// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// The operations of GModel that make mappers and offset their depth.
#include "GModel.h"

#include "GSilhouetteMapper.h"
#include "ModelMapperFixture.h"
#include "MyCompositePolyDataMapper.h"

#include <vtkCellArray.h>
#include <vtkDataSetMapper.h>
#include <vtkImageData.h>
#include <vtkNew.h>
#include <vtkPoints.h>
#include <vtkPolyDataMapper.h>

#include <cmath>
#include <ostream>

namespace {

using namespace morrow_test;

std::string offset_shader(double factor, double units)
{
  const vtkNew<RecordingMapper> mapper;
  GModel::set_polygon_offset(mapper, factor, units);
  return mapper->fragment.size() == 1 ? mapper->fragment[0] : "";
}

// --- Making mappers
// -----------------------------------------------------------------------------------------------------

TEST_F(GModelMapperTest, MakesAPlainMapperForPolygonData)
{
  const auto data = quad(0.0, 0.0, 1.0, 1.0);
  const auto mapper = GModel::create_mapper(data, nullptr);
  EXPECT_TRUE(mapper->IsA("vtkPolyDataMapper"));
  EXPECT_FALSE(mapper->IsA("vtkCompositePolyDataMapper2"));
  EXPECT_EQ(mapper->GetInputDataObject(0, 0), data);
  EXPECT_EQ(mapper->GetStatic(), 1);
}

TEST_F(GModelMapperTest, MakesACompositeMapperForMultiblocks)
{
  const auto data = multiblock({quad(0.0, 0.0, 1.0, 1.0), nullptr});
  const auto mapper = GModel::create_mapper(data, nullptr);
  EXPECT_STREQ(mapper->GetClassName(), "MyCompositePolyDataMapper");
  EXPECT_EQ(mapper->GetInputDataObject(0, 0), data);
  EXPECT_EQ(mapper->GetStatic(), 1);
}

TEST_F(GModelMapperTest, MakesAMapperWithoutInputForNull)
{
  const auto mapper = GModel::create_mapper(nullptr, nullptr);
  EXPECT_TRUE(mapper->IsA("vtkPolyDataMapper"));
  EXPECT_FALSE(mapper->IsA("vtkCompositePolyDataMapper2"));
  EXPECT_EQ(mapper->GetNumberOfInputConnections(0), 0);
  EXPECT_EQ(mapper->GetStatic(), 1);
}

TEST_F(GModelMapperTest, KeepsItsDataAlive)
{
  vtkWeakPointer<vtkDataObject> data;
  vtkSmartPointer<vtkMapper> mapper;
  {
    const auto made = quad(0.0, 0.0, 1.0, 1.0);
    data = made;
    mapper = GModel::create_mapper(made, nullptr);
  }
  EXPECT_NE(data, nullptr);
  mapper = nullptr;
  EXPECT_EQ(data, nullptr);
}

TEST_F(GModelMapperRenderTest, DrawsEveryBlock)
{
  const auto view = make_view();
  const auto data = multiblock({quad(-1.0, -1.0, 0.0, 0.0), nullptr, quad(0.0, 0.0, 1.0, 1.0)});
  show(*view, actor_of(GModel::create_mapper(data, view.get()), kRed));
  const NoComplaints none;
  EXPECT_EQ(count_pixels(picture(*view), colour_is(kRed)), 2 * 50 * 50);
}

TEST_F(GModelMapperRenderTest, DrawsNothingOfNullAndOfOtherData)
{
  const vtkNew<vtkImageData> image;
  image->SetDimensions(2, 2, 2);
  for (vtkDataObject* data : {static_cast<vtkDataObject*>(nullptr), static_cast<vtkDataObject*>(image)}) {
    const auto view = make_view();
    show(*view, actor_of(GModel::create_mapper(data, view.get()), kRed));
    const NoComplaints none;
    EXPECT_EQ(count_pixels(picture(*view), colour_is_not(kBlack)), 0);
  }
}

// --- Polygon offset: the shader
// ------------------------------------------------------------------------------------------

TEST_F(GModelMapperTest, OffsetOfNothingLeavesTheShadersAlone)
{
  const vtkNew<RecordingMapper> mapper;
  GModel::set_polygon_offset(mapper, 0.0, 0.0);
  GModel::set_polygon_offset(mapper, -0.0, 0.0);
  EXPECT_TRUE(mapper->is_untouched());
}

TEST_F(GModelMapperTest, OffsetByUnitsHasNoSlope)
{
  const std::string shader = offset_shader(0.0, 2.0);
  EXPECT_TRUE(contains(shader, "  gl_FragDepth = gl_FragCoord.z + 0.000016*4.000000;\n"));
  EXPECT_FALSE(contains(shader, "brant_c_scale"));
  EXPECT_FALSE(contains(shader, "//VTK::Coincident::Dec"));
  EXPECT_FALSE(contains(shader, "//VTK::Depth::Impl"));
  EXPECT_TRUE(contains(shader, "//VTK::UniformFlow::Impl"));
}

TEST_F(GModelMapperTest, OffsetByFactorHasTheSlope)
{
  const std::string shader = offset_shader(1.0, 1.0);
  EXPECT_TRUE(
      contains(shader, "  gl_FragDepth = gl_FragCoord.z + 2.000000*brant_c_scale + 0.000016*2.000000;\n"));
  EXPECT_TRUE(contains(shader,
                       "  float brant_c_scale = length(vec2(dFdx(gl_FragCoord.z),dFdy(gl_FragCoord.z)));\n"
                       "  //VTK::UniformFlow::Impl\n"));
  EXPECT_FALSE(contains(shader, "//VTK::Coincident::Dec"));
  EXPECT_FALSE(contains(shader, "//VTK::Depth::Impl"));
}

TEST_F(GModelMapperTest, OffsetByAFactorAloneIsOne)
{
  EXPECT_TRUE(contains(offset_shader(-0.25, 0.0), "-0.500000*brant_c_scale + 0.000016*0.000000;"));
}

// What is not a number is not 0 either.
TEST_F(GModelMapperTest, OffsetsThatAreNotFiniteAreWritten)
{
  EXPECT_TRUE(contains(offset_shader(kNan, 0.0), "gl_FragCoord.z + nan*brant_c_scale + 0.000016*0.000000;"));
  EXPECT_TRUE(contains(offset_shader(0.0, kNan), "gl_FragCoord.z + 0.000016*nan;"));
  EXPECT_TRUE(contains(offset_shader(-kInfinity, kInfinity), "-inf*brant_c_scale + 0.000016*inf;"));
  EXPECT_TRUE(contains(offset_shader(1e308, 1.0), "gl_FragCoord.z + inf*brant_c_scale + 0.000016*2.000000;"));
}

TEST_F(GModelMapperTest, OffsetIsForOpenGLMappersOnly)
{
  GModel::set_polygon_offset(nullptr, 1.0, 1.0);
  const vtkNew<GSilhouetteMapper> silhouette;
  const vtkNew<vtkDataSetMapper> other;
  const vtkMTimeType before = silhouette->GetMTime() + other->GetMTime();
  GModel::set_polygon_offset(silhouette, 1.0, 1.0);
  GModel::set_polygon_offset(other, 1.0, 1.0);
  EXPECT_EQ(silhouette->GetMTime() + other->GetMTime(), before);
}

TEST_F(GModelMapperTest, AnswersNoWarningsAndLeavesTheirDisplayAsItWas)
{
  const auto plain = GModel::create_mapper(quad(0.0, 0.0, 1.0, 1.0), nullptr);
  const auto composite = GModel::create_mapper(multiblock({}), nullptr);
  for (const int display : {1, 0}) {
    const WarningDisplayOn restore;
    vtkObject::SetGlobalWarningDisplay(display);
    for (vtkMapper* mapper : {plain.Get(), composite.Get()}) {
      GModel::set_polygon_offset(mapper, 1.0, 1.0);
      GModel::setup_stippled_line_mapper(mapper, nullptr, nullptr);
    }
    EXPECT_EQ(vtkObject::GetGlobalWarningDisplay(), display);
  }
  EXPECT_TRUE(vtk_messages().empty());
}

// --- Polygon offset: the picture
// ---------------------------------------------------------------------------------------

/// The depth that a scene of 200 × 200 pixels has at its pixel (100, 100), and its change from pixel to pixel
/// along x, with a polygon that rises along x.
struct Depth
{
  double value = 0.0;
  double slope = 0.0;
};

Depth depth_with_offset(double rise, double factor, double units)
{
  Scene scene;
  scene.look_down(1.0);
  const auto data = quad(-0.5, -0.5, 0.5, 0.5);
  vtkPoints* points = data->GetPoints();
  for (vtkIdType i = 0; i < points->GetNumberOfPoints(); ++i) {
    double p[3];
    points->GetPoint(i, p);
    points->SetPoint(i, p[0], p[1], -rise * p[0]);
  }
  const auto mapper = GModel::create_mapper(data, nullptr);
  GModel::set_polygon_offset(mapper, factor, units);
  scene.renderer()->AddActor(actor_of(mapper, kRed));
  vtkCamera* camera = scene.renderer()->GetActiveCamera();
  camera->SetClippingRange(camera->GetDistance() - 2.0, camera->GetDistance() + 2.0);
  const NoComplaints none;
  EXPECT_EQ(count_pixels(scene.render(), colour_is(kRed)), 100 * 100);
  float depths[2];
  EXPECT_EQ(scene.window()->GetZbufferData(100, 100, 101, 100, depths), 1);
  return {depths[0], static_cast<double>(depths[1]) - depths[0]};
}

TEST_F(GModelMapperRenderTest, OffsetMovesDepthByUnits)
{
  constexpr double Tolerance = 1e-6;
  const double before = depth_with_offset(0.0, 0.0, 0.0).value;
  EXPECT_NEAR(depth_with_offset(0.0, 0.0, 1000.0).value - before, 2.0 * 0.000016 * 1000.0, Tolerance);
  EXPECT_NEAR(depth_with_offset(0.0, 0.0, -1000.0).value - before, -2.0 * 0.000016 * 1000.0, Tolerance);
  EXPECT_NEAR(depth_with_offset(0.0, 50.0, 1000.0).value - before, 2.0 * 0.000016 * 1000.0, Tolerance);
}

// A polygon that rises by 2 units a unit is seen here over 100 pixels a unit and 4 units of depth.
TEST_F(GModelMapperRenderTest, OffsetMovesDepthBySlope)
{
  constexpr double Tolerance = 1e-5;
  const Depth before = depth_with_offset(2.0, 0.0, 0.0);
  ASSERT_NEAR(before.slope, 2.0 / 100.0 / 4.0, Tolerance);
  EXPECT_NEAR(depth_with_offset(2.0, 3.0, 0.0).value - before.value, 2.0 * 3.0 * before.slope, Tolerance);
  EXPECT_NEAR(depth_with_offset(-2.0, 3.0, 0.0).value - depth_with_offset(-2.0, 0.0, 0.0).value,
              2.0 * 3.0 * before.slope, Tolerance);
}

TEST_F(GModelMapperRenderTest, OffsetsThatAreNotFiniteMoveNothing)
{
  const double before = depth_with_offset(1.0, 0.0, 0.0).value;
  for (const double number : {kNan, kInfinity, -kInfinity, 1e308}) {
    EXPECT_EQ(depth_with_offset(1.0, number, number).value, before) << number;
  }
}

// Their digits do not overflow anything; what is seen is up to the driver.
TEST_F(GModelMapperRenderTest, HugeOffsetsAreHarmless)
{
  for (const double number : {1e30, 1e300, -1e300}) {
    (void)depth_with_offset(1.0, number, number);
  }
}

/// A square of 4 × 4 squares, as lines or as polygons.
vtkSmartPointer<vtkPolyData> grid(bool as_lines)
{
  constexpr int Lines = 5;
  const vtkNew<vtkPoints> points;
  const vtkNew<vtkCellArray> cells;
  for (int j = 0; j < Lines; ++j) {
    for (int i = 0; i < Lines; ++i) {
      points->InsertNextPoint(2.0 * i / (Lines - 1) - 1.0, 2.0 * j / (Lines - 1) - 1.0, 0.0);
    }
  }
  for (vtkIdType j = 0; j + 1 < Lines; ++j) {
    for (vtkIdType i = 0; i + 1 < Lines; ++i) {
      const vtkIdType corner = j * Lines + i;
      const vtkIdType ids[5] = {corner, corner + 1, corner + Lines + 1, corner + Lines, corner};
      cells->InsertNextCell(as_lines ? 5 : 4, ids);
    }
  }
  auto data = vtkSmartPointer<vtkPolyData>::New();
  data->SetPoints(points);
  as_lines ? data->SetLines(cells) : data->SetPolys(cells);
  return data;
}

/// How a surface and its lines are seen, at which angle in degrees.
struct Grazing
{
  bool composite = false;
  bool parallel = false;
  double angle = 5.0;
  float line_width = 1.0F;
};

std::ostream& operator<<(std::ostream& out, const Grazing& g)
{
  return out << (g.composite ? "multiblock" : "plain") << (g.parallel ? ", parallel, " : ", perspective, ")
             << g.angle << " degrees, width " << g.line_width;
}

std::shared_ptr<GView> grazing_view(const Grazing& how)
{
  constexpr double Degree = 0.017453292519943295;
  const auto view = make_view(200, 200);
  vtkCamera* camera = view->get_renderer()->GetActiveCamera();
  camera->SetParallelProjection(how.parallel);
  camera->SetPosition(0.7, -3.0 * std::cos(how.angle * Degree), 3.0 * std::sin(how.angle * Degree));
  camera->SetViewUp(0.0, 0.0, 1.0);
  return view;
}

vtkSmartPointer<vtkMapper> grid_mapper(bool as_lines, bool composite)
{
  const auto data = grid(as_lines);
  return composite ? GModel::create_mapper(multiblock({data}), nullptr)
                   : GModel::create_mapper(data, nullptr);
}

/// How many pixels of the lines their own surface hides.
int broken_pixels(const Grazing& how, bool with_offset)
{
  const auto view = grazing_view(how);
  const auto surface_mapper = grid_mapper(false, how.composite);
  if (with_offset) {
    GModel::set_polygon_offset(surface_mapper, 1.0, 1.0);
  }
  const auto surface = actor_of(surface_mapper, kBlue);
  const auto lines = actor_of(grid_mapper(true, how.composite), kRed);
  lines->GetProperty()->SetLineWidth(how.line_width);
  view->add_props({surface, lines});
  const NoComplaints none;
  const Image image = picture(*view);
  EXPECT_GT(count_pixels(image, colour_is(kBlue)), 500) << how; // the surface is seen as well
  const int broken = count_pixels(image, colour_is(kRed));
  surface->VisibilityOff();
  const int whole = count_pixels(picture(*view), colour_is(kRed));
  EXPECT_GT(whole, 200) << how;
  return whole - broken;
}

TEST_F(GModelMapperRenderTest, OffsetKeepsLinesOnSurfacesWhole)
{
  const Grazing ways[] = {{false, false, 5.0, 1.0F}, {false, false, 10.0, 3.0F}, {false, true, 30.0, 3.0F},
                          {true, false, 5.0, 1.0F},  {true, true, 10.0, 3.0F},   {false, true, 5.0, 1.0F}};
  for (const Grazing& how : ways) {
    EXPECT_EQ(broken_pixels(how, true), 0) << how;
    EXPECT_GT(broken_pixels(how, false), 200) << how;
  }
}

TEST_F(GModelMapperRenderTest, OffsetLeavesHiddenLinesHidden)
{
  const auto view = make_view();
  const auto mapper = GModel::create_mapper(quad(-1.0, -1.0, 1.0, 1.0), view.get());
  GModel::set_polygon_offset(mapper, 1.0, 1.0);
  const auto behind = polyline({-0.9, 0.01, -0.01, 0.9, 0.01, -0.01});
  view->add_props({actor_of(mapper, kBlue), actor_of(GModel::create_mapper(behind, nullptr), kRed)});
  const Image image = picture(*view);
  EXPECT_EQ(count_pixels(image, colour_is(kRed)), 0);
  EXPECT_EQ(count_pixels(image, colour_is(kBlue)), 100 * 100);
}

TEST_F(GModelMapperRenderTest, OffsetMayComeAfterTheFirstFrame)
{
  for (const bool composite : {false, true}) {
    const auto view = grazing_view({});
    const auto mapper = grid_mapper(false, composite);
    view->add_props({actor_of(mapper, kBlue), actor_of(grid_mapper(true, composite), kRed)});
    const int broken = count_pixels(picture(*view), colour_is(kRed));
    GModel::set_polygon_offset(mapper, 1.0, 1.0);
    EXPECT_GT(count_pixels(picture(*view), colour_is(kRed)), broken + 20);
  }
}

TEST_F(GModelMapperRenderTest, OffsetWorksForTranslucentSurfaces)
{
  const auto view = make_view();
  const auto mapper = GModel::create_mapper(quad(-0.5, -0.5, 0.5, 0.5), view.get());
  GModel::set_polygon_offset(mapper, 1.0, 1.0);
  const auto actor = actor_of(mapper, kRed);
  actor->GetProperty()->SetOpacity(0.5);
  show(*view, actor);
  const NoComplaints none;
  EXPECT_EQ(count_pixels(picture(*view), colour_is({128, 0, 0}, 1)), 50 * 50);
}

} // namespace
