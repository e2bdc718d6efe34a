// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "ColorChart.h"

#include "BrantColorTable.h"
#include "BrantString.h"
#include "Camera.h"
#include "GColorTable.h"
#include "GView.h"
#include "MeshLabels.h"
#include "OptionValues.h"

#include <algorithm>

namespace {

constexpr double kColumn = 0.1; // distances of swatches in the chart
constexpr double kBelowSwatch = 0.0135;

std::size_t longest_name()
{
  std::size_t longest = 1;
  for (int id = 0; id < OptionValues::number_of_colors(); ++id) {
    BrantString name("UNDEFINED");
    BrantColorTable::color_id_to_string(id, name);
    longest = std::max(longest, name.str().size());
  }
  return longest;
}

} // namespace

std::vector<BrantVector> color_chart_corners()
{
  const int rows = (OptionValues::number_of_colors() + 9) / 10;
  const double bottom = 1.0 - kColumn * rows;
  return {BrantVector(0.0, bottom, 0.0), BrantVector(1.03, 1.01, 0.0)};
}

/// Numbers, with the room that fonts leave below digits, fit below the swatches, and names in a column.
void fill_color_chart(GColorTable& chart, const GView& view)
{
  int width = 0;
  int height = 0;
  drawn_size(view, width, height);
  const std::vector<BrantVector> corners = color_chart_corners();
  const BrantVector size = corners[1] - corners[0];
  constexpr double kMargins = 0.92;
  const double pixels = kMargins * std::min(width / size.x(), height / size.y()); // of a length of 1
  constexpr double kWidthOfLetter = 0.56;                                         // of their height
  const double in_column = kColumn / (kWidthOfLetter * static_cast<double>(longest_name()));
  set_chart_label_style(pixels * std::min(kBelowSwatch, in_column), false);
  chart.initialize();
}
