// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "PickFixture.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <set>
#include <type_traits>

namespace {

using namespace morrow_test;

using EntitySelectionTest = PickTest;

/// Another class with the type name of FaceEntity.
class OtherFaceEntity : public TestEntity
{
public:
  explicit OtherFaceEntity(long long key) : TestEntity(key, "face") {}
};

/// Exactly one of a < b, b < a holds.
void expect_strict(const EntitySelection& a, const EntitySelection& b)
{
  EXPECT_NE(a < b, b < a);
}

TEST_F(EntitySelectionTest, IsSmallAndMovesWithoutThrowing)
{
  static_assert(std::is_nothrow_move_constructible_v<EntitySelection>);
  static_assert(std::is_nothrow_move_assignable_v<EntitySelection>);
  static_assert(sizeof(EntitySelection) == sizeof(void*) + 4 * sizeof(float));
  const EntitySelection empty;
  EXPECT_EQ(empty.entity(), nullptr);
  EXPECT_EQ(empty.distance(), 0.0F);
  EXPECT_EQ(empty.point()[0], 0.0F);
  EXPECT_EQ(empty.point()[1], 0.0F);
  EXPECT_EQ(empty.point()[2], 0.0F);
}

TEST_F(EntitySelectionTest, ANewEntityHasNoReferenceAndDiesWithItsLastSelection)
{
  auto* face = new FaceEntity(1);
  EXPECT_EQ(face->reference_count(), 0U);
  {
    const EntitySelection first = select(face, 2.5F);
    EXPECT_EQ(face->reference_count(), 1U);
    const EntitySelection second = first; // NOLINT(performance-unnecessary-copy-initialization)
    EXPECT_EQ(face->reference_count(), 2U);
    EXPECT_EQ(second.entity(), face);
    EXPECT_EQ(second.point()[2], 3.0F);
    EXPECT_EQ(second.distance(), 2.5F);
    EXPECT_EQ(TestEntity::gAlive, 1);
  }
  EXPECT_EQ(TestEntity::gAlive, 0);
}

TEST_F(EntitySelectionTest, AssignmentMoveAndTheirSelfFormsKeepTheCount)
{
  const Held<FaceEntity> face(1);
  const Held<FaceEntity> other(2);
  EntitySelection a = select(face, 1.0F);
  EntitySelection b = select(other, 2.0F);
  EntitySelection& self = a;
  a = self;
  EXPECT_EQ(a.entity(), face.get());
  EXPECT_EQ(face->reference_count(), 2U);
  a = std::move(self);
  EXPECT_EQ(a.entity(), face.get());
  EXPECT_EQ(a.distance(), 1.0F);
  EXPECT_EQ(face->reference_count(), 2U);

  b = a;
  EXPECT_EQ(other->reference_count(), 1U);
  EXPECT_EQ(face->reference_count(), 3U);
  const EntitySelection c = std::move(a);
  EXPECT_EQ(a.entity(), nullptr); // NOLINT: a move leaves it empty
  EXPECT_EQ(face->reference_count(), 3U);
  b = {};
  EXPECT_EQ(face->reference_count(), 2U);
  EXPECT_EQ(c.distance(), 1.0F);
}

TEST_F(EntitySelectionTest, TheLastReferenceMayBeReplacedByItsOwnCopy)
{
  auto* face = new FaceEntity(1);
  EntitySelection selection(face, nullptr, 0.0F);
  selection = EntitySelection(selection.entity(), nullptr, 4.0F);
  EXPECT_EQ(TestEntity::gAlive, 1);
  EXPECT_EQ(selection.distance(), 4.0F);
}

TEST_F(EntitySelectionTest, AnEntityOfItsOwnerSurvivesItsSelections)
{
  FaceEntity on_the_stack(1);
  on_the_stack.add_reference();
  {
    const EntitySelection selection = select(&on_the_stack);
    EXPECT_EQ(on_the_stack.reference_count(), 2U);
  }
  EXPECT_EQ(on_the_stack.reference_count(), 1U);

  // Without a reference of its own it can be handed back by the last selection.
  FaceEntity other(2);
  EntitySelection selection = select(&other);
  selection.release_to_owner();
  EXPECT_EQ(selection.entity(), nullptr);
  EXPECT_EQ(other.reference_count(), 0U);
  selection.release_to_owner();
  EXPECT_EQ(other.reference_count(), 0U);
}

TEST_F(EntitySelectionTest, AReferenceTooManyGivenBackIsNoDeletion)
{
  FaceEntity face(1);
  face.release();
  face.release_to_owner();
  EXPECT_EQ(face.reference_count(), 0U);
}

/// A copy of an entity is another object, which nobody refers to yet.
class CopyableEntity : public GPicked::PickedEntity
{
public:
  [[nodiscard]] void* host_object() const override { return nullptr; }
  [[nodiscard]] const char* type_name() const override { return "copy"; }
  [[nodiscard]] int id() const override { return 0; }
  [[nodiscard]] int element() const override { return -1; }
  [[nodiscard]] const char* name() const override { return nullptr; }
  [[nodiscard]] long long key() const override { return 0; }
};

TEST_F(EntitySelectionTest, ReferencesAreNotCopiedWithTheEntity)
{
  CopyableEntity entity;
  entity.add_reference();
  entity.add_reference();
  CopyableEntity copy = entity;
  EXPECT_EQ(copy.reference_count(), 0U);
  copy.add_reference();
  copy = entity;
  EXPECT_EQ(copy.reference_count(), 1U);
  EXPECT_EQ(entity.reference_count(), 2U);
}

TEST_F(EntitySelectionTest, TheCountIsTheFirstDataOfAnEntity)
{
  CopyableEntity entity;
  entity.add_reference();
  entity.add_reference();
  const auto* after_table = reinterpret_cast<const char*>(&entity) + sizeof(void*);
  EXPECT_EQ(*reinterpret_cast<const std::uint32_t*>(after_table), 2U);
}

TEST_F(EntitySelectionTest, ACountThatIsFullNeverFalls)
{
  CopyableEntity entity;
  const std::uint32_t nearly_full = 0xFFFFFFFEU;
  std::memcpy(reinterpret_cast<char*>(&entity) + sizeof(void*), &nearly_full, sizeof(nearly_full));
  {
    const EntitySelection full = select(&entity);
    EXPECT_EQ(entity.reference_count(), 0xFFFFFFFFU);
    const std::vector<EntitySelection> more(5, full);
    EXPECT_EQ(entity.reference_count(), 0xFFFFFFFFU);
  }
  entity.release();
  entity.release_to_owner();
  EXPECT_EQ(entity.reference_count(), 0xFFFFFFFFU); // how many there are is not known any more
}

TEST_F(EntitySelectionTest, OneClassIsOrderedByKey)
{
  const Held<FaceEntity> one(-(1LL << 40));
  const Held<FaceEntity> two(1LL << 40);
  const Held<FaceEntity> same(1LL << 40);
  EXPECT_TRUE(select(one) < select(two));
  EXPECT_FALSE(select(two) < select(one));
  EXPECT_FALSE(select(two, 1.0F) < select(same, 2.0F));
  EXPECT_FALSE(select(same, 2.0F) < select(two, 1.0F));
  EXPECT_TRUE(same_entity(select(two), select(same, 3.0F)));
  EXPECT_FALSE(same_entity(select(one), select(two)));
}

TEST_F(EntitySelectionTest, ClassesAreOrderedByTheirTypeNamesAsText)
{
  const Held<EdgeEntity> edge(9);
  const Held<FaceEntity> face(1);
  EXPECT_TRUE(select(edge) <
              select(face)); // "edge" < "face", whatever the keys and the addresses of the texts
  EXPECT_FALSE(select(face) < select(edge));

  // The same with both texts in one array, in the other order.
  static const char texts[] = "zebra\0ape";
  const Held<TestEntity> zebra(1, &texts[0]);
  const Held<EdgeEntity> ape(1);
  ape->mType = &texts[6];
  EXPECT_TRUE(select(ape) < select(zebra));
  EXPECT_FALSE(select(zebra) < select(ape));
}

TEST_F(EntitySelectionTest, TwoClassesOfOneTypeNameHaveAStrictOrder)
{
  const Held<FaceEntity> face(1);
  const Held<OtherFaceEntity> other(1);
  const Held<FaceEntity> larger_face(2);
  expect_strict(select(face), select(other));
  EXPECT_EQ(select(face) < select(other), select(larger_face) < select(other));
  EXPECT_FALSE(same_entity(select(face), select(other)));
  EXPECT_EQ((std::set<EntitySelection>{select(face), select(other), select(face)}.size()), 2U);

  // Equal text at another address is equal.
  const std::string copy = "face";
  other->mType = copy.c_str();
  EXPECT_EQ(select(face) < select(other), select(larger_face) < select(other));
}

TEST_F(EntitySelectionTest, ANullTypeNameIsTheEmptyText)
{
  const Held<FaceEntity> nameless(1);
  nameless->mType = nullptr;
  const Held<EdgeEntity> edge(1);
  const Held<OtherFaceEntity> empty(1);
  empty->mType = "";
  EXPECT_TRUE(select(nameless) < select(edge));
  EXPECT_FALSE(select(edge) < select(nameless));
  expect_strict(select(nameless), select(empty));
}

TEST_F(EntitySelectionTest, AnEmptyOneComesFirstAndIsTheSameAsNothing)
{
  const Held<FaceEntity> face(1);
  const EntitySelection empty;
  EXPECT_TRUE(empty < select(face));
  EXPECT_FALSE(select(face) < empty);
  EXPECT_FALSE(empty < EntitySelection());
  EXPECT_FALSE(same_entity(empty, EntitySelection()));
  EXPECT_FALSE(same_entity(empty, select(face)));
  EXPECT_FALSE(same_entity(select(face), empty));
}

TEST_F(EntitySelectionTest, TheOrderIsStrictOverAMixtureOfEverything)
{
  std::vector<EntitySelection> all(1);
  for (long long key = -2; key <= 2; ++key) {
    all.push_back(select(new FaceEntity(key)));
    all.push_back(select(new EdgeEntity(key)));
    all.push_back(select(new OtherFaceEntity(key)));
    all.push_back(select(new FaceEntity(key)));
  }
  for (const auto& a : all) {
    for (const auto& b : all) {
      EXPECT_FALSE((a < b) && (b < a));
      const bool equivalent = !(a < b) && !(b < a);
      EXPECT_EQ(equivalent, same_entity(a, b) || (a.entity() == nullptr && b.entity() == nullptr));
      for (const auto& c : all) {
        EXPECT_TRUE(!((a < b) && (b < c)) || (a < c));
      }
    }
  }
}

} // namespace
