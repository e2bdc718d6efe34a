// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
//
// Pictures and scenes written to files: members of GView.
#include "GView.h"

#include "GViewRenderPass.h"
#include "ImageExport.h"
#include "MRUtil.h"
#include "SceneExport.h"

#include <vtkImageWriter.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>

namespace {

bool is_name(const char* filename)
{
  return filename != nullptr && *filename != '\0';
}

} // namespace

bool GView::can_export() const
{
  return mRenderWindow != nullptr && !this->is_in_frame();
}

bool GView::write_image(const char* filename, ImageFileType type, int /*width*/, int /*height*/)
{
  const auto writer = morrow::make_image_writer(type);
  if (writer == nullptr || !is_name(filename) || !this->can_export()) {
    return false;
  }
  // The frame may destroy the view, or give it another window.
  const std::string name = filename;
  const vtkSmartPointer<vtkRenderWindow> window = mRenderWindow;
  const auto alive = this->handle();
  const morrow::OffScreenBuffers buffers(*window);
  if (*alive == nullptr) {
    return false; // the window has told its observers
  }
  this->render();
  const bool has_left = *alive != nullptr && mRenderWindow != window;
  if (has_left || window->GetNeverRendered() != 0) {
    return false;
  }
  morrow::write_picture(*window, *writer, name.c_str());
  return true;
}

bool GView::write_model(const char* filename, ModelFileType type)
{
  if (!morrow::is_model_file_type(type) || !is_name(filename) || !this->can_export()) {
    return false;
  }
  const std::string name = filename;
  const vtkSmartPointer<vtkRenderer> renderer = mRenderer;
  const vtkSmartPointer<GViewRenderPass> pass = mRenderPass;
  const auto alive = this->handle();
  this->update_models();
  if (*alive == nullptr) {
    return false;
  }
  morrow::write_scene(*renderer, type, name.c_str(), pass->get_vertex_visibility());
  return true;
}
