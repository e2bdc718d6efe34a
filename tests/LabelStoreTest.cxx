// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "LabelStore.h"
#include "LabelOracle.h"

#include <gtest/gtest.h>

#include <vtkNew.h>
#include <vtkTextMapper.h>
#include <vtkTextProperty.h>

#include <algorithm>
#include <limits>
#include <numeric>
#include <random>
#include <string>
#include <vector>

namespace {

using morrow::Label;
using morrow::LabelStore;
using morrow_test::LiteralLabelKeys;

using Ints = std::vector<int>;

int add(LabelStore& store)
{
  return store.add(BrantVector(), "", BrantColor(), nullptr);
}

void add_many(LabelStore& store, int count)
{
  for (int i = 0; i < count; ++i) {
    add(store);
  }
}

Ints keys_in_order(LabelStore& store)
{
  Ints keys;
  for (const Label& label : store.in_order()) {
    keys.push_back(label.key);
  }
  return keys;
}

Ints counted(int count)
{
  Ints numbers(static_cast<std::size_t>(count));
  std::iota(numbers.begin(), numbers.end(), 0);
  return numbers;
}

// ---------------------------------------------------------------------------------------------------------
// Keys

TEST(LabelStoreTest, StartsEmpty)
{
  LabelStore store;
  EXPECT_EQ(store.size(), 0U);
  EXPECT_TRUE(store.in_order().empty());
}

TEST(LabelStoreTest, HandsOutKeysDenselyFromZero)
{
  LabelStore store;
  EXPECT_EQ(add(store), 0);
  EXPECT_EQ(add(store), 1);
  EXPECT_EQ(add(store), 2);
  EXPECT_EQ(store.size(), 3U);
  EXPECT_EQ(keys_in_order(store), (Ints{0, 1, 2}));
}

TEST(LabelStoreTest, ReusesTheOldestFreedKeyFirst)
{
  LabelStore store;
  add_many(store, 3);
  EXPECT_TRUE(store.remove(1));
  EXPECT_TRUE(store.remove(0));
  EXPECT_EQ(add(store), 1); // freed before 0
  EXPECT_EQ(add(store), 0);
  EXPECT_EQ(add(store), 3); // none waits: 0 to 2 are in use
}

// Appended, whatever its key: labels drawn later lie above.
TEST(LabelStoreTest, AReusedKeyIsTheLastInOrder)
{
  LabelStore store;
  add_many(store, 3);
  store.remove(0);
  add(store);
  EXPECT_EQ(keys_in_order(store), (Ints{1, 2, 0}));
}

TEST(LabelStoreTest, AReusedKeyWaitsForTheOthersThatWereFreedBefore)
{
  LabelStore store;
  add_many(store, 3);
  store.remove(2);
  store.remove(1);
  EXPECT_EQ(add(store), 2);
  store.remove(2); // now behind key 1
  EXPECT_EQ(add(store), 1);
  EXPECT_EQ(add(store), 2);
}

TEST(LabelStoreTest, TheOnlyLabelComesAndGoes)
{
  LabelStore store;
  for (int round = 0; round < 3; ++round) {
    EXPECT_EQ(add(store), 0);
    EXPECT_TRUE(store.remove(0));
    EXPECT_EQ(store.size(), 0U);
    EXPECT_TRUE(store.in_order().empty());
  }
}

TEST(LabelStoreTest, RemovingWhatIsNotThereChangesNothing)
{
  LabelStore store;
  EXPECT_FALSE(store.remove(0)); // never issued
  add_many(store, 2);
  EXPECT_TRUE(store.remove(1));
  const long long low_half_is_zero = 1LL << 32; // cut to 32 bits this would be the live key 0
  for (const long long key : {-1LL, 1LL, 2LL, low_half_is_zero, -low_half_is_zero,
                              std::numeric_limits<long long>::min(), std::numeric_limits<long long>::max()}) {
    EXPECT_FALSE(store.remove(key)) << key;
    EXPECT_EQ(store.size(), 1U) << key;
  }
  EXPECT_EQ(keys_in_order(store), Ints{0});
  EXPECT_EQ(add(store), 1); // freed once, so it waits once
  EXPECT_EQ(add(store), 2);
}

TEST(LabelStoreTest, KeysRestartAtZeroAfterClear)
{
  LabelStore store;
  add_many(store, 5);
  store.remove(3);
  store.clear();
  EXPECT_EQ(store.size(), 0U);
  EXPECT_TRUE(store.in_order().empty());
  EXPECT_FALSE(store.remove(0));
  EXPECT_EQ(add(store), 0); // not the freed 3
  EXPECT_EQ(add(store), 1);
}

TEST(LabelStoreTest, AnEmptyStoreIsCleared)
{
  LabelStore store;
  store.clear();
  store.clear();
  EXPECT_EQ(add(store), 0);
}

// ---------------------------------------------------------------------------------------------------------
// Content

TEST(LabelStoreTest, KeepsWhatItWasGiven)
{
  LabelStore store;
  const vtkNew<vtkTextProperty> style;
  char text[] = "mesh";
  store.add(BrantVector(1.0, 2.0, 3.0), text, BrantColor(4, 5, 6, 7), style);
  text[0] = 'X'; // a copy was taken
  ASSERT_EQ(store.in_order().size(), 1U);
  const Label& label = store.in_order().front();
  EXPECT_EQ(label.point, BrantVector(1.0, 2.0, 3.0));
  EXPECT_EQ(label.text, "mesh");
  EXPECT_EQ(label.color, BrantColor(4, 5, 6, 7));
  EXPECT_EQ(label.style, style.Get());
  EXPECT_TRUE(label.mappers.empty());
  EXPECT_EQ(label.key, 0);
}

TEST(LabelStoreTest, ANullTextIsAnEmptyOne)
{
  LabelStore store;
  store.add(BrantVector(), nullptr, BrantColor(), nullptr);
  EXPECT_EQ(store.in_order().front().text, "");
}

TEST(LabelStoreTest, TextsAreKeptWhole)
{
  LabelStore store;
  const std::string text(1'000'000, 'x');
  store.add(BrantVector(), text.c_str(), BrantColor(), nullptr);
  EXPECT_EQ(store.in_order().front().text, text);
}

TEST(LabelStoreTest, AReusedKeyHasNothingOfItsFormerLabel)
{
  LabelStore store;
  store.add(BrantVector(1.0, 2.0, 3.0), "old", BrantColor(1, 2, 3), nullptr);
  store.in_order().front().mappers = {vtkSmartPointer<vtkTextMapper>::New()};
  store.remove(0);
  store.add(BrantVector(4.0, 5.0, 6.0), "new", BrantColor(4, 5, 6), nullptr);
  const Label& label = store.in_order().front();
  EXPECT_EQ(label.key, 0);
  EXPECT_EQ(label.text, "new");
  EXPECT_EQ(label.point, BrantVector(4.0, 5.0, 6.0));
  EXPECT_EQ(label.color, BrantColor(4, 5, 6));
  EXPECT_TRUE(label.mappers.empty());
}

// Not when the hole is closed some time later: styles and mappers hold graphics resources.
TEST(LabelStoreTest, ARemovedLabelLetsGoAtOnce)
{
  LabelStore store;
  const vtkNew<vtkTextProperty> style;
  const vtkNew<vtkTextMapper> mapper;
  store.add(BrantVector(), "", BrantColor(), style);
  store.in_order().front().mappers = {mapper};
  EXPECT_EQ(style->GetReferenceCount(), 2);
  EXPECT_EQ(mapper->GetReferenceCount(), 2);
  store.remove(0);
  EXPECT_EQ(style->GetReferenceCount(), 1);
  EXPECT_EQ(mapper->GetReferenceCount(), 1);
}

TEST(LabelStoreTest, ClearingAndDestructionLetGoOfEverything)
{
  const vtkNew<vtkTextProperty> style;
  {
    LabelStore store;
    for (int i = 0; i < 3; ++i) {
      store.add(BrantVector(), "", BrantColor(), style);
    }
    EXPECT_EQ(style->GetReferenceCount(), 4);
    store.clear();
    EXPECT_EQ(style->GetReferenceCount(), 1);
    store.add(BrantVector(), "", BrantColor(), style);
  }
  EXPECT_EQ(style->GetReferenceCount(), 1);
}

// ---------------------------------------------------------------------------------------------------------
// Against the literal lists

// Each label carries the number of its addition as its text, so that contents are followed as well as keys.
class Twins
{
public:
  void add()
  {
    const std::string text = std::to_string(mAdditions);
    const int key = mStore.add(BrantVector(mAdditions, 0.0, 0.0), text.c_str(), BrantColor(), nullptr);
    ASSERT_EQ(key, mLiteral.add());
    mTextOfKey.resize(std::max(mTextOfKey.size(), static_cast<std::size_t>(key) + 1));
    mTextOfKey[static_cast<std::size_t>(key)] = text;
    ++mAdditions;
  }

  void remove(long long key)
  {
    const bool was_live = mLiteral.is_live(key);
    ASSERT_EQ(mStore.remove(key), was_live) << key;
    mLiteral.remove(key);
  }

  void clear()
  {
    mStore.clear();
    mLiteral.clear();
  }

  void compare_sizes() const { ASSERT_EQ(mStore.size(), mLiteral.size()); }

  void compare_all()
  {
    const std::vector<Label>& labels = mStore.in_order();
    const Ints keys = mLiteral.live_keys();
    ASSERT_EQ(labels.size(), keys.size());
    for (std::size_t i = 0; i < keys.size(); ++i) {
      ASSERT_EQ(labels[i].key, keys[i]) << i;
      ASSERT_EQ(labels[i].text, mTextOfKey[static_cast<std::size_t>(keys[i])]) << i;
      ASSERT_EQ(std::to_string(static_cast<int>(labels[i].point.x())), labels[i].text) << i;
    }
  }

  [[nodiscard]] int keys_issued() const { return static_cast<int>(mLiteral.key_to_slot().size()); }

private:
  LabelStore mStore;
  LiteralLabelKeys mLiteral;
  std::vector<std::string> mTextOfKey;
  int mAdditions = 0;
};

struct Mixture
{
  unsigned seed;
  int additions;    // in a hundred calls
  int clearings;    // in a hundred thousand calls
  int calls_a_look; // on average; looking closes the holes, so it must not always happen
  int calls;
};

class LabelStoreRandomTest : public ::testing::TestWithParam<Mixture>
{
protected:
  int below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(mRandom); }

  // Mostly keys that were issued, some that were not.
  long long any_key(const Twins& twins) { return below(twins.keys_issued() + 6) - 3; }

  std::mt19937 mRandom{GetParam().seed};
};

TEST_P(LabelStoreRandomTest, KeysOrderAndTextsAreThoseOfTheLiteralLists)
{
  const Mixture& mixture = GetParam();
  Twins twins;
  for (int call = 0; call < mixture.calls; ++call) {
    if (below(100'000) < mixture.clearings) {
      twins.clear();
    } else if (below(100) < mixture.additions) {
      twins.add();
    } else {
      twins.remove(any_key(twins));
    }
    twins.compare_sizes();
    if (below(mixture.calls_a_look) == 0) {
      twins.compare_all();
    }
    ASSERT_FALSE(HasFatalFailure()) << "call " << call;
  }
  twins.compare_all();
}

INSTANTIATE_TEST_SUITE_P(Mixtures, LabelStoreRandomTest,
                         ::testing::Values(Mixture{1, 50, 0, 20, 100'000}, // hovers among a few hundred
                                           Mixture{2, 30, 50, 1, 20'000},  // almost empty, looked at always
                                           Mixture{3, 52, 20, 3'000, 20'000},  // many holes between two looks
                                           Mixture{4, 60, 0, 2'000, 20'000})); // grows to thousands

// Waves: filled up, then emptied in another order each time. Holes outnumber the labels on the way down.
TEST(LabelStoreTest, KeysAndOrderFollowTheLiteralListsThroughFloodAndEbb)
{
  std::mt19937 random(5);
  Twins twins;
  for (const int left : {300, 40, 1, 0, 128, 0}) {
    while (twins.keys_issued() < 1000) {
      twins.add();
    }
    Ints keys = counted(twins.keys_issued());
    std::shuffle(keys.begin(), keys.end(), random);
    for (std::size_t i = static_cast<std::size_t>(left); i < keys.size(); ++i) {
      twins.remove(keys[i]);
      twins.compare_sizes();
    }
    twins.compare_all();
    for (int i = 0; i < 700; ++i) {
      twins.add();
    }
    twins.compare_all();
    ASSERT_FALSE(HasFatalFailure()) << "down to " << left;
  }
}

// ---------------------------------------------------------------------------------------------------------
// Size

// With a search or a shift for each removal this is some 10^10 steps, and the test does not come back.
TEST(LabelStoreTest, AHundredThousandLabelsGoInAnyOrder)
{
  constexpr int count = 100'000;
  std::mt19937 random(6);
  LabelStore store;
  add_many(store, count);
  ASSERT_EQ(store.size(), 100'000U);

  Ints keys = counted(count);
  std::shuffle(keys.begin(), keys.end(), random);
  for (const int key : keys) {
    ASSERT_TRUE(store.remove(key));
  }
  EXPECT_EQ(store.size(), 0U);
  EXPECT_TRUE(store.in_order().empty());

  for (const int key : keys) {
    ASSERT_EQ(add(store), key); // in the order in which they were freed
  }
  EXPECT_EQ(keys_in_order(store), keys);
}

} // namespace
