// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
//
// VTK's pickers that draw props as numbers, in a view.
#include "GView.h"

#include "MRUtil.h"
#include "ViewFixture.h"

#include <vtkActor.h>
#include <vtkInformation.h>
#include <vtkInformationIntegerKey.h>
#include <vtkNew.h>
#include <vtkPropPicker.h>
#include <vtkProperty.h>

using namespace morrow_test;

namespace {

class HardwareSelectionTest : public ViewRenderTest
{
protected:
  std::shared_ptr<GView> view = make_view();

  /// The prop at the middle of the window.
  vtkProp* pick()
  {
    vtkNew<vtkPropPicker> picker;
    picker->Pick(50.0, 50.0, 0.0, view->get_renderer());
    return picker->GetViewProp();
  }

  vtkSmartPointer<vtkActor> add_square(int mode, double z = 0.0)
  {
    auto actor = flat_actor(quad(-0.5, -0.5, 0.5, 0.5, z), kRed);
    vtkNew<vtkInformation> keys;
    keys->Set(MRUtil::RENDER_MODE(), mode);
    actor->SetPropertyKeys(keys);
    show(*view, actor);
    return actor;
  }
};

TEST_F(HardwareSelectionTest, FindsTheNearestProp)
{
  show(*view, flat_actor(quad(-0.5, -0.5, 0.5, 0.5, 0.0), kRed));
  const auto near = flat_actor(quad(-0.5, -0.5, 0.5, 0.5, 1.0), kGreen);
  show(*view, near);
  view->render();
  EXPECT_EQ(pick(), near.Get());
}

TEST_F(HardwareSelectionTest, FindsNothingBesideTheProps)
{
  show(*view, flat_actor(quad(0.2, 0.2, 0.5, 0.5), kRed));
  view->render();
  EXPECT_EQ(pick(), nullptr);
}

TEST_F(HardwareSelectionTest, PassesOverWhatIsNotPickable)
{
  const auto behind = flat_actor(quad(-0.5, -0.5, 0.5, 0.5, 0.0), kRed);
  const auto before = flat_actor(quad(-0.5, -0.5, 0.5, 0.5, 1.0), kGreen);
  before->PickableOff();
  view->add_props({before, behind});
  view->render();
  EXPECT_EQ(pick(), behind.Get());
}

TEST_F(HardwareSelectionTest, FindsTranslucentProps)
{
  const auto actor = flat_square();
  actor->GetProperty()->SetOpacity(0.5);
  show(*view, actor);
  view->render();
  EXPECT_EQ(pick(), actor.Get());
}

TEST_F(HardwareSelectionTest, PassesOverSurfacesThatTheirModeLeavesOut)
{
  const auto shown = add_square(MRUtil::RENDER_DEFAULT, 0.0);
  add_square(MRUtil::RENDER_NO_SURFACES, 1.0);
  add_square(MRUtil::RENDER_WIREFRAME, 2.0);
  view->render();
  EXPECT_EQ(pick(), shown.Get());
}

TEST_F(HardwareSelectionTest, FindsSurfacesThatOnlyFillTheDepthBuffer)
{
  const auto actor = add_square(MRUtil::RENDER_HIDDEN_LINE);
  view->render();
  EXPECT_EQ(pick(), actor.Get());
}

TEST_F(HardwareSelectionTest, FindsVerticesWhileTheyAreShown)
{
  const auto actor = flat_square();
  actor->GetProperty()->SetRepresentationToWireframe();
  vtkNew<vtkInformation> keys;
  keys->Set(MRUtil::VERTEX_VISIBILITY(), 1);
  actor->SetPropertyKeys(keys);
  actor->GetProperty()->SetRepresentationToSurface();
  actor->GetPropertyKeys()->Set(MRUtil::RENDER_MODE(), MRUtil::RENDER_NO_SURFACES);
  show(*view, actor);
  view->render();
  EXPECT_EQ(pick(), nullptr);
  view->set_vertex_visibility(true);
  EXPECT_EQ(pick(), actor.Get());
}

TEST_F(HardwareSelectionTest, ThePictureIsTheSameAfterwards)
{
  show(*view, flat_square());
  const Image before = picture(*view);
  pick();
  EXPECT_TRUE(before == picture(*view));
}

} // namespace
