// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
//
// Thousands of random operations on a few views, models, sets and data objects. A plain account is kept of
// what must be where, and the library is compared with it after every single operation.
#include "GModel.h"
#include "GModelSet.h"
#include "GView.h"

#include "BrantVector.h"
#include "ModelFixture.h"

#include <gtest/gtest.h>

#include <array>
#include <map>
#include <random>
#include <set>
#include <string>

namespace {

using namespace morrow_test;

using Key = vtkDataObject*;

constexpr std::size_t kViews = 4;
constexpr std::size_t kModels = 4;
constexpr std::size_t kSets = 2;
constexpr std::size_t kData = 5;
constexpr std::size_t kSharedProps = 3;
constexpr int kOperations = 12000;
constexpr int kOperationsToAFrame = 1500;

// --- The account
// -----------------------------------------------------------------------------------------------------

/// Real props that prop functions made; the account holds no references.
using PropList = std::vector<vtkProp*>;

/// A renderer's list as VTK's own calls would leave it.
class RendererAccount
{
public:
  void add(const PropList& props)
  {
    for (vtkProp* prop : props) {
      if (prop != nullptr && std::find(mList.begin(), mList.end(), prop) == mList.end()) {
        mList.push_back(prop);
      }
    }
  }

  void remove(const PropList& props)
  {
    for (vtkProp* prop : props) {
      mList.erase(std::remove(mList.begin(), mList.end(), prop), mList.end());
    }
  }

  [[nodiscard]] const PropList& list() const { return mList; }

private:
  PropList mList;
};

struct ModelAccount
{
  bool is_hooked = true;
  vtkProp* labels = nullptr;
  std::set<int> label_keys;
  std::map<Key, bool> parts; ///< and whether their functions fail
  std::map<GView*, std::map<Key, PropList>> views;
};

struct SetAccount
{
  std::vector<GView*> views;
  std::vector<GModel*> models;
};

template<typename T>
bool contains(const std::vector<T>& all, const T& one)
{
  return std::find(all.begin(), all.end(), one) != all.end();
}

template<typename T>
void erase(std::vector<T>& all, const T& one)
{
  all.erase(std::remove(all.begin(), all.end(), one), all.end());
}

// --- Both sides
// ------------------------------------------------------------------------------------------------------

/// The library's objects with the account of them. Each operation is done on both sides: first on the
/// account, which says which calls of prop functions must come and whether they end in an exception, and then
/// on the library, whose calls are checked against that.
class World
{
public:
  explicit World(unsigned seed) : mRandom(seed)
  {
    for (auto& prop : mSharedProps) {
      prop = vtkSmartPointer<vtkActor>::New();
    }
    for (std::size_t i = 0; i < kViews; ++i) {
      renew_view(i);
    }
    for (std::size_t i = 0; i < kModels; ++i) {
      renew_model(i);
    }
    for (std::size_t i = 0; i < kSets; ++i) {
      renew_set(i);
    }
    for (auto& data : mData) {
      data = vtkSmartPointer<vtkPolyData>::New();
    }
  }

  void operate();
  void compare();
  void render_one_view();

  [[nodiscard]] const std::string& last_operation() const { return mLast; }
  [[nodiscard]] int num_exceptions() const { return mNumExceptions; }
  [[nodiscard]] std::size_t num_calls() const { return mNumCalls; }

private:
  struct Expected
  {
    Key data;
    GView* view;
    bool fails;
  };

  // --- Chance

  std::size_t below(std::size_t limit)
  {
    return std::uniform_int_distribution<std::size_t>(0, limit - 1)(mRandom);
  }
  bool one_in(std::size_t n) { return below(n) == 0; }

  // Now and then nobody: null arguments do nothing.
  GView* some_view() { return one_in(40) ? nullptr : mViews[below(kViews)].get(); }
  GModel* some_model() { return one_in(40) ? nullptr : mModels[below(kModels)].get(); }
  Key some_data() { return one_in(40) ? nullptr : mData[below(kData)].Get(); }
  std::size_t some_set() { return below(kSets); }
  GModel* this_model() { return mModels[below(kModels)].get(); }

  // --- Doing it on both sides

  template<typename Act>
  void act(const char* name, bool fails, Act&& act);
  Props make_props();
  PartPropFunction function();

  void renew_view(std::size_t i);
  void renew_model(std::size_t i);
  void renew_set(std::size_t i);
  void renew_data(std::size_t i);

  void add_part();
  void remove_part();
  void clear();
  void hook(bool on);
  void add_view_to_model();
  void remove_view_from_model();
  void add_label();
  void remove_label();
  void add_view_to_set();
  void add_model_to_set();
  void remove_view_from_set();
  void remove_model_from_set();
  void link_view();
  void update();

  // --- On the account

  bool account_add_view(GModel* model, GView* view);
  void account_remove_view(GModel* model, GView* view);
  bool account_add_part(GModel* model, Key data, bool fails);
  void account_remove_part(GModel* model, Key data);
  bool account_put_into_set(GModelSet* set, GView* view);
  bool account_put_into_set(GModelSet* set, GModel* model);
  void account_take_out_of_set(GModelSet* set, GView* view);
  void account_take_out_of_set(GModelSet* set, GModel* model);
  GModelSet* set_of(GView* view);
  PropList expect_call(Key data, GView* view);

  std::mt19937 mRandom;

  std::array<vtkSmartPointer<vtkProp>, kSharedProps> mSharedProps;
  std::array<vtkSmartPointer<vtkPolyData>, kData> mData;
  std::array<std::shared_ptr<GView>, kViews> mViews;
  std::array<std::unique_ptr<ScriptedModel>, kModels> mModels;
  std::array<std::unique_ptr<GModelSet>, kSets> mSets;

  std::map<GView*, RendererAccount> mRenderers;
  std::map<GModel*, ModelAccount> mModelAccounts;
  std::map<GModelSet*, SetAccount> mSetAccounts;

  std::vector<Expected> mExpected; // the calls that must come, in order
  std::vector<Props> mPrepared;    // what those that do not fail will return
  std::size_t mNextCall = 0;       // and how many have come
  std::string mLast;
  int mNumExceptions = 0;
  std::size_t mNumCalls = 0;
};

/// Does one operation of the library, of which the account knows already whether it fails.
template<typename Act>
void World::act(const char* name, bool fails, Act&& act)
{
  mLast = name;
  bool has_failed = false;
  try {
    act();
  } catch (const HostError&) {
    has_failed = true;
    ++mNumExceptions;
  }
  EXPECT_EQ(has_failed, fails) << name;
  EXPECT_EQ(mNextCall, mExpected.size()) << name << ": calls of prop functions are missing";
  mNumCalls += mNextCall;
  mExpected.clear();
  mPrepared.clear();
  mNextCall = 0;
}

/// Any number of props, some of them null, some twice, some in other views too.
Props World::make_props()
{
  Props props(below(4));
  for (auto& prop : props) {
    const std::size_t kind = below(8);
    if (kind < 5) {
      prop = flat_square();
    } else if (kind == 5) {
      prop = mSharedProps[below(kSharedProps)];
    } else if (kind == 6) {
      prop = props.front();
    }
  }
  return props;
}

/// Notes on the account that this call must come, and what its function will return.
PropList World::expect_call(Key data, GView* view)
{
  mExpected.push_back({data, view, false});
  mPrepared.push_back(make_props());
  return {mPrepared.back().begin(), mPrepared.back().end()};
}

/// The one function of all parts.
PartPropFunction World::function()
{
  return [this](vtkDataObject* data, GView* view) -> Props {
    if (mNextCall >= mExpected.size()) {
      ADD_FAILURE() << mLast << ": a call of a prop function that must not be";
      return {};
    }
    const std::size_t call = mNextCall++;
    EXPECT_EQ(mExpected[call].data, data);
    EXPECT_EQ(mExpected[call].view, view);
    if (mExpected[call].fails) {
      throw HostError("failing part");
    }
    return std::move(mPrepared[call]);
  };
}

// --- Models on the account
// -------------------------------------------------------------------------------------------

/// False when a part fails; then the view is not connected.
bool World::account_add_view(GModel* model, GView* view)
{
  ModelAccount& account = mModelAccounts[model];
  if (view == nullptr || account.views.count(view) != 0) {
    return true;
  }
  auto& props = account.views[view];
  if (!account.is_hooked) {
    return true;
  }
  for (const auto& [data, fails] : account.parts) {
    props[data] = expect_call(data, view);
    mExpected.back().fails = fails;
    if (fails) {
      props.erase(data);
      account_remove_view(model, view);
      return false;
    }
    mRenderers[view].add(props[data]);
  }
  mRenderers[view].add({account.labels});
  return true;
}

void World::account_remove_view(GModel* model, GView* view)
{
  ModelAccount& account = mModelAccounts[model];
  const auto place = account.views.find(view);
  if (place == account.views.end()) {
    return;
  }
  if (account.is_hooked) {
    for (const auto& [data, props] : place->second) {
      mRenderers[view].remove(props);
    }
    mRenderers[view].remove({account.labels});
  }
  account.views.erase(place);
}

/// False when the function fails for the first view; then there is no such part.
bool World::account_add_part(GModel* model, Key data, bool fails)
{
  ModelAccount& account = mModelAccounts[model];
  if (data == nullptr || account.parts.count(data) != 0) {
    return true;
  }
  account.parts[data] = fails;
  for (auto& [view, props] : account.views) {
    const PropList made = expect_call(data, view);
    mExpected.back().fails = fails;
    if (fails) {
      account_remove_part(model, data);
      return false;
    }
    props[data] = made;
    if (account.is_hooked) {
      mRenderers[view].add(made);
    }
  }
  return true;
}

void World::account_remove_part(GModel* model, Key data)
{
  ModelAccount& account = mModelAccounts[model];
  if (account.parts.erase(data) == 0) {
    return;
  }
  for (auto& [view, props] : account.views) {
    const auto place = props.find(data);
    if (place != props.end()) {
      if (account.is_hooked) {
        mRenderers[view].remove(place->second);
      }
      props.erase(place);
    }
  }
}

// --- Sets on the account
// ---------------------------------------------------------------------------------------------

GModelSet* World::set_of(GView* view)
{
  for (const auto& [set, account] : mSetAccounts) {
    if (contains(account.views, view)) {
      return set;
    }
  }
  return nullptr;
}

bool World::account_put_into_set(GModelSet* set, GView* view)
{
  if (view == nullptr || set_of(view) == set) {
    return true;
  }
  if (GModelSet* before = set_of(view)) {
    account_take_out_of_set(before, view);
  }
  mSetAccounts[set].views.push_back(view);
  for (GModel* model : mSetAccounts[set].models) {
    if (!account_add_view(model, view)) {
      account_take_out_of_set(set, view);
      return false;
    }
  }
  return true;
}

bool World::account_put_into_set(GModelSet* set, GModel* model)
{
  if (model == nullptr || contains(mSetAccounts[set].models, model)) {
    return true;
  }
  mSetAccounts[set].models.push_back(model);
  for (GView* view : mSetAccounts[set].views) {
    if (!account_add_view(model, view)) {
      account_take_out_of_set(set, model);
      return false;
    }
  }
  return true;
}

void World::account_take_out_of_set(GModelSet* set, GView* view)
{
  if (view == nullptr || !contains(mSetAccounts[set].views, view)) {
    return;
  }
  for (GModel* model : mSetAccounts[set].models) {
    account_remove_view(model, view);
  }
  erase(mSetAccounts[set].views, view);
}

void World::account_take_out_of_set(GModelSet* set, GModel* model)
{
  if (model == nullptr || !contains(mSetAccounts[set].models, model)) {
    return;
  }
  for (GView* view : mSetAccounts[set].views) {
    account_remove_view(model, view);
  }
  erase(mSetAccounts[set].models, model);
}

// --- Operations
// ------------------------------------------------------------------------------------------------------

void World::add_part()
{
  GModel* model = this_model();
  const Key data = some_data();
  const bool succeeds = account_add_part(model, data, one_in(12));
  act("add_part", !succeeds, [&] { model->add_part(data, function()); });
}

void World::remove_part()
{
  GModel* model = this_model();
  const Key data = some_data();
  account_remove_part(model, data);
  act("remove_part", false, [&] { model->remove_part(data); });
}

void World::clear()
{
  GModel* model = this_model();
  ModelAccount& account = mModelAccounts[model];
  while (!account.parts.empty()) {
    account_remove_part(model, account.parts.begin()->first);
  }
  account.label_keys.clear();
  act("clear", false, [&] { model->clear(); });
}

void World::hook(bool on)
{
  GModel* model = this_model();
  ModelAccount& account = mModelAccounts[model];
  if (on != account.is_hooked) {
    account.is_hooked = on;
    for (const auto& [view, parts] : account.views) {
      for (const auto& [data, props] : parts) {
        on ? mRenderers[view].add(props) : mRenderers[view].remove(props);
      }
      on ? mRenderers[view].add({account.labels}) : mRenderers[view].remove({account.labels});
    }
  }
  act(on ? "hook_to_views" : "unhook_from_views", false,
      [&] { on ? model->hook_to_views() : model->unhook_from_views(); });
}

void World::add_view_to_model()
{
  GModel* model = this_model();
  GView* view = some_view();
  const bool succeeds = account_add_view(model, view);
  act("GModel::add_view", !succeeds, [&] { model->add_view(view); });
}

void World::remove_view_from_model()
{
  GModel* model = this_model();
  GView* view = some_view();
  account_remove_view(model, view);
  act("GModel::remove_view", false, [&] { model->remove_view(view); });
}

void World::add_label()
{
  GModel* model = this_model();
  act("add_label", false, [&] {
    const int key = model->add_label("x", BrantVector(0.0, 0.0, 0.0), BRANT_BLUE);
    EXPECT_TRUE(mModelAccounts[model].label_keys.insert(key).second) << "a key that is in use";
  });
}

void World::remove_label()
{
  GModel* model = this_model();
  const int key = static_cast<int>(below(20)) - 2;
  mModelAccounts[model].label_keys.erase(key);
  act("remove_label", false, [&] { model->remove_label(key); });
}

void World::add_view_to_set()
{
  GModelSet* set = mSets[some_set()].get();
  GView* view = some_view();
  const bool succeeds = account_put_into_set(set, view);
  act("GModelSet::add_view", !succeeds, [&] { set->add_view(view); });
}

void World::add_model_to_set()
{
  GModelSet* set = mSets[some_set()].get();
  GModel* model = some_model();
  const bool succeeds = account_put_into_set(set, model);
  act("GModelSet::add_model", !succeeds, [&] { set->add_model(model); });
}

void World::remove_view_from_set()
{
  GModelSet* set = mSets[some_set()].get();
  GView* view = some_view();
  account_take_out_of_set(set, view);
  act("GModelSet::remove_view", false, [&] { set->remove_view(view); });
}

void World::remove_model_from_set()
{
  GModelSet* set = mSets[some_set()].get();
  GModel* model = some_model();
  account_take_out_of_set(set, model);
  act("GModelSet::remove_model", false, [&] { set->remove_model(model); });
}

void World::link_view()
{
  GView* view = mViews[below(kViews)].get();
  if (one_in(3)) {
    if (GModelSet* set = set_of(view)) {
      account_take_out_of_set(set, view);
    }
    act("set_model_set(null)", false, [&] { view->set_model_set(nullptr); });
    return;
  }
  GModelSet* set = mSets[some_set()].get();
  const bool succeeds = account_put_into_set(set, view);
  act("set_model_set", !succeeds, [&] { view->set_model_set(set); });
}

void World::update()
{
  GModelSet* set = mSets[some_set()].get();
  std::vector<GModel*> updated;
  std::vector<GModel*> expected;
  for (GModel* model : mSetAccounts[set].models) {
    if (mModelAccounts[model].is_hooked) {
      expected.push_back(model);
    }
  }
  for (const auto& model : mModels) {
    model->on_update = [&updated, one = model.get()] { updated.push_back(one); };
  }
  act("update_model_parts", false, [&] { set->update_model_parts(); });
  EXPECT_EQ(updated, expected);
  for (const auto& model : mModels) {
    model->on_update = nullptr;
  }
}

// --- Ends and beginnings
// ---------------------------------------------------------------------------------------------

void World::renew_view(std::size_t i)
{
  GView* dying = mViews[i].get();
  if (dying != nullptr) {
    for (auto& [set, account] : mSetAccounts) {
      erase(account.views, dying);
    }
    for (auto& [model, account] : mModelAccounts) {
      account.views.erase(dying);
    }
    mRenderers.erase(dying);
  }
  act("~GView", false, [&] { mViews[i].reset(); });
  mViews[i] = make_view(20, 20);
  mRenderers[mViews[i].get()] = {};
}

void World::renew_model(std::size_t i)
{
  GModel* dying = mModels[i].get();
  if (dying != nullptr) {
    auto& views = mModelAccounts[dying].views;
    while (!views.empty()) {
      account_remove_view(dying, views.begin()->first);
    }
    for (auto& [set, account] : mSetAccounts) {
      erase(account.models, dying);
    }
    mModelAccounts.erase(dying);
  }
  act("~GModel", false, [&] { mModels[i].reset(); });
  mModels[i] = std::make_unique<ScriptedModel>();
  mModelAccounts[mModels[i].get()] = {};
  mModelAccounts[mModels[i].get()].labels = label_actor(*mModels[i]);
}

void World::renew_set(std::size_t i)
{
  GModelSet* dying = mSets[i].get();
  if (dying != nullptr) {
    while (!mSetAccounts[dying].views.empty()) {
      account_take_out_of_set(dying, mSetAccounts[dying].views.front());
    }
    mSetAccounts.erase(dying);
  }
  act("~GModelSet", false, [&] { mSets[i].reset(); });
  mSets[i] = std::make_unique<GModelSet>();
  mSetAccounts[mSets[i].get()] = {};
}

/// The host lets go of a data object. It lives on as long as it is a part somewhere, which ends here for all
/// models but one: the last reference is a model's.
void World::renew_data(std::size_t i)
{
  const vtkWeakPointer<vtkPolyData> dying(mData[i]);
  GModel* last = nullptr;
  for (const auto& [model, account] : mModelAccounts) {
    last = account.parts.count(dying) != 0 ? model : last;
  }
  mData[i] = nullptr;
  for (const auto& model : mModels) {
    if (last != nullptr && model.get() != last) {
      account_remove_part(model.get(), dying);
      model->remove_part(dying);
    }
  }
  if (last != nullptr) {
    EXPECT_EQ(dying->GetReferenceCount(), 1);
    account_remove_part(last, dying);
    last->remove_part(dying);
  }
  EXPECT_EQ(dying, nullptr);
  mData[i] = vtkSmartPointer<vtkPolyData>::New();
  mLast = "renew_data";
}

void World::operate()
{
  const std::size_t choice = below(1000);
  if (choice < 210) {
    add_part();
  } else if (choice < 340) {
    remove_part();
  } else if (choice < 360) {
    clear();
  } else if (choice < 420) {
    hook(false);
  } else if (choice < 520) {
    hook(true);
  } else if (choice < 570) {
    add_view_to_model();
  } else if (choice < 610) {
    remove_view_from_model();
  } else if (choice < 650) {
    add_label();
  } else if (choice < 690) {
    remove_label();
  } else if (choice < 760) {
    add_view_to_set();
  } else if (choice < 820) {
    add_model_to_set();
  } else if (choice < 860) {
    remove_view_from_set();
  } else if (choice < 890) {
    remove_model_from_set();
  } else if (choice < 940) {
    link_view();
  } else if (choice < 965) {
    update();
  } else if (choice < 980) {
    renew_data(below(kData));
  } else if (choice < 988) {
    renew_view(below(kViews));
  } else if (choice < 994) {
    renew_model(below(kModels));
  } else {
    renew_set(below(kSets));
  }
}

// --- Comparing
// -------------------------------------------------------------------------------------------------------

void World::compare()
{
  for (const auto& set : mSets) {
    ASSERT_EQ(set->views(), mSetAccounts[set.get()].views);
    ASSERT_EQ(set->models(), mSetAccounts[set.get()].models);
  }
  for (const auto& view : mViews) {
    ASSERT_EQ(view->get_model_set(), set_of(view.get()));
    ASSERT_EQ(shown(*view), mRenderers[view.get()].list());
  }
  for (const auto& data : mData) {
    int references = 1;
    for (const auto& [model, account] : mModelAccounts) {
      references += account.parts.count(data) != 0 ? 1 : 0;
    }
    ASSERT_EQ(data->GetReferenceCount(), references);
  }
  for (const auto& model : mModels) {
    const ModelAccount& account = mModelAccounts[model.get()];
    ASSERT_EQ(model->is_hooked_to_views(), account.is_hooked);
    const auto* labels = GLabelMapper::SafeDownCast(vtkActor2D::SafeDownCast(account.labels)->GetMapper());
    ASSERT_EQ(labels->size(), account.label_keys.size());
  }
  ASSERT_NE(GModel::text_property(), nullptr);
  ASSERT_FALSE(::testing::Test::HasFailure()) << mLast;
}

/// A frame shows a red square exactly when a prop is shown that draws one.
void World::render_one_view()
{
  GView* view = mViews[below(kViews)].get();
  const PropList& list = mRenderers[view].list();
  const bool has_square = std::any_of(list.begin(), list.end(), [this](vtkProp* prop) {
    return !is_label_actor(prop) &&
           !contains({mSharedProps.begin(), mSharedProps.end()}, vtkSmartPointer(prop));
  });
  const Image image = picture(*view);
  EXPECT_EQ(count_pixels(image, colour_is_not(kBlack)) >= 10 * 10, has_square);
}

// --- The tests
// -------------------------------------------------------------------------------------------------------

class RandomSequenceTest : public ViewRenderTest, public ::testing::WithParamInterface<unsigned>
{};

INSTANTIATE_TEST_SUITE_P(Seeds, RandomSequenceTest, ::testing::Values(1U, 2U, 3U, 4U));

TEST_P(RandomSequenceTest, EverythingIsWhereItMustBe)
{
  World world(GetParam());
  for (int operation = 0; operation < kOperations; ++operation) {
    world.operate();
    world.compare();
    ASSERT_FALSE(HasFailure()) << "operation " << operation << ", " << world.last_operation();
    if (operation % kOperationsToAFrame == 0) {
      world.render_one_view();
    }
  }
  // The mixture must keep reaching what is to be tested.
  EXPECT_GT(world.num_calls(), 1000U);
  EXPECT_GT(world.num_exceptions(), 50);
}

} // namespace
