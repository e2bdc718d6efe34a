// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "IndexRuns.h"

namespace morrow {

const char* description(IndexRuns::Fault fault)
{
  switch (fault) {
  case IndexRuns::Fault::NumberOutOfRange:
    return "a point number out of range";
  case IndexRuns::Fault::TooFewPoints:
    return "too few points";
  case IndexRuns::Fault::NegativeCount:
    return "a negative count";
  case IndexRuns::Fault::BeyondTheEnd:
    return "a count beyond the end of the list";
  case IndexRuns::Fault::None:
    break;
  }
  return "nothing wrong";
}

} // namespace morrow
