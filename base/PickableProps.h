// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <vector>

#include <vtkAbstractMapper3D.h> // smart pointers
#include <vtkAssemblyPath.h>
#include <vtkDataSet.h>
#include <vtkMatrix4x4.h>
#include <vtkProp3D.h>
#include <vtkSmartPointer.h>

class vtkPropCollection;

namespace morrow {

/// A prop that a pick looks at, kept alive for it.
struct PickableProp
{
  vtkSmartPointer<vtkAssemblyPath> path;
  vtkSmartPointer<vtkProp3D> prop; // the last one of the path
  vtkSmartPointer<vtkAbstractMapper3D> mapper;
  vtkSmartPointer<vtkMatrix4x4> matrix; // data to world, along the whole path
};

/// The actors, levels of detail and volumes at the ends of the props' paths that are pickable, visible, have
/// a mapper and an opacity above 0, in the order of their paths.
[[nodiscard]] std::vector<PickableProp> pickable_props(vtkPropCollection& props);

/// The data sets that the mapper has as input: the one itself, or the leaves of a composite one, in order.
/// None for a mapper that is no vtkMapper, has no input or another kind of data.
[[nodiscard]] std::vector<vtkSmartPointer<vtkDataSet>> data_sets_of(vtkAbstractMapper3D* mapper);

} // namespace morrow
