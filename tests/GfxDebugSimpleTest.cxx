// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "GfxDebugSimple.h"

#include "BrantBox.h"
#include "DrawingFixture.h"

#include <gtest/gtest.h>

#include <vtkRenderWindowInteractor.h>

#include <climits>
#include <cmath>
#include <limits>
#include <memory>
#include <type_traits>

#include <X11/Xlib.h> // last: it defines None, Status and other words

// The interface only passes pointers to these through.
class MRefEntity
{};
class BrantFacet
{};
class BrantFacetEdge
{};

namespace {

using namespace morrow_test;

static_assert(std::is_base_of_v<GfxDebug, GfxDebugSimple>);
static_assert(sizeof(GfxDebugSimple) == sizeof(GfxDebug) + sizeof(GGenericModel*),
              "the model and nothing else");

constexpr int kRedId = 3; // of BrantColorTable
constexpr float kFloatNan = std::numeric_limits<float>::quiet_NaN();

/// Draws into a model without views.
class GfxDebugSimpleTest : public ViewTest
{
protected:
  [[nodiscard]] Lines cells() { return cells_in(mModel); }
  [[nodiscard]] Lines labels() { return mReader.labels_in(mModel); }
  [[nodiscard]] bool is_empty() { return cells().empty() && labels().empty(); }

  LabelReader mReader; // before the model, whose labels it reads
  PrintCapture mPrinted;
  GGenericModel mModel;
  GfxDebugSimple mDrawing{&mModel};
  const BrantVector mPoints[5] = {{0, 0, 0}, {1, 0, 0}, {1, 2, 0}, {0, 2, 0}, {0, 0, 3}};
};

// --- Primitives: "MODE KIND points colour"

TEST_F(GfxDebugSimpleTest, APointIsAVertexInMode1)
{
  mDrawing.p_draw_point(BrantVector(1, 2, 3), kRedId);
  mDrawing.p_draw_point(4.0F, 5.0F, 6.0F, 8);
  EXPECT_EQ(cells(), (Lines{"1 point (1 2 3) #ff0000", "1 point (4 5 6) #0000ff"}));
}

TEST_F(GfxDebugSimpleTest, ALineIsALineInMode1)
{
  mDrawing.p_draw_line(BrantVector(1, 2, 3), BrantVector(4, 5, 6), kRedId);
  mDrawing.p_draw_line(0.0F, 1.0F, 2.0F, 3.0F, 4.0F, 5.0F, 4);
  EXPECT_EQ(cells(), (Lines{"1 line (1 2 3) (4 5 6) #ff0000", "1 line (0 1 2) (3 4 5) #00ff00"}));
}

/// The forms with floats go through the virtual slots of those with vectors.
class Overriding : public GfxDebugSimple
{
public:
  using GfxDebugSimple::GfxDebugSimple;
  using GfxDebugSimple::p_draw_line;
  using GfxDebugSimple::p_draw_point;

  Lines calls;

  void p_draw_point(const BrantVector& point, int color) override
  {
    calls.push_back(text_of(point) + " " + std::to_string(color));
  }
  void p_draw_line(const BrantVector& from, const BrantVector& to, int color) override
  {
    calls.push_back(text_of(from) + text_of(to) + " " + std::to_string(color));
  }
};

TEST_F(GfxDebugSimpleTest, FormsWithFloatsCallThoseWithVectorsThroughTheirSlots)
{
  Overriding drawing(&mModel);
  GfxDebug& debug = drawing;
  debug.p_draw_point(0.5F, 1.0F, 2.0F, 7);
  debug.p_draw_line(1.0F, 2.0F, 3.0F, 4.0F, 5.0F, 6.0F, 8);
  EXPECT_EQ(drawing.calls, (Lines{"(0.5 1 2) 7", "(1 2 3)(4 5 6) 8"}));
  EXPECT_TRUE(is_empty());
}

TEST_F(GfxDebugSimpleTest, ABoxIsTheOutlineOfItsSixFaces)
{
  BrantBox box(BrantVector(0, 0, 0), BrantVector(1, 2, 3));
  mDrawing.p_draw_box(box, kRedId);
  const Lines faces = cells();
  GGenericModel expected;
  const BrantVector corners[2] = {{0, 0, 0}, {1, 2, 3}};
  expected.add_cube(corners, BRANT_RED, MRUtil::DRAW_OUTLINE);
  EXPECT_EQ(faces, cells_in(expected));
  ASSERT_EQ(faces.size(), 6U);
  for (const std::string& face : faces) {
    EXPECT_EQ(face.substr(0, 10), "1 polygon ");
    EXPECT_EQ(face.substr(face.size() - 7), "#ff0000");
  }
}

TEST_F(GfxDebugSimpleTest, APolylineGoesThroughAllPointsInOneCell)
{
  mDrawing.p_draw_polyline(mPoints, 4, kRedId);
  EXPECT_EQ(cells(), (Lines{"1 line (0 0 0) (1 0 0) (1 2 0) (0 2 0) #ff0000"})); // the list 4, 0, 1, 2, 3
}

TEST_F(GfxDebugSimpleTest, APolygonIsAnOutlineInMode1OrFilledInMode2WhateverTheOption)
{
  mDrawing.p_draw_polygon(mPoints, 3, kRedId, 0, false);
  mDrawing.p_draw_polygon(mPoints, 4, 8, 77, true);
  EXPECT_EQ(cells(), (Lines{"1 polygon (0 0 0) (1 0 0) (1 2 0) #ff0000",
                            "2 polygon (0 0 0) (1 0 0) (1 2 0) (0 2 0) #0000ff"}));
}

TEST_F(GfxDebugSimpleTest, AQuadAndATriangleArePolygonsInMode1)
{
  mDrawing.p_draw_quad(mPoints, kRedId);
  mDrawing.p_draw_tri(mPoints + 1, 4);
  EXPECT_EQ(cells(), (Lines{"1 polygon (0 0 0) (1 0 0) (1 2 0) (0 2 0) #ff0000",
                            "1 polygon (1 0 0) (1 2 0) (0 2 0) #00ff00"}));
}

TEST_F(GfxDebugSimpleTest, AVectorHasShaftAndHead)
{
  mDrawing.p_draw_vector(BrantVector(0, 0, 0), BrantVector(0, 0, 2), kRedId);
  const Lines arrow = cells();
  ASSERT_EQ(arrow.size(), 5U);
  EXPECT_EQ(arrow.back(), "1 line (0 0 0) (0 0 2) #ff0000");
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(arrow[i].substr(0, 17), "0 polygon (0 0 2)");
  }
  mDrawing.p_clear();
  mDrawing.p_draw_vector(mPoints[1], mPoints[1], kRedId);
  EXPECT_EQ(cells_in(mModel, 1, 0), Lines{"1 point (1 0 0) #ff0000"});
}

TEST_F(GfxDebugSimpleTest, AShellHasOneColourOrOneForEachFace)
{
  const int list[9] = {3, 0, 1, 2, 4, 0, 1, 2, 3};
  mDrawing.p_draw_shell(4, mPoints, 9, list, kRedId);
  const BrantColor colors[2] = {BRANT_CYAN, BRANT_YELLOW};
  mDrawing.p_draw_shell(4, mPoints, 9, list, colors);
  EXPECT_EQ(cells(), (Lines{"1 polygon (0 0 0) (1 0 0) (1 2 0) #ff0000",
                            "1 polygon (0 0 0) (1 0 0) (1 2 0) (0 2 0) #ff0000",
                            "1 polygon (0 0 0) (1 0 0) (1 2 0) #00ffff",
                            "1 polygon (0 0 0) (1 0 0) (1 2 0) (0 2 0) #ffff00"}));
}

TEST_F(GfxDebugSimpleTest, LabelsAreTextsOrNumbersInDecimalForm)
{
  mDrawing.p_draw_label("here", 1.0F, 2.0F, 3.0F, kRedId);
  mDrawing.p_draw_label(-42, 4.0F, 5.0F, 6.0F, 8);
  mDrawing.p_draw_label(INT_MIN, 0.0F, 0.0F, 0.0F, 0);
  EXPECT_EQ(labels(), (Lines{"here (1 2 3) #ff0000", "-42 (4 5 6) #0000ff", "-2147483648 (0 0 0) #000000"}));
  EXPECT_TRUE(cells().empty());
}

TEST_F(GfxDebugSimpleTest, HighlightsAreInMode3)
{
  const int line[4] = {3, 0, 1, 2};
  mDrawing.p_highlight_points(2, mPoints);
  mDrawing.p_highlight_polylines(3, mPoints, 4, line);
  mDrawing.p_highlight_polygons(3, mPoints, 4, line);
  EXPECT_EQ(cells(),
            (Lines{"3 point (0 0 0) #000000", "3 point (1 0 0) #000000",
                   "3 line (0 0 0) (1 0 0) (1 2 0) #000000", "3 polygon (0 0 0) (1 0 0) (1 2 0) #000000"}));
}

TEST_F(GfxDebugSimpleTest, AColourThatTheTableDoesNotHaveIsTheDefaultOne)
{
  for (const int id : {-1, 17, INT_MAX, INT_MIN}) {
    mDrawing.p_clear();
    mDrawing.p_draw_point(mPoints[0], id);
    EXPECT_EQ(cells(), Lines{"1 point (0 0 0) #000000"}) << id;
  }
}

// --- What does nothing

TEST_F(GfxDebugSimpleTest, OperationsWithoutAMeaningHereDoNothing)
{
  MRefEntity entity;
  BrantFacet facet;
  BrantFacetEdge edge;
  mDrawing.p_highlight_points(1, mPoints);
  mDrawing.p_clear_highlight();
  mDrawing.p_drawing_mode(2);
  mDrawing.p_draw_mref_entity_mesh(&entity, kRedId);
  mDrawing.p_draw_mref_entity_mesh(nullptr, kRedId);
  mDrawing.p_draw_facet(&facet, kRedId, 1);
  mDrawing.p_draw_facet(nullptr, kRedId, 1);
  mDrawing.p_draw_facet_edge(&edge, kRedId);
  mDrawing.p_draw_facet_edge(nullptr, kRedId);
  EXPECT_EQ(cells(), Lines{"3 point (0 0 0) #000000"}); // the highlight stays
  EXPECT_TRUE(labels().empty());
  EXPECT_TRUE(mPrinted.calls().empty());
}

TEST_F(GfxDebugSimpleTest, CountsBelowOneDrawNothingInSilence)
{
  const int list[4] = {3, 0, 1, 2};
  for (const int count : {0, -1, INT_MIN}) {
    mDrawing.p_draw_polyline(mPoints, count, kRedId);
    mDrawing.p_draw_polyline(nullptr, count, kRedId);
    mDrawing.p_draw_polygon(mPoints, count, kRedId, 0, true);
    mDrawing.p_draw_shell(count, mPoints, count, list, kRedId);
    mDrawing.p_highlight_points(count, mPoints);
    mDrawing.p_highlight_points(count, nullptr);
    mDrawing.p_highlight_polylines(count, mPoints, count, list);
    mDrawing.p_highlight_polygons(count, mPoints, count, list);
  }
  mDrawing.p_draw_polyline(nullptr, INT_MAX, kRedId); // its list would be one int too long
  EXPECT_TRUE(is_empty());
  EXPECT_TRUE(mPrinted.calls().empty());
}

TEST_F(GfxDebugSimpleTest, APolylineOfOnePointIsTooShortAndTheModelSaysSo)
{
  mDrawing.p_draw_polyline(mPoints, 1, kRedId);
  EXPECT_TRUE(is_empty());
  EXPECT_EQ(mPrinted.warnings(),
            "GGenericModel::add_polylines: 1 broken runs left out; run 0 has too few points\n");
}

TEST_F(GfxDebugSimpleTest, NullArraysDrawNothing)
{
  const int list[4] = {3, 0, 1, 2};
  const BrantColor colors[1] = {BRANT_RED};
  mDrawing.p_draw_polyline(nullptr, 3, kRedId);
  mDrawing.p_draw_polyline(nullptr, INT_MAX - 1, kRedId); // its list would take 8 GiB
  mDrawing.p_draw_polygon(nullptr, 3, kRedId, 0, true);
  mDrawing.p_draw_polygon(nullptr, INT_MAX, kRedId, 0, false);
  mDrawing.p_draw_quad(nullptr, kRedId);
  mDrawing.p_draw_tri(nullptr, kRedId);
  mDrawing.p_draw_shell(3, nullptr, 4, list, kRedId);
  mDrawing.p_draw_shell(3, mPoints, 4, nullptr, kRedId);
  mDrawing.p_draw_shell(3, nullptr, 4, list, colors);
  mDrawing.p_draw_shell(3, mPoints, 4, nullptr, colors);
  mDrawing.p_draw_shell(3, mPoints, 4, list, static_cast<const BrantColor*>(nullptr));
  mDrawing.p_highlight_points(3, nullptr);
  mDrawing.p_highlight_polylines(3, nullptr, 4, list);
  mDrawing.p_highlight_polylines(3, mPoints, 4, nullptr);
  mDrawing.p_highlight_polygons(3, nullptr, 4, list);
  mDrawing.p_highlight_polygons(3, mPoints, 4, nullptr);
  EXPECT_EQ(mPrinted.calls().size(), 16U); // each is told of, once
  mDrawing.p_draw_label(nullptr, 0.0F, 0.0F, 0.0F, kRedId);
  EXPECT_TRUE(is_empty());
}

TEST_F(GfxDebugSimpleTest, AnEmptyBoxIsNotDrawn)
{
  BrantBox box;
  mDrawing.p_draw_box(box, kRedId);
  EXPECT_TRUE(is_empty());
}

TEST_F(GfxDebugSimpleTest, PointsThatAreNoNumbersAreKept)
{
  mDrawing.p_draw_point(kFloatNan, 0.0F, 0.0F, kRedId);
  mDrawing.p_draw_vector(BrantVector(0, 0, 0), BrantVector(kFloatNan, 0, 0), kRedId);
  mDrawing.p_draw_label("nowhere", kFloatNan, 0.0F, 0.0F, kRedId);
  mModel.update_parts();
  EXPECT_EQ(cells_in(mModel, 1, 0).at(0), "1 point (nan 0 0) #ff0000");
}

TEST_F(GfxDebugSimpleTest, WithoutAModelEverythingDoesNothing)
{
  GfxDebugSimple drawing(nullptr);
  BrantBox box(mPoints[0], mPoints[2]);
  const int list[4] = {3, 0, 1, 2};
  const BrantColor colors[1] = {BRANT_RED};
  double length = 5.0;
  drawing.p_clear();
  drawing.p_display_all(true, false);
  drawing.p_flush();
  drawing.p_draw_box(box, kRedId);
  drawing.p_draw_point(mPoints[0], kRedId);
  drawing.p_draw_point(0.0F, 0.0F, 0.0F, kRedId);
  drawing.p_draw_line(mPoints[0], mPoints[1], kRedId);
  drawing.p_draw_polyline(mPoints, 3, kRedId);
  drawing.p_draw_polygon(mPoints, 3, kRedId, 0, true);
  drawing.p_draw_quad(mPoints, kRedId);
  drawing.p_draw_tri(mPoints, kRedId);
  drawing.p_draw_vector(mPoints[0], mPoints[1], kRedId);
  drawing.p_draw_shell(3, mPoints, 4, list, kRedId);
  drawing.p_draw_shell(3, mPoints, 4, list, colors);
  drawing.p_draw_label("x", 0.0F, 0.0F, 0.0F, kRedId);
  drawing.p_draw_label(1, 0.0F, 0.0F, 0.0F, kRedId);
  drawing.p_highlight_points(1, mPoints);
  drawing.p_highlight_polylines(3, mPoints, 4, list);
  drawing.p_highlight_polygons(3, mPoints, 4, list);
  drawing.p_zoom(box);
  drawing.p_display_to_world_length(10.0, length);
  drawing.p_mouse_xforms();
  EXPECT_EQ(length, 1.0);
  EXPECT_EQ(drawing.get_first_view(), nullptr);
}

// --- The whole drawing

TEST_F(GfxDebugSimpleTest, ClearingRemovesPrimitivesAndLabels)
{
  mDrawing.p_draw_point(mPoints[0], kRedId);
  mDrawing.p_draw_label("x", 0.0F, 0.0F, 0.0F, kRedId);
  mDrawing.p_clear();
  EXPECT_TRUE(is_empty());
}

/// Writes down its renders, with how much there was to render.
class RenderedModel : public GGenericModel
{
public:
  std::vector<std::size_t> renders;

  void Render() override { renders.push_back(cells_in(*this).size()); }
};

TEST_F(GfxDebugSimpleTest, FlushingRendersAndDisplayingAllRendersTheEmptyDrawing)
{
  RenderedModel model;
  GfxDebugSimple drawing(&model);
  drawing.p_draw_point(mPoints[0], kRedId);
  EXPECT_TRUE(model.renders.empty());
  drawing.p_flush();
  EXPECT_EQ(model.renders, (std::vector<std::size_t>{1}));
  drawing.p_clear();
  EXPECT_EQ(model.renders.size(), 1U);
  for (const bool flag : {false, true}) {
    drawing.p_draw_point(mPoints[0], kRedId);
    drawing.p_display_all(flag, !flag);
    EXPECT_EQ(model.renders.back(), 0U);
  }
  EXPECT_EQ(model.renders.size(), 3U);
}

TEST_F(GfxDebugSimpleTest, TheStaticOperationsReachTheModelWhileItIsInstalled)
{
  {
    GfxDebugSimple drawing(&mModel);
    GfxDebug::set_instance(&drawing);
    GfxDebug::draw_point(1.0F, 2.0F, 3.0F, kRedId);
    GfxDebug::draw_label(7, 0.0F, 0.0F, 0.0F, 0);
  }
  EXPECT_EQ(GfxDebug::instance(), nullptr);
  GfxDebug::draw_point(4.0F, 5.0F, 6.0F, kRedId);
  EXPECT_EQ(cells(), Lines{"1 point (1 2 3) #ff0000"}); // and it stays
  EXPECT_EQ(labels(), Lines{"7 (0 0 0) #000000"});
}

// --- Views

TEST_F(GfxDebugSimpleTest, TheFirstViewIsTheOneWithTheLowestAddress)
{
  EXPECT_EQ(mDrawing.get_first_view(), nullptr);
  auto views = sorted_views(3);
  mModel.add_view(views[2].get());
  EXPECT_EQ(mDrawing.get_first_view(), views[2].get());
  mModel.add_view(views[0].get());
  mModel.add_view(views[1].get());
  EXPECT_EQ(mDrawing.get_first_view(), views[0].get());
  mModel.remove_view(views[0].get());
  EXPECT_EQ(mDrawing.get_first_view(), views[1].get());
  views[1].reset(); // destroyed without leaving the model
  EXPECT_EQ(mDrawing.get_first_view(), views[2].get());
  views[2].reset();
  EXPECT_EQ(mDrawing.get_first_view(), nullptr);
}

TEST_F(GfxDebugSimpleTest, WithoutAViewThereIsNoZoomAndAPixelIsOneLong)
{
  BrantBox box(mPoints[0], mPoints[2]);
  mDrawing.p_zoom(box);
  double length = 0.0;
  mDrawing.p_display_to_world_length(25.0, length);
  EXPECT_EQ(length, 1.0);
}

constexpr const char* kMouseMessage =
    "Entering mouse mode.  Press 'q' in graphics window to exit mouse mode\n";

TEST_F(GfxDebugSimpleTest, MouseModeWithoutAViewOrInteractorOnlySaysSo)
{
  mDrawing.p_mouse_xforms();
  EXPECT_EQ(mPrinted.info(), kMouseMessage);
  mPrinted.clear();
  const auto view = make_view();
  mModel.add_view(view.get());
  mDrawing.p_mouse_xforms();
  EXPECT_EQ(mPrinted.info(), kMouseMessage);
  view->set_render_window(nullptr);
  mDrawing.p_mouse_xforms();
  EXPECT_EQ(mPrinted.calls().size(), 2U);
}

/// One whose event loop is a function of the test.
class LoopInteractor : public vtkRenderWindowInteractor
{
public:
  static vtkSmartPointer<LoopInteractor> make()
  {
    auto* interactor = new LoopInteractor;
    interactor->InitializeObjectBase();
    return vtkSmartPointer<LoopInteractor>::Take(interactor);
  }
  LoopInteractor(const LoopInteractor&) = delete;
  LoopInteractor& operator=(const LoopInteractor&) = delete;

  std::function<void()> on_start;

  void Start() override
  {
    const auto running = on_start;
    running();
  }

protected:
  LoopInteractor() = default;
  ~LoopInteractor() override = default;
};

/// A drawing in a view with such an interactor.
class GfxDebugSimpleMouseTest : public GfxDebugSimpleTest
{
protected:
  void SetUp() override
  {
    mView->get_render_window()->SetInteractor(mInteractor);
    mModel.add_view(mView.get());
  }

  std::shared_ptr<GView> mView = make_view();
  vtkSmartPointer<LoopInteractor> mInteractor = LoopInteractor::make();
};

TEST_F(GfxDebugSimpleMouseTest, TheLoopRunsAfterTheMessageWithRenderingAllowedAndRestoresWhatWasBefore)
{
  for (const bool before : {false, true}) {
    mPrinted.clear();
    int starts = 0;
    mInteractor->SetEnableRender(before);
    mInteractor->on_start = [&] {
      ++starts;
      EXPECT_TRUE(mInteractor->GetEnableRender());
      EXPECT_EQ(mPrinted.info(), kMouseMessage);
    };
    mDrawing.p_mouse_xforms();
    EXPECT_EQ(starts, 1);
    EXPECT_EQ(mInteractor->GetEnableRender(), before);
  }
}

TEST_F(GfxDebugSimpleMouseTest, ALoopThatThrowsRestoresTheSettingToo)
{
  mInteractor->SetEnableRender(false);
  mInteractor->on_start = [] { throw HostError("loop"); };
  EXPECT_EQ(thrown_by([&] { mDrawing.p_mouse_xforms(); }), "loop");
  EXPECT_FALSE(mInteractor->GetEnableRender());
}

TEST_F(GfxDebugSimpleMouseTest, TheLoopMayDestroyViewInteractorAndDrawing)
{
  auto drawing = std::make_unique<GfxDebugSimple>(&mModel);
  GfxDebugSimple& running = *drawing;
  const vtkWeakPointer<vtkRenderWindowInteractor> interactor = mInteractor.Get();
  mInteractor->on_start = [&] {
    mView.reset();
    mInteractor = nullptr;
    drawing.reset();
    EXPECT_NE(interactor, nullptr);
  };
  running.p_mouse_xforms();
  EXPECT_EQ(interactor, nullptr);
}

// --- Frames

/// Draws into a model that a view of 100 × 100 pixels shows.
class GfxDebugSimpleRenderTest : public ViewRenderTest
{
protected:
  void SetUp() override
  {
    ViewRenderTest::SetUp();
    mSet.add_model(&mModel);
    mView->set_model_set(&mSet);
  }

  std::shared_ptr<GView> mView = make_view();
  GModelSet mSet;
  GGenericModel mModel;
  GfxDebugSimple mDrawing{&mModel};
};

TEST_F(GfxDebugSimpleRenderTest, AFlushShowsWhatWasDrawnAndDisplayAllEmptiesTheView)
{
  const BrantVector corners[4] = {{-0.5, -0.5, 0}, {0.5, -0.5, 0}, {0.5, 0.5, 0}, {-0.5, 0.5, 0}};
  mDrawing.p_draw_quad(corners, kRedId);
  mDrawing.p_flush();
  const PixelRegion outline = find_pixels(read_pixels(mView->get_render_window()), colour_is(kRed));
  EXPECT_NEAR(outline.width(), 50, 2);
  EXPECT_NEAR(outline.height(), 50, 2);
  EXPECT_LT(outline.count, 250); // it is not filled

  mDrawing.p_draw_polygon(corners, 4, 4, 0, true);
  mDrawing.p_flush();
  const auto is_green = [](Rgb pixel) { return pixel.g > 60 && pixel.r < 20; };
  EXPECT_GT(count_pixels(read_pixels(mView->get_render_window()), is_green), 2000);

  mDrawing.p_display_all(true, true);
  EXPECT_EQ(count_pixels(read_pixels(mView->get_render_window()), colour_is_not(kBlack)), 0);
}

TEST_F(GfxDebugSimpleRenderTest, AZoomFramesTheBoxAtOnce)
{
  mDrawing.p_draw_line(-1.0F, -1.0F, 0.0F, 1.0F, 1.0F, 0.0F, kRedId);
  mView->render();
  FrameCounter frames(mView->get_render_window());
  BrantBox box(BrantVector(0, 0, 0), BrantVector(2, 1, 1));
  mDrawing.p_zoom(box);
  EXPECT_EQ(frames.starts(), 1);
  double at[3];
  mView->get_at(at);
  EXPECT_DOUBLE_EQ(at[0], 1.0);
  EXPECT_DOUBLE_EQ(at[1], 0.5);
  EXPECT_DOUBLE_EQ(at[2], 0.5);
  EXPECT_NEAR(mView->get_parallel_scale(), 0.55 * 2.0 * std::sqrt(3.0), 1e-9); // of the cube around it

  BrantBox empty;
  mDrawing.p_zoom(empty);
  EXPECT_EQ(frames.starts(), 1);
}

TEST_F(GfxDebugSimpleRenderTest, APixelIsAsLongAsTheFirstViewShowsIt)
{
  mView->render();
  double length = 0.0;
  mDrawing.p_display_to_world_length(25.0, length);
  EXPECT_NEAR(length, 0.5, 1e-9); // 100 pixels show 2
  const auto other = make_view(100, 100);
  other->set_parallel_scale(10.0);
  other->render();
  mModel.remove_view(mView.get());
  mModel.add_view(other.get());
  mDrawing.p_display_to_world_length(25.0, length);
  EXPECT_NEAR(length, 5.0, 1e-9);
  mModel.remove_view(other.get());
  mDrawing.p_display_to_world_length(25.0, length);
  EXPECT_EQ(length, 1.0);
}

// The loop of VTK's own interactor, which a timer leaves.
TEST_F(GfxDebugSimpleRenderTest, TheMouseModeCanBeEnteredAgain)
{
  const PrintCapture printed;
  const vtkNew<vtkRenderWindowInteractor> interactor;
  interactor->SetRenderWindow(mView->get_render_window());
  interactor->Initialize();
  int ticks = 0;
  const EventHook leave(interactor, vtkCommand::TimerEvent, [&] {
    if (++ticks % 3 == 0) {
      interactor->TerminateApp();
    }
  });
  const int timer = interactor->CreateRepeatingTimer(10);
  mDrawing.p_mouse_xforms();
  EXPECT_EQ(ticks, 3);
  mDrawing.p_mouse_xforms();
  EXPECT_EQ(ticks, 6);
  interactor->DestroyTimer(timer);
}

/// Events that wait when the loop ends are taken while there still is a window.
TEST_F(GfxDebugSimpleRenderTest, ThePointerMayEnterTheWindowWhileTheMouseModeEnds)
{
  const PrintCapture printed;
  vtkRenderWindow* window = mView->get_render_window();
  window->SetPosition(800, 600); // where no other test's window covers it
  const vtkNew<vtkRenderWindowInteractor> interactor;
  interactor->SetRenderWindow(window);
  interactor->Initialize();
  const EventHook leave(interactor, vtkCommand::TimerEvent, [&] {
    auto* display = static_cast<Display*>(window->GetGenericDisplayId());
    const auto native = reinterpret_cast<::Window>(window->GetGenericWindowId());
    for (int i = 0; i < 3; ++i) {
      XWarpPointer(display, None, native, 0, 0, 0, 0, 5, 5);
      XWarpPointer(display, None, DefaultRootWindow(display), 0, 0, 0, 0, DisplayWidth(display, 0) - 1,
                   DisplayHeight(display, 0) - 1);
    }
    XSync(display, False);
    interactor->ExitCallback(); // as the key does
  });
  int entered = 0;
  const EventHook enter(interactor, vtkCommand::EnterEvent, [&] { ++entered; });
  const int timer = interactor->CreateRepeatingTimer(10);
  mDrawing.p_mouse_xforms();
  EXPECT_GT(entered, 0);
  EXPECT_FALSE(interactor->HasObserver(vtkCommand::ExitEvent));
  interactor->DestroyTimer(timer);
}

/// A host that has a say in it.
TEST_F(GfxDebugSimpleMouseTest, AnObserverOfTheExitEventDecidesAlone)
{
  int exits = 0;
  const EventHook exit(mInteractor, vtkCommand::ExitEvent, [&] { ++exits; });
  mInteractor->on_start = [&] {
    mInteractor->ExitCallback();
    EXPECT_FALSE(mInteractor->GetDone());
  };
  mDrawing.p_mouse_xforms();
  EXPECT_EQ(exits, 1);
}

TEST_F(GfxDebugSimpleMouseTest, TheExitEventEndsTheLoopAndNoLaterOne)
{
  mInteractor->on_start = [&] {
    EXPECT_TRUE(mInteractor->HasObserver(vtkCommand::ExitEvent)); // or VTK would close the window
    EXPECT_FALSE(mInteractor->GetDone());
    mInteractor->ExitCallback();
    EXPECT_TRUE(mInteractor->GetDone());
  };
  mDrawing.p_mouse_xforms();
  EXPECT_FALSE(mInteractor->HasObserver(vtkCommand::ExitEvent));
}

TEST_F(GfxDebugSimpleRenderTest, NothingIsRenderedWhileGraphicsAreDisabled)
{
  mView->render();
  FrameCounter frames(mView->get_render_window());
  MRUtil::set_graphics_status(MRUtil::GRAPHICS_DISABLED);
  mDrawing.p_draw_point(0.0F, 0.0F, 0.0F, kRedId);
  mDrawing.p_flush();
  mDrawing.p_display_all(false, false);
  EXPECT_EQ(frames.starts(), 0);
}

} // namespace
