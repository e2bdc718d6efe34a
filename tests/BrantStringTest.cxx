// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "BrantString.h"

#include <climits>
#include <gtest/gtest.h>
#include <string>

namespace {

const char* const gNoText = nullptr;

// Making

TEST(BrantStringTest, StartsEmpty)
{
  const BrantString text;
  EXPECT_TRUE(text.empty());
  EXPECT_EQ(text.size(), 0U);
  EXPECT_STREQ(text.c_str(), "");
}

TEST(BrantStringTest, ANullCStringGivesTheEmptyString)
{
  const BrantString text(gNoText);
  EXPECT_TRUE(text.empty());
  EXPECT_STREQ(text.c_str(), "");
}

TEST(BrantStringTest, HoldsACopyOfACString)
{
  char buffer[] = "mesh";
  const BrantString text(buffer);
  buffer[0] = 'X';
  EXPECT_EQ(text.str(), "mesh");
  EXPECT_STREQ(text.c_str(), "mesh");
  EXPECT_EQ(text.size(), 4U);
  EXPECT_FALSE(text.empty());
}

TEST(BrantStringTest, KeepsTheZerosOfAStandardString)
{
  const BrantString text(std::string("a\0b", 3));
  EXPECT_EQ(text.size(), 3U);
  EXPECT_EQ(text.str(), std::string("a\0b", 3));
}

TEST(BrantStringTest, ConvertsFromEitherKindOfString)
{
  BrantString text = "first";
  EXPECT_EQ(text.str(), "first");
  text = std::string("second");
  EXPECT_EQ(text.str(), "second");
  text = gNoText;
  EXPECT_TRUE(text.empty());
}

// Formatting

TEST(BrantStringTest, FormatsByThePrintfRules)
{
  EXPECT_EQ(BrantString::format("%s has %d of %05.1f%%", "block", -3, 2.25).str(), "block has -3 of 002.2%");
  EXPECT_EQ(BrantString::format("plain").str(), "plain");
}

TEST(BrantStringTest, FormatsTextOfAnyLength)
{
  // Around the sizes of usual buffers, and far beyond them; the end must be there.
  for (const int length : {1, 255, 256, 1023, 1024, 1025, 2000, 100000}) {
    const BrantString text = BrantString::format("%*s", length, "!");
    ASSERT_EQ(text.size(), static_cast<std::size_t>(length));
    EXPECT_EQ(text.str(), std::string(static_cast<std::size_t>(length) - 1, ' ') + "!") << length;
  }
}

// Through a pointer, since the compiler knows what a literal null or empty format means and warns.
BrantString (*const gFormat)(const char*, ...) = &BrantString::format;

TEST(BrantStringTest, ANullOrEmptyFormatGivesTheEmptyString)
{
  EXPECT_TRUE(gFormat(nullptr).empty());
  EXPECT_TRUE(gFormat(nullptr, 1, "unused").empty());
  EXPECT_TRUE(gFormat("").empty());
}

TEST(BrantStringTest, TextThatCannotBeEncodedGivesTheEmptyString)
{
  // No encoding of the "C" locale, in which every program starts, has a code for this character.
  EXPECT_TRUE(BrantString::format("before %ls after", L"\x4e2d").empty());
}

TEST(BrantStringTest, APercentSignInAnArgumentIsNotAFormat)
{
  EXPECT_EQ(BrantString::format("%s", "100%s %n").str(), "100%s %n");
}

TEST(BrantStringTest, FormatsFromItsOwnText)
{
  BrantString text = "part";
  text = BrantString::format("%s-%s", text.c_str(), text.c_str());
  EXPECT_EQ(text.str(), "part-part");
}

TEST(BrantStringTest, NumbersAreDecimalOverTheWholeRange)
{
  EXPECT_EQ(BrantString::number(0).str(), "0");
  EXPECT_EQ(BrantString::number(-7).str(), "-7");
  EXPECT_EQ(BrantString::number(1234567).str(), "1234567");
  EXPECT_EQ(BrantString::number(INT_MAX).str(), "2147483647");
  EXPECT_EQ(BrantString::number(INT_MIN).str(), "-2147483648");
}

// Appending

TEST(BrantStringTest, AppendsInPlaceAndCanBeChained)
{
  BrantString text("a");
  (text += "b") += std::string("c");
  EXPECT_EQ(text.str(), "abc");
}

TEST(BrantStringTest, AppendsItself)
{
  BrantString text("ab");
  text += text;
  EXPECT_EQ(text.str(), "abab");
}

TEST(BrantStringTest, AppendingNullChangesNothing)
{
  BrantString text("a");
  text += gNoText;
  EXPECT_EQ(text.str(), "a");
}

// Replacing

TEST(BrantStringTest, ReplacesEveryOccurrenceAndCountsThem)
{
  BrantString text("## and ##, ##");
  EXPECT_EQ(text.replace("##", "(1)"), 3U);
  EXPECT_EQ(text.str(), "(1) and (1), (1)");
}

TEST(BrantStringTest, ReplacesByShorterTextAndByNothing)
{
  BrantString text("<<a>> <<b>>");
  EXPECT_EQ(text.replace("<<", "<"), 2U);
  EXPECT_EQ(text.str(), "<a>> <b>>");
  EXPECT_EQ(text.replace(">>", ""), 2U);
  EXPECT_EQ(text.str(), "<a <b");
  EXPECT_EQ(text.replace(" ", gNoText), 1U);
  EXPECT_EQ(text.str(), "<a<b");
}

TEST(BrantStringTest, LeavesTextWithoutTheSearchedOneAlone)
{
  BrantString text("abc");
  EXPECT_EQ(text.replace("x", "y"), 0U);
  EXPECT_EQ(text.replace("abcd", "y"), 0U);
  EXPECT_EQ(text.str(), "abc");

  BrantString empty;
  EXPECT_EQ(empty.replace("x", "y"), 0U);
  EXPECT_TRUE(empty.empty());
}

TEST(BrantStringTest, AnEmptySearchTextReplacesNothing)
{
  BrantString text("abc");
  EXPECT_EQ(text.replace("", "x"), 0U);
  EXPECT_EQ(text.replace(gNoText, "x"), 0U);
  EXPECT_EQ(text.str(), "abc");
}

TEST(BrantStringTest, DoesNotSearchWhatItPutIn)
{
  // The marker survives in its replacement, as when a line is inserted before a shader's marker.
  BrantString text("//M");
  EXPECT_EQ(text.replace("//M", "x;\n//M"), 1U);
  EXPECT_EQ(text.str(), "x;\n//M");
}

TEST(BrantStringTest, OccurrencesDoNotOverlap)
{
  // From the left: "aa" twice, and one "a" is left over.
  BrantString text("aaaaa");
  EXPECT_EQ(text.replace("aa", "b"), 2U);
  EXPECT_EQ(text.str(), "bba");
}

TEST(BrantStringTest, TakesItselfAsEitherArgumentOfAReplacement)
{
  BrantString text("ab");
  EXPECT_EQ(text.replace("b", text), 1U);
  EXPECT_EQ(text.str(), "aab");
  EXPECT_EQ(text.replace(text, "c"), 1U);
  EXPECT_EQ(text.str(), "c");
}

// Comparing

TEST(BrantStringTest, OrdersByBytesAndPrefixesFirst)
{
  const BrantString a("a");
  const BrantString ab("ab");
  const BrantString b("b");
  EXPECT_TRUE(a < ab);
  EXPECT_TRUE(ab < b);
  EXPECT_FALSE(b < ab);
  EXPECT_FALSE(a < a);
  EXPECT_TRUE(a <= a);
  EXPECT_FALSE(b <= a);
  EXPECT_TRUE(b > ab);
  EXPECT_FALSE(a > a);
  EXPECT_TRUE(a >= a);
  EXPECT_FALSE(a >= b);
  // Bytes above 127 come after those of ASCII, whether char is signed or not.
  EXPECT_TRUE(BrantString("z") < BrantString("\xc3\xa9"));
}

TEST(BrantStringTest, ComparesWithEitherKindOfString)
{
  const BrantString text("a");
  EXPECT_TRUE(text == BrantString("a"));
  EXPECT_TRUE(text == "a");
  EXPECT_TRUE("a" == text);
  EXPECT_TRUE(text == std::string("a"));
  EXPECT_TRUE(text != "A");
  EXPECT_FALSE(text != "a");
  EXPECT_TRUE(text != gNoText);
  EXPECT_TRUE(BrantString() == gNoText);
}

} // namespace
