// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <memory>
#include <set>
#include <vector>

#include "EntitySelection.h" // by value
#include "morrow_base_export.h"

class PickBounds;
class vtkRenderer;

/// Finds entities of one kind: the base of the pickers that a host writes, one for each pick type; see
/// GPickerBase::register_picker().
///
/// A gesture of the user is
/// - a click: begin_pick(), one or more compute_pick…(), end_pick();
/// - a drag: begin_pick(), one or more compute_pick_by_box(), _polygon() or _circle(), end_pick_box();
/// - hovering: begin_pre_select(), one or more compute_pick…(), end_pre_select().
///
/// The picks find entities and call add_to_selection_buffer() for each; the end of the gesture hands them to
/// GPickerBase, ranked, and leaves the buffer empty. Exceptions of observers come out of the end of the
/// gesture, when it is complete; see GPickerBase.
///
/// All screen coordinates are display pixels of the renderer's window, with the origin in its bottom left
/// corner. Every compute_pick…() returns the number of entities found.
class MORROW_BASE_EXPORT GPicker
{
public:
  GPicker() = default;
  GPicker(const GPicker&) = delete;
  GPicker& operator=(const GPicker&) = delete;

  /// Empties the buffer and takes the picker's types out of the registry.
  virtual ~GPicker();

  /// The host's point pick: finds the entities at a display position.
  virtual int compute_pick(vtkRenderer* renderer, int x, int y) = 0;

  /// Region picks. They render the renderer's window, so that the depth buffer is that of the present scene,
  /// and call compute_pick_by_bounds() with the region. The window is not rendered when its interactor has
  /// rendering switched off (vtkRenderWindowInteractor::EnableRender), when it is in the middle of a frame,
  /// or when the renderer has none; the pick then works with the depth that there is. An exception that host
  /// code throws in the frame comes out of here and nothing is picked; the window can render again. Host code
  /// may destroy the picker in the frame: nothing is found then.
  ///
  /// A null renderer, or null coordinates, find nothing.

  /// @param corner1, corner2  x and y of two opposite corners, in any order; both belong to the box
  virtual int compute_pick_by_box(vtkRenderer* renderer, int* corner1, int* corner2);

  /// @param count   number of corners; fewer than 3 make a region without inside, fewer than 1 find nothing
  /// @param points  count × 2 numbers, x and y of each corner; the last one is joined to the first
  virtual int compute_pick_by_polygon(vtkRenderer* renderer, int count, int (*points)[2]);

  /// @param center  x and y
  /// @param radius  in pixels; the sign does not count
  virtual int compute_pick_by_circle(vtkRenderer* renderer, int* center, double radius);

  /// The host's point pick along a line in world coordinates, 3 doubles each.
  virtual int compute_pick_by_ray(vtkRenderer* renderer, const double* from, const double* to) = 0;

  /// The host's region pick: finds the entities in a region of the screen. See
  /// MultiCellPicker::PickByBounds(). The renderer is not null; it may be without a window. The region lives
  /// during the call.
  virtual int compute_pick_by_bounds(vtkRenderer* renderer, PickBounds* bounds) = 0;

  // ---- Selection buffer: the entities found, each of them once, in the order of EntitySelection

  [[nodiscard]] const std::set<EntitySelection>& get_selection_buffer() const { return mSelectionBuffer; }

  /// Adds an entity that a pick has found, or a better hit of it: the buffer keeps the one with the smallest
  /// distance, of equal ones the first.
  ///
  /// @param entity    null is ignored
  /// @param point     3 floats, the world point of the hit; null is the origin
  /// @param distance  the smaller, the better; NaN ranks last
  /// @param direct    false for an entity that was not quite hit, but is near: its distance counts 1.0 more
  void add_to_selection_buffer(GPicked::PickedEntity* entity, const float* point, float distance,
                               bool direct);

  /// Adds those that are not there yet, as they are. Empty selections are left out.
  void add_to_selection_buffer(const std::set<EntitySelection>& others);

  void remove_from_selection_buffer(GPicked::PickedEntity* entity);
  void clear_selection_buffer();

  // ---- Gestures

  /// Begins a click or a drag: empties the buffer and the possible selections and, unless additive, the
  /// picked list.
  void begin_pick(bool additive);

  /// Ends a click: what was found becomes the list of possible selections, the best one first, and the first
  /// one of them is picked. In an additive gesture, when the best one is already picked, it is unpicked
  /// instead, and left out. Others that are already picked are left out too.
  void end_pick();

  /// Ends a drag: all that was found is picked, and the number of picked entities printed. Nothing when
  /// nothing was found, but for the possible selections, which are cleared.
  void end_pick_box();

  /// Begins hovering: empties the buffer.
  void begin_pre_select();

  /// Ends hovering: the best one found becomes the pre-selection; without one there is none.
  void end_pre_select();

  /// Puts the smallest distance first, and of equal distances the one that is last in the list. Distances
  /// that are not a number come last, in their order in the list.
  static void sort_possible_selections(std::vector<EntitySelection>& list);

private:
  std::set<EntitySelection>::iterator find(GPicked::PickedEntity* entity);
  std::vector<EntitySelection> take_selection_buffer();
  int pick_in(vtkRenderer& renderer, PickBounds& region);

  std::set<EntitySelection> mSelectionBuffer;
  bool mAdditive = false;
  std::shared_ptr<const bool> mLife; // ends with the picker; made by the first region pick
};
