// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// The operations of GModel that make and prepare mappers.
#include "GModel.h"
#include "GSilhouetteMapper.h"
#include "MyCompositePolyDataMapper.h"
#include "ViewFixture.h"

#include <gtest/gtest.h>

#include <vtkCallbackCommand.h>
#include <vtkCellArray.h>
#include <vtkCommand.h>
#include <vtkDataSetMapper.h>
#include <vtkFloatArray.h>
#include <vtkImageData.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkObjectFactory.h>
#include <vtkOpenGLPolyDataMapper.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>
#include <vtkShaderProgram.h>
#include <vtkUnsignedCharArray.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <memory>
#include <ostream>
#include <set>
#include <string>
#include <vector>

namespace {

using morrow_test::colour_is;
using morrow_test::colour_is_not;
using morrow_test::count_pixels;
using morrow_test::gl_messages;
using morrow_test::Image;
using morrow_test::kBlack;
using morrow_test::kBlue;
using morrow_test::kRed;
using morrow_test::make_view;
using morrow_test::multiblock;
using morrow_test::picture;
using morrow_test::polyline;
using morrow_test::quad;
using morrow_test::Rgb;
using morrow_test::Scene;
using morrow_test::show;
using morrow_test::vtk_messages;
using morrow_test::WarningDisplayOn;

using GModelMapperTest = morrow_test::ViewTest;
using GModelMapperRenderTest = morrow_test::ViewRenderTest;

constexpr unsigned long kUpdateShader = vtkCommand::UpdateShaderEvent;
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// Keeps the shader texts that it is given.
class RecordingMapper : public vtkOpenGLPolyDataMapper
{
public:
  static RecordingMapper* New();
  vtkTypeMacro(RecordingMapper, vtkOpenGLPolyDataMapper)
  RecordingMapper(const RecordingMapper&) = delete;
  void operator=(const RecordingMapper&) = delete;

  void SetFragmentShaderCode(const char* code) override { fragment.emplace_back(code); }
  void SetGeometryShaderCode(const char* code) override { geometry.emplace_back(code); }
  void SetVertexShaderCode(const char* code) override { vertex.emplace_back(code); }

  std::vector<std::string> fragment;
  std::vector<std::string> geometry;
  std::vector<std::string> vertex;

  [[nodiscard]] bool is_untouched() const { return fragment.empty() && geometry.empty() && vertex.empty(); }

protected:
  RecordingMapper() = default;
  ~RecordingMapper() override = default;
};

vtkStandardNewMacro(RecordingMapper)

bool contains(const std::string& text, const std::string& part)
{
  return text.find(part) != std::string::npos;
}

std::string offset_shader(double factor, double units)
{
  const vtkNew<RecordingMapper> mapper;
  GModel::set_polygon_offset(mapper, factor, units);
  return mapper->fragment.size() == 1 ? mapper->fragment[0] : "";
}

vtkSmartPointer<vtkActor> actor_of(vtkMapper* mapper, Rgb colour)
{
  auto actor = vtkSmartPointer<vtkActor>::New();
  actor->SetMapper(mapper);
  actor->GetProperty()->LightingOff();
  actor->GetProperty()->SetColor(colour.r / 255.0, colour.g / 255.0, colour.b / 255.0);
  return actor;
}

/// Fails when VTK or OpenGL has a complaint in its scope, VTK's display of them being on.
class NoComplaints
{
public:
  ~NoComplaints()
  {
    EXPECT_EQ(vtk_messages().size(), mVtk);
    EXPECT_EQ(gl_messages().size(), mGl);
  }
  NoComplaints() = default;
  NoComplaints(const NoComplaints&) = delete;
  NoComplaints& operator=(const NoComplaints&) = delete;

private:
  WarningDisplayOn mOn;
  std::size_t mVtk = vtk_messages().size();
  std::size_t mGl = gl_messages().size();
};

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

// --- Stippled lines: the shaders
// ------------------------------------------------------------------------------------------

TEST_F(GModelMapperTest, StippleIsAGeometryAndAFragmentShader)
{
  const vtkNew<RecordingMapper> mapper;
  GModel::setup_stippled_line_mapper(mapper, nullptr, nullptr);
  ASSERT_EQ(mapper->geometry.size(), 1U);
  ASSERT_EQ(mapper->fragment.size(), 1U);
  EXPECT_TRUE(mapper->vertex.empty());
  EXPECT_TRUE(contains(mapper->geometry[0], "#version 150\n\nlayout(lines) in;\n"));
  EXPECT_TRUE(contains(mapper->fragment[0], "\n   //VTK::TCoord::Dec\n   in float stippleCoord;\n"
                                            "   uniform int StipplePattern;\n"));
  EXPECT_TRUE(contains(mapper->fragment[0],
                       "\n   //VTK::TCoord::Impl\n"
                       "   int stip = 0x1 & (StipplePattern >> int(fract(stippleCoord)*16.0));\n"
                       "   if (stip == 0)\n     discard;\n"));
  EXPECT_TRUE(contains(mapper->fragment[0], "//VTK::Depth::Impl"));
}

TEST_F(GModelMapperTest, StippleAndOffsetReplaceEachOther)
{
  const vtkNew<RecordingMapper> mapper;
  GModel::setup_stippled_line_mapper(mapper, nullptr, nullptr);
  GModel::set_polygon_offset(mapper, 1.0, 1.0);
  GModel::setup_stippled_line_mapper(mapper, nullptr, nullptr);
  ASSERT_EQ(mapper->fragment.size(), 3U);
  EXPECT_FALSE(contains(mapper->fragment[1], "stippleCoord"));
  EXPECT_EQ(mapper->fragment[2], mapper->fragment[0]);
}

TEST_F(GModelMapperTest, StippleIsForOpenGLMappersOnly)
{
  const auto view = make_view();
  const vtkNew<vtkCallbackCommand> command;
  GModel::setup_stippled_line_mapper(nullptr, view.get(), command);
  const vtkNew<GSilhouetteMapper> silhouette;
  const vtkNew<vtkDataSetMapper> other;
  for (vtkMapper* mapper : {static_cast<vtkMapper*>(silhouette), static_cast<vtkMapper*>(other)}) {
    const vtkMTimeType before = mapper->GetMTime();
    GModel::setup_stippled_line_mapper(mapper, view.get(), command);
    EXPECT_EQ(mapper->GetMTime(), before);
    EXPECT_FALSE(mapper->HasObserver(kUpdateShader));
  }
}

TEST_F(GModelMapperTest, StippleObservesTheShadersWithBothCommands)
{
  const auto view = make_view();
  const vtkNew<vtkCallbackCommand> command;
  const vtkNew<RecordingMapper> mapper;
  GModel::setup_stippled_line_mapper(mapper, view.get(), command);
  EXPECT_TRUE(mapper->HasObserver(kUpdateShader, view->update_viewport_command()));
  EXPECT_TRUE(mapper->HasObserver(kUpdateShader, command));
}

TEST_F(GModelMapperTest, StippleTakesNullForViewAndCommand)
{
  const auto view = make_view();
  const vtkNew<vtkCallbackCommand> command;
  const vtkNew<RecordingMapper> without_view;
  GModel::setup_stippled_line_mapper(without_view, nullptr, command);
  EXPECT_TRUE(without_view->HasObserver(kUpdateShader, command));
  EXPECT_EQ(without_view->geometry.size(), 1U);
  const vtkNew<RecordingMapper> without_command;
  GModel::setup_stippled_line_mapper(without_command, view.get(), nullptr);
  EXPECT_TRUE(without_command->HasObserver(kUpdateShader, view->update_viewport_command()));
  EXPECT_EQ(without_command->fragment.size(), 1U);
}

TEST_F(GModelMapperTest, StippleAddsNoCommandTwice)
{
  const auto view = make_view();
  int calls = 0;
  const vtkNew<vtkCallbackCommand> command;
  command->SetClientData(&calls);
  command->SetCallback([](vtkObject*, unsigned long, void* count, void*) { ++*static_cast<int*>(count); });
  const vtkNew<RecordingMapper> mapper;
  GModel::setup_stippled_line_mapper(mapper, view.get(), command);
  GModel::setup_stippled_line_mapper(mapper, view.get(), command);
  mapper->InvokeEvent(kUpdateShader, nullptr);
  EXPECT_EQ(calls, 1);
  EXPECT_EQ(view->update_viewport_command()->GetReferenceCount(), 2); // the view's and the mapper's
}

TEST_F(GModelMapperTest, UniformCallbackTakesNullForAnything)
{
  const vtkNew<vtkProperty> property;
  const vtkNew<vtkShaderProgram> program;
  GModel::SetStippleShaderUniform(nullptr, kUpdateShader, nullptr, nullptr);
  GModel::SetStippleShaderUniform(nullptr, kUpdateShader, property, nullptr);
  GModel::SetStippleShaderUniform(nullptr, kUpdateShader, nullptr, program);
}

// --- Stippled lines: the picture
// ----------------------------------------------------------------------------------------

/// Lines that are set up as a host does it.
struct StippledLines
{
  vtkSmartPointer<vtkMapper> mapper;
  vtkSmartPointer<vtkActor> actor;
  vtkNew<vtkCallbackCommand> command;

  StippledLines(vtkDataObject* data, GView& view, int pattern, float width = 1.0F)
      : mapper(GModel::create_mapper(data, &view)), actor(actor_of(mapper, kRed))
  {
    actor->GetProperty()->SetLineWidth(width);
    this->set_pattern(pattern);
    command->SetCallback(&GModel::SetStippleShaderUniform);
    command->SetClientData(actor->GetProperty());
    GModel::setup_stippled_line_mapper(mapper, &view, command);
    show(view, actor);
  }
  void set_pattern(int pattern) const { actor->GetProperty()->SetLineStipplePattern(pattern); }
};

/// Pixels from `first` to `last` of a row of the picture: '#' where it is lit.
std::string row_of(const Image& image, int row, int first, int last)
{
  std::string text;
  for (int x = first; x < last; ++x) {
    text += image.at(x, row) == kBlack ? '.' : '#';
  }
  return text;
}

/// What a line of this many pixels shows: the pattern from its lowest bit up, one bit a pixel.
std::string bits_of(int pattern, int pixels)
{
  std::string text;
  for (int x = 0; x < pixels; ++x) {
    text += ((pattern >> (x % 16)) & 1) != 0 ? '#' : '.';
  }
  return text;
}

int lit(const std::string& text)
{
  return static_cast<int>(std::count(text.begin(), text.end(), '#'));
}

int lit(const Image& image)
{
  return count_pixels(image, colour_is_not(kBlack));
}

/// A horizontal line through pixel centres of a view of 100 × 100 pixels, from one column's left side to
/// another's.
vtkSmartPointer<vtkPolyData> line(double from, double to, double row)
{
  const double y = (row + 0.5) / 50.0 - 1.0;
  return polyline({from / 50.0 - 1.0, y, 0.0, to / 50.0 - 1.0, y, 0.0});
}

struct Stipple
{
  int pattern;
  float width;
};

class StipplePatternTest : public morrow_test::ViewRenderTest, public testing::WithParamInterface<Stipple>
{};

INSTANTIATE_TEST_SUITE_P(All, StipplePatternTest,
                         testing::Values(Stipple{0xFFFF, 1.0F}, Stipple{0x00FF, 1.0F}, Stipple{0xAAAA, 1.0F},
                                         Stipple{0x0000, 1.0F}, Stipple{0xFFFF, 3.0F}, Stipple{0x00FF, 3.0F},
                                         Stipple{0xAAAA, 3.0F}, Stipple{0x0000, 3.0F}, Stipple{0x8001, 1.0F},
                                         Stipple{0x1234, 3.0F}));

TEST_P(StipplePatternTest, RepeatsEvery16PixelsOfALine)
{
  const auto [pattern, width] = GetParam();
  const auto view = make_view();
  const StippledLines lines(line(5, 95, 50), *view, pattern, width);
  const NoComplaints none;
  const Image image = picture(*view);
  const std::string expected = bits_of(pattern, 90);
  const int half = static_cast<int>(width) / 2;
  for (int row = 50 - half; row <= 50 + half; ++row) {
    EXPECT_EQ(row_of(image, row, 5, 95), expected);
  }
  EXPECT_EQ(lit(image), lit(expected) * static_cast<int>(width));
}

TEST_P(StipplePatternTest, StartsAnewInEveryBlock)
{
  const auto [pattern, width] = GetParam();
  const auto view = make_view();
  const auto data = multiblock({line(5, 95, 20), nullptr, line(30, 93, 50), line(77, 3, 80)});
  const StippledLines lines(data, *view, pattern, width);
  const NoComplaints none;
  const Image image = picture(*view);
  const std::string forwards = bits_of(pattern, 90);
  const std::string backwards = bits_of(pattern, 74);
  EXPECT_EQ(row_of(image, 20, 5, 95), forwards);
  EXPECT_EQ(row_of(image, 50, 30, 93), forwards.substr(0, 63));
  EXPECT_EQ(row_of(image, 80, 3, 77), std::string(backwards.rbegin(), backwards.rend()));
  EXPECT_EQ(lit(image),
            (lit(forwards) + lit(forwards.substr(0, 63)) + lit(backwards)) * static_cast<int>(width));
}

TEST_F(GModelMapperRenderTest, StippleStartsAnewWithEverySegment)
{
  const auto view = make_view();
  const StippledLines lines(polyline({-0.9, 0.01, 0.0, -0.5, 0.01, 0.0, 0.9, 0.01, 0.0}), *view, 0x00FF);
  EXPECT_EQ(row_of(picture(*view), 50, 5, 95), bits_of(0x00FF, 20) + bits_of(0x00FF, 70));
}

// Along a diagonal 16 pixels of length are 11.3 columns.
TEST_F(GModelMapperRenderTest, StippleFollowsTheLengthNotTheColumns)
{
  const auto view = make_view();
  const StippledLines lines(polyline({-0.9, -0.9, 0.0, 0.9, 0.9, 0.0}), *view, 0x00FF);
  const Image image = picture(*view);
  for (int x = 5; x < 95; ++x) {
    const double along = std::fmod((x + 0.5 - 5.0) * std::sqrt(2.0), 16.0);
    if (std::abs(along - 8.0) > 0.1 && along > 0.1 && along < 15.9) {
      EXPECT_EQ(image.at(x, x) == kRed, along < 8.0) << x;
    }
  }
}

TEST_F(GModelMapperRenderTest, StippleIsReadAfreshInEveryFrame)
{
  const auto view = make_view();
  for (const bool composite : {false, true}) {
    const auto data = line(5, 95, 50);
    const auto blocks = multiblock({data});
    const StippledLines lines(composite ? static_cast<vtkDataObject*>(blocks) : data, *view, 0xFFFF);
    for (const int pattern : {0x00FF, 0xF0F0, 0, 0xFFFF, 0xAAAA}) {
      lines.set_pattern(pattern);
      EXPECT_EQ(row_of(picture(*view), 50, 5, 95), bits_of(pattern, 90));
    }
    view->remove_props({lines.actor});
  }
}

/// Through pixel centres of row 100 too where a window is twice as large.
constexpr double kRowOfBoth = 49.75;

TEST_F(GModelMapperRenderTest, StippleKeepsItsLengthInAResizedWindow)
{
  const auto view = make_view();
  const StippledLines lines(line(5, 95, kRowOfBoth), *view, 0x00FF);
  EXPECT_EQ(row_of(picture(*view), 50, 5, 95), bits_of(0x00FF, 90));
  view->get_render_window()->SetSize(200, 200);
  EXPECT_EQ(row_of(picture(*view), 100, 10, 190), bits_of(0x00FF, 180));
  view->get_render_window()->SetSize(300, 100);
  EXPECT_EQ(row_of(picture(*view), 50, 105, 195), bits_of(0x00FF, 90));
}

TEST_F(GModelMapperRenderTest, StippleIsEachViewsOwn)
{
  const auto small = make_view(100, 100);
  const auto large = make_view(200, 200);
  const auto data = line(5, 95, kRowOfBoth);
  const StippledLines in_small(data, *small, 0x00FF);
  const StippledLines in_large(data, *large, 0x0F0F);
  for (int frame = 0; frame < 2; ++frame) {
    EXPECT_EQ(row_of(picture(*small), 50, 5, 95), bits_of(0x00FF, 90));
    EXPECT_EQ(row_of(picture(*large), 100, 10, 190), bits_of(0x0F0F, 180));
  }
}

TEST_F(GModelMapperRenderTest, StippleMayComeAfterTheFirstFrame)
{
  for (const bool composite : {false, true}) {
    const auto view = make_view();
    const auto data = line(5, 95, 50);
    const auto blocks = multiblock({data});
    const auto mapper =
        GModel::create_mapper(composite ? static_cast<vtkDataObject*>(blocks) : data, view.get());
    const auto actor = actor_of(mapper, kRed);
    actor->GetProperty()->SetLineStipplePattern(0x00FF);
    show(*view, actor);
    EXPECT_EQ(row_of(picture(*view), 50, 5, 95), bits_of(0xFFFF, 90));
    const vtkNew<vtkCallbackCommand> command;
    command->SetCallback(&GModel::SetStippleShaderUniform);
    command->SetClientData(actor->GetProperty());
    GModel::setup_stippled_line_mapper(mapper, view.get(), command);
    const NoComplaints none;
    EXPECT_EQ(row_of(picture(*view), 50, 5, 95), bits_of(0x00FF, 90));
  }
}

TEST_F(GModelMapperRenderTest, StippleWorksForTranslucentAndForColouredLines)
{
  const auto data = line(5, 95, 50);
  const vtkNew<vtkUnsignedCharArray> colours;
  colours->SetNumberOfComponents(3);
  const unsigned char blue[3] = {0, 0, 255};
  colours->InsertNextTypedTuple(blue);
  colours->InsertNextTypedTuple(blue);
  data->GetPointData()->SetScalars(colours);
  const auto view = make_view();
  const StippledLines lines(data, *view, 0x00FF);
  const NoComplaints none;
  EXPECT_EQ(count_pixels(picture(*view), colour_is(kBlue)), lit(bits_of(0x00FF, 90)));
  lines.actor->GetProperty()->SetOpacity(0.5);
  EXPECT_EQ(row_of(picture(*view), 50, 5, 95), bits_of(0x00FF, 90));
  EXPECT_EQ(count_pixels(picture(*view), colour_is({0, 0, 128}, 1)), lit(bits_of(0x00FF, 90)));
}

TEST_F(GModelMapperRenderTest, StippleWorksOutsideOfViews)
{
  const auto view = make_view();
  const StippledLines lines(line(5, 95, 50), *view, 0x00FF);
  Scene scene(100, 100); // of the view's size
  scene.look_down(1.0);
  scene.renderer()->AddActor(lines.actor);
  EXPECT_EQ(row_of(scene.render(), 50, 5, 95), bits_of(0x00FF, 90));
}

// Each has a helper of its own, because one has colours and the other does not.
TEST_F(GModelMapperRenderTest, EveryHelpersShadersReachTheCompositeMapper)
{
  const auto view = make_view();
  const auto coloured = line(5, 95, 20);
  const vtkNew<vtkFloatArray> numbers;
  numbers->InsertNextValue(0.0F);
  numbers->InsertNextValue(1.0F);
  coloured->GetPointData()->SetScalars(numbers);
  const StippledLines lines(multiblock({coloured, line(5, 95, 50)}), *view, 0x00FF);
  std::set<void*> programs;
  const vtkNew<vtkCallbackCommand> listener;
  listener->SetClientData(&programs);
  listener->SetCallback([](vtkObject*, unsigned long, void* all, void* program) {
    static_cast<std::set<void*>*>(all)->insert(program);
  });
  lines.mapper->AddObserver(kUpdateShader, listener);
  const Image image = picture(*view);
  EXPECT_EQ(programs.size(), 2U);
  EXPECT_EQ(row_of(image, 20, 5, 95), bits_of(0x00FF, 90));
  EXPECT_EQ(row_of(image, 50, 5, 95), bits_of(0x00FF, 90));
  lines.mapper->RemoveObserver(listener);
}

TEST_F(GModelMapperRenderTest, StippleSurvivesThePropertyThatIsTakenBack)
{
  const auto view = make_view();
  const StippledLines lines(line(5, 95, 50), *view, 0x00FF);
  view->render();
  lines.command->SetClientData(nullptr);
  lines.actor->SetProperty(vtkSmartPointer<vtkProperty>::New());     // the last reference on the first one
  EXPECT_EQ(row_of(picture(*view), 50, 5, 95), bits_of(0x00FF, 90)); // the program still has the pattern
}

TEST_F(GModelMapperRenderTest, StippleSurvivesItsView)
{
  for (const bool composite : {false, true}) {
    auto view = make_view();
    const auto data = line(5, 95, 50);
    const auto blocks = multiblock({data});
    const StippledLines lines(composite ? static_cast<vtkDataObject*>(blocks) : data, *view, 0xFFFF);
    view->render();
    view.reset();
    const auto other = make_view();
    show(*other, lines.actor);
    EXPECT_EQ(lit(picture(*other)), 90); // solid whatever its length
  }
}

TEST_F(GModelMapperRenderTest, StippleWithoutCommandsIsHarmless)
{
  const auto view = make_view();
  const auto mapper = GModel::create_mapper(line(5, 95, 50), view.get());
  GModel::setup_stippled_line_mapper(mapper, nullptr, nullptr);
  show(*view, actor_of(mapper, kRed));
  const NoComplaints none;
  EXPECT_EQ(lit(picture(*view)), 0); // a program starts with the pattern 0
}

TEST_F(GModelMapperRenderTest, UniformCallbackLeavesOtherShadersAlone)
{
  const auto view = make_view();
  const auto actor = actor_of(GModel::create_mapper(quad(-0.5, -0.5, 0.5, 0.5), view.get()), kRed);
  const vtkNew<vtkCallbackCommand> command;
  command->SetCallback(&GModel::SetStippleShaderUniform);
  command->SetClientData(actor->GetProperty());
  actor->GetMapper()->AddObserver(kUpdateShader, command);
  show(*view, actor);
  const NoComplaints none;
  EXPECT_EQ(count_pixels(picture(*view), colour_is(kRed)), 50 * 50);
}

// OpenGL refuses them with a geometry shader for lines; nothing else happens.
TEST_F(GModelMapperRenderTest, StippleOfPolygonsDrawsNothing)
{
  const auto view = make_view();
  const StippledLines lines(quad(-0.5, -0.5, 0.5, 0.5), *view, 0xFFFF);
  const morrow_test::ExpectedGlErrors refused({"GL_INVALID_OPERATION"});
  EXPECT_EQ(lit(picture(*view)), 0);
}

} // namespace
