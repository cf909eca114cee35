#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Whether docs/records.md is what the field tables say.
#
#   records.sh SOURCE-FOLDER RECORDS-PROGRAM
set -eu
page=$(mktemp)
trap 'rm -f "$page"' EXIT
"$2" page "$page"
diff -u --label docs/records.md --label "the field tables" "$1/docs/records.md" "$page" || {
    echo "docs/records.md is not what the field tables say: recordkit-records page docs/records.md"
    exit 1
}
