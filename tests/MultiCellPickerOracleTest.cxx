// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// MultiCellPicker beside picks that ask every cell and every point, on random scenes.
#include "LiteralMultiCellPicker.h"
#include "MultiCellPicker.h"
#include "PickBounds.h"
#include "PickScene.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <vtkActor.h>
#include <vtkCallbackCommand.h>
#include <vtkCamera.h>
#include <vtkNew.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkSmartPointer.h>

#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace {

using morrow_test::difference;
using morrow_test::LiteralMultiCellPicker;
using morrow_test::MeshKind;
using morrow_test::PickScene;
using morrow_test::Random;
using morrow_test::random_mesh;
using morrow_test::random_region;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

class MultiCellPickerOracle : public ::testing::Test
{
protected:
  void TearDown() override
  {
    MultiCellPicker::mSelectVisibleOnly = false;
    MultiCellPicker::mBoxPickAcceptPartialCells = false;
  }

  vtkNew<MultiCellPicker> mPicker;
  vtkNew<LiteralMultiCellPicker> mLiteral;

  std::string ray_difference(PickScene& scene, double x, double y, double tolerance)
  {
    mPicker->SetTolerance(tolerance);
    mLiteral->SetTolerance(tolerance);
    const int found = mPicker->Pick(x, y, 0.0, scene.renderer);
    const int expected = mLiteral->Pick(x, y, 0.0, scene.renderer);
    mHits += mLiteral->records.size();
    EXPECT_EQ(found, expected);
    return difference(mLiteral->records, mPicker->get_cell_picks());
  }

  std::string region_difference(PickScene& scene, PickBounds& region, bool touching)
  {
    MultiCellPicker::mBoxPickAcceptPartialCells = touching;
    mLiteral->touching_cells = touching;
    const int found = mPicker->PickByBounds(&region, scene.renderer);
    const int expected = mLiteral->pick_by_bounds(&region, scene.renderer);
    mHits += mLiteral->records.size();
    EXPECT_EQ(found, expected);
    return difference(mLiteral->records, mPicker->get_cell_picks());
  }

  std::size_t mHits = 0; // records in all, to see that the comparison is about something
};

TEST_F(MultiCellPickerOracle, RaysFindTheSameInMeshesOfAllKinds)
{
  for (const MeshKind kind : morrow_test::kMeshKinds) {
    Random random(17 + static_cast<unsigned>(kind));
    mHits = 0;
    for (int round = 0; round < 6; ++round) {
      PickScene scene(random);
      scene.add(random_mesh(kind, random, 40 + 700 * (round % 2)));
      for (const double tolerance : {0.01, 0.0, 1.0e-6, 0.1, -0.02, kNan}) {
        for (int i = 0; i < 5; ++i) {
          ASSERT_EQ("", ray_difference(scene, random.between(20, 180), random.between(20, 130), tolerance))
              << "kind " << static_cast<int>(kind) << ", round " << round << ", tolerance " << tolerance;
        }
      }
    }
    EXPECT_GT(mHits, 10U) << "kind " << static_cast<int>(kind);
  }
}

TEST_F(MultiCellPickerOracle, RegionsFindTheSameInMeshesOfAllKinds)
{
  for (const MeshKind kind : morrow_test::kMeshKinds) {
    Random random(170 + static_cast<unsigned>(kind));
    mHits = 0;
    for (int round = 0; round < 6; ++round) {
      PickScene scene(random);
      const auto mesh = random_mesh(kind, random, 40 + 700 * (round % 2));
      scene.add(mesh);
      for (int i = 0; i < 24; ++i) {
        morrow_test::set_pointers(*mesh, i % 2 == 0);
        const std::unique_ptr<PickBounds> region = random_region(random, i);
        for (const bool touching : {false, true}) {
          ASSERT_EQ("", region_difference(scene, *region, touching))
              << "kind " << static_cast<int>(kind) << ", round " << round << ", region " << i
              << (touching ? ", touching" : ", whole");
        }
      }
    }
    EXPECT_GT(mHits, 10U) << "kind " << static_cast<int>(kind);
  }
}

} // namespace
