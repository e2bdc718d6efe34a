// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <vtkSmartPointer.h> // members

#include <string>
#include <vector>

class vtkDataObject;
class vtkDataSet;

/// A mesh with a name: what becomes one block.
struct NamedMesh
{
  std::string name;
  vtkSmartPointer<vtkDataSet> mesh;
  std::string prefix; ///< of the names of the blocks it is split into
};

/// The meshes inside what a reader has read: the leaves of composite data with their names, or the data
/// itself with fallback_name. Leaves without a name are called "block 1", "block 2", …; empty ones are left
/// out.
[[nodiscard]] std::vector<NamedMesh> list_meshes(vtkDataObject& data, const std::string& fallback_name);

/// Is this the name of a cell array whose values tell blocks apart: BlockId, MaterialId or CellEntityIds, in
/// upper or lower case and with underscores or not?
[[nodiscard]] bool is_block_array(const std::string& name);

/// Adds point and cell arrays with the numbers 0, 1, 2, …, which survive splitting.
void add_ids(vtkDataSet& mesh);
[[nodiscard]] const char* id_array_name();

/// Splits an unstructured grid by the values of its block array, an integer or text array, in ascending
/// order. The field array "BlockNames" names them if it has as many texts as there are values; else text is
/// its own name and an integer 7 is called "block 7". A mesh without such an array, or with one that has a
/// single value or more than 1000, stays whole.
[[nodiscard]] std::vector<NamedMesh> split_by_block_array(const NamedMesh& whole);
