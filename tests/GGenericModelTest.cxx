// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// What a generic model makes of primitives that are as they should be: slots, points, cells, colours, marks.
#include "GGenericModel.h"

#include "GenericModelFixture.h"

#include <gtest/gtest.h>

#include <vtkPolyDataNormals.h>

#include <cmath>
#include <limits>
#include <vector>

namespace {

using namespace morrow_test;

using Ids = std::vector<vtkIdType>;
using Colours = std::vector<BrantColor>;
using Points = std::vector<BrantVector>;

class GGenericModelTest : public ViewTest
{
protected:
  GGenericModel mModel;
};

// --- Slots

TEST_F(GGenericModelTest, StartsWithoutParts)
{
  EXPECT_EQ(num_parts(mModel), 0);
  EXPECT_NO_THROW(mModel.update_parts());
}

TEST_F(GGenericModelTest, EachModeKindAndBindingIsASlotOfItsOwn)
{
  std::set<vtkPolyData*> slots;
  for (const MRUtil::DrawMode mode : kAllModes) {
    for (int kind = 0; kind < 3; ++kind) {
      slots.insert(mModel.initialize_cell_data(mode, kind));
      slots.insert(mModel.initialize_point_data(mode, kind));
    }
  }
  EXPECT_EQ(slots.size(), 30U);
  EXPECT_EQ(slots.count(nullptr), 0U);
  EXPECT_EQ(num_parts(mModel), 30);
  for (const MRUtil::DrawMode mode : kAllModes) {
    for (int kind = 0; kind < 3; ++kind) {
      EXPECT_EQ(slots.count(mModel.initialize_cell_data(mode, kind)), 1U);
      EXPECT_EQ(slots.count(mModel.initialize_point_data(mode, kind)), 1U);
    }
  }
}

TEST_F(GGenericModelTest, NewSlotIsEmptyDataWithColours)
{
  for (const bool by_points : {false, true}) {
    vtkPolyData* data = by_points ? mModel.initialize_point_data(MRUtil::DRAW_FILLED, kLines)
                                  : mModel.initialize_cell_data(MRUtil::DRAW_FILLED, kLines);
    ASSERT_NE(data, nullptr);
    EXPECT_STREQ(data->GetClassName(), "vtkPolyData");
    EXPECT_EQ(data->GetNumberOfCells(), 0);
    ASSERT_NE(data->GetPoints(), nullptr);
    EXPECT_EQ(data->GetNumberOfPoints(), 0);
    auto* attributes = by_points ? static_cast<vtkDataSetAttributes*>(data->GetPointData())
                                 : static_cast<vtkDataSetAttributes*>(data->GetCellData());
    auto* others = by_points ? static_cast<vtkDataSetAttributes*>(data->GetCellData())
                             : static_cast<vtkDataSetAttributes*>(data->GetPointData());
    auto* colours = vtkUnsignedCharArray::SafeDownCast(attributes->GetScalars());
    ASSERT_NE(colours, nullptr);
    EXPECT_STREQ(colours->GetName(), "Color");
    EXPECT_STREQ(colours->GetClassName(), "vtkUnsignedCharArray");
    EXPECT_EQ(colours->GetNumberOfComponents(), 4);
    EXPECT_EQ(colours->GetNumberOfTuples(), 0);
    EXPECT_EQ(others->GetNumberOfArrays(), 0);
  }
}

TEST_F(GGenericModelTest, SlotsThatDoNotExistAreNullAndAnError)
{
  for (const int mode : {-1, 5, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
    const PrintCapture capture;
    EXPECT_EQ(mModel.initialize_cell_data(static_cast<MRUtil::DrawMode>(mode), 0), nullptr);
    EXPECT_EQ(mModel.initialize_point_data(static_cast<MRUtil::DrawMode>(mode), 0), nullptr);
    ASSERT_EQ(capture.calls().size(), 2U);
    EXPECT_EQ(capture.calls()[0].text,
              "GGenericModel: there is no draw mode " + std::to_string(mode) + " with primitive kind 0\n");
    EXPECT_EQ(capture.calls()[0].kind, 2);
  }
  for (const int kind : {-1, 3, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
    const PrintCapture capture;
    EXPECT_EQ(mModel.initialize_cell_data(MRUtil::DRAW_DEFAULT, kind), nullptr);
    EXPECT_EQ(mModel.initialize_point_data(MRUtil::DRAW_OVERLAY, kind), nullptr);
    EXPECT_EQ(capture.calls().size(), 2U);
  }
  EXPECT_EQ(num_parts(mModel), 0);
}

// The part is not the slot, but what the normals filter makes of it.
TEST_F(GGenericModelTest, PartIsTheOutputOfANormalsFilter)
{
  PlainView view;
  mModel.add_view(&view);
  mModel.add_tri(some_points(3).data(), BRANT_RED, MRUtil::DRAW_FILLED);
  vtkPolyData* shown_data = part_of(view);
  ASSERT_NE(shown_data, nullptr);
  EXPECT_NE(shown_data, &slot(mModel, MRUtil::DRAW_FILLED, kPolygons));
  EXPECT_EQ(shown_data->GetNumberOfCells(), 0); // not before the update
  mModel.update_parts();
  EXPECT_EQ(shown_data->GetNumberOfCells(), 1);
  ASSERT_NE(shown_data->GetPointData()->GetNormals(), nullptr);
  EXPECT_EQ(shown_data->GetPointData()->GetNormals()->GetTuple3(0)[2], 1.0);
  EXPECT_EQ(colours_of(shown_data->GetCellData()), Colours{BRANT_RED});
}

// --- Points

TEST_F(GGenericModelTest, PointsAreVertexCells)
{
  const Points points = {{1.0, 2.0, 3.0}, {4.0, 5.0, 6.0}};
  mModel.add_points(2, points.data(), BrantColor(1, 2, 3, 4), MRUtil::DRAW_OVERLAY);
  vtkPolyData& data = slot(mModel, MRUtil::DRAW_OVERLAY, kVertices);
  EXPECT_EQ(points_of(data), points);
  EXPECT_EQ(cells_of(data), (std::vector<Cell>{{VTK_VERTEX, {0}}, {VTK_VERTEX, {1}}}));
  EXPECT_EQ(colours_of(data.GetCellData()), (Colours{{1, 2, 3, 4}, {1, 2, 3, 4}}));
  EXPECT_EQ(num_parts(mModel), 1);
}

TEST_F(GGenericModelTest, PointsOfTwoCallsShareOneSlotAndOneActorInEachView)
{
  PlainView views[2];
  for (PlainView& view : views) {
    mModel.add_view(&view);
  }
  const Points points = some_points(3);
  mModel.add_points(1, points.data(), BRANT_RED, MRUtil::DRAW_OUTLINE);
  mModel.add_points(2, points.data() + 1, BRANT_BLUE, MRUtil::DRAW_OUTLINE);
  for (PlainView& view : views) {
    EXPECT_EQ(num_part_props(view), 1);
  }
  vtkPolyData& data = slot(mModel, MRUtil::DRAW_OUTLINE, kVertices);
  EXPECT_EQ(points_of(data), points);
  EXPECT_EQ(cells_of(data), (std::vector<Cell>{{VTK_VERTEX, {0}}, {VTK_VERTEX, {1}}, {VTK_VERTEX, {2}}}));
  EXPECT_EQ(colours_of(data.GetCellData()), (Colours{BRANT_RED, BRANT_BLUE, BRANT_BLUE}));
}

// --- Lines

TEST_F(GGenericModelTest, PolylinesAreLineCellsOfAllTheirPoints)
{
  const Points points = some_points(4);
  const int list[] = {2, 0, 1, 4, 3, 2, 1, 0};
  mModel.add_polylines(4, points.data(), 8, list, BRANT_GREEN, MRUtil::DRAW_FILLED);
  vtkPolyData& data = slot(mModel, MRUtil::DRAW_FILLED, kLines);
  EXPECT_EQ(points_of(data), points);
  EXPECT_EQ(cells_of(data), (std::vector<Cell>{{VTK_LINE, {0, 1}}, {VTK_LINE, {3, 2, 1, 0}}}));
  EXPECT_EQ(colours_of(data.GetCellData()), (Colours{BRANT_GREEN, BRANT_GREEN}));
  EXPECT_EQ(data.GetNumberOfLines(), 2);
}

TEST_F(GGenericModelTest, NumbersOfALaterCallCountFromItsOwnPoints)
{
  const Points points = some_points(3);
  const int list[] = {3, 2, 1, 0};
  mModel.add_polylines(3, points.data(), 4, list, BRANT_GREEN, MRUtil::DRAW_FILLED);
  const int line[] = {2, 1, 0};
  mModel.add_polylines(2, points.data(), 3, line, BRANT_RED, MRUtil::DRAW_FILLED);
  vtkPolyData& data = slot(mModel, MRUtil::DRAW_FILLED, kLines);
  EXPECT_EQ(data.GetNumberOfPoints(), 5);
  EXPECT_EQ(cells_of(data), (std::vector<Cell>{{VTK_LINE, {2, 1, 0}}, {VTK_LINE, {4, 3}}}));
}

// Whichever kind of line comes first, and whether somebody has looked at the types in between.
TEST_F(GGenericModelTest, TypesOfCellsDoNotDependOnTheirOrder)
{
  const Points points = some_points(4);
  const int longer[] = {3, 0, 1, 2};
  for (const bool look : {false, true}) {
    mModel.clear();
    std::vector<Cell> expected;
    for (int i = 0; i < 3; ++i) {
      const auto n = static_cast<vtkIdType>(5 * i);
      mModel.add_line(points[0], points[1], BRANT_RED);
      expected.push_back({VTK_LINE, {n, n + 1}});
      if (look) {
        EXPECT_EQ(cells_of(slot(mModel, MRUtil::DRAW_OUTLINE, kLines)), expected);
      }
      mModel.add_polylines(3, points.data(), 4, longer, BRANT_RED, MRUtil::DRAW_OUTLINE);
      expected.push_back({VTK_LINE, {n + 2, n + 3, n + 4}});
      if (look) {
        EXPECT_EQ(cells_of(slot(mModel, MRUtil::DRAW_OUTLINE, kLines)), expected);
      }
    }
    EXPECT_EQ(cells_of(slot(mModel, MRUtil::DRAW_OUTLINE, kLines)), expected);
  }
}

TEST_F(GGenericModelTest, LineIsAlwaysInModeOne)
{
  mModel.add_line({1.0, 0.0, 0.0}, {0.0, 2.0, 0.0}, BRANT_PINK);
  EXPECT_EQ(num_parts(mModel), 1);
  vtkPolyData& data = slot(mModel, MRUtil::DRAW_OUTLINE, kLines);
  EXPECT_EQ(points_of(data), (Points{{1.0, 0.0, 0.0}, {0.0, 2.0, 0.0}}));
  EXPECT_EQ(cells_of(data), (std::vector<Cell>{{VTK_LINE, {0, 1}}}));
  EXPECT_EQ(colours_of(data.GetCellData()), Colours{BRANT_PINK});
}

// --- Polygons

TEST_F(GGenericModelTest, PolygonsOfAnySizeAreOfOneType)
{
  const Points points = some_points(6);
  const int list[] = {3, 0, 1, 2, 4, 0, 1, 2, 3, 5, 5, 4, 3, 2, 1};
  mModel.add_polygons(6, points.data(), 15, list, BRANT_CORAL, MRUtil::DRAW_DEFAULT);
  mModel.add_tri(points.data(), BRANT_RED, MRUtil::DRAW_DEFAULT);
  mModel.add_quad(points.data(), BRANT_BLUE, MRUtil::DRAW_DEFAULT);
  mModel.add_polygon(5, points.data() + 1, BRANT_GREEN, MRUtil::DRAW_DEFAULT);
  vtkPolyData& data = slot(mModel, MRUtil::DRAW_DEFAULT, kPolygons);
  EXPECT_EQ(cells_of(data), (std::vector<Cell>{{VTK_POLYGON, {0, 1, 2}},
                                               {VTK_POLYGON, {0, 1, 2, 3}},
                                               {VTK_POLYGON, {5, 4, 3, 2, 1}},
                                               {VTK_POLYGON, {6, 7, 8}},
                                               {VTK_POLYGON, {9, 10, 11, 12}},
                                               {VTK_POLYGON, {13, 14, 15, 16, 17}}}));
  EXPECT_EQ(colours_of(data.GetCellData()),
            (Colours{BRANT_CORAL, BRANT_CORAL, BRANT_CORAL, BRANT_RED, BRANT_BLUE, BRANT_GREEN}));
  EXPECT_EQ(points_of(data)[13], points[1]);
  EXPECT_EQ(num_parts(mModel), 1);
}

TEST_F(GGenericModelTest, LargePolygonsFirstAreOfTheirTypeToo)
{
  const Points points = some_points(6);
  mModel.add_polygon(6, points.data(), BRANT_GREEN, MRUtil::DRAW_DEFAULT);
  mModel.add_tri(points.data(), BRANT_RED, MRUtil::DRAW_DEFAULT);
  EXPECT_EQ(cells_of(slot(mModel, MRUtil::DRAW_DEFAULT, kPolygons)),
            (std::vector<Cell>{{VTK_POLYGON, {0, 1, 2, 3, 4, 5}}, {VTK_POLYGON, {6, 7, 8}}}));
}

TEST_F(GGenericModelTest, PolygonsMayHaveAColourEach)
{
  const Points points = some_points(4);
  const int list[] = {3, 0, 1, 2, 3, 0, 2, 3};
  const BrantColor colours[] = {BRANT_RED, BrantColor(9, 8, 7, 6)};
  mModel.add_polygons(4, points.data(), 8, list, colours, MRUtil::DRAW_FILLED);
  EXPECT_EQ(colours_of(slot(mModel, MRUtil::DRAW_FILLED, kPolygons).GetCellData()),
            (Colours{BRANT_RED, {9, 8, 7, 6}}));
}

TEST_F(GGenericModelTest, CubeIsSixQuadrilaterals)
{
  const BrantVector corners[] = {{-1.0, -2.0, -3.0}, {1.0, 2.0, 3.0}};
  mModel.add_cube(corners, BRANT_GOLD, MRUtil::DRAW_OVERLAY);
  vtkPolyData& data = slot(mModel, MRUtil::DRAW_OVERLAY, kPolygons);
  const std::vector<Cell> cells = cells_of(data);
  ASSERT_EQ(cells.size(), 6U);
  EXPECT_EQ(data.GetNumberOfPoints(), 24);
  for (std::size_t i = 0; i < cells.size(); ++i) {
    const auto n = static_cast<vtkIdType>(4 * i);
    EXPECT_EQ(cells[i], (Cell{VTK_POLYGON, {n, n + 1, n + 2, n + 3}}));
  }
  double bounds[6];
  data.GetBounds(bounds);
  EXPECT_EQ(std::vector<double>(bounds, bounds + 6), (std::vector<double>{-1.0, 1.0, -2.0, 2.0, -3.0, 3.0}));
  EXPECT_EQ(colours_of(data.GetCellData()), Colours(6, BRANT_GOLD));
}

// --- Vectors

TEST_F(GGenericModelTest, VectorIsALineAndAPyramidOfFourTriangles)
{
  const BrantVector tail(0.0, 0.0, 0.0);
  const BrantVector head(10.0, 0.0, 0.0);
  mModel.add_vector(tail, head, BRANT_RED, true);
  EXPECT_EQ(num_parts(mModel), 2);
  vtkPolyData& shaft = slot(mModel, MRUtil::DRAW_OUTLINE, kLines);
  EXPECT_EQ(points_of(shaft), (Points{tail, head}));
  EXPECT_EQ(cells_of(shaft), (std::vector<Cell>{{VTK_LINE, {0, 1}}}));
  vtkPolyData& pyramid = slot(mModel, MRUtil::DRAW_DEFAULT, kPolygons);
  EXPECT_EQ(cells_of(pyramid), (std::vector<Cell>{{VTK_POLYGON, {0, 1, 2}},
                                                  {VTK_POLYGON, {0, 2, 3}},
                                                  {VTK_POLYGON, {0, 3, 4}},
                                                  {VTK_POLYGON, {0, 4, 1}}}));
  EXPECT_EQ(colours_of(pyramid.GetCellData()), Colours(4, BRANT_RED));
  const Points points = points_of(pyramid);
  ASSERT_EQ(points.size(), 5U);
  EXPECT_EQ(points[0], head);
  for (std::size_t i = 1; i < 5; ++i) {
    EXPECT_NEAR(points[i].x(), 8.0, 1e-6);
    EXPECT_NEAR(std::hypot(points[i].y(), points[i].z()), 0.7, 1e-6);
  }
}

TEST_F(GGenericModelTest, VectorWithoutShaftIsTheHeadOnly)
{
  mModel.add_vector({0.0, 0.0, 0.0}, {0.0, 0.0, 1.0}, BRANT_RED, false);
  EXPECT_EQ(num_parts(mModel), 1);
  EXPECT_EQ(slot(mModel, MRUtil::DRAW_DEFAULT, kPolygons).GetNumberOfCells(), 4);
}

TEST_F(GGenericModelTest, VectorOfNoLengthIsAPoint)
{
  const BrantVector place(1.0, 2.0, 3.0);
  mModel.add_vector(place, place, BRANT_RED, true);
  EXPECT_EQ(num_parts(mModel), 1);
  vtkPolyData& data = slot(mModel, MRUtil::DRAW_OUTLINE, kVertices);
  EXPECT_EQ(points_of(data), Points{place});
  EXPECT_EQ(cells_of(data), (std::vector<Cell>{{VTK_VERTEX, {0}}}));
}

TEST_F(GGenericModelTest, HeadOfNoLengthIsFourTrianglesInOnePoint)
{
  const BrantVector place(1.0, 2.0, 3.0);
  mModel.add_vector(place, place, BRANT_RED, false);
  EXPECT_EQ(num_parts(mModel), 1);
  EXPECT_EQ(points_of(slot(mModel, MRUtil::DRAW_DEFAULT, kPolygons)), Points(5, place));
  EXPECT_NO_THROW(mModel.update_parts());
}

TEST_F(GGenericModelTest, VectorsThatAreNotFiniteAreHarmless)
{
  for (const double bad :
       {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(), 1e308}) {
    mModel.add_vector({0.0, 0.0, 0.0}, {0.0, bad, 0.0}, BRANT_RED, true);
    mModel.add_vector({0.0, -bad, 0.0}, {0.0, bad, 0.0}, BRANT_RED, false);
  }
  EXPECT_NO_THROW(mModel.update_parts());
  EXPECT_EQ(slot(mModel, MRUtil::DRAW_DEFAULT, kPolygons).GetNumberOfCells(), 24);
}

// --- Highlights

TEST_F(GGenericModelTest, HighlightsAreTheDefaultColourInModeThree)
{
  const Points points = some_points(3);
  const int line[] = {2, 0, 1};
  const int face[] = {3, 0, 1, 2};
  mModel.add_points_highlight(3, points.data());
  mModel.add_polylines_highlight(3, points.data(), 3, line);
  mModel.add_polygons_highlight(3, points.data(), 4, face);
  EXPECT_EQ(num_parts(mModel), 3);
  const auto colours = [this](int kind) {
    return colours_of(slot(mModel, MRUtil::DRAW_HIGHLIGHT, kind).GetCellData());
  };
  EXPECT_EQ(colours(kVertices), Colours(3, BRANT_DEFAULT_COLOR));
  EXPECT_EQ(colours(kLines), Colours(1, BRANT_DEFAULT_COLOR));
  EXPECT_EQ(colours(kPolygons), Colours(1, BRANT_DEFAULT_COLOR));
  EXPECT_EQ(num_parts(mModel), 3);
}

// --- Marks

TEST_F(GGenericModelTest, EveryCallMarksCellsColoursPointsAndData)
{
  const Points points = some_points(4);
  const int line[] = {2, 0, 1};
  const int face[] = {3, 0, 1, 2};
  const std::function<void()> calls[] = {
      [&] { mModel.add_points(1, points.data(), BRANT_RED, MRUtil::DRAW_OUTLINE); },
      [&] { mModel.add_polylines(2, points.data(), 3, line, BRANT_RED, MRUtil::DRAW_OUTLINE); },
      [&] { mModel.add_polygons(3, points.data(), 4, face, BRANT_RED, MRUtil::DRAW_OUTLINE); }};
  for (int kind = 0; kind < 3; ++kind) {
    vtkPolyData& data = slot(mModel, MRUtil::DRAW_OUTLINE, kind);
    vtkCellArray* const cells[] = {data.GetVerts(), data.GetLines(), data.GetPolys()};
    for (int i = 0; i < 3; ++i) { // new data, then what has grown already
      const std::vector<vtkObject*> marked = {cells[kind], data.GetCellData()->GetScalars(), data.GetPoints(),
                                              data.GetPoints()->GetData(), &data};
      std::vector<vtkMTimeType> before;
      for (vtkObject* object : marked) {
        before.push_back(object->GetMTime());
      }
      const vtkMTimeType other = cells[(kind + 1) % 3]->GetMTime();
      calls[kind]();
      for (std::size_t k = 0; k < marked.size(); ++k) {
        EXPECT_GT(marked[k]->GetMTime(), before[k]) << "kind " << kind << ", object " << k;
      }
      EXPECT_EQ(cells[(kind + 1) % 3]->GetMTime(), other);
    }
  }
}

TEST_F(GGenericModelTest, ObserversHearOfEveryMark)
{
  vtkPolyData& data = slot(mModel, MRUtil::DRAW_OUTLINE, kLines);
  const std::vector<vtkObject*> marked = {data.GetLines(), data.GetCellData()->GetScalars(), data.GetPoints(),
                                          data.GetPoints()->GetData(), &data};
  std::vector<int> heard(marked.size(), 0);
  std::vector<std::unique_ptr<EventHook>> hooks;
  for (std::size_t i = 0; i < marked.size(); ++i) {
    hooks.push_back(
        std::make_unique<EventHook>(marked[i], vtkCommand::ModifiedEvent, [&heard, i] { ++heard[i]; }));
  }
  mModel.add_line({0.0, 0.0, 0.0}, {1.0, 0.0, 0.0}, BRANT_RED);
  for (std::size_t i = 0; i < marked.size(); ++i) {
    EXPECT_GE(heard[i], 1) << "object " << i; // VTK's points tell it of their array too
  }
}

// VTK keeps ranges and bounds until they are out of date.
TEST_F(GGenericModelTest, RangesAndBoundsFollow)
{
  vtkPolyData& data = slot(mModel, MRUtil::DRAW_OUTLINE, kLines);
  double range[2];
  for (int i = 1; i < 4; ++i) {
    mModel.add_line({0.0, 0.0, 0.0}, {1.0 * i, 0.0, 0.0}, BrantColor(50 * i, 0, 0));
    EXPECT_EQ(data.GetBounds()[1], 1.0 * i);
    data.GetCellData()->GetScalars()->GetRange(range, 0);
    EXPECT_EQ(range[1], 50.0 * i);
    data.GetPoints()->GetData()->GetRange(range, 0);
    EXPECT_EQ(range[1], 1.0 * i);
  }
}

TEST_F(GGenericModelTest, UpdateDoesNothingWhenNothingHasChanged)
{
  PlainView view;
  mModel.add_view(&view);
  mModel.add_tri(some_points(3).data(), BRANT_RED, MRUtil::DRAW_FILLED);
  mModel.update_parts();
  auto* part = part_of(view);
  const vtkMTimeType before = part->GetMTime();
  mModel.update_parts();
  EXPECT_EQ(part->GetMTime(), before);
  mModel.add_tri(some_points(3).data(), BRANT_RED, MRUtil::DRAW_FILLED);
  mModel.update_parts();
  EXPECT_GT(part->GetMTime(), before);
}

// --- Many

// Against VTK's own operations, through all the sizes at which arrays grow.
TEST_F(GGenericModelTest, ManyPrimitivesAreWhatVtkMakesOfThem)
{
  constexpr int Count = 20'000;
  const vtkNew<vtkPoints> points;
  const vtkNew<vtkCellArray> cells;
  for (int i = 0; i < Count; ++i) {
    const BrantVector p[4] = {
        {1.0 * i, 0.1, 0.0}, {i + 0.5, 0.0, 0.3}, {i + 0.5, 1.0, 0.0}, {1.0 * i, 1.0, 0.7}};
    mModel.add_quad(p, BrantColor(i % 256, i / 256, 0), MRUtil::DRAW_FILLED);
    vtkIdType ids[4];
    for (int k = 0; k < 4; ++k) {
      ids[k] = points->InsertNextPoint(p[k].data());
    }
    cells->InsertNextCell(4, ids);
  }
  vtkPolyData& data = slot(mModel, MRUtil::DRAW_FILLED, kPolygons);
  const auto equal = [](vtkDataArray* a, vtkDataArray* b) {
    return a->GetNumberOfValues() == b->GetNumberOfValues() && a->GetDataType() == b->GetDataType() &&
           std::memcmp(a->GetVoidPointer(0), b->GetVoidPointer(0),
                       static_cast<std::size_t>(a->GetNumberOfValues() * a->GetDataTypeSize())) == 0;
  };
  EXPECT_TRUE(equal(data.GetPoints()->GetData(), points->GetData()));
  EXPECT_TRUE(equal(data.GetPolys()->GetConnectivityArray(), cells->GetConnectivityArray()));
  EXPECT_TRUE(equal(data.GetPolys()->GetOffsetsArray(), cells->GetOffsetsArray()));
  const Colours colours = colours_of(data.GetCellData());
  ASSERT_EQ(colours.size(), static_cast<std::size_t>(Count));
  EXPECT_EQ(colours[12'345], BrantColor(12'345 % 256, 12'345 / 256, 0));
  EXPECT_EQ(data.GetCellType(Count - 1), VTK_POLYGON);
}

// --- Clear

TEST_F(GGenericModelTest, ClearLetsGoOfAllSlotsAndKeepsSettings)
{
  PlainView view;
  mModel.add_view(&view);
  const Points points = some_points(4);
  mModel.set_highlight_color(BRANT_BLUE);
  mModel.add_quad(points.data(), BRANT_RED, MRUtil::DRAW_HIGHLIGHT);
  mModel.add_locate(points[0], "here");
  mModel.add_label("label", points[0], BRANT_RED);
  const vtkWeakPointer<vtkPolyData> weak = &slot(mModel, MRUtil::DRAW_HIGHLIGHT, kPolygons);
  mModel.clear();
  EXPECT_EQ(weak, nullptr);
  EXPECT_EQ(num_part_props(view), 0);
  EXPECT_EQ(num_parts(mModel), 0);
  mModel.clear();
  mModel.add_quad(points.data(), BRANT_RED, MRUtil::DRAW_HIGHLIGHT);
  EXPECT_EQ(slot(mModel, MRUtil::DRAW_HIGHLIGHT, kPolygons).GetNumberOfCells(), 1);
  ASSERT_EQ(num_part_props(view), 1);
  const double* colour = actors_of(view)[0]->GetProperty()->GetColor();
  EXPECT_EQ(colour[2], 1.0);
}

TEST_F(GGenericModelTest, DataHeldBeyondClearIsTheHostsAlone)
{
  const Points points = some_points(4);
  mModel.add_quad(points.data(), BRANT_RED, MRUtil::DRAW_FILLED);
  const vtkSmartPointer<vtkPolyData> kept = &slot(mModel, MRUtil::DRAW_FILLED, kPolygons);
  mModel.clear();
  mModel.add_quad(points.data(), BRANT_RED, MRUtil::DRAW_FILLED);
  mModel.add_quad(points.data(), BRANT_RED, MRUtil::DRAW_FILLED);
  EXPECT_EQ(kept->GetNumberOfCells(), 1);
  EXPECT_EQ(kept->GetReferenceCount(), 1);
  EXPECT_NE(kept, &slot(mModel, MRUtil::DRAW_FILLED, kPolygons));
}

} // namespace
