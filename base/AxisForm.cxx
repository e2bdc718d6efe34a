// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "AxisForm.h"

#include <cmath>

#include <vtkActor.h>
#include <vtkActor2D.h>
#include <vtkArrowSource.h>
#include <vtkCamera.h>
#include <vtkCoordinate.h>
#include <vtkGeneralTransform.h>
#include <vtkPolyDataMapper.h>
#include <vtkPolyDataMapper2D.h>
#include <vtkProperty.h>
#include <vtkProperty2D.h>
#include <vtkRenderer.h>
#include <vtkSphereSource.h>
#include <vtkTextMapper.h>
#include <vtkTextProperty.h>
#include <vtkTransform.h>
#include <vtkTransformPolyDataFilter.h>

namespace morrow {

bool is_on_renderer(vtkRenderer& renderer, double x, double y)
{
  int width = 0;
  int height = 0;
  int left = 0;
  int bottom = 0;
  renderer.GetTiledSizeAndOrigin(&width, &height, &left, &bottom);
  return x >= left && y >= bottom && x < left + width && y < bottom + height;
}

// ---------------------------------------------------------------------------------------------------------
// What the forms share

AxisForm::AxisForm() = default;
AxisForm::~AxisForm() = default;

template<typename Function>
void AxisForm::for_each_part(Function&& function)
{
  for (vtkProp* shape : mShapes) {
    function(*shape);
  }
  for (vtkActor2D* label : mLabels) {
    function(*label);
  }
}

int AxisForm::render_opaque(vtkViewport* viewport)
{
  int drawn = 0;
  this->for_each_part([&](vtkProp& part) { drawn += part.RenderOpaqueGeometry(viewport); });
  return drawn;
}

int AxisForm::render_translucent(vtkViewport* viewport)
{
  int drawn = 0;
  this->for_each_part([&](vtkProp& part) { drawn += part.RenderTranslucentPolygonalGeometry(viewport); });
  return drawn;
}

int AxisForm::render_overlay(vtkViewport* viewport)
{
  int drawn = 0;
  this->for_each_part([&](vtkProp& part) {
    if (part.GetVisibility() != 0) {
      drawn += part.RenderOverlay(viewport);
    }
  });
  return drawn;
}

void AxisForm::set_label_color(BrantColor color)
{
  if (mLabelStyle != nullptr) {
    mLabelStyle->SetColor(color.red() / 255.0, color.green() / 255.0, color.blue() / 255.0);
  }
}

void AxisForm::release(vtkWindow* window)
{
  this->for_each_part([&](vtkProp& part) { part.ReleaseGraphicsResources(window); });
}

void AxisForm::set_transform(const double* wxyz, double length)
{
  mTransform->Identity();
  if (wxyz != nullptr) {
    mTransform->RotateWXYZ(wxyz[0], wxyz[1], wxyz[2], wxyz[3]);
  }
  mTransform->Scale(length, length, length);
}

namespace {

// ---------------------------------------------------------------------------------------------------------
// The arrows and labels of the 3-D and the 2-D form

constexpr std::size_t AxisCount = 3;

struct Axis
{
  double direction[3];
  double color[3];
  const char* name;
  double wxyz[4]; // takes an arrow along x to this axis
};

constexpr Axis Axes[AxisCount] = {
    {{1.0, 0.0, 0.0}, {1.0, 0.0, 0.0}, "X", {0.0, 0.0, 0.0, 1.0}},
    {{0.0, 1.0, 0.0}, {0.0, 1.0, 0.0}, "Y", {90.0, 0.0, 0.0, 1.0}},
    {{0.0, 0.0, 1.0}, {0.0, 0.0, 1.0}, "Z", {270.0, 0.0, 1.0, 0.0}},
};

class ArrowForm : public AxisForm
{
protected:
  /// A unit arrow along an axis, taken through the shared transform.
  vtkSmartPointer<vtkTransformPolyDataFilter> make_arrow(const Axis& axis, int shaft_resolution,
                                                         int tip_resolution);
  void make_labels();
};

vtkSmartPointer<vtkTransformPolyDataFilter> ArrowForm::make_arrow(const Axis& axis, int shaft_resolution,
                                                                  int tip_resolution)
{
  const vtkNew<vtkArrowSource> arrow;
  arrow->SetShaftResolution(shaft_resolution);
  arrow->SetTipResolution(tip_resolution);
  const vtkNew<vtkTransform> along_axis;
  along_axis->RotateWXYZ(axis.wxyz[0], axis.wxyz[1], axis.wxyz[2], axis.wxyz[3]);
  const vtkNew<vtkTransformPolyDataFilter> turned;
  turned->SetInputConnection(arrow->GetOutputPort());
  turned->SetTransform(along_axis);
  auto placed = vtkSmartPointer<vtkTransformPolyDataFilter>::New();
  placed->SetInputConnection(turned->GetOutputPort());
  placed->SetTransform(mTransform);
  return placed;
}

void ArrowForm::make_labels()
{
  mLabelStyle = vtkSmartPointer<vtkTextProperty>::New();
  mLabelStyle->BoldOff();
  mLabelStyle->ShadowOn();
  for (const Axis& axis : Axes) {
    const vtkNew<vtkTextMapper> text;
    text->SetInput(axis.name);
    text->SetTextProperty(mLabelStyle);
    auto label = vtkSmartPointer<vtkActor2D>::New();
    label->SetMapper(text);
    mLabels.push_back(label);
  }
}

// ---------------------------------------------------------------------------------------------------------

class AxisForm3D final : public ArrowForm
{
public:
  AxisForm3D();
  void place(const AxisFrame& frame) override { this->set_transform(nullptr, frame.model_length); }
  void place_labels(const AxisFrame& frame) override;

private:
  void add_arrow(const Axis& axis);
  static void place_label(vtkActor2D& label, const Axis& axis, const AxisFrame& frame);
};

AxisForm3D::AxisForm3D()
{
  for (const Axis& axis : Axes) {
    this->add_arrow(axis);
  }
  this->make_labels();
  this->set_label_color(BRANT_WHITE);
}

void AxisForm3D::add_arrow(const Axis& axis)
{
  const vtkNew<vtkPolyDataMapper> mapper;
  mapper->SetInputConnection(this->make_arrow(axis, 30, 50)->GetOutputPort());
  auto arrow = vtkSmartPointer<vtkActor>::New();
  arrow->SetMapper(mapper);
  arrow->GetProperty()->SetColor(axis.color[0], axis.color[1], axis.color[2]);
  mShapes.emplace_back(arrow);
}

void AxisForm3D::place_label(vtkActor2D& label, const Axis& axis, const AxisFrame& frame)
{
  vtkRenderer& renderer = *frame.renderer;
  const double* d = axis.direction;
  renderer.SetWorldPoint(frame.model_length * d[0], frame.model_length * d[1], frame.model_length * d[2],
                         1.0);
  renderer.WorldToDisplay();
  double tip[3];
  renderer.GetDisplayPoint(tip);
  bool seen = is_on_renderer(renderer, tip[0], tip[1]);
  if (seen) {
    const int x = static_cast<int>(tip[0]);
    const int y = static_cast<int>(tip[1]);
    seen = renderer.GetZ(x, y) > tip[2];
    label.SetDisplayPosition(x, y);
  }
  label.SetVisibility(seen);
}

void AxisForm3D::place_labels(const AxisFrame& frame)
{
  for (std::size_t i = 0; i < AxisCount; ++i) {
    place_label(*mLabels[i], Axes[i], frame);
  }
}

// ---------------------------------------------------------------------------------------------------------

class AxisForm2D final : public ArrowForm
{
public:
  AxisForm2D();
  void place(const AxisFrame& frame) override;
  void place_labels(const AxisFrame& frame) override;

private:
  void add_arrow(const Axis& axis);

  vtkNew<vtkCoordinate> mViewportCoordinate; // relative to the corner
  std::vector<vtkActor2D*> mArrows;          // the shapes
};

AxisForm2D::AxisForm2D()
{
  mViewportCoordinate->SetCoordinateSystemToViewport();
  for (const Axis& axis : Axes) {
    this->add_arrow(axis);
  }
  this->make_labels();
}

void AxisForm2D::add_arrow(const Axis& axis)
{
  const vtkNew<vtkPolyDataMapper2D> mapper;
  mapper->SetInputConnection(this->make_arrow(axis, 3, 5)->GetOutputPort());
  mapper->SetTransformCoordinate(mViewportCoordinate);
  mapper->TransformCoordinateUseDoubleOn();
  auto arrow = vtkSmartPointer<vtkActor2D>::New();
  arrow->SetMapper(mapper);
  arrow->GetProperty()->SetColor(axis.color[0], axis.color[1], axis.color[2]);
  mArrows.push_back(arrow);
  mShapes.emplace_back(arrow);
}

void AxisForm2D::place(const AxisFrame& frame)
{
  const double* wxyz = frame.renderer->GetActiveCamera()->GetOrientationWXYZ();
  this->set_transform(wxyz, frame.pixel_length);
  // Of the viewport, which is the display where the renderer begins in the window's corner.
  for (vtkActor2D* arrow : mArrows) {
    arrow->SetPosition(frame.corner_x, frame.corner_y);
  }
}

void AxisForm2D::place_labels(const AxisFrame& frame)
{
  for (std::size_t i = 0; i < AxisCount; ++i) {
    double tip[3];
    mTransform->TransformPoint(Axes[i].direction, tip);
    const bool seen = std::isfinite(tip[0]) && std::isfinite(tip[1]);
    if (seen) {
      mViewportCoordinate->SetValue(tip);
      const int* value = mViewportCoordinate->GetComputedViewportValue(frame.renderer);
      mLabels[i]->SetPosition(value[0] + frame.corner_x, value[1] + frame.corner_y);
    }
    mLabels[i]->SetVisibility(seen);
  }
}

// ---------------------------------------------------------------------------------------------------------

class AxisForm1D final : public AxisForm
{
public:
  AxisForm1D();
  void place(const AxisFrame& frame) override;
  void place_labels(const AxisFrame& /*frame*/) override {}
};

AxisForm1D::AxisForm1D()
{
  const vtkNew<vtkSphereSource> sphere;
  sphere->SetRadius(0.25);
  sphere->SetThetaResolution(8);
  sphere->SetPhiResolution(4);
  const vtkNew<vtkTransformPolyDataFilter> placed;
  placed->SetInputConnection(sphere->GetOutputPort());
  placed->SetTransform(mTransform);
  const vtkNew<vtkPolyDataMapper> mapper;
  mapper->SetInputConnection(placed->GetOutputPort());
  auto ball = vtkSmartPointer<vtkActor>::New();
  ball->SetMapper(mapper);
  vtkProperty& property = *ball->GetProperty();
  property.SetColor(1.0, 1.0, 0.0);
  property.SetAmbient(1.0);
  property.SetDiffuse(0.0);
  property.SetInterpolation(VTK_GOURAUD);
  mShapes.emplace_back(ball);
}

void AxisForm1D::place(const AxisFrame& frame)
{
  const double* wxyz = frame.renderer->GetActiveCamera()->GetOrientationWXYZ();
  const double back[4] = {-wxyz[0], wxyz[1], wxyz[2], wxyz[3]};
  this->set_transform(back, frame.model_length);
}

} // namespace

std::unique_ptr<AxisForm> make_axis_form_3d()
{
  return std::make_unique<AxisForm3D>();
}

std::unique_ptr<AxisForm> make_axis_form_2d()
{
  return std::make_unique<AxisForm2D>();
}

std::unique_ptr<AxisForm> make_axis_form_1d()
{
  return std::make_unique<AxisForm1D>();
}

} // namespace morrow
