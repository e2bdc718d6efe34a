// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// Random scenes in which the labels that a GLabelMapper draws, and their order, are compared with the literal
// decision of LabelOracle.h, made from the depth buffer of the very same frame.
#include "BrantVector.h"
#include "GLabelMapper.h"
#include "GView.h"
#include "LabelOracle.h"
#include "LabelRecorder.h"
#include "MRUtil.h"
#include "ViewFixture.h"

#include <gtest/gtest.h>

#include <vtkActor.h>
#include <vtkActor2D.h>
#include <vtkCamera.h>
#include <vtkCellArray.h>
#include <vtkCullerCollection.h>
#include <vtkFloatArray.h>
#include <vtkMatrix4x4.h>
#include <vtkNew.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkProp.h>
#include <vtkProperty.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkSmartPointer.h>
#include <vtkTextProperty.h>

#include <cmath>
#include <map>
#include <ostream>
#include <random>
#include <string>
#include <vector>

namespace {

using morrow_test::Image;
using morrow_test::kInfinity;
using morrow_test::kNan;
using morrow_test::LabelFrame;
using morrow_test::LabelRecorder;
using morrow_test::LabelResult;
using morrow_test::LabelVerdict;
using morrow_test::Rgb;

using Texts = std::vector<std::string>;
using TestModel = morrow_test::ScriptedModel;

/// In its overlay, before any label is drawn, it keeps what the oracle needs of a frame.
///
/// The last column and row of the depth read are undefined: VTK reads them from beyond the window. The oracle
/// does not look at them, and no comparison of whole arrays must.
class FrameProbe : public vtkProp
{
public:
  static vtkSmartPointer<FrameProbe> make()
  {
    auto* probe = new FrameProbe;
    probe->InitializeObjectBase();
    return vtkSmartPointer<FrameProbe>::Take(probe);
  }
  FrameProbe(const FrameProbe&) = delete;
  FrameProbe& operator=(const FrameProbe&) = delete;

  int RenderOverlay(vtkViewport* viewport) override
  {
    auto* renderer = vtkRenderer::SafeDownCast(viewport);
    vtkRenderWindow* window = renderer->GetRenderWindow();
    mMatrix->DeepCopy(renderer->GetActiveCamera()->GetCompositeProjectionTransformMatrix(
        renderer->GetTiledAspectRatio(), 0.0, 1.0));
    mWidth = window->GetSize()[0];
    mHeight = window->GetSize()[1];
    window->GetZbufferData(0, 0, mWidth, mHeight, mDepth);
    return 0;
  }

  /// The frame as a renderer with this viewport sees it; the probe must live meanwhile.
  LabelFrame frame(const double* viewport, double tolerance)
  {
    LabelFrame frame;
    frame.matrix = mMatrix;
    std::copy(viewport, viewport + 4, frame.viewport);
    frame.width = mWidth;
    frame.height = mHeight;
    frame.depth = mDepth->GetPointer(0);
    frame.tolerance = tolerance;
    return frame;
  }

protected:
  FrameProbe() = default;
  ~FrameProbe() override = default;

private:
  vtkNew<vtkMatrix4x4> mMatrix;
  vtkNew<vtkFloatArray> mDepth;
  int mWidth = 0;
  int mHeight = 0;
};

/// How often each verdict came: a comparison in which all labels share one fate would prove little.
using Verdicts = std::map<LabelVerdict, int>;

struct PlacedLabel
{
  std::string text;
  BrantVector point;
};

/// The texts that must be drawn, in order.
Texts expected_texts(const LabelFrame& frame, const std::vector<PlacedLabel>& labels, Verdicts& verdicts)
{
  Texts texts;
  for (const PlacedLabel& label : labels) {
    const LabelResult result = morrow_test::judge_label(frame, label.point.data());
    ++verdicts[result.verdict];
    if (result.visible()) {
      texts.push_back(label.text);
    }
  }
  return texts;
}

// --- Random scenes ---------------------------------------------------------------------------------------

class Random
{
public:
  explicit Random(unsigned seed) : mEngine(seed) {}

  double between(double low, double high)
  {
    return std::uniform_real_distribution<double>(low, high)(mEngine);
  }
  BrantVector point(double extent)
  {
    return {between(-extent, extent), between(-extent, extent), between(-extent, extent)};
  }
  unsigned below(unsigned end) { return static_cast<unsigned>(mEngine() % end); }

private:
  std::mt19937 mEngine;
};

vtkSmartPointer<vtkPolyData> random_triangles(Random& random, int count)
{
  const vtkNew<vtkPoints> points;
  points->SetDataTypeToDouble();
  const vtkNew<vtkCellArray> cells;
  for (int i = 0; i < count; ++i) {
    const BrantVector centre = random.point(1.0);
    vtkIdType corners[3];
    for (vtkIdType& corner : corners) {
      corner = points->InsertNextPoint((centre + random.point(0.5)).data());
    }
    cells->InsertNextCell(3, corners);
  }
  auto data = vtkSmartPointer<vtkPolyData>::New();
  data->SetPoints(points);
  data->SetPolys(cells);
  return data;
}

/// Grey triangles and spheres, and labels in and around them.
struct RandomScene
{
  std::vector<vtkSmartPointer<vtkActor>> actors;
  std::vector<PlacedLabel> labels;
};

/// Labels in and around the scene, on the corners of its triangles, and where no label can be.
std::vector<PlacedLabel> random_labels(Random& random, vtkPolyData& triangles)
{
  std::vector<PlacedLabel> labels;
  for (int i = 0; i < 300; ++i) {
    labels.push_back({"", random.point(1.6)});
  }
  for (vtkIdType i = 0; i < triangles.GetNumberOfPoints(); ++i) {
    labels.push_back({"", BrantVector(triangles.GetPoint(i))});
  }
  for (const double strange : {kNan, kInfinity, -kInfinity, 1.0e300, -1.0e300}) {
    labels.push_back({"", {strange, 0.1, 0.2}});
    labels.push_back({"", {0.1, strange, 0.2}});
    labels.push_back({"", {0.1, 0.2, strange}});
  }
  for (std::size_t i = 0; i < labels.size(); ++i) {
    labels[i].text = std::to_string(i);
  }
  return labels;
}

RandomScene random_scene(Random& random)
{
  RandomScene scene;
  const auto triangles = random_triangles(random, 30);
  scene.actors.push_back(morrow_test::flat_actor(triangles, {60, 60, 60}));
  for (int i = 0; i < 4; ++i) {
    const auto ball = morrow_test::flat_actor(morrow_test::sphere(random.between(0.1, 0.5)), {90, 90, 90});
    const BrantVector centre = random.point(1.0);
    ball->SetPosition(centre.x(), centre.y(), centre.z());
    scene.actors.push_back(ball);
  }
  scene.labels = random_labels(random, *triangles);
  return scene;
}

void look_from_somewhere(Random& random, vtkRenderer& renderer, bool parallel)
{
  vtkCamera* camera = renderer.GetActiveCamera();
  BrantVector from = random.point(1.0).normalized() * 4.0;
  camera->SetPosition(from.data());
  camera->SetFocalPoint(random.point(0.2).data());
  camera->SetViewUp(random.point(1.0).data());
  camera->SetViewAngle(35.0);
  camera->SetParallelProjection(parallel);
  camera->SetParallelScale(1.3);
  camera->SetClippingRange(2.4, 5.2); // near and far plane cut the scene
}

// --- One renderer ----------------------------------------------------------------------------------------

struct Arrangement
{
  const char* name;
  int width;
  int height;
  double viewport[4];
  bool parallel;
};

void PrintTo(const Arrangement& arrangement, std::ostream* out)
{
  *out << arrangement.name;
}

/// A window, a renderer over all of it that clears it, and one over the arrangement's viewport with the
/// scene.
class GLabelOracleTest : public morrow_test::RenderTest, public ::testing::WithParamInterface<Arrangement>
{
protected:
  void SetUp() override
  {
    RenderTest::SetUp();
    mWindow = morrow_test::make_window(GetParam().width, GetParam().height);
    mWindow->AddRenderer(mWhole);
    mWindow->AddRenderer(mRenderer);
    const double* v = GetParam().viewport;
    mRenderer->SetViewport(v[0], v[1], v[2], v[3]);
    mRenderer->GetCullers()->RemoveAllItems();
  }

  void fill(Random& random)
  {
    mRenderer->RemoveAllViewProps();
    const RandomScene scene = random_scene(random);
    mLabels = scene.labels;
    for (const auto& actor : scene.actors) {
      mRenderer->AddViewProp(actor);
    }
    mRenderer->AddViewProp(mProbe);
    add_labels(random);
    look_from_somewhere(random, *mRenderer, GetParam().parallel);
  }

  void add_labels(Random& random)
  {
    mMapper->clear();
    for (const PlacedLabel& label : mLabels) {
      mMapper->add_point(label.point, label.text.c_str(), BRANT_WHITE);
    }
    mMapper->set_model(&mModel);
    mMapper->SetTolerance(random.between(-0.001, 0.003));
    const vtkNew<vtkActor2D> actor;
    actor->SetMapper(mMapper);
    mRenderer->AddViewProp(actor);
  }

  /// A frame; the labels drawn must be those of the oracle.
  void compare(Verdicts& verdicts)
  {
    mRecorder.clear();
    mWindow->Render();
    const LabelFrame frame = mProbe->frame(mRenderer->GetViewport(), mMapper->GetTolerance());
    EXPECT_EQ(mRecorder.texts(), expected_texts(frame, mLabels, verdicts));
  }

  LabelRecorder mRecorder{LabelRecorder::Drawing::None};
  TestModel mModel;
  morrow_test::WarningDisplayOn mWarnings; // which the model has switched off
  vtkSmartPointer<vtkRenderWindow> mWindow;
  vtkNew<vtkRenderer> mWhole;
  vtkNew<vtkRenderer> mRenderer;
  vtkSmartPointer<FrameProbe> mProbe = FrameProbe::make();
  vtkNew<GLabelMapper> mMapper;
  std::vector<PlacedLabel> mLabels;
};

TEST_P(GLabelOracleTest, DrawsTheLabelsOfTheOracleInItsOrder)
{
  Verdicts verdicts;
  for (unsigned seed = 1; seed <= 6; ++seed) {
    SCOPED_TRACE(seed);
    Random random(seed);
    fill(random);
    compare(verdicts);
  }
  EXPECT_GT(verdicts[LabelVerdict::Visible], 100);
  EXPECT_GT(verdicts[LabelVerdict::Hidden], 100);
  EXPECT_GT(verdicts[LabelVerdict::OffScreen], 100);
  EXPECT_GT(verdicts[LabelVerdict::BeyondFar], 10);
}

TEST_P(GLabelOracleTest, FollowsTheCameraFromFrameToFrame)
{
  Verdicts verdicts;
  Random random(77);
  fill(random);
  for (int turn = 0; turn < 6; ++turn) {
    SCOPED_TRACE(turn);
    look_from_somewhere(random, *mRenderer, turn % 2 == 0);
    compare(verdicts);
  }
  EXPECT_GT(verdicts[LabelVerdict::Visible], 100);
  EXPECT_GT(verdicts[LabelVerdict::Hidden], 100);
}

std::string arrangement_name(const ::testing::TestParamInfo<Arrangement>& arrangement)
{
  return arrangement.param.name;
}

INSTANTIATE_TEST_SUITE_P(
    Arrangements, GLabelOracleTest,
    ::testing::Values(Arrangement{"Perspective", 200, 200, {0.0, 0.0, 1.0, 1.0}, false},
                      Arrangement{"Parallel", 200, 200, {0.0, 0.0, 1.0, 1.0}, true},
                      Arrangement{"OddSize", 173, 97, {0.0, 0.0, 1.0, 1.0}, false},
                      Arrangement{"Upright", 61, 211, {0.0, 0.0, 1.0, 1.0}, true},
                      Arrangement{"Tiny", 7, 5, {0.0, 0.0, 1.0, 1.0}, false},
                      Arrangement{"RightHalf", 200, 160, {0.5, 0.0, 1.0, 1.0}, false},
                      Arrangement{"Quarter", 190, 210, {0.0, 0.5, 0.5, 1.0}, true},
                      Arrangement{"UnevenViewport", 211, 137, {0.137, 0.211, 0.713, 0.877}, false}),
    arrangement_name);

// --- Other ways to a frame -------------------------------------------------------------------------------

/// The same with a scene made once.
class GLabelOracleSceneTest : public morrow_test::RenderTest
{
protected:
  LabelRecorder mRecorder{LabelRecorder::Drawing::None};
  TestModel mModel;
  morrow_test::WarningDisplayOn mWarnings;
  Random mRandom{4711};
  const RandomScene mContents = random_scene(mRandom);
  vtkSmartPointer<FrameProbe> mProbe = FrameProbe::make();
};

TEST_F(GLabelOracleSceneTest, TheSecondRendererOfAWindowIsJudgedByTheFirstOnesFrame)
{
  // Depth and projection are those of the first renderer that draws labels; the viewport is each one's own.
  const auto window = morrow_test::make_window(200, 150);
  const vtkNew<vtkRenderer> first;
  const vtkNew<vtkRenderer> second;
  second->SetViewport(0.3, 0.2, 0.9, 1.0);
  const vtkNew<GLabelMapper> mappers[2];
  vtkRenderer* const renderers[2] = {first, second};
  for (int i = 0; i < 2; ++i) {
    renderers[i]->GetCullers()->RemoveAllItems();
    for (const auto& actor : mContents.actors) {
      renderers[i]->AddViewProp(actor);
    }
    if (i == 0) {
      renderers[i]->AddViewProp(mProbe);
    }
    const vtkNew<vtkActor2D> actor;
    actor->SetMapper(mappers[i]);
    mappers[i]->set_model(&mModel);
    renderers[i]->AddViewProp(actor);
    for (const PlacedLabel& label : mContents.labels) {
      mappers[i]->add_point(label.point, label.text.c_str(), BRANT_WHITE);
    }
    look_from_somewhere(mRandom, *renderers[i], i == 1);
    window->AddRenderer(renderers[i]);
  }
  window->Render();
  Verdicts verdicts;
  Texts expected = expected_texts(mProbe->frame(first->GetViewport(), 0.001), mContents.labels, verdicts);
  const Texts of_second =
      expected_texts(mProbe->frame(second->GetViewport(), 0.001), mContents.labels, verdicts);
  EXPECT_NE(expected, of_second);
  expected.insert(expected.end(), of_second.begin(), of_second.end());
  EXPECT_EQ(mRecorder.texts(), expected);
}

TEST_F(GLabelOracleSceneTest, AViewDrawsTheLabelsOfTheOracle)
{
  GView view;
  view.set_triad_vis(false); // its labels would be recorded, too
  view.get_render_window()->SetSize(180, 140);
  view.add_props({mProbe}); // before the labels
  view.add_props({mContents.actors.begin(), mContents.actors.end()});
  const auto glass = morrow_test::flat_actor(morrow_test::sphere(0.8), {90, 90, 90});
  glass->GetProperty()->SetOpacity(0.3);
  view.add_props({glass}); // and through depth peeling
  mModel.add_view(&view);
  for (const PlacedLabel& label : mContents.labels) {
    mModel.add_label(label.text.c_str(), label.point, BRANT_WHITE);
  }
  Verdicts verdicts;
  for (int turn = 0; turn < 4; ++turn) {
    SCOPED_TRACE(turn);
    look_from_somewhere(mRandom, *view.get_renderer(), turn % 2 == 0);
    mRecorder.clear();
    view.render();
    const double whole[4] = {0.0, 0.0, 1.0, 1.0};
    EXPECT_EQ(mRecorder.texts(), expected_texts(mProbe->frame(whole, 0.001), mContents.labels, verdicts));
  }
  EXPECT_GT(verdicts[LabelVerdict::Visible], 100);
  EXPECT_GT(verdicts[LabelVerdict::Hidden], 100);
}

TEST_F(GLabelOracleSceneTest, AfterRandomAdditionsAndRemovalsTheSlotOrderIsTheOracles)
{
  morrow_test::Scene scene(150, 150);
  look_from_somewhere(mRandom, *scene.renderer(), false);
  for (const auto& actor : mContents.actors) {
    scene.renderer()->AddViewProp(actor);
  }
  const vtkNew<GLabelMapper> mapper;
  mapper->set_model(&mModel);
  const vtkNew<vtkActor2D> actor;
  actor->SetMapper(mapper);
  scene.renderer()->AddViewProp(mProbe);
  scene.renderer()->AddViewProp(actor);
  scene.renderer()->GetCullers()->RemoveAllItems();
  morrow_test::LiteralLabelKeys keys;
  std::map<long long, PlacedLabel> label_of_key;
  Verdicts verdicts;
  for (int turn = 0; turn < 20; ++turn) {
    for (int call = 0; call < 60; ++call) {
      if (mRandom.below(3) != 0) {
        const PlacedLabel label{std::to_string(turn * 100 + call), mRandom.point(1.2)};
        const long long key = mapper->add_point(label.point, label.text.c_str(), BRANT_WHITE);
        ASSERT_EQ(key, keys.add());
        label_of_key[key] = label;
      } else {
        const long long key = mRandom.below(static_cast<unsigned>(keys.slot_to_key().size() + 3));
        mapper->remove_point(key);
        keys.remove(key);
      }
    }
    std::vector<PlacedLabel> labels;
    for (const int key : keys.live_keys()) {
      labels.push_back(label_of_key[key]);
    }
    mRecorder.clear();
    scene.window()->Render();
    const LabelFrame frame = mProbe->frame(scene.renderer()->GetViewport(), 0.001);
    ASSERT_EQ(mRecorder.texts(), expected_texts(frame, labels, verdicts)) << turn;
  }
  EXPECT_GT(verdicts[LabelVerdict::Visible], 500);
  EXPECT_GT(verdicts[LabelVerdict::Hidden], 500);
}

// --- By the pixels ---------------------------------------------------------------------------------------

using GLabelOraclePixelTest = morrow_test::RenderTest;

TEST_F(GLabelOraclePixelTest, ThePictureShowsTheLabelsOfTheOracle)
{
  // A grid of texts that do not overlap, each in a colour of its own; the geometry is grey.
  Random random(31);
  morrow_test::Scene scene(300, 300);
  scene.look_down(1.0);
  for (const auto& actor : random_scene(random).actors) {
    scene.renderer()->AddViewProp(actor);
  }
  TestModel model;
  const morrow_test::WarningDisplayOn warnings;
  const vtkNew<GLabelMapper> mapper;
  mapper->set_model(&model);
  const vtkNew<vtkTextProperty> bold; // strokes of full colour
  bold->SetFontSize(24);
  bold->BoldOn();
  mapper->SetLabelTextProperty(bold);
  std::vector<PlacedLabel> labels;
  std::vector<Rgb> colours;
  for (int i = 0; i < 81; ++i) {
    const BrantVector point(i % 9 / 5.0 - 0.9, i / 9 / 5.0 - 0.9, random.between(-1.0, 1.0));
    const Rgb colour{255, static_cast<std::uint8_t>(3 * i), static_cast<std::uint8_t>(255 - 3 * i)};
    labels.push_back({"H", point});
    colours.push_back(colour);
    mapper->add_point(point, "H", {colour.r, colour.g, colour.b});
  }
  const auto probe = FrameProbe::make();
  const vtkNew<vtkActor2D> actor;
  actor->SetMapper(mapper);
  scene.renderer()->AddViewProp(probe);
  scene.renderer()->AddViewProp(actor);
  const Image seen = scene.render();
  int visible = 0;
  for (std::size_t i = 0; i < labels.size(); ++i) {
    const LabelFrame frame = probe->frame(scene.renderer()->GetViewport(), 0.001);
    const bool expected = morrow_test::is_label_visible(frame, labels[i].point.data());
    EXPECT_EQ(count_pixels(seen, morrow_test::colour_is(colours[i])) > 5, expected) << i;
    visible += expected ? 1 : 0;
  }
  EXPECT_GT(visible, 20);
  EXPECT_LT(visible, 70);
}

} // namespace
