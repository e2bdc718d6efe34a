// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "GfxDebug.h"

#include "BrantBox.h"
#include "BrantColor.h"
#include "BrantVector.h"

#include <gtest/gtest.h>
#include <memory>
#include <sstream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

// The interface only passes pointers to these through; any complete type will do here.
class MRefEntity
{};
class BrantFacet
{};
class BrantFacetEdge
{};

namespace {

static_assert(std::is_abstract_v<GfxDebug> && std::has_virtual_destructor_v<GfxDebug>);
static_assert(!std::is_copy_constructible_v<GfxDebug> && !std::is_copy_assignable_v<GfxDebug>);

// Writes down each operation with its overload and arguments; what comes by pointer or reference, by its
// address.
class Recorder : public GfxDebug
{
public:
  void p_clear() override { record("clear"); }
  void p_display_all(bool a, bool b) override { record("display_all", a, b); }
  void p_flush() override { record("flush"); }
  void p_clear_highlight() override { record("clear_highlight"); }
  void p_drawing_mode(int mode) override { record("drawing_mode", mode); }
  void p_draw_mref_entity_mesh(MRefEntity* entity, int color) override
  {
    record("draw_mref_entity_mesh", address(entity), color);
  }
  void p_draw_facet(BrantFacet* facet, int color, int option) override
  {
    record("draw_facet", address(facet), color, option);
  }
  void p_draw_facet_edge(BrantFacetEdge* edge, int color) override
  {
    record("draw_facet_edge", address(edge), color);
  }
  void p_draw_box(BrantBox& box, int color) override { record("draw_box", address(&box), color); }
  void p_draw_point(const BrantVector& point, int color) override
  {
    record("draw_point(vector)", address(&point), color);
  }
  void p_draw_point(float x, float y, float z, int color) override
  {
    record("draw_point(floats)", x, y, z, color);
  }
  void p_draw_line(const BrantVector& from, const BrantVector& to, int color) override
  {
    record("draw_line(vectors)", address(&from), address(&to), color);
  }
  void p_draw_line(float x1, float y1, float z1, float x2, float y2, float z2, int color) override
  {
    record("draw_line(floats)", x1, y1, z1, x2, y2, z2, color);
  }
  void p_draw_polyline(const BrantVector* points, int count, int color) override
  {
    record("draw_polyline", address(points), count, color);
  }
  void p_draw_polygon(const BrantVector* points, int count, int color, int option, bool filled) override
  {
    record("draw_polygon", address(points), count, color, option, filled);
  }
  void p_draw_quad(const BrantVector* points, int color) override
  {
    record("draw_quad", address(points), color);
  }
  void p_draw_tri(const BrantVector* points, int color) override
  {
    record("draw_tri", address(points), color);
  }
  void p_draw_vector(const BrantVector& tail, const BrantVector& head, int color) override
  {
    record("draw_vector", address(&tail), address(&head), color);
  }
  void p_draw_shell(int num_points, const BrantVector* points, int length, const int* list,
                    int color) override
  {
    record("draw_shell(color)", num_points, address(points), length, address(list), color);
  }
  void p_draw_shell(int num_points, const BrantVector* points, int length, const int* list,
                    const BrantColor* colors) override
  {
    record("draw_shell(colors)", num_points, address(points), length, address(list), address(colors));
  }
  void p_draw_label(const char* text, float x, float y, float z, int color) override
  {
    record("draw_label(text)", text, x, y, z, color);
  }
  void p_draw_label(int number, float x, float y, float z, int color) override
  {
    record("draw_label(number)", number, x, y, z, color);
  }
  void p_zoom(BrantBox& box) override { record("zoom", address(&box)); }
  void p_display_to_world_length(double pixels, double& length) override
  {
    record("display_to_world_length", pixels, length);
    length = 0.5 * pixels;
  }
  void p_mouse_xforms() override { record("mouse_xforms"); }
  void p_highlight_points(int count, const BrantVector* points) override
  {
    record("highlight_points", count, address(points));
  }
  void p_highlight_polylines(int num_points, const BrantVector* points, int length, const int* list) override
  {
    record("highlight_polylines", num_points, address(points), length, address(list));
  }
  void p_highlight_polygons(int num_points, const BrantVector* points, int length, const int* list) override
  {
    record("highlight_polygons", num_points, address(points), length, address(list));
  }

  // The operations since the last call, as text.
  std::vector<std::string> take() { return std::exchange(mCalls, {}); }

  template<typename... Arguments>
  static std::string describe(const char* operation, Arguments... arguments)
  {
    std::ostringstream text;
    text << operation;
    ((text << ' ' << arguments), ...);
    return text.str();
  }

private:
  static const void* address(const void* object) { return object; }

  template<typename... Arguments>
  void record(const char* operation, Arguments... arguments)
  {
    mCalls.push_back(describe(operation, arguments...));
  }

  std::vector<std::string> mCalls;
};

class GfxDebugTest : public ::testing::Test
{
protected:
  void TearDown() override { GfxDebug::set_instance(nullptr); }

  // The last static call reached the back end once, by that operation and with these arguments.
  template<typename... Arguments>
  void expect_forwarded(const char* operation, Arguments... arguments)
  {
    EXPECT_EQ(mRecorder.take(), std::vector<std::string>{Recorder::describe(operation, arguments...)});
  }

  void install() { GfxDebug::set_instance(&mRecorder); }

  // Every static operation once.
  void call_everything()
  {
    GfxDebug::clear();
    GfxDebug::display_all(true, false);
    GfxDebug::flush();
    GfxDebug::clear_highlight();
    GfxDebug::drawing_mode(1);
    GfxDebug::draw_mref_entity_mesh(&mEntity, 1);
    GfxDebug::draw_facet(&mFacet, 1, 2);
    GfxDebug::draw_facet_edge(&mEdge, 1);
    GfxDebug::draw_box(mBox, 1);
    GfxDebug::draw_point(mPoints[0], 1);
    GfxDebug::draw_point(1, 2, 3, 4);
    GfxDebug::draw_line(mPoints[0], mPoints[1], 1);
    GfxDebug::draw_line(1, 2, 3, 4, 5, 6, 7);
    GfxDebug::draw_polyline(mPoints, 3, 1);
    GfxDebug::draw_polygon(mPoints, 3, 1, 0, true);
    GfxDebug::draw_quad(mPoints, 1);
    GfxDebug::draw_tri(mPoints, 1);
    GfxDebug::draw_vector(mPoints[0], mPoints[1], 1);
    GfxDebug::draw_shell(3, mPoints, 4, mList, 1);
    GfxDebug::draw_shell(3, mPoints, 4, mList, mColors);
    GfxDebug::draw_label("text", 1, 2, 3, 4);
    GfxDebug::draw_label(7, 1, 2, 3, 4);
    GfxDebug::zoom(mBox);
    GfxDebug::display_to_world_length(8, mLength);
    GfxDebug::mouse_xforms();
    GfxDebug::highlight_points(3, mPoints);
    GfxDebug::highlight_polylines(3, mPoints, 4, mList);
    GfxDebug::highlight_polygons(3, mPoints, 4, mList);
  }

  Recorder mRecorder;
  MRefEntity mEntity;
  BrantFacet mFacet;
  BrantFacetEdge mEdge;
  BrantBox mBox;
  BrantVector mPoints[4];
  int mList[4] = {3, 0, 1, 2};
  BrantColor mColors[1];
  double mLength = -1.0;
};

TEST_F(GfxDebugTest, NothingIsInstalledAtFirst)
{
  EXPECT_EQ(GfxDebug::instance(), nullptr);
}

TEST_F(GfxDebugTest, WithoutABackEndNothingHappensAndALengthIsOne)
{
  call_everything();
  EXPECT_TRUE(mRecorder.take().empty());
  EXPECT_EQ(mLength, 1.0);
}

TEST_F(GfxDebugTest, EveryOperationReachesTheBackEndOnce)
{
  install();
  call_everything();
  EXPECT_EQ(mRecorder.take().size(), 28U);
}

TEST_F(GfxDebugTest, ForwardsTheControls)
{
  install();
  GfxDebug::clear();
  expect_forwarded("clear");
  // Both ways round: the two flags must not change places.
  GfxDebug::display_all(true, false);
  expect_forwarded("display_all", true, false);
  GfxDebug::display_all(false, true);
  expect_forwarded("display_all", false, true);
  GfxDebug::flush();
  expect_forwarded("flush");
  GfxDebug::clear_highlight();
  expect_forwarded("clear_highlight");
  GfxDebug::drawing_mode(-4);
  expect_forwarded("drawing_mode", -4);
  GfxDebug::mouse_xforms();
  expect_forwarded("mouse_xforms");
}

TEST_F(GfxDebugTest, ForwardsHostObjectsByTheirAddress)
{
  install();
  GfxDebug::draw_mref_entity_mesh(&mEntity, 5);
  expect_forwarded("draw_mref_entity_mesh", &mEntity, 5);
  GfxDebug::draw_facet(&mFacet, 5, 6);
  expect_forwarded("draw_facet", &mFacet, 5, 6);
  GfxDebug::draw_facet_edge(&mEdge, 5);
  expect_forwarded("draw_facet_edge", &mEdge, 5);
  GfxDebug::draw_box(mBox, 5);
  expect_forwarded("draw_box", &mBox, 5);
  GfxDebug::zoom(mBox);
  expect_forwarded("zoom", &mBox);
}

TEST_F(GfxDebugTest, PointsAndLinesReachTheOverloadOfTheirArguments)
{
  install();
  GfxDebug::draw_point(mPoints[1], 5);
  expect_forwarded("draw_point(vector)", &mPoints[1], 5);
  GfxDebug::draw_point(1.5F, 2, 3, 4);
  expect_forwarded("draw_point(floats)", 1.5F, 2, 3, 4);
  GfxDebug::draw_line(mPoints[1], mPoints[2], 5);
  expect_forwarded("draw_line(vectors)", &mPoints[1], &mPoints[2], 5);
  GfxDebug::draw_line(1.5F, 2, 3, 4, 5, 6, 7);
  expect_forwarded("draw_line(floats)", 1.5F, 2, 3, 4, 5, 6, 7);
  GfxDebug::draw_vector(mPoints[1], mPoints[2], 5);
  expect_forwarded("draw_vector", &mPoints[1], &mPoints[2], 5);
}

TEST_F(GfxDebugTest, ForwardsPointArraysByTheirAddress)
{
  install();
  GfxDebug::draw_polyline(mPoints, 3, 5);
  expect_forwarded("draw_polyline", mPoints, 3, 5);
  GfxDebug::draw_polygon(mPoints, 4, 5, 6, true);
  expect_forwarded("draw_polygon", mPoints, 4, 5, 6, true);
  GfxDebug::draw_polygon(mPoints, 4, 5, 6, false);
  expect_forwarded("draw_polygon", mPoints, 4, 5, 6, false);
  GfxDebug::draw_quad(mPoints, 5);
  expect_forwarded("draw_quad", mPoints, 5);
  GfxDebug::draw_tri(mPoints, 5);
  expect_forwarded("draw_tri", mPoints, 5);
  GfxDebug::highlight_points(3, mPoints);
  expect_forwarded("highlight_points", 3, mPoints);
}

TEST_F(GfxDebugTest, ForwardsListsWithTheirLengths)
{
  install();
  GfxDebug::draw_shell(3, mPoints, 4, mList, 5);
  expect_forwarded("draw_shell(color)", 3, mPoints, 4, mList, 5);
  GfxDebug::draw_shell(3, mPoints, 4, mList, mColors);
  expect_forwarded("draw_shell(colors)", 3, mPoints, 4, mList, mColors);
  GfxDebug::highlight_polylines(3, mPoints, 4, mList);
  expect_forwarded("highlight_polylines", 3, mPoints, 4, mList);
  GfxDebug::highlight_polygons(3, mPoints, 4, mList);
  expect_forwarded("highlight_polygons", 3, mPoints, 4, mList);
}

TEST_F(GfxDebugTest, LabelsReachTheOverloadOfTheirText)
{
  install();
  GfxDebug::draw_label("text", 1.5F, 2, 3, 4);
  expect_forwarded("draw_label(text)", "text", 1.5F, 2, 3, 4);
  // A literal zero is the number, not a null text.
  GfxDebug::draw_label(0, 1.5F, 2, 3, 4);
  expect_forwarded("draw_label(number)", 0, 1.5F, 2, 3, 4);
}

TEST_F(GfxDebugTest, ALengthIsOneUnlessTheBackEndSaysOtherwise)
{
  install();
  GfxDebug::display_to_world_length(8, mLength);
  // The back end finds 1 in the result and answers half of the pixels.
  expect_forwarded("display_to_world_length", 8.0, 1.0);
  EXPECT_EQ(mLength, 4.0);
}

TEST_F(GfxDebugTest, InstallingReturnsTheOneBefore)
{
  Recorder second;
  EXPECT_EQ(GfxDebug::set_instance(&mRecorder), nullptr);
  EXPECT_EQ(GfxDebug::instance(), &mRecorder);
  EXPECT_EQ(GfxDebug::set_instance(&second), &mRecorder);
  GfxDebug::clear();
  EXPECT_TRUE(mRecorder.take().empty());
  EXPECT_EQ(second.take().size(), 1U);
  EXPECT_EQ(GfxDebug::set_instance(nullptr), &second);
  EXPECT_EQ(GfxDebug::instance(), nullptr);
  GfxDebug::clear();
  EXPECT_TRUE(second.take().empty());
}

TEST_F(GfxDebugTest, ADestroyedBackEndIsUninstalled)
{
  auto back_end = std::make_unique<Recorder>();
  GfxDebug::set_instance(back_end.get());
  back_end.reset();
  EXPECT_EQ(GfxDebug::instance(), nullptr);
  call_everything();
  EXPECT_EQ(mLength, 1.0);
}

TEST_F(GfxDebugTest, DestroyingAnotherBackEndChangesNothing)
{
  install();
  {
    Recorder other;
  }
  EXPECT_EQ(GfxDebug::instance(), &mRecorder);
}

} // namespace
