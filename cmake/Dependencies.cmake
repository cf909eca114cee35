# SPDX-License-Identifier: Apache-2.0
# The libraries that the command, the tests and the benchmarks use. A cross build uses the same
# ones, as headers only.

if(RECORDKIT_PLATFORM STREQUAL "host")
    find_path(CLI11_INCLUDE_DIR CLI/CLI.hpp REQUIRED)
    find_path(NLOHMANN_JSON_INCLUDE_DIR nlohmann/json.hpp REQUIRED)

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

    add_library(recordkit_command_libraries INTERFACE)
    target_include_directories(recordkit_command_libraries SYSTEM INTERFACE
        ${CLI11_INCLUDE_DIR} ${NLOHMANN_JSON_INCLUDE_DIR})
    target_link_libraries(recordkit_command_libraries INTERFACE recordkit_fmt)

    if(RECORDKIT_BUILD_TESTS)
        if(CMAKE_CROSSCOMPILING)
            add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
        else()
            find_package(GTest REQUIRED)
        endif()
        include(GoogleTest)
    endif()
    if(RECORDKIT_BUILD_BENCH)
        find_package(benchmark REQUIRED)
    endif()
endif()
