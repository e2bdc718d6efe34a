// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "CubeAxesActor.h"

#include "ScaleLabels.h"

#include <vtkAxisActor2D.h>
#include <vtkCoordinate.h>
#include <vtkObjectFactory.h>

#include <cmath>

namespace morrow {

namespace {

constexpr double LeastLength = 60.0; // in pixels: room for five numbers above each other

/// One axis, which chooses its format by itself.
class CubeAxis : public vtkAxisActor2D
{
public:
  static CubeAxis* New() { VTK_STANDARD_NEW_BODY(CubeAxis); }
  vtkTypeMacro(CubeAxis, vtkAxisActor2D)
  CubeAxis(const CubeAxis&) = delete;
  void operator=(const CubeAxis&) = delete;

  using vtkAxisActor2D::SetRange;

  void SetRange(double first, double last) override
  {
    let_scale_meet_zero(first, last, this->NumberOfLabels);
    this->Superclass::SetRange(first, last);
  }

  // The cube hands one format to all of its axes.
  void SetLabelFormat(const char* /*format*/) override
  {
    const std::string own = scale_format(this->Range[0], this->Range[1], this->NumberOfLabels);
    this->Superclass::SetLabelFormat(own.c_str());
  }

protected:
  CubeAxis() = default;
  ~CubeAxis() override = default;
};

void replace(vtkAxisActor2D*& axis)
{
  axis->Delete();
  axis = CubeAxis::New();
  axis->GetPositionCoordinate()->SetCoordinateSystemToDisplay();
  axis->GetPosition2Coordinate()->SetCoordinateSystemToDisplay();
  axis->AdjustLabelsOff();
}

bool has_room(vtkAxisActor2D& axis)
{
  const double* a = axis.GetPositionCoordinate()->GetValue();
  const double* b = axis.GetPosition2Coordinate()->GetValue();
  const double* range = axis.GetRange();
  return std::hypot(b[0] - a[0], b[1] - a[1]) >= LeastLength &&
         is_scale(range[0], range[1], axis.GetNumberOfLabels());
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

int CubeAxesActor::RenderOverlay(vtkViewport* viewport)
{
  const vtkTypeBool visible[3] = {this->XAxisVisibility, this->YAxisVisibility, this->ZAxisVisibility};
  this->XAxisVisibility = visible[0] != 0 && has_room(*this->XAxis);
  this->YAxisVisibility = visible[1] != 0 && has_room(*this->YAxis);
  this->ZAxisVisibility = visible[2] != 0 && has_room(*this->ZAxis);
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
