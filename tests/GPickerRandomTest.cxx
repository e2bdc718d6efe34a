// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// The registry and the lists, compared with a literal version of their rules over random sequences.
#include "MRUtil.h"
#include "PickFixture.h"

#include <map>
#include <optional>
#include <random>

namespace {

using namespace morrow_test;

using Texts = std::vector<std::string>;

/// What one selection is: class and key.
using Id = std::pair<std::string, long long>;

std::string text_of(const Id& id)
{
  return id.first + " " + std::to_string(id.second);
}

/// The rules as they are told, one by one, over plain values. Slow and simple.
class LiteralLists
{
public:
  std::vector<Id> picked;
  std::vector<Id> possible;
  std::size_t current = 0; // the size of possible is none
  std::optional<Id> pre_selection;
  Texts calls;

  [[nodiscard]] bool is_picked(const Id& id) const
  {
    return std::find(picked.begin(), picked.end(), id) != picked.end();
  }

  void add(std::vector<Id> given)
  {
    std::string text;
    std::stable_sort(given.begin(), given.end());
    for (const Id& id : given) {
      if (!is_picked(id)) {
        picked.push_back(id);
        text += (text.empty() ? "+" : " +") + text_of(id);
      }
    }
    tell(text);
  }

  void remove(const std::vector<Id>& given)
  {
    std::string text;
    for (const Id& id : given) {
      const auto found = std::find(picked.begin(), picked.end(), id);
      if (found != picked.end()) {
        picked.erase(found);
        text += (text.empty() ? "-" : " -") + text_of(id);
      }
    }
    tell(text);
  }

  void clear() { remove(std::vector<Id>(picked)); }

  void set_possible(const std::vector<Id>& list)
  {
    possible = list;
    current = possible.size();
  }

  void step(bool forward)
  {
    if (possible.empty()) {
      return;
    }
    if (current < possible.size()) {
      remove({possible[current]});
    }
    move(forward);
    add({possible[current]});
  }

  void move(bool forward)
  {
    if (possible.empty()) {
      return;
    }
    if (forward) {
      current = current >= possible.size() - 1 ? 0 : current + 1;
    } else {
      current = current == 0 ? possible.size() - 1 : current - 1;
    }
  }

  void remove_possible(const Id& id)
  {
    auto found = std::find(possible.begin(), possible.end(), id);
    for (auto other = possible.begin(); found == possible.end() && other != possible.end(); ++other) {
      if (other->second == id.second) {
        found = other;
      }
    }
    if (found == possible.end()) {
      return;
    }
    std::optional<Id> stays;
    if (current < possible.size() && possible[current] != *found) {
      stays = possible[current];
    }
    possible.erase(found);
    current = possible.size();
    if (stays) {
      current =
          static_cast<std::size_t>(std::find(possible.begin(), possible.end(), *stays) - possible.begin());
    }
  }

  void set_pre_selection(const std::optional<Id>& id)
  {
    if (pre_selection && id && *pre_selection == *id) {
      return;
    }
    tell(pre_selection ? "off " + text_of(*pre_selection) : "");
    pre_selection = id;
    tell(id ? "on " + text_of(*id) : "");
  }

  /// A click's candidates by the rules, found in this order.
  void click(std::map<Id, float> found, bool additive)
  {
    set_possible({});
    if (!additive) {
      clear();
    }
    std::vector<Id> candidates;
    while (!found.empty()) { // the nearest first, of equal ones the last in the order of the set
      auto best = found.begin();
      for (auto other = found.begin(); other != found.end(); ++other) {
        best = other->second <= best->second ? other : best;
      }
      candidates.push_back(best->first);
      found.erase(best);
    }
    if (additive && !candidates.empty() && is_picked(candidates.front())) {
      remove({candidates.front()});
      candidates.erase(candidates.begin());
    }
    std::vector<Id> left;
    for (const Id& id : candidates) {
      if (!is_picked(id)) {
        left.push_back(id);
      }
    }
    set_possible(left);
    step(true);
  }

private:
  void tell(const std::string& text)
  {
    if (!text.empty()) {
      calls.push_back(text);
    }
  }
};

class GPickerRandomTest : public PickTest
{
protected:
  int draw(int end) { return std::uniform_int_distribution<int>(0, end - 1)(mRandom); }

  Id draw_id() { return {draw(2) == 0 ? "edge" : "face", draw(5)}; }

  /// Different ones, as the candidates of a click are.
  std::vector<Id> draw_ids()
  {
    std::vector<Id> ids;
    for (int i = draw(5); i > 0; --i) {
      const Id id = draw_id();
      if (std::find(ids.begin(), ids.end(), id) == ids.end()) {
        ids.push_back(id);
      }
    }
    return ids;
  }

  static GPicked::PickedEntity* make(const Id& id)
  {
    return id.first == "edge" ? static_cast<GPicked::PickedEntity*>(new EdgeEntity(id.second))
                              : new FaceEntity(id.second);
  }

  static std::vector<EntitySelection> selections(const std::vector<Id>& ids)
  {
    std::vector<EntitySelection> list;
    for (const Id& id : ids) {
      list.push_back(select(make(id)));
    }
    return list;
  }

  void change_picked()
  {
    const std::vector<Id> ids = draw_ids();
    const std::vector<EntitySelection> list = selections(ids);
    if (draw(2) == 0) {
      add_to_picked_list(list);
      mLiteral.add(ids);
    } else {
      std::vector<GPicked::PickedEntity*> entities;
      for (const auto& selection : list) {
        entities.push_back(selection.entity());
      }
      remove_from_picked_list(entities);
      mLiteral.remove(ids);
    }
  }

  void change_possible()
  {
    const std::vector<Id> ids = draw_ids();
    if (draw(2) == 0) {
      set_possible(selections(ids));
      mLiteral.set_possible(ids);
      return;
    }
    const EntitySelection one = selections({draw_id()}).front();
    GPickerBase::remove_from_possible_selections_list(one.entity());
    mLiteral.remove_possible({one.entity()->type_name(), one.entity()->key()});
  }

  void step()
  {
    const bool forward = draw(2) == 0;
    if (draw(2) == 0) {
      forward ? GPickerBase::step_next_possible_selection() : GPickerBase::step_previous_possible_selection();
      mLiteral.step(forward);
    } else {
      const EntitySelection at = forward ? GPickerBase::get_next_possible_selection()
                                         : GPickerBase::get_previous_possible_selection();
      mLiteral.move(forward);
      EXPECT_EQ(morrow_test::text_of(at.entity()), literal_current());
    }
  }

  void click()
  {
    const bool additive = draw(2) == 0;
    std::map<Id, float> found;
    mPicker.begin_pick(additive);
    for (int i = draw(8); i > 0; --i) {
      const Id id = draw_id();
      const bool is_direct = draw(3) > 0;
      const auto distance = static_cast<float>(draw(3));
      mPicker.add_to_selection_buffer(make(id), nullptr, distance, is_direct);
      const float effective = distance + (is_direct ? 0.0F : 1.0F);
      const auto [entry, is_new] = found.emplace(id, effective);
      entry->second = std::min(entry->second, effective);
    }
    mPicker.end_pick();
    mLiteral.click(found, additive);
  }

  void hover()
  {
    const std::vector<Id> ids = draw_ids();
    GPickerBase::set_pre_selection(ids.empty() ? EntitySelection() : selections(ids).front());
    mLiteral.set_pre_selection(ids.empty() ? std::nullopt : std::optional<Id>(ids.front()));
  }

  [[nodiscard]] std::string literal_current() const
  {
    return mLiteral.current < mLiteral.possible.size() ? text_of(mLiteral.possible[mLiteral.current]) : "";
  }

  static Texts texts(const std::vector<Id>& ids)
  {
    Texts all;
    for (const Id& id : ids) {
      all.push_back(text_of(id));
    }
    return all;
  }

  void expect_equal() const
  {
    ASSERT_EQ(picked_texts(), texts(mLiteral.picked));
    ASSERT_EQ(possible_texts(), texts(mLiteral.possible));
    ASSERT_EQ(current_text(), literal_current());
    ASSERT_EQ(morrow_test::text_of(GPickerBase::get_current_pre_selection()),
              mLiteral.pre_selection ? text_of(*mLiteral.pre_selection) : "");
    ASSERT_EQ(mRecorder.calls, mLiteral.calls);
  }

  std::mt19937 mRandom{20240229};
  TestPicker mPicker;
  PickRecorder mRecorder;
  LiteralLists mLiteral;
};

TEST_F(GPickerRandomTest, TheListsFollowTheRulesInEverySequence)
{
  for (int i = 0; i < 4000; ++i) {
    switch (draw(6)) {
    case 0:
      change_picked();
      break;
    case 1:
      change_possible();
      break;
    case 2:
      step();
      break;
    case 3:
      hover();
      break;
    case 4:
      click();
      break;
    default:
      if (draw(8) == 0) {
        GPickerBase::clear_picked_list();
        mLiteral.clear();
      }
    }
    ASSERT_NO_FATAL_FAILURE(expect_equal()) << "after " << i << " operations";
    mRecorder.calls.clear();
    mLiteral.calls.clear();
  }
}

/// The registry's rules over plain values.
struct LiteralRegistry
{
  struct Type
  {
    std::string name;
    GPicker* picker;
    bool is_filtered;
  };
  std::vector<Type> types;
  std::string current; // empty for none

  Type* find(const std::string& name)
  {
    for (Type& type : types) {
      if (type.name == name) {
        return &type;
      }
    }
    return nullptr;
  }

  void clear_filters()
  {
    for (Type& type : types) {
      type.is_filtered = false;
    }
  }

  void register_picker(const std::string& name, GPicker* picker)
  {
    if (Type* type = find(name)) {
      type->picker = picker;
    } else {
      types.push_back({name, picker, false});
    }
  }

  bool unregister_picker(const std::string& name, GPicker* picker)
  {
    Type* type = find(name);
    if (type == nullptr || type->picker != picker) {
      return false;
    }
    current = current == name ? "" : current;
    types.erase(types.begin() + (type - types.data()));
    return true;
  }

  void set_type(const std::string& name)
  {
    clear_filters();
    if (Type* type = find(name)) {
      current = name;
      type->is_filtered = true;
    }
  }

  void add_filter(const std::string& name)
  {
    Type* type = find(name);
    if (type == nullptr) {
      return;
    }
    if (current.empty() || find(current)->picker != type->picker) {
      if (!current.empty()) {
        clear_filters();
      }
      current = name;
    }
    type->is_filtered = true;
  }

  void remove_filter(const std::string& name)
  {
    Type* type = find(name);
    if (type == nullptr) {
      return;
    }
    type->is_filtered = false;
    current = "";
    for (auto other = types.rbegin(); other != types.rend(); ++other) {
      current = other->is_filtered ? other->name : current;
    }
  }
};

TEST_F(GPickerRandomTest, TheRegistryFollowsTheRulesInEverySequence)
{
  static const char* const kNames[] = {"block", "face", "edge", "node", "element"};
  TestPicker pickers[3];
  LiteralRegistry literal;
  for (int i = 0; i < 5000; ++i) {
    const char* name = kNames[draw(5)];
    TestPicker* picker = &pickers[draw(3)];
    switch (draw(5)) {
    case 0:
      EXPECT_TRUE(GPickerBase::register_picker(name, picker));
      literal.register_picker(name, picker);
      break;
    case 1:
      EXPECT_EQ(GPickerBase::unregister_picker(name, picker), literal.unregister_picker(name, picker));
      break;
    case 2:
      GPickerBase::set_pick_type(name, true);
      literal.set_type(name);
      break;
    case 3:
      GPickerBase::add_filter_type(name);
      literal.add_filter(name);
      break;
    default:
      GPickerBase::remove_filter_type(name);
      literal.remove_filter(name);
    }
    Texts actual;
    Texts expected;
    std::vector<const char*> names(static_cast<std::size_t>(GPickerBase::get_number_pick_types()));
    GPickerBase::get_pick_types(names.data());
    for (const char* type : names) {
      actual.push_back(std::string(type) + (GPickerBase::is_filtered(type) ? " on" : ""));
    }
    for (const auto& type : literal.types) {
      expected.push_back(type.name + (type.is_filtered ? " on" : ""));
    }
    ASSERT_EQ(actual, expected) << i;
    const char* current = GPickerBase::get_pick_type();
    ASSERT_EQ(current != nullptr ? std::string(current) : "", literal.current) << i;
    ASSERT_EQ(GPickerBase::get_picker(),
              literal.current.empty() ? nullptr : literal.find(literal.current)->picker);
  }
}

} // namespace
