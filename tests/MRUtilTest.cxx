// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "MRUtil.h"

#include "CountedAllocations.h"
#include "GView.h"
#include "OutputFixture.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <vtkActor.h>
#include <vtkInformation.h>
#include <vtkInformationIntegerKey.h>
#include <vtkInformationKeyLookup.h>
#include <vtkNew.h>
#include <vtkObjectFactory.h>
#include <vtkObjectFactoryCollection.h>
#include <vtkVersion.h>
#include <vtkXOpenGLRenderWindow.h>

#include <cstring>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using morrow_test::gAllocations;
using morrow_test::PrintCapture;
using morrow_test::Printed;
using morrow_test::written_by;

// Called through pointers, which know nothing of the printf rules: some of these formats are wrong on
// purpose.
using Print = void (*)(const char*, ...);

struct PrintOfKind
{
  Print print;
  int kind;
};

constexpr PrintOfKind gAllPrints[] = {
    {MRUtil::print_info, 0}, {MRUtil::print_warning, 1}, {MRUtil::print_error, 2}};

const char* const gNoText = nullptr;

// Calls of a print function in words, which compare and show well: "1 'text' flagged", "0 null".
using Calls = std::vector<std::string>;

std::string message(const std::string& text, int kind)
{
  return std::to_string(kind) + " '" + text + "' flagged";
}

std::string signal(int kind)
{
  return std::to_string(kind) + " null";
}

Calls in_words(const std::vector<Printed>& calls)
{
  Calls words;
  for (const Printed& call : calls) {
    const std::string text = call.is_null ? "null" : "'" + call.text + "'";
    words.push_back(std::to_string(call.kind) + " " + text + (call.has_text ? " flagged" : ""));
  }
  return words;
}

template<typename... Arguments>
Calls printed_by(Print print, const char* format, Arguments... arguments)
{
  const PrintCapture capture;
  print(format, arguments...);
  return in_words(capture.calls());
}

MRUtil::PrintFunction current_print_function()
{
  MRUtil::PrintFunction f = nullptr;
  MRUtil::get_print_function(f);
  return f;
}

/// Puts the process-wide state back.
class MRUtilTest : public ::testing::Test
{
protected:
  MRUtilTest() : mPrintFunction(current_print_function()), mStatus(MRUtil::get_graphics_status()) {}
  ~MRUtilTest() override
  {
    MRUtil::set_print_function(mPrintFunction);
    MRUtil::set_graphics_status(mStatus);
  }

private:
  MRUtil::PrintFunction mPrintFunction;
  MRUtil::GraphicsStatus mStatus;
};

// ---------------------------------------------------------------------------------------------------------
// Enumerations

// Hosts store these numbers.
TEST_F(MRUtilTest, TheEnumeratorsHaveTheirFixedValues)
{
  EXPECT_EQ(MRUtil::GRAPHICS_NORMAL, 0);
  EXPECT_EQ(MRUtil::GRAPHICS_DISABLED, 1);
  EXPECT_EQ(MRUtil::GRAPHICS_SUSPENDED, 2);
  EXPECT_EQ(MRUtil::GRAPHICS_RESUME, 3);

  EXPECT_EQ(MRUtil::AXIS_3D, 0);
  EXPECT_EQ(MRUtil::AXIS_2D, 1);
  EXPECT_EQ(MRUtil::AXIS_1D, 2);

  EXPECT_EQ(MRUtil::DRAW_DEFAULT, 0);
  EXPECT_EQ(MRUtil::DRAW_OUTLINE, 1);
  EXPECT_EQ(MRUtil::DRAW_FILLED, 2);
  EXPECT_EQ(MRUtil::DRAW_HIGHLIGHT, 3);
  EXPECT_EQ(MRUtil::DRAW_OVERLAY, 4);

  EXPECT_EQ(MRUtil::RENDER_WIREFRAME, 0);
  EXPECT_EQ(MRUtil::RENDER_HIDDEN_LINE, 1);
  EXPECT_EQ(MRUtil::RENDER_HIDDEN_LINE_DASH, 2);
  EXPECT_EQ(MRUtil::RENDER_FLAT, 3);
  EXPECT_EQ(MRUtil::RENDER_SMOOTH, 4);
  EXPECT_EQ(MRUtil::RENDER_TRANSPARENT, 5);
  EXPECT_EQ(MRUtil::RENDER_DEFAULT, 6);
  EXPECT_EQ(MRUtil::RENDER_NO_SURFACES, 7);
}

template<typename Enumeration>
constexpr bool IsPlainInt =
    std::is_convertible_v<Enumeration, int>&& std::is_same_v<std::underlying_type_t<Enumeration>, int>;

TEST_F(MRUtilTest, TheEnumerationsArePlainIntegers)
{
  EXPECT_TRUE(IsPlainInt<MRUtil::GraphicsStatus>);
  EXPECT_TRUE(IsPlainInt<MRUtil::AxisType>);
  EXPECT_TRUE(IsPlainInt<MRUtil::DrawMode>);
  EXPECT_TRUE(IsPlainInt<MRUtil::RenderMode>);
  EXPECT_TRUE(IsPlainInt<MRUtil::MouseFunction>);
  EXPECT_EQ(static_cast<MRUtil::RenderMode>(5), MRUtil::RENDER_TRANSPARENT);
}

// ---------------------------------------------------------------------------------------------------------
// Mouse functions

TEST_F(MRUtilTest, NamesEveryMouseFunctionInTheOrderOfTheCodes)
{
  const char* const names[] = {"Rotate",
                               "Rotate XY",
                               "Rotate Z",
                               "Rotate Camera",
                               "Zoom",
                               "Zoom Telephoto",
                               "Zoom Navigate",
                               "Zoom Box",
                               "Pan",
                               "Center On Click",
                               "Zoom In Click",
                               "Zoom Out Click",
                               "Select",
                               "Add Select",
                               "Echo Selection",
                               "Select Box",
                               "Select Circle",
                               "Select And Echo",
                               "Pop_Up_Menu", // the only one with underscores
                               "Do Nothing",
                               "Select Polygon",
                               "Rotate About Mouse Cursor",
                               "None"};
  constexpr std::size_t count = std::extent_v<decltype(MRUtil::MouseFuncNames)>;
  ASSERT_EQ(count, 23U);
  ASSERT_EQ(std::size(names), count);
  for (std::size_t code = 0; code < count; ++code) {
    EXPECT_STREQ(MRUtil::MouseFuncNames[code], names[code]) << code;
  }
  EXPECT_EQ(MRUtil::NumMouseFunctions, 23);
}

TEST_F(MRUtilTest, TheMouseFunctionCodesIndexTheNames)
{
  const auto name_of = [](MRUtil::MouseFunction code) { return std::string(MRUtil::MouseFuncNames[code]); };
  EXPECT_EQ(name_of(MRUtil::MOUSE_ROTATE), "Rotate");
  EXPECT_EQ(name_of(MRUtil::MOUSE_ROTATE_XY), "Rotate XY");
  EXPECT_EQ(name_of(MRUtil::MOUSE_ROTATE_Z), "Rotate Z");
  EXPECT_EQ(name_of(MRUtil::MOUSE_ROTATE_CAMERA), "Rotate Camera");
  EXPECT_EQ(name_of(MRUtil::MOUSE_ZOOM), "Zoom");
  EXPECT_EQ(name_of(MRUtil::MOUSE_ZOOM_TELEPHOTO), "Zoom Telephoto");
  EXPECT_EQ(name_of(MRUtil::MOUSE_ZOOM_NAVIGATE), "Zoom Navigate");
  EXPECT_EQ(name_of(MRUtil::MOUSE_ZOOM_BOX), "Zoom Box");
  EXPECT_EQ(name_of(MRUtil::MOUSE_PAN), "Pan");
  EXPECT_EQ(name_of(MRUtil::MOUSE_CENTER_ON_CLICK), "Center On Click");
  EXPECT_EQ(name_of(MRUtil::MOUSE_ZOOM_IN_CLICK), "Zoom In Click");
  EXPECT_EQ(name_of(MRUtil::MOUSE_ZOOM_OUT_CLICK), "Zoom Out Click");
  EXPECT_EQ(name_of(MRUtil::MOUSE_SELECT), "Select");
  EXPECT_EQ(name_of(MRUtil::MOUSE_ADD_SELECT), "Add Select");
  EXPECT_EQ(name_of(MRUtil::MOUSE_ECHO_SELECTION), "Echo Selection");
  EXPECT_EQ(name_of(MRUtil::MOUSE_SELECT_BOX), "Select Box");
  EXPECT_EQ(name_of(MRUtil::MOUSE_SELECT_CIRCLE), "Select Circle");
  EXPECT_EQ(name_of(MRUtil::MOUSE_SELECT_AND_ECHO), "Select And Echo");
  EXPECT_EQ(name_of(MRUtil::MOUSE_POPUP_MENU), "Pop_Up_Menu");
  EXPECT_EQ(name_of(MRUtil::MOUSE_DO_NOTHING), "Do Nothing");
  EXPECT_EQ(name_of(MRUtil::MOUSE_SELECT_POLYGON), "Select Polygon");
  EXPECT_EQ(name_of(MRUtil::MOUSE_ROTATE_ABOUT_CURSOR), "Rotate About Mouse Cursor");
  EXPECT_EQ(name_of(MRUtil::MOUSE_NONE), "None");
}

// ---------------------------------------------------------------------------------------------------------
// Property keys

TEST_F(MRUtilTest, TheKeysHaveTheirNamesAndLocation)
{
  EXPECT_STREQ(MRUtil::RENDER_MODE()->GetName(), "RENDER_MODE");
  EXPECT_STREQ(MRUtil::RENDER_MODE()->GetLocation(), "MRUtil");
  EXPECT_STREQ(MRUtil::VERTEX_VISIBILITY()->GetName(), "VERTEX_VISIBILITY");
  EXPECT_STREQ(MRUtil::VERTEX_VISIBILITY()->GetLocation(), "MRUtil");
}

TEST_F(MRUtilTest, TheKeysAreMadeOnceAndKnownToVtk)
{
  EXPECT_EQ(MRUtil::RENDER_MODE(), MRUtil::RENDER_MODE());
  EXPECT_EQ(MRUtil::VERTEX_VISIBILITY(), MRUtil::VERTEX_VISIBILITY());
  EXPECT_NE(MRUtil::RENDER_MODE(), MRUtil::VERTEX_VISIBILITY());
  EXPECT_EQ(vtkInformationKeyLookup::Find("RENDER_MODE", "MRUtil"), MRUtil::RENDER_MODE());
  EXPECT_EQ(vtkInformationKeyLookup::Find("VERTEX_VISIBILITY", "MRUtil"), MRUtil::VERTEX_VISIBILITY());
}

TEST_F(MRUtilTest, TheKeysHoldIntegersOnAProp)
{
  const vtkNew<vtkActor> actor;
  const vtkNew<vtkInformation> keys;
  actor->SetPropertyKeys(keys);
  keys->Set(MRUtil::RENDER_MODE(), MRUtil::RENDER_HIDDEN_LINE);
  EXPECT_EQ(actor->GetPropertyKeys()->Get(MRUtil::RENDER_MODE()), 1);
  EXPECT_FALSE(actor->GetPropertyKeys()->Has(MRUtil::VERTEX_VISIBILITY()));
  keys->Set(MRUtil::VERTEX_VISIBILITY(), 0);
  EXPECT_TRUE(actor->GetPropertyKeys()->Has(MRUtil::VERTEX_VISIBILITY()));
  EXPECT_EQ(actor->GetPropertyKeys()->Get(MRUtil::RENDER_MODE()), 1);
}

// ---------------------------------------------------------------------------------------------------------
// Formatting messages

TEST_F(MRUtilTest, FormatsAndHandsOverTheKind)
{
  for (const auto& [print, kind] : gAllPrints) {
    EXPECT_EQ(printed_by(print, "%d parts of %s\n", 3, "mug"), Calls{message("3 parts of mug\n", kind)});
  }
}

TEST_F(MRUtilTest, AddsNoLineEnd)
{
  for (const auto& [print, kind] : gAllPrints) {
    EXPECT_EQ(printed_by(print, "x"), Calls{message("x", kind)});
  }
}

TEST_F(MRUtilTest, ANullFormatIsSilentAsInformationAndASignalOtherwise)
{
  EXPECT_EQ(printed_by(MRUtil::print_info, nullptr), Calls{});
  EXPECT_EQ(printed_by(MRUtil::print_warning, nullptr), Calls{signal(1)});
  EXPECT_EQ(printed_by(MRUtil::print_error, nullptr), Calls{signal(2)});
}

TEST_F(MRUtilTest, AnEmptyFormatIsASignalAsInformationAndAnEmptyTextOtherwise)
{
  EXPECT_EQ(printed_by(MRUtil::print_info, ""), Calls{signal(0)});
  EXPECT_EQ(printed_by(MRUtil::print_warning, ""), Calls{message("", 1)});
  EXPECT_EQ(printed_by(MRUtil::print_error, ""), Calls{message("", 2)});
}

// Only the format counts, not what becomes of it.
TEST_F(MRUtilTest, AFormatThatGivesAnEmptyTextIsAMessage)
{
  for (const auto& [print, kind] : gAllPrints) {
    EXPECT_EQ(printed_by(print, "%s", ""), Calls{message("", kind)});
  }
}

TEST_F(MRUtilTest, ANullStringArgumentPrintsAsNull)
{
  for (const auto& [print, kind] : gAllPrints) {
    EXPECT_EQ(printed_by(print, "name: %s\n", gNoText), Calls{message("name: (null)\n", kind)});
  }
}

TEST_F(MRUtilTest, PercentSignsInArgumentsAreNotFormats)
{
  for (const auto& [print, kind] : gAllPrints) {
    EXPECT_EQ(printed_by(print, "%s %%", "100%s%n"), Calls{message("100%s%n %", kind)});
  }
}

TEST_F(MRUtilTest, CutsLongMessagesTo1023Bytes)
{
  std::string pattern;
  while (pattern.size() < 2000) {
    pattern += static_cast<char>('a' + pattern.size() % 23);
  }
  for (const auto& [print, kind] : gAllPrints) {
    for (const std::size_t length : {1022U, 1023U, 1024U, 2000U}) {
      const std::string text = pattern.substr(0, length);
      const Calls expected{message(text.substr(0, 1023), kind)};
      EXPECT_EQ(printed_by(print, text.c_str()), expected) << length;       // as the format itself
      EXPECT_EQ(printed_by(print, "%s", text.c_str()), expected) << length; // as an argument
    }
  }
}

TEST_F(MRUtilTest, SignalsTheEndOfOutput)
{
  const PrintCapture capture;
  MRUtil::print_no_more();
  EXPECT_EQ(in_words(capture.calls()), Calls{signal(0)});
}

void drop_message(const char* /*text*/, int /*kind*/, bool /*has_text*/) {}

TEST_F(MRUtilTest, AllocatesNothing)
{
  MRUtil::set_print_function(drop_message);
  const std::string long_text(5000, 'x');
  const unsigned long before_control = gAllocations;
  const std::string control = long_text + "y";
  ASSERT_GT(gAllocations, before_control) << "allocations are not counted";

  const unsigned long before = gAllocations;
  for (const auto& [print, kind] : gAllPrints) {
    print("%s %d %g\n", long_text.c_str(), kind, 0.5);
  }
  EXPECT_EQ(gAllocations, before);
}

// ---------------------------------------------------------------------------------------------------------
// The print function

TEST_F(MRUtilTest, StartsWithTheDefaultPrintFunction)
{
  EXPECT_EQ(current_print_function(), &MRUtil::DefaultPrintFunction);
  EXPECT_FALSE(MRUtil::is_print_function_NoPrint());
}

TEST_F(MRUtilTest, KeepsThePrintFunctionThatWasSet)
{
  MRUtil::set_print_function(drop_message);
  EXPECT_EQ(current_print_function(), &drop_message);
  EXPECT_FALSE(MRUtil::is_print_function_NoPrint());
  MRUtil::set_print_function(MRUtil::NoPrint);
  EXPECT_TRUE(MRUtil::is_print_function_NoPrint());
  MRUtil::set_print_function(MRUtil::DefaultPrintFunction);
  EXPECT_EQ(current_print_function(), &MRUtil::DefaultPrintFunction);
  EXPECT_FALSE(MRUtil::is_print_function_NoPrint());
}

TEST_F(MRUtilTest, ANullPrintFunctionIsSilenceNotTheDefault)
{
  MRUtil::set_print_function(nullptr);
  EXPECT_EQ(current_print_function(), &MRUtil::NoPrint);
  EXPECT_TRUE(MRUtil::is_print_function_NoPrint());
  EXPECT_EQ(written_by([] {
              MRUtil::print_info("information\n");
              MRUtil::print_error("error\n");
              MRUtil::print_no_more();
            }),
            "");
}

TEST_F(MRUtilTest, NoPrintWritesNothing)
{
  EXPECT_EQ(written_by([] {
              MRUtil::NoPrint("text\n", 2, true);
              MRUtil::NoPrint(nullptr, 0, false);
            }),
            "");
}

TEST_F(MRUtilTest, TheDefaultPrintFunctionPutsTheKindInFront)
{
  const auto written = [](const char* text, int kind, bool has_text) {
    return written_by([=] { MRUtil::DefaultPrintFunction(text, kind, has_text); });
  };
  EXPECT_EQ(written("a text\n", 0, true), "a text\n");
  EXPECT_EQ(written("a text\n", 1, true), "Warning: a text\n");
  EXPECT_EQ(written("a text", 2, true), "Error: a text"); // no line end of its own
  EXPECT_EQ(written("a text\n", 3, true), "a text\n");
  EXPECT_EQ(written("a text\n", -1, true), "a text\n");
  EXPECT_EQ(written("", 2, true), "Error: ");
}

TEST_F(MRUtilTest, TheDefaultPrintFunctionIgnoresTheTextFlag)
{
  EXPECT_EQ(written_by([] { MRUtil::DefaultPrintFunction("a text\n", 1, false); }), "Warning: a text\n");
  for (const int kind : {0, 1, 2}) {
    for (const bool has_text : {false, true}) {
      EXPECT_EQ(written_by([=] { MRUtil::DefaultPrintFunction(nullptr, kind, has_text); }), "");
    }
  }
}

// The text is an argument of printf, never its format.
TEST_F(MRUtilTest, TheDefaultPrintFunctionLeavesPercentSignsAlone)
{
  for (const int kind : {0, 1, 2}) {
    const std::string written = written_by([=] { MRUtil::DefaultPrintFunction("%s%d%%", kind, true); });
    EXPECT_EQ(written.substr(written.size() - 6), "%s%d%%");
  }
}

TEST_F(MRUtilTest, MessagesReachStandardOutputByDefault)
{
  EXPECT_EQ(written_by([] {
              MRUtil::print_info("%s\n", "one");
              MRUtil::print_warning("%s\n", "two");
              MRUtil::print_error("%s\n", "three");
              MRUtil::print_no_more();
            }),
            "one\nWarning: two\nError: three\n");
}

// A host's print function may use the library.

std::string gHeard;

void hear(const char* text, int kind, bool has_text)
{
  gHeard += std::to_string(kind) + (has_text ? text : "-") + ";";
}

void print_once_more(const char* text, int kind, bool has_text)
{
  hear(text, kind, has_text);
  if (kind == 2) {
    MRUtil::print_warning("about %s", text);
  }
  hear(text, kind, has_text); // still the first message: the second one had a buffer of its own
}

TEST_F(MRUtilTest, APrintFunctionMayPrint)
{
  gHeard.clear();
  MRUtil::set_print_function(print_once_more);
  MRUtil::print_error("fire");
  EXPECT_EQ(gHeard, "2fire;1about fire;1about fire;2fire;");
}

void print_only_once(const char* text, int kind, bool has_text)
{
  MRUtil::set_print_function(hear);
  hear(text, kind, has_text);
}

TEST_F(MRUtilTest, APrintFunctionMayReplaceItself)
{
  gHeard.clear();
  MRUtil::set_print_function(print_only_once);
  MRUtil::print_info("first");
  EXPECT_EQ(current_print_function(), &hear);
  MRUtil::print_warning("second");
  EXPECT_EQ(gHeard, "0first;1second;");
}

void throw_message(const char* text, int /*kind*/, bool /*has_text*/)
{
  throw std::string(text);
}

TEST_F(MRUtilTest, WhatAPrintFunctionThrowsReachesTheCaller)
{
  MRUtil::set_print_function(throw_message);
  try {
    MRUtil::print_error("%s", "thrown");
    ADD_FAILURE() << "nothing was thrown";
  } catch (const std::string& text) {
    EXPECT_EQ(text, "thrown");
  }
  EXPECT_EQ(current_print_function(), &throw_message);
}

// ---------------------------------------------------------------------------------------------------------
// Graphics status

TEST_F(MRUtilTest, StartsWithNormalGraphics)
{
  EXPECT_EQ(MRUtil::get_graphics_status(), MRUtil::GRAPHICS_NORMAL);
}

TEST_F(MRUtilTest, EveryStatusFollowsItsRequest)
{
  struct Transition
  {
    int from;
    int request;
    int to;
  };
  constexpr Transition transitions[] = {
      {0, 0, 0}, {0, 1, 1}, {0, 2, 2}, {0, 3, 0}, // a resume request is never stored
      {1, 0, 0}, {1, 1, 1}, {1, 2, 2}, {1, 3, 1}, // and does not enable what was disabled
      {2, 0, 0}, {2, 1, 1}, {2, 2, 2}, {2, 3, 0},
  };
  for (const auto& [from, request, to] : transitions) {
    MRUtil::set_graphics_status(static_cast<MRUtil::GraphicsStatus>(from));
    ASSERT_EQ(MRUtil::get_graphics_status(), from);
    MRUtil::set_graphics_status(static_cast<MRUtil::GraphicsStatus>(request));
    EXPECT_EQ(MRUtil::get_graphics_status(), to) << from << " and request " << request;
  }
}

TEST_F(MRUtilTest, ADisabledStatusOutlastsAnyNumberOfResumeRequests)
{
  MRUtil::set_graphics_status(MRUtil::GRAPHICS_DISABLED);
  MRUtil::set_graphics_status(MRUtil::GRAPHICS_RESUME);
  MRUtil::set_graphics_status(MRUtil::GRAPHICS_RESUME);
  EXPECT_EQ(MRUtil::get_graphics_status(), MRUtil::GRAPHICS_DISABLED);
  // An explicit status takes the disabling away, and then resuming works again.
  MRUtil::set_graphics_status(MRUtil::GRAPHICS_SUSPENDED);
  MRUtil::set_graphics_status(MRUtil::GRAPHICS_RESUME);
  EXPECT_EQ(MRUtil::get_graphics_status(), MRUtil::GRAPHICS_NORMAL);
}

// ---------------------------------------------------------------------------------------------------------
// Queries

TEST_F(MRUtilTest, ReportsTheGraphicsVersionOfTheHost)
{
  EXPECT_EQ(MRUtil::get_graphics_version(), "VTK Version 8.0.1");
}

TEST_F(MRUtilTest, ReportsTheVersionOfVtk)
{
  EXPECT_EQ(MRUtil::get_vtk_version(), VTK_VERSION);
}

TEST_F(MRUtilTest, WithoutAContextTheDriverHasNoLines)
{
  EXPECT_EQ(MRUtil::get_gl_info(), "Displaying using:\n");
}

/// A window whose screen has a size of our choice, so that no display is asked.
class WindowOnAnyScreen : public vtkXOpenGLRenderWindow
{
public:
  static WindowOnAnyScreen* make() { return new WindowOnAnyScreen; }
  WindowOnAnyScreen(const WindowOnAnyScreen&) = delete;
  void operator=(const WindowOnAnyScreen&) = delete;

  int* GetScreenSize() override { return gScreenSize; }

  static int gScreenSize[2];
  static int gAlive;

protected:
  WindowOnAnyScreen() { ++gAlive; }
  ~WindowOnAnyScreen() override { --gAlive; }
};

int WindowOnAnyScreen::gScreenSize[2] = {0, 0};
int WindowOnAnyScreen::gAlive = 0;

class AnyScreenFactory : public vtkObjectFactory
{
public:
  static AnyScreenFactory* New();
  vtkTypeMacro(AnyScreenFactory, vtkObjectFactory)
  AnyScreenFactory(const AnyScreenFactory&) = delete;
  void operator=(const AnyScreenFactory&) = delete;

  const char* GetVTKSourceVersion() override { return VTK_SOURCE_VERSION; }
  const char* GetDescription() override { return "render windows on any screen"; }

  int mMade = 0;

protected:
  AnyScreenFactory() = default;
  ~AnyScreenFactory() override = default;

  vtkObject* CreateObject(const char* name) override
  {
    if (std::strcmp(name, "vtkRenderWindow") != 0) {
      return nullptr;
    }
    ++mMade;
    return WindowOnAnyScreen::make();
  }
};

vtkStandardNewMacro(AnyScreenFactory)

/// Windows made by VTK are on any screen meanwhile.
class ScreenSizeTest : public MRUtilTest
{
protected:
  ScreenSizeTest()
  {
    GView::get_preferred_window_size(mWidth, mHeight);
    vtkObjectFactory::RegisterFactory(mFactory);
    vtkObjectFactoryCollection* all = vtkObjectFactory::GetRegisteredFactories();
    all->RemoveItem(mFactory);
    all->vtkCollection::InsertItem(-1, mFactory); // asked first
  }
  ~ScreenSizeTest() override
  {
    vtkObjectFactory::UnRegisterFactory(mFactory);
    GView::set_preferred_window_size(mWidth, mHeight);
  }

  vtkNew<AnyScreenFactory> mFactory;

private:
  int mWidth = 0;
  int mHeight = 0;
};

TEST_F(ScreenSizeTest, ThePreferredWindowIsASquareOfHalfTheScreenHeight)
{
  int width = 0;
  int height = 0;
  for (const auto& [screen_height, half] : {std::pair(1024, 512), std::pair(1079, 539), std::pair(3, 1)}) {
    WindowOnAnyScreen::gScreenSize[0] = 7; // the width is of no account
    WindowOnAnyScreen::gScreenSize[1] = screen_height;
    MRUtil::setup_preferred_window_size();
    GView::get_preferred_window_size(width, height);
    EXPECT_EQ(width, half);
    EXPECT_EQ(height, half);
  }
}

TEST_F(ScreenSizeTest, TheWindowThatAsksForTheScreenIsTemporary)
{
  WindowOnAnyScreen::gScreenSize[1] = 1024;
  MRUtil::setup_preferred_window_size();
  EXPECT_EQ(mFactory->mMade, 1);
  EXPECT_EQ(WindowOnAnyScreen::gAlive, 0);
}

// A size that is not above 0 is no size.
TEST_F(ScreenSizeTest, AScreenWithoutHeightChangesNothing)
{
  GView::set_preferred_window_size(321, 123);
  WindowOnAnyScreen::gScreenSize[1] = 1; // its half is 0
  MRUtil::setup_preferred_window_size();
  int width = 0;
  int height = 0;
  GView::get_preferred_window_size(width, height);
  EXPECT_EQ(width, 321);
  EXPECT_EQ(height, 123);
}

} // namespace
