// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "vtkLegendActor.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "BrantVector.h"

#include <vtkActor2D.h>
#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkCoordinate.h>
#include <vtkObjectFactory.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper2D.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkTextMapper.h>
#include <vtkTextProperty.h>
#include <vtkUnsignedCharArray.h>

vtkStandardNewMacro(vtkLegendActor)

namespace {

constexpr int NumberOfBlocks = 4;
constexpr int PointsPerEdge = NumberOfBlocks + 1;

constexpr vtkIdType BlockCorners[NumberOfBlocks][4] = {
    {0, 1, 6, 5}, {1, 2, 7, 6}, {2, 3, 8, 7}, {3, 4, 9, 8}};
constexpr unsigned char BlockColors[NumberOfBlocks][3] = {
    {0, 0, 0}, {255, 255, 255}, {0, 0, 0}, {255, 255, 255}};

// Fractions of the viewport's width.
constexpr double BarBegin = 0.33333;
constexpr double BarEnd = 0.66667;

// Pixels from the viewport's bottom.
constexpr double BarBottom = 10.0;
constexpr double BarMiddle = 15.0;
constexpr double BarTop = 20.0;

constexpr double LabelGap = 1.0;

// The labels with text.
constexpr int FirstLabel = 0;
constexpr int MiddleLabel = 2;
constexpr int LastLabel = 4;

void set_up_text(vtkTextProperty& property)
{
  property.SetJustificationToCentered();
  property.BoldOn();
  property.ItalicOn();
  property.ShadowOn();
  property.SetFontFamilyToArial();
  property.SetFontSize(10);
}

BrantVector world_point(vtkCoordinate& coordinate, vtkViewport& viewport, double x, double y)
{
  coordinate.SetValue(x, y, 0.0);
  return BrantVector(coordinate.GetComputedWorldValue(&viewport));
}

// VTK reports an error for a renderer without camera, and divides by the number of pixels.
bool has_world_coordinates(vtkViewport& viewport)
{
  auto* renderer = vtkRenderer::SafeDownCast(&viewport);
  if (renderer == nullptr || renderer->GetVTKWindow() == nullptr || renderer->IsActiveCameraCreated() == 0) {
    return false;
  }
  const int* size = renderer->GetSize();
  return size[0] > 0 && size[1] > 0;
}

bool was_rendered(vtkWindow* window)
{
  auto* render_window = vtkRenderWindow::SafeDownCast(window);
  return render_window != nullptr && render_window->GetNeverRendered() == 0;
}

void write_number(vtkTextMapper& label, double number)
{
  char text[32];
  std::snprintf(text, sizeof text, "%g", number);
  label.SetInput(text);
}

void print_address(ostream& os, const void* address)
{
  if (address != nullptr) {
    os << address << "\n";
  } else {
    os << "(none)\n";
  }
}

} // namespace

// ---------------------------------------------------------------------------------------------------------
// Parts

vtkLegendActor::vtkLegendActor()
{
  this->Coordinate->SetCoordinateSystemToDisplay();
  this->make_bar();
  this->make_labels();
}

vtkLegendActor::~vtkLegendActor()
{
  this->adopt_window(nullptr);
}

void vtkLegendActor::make_bar()
{
  this->LegendPoints->SetNumberOfPoints(2 * PointsPerEdge);
  this->place_bar(0.0);
  const vtkNew<vtkCellArray> blocks;
  const vtkNew<vtkUnsignedCharArray> colors;
  colors->SetNumberOfComponents(3);
  for (int i = 0; i < NumberOfBlocks; ++i) {
    blocks->InsertNextCell(4, BlockCorners[i]);
    colors->InsertNextTypedTuple(BlockColors[i]);
  }
  this->Legend->SetPoints(this->LegendPoints);
  this->Legend->SetPolys(blocks);
  this->Legend->GetCellData()->SetScalars(colors);
  this->LegendMapper->SetInputData(this->Legend);
  this->LegendActor->SetMapper(this->LegendMapper);
}

void vtkLegendActor::make_labels()
{
  set_up_text(*this->LegendTitleProperty);
  this->LegendTitleProperty->SetVerticalJustificationToBottom();
  set_up_text(*this->LegendLabelProperty);
  this->LegendLabelProperty->SetVerticalJustificationToTop();
  for (int i = 0; i < NumberOfLabels; ++i) {
    this->LabelMappers[i]->SetTextProperty(this->LegendLabelProperty);
    this->LabelActors[i]->SetMapper(this->LabelMappers[i]);
  }
  this->LabelMappers[FirstLabel]->SetInput("0");
}

template<typename Function>
void vtkLegendActor::for_each_part(Function&& function)
{
  function(*this->LegendActor);
  for (vtkActor2D* label : this->LabelActors) {
    function(*label);
  }
}

// ---------------------------------------------------------------------------------------------------------
// Settings

void vtkLegendActor::SetLabelMode(int mode)
{
  if (mode != this->LabelMode) {
    this->LabelMode = mode;
    this->Modified();
  }
}

int vtkLegendActor::GetLabelMode()
{
  return this->LabelMode;
}

void vtkLegendActor::SetLegendVisibility(int visibility)
{
  if (visibility != this->LegendVisibility) {
    this->LegendVisibility = visibility;
    this->Modified();
  }
}

int vtkLegendActor::GetLegendVisibility()
{
  return this->LegendVisibility;
}

void vtkLegendActor::LegendVisibilityOn()
{
  this->SetLegendVisibility(1);
}

void vtkLegendActor::LegendVisibilityOff()
{
  this->SetLegendVisibility(0);
}

vtkTextProperty* vtkLegendActor::GetLegendTitleProperty()
{
  return this->LegendTitleProperty;
}

vtkTextProperty* vtkLegendActor::GetLegendLabelProperty()
{
  return this->LegendLabelProperty;
}

// ---------------------------------------------------------------------------------------------------------
// Layout

void vtkLegendActor::BuildRepresentation(vtkViewport* viewport)
{
  if (this->LegendVisibility != 0 && viewport != nullptr) {
    const double width = viewport->GetSize()[0];
    this->place_bar(width);
    this->write_distances(*viewport, width);
    this->place_labels();
  }
  this->BuildTime.Modified();
}

void vtkLegendActor::place_bar(double width)
{
  const double begin = width * BarBegin;
  const double block = 0.25 * begin;
  for (int i = 0; i < PointsPerEdge; ++i) {
    this->LegendPoints->SetPoint(i, begin + i * block, BarBottom, 0.0);
    this->LegendPoints->SetPoint(PointsPerEdge + i, begin + i * block, BarTop, 0.0);
  }
  this->LegendPoints->Modified();
}

void vtkLegendActor::write_distances(vtkViewport& viewport, double width)
{
  double distance = 0.0;
  if (has_world_coordinates(viewport)) {
    const BrantVector begin = world_point(*this->Coordinate, viewport, width * BarBegin, BarMiddle);
    const BrantVector end = world_point(*this->Coordinate, viewport, width * BarEnd, BarMiddle);
    distance = std::fabs(begin.distance_between(end)); // of what is not a number, the sign
  }
  write_number(*this->LabelMappers[MiddleLabel], 0.5 * distance);
  write_number(*this->LabelMappers[LastLabel], distance);
}

void vtkLegendActor::place_labels()
{
  for (int i = 0; i < NumberOfLabels; ++i) {
    const double* point = this->LegendPoints->GetPoint(i);
    this->LabelActors[i]->SetPosition(point[0], point[1] - LabelGap);
  }
}

// ---------------------------------------------------------------------------------------------------------
// Drawing

int vtkLegendActor::RenderOpaqueGeometry(vtkViewport* viewport)
{
  this->BuildRepresentation(viewport);
  if (this->LegendVisibility == 0 || viewport == nullptr) {
    return 0;
  }
  int drawn = 0;
  this->for_each_part([&](vtkActor2D& part) { drawn += part.RenderOpaqueGeometry(viewport); });
  return drawn;
}

int vtkLegendActor::RenderOverlay(vtkViewport* viewport)
{
  if (this->LegendVisibility == 0 || viewport == nullptr || !was_rendered(viewport->GetVTKWindow())) {
    return 0;
  }
  this->adopt_window(viewport->GetVTKWindow());
  int drawn = 0;
  this->for_each_part([&](vtkActor2D& part) { drawn += part.RenderOverlay(viewport); });
  return drawn;
}

// The graphics resources are of one window.
void vtkLegendActor::adopt_window(vtkWindow* window)
{
  if (window != mWindow && mWindow != nullptr) {
    this->ReleaseGraphicsResources(mWindow);
  }
  mWindow = window;
}

void vtkLegendActor::ReleaseGraphicsResources(vtkWindow* window)
{
  this->for_each_part([&](vtkActor2D& part) { part.ReleaseGraphicsResources(window); });
  if (window == mWindow) {
    mWindow = nullptr;
  }
  this->Superclass::ReleaseGraphicsResources(window);
}

void vtkLegendActor::PrintSelf(ostream& os, vtkIndent indent)
{
  this->Superclass::PrintSelf(os, indent);
  os << indent << "Label Mode: " << (this->LabelMode == 0 ? "Distance\n" : "XY_Coordinates\n");
  os << indent << "Legend Visibility: " << (this->LegendVisibility != 0 ? "On\n" : "Off\n");
  os << indent << "Legend Title Property: ";
  print_address(os, this->LegendTitleProperty.Get());
  os << indent << "Legend Label Property: ";
  print_address(os, this->LegendLabelProperty.Get());
}
