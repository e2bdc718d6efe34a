// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "PropList.h"

#include "TestSupport.h"

#include <gtest/gtest.h>

#include <vtkNew.h>
#include <vtkObjectFactory.h>
#include <vtkProp.h>
#include <vtkPropCollection.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>

#include <algorithm>
#include <ctime>
#include <functional>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using morrow_test::props_of;
using Props = morrow::PropList::Props;

/// A prop that tells when it is asked to let its graphics resources go.
class ToldProp : public vtkProp
{
public:
  static ToldProp* New();
  vtkTypeMacro(ToldProp, vtkProp)
  ToldProp(const ToldProp&) = delete;
  void operator=(const ToldProp&) = delete;

  void ReleaseGraphicsResources(vtkWindow* window) override
  {
    if (mOnRelease) {
      mOnRelease(window);
    }
  }

  std::function<void(vtkWindow*)> mOnRelease;

protected:
  ToldProp() = default;
  ~ToldProp() override = default;
};

vtkStandardNewMacro(ToldProp)

Props make_props(std::size_t count)
{
  Props props;
  for (std::size_t i = 0; i < count; ++i) {
    props.emplace_back(vtkSmartPointer<ToldProp>::New());
  }
  return props;
}

std::vector<vtkProp*> plain(const Props& props)
{
  return {props.begin(), props.end()};
}

class PropListTest : public ::testing::Test
{
protected:
  vtkNew<vtkRenderer> mRenderer;
  morrow::PropList mList{*mRenderer};
};

// ---------------------------------------------------------------------------------------------------------
// One list

TEST_F(PropListTest, AddsInVectorOrder)
{
  const Props props = make_props(3);
  mList.add({props[2], props[0]});
  mList.add({props[1]});
  EXPECT_EQ(props_of(mRenderer), (std::vector<vtkProp*>{props[2], props[0], props[1]}));
}

TEST_F(PropListTest, EmptyVectorsDoNothing)
{
  mList.add({});
  mList.remove({});
  EXPECT_TRUE(props_of(mRenderer).empty());
}

TEST_F(PropListTest, PassesOverNullAndRepeatedProps)
{
  const Props props = make_props(2);
  mList.add({nullptr, props[0], props[0], nullptr, props[1], props[0]});
  EXPECT_EQ(props_of(mRenderer), plain(props));
  mList.add({props[1], props[0]});
  EXPECT_EQ(props_of(mRenderer), plain(props));
  mList.remove({nullptr, props[0], props[0], nullptr});
  EXPECT_EQ(props_of(mRenderer), std::vector<vtkProp*>{props[1]});
}

TEST_F(PropListTest, PassesOverAbsentProps)
{
  const Props props = make_props(3);
  mList.remove(props);
  mList.add({props[1]});
  mList.remove({props[0], props[2]});
  EXPECT_EQ(props_of(mRenderer), std::vector<vtkProp*>{props[1]});
}

TEST_F(PropListTest, KeepsTheOrderOfThoseThatStay)
{
  // Few removals and many take different ways.
  for (const std::size_t count : {6U, 60U, 600U}) {
    const Props props = make_props(count);
    mList.add(props);
    Props odd;
    std::vector<vtkProp*> even;
    for (std::size_t i = 0; i < count; ++i) {
      i % 2 != 0 ? odd.push_back(props[i]) : even.push_back(props[i]);
    }
    mList.remove(odd);
    EXPECT_EQ(props_of(mRenderer), even);
    mList.remove(props);
    EXPECT_TRUE(props_of(mRenderer).empty());
  }
}

TEST_F(PropListTest, HoldsOneReferenceForEachProp)
{
  const Props props = make_props(100);
  mList.add(props);
  mList.add(props);
  for (const auto& prop : props) {
    ASSERT_EQ(prop->GetReferenceCount(), 2);
  }
  mList.remove(Props(props.begin() + 50, props.end()));
  for (std::size_t i = 0; i < 50; ++i) {
    ASSERT_EQ(props[i]->GetReferenceCount(), 2);
    ASSERT_EQ(props[i + 50]->GetReferenceCount(), 1);
  }
}

TEST_F(PropListTest, TheRendererIsAConsumerOfItsProps)
{
  const vtkNew<vtkRenderer> other;
  const Props props = make_props(40);
  props[3]->AddConsumer(other);
  mList.add(props);
  EXPECT_EQ(props[0]->GetNumberOfConsumers(), 1);
  EXPECT_EQ(props[0]->GetConsumer(0), mRenderer.Get());
  EXPECT_EQ(props[3]->GetNumberOfConsumers(), 2);
  mList.remove(props);
  EXPECT_EQ(props[0]->GetNumberOfConsumers(), 0);
  EXPECT_EQ(props[3]->GetNumberOfConsumers(), 1);
  EXPECT_EQ(props[3]->GetConsumer(0), other.Get());
}

// A prop that leaves by accident, and comes back, would lose its graphics resources.
TEST(PropListReleaseTest, OnlyTheRemovedLetGoOfTheirResourcesAndInVectorOrder)
{
  for (const std::size_t count : {3U, 50U}) {
    std::vector<std::size_t> released;
    const vtkNew<vtkRenderer> renderer;
    morrow::PropList list(*renderer);
    const Props props = make_props(count + 20);
    for (std::size_t i = 0; i < props.size(); ++i) {
      ToldProp::SafeDownCast(props[i])->mOnRelease = [&, i](vtkWindow*) { released.push_back(i); };
    }
    list.add(props);
    Props leaving;
    std::vector<std::size_t> expected;
    for (std::size_t i = count; i > 0; --i) {
      leaving.push_back(props[i]);
      expected.push_back(i);
    }
    list.remove(leaving);
    EXPECT_EQ(released, expected);
  }
}

TEST(PropListReleaseTest, ResourcesAreReleasedForTheRenderersWindow)
{
  std::vector<vtkWindow*> windows;
  const vtkNew<vtkRenderer> renderer;
  morrow::PropList list(*renderer);
  const vtkNew<vtkRenderWindow> window;
  window->AddRenderer(renderer);
  const Props props = make_props(1);
  ToldProp::SafeDownCast(props[0])->mOnRelease = [&](vtkWindow* w) { windows.push_back(w); };
  list.add(props);
  list.remove(props);
  EXPECT_EQ(windows, std::vector<vtkWindow*>{window});
}

// ---------------------------------------------------------------------------------------------------------
// Changes behind its back

TEST_F(PropListTest, SeesWhatOthersAddToTheRenderer)
{
  const Props props = make_props(2);
  mList.add({props[0]});
  mRenderer->AddViewProp(props[1]);
  mList.add({props[1]});
  EXPECT_EQ(props_of(mRenderer), plain(props));
  mList.remove(props);
  EXPECT_TRUE(props_of(mRenderer).empty());
}

TEST_F(PropListTest, SeesWhatOthersTakeFromTheRenderer)
{
  const Props props = make_props(2);
  mList.add(props);
  mRenderer->RemoveViewProp(props[0]);
  mList.add(props);
  EXPECT_EQ(props_of(mRenderer), (std::vector<vtkProp*>{props[1], props[0]}));
  mRenderer->RemoveAllViewProps();
  mList.remove(props); // nothing to remove
  mList.add(props);
  EXPECT_EQ(props_of(mRenderer), plain(props));
}

// The number of props is the same before and after.
TEST_F(PropListTest, SeesThatOthersHaveExchangedAProp)
{
  const Props props = make_props(2);
  mList.add({props[0]});
  mRenderer->RemoveViewProp(props[0]);
  mRenderer->AddViewProp(props[1]);
  mList.add({props[0]});
  EXPECT_EQ(props_of(mRenderer), (std::vector<vtkProp*>{props[1], props[0]}));
}

TEST_F(PropListTest, KnowsThePropsThatWereThereFirst)
{
  const Props props = make_props(30);
  for (const auto& prop : props) {
    mRenderer->AddViewProp(prop);
  }
  morrow::PropList late(*mRenderer);
  late.add({props[7]});
  EXPECT_EQ(props_of(mRenderer), plain(props));
  late.remove(props);
  EXPECT_TRUE(props_of(mRenderer).empty());
}

TEST_F(PropListTest, TwoListsOfOneRendererDoNotConfuseEachOther)
{
  morrow::PropList second(*mRenderer);
  const Props props = make_props(3);
  mList.add({props[0]});
  second.add({props[0], props[1]});
  mList.remove({props[1]});
  second.add({props[1], props[2]});
  EXPECT_EQ(props_of(mRenderer), plain(props));
}

// A new prop gets the address of one that is gone.
TEST_F(PropListTest, AnAddressUsedAgainIsAnotherProp)
{
  vtkProp* const gone = [&] {
    const Props props = make_props(1);
    mList.add(props);
    mRenderer->RemoveViewProp(props[0]);
    return props[0].Get();
  }();
  Props others;
  while (others.size() < 1000 && (others.empty() || others.back() != gone)) {
    others.emplace_back(vtkSmartPointer<ToldProp>::New());
  }
  mList.add({others.back()}); // mostly the address that is gone; any other one does no harm
  EXPECT_EQ(props_of(mRenderer), std::vector<vtkProp*>{others.back()});
}

// ---------------------------------------------------------------------------------------------------------
// Props that act while they leave

/// What happens to the renderer when a prop, as it leaves, does something there: through VTK's own calls and
/// through the list, with few props and with many.
class LeavingPropTest : public ::testing::TestWithParam<std::size_t>
{
protected:
  struct Side
  {
    vtkNew<vtkRenderer> renderer;
    morrow::PropList list{*renderer};
    Props props;
    Props more;
  };
  using Act = std::function<void(Side&)>;

  static void set_up(Side& side, const Act& act)
  {
    side.props = make_props(GetParam());
    side.more = make_props(3);
    for (const auto& prop : side.props) {
      side.renderer->AddViewProp(prop);
    }
    side.renderer->AddViewProp(side.more[0]);
    ToldProp::SafeDownCast(side.props[1])->mOnRelease = [&side, act](vtkWindow*) { act(side); };
  }

  static std::vector<std::string> names_in(Side& side)
  {
    std::vector<std::string> names;
    for (vtkProp* prop : props_of(side.renderer)) {
      const auto place = std::find(side.props.begin(), side.props.end(), prop);
      const auto more = std::find(side.more.begin(), side.more.end(), prop);
      names.push_back(place != side.props.end() ? "prop " + std::to_string(place - side.props.begin())
                                                : "more " + std::to_string(more - side.more.begin()));
    }
    return names;
  }

  void expect_as_vtk(const Act& act)
  {
    set_up(mVtk, act);
    set_up(mOurs, act);
    for (const auto& prop : mVtk.props) {
      mVtk.renderer->RemoveViewProp(prop);
    }
    mOurs.list.remove(mOurs.props);
    EXPECT_EQ(names_in(mOurs), names_in(mVtk));
    add_and_remove_all();
  }

  // Whatever the list believes now must be true.
  void add_and_remove_all()
  {
    ToldProp::SafeDownCast(mVtk.props[1])->mOnRelease = nullptr;
    ToldProp::SafeDownCast(mOurs.props[1])->mOnRelease = nullptr;
    for (const Props* props : {&mVtk.props, &mVtk.more}) {
      for (const auto& prop : *props) {
        mVtk.renderer->AddViewProp(prop);
      }
    }
    mOurs.list.add(mOurs.props);
    mOurs.list.add(mOurs.more);
    EXPECT_EQ(names_in(mOurs), names_in(mVtk));
    mOurs.list.remove(mOurs.props);
    mOurs.list.remove(mOurs.more);
    EXPECT_TRUE(names_in(mOurs).empty());
  }

  Side mVtk;
  Side mOurs;
};

TEST_P(LeavingPropTest, ItMayRemoveAnotherOneFromTheRenderer)
{
  expect_as_vtk([](Side& side) { side.renderer->RemoveViewProp(side.more[0]); });
}

TEST_P(LeavingPropTest, ItMayAddAnotherOneToTheRenderer)
{
  expect_as_vtk([](Side& side) { side.renderer->AddViewProp(side.more[1]); });
}

TEST_P(LeavingPropTest, ItMayExchangeOthersInTheRenderer)
{
  expect_as_vtk([](Side& side) {
    side.renderer->RemoveViewProp(side.more[0]);
    side.renderer->AddViewProp(side.more[1]);
  });
}

TEST_P(LeavingPropTest, ItMayRemoveOneThatIsAboutToLeave)
{
  expect_as_vtk([](Side& side) { side.renderer->RemoveViewProp(side.props.back()); });
}

TEST_P(LeavingPropTest, ItMayUseTheListItself)
{
  expect_as_vtk([](Side& side) {
    side.list.remove({side.more[0]});
    side.list.add({side.more[1], side.more[2]});
  });
}

TEST_P(LeavingPropTest, WhatItThrowsLeavesTheListUsable)
{
  const auto throw_something = [](Side&) { throw std::runtime_error("no"); };
  set_up(mVtk, [](Side&) {});
  set_up(mOurs, throw_something);
  EXPECT_THROW(mOurs.list.remove(mOurs.props), std::runtime_error);
  // How far the removal got is open; afterwards it can be completed, with the right outcome.
  ToldProp::SafeDownCast(mOurs.props[1])->mOnRelease = nullptr;
  mOurs.list.remove(mOurs.props);
  EXPECT_EQ(names_in(mOurs), std::vector<std::string>{"more 0"});
  for (const auto& prop : mOurs.props) {
    ASSERT_EQ(prop->GetNumberOfConsumers(), 0);
    ASSERT_EQ(prop->GetReferenceCount(), 1);
  }
  for (const auto& prop : mVtk.props) {
    mVtk.renderer->RemoveViewProp(prop);
  }
  add_and_remove_all();
}

INSTANTIATE_TEST_SUITE_P(FewAndMany, LeavingPropTest, ::testing::Values(4U, 40U));

// ---------------------------------------------------------------------------------------------------------
// Against VTK's own calls

/// Two renderers with a prop of each number: one gets VTK's own calls, literally, the other the same requests
/// through a list. All that can be seen from outside must be equal at any time.
class Twins
{
public:
  static constexpr std::size_t NumProps = 150;
  using Numbers = std::vector<int>; // -1 is a null prop

  Twins()
  {
    for (Side* side : {&mVtk, &mOurs}) {
      side->props = make_props(NumProps);
      for (std::size_t i = 0; i < NumProps; ++i) {
        ToldProp::SafeDownCast(side->props[i])->mOnRelease = [=](vtkWindow* window) {
          side->released.push_back(static_cast<int>(i));
          side->wrong_windows += window != side->renderer->GetVTKWindow() ? 1 : 0;
        };
        if (i % 7 == 0) {
          side->props[i]->AddConsumer(mOther); // as one that another renderer shows
        }
      }
    }
  }

  ~Twins()
  {
    for (Side* side : {&mVtk, &mOurs}) {
      for (const auto& prop : side->props) {
        ToldProp::SafeDownCast(prop)->mOnRelease = nullptr; // a dying window releases once more
      }
    }
  }
  Twins(const Twins&) = delete;
  Twins& operator=(const Twins&) = delete;

  void add(const Numbers& numbers)
  {
    for (const int number : numbers) {
      mVtk.renderer->AddViewProp(mVtk.prop(number));
    }
    mOurs.list.add(mOurs.chosen(numbers));
  }

  void remove(const Numbers& numbers)
  {
    for (const int number : numbers) {
      mVtk.renderer->RemoveViewProp(mVtk.prop(number));
    }
    mOurs.list.remove(mOurs.chosen(numbers));
  }

  // The same thing at both renderers, past the list.
  template<typename Change>
  void directly(Change&& change)
  {
    change(mVtk.renderer.Get(), mVtk.props);
    change(mOurs.renderer.Get(), mOurs.props);
  }

  void enter_or_leave_window()
  {
    for (Side* side : {&mVtk, &mOurs}) {
      if (side->renderer->GetVTKWindow() != nullptr) {
        side->renderer->SetRenderWindow(nullptr);
        side->window->RemoveRenderer(side->renderer);
      } else {
        side->window->AddRenderer(side->renderer);
      }
    }
  }

  void compare() const
  {
    ASSERT_EQ(mOurs.numbers_shown(), mVtk.numbers_shown());
    ASSERT_EQ(mOurs.released, mVtk.released);
    ASSERT_EQ(mOurs.wrong_windows, 0);
    for (std::size_t i = 0; i < NumProps; ++i) {
      ASSERT_EQ(mOurs.props[i]->GetReferenceCount(), mVtk.props[i]->GetReferenceCount()) << i;
      ASSERT_EQ(mOurs.consumers_of(i), mVtk.consumers_of(i)) << i;
    }
  }

private:
  struct Side
  {
    vtkNew<vtkRenderWindow> window;
    vtkNew<vtkRenderer> renderer;
    morrow::PropList list{*renderer};
    Props props;
    Numbers released;
    int wrong_windows = 0;

    [[nodiscard]] vtkProp* prop(int number) const
    {
      return number < 0 ? nullptr : props[static_cast<std::size_t>(number)].Get();
    }

    [[nodiscard]] Props chosen(const Numbers& numbers) const
    {
      Props chosen;
      for (const int number : numbers) {
        chosen.emplace_back(prop(number));
      }
      return chosen;
    }

    [[nodiscard]] Numbers numbers_shown() const
    {
      Numbers numbers;
      for (vtkProp* shown : props_of(renderer)) {
        numbers.push_back(static_cast<int>(std::find(props.begin(), props.end(), shown) - props.begin()));
      }
      return numbers;
    }

    [[nodiscard]] std::vector<bool> consumers_of(std::size_t i) const
    {
      std::vector<bool> is_own_renderer;
      for (int c = 0; c < props[i]->GetNumberOfConsumers(); ++c) {
        is_own_renderer.push_back(props[i]->GetConsumer(c) == renderer.Get());
      }
      return is_own_renderer;
    }
  };

  vtkNew<vtkRenderer> mOther;
  Side mVtk;
  Side mOurs;
};

class PropListRandomTest : public ::testing::TestWithParam<unsigned>
{
protected:
  std::size_t below(std::size_t limit)
  {
    return std::uniform_int_distribution<std::size_t>(0, limit - 1)(mRandom);
  }

  // Any numbers, some null, some more than once.
  Twins::Numbers some_numbers()
  {
    constexpr std::size_t sizes[] = {0, 1, 1, 2, 16, 17, 40, 200};
    Twins::Numbers numbers(below(sizes[below(std::size(sizes))] + 1));
    for (int& number : numbers) {
      number = static_cast<int>(below(Twins::NumProps + 5)) - 5;
      number = std::max(number, -1);
    }
    return numbers;
  }

  void act_directly(Twins& twins)
  {
    const std::size_t i = below(Twins::NumProps);
    switch (below(20)) {
    case 0:
      twins.directly([](vtkRenderer* renderer, const Props&) { renderer->RemoveAllViewProps(); });
      break;
    case 1:
      twins.enter_or_leave_window();
      break;
    case 2: // as many as before
      twins.directly([=](vtkRenderer* renderer, const Props& props) {
        renderer->RemoveViewProp(renderer->GetViewProps()->GetLastProp());
        renderer->AddViewProp(props[i]);
      });
      break;
    default:
      twins.directly([=](vtkRenderer* renderer, const Props& props) {
        renderer->HasViewProp(props[i]) != 0 ? renderer->RemoveViewProp(props[i])
                                             : renderer->AddViewProp(props[i]);
      });
    }
  }

  std::mt19937 mRandom{GetParam()};
};

TEST_P(PropListRandomTest, TheOutcomeIsThatOfVtksOwnCalls)
{
  Twins twins;
  for (int operation = 0; operation < 3000; ++operation) {
    const std::size_t choice = below(10);
    if (choice < 4) {
      twins.add(some_numbers());
    } else if (choice < 8) {
      twins.remove(some_numbers());
    } else {
      act_directly(twins);
    }
    twins.compare();
    ASSERT_FALSE(HasFatalFailure()) << "operation " << operation;
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, PropListRandomTest, ::testing::Values(1U, 2U, 3U));

// ---------------------------------------------------------------------------------------------------------
// Cost

/// How the processor time of a call grows from 1,000 to 16,000 props: by 16 when it is proportional to their
/// number, by 256 when each prop is searched for among all.
class PropListGrowthTest : public ::testing::Test
{
protected:
  static constexpr double Bound = 64.0;

  using Timed = std::function<void(morrow::PropList&, const Props&)>;

  static double least_time(std::size_t count, const Timed& prepare, const Timed& timed)
  {
    const Props props = make_props(count);
    std::clock_t least = 0;
    for (int round = 0; round < 5; ++round) {
      const vtkNew<vtkRenderer> renderer;
      morrow::PropList list(*renderer);
      prepare(list, props);
      const std::clock_t start = std::clock();
      timed(list, props);
      const std::clock_t time = std::clock() - start;
      least = round == 0 ? time : std::min(least, time);
    }
    return static_cast<double>(std::max<std::clock_t>(least, 1));
  }

  static double growth(const Timed& prepare, const Timed& timed)
  {
    const double many = least_time(16'000, prepare, timed);
    return many / least_time(1'000, prepare, timed);
  }

  static void nothing(morrow::PropList& /*list*/, const Props& /*props*/) {}
  static void add(morrow::PropList& list, const Props& props) { list.add(props); }
};

TEST_F(PropListGrowthTest, AddingIsLinear)
{
  EXPECT_LT(growth(nothing, add), Bound);
}

TEST_F(PropListGrowthTest, AddingOneByOneIsLinear)
{
  const auto add_each = [](morrow::PropList& list, const Props& props) {
    for (const auto& prop : props) {
      list.add({prop});
    }
  };
  EXPECT_LT(growth(nothing, add_each), Bound);
}

TEST_F(PropListGrowthTest, AddingWhatIsThereIsLinear)
{
  EXPECT_LT(growth(add, add), Bound);
}

TEST_F(PropListGrowthTest, RemovingAllIsLinearInAnyOrder)
{
  const auto remove_backwards = [](morrow::PropList& list, const Props& props) {
    list.remove(Props(props.rbegin(), props.rend()));
  };
  const auto remove_shuffled = [](morrow::PropList& list, const Props& props) {
    Props shuffled = props;
    std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937(1));
    list.remove(shuffled);
  };
  EXPECT_LT(growth(add, [](morrow::PropList& list, const Props& props) { list.remove(props); }), Bound);
  EXPECT_LT(growth(add, remove_backwards), Bound);
  EXPECT_LT(growth(add, remove_shuffled), Bound);
}

TEST_F(PropListGrowthTest, RemovingHalfIsLinear)
{
  const auto remove_second_half = [](morrow::PropList& list, const Props& props) {
    const auto half = static_cast<std::ptrdiff_t>(props.size() / 2);
    list.remove(Props(props.rbegin(), props.rbegin() + half));
  };
  EXPECT_LT(growth(add, remove_second_half), Bound);
}

} // namespace
