// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "RubberBand.h"

#include <GView.h>

#include <vtkActor2D.h>
#include <vtkCellArray.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper2D.h>
#include <vtkProperty2D.h>
#include <vtkRenderer.h>

RubberBand::RubberBand(GView& view) : mView(view)
{
  vtkNew<vtkPolyDataMapper2D> mapper;
  mapper->SetInputData(mLine);
  mLine->SetPoints(mPoints);
  mActor->SetMapper(mapper);
  mActor->GetProperty()->SetLineWidth(2.0F);
}

RubberBand::~RubberBand()
{
  hide();
}

void RubberBand::show(const std::vector<std::array<double, 2>>& corners, bool is_for_touched)
{
  mPoints->Reset();
  vtkNew<vtkCellArray> lines;
  lines->InsertNextCell(static_cast<int>(corners.size()) + 1);
  for (const auto& corner : corners) {
    lines->InsertCellPoint(mPoints->InsertNextPoint(corner[0], corner[1], 0.0));
  }
  lines->InsertCellPoint(0);
  mLine->SetLines(lines);
  mPoints->Modified();
  mActor->GetProperty()->SetColor(is_for_touched ? 0.0 : 0.05, is_for_touched ? 0.5 : 0.2,
                                  is_for_touched ? 0.15 : 0.8);
  mView.get_overlay_renderer()->AddViewProp(mActor);
  mView.enable_overlay();
}

void RubberBand::hide()
{
  mView.get_overlay_renderer()->RemoveViewProp(mActor);
  mView.disable_overlay();
}
