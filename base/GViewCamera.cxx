// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
//
// The camera of a view: members of GView.
#include "GView.h"

#include <algorithm>
#include <cmath>

#include "BrantVector.h"

#include <vtkRenderer.h>

namespace {

BrantVector view_to_world(vtkRenderer& renderer, double x, double y, double z)
{
  renderer.ViewToWorld(x, y, z);
  return {x, y, z};
}

} // namespace

// ---------------------------------------------------------------------------------------------------------
// Conversions

void GView::pixel_to_model_length(vtkRenderer* renderer, double pixels, double& length, const double* point)
{
  if (renderer == nullptr) {
    return;
  }
  const int* size = renderer->GetSize();
  const int shorter = std::min(size[0], size[1]);
  if (shorter <= 0) {
    return;
  }
  double reference[3] = {0.0, 0.0, 0.0};
  if (point != nullptr) {
    std::copy_n(point, 3, reference);
  }
  renderer->WorldToView(reference[0], reference[1], reference[2]);
  const double depth = reference[2];
  const BrantVector start = view_to_world(*renderer, 0.0, 0.0, depth);
  const BrantVector end = view_to_world(*renderer, 2.0 * pixels / shorter, 0.0, depth);
  length = start.distance_between(end);
}

void GView::pixel_to_model_length(double pixels, double& length, const double* point) const
{
  pixel_to_model_length(mRenderer, pixels, length, point);
}
