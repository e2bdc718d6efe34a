// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "MeshLights.h"

#include "GView.h"
#include "Options.h"

#include <vtkLight.h>
#include <vtkLightCollection.h>
#include <vtkNew.h>
#include <vtkRenderer.h>

#include <algorithm>

namespace {

constexpr double kIntensity = 0.45;
constexpr double kShare = kIntensity / 0.95; // of the view's own light

/// Gives all lights an intensity, and the one from above less of it than the view's own: it came last.
void set_light(GView& view, const Intensity& intensity)
{
  const auto& [red, green, blue] = intensity;
  GView::set_light_intensity(red, green, blue); // of all lights alike
  vtkLightCollection* lights = view.get_renderer()->GetLights();
  auto* light = vtkLight::SafeDownCast(lights->GetItemAsObject(lights->GetNumberOfItems() - 1));
  light->SetIntensity(kShare * light->GetIntensity());
}

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
    set_light(view, *options.light);
  }
  if (options.ambient) {
    const auto& [red, green, blue] = *options.ambient;
    GView::set_ambient_light_intensity(red, green, blue);
  }
}

void change_light(GView& view, float by)
{
  Intensity intensity = {};
  GView::get_light_intensity(intensity[0], intensity[1], intensity[2]);
  for (float& component : intensity) {
    component = std::clamp(component + by, 0.0F, 1.0F);
  }
  set_light(view, intensity);
}
