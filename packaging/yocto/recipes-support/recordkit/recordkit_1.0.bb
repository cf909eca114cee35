# SPDX-License-Identifier: Apache-2.0
SUMMARY = "Typed records and stores of a management board"
DESCRIPTION = "Event logs, FRU images, sensor records and EEPROM stores of a management board's firmware, \
as a C++17 library that leaves its siblings to the firmware."
SECTION = "libs"
LICENSE = "Apache-2.0"
LIC_FILES_CHKSUM = "file://LICENSE;md5=3b83ef96387f14655fc854ddc3c6bd57"

DEPENDS = "boost"

inherit cmake pkgconfig externalsrc systemd

EXTERNALSRC = "${RECORDKIT_SOURCE}"

# host: siblings for an ordinary Linux machine, and the command; its dependencies are in meta-oe.
# A folder of the building machine has d3's modules (Debian: node-d3-scale, node-d3-axis, node-d3-selection).
PACKAGECONFIG ??= ""
RECORDKIT_D3_FOLDER ?= "/usr/share/nodejs"
PACKAGECONFIG[host] = "-DRECORDKIT_PLATFORM=host -DRECORDKIT_D3_FOLDER=${RECORDKIT_D3_FOLDER},-DRECORDKIT_PLATFORM=external,cli11 fmt nlohmann-json"
PACKAGECONFIG[static] = "-DBUILD_SHARED_LIBS=OFF,-DBUILD_SHARED_LIBS=ON"

# pkg-config adds the sysroot to the folders itself.
EXTRA_OECMAKE = "-DBUILD_TESTING=OFF -DRECORDKIT_RELOCATABLE_PC=OFF"

RECORDKIT_UNITS = "recordkit-log.target ${@bb.utils.contains('PACKAGECONFIG', 'host', 'recordkit-log.service', '', d)}"
SYSTEMD_SERVICE:${PN} = "${RECORDKIT_UNITS}"

do_install:append() {
    install -D -m 0644 ${S}/packaging/board/tmpfiles.conf ${D}${nonarch_libdir}/tmpfiles.d/recordkit.conf
    install -D -m 0644 ${S}/packaging/board/sysctl.conf ${D}${nonarch_libdir}/sysctl.d/60-recordkit.conf
    for unit in ${RECORDKIT_UNITS}; do
        install -D -m 0644 ${S}/packaging/board/$unit ${D}${systemd_system_unitdir}/$unit
    done
}

FILES:${PN} += "${nonarch_libdir}/tmpfiles.d ${nonarch_libdir}/sysctl.d ${systemd_system_unitdir} ${datadir}/bash-completion"
FILES:${PN}-dev += "${datadir}/recordkit"
