#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Only the library, against a firmware's own siblings: it leaves exactly their symbols undefined.
#
#   external.sh SOURCE-FOLDER CXX
set -eu
source=$1
cxx=$2
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

cmake -S "$source" -B "$scratch" -G Ninja -DCMAKE_CXX_COMPILER="$cxx" -DCMAKE_BUILD_TYPE=Debug \
    -DRECORDKIT_PLATFORM=external >"$scratch/log"
cmake --build "$scratch" >>"$scratch/log"
[ ! -e "$scratch/librecordkit-host.so" ] || {
    echo "external: a host library was built" >&2
    exit 1
}
cmake --install "$scratch" --prefix "$scratch/prefix" >>"$scratch/log"
for file in lib*/pkgconfig/recordkit.pc share/man/man3/recordkit.3 share/doc/recordkit/LICENSE; do
    # shellcheck disable=SC2086
    ls "$scratch/prefix"/$file >/dev/null
done
[ "$(PKG_CONFIG_LIBDIR=$(dirname "$(find "$scratch/prefix" -name recordkit.pc)") \
    pkg-config --variable=platform recordkit)" = external ] || {
    echo "external: the variable platform" >&2
    exit 1
}
grep -qx 'set(recordkit_PLATFORM external)' "$(find "$scratch/prefix" -name recordkit-config.cmake)" || {
    echo "external: recordkit_PLATFORM of the CMake package" >&2
    exit 1
}

# What the C and C++ libraries define has a version; what is weak need not be there.
nm -D --undefined-only --with-symbol-versions "$scratch/librecordkit.so" |
    awk '$1 == "U" && $2 !~ /@/ { print $2 }' | c++filt | LC_ALL=C sort >"$scratch/symbols"
grep -v "^#" "$source/tests/install/sibling_symbols.txt" >"$scratch/expected"
diff -u "$scratch/expected" "$scratch/symbols"
echo "external: exactly the siblings' symbols are undefined"
