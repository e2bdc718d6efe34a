// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "MeshPicker.h"
#include "PickHighlight.h"
#include "PickRegion.h"

#include <memory>
#include <vector>

class GModelSet;
class GView;

/// Picking in a mesh: a picker for each kind of entity, registered with the library, and what they have
/// picked highlighted. There is one of it in the process, as there is one list of what is picked.
class Picking
{
public:
  /// All of them live longer than this.
  Picking(const MeshModel& model, GModelSet& models, GView& view);
  ~Picking();
  Picking(const Picking&) = delete;
  Picking& operator=(const Picking&) = delete;

  /// Of the library's current pick type.
  [[nodiscard]] EntityKind kind() const;
  /// Says so unless quiet.
  void set_kind(EntityKind kind, bool quiet);

  /// Picks there, adding to what is picked or in its place, and tells the user. Needs a frame that was drawn.
  void pick(const PickRegion& region, bool add);

  /// Pre-selects what a click there would pick. False when it is what it was.
  bool hover(int x, int y);
  bool end_hover(); ///< false when nothing was pre-selected

  /// To the next or the previous candidate of the last click.
  void step(bool forward);

  /// Nothing is picked any more.
  void clear();

private:
  void click(int x, int y, bool add);
  [[nodiscard]] MeshPicker& picker();

  GView& mView;
  GModelSet& mModels;
  std::vector<std::unique_ptr<MeshPicker>> mPickers; // by EntityKind
  PickHighlight mHighlight;
};
