// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "BrantColor.h"
#include "Mesh.h"

class vtkPolyData;
class vtkPolyDataMapper;

/// Colours for the values of one array, the same in all parts: from blue for the least value to red for the
/// greatest. Values that are not numbers are grey.
class ColorScale
{
public:
  /// No colours: apply() does nothing.
  ColorScale() = default;

  /// Throws MeshError when no file has the array; the reason lists the arrays that there are.
  ColorScale(const std::string& array, const std::vector<MeshFile>& files);

  /// Makes the mapper colour by the array if the surface has it; otherwise the mapper stays as it is.
  void apply(vtkPolyDataMapper& mapper, vtkPolyData& surface) const;

  [[nodiscard]] bool is_empty() const noexcept { return mArray.empty(); }
  [[nodiscard]] const std::string& array() const noexcept { return mArray; }

  /// The colours from the least to the greatest value, in equal steps.
  [[nodiscard]] std::vector<BrantColor> colors() const;

  [[nodiscard]] const ValueRange& range() const noexcept { return mRange; }

  /// Instead of that of the values.
  void set_range(const ValueRange& range) noexcept { mRange = range; }

private:
  std::string mArray;
  ValueRange mRange;
};
