#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# What the library takes on the board: its size, and the stack of its operations.
#
#   footprint.sh BUILD          print both as docs/footprint.md keeps them
#   footprint.sh BUILD RECORD   compare with what RECORD says; more than 5 % above it fails, and so
#                               does an operation with 16 KB of stack
#
# BUILD is that of the preset powerpc-small, whose compiler writes call graphs.
set -eu
build=$1
library=$build/librecordkit.so.1
tools=powerpc-linux-gnu-
LIMIT_PERCENT=5
DEEP=512 # bytes of stack from which on an operation is listed
STACK_LIMIT=16384

# Sums the sections whose name fits a pattern.
sections() {
    "${tools}size" -A -d "$library" | awk -v pattern="$1" '$1 ~ pattern { sum += $2 } END { print sum + 0 }'
}

size_table() {
    stripped=$(mktemp)
    "${tools}strip" -o "$stripped" "$library"
    echo "| what | bytes |"
    echo "|---|---|"
    echo "| code (.text) | $(sections '^[.]text$') |"
    echo "| constants (.rodata, .data.rel.ro) | $(sections '^[.](rodata|data[.]rel[.]ro)$') |"
    echo "| unwinding (.eh_frame, .eh_frame_hdr, .gcc_except_table) | $(sections '^[.](eh_frame|gcc_except)') |"
    echo "| symbols (.dynsym, .dynstr, .gnu.hash, .gnu.version) | $(sections '^[.](dyns|gnu[.](hash|version))') |"
    echo "| relocations (.rela.dyn, .rela.plt) | $(sections '^[.]rela[.]') |"
    echo "| writable (.data, .bss, .got, .got2 and small data) | $(sections '^[.](data|bss|got|got2|sdata|sbss|plt)$') |"
    echo "| loaded in all | $("${tools}size" "$library" | awk 'NR == 2 { print $4 }') |"
    echo "| stripped file | $(stat -c %s "$stripped") |"
    rm -f "$stripped"
}

# The deepest path of calls from each exported operation, as far as it stays in the library and is
# not virtual.
stack_table() {
    "${tools}nm" -D --defined-only "$library" | awk '$2 == "T" { print $3 }' >"$build/exported"
    find "$build" -path '*recordkit_objects*' -name '*.ci' -exec cat {} + | awk -v deep="$DEEP" '
        FNR == NR { exported[$1] = 1; next }
        { split($0, quoted, "\""); name = quoted[2]; sub(/^.*:/, "", name) }
        /^node:/ && match($0, /[0-9]+ bytes/) { own[name] = substr($0, RSTART, RLENGTH) + 0 }
        /^edge:/ { to = quoted[4]; sub(/^.*:/, "", to); calls[name] = calls[name] " " to }
        function depth(f,    list, n, i, d, most) {
            if (f in known) return known[f]
            known[f] = own[f] # a recursion counts once
            n = split(calls[f], list, " ")
            for (i = 1; i <= n; ++i) { d = depth(list[i]); if (d > most) most = d }
            return known[f] = own[f] + most
        }
        END {
            for (f in exported) if (depth(f) >= deep) print known[f], f
        }' "$build/exported" - | LC_ALL=C sort -k1,1nr -k2 | c++filt |
        sed -e 's/std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> >/std::string/g' \
            -e 's/, std::allocator<[a-z: ]*> >/>/g' -e 's/\[abi:cxx11\]//' |
        awk 'BEGIN { print "| operation | bytes of stack |\n|---|---|" }
            { bytes = $1; sub(/^[0-9]+ /, ""); print "| `" $0 "` | " bytes " |" }'
}

if [ $# = 1 ]; then
    size_table
    echo
    stack_table
    exit 0
fi

status=0
size_table | tail -n 2 | while IFS='|' read -r _ what bytes _; do
    recorded=$(awk -F'|' -v what="$what" '$2 == what { print $3 + 0 }' "$2")
    [ -n "$recorded" ] || { echo "footprint: $2 does not say how large$what is" >&2; exit 1; }
    if [ $((bytes * 100)) -gt $((recorded * (100 + LIMIT_PERCENT))) ]; then
        echo "footprint:$what is$bytes bytes, $2 says $recorded" >&2
        exit 1
    fi
    echo "footprint:$what $bytes bytes, recorded $recorded"
done || status=1
stack_table | awk -F'|' -v limit=$STACK_LIMIT '
    $3 + 0 >= limit { print "footprint:" $2 "takes" $3 "bytes of stack" > "/dev/stderr"; wrong = 1 }
    $3 + 0 > most { most = $3 + 0 }
    END { print "footprint: deepest stack " most + 0 " bytes"; exit wrong || most == 0 }' || status=1
exit $status
