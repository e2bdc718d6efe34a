// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <vtkType.h>

class vtkDataSet;

namespace morrow {

/// Where VTK may find a ray to hit a cell.
enum class CellForm : unsigned char
{
  Hull,  ///< between its points
  Boxed, ///< in the box around its points
  Curved ///< anywhere
};

/// What is known of VTK's cell types, by their number.
class CellKinds
{
public:
  struct Kind
  {
    CellForm form;
    vtkIdType fewest_points;
  };

  static constexpr int Count = 128; // all types are below

  static const Kind& of(int type) noexcept { return Table[type >= 0 && type < Count ? type : 0]; }

private:
  static const Kind* const Table; // the first is none
};

/// type is one of VTK's cell types; any other number counts as Curved.
[[nodiscard]] inline CellForm form_of(int type) noexcept
{
  return CellKinds::of(type).form;
}

/// With fewer points VTK would read beyond a cell of this type. More than any cell has for numbers that are
/// no type, or one that VTK makes no cells of.
[[nodiscard]] inline vtkIdType fewest_points(int type) noexcept
{
  return CellKinds::of(type).fewest_points;
}

/// Whether the faces of a polyhedron, whose points exist, are made of those points; true for cells of any
/// other type.
[[nodiscard]] bool is_sound_cell(vtkDataSet& data, vtkIdType id, int type);

} // namespace morrow
