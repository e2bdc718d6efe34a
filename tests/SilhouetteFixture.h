// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "ViewFixture.h"

#include <vtkCellArray.h>
#include <vtkNew.h>
#include <vtkPoints.h>
#include <vtkUnsignedCharArray.h>

/// What the tests of silhouette mappers share.
namespace morrow_test {

/// A front above and a back below a horizontal line from x0 to x1, seen from +z: that line is the only
/// silhouette.
inline vtkSmartPointer<vtkPolyData> ridge(double x0, double x1, double y, double z = 0.0)
{
  vtkNew<vtkPoints> points;
  points->InsertNextPoint(x0, y, z);
  points->InsertNextPoint(x1, y, z);
  points->InsertNextPoint(x0, y + 0.5, z);
  points->InsertNextPoint(x0, y - 0.5, z);
  vtkNew<vtkCellArray> polys;
  const vtkIdType front[3] = {0, 1, 2};
  const vtkIdType back[3] = {0, 1, 3};
  polys->InsertNextCell(3, front);
  polys->InsertNextCell(3, back);
  auto data = vtkSmartPointer<vtkPolyData>::New();
  data->SetPoints(points);
  data->SetPolys(polys);
  return data;
}

inline vtkSmartPointer<vtkUnsignedCharArray> bytes(const std::vector<unsigned char>& tuple,
                                                   vtkIdType tuples = 1)
{
  auto array = vtkSmartPointer<vtkUnsignedCharArray>::New();
  array->SetNumberOfComponents(static_cast<int>(tuple.size()));
  for (vtkIdType i = 0; i < tuples; ++i) {
    array->InsertNextTypedTuple(tuple.data());
  }
  return array;
}

/// A sphere whose facets are small beside a pixel.
inline vtkSmartPointer<vtkPolyData> ball()
{
  return sphere(0.5, 64);
}

} // namespace morrow_test
