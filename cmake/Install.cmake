# SPDX-License-Identifier: Apache-2.0
# Headers, libraries, command, CMake package, pkg-config files, licence and manual pages. The components
# can be installed one by one: library (with the host platform where there is one), inspect, command.

include(CMakePackageConfigHelpers)

set(RECORDKIT_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/recordkit)
set(RECORDKIT_INSTALLED recordkit)
set(RECORDKIT_REQUIRES "")
if(RECORDKIT_PLATFORM STREQUAL "host")
    list(APPEND RECORDKIT_INSTALLED recordkit-host)
    set(RECORDKIT_REQUIRES "Requires: recordkit-host")

    install(TARGETS recordkit-inspect EXPORT recordkit-inspect-targets
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT inspect)
    install(EXPORT recordkit-inspect-targets NAMESPACE recordkit::
        DESTINATION ${RECORDKIT_CMAKE_DIR} COMPONENT inspect)

    if(RECORDKIT_COMMAND)
        install(TARGETS recordkit-command RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT command)
        install(FILES examples/events.rules DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples
            COMPONENT command)
    endif()
    if(RECORDKIT_COMMAND AND RECORDKIT_MANUALS AND RECORDKIT_PROGRAMS_RUN)
        install(DIRECTORY ${PROJECT_BINARY_DIR}/man/ DESTINATION ${CMAKE_INSTALL_MANDIR}/man1
            COMPONENT command FILES_MATCHING PATTERN "*.1")
        install(FILES ${PROJECT_BINARY_DIR}/man/recordkit.bash
            DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME recordkit
            COMPONENT command)
    endif()
endif()
if(RECORDKIT_MANUALS)
    configure_file(docs/man/recordkit.3.in man/recordkit.3 @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/man/recordkit.3 DESTINATION ${CMAKE_INSTALL_MANDIR}/man3
        COMPONENT library)
endif()
install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT library)

install(TARGETS ${RECORDKIT_INSTALLED} EXPORT recordkit-targets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library)
install(EXPORT recordkit-targets NAMESPACE recordkit:: DESTINATION ${RECORDKIT_CMAKE_DIR}
    COMPONENT library)

configure_package_config_file(cmake/recordkit-config.cmake.in recordkit-config.cmake
    INSTALL_DESTINATION ${RECORDKIT_CMAKE_DIR})
write_basic_package_version_file(recordkit-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/recordkit-config.cmake
    ${CMAKE_CURRENT_BINARY_DIR}/recordkit-config-version.cmake DESTINATION ${RECORDKIT_CMAKE_DIR}
    COMPONENT library)

# The folders of a pkg-config file are known only when it is installed: cmake --install --prefix
# changes them.
foreach(name ${RECORDKIT_INSTALLED})
    install(CODE "set(template \"${PROJECT_SOURCE_DIR}/cmake/${name}.pc.in\")
        set(name ${name}.pc)
        set(libdir \"${CMAKE_INSTALL_LIBDIR}\")
        set(includedir \"${CMAKE_INSTALL_INCLUDEDIR}\")
        set(relocatable ${RECORDKIT_RELOCATABLE_PC})
        set(PC_PLATFORM ${RECORDKIT_PLATFORM})
        set(PC_REQUIRES \"${RECORDKIT_REQUIRES}\")
        set(PC_VERSION ${PROJECT_VERSION})
        include(\"${PROJECT_SOURCE_DIR}/cmake/InstallPkgConfig.cmake\")" COMPONENT library)
endforeach()

# For those who write siblings of their own.
install(FILES recordkit/platform/messages.tsv recordkit/platform/LibraryMessages.h.in
    DESTINATION ${CMAKE_INSTALL_DATADIR}/recordkit COMPONENT library)
install(DIRECTORY tests/platform/ DESTINATION ${CMAKE_INSTALL_DATADIR}/recordkit/platform-tests
    COMPONENT library)
