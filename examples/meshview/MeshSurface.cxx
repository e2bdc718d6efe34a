// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "MeshSurface.h"

#include "MeshBlocks.h"
#include "MeshLines.h"
#include "MeshQuality.h"

#include <vtkCellArray.h>
#include <vtkCellArrayIterator.h>
#include <vtkCellData.h>
#include <vtkCellTypes.h>
#include <vtkCleanPolyData.h>
#include <vtkFloatArray.h>
#include <vtkGeometryFilter.h>
#include <vtkIdTypeArray.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPolyData.h>
#include <vtkPolygon.h>
#include <vtkUnstructuredGrid.h>
#include <vtkUnstructuredGridGeometryFilter.h>

#include <algorithm>
#include <initializer_list>

namespace {

constexpr vtkIdType kLargestStructure = 1'000'000'000; // cells; a file of a few bytes can ask for any number

// --- Counting

/// Sorts the cells of a list by their number of points; types[n] is the type of cells with n points, the last
/// one also that of all larger cells.
void count_by_size(vtkCellArray* cells, const std::vector<int>& types, std::map<int, vtkIdType>& counts)
{
  const auto largest = static_cast<vtkIdType>(types.size()) - 1;
  for (vtkIdType i = 0; i < cells->GetNumberOfCells(); ++i) {
    ++counts[types[static_cast<std::size_t>(std::min(cells->GetCellSize(i), largest))]];
  }
}

/// Asking a surface for the types of its cells would make it build a table of them.
void count_surface_cells(vtkPolyData& surface, std::map<int, vtkIdType>& counts)
{
  count_by_size(surface.GetVerts(), {VTK_EMPTY_CELL, VTK_VERTEX, VTK_POLY_VERTEX}, counts);
  count_by_size(surface.GetLines(), {VTK_EMPTY_CELL, VTK_POLY_LINE, VTK_LINE, VTK_POLY_LINE}, counts);
  count_by_size(surface.GetPolys(),
                {VTK_EMPTY_CELL, VTK_POLYGON, VTK_POLYGON, VTK_TRIANGLE, VTK_QUAD, VTK_POLYGON}, counts);
  count_by_size(surface.GetStrips(), {VTK_EMPTY_CELL, VTK_TRIANGLE_STRIP}, counts);
}

/// For vtkCellArray::Visit(): marks the points that the cells use.
struct MarkUsedPoints
{
  template<class State>
  void operator()(State& state, std::vector<bool>& is_used) const
  {
    const auto* points = state.GetConnectivity()->GetPointer(0);
    for (vtkIdType i = 0; i < state.GetConnectivity()->GetNumberOfValues(); ++i) {
      is_used[static_cast<std::size_t>(points[i])] = true;
    }
  }
};

/// Blocks of one file may share its points.
vtkIdType count_used_points(vtkIdType number_of_points, std::initializer_list<vtkCellArray*> lists)
{
  std::vector<bool> is_used(static_cast<std::size_t>(number_of_points), false);
  for (vtkCellArray* cells : lists) {
    cells->Visit(MarkUsedPoints{}, is_used);
  }
  return std::count(is_used.begin(), is_used.end(), true);
}

vtkIdType count_used_points(vtkPolyData& surface)
{
  return count_used_points(surface.GetNumberOfPoints(),
                           {surface.GetVerts(), surface.GetLines(), surface.GetPolys(), surface.GetStrips()});
}

void count(vtkDataSet& mesh, MeshBlock& block)
{
  block.points = mesh.GetNumberOfPoints();
  block.cells = mesh.GetNumberOfCells();
  if (auto* surface = vtkPolyData::SafeDownCast(&mesh)) {
    block.points = count_used_points(*surface);
    return count_surface_cells(*surface, block.cells_by_type);
  }
  for (vtkIdType i = 0; i < block.cells; ++i) {
    ++block.cells_by_type[mesh.GetCellType(i)];
  }
  if (auto* grid = vtkUnstructuredGrid::SafeDownCast(&mesh)) {
    block.points = count_used_points(block.points, {grid->GetCells()});
  }
}

// --- Values

/// The array to colour by; of two with the same name the one on points, which shows more.
vtkDataArray* find_values(vtkDataSet& mesh, const std::string& name)
{
  vtkDataArray* values = name.empty() ? nullptr : mesh.GetPointData()->GetArray(name.c_str());
  return values != nullptr || name.empty() ? values : mesh.GetCellData()->GetArray(name.c_str());
}

std::optional<ValueRange> range_of(vtkDataArray* values)
{
  if (values == nullptr) {
    return std::nullopt;
  }
  double range[2];
  values->GetFiniteRange(range, values->GetNumberOfComponents() > 1 ? -1 : 0);
  const bool has_values = range[0] <= range[1];
  return has_values ? ValueRange{range[0], range[1]} : ValueRange{};
}

// --- Surface

bool is_wanted(const char* name, const ReadRequest& request)
{
  return name != nullptr &&
         ((!request.color_by.empty() && request.color_by == name) || std::string(id_array_name()) == name ||
          std::string(vtkDataSetAttributes::GhostArrayName()) == name);
}

void share_wanted(vtkDataSetAttributes& from, vtkDataSetAttributes& to, const ReadRequest& request)
{
  for (int i = 0; i < from.GetNumberOfArrays(); ++i) {
    if (is_wanted(from.GetArrayName(i), request)) {
      to.AddArray(from.GetAbstractArray(i));
    }
  }
}

/// The same mesh with the wanted arrays only, so that filters do not carry along the others.
vtkSmartPointer<vtkDataSet> without_other_arrays(vtkDataSet& mesh, const ReadRequest& request)
{
  auto bare = vtkSmartPointer<vtkDataSet>::Take(mesh.NewInstance());
  bare->CopyStructure(&mesh);
  share_wanted(*mesh.GetPointData(), *bare->GetPointData(), request);
  share_wanted(*mesh.GetCellData(), *bare->GetCellData(), request);
  return bare;
}

/// The filter puts new points on curved faces and gives them values between those of their neighbours, which
/// for ids is nonsense. They get -1.
void repair_point_ids(vtkPolyData& surface, vtkDataSet& mesh)
{
  auto* ids = vtkIdTypeArray::SafeDownCast(surface.GetPointData()->GetArray(id_array_name()));
  auto* true_ids = vtkIdTypeArray::SafeDownCast(mesh.GetPointData()->GetArray(id_array_name()));
  auto* origins = vtkIdTypeArray::SafeDownCast(surface.GetPointData()->GetArray("vtkOriginalPointIds"));
  if (ids == nullptr || true_ids == nullptr || origins == nullptr) {
    return;
  }
  for (vtkIdType i = 0; i < ids->GetNumberOfValues(); ++i) {
    const vtkIdType origin = origins->GetValue(i);
    ids->SetValue(i, origin < 0 ? -1 : true_ids->GetValue(origin));
  }
  surface.GetPointData()->RemoveArray("vtkOriginalPointIds");
}

/// Points that no cell uses are not seen, but would be framed and labelled.
vtkSmartPointer<vtkPolyData> without_unused_points(vtkPolyData& surface)
{
  vtkNew<vtkCleanPolyData> filter;
  filter->SetInputData(&surface);
  filter->PointMergingOff();
  filter->ConvertLinesToPointsOff();
  filter->ConvertPolysToLinesOff();
  filter->ConvertStripsToPolysOff();
  filter->Update();
  return filter->GetOutput();
}

vtkSmartPointer<vtkPolyData> extract_surface(vtkDataSet& mesh, const MeshBlock& block,
                                             const ReadRequest& request)
{
  if (auto* surface = vtkPolyData::SafeDownCast(&mesh)) {
    const bool has_unused_points = block.points < surface->GetNumberOfPoints();
    return has_unused_points ? without_unused_points(*surface) : vtkSmartPointer<vtkPolyData>(surface);
  }
  vtkNew<vtkGeometryFilter> filter;
  filter->SetInputData(&mesh);
  filter->SetPassThroughPointIds(request.ids);
  filter->Update();
  repair_point_ids(*filter->GetOutput(), mesh);
  return filter->GetOutput();
}

// --- Normals

/// One normal for each face, so that it is shaded as one facet, also if its corners are not quite in a plane
/// and it is drawn as several triangles. Normals worked out by the graphics card from positions fail for
/// meshes in units that make them very small.
void add_face_normals(vtkPolyData& surface)
{
  if (surface.GetNumberOfStrips() > 0) {
    return; // a strip is one cell and not flat
  }
  vtkNew<vtkFloatArray> normals;
  normals->SetNumberOfComponents(3);
  normals->SetNumberOfTuples(surface.GetNumberOfCells());
  normals->FillValue(0.0F); // of vertices and lines, which come first
  vtkIdType cell = surface.GetNumberOfVerts() + surface.GetNumberOfLines();
  const auto polygon = vtk::TakeSmartPointer(surface.GetPolys()->NewIterator());
  for (polygon->GoToFirstCell(); !polygon->IsDoneWithTraversal(); polygon->GoToNextCell(), ++cell) {
    vtkIdType size = 0;
    const vtkIdType* corners = nullptr;
    polygon->GetCurrentCell(size, corners);
    double normal[3];
    vtkPolygon::ComputeNormal(surface.GetPoints(), static_cast<int>(size), corners, normal);
    normals->SetTuple(cell, normal);
  }
  surface.GetCellData()->SetNormals(normals);
}

// --- Edges of curved cells

bool has_curved_cells(const MeshBlock& block)
{
  return std::any_of(block.cells_by_type.begin(), block.cells_by_type.end(), [](const auto& type_and_count) {
    return vtkCellTypes::IsLinear(static_cast<unsigned char>(type_and_count.first)) == 0;
  });
}

/// The faces stay curved in a grid, whose edges become lines from node to node.
vtkSmartPointer<vtkPolyData> extract_edges(vtkDataSet& mesh)
{
  vtkNew<vtkUnstructuredGridGeometryFilter> faces;
  faces->SetInputData(&mesh);
  faces->MergingOff();
  faces->Update();
  return extract_unique_edges(*faces->GetOutput());
}

} // namespace

MeshBlock make_block(const std::string& name, vtkDataSet& mesh, const ReadRequest& request)
{
  if (mesh.GetNumberOfCells() > kLargestStructure) {
    throw MeshError("has too many cells to be shown");
  }
  MeshBlock block;
  block.name = name;
  count(mesh, block);
  if (request.quality) {
    block.quality = mesh.GetCellData()->GetArray(MeshQuality::array_name());
  }
  block.values = range_of(find_values(mesh, request.color_by));
  const vtkSmartPointer<vtkDataSet> bare = without_other_arrays(mesh, request);
  block.surface = extract_surface(*bare, block, request);
  add_face_normals(*block.surface);
  if (request.edges && has_curved_cells(block)) {
    block.edges = extract_edges(*bare);
  }
  return block;
}
