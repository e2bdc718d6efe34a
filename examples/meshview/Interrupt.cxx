// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "Interrupt.h"

#include "AppUtil.h"
#include "Console.h"
#include "Options.h"

#include <unistd.h>

#include <csignal>
#include <string>

namespace {

constexpr unsigned kShortPatience = 1; // seconds

// Taken before a signal can come: handlers must call no function that might build something on first use.
AppUtil* gAppUtil = nullptr;
int gErrorDescriptor = -1;
unsigned gPatience = 0; // seconds; 0 is endless
std::string gText;

extern "C" void on_interrupt(int /*signal*/)
{
  gAppUtil->set_interrupt(true);
  alarm(gPatience);
}

extern "C" void on_impatience(int /*signal*/)
{
  [[maybe_unused]] const auto written = write(gErrorDescriptor, gText.data(), gText.size());
  _exit(EXIT_INTERRUPTED);
}

} // namespace

InterruptScope::InterruptScope(Patience patience)
{
  gPatience = patience == Patience::Short ? kShortPatience : 0;
  gAppUtil = AppUtil::instance();
  gAppUtil->set_interrupt(false);
  gErrorDescriptor = Console::error_descriptor();
  gText = std::string(Console::wipe_line()) + "meshview: interrupted\n";
  std::signal(SIGALRM, on_impatience);
  std::signal(SIGINT, on_interrupt);
}

InterruptScope::~InterruptScope()
{
  std::signal(SIGINT, SIG_DFL);
  alarm(0);
  std::signal(SIGALRM, SIG_DFL);
}
