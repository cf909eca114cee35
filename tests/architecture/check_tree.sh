#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# The order of the folders and the licence lines.
#
#   check_tree.sh SOURCE-FOLDER
set -eu
cd "$1"

# Folders below recordkit/ that a folder may include from.
allowed() {
    case "$1" in
    platform) echo "platform" ;;
    posix) echo "posix" ;;
    serial) echo "serial platform" ;;
    hardware | version | sel | fru) echo "$1 serial platform" ;;
    sensor | eeprom) echo "$1 serial platform posix" ;;
    selfile) echo "selfile sel serial platform posix" ;;
    util) echo "util fru serial platform" ;;
    host) echo "host platform posix" ;;
    inspect) echo "inspect serial hardware version sel selfile fru util sensor eeprom platform posix" ;;
    *) echo "" ;;
    esac
}

# Rooms of recordkit/inspect that a room may include from.
allowed_rooms() {
    case "$1" in
    bytes) echo "bytes" ;;
    words) echo "words bytes" ;;
    fields) echo "fields words bytes" ;;
    event | fru | sensor | memory | eeprom) echo "$1 fields words bytes" ;;
    log) echo "log event words bytes" ;;
    report) echo "report log event fru sensor memory eeprom fields words bytes" ;;
    *) echo "" ;;
    esac
}

wrong=0
# check WHERE FILES ALLOWED PREFIX: includes below PREFIX come from a folder that ALLOWED names.
check() {
    # shellcheck disable=SC2086
    for used in $(sed -n "s|^#include <$4/\([a-z]*\)/.*|\1|p" $2 | sort -u); do
        case " $3 " in
        *" $used "*) ;;
        *)
            echo "$1 includes $4/$used:"
            # shellcheck disable=SC2086
            grep -n "#include <$4/$used/" $2
            wrong=1
            ;;
        esac
    done
    # shellcheck disable=SC2086
    if grep -n '#include "\.\./' $2; then
        echo "$1 includes by a path that leaves it"
        wrong=1
    fi
}
for folder in recordkit/*/; do
    name=$(basename "$folder")
    check "recordkit/$name" "$(find "$folder" -name '*.h' -o -name '*.cpp')" "$(allowed "$name")" recordkit
done
for folder in recordkit/inspect/*/; do
    name=$(basename "$folder")
    check "recordkit/inspect/$name" "$(find "$folder" -type f)" "$(allowed_rooms "$name")" recordkit/inspect
done
# Rows with function objects would be built at every start of a program.
if grep -rn 'std::function' recordkit/inspect; then
    echo "recordkit/inspect: tables are constexpr rows with function pointers"
    wrong=1
fi
# What a layer must not know: its users, a command line, JSON, a terminal, streams of the C library.
if grep -rnE 'CLI/|nlohmann|isatty|\\033|std::FILE|<cstdio>|<iostream>' recordkit/inspect; then
    echo "recordkit/inspect knows what only the command may know"
    wrong=1
fi
# What belongs to one folder of the command.
# only FOLDER PATTERN WHAT
only() {
    if grep -rnE "$2" tool | grep -v "^$1"; then
        echo "$3 belongs to $1 only"
        wrong=1
    fi
}
only tool/print/ '\\033|isatty|std::FILE' "writing to a terminal"
only tool/print/ 'nlohmann' "the JSON library"
only tool/cli/ 'CLI/|CLI::' "parsing of the command line"
# Floors of the command: print and cli serve the sub-commands, and cli uses print.
if grep -nE '#include "(\.\./)?(cli|sel|fru|sdr|spd|eeprom|cpu|node|severity|decode)/' tool/print/* ||
    grep -nE '#include "\.\./(sel|fru|sdr|spd|eeprom|cpu|node|severity|decode|report)/' tool/cli/* ||
    grep -nE '#include "\.\./Commands.h"' tool/cli/* tool/print/*; then
    echo "tool/print and tool/cli do not know the sub-commands"
    wrong=1
fi
if grep -rn '#include [<"]tool/' recordkit; then
    echo "the library includes the command"
    wrong=1
fi

for file in $(find .ci cmake recordkit tool report tests bench fuzz examples docs dev CMakeLists.txt README.md \
    -type f ! -path 'examples/data/*' ! -path 'examples/board/*' ! -path 'fuzz/corpus/*' \
    ! -path 'report/node_modules/*' ! -path 'report/out/*' ! -name 'package*.json' ! -name d3-license.txt \
    ! -name '*.png'); do
    if ! head -n 3 "$file" | grep -q 'SPDX-License-Identifier: Apache-2.0'; then
        echo "$file: no SPDX line"
        wrong=1
    fi
done
exit $wrong
