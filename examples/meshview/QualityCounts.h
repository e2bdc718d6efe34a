// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Mesh.h"

/// Does any element have a quality?
[[nodiscard]] bool has_quality(const std::vector<MeshFile>& files);

/// How many elements have which quality.
class QualityCounts
{
public:
  /// Counts those of all blocks in bins of equal width from the range's low to its high end, which is above
  /// it. Elements without quality are counted apart.
  QualityCounts(const std::vector<MeshFile>& files, const ValueRange& range, int bins);

  [[nodiscard]] const std::vector<int>& bins() const noexcept { return mBins; }
  [[nodiscard]] long long total() const noexcept { return mTotal; }       ///< of those in bins
  [[nodiscard]] long long elements() const noexcept { return mElements; } ///< of all

  /// The lowest and the highest quality.
  [[nodiscard]] const ValueRange& found() const noexcept { return mFound; }

  /// "17 elements", or "17 of 20 elements" when some have no quality.
  [[nodiscard]] std::string text() const;

private:
  void add(vtkDataArray& qualities, const ValueRange& range);
  void count(double quality, const ValueRange& range);

  std::vector<int> mBins;
  ValueRange mFound;
  long long mTotal = 0;
  long long mElements = 0;
};
