// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "Interrupt.h"

#include "AppUtil.h"
#include "Console.h"
#include "Options.h"

#include <unistd.h>

#include <csignal>

namespace {

constexpr unsigned kPatience = 1; // seconds

// Taken before a signal can come: handlers must call no function that might build something on first use.
AppUtil* gAppUtil = nullptr;
int gErrorDescriptor = -1;

extern "C" void on_interrupt(int /*signal*/)
{
  gAppUtil->set_interrupt(true);
  alarm(kPatience);
}

extern "C" void on_impatience(int /*signal*/)
{
  static const char kText[] = "meshview: interrupted\n";
  [[maybe_unused]] const auto written = write(gErrorDescriptor, kText, sizeof kText - 1);
  _exit(EXIT_INTERRUPTED);
}

} // namespace

InterruptScope::InterruptScope()
{
  gAppUtil = AppUtil::instance();
  gAppUtil->set_interrupt(false);
  gErrorDescriptor = Console::error_descriptor();
  std::signal(SIGALRM, on_impatience);
  std::signal(SIGINT, on_interrupt);
}

InterruptScope::~InterruptScope()
{
  std::signal(SIGINT, SIG_DFL);
  alarm(0);
  std::signal(SIGALRM, SIG_DFL);
}
