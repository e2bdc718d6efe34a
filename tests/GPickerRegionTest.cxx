// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// The regions that GPicker builds of display coordinates, and the window that it renders before.
#include "PickBounds.h"
#include "PickFixture.h"

#include <vtkCallbackCommand.h>
#include <vtkCommand.h>
#include <vtkRenderWindowInteractor.h>
#include <vtkSmartPointer.h>

#include <climits>
#include <cmath>
#include <limits>
#include <memory>
#include <stdexcept>

namespace {

using namespace morrow_test;

class GPickerRegionTest : public RenderTest
{
protected:
  GPickerRegionTest()
  {
    mPicker.on_bounds = [this](vtkRenderer* renderer, PickBounds* bounds) {
      mRenderer = renderer;
      if (mLook) {
        mLook(*bounds);
      }
      return 42;
    };
  }

  TestPicker mPicker;
  vtkRenderer* mRenderer = nullptr;
  std::function<void(PickBounds&)> mLook;
  int mCorner1[2] = {30, 5};
  int mCorner2[2] = {10, 25};
};

/// Runs a call of the test at each event of the object.
class AtEvent
{
public:
  AtEvent(vtkObject* object, unsigned long event, std::function<void()> call)
      : mObject(object), mCall(std::move(call))
  {
    mCommand->SetClientData(&mCall);
    mCommand->SetCallback(
        [](vtkObject*, unsigned long, void* data, void*) { (*static_cast<std::function<void()>*>(data))(); });
    object->AddObserver(event, mCommand);
  }
  ~AtEvent()
  {
    mObject->RemoveObserver(mCommand);
    while (mCommand->GetReferenceCount() > 1) {
      mCommand->UnRegister(nullptr); // VTK loses a reference with each exception
    }
  }
  AtEvent(const AtEvent&) = delete;
  AtEvent& operator=(const AtEvent&) = delete;

private:
  vtkSmartPointer<vtkObject> mObject;
  std::function<void()> mCall;
  vtkNew<vtkCallbackCommand> mCommand;
};

TEST_F(GPickerRegionTest, ABoxIsMadeOfOppositeCornersInAnyOrder)
{
  Scene scene;
  mLook = [](PickBounds& bounds) {
    const auto& box = dynamic_cast<PickBox&>(bounds);
    EXPECT_EQ(box.xmin, 10.0);
    EXPECT_EQ(box.ymin, 5.0);
    EXPECT_EQ(box.xmax, 30.0);
    EXPECT_EQ(box.ymax, 25.0);
  };
  EXPECT_EQ(mPicker.compute_pick_by_box(scene.renderer(), mCorner1, mCorner2), 42);
  EXPECT_EQ(mPicker.compute_pick_by_box(scene.renderer(), mCorner2, mCorner1), 42);
  EXPECT_EQ(mRenderer, scene.renderer());
  EXPECT_EQ(mPicker.region_picks, 2);
  int lowest[2] = {INT_MIN, INT_MIN};
  int highest[2] = {INT_MAX, INT_MAX};
  mLook = [](PickBounds& bounds) {
    EXPECT_EQ(dynamic_cast<PickBox&>(bounds).xmax - dynamic_cast<PickBox&>(bounds).xmin, 4294967295.0);
  };
  EXPECT_EQ(mPicker.compute_pick_by_box(scene.renderer(), lowest, highest), 42);
}

TEST_F(GPickerRegionTest, APolygonIsTriangulated)
{
  Scene scene;
  int points[4][2] = {{0, 0}, {10, 0}, {10, 10}, {0, 10}};
  mLook = [](PickBounds& bounds) {
    const auto& polygon = dynamic_cast<PickPolygon&>(bounds);
    EXPECT_EQ(polygon.triangles.size(), 6U);
    EXPECT_EQ(polygon.edges.size(), 8U);
    const double inside[3] = {2.0, 3.0, 0.0};
    const double outside[3] = {12.0, 3.0, 0.0};
    EXPECT_TRUE(bounds.intersects_with_point(inside));
    EXPECT_FALSE(bounds.intersects_with_point(outside));
  };
  EXPECT_EQ(mPicker.compute_pick_by_polygon(scene.renderer(), 4, points), 42);
  mLook = [](PickBounds& bounds) { EXPECT_TRUE(dynamic_cast<PickPolygon&>(bounds).triangles.empty()); };
  EXPECT_EQ(mPicker.compute_pick_by_polygon(scene.renderer(), 2, points), 42);
}

TEST_F(GPickerRegionTest, TheSignOfARadiusDoesNotCount)
{
  Scene scene;
  for (const double radius : {7.5, -7.5, 0.0}) {
    mLook = [radius](PickBounds& bounds) {
      const auto& circle = dynamic_cast<PickCircle&>(bounds);
      EXPECT_EQ(circle.center_x, 30.0);
      EXPECT_EQ(circle.center_y, 5.0);
      EXPECT_EQ(circle.radius, std::fabs(radius));
    };
    EXPECT_EQ(mPicker.compute_pick_by_circle(scene.renderer(), mCorner1, radius), 42);
  }
  mLook = [](PickBounds& bounds) {
    const double centre[3] = {30.0, 5.0, 0.0};
    EXPECT_FALSE(bounds.intersects_with_point(centre));
  };
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(mPicker.compute_pick_by_circle(scene.renderer(), mCorner1, nan), 42);
}

TEST_F(GPickerRegionTest, AWindowWithoutInteractorIsRenderedBeforeEachRegion)
{
  Scene scene; // never rendered
  const FrameCounter frames(scene.window());
  int points[3][2] = {{0, 0}, {10, 0}, {10, 10}};
  int expected = 0;
  mLook = [&](PickBounds&) { EXPECT_EQ(frames.ends(), ++expected); };
  mPicker.compute_pick_by_box(scene.renderer(), mCorner1, mCorner2);
  mPicker.compute_pick_by_polygon(scene.renderer(), 3, points);
  mPicker.compute_pick_by_circle(scene.renderer(), mCorner1, 3.0);
  EXPECT_EQ(frames.starts(), 3);
  EXPECT_EQ(mPicker.region_picks, 3);
}

TEST_F(GPickerRegionTest, AnInteractorDecidesByItsSwitch)
{
  Scene scene;
  const vtkNew<vtkRenderWindowInteractor> interactor; // the generic one: no events
  interactor->SetRenderWindow(scene.window());
  const FrameCounter frames(scene.window());
  mPicker.compute_pick_by_box(scene.renderer(), mCorner1, mCorner2);
  EXPECT_EQ(frames.starts(), 1);
  interactor->EnableRenderOff();
  mPicker.compute_pick_by_box(scene.renderer(), mCorner1, mCorner2);
  EXPECT_EQ(frames.starts(), 1);
  EXPECT_EQ(mPicker.region_picks, 2);
  scene.window()->SetInteractor(nullptr);
}

TEST_F(GPickerRegionTest, ARendererWithoutWindowIsPickedWithoutFrame)
{
  const vtkNew<vtkRenderer> renderer;
  EXPECT_EQ(mPicker.compute_pick_by_box(renderer, mCorner1, mCorner2), 42);
  EXPECT_EQ(mPicker.region_picks, 1);
}

TEST_F(GPickerRegionTest, InTheMiddleOfAFrameNothingIsRendered)
{
  Scene scene;
  const FrameCounter frames(scene.window());
  int found = 0;
  const AtEvent pick(scene.renderer(), vtkCommand::EndEvent,
                     [&] { found = mPicker.compute_pick_by_box(scene.renderer(), mCorner1, mCorner2); });
  scene.window()->Render();
  EXPECT_EQ(found, 42);
  EXPECT_EQ(frames.starts(), 1);
}

TEST_F(GPickerRegionTest, AnExceptionInTheFrameComesOutAndTheWindowGoesOn)
{
  Scene scene;
  {
    const AtEvent fault(scene.renderer(), vtkCommand::StartEvent, [] { throw std::runtime_error("host"); });
    EXPECT_THROW(mPicker.compute_pick_by_box(scene.renderer(), mCorner1, mCorner2), std::runtime_error);
  }
  EXPECT_EQ(mPicker.region_picks, 0);
  const FrameCounter frames(scene.window());
  EXPECT_EQ(mPicker.compute_pick_by_box(scene.renderer(), mCorner1, mCorner2), 42);
  EXPECT_EQ(frames.ends(), 1);
}

TEST_F(GPickerRegionTest, TheFrameMayDestroyThePicker)
{
  Scene scene;
  auto picker = std::make_unique<TestPicker>();
  int region_picks = 0;
  picker->on_bounds = [&](vtkRenderer*, PickBounds*) { return ++region_picks; };
  const AtEvent destroy(scene.renderer(), vtkCommand::EndEvent, [&] { picker.reset(); });
  EXPECT_EQ(picker->compute_pick_by_box(scene.renderer(), mCorner1, mCorner2), 0);
  EXPECT_EQ(picker, nullptr);
  EXPECT_EQ(region_picks, 0);
}

TEST_F(GPickerRegionTest, TheFrameMayTakeTheRendererOutOfTheWindow)
{
  const auto window = make_window(50, 50);
  vtkNew<vtkRenderer> renderer;
  window->AddRenderer(renderer);
  const AtEvent leave(window, vtkCommand::EndEvent, [&] { window->RemoveRenderer(renderer); });
  EXPECT_EQ(mPicker.compute_pick_by_box(renderer, mCorner1, mCorner2), 42);
}

} // namespace
