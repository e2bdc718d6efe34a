// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "Lighting.h"

#include <vtkLight.h>
#include <vtkLightCollection.h>
#include <vtkRenderer.h>

namespace morrow {

namespace {

constexpr double Scale = 1.5;
constexpr double Offset = 0.5;

// NaN is in no range.
bool is_intensity(float value)
{
  return value >= 0.0F && value <= 1.0F;
}

} // namespace

float light_for_renderer(float value)
{
  return static_cast<float>(value * Scale + Offset);
}

float light_for_host(float stored)
{
  return static_cast<float>((stored - Offset) / Scale);
}

bool are_intensities(float r, float g, float b)
{
  return is_intensity(r) && is_intensity(g) && is_intensity(b);
}

double mean_intensity(const float* rgb)
{
  return (static_cast<double>(rgb[0]) + rgb[1] + rgb[2]) / 3.0;
}

void set_lights(vtkRenderer& renderer, const double* rgb, double intensity)
{
  vtkLightCollection* lights = renderer.GetLights();
  vtkCollectionSimpleIterator cookie;
  lights->InitTraversal(cookie);
  while (vtkLight* each = lights->GetNextLight(cookie)) {
    each->SetColor(rgb[0], rgb[1], rgb[2]);
    each->SetIntensity(intensity);
  }
}

} // namespace morrow
