// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "ScreenRectangle.h"

#include "PickScene.h"
#include "ScreenProjection.h"

#include <gtest/gtest.h>

#include <vtkCamera.h>
#include <vtkMatrix4x4.h>
#include <vtkNew.h>
#include <vtkSmartPointer.h>

#include <algorithm>
#include <limits>

namespace {

using morrow::BlockBox;
using morrow::ScreenFrame;
using morrow::ScreenProjection;
using morrow::ScreenRectangle;
using morrow::ScreenSides;
using morrow_test::Random;
using Place = ScreenRectangle::Place;

constexpr BlockBox kWhole = {{-1, -1, -1}, {1, 1, 1}};
constexpr ScreenFrame kFrame = {{0.1, 0.0, 0.9, 1.0}, 400, 300};
constexpr ScreenSides kSides = {120, 250, 80, 170};

vtkSmartPointer<vtkMatrix4x4> view_from(double x, double y, double z)
{
  vtkNew<vtkCamera> camera;
  camera->SetPosition(x, y, z);
  camera->SetFocalPoint(0, 0, 0);
  camera->SetClippingRange(0.1, 10);
  auto matrix = vtkSmartPointer<vtkMatrix4x4>::New();
  matrix->DeepCopy(camera->GetCompositeProjectionTransformMatrix(1.3, 0.0, 1.0));
  return matrix;
}

BlockBox random_box(Random& random)
{
  BlockBox box;
  const double size = random.chance(0.5) ? 0.05 : 0.4;
  for (int i = 0; i < 3; ++i) {
    const double at = random.between(-1, 1 - size);
    box.lower[i] = static_cast<float>(at);
    box.upper[i] = static_cast<float>(at + random.between(0, size));
  }
  return box;
}

/// A corner, or any point in the box.
void point_in(const BlockBox& box, Random& random, int i, double (&point)[3])
{
  for (int axis = 0; axis < 3; ++axis) {
    const auto low = static_cast<double>(box.lower[axis]);
    const auto high = static_cast<double>(box.upper[axis]);
    point[axis] = i < 8 ? ((static_cast<unsigned>(i) >> static_cast<unsigned>(axis)) & 1U) != 0 ? high : low
                        : std::min(random.between(low, high), high);
  }
}

TEST(ScreenRectangleTest, WhatItSaysOfABoxIsTrueOfItsPoints)
{
  Random random(11);
  int counts[3] = {0, 0, 0};
  // The last eye is within the boxes: some of them lie behind it.
  for (const auto& matrix : {view_from(0.3, -2.6, 1.8), view_from(2, 2, 2), view_from(0.2, 0.1, 0.6)}) {
    const ScreenProjection projection(*matrix, kFrame);
    const ScreenRectangle rectangle(projection, kSides, 0.0, kWhole);
    for (int i = 0; i < 5000; ++i) {
      const BlockBox box = random_box(random);
      const Place place = rectangle.place_of(box);
      ++counts[static_cast<int>(place)];
      for (int k = 0; k < 16 && place != Place::Unknown; ++k) {
        double point[3];
        point_in(box, random, k, point);
        double at[3];
        projection.project(point, at);
        const bool is_within =
            at[0] >= kSides.left && at[0] <= kSides.right && at[1] >= kSides.bottom && at[1] <= kSides.top;
        ASSERT_EQ(place == Place::Inside, is_within) << i << ": " << at[0] << ", " << at[1];
      }
    }
  }
  EXPECT_GT(counts[static_cast<int>(Place::Outside)], 2000);
  EXPECT_GT(counts[static_cast<int>(Place::Inside)], 200);
  EXPECT_GT(counts[static_cast<int>(Place::Unknown)], 200);
}

TEST(ScreenRectangleTest, KnowsNothingWithoutARectangleOrAView)
{
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  constexpr double infinity = std::numeric_limits<double>::infinity();
  constexpr float far = std::numeric_limits<float>::infinity();
  const BlockBox box = {{0, 0, 0}, {0.01F, 0.01F, 0.01F}};
  const auto matrix = view_from(0, -3, 0);
  const ScreenProjection projection(*matrix, kFrame);
  const auto place = [&](const ScreenSides& sides, double depth, const BlockBox& whole) {
    return ScreenRectangle(projection, sides, depth, whole).place_of(box);
  };
  EXPECT_EQ(Place::Inside, place(kSides, 0.0, kWhole));
  EXPECT_EQ(Place::Inside, place(kSides, 1.0, kWhole));
  EXPECT_EQ(Place::Unknown, place(kSides, infinity, kWhole));
  EXPECT_EQ(Place::Unknown, place({nan, nan, nan, nan}, 0.0, kWhole));
  EXPECT_EQ(Place::Unknown, place(kSides, 0.0, {{-far, -far, -far}, {far, far, far}}));
  EXPECT_EQ(Place::Outside, place({10, 20, 10, 20}, 0.0, kWhole));
  const ScreenFrame nowhere = {{0, 0, 0, 1}, 0, 0};
  const ScreenProjection flat(*matrix, nowhere);
  EXPECT_EQ(Place::Unknown, ScreenRectangle(flat, kSides, 0.0, kWhole).place_of(box));
}

// The region picks mix the three: the numbers must not depend on which was used.
TEST(ScreenProjectionTest, ManyPointsAreProjectedAsEach)
{
  Random random(13);
  const auto matrix = view_from(0.3, -2.6, 1.8);
  const ScreenProjection projection(*matrix, kFrame);
  constexpr int count = 63;
  float points[3 * count];
  for (float& value : points) {
    value = static_cast<float>(random.between(-1, 1));
  }
  double x[count];
  double y[count];
  double depth[count];
  projection.project(points, count, x, y, depth);
  for (int i = 0; i < count; ++i) {
    double at[3];
    double flat[3];
    projection.project(points + 3 * i, at);
    projection.project_flat(points + 3 * i, flat);
    ASSERT_EQ(at[0], x[i]) << i;
    ASSERT_EQ(at[1], y[i]) << i;
    ASSERT_EQ(at[2], depth[i]) << i;
    ASSERT_EQ(at[0], flat[0]) << i;
    ASSERT_EQ(at[1], flat[1]) << i;
  }
}

} // namespace
