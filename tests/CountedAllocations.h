// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>

/// Replaces operator new and delete of the whole program to count allocations, and to let memory run out. For
/// one source file of a program only.
namespace morrow_test {

inline std::uint64_t gAllocations = 0;            ///< of this process with operator new, so far
inline std::size_t gLargestAllocation = SIZE_MAX; ///< bytes; for more there is no memory

} // namespace morrow_test

// Not inlined: GCC would miss that they belong together.
[[gnu::noinline]] void* operator new(std::size_t size)
{
  ++morrow_test::gAllocations;
  void* memory = size <= morrow_test::gLargestAllocation ? std::malloc(size) : nullptr;
  if (memory == nullptr) {
    throw std::bad_alloc();
  }
  return memory;
}

[[gnu::noinline]] void operator delete(void* memory) noexcept
{
  std::free(memory);
}

[[gnu::noinline]] void operator delete(void* memory, std::size_t /*size*/) noexcept
{
  std::free(memory);
}
