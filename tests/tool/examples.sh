#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# The example programs do what they say.
#
#   examples.sh EXAMPLES-FOLDER [EMULATOR...]
set -eu
examples=$1
shift
root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
mkdir -p "$root/tmp" "$root/var/tmp" "$root/var/tav/fmem/ipmi"
record=0100020cb62967200004
[ "$("$@" "$examples/classify_event")" = "0100020000000020000407606f01ffff severity 3" ]
[ "$("$@" "$examples/store_event" "$root")" = stored ]
[ "$("$@" "$examples/store_event" "$root")" = stored ]
"$@" "$examples/list_events" "$root" >"$root/listing"
diff "$root/listing" - <<LISTING
2 ${record}07606f01ffff
1 ${record}07606f01ffff
LISTING
# A restart of a daemon keeps what was stored after the backup; an empty folder is filled from it.
mkdir -p "$root/boot/tmp" "$root/boot/var/tmp" "$root/boot/var/tav/fmem/ipmi"
ready="board 0: ready
board 1: ready
board 2: ready
board 3: ready"
[ "$("$@" "$examples/start_board" "$root/boot")" = "$ready" ]
[ "$("$@" "$examples/store_event" "$root/boot")" = stored ]
cp "$root/boot/tmp/sb0_bmc_sel0" "$root/boot/var/tav/fmem/ipmi/sb0_bmc_sel0"
[ "$("$@" "$examples/store_event" "$root/boot")" = stored ]
[ "$("$@" "$examples/start_board" "$root/boot")" = "$ready" ]
[ "$("$@" "$examples/list_events" "$root/boot" | wc -l)" = 2 ]
rm "$root"/boot/tmp/*
[ "$("$@" "$examples/start_board" "$root/boot")" = "$ready" ]
[ "$("$@" "$examples/list_events" "$root/boot" | wc -l)" = 1 ]
# A timer that looks for requests rotates once for each; an answer left there is not a request.
rotate() {
    "$@" "$examples/rotate_on_request" "$root/boot" "$what" 2>/dev/null || true
}
for step in "poll=nobody asked" "take=no answer yet" "ask=" "take=no answer yet" "poll=rotated: 0" \
    "poll=nobody asked" "ask=" "poll=nobody asked" "take=answer: 0" "take=no answer yet" \
    "poll=nobody asked"; do
    what=${step%%=*}
    [ "$(rotate "$@")" = "${step#*=}" ] || { echo "examples: $step" >&2; exit 1; }
done
[ -e "$root/boot/var/tav/fmem/ipmi/sb0_bmc_sel1" ]
[ ! -e "$root/boot/var/tav/fmem/ipmi/sb0_bmc_sel2" ]
[ "$("$@" "$examples/list_events" "$root/boot" | wc -l)" = 1 ]
[ "$("$@" "$examples/store_event" "$root/boot")" = stored ]
# A record with id FFFFh: nothing is stored after it.
printf '\377\377\377\377\002' | dd of="$root/boot/tmp/sb0_bmc_sel0" bs=138 seek=1 conv=notrunc 2>/dev/null
[ "$("$@" "$examples/store_event" "$root/boot" 2>"$root/why")" = "not stored" ]
grep -qx "the log takes no event: code 3; see recordkit sel check" "$root/why"
cp "$(dirname "$0")/../../examples/data/fru/ascii-all.bin" "$root/fru.bin"
[ "$("$@" "$examples/read_fru" "$root/fru.bin")" = SBS00998877 ]
[ "$("$@" "$examples/read_fru" "$root/fru.bin" SN-4711)" = SN-4711 ]
[ "$("$@" "$examples/read_fru" "$root/fru.bin")" = SN-4711 ]
! "$@" "$examples/read_fru" "$root/fru.bin" X 2>/dev/null
! "$@" "$examples/read_fru" "$root/fru.bin" "$(printf '%064d' 0)" 2>/dev/null
[ "$("$@" "$examples/read_fru" "$root/fru.bin")" = SN-4711 ]
[ "$("$@" "$examples/edit_fru" "$root/fru.bin" board.serial=SN-4712)" = "SN-4711 -> SN-4712" ]
[ "$("$@" "$examples/read_fru" "$root/fru.bin")" = SN-4712 ]
! "$@" "$examples/edit_fru" "$root/fru.bin" board.colour=red 2>/dev/null
"$@" "$examples/list_sensors" "$(dirname "$0")/../../examples/data/sdr/repository.sdr" >"$root/sensors"
grep -qx "60h CPU1 Status      Processor " "$root/sensors" || { cat "$root/sensors"; exit 1; }
"$@" "$examples/show_events" "$(dirname "$0")/../../examples/data/sel/events.raw" >"$root/events"
[ "$(sed -n 2p "$root/events")" = "0002h System Firmware Hang" ]
