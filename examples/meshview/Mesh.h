// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <vtkSmartPointer.h> // members
#include <vtkType.h>         // vtkIdType

#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

class vtkDataArray;
class vtkPolyData;

/// Why a file cannot be shown: a reason for people, without the file's name.
class MeshError : public std::runtime_error
{
public:
  using std::runtime_error::runtime_error;
};

/// The finite values of an array; of vectors, their lengths.
struct ValueRange
{
  double low = 0.0;
  double high = 0.0;
};

/// One element block, or a file that has no blocks: what becomes one part of the model.
struct MeshBlock
{
  std::string name;
  vtkIdType points = 0;                   ///< points that the block's cells use, or are just there
  vtkIdType cells = 0;                    ///< cells of all types
  std::map<int, vtkIdType> cells_by_type; ///< number of cells by VTK's cell type
  std::optional<ValueRange> values;       ///< of the array to colour by; none if the block does not have it

  vtkSmartPointer<vtkDataArray> quality; ///< one value per cell, NaN for none; null unless asked for

  /// What is drawn: the faces, lines and vertices on the outside. Holds the array to colour by, if the block
  /// has it, and where labels ask for them the arrays of original ids.
  vtkSmartPointer<vtkPolyData> surface;

  /// The mesh edges as lines, where the edges of the surface's polygons are not those of the mesh: for curved
  /// cells, whose faces are drawn as several flat pieces. Otherwise null.
  vtkSmartPointer<vtkPolyData> edges;
};

/// What was read from one file.
struct MeshFile
{
  std::string path;
  std::vector<MeshBlock> blocks;
  std::vector<std::string> arrays; ///< names of the numeric point and cell arrays, sorted, each once
  std::string damage;              ///< why some blocks are missing; empty when all of them are there
};
