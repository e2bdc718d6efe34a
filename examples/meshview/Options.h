// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "DrawStyle.h"
#include "FileFormat.h"
#include "MRUtil.h" // MRUtil::AxisType
#include "PickOptions.h"

#include <array>
#include <optional>
#include <string>
#include <vector>

/// How the program ended, for scripts. Also in the text of --help.
enum ExitStatus : int
{
  EXIT_ALL_SHOWN = 0,
  EXIT_SOME_FAILED = 1,
  EXIT_NOTHING_SHOWN = 2, ///< also for a faulty command line, and when a file could not be written
  EXIT_INTERRUPTED = 130  ///< as a shell reports a program that Ctrl-C has ended
};

enum class Labels
{
  None,
  Blocks,
  Points,
  Cells
};

/// What is shown besides the mesh.
struct DecorationOptions
{
  std::string title; ///< empty for none
  bool triad = false;
  std::optional<MRUtil::AxisType> axes; ///< form of the axis prop; hidden without
  bool cube_axes = false;
  bool legend = false; ///< the scale of lengths; only in parallel projection
  bool scalar_bar = false;
};

using Intensity = std::array<float, 3>; ///< red, green and blue, 0 to 1

/// A file to write.
struct Output
{
  std::string path;
  FileFormat format;
};

/// What the command line asks for.
struct Options
{
  std::vector<std::string> files;
  std::vector<Output> outputs; ///< none opens a window
  int spin = 0;                ///< so many pictures of a full turn; 0 is a single one
  int width = 960;             ///< of the picture or window, pixels
  int height = 720;
  int bottom_background; ///< ids of BrantColorTable
  int top_background;
  std::string view = "iso";
  bool parallel = false; ///< projection
  Labels labels = Labels::None;
  std::optional<bool> edges; ///< --edges, which says the same as --wire in short
  std::optional<Wire> wire;
  DrawStyle style;                ///< the wire is what both of these come to
  std::optional<int> group_limit; ///< shown through data groups of so many entities; 0 is no limit
  bool color_faces = false;       ///< each face of the groups in a colour of its own
  std::string color_by;           ///< name of an array; empty gives each block its own colour
  DecorationOptions decorations;
  bool color_table = false;       ///< its chart takes the place of a mesh
  bool quality = false;           ///< colours by the quality of the elements, beside its histogram
  std::string debug_script;       ///< a file of drawing calls; empty for none
  std::optional<Intensity> light; ///< the library's own without
  std::optional<Intensity> ambient;
  PickOptions pick;
  bool guard = true; ///< read in a child process, which may crash

  /// Without a file to write there is a window.
  [[nodiscard]] bool opens_window() const { return outputs.empty() && pick.report.empty(); }
};

/// Reads the command line. An answer is the exit status of a program that has nothing more to do: help was
/// asked for, or the command line is faulty, and the user has been told.
/// Adds meshview's own background colours to the colour table.
std::optional<int> parse_options(int argc, char** argv, Options& options);
