// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
//
// Picking with the mouse in the mesh viewer's window. There is one pointer on a display: these tests run one
// by one.
#include "MeshviewSupport.h"

#include <algorithm>

namespace {

using namespace morrow_test;

bool is_picked_colour(Rgb pixel)
{
  return pixel.r > 2.2 * pixel.g && pixel.g > 1.3 * pixel.b && pixel.r > 60;
}

bool is_pre_selected_colour(Rgb pixel)
{
  return pixel.r > 80 && pixel.g > 0.7 * pixel.r && pixel.b < 0.25 * pixel.r;
}

/// The cube from +x in parallel projection: a square, the side +x in front of -x.
class MeshviewPickWindowTest : public MeshviewRunningTest
{
protected:
  void SetUp() override
  {
    MeshviewRunningTest::SetUp();
    open(write_cube(), {"--size", "200x200", "--background", "9", "--view=+x", "--parallel"});
    const auto square = find_pixels(picture(), [](Rgb pixel) { return !is_white(pixel); });
    mLeft = square.min_x;
    mRight = square.max_x;
  }

  void pick_mode()
  {
    press_key(mWindow, XK_P, ShiftMask);
    expect_output("the left button picks: face\n");
  }

  void click(int x, int y, unsigned int state = 0)
  {
    press_button(mWindow, x, y, state);
    release_button(mWindow, x, y, state);
  }

  void drag(const std::vector<std::array<int, 2>>& path)
  {
    press_button(mWindow, path.front()[0], path.front()[1]);
    for (const auto& [x, y] : path) {
      move_mouse(mWindow, x, y, Button1Mask);
      press_key(mWindow, XK_v); // until this is done, as the pointer is asked for its place then
      expect_output("AutoCenter");
    }
    release_button(mWindow, path.back()[0], path.back()[1]);
  }

  int mLeft = 0;
  int mRight = 0;
};

TEST_F(MeshviewPickWindowTest, AClickPicksAndTabStepsThroughWhatIsBelow)
{
  pick_mode();
  click(100, 100);
  expect_output("  Current entity is face 0.\n");
  EXPECT_GT(count_pixels(picture(), is_picked_colour), 1000);
  press_key(mWindow, XK_Tab);
  expect_output("  Current entity is face 1.\n");
  EXPECT_LT(count_pixels(picture(), is_picked_colour), 100); // behind
  press_key(mWindow, XK_Tab);
  expect_output("  Current entity is face 0.\n");
  press_key(mWindow, XK_ISO_Left_Tab, ShiftMask);
  expect_output("  Current entity is face 1.\n");
  click(2, 2);
  expect_output("nothing there\n");
}

TEST_F(MeshviewPickWindowTest, TheKindsGoRound)
{
  pick_mode();
  for (const char* kind : {"edge", "element", "node", "block", "face"}) {
    press_key(mWindow, XK_T, ShiftMask);
    expect_output(std::string("Now in ") + kind + " picking mode.\n");
  }
  press_key(mWindow, XK_T, ShiftMask);
  expect_output("edge picking mode.\n");
  click(mLeft, 100);
  expect_output("  Current entity is edge ");
}

TEST_F(MeshviewPickWindowTest, ShiftAddsAndTakesAwayAndEscapeClears)
{
  pick_mode();
  press_key(mWindow, XK_T, ShiftMask); // edges
  expect_output("edge picking mode.\n");
  press_key(mWindow, XK_H, ShiftMask);
  expect_output("what surfaces hide is not picked\n");
  const auto highlighted = [this] { return count_pixels(picture(), is_picked_colour); };
  click(mLeft + 1, 100);
  expect_output("Current entity is");
  const int one = highlighted();
  EXPECT_GT(one, 100);
  click(mRight - 1, 100, ShiftMask);
  expect_output("Current entity is");
  const int two = highlighted();
  EXPECT_GT(two, one * 3 / 2);
  click(mRight - 1, 100, ShiftMask);
  EXPECT_EQ(highlighted(), one);
  press_key(mWindow, XK_Escape);
  EXPECT_EQ(highlighted(), 0);
}

TEST_F(MeshviewPickWindowTest, DragsToTheRightTakeWhatIsInsideAndToTheLeftWhatTheyTouch)
{
  pick_mode();
  drag({{1, 199}, {50, 100}, {100, 1}});
  expect_output("1 entity selected\n"); // the side -y, seen from its edge
  drag({{100, 1}, {50, 100}, {1, 199}});
  expect_output("5 entities selected\n");
  press_key(mWindow, XK_D, ShiftMask);
  expect_output("drags draw a circle\n");
  drag({{100, 100}, {120, 100}});
  expect_output("nothing there\n");
  drag({{100, 100}, {80, 100}});
  expect_output("2 entities selected\n");
  press_key(mWindow, XK_D, ShiftMask);
  expect_output("drags draw a lasso\n");
  // Whichever way it goes round, the first step to a side counts.
  const std::vector<std::array<int, 2>> clockwise = {{1, 1}, {1, 198}, {100, 198}, {100, 1}};
  drag(clockwise);
  expect_output("1 entity selected\n");
  drag({clockwise.rbegin(), clockwise.rend()});
  expect_output("5 entities selected\n");
  drag({{4, 1}, {1, 2}, {100, 1}, {100, 198}, {1, 198}}); // three pixels to the left are none
  expect_output("1 entity selected\n");
  drag({{100, 198}, {1, 198}, {1, 1}, {100, 1}});
  expect_output("5 entities selected\n");
}

TEST_F(MeshviewPickWindowTest, WhatIsDrawnIsSeenWhileTheButtonIsDown)
{
  pick_mode();
  const auto is_blue = [](Rgb pixel) { return pixel.b > 150 && pixel.r < 60 && pixel.g < 110; };
  const auto is_green = [](Rgb pixel) { return pixel.g > 90 && pixel.r < 60 && pixel.b < 90; };
  press_button(mWindow, 5, 5);
  move_mouse(mWindow, 195, 195, Button1Mask);
  const Image to_the_right = picture();
  EXPECT_GT(count_pixels(to_the_right, is_blue), 400);
  EXPECT_EQ(find_pixels(to_the_right, is_blue).width(), find_pixels(to_the_right, is_blue).height());
  move_mouse(mWindow, 1, 100, Button1Mask);
  EXPECT_GT(count_pixels(picture(), is_green), 100);
  press_key(mWindow, XK_Escape); // gives it up
  const Image given_up = picture();
  EXPECT_EQ(count_pixels(given_up, is_green) + count_pixels(given_up, is_blue), 0);
  release_button(mWindow, 1, 100);
  EXPECT_EQ(count_pixels(picture(), is_picked_colour), 0);
}

TEST_F(MeshviewPickWindowTest, WhatIsBelowTheCursorLightsUp)
{
  pick_mode();
  move_mouse(mWindow, 100, 100);
  EXPECT_GT(count_pixels(picture(), is_pre_selected_colour), 1000);
  move_mouse(mWindow, 2, 2);
  EXPECT_EQ(count_pixels(picture(), is_pre_selected_colour), 0);
  move_mouse(mWindow, 100, 100);
  EXPECT_GT(count_pixels(picture(), is_pre_selected_colour), 1000);
  XWarpPointer(mDisplay, None, DefaultRootWindow(mDisplay), 0, 0, 0, 0, 900, 900); // leaves the window
  EXPECT_EQ(count_pixels(picture(), is_pre_selected_colour), 0);
  move_mouse(mWindow, 100, 100);
  press_key(mWindow, XK_P, ShiftMask);
  expect_output("the left button rotates\n");
  EXPECT_EQ(count_pixels(picture(), is_pre_selected_colour), 0);
}

TEST_F(MeshviewPickWindowTest, TheCameraStaysUsable)
{
  const Image before = picture();
  const auto rotate = [this](unsigned int state) {
    press_button(mWindow, 100, 100, state);
    move_mouse(mWindow, 140, 120, state | Button1Mask);
    release_button(mWindow, 140, 120, state);
  };
  pick_mode();
  rotate(ControlMask);
  const Image turned = picture();
  EXPECT_GT(compare(turned, before).pixels_over_8, 500);
  EXPECT_EQ(count_pixels(turned, is_picked_colour), 0);
  press_key(mWindow, XK_P, ShiftMask);
  expect_output("the left button rotates\n");
  press_key(mWindow, XK_x);
  rotate(0);
  EXPECT_GT(compare(picture(), before).pixels_over_8, 500);
}

TEST_F(MeshviewPickWindowTest, TheMiddleButtonPansTheRightOneAndTheWheelZoom)
{
  const auto square = [this] { return find_pixels(picture(), [](Rgb pixel) { return !is_white(pixel); }); };
  const auto drag_up_with = [this](unsigned int button, unsigned int mask) {
    press_button(mWindow, 100, 100, 0, button);
    move_mouse(mWindow, 100, 120, mask);
    release_button(mWindow, 100, 120, 0, button);
  };
  const PixelRegion before = square();
  drag_up_with(Button2, Button2Mask);
  const PixelRegion moved = square();
  EXPECT_NEAR(moved.min_y, before.min_y + 20, 2);
  EXPECT_EQ(moved.min_x, before.min_x);
  EXPECT_NEAR(moved.width(), before.width(), 1);
  drag_up_with(Button3, Button3Mask);
  const PixelRegion nearer = square();
  EXPECT_GT(nearer.width(), moved.width() + 5);
  press_button(mWindow, 100, 100, 0, Button5); // the wheel
  release_button(mWindow, 100, 100, 0, Button5);
  EXPECT_LT(square().width(), nearer.width() - 5);
}

} // namespace
