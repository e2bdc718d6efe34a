// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Camera.h" // Axis
#include "ColorScale.h"
#include "DebugScript.h"
#include "Decorations.h"
#include "GColorTable.h"
#include "GModelSet.h"
#include "GfxDebugSimple.h"
#include "HiddenLines.h"
#include "Mesh.h"
#include "MeshGroups.h"
#include "MeshLabels.h"
#include "MeshModel.h"
#include "Options.h"
#include "Picking.h"
#include "QualityPanel.h"

#include <memory>

class GView;

/// What there is to show.
struct Contents
{
  std::vector<MeshFile> files; ///< may be none
  ColorScale scale;            ///< of the files
  DebugScript script;
};

/// The name of what the options want to be shown: the first of several files.
[[nodiscard]] std::string subject(const Options& options);

/// The graphics of meshview: one view with one model of all blocks, and others for charts and drawings.
///
/// This is what a host of the library does: it makes a view, a model and a set that connects them, gives the
/// model its parts, and renders.
class Viewer
{
public:
  /// The display must be reachable. options and contents live longer than this.
  Viewer(const Options& options, const Contents& contents);
  ~Viewer();
  Viewer(const Viewer&) = delete;
  Viewer& operator=(const Viewer&) = delete;

  [[nodiscard]] GView& view() noexcept { return *mView; }
  [[nodiscard]] Decorations& decorations() noexcept { return mDecorations; }
  [[nodiscard]] Picking& picking() noexcept { return mPicking; }
  [[nodiscard]] const MeshModel& model() const noexcept { return mModel; }
  [[nodiscard]] const DrawStyle& style() const noexcept { return mModel.style(); }
  [[nodiscard]] const Options& options() const noexcept { return mOptions; }

  /// Null unless the options ask for them.
  [[nodiscard]] const MeshGroups* groups() const noexcept { return mGroups.get(); }

  /// Shows everything as the options ask for it, renders, and picks where they say. The window already has
  /// its interactor, if it gets one.
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
  void add_extras();
  void draw_script();
  void pick();
  [[nodiscard]] std::vector<vtkPolyData*> surfaces() const;

  const Options& mOptions;
  const Contents& mContents;
  std::shared_ptr<GView> mView;
  GModelSet mModelSet;
  MeshModel mModel;
  HiddenLines mHiddenLines;            // of mModel
  std::unique_ptr<MeshGroups> mGroups; // of mModel; null unless asked for
  std::vector<std::string> mNames;     // of the blocks, for their labels
  BlockLabels mBlockLabels;
  Decorations mDecorations;
  std::unique_ptr<QualityPanel> mQualityPanel;
  GColorTable mColorTable;
  GGenericModel mDrawing;
  GfxDebugSimple mDebug{&mDrawing};
  vtkSmartPointer<vtkPolyData> mExtraPoints; // of what is shown besides the blocks
  Picking mPicking;
};
