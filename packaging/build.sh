#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Builds the Debian packages of what is committed, from a copy of the tree.
#
#   build.sh SOURCE-FOLDER OUTPUT-FOLDER [ARCHITECTURE]
set -eu
source=$1
mkdir -p "$2"
output=$(cd "$2" && pwd)
architecture=${3:-$(dpkg --print-architecture)}
cd "$source"
version=$(sed -n 's/^project(recordkit VERSION \([0-9.]*\) .*/\1/p' CMakeLists.txt)
date=$(git log -1 --format=%cD)
tree=$output/recordkit-$version

rm -rf "$output"
mkdir -p "$tree"
git archive HEAD | tar -x -C "$tree"
cp -r "$tree/packaging/debian" "$tree/debian"
# The version is defined only in CMakeLists.txt.
cat >"$tree/debian/changelog" <<TEXT
recordkit ($version) unstable; urgency=medium

  * See CHANGELOG.md.

 -- The recordkit developers <developers@recordkit.example>  $date
TEXT
cd "$tree"
if [ "$architecture" = "$(dpkg --print-architecture)" ]; then
    dpkg-buildpackage -us -uc -b
else
    # Libraries of a foreign architecture need not be installed: only headers are used.
    CONFIG_SITE=/dev/null dpkg-buildpackage -us -uc -B -d -a "$architecture" -Pcross,nocheck
fi
rm -rf "$tree"
