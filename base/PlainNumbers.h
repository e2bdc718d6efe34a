// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <clocale>
#include <locale>
#include <string>

namespace morrow {

/// While it lives, printf and new streams of this thread write numbers as in the "C" locale: with a decimal
/// point and without grouping. VTK's writers and exporters use the host's locale, which would break their
/// files. At its end everything is as before.
class PlainNumbers
{
public:
  PlainNumbers();
  ~PlainNumbers();
  PlainNumbers(const PlainNumbers&) = delete;
  PlainNumbers& operator=(const PlainNumbers&) = delete;

private:
  std::locale mStreams; // the host's
  std::string mProcess; // its setlocale(); empty when the streams' locale needs no change
  locale_t mPlain;      // owned; 0 when the system has no memory for it
  locale_t mThread;     // the host's
};

} // namespace morrow
