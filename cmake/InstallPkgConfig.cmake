# SPDX-License-Identifier: Apache-2.0
# Part of an installation: writes the pkg-config file NAME for the folders that are really installed
# into. LIBDIR and INCLUDEDIR are absolute, or relative to the prefix.

get_filename_component(prefix "${CMAKE_INSTALL_PREFIX}" ABSOLUTE)
get_filename_component(libdir "${libdir}" ABSOLUTE BASE_DIR "${prefix}")
get_filename_component(includedir "${includedir}" ABSOLUTE BASE_DIR "${prefix}")

# Folders inside the prefix follow it when a caller defines another one.
if(relocatable)
    file(RELATIVE_PATH up "${libdir}/pkgconfig" "${prefix}")
    file(RELATIVE_PATH PC_LIBDIR "${prefix}" "${libdir}")
    file(RELATIVE_PATH PC_INCLUDEDIR "${prefix}" "${includedir}")
    string(REGEX REPLACE "/$" "" up "${up}")
    set(PC_PREFIX "\${pcfiledir}/${up}")
    set(PC_LIBDIR "\${prefix}/${PC_LIBDIR}")
    set(PC_INCLUDEDIR "\${prefix}/${PC_INCLUDEDIR}")
else()
    set(PC_PREFIX "${prefix}")
    set(PC_LIBDIR "${libdir}")
    set(PC_INCLUDEDIR "${includedir}")
endif()

set(installed "${libdir}/pkgconfig/${name}")
message(STATUS "Installing: $ENV{DESTDIR}${installed}")
configure_file("${template}" "$ENV{DESTDIR}${installed}" @ONLY)
list(APPEND CMAKE_INSTALL_MANIFEST_FILES "${installed}")
