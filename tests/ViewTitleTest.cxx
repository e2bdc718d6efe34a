// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "ViewTitle.h"
#include "ViewFixture.h"

#include <vtkCoordinate.h>
#include <vtkTextActor.h>
#include <vtkTextProperty.h>

namespace {

using namespace morrow_test;

constexpr double Red[3] = {1.0, 0.0, 0.0};
constexpr double White[3] = {1.0, 1.0, 1.0};

class ViewTitleTest : public RenderTest
{
protected:
  ViewTitleTest() : mTitle(*mScene.renderer()) {}

  void TearDown() override { mTitle.set_font_size(12); }

  Scene mScene{300, 200};
  morrow::ViewTitle mTitle;
};

TEST_F(ViewTitleTest, HangsCentredFromTheTop)
{
  EXPECT_EQ(mTitle.actor(), nullptr);
  mTitle.create();
  const vtkTextActor* actor = mTitle.actor();
  ASSERT_NE(actor, nullptr);
  vtkTextProperty* style = mTitle.actor()->GetTextProperty();
  EXPECT_EQ(style->GetJustification(), 1);
  EXPECT_EQ(style->GetVerticalJustification(), 2);
  EXPECT_EQ(style->GetFontSize(), 12);
  vtkCoordinate* position = mTitle.actor()->GetPositionCoordinate();
  EXPECT_EQ(position->GetCoordinateSystem(), 1);
  EXPECT_EQ(position->GetValue()[0], 0.5);
  EXPECT_EQ(position->GetValue()[1], 0.99);
  EXPECT_FALSE(mScene.renderer()->HasViewProp(mTitle.actor())); // it has no text yet
  mTitle.create();
  EXPECT_EQ(mTitle.actor(), actor);
}

TEST_F(ViewTitleTest, IsSeenWhereItShouldBe)
{
  mTitle.set_color(Red);
  mTitle.set_text("HHHHHHHH");
  const PixelRegion text = find_pixels(mScene.render(), colour_is_not(kBlack, 60));
  EXPECT_GT(text.count, 50);
  EXPECT_NEAR(text.centre_x, 150.0, 2.0);
  EXPECT_GE(text.min_y, 200 - 2 - 20);
  EXPECT_LE(text.max_y, 198); // 0.99 of the height
}

TEST_F(ViewTitleTest, ComesAndGoesWithItsText)
{
  mTitle.set_text("");
  ASSERT_NE(mTitle.actor(), nullptr); // made when missing
  EXPECT_FALSE(mScene.renderer()->HasViewProp(mTitle.actor()));
  mTitle.set_text("text");
  EXPECT_TRUE(mScene.renderer()->HasViewProp(mTitle.actor()));
  mTitle.set_text("other");
  EXPECT_STREQ(mTitle.actor()->GetInput(), "other");
  EXPECT_EQ(mScene.renderer()->GetViewProps()->GetNumberOfItems(), 1);
  mTitle.set_text("");
  EXPECT_FALSE(mScene.renderer()->HasViewProp(mTitle.actor()));
  EXPECT_STREQ(mTitle.actor()->GetInput(), "");
  mTitle.set_text("again");
  EXPECT_TRUE(mScene.renderer()->HasViewProp(mTitle.actor()));
  mTitle.set_text(nullptr);
  EXPECT_FALSE(mScene.renderer()->HasViewProp(mTitle.actor()));
}

TEST_F(ViewTitleTest, FollowsTheBackgroundUntilItHasAColour)
{
  mTitle.follow_background(Red); // without an actor: nothing
  EXPECT_EQ(mTitle.actor(), nullptr);
  mTitle.create();
  mTitle.follow_background(Red);
  EXPECT_EQ(mTitle.actor()->GetTextProperty()->GetColor()[1], 0.0);
  mTitle.set_color(White);
  mTitle.follow_background(Red);
  EXPECT_EQ(mTitle.actor()->GetTextProperty()->GetColor()[1], 1.0);
}

TEST_F(ViewTitleTest, AColourMakesTheActor)
{
  mTitle.set_color(Red);
  ASSERT_NE(mTitle.actor(), nullptr);
  EXPECT_FALSE(mScene.renderer()->HasViewProp(mTitle.actor()));
}

TEST_F(ViewTitleTest, TheSizeIsThatOfThisTitleAndOfAllLaterOnes)
{
  morrow::ViewTitle earlier(*mScene.renderer());
  earlier.create();
  mTitle.set_font_size(20); // no actor yet
  EXPECT_EQ(mTitle.actor(), nullptr);
  mTitle.create();
  EXPECT_EQ(mTitle.actor()->GetTextProperty()->GetFontSize(), 20);
  mTitle.set_font_size(30);
  EXPECT_EQ(mTitle.actor()->GetTextProperty()->GetFontSize(), 30);
  EXPECT_EQ(earlier.actor()->GetTextProperty()->GetFontSize(), 12);
  morrow::ViewTitle later(*mScene.renderer());
  later.create();
  EXPECT_EQ(later.actor()->GetTextProperty()->GetFontSize(), 30);
}

TEST_F(ViewTitleTest, SizesThatAreNoneAreIgnored)
{
  mTitle.create();
  for (const int bad : {0, -1, -2147483647}) {
    mTitle.set_font_size(bad);
    EXPECT_EQ(mTitle.actor()->GetTextProperty()->GetFontSize(), 12) << bad;
  }
}

TEST_F(ViewTitleTest, SizesAreBounded)
{
  mTitle.create();
  mTitle.set_font_size(2147483647);
  EXPECT_EQ(mTitle.actor()->GetTextProperty()->GetFontSize(), 500);
}

// Texts that look like formulas, have no visible letter or many lines.
TEST_F(ViewTitleTest, AnyTextIsDrawn)
{
  const std::string lines = std::string(2000, '\n') + "x";
  for (const char* text : {"$x^2$", "a|b", "\n", " ", "\t\r\x01\x7f", lines.c_str()}) {
    mTitle.set_text(text);
    static_cast<void>(mScene.render());
  }
}

// VTK reports errors, and makes some in OpenGL, for a text that is not UTF-8.
TEST_F(ViewTitleTest, BytesThatAreNoUtf8AreQuestionMarks)
{
  const std::pair<const char*, const char*> texts[] = {// Latin-1, what begins no character, what is cut off
                                                       {"caf\xe9", "caf?"},
                                                       {"\xff\xfe\xf5\xf8", "????"},
                                                       {"\x80\xbf", "??"},
                                                       {"\xc3", "?"},
                                                       {"\xc3x", "?x"},
                                                       {"\xe2\x82", "??"},
                                                       {"\xf0\x9f\x98", "???"},
                                                       // forms that are too long, a surrogate, above U+10FFFF
                                                       {"\xc0\x80\xc1\xbf", "????"},
                                                       {"\xe0\x9f\xbf", "???"},
                                                       {"\xf0\x8f\xbf\xbf", "????"},
                                                       {"\xed\xa0\x80", "???"},
                                                       {"\xf4\x90\x80\x80", "????"}};
  for (const auto& [text, shown] : texts) {
    mTitle.set_text(text);
    EXPECT_STREQ(mTitle.actor()->GetInput(), shown);
    EXPECT_GT(count_pixels(mScene.render(), colour_is_not(kBlack)), 5) << shown;
  }
}

TEST_F(ViewTitleTest, Utf8IsShownAsItIs)
{
  for (const char* text : {"\x01~", "\xc2\x80 \xc3\xa9 \xdf\xbf", "\xe0\xa0\x80 \xe2\x82\xac \xed\x9f\xbf",
                           "\xee\x80\x80 \xef\xbf\xbd \xef\xbf\xbf", "\xf0\x90\x80\x80 \xf4\x8f\xbf\xbf"}) {
    mTitle.set_text(text);
    EXPECT_STREQ(mTitle.actor()->GetInput(), text);
    static_cast<void>(mScene.render());
  }
}

} // namespace
