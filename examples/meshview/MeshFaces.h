// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <vtkType.h> // vtkIdType

#include <cstddef>
#include <vector>

class vtkPolyData;

/// Two polygons that meet at this angle or a larger one, in degrees, meet at an edge.
constexpr double kFeatureAngle = 30.0;

/// The faces of a block's surface, as a designer would name them, and the edges between these.
///
/// A face is a connected group of polygons and strips, where two of them are connected by a side that they
/// alone have, and meet there at less than kFeatureAngle. An edge is a line of the other sides: borders,
/// creases, and where more than two polygons meet. It goes on as long as it lies between the same faces, and
/// ends where more lines than two meet.
///
/// Neither depends on the orientation of the polygons, and points at the very same place count as one. A
/// polygon without area belongs to the face of a neighbour. All ids are those of the surface, whose array
/// id_array_name() may tell those of the mesh. Found in time that is proportional to the size of the surface.
class MeshFaces
{
public:
  /// A line between faces.
  struct Edge
  {
    /// The points along the line, two at least; of a closed line the first one is also the last. Where
    /// points are at the same place, the one with the lowest id.
    std::vector<vtkIdType> points;

    /// The face of each polygon along the line, in ascending order: of a border one, of a crease two, which
    /// are the same where the crease ends inside of a face.
    std::vector<vtkIdType> faces;
  };

  /// The surface's ids must be good, as those of a MeshBlock are. It is not kept.
  explicit MeshFaces(vtkPolyData& surface);

  /// In ascending order of their first cells.
  [[nodiscard]] vtkIdType number_of_faces() const noexcept { return static_cast<vtkIdType>(mFaces.size()); }

  /// In an order that the surface alone decides.
  [[nodiscard]] vtkIdType number_of_edges() const noexcept { return static_cast<vtkIdType>(mEdges.size()); }

  /// The face that a cell belongs to; -1 for vertices and lines, and ids that are no cell's.
  [[nodiscard]] vtkIdType face_of(vtkIdType cell) const noexcept;

  /// The cells of a face in ascending order. face: 0 to number_of_faces() - 1.
  [[nodiscard]] const std::vector<vtkIdType>& cells_of(vtkIdType face) const
  {
    return mFaces[static_cast<std::size_t>(face)];
  }

  /// edge: 0 to number_of_edges() - 1.
  [[nodiscard]] const Edge& edge(vtkIdType edge) const { return mEdges[static_cast<std::size_t>(edge)]; }

private:
  std::vector<vtkIdType> mFaceOfCell;
  std::vector<std::vector<vtkIdType>> mFaces;
  std::vector<Edge> mEdges;
};
