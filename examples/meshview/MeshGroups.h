// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "GDataGroup.h"
#include "GModel.h"

#include <string>

class MeshModel;
class vtkPolyData;
struct PartStyle;

/// A face or an edge of a mesh.
class GroupedEntity : public GDataGroupEntity
{
public:
  GroupedEntity() = default;
  ~GroupedEntity() override;

  /// What it looks like. MRUtil::get_back_pointer() finds the way from the data back to the entity. Null
  /// shows nothing.
  void set_data(vtkPolyData* data);
  [[nodiscard]] vtkPolyData* data() const;

private:
  vtkSmartPointer<vtkPolyData> mData;
};

/// Some of the faces or edges of a block: one data set with a block for each of them.
class EntityGroup : public GDataGroup
{
public:
  /// limit: of entities per group; 0 for none.
  explicit EntityGroup(int limit);

  GDataGroup* new_group() override;
  void update_data() override;

private:
  int mLimit;
};

/// The faces and edges of a mesh model's blocks, each an entity of its own, shown through data groups.
///
/// This is how a host shows what it has many thousands of: it keeps a chain of groups for all that is drawn
/// alike, here the faces of a block and its edges, and makes the data sets of the groups its parts.
class MeshGroups : public GModel
{
public:
  /// limit: of entities per group; 0 for none. has_colors: each face has a colour of its own.
  MeshGroups(int limit, bool has_colors);
  ~MeshGroups() override;

  /// Shows the surfaces and features of all that mesh has now, in its style. To be called again when one of
  /// these changes.
  void show(const MeshModel& mesh);

  /// For people: how many entities there are in how many groups, of those kinds that have been shown.
  [[nodiscard]] std::string summary() const;

  /// Brings the groups with changed entities up to date.
  void update_parts() override;

private:
  struct Chain;
  struct Block;

  void add_block(const PartStyle& style);
  void show(const Chain& chain, const PartPropFunction& make_props);

  int mLimit;
  bool mHasColors;
  std::vector<std::unique_ptr<Block>> mBlocks; // of the mesh model, in the same order
};
