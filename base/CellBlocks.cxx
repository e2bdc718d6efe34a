// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "CellBlocks.h"

#include "CellFan.h"
#include "CellSoundness.h"
#include "MeshArrays.h"

#include <vtkCellType.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

namespace morrow {

namespace {

constexpr float Infinity = std::numeric_limits<float>::infinity();
constexpr BlockBox Nothing = {{Infinity, Infinity, Infinity}, {-Infinity, -Infinity, -Infinity}};
constexpr BlockBox Everything = {{-Infinity, -Infinity, -Infinity}, {Infinity, Infinity, Infinity}};

float round_down(float value)
{
  return value;
}
float round_up(float value)
{
  return value;
}
float round_down(double value)
{
  const auto rounded = static_cast<float>(value);
  return static_cast<double>(rounded) > value ? std::nextafterf(rounded, -Infinity) : rounded;
}
float round_up(double value)
{
  const auto rounded = static_cast<float>(value);
  return static_cast<double>(rounded) < value ? std::nextafterf(rounded, Infinity) : rounded;
}

/// Everything, unless the sum is finite.
template<typename Number, typename Vector>
BlockBox box_around(const Vector& lower, const Vector& upper, const Vector& sum)
{
  if (!std::isfinite(sum[0] + sum[1] + sum[2])) {
    return Everything;
  }
  BlockBox box;
  for (int i = 0; i < 3; ++i) {
    box.lower[i] = round_down(lower[i]);
    box.upper[i] = round_up(upper[i]);
  }
  return box;
}

/// Grows around points. Becomes everything with one that is not finite.
template<typename Number>
class Hull
{
public:
  void add(const Number* point) noexcept
  {
    for (int i = 0; i < 3; ++i) {
      mLower[i] = std::min(mLower[i], point[i]);
      mUpper[i] = std::max(mUpper[i], point[i]);
      mSum[i] += point[i];
    }
  }

  [[nodiscard]] BlockBox box() const noexcept { return box_around<Number>(mLower, mUpper, mSum); }

private:
  static constexpr Number Far = std::numeric_limits<Number>::infinity();

  Number mLower[3] = {Far, Far, Far};
  Number mUpper[3] = {-Far, -Far, -Far};
  Number mSum[3] = {0, 0, 0}; // not finite with a point that is not
};

struct Oddities
{
  bool others = false; // than triangles that are sound
  bool empty = false;
  bool collapsed = false;
};

#if defined(__GNUC__) // and compilers that follow it
using FourFloats [[gnu::vector_size(16)]] = float;

FourFloats smaller(FourFloats a, FourFloats b)
{
  return a < b ? a : b;
}
FourFloats larger(FourFloats a, FourFloats b)
{
  return a > b ? a : b;
}
#endif

/// A point, or three numbers that come from points.
template<typename Number>
struct Three
{
  Number of[3];

  Number operator[](int i) const { return of[i]; }
  Three operator+(const Three& b) const { return {{of[0] + b[0], of[1] + b[1], of[2] + b[2]}}; }
};

template<typename Number>
Three<Number> smaller(const Three<Number>& a, const Three<Number>& b)
{
  return {{std::min(a[0], b[0]), std::min(a[1], b[1]), std::min(a[2], b[2])}};
}
template<typename Number>
Three<Number> larger(const Three<Number>& a, const Three<Number>& b)
{
  return {{std::max(a[0], b[0]), std::max(a[1], b[1]), std::max(a[2], b[2])}};
}

/// How points are read: Vector is larger than a point where that is faster.
template<typename Number>
struct Reader
{
  using Vector = Three<Number>;
  static Vector all(Number value) { return {{value, value, value}}; }
};
#if defined(__GNUC__)
template<>
struct Reader<float>
{
  using Vector = FourFloats;
  static Vector all(float value) { return Vector{value, value, value, value}; }
};
#endif

/// Vector must not reach beyond the points.
template<typename Number, typename Id>
BlockBox box_of_triangles(vtkIdType count, const Id* ids, const Number* xyz, Oddities& oddities)
{
  using Vector = typename Reader<Number>::Vector;
  constexpr Number far = std::numeric_limits<Number>::infinity();
  const auto point = [xyz](Id id) {
    Vector vector;
    std::memcpy(&vector, xyz + 3 * static_cast<vtkIdType>(id), sizeof vector);
    return vector;
  };
  Vector lower = Reader<Number>::all(far);
  Vector upper = Reader<Number>::all(-far);
  Vector sum = Reader<Number>::all(0);
  bool is_collapsed = false;
  for (const Id* id = ids; id != ids + 3 * count; id += 3) {
    const Vector a = point(id[0]);
    const Vector b = point(id[1]);
    const Vector c = point(id[2]);
    const Vector low = smaller(smaller(a, b), c);
    const Vector high = larger(larger(a, b), c);
    is_collapsed = is_collapsed || (low[0] == high[0] && low[1] == high[1] && low[2] == high[2]);
    lower = smaller(lower, low);
    upper = larger(upper, high);
    sum = sum + (a + b + c);
  }
  oddities.collapsed |= is_collapsed;
  return box_around<Number>(lower, upper, sum);
}

/// Whether this is one of the ids, which are not larger.
template<typename Id>
bool has_id(const Id* ids, vtkIdType count, vtkIdType last)
{
  Id below = 0; // negative if it is
  for (vtkIdType i = 0; i < count; ++i) {
    below |= static_cast<Id>(last) - 1 - ids[i];
  }
  return below < 0;
}

/// For cells of any kind.
template<typename Number>
BlockBox box_of_cells(const MeshArrays& mesh, const Number* xyz, vtkIdType first, vtkIdType last,
                      Oddities& oddities)
{
  Hull<Number> hull;
  mesh.visit(first, last, [&](vtkIdType, int type, vtkIdType count, const auto* ids) {
    oddities.empty |= count <= 0;
    oddities.collapsed |= is_fan(type) && has_collapsed_triangle(count, ids, xyz);
    for (vtkIdType i = 0; i < count; ++i) {
      hull.add(xyz + 3 * static_cast<vtkIdType>(ids[i]));
    }
    return true;
  });
  return hull.box();
}

template<typename Number>
BlockBox box_of_leaf(const MeshArrays& mesh, const Number* xyz, vtkIdType leaf, Oddities& oddities)
{
  const vtkIdType first = leaf * CellBlocks::CellsInLeaf;
  const vtkIdType last = std::min(first + CellBlocks::CellsInLeaf, mesh.cells());
  BlockBox box = Everything;
  bool is_known = false;
  const bool are_triangles = mesh.with_triangles(first, last, [&](const auto* ids) {
    is_known = !has_id(ids, 3 * (last - first), mesh.points() - 1);
    if (is_known) {
      box = box_of_triangles(last - first, ids, xyz, oddities);
    }
  });
  oddities.others |= !are_triangles;
  return is_known ? box : box_of_cells(mesh, xyz, first, last, oddities);
}

/// Not a vertex, for which each axis counts by itself, and nothing outside of its points.
bool is_round(unsigned char type)
{
  return form_of(type) == CellForm::Hull && type != VTK_VERTEX && type != VTK_POLY_VERTEX;
}

void join(BlockBox& box, const BlockBox& other)
{
  for (int i = 0; i < 3; ++i) {
    box.lower[i] = std::min(box.lower[i], other.lower[i]);
    box.upper[i] = std::max(box.upper[i], other.upper[i]);
  }
}

double diagonal(const BlockBox& box)
{
  double squared = 0.0;
  for (int i = 0; i < 3; ++i) {
    const double side = static_cast<double>(box.upper[i]) - static_cast<double>(box.lower[i]);
    squared += side * side;
  }
  return std::sqrt(squared);
}

} // namespace

CellBlocks::CellBlocks(const MeshArrays& mesh) : mCells(mesh.cells())
{
  const unsigned char* types = mesh.types();
  mHasCurvedCells = types != nullptr && std::any_of(types, types + mCells, [](unsigned char type) {
                      return form_of(type) == CellForm::Curved;
                    });
  this->make_leaves(mesh);
  mAreRound = mAreTriangles || (types != nullptr && std::all_of(types, types + mCells, is_round));
  if (this->are_too_large()) {
    mLevels.clear();
  } else {
    this->make_levels();
  }
}

void CellBlocks::make_leaves(const MeshArrays& mesh)
{
  const vtkIdType count = (mCells + CellsInLeaf - 1) / CellsInLeaf;
  Level leaves;
  leaves.reserve(static_cast<std::size_t>(count));
  Oddities oddities;
  if (mesh.points() > 0) {
    mesh.with_points([&](const auto* xyz) {
      for (vtkIdType leaf = 0; leaf < count; ++leaf) {
        leaves.push_back(box_of_leaf(mesh, xyz, leaf, oddities));
      }
    });
  }
  mAreTriangles = !oddities.others && !leaves.empty();
  mHasEmptyCells = oddities.empty || leaves.empty();
  mHasCollapsedCells = oddities.collapsed;
  mLevels.push_back(std::move(leaves));
}

// Leaves of cells in random order are about as large as all of them together.
bool CellBlocks::are_too_large() const
{
  constexpr double too_large = 0.35; // of the whole
  BlockBox all = Nothing;
  double sum = 0.0;
  double counted = 0.0;
  for (const BlockBox& box : mLevels.front()) {
    const double size = diagonal(box);
    if (std::isfinite(size)) {
      join(all, box);
      sum += size;
      counted += 1.0;
    }
  }
  return !(sum < too_large * counted * diagonal(all));
}

void CellBlocks::make_levels()
{
  while (mLevels.back().size() > FanOut) {
    const Level& below = mLevels.back();
    Level level((below.size() + FanOut - 1) / FanOut, Nothing);
    for (std::size_t i = 0; i < below.size(); ++i) {
      join(level[i / FanOut], below[i]);
    }
    mLevels.push_back(std::move(level));
  }
}

BlockBox CellBlocks::whole() const
{
  BlockBox whole = Nothing;
  for (const BlockBox& box : mLevels.back()) {
    join(whole, box);
  }
  return whole;
}

std::size_t CellBlocks::bytes() const noexcept
{
  std::size_t bytes = 0;
  for (const Level& level : mLevels) {
    bytes += level.capacity() * sizeof(BlockBox);
  }
  return bytes;
}

} // namespace morrow
