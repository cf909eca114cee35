#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Installs the packages into a fresh system of their own, and uses them there like a user who never
# built the source: manual pages, completion, every command line of the documentation and so each
# task from start to end, an example built with the installed headers, the demo.
#
#   test.sh SOURCE-FOLDER PACKAGE-FOLDER BUILD-FOLDER CHROOT-FOLDER
#
# The suite and the mirror are this machine's. BUILD-FOLDER has the rotation that the demo kills.
set -eu
source=$1
packages=$2
build=$3
root=$4

fail() {
    echo "package test: $*" >&2
    exit 1
}

inside() {
    chroot "$root" env LC_ALL=C.UTF-8 PATH=/usr/bin:/bin:/usr/sbin:/sbin "$@"
}

suite=$(. /etc/os-release && echo "$VERSION_CODENAME")
mirror=$(apt-get indextargets --format '$(SITE)' 'Created-By: Packages' 'Origin: Debian' \
    "Codename: $suite" | head -n 1)
rm -rf "$root"
mkdir -p "$root"
# With what the command depends on besides the library.
depends=$(dpkg-deb -f "$packages"/recordkit_*.deb Depends | tr ',' '\n' |
    sed -n -e 's/ *(.*//; s/ //g; /^librecordkit1$/!p' | paste -sd,)
debootstrap --variant=minbase \
    --include="man-db,bash-completion,g++,pkg-config,cmake,make,libfmt-dev,$depends" \
    "$suite" "$root" "$mirror" >"$root.log" 2>&1 || fail "no fresh system: $root.log"
# The minimal system leaves manual pages and documentation out when it installs.
rm -f "$root"/etc/dpkg/dpkg.cfg.d/*docker* "$root"/etc/dpkg/dpkg.cfg.d/excludes

mkdir "$root/packages"
cp "$packages"/librecordkit1_*.deb "$packages"/librecordkit-dev_*.deb "$packages"/recordkit_*.deb \
    "$root/packages"
inside sh -c 'dpkg -i /packages/*.deb' >>"$root.log" 2>&1 || fail "dpkg -i: $root.log"

# As a service engineer.
inside recordkit --version
for page in recordkit recordkit-sel-list recordkit-fru-set "3 recordkit"; do
    # shellcheck disable=SC2086
    inside man -P cat $page | grep -q "^NAME" || fail "man $page"
done
# Each sub-command that help names has its page.
commands=$(inside recordkit --help | sed -n '/^Subcommands:/,/^$/s/^  \([a-z]*\) .*/\1/p')
[ -n "$commands" ] || fail "recordkit --help names no sub-command"
for command in $commands; do
    inside man -P cat "recordkit-$command" | grep -q "^ *recordkit $command" ||
        fail "man recordkit-$command"
done
[ "$(inside bash -c '. /usr/share/bash-completion/completions/recordkit
    COMP_WORDS=(recordkit sel li) COMP_CWORD=2
    _recordkit
    echo "${COMPREPLY[*]}"')" = list ] || fail "completion of recordkit sel li"
[ "$(inside recordkit fru get /usr/share/doc/recordkit/examples/ascii-all.bin board.serial)" = \
    SBS00998877 ] || fail "fru get"
mkdir -p "$root/source/build/tool" "$root/source/build/tests"
cp -r "$source/examples" "$source/tests" "$root/source/"
ln -s /usr/share/doc/recordkit/docs /usr/share/doc/recordkit/README.md "$root/source/"
inside bash /source/tests/docs/docs.sh check /source /usr/bin/recordkit >>"$root.log" 2>&1 ||
    fail "the documentation: $root.log"
ln -s /usr/bin/recordkit "$root/source/build/tool/recordkit"
cp "$build/tests/rotation_victim" "$root/source/build/tests/"
inside sh -c 'cd /source && sh examples/demo.sh build scratch' >"$root.demo" || fail "the demo: $root.demo"
grep -q "nothing is lost" "$root.demo" || fail "what the demo says: $root.demo"

# As a firmware developer.
inside sh -c 'cd /tmp && g++ -std=c++17 /usr/share/doc/librecordkit-dev/examples/read_fru.cpp \
    -o read_fru $(pkg-config --cflags --libs recordkit)' || fail "an example by pkg-config"
[ "$(inside /tmp/read_fru /usr/share/doc/recordkit/examples/ascii-all.bin)" = SBS00998877 ] ||
    fail "what the example says"
cp -r "$source/tests/install/consumer" "$root/tmp/"
inside sh -c 'cd /tmp/consumer && cmake -S . -B b -DEXAMPLES=/usr/share/doc/librecordkit-dev/examples &&
    cmake --build b' >>"$root.log" 2>&1 || fail "find_package: $root.log"
inside sh -c '/tmp/consumer/b/list_sensors /source/examples/data/sdr/repository.sdr' | grep -q . ||
    fail "what an example prints that links recordkit::inspect"
inside /tmp/consumer/b/consumer | grep -q "^010002000000005f" || fail "what its program prints"
rm -rf "$root"
echo "package test: installed and used in a fresh $suite"
