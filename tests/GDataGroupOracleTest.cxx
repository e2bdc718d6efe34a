// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// Random sequences of operations, compared with groups that walk the chain each time.
#include "DataGroupFixture.h"
#include "LiteralDataGroup.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <random>
#include <string>

namespace {

using namespace morrow_test;

// As the literal groups hand their limit on, so do these.
class LimitedGroup : public Group
{
public:
  explicit LimitedGroup(int limit) : Group(limit), mPresentLimit(limit) {}
  void set_limit(int limit)
  {
    mPresentLimit = limit;
    this->set_number_per_group(limit);
  }
  GDataGroup* new_group() override { return new LimitedGroup(mPresentLimit); }

private:
  int mPresentLimit;
};

/// A chain and its literal twin, whose groups are told apart by their first data sets.
struct Twins
{
  explicit Twins(int limit) : head(limit), literal(static_cast<std::uint32_t>(limit)) {}

  LimitedGroup head;
  LiteralChain literal;
  std::map<int, vtkSmartPointer<vtkMultiBlockDataSet>> data_set_of;

  /// Gives the groups that are new a name, then compares all that can be seen.
  void compare(const std::vector<std::unique_ptr<Entity>>& entities)
  {
    const std::vector<GDataGroup*> groups = chain_of(head);
    ASSERT_EQ(groups.size(), literal.groups().size());
    std::size_t place = 0;
    for (const LiteralGroup& expected : literal.groups()) {
      GDataGroup* group = groups[place++];
      const auto named = data_set_of.emplace(expected.id, group->data_sets()[0]).first;
      ASSERT_EQ(named->second, group->data_sets()[0]);
      ASSERT_EQ(group->is_modified(), expected.is_modified);
      std::multiset<GDataGroupEntity*> members;
      for (const int entity : expected.entities) {
        members.insert(entities[static_cast<std::size_t>(entity)].get());
      }
      ASSERT_EQ(group->entities(), members);
    }
  }

  /// Compares what an operation has returned.
  void expect_returned(const DataSets& returned, std::optional<int> expected)
  {
    if (!expected.has_value()) {
      ASSERT_TRUE(returned.empty());
      return;
    }
    ASSERT_EQ(returned.size(), 1U);
    ASSERT_EQ(data_set_of.emplace(*expected, returned[0]).first->second, returned[0]);
  }
};

/// Two chains that share their entities.
class Play
{
public:
  Play(unsigned int seed, int num_entities, int limit)
      : mRandom(seed), mEntities(make_entities(static_cast<std::size_t>(num_entities)))
  {
    mChains.push_back(std::make_unique<Twins>(limit));
    mChains.push_back(std::make_unique<Twins>(1));
  }

  void run(int steps)
  {
    for (int step = 0; step < steps && !::testing::Test::HasFatalFailure(); ++step) {
      SCOPED_TRACE("step " + std::to_string(step));
      this->take_step();
      this->compare();
    }
  }

private:
  void take_step()
  {
    Twins& chain = *mChains[this->below(4) == 0 ? 1 : 0];
    const std::size_t length = chain.literal.groups().size();
    const std::size_t place = this->below(5) == 0 ? this->below(length) : 0;
    const int entity = static_cast<int>(this->below(mEntities.size()));
    const std::size_t what = this->below(1000);
    // Phases of growth and of decline.
    const std::size_t additions = (mSteps++ / 200) % 2 == 0 ? 600 : 300;
    if (what < additions) {
      this->add(chain, place, entity);
    } else if (what < 940) {
      this->remove(chain, place, entity);
    } else if (what < 960) {
      this->destroy(entity);
    } else if (what < 980) {
      this->set_limit(chain, place, static_cast<int>(this->below(5)));
    } else if (what < 985 && length > 1) {
      this->cut(chain, 1 + this->below(length - 1));
    } else {
      this->mark_unmodified(chain);
    }
  }

  void add(Twins& chain, std::size_t place, int entity)
  {
    const auto expected = chain.literal.add(place, entity);
    chain.expect_returned(chain_of(chain.head)[place]->add_entity(this->entity_of(entity)), expected);
  }

  void remove(Twins& chain, std::size_t place, int entity)
  {
    const auto expected = chain.literal.remove(place, entity);
    chain.expect_returned(chain_of(chain.head)[place]->remove_entity(this->entity_of(entity)), expected);
  }

  void destroy(int entity)
  {
    for (const auto& chain : mChains) {
      chain->literal.forget(entity);
    }
    mEntities[static_cast<std::size_t>(entity)] = std::make_unique<Entity>();
  }

  static void set_limit(Twins& chain, std::size_t place, int limit)
  {
    chain.literal.at(place).limit = static_cast<std::uint32_t>(limit);
    static_cast<LimitedGroup*>(chain_of(chain.head)[place])->set_limit(limit);
  }

  static void cut(Twins& chain, std::size_t place)
  {
    chain.literal.cut(place);
    delete chain_of(chain.head)[place];
  }

  static void mark_unmodified(Twins& chain)
  {
    for (std::size_t i = 0; i < chain.literal.groups().size(); ++i) {
      chain.literal.at(i).is_modified = false;
    }
    clear_modified(chain.head);
  }

  void compare()
  {
    for (const auto& chain : mChains) {
      chain->compare(mEntities);
    }
    std::size_t memberships = 0;
    for (const auto& entity : mEntities) {
      memberships += entity->owning_groups().size();
    }
    std::size_t held = 0;
    for (const auto& chain : mChains) {
      for (const LiteralGroup& group : chain->literal.groups()) {
        held += group.entities.size();
      }
    }
    ASSERT_EQ(memberships, held);
  }

  std::size_t below(std::size_t end) { return mRandom() % end; }
  [[nodiscard]] Entity* entity_of(int entity) const
  {
    return mEntities[static_cast<std::size_t>(entity)].get();
  }

  std::mt19937 mRandom;
  std::vector<std::unique_ptr<Entity>> mEntities;
  std::vector<std::unique_ptr<Twins>> mChains;
  std::size_t mSteps = 0;
};

TEST(GDataGroupOracle, DoesWhatPlainGroupsDo)
{
  for (const int num_entities : {3, 20, 60}) { // few: an entity belongs to more than 16 groups
    for (int limit = 0; limit < 4; ++limit) {
      SCOPED_TRACE(std::to_string(num_entities) + " entities, limit " + std::to_string(limit));
      Play(static_cast<unsigned int>(num_entities + limit), num_entities, limit).run(2000);
    }
  }
}

} // namespace
