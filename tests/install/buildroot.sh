#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# The external tree in packaging/buildroot: its menu is read by a parser of that language, and its
# package by make, with the steps of the infrastructure that it uses done by hand, for the target. A
# program is linked with what was installed, and run.
#
#   buildroot.sh SOURCE-FOLDER
set -eu
source=$(cd "$1" && pwd)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cross=powerpc-linux-gnu
expected="severity 3" # what the program prints ends so
BR2_EXTERNAL_RECORDKIT_PATH=$source/packaging/buildroot
export BR2_EXTERNAL_RECORDKIT_PATH

fail() {
    echo "buildroot: $*" >&2
    exit 1
}

grep -qx 'name: RECORDKIT' "$BR2_EXTERNAL_RECORDKIT_PATH/external.desc" || fail "external.desc"

version=$(sed -n 's/^project(recordkit VERSION \([0-9.]*\) .*/\1/p' "$source/CMakeLists.txt")
recipe=$(sed -n 's/^RECORDKIT_VERSION = //p' "$BR2_EXTERNAL_RECORDKIT_PATH/package/recordkit/recordkit.mk")
case "$version." in
"$recipe".*) ;;
*) fail "the recipe has version $recipe, the project $version" ;;
esac

# The menu, below what it depends on and selects.
{
    for symbol in INSTALL_LIBSTDCPP TOOLCHAIN_GCC_AT_LEAST_8 TOOLCHAIN_HAS_THREADS USE_WCHAR USE_MMU \
        PACKAGE_BOOST PACKAGE_CLI11 PACKAGE_FMT PACKAGE_JSON_FOR_MODERN_CPP; do
        printf 'config BR2_%s\n\tbool "%s"\n' "$symbol" "$symbol"
    done
    echo "source \"$BR2_EXTERNAL_RECORDKIT_PATH/Config.in\""
} >"$scratch/Config.in"
/usr/bin/python3 - "$scratch/Config.in" <<'TEXT' || fail "Config.in"
import sys
import kconfiglib

kconfig = kconfiglib.Kconfig(sys.argv[1])
assert not kconfig.warnings, kconfig.warnings
values = lambda: {name: symbol.str_value for name, symbol in kconfig.syms.items()}
kconfig.syms["BR2_PACKAGE_RECORDKIT"].set_value(2)
assert values()["BR2_PACKAGE_RECORDKIT"] == "n", "without what it depends on"
for name in ("INSTALL_LIBSTDCPP", "TOOLCHAIN_GCC_AT_LEAST_8", "TOOLCHAIN_HAS_THREADS", "USE_WCHAR", "USE_MMU"):
    kconfig.syms["BR2_" + name].set_value(2)
found = values()
assert found["BR2_PACKAGE_RECORDKIT"] == "y" and found["BR2_PACKAGE_BOOST"] == "y", found
assert found["BR2_PACKAGE_CLI11"] == "n", found
kconfig.syms["BR2_PACKAGE_RECORDKIT_HOST_PLATFORM"].set_value(2)
found = values()
for name in ("CLI11", "FMT", "JSON_FOR_MODERN_CPP"):
    assert found["BR2_PACKAGE_" + name] == "y", found
assert found["BR2_PACKAGE_RECORDKIT_D3_FOLDER"] == "/usr/share/nodejs", found
undefined = [name for name, symbol in kconfig.syms.items() if name.startswith("BR2_") and not symbol.nodes]
assert not undefined, undefined
TEXT

# The infrastructure: what cmake-package does with the variables of a package.
cat >"$scratch/Makefile" <<'TEXT'
INSTALL = install
@D = $(WORK)/recordkit
TARGET_DIR = $(WORK)/target
STAGING_DIR = $(WORK)/staging
define sep


endef

define cmake-package
all:
	test "$$(RECORDKIT_SITE_METHOD)" = local
	test -n "$$(RECORDKIT_VERSION)" -a -n "$$(RECORDKIT_LICENSE)"
	test -f "$$(RECORDKIT_SITE)/$$(RECORDKIT_LICENSE_FILES)"
	mkdir -p $$(@D)
	cd "$$(RECORDKIT_SITE)" && tar -cf - $$(RECORDKIT_OVERRIDE_SRCDIR_RSYNC_EXCLUSIONS:/%=./%) \
		--exclude ./.git . | tar -xf - -C $$(@D)
	cmake -S $$(@D) -B $$(WORK)/build -G Ninja -DCMAKE_TOOLCHAIN_FILE=$$(WORK)/toolchain.cmake \
		-DCMAKE_INSTALL_PREFIX=/usr -DCMAKE_INSTALL_LIBDIR=lib -DBUILD_TESTING=OFF \
		-DBUILD_SHARED_LIBS=$$(SHARED) -DCMAKE_BUILD_TYPE=Release $$(RECORDKIT_CONF_OPTS)
	cmake --build $$(WORK)/build
	test "$$(RECORDKIT_INSTALL_STAGING)" = YES
	DESTDIR=$$(STAGING_DIR) cmake --install $$(WORK)/build
	DESTDIR=$$(TARGET_DIR) cmake --install $$(WORK)/build
	$$(foreach hook,$$(RECORDKIT_POST_INSTALL_TARGET_HOOKS),$$(call $$(hook))$$(sep))
	$$(RECORDKIT_INSTALL_INIT_SYSTEMD)
	@echo "dependencies: $$(RECORDKIT_DEPENDENCIES)"
endef
include $(BR2_EXTERNAL_RECORDKIT_PATH)/external.mk
TEXT

mkdir "$scratch/siblings"
cp "$source"/examples/board/siblings/* "$scratch/siblings"
printf 'constexpr const char* RECORDKIT_LIBRARY_MESSAGES = R"catalogue(%s)catalogue";\n' \
    "$(cat "$source/recordkit/platform/messages.tsv")" >"$scratch/siblings/LibraryMessages.h"

# package NAME SHARED [VARIABLE=VALUE...]
package() {
    work=$scratch/$1
    shared=$2
    shift 2
    mkdir "$work"
    cat >"$work/toolchain.cmake" <<TEXT
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR powerpc)
set(CMAKE_CXX_COMPILER $cross-g++)
set(CMAKE_CXX_FLAGS "-O0" CACHE STRING "")
set(CMAKE_CXX_FLAGS_RELEASE "" CACHE STRING "")
TEXT
    make -f "$scratch/Makefile" WORK="$work" SHARED="$shared" "$@" >"$work.log" 2>&1 || {
        tail -n 40 "$work.log" >&2
        fail "$work"
    }
    for file in lib/tmpfiles.d/recordkit.conf lib/sysctl.d/60-recordkit.conf \
        lib/systemd/system/recordkit-log.target; do
        [ -s "$work/target/usr/$file" ] || fail "$file is not in the target"
    done
    # shellcheck disable=SC2046
    $cross-g++ -std=c++17 "$source/examples/classify_event.cpp" "$scratch"/siblings/*.cpp \
        -I"$scratch/siblings" -o "$work/program" \
        $(PKG_CONFIG_LIBDIR=$work/staging/usr/lib/pkgconfig PKG_CONFIG_SYSROOT_DIR=$work/staging \
            pkg-config --cflags --libs recordkit)
    qemu-ppc-static -L /usr/$cross -E LD_LIBRARY_PATH="$work/target/usr/lib:/usr/$cross/lib" \
        "$work/program" | grep -q "$expected\$" || fail "what the program prints"
}

package external ON
[ ! -e "$work/target/usr/bin/recordkit" ] || fail "the command without its siblings"
grep -qx 'dependencies: boost' "$work.log" || fail "dependencies"
package static OFF
[ ! -e "$work/target/usr/lib/librecordkit.so" ] || fail "shared libraries in a static system"

# The host platform is only configured here; yocto.py builds it.
BR2_PACKAGE_RECORDKIT_HOST_PLATFORM=y BR2_PACKAGE_RECORDKIT_D3_FOLDER='"/d3"' make -n -f "$scratch/Makefile" WORK="$scratch/host" SHARED=ON \
    >"$scratch/host.log"
grep -q -e '-DRECORDKIT_PLATFORM=host' "$scratch/host.log" || fail "the host platform"
grep -q -e '-DRECORDKIT_D3_FOLDER="/d3"' "$scratch/host.log" || fail "the folder of d3"
grep -q 'system/recordkit-log.service$' "$scratch/host.log" || fail "the service"
grep -q 'dependencies: boost cli11 fmt json-for-modern-cpp' "$scratch/host.log" || fail "dependencies"
echo "buildroot: read, built, installed, linked and run"
