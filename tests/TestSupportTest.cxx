// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "TestSupport.h"

#include "MRUtil.h"
#include "TemporaryFolder.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <vtkCommand.h>
#include <vtkOutputWindow.h>
#include <vtkXOpenGLRenderWindow.h>
#include <vtk_glew.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

#if defined(__SANITIZE_ADDRESS__)
#define MORROW_LEAK_CHECKER
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define MORROW_LEAK_CHECKER
#endif
#endif

// Defined by TestMain.cxx, the program's own.
extern "C" int dlclose(void* handle);

namespace fs = std::filesystem;

namespace {

using morrow_test::ChildResult;
using morrow_test::colour_is;
using morrow_test::colour_is_not;
using morrow_test::ExpectedGlErrors;
using morrow_test::ExpectedVtkErrors;
using morrow_test::FrameCounter;
using morrow_test::Image;
using morrow_test::kBlack;
using morrow_test::kGreen;
using morrow_test::kRed;
using morrow_test::MessageKind;
using morrow_test::PixelRegion;
using morrow_test::PrintCapture;
using morrow_test::Rgb;
using morrow_test::run_command;
using morrow_test::Scene;

void report_vtk_error(const char* text)
{
  const vtkNew<vtkPolyData> object;
  vtkErrorWithObjectMacro(object, << text);
}

void report_vtk_warning(const char* text)
{
  const vtkNew<vtkPolyData> object;
  vtkWarningWithObjectMacro(object, << text);
}

/// A call that OpenGL refuses with GL_INVALID_ENUM.
void make_gl_error(vtkRenderWindow* window)
{
  window->MakeCurrent();
  glEnable(0xdead);
  glGetError(); // so that nobody else stumbles over it
}

// --- Planted offences ----------------------------------------------------------------------------
//
// Whether the watch fails a test can only be seen from outside of that test: this program runs itself with
// one planted test, named by an environment variable. Without the variable the planted tests do not exist.

constexpr const char* kPlanted = "MORROW_PLANTED";

void leak()
{
  static_cast<void>(vtkPolyData::New());
}

void plant(const std::string& offence)
{
  if (offence == "nothing") {
    SUCCEED();
  } else if (offence == "vtk_error") {
    report_vtk_error("planted error");
  } else if (offence == "vtk_warning") {
    report_vtk_warning("planted warning");
  } else if (offence == "generic_warning") {
    vtkGenericWarningMacro(<< "planted generic warning");
  } else if (offence == "expected_vtk_error") {
    const ExpectedVtkErrors expect{"planted"};
    report_vtk_error("planted error");
  } else if (offence == "after_the_scope") {
    {
      const ExpectedVtkErrors expect{"first"};
      report_vtk_error("first error");
    }
    report_vtk_error("second error");
  } else if (offence == "gl_error") {
    const Scene scene;
    scene.window()->Render();
    make_gl_error(scene.window());
  } else if (offence == "gl_error_in_a_second_context") {
    const Scene scene;
    scene.window()->Render();
    scene.window()->Finalize();
    scene.window()->Start();
    make_gl_error(scene.window());
  } else if (offence == "skip") {
    GTEST_SKIP() << "no display";
  } else if (offence == "skip_without_reason") {
    GTEST_SKIP();
  } else if (offence == "skip_for_absent_data") {
    GTEST_SKIP() << morrow_test::kDataAbsent << "mug.e";
  } else if (offence == "leak") {
    leak();
  } else if (offence == "render_fixture") {
    FAIL() << "the fixture let the test run";
  } else {
    FAIL() << "no such offence";
  }
}

class PlantedTest : public ::testing::Test
{
public:
  static void SetUpTestSuite()
  {
    if (offence() == "between_tests") {
      report_vtk_error("planted before the first test");
    }
  }
  static std::string offence()
  {
    const char* name = std::getenv(kPlanted);
    return name != nullptr ? name : "";
  }

  void TestBody() override
  {
    if (offence() != "between_tests") {
      plant(offence());
    }
  }
};

class PlantedRenderTest : public morrow_test::RenderTest
{
public:
  void TestBody() override { plant(PlantedTest::offence()); }
};

const bool gRegistered = [] {
  if (PlantedTest::offence() == "render_fixture") {
    ::testing::RegisterTest("PlantedRenderTest", "Planted", nullptr, nullptr, __FILE__, __LINE__,
                            []() -> morrow_test::RenderTest* { return new PlantedRenderTest; });
  } else if (!PlantedTest::offence().empty()) {
    ::testing::RegisterTest("PlantedTest", "Planted", nullptr, nullptr, __FILE__, __LINE__,
                            []() -> PlantedTest* { return new PlantedTest; });
  }
  return true;
}();

/// Runs this program with one planted test; `environment` is more of the shell's "NAME=value ".
ChildResult run_planted(const std::string& offence, const std::string& environment = "")
{
  const std::string program = fs::read_symlink("/proc/self/exe").string();
  // Coverage and report files of the parent are not to be overwritten, nor its filter inherited.
  const std::string command = "unset GTEST_OUTPUT GTEST_FILTER XML_OUTPUT_FILE; " + environment + kPlanted +
                              "=" + offence + " timeout 50 '" + program + "' --gtest_filter='Planted*' 2>&1";
  return run_command(command);
}

::testing::AssertionResult fails_with(const ChildResult& child, const std::string& text)
{
  if (child.status != 1 || child.output.find(text) == std::string::npos) {
    return ::testing::AssertionFailure()
           << "status " << child.status << ", wanted 1 and \"" << text << "\" in\n"
           << child.output;
  }
  return ::testing::AssertionSuccess();
}

::testing::AssertionResult passes(const ChildResult& child)
{
  if (child.status != 0 || child.output.find("Running 1 test from") == std::string::npos) {
    return ::testing::AssertionFailure() << "status " << child.status << ", wanted 0 and one test in\n"
                                         << child.output;
  }
  return ::testing::AssertionSuccess();
}

class WatchTest : public morrow_test::RenderTest
{};

TEST_F(WatchTest, PassesATestWithoutOffence)
{
  EXPECT_TRUE(passes(run_planted("nothing")));
}

TEST_F(WatchTest, FailsATestOnAVtkError)
{
  EXPECT_TRUE(fails_with(run_planted("vtk_error"), "planted error"));
}

TEST_F(WatchTest, FailsATestOnAVtkWarning)
{
  EXPECT_TRUE(fails_with(run_planted("vtk_warning"), "planted warning"));
  EXPECT_TRUE(fails_with(run_planted("generic_warning"), "planted generic warning"));
}

TEST_F(WatchTest, PassesATestThatAskedForItsError)
{
  EXPECT_TRUE(passes(run_planted("expected_vtk_error")));
}

TEST_F(WatchTest, FailsOnAnErrorAfterTheScopeThatAskedForAnother)
{
  EXPECT_TRUE(fails_with(run_planted("after_the_scope"), "second error"));
}

TEST_F(WatchTest, FailsATestOnAnOpenGlErrorByItself)
{
  // The planted test does nothing to be watched.
  EXPECT_TRUE(fails_with(run_planted("gl_error"), "GL_INVALID_ENUM"));
}

TEST_F(WatchTest, FollowsAWindowIntoItsNextContext)
{
  EXPECT_TRUE(fails_with(run_planted("gl_error_in_a_second_context"), "GL_INVALID_ENUM"));
}

TEST_F(WatchTest, FailsATestThatIsSkipped)
{
  EXPECT_TRUE(fails_with(run_planted("skip"), "not permitted: no display"));
  EXPECT_TRUE(fails_with(run_planted("skip_without_reason"), "not permitted"));
}

TEST_F(WatchTest, LetsATestBeSkippedForAbsentData)
{
  const ChildResult child = run_planted("skip_for_absent_data");
  EXPECT_TRUE(passes(child));
  EXPECT_NE(child.output.find("data absent: mug.e"), std::string::npos) << child.output;
}

TEST_F(WatchTest, FailsTheProgramOnAnErrorOutsideOfTests)
{
  EXPECT_TRUE(fails_with(run_planted("between_tests"), "outside of any test, VTK reported"));
}

TEST_F(WatchTest, FailsRenderTestsLoudlyWithoutADisplay)
{
  // An exit by VTK's abort() would be a signal, and a test body that ran anyway says so.
  for (const char* display : {"DISPLAY= ", "DISPLAY=:987 "}) {
    const ChildResult child = run_planted("render_fixture", display);
    EXPECT_TRUE(fails_with(child, "no X display"));
    EXPECT_EQ(child.output.find("let the test run"), std::string::npos) << child.output;
  }
}

#ifdef MORROW_LEAK_CHECKER
TEST_F(WatchTest, LeavesALeakForTheLeakCheckerToFind)
{
  const ChildResult child = run_planted("leak");
  EXPECT_NE(child.status, 0) << child.output;
  EXPECT_NE(child.output.find("LeakSanitizer: detected memory leaks"), std::string::npos) << child.output;
}
#endif

TEST_F(WatchTest, NothingIsEverUnloaded)
{
  EXPECT_EQ(dlclose(nullptr), 0); // the C library's own ends the program here
}

// --- Expectations --------------------------------------------------------------------------------

class ExpectationTest : public ::testing::Test
{};

TEST_F(ExpectationTest, TakesMessagesThatContainOneOfItsTexts)
{
  const ExpectedVtkErrors expect{"apple", "pear"};
  report_vtk_error("a pear fell");
  report_vtk_warning("an apple fell");
  EXPECT_EQ(expect.count(), 2);
  const auto messages = morrow_test::vtk_messages();
  ASSERT_EQ(messages.size(), 2U);
  EXPECT_EQ(messages[0].kind, MessageKind::Error);
  EXPECT_NE(messages[0].text.find("a pear fell"), std::string::npos);
  EXPECT_TRUE(messages[0].expected);
  EXPECT_EQ(messages[1].kind, MessageKind::Warning);
}

void expect_apple_in_silence()
{
  const ExpectedVtkErrors expect{"apple"};
}

void expect_apple_and_pear_but_get_an_apple()
{
  const ExpectedVtkErrors expect{"apple", "pear"};
  report_vtk_error("apple");
}

void expect_anything_in_silence()
{
  const ExpectedVtkErrors expect{};
}

void expect_gl_error_in_silence()
{
  const ExpectedGlErrors expect{"GL_INVALID_ENUM"};
}

TEST_F(ExpectationTest, FailsWhenAMessageDoesNotCome)
{
  EXPECT_NONFATAL_FAILURE(expect_apple_in_silence(), "VTK with \"apple\", but none came");
  EXPECT_NONFATAL_FAILURE(expect_apple_and_pear_but_get_an_apple(), "\"pear\", but none came");
  EXPECT_NONFATAL_FAILURE(expect_gl_error_in_silence(), "OpenGL with \"GL_INVALID_ENUM\", but none came");
}

TEST_F(ExpectationTest, OfAnythingTakesEverythingAndWantsOne)
{
  {
    const ExpectedVtkErrors expect{};
    report_vtk_error("apple");
    report_vtk_warning("pear");
    EXPECT_EQ(expect.count(), 2);
  }
  EXPECT_NONFATAL_FAILURE(expect_anything_in_silence(), "some message of VTK, but none came");
}

TEST_F(ExpectationTest, TheInnermostMatchTakesAMessage)
{
  const ExpectedVtkErrors outer{"error"};
  {
    const ExpectedVtkErrors inner{"inner"};
    report_vtk_error("inner error");
    report_vtk_error("outer error");
    EXPECT_EQ(inner.count(), 1);
    EXPECT_EQ(outer.count(), 1);
  }
}

TEST_F(ExpectationTest, PlainTextIsRecordedAndNoOffence)
{
  vtkOutputWindow::GetInstance()->DisplayText("a remark");
  const auto messages = morrow_test::vtk_messages();
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_EQ(messages[0].kind, MessageKind::Text);
  EXPECT_EQ(messages[0].text, "a remark");
}

TEST_F(ExpectationTest, EachTestStartsWithoutMessagesAndWithTheRecorder)
{
  // Whatever the tests before did to VTK's output window, this error is recorded.
  EXPECT_TRUE(morrow_test::vtk_messages().empty());
  EXPECT_NE(vtkObject::GetGlobalWarningDisplay(), 0);
  const ExpectedVtkErrors expect{"recorded"};
  report_vtk_error("recorded");
}

TEST_F(ExpectationTest, WarningDisplayIsOnForTheScopeAndThenAsBefore)
{
  vtkObject::GlobalWarningDisplayOff();
  report_vtk_error("silenced, as after the first model");
  {
    const morrow_test::WarningDisplayOn on;
    EXPECT_NE(vtkObject::GetGlobalWarningDisplay(), 0);
    const ExpectedVtkErrors expect{"heard"};
    report_vtk_error("heard");
  }
  EXPECT_EQ(vtkObject::GetGlobalWarningDisplay(), 0);
  EXPECT_EQ(morrow_test::vtk_messages().size(), 1U);
}

// --- The library's messages ----------------------------------------------------------------------

TEST(PrintCaptureTest, RecordsCallsInOrder)
{
  const PrintCapture capture;
  MRUtil::print_info("one %d\n", 1);
  MRUtil::print_warning("two\n");
  MRUtil::print_error("three\n");
  MRUtil::print_info("four\n");
  MRUtil::print_no_more();
  ASSERT_EQ(capture.calls().size(), 5U);
  EXPECT_EQ(capture.info(), "one 1\nfour\n");
  EXPECT_EQ(capture.warnings(), "two\n");
  EXPECT_EQ(capture.errors(), "three\n");
  EXPECT_TRUE(capture.calls()[0].has_text);
  EXPECT_TRUE(capture.calls()[4].is_null);
  EXPECT_FALSE(capture.calls()[4].has_text);
}

TEST(PrintCaptureTest, PutsThePreviousFunctionBack)
{
  MRUtil::PrintFunction before = nullptr;
  MRUtil::get_print_function(before);
  {
    const PrintCapture capture;
    MRUtil::PrintFunction now = nullptr;
    MRUtil::get_print_function(now);
    EXPECT_NE(now, before);
  }
  MRUtil::PrintFunction after = nullptr;
  MRUtil::get_print_function(after);
  EXPECT_EQ(after, before);
}

TEST(PrintCaptureTest, TheInnermostRecords)
{
  const PrintCapture outer;
  MRUtil::print_info("a");
  {
    PrintCapture inner;
    MRUtil::print_info("b");
    EXPECT_EQ(inner.info(), "b");
    inner.clear();
    EXPECT_TRUE(inner.calls().empty());
  }
  MRUtil::print_info("c");
  EXPECT_EQ(outer.info(), "ac");
}

// --- Windows and pixels --------------------------------------------------------------------------

class SceneTest : public morrow_test::RenderTest
{};

TEST_F(SceneTest, DrawsAFlatColourWhereTheCameraSaysSo)
{
  Scene scene(100, 80);
  scene.look_down(4.0); // 10 pixels to the unit, origin in the middle (50, 40)
  scene.renderer()->AddActor(morrow_test::flat_actor(morrow_test::quad(-2.0, -1.0, 2.0, 3.0), kRed));
  const Image image = scene.render();
  ASSERT_EQ(image.width(), 100);
  ASSERT_EQ(image.height(), 80);
  const PixelRegion region = morrow_test::find_pixels(image, colour_is(kRed));
  EXPECT_EQ(region.count, 40 * 40);
  EXPECT_EQ(region.min_x, 30);
  EXPECT_EQ(region.max_x, 69);
  EXPECT_EQ(region.min_y, 30); // bottom left origin: 40 − 10
  EXPECT_EQ(region.max_y, 69);
  EXPECT_EQ(region.centre_x, 50.0);
  EXPECT_EQ(region.centre_y, 50.0);
  EXPECT_EQ(morrow_test::count_pixels(image, colour_is_not(kBlack)), region.count);
}

TEST_F(SceneTest, DrawsNothingInFrontOfTheNearPlane)
{
  Scene scene(50, 50);
  scene.look_down(1.0);
  scene.renderer()->AddActor(morrow_test::flat_actor(morrow_test::quad(-1, -1, 1, 0, 5.1), kRed));
  scene.renderer()->AddActor(morrow_test::flat_actor(morrow_test::quad(-1, 0, 1, 1, -4.9), kGreen));
  const Image image = scene.render();
  EXPECT_EQ(morrow_test::count_pixels(image, colour_is(kRed)), 0);
  EXPECT_EQ(morrow_test::count_pixels(image, colour_is(kGreen)), 25 * 50);
}

TEST_F(SceneTest, ReadingPixelsDoesNotRenderAndRepeats)
{
  Scene scene;
  scene.look_down(1.0);
  scene.renderer()->AddActor(morrow_test::lit_actor(morrow_test::sphere(0.8)));
  const Image first = scene.render();
  EXPECT_GT(morrow_test::count_pixels(first, colour_is_not(kBlack)), 1000);
  const FrameCounter frames(scene.window());
  EXPECT_EQ(morrow_test::read_pixels(scene.window()), first);
  EXPECT_EQ(morrow_test::read_pixels(scene.window()), first);
  EXPECT_EQ(frames.starts(), 0);
}

TEST_F(SceneTest, TheSameSceneTwiceIsTheSamePicture)
{
  Image pictures[2];
  for (Image& picture : pictures) {
    Scene scene;
    scene.look_down(1.0);
    scene.renderer()->AddActor(morrow_test::lit_actor(morrow_test::sphere(0.8), {200, 120, 40}));
    picture = scene.render();
  }
  EXPECT_EQ(pictures[0], pictures[1]);
  EXPECT_FALSE(pictures[0].driver.empty());
  EXPECT_EQ(pictures[0].driver, pictures[1].driver);
}

TEST_F(SceneTest, ReadingAWindowNeverRenderedFails)
{
  const auto window = morrow_test::make_window();
  Image image;
  EXPECT_NONFATAL_FAILURE(image = morrow_test::read_pixels(window), "has not been rendered");
  EXPECT_TRUE(image.empty());
}

TEST_F(SceneTest, WindowsAreWatchedWithoutBeingAsked)
{
  const Scene scene;
  scene.window()->Render();
  EXPECT_TRUE(morrow_test::gl_messages().empty()); // VTK's own frame has none
  const ExpectedGlErrors expect{"glEnable"};
  make_gl_error(scene.window());
  EXPECT_EQ(expect.count(), 1);
  EXPECT_EQ(morrow_test::gl_messages().size(), 1U);
}

TEST_F(SceneTest, AWindowMadePastTheFactoryCanBeWatched)
{
  const vtkNew<vtkXOpenGLRenderWindow> window;
  EXPECT_TRUE(morrow_test::watch_gl_errors(window));
  const ExpectedGlErrors expect{"GL_INVALID_ENUM"};
  make_gl_error(window);
}

TEST_F(SceneTest, AWatchedWindowHasNoObserverOfOurs)
{
  // Tests count the observers that the library adds and removes.
  const auto window = morrow_test::make_window();
  EXPECT_EQ(window->HasObserver(vtkCommand::AnyEvent), 0);
  EXPECT_STREQ(window->GetClassName(), "vtkXOpenGLRenderWindow");
}

TEST_F(SceneTest, FramesAreCountedUntilEitherSideEnds)
{
  auto window = morrow_test::make_window();
  const vtkNew<vtkRenderer> renderer;
  window->AddRenderer(renderer);
  {
    FrameCounter frames(window);
    window->Render();
    window->Render();
    EXPECT_EQ(frames.starts(), 2);
    EXPECT_EQ(frames.ends(), 2);
    frames.reset();
    EXPECT_EQ(frames.starts(), 0);
    EXPECT_EQ(frames.ends(), 0);
  }
  EXPECT_EQ(window->HasObserver(vtkCommand::StartEvent), 0);
  const FrameCounter outlives(window);
  window = nullptr;
  EXPECT_EQ(outlives.ends(), 0);
}

TEST_F(SceneTest, CompositeDataIsDrawnInOneColour)
{
  const auto left = morrow_test::quad(-1, -1, 0, 1);
  const auto right = morrow_test::quad(0, -1, 1, 1);
  const auto blocks = morrow_test::multiblock({left, nullptr, right});
  EXPECT_EQ(blocks->GetNumberOfBlocks(), 3U);
  EXPECT_EQ(blocks->GetBlock(1), nullptr);
  Scene scene(50, 50);
  scene.look_down(1.0);
  scene.renderer()->AddActor(morrow_test::flat_composite_actor(blocks, kGreen));
  EXPECT_EQ(morrow_test::count_pixels(scene.render(), colour_is(kGreen)), 50 * 50);
}

// --- Data ----------------------------------------------------------------------------------------

TEST(TestDataTest, CountsPointsAndCells)
{
  EXPECT_EQ(morrow_test::one_triangle()->GetNumberOfPolys(), 1);
  EXPECT_EQ(morrow_test::quad(0, 0, 1, 1)->GetNumberOfPoints(), 4);
  EXPECT_EQ(morrow_test::polyline({0, 0, 0, 1, 0, 0, 1, 1, 0})->GetNumberOfLines(), 1);
  EXPECT_EQ(morrow_test::polyline({0, 0, 0})->GetNumberOfLines(), 0);
  EXPECT_EQ(morrow_test::vertices({0, 0, 0, 1, 0, 0})->GetNumberOfVerts(), 2);
  EXPECT_EQ(morrow_test::vertices({})->GetNumberOfPoints(), 0);
}

TEST(TestDataTest, SphereHasTheRadius)
{
  const auto data = morrow_test::sphere(2.0, 8);
  EXPECT_DOUBLE_EQ(data->GetBounds()[5], 2.0); // a pole is a point
}

/// Names a folder in MORROW_TEST_DATA for the scope.
class PromisedFolder
{
public:
  explicit PromisedFolder(const char* folder)
  {
    if (const char* before = std::getenv("MORROW_TEST_DATA")) {
      mBefore = before;
    }
    setenv("MORROW_TEST_DATA", folder, 1);
  }
  ~PromisedFolder()
  {
    if (mBefore.empty()) {
      unsetenv("MORROW_TEST_DATA");
    } else {
      setenv("MORROW_TEST_DATA", mBefore.c_str(), 1);
    }
  }
  PromisedFolder(const PromisedFolder&) = delete;
  PromisedFolder& operator=(const PromisedFolder&) = delete;

private:
  std::string mBefore;
};

TEST(RealMeshLookUpTest, FindsAFileOfThePromisedFolder)
{
  const morrow_test::TemporaryFolder folder;
  std::ofstream(folder.file("mesh.e")) << "mesh";
  const PromisedFolder promise(folder.path().c_str());
  EXPECT_TRUE(morrow_test::real_meshes_promised());
  EXPECT_EQ(morrow_test::real_mesh("mesh.e"), folder.file("mesh.e"));
  EXPECT_EQ(morrow_test::real_mesh("other.e"), "");
}

void use_absent_mesh()
{
  MORROW_REAL_MESH(path, "no_such_mesh.e");
  FAIL() << "went on with " << path;
}

TEST(RealMeshLookUpTest, AMeshMissingFromAPromisedFolderIsAFailure)
{
  const PromisedFolder promise("/");
  EXPECT_FATAL_FAILURE(use_absent_mesh(), "names a folder without no_such_mesh.e");
}

TEST(RealMeshLookUpTest, AnEmptyPromiseIsNone)
{
  const PromisedFolder promise("");
  EXPECT_FALSE(morrow_test::real_meshes_promised());
  EXPECT_EQ(morrow_test::real_mesh("no_such_mesh.e"), "");
}

} // namespace
