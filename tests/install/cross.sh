#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# A cross build without an emulator runs no program of its own: no manual pages of the command, no
# tests. The compiler need not be one for another machine; only what CMake plans is read.
#
#   cross.sh SOURCE-FOLDER CXX
set -eu
source=$1
cxx=$2
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

fail() {
    echo "cross: $*" >&2
    exit 1
}

configure() {
    name=$1
    shift
    cmake -S "$source" -B "$scratch/$name" -G Ninja -DCMAKE_SYSTEM_NAME=Linux \
        -DCMAKE_CXX_COMPILER="$cxx" "$@" >"$scratch/$name.log" 2>&1
}

configure plain || {
    cat "$scratch/plain.log" >&2
    fail "it does not configure"
}
grep -qx 'CMAKE_BUILD_TYPE:STRING=' "$scratch/plain/CMakeCache.txt" || fail "a build type is chosen"
grep -qx 'RECORDKIT_BUILD_TESTS:BOOL=OFF' "$scratch/plain/CMakeCache.txt" || fail "tests are built"
grep -q 'CMAKE_CROSSCOMPILING_EMULATOR is not set' "$scratch/plain.log" || fail "nothing says what is left out"
ninja -C "$scratch/plain" -t commands >"$scratch/commands"
grep -q ' -o tool/recordkit ' "$scratch/commands" || fail "the command is not built"
! grep -E '(^|[ /])recordkit-(man|records) ' "$scratch/commands" || fail "a program is run"
! grep -E 'man/man1|recordkit[.]bash' "$scratch/plain/cmake_install.cmake" || fail "pages are installed"
grep -q 'recordkit[.]3"' "$scratch/plain/cmake_install.cmake" || fail "recordkit(3) is not installed"

# With one, both are there.
configure emulated -DCMAKE_CROSSCOMPILING_EMULATOR=/usr/bin/env -DRECORDKIT_BUILD_TESTS=OFF ||
    fail "it does not configure with an emulator"
ninja -C "$scratch/emulated" -t commands | grep -q '/usr/bin/env .*recordkit-man ' || fail "no page is written"

! configure tests -DRECORDKIT_BUILD_TESTS=ON || fail "tests without an emulator"
grep -q 'CMAKE_CROSSCOMPILING_EMULATOR' "$scratch/tests.log" || fail "the error: $(cat "$scratch/tests.log")"
configure small -DRECORDKIT_COMMAND=OFF || fail "it does not configure without the command"
! grep -q CLI11 "$scratch/small/CMakeCache.txt" || fail "CLI11 is looked for without the command"
! ninja -C "$scratch/small" -t commands | grep -q ' -o tool/recordkit' || fail "the command is built"
echo "cross: nothing of the target is run"
