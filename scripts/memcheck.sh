#!/usr/bin/env bash
# SPDX-FileCopyrightText: the libmorrow_base authors
# SPDX-License-Identifier: BSD-3-Clause
#
# memcheck.sh [PROGRAM...]: installs what is missing, builds the programs of
# tests/valgrind and runs each under valgrind, or only those named (such as
# ViewsMemcheck); ends with the line "N passed, N failed". What goes wrong on
# purpose must be found, or the check counts as failed.
set -euo pipefail
# shellcheck source=scripts/lib.sh
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

readonly found=99 # valgrind's status when it finds an error or a leak
readonly folder=$ROOT/build/dev/tests/valgrind
programs=("$@")
if ((${#programs[@]} == 0)); then
  mapfile -t programs < <(cd "$ROOT/tests/valgrind" && printf '%s\n' *Memcheck.cxx | sed 's/\.cxx$//')
fi

"$ROOT/scripts/bootstrap.sh" --ci
stage "configure build/dev" configure dev
stage "build the programs" build dev --target memcheck_programs
need_display
need_temp

# Softpipe, because valgrind cannot follow the code that the faster driver makes.
under_valgrind() {
  GALLIUM_DRIVER=softpipe MESA_SHADER_CACHE_DISABLE=true timeout 600 \
    valgrind --quiet --suppressions="$ROOT/tests/valgrind/memcheck.supp" --error-exitcode=$found \
    --leak-check=full --errors-for-leak-kinds=definite --show-leak-kinds=definite "$@" </dev/null
}

passed=0
failed=0
# check TEXT EXPECTED_STATUS COMMAND...
check() {
  local text=$1 expected=$2 log=$LIB_TEMP/memcheck.log status=0
  shift 2
  SECONDS=0
  under_valgrind "$@" >"$log" 2>&1 || status=$?
  if ((status == expected)); then
    passed=$((passed + 1))
    echo "-- $text: passed (${SECONDS} s)"
  else
    failed=$((failed + 1))
    cat "$log"
    echo "-- $text: failed with status $status (${SECONDS} s)"
  fi
}

check "a planted leak is found" $found "$folder/PlantedErrors" leak
check "a planted use of no value is found" $found "$folder/PlantedErrors" value
for program in "${programs[@]}"; do
  check "$program" 0 "$folder/$program"
done
echo "$passed passed, $failed failed"
((failed == 0))
