// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>

/// What meshview says to its user. Every message is one line, whatever bytes a file name or a reason has.
namespace Console {

/// Writes "meshview: TEXT" to standard error.
void complain(const std::string& text);

/// Writes "meshview: FILE: REASON" to standard error.
void complain(const std::string& file, const std::string& reason);

/// Standard error as it was when the program started, also while a Quiet lives. For writing a progress bar.
[[nodiscard]] int error_descriptor();

/// Is standard error a terminal, so that a progress bar makes sense?
[[nodiscard]] bool has_terminal();

/// What clears the line that a progress bar has written on a terminal; empty where there is none. Lives as
/// long as the program.
[[nodiscard]] const char* wipe_line();

/// While it lives, what anyone writes to standard error by itself is lost. The C libraries below VTK's
/// readers describe damaged files there, at length and without naming them.
class Quiet
{
public:
  Quiet();
  ~Quiet();
  Quiet(const Quiet&) = delete;
  Quiet& operator=(const Quiet&) = delete;

private:
  int mOutside;
};

} // namespace Console
