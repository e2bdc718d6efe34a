// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "CellPickFixture.h"
#include "CountedAllocations.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using morrow_test::EventHook;
using morrow_test::flat_actor;
using morrow_test::give_pointers;
using morrow_test::kRed;
using morrow_test::quad;
using morrow_test::two_triangles;

// Data and observers of hosts.
class MultiCellPickerHostTest : public morrow_test::MultiCellPickerTest
{};

// ---------------------------------------------------------------------------------------------------------
// Data

TEST_F(MultiCellPickerHostTest, AChangedDataSetIsPickedAsItIsNow)
{
  // Many cells, so that bounds of them are kept.
  const vtkSmartPointer<vtkPolyData> ball = morrow_test::sphere(0.3, 40);
  const auto actor = this->show(ball);
  const auto hits = [this](double x) {
    mPicker->Pick(x, 50, 0, mRenderer);
    return !picks().empty();
  };
  ASSERT_TRUE(hits(50));
  auto* points = ball->GetPoints();
  for (vtkIdType i = 0; i < points->GetNumberOfPoints(); ++i) {
    double p[3];
    points->GetPoint(i, p);
    points->SetPoint(i, p[0] + 0.6, p[1], p[2]);
  }
  points->GetData()->Modified();
  points->Modified();
  EXPECT_FALSE(hits(50));
  EXPECT_TRUE(hits(80));
  ball->GetPolys()->Reset();
  ball->GetPolys()->Modified();
  EXPECT_FALSE(hits(80));
  ball->DeepCopy(quad(-0.1, -0.1, 0.1, 0.1));
  EXPECT_TRUE(hits(50));
}

TEST_F(MultiCellPickerHostTest, APickWithoutMemoryLeavesNothingOfTheDataAsTheyWere)
{
  const vtkSmartPointer<vtkPolyData> ball = morrow_test::sphere(0.3, 100);
  const auto actor = this->show(ball);
  const auto hits = [&](double x) {
    const double p1[3] = {x, 0, 5};
    const double p2[3] = {x, 0, -5};
    mPicker->Initialize();
    mPicker->IntersectWithLine(p1, p2, 0.01, nullptr, actor, actor->GetMapper());
    return !picks().empty();
  };
  ASSERT_TRUE(hits(0.0));
  vtkPoints* points = ball->GetPoints();
  for (vtkIdType i = 0; i < points->GetNumberOfPoints(); ++i) {
    double p[3];
    points->GetPoint(i, p);
    points->SetPoint(i, p[0] + 1.0, p[1], p[2]);
  }
  points->Modified();
  ball->GetBounds();
  morrow_test::gLargestAllocation = 4000; // the bounds of 19,800 cells take 15 kB
  EXPECT_THROW(hits(1.0), std::bad_alloc);
  morrow_test::gLargestAllocation = SIZE_MAX;
  EXPECT_TRUE(hits(1.0));
  EXPECT_FALSE(hits(0.0));
}

TEST_F(MultiCellPickerHostTest, ArraysThatGrowAreSeenWithoutAWord)
{
  const vtkSmartPointer<vtkPolyData> ball = morrow_test::sphere(0.3, 40);
  ball->GetBounds();
  this->show(ball);
  mPicker->SetTolerance(2.0);
  mPicker->Pick(50, 50, 0, mRenderer);
  const std::size_t before = picks().at(0)->SubPicks.size();
  const vtkIdType cell[3] = {0, 1, 20}; // across the ball
  for (int i = 0; i < 5; ++i) {
    ball->GetPolys()->InsertNextCell(3, cell);
  }
  mPicker->Pick(50, 50, 0, mRenderer);
  EXPECT_EQ(before + 5, picks().at(0)->SubPicks.size());
}

TEST_F(MultiCellPickerHostTest, BrokenCellsAreNeitherHitNorAccepted)
{
  const vtkSmartPointer<vtkPolyData> data = two_triangles();
  const auto actor = this->show(data);
  data->GetBounds();
  data->GetPolys()->InsertNextCell({0, 1, 600});
  data->GetPolys()->InsertNextCell({0, -7, 2});
  const double p1[3] = {0, 0, 5};
  const double p2[3] = {0, 0, -5};
  mPicker->IntersectWithLine(p1, p2, 0.5, nullptr, actor, actor->GetMapper());
  EXPECT_EQ(std::vector<int>({0, 1}), this->cells());
  EXPECT_EQ(0, this->pick_all()); // not all of the cells
  MultiCellPicker::mBoxPickAcceptPartialCells = true;
  EXPECT_EQ(1, this->pick_all());
  EXPECT_EQ(std::vector<int>({0, 1}), this->cells());
}

TEST_F(MultiCellPickerHostTest, CellsOfUnknownOrUnfitTypesAreNotHit)
{
  vtkNew<vtkUnstructuredGrid> grid;
  grid->SetPoints(two_triangles()->GetPoints());
  const vtkIdType ids[3] = {0, 1, 2};
  grid->InsertNextCell(VTK_HEXAHEDRON, 3, ids); // too few points
  grid->InsertNextCell(VTK_TRIANGLE, 3, ids);
  grid->InsertNextCell(VTK_EMPTY_CELL, 0, ids);
  const vtkIdType four[4] = {0, 1, 2, 3};
  grid->InsertNextCell(VTK_TETRA, 4, four);
  grid->InsertNextCell(VTK_TETRA, 4, four);
  grid->GetCellTypesArray()->SetValue(3, 99);
  grid->GetCellTypesArray()->SetValue(4, VTK_POLYHEDRON); // without faces
  vtkNew<vtkDataSetMapper> mapper;
  mapper->SetInputData(grid);
  vtkNew<vtkActor> actor;
  actor->SetMapper(mapper);
  const double p1[3] = {-0.5, 0, 5};
  const double p2[3] = {-0.5, 0, -5};
  mPicker->IntersectWithLine(p1, p2, 0.5, nullptr, actor, mapper);
  EXPECT_EQ(std::vector<int>({1}), this->cells());
}

TEST_F(MultiCellPickerHostTest, EmptyDataHasNoRecord)
{
  this->show(vtkNew<vtkPolyData>());
  vtkNew<vtkPolyData> no_cells;
  no_cells->SetPoints(two_triangles()->GetPoints());
  this->show(no_cells);
  mPicker->Pick(50, 50, 0, mRenderer);
  EXPECT_TRUE(picks().empty());
  EXPECT_EQ(0, this->pick_all());
}

TEST_F(MultiCellPickerHostTest, CellsInAnotherOrderThanTheirArraysKeepTheirIds)
{
  vtkNew<vtkPolyData> data;
  vtkNew<vtkPoints> points;
  points->InsertNextPoint(-0.5, 0.0, 0.0);
  points->InsertNextPoint(0.5, 0.0, 0.0);
  points->InsertNextPoint(0.5, 0.5, 0.0);
  data->SetPoints(points);
  data->AllocateEstimate(4, 4);
  const vtkIdType triangle[3] = {0, 1, 2};
  const vtkIdType line[2] = {0, 1};
  data->InsertNextCell(VTK_TRIANGLE, 3, triangle); // 0, but its array comes after that of lines
  data->InsertNextCell(VTK_LINE, 2, line);
  give_pointers(data);
  this->show(data);
  EXPECT_EQ(1, this->pick_box(20, 45, 80, 55)); // all of the line
  EXPECT_EQ(std::vector<int>({0, 1}), this->cells());
  EXPECT_EQ(VTK_TRIANGLE, data->GetCellType(0));
  mPicker->Pick(50, 50, 0, mRenderer); // gives the cells the ids of their arrays
  EXPECT_EQ(std::vector<int>({0, 1}), this->cells());
  EXPECT_EQ(VTK_LINE, data->GetCellType(0));
}

// ---------------------------------------------------------------------------------------------------------
// Lifetimes and observers

TEST_F(MultiCellPickerHostTest, ObserversMayRemovePropsAndPickAgain)
{
  const auto actor = this->show(quad(-0.5, -0.5, 0.5, 0.5));
  int nested = -1;
  {
    const EventHook start(mPicker, vtkCommand::StartPickEvent, [&] { nested = this->pick_all(); });
    EXPECT_EQ(1, this->pick_all());
    EXPECT_EQ(0, nested); // a pick inside another does nothing
    EXPECT_EQ(1U, picks().size());
    mPicker->Pick(50, 50, 0, mRenderer);
    EXPECT_EQ(1U, picks().size());
    double p1[3] = {0, 0, 5};
    double p2[3] = {0, 0, -5};
    double turn[4] = {0, 0, 0, 1};
    mPicker->Pick3DPoint(p1, p2, mRenderer);
    EXPECT_EQ(1U, picks().size());
    mPicker->Pick3DPoint(p2, mRenderer);
    mPicker->Pick3DRay(p1, turn, mRenderer);
    EXPECT_EQ(1U, picks().size());
  }
  {
    const EventHook end(mPicker, vtkCommand::EndPickEvent, [&] {
      mPicker->Pick(50, 50, 0, mRenderer);
      double p[3] = {0, 0, 0};
      double turn[4] = {0, 0, 0, 1};
      EXPECT_EQ(0, mPicker->Pick3DPoint(p, mRenderer));
      EXPECT_EQ(0, mPicker->Pick3DPoint(p, p, mRenderer));
      EXPECT_EQ(0, mPicker->Pick3DRay(p, turn, mRenderer));
    });
    EXPECT_EQ(1, this->pick_all());
  }
  const EventHook start(mPicker, vtkCommand::StartPickEvent, [&] { mRenderer->RemoveActor(actor); });
  EXPECT_EQ(0, this->pick_all());
}

TEST_F(MultiCellPickerHostTest, ThrowingObserversLeaveThePickerUsable)
{
  this->show(quad(-0.5, -0.5, 0.5, 0.5));
  {
    const EventHook start(mPicker, vtkCommand::StartPickEvent, [] { throw std::runtime_error("host"); });
    EXPECT_THROW(this->pick_all(), std::runtime_error);
  }
  EXPECT_EQ(1, this->pick_all());
}

TEST_F(MultiCellPickerHostTest, ObserversMayLetGoOfRendererAndPicker)
{
  auto renderer = vtkSmartPointer<vtkRenderer>::New();
  auto picker = vtkSmartPointer<MultiCellPicker>::New();
  renderer->AddActor(flat_actor(quad(-0.5, -0.5, 0.5, 0.5), kRed));
  mWindow->AddRenderer(renderer);
  MultiCellPicker* raw = picker;
  const EventHook start(raw, vtkCommand::StartPickEvent, [&] {
    mWindow->RemoveRenderer(renderer);
    renderer = nullptr;
    picker = nullptr;
  });
  double corners[4] = {0, 0, 100, 100};
  PickBox box;
  box.set_box(corners);
  EXPECT_EQ(0, raw->PickByBounds(&box, renderer)); // without its window nothing is found
}

TEST_F(MultiCellPickerHostTest, DataSetsAndPickersDieInAnyOrder)
{
  auto other = vtkSmartPointer<MultiCellPicker>::New();
  auto ball = morrow_test::sphere(0.3, 40);
  auto actor = this->show(ball);
  other->Pick(50, 50, 0, mRenderer);
  mPicker->Pick(50, 50, 0, mRenderer);
  EXPECT_EQ(1U, picks().size());
  EXPECT_TRUE(ball->HasObserver(vtkCommand::DeleteEvent)); // what is kept for it goes with it
  mRenderer->RemoveActor(actor);
  actor = nullptr;
  ball->RemoveAllObservers();
  ball = nullptr;
  for (int i = 0; i < 3; ++i) {
    const auto next = morrow_test::sphere(0.2, 40);
    const auto shown = this->show(next);
    mPicker->Pick(50, 50, 0, mRenderer);
    EXPECT_EQ(1U, picks().size());
    mRenderer->RemoveActor(shown);
  }
  const auto last = morrow_test::sphere(0.2, 40);
  const auto shown = this->show(last);
  other->Pick(50, 50, 0, mRenderer);
  EXPECT_TRUE(last->HasObserver(vtkCommand::DeleteEvent));
  other = nullptr;
  EXPECT_TRUE(last->HasObserver(vtkCommand::DeleteEvent)); // shared by all pickers
}

TEST(MultiCellPickerLifetime, TheLastPickerForgetsTheDataSets)
{
  const auto ball = morrow_test::sphere(0.3, 40);
  const auto actor = flat_actor(ball, kRed);
  const double p1[3] = {0, 0, 5};
  const double p2[3] = {0, 0, -5};
  auto picker = vtkSmartPointer<MultiCellPicker>::New();
  picker->IntersectWithLine(p1, p2, 0.01, nullptr, actor, actor->GetMapper());
  EXPECT_EQ(1U, picker->get_cell_picks().size());
  EXPECT_TRUE(ball->HasObserver(vtkCommand::DeleteEvent));
  picker->Initialize();
  EXPECT_TRUE(picker->get_cell_picks().empty());
  picker = nullptr;
  EXPECT_FALSE(ball->HasObserver(vtkCommand::DeleteEvent));
}

TEST_F(MultiCellPickerHostTest, DataWithoutFieldDataHasNoPointers)
{
  const auto data = two_triangles();
  data->SetFieldData(nullptr);
  show(data);
  EXPECT_EQ(1, pick_all());
  EXPECT_EQ((std::vector<int>{0, 1}), cells());
}

TEST_F(MultiCellPickerHostTest, TheCameraCountsAsItIsWhenThePickBegins)
{
  const auto data = two_triangles();
  give_pointers(data);
  show(data);
  vtkNew<vtkCallbackCommand> look_away;
  look_away->SetClientData(mRenderer->GetActiveCamera());
  look_away->SetCallback([](vtkObject*, unsigned long, void* camera, void*) {
    static_cast<vtkCamera*>(camera)->SetPosition(0.0, 0.0, -10.0); // mirrors left and right
  });
  mPicker->AddObserver(vtkCommand::StartPickEvent, look_away);
  EXPECT_EQ(1, pick_box(0, 0, 50, 100));
  EXPECT_EQ(std::vector<int>{0}, cells());
}

} // namespace
