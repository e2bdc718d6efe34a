// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "PickRegion.h"
#include "RubberBand.h"

class Viewer;

/// What the left mouse button does in pick mode: a click picks, a drag picks in what it draws, and without
/// the button what a click would pick lights up. Outside of pick mode, as at first, it leaves the mouse
/// alone.
///
/// A drag to the right takes what lies wholly inside, one to the left also what it touches. Of a lasso it is
/// the way to the side that it takes first.
class PickMouse
{
public:
  /// Lives longer than this.
  explicit PickMouse(Viewer& viewer);

  [[nodiscard]] bool is_on() const noexcept { return mIsOn; }
  void toggle();

  /// What drags draw: a box at first.
  [[nodiscard]] PickShape shape() const noexcept { return mShape; }
  void next_shape(); ///< box, circle, lasso

  /// Events of the window, in pixels from its bottom left corner. The answer is whether they were for
  /// picking.
  bool press(int x, int y, bool add);
  bool move(int x, int y);
  bool release();
  void leave(); ///< a drag goes on

  /// Gives up a drag, and the light of what is below the cursor.
  void cancel();

private:
  using Place = std::array<int, 2>;

  [[nodiscard]] bool is_drag() const;
  [[nodiscard]] bool takes_touched() const;
  [[nodiscard]] PickRegion region() const;
  void draw();

  Viewer& mViewer;
  RubberBand mBand;
  bool mIsOn = false;
  PickShape mShape = PickShape::Box;
  bool mIsAdding = false;
  std::vector<Place> mPath; // of a button that is down
};
