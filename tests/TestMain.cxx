// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// The main program of every test executable, and the watch that it installs over VTK, OpenGL and skips.
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <vtkLogger.h>
#include <vtkObjectFactory.h>
#include <vtkObjectFactoryCollection.h>
#include <vtkOutputWindow.h>
#include <vtkVersion.h>
#include <vtkXOpenGLRenderWindow.h>
#include <vtk_glew.h>

#include <algorithm>
#include <cstring>
#include <iostream>

// The OpenGL driver is a plug-in, which X and GLX unload before the leak checker runs; the few bytes that it
// keeps per context would then be reported as leaks of an unknown module, which no suppression can name. So
// nothing is unloaded. Programs are linked with exported symbols (-rdynamic), so that this definition wins
// over the C library's in every module of the process.
extern "C" __attribute__((visibility("default"))) int dlclose(void* handle);
extern "C" int dlclose(void* /*handle*/)
{
  return 0;
}

namespace morrow_test {
namespace {

enum class Source
{
  Vtk,
  Gl
};

/// What a living ExpectedVtkErrors or ExpectedGlErrors asked for.
struct Expectation
{
  int id;
  Source source;
  std::vector<std::string> parts;
  std::vector<std::string> unmet;
  int count = 0;

  [[nodiscard]] bool matches(const std::string& text) const
  {
    return parts.empty() || std::any_of(parts.begin(), parts.end(), [&](const std::string& part) {
             return text.find(part) != std::string::npos;
           });
  }

  void take(const std::string& text)
  {
    ++count;
    const auto is_met = [&](const std::string& part) { return text.find(part) != std::string::npos; };
    unmet.erase(std::remove_if(unmet.begin(), unmet.end(), is_met), unmet.end());
  }
};

struct Watch
{
  std::vector<Message> vtk;
  std::vector<Message> gl;
  std::vector<std::string> bad_skips;
  std::vector<Expectation> expectations;
  int next_id = 0;

  std::vector<Message>& messages(Source source) { return source == Source::Vtk ? vtk : gl; }

  void clear_records()
  {
    vtk.clear();
    gl.clear();
    bad_skips.clear();
  }
};

Watch& watch()
{
  // Never destroyed: a window that a static object holds may report after this file's own statics are gone.
  static Watch& one = *new Watch;
  return one;
}

void record(Source source, MessageKind kind, const char* text)
{
  Message message{kind, text != nullptr ? text : "", false};
  auto& expectations = watch().expectations;
  const auto taker = std::find_if(expectations.rbegin(), expectations.rend(), [&](const Expectation& one) {
    return one.source == source && kind != MessageKind::Text && one.matches(message.text);
  });
  if (taker != expectations.rend()) {
    message.expected = true;
    taker->take(message.text);
  }
  watch().messages(source).push_back(std::move(message));
}

int begin_expectation(Source source, std::initializer_list<const char*> parts)
{
  Expectation one{watch().next_id++, source, {parts.begin(), parts.end()}, {parts.begin(), parts.end()}};
  watch().expectations.push_back(std::move(one));
  return watch().expectations.back().id;
}

std::vector<Expectation>::iterator find_expectation(int id)
{
  auto& all = watch().expectations;
  return std::find_if(all.begin(), all.end(), [=](const Expectation& one) { return one.id == id; });
}

int count_of_expectation(int id)
{
  return find_expectation(id)->count;
}

void end_expectation(int id)
{
  const auto place = find_expectation(id);
  const char* name = place->source == Source::Vtk ? "VTK" : "OpenGL";
  if (place->count == 0 && place->parts.empty()) {
    ADD_FAILURE() << "expected some message of " << name << ", but none came";
  }
  for (const std::string& part : place->unmet) {
    ADD_FAILURE() << "expected a message of " << name << " with \"" << part << "\", but none came";
  }
  watch().expectations.erase(place);
}

// --- VTK -----------------------------------------------------------------------------------------

/// Records what VTK would print.
class RecordingOutputWindow : public vtkOutputWindow
{
public:
  static RecordingOutputWindow* New();
  vtkTypeMacro(RecordingOutputWindow, vtkOutputWindow)

  RecordingOutputWindow(const RecordingOutputWindow&) = delete;
  void operator=(const RecordingOutputWindow&) = delete;

  void DisplayText(const char* text) override { record(Source::Vtk, MessageKind::Text, text); }
  void DisplayDebugText(const char* text) override { record(Source::Vtk, MessageKind::Text, text); }
  void DisplayErrorText(const char* text) override { record(Source::Vtk, MessageKind::Error, text); }
  void DisplayWarningText(const char* text) override { record(Source::Vtk, MessageKind::Warning, text); }
  void DisplayGenericWarningText(const char* text) override
  {
    record(Source::Vtk, MessageKind::Warning, text);
  }

protected:
  RecordingOutputWindow() = default;
  ~RecordingOutputWindow() override = default;
};

vtkStandardNewMacro(RecordingOutputWindow)

void record_vtk_messages()
{
  vtkObject::GlobalWarningDisplayOn();
  if (RecordingOutputWindow::SafeDownCast(vtkOutputWindow::GetInstance()) == nullptr) {
    const vtkNew<RecordingOutputWindow> window;
    vtkOutputWindow::SetInstance(window);
  }
}

// --- OpenGL --------------------------------------------------------------------------------------

void receive_gl_message(GLenum /*source*/, GLenum type, GLuint /*id*/, GLenum /*severity*/,
                        GLsizei /*length*/, const GLchar* text, const void* /*user*/)
{
  if (type == GL_DEBUG_TYPE_ERROR || type == GL_DEBUG_TYPE_UNDEFINED_BEHAVIOR) {
    record(Source::Gl, MessageKind::Error, text);
  }
}

bool watch_current_context()
{
  if (glDebugMessageCallback == nullptr) {
    return false;
  }
  glEnable(GL_DEBUG_OUTPUT);
  // The message then comes from within the failing call, where a debugger's stack shows it.
  glEnable(GL_DEBUG_OUTPUT_SYNCHRONOUS);
  glDebugMessageCallback(receive_gl_message, nullptr);
  return true;
}

/// The platform's render window, with the watch on each context that it makes.
class WatchedRenderWindow : public vtkXOpenGLRenderWindow
{
public:
  WatchedRenderWindow(const WatchedRenderWindow&) = delete;
  void operator=(const WatchedRenderWindow&) = delete;

  static WatchedRenderWindow* make() { return new WatchedRenderWindow; }

  void OpenGLInit() override
  {
    vtkXOpenGLRenderWindow::OpenGLInit();
    // Without a native window there is no context, and OpenGL's functions are null pointers.
    if (this->GetGenericContext() != nullptr) {
      watch_current_context();
    }
  }

protected:
  // No type macro: to the library and its tests it is the class that VTK itself would have made.
  WatchedRenderWindow() = default;
  ~WatchedRenderWindow() override = default;
};

/// Makes every `vtkRenderWindow::New()` a watched one, so that no test can forget to watch.
class WatchedWindowFactory : public vtkObjectFactory
{
public:
  static WatchedWindowFactory* New();
  vtkTypeMacro(WatchedWindowFactory, vtkObjectFactory)

  WatchedWindowFactory(const WatchedWindowFactory&) = delete;
  void operator=(const WatchedWindowFactory&) = delete;

  const char* GetVTKSourceVersion() override { return VTK_SOURCE_VERSION; }
  const char* GetDescription() override { return "render windows under watch"; }

protected:
  WatchedWindowFactory() = default;
  ~WatchedWindowFactory() override = default;

  vtkObject* CreateObject(const char* name) override
  {
    return std::strcmp(name, "vtkRenderWindow") == 0 ? WatchedRenderWindow::make() : nullptr;
  }
};

vtkStandardNewMacro(WatchedWindowFactory)

WatchedWindowFactory* gWindowFactory = nullptr; // owned by VTK's list of factories

void put_window_factory_first()
{
  const vtkNew<WatchedWindowFactory> factory;
  vtkObjectFactory::RegisterFactory(factory);
  vtkObjectFactoryCollection* all = vtkObjectFactory::GetRegisteredFactories();
  all->RemoveItem(factory);
  all->vtkCollection::InsertItem(-1, factory);
  gWindowFactory = factory;
}

// --- The listener --------------------------------------------------------------------------------

bool is_unexpected(const Message& message)
{
  return !message.expected && message.kind != MessageKind::Text;
}

/// Everything that came since the records were cleared and nobody asked for.
std::vector<std::string> offences()
{
  std::vector<std::string> found;
  for (const Message& message : watch().vtk) {
    if (is_unexpected(message)) {
      found.push_back("VTK reported: " + message.text);
    }
  }
  for (const Message& message : watch().gl) {
    if (is_unexpected(message)) {
      found.push_back("OpenGL reported: " + message.text);
    }
  }
  for (const std::string& skip : watch().bad_skips) {
    found.push_back("skipped for a reason that is not permitted: " + skip);
  }
  watch().clear_records();
  return found;
}

class WatchListener : public ::testing::EmptyTestEventListener
{
public:
  [[nodiscard]] int strays() const noexcept { return mStrays; }

  /// Tells of what came while no test ran: in a suite's set-up, between tests.
  void report_strays()
  {
    for (const std::string& offence : offences()) {
      std::cerr << "outside of any test, " << offence << '\n';
      ++mStrays;
    }
  }

private:
  void OnTestStart(const ::testing::TestInfo& /*info*/) override
  {
    report_strays();
    record_vtk_messages();
  }

  void OnTestPartResult(const ::testing::TestPartResult& result) override
  {
    if (result.skipped() && std::string(result.message()).rfind(kDataAbsent, 0) != 0) {
      watch().bad_skips.emplace_back(result.message());
    }
  }

  void OnTestEnd(const ::testing::TestInfo& info) override
  {
    for (const std::string& offence : offences()) {
      ADD_FAILURE_AT(info.file(), info.line()) << offence;
    }
  }

  int mStrays = 0;
};

WatchListener* gListener = nullptr; // owned by GoogleTest

} // namespace

std::vector<Message> vtk_messages()
{
  return watch().vtk;
}

std::vector<Message> gl_messages()
{
  return watch().gl;
}

ExpectedVtkErrors::ExpectedVtkErrors(std::initializer_list<const char*> parts)
    : mId(begin_expectation(Source::Vtk, parts))
{}

ExpectedVtkErrors::~ExpectedVtkErrors()
{
  end_expectation(mId);
}

int ExpectedVtkErrors::count() const
{
  return count_of_expectation(mId);
}

ExpectedGlErrors::ExpectedGlErrors(std::initializer_list<const char*> parts)
    : mId(begin_expectation(Source::Gl, parts))
{}

ExpectedGlErrors::~ExpectedGlErrors()
{
  end_expectation(mId);
}

int ExpectedGlErrors::count() const
{
  return count_of_expectation(mId);
}

WarningDisplayOn::WarningDisplayOn() : mBefore(vtkObject::GetGlobalWarningDisplay())
{
  vtkObject::GlobalWarningDisplayOn();
}

WarningDisplayOn::~WarningDisplayOn()
{
  vtkObject::SetGlobalWarningDisplay(mBefore);
}

bool watch_gl_errors(vtkRenderWindow* window)
{
  auto* gl_window = vtkOpenGLRenderWindow::SafeDownCast(window);
  if (gl_window == nullptr) {
    return false;
  }
  gl_window->Initialize();
  gl_window->MakeCurrent();
  return watch_current_context();
}

void install_watch()
{
  // Each error goes to the output window as well; the log would only print it a second time.
  vtkLogger::SetStderrVerbosity(vtkLogger::VERBOSITY_OFF);
  record_vtk_messages();
  put_window_factory_first();
  gListener = new WatchListener;
  ::testing::UnitTest::GetInstance()->listeners().Append(gListener);
}

int remove_watch()
{
  gListener->report_strays();
  vtkOutputWindow::SetInstance(nullptr);
  vtkObjectFactory::UnRegisterFactory(gWindowFactory);
  return gListener->strays();
}

namespace {

int run_tests(int argc, char** argv)
{
  ::testing::InitGoogleTest(&argc, argv);
  install_watch();
  const int result = RUN_ALL_TESTS();
  const int strays = remove_watch();
  return strays != 0 ? 1 : result;
}

/// A leaked object whose address is left in a dead stack frame would pass for reachable.
void overwrite_stack()
{
  volatile unsigned char room[1 << 18];
  for (volatile unsigned char& byte : room) {
    byte = 0;
  }
}

} // namespace
} // namespace morrow_test

int main(int argc, char** argv)
{
  // Through pointers that the compiler must read: neither call may be merged into main's own frame.
  int (*volatile run)(int, char**) = morrow_test::run_tests;
  void (*volatile overwrite)() = morrow_test::overwrite_stack;
  const int result = run(argc, argv);
  overwrite();
  return result;
}
