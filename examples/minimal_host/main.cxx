// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// The shortest complete host: one view, one model with one part, one picture, minimal_host.png.
#include "GModel.h"
#include "GModelSet.h"
#include "GView.h"

#include <vtkActor.h>
#include <vtkNew.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>
#include <vtkProperty.h>
#include <vtkSphereSource.h>

/// A model whose parts never change.
class SphereModel : public GModel
{
public:
  void update_parts() override {}
};

/// The prop function: how a part looks in a view. Called once for each pair of them.
static std::vector<vtkSmartPointer<vtkProp>> make_props(vtkDataObject* part, GView* /*view*/)
{
  vtkNew<vtkPolyDataMapper> mapper;
  mapper->SetInputDataObject(part);
  vtkNew<vtkActor> actor;
  actor->SetMapper(mapper);
  actor->GetProperty()->SetColor(1.0, 0.84, 0.0);
  return {actor};
}

int main()
{
  vtkNew<vtkSphereSource> sphere;
  sphere->Update();

  GView::set_offscreen(true);
  GView view;
  GModelSet set;
  SphereModel model;
  set.add_view(&view);
  set.add_model(&model);
  model.add_part(sphere->GetOutput(), make_props);
  view.reset_camera();
  return view.write_image("minimal_host.png", GView::PNG, 0, 0) ? 0 : 1;
}
