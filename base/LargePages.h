// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>

#ifdef __linux__
#include <sys/mman.h>

#include <cstdint>
#endif

namespace morrow {

/// Asks the system for large pages in memory of so many bytes, where it is worth it: half the time of filling
/// a fresh buffer goes into getting its small ones one by one.
inline void advise_large_pages([[maybe_unused]] void* memory, [[maybe_unused]] std::size_t size) noexcept
{
#ifdef __linux__
  constexpr std::uintptr_t page = 4096;
  constexpr std::size_t worthwhile = std::size_t{4} << 20;
  if (size >= worthwhile) {
    auto* begin = static_cast<char*>(memory);
    const std::size_t skipped = (page - reinterpret_cast<std::uintptr_t>(begin) % page) % page;
    const std::size_t usable = size - skipped;
    madvise(begin + skipped, usable - usable % page, MADV_HUGEPAGE);
  }
#endif
}

} // namespace morrow
