// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// What the forms of the axis triad are made of. How they look is in GAxisRenderTest.cxx.
#include "AxisForm.h"

#include "ViewFixture.h"

#include <vtkActor2D.h>
#include <vtkArrowSource.h>
#include <vtkCoordinate.h>
#include <vtkPolyDataMapper.h>
#include <vtkPolyDataMapper2D.h>
#include <vtkProperty2D.h>
#include <vtkSphereSource.h>
#include <vtkTextMapper.h>
#include <vtkTextProperty.h>
#include <vtkTransform.h>

#include <limits>

namespace {

using namespace morrow_test;
using morrow::AxisForm;
using morrow::AxisFrame;

/// A frame of a renderer with a skew camera.
class AxisFormTest : public ViewTest
{
protected:
  AxisFormTest()
  {
    vtkCamera* camera = mView->get_renderer()->GetActiveCamera();
    camera->SetPosition(3.0, 2.0, 8.0);
    camera->SetViewUp(0.3, 1.0, 0.2);
  }

  [[nodiscard]] AxisFrame frame() const { return {mView->get_renderer(), 25.0F, 0.75, 30, 36}; }

  /// A turn by this part of the camera's orientation, then a scale.
  [[nodiscard]] vtkSmartPointer<vtkTransform> placed(double part_of_turn, double length) const
  {
    const double* wxyz = mView->get_renderer()->GetActiveCamera()->GetOrientationWXYZ();
    auto transform = vtkSmartPointer<vtkTransform>::New();
    transform->RotateWXYZ(part_of_turn * wxyz[0], wxyz[1], wxyz[2], wxyz[3]);
    transform->Scale(length, length, length);
    return transform;
  }

  std::shared_ptr<GView> mView = make_view();
};

template<typename Mapper>
vtkPolyData& data_of(Mapper& mapper)
{
  mapper.GetInputAlgorithm()->Update();
  return *mapper.GetInput();
}

vtkPolyData& data_of(vtkProp& shape)
{
  if (auto* actor = vtkActor::SafeDownCast(&shape)) {
    return data_of(*vtkPolyDataMapper::SafeDownCast(actor->GetMapper()));
  }
  return data_of(*vtkPolyDataMapper2D::SafeDownCast(vtkActor2D::SafeDownCast(&shape)->GetMapper()));
}

/// The points of a source, each taken along its axis: an arrow along x for axis 0, y for 1 and z for 2.
std::vector<BrantVector> points_of(vtkPolyData& source, int axis)
{
  std::vector<BrantVector> points;
  for (vtkIdType i = 0; i < source.GetNumberOfPoints(); ++i) {
    const BrantVector p(source.GetPoint(i));
    const BrantVector along[] = {p, {-p.y(), p.x(), p.z()}, {-p.z(), p.y(), p.x()}};
    points.push_back(along[axis]);
  }
  return points;
}

void expect_points(vtkPolyData& data, const std::vector<BrantVector>& unit, vtkTransform& placed)
{
  ASSERT_EQ(data.GetNumberOfPoints(), static_cast<vtkIdType>(unit.size()));
  for (std::size_t i = 0; i < unit.size(); ++i) {
    double expected[3];
    placed.TransformPoint(unit[i].data(), expected);
    const BrantVector p(data.GetPoint(static_cast<vtkIdType>(i)));
    EXPECT_LT(p.distance_between(BrantVector(expected)), 1e-5) << i;
  }
}

void expect_arrows(const AxisForm& form, int shaft_resolution, int tip_resolution, vtkTransform& placed)
{
  const vtkNew<vtkArrowSource> arrow;
  arrow->SetShaftResolution(shaft_resolution);
  arrow->SetTipResolution(tip_resolution);
  arrow->Update();
  ASSERT_EQ(form.shapes().size(), 3U);
  for (int axis = 0; axis < 3; ++axis) {
    SCOPED_TRACE(axis);
    vtkPolyData& data = data_of(*form.shapes()[static_cast<std::size_t>(axis)]);
    expect_points(data, points_of(*arrow->GetOutput(), axis), placed);
  }
}

void expect_color(const double* rgb, double r, double g, double b)
{
  EXPECT_EQ(BrantVector(rgb), BrantVector(r, g, b));
}

void expect_labels(const AxisForm& form)
{
  const char* names[] = {"X", "Y", "Z"};
  ASSERT_EQ(form.labels().size(), 3U);
  vtkTextProperty* style = nullptr;
  for (std::size_t i = 0; i < 3; ++i) {
    auto* text = vtkTextMapper::SafeDownCast(form.labels()[i]->GetMapper());
    ASSERT_NE(text, nullptr);
    EXPECT_STREQ(text->GetInput(), names[i]);
    style = style != nullptr ? style : text->GetTextProperty();
    EXPECT_EQ(text->GetTextProperty(), style) << "one for all";
  }
  EXPECT_EQ(style->GetBold(), 0);
  EXPECT_NE(style->GetShadow(), 0);
  expect_color(style->GetColor(), 1.0, 1.0, 1.0);
}

TEST_F(AxisFormTest, In3dHasArrowsAlongTheAxesOfTheWorld)
{
  const auto form = morrow::make_axis_form_3d();
  for (int time = 0; time < 2; ++time) {
    form->place(this->frame());
    expect_arrows(*form, 30, 50, *this->placed(0.0, 0.75));
  }
  for (std::size_t i = 0; i < 3; ++i) {
    const double* color = vtkActor::SafeDownCast(form->shapes()[i])->GetProperty()->GetColor();
    expect_color(color, i == 0 ? 1.0 : 0.0, i == 1 ? 1.0 : 0.0, i == 2 ? 1.0 : 0.0);
  }
  expect_labels(*form);
}

TEST_F(AxisFormTest, In2dHasArrowsThatTurnWithTheCamera)
{
  const auto form = morrow::make_axis_form_2d();
  for (int time = 0; time < 2; ++time) {
    form->place(this->frame());
    expect_arrows(*form, 3, 5, *this->placed(1.0, 25.0));
  }
  vtkCoordinate* coordinate = nullptr;
  for (std::size_t i = 0; i < 3; ++i) {
    auto* arrow = vtkActor2D::SafeDownCast(form->shapes()[i]);
    ASSERT_NE(arrow, nullptr);
    EXPECT_EQ(arrow->GetPosition()[0], 30.0);
    EXPECT_EQ(arrow->GetPosition()[1], 36.0);
    expect_color(arrow->GetProperty()->GetColor(), i == 0 ? 1.0 : 0.0, i == 1 ? 1.0 : 0.0,
                 i == 2 ? 1.0 : 0.0);
    vtkCoordinate* own = vtkPolyDataMapper2D::SafeDownCast(arrow->GetMapper())->GetTransformCoordinate();
    coordinate = coordinate != nullptr ? coordinate : own;
    ASSERT_NE(own, nullptr);
    EXPECT_EQ(own, coordinate) << "one for all";
    EXPECT_EQ(own->GetCoordinateSystem(), VTK_VIEWPORT);
  }
  expect_labels(*form);
}

TEST_F(AxisFormTest, In2dLabelsStandAtTheTips)
{
  const auto form = morrow::make_axis_form_2d();
  form->place(this->frame());
  form->place_labels(this->frame());
  const auto placed = this->placed(1.0, 25.0);
  for (int axis = 0; axis < 3; ++axis) {
    BrantVector unit;
    unit[axis] = 1.0;
    double tip[3];
    placed->TransformPoint(unit.data(), tip);
    vtkActor2D& label = *form->labels()[static_cast<std::size_t>(axis)];
    EXPECT_NEAR(label.GetPosition()[0], tip[0] + 30.0, 1.0);
    EXPECT_NEAR(label.GetPosition()[1], tip[1] + 36.0, 1.0);
    EXPECT_NE(label.GetVisibility(), 0);
  }
}

TEST_F(AxisFormTest, In1dIsABallThatTurnsAgainstTheCamera)
{
  const auto form = morrow::make_axis_form_1d();
  const vtkNew<vtkSphereSource> ball;
  ball->SetRadius(0.25);
  ball->SetThetaResolution(8);
  ball->SetPhiResolution(4);
  ball->Update();
  ASSERT_EQ(form->shapes().size(), 1U);
  for (int time = 0; time < 2; ++time) {
    form->place(this->frame());
    expect_points(data_of(*form->shapes()[0]), points_of(*ball->GetOutput(), 0), *this->placed(-1.0, 0.75));
  }
  vtkProperty& property = *vtkActor::SafeDownCast(form->shapes()[0])->GetProperty();
  expect_color(property.GetColor(), 1.0, 1.0, 0.0);
  EXPECT_EQ(property.GetAmbient(), 1.0);
  EXPECT_EQ(property.GetDiffuse(), 0.0);
  EXPECT_TRUE(form->labels().empty());
}

TEST_F(AxisFormTest, ColoursOfLabelsArePartsOf255)
{
  for (const auto& form : {morrow::make_axis_form_3d(), morrow::make_axis_form_2d()}) {
    form->set_label_color(BrantColor(51, 102, 204));
    auto* text = vtkTextMapper::SafeDownCast(form->labels()[0]->GetMapper());
    expect_color(text->GetTextProperty()->GetColor(), 51 / 255.0, 102 / 255.0, 204 / 255.0);
  }
}

TEST_F(AxisFormTest, OnlyPointsOfTheRendererHaveADepth)
{
  const auto view = make_view(50, 40);
  vtkRenderer& renderer = *view->get_renderer();
  EXPECT_TRUE(morrow::is_on_renderer(renderer, 0.0, 0.0));
  EXPECT_TRUE(morrow::is_on_renderer(renderer, 49.9, 39.9));
  EXPECT_FALSE(morrow::is_on_renderer(renderer, 50.0, 0.0));
  EXPECT_FALSE(morrow::is_on_renderer(renderer, 0.0, 40.0));
  EXPECT_FALSE(morrow::is_on_renderer(renderer, -0.1, 0.0));
  EXPECT_FALSE(morrow::is_on_renderer(renderer, 0.0, -0.1));
  EXPECT_FALSE(morrow::is_on_renderer(renderer, 1e300, 0.0));
  EXPECT_FALSE(morrow::is_on_renderer(renderer, 0.0, std::numeric_limits<double>::quiet_NaN()));
  renderer.SetViewport(0.5, 0.5, 1.0, 1.0);
  EXPECT_FALSE(morrow::is_on_renderer(renderer, 24.9, 30.0));
  EXPECT_TRUE(morrow::is_on_renderer(renderer, 25.0, 20.0));
}

} // namespace
