// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// A plug-in of a host that knows nothing of the library; see UnloadHost.cxx. It brings the library along.
#include "BrantColor.h"
#include "BrantVector.h"
#include "GModel.h"
#include "GModelSet.h"
#include "GView.h"
#include "MRUtil.h"

#include <vtkActor.h>
#include <vtkCallbackCommand.h>
#include <vtkCellArray.h>
#include <vtkDataObject.h>
#include <vtkInformation.h>
#include <vtkInformationIntegerKey.h>
#include <vtkNew.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkSmartPointer.h>

namespace {

class PluginModel : public GModel
{
public:
  void update_parts() override {}
};

vtkSmartPointer<vtkPolyData> triangle()
{
  const vtkNew<vtkPoints> points;
  points->InsertNextPoint(0.0, 0.0, 0.0);
  points->InsertNextPoint(1.0, 0.0, 0.0);
  points->InsertNextPoint(0.0, 1.0, 0.0);
  const vtkNew<vtkCellArray> cells;
  cells->InsertNextCell({0, 1, 2});
  auto data = vtkSmartPointer<vtkPolyData>::New();
  data->SetPoints(points);
  data->SetPolys(cells);
  return data;
}

std::vector<vtkSmartPointer<vtkProp>> make_props(vtkDataObject* data, GView* /*view*/)
{
  const vtkNew<vtkPolyDataMapper> mapper;
  mapper->SetInputDataObject(data);
  auto actor = vtkSmartPointer<vtkActor>::New();
  actor->SetMapper(mapper);
  const vtkNew<vtkInformation> keys;
  keys->Set(MRUtil::RENDER_MODE(), MRUtil::RENDER_FLAT);
  actor->SetPropertyKeys(keys);
  return {actor};
}

} // namespace

extern "C" __attribute__((visibility("default"))) void show_in_window(vtkRenderWindow* window);

/// Renders a view with a part and a label in the host's window, and takes everything away again, but for an
/// observer of the window.
extern "C" void show_in_window(vtkRenderWindow* window)
{
  GModelSet set;
  PluginModel model;
  set.add_model(&model);
  GView view;
  view.set_render_window(window);
  view.set_model_set(&set);
  model.add_part(triangle(), make_props);
  model.add_label("plug-in", BrantVector(1.0, 0.0, 0.0), BrantColor(255, 0, 0));
  window->AddObserver(vtkCommand::EndEvent, view.update_viewport_command());
  view.enable_overlay();
  view.get_renderer()->ResetCamera();
  view.render();
}
