// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "MeshLights.h"

#include "GView.h"
#include "Options.h"

#include <vtkLight.h>
#include <vtkNew.h>
#include <vtkRenderer.h>

namespace {

constexpr double kIntensity = 0.45;
constexpr double kShare = kIntensity / 0.95; // of the view's own light

} // namespace

/// The view's own light comes from the eye, and shows the sides of a cube in one shade from a corner.
void light_mesh(GView& view, const Options& options)
{
  vtkNew<vtkLight> light;
  light->SetLightTypeToCameraLight();
  light->SetPosition(-0.4, 1.0, 0.4);
  light->SetFocalPoint(0.0, 0.0, 0.0);
  light->SetIntensity(kIntensity);
  view.get_renderer()->AddLight(light);
  if (options.light) {
    const auto& [red, green, blue] = *options.light;
    GView::set_light_intensity(red, green, blue); // of all lights alike
    light->SetIntensity(kShare * light->GetIntensity());
  }
  if (options.ambient) {
    const auto& [red, green, blue] = *options.ambient;
    GView::set_ambient_light_intensity(red, green, blue);
  }
}
