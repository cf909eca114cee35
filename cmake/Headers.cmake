# SPDX-License-Identifier: Apache-2.0

# recordkit_headers(COMPONENT HEADER...): headers for callers, which keep their place below
# recordkit/ where they are installed. Paths are relative to the folder that names them.
function(recordkit_headers component)
    foreach(header ${ARGN})
        get_filename_component(header ${header} ABSOLUTE)
        file(RELATIVE_PATH place ${PROJECT_SOURCE_DIR} ${header})
        get_filename_component(place ${place} DIRECTORY)
        install(FILES ${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${place} COMPONENT ${component})
    endforeach()
endfunction()
