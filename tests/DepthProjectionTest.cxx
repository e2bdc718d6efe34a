// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "DepthProjection.h"
#include "BrantVector.h"
#include "LabelOracle.h"

#include <gtest/gtest.h>

#include <vtkCamera.h>
#include <vtkMatrix4x4.h>
#include <vtkNew.h>

#include <array>
#include <cmath>
#include <limits>
#include <map>
#include <random>
#include <vector>

namespace {

using morrow::depth_under;
using morrow::is_in_front;
using morrow::project_to_screen;
using morrow::ScreenFrame;
using morrow::ScreenPoint;
using morrow_test::judge_label;
using morrow_test::LabelFrame;
using morrow_test::LabelResult;
using morrow_test::LabelVerdict;

constexpr double Nan = std::numeric_limits<double>::quiet_NaN();
constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double Huge = std::numeric_limits<double>::max();
constexpr double Tiny = std::numeric_limits<double>::denorm_min();

// ---------------------------------------------------------------------------------------------------------
// By hand

constexpr ScreenFrame WholeWindow = {{0.0, 0.0, 1.0, 1.0}, 10, 8};

struct Projected
{
  bool inside;
  ScreenPoint screen;
};

Projected project(const vtkMatrix4x4& matrix, const ScreenFrame& frame, double x, double y, double z)
{
  Projected result = {false, {-7.0, -7.0, -7.0}};
  result.inside = project_to_screen(matrix, frame, BrantVector(x, y, z), result.screen);
  return result;
}

// The identity: x and y from -1 to 1 span the viewport, z is the depth.
Projected project(const ScreenFrame& frame, double x, double y, double z)
{
  const vtkNew<vtkMatrix4x4> identity;
  return project(*identity, frame, x, y, z);
}

bool is_inside(double x, double y, double z)
{
  return project(WholeWindow, x, y, z).inside;
}

TEST(DepthProjectionTest, SpansTheWindow)
{
  const Projected middle = project(WholeWindow, 0.0, 0.0, 0.5);
  EXPECT_TRUE(middle.inside);
  EXPECT_EQ(middle.screen.x, 5.0);
  EXPECT_EQ(middle.screen.y, 4.0);
  EXPECT_EQ(middle.screen.depth, 0.5);
  const Projected off_middle = project(WholeWindow, -0.5, 0.25, 0.125);
  EXPECT_EQ(off_middle.screen.x, 2.5);
  EXPECT_EQ(off_middle.screen.y, 5.0);
  EXPECT_EQ(off_middle.screen.depth, 0.125);
}

TEST(DepthProjectionTest, SpansTheViewport)
{
  const ScreenFrame upper_right = {{0.5, 0.75, 1.0, 1.0}, 10, 8};
  EXPECT_EQ(project(upper_right, 0.0, 0.0, 0.5).screen.x, 7.5);
  EXPECT_EQ(project(upper_right, 0.0, 0.0, 0.5).screen.y, 7.0);
  EXPECT_EQ(project(upper_right, -1.0, -1.0, 0.5).screen.x, 5.0);
  EXPECT_EQ(project(upper_right, -1.0, -1.0, 0.5).screen.y, 6.0);
}

TEST(DepthProjectionTest, OutsideMeansOutsideTheWindowNotTheViewport)
{
  const ScreenFrame right_half = {{0.5, 0.0, 1.0, 1.0}, 10, 8};
  const Projected left_of_viewport = project(right_half, -1.5, 0.0, 0.5);
  EXPECT_TRUE(left_of_viewport.inside);
  EXPECT_EQ(left_of_viewport.screen.x, 3.75);
  EXPECT_FALSE(project(right_half, -3.5, 0.0, 0.5).inside);
}

TEST(DepthProjectionTest, TheEdgesAreInside)
{
  for (const double edge : {-1.0, 1.0}) {
    const double beyond = std::nextafter(edge, 2.0 * edge);
    EXPECT_TRUE(is_inside(edge, 0.0, 0.5)) << edge;
    EXPECT_TRUE(is_inside(0.0, edge, 0.5)) << edge;
    EXPECT_TRUE(is_inside(edge, edge, 0.5)) << edge;
    // Twice the distance of neighbours: one may be rounded away on the way to pixels.
    EXPECT_FALSE(is_inside(edge + 4.0 * (beyond - edge), 0.0, 0.5)) << edge;
    EXPECT_FALSE(is_inside(0.0, edge + 4.0 * (beyond - edge), 0.5)) << edge;
  }
}

TEST(DepthProjectionTest, TheNearPlaneIsInsideAndNothingBeforeIt)
{
  EXPECT_TRUE(is_inside(0.0, 0.0, 0.0));
  EXPECT_TRUE(is_inside(0.0, 0.0, -0.0));
  EXPECT_FALSE(is_inside(0.0, 0.0, -Tiny));
  EXPECT_TRUE(is_inside(0.0, 0.0, 2.0)) << "what lies beyond the far plane is decided later";
}

TEST(DepthProjectionTest, DividesByTheHomogeneousCoordinate)
{
  const vtkNew<vtkMatrix4x4> matrix;
  matrix->SetElement(3, 3, 2.0);
  const Projected result = project(*matrix, WholeWindow, 1.0, -1.0, 1.0);
  EXPECT_EQ(result.screen.x, 7.5);
  EXPECT_EQ(result.screen.y, 2.0);
  EXPECT_EQ(result.screen.depth, 0.5);
}

TEST(DepthProjectionTest, AZeroHomogeneousCoordinateHasNoProjection)
{
  const vtkNew<vtkMatrix4x4> matrix;
  matrix->SetElement(3, 3, 0.0);
  EXPECT_FALSE(project(*matrix, WholeWindow, 0.0, 0.0, 0.5).inside);
  matrix->SetElement(3, 3, -0.0);
  EXPECT_FALSE(project(*matrix, WholeWindow, -0.0, -0.0, -0.0).inside);
  matrix->SetElement(3, 3, Tiny); // not zero, however small: 0 / w is 0
  EXPECT_TRUE(project(*matrix, WholeWindow, 0.0, 0.0, 0.0).inside);
}

// A camera at (0, 0, 10) that sees two units up and down, from 5 to 15 units away, in a window of 2 : 1.
TEST(DepthProjectionTest, FollowsACamera)
{
  const vtkNew<vtkCamera> camera;
  camera->SetPosition(0.0, 0.0, 10.0);
  camera->SetFocalPoint(0.0, 0.0, 0.0);
  camera->ParallelProjectionOn();
  camera->SetParallelScale(2.0);
  camera->SetClippingRange(5.0, 15.0);
  const vtkMatrix4x4& matrix = *camera->GetCompositeProjectionTransformMatrix(2.0, 0.0, 1.0);
  const ScreenFrame frame = {{0.0, 0.0, 1.0, 1.0}, 400, 200};
  const Projected result = project(matrix, frame, 1.0, -1.0, -2.5);
  EXPECT_TRUE(result.inside);
  EXPECT_NEAR(result.screen.x, 250.0, 1e-9);     // 50 pixels a unit, from the middle at 200
  EXPECT_NEAR(result.screen.y, 50.0, 1e-9);      // down from the middle at 100
  EXPECT_NEAR(result.screen.depth, 0.75, 1e-12); // 12.5 units away
  EXPECT_FALSE(project(matrix, frame, 0.0, 0.0, 5.5).inside) << "nearer than the near plane";
  EXPECT_FALSE(project(matrix, frame, 4.1, 0.0, 0.0).inside);
}

/// 3 × 2 pixels of depths 0.1 … 0.6; the column and the row beyond them, which are never to be read, hold -5.
constexpr std::array<float, 12> SmallBuffer = {0.1F, 0.2F,  0.3F,  -5.0F, 0.4F,  0.5F,
                                               0.6F, -5.0F, -5.0F, -5.0F, -5.0F, -5.0F};

double small_depth(double x, double y)
{
  return depth_under(SmallBuffer.data(), 3, 2, {x, y, 0.5});
}

TEST(DepthProjectionTest, ReadsThePixelThatContainsThePoint)
{
  EXPECT_EQ(small_depth(0.0, 0.0), 0.1F);
  EXPECT_EQ(small_depth(0.99, 0.99), 0.1F);
  EXPECT_EQ(small_depth(1.0, 0.0), 0.2F);
  EXPECT_EQ(small_depth(2.5, 0.5), 0.3F);
  EXPECT_EQ(small_depth(0.5, 1.0), 0.4F); // rows are one value longer than the window
  EXPECT_EQ(small_depth(2.99, 1.99), 0.6F);
  EXPECT_EQ(small_depth(-0.0, -0.0), 0.1F);
}

TEST(DepthProjectionTest, OutsideThePixelsTheDepthIsThatOfTheFarPlane)
{
  for (const double beyond : {3.0, 3.5, 4.0, 1e10, 1e300, Infinity, -1.0, -1e300, -Infinity, Nan}) {
    EXPECT_EQ(small_depth(beyond, 0.5), 1.0) << beyond;
    EXPECT_EQ(small_depth(0.5, beyond), 1.0) << beyond;
    EXPECT_EQ(small_depth(beyond, beyond), 1.0) << beyond;
  }
  EXPECT_EQ(small_depth(0.5, 2.0), 1.0);
}

TEST(DepthProjectionTest, AWindowWithoutPixelsIsNotRead)
{
  EXPECT_EQ(depth_under(nullptr, 0, 0, {0.0, 0.0, 0.5}), 1.0);
  EXPECT_EQ(depth_under(nullptr, 5, 0, {1.0, 0.0, 0.5}), 1.0);
  EXPECT_EQ(depth_under(nullptr, 0, 5, {0.0, 1.0, 0.5}), 1.0);
}

TEST(DepthProjectionTest, TheFarPlaneIsNeverSeen)
{
  EXPECT_FALSE(is_in_front(1.0, 1.0, 0.001));
  EXPECT_FALSE(is_in_front(2.0, 1.0, 10.0));
  EXPECT_TRUE(is_in_front(std::nextafter(1.0, 0.0), 1.0, 0.0));
}

TEST(DepthProjectionTest, TheToleranceIsAddedToTheBuffer)
{
  EXPECT_TRUE(is_in_front(0.5, 0.5, 0.0)); // as near as the geometry: seen
  EXPECT_FALSE(is_in_front(std::nextafter(0.5, 1.0), 0.5, 0.0));
  EXPECT_TRUE(is_in_front(0.75, 0.5, 0.25)); // exact in binary
  EXPECT_FALSE(is_in_front(std::nextafter(0.75, 1.0), 0.5, 0.25));
  EXPECT_TRUE(is_in_front(0.25, 0.5, -0.25)); // not clamped
  EXPECT_FALSE(is_in_front(std::nextafter(0.25, 1.0), 0.5, -0.25));
}

TEST(DepthProjectionTest, WhatIsNotANumberIsNotSeen)
{
  EXPECT_FALSE(is_in_front(Nan, 1.0, 0.001));
  EXPECT_FALSE(is_in_front(0.5, Nan, 0.001));
  EXPECT_FALSE(is_in_front(0.5, 1.0, Nan));
}

// ---------------------------------------------------------------------------------------------------------
// Against the literal form

bool are_same(double a, double b)
{
  return a == b || (std::isnan(a) && std::isnan(b));
}

/// One frame and one anchor, put to both forms.
struct Question
{
  vtkNew<vtkMatrix4x4> matrix;
  ScreenFrame frame = {{0.0, 0.0, 1.0, 1.0}, 0, 0};
  std::vector<float> depth; // exactly (width + 1) × (height + 1), so that a checker sees reads beyond it
  double tolerance = 0.001;
  double point[3] = {0.0, 0.0, 0.0};

  [[nodiscard]] LabelResult literal_answer() const
  {
    LabelFrame literal;
    literal.matrix = matrix;
    std::copy(std::begin(frame.viewport), std::end(frame.viewport), std::begin(literal.viewport));
    literal.width = frame.width;
    literal.height = frame.height;
    literal.depth = depth.data();
    literal.tolerance = tolerance;
    return judge_label(literal, point);
  }

  // Puts the same question to the fast form, step by step.
  void expect(const LabelResult& literal) const
  {
    ScreenPoint screen = {0.0, 0.0, 0.0};
    const bool inside = project_to_screen(*matrix, frame, BrantVector(point), screen);
    ASSERT_EQ(inside, literal.asked_depth);
    if (!inside) {
      return;
    }
    ASSERT_PRED2(are_same, screen.x, literal.x);
    ASSERT_PRED2(are_same, screen.y, literal.y);
    ASSERT_PRED2(are_same, screen.depth, literal.depth);
    const double nearest = depth_under(depth.data(), frame.width, frame.height, screen);
    ASSERT_PRED2(are_same, nearest, literal.buffer_depth);
    ASSERT_EQ(is_in_front(screen.depth, nearest, tolerance), literal.visible());
  }
};

/// Draws questions: mostly reasonable, each part now and then hostile.
class Questioner
{
public:
  explicit Questioner(unsigned seed) : mRandom(seed) {}

  void ask(Question& question, int hostility)
  {
    mHostility = hostility;
    choose_size(question);
    choose_viewport(question.frame);
    choose_matrix(*question.matrix);
    for (double& coordinate : question.point) {
      coordinate = is_now(40) ? edge() : value(-1.2, 1.2);
    }
    question.tolerance = is_now(70) ? 0.001 : value(-0.5, 0.5);
  }

private:
  double between(double low, double high)
  {
    return std::uniform_real_distribution<double>(low, high)(mRandom);
  }
  bool is_now(int percent) { return std::uniform_int_distribution<int>(0, 99)(mRandom) < percent; }
  std::size_t below(std::size_t limit)
  {
    return std::uniform_int_distribution<std::size_t>(0, limit - 1)(mRandom);
  }

  double edge()
  {
    constexpr double edges[] = {-1.0, 1.0, 0.0, -0.0, 0.5, -0.5};
    const double at = edges[below(std::size(edges))];
    return is_now(60) ? at : std::nextafter(at, is_now(50) ? 2.0 : -2.0);
  }

  double value(double low, double high)
  {
    constexpr double hostile[] = {Nan, Infinity, -Infinity, Huge, -Huge, Tiny, -Tiny, 0.0, -0.0, 1e300, 3e9};
    return is_now(mHostility) ? hostile[below(std::size(hostile))] : between(low, high);
  }

  void choose_size(Question& question)
  {
    constexpr int sizes[] = {0, 1, 2, 5, 16};
    const std::size_t least = is_now(5) ? 0 : 1;
    question.frame.width = sizes[least + below(std::size(sizes) - least)];
    question.frame.height = sizes[least + below(std::size(sizes) - least)];
    const auto columns = static_cast<std::size_t>(question.frame.width);
    const auto rows = static_cast<std::size_t>(question.frame.height);
    question.depth.assign((columns + 1) * (rows + 1), -5.0F);
    for (std::size_t row = 0; row < rows; ++row) {
      for (std::size_t column = 0; column < columns; ++column) {
        question.depth[row * (columns + 1) + column] = pixel_depth();
      }
    }
  }

  float pixel_depth()
  {
    constexpr float special[] = {0.0F, 1.0F, 0.5F, std::numeric_limits<float>::quiet_NaN()};
    return is_now(40) ? special[below(std::size(special))] : static_cast<float>(between(0.0, 1.0));
  }

  void choose_viewport(ScreenFrame& frame)
  {
    constexpr double viewports[][4] = {
        {0.0, 0.0, 1.0, 1.0}, {0.5, 0.0, 1.0, 1.0}, {0.25, 0.25, 0.75, 0.5}, {0.5, 0.5, 0.5, 0.5}};
    const auto& chosen = viewports[below(std::size(viewports))];
    for (std::size_t i = 0; i < 4; ++i) {
      frame.viewport[i] = is_now(80) ? chosen[i] : value(-0.2, 1.2);
    }
  }

  void choose_matrix(vtkMatrix4x4& matrix)
  {
    matrix.Identity();
    if (is_now(30)) {
      return; // exact edges stay exact
    }
    if (is_now(50)) {
      choose_camera(matrix);
      return;
    }
    for (int row = 0; row < 4; ++row) {
      for (int column = 0; column < 4; ++column) {
        matrix.SetElement(row, column, value(-1.0, 1.0));
      }
    }
    if (is_now(20)) {
      for (int column = 0; column < 4; ++column) {
        matrix.SetElement(3, column, column == 3 ? edge() : 0.0); // w is often exactly 0
      }
    }
  }

  void choose_camera(vtkMatrix4x4& matrix)
  {
    const vtkNew<vtkCamera> camera;
    camera->SetPosition(between(-3.0, 3.0), between(-3.0, 3.0), between(2.0, 5.0));
    camera->SetParallelProjection(is_now(50) ? 1 : 0);
    camera->SetClippingRange(between(0.01, 3.0), between(3.5, 9.0));
    matrix.DeepCopy(camera->GetCompositeProjectionTransformMatrix(between(0.5, 2.0), 0.0, 1.0));
  }

  std::mt19937 mRandom;
  int mHostility = 0;
};

using Tally = std::map<LabelVerdict, int>;

Tally compare_with_the_literal_form(unsigned seed, int hostility, int questions)
{
  Tally tally;
  Questioner questioner(seed);
  for (int i = 0; i < questions; ++i) {
    Question question;
    questioner.ask(question, hostility);
    const LabelResult literal = question.literal_answer();
    ++tally[literal.verdict];
    question.expect(literal);
    if (testing::Test::HasFatalFailure()) {
      ADD_FAILURE() << "question " << i << " of seed " << seed;
      break;
    }
  }
  return tally;
}

// Each verdict must have come often, or the questions were not the right ones.
void expect_all_verdicts(const Tally& tally, int at_least)
{
  for (const LabelVerdict verdict : {LabelVerdict::NoPerspective, LabelVerdict::OffScreen,
                                     LabelVerdict::BeyondFar, LabelVerdict::Hidden, LabelVerdict::Visible}) {
    const auto found = tally.find(verdict);
    EXPECT_GE(found != tally.end() ? found->second : 0, at_least) << static_cast<int>(verdict);
  }
}

TEST(DepthProjectionTest, AgreesWithTheLiteralFormOnReasonablePoints)
{
  expect_all_verdicts(compare_with_the_literal_form(11, 0, 50'000), 500);
}

TEST(DepthProjectionTest, AgreesWithTheLiteralFormOnHostilePoints)
{
  expect_all_verdicts(compare_with_the_literal_form(12, 8, 50'000), 500);
  compare_with_the_literal_form(13, 50, 50'000);
}

} // namespace
