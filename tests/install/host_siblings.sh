#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# The installed tests of any siblings pass on the host's, from an installation.
#
#   host_siblings.sh BUILD-FOLDER CXX
set -eu
build=$1
cxx=$2
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

mkdir -p "$scratch/board/tmp" "$scratch/board/var/tav/fmem/ipmi"
cat >"$scratch/root.cpp" <<TEXT
#include <recordkit/host/HostRoot.h>

namespace {

[[maybe_unused]] const bool isSet = (TAVLib::host::setSystemRoot("$scratch/board"), true);

}
TEXT
{
    cmake --install "$build" --prefix "$scratch/prefix" --component library
    cmake -S "$scratch/prefix/share/recordkit/platform-tests" -B "$scratch/tests" -G Ninja \
        -DCMAKE_CXX_COMPILER="$cxx" -DCMAKE_BUILD_TYPE=Debug -DCMAKE_PREFIX_PATH="$scratch/prefix" \
        -DRECORDKIT_SIBLINGS="recordkit::host;$scratch/root.cpp"
    cmake --build "$scratch/tests"
} >"$scratch/log" 2>&1 || {
    tail -n 40 "$scratch/log" >&2
    exit 1
}
ctest --test-dir "$scratch/tests" --verbose >"$scratch/log" || {
    tail -n 40 "$scratch/log" >&2
    exit 1
}
grep -o '\[  PASSED  \] [0-9]* tests' "$scratch/log"
