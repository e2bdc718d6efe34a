// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "GHistogram.h"

#include "DrawingFixture.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <type_traits>

namespace {

using namespace morrow_test;

static_assert(std::is_base_of_v<GGenericModel, GHistogram>);
static_assert(sizeof(GHistogram) == sizeof(GGenericModel), "no fields of its own");

class GHistogramTest : public ViewTest
{
protected:
  using Colors = std::vector<BrantColor>;

  /// A chart in the rectangle (10, 100) to (30, 500): w is 20 and h is 400.
  void add(const std::vector<int>& counts, const Colors& colors, const char* text1 = nullptr,
           const char* text2 = nullptr)
  {
    mChart.add_histogram(counts.data(), static_cast<int>(counts.size()), 0.25, 1234.5, text1, text2, 10.0,
                         30.0, 100.0, 500.0, colors.data());
  }

  [[nodiscard]] Lines bars() { return cells_in(mChart, 2, 2); }

  /// The count labels alone, which stand at x = 11.
  [[nodiscard]] Lines count_labels()
  {
    Lines found;
    for (const std::string& label : mReader.labels_in(mChart)) {
      if (label.find(" (11 ") != std::string::npos) {
        found.push_back(label.substr(0, label.find(") ") + 1));
      }
    }
    return found;
  }

  LabelReader mReader; // before the chart, whose labels it reads
  GHistogram mChart;
};

const std::vector<BrantColor> kFour = {BRANT_RED, BRANT_GREEN, BRANT_BLUE, BRANT_YELLOW};

TEST_F(GHistogramTest, TwoAxesMeetAtTheOriginInTheColourOfTheMiddleBin)
{
  add({1, 2, 3, 4}, kFour);
  EXPECT_EQ(cells_in(mChart, 1, 1),
            (Lines{"1 line (29 140 0) (12 140 0) #0000ff", "1 line (12 480 0) (12 140 0) #0000ff"}));
  EXPECT_EQ(cells_in(mChart).size(), 6U);
}

// 0.7125 · 400 = 285 is the height of everything, 28.5 that of one of ten; bins are 0.8 · 20 / 4 = 4 wide.
TEST_F(GHistogramTest, BarsAreScaledByTheSumOfAllCounts)
{
  add({1, 2, 3, 4}, kFour);
  EXPECT_EQ(bars(), (Lines{"2 polygon (12 140 0) (12 168.5 0) (16 168.5 0) (16 140 0) #ff0000",
                           "2 polygon (16 140 0) (16 197 0) (20 197 0) (20 140 0) #00ff00",
                           "2 polygon (20 140 0) (20 225.5 0) (24 225.5 0) (24 140 0) #0000ff",
                           "2 polygon (24 140 0) (24 254 0) (28 254 0) (28 140 0) #ffff00"}));
}

TEST_F(GHistogramTest, TextsCountsAndRangeAreLabelsInTheColourOfTheMiddleBin)
{
  add({1, 2, 3, 4}, kFour, "first", "second");
  const Lines labels = mReader.labels_in(mChart);
  ASSERT_EQ(labels.size(), 10U);
  EXPECT_EQ(labels[0], "first (20 480 0) #0000ff");
  EXPECT_EQ(labels[1], "second (20 452 0) #0000ff");
  EXPECT_EQ(labels[2], "0 (11 144 0) #0000ff"); // 0.01 · h above the origin
  EXPECT_EQ(labels[3], "2 (11 197 0) #0000ff");
  EXPECT_EQ(labels[4], "4 (11 254 0) #0000ff");
  EXPECT_EQ(labels[5], "6 (11 311 0) #0000ff");
  EXPECT_EQ(labels[6], "8 (11 368 0) #0000ff");
  EXPECT_EQ(labels[7], "10 (11 425 0) #0000ff");
  EXPECT_EQ(labels[8].substr(0, 12), "2.5e-01 (13 ");   // 0.15 · w
  EXPECT_EQ(labels[9].substr(0, 14), "1.2e+03 (27.6 "); // 0.88 · w
  for (const std::string& label : {labels[8], labels[9]}) {
    const double y = std::stod(label.substr(label.find(' ', label.find('(')) + 1));
    EXPECT_GT(y, 100.0); // between the rectangle's edge and the axis
    EXPECT_LT(y, 140.0);
  }
}

TEST_F(GHistogramTest, OneBinThatHoldsEverythingIsAsHighAsTheScale)
{
  add({0, 7}, {BRANT_RED, BRANT_GREEN});
  EXPECT_EQ(bars(), (Lines{"2 polygon (12 140 0) (12 140 0) (20 140 0) (20 140 0) #ff0000",
                           "2 polygon (20 140 0) (20 425 0) (28 425 0) (28 140 0) #00ff00"}));
}

TEST_F(GHistogramTest, ThreeIsLabelledWithEachCount)
{
  add({1, 0, 2}, {BRANT_RED, BRANT_GREEN, BRANT_BLUE});
  EXPECT_EQ(count_labels(), (Lines{"0 (11 144 0)", "1 (11 235 0)", "2 (11 330 0)", "3 (11 425 0)"}));
}

TEST_F(GHistogramTest, CountsOfZeroAreFlatBarsAndTheLabelZero)
{
  add({0, 0}, {BRANT_RED, BRANT_GREEN});
  EXPECT_EQ(bars(), (Lines{"2 polygon (12 140 0) (12 140 0) (20 140 0) (20 140 0) #ff0000",
                           "2 polygon (20 140 0) (20 140 0) (28 140 0) (28 140 0) #00ff00"}));
  EXPECT_EQ(count_labels(), Lines{"0 (11 144 0)"});
}

TEST_F(GHistogramTest, TheChartColourFollowsTheMiddleBin)
{
  add({1, 1, 1}, {BRANT_RED, BRANT_CYAN, BRANT_BLUE});
  EXPECT_EQ(cells_in(mChart, 1, 1).at(0), "1 line (29 140 0) (12 140 0) #00ffff");
  EXPECT_NE(mReader.labels_in(mChart).at(0).find("#00ffff"), std::string::npos);
}

TEST_F(GHistogramTest, WithoutBinsThereAreAxesTextsAndTheRange)
{
  const int counts[1] = {5};
  const BrantColor colors[1] = {BRANT_RED};
  for (const int nbins : {0, -1, INT_MIN}) {
    GHistogram chart;
    chart.add_histogram(counts, nbins, 0.0, 1.0, "one", "two", 0.0, 1.0, 0.0, 1.0, colors);
    EXPECT_EQ(cells_in(chart),
              (Lines{"1 line (0.95 0.1 0) (0.1 0.1 0) #000000", "1 line (0.1 0.95 0) (0.1 0.1 0) #000000"}))
        << nbins;
    EXPECT_EQ(mReader.labels_in(chart).size(), 5U) << nbins;
  }
}

TEST_F(GHistogramTest, NullArraysAndTextsAreNone)
{
  const int counts[2] = {1, 3};
  const BrantColor colors[2] = {BRANT_RED, BRANT_GREEN};
  GHistogram without_counts;
  without_counts.add_histogram(nullptr, 2, 0.0, 1.0, nullptr, nullptr, 0.0, 1.0, 0.0, 1.0, colors);
  EXPECT_TRUE(cells_in(without_counts, 2, 2).empty());
  EXPECT_EQ(cells_in(without_counts, 1, 1).at(0), "1 line (0.95 0.1 0) (0.1 0.1 0) #00ff00");
  EXPECT_EQ(mReader.labels_in(without_counts).size(), 3U); // 0 and the range

  GHistogram without_colors;
  without_colors.add_histogram(counts, 2, 0.0, 1.0, nullptr, "", 0.0, 1.0, 0.0, 1.0, nullptr);
  EXPECT_EQ(cells_in(without_colors, 2, 2).size(), 2U);
  EXPECT_EQ(cells_in(without_colors, 1, 1).at(0), "1 line (0.95 0.1 0) (0.1 0.1 0) #000000");
}

TEST_F(GHistogramTest, SumsBeyond32BitsAreLabelledAndScaledAsWhatTheyAre)
{
  add({INT_MAX, INT_MAX, INT_MAX, INT_MAX}, kFour);
  EXPECT_EQ(bars().at(3), "2 polygon (24 140 0) (24 211.25 0) (28 211.25 0) (28 140 0) #ffff00"); // 285 / 4
  EXPECT_EQ(count_labels(), (Lines{"0 (11 144 0)", "2147483647 (11 211.25 0)", "4294967294 (11 282.5 0)",
                                   "6442450941 (11 353.75 0)", "8589934588 (11 425 0)"}));
}

TEST_F(GHistogramTest, NegativeCountsAreSummedAndDrawnBelowTheAxis)
{
  add({-1, 3}, {BRANT_RED, BRANT_GREEN});
  EXPECT_EQ(bars().at(0), "2 polygon (12 140 0) (12 -2.5 0) (20 -2.5 0) (20 140 0) #ff0000");
  EXPECT_EQ(count_labels(), (Lines{"0 (11 144 0)", "1 (11 282.5 0)", "2 (11 425 0)"}));
  mChart.clear();
  add({-5, 1}, {BRANT_RED, BRANT_GREEN}); // no ticks, and the loop for them ends
  EXPECT_EQ(count_labels(), Lines{"0 (11 144 0)"});
}

TEST_F(GHistogramTest, ARangeWithoutNumbersIsPrintedAsSuch)
{
  const int count = 1;
  const BrantColor color = BRANT_RED;
  mChart.add_histogram(&count, 1, kNan, kInfinity, nullptr, nullptr, 0.0, 1.0, 0.0, 1.0, &color);
  const Lines labels = mReader.labels_in(mChart);
  ASSERT_EQ(labels.size(), 4U);
  EXPECT_NE(labels[2].find("nan (0.15 "), std::string::npos);
  EXPECT_EQ(labels[3].substr(0, 10), "inf (0.88 ");
}

TEST_F(GHistogramTest, ARectangleThatIsNotFiniteAddsNothing)
{
  const int count = 1;
  const BrantColor color = BRANT_RED;
  const double rectangles[][4] = {{kNan, 1.0, 0.0, 1.0},      {0.0, kNan, 0.0, 1.0},
                                  {0.0, 1.0, kInfinity, 1.0}, {0.0, 1.0, 0.0, -kInfinity},
                                  {-1e308, 1e308, 0, 1},      {0, 1, -1e308, 1e308}};
  for (const auto& r : rectangles) {
    mChart.add_histogram(&count, 1, 0.0, 1.0, "one", "two", r[0], r[1], r[2], r[3], &color);
  }
  EXPECT_TRUE(cells_in(mChart).empty());
  EXPECT_TRUE(mReader.labels_in(mChart).empty());
}

TEST_F(GHistogramTest, AnInvertedOrEmptyRectangleIsDrawnAsItIs)
{
  const int count = 2;
  const BrantColor color = BRANT_RED;
  mChart.add_histogram(&count, 1, 0.0, 1.0, nullptr, nullptr, 1.0, 0.0, 0.0, 0.0, &color);
  EXPECT_EQ(bars(), Lines{"2 polygon (0.9 0 0) (0.9 0 0) (0.1 0 0) (0.1 0 0) #ff0000"});
}

TEST_F(GHistogramTest, ChartsAddUpAndEachBringsThePartsUpToDateOnceAtItsEnd)
{
  Counting<GHistogram> chart;
  const int counts[2] = {1, 2};
  const BrantColor colors[2] = {BRANT_RED, BRANT_GREEN};
  chart.add_histogram(counts, 2, 0.0, 1.0, "a", "b", 0.0, 1.0, 0.0, 1.0, colors);
  EXPECT_EQ(chart.updates, 1);
  EXPECT_EQ(chart.cells_at_update, 4U);
  chart.add_histogram(counts, 2, 0.0, 1.0, "a", "b", 2.0, 3.0, 0.0, 1.0, colors);
  EXPECT_EQ(chart.updates, 2);
  EXPECT_EQ(chart.cells_at_update, 8U);
  chart.add_histogram(nullptr, 0, 0.0, 1.0, "a", "b", kNan, 3.0, 0.0, 1.0, nullptr);
  EXPECT_EQ(chart.updates, 3); // also when there is nothing to add
}

class GHistogramRenderTest : public ViewRenderTest
{};

TEST_F(GHistogramRenderTest, AViewShowsTheBarsInTheirHeights)
{
  const auto view = make_view(200, 200);
  vtkCamera* camera = view->get_renderer()->GetActiveCamera();
  camera->SetPosition(0.5, 0.5, 10.0); // the unit square fills the window
  camera->SetFocalPoint(0.5, 0.5, 0.0);
  camera->SetParallelScale(0.5);
  GModelSet set;
  GHistogram chart;
  const int counts[3] = {1, 0, 3};
  const BrantColor colors[3] = {BRANT_GREEN, BRANT_WHITE, BRANT_RED};
  chart.add_histogram(counts, 3, 0.0, 1.0, nullptr, nullptr, 0.0, 1.0, 0.0, 1.0, colors);
  set.add_model(&chart);
  view->set_model_set(&set);
  const Image image = picture(*view);
  const auto green = find_pixels(image, [](Rgb pixel) { return pixel.g > 60 && pixel.r < 20; });
  const auto red = find_pixels(image, [](Rgb pixel) { return pixel.r > 60 && pixel.g < 20; });
  EXPECT_NEAR(green.height(), 0.7125 * 200 / 4, 2.0);
  EXPECT_NEAR(red.height(), 0.7125 * 200 * 3 / 4, 2.0);
  EXPECT_NEAR(red.width(), 0.8 * 200 / 3, 2.0);
  EXPECT_NEAR(red.min_x, 0.1 * 200 + 2 * 0.8 * 200 / 3, 2.0);
  view->set_model_set(nullptr);
}

} // namespace
