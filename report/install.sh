#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Installs what the tests of the page need, unless it is there.
set -eu
cd "$(dirname "$0")"
# npm writes this file last.
installed=node_modules/.package-lock.json
if [ ! -e $installed ] || [ -n "$(find package-lock.json -newer $installed)" ]; then
    npm ci --ignore-scripts --no-audit --no-fund
fi
