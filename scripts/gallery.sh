#!/usr/bin/env bash
# SPDX-FileCopyrightText: the libmorrow_base authors
# SPDX-License-Identifier: BSD-3-Clause
#
# gallery.sh [--program MESHVIEW] [--into FOLDER]: draws the pictures of
# docs/gallery.md with the commands that stand there, lines that begin with
# "meshview ". Without --program it installs what is missing and builds
# meshview. Without --into the pictures are those of the documentation: look at
# them before you commit them, and see to the line "Drawn by" in gallery.md.
set -euo pipefail
# shellcheck source=scripts/lib.sh
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

readonly pictures=docs/images/gallery
program=
folder=$ROOT/$pictures
while (($# > 0)); do
  case $1 in
  --program)
    program=$(realpath -- "${2:?--program needs a file name}")
    shift 2
    ;;
  --into)
    folder=$(realpath -m -- "${2:?--into needs a folder}")
    shift 2
    ;;
  *)
    echo "usage: gallery.sh [--program MESHVIEW] [--into FOLDER]" >&2
    exit 2
    ;;
  esac
done
if [[ -z $program ]]; then
  "$ROOT/scripts/bootstrap.sh"
  stage "configure build/release" configure release
  stage "build build/release" build release --target meshview
  program=$ROOT/build/release/examples/meshview/meshview
fi
mkdir -p "$folder"
need_display

# draw COMMAND: runs a command as the page has it, with the pictures in the
# folder asked for. Quotes are as in the shell; nothing is expanded.
draw() {
  local -a words
  mapfile -t words < <(xargs -n 1 printf '%s\n' <<<"$1")
  words=("${words[@]//"$pictures"/"$folder"}")
  echo "$1"
  "$program" "${words[@]:1}" >/dev/null
}

cd "$ROOT"
count=0
running=() # two at a time
while IFS= read -r line; do
  if ((${#running[@]} == 2)); then
    wait "${running[0]}"
    running=("${running[1]}")
  fi
  draw "$line" </dev/null &
  running+=($!)
  count=$((count + 1))
done < <(grep '^meshview ' docs/gallery.md)
for id in "${running[@]}"; do
  wait "$id"
done
((count > 0))
