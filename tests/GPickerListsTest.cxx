// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "MRUtil.h"
#include "PickFixture.h"

#include <climits>
#include <ctime>
#include <stdexcept>

namespace {

using namespace morrow_test;

using GPickerListsTest = PickTest;
using Texts = std::vector<std::string>;

std::string pre_selection_text()
{
  return text_of(GPickerBase::get_current_pre_selection());
}

// ---- Picked list

TEST_F(GPickerListsTest, OneSelectionIsAppendedUnlessItsEntityIsPicked)
{
  PickRecorder recorder;
  add_to_picked_list({select(new FaceEntity(2), 5.0F)});
  add_to_picked_list({select(new FaceEntity(1))});
  add_to_picked_list({select(new FaceEntity(2), 1.0F)}); // another object, the same entity
  EXPECT_EQ(picked_texts(), Texts({"face 2", "face 1"}));
  EXPECT_EQ(recorder.calls, Texts({"+face 2", "+face 1"}));
  EXPECT_EQ(recorder.hit_points.at(0), (std::array<float, 3>{1.0F, 2.0F, 3.0F}));
  EXPECT_EQ(TestEntity::gAlive, 2);
  const EntitySelection* list = nullptr;
  int count = 0;
  GPickerBase::get_picked_list(list, count);
  ASSERT_EQ(count, 2);
  EXPECT_EQ(list[0].distance(), 5.0F);
}

TEST_F(GPickerListsTest, SeveralSelectionsAreAppendedInTheOrderOfTheirEntities)
{
  PickRecorder recorder;
  add_to_picked_list({select(new FaceEntity(2))});
  recorder.calls.clear();
  add_to_picked_list({select(new FaceEntity(3)), select(new FaceEntity(2)), select(new EdgeEntity(9)),
                      select(new FaceEntity(1))});
  EXPECT_EQ(picked_texts(), Texts({"face 2", "edge 9", "face 1", "face 3"}));
  EXPECT_EQ(recorder.calls, Texts({"+edge 9 +face 1 +face 3"}));
  add_to_picked_list({select(new FaceEntity(3)), select(new EdgeEntity(9))}); // nothing new
  EXPECT_EQ(recorder.calls.size(), 1U);
}

TEST_F(GPickerListsTest, AnEntityThatIsGivenTwiceIsAddedOnceAsItCameFirst)
{
  add_to_picked_list({select(new FaceEntity(1), 7.0F), select(new FaceEntity(1), 3.0F)});
  const EntitySelection* list = nullptr;
  int count = 0;
  GPickerBase::get_picked_list(list, count);
  ASSERT_EQ(count, 1);
  EXPECT_EQ(list[0].distance(), 7.0F);
}

TEST_F(GPickerListsTest, TheListsMayBeGivenTheirOwnArrays)
{
  const EntitySelection* list = nullptr;
  int count = 0;
  add_to_picked_list({select(new FaceEntity(1)), select(new FaceEntity(2))});
  GPickerBase::get_picked_list(list, count);
  GPickerBase::add_to_picked_list(count, list);
  EXPECT_EQ(picked_texts(), Texts({"face 1", "face 2"}));
  GPickerBase::set_possible_selections_list(count, list);
  GPickerBase::get_possible_selections(list, count);
  GPickerBase::set_possible_selections_list(count - 1, list + 1);
  EXPECT_EQ(possible_texts(), Texts({"face 2"}));
  GPickerBase::get_pre_selections(list, count);
  GPickerBase::set_pre_selection(select(new FaceEntity(3)));
  GPickerBase::set_pre_selection(list[0]);
  EXPECT_EQ(pre_selection_text(), "face 3");
}

TEST_F(GPickerListsTest, RemovalTellsOfWhatWasThereInTheOrderGiven)
{
  PickRecorder recorder;
  const Held<FaceEntity> same_as_three(3);
  const Held<FaceEntity> absent(9);
  const Held<FaceEntity> same_as_one(1);
  const Held<EdgeEntity> of_another_class(2);
  add_to_picked_list({select(new FaceEntity(1), 1.0F), select(new FaceEntity(2)), select(new FaceEntity(3))});
  recorder.calls.clear();
  remove_from_picked_list({same_as_three, absent, nullptr, same_as_one, of_another_class, same_as_three});
  EXPECT_EQ(picked_texts(), Texts({"face 2"}));
  EXPECT_EQ(recorder.calls, Texts({"-face 3 -face 1"}));
  remove_from_picked_list({absent});
  EXPECT_EQ(recorder.calls.size(), 1U); // of nothing nobody is told
  EXPECT_EQ(same_as_three->reference_count(), 1U);
  EXPECT_EQ(absent->reference_count(), 1U);
}

TEST_F(GPickerListsTest, AnEntityWithoutReferencesIsOnlyLookedFor)
{
  FaceEntity on_the_stack(1); // the test would crash if a list deleted it
  add_to_picked_list({select(new FaceEntity(1))});
  set_possible({select(new FaceEntity(1))});
  remove_from_picked_list({&on_the_stack});
  GPickerBase::remove_from_possible_selections_list(&on_the_stack);
  EXPECT_EQ(picked_texts(), Texts());
  EXPECT_EQ(possible_texts(), Texts());
  EXPECT_EQ(TestEntity::gAlive, 1);
}

TEST_F(GPickerListsTest, ClearingTellsOfAllAtOnceButNotOfNothing)
{
  PickRecorder recorder;
  GPickerBase::clear_picked_list();
  EXPECT_EQ(recorder.calls, Texts());
  add_to_picked_list({select(new FaceEntity(2))});
  add_to_picked_list({select(new FaceEntity(1))});
  GPickerBase::clear_picked_list();
  EXPECT_EQ(recorder.calls, Texts({"+face 2", "+face 1", "-face 2 -face 1"}));
  EXPECT_EQ(GPickerBase::current_selection_count(), 0);
  EXPECT_EQ(TestEntity::gAlive, 0);
}

TEST_F(GPickerListsTest, NullsNegativeCountsAndIndicesOutOfRangeDoNothing)
{
  PickRecorder recorder;
  const EntitySelection face = select(new FaceEntity(1));
  GPicked::PickedEntity* entity = face.entity();
  GPickerBase::add_to_picked_list(1, nullptr);
  GPickerBase::add_to_picked_list(0, &face);
  GPickerBase::add_to_picked_list(-3, &face);
  add_to_picked_list({EntitySelection()});
  EXPECT_EQ(recorder.calls, Texts());
  add_to_picked_list({EntitySelection(), face, EntitySelection()});
  GPickerBase::remove_from_picked_list(1, nullptr);
  GPickerBase::remove_from_picked_list(0, &entity);
  GPickerBase::remove_from_picked_list(-1, &entity);
  EXPECT_EQ(picked_texts(), Texts({"face 1"}));
  EXPECT_EQ(GPickerBase::get_selection(0), entity);
  EXPECT_EQ(GPickerBase::get_selection(1), nullptr);
  EXPECT_EQ(GPickerBase::get_selection(-1), nullptr);
  EXPECT_EQ(GPickerBase::get_selection(INT_MAX), nullptr);
  EXPECT_EQ(GPickerBase::get_selection(INT_MIN), nullptr);

  GPickerBase::set_possible_selections_list(1, nullptr);
  GPickerBase::set_possible_selections_list(-1, &face);
  EXPECT_EQ(possible_texts(), Texts());
  GPickerBase::remove_from_possible_selections_list(nullptr);
  GPickerBase::add_pick_observer(nullptr);
  GPickerBase::add_pre_selection_observer(nullptr);
  GPickerBase::add_echo_observer(nullptr);
  GPickerBase::clear_picked_list();
  GPickerBase::echo_ids();
  GPickerBase::set_pre_selection(face);
  GPickerBase::remove_pick_observer(nullptr);
}

TEST_F(GPickerListsTest, ThePickedNumberIsPrintedUnlessMessagesAreSilenced)
{
  {
    const PrintCapture printed;
    GPickerBase::print_current_selections();
    add_to_picked_list({select(new FaceEntity(1))});
    GPickerBase::print_current_selections();
    add_to_picked_list({select(new FaceEntity(2))});
    GPickerBase::print_current_selections();
    EXPECT_EQ(printed.info(), "0 entities selected\n1 entity selected\n2 entities selected\n");
  }
  MRUtil::PrintFunction before = nullptr;
  MRUtil::get_print_function(before);
  MRUtil::set_print_function(nullptr);
  GPickerBase::print_current_selections();
  MRUtil::set_print_function(before);
}

std::vector<Texts> gEchoes;

void echo(int count, const GPicked::PickedEntity* const* entities, const float* const* points)
{
  Texts texts;
  for (int i = 0; i < count; ++i) {
    texts.push_back(text_of(entities[i]) + " at " + std::to_string(static_cast<int>(points[i][2])));
  }
  gEchoes.push_back(texts);
}

void echo_and_leave(int count, const GPicked::PickedEntity* const* entities, const float* const* points)
{
  GPickerBase::remove_echo_observer(&echo_and_leave);
  GPickerBase::clear_picked_list();
  echo(count, entities, points);
}

TEST_F(GPickerListsTest, EchoGivesThePickedListToEachObserver)
{
  gEchoes.clear();
  GPickerBase::add_echo_observer(&echo_and_leave);
  GPickerBase::add_echo_observer(&echo);
  GPickerBase::add_echo_observer(&echo);
  add_to_picked_list({select(new FaceEntity(2))});
  add_to_picked_list({select(new FaceEntity(1))});
  EXPECT_TRUE(gEchoes.empty()); // on request only
  GPickerBase::echo_ids();
  const Texts both = {"face 2 at 3", "face 1 at 3"};
  EXPECT_EQ(gEchoes, std::vector<Texts>({both, both}));
  GPickerBase::echo_ids();
  EXPECT_EQ(gEchoes.size(), 3U);
  EXPECT_EQ(gEchoes.back(), Texts()); // of an empty list too
  GPickerBase::remove_echo_observer(&echo);
  GPickerBase::echo_ids();
  EXPECT_EQ(gEchoes.size(), 3U);
}

/// Hit at (x, 0, x).
EntitySelection selected_at(float x, GPicked::PickedEntity* entity)
{
  const float point[3] = {x, 0.0F, x};
  return {entity, point, 0.0F};
}

TEST_F(GPickerListsTest, EachEntityComesWithThePointAtWhichTheListHasIt)
{
  using Points = std::vector<std::array<float, 3>>;
  PickRecorder recorder;
  add_to_picked_list({selected_at(7, new FaceEntity(2)), selected_at(8, new FaceEntity(1))});
  EXPECT_EQ(recorder.hit_points, Points({{8, 0, 8}, {7, 0, 7}})); // face 1, face 2
  add_to_picked_list({selected_at(6, new FaceEntity(0))});
  EXPECT_EQ(recorder.hit_points, Points({{6, 0, 6}}));
  add_to_picked_list({selected_at(9, new FaceEntity(2))}); // stays as it is
  gEchoes.clear();
  GPickerBase::add_echo_observer(&echo);
  GPickerBase::echo_ids();
  GPickerBase::remove_echo_observer(&echo);
  EXPECT_EQ(gEchoes, std::vector<Texts>({{"face 1 at 8", "face 2 at 7", "face 0 at 6"}}));
  const Held<FaceEntity> two(2);
  const Held<FaceEntity> one(1);
  remove_from_picked_list({two, one});
  EXPECT_EQ(recorder.hit_points, Points({{7, 0, 7}, {8, 0, 8}}));
  GPickerBase::clear_picked_list();
  EXPECT_EQ(recorder.hit_points, Points({{6, 0, 6}}));
}

void echo_fault(int, const GPicked::PickedEntity* const*, const float* const*)
{
  throw std::runtime_error("host");
}

void echo_again(int, const GPicked::PickedEntity* const*, const float* const*)
{
  GPickerBase::remove_echo_observer(&echo_again);
  GPickerBase::clear_picked_list();
  GPickerBase::echo_ids();
}

TEST_F(GPickerListsTest, AnEchoMayThrowOrAskForTheNextOne)
{
  gEchoes.clear();
  add_to_picked_list({select(new FaceEntity(1))});
  GPickerBase::add_echo_observer(&echo_fault);
  GPickerBase::add_echo_observer(&echo_again);
  GPickerBase::add_echo_observer(&echo);
  EXPECT_THROW(GPickerBase::echo_ids(), std::runtime_error);
  EXPECT_EQ(gEchoes, std::vector<Texts>({{"face 1 at 3"}, {}}));
  GPickerBase::remove_echo_observer(&echo_fault);
  GPickerBase::remove_echo_observer(&echo);
}

// ---- Possible selections

TEST_F(GPickerListsTest, SteppingSwapsWhichCandidateIsPicked)
{
  PickRecorder recorder;
  set_possible({select(new FaceEntity(3)), select(new FaceEntity(1)), select(new FaceEntity(2))});
  EXPECT_EQ(current_text(), "");
  EXPECT_EQ(recorder.calls, Texts());
  for (const char* expected : {"face 3", "face 1", "face 2", "face 3"}) {
    GPickerBase::step_next_possible_selection();
    EXPECT_EQ(current_text(), expected);
    EXPECT_EQ(picked_texts(), Texts({expected}));
  }
  EXPECT_EQ(recorder.calls,
            Texts({"+face 3", "-face 3", "+face 1", "-face 1", "+face 2", "-face 2", "+face 3"}));
}

TEST_F(GPickerListsTest, SteppingBackwardsBeginsWithTheLast)
{
  set_possible({select(new FaceEntity(1)), select(new FaceEntity(2)), select(new FaceEntity(3))});
  for (const char* expected : {"face 3", "face 2", "face 1", "face 3"}) {
    GPickerBase::step_previous_possible_selection();
    EXPECT_EQ(picked_texts(), Texts({expected}));
  }
}

TEST_F(GPickerListsTest, SteppingLeavesWhatElseIsPickedAlone)
{
  add_to_picked_list({select(new EdgeEntity(7))});
  set_possible({select(new FaceEntity(1)), select(new FaceEntity(2))});
  GPickerBase::step_next_possible_selection();
  GPickerBase::step_next_possible_selection();
  EXPECT_EQ(picked_texts(), Texts({"edge 7", "face 2"}));
  GPickerBase::clear_picked_list();
  GPickerBase::step_next_possible_selection(); // the current one is not picked any more
  EXPECT_EQ(picked_texts(), Texts({"face 1"}));
}

TEST_F(GPickerListsTest, LookingAtTheNextCandidatePicksNothing)
{
  set_possible({select(new FaceEntity(1)), select(new FaceEntity(2))});
  EXPECT_EQ(text_of(GPickerBase::get_next_possible_selection().entity()), "face 1");
  EXPECT_EQ(text_of(GPickerBase::get_next_possible_selection().entity()), "face 2");
  EXPECT_EQ(text_of(GPickerBase::get_next_possible_selection().entity()), "face 1");
  EXPECT_EQ(text_of(GPickerBase::get_previous_possible_selection().entity()), "face 2");
  EXPECT_EQ(current_text(), "face 2");
  EXPECT_EQ(picked_texts(), Texts());
}

TEST_F(GPickerListsTest, WithoutCandidatesNothingSteps)
{
  PickRecorder recorder;
  GPickerBase::step_next_possible_selection();
  GPickerBase::step_previous_possible_selection();
  EXPECT_EQ(GPickerBase::get_next_possible_selection().entity(), nullptr);
  EXPECT_EQ(GPickerBase::get_previous_possible_selection().entity(), nullptr);
  EXPECT_EQ(GPickerBase::get_current_possible_selection(), nullptr);
  set_possible({EntitySelection()});
  GPickerBase::step_next_possible_selection();
  EXPECT_EQ(recorder.calls, Texts());
}

TEST_F(GPickerListsTest, NewCandidatesAndClearedOnesHaveNoCurrentOne)
{
  set_possible({select(new FaceEntity(1))});
  GPickerBase::step_next_possible_selection();
  set_possible({select(new FaceEntity(1)), select(new FaceEntity(2))});
  EXPECT_EQ(current_text(), "");
  GPickerBase::step_next_possible_selection();
  GPickerBase::clear_possible_selections();
  EXPECT_EQ(current_text(), "");
  EXPECT_EQ(possible_texts(), Texts());
  EXPECT_EQ(picked_texts(), Texts({"face 1"}));
}

TEST_F(GPickerListsTest, RemovingACandidateKeepsTheCurrentOne)
{
  const Held<FaceEntity> one(1);
  const Held<FaceEntity> two(2);
  const Held<FaceEntity> four(4);
  set_possible({select(one), select(two), select(new FaceEntity(3)), select(four)});
  GPickerBase::step_next_possible_selection();
  GPickerBase::step_next_possible_selection();
  GPickerBase::remove_from_possible_selections_list(one); // before
  EXPECT_EQ(current_text(), "face 2");
  GPickerBase::remove_from_possible_selections_list(four); // behind
  EXPECT_EQ(current_text(), "face 2");
  GPickerBase::remove_from_possible_selections_list(four); // absent
  EXPECT_EQ(possible_texts(), Texts({"face 2", "face 3"}));
  GPickerBase::remove_from_possible_selections_list(two);
  EXPECT_EQ(current_text(), "");
  EXPECT_EQ(picked_texts(), Texts({"face 2"})); // stays picked
  GPickerBase::step_next_possible_selection();
  EXPECT_EQ(current_text(), "face 3");
}

TEST_F(GPickerListsTest, RemovingACandidateWithoutACurrentOneLeavesNone)
{
  const Held<FaceEntity> one(1);
  set_possible({select(one), select(new FaceEntity(2))});
  GPickerBase::remove_from_possible_selections_list(one);
  EXPECT_EQ(current_text(), "");
  GPickerBase::step_previous_possible_selection();
  EXPECT_EQ(current_text(), "face 2");
}

TEST_F(GPickerListsTest, ACandidateIsFoundByItsKeyAndByItsClassFirst)
{
  const Held<FaceEntity> face(5);
  set_possible({select(new EdgeEntity(5)), select(new FaceEntity(5)), select(new EdgeEntity(6))});
  GPickerBase::remove_from_possible_selections_list(face);
  EXPECT_EQ(possible_texts(), Texts({"edge 5", "edge 6"}));
  GPickerBase::remove_from_possible_selections_list(face);
  EXPECT_EQ(possible_texts(), Texts({"edge 6"}));
}

TEST_F(GPickerListsTest, TheCurrentEntityIsPrintedWithItsName)
{
  const Held<TestEntity> entity(12, "Hex");
  const auto printed_text = [&] {
    const PrintCapture printed;
    GPickerBase::print_currently_selected_entity();
    return printed.info();
  };
  EXPECT_EQ(printed_text(), "");
  set_possible({select(entity)});
  EXPECT_EQ(printed_text(), "");
  GPickerBase::step_next_possible_selection();
  EXPECT_EQ(printed_text(), "  Current entity is Hex 12.\n");
  entity->mElement = 40;
  EXPECT_EQ(printed_text(), "  Current entity is Hex 12 (Element 40).\n");
  entity->mName = "flange %s";
  EXPECT_EQ(printed_text(), "  Current entity is \"flange %s\" (Hex 12).\n");
  entity->mName = "Hex 12"; // no name of its own
  EXPECT_EQ(printed_text(), "  Current entity is Hex 12 (Element 40).\n");
  entity->mName = nullptr;
  entity->mType = nullptr;
  entity->mElement = -1;
  EXPECT_EQ(printed_text(), "  Current entity is  12.\n");
}

// ---- Pre-selection

TEST_F(GPickerListsTest, ANewPreSelectionReplacesTheOldOne)
{
  PickRecorder recorder;
  GPickerBase::set_pre_selection({});
  EXPECT_EQ(recorder.calls, Texts());
  GPickerBase::set_pre_selection(select(new FaceEntity(1), 1.0F));
  GPickerBase::set_pre_selection(select(new FaceEntity(1), 2.0F)); // the same entity
  EXPECT_EQ(recorder.calls, Texts({"on face 1"}));
  GPickerBase::set_pre_selection(select(new EdgeEntity(1)));
  EXPECT_EQ(pre_selection_text(), "edge 1");
  GPickerBase::set_pre_selection({});
  EXPECT_EQ(recorder.calls, Texts({"on face 1", "off face 1", "on edge 1", "off edge 1"}));
  EXPECT_EQ(GPickerBase::get_current_pre_selection(), nullptr);
}

TEST_F(GPickerListsTest, ThePreSelectionIsAListOfOne)
{
  const EntitySelection* list = nullptr;
  int count = 0;
  GPickerBase::get_pre_selections(list, count);
  ASSERT_EQ(count, 1);
  EXPECT_EQ(list->entity(), nullptr);
  GPickerBase::set_pre_selection(select(new FaceEntity(1), 4.0F));
  GPickerBase::get_pre_selections(list, count);
  ASSERT_EQ(count, 1);
  EXPECT_EQ(text_of(list->entity()), "face 1");
  EXPECT_EQ(list->distance(), 4.0F);
  EXPECT_EQ(list->point()[1], 2.0F);
  GPickerBase::set_pre_selection(select(new FaceEntity(1), 9.0F)); // the same entity: nothing happens
  GPickerBase::get_pre_selections(list, count);
  EXPECT_EQ(list->distance(), 4.0F);
  EXPECT_EQ(TestEntity::gAlive, 1);
}

TEST_F(GPickerListsTest, ThePreSelectionIsTheOldOneUntilItHasBeenToldOff)
{
  PickRecorder recorder;
  std::vector<std::pair<std::string, float>> states; // what is told, and what is the pre-selection then
  recorder.on_call = [&] {
    const EntitySelection* list = nullptr;
    int count = 0;
    GPickerBase::get_pre_selections(list, count);
    states.emplace_back(recorder.calls.back() + ", is " + pre_selection_text(), list->point()[0]);
  };
  GPickerBase::set_pre_selection(selected_at(5, new FaceEntity(1)));
  EXPECT_EQ(recorder.hit_points.at(0)[0], 5.0F);
  GPickerBase::set_pre_selection(selected_at(6, new FaceEntity(2)));
  EXPECT_EQ(recorder.hit_points.at(0)[0], 6.0F);
  GPickerBase::set_pre_selection(selected_at(7, nullptr));
  EXPECT_EQ(recorder.hit_points.at(0)[0], 6.0F); // of the one that went
  EXPECT_EQ(states, (std::vector<std::pair<std::string, float>>{{"on face 1, is face 1", 5.0F},
                                                                {"off face 1, is face 1", 5.0F},
                                                                {"on face 2, is face 2", 6.0F},
                                                                {"off face 2, is face 2", 6.0F}}));
}

// ---- Size

/// Processor time of adding and removing this many entities, in seconds.
double list_seconds(int size)
{
  std::vector<EntitySelection> list;
  std::vector<GPicked::PickedEntity*> entities;
  for (int i = 0; i < size; ++i) {
    list.push_back(select(new FaceEntity((i * 7919LL) % size)));
    entities.push_back(list.back().entity());
  }
  const std::clock_t start = std::clock();
  add_to_picked_list(list);
  add_to_picked_list(list);
  EXPECT_GT(GPickerBase::current_selection_count(), size / 2);
  remove_from_picked_list(entities);
  EXPECT_EQ(GPickerBase::current_selection_count(), 0);
  return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

// 50,000 entities against 50,000 one by one would be 2.5e9 comparisons each time: minutes.
TEST_F(GPickerListsTest, HundredsOfThousandsOfEntitiesAreNoMatter)
{
  EXPECT_LT(list_seconds(50'000), 20.0);
}

} // namespace
