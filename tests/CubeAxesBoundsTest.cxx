// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "CubeAxesBounds.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <vtkActor.h>
#include <vtkCubeAxesActor2D.h>
#include <vtkNew.h>
#include <vtkPolyData.h>
#include <vtkRenderer.h>

#include <array>
#include <limits>

namespace {

using Bounds = std::array<double, 6>;

// The minimum is above the maximum on purpose: such axes draw nothing.
constexpr Bounds Nothing = {0.5, -0.5, 0.5, -0.5, 0.5, -0.5};
constexpr Bounds Old = {-100.0, 100.0, -100.0, 100.0, -100.0, 100.0};

/// A renderer without a window, and cube axes in it that still have the bounds of an earlier frame.
class CubeAxesBoundsTest : public ::testing::Test
{
protected:
  CubeAxesBoundsTest()
  {
    mAxes->SetBounds(const_cast<double*>(Old.data()));
    mRenderer->AddViewProp(mAxes);
  }

  vtkActor* add_rectangle(double x0, double y0, double x1, double y1, double z)
  {
    const auto actor = morrow_test::flat_actor(morrow_test::quad(x0, y0, x1, y1, z), {255, 0, 0});
    mRenderer->AddViewProp(actor);
    return actor;
  }

  [[nodiscard]] Bounds fitted()
  {
    morrow::fit_cube_axes(*mAxes, *mRenderer);
    Bounds bounds{};
    mAxes->GetBounds(bounds.data());
    return bounds;
  }

  vtkNew<vtkRenderer> mRenderer;
  vtkNew<vtkCubeAxesActor2D> mAxes;
};

TEST_F(CubeAxesBoundsTest, SurroundsWhatIsVisible)
{
  add_rectangle(1.0, 2.0, 3.0, 5.0, 7.0);
  EXPECT_EQ(fitted(), (Bounds{1.0, 3.0, 2.0, 5.0, 7.0, 7.0}));
  add_rectangle(-4.0, 2.5, 2.0, 3.0, 8.0);
  EXPECT_EQ(fitted(), (Bounds{-4.0, 3.0, 2.0, 5.0, 7.0, 8.0}));
}

// Else they could only grow.
TEST_F(CubeAxesBoundsTest, TheAxesThemselvesDoNotCount)
{
  vtkActor* large = add_rectangle(-9.0, -9.0, 9.0, 9.0, 0.0);
  EXPECT_EQ(fitted(), (Bounds{-9.0, 9.0, -9.0, 9.0, 0.0, 0.0}));
  mRenderer->RemoveViewProp(large);
  add_rectangle(1.0, 2.0, 3.0, 5.0, 0.0);
  EXPECT_EQ(fitted(), (Bounds{1.0, 3.0, 2.0, 5.0, 0.0, 0.0}));
}

TEST_F(CubeAxesBoundsTest, NothingInTheRendererGivesInvertedBounds)
{
  EXPECT_EQ(fitted(), Nothing);
  EXPECT_EQ(fitted(), Nothing); // and those are not something the next time
  mRenderer->RemoveViewProp(mAxes);
  EXPECT_EQ(fitted(), Nothing);
}

TEST_F(CubeAxesBoundsTest, InvisiblePropsDoNotCount)
{
  add_rectangle(1.0, 2.0, 3.0, 5.0, 7.0)->VisibilityOff();
  EXPECT_EQ(fitted(), Nothing);
  add_rectangle(0.0, 0.0, 1.0, 1.0, 0.0);
  EXPECT_EQ(fitted(), (Bounds{0.0, 1.0, 0.0, 1.0, 0.0, 0.0}));
}

TEST_F(CubeAxesBoundsTest, PropsThatKeepTheirBoundsToThemselvesDoNotCount)
{
  add_rectangle(1.0, 2.0, 3.0, 5.0, 7.0)->UseBoundsOff();
  EXPECT_EQ(fitted(), Nothing);
}

TEST_F(CubeAxesBoundsTest, PropsWithoutExtentDoNotCount)
{
  const vtkNew<vtkPolyData> no_points;
  const vtkNew<vtkActor> no_mapper;
  mRenderer->AddViewProp(morrow_test::flat_actor(no_points, {255, 0, 0}));
  mRenderer->AddViewProp(no_mapper);
  EXPECT_EQ(fitted(), Nothing);
  add_rectangle(1.0, 2.0, 3.0, 5.0, 7.0);
  EXPECT_EQ(fitted(), (Bounds{1.0, 3.0, 2.0, 5.0, 7.0, 7.0}));
}

TEST_F(CubeAxesBoundsTest, ASinglePointIsSomething)
{
  mRenderer->AddViewProp(morrow_test::flat_actor(morrow_test::vertices({1.0, 2.0, 3.0}), {255, 0, 0}));
  EXPECT_EQ(fitted(), (Bounds{1.0, 1.0, 2.0, 2.0, 3.0, 3.0}));
}

TEST_F(CubeAxesBoundsTest, TheActorsPlacementCounts)
{
  vtkActor* actor = add_rectangle(0.0, 0.0, 1.0, 1.0, 0.0);
  actor->SetPosition(10.0, 20.0, 30.0);
  EXPECT_EQ(fitted(), (Bounds{10.0, 11.0, 20.0, 21.0, 30.0, 30.0}));
}

/// A prop that reports any bounds.
class AnyBoundsProp : public vtkProp
{
public:
  static AnyBoundsProp* New() { VTK_STANDARD_NEW_BODY(AnyBoundsProp); }
  vtkTypeMacro(AnyBoundsProp, vtkProp)
  AnyBoundsProp(const AnyBoundsProp&) = delete;
  void operator=(const AnyBoundsProp&) = delete;

  double* GetBounds() override { return mBounds; }

  double mBounds[6] = {0.0, 0.0, 0.0, 0.0, 0.0, 0.0};

protected:
  AnyBoundsProp() = default;
  ~AnyBoundsProp() override = default;
};

// VTK takes them for visible, though no comparison with them is true, and its own marks for nothing remain.
TEST_F(CubeAxesBoundsTest, BoundsThatAreNotNumbersAreNothing)
{
  const vtkNew<AnyBoundsProp> prop;
  std::fill(std::begin(prop->mBounds), std::end(prop->mBounds), std::numeric_limits<double>::quiet_NaN());
  mRenderer->AddViewProp(prop);
  EXPECT_EQ(fitted(), Nothing);
}

// The largest coordinate that still counts: VTK's mark for nothing is not taken for it.
TEST_F(CubeAxesBoundsTest, LargeBoundsAreKept)
{
  const vtkNew<AnyBoundsProp> prop;
  const Bounds large = {-1e37, 1e37, -1e30, 1e30, 0.0, 1e37};
  std::copy(large.begin(), large.end(), std::begin(prop->mBounds));
  mRenderer->AddViewProp(prop);
  EXPECT_EQ(fitted(), large);
}

} // namespace
