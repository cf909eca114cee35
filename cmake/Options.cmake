# SPDX-License-Identifier: Apache-2.0
# The options of the build, and the compiler settings that every target shares.

set(RECORDKIT_PLATFORM host CACHE STRING
    "host: build the sibling libraries for a Linux host; external: leave their symbols undefined")
set_property(CACHE RECORDKIT_PLATFORM PROPERTY STRINGS host external)
if(NOT RECORDKIT_PLATFORM MATCHES "^(host|external)$")
    message(FATAL_ERROR "RECORDKIT_PLATFORM is \"${RECORDKIT_PLATFORM}\", expected host or external")
endif()

# As part of another project, its own choice of libraries and build type stays what it is.
if(PROJECT_IS_TOP_LEVEL)
    option(BUILD_SHARED_LIBS "build shared libraries; OFF: static ones" ON)
elseif(NOT DEFINED BUILD_SHARED_LIBS)
    set(BUILD_SHARED_LIBS ON)
endif()
option(RECORDKIT_WARNINGS_AS_ERRORS "a warning of the compiler ends the build" OFF)
option(RECORDKIT_HARDENING "add protections that the builder's own flags do not mention" ON)
option(RECORDKIT_RELOCATABLE_PC "pkg-config files name folders relative to themselves" ON)
option(RECORDKIT_MANUALS "install manual pages, and the completion of the command" ON)
option(RECORDKIT_COMMAND "build the command; only with RECORDKIT_PLATFORM=host" ON)
set(RECORDKIT_SANITIZE "" CACHE STRING "sanitizers to compile in, as for -fsanitize")
set(RECORDKIT_PUBLIC_DATA ${PROJECT_SOURCE_DIR}/../shared/data/public CACHE PATH
    "public sample data that some tests compare with; those are skipped where it is not")

# Programs of a cross build run only in an emulator that the builder names.
if(CMAKE_CROSSCOMPILING AND NOT CMAKE_CROSSCOMPILING_EMULATOR)
    set(RECORDKIT_PROGRAMS_RUN OFF)
else()
    set(RECORDKIT_PROGRAMS_RUN ON)
endif()

# Tests are built where this is the project that was asked for, unless BUILD_TESTING says otherwise.
option(BUILD_TESTING "build the tests of projects that are asked for" ON)
if(BUILD_TESTING AND PROJECT_IS_TOP_LEVEL AND RECORDKIT_COMMAND AND RECORDKIT_MANUALS
        AND RECORDKIT_PROGRAMS_RUN)
    set(RECORDKIT_TESTS_BY_DEFAULT ON)
else()
    set(RECORDKIT_TESTS_BY_DEFAULT OFF)
endif()
option(RECORDKIT_BUILD_TESTS "build the tests" ${RECORDKIT_TESTS_BY_DEFAULT})
option(RECORDKIT_BUILD_BENCH "build the benchmarks" OFF)
option(RECORDKIT_COVERAGE "count which lines and branches run" OFF)
option(RECORDKIT_BUILD_FUZZ "build the fuzz targets; needs clang" OFF)
if(RECORDKIT_PLATFORM STREQUAL "host")
    if(RECORDKIT_BUILD_TESTS AND NOT (RECORDKIT_COMMAND AND RECORDKIT_MANUALS AND RECORDKIT_PROGRAMS_RUN))
        message(FATAL_ERROR "RECORDKIT_BUILD_TESTS needs RECORDKIT_COMMAND and RECORDKIT_MANUALS, and "
            "CMAKE_CROSSCOMPILING_EMULATOR in a cross build")
    endif()
    if(RECORDKIT_BUILD_BENCH AND NOT RECORDKIT_COMMAND)
        message(FATAL_ERROR "RECORDKIT_BUILD_BENCH needs RECORDKIT_COMMAND")
    endif()
endif()

# Somebody who gives flags, or a toolchain of his own, has chosen how to optimise.
get_property(multiple_types GLOBAL PROPERTY GENERATOR_IS_MULTI_CONFIG)
if(PROJECT_IS_TOP_LEVEL AND NOT CMAKE_BUILD_TYPE AND NOT multiple_types AND NOT CMAKE_CXX_FLAGS
        AND NOT CMAKE_CROSSCOMPILING)
    set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "build type" FORCE)
endif()

add_library(recordkit_options INTERFACE)
target_compile_features(recordkit_options INTERFACE cxx_std_17)
target_include_directories(recordkit_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(recordkit_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Woverloaded-virtual)
if(RECORDKIT_WARNINGS_AS_ERRORS)
    target_compile_options(recordkit_options INTERFACE -Werror)
endif()
# Builds of one commit produce the same bytes wherever they are made.
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)
if(RECORDKIT_COVERAGE)
    target_compile_options(recordkit_options INTERFACE --coverage -fprofile-abs-path)
    target_link_options(recordkit_options INTERFACE --coverage)
else()
    target_compile_options(recordkit_options INTERFACE
        -ffile-prefix-map=${CMAKE_BINARY_DIR}=build -ffile-prefix-map=${PROJECT_SOURCE_DIR}=.)
endif()
if(RECORDKIT_SANITIZE)
    target_compile_options(recordkit_options INTERFACE
        -fsanitize=${RECORDKIT_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(recordkit_options INTERFACE -fsanitize=${RECORDKIT_SANITIZE})
endif()
if(RECORDKIT_HARDENING)
    include(cmake/Hardening.cmake)
endif()
if(RECORDKIT_BUILD_FUZZ)
    target_compile_options(recordkit_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
if(CMAKE_SYSTEM_PROCESSOR STREQUAL "powerpc" AND BUILD_SHARED_LIBS)
    # Overrides -fPIC: 16-bit offsets into the offset table are enough for these libraries. What a
    # static library becomes a part of may need more.
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
