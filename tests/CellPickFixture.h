// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "MultiCellPicker.h"
#include "PickBounds.h"
#include "TestSupport.h"
#include "ViewFixture.h"

#include <gtest/gtest.h>

#include <vtkActor.h>
#include <vtkAssembly.h>
#include <vtkCallbackCommand.h>
#include <vtkCamera.h>
#include <vtkCellArray.h>
#include <vtkCommand.h>
#include <vtkDataSetMapper.h>
#include <vtkDoubleArray.h>
#include <vtkFieldData.h>
#include <vtkIdTypeArray.h>
#include <vtkImageData.h>
#include <vtkLODProp3D.h>
#include <vtkMatrix4x4.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>
#include <vtkProp3DCollection.h>
#include <vtkProperty.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkSmartPointer.h>
#include <vtkTransform.h>
#include <vtkUnstructuredGrid.h>
#include <vtkVolume.h>

#include <limits>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

/// What the tests of MultiCellPicker share.
namespace morrow_test {

/// A window of 100 x 100 pixels, never shown, that looks along -z onto the square from (-1, -1) to (1, 1): a
/// world unit is 50 pixels, and the origin in the middle. Its tolerance of 0.01 is 0.0283 units.
class MultiCellPickerTest : public ::testing::Test
{
protected:
  MultiCellPickerTest()
  {
    mWindow->SetSize(100, 100);
    mWindow->AddRenderer(mRenderer);
    vtkCamera* camera = mRenderer->GetActiveCamera();
    camera->ParallelProjectionOn();
    camera->SetParallelScale(1.0);
    camera->SetPosition(0.0, 0.0, 10.0);
    camera->SetClippingRange(1.0, 20.0);
  }
  void TearDown() override
  {
    MultiCellPicker::mSelectVisibleOnly = false;
    MultiCellPicker::mBoxPickAcceptPartialCells = false;
  }

  vtkSmartPointer<vtkActor> show(vtkPolyData* data)
  {
    vtkSmartPointer<vtkActor> actor = flat_actor(data, kRed);
    mRenderer->AddActor(actor);
    return actor;
  }

  int pick_box(double x0, double y0, double x1, double y1)
  {
    double corners[4] = {x0, y0, x1, y1};
    PickBox box;
    box.set_box(corners);
    return mPicker->PickByBounds(&box, mRenderer);
  }
  int pick_all() { return pick_box(-10, -10, 110, 110); }

  [[nodiscard]] const std::vector<MultiCellPicker::CellPick*>& picks() const
  {
    return mPicker->get_cell_picks();
  }
  /// The ids of the cells of the only record.
  [[nodiscard]] std::vector<int> cells() const
  {
    EXPECT_EQ(1U, picks().size());
    std::vector<int> ids;
    for (const auto& cell :
         picks().empty() ? std::vector<MultiCellPicker::SubCellPick>() : picks()[0]->SubPicks) {
      ids.push_back(cell.CellId);
    }
    return ids;
  }

  vtkNew<vtkRenderWindow> mWindow;
  vtkNew<vtkRenderer> mRenderer;
  vtkNew<MultiCellPicker> mPicker;
};

/// Two unit triangles side by side: cell 0 covers x from -0.8 to -0.2, cell 1 from 0.2 to 0.8.
inline vtkSmartPointer<vtkPolyData> two_triangles()
{
  vtkNew<vtkPoints> points;
  for (const double x : {-0.8, 0.2}) {
    points->InsertNextPoint(x, -0.3, 0.0);
    points->InsertNextPoint(x + 0.6, -0.3, 0.0);
    points->InsertNextPoint(x + 0.3, 0.3, 0.0);
  }
  vtkNew<vtkCellArray> polys;
  polys->InsertNextCell({0, 1, 2});
  polys->InsertNextCell({3, 4, 5});
  auto data = vtkSmartPointer<vtkPolyData>::New();
  data->SetPoints(points);
  data->SetPolys(polys);
  return data;
}

inline void give_pointers(vtkDataSet* data)
{
  vtkNew<vtkIdTypeArray> pointers;
  pointers->SetName("Pointers");
  data->GetFieldData()->AddArray(pointers);
}

} // namespace morrow_test
