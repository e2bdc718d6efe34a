// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "Viewer.h"

#include "Camera.h"
#include "Picture.h"

#include <vtkCamera.h>
#include <vtkCommand.h>
#include <vtkInteractorStyleTrackballCamera.h>
#include <vtkLight.h>
#include <vtkNew.h>
#include <vtkPolyData.h>
#include <vtkRenderWindow.h>
#include <vtkRenderWindowInteractor.h>
#include <vtkRenderer.h>

#include <filesystem>

namespace {

/// Preferences of windows hold for those that views make afterwards, so they are set before the view is made.
const Options& prepare_window(const Options& options)
{
  GView::set_offscreen(!options.image.empty());
  GView::set_preferred_window_size(options.width, options.height);
  return options;
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
    : mOptions(prepare_window(options)), mModel(options.edges, scale),
      mBlockLabels(mModel, label_names(files))
{
  mModelSet.add_model(&mModel);
  mView.set_model_set(&mModelSet);
  mView.set_triad_vis(false);
  mView.set_background(options.bottom_background);
  mView.set_background2(options.top_background);
  mView.set_title_bar(("meshview - " + files.front().path).c_str());
  add_light();
  set_label_style(options.labels);
  add_blocks(files);
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

/// The view's own light comes from the eye, and shows the sides of a cube in one shade from a corner.
void Viewer::add_light()
{
  vtkNew<vtkLight> light;
  light->SetLightTypeToCameraLight();
  light->SetPosition(-0.4, 1.0, 0.4);
  light->SetFocalPoint(0.0, 0.0, 0.0);
  light->SetIntensity(0.45);
  mView.get_renderer()->AddLight(light);
}

void Viewer::render_first_frame()
{
  std::vector<vtkPolyData*> surfaces;
  for (const MeshBlock& block : mModel.blocks()) {
    surfaces.push_back(block.surface);
  }
  look_from(mOptions.view, *mView.get_renderer()->GetActiveCamera(), surfaces, mOptions.width,
            mOptions.height);
  mView.render();
  if (mOptions.labels == Labels::Blocks) {
    update_labels();
  }
}

/// Labels of blocks go where the last frame shows the blocks.
void Viewer::update_labels()
{
  mBlockLabels.place(mView);
  mView.render();
}

std::string Viewer::write_image()
{
  render_first_frame();
  return write_picture(*mView.get_render_window(), mOptions.image);
}

void Viewer::run_window()
{
  vtkNew<vtkRenderWindowInteractor> interactor;
  vtkNew<vtkInteractorStyleTrackballCamera> style;
  interactor->SetRenderWindow(mView.get_render_window());
  interactor->SetInteractorStyle(style);
  interactor->Initialize();
  render_first_frame();
  if (mOptions.labels == Labels::Blocks) {
    style->AddObserver(vtkCommand::EndInteractionEvent, this, &Viewer::update_labels);
  }
  interactor->Start();
}
