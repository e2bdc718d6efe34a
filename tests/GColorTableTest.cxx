// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "GColorTable.h"

#include "DrawingFixture.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace {

using namespace morrow_test;

static_assert(std::is_base_of_v<GGenericModel, GColorTable>);
static_assert(sizeof(GColorTable) == sizeof(GGenericModel), "no fields of its own");

class GColorTableTest : public ViewTest
{
protected:
  LabelReader mReader; // before the charts, whose labels it reads
};

// The second colour is grey, at column 1 of the top row; each number is a corner of its square plus an inset.
TEST_F(GColorTableTest, ASwatchIsFilledThenOutlinedAndHasNumberAndName)
{
  GColorTable chart;
  chart.initialize();
  const std::string corners = "(0.12 0.92 0) (0.18 0.92 0) (0.18 0.98 0) (0.12 0.98 0)";
  EXPECT_EQ(cells_in(chart, 2, 2).at(1), "2 polygon " + corners + " #7f7f7f");
  EXPECT_EQ(cells_in(chart, 1, 2).at(1), "1 polygon " + corners + " #000000");
  const Lines labels = mReader.labels_in(chart);
  EXPECT_EQ(labels.at(2), "1 (0.145 0.905 0) #000000");
  EXPECT_EQ(labels.at(3), "grey (0.12 0.985 0) #000000");
}

TEST_F(GColorTableTest, FixedAndVariableColoursFillRowsOfTenFromTheTopLeft)
{
  for (int i = 17; i < 25; ++i) {
    BrantColorTable::add_color(i == 20 ? "twenty" : nullptr, BrantColor(i, 2 * i, 3 * i));
  }
  GColorTable chart;
  chart.initialize();
  const Lines swatches = cells_in(chart, 2, 2);
  ASSERT_EQ(swatches.size(), 25U);
  EXPECT_EQ(cells_in(chart).size(), 50U);
  EXPECT_EQ(swatches[0], "2 polygon (0.02 0.92 0) (0.08 0.92 0) (0.08 0.98 0) (0.02 0.98 0) #000000");
  EXPECT_EQ(swatches[9], "2 polygon (0.92 0.92 0) (0.98 0.92 0) (0.98 0.98 0) (0.92 0.98 0) #ffffff");
  EXPECT_EQ(swatches[10], "2 polygon (0.02 0.82 0) (0.08 0.82 0) (0.08 0.88 0) (0.02 0.88 0) #a52a2a");
  EXPECT_EQ(swatches[20], "2 polygon (0.02 0.72 0) (0.08 0.72 0) (0.08 0.78 0) (0.02 0.78 0) #14283c");
  EXPECT_EQ(swatches[24], "2 polygon (0.42 0.72 0) (0.48 0.72 0) (0.48 0.78 0) (0.42 0.78 0) #183048");
  const Lines labels = mReader.labels_in(chart);
  ASSERT_EQ(labels.size(), 50U);
  EXPECT_EQ(labels[39], "UNDEFINED (0.92 0.885 0) #000000");
  EXPECT_EQ(labels[40], "20 (0.045 0.705 0) #000000");
  EXPECT_EQ(labels[41], "twenty (0.02 0.785 0) #000000");
}

TEST_F(GColorTableTest, IdsFromAHundredOnAreBelowTheUnitSquare)
{
  while (BrantColorTable::num_fixed_colors() + BrantColorTable::num_variable_colors() < 112) {
    BrantColorTable::add_color("more", BRANT_RED);
  }
  GColorTable chart;
  chart.initialize();
  const Lines swatches = cells_in(chart, 2, 2);
  EXPECT_EQ(swatches.at(99), "2 polygon (0.92 0.02 0) (0.98 0.02 0) (0.98 0.08 0) (0.92 0.08 0) #ff0000");
  EXPECT_EQ(swatches.at(111),
            "2 polygon (0.12 -0.18 0) (0.18 -0.18 0) (0.18 -0.12 0) (0.12 -0.12 0) #ff0000");
}

TEST_F(GColorTableTest, InitializingAgainAddsEverythingOnceMore)
{
  GColorTable chart;
  EXPECT_TRUE(cells_in(chart).empty());
  chart.initialize();
  const Lines once = cells_in(chart, 2, 2);
  chart.initialize();
  Lines twice = once;
  twice.insert(twice.end(), once.begin(), once.end());
  EXPECT_EQ(cells_in(chart, 2, 2), twice);
  EXPECT_EQ(mReader.labels_in(chart).size(), 4 * once.size());
  chart.clear();
  chart.initialize();
  EXPECT_EQ(cells_in(chart, 2, 2), once);
}

TEST_F(GColorTableTest, PartsAreBroughtUpToDateOnceAtTheEnd)
{
  Counting<GColorTable> chart;
  chart.initialize();
  EXPECT_EQ(chart.updates, 1);
  EXPECT_EQ(chart.cells_at_update, 2U * 17U);
}

/// Shows a chart in a window.
class GColorTableRenderTest : public ViewRenderTest
{};

TEST_F(GColorTableRenderTest, AViewShowsTheSwatchesInTheirPlaces)
{
  const auto view = make_view(200, 200);
  view->set_background(9);
  view->set_background2(9);
  vtkCamera* camera = view->get_renderer()->GetActiveCamera();
  camera->SetPosition(0.5, 0.5, 10.0); // the unit square fills the window
  camera->SetFocalPoint(0.5, 0.5, 0.0);
  camera->SetParallelScale(0.5);
  GModelSet set;
  GColorTable chart;
  chart.initialize();
  set.add_model(&chart);
  view->set_model_set(&set);
  const Image image = picture(*view);
  // Red is the third id: columns 60 to 80, rows 180 to 200 from the bottom. Light may darken it.
  const PixelRegion red =
      find_pixels(image, [](Rgb pixel) { return pixel.r > 90 && pixel.g == 0 && pixel.b == 0; });
  EXPECT_GT(red.count, 80);
  EXPECT_NEAR(red.centre_x, 70.0, 1.5);
  EXPECT_NEAR(red.centre_y, 190.0, 1.5);
  view->set_model_set(nullptr);
}

} // namespace
