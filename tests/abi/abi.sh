#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# The binary interface of the libraries, compared with the baseline in abi/.
#
#   abi.sh compare SOURCE-FOLDER BUILD NAME   fails on a change that breaks callers, and names it
#   abi.sh write SOURCE-FOLDER BUILD NAME     makes what was built the new baseline
#
# NAME is that of a folder of abi/; BUILD has debug information.
set -eu
action=$1
source=$2
build=$3
baseline=$source/abi/$4
private=$source/tests/abi/abi.suppr

mkdir -p "$baseline"
for library in librecordkit librecordkit-host; do
    if [ "$action" = write ]; then
        abidw --exported-interfaces-only --no-show-locs --no-corpus-path --no-comp-dir-path \
            "$build/$library.so.1" >"$baseline/$library.abi"
        echo "abi: $baseline/$library.abi is written"
    else
        # Additions break nobody; they are named, and the next release takes them in.
        abidiff --suppressions "$private" --no-added-syms "$baseline/$library.abi" \
            "$build/$library.so.1" || {
            echo "abi: $library breaks programs that were linked against it; docs/abi.md says how" \
                "a deliberate change is made" >&2
            exit 1
        }
        abidiff --suppressions "$private" --stat "$baseline/$library.abi" "$build/$library.so.1" |
            grep -i "added" || true
        echo "abi: $library ($4) is as in the baseline"
    fi
done
