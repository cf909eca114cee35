#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Installs a build, and builds and runs a program against only the installation: once by CMake's
# find_package, once by pkg-config.
#
#   installation.sh SOURCE-FOLDER BUILD-FOLDER CXX
set -eu
source=$1
build=$2
cxx=$3
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
prefix=$scratch/prefix
expected="010002000000005f" # what the program prints begins so
version=$(sed -n 's/^project(recordkit VERSION \([0-9.]*\) .*/\1/p' "$source/CMakeLists.txt")

fail() {
    echo "installation: $*" >&2
    exit 1
}

cmake --install "$build" --prefix "$prefix" >"$scratch/install.log"
lib=$(dirname "$(find "$prefix" -name librecordkit.so)")

for file in "$prefix/bin/recordkit" "$prefix/include/recordkit/sel/SELEntry.h" \
    "$prefix/include/recordkit/host/Machine.h" "$lib/librecordkit-host.so.1" \
    "$lib/pkgconfig/recordkit.pc" "$lib/pkgconfig/recordkit-host.pc" \
    "$lib/cmake/recordkit/recordkit-config.cmake" "$prefix/share/man/man1/recordkit.1"; do
    [ -e "$file" ] || fail "$file is missing"
done
for header in posix/File.h serial/Failure.h selfile/SELFileScan.h host/Catalogue.h; do
    [ ! -e "$prefix/include/recordkit/$header" ] || fail "$header is not for callers"
done

for name in recordkit recordkit-host; do
    readelf -d "$lib/lib$name.so" | grep -q "SONAME.*\[lib$name.so.1\]" || fail "SONAME of $name"
done
"$prefix/bin/recordkit" --version | grep -qx "recordkit $version" || fail "the installed command"

"$source/tests/abi/symbols.sh" "$prefix/include" "$lib/librecordkit.so.1" \
    "$lib/librecordkit-host.so.1" || fail "the exported symbols"

# Each installed header compiles by itself.
find "$prefix/include/recordkit" -name '*.h' | while read -r header; do
    echo "#include <${header#"$prefix/include/"}>" |
        "$cxx" -std=c++17 -Wall -Wextra -Werror -I"$prefix/include" -fsyntax-only -x c++ - ||
        exit 1
done >"$scratch/headers.log" || fail "a header does not compile by itself"

cmake -S "$source/tests/install/consumer" -B "$scratch/cmake" -G Ninja -DCMAKE_CXX_COMPILER="$cxx" \
    -DEXAMPLES="$source/examples" -DCMAKE_PREFIX_PATH="$prefix" >"$scratch/cmake.log" ||
    fail "find_package"
cmake --build "$scratch/cmake" >>"$scratch/cmake.log" || fail "the CMake program"
"$scratch/cmake/consumer" | grep -q "^$expected" || fail "what the CMake program prints"

"$scratch/cmake/list_sensors" "$source/examples/data/sdr/repository.sdr" | grep -q . ||
    fail "what an example prints that links recordkit::inspect"

# The library alone, without the command and the layer above it.
cmake --install "$build" --prefix "$scratch/library" --component library >"$scratch/install.log"
[ ! -e "$scratch/library/bin" ] || fail "the component library has the command"
[ ! -e "$scratch/library/include/recordkit/inspect" ] || fail "the component library has inspect"
[ -n "$(find "$scratch/library" -name 'librecordkit.so.1')" ] || fail "the component library"

PKG_CONFIG_PATH=$lib/pkgconfig
export PKG_CONFIG_PATH
# shellcheck disable=SC2046
"$cxx" -std=c++17 "$source/tests/install/consumer/main.cpp" -o "$scratch/by-pkg-config" \
    $(pkg-config --cflags --libs recordkit) ||
    fail "the pkg-config program"
LD_LIBRARY_PATH=$lib "$scratch/by-pkg-config" | grep -q "^$expected" ||
    fail "what the pkg-config program prints"
echo "installation: both programs run"
