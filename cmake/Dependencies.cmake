# SPDX-License-Identifier: Apache-2.0
# The libraries that the library, the command, the tests and the benchmarks use; docs/developer.md
# lists them. A cross build uses the same ones, as headers only.

# Boost has only headers here, and no caller needs them.
include(CheckIncludeFileCXX)
set(CMAKE_REQUIRED_QUIET ON)
check_include_file_cxx(boost/tokenizer.hpp RECORDKIT_BOOST_IS_A_SYSTEM_HEADER)
unset(CMAKE_REQUIRED_QUIET)
if(NOT RECORDKIT_BOOST_IS_A_SYSTEM_HEADER)
    # Not in the building machine's own folders, which would be wrong in a cross build.
    find_path(BOOST_INCLUDE_DIR boost/tokenizer.hpp NO_SYSTEM_ENVIRONMENT_PATH NO_CMAKE_SYSTEM_PATH)
    if(NOT BOOST_INCLUDE_DIR)
        # Looked for again by the next call.
        unset(RECORDKIT_BOOST_IS_A_SYSTEM_HEADER CACHE)
        message(FATAL_ERROR "boost/tokenizer.hpp of Boost was not found: install the headers of Boost "
            "(Debian: libboost-dev) where the compiler looks, or set BOOST_INCLUDE_DIR to their folder")
    endif()
    target_include_directories(recordkit_options SYSTEM INTERFACE ${BOOST_INCLUDE_DIR})
endif()

if(RECORDKIT_PLATFORM STREQUAL "host")
    # RECORDKIT_FMT is the dependency that an installed library names.
    add_library(recordkit_fmt INTERFACE)
    if(CMAKE_CROSSCOMPILING)
        find_path(FMT_INCLUDE_DIR fmt/format.h REQUIRED)
        target_include_directories(recordkit_fmt SYSTEM INTERFACE ${FMT_INCLUDE_DIR})
        target_compile_definitions(recordkit_fmt INTERFACE FMT_HEADER_ONLY=1)
        set(RECORDKIT_FMT "")
    else()
        find_package(fmt REQUIRED)
        set(RECORDKIT_FMT fmt::fmt)
        target_link_libraries(recordkit_fmt INTERFACE ${RECORDKIT_FMT})
    endif()

    if(RECORDKIT_COMMAND)
        find_path(CLI11_INCLUDE_DIR CLI/CLI.hpp REQUIRED)
        find_path(NLOHMANN_JSON_INCLUDE_DIR nlohmann/json.hpp REQUIRED)
        add_library(recordkit_command_libraries INTERFACE)
        target_include_directories(recordkit_command_libraries SYSTEM INTERFACE
            ${CLI11_INCLUDE_DIR} ${NLOHMANN_JSON_INCLUDE_DIR})
        target_link_libraries(recordkit_command_libraries INTERFACE recordkit_fmt)
    endif()

    if(RECORDKIT_BUILD_TESTS)
        if(CMAKE_CROSSCOMPILING)
            set(RECORDKIT_GOOGLETEST /usr/src/googletest CACHE PATH
                "sources of GoogleTest, for tests of a cross build")
            add_subdirectory(${RECORDKIT_GOOGLETEST} ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
        else()
            find_package(GTest REQUIRED)
        endif()
        include(GoogleTest)
    endif()
    if(RECORDKIT_BUILD_BENCH)
        find_package(benchmark REQUIRED)
    endif()
endif()
