// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// What observers may do when they are told.
#include "PickFixture.h"

#include <map>
#include <stdexcept>

namespace {

using namespace morrow_test;

using GPickerObserversTest = PickTest;
using Texts = std::vector<std::string>;

/// Deletes itself when it is first told.
class ShortLived : public GPicked::PickCallbackNow
{
public:
  explicit ShortLived(int& calls) : mCalls(calls)
  {
    GPickerBase::add_pick_observer(this);
    GPickerBase::add_pre_selection_observer(this);
  }
  ~ShortLived() override
  {
    GPickerBase::remove_pick_observer(this);
    GPickerBase::remove_pre_selection_observer(this);
  }
  void picked_list_changed(int, const GPicked::PickedEntity* const*, const float* const*, bool) override
  {
    ++mCalls;
    delete this;
  }
  void pre_selection_changed(GPicked::PickedEntity*, const float*, bool) override
  {
    ++mCalls;
    delete this;
  }

private:
  int& mCalls;
};

TEST_F(GPickerObserversTest, AreToldInTheOrderInWhichTheyCame)
{
  Texts order;
  PickRecorder a;
  PickRecorder b;
  a.on_call = [&] { order.emplace_back("a"); };
  b.on_call = [&] { order.emplace_back("b"); };
  GPickerBase::add_pick_observer(&a); // is there already
  add_to_picked_list({select(new FaceEntity(1))});
  EXPECT_EQ(order, Texts({"a", "b"}));
  GPickerBase::remove_pick_observer(&a);
  GPickerBase::add_pick_observer(&a); // at the end now
  GPickerBase::clear_picked_list();
  EXPECT_EQ(order, Texts({"a", "b", "b", "a"}));
}

TEST_F(GPickerObserversTest, TheListsAreInTheirNewStateWhenTheyAreTold)
{
  PickRecorder recorder;
  std::vector<Texts> states;
  recorder.on_call = [&] { states.push_back(picked_texts()); };
  add_to_picked_list({select(new FaceEntity(1)), select(new FaceEntity(2))});
  const Held<FaceEntity> one(1);
  remove_from_picked_list({one});
  GPickerBase::clear_picked_list();
  EXPECT_EQ(states, std::vector<Texts>({{"face 1", "face 2"}, {"face 2"}, {}}));
}

TEST_F(GPickerObserversTest, MayLeaveAndTakeOthersAlong)
{
  PickRecorder a;
  PickRecorder b;
  PickRecorder c;
  PickRecorder d;
  b.on_call = [&] {
    a.leave();
    b.leave();
    c.leave();
  };
  add_to_picked_list({select(new FaceEntity(1))});
  EXPECT_EQ(a.calls, Texts({"+face 1"}));
  EXPECT_EQ(b.calls, Texts({"+face 1"}));
  EXPECT_EQ(c.calls, Texts()); // had gone before its turn
  EXPECT_EQ(d.calls, Texts({"+face 1"}));
  GPickerBase::clear_picked_list();
  EXPECT_EQ(a.calls.size() + b.calls.size() + c.calls.size(), 2U);
}

TEST_F(GPickerObserversTest, MayDestroyThemselvesAndOthers)
{
  int calls = 0;
  auto other = std::make_unique<PickRecorder>();
  new ShortLived(calls);
  PickRecorder last;
  auto victim = std::make_unique<PickRecorder>();
  last.on_call = [&] {
    victim.reset();
    other.reset();
  };
  add_to_picked_list({select(new FaceEntity(1))});
  EXPECT_EQ(calls, 1);
  EXPECT_EQ(last.calls, Texts({"+face 1"}));
  new ShortLived(calls);
  GPickerBase::set_pre_selection(select(new FaceEntity(1)));
  EXPECT_EQ(calls, 2);
  EXPECT_EQ(last.calls, Texts({"+face 1", "on face 1"}));
}

TEST_F(GPickerObserversTest, OneThatIsAddedMeanwhileHearsOfTheNextChange)
{
  PickRecorder a;
  std::unique_ptr<PickRecorder> late;
  a.on_call = [&] {
    if (!late) {
      late = std::make_unique<PickRecorder>();
    }
  };
  add_to_picked_list({select(new FaceEntity(1))});
  EXPECT_EQ(late->calls, Texts());
  GPickerBase::clear_picked_list();
  EXPECT_EQ(late->calls, Texts({"-face 1"}));
}

TEST_F(GPickerObserversTest, OneThatLeavesAndComesBackIsNewlyThere)
{
  PickRecorder a;
  PickRecorder b;
  a.on_call = [&] {
    GPickerBase::remove_pick_observer(&b);
    GPickerBase::add_pick_observer(&b);
    GPickerBase::remove_pick_observer(&a);
    GPickerBase::add_pick_observer(&a);
  };
  add_to_picked_list({select(new FaceEntity(1))});
  EXPECT_EQ(a.calls, Texts({"+face 1"}));
  EXPECT_EQ(b.calls, Texts());
}

TEST_F(GPickerObserversTest, ChangesThatTheyMakeFollowInOrderForAll)
{
  PickRecorder first;
  PickRecorder second;
  int depth = 0;
  int deepest = 0;
  first.on_call = [&] {
    deepest = std::max(deepest, ++depth);
    if (first.calls.size() == 1) {
      GPickerBase::clear_picked_list();
      add_to_picked_list({select(new FaceEntity(2))});
      EXPECT_EQ(picked_texts(), Texts({"face 2"})); // at once
    }
    --depth;
  };
  add_to_picked_list({select(new FaceEntity(1))});
  const Texts all = {"+face 1", "-face 1", "+face 2"};
  EXPECT_EQ(first.calls, all);
  EXPECT_EQ(second.calls, all);
  EXPECT_EQ(deepest, 1);
}

/// Keeps a copy of the picked list by what it is told.
class Mirror : public PickRecorder
{
public:
  void picked_list_changed(int count, const GPicked::PickedEntity* const* entities,
                           const float* const* points, bool added) override
  {
    for (int i = 0; i < count; ++i) {
      balance[text_of(entities[i])] += added ? 1 : -1;
      EXPECT_EQ(balance[text_of(entities[i])], added ? 1 : 0);
    }
    PickRecorder::picked_list_changed(count, entities, points, added);
  }
  std::map<std::string, int> balance;
};

TEST_F(GPickerObserversTest, AMirrorOfTheListStaysTrueWhateverTheOthersDo)
{
  Mirror before;
  PickRecorder busy;
  Mirror after;
  int left = 20;
  busy.on_call = [&] {
    if (--left > 0) {
      if (left % 3 == 0) {
        GPickerBase::clear_picked_list();
      }
      add_to_picked_list({select(new FaceEntity(left % 5)), select(new EdgeEntity(left % 4))});
      GPickerBase::step_next_possible_selection();
    }
  };
  set_possible({select(new FaceEntity(1)), select(new FaceEntity(2))});
  GPickerBase::step_next_possible_selection();
  for (const Mirror* mirror : {&before, &after}) {
    Texts mirrored;
    for (const auto& [text, count] : mirror->balance) {
      if (count == 1) {
        mirrored.push_back(text);
      }
    }
    Texts picked = picked_texts();
    std::sort(picked.begin(), picked.end());
    EXPECT_EQ(mirrored, picked);
  }
  EXPECT_EQ(before.calls, after.calls);
  busy.on_call = nullptr;
}

TEST_F(GPickerObserversTest, ExceptionsComeOutWhenAllIsDoneTheFirstOne)
{
  PickRecorder a;
  PickRecorder b;
  PickRecorder c;
  a.on_call = [] { throw std::runtime_error("first"); };
  b.on_call = [] { throw std::runtime_error("second"); };
  const auto text_thrown = [](auto&& call) -> std::string {
    try {
      call();
    } catch (const std::runtime_error& error) {
      return error.what();
    }
    return "";
  };
  EXPECT_EQ(text_thrown([] { add_to_picked_list({select(new FaceEntity(1))}); }), "first");
  EXPECT_EQ(c.calls, Texts({"+face 1"}));
  EXPECT_EQ(picked_texts(), Texts({"face 1"}));

  set_possible({select(new FaceEntity(1)), select(new FaceEntity(2))});
  EXPECT_EQ(text_thrown([] { GPickerBase::step_next_possible_selection(); }), ""); // is picked
  EXPECT_EQ(text_thrown([] { GPickerBase::step_next_possible_selection(); }), "first");
  EXPECT_EQ(current_text(), "face 2"); // the step was made whole
  EXPECT_EQ(c.calls, Texts({"+face 1", "-face 1", "+face 2"}));

  EXPECT_EQ(text_thrown([] { GPickerBase::set_pre_selection(select(new FaceEntity(3))); }), "first");
  EXPECT_EQ(text_thrown([] { GPickerBase::set_pre_selection(select(new FaceEntity(4))); }), "first");
  EXPECT_EQ(text_of(GPickerBase::get_current_pre_selection()), "face 4");
  EXPECT_EQ(c.calls.size(), 6U); // on 3, off 3, on 4

  EXPECT_EQ(text_thrown([] { GPickerBase::clear_picked_list(); }), "first");
  EXPECT_EQ(picked_texts(), Texts());
  a.on_call = nullptr;
  EXPECT_EQ(text_thrown([] { add_to_picked_list({select(new FaceEntity(1))}); }), "second");
  b.on_call = nullptr;
}

TEST_F(GPickerObserversTest, AStepEndsWhereAnObserverHasStepped)
{
  PickRecorder recorder;
  set_possible({select(new FaceEntity(1)), select(new FaceEntity(2)), select(new FaceEntity(3))});
  GPickerBase::step_next_possible_selection();
  recorder.on_call = [&] {
    if (recorder.calls.back() == "-face 1") {
      GPickerBase::step_next_possible_selection();
    }
  };
  GPickerBase::step_next_possible_selection();
  EXPECT_EQ(current_text(), "face 2");
  EXPECT_EQ(picked_texts(), Texts({"face 2"}));
}

TEST_F(GPickerObserversTest, AStepEndsWithTheCandidatesOfAnObserver)
{
  PickRecorder recorder;
  set_possible({select(new FaceEntity(1)), select(new FaceEntity(2))});
  GPickerBase::step_next_possible_selection();
  recorder.on_call = [] { set_possible({select(new EdgeEntity(1)), select(new EdgeEntity(2))}); };
  GPickerBase::step_next_possible_selection();
  EXPECT_EQ(current_text(), "");
  EXPECT_EQ(picked_texts(), Texts());

  recorder.on_call = nullptr;
  GPickerBase::step_next_possible_selection();
  const Held<EdgeEntity> one(1);
  const Held<EdgeEntity> two(2);
  recorder.on_call = [&] { GPickerBase::remove_from_possible_selections_list(one); };
  GPickerBase::step_next_possible_selection(); // goes on with those that are left
  EXPECT_EQ(picked_texts(), Texts({"edge 2"}));
  recorder.on_call = [&] { GPickerBase::remove_from_possible_selections_list(two); };
  GPickerBase::step_next_possible_selection();
  EXPECT_EQ(picked_texts(), Texts());
  recorder.on_call = nullptr;
}

TEST_F(GPickerObserversTest, APreSelectionThatAnObserverSetsStays)
{
  PickRecorder first;
  PickRecorder second;
  GPickerBase::set_pre_selection(select(new FaceEntity(1)));
  first.on_call = [&] {
    if (first.calls.back() == "off face 1") {
      GPickerBase::set_pre_selection(select(new FaceEntity(3)));
    }
  };
  GPickerBase::set_pre_selection(select(new FaceEntity(2)));
  EXPECT_EQ(text_of(GPickerBase::get_current_pre_selection()), "face 3");
  const Texts all = {"on face 1", "off face 1", "on face 3"};
  EXPECT_EQ(first.calls, all);
  EXPECT_EQ(second.calls, all);

  first.on_call = [&] {
    if (first.calls.back() == "on face 4") {
      GPickerBase::set_pre_selection({});
    }
  };
  second.calls.clear();
  GPickerBase::set_pre_selection(select(new FaceEntity(4)));
  EXPECT_EQ(second.calls, Texts({"off face 3", "on face 4", "off face 4"}));
  EXPECT_EQ(GPickerBase::get_current_pre_selection(), nullptr);
}

TEST_F(GPickerObserversTest, MayPickAgain)
{
  TestPicker picker;
  PickRecorder recorder;
  recorder.on_call = [&] {
    if (recorder.calls.size() == 1) {
      picker.begin_pick(false);
      picker.add_to_selection_buffer(new FaceEntity(2), nullptr, 0.0F, true);
      picker.end_pick();
    }
  };
  picker.begin_pick(false);
  picker.add_to_selection_buffer(new FaceEntity(1), nullptr, 0.0F, true);
  picker.end_pick();
  EXPECT_EQ(recorder.calls, Texts({"+face 1", "-face 1", "+face 2"}));
  EXPECT_EQ(picked_texts(), Texts({"face 2"}));
  EXPECT_EQ(current_text(), "face 2");
  EXPECT_TRUE(picker.get_selection_buffer().empty());
}

TEST_F(GPickerObserversTest, MayDestroyThePickerThatPicks)
{
  auto picker = std::make_unique<TestPicker>();
  PickRecorder recorder;
  recorder.on_call = [&] { picker.reset(); };
  picker->begin_pick(false);
  picker->add_to_selection_buffer(new FaceEntity(1), nullptr, 0.0F, true);
  picker->end_pick();
  EXPECT_EQ(picked_texts(), Texts({"face 1"}));
  recorder.on_call = nullptr;
}

TEST_F(GPickerObserversTest, TheEndOfAnEntityMayCallEverything)
{
  PickRecorder recorder;
  const auto add_with_end = [](auto&& end) {
    auto* face = new FaceEntity(1);
    face->on_end = end;
    return select(face);
  };
  add_to_picked_list({add_with_end([] { add_to_picked_list({select(new FaceEntity(7))}); })});
  GPickerBase::clear_picked_list();
  EXPECT_EQ(picked_texts(), Texts({"face 7"}));
  set_possible({add_with_end([] { set_possible({select(new FaceEntity(8))}); })});
  GPickerBase::clear_possible_selections();
  EXPECT_EQ(possible_texts(), Texts({"face 8"}));
  GPickerBase::set_pre_selection(add_with_end([] { GPickerBase::set_pre_selection({}); }));
  GPickerBase::set_pre_selection(select(new FaceEntity(2)));
  EXPECT_EQ(GPickerBase::get_current_pre_selection(), nullptr);
  TestPicker picker;
  auto* face = new FaceEntity(1);
  face->on_end = [&] { picker.add_to_selection_buffer(new FaceEntity(9), nullptr, 0.0F, true); };
  picker.add_to_selection_buffer(face, nullptr, 0.0F, true);
  picker.clear_selection_buffer();
  EXPECT_EQ(picker.get_selection_buffer().size(), 1U);
}

TEST_F(GPickerObserversTest, ReferenceCountsReturnToWhereTheyWere)
{
  const Held<FaceEntity> one(1);
  const Held<FaceEntity> two(2);
  PickRecorder recorder;
  TestPicker picker;
  for (const bool additive : {false, true, false}) {
    picker.begin_pick(additive);
    picker.add_to_selection_buffer(one, nullptr, 0.0F, true);
    picker.add_to_selection_buffer(one, nullptr, -1.0F, true);
    picker.add_to_selection_buffer(two, nullptr, 0.0F, true);
    picker.end_pick();
    GPickerBase::step_next_possible_selection();
    picker.begin_pre_select();
    picker.add_to_selection_buffer(two, nullptr, 0.0F, false);
    picker.end_pre_select();
  }
  GPickerBase::clear_picked_list();
  GPickerBase::clear_possible_selections();
  GPickerBase::set_pre_selection({});
  EXPECT_EQ(one->reference_count(), 1U);
  EXPECT_EQ(two->reference_count(), 1U);
}

} // namespace
