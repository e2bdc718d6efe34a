// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <vtkCellType.h>
#include <vtkType.h>

namespace morrow {

/// Whether cells of this type of VTK's are flat, with their points in the order of their border: triangles
/// (point 0, point i, point i + 1) cover them.
[[nodiscard]] inline bool is_fan(int type) noexcept
{
  return type == VTK_TRIANGLE || type == VTK_QUAD || type == VTK_POLYGON;
}

/// Whether a triangle of the fan has its three corners in one place.
template<typename Id, typename Number>
[[nodiscard]] bool has_collapsed_triangle(vtkIdType count, const Id* ids, const Number* xyz) noexcept
{
  const auto are_same = [xyz](Id a, Id b) {
    const Number* p = xyz + 3 * static_cast<vtkIdType>(a);
    const Number* q = xyz + 3 * static_cast<vtkIdType>(b);
    return p[0] == q[0] && p[1] == q[1] && p[2] == q[2];
  };
  for (vtkIdType i = 1; i + 1 < count; ++i) {
    if (are_same(ids[0], ids[i]) && are_same(ids[0], ids[i + 1])) {
      return true;
    }
  }
  return false;
}

} // namespace morrow
