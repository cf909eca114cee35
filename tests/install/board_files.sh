#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# The files of packaging/board/: systemd accepts them, and the commands of the service do at start and
# stop what they are for.
#
#   board_files.sh SOURCE-FOLDER COMMAND
set -eu
source=$1
command=$2
board=$source/packaging/board
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
root=$scratch/root

fail() {
    echo "board_files: $*" >&2
    exit 1
}

# Units, with a daemon that stores events as recordkit-log.target tells it to.
units=$scratch/units
mkdir "$units"
cp "$board/recordkit-log.target" "$units"
sed "s,/usr/bin/recordkit,$command," "$board/recordkit-log.service" >"$units/recordkit-log.service"
{
    sed -n 's/^#   //p' "$board/recordkit-log.target"
    echo "ExecStart=/bin/true"
} >"$units/stores-events.service"
mkdir "$units/recordkit-log.target.requires"
ln -s ../recordkit-log.service "$units/recordkit-log.target.requires/"
verify() {
    SYSTEMD_UNIT_PATH=$units: systemd-analyze verify --man=no "$@" >"$scratch/verify" 2>&1 &&
        ! grep -F "$units" "$scratch/verify"
}
verify "$units"/*.service "$units/recordkit-log.target" || fail "$(cat "$scratch/verify")"
# What is wrong there is found: an unknown key, and an order that has no beginning.
sed 's/^RemainAfterExit/RemainAfter/' "$units/recordkit-log.service" >"$units/wrong.service"
! verify "$units/wrong.service" >"$scratch/found" || fail "systemd accepts any key"
rm "$units/wrong.service"
sed 's/^Before=/After=stores-events.service\nBefore=/' "$units/recordkit-log.service" >"$scratch/cycle"
mv "$scratch/cycle" "$units/recordkit-log.service"
SYSTEMD_UNIT_PATH=$units: systemd-analyze verify --man=no "$units/stores-events.service" >"$scratch/verify" 2>&1 || true
grep -qi 'cycle' "$scratch/verify" || fail "the daemon does not start after the service"

# Folders.
mkdir -p "$root/tmp" "$root/var/tmp" "$scratch/tmpfiles"
cp "$board/tmpfiles.conf" "$scratch/tmpfiles/recordkit.conf"
systemd-tmpfiles --create --root="$root" "$scratch/tmpfiles/recordkit.conf" || fail "systemd-tmpfiles"
for folder in var/tav/fmem/ipmi etc/default/config etc/tav/common; do
    [ "$(stat -c %a "$root/$folder")" = 755 ] || fail "$folder"
done
# Old files of the library stay in /tmp, others go.
mkdir -p "$scratch/age/tmp" "$scratch/age/var/tmp" "$scratch/age/etc"
touch -d '2020-01-01' "$scratch/age/tmp/other"
for file in $(sed -n 's/^x //p' "$board/tmpfiles.conf" | sed 's/\*_bmc_\*/0_bmc_sel0/'); do
    touch -d '2020-01-01' "$scratch/age$file"
done
{
    cat "$board/tmpfiles.conf"
    echo "q /tmp 1777 - - am:10d"
    echo "q /var/tmp 1777 - - am:10d"
} >"$scratch/tmpfiles/all.conf"
systemd-tmpfiles --clean --root="$scratch/age" "$scratch/tmpfiles/all.conf" || fail "systemd-tmpfiles --clean"
[ ! -e "$scratch/age/tmp/other" ] || fail "nothing is cleaned"
for file in tmp/sb0_bmc_sel0 tmp/psumode var/tmp/shift_sel_sync; do
    [ -e "$scratch/age/$file" ] || fail "$file was cleaned away"
done

# The kernel knows each setting.
sed -n 's/^\([a-z_.]*\) = .*/\1/p' "$board/sysctl.conf" >"$scratch/settings"
[ "$(wc -l <"$scratch/settings")" = 4 ] || fail "sysctl.conf"
tr . / <"$scratch/settings" | while read -r setting; do
    [ -e "/proc/sys/$setting" ] || fail "the kernel has no $setting"
done

# The service's commands, below a root.
# when KEY: runs what the service has for it; a command after a minus may fail.
when() {
    sed -n "s|^$1=\(-*\)/usr/bin/recordkit |\1 |p" "$board/recordkit-log.service" >"$scratch/lines"
    [ -s "$scratch/lines" ] || fail "the service has no $1"
    while read -r line; do
        # shellcheck disable=SC2086
        "$command" --root "$root" ${line#- } >"$scratch/log" 2>&1 || [ "${line#-}" != "$line" ] ||
            fail "$1, $line: $(cat "$scratch/log")"
    done <"$scratch/lines"
}
# An installation that never ran, a start after which events are stored, a stop.
when ExecStart
"$command" --root "$root" sel add "$source/examples/data/sel/events.raw" --board 1 \
    >"$scratch/log" 2>&1 || fail "sel add: $(cat "$scratch/log")"
stored() {
    "$command" --root "$root" sel list --board 1 --ndjson 2>/dev/null | wc -l
}
events=$(stored)
[ "$events" != 0 ] || fail "no event is stored"
when ExecStop
# What a restart leaves of a volatile folder.
rm -f "$root"/tmp/*
when ExecStart
[ "$(stored)" = "$events" ] || fail "$(stored) of $events events after a restart"
# A power cut in a rotation: the events are in the backup, the working file is empty.
when ExecStop
size=$(stat -c %s "$root/tmp/sb1_bmc_sel0")
head -c "$size" /dev/zero | tr '\0' '\377' >"$root/tmp/sb1_bmc_sel0"
when ExecStart
"$command" --root "$root" sel check --board 1 >/dev/null || fail "the log is not sound after the repair"
[ "$(stored)" = "$events" ] || fail "$(stored) of $events events after a power cut"
echo "board_files: accepted by systemd, and $events events are there after each restart"
