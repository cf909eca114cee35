#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# What was built carries the protections that SECURITY.md promises.
#
#   hardening.sh BUILD [READELF]
set -eu
build=$1
readelf=${2:-readelf}

fail() {
    echo "hardening: $*" >&2
    exit 1
}

for file in "$build/librecordkit.so.1" "$build/librecordkit-host.so.1" "$build/tool/recordkit"; do
    "$readelf" -lW "$file" | grep -q GNU_RELRO || fail "$file has no RELRO"
    "$readelf" -dW "$file" | grep -q -e BIND_NOW -e 'Flags:.*NOW' || fail "$file binds lazily"
    "$readelf" -lW "$file" | grep GNU_STACK | grep -q 'RW ' || fail "$file has an executable stack"
    ! "$readelf" -dW "$file" | grep -q TEXTREL || fail "$file has relocations in its code"
    "$readelf" --dyn-syms -W "$file" | grep -q ' UND .*__stack_chk_fail' ||
        fail "$file has no stack protector"
    # Inlined checks leave no trace; some calls are always checked at run time.
    "$readelf" --dyn-syms -W "$file" | grep -q ' UND __[a-z_]*_chk@' || fail "$file is not fortified"
done
"$readelf" -hW "$build/tool/recordkit" | grep -q 'Type: *DYN' || fail "the command is no PIE"
! "$readelf" -dW "$build/librecordkit.so.1" | grep -q -e 'RPATH.*[[:]/' -e 'RUNPATH.*[[:]/' ||
    fail "the library looks for others in folders of the machine that built it"
echo "hardening: RELRO, immediate binding, stack protector, fortified calls, PIE"
