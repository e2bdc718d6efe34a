// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <memory>
#include <new>
#include <type_traits>

#include "LargePages.h"

namespace morrow {

/// Numbers that become more and more, in memory from malloc(). Beside std::vector it saves time and memory
/// for millions of them: growing moves pages instead of copying, nothing is filled in advance, and the memory
/// can be handed to a VTK array, which frees it with free().
template<typename T>
class GrowingBuffer
{
  static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>);

public:
  /// Room for count more at the end. Throws std::bad_alloc.
  void make_room(std::size_t count)
  {
    if (count > this->room()) {
      this->grow(count);
    }
  }

  /// Appends; there must be room.
  void push(T value) noexcept { mData.get()[mSize++] = value; }

  /// Appends count without a value yet and returns the first of them. Throws std::bad_alloc.
  [[nodiscard]] T* extend(std::size_t count)
  {
    this->make_room(count);
    mSize += count;
    return mData.get() + (mSize - count);
  }

  /// How many more there is room for.
  [[nodiscard]] std::size_t room() const noexcept { return mCapacity - mSize; }

  [[nodiscard]] std::size_t size() const noexcept { return mSize; }
  [[nodiscard]] T* data() noexcept { return mData.get(); }
  [[nodiscard]] const T* data() const noexcept { return mData.get(); }

  /// Gives back what has not been used.
  void shrink() noexcept
  {
    if (mSize < mCapacity && mSize > 0) {
      this->resize(mSize);
    }
  }

  /// Empties the buffer. The caller frees the memory with free(); null when there was none.
  [[nodiscard]] T* release() noexcept
  {
    mSize = mCapacity = 0;
    return mData.release();
  }

private:
  struct Free
  {
    void operator()(T* data) const noexcept { std::free(data); }
  };

  void grow(std::size_t count)
  {
    constexpr std::size_t smallest = 1024;
    constexpr std::size_t largest = std::numeric_limits<std::size_t>::max() / (2 * sizeof(T));
    if (count > largest - mSize || !this->resize(std::max({smallest, mSize + count, mCapacity * 2}))) {
      throw std::bad_alloc();
    }
  }

  bool resize(std::size_t capacity) noexcept
  {
    void* data = std::realloc(mData.get(), capacity * sizeof(T));
    if (data == nullptr) {
      return false;
    }
    static_cast<void>(mData.release());
    mData.reset(static_cast<T*>(data));
    mCapacity = capacity;
    advise_large_pages(data, capacity * sizeof(T));
    return true;
  }

  std::unique_ptr<T, Free> mData;
  std::size_t mSize = 0;
  std::size_t mCapacity = 0;
};

} // namespace morrow
