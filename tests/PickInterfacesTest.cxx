// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// What a host derives from: names, types and the order of the virtual operations, which hosts that are
// already compiled rely on.
#include "GPicked.h"
#include "GPicker.h"
#include "PickBounds.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <string>
#include <type_traits>
#include <vector>

namespace {

/// The place of a virtual operation in the table of its class, from 0; a destructor takes two places.
template<typename Operation>
std::ptrdiff_t place_of(Operation operation)
{
  std::ptrdiff_t words[2]; // as compilers of this family keep a pointer to a member
  static_assert(sizeof(operation) == sizeof(words));
  std::memcpy(words, &operation, sizeof(words));
  return words[0] / static_cast<std::ptrdiff_t>(sizeof(void*));
}

template<typename... Operations>
std::vector<std::ptrdiff_t> places_of(Operations... operations)
{
  return {place_of(operations)...};
}

using Places = std::vector<std::ptrdiff_t>;

TEST(PickInterfacesTest, TheOperationsOfAnEntityStandBeforeItsDestructor)
{
  using Entity = GPicked::PickedEntity;
  EXPECT_EQ(places_of(&Entity::host_object, &Entity::type_name, &Entity::id, &Entity::element, &Entity::name,
                      &Entity::key),
            Places({0, 1, 2, 3, 4, 5}));
  static_assert(std::has_virtual_destructor_v<Entity>);
  static_assert(std::is_same_v<decltype(&Entity::host_object), void* (Entity::*)() const>);
  static_assert(std::is_same_v<decltype(&Entity::key), long long (Entity::*)() const>);
}

TEST(PickInterfacesTest, TheDestructorOfAnObserverStandsFirst)
{
  using Observer = GPicked::PickCallbackNow;
  EXPECT_EQ(places_of(&Observer::picked_list_changed, &Observer::pre_selection_changed), Places({2, 3}));
  static_assert(std::has_virtual_destructor_v<Observer>);
}

TEST(PickInterfacesTest, TheDestructorOfAPickerStandsFirst)
{
  EXPECT_EQ(places_of(&GPicker::compute_pick, &GPicker::compute_pick_by_box,
                      &GPicker::compute_pick_by_polygon, &GPicker::compute_pick_by_circle,
                      &GPicker::compute_pick_by_ray, &GPicker::compute_pick_by_bounds),
            Places({2, 3, 4, 5, 6, 7}));
  static_assert(std::has_virtual_destructor_v<GPicker>);
}

TEST(PickInterfacesTest, TheDestructorOfARegionStandsFirst)
{
  EXPECT_EQ(places_of(&PickBounds::intersects_with_point, &PickBounds::intersects_with_line,
                      &PickBounds::intersects_with_triangle, &PickBounds::intersects_with_bbox),
            Places({2, 3, 4, 5}));
  static_assert(std::has_virtual_destructor_v<PickBounds>);
}

/// Every operation of the four interfaces as a host writes it. Says which was called.
class HostEntity : public GPicked::PickedEntity
{
public:
  void* host_object() const override { return nullptr; }
  const char* type_name() const override { return "block"; }
  int id() const override { return 12; }
  int element() const override { return -1; }
  const char* name() const override { return ""; }
  long long key() const override { return 1LL << 40; }
};

class HostPicker : public GPicker
{
public:
  int compute_pick(vtkRenderer*, int, int) override { return 2; }
  int compute_pick_by_box(vtkRenderer*, int*, int*) override { return 3; }
  int compute_pick_by_polygon(vtkRenderer*, int, int (*)[2]) override { return 4; }
  int compute_pick_by_circle(vtkRenderer*, int*, double) override { return 5; }
  int compute_pick_by_ray(vtkRenderer*, const double*, const double*) override { return 6; }
  int compute_pick_by_bounds(vtkRenderer*, PickBounds*) override { return 7; }
};

class HostRegion : public PickBounds
{
public:
  bool intersects_with_point(const double*) const override { return false; }
  bool intersects_with_line(const double*, const double*) const override { return true; }
  bool intersects_with_triangle(const double*, const double*, const double*) const override { return false; }
  bool intersects_with_bbox(const BrantBox&) const override { return true; }
};

class HostObserver : public GPicked::PickCallbackNow
{
public:
  explicit HostObserver(std::string& log) : mLog(log) {}
  ~HostObserver() override { mLog += "gone"; }
  void picked_list_changed(int, const GPicked::PickedEntity* const*, const float* const*, bool) override
  {
    mLog += "list ";
  }
  void pre_selection_changed(GPicked::PickedEntity*, const float*, bool) override { mLog += "pre "; }

private:
  std::string& mLog;
};

TEST(PickInterfacesTest, AHostsClassesAreCalledThroughTheirInterfaces)
{
  HostEntity host_entity;
  const GPicked::PickedEntity& entity = host_entity;
  EXPECT_EQ(entity.host_object(), nullptr);
  EXPECT_STREQ(entity.type_name(), "block");
  EXPECT_EQ(entity.id(), 12);
  EXPECT_EQ(entity.element(), -1);
  EXPECT_STREQ(entity.name(), "");
  EXPECT_EQ(entity.key(), 1099511627776LL);

  HostPicker host_picker;
  GPicker& picker = host_picker;
  EXPECT_EQ(picker.compute_pick(nullptr, 0, 0), 2);
  EXPECT_EQ(picker.compute_pick_by_box(nullptr, nullptr, nullptr), 3);
  EXPECT_EQ(picker.compute_pick_by_polygon(nullptr, 0, nullptr), 4);
  EXPECT_EQ(picker.compute_pick_by_circle(nullptr, nullptr, 0.0), 5);
  EXPECT_EQ(picker.compute_pick_by_ray(nullptr, nullptr, nullptr), 6);
  EXPECT_EQ(picker.compute_pick_by_bounds(nullptr, nullptr), 7);

  const HostRegion host_region;
  const PickBounds& region = host_region;
  EXPECT_FALSE(region.intersects_with_point(nullptr));
  EXPECT_TRUE(region.intersects_with_line(nullptr, nullptr));
  EXPECT_FALSE(region.intersects_with_triangle(nullptr, nullptr, nullptr));
  EXPECT_TRUE(region.intersects_with_bbox(BrantBox()));

  std::string log;
  {
    HostObserver host_observer(log);
    GPicked::PickCallbackNow& observer = host_observer;
    observer.picked_list_changed(0, nullptr, nullptr, true);
    observer.pre_selection_changed(nullptr, nullptr, true);
  }
  EXPECT_EQ(log, "list pre gone");
}

} // namespace
