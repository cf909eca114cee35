#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# An event's whole road in a scratch root: stored, rotated, recovered, backed up, restored, listed.
#
#   demo.sh BUILD-FOLDER SCRATCH-FOLDER
set -eu
build=$1
scratch=$2
examples=$(dirname "$0")
root=$(pwd)/$scratch/root
recordkit="$build/tool/recordkit"
events="$examples/data/sel/events.raw"

step() {
    printf '\n--- %s\n' "$*"
}

show() {
    printf '$ recordkit %s\n' "$*"
    "$recordkit" --root "$root" --boards 2 "$@"
}

# At which step the first file of the chain is renamed, found by a rotation in a copy of the root.
first_rename() {
    rm -rf "$scratch/rehearsal"
    cp -r "$root" "$scratch/rehearsal"
    "$build/tests/rotation_victim" "$(pwd)/$scratch/rehearsal" 1 0 |
        awk '$2 == "copy" { copied = 1 } copied && $2 == "rename" { print $1; exit }'
}

rm -rf "$scratch"
mkdir -p "$root"

step "Two boards get their folders and empty event logs."
show sel init

step "166 events that ipmitool saved are stored on each board."
show sel add "$events" --board 0
show sel add "$events" --board 1 --partitions 0,2 --part-number PN-4711 --serial-number SN-0815

step "Board 1 takes events on and on; its file of 800 fills up and is rotated."
for round in 1 2 3 4; do
    show sel add "$events" --board 1 --renumber --rotate
done
show sel status

step "The next rotation of board 1 is killed halfway, as by a power cut."
if "$build/tests/rotation_victim" "$root" 1 "$(first_rename)" 2>/dev/null; then
    echo "the rotation was not killed" >&2
    exit 1
fi
echo "(killed before the first file of the chain was renamed)"

step "What the administrator is told: the working file is empty, its events are in the backup."
show sel check --board 1 || echo "(exit status $?)"

step "Recovery finishes the rotation; nothing is lost."
show sel check --board 1 --recover

step "New events come in and are backed up; then the volatile folder is wiped, as by a restart."
show sel add "$events" --board 1 --renumber
show sel backup --board 1
show sel backup --board 0
rm -rf "$root/tmp"
show sel init
show sel status

step "The oldest event of board 1, field by field."
show sel show --board 1 --log 1 | head -n 18

step "What is critical or worse on all boards: the last ten."
show sel list --board all --severity critical --last 10

step "Why a thermal trip is what it is."
show severity 0x6F processor 1

step "A FRU image: shown, edited, and what else changed: nothing."
cp "$examples/data/fru/ascii-all.bin" "$scratch/board.bin"
show fru show "$scratch/board.bin" | head -n 14
show fru set "$scratch/board.bin" board.serial=SN-4711
show fru verify "$scratch/board.bin"

step "A week of a server: what is still wrong at its end."
echo "$ recordkit --root $examples/board --boards 2 sel list --board all --still-asserted"
"$recordkit" --root "$examples/board" --boards 2 sel list --board all --still-asserted

step "Everything saved from that server as one page; open it in a browser."
echo "$ recordkit report $examples/board -o $scratch/report.html"
"$recordkit" report "$examples/board" -o "$scratch/report.html"

step "A processor's information ROM."
echo "$ recordkit --root $examples/board cpu $examples/data/cpu/sample.bin"
"$recordkit" --root "$examples/board" cpu "$examples/data/cpu/sample.bin" | head -n 8
