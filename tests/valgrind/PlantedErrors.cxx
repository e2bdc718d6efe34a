// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// Memory errors on purpose: a check that passes this program checks nothing. The argument "leak" loses some
// bytes, "value" decides on a value that was never set.
#include "Memcheck.h"

#include <cstdlib>
#include <cstring>
#include <memory>

namespace {

void* volatile gLost = nullptr;
int* volatile gValue = nullptr; // the compiler would see through a plain one
volatile int gSeen = 0;

void lose_memory()
{
  gLost = std::malloc(100);
  gLost = nullptr;
}

void decide_on_nothing()
{
  gValue = static_cast<int*>(std::malloc(sizeof(int)));
  if (*gValue == 12345) {
    gSeen = 1;
  }
  std::free(gValue);
}

} // namespace

int main(int argc, char** argv)
{
  if (argc != 2) {
    return 2;
  }
  std::strcmp(argv[1], "leak") == 0 ? lose_memory() : decide_on_nothing();
  return 0;
}
