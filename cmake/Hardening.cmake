# SPDX-License-Identifier: Apache-2.0
# Protections of what is built, each only where the builder's flags and the compiler leave the choice.
# tests/install/hardening.sh verifies them in a plain build, tests/install/flags.sh that nothing is
# lowered.

include(CheckCXXSourceCompiles)

set(type ${CMAKE_BUILD_TYPE})
if(multiple_types)
    set(type Release)
endif()
string(TOUPPER "${type}" type)
set(compiler_flags "${CMAKE_CXX_FLAGS} ${CMAKE_CXX_FLAGS_${type}}")
set(linker_flags "${compiler_flags} ${CMAKE_SHARED_LINKER_FLAGS} ${CMAKE_EXE_LINKER_FLAGS}")

# recordkit_compiles(RESULT FLAGS SOURCE): asked again each time, because flags may have changed.
macro(recordkit_compiles result flags source)
    unset(${result} CACHE)
    set(CMAKE_REQUIRED_FLAGS "${CMAKE_CXX_FLAGS_${type}} ${flags}")
    set(CMAKE_REQUIRED_QUIET ON)
    check_cxx_source_compiles("${source}" ${result})
    unset(CMAKE_REQUIRED_FLAGS)
    unset(CMAKE_REQUIRED_QUIET)
endmacro()

# A system may have no run-time support for it.
if(NOT compiler_flags MATCHES "stack-protector")
    recordkit_compiles(RECORDKIT_STACK_PROTECTOR "-fstack-protector-strong" [=[
        int main(int count, char** words)
        {
            char copy[16] = {};
            for (int i = 0; i < count && i < 16; ++i) {
                copy[i] = words[i][0];
            }
            return copy[count % 16];
        }]=])
    if(RECORDKIT_STACK_PROTECTOR)
        target_compile_options(recordkit_options INTERFACE -fstack-protector-strong)
    endif()
endif()

if(NOT linker_flags MATCHES "-z[ ,](no)?relro")
    target_link_options(recordkit_options INTERFACE LINKER:-z,relro)
endif()
if(NOT linker_flags MATCHES "-z[ ,](now|lazy)")
    target_link_options(recordkit_options INTERFACE LINKER:-z,now)
endif()

# Some compilers predefine it, and it is nothing without optimisation.
if(NOT RECORDKIT_SANITIZE AND NOT compiler_flags MATCHES "_FORTIFY_SOURCE")
    recordkit_compiles(RECORDKIT_FORTIFY "" [=[
        #if defined(_FORTIFY_SOURCE) || !defined(__OPTIMIZE__)
        #error "leave it"
        #endif
        int main() {}]=])
    if(RECORDKIT_FORTIFY)
        target_compile_options(recordkit_options INTERFACE
            $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=2>)
    endif()
endif()
