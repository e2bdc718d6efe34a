// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
//
// The table of the mesh viewer's keys.
#include "Keys.h"

#include <gtest/gtest.h>

#include <set>
#include <sstream>
#include <string>

namespace {

void expect_action(const char* symbol, Command command, double value = 0.0, bool control = false)
{
  const auto action = action_of(symbol, control);
  ASSERT_TRUE(action.has_value()) << symbol;
  EXPECT_EQ(*action, (KeyAction{command, value})) << symbol;
}

TEST(MeshviewKeysTest, SwitchesAreLetters)
{
  expect_action("n", Command::ToggleTitle);
  expect_action("t", Command::ToggleTriad);
  expect_action("a", Command::NextAxes);
  expect_action("c", Command::ToggleCubeAxes);
  expect_action("l", Command::ToggleLegend);
  expect_action("b", Command::ToggleScalarBar);
  expect_action("p", Command::ToggleProjection);
  expect_action("f", Command::NextSurface);
  expect_action("w", Command::NextWire);
  expect_action("o", Command::ToggleSilhouette);
  expect_action("d", Command::ToggleHiddenLines);
  expect_action("s", Command::SavePicture);
  expect_action("S", Command::SaveScene);
  expect_action("D", Command::NextShape);
  expect_action("q", Command::Quit);
  expect_action("e", Command::Quit);
  expect_action("r", Command::Frame);
  expect_action("z", Command::ZoomToAll);
  expect_action("space", Command::Spin);
  expect_action("Escape", Command::Interrupt);
}

TEST(MeshviewKeysTest, DigitsRestoreViewsAndControlSavesThem)
{
  for (int view = 1; view <= 4; ++view) {
    const std::string digit = std::to_string(view);
    expect_action(digit.c_str(), Command::RestoreView, view);
    expect_action(digit.c_str(), Command::SaveView, view, true);
  }
  EXPECT_FALSE(action_of("5", false).has_value());
  EXPECT_FALSE(action_of("0", true).has_value());
}

TEST(MeshviewKeysTest, OppositeKeysHaveOppositeValues)
{
  EXPECT_EQ(action_of("Left", false)->value, -action_of("Right", false)->value);
  EXPECT_EQ(action_of("Up", false)->value, -action_of("Down", false)->value);
  EXPECT_EQ(action_of("plus", false)->value, -action_of("minus", false)->value);
  EXPECT_EQ(action_of("KP_Add", false), action_of("plus", false));
  EXPECT_GT(action_of("K", false)->value, 0.0);
  EXPECT_EQ(action_of("k", false)->value, -action_of("K", false)->value);
}

// On some keyboards plus and ? need Shift, on others they do not: the symbol alone counts. Capital letters
// are symbols of their own.
TEST(MeshviewKeysTest, CapitalsAreOtherKeys)
{
  EXPECT_NE(action_of("x", false)->value, action_of("X", false)->value);
  EXPECT_FALSE(action_of("Q", false).has_value());
  EXPECT_EQ(action_of("question", false), action_of("h", false));
}

TEST(MeshviewKeysTest, EachKeyIsThereOnce)
{
  std::set<KeyStroke> seen;
  for (const KeyStroke& stroke : key_strokes()) {
    EXPECT_TRUE(seen.insert(stroke).second) << stroke.first;
    EXPECT_TRUE(action_of(stroke.first.c_str(), stroke.second).has_value()) << stroke.first;
  }
  EXPECT_GT(seen.size(), 40U);
}

TEST(MeshviewKeysTest, WhatIsNotInTheTableIsNothing)
{
  for (const char* symbol : {"W", "g", "j", "Z", "m", "", "F1", "Shift_L", "no such key"}) {
    EXPECT_FALSE(action_of(symbol, false).has_value()) << symbol;
  }
  EXPECT_FALSE(action_of(nullptr, false).has_value());
  EXPECT_FALSE(action_of("q", true).has_value()) << "Control makes it another key";
}

TEST(MeshviewKeysTest, TheListHasShortLinesOfKeysAndWhatTheyDo)
{
  std::istringstream lines(key_list());
  int count = 0;
  for (std::string line; std::getline(lines, line); ++count) {
    EXPECT_LT(line.size(), 80U) << line;
    EXPECT_EQ(line.find_first_not_of(' '), 2U) << line;
    EXPECT_NE(line.find_last_not_of(' '), std::string::npos);
    EXPECT_EQ(line.find_first_not_of(' ', 19), 20U) << line;
  }
  EXPECT_GT(count, 15);
  EXPECT_NE(key_list().back(), '\n');
}

} // namespace
