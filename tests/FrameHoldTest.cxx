// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "FrameHold.h"
#include "ViewFixture.h"

namespace {

using namespace morrow_test;

class FrameHoldTest : public RenderTest
{
protected:
  Scene mScene{100, 100};
};

TEST_F(FrameHoldTest, WithoutAFrameAPropGoesAtOnce)
{
  auto prop = CallingProp::make();
  const vtkWeakPointer<vtkProp> watched = prop.Get();
  mScene.renderer()->AddViewProp(prop);
  morrow::remove_prop(*mScene.renderer(), prop);
  EXPECT_FALSE(mScene.renderer()->HasViewProp(prop));
  prop = nullptr;
  EXPECT_EQ(watched, nullptr);
}

TEST_F(FrameHoldTest, NullAndAbsentPropsAreNothing)
{
  const auto prop = CallingProp::make();
  morrow::remove_prop(*mScene.renderer(), nullptr);
  morrow::remove_prop(*mScene.renderer(), prop);
  morrow::keep_through_frame(*mScene.renderer(), nullptr);
  const vtkNew<vtkRenderer> windowless;
  morrow::keep_through_frame(*windowless, prop);
  EXPECT_EQ(prop->GetReferenceCount(), 1);
}

// VTK has a plain pointer to the second when the first is drawn.
TEST_F(FrameHoldTest, APropRemovedInTheMiddleOfAFrameLivesUntilItsEnd)
{
  const auto first = CallingProp::make();
  auto second = CallingProp::make();
  const vtkWeakPointer<vtkProp> watched = second.Get();
  int drawn = 0;
  int released = 0;
  mScene.renderer()->AddViewProp(first);
  mScene.renderer()->AddViewProp(second);
  second->on_opaque = [&] { ++drawn; };
  second->on_release = [&] { ++released; };
  first->on_opaque = [&] {
    if (second != nullptr) {
      released = 0;
      morrow::remove_prop(*mScene.renderer(), second);
      second = nullptr;
      EXPECT_EQ(released, 1);
    }
  };
  static_cast<void>(mScene.render());
  EXPECT_EQ(drawn, 1);
  EXPECT_EQ(released, 2); // once more for what it may have made when it was drawn
  EXPECT_EQ(watched, nullptr);
  static_cast<void>(mScene.render());
  EXPECT_EQ(drawn, 1);
}

TEST_F(FrameHoldTest, APropThatComesBackInTheSameFrameKeepsItsResources)
{
  const auto first = CallingProp::make();
  const auto second = CallingProp::make();
  int released = 0;
  mScene.renderer()->AddViewProp(first);
  mScene.renderer()->AddViewProp(second);
  second->on_release = [&] { ++released; };
  first->on_opaque = [&] {
    released = 0;
    morrow::remove_prop(*mScene.renderer(), second);
    mScene.renderer()->AddViewProp(second);
    first->on_opaque = nullptr;
  };
  static_cast<void>(mScene.render());
  EXPECT_EQ(released, 1);
  EXPECT_TRUE(mScene.renderer()->HasViewProp(second));
  second->on_release = nullptr; // the scene outlives this function
}

TEST_F(FrameHoldTest, AWindowThatDiesLetsGo)
{
  auto prop = CallingProp::make();
  const vtkWeakPointer<vtkProp> watched = prop.Get();
  {
    Scene scene{50, 50};
    scene.renderer()->AddViewProp(prop);
    prop->on_opaque = [&] { morrow::remove_prop(*scene.renderer(), prop); };
    static_cast<void>(scene.render());
    prop->on_opaque = nullptr;
  }
  prop = nullptr;
  EXPECT_EQ(watched, nullptr);
}

} // namespace
