// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause

// What the sanitizers do in a program of this project, however it is started; ASAN_OPTIONS and its like in
// the environment still have the last word.
#define MORROW_DEFAULTS extern "C" __attribute__((visibility("default"))) const char*

MORROW_DEFAULTS __asan_default_options();
MORROW_DEFAULTS __lsan_default_options();
MORROW_DEFAULTS __ubsan_default_options();

// Not the sizes of the thread-local blocks of plug-ins: they are guessed from the bytes before a block that
// happens to begin 16 bytes into a page, and the leak checker dies where it then looks for pointers.
const char* __asan_default_options()
{
  return "detect_leaks=1:strict_string_checks=1:detect_stack_use_after_return=1:allocator_may_return_null=1:"
         "intercept_tls_get_addr=0";
}

const char* __lsan_default_options()
{
  return "suppressions=" MORROW_SUPPRESSIONS ":print_suppressions=0";
}

const char* __ubsan_default_options()
{
  return "print_stacktrace=1";
}
