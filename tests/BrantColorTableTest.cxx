// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "BrantColorTable.h"

#include "BrantString.h"

#include <climits>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>

namespace {

// The table belongs to the process: every test leaves it as it found it.
class BrantColorTableTest : public ::testing::Test
{
protected:
  void TearDown() override { BrantColorTable::clear_variable_colors(); }

  static std::string name_of(int id)
  {
    BrantString name("unwritten");
    EXPECT_TRUE(BrantColorTable::color_id_to_string(id, name)) << id;
    return name.str();
  }

  static void expect_out_of_range(int id)
  {
    EXPECT_EQ(BrantColorTable::lookup_color(id), BRANT_DEFAULT_COLOR) << id;
    double rgb[] = {-1, -2, -3};
    EXPECT_FALSE(BrantColorTable::color_id_to_rgb(id, rgb)) << id;
    EXPECT_EQ(rgb[0], -1.0) << id;
    EXPECT_EQ(rgb[1], -2.0) << id;
    EXPECT_EQ(rgb[2], -3.0) << id;
    BrantString name("unwritten");
    EXPECT_FALSE(BrantColorTable::color_id_to_string(id, name)) << id;
    EXPECT_EQ(name.str(), "unwritten") << id;
    EXPECT_FALSE(BrantColorTable::set_color(id, BRANT_RED)) << id;
  }
};

struct Entry
{
  const char* mName;
  BrantColor mColor;
};

// In the order of the ids.
constexpr Entry gExpected[] = {
    {"black", {0, 0, 0}},           {"grey", {127, 127, 127}},   {"orange", {255, 165, 0}},
    {"red", {255, 0, 0}},           {"green", {0, 255, 0}},      {"yellow", {255, 255, 0}},
    {"magenta", {255, 0, 255}},     {"cyan", {0, 255, 255}},     {"blue", {0, 0, 255}},
    {"white", {255, 255, 255}},     {"brown", {165, 42, 42}},    {"gold", {255, 215, 0}},
    {"lightblue", {173, 216, 230}}, {"lightgreen", {0, 204, 0}}, {"salmon", {250, 128, 114}},
    {"coral", {255, 127, 80}},      {"pink", {255, 192, 203}},
};

TEST_F(BrantColorTableTest, SeventeenFixedColorsHaveTheirIdsNamesAndValues)
{
  ASSERT_EQ(BrantColorTable::num_fixed_colors(), 17);
  int id = 0;
  for (const Entry& entry : gExpected) {
    EXPECT_EQ(name_of(id), entry.mName);
    EXPECT_EQ(BrantColorTable::lookup_color(id), entry.mColor) << entry.mName;
    ++id;
  }
  EXPECT_EQ(id, 17);
}

TEST_F(BrantColorTableTest, BlackIsZeroAndWhiteIsNine)
{
  EXPECT_EQ(BrantColorTable::lookup_color(0), BRANT_BLACK);
  EXPECT_EQ(BrantColorTable::lookup_color(9), BRANT_WHITE);
}

TEST_F(BrantColorTableTest, GivesChannelsAsFractions)
{
  double rgb[] = {-1, -1, -1};
  ASSERT_TRUE(BrantColorTable::color_id_to_rgb(2, rgb));
  EXPECT_EQ(rgb[0], 1.0);
  EXPECT_EQ(rgb[1], 165 / 255.0);
  EXPECT_EQ(rgb[2], 0.0);
}

TEST_F(BrantColorTableTest, IdsOutOfRangeGiveTheDefaultColorAndWriteNothing)
{
  for (const int id : {-1, 17, 18, INT_MAX, INT_MIN}) {
    expect_out_of_range(id);
  }
}

TEST_F(BrantColorTableTest, ANullResultIsRefused)
{
  EXPECT_FALSE(BrantColorTable::color_id_to_rgb(0, nullptr));
  EXPECT_FALSE(BrantColorTable::color_id_to_rgb(-1, nullptr));
}

TEST_F(BrantColorTableTest, VariableColorsFollowTheFixedOnesInTheirOrder)
{
  EXPECT_EQ(BrantColorTable::num_variable_colors(), 0);
  EXPECT_EQ(BrantColorTable::add_color("steel", {1, 2, 3}), 17);
  EXPECT_EQ(BrantColorTable::add_color("glass", {51, 102, 204, 128}), 18);
  EXPECT_EQ(BrantColorTable::num_variable_colors(), 2);
  EXPECT_EQ(BrantColorTable::num_fixed_colors(), 17);

  EXPECT_EQ(BrantColorTable::lookup_color(17), BrantColor(1, 2, 3));
  EXPECT_EQ(name_of(17), "steel");
  // The alpha channel is kept with the colour; the three fractions leave it out.
  EXPECT_EQ(BrantColorTable::lookup_color(18), BrantColor(51, 102, 204, 128));
  EXPECT_EQ(name_of(18), "glass");
  double rgb[] = {-1, -1, -1, -1};
  ASSERT_TRUE(BrantColorTable::color_id_to_rgb(18, rgb));
  EXPECT_EQ(rgb[0], 0.2);
  EXPECT_EQ(rgb[1], 0.4);
  EXPECT_EQ(rgb[2], 0.8);
  EXPECT_EQ(rgb[3], -1.0);
  expect_out_of_range(19);
}

TEST_F(BrantColorTableTest, CopiesTheName)
{
  char buffer[] = "steel";
  const int id = BrantColorTable::add_color(buffer, BRANT_GREY);
  buffer[0] = 'X';
  EXPECT_EQ(name_of(id), "steel");
}

TEST_F(BrantColorTableTest, AVariableColorMayHaveNoName)
{
  for (const char* no_name : {static_cast<const char*>(nullptr), ""}) {
    const int id = BrantColorTable::add_color(no_name, BRANT_CORAL);
    EXPECT_EQ(BrantColorTable::lookup_color(id), BRANT_CORAL);
    BrantString name("unwritten");
    EXPECT_FALSE(BrantColorTable::color_id_to_string(id, name));
    EXPECT_EQ(name.str(), "unwritten");
  }
}

TEST_F(BrantColorTableTest, TwoColorsMayShareAName)
{
  EXPECT_EQ(BrantColorTable::add_color("red", {1, 1, 1}), 17);
  EXPECT_EQ(BrantColorTable::add_color("red", {2, 2, 2}), 18);
  EXPECT_EQ(BrantColorTable::lookup_color(3), BRANT_RED);
  EXPECT_EQ(BrantColorTable::lookup_color(17), BrantColor(1, 1, 1));
  EXPECT_EQ(BrantColorTable::lookup_color(18), BrantColor(2, 2, 2));
}

TEST_F(BrantColorTableTest, ChangesAVariableColorAndKeepsItsName)
{
  BrantColorTable::add_color("first", BRANT_RED);
  const int id = BrantColorTable::add_color("second", BRANT_RED);
  EXPECT_TRUE(BrantColorTable::set_color(id, BRANT_BLUE));
  EXPECT_EQ(BrantColorTable::lookup_color(id), BRANT_BLUE);
  EXPECT_EQ(name_of(id), "second");
  EXPECT_EQ(BrantColorTable::lookup_color(id - 1), BRANT_RED);
}

TEST_F(BrantColorTableTest, FixedColorsCannotBeChanged)
{
  for (int id = 0; id < 17; ++id) {
    EXPECT_FALSE(BrantColorTable::set_color(id, {1, 2, 3})) << id;
    EXPECT_EQ(BrantColorTable::lookup_color(id), gExpected[id].mColor) << id;
  }
}

TEST_F(BrantColorTableTest, ClearingRemovesTheVariableColorsAndReusesTheirIds)
{
  BrantColorTable::add_color("steel", BRANT_GREY);
  BrantColorTable::add_color("glass", BRANT_CYAN);
  BrantColorTable::clear_variable_colors();
  EXPECT_EQ(BrantColorTable::num_variable_colors(), 0);
  expect_out_of_range(17);
  expect_out_of_range(18);
  EXPECT_EQ(BrantColorTable::lookup_color(16), BRANT_PINK);

  BrantColorTable::clear_variable_colors();
  EXPECT_EQ(BrantColorTable::add_color("oak", BRANT_BROWN), 17);
  EXPECT_EQ(name_of(17), "oak");
}

TEST_F(BrantColorTableTest, HoldsManyColors)
{
  for (int i = 0; i < 1000; ++i) {
    ASSERT_EQ(BrantColorTable::add_color(nullptr, {i % 256, i / 256, 0}), 17 + i);
  }
  EXPECT_EQ(BrantColorTable::num_variable_colors(), 1000);
  EXPECT_EQ(BrantColorTable::lookup_color(17 + 999), BrantColor(999 % 256, 999 / 256, 0));
}

// Used before main by one static object and after it by another; a table with a destructor of its own would
// be gone by then, which the address sanitizer reports.
struct UsesTheTableAtExit
{
  int mFixed = BrantColorTable::num_fixed_colors();
  ~UsesTheTableAtExit()
  {
    BrantString name;
    const int id = BrantColorTable::add_color("at exit", BRANT_GOLD);
    if (mFixed != 17 || !BrantColorTable::color_id_to_string(id, name) || name != "at exit") {
      std::abort();
    }
  }
};
const UsesTheTableAtExit gUsesTheTableAtExit;

} // namespace
