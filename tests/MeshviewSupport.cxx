// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "MeshviewSupport.h"

#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkCellType.h>
#include <vtkDoubleArray.h>
#include <vtkIntArray.h>
#include <vtkPointData.h>
#include <vtkXMLPolyDataWriter.h>

#include <X11/Xutil.h>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>
#include <thread>
#include <utility>

#ifndef MESHVIEW_PROGRAM
#error "MESHVIEW_PROGRAM is the path of the program under test"
#endif

extern char** environ;

namespace fs = std::filesystem;

namespace {

void open_terminal(int (&ends)[2])
{
  ends[0] = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
  EXPECT_EQ(grantpt(ends[0]) + unlockpt(ends[0]), 0);
  ends[1] = open(ptsname(ends[0]), O_RDWR | O_NOCTTY | O_CLOEXEC);
  EXPECT_GE(ends[1], 0);
}

/// False at the end of the stream, which on a terminal is an error.
bool append(int descriptor, std::string& text)
{
  char buffer[4096];
  const ssize_t count = read(descriptor, buffer, sizeof buffer);
  if (count > 0) {
    text.append(buffer, static_cast<std::size_t>(count));
  }
  return count > 0;
}

/// The X window with this title below another one, 0 when there is none.
Window find_window(Display* display, Window window, const std::string& title)
{
  char* name = nullptr;
  if (XFetchName(display, window, &name) != 0 && name != nullptr) {
    const bool is_it = title == name;
    XFree(name);
    if (is_it) {
      return window;
    }
  }
  Window root = 0;
  Window parent = 0;
  Window* children = nullptr;
  unsigned int count = 0;
  Window found = 0;
  if (XQueryTree(display, window, &root, &parent, &children, &count) != 0) {
    for (unsigned int i = 0; i < count && found == 0; ++i) {
      found = find_window(display, children[i], title);
    }
    XFree(children);
  }
  return found;
}

/// Windows that come and go below the pointer would be entered by it.
void move_pointer_away(Display* display)
{
  const int screen = DefaultScreen(display);
  XWarpPointer(display, None, DefaultRootWindow(display), 0, 0, 0, 0, DisplayWidth(display, screen) - 1,
               DisplayHeight(display, screen) - 1);
}

} // namespace

namespace morrow_test {

// --- Running the program ---------------------------------------------------------------------------------

void PrintTo(const Outcome& outcome, std::ostream* out)
{
  *out << "status " << outcome.status << "\nstandard output:\n"
       << outcome.out << "standard error:\n"
       << outcome.err;
}

Process::Process(const std::vector<std::string>& arguments, bool with_terminal, bool without_display,
                 const std::string& folder)
{
  int out[2] = {-1, -1};
  EXPECT_EQ(pipe2(out, O_CLOEXEC), 0);
  int err[2] = {-1, -1};
  if (with_terminal) {
    open_terminal(err);
  } else {
    EXPECT_EQ(pipe2(err, O_CLOEXEC), 0);
  }
  start(arguments, out[1], err[1], without_display, folder);
  close(out[1]);
  close(err[1]);
  mOut = out[0];
  mErr = err[0];
}

Process::~Process()
{
  if (mId > 0) {
    kill(mId, SIGKILL);
    waitpid(mId, nullptr, 0);
  }
  close(mOut);
  close(mErr);
}

void Process::send(int signal) const
{
  kill(mId, signal);
}

bool Process::wait_for(const std::string& stream, const std::string& text)
{
  while (stream.find(text) == std::string::npos) {
    if (!read_some()) {
      return false;
    }
  }
  return true;
}

std::string Process::expect_new_output(const std::string& text)
{
  while (mOutcome.out.find(text, mAnswered) == std::string::npos && read_some()) {
  }
  const auto at = mOutcome.out.find(text, mAnswered);
  const std::size_t end = at == std::string::npos ? mOutcome.out.size() : at + text.size();
  const std::string answer = mOutcome.out.substr(mAnswered, end - mAnswered);
  mAnswered = end;
  return answer;
}

Outcome Process::wait()
{
  while (read_some()) {
  }
  int status = 0;
  waitpid(mId, &status, 0);
  mId = -1;
  mOutcome.status = WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
  return mOutcome;
}

void Process::start(const std::vector<std::string>& arguments, int out, int err, bool without_display,
                    const std::string& folder)
{
  std::vector<std::string> words = {MESHVIEW_PROGRAM};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> argv;
  for (std::string& word : words) {
    argv.push_back(word.data());
  }
  argv.push_back(nullptr);
  std::vector<char*> environment;
  for (char** variable = environ; *variable != nullptr; ++variable) {
    if (!without_display || std::strncmp(*variable, "DISPLAY=", 8) != 0) {
      environment.push_back(*variable);
    }
  }
  environment.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  if (!folder.empty()) {
    posix_spawn_file_actions_addchdir_np(&actions, folder.c_str());
  }
  posix_spawn_file_actions_adddup2(&actions, out, STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&actions, err, STDERR_FILENO);
  EXPECT_EQ(posix_spawn(&mId, MESHVIEW_PROGRAM, &actions, nullptr, argv.data(), environment.data()), 0);
  posix_spawn_file_actions_destroy(&actions);
}

/// Reads what there is; false at the end of both streams or of our patience.
bool Process::read_some()
{
  pollfd streams[2] = {{mOutIsOpen ? mOut : -1, POLLIN, 0}, {mErrIsOpen ? mErr : -1, POLLIN, 0}};
  const auto left =
      std::chrono::duration_cast<std::chrono::milliseconds>(mDeadline - std::chrono::steady_clock::now());
  if ((!mOutIsOpen && !mErrIsOpen) ||
      poll(streams, 2, static_cast<int>(std::max<long>(left.count(), 0))) <= 0) {
    if (mOutIsOpen || mErrIsOpen) {
      ADD_FAILURE() << "no patience left";
      kill(mId, SIGKILL);
    }
    return false;
  }
  mOutIsOpen = mOutIsOpen && (streams[0].revents == 0 || append(mOut, mOutcome.out));
  mErrIsOpen = mErrIsOpen && (streams[1].revents == 0 || append(mErr, mOutcome.err));
  return mOutIsOpen || mErrIsOpen;
}

Outcome run(const std::vector<std::string>& arguments)
{
  return Process(arguments).wait();
}

std::size_t count_lines(const std::string& text)
{
  return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

// --- Small meshes ----------------------------------------------------------------------------------------

vtkSmartPointer<vtkUnstructuredGrid> hexahedra(const std::vector<double>& x_borders)
{
  vtkNew<vtkPoints> points;
  for (const double x : x_borders) {
    for (const auto& [y, z] : {std::pair(0, 0), std::pair(1, 0), std::pair(1, 1), std::pair(0, 1)}) {
      points->InsertNextPoint(x, y, z);
    }
  }
  auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
  grid->SetPoints(points);
  for (vtkIdType cell = 0; cell + 1 < static_cast<vtkIdType>(x_borders.size()); ++cell) {
    const vtkIdType a = 4 * cell;
    const vtkIdType corners[8] = {a, a + 4, a + 5, a + 1, a + 3, a + 7, a + 6, a + 2};
    grid->InsertNextCell(VTK_HEXAHEDRON, 8, corners);
  }
  return grid;
}

vtkSmartPointer<vtkPolyData> cube_sides()
{
  vtkNew<vtkPoints> points;
  vtkNew<vtkDoubleArray> corner;
  corner->SetName("corner");
  for (int i = 0; i < 8; ++i) {
    points->InsertNextPoint((i & 1) != 0 ? 1 : -1, (i & 2) != 0 ? 1 : -1, (i & 4) != 0 ? 1 : -1);
    corner->InsertNextValue((i & 4) != 0 ? 1 : -1);
  }
  auto cube = vtkSmartPointer<vtkPolyData>::New();
  cube->SetPoints(points);
  cube->GetPointData()->AddArray(corner);
  const vtkIdType sides[6][4] = {{1, 3, 7, 5}, {0, 4, 6, 2}, {2, 6, 7, 3},
                                 {0, 1, 5, 4}, {4, 5, 7, 6}, {0, 2, 3, 1}};
  vtkNew<vtkCellArray> polygons;
  vtkNew<vtkIntArray> side;
  side->SetName("side");
  for (int i = 0; i < 6; ++i) {
    polygons->InsertNextCell(4, sides[i]);
    side->InsertNextValue(i);
  }
  cube->SetPolys(polygons);
  cube->GetCellData()->AddArray(side);
  return cube;
}

std::string sample()
{
  return fs::weakly_canonical(baseline_folder() + "/../../examples/meshview/data/bracket.vtu").string();
}

std::string write_text(const std::string& path, const std::string& text)
{
  std::ofstream(path, std::ios::binary) << text;
  return path;
}

std::string read_text(const std::string& path)
{
  std::ifstream file(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), {});
}

// --- Pictures --------------------------------------------------------------------------------------------

bool is_white(Rgb pixel)
{
  return pixel == Rgb{255, 255, 255};
}

double hue(Rgb pixel)
{
  const double high = std::max({pixel.r, pixel.g, pixel.b});
  const double low = std::min({pixel.r, pixel.g, pixel.b});
  const double span = std::max(1.0, high - low);
  if (pixel.r == high) {
    return 60.0 * (pixel.g - pixel.b) / span;
  }
  return pixel.g == high ? 120.0 + 60.0 * (pixel.b - pixel.r) / span
                         : 240.0 + 60.0 * (pixel.r - pixel.g) / span;
}

// --- The tests' frame ------------------------------------------------------------------------------------

void MeshviewTest::expect_faulty(const std::vector<std::string>& arguments) const
{
  const Outcome outcome = run(arguments);
  EXPECT_EQ(outcome.status, 2) << ::testing::PrintToString(arguments) << ::testing::PrintToString(outcome);
  EXPECT_EQ(outcome.out, "");
  EXPECT_NE(outcome.err, "");
  EXPECT_FALSE(fs::exists(mPicture));
}

std::string MeshviewTest::write_cube(const std::string& name) const
{
  return write_with<vtkXMLPolyDataWriter>(in_folder(name), cube_sides().Get());
}

Image MeshviewTest::draw(std::vector<std::string> arguments) const
{
  const std::pair<const char*, const char*> defaults[] = {{"--size", "200x200"}, {"--background", "9"}};
  for (const auto& [option, value] : defaults) {
    if (std::find(arguments.begin(), arguments.end(), option) == arguments.end()) {
      arguments.insert(arguments.end(), {option, value});
    }
  }
  arguments.insert(arguments.end(), {"--image", mPicture});
  const Outcome outcome = run(arguments);
  EXPECT_EQ(outcome.status, 0) << ::testing::PrintToString(outcome);
  EXPECT_EQ(outcome.err, "");
  return read_png(mPicture);
}

void MeshviewTest::expect_refused(const std::string& path, const std::string& reason) const
{
  const Outcome outcome = run({path, "--image", mPicture});
  SCOPED_TRACE(::testing::PrintToString(outcome));
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(count_lines(outcome.err), 1U);
  EXPECT_EQ(outcome.err.find("meshview: " + path + ": "), 0U);
  EXPECT_NE(outcome.err.find(reason), std::string::npos) << reason;
  EXPECT_FALSE(fs::exists(mPicture));
}

// --- The window ------------------------------------------------------------------------------------------

void MeshviewWindowTest::SetUp()
{
  MeshviewTest::SetUp();
  mDisplay = XOpenDisplay(nullptr);
  ASSERT_NE(mDisplay, nullptr);
  // A window may go between two questions about it.
  XSetErrorHandler([](Display* /*display*/, XErrorEvent* /*error*/) { return 0; });
}

void MeshviewWindowTest::TearDown()
{
  if (mDisplay != nullptr) {
    move_pointer_away(mDisplay);
    XCloseDisplay(mDisplay); // brings the last errors
  }
  XSetErrorHandler(nullptr);
  MeshviewTest::TearDown();
}

Window MeshviewWindowTest::wait_for_window(const std::string& title) const
{
  const auto deadline = std::chrono::steady_clock::now() + kPatience;
  while (std::chrono::steady_clock::now() < deadline) {
    const Window window = find_window(mDisplay, DefaultRootWindow(mDisplay), title);
    XWindowAttributes attributes = {};
    if (window != 0 && XGetWindowAttributes(mDisplay, window, &attributes) != 0 &&
        attributes.map_state == IsViewable) {
      return window;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  return 0;
}

void MeshviewWindowTest::press_key(Window window, KeySym key, unsigned int state) const
{
  XEvent event = {};
  event.xkey.type = KeyPress;
  event.xkey.display = mDisplay;
  event.xkey.window = window;
  event.xkey.root = DefaultRootWindow(mDisplay);
  event.xkey.same_screen = True;
  event.xkey.state = state;
  event.xkey.keycode = XKeysymToKeycode(mDisplay, key);
  XSendEvent(mDisplay, window, False, KeyPressMask, &event);
  XFlush(mDisplay);
}

void MeshviewWindowTest::ask_to_close(Window window) const
{
  XEvent event = {};
  event.xclient.type = ClientMessage;
  event.xclient.window = window;
  event.xclient.format = 32;
  event.xclient.message_type = XInternAtom(mDisplay, "WM_PROTOCOLS", False);
  event.xclient.data.l[0] = static_cast<long>(XInternAtom(mDisplay, "WM_DELETE_WINDOW", False));
  XSendEvent(mDisplay, window, False, NoEventMask, &event);
  XFlush(mDisplay);
}

void MeshviewWindowTest::send_mouse(Window window, int type, int x, int y, unsigned int state,
                                    unsigned int button) const
{
  XWindowAttributes attributes = {};
  ASSERT_NE(XGetWindowAttributes(mDisplay, window, &attributes), 0);
  XEvent event = {};
  event.xbutton.type = type; // the first fields of a motion are the same
  event.xbutton.display = mDisplay;
  event.xbutton.window = window;
  event.xbutton.root = DefaultRootWindow(mDisplay);
  event.xbutton.same_screen = True;
  event.xbutton.x = x;
  event.xbutton.y = attributes.height - 1 - y;
  event.xbutton.state = state;
  // VTK asks where the pointer really is, and a button is pressed where the pointer is already.
  XWarpPointer(mDisplay, None, window, 0, 0, 0, 0, event.xbutton.x, event.xbutton.y);
  if (type != MotionNotify) {
    event.xbutton.button = button;
  }
  XSendEvent(mDisplay, window, False, type == MotionNotify ? PointerMotionMask : ButtonPressMask, &event);
  XFlush(mDisplay);
}

void MeshviewWindowTest::press_button(Window window, int x, int y, unsigned int state,
                                      unsigned int button) const
{
  send_mouse(window, ButtonPress, x, y, state, button);
}

void MeshviewWindowTest::release_button(Window window, int x, int y, unsigned int state,
                                        unsigned int button) const
{
  send_mouse(window, ButtonRelease, x, y, state | (Button1Mask << (button - Button1)), button);
}

void MeshviewWindowTest::move_mouse(Window window, int x, int y, unsigned int state) const
{
  send_mouse(window, MotionNotify, x, y, state, 0);
}

void MeshviewWindowTest::cross_with_pointer(Window window) const
{
  for (int i = 0; i < 10; ++i) {
    XWarpPointer(mDisplay, None, window, 0, 0, 0, 0, 5, 5);
    move_pointer_away(mDisplay);
  }
  XFlush(mDisplay);
}

void MeshviewRunningTest::open(const std::string& mesh, const std::vector<std::string>& arguments)
{
  mStem = fs::path(mesh).stem().string();
  std::vector<std::string> all = {mesh};
  all.insert(all.end(), arguments.begin(), arguments.end());
  mProcess = std::make_unique<Process>(all, false, false, mFolder.path());
  mWindow = wait_for_window("meshview - " + mesh);
  ASSERT_NE(mWindow, 0U);
  XMoveWindow(mDisplay, mWindow, 800, 600); // where no other test's window covers it from the pointer
  // Keys that come before the program listens are lost.
  std::thread knocking([this] {
    while (!mListens) {
      press_key(mWindow, XK_h);
      std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
  });
  mListens = mProcess->wait_for_output_text("print this list");
  mListens = true;
  knocking.join();
}

void MeshviewRunningTest::TearDown()
{
  mProcess.reset();
  MeshviewWindowTest::TearDown();
}

std::string MeshviewRunningTest::expect_output(const std::string& text)
{
  const std::string all = mProcess->expect_new_output(text);
  EXPECT_NE(all.find(text), std::string::npos) << "'" << text << "' is not in '" << all << "'";
  return all;
}

Image MeshviewRunningTest::picture()
{
  press_key(mWindow, XK_s);
  char digits[16];
  std::snprintf(digits, sizeof digits, "_%04d.png", ++mPictures);
  expect_output("saved " + mStem + digits);
  return read_png(in_folder(mStem + digits));
}

} // namespace morrow_test
