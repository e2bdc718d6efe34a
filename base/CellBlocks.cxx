// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "CellBlocks.h"

#include "CellSoundness.h"
#include "MeshArrays.h"

#include <cmath>
#include <limits>

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
      mCheck[i] += point[i] * Number(0); // NaN from then on
    }
  }

  [[nodiscard]] BlockBox box() const noexcept
  {
    if (!(mCheck[0] + mCheck[1] + mCheck[2] == Number(0))) {
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
  Number mCheck[3] = {0, 0, 0};
};

template<typename Number>
BlockBox box_of_leaf(const MeshArrays& mesh, const Number* xyz, vtkIdType leaf, bool& has_empty_cells)
{
  Hull<Number> hull;
  const vtkIdType first = leaf * CellBlocks::CellsInLeaf;
  mesh.visit(first, std::min(first + CellBlocks::CellsInLeaf, mesh.cells()),
             [&](vtkIdType, int, vtkIdType count, const auto* ids) {
               has_empty_cells |= count <= 0;
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

vtkIdType leaves_of(const MeshArrays& mesh)
{
  return (mesh.cells() + CellBlocks::CellsInLeaf - 1) / CellBlocks::CellsInLeaf;
}

} // namespace

CellBlocks::CellBlocks(const MeshArrays& mesh) : mCells(mesh.cells())
{
  const unsigned char* types = mesh.types();
  mHasCurvedCells = types != nullptr && std::any_of(types, types + mCells, [](unsigned char type) {
                      return form_of(type) == CellForm::Curved;
                    });
  if (!looks_scattered(mesh)) {
    this->make_leaves(mesh);
    this->make_levels();
  }
}

// Leaves of cells in random order are about as large as all of them together.
bool CellBlocks::looks_scattered(const MeshArrays& mesh)
{
  constexpr vtkIdType samples = 64;
  constexpr double scattered = 0.35; // of the whole
  const vtkIdType leaves = leaves_of(mesh);
  if (mesh.points() == 0) {
    return true;
  }
  BlockBox all = Nothing;
  double sum = 0.0;
  double counted = 0.0;
  for (vtkIdType i = 0; i < samples; ++i) {
    bool ignored = false;
    const vtkIdType leaf = leaves * i / samples;
    const BlockBox box =
        mesh.with_points([&](const auto* xyz) { return box_of_leaf(mesh, xyz, leaf, ignored); });
    const double size = diagonal(box);
    if (std::isfinite(size)) {
      join(all, box);
      sum += size;
      counted += 1.0;
    }
  }
  return !(sum < scattered * counted * diagonal(all));
}

void CellBlocks::make_leaves(const MeshArrays& mesh)
{
  const vtkIdType count = leaves_of(mesh);
  Level leaves;
  leaves.reserve(static_cast<std::size_t>(count));
  mesh.with_points([&](const auto* xyz) {
    for (vtkIdType leaf = 0; leaf < count; ++leaf) {
      leaves.push_back(box_of_leaf(mesh, xyz, leaf, mHasEmptyCells));
    }
  });
  mLevels.push_back(std::move(leaves));
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
