// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "BrantVector.h"

#include <functional>
#include <string>
#include <vector>

/// A text file of drawing calls, one per line: see debug_script_help(). Running it makes the calls through
/// GfxDebug, as any code of a host would.
class DebugScript
{
public:
  /// Draws nothing.
  DebugScript() = default;

  /// Reads the file. The user is told of each faulty line, which is left out, and of a file that cannot be
  /// read or has more than 64 MiB, of which nothing is drawn.
  explicit DebugScript(const std::string& path);

  /// Could all of the file be understood?
  [[nodiscard]] bool is_sound() const noexcept { return mFaults == 0; }

  /// The number of calls.
  [[nodiscard]] std::size_t size() const noexcept { return mCalls.size(); }

  /// The points of what is seen at the end: all since the last "clear".
  [[nodiscard]] const std::vector<BrantVector>& points() const noexcept { return mPoints; }

  /// Makes the calls, in the order of the lines.
  void run() const;

private:
  void read(const std::string& path, const std::string& text);
  void read_line(const std::string& line);
  void report(const std::string& path, std::size_t number, const std::string& problem);

  std::vector<std::function<void()>> mCalls;
  std::vector<BrantVector> mPoints;
  std::size_t mFaults = 0;
};

/// The calls with their arguments, one per line, for --help.
[[nodiscard]] std::string debug_script_help();
