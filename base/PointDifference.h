// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "BrantVector.h"

namespace morrow {

/// The way from one point to another, 3 doubles each. Neither is null: picking asks for millions of them.
[[nodiscard]] inline BrantVector way_between(const double* from, const double* to) noexcept
{
  return {to[0] - from[0], to[1] - from[1], to[2] - from[2]};
}

} // namespace morrow
