// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Camera.h" // Axis
#include "ColorScale.h"
#include "Decorations.h"
#include "GModelSet.h"
#include "HiddenLines.h"
#include "Mesh.h"
#include "MeshLabels.h"
#include "MeshModel.h"
#include "Options.h"

#include <memory>

class GView;

/// The graphics of meshview: one view with one model of all blocks.
///
/// This is what a host of the library does: it makes a view, a model and a set that connects them, gives the
/// model its parts, and renders.
class Viewer
{
public:
  /// The display must be reachable.
  Viewer(const Options& options, const std::vector<MeshFile>& files, const ColorScale& scale);
  ~Viewer();
  Viewer(const Viewer&) = delete;
  Viewer& operator=(const Viewer&) = delete;

  [[nodiscard]] GView& view() noexcept { return *mView; }
  [[nodiscard]] Decorations& decorations() noexcept { return mDecorations; }
  [[nodiscard]] const DrawStyle& style() const noexcept { return mModel.style(); }
  [[nodiscard]] const Options& options() const noexcept { return mOptions; }

  /// Shows everything as the options ask for it, and renders. The window already has its interactor, if it
  /// gets one.
  void start();

  /// Draws the mesh in another style, from the next frame on.
  void set_style(const DrawStyle& style);

  /// Looks from the named side (see view_names()) at the mesh and its decorations, and renders.
  void look_from_side(const std::string& name);

  /// The axis that the mesh turns about.
  [[nodiscard]] Axis turn_axis() const;

  /// Renders, with the labels of blocks where they can be seen. To be called when the camera has moved.
  void refresh();

private:
  void add_blocks(const std::vector<MeshFile>& files);
  [[nodiscard]] std::vector<vtkPolyData*> surfaces() const;

  const Options& mOptions;
  std::shared_ptr<GView> mView;
  GModelSet mModelSet;
  MeshModel mModel;
  HiddenLines mHiddenLines;        // of mModel
  std::vector<std::string> mNames; // of the blocks, for their labels
  BlockLabels mBlockLabels;
  Decorations mDecorations;
};
