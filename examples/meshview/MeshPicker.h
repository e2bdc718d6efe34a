// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "MeshEntity.h"

#include <GPicker.h>
#include <MultiCellPicker.h>

#include <vtkNew.h> // members

#include <memory>

class MeshModel;
class PickTargets;

/// Finds entities of one kind in a mesh: what a host of the library writes for each of its pick types.
///
/// A click finds blocks, faces and elements under the cursor, and edges and nodes near it. What is seen comes
/// first: surfaces from front to back, edges and nodes by how near they are to the cursor. Elements and
/// blocks of lines or points are found near the cursor too, from front to back. What surfaces hide comes
/// behind, or not at all with MultiCellPicker::mSelectVisibleOnly. A region finds what lies in it with all
/// its cells, or, with MultiCellPicker::mBoxPickAcceptPartialCells, what touches it.
class MeshPicker : public GPicker
{
public:
  /// The model lives longer than this, and its blocks stay as they are.
  MeshPicker(EntityKind kind, const MeshModel& model);
  ~MeshPicker() override;

  int compute_pick(vtkRenderer* renderer, int x, int y) override;
  int compute_pick_by_ray(vtkRenderer* renderer, const double* from, const double* to) override;
  int compute_pick_by_bounds(vtkRenderer* renderer, PickBounds* bounds) override;

  /// The data of all entities; made when they are first asked for, which takes its time.
  [[nodiscard]] const PickTargets& targets();

private:
  [[nodiscard]] bool is_area() const;
  void prepare();
  int add_ray_hits(vtkRenderer* renderer);
  int add_surface_hits();
  int add_thin_hits(const MultiCellPicker& picker, vtkRenderer* renderer);
  [[nodiscard]] double front_along(const double* from, const double* to);
  int add_found(const MeshEntity::Which& entity, const float* point, float distance,
                const MeshEntity::Hit& hit);
  [[nodiscard]] std::string name_of(const MeshEntity::Which& entity) const;

  EntityKind mKind;
  const MeshModel& mModel;
  std::unique_ptr<PickTargets> mTargets;
  std::unique_ptr<PickTargets> mSurfaces; // which hide edges and nodes; null where the targets do it
  vtkNew<MultiCellPicker> mCells;
  vtkNew<MultiCellPicker> mThinCells;   // lines and points among blocks and elements
  vtkNew<MultiCellPicker> mHidingCells; // on a line of sight
};
