#!/usr/bin/env bash
# SPDX-FileCopyrightText: the libmorrow_base authors
# SPDX-License-Identifier: BSD-3-Clause
#
# style.sh: checks form, not function; ends with the line "N passed, N failed",
# one check each.
set -euo pipefail
# shellcheck source=scripts/lib.sh
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

"$ROOT/scripts/bootstrap.sh" --ci
need_temp
cd "$ROOT"
# Without precompiled headers: clang cannot read those of g++, and a file that does not include what it uses
# shall be found.
stage "configure" cmake --preset dev -B "$LIB_TEMP/build" -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON

# files PATTERN...: the project's own files, those not yet committed included.
files() { git ls-files --cached --others --exclude-standard -- "$@" | sort -u; }
mapfile -t cxx_files < <(files '*.h' '*.cxx')
mapfile -t tidy_files < <(files 'util/*.cxx' 'base/*.cxx' 'examples/*.cxx')
mapfile -t shell_files < <(files '*.sh' .ci/run)
mapfile -t licensed_files < <(files '*.h' '*.cxx' '*.sh' '*.awk' '*.cmake' '*.cmake.in' '*.pc.in' '*.supp' '*.py' '*.geo' \
  '*CMakeLists.txt' .ci/run .clang-format .clang-tidy)

formatted() { clang-format --dry-run -Werror "${cxx_files[@]}"; }

tidy() {
  printf '%s\0' "${tidy_files[@]}" |
    xargs -0 -n 1 -P 2 clang-tidy -p "$LIB_TEMP/build" --quiet --extra-arg=-Wno-unknown-warning-option
}

shell_syntax() {
  local file
  for file in "${shell_files[@]}"; do
    bash -n "$file"
  done
}

shell_lint() { shellcheck --external-sources "${shell_files[@]}"; }

# The two lines stand first, but for a script's own first line.
licensed() {
  local file status=0
  local -a lines
  for file in "${licensed_files[@]}"; do
    mapfile -t -n 3 lines <"$file"
    if [[ ${lines[0]:-} == '#!'* ]]; then
      lines=("${lines[@]:1}")
    fi
    if [[ ${lines[0]:-} != *' SPDX-FileCopyrightText: the libmorrow_base authors' ||
      ${lines[1]:-} != *' SPDX-License-Identifier: BSD-3-Clause' ]]; then
      echo "$file: does not begin with the two licence lines"
      status=1
    fi
  done
  return "$status"
}

check "licence lines" 0 licensed
check "shell syntax" 0 shell_syntax
check "shellcheck" 0 shell_lint
check "clang-format" 0 formatted
check "clang-tidy" 0 tidy
sum_of_checks
