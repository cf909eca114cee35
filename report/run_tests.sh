#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Runs the tests of the report page, with the page and the command of a build.
#
#   run_tests.sh BUILD-FOLDER
set -eu
build=$(cd "$1" && pwd)
cd "$(dirname "$0")"
./install.sh
REPORT_TEMPLATE=$build/report/page.html REPORT_COMMAND=$build/tool/recordkit npm test
