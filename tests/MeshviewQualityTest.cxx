// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
//
// The quality of elements that the mesh viewer colours by, and how it is counted.
#include "MeshQuality.h"
#include "QualityCounts.h"

#include "TestSupport.h"

#include <gtest/gtest.h>

#include <vtkCellData.h>
#include <vtkCellType.h>
#include <vtkDoubleArray.h>
#include <vtkGenericCell.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkUnstructuredGrid.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <vector>

namespace {

using namespace morrow_test;
using Coordinates = std::vector<double>; // x, y, z of each point

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
const double kRoot3 = std::sqrt(3.0);
const double kRoot2 = std::sqrt(2.0);

/// One cell of all points, in their order.
vtkSmartPointer<vtkUnstructuredGrid> grid_of(int type, const Coordinates& xyz)
{
  vtkNew<vtkPoints> points;
  points->SetDataTypeToDouble();
  for (std::size_t i = 0; i < xyz.size(); i += 3) {
    points->InsertNextPoint(&xyz[i]);
  }
  std::vector<vtkIdType> ids(static_cast<std::size_t>(points->GetNumberOfPoints()));
  std::iota(ids.begin(), ids.end(), 0);
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  grid->SetPoints(points);
  grid->InsertNextCell(type, static_cast<vtkIdType>(ids.size()), ids.data());
  return grid;
}

/// Of that cell; -1 for none.
double quality(int type, const Coordinates& xyz)
{
  vtkNew<vtkGenericCell> cell;
  grid_of(type, xyz)->GetCell(0, cell);
  return MeshQuality::of_cell(*cell).value_or(-1.0);
}

Coordinates scaled(Coordinates xyz, double by)
{
  for (double& coordinate : xyz) {
    coordinate *= by;
  }
  return xyz;
}

/// Pressed to this part of its height, or turned inside out by -1.
Coordinates flattened(Coordinates xyz, double by)
{
  for (std::size_t i = 2; i < xyz.size(); i += 3) {
    xyz[i] *= by;
  }
  return xyz;
}

const Coordinates kTriangle = {0, 0, 0, 1, 0, 0, 0.5, kRoot3 / 2, 0};
const Coordinates kSquare = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0};
const Coordinates kPixel = {0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 1, 0};
const Coordinates kTetrahedron = {1, 1, 1, -1, 1, -1, 1, -1, -1, -1, -1, 1};
const Coordinates kCube = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 0, 0, 1, 1, 0, 1, 1, 1, 1, 0, 1, 1};
const Coordinates kVoxel = {0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 1, 0, 0, 0, 1, 1, 0, 1, 0, 1, 1, 1, 1, 1};
const Coordinates kWedge = {0, 0, 0, 1, 0, 0, 0.5, kRoot3 / 2, 0, 0, 0, 1, 1, 0, 1, 0.5, kRoot3 / 2, 1};
const Coordinates kPyramid = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 0.5, 0.5, kRoot2 / 2};

struct Ideal
{
  int type;
  Coordinates points;
};

const Ideal kIdeals[] = {{VTK_TRIANGLE, kTriangle}, {VTK_QUAD, kSquare},     {VTK_PIXEL, kPixel},
                         {VTK_TETRA, kTetrahedron}, {VTK_HEXAHEDRON, kCube}, {VTK_VOXEL, kVoxel},
                         {VTK_WEDGE, kWedge},       {VTK_PYRAMID, kPyramid}};

TEST(MeshQualityTest, TheIdealElementOfEachTypeHasOneWhateverItsSize)
{
  for (const Ideal& ideal : kIdeals) {
    EXPECT_NEAR(quality(ideal.type, ideal.points), 1.0, 1e-9) << "cell type " << ideal.type;
    EXPECT_NEAR(quality(ideal.type, scaled(ideal.points, 1e-3)), 1.0, 1e-6) << "cell type " << ideal.type;
    EXPECT_NEAR(quality(ideal.type, scaled(ideal.points, 1e6)), 1.0, 1e-6) << "cell type " << ideal.type;
  }
}

// Pressed flat by a factor f, an element has 3 f^(2/3) / (2 + f²) of its cube-like corners.
TEST(MeshQualityTest, FlatterElementsHaveLessAndFlatOnesNothing)
{
  const double half = 3.0 * std::cbrt(0.25) / 2.25;
  EXPECT_NEAR(quality(VTK_HEXAHEDRON, flattened(kCube, 0.5)), half, 1e-9);
  EXPECT_NEAR(quality(VTK_VOXEL, flattened(kVoxel, 0.5)), half, 1e-9);
  EXPECT_NEAR(quality(VTK_WEDGE, flattened(kWedge, 0.5)), half, 1e-9);
  EXPECT_NEAR(quality(VTK_PYRAMID, flattened(kPyramid, 0.5)), half, 1e-9);
  for (const int type : {VTK_TETRA, VTK_HEXAHEDRON, VTK_VOXEL, VTK_WEDGE, VTK_PYRAMID}) {
    const auto* ideal = std::find_if(std::begin(kIdeals), std::end(kIdeals),
                                     [type](const Ideal& one) { return one.type == type; });
    const double some = quality(type, flattened(ideal->points, 0.5));
    EXPECT_GT(some, 0.0) << type;
    EXPECT_LT(some, 0.9) << type;
    EXPECT_EQ(quality(type, flattened(ideal->points, 0.0)), 0.0) << type;
  }
  EXPECT_LT(quality(VTK_TRIANGLE, {0, 0, 0, 1, 0, 0, 2, 0, 0}), 1e-20);
  EXPECT_LT(quality(VTK_QUAD, {0, 0, 0, 1, 0, 0, 2, 0, 0, 3, 0, 0}), 1e-20);
  EXPECT_LT(quality(VTK_QUAD, {0, 0, 0, 9, 0, 0, 9, 1, 0, 0, 1, 0}), 0.3);
}

TEST(MeshQualityTest, ElementsInsideOutHaveNothing)
{
  EXPECT_EQ(quality(VTK_TETRA, flattened(kTetrahedron, -1.0)), 0.0);
  EXPECT_EQ(quality(VTK_HEXAHEDRON, flattened(kCube, -1.0)), 0.0);
}

// Files have wedges and pyramids either way round.
TEST(MeshQualityTest, WedgesAndPyramidsMayBeEitherWayRoundButNotTwisted)
{
  EXPECT_NEAR(quality(VTK_WEDGE, flattened(kWedge, -1.0)), 1.0, 1e-9);
  EXPECT_NEAR(quality(VTK_PYRAMID, flattened(kPyramid, -1.0)), 1.0, 1e-9);
  Coordinates twisted = kWedge; // its upper triangle is turned over
  std::swap_ranges(twisted.begin() + 9, twisted.begin() + 12, twisted.begin() + 12);
  EXPECT_EQ(quality(VTK_WEDGE, twisted), 0.0);
  Coordinates folded = kPyramid;
  folded[6] = 0.1; // the third corner of its base lies within the triangle of the others
  folded[7] = 0.1;
  EXPECT_EQ(quality(VTK_PYRAMID, folded), 0.0);
}

TEST(MeshQualityTest, CurvedElementsHaveThatOfTheirCorners)
{
  Coordinates triangle = kTriangle;
  triangle.insert(triangle.end(), {0.5, 0.3, 0, 0.7, 0.4, 0, 0.2, 0.4, 0});
  EXPECT_NEAR(quality(VTK_QUADRATIC_TRIANGLE, triangle), 1.0, 1e-9);
  const auto expect_one = [](int type, Coordinates points, std::size_t size, double filler) {
    points.resize(size, filler); // all nodes of its edges in one place
    EXPECT_NEAR(quality(type, points), 1.0, 1e-9) << "cell type " << type;
  };
  expect_one(VTK_QUADRATIC_TETRA, kTetrahedron, 30, 0.25);
  expect_one(VTK_QUADRATIC_HEXAHEDRON, kCube, 60, 0.5);
  expect_one(VTK_QUADRATIC_WEDGE, kWedge, 45, 0.5);
  expect_one(VTK_QUADRATIC_PYRAMID, kPyramid, 39, 0.5);
}

TEST(MeshQualityTest, OtherCellsHaveNone)
{
  EXPECT_EQ(quality(VTK_VERTEX, {0, 0, 0}), -1.0);
  EXPECT_EQ(quality(VTK_LINE, {0, 0, 0, 1, 0, 0}), -1.0);
  EXPECT_EQ(quality(VTK_POLYGON, kSquare), -1.0);
  EXPECT_EQ(quality(VTK_TRIANGLE_STRIP, kPixel), -1.0);
}

TEST(MeshQualityTest, AMeshGetsOneValueForEachCellAndNoNumberForOtherCells)
{
  const auto grid = grid_of(VTK_QUAD, kSquare);
  const vtkIdType line[2] = {0, 1};
  grid->InsertNextCell(VTK_LINE, 2, line);
  vtkNew<vtkDoubleArray> decoy; // would be the one to colour by
  decoy->SetName(MeshQuality::array_name());
  decoy->SetNumberOfValues(4);
  grid->GetPointData()->AddArray(decoy);
  MeshQuality::add_to(*grid);
  vtkDataArray* values = grid->GetCellData()->GetArray(MeshQuality::array_name());
  ASSERT_NE(values, nullptr);
  ASSERT_EQ(values->GetNumberOfTuples(), 2);
  EXPECT_NEAR(values->GetComponent(0, 0), 1.0, 1e-9);
  EXPECT_TRUE(std::isnan(values->GetComponent(1, 0)));
  EXPECT_FALSE(grid->GetPointData()->HasArray(MeshQuality::array_name()));
}

// --- Counting

std::vector<MeshFile> file_with(const std::vector<double>& qualities)
{
  MeshBlock block;
  auto values = vtkSmartPointer<vtkDoubleArray>::New();
  for (const double value : qualities) {
    values->InsertNextValue(value);
  }
  block.quality = values;
  MeshFile file;
  file.blocks = {block, MeshBlock()}; // the second one was not asked for its quality
  return {file};
}

TEST(QualityCountsTest, BinsAreEquallyWideAndTheLastOneHasTheHighestValue)
{
  const QualityCounts counts(file_with({0.0, 0.1, 0.25, 0.49, 0.5, 0.75, 1.0}), {0.0, 1.0}, 4);
  EXPECT_EQ(counts.bins(), (std::vector<int>{2, 2, 1, 2}));
  EXPECT_EQ(counts.total(), 7);
  EXPECT_EQ(counts.text(), "7 elements");
  EXPECT_EQ(counts.found().low, 0.0);
  EXPECT_EQ(counts.found().high, 1.0);
}

TEST(QualityCountsTest, ElementsWithoutQualityAreCountedApart)
{
  const QualityCounts counts(file_with({0.5, kNan, 0.5}), {0.0, 1.0}, 2);
  EXPECT_EQ(counts.bins(), (std::vector<int>{0, 2}));
  EXPECT_EQ(counts.text(), "2 of 3 elements");
  EXPECT_EQ(counts.found().low, 0.5);
  EXPECT_EQ(counts.found().high, 0.5);
  EXPECT_TRUE(has_quality(file_with({kNan, 0.5})));
  EXPECT_FALSE(has_quality(file_with({kNan})));
  EXPECT_FALSE(has_quality({}));
}

TEST(QualityCountsTest, ValuesOutsideOfTheRangeAreInTheOutermostBins)
{
  const QualityCounts counts(file_with({-0.1, 1.1}), {0.0, 1.0}, 3);
  EXPECT_EQ(counts.bins(), (std::vector<int>{1, 0, 1}));
  EXPECT_EQ(QualityCounts(file_with({0.5}), {0.0, 1.0}, 3).text(), "1 element");
}

} // namespace
