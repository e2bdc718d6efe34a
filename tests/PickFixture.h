// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "EntitySelection.h"
#include "GPicked.h"
#include "GPicker.h"
#include "GPickerBase.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

/// What the tests of picking share.
namespace morrow_test {

/// An entity as a host would write it. Counts those alive.
class TestEntity : public GPicked::PickedEntity
{
public:
  explicit TestEntity(long long key, const char* type = "thing")
      : mKey(key), mType(type), mId(static_cast<int>(key))
  {
    ++gAlive;
  }
  ~TestEntity() override
  {
    --gAlive;
    if (on_end) {
      on_end();
    }
  }
  TestEntity(const TestEntity&) = delete;
  TestEntity& operator=(const TestEntity&) = delete;

  [[nodiscard]] void* host_object() const override
  {
    ADD_FAILURE() << "this is for the host";
    return nullptr;
  }
  [[nodiscard]] const char* type_name() const override { return mType; }
  [[nodiscard]] int id() const override { return mId; }
  [[nodiscard]] int element() const override { return mElement; }
  [[nodiscard]] const char* name() const override { return mName; }
  [[nodiscard]] long long key() const override { return mKey; }

  static inline int gAlive = 0;

  long long mKey;
  const char* mType;
  int mId;
  int mElement = -1;
  const char* mName = "";
  std::function<void()> on_end;
};

class FaceEntity : public TestEntity
{
public:
  explicit FaceEntity(long long key) : TestEntity(key, "face") {}
};

class EdgeEntity : public TestEntity
{
public:
  explicit EdgeEntity(long long key) : TestEntity(key, "edge") {}
};

/// An entity that the test holds a reference to until the end of the scope.
template<class Entity>
class Held
{
public:
  template<typename... Arguments>
  explicit Held(Arguments&&... arguments) : mEntity(new Entity(std::forward<Arguments>(arguments)...))
  {
    mEntity->add_reference();
  }
  ~Held() { mEntity->release(); }
  Held(const Held&) = delete;
  Held& operator=(const Held&) = delete;

  [[nodiscard]] Entity* get() const { return mEntity; }
  operator Entity*() const { return mEntity; } // NOLINT: as a plain pointer to it
  Entity* operator->() const { return mEntity; }

private:
  Entity* mEntity;
};

inline EntitySelection select(GPicked::PickedEntity* entity, float distance = 0.0F)
{
  const float point[3] = {1.0F, 2.0F, 3.0F};
  return {entity, point, distance};
}

inline void add_to_picked_list(const std::vector<EntitySelection>& list)
{
  GPickerBase::add_to_picked_list(static_cast<int>(list.size()), list.data());
}

inline void remove_from_picked_list(std::vector<GPicked::PickedEntity*> entities)
{
  GPickerBase::remove_from_picked_list(static_cast<int>(entities.size()), entities.data());
}

inline void set_possible(const std::vector<EntitySelection>& list)
{
  GPickerBase::set_possible_selections_list(static_cast<int>(list.size()), list.data());
}

/// "face 3", or "" without an entity.
inline std::string text_of(const GPicked::PickedEntity* entity)
{
  return entity != nullptr ? std::string(entity->type_name()) + " " + std::to_string(entity->key()) : "";
}

inline std::vector<std::string> texts_of(const EntitySelection* list, int count)
{
  std::vector<std::string> texts;
  std::transform(list, list + count, std::back_inserter(texts),
                 [](const EntitySelection& selection) { return text_of(selection.entity()); });
  return texts;
}

inline std::vector<std::string> picked_texts()
{
  const EntitySelection* list = nullptr;
  int count = -1;
  GPickerBase::get_picked_list(list, count);
  return texts_of(list, count);
}

inline std::vector<std::string> possible_texts()
{
  const EntitySelection* list = nullptr;
  int count = -1;
  GPickerBase::get_possible_selections(list, count);
  return texts_of(list, count);
}

inline std::string current_text()
{
  const EntitySelection* current = GPickerBase::get_current_possible_selection();
  return current != nullptr ? text_of(current->entity()) : "";
}

/// Hears of everything while it lives, and does what the test wants.
class PickRecorder : public GPicked::PickCallbackNow
{
public:
  PickRecorder()
  {
    GPickerBase::add_pick_observer(this);
    GPickerBase::add_pre_selection_observer(this);
  }
  ~PickRecorder() override { leave(); }

  void leave()
  {
    GPickerBase::remove_pick_observer(this);
    GPickerBase::remove_pre_selection_observer(this);
  }

  void picked_list_changed(int count, const GPicked::PickedEntity* const* entities,
                           const float* const* points, bool added) override
  {
    std::string text;
    for (int i = 0; i < count; ++i) {
      text += (added ? "+" : "-") + text_of(entities[i]) + (i + 1 < count ? " " : "");
    }
    calls.push_back(text);
    hit_points.assign(static_cast<std::size_t>(count), {});
    run(on_call);
    // The arrays are still good.
    for (int i = 0; i < count; ++i) {
      hit_points.begin()[i] = {points[i][0], points[i][1], points[i][2]};
      EXPECT_GT(entities[i]->reference_count(), 0U);
    }
  }

  void pre_selection_changed(GPicked::PickedEntity* entity, const float* point, bool on) override
  {
    calls.push_back((on ? "on " : "off ") + text_of(entity));
    run(on_call);
    hit_points = {{point[0], point[1], point[2]}};
    EXPECT_GT(entity->reference_count(), 0U);
  }

  std::vector<std::string> calls;               ///< "+face 1 +face 2", "-face 1", "on face 1", "off face 1"
  std::vector<std::array<float, 3>> hit_points; ///< of the last call
  std::function<void()> on_call;

private:
  static void run(const std::function<void()>& function)
  {
    if (function) {
      const std::function<void()> running = function; // it may replace itself
      running();
    }
  }
};

/// A picker whose picks are written by the test.
class TestPicker : public GPicker
{
public:
  int compute_pick(vtkRenderer* /*renderer*/, int /*x*/, int /*y*/) override { return 0; }
  int compute_pick_by_ray(vtkRenderer* /*renderer*/, const double* /*from*/, const double* /*to*/) override
  {
    return 0;
  }
  int compute_pick_by_bounds(vtkRenderer* renderer, PickBounds* bounds) override
  {
    ++region_picks;
    return on_bounds ? on_bounds(renderer, bounds) : 0;
  }

  int region_picks = 0;
  std::function<int(vtkRenderer*, PickBounds*)> on_bounds;
};

/// Leaves the lists as the process starts with them, and no entity behind.
class PickTest : public ::testing::Test
{
protected:
  void TearDown() override { reset_lists(); }

  static void reset_lists()
  {
    GPickerBase::clear_picked_list();
    GPickerBase::clear_possible_selections();
    GPickerBase::set_pre_selection({});
    EXPECT_EQ(GPickerBase::get_number_pick_types(), 0);
    EXPECT_EQ(TestEntity::gAlive, 0);
  }
};

} // namespace morrow_test
