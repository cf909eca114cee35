#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Builds those tests of the library and of inspect that need nothing hidden again, with the installed
# headers and libraries in place of the source's, and runs them.
#
#   tests_by_installed_headers.sh SOURCE-FOLDER BUILD
set -eu
source=$(cd "$1" && pwd)
build=$(cd "$2" && pwd)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

cmake --install "$build" --prefix "$scratch/prefix" >"$scratch/log"
# The support of the tests, and the tests themselves, without the headers beside them.
mkdir "$scratch/tests"
for folder in support serial sel fru hardware sensor version eeprom selfile util inspect; do
    cp -r "$source/tests/$folder" "$scratch/tests/"
done
# Without those that include a header that is not installed, and those that start programs of a build.
grep -rhoE '^#include [<"]recordkit/[^">]*' "$scratch/tests" | sort -u | while read -r include; do
    [ -f "$scratch/prefix/include/${include#*[<\"]}" ] || grep -rlF "$include" "$scratch/tests" | xargs rm -f
done
grep -lE 'VICTIM|ourCommand|AllocationCount' -r "$scratch/tests" | xargs rm -f
grep -lE '"(support/)?(Answers|Process)[.]h"' -r "$scratch/tests" | xargs rm -f
rm -f "$scratch"/tests/support/Process.* "$scratch"/tests/*/rotation_victim.cpp \
    "$scratch"/tests/hardware/Allocation* "$scratch"/tests/inspect/fields/NewClass_test.cpp
cat >"$scratch/CMakeLists.txt" <<'TEXT'
cmake_minimum_required(VERSION 3.22)
project(tests_by_installed_headers LANGUAGES CXX)
find_package(recordkit CONFIG REQUIRED COMPONENTS inspect)
find_package(GTest REQUIRED)
file(GLOB_RECURSE sources tests/*.cpp)
add_executable(all_tests ${sources})
target_include_directories(all_tests PRIVATE tests)
target_compile_definitions(all_tests PRIVATE RECORDKIT_SOURCE="${SOURCE}"
    FMT_HEADER_ONLY=1 RECORDKIT_EXAMPLE_DATA="${SOURCE}/examples/data"
    RECORDKIT_PUBLIC_DATA="${SOURCE}/../shared/data/public")
target_link_libraries(all_tests PRIVATE recordkit::inspect recordkit::host GTest::gtest_main)
TEXT
cmake -S "$scratch" -B "$scratch/build" -G Ninja -DCMAKE_PREFIX_PATH="$scratch/prefix" \
    -DCMAKE_BUILD_TYPE=Debug -DSOURCE="$source" >>"$scratch/log"
cmake --build "$scratch/build" >>"$scratch/log" || {
    tail -n 40 "$scratch/log" >&2
    exit 1
}
"$scratch/build/all_tests" --gtest_brief=1
