#!/bin/bash
# SPDX-License-Identifier: Apache-2.0
# Runs every command line of the documentation, and compares its output with that in the page.
#
#   docs.sh check SOURCE-FOLDER COMMAND    fails where they differ
#   docs.sh write SOURCE-FOLDER COMMAND    puts what is printed into the pages, and makes the pictures
#                                          of a report again where the report's tests can run
#
# In an indented block, a line that begins with "$ " is run, and what it prints is what follows up
# to the next such line or the end of the block; a line that begins with "recordkit " is run and
# must end with 0. So must the commands in the tables of docs/peers.md, in which each row names a test.
# Each page starts in a folder of its own with samples: event records, images of a
# board, a processor and two memory modules, EEPROM images, the root of a machine whose board 1 has
# events, and everything saved from a server.
set -eu
action=$1
source=$(cd "$2" && pwd)
command=$3
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
mkdir "$scratch/bin"
ln -s "$command" "$scratch/bin/recordkit"
PATH=$scratch/bin:$PATH
export PATH LC_ALL=C.UTF-8 TZ=UTC

prepare() {
    rm -rf "$scratch/page"
    mkdir "$scratch/page"
    cd "$scratch/page"
    local data=$source/examples/data
    cp "$data/sel/events.raw" "$data/sdr/repository.sdr" .
    cp "$data/cpu/sample.bin" rom.bin
    cp "$data/spd/dimm.bin" dimm0.bin
    cp "$data/spd/dimm.bin" dimm1.bin
    cp "$data/fru/ascii-all.bin" board.bin
    cp board.bin bench.bin
    recordkit fru resize bench.bin --size 256
    recordkit fru export board.bin >board.json
    echo '{"board": {"mfg": "Example Works", "serial": "SN4711", "date": "1/10/2017 12:58:00"}}' >frugen.json
    cp board.bin damaged.bin
    printf '\0' | dd of=damaged.bin bs=1 seek=7 conv=notrunc status=none
    mkdir fleet
    cp "$data"/fru/{ascii-all,example-json,mixed-encodings}.bin fleet
    head -c 100 "$data/fru/ascii-all.bin" >fleet/cut-off.bin
    recordkit --root board sel init
    recordkit --root board sel add events.raw --board 1 --partitions 0,2
    recordkit --root board sel backup --board 1
    # A rotation that was cut off before its first rename, and a restart later than the last backup.
    recordkit --root crashed sel init
    recordkit --root crashed sel clear --board 1 --yes
    rm crashed/var/tav/fmem/ipmi/sb1_bmc_sel[1-7]
    cp board/tmp/sb1_bmc_sel0 crashed/var/tav/fmem/ipmi/
    recordkit --root crashed sel add events.raw --board 2
    recordkit --root crashed sel backup --board 2
    rm crashed/tmp/sb2_bmc_sel0
    recordkit eeprom create board
    recordkit eeprom efi init --serial SN4711 --images board
    cp -r "$source/examples/board" server
} >/dev/null

# The page, with the current output of its commands.
render() {
    local state=text line output
    while IFS= read -r line; do
        case "$line" in
        "    \$ "*)
            printf '%s\n' "$line"
            output=$(eval "${line#    \$ }" 2>&1) || true
            [ -z "$output" ] || printf '%s\n' "$output" | sed -e "s,$scratch/page,/srv,g" -e 's/^/    /' -e 's/ *$//'
            state=output
            ;;
        "    recordkit "*)
            (eval "${line#    }" >/dev/null) || echo "docs: $1: failed: ${line#    }" >&2
            printf '%s\n' "$line"
            state=text
            ;;
        "    "*)
            [ $state = output ] || printf '%s\n' "$line"
            ;;
        *)
            state=text
            printf '%s\n' "$line"
            case "$1: $line" in "docs/peers.md: | "*\`*) peers_row "$line" ;; esac
            ;;
        esac
    done <"$source/$1"
}

# A row of docs/peers.md: its commands, and that it names a test.
peers_row() {
    local cell output
    printf '%s\n' "$1" | grep -oE '`(recordkit|ipmi-fru) [^`]*`' | tr -d '`' | while IFS= read -r cell; do
        command -v "${cell%% *}" >/dev/null || continue
        output=$(eval "$cell" 2>&1) && [ -n "$output" ] ||
            echo "docs: docs/peers.md: failed: $cell" >&2
    done
    printf '%s\n' "$1" | grep -qE '`[A-Z][A-Za-z]*[.][A-Z][A-Za-z0-9]*` \|$|`[A-Z][A-Za-z]*[.][A-Z][A-Za-z0-9]*`, ' ||
        echo "docs: docs/peers.md: a row without a test: $1" >&2
}

# The picture of the README is that of a report; the report's own tests compare it.
if [ "$action" = write ] && [ -d "$source/report/node_modules" ]; then
    (cd "$source/report" && REPORT_TEMPLATE=$(dirname "$command")/../report/page.html \
        REPORT_COMMAND=$command npm run --silent screenshots >"$scratch/pictures") || {
        cat "$scratch/pictures" >&2
        exit 1
    }
fi

status=0
cd "$source"
# Tests that a page names must be there.
grep -oh '`[A-Z][A-Za-z]*[.][A-Z][A-Za-z0-9]*`' docs/*.md | tr -d '`' | grep -v '[.]md$' | sort -u |
    while IFS=. read -r suite name; do
        grep -rqE "TEST(_[FP])?\($suite, $name\)|TYPED_TEST\($suite, $name\)" tests ||
            echo "docs: there is no test $suite.$name"
    done >"$scratch/unknown"
if [ -s "$scratch/unknown" ]; then
    cat "$scratch/unknown" >&2
    status=1
fi
for page in README.md docs/*.md docs/tasks/*.md; do
    prepare
    render "$page" >"$scratch/rendered" 2>"$scratch/failures"
    if [ -s "$scratch/failures" ]; then
        cat "$scratch/failures" >&2
        status=1
    fi
    if [ "$action" = write ]; then
        cp "$scratch/rendered" "$source/$page"
    else
        diff -u --label "$page" --label "what is printed" "$source/$page" "$scratch/rendered" || status=1
    fi
    cd "$source"
done
exit $status
