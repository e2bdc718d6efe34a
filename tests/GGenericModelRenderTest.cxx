// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// What a generic model looks like.
#include "GGenericModel.h"

#include "GenericModelFixture.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace {

using namespace morrow_test;

/// A view of 100 × 100 pixels onto the square from (-1, -1) to (1, 1), through a set.
class GGenericModelRenderTest : public ViewRenderTest
{
protected:
  void SetUp() override
  {
    ViewRenderTest::SetUp();
    mView = make_view();
    mSet.add_model(&mModel);
    mView->set_model_set(&mSet);
    mOn = std::make_unique<WarningDisplayOn>();
  }

  Image picture() { return morrow_test::picture(*mView); }
  int lit() { return count_pixels(picture(), colour_is_not(kBlack)); }

  GModelSet mSet;
  GGenericModel mModel;
  std::shared_ptr<GView> mView;
  std::unique_ptr<WarningDisplayOn> mOn;
};

/// How much darker a surface may be that faces the light.
constexpr int kLightLoss = 30;

const BrantVector kSquare[] = {{-0.5, -0.5, 0.0}, {0.5, -0.5, 0.0}, {0.5, 0.5, 0.0}, {-0.5, 0.5, 0.0}};

TEST_F(GGenericModelRenderTest, PointsAreSquaresOfSixPixelsInTheirColours)
{
  mModel.add_points(1, &kSquare[0], BRANT_RED, MRUtil::DRAW_OUTLINE);
  mModel.add_points(1, &kSquare[2], BRANT_BLUE, MRUtil::DRAW_OUTLINE);
  const Image image = picture();
  const PixelRegion red = find_pixels(image, colour_is(kRed));
  const PixelRegion blue = find_pixels(image, colour_is(kBlue));
  EXPECT_EQ(red.count, 36);
  EXPECT_EQ(blue.count, 36);
  EXPECT_NEAR(red.centre_x, 25.0, 1.0);
  EXPECT_NEAR(blue.centre_y, 75.0, 1.0);
  mModel.set_point_size(2.0F);
  EXPECT_EQ(count_pixels(picture(), colour_is(kRed)), 144);
}

TEST_F(GGenericModelRenderTest, LinesAreOnePixelWideInExactlyTheirColours)
{
  mModel.add_line({-0.5, 0.01, 0.0}, {0.5, 0.01, 0.0}, BRANT_GREEN);
  const PixelRegion line = find_pixels(picture(), colour_is(kGreen));
  EXPECT_NEAR(line.count, 50, 1);
  EXPECT_EQ(line.height(), 1);
  mModel.set_line_width(3.0F);
  EXPECT_EQ(find_pixels(picture(), colour_is(kGreen)).height(), 3);
}

TEST_F(GGenericModelRenderTest, PolylineHasAllItsSegments)
{
  const int list[] = {4, 0, 1, 2, 3};
  mModel.add_polylines(4, kSquare, 5, list, BRANT_GREEN, MRUtil::DRAW_OUTLINE);
  const Image image = picture();
  EXPECT_NEAR(count_pixels(image, colour_is(kGreen)), 150, 3);
  EXPECT_EQ(count_pixels(crop(image, 20, 40, 30, 60), colour_is(kGreen)), 0); // it is not closed
}

TEST_F(GGenericModelRenderTest, PolygonIsFilledOrAnOutlineByItsMode)
{
  mModel.add_quad(kSquare, BRANT_RED, MRUtil::DRAW_FILLED);
  EXPECT_EQ(find_pixels(picture(), colour_is_not(kBlack)).count, 50 * 50);
  mModel.clear();
  mModel.add_quad(kSquare, BRANT_RED, MRUtil::DRAW_OUTLINE);
  const Image image = picture();
  EXPECT_NEAR(count_pixels(image, colour_is(kRed)), 4 * 50, 8);
  EXPECT_EQ(count_pixels(crop(image, 30, 30, 70, 70), colour_is_not(kBlack)), 0);
}

TEST_F(GGenericModelRenderTest, DefaultModeFollowsTheRenderMode)
{
  mModel.add_quad(kSquare, BRANT_RED, MRUtil::DRAW_DEFAULT);
  EXPECT_EQ(lit(), 50 * 50);
  mModel.set_render_mode(MRUtil::RENDER_WIREFRAME);
  EXPECT_NEAR(lit(), 4 * 50, 8);
  mModel.set_render_mode(MRUtil::RENDER_SMOOTH);
  EXPECT_EQ(lit(), 50 * 50);
}

TEST_F(GGenericModelRenderTest, HighlightsAreInTheHighlightColourAlsoAfterwards)
{
  const int face[] = {4, 0, 1, 2, 3};
  mModel.add_polygons_highlight(4, kSquare, 5, face);
  EXPECT_EQ(count_pixels(picture(), colour_is({255, 165, 0}, kLightLoss)), 50 * 50);
  mModel.set_highlight_color(BRANT_BLUE);
  EXPECT_EQ(count_pixels(picture(), colour_is(kBlue, kLightLoss)), 50 * 50);
}

TEST_F(GGenericModelRenderTest, HighlightedLinesAreThreePixelsWide)
{
  const BrantVector points[] = {{-0.5, 0.01, 0.0}, {0.5, 0.01, 0.0}};
  const int list[] = {2, 0, 1};
  mModel.add_polylines_highlight(2, points, 3, list);
  const PixelRegion line = find_pixels(picture(), colour_is_not(kBlack));
  EXPECT_EQ(line.height(), 3);
  mModel.set_highlight_line_width(1.0F);
  EXPECT_EQ(find_pixels(picture(), colour_is_not(kBlack)).height(), 1);
}

TEST_F(GGenericModelRenderTest, OverlayIsHalfTransparent)
{
  mModel.add_quad(kSquare, BRANT_RED, MRUtil::DRAW_FILLED);
  const Rgb opaque = picture().at(50, 50);
  mModel.clear();
  mModel.add_quad(kSquare, BRANT_RED, MRUtil::DRAW_OVERLAY);
  const Rgb middle = picture().at(50, 50);
  EXPECT_NEAR(middle.r, opaque.r / 2, 2);
  EXPECT_GT(middle.r, 100);
  EXPECT_EQ(middle.g, 0);
}

TEST_F(GGenericModelRenderTest, ColoursAreTranslucentByTheirAlpha)
{
  mModel.add_quad(kSquare, BrantColor(255, 0, 0, 51), MRUtil::DRAW_FILLED);
  const Rgb middle = picture().at(50, 50);
  EXPECT_LE(middle.r, 52);
  EXPECT_GE(middle.r, 51 - kLightLoss / 5);
  EXPECT_EQ(middle.g, 0);
}

// Both in one plane: the offset decides.
TEST_F(GGenericModelRenderTest, LinesAndPointsOnPolygonsAreSeen)
{
  mModel.add_quad(kSquare, BRANT_RED, MRUtil::DRAW_FILLED);
  mModel.add_line({-0.5, 0.01, 0.0}, {0.5, 0.01, 0.0}, BRANT_GREEN);
  mModel.add_points(1, kSquare, BRANT_BLUE, MRUtil::DRAW_OUTLINE);
  const Image image = picture();
  EXPECT_NEAR(count_pixels(image, colour_is(kGreen)), 50, 1);
  EXPECT_EQ(count_pixels(image, colour_is(kBlue)), 36);
}

TEST_F(GGenericModelRenderTest, WhatIsAddedShowsInTheNextFrame)
{
  mModel.add_line({-0.5, 0.51, 0.0}, {0.5, 0.51, 0.0}, BRANT_GREEN);
  mModel.add_tri(kSquare, BRANT_RED, MRUtil::DRAW_FILLED);
  const int before = lit();
  mModel.add_line({-0.5, 0.71, 0.0}, {0.5, 0.71, 0.0}, BRANT_GREEN);
  EXPECT_NEAR(lit(), before + 50, 1);
  const BrantVector rest[] = {kSquare[0], kSquare[2], kSquare[3]};
  mModel.add_tri(rest, BRANT_RED, MRUtil::DRAW_FILLED);
  EXPECT_EQ(count_pixels(picture(), colour_is(kRed, kLightLoss)), 50 * 50);
  mModel.clear();
  EXPECT_EQ(lit(), 0);
}

TEST_F(GGenericModelRenderTest, CubeIsSeenFromAllSides)
{
  const BrantVector corners[] = {{-0.5, -0.5, -0.5}, {0.5, 0.5, 0.5}};
  mModel.add_cube(corners, BRANT_RED, MRUtil::DRAW_FILLED);
  EXPECT_EQ(count_pixels(picture(), colour_is(kRed, kLightLoss)), 50 * 50);
  vtkCamera* camera = mView->get_renderer()->GetActiveCamera();
  camera->Azimuth(45.0);
  const PixelRegion region = find_pixels(picture(), colour_is_not(kBlack));
  EXPECT_NEAR(region.width(), 71, 1);
  EXPECT_EQ(region.height(), 50);
  EXPECT_EQ(region.count, region.width() * region.height());
}

TEST_F(GGenericModelRenderTest, VectorIsALineWithAHead)
{
  mModel.add_vector({-0.9, 0.0, 0.0}, {0.9, 0.0, 0.0}, BRANT_RED, true);
  const Image image = picture();
  const PixelRegion all = find_pixels(image, colour_is_not(kBlack));
  EXPECT_NEAR(all.min_x, 5, 1);
  EXPECT_NEAR(all.max_x, 94, 1);
  // The base, a fifth of 1.8 before the head, reaches 0.126 to each side: 6.3 pixels.
  const PixelRegion head = find_pixels(crop(image, 76, 0, 99, 99), colour_is_not(kBlack));
  EXPECT_GE(head.height(), 9);
  EXPECT_LE(head.height(), 13);
  EXPECT_LE(find_pixels(crop(image, 0, 0, 74, 99), colour_is_not(kBlack)).height(), 2);
}

TEST_F(GGenericModelRenderTest, PolydataIsSeenInItsColour)
{
  mModel.add_polydata(quad(-0.5, -0.5, 0.5, 0.5), BRANT_RED, MRUtil::DRAW_FILLED);
  EXPECT_EQ(count_pixels(picture(), colour_is(kRed, kLightLoss)), 50 * 50);
}

TEST_F(GGenericModelRenderTest, MarkerIsReadableBesideItsPlace)
{
  mView->get_render_window()->SetSize(400, 400);
  mModel.add_locate({0.0, 0.0, 0.0}, "here");
  const PixelRegion text = find_pixels(picture(), colour_is_not(kBlack));
  EXPECT_GT(text.count, 20);
  EXPECT_GE(text.min_x, 219);
  EXPECT_LE(text.min_x, 320);
  EXPECT_GE(text.min_y, 215);
  EXPECT_LE(text.max_y, 240);
  EXPECT_GE(text.height(), 5);
  EXPECT_LE(text.height(), 13); // 0.03 of 400
}

TEST_F(GGenericModelRenderTest, TwoViewsShowTheSame)
{
  const auto other = make_view();
  other->set_model_set(&mSet);
  mModel.add_quad(kSquare, BRANT_RED, MRUtil::DRAW_FILLED);
  EXPECT_EQ(lit(), 50 * 50);
  EXPECT_EQ(count_pixels(morrow_test::picture(*other), colour_is(kRed, kLightLoss)), 50 * 50);
  mModel.add_line({-0.9, 0.81, 0.0}, {0.9, 0.81, 0.0}, BRANT_GREEN);
  EXPECT_NEAR(lit(), 50 * 50 + 90, 2);
  EXPECT_NEAR(count_pixels(morrow_test::picture(*other), colour_is(kGreen)), 90, 1);
}

TEST_F(GGenericModelRenderTest, WhatIsNotFiniteIsHarmless)
{
  const double bad[] = {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
                        1e308};
  mModel.add_quad(kSquare, BRANT_RED, MRUtil::DRAW_FILLED);
  for (const MRUtil::DrawMode mode : kAllModes) {
    for (const double number : bad) {
      const BrantVector points[] = {{number, 0.0, 0.0}, {0.0, 0.0, 0.0}, {0.0, number, 0.0},
                                    {0.0, 0.0, number}, {1.0, 1.0, 1.0}, {number, number, number}};
      mModel.add_points(6, points, BRANT_RED, mode);
      mModel.add_polygon(3, points, BRANT_RED, mode);
      mModel.add_polygon(4, points, BRANT_RED, mode);
      mModel.add_polygon(6, points, BRANT_RED, mode);
      mModel.add_vector(points[0], points[1], BRANT_RED, true);
      mModel.add_locate(points[0], "nowhere");
    }
  }
  (void)picture();
  mModel.clear();
  mModel.add_quad(kSquare, BRANT_RED, MRUtil::DRAW_FILLED);
  EXPECT_EQ(lit(), 50 * 50); // the camera is where it was
}

// The model hands them on, and OpenGL refuses some; the next good ones are as good as ever.
TEST_F(GGenericModelRenderTest, SizesThatAreNoneAreHarmless)
{
  mModel.add_points(1, &kSquare[0], BRANT_RED, MRUtil::DRAW_OUTLINE);
  mModel.add_line({-0.5, 0.01, 0.0}, {0.5, 0.01, 0.0}, BRANT_GREEN);
  const BrantVector points[] = {{-0.5, 0.51, 0.0}, {0.5, 0.51, 0.0}};
  const int list[] = {2, 0, 1};
  mModel.add_polylines_highlight(2, points, 3, list);
  {
    const ExpectedGlErrors refused({"GL_INVALID_VALUE in glPointSize", "GL_INVALID_VALUE in glLineWidth"});
    for (const float bad : {0.0F, -1.0F, std::numeric_limits<float>::quiet_NaN(),
                            std::numeric_limits<float>::infinity(), std::numeric_limits<float>::max()}) {
      mModel.set_point_size(bad);
      mModel.set_line_width(bad);
      mModel.set_highlight_line_width(bad);
      (void)picture();
    }
  }
  mModel.set_point_size(1.0F);
  mModel.set_line_width(1.0F);
  mModel.set_highlight_line_width(3.0F);
  const Image image = picture();
  EXPECT_EQ(count_pixels(image, colour_is(kRed)), 36);
  EXPECT_EQ(find_pixels(image, colour_is(kGreen)).height(), 1);
  EXPECT_EQ(find_pixels(crop(image, 30, 60, 70, 99), colour_is_not(kBlack)).height(), 3);
}

// Lists that would end VTK, or draw what is not there.
TEST_F(GGenericModelRenderTest, BrokenListsDrawNothing)
{
  const PrintCapture capture;
  const std::vector<std::vector<int>> lists = {{0},    {1, 0},    {2, 0, 4},          {2, -1, 0}, {-1, 0, 1},
                                               {2, 0}, {0, 0, 0}, {3, 0, 1, 1 << 30}, {1 << 30}};
  for (const auto& list : lists) {
    for (const MRUtil::DrawMode mode : kAllModes) {
      const int length = static_cast<int>(list.size());
      mModel.add_polylines(4, kSquare, length, list.data(), BRANT_RED, mode);
      mModel.add_polygons(4, kSquare, length, list.data(), BRANT_RED, mode);
    }
  }
  EXPECT_EQ(lit(), 0);
  EXPECT_EQ(capture.calls().size(), lists.size() * 10);
}

} // namespace
