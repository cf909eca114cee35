#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Static libraries without the command, installed and then moved: programs of pkg-config and of
# find_package link and run. The pkg-config files are right wherever they are installed.
#
#   relocation.sh SOURCE-FOLDER CXX
set -eu
source=$1
cxx=$2
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
consumer=$source/tests/install/consumer
build=$scratch/build
expected="010002000000005f" # what the program prints begins so
unset PKG_CONFIG_PATH PKG_CONFIG_SYSROOT_DIR DESTDIR

fail() {
    echo "relocation: $*" >&2
    exit 1
}

run() {
    "$@" >"$scratch/log" 2>&1 || {
        cat "$scratch/log" >&2
        fail "$*"
    }
}

configure() {
    run cmake -S "$source" -B "$build" -G Ninja -DCMAKE_CXX_COMPILER="$cxx" -DCMAKE_BUILD_TYPE=Debug \
        -DCMAKE_CXX_FLAGS_DEBUG=-O0 -DBUILD_SHARED_LIBS=OFF -DRECORDKIT_COMMAND=OFF "$@"
}

# pc FOLDER [OPTION...]: what pkg-config answers of the packages in a folder, each folder without dots.
pc() {
    folder=$1
    shift
    PKG_CONFIG_LIBDIR=$folder pkg-config "$@" recordkit | tr ' ' '\n' | while read -r word; do
        case "$word" in
        -[IL]*) printf '%s%s ' "${word%"${word#??}"}" "$(realpath -m "${word#??}")" ;;
        ?*) printf '%s ' "$word" ;;
        esac
    done
}

# expect_folders FOLDER INCLUDE LIB
expect_folders() {
    [ -e "$2/recordkit/sel/SELEntry.h" ] || fail "no headers in $2"
    [ -e "$3/librecordkit.a" ] || fail "no library in $3"
    flags=$(pc "$1" --cflags --libs)
    [ "$flags" = "-I$2 -L$3 -lrecordkit -lrecordkit-host " ] || fail "$1: $flags"
}

configure
run cmake --build "$build"
run cmake --install "$build" --prefix "$scratch/first"
[ ! -e "$scratch/first/bin" ] || fail "the command is installed"
! find "$scratch/first" -name '*.so*' | grep . || fail "a shared library is installed"
mkdir "$scratch/there"
mv "$scratch/first" "$scratch/there/moved"
moved=$scratch/there/moved
expect_folders "$moved/lib/pkgconfig" "$moved/include" "$moved/lib"
[ "$(PKG_CONFIG_LIBDIR=$moved/lib/pkgconfig pkg-config --variable=platform recordkit)" = host ] ||
    fail "the variable platform"

# shellcheck disable=SC2046
run "$cxx" -std=c++17 "$consumer/main.cpp" -o "$scratch/by-pkg-config" \
    $(PKG_CONFIG_LIBDIR=$moved/lib/pkgconfig pkg-config --static --cflags --libs recordkit)
run cmake -S "$consumer" -B "$scratch/consumer" -G Ninja -DCMAKE_CXX_COMPILER="$cxx" \
    -DEXAMPLES="$source/examples" -DCMAKE_PREFIX_PATH="$moved"
run cmake --build "$scratch/consumer"
for program in "$scratch/by-pkg-config" "$scratch/consumer/consumer"; do
    "$program" | grep -q "^$expected" || fail "what $program prints"
    ! readelf -d "$program" | grep -q 'NEEDED.*recordkit' || fail "$program needs a shared library"
done
"$scratch/consumer/list_sensors" "$source/examples/data/sdr/repository.sdr" | grep -q . ||
    fail "what an example prints that links recordkit::inspect"

# DESTDIR with the prefix of the configuration, and with another one.
export DESTDIR="$scratch/stage"
configure -DCMAKE_INSTALL_PREFIX=/usr -DCMAKE_INSTALL_LIBDIR=lib/powerpc
run cmake --install "$build"
expect_folders "$DESTDIR/usr/lib/powerpc/pkgconfig" "$DESTDIR/usr/include" "$DESTDIR/usr/lib/powerpc"
run cmake --install "$build" --prefix /opt/board
expect_folders "$DESTDIR/opt/board/lib/powerpc/pkgconfig" "$DESTDIR/opt/board/include" \
    "$DESTDIR/opt/board/lib/powerpc"
# An absolute folder of libraries stays where it is.
configure -DCMAKE_INSTALL_PREFIX=/usr -DCMAKE_INSTALL_LIBDIR=/abs/powerpc
run cmake --install "$build" --prefix /srv/board
expect_folders "$DESTDIR/abs/powerpc/pkgconfig" "$DESTDIR/srv/board/include" "$DESTDIR/abs/powerpc"

# Without relocation: the folders by their names, to which a sysroot is added.
configure -DCMAKE_INSTALL_PREFIX=/usr -DCMAKE_INSTALL_LIBDIR=lib -DRECORDKIT_RELOCATABLE_PC=OFF
run cmake --install "$build" --prefix /sys/board
grep -qx "prefix=/sys/board" "$DESTDIR/sys/board/lib/pkgconfig/recordkit.pc" || fail "the prefix"
PKG_CONFIG_SYSROOT_DIR=$DESTDIR
export PKG_CONFIG_SYSROOT_DIR
expect_folders "$DESTDIR/sys/board/lib/pkgconfig" "$DESTDIR/sys/board/include" "$DESTDIR/sys/board/lib"
echo "relocation: static programs link and run, and every pkg-config file is right"
