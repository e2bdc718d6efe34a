// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// A view with all its decorations, its camera, and the export of a picture and of a scene.
#include "GView.h"
#include "Memcheck.h"

#include <vtkActor.h>
#include <vtkNew.h>
#include <vtkPolyDataMapper.h>
#include <vtkRenderWindow.h>
#include <vtkSphereSource.h>

#include <filesystem>
#include <memory>
#include <string>
#include <unistd.h>

using morrow_memcheck::expect;

namespace {

std::shared_ptr<GView> make_view()
{
  auto view = std::make_shared<GView>();
  GView::add_global_view(view);
  GView::set_current_view(view.get());
  view->get_render_window()->SetSize(64, 48);
  vtkNew<vtkSphereSource> sphere;
  vtkNew<vtkPolyDataMapper> mapper;
  mapper->SetInputConnection(sphere->GetOutputPort());
  vtkNew<vtkActor> actor;
  actor->SetMapper(mapper);
  view->add_props({actor.Get()});
  return view;
}

void decorate(GView& view)
{
  view.create_title();
  view.set_title("title");
  view.set_axis_vis(true);
  view.set_perspective(false);
  view.set_legend_vis(true);
  view.set_cube_axes_vis(true);
  view.setup_scalar_bar(0.0, 1.0, false, {});
  view.enable_overlay();
}

void move_camera(GView& view)
{
  view.reset_camera();
  view.save_view("here");
  const double box[6] = {-0.1, 0.1, -0.1, 0.1, -0.1, 0.1};
  view.zoom_box(box, 1, 0, nullptr);
  view.rotate_about_target(30.0, 'y', 1, 0);
  view.restore_view("here");
}

void export_all(GView& view)
{
  const auto folder = std::filesystem::temp_directory_path() / ("memcheck" + std::to_string(getpid()));
  std::filesystem::create_directory(folder);
  expect(view.write_image((folder / "picture.png").c_str(), GView::PNG, 0, 0), "a picture is written");
  expect(view.write_model((folder / "scene").c_str(), GView::VRML), "a scene is written");
  std::filesystem::remove_all(folder);
}

} // namespace

int main()
{
  return morrow_memcheck::run([] {
    std::shared_ptr<GView> view = make_view();
    decorate(*view);
    move_camera(*view);
    view->render();
    export_all(*view);
    GView::remove_global_view(view);
  });
}
