# SPDX-License-Identifier: Apache-2.0
# Headers, libraries, command, CMake package and pkg-config files. The components can be installed one
# by one: library (with the host platform where there is one), inspect, command.

include(CMakePackageConfigHelpers)

set(RECORDKIT_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/recordkit)
set(RECORDKIT_INSTALLED recordkit)
if(RECORDKIT_PLATFORM STREQUAL "host")
    list(APPEND RECORDKIT_INSTALLED recordkit-host)
    install(TARGETS recordkit-command RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT command)
    configure_file(docs/man/recordkit.3.in man/recordkit.3 @ONLY)
    install(DIRECTORY ${CMAKE_BINARY_DIR}/man/ DESTINATION ${CMAKE_INSTALL_MANDIR}/man1
        COMPONENT command FILES_MATCHING PATTERN "*.1")
    install(FILES ${CMAKE_BINARY_DIR}/man/recordkit.3 DESTINATION ${CMAKE_INSTALL_MANDIR}/man3
        COMPONENT library)
    install(FILES ${CMAKE_BINARY_DIR}/man/recordkit.bash
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME recordkit
        COMPONENT command)
    set(RECORDKIT_REQUIRES "Requires: recordkit-host")
    configure_file(cmake/recordkit-host.pc.in recordkit-host.pc @ONLY)
    install(FILES ${CMAKE_BINARY_DIR}/recordkit-host.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT library)

    install(TARGETS recordkit-inspect EXPORT recordkit-inspect-targets
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT inspect
        FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT inspect)
    install(EXPORT recordkit-inspect-targets NAMESPACE recordkit::
        DESTINATION ${RECORDKIT_CMAKE_DIR} COMPONENT inspect)
endif()
install(TARGETS ${RECORDKIT_INSTALLED} EXPORT recordkit-targets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library
    FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT library)
install(EXPORT recordkit-targets NAMESPACE recordkit:: DESTINATION ${RECORDKIT_CMAKE_DIR}
    COMPONENT library)

configure_package_config_file(cmake/recordkit-config.cmake.in recordkit-config.cmake
    INSTALL_DESTINATION ${RECORDKIT_CMAKE_DIR})
write_basic_package_version_file(recordkit-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/recordkit-config.cmake
    ${CMAKE_BINARY_DIR}/recordkit-config-version.cmake DESTINATION ${RECORDKIT_CMAKE_DIR}
    COMPONENT library)

configure_file(cmake/recordkit.pc.in recordkit.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/recordkit.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
    COMPONENT library)

# For those who write siblings of their own.
install(FILES recordkit/platform/messages.tsv recordkit/platform/LibraryMessages.h.in
    DESTINATION ${CMAKE_INSTALL_DATADIR}/recordkit COMPONENT library)
install(DIRECTORY tests/platform/ DESTINATION ${CMAKE_INSTALL_DATADIR}/recordkit/platform-tests
    COMPONENT library)
