#!/usr/bin/env bash
# SPDX-FileCopyrightText: the libmorrow_base authors
# SPDX-License-Identifier: BSD-3-Clause
#
# readme_test.sh: the program and the build file that the README shows are those of examples/minimal_host, which other
# tests build and run; and the files that README and docs/ link to are there.
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
for page in README.md docs/*.md; do
  while IFS= read -r link; do
    [[ $link == http* || -e $(dirname "$page")/$link ]] || {
      echo "$page: there is no $link"
      status=1
    }
  done < <(grep -oE '\]\([^)#]+' "$page" | sed 's/^](//')
done
exit "$status"
