// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "TestImage.h"
#include "TemporaryFolder.h"
#include "TestSupport.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <limits>
#include <stdexcept>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

using morrow_test::accepts;
using morrow_test::colour_is;
using morrow_test::colour_is_not;
using morrow_test::compare;
using morrow_test::Image;
using morrow_test::ImageDifference;
using morrow_test::kBlack;
using morrow_test::kRed;
using morrow_test::kWhite;
using morrow_test::PixelRegion;
using morrow_test::Rgb;
using morrow_test::Strictness;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

// --- Image ---------------------------------------------------------------------------------------

TEST(ImageTest, StartsEmpty)
{
  const Image image;
  EXPECT_TRUE(image.empty());
  EXPECT_EQ(image.width(), 0);
  EXPECT_EQ(image.height(), 0);
}

TEST(ImageTest, ANegativeSizeCountsAsZero)
{
  const Image image(-3, 4);
  EXPECT_EQ(image.width(), 0);
  EXPECT_TRUE(image.empty());
}

TEST(ImageTest, PixelsRunInRowsFromTheBottom)
{
  Image image(3, 2);
  image.set(2, 0, kRed);
  image.set(0, 1, kWhite);
  EXPECT_EQ(image.pixels()[2], kRed);
  EXPECT_EQ(image.pixels()[3], kWhite);
}

TEST(ImageTest, APixelOffThePictureThrows)
{
  Image image(3, 2);
  EXPECT_THROW((void)image.at(3, 0), std::out_of_range);
  EXPECT_THROW((void)image.at(0, -1), std::out_of_range);
  EXPECT_THROW(image.set(0, 2, kRed), std::out_of_range);
}

TEST(ImageTest, FillTakesBothCornersAndCutsAtTheEdges)
{
  Image image(4, 4);
  image.fill(2, 2, 9, 9, kRed);
  EXPECT_EQ(morrow_test::count_pixels(image, colour_is(kRed)), 4);
  image.fill(-5, -5, -1, -1, kRed);
  EXPECT_EQ(morrow_test::count_pixels(image, colour_is(kRed)), 4);
}

TEST(ImageTest, EqualityLooksAtSizeAndPixelsOnly)
{
  Image one(2, 3, kRed);
  Image other(2, 3, kRed);
  other.driver = "something else";
  EXPECT_EQ(one, other);
  EXPECT_NE(one, Image(3, 2, kRed)); // as many pixels, in another shape
  other.set(1, 2, kBlack);
  EXPECT_NE(one, other);
}

TEST(ImageTest, FindsBoxAndCentre)
{
  Image image(10, 10);
  image.fill(2, 4, 5, 4, kRed); // 4 pixels in row 4: centres 2.5 to 5.5
  const PixelRegion region = morrow_test::find_pixels(image, colour_is_not(kBlack));
  EXPECT_EQ(region.count, 4);
  EXPECT_EQ(region.min_x, 2);
  EXPECT_EQ(region.max_x, 5);
  EXPECT_EQ(region.min_y, 4);
  EXPECT_EQ(region.max_y, 4);
  EXPECT_EQ(region.width(), 4);
  EXPECT_EQ(region.height(), 1);
  EXPECT_EQ(region.centre_x, 4.0);
  EXPECT_EQ(region.centre_y, 4.5);
}

TEST(ImageTest, FindsNothingInABlankPicture)
{
  const PixelRegion region = morrow_test::find_pixels(Image(5, 5), colour_is_not(kBlack));
  EXPECT_EQ(region.count, 0);
  EXPECT_EQ(region.width(), 0);
  EXPECT_EQ(region.height(), 0);
}

TEST(ImageTest, ColourToleranceIsTheLargestChannelDifference)
{
  Image image(1, 1, {100, 50, 10});
  EXPECT_EQ(morrow_test::count_pixels(image, colour_is({100, 53, 10}, 3)), 1);
  EXPECT_EQ(morrow_test::count_pixels(image, colour_is({100, 54, 10}, 3)), 0);
  EXPECT_EQ(morrow_test::count_pixels(image, colour_is_not({100, 54, 10}, 3)), 1);
  EXPECT_EQ(morrow_test::count_pixels(image, colour_is_not({100, 53, 10}, 3)), 0);
}

TEST(ImageTest, CropsWithBothCorners)
{
  Image image(6, 5);
  image.set(2, 1, kRed);
  image.driver = "llvmpipe";
  const Image part = morrow_test::crop(image, 2, 1, 99, 99);
  EXPECT_EQ(part.width(), 4);
  EXPECT_EQ(part.height(), 4);
  EXPECT_EQ(part.at(0, 0), kRed);
  EXPECT_EQ(part.driver, "llvmpipe");
  EXPECT_TRUE(morrow_test::crop(image, 6, 0, 9, 9).empty());
}

// --- Numbers of a comparison ---------------------------------------------------------------------

TEST(ImageCompareTest, EqualPicturesAreAcceptedByBothStrictnesses)
{
  Image image(20, 20);
  image.fill(3, 3, 9, 9, kRed);
  const ImageDifference difference = compare(image, image);
  EXPECT_EQ(difference.max_channel, 0);
  EXPECT_EQ(difference.pixels_over_8, 0);
  EXPECT_EQ(difference.psnr, kInfinity);
  EXPECT_DOUBLE_EQ(difference.ssim, 1.0);
  EXPECT_TRUE(accepts(Strictness::Exact, difference));
  EXPECT_TRUE(accepts(Strictness::OtherDriver, difference));
}

TEST(ImageCompareTest, EmptyPicturesAreEqual)
{
  EXPECT_TRUE(accepts(Strictness::Exact, compare(Image(), Image())));
  EXPECT_TRUE(accepts(Strictness::OtherDriver, compare(Image(), Image())));
}

TEST(ImageCompareTest, AnotherSizeIsRefused)
{
  const ImageDifference difference = compare(Image(4, 2), Image(2, 4));
  EXPECT_FALSE(accepts(Strictness::Exact, difference));
  EXPECT_FALSE(accepts(Strictness::OtherDriver, difference));
  EXPECT_NE(morrow_test::describe(Strictness::Exact, difference).find("size"), std::string::npos);
}

TEST(ImageCompareTest, ExactRefusesOneStepOfOneChannelOfOnePixel)
{
  Image image(64, 64, {100, 100, 100});
  Image changed = image;
  changed.set(40, 40, {100, 100, 101});
  const ImageDifference difference = compare(changed, image);
  EXPECT_EQ(difference.max_channel, 1);
  EXPECT_FALSE(accepts(Strictness::Exact, difference));
  EXPECT_TRUE(accepts(Strictness::OtherDriver, difference));
}

TEST(ImageCompareTest, CountsPixelsBeyondEightStrictly)
{
  Image image(10, 10, {100, 100, 100});
  Image changed = image;
  changed.set(0, 0, {108, 100, 100}); // 8: rounding of a driver
  changed.set(1, 0, {100, 109, 100}); // 9
  changed.set(2, 0, {100, 100, 90});  // 10, downwards
  EXPECT_EQ(compare(changed, image).pixels_over_8, 2);
  EXPECT_EQ(compare(changed, image).max_channel, 10);
}

TEST(ImageCompareTest, NoiseRatioIsThatOfTheMeanSquareOverAllChannels)
{
  // One channel of every pixel off by 255: mean square is a third of 255², 10 log10 3 = 4.77 dB.
  const ImageDifference difference = compare(Image(8, 8, kRed), Image(8, 8, kBlack));
  EXPECT_NEAR(difference.psnr, 10.0 * std::log10(3.0), 1e-12);
}

TEST(ImageCompareTest, SimilarityOfFlatPicturesIsTheLuminanceTerm)
{
  // Without variance only (2ab + c1) / (a² + b² + c1) remains, c1 = (0.01 · 255)².
  const double c1 = 2.55 * 2.55;
  const double expected = (2.0 * 51.0 * 64.0 + c1) / (51.0 * 51.0 + 64.0 * 64.0 + c1);
  EXPECT_NEAR(compare(Image(9, 12, {7, 7, 51}), Image(9, 12, {7, 7, 64})).ssim, expected, 1e-12);
}

TEST(ImageCompareTest, SimilarityOfAnInvertedPatternIsNegative)
{
  // A checkerboard against its negative: equal means and variances, covariance −variance.
  Image board(8, 8);
  Image negative(8, 8);
  for (int y = 0; y < 8; ++y) {
    for (int x = 0; x < 8; ++x) {
      board.set(x, y, (x + y) % 2 == 0 ? kWhite : kBlack);
      negative.set(x, y, (x + y) % 2 == 0 ? kBlack : kWhite);
    }
  }
  const double variance = 127.5 * 127.5;
  const double c2 = 7.65 * 7.65;
  EXPECT_NEAR(compare(board, negative).ssim, (-2.0 * variance + c2) / (2.0 * variance + c2), 1e-12);
}

TEST(ImageCompareTest, SimilarityIsThatOfTheWorstChannel)
{
  const double blue_only = compare(Image(8, 8, {9, 9, 51}), Image(8, 8, {9, 9, 64})).ssim;
  const double all = compare(Image(8, 8, {51, 51, 51}), Image(8, 8, {64, 64, 64})).ssim;
  EXPECT_DOUBLE_EQ(blue_only, all);
}

TEST(ImageCompareTest, PicturesSmallerThanAWindowAreComparedWhole)
{
  EXPECT_DOUBLE_EQ(compare(Image(1, 3, kRed), Image(1, 3, kRed)).ssim, 1.0);
  EXPECT_LT(compare(Image(1, 3, kRed), Image(1, 3, kBlack)).ssim, 0.01);
}

TEST(ImageCompareTest, ADefectOnTheBorderOfTwoTilesIsWholeInAThird)
{
  Image image(96, 96);
  Image changed = image;
  changed.fill(28, 28, 35, 35, kWhite); // 8 × 8 around the corner (32, 32) of four tiles
  EXPECT_EQ(compare(changed, image).worst_tile_over_8, 64);
  EXPECT_EQ(compare(changed, image).worst_tile_over_48, 64);
}

TEST(ImageCompareTest, DescriptionGivesNumbersAndThresholds)
{
  Image image(16, 16);
  image.set(3, 3, {0, 77, 0});
  const ImageDifference difference = compare(image, Image(16, 16));
  const std::string exact = morrow_test::describe(Strictness::Exact, difference);
  EXPECT_NE(exact.find("77 (allowed: 0)"), std::string::npos) << exact;
  const std::string other = morrow_test::describe(Strictness::OtherDriver, difference);
  EXPECT_NE(other.find("(least: 45)"), std::string::npos) << other;
  EXPECT_NE(other.find("(least: 0.998)"), std::string::npos) << other;
}

TEST(ImageCompareTest, DifferencePictureIsStretchedAndMarksWhatOnlyOneHas)
{
  Image a(2, 1, kBlack);
  const Image b(1, 1, {0, 10, 5});
  const Image picture = morrow_test::difference_picture(a, b);
  EXPECT_EQ(picture.width(), 2);
  EXPECT_EQ(picture.at(0, 0), (Rgb{0, 255, 127})); // the largest difference is white, half of it grey
  EXPECT_EQ(picture.at(1, 0), (Rgb{255, 0, 255}));
  EXPECT_EQ(morrow_test::count_pixels(morrow_test::difference_picture(a, a), colour_is(kBlack)), 2);
}

// --- The defects that a comparison must see ------------------------------------------------------
//
// A scene like the library's: a shaded ball, a wall of one colour and a label, 400 × 400.

constexpr int kSize = 400;

using Glyph = std::array<const char*, 7>;
constexpr Glyph kFour = {"   # ", "  ## ", " # # ", "#  # ", "#####", "   # ", "   # "};
constexpr Glyph kTwo = {" ### ", "#   #", "    #", "   # ", "  #  ", " #   ", "#####"};
constexpr Glyph kThree = {" ### ", "#   #", "    #", "  ## ", "    #", "#   #", " ### "};

void draw_glyph(Image& image, const Glyph& glyph, int left, int bottom)
{
  for (int row = 0; row < 7; ++row) {
    for (int column = 0; column < 5; ++column) {
      if (glyph[static_cast<std::size_t>(6 - row)][column] == '#') {
        const int x = left + 2 * column;
        const int y = bottom + 2 * row;
        image.fill(x, y, x + 1, y + 1, kWhite); // 2 × 2 pixels each: 14 pixels high
      }
    }
  }
}

/// A ball of flat facets, `segments` around and half of it from pole to pole, lit from the viewer.
void draw_ball(Image& image, int centre, int radius, int segments)
{
  const double pi = std::acos(-1.0);
  const double step = 2.0 * pi / segments;
  for (int y = -radius; y <= radius; ++y) {
    for (int x = -radius; x <= radius; ++x) {
      const double nx = static_cast<double>(x) / radius;
      const double ny = static_cast<double>(y) / radius;
      if (nx * nx + ny * ny < 1.0) {
        const double latitude = (std::floor(std::asin(ny) / step) + 0.5) * step;
        const double longitude = (std::floor(std::asin(nx / std::sqrt(1.0 - ny * ny)) / step) + 0.5) * step;
        const double light = std::cos(latitude) * std::cos(longitude);
        const auto grey = static_cast<std::uint8_t>(30.0 + 220.0 * std::max(light, 0.0));
        image.set(centre + x, centre + y, {grey, grey, 60});
      }
    }
  }
}

struct Picture
{
  int label_x = 30;
  bool ends_in_three = false;
  double wall_blue = 0.20;
  int segments = 40;

  [[nodiscard]] Image draw() const
  {
    Image image(kSize, kSize);
    image.fill(200, 20, 380, 120, {30, 30, static_cast<std::uint8_t>(std::lround(wall_blue * 255.0))});
    draw_ball(image, 200, 150, segments);
    draw_glyph(image, kFour, label_x, 370);
    draw_glyph(image, ends_in_three ? kThree : kTwo, label_x + 14, 370);
    return image;
  }
};

struct Defect
{
  const char* name;
  Picture picture;
};

void PrintTo(const Defect& defect, std::ostream* out)
{
  *out << defect.name;
}

Picture moved_label()
{
  Picture picture;
  picture.label_x += 1;
  return picture;
}

Picture changed_digit()
{
  Picture picture;
  picture.ends_in_three = true;
  return picture;
}

Picture changed_channel()
{
  Picture picture;
  picture.wall_blue = 0.25;
  return picture;
}

Picture coarser_ball()
{
  Picture picture;
  picture.segments = 38;
  return picture;
}

class ImageDefectTest : public ::testing::TestWithParam<Defect>
{};

TEST_P(ImageDefectTest, IsRefusedByBothStrictnesses)
{
  const ImageDifference difference = compare(GetParam().picture.draw(), Picture().draw());
  EXPECT_FALSE(accepts(Strictness::Exact, difference));
  EXPECT_FALSE(accepts(Strictness::OtherDriver, difference))
      << morrow_test::describe(Strictness::OtherDriver, difference);
}

INSTANTIATE_TEST_SUITE_P(Kinds, ImageDefectTest,
                         ::testing::Values(Defect{"LabelMovedByOnePixel", moved_label()},
                                           Defect{"DigitChanged", changed_digit()},
                                           Defect{"ChannelChanged", changed_channel()},
                                           Defect{"BallOfFewerSegments", coarser_ball()}),
                         [](const auto& defect) { return std::string(defect.param.name); });

TEST(ImageCompareTest, TheRoundingOfAnotherDriverIsAccepted)
{
  const Image image = Picture().draw();
  Image other = image;
  // What two drivers differ by: one step in many pixels, and a few edge pixels that fell on the other side.
  for (int i = 0; i < kSize; ++i) {
    const Rgb pixel = other.at(i, (7 * i) % kSize);
    other.set(i, (7 * i) % kSize, {pixel.r, pixel.g, static_cast<std::uint8_t>(pixel.b ^ 1U)});
  }
  for (const int x : {60, 140, 220, 300}) {
    other.set(x, 200, {140, 140, 60});
  }
  const ImageDifference difference = compare(other, image);
  EXPECT_FALSE(accepts(Strictness::Exact, difference));
  EXPECT_TRUE(accepts(Strictness::OtherDriver, difference))
      << morrow_test::describe(Strictness::OtherDriver, difference);
}

TEST(ImageCompareTest, AChangedDigitIsSeenInALargePicture)
{
  // Over a million pixels a digit drowns in the mean: the noise ratio alone would accept it.
  Image large(1400, 1000);
  Image changed = large;
  draw_glyph(large, kTwo, 700, 500);
  draw_glyph(changed, kThree, 700, 500);
  const ImageDifference difference = compare(changed, large);
  EXPECT_GT(difference.psnr, morrow_test::kOtherDriverPsnr);
  EXPECT_GT(difference.ssim, morrow_test::kOtherDriverSsim);
  EXPECT_FALSE(accepts(Strictness::OtherDriver, difference));
}

// --- Files and baselines -------------------------------------------------------------------------

constexpr const char* kDriver = "llvmpipe (LLVM 15.0.6, 256 bits) / 4.5 (Core Profile) Mesa 22.3.6";

/// Two folders of its own, gone at the end.
class BaselineTest : public ::testing::Test
{
protected:
  BaselineTest()
  {
    fs::create_directories(mBaselines);
    mImage.fill(5, 5, 20, 20, kRed);
    mImage.driver = kDriver;
  }

  [[nodiscard]] morrow_test::BaselineResult compare_to_baseline(const Image& image) const
  {
    return morrow_test::compare_with_baseline(image, "picture", mBaselines.string(), mOutput.string());
  }
  [[nodiscard]] bool has_output(const char* name) const { return fs::exists(mOutput / name); }

  morrow_test::TemporaryFolder mFolder;
  fs::path mRoot = mFolder.path();
  fs::path mBaselines = mRoot / "baselines";
  fs::path mOutput = mRoot / "output" / "deeper";
  fs::path mBaseline = mBaselines / "picture.png";
  Image mImage{40, 30, {10, 20, 30}};
};

TEST_F(BaselineTest, APngFileGivesBackPixelsAndDriver)
{
  mImage.set(39, 29, {1, 2, 3});
  ASSERT_TRUE(morrow_test::write_png(mImage, mBaseline.string()));
  const Image back = morrow_test::read_png(mBaseline.string());
  EXPECT_EQ(back, mImage);
  EXPECT_EQ(back.driver, kDriver);
}

TEST_F(BaselineTest, APictureWithoutDriverIsReadBackWithoutOne)
{
  mImage.driver.clear();
  ASSERT_TRUE(morrow_test::write_png(mImage, mBaseline.string()));
  EXPECT_EQ(morrow_test::read_png(mBaseline.string()).driver, "");
}

TEST_F(BaselineTest, AMissingOrForeignFileReadsAsTheEmptyPicture)
{
  EXPECT_TRUE(morrow_test::read_png(mBaseline.string()).empty());
  EXPECT_TRUE(morrow_test::read_png(mBaselines.string()).empty()); // a folder
  std::ofstream(mBaseline) << "not a picture";
  EXPECT_TRUE(morrow_test::read_png(mBaseline.string()).empty());
}

TEST_F(BaselineTest, WritingReportsWhatCannotBeWritten)
{
  EXPECT_FALSE(morrow_test::write_png(Image(), mBaseline.string()));
  std::ofstream(mRoot / "file") << "in the way of a folder";
  EXPECT_FALSE(morrow_test::write_png(mImage, (mRoot / "file" / "picture.png").string()));
}

TEST_F(BaselineTest, AMissingBaselineFailsAndWritesThePicture)
{
  const auto result = compare_to_baseline(mImage);
  EXPECT_FALSE(result.passed);
  EXPECT_NE(result.report.find(mBaseline.string()), std::string::npos) << result.report;
  const fs::path written = mOutput / "picture.png";
  EXPECT_NE(result.report.find(written.string()), std::string::npos) << result.report;
  EXPECT_EQ(morrow_test::read_png(written.string()), mImage);
  EXPECT_FALSE(fs::exists(mBaseline)); // never made by the test: somebody has to look at it first
}

TEST_F(BaselineTest, TheSamePicturePassesAndWritesNothing)
{
  ASSERT_TRUE(morrow_test::write_png(mImage, mBaseline.string()));
  const auto result = compare_to_baseline(mImage);
  EXPECT_TRUE(result.passed) << result.report;
  EXPECT_FALSE(fs::exists(mOutput));
}

TEST_F(BaselineTest, ADifferenceFailsWithNumbersAndPathsAndPictures)
{
  ASSERT_TRUE(morrow_test::write_png(mImage, mBaseline.string()));
  mImage.set(0, 0, {10, 20, 31});
  const auto result = compare_to_baseline(mImage);
  EXPECT_FALSE(result.passed);
  for (const std::string& part :
       {mBaseline.string(), (mOutput / "picture.png").string(), (mOutput / "picture.difference.png").string(),
        std::string("Exact"), std::string("1 (allowed: 0)")}) {
    EXPECT_NE(result.report.find(part), std::string::npos) << part << " in\n" << result.report;
  }
  EXPECT_TRUE(has_output("picture.png"));
  const Image difference = morrow_test::read_png((mOutput / "picture.difference.png").string());
  EXPECT_EQ(morrow_test::count_pixels(difference, colour_is_not(kBlack)), 1);
  EXPECT_EQ(difference.at(0, 0), (Rgb{0, 0, 255}));
}

TEST_F(BaselineTest, AnotherDriverIsComparedLessStrictly)
{
  ASSERT_TRUE(morrow_test::write_png(mImage, mBaseline.string()));
  mImage.set(0, 0, {10, 20, 31});
  mImage.driver = "softpipe / 3.3 (Core Profile) Mesa 22.3.6";
  EXPECT_TRUE(compare_to_baseline(mImage).passed);
  mImage.fill(0, 0, 5, 5, kWhite);
  EXPECT_FALSE(compare_to_baseline(mImage).passed);
}

TEST_F(BaselineTest, AnotherSizeFails)
{
  ASSERT_TRUE(morrow_test::write_png(mImage, mBaseline.string()));
  Image larger(41, 30);
  larger.driver = kDriver;
  EXPECT_FALSE(compare_to_baseline(larger).passed);
  EXPECT_TRUE(has_output("picture.difference.png"));
}

TEST_F(BaselineTest, TheOneLineCheckFailsTheTest)
{
  EXPECT_NONFATAL_FAILURE(morrow_test::expect_matches_baseline(mImage, "no_such_baseline"),
                          "no_such_baseline.png");
  std::error_code error;
  EXPECT_TRUE(fs::remove(fs::path(morrow_test::picture_output_folder()) / "no_such_baseline.png", error));
}

TEST(StrictnessTest, IsExactForTheSameLlvmpipeOnly)
{
  using morrow_test::strictness_for;
  const std::string narrower = "llvmpipe (LLVM 15.0.6, 128 bits) / 4.5 (Core Profile) Mesa 22.3.6";
  const std::string newer_mesa = "llvmpipe (LLVM 15.0.6, 256 bits) / 4.5 (Core Profile) Mesa 23.1.0";
  const std::string newer_llvm = "llvmpipe (LLVM 16.0.1, 256 bits) / 4.5 (Core Profile) Mesa 22.3.6";
  const std::string card = "Some Card / 4.6.0 Mesa 22.3.6";
  EXPECT_EQ(strictness_for(kDriver, kDriver), Strictness::Exact);
  EXPECT_EQ(strictness_for(narrower, kDriver), Strictness::Exact);
  EXPECT_EQ(strictness_for(newer_mesa, kDriver), Strictness::OtherDriver);
  EXPECT_EQ(strictness_for(newer_llvm, kDriver), Strictness::OtherDriver);
  EXPECT_EQ(strictness_for(card, card), Strictness::OtherDriver); // no promise of identical pictures
  EXPECT_EQ(strictness_for("", ""), Strictness::OtherDriver);
  EXPECT_EQ(strictness_for(kDriver, ""), Strictness::OtherDriver);
}

} // namespace
