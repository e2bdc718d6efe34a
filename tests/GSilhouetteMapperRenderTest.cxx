// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// Silhouettes in the picture, and what drawing them leaves alone and behind.
#include "GSilhouetteMapper.h"

#include "SilhouetteFixture.h"

#include <vtkCellData.h>
#include <vtkCullerCollection.h>
#include <vtkHardwareSelector.h>
#include <vtkImageData.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkPropPicker.h>
#include <vtkSelection.h>
#include <vtkSphereSource.h>
#include <vtk_glew.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

using namespace morrow_test;

using GSilhouetteMapperRenderTest = ViewRenderTest;

vtkSmartPointer<vtkPolyData> coloured(vtkSmartPointer<vtkPolyData> data, Rgb colour)
{
  data->GetCellData()->SetScalars(bytes({colour.r, colour.g, colour.b}, data->GetNumberOfCells()));
  return data;
}

/// An actor with a silhouette mapper.
struct Silhouette
{
  vtkNew<GSilhouetteMapper> mapper;
  vtkNew<vtkActor> actor;

  explicit Silhouette(vtkDataObject* data, Rgb colour = kRed)
  {
    mapper->SetInputDataObject(data);
    actor->SetMapper(mapper);
    actor->GetProperty()->SetColor(colour.r / 255.0, colour.g / 255.0, colour.b / 255.0);
  }
};

/// A scene of 200 × 200 pixels, 100 a unit, whose pixel centres of row 100 are at y = 0.005.
struct FlatScene : Scene
{
  FlatScene() { look_down(1.0); }
};

constexpr double kRow = 0.005;

/// Which pixels of row 100 are lit, from column 20 on.
std::string dashes(int pattern)
{
  FlatScene scene;
  const Silhouette line(ridge(-0.8, 0.8, kRow));
  line.actor->GetProperty()->SetLineStipplePattern(pattern);
  scene.renderer()->AddActor(line.actor);
  const Image image = scene.render();
  std::string row;
  for (int x = 20; x < 180; ++x) {
    row += image.at(x, 100) == kRed ? '#' : '.';
  }
  EXPECT_EQ(count_pixels(image, colour_is_not(kBlack)), std::count(row.begin(), row.end(), '#'));
  return row;
}

std::string repeated(const std::string& text, int times)
{
  std::string all;
  for (int i = 0; i < times; ++i) {
    all += text;
  }
  return all;
}

int red_pixels(const Image& image)
{
  return count_pixels(image, colour_is(kRed));
}

/// How many OpenGL objects of the kinds that a silhouette mapper makes there are in the window's context.
struct GlObjects
{
  int programs = 0;
  int shaders = 0;
  int buffers = 0;
  int vertex_arrays = 0;

  explicit GlObjects(vtkRenderWindow* window)
  {
    window->MakeCurrent();
    constexpr GLuint more_than_there_are = 1000;
    for (GLuint i = 1; i < more_than_there_are; ++i) {
      programs += glIsProgram(i);
      shaders += glIsShader(i);
      buffers += glIsBuffer(i);
      vertex_arrays += glIsVertexArray(i);
    }
  }
  friend void PrintTo(const GlObjects& o, std::ostream* out)
  {
    *out << o.programs << " programs, " << o.shaders << " shaders, " << o.buffers << " buffers, "
         << o.vertex_arrays << " vertex arrays";
  }
  bool operator==(const GlObjects& other) const
  {
    return programs == other.programs && shaders == other.shaders && buffers == other.buffers &&
           vertex_arrays == other.vertex_arrays;
  }
};

/// The outline of a sphere of radius 0.5 around the middle of the picture, 100 pixels a unit.
void expect_circle(const Image& image, const std::string& where)
{
  int count = 0;
  double middle = image.width() / 2.0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      if (image.at(x, y) == kRed) {
        ++count;
        const double radius = std::hypot(x + 0.5 - middle, y + 0.5 - middle);
        EXPECT_NEAR(radius, 50.0, 2.0) << where << ": " << x << ", " << y;
      }
    }
  }
  EXPECT_GT(count, 250) << where;
  EXPECT_LT(count, 400) << where;
}

/// A host's own camera, which is not one of VTK's for OpenGL.
class OwnCamera : public vtkCamera
{
public:
  static vtkSmartPointer<OwnCamera> make()
  {
    auto* camera = new OwnCamera;
    camera->InitializeObjectBase();
    return vtkSmartPointer<OwnCamera>::Take(camera);
  }
};

// ---------------------------------------------------------------------------------------------------------
// What is drawn

TEST_F(GSilhouetteMapperRenderTest, DrawsTheSilhouetteInThePropertysColour)
{
  FlatScene scene;
  const Silhouette line(ridge(-0.5, 0.3, kRow), kGreen);
  scene.renderer()->AddActor(line.actor);
  const Image image = scene.render();
  const auto lit = find_pixels(image, colour_is_not(kBlack));
  EXPECT_EQ(lit.count, count_pixels(image, colour_is(kGreen)));
  EXPECT_EQ(lit.min_y, 100);
  EXPECT_EQ(lit.max_y, 100);
  EXPECT_EQ(lit.min_x, 50);
  EXPECT_EQ(lit.max_x, 129);
  EXPECT_EQ(lit.count, 80);
}

TEST_F(GSilhouetteMapperRenderTest, LinesHaveTheirWidth)
{
  FlatScene scene;
  const Silhouette line(ridge(-0.5, 0.5, kRow));
  scene.renderer()->AddActor(line.actor);
  for (const float width : {1.0F, 3.0F, 1.0F, 7.0F}) {
    line.actor->GetProperty()->SetLineWidth(width);
    const auto lit = find_pixels(scene.render(), colour_is_not(kBlack));
    EXPECT_EQ(lit.height(), static_cast<int>(width));
    EXPECT_EQ(lit.count, 100 * static_cast<int>(width));
  }
}

// OpenGL has no such width: an error fails this test.
TEST_F(GSilhouetteMapperRenderTest, AWidthOfNothingIsOne)
{
  FlatScene scene;
  const Silhouette line(ridge(-0.5, 0.5, kRow));
  scene.renderer()->AddActor(line.actor);
  for (const double width : {0.0, -1.0, kNan}) {
    line.actor->GetProperty()->SetLineWidth(static_cast<float>(width));
    EXPECT_EQ(find_pixels(scene.render(), colour_is_not(kBlack)).height(), 1) << width;
  }
}

TEST_F(GSilhouetteMapperRenderTest, StipplePatterns)
{
  EXPECT_EQ(dashes(0xFFFF), repeated("#", 160));
  EXPECT_EQ(dashes(0x00FF), repeated("########........", 10));
  EXPECT_EQ(dashes(0x000F), repeated("####............", 10));
  EXPECT_EQ(dashes(0x8001), repeated("#..............#", 10));
  EXPECT_EQ(dashes(0xAAAA), repeated(".#", 80));
  EXPECT_EQ(dashes(0), repeated(".", 160));
}

// Two edges of 25 pixels one after the other: the second does not go on where the first ended.
TEST_F(GSilhouetteMapperRenderTest, EachEdgeStartsItsDashesAnew)
{
  FlatScene scene;
  const auto blocks = multiblock({ridge(-0.75, -0.5, kRow), ridge(-0.5, -0.25, kRow)});
  const Silhouette lines(blocks);
  lines.actor->GetProperty()->SetLineStipplePattern(0x00FF);
  scene.renderer()->AddActor(lines.actor);
  const Image image = scene.render();
  std::string row;
  for (int x = 25; x < 75; ++x) {
    row += image.at(x, 100) == kRed ? '#' : '.';
  }
  EXPECT_EQ(row, repeated("########........########.", 2));
}

TEST_F(GSilhouetteMapperRenderTest, EachLeafHasItsColour)
{
  FlatScene scene;
  const auto inner = multiblock({nullptr, coloured(ridge(-0.5, 0.5, 0.505), kBlue)});
  const auto outer = multiblock(
      {nullptr, ridge(-0.5, 0.5, kRow), vtkNew<vtkPolyData>(), coloured(ridge(-0.5, 0.5, -0.495), kGreen)});
  outer->SetBlock(4, inner);
  outer->SetBlock(5, vtkNew<vtkImageData>());
  const Silhouette lines(outer);
  scene.renderer()->AddActor(lines.actor);
  const Image image = scene.render();
  EXPECT_EQ(image.at(100, 150), kBlue);
  EXPECT_EQ(image.at(100, 100), kRed);
  EXPECT_EQ(image.at(100, 50), kGreen);
  EXPECT_EQ(count_pixels(image, colour_is_not(kBlack)), 300);
  lines.mapper->ScalarVisibilityOff();
  EXPECT_EQ(red_pixels(scene.render()), 300);
}

// The later leaf lies over the earlier one.
TEST_F(GSilhouetteMapperRenderTest, LeavesAreDrawnInTheirOrder)
{
  FlatScene scene;
  const Silhouette lines(
      multiblock({coloured(ridge(-0.5, 0.5, kRow), kBlue), coloured(ridge(-0.2, 0.2, kRow), kGreen)}));
  scene.renderer()->AddActor(lines.actor);
  const Image image = scene.render();
  EXPECT_EQ(count_pixels(image, colour_is(kGreen)), 40);
  EXPECT_EQ(count_pixels(image, colour_is(kBlue)), 60);
}

TEST_F(GSilhouetteMapperRenderTest, WithoutSilhouettesNothingIsDrawn)
{
  FlatScene scene;
  vtkNew<vtkImageData> image;
  image->SetDimensions(2, 2, 2);
  const vtkSmartPointer<vtkDataObject> inputs[] = {nullptr,
                                                   vtkSmartPointer<vtkPolyData>::New(),
                                                   vtkSmartPointer<vtkMultiBlockDataSet>::New(),
                                                   multiblock({nullptr, nullptr}),
                                                   image.Get(),
                                                   morrow_test::one_triangle(),
                                                   quad(-0.5, -0.5, 0.5, 0.5),
                                                   morrow_test::polyline({-0.5, 0, 0, 0.5, 0, 0})};
  for (const auto& input : inputs) {
    const Silhouette lines(input);
    scene.renderer()->AddActor(lines.actor);
    EXPECT_EQ(count_pixels(scene.render(), colour_is_not(kBlack)), 0);
    scene.renderer()->RemoveActor(lines.actor);
  }
}

TEST_F(GSilhouetteMapperRenderTest, DrawsWhatItsSourceMakes)
{
  FlatScene scene;
  vtkNew<vtkSphereSource> source;
  source->SetThetaResolution(64);
  source->SetPhiResolution(64);
  source->SetRadius(0.1);
  const Silhouette outline(nullptr);
  outline.mapper->SetInputConnection(source->GetOutputPort());
  scene.renderer()->AddActor(outline.actor);
  static_cast<void>(scene.render());
  source->SetRadius(0.5);
  expect_circle(scene.render(), "plain renderer");
}

TEST_F(GSilhouetteMapperRenderTest, TheOutlineOfASphereInAView)
{
  const auto view = make_view(200, 200);
  const Silhouette outline(ball());
  morrow_test::show(*view, outline.actor);
  expect_circle(picture(*view), "view");
}

TEST_F(GSilhouetteMapperRenderTest, TheOutlineTurnsWithTheCamera)
{
  FlatScene scene;
  const Silhouette outline(ball());
  scene.renderer()->AddActor(outline.actor);
  for (int i = 0; i < 5; ++i) {
    scene.renderer()->GetActiveCamera()->Azimuth(33.0);
    expect_circle(scene.render(), "turned " + std::to_string(i));
  }
}

TEST_F(GSilhouetteMapperRenderTest, NearerGeometryHidesIt)
{
  FlatScene scene;
  const Silhouette line(ridge(-0.5, 0.5, kRow));
  const auto wall = flat_actor(quad(-0.2, -0.2, 0.2, 0.2, 0.1), kBlue);
  for (const bool wall_first : {true, false}) {
    scene.renderer()->RemoveAllViewProps();
    scene.renderer()->AddActor(wall_first ? wall.Get() : line.actor.Get());
    scene.renderer()->AddActor(wall_first ? line.actor.Get() : wall.Get());
    EXPECT_EQ(red_pixels(scene.render()), 60);
  }
  wall->GetMapper()->SetInputDataObject(quad(-0.2, -0.2, 0.2, 0.2, -0.1)); // behind
  EXPECT_EQ(red_pixels(scene.render()), 100);
}

TEST_F(GSilhouetteMapperRenderTest, TheActorsTransformIsIgnored)
{
  FlatScene scene;
  const Silhouette line(ridge(-0.5, 0.5, kRow));
  scene.renderer()->AddActor(line.actor);
  const Image before = scene.render();
  line.actor->SetPosition(0.1, 0.3, 0.0);
  line.actor->SetScale(0.5);
  line.actor->RotateX(180.0);
  EXPECT_TRUE(scene.render() == before);
}

TEST_F(GSilhouetteMapperRenderTest, WithACameraOfAnotherKindNothingIsDrawn)
{
  FlatScene scene;
  const Silhouette line(ridge(-0.5, 0.5, kRow));
  scene.renderer()->AddActor(line.actor);
  scene.renderer()->SetActiveCamera(OwnCamera::make());
  EXPECT_EQ(count_pixels(scene.render(), colour_is_not(kBlack)), 0);
}

TEST_F(GSilhouetteMapperRenderTest, AStaticMapperDoesNotUpdateItsSource)
{
  FlatScene scene;
  vtkNew<vtkSphereSource> source;
  source->SetRadius(0.2);
  const Silhouette outline(nullptr);
  outline.mapper->SetInputConnection(source->GetOutputPort());
  outline.mapper->StaticOn();
  scene.renderer()->AddActor(outline.actor);
  EXPECT_EQ(red_pixels(scene.render()), 0);
  source->Update();
  EXPECT_GT(red_pixels(scene.render()), 0);
}

TEST_F(GSilhouetteMapperRenderTest, HostileCoordinatesDoNoHarm)
{
  FlatScene scene;
  const auto broken = ball();
  const double hostile[] = {kNan, kInfinity, 1e38, -1e38};
  for (vtkIdType i = 0; i < broken->GetNumberOfPoints(); i += 3) {
    broken->GetPoints()->SetPoint(i, hostile[i % 4], 0.0, hostile[i / 4 % 4]);
  }
  const Silhouette lines(multiblock({broken, ridge(-0.5, 0.5, kRow)}), kRed);
  scene.renderer()->AddActor(lines.actor);
  scene.renderer()->GetCullers()->RemoveAllItems(); // or VTK leaves it out, because of its bounds
  EXPECT_GE(red_pixels(scene.render()), 100);
}

// ---------------------------------------------------------------------------------------------------------
// Beside VTK

TEST_F(GSilhouetteMapperRenderTest, LeavesNothingBoundAndTheLineWidthAsItWas)
{
  FlatScene scene;
  using State = std::array<GLint, 6>;
  const auto state_now = [] {
    State state = {};
    glGetIntegerv(GL_CURRENT_PROGRAM, &state[0]);
    glGetIntegerv(GL_ARRAY_BUFFER_BINDING, &state[1]);
    glGetIntegerv(GL_VERTEX_ARRAY_BINDING, &state[2]);
    glGetIntegerv(GL_LINE_WIDTH, &state[3]);
    glGetIntegerv(GL_DEPTH_TEST, &state[4]);
    glGetIntegerv(GL_BLEND, &state[5]);
    return state;
  };
  State before = {};
  State after = {};
  const auto first = CallingProp::make();
  const auto last = CallingProp::make();
  first->on_opaque = [&] { before = state_now(); };
  last->on_opaque = [&] { after = state_now(); };
  const Silhouette line(ridge(-0.5, 0.5, kRow));
  line.actor->GetProperty()->SetLineWidth(5.0F);
  scene.renderer()->AddViewProp(first);
  scene.renderer()->AddActor(line.actor);
  scene.renderer()->AddViewProp(last);
  for (int frame = 0; frame < 2; ++frame) {
    EXPECT_EQ(red_pixels(scene.render()), 500);
    EXPECT_EQ(after, (State{0, 0, 0, before[3], before[4], before[5]}));
    EXPECT_NE(before[3], 5);
  }
}

// Lines and surfaces that VTK draws before and after look as they do alone.
TEST_F(GSilhouetteMapperRenderTest, OtherActorsLookTheSame)
{
  const auto thin = flat_actor(morrow_test::polyline({-0.9, 0.705, 0, 0.9, 0.705, 0}), kGreen);
  const auto thick = flat_actor(morrow_test::polyline({-0.9, -0.7, 0, 0.9, -0.7, 0}), kWhite);
  thick->GetProperty()->SetLineWidth(4.0F);
  const auto lit = morrow_test::lit_actor(sphere(0.3), kBlue);
  FlatScene scene;
  for (vtkActor* actor : {thin.Get(), thick.Get(), lit.Get()}) {
    scene.renderer()->AddActor(actor);
  }
  const Image alone = scene.render();
  const Silhouette line(ridge(-0.9, 0.9, 0.505));
  line.actor->GetProperty()->SetLineWidth(4.0F);
  scene.renderer()->RemoveAllViewProps();
  for (vtkActor* actor : {thick.Get(), line.actor.Get(), thin.Get(), lit.Get()}) {
    scene.renderer()->AddActor(actor);
  }
  Image together = scene.render();
  EXPECT_EQ(red_pixels(together), 4 * 180);
  together.fill(0, 140, 199, 160, kBlack); // where the silhouette is
  EXPECT_TRUE(together == alone);
}

TEST_F(GSilhouetteMapperRenderTest, PickersSeeThrough)
{
  FlatScene scene;
  const auto wall = flat_actor(quad(-0.5, -0.5, 0.5, 0.5, -0.5), kBlue);
  const Silhouette line(ridge(-0.9, 0.9, kRow));
  line.actor->GetProperty()->SetLineWidth(9.0F);
  scene.renderer()->AddActor(wall);
  scene.renderer()->AddActor(line.actor);
  const Image before = scene.render();
  vtkNew<vtkPropPicker> picker;
  EXPECT_EQ(picker->PickProp(100, 100, scene.renderer()), 1);
  EXPECT_EQ(picker->GetViewProp(), wall);
  EXPECT_EQ(picker->PickProp(20, 100, scene.renderer()), 0) << "only the line is there";
  vtkNew<vtkHardwareSelector> selector;
  selector->SetRenderer(scene.renderer());
  selector->SetArea(0, 0, 199, 199);
  const auto selection = vtkSmartPointer<vtkSelection>::Take(selector->Select());
  EXPECT_EQ(selection->GetNumberOfNodes(), 1U);
  EXPECT_TRUE(scene.render() == before);
}

// ---------------------------------------------------------------------------------------------------------
// Opacity

// VTK's depth peeling would take the line's colour for a depth.
TEST_F(GSilhouetteMapperRenderTest, ATranslucentLineInAView)
{
  const auto view = make_view(200, 200);
  const Silhouette line(ridge(-0.5, 0.5, kRow), kBlue);
  line.actor->GetProperty()->SetOpacity(0.5);
  morrow_test::show(*view, line.actor);
  EXPECT_EQ(count_pixels(picture(*view), colour_is({0, 0, 128}, 1)), 100);
  const auto wall = flat_actor(quad(-0.2, -0.2, 0.2, 0.2, -0.5), kRed);
  morrow_test::show(*view, wall);
  Image image = picture(*view);
  EXPECT_EQ(count_pixels(image, colour_is({0, 0, 128}, 1)), 60);
  EXPECT_EQ(count_pixels(image, colour_is({128, 0, 128}, 1)), 40);
  wall->SetPosition(0.0, 0.0, 1.0); // nearer
  image = picture(*view);
  EXPECT_EQ(count_pixels(image, colour_is({0, 0, 128}, 1)), 60);
  EXPECT_EQ(count_pixels(image, colour_is(kRed)), 40 * 40);
}

TEST_F(GSilhouetteMapperRenderTest, ATranslucentLineAndATranslucentSurfaceInAView)
{
  const auto view = make_view(200, 200);
  const Silhouette line(ridge(-0.5, 0.5, kRow), kBlue);
  const auto veil = flat_actor(quad(-0.2, -0.2, 0.2, 0.2, -0.5), kRed);
  line.actor->GetProperty()->SetOpacity(0.5);
  veil->GetProperty()->SetOpacity(0.5);
  morrow_test::show(*view, veil);
  morrow_test::show(*view, line.actor);
  Image image = picture(*view);
  EXPECT_EQ(count_pixels(image, colour_is({0, 0, 128}, 1)), 100) << "it hides the veil";
  EXPECT_EQ(count_pixels(image, colour_is({128, 0, 0}, 1)), 39 * 40);
  veil->SetPosition(0.0, 0.0, 1.0); // nearer
  image = picture(*view);
  EXPECT_EQ(count_pixels(image, colour_is({0, 0, 128}, 1)), 60);
  EXPECT_EQ(count_pixels(image, colour_is({128, 0, 64}, 1)), 40);
}

TEST_F(GSilhouetteMapperRenderTest, APlainRendererThatPeelsLeavesTranslucentLinesOut)
{
  FlatScene scene;
  scene.window()->SetAlphaBitPlanes(1);
  scene.renderer()->UseDepthPeelingOn();
  const Silhouette line(ridge(-0.5, 0.5, kRow));
  const auto veil = flat_actor(quad(-0.2, -0.2, 0.2, 0.2, -0.5), kBlue);
  veil->GetProperty()->SetOpacity(0.5);
  scene.renderer()->AddActor(veil);
  scene.renderer()->AddActor(line.actor);
  EXPECT_EQ(red_pixels(scene.render()), 100) << "opaque";
  line.actor->GetProperty()->SetOpacity(0.5);
  const Image image = scene.render();
  EXPECT_EQ(count_pixels(image, colour_is({0, 0, 128}, 1)), 40 * 40);
  EXPECT_EQ(count_pixels(image, colour_is_not(kBlack)), 40 * 40);
}

// ---------------------------------------------------------------------------------------------------------
// Windows

TEST_F(GSilhouetteMapperRenderTest, TwoWindowsKeepTheirPrograms)
{
  FlatScene a;
  FlatScene b;
  const Silhouette line(ridge(-0.5, 0.5, kRow));
  a.renderer()->AddActor(line.actor);
  b.renderer()->AddActor(line.actor);
  for (int i = 0; i < 2; ++i) { // VTK tells its props to release everything when another window starts
    EXPECT_EQ(red_pixels(a.render()), 100);
    EXPECT_EQ(red_pixels(b.render()), 100);
  }
  const GlObjects in_a(a.window());
  const GlObjects in_b(b.window());
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(red_pixels(a.render()), 100);
    EXPECT_EQ(red_pixels(b.render()), 100);
  }
  EXPECT_EQ(GlObjects(a.window()), in_a);
  EXPECT_EQ(GlObjects(b.window()), in_b);
}

TEST_F(GSilhouetteMapperRenderTest, ReleasingDeletesEverythingAndTheNextFrameMakesItAnew)
{
  FlatScene scene;
  FlatScene other;
  const Silhouette line(ridge(-0.5, 0.5, kRow));
  static_cast<void>(scene.render());
  static_cast<void>(other.render());
  const GlObjects before(scene.window());
  scene.renderer()->AddActor(line.actor);
  other.renderer()->AddActor(line.actor);
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(red_pixels(scene.render()), 100);
    EXPECT_EQ(red_pixels(other.render()), 100);
    const GlObjects there(scene.window());
    SCOPED_TRACE(i);
    EXPECT_EQ(there.programs, before.programs + 1);
    EXPECT_EQ(there.shaders, before.shaders + 3);
    EXPECT_EQ(there.vertex_arrays, before.vertex_arrays + 1);
    other.window()->MakeCurrent(); // whichever context is the current one
    line.mapper->ReleaseGraphicsResources(i == 0 ? nullptr : scene.window());
    EXPECT_TRUE(other.window()->IsCurrent());
    EXPECT_EQ(GlObjects(scene.window()), before);
    line.mapper->ReleaseGraphicsResources(scene.window()); // nothing left
  }
}

TEST_F(GSilhouetteMapperRenderTest, ReleasingOneWindowLeavesTheOther)
{
  FlatScene a;
  FlatScene b;
  const Silhouette line(ridge(-0.5, 0.5, kRow));
  a.renderer()->AddActor(line.actor);
  b.renderer()->AddActor(line.actor);
  static_cast<void>(a.render());
  static_cast<void>(b.render());
  const GlObjects in_b(b.window());
  a.renderer()->RemoveActor(line.actor);
  EXPECT_EQ(GlObjects(b.window()), in_b);
  EXPECT_EQ(red_pixels(b.render()), 100);
  EXPECT_EQ(red_pixels(a.render()), 0);
}

TEST_F(GSilhouetteMapperRenderTest, AWindowMayBeRestarted)
{
  FlatScene scene;
  const Silhouette line(ridge(-0.5, 0.5, kRow));
  scene.renderer()->AddActor(line.actor);
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(red_pixels(scene.render()), 100);
    scene.window()->Finalize();
  }
  line.mapper->ReleaseGraphicsResources(scene.window());
  line.mapper->ReleaseGraphicsResources(nullptr);
  EXPECT_EQ(red_pixels(scene.render()), 100);
}

// The actor has left the window before its context goes, so that nobody tells the mapper.
TEST_F(GSilhouetteMapperRenderTest, AContextMayGoUnnoticed)
{
  FlatScene scene;
  const Silhouette line(ridge(-0.5, 0.5, kRow));
  scene.renderer()->AddActor(line.actor);
  static_cast<void>(scene.render());
  vtkNew<GSilhouetteMapper> stand_in;
  line.actor->SetMapper(stand_in);
  scene.window()->Finalize();
  static_cast<void>(scene.render()); // a new context, where the old names mean nothing
  const GlObjects before(scene.window());
  line.mapper->ReleaseGraphicsResources(scene.window());
  line.mapper->ReleaseGraphicsResources(nullptr);
  EXPECT_EQ(GlObjects(scene.window()), before);
  line.actor->SetMapper(line.mapper);
  EXPECT_EQ(red_pixels(scene.render()), 100);
}

TEST_F(GSilhouetteMapperRenderTest, TheWindowMayDieFirst)
{
  const Silhouette line(ridge(-0.5, 0.5, kRow));
  for (int i = 0; i < 3; ++i) {
    FlatScene scene; // likely at the same address each time
    scene.renderer()->AddActor(line.actor);
    EXPECT_EQ(red_pixels(scene.render()), 100);
  }
  line.mapper->ReleaseGraphicsResources(nullptr);
}

TEST_F(GSilhouetteMapperRenderTest, TheMapperMayDieFirst)
{
  FlatScene scene;
  {
    const Silhouette line(ridge(-0.5, 0.5, kRow));
    scene.renderer()->AddActor(line.actor);
    EXPECT_EQ(red_pixels(scene.render()), 100);
    line.actor->SetMapper(nullptr);
  }
  EXPECT_EQ(count_pixels(scene.render(), colour_is_not(kBlack)), 0);
}

TEST_F(GSilhouetteMapperRenderTest, AWindowThatNeverRenderedHasNothingToRelease)
{
  Scene scene;
  const Silhouette line(ridge(-0.5, 0.5, kRow));
  line.mapper->ReleaseGraphicsResources(scene.window());
  line.mapper->ReleaseGraphicsResources(nullptr);
}

} // namespace
