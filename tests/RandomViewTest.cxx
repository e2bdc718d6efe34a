// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
//
// Hundreds of random camera operations, decorations, saved views and exports, with values that hosts should
// not but do pass. What is on is counted along; VTK and OpenGL must not complain, and after a complete reset
// the picture is what it was at the start.
#include "AppUtil.h"
#include "GView.h"
#include "ViewFixture.h"

#include <vtkNew.h>
#include <vtkRenderWindow.h>

#include <array>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <random>

namespace {

using namespace morrow_test;

/// Stops every animation after a few frames.
class ImpatientHost : public AppUtil
{
public:
  ImpatientHost() : mBefore(AppUtil::set_instance(this)) {}
  ~ImpatientHost() override { AppUtil::set_instance(mBefore); }
  ImpatientHost(const ImpatientHost&) = delete;
  ImpatientHost& operator=(const ImpatientHost&) = delete;

  bool interrupt() const override { return ++mReads % 4 == 0; }

private:
  mutable int mReads = 0;
  AppUtil* mBefore;
};

struct Shown
{
  bool triad = false;
  bool axis = false;
  bool cube_axes = false;
};

class RandomView
{
public:
  explicit RandomView(unsigned seed) : mRandom(seed), mView(make_view(160, 120))
  {
    mView->set_triad_vis(false);
    show(*mView, flat_square());
    GView::add_global_view(mView);
  }
  ~RandomView() { GView::remove_global_view(mView); }
  RandomView(const RandomView&) = delete;
  RandomView& operator=(const RandomView&) = delete;

  [[nodiscard]] GView& view() { return *mView; }

  void step()
  {
    switch (pick(5)) {
    case 0:
      place();
      break;
    case 1:
      move();
      break;
    case 2:
      decorate();
      break;
    case 3:
      annotate();
      break;
    default:
      keep();
      break;
    }
  }

  void expect_as_counted() const
  {
    EXPECT_EQ(mView->get_triad_vis(), mShown.triad);
    EXPECT_EQ(mView->get_axis_vis(), mShown.axis);
    EXPECT_EQ(mView->get_cube_axes_vis(), mShown.cube_axes);
  }

private:
  int pick(int count) { return static_cast<int>(mRandom() % static_cast<unsigned>(count)); }
  bool flip() { return pick(2) == 0; }

  double number()
  {
    constexpr double odd[] = {0.0,
                              -0.0,
                              1.0,
                              -1.0,
                              1e-300,
                              -1e30,
                              std::numeric_limits<double>::infinity(),
                              std::numeric_limits<double>::quiet_NaN()};
    return pick(4) == 0 ? odd[pick(8)] : std::uniform_real_distribution<double>(-5.0, 5.0)(mRandom);
  }

  std::array<double, 6> numbers() { return {number(), number(), number(), number(), number(), number()}; }

  int steps()
  {
    constexpr int odd[] = {0, 1, -1, INT_MIN, INT_MAX, 2};
    return pick(3) == 0 ? odd[pick(6)] : pick(5);
  }

  /// zoom_screen() cannot be interrupted in its soft frames.
  int few() { return pick(4) - 1; }

  void place()
  {
    const auto p = numbers();
    switch (pick(7)) {
    case 0:
      mView->set_at(p.data(), steps(), steps());
      break;
    case 1:
      mView->set_from(p.data(), steps(), steps());
      break;
    case 2:
      mView->set_up(p.data(), steps(), few());
      break;
    case 3:
      mView->set_perspective(flip());
      break;
    case 4:
      mView->set_perspective_angle(number());
      break;
    case 5:
      mView->set_parallel_scale(number());
      break;
    default:
      mView->set_2d_mode(p[0], p[1], p[2], p[3]);
      break;
    }
  }

  void move()
  {
    const auto p = numbers();
    const char axis = "xyzq"[pick(4)];
    switch (pick(7)) {
    case 0:
      mView->rotate_about_target(p[0] * 30.0, axis, steps(), few());
      break;
    case 1:
      mView->rotate_about_camera(p[0] * 30.0, axis, steps(), few());
      break;
    case 2:
      mView->rotate_about_world(p[0] * 30.0, axis, steps(), few());
      break;
    case 3:
      mView->rotate_about_world(p[0], p.data(), p.data() + 3, steps(), few());
      break;
    case 4:
      mView->zoom_screen(p[0], few(), few());
      break;
    case 5:
      mView->zoom_box(p.data(), pick(3), few(), flip() ? nullptr : p.data());
      break;
    default:
      mView->pan(p[0] * 0.1, p[1] * 0.1, steps(), few(), pick(4));
      break;
    }
  }

  void decorate()
  {
    switch (pick(5)) {
    case 0:
      mView->set_triad_vis(mShown.triad = flip());
      break;
    case 1:
      mView->set_axis_vis(mShown.axis = flip());
      break;
    case 2:
      mView->set_cube_axes_vis(mShown.cube_axes = flip());
      break;
    case 3:
      mView->set_axis_type(static_cast<MRUtil::AxisType>(pick(5)));
      break;
    default:
      mView->set_legend_vis(flip());
      break;
    }
  }

  void annotate()
  {
    const auto p = numbers();
    switch (pick(7)) {
    case 0:
      mView->set_title(flip() ? "title" : flip() ? "" : nullptr);
      break;
    case 1:
      mView->set_title_color(p.data());
      break;
    case 2:
      mView->set_title_font_size(steps());
      break;
    case 3:
      mView->setup_scalar_bar(p[0], p[1], flip(), {});
      break;
    case 4:
      mView->set_scalar_bar(nullptr);
      break;
    case 5:
      GView::set_light_intensity(static_cast<float>(p[0]), 0.3F, 0.3F);
      break;
    default:
      static_cast<void>(mView->triad_clicked(steps(), steps()));
      break;
    }
  }

  void keep()
  {
    switch (pick(6)) {
    case 0:
      mView->save_view("a");
      break;
    case 1:
      mView->restore_view("a");
      break;
    case 2:
      mView->reset_camera();
      break;
    case 3:
      mView->complete_reset_camera();
      break;
    case 4:
      mView->list_view();
      break;
    default:
      mView->render();
      break;
    }
  }

  std::mt19937 mRandom;
  std::shared_ptr<GView> mView;
  Shown mShown;
};

class RandomViewTest : public ViewRenderTest, public ::testing::WithParamInterface<unsigned>
{
protected:
  void TearDown() override
  {
    GView::reset_lighting();
    ViewRenderTest::TearDown();
  }
};

Image plain_picture(GView& view)
{
  view.set_perspective(false);
  view.set_perspective(true);
  view.complete_reset_camera();
  return picture(view);
}

TEST_P(RandomViewTest, AnythingGoesAndAResetBringsThePictureBack)
{
  const ImpatientHost host;
  const PrintCapture printed;
  RandomView random(GetParam());
  const Image before = plain_picture(random.view());
  for (int i = 0; i < 150; ++i) {
    random.step();
    random.expect_as_counted();
  }
  GView& view = random.view();
  view.set_triad_vis(false);
  view.set_axis_vis(false);
  view.set_cube_axes_vis(false);
  view.set_legend_vis(false);
  view.set_scalar_bar(nullptr);
  view.set_title(nullptr);
  GView::reset_lighting();
  EXPECT_TRUE(before == plain_picture(view));
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomViewTest, ::testing::Range(1U, 11U));

} // namespace
