// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// What a generic model makes of arguments that are not as they should be, and of foreign data.
#include "GGenericModel.h"

#include "GenericModelFixture.h"

#include <gtest/gtest.h>

#include <vtkIntArray.h>

#include <limits>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace morrow_test;

using Colours = std::vector<BrantColor>;
using List = std::vector<int>;

constexpr int kMost = std::numeric_limits<int>::max();
constexpr int kLeast = std::numeric_limits<int>::min();

class GGenericModelListTest : public ViewTest
{
protected:
  void add_polylines(int num_points, const List& list)
  {
    mModel.add_polylines(num_points, mPoints.data(), static_cast<int>(list.size()), list.data(), BRANT_RED,
                         MRUtil::DRAW_OUTLINE);
  }
  void add_polygons(int num_points, const List& list)
  {
    mModel.add_polygons(num_points, mPoints.data(), static_cast<int>(list.size()), list.data(), BRANT_RED,
                        MRUtil::DRAW_OUTLINE);
  }
  vtkPolyData& lines() { return slot(mModel, MRUtil::DRAW_OUTLINE, kLines); }
  vtkPolyData& polygons() { return slot(mModel, MRUtil::DRAW_OUTLINE, kPolygons); }

  GGenericModel mModel;
  std::vector<BrantVector> mPoints = some_points(8);
};

// --- Broken lists

TEST_F(GGenericModelListTest, RunsWithNumbersOutOfRangeArePassedOver)
{
  const PrintCapture capture;
  add_polylines(4, {2, 0, 1, 3, 0, 4, 1, 2, -1, 0, 2, 2, 3});
  EXPECT_EQ(cells_of(lines()), (std::vector<Cell>{{VTK_LINE, {0, 1}}, {VTK_LINE, {2, 3}}}));
  EXPECT_EQ(colours_of(lines().GetCellData()).size(), 2U);
  EXPECT_EQ(lines().GetNumberOfPoints(), 4);
  ASSERT_EQ(capture.calls().size(), 1U);
  EXPECT_EQ(capture.calls()[0].kind, 1);
  EXPECT_EQ(capture.calls()[0].text,
            "GGenericModel::add_polylines: 2 broken runs left out; run 1 has a point number out of range\n");
}

// Those of earlier calls are out of range as well.
TEST_F(GGenericModelListTest, NumbersDoNotReachThePointsOfOtherCalls)
{
  add_polylines(4, {2, 0, 1});
  const PrintCapture capture;
  add_polylines(2, {2, 0, 2, 2, -1, 0});
  EXPECT_EQ(lines().GetNumberOfCells(), 1);
  EXPECT_EQ(lines().GetNumberOfPoints(), 6);
  EXPECT_EQ(capture.calls().size(), 1U);
}

TEST_F(GGenericModelListTest, CountsThatCannotBeEndTheReading)
{
  for (const int count : {-1, kLeast, 4, kMost}) {
    mModel.clear();
    const PrintCapture capture;
    add_polylines(4, {2, 0, 1, count, 2, 3, 1});
    add_polygons(4, {3, 0, 1, 2, count, 2, 3, 1});
    EXPECT_EQ(cells_of(lines()), (std::vector<Cell>{{VTK_LINE, {0, 1}}})) << count;
    EXPECT_EQ(cells_of(polygons()), (std::vector<Cell>{{VTK_POLYGON, {0, 1, 2}}})) << count;
    EXPECT_EQ(lines().GetNumberOfPoints(), 4); // they came first
    ASSERT_EQ(capture.calls().size(), 2U);
    const std::string fault = count < 0 ? "a negative count" : "a count beyond the end of the list";
    EXPECT_EQ(capture.calls()[0].text,
              "GGenericModel::add_polylines: 1 broken runs left out; run 1 has " + fault + "\n");
  }
}

TEST_F(GGenericModelListTest, ShortRunsArePassedOver)
{
  const PrintCapture capture;
  add_polylines(4, {0, 1, 0, 2, 0, 1});
  EXPECT_EQ(cells_of(lines()), (std::vector<Cell>{{VTK_LINE, {0, 1}}}));
  add_polygons(4, {0, 1, 0, 2, 0, 1, 3, 0, 1, 2});
  EXPECT_EQ(cells_of(polygons()), (std::vector<Cell>{{VTK_POLYGON, {0, 1, 2}}}));
  ASSERT_EQ(capture.calls().size(), 2U);
  EXPECT_EQ(capture.calls()[1].text,
            "GGenericModel::add_polygons: 3 broken runs left out; run 0 has too few points\n");
  EXPECT_NO_THROW(mModel.update_parts());
}

TEST_F(GGenericModelListTest, SmallPolygonsAreBroken)
{
  for (const int count : {1, 2}) {
    mModel.clear();
    const PrintCapture capture;
    mModel.add_polygon(count, mPoints.data(), BRANT_RED, MRUtil::DRAW_OUTLINE);
    EXPECT_EQ(polygons().GetNumberOfCells(), 0);
    EXPECT_EQ(polygons().GetNumberOfPoints(), count);
    ASSERT_EQ(capture.calls().size(), 1U);
    EXPECT_EQ(capture.calls()[0].text,
              "GGenericModel::add_polygon: 1 broken runs left out; run 0 has too few points\n");
    EXPECT_NO_THROW(mModel.update_parts());
  }
}

TEST_F(GGenericModelListTest, ColoursKeepTheirRunsBesideBrokenOnes)
{
  const PrintCapture capture;
  const List list = {3, 0, 1, 2, 3, 0, 1, 9, 2, 0, 1, 3, 1, 2, 3};
  const BrantColor colours[] = {BRANT_RED, BRANT_GREEN, BRANT_BLUE, BRANT_GOLD};
  mModel.add_polygons(4, mPoints.data(), static_cast<int>(list.size()), list.data(), colours,
                      MRUtil::DRAW_OUTLINE);
  EXPECT_EQ(colours_of(polygons().GetCellData()), (Colours{BRANT_RED, BRANT_GOLD}));
  EXPECT_EQ(capture.calls().size(), 1U);
}

TEST_F(GGenericModelListTest, RepeatedNumbersAreAllowed)
{
  const PrintCapture capture;
  add_polylines(4, {3, 0, 0, 0});
  add_polygons(4, {3, 0, 0, 0, 5, 0, 1, 2, 3, 0});
  EXPECT_EQ(lines().GetNumberOfCells(), 1);
  EXPECT_EQ(polygons().GetNumberOfCells(), 2);
  EXPECT_TRUE(capture.calls().empty());
  EXPECT_NO_THROW(mModel.update_parts());
}

// Random lists, with an oracle that reads them in its own way.
TEST_F(GGenericModelListTest, RandomListsAddWholeRunsOnly)
{
  std::mt19937 random(7);
  const auto pick = [&](int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); };
  const PrintCapture capture;
  std::vector<Cell> expected;
  vtkIdType num_points = 0;
  for (int call = 0; call < 300; ++call) {
    const int count = pick(0, 6);
    List list;
    for (int length = pick(0, 20); length > 0; --length) {
      list.push_back(pick(-1, 6));
    }
    add_polygons(count, list);
    for (std::size_t at = 0; at < list.size();) {
      const int n = list[at];
      if (n < 0 || at + 1 + static_cast<std::size_t>(n) > list.size()) {
        break;
      }
      Cell cell = {VTK_POLYGON, {}};
      bool whole = n >= 3;
      for (int k = 0; k < n; ++k) {
        const int id = list[at + 1 + static_cast<std::size_t>(k)];
        whole = whole && id >= 0 && id < count;
        cell.ids.push_back(num_points + id);
      }
      if (whole) {
        expected.push_back(cell);
      }
      at += static_cast<std::size_t>(n) + 1;
    }
    num_points += count;
  }
  ASSERT_GT(expected.size(), 10U);
  EXPECT_EQ(cells_of(polygons()), expected);
  EXPECT_EQ(polygons().GetNumberOfPoints(), num_points);
  EXPECT_EQ(colours_of(polygons().GetCellData()).size(), expected.size());
  EXPECT_NO_THROW(mModel.update_parts());
}

// --- Counts and null

TEST_F(GGenericModelListTest, CountsOfZeroAndBelowAddNothing)
{
  const PrintCapture capture;
  for (const int count : {0, -1, kLeast}) {
    mModel.add_points(count, mPoints.data(), BRANT_RED, MRUtil::DRAW_OUTLINE);
    mModel.add_points(count, nullptr, BRANT_RED, MRUtil::DRAW_OUTLINE);
    mModel.add_polygon(count, mPoints.data(), BRANT_RED, MRUtil::DRAW_OUTLINE);
    mModel.add_polygon(count, nullptr, BRANT_RED, MRUtil::DRAW_OUTLINE);
    mModel.add_polylines(count, mPoints.data(), count, nullptr, BRANT_RED, MRUtil::DRAW_OUTLINE);
    mModel.add_polygons(count, nullptr, count, nullptr, BRANT_RED, MRUtil::DRAW_OUTLINE);
    mModel.add_polygons(count, nullptr, count, nullptr, static_cast<const BrantColor*>(nullptr),
                        MRUtil::DRAW_OUTLINE);
    mModel.add_points_highlight(count, nullptr);
  }
  EXPECT_TRUE(capture.calls().empty());
  EXPECT_EQ(num_parts(mModel), 0);
}

TEST_F(GGenericModelListTest, PointsWithoutAListAreAppended)
{
  const PrintCapture capture;
  mModel.add_polylines(2, mPoints.data(), 0, nullptr, BRANT_RED, MRUtil::DRAW_OUTLINE);
  EXPECT_EQ(lines().GetNumberOfPoints(), 2);
  EXPECT_EQ(lines().GetNumberOfCells(), 0);
  EXPECT_TRUE(capture.calls().empty());
}

TEST_F(GGenericModelListTest, ListsWithoutPointsAreBroken)
{
  const PrintCapture capture;
  const List list = {2, 0, 1};
  for (const int count : {0, -1}) {
    mModel.add_polylines(count, nullptr, 3, list.data(), BRANT_RED, MRUtil::DRAW_OUTLINE);
  }
  EXPECT_EQ(capture.calls().size(), 2U);
  EXPECT_EQ(lines().GetNumberOfPoints(), 0);
  EXPECT_EQ(lines().GetNumberOfCells(), 0);
}

TEST_F(GGenericModelListTest, NullArraysAreAnErrorAndAddNothing)
{
  const List list = {3, 0, 1, 2};
  const auto mode = MRUtil::DRAW_OUTLINE;
  const BrantColor* none = nullptr;
  const struct
  {
    const char* name;
    std::function<void()> call;
  } calls[] = {
      {"add_points", [&] { mModel.add_points(2, nullptr, BRANT_RED, mode); }},
      {"add_polylines", [&] { mModel.add_polylines(3, nullptr, 4, list.data(), BRANT_RED, mode); }},
      {"add_polylines", [&] { mModel.add_polylines(3, mPoints.data(), 4, nullptr, BRANT_RED, mode); }},
      {"add_polygons", [&] { mModel.add_polygons(3, nullptr, 4, list.data(), BRANT_RED, mode); }},
      {"add_polygons", [&] { mModel.add_polygons(3, mPoints.data(), 4, nullptr, BRANT_RED, mode); }},
      {"add_polygons", [&] { mModel.add_polygons(3, mPoints.data(), 4, list.data(), none, mode); }},
      {"add_tri", [&] { mModel.add_tri(nullptr, BRANT_RED, mode); }},
      {"add_quad", [&] { mModel.add_quad(nullptr, BRANT_RED, mode); }},
      {"add_polygon", [&] { mModel.add_polygon(kMost, nullptr, BRANT_RED, mode); }},
      {"add_cube", [&] { mModel.add_cube(nullptr, BRANT_RED, mode); }},
      {"add_points", [&] { mModel.add_points_highlight(1, nullptr); }},
      {"add_polylines", [&] { mModel.add_polylines_highlight(3, mPoints.data(), 4, nullptr); }},
      {"add_polygons", [&] { mModel.add_polygons_highlight(3, nullptr, 4, list.data()); }},
  };
  for (const auto& [name, call] : calls) {
    const PrintCapture capture;
    call();
    ASSERT_EQ(capture.calls().size(), 1U) << name;
    EXPECT_EQ(capture.calls()[0].kind, 2);
    EXPECT_EQ(capture.calls()[0].text, "GGenericModel::" + std::string(name) + ": null array\n");
  }
  EXPECT_EQ(num_parts(mModel), 0);
}

TEST_F(GGenericModelListTest, ModesThatDoNotExistAreAnErrorAndAddNothing)
{
  const List list = {3, 0, 1, 2};
  const BrantVector* points = mPoints.data();
  for (const int number : {-1, 5, kMost, kLeast}) {
    const auto mode = static_cast<MRUtil::DrawMode>(number);
    const PrintCapture capture;
    mModel.add_points(2, points, BRANT_RED, mode);
    mModel.add_polylines(3, points, 4, list.data(), BRANT_RED, mode);
    mModel.add_polygons(3, points, 4, list.data(), BRANT_RED, mode);
    mModel.add_tri(points, BRANT_RED, mode);
    mModel.add_quad(points, BRANT_RED, mode);
    mModel.add_polygon(3, points, BRANT_RED, mode);
    mModel.add_cube(points, BRANT_RED, mode);
    mModel.add_polydata(one_triangle(), BRANT_RED, mode);
    EXPECT_EQ(capture.calls().size(), 8U);
    EXPECT_TRUE(capture.warnings().empty());
  }
  EXPECT_EQ(num_parts(mModel), 0);
}

// --- Polygon data

vtkPolyData& point_slot(GGenericModel& model, MRUtil::DrawMode mode = MRUtil::DRAW_FILLED)
{
  return *model.initialize_point_data(mode, kPolygons);
}

/// A vertex, a line, a polyline, a triangle, a quadrilateral, a polygon and a strip, in another order.
vtkSmartPointer<vtkPolyData> all_kinds()
{
  auto data = vtkSmartPointer<vtkPolyData>::New();
  const vtkNew<vtkPoints> points;
  for (const BrantVector& point : some_points(6)) {
    points->InsertNextPoint(point.data());
  }
  data->SetPoints(points);
  data->Allocate();
  const vtkIdType ids[] = {0, 1, 2, 3, 4, 5};
  data->InsertNextCell(VTK_POLYGON, 5, ids);
  data->InsertNextCell(VTK_LINE, 2, ids);
  data->InsertNextCell(VTK_TRIANGLE, 3, ids);
  data->InsertNextCell(VTK_VERTEX, 1, ids);
  data->InsertNextCell(VTK_TRIANGLE_STRIP, 4, ids);
  data->InsertNextCell(VTK_POLY_LINE, 4, ids);
  data->InsertNextCell(VTK_QUAD, 4, ids);
  data->InsertNextCell(VTK_POLY_VERTEX, 2, ids);
  data->InsertNextCell(VTK_POLYGON, 3, ids); // a triangle that is called a polygon
  return data;
}

TEST_F(GGenericModelListTest, PolydataIsCopiedCellByCellWithItsTypes)
{
  const auto data = all_kinds();
  const PrintCapture capture;
  mModel.add_polydata(data, BrantColor(1, 2, 3, 4), MRUtil::DRAW_FILLED);
  mModel.add_polydata(data, BRANT_RED, MRUtil::DRAW_FILLED);
  EXPECT_TRUE(capture.calls().empty());
  vtkPolyData& made = point_slot(mModel);
  std::vector<Cell> expected = cells_of(*data);
  ASSERT_EQ(expected.size(), 9U);
  for (Cell cell : cells_of(*data)) {
    for (vtkIdType& id : cell.ids) {
      id += 6;
    }
    expected.push_back(cell);
  }
  EXPECT_EQ(cells_of(made), expected);
  std::vector<BrantVector> points = points_of(*data);
  points.insert(points.end(), points.begin(), points.begin() + 6);
  EXPECT_EQ(points_of(made), points);
  Colours colours(6, BrantColor(1, 2, 3, 4));
  colours.resize(12, BRANT_RED);
  EXPECT_EQ(colours_of(made.GetPointData()), colours);
  EXPECT_EQ(num_parts(mModel), 1);
  EXPECT_NO_THROW(mModel.update_parts());
}

TEST_F(GGenericModelListTest, PolydataMarksAllKindsOfCells)
{
  vtkPolyData& made = point_slot(mModel);
  const std::vector<vtkObject*> marked = {made.GetVerts(),
                                          made.GetLines(),
                                          made.GetPolys(),
                                          made.GetStrips(),
                                          made.GetPointData()->GetScalars(),
                                          made.GetPoints(),
                                          &made};
  std::vector<vtkMTimeType> before;
  for (vtkObject* object : marked) {
    before.push_back(object->GetMTime());
  }
  mModel.add_polydata(one_triangle(), BRANT_RED, MRUtil::DRAW_FILLED);
  for (std::size_t i = 0; i < marked.size(); ++i) {
    EXPECT_GT(marked[i]->GetMTime(), before[i]) << i;
  }
}

TEST_F(GGenericModelListTest, PolydataWithBrokenCellsGivesTheWholeOnes)
{
  const auto data = all_kinds();
  const vtkIdType ids[] = {0, 1, 2, 3};
  for (const vtkIdType bad : {vtkIdType{6}, vtkIdType{-1}, vtkIdType{1} << 40}) {
    const vtkIdType wrong[] = {0, 1, bad};
    data->InsertNextCell(VTK_TRIANGLE, 3, wrong);
    data->InsertNextCell(VTK_VERTEX, 1, &bad);
  }
  data->InsertNextCell(VTK_POLYGON, 2, ids);
  data->InsertNextCell(VTK_TRIANGLE, 0, ids);
  data->InsertNextCell(VTK_QUAD, 3, ids);
  data->InsertNextCell(VTK_LINE, 1, ids);
  data->InsertNextCell(VTK_POLY_LINE, 0, ids);
  data->InsertNextCell(VTK_TRIANGLE_STRIP, 2, ids);
  data->InsertNextCell(VTK_VERTEX, 0, ids);
  data->InsertNextCell(VTK_LINE, 2, ids);
  const PrintCapture capture;
  mModel.add_polydata(data, BRANT_RED, MRUtil::DRAW_FILLED);
  ASSERT_EQ(capture.calls().size(), 1U);
  EXPECT_EQ(capture.calls()[0].kind, 1);
  EXPECT_EQ(capture.calls()[0].text, "GGenericModel::add_polydata: 13 broken cells left out\n");
  std::vector<Cell> expected = cells_of(*all_kinds());
  expected.push_back({VTK_LINE, {0, 1}});
  EXPECT_EQ(cells_of(point_slot(mModel)), expected);
  EXPECT_NO_THROW(mModel.update_parts());
}

TEST_F(GGenericModelListTest, DeletedCellsOfPolydataAreNone)
{
  const auto data = all_kinds();
  data->DeleteCell(0);
  const PrintCapture capture;
  mModel.add_polydata(data, BRANT_RED, MRUtil::DRAW_FILLED);
  EXPECT_TRUE(capture.calls().empty());
  EXPECT_EQ(point_slot(mModel).GetNumberOfCells(), 8);
}

TEST_F(GGenericModelListTest, PolydataWithoutAnythingAddsNothing)
{
  const PrintCapture capture;
  const vtkNew<vtkPolyData> empty; // no points object either
  mModel.add_polydata(empty, BRANT_RED, MRUtil::DRAW_FILLED);
  EXPECT_TRUE(capture.calls().empty());
  EXPECT_EQ(point_slot(mModel).GetNumberOfPoints(), 0);
  const vtkNew<vtkCellArray> cells;
  const vtkIdType ids[] = {0, 1, 2};
  cells->InsertNextCell(3, ids);
  empty->SetPolys(cells); // cells without points
  mModel.add_polydata(empty, BRANT_RED, MRUtil::DRAW_FILLED);
  EXPECT_EQ(capture.calls().size(), 1U);
  EXPECT_EQ(point_slot(mModel).GetNumberOfCells(), 0);
}

TEST_F(GGenericModelListTest, NullPolydataIsAnError)
{
  const PrintCapture capture;
  mModel.add_polydata(nullptr, BRANT_RED, MRUtil::DRAW_FILLED);
  EXPECT_EQ(capture.errors(), "GGenericModel::add_polydata: null data\n");
  EXPECT_EQ(num_parts(mModel), 0);
}

TEST_F(GGenericModelListTest, PolydataMayBeASlotOfTheModelItself)
{
  mModel.add_polydata(one_triangle(), BRANT_RED, MRUtil::DRAW_FILLED);
  for (int i = 0; i < 8; ++i) {
    mModel.add_polydata(&point_slot(mModel), BRANT_BLUE, MRUtil::DRAW_FILLED);
  }
  vtkPolyData& data = point_slot(mModel);
  const std::vector<Cell> cells = cells_of(data);
  ASSERT_EQ(cells.size(), 256U);
  EXPECT_EQ(cells[255], (Cell{VTK_TRIANGLE, {765, 766, 767}}));
  EXPECT_EQ(points_of(data)[766], BrantVector(1.0, 0.0, 0.0));
  EXPECT_EQ(colours_of(data.GetPointData())[2], BRANT_RED);
  EXPECT_EQ(colours_of(data.GetPointData())[3], BRANT_BLUE);
}

// Where there are no polygons the part shares the slot's arrays. It must not know cells by number that are
// more by now.
TEST_F(GGenericModelListTest, PartFollowsItsSlotWithoutAnUpdate)
{
  PlainView view;
  mModel.add_view(&view);
  mModel.add_line(mPoints[0], mPoints[1], BRANT_RED);
  mModel.update_parts();
  auto* part = part_of(view);
  EXPECT_EQ(cells_of(*part), (std::vector<Cell>{{VTK_LINE, {0, 1}}}));
  for (int i = 0; i < 1000; ++i) {
    mModel.add_line(mPoints[0], mPoints[1], BRANT_RED);
  }
  const std::vector<Cell> cells = cells_of(*part);
  EXPECT_EQ(cells.back(), (Cell{VTK_LINE,
                                {2 * static_cast<vtkIdType>(cells.size()) - 2,
                                 2 * static_cast<vtkIdType>(cells.size()) - 1}}));
  mModel.add_polydata(part, BRANT_GOLD, MRUtil::DRAW_FILLED);
  EXPECT_EQ(point_slot(mModel).GetNumberOfCells(), static_cast<vtkIdType>(cells.size()));
}

// Beside polygons the part has points of its own, and must not know vertices and lines of later ones.
TEST_F(GGenericModelListTest, PartWithPolygonsNamesOnlyPointsThatItHas)
{
  PlainView view;
  mModel.add_view(&view);
  mModel.add_polydata(one_triangle(), BRANT_RED, MRUtil::DRAW_FILLED); // no vertices and lines yet
  for (const vtkIdType num_updated : {1, 11}) {                        // a strip becomes two triangles
    mModel.update_parts();
    auto* part = part_of(view);
    EXPECT_EQ(part->GetNumberOfCells(), num_updated);
    const vtkMTimeType before = part->GetMTime();
    mModel.add_polydata(all_kinds(), BRANT_RED, MRUtil::DRAW_FILLED);
    EXPECT_EQ(part->GetMTime(), before);
    const std::vector<Cell> cells = cells_of(*part);
    EXPECT_EQ(cells.size(), static_cast<std::size_t>(num_updated));
    for (const Cell& cell : cells) {
      for (const vtkIdType id : cell.ids) {
        EXPECT_LT(id, part->GetNumberOfPoints());
      }
    }
  }
  mModel.update_parts();
  vtkPolyData& made = point_slot(mModel);
  EXPECT_EQ(part_of(view)->GetNumberOfVerts(), made.GetNumberOfVerts());
  EXPECT_EQ(part_of(view)->GetNumberOfLines(), made.GetNumberOfLines());
  EXPECT_EQ(made.GetNumberOfLines(), 4);
}

TEST_F(GGenericModelListTest, PartOfPolygonsWaitsForTheUpdate)
{
  PlainView view;
  mModel.add_view(&view);
  mModel.add_tri(mPoints.data(), BRANT_RED, MRUtil::DRAW_FILLED);
  mModel.update_parts();
  for (int i = 0; i < 1000; ++i) {
    mModel.add_tri(mPoints.data(), BRANT_RED, MRUtil::DRAW_FILLED);
  }
  EXPECT_EQ(cells_of(*part_of(view)), (std::vector<Cell>{{VTK_TRIANGLE, {0, 1, 2}}}));
  mModel.update_parts();
  EXPECT_EQ(cells_of(*part_of(view)).size(), 1001U);
}

// --- Slots that the host has changed

TEST_F(GGenericModelListTest, SlotThatWasEmptiedGoesOn)
{
  const int types[] = {VTK_VERTEX, VTK_LINE, VTK_POLYGON};
  const List list = {3, 0, 1, 2};
  const auto add = [&](int kind, int count) {
    if (kind == kVertices) {
      mModel.add_points(1, mPoints.data(), BRANT_RED, MRUtil::DRAW_OUTLINE);
    } else if (kind == kLines) {
      add_polylines(count, list);
    } else {
      add_polygons(count, list);
    }
  };
  for (int kind = 0; kind < 3; ++kind) {
    SCOPED_TRACE(kind);
    vtkPolyData& data = slot(mModel, MRUtil::DRAW_OUTLINE, kind);
    for (int round = 0; round < 2; ++round) {
      add(kind, 4);
      data.Initialize();
      add(kind, 4);
      const std::vector<vtkIdType> ids =
          kind == kVertices ? std::vector<vtkIdType>{0} : std::vector<vtkIdType>{0, 1, 2};
      EXPECT_EQ(cells_of(data), (std::vector<Cell>{{types[kind], ids}}));
      EXPECT_EQ(data.GetNumberOfPoints(), kind == kVertices ? 1 : 4);
      EXPECT_EQ(colours_of(data.GetCellData()), Colours{BRANT_RED});
      EXPECT_NO_THROW(mModel.update_parts());
    }
  }
}

TEST_F(GGenericModelListTest, SlotWithArraysOfTheHostGoesOn)
{
  add_polygons(4, {3, 0, 1, 2});
  vtkPolyData& data = polygons();
  const vtkNew<vtkPoints> points; // of doubles
  points->SetDataTypeToDouble();
  points->InsertNextPoint(0.1, 0.2, 0.3);
  data.SetPoints(points);
  const vtkNew<vtkCellArray> cells; // of 32 bits
  cells->Use32BitStorage();
  data.SetPolys(cells);
  data.BuildCells();
  const vtkNew<vtkUnsignedCharArray> colours; // of its own class
  colours->SetName("Color");
  colours->SetNumberOfComponents(4);
  data.GetCellData()->SetScalars(colours);
  add_polygons(4, {4, 0, 1, 2, 3});
  add_polygons(4, {3, 0, 1, 2});
  EXPECT_EQ(cells_of(data), (std::vector<Cell>{{VTK_POLYGON, {1, 2, 3, 4}}, {VTK_POLYGON, {5, 6, 7}}}));
  EXPECT_EQ(data.GetPoints(), points);
  EXPECT_EQ(data.GetPoint(0)[0], 0.1);
  EXPECT_EQ(points_of(data)[2], mPoints[1]);
  EXPECT_EQ(data.GetPolys(), cells);
  EXPECT_EQ(colours_of(data.GetCellData()), (Colours{BRANT_RED, BRANT_RED}));
  EXPECT_NO_THROW(mModel.update_parts());
}

TEST_F(GGenericModelListTest, ColoursThatAreMissingAreMadeAnew)
{
  add_polygons(4, {3, 0, 1, 2});
  polygons().GetCellData()->RemoveArray("Color");
  add_polygons(4, {3, 0, 1, 2});
  EXPECT_EQ(colours_of(polygons().GetCellData()), (Colours{BRANT_DEFAULT_COLOR, BRANT_RED}));
  const vtkNew<vtkIntArray> odd;
  odd->SetName("Color");
  odd->SetNumberOfTuples(2);
  polygons().GetCellData()->SetScalars(odd);
  add_polygons(4, {3, 0, 1, 2});
  EXPECT_EQ(colours_of(polygons().GetCellData()),
            (Colours{BRANT_DEFAULT_COLOR, BRANT_DEFAULT_COLOR, BRANT_RED}));
}

// Further arrays are the host's business, and so is which are the scalars.
TEST_F(GGenericModelListTest, OtherScalarsOfTheHostStay)
{
  add_polygons(4, {3, 0, 1, 2});
  const vtkNew<vtkIntArray> numbers;
  numbers->SetName("number");
  numbers->InsertNextValue(5);
  polygons().GetCellData()->AddArray(numbers);
  polygons().GetCellData()->SetActiveScalars("number");
  add_polygons(4, {3, 0, 1, 2});
  EXPECT_EQ(polygons().GetCellData()->GetScalars(), numbers);
  EXPECT_EQ(polygons().GetCellData()->GetArray("Color")->GetNumberOfTuples(), 2);
}

} // namespace
