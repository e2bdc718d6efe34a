// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <vector>

namespace morrow {

/// a + b; 0 when the sum does not fit an int.
[[nodiscard]] int sum_of_counts(int a, int b);

/// The sum of n counts; 0 for null and for n below 1.
[[nodiscard]] long long total_of(const int* counts, int n);

/// The counts that an axis up to total is labelled with, in ascending order: 0; about the quarters of total,
/// but for those within the top tenth; total. For a total below 1 just 0.
[[nodiscard]] std::vector<long long> count_ticks(long long total);

} // namespace morrow
