// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "QualityCounts.h"

#include <vtkDataArray.h>

#include <algorithm>
#include <cmath>

bool has_quality(const std::vector<MeshFile>& files)
{
  return QualityCounts(files, {0.0, 1.0}, 1).total() > 0;
}

QualityCounts::QualityCounts(const std::vector<MeshFile>& files, const ValueRange& range, int bins)
    : mBins(static_cast<std::size_t>(bins), 0)
{
  for (const MeshFile& file : files) {
    for (const MeshBlock& block : file.blocks) {
      if (block.quality != nullptr) {
        add(*block.quality, range);
      }
    }
  }
}

void QualityCounts::add(vtkDataArray& qualities, const ValueRange& range)
{
  const double width = range.high - range.low;
  const auto last = static_cast<double>(mBins.size()) - 1.0;
  mElements += qualities.GetNumberOfTuples();
  for (vtkIdType i = 0; i < qualities.GetNumberOfTuples(); ++i) {
    const double quality = qualities.GetComponent(i, 0);
    if (std::isfinite(quality)) {
      const double part = width > 0.0 ? (quality - range.low) / width : 0.5; // all alike: in the middle
      const double bin = std::clamp(std::floor(part * static_cast<double>(mBins.size())), 0.0, last);
      ++mBins[static_cast<std::size_t>(bin)];
      ++mTotal;
    }
  }
}

std::string QualityCounts::text() const
{
  const std::string all = std::to_string(mElements) + (mElements == 1 ? " element" : " elements");
  return mTotal == mElements ? all : std::to_string(mTotal) + " of " + all;
}
