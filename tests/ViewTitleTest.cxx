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

} // namespace
