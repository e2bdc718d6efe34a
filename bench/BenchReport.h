// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <optional>
#include <string>

namespace morrow_bench {

/// What is to be reached. Ratios are those of times measured in one run, so that they hold on any machine.
struct Targets
{
  std::optional<double> literal; ///< the literal version takes at least so many times as long as ours
  std::optional<double> peer;    ///< VTK's own way takes at least so many times as long as ours
  std::optional<double> memory;  ///< the peak of ours is at most so many times the literal version's
};

/// One row of the table that scripts/bench.sh makes. What is not known is left out.
struct Case
{
  std::string name;  ///< in words, the same for all sizes
  double ours = 0.0; ///< seconds; the literal version's and VTK's are those for the same work
  std::optional<double> literal;
  std::string peer_name; ///< VTK's class; empty where VTK has none for the work
  std::optional<double> peer;
  std::optional<double> peak; ///< KiB of memory that ours takes at its peak, what it returns included
  std::optional<double> literal_peak;
  Targets targets;
};

/// The targets for sizes from this one on; below there are none, as fixed costs prevail there.
inline Targets from_size(const benchmark::State& state, std::int64_t smallest, const Targets& targets)
{
  return state.range(0) < smallest ? Targets() : targets;
}

/// Puts the row into the benchmark's own output, from where the table takes it. The size is the benchmark's
/// first argument. Stands after the loop, once.
inline void report(benchmark::State& state, const Case& row)
{
  const auto count = [&state](const char* name, const std::optional<double>& value) {
    if (value.has_value()) {
      state.counters[name] = *value;
    }
  };
  state.SetLabel(row.name + (row.peer_name.empty() ? "" : " | " + row.peer_name));
  state.counters["size"] = static_cast<double>(state.range(0));
  state.counters["ours_s"] = row.ours;
  count("literal_s", row.literal);
  count("peer_s", row.peer);
  count("peak_kib", row.peak);
  count("literal_peak_kib", row.literal_peak);
  count("target_literal", row.targets.literal);
  count("target_peer", row.targets.peer);
  count("target_memory", row.targets.memory);
}

} // namespace morrow_bench
