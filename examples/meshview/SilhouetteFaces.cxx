// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "SilhouetteFaces.h"

#include "PolygonSides.h"

#include <vtkCellArray.h>
#include <vtkCellArrayIterator.h>
#include <vtkMath.h>
#include <vtkNew.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkPolygon.h>

#include <array>
#include <utility>
#include <vector>

namespace {

constexpr double kInOnePlane = 1.0 - 1e-7; // cosine of the angle between normals: 0.03 degrees

using Vector = std::array<double, 3>;

Vector point_at(vtkPoints& points, vtkIdType id)
{
  Vector point;
  points.GetPoint(id, point.data());
  return point;
}

/// What a polygon faces.
struct Face
{
  std::array<vtkIdType, 3> corners; ///< that turn as all of the polygon does
  Vector normal;
};

/// The corner farthest on the inner side of the edge; -1 if the polygon has none there.
vtkIdType find_apex(vtkPoints& points, vtkIdType from, vtkIdType to, const Vector& normal,
                    const vtkIdType* corners, vtkIdType size)
{
  const Vector start = point_at(points, from);
  const Vector end = point_at(points, to);
  Vector along;
  Vector inwards;
  vtkMath::Subtract(end.data(), start.data(), along.data());
  vtkMath::Cross(normal.data(), along.data(), inwards.data());
  vtkIdType apex = -1;
  double farthest = 0.0;
  for (vtkIdType i = 0; i < size; ++i) {
    Vector corner = point_at(points, corners[i]);
    vtkMath::Subtract(corner.data(), start.data(), corner.data());
    const double distance = vtkMath::Dot(corner.data(), inwards.data());
    if (distance > farthest) {
      farthest = distance;
      apex = corners[i];
    }
  }
  return apex;
}

/// Without corners, all -1, if the polygon has no area.
Face make_face(vtkPoints& points, const vtkIdType* corners, vtkIdType size)
{
  Face face = {{-1, -1, -1}, {}};
  vtkPolygon::ComputeNormal(&points, static_cast<int>(size), corners, face.normal.data());
  for (vtkIdType i = 0; i + 1 < size; ++i) {
    const vtkIdType apex = find_apex(points, corners[i], corners[i + 1], face.normal, corners, size);
    if (apex >= 0) {
      face.corners = {corners[i], corners[i + 1], apex};
      break;
    }
  }
  return face;
}

struct Mesh
{
  std::vector<Face> faces;
  std::vector<PolygonSide> sides; ///< of the faces; those of one edge lie together, in the order of the faces
};

void add_polygon(vtkPoints& points, const vtkIdType* corners, vtkIdType size, Mesh& mesh)
{
  const Face face = make_face(points, corners, size);
  if (face.corners[0] < 0) {
    return;
  }
  add_sides(corners, size, mesh.faces.size(), mesh.sides);
  mesh.faces.push_back(face);
}

Mesh make_mesh(vtkPolyData& polygons)
{
  Mesh mesh;
  const auto polygon = vtk::TakeSmartPointer(polygons.GetPolys()->NewIterator());
  for (polygon->GoToFirstCell(); !polygon->IsDoneWithTraversal(); polygon->GoToNextCell()) {
    vtkIdType size = 0;
    const vtkIdType* corners = nullptr;
    polygon->GetCurrentCell(size, corners);
    add_polygon(*polygons.GetPoints(), corners, size, mesh);
  }
  sort_sides(mesh.sides, polygons.GetNumberOfPoints());
  return mesh;
}

/// Makes the polygons that the mapper looks at. All of one face begin with the same three points, so that
/// rounding, which decides where it is seen edge-on, takes them for the same side.
class PolygonMaker
{
public:
  PolygonMaker(const Mesh& mesh, vtkPoints& points)
      : mMesh(mesh), mFrom(points), mCorners(mesh.faces.size(), {-1, -1})
  {
    mPoints->SetDataType(points.GetDataType());
  }

  /// Two polygons at the edge that face one side when these faces do, as if they had one orientation.
  void add(const PolygonSide& a, const PolygonSide& b)
  {
    const auto [from, to] = copy_ends(a);
    add(corners_of(a.polygon, false), from, to);
    add(corners_of(b.polygon, a.is_upwards == b.is_upwards), from, to);
  }

  [[nodiscard]] vtkSmartPointer<vtkPolyData> result() const
  {
    auto faces = vtkSmartPointer<vtkPolyData>::New();
    faces->SetPoints(mPoints);
    faces->SetPolys(mPolygons);
    return faces;
  }

private:
  vtkIdType copy(vtkIdType point) { return mPoints->InsertNextPoint(point_at(mFrom, point).data()); }

  /// Lines get one direction whatever the ids are, as their pixels depend on it.
  std::pair<vtkIdType, vtkIdType> copy_ends(const PolygonSide& side)
  {
    auto [from, to] = side.ends;
    if (point_at(mFrom, to) < point_at(mFrom, from)) {
      std::swap(from, to);
    }
    from = copy(from);
    return {from, copy(to)};
  }

  /// The first of three points, of which those of either orientation are different ones.
  vtkIdType corners_of(std::size_t face, bool is_reversed)
  {
    vtkIdType& first = mCorners[face][is_reversed ? 1 : 0];
    if (first < 0) {
      const auto& [a, b, c] = mMesh.faces[face].corners;
      first = copy(is_reversed ? c : a);
      copy(b);
      copy(is_reversed ? a : c);
    }
    return first;
  }

  void add(vtkIdType corners, vtkIdType from, vtkIdType to)
  {
    const vtkIdType polygon[] = {corners, corners + 1, corners + 2, from, to};
    mPolygons->InsertNextCell(5, polygon);
  }

  const Mesh& mMesh;
  vtkPoints& mFrom;
  vtkNew<vtkPoints> mPoints;
  vtkNew<vtkCellArray> mPolygons;
  std::vector<std::array<vtkIdType, 2>> mCorners; // by face; -1 where there are none yet
};

/// As if the faces had one orientation.
bool in_one_plane(const Mesh& mesh, const PolygonSide& a, const PolygonSide& b)
{
  const double cosine =
      vtkMath::Dot(mesh.faces[a.polygon].normal.data(), mesh.faces[b.polygon].normal.data());
  return (a.is_upwards != b.is_upwards ? cosine : -cosine) > kInOnePlane;
}

} // namespace

vtkSmartPointer<vtkPolyData> silhouette_faces(vtkPolyData& polygons)
{
  const Mesh mesh = make_mesh(polygons);
  if (mesh.faces.empty()) {
    return vtkSmartPointer<vtkPolyData>::New();
  }
  PolygonMaker maker(mesh, *polygons.GetPoints());
  for_each_edge(mesh.sides, [&](auto first, auto last) {
    if (last - first != 2) {
      maker.add(*first, *first);
    } else if (!in_one_plane(mesh, first[0], first[1])) {
      maker.add(first[0], first[1]);
    }
  });
  return maker.result();
}
