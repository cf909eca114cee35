// SPDX-License-Identifier: Apache-2.0
#include "Boards.h"

#include <string>

#include "Units.h"

namespace generator {

namespace {

// Status words of the boards' sockets, slots and ports.
constexpr unsigned int PRESENT = 0x0001;
constexpr unsigned int FAILED = 0x0004;

/// Flags of boards.
enum Flag : unsigned char { INSTALLED = 1, POWERED_ON = 2, RUNNING = INSTALLED | POWERED_ON };

Bytes words(const std::vector<unsigned int>& values)
{
    Bytes bytes;
    for (const unsigned int value : values) {
        bytes = join(bytes, lowFirst(value, 2));
    }
    return bytes;
}

/// Both processors and 8 of 32 modules, the failing one of board 1 with its fault.
Bytes systemBoard(unsigned int board)
{
    constexpr unsigned char TYPE = 1;
    constexpr std::size_t BOARD_TYPE = 4;
    constexpr std::size_t CPU_MAP = 8;
    constexpr std::size_t CPU_STATUS = 12;
    constexpr std::size_t DIMM_MAP = 16;
    constexpr std::size_t DIMM_STATUS = 32;
    Bytes image(96, 0);
    image[0] = RUNNING;
    image[BOARD_TYPE] = TYPE;
    image[CPU_MAP] = 0x03;
    put(image, CPU_STATUS, words({PRESENT, PRESENT}));
    put(image, DIMM_MAP, lowFirst((1UL << DIMMS) - 1, 4));
    for (unsigned int dimm = 0; dimm < DIMMS; ++dimm) {
        const bool isFailed = board == 1 && dimm == FAILING_DIMM;
        put(image, DIMM_STATUS + 2UL * dimm, words({isFailed ? PRESENT | FAILED : PRESENT}));
    }
    return image;
}

/// A board with PCI slots.
Bytes slotBoard(unsigned char type, const std::vector<unsigned int>& slots)
{
    Bytes image = {RUNNING, 0, 0, 0, type, 0, 0, 0, static_cast<unsigned char>(slots.size())};
    return join(image, words(slots));
}

Bytes switchBoard()
{
    constexpr unsigned char NOT_CONNECTED = 0xFF;
    Bytes image = {RUNNING, 0, 0, 0, 1, 0, 0, 0};
    image = join(join(image, {4}), words({PRESENT, PRESENT, PRESENT, 0}));
    image = join(join(image, {2}), words({PRESENT, 0}));
    return join(image, {2, 0, 0, NOT_CONNECTED, NOT_CONNECTED});
}

/// A box with a link card for two slots, cabled to port 0 of the first board.
Bytes pciBox()
{
    Bytes image(12, 0);
    image[0] = RUNNING;
    image[8] = RUNNING;
    image = join(image, {1, 0, 0, 2});
    return join(image, words({PRESENT, 0}));
}

Bytes text(const std::string& text, std::size_t size)
{
    Bytes image(size, 0);
    putText(image, 0, text);
    return image;
}

File decodable(const std::string& folder, const std::string& recordClass, const std::string& unit,
               const Bytes& image)
{
    return {folder + "/" + recordClass + "." + unit + ".bin", image};
}

/// Ends a block of a processor's ROM with its checksum.
Bytes block(Bytes bytes)
{
    bytes.push_back(balanceOf(bytes));
    return bytes;
}

Bytes textOf(const std::string& text)
{
    return {text.begin(), text.end()};
}

Bytes processorRom(unsigned int number)
{
    constexpr std::size_t SIZE = 128;
    const std::string index = std::to_string(number);
    const Bytes blocks[] = {
        // 2667 MHz
        block(join(textOf("SR0042"), {0x07, 0x00, 0x26, 0x67, 0x00, 0x00})),
        block({0xE6, 0x12, 0x00, 0x00, 0x10, 0x27, 0x34, 0x12, 0x01, 0x02, 0x03, 0x04, 0x55, 0x66}),
        // 24576 KB
        block({0, 0, 0, 0, 0, 0, 0,    0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
               0, 0, 0, 0, 0, 0, 0x60, 0, 0, 0, 0, 0, 0, 0, 0, 0}),
        block(join(textOf("0001"), {0x03, 0x00, 0x00})),
        block(join(textOf("XC00042ROM-PN-" + index), {0x00, 0x00})),
        block({0x5A, 0x64, 0x00, 0x00, 0x00}),
        block({0x01, 0x02, 0x03, 0x04, 0x05, 0x00, 0x00, 0x06, 0x00, 0x00}),
        block({0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, static_cast<unsigned char>(number)}),
    };
    constexpr unsigned char REVISION = 2;
    constexpr std::size_t HEADER_SIZE = 14;
    Bytes header = join({REVISION}, lowFirst(SIZE, 2));
    Bytes body;
    for (const Bytes& each : blocks) {
        header.push_back(static_cast<unsigned char>(HEADER_SIZE + body.size()));
        body = join(body, each);
    }
    Bytes rom = join(block(join(header, {0, 0})), body);
    rom.resize(SIZE, 0);
    return rom;
}

}

Files boardImages()
{
    const std::string folder = "boards";
    Files files = {
        decodable(folder, "HardwareInfo", "cabinet", {0x01, 0x05, 0, 0x03, 0, 0x01, 0, 0x01}),
        // The node ids of a system board and of a side of the I/O unit.
        decodable(folder, "PartitionInfo", "partition0", {0, 2, 0x00, 0x80}),
        decodable(folder, "PartitionInfo", "partition1", {0, 2, 0x01, 0x81}),
        decodable(folder, "IOUBoardInfo", "io-unit", slotBoard(2, {PRESENT, 0, PRESENT, 0})),
        decodable(folder, "IOUPortConfiguration", "io-unit", {0x3C}),
        decodable(folder, "SASUBoardInfo", "sas-unit0", slotBoard(3, {PRESENT, 0})),
        decodable(folder, "GSPBBoardInfo", "gspb0", switchBoard()),
        decodable(folder, "PCIBOXInfo", "pci-box0", pciBox()),
        // The card that was added on the second day.
        decodable(folder, "PCISlotLocation", "slot2", {0x42, 0x00}),
        decodable(folder, "PCICardInfo", "slot2",
                  {0x00, 0x05, 0x00, 0xFE, 0x7F, 0x42, 0x00, 0x05, 0x00}),
        decodable(folder, "UserAccess", "channel1", {0x0A, 0x02, 0x01, 0x34}),
        decodable(folder, "BootFlagsData", "partition0", {0xE0, 0x08, 0x00, 0x00, 0x00}),
    };
    for (unsigned int board = 0; board < BOARDS; ++board) {
        const std::string name = "sb" + std::to_string(board);
        files.push_back(decodable(folder, "SBBoardInfo", name, systemBoard(board)));
        files.push_back(
            decodable(folder, "DeviceInfo", name, text(SYSTEM_BOARDS[board].serialNumber, 12)));
        // Power on, installed.
        files.push_back(
            decodable(folder, "PSUStatus", "power-supply" + std::to_string(board), {0x01, 0x01}));
    }
    return files;
}

Files firmwareImages()
{
    const std::string folder = "firmware";
    Files files = {
        decodable(folder, "TAVFirmwareVersion", "cabinet", {3, 0x05, 1, 0x12, 2, 2}),
        decodable(folder, "GSWBVersion", "gspb0", {0, 0, 1, 2, 3, 1, 2, 3, 1, 1, 1, 1}),
    };
    for (unsigned int board = 0; board < BOARDS; ++board) {
        const std::string name = "sb" + std::to_string(board);
        files.push_back(decodable(folder, "BMCVersion", name, {0x20, 0x01, 0x02, 0x17}));
        files.push_back(decodable(folder, "DeviceID", name, {0x20, 0x01, 0x02, 0x17}));
        files.push_back(
            decodable(folder, "EFIVersion", name, {7, 0, 1, 0, 0, 0, 2, 0, 0x01, 0x2C}));
        files.push_back(decodable(folder, "PALSALVersion", name,
                                  {0x10, 7, 0x12, 7, 0x12, 7, 0x20, 3, 0x21, 3}));
        files.push_back(decodable(folder, "SystemFirmwareVersion", name, {2, 0x01, 0x07, 3}));
        files.push_back(decodable(folder, "SystemInfoParameters", name,
                                  join({1, 0, 0, 10}, text("B01.07.3", 13))));
    }
    return files;
}

Files processorRoms()
{
    Files files;
    for (unsigned int number = 0; number < BOARDS * CPUS; ++number) {
        const std::string name =
            "sb" + std::to_string(number / CPUS) + "-cpu" + std::to_string(number % CPUS);
        files.push_back({"rom/" + name + ".bin", processorRom(number)});
    }
    return files;
}

}
