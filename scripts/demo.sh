#!/usr/bin/env bash
# SPDX-FileCopyrightText: the libmorrow_base authors
# SPDX-License-Identifier: BSD-3-Clause
#
# demo.sh [meshview arguments]: installs what is missing, builds meshview and
# runs it in the caller's folder (--help says what it takes). Without arguments
# it draws the sample mesh from several directions into out/ and prints the
# names of the pictures.
set -euo pipefail
# shellcheck source=scripts/lib.sh
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

readonly meshview=$ROOT/build/release/examples/meshview/meshview
readonly sample=$ROOT/examples/meshview/data/bracket.vtu

"$ROOT/scripts/bootstrap.sh"
stage "configure build/release" configure release
stage "build build/release" build release --target meshview

needs_no_window() {
  local argument
  for argument in "$@"; do
    case $argument in
    --image | --image=* | --save | --save=* | --report | --report=* | --help | -h | --version) return 0 ;;
    esac
  done
  return 1
}

# draw NAME ARGUMENTS...: one picture of the sample mesh.
draw() {
  local picture=$ROOT/out/$1.png
  shift
  "$meshview" "$sample" --image "$picture" --size 960x720 "$@" >/dev/null
  echo "$picture"
}

if (($# > 0)); then
  if ! needs_no_window "$@" && ! display_is_reachable; then
    mkdir -p "$ROOT/out"
    echo "-- no display to open a window on: draws to $ROOT/out/meshview.png instead" >&2
    set -- "$@" --image "$ROOT/out/meshview.png"
  fi
  need_display
  "$meshview" "$@"
  exit
fi

need_display
mkdir -p "$ROOT/out"
draw bracket-iso --view iso
draw bracket-side --view=-y
draw bracket-top --view=+z
draw bracket-labels --view iso --labels blocks
draw bracket-quality --view iso --color-by MeanRatio
draw bracket-decorated --title "Bearing bracket" --triad --cube-axes --legend --scalar-bar MeanRatio
