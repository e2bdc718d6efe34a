// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#include "ChartNumbers.h"

#include <cstdint>
#include <limits>
#include <numeric>

namespace morrow {

int sum_of_counts(int a, int b)
{
  const std::int64_t sum = std::int64_t{a} + b;
  const bool fits = sum >= std::numeric_limits<int>::min() && sum <= std::numeric_limits<int>::max();
  return fits ? static_cast<int>(sum) : 0;
}

// 2^31 counts of 2^31 still fit.
long long total_of(const int* counts, int n)
{
  return counts != nullptr && n > 0 ? std::accumulate(counts, counts + n, 0LL) : 0;
}

namespace {

/// The first of total / 4, / 3, / 2 and / 1 that is not 0.
long long tick_step(long long total)
{
  for (const long long parts : {4, 3, 2}) {
    if (total / parts != 0) {
      return total / parts;
    }
  }
  return total;
}

} // namespace

std::vector<long long> count_ticks(long long total)
{
  std::vector<long long> ticks = {0};
  if (total <= 0) {
    return ticks;
  }
  const long long step = tick_step(total);
  // 10 k < 9 total, of which the products would not fit.
  for (long long k = step; total - k > total / 10; k += step) {
    ticks.push_back(k);
  }
  ticks.push_back(total);
  return ticks;
}

} // namespace morrow
