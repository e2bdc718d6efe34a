// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "Console.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

namespace {

/// Control characters would break the line, or worse, steer the terminal.
std::string one_line(std::string text)
{
  for (char& c : text) {
    const auto byte = static_cast<unsigned char>(c);
    c = byte < 0x20 || byte == 0x7f ? '?' : c;
  }
  return text;
}

/// Messages are short: a descriptor that takes only a part of one is as good as broken.
void write_all(int descriptor, const std::string& text)
{
  [[maybe_unused]] const auto written = write(descriptor, text.data(), text.size());
}

} // namespace

namespace Console {

int error_descriptor()
{
  static const int gDescriptor = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3);
  return gDescriptor;
}

const char* wipe_line()
{
  static const bool gHasTerminal = has_terminal();
  return gHasTerminal ? "\r\033[K" : "";
}

void complain(const std::string& text)
{
  write_all(error_descriptor(), wipe_line() + ("meshview: " + one_line(text)) + "\n");
}

void complain(const std::string& file, const std::string& reason)
{
  complain(file + ": " + reason);
}

bool has_terminal()
{
  return isatty(error_descriptor()) == 1;
}

Quiet::Quiet() : mOutside(error_descriptor())
{
  std::fflush(stderr);
  const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
  dup2(nowhere, STDERR_FILENO);
  close(nowhere);
}

Quiet::~Quiet()
{
  std::fflush(stderr);
  dup2(mOutside, STDERR_FILENO);
}

} // namespace Console
