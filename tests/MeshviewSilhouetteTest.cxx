// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
//
// What the mesh viewer has its silhouettes found in.
#include "SilhouetteFaces.h"

#include "TestSupport.h"

#include <gtest/gtest.h>

#include <vtkCellArray.h>
#include <vtkMath.h>
#include <vtkPolyData.h>
#include <vtkPolygon.h>

#include <array>
#include <limits>
#include <utility>
#include <vector>

namespace {

using namespace morrow_test;
using Polygons = std::vector<std::vector<vtkIdType>>;

/// The triangle 0 1 2 in the plane z = 0, and points above and beside it.
vtkSmartPointer<vtkPolyData> polygons(const Polygons& lists)
{
  vtkNew<vtkPoints> points;
  const double coordinates[][3] = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0.2, 0.2, 1}, {1, -1, 0}, {2, 0, 0}};
  for (const auto& point : coordinates) {
    points->InsertNextPoint(point);
  }
  vtkNew<vtkCellArray> cells;
  for (const std::vector<vtkIdType>& list : lists) {
    cells->InsertNextCell(static_cast<vtkIdType>(list.size()), list.data());
  }
  auto data = vtkSmartPointer<vtkPolyData>::New();
  data->SetPoints(points);
  data->SetPolys(cells);
  return data;
}

vtkIdType number_of_edges(const Polygons& lists)
{
  return silhouette_faces(*polygons(lists))->GetNumberOfPolys() / 2;
}

/// Of the first three corners, which tell what a polygon faces.
std::array<double, 3> normal_of(vtkPolyData& faces, vtkIdType polygon)
{
  vtkNew<vtkIdList> corners;
  faces.GetCellPoints(polygon, corners);
  std::array<double, 3> normal = {};
  vtkPolygon::ComputeNormal(faces.GetPoints(), 3, corners->GetPointer(0), normal.data());
  return normal;
}

/// Cosine of the angle between both polygons of an edge.
double cosine(vtkPolyData& faces, vtkIdType edge)
{
  const auto a = normal_of(faces, 2 * edge);
  const auto b = normal_of(faces, 2 * edge + 1);
  return vtkMath::Dot(a.data(), b.data());
}

const Polygons kTetrahedron = {{0, 2, 1}, {0, 1, 3}, {1, 2, 3}, {2, 0, 3}};

TEST(MeshviewSilhouetteTest, EachEdgeHasPointsOfItsOwn)
{
  const auto faces = silhouette_faces(*polygons(kTetrahedron));
  EXPECT_EQ(faces->GetNumberOfPolys(), 2 * 6);
  EXPECT_EQ(faces->GetNumberOfPoints(), 2 * 6 + 3 * 4) << "both ends, and three corners of each face";
}

TEST(MeshviewSilhouetteTest, OrientationOfNeighboursDoesNotMatter)
{
  const auto expected = silhouette_faces(*polygons(kTetrahedron));
  Polygons turned = kTetrahedron;
  std::swap(turned[1][0], turned[1][1]);
  const auto faces = silhouette_faces(*polygons(turned));
  ASSERT_EQ(faces->GetNumberOfPolys(), expected->GetNumberOfPolys());
  for (vtkIdType edge = 0; edge < 6; ++edge) {
    EXPECT_NEAR(cosine(*faces, edge), cosine(*expected, edge), 1e-12) << edge;
  }
}

TEST(MeshviewSilhouetteTest, EdgesInAPlaneAreLeftOut)
{
  EXPECT_EQ(number_of_edges({{0, 1, 2}, {1, 0, 4}}), 4) << "the four borders";
  EXPECT_EQ(number_of_edges({{0, 1, 2}, {0, 1, 4}}), 4) << "also if one is turned over";
  EXPECT_EQ(number_of_edges({{0, 1, 2}, {1, 0, 3}}), 5);
}

// Both polygons of such an edge are one, seen from either side.
TEST(MeshviewSilhouetteTest, BordersAndEdgesOfThreeAreAlwaysGiven)
{
  const auto border = silhouette_faces(*polygons({{0, 1, 2}}));
  ASSERT_EQ(border->GetNumberOfPolys(), 2 * 3);
  for (vtkIdType edge = 0; edge < 3; ++edge) {
    EXPECT_NEAR(cosine(*border, edge), -1.0, 1e-12);
  }
  const auto three = silhouette_faces(*polygons({{0, 1, 2}, {0, 1, 3}, {1, 0, 4}}));
  ASSERT_EQ(three->GetNumberOfPolys(), 2 * 7);
  EXPECT_NEAR(cosine(*three, 0), -1.0, 1e-12);
}

TEST(MeshviewSilhouetteTest, PolygonsWithoutAreaCountAsAbsent)
{
  EXPECT_EQ(number_of_edges({{0, 1, 5}}), 0) << "on a line";
  EXPECT_EQ(number_of_edges({{0, 1}, {3}, {0, 0, 0}}), 0);
  EXPECT_EQ(number_of_edges({{0, 1, 2}, {1, 0, 5}}), 3);
  EXPECT_EQ(number_of_edges({}), 0);
  vtkNew<vtkPolyData> empty;
  EXPECT_EQ(silhouette_faces(*empty)->GetNumberOfPolys(), 0);
}

TEST(MeshviewSilhouetteTest, CoordinatesThatAreNotNumbersGiveNothing)
{
  const auto data = polygons({{0, 1, 2}});
  data->GetPoints()->SetPoint(1, std::numeric_limits<double>::quiet_NaN(), 0, 0);
  EXPECT_EQ(silhouette_faces(*data)->GetNumberOfPolys(), 0);
}

// The first three points of this one turn the other way.
TEST(MeshviewSilhouetteTest, ConcavePolygonsFaceTheirOwnWay)
{
  const auto faces = silhouette_faces(*polygons({{5, 1, 2, 4}}));
  ASSERT_EQ(faces->GetNumberOfPolys(), 2 * 4);
  for (vtkIdType edge = 0; edge < 4; ++edge) {
    EXPECT_NEAR(normal_of(*faces, 2 * edge)[2], 1.0, 1e-12);
    EXPECT_NEAR(normal_of(*faces, 2 * edge + 1)[2], -1.0, 1e-12);
  }
}

} // namespace
