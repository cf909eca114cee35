# SPDX-License-Identifier: Apache-2.0
# The options of the build, and the compiler settings that every target shares.

set(RECORDKIT_PLATFORM host CACHE STRING
    "host: build the sibling libraries for a Linux host; external: leave their symbols undefined")
set_property(CACHE RECORDKIT_PLATFORM PROPERTY STRINGS host external)
if(NOT RECORDKIT_PLATFORM MATCHES "^(host|external)$")
    message(FATAL_ERROR "RECORDKIT_PLATFORM is \"${RECORDKIT_PLATFORM}\", expected host or external")
endif()

set(RECORDKIT_SANITIZE "" CACHE STRING "sanitizers to compile in, as for -fsanitize")
set(RECORDKIT_PUBLIC_DATA ${PROJECT_SOURCE_DIR}/../shared/data/public CACHE PATH
    "public sample data that some tests compare with; those are skipped where it is not")
# Tests are built where this is the project that was asked for, unless BUILD_TESTING says otherwise.
option(BUILD_TESTING "build the tests of projects that are asked for" ON)
if(BUILD_TESTING AND PROJECT_IS_TOP_LEVEL)
    set(RECORDKIT_TESTS_BY_DEFAULT ON)
else()
    set(RECORDKIT_TESTS_BY_DEFAULT OFF)
endif()
option(RECORDKIT_BUILD_TESTS "build the tests" ${RECORDKIT_TESTS_BY_DEFAULT})
option(RECORDKIT_BUILD_BENCH "build the benchmarks" OFF)
option(RECORDKIT_COVERAGE "count which lines and branches run" OFF)
option(RECORDKIT_BUILD_FUZZ "build the fuzz targets; needs clang" OFF)

if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "build type" FORCE)
endif()

add_library(recordkit_options INTERFACE)
target_compile_features(recordkit_options INTERFACE cxx_std_17)
target_include_directories(recordkit_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(recordkit_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Woverloaded-virtual -Werror)
# Builds of one commit produce the same bytes wherever they are made.
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)
if(RECORDKIT_COVERAGE)
    target_compile_options(recordkit_options INTERFACE --coverage -fprofile-abs-path)
    target_link_options(recordkit_options INTERFACE --coverage)
else()
    target_compile_options(recordkit_options INTERFACE
        -ffile-prefix-map=${CMAKE_BINARY_DIR}=build -ffile-prefix-map=${PROJECT_SOURCE_DIR}=.)
endif()
# Hardening; tests/install/hardening.sh verifies it in the built binaries.
target_compile_options(recordkit_options INTERFACE -fstack-protector-strong)
target_link_options(recordkit_options INTERFACE LINKER:-z,relro,-z,now)
if(RECORDKIT_SANITIZE)
    target_compile_options(recordkit_options INTERFACE
        -fsanitize=${RECORDKIT_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(recordkit_options INTERFACE -fsanitize=${RECORDKIT_SANITIZE})
endif()
if(NOT RECORDKIT_SANITIZE AND NOT CMAKE_BUILD_TYPE STREQUAL "Debug")
    # Undefine first: some compilers predefine it.
    target_compile_options(recordkit_options INTERFACE -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
endif()
if(RECORDKIT_BUILD_FUZZ)
    target_compile_options(recordkit_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
if(CMAKE_SYSTEM_PROCESSOR STREQUAL "powerpc")
    # Overrides -fPIC: 16-bit offsets into the offset table are enough for these libraries.
    target_compile_options(recordkit_options INTERFACE -fpic)
endif()
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)

# Hides the symbols that a library must not export.
set(RECORDKIT_LOCAL_SYMBOLS LINKER:--version-script=${PROJECT_SOURCE_DIR}/cmake/local.map)

# A clang library leaves the sanitizers' symbols to the program, so it cannot be closed.
set(RECORDKIT_NO_UNDEFINED -Wl,--no-undefined)
if(RECORDKIT_SANITIZE AND CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    set(RECORDKIT_NO_UNDEFINED "")
endif()
