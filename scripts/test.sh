#!/usr/bin/env bash
# SPDX-FileCopyrightText: the libmorrow_base authors
# SPDX-License-Identifier: BSD-3-Clause
#
# test.sh [ctest arguments]: installs what is missing, builds, runs the tests,
# and ends with the line "N passed, N failed". The status is 0 when none failed
# and at least one passed; a test that was not run has failed. Tests of real
# meshes read them from the folder that MORROW_TEST_DATA names, else from
# shared/data beside this project; where they are absent these tests are named
# and count as neither.
set -euo pipefail
# shellcheck source=scripts/lib.sh
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

"$ROOT/scripts/bootstrap.sh"
stage "configure build/dev" configure dev
stage "build build/dev" build dev

# ctest runs in its build folder: names of files are the caller's.
arguments=()
own_results=
while (($# > 0)); do
  case $1 in
  --output-junit)
    own_results=$(realpath -m -- "${2:?$1 needs a file name}")
    shift 2
    ;;
  -O | --output-log | --resource-spec-file)
    arguments+=("$1" "$(realpath -m -- "${2:?$1 needs a file name}")")
    shift 2
    ;;
  *)
    arguments+=("$1")
    shift
    ;;
  esac
done

status=0
run_tests dev "${arguments[@]}" || status=$?
if [[ -n $own_results && -s $TEST_RESULTS ]]; then
  cp "$TEST_RESULTS" "$own_results"
fi
exit "$status"
