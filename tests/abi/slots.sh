#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Compares the order of virtual operations, as the compiler lays it out, with slots.txt.
#
#   slots.sh SOURCE-FOLDER CXX
set -eu
source=$1
cxx=$2
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

cat >"$scratch/all.cpp" <<'TEXT'
#include <recordkit/eeprom/PanelEEPROMIndex.h>
#include <recordkit/hardware/BMC_BootFlagsClearData.h>
#include <recordkit/hardware/BootFlagsData.h>
#include <recordkit/hardware/EventFilterTable.h>
#include <recordkit/hardware/GSPBBoardInfo.h>
#include <recordkit/hardware/IOUBoardInfo.h>
#include <recordkit/hardware/PCIBOXInfo.h>
#include <recordkit/hardware/SASUBoardInfo.h>
#include <recordkit/hardware/SBBoardInfo.h>
#include <recordkit/host/FileEEPROMRWif.h>
#include <recordkit/host/FileFRURWif.h>
#include <recordkit/sel/BMCLog.h>
#include <recordkit/sel/BMCMemoryImage.h>
#include <recordkit/sel/BMCSELEntryMessage.h>
#include <recordkit/sel/SELEntryLongText.h>
#include <recordkit/sensor/CompactSensorRecord.h>
#include <recordkit/sensor/FullSensorRecord.h>
#include <recordkit/serial/PartitionInfo.h>
#include <recordkit/version/GSWBVersion.h>
TEXT
(cd "$scratch" && "$cxx" -std=c++17 -I"$source" -fdump-lang-class -fsyntax-only all.cpp)

# Lines as in slots.txt: a table starts after each typeinfo entry.
cat "$scratch"/*.class | sed 's/ (int ([*])([.][.][.]))/ /' | awk '
    function flush() { if (slots != "") print class ":" slots; slots = ""; inTable = 0 }
    /^Vtable for / { flush(); class = $3; next }
    NF == 0 { flush(); class = ""; next }
    class == "" || !/^[0-9]/ { next }
    /& _ZTI/ { flush(); inTable = 1; next }
    / -[0-9]+$/ || (/ 0$/ && !inTable) { next } # the offset of a table
    / 0$/ { if (slots !~ / ~$/) slots = slots " ~"; next } # the destructor of an abstract class
    /__cxa_pure_virtual/ { slots = slots " pure"; next }
    /~|_ZThn[0-9]*_.*D[01]Ev$/ { if (slots !~ / ~$/) slots = slots " ~"; next }
    /_ZThn/ { name = $2; sub(/E[A-Za-z]*$/, "", name); sub(/.*[0-9]/, "", name)
              slots = slots " " name; next }
    { name = $2; sub(/.*::/, "", name); slots = slots " " name }
    END { flush() }' | LC_ALL=C sort >"$scratch/all"

grep -v '^#' "$source/tests/abi/slots.txt" | LC_ALL=C sort >"$scratch/expected"
awk -F': ' 'NR == FNR { wanted[$1] = 1; next } $1 in wanted' "$scratch/expected" "$scratch/all" \
    >"$scratch/actual"
diff -u "$scratch/expected" "$scratch/actual" || {
    echo "slots: virtual operations are not where callers call them" >&2
    exit 1
}
echo "slots: $(wc -l <"$scratch/actual") tables are in order"
