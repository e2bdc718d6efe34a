// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <array>
#include <cstddef>

#include "GrowingPolyData.h" // a complete type to delete

#include <vtkPolyDataNormals.h> // likewise
#include <vtkSmartPointer.h>

namespace morrow {

/// The data of primitives that look alike, and the filter whose output is shown. Null until the first of
/// them.
struct PrimitiveSlot
{
  vtkSmartPointer<GrowingPolyData> data;
  vtkSmartPointer<vtkPolyDataNormals> normals;
};

/// All slots of a model. Apart from it, because it must outlive a model that host code destroys.
struct PrimitiveSlots
{
  static constexpr int NumModes = 5;
  static constexpr int NumKinds = 3;

  [[nodiscard]] static bool has(int mode, int kind)
  {
    return mode >= 0 && mode < NumModes && kind >= 0 && kind < NumKinds;
  }

  /// Mode and kind must exist.
  [[nodiscard]] PrimitiveSlot& at(ColourBinding binding, int mode, int kind)
  {
    auto& slots = binding == ColourBinding::Cells ? by_cells : by_points;
    return slots[static_cast<std::size_t>(mode) * NumKinds + static_cast<std::size_t>(kind)];
  }

  std::array<PrimitiveSlot, std::size_t{NumModes} * NumKinds> by_cells;
  std::array<PrimitiveSlot, std::size_t{NumModes} * NumKinds> by_points;
};

} // namespace morrow
