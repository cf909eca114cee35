#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# A Meson project that takes the library by packaging/meson: for this machine with the host platform,
# and for the target with siblings of its own.
#
#   meson.sh SOURCE-FOLDER
set -eu
source=$1
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cross=powerpc-linux-gnu
expected="severity 3" # what the program prints ends so

fail() {
    echo "meson: $*" >&2
    exit 1
}

run() {
    "$@" >"$scratch/log" 2>&1 || {
        cat "$scratch/log" >&2
        fail "$*"
    }
}

mkdir "$scratch/project"
cp -r "$source/packaging/meson/subprojects" "$source/examples/classify_event.cpp" "$scratch/project"
mkdir "$scratch/recordkit"
cp -r "$source/CMakeLists.txt" "$source/cmake" "$source/recordkit" "$source/LICENSE" "$scratch/recordkit"
tar -C "$scratch" -cf "$scratch/project/subprojects/packagefiles/recordkit.tar" recordkit
cp -r "$source/examples/board/siblings" "$scratch/project"
printf 'constexpr const char* RECORDKIT_LIBRARY_MESSAGES = R"catalogue(%s)catalogue";\n' \
    "$(cat "$source/recordkit/platform/messages.tsv")" >"$scratch/project/siblings/LibraryMessages.h"
cat >"$scratch/project/meson.build" <<'TEXT'
project('consumer', 'cpp', default_options: ['cpp_std=c++17'])
recordkit = dependency('recordkit')
assert(recordkit.version() == get_option('expected'), recordkit.version())
siblings = []
if recordkit.get_variable('platform') == 'external'
    siblings = run_command('sh', '-c', 'ls siblings/*.cpp', check: true).stdout().split()
endif
executable('consumer', 'classify_event.cpp', siblings, dependencies: recordkit,
    include_directories: 'siblings', install: true)
TEXT
echo "option('expected', type: 'string')" >"$scratch/project/meson_options.txt"
cat >"$scratch/cross.ini" <<TEXT
[binaries]
cpp = '$cross-g++'
ar = '$cross-ar'
strip = '$cross-strip'
[host_machine]
system = 'linux'
cpu_family = 'ppc'
cpu = 'powerpc'
endian = 'big'
TEXT
version=$(sed -n 's/^project(recordkit VERSION \([0-9.]*\) .*/\1/p' "$source/CMakeLists.txt")
cd "$scratch/project"

# build NAME OPTION...
build() {
    name=$1
    shift
    run meson setup "$scratch/$name" -Dbuildtype=plain -Dprefix=/usr -Dlibdir=lib \
        -Dexpected="$version" "$@"
    run meson compile -C "$scratch/$name"
    DESTDIR=$scratch/$name-root run meson install -C "$scratch/$name" --no-rebuild
}

build native -Drecordkit:platform=host
[ -e "$scratch/native-root/usr/lib/librecordkit.so.1" ] || fail "the library is not installed"
LD_LIBRARY_PATH=$scratch/native-root/usr/lib "$scratch/native-root/usr/bin/consumer" | grep -q "$expected\$" ||
    fail "what the native program prints"
for name in recordkit recordkit-host; do
    readelf -d "$scratch/native-root/usr/lib/lib$name.so.1" | grep -q "SONAME.*\[lib$name.so.1\]" ||
        fail "SONAME of $name"
done
# The headers, and what is exported, are those of the other build.
run meson setup "$scratch/alone" "$scratch/project/subprojects/recordkit" -Dprefix=/usr -Dplatform=host
DESTDIR=$scratch/alone-root run meson install -C "$scratch/alone"
run "$source/tests/abi/symbols.sh" "$scratch/alone-root/usr/include" \
    "$scratch/native-root/usr/lib/librecordkit.so.1" "$scratch/native-root/usr/lib/librecordkit-host.so.1"

# From a checkout in place of the archive.
rm -rf "$scratch/project/subprojects/recordkit" "$scratch/project/subprojects/packagefiles/recordkit.tar"
mv "$scratch/recordkit" "$scratch/project/subprojects"
run meson subprojects packagefiles --apply recordkit
build target --cross-file "$scratch/cross.ini"
[ ! -e "$scratch/target-root/usr/lib/librecordkit-host.so.1" ] || fail "a host library for the target"
$cross-readelf -h "$scratch/target-root/usr/lib/librecordkit.so.1" | grep -q 'Machine: *PowerPC' ||
    fail "not for the target"
qemu-ppc-static -L /usr/$cross -E LD_LIBRARY_PATH="$scratch/target-root/usr/lib:/usr/$cross/lib" \
    "$scratch/target-root/usr/bin/consumer" | grep -q "$expected\$" || fail "what the target's program prints"

build static --cross-file "$scratch/cross.ini" -Ddefault_library=static
! $cross-readelf -d "$scratch/static-root/usr/bin/consumer" | grep -q 'NEEDED.*recordkit' ||
    fail "the static program needs a shared library"
qemu-ppc-static -L /usr/$cross "$scratch/static-root/usr/bin/consumer" | grep -q "$expected\$" ||
    fail "what the static program prints"
echo "meson: native, cross and static programs run"
