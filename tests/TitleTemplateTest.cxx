// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "TitleTemplate.h"

#include <gtest/gtest.h>

#include <climits>

namespace {

using morrow::expand_title;

TEST(TitleTemplateTest, PutsTheIdInParenthesesForTheTwoSigns)
{
  EXPECT_EQ(expand_title("Brant ##", 4), "Brant (4)");
  EXPECT_EQ(expand_title("## at the front", 12), "(12) at the front");
  EXPECT_EQ(expand_title("in ## the middle", 1), "in (1) the middle");
  EXPECT_EQ(expand_title("##", 7), "(7)");
}

TEST(TitleTemplateTest, ASingleSignStays)
{
  EXPECT_EQ(expand_title("#", 4), "#");
  EXPECT_EQ(expand_title("Brant #", 4), "Brant #");
  EXPECT_EQ(expand_title("mesh #1 of #2", 4), "mesh #1 of #2");
}

TEST(TitleTemplateTest, ASingleSignBeforeThePairStays)
{
  EXPECT_EQ(expand_title("# ##", 4), "# (4)");
  EXPECT_EQ(expand_title("#a##b", 4), "#a(4)b");
}

TEST(TitleTemplateTest, ReplacesOnlyTheFirstPair)
{
  EXPECT_EQ(expand_title("## and ##", 4), "(4) and ##");
  EXPECT_EQ(expand_title("####", 4), "(4)##");
}

// The first sign that is followed by another is the first one, so the third is left.
TEST(TitleTemplateTest, OfThreeSignsInARowTheFirstTwoGo)
{
  EXPECT_EQ(expand_title("###", 4), "(4)#");
}

TEST(TitleTemplateTest, TextWithoutSignsStays)
{
  EXPECT_EQ(expand_title("", 4), "");
  EXPECT_EQ(expand_title("Brant", 4), "Brant");
}

TEST(TitleTemplateTest, AnyIdIsWritten)
{
  EXPECT_EQ(expand_title("##", 0), "(0)");
  EXPECT_EQ(expand_title("##", -1), "(-1)");
  EXPECT_EQ(expand_title("##", INT_MAX), "(2147483647)");
  EXPECT_EQ(expand_title("##", INT_MIN), "(-2147483648)");
}

// A template is text, not a format.
TEST(TitleTemplateTest, PercentSignsStay)
{
  EXPECT_EQ(expand_title("100% ## %s %n", 4), "100% (4) %s %n");
}

TEST(TitleTemplateTest, BytesBeyondAsciiStay)
{
  EXPECT_EQ(expand_title("Brücke ## – Netz", 4), "Brücke (4) – Netz");
}

TEST(TitleTemplateTest, LongTextsAreNotCut)
{
  const std::string filler(5000, 'x');
  EXPECT_EQ(expand_title(filler + "##" + filler, 4), filler + "(4)" + filler);
}

} // namespace
