// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
// meshview: shows meshes with libmorrow_base. See --help, and Viewer.cxx for how the library is used.

#include "Batch.h"
#include "ColorScale.h"
#include "Console.h"
#include "Display.h"
#include "Interrupt.h"
#include "MeshLegend.h"
#include "MeshQuality.h"
#include "MeshReader.h"
#include "MeshWindow.h"
#include "Options.h"
#include "Output.h"
#include "QualityCounts.h"
#include "ReadGuard.h"
#include "Viewer.h"

#include <vtkSMPTools.h>

#include <exception>
#include <iostream>

namespace {

/// Reads one file; tells the user when it cannot be shown, or not all of it.
void read_file(const std::string& path, const ReadRequest& request, std::vector<MeshFile>& files)
{
  MeshFile file = read_mesh(path, request);
  if (!file.damage.empty()) {
    Console::complain(path, file.damage);
  }
  files.push_back(std::move(file));
}

/// Reads all files that the log does not call failed. Failed ones are left out.
std::vector<MeshFile> read_files(const Options& options, ReadLog& log)
{
  ReadRequest request;
  request.color_by = options.color_by;
  request.quality = options.quality;
  request.ids = options.labels == Labels::Points || options.labels == Labels::Cells ||
                options.pick.region.has_value() || options.opens_window();    // where all can be picked
  request.edges = options.style.wire != Wire::None || options.opens_window(); // keys may ask for them
  std::vector<MeshFile> files;
  for (std::size_t i = 0; i < options.files.size(); ++i) {
    if (log.get(i) == ReadLog::State::Failed) {
      continue;
    }
    log.set(i, ReadLog::State::Reading);
    try {
      read_file(options.files[i], request, files);
      log.set(i, ReadLog::State::Read);
    } catch (const MeshError& error) {
      Console::complain(options.files[i], error.what());
      log.set(i, ReadLog::State::Failed);
    }
  }
  return files;
}

/// The part of reading and preparing that Ctrl-C may stop.
std::vector<MeshFile> read_files_or_stop(const Options& options, ReadLog& log)
{
  const InterruptScope interrupt(InterruptScope::Patience::Short);
  return read_files(options, log);
}

bool all_whole(const std::vector<MeshFile>& files, std::size_t number_asked_for)
{
  bool is_whole = files.size() == number_asked_for;
  for (const MeshFile& file : files) {
    is_whole = is_whole && file.damage.empty();
  }
  return is_whole;
}

int draw(const Options& options, const Contents& contents)
{
  Viewer viewer(options, contents);
  if (viewer.groups() != nullptr) {
    std::cout << "groups: " << viewer.groups()->summary() << std::endl;
  }
  if (!options.opens_window()) {
    return write_outputs(viewer);
  }
  run_window(viewer);
  return EXIT_ALL_SHOWN;
}

ColorScale scale_for(const Options& options, const std::vector<MeshFile>& files)
{
  if (options.color_by.empty() || files.empty()) {
    return ColorScale();
  }
  if (options.quality && !has_quality(files)) {
    throw MeshError("no cell is of a type that has a quality");
  }
  ColorScale scale(options.color_by, files);
  if (options.quality) {
    scale.set_range(
        MeshQuality::kRange); // meshes can be compared, and rounding is not spread over all colours
  }
  return scale;
}

void tell_of(const Options& options, const Contents& contents)
{
  if (!contents.files.empty()) {
    write_legend(std::cout, contents.files);
  }
  const ValueRange& range = contents.scale.range();
  if (!contents.scale.is_empty()) {
    std::cout << "colours: " << options.color_by << " from " << range.low << " (blue) to " << range.high
              << " (red)" << std::endl;
  }
  if (options.quality && !contents.files.empty()) {
    const QualityCounts counts(contents.files, MeshQuality::kRange, 1);
    std::cout << "quality: " << MeshQuality::measure_name() << " of " << counts.text() << " from "
              << counts.found().low << " to " << counts.found().high << std::endl;
  }
  if (!options.debug_script.empty()) {
    std::cout << options.debug_script << "\n  " << contents.script.size() << " drawing calls" << std::endl;
  }
}

int show(const Options& options, const Contents& contents)
{
  tell_of(options, contents);
  const int status = draw(options, contents);
  const bool is_whole = all_whole(contents.files, options.files.size()) && contents.script.is_sound();
  return status == EXIT_ALL_SHOWN && !is_whole ? EXIT_SOME_FAILED : status;
}

DebugScript read_script(const Options& options)
{
  return options.debug_script.empty() ? DebugScript() : DebugScript(options.debug_script);
}

/// Is there anything to be seen? The user has been told of files that failed.
bool is_empty(const Options& options, const Contents& contents)
{
  if (!contents.files.empty() || options.color_table || !contents.script.points().empty()) {
    return false;
  }
  if (!options.debug_script.empty() && contents.script.is_sound()) {
    Console::complain(options.debug_script, "draws nothing");
  }
  return true;
}

/// All that may meet a damaged file.
int read_and_show(const Options& options, ReadLog& log)
{
  try {
    Contents contents;
    contents.files = read_files_or_stop(options, log);
    contents.script = read_script(options);
    if (is_empty(options, contents)) {
      return EXIT_NOTHING_SHOWN;
    }
    contents.scale = scale_for(options, contents.files);
    return show(options, contents);
  } catch (const ReadInterrupted&) {
    Console::complain("interrupted");
    return EXIT_INTERRUPTED;
  } catch (const std::exception& error) {
    Console::complain(error.what());
    return EXIT_NOTHING_SHOWN;
  }
}

} // namespace

int main(int argc, char** argv)
{
  vtkSMPTools::SetBackend("Sequential"); // threads leave the order of faces, and so some pixels, to chance
  Options options;
  if (const auto status = parse_options(argc, argv, options)) {
    return *status;
  }
  if (const auto problem = output_problem(options)) {
    Console::complain(problem->path, problem->reason);
    return EXIT_NOTHING_SHOWN;
  }
  if (const std::string problem = display_problem(); !problem.empty()) {
    Console::complain(problem);
    return EXIT_NOTHING_SHOWN;
  }
  const auto work = [&options](ReadLog& log) { return read_and_show(options, log); };
  return options.guard ? run_guarded(options.files, work) : run_unguarded(options.files, work);
}
