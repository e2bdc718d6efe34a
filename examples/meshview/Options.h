// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <optional>
#include <string>
#include <vector>

/// How the program ended, for scripts. Also in the text of --help.
enum ExitStatus : int
{
  EXIT_ALL_SHOWN = 0,
  EXIT_SOME_FAILED = 1,
  EXIT_NOTHING_SHOWN = 2, ///< also for a faulty command line
  EXIT_INTERRUPTED = 130  ///< as a shell reports a program that Ctrl-C has ended
};

enum class Labels
{
  None,
  Blocks,
  Points,
  Cells
};

/// What the command line asks for.
struct Options
{
  std::vector<std::string> files;
  std::string image; ///< file to write; empty opens a window
  int width = 960;   ///< of the picture or window, pixels
  int height = 720;
  int bottom_background; ///< ids of BrantColorTable
  int top_background;
  std::string view = "iso";
  Labels labels = Labels::None;
  bool edges = true;
  std::string color_by; ///< name of an array; empty gives each block its own colour
  bool guard = true;    ///< read in a child process, which may crash
};

/// Reads the command line. An answer is the exit status of a program that has nothing more to do: help was
/// asked for, or the command line is faulty, and the user has been told.
/// Adds meshview's own background colours to the colour table.
std::optional<int> parse_options(int argc, char** argv, Options& options);
