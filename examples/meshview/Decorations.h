// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Camera.h" // Framing
#include "ColorScale.h"
#include "Options.h"

class GView;

/// What a view shows besides the mesh: title, axes, legend and scalar bar, in colours that can be read on the
/// background. None of this renders.
class Decorations
{
public:
  /// view and options live longer than this.
  Decorations(GView& view, const Options& options, const ColorScale& scale);

  /// Shows what the options ask for. The window already has its interactor, if it gets one.
  void set_up();

  /// False when the options have no title.
  bool toggle_title();

  void toggle_triad();
  void next_axes(); ///< off, 3d, 2d, 1d
  void toggle_cube_axes();
  void toggle_legend();     ///< switches to parallel projection
  void toggle_projection(); ///< hides the legend in perspective

  /// False when there is no array to colour by.
  bool toggle_scalar_bar();

  /// Leaves room for what is shown now.
  void make_room(Framing& framing) const;

private:
  void show_title();
  [[nodiscard]] std::string title() const;
  void show_scalar_bar();
  [[nodiscard]] bool has_scalar_bar() const;
  [[nodiscard]] Margins margins() const;
  void make_readable();

  GView& mView;
  const DecorationOptions& mOptions;
  bool mIsParallel;
  bool mHasTitle = true; // unless the options have none
  ColorScale mScale;
};
