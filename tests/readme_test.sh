#!/usr/bin/env bash
# SPDX-FileCopyrightText: the libmorrow_base authors
# SPDX-License-Identifier: BSD-3-Clause
#
# readme_test.sh: the program and the build file that the README shows are those of examples/minimal_host, which other
# tests build and run; the files that README and docs/ link to are there; and every class, internal header and preset is
# named: public classes in README, internal ones in docs/architecture.md.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# block LANGUAGE: the README's first block of that language.
block() { awk -v fence="\`\`\`$1" '$0 == "```" && on { exit } on { print } $0 == fence { on = 1 }' README.md; }

diff <(block cpp) examples/minimal_host/main.cxx

# The example's own build file also knows how to build inside the source tree.
while IFS= read -r line; do
  grep -qF -- "$line" examples/minimal_host/CMakeLists.txt || {
    echo "README: '$line' is not in examples/minimal_host/CMakeLists.txt"
    exit 1
  }
done < <(block cmake)

status=0
# names LIST: those of a list of base/CMakeLists.txt.
names() { awk -v list="set($1" '$0 == list { on = 1; next } on { print $1 } on && /\)/ { exit }' base/CMakeLists.txt | tr -d ')'; }

# named_in PAGE NAME...: complains of each that the page does not have as a word of its own.
named_in() {
  local page=$1 name
  shift
  (($# > 0)) || status=1 # a list that was not found
  for name in "$@"; do
    grep -qw -- "${name%.h}" "$page" || {
      echo "$page: does not name $name"
      status=1
    }
  done
}

mapfile -t classes < <(names MORROW_BASE_CLASSES)
mapfile -t parts < <(names MORROW_BASE_INTERNAL_CLASSES && names MORROW_BASE_INTERNAL_HEADERS)
mapfile -t presets < <(jq --raw-output '.configurePresets[] | select(.hidden | not).name' CMakePresets.json)
named_in README.md "${classes[@]}" "${presets[@]}"
named_in docs/architecture.md "${parts[@]}"

for page in README.md docs/*.md; do
  while IFS= read -r link; do
    [[ $link == http* || -e $(dirname "$page")/$link ]] || {
      echo "$page: there is no $link"
      status=1
    }
  done < <(grep -oE '\]\([^)#]+' "$page" | sed 's/^](//')
done
exit "$status"
