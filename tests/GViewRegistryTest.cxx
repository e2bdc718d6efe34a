// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// Ids, names and titles of views, and the registry of the views that the host wants to be reachable.
#include "GView.h"

#include "ViewFixture.h"

#include <X11/Xlib.h>

#include <climits>
#include <string>

namespace {

using namespace morrow_test;

using ViewPointer = std::shared_ptr<GView>;

ViewPointer registered_view()
{
  auto view = std::make_shared<GView>();
  GView::add_global_view(view);
  return view;
}

ViewPointer registered_view_with_id(int id)
{
  auto view = registered_view();
  view->set_id(id);
  return view;
}

std::string title_of(const GView& view)
{
  const char* title = view.get_render_window()->GetWindowName();
  return title != nullptr ? title : "(null)";
}

// --- Ids
// ----------------------------------------------------------------------------------------------------------

using ViewIdTest = ViewTest;

TEST_F(ViewIdTest, TheFirstViewGets1AndTheNextOnesTheSmallestFreeOne)
{
  const auto first = registered_view();
  const auto second = registered_view();
  const auto third = registered_view();
  EXPECT_EQ(first->get_id(), 1);
  EXPECT_EQ(second->get_id(), 2);
  EXPECT_EQ(third->get_id(), 3);
  GView::remove_global_view(second);
  EXPECT_EQ(GView().get_id(), 2);
  EXPECT_EQ(registered_view()->get_id(), 2);
  EXPECT_EQ(registered_view()->get_id(), 4);
}

// A view that is not registered does not occupy its id.
TEST_F(ViewIdTest, OnlyRegisteredViewsCount)
{
  const GView a;
  const GView b;
  EXPECT_EQ(a.get_id(), 1);
  EXPECT_EQ(b.get_id(), 1);
  EXPECT_EQ(GView::get_available_id(1), 1);
}

TEST_F(ViewIdTest, IsTheSmallestFreeOneAtOrAboveTheWantedOne)
{
  registered_view_with_id(2);
  EXPECT_EQ(GView::get_available_id(1), 1);
  EXPECT_EQ(GView::get_available_id(2), 3);
  EXPECT_EQ(GView::get_available_id(3), 3);
  EXPECT_EQ(GView::get_available_id(100), 100);
  registered_view_with_id(3);
  registered_view_with_id(5);
  EXPECT_EQ(GView::get_available_id(2), 4);
  EXPECT_EQ(GView::get_available_id(5), 6);
}

TEST_F(ViewIdTest, CountsAWantedOneBelow1As1)
{
  for (const int wanted : {0, -1, -100, INT_MIN}) {
    EXPECT_EQ(GView::get_available_id(wanted), 1) << wanted;
  }
  registered_view_with_id(1);
  for (const int wanted : {0, -1, -100, INT_MIN}) {
    EXPECT_EQ(GView::get_available_id(wanted), 2) << wanted;
  }
}

TEST_F(ViewIdTest, ComesFromBelowWhenAllAboveAreTaken)
{
  EXPECT_EQ(GView::get_available_id(INT_MAX), INT_MAX);
  registered_view_with_id(INT_MAX);
  EXPECT_EQ(GView::get_available_id(INT_MAX), 1);
  registered_view_with_id(INT_MAX - 1);
  registered_view_with_id(1);
  EXPECT_EQ(GView::get_available_id(INT_MAX - 1), 2);
}

TEST_F(ViewIdTest, IsNotTakenByAskingForIt)
{
  EXPECT_EQ(GView::get_available_id(7), 7);
  EXPECT_EQ(GView::get_available_id(7), 7);
}

TEST_F(ViewIdTest, MayBeAnyNumberAndTheOneOfAnotherView)
{
  const auto a = registered_view();
  const auto b = registered_view();
  for (const int id : {0, -1, INT_MIN, INT_MAX, a->get_id()}) {
    b->set_id(id);
    EXPECT_EQ(b->get_id(), id);
  }
  EXPECT_EQ(a->get_id(), b->get_id());
  EXPECT_EQ(GView::get_available_id(1), 2); // both have 1
}

TEST_F(ViewIdTest, NegativeAndZeroOnesAreNeverGivenOut)
{
  registered_view_with_id(-5);
  registered_view_with_id(0);
  EXPECT_EQ(GView::get_available_id(-5), 1);
}

TEST_F(ViewIdTest, FindsTheViewThatHasIt)
{
  const auto a = registered_view_with_id(7);
  const auto b = registered_view_with_id(-7);
  EXPECT_EQ(GView::find_view_by_id(7), a);
  EXPECT_EQ(GView::find_view_by_id(-7), b);
  EXPECT_EQ(GView::find_view_by_id(8), nullptr);
  a->set_id(8);
  EXPECT_EQ(GView::find_view_by_id(7), nullptr);
  EXPECT_EQ(GView::find_view_by_id(8), a);
}

TEST_F(ViewIdTest, OfSeveralViewsFindsTheFirstInRegistryOrder)
{
  for (int i = 0; i < 5; ++i) {
    registered_view_with_id(3);
  }
  EXPECT_EQ(GView::find_view_by_id(3), *GView::all_views().begin());
}

TEST_F(ViewIdTest, FindsNoViewThatIsNotRegistered)
{
  GView view;
  view.set_id(7);
  EXPECT_EQ(GView::find_view_by_id(7), nullptr);
}

// What is found is a share: the view stays while the finder needs it.
TEST_F(ViewIdTest, FindingSharesTheView)
{
  registered_view_with_id(7);
  const ViewPointer found = GView::find_view_by_id(7);
  GView::remove_global_view(found);
  EXPECT_EQ(found.use_count(), 1);
  EXPECT_EQ(found->get_id(), 7);
}

// --- Names
// --------------------------------------------------------------------------------------------------------

using ViewNameTest = ViewTest;

TEST_F(ViewNameTest, IsHandedOutByReference)
{
  GView view;
  const std::string& name = view.get_name();
  view.set_name("side");
  EXPECT_EQ(name, "side");
  EXPECT_EQ(&name, &view.get_name());
}

TEST_F(ViewNameTest, MayBeAnyBytes)
{
  GView view;
  const std::string any("a\0\xFF %s##\n", 9);
  view.set_name(any);
  EXPECT_EQ(view.get_name(), any);
  view.set_name("");
  EXPECT_EQ(view.get_name(), "");
}

TEST_F(ViewNameTest, FindsTheViewThatHasExactlyIt)
{
  const auto a = registered_view();
  a->set_name("side");
  const auto b = registered_view();
  b->set_name(std::string("side\0x", 6));
  EXPECT_EQ(GView::find_view_by_name("side"), a.get());
  EXPECT_EQ(GView::find_view_by_name(std::string("side\0x", 6)), b.get());
  for (const char* other : {"Side", "side ", "sid", "", "sidee"}) {
    EXPECT_EQ(GView::find_view_by_name(other), nullptr) << other;
  }
}

TEST_F(ViewNameTest, AnEmptyOneIsAName)
{
  const auto view = registered_view();
  EXPECT_EQ(GView::find_view_by_name(""), view.get());
}

TEST_F(ViewNameTest, OfSeveralViewsFindsTheFirstInRegistryOrder)
{
  for (int i = 0; i < 5; ++i) {
    registered_view()->set_name("twin");
  }
  EXPECT_EQ(GView::find_view_by_name("twin"), GView::all_views().begin()->get());
}

TEST_F(ViewNameTest, FindsNoViewThatIsNotRegistered)
{
  GView view;
  view.set_name("side");
  EXPECT_EQ(GView::find_view_by_name("side"), nullptr);
}

TEST_F(ViewNameTest, IsNotTheTitle)
{
  GView view;
  view.set_name("side");
  EXPECT_EQ(title_of(view), "Brant (-1)");
}

// --- Registry
// -----------------------------------------------------------------------------------------------------

using ViewRegistryTest = ViewTest;

TEST_F(ViewRegistryTest, HoldsAShareInEachView)
{
  auto view = std::make_shared<GView>();
  const auto handle = view->handle();
  GView::add_global_view(view);
  EXPECT_EQ(view.use_count(), 2);
  view.reset();
  EXPECT_NE(*handle, nullptr);
  GView::remove_global_view(*GView::all_views().begin());
  EXPECT_EQ(*handle, nullptr);
}

TEST_F(ViewRegistryTest, IsOrderedByAddress)
{
  for (int i = 0; i < 8; ++i) {
    registered_view();
  }
  ASSERT_EQ(GView::all_views().size(), 8U);
  const GView* last = nullptr;
  for (const auto& view : GView::all_views()) {
    EXPECT_LT(last, view.get());
    last = view.get();
  }
}

TEST_F(ViewRegistryTest, IsTheOneAndOnly)
{
  const GView::Registry& views = GView::all_views();
  const auto view = registered_view();
  EXPECT_EQ(&GView::all_views(), &views);
  EXPECT_EQ(views.count(view), 1U);
}

TEST_F(ViewRegistryTest, TakesAViewOnce)
{
  const auto view = registered_view();
  GView::add_global_view(view);
  EXPECT_EQ(GView::all_views().size(), 1U);
  EXPECT_EQ(view.use_count(), 2);
}

TEST_F(ViewRegistryTest, PassesOverNull)
{
  const auto view = registered_view();
  GView::add_global_view(nullptr);
  GView::remove_global_view(nullptr);
  EXPECT_EQ(GView::all_views().size(), 1U);
  EXPECT_EQ(GView::get_current_view(), view.get());
}

TEST_F(ViewRegistryTest, RemovingAnAbsentViewDoesNothing)
{
  const auto view = registered_view();
  const auto loose = std::make_shared<GView>();
  GView::remove_global_view(loose);
  EXPECT_EQ(GView::all_views().size(), 1U);
  EXPECT_EQ(GView::get_current_view(), view.get());
}

// The argument is then a reference to what is being erased.
TEST_F(ViewRegistryTest, RemovesAViewThatItIsAskedForByItsOwnEntry)
{
  registered_view();
  GView::remove_global_view(*GView::all_views().begin());
  EXPECT_TRUE(GView::all_views().empty());
  EXPECT_EQ(GView::get_current_view(), nullptr);
}

TEST_F(ViewRegistryTest, KeepsIdsNamesAndWindowsOfTheViewsItLetsGo)
{
  const auto view = registered_view_with_id(9);
  view->set_name("side");
  vtkRenderWindow* window = view->get_render_window();
  GView::remove_global_view(view);
  EXPECT_EQ(view->get_id(), 9);
  EXPECT_EQ(view->get_name(), "side");
  EXPECT_EQ(view->get_render_window(), window);
}

// --- Current view
// -------------------------------------------------------------------------------------------------

using CurrentViewTest = ViewTest;

TEST_F(CurrentViewTest, IsNullWithAnEmptyRegistry)
{
  const GView loose;
  EXPECT_EQ(GView::get_current_view(), nullptr);
}

TEST_F(CurrentViewTest, IsTheOneRegisteredLast)
{
  const auto a = registered_view();
  EXPECT_EQ(GView::get_current_view(), a.get());
  const auto b = registered_view();
  EXPECT_EQ(GView::get_current_view(), b.get());
}

TEST_F(CurrentViewTest, IsTheOneRegisteredAgain)
{
  const auto a = registered_view();
  const auto b = registered_view();
  GView::add_global_view(a);
  EXPECT_EQ(GView::get_current_view(), a.get());
}

TEST_F(CurrentViewTest, IsTheFirstRemainingOneWhenTheCurrentOneIsRemoved)
{
  const auto a = registered_view();
  const auto b = registered_view();
  const auto c = registered_view();
  GView::remove_global_view(c);
  EXPECT_EQ(GView::get_current_view(), GView::all_views().begin()->get());
  EXPECT_NE(GView::get_current_view(), c.get());
}

// It is chosen when it is asked for, so a view that is registered in between, at a lower address or not, is
// the one.
TEST_F(CurrentViewTest, IsOnlyChosenWhenItIsAskedFor)
{
  const auto a = registered_view();
  const auto b = registered_view();
  GView::remove_global_view(b);
  const auto c = registered_view();
  EXPECT_EQ(GView::get_current_view(), c.get());
}

TEST_F(CurrentViewTest, StaysWhenAnotherOneIsRemoved)
{
  const auto a = registered_view();
  const auto b = registered_view();
  GView::remove_global_view(a);
  EXPECT_EQ(GView::get_current_view(), b.get());
}

TEST_F(CurrentViewTest, MayBeOneThatIsNotRegistered)
{
  const auto a = registered_view();
  GView loose;
  GView::set_current_view(&loose);
  EXPECT_EQ(GView::get_current_view(), &loose);
  EXPECT_EQ(GView::all_views().size(), 1U);
}

TEST_F(CurrentViewTest, IsTheFirstRegisteredOneAfterNull)
{
  const auto a = registered_view();
  const auto b = registered_view();
  GView::set_current_view(nullptr);
  EXPECT_EQ(GView::get_current_view(), GView::all_views().begin()->get());
}

TEST_F(CurrentViewTest, IsNeverOneThatIsGone)
{
  {
    GView loose;
    GView::set_current_view(&loose);
  }
  EXPECT_EQ(GView::get_current_view(), nullptr);
  const auto a = registered_view();
  {
    GView loose;
    GView::set_current_view(&loose);
  }
  EXPECT_EQ(GView::get_current_view(), a.get());
}

TEST_F(CurrentViewTest, IsForgottenWhenItIsRemovedWithoutBeingRegistered)
{
  const auto a = registered_view();
  const auto loose = std::make_shared<GView>();
  GView::set_current_view(loose.get());
  GView::remove_global_view(loose);
  EXPECT_EQ(GView::get_current_view(), a.get());
}

TEST_F(CurrentViewTest, IsNotTouchedByTheEndOfAnotherView)
{
  GView stays;
  GView::set_current_view(&stays);
  {
    const GView goes;
  }
  EXPECT_EQ(GView::get_current_view(), &stays);
}

// --- Titles
// -------------------------------------------------------------------------------------------------------

using ViewTitleTest = ViewTest;

TEST_F(ViewTitleTest, TellsTheIdInParentheses)
{
  GView view;
  view.set_id(4);
  view.set_title_bar("Brant ##");
  EXPECT_EQ(title_of(view), "Brant (4)");
}

TEST_F(ViewTitleTest, ReplacesTheFirstDoubleHashOnly)
{
  GView view;
  view.set_id(4);
  const std::pair<const char*, const char*> cases[] = {{"#", "#"},
                                                       {"a # b", "a # b"},
                                                       {"# #", "# #"},
                                                       {"##", "(4)"},
                                                       {"###", "(4)#"},
                                                       {"####", "(4)##"},
                                                       {"#a##b", "#a(4)b"},
                                                       {"a##b##", "a(4)b##"},
                                                       {"no mark", "no mark"},
                                                       {"", ""},
                                                       {"%i %s ##", "%i %s (4)"}};
  for (const auto& [text, expected] : cases) {
    view.set_title_bar(text);
    EXPECT_EQ(title_of(view), expected);
  }
}

TEST_F(ViewTitleTest, TellsAnyId)
{
  GView view;
  for (const int id : {0, -17, INT_MAX, INT_MIN}) {
    view.set_id(id);
    view.set_title_bar("##");
    EXPECT_EQ(title_of(view), "(" + std::to_string(id) + ")");
  }
}

TEST_F(ViewTitleTest, MayBeOfAnyLength)
{
  GView view;
  view.set_id(4);
  const std::string much(1000000, 'x');
  view.set_title_bar((much + "##").c_str());
  EXPECT_EQ(title_of(view), much + "(4)");
}

TEST_F(ViewTitleTest, NullTakesTheTemplateOfAllViews)
{
  GView view;
  view.set_id(4);
  view.set_title_bar("own");
  view.set_title_bar(nullptr);
  EXPECT_EQ(title_of(view), "Brant (4)");
  GView::set_title_bars("Mesh ##");
  view.set_title_bar("own");
  view.set_title_bar(nullptr);
  EXPECT_EQ(title_of(view), "Mesh (4)");
}

TEST_F(ViewTitleTest, OfOneViewIsNotTheTemplate)
{
  GView view;
  view.set_title_bar("own");
  const GView other;
  EXPECT_EQ(title_of(other), "Brant (-1)");
}

TEST_F(ViewTitleTest, DoesNotFollowTheIdByItself)
{
  GView view;
  view.set_title_bar("##");
  view.set_id(12);
  EXPECT_EQ(title_of(view), "(1)");
}

TEST_F(ViewTitleTest, OfAllViewsTitlesTheRegisteredOnes)
{
  const auto a = registered_view_with_id(3);
  const auto b = registered_view_with_id(5);
  const GView loose;
  GView::set_title_bars("Mesh ##");
  EXPECT_EQ(title_of(*a), "Mesh (3)");
  EXPECT_EQ(title_of(*b), "Mesh (5)");
  EXPECT_EQ(title_of(loose), "Brant (-1)");
}

TEST_F(ViewTitleTest, OfAllViewsIsKeptForLaterViews)
{
  GView::set_title_bars("Mesh ##");
  EXPECT_EQ(title_of(GView()), "Mesh (-1)");
}

TEST_F(ViewTitleTest, NullForAllViewsTitlesThemWithTheTemplate)
{
  const auto view = registered_view_with_id(3);
  GView::set_title_bars("Mesh ##");
  view->set_title_bar("own");
  GView::set_title_bars(nullptr);
  EXPECT_EQ(title_of(*view), "Mesh (3)");
  EXPECT_EQ(title_of(GView()), "Mesh (-1)");
}

TEST_F(ViewTitleTest, OfAllViewsMayBeEmpty)
{
  const auto view = registered_view();
  GView::set_title_bars("");
  EXPECT_EQ(title_of(*view), "");
  EXPECT_EQ(title_of(GView()), "");
}

TEST_F(ViewTitleTest, WithoutAWindowDoesNothing)
{
  const auto view = registered_view();
  view->set_render_window(nullptr);
  view->set_title_bar("x");
  view->set_title_bar(nullptr);
  GView::set_title_bars("y");
  EXPECT_EQ(title_of(GView()), "y"); // kept all the same
}

TEST_F(ViewTitleTest, OfAWindowIsNotChangedByBindingIt)
{
  GView view;
  view.set_title_bar("own");
  const vtkNew<vtkRenderWindow> window;
  window->SetWindowName("the host's");
  view.set_render_window(window);
  EXPECT_EQ(title_of(view), "the host's");
}

using MappedTitleTest = ViewRenderTest;

// What the window manager shows.
std::string shown_title(vtkRenderWindow* window)
{
  auto* display = static_cast<Display*>(window->GetGenericDisplayId());
  const auto id = reinterpret_cast<Window>(window->GetGenericWindowId());
  char* name = nullptr;
  XFetchName(display, id, &name);
  const std::string title = name != nullptr ? name : "(null)";
  XFree(name);
  return title;
}

TEST_F(MappedTitleTest, IsShownFromTheFirstFrameOn)
{
  const auto view = make_view();
  view->set_title_bar("Brant ##");
  view->render();
  EXPECT_EQ(shown_title(view->get_render_window()), "Brant (1)");
}

TEST_F(MappedTitleTest, ChangesOnTheScreenAtOnce)
{
  const auto view = make_view();
  view->render();
  view->set_title_bar("later ##");
  EXPECT_EQ(shown_title(view->get_render_window()), "later (1)");
}

// --- Loops over the registry, while the host changes it
// -------------------------------------------------------------

// The window's name is host-visible state; an observer of the window is where host code comes in.
using RegistryLoopTest = ViewTest;

TEST_F(RegistryLoopTest, SurvivesViewsThatLeaveWhileTheyAreTitled)
{
  std::vector<std::unique_ptr<EventHook>> hooks;
  int calls = 0;
  for (int i = 0; i < 3; ++i) {
    const auto view = registered_view();
    hooks.push_back(
        std::make_unique<EventHook>(view->get_render_window(), vtkCommand::ModifiedEvent, [&calls] {
          ++calls;
          while (!GView::all_views().empty()) {
            GView::remove_global_view(*GView::all_views().begin());
          }
        }));
  }
  GView::set_title_bars("all leave");
  EXPECT_GE(calls, 1);
  EXPECT_TRUE(GView::all_views().empty());
}

TEST_F(RegistryLoopTest, SurvivesViewsThatLeaveWhileTheirBackgroundsAreSet)
{
  std::vector<std::unique_ptr<EventHook>> hooks;
  int calls = 0;
  for (int i = 0; i < 3; ++i) {
    const auto view = registered_view();
    hooks.push_back(std::make_unique<EventHook>(view->get_renderer(), vtkCommand::ModifiedEvent, [&calls] {
      ++calls;
      while (!GView::all_views().empty()) {
        GView::remove_global_view(*GView::all_views().begin());
      }
    }));
  }
  GView::set_all_background(3);
  GView::set_all_background2(4);
  EXPECT_GE(calls, 1);
  EXPECT_TRUE(GView::all_views().empty());
}

TEST_F(RegistryLoopTest, SurvivesViewsThatJoin)
{
  const auto view = registered_view();
  std::vector<ViewPointer> joined;
  const EventHook hook(view->get_render_window(), vtkCommand::ModifiedEvent, [&joined] {
    if (joined.size() < 5) {
      joined.push_back(registered_view());
    }
  });
  GView::set_title_bars("one joins");
  EXPECT_GE(joined.size(), 1U);
  EXPECT_EQ(GView::all_views().size(), 1 + joined.size());
}

} // namespace
