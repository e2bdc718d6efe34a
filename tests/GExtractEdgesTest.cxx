// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "GExtractEdges.h"

#include "LiteralExtractEdges.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <vtkBitArray.h>
#include <vtkCallbackCommand.h>
#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkCellType.h>
#include <vtkCommand.h>
#include <vtkDoubleArray.h>
#include <vtkIdTypeArray.h>
#include <vtkImageData.h>
#include <vtkIntArray.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkSOADataArrayTemplate.h>
#include <vtkStringArray.h>
#include <vtkStructuredGrid.h>
#include <vtkUnsignedCharArray.h>
#include <vtkUnstructuredGrid.h>

#include <array>
#include <cmath>
#include <numeric>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

using morrow_test::LiteralExtractEdges;

namespace {

using Ids = std::vector<vtkIdType>;
using Line = std::pair<vtkIdType, vtkIdType>;

vtkSmartPointer<vtkPoints> random_points(vtkIdType count, unsigned seed = 1)
{
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> coordinate(-1.0, 1.0);
  auto points = vtkSmartPointer<vtkPoints>::New();
  for (vtkIdType i = 0; i < count; ++i) {
    points->InsertNextPoint(coordinate(random), coordinate(random), coordinate(random));
  }
  return points;
}

vtkSmartPointer<vtkCellArray> cells_of(const std::vector<Ids>& cells, bool is_32_bit = false)
{
  auto array = vtkSmartPointer<vtkCellArray>::New();
  if (is_32_bit) {
    array->Use32BitStorage();
  }
  for (const Ids& ids : cells) {
    array->InsertNextCell(static_cast<vtkIdType>(ids.size()), ids.data());
  }
  return array;
}

/// Cell data with an array of every kind whose tuples tell them apart: tuple i holds what its number makes of
/// it.
void add_cell_data(vtkDataSet& data)
{
  const vtkIdType cells = data.GetNumberOfCells();
  vtkNew<vtkIntArray> number;
  number->SetName("number");
  vtkNew<vtkDoubleArray> vector;
  vector->SetName("vector");
  vector->SetNumberOfComponents(3);
  vtkNew<vtkUnsignedCharArray> colour;
  colour->SetName("colour");
  colour->SetNumberOfComponents(3);
  vtkNew<vtkUnsignedCharArray> odd;
  odd->SetName("odd size");
  odd->SetNumberOfComponents(5);
  vtkNew<vtkStringArray> text;
  text->SetName("text");
  vtkNew<vtkBitArray> bit;
  bit->SetName("bit");
  vtkNew<vtkSOADataArrayTemplate<float>> separate;
  separate->SetName("separate");
  separate->SetNumberOfComponents(2);
  for (vtkIdType i = 0; i < cells; ++i) {
    const auto value = static_cast<int>(i);
    number->InsertNextValue(value);
    vector->InsertNextTuple3(value, -value, value * 0.5);
    colour->InsertNextTuple3(value % 256, value / 256 % 256, 7);
    for (int k = 0; k < 5; ++k) {
      odd->InsertNextValue(static_cast<unsigned char>((value + k) % 256));
    }
    text->InsertNextValue(std::to_string(value));
    bit->InsertNextValue(value % 2);
    const std::array<float, 2> pair = {static_cast<float>(value), static_cast<float>(value * 2)};
    separate->InsertNextTypedTuple(pair.data());
  }
  for (vtkAbstractArray* array :
       std::initializer_list<vtkAbstractArray*>{number, vector, text, bit, separate, odd}) {
    data.GetCellData()->AddArray(array);
  }
  data.GetCellData()->SetScalars(colour);
}

vtkSmartPointer<vtkPolyData> poly_data(vtkIdType points, const std::vector<Ids>& verts,
                                       const std::vector<Ids>& lines, const std::vector<Ids>& polys,
                                       const std::vector<Ids>& strips = {}, bool is_32_bit = false)
{
  auto data = vtkSmartPointer<vtkPolyData>::New();
  data->SetPoints(random_points(points));
  data->SetVerts(cells_of(verts, is_32_bit));
  data->SetLines(cells_of(lines, is_32_bit));
  data->SetPolys(cells_of(polys, is_32_bit));
  data->SetStrips(cells_of(strips, is_32_bit));
  add_cell_data(*data);
  return data;
}

struct GridCell
{
  int type;
  Ids ids;
};

vtkSmartPointer<vtkUnstructuredGrid> grid_of(vtkIdType points, const std::vector<GridCell>& cells)
{
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  grid->SetPoints(random_points(points));
  grid->Allocate(static_cast<vtkIdType>(cells.size()));
  for (const GridCell& cell : cells) {
    grid->InsertNextCell(cell.type, static_cast<vtkIdType>(cell.ids.size()), cell.ids.data());
  }
  add_cell_data(*grid);
  return grid;
}

/// 0, 1, 2, …
Ids first_ids(int count)
{
  Ids ids(static_cast<std::size_t>(count));
  std::iota(ids.begin(), ids.end(), 0);
  return ids;
}

/// The filter holds the output; keep it as long as the answer is read.
vtkSmartPointer<vtkPolyData> extract(vtkDataSet* input)
{
  vtkNew<GExtractEdges> filter;
  filter->SetInputDataObject(input);
  filter->Update();
  return filter->GetOutput();
}

vtkSmartPointer<vtkPolyData> extract_literally(vtkPointSet* input)
{
  auto output = vtkSmartPointer<vtkPolyData>::New();
  LiteralExtractEdges::run(input, output);
  return output;
}

std::vector<Ids> cells_in(vtkCellArray* array)
{
  std::vector<Ids> cells;
  for (vtkIdType i = 0; i < array->GetNumberOfCells(); ++i) {
    vtkNew<vtkIdList> ids;
    array->GetCellAtId(i, ids);
    cells.emplace_back(ids->begin(), ids->end());
  }
  return cells;
}

/// The number of the source cell of each vertex and line.
std::vector<int> sources(vtkPolyData& output)
{
  auto* number = vtkIntArray::SafeDownCast(output.GetCellData()->GetArray("number"));
  std::vector<int> values;
  for (vtkIdType i = 0; i < number->GetNumberOfValues(); ++i) {
    values.push_back(number->GetValue(i));
  }
  return values;
}

void expect_same_arrays(vtkDataSetAttributes& actual, vtkDataSetAttributes& expected)
{
  ASSERT_EQ(actual.GetNumberOfArrays(), expected.GetNumberOfArrays());
  for (int i = 0; i < actual.GetNumberOfArrays(); ++i) {
    vtkAbstractArray* a = actual.GetAbstractArray(i);
    vtkAbstractArray* b = expected.GetAbstractArray(i);
    const std::string name = b->GetName() != nullptr ? b->GetName() : "(none)";
    EXPECT_EQ(a->GetName() != nullptr ? a->GetName() : "(none)", name);
    EXPECT_EQ(a->GetDataType(), b->GetDataType()) << name;
    ASSERT_EQ(a->GetNumberOfComponents(), b->GetNumberOfComponents()) << name;
    ASSERT_EQ(a->GetNumberOfTuples(), b->GetNumberOfTuples()) << name;
    EXPECT_EQ(actual.IsArrayAnAttribute(i), expected.IsArrayAnAttribute(i)) << name;
    for (vtkIdType v = 0; v < a->GetNumberOfValues(); ++v) {
      ASSERT_EQ(a->GetVariantValue(v).ToString(), b->GetVariantValue(v).ToString()) << name << " " << v;
    }
  }
}

void expect_as_literal(vtkPointSet* input)
{
  const auto expected = extract_literally(input);
  const auto actual = extract(input);
  EXPECT_EQ(actual->GetPoints(), input->GetPoints());
  EXPECT_EQ(cells_in(actual->GetVerts()), cells_in(expected->GetVerts()));
  EXPECT_EQ(cells_in(actual->GetLines()), cells_in(expected->GetLines()));
  expect_same_arrays(*actual->GetCellData(), *expected->GetCellData());
  expect_same_arrays(*actual->GetPointData(), *expected->GetPointData());
}

} // namespace

TEST(GExtractEdgesTest, ItsNamesAreThoseOfItsClasses)
{
  vtkNew<GExtractEdges> filter;
  EXPECT_STREQ(filter->GetClassName(), "GExtractEdges");
  for (const char* name : {"GExtractEdges", "vtkPolyDataAlgorithm", "vtkAlgorithm", "vtkObject"}) {
    EXPECT_TRUE(filter->IsA(name)) << name;
  }
  EXPECT_FALSE(filter->IsA("vtkExtractEdges"));
}

TEST(GExtractEdgesTest, PrintsItself)
{
  vtkNew<GExtractEdges> filter;
  std::ostringstream text;
  filter->Print(text);
  EXPECT_EQ(text.str().rfind("GExtractEdges", 0), 0U);
}

TEST(GExtractEdgesTest, TwoTrianglesThatShareAnEdgeGiveFiveLinesAndItHasTheDataOfTheFirst)
{
  const auto output = extract(poly_data(4, {}, {}, {{0, 1, 2}, {2, 1, 3}}));
  EXPECT_EQ(cells_in(output->GetLines()), (std::vector<Ids>{{0, 1}, {1, 2}, {2, 0}, {1, 3}, {3, 2}}));
  EXPECT_EQ(sources(*output), (std::vector<int>{0, 0, 0, 1, 1}));
}

TEST(GExtractEdgesTest, APolyVertexOfThreePointsGivesThreeVerticesAndTheLinesDataComesAfterThem)
{
  const auto output = extract(poly_data(6, {{3, 4, 5}}, {{0, 1}}, {}));
  EXPECT_EQ(cells_in(output->GetVerts()), (std::vector<Ids>{{3}, {4}, {5}}));
  EXPECT_EQ(cells_in(output->GetLines()), (std::vector<Ids>{{0, 1}}));
  EXPECT_EQ(sources(*output), (std::vector<int>{0, 0, 0, 1}));
}

TEST(GExtractEdgesTest, APolylineOfFourPointsGivesThreeLinesAndNoneMoreWhenItComesTwice)
{
  const auto once = extract(poly_data(4, {}, {{0, 1, 2, 3}}, {}));
  EXPECT_EQ(cells_in(once->GetLines()), (std::vector<Ids>{{0, 1}, {1, 2}, {2, 3}}));
  const auto twice = extract(poly_data(4, {}, {{0, 1, 2, 3}, {0, 1, 2, 3}}, {}));
  EXPECT_EQ(cells_in(twice->GetLines()), cells_in(once->GetLines()));
}

TEST(GExtractEdgesTest, AnEdgeThatComesBackwardsIsTheSame)
{
  const auto output = extract(poly_data(2, {}, {{1, 0}, {0, 1}}, {}));
  EXPECT_EQ(cells_in(output->GetLines()), (std::vector<Ids>{{1, 0}}));
}

TEST(GExtractEdgesTest, PointsWithoutCellsStayPointsOnly)
{
  vtkNew<vtkPolyData> input;
  input->SetPoints(random_points(3));
  vtkNew<vtkIntArray> array;
  array->SetName("on points");
  array->SetNumberOfTuples(3);
  array->FillValue(5);
  input->GetPointData()->AddArray(array);
  const auto output = extract(input);
  EXPECT_EQ(output->GetPoints(), input->GetPoints());
  EXPECT_EQ(output->GetPointData()->GetArray("on points"), array);
  EXPECT_EQ(output->GetNumberOfCells(), 0);
  EXPECT_EQ(output->GetCellData()->GetNumberOfArrays(), 0);
}

TEST(GExtractEdgesTest, NothingGivesNothing)
{
  vtkNew<vtkPolyData> data;
  EXPECT_EQ(extract(data)->GetNumberOfCells(), 0);
  vtkNew<vtkUnstructuredGrid> grid;
  EXPECT_EQ(extract(grid)->GetNumberOfCells(), 0);
  vtkNew<vtkStructuredGrid> structured;
  EXPECT_EQ(extract(structured)->GetNumberOfCells(), 0);
}

TEST(GExtractEdgesTest, AnImageIsAnErrorAndTheOutputIsEmpty)
{
  vtkNew<vtkImageData> image;
  image->SetDimensions(3, 3, 3);
  const morrow_test::ExpectedVtkErrors expected({"must be a point set"});
  EXPECT_EQ(extract(image)->GetNumberOfPoints(), 0);
}

TEST(GExtractEdgesTest, EveryKindOfPolygonDataIsAsTheLiteralOne)
{
  for (const bool is_32_bit : {false, true}) {
    expect_as_literal(poly_data(12, {{0}, {3, 3, 4}}, {{0, 1}, {5, 6, 7, 5}},
                                {{0, 1, 2}, {2, 1, 3, 4}, {4, 5, 6, 7, 8}, {8, 8, 8}},
                                {{0, 1, 2}, {2, 3, 4, 5, 6}, {7, 8, 9, 10}}, is_32_bit));
  }
}

TEST(GExtractEdgesTest, EveryKindOfLinearCellIsAsTheLiteralOne)
{
  expect_as_literal(grid_of(30, {{VTK_VERTEX, {1}},
                                 {VTK_TRIANGLE, {0, 1, 2}},
                                 {VTK_POLY_VERTEX, {4, 5}},
                                 {VTK_LINE, {0, 9}},
                                 {VTK_POLY_LINE, {1, 2, 3, 9}},
                                 {VTK_POLY_LINE, {1}},
                                 {VTK_TRIANGLE_STRIP, {1, 2, 3, 4, 5}},
                                 {VTK_TRIANGLE_STRIP, {11, 12}},
                                 {VTK_POLYGON, {3, 4, 5, 6, 7, 8}},
                                 {VTK_POLYGON, {13, 14}},
                                 {VTK_POLYGON, {15}},
                                 {VTK_PIXEL, {0, 1, 3, 2}},
                                 {VTK_QUAD, {0, 1, 2, 3}},
                                 {VTK_TETRA, {0, 1, 2, 3}},
                                 {VTK_VOXEL, {8, 9, 10, 11, 12, 13, 14, 15}},
                                 {VTK_HEXAHEDRON, {0, 1, 2, 3, 4, 5, 6, 7}},
                                 {VTK_WEDGE, {3, 4, 5, 6, 7, 8}},
                                 {VTK_PYRAMID, {8, 9, 10, 11, 12}},
                                 {VTK_PENTAGONAL_PRISM, {0, 2, 4, 6, 8, 10, 12, 14, 16, 18}},
                                 {VTK_HEXAGONAL_PRISM, {1, 3, 5, 7, 9, 11, 13, 15, 17, 19, 21, 23}},
                                 {VTK_CONVEX_POINT_SET, {20, 21, 22, 23, 24}},
                                 {VTK_EMPTY_CELL, {}}}));
}

TEST(GExtractEdgesTest, EveryKindOfHigherOrderCellIsAsTheLiteralOne)
{
  std::vector<GridCell> cells;
  const std::pair<int, int> kinds[] = {{VTK_QUADRATIC_EDGE, 3},
                                       {VTK_QUADRATIC_TRIANGLE, 6},
                                       {VTK_QUADRATIC_QUAD, 8},
                                       {VTK_BIQUADRATIC_QUAD, 9},
                                       {VTK_QUADRATIC_POLYGON, 10},
                                       {VTK_QUADRATIC_TETRA, 10},
                                       {VTK_QUADRATIC_HEXAHEDRON, 20},
                                       {VTK_TRIQUADRATIC_HEXAHEDRON, 27},
                                       {VTK_QUADRATIC_WEDGE, 15},
                                       {VTK_QUADRATIC_PYRAMID, 13},
                                       {VTK_CUBIC_LINE, 4},
                                       {VTK_LAGRANGE_TRIANGLE, 10},
                                       {VTK_LAGRANGE_QUADRILATERAL, 9}};
  vtkIdType next = 0;
  for (const auto& [type, count] : kinds) {
    GridCell cell{type, {}};
    for (int i = 0; i < count; ++i) {
      cell.ids.push_back((next++) % 60);
    }
    cells.push_back(cell);
    cells.push_back({VTK_TRIANGLE, {next % 60, (next + 1) % 60, (next + 2) % 60}});
  }
  expect_as_literal(grid_of(60, cells));
}

TEST(GExtractEdgesTest, CellsOfAnyDegreeAreAsTheLiteralOnes)
{
  const std::pair<int, int> kinds[] = {
      {VTK_LAGRANGE_CURVE, 2},         {VTK_LAGRANGE_CURVE, 5},        {VTK_LAGRANGE_TRIANGLE, 3},
      {VTK_LAGRANGE_TRIANGLE, 6},      {VTK_LAGRANGE_TRIANGLE, 7},     {VTK_LAGRANGE_TRIANGLE, 10},
      {VTK_LAGRANGE_QUADRILATERAL, 4}, {VTK_BEZIER_QUADRILATERAL, 16}, {VTK_LAGRANGE_TETRAHEDRON, 4},
      {VTK_LAGRANGE_TETRAHEDRON, 10},  {VTK_LAGRANGE_TETRAHEDRON, 15}, {VTK_BEZIER_TETRAHEDRON, 20},
      {VTK_LAGRANGE_HEXAHEDRON, 8},    {VTK_BEZIER_HEXAHEDRON, 27},    {VTK_LAGRANGE_WEDGE, 6},
      {VTK_LAGRANGE_WEDGE, 18},        {VTK_LAGRANGE_WEDGE, 21},       {VTK_BEZIER_WEDGE, 40}};
  for (const auto& [type, count] : kinds) {
    SCOPED_TRACE(std::to_string(type) + " of " + std::to_string(count));
    const auto grid = grid_of(40, {{type, first_ids(count)}});
    expect_as_literal(grid);
    EXPECT_EQ(extract(grid)->GetNumberOfLines() > 0,
              type != VTK_LAGRANGE_CURVE); // a curve has no edges in VTK
  }
}

TEST(GExtractEdgesTest, ACellHasTheDegreesThatItsDataSays)
{
  const auto grid = grid_of(6, {{VTK_LAGRANGE_QUADRILATERAL, first_ids(6)}});
  vtkNew<vtkDoubleArray> degrees;
  degrees->SetName("degrees");
  degrees->SetNumberOfComponents(3);
  degrees->InsertNextTuple3(2, 1, 1);
  grid->GetCellData()->SetHigherOrderDegrees(degrees);
  expect_as_literal(grid);
  EXPECT_EQ(extract(grid)->GetNumberOfLines(), 6);
  for (const double wrong : {0.0, 1.5, 3.0, -2.0, std::nan("")}) {
    degrees->SetComponent(0, 0, wrong);
    degrees->Modified();
    const morrow_test::ExpectedVtkErrors expected({"1 broken cells"});
    EXPECT_EQ(extract(grid)->GetNumberOfLines(), 0) << wrong;
  }
}

// VTK would read past the end of their points, and bring points that the input does not have.
TEST(GExtractEdgesTest, CellsThatHaveNotThePointsOfAnyDegreeAreLeftOutWithOneError)
{
  const std::pair<int, int> kinds[] = {{VTK_LAGRANGE_CURVE, 1},       {VTK_LAGRANGE_TRIANGLE, 1},
                                       {VTK_LAGRANGE_TRIANGLE, 5},    {VTK_LAGRANGE_QUADRILATERAL, 1},
                                       {VTK_BEZIER_QUADRILATERAL, 3}, {VTK_LAGRANGE_TETRAHEDRON, 2},
                                       {VTK_LAGRANGE_HEXAHEDRON, 7},  {VTK_BEZIER_HEXAHEDRON, 4},
                                       {VTK_LAGRANGE_WEDGE, 3},       {VTK_BEZIER_WEDGE, 7}};
  for (const auto& [type, count] : kinds) {
    SCOPED_TRACE(std::to_string(type) + " of " + std::to_string(count));
    const auto grid = grid_of(8, {{type, first_ids(count)}, {VTK_LINE, {0, 1}}});
    const morrow_test::ExpectedVtkErrors expected({"1 broken cells"});
    EXPECT_EQ(cells_in(extract(grid)->GetLines()), (std::vector<Ids>{{0, 1}}));
  }
}

TEST(GExtractEdgesTest, CellsWithoutATypeAreLeftOutWithOneError)
{
  vtkNew<vtkUnstructuredGrid> grid;
  grid->SetPoints(random_points(5));
  vtkNew<vtkUnsignedCharArray> types;
  types->InsertNextValue(VTK_TRIANGLE);
  grid->SetCells(types, cells_of({{0, 1, 2}, {1, 2, 3}, {2, 3, 4}}));
  const morrow_test::ExpectedVtkErrors expected({"2 broken cells"});
  EXPECT_EQ(cells_in(extract(grid)->GetLines()), (std::vector<Ids>{{0, 1}, {1, 2}, {2, 0}}));
}

// VTK counts -1 cells in such an array.
TEST(GExtractEdgesTest, AnArrayWithoutOffsetsHasNoCells)
{
  const auto data = poly_data(4, {}, {}, {{0, 1, 2}, {0, 1, 2}, {1, 2, 3}});
  vtkNew<vtkCellArray> nothing;
  nothing->SetData(vtkNew<vtkIdTypeArray>(), vtkNew<vtkIdTypeArray>());
  ASSERT_EQ(nothing->GetNumberOfCells(), -1);
  data->SetVerts(nothing);
  const auto output = extract(data);
  EXPECT_EQ(output->GetNumberOfVerts(), 0);
  EXPECT_EQ(sources(*output), (std::vector<int>{0, 0, 0, 2, 2}));
}

TEST(GExtractEdgesTest, APolyhedronIsAsTheLiteralOne)
{
  vtkNew<vtkUnstructuredGrid> grid;
  grid->SetPoints(random_points(5));
  const Ids faces = {3, 0, 1, 2, 3, 0, 1, 3, 3, 1, 2, 3, 3, 0, 2, 3};
  grid->InsertNextCell(VTK_POLYHEDRON, 4, faces.data());
  add_cell_data(*grid);
  expect_as_literal(grid);
}

TEST(GExtractEdgesTest, AStructuredGridIsAsTheLiteralOne)
{
  vtkNew<vtkStructuredGrid> grid;
  grid->SetDimensions(4, 3, 3);
  grid->SetPoints(random_points(36));
  add_cell_data(*grid);
  expect_as_literal(grid);
}

TEST(GExtractEdgesTest, RandomMeshesAreAsTheLiteralOne)
{
  for (unsigned seed = 1; seed <= 30; ++seed) {
    std::mt19937 random(seed);
    const vtkIdType points = 3 + seed * 2;
    const auto cells = [&](int count, unsigned least, unsigned most) {
      std::vector<Ids> made;
      for (int i = 0; i < count; ++i) {
        Ids ids(least + random() % (most - least + 1));
        for (vtkIdType& id : ids) {
          id = static_cast<vtkIdType>(random() % static_cast<unsigned>(points));
        }
        made.push_back(ids);
      }
      return made;
    };
    SCOPED_TRACE(seed);
    expect_as_literal(poly_data(points, cells(3, 1, 3), cells(5, 2, 5), cells(40, 3, 6), cells(5, 3, 6)));
  }
}

TEST(GExtractEdgesTest, CellsInsertedOneByOneInMixedOrderKeepTheirIds)
{
  vtkNew<vtkPolyData> data;
  data->SetPoints(random_points(8));
  data->AllocateEstimate(10, 4);
  const Ids triangle = {0, 1, 2};
  const Ids line = {4, 5};
  const Ids vertex = {7};
  const Ids quad = {2, 1, 3, 6};
  data->InsertNextCell(VTK_TRIANGLE, 3, triangle.data());
  data->InsertNextCell(VTK_LINE, 2, line.data());
  data->InsertNextCell(VTK_VERTEX, 1, vertex.data());
  data->InsertNextCell(VTK_QUAD, 4, quad.data());
  add_cell_data(*data);
  expect_as_literal(data);
  EXPECT_EQ(sources(*extract(data)), (std::vector<int>{2, 0, 0, 0, 1, 3, 3, 3}));
}

TEST(GExtractEdgesTest, DeletedCellsMakeNothing)
{
  const auto data = poly_data(6, {{5}}, {{0, 1}}, {{0, 1, 2}, {2, 1, 3}, {3, 1, 4}});
  data->BuildCells();
  data->DeleteCell(3);
  expect_as_literal(data);
  EXPECT_EQ(sources(*extract(data)), (std::vector<int>{0, 1, 2, 2, 4, 4, 4}));
}

TEST(GExtractEdgesTest, ADeletedCellAmongCellsOfOneKindMakesNothing)
{
  const auto data = poly_data(5, {}, {}, {{0, 1, 2}, {2, 1, 3}, {3, 1, 4}});
  data->BuildCells();
  data->DeleteCell(1);
  expect_as_literal(data);
  EXPECT_EQ(sources(*extract(data)), (std::vector<int>{0, 0, 0, 2, 2, 2}));
}

TEST(GExtractEdgesTest, BuiltCellsInTheOrderOfTheArraysAreTheSame)
{
  const auto data = poly_data(6, {{5}}, {{0, 1}}, {{0, 1, 2}, {2, 1, 3}, {3, 1, 4, 5}});
  data->BuildCells();
  expect_as_literal(data);
}

TEST(GExtractEdgesTest, PointDataIsPassedOn)
{
  const auto data = poly_data(4, {}, {}, {{0, 1, 2}});
  vtkNew<vtkDoubleArray> array;
  array->SetName("on points");
  array->SetNumberOfTuples(4);
  array->FillValue(1.5);
  data->GetPointData()->SetScalars(array);
  EXPECT_EQ(extract(data)->GetPointData()->GetScalars(), array);
}

TEST(GExtractEdgesTest, ACellDataArrayThatIsTooShortIsFilledUpWithZeros)
{
  const auto data = poly_data(5, {}, {{0, 1}, {1, 2}, {2, 3}}, {});
  vtkNew<vtkIntArray> brief;
  brief->SetName("brief");
  brief->InsertNextValue(11);
  brief->InsertNextValue(12);
  data->GetCellData()->AddArray(brief);
  vtkNew<vtkStringArray> words;
  words->SetName("words");
  words->InsertNextValue("first");
  data->GetCellData()->AddArray(words);
  const auto output = extract(data);
  vtkDataArray* numbers = output->GetCellData()->GetArray("brief");
  ASSERT_EQ(numbers->GetNumberOfTuples(), 3);
  EXPECT_EQ(numbers->GetTuple1(1), 12);
  EXPECT_EQ(numbers->GetTuple1(2), 0);
  auto* texts = vtkStringArray::SafeDownCast(output->GetCellData()->GetAbstractArray("words"));
  ASSERT_EQ(texts->GetNumberOfValues(), 3);
  EXPECT_EQ(texts->GetValue(0), "first");
  EXPECT_EQ(texts->GetValue(2), "");
}

TEST(GExtractEdgesTest, ArraysWithoutANameAreCarriedToo)
{
  const auto data = poly_data(3, {}, {{0, 1}, {1, 2}}, {});
  for (const int factor : {10, 100}) {
    vtkNew<vtkIntArray> nameless;
    nameless->InsertNextValue(factor);
    nameless->InsertNextValue(2 * factor);
    data->GetCellData()->AddArray(nameless);
  }
  expect_as_literal(data);
}

TEST(GExtractEdgesTest, BrokenCellsAreLeftOutWithOneError)
{
  const std::vector<GridCell> cells = {
      {VTK_TRIANGLE, {0, 1, 2}}, {VTK_TRIANGLE, {0, 1, 99}}, {VTK_TRIANGLE, {0, -1, 2}},
      {VTK_TRIANGLE, {0, 1}},    {VTK_QUAD, {0, 1, 2}},      {VTK_HEXAHEDRON, {0, 1, 2, 3}},
      {VTK_VERTEX, {4}},         {VTK_POLY_VERTEX, {1, 4}},  {VTK_QUADRATIC_TRIANGLE, {0, 1, 2}},
      {VTK_TRIANGLE_STRIP, {3}}, {VTK_LINE, {2, 3}}};
  const auto grid = grid_of(4, cells);
  const morrow_test::ExpectedVtkErrors expected({"9 broken cells"});
  const auto output = extract(grid);
  EXPECT_EQ(output->GetNumberOfVerts(), 0);
  EXPECT_EQ(cells_in(output->GetLines()), (std::vector<Ids>{{0, 1}, {1, 2}, {2, 0}, {2, 3}}));
}

TEST(GExtractEdgesTest, BrokenPolygonDataIsLeftOutWithOneError)
{
  vtkNew<vtkPolyData> data;
  data->SetPoints(random_points(4));
  data->SetVerts(cells_of({{}, {1}, {8}}));
  data->SetLines(cells_of({{}, {1}, {0, 7}, {0, 1}}));
  data->SetPolys(cells_of({{}, {1}, {0, 1}, {1, 2, 3}}));
  data->SetStrips(cells_of({{0, 1}}));
  const morrow_test::ExpectedVtkErrors expected({"9 broken cells"});
  const auto output = extract(data);
  EXPECT_EQ(cells_in(output->GetVerts()), (std::vector<Ids>{{1}}));
  EXPECT_EQ(cells_in(output->GetLines()), (std::vector<Ids>{{0, 1}, {1, 2}, {2, 3}, {3, 1}}));
}

TEST(GExtractEdgesTest, CoordinatesThatAreNoNumbersDoNotMatter)
{
  const auto data = poly_data(3, {}, {}, {{0, 1, 2}});
  data->GetPoints()->SetPoint(1, std::nan(""), INFINITY, 1e308);
  EXPECT_EQ(extract(data)->GetNumberOfLines(), 3);
}

namespace {

/// A strip of so many separate lines.
vtkSmartPointer<vtkPolyData> many_lines(vtkIdType count)
{
  std::vector<Ids> lines;
  for (vtkIdType i = 0; i < count; ++i) {
    lines.push_back({i, i + 1});
  }
  return poly_data(count + 1, {}, lines, {});
}

/// The progress values of a run, which is aborted at the value of this number.
struct ProgressLog
{
  std::vector<double> values;
  int abort_at = -1;

  void watch(GExtractEdges& filter)
  {
    mCommand->SetClientData(this);
    mCommand->SetCallback([](vtkObject* caller, unsigned long, void* self, void* value) {
      auto* log = static_cast<ProgressLog*>(self);
      if (static_cast<int>(log->values.size()) == log->abort_at) {
        static_cast<GExtractEdges*>(caller)->SetAbortExecute(1);
      }
      log->values.push_back(*static_cast<double*>(value));
    });
    filter.AddObserver(vtkCommand::ProgressEvent, mCommand);
  }

private:
  vtkNew<vtkCallbackCommand> mCommand;
};

} // namespace

TEST(GExtractEdgesTest, ReportsProgressEveryTenthOfTheCells)
{
  const auto data = many_lines(25);
  std::vector<double> expected;
  vtkNew<vtkPolyData> literal;
  LiteralExtractEdges::run(data, literal, [&](double part) {
    expected.push_back(part);
    return false;
  });
  vtkNew<GExtractEdges> filter;
  filter->SetInputData(data);
  ProgressLog log;
  log.watch(*filter);
  filter->Update();
  EXPECT_EQ(expected.size(), 9U); // every third cell of 25
  std::vector<double> own(log.values);
  own.erase(own.begin()); // VTK's own 0 before a run and 1 after it
  own.pop_back();
  EXPECT_EQ(own, expected);
}

TEST(GExtractEdgesTest, AnAbortStopsAfterTheCellAtWhichItIsSeenAndKeepsWhatThereIs)
{
  const auto data = many_lines(25);
  vtkNew<GExtractEdges> filter;
  filter->SetInputData(data);
  ProgressLog log;
  log.abort_at = 3; // VTK's own, then the cells 0, 3 and 6
  log.watch(*filter);
  filter->Update();
  EXPECT_EQ(filter->GetOutput()->GetNumberOfLines(), 7);
  EXPECT_EQ(sources(*filter->GetOutput()), (std::vector<int>{0, 1, 2, 3, 4, 5, 6}));
}

TEST(GExtractEdgesTest, RunsAgainWhenTheInputHasChanged)
{
  const auto data = poly_data(4, {}, {{0, 1}}, {});
  vtkNew<GExtractEdges> filter;
  filter->SetInputData(data);
  filter->Update();
  EXPECT_EQ(filter->GetOutput()->GetNumberOfLines(), 1);
  data->SetLines(cells_of({{0, 1}, {1, 2}}));
  data->Modified();
  filter->Update();
  EXPECT_EQ(filter->GetOutput()->GetNumberOfLines(), 2);
}

TEST(GExtractEdgesTest, TheInputStaysAsItIs)
{
  const auto data = poly_data(4, {{0}}, {{0, 1}}, {{0, 1, 2}, {2, 1, 3}});
  extract(data);
  EXPECT_EQ(cells_in(data->GetPolys()), (std::vector<Ids>{{0, 1, 2}, {2, 1, 3}}));
  EXPECT_EQ(data->GetNumberOfPoints(), 4);
  EXPECT_EQ(data->GetCellData()->GetArray("number")->GetNumberOfTuples(), 4);
}
