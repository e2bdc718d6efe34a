// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdio>
#include <exception>

/// What the programs that run under valgrind share. Each tries one subsystem once, in one small window at
/// most: valgrind makes a frame some hundred times as slow. They look for nothing but memory errors, and only
/// see to it that they do what they are here for.
namespace morrow_memcheck {

inline int gNumMissed = 0;

inline void expect(bool is_true, const char* what)
{
  if (!is_true) {
    std::fprintf(stderr, "not so: %s\n", what);
    ++gNumMissed;
  }
}

/// The scenario runs in a function of its own: pointers that main() leaves on its stack would hide leaks.
template<typename Scenario>
int run(Scenario&& scenario)
{
  try {
    scenario();
  } catch (const std::exception& exception) {
    std::fprintf(stderr, "exception: %s\n", exception.what());
    return 1;
  }
  return gNumMissed == 0 ? 0 : 1;
}

} // namespace morrow_memcheck
