// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "MeshBlocks.h"

#include <vtkCellData.h>
#include <vtkCompositeDataSet.h>
#include <vtkDataObjectTree.h>
#include <vtkDataObjectTreeIterator.h>
#include <vtkDataSet.h>
#include <vtkExtractCells.h>
#include <vtkFieldData.h>
#include <vtkIdList.h>
#include <vtkIdTypeArray.h>
#include <vtkInformation.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkStringArray.h>
#include <vtkUnstructuredGrid.h>

#include <algorithm>
#include <cctype>
#include <map>
#include <numeric>

namespace {

constexpr std::size_t kMostBlocks = 1000; // an array with more values means something else

// --- Composite data

/// Exodus blocks without a name get one from VTK that says so.
std::string tidy_name(const std::string& name)
{
  static const std::string kUnnamed = "Unnamed block ID: ";
  const bool is_unnamed = name.compare(0, kUnnamed.size(), kUnnamed) == 0;
  return is_unnamed ? "block " + name.substr(kUnnamed.size()) : name;
}

std::string leaf_name(vtkDataObjectTreeIterator& leaf, std::size_t number)
{
  vtkInformation* about = leaf.HasCurrentMetaData() != 0 ? leaf.GetCurrentMetaData() : nullptr;
  const char* name = about == nullptr ? nullptr : about->Get(vtkCompositeDataSet::NAME());
  return name == nullptr || *name == 0 ? "block " + std::to_string(number) : tidy_name(name);
}

// --- Block arrays

/// One whole number or one text for each cell?
bool can_tell_blocks(vtkAbstractArray& array)
{
  const int type = array.GetDataType();
  const bool is_fractional = type == VTK_FLOAT || type == VTK_DOUBLE;
  const bool is_number = vtkDataArray::SafeDownCast(&array) != nullptr && !is_fractional;
  return array.GetNumberOfComponents() == 1 && (is_number || vtkStringArray::SafeDownCast(&array) != nullptr);
}

vtkAbstractArray* find_block_array(vtkCellData& data)
{
  for (int i = 0; i < data.GetNumberOfArrays(); ++i) {
    vtkAbstractArray* array = data.GetAbstractArray(i);
    if (array->GetName() != nullptr && is_block_array(array->GetName()) && can_tell_blocks(*array)) {
      return array;
    }
  }
  return nullptr;
}

/// The cells of each value, with the name of each. Empty when the values are not block ids.
struct Split
{
  std::vector<std::string> names;
  std::vector<vtkSmartPointer<vtkIdList>> cells;
};

/// value_of(cell) tells the block, name_of(value) its name.
template<class ValueOf, class NameOf>
Split split_cells(vtkIdType number_of_cells, const ValueOf& value_of, const NameOf& name_of)
{
  std::map<decltype(value_of(0)), vtkSmartPointer<vtkIdList>> lists;
  for (vtkIdType cell = 0; cell < number_of_cells; ++cell) {
    auto& list = lists[value_of(cell)];
    if (list == nullptr) {
      if (lists.size() > kMostBlocks) {
        return {};
      }
      list = vtkSmartPointer<vtkIdList>::New();
    }
    list->InsertNextId(cell);
  }
  Split split;
  for (const auto& [value, list] : lists) {
    split.names.push_back(name_of(value));
    split.cells.push_back(list);
  }
  return split;
}

Split split_cells(vtkAbstractArray& array)
{
  const vtkIdType count = array.GetNumberOfTuples();
  if (auto* texts = vtkStringArray::SafeDownCast(&array)) {
    return split_cells(
        count, [texts](vtkIdType i) { return std::string(texts->GetValue(i)); },
        [](const std::string& value) { return value; });
  }
  auto* numbers = vtkDataArray::SafeDownCast(&array);
  return split_cells(
      count, [numbers](vtkIdType i) { return static_cast<long long>(numbers->GetComponent(i, 0)); },
      [](long long value) { return "block " + std::to_string(value); });
}

void take_given_names(vtkFieldData& data, std::vector<std::string>& names)
{
  auto* given = vtkStringArray::SafeDownCast(data.GetAbstractArray("BlockNames"));
  if (given == nullptr || static_cast<std::size_t>(given->GetNumberOfValues()) != names.size()) {
    return;
  }
  for (std::size_t i = 0; i < names.size(); ++i) {
    names[i] = given->GetValue(static_cast<vtkIdType>(i));
  }
}

vtkSmartPointer<vtkDataSet> extract(vtkDataSet& whole, vtkIdList& cells)
{
  vtkNew<vtkExtractCells> extractor;
  extractor->SetInputData(&whole);
  extractor->SetCellList(&cells);
  extractor->Update();
  return extractor->GetOutput();
}

vtkSmartPointer<vtkIdTypeArray> numbers_from_zero(vtkIdType count)
{
  auto numbers = vtkSmartPointer<vtkIdTypeArray>::New();
  numbers->SetName(id_array_name());
  numbers->SetNumberOfValues(count);
  vtkIdType* first = numbers->GetPointer(0);
  std::iota(first, first + count, vtkIdType(0));
  return numbers;
}

} // namespace

std::vector<NamedMesh> list_meshes(vtkDataObject& data, const std::string& fallback_name)
{
  std::vector<NamedMesh> meshes;
  if (auto* mesh = vtkDataSet::SafeDownCast(&data)) {
    meshes.push_back({fallback_name, mesh, ""});
  }
  if (auto* tree = vtkDataObjectTree::SafeDownCast(&data)) {
    const auto leaf = vtkSmartPointer<vtkDataObjectTreeIterator>::Take(tree->NewTreeIterator());
    for (leaf->InitTraversal(); !leaf->IsDoneWithTraversal(); leaf->GoToNextItem()) {
      if (auto* mesh = vtkDataSet::SafeDownCast(leaf->GetCurrentDataObject())) {
        const std::string name = leaf_name(*leaf, meshes.size() + 1);
        meshes.push_back({name, mesh, name + ": "});
      }
    }
  }
  return meshes;
}

bool is_block_array(const std::string& name)
{
  std::string plain;
  for (const char c : name) {
    if (c != '_') {
      plain += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
  }
  return plain == "blockid" || plain == "materialid" || plain == "cellentityids";
}

const char* id_array_name()
{
  return "meshview ids";
}

void add_ids(vtkDataSet& mesh)
{
  mesh.GetPointData()->AddArray(numbers_from_zero(mesh.GetNumberOfPoints()));
  mesh.GetCellData()->AddArray(numbers_from_zero(mesh.GetNumberOfCells()));
}

std::vector<NamedMesh> split_by_block_array(const NamedMesh& whole)
{
  auto* grid = vtkUnstructuredGrid::SafeDownCast(whole.mesh);
  vtkAbstractArray* array = grid == nullptr ? nullptr : find_block_array(*grid->GetCellData());
  Split split = array == nullptr ? Split() : split_cells(*array);
  if (split.cells.size() < 2) {
    return {whole};
  }
  take_given_names(*grid->GetFieldData(), split.names);
  std::vector<NamedMesh> blocks;
  for (std::size_t i = 0; i < split.cells.size(); ++i) {
    blocks.push_back({whole.prefix + split.names[i], extract(*grid, *split.cells[i]), whole.prefix});
  }
  return blocks;
}
