// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
//
// The window of the mesh viewer, with keys as its users press them.
#include "MeshviewSupport.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <memory>
#include <thread>

namespace fs = std::filesystem;

namespace {

using namespace morrow_test;

// --- The window ------------------------------------------------------------------------------------------

class MeshviewClosingTest : public MeshviewWindowTest
{
protected:
  /// Opens the window, lets somebody close it and expects that to end the program. Events that come before
  /// the program listens are lost, so it is done again until it ends.
  void expect_closed_by(const std::function<void(Window)>& close) const
  {
    const std::string cube = write_cube();
    Process process({cube, "--size", "160x120", "--labels", "blocks"});
    const Window window = wait_for_window("meshview - " + cube);
    ASSERT_NE(window, 0U);
    bool has_ended = false;
    std::thread closer([&] {
      while (!has_ended) {
        close(window);
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
      }
    });
    const Outcome outcome = process.wait();
    has_ended = true;
    closer.join();
    EXPECT_EQ(outcome.status, 0) << ::testing::PrintToString(outcome);
    EXPECT_EQ(outcome.err, "");
    EXPECT_NE(outcome.out.find("total"), std::string::npos);
  }
};

TEST_F(MeshviewClosingTest, TheKeysQAndEEndTheProgram)
{
  expect_closed_by([this](Window window) { press_key(window, XK_q); });
  expect_closed_by([this](Window window) { press_key(window, XK_e); });
}

TEST_F(MeshviewClosingTest, ClosingTheWindowEndsTheProgram)
{
  expect_closed_by([this](Window window) { ask_to_close(window); });
}

/// The pointer goes into the window and out of it, which the window hears of, before it is closed and after.
TEST_F(MeshviewClosingTest, ThePointerMayEnterWhileTheProgramEnds)
{
  for (const bool by_key : {true, false}) {
    expect_closed_by([&](Window window) {
      cross_with_pointer(window);
      by_key ? press_key(window, XK_q) : ask_to_close(window);
      cross_with_pointer(window);
    });
  }
}

// --- Keys ------------------------------------------------------------------------------------------------

using Vector = std::array<double, 3>;

double dot(const Vector& a, const Vector& b)
{
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

/// The angle between two directions in degrees.
double angle_between(const Vector& a, const Vector& b)
{
  const double cosine = dot(a, b) / std::sqrt(dot(a, a) * dot(b, b));
  return std::acos(std::min(1.0, std::max(-1.0, cosine))) * 180.0 / 3.14159265358979;
}

/// A window that takes keys, of a cube coloured by the sides' numbers.
class MeshviewKeysInWindowTest : public MeshviewRunningTest
{
protected:
  void SetUp() override
  {
    MeshviewRunningTest::SetUp();
    open(write_cube(), {"--size", "200x200", "--background", "9", "--color-by", "side", "--title", "Cube"});
  }

  /// The direction in which the camera looks.
  Vector direction()
  {
    press_key(mWindow, XK_v);
    const std::string text = expect_output("AutoCenter");
    Vector found = {};
    const auto at = text.find(" View: <");
    EXPECT_NE(at, std::string::npos) << text;
    if (at != std::string::npos) {
      EXPECT_EQ(std::sscanf(text.c_str() + at, " View: <%lfi %lfj %lfk>", &found[0], &found[1], &found[2]), 3)
          << text;
    }
    return found;
  }
};

TEST_F(MeshviewKeysInWindowTest, PicturesAndScenesGoToNewFiles)
{
  const Image first = picture();
  EXPECT_GT(first.width(), 0);
  EXPECT_EQ(picture(), first);
  for (const char* name : {"cube_0001.wrl", "cube_0002.wrl"}) {
    press_key(mWindow, XK_S, ShiftMask);
    expect_output(std::string("saved ") + name);
    EXPECT_NE(read_text(in_folder(name)).find("#VRML"), std::string::npos) << name;
  }
  EXPECT_EQ(picture(), first);
}

TEST_F(MeshviewKeysInWindowTest, TheKeysAreListedAsInTheHelp)
{
  const std::string help = run({"--help"}).out;
  const auto start = help.find("  n                 title\n");
  ASSERT_NE(start, std::string::npos);
  const std::string keys = help.substr(start, help.find("\n\n", start) + 1 - start);
  direction(); // every h from before has been answered
  press_key(mWindow, XK_question, ShiftMask);
  EXPECT_NE(expect_output("quit\n").find(keys), std::string::npos);
  press_key(mWindow, XK_h);
  EXPECT_NE(expect_output("quit\n").find(keys), std::string::npos);
}

TEST_F(MeshviewKeysInWindowTest, SidesTurnsAndSavedViews)
{
  const Vector iso = direction();
  press_key(mWindow, XK_x);
  press_key(mWindow, XK_i);
  EXPECT_LT(angle_between(direction(), iso), 0.01);
  const std::pair<KeySym, Vector> sides[] = {{XK_x, {-1, 0, 0}}, {XK_X, {1, 0, 0}}, {XK_Y, {0, 1, 0}},
                                             {XK_u, {0, 0, -1}}, {XK_U, {0, 0, 1}}, {XK_y, {0, -1, 0}}};
  for (const auto& [key, expected] : sides) {
    press_key(mWindow, key, (key == XK_X || key == XK_Y || key == XK_U) ? ShiftMask : 0U);
    EXPECT_LT(angle_between(direction(), expected), 0.01) << key;
  }
  press_key(mWindow, XK_2, ControlMask);
  expect_output("saved view 2");
  for (const int key : {XK_Left, XK_Up, XK_Right, XK_Down}) {
    const Vector before = direction();
    press_key(mWindow, static_cast<KeySym>(key));
    EXPECT_NEAR(angle_between(direction(), before), 15.0, 0.01) << key;
  }
  press_key(mWindow, XK_x);
  press_key(mWindow, XK_3); // nothing is saved there
  EXPECT_LT(angle_between(direction(), {-1, 0, 0}), 0.01);
  press_key(mWindow, XK_2);
  EXPECT_LT(angle_between(direction(), {0, -1, 0}), 0.01);
  press_key(mWindow, XK_q);
  EXPECT_EQ(mProcess->wait().status, 0);
}

// The mesh follows the arrow: its sides towards +x, and towards +z, come to the middle from the other side.
TEST_F(MeshviewKeysInWindowTest, ArrowsTurnTheMeshTheirWay)
{
  press_key(mWindow, XK_Y, ShiftMask); // from -y, with x to the right
  press_key(mWindow, XK_Left);
  EXPECT_LT(direction()[0], -0.2) << "from the right";
  press_key(mWindow, XK_Y, ShiftMask);
  press_key(mWindow, XK_Down);
  EXPECT_LT(direction()[2], -0.2) << "from above";
}

TEST_F(MeshviewKeysInWindowTest, DecorationsComeAndGo)
{
  press_key(mWindow, XK_x);
  const Image plain = picture();
  for (const int key : {XK_n, XK_t, XK_c, XK_b}) {
    press_key(mWindow, static_cast<KeySym>(key));
    const Image with = picture();
    EXPECT_GT(compare(with, plain).pixels_over_8, 30) << key;
    press_key(mWindow, static_cast<KeySym>(key));
    EXPECT_EQ(picture(), plain) << key;
  }
  std::vector<Image> axes;
  for (int i = 0; i < 4; ++i) {
    press_key(mWindow, XK_a);
    axes.push_back(picture());
  }
  EXPECT_NE(axes[1], plain) << "flat, in the corner";
  EXPECT_EQ(axes[3], plain) << "off";
  press_key(mWindow, XK_l);
  const Image legend = picture();
  EXPECT_EQ(legend.at(200 / 3 + 5, 15), (Rgb{0, 0, 0}));
  press_key(mWindow, XK_p);
  EXPECT_EQ(picture().at(200 / 3 + 5, 15), (Rgb{255, 255, 255})) << "in perspective there is no scale";
}

// The light from above is darker than that from the eye, and stays so.
TEST_F(MeshviewKeysInWindowTest, TheLightGetsDarkerAndBrighter)
{
  press_key(mWindow, XK_x);
  const auto middle = [this] {
    const Rgb pixel = picture().at(100, 100);
    return pixel.r + pixel.g + pixel.b;
  };
  const int before = middle();
  press_key(mWindow, XK_k);
  const int dark = middle();
  EXPECT_LT(dark, before - 5);
  press_key(mWindow, XK_K, ShiftMask);
  EXPECT_NEAR(middle(), before, 3);
  for (int i = 0; i < 12; ++i) { // more than to the end
    press_key(mWindow, XK_k);
  }
  const int least = middle();
  EXPECT_LT(least, dark);
  EXPECT_GT(least, 0);
  press_key(mWindow, XK_k);
  EXPECT_EQ(middle(), least);
}

// Around a full cycle, the mesh looks as before.
TEST_F(MeshviewKeysInWindowTest, StylesOfSurfacesAndLinesGoRound)
{
  press_key(mWindow, XK_i);
  const Image plain = picture();
  const std::pair<KeySym, int> cycles[] = {{XK_f, 3}, {XK_w, 4}, {XK_o, 2}, {XK_d, 2}};
  for (const auto& [key, length] : cycles) {
    for (int i = 1; i < length; ++i) {
      press_key(mWindow, key);
      EXPECT_GT(compare(picture(), plain).pixels_over_8, 100) << key << " " << i;
    }
    press_key(mWindow, key);
    EXPECT_EQ(picture(), plain) << key;
  }
}

TEST_F(MeshviewKeysInWindowTest, ZoomsAndComesBack)
{
  press_key(mWindow, XK_x);
  const auto width = [this] {
    return find_pixels(picture(), [](Rgb pixel) { return !is_white(pixel); }).width();
  };
  const int before = width();
  press_key(mWindow, XK_minus);
  const int away = width();
  EXPECT_LT(away, before);
  press_key(mWindow, XK_plus, ShiftMask);
  EXPECT_NEAR(width(), before, 4);
  for (const int key : {XK_z, XK_r}) {
    press_key(mWindow, XK_minus);
    press_key(mWindow, XK_minus);
    const int far_away = width();
    press_key(mWindow, static_cast<KeySym>(key));
    EXPECT_GT(width(), far_away + 10) << key;
    EXPECT_GT(width(), 70) << key;
    EXPECT_LT(width(), 200) << key;
  }
}

// A full turn ends where it began. Keys that are pressed meanwhile wait for its end, but for Escape.
TEST_F(MeshviewKeysInWindowTest, SpaceTurnsOnceAndEscapeStopsIt)
{
  press_key(mWindow, XK_x);
  press_key(mWindow, XK_space);
  EXPECT_LT(angle_between(direction(), {-1, 0, 0}), 0.01);
  press_key(mWindow, XK_space);
  std::this_thread::sleep_for(std::chrono::milliseconds(150));
  press_key(mWindow, XK_Y, ShiftMask); // is forgotten
  press_key(mWindow, XK_Escape);
  const Vector stopped = direction();
  EXPECT_GT(angle_between(stopped, {-1, 0, 0}), 0.5);
  EXPECT_GT(angle_between(stopped, {0, 1, 0}), 0.5);
}

TEST_F(MeshviewKeysInWindowTest, QuitEndsASpinToo)
{
  press_key(mWindow, XK_space);
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  press_key(mWindow, XK_q);
  EXPECT_EQ(mProcess->wait().status, 0);
}

TEST_F(MeshviewKeysInWindowTest, ClosingTheWindowEndsASpinToo)
{
  press_key(mWindow, XK_space);
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  ask_to_close(mWindow);
  EXPECT_EQ(mProcess->wait().status, 0);
}

// Keys of VTK's interactor styles that would change how things are drawn, or end the program's own order.
TEST_F(MeshviewKeysInWindowTest, KeysThatAreNotListedDoNothing)
{
  press_key(mWindow, XK_x);
  const Image before = picture();
  for (const int key : {XK_g, XK_j, XK_m, XK_3}) {
    press_key(mWindow, static_cast<KeySym>(key));
  }
  EXPECT_EQ(picture(), before);
}

} // namespace
