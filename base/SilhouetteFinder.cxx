// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "SilhouetteFinder.h"

#include <algorithm>

#include <vtkCellArray.h>
#include <vtkDoubleArray.h>
#include <vtkFloatArray.h>
#include <vtkMatrix4x4.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>

namespace morrow {

namespace {

// A point may be both.
constexpr unsigned char Front = 1;
constexpr unsigned char Back = 2;

/// Points of any other type than float and double.
class AnyPoints
{
public:
  explicit AnyPoints(vtkPoints& points) : mPoints(&points) {}

  /// Coordinate number i of all coordinates of all points.
  double operator[](std::size_t i) const
  {
    double point[3];
    mPoints->GetPoint(static_cast<vtkIdType>(i / 3), point);
    return point[i % 3];
  }

private:
  vtkPoints* mPoints;
};

/// Calls use with the coordinates of all points, one after another.
template<typename Use>
void with_coordinates(vtkPoints& points, Use&& use)
{
  if (auto* floats = vtkFloatArray::SafeDownCast(points.GetData())) {
    use(static_cast<const float*>(floats->GetPointer(0)));
  } else if (auto* doubles = vtkDoubleArray::SafeDownCast(points.GetData())) {
    use(static_cast<const double*>(doubles->GetPointer(0)));
  } else {
    use(AnyPoints(points));
  }
}

template<typename Points>
void append(std::vector<float>& out, const Points& points, std::size_t id)
{
  for (std::size_t i = 3 * id; i < 3 * id + 3; ++i) {
    out.push_back(static_cast<float>(points[i]));
  }
}

template<typename Points>
void append_edge(std::vector<float>& out, const Points& points, std::size_t a, std::size_t b)
{
  append(out, points, a);
  append(out, points, b);
}

using Position = SilhouetteFinder::Position;

bool is_front(Position a, Position b, Position c)
{
  return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x) > 0.0F;
}

// A negative id becomes a large one.
template<typename Id>
std::size_t at(const Id* ids, std::size_t i)
{
  return static_cast<std::size_t>(ids[i]);
}

template<typename Id>
bool are_valid(const Id* ids, std::size_t count, std::size_t points)
{
  return std::all_of(ids, ids + count, [points](Id id) { return static_cast<std::size_t>(id) < points; });
}

/// The edges of a triangle both of whose ends have the bit in what was known of their sides.
template<typename Points, typename Id>
void append_triangle_edges(std::vector<float>& out, const Points& points, const Id* ids,
                           const unsigned (&sides)[3], unsigned bit)
{
  for (std::size_t i = 0; i < 3; ++i) {
    const std::size_t next = i < 2 ? i + 1 : 0;
    if ((sides[i] & sides[next] & bit) != 0) {
      append_edge(out, points, at(ids, i), at(ids, next));
    }
  }
}

// The bytes of the sides come and go by value: the compiler must suppose that a write to one changes anything
// else that is in memory.
template<typename Points, typename Id>
void take_triangle(const Points& points, const Id* ids, const Position* positions, unsigned char* sides,
                   std::vector<float>& out)
{
  const std::size_t a = at(ids, 0);
  const std::size_t b = at(ids, 1);
  const std::size_t c = at(ids, 2);
  const unsigned other = is_front(positions[a], positions[b], positions[c]) ? Back : Front;
  const unsigned own = other ^ (Front | Back);
  const unsigned before[3] = {sides[a], sides[b], sides[c]};
  sides[a] = static_cast<unsigned char>(before[0] | own); // right also where two of the points are the same
  sides[b] = static_cast<unsigned char>(before[1] | own);
  sides[c] = static_cast<unsigned char>(before[2] | own);
  const unsigned at_two = (before[0] & before[1]) | (before[2] & (before[0] | before[1]));
  if ((at_two & other) != 0) {
    append_triangle_edges(out, points, ids, before, other);
  }
}

template<typename Points, typename Id>
void take_polygon(const Points& points, const Id* ids, std::size_t count, const Position* positions,
                  unsigned char* sides, std::vector<float>& out)
{
  const bool front = is_front(positions[at(ids, 0)], positions[at(ids, 1)], positions[at(ids, 2)]);
  const unsigned char own = front ? Front : Back;
  const unsigned char other = front ? Back : Front;
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t a = at(ids, i);
    const std::size_t b = at(ids, i + 1 < count ? i + 1 : 0);
    sides[a] = sides[a] | own;
    if ((sides[a] & sides[b] & other) != 0) {
      append_edge(out, points, a, b);
    }
  }
}

/// Points that are projected together, each coordinate in an array of its own, so that the compiler can do
/// several at a time.
struct Block
{
  static constexpr std::size_t Size = 128;

  double x[Size];
  double y[Size];
  double z[Size];
};

template<typename Points>
void project(const vtkMatrix4x4& matrix, const Points& points, std::size_t begin, std::size_t count,
             Position* positions)
{
  Block block;
  for (std::size_t i = 0; i < count; ++i) {
    block.x[i] = points[3 * (begin + i)];
    block.y[i] = points[3 * (begin + i) + 1];
    block.z[i] = points[3 * (begin + i) + 2];
  }
  const auto& m = matrix.Element;
  for (std::size_t i = 0; i < count; ++i) {
    const double x = block.x[i] * m[0][0] + block.y[i] * m[0][1] + block.z[i] * m[0][2] + m[0][3];
    const double y = block.x[i] * m[1][0] + block.y[i] * m[1][1] + block.z[i] * m[1][2] + m[1][3];
    const double w = block.x[i] * m[3][0] + block.y[i] * m[3][1] + block.z[i] * m[3][2] + m[3][3];
    positions[begin + i] = {static_cast<float>(x / w), static_cast<float>(y / w)};
  }
}

} // namespace

template<typename Points>
void SilhouetteFinder::project_all(const vtkMatrix4x4& matrix, const Points& points, std::size_t count)
{
  mPositions.resize(count);
  for (std::size_t begin = 0; begin < count; begin += Block::Size) {
    project(matrix, points, begin, std::min(Block::Size, count - begin), mPositions.data());
  }
}

template<typename Points, typename Id>
void SilhouetteFinder::walk(const Points& points, const Id* offsets, const Id* ids, std::size_t id_count,
                            std::size_t cells, std::vector<float>& out)
{
  const std::size_t point_count = mPositions.size();
  const Position* positions = mPositions.data();
  unsigned char* sides = mSides.data();
  std::size_t end = at(offsets, 0);
  for (std::size_t i = 1; i <= cells; ++i) {
    const std::size_t begin = end;
    end = at(offsets, i);
    if (begin > end || end > id_count) {
      continue;
    }
    const Id* cell = ids + begin;
    const std::size_t size = end - begin;
    if (size == 3) {
      if (at(cell, 0) < point_count && at(cell, 1) < point_count && at(cell, 2) < point_count) {
        take_triangle(points, cell, positions, sides, out);
      }
    } else if (size > 3 && are_valid(cell, size, point_count)) {
      take_polygon(points, cell, size, positions, sides, out);
    }
  }
}

void SilhouetteFinder::find(const vtkMatrix4x4& matrix, vtkPolyData& data, std::vector<float>& out)
{
  out.clear();
  vtkCellArray* cells = data.GetPolys();
  // Without any offset VTK counts -1 cells.
  const auto cell_count = static_cast<std::size_t>(std::max<vtkIdType>(cells->GetNumberOfCells(), 0));
  const auto point_count = static_cast<std::size_t>(data.GetNumberOfPoints());
  if (cell_count == 0 || point_count == 0) {
    return;
  }
  mSides.assign(point_count, 0);
  const auto id_count = static_cast<std::size_t>(cells->GetNumberOfConnectivityIds());
  with_coordinates(*data.GetPoints(), [&](const auto& points) {
    this->project_all(matrix, points, point_count);
    if (cells->IsStorage64Bit()) {
      this->walk(points, cells->GetOffsetsArray64()->GetPointer(0),
                 cells->GetConnectivityArray64()->GetPointer(0), id_count, cell_count, out);
    } else {
      this->walk(points, cells->GetOffsetsArray32()->GetPointer(0),
                 cells->GetConnectivityArray32()->GetPointer(0), id_count, cell_count, out);
    }
  });
}

} // namespace morrow
