// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "MultiCellPicker.h"

#include <vtkDataSet.h>
#include <vtkGenericCell.h>
#include <vtkNew.h>
#include <vtkPicker.h>

#include <array>
#include <string>
#include <vector>

class PickBounds;
class vtkFloatArray;
class vtkMatrix4x4;
class vtkPointSet;

/// Picks as one would write them down first, cell by cell and point by point: what MultiCellPicker must agree
/// with, value for value and in order, and what its speed is measured against. For sound data and windows
/// only.
namespace morrow_test {

class LiteralMultiCellPicker : public vtkPicker
{
public:
  struct Record
  {
    vtkProp3D* prop = nullptr;
    std::array<double, 16> transform = {};
    vtkDataSet* data = nullptr;
    std::array<float, 6> ends = {};
    double tolerance = 0.0;
    std::vector<MultiCellPicker::SubCellPick> cells;
  };

  static LiteralMultiCellPicker* New();
  vtkTypeMacro(LiteralMultiCellPicker, vtkPicker)
  LiteralMultiCellPicker(const LiteralMultiCellPicker&) = delete;
  void operator=(const LiteralMultiCellPicker&) = delete;

  bool visible_only = false;
  bool touching_cells = false;
  std::vector<Record> records;

  int pick_by_bounds(PickBounds* region, vtkRenderer* renderer);

  void Initialize() override;
  double IntersectWithLine(const double p1[3], const double p2[3], double tol, vtkAssemblyPath* path,
                           vtkProp3D* prop, vtkAbstractMapper3D* mapper) override;
  void intersect_with_bounds(PickBounds* region, vtkMatrix4x4* matrix, vtkProp3D* prop,
                             vtkAbstractMapper3D* mapper, vtkRenderer* renderer);

protected:
  LiteralMultiCellPicker();
  ~LiteralMultiCellPicker() override = default;

private:
  struct Display
  {
    double at[3];
    bool is_visible;
  };

  void visit_path(PickBounds* region, vtkMatrix4x4* camera, vtkAssemblyPath* path, vtkRenderer* renderer);
  void intersect_data(PickBounds* region, vtkMatrix4x4* matrix, vtkProp3D* prop, vtkPointSet* data,
                      vtkRenderer* renderer);
  std::vector<Display> display_points(vtkMatrix4x4* matrix, vtkPointSet* data, vtkRenderer* renderer) const;
  [[nodiscard]] static bool shape_touches(const PickBounds* region, int type,
                                          const std::vector<Display>& points);
  Record make_record(vtkProp3D* prop, vtkDataSet* data) const;

  vtkNew<vtkGenericCell> mCell;
};

/// What the two differ in, empty when in nothing. Addresses, transforms and all numbers are compared; a
/// number that is not one equals another such.
[[nodiscard]] std::string difference(const std::vector<LiteralMultiCellPicker::Record>& expected,
                                     const std::vector<MultiCellPicker::CellPick*>& found);

} // namespace morrow_test
