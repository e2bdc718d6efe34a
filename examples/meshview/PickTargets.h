// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "MeshEntity.h"

#include <vtkSmartPointer.h> // members
#include <vtkType.h>         // vtkIdType

#include <map>
#include <utility>
#include <vector>

class MeshLines;
class MeshModel;
class vtkActor;
class vtkDataSet;
class vtkPolyData;

/// The data that pickers look into for one kind of entity. They are not those that are drawn: blocks, faces
/// and edges have a data set for each entity; the elements and the nodes of a block share one, in which each
/// cell belongs to an entity.
class PickTargets
{
public:
  /// Elements and nodes have the ids that the surfaces bring along, see add_ids(), or their numbers in the
  /// surface.
  PickTargets(EntityKind kind, const MeshModel& model);

  /// Has all the data. It is never drawn.
  [[nodiscard]] vtkActor* actor() const { return mActor; }

  /// Which entity a cell of one of the data sets belongs to; with a negative id when it belongs to none.
  [[nodiscard]] MeshEntity::Which entity_of(vtkDataSet* data, vtkIdType cell) const;

  /// Has each entity a data set of its own?
  [[nodiscard]] bool is_whole() const { return mKind != EntityKind::Element && mKind != EntityKind::Node; }

  /// Has the mesh lines or points of its own among what is picked?
  [[nodiscard]] bool has_lines_or_vertices() const;

  /// The entity's data set, and its cells there; all of them when it has the data set for itself.
  [[nodiscard]] vtkPolyData* data_of(const MeshEntity::Which& entity) const;
  [[nodiscard]] std::vector<vtkIdType> cells_of(const MeshEntity::Which& entity) const;

private:
  using CellsById = std::vector<std::pair<long long, vtkIdType>>; // sorted

  void add(std::size_t block, vtkPolyData* data);
  void add_shapes(std::size_t block, vtkPolyData& surface, MeshLines& lines);
  void add_shared(std::size_t block, vtkPolyData& surface);
  void make_actor();

  EntityKind mKind;
  std::vector<vtkSmartPointer<vtkPolyData>> mData;
  std::vector<MeshEntity::Which> mEntities; // of mData; the id is 0 where each cell has its own
  std::vector<std::vector<long long>> mIds; // of the cells of mData, where they are shared
  std::vector<CellsById> mCells;            // likewise
  std::vector<std::size_t> mFirstOfBlock;   // in mData
  std::map<vtkDataSet*, std::size_t> mPlaces;
  vtkSmartPointer<vtkActor> mActor;
};
