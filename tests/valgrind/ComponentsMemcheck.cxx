// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// Silhouettes, edges, the axis triad in all its forms, and labels, in a view.
#include "BrantVector.h"
#include "GAxis.h"
#include "GExtractEdges.h"
#include "GModel.h"
#include "GModelSet.h"
#include "GSilhouetteMapper.h"
#include "GView.h"
#include "Memcheck.h"

#include <vtkActor.h>
#include <vtkNew.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkSphereSource.h>

using morrow_memcheck::expect;

namespace {

class LabelModel : public GModel
{
public:
  void update_parts() override {}
};

vtkSmartPointer<vtkProp> make_actor(vtkMapper* mapper)
{
  auto actor = vtkSmartPointer<vtkActor>::New();
  actor->SetMapper(mapper);
  return actor;
}

void show_sphere(GView& view)
{
  vtkNew<vtkSphereSource> sphere;
  vtkNew<GSilhouetteMapper> silhouette;
  silhouette->SetInputConnection(sphere->GetOutputPort());
  vtkNew<GExtractEdges> edges;
  edges->SetInputConnection(sphere->GetOutputPort());
  edges->Update();
  expect(edges->GetOutput()->GetNumberOfCells() > 0, "a sphere has edges");
  vtkNew<vtkPolyDataMapper> lines;
  lines->SetInputConnection(edges->GetOutputPort());
  view.add_props({make_actor(silhouette), make_actor(lines)});
}

void show_triads(GView& view)
{
  for (const MRUtil::AxisType type : {MRUtil::AXIS_3D, MRUtil::AXIS_2D, MRUtil::AXIS_1D}) {
    vtkNew<GAxis> axis;
    axis->set_type(type);
    axis->set_renderer(view.get_renderer());
    view.add_props({axis.Get()});
    view.render();
    view.remove_props({axis.Get()});
  }
}

} // namespace

int main()
{
  return morrow_memcheck::run([] {
    GView view;
    view.get_render_window()->SetSize(64, 48);
    GModelSet set;
    LabelModel model;
    set.add_model(&model);
    view.set_model_set(&set);
    model.add_label("in front", BrantVector(0.0, 0.0, 2.0), BrantColor());
    model.add_label("hidden", BrantVector(0.0, 0.0, -2.0), BrantColor());
    show_sphere(view);
    view.reset_camera();
    show_triads(view);
  });
}
