// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
//
// What the mesh viewer takes for the faces of a mesh and the edges between them.
#include "MeshFaces.h"

#include "TestSupport.h"

#include <gtest/gtest.h>

#include <vtkCellArray.h>
#include <vtkMath.h>
#include <vtkPolyData.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <set>
#include <vector>

namespace {

using namespace morrow_test;
using Ids = std::vector<vtkIdType>;
using Lists = std::vector<Ids>;
using Points = std::vector<std::array<double, 3>>;

vtkSmartPointer<vtkCellArray> cell_array(const Lists& lists)
{
  auto cells = vtkSmartPointer<vtkCellArray>::New();
  for (const Ids& list : lists) {
    cells->InsertNextCell(static_cast<vtkIdType>(list.size()), list.data());
  }
  return cells;
}

vtkSmartPointer<vtkPolyData> surface(const Points& coordinates, const Lists& polygons)
{
  vtkNew<vtkPoints> points;
  points->SetDataTypeToDouble();
  for (const auto& point : coordinates) {
    points->InsertNextPoint(point.data());
  }
  auto data = vtkSmartPointer<vtkPolyData>::New();
  data->SetPoints(points);
  data->SetPolys(cell_array(polygons));
  return data;
}

// The point at the corner x, y, z of the unit cube has the id x + 2 y + 4 z.
const Points kCorners = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 1, 0},
                         {0, 0, 1}, {1, 0, 1}, {0, 1, 1}, {1, 1, 1}};
const Lists kSides = {{0, 2, 3, 1}, {4, 5, 7, 6}, {0, 1, 5, 4}, {2, 6, 7, 3}, {0, 4, 6, 2}, {1, 3, 7, 5}};

/// Two unit squares of two triangles each; the second one is turned up about their common side by an angle.
vtkSmartPointer<vtkPolyData> folded(double degrees)
{
  const double x = 1.0 + std::cos(vtkMath::RadiansFromDegrees(degrees));
  const double z = std::sin(vtkMath::RadiansFromDegrees(degrees));
  return surface({{0, 0, 0}, {1, 0, 0}, {x, 0, z}, {0, 1, 0}, {1, 1, 0}, {x, 1, z}},
                 {{0, 1, 4}, {0, 4, 3}, {1, 2, 5}, {1, 5, 4}});
}

Ids faces_of_cells(const MeshFaces& faces, vtkIdType number_of_cells)
{
  Ids result;
  for (vtkIdType cell = 0; cell < number_of_cells; ++cell) {
    result.push_back(faces.face_of(cell));
  }
  return result;
}

/// The ends of each edge, the lower one first, and the faces that it is between, sorted.
std::multiset<std::pair<Ids, Ids>> edges_of(const MeshFaces& faces)
{
  std::multiset<std::pair<Ids, Ids>> edges;
  for (vtkIdType i = 0; i < faces.number_of_edges(); ++i) {
    const auto& [points, of] = faces.edge(i);
    const auto [low, high] = std::minmax(points.front(), points.back());
    edges.insert({{low, high}, of});
  }
  return edges;
}

// --- Faces -----------------------------------------------------------------------------------------------

TEST(MeshFacesTest, ACubeHasSixFacesAndTwelveEdges)
{
  const MeshFaces faces(*surface(kCorners, kSides));
  EXPECT_EQ(faces_of_cells(faces, 6), (Ids{0, 1, 2, 3, 4, 5}));
  EXPECT_EQ(faces.number_of_faces(), 6);
  const auto edges = edges_of(faces);
  ASSERT_EQ(edges.size(), 12U);
  EXPECT_EQ(edges.count({{0, 1}, {0, 2}}), 1U);
  EXPECT_EQ(edges.count({{6, 7}, {1, 3}}), 1U);
}

TEST(MeshFacesTest, NeighboursBelongTogetherBelowTheFeatureAngle)
{
  const MeshFaces below(*folded(29.9));
  EXPECT_EQ(faces_of_cells(below, 4), (Ids{0, 0, 0, 0}));
  EXPECT_EQ(below.cells_of(0), (Ids{0, 1, 2, 3}));
  const MeshFaces above(*folded(30.1));
  EXPECT_EQ(faces_of_cells(above, 4), (Ids{0, 0, 1, 1}));
  EXPECT_EQ(above.cells_of(1), (Ids{2, 3}));
  EXPECT_EQ(MeshFaces(*folded(-30.1)).number_of_faces(), 2);
  EXPECT_EQ(MeshFaces(*folded(179.0)).number_of_faces(), 2);
}

TEST(MeshFacesTest, OrientationDoesNotMatter)
{
  for (const double angle : {10.0, 50.0}) {
    auto data = folded(angle);
    const auto expected = faces_of_cells(MeshFaces(*data), 4);
    data->SetPolys(cell_array({{0, 1, 4}, {0, 4, 3}, {5, 2, 1}, {1, 5, 4}}));
    EXPECT_EQ(faces_of_cells(MeshFaces(*data), 4), expected) << angle;
  }
}

TEST(MeshFacesTest, PointsAtOnePlaceCountAsOne)
{
  auto data =
      surface({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 0, 0}, {1, 1, 0}, {-0.0, 1, 0}}, {{0, 1, 2}, {3, 4, 5}});
  const MeshFaces faces(*data);
  EXPECT_EQ(faces.number_of_faces(), 1);
  ASSERT_EQ(faces.number_of_edges(), 1) << "the border";
  EXPECT_EQ(faces.edge(0).points, (Ids{0, 1, 4, 2, 0})) << "the lowest ids";
}

TEST(MeshFacesTest, FacesEndWhereThreePolygonsMeet)
{
  // Two squares in a plane, and one that stands on their common side.
  const MeshFaces faces(
      *surface({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {0, 1, 0}, {1, 1, 0}, {2, 1, 0}, {1, 0, 1}, {1, 1, 1}},
               {{0, 1, 4, 3}, {1, 2, 5, 4}, {1, 6, 7, 4}}));
  EXPECT_EQ(faces_of_cells(faces, 3), (Ids{0, 1, 2}));
  const std::multiset<std::pair<Ids, Ids>> expected = {
      {{1, 4}, {0}}, {{1, 4}, {1}}, {{1, 4}, {2}}, {{1, 4}, {0, 1, 2}}};
  EXPECT_EQ(edges_of(faces), expected) << "borders go on round corners of one face";
}

TEST(MeshFacesTest, CellsAreNumberedAsTheSurfaceDoes)
{
  auto data = folded(0.0);
  data->SetVerts(cell_array({{0}}));
  data->SetLines(cell_array({{0, 1}}));
  const MeshFaces faces(*data);
  EXPECT_EQ(faces_of_cells(faces, 6), (Ids{-1, -1, 0, 0, 0, 0}));
  EXPECT_EQ(faces.cells_of(0), (Ids{2, 3, 4, 5}));
  for (const vtkIdType wrong : {vtkIdType(-1), vtkIdType(6), VTK_ID_MAX, VTK_ID_MIN}) {
    EXPECT_EQ(faces.face_of(wrong), -1) << wrong;
  }
}

TEST(MeshFacesTest, AStripIsOneCellAndMayBeCreased)
{
  auto data = folded(0.0);
  data->SetPolys(cell_array({}));
  data->SetStrips(cell_array({{0, 3, 1, 4, 2, 5}}));
  const MeshFaces flat(*data);
  EXPECT_EQ(faces_of_cells(flat, 1), (Ids{0}));
  EXPECT_EQ(flat.cells_of(0), (Ids{0}));
  EXPECT_EQ(flat.number_of_edges(), 1) << "its border";
  data = folded(60.0);
  data->SetPolys(cell_array({}));
  data->SetStrips(cell_array({{0, 3, 1, 4, 2, 5}}));
  const MeshFaces creased(*data);
  EXPECT_EQ(creased.number_of_faces(), 1);
  EXPECT_EQ(edges_of(creased).count({{1, 4}, {0, 0}}), 1U);
}

// --- Edges -----------------------------------------------------------------------------------------------

TEST(MeshFacesTest, EdgesAreLinesFromCornerToCorner)
{
  const MeshFaces faces(*folded(60.0));
  const std::multiset<std::pair<Ids, Ids>> expected = {{{1, 4}, {0}}, {{1, 4}, {0, 1}}, {{1, 4}, {1}}};
  EXPECT_EQ(edges_of(faces), expected);
  for (vtkIdType i = 0; i < 3; ++i) {
    const auto& [points, of] = faces.edge(i);
    Ids middle(points.begin() + 1, points.end() - 1);
    EXPECT_EQ(points.size(), of.size() == 2 ? 2U : 4U);
    EXPECT_EQ(middle.size() == 2 && std::abs(middle[0] - middle[1]) == 3, of.size() == 1)
        << "neighbours along the border follow each other";
  }
}

/// The sides of a prism of so many squares around, without lids.
vtkSmartPointer<vtkPolyData> tube(vtkIdType count)
{
  Points points;
  Lists squares;
  for (vtkIdType i = 0; i < count; ++i) {
    const double angle = 2.0 * vtkMath::Pi() * static_cast<double>(i) / static_cast<double>(count);
    points.push_back({std::cos(angle), std::sin(angle), 0.0});
    points.push_back({std::cos(angle), std::sin(angle), 1.0});
    const vtkIdType next = (i + 1) % count;
    squares.push_back({2 * i, 2 * next, 2 * next + 1, 2 * i + 1});
  }
  return surface(points, squares);
}

TEST(MeshFacesTest, ARoundTubeIsOneFaceBetweenTwoClosedEdges)
{
  const MeshFaces faces(*tube(24));
  EXPECT_EQ(faces.number_of_faces(), 1);
  ASSERT_EQ(faces.number_of_edges(), 2);
  for (vtkIdType i = 0; i < 2; ++i) {
    const Ids& points = faces.edge(i).points;
    EXPECT_EQ(faces.edge(i).faces, (Ids{0}));
    ASSERT_EQ(points.size(), 25U);
    EXPECT_EQ(points.front(), points.back());
    EXPECT_EQ(std::set<vtkIdType>(points.begin(), points.end()).size(), 24U);
    for (std::size_t j = 0; j + 1 < points.size(); ++j) {
      const vtkIdType step = std::abs(points[j] - points[j + 1]);
      EXPECT_TRUE(step == 2 || step == 46) << step;
    }
  }
}

TEST(MeshFacesTest, ACreaseThatEndsInsideOfAFaceHasItOnBothSides)
{
  // A fan about a point on the ground: seven triangles go round flat, two stand up between them as a roof
  // whose ridge ends at the point.
  Points points = {{0, 0, 0}};
  Lists triangles;
  const vtkIdType count = 8;
  for (vtkIdType i = 0; i < count; ++i) {
    const double angle = vtkMath::RadiansFromDegrees(45.0 * static_cast<double>(i));
    points.push_back({std::cos(angle), std::sin(angle), i == 0 ? 0.3 : 0.0});
    triangles.push_back({0, 1 + i, 1 + (i + 1) % count});
  }
  const MeshFaces faces(*surface(points, triangles));
  EXPECT_EQ(faces.number_of_faces(), 1);
  EXPECT_EQ(edges_of(faces).count({{0, 1}, {0, 0}}), 1U);
}

// --- Polygons that are none ------------------------------------------------------------------------------

TEST(MeshFacesTest, PolygonsWithoutAreaDoNotComeBetween)
{
  // The middle of the common side of both squares lies on it, in a triangle without area.
  for (const double angle : {0.0, 60.0}) {
    auto data = folded(angle);
    data->GetPoints()->InsertNextPoint(1.0, 0.5, 0.0);
    data->SetPolys(cell_array({{1, 6, 4}, {0, 1, 4}, {0, 4, 3}, {1, 2, 6}, {6, 2, 5}, {6, 5, 4}}));
    const MeshFaces faces(*data);
    const Ids cells = faces_of_cells(faces, 6);
    EXPECT_EQ(faces.number_of_faces(), angle == 0.0 ? 1 : 2);
    EXPECT_EQ(cells[1], cells[2]);
    EXPECT_EQ(cells[3], cells[4]);
    EXPECT_EQ(cells[3], cells[5]);
    EXPECT_TRUE(cells[0] == cells[1] || cells[0] == cells[3]);
  }
}

TEST(MeshFacesTest, CollapsedPolygonsBelongToNoFace)
{
  auto data = folded(0.0);
  data->SetPolys(
      cell_array({{0, 1, 4}, {1, 4, 1}, {0, 4, 3}, {0, 4, 0, 4}, {1, 2, 5}, {2, 2, 2}, {1, 5, 4}}));
  const MeshFaces faces(*data);
  EXPECT_EQ(faces_of_cells(faces, 7), (Ids{0, -1, 0, -1, 0, -1, 0}));
  EXPECT_EQ(faces.number_of_edges(), 1);
}

TEST(MeshFacesTest, SurfacesWithoutPolygonsHaveNoFaces)
{
  const MeshFaces nothing(*surface({}, {}));
  EXPECT_EQ(nothing.number_of_faces(), 0);
  EXPECT_EQ(nothing.number_of_edges(), 0);
  vtkNew<vtkPolyData> without_points;
  EXPECT_EQ(MeshFaces(*without_points).number_of_faces(), 0);
  auto alone = surface(kCorners, {{0, 1, 2}});
  EXPECT_EQ(edges_of(MeshFaces(*alone)).size(), 1U) << "one closed border";
}

TEST(MeshFacesTest, PolygonsOnTopOfEachOtherAreFacesOfTheirOwn)
{
  const MeshFaces faces(*surface(kCorners, {{0, 1, 2}, {0, 1, 2}, {2, 1, 0}}));
  EXPECT_EQ(faces.number_of_faces(), 3);
  EXPECT_EQ(edges_of(faces).begin()->second, (Ids{0, 1, 2}));
}

// --- All of it -------------------------------------------------------------------------------------------

/// A height field with ridges and noise, of squares with mixed orientations.
vtkSmartPointer<vtkPolyData> landscape(vtkIdType side)
{
  Points points;
  Lists squares;
  unsigned int noise = 1;
  for (vtkIdType i = 0; i < side * side; ++i) {
    noise = noise * 1664525U + 1013904223U;
    const double height = static_cast<double>(noise >> 24U) / 256.0;
    points.push_back({static_cast<double>(i % side), static_cast<double>(i / side), height});
    if (i % side > 0 && i / side > 0) {
      squares.push_back({i, i - 1, i - side - 1, i - side});
      if (noise % 3 == 0) {
        std::reverse(squares.back().begin(), squares.back().end());
      }
    }
  }
  return surface(points, squares);
}

TEST(MeshFacesTest, EachCellIsInOneFaceAndEachFeatureInOneEdge)
{
  constexpr vtkIdType kSide = 40;
  const MeshFaces faces(*landscape(kSide));
  std::multiset<vtkIdType> cells;
  for (vtkIdType face = 0; face < faces.number_of_faces(); ++face) {
    ASSERT_FALSE(faces.cells_of(face).empty());
    for (const vtkIdType cell : faces.cells_of(face)) {
      EXPECT_EQ(faces.face_of(cell), face);
      cells.insert(cell);
    }
  }
  EXPECT_EQ(cells.size(), std::size_t((kSide - 1) * (kSide - 1)));
  EXPECT_GT(faces.number_of_faces(), 10);

  std::set<std::pair<vtkIdType, vtkIdType>> segments;
  std::size_t borders = 0;
  for (vtkIdType i = 0; i < faces.number_of_edges(); ++i) {
    const auto& [points, of] = faces.edge(i);
    for (std::size_t j = 0; j + 1 < points.size(); ++j) {
      EXPECT_TRUE(segments.insert(std::minmax(points[j], points[j + 1])).second) << "twice";
      borders += of.size() == 1 ? 1U : 0U;
    }
  }
  EXPECT_EQ(borders, std::size_t(4 * (kSide - 1)));
}

} // namespace
