// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "brant_util_export.h"

#include <cstddef>
#include <string>
#include <utility>

/// A string of bytes for messages and names, of any length and encoding; comparison and replacement work on
/// bytes.
///
/// It converts from a C string and from `std::string`, so every parameter of this type takes either. A null C
/// string stands for the empty string wherever one may be given.
class BRANT_UTIL_EXPORT BrantString
{
public:
  /// The empty string.
  BrantString() noexcept = default;

  /// Copies the text up to its terminating zero. Null gives the empty string.
  BrantString(const char* text);

  /// Takes the text over, embedded zeros included.
  BrantString(std::string text) noexcept : mText(std::move(text)) {}

  /// The text that printf would write for the format and its arguments, uncut, however long it is. The
  /// compiler checks the arguments against a literal format; text from outside belongs behind a "%s", never
  /// into the format. A null format, or text that cannot be encoded, gives the empty string.
  [[nodiscard, gnu::format(printf, 1, 2)]] static BrantString format(const char* format, ...);

  /// The decimal form, with a leading minus sign and nothing else: -2147483648 … 2147483647, in every locale.
  [[nodiscard]] static BrantString number(int value);

  BrantString& operator+=(const BrantString& other)
  {
    mText += other.mText;
    return *this;
  }

  /// Replaces every occurrence of `from`, found from left to right without overlap, by `to`, and returns how
  /// many there were. What was put in is not searched again, so `to` may contain `from`. An empty `from`
  /// occurs nowhere: nothing happens, and the answer is 0.
  std::size_t replace(const BrantString& from, const BrantString& to);

  /// The text in place; valid until the string changes or dies.
  [[nodiscard]] const std::string& str() const noexcept { return mText; }

  /// The text with its terminating zero, never null; valid until the string changes or dies.
  [[nodiscard]] const char* c_str() const noexcept { return mText.c_str(); }

  [[nodiscard]] bool empty() const noexcept { return mText.empty(); }

  /// The number of bytes, without the terminating zero.
  [[nodiscard]] std::size_t size() const noexcept { return mText.size(); }

  // Comparison byte by byte, as unsigned values; a prefix comes before the longer string.
  [[nodiscard]] friend bool operator==(const BrantString& a, const BrantString& b) noexcept
  {
    return a.mText == b.mText;
  }
  [[nodiscard]] friend bool operator!=(const BrantString& a, const BrantString& b) noexcept
  {
    return a.mText != b.mText;
  }
  [[nodiscard]] friend bool operator<(const BrantString& a, const BrantString& b) noexcept
  {
    return a.mText < b.mText;
  }
  [[nodiscard]] friend bool operator<=(const BrantString& a, const BrantString& b) noexcept
  {
    return a.mText <= b.mText;
  }
  [[nodiscard]] friend bool operator>(const BrantString& a, const BrantString& b) noexcept
  {
    return a.mText > b.mText;
  }
  [[nodiscard]] friend bool operator>=(const BrantString& a, const BrantString& b) noexcept
  {
    return a.mText >= b.mText;
  }

private:
  std::string mText;
};
