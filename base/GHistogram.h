// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "GGenericModel.h"
#include "morrow_base_export.h"

/// A bar chart of integer counts in a rectangle of the plane z = 0: two axes, one bar per bin, counts up the
/// vertical axis, the range of values under the horizontal one, and two texts at the top. To be connected to
/// views like any other model.
///
/// Text has the size of all labels: GModel::set_font_size_factor(). Its size is in pixels, so that how large
/// the rectangle must be shown depends on the host.
class MORROW_BASE_EXPORT GHistogram : public GGenericModel
{
public:
  /// An empty chart.
  GHistogram();
  ~GHistogram() override;

  /// Adds a chart and calls update_parts(). What is in the model stays: several charts may stand side by
  /// side.
  ///
  /// counts: nbins counts, one per bin from left to right. colors: nbins colours, of the bars; the one in the
  /// middle, colors[nbins / 2], is also that of axes and text. Both are read during the call only. low and
  /// high: the values at the two ends of the horizontal axis. text1 and text2: UTF-8, one line each.
  ///
  /// With w and h, the width and height of the rectangle, and from its lower left corner: the axes meet at
  /// (0.1 w, 0.1 h) and end at 0.95 w and 0.95 h, the bars take the width from 0.1 w to 0.9 w in equal parts.
  /// Bars are scaled by the sum of all counts, not by the largest: one that holds everything is 0.7125 h
  /// high. The texts begin at (0.5 w, 0.95 h) and (0.5 w, 0.88 h), the numbers of the range at 0.15 w and
  /// 0.88 w. The vertical axis is labelled with 0, the sum, and its quarters as whole numbers, but for those
  /// within the top tenth.
  ///
  /// With nbins below 1 or null counts there are no bars and the sum is 0; null colors are all the default
  /// colour; null texts are left out. Negative counts are summed and drawn as such, below the axis while the
  /// sum is positive. Ends of the range that are not finite are printed as what they are. Nothing is added
  /// when a side of the rectangle is not finite.
  void add_histogram(const int* counts, int nbins, double low, double high, const char* text1,
                     const char* text2, double x_lo, double x_hi, double y_lo, double y_hi,
                     const BrantColor* colors);
};
