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
    serial) echo "serial platform" ;;
    hardware | version | sel | sensor | fru | eeprom) echo "$1 serial platform" ;;
    selfile) echo "selfile sel serial platform" ;;
    util) echo "util fru serial platform" ;;
    host) echo "host platform" ;;
    *) echo "" ;;
    esac
}

wrong=0
for folder in recordkit/*/; do
    name=$(basename "$folder")
    for used in $(sed -n 's|^#include <recordkit/\([a-z]*\)/.*|\1|p' "$folder"* | sort -u); do
        case " $(allowed "$name") " in
        *" $used "*) ;;
        *)
            echo "recordkit/$name includes recordkit/$used:"
            grep -n "#include <recordkit/$used/" "$folder"*
            wrong=1
            ;;
        esac
    done
    if grep -n '#include "\.\./' "$folder"*; then
        echo "recordkit/$name includes by a path that leaves it"
        wrong=1
    fi
done
if grep -rn '#include [<"]tool/' recordkit; then
    echo "the library includes the command"
    wrong=1
fi

for file in $(find .ci cmake recordkit tool tests bench fuzz examples docs dev CMakeLists.txt README.md \
    -type f ! -path 'examples/data/*' ! -path 'examples/board/*' \
    ! -path 'fuzz/corpus/*'); do
    if ! head -n 3 "$file" | grep -q 'SPDX-License-Identifier: Apache-2.0'; then
        echo "$file: no SPDX line"
        wrong=1
    fi
done
exit $wrong
