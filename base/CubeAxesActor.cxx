// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "CubeAxesActor.h"

#include "CubeAxis.h"

#include <vtkCoordinate.h>
#include <vtkObjectFactory.h>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace morrow {

namespace {

void replace(vtkAxisActor2D*& axis)
{
  axis->Delete();
  axis = CubeAxis::New();
  axis->GetPositionCoordinate()->SetCoordinateSystemToDisplay();
  axis->GetPosition2Coordinate()->SetCoordinateSystemToDisplay();
  axis->AdjustLabelsOff();
}

} // namespace

vtkStandardNewMacro(CubeAxesActor)

CubeAxesActor::CubeAxesActor()
{
  replace(this->XAxis);
  replace(this->YAxis);
  replace(this->ZAxis);
}

bool CubeAxesActor::has_bounds() const
{
  for (int axis = 0; axis < 3; ++axis) {
    const double extent = this->Bounds[2 * axis + 1] - this->Bounds[2 * axis];
    if (!std::isfinite(extent) || extent < 0.0) {
      return false;
    }
  }
  return true;
}

int CubeAxesActor::RenderOpaqueGeometry(vtkViewport* viewport)
{
  if (!has_bounds()) {
    this->RenderSomething = 0;
    return 0;
  }
  return this->Superclass::RenderOpaqueGeometry(viewport);
}

std::vector<CubeAxis*> CubeAxesActor::drawn_axes() const
{
  std::vector<CubeAxis*> axes;
  const auto add = [&axes](vtkAxisActor2D* axis, bool is_visible) {
    auto* own = CubeAxis::SafeDownCast(axis);
    if (is_visible && own->has_room()) {
      axes.push_back(own);
    }
  };
  add(this->XAxis, this->XAxisVisibility != 0);
  add(this->YAxis, this->YAxisVisibility != 0);
  add(this->ZAxis, this->ZAxisVisibility != 0);
  return axes;
}

std::vector<LabelBox> CubeAxesActor::labels(vtkViewport& viewport) const
{
  std::vector<LabelBox> boxes;
  for (const CubeAxis* axis : this->drawn_axes()) {
    const std::vector<LabelBox> own = axis->labels(viewport);
    std::copy_if(own.begin(), own.end(), std::back_inserter(boxes),
                 [](const LabelBox& box) { return box.is_shown; });
  }
  return boxes;
}

int CubeAxesActor::RenderOverlay(vtkViewport* viewport)
{
  const std::vector<CubeAxis*> axes = this->drawn_axes();
  if (this->RenderSomething != 0) {
    for (CubeAxis* axis : axes) {
      axis->thin_out(*viewport);
    }
    keep_labels_apart(axes, *viewport);
  }
  const auto is_drawn = [&axes](vtkAxisActor2D* axis) {
    return std::find(axes.begin(), axes.end(), axis) != axes.end();
  };
  const vtkTypeBool visible[3] = {this->XAxisVisibility, this->YAxisVisibility, this->ZAxisVisibility};
  this->XAxisVisibility = is_drawn(this->XAxis);
  this->YAxisVisibility = is_drawn(this->YAxis);
  this->ZAxisVisibility = is_drawn(this->ZAxis);
  const int drawn = this->Superclass::RenderOverlay(viewport);
  this->XAxisVisibility = visible[0];
  this->YAxisVisibility = visible[1];
  this->ZAxisVisibility = visible[2];
  return drawn;
}

void CubeAxesActor::PrintSelf(ostream& os, vtkIndent indent)
{
  this->Superclass::PrintSelf(os, indent);
}

} // namespace morrow
