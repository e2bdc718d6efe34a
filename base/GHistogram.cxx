// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "GHistogram.h"

#include <cmath>
#include <string>

#include "BrantString.h"
#include "BrantVector.h"
#include "ChartNumbers.h"
#include "MRUtil.h"

namespace {

constexpr double RangeLabelHeight = 0.05; // of the rectangle; the axis is at 0.1

/// Bins without the cases that a host may hand over by mistake.
struct Bins
{
  Bins(const int* given_counts, int n, const BrantColor* given_colors)
      : counts(given_counts), colors(given_colors), count(given_counts != nullptr && n > 0 ? n : 0),
        total(morrow::total_of(given_counts, n)),
        middle(given_colors != nullptr && n > 0 ? given_colors[n / 2] : BRANT_DEFAULT_COLOR)
  {}

  [[nodiscard]] BrantColor color(int bin) const
  {
    return colors != nullptr ? colors[bin] : BRANT_DEFAULT_COLOR;
  }

  const int* counts;
  const BrantColor* colors;
  int count;
  long long total;
  BrantColor middle;
};

/// Adds the parts of one chart to a model.
class Chart
{
public:
  Chart(GGenericModel& model, const Bins& bins, double x_lo, double x_hi, double y_lo, double y_hi)
      : mModel(model), mBins(bins), mLeft(x_lo), mBottom(y_lo), mTop(y_hi), mWidth(x_hi - x_lo),
        mHeight(y_hi - y_lo), mOrigin(at(0.1, 0.1)), mUnit((y(0.85) - mOrigin.y()) * 0.95)
  {
    if (bins.total != 0) {
      mUnit /= static_cast<double>(bins.total);
    }
  }

  [[nodiscard]] bool is_finite() const
  {
    return std::isfinite(mLeft) && std::isfinite(mBottom) && std::isfinite(mWidth) && std::isfinite(mHeight);
  }

  void add_axes()
  {
    mModel.add_line(at(0.95, 0.1), mOrigin, mBins.middle);
    mModel.add_line(at(0.1, 0.95), mOrigin, mBins.middle);
  }

  void add_texts(const char* text1, const char* text2)
  {
    add_label(text1, BrantVector(x(0.5), mTop - 0.05 * mHeight, 0.0));
    add_label(text2, BrantVector(x(0.5), mTop - 0.12 * mHeight, 0.0));
  }

  void add_count_labels()
  {
    for (const long long count : morrow::count_ticks(mBins.total)) {
      // The lowest one keeps clear of the horizontal axis.
      const double up = count == 0 ? 0.01 * mHeight : static_cast<double>(count) * mUnit;
      add_label(std::to_string(count).c_str(), BrantVector(x(0.05), mOrigin.y() + up, 0.0));
    }
  }

  void add_range_labels(double low, double high)
  {
    add_label(BrantString::format("%.1e", low).c_str(), at(0.15, RangeLabelHeight));
    add_label(BrantString::format("%.1e", high).c_str(), at(0.88, RangeLabelHeight));
  }

  void add_bars()
  {
    const double width = mBins.count > 0 ? (x(0.9) - mOrigin.x()) / mBins.count : 0.0;
    for (int i = 0; i < mBins.count; ++i) {
      const double left = mOrigin.x() + i * width;
      const double top = mOrigin.y() + mBins.counts[i] * mUnit;
      const BrantVector corners[4] = {{left, mOrigin.y(), 0.0},
                                      {left, top, 0.0},
                                      {left + width, top, 0.0},
                                      {left + width, mOrigin.y(), 0.0}};
      mModel.add_quad(corners, mBins.color(i), MRUtil::DRAW_FILLED);
    }
  }

private:
  [[nodiscard]] double x(double part) const { return mLeft + part * mWidth; }
  [[nodiscard]] double y(double part) const { return mBottom + part * mHeight; }
  [[nodiscard]] BrantVector at(double right, double up) const { return BrantVector(x(right), y(up), 0.0); }

  void add_label(const char* text, const BrantVector& position)
  {
    if (text != nullptr) {
      mModel.add_label(text, position, mBins.middle);
    }
  }

  GGenericModel& mModel;
  const Bins& mBins;
  double mLeft;
  double mBottom;
  double mTop;
  double mWidth;
  double mHeight;
  BrantVector mOrigin;
  double mUnit; // the height of a count of 1
};

} // namespace

GHistogram::GHistogram() = default;

GHistogram::~GHistogram() = default;

void GHistogram::add_histogram(const int* counts, int nbins, double low, double high, const char* text1,
                               const char* text2, double x_lo, double x_hi, double y_lo, double y_hi,
                               const BrantColor* colors)
{
  const Bins bins(counts, nbins, colors);
  Chart chart(*this, bins, x_lo, x_hi, y_lo, y_hi);
  if (chart.is_finite()) {
    chart.add_axes();
    chart.add_texts(text1, text2);
    chart.add_count_labels();
    chart.add_range_labels(low, high);
    chart.add_bars();
  }
  this->update_parts();
}
