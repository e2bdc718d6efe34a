// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "CellPickFixture.h"

#include <gtest/gtest.h>

#include <vtkCellType.h>
#include <vtkIdList.h>
#include <vtkObjectFactory.h>
#include <vtkStructuredGrid.h>

#include <limits>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using morrow_test::EventHook;
using morrow_test::ExpectedVtkErrors;
using morrow_test::flat_actor;
using morrow_test::flat_composite_actor;
using morrow_test::give_pointers;
using morrow_test::kRed;
using morrow_test::multiblock;
using morrow_test::quad;
using morrow_test::two_triangles;
using morrow_test::WarningDisplayOn;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

class MultiCellPickerTest : public morrow_test::MultiCellPickerTest
{};

/// Four points that pretend to be the corners of more cells than there are 32-bit numbers.
class VastGrid : public vtkStructuredGrid
{
public:
  static VastGrid* New();
  vtkTypeMacro(VastGrid, vtkStructuredGrid)
  vtkIdType GetNumberOfCells() override { return cells; }
  int GetCellType(vtkIdType /*id*/) override { return VTK_QUAD; }
  using vtkStructuredGrid::GetCellPoints;
  void GetCellPoints(vtkIdType /*id*/, vtkIdList* ids) override
  {
    ids->SetNumberOfIds(4);
    for (vtkIdType i = 0; i < 4; ++i) {
      ids->SetId(i, i);
    }
  }

  vtkIdType cells = 0;
};
vtkStandardNewMacro(VastGrid)

// ---------------------------------------------------------------------------------------------------------
// The class

TEST_F(MultiCellPickerTest, IsAVtkPickerWithATightTolerance)
{
  EXPECT_STREQ("MultiCellPicker", mPicker->GetClassName());
  EXPECT_TRUE(mPicker->IsA("vtkPicker"));
  EXPECT_EQ(1, MultiCellPicker::IsTypeOf("vtkPicker"));
  EXPECT_EQ(0.009999999776482582, mPicker->GetTolerance()); // the float 0.01
  EXPECT_TRUE(vtkSmartPointer<MultiCellPicker>::Take(mPicker->NewInstance()) != nullptr);
  EXPECT_FALSE(MultiCellPicker::mSelectVisibleOnly);
  EXPECT_FALSE(MultiCellPicker::mBoxPickAcceptPartialCells);
  EXPECT_TRUE(picks().empty());
  EXPECT_EQ(20U, sizeof(MultiCellPicker::SubCellPick));
}

TEST_F(MultiCellPickerTest, PrintsItsPropsAfterItsBaseClass)
{
  const auto actor = this->show(quad(-1, -1, 1, 1));
  mPicker->Pick(50, 50, 0, mRenderer);
  std::ostringstream text;
  mPicker->Print(text);
  std::ostringstream line;
  line << "Prop: " << static_cast<void*>(static_cast<vtkProp3D*>(actor)) << "\n";
  EXPECT_NE(std::string::npos, text.str().find("Tolerance: 0.01"));
  EXPECT_NE(std::string::npos, text.str().find(line.str()));
  EXPECT_LT(text.str().find("Tolerance"), text.str().find("\nProp: "));
}

// ---------------------------------------------------------------------------------------------------------
// Rays

TEST_F(MultiCellPickerTest, ARayRecordsAllDataSetsWhileTheSingleResultStaysEmpty)
{
  const vtkSmartPointer<vtkPolyData> near = quad(-1, -1, 1, 1, 3.0);
  const vtkSmartPointer<vtkPolyData> far = quad(-1, -1, 1, 1, -2.0);
  const auto near_actor = this->show(near);
  const auto far_actor = this->show(far);
  this->show(quad(-1, -1, -0.5, -0.5, 0.0)); // beside the ray
  int picked = 0;
  int started = 0;
  int ended = 0;
  const EventHook pick(mPicker, vtkCommand::PickEvent, [&] { ++picked; });
  const EventHook start(mPicker, vtkCommand::StartPickEvent, [&] { ++started; });
  const EventHook end(mPicker, vtkCommand::EndPickEvent, [&] { ++ended; });

  EXPECT_EQ(0, mPicker->Pick(60, 45, 0, mRenderer)); // no prop is the nearest
  ASSERT_EQ(2U, picks().size());
  EXPECT_EQ(near_actor, picks()[0]->Prop);
  EXPECT_EQ(near, picks()[0]->DataSet);
  EXPECT_EQ(far_actor, picks()[1]->Prop);
  EXPECT_EQ(far, picks()[1]->DataSet);
  const MultiCellPicker::CellPick& record = *picks()[1];
  ASSERT_EQ(1U, record.SubPicks.size());
  EXPECT_EQ(0, record.SubPicks[0].CellId);
  EXPECT_NEAR(0.2, record.SubPicks[0].Point[0], 1e-6);
  EXPECT_NEAR(-0.1, record.SubPicks[0].Point[1], 1e-6);
  EXPECT_NEAR(-2.0, record.SubPicks[0].Point[2], 1e-6);
  EXPECT_TRUE(record.SubPicks[0].Direct);
  EXPECT_TRUE(record.SubPicks[0].Visible);
  EXPECT_NEAR(9.0, record.P1[2], 1e-5); // the near plane
  EXPECT_NEAR(-10.0, record.P2[2], 1e-5);
  EXPECT_NEAR(0.0282843 * 0.999, record.Tolerance, 1e-6); // of a diagonal of 2.83 units, as VTK rounds it
  EXPECT_EQ(nullptr, record.Region);
  EXPECT_EQ(nullptr, mPicker->GetPath());
  EXPECT_EQ(nullptr, mPicker->GetMapper());
  EXPECT_EQ(nullptr, mPicker->GetDataSet());
  EXPECT_EQ(1, started);
  EXPECT_EQ(1, ended);
  EXPECT_EQ(0, picked);
}

TEST_F(MultiCellPickerTest, DirectIsAHitAtHalfTheTolerance)
{
  // The triangle's left side is at x = -0.5: 25 pixels.
  this->show(quad(-0.5, -1, 1, 1));
  mPicker->SetTolerance(0.05); // 0.1414 units, 7.07 pixels
  const auto direct_at = [this](double x) {
    mPicker->Pick(x, 50, 0, mRenderer);
    EXPECT_EQ(1U, picks().size()) << x;
    return !picks().empty() && picks()[0]->SubPicks[0].Direct;
  };
  EXPECT_TRUE(direct_at(30));
  EXPECT_TRUE(direct_at(22));
  EXPECT_FALSE(direct_at(20)); // 5 pixels away: between half the tolerance and the whole
  mPicker->Pick(17, 50, 0, mRenderer);
  EXPECT_TRUE(picks().empty());
}

TEST_F(MultiCellPickerTest, RecordsKeepTheirTransformWhenThePropMoves)
{
  const auto actor = this->show(quad(-1, -1, 1, 1));
  actor->SetPosition(0.25, 0.0, 1.5);
  actor->SetScale(2.0, 2.0, 1.0);
  mPicker->Pick(50, 50, 0, mRenderer);
  ASSERT_EQ(1U, picks().size());
  actor->SetPosition(9.0, 9.0, 9.0);
  double world[3];
  const double corner[3] = {1.0, 1.0, 0.0};
  picks()[0]->Transform->TransformPoint(corner, world);
  EXPECT_NEAR(2.25, world[0], 1e-9);
  EXPECT_NEAR(1.5, world[2], 1e-9);
  EXPECT_NEAR(0.0, picks()[0]->SubPicks[0].Point[0], 1e-6); // in the world, not in the data set
  EXPECT_NEAR(1.5, picks()[0]->SubPicks[0].Point[2], 1e-6);
  EXPECT_NEAR(-0.125, picks()[0]->P1[0], 1e-6); // in the data set
}

TEST_F(MultiCellPickerTest, CompositeInputIsWalkedLeafByLeaf)
{
  const vtkSmartPointer<vtkPolyData> a = quad(-1, -1, 1, 1, 0.0);
  const vtkSmartPointer<vtkPolyData> b = quad(-1, -1, 1, 1, 1.0);
  const auto blocks = multiblock({a, nullptr, b});
  mRenderer->AddActor(flat_composite_actor(blocks, kRed));
  mPicker->Pick(50, 50, 0, mRenderer);
  ASSERT_EQ(2U, picks().size());
  EXPECT_EQ(a, picks()[0]->DataSet);
  EXPECT_EQ(b, picks()[1]->DataSet);
  EXPECT_EQ(1, this->pick_all());
  ASSERT_EQ(2U, picks().size());
  EXPECT_EQ(b, picks()[1]->DataSet);
}

TEST_F(MultiCellPickerTest, MappersThatAreNoneOrHaveNoDataAreSkipped)
{
  const double p1[3] = {0, 0, 5};
  const double p2[3] = {0, 0, -5};
  vtkNew<vtkVolume> volume;
  vtkNew<vtkPolyDataMapper> empty;
  EXPECT_EQ(9.999999680285692e37, mPicker->IntersectWithLine(p1, p2, 0.1, nullptr, volume, nullptr));
  EXPECT_EQ(2.0, mPicker->IntersectWithLine(p1, p2, 0.1, nullptr, volume, empty));
  vtkNew<vtkMatrix4x4> identity;
  PickBox box;
  EXPECT_EQ(9.999999680285692e37,
            mPicker->IntersectWithBounds(&box, identity, nullptr, volume, nullptr, mRenderer));
  EXPECT_EQ(2.0, mPicker->IntersectWithBounds(nullptr, identity, nullptr, volume, empty, mRenderer));
  EXPECT_EQ(2.0, mPicker->IntersectWithBounds(&box, identity, nullptr, volume, empty, mRenderer));
  EXPECT_TRUE(picks().empty());

  const auto actor = this->show(quad(-0.5, -0.5, 0.5, 0.5));
  vtkMapper* good = actor->GetMapper();
  vtkNew<vtkRenderer> lonely;
  double corners[4] = {-1e6, -1e6, 1e6, 1e6};
  box.set_box(corners);
  EXPECT_EQ(2.0, mPicker->IntersectWithBounds(nullptr, identity, nullptr, actor, good, mRenderer));
  EXPECT_EQ(2.0, mPicker->IntersectWithBounds(&box, nullptr, nullptr, actor, good, mRenderer));
  EXPECT_EQ(2.0, mPicker->IntersectWithBounds(&box, identity, nullptr, actor, good, nullptr));
  EXPECT_EQ(2.0, mPicker->IntersectWithBounds(&box, identity, nullptr, actor, good, lonely));
  EXPECT_TRUE(picks().empty());
}

TEST_F(MultiCellPickerTest, ImageDataIsPickedByRayButNotByRegion)
{
  vtkNew<vtkImageData> image;
  image->SetDimensions(3, 3, 1);
  image->SetOrigin(-1, -1, 0);
  vtkNew<vtkDataSetMapper> mapper;
  mapper->SetInputData(image);
  vtkNew<vtkActor> actor;
  actor->SetMapper(mapper);
  mRenderer->AddActor(actor);
  mPicker->Pick(75, 25, 0, mRenderer);
  EXPECT_EQ(std::vector<int>({1}), this->cells());
  EXPECT_EQ(0, this->pick_all());
}

TEST_F(MultiCellPickerTest, RaysWithoutLengthOrNumbersAreHarmless)
{
  const auto actor = this->show(quad(-1, -1, 1, 1));
  const double at[3] = {0, 0, 0};
  const double nowhere[3] = {kNan, 0, 0};
  vtkMapper* mapper = actor->GetMapper();
  for (const double tolerance : {0.0, 0.1, -0.1, kNan, 1e300}) {
    EXPECT_EQ(2.0, mPicker->IntersectWithLine(at, at, tolerance, nullptr, actor, mapper));
    EXPECT_EQ(2.0, mPicker->IntersectWithLine(nowhere, at, tolerance, nullptr, actor, mapper));
    EXPECT_EQ(2.0, mPicker->IntersectWithLine(at, nowhere, tolerance, nullptr, actor, mapper));
  }
}

// ---------------------------------------------------------------------------------------------------------
// Points near lines

TEST_F(MultiCellPickerTest, APointNearALineHasATolerancePerAxis)
{
  const float p1[3] = {0, 0, 0};
  const float p2[3] = {0, 0, 4};
  float t = -1;
  float closest[3] = {7, 7, 7};
  float pcoords[3] = {5, 5, 5};
  int sub_id = 3;
  double x[3] = {0.09, -0.09, 1}; // 0.127 away, but within 0.1 along each axis
  EXPECT_EQ(1, mPicker->intersect_point_with_line(x, p1, p2, 0.1F, t, closest, pcoords, sub_id));
  EXPECT_EQ(0.25F, t);
  EXPECT_EQ(0.09F, closest[0]);
  EXPECT_EQ(0.0F, pcoords[0]);
  EXPECT_EQ(0.0F, pcoords[1]);
  EXPECT_EQ(0, sub_id);
  double beside[3] = {0, 0.11, 1};
  EXPECT_EQ(0, mPicker->intersect_point_with_line(beside, p1, p2, 0.1F, t, closest, pcoords, sub_id));
  EXPECT_EQ(-10.0F, pcoords[0]);
  EXPECT_EQ(0.09F, closest[0]);
  double behind[3] = {0, 0, 4.01};
  EXPECT_EQ(0, mPicker->intersect_point_with_line(behind, p1, p2, 0.1F, t, closest, pcoords, sub_id));
  EXPECT_FLOAT_EQ(1.0025F, t);
  double before[3] = {0, 0, -0.01};
  EXPECT_EQ(0, mPicker->intersect_point_with_line(before, p1, p2, 0.1F, t, closest, pcoords, sub_id));
}

TEST_F(MultiCellPickerTest, APointNearALineWithoutLengthIsNone)
{
  const float p[3] = {1, 1, 1};
  float t = -1;
  float closest[3] = {7, 7, 7};
  float pcoords[3] = {5, 5, 5};
  int sub_id = 3;
  double x[3] = {1, 1, 1};
  EXPECT_EQ(0, mPicker->intersect_point_with_line(x, p, p, 0.1F, t, closest, pcoords, sub_id));
  EXPECT_EQ(-1.0F, t);
  EXPECT_EQ(5.0F, pcoords[0]);
  EXPECT_EQ(0.0F, pcoords[1]);
  EXPECT_EQ(0, sub_id);
  EXPECT_EQ(0, mPicker->intersect_point_with_line(nullptr, p, p, 0.1F, t, closest, pcoords, sub_id));
}

// ---------------------------------------------------------------------------------------------------------
// Regions

TEST_F(MultiCellPickerTest, SaysOnceInAPickThatCellsHaveNumbersOf32Bits)
{
  const WarningDisplayOn on;
  constexpr const char* text = "Only the first 2147483648 cells of a data set can be picked.";
  vtkNew<VastGrid> grids[2];
  vtkNew<vtkDataSetMapper> mappers[2];
  for (int i = 0; i < 2; ++i) {
    vtkNew<vtkPoints> points;
    points->InsertNextPoint(-0.8, -0.8, 0.0);
    points->InsertNextPoint(0.8, -0.8, 0.0);
    points->InsertNextPoint(0.8, 0.8, 0.0);
    points->InsertNextPoint(-0.8, 0.8, 0.0);
    grids[i]->SetPoints(points);
    mappers[i]->SetInputDataObject(grids[i]);
    vtkNew<vtkActor> actor;
    actor->SetMapper(mappers[i]);
    mRenderer->AddActor(actor);
    grids[i]->cells = vtkIdType{1} << 31;
  }
  EXPECT_EQ(0, this->pick_box(0, 0, 50, 100)); // all can be named: no warning
  grids[0]->cells += 1;
  grids[1]->cells += 1;
  for (int pick = 0; pick < 2; ++pick) {
    const ExpectedVtkErrors expected({text});
    EXPECT_EQ(0, this->pick_box(0, 0, 50, 100));
    EXPECT_EQ(1, expected.count()) << pick;
  }
}

TEST_F(MultiCellPickerTest, HalfASurfaceOfOneEntityIsNothingButPartOfOneWithPointers)
{
  const vtkSmartPointer<vtkPolyData> data = two_triangles();
  const auto actor = this->show(data);
  EXPECT_EQ(0, this->pick_box(0, 0, 50, 100));
  EXPECT_TRUE(picks().empty());
  EXPECT_EQ(1, this->pick_box(0, 0, 100, 100));
  EXPECT_EQ(std::vector<int>({0, 1}), this->cells());
  EXPECT_EQ(actor, picks()[0]->Prop);
  EXPECT_EQ(data, picks()[0]->DataSet);
  EXPECT_EQ(nullptr, picks()[0]->Region); // the region may be gone
  EXPECT_EQ(0, picks()[0]->RegionFlags);
  for (const float value : picks()[0]->SubPicks[0].Point) {
    EXPECT_EQ(1e38F, value);
  }
  EXPECT_TRUE(picks()[0]->SubPicks[1].Direct);
  EXPECT_TRUE(picks()[0]->SubPicks[1].Visible);

  give_pointers(data);
  EXPECT_EQ(1, this->pick_box(0, 0, 50, 100));
  EXPECT_EQ(std::vector<int>({0}), this->cells());
}

TEST_F(MultiCellPickerTest, PointersRecordCellsWithAPointInsideOnceOneIsAccepted)
{
  const vtkSmartPointer<vtkPolyData> data = two_triangles();
  give_pointers(data);
  this->show(data);
  EXPECT_EQ(1, this->pick_box(0, 0, 70, 100)); // all of cell 0, the left corner of cell 1
  EXPECT_EQ(std::vector<int>({0, 1}), this->cells());
  EXPECT_EQ(0, this->pick_box(55, 0, 70, 100)); // a corner of cell 1 alone
}

TEST_F(MultiCellPickerTest, TouchModeTakesShapesThatMeetTheRegion)
{
  MultiCellPicker::mBoxPickAcceptPartialCells = true;
  this->show(two_triangles());
  EXPECT_EQ(1, this->pick_box(20, 45, 22, 47)); // inside cell 0, none of its points
  EXPECT_EQ(std::vector<int>({0}), this->cells());
  EXPECT_EQ(0, this->pick_box(48, 45, 52, 47)); // between the two
  EXPECT_EQ(1, this->pick_box(5, 20, 12, 40));  // a corner
  EXPECT_EQ(std::vector<int>({0}), this->cells());
}

TEST_F(MultiCellPickerTest, TouchModeKnowsVerticesLinesAndOtherCellsByTheirPoints)
{
  MultiCellPicker::mBoxPickAcceptPartialCells = true;
  vtkNew<vtkPoints> points;
  points->InsertNextPoint(-0.5, 0.0, 0.0); // 25, 50
  points->InsertNextPoint(0.5, 0.0, 0.0);  // 75, 50
  points->InsertNextPoint(0.0, 0.6, 0.0);  // 50, 80
  points->InsertNextPoint(0.0, 0.2, 0.5);
  vtkNew<vtkUnstructuredGrid> grid;
  grid->SetPoints(points);
  const vtkIdType ids[4] = {0, 1, 2, 3};
  grid->InsertNextCell(VTK_POLY_VERTEX, 2, ids);
  grid->InsertNextCell(VTK_POLY_LINE, 2, ids);
  grid->InsertNextCell(VTK_POLYGON, 3, ids);
  grid->InsertNextCell(VTK_TRIANGLE_STRIP, 3, ids);
  grid->InsertNextCell(VTK_TETRA, 4, ids);
  vtkNew<vtkDataSetMapper> mapper;
  mapper->SetInputData(grid);
  vtkNew<vtkActor> actor;
  actor->SetMapper(mapper);
  mRenderer->AddActor(actor);
  EXPECT_EQ(1, this->pick_box(40, 48, 45, 52)); // over the line, at no point
  EXPECT_EQ(std::vector<int>({1, 2}), this->cells());
  EXPECT_EQ(1, this->pick_box(70, 45, 80, 55)); // over point 1
  EXPECT_EQ(std::vector<int>({0, 1, 2, 3, 4}), this->cells());
}

TEST_F(MultiCellPickerTest, ATriangleWithItsCornersInOnePlaceTouchesEverything)
{
  // So says the test of a point in a triangle, for which no side of it is beyond any point.
  MultiCellPicker::mBoxPickAcceptPartialCells = true;
  const vtkSmartPointer<vtkPolyData> data = two_triangles();
  data->GetPolys()->InsertNextCell({0, 0, 0});
  this->show(data);
  EXPECT_EQ(1, this->pick_box(48, 50, 52, 55));
  EXPECT_EQ(std::vector<int>({2}), this->cells());
}

TEST_F(MultiCellPickerTest, ATriangleSeenEdgeOnIsNotFoundBesideTheRegion)
{
  MultiCellPicker::mBoxPickAcceptPartialCells = true;
  // In the plane x = y, which the camera sees as a line through the middle.
  const auto pick_from_to = [this](double from, double to) {
    vtkNew<vtkPoints> points;
    points->InsertNextPoint(from, from, 0.0);
    points->InsertNextPoint(to, to, 0.0);
    points->InsertNextPoint(to, to, 1.0);
    points->InsertNextPoint(-0.9, -0.9, 0.0);
    points->InsertNextPoint(0.9, 0.9, 0.0);
    vtkNew<vtkCellArray> polys;
    polys->InsertNextCell({0, 1, 2});
    vtkNew<vtkCellArray> vertices; // they make the box around the data set meet the region
    vertices->InsertNextCell({3});
    vertices->InsertNextCell({4});
    vtkNew<vtkPolyData> data;
    data->SetPoints(points);
    data->SetVerts(vertices);
    data->SetPolys(polys);
    this->show(data);
    const double center[2] = {50, 50};
    PickCircle circle;
    circle.set_circle(center, 10);
    const int found = mPicker->PickByBounds(&circle, mRenderer);
    mRenderer->RemoveAllViewProps();
    return found;
  };
  EXPECT_EQ(1, pick_from_to(-0.5, 0.5)); // right through
  EXPECT_EQ(1, pick_from_to(0.1, 0.5));  // with a corner inside
  EXPECT_EQ(0, pick_from_to(0.25, 0.5)); // to the right of it and above
  EXPECT_EQ(0, pick_from_to(-0.5, -0.25));
}

TEST_F(MultiCellPickerTest, CirclesAndLassosPickLikeBoxes)
{
  this->show(two_triangles());
  PickCircle circle;
  const double center[2] = {50, 50};
  circle.set_circle(center, 45);
  EXPECT_EQ(1, mPicker->PickByBounds(&circle, mRenderer));
  circle.set_circle(center, 35);
  EXPECT_EQ(0, mPicker->PickByBounds(&circle, mRenderer));
  PickPolygon lasso;
  const double ring[4][2] = {{0, 50}, {50, 100}, {100, 50}, {50, -30}};
  lasso.set_polygon(4, ring);
  MultiCellPicker::mBoxPickAcceptPartialCells = true;
  EXPECT_EQ(1, mPicker->PickByBounds(&lasso, mRenderer));
  EXPECT_EQ(std::vector<int>({0, 1}), this->cells());
}

/// A region of a host's own: everything left of a line.
struct LeftHalf : PickBounds
{
  bool intersects_with_point(const double* p) const override { return p[0] < 50; }
  bool intersects_with_line(const double* p, const double* q) const override
  {
    return p[0] < 50 || q[0] < 50;
  }
  bool intersects_with_triangle(const double* a, const double* b, const double* c) const override
  {
    return a[0] < 50 || b[0] < 50 || c[0] < 50;
  }
  bool intersects_with_bbox(const BrantBox& /*box*/) const override { return true; }
};

TEST_F(MultiCellPickerTest, RegionsOfTheHostAreAsked)
{
  const vtkSmartPointer<vtkPolyData> data = two_triangles();
  give_pointers(data);
  this->show(data);
  LeftHalf region;
  EXPECT_EQ(1, mPicker->PickByBounds(&region, mRenderer));
  EXPECT_EQ(std::vector<int>({0}), this->cells());
}

/// Keeps the boxes that it is asked for, and says the same of each.
struct BoxRegion : LeftHalf
{
  bool intersects_with_bbox(const BrantBox& box) const override
  {
    boxes.push_back(box);
    return answer;
  }
  mutable std::vector<BrantBox> boxes;
  bool answer = true;
};

TEST_F(MultiCellPickerTest, ADataSetIsSkippedUnlessTheRegionMeetsItsBoxOnTheScreen)
{
  MultiCellPicker::mBoxPickAcceptPartialCells = true;
  this->show(two_triangles());
  BoxRegion region;
  EXPECT_EQ(1, mPicker->PickByBounds(&region, mRenderer));
  region.answer = false;
  EXPECT_EQ(0, mPicker->PickByBounds(&region, mRenderer));
  ASSERT_EQ(2U, region.boxes.size());
  for (const BrantBox& box : region.boxes) {
    EXPECT_LT((box.minimum() - BrantVector(10, 35, 0)).length(), 1e-4);
    EXPECT_LT((box.maximum() - BrantVector(90, 65, 0)).length(), 1e-4);
  }
}

TEST_F(MultiCellPickerTest, ARecordHasItsRegionWhileThePickRuns)
{
  const auto actor = this->show(quad(-0.5, -0.5, 0.5, 0.5));
  double corners[4] = {0, 0, 100, 100};
  PickBox box;
  box.set_box(corners);
  const PickBounds* at_end = nullptr;
  const EventHook end(mPicker, vtkCommand::EndPickEvent, [&] { at_end = picks().at(0)->Region; });
  EXPECT_EQ(1, mPicker->PickByBounds(&box, mRenderer));
  EXPECT_EQ(&box, at_end);
  EXPECT_EQ(nullptr, picks()[0]->Region);
  mPicker->Initialize();
  vtkNew<vtkMatrix4x4> identity; // the data's own coordinates are those of the view
  EXPECT_EQ(2.0, mPicker->IntersectWithBounds(&box, identity, nullptr, actor, actor->GetMapper(), mRenderer));
  ASSERT_EQ(1U, picks().size());
  EXPECT_EQ(&box, picks()[0]->Region); // of a call from outside
}

TEST_F(MultiCellPickerTest, WithoutARendererARegionPickIsAnError)
{
  this->show(quad(-1, -1, 1, 1));
  this->pick_all();
  ASSERT_EQ(1U, picks().size());
  PickBox box;
  int started = 0;
  const EventHook start(mPicker, vtkCommand::StartPickEvent, [&] { ++started; });
  {
    const WarningDisplayOn on;
    const ExpectedVtkErrors expected({"Must specify renderer!"});
    EXPECT_EQ(0, mPicker->PickByBounds(&box, nullptr));
    ASSERT_EQ(1, expected.count());
    EXPECT_NE(std::string::npos, morrow_test::vtk_messages().back().text.find("base/MultiCellPicker"));
  }
  EXPECT_TRUE(picks().empty());
  EXPECT_EQ(0, started);
  int errors = 0;
  const WarningDisplayOn on;
  const EventHook error(mPicker, vtkCommand::ErrorEvent, [&] { ++errors; });
  EXPECT_EQ(0, mPicker->PickByBounds(&box, nullptr));
  EXPECT_EQ(1, errors);
}

TEST_F(MultiCellPickerTest, WithoutRegionWindowOrPixelsNothingIsFound)
{
  this->show(quad(-0.5, -0.5, 0.5, 0.5));
  EXPECT_EQ(0, mPicker->PickByBounds(nullptr, mRenderer));
  vtkNew<vtkRenderer> lonely;
  lonely->AddActor(flat_actor(quad(-1, -1, 1, 1), kRed));
  double corners[4] = {-1e6, -1e6, 1e6, 1e6};
  PickBox box;
  box.set_box(corners);
  EXPECT_EQ(0, mPicker->PickByBounds(&box, lonely));
  EXPECT_EQ(0, mPicker->Pick(0, 0, 0, lonely));
  MultiCellPicker::mSelectVisibleOnly = true; // of a window that has never been rendered
  EXPECT_EQ(1, this->pick_all());
  EXPECT_TRUE(picks()[0]->SubPicks[0].Visible);
}

// Of a window without a frame, whose depth is that of the far plane everywhere.
TEST_F(MultiCellPickerTest, OnlyWhatLiesOnThePixelsOfTheWindowIsVisible)
{
  MultiCellPicker::mSelectVisibleOnly = true;
  const auto is_visible = [this](double x0, double y0, double x1, double y1) {
    const auto actor = this->show(quad(x0, y0, x1, y1));
    EXPECT_EQ(1, this->pick_all());
    mRenderer->RemoveActor(actor);
    return !picks().empty() && picks()[0]->SubPicks[0].Visible;
  };
  EXPECT_TRUE(is_visible(-0.99, -0.99, 0.99, 0.99));
  // Half a pixel beyond: cut towards 0 this is pixel 0 on the left and below, but pixel 100 on the right.
  EXPECT_TRUE(is_visible(-1.01, 0.0, 0.5, 0.5));
  EXPECT_TRUE(is_visible(0.0, -1.01, 0.5, 0.5));
  EXPECT_FALSE(is_visible(0.0, 0.0, 1.01, 0.5));
  EXPECT_FALSE(is_visible(0.0, 0.0, 0.5, 1.01));
  EXPECT_FALSE(is_visible(-1.03, 0.0, 0.5, 0.5)); // pixel -1
  EXPECT_FALSE(is_visible(0.0, -1.03, 0.5, 0.5));
}

TEST_F(MultiCellPickerTest, WholeCellsAreVisibleBetweenTheClippingPlanesOnly)
{
  MultiCellPicker::mSelectVisibleOnly = true;
  const auto visible = [this](double z) { // as a whole cell, then as one that touches
    const auto actor = this->show(quad(-0.5, -0.5, 0.5, 0.5, z));
    std::string found;
    for (const bool touching : {false, true}) {
      MultiCellPicker::mBoxPickAcceptPartialCells = touching;
      EXPECT_EQ(1, this->pick_all());
      found += !picks().empty() && picks()[0]->SubPicks[0].Visible ? "yes " : "no ";
    }
    mRenderer->RemoveActor(actor);
    return found;
  };
  // The depth goes from 0 at z = 9 to 1 at z = -10.
  EXPECT_EQ("yes yes ", visible(8.9));
  EXPECT_EQ("no yes ", visible(9.1)); // before the near plane
  EXPECT_EQ("yes yes ", visible(-9.9));
  EXPECT_EQ("no yes ", visible(-10.1)); // 0.005 beyond the far plane
  EXPECT_EQ("no no ", visible(-10.3));  // 0.016
}

TEST_F(MultiCellPickerTest, ARayFindsEverythingVisible)
{
  MultiCellPicker::mSelectVisibleOnly = true;
  this->show(quad(-1, -1, 1, 1, 3.0));
  this->show(quad(-1, -1, 1, 1, -2.0)); // behind it
  mPicker->Pick(60, 45, 0, mRenderer);
  ASSERT_EQ(2U, picks().size());
  EXPECT_TRUE(picks()[1]->SubPicks[0].Visible);
}

TEST_F(MultiCellPickerTest, RegionPicksFireStartAndEnd)
{
  std::string order;
  const EventHook start(mPicker, vtkCommand::StartPickEvent, [&] { order += "start "; });
  const EventHook pick(mPicker, vtkCommand::PickEvent, [&] { order += "pick "; });
  const EventHook end(mPicker, vtkCommand::EndPickEvent,
                      [&] { order += std::to_string(picks().size()) + " end "; });
  this->show(quad(-0.5, -0.5, 0.5, 0.5));
  this->pick_all();
  EXPECT_EQ("start 1 end ", order);
}

TEST_F(MultiCellPickerTest, PropsThatCannotBePickedAreLeftOut)
{
  const auto actor = this->show(quad(-0.5, -0.5, 0.5, 0.5));
  const auto picked = [this] {
    mPicker->Pick(50, 50, 0, mRenderer);
    const bool by_ray = !picks().empty();
    EXPECT_EQ(by_ray ? 1 : 0, this->pick_all());
    return by_ray;
  };
  EXPECT_TRUE(picked());
  actor->PickableOff();
  EXPECT_FALSE(picked());
  actor->PickableOn();
  actor->VisibilityOff();
  EXPECT_FALSE(picked());
  actor->VisibilityOn();
  actor->GetProperty()->SetOpacity(0.0);
  EXPECT_FALSE(picked());
  actor->GetProperty()->SetOpacity(0.01);
  EXPECT_TRUE(picked());
  mPicker->PickFromListOn();
  EXPECT_FALSE(picked());
  mPicker->AddPickList(actor);
  EXPECT_TRUE(picked());
  mPicker->PickFromListOff();
  mRenderer->RemoveActor(actor);
  EXPECT_FALSE(picked());
  mRenderer->AddVolume(vtkNew<vtkVolume>());
  mRenderer->AddActor(vtkNew<vtkActor>());
  EXPECT_EQ(0, this->pick_all());
}

TEST_F(MultiCellPickerTest, LevelsOfDetailArePickedInTheirPickLevel)
{
  const vtkSmartPointer<vtkPolyData> fine = two_triangles();
  vtkNew<vtkPolyDataMapper> fine_mapper;
  fine_mapper->SetInputData(fine);
  vtkNew<vtkPolyDataMapper> rough_mapper;
  rough_mapper->SetInputData(quad(-0.9, -0.9, 0.9, 0.9));
  vtkNew<vtkProperty> hidden;
  hidden->SetOpacity(0.0);
  vtkNew<vtkLODProp3D> prop;
  const int first = prop->AddLOD(fine_mapper, 0.0);
  const int second = prop->AddLOD(rough_mapper, hidden, 0.0);
  prop->AutomaticPickLODSelectionOff();
  prop->SetSelectedPickLODID(first);
  mRenderer->AddViewProp(prop);
  EXPECT_EQ(1, this->pick_all());
  EXPECT_EQ(fine, picks()[0]->DataSet);
  EXPECT_EQ(prop, picks()[0]->Prop);
  prop->SetSelectedPickLODID(second);
  EXPECT_EQ(0, this->pick_all());
}

TEST_F(MultiCellPickerTest, PartsOfAssembliesAreWhereTheAssemblyHasThem)
{
  const auto actor = flat_actor(quad(-0.2, -0.2, 0.2, 0.2), kRed);
  actor->SetPosition(0.3, 0.0, 0.0);
  vtkNew<vtkAssembly> assembly;
  assembly->AddPart(actor);
  assembly->SetPosition(0.3, 0.0, 0.0); // together 0.6 to the right: from 70 to 90
  mRenderer->AddActor(assembly);
  EXPECT_EQ(1, this->pick_box(69, 39, 91, 61));
  ASSERT_EQ(1U, picks().size());
  EXPECT_EQ(actor, picks()[0]->Prop);
  EXPECT_NEAR(0.6, picks()[0]->Transform->GetMatrix()->GetElement(0, 3), 1e-12);
  EXPECT_EQ(0, this->pick_box(54, 39, 76, 61));
  mPicker->Pick(80, 50, 0, mRenderer);
  ASSERT_EQ(1U, picks().size());
  EXPECT_NEAR(0.6, picks()[0]->SubPicks[0].Point[0], 1e-6);
}

TEST_F(MultiCellPickerTest, PointsBehindTheEyeAreMirroredOntoTheScreen)
{
  vtkCamera* camera = mRenderer->GetActiveCamera();
  camera->ParallelProjectionOff();
  camera->SetViewAngle(90.0);
  camera->SetPosition(0.0, 0.0, 0.0);
  camera->SetFocalPoint(0.0, 0.0, -1.0);
  camera->SetClippingRange(0.1, 100.0);
  this->show(quad(-2.0, -0.5, -1.0, 0.5, 4.0)); // behind, to the left: mirrored to 62.5 .. 75
  EXPECT_EQ(1, this->pick_box(60, 40, 80, 60));
  EXPECT_EQ(0, this->pick_box(20, 40, 40, 60));
  MultiCellPicker::mSelectVisibleOnly = true;
  EXPECT_EQ(1, this->pick_box(60, 40, 80, 60));
  EXPECT_FALSE(picks()[0]->SubPicks[0].Visible); // beyond the far plane
  MultiCellPicker::mSelectVisibleOnly = false;
  mPicker->Pick(70, 50, 0, mRenderer);
  EXPECT_TRUE(picks().empty());
  this->show(quad(-1.0, -1.0, 1.0, 1.0, 0.0)); // in the plane of the eye: no projection
  EXPECT_EQ(1, this->pick_box(60, 40, 80, 60));
  EXPECT_EQ(1U, picks().size());
}

} // namespace
