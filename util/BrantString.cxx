// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "BrantString.h"

#include <cstdarg>
#include <cstdio>

BrantString::BrantString(const char* text) : mText(text ? text : "") {}

BrantString BrantString::format(const char* format, ...)
{
  if (!format) {
    return {};
  }
  std::va_list arguments;
  va_start(arguments, format);
  const int length = std::vsnprintf(nullptr, 0, format, arguments);
  va_end(arguments);
  if (length <= 0) {
    return {};
  }
  std::string text(static_cast<std::size_t>(length), '\0');
  va_start(arguments, format);
  // The terminating zero goes where std::string keeps its own.
  std::vsnprintf(text.data(), text.size() + 1, format, arguments);
  va_end(arguments);
  return BrantString(std::move(text));
}

BrantString BrantString::number(int value)
{
  return std::to_string(value);
}

std::size_t BrantString::replace(const BrantString& from, const BrantString& to)
{
  if (from.empty()) {
    return 0;
  }
  // Built apart: linear in the length, and either argument may be this very string.
  std::string result;
  std::size_t count = 0;
  std::size_t begin = 0;
  for (std::size_t hit = mText.find(from.mText); hit != std::string::npos;
       hit = mText.find(from.mText, begin), ++count) {
    result.append(mText, begin, hit - begin).append(to.mText);
    begin = hit + from.size();
  }
  result.append(mText, begin);
  mText = std::move(result);
  return count;
}
