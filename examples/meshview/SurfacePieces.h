// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <vtkNew.h>
#include <vtkSmartPointer.h> // returned by value
#include <vtkType.h>         // vtkIdType

#include <vector>

class vtkIdList;
class vtkPolyData;

/// Makes pieces of a surface that can be drawn by themselves: each holds the points that it uses, and no
/// others. Each takes time in proportion to its size.
class SurfacePieces
{
public:
  using Ids = std::vector<vtkIdType>;

  /// The surface must outlive this.
  explicit SurfacePieces(vtkPolyData& surface);
  ~SurfacePieces();
  SurfacePieces(const SurfacePieces&) = delete;
  SurfacePieces& operator=(const SurfacePieces&) = delete;

  /// These cells, whose ids ascend, with their values and those of their points.
  [[nodiscard]] vtkSmartPointer<vtkPolyData> cells(const Ids& ids);

  /// A line through these points for each list of them.
  [[nodiscard]] vtkSmartPointer<vtkPolyData> lines(const std::vector<const Ids*>& lists);

private:
  class Piece;

  vtkPolyData& mSurface;
  Ids mNewIds; // by point of the surface; -1 outside of the piece that is made
  vtkNew<vtkIdList> mPoints;
};
