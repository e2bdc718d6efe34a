// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "MeshCheck.h"

#include "Mesh.h"

#include <vtkCell.h>
#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkCellTypes.h>
#include <vtkDoubleArray.h>
#include <vtkFloatArray.h>
#include <vtkGenericCell.h>
#include <vtkIdTypeArray.h>
#include <vtkImageData.h>
#include <vtkPointData.h>
#include <vtkPointSet.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkRectilinearGrid.h>
#include <vtkUnsignedCharArray.h>
#include <vtkUnstructuredGrid.h>

#include <array>
#include <cmath>
#include <string>

namespace {

constexpr double kLargest = 1e18; // shaders square coordinates in single precision, which ends at 3e38

std::string text(vtkIdType number)
{
  return std::to_string(number);
}

// --- Coordinates

template<class T>
vtkIdType first_bad(const T* values, vtkIdType count)
{
  for (vtkIdType i = 0; i < count; ++i) {
    if (!(std::abs(static_cast<double>(values[i])) <= kLargest)) { // this way round NaN is bad too
      return i;
    }
  }
  return -1;
}

/// Index of the first value that cannot be drawn, -1 when there is none. Integers always can.
vtkIdType first_bad(vtkDataArray& array)
{
  if (auto* doubles = vtkDoubleArray::FastDownCast(&array)) {
    return first_bad(doubles->GetPointer(0), doubles->GetNumberOfValues());
  }
  if (auto* floats = vtkFloatArray::FastDownCast(&array)) {
    return first_bad(floats->GetPointer(0), floats->GetNumberOfValues());
  }
  return -1;
}

void check_coordinates(vtkDataArray& array)
{
  const vtkIdType bad = first_bad(array);
  if (bad >= 0) {
    const int components = array.GetNumberOfComponents();
    const double value = array.GetComponent(bad / components, static_cast<int>(bad % components));
    throw MeshError("the coordinates of point " + text(bad / components) +
                    " are not usable: " + (std::isfinite(value) ? "beyond 1e18" : "not a finite number"));
  }
}

void check_structure(vtkDataSet& mesh)
{
  if (auto* points = vtkPointSet::SafeDownCast(&mesh)) {
    if (points->GetPoints() != nullptr) {
      check_coordinates(*points->GetPoints()->GetData());
    }
  } else if (auto* grid = vtkRectilinearGrid::SafeDownCast(&mesh)) {
    check_coordinates(*grid->GetXCoordinates());
    check_coordinates(*grid->GetYCoordinates());
    check_coordinates(*grid->GetZCoordinates());
  } else if (first_bad(mesh.GetBounds(), 6) >= 0) {
    throw MeshError("the coordinates are beyond 1e18 or not finite");
  }
}

// --- Lists of point numbers

/// For vtkCellArray::Visit(): are offsets ascending and inside the list, cells large enough and point numbers
/// in range?
struct CheckCellArray
{
  template<class State>
  void operator()(State& state, vtkIdType number_of_points, vtkIdType least_size) const
  {
    using Value = typename State::ValueType;
    const auto* offsets = state.GetOffsets()->GetPointer(0);
    const vtkIdType cells = state.GetNumberOfCells();
    const vtkIdType length = state.GetConnectivity()->GetNumberOfValues();
    for (vtkIdType i = 0; i < cells; ++i) {
      if (offsets[i] < 0 || offsets[i + 1] < offsets[i]) {
        throw MeshError("a cell has a damaged list of points");
      }
      if (offsets[i + 1] - offsets[i] < least_size) {
        throw MeshError("a cell has " + text(offsets[i + 1] - offsets[i]) + " points instead of at least " +
                        text(least_size));
      }
    }
    if (cells > 0 && offsets[cells] > length) {
      throw MeshError("the list of the cells' points is cut short");
    }
    const Value* points = state.GetConnectivity()->GetPointer(0);
    for (vtkIdType i = 0; i < length; ++i) {
      if (points[i] < 0 || points[i] >= number_of_points) {
        throw MeshError("a cell uses point " + text(points[i]) + ", and there are " + text(number_of_points));
      }
    }
  }
};

void check_cells(vtkCellArray* cells, vtkIdType number_of_points, vtkIdType least_size)
{
  if (cells != nullptr && cells->GetOffsetsArray()->GetNumberOfValues() > 0) {
    cells->Visit(CheckCellArray{}, number_of_points, least_size);
  }
}

// --- Numbers of points of each type of cell

/// (1 + 2 + … + n): the points of a triangle with n on each side.
constexpr vtkIdType triangular(vtkIdType n)
{
  return n * (n + 1) / 2;
}

/// The number of points of a cell with n points on each edge. 0 for the types that have no such rule.
vtkIdType points_of_higher_order_cell(int type, vtkIdType n)
{
  switch (type) {
  case VTK_LAGRANGE_CURVE:
  case VTK_BEZIER_CURVE:
    return n;
  case VTK_LAGRANGE_TRIANGLE:
  case VTK_BEZIER_TRIANGLE:
    return triangular(n);
  case VTK_LAGRANGE_QUADRILATERAL:
  case VTK_BEZIER_QUADRILATERAL:
    return n * n;
  case VTK_LAGRANGE_TETRAHEDRON:
  case VTK_BEZIER_TETRAHEDRON:
    return triangular(n) * (n + 2) / 3;
  case VTK_LAGRANGE_HEXAHEDRON:
  case VTK_BEZIER_HEXAHEDRON:
    return n * n * n;
  case VTK_LAGRANGE_WEDGE:
  case VTK_BEZIER_WEDGE:
    return n * triangular(n);
  default:
    return 0;
  }
}

/// Degree 2 cells may have a point in the middle of each face and of the cell as well.
bool has_middle_points(int type, vtkIdType count)
{
  return (type == VTK_LAGRANGE_TRIANGLE && count == 7) || (type == VTK_LAGRANGE_TETRAHEDRON && count == 15) ||
         (type == VTK_LAGRANGE_WEDGE && count == 21);
}

bool is_higher_order_count(int type, vtkIdType count)
{
  constexpr vtkIdType kMostPerEdge = 11; // degree 10, the highest that VTK knows
  for (vtkIdType n = 2; n <= kMostPerEdge; ++n) {
    if (points_of_higher_order_cell(type, n) == count) {
      return true;
    }
  }
  return has_middle_points(type, count);
}

/// What each type of cell demands; filled when a type is first met.
class CellRules
{
public:
  [[nodiscard]] bool accepts(int type, vtkIdType count)
  {
    Rule& rule = mRules[static_cast<std::size_t>(type)];
    if (rule.kind == Rule::Unset) {
      rule = make_rule(type);
    }
    switch (rule.kind) {
    case Rule::Exactly:
      return count == rule.count;
    case Rule::AtLeast:
      return count >= rule.count;
    case Rule::HigherOrder:
      return is_higher_order_count(type, count);
    default:
      return false;
    }
  }

private:
  struct Rule
  {
    enum Kind
    {
      Unset,
      Exactly,
      AtLeast,
      HigherOrder,
      Unknown
    } kind = Unset;
    vtkIdType count = 0;
  };

  static Rule make_rule(int type)
  {
    switch (type) {
    case VTK_EMPTY_CELL:
      return {Rule::AtLeast, 0};
    case VTK_POLY_VERTEX:
      return {Rule::AtLeast, 1};
    case VTK_POLY_LINE:
      return {Rule::AtLeast, 2};
    case VTK_TRIANGLE_STRIP:
    case VTK_POLYGON:
      return {Rule::AtLeast, 3};
    case VTK_QUADRATIC_POLYGON:
      return {Rule::AtLeast, 6};
    case VTK_CONVEX_POINT_SET:
    case VTK_POLYHEDRON:
      return {Rule::AtLeast, 4};
    default:
      break;
    }
    if (points_of_higher_order_cell(type, 2) > 0) {
      return {Rule::HigherOrder, 0};
    }
    return rule_of_cell_class(type);
  }

  /// VTK's cell objects of the other types are made with the right number of points.
  static Rule rule_of_cell_class(int type)
  {
    const auto cell = vtkSmartPointer<vtkCell>::Take(vtkGenericCell::InstantiateCell(type));
    const vtkIdType count = cell == nullptr ? 0 : cell->GetNumberOfPoints();
    return {count > 0 ? Rule::Exactly : Rule::Unknown, count};
  }

  std::array<Rule, 256> mRules; // by type, a byte
};

void check_types(vtkUnstructuredGrid& grid)
{
  const vtkIdType cells = grid.GetNumberOfCells();
  const vtkUnsignedCharArray* types = grid.GetCellTypesArray();
  if (cells > 0 && (types == nullptr || types->GetNumberOfValues() != cells)) {
    throw MeshError("the types of the cells do not match their number");
  }
  CellRules rules;
  for (vtkIdType i = 0; i < cells; ++i) {
    const int type = grid.GetCellType(i);
    const vtkIdType count = grid.GetCells()->GetCellSize(i);
    if (!rules.accepts(type, count)) {
      throw MeshError("cell " + text(i) + " is of type " + std::to_string(type) + " and has " + text(count) +
                      " points, which cannot be");
    }
  }
}

// --- Polyhedra

/// The faces of polyhedra: from each one's position in the list, the number of faces, and for each face the
/// number of its points and these.
class PolyhedronCheck
{
public:
  explicit PolyhedronCheck(vtkUnstructuredGrid& grid)
      : mFaces(grid.GetFaces()), mPositions(grid.GetFaceLocations()), mPoints(grid.GetNumberOfPoints())
  {}

  void check(vtkIdType cell)
  {
    if (mFaces == nullptr || mPositions == nullptr || cell >= mPositions->GetNumberOfValues()) {
      fail(cell);
    }
    mNext = mPositions->GetValue(cell);
    for (vtkIdType faces = take(cell, 1, mFaces->GetNumberOfValues()); faces > 0; --faces) {
      for (vtkIdType corners = take(cell, 3, mPoints); corners > 0; --corners) {
        take(cell, 0, mPoints - 1);
      }
    }
  }

private:
  [[noreturn]] static void fail(vtkIdType cell)
  {
    throw MeshError("polyhedron " + text(cell) + " has damaged faces");
  }

  /// The next number of the list, which must be from low to high.
  vtkIdType take(vtkIdType cell, vtkIdType low, vtkIdType high)
  {
    if (mNext < 0 || mNext >= mFaces->GetNumberOfValues()) {
      fail(cell);
    }
    const vtkIdType value = mFaces->GetValue(mNext++);
    if (value < low || value > high) {
      fail(cell);
    }
    return value;
  }

  vtkIdTypeArray* mFaces;
  vtkIdTypeArray* mPositions;
  vtkIdType mPoints;
  vtkIdType mNext = 0;
};

void check_polyhedra(vtkUnstructuredGrid& grid)
{
  PolyhedronCheck polyhedra(grid);
  for (vtkIdType i = 0; i < grid.GetNumberOfCells(); ++i) {
    if (grid.GetCellType(i) == VTK_POLYHEDRON) {
      polyhedra.check(i);
    }
  }
}

// --- Arrays

/// Some readers pass on arrays that a file gives for other numbers of points or cells. Nobody can use them.
void drop_unfit_arrays(vtkDataSetAttributes& attributes, vtkIdType wanted)
{
  for (int i = attributes.GetNumberOfArrays() - 1; i >= 0; --i) {
    if (attributes.GetAbstractArray(i)->GetNumberOfTuples() != wanted) {
      attributes.RemoveArray(i);
    }
  }
}

void check_grid(vtkUnstructuredGrid& grid)
{
  check_cells(grid.GetCells(), grid.GetNumberOfPoints(), 0); // the types say more
  check_types(grid);
  check_polyhedra(grid);
}

void check_surface(vtkPolyData& surface)
{
  const vtkIdType points = surface.GetNumberOfPoints();
  check_cells(surface.GetVerts(), points, 1);
  check_cells(surface.GetLines(), points, 2);
  check_cells(surface.GetPolys(), points, 3);
  check_cells(surface.GetStrips(), points, 3);
}

} // namespace

void check_mesh(vtkDataSet& mesh)
{
  if (auto* grid = vtkUnstructuredGrid::SafeDownCast(&mesh)) {
    check_grid(*grid);
  }
  if (auto* surface = vtkPolyData::SafeDownCast(&mesh)) {
    check_surface(*surface);
  }
  check_structure(mesh);
  drop_unfit_arrays(*mesh.GetPointData(), mesh.GetNumberOfPoints());
  drop_unfit_arrays(*mesh.GetCellData(), mesh.GetNumberOfCells());
}
