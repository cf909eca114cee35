// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/words/FirmwareWords.h>

#include <iterator>

namespace recordkit::inspect {

namespace {

// clang-format off
constexpr const char* ERRORS[] = {
    "Unspecified", // 00h
    "No system memory is physically installed", // 01h
    "No usable system memory", // 02h
    "Unrecoverable hard-disk/ATAPI/IDE device failure", // 03h
    "Unrecoverable system-board failure", // 04h
    "Unrecoverable diskette subsystem failure", // 05h
    "Unrecoverable hard-disk controller failure", // 06h
    "Unrecoverable PS/2 or USB keyboard failure", // 07h
    "Removable boot media not found", // 08h
    "Unrecoverable video controller failure", // 09h
    "No video device detected", // 0Ah
    "Firmware (BIOS) ROM corruption detected", // 0Bh
    "CPU voltage mismatch", // 0Ch
    "CPU speed matching failure", // 0Dh
};
constexpr const char* PROGRESS[] = {
    "Unspecified", // 00h
    "Memory initialization", // 01h
    "Hard-disk initialization", // 02h
    "Secondary processor(s) initialization", // 03h
    "User authentication", // 04h
    "User-initiated system setup", // 05h
    "USB resource configuration", // 06h
    "PCI resource configuration", // 07h
    "Option ROM initialization", // 08h
    "Video initialization", // 09h
    "Cache initialization", // 0Ah
    "SM Bus initialization", // 0Bh
    "Keyboard controller initialization", // 0Ch
    "Embedded controller/management controller initialization", // 0Dh
    "Docking station attachment", // 0Eh
    "Enabling docking station", // 0Fh
    "Docking station ejection", // 10h
    "Disabling docking station", // 11h
    "Calling operating system wake-up vector", // 12h
    "Starting operating system boot process", // 13h
    "Baseboard or motherboard initialization", // 14h
    "reserved", // 15h
    "Floppy initialization", // 16h
    "Keyboard test", // 17h
    "Pointing device test", // 18h
    "Primary processor initialization", // 19h
};
// clang-format on
static_assert(std::size(ERRORS) == 14 && std::size(PROGRESS) == 26, "codes 00h to 0Dh and 19h");

constexpr unsigned char FIRMWARE_ERROR = 0;
constexpr unsigned char FIRMWARE_HANG = 1;
constexpr unsigned char FIRMWARE_PROGRESS = 2;

}

const char* firmwareWords(unsigned char offset, unsigned char eventData2)
{
    if (offset == FIRMWARE_ERROR) {
        return eventData2 < std::size(ERRORS) ? ERRORS[eventData2] : nullptr;
    }
    const bool isProgress = offset == FIRMWARE_HANG || offset == FIRMWARE_PROGRESS;
    return isProgress && eventData2 < std::size(PROGRESS) ? PROGRESS[eventData2] : nullptr;
}

}
