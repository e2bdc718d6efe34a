// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "ExportTexture.h"

#include "ViewFixture.h"

#include <vtkImageData.h>
#include <vtkLookupTable.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkTexture.h>
#include <vtkUnsignedCharArray.h>

namespace {

using namespace morrow_test;
using morrow::copy_texture_for_export;

vtkSmartPointer<vtkImageData> picture(int width, int height, int depth, int type, int components)
{
  auto image = vtkSmartPointer<vtkImageData>::New();
  image->SetDimensions(width, height, depth);
  image->AllocateScalars(type, components);
  image->GetPointData()->GetScalars()->Fill(7.0);
  return image;
}

vtkSmartPointer<vtkTexture> texture_of(vtkImageData* image)
{
  auto texture = vtkSmartPointer<vtkTexture>::New();
  texture->SetInputData(image);
  return texture;
}

TEST(ExportTextureTest, KeepsPicturesOfBytes)
{
  for (const int components : {1, 2, 3, 4}) {
    const auto texture = texture_of(picture(3, 2, 1, VTK_UNSIGNED_CHAR, components));
    texture->RepeatOff();
    const auto copy = copy_texture_for_export(*texture);
    ASSERT_NE(copy, nullptr);
    EXPECT_NE(copy, texture);
    EXPECT_EQ(copy->GetRepeat(), 0);
    vtkDataArray* pixels = copy->GetInput()->GetPointData()->GetScalars();
    EXPECT_EQ(copy->GetInput()->GetDimensions()[0], 3);
    EXPECT_EQ(copy->GetInput()->GetDimensions()[1], 2);
    EXPECT_EQ(pixels->GetDataType(), VTK_UNSIGNED_CHAR);
    EXPECT_EQ(pixels->GetNumberOfComponents(), components);
    EXPECT_EQ(pixels->GetComponent(5, 0), 7.0);
  }
}

TEST(ExportTextureTest, MapsOtherScalarsToColours)
{
  const auto image = picture(2, 1, 1, VTK_DOUBLE, 1);
  image->GetPointData()->GetScalars()->SetComponent(1, 0, 8.0);
  const auto texture = texture_of(image);
  const vtkNew<vtkLookupTable> table;
  table->SetNumberOfTableValues(2);
  table->SetTableValue(0, 1.0, 0.0, 0.0);
  table->SetTableValue(1, 0.0, 0.0, 1.0);
  table->SetRange(7.0, 8.0);
  texture->SetLookupTable(table);
  const auto copy = copy_texture_for_export(*texture);
  vtkDataArray* pixels = copy->GetInput()->GetPointData()->GetScalars();
  EXPECT_EQ(pixels->GetDataType(), VTK_UNSIGNED_CHAR);
  EXPECT_EQ(pixels->GetComponent(0, 0), 255.0);
  EXPECT_EQ(pixels->GetComponent(1, 2), 255.0);
}

TEST(ExportTextureTest, MapsBytesThatAreToBeMapped)
{
  const auto texture = texture_of(picture(2, 2, 1, VTK_UNSIGNED_CHAR, 1));
  texture->SetColorMode(VTK_COLOR_MODE_MAP_SCALARS);
  const auto copy = copy_texture_for_export(*texture);
  vtkDataArray* pixels = copy->GetInput()->GetPointData()->GetScalars();
  EXPECT_GE(pixels->GetNumberOfComponents(), 3);
  EXPECT_EQ(texture->GetLookupTable(), nullptr); // the original has not changed
}

TEST(ExportTextureTest, RefusesWhatIsNoPicture)
{
  EXPECT_EQ(copy_texture_for_export(*vtkNew<vtkTexture>()), nullptr);
  EXPECT_EQ(copy_texture_for_export(*texture_of(vtkNew<vtkImageData>())), nullptr);
  EXPECT_EQ(copy_texture_for_export(*texture_of(picture(2, 2, 2, VTK_UNSIGNED_CHAR, 3))), nullptr);
  EXPECT_EQ(copy_texture_for_export(*texture_of(picture(2, 2, 1, VTK_UNSIGNED_CHAR, 5))), nullptr);
  const auto short_of_pixels = picture(2, 2, 1, VTK_UNSIGNED_CHAR, 3);
  short_of_pixels->GetPointData()->GetScalars()->SetNumberOfTuples(3);
  EXPECT_EQ(copy_texture_for_export(*texture_of(short_of_pixels)), nullptr);
}

} // namespace
