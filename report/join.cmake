# SPDX-License-Identifier: Apache-2.0
# Joins the page's template, style sheet, modules and d3 into one HTML file, which needs no other and
# contains @DOCUMENT@ once, where a document is put. Writes the same for the command as a C++ source.
#
#   cmake -DSOURCE=FOLDER -DD3=FOLDER -DPAGE=FILE [-DCODE=FILE] -P join.cmake
#
# SOURCE contains src/ and d3-license.txt, D3 a folder for each of d3's modules.

set(LIBRARY array collection color format interpolate time time-format scale selection axis)
# Each module follows those that it imports.
set(MODULES dom severity document filter timeline table verdict failures bytemap inventory sensors stores inputs page)

# The text of a file without white space at its ends.
function(read file result)
    file(READ "${file}" text)
    string(STRIP "${text}" text)
    set(${result} "${text}" PARENT_SCOPE)
endfunction()

# The value of a Content-Security-Policy that lets a text run: its digest in base64, which has two
# characters for three hex digits.
function(digest text result)
    set(alphabet ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/)
    string(SHA256 hex "${text}")
    set(base64)
    foreach(at RANGE 0 60 3)
        string(SUBSTRING ${hex} ${at} 3 digits)
        math(EXPR high "0x${digits} >> 6")
        math(EXPR low "0x${digits} & 63")
        string(SUBSTRING ${alphabet} ${high} 1 first)
        string(SUBSTRING ${alphabet} ${low} 1 second)
        string(APPEND base64 ${first}${second})
    endforeach()
    string(SUBSTRING ${hex} 63 1 digits)
    math(EXPR high "0x${digits} << 2")
    string(SUBSTRING ${alphabet} ${high} 1 first)
    set(${result} "'sha256-${base64}${first}='" PARENT_SCOPE)
endfunction()

function(require_harmless name text)
    string(TOLOWER "${text}" text)
    if("${text}" MATCHES "</(script|style)|<!--")
        message(FATAL_ERROR "${name} contains \"${CMAKE_MATCH_0}\", which would end its element")
    endif()
endfunction()

function(join_library result)
    read("${SOURCE}/d3-license.txt" joined)
    set(joined "/*\n${joined}\n*/")
    foreach(name ${LIBRARY})
        set(file "${D3}/d3-${name}/dist/d3-${name}.min.js")
        if(NOT EXISTS "${file}")
            list(TRANSFORM LIBRARY PREPEND node-d3- OUTPUT_VARIABLE packages)
            list(JOIN packages " " packages)
            message(FATAL_ERROR "${file} was not found: install d3's modules (Debian: ${packages}), "
                "or set RECORDKIT_D3_FOLDER to the folder that contains d3-${name}")
        endif()
        read("${file}" text)
        string(APPEND joined "\n${text}")
    endforeach()
    require_harmless("d3" "${joined}")
    set(${result} "${joined}" PARENT_SCOPE)
endfunction()

# The modules as one: without the lines that import, and without "export". Their names at the top
# level are therefore different from each other.
function(join_modules result)
    set(joined)
    foreach(module ${MODULES})
        read("${SOURCE}/src/${module}.mjs" text)
        set(text "\n${text}")
        string(REGEX REPLACE "\nimport [^\n]*;" "" text "${text}")
        string(REGEX REPLACE "\nexport " "\n" text "${text}")
        string(REGEX REPLACE "^\n// SPDX[^\n]*" "" text "${text}")
        if("${text}" MATCHES "\n((import|export)[^\n]*)")
            message(FATAL_ERROR "${module}.mjs: \"${CMAKE_MATCH_1}\" is not on one line, or not at the start of a declaration")
        elseif("${text}" MATCHES "\n((const|let|var) *[[{][^\n]*)")
            message(FATAL_ERROR "${module}.mjs: \"${CMAKE_MATCH_1}\" declares names that are not compared with the other modules'")
        endif()
        string(REGEX MATCHALL "\n(async )?(function|const|let|var|class)[ *]+[A-Za-z0-9_$]+" declarations "${text}")
        foreach(declaration ${declarations})
            string(REGEX REPLACE ".*[ *]" "" name "${declaration}")
            if(DEFINED module_of_${name})
                message(FATAL_ERROR "${name} is in ${module_of_${name}}.mjs and in ${module}.mjs")
            endif()
            set(module_of_${name} ${module})
        endforeach()
        string(APPEND joined "${text}\n")
    endforeach()
    require_harmless("a module" "${joined}")
    set(${result} "${joined}" PARENT_SCOPE)
endfunction()

# Bytes as an array: a literal of this length is more than compilers have to take.
function(bytes_of text result)
    string(HEX "${text}" hex)
    string(REGEX REPLACE "(................................)" "\\1\n" hex "${hex}")
    string(REGEX REPLACE "([0-9a-f][0-9a-f])" "'\\\\x\\1'," hex "${hex}")
    set(${result} "${hex}" PARENT_SCOPE)
endfunction()

join_library(library)
join_modules(modules)
read("${SOURCE}/src/page.css" style)
require_harmless("the style sheet" "${style}")
digest("${library}" library_digest)
digest("${modules}" modules_digest)
digest("${style}" style_digest)
set(policy "default-src 'none'; script-src ${library_digest} ${modules_digest}; style-src ${style_digest}; img-src data:; base-uri 'none'; form-action 'none'")

# From marker to marker, so that nothing in a text that was put in is taken for one.
file(READ "${SOURCE}/src/index.html" rest)
set(page)
foreach(marker POLICY STYLE DOCUMENT LIBRARY MODULES)
    string(FIND "${rest}" "@${marker}@" at)
    if(at LESS 0)
        message(FATAL_ERROR "index.html does not contain @${marker}@, or not in the order of join.cmake")
    endif()
    string(SUBSTRING "${rest}" 0 ${at} before)
    string(LENGTH "@${marker}@" length)
    math(EXPR at "${at} + ${length}")
    string(SUBSTRING "${rest}" ${at} -1 rest)
    string(APPEND page "${before}")
    if(marker STREQUAL "DOCUMENT")
        set(before_document "${page}")
        set(page)
    else()
        string(TOLOWER ${marker} name)
        string(APPEND page "${${name}}")
    endif()
endforeach()
set(after_document "${page}${rest}")
if("${before_document}${after_document}" MATCHES "@DOCUMENT@")
    message(FATAL_ERROR "@DOCUMENT@ is in the page more than once")
endif()

file(WRITE "${PAGE}" "${before_document}@DOCUMENT@${after_document}")
if(CODE)
    bytes_of("${before_document}" before)
    bytes_of("${after_document}" after)
    file(WRITE "${CODE}" "// Written by join.cmake from the files of report/src.

#include <tool/report/ReportTemplate.h>

namespace recordkit::tool {

namespace {

constexpr char BEFORE[] = {
${before}
};

constexpr char AFTER[] = {
${after}
};

}

const std::string_view REPORT_BEFORE(BEFORE, sizeof BEFORE);
const std::string_view REPORT_AFTER(AFTER, sizeof AFTER);

}
")
endif()
