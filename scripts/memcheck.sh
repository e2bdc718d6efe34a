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

# Softpipe, because valgrind cannot follow the code that the faster driver makes.
under_valgrind() {
  GALLIUM_DRIVER=softpipe MESA_SHADER_CACHE_DISABLE=true timeout 600 \
    valgrind --quiet --suppressions="$ROOT/tests/valgrind/memcheck.supp" --error-exitcode=$found \
    --leak-check=full --errors-for-leak-kinds=definite --show-leak-kinds=definite "$@"
}

check "a planted leak is found" $found under_valgrind "$folder/PlantedErrors" leak
check "a planted use of no value is found" $found under_valgrind "$folder/PlantedErrors" value
for program in "${programs[@]}"; do
  check "$program" 0 under_valgrind "$folder/$program"
done
sum_of_checks
