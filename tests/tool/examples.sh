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
cp "$(dirname "$0")/../../examples/data/fru/ascii-all.bin" "$root/fru.bin"
[ "$("$@" "$examples/read_fru" "$root/fru.bin")" = SBS00998877 ]
[ "$("$@" "$examples/read_fru" "$root/fru.bin" SN-4711)" = SN-4711 ]
[ "$("$@" "$examples/read_fru" "$root/fru.bin")" = SN-4711 ]
[ "$("$@" "$examples/edit_fru" "$root/fru.bin" board.serial=SN-4712)" = "SN-4711 -> SN-4712" ]
[ "$("$@" "$examples/read_fru" "$root/fru.bin")" = SN-4712 ]
! "$@" "$examples/edit_fru" "$root/fru.bin" board.colour=red 2>/dev/null
"$@" "$examples/list_sensors" "$(dirname "$0")/../../examples/data/sdr/repository.sdr" >"$root/sensors"
grep -qx "60h CPU1 Status      Processor " "$root/sensors" || { cat "$root/sensors"; exit 1; }
"$@" "$examples/show_events" "$(dirname "$0")/../../examples/data/sel/events.raw" >"$root/events"
[ "$(sed -n 2p "$root/events")" = "0002h System Firmware Hang" ]
