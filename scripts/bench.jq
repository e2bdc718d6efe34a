# SPDX-FileCopyrightText: the libmorrow_base authors
# SPDX-License-Identifier: BSD-3-Clause
#
# What bench.sh makes of Google Benchmark's results, an array of their files:
# `rows` is the array of cases, `table` prints one. The counters are those of
# bench/BenchReport.h.

# To three significant digits.
def rounded:
  if . == null or . == 0 then .
  else pow(10; 2 - (fabs | log10 | floor)) as $scale | (. * $scale | round) / $scale
  end;

def milliseconds: if . == null then null else 1e3 * . | rounded end;

# How many times $part goes into the input.
def over($part): if . == null or ($part // 0) == 0 then null else . / $part end;

# The targets of a benchmark, each with whether it is met: null when it was not
# measured.
def targets($literal; $peer; $memory):
  def met($got; condition): if $got == null then null else condition end;
  [ (.target_literal // empty | {text: ">= \(.)x literal", met: met($literal; $literal >= .)}),
    (.target_peer // empty | {text: ">= \(.)x peer", met: met($peer; $peer >= .)}),
    (.target_memory // empty | {text: "<= \(.)x memory", met: met($memory; $memory <= .)}) ];

def row($program; $judge):
  if .error_occurred then error("\($program), \(.name): \(.error_message)")
  elif .ours_s == null then error("\($program), \(.name): reports no case")
  else . end
  | (.label / " | ") as [$case, $peer]
  | .ours_s as $ours
  | (.literal_s | over($ours)) as $literal_ratio
  | (.peer_s | over($ours)) as $peer_ratio
  | .literal_peak_kib as $literal_peak
  | (.peak_kib | over($literal_peak)) as $memory_ratio
  | targets($literal_ratio; $peer_ratio; $memory_ratio) as $targets
  | ($targets | map(.met | values)) as $met
  | {
      case: $case,
      size: .size,
      ours_ms: ($ours | milliseconds),
      literal_ms: (.literal_s | milliseconds),
      peer: $peer,
      peer_ms: (.peer_s | milliseconds),
      ratio_literal: ($literal_ratio | rounded),
      ratio_peer: ($peer_ratio | rounded),
      peak_mib: (.peak_kib | over(1024) | rounded),
      ratio_memory: ($memory_ratio | rounded),
      target: (if $targets == [] then null else $targets | map(.text) | join(", ") end),
      reached: (if $judge and $met != [] then $met | all else null end)
    };

def rows($judge):
  map((.context.executable / "/" | last) as $program
      | .benchmarks[] | select(.run_type != "aggregate") | row($program; $judge))
  | if . == [] then error("no results") else . end;

# --- Table -------------------------------------------------------------------

def cell: if . == null then "" else tostring end;
def ratio: if . == null then "" else "\(.)x" end;
def mark: if . == null then "" elif . then "yes" else "SHORT" end;

# Text to the left, numbers to the right.
def padded($width; $is_text):
  (" " * ($width - length) // "") as $spaces | if $is_text then . + $spaces else $spaces + . end;

def lines:
  . as $lines
  | [range($lines[0] | length)] | map(. as $column | $lines | map(.[$column] | length) | max) as $widths
  | $lines[]
  | [to_entries[] | .key as $column | .value | padded($widths[$column]; [0, 6, 9, 10] | any(. == $column))]
  | join("  ") | sub(" +$"; "");

def table:
  [ ["case", "size", "ours ms", "literal ms", "ratio", "VTK ms", "VTK's class", "ratio", "peak MiB", "target", "reached"] ]
  + map([.case, (.size | cell), (.ours_ms | cell), (.literal_ms | cell), (.ratio_literal | ratio), (.peer_ms | cell),
         (.peer | cell), (.ratio_peer | ratio), (.peak_mib | cell), (.target | cell), (.reached | mark)])
  | lines;
