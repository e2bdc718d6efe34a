// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "PlainNumbers.h"

namespace morrow {

PlainNumbers::PlainNumbers()
    : mPlain(newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr))), mThread(uselocale(mPlain))
{
  if (mStreams != std::locale::classic()) {
    const char* process = std::setlocale(LC_ALL, nullptr);
    mProcess = process != nullptr ? process : "C";
    std::locale::global(std::locale::classic()); // calls setlocale() too
  }
}

PlainNumbers::~PlainNumbers()
{
  if (!mProcess.empty()) {
    std::locale::global(mStreams);
    std::setlocale(LC_ALL, mProcess.c_str());
  }
  uselocale(mThread);
  if (mPlain != nullptr) {
    freelocale(mPlain);
  }
}

} // namespace morrow
