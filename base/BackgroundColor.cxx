// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "BackgroundColor.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "BrantColorTable.h"

namespace morrow {

namespace {

constexpr double LightBackground = 0.6; // mean of the channels above which a background is light
constexpr int DarkLabels = 0;           // black
constexpr int LightLabels = 9;          // white

} // namespace

void look_up_color(int id, double* rgb)
{
  const BrantColor color = BrantColorTable::lookup_color(id);
  rgb[0] = color.red() / 255.0;
  rgb[1] = color.green() / 255.0;
  rgb[2] = color.blue() / 255.0;
}

int label_color_id(int background, int background2)
{
  double channels[6];
  look_up_color(background, channels);
  look_up_color(background2, channels + 3);
  const double mean = std::accumulate(channels, channels + 6, 0.0) / 6.0;
  return mean > LightBackground ? DarkLabels : LightLabels;
}

bool is_color(const double* rgb)
{
  return rgb != nullptr && std::all_of(rgb, rgb + 3, [](double channel) { return std::isfinite(channel); });
}

} // namespace morrow
