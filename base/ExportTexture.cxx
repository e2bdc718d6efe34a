// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "ExportTexture.h"

#include <vtkImageData.h>
#include <vtkLookupTable.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkScalarsToColors.h>
#include <vtkTexture.h>
#include <vtkUnsignedCharArray.h>

namespace morrow {

namespace {

vtkSmartPointer<vtkUnsignedCharArray> map_to_colors(vtkTexture& texture, vtkDataArray& scalars)
{
  vtkSmartPointer<vtkScalarsToColors> table = texture.GetLookupTable();
  if (table == nullptr) {
    table = vtkSmartPointer<vtkLookupTable>::New();
    table->SetRange(scalars.GetRange());
    table->Build();
  }
  return vtkSmartPointer<vtkUnsignedCharArray>::Take(
      table->MapScalars(&scalars, VTK_COLOR_MODE_MAP_SCALARS, -1));
}

vtkSmartPointer<vtkUnsignedCharArray> pixels_of(vtkTexture& texture, vtkDataArray& scalars)
{
  auto* bytes = vtkUnsignedCharArray::SafeDownCast(&scalars);
  const bool are_colors = bytes != nullptr && texture.GetColorMode() != VTK_COLOR_MODE_MAP_SCALARS;
  return are_colors ? vtkSmartPointer<vtkUnsignedCharArray>(bytes) : map_to_colors(texture, scalars);
}

bool fits(const vtkUnsignedCharArray& pixels, const int* size)
{
  const int components = pixels.GetNumberOfComponents();
  const vtkIdType count = static_cast<vtkIdType>(size[0]) * size[1];
  return size[0] > 0 && size[1] > 0 && size[2] == 1 && components >= 1 && components <= 4 &&
         pixels.GetNumberOfTuples() == count;
}

} // namespace

vtkSmartPointer<vtkTexture> copy_texture_for_export(vtkTexture& texture)
{
  if (texture.GetNumberOfInputConnections(0) == 0) {
    return nullptr;
  }
  texture.GetInputAlgorithm()->Update();
  vtkImageData* image = texture.GetInput();
  vtkDataArray* scalars = image != nullptr ? image->GetPointData()->GetScalars() : nullptr;
  if (scalars == nullptr || scalars->GetNumberOfTuples() == 0) {
    return nullptr;
  }
  const auto pixels = pixels_of(texture, *scalars);
  if (pixels == nullptr || !fits(*pixels, image->GetDimensions())) {
    return nullptr;
  }
  const vtkNew<vtkImageData> flat;
  flat->SetDimensions(image->GetDimensions());
  flat->GetPointData()->SetScalars(pixels);
  auto copy = vtkSmartPointer<vtkTexture>::New();
  copy->SetInputData(flat);
  copy->SetRepeat(texture.GetRepeat());
  copy->SetColorMode(VTK_COLOR_MODE_DEFAULT);
  return copy;
}

} // namespace morrow
