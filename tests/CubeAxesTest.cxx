// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "CubeAxes.h"
#include "CubeAxesActor.h"
#include "CubeAxis.h"
#include "ViewFixture.h"

#include <vtkActor2D.h>
#include <vtkAxisActor2D.h>
#include <vtkCubeAxesActor2D.h>
#include <vtkCubeSource.h>
#include <vtkPropCollection.h>
#include <vtkProperty2D.h>
#include <vtkTextMapper.h>
#include <vtkTextProperty.h>

#include <array>
#include <cmath>
#include <set>
#include <sstream>

namespace {

using namespace morrow_test;

using Bounds = std::array<double, 6>;
using Texts = std::vector<std::string>;

constexpr double White[3] = {1.0, 1.0, 1.0};

/// Cube axes in a renderer of a window, black behind white.
class CubeAxesTest : public RenderTest
{
protected:
  CubeAxesTest() : mAxes(*mScene.renderer()) {}

  /// Shows something with these bounds, seen from one corner, and the axes around it.
  Image show(const Bounds& bounds, double x = 3.0, double y = 2.5, double z = 4.0)
  {
    mScene.renderer()->RemoveAllViewProps();
    mAxes.set_visible(false);
    const vtkNew<vtkCubeSource> box;
    box->SetOutputPointsPrecision(vtkAlgorithm::DOUBLE_PRECISION);
    box->SetBounds(bounds.data());
    box->Update();
    const auto actor = flat_actor(box->GetOutput(), kRed);
    mScene.renderer()->AddViewProp(actor);
    vtkCamera* camera = mScene.renderer()->GetActiveCamera();
    camera->ParallelProjectionOn();
    camera->SetFocalPoint(0.0, 0.0, 0.0);
    camera->SetPosition(x, y, z);
    mScene.renderer()->ResetCamera();
    camera->Zoom(0.7);
    mAxes.set_visible(true);
    mAxes.set_color(White);
    mAxes.fit();
    return mScene.render();
  }

  Scene mScene{500, 500};
  morrow::CubeAxes mAxes;
};

// What VTK prints beside an axis; the labels' mappers are its own affair.
Texts labels_of(vtkAxisActor2D* axis)
{
  const double* range = axis->GetAdjustedRange();
  const int count = axis->GetAdjustedNumberOfLabels();
  Texts texts;
  for (int i = 0; i < count; ++i) {
    char text[512];
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    std::snprintf(text, sizeof text, axis->GetLabelFormat(),
                  range[0] + i * ((range[1] - range[0]) / (count - 1)));
#pragma GCC diagnostic pop
    texts.emplace_back(text);
  }
  return texts;
}

std::vector<vtkAxisActor2D*> axes_of(vtkCubeAxesActor2D* cube)
{
  return {cube->GetXAxisActor2D(), cube->GetYAxisActor2D(), cube->GetZAxisActor2D()};
}

vtkAxisActor2D* axis_called(vtkCubeAxesActor2D* cube, const std::string& title)
{
  for (vtkAxisActor2D* axis : axes_of(cube)) {
    if (title == axis->GetTitle()) {
      return axis;
    }
  }
  return nullptr;
}

std::set<std::string> unordered(const Texts& texts)
{
  return {texts.begin(), texts.end()};
}

int num_lit(const Image& image)
{
  return count_pixels(image, colour_is(kWhite, 40));
}

TEST_F(CubeAxesTest, AreMadeAsAsked)
{
  EXPECT_FALSE(mAxes.is_visible());
  mAxes.set_visible(true);
  vtkCubeAxesActor2D* actor = mAxes.actor();
  ASSERT_NE(actor, nullptr);
  EXPECT_TRUE(mScene.renderer()->HasViewProp(actor));
  EXPECT_EQ(actor->GetCamera(), mScene.renderer()->GetActiveCamera());
  EXPECT_EQ(actor->GetFlyMode(), 0);
  EXPECT_EQ(actor->GetNumberOfLabels(), 5);
  EXPECT_EQ(actor->GetInertia(), 10);
  EXPECT_EQ(actor->GetCornerOffset(), 0.0);
}

TEST_F(CubeAxesTest, ComeOnceAndGo)
{
  mAxes.set_visible(true);
  const vtkWeakPointer<vtkCubeAxesActor2D> actor = mAxes.actor();
  mAxes.set_visible(true);
  EXPECT_EQ(mAxes.actor(), actor.Get());
  EXPECT_EQ(mScene.renderer()->GetViewProps()->GetNumberOfItems(), 1);
  mAxes.set_visible(false);
  EXPECT_EQ(actor, nullptr);
  EXPECT_EQ(mScene.renderer()->GetViewProps()->GetNumberOfItems(), 0);
  mAxes.set_visible(false);
  mAxes.fit();
  mAxes.set_color(White);
  EXPECT_FALSE(mAxes.is_visible());
}

TEST_F(CubeAxesTest, LinesAndTextsHaveTheColour)
{
  const double rgb[3] = {0.25, 0.5, 0.75};
  mAxes.set_visible(true);
  mAxes.set_color(rgb);
  for (const double* color :
       {mAxes.actor()->GetProperty()->GetColor(), mAxes.actor()->GetAxisTitleTextProperty()->GetColor(),
        mAxes.actor()->GetAxisLabelTextProperty()->GetColor()}) {
    EXPECT_TRUE(std::equal(rgb, rgb + 3, color));
  }
}

// Each world axis has a format for its own range.
TEST_F(CubeAxesTest, EachAxisPrintsItsRange)
{
  show({0.0, 1.0, -20.0, -10.0, 1000000.0, 1000004.0});
  EXPECT_EQ(unordered(labels_of(axis_called(mAxes.actor(), "X"))),
            (std::set<std::string>{"0.00", "0.25", "0.50", "0.75", "1.00"}));
  EXPECT_EQ(unordered(labels_of(axis_called(mAxes.actor(), "Y"))),
            (std::set<std::string>{"-20.0", "-17.5", "-15.0", "-12.5", "-10.0"}));
  EXPECT_EQ(unordered(labels_of(axis_called(mAxes.actor(), "Z"))),
            (std::set<std::string>{"1000000", "1000001", "1000002", "1000003", "1000004"}));
}

// Tiny, huge, negative, through zero, far from zero, in every axis at once: five texts, all different, each
// near the number that it stands for.
TEST_F(CubeAxesTest, LabelsReadRightOverManyRanges)
{
  const std::vector<std::array<double, 2>> ranges = {
      {0.0, 1.0},   {-1.0, 1.0},         {-0.3, 0.1},      {0.0, 1e-9},         {-2e-9, -1e-9},
      {0.0, 1e12},  {-1e12, 1e12},       {1e6, 1e6 + 1.0}, {-5e5, -5e5 + 1e-2}, {1.0 / 3.0, 2.0 / 3.0},
      {1e-4, 9e-4}, {99999.0, 1000001.0}};
  for (const auto& [low, high] : ranges) {
    show({low, high, low, high, low, high});
    mAxes.actor()->RenderOpaqueGeometry(mScene.renderer()); // VTK's culler loses boxes below 1e-6
    for (vtkAxisActor2D* axis : axes_of(mAxes.actor())) {
      const Texts texts = labels_of(axis);
      ASSERT_EQ(unordered(texts).size(), 5U) << low << " " << high;
      const bool is_upward = std::stod(texts.front()) < std::stod(texts.back());
      for (std::size_t i = 0; i < 5; ++i) {
        const double step = (high - low) / 4.0 * static_cast<double>(i);
        const double value = is_upward ? low + step : high - step;
        EXPECT_NEAR(std::stod(texts[i]), value, 0.006 * (high - low) / 4.0) << low << " " << high;
      }
    }
  }
}

TEST_F(CubeAxesTest, ThreeAxesAreSeenFromACorner)
{
  const Image image = show({0.0, 1.0, 0.0, 2.0, 0.0, 3.0});
  EXPECT_GT(num_lit(image), 500);
}

// A flat box has an axis without length, whose five labels would lie on each other.
TEST_F(CubeAxesTest, AnAxisWithoutExtentIsLeftOut)
{
  const int solid = num_lit(show({0.0, 1.0, 0.0, 1.0, 0.0, 1.0}));
  const int flat = num_lit(show({0.0, 1.0, 0.0, 1.0, 2.0, 2.0}));
  const int line = num_lit(show({0.0, 1.0, 1.0, 1.0, 2.0, 2.0}));
  const int point = num_lit(show({1.0, 1.0, 1.0, 1.0, 2.0, 2.0}));
  EXPECT_LT(flat, solid);
  EXPECT_LT(line, flat);
  EXPECT_GT(line, 0);
  EXPECT_EQ(point, 0);
}

TEST_F(CubeAxesTest, AnAxisSeenFromItsEndIsLeftOut)
{
  show({0.0, 1.0, 0.0, 1.0, 0.0, 1.0}, 0.0, 0.0, 1.0);
  int num_drawn = 0;
  for (int i = 0; i < 3; ++i) {
    mAxes.actor()->SetXAxisVisibility(i == 0); // the first on the screen, whichever of the world's that is
    mAxes.actor()->SetYAxisVisibility(i == 1);
    mAxes.actor()->SetZAxisVisibility(i == 2);
    const bool is_drawn = num_lit(mScene.render()) > 0;
    const bool is_depth = std::string("Z") == axes_of(mAxes.actor())[static_cast<std::size_t>(i)]->GetTitle();
    EXPECT_EQ(is_drawn, !is_depth) << i;
    num_drawn += is_drawn ? 1 : 0;
  }
  EXPECT_EQ(num_drawn, 2);
  EXPECT_EQ(mAxes.actor()->GetZAxisVisibility(), 1); // what a host sets stays
}

// Five numbers in double precision differ by less than their last digit.
TEST_F(CubeAxesTest, ABoxTooThinForDoublesIsFlat)
{
  const double far = 1e15;
  const Image image = show({far, far + 0.125, 0.0, 1e-3, 0.0, 1e-3});
  vtkAxisActor2D* axis = axis_called(mAxes.actor(), "X");
  EXPECT_EQ(axis->GetLabelFormat(), std::string("%.6g"));
  EXPECT_FALSE(image.empty());
}

TEST_F(CubeAxesTest, NothingIsDrawnAroundNothing)
{
  mAxes.set_visible(true);
  mAxes.set_color(White);
  mAxes.fit();
  EXPECT_EQ(num_lit(mScene.render()), 0);
  double bounds[6];
  mAxes.actor()->GetBounds(bounds);
  EXPECT_EQ(bounds[0], 0.5);
  EXPECT_EQ(bounds[1], -0.5);
}

TEST_F(CubeAxesTest, NothingIsDrawnAroundWhatIsNotFinite)
{
  constexpr double Inf = std::numeric_limits<double>::infinity();
  constexpr double Nan = std::numeric_limits<double>::quiet_NaN();
  mAxes.set_visible(true);
  mAxes.set_color(White);
  mScene.look_down(2.0);
  for (const Bounds& bounds : {Bounds{-Inf, Inf, 0.0, 1.0, 0.0, 1.0},
                               {0.0, 1.0, 0.0, Nan, 0.0, 1.0},
                               {0.0, 1.0, 0.0, 1.0, 1.0, 0.0}}) {
    mAxes.actor()->SetBounds(const_cast<double*>(bounds.data()));
    EXPECT_EQ(num_lit(mScene.render()), 0);
  }
  mAxes.actor()->SetBounds(-0.5, 0.5, -0.5, 0.5, -0.5, 0.5); // and they come back
  EXPECT_GT(num_lit(mScene.render()), 0);
}

std::vector<morrow::LabelBox> drawn_labels(const morrow::CubeAxes& axes, vtkViewport* viewport)
{
  return morrow::CubeAxesActor::SafeDownCast(axes.actor())->labels(*viewport);
}

// From all sides, with short numbers and long ones, also after frames without a change.
TEST_F(CubeAxesTest, NumbersDoNotOverlap)
{
  for (const Bounds& bounds : {Bounds{-18.6, 120.0, -45.0, 45.0, -18.6, 120.0},
                               {1000000.0, 1000001.0, 0.0, 1.0, -1.0, 0.0},
                               {0.0, 1e-9, 0.0, 1e-9, 0.0, 2e-9}}) {
    for (int turn = 0; turn < 24; ++turn) {
      const double angle = turn * 0.2618;
      show(bounds, std::cos(angle), std::sin(angle), 0.1 * (turn % 9) - 0.4);
      static_cast<void>(mScene.render());
      const auto boxes = drawn_labels(mAxes, mScene.renderer());
      for (std::size_t i = 0; i < boxes.size(); ++i) {
        for (std::size_t j = i + 1; j < boxes.size(); ++j) {
          EXPECT_FALSE(collide(boxes[i], boxes[j])) << bounds[0] << ", turn " << turn;
        }
      }
    }
  }
}

TEST_F(CubeAxesTest, NumbersWithRoomAreAllThere)
{
  show({0.0, 1.0, 0.0, 1.0, 0.0, 1.0});
  EXPECT_EQ(drawn_labels(mAxes, mScene.renderer()).size(), 15U);
}

TEST(LabelStepTest, LeavesOutAsFewNumbersAsItMay)
{
  const auto row = [](double width) {
    std::vector<morrow::LabelBox> boxes;
    for (int i = 0; i < 5; ++i) {
      boxes.push_back({{i * 20.0, 0.0}, {i * 20.0 + width, 10.0}, true});
    }
    return boxes;
  };
  EXPECT_EQ(morrow::label_step(row(10.0)), 1);
  EXPECT_EQ(morrow::label_step(row(12.0)), 1); // a gap of eight pixels is enough
  EXPECT_EQ(morrow::label_step(row(13.0)), 2);
  EXPECT_EQ(morrow::label_step(row(33.0)), 4);
  EXPECT_EQ(morrow::label_step(row(200.0)), 4);
  EXPECT_EQ(morrow::label_step({}), 1);
  EXPECT_EQ(morrow::label_step({{}}), 1);
}

// The host may give the renderer another camera at any time.
TEST_F(CubeAxesTest, TheCameraIsTheOneThatTheRendererHasNow)
{
  show({0.0, 1.0, 0.0, 1.0, 0.0, 1.0});
  const vtkNew<vtkCamera> other;
  mScene.renderer()->SetActiveCamera(other);
  EXPECT_NE(mAxes.actor()->GetCamera(), other.Get());
  mAxes.fit();
  EXPECT_EQ(mAxes.actor()->GetCamera(), other.Get());
  static_cast<void>(mScene.render());
}

// What was visible in the last frame is not what is visible now.
TEST_F(CubeAxesTest, TheyHaveNoPartInTheBoundsOfTheScene)
{
  show({0.0, 1.0, 0.0, 2.0, 0.0, 3.0});
  mScene.renderer()->RemoveAllViewProps();
  mScene.renderer()->AddViewProp(mAxes.actor());
  double bounds[6];
  mScene.renderer()->ComputeVisiblePropBounds(bounds);
  EXPECT_GT(bounds[0], bounds[1]);
}

TEST_F(CubeAxesTest, TheActorPrintsItself)
{
  mAxes.set_visible(true);
  std::ostringstream text;
  mAxes.actor()->Print(text);
  EXPECT_NE(text.str().find("CubeAxesActor"), std::string::npos);
}

} // namespace
