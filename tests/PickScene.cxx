// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "PickScene.h"

#include <vtkCamera.h>
#include <vtkCellArray.h>
#include <vtkCellType.h>
#include <vtkDataSetMapper.h>
#include <vtkFieldData.h>
#include <vtkGenericCell.h>
#include <vtkIdList.h>
#include <vtkIdTypeArray.h>
#include <vtkMapper.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>
#include <vtkStructuredGrid.h>
#include <vtkUnstructuredGrid.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace morrow_test {

namespace {

constexpr double kPi = 3.14159265358979323846;

vtkSmartPointer<vtkPoints> make_points(Random& random)
{
  const int type = random.below(5);
  return vtkSmartPointer<vtkPoints>::Take(vtkPoints::New(type == 0   ? VTK_INT
                                                         : type <= 2 ? VTK_FLOAT
                                                                     : VTK_DOUBLE));
}

/// Integers have room for a mesh only where it is large.
double unit_of(vtkPoints& points)
{
  return points.GetDataType() == VTK_INT ? 1000.0 : 1.0;
}

vtkIdType insert(vtkPoints& points, double x, double y, double z)
{
  const double unit = unit_of(points);
  return points.InsertNextPoint(unit * x, unit * y, unit * z);
}

vtkSmartPointer<vtkPolyData> triangles(Random& random, int cells, bool is_scattered, bool is_hostile)
{
  const int side = std::max(2, static_cast<int>(std::sqrt(cells / 2.0)));
  const vtkSmartPointer<vtkPoints> points =
      is_hostile ? vtkSmartPointer<vtkPoints>::New() : make_points(random);
  for (int i = 0; i < (side + 1) * (side + 1); ++i) {
    const double x = 2.0 * (i % (side + 1)) / side - 1.0;
    const double y = 2.0 * (i / (side + 1)) / side - 1.0;
    insert(*points, x, y, 0.5 * std::sin(3.0 * x) * std::cos(4.0 * y) + random.between(-0.02, 0.02));
  }
  constexpr double infinity = std::numeric_limits<double>::infinity();
  for (const double bad : {std::numeric_limits<double>::quiet_NaN(), infinity, -infinity, 1e30, -1e20, 1e8}) {
    if (is_hostile) {
      points->InsertNextPoint(bad, random.between(-1, 1), random.chance(0.5) ? bad : 0.0);
    }
  }
  std::vector<std::vector<vtkIdType>> corners;
  for (int square = 0; square < side * side; ++square) {
    const vtkIdType a = square / side * (side + 1) + square % side;
    corners.push_back({a, a + 1, a + side + 2});
    corners.push_back({a, a + side + 2, a + side + 1});
  }
  for (std::size_t i = corners.size(); is_scattered && i > 1; --i) {
    std::swap(corners[i - 1], corners[static_cast<std::size_t>(random.below(static_cast<int>(i)))]);
  }
  for (std::size_t i = 0; is_hostile && i < corners.size();
       i += 1 + static_cast<std::size_t>(random.below(200))) {
    corners[i][1] =
        random.chance(0.4) ? corners[i][0] : random.below(static_cast<int>(points->GetNumberOfPoints()));
    corners[i][2] = random.chance(0.4) ? corners[i][1] : corners[i][2];
  }
  vtkNew<vtkCellArray> polys;
  if (random.chance(0.3)) {
    polys->Use32BitStorage();
  }
  for (const auto& corner : corners) {
    polys->InsertNextCell(3, corner.data());
  }
  auto data = vtkSmartPointer<vtkPolyData>::New();
  data->SetPoints(points);
  data->SetPolys(polys);
  return data;
}

/// Adds a ring of points and returns their ids in order.
std::vector<vtkIdType> ring(vtkPoints& points, Random& random, int count)
{
  const double x = random.between(-0.9, 0.9);
  const double y = random.between(-0.9, 0.9);
  const double z = random.between(-0.9, 0.9);
  const double radius = random.between(0.02, 0.3);
  std::vector<vtkIdType> ids;
  for (int i = 0; i < count; ++i) {
    const double angle = 2.0 * kPi * i / count;
    const double bend = random.between(-0.2, 0.2); // not plane
    ids.push_back(
        insert(points, x + radius * std::cos(angle), y + radius * std::sin(angle), z + bend * radius));
  }
  return ids;
}

vtkSmartPointer<vtkPolyData> soup(Random& random, int cells)
{
  const vtkSmartPointer<vtkPoints> points = make_points(random);
  vtkNew<vtkCellArray> arrays[4];
  for (int i = 0; i < cells; ++i) {
    const int kind = random.below(4);
    const int fewest[4] = {1, 2, 3, 3};
    const int count = fewest[kind] + random.below(5);
    const std::vector<vtkIdType> ids = ring(*points, random, count);
    arrays[kind]->InsertNextCell(count, ids.data());
  }
  auto data = vtkSmartPointer<vtkPolyData>::New();
  data->SetPoints(points);
  data->SetVerts(arrays[0]);
  data->SetLines(arrays[1]);
  data->SetPolys(arrays[2]);
  data->SetStrips(arrays[3]);
  if (random.chance(0.5)) {
    data->BuildCells();
  }
  return data;
}

/// Where VTK has the points of a cell of this type, between 0 and 1.
std::vector<double> reference_points(int type)
{
  vtkNew<vtkGenericCell> cell;
  cell->SetCellType(type);
  if (const double* coordinates = cell->GetParametricCoords()) {
    return {coordinates, coordinates + 3 * static_cast<std::ptrdiff_t>(cell->GetNumberOfPoints())};
  }
  return {};
}

void add_cell(vtkUnstructuredGrid& grid, int type, Random& random)
{
  const double at[3] = {random.between(-0.9, 0.7), random.between(-0.9, 0.7), random.between(-0.9, 0.7)};
  const double size = random.between(0.03, 0.3);
  const bool is_straight = type == VTK_VOXEL || type == VTK_PIXEL;
  std::vector<vtkIdType> ids;
  std::vector<double> reference = reference_points(type);
  const bool is_free = type == VTK_POLYGON || type == VTK_POLY_LINE || type == VTK_POLY_VERTEX ||
                       type == VTK_TRIANGLE_STRIP || reference.empty();
  if (is_free) {
    ids = ring(*grid.GetPoints(), random, 4 + random.below(4));
  }
  for (std::size_t i = 0; !is_free && i + 2 < reference.size(); i += 3) {
    const double shake = is_straight ? 0.0 : 0.15;
    ids.push_back(insert(*grid.GetPoints(), at[0] + size * (reference[i] + random.between(-shake, shake)),
                         at[1] + size * (reference[i + 1] + random.between(-shake, shake)),
                         at[2] + size * (reference[i + 2] + random.between(-shake, shake))));
  }
  grid.InsertNextCell(type, static_cast<vtkIdType>(ids.size()), ids.data());
}

vtkSmartPointer<vtkUnstructuredGrid> grid_of(const std::vector<int>& types, Random& random, int cells)
{
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  grid->SetPoints(make_points(random));
  for (int i = 0; i < cells; ++i) {
    add_cell(*grid, types[static_cast<std::size_t>(random.below(static_cast<int>(types.size())))], random);
  }
  return grid;
}

vtkSmartPointer<vtkStructuredGrid> curvilinear(Random& random, int cells)
{
  const int side = std::max(2, static_cast<int>(std::cbrt(cells)));
  const vtkSmartPointer<vtkPoints> points = make_points(random);
  for (int i = 0; i < (side + 1) * (side + 1) * (side + 1); ++i) {
    insert(*points, 2.0 * (i % (side + 1)) / side - 1.0, 2.0 * (i / (side + 1) % (side + 1)) / side - 1.0,
           2.0 * (i / (side + 1) / (side + 1)) / side - 1.0 + random.between(-0.05, 0.05));
  }
  auto grid = vtkSmartPointer<vtkStructuredGrid>::New();
  grid->SetDimensions(side + 1, side + 1, side + 1);
  grid->SetPoints(points);
  return grid;
}

const std::vector<int> kLinear = {
    VTK_VERTEX,         VTK_POLY_VERTEX, VTK_LINE,  VTK_POLY_LINE, VTK_TRIANGLE,
    VTK_TRIANGLE_STRIP, VTK_PIXEL,       VTK_QUAD,  VTK_POLYGON,   VTK_TETRA,
    VTK_VOXEL,          VTK_HEXAHEDRON,  VTK_WEDGE, VTK_PYRAMID,   VTK_PENTAGONAL_PRISM,
    VTK_HEXAGONAL_PRISM};
const std::vector<int> kCurved = {VTK_HEXAHEDRON,           VTK_TETRA,
                                  VTK_QUADRATIC_EDGE,       VTK_QUADRATIC_TRIANGLE,
                                  VTK_QUADRATIC_QUAD,       VTK_QUADRATIC_TETRA,
                                  VTK_QUADRATIC_HEXAHEDRON, VTK_BIQUADRATIC_QUAD,
                                  VTK_QUADRATIC_WEDGE,      VTK_QUADRATIC_PYRAMID};

} // namespace

vtkSmartPointer<vtkPointSet> random_mesh(MeshKind kind, Random& random, int cells)
{
  switch (kind) {
  case MeshKind::Triangles:
  case MeshKind::Scattered:
    return triangles(random, cells, kind == MeshKind::Scattered, false);
  case MeshKind::Soup:
    return soup(random, cells);
  case MeshKind::Linear:
    return grid_of(kLinear, random, cells);
  case MeshKind::Curved:
    return grid_of(kCurved, random, cells / 4);
  case MeshKind::Structured:
    return curvilinear(random, cells);
  default:
    return triangles(random, cells, false, true);
  }
}

void set_pointers(vtkPointSet& data, bool on)
{
  data.GetFieldData()->RemoveArray("Pointers");
  if (on) {
    vtkNew<vtkIdTypeArray> pointers;
    pointers->SetName("Pointers");
    data.GetFieldData()->AddArray(pointers);
  }
}

std::unique_ptr<PickBounds> random_region(Random& random, int which)
{
  const double x = random.between(20.0, 180.0);
  const double y = random.between(20.0, 130.0);
  const double size = which % 4 == 3 ? 300.0 : random.between(0.2, 80.0);
  if (which % 3 == 0) {
    auto box = std::make_unique<PickBox>();
    double corners[4] = {x - size, y - size, x + size, y + 0.7 * size};
    box->set_box(corners);
    return box;
  }
  if (which % 3 == 1) {
    auto circle = std::make_unique<PickCircle>();
    const double center[2] = {x, y};
    circle->set_circle(center, size);
    return circle;
  }
  std::vector<double> points;
  const int count = 3 + random.below(20);
  for (int i = 0; i < count; ++i) {
    const double angle = 2.0 * kPi * i / count;
    const double radius = size * random.between(0.3, 1.0);
    points.push_back(std::round(x + radius * std::cos(angle)));
    points.push_back(std::round(y + radius * std::sin(angle)));
  }
  auto lasso = std::make_unique<PickPolygon>();
  lasso->set_polygon(count, reinterpret_cast<const double(*)[2]>(points.data()));
  return lasso;
}

PickScene::PickScene(Random& random) : mRandom(random)
{
  window->SetSize(200, 150);
  window->AddRenderer(renderer);
  if (random.chance(0.3)) {
    renderer->SetViewport(0.1, 0.2, 0.9, 1.0);
  }
  vtkCamera* camera = renderer->GetActiveCamera();
  const bool is_inside = random.chance(0.25);
  const double distance = is_inside ? 0.3 : random.between(2.0, 6.0);
  camera->SetFocalPoint(0.0, 0.0, 0.0);
  camera->SetPosition(distance * random.between(-0.5, 0.5), distance * random.between(-0.5, 0.5), distance);
  camera->SetClippingRange(is_inside ? 0.01 : 0.5, 12.0);
  camera->SetParallelScale(1.2);
  camera->SetParallelProjection(random.chance(0.3) ? 1 : 0);
}

vtkActor* PickScene::add(vtkPointSet* data)
{
  vtkNew<vtkActor> actor;
  if (auto* poly_data = vtkPolyData::SafeDownCast(data)) {
    vtkNew<vtkPolyDataMapper> mapper;
    mapper->SetInputData(poly_data);
    actor->SetMapper(mapper);
  } else {
    vtkNew<vtkDataSetMapper> mapper;
    mapper->SetInputData(data);
    actor->SetMapper(mapper);
  }
  const double unit = data->GetPoints() != nullptr ? 1.0 / unit_of(*data->GetPoints()) : 1.0;
  const double mirror = mRandom.chance(0.3) ? -1.0 : 1.0;
  actor->SetScale(unit * mirror, unit, unit * mRandom.between(0.5, 1.2));
  actor->RotateX(mRandom.between(-40.0, 40.0));
  actor->RotateY(mRandom.between(-40.0, 40.0));
  actor->SetPosition(mRandom.between(-0.2, 0.2), 0.0, 0.0);
  renderer->AddActor(actor);
  return actor;
}

} // namespace morrow_test
