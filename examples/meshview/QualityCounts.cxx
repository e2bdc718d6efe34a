// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "QualityCounts.h"

#include "MeshQuality.h"

#include <vtkDataArray.h>

#include <algorithm>
#include <cmath>

bool has_quality(const std::vector<MeshFile>& files)
{
  return QualityCounts(files, MeshQuality::kRange, 1).total() > 0;
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
  mElements += qualities.GetNumberOfTuples();
  for (vtkIdType i = 0; i < qualities.GetNumberOfTuples(); ++i) {
    const double quality = qualities.GetComponent(i, 0);
    if (std::isfinite(quality)) {
      count(quality, range);
    }
  }
}

void QualityCounts::count(double quality, const ValueRange& range)
{
  const double part = (quality - range.low) / (range.high - range.low);
  const auto size = static_cast<double>(mBins.size());
  ++mBins[static_cast<std::size_t>(std::clamp(std::floor(part * size), 0.0, size - 1.0))];
  mFound.low = mTotal == 0 ? quality : std::min(mFound.low, quality);
  mFound.high = mTotal == 0 ? quality : std::max(mFound.high, quality);
  ++mTotal;
}

std::string QualityCounts::text() const
{
  const std::string all = std::to_string(mElements) + (mElements == 1 ? " element" : " elements");
  return mTotal == mElements ? all : std::to_string(mTotal) + " of " + all;
}
