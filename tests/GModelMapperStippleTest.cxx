// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// The operation of GModel that stipples lines.
#include "GModel.h"

#include "GSilhouetteMapper.h"
#include "ModelMapperFixture.h"
#include "MyCompositePolyDataMapper.h"

#include <vtkCommand.h>
#include <vtkDataSetMapper.h>
#include <vtkFloatArray.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkShaderProgram.h>
#include <vtkUnsignedCharArray.h>

#include <algorithm>
#include <cmath>
#include <set>

namespace {

using namespace morrow_test;

constexpr unsigned long kUpdateShader = vtkCommand::UpdateShaderEvent;

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
