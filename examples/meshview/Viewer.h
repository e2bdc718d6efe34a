// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "ColorScale.h"
#include "GModelSet.h"
#include "GView.h"
#include "Mesh.h"
#include "MeshLabels.h"
#include "MeshModel.h"
#include "Options.h"

/// The graphics of meshview: one view with one model of all blocks.
///
/// This is what a host of the library does: it makes a view, a model and a set that connects them, gives the
/// model its parts, and renders.
class Viewer
{
public:
  /// The display must be reachable.
  Viewer(const Options& options, const std::vector<MeshFile>& files, const ColorScale& scale);

  /// Draws a frame and writes it to the file that the options name. The answer is why that failed; empty when
  /// it did not.
  [[nodiscard]] std::string write_image();

  /// Opens the window and returns when the user closes it.
  void run_window();

private:
  void add_blocks(const std::vector<MeshFile>& files);
  void add_light();
  void render_first_frame();
  void update_labels();

  const Options& mOptions;
  GView mView;
  GModelSet mModelSet;
  MeshModel mModel;
  std::vector<std::string> mNames; // of the blocks, for their labels
  BlockLabels mBlockLabels;
};
