// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "BrantColor.h"
#include "BrantVector.h"
#include "GGenericModel.h"
#include "ModelFixture.h"

#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkCellType.h>
#include <vtkDataSetAttributes.h>
#include <vtkIdList.h>
#include <vtkMapper.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkUnsignedCharArray.h>

#include <cstring>
#include <functional>
#include <memory>
#include <ostream>
#include <set>
#include <vector>

/// What the tests of generic models share.
namespace morrow_test {

inline constexpr int kVertices = 0;
inline constexpr int kLines = 1;
inline constexpr int kPolygons = 2;

inline constexpr MRUtil::DrawMode kAllModes[] = {MRUtil::DRAW_DEFAULT, MRUtil::DRAW_OUTLINE,
                                                 MRUtil::DRAW_FILLED, MRUtil::DRAW_HIGHLIGHT,
                                                 MRUtil::DRAW_OVERLAY};

/// One cell: its type and the numbers of its points.
struct Cell
{
  int type;
  std::vector<vtkIdType> ids;
};

inline bool operator==(const Cell& a, const Cell& b)
{
  return a.type == b.type && a.ids == b.ids;
}

inline void PrintTo(const Cell& cell, std::ostream* out)
{
  *out << "type " << cell.type << ':';
  for (const vtkIdType id : cell.ids) {
    *out << ' ' << id;
  }
}

[[nodiscard]] inline std::vector<Cell> cells_of(vtkPolyData& data)
{
  std::vector<Cell> cells;
  const vtkNew<vtkIdList> ids;
  for (vtkIdType i = 0; i < data.GetNumberOfCells(); ++i) {
    data.GetCellPoints(i, ids);
    cells.push_back({data.GetCellType(i), std::vector<vtkIdType>(ids->begin(), ids->end())});
  }
  return cells;
}

[[nodiscard]] inline std::vector<BrantVector> points_of(vtkPolyData& data)
{
  std::vector<BrantVector> points;
  for (vtkIdType i = 0; i < data.GetNumberOfPoints(); ++i) {
    points.emplace_back(data.GetPoint(i));
  }
  return points;
}

/// The colours of the scalars of cells or points; empty when they are not what they have to be.
[[nodiscard]] inline std::vector<BrantColor> colours_of(vtkDataSetAttributes* attributes)
{
  std::vector<BrantColor> colours;
  auto* array = vtkUnsignedCharArray::SafeDownCast(attributes->GetScalars());
  if (array == nullptr || array->GetNumberOfComponents() != 4 ||
      std::strcmp(array->GetName(), "Color") != 0) {
    return colours;
  }
  for (vtkIdType i = 0; i < array->GetNumberOfTuples(); ++i) {
    const unsigned char* c = array->GetPointer(4 * i);
    colours.emplace_back(c[0], c[1], c[2], c[3]);
  }
  return colours;
}

/// All slots of a model, made or not, are looked at through this: asking makes a slot.
[[nodiscard]] inline vtkPolyData& slot(GGenericModel& model, MRUtil::DrawMode mode, int kind)
{
  return *model.initialize_cell_data(mode, kind);
}

/// Four points and more: the corners of a square, then points on the x axis.
[[nodiscard]] inline std::vector<BrantVector> some_points(int count)
{
  std::vector<BrantVector> points = {{0.0, 0.0, 0.0}, {1.0, 0.0, 0.0}, {1.0, 1.0, 0.0}, {0.0, 1.0, 0.0}};
  while (static_cast<int>(points.size()) < count) {
    points.emplace_back(static_cast<double>(points.size()), 0.0, 0.0);
  }
  points.resize(static_cast<std::size_t>(count));
  return points;
}

/// The actors that a view shows, in the order of its props.
[[nodiscard]] inline std::vector<vtkActor*> actors_of(const GView& view)
{
  std::vector<vtkActor*> actors;
  for (vtkProp* prop : shown(view)) {
    if (auto* actor = vtkActor::SafeDownCast(prop)) {
      actors.push_back(actor);
    }
  }
  return actors;
}

/// The data of a view's first actor, which is a part.
[[nodiscard]] inline vtkPolyData* part_of(const GView& view)
{
  return vtkPolyData::SafeDownCast(actors_of(view).at(0)->GetMapper()->GetInputDataObject(0, 0));
}

/// How many props a view would show of the model, besides labels.
[[nodiscard]] inline std::ptrdiff_t num_parts(GModel& model)
{
  PlainView view;
  model.add_view(&view);
  const std::ptrdiff_t count = num_part_props(view);
  model.remove_view(&view);
  return count;
}

} // namespace morrow_test

/// "(255, 128, 0, 255)": what GoogleTest prints.
inline void PrintTo(const BrantColor& c, std::ostream* out)
{
  *out << '(' << int{c.red()} << ", " << int{c.green()} << ", " << int{c.blue()} << ", " << int{c.alpha()}
       << ')';
}

inline void PrintTo(const BrantVector& v, std::ostream* out)
{
  *out << '(' << v.x() << ", " << v.y() << ", " << v.z() << ')';
}
