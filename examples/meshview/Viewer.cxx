// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "Viewer.h"

#include "GView.h"
#include "MeshLights.h"

#include <vtkPolyData.h>

#include <filesystem>

namespace {

/// Preferences of windows hold for those that views make afterwards, so they are set before the view is made.
/// Operations on all views, as that of the lights, reach those that are registered.
std::shared_ptr<GView> make_view(const Options& options)
{
  GView::set_offscreen(!options.outputs.empty());
  GView::set_preferred_window_size(options.width, options.height);
  auto view = std::make_shared<GView>();
  GView::add_global_view(view);
  return view;
}

/// The blocks' names; when several files are shown, after the file's. A block that is all of its file already
/// has its name.
std::vector<std::string> label_names(const std::vector<MeshFile>& files)
{
  std::vector<std::string> names;
  for (const MeshFile& file : files) {
    const std::string stem = std::filesystem::path(file.path).stem().string();
    for (const MeshBlock& block : file.blocks) {
      const bool is_alone = files.size() == 1 || block.name == stem;
      names.push_back(is_alone ? block.name : stem + ": " + block.name);
    }
  }
  return names;
}

} // namespace

Viewer::Viewer(const Options& options, const std::vector<MeshFile>& files, const ColorScale& scale)
    : mOptions(options), mView(make_view(options)), mModel(options.style, scale),
      mBlockLabels(mModel, label_names(files)), mDecorations(*mView, options, scale)
{
  mModelSet.add_model(&mHiddenLines);
  mModelSet.add_model(&mModel);
  mView->set_model_set(&mModelSet);
  mView->set_background(options.bottom_background);
  mView->set_background2(options.top_background);
  mView->set_title_bar(("meshview - " + files.front().path).c_str());
  light_mesh(*mView, options);
  set_label_style(options.labels);
  add_blocks(files);
  if (options.style.hidden_lines) {
    set_style(options.style);
  }
}

Viewer::~Viewer()
{
  GView::remove_global_view(mView);
}

void Viewer::add_blocks(const std::vector<MeshFile>& files)
{
  for (const MeshFile& file : files) {
    for (const MeshBlock& block : file.blocks) {
      mModel.add_block(block);
    }
  }
  if (mOptions.labels == Labels::Points || mOptions.labels == Labels::Cells) {
    add_id_labels(mModel, mOptions.labels);
  }
}

std::vector<vtkPolyData*> Viewer::surfaces() const
{
  std::vector<vtkPolyData*> surfaces;
  for (const MeshBlock& block : mModel.blocks()) {
    surfaces.push_back(block.surface);
  }
  return surfaces;
}

void Viewer::start()
{
  mDecorations.set_up();
  look_from_side(mOptions.view);
}

void Viewer::look_from_side(const std::string& name)
{
  Framing framing;
  framing.surfaces = surfaces();
  framing.all_round = mOptions.spin > 0;
  mDecorations.make_room(framing);
  look_from(name, *mView, framing);
  if (mOptions.labels == Labels::Blocks) {
    refresh();
  }
}

void Viewer::set_style(const DrawStyle& style)
{
  mHiddenLines.show(mModel, style);
  mModel.set_style(style);
}

Axis Viewer::turn_axis() const
{
  return ::turn_axis(mOptions.view, surfaces());
}

/// Labels of blocks go where the last frame shows the blocks.
void Viewer::refresh()
{
  if (mOptions.labels == Labels::Blocks) {
    mView->render();
    mBlockLabels.place(*mView);
  }
  mView->render();
}
