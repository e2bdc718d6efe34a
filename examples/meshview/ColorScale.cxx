// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "ColorScale.h"

#include <vtkCellData.h>
#include <vtkDataArray.h>
#include <vtkLookupTable.h>
#include <vtkPointData.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>

#include <algorithm>
#include <set>

namespace {

constexpr double kBlueHue = 0.66;
constexpr double kRedHue = 0.0;
constexpr double kSaturation = 0.85; // full colours would drown the edges and the shading

std::string list_arrays(const std::vector<MeshFile>& files)
{
  std::set<std::string> names;
  for (const MeshFile& file : files) {
    names.insert(file.arrays.begin(), file.arrays.end());
  }
  std::string text;
  for (const std::string& name : names) {
    text += (text.empty() ? "" : ", ") + name;
  }
  return text.empty() ? "there are no arrays" : "there are " + text;
}

vtkSmartPointer<vtkLookupTable> make_table(const ValueRange& range, bool is_vector)
{
  auto table = vtkSmartPointer<vtkLookupTable>::New();
  table->SetHueRange(kBlueHue, kRedHue);
  table->SetSaturationRange(kSaturation, kSaturation);
  table->SetRampToLinear();
  table->SetNanColor(0.6, 0.6, 0.6, 1.0);
  table->SetTableRange(range.low, range.high);
  if (is_vector) {
    table->SetVectorModeToMagnitude();
  }
  table->Build();
  return table;
}

} // namespace

ColorScale::ColorScale(const std::string& array, const std::vector<MeshFile>& files) : mArray(array)
{
  bool is_first = true;
  for (const MeshFile& file : files) {
    for (const MeshBlock& block : file.blocks) {
      if (block.values) {
        mRange.low = is_first ? block.values->low : std::min(mRange.low, block.values->low);
        mRange.high = is_first ? block.values->high : std::max(mRange.high, block.values->high);
        is_first = false;
      }
    }
  }
  if (is_first) {
    throw MeshError("no array '" + array + "' to colour by; " + list_arrays(files));
  }
}

void ColorScale::apply(vtkPolyDataMapper& mapper, vtkPolyData& surface) const
{
  vtkDataArray* on_points = is_empty() ? nullptr : surface.GetPointData()->GetArray(mArray.c_str());
  vtkDataArray* on_cells = is_empty() ? nullptr : surface.GetCellData()->GetArray(mArray.c_str());
  vtkDataArray* values = on_points != nullptr ? on_points : on_cells;
  if (values == nullptr) {
    return;
  }
  mapper.ScalarVisibilityOn();
  mapper.SetColorModeToMapScalars(); // also for bytes, which VTK would take for colours
  mapper.SetInterpolateScalarsBeforeMapping(on_points != nullptr);
  if (on_points != nullptr) {
    mapper.SetScalarModeToUsePointFieldData();
  } else {
    mapper.SetScalarModeToUseCellFieldData();
  }
  mapper.SelectColorArray(mArray.c_str());
  mapper.SetLookupTable(make_table(mRange, values->GetNumberOfComponents() > 1));
  mapper.UseLookupTableScalarRangeOn();
}

std::vector<BrantColor> ColorScale::colors() const
{
  const auto table = make_table(mRange, false);
  std::vector<BrantColor> colors;
  for (vtkIdType i = 0; i < table->GetNumberOfTableValues(); ++i) {
    const unsigned char* rgba = table->GetPointer(i);
    colors.emplace_back(rgba[0], rgba[1], rgba[2], rgba[3]);
  }
  return colors;
}
