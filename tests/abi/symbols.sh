#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Everything that a library exports is declared, by its whole name, in a header that is installed.
#
#   symbols.sh INCLUDE-FOLDER LIBRARY...
set -eu
include=$1
shift
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

# A line for each header: its name and the identifiers in it.
find "$include/recordkit" -name '*.h' | while read -r header; do
    printf '%s' "$(basename "$header" .h)"
    sed 's,//.*,,' "$header" | tr -cs 'A-Za-z0-9_~' '\n' | sort -u | tr '\n' ' ' | sed 's/^/ /'
    echo
done >"$scratch/headers"

status=0
for library in "$@"; do
    # The name of a function or object, or the class that a table or thunk belongs to.
    nm -DC --defined-only "$library" | sed -E 's/^[0-9a-f]* . //' | sed -E \
        -e 's/^(vtable|typeinfo|typeinfo name|VTT) for //' \
        -e 's/^(non-virtual|virtual) thunk to //' -e 's/\[abi:[a-z0-9]*\]//' \
        -e 's/\(.*//' -e 's/operator[^A-Za-z0-9_].*/operator/' | sort -u >"$scratch/symbols"
    [ -s "$scratch/symbols" ]
    awk '
        FNR == NR { for (i = 2; i <= NF; ++i) { found[$1, $i] = 1; if (!($i in one)) one[$i] = $1 }; next }
        {
            # The parts of a qualified name must appear in one header: that of the class, if there
            # is one with that name.
            n = split($0, part, "::")
            for (h in headers) delete headers[h]
            class = ""
            for (i = 1; i <= n; ++i) if ((part[i], part[i]) in found) class = part[i]
            if (class == "") class = one[part[n]]
            for (i = 1; i <= n; ++i) if (class == "" || !((class, part[i]) in found)) { print; break }
        }' "$scratch/headers" "$scratch/symbols" >"$scratch/undeclared"
    if [ -s "$scratch/undeclared" ]; then
        echo "symbols: $library exports what no installed header declares:" >&2
        cat "$scratch/undeclared" >&2
        status=1
    fi
    echo "symbols: $(wc -l <"$scratch/symbols") names of $(basename "$library")"
done
exit $status
