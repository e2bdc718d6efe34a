// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "EdgeExtraction.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>

#include "CellVisitor.h"
#include "GrowingBuffer.h"
#include "LinearCellEdges.h"
#include "TupleGather.h"
#include "UniqueEdges.h"

#include <vtkCellData.h>
#include <vtkDataArray.h>
#include <vtkIdList.h>
#include <vtkPoints.h>

namespace morrow {

namespace {

bool is_vertex_type(int type)
{
  return type == VTK_VERTEX || type == VTK_POLY_VERTEX;
}

/// count is -1 for a cell that is known to be broken.
template<typename Id>
bool is_valid(const Id* ids, vtkIdType count, vtkIdType points)
{
  bool is_inside = count >= 0;
  for (vtkIdType i = 0; i < count; ++i) {
    is_inside = is_inside && ids[i] >= 0 && ids[i] < points;
  }
  return is_inside;
}

/// One point of a vertex cell after another, and the cell.
struct Vertices
{
  GrowingBuffer<vtkIdType> points;
  GrowingBuffer<vtkIdType> cells;
};

bool has_vertices(vtkPointSet& input)
{
  if (auto* data = vtkPolyData::SafeDownCast(&input)) {
    return data->GetVerts()->GetNumberOfCells() > 0;
  }
  if (auto* grid = vtkUnstructuredGrid::SafeDownCast(&input)) {
    vtkUnsignedCharArray& types = *grid->GetCellTypesArray();
    const unsigned char* first = types.GetPointer(0);
    return std::any_of(first, first + types.GetNumberOfValues(), is_vertex_type);
  }
  return true;
}

Vertices collect_vertices(vtkPointSet& input)
{
  Vertices vertices;
  if (!has_vertices(input)) {
    return vertices;
  }
  const vtkIdType points = input.GetNumberOfPoints();
  visit_cells(input, [&](vtkIdType cell, int type, vtkIdType count, const auto* ids) {
    if (is_vertex_type(type) && is_valid(ids, count, points)) {
      vertices.points.make_room(static_cast<std::size_t>(count));
      vertices.cells.make_room(static_cast<std::size_t>(count));
      for (vtkIdType i = 0; i < count; ++i) {
        vertices.points.push(ids[i]);
        vertices.cells.push(cell);
      }
    }
    return true;
  });
  return vertices;
}

/// The degrees along the axes of a cell.
using Degrees = std::array<double, 3>;

/// How many points Lagrange and Bézier cells have of the kind with the type VTK_LAGRANGE_CURVE + kind.
double points_of_degrees(int kind, const Degrees& degrees)
{
  const auto [a, b, c] = degrees;
  switch (VTK_LAGRANGE_CURVE + kind) {
  case VTK_LAGRANGE_TRIANGLE:
    return (a + 1) * (a + 2) / 2;
  case VTK_LAGRANGE_QUADRILATERAL:
    return (a + 1) * (b + 1);
  case VTK_LAGRANGE_TETRAHEDRON:
    return (a + 1) * (a + 2) * (a + 3) / 6;
  case VTK_LAGRANGE_HEXAHEDRON:
    return (a + 1) * (b + 1) * (c + 1);
  case VTK_LAGRANGE_WEDGE:
    return a == b ? (a + 1) * (a + 2) / 2 * (c + 1) : 0;
  default:
    return a + 1;
  }
}

/// Whether VTK knows a cell of so many points with the same degree along all axes. It has three of degree 2
/// with points in the middles of faces and of the cell.
bool has_points_of_a_degree(int kind, vtkIdType count)
{
  const int type = VTK_LAGRANGE_CURVE + kind;
  if ((type == VTK_LAGRANGE_TRIANGLE && count == 7) || (type == VTK_LAGRANGE_TETRAHEDRON && count == 15) ||
      (type == VTK_LAGRANGE_WEDGE && count == 21)) {
    return true;
  }
  const auto wanted = static_cast<double>(count);
  double degree = 1;
  while (points_of_degrees(kind, {degree, degree, degree}) < wanted) {
    ++degree;
  }
  return points_of_degrees(kind, {degree, degree, degree}) == wanted;
}

/// Whether a cell has as many points as VTK will read of it. Only Lagrange and Bézier cells, whose number of
/// points depends on their degrees, are looked at.
bool has_points_of_its_degrees(vtkPointSet& input, vtkIdType cell, int type, vtkIdType count)
{
  constexpr int kinds = VTK_BEZIER_CURVE - VTK_LAGRANGE_CURVE;
  if (type < VTK_LAGRANGE_CURVE || type > VTK_BEZIER_PYRAMID) {
    return true;
  }
  const int kind = (type - VTK_LAGRANGE_CURVE) % kinds;
  const int lagrange = VTK_LAGRANGE_CURVE + kind;
  vtkDataArray* array = input.GetCellData()->GetHigherOrderDegrees();
  const bool has_one_degree = lagrange == VTK_LAGRANGE_CURVE || lagrange == VTK_LAGRANGE_TRIANGLE ||
                              lagrange == VTK_LAGRANGE_TETRAHEDRON;
  if (array == nullptr || has_one_degree) {
    return has_points_of_a_degree(kind, count);
  }
  Degrees degrees = {};
  if (array->GetNumberOfComponents() != 3 || cell >= array->GetNumberOfTuples()) {
    return false;
  }
  array->GetTuple(cell, degrees.data());
  const bool are_whole = std::all_of(degrees.begin(), degrees.end(), [](double degree) {
    return degree >= 1 && degree == std::floor(degree);
  });
  return are_whole && points_of_degrees(kind, degrees) == static_cast<double>(count);
}

const LinearCellEdges& linear_cell_edges()
{
  static const LinearCellEdges edges;
  return edges;
}

/// Takes the edges of one cell after another.
template<typename Index>
class EdgeWalk
{
public:
  explicit EdgeWalk(vtkPointSet& input)
      : mInput(input), mPoints(input.GetNumberOfPoints()), mEdges(input.GetNumberOfPoints())
  {}

  template<typename Id>
  void take_cell(vtkIdType cell, int type, vtkIdType count, const Id* ids)
  {
    if (type == VTK_TRIANGLE && count == 3) {
      this->take_triangle(cell, ids);
    } else {
      this->take_any_cell(cell, type, count, ids);
    }
  }

  [[nodiscard]] UniqueEdges<Index>& edges() { return mEdges; }
  [[nodiscard]] vtkIdType broken() const { return mBroken; }

private:
  /// As any cell, but most cells of most meshes are triangles.
  template<typename Id>
  void take_triangle(vtkIdType cell, const Id* ids)
  {
    const vtkIdType a = ids[0];
    const vtkIdType b = ids[1];
    const vtkIdType c = ids[2];
    if (std::min({a, b, c}) < 0 || std::max({a, b, c}) >= mPoints) {
      ++mBroken;
      return;
    }
    mEdges.make_room(3);
    mEdges.insert(a, b, cell);
    mEdges.insert(b, c, cell);
    mEdges.insert(c, a, cell);
  }

  template<typename Id>
  void take_any_cell(vtkIdType cell, int type, vtkIdType count, const Id* ids)
  {
    if (is_vertex_type(type) || type == VTK_EMPTY_CELL || (count == 0 && type != VTK_POLYHEDRON)) {
      mBroken += is_valid(ids, count, mPoints) ? 0 : 1;
      return;
    }
    if (!is_valid(ids, count, mPoints) || count < this->least_points(type) ||
        !has_points_of_its_degrees(mInput, cell, type, count)) {
      ++mBroken;
      return;
    }
    switch (type) {
    case VTK_LINE:
    case VTK_POLY_LINE:
      this->take_path(cell, count, ids);
      break;
    case VTK_TRIANGLE:
      this->take_triangle(cell, ids); // of too many points
      break;
    case VTK_QUAD:
      this->take_ring(cell, 4, ids);
      break;
    case VTK_POLYGON:
      this->take_ring(cell, count, ids);
      break;
    case VTK_TRIANGLE_STRIP:
      this->take_strip(cell, count, ids);
      break;
    default:
      this->take_other(cell, type, ids);
      break;
    }
  }

  /// Of the cells whose number of points VTK fixes; what it makes of fewer reads foreign memory.
  [[nodiscard]] vtkIdType least_points(int type)
  {
    if (type == VTK_TRIANGLE) {
      return 3;
    }
    if (type == VTK_TRIANGLE_STRIP) {
      return 2;
    }
    const int linear = mLinear.of(type).points;
    return linear != 0 ? linear : this->least_points_of_other(type);
  }

  [[nodiscard]] vtkIdType least_points_of_other(int type)
  {
    constexpr int first = VTK_QUADRATIC_EDGE;
    constexpr int last = VTK_CONVEX_POINT_SET - 1;
    if (type < first || type > last) {
      return 0;
    }
    mGeneric->SetCellType(type);
    return mGeneric->GetCellType() == type ? mGeneric->GetNumberOfPoints() : 0;
  }

  template<typename Id>
  void take_path(vtkIdType cell, vtkIdType count, const Id* ids)
  {
    mEdges.make_room(static_cast<std::size_t>(count));
    for (vtkIdType i = 1; i < count; ++i) {
      mEdges.insert(ids[i - 1], ids[i], cell);
    }
  }

  template<typename Id>
  void take_ring(vtkIdType cell, vtkIdType count, const Id* ids)
  {
    this->take_path(cell, count, ids);
    mEdges.insert(ids[count - 1], ids[0], cell); // a path leaves room for one more
  }

  /// VTK's order: the first edge, those along both sides, the last one.
  template<typename Id>
  void take_strip(vtkIdType cell, vtkIdType count, const Id* ids)
  {
    mEdges.make_room(static_cast<std::size_t>(count));
    mEdges.insert(ids[0], ids[1], cell);
    for (vtkIdType i = 1; i + 1 < count; ++i) {
      mEdges.insert(ids[i - 1], ids[i + 1], cell);
    }
    mEdges.insert(ids[count - 2], ids[count - 1], cell);
  }

  template<typename Id>
  void take_other(vtkIdType cell, int type, const Id* ids)
  {
    const LinearCellEdges::Cell& linear = mLinear.of(type);
    if (linear.points == 0) {
      this->take_generic(cell);
      return;
    }
    mEdges.make_room(linear.edges.size());
    for (const LinearCellEdges::Edge& edge : linear.edges) {
      mEdges.insert(ids[edge.a], ids[edge.b], cell);
    }
  }

  void take_generic(vtkIdType cell)
  {
    mInput.GetCell(cell, mGeneric);
    const int count = mGeneric->GetNumberOfEdges();
    for (int i = 0; i < count; ++i) {
      this->take_edge(cell, *mGeneric->GetEdge(i));
    }
  }

  void take_edge(vtkIdType cell, vtkCell& edge)
  {
    if (edge.IsLinear() != 0) {
      this->take_path(cell, edge.GetNumberOfPoints(), edge.GetPointIds()->GetPointer(0));
      return;
    }
    edge.Triangulate(0, mPieces, mScratch);
    const vtkIdType pairs = mPieces->GetNumberOfIds() / 2;
    mEdges.make_room(static_cast<std::size_t>(pairs));
    for (vtkIdType i = 0; i < pairs; ++i) {
      mEdges.insert(mPieces->GetId(2 * i), mPieces->GetId(2 * i + 1), cell);
    }
  }

  vtkPointSet& mInput;
  vtkIdType mPoints;
  UniqueEdges<Index> mEdges;
  vtkIdType mBroken = 0;
  const LinearCellEdges& mLinear = linear_cell_edges();
  vtkNew<vtkGenericCell> mGeneric;
  vtkNew<vtkIdList> mPieces;
  vtkNew<vtkPoints> mScratch;
};

template<typename Index>
void collect_edges(vtkPointSet& input, EdgeWalk<Index>& walk, const std::function<bool(double)>& progress)
{
  const vtkIdType cells = input.GetNumberOfCells();
  const vtkIdType interval = cells / 10 + 1;
  vtkIdType next_report = 0;
  visit_cells(input, [&](vtkIdType cell, int type, vtkIdType count, const auto* ids) {
    bool is_last = false;
    if (cell == next_report) {
      is_last = progress(static_cast<double>(cell) / static_cast<double>(cells));
      next_report += interval;
    }
    walk.take_cell(cell, type, count, ids);
    return !is_last;
  });
}

/// An array that owns the buffer's memory.
vtkSmartPointer<vtkIdTypeArray> to_array(GrowingBuffer<vtkIdType>& buffer)
{
  auto array = vtkSmartPointer<vtkIdTypeArray>::New();
  buffer.shrink();
  const auto size = static_cast<vtkIdType>(buffer.size());
  if (size > 0) {
    array->SetArray(buffer.release(), size, 0, vtkAbstractArray::VTK_DATA_ARRAY_FREE);
  }
  return array;
}

/// Cells of so many points each.
vtkSmartPointer<vtkCellArray> make_cells(GrowingBuffer<vtkIdType>& points, int points_per_cell)
{
  const vtkIdType count = static_cast<vtkIdType>(points.size()) / points_per_cell;
  GrowingBuffer<vtkIdType> offsets;
  vtkIdType* offset = offsets.extend(static_cast<std::size_t>(count) + 1);
  for (vtkIdType i = 0; i <= count; ++i) {
    offset[i] = i * points_per_cell;
  }
  auto cells = vtkSmartPointer<vtkCellArray>::New();
  cells->SetData(to_array(offsets), to_array(points));
  return cells;
}

/// More edges than any cells of so many point ids have, convex point sets left aside.
vtkIdType most_edges(vtkPointSet& input)
{
  constexpr vtkIdType edges_per_point = 2;
  constexpr vtkIdType edges_per_cell = 12;
  if (auto* grid = vtkUnstructuredGrid::SafeDownCast(&input)) {
    return edges_per_point * grid->GetCells()->GetNumberOfConnectivityIds();
  }
  if (auto* data = vtkPolyData::SafeDownCast(&input)) {
    return data->GetLines()->GetNumberOfConnectivityIds() + data->GetPolys()->GetNumberOfConnectivityIds() +
           data->GetStrips()->GetNumberOfConnectivityIds();
  }
  return edges_per_cell * input.GetNumberOfCells();
}

/// About as many edges as a mesh with so many points has: growing later costs a copy. Room that is not needed
/// is memory that is never touched.
vtkIdType likely_edges(vtkPointSet& input)
{
  constexpr double per_point_of_surface_or_bricks = 3.1;
  constexpr double per_point_of_tetrahedra = 7.5;
  constexpr vtkIdType points_of_brick = 6; // wedges and more
  auto* grid = vtkUnstructuredGrid::SafeDownCast(&input);
  const bool has_tetrahedra = grid != nullptr && grid->GetCells()->GetNumberOfConnectivityIds() <
                                                     points_of_brick * grid->GetNumberOfCells();
  const double factor = has_tetrahedra ? per_point_of_tetrahedra : per_point_of_surface_or_bricks;
  const auto by_points = static_cast<vtkIdType>(factor * static_cast<double>(input.GetNumberOfPoints()));
  return std::min(by_points, most_edges(input));
}

template<typename Index>
EdgeExtractionReport extract(vtkPointSet& input, vtkPolyData& output,
                             const std::function<bool(double)>& progress)
{
  Vertices vertices = collect_vertices(input);
  EdgeWalk<Index> walk(input);
  walk.edges().expect(static_cast<std::size_t>(likely_edges(input)));
  collect_edges(input, walk, progress);
  UniqueEdges<Index>& edges = walk.edges();
  edges.finish();
  const auto vertex_count = static_cast<vtkIdType>(vertices.cells.size());
  gather_tuples(*input.GetCellData(), *output.GetCellData(),
                {{vertices.cells.data(), true, vertex_count},
                 {edges.cells(), sizeof(Index) == sizeof(std::int64_t), edges.size()}});
  output.SetVerts(make_cells(vertices.points, 1));
  output.SetLines(make_cells(edges.ends(), 2));
  output.Squeeze();
  return {walk.broken()};
}

} // namespace

EdgeExtractionReport extract_edges(vtkPointSet& input, vtkPolyData& output,
                                   const std::function<bool(double)>& progress)
{
  constexpr vtkIdType limit = std::numeric_limits<std::int32_t>::max();
  const bool is_small =
      input.GetNumberOfPoints() < limit && input.GetNumberOfCells() < limit && most_edges(input) < limit;
  return is_small ? extract<std::int32_t>(input, output, progress)
                  : extract<std::int64_t>(input, output, progress);
}

} // namespace morrow
