// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <vector>

namespace morrow {

/// About how many pairs of sides of a planar ring cross each other, or lie on one line and overlap, in a time
/// that does not depend on the ring: the share of such pairs in a fixed sample, times the number of pairs.
/// Sides that only touch at an end do not count, nor do those that have both ends in common. The ring is
/// x, y, z of each point; fewer than four have no crossing.
[[nodiscard]] double estimate_crossings(const std::vector<double>& ring);

} // namespace morrow
