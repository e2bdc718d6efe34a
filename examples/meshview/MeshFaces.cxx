// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "MeshFaces.h"

#include "PolygonSides.h"

#include <vtkCellArray.h>
#include <vtkCellArrayIterator.h>
#include <vtkMath.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkPolygon.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <numeric>
#include <unordered_map>
#include <utility>

namespace {

using Vector = std::array<double, 3>;

std::size_t index(vtkIdType id)
{
  return static_cast<std::size_t>(id);
}

// --- Points at the same place

struct HashOfPlace
{
  std::size_t operator()(const Vector& place) const noexcept
  {
    std::size_t hash = 0;
    for (const double coordinate : place) {
      hash = hash * 1'000'003 + std::hash<double>()(coordinate);
    }
    return hash ^ (hash >> 29U);
  }
};

/// For each point the first one at its place.
std::vector<vtkIdType> first_points(vtkPolyData& surface)
{
  std::vector<vtkIdType> firsts(index(surface.GetNumberOfPoints()));
  std::unordered_map<Vector, vtkIdType, HashOfPlace> points_at;
  points_at.reserve(firsts.size());
  for (vtkIdType point = 0; point < surface.GetNumberOfPoints(); ++point) {
    Vector place;
    surface.GetPoint(point, place.data());
    firsts[index(point)] = points_at.emplace(place, point).first->second;
  }
  return firsts;
}

// --- Facets

/// A polygon, or a triangle of a strip.
struct Facet
{
  vtkIdType cell;
  Vector normal; ///< of length 1, or 0 when it has no area
};

struct Facets
{
  std::vector<Facet> list;
  std::vector<PolygonSide> sides; ///< those of one edge together
};

class FacetMaker
{
public:
  explicit FacetMaker(vtkPolyData& surface) : mSurface(surface), mFirstPoints(first_points(surface)) {}

  Facets make()
  {
    vtkIdType cell = mSurface.GetNumberOfVerts() + mSurface.GetNumberOfLines();
    for_each_cell(*mSurface.GetPolys(),
                  [&](const vtkIdType* corners, vtkIdType count) { add(corners, count, cell++); });
    for_each_cell(*mSurface.GetStrips(),
                  [&](const vtkIdType* corners, vtkIdType count) { add_strip(corners, count, cell++); });
    sort_sides(mFacets.sides, mSurface.GetNumberOfPoints());
    return std::move(mFacets);
  }

private:
  template<class Visit>
  static void for_each_cell(vtkCellArray& cells, const Visit& visit)
  {
    const auto cell = vtk::TakeSmartPointer(cells.NewIterator());
    for (cell->GoToFirstCell(); !cell->IsDoneWithTraversal(); cell->GoToNextCell()) {
      vtkIdType count = 0;
      const vtkIdType* corners = nullptr;
      cell->GetCurrentCell(count, corners);
      visit(corners, count);
    }
  }

  /// To a line or a point: it would only come between its neighbours.
  static bool has_collapsed(std::vector<vtkIdType> corners)
  {
    std::sort(corners.begin(), corners.end());
    return std::unique(corners.begin(), corners.end()) - corners.begin() < 3;
  }

  void add(const vtkIdType* corners, vtkIdType count, vtkIdType cell)
  {
    mCorners.clear();
    for (vtkIdType i = 0; i < count; ++i) {
      mCorners.push_back(mFirstPoints[index(corners[i])]);
    }
    if (has_collapsed(mCorners)) {
      return;
    }
    Facet facet = {cell, {}};
    vtkPolygon::ComputeNormal(mSurface.GetPoints(), static_cast<int>(count), corners, facet.normal.data());
    add_sides(mCorners.data(), count, mFacets.list.size(), mFacets.sides);
    mFacets.list.push_back(facet);
  }

  void add_strip(const vtkIdType* corners, vtkIdType count, vtkIdType cell)
  {
    for (vtkIdType i = 0; i + 2 < count; ++i) {
      add(corners + i, 3, cell);
    }
  }

  vtkPolyData& mSurface;
  std::vector<vtkIdType> mFirstPoints;
  std::vector<vtkIdType> mCorners;
  Facets mFacets;
};

bool has_area(const Facet& facet)
{
  return facet.normal != Vector{};
}

/// The neighbour's normal as a would have it, if both had one orientation.
Vector normal_across(const Facets& facets, const PolygonSide& a, const PolygonSide& neighbour)
{
  Vector normal = facets.list[neighbour.polygon].normal;
  if (a.is_upwards == neighbour.is_upwards) {
    vtkMath::MultiplyScalar(normal.data(), -1.0);
  }
  return normal;
}

/// Facets without area face what a neighbour faces, and so on from neighbour to neighbour.
void borrow_normals(Facets& facets)
{
  std::unordered_multimap<std::size_t, std::pair<PolygonSide, PolygonSide>> borrowers; // by their neighbour
  std::vector<std::size_t> lenders;
  for_each_edge(facets.sides, [&](auto first, auto last) {
    for (int i = 0; i < 2 && last - first == 2; ++i) {
      const PolygonSide& lender = first[i];
      const PolygonSide& borrower = first[1 - i];
      if (!has_area(facets.list[borrower.polygon])) {
        borrowers.emplace(lender.polygon, std::make_pair(lender, borrower));
        if (has_area(facets.list[lender.polygon])) {
          lenders.push_back(lender.polygon);
        }
      }
    }
  });
  for (std::size_t i = 0; i < lenders.size(); ++i) {
    const auto [begin, end] = borrowers.equal_range(lenders[i]);
    for (auto pair = begin; pair != end; ++pair) {
      const auto& [lender, borrower] = pair->second;
      Facet& facet = facets.list[borrower.polygon];
      if (!has_area(facet)) {
        facet.normal = normal_across(facets, borrower, lender);
        lenders.push_back(borrower.polygon);
      }
    }
  }
}

/// Do these sides of one edge belong to one face?
bool is_smooth(const Facets& facets, std::vector<PolygonSide>::const_iterator first,
               std::vector<PolygonSide>::const_iterator last)
{
  static const double kCosine = std::cos(vtkMath::RadiansFromDegrees(kFeatureAngle));
  if (last - first != 2) {
    return false;
  }
  const Vector normal = normal_across(facets, first[0], first[1]);
  return first[0].polygon == first[1].polygon ||
         vtkMath::Dot(facets.list[first[0].polygon].normal.data(), normal.data()) > kCosine;
}

// --- Faces

/// Cells that have been found to belong together. Each group is known by its lowest cell.
class CellGroups
{
public:
  explicit CellGroups(vtkIdType number_of_cells) : mParents(index(number_of_cells))
  {
    std::iota(mParents.begin(), mParents.end(), vtkIdType(0));
  }

  vtkIdType lowest(vtkIdType cell)
  {
    while (mParents[index(cell)] != cell) {
      vtkIdType& parent = mParents[index(cell)];
      parent = mParents[index(parent)];
      cell = parent;
    }
    return cell;
  }

  void join(vtkIdType a, vtkIdType b)
  {
    const auto [low, high] = std::minmax({lowest(a), lowest(b)});
    mParents[index(high)] = low;
  }

private:
  std::vector<vtkIdType> mParents;
};

CellGroups group_cells(const Facets& facets, vtkIdType number_of_cells)
{
  CellGroups groups(number_of_cells);
  for_each_edge(facets.sides, [&](auto first, auto last) {
    if (is_smooth(facets, first, last)) {
      groups.join(facets.list[first[0].polygon].cell, facets.list[first[1].polygon].cell);
    }
  });
  return groups;
}

// --- Edges

/// A side of polygons that is part of an edge.
struct Segment
{
  std::pair<vtkIdType, vtkIdType> ends;
  std::vector<vtkIdType> faces; ///< as MeshFaces::Edge has them
  bool is_used = false;
};

std::vector<Segment> find_segments(const Facets& facets, const std::vector<vtkIdType>& face_of_cell)
{
  std::vector<Segment> segments;
  for_each_edge(facets.sides, [&](auto first, auto last) {
    if (is_smooth(facets, first, last)) {
      return;
    }
    Segment segment = {first->ends, {}};
    for (auto side = first; side != last; ++side) {
      segment.faces.push_back(face_of_cell[index(facets.list[side->polygon].cell)]);
    }
    std::sort(segment.faces.begin(), segment.faces.end());
    segments.push_back(std::move(segment));
  });
  return segments;
}

/// Joins segments to lines.
class LineMaker
{
public:
  LineMaker(std::vector<Segment> segments, vtkIdType number_of_points)
      : mSegments(std::move(segments)), mMeetings(index(number_of_points))
  {
    for (std::size_t i = 0; i < mSegments.size(); ++i) {
      meet(mSegments[i].ends.first, i);
      meet(mSegments[i].ends.second, i);
    }
  }

  std::vector<MeshFaces::Edge> make()
  {
    std::vector<MeshFaces::Edge> lines;
    for (std::size_t i = 0; i < mSegments.size(); ++i) {
      if (!mSegments[i].is_used) {
        lines.push_back({line_through(i), mSegments[i].faces});
      }
    }
    return lines;
  }

private:
  /// The segments that meet at a point.
  struct Meeting
  {
    std::size_t count = 0;
    std::array<std::size_t, 2> segments = {}; ///< the first of them
  };

  void meet(vtkIdType point, std::size_t segment)
  {
    Meeting& meeting = mMeetings[index(point)];
    if (meeting.count < 2) {
      meeting.segments[meeting.count] = segment;
    }
    ++meeting.count;
  }

  /// The unused segment that goes on from this one at the point; none where the line ends.
  Segment* next(std::size_t& segment, vtkIdType point)
  {
    const Meeting& meeting = mMeetings[index(point)];
    if (meeting.count != 2) {
      return nullptr;
    }
    const std::size_t other = meeting.segments[meeting.segments[0] == segment ? 1 : 0];
    const bool goes_on = !mSegments[other].is_used && mSegments[other].faces == mSegments[segment].faces;
    segment = other;
    return goes_on ? &mSegments[other] : nullptr;
  }

  /// Appends the points of the line that goes on from the segment at the point.
  void follow(std::size_t segment, vtkIdType point, std::vector<vtkIdType>& points)
  {
    while (Segment* further = next(segment, point)) {
      further->is_used = true;
      point = further->ends.first == point ? further->ends.second : further->ends.first;
      points.push_back(point);
    }
  }

  std::vector<vtkIdType> line_through(std::size_t segment)
  {
    mSegments[segment].is_used = true;
    const auto [first, second] = mSegments[segment].ends;
    std::vector<vtkIdType> points = {first, second};
    follow(segment, second, points);
    if (points.back() != first) { // it has not come back
      std::reverse(points.begin(), points.end());
      follow(segment, first, points);
    }
    return points;
  }

  std::vector<Segment> mSegments;
  std::vector<Meeting> mMeetings; // by point
};

} // namespace

MeshFaces::MeshFaces(vtkPolyData& surface) : mFaceOfCell(index(surface.GetNumberOfCells()), -1)
{
  Facets facets = FacetMaker(surface).make();
  borrow_normals(facets);
  CellGroups groups = group_cells(facets, surface.GetNumberOfCells());
  for (const Facet& facet : facets.list) { // in ascending order of their cells
    const vtkIdType lowest = groups.lowest(facet.cell);
    vtkIdType& face = mFaceOfCell[index(lowest)];
    if (face < 0) {
      face = number_of_faces();
      mFaces.emplace_back();
    }
    std::vector<vtkIdType>& cells = mFaces[index(face)];
    if (cells.empty() || cells.back() != facet.cell) { // a strip has several facets
      cells.push_back(facet.cell);
    }
    mFaceOfCell[index(facet.cell)] = face;
  }
  mEdges = LineMaker(find_segments(facets, mFaceOfCell), surface.GetNumberOfPoints()).make();
}

vtkIdType MeshFaces::face_of(vtkIdType cell) const noexcept
{
  const bool is_cell = cell >= 0 && index(cell) < mFaceOfCell.size();
  return is_cell ? mFaceOfCell[index(cell)] : -1;
}
