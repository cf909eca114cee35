# SPDX-License-Identifier: Apache-2.0
# The libraries that the command, the tests and the benchmarks use. A cross build takes the same
# ones, as headers.

if(RECORDKIT_PLATFORM STREQUAL "host")
    find_path(CLI11_INCLUDE_DIR CLI/CLI.hpp REQUIRED)
    find_path(NLOHMANN_JSON_INCLUDE_DIR nlohmann/json.hpp REQUIRED)

    add_library(recordkit_command_libraries INTERFACE)
    target_include_directories(recordkit_command_libraries SYSTEM INTERFACE
        ${CLI11_INCLUDE_DIR} ${NLOHMANN_JSON_INCLUDE_DIR})
    if(CMAKE_CROSSCOMPILING)
        find_path(FMT_INCLUDE_DIR fmt/format.h REQUIRED)
        target_include_directories(recordkit_command_libraries SYSTEM INTERFACE ${FMT_INCLUDE_DIR})
        target_compile_definitions(recordkit_command_libraries INTERFACE FMT_HEADER_ONLY=1)
    else()
        find_package(fmt REQUIRED)
        target_link_libraries(recordkit_command_libraries INTERFACE fmt::fmt)
    endif()

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
