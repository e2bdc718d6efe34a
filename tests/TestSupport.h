// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "TestImage.h"

#include <gtest/gtest.h>

// Complete types, because the smart pointers handed out here are to convert to plain ones in every test.
#include <vtkActor.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkPolyData.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkSmartPointer.h>

#include <cstddef>
#include <initializer_list>
#include <string>
#include <vector>

/// What every test program of this project shares. (The watch is in TestMain.cxx, the rest in
/// TestSupport.cxx.)
///
/// `main` (TestMain.cxx) installs a watch: a test fails when VTK reported an error or a warning, when OpenGL
/// reported an error in any render window, or when it was skipped for any reason but absent data. A test that
/// wants such a message says so with `ExpectedVtkErrors` or `ExpectedGlErrors`.
///
/// The first model of the library switches VTK's warning display off, which silences VTK's errors too. The
/// watch switches it on at the start of each test; a test that makes a model and cares about VTK's messages
/// uses `WarningDisplayOn` after it.
namespace morrow_test {

// --- The watch -----------------------------------------------------------------------------------

enum class MessageKind
{
  Error,
  Warning,
  Text ///< written to VTK's output window as plain text: recorded, never a failure
};

/// One message of VTK, or of OpenGL (always an error).
struct Message
{
  MessageKind kind = MessageKind::Error;
  std::string text;
  bool expected = false; ///< an expectation that was alive when it came contains a part of its text
};

/// VTK's messages since the start of the running test, oldest first. Messages that an observer of
/// "ErrorEvent" or "WarningEvent" on the very object took never reach the output window and are not here.
[[nodiscard]] std::vector<Message> vtk_messages();
/// OpenGL's errors since the start of the running test, oldest first.
[[nodiscard]] std::vector<Message> gl_messages();

/// Scope in which VTK errors and warnings that contain one of these texts are accepted. Each of the texts
/// must come at least once before the scope ends, else the test fails: an expectation that is not met is an
/// error too. With no text at all, every message is accepted and one at least must come. Scopes nest; the
/// innermost match takes a message.
class ExpectedVtkErrors
{
public:
  explicit ExpectedVtkErrors(std::initializer_list<const char*> parts);
  ~ExpectedVtkErrors();
  ExpectedVtkErrors(const ExpectedVtkErrors&) = delete;
  ExpectedVtkErrors& operator=(const ExpectedVtkErrors&) = delete;

  /// How many messages this scope has accepted so far.
  [[nodiscard]] int count() const;

private:
  int mId;
};

/// The same for errors of OpenGL ("GL_INVALID_ENUM").
class ExpectedGlErrors
{
public:
  explicit ExpectedGlErrors(std::initializer_list<const char*> parts);
  ~ExpectedGlErrors();
  ExpectedGlErrors(const ExpectedGlErrors&) = delete;
  ExpectedGlErrors& operator=(const ExpectedGlErrors&) = delete;

  [[nodiscard]] int count() const;

private:
  int mId;
};

/// Switches VTK's global warning display on for the scope and puts back what was before.
class WarningDisplayOn
{
public:
  WarningDisplayOn();
  ~WarningDisplayOn();
  WarningDisplayOn(const WarningDisplayOn&) = delete;
  WarningDisplayOn& operator=(const WarningDisplayOn&) = delete;

private:
  int mBefore;
};

/// Reports the OpenGL errors of the window's present context from now on; the context is made if there is
/// none, so a display must be there. Not needed for windows made by `vtkRenderWindow::New()` in a test
/// program: those are watched from the moment their context is made, also when it is made anew. False when
/// the driver has no debug output.
bool watch_gl_errors(vtkRenderWindow* window);

/// Installs the watch; called once by `main` before the tests run.
void install_watch();
/// Takes the watch down after the tests and reports what came outside of any test, on standard error. Returns
/// how many such messages and skips there were; `main` fails when it is not 0.
[[nodiscard]] int remove_watch();

/// Every permitted skip message begins with this.
inline constexpr const char* kDataAbsent = "data absent: ";

// --- Messages of the library ---------------------------------------------------------------------

/// One call of the library's print function.
struct Printed
{
  std::string text;      ///< empty when `is_null`
  bool is_null = false;  ///< the text pointer was null
  int kind = 0;          ///< 0 information, 1 warning, 2 error
  bool has_text = false; ///< the flag as it was handed over
};

/// Records what the library prints while it lives, instead of printing it; puts the previous print function
/// back. When nested, the innermost records. A print function that the test installs itself meanwhile takes
/// over, and is replaced by the previous one at the end.
class PrintCapture
{
public:
  PrintCapture();
  ~PrintCapture();
  PrintCapture(const PrintCapture&) = delete;
  PrintCapture& operator=(const PrintCapture&) = delete;

  /// All calls so far, in order.
  [[nodiscard]] const std::vector<Printed>& calls() const noexcept { return mCalls; }
  /// The texts of all calls of a kind, one after the other.
  [[nodiscard]] std::string info() const { return text_of(0); }
  [[nodiscard]] std::string warnings() const { return text_of(1); }
  [[nodiscard]] std::string errors() const { return text_of(2); }
  /// Forgets the calls so far.
  void clear() noexcept { mCalls.clear(); }

private:
  using Function = void (*)(const char*, int, bool);

  static void record(const char* text, int kind, bool has_text);
  [[nodiscard]] std::string text_of(int kind) const;

  Function mPreviousFunction = nullptr;
  PrintCapture* mOuter;
  std::vector<Printed> mCalls;
};

// --- Display and windows -------------------------------------------------------------------------

/// Can the X display that DISPLAY names be opened?
[[nodiscard]] bool has_display();

/// Base of all tests that render: fails each of them, loudly, when there is no display. Never skips.
class RenderTest : public ::testing::Test
{
protected:
  void SetUp() override;
};

/// A render window of this size in pixels without multisampling, not yet on the display.
[[nodiscard]] vtkSmartPointer<vtkRenderWindow> make_window(int width = 200, int height = 200);

/// A window with one renderer: the smallest scene. Background black, no multisampling.
class Scene
{
public:
  explicit Scene(int width = 200, int height = 200);
  ~Scene();
  Scene(const Scene&) = delete;
  Scene& operator=(const Scene&) = delete;

  [[nodiscard]] vtkRenderWindow* window() const;
  [[nodiscard]] vtkRenderer* renderer() const;
  /// Looks along −z onto the rectangle of the given half height around the origin, in parallel projection:
  /// one world unit is height / (2 × half_height) pixels.
  void look_down(double half_height);
  /// Renders and reads the picture.
  [[nodiscard]] Image render();

private:
  vtkSmartPointer<vtkRenderWindow> mWindow;
  vtkSmartPointer<vtkRenderer> mRenderer;
};

/// The props of a renderer, in order.
[[nodiscard]] std::vector<vtkProp*> props_of(vtkRenderer* renderer);

/// The pixels that the window shows, without rendering again. The window must have been rendered; one that
/// never was gives the empty picture and fails the test.
[[nodiscard]] Image read_pixels(vtkRenderWindow* window);

/// Renderer and version of the window's context ("llvmpipe (LLVM 15.0.6, 256 bits) / 4.5 (Core Profile)
/// Mesa 22.3.6").
[[nodiscard]] std::string gl_driver(vtkRenderWindow* window);

/// Counts the start and end events of an object (a window, a renderer) while it lives. Holds no reference:
/// the object may die first.
class FrameCounter
{
public:
  explicit FrameCounter(vtkObject* object);
  ~FrameCounter();
  FrameCounter(const FrameCounter&) = delete;
  FrameCounter& operator=(const FrameCounter&) = delete;

  [[nodiscard]] int starts() const noexcept;
  [[nodiscard]] int ends() const noexcept;
  /// Both counts to 0.
  void reset() noexcept;

private:
  class Observer;
  vtkSmartPointer<Observer> mObserver;
};

// --- Small data ----------------------------------------------------------------------------------

/// The triangle (0,0,0), (1,0,0), (0,1,0).
[[nodiscard]] vtkSmartPointer<vtkPolyData> one_triangle();
/// A rectangle in the plane z, corners (x0, y0) and (x1, y1), as one quadrilateral facing +z.
[[nodiscard]] vtkSmartPointer<vtkPolyData> quad(double x0, double y0, double x1, double y1, double z = 0.0);
/// A sphere around the origin with `resolution` segments in each direction (VTK's minimum is 3).
[[nodiscard]] vtkSmartPointer<vtkPolyData> sphere(double radius = 1.0, int resolution = 16);
/// One polyline through the points: 3 × n coordinates. Fewer than two points give no cell.
[[nodiscard]] vtkSmartPointer<vtkPolyData> polyline(const std::vector<double>& xyz);
/// One vertex cell per point: 3 × n coordinates.
[[nodiscard]] vtkSmartPointer<vtkPolyData> vertices(const std::vector<double>& xyz);
/// A multiblock whose blocks are the given data sets in order; null is allowed and gives an empty block.
[[nodiscard]] vtkSmartPointer<vtkMultiBlockDataSet> multiblock(const std::vector<vtkPolyData*>& blocks);

/// An actor of exactly this colour: no lighting, so that pixels can be counted by colour.
[[nodiscard]] vtkSmartPointer<vtkActor> flat_actor(vtkPolyData* data, Rgb colour);
/// A lit actor of this colour.
[[nodiscard]] vtkSmartPointer<vtkActor> lit_actor(vtkPolyData* data, Rgb colour = {255, 255, 255});
/// An actor of exactly this colour that draws composite data (vtkCompositePolyDataMapper2).
[[nodiscard]] vtkSmartPointer<vtkActor> flat_composite_actor(vtkMultiBlockDataSet* data, Rgb colour);

// --- Other programs ------------------------------------------------------------------------------

/// How a command ended.
struct ChildResult
{
  int status = -1; ///< its exit status; −1 when it could not be started or a signal ended it
  std::string output;
};

/// Runs a command in the shell and waits for its end. What it writes to standard error is not caught.
[[nodiscard]] ChildResult run_command(const std::string& command);

// --- Real meshes ---------------------------------------------------------------------------------

/// The path of a mesh of the shared collection ("mug.e"), empty when it is not there. Looked for in the
/// folder that MORROW_TEST_DATA names, if set, else in `shared/data` beside the source tree.
[[nodiscard]] std::string real_mesh(const std::string& name);
/// Was a folder for the meshes promised (MORROW_TEST_DATA is set)? Then a missing one is a failure, not a
/// skip.
[[nodiscard]] bool real_meshes_promised();

/// `const std::string path = real_mesh(name)` in a test; leaves the test when the mesh is absent, with the
/// one permitted skip.
#define MORROW_REAL_MESH(path, name)                                                                         \
  const std::string path = ::morrow_test::real_mesh(name);                                                   \
  if (path.empty() && ::morrow_test::real_meshes_promised()) {                                               \
    FAIL() << "MORROW_TEST_DATA names a folder without " << (name);                                          \
  }                                                                                                          \
  if (path.empty()) {                                                                                        \
    GTEST_SKIP() << ::morrow_test::kDataAbsent << (name);                                                    \
  }                                                                                                          \
  static_assert(true, "ends with a semicolon")

} // namespace morrow_test
