#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Only the library, against a firmware's own siblings: it leaves exactly their symbols undefined, and
# the installed tests of any siblings pass on those of examples/board.
#
#   external.sh SOURCE-FOLDER CXX
#   external.sh SOURCE-FOLDER powerpc   cross, run by an emulator; exits with 77 where a tool is missing
set -eu
source=$(cd "$1" && pwd)
cxx=$2
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

fail() {
    echo "external: $*" >&2
    exit 1
}

# step NAME COMMAND...: runs a step, and prints what it printed if it fails.
step() {
    name=$1
    shift
    "$@" >"$scratch/log" 2>&1 || {
        tail -n 40 "$scratch/log" >&2
        fail "$name"
    }
}

nm=nm
# How both projects are configured, and the tests besides.
set -- -G Ninja
if [ "$cxx" = powerpc ]; then
    for tool in powerpc-linux-gnu-g++ powerpc-linux-gnu-nm qemu-ppc-static; do
        command -v "$tool" >/dev/null || {
            echo "external: there is no $tool here"
            exit 77
        }
    done
    [ -d /usr/src/googletest ] || {
        echo "external: there are no sources of GoogleTest here"
        exit 77
    }
    nm=powerpc-linux-gnu-nm
    set -- "$@" -DCMAKE_TOOLCHAIN_FILE="$source/cmake/powerpc.cmake" \
        -DCMAKE_FIND_ROOT_PATH_MODE_PACKAGE=BOTH
    emulator="qemu-ppc-static -L /usr/powerpc-linux-gnu"
    googletest=/usr/src/googletest
else
    set -- "$@" -DCMAKE_CXX_COMPILER="$cxx"
    emulator=
    googletest=
fi

step "the library is not configured" cmake -S "$source" -B "$scratch/library" "$@" \
    -DCMAKE_BUILD_TYPE=Debug -DRECORDKIT_PLATFORM=external
step "the library is not built" cmake --build "$scratch/library"
[ ! -e "$scratch/library/librecordkit-host.so" ] || fail "a host library was built"
step "the library is not installed" cmake --install "$scratch/library" --prefix "$scratch/prefix"
for file in lib*/pkgconfig/recordkit.pc share/man/man3/recordkit.3 share/doc/recordkit/LICENSE; do
    # shellcheck disable=SC2086
    ls "$scratch/prefix"/$file >/dev/null
done
[ "$(PKG_CONFIG_LIBDIR=$(dirname "$(find "$scratch/prefix" -name recordkit.pc)") \
    pkg-config --variable=platform recordkit)" = external ] || fail "the variable platform"
grep -qx 'set(recordkit_PLATFORM external)' "$(find "$scratch/prefix" -name recordkit-config.cmake)" ||
    fail "recordkit_PLATFORM of the CMake package"

# What the C and C++ libraries define has a version; what is weak need not be there.
"$nm" -D --undefined-only --with-symbol-versions "$scratch/library/librecordkit.so" |
    awk '$1 == "U" && $2 !~ /@/ { print $2 }' | c++filt | LC_ALL=C sort >"$scratch/symbols"
grep -v "^#" "$source/tests/install/sibling_symbols.txt" >"$scratch/expected"
diff -u "$scratch/expected" "$scratch/symbols"
echo "external: exactly the siblings' symbols are undefined"

# From the installation, and the sources of the siblings: nothing else of this tree.
cp -r "$source/examples/board/siblings" "$scratch/siblings"
mkdir -p "$scratch/board/tmp" "$scratch/board/var/tav/fmem/ipmi"
siblings=$(printf '%s;' "$scratch"/siblings/*.cpp)
step "the platform tests are not configured" cmake \
    -S "$scratch/prefix/share/recordkit/platform-tests" -B "$scratch/tests" "$@" \
    -DCMAKE_BUILD_TYPE=Debug -DCMAKE_PREFIX_PATH="$scratch/prefix" \
    -DCMAKE_CXX_FLAGS="-Wall -Wextra -Wpedantic -Wshadow -Werror" \
    -DRECORDKIT_SIBLINGS="$siblings" -DRECORDKIT_SIBLINGS_DEFINE="BOARD_ROOT=\"$scratch/board\"" \
    -DRECORDKIT_EMULATOR="$emulator" -DRECORDKIT_GTEST_SOURCE="$googletest"
step "the platform tests are not built" cmake --build "$scratch/tests"
step "the platform tests fail" ctest --test-dir "$scratch/tests" --output-on-failure --verbose
grep -o '\[  PASSED  \] [0-9]* tests' "$scratch/log" || fail "no test ran"
echo "external: the siblings of examples/board pass the platform tests"
