// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "CellBlocks.h"

#include "CellFan.h"
#include "CellSoundness.h"
#include "MeshArrays.h"

#include <cmath>
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

  [[nodiscard]] BlockBox box() const noexcept
  {
    if (!std::isfinite(mSum[0] + mSum[1] + mSum[2])) {
      return Everything;
    }
    BlockBox box;
    for (int i = 0; i < 3; ++i) {
      box.lower[i] = round_down(mLower[i]);
      box.upper[i] = round_up(mUpper[i]);
    }
    return box;
  }

private:
  static constexpr Number Far = std::numeric_limits<Number>::infinity();

  Number mLower[3] = {Far, Far, Far};
  Number mUpper[3] = {-Far, -Far, -Far};
  Number mSum[3] = {0, 0, 0}; // not finite with a point that is not
};

struct Oddities
{
  bool empty = false;
  bool collapsed = false;
};

template<typename Number>
BlockBox box_of_leaf(const MeshArrays& mesh, const Number* xyz, vtkIdType leaf, Oddities& oddities)
{
  Hull<Number> hull;
  const vtkIdType first = leaf * CellBlocks::CellsInLeaf;
  mesh.visit(first, std::min(first + CellBlocks::CellsInLeaf, mesh.cells()),
             [&](vtkIdType, int type, vtkIdType count, const auto* ids) {
               oddities.empty |= count <= 0;
               oddities.collapsed |= is_fan(type) && has_collapsed_triangle(count, ids, xyz);
               for (vtkIdType i = 0; i < count; ++i) {
                 hull.add(xyz + 3 * static_cast<vtkIdType>(ids[i]));
               }
               return true;
             });
  return hull.box();
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

std::size_t CellBlocks::bytes() const noexcept
{
  std::size_t bytes = 0;
  for (const Level& level : mLevels) {
    bytes += level.capacity() * sizeof(BlockBox);
  }
  return bytes;
}

} // namespace morrow
