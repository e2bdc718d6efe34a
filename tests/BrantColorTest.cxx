// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "BrantColor.h"

#include <climits>
#include <cstring>
#include <gtest/gtest.h>

namespace {

// Usable in constant expressions, which the named constants need.
static_assert(BrantColor(1, 2, 3, 4).alpha() == 4);

TEST(BrantColorTest, StartsAsOpaqueBlack)
{
  const BrantColor color;
  EXPECT_EQ(color.red(), 0);
  EXPECT_EQ(color.green(), 0);
  EXPECT_EQ(color.blue(), 0);
  EXPECT_EQ(color.alpha(), 255);
}

TEST(BrantColorTest, KeepsItsChannelsAndIsOpaqueUnlessTold)
{
  const BrantColor opaque(1, 2, 3);
  EXPECT_EQ(opaque.red(), 1);
  EXPECT_EQ(opaque.green(), 2);
  EXPECT_EQ(opaque.blue(), 3);
  EXPECT_EQ(opaque.alpha(), 255);
  EXPECT_EQ(BrantColor(1, 2, 3, 0).alpha(), 0);
}

TEST(BrantColorTest, ClampsEveryChannelInsteadOfWrapping)
{
  // Cut to eight bits, 256 would be 0 and -1 would be 255.
  EXPECT_EQ(BrantColor(256, -1, INT_MAX, INT_MIN), BrantColor(255, 0, 255, 0));
  EXPECT_EQ(BrantColor(-1, 256, INT_MIN, INT_MAX), BrantColor(0, 255, 0, 255));
  EXPECT_EQ(BrantColor(255, 0, 254, 1).red(), 255);
  EXPECT_EQ(BrantColor(255, 0, 254, 1).blue(), 254);
}

TEST(BrantColorTest, IsFourBytesInTheOrderRedGreenBlueAlpha)
{
  const BrantColor color(10, 20, 30, 40);
  unsigned char bytes[4];
  static_assert(sizeof bytes == sizeof color);
  std::memcpy(bytes, &color, sizeof bytes);
  EXPECT_EQ(bytes[0], 10);
  EXPECT_EQ(bytes[1], 20);
  EXPECT_EQ(bytes[2], 30);
  EXPECT_EQ(bytes[3], 40);
}

TEST(BrantColorTest, DiffersInAnyOneChannel)
{
  const BrantColor color(1, 2, 3, 4);
  EXPECT_TRUE(color == BrantColor(1, 2, 3, 4));
  EXPECT_FALSE(color != BrantColor(1, 2, 3, 4));
  EXPECT_TRUE(color != BrantColor(9, 2, 3, 4));
  EXPECT_TRUE(color != BrantColor(1, 9, 3, 4));
  EXPECT_TRUE(color != BrantColor(1, 2, 9, 4));
  EXPECT_TRUE(color != BrantColor(1, 2, 3, 9));
}

TEST(BrantColorTest, NamedConstantsHaveTheirValues)
{
  EXPECT_EQ(BRANT_BLACK, BrantColor(0, 0, 0, 255));
  EXPECT_EQ(BRANT_GREY, BrantColor(127, 127, 127, 255));
  EXPECT_EQ(BRANT_ORANGE, BrantColor(255, 165, 0, 255));
  EXPECT_EQ(BRANT_RED, BrantColor(255, 0, 0, 255));
  EXPECT_EQ(BRANT_GREEN, BrantColor(0, 255, 0, 255));
  EXPECT_EQ(BRANT_YELLOW, BrantColor(255, 255, 0, 255));
  EXPECT_EQ(BRANT_MAGENTA, BrantColor(255, 0, 255, 255));
  EXPECT_EQ(BRANT_CYAN, BrantColor(0, 255, 255, 255));
  EXPECT_EQ(BRANT_BLUE, BrantColor(0, 0, 255, 255));
  EXPECT_EQ(BRANT_WHITE, BrantColor(255, 255, 255, 255));
  EXPECT_EQ(BRANT_BROWN, BrantColor(165, 42, 42, 255));
  EXPECT_EQ(BRANT_GOLD, BrantColor(255, 215, 0, 255));
  EXPECT_EQ(BRANT_LIGHTBLUE, BrantColor(173, 216, 230, 255));
  EXPECT_EQ(BRANT_LIGHTGREEN, BrantColor(0, 204, 0, 255));
  EXPECT_EQ(BRANT_SALMON, BrantColor(250, 128, 114, 255));
  EXPECT_EQ(BRANT_CORAL, BrantColor(255, 127, 80, 255));
  EXPECT_EQ(BRANT_PINK, BrantColor(255, 192, 203, 255));
}

TEST(BrantColorTest, TheDefaultColorIsTheDefaultConstructedOne)
{
  EXPECT_EQ(BRANT_DEFAULT_COLOR, BrantColor());
}

} // namespace
