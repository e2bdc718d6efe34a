// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <vector>

namespace morrow {

/// About how many pairs of sides of a planar ring cross each other, in a time that does not depend on the
/// ring: the share of crossing pairs in a fixed sample, times the number of pairs. Sides that only touch or
/// cover each other do not count. The ring is x, y, z of each point; fewer than four have no crossing.
[[nodiscard]] double estimate_crossings(const std::vector<double>& ring);

} // namespace morrow
