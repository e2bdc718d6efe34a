// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <vtkCell.h>
#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkCellType.h>
#include <vtkEdgeTable.h>
#include <vtkGenericCell.h>
#include <vtkIdList.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPointSet.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>

#include <functional>

/// Edge extraction as one would write it down first, with VTK's edge table and one cell at a time: what
/// GExtractEdges must agree with, tuple for tuple, and what its speed is measured against.
namespace morrow_test {

class LiteralExtractEdges
{
public:
  using Progress = std::function<bool(double)>; ///< true when the run is to stop

  static void run(
      vtkPointSet* input, vtkPolyData* output, const Progress& progress = [](double) { return false; })
  {
    output->SetPoints(input->GetPoints());
    output->GetPointData()->PassData(input->GetPointData());
    if (input->GetNumberOfPoints() < 1 || input->GetNumberOfCells() < 1) {
      return;
    }
    LiteralExtractEdges literal(input, output);
    literal.vertex_pass();
    literal.edge_pass(progress);
    output->SetVerts(literal.mVerts);
    output->SetLines(literal.mLines);
    output->Squeeze();
  }

private:
  LiteralExtractEdges(vtkPointSet* input, vtkPolyData* output)
      : mInput(input), mFrom(input->GetCellData()), mTo(output->GetCellData())
  {
    mTable->InitEdgeInsertion(input->GetNumberOfPoints());
    mTo->CopyAllocate(mFrom, input->GetNumberOfCells(), 1000);
  }

  void vertex_pass()
  {
    for (vtkIdType c = 0; c < mInput->GetNumberOfCells(); ++c) {
      mInput->GetCell(c, mCell);
      if (mCell->GetCellType() == VTK_VERTEX || mCell->GetCellType() == VTK_POLY_VERTEX) {
        for (vtkIdType i = 0; i < mCell->GetNumberOfPoints(); ++i) {
          const vtkIdType point = mCell->GetPointId(static_cast<int>(i));
          mTo->CopyData(mFrom, c, mVerts->InsertNextCell(1, &point));
          ++mVertices;
        }
      }
    }
  }

  void edge_pass(const Progress& progress)
  {
    const vtkIdType cells = mInput->GetNumberOfCells();
    const vtkIdType interval = cells / 10 + 1;
    bool stop = false;
    for (vtkIdType c = 0; c < cells && !stop; ++c) {
      if (c % interval == 0) {
        stop = progress(static_cast<double>(c) / static_cast<double>(cells));
      }
      mInput->GetCell(c, mCell);
      if (mCell->GetCellType() == VTK_LINE || mCell->GetCellType() == VTK_POLY_LINE) {
        walk(c, mCell);
        continue;
      }
      const int edges = mCell->GetNumberOfEdges();
      for (int i = 0; i < edges; ++i) {
        walk(c, mCell->GetEdge(i));
      }
    }
  }

  void walk(vtkIdType c, vtkCell* edge)
  {
    if (edge->IsLinear() != 0) {
      for (int i = 1; i < edge->GetNumberOfPoints(); ++i) {
        pair(c, edge->GetPointId(i - 1), edge->GetPointId(i));
      }
      return;
    }
    edge->Triangulate(0, mPieces, mScratch);
    for (vtkIdType i = 0; i + 1 < mPieces->GetNumberOfIds(); i += 2) {
      pair(c, mPieces->GetId(i), mPieces->GetId(i + 1));
    }
  }

  void pair(vtkIdType c, vtkIdType a, vtkIdType b)
  {
    if (mTable->IsEdge(a, b) == -1) {
      mTable->InsertEdge(a, b);
      const vtkIdType ends[2] = {a, b};
      mTo->CopyData(mFrom, c, mVertices + mLines->InsertNextCell(2, ends));
    }
  }

  vtkPointSet* mInput;
  vtkCellData* mFrom;
  vtkCellData* mTo;
  vtkIdType mVertices = 0;
  vtkNew<vtkEdgeTable> mTable;
  vtkNew<vtkGenericCell> mCell;
  vtkNew<vtkCellArray> mVerts;
  vtkNew<vtkCellArray> mLines;
  vtkNew<vtkIdList> mPieces;
  vtkNew<vtkPoints> mScratch;
};

} // namespace morrow_test
