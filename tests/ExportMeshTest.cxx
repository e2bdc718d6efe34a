// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "ExportMesh.h"

#include "ViewFixture.h"

#include <vtkCellArray.h>
#include <vtkDoubleArray.h>
#include <vtkFloatArray.h>
#include <vtkIdList.h>
#include <vtkMatrix4x4.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkUnsignedCharArray.h>

#include <limits>
#include <vector>

namespace {

using namespace morrow_test;
using morrow::ExportMesh;
using morrow::MeshColors;

using Cells = std::vector<std::vector<vtkIdType>>;

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

vtkSmartPointer<vtkCellArray> cell_array(const Cells& cells)
{
  auto array = vtkSmartPointer<vtkCellArray>::New();
  for (const auto& cell : cells) {
    array->InsertNextCell(static_cast<vtkIdType>(cell.size()), cell.data());
  }
  return array;
}

Cells cells_of(vtkCellArray* array)
{
  Cells cells;
  const vtkNew<vtkIdList> ids;
  for (vtkIdType i = 0; i < array->GetNumberOfCells(); ++i) {
    array->GetCellAtId(i, ids);
    cells.emplace_back(ids->begin(), ids->end());
  }
  return cells;
}

/// Points (i, 0, 0), but for i = 2 mod 3, which is (i, 1, 0).
vtkSmartPointer<vtkPolyData> mesh_of(int num_points)
{
  const vtkNew<vtkPoints> points;
  for (int i = 0; i < num_points; ++i) {
    points->InsertNextPoint(i, i % 3 == 2 ? 1.0 : 0.0, 0.0);
  }
  auto mesh = vtkSmartPointer<vtkPolyData>::New();
  mesh->SetPoints(points);
  return mesh;
}

ExportMesh export_of(vtkPolyData* mesh, const MeshColors& colors = {})
{
  return morrow::make_export_mesh(*mesh, *vtkNew<vtkMatrix4x4>(), colors);
}

std::vector<double> point(vtkPolyData* mesh, vtkIdType id)
{
  std::vector<double> p(3);
  mesh->GetPoint(id, p.data());
  return p;
}

using Coordinates = std::vector<double>;

TEST(ExportMeshTest, OfNothingIsNothing)
{
  for (const auto& mesh : {vtkSmartPointer<vtkPolyData>::New(), mesh_of(3)}) {
    const ExportMesh parts = export_of(mesh);
    EXPECT_EQ(parts.faces, nullptr);
    EXPECT_EQ(parts.lines, nullptr);
    EXPECT_EQ(parts.vertices, nullptr);
  }
}

TEST(ExportMeshTest, HasEachKindOfCellInAPartOfItsOwn)
{
  const auto mesh = mesh_of(6);
  mesh->SetVerts(cell_array({{0}, {1, 2}}));
  mesh->SetLines(cell_array({{3, 4, 5}}));
  mesh->SetPolys(cell_array({{0, 1, 2}, {3, 4, 5}}));
  const ExportMesh parts = export_of(mesh);
  EXPECT_EQ(cells_of(parts.vertices->GetVerts()), (Cells{{0, 1, 2}}));
  EXPECT_EQ(parts.vertices->GetNumberOfCells(), 1);
  EXPECT_EQ(cells_of(parts.lines->GetLines()), (Cells{{0, 1, 2}}));
  EXPECT_EQ(parts.lines->GetNumberOfPoints(), 3); // those that no line uses are left out
  EXPECT_EQ(point(parts.lines, 0), (Coordinates{3, 0, 0}));
  EXPECT_EQ(cells_of(parts.faces->GetPolys()), (Cells{{0, 1, 2}, {3, 4, 5}}));
}

TEST(ExportMeshTest, SharesPointsAsTheMeshDoes)
{
  const auto mesh = mesh_of(4);
  mesh->SetPolys(cell_array({{0, 1, 2}, {2, 1, 3}}));
  EXPECT_EQ(cells_of(export_of(mesh).faces->GetPolys()), (Cells{{0, 1, 2}, {2, 1, 3}}));
}

TEST(ExportMeshTest, KeepsPolygonsOfManyCorners)
{
  const auto mesh = mesh_of(7);
  mesh->SetPolys(cell_array({{0, 1, 2, 3, 4, 5, 6}}));
  EXPECT_EQ(cells_of(export_of(mesh).faces->GetPolys()), (Cells{{0, 1, 2, 3, 4, 5, 6}}));
}

TEST(ExportMeshTest, TurnsStripsIntoTrianglesOfOneOrientation)
{
  const auto mesh = mesh_of(5);
  mesh->SetStrips(cell_array({{0, 1, 2, 3, 4}}));
  EXPECT_EQ(cells_of(export_of(mesh).faces->GetPolys()), (Cells{{0, 1, 2}, {2, 1, 3}, {2, 3, 4}}));
}

TEST(ExportMeshTest, HasStripsBesidePolygons)
{
  const auto mesh = mesh_of(6);
  mesh->SetPolys(cell_array({{0, 1, 2}}));
  mesh->SetStrips(cell_array({{3, 4, 5}}));
  EXPECT_EQ(cells_of(export_of(mesh).faces->GetPolys()), (Cells{{0, 1, 2}, {3, 4, 5}}));
}

TEST(ExportMeshTest, DropsCellsWithTooFewPoints)
{
  const auto mesh = mesh_of(3);
  mesh->SetVerts(cell_array({{}}));
  mesh->SetLines(cell_array({{}, {0}}));
  mesh->SetPolys(cell_array({{}, {0}, {0, 1}}));
  mesh->SetStrips(cell_array({{}, {0, 1}}));
  const ExportMesh parts = export_of(mesh);
  EXPECT_EQ(parts.faces, nullptr);
  EXPECT_EQ(parts.lines, nullptr);
  EXPECT_EQ(parts.vertices, nullptr);
}

TEST(ExportMeshTest, DropsCellsWithAPointThatDoesNotExist)
{
  const auto mesh = mesh_of(3);
  mesh->SetVerts(cell_array({{-1, 0, 3}}));
  mesh->SetLines(cell_array({{0, 1, 3, 2}}));
  mesh->SetPolys(cell_array({{0, 1, 3}, {0, 1, -1}, {0, 1, 2000000000}, {0, 1, 2}}));
  const ExportMesh parts = export_of(mesh);
  EXPECT_EQ(cells_of(parts.vertices->GetVerts()), (Cells{{0}}));
  EXPECT_EQ(cells_of(parts.lines->GetLines()), (Cells{{0, 1}}));
  EXPECT_EQ(cells_of(parts.faces->GetPolys()), (Cells{{0, 1, 2}}));
}

TEST(ExportMeshTest, DropsCellsWithAPointThatIsNotFinite)
{
  for (const double bad : {NaN, HUGE_VAL, -HUGE_VAL}) {
    const auto mesh = mesh_of(6);
    mesh->GetPoints()->SetPoint(1, 0.0, bad, 0.0);
    mesh->SetVerts(cell_array({{0, 1, 2}}));
    mesh->SetPolys(cell_array({{0, 1, 2}, {3, 4, 5}}));
    const ExportMesh parts = export_of(mesh);
    EXPECT_EQ(parts.vertices->GetNumberOfPoints(), 2);
    EXPECT_EQ(parts.faces->GetNumberOfPoints(), 3);
    EXPECT_EQ(parts.faces->GetNumberOfPolys(), 1);
  }
}

TEST(ExportMeshTest, InterruptsLinesAtAPointThatIsNotFinite)
{
  const auto mesh = mesh_of(7);
  mesh->GetPoints()->SetPoint(2, NaN, 0.0, 0.0);
  mesh->GetPoints()->SetPoint(5, NaN, 0.0, 0.0);
  mesh->SetLines(cell_array({{0, 1, 2, 3, 4, 5, 6}}));
  const ExportMesh parts = export_of(mesh);
  EXPECT_EQ(cells_of(parts.lines->GetLines()), (Cells{{0, 1}, {2, 3}}));
  EXPECT_EQ(point(parts.lines, 2), (Coordinates{3, 0, 0}));
}

TEST(ExportMeshTest, DropsPointsThatTheMatrixSendsToInfinity)
{
  const auto mesh = mesh_of(3);
  mesh->SetPolys(cell_array({{0, 1, 2}}));
  const vtkNew<vtkMatrix4x4> matrix;
  matrix->SetElement(0, 0, 1e308);
  matrix->SetElement(0, 1, 1e308);
  matrix->SetElement(0, 3, 1e308);
  EXPECT_EQ(morrow::make_export_mesh(*mesh, *matrix, {}).faces, nullptr);
  matrix->Zero();
  EXPECT_EQ(morrow::make_export_mesh(*mesh, *matrix, {}).faces, nullptr);
}

TEST(ExportMeshTest, PlacesPointsByTheWholeMatrix)
{
  const auto mesh = mesh_of(3);
  mesh->SetPolys(cell_array({{0, 1, 2}}));
  const vtkNew<vtkMatrix4x4> matrix; // x' = -y + 10, y' = 2 x + 20, z' = 30
  const double rows[16] = {0, -1, 0, 10, 2, 0, 0, 20, 0, 0, 1, 30, 0, 0, 0, 1};
  matrix->DeepCopy(rows);
  const auto faces = morrow::make_export_mesh(*mesh, *matrix, {}).faces;
  EXPECT_EQ(point(faces, 0), (Coordinates{10, 20, 30}));
  EXPECT_EQ(point(faces, 1), (Coordinates{10, 22, 30}));
  EXPECT_EQ(point(faces, 2), (Coordinates{9, 24, 30}));
}

TEST(ExportMeshTest, KeepsDoublePrecision)
{
  const auto mesh = mesh_of(3);
  mesh->GetPoints()->SetDataTypeToDouble();
  mesh->GetPoints()->SetNumberOfPoints(3);
  for (int i = 0; i < 3; ++i) {
    mesh->GetPoints()->SetPoint(i, 1e7 + 0.125 * i, i == 2 ? 1.0 : 0.0, 0.1);
  }
  mesh->SetPolys(cell_array({{0, 1, 2}}));
  EXPECT_EQ(point(export_of(mesh).faces, 1), (Coordinates{1e7 + 0.125, 0.0, 0.1}));
}

TEST(ExportMeshTest, TurnsMirroredFacesRoundButNotTheirNormals)
{
  const auto mesh = mesh_of(3);
  mesh->SetPolys(cell_array({{0, 1, 2}}));
  const vtkNew<vtkFloatArray> normals;
  normals->SetNumberOfComponents(3);
  for (int i = 0; i < 3; ++i) {
    normals->InsertNextTuple3(0.0, 0.0, 1.0);
  }
  mesh->GetPointData()->SetNormals(normals);
  const vtkNew<vtkMatrix4x4> matrix;
  matrix->SetElement(0, 0, -1.0);
  const auto faces = morrow::make_export_mesh(*mesh, *matrix, {}).faces;
  EXPECT_EQ(cells_of(faces->GetPolys()), (Cells{{2, 1, 0}}));
  EXPECT_EQ(faces->GetPointData()->GetNormals()->GetComponent(0, 2), 1.0);
}

TEST(ExportMeshTest, PlacesNormalsByTheInverseTranspose)
{
  const auto mesh = mesh_of(3);
  mesh->SetPolys(cell_array({{0, 1, 2}}));
  const vtkNew<vtkFloatArray> normals;
  normals->SetNumberOfComponents(3);
  normals->InsertNextTuple3(1.0, 1.0, 0.0);
  normals->InsertNextTuple3(NaN, 0.0, 0.0);
  normals->InsertNextTuple3(0.0, 0.0, 0.0);
  mesh->GetPointData()->SetNormals(normals);
  const vtkNew<vtkMatrix4x4> matrix;
  matrix->SetElement(0, 0, 2.0); // the plane's normal becomes (1/2, 1, 0)
  const auto faces = morrow::make_export_mesh(*mesh, *matrix, {}).faces;
  vtkDataArray* placed = faces->GetPointData()->GetNormals();
  EXPECT_NEAR(placed->GetComponent(0, 0), 1.0 / std::sqrt(5.0), 1e-12);
  EXPECT_NEAR(placed->GetComponent(0, 1), 2.0 / std::sqrt(5.0), 1e-12);
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(placed->GetComponent(1, i), 0.0);
    EXPECT_EQ(placed->GetComponent(2, i), 0.0);
  }
}

TEST(ExportMeshTest, FlattenedFacesKeepAFiniteNormal)
{
  const auto mesh = mesh_of(3);
  mesh->SetPolys(cell_array({{0, 1, 2}}));
  const vtkNew<vtkFloatArray> normals;
  normals->SetNumberOfComponents(3);
  normals->SetNumberOfTuples(3);
  normals->FillComponent(0, 0.0);
  normals->FillComponent(1, 0.6);
  normals->FillComponent(2, 0.8);
  mesh->GetPointData()->SetNormals(normals);
  const vtkNew<vtkMatrix4x4> matrix;
  matrix->SetElement(2, 2, 0.0);
  const auto faces = morrow::make_export_mesh(*mesh, *matrix, {}).faces;
  vtkDataArray* placed = faces->GetPointData()->GetNormals();
  EXPECT_EQ(placed->GetComponent(0, 0), 0.0);
  EXPECT_EQ(placed->GetComponent(0, 1), 0.0);
  EXPECT_EQ(placed->GetComponent(0, 2), 1.0);
}

// VTK refuses them, but not an array that grows a component later.
TEST(ExportMeshTest, TakesThreeComponentsOfNormalsThatHaveMore)
{
  const auto mesh = mesh_of(3);
  mesh->SetPolys(cell_array({{0, 1, 2}}));
  const vtkNew<vtkFloatArray> normals;
  normals->SetNumberOfComponents(3);
  mesh->GetPointData()->SetNormals(normals);
  normals->SetNumberOfComponents(400);
  normals->SetNumberOfTuples(3);
  normals->Fill(17.0);
  for (vtkIdType i = 0; i < 3; ++i) {
    normals->SetComponent(i, 0, 0.0);
    normals->SetComponent(i, 1, 0.6);
    normals->SetComponent(i, 2, 0.8);
  }
  const ExportMesh parts = export_of(mesh);
  vtkDataArray* placed = parts.faces->GetPointData()->GetNormals();
  ASSERT_NE(placed, nullptr);
  ASSERT_EQ(placed->GetNumberOfComponents(), 3);
  EXPECT_NEAR(placed->GetComponent(2, 2), 0.8, 1e-6);
}

TEST(ExportMeshTest, GivesTwoTextureCoordinatesToFacesOnly)
{
  for (const int components : {1, 2, 3}) {
    const auto mesh = mesh_of(3);
    mesh->SetPolys(cell_array({{0, 1, 2}}));
    mesh->SetLines(cell_array({{0, 1}}));
    const vtkNew<vtkFloatArray> tcoords;
    tcoords->SetNumberOfComponents(components);
    tcoords->SetNumberOfTuples(3);
    tcoords->Fill(0.5);
    tcoords->SetComponent(1, 0, NaN);
    mesh->GetPointData()->SetTCoords(tcoords);
    const ExportMesh parts = export_of(mesh);
    EXPECT_EQ(parts.lines->GetPointData()->GetTCoords(), nullptr);
    vtkDataArray* taken = parts.faces->GetPointData()->GetTCoords();
    ASSERT_EQ(taken->GetNumberOfComponents(), 2);
    EXPECT_EQ(taken->GetComponent(0, 0), 0.5);
    EXPECT_EQ(taken->GetComponent(0, 1), components == 1 ? 0.0 : 0.5);
    EXPECT_EQ(taken->GetComponent(1, 0), 0.0);
  }
}

TEST(ExportMeshTest, PassesOverAttributesThatAreTooShort)
{
  const auto mesh = mesh_of(3);
  mesh->SetPolys(cell_array({{0, 1, 2}}));
  const vtkNew<vtkFloatArray> two;
  two->SetNumberOfComponents(3);
  two->SetNumberOfTuples(2);
  two->Fill(0.5);
  mesh->GetPointData()->SetNormals(two);
  mesh->GetPointData()->SetTCoords(two);
  const auto faces = export_of(mesh).faces;
  EXPECT_EQ(faces->GetPointData()->GetNormals(), nullptr);
  EXPECT_EQ(faces->GetPointData()->GetTCoords(), nullptr);
}

// --- Colours ---------------------------------------------------------------------------------------------

vtkSmartPointer<vtkUnsignedCharArray> greys(int count)
{
  auto colors = vtkSmartPointer<vtkUnsignedCharArray>::New();
  colors->SetNumberOfComponents(4);
  for (int i = 0; i < count; ++i) {
    colors->InsertNextTuple4(i, i, i, 255);
  }
  return colors;
}

std::vector<int> reds(vtkPolyData* part)
{
  std::vector<int> values;
  vtkDataArray* scalars = part->GetPointData()->GetScalars();
  for (vtkIdType i = 0; i < scalars->GetNumberOfTuples(); ++i) {
    values.push_back(static_cast<int>(scalars->GetComponent(i, 0)));
  }
  return values;
}

TEST(ExportMeshTest, TakesColoursOfPointsAlong)
{
  const auto mesh = mesh_of(6);
  mesh->SetVerts(cell_array({{0}}));
  mesh->SetLines(cell_array({{1, 2}}));
  mesh->SetPolys(cell_array({{3, 5, 4}}));
  const auto colors = greys(6);
  const ExportMesh parts = export_of(mesh, {colors, false});
  EXPECT_EQ(reds(parts.lines), (std::vector<int>{1, 2}));
  EXPECT_EQ(reds(parts.faces), (std::vector<int>{3, 5, 4}));
  EXPECT_EQ(parts.vertices->GetPointData()->GetScalars(), nullptr);
}

TEST(ExportMeshTest, GivesEachColouredCellPointsOfItsOwn)
{
  const auto mesh = mesh_of(4);
  mesh->SetVerts(cell_array({{0}}));            // colour 0
  mesh->SetLines(cell_array({{0, 1}, {1, 2}})); // 1 and 2
  mesh->SetPolys(cell_array({{0, 1, 2}}));      // 3
  mesh->SetStrips(cell_array({{0, 1, 2, 3}}));  // 4, for both triangles
  const auto colors = greys(5);
  const ExportMesh parts = export_of(mesh, {colors, true});
  EXPECT_EQ(cells_of(parts.lines->GetLines()), (Cells{{0, 1}, {2, 3}}));
  EXPECT_EQ(reds(parts.lines), (std::vector<int>{1, 1, 2, 2}));
  EXPECT_EQ(cells_of(parts.faces->GetPolys()), (Cells{{0, 1, 2}, {3, 4, 5}, {6, 7, 8}}));
  EXPECT_EQ(reds(parts.faces), (std::vector<int>{3, 3, 3, 4, 4, 4, 4, 4, 4}));
}

TEST(ExportMeshTest, MakesWhiteWhereColoursAreMissing)
{
  const auto mesh = mesh_of(6);
  mesh->SetPolys(cell_array({{0, 1, 2}, {3, 4, 5}}));
  EXPECT_EQ(reds(export_of(mesh, {greys(2), false}).faces), (std::vector<int>{0, 1, 255, 255, 255, 255}));
  EXPECT_EQ(reds(export_of(mesh, {greys(1), true}).faces), (std::vector<int>{0, 0, 0, 255, 255, 255}));
}

TEST(ExportMeshTest, TakesTimeInProportionToTheCells)
{
  const int count = 300000; // in time squared this would not end
  const auto mesh = mesh_of(count);
  const vtkNew<vtkCellArray> triangles;
  for (vtkIdType i = 0; i + 2 < count; i += 3) {
    triangles->InsertNextCell({i, i + 1, i + 2});
  }
  mesh->SetPolys(triangles);
  EXPECT_EQ(export_of(mesh, {greys(count / 3), true}).faces->GetNumberOfPoints(), count);
}

} // namespace
