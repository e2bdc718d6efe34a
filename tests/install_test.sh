#!/usr/bin/env bash
# SPDX-FileCopyrightText: the libmorrow_base authors
# SPDX-License-Identifier: BSD-3-Clause
#
# install_test.sh STEP BUILD HOST CXX: the package as a host meets it.
#
#   install     installs the build folder BUILD to a prefix of its own, beside
#               the folders of the other steps
#   headers     compiles each installed header by itself, warnings as errors
#   cmake       builds the project HOST by find_package and runs it
#   pkg-config  builds HOST/main.cxx by pkg-config, with the compiler CXX, and
#               runs it
#   subproject  builds HOST with the source tree as a part of it and runs it
set -euo pipefail

readonly step=$1 build=$2 host=$3 cxx=$4
here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
readonly here
readonly work=$build/install_test
readonly prefix=$work/prefix
readonly folder=$work/$step

# Configured as the build is, but for what makes it this build.
host_cmake() {
  cmake -S "$host" -B "$folder/build" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_COMPILER="$cxx" "$@"
  cmake --build "$folder/build"
}

library_folder() { dirname "$(find "$prefix" -name libmorrow_base.so)"; }

use_pkg_config() {
  PKG_CONFIG_PATH=$(library_folder)/pkgconfig
  export PKG_CONFIG_PATH
  local module
  for module in morrow_base brant_util; do
    pkg-config --print-errors --exists "$module"
  done
}

# Runs a program in the step's folder and looks at the picture that it leaves:
# the file's signature, its size in pixels, and more bytes than an even
# background or a gradient takes.
run_host() {
  local picture=$folder/minimal_host.png signature width height bytes
  (cd "$folder" && timeout 60 "$@")
  signature=$(od -A n -t x1 -N 8 "$picture" | tr -d ' ')
  width=$((16#$(od -A n -t x1 -j 16 -N 4 "$picture" | tr -d ' ')))
  height=$((16#$(od -A n -t x1 -j 20 -N 4 "$picture" | tr -d ' ')))
  bytes=$(wc -c <"$picture")
  echo "$picture: $signature, $width x $height pixels, $bytes bytes"
  [[ $signature == 89504e470d0a1a0a ]]
  ((width == 500 && height == 500))
  ((bytes > 8000))
}

rm -rf "$folder"
mkdir -p "$folder"
case $step in
install)
  rm -rf "$prefix"
  cmake --install "$build" --prefix "$prefix"
  ;;
headers)
  use_pkg_config
  read -r -a flags < <(pkg-config --cflags morrow_base)
  count=0
  for header in "$prefix"/include/{brant_util,morrow_base}/*.h; do
    echo "$header"
    "$cxx" -x c++ -std=c++17 -fsyntax-only -Wall -Wextra -Wpedantic -Werror "${flags[@]}" \
      -include "$header" /dev/null
    count=$((count + 1))
  done
  ((count >= 14))
  ;;
cmake)
  host_cmake -DCMAKE_PREFIX_PATH="$prefix"
  run_host "$folder/build/minimal_host"
  ;;
pkg-config)
  use_pkg_config
  read -r -a flags < <(pkg-config --cflags --libs morrow_base)
  # What the host itself uses beyond the library: VTK has no pkg-config files.
  "$cxx" -std=c++17 "$host/main.cxx" -o "$folder/minimal_host" "${flags[@]}" \
    -lvtkFiltersSources-9.1
  run_host env LD_LIBRARY_PATH="$(library_folder)" "$folder/minimal_host"
  ;;
subproject)
  host_cmake -DMORROW_SOURCE="$here"
  run_host "$folder/build/minimal_host"
  ;;
*)
  echo "install_test.sh: no step $step" >&2
  exit 2
  ;;
esac
