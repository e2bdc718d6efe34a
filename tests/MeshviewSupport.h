// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "TemporaryFolder.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <vtkPolyData.h>
#include <vtkUnstructuredGrid.h>

#include <X11/Xlib.h>
#include <X11/keysym.h>

#include <atomic>
#include <chrono>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

/// What the tests of the mesh viewer share: running the program, small meshes, its window.
namespace morrow_test {

// --- Running the program ---------------------------------------------------------------------------------

inline constexpr auto kPatience = std::chrono::seconds(50);

/// What became of a run.
struct Outcome
{
  int status = -1; ///< exit status; minus the signal's number when a signal ended the program
  std::string out;
  std::string err;
};

void PrintTo(const Outcome& outcome, std::ostream* out);

/// The program while it runs.
class Process
{
public:
  /// with_terminal: standard error is a terminal. without_display: DISPLAY is not set. folder: where it runs;
  /// empty is here.
  explicit Process(const std::vector<std::string>& arguments, bool with_terminal = false,
                   bool without_display = false, const std::string& folder = "");
  ~Process();
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  void send(int signal) const;

  /// Reads until the program has written the text to standard error, or output; false when it has ended
  /// before.
  bool wait_for_error_text(const std::string& text) { return wait_for(mOutcome.err, text); }
  bool wait_for_output_text(const std::string& text) { return wait_for(mOutcome.out, text); }

  /// What the program writes to standard output, from the end of the last answer to this text.
  std::string expect_new_output(const std::string& text);

  Outcome wait();

private:
  bool wait_for(const std::string& stream, const std::string& text);
  void start(const std::vector<std::string>& arguments, int out, int err, bool without_display,
             const std::string& folder);
  bool read_some();

  std::chrono::steady_clock::time_point mDeadline = std::chrono::steady_clock::now() + kPatience;
  pid_t mId = -1;
  int mOut = -1;
  int mErr = -1;
  bool mOutIsOpen = true;
  bool mErrIsOpen = true;
  Outcome mOutcome;
  std::size_t mAnswered = 0; // of standard output
};

Outcome run(const std::vector<std::string>& arguments);

[[nodiscard]] std::size_t count_lines(const std::string& text);

// --- Small meshes ----------------------------------------------------------------------------------------

/// The unit cube as 1 hexahedron, or with the corner points of a box.
[[nodiscard]] vtkSmartPointer<vtkUnstructuredGrid> hexahedra(const std::vector<double>& x_borders);

/// The six sides of the cube from -1 to 1, in the order +x, -x, +y, -y, +z, -z, with the cell array "side" 0
/// to 5 and the point array "corner", whose value is the point's z.
[[nodiscard]] vtkSmartPointer<vtkPolyData> cube_sides();

/// The project's own mesh.
[[nodiscard]] std::string sample();

template<class Writer, class Data>
std::string write_with(const std::string& path, Data* data)
{
  vtkNew<Writer> writer;
  writer->SetFileName(path.c_str());
  writer->SetInputData(data);
  writer->Write();
  return path;
}

std::string write_text(const std::string& path, const std::string& text);
[[nodiscard]] std::string read_text(const std::string& path);

// --- Pictures --------------------------------------------------------------------------------------------

[[nodiscard]] bool is_white(Rgb pixel);

/// The hue of a pixel in degrees from red over green and blue, which light and shade do not change.
[[nodiscard]] double hue(Rgb pixel);

// --- The tests' frame ------------------------------------------------------------------------------------

/// Has a folder of its own.
class MeshviewTest : public RenderTest
{
protected:
  [[nodiscard]] std::string in_folder(const std::string& name) const { return mFolder.file(name); }

  /// The file of cube_sides().
  [[nodiscard]] std::string write_cube(const std::string& name = "cube.vtp") const;

  /// The picture of a run that must succeed; 200 x 200 pixels on white unless the arguments say otherwise.
  [[nodiscard]] Image draw(std::vector<std::string> arguments) const;

  /// A faulty command line: status 2, something on standard error alone, and no picture.
  void expect_faulty(const std::vector<std::string>& arguments) const;

  /// A file that cannot be shown: status 2, and one line that names the file and holds this text.
  void expect_refused(const std::string& path, const std::string& reason) const;

  TemporaryFolder mFolder;
  std::string mPicture = in_folder("picture.png");
};

/// Looks at the program's window from outside.
class MeshviewWindowTest : public MeshviewTest
{
protected:
  void SetUp() override;
  void TearDown() override;

  /// Waits until the window with this title is on the screen.
  [[nodiscard]] Window wait_for_window(const std::string& title) const;

  /// state: of the modifier keys, as X has it.
  void press_key(Window window, KeySym key, unsigned int state = 0) const;

  /// What a window manager sends when its button is pressed.
  void ask_to_close(Window window) const;

  /// A button goes down or up, or the mouse moves, in pixels from the window's bottom left corner. The
  /// display's one pointer goes along.
  void press_button(Window window, int x, int y, unsigned int state = 0, unsigned int button = Button1) const;
  void release_button(Window window, int x, int y, unsigned int state = 0,
                      unsigned int button = Button1) const;
  void move_mouse(Window window, int x, int y, unsigned int state = 0) const;
  /// Moves the pointer into the window and out of it a few times.
  void cross_with_pointer(Window window) const;

  Display* mDisplay = nullptr;

private:
  void send_mouse(Window window, int type, int x, int y, unsigned int state, unsigned int button) const;
};

/// The program with a window that takes events.
class MeshviewRunningTest : public MeshviewWindowTest
{
protected:
  /// mesh: the first file. Waits until the window listens.
  void open(const std::string& mesh, const std::vector<std::string>& arguments);
  void TearDown() override;

  /// What the program writes from now on, until it writes the text.
  std::string expect_output(const std::string& text);

  /// The picture that the key s saves.
  [[nodiscard]] Image picture();

  std::unique_ptr<Process> mProcess;
  Window mWindow = 0;

private:
  std::string mStem;
  std::atomic<bool> mListens{false};
  int mPictures = 0;
};

} // namespace morrow_test
