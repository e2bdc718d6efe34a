// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "Output.h"

#include "FileCopy.h"
#include "OptionValues.h"

#include <vtkRenderWindow.h>
#include <vtkSmartPointer.h>

#include <cstdio>
#include <filesystem>
#include <set>
#include <type_traits>

namespace fs = std::filesystem;

namespace {

/// A file that the library writes for an output, and where it goes.
struct MadeFile
{
  std::string name; // without a folder
  std::string target;
};

bool is_obj(const Output& output)
{
  return output.format == FileFormat(GView::OBJ);
}

/// A scene as .obj has its colours in a second file. The library appends both extensions by itself.
std::vector<MadeFile> files_of(const Output& output)
{
  const fs::path path = output.path;
  if (is_obj(output)) {
    const std::string stem = path.stem().string();
    return {{stem + ".obj", output.path}, {stem + ".mtl", fs::path(path).replace_extension(".mtl").string()}};
  }
  return {{path.filename().string(), output.path}};
}

/// targets: of all outputs before this one, to which it adds its own.
std::optional<OutputProblem> problem_of(const Output& output, std::set<fs::path>& targets)
{
  for (const MadeFile& file : files_of(output)) {
    std::error_code error;
    if (!targets.insert(fs::weakly_canonical(file.target, error)).second) {
      return OutputProblem{file.target, "is to be written twice"};
    }
    if (std::string reason = write_problem(file.target); !reason.empty()) {
      return OutputProblem{file.target, std::move(reason)};
    }
  }
  return std::nullopt;
}

/// Writes all files of the output to the folder.
bool write_with_library(GView& view, const std::string& folder, const Output& output)
{
  const fs::path path = output.path;
  const std::string name = folder + "/" + (is_obj(output) ? path.stem() : path.filename()).string();
  return std::visit(
      [&](auto type) {
        if constexpr (std::is_same_v<decltype(type), GView::ImageFileType>) {
          return view.write_image(name.c_str(), type, 0, 0);
        } else {
          return view.write_model(name.c_str(), type);
        }
      },
      output.format);
}

/// Writing a picture ends with the window's off-screen buffers switched off. A run without a window draws on,
/// and reads depths for its labels, which only the buffers hold then.
class OffScreenKept
{
public:
  explicit OffScreenKept(vtkRenderWindow& window) : mWindow(&window), mBefore(window.GetUseOffScreenBuffers())
  {}
  ~OffScreenKept() { mWindow->SetUseOffScreenBuffers(mBefore); }
  OffScreenKept(const OffScreenKept&) = delete;
  OffScreenKept& operator=(const OffScreenKept&) = delete;

private:
  vtkSmartPointer<vtkRenderWindow> mWindow;
  bool mBefore;
};

} // namespace

std::optional<OutputProblem> output_problem(const Options& options)
{
  std::set<fs::path> targets;
  for (const Output& output : options.outputs) {
    if (format_of(output.path) != output.format) { // only --image takes any name
      return OutputProblem{output.path, "the name of a picture ends in .png"};
    }
    const int count = is_image(output.format) ? options.spin : 0;
    for (int number = count == 0 ? 0 : 1; number <= count; ++number) {
      if (auto problem = problem_of(number == 0 ? output : numbered(output, number), targets)) {
        return problem;
      }
    }
  }
  if (std::string reason = options.pick.report.empty() ? "" : write_problem(options.pick.report);
      !reason.empty()) {
    return OutputProblem{options.pick.report, std::move(reason)};
  }
  return std::nullopt;
}

/// The library, as VTK below it, does not tell when the disk is full, and leaves or removes what it then has.
/// So it writes to a folder of ours, from where the files are copied by code that looks.
std::string write_output(GView& view, const Output& output)
{
  const ScratchFolder folder;
  if (folder.path().empty()) {
    return "there is no place for temporary files";
  }
  const OffScreenKept off_screen(*view.get_render_window());
  const bool is_written = write_with_library(view, folder.path(), output);
  if (folder.is_full()) {
    return "no room for temporary files in " + fs::path(folder.path()).parent_path().string();
  }
  for (const MadeFile& file : files_of(output)) {
    std::error_code error;
    const std::string made = folder.path() + "/" + file.name;
    if (!is_written || fs::file_size(made, error) == 0 || error) {
      return "the file could not be made";
    }
    if (std::string problem = copy_file(made, file.target); !problem.empty()) {
      return problem;
    }
  }
  return "";
}

Output numbered(const Output& output, int number)
{
  char digits[16];
  std::snprintf(digits, sizeof digits, "_%04d", number);
  const fs::path path = output.path;
  const std::string name = path.stem().string() + digits + path.extension().string();
  return {(path.parent_path() / name).string(), output.format};
}

std::optional<Output> new_output(const std::string& name)
{
  for (int number = 1; number <= OptionValues::kMostPictures; ++number) {
    const Output output = numbered({name, format_of(name).value()}, number);
    std::error_code error;
    if (!fs::exists(fs::symlink_status(output.path, error))) {
      return output;
    }
  }
  return std::nullopt;
}
