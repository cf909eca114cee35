#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# A builder's own compiler flags decide: nothing that the build adds lowers them, and a warning that
# they ask for does not end the build.
#
#   flags.sh SOURCE-FOLDER CXX
set -eu
source=$1
cxx=$2
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
unset CXXFLAGS CFLAGS LDFLAGS

fail() {
    echo "flags: $*" >&2
    exit 1
}

# configure NAME [OPTION...]: leaves in $command how the library's files are compiled, in $link how it
# is linked, and in $type the build type.
configure() {
    name=$1
    shift
    cmake -S "$source" -B "$scratch/$name" -G Ninja -DCMAKE_CXX_COMPILER="$cxx" \
        -DRECORDKIT_PLATFORM=external "$@" >"$scratch/$name.log" 2>&1 || {
        cat "$scratch/$name.log" >&2
        fail "$name"
    }
    command=$(ninja -C "$scratch/$name" -t commands librecordkit.so | grep 'Util[.]cpp[.]o -c')
    link=$(ninja -C "$scratch/$name" -t commands librecordkit.so | tail -n 2)
    type=$(sed -n 's/^CMAKE_BUILD_TYPE:[A-Z]*=//p' "$scratch/$name/CMakeCache.txt")
}

# has TEXT WORD, has_not TEXT WORD
has() {
    case " $1 " in *" $2 "*) ;; *) fail "$name: $2 is missing: $1" ;; esac
}
has_not() {
    case " $1 " in *" $2"*) fail "$name: $2 is there: $1" ;; esac
}

configure plain
[ "$type" = RelWithDebInfo ] || fail "plain: the build type is \"$type\""
for flag in -O2 -fstack-protector-strong -D_FORTIFY_SOURCE=2; do
    has "$command" "$flag"
done
has "$link" "-Wl,-z,now"
has_not "$command" -Werror

configure distribution "-DCMAKE_CXX_FLAGS=-Os -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3 -fstack-protector-all" \
    "-DCMAKE_SHARED_LINKER_FLAGS=-Wl,-z,lazy"
[ -z "$type" ] || fail "distribution: the build type is \"$type\""
for flag in -Os -D_FORTIFY_SOURCE=3 -fstack-protector-all; do
    has "$command" "$flag"
done
for flag in -O2 -D_FORTIFY_SOURCE=2 -fstack-protector-strong -g; do
    has_not "$command" "$flag"
done
has "$link" "-Wl,-z,lazy"
has_not "$link" "-Wl,-z,now"

# A compiler that predefines it, as those of some distributions do.
mkdir "$scratch/bin"
cat >"$scratch/bin/c++" <<TEXT
#!/bin/sh
exec $cxx -D_FORTIFY_SOURCE=3 "\$@"
TEXT
chmod +x "$scratch/bin/c++"
configure predefined -DCMAKE_CXX_COMPILER="$scratch/bin/c++"
has_not "$command" -D_FORTIFY_SOURCE
has "$command" -fstack-protector-strong

configure debug -DCMAKE_BUILD_TYPE=Debug
has_not "$command" -D_FORTIFY_SOURCE
configure bare -DRECORDKIT_HARDENING=OFF
has_not "$command" -D_FORTIFY_SOURCE
has_not "$command" -fstack-protector
has_not "$link" "-Wl,-z"

# A file that this warning is about.
warning="-DCMAKE_CXX_FLAGS=-Weffc++ -Wno-error"
object=CMakeFiles/recordkit_objects.dir/recordkit/fru/FRUMember.cpp.o
configure warnings "$warning"
ninja -C "$scratch/warnings" "$object" >"$scratch/warnings.log" 2>&1 || {
    cat "$scratch/warnings.log" >&2
    fail "a warning ends the build"
}
grep -q 'Weffc++' "$scratch/warnings.log" || fail "the compiler warns of nothing"
configure errors "$warning" -DRECORDKIT_WARNINGS_AS_ERRORS=ON
! ninja -C "$scratch/errors" "$object" >"$scratch/errors.log" 2>&1 ||
    fail "RECORDKIT_WARNINGS_AS_ERRORS changes nothing"
grep -q 'Werror=effc++' "$scratch/errors.log" || fail "another error: $(cat "$scratch/errors.log")"

# As part of another project, which chooses for itself.
mkdir "$scratch/parent"
cat >"$scratch/parent/CMakeLists.txt" <<TEXT
cmake_minimum_required(VERSION 3.22)
project(parent LANGUAGES CXX)
set(RECORDKIT_PLATFORM external)
add_subdirectory($source recordkit)
file(WRITE \${CMAKE_BINARY_DIR}/own.cpp "int own() { return 0; }")
add_library(own \${CMAKE_BINARY_DIR}/own.cpp)
TEXT
cmake -S "$scratch/parent" -B "$scratch/parent/build" -G Ninja -DCMAKE_CXX_COMPILER="$cxx" \
    >"$scratch/parent.log" || fail "as part of another project"
grep -q '^CMAKE_BUILD_TYPE:[A-Z]*=$' "$scratch/parent/build/CMakeCache.txt" || fail "another project's build type"
ninja -C "$scratch/parent/build" -t targets all >"$scratch/targets"
grep -q '^libown[.]a:' "$scratch/targets" || fail "another project's libraries are shared"
grep -q '^recordkit/librecordkit[.]so:' "$scratch/targets" || fail "the library is not shared there"

# Without Boost the error says what is missing.
! cmake -S "$source" -B "$scratch/boost" -G Ninja -DCMAKE_CXX_COMPILER="$cxx" \
    -DRECORDKIT_PLATFORM=external -DCMAKE_CXX_FLAGS=-nostdinc >"$scratch/boost.log" 2>&1 ||
    fail "configured without Boost"
grep -q 'boost/tokenizer.hpp of Boost was not found' "$scratch/boost.log" ||
    fail "what it says without Boost: $(cat "$scratch/boost.log")"
echo "flags: the builder's flags decide"
