// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <vector>

#include "morrow_base_export.h"

#include <vtkSmartPointer.h> // the data sets, members

class GDataGroupEntity;
class GView;
class vtkDataObject;
class vtkMultiBlockDataSet;
class vtkProp;

/// Shows a bounded number of the host's entities through a few multiblock data sets, instead of each entity
/// through actors of its own. When a group is full, a further group is chained behind it.
///
/// The host derives a class for each kind of group. Its constructor fills mutable_data_sets(): the same
/// number in the same order in each group of a chain, since index i means the same kind of drawing in each.
/// Its update_data() fills the data sets with blocks, which MRUtil::set_back_pointer() may tie to their
/// entities.
///
/// The host calls the first group of a chain, the head, which stands for the whole chain: it adds entities,
/// adds and removes the parts of a model that add_entity() and remove_entity() return, and calls update_all()
/// in GModel::update_parts(). Each operation works on the chain from the group on that it is called on.
///
/// The host owns the head and the entities; the chain owns the groups behind the head. Groups and entities
/// may be destroyed in any order.
class MORROW_BASE_EXPORT GDataGroup
{
public:
  using DataSets = std::vector<vtkSmartPointer<vtkMultiBlockDataSet>>;

  /// The props of each part in each view, as a model keeps them: GModel::view_props().
  using ViewProps = std::map<GView*, std::map<vtkDataObject*, std::vector<vtkSmartPointer<vtkProp>>>>;

  /// A group of at most 400 entities, not modified, without entities and data sets.
  GDataGroup();
  GDataGroup(const GDataGroup&) = delete;
  GDataGroup& operator=(const GDataGroup&) = delete;

  /// Lets its entities go, and destroys all groups behind it.
  virtual ~GDataGroup();

  /// Returns a new, empty group of the same kind and settings, made with new, which the chain then owns.
  ///
  /// For null, or a group that is already in this or another chain, the chain gets no further group; its last
  /// one then takes entities beyond the limit, so that they are shown. It is asked again for each. What it
  /// throws passes on, and the entity is not added. It must neither destroy this group nor the entity.
  virtual GDataGroup* new_group() = 0;

  /// Rebuilds the data sets from entities(), and calls clear_modified(). It may change the chain; what it
  /// throws passes on when the whole chain is brought up to date.
  virtual void update_data() = 0;

  /// The largest number of entities of a group, for the entities added from now on through this group; 400 at
  /// first, 0 for no limit. Negative numbers are read as unsigned ones, huge.
  void set_number_per_group(int n) { mNumberPerGroup = static_cast<std::uint32_t>(n); }

  /// Marks the group as modified: the next update_all() brings it up to date.
  void modified() { mModified = true; }
  [[nodiscard]] bool is_modified() const { return mModified; }

  [[nodiscard]] bool is_empty() const { return mEntities.empty(); }

  /// Adds an entity, once more if it is there, to the first group of fewer entities than the limit; makes a
  /// group if there is none. Returns the data sets to be shown from now on: those of the group if it was
  /// empty, usually none. The entity is seen after update_all(). Null does nothing.
  DataSets add_entity(GDataGroupEntity* entity);

  /// Removes the entity, once, from the first group that it belongs to. Returns the data sets to be shown no
  /// more: those of the group if it is empty now, usually none. An emptied group behind this one is
  /// destroyed. Null, and an entity of other groups, do nothing.
  ///
  /// Called on the head, both take time that does not grow with the length of the chain, unless the limit
  /// changes each time or the entity belongs to many groups.
  DataSets remove_entity(GDataGroupEntity* entity);

  /// Brings each modified group up to date: lets the graphics resources go of all props that views has for
  /// its data sets, each with its view's window, and calls update_data(). Whatever update_data() throws, all
  /// are brought up to date, and the first exception then passes on. The map must live until then; the views
  /// in it may be destroyed meanwhile.
  void update_all(const ViewProps& views);

  /// The data sets of each group, in the order of the chain; nothing for a null group.
  [[nodiscard]] std::vector<DataSets> all_groups() const { return all_groups(this); }
  [[nodiscard]] static std::vector<DataSets> all_groups(const GDataGroup* group);

  /// The entities of this group, in ascending order of their addresses, each as often as it was added.
  [[nodiscard]] const std::multiset<GDataGroupEntity*>& entities() const { return mEntities; }

  /// The data sets of this group.
  [[nodiscard]] const DataSets& data_sets() const { return mDataSets; }

  /// The next group of the chain; null at its end.
  [[nodiscard]] GDataGroup* next() const { return mNext; }

protected:
  /// For update_data(): the group is up to date.
  void clear_modified() { mModified = false; }

  /// For the derived class to fill.
  [[nodiscard]] DataSets& mutable_data_sets() { return mDataSets; }

private:
  class Cursor;
  struct Chain;
  struct ShownProp;

  [[nodiscard]] GDataGroup* group_with_room();
  [[nodiscard]] GDataGroup* find_room(std::uint32_t limit);
  [[nodiscard]] GDataGroup* append_group();
  void insert(GDataGroupEntity* entity);
  [[nodiscard]] GDataGroup* first_group_of(const GDataGroupEntity& entity);
  [[nodiscard]] bool is_reached_from(const GDataGroup& start) const;
  void erase(GDataGroupEntity* entity);
  void leave_chain();
  using ViewHandles = std::map<GView*, std::shared_ptr<GView* const>>;
  [[nodiscard]] std::vector<ShownProp> shown_props(const ViewProps& views, const ViewHandles& handles) const;
  static void release_graphics_resources(const std::vector<ShownProp>& props);

  std::multiset<GDataGroupEntity*> mEntities;
  std::uint32_t mNumberPerGroup = 400;
  GDataGroup* mNext = nullptr; // owned
  GDataGroup* mPrevious = nullptr;
  const std::shared_ptr<Chain> mOwnChain; // while it is a head, or alone
  std::shared_ptr<Chain> mChain;          // the one it is in
  std::uint64_t mPosition = 0;            // in the chain: ascending, with gaps where groups have gone
  bool mModified = false;
  DataSets mDataSets;
};

/// Base of the host's entities that groups show.
class MORROW_BASE_EXPORT GDataGroupEntity
{
public:
  GDataGroupEntity() = default;
  GDataGroupEntity(const GDataGroupEntity&) = delete;
  GDataGroupEntity& operator=(const GDataGroupEntity&) = delete;

  /// Leaves all its groups. A group that is empty then stays in its chain, and its data sets are shown on: to
  /// hide them, call GDataGroup::remove_entity() on the head before.
  virtual ~GDataGroupEntity();

  /// Notes one more membership in the group, and one fewer. For GDataGroup, which keeps its own entities in
  /// step with this. Null, and a group that it does not belong to, do nothing.
  void add_owning_group(GDataGroup* group);
  void remove_owning_group(GDataGroup* group);

  /// Marks every group that it belongs to as modified. To be called when its geometry or colour changes.
  void modify_owning_groups();

  /// The groups that it belongs to, in ascending order of their addresses, each as often as it belongs to it.
  [[nodiscard]] const std::multiset<GDataGroup*>& owning_groups() const { return mOwningGroups; }

private:
  std::multiset<GDataGroup*> mOwningGroups;
};
