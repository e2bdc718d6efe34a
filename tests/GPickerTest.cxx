// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "PickFixture.h"

#include <cmath>
#include <limits>
#include <stdexcept>

namespace {

using namespace morrow_test;

using GPickerTest = PickTest;
using Texts = std::vector<std::string>;

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

/// A hit of an entity of the test, without a reference of the test's own.
void hit(GPicker& picker, GPicked::PickedEntity* entity, float distance = 0.0F, bool direct = true)
{
  const float point[3] = {distance, 0.0F, 0.0F};
  picker.add_to_selection_buffer(entity, point, distance, direct);
}

Texts buffer_texts(const GPicker& picker)
{
  const std::vector<EntitySelection> list(picker.get_selection_buffer().begin(),
                                          picker.get_selection_buffer().end());
  return texts_of(list.data(), static_cast<int>(list.size()));
}

/// The order in which selections of these distances come out, by their places in the list.
std::vector<long long> ranked(const std::vector<float>& distances)
{
  std::vector<EntitySelection> list;
  for (const float distance : distances) {
    list.push_back(select(new FaceEntity(static_cast<long long>(list.size())), distance));
  }
  GPicker::sort_possible_selections(list);
  std::vector<long long> places;
  std::transform(list.begin(), list.end(), std::back_inserter(places),
                 [](const EntitySelection& selection) { return selection.entity()->key(); });
  return places;
}

using Places = std::vector<long long>;

// ---- Buffer

TEST_F(GPickerTest, TheBufferHoldsEachEntityOnceInTheirOrder)
{
  TestPicker picker;
  EXPECT_TRUE(picker.get_selection_buffer().empty());
  hit(picker, new FaceEntity(2));
  hit(picker, new FaceEntity(1));
  hit(picker, new EdgeEntity(9));
  hit(picker, new FaceEntity(2));
  hit(picker, nullptr);
  EXPECT_EQ(buffer_texts(picker), Texts({"edge 9", "face 1", "face 2"}));
  EXPECT_EQ(TestEntity::gAlive, 3);
}

TEST_F(GPickerTest, TheNearestHitOfAnEntityStaysWithItsPoint)
{
  TestPicker picker;
  const auto only = [&]() -> const EntitySelection& { return *picker.get_selection_buffer().begin(); };
  const Held<FaceEntity> first(1);
  hit(picker, first, 2.0F);
  hit(picker, new FaceEntity(1), 3.0F);
  EXPECT_EQ(only().distance(), 2.0F);
  hit(picker, new FaceEntity(1), 2.0F); // of equal ones the first
  EXPECT_EQ(only().entity(), first.get());
  hit(picker, new FaceEntity(1), 1.0F);
  EXPECT_EQ(only().distance(), 1.0F);
  EXPECT_EQ(only().point()[0], 1.0F);
  EXPECT_NE(only().entity(), first.get());
  EXPECT_EQ(first->reference_count(), 1U);
  hit(picker, new FaceEntity(1), 0.5F, false); // counts 1.5
  EXPECT_EQ(only().distance(), 1.0F);
  hit(picker, new FaceEntity(1), -0.5F, false);
  EXPECT_EQ(only().distance(), 0.5F);
  EXPECT_EQ(picker.get_selection_buffer().size(), 1U);
}

TEST_F(GPickerTest, ADistanceThatIsNoNumberGivesWayToEveryOther)
{
  TestPicker picker;
  const auto distance = [&] { return picker.get_selection_buffer().begin()->distance(); };
  hit(picker, new FaceEntity(1), kNan);
  hit(picker, new FaceEntity(1), kNan);
  EXPECT_TRUE(std::isnan(distance()));
  hit(picker, new FaceEntity(1), kInfinity);
  EXPECT_EQ(distance(), kInfinity);
  hit(picker, new FaceEntity(1), kNan);
  EXPECT_EQ(distance(), kInfinity);
  hit(picker, new FaceEntity(1), -kInfinity, false);
  EXPECT_EQ(distance(), -kInfinity);
}

TEST_F(GPickerTest, AnIndirectHitRanksBehindDirectOnesOfAUnitMore)
{
  TestPicker picker;
  hit(picker, new FaceEntity(1), 0.0F, false);
  hit(picker, new FaceEntity(2), 0.5F, true);
  picker.end_pick();
  EXPECT_EQ(possible_texts(), Texts({"face 2", "face 1"}));
  const EntitySelection* list = nullptr;
  int count = 0;
  GPickerBase::get_possible_selections(list, count);
  EXPECT_EQ(list[1].distance(), 1.0F);
}

TEST_F(GPickerTest, AWholeSetJoinsTheBufferWithoutReplacingAnything)
{
  TestPicker picker;
  TestPicker other;
  hit(picker, new FaceEntity(1), 5.0F);
  hit(other, new FaceEntity(1), 1.0F);
  hit(other, new FaceEntity(2), 2.0F);
  picker.add_to_selection_buffer(other.get_selection_buffer());
  picker.add_to_selection_buffer(picker.get_selection_buffer());
  picker.add_to_selection_buffer(std::set<EntitySelection>{EntitySelection()});
  EXPECT_EQ(buffer_texts(picker), Texts({"face 1", "face 2"}));
  EXPECT_EQ(picker.get_selection_buffer().begin()->distance(), 5.0F);
}

TEST_F(GPickerTest, AnEntityIsRemovedByAnyObjectOfIt)
{
  TestPicker picker;
  FaceEntity on_the_stack(1); // without a reference: deleting it would crash
  EdgeEntity absent(1);
  hit(picker, new FaceEntity(1));
  hit(picker, new FaceEntity(2));
  picker.remove_from_selection_buffer(&on_the_stack);
  picker.remove_from_selection_buffer(&on_the_stack);
  picker.remove_from_selection_buffer(&absent);
  picker.remove_from_selection_buffer(nullptr);
  EXPECT_EQ(buffer_texts(picker), Texts({"face 2"}));
  EXPECT_EQ(on_the_stack.reference_count(), 0U);
  picker.clear_selection_buffer();
  picker.clear_selection_buffer();
  EXPECT_TRUE(picker.get_selection_buffer().empty());
  EXPECT_EQ(TestEntity::gAlive, 2);
}

TEST_F(GPickerTest, TheDestructorEmptiesTheBuffer)
{
  {
    TestPicker picker;
    hit(picker, new FaceEntity(1));
  }
  EXPECT_EQ(TestEntity::gAlive, 0);
}

// ---- Ranking

TEST_F(GPickerTest, EqualDistancesComeOutBackwards)
{
  EXPECT_EQ(ranked({1.0F, 1.0F, 1.0F}), Places({2, 1, 0}));
  EXPECT_EQ(ranked({2.0F, 1.0F, 2.0F, 1.0F, 0.0F}), Places({4, 3, 1, 2, 0}));
  EXPECT_EQ(ranked({3.0F, 2.0F, 1.0F}), Places({2, 1, 0}));
  EXPECT_EQ(ranked({7.0F}), Places({0}));
  EXPECT_EQ(ranked({}), Places());
}

TEST_F(GPickerTest, ZerosOfBothSignsAreEqualAndInfinitiesToo)
{
  EXPECT_EQ(ranked({0.0F, -0.0F, 0.0F}), Places({2, 1, 0}));
  EXPECT_EQ(ranked({kInfinity, -kInfinity, 0.0F, kInfinity, -kInfinity}), Places({4, 1, 2, 3, 0}));
}

TEST_F(GPickerTest, WhatIsNoDistanceComesLastInItsOwnOrder)
{
  EXPECT_EQ(ranked({kNan, 1.0F, kNan, kInfinity, 1.0F, kNan}), Places({4, 1, 3, 0, 2, 5}));
  EXPECT_EQ(ranked({kNan, kNan}), Places({0, 1}));
}

// A library sort with a broken order reads beyond the list; the sanitizers would see it.
TEST_F(GPickerTest, ManyDistancesThatAreNoNumbersAreNoDanger)
{
  std::vector<float> distances;
  for (int i = 0; i < 500; ++i) {
    distances.push_back(i % 3 == 0 ? kNan : static_cast<float>(i % 7));
  }
  const Places places = ranked(distances);
  ASSERT_EQ(places.size(), distances.size());
  EXPECT_TRUE(std::is_sorted(places.begin() + 333, places.end()));
}

// ---- A click

TEST_F(GPickerTest, AClickOffersCandidatesAndPicksTheBest)
{
  TestPicker picker;
  picker.begin_pick(false);
  hit(picker, new FaceEntity(1), 3.0F);
  hit(picker, new FaceEntity(2), 1.0F);
  hit(picker, new FaceEntity(3), 2.0F);
  picker.end_pick();
  EXPECT_EQ(possible_texts(), Texts({"face 2", "face 3", "face 1"}));
  EXPECT_EQ(current_text(), "face 2");
  EXPECT_EQ(picked_texts(), Texts({"face 2"}));
  EXPECT_TRUE(picker.get_selection_buffer().empty());
}

TEST_F(GPickerTest, ABeginningClickClearsWhatWasUnlessItAdds)
{
  TestPicker picker;
  const auto begin = [&](bool additive) {
    add_to_picked_list({select(new FaceEntity(1))});
    set_possible({select(new FaceEntity(2))});
    hit(picker, new FaceEntity(3));
    picker.begin_pick(additive);
    EXPECT_EQ(possible_texts(), Texts());
    EXPECT_TRUE(picker.get_selection_buffer().empty());
  };
  begin(true);
  EXPECT_EQ(picked_texts(), Texts({"face 1"}));
  begin(false);
  EXPECT_EQ(picked_texts(), Texts());
}

TEST_F(GPickerTest, AnAddingClickAddsTheBestThatIsNotPicked)
{
  TestPicker picker;
  add_to_picked_list({select(new FaceEntity(1))});
  picker.begin_pick(true);
  hit(picker, new FaceEntity(2), 0.0F);
  hit(picker, new FaceEntity(1), 1.0F); // picked, but not the best: stays
  hit(picker, new FaceEntity(3), 2.0F);
  picker.end_pick();
  EXPECT_EQ(possible_texts(), Texts({"face 2", "face 3"}));
  EXPECT_EQ(picked_texts(), Texts({"face 1", "face 2"}));
}

TEST_F(GPickerTest, AnAddingClickOnAPickedEntityUnpicksIt)
{
  TestPicker picker;
  PickRecorder recorder;
  add_to_picked_list({select(new FaceEntity(1))});
  picker.begin_pick(true);
  hit(picker, new FaceEntity(1), 0.0F);
  picker.end_pick();
  EXPECT_EQ(possible_texts(), Texts());
  EXPECT_EQ(picked_texts(), Texts());
  EXPECT_EQ(recorder.calls, Texts({"+face 1", "-face 1"}));

  // What lies behind is then offered and picked.
  add_to_picked_list({select(new FaceEntity(1))});
  picker.begin_pick(true);
  hit(picker, new FaceEntity(1), 0.0F);
  hit(picker, new FaceEntity(2), 1.0F);
  picker.end_pick();
  EXPECT_EQ(possible_texts(), Texts({"face 2"}));
  EXPECT_EQ(picked_texts(), Texts({"face 2"}));
}

TEST_F(GPickerTest, AClickThatDoesNotAddUnpicksNothingByItself)
{
  TestPicker picker;
  picker.begin_pick(false);
  add_to_picked_list({select(new FaceEntity(1))}); // by the host, meanwhile
  hit(picker, new FaceEntity(1), 0.0F);
  hit(picker, new FaceEntity(2), 1.0F);
  picker.end_pick();
  EXPECT_EQ(possible_texts(), Texts({"face 2"})); // picked ones are left out all the same
  EXPECT_EQ(picked_texts(), Texts({"face 1", "face 2"}));
}

TEST_F(GPickerTest, AClickIntoNothingLeavesNothing)
{
  TestPicker picker;
  PickRecorder recorder;
  picker.begin_pick(true);
  picker.end_pick();
  picker.begin_pick(false);
  picker.end_pick();
  EXPECT_EQ(recorder.calls, Texts());
  EXPECT_EQ(possible_texts(), Texts());
}

TEST_F(GPickerTest, TheSamePointOfSeveralPickersIsOneClick)
{
  TestPicker faces;
  TestPicker edges;
  faces.begin_pick(false);
  hit(faces, new FaceEntity(1), 0.0F);
  hit(edges, new EdgeEntity(1), 0.0F);
  faces.add_to_selection_buffer(edges.get_selection_buffer());
  faces.end_pick();
  EXPECT_EQ(possible_texts(), Texts({"face 1", "edge 1"})); // equal distances backwards
}

// ---- A drag

TEST_F(GPickerTest, ADragPicksAllAndSaysHowMany)
{
  const PrintCapture printed;
  TestPicker picker;
  PickRecorder recorder;
  picker.begin_pick(false);
  hit(picker, new FaceEntity(2));
  hit(picker, new FaceEntity(1));
  set_possible({select(new FaceEntity(1))});
  picker.end_pick_box();
  EXPECT_EQ(recorder.calls, Texts({"+face 1 +face 2"}));
  EXPECT_EQ(possible_texts(), Texts());
  EXPECT_EQ(printed.info(), "2 entities selected\n");
  picker.begin_pick(true);
  hit(picker, new FaceEntity(2)); // no toggling
  picker.end_pick_box();
  EXPECT_EQ(picked_texts(), Texts({"face 1", "face 2"}));
  EXPECT_EQ(printed.info(), "2 entities selected\n2 entities selected\n");
  EXPECT_TRUE(picker.get_selection_buffer().empty());
}

TEST_F(GPickerTest, ADragOverNothingChangesAndPrintsNothing)
{
  const PrintCapture printed;
  TestPicker picker;
  PickRecorder recorder;
  add_to_picked_list({select(new FaceEntity(1))});
  recorder.calls.clear();
  picker.begin_pick(true);
  picker.end_pick_box();
  EXPECT_EQ(picked_texts(), Texts({"face 1"}));
  EXPECT_EQ(recorder.calls, Texts());
  EXPECT_TRUE(printed.calls().empty());
}

// ---- Hovering

TEST_F(GPickerTest, HoveringPreSelectsTheNearest)
{
  TestPicker picker;
  PickRecorder recorder;
  hit(picker, new FaceEntity(9));
  picker.begin_pre_select();
  EXPECT_TRUE(picker.get_selection_buffer().empty());
  hit(picker, new FaceEntity(3), 2.0F);
  hit(picker, new FaceEntity(2), 1.0F);
  hit(picker, new FaceEntity(1), 1.0F); // in the buffer before 2
  picker.end_pre_select();
  EXPECT_TRUE(picker.get_selection_buffer().empty());
  picker.begin_pre_select();
  hit(picker, new FaceEntity(1), 7.0F);
  picker.end_pre_select();
  EXPECT_EQ(recorder.calls, Texts({"on face 1"}));
  picker.begin_pre_select();
  hit(picker, new FaceEntity(1), kNan);
  hit(picker, new FaceEntity(2), 1e30F);
  picker.end_pre_select();
  picker.begin_pre_select();
  picker.end_pre_select();
  EXPECT_EQ(recorder.calls, Texts({"on face 1", "off face 1", "on face 2", "off face 2"}));
  EXPECT_EQ(GPickerBase::get_current_pre_selection(), nullptr);
  EXPECT_EQ(picked_texts(), Texts());
}

// ---- Exceptions of observers

TEST_F(GPickerTest, AGestureIsCompleteWhenAnExceptionComesOut)
{
  TestPicker picker;
  PickRecorder recorder;
  recorder.on_call = [] { throw std::runtime_error("host"); };
  const PrintCapture printed;
  picker.begin_pick(false);
  hit(picker, new FaceEntity(1), 0.0F);
  hit(picker, new FaceEntity(2), 1.0F);
  EXPECT_THROW(picker.end_pick(), std::runtime_error);
  EXPECT_EQ(current_text(), "face 1");
  EXPECT_EQ(picked_texts(), Texts({"face 1"}));

  picker.begin_pick(true);
  hit(picker, new FaceEntity(1), 0.0F);
  hit(picker, new FaceEntity(2), 1.0F);
  EXPECT_THROW(picker.end_pick(), std::runtime_error);
  EXPECT_EQ(picked_texts(), Texts({"face 2"}));
  EXPECT_EQ(current_text(), "face 2");

  hit(picker, new FaceEntity(5));
  EXPECT_THROW(picker.begin_pick(false), std::runtime_error);
  EXPECT_TRUE(picker.get_selection_buffer().empty());
  EXPECT_EQ(picked_texts(), Texts());

  hit(picker, new FaceEntity(3));
  EXPECT_THROW(picker.end_pick_box(), std::runtime_error);
  EXPECT_EQ(picked_texts(), Texts({"face 3"}));
  EXPECT_EQ(printed.info(), "1 entity selected\n");
  hit(picker, new FaceEntity(4));
  EXPECT_THROW(picker.end_pre_select(), std::runtime_error);
  EXPECT_EQ(text_of(GPickerBase::get_current_pre_selection()), "face 4");
  recorder.on_call = nullptr;
}

// ---- Regions without a window

TEST_F(GPickerTest, NullsFindNothing)
{
  TestPicker picker;
  const vtkNew<vtkRenderer> renderer;
  int corner[2] = {1, 2};
  int points[3][2] = {{0, 0}, {4, 0}, {0, 4}};
  EXPECT_EQ(picker.compute_pick_by_box(nullptr, corner, corner), 0);
  EXPECT_EQ(picker.compute_pick_by_box(renderer, nullptr, corner), 0);
  EXPECT_EQ(picker.compute_pick_by_box(renderer, corner, nullptr), 0);
  EXPECT_EQ(picker.compute_pick_by_polygon(nullptr, 3, points), 0);
  EXPECT_EQ(picker.compute_pick_by_polygon(renderer, 3, nullptr), 0);
  EXPECT_EQ(picker.compute_pick_by_polygon(renderer, 0, points), 0);
  EXPECT_EQ(picker.compute_pick_by_polygon(renderer, -5, points), 0);
  EXPECT_EQ(picker.compute_pick_by_circle(nullptr, corner, 1.0), 0);
  EXPECT_EQ(picker.compute_pick_by_circle(renderer, nullptr, 1.0), 0);
  EXPECT_EQ(picker.region_picks, 0);
}

} // namespace
