# SPDX-FileCopyrightText: the libmorrow_base authors
# SPDX-License-Identifier: BSD-3-Clause
#
# What the scripts of this project share. To be sourced by a bash script that
# runs under `set -euo pipefail`.
# shellcheck shell=bash

ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
readonly ROOT

# --- Leaving ---------------------------------------------------------------

LIB_TEMP=
LIB_XVFB=

lib_leave() {
  if [[ -n $LIB_XVFB ]]; then
    kill "$LIB_XVFB" 2>/dev/null || true
    wait "$LIB_XVFB" 2>/dev/null || true
  fi
  if [[ -n $LIB_TEMP ]]; then
    rm -rf "$LIB_TEMP"
  fi
}
trap lib_leave EXIT
trap 'exit 129' HUP
trap 'exit 130' INT
trap 'exit 143' TERM

# A folder that goes when the script does. Not for use in a subshell.
need_temp() {
  if [[ -z $LIB_TEMP ]]; then
    LIB_TEMP=$(mktemp -d)
  fi
}

# --- Stages ----------------------------------------------------------------

# stage TEXT COMMAND...: one line on standard error, and the command's output
# only when it fails.
stage() {
  local text=$1 log status=0
  shift
  need_temp
  log=$LIB_TEMP/stage.log
  printf -- '-- %s\n' "$text" >&2
  "$@" >"$log" 2>&1 </dev/null || status=$?
  if ((status != 0)); then
    cat "$log" >&2
    printf -- '-- %s: failed\n' "$text" >&2
    exit "$status"
  fi
}

configure() { (cd "$ROOT" && cmake --preset "$1"); }

build() {
  local preset=$1
  shift
  (cd "$ROOT" && cmake --build --preset "$preset" "$@")
}

# --- Display ---------------------------------------------------------------

display_is_reachable() {
  [[ -n ${DISPLAY:-} ]] && timeout 10 xdpyinfo >/dev/null 2>&1
}

# Exports DISPLAY, that of a private X server when no other can be reached. The
# server takes a free number by itself. Without -noreset it would reset whenever
# its last client leaves, and clients that come in that moment would fail; in a
# session of its own, Ctrl-C does not end it before its clients.
need_display() {
  if display_is_reachable; then
    return 0
  fi
  local number=
  need_temp
  mkfifo "$LIB_TEMP/display"
  setsid Xvfb -displayfd 3 -noreset -nolisten tcp -screen 0 1280x1024x24 \
    3>"$LIB_TEMP/display" >"$LIB_TEMP/xvfb.log" 2>&1 </dev/null &
  LIB_XVFB=$!
  read -r -t 30 number <"$LIB_TEMP/display" || true
  if [[ -z $number ]]; then
    cat "$LIB_TEMP/xvfb.log" >&2
    echo "no display, and Xvfb does not start" >&2
    exit 1
  fi
  export DISPLAY=:$number
}

# --- Tests -----------------------------------------------------------------

# run_tests PRESET [CTEST ARGUMENTS...]: runs the tests of a build folder and
# ends with the line "N passed, N failed". A test that was not run counts as
# failed, whatever the reason, except that the meshes it reads are absent: those
# are named. The status is 0 when at least one test passed and none failed.
# TEST_RESULTS names the results in JUnit's format.
run_tests() {
  local preset=$1 status=0
  shift
  need_temp
  need_display
  TEST_RESULTS=$LIB_TEMP/results.xml
  rm -f "$TEST_RESULTS"
  ctest --test-dir "$ROOT/build/$preset" --parallel 2 --output-on-failure --no-tests=error \
    --output-junit "$TEST_RESULTS" "$@" </dev/null || status=$?
  if [[ ! -s $TEST_RESULTS ]]; then
    echo "0 passed, 0 failed"
    return $((status == 0 ? 1 : status))
  fi
  awk -v status="$status" -f "$ROOT/scripts/count_tests.awk" "$TEST_RESULTS"
}

# --- Checks ----------------------------------------------------------------

CHECKS_PASSED=0
CHECKS_FAILED=0

# check TEXT STATUS COMMAND...: passes when the command ends with this status;
# one line, below the command's output when it fails.
check() {
  local text=$1 expected=$2 log status
  shift 2
  need_temp
  log=$LIB_TEMP/check.log
  SECONDS=0
  # A subshell of its own, so that `set -e` works in the command.
  set +e
  (
    set -e
    "$@"
  ) >"$log" 2>&1 </dev/null
  status=$?
  set -e
  if ((status == expected)); then
    CHECKS_PASSED=$((CHECKS_PASSED + 1))
    echo "-- $text: passed (${SECONDS} s)"
  else
    CHECKS_FAILED=$((CHECKS_FAILED + 1))
    cat "$log"
    echo "-- $text: failed with status $status (${SECONDS} s)"
  fi
}

# The line "N passed, N failed"; the status is 0 when none failed.
sum_of_checks() {
  echo "$CHECKS_PASSED passed, $CHECKS_FAILED failed"
  ((CHECKS_FAILED == 0))
}
