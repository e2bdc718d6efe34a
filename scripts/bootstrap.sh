#!/usr/bin/env bash
# SPDX-FileCopyrightText: the libmorrow_base authors
# SPDX-License-Identifier: BSD-3-Clause
#
# bootstrap.sh [--ci]: installs what is missing on a Debian 12 system to build,
# test and run this project, and with --ci what the style checks and the other
# presets need too. Says nothing when nothing is missing.
set -euo pipefail

packages=(
  cmake
  g++
  jq
  libbenchmark-dev
  libcli11-dev
  libgl1-mesa-dev
  libgl1-mesa-dri
  libglew-dev
  libglu1-mesa-dev
  libgtest-dev
  libvtk9-dev
  nlohmann-json3-dev
  ninja-build
  pkg-config
  x11-utils
  xauth
  xvfb
)
commands=(cmake g++ jq ninja pkg-config Xvfb xauth xdpyinfo)

case ${1:-} in
'') ;;
--ci)
  packages+=(clang clang-format clang-tidy gcovr git libclang-rt-14-dev shellcheck valgrind)
  commands+=(clang++ clang-format clang-tidy gcovr git shellcheck valgrind)
  ;;
*)
  echo "usage: bootstrap.sh [--ci]" >&2
  exit 2
  ;;
esac

if ! command -v apt-get >/dev/null || ! command -v dpkg-query >/dev/null; then
  # Another system: the libraries are CMake's to find, or to miss.
  for name in "${commands[@]}"; do
    if ! command -v "$name" >/dev/null; then
      echo "bootstrap.sh: no apt here; install what these Debian packages hold: ${packages[*]}" >&2
      exit 1
    fi
  done
  exit 0
fi

installed=" $(dpkg-query --show --showformat='${db:Status-Status}:${binary:Package} ' "${packages[@]}" 2>/dev/null || true)"
missing=()
for name in "${packages[@]}"; do
  if ! [[ $installed =~ \ installed:${name//+/\\+}(:[a-z0-9]+)?\  ]]; then
    missing+=("$name")
  fi
done
if ((${#missing[@]} == 0)); then
  exit 0
fi

as_root=()
if ((EUID != 0)); then
  if ! command -v sudo >/dev/null; then
    echo "bootstrap.sh: no sudo here; as root: apt-get install ${missing[*]}" >&2
    exit 1
  fi
  as_root=(sudo)
fi

apt() {
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q -y -o DPkg::Lock::Timeout=300 "$@"
}

log=$(mktemp)
trap 'rm -f "$log"' EXIT
echo "-- install: ${missing[*]}" >&2
if ! { apt update && apt install --no-install-recommends "${missing[@]}"; } >"$log" 2>&1 </dev/null; then
  cat "$log" >&2
  echo "bootstrap.sh: apt-get could not install: ${missing[*]}" >&2
  exit 1
fi
