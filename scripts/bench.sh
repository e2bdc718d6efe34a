#!/usr/bin/env bash
# SPDX-FileCopyrightText: the libmorrow_base authors
# SPDX-License-Identifier: BSD-3-Clause
#
# bench.sh [--quick] [--json FILE] [--programs FOLDER] [NAME...]: runs the
# benchmarks, or those named ("LabelBench"), and prints one table: our time, the
# literal version's, that of VTK's own class, how many times as long these two
# take, the target, and SHORT where a case falls short of it. --json writes the
# same as an array of objects. --quick runs each case once at its smallest size,
# which tells nothing about speed: nothing is judged. Without --programs it
# installs what is missing and builds the benchmarks. What the cases measure
# stands in docs/performance.md.
set -euo pipefail
# shellcheck source=scripts/lib.sh
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

options=()
judge=true
json=
folder=
names=()
while (($# > 0)); do
  case $1 in
  --quick)
    options=(--benchmark_filter=/1000/ --benchmark_min_time=0)
    judge=false
    shift
    ;;
  --json)
    json=$(realpath -m -- "${2:?--json needs a file name}")
    shift 2
    ;;
  --programs)
    folder=$(realpath -- "${2:?--programs needs a folder}")
    shift 2
    ;;
  -*)
    echo "usage: bench.sh [--quick] [--json FILE] [--programs FOLDER] [NAME...]" >&2
    exit 2
    ;;
  *)
    names+=("$1")
    shift
    ;;
  esac
done
if ((${#names[@]} == 0)); then
  names=("$ROOT"/bench/*Bench.cxx)
  names=("${names[@]##*/}")
  names=("${names[@]%.cxx}")
fi
if [[ -z $folder ]]; then
  "$ROOT/scripts/bootstrap.sh"
  stage "configure build/bench" configure bench
  stage "build build/bench" build bench --target "${names[@]}"
  folder=$ROOT/build/bench/bench
fi

need_temp
need_display
results=()
for name in "${names[@]}"; do
  results+=("$LIB_TEMP/$name.json")
  stage "$name" "$folder/$name" --benchmark_out="$LIB_TEMP/$name.json" --benchmark_out_format=json "${options[@]}"
done
jq --slurp -L "$ROOT/scripts" --argjson judge "$judge" 'include "bench"; rows($judge)' "${results[@]}" >"$LIB_TEMP/rows.json"
if [[ -n $json ]]; then
  cp "$LIB_TEMP/rows.json" "$json"
fi
jq --raw-output -L "$ROOT/scripts" 'include "bench"; table' "$LIB_TEMP/rows.json"
