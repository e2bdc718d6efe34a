// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>
#include <vector>

class vtkMatrix4x4;
class vtkPolyData;

namespace morrow {

/// Finds the edges where polygons that face the eye meet polygons that do not, without knowing which polygons
/// are neighbours.
///
/// The polygons are visited in their order. Each marks its points as belonging to a front or a back face,
/// after the turning direction of its first three points on the screen, and gives those of its edges both of
/// whose points belong to an earlier polygon that faces the other way. So the edges depend on the order of
/// the polygons, and an edge between two such points may be given though no polygon of the other side has it.
///
/// Scratch memory is kept from call to call: nothing is allocated once the sizes have been seen.
class SilhouetteFinder
{
public:
  /// Fills out with x, y, z of both ends of edge after edge, 6 floats each, in the polygons' coordinates. The
  /// matrix takes them to clip space. A polygon with fewer than three points, or with points that the data
  /// does not have, counts as absent.
  void find(const vtkMatrix4x4& matrix, vtkPolyData& data, std::vector<float>& out);

  /// Of a point on the screen.
  struct Position
  {
    float x;
    float y;
  };

private:
  template<typename Points>
  void project_all(const vtkMatrix4x4& matrix, const Points& points, std::size_t count);
  template<typename Points, typename Id>
  void walk(const Points& points, const Id* offsets, const Id* ids, std::size_t id_count, std::size_t cells,
            std::vector<float>& out);

  // Both by point.
  std::vector<Position> mPositions; // on the screen
  std::vector<unsigned char> mSides;
};

} // namespace morrow
