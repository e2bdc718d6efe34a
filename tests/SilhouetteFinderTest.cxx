// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "SilhouetteFinder.h"

#include "CountedAllocations.h"
#include "LiteralSilhouette.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <vtkCamera.h>
#include <vtkCellArray.h>
#include <vtkMatrix4x4.h>
#include <vtkNew.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkSmartPointer.h>
#include <vtkType.h>
#include <vtkTypeInt64Array.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

namespace {

using Cells = std::vector<std::vector<vtkIdType>>;
using Floats = std::vector<float>;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

vtkSmartPointer<vtkPoints> make_points(const std::vector<double>& xyz, int type = VTK_DOUBLE)
{
  const auto points = vtkSmartPointer<vtkPoints>::Take(vtkPoints::New(type));
  for (std::size_t i = 0; i + 2 < xyz.size(); i += 3) {
    points->InsertNextPoint(xyz[i], xyz[i + 1], xyz[i + 2]);
  }
  return points;
}

vtkSmartPointer<vtkPolyData> make_data(vtkPoints* points, const Cells& cells, bool wide = true)
{
  vtkNew<vtkCellArray> polys;
  if (wide) {
    polys->Use64BitStorage();
  } else {
    polys->Use32BitStorage();
  }
  for (const auto& cell : cells) {
    polys->InsertNextCell(static_cast<vtkIdType>(cell.size()), cell.data());
  }
  auto data = vtkSmartPointer<vtkPolyData>::New();
  data->SetPoints(points);
  data->SetPolys(polys);
  return data;
}

/// In the plane z = 0, seen by a matrix that leaves x and y as they are.
vtkSmartPointer<vtkPolyData> flat_data(const std::vector<double>& xy, const Cells& cells)
{
  std::vector<double> xyz;
  for (std::size_t i = 0; i + 1 < xy.size(); i += 2) {
    xyz.insert(xyz.end(), {xy[i], xy[i + 1], 0.0});
  }
  return make_data(make_points(xyz), cells);
}

Floats find(vtkPolyData* data, vtkMatrix4x4* matrix)
{
  morrow::SilhouetteFinder finder;
  Floats edges = {1.0F, 2.0F}; // to be forgotten
  finder.find(*matrix, *data, edges);
  return edges;
}

Floats find(vtkPolyData* data)
{
  return find(data, vtkNew<vtkMatrix4x4>());
}

Floats literal(vtkPolyData* data, vtkMatrix4x4* matrix)
{
  Floats edges;
  morrow_test::LiteralSilhouette::run(matrix, data, edges);
  return edges;
}

/// Bit for bit, so that NaN equals itself and -0 is not 0.
bool are_same(const Floats& a, const Floats& b)
{
  return a.size() == b.size() &&
         (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(float)) == 0);
}

/// The corners of a square, and a point outside of each of its sides: 0 to 3 counter-clockwise, 4 below.
const std::vector<double> kSquare = {0, 0, 1, 0, 1, 1, 0, 1, 0.5, -1};

const Floats kLowerEdge = {0, 0, 0, 1, 0, 0};
const Floats kLowerEdgeBack = {1, 0, 0, 0, 0, 0};

// ---------------------------------------------------------------------------------------------------------
// Random meshes

class Random
{
public:
  explicit Random(unsigned seed) : mEngine(seed) {}

  int below(int limit) { return static_cast<int>(mEngine() % static_cast<unsigned>(limit)); }
  bool one_in(int count) { return below(count) == 0; }
  double real() { return static_cast<double>(mEngine()) / 4294967296.0 * 4.0 - 2.0; }
  double coordinate()
  {
    static const double hostile[] = {kNan,  kInfinity, -kInfinity, 1e38, 1e39,
                                     1e300, -1e308,    1e-310,     0.0,  -0.0};
    return one_in(40) ? hostile[below(10)] : real();
  }

private:
  std::mt19937 mEngine;
};

enum class Shape
{
  Triangles,
  Quads,
  Mixed
};

std::size_t random_size(Random& random, Shape shape)
{
  switch (shape) {
  case Shape::Triangles:
    return 3;
  case Shape::Quads:
    return 4;
  case Shape::Mixed:
    break;
  }
  return static_cast<std::size_t>(random.one_in(10) ? random.below(3) : 3 + random.below(4));
}

/// Points are used many times over, twice in a cell at times, and at times they do not exist.
Cells random_cells(Random& random, Shape shape, int points)
{
  Cells cells(static_cast<std::size_t>(random.below(60)));
  for (auto& cell : cells) {
    cell.resize(random_size(random, shape));
    std::generate(cell.begin(), cell.end(), [&] {
      const int beyond = random.one_in(100) ? random.below(5) - 2 : 0;
      return beyond < 0 ? vtkIdType(beyond) : random.below(points) + vtkIdType(beyond) * points;
    });
  }
  if (!cells.empty() && random.one_in(3)) {
    cells.push_back(cells.front());
  }
  return cells;
}

vtkSmartPointer<vtkPolyData> random_mesh(Random& random)
{
  static const int types[] = {VTK_FLOAT, VTK_DOUBLE, VTK_INT, VTK_SHORT};
  const int type = types[random.below(4)];
  const bool whole = type == VTK_INT || type == VTK_SHORT; // numbers that such an array can hold
  const int count = 1 + random.below(30);
  std::vector<double> xyz(static_cast<std::size_t>(3 * count));
  std::generate(xyz.begin(), xyz.end(),
                [&] { return whole ? std::round(random.real() * 5.0) : random.coordinate(); });
  const Shape shape = static_cast<Shape>(random.below(3));
  return make_data(make_points(xyz, type), random_cells(random, shape, count), random.one_in(2));
}

vtkSmartPointer<vtkMatrix4x4> random_matrix(Random& random)
{
  auto matrix = vtkSmartPointer<vtkMatrix4x4>::New();
  for (int i = 0; i < 16; ++i) {
    matrix->SetElement(i / 4, i % 4, random.one_in(60) ? random.coordinate() : random.real());
  }
  if (random.one_in(3)) { // affine
    matrix->SetElement(3, 0, 0.0);
    matrix->SetElement(3, 1, 0.0);
    matrix->SetElement(3, 2, 0.0);
    matrix->SetElement(3, 3, random.one_in(3) ? 0.0 : 1.0);
  }
  return matrix;
}

vtkSmartPointer<vtkMatrix4x4> view_from(double x, double y, double z)
{
  vtkNew<vtkCamera> camera;
  camera->SetPosition(x, y, z);
  auto matrix = vtkSmartPointer<vtkMatrix4x4>::New();
  matrix->DeepCopy(camera->GetCompositeProjectionTransformMatrix(1.25, 0.0, 1.0));
  return matrix;
}

} // namespace

// ---------------------------------------------------------------------------------------------------------
// The rule

// Counter-clockwise is the front; the second triangle, over the same edge, is clockwise.
TEST(SilhouetteFinderTest, AnEdgeBetweenFrontAndBack)
{
  EXPECT_EQ(find(flat_data(kSquare, {{0, 1, 2}, {0, 1, 4}})), kLowerEdge);
  EXPECT_EQ(find(flat_data(kSquare, {{0, 1, 4}, {0, 1, 2}})), kLowerEdge);
}

// From one point to the next, as the later cell has them.
TEST(SilhouetteFinderTest, TheEdgeRunsAsInTheLaterCell)
{
  EXPECT_EQ(find(flat_data(kSquare, {{0, 1, 2}, {1, 4, 0}})), kLowerEdge);     // front, then back
  EXPECT_EQ(find(flat_data(kSquare, {{0, 2, 1}, {4, 1, 0}})), kLowerEdgeBack); // back, then front
}

TEST(SilhouetteFinderTest, TheLastEdgeLeadsToTheFirstPoint)
{
  EXPECT_EQ(find(flat_data(kSquare, {{0, 1, 2, 3}, {1, 4, 0}})), kLowerEdge);
  EXPECT_EQ(find(flat_data(kSquare, {{0, 1, 2}, {1, 4, 4, 0}})), kLowerEdge) << "of a quadrilateral";
}

TEST(SilhouetteFinderTest, ASingleTriangleYieldsNothing)
{
  EXPECT_EQ(find(flat_data(kSquare, {{0, 1, 2}})), Floats());
  EXPECT_EQ(find(flat_data(kSquare, {{0, 2, 1}})), Floats());
}

TEST(SilhouetteFinderTest, OnlyFrontsYieldNothing)
{
  EXPECT_EQ(find(flat_data(kSquare, {{0, 1, 2}, {0, 2, 3}, {0, 4, 1}})), Floats());
}

TEST(SilhouetteFinderTest, OnlyBacksYieldNothing)
{
  EXPECT_EQ(find(flat_data(kSquare, {{0, 2, 1}, {0, 3, 2}, {0, 1, 4}})), Floats());
}

// A cell on the edge of view has an area of 0 on the screen.
TEST(SilhouetteFinderTest, ADegenerateCellIsABack)
{
  EXPECT_EQ(find(flat_data(kSquare, {{0, 1, 2}, {0, 1, 1}})),
            (Floats{0, 0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 0, 0, 0}));
}

// Only the first three points turn; the fourth may do what it wants.
TEST(SilhouetteFinderTest, TheFirstThreePointsDecide)
{
  const Cells front_but_mostly_back = {{0, 1, 2}, {4, 1, 0, 2}};
  EXPECT_EQ(find(flat_data(kSquare, front_but_mostly_back)), Floats());
}

// The test is on points: the diagonal (0, 2) belongs to no front, yet both its ends do.
TEST(SilhouetteFinderTest, PointsCountNotEdges)
{
  const auto data = flat_data(kSquare, {{0, 1, 2, 3}, {0, 2, 1}});
  EXPECT_EQ(find(data), (Floats{0, 0, 0, 1, 1, 0, 1, 1, 0, 1, 0, 0, 1, 0, 0, 0, 0, 0}));
}

TEST(SilhouetteFinderTest, TheOrderOfTheCellsMatters)
{
  // The last front meets both backs; as the first cell it meets none.
  const Cells late = {{0, 2, 1}, {0, 3, 2}, {0, 1, 2, 3}};
  const Cells early = {{0, 1, 2, 3}, {0, 2, 1}, {0, 3, 2}};
  EXPECT_EQ(find(flat_data(kSquare, late)).size(), 6U * 4U);
  EXPECT_EQ(find(flat_data(kSquare, early)).size(), 6U * 6U);
}

// A cube in perspective from straight ahead: the near face hides all others, which are backs.
TEST(SilhouetteFinderTest, AConvexSurfaceYieldsItsOutline)
{
  const std::vector<double> corners = {-1, -1, -1, 1, -1, -1, 1, 1, -1, -1, 1, -1,
                                       -1, -1, 1,  1, -1, 1,  1, 1, 1,  -1, 1, 1};
  const Cells faces = {{4, 5, 6, 7}, {0, 3, 2, 1}, {0, 1, 5, 4}, {1, 2, 6, 5}, {2, 3, 7, 6}, {3, 0, 4, 7}};
  const Floats edges = find(make_data(make_points(corners), faces), view_from(0.0, 0.0, 5.0));
  ASSERT_EQ(edges.size(), 6U * 4U);
  for (std::size_t i = 2; i < edges.size(); i += 3) {
    EXPECT_EQ(edges[i], 1.0F) << "an edge off the near face";
  }
}

TEST(SilhouetteFinderTest, CoordinatesAreNarrowedToFloat)
{
  const auto data =
      make_data(make_points({0.1, 0, 1e300, 1.1, 0, 0, 1, 1, 0, 0.5, -1, 0}), {{1, 2, 0}, {0, 1, 3}});
  const Floats edges = find(data);
  ASSERT_EQ(edges.size(), 6U);
  EXPECT_EQ(edges[0], 0.1F);
  EXPECT_EQ(edges[2], std::numeric_limits<float>::infinity());
}

// The two triangles face two ways in double numbers, but not in float ones.
TEST(SilhouetteFinderTest, TheScreenIsMadeOfFloats)
{
  const double tiny = 1e-9;
  const auto data = flat_data({1.0 - tiny, 0, 1, 1, 1, 2, 2, 0}, {{0, 3, 1}, {0, 1, 2}});
  EXPECT_EQ(find(data).size(), 6U) << "the second is degenerate";
}

// ---------------------------------------------------------------------------------------------------------
// Nothing and broken things

TEST(SilhouetteFinderTest, EmptyDataYieldsNothing)
{
  EXPECT_EQ(find(vtkNew<vtkPolyData>()), Floats());
  EXPECT_EQ(find(make_data(make_points({}), {})), Floats());
  EXPECT_EQ(find(make_data(make_points({0, 0, 0}), {})), Floats());
}

TEST(SilhouetteFinderTest, CellsWithoutPointsArrayAreAbsent)
{
  EXPECT_EQ(find(make_data(nullptr, {{0, 1, 2}, {0, 2, 1}})), Floats());
}

TEST(SilhouetteFinderTest, OnlyPolygonsCount)
{
  const auto data = flat_data(kSquare, {});
  vtkNew<vtkCellArray> strips;
  const vtkIdType strip[4] = {0, 1, 4, 2};
  strips->InsertNextCell(4, strip);
  data->SetStrips(strips);
  data->SetLines(strips);
  EXPECT_EQ(find(data), Floats());
}

TEST(SilhouetteFinderTest, CellsWithFewerThanThreePointsAreAbsent)
{
  EXPECT_EQ(find(flat_data(kSquare, {{0, 1, 2}, {0, 1}, {1}, {}, {0, 1, 4}})), kLowerEdge);
  EXPECT_EQ(find(flat_data(kSquare, {{0, 1, 2}, {0, 1}, {1}, {}})), Floats());
}

TEST(SilhouetteFinderTest, CellsWithPointsOutOfRangeAreAbsent)
{
  constexpr vtkIdType huge = std::numeric_limits<vtkIdType>::max();
  constexpr vtkIdType least = std::numeric_limits<vtkIdType>::min();
  for (const vtkIdType broken : {vtkIdType(-1), vtkIdType(5), vtkIdType(2'000'000'000), huge, least}) {
    EXPECT_EQ(find(flat_data(kSquare, {{0, 1, 2}, {0, 1, broken}})), Floats()) << broken;
    EXPECT_EQ(find(flat_data(kSquare, {{0, 1, 2}, {0, 4, 1, broken}})), Floats()) << broken;
    EXPECT_EQ(find(flat_data(kSquare, {{0, 1, 2}, {broken, 0, 1}, {0, 1, 4}})), kLowerEdge) << broken;
  }
}

// VTK counts -1 cells in such an array.
TEST(SilhouetteFinderTest, CellsWithoutOffsetsAreAbsent)
{
  vtkNew<vtkCellArray> cells;
  cells->SetData(vtkNew<vtkTypeInt64Array>(), vtkNew<vtkTypeInt64Array>());
  ASSERT_EQ(cells->GetNumberOfCells(), -1);
  const auto data = flat_data(kSquare, {});
  data->SetPolys(cells);
  EXPECT_EQ(find(data), Floats());
}

// Offsets that run backwards or past the end of the ids, as a broken file may have them.
TEST(SilhouetteFinderTest, CellsWithBrokenOffsetsAreAbsent)
{
  for (const vtkTypeInt64 broken :
       {vtkTypeInt64(-1), vtkTypeInt64(1), vtkTypeInt64(7), vtkTypeInt64(1) << 62}) {
    vtkNew<vtkTypeInt64Array> offsets;
    for (const vtkTypeInt64 offset : {vtkTypeInt64(0), vtkTypeInt64(3), broken, vtkTypeInt64(6)}) {
      offsets->InsertNextValue(offset);
    }
    vtkNew<vtkTypeInt64Array> ids;
    for (const vtkTypeInt64 id : {0, 1, 2, 0, 1, 2}) {
      ids->InsertNextValue(id);
    }
    vtkNew<vtkCellArray> cells;
    cells->SetData(offsets, ids);
    const auto data = flat_data(kSquare, {});
    data->SetPolys(cells);
    EXPECT_EQ(find(data), Floats()) << broken;
  }
}

// A matrix that has no image of any point, such as that of a camera inside of its focal point.
TEST(SilhouetteFinderTest, AMatrixOfNothingMakesAllBacks)
{
  vtkNew<vtkMatrix4x4> zero;
  zero->Zero();
  EXPECT_EQ(find(flat_data(kSquare, {{0, 1, 2}, {0, 1, 4}}), zero), Floats());
}

// ---------------------------------------------------------------------------------------------------------
// As the literal version

TEST(SilhouetteFinderTest, RandomMeshesAsInTheLiteralVersion)
{
  morrow::SilhouetteFinder finder; // one for all, so that leftovers would show
  Floats edges;
  std::size_t edge_count = 0;
  for (unsigned seed = 0; seed < 4000; ++seed) {
    Random random(seed);
    const auto data = random_mesh(random);
    const auto matrix = random_matrix(random);
    finder.find(*matrix, *data, edges);
    ASSERT_TRUE(are_same(edges, literal(data, matrix))) << "seed " << seed;
    edge_count += edges.size() / 6;
  }
  EXPECT_GT(edge_count, 100'000U) << "too little to compare";
}

TEST(SilhouetteFinderTest, SpheresAsInTheLiteralVersion)
{
  const auto data = morrow_test::sphere(1.0, 40);
  for (const double angle : {0.0, 0.7, 1.9, 4.0}) {
    const auto matrix = view_from(3.0 * std::cos(angle), 3.0 * std::sin(angle), 0.5);
    const Floats edges = find(data, matrix);
    EXPECT_FALSE(edges.empty());
    EXPECT_TRUE(are_same(edges, literal(data, matrix)));
  }
}

// ---------------------------------------------------------------------------------------------------------
// Memory

TEST(SilhouetteFinderTest, ASecondRunAllocatesNothing)
{
  const auto data = morrow_test::sphere(1.0, 30);
  const auto matrix = view_from(0.0, 0.0, 4.0);
  morrow::SilhouetteFinder finder;
  Floats edges;
  const std::uint64_t before = morrow_test::gAllocations;
  finder.find(*matrix, *data, edges);
  const std::uint64_t after_first = morrow_test::gAllocations;
  const float* memory = edges.data();
  finder.find(*matrix, *data, edges);
  finder.find(*matrix, *data, edges);
  EXPECT_GT(after_first, before) << "the count does not work";
  EXPECT_EQ(morrow_test::gAllocations, after_first);
  EXPECT_EQ(edges.data(), memory);
}

TEST(SilhouetteFinderTest, SmallerDataAllocatesNothing)
{
  const auto large = morrow_test::sphere(1.0, 30);
  const auto small = morrow_test::sphere(1.0, 8);
  const auto matrix = view_from(0.0, 0.0, 4.0);
  morrow::SilhouetteFinder finder;
  Floats edges;
  finder.find(*matrix, *large, edges);
  const std::uint64_t before = morrow_test::gAllocations;
  for (int i = 0; i < 3; ++i) {
    finder.find(*matrix, *small, edges);
    finder.find(*matrix, *large, edges);
  }
  EXPECT_EQ(morrow_test::gAllocations, before);
}
