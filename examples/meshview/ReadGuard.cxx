// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "ReadGuard.h"

#include "Console.h"
#include "Options.h"

#include <sys/mman.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>
#ifdef __linux__
#include <sys/prctl.h>
#endif

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <optional>

namespace {

volatile std::sig_atomic_t gChild = 0; // whom signals are passed on to; 0 for none

extern "C" void pass_on(int signal)
{
  const int error = errno;
  if (gChild > 0) {
    kill(static_cast<pid_t>(gChild), signal);
  }
  errno = error;
}

/// Lets the child decide what a request to end means.
void pass_signals_on(void (*handler)(int))
{
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    std::signal(signal, handler);
  }
}

/// In the child: nobody is left who passes signals on once the parent is gone.
void end_with_parent()
{
#ifdef __linux__
  prctl(PR_SET_PDEATHSIG, SIGTERM);
#endif
}

void become_child()
{
  pass_signals_on(SIG_DFL);
  end_with_parent();
}

/// The status of a child that has ended, as waitpid() reports it.
int wait_for(pid_t child)
{
  int status = 0;
  while (waitpid(child, &status, 0) == -1 && errno == EINTR) {
  }
  return status;
}

std::optional<std::size_t> file_being_read(const ReadLog& log)
{
  for (std::size_t i = 0; i < log.size(); ++i) {
    if (log.get(i) == ReadLog::State::Reading) {
      return i;
    }
  }
  return std::nullopt;
}

bool was_asked_to_end(int status)
{
  const int signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
  return signal == SIGINT || signal == SIGTERM || signal == SIGHUP ||
         (WIFEXITED(status) && WEXITSTATUS(status) == EXIT_INTERRUPTED);
}

/// Systems end by SIGKILL who takes too much memory.
const char* crash_reason(int status)
{
  const bool is_killed = WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
  return is_killed ? "the system ended its reader: too large, or damaged" : "damaged: its reader crashes";
}

/// The exit status for a child that has ended by itself or because it was asked to; a shell's way to report
/// an end by a signal.
int exit_status(int status)
{
  return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

/// No file needs no memory, of which systems give none.
std::size_t bytes_for(std::size_t files)
{
  return std::max<std::size_t>(files, 1) * sizeof(ReadLog::State);
}

/// For a child that has died with no file to blame.
int report_death(int signal)
{
  Console::complain("ended by signal " + std::to_string(signal) +
                    " while drawing; the display needs OpenGL 3.2");
  return EXIT_NOTHING_SHOWN;
}

} // namespace

ReadLog::ReadLog(std::size_t number_of_files) : mSize(number_of_files)
{
  void* memory = mmap(nullptr, bytes_for(mSize), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) {
    throw std::bad_alloc();
  }
  mStates = static_cast<State*>(memory); // zeros: Unread
}

ReadLog::~ReadLog()
{
  munmap(const_cast<State*>(mStates), bytes_for(mSize));
}

int run_guarded(const std::vector<std::string>& files, const std::function<int(ReadLog&)>& work)
{
  ReadLog log(files.size());
  pass_signals_on(pass_on);
  while (true) {
    std::fflush(nullptr); // or the child would write it again
    const pid_t child = fork();
    if (child == 0) {
      become_child();
    }
    if (child <= 0) { // the child's work, or ours where there can be none
      return work(log);
    }
    gChild = child;
    const int status = wait_for(child);
    gChild = 0;
    const auto file = file_being_read(log);
    if (was_asked_to_end(status) || (!file && WIFEXITED(status))) {
      return exit_status(status);
    }
    if (!file) {
      return report_death(WTERMSIG(status));
    }
    Console::complain(files[*file], crash_reason(status));
    log.set(*file, ReadLog::State::Failed);
  }
}

int run_unguarded(const std::vector<std::string>& files, const std::function<int(ReadLog&)>& work)
{
  ReadLog log(files.size());
  return work(log);
}
