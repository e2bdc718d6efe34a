// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "MeshArrays.h"

#include <gtest/gtest.h>

#include <vtkCellArray.h>
#include <vtkCellType.h>
#include <vtkNew.h>
#include <vtkPoints.h>
#include <vtkUnsignedCharArray.h>
#include <vtkUnstructuredGrid.h>

namespace {

using morrow::MeshArrays;

// What is kept between picks stands while the state does.
TEST(MeshArraysTest, TheStateFollowsEachArrayOfAGrid)
{
  vtkNew<vtkPoints> points;
  for (int i = 0; i < 4; ++i) {
    points->InsertNextPoint(i % 2, i / 2, 0.0);
  }
  vtkNew<vtkUnstructuredGrid> grid;
  grid->SetPoints(points);
  const vtkIdType ids[4] = {0, 1, 3, 2};
  grid->InsertNextCell(VTK_QUAD, 4, ids);
  const auto state = [&] { return MeshArrays(*grid).state(); };

  auto before = state();
  EXPECT_EQ(state(), before);
  vtkObject* const arrays[] = {grid->GetCellTypesArray(),
                               points,
                               points->GetData(),
                               grid->GetCells(),
                               grid->GetCells()->GetConnectivityArray(),
                               grid->GetCells()->GetOffsetsArray()};
  for (vtkObject* array : arrays) {
    array->Modified();
    EXPECT_NE(state(), before) << array->GetClassName();
    before = state();
  }
}

} // namespace
