// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/words/Entities.h>

#include <iterator>

namespace recordkit::inspect {

namespace {

// clang-format off
constexpr const char* NAMES[] = {
    "unspecified", // 00h
    "other",
    "unknown",
    "processor",
    "disk or disk bay",
    "peripheral bay",
    "system management module",
    "system board",
    "memory module",
    "processor module",
    "power supply", // 0Ah
    "add-in card",
    "front panel board",
    "back panel board",
    "power system board",
    "drive backplane",
    "system internal expansion board", // 10h
    "other system board",
    "processor board",
    "power unit",
    "power module",
    "power management board",
    "chassis back panel board",
    "system chassis",
    "sub-chassis",
    "other chassis board",
    "disk drive bay", // 1Ah
    "peripheral bay",
    "device bay",
    "fan or cooling device",
    "cooling unit",
    "cable or interconnect",
    "memory device", // 20h
    "system management software",
    "system firmware",
    "operating system",
    "system bus",
    "group",
    "remote management communication device",
    "external environment",
    "battery",
    "processing blade",
    "connectivity switch", // 2Ah
    "processor/memory module",
    "I/O module",
    "processor/I/O module",
    "management controller firmware",
    "IPMI channel",
    "PCI bus", // 30h
    "PCI Express bus",
    "SCSI bus",
    "SATA/SAS bus",
    "processor front-side bus",
    "real time clock",
    "reserved",
    "air inlet",
    "reserved",
    "reserved",
    "reserved", // 3Ah
    "reserved",
    "reserved",
    "reserved",
    "reserved",
    "reserved",
    "air inlet", // 40h
    "processor",
    "baseboard",
};
// clang-format on
static_assert(std::size(NAMES) == 0x43, "one name for each id up to 42h");

}

std::string entityName(unsigned char entityId)
{
    return entityId < std::size(NAMES) ? NAMES[entityId] : "entity " + std::to_string(entityId);
}

}
