// SPDX-License-Identifier: Apache-2.0
#include "FruImages.h"

#include <iterator>
#include <string>

#include <recordkit/inspect/fru/FruContent.h>

#include "Units.h"

namespace generator {

namespace {

namespace inspect = recordkit::inspect;

constexpr std::size_t DEVICE_SIZE = 512;
constexpr unsigned char ENGLISH = 25;

/// Manufacturing dates count minutes since 1996.
constexpr unsigned long MINUTES_OF_DAY = 24 * 60;
constexpr unsigned long FIRST_DATE = 15826080; ///< 2026-02-02 08:00

std::string textOf(const Bytes& bytes)
{
    return {bytes.begin(), bytes.end()};
}

std::vector<inspect::FruText> texts(const std::vector<std::string>& values)
{
    std::vector<inspect::FruText> all;
    for (const std::string& value : values) {
        all.push_back(inspect::encodeFruText("field", value, ENGLISH, inspect::CODING_TEXT));
    }
    return all;
}

inspect::FruAreaContent chassisArea()
{
    constexpr unsigned char RACK_MOUNT = 0x17;
    return {FRU_AREA_CHASSIS, 1, textOf({RACK_MOUNT}),
            texts({SERVER.partNumber, SERVER.serialNumber})};
}

inspect::FruAreaContent boardArea(const Unit& unit, unsigned int daysLater)
{
    const Bytes date = lowFirst(FIRST_DATE + daysLater * MINUTES_OF_DAY, 3);
    return {FRU_AREA_BOARD, 1, textOf(join({ENGLISH}, date)),
            texts({MAKER, unit.name, unit.serialNumber, unit.partNumber, "v1.0"})};
}

inspect::FruAreaContent productArea(const Unit& unit, const std::string& version,
                                    const std::string& tag)
{
    return {FRU_AREA_PRODUCT, 1, textOf({ENGLISH}),
            texts({MAKER, unit.name, unit.partNumber, version, unit.serialNumber, tag, "v1.0"})};
}

enum RecordType : unsigned char {
    POWER_SUPPLY_INFORMATION = 0x00,
    DC_OUTPUT = 0x01,
    DC_LOAD = 0x02,
    MANAGEMENT_ACCESS = 0x03,
    EXTENDED_DC_OUTPUT = 0x09,
};

inspect::FruRecordContent record(RecordType type, const Bytes& data)
{
    return {type, 2, textOf(data)};
}

Bytes numbers(const std::vector<unsigned int>& values)
{
    Bytes bytes;
    for (const unsigned int value : values) {
        bytes = join(bytes, lowFirst(value, 2));
    }
    return bytes;
}

/// 1100 W at 90 to 264 V, 47 to 63 Hz; hot swap.
inspect::FruRecordContent powerSupplyInformation()
{
    constexpr unsigned int HOLDS_UP_1_SECOND = 1U << 12;
    Bytes data = numbers({1100, 1200});
    data = join(data, {30, 5}); // A, ms of inrush
    data = join(data, numbers({9000, 26400, 0, 0}));
    data = join(data, {47, 63, 12, 0x0F});
    data = join(data, numbers({HOLDS_UP_1_SECOND | 1200}));
    data = join(data, {0, 0, 0, 0});
    return record(POWER_SUPPLY_INFORMATION, data);
}

/// 12 V: in steps of 100 mA up to 91.6 A.
inspect::FruRecordContent mainOutput()
{
    constexpr unsigned char OUTPUT_1_OF_100_MA = 0x11;
    return record(EXTENDED_DC_OUTPUT,
                  join({OUTPUT_1_OF_100_MA}, numbers({1200, 1140, 1260, 120, 0, 916})));
}

inspect::FruRecordContent standbyOutput()
{
    constexpr unsigned char STANDBY_OUTPUT_2 = 0x82;
    return record(DC_OUTPUT, join({STANDBY_OUTPUT_2}, numbers({1200, 1140, 1260, 120, 0, 3000})));
}

inspect::FruRecordContent load(unsigned int milliamperes)
{
    return record(DC_LOAD, join({1}, numbers({1200, 1140, 1260, 120, 1000, milliamperes})));
}

inspect::FruRecordContent systemName(const std::string& name)
{
    constexpr unsigned char SYSTEM_NAME = 2;
    return record(MANAGEMENT_ACCESS, join({SYSTEM_NAME}, Bytes(name.begin(), name.end())));
}

inspect::FruRecordContent systemGuid()
{
    constexpr unsigned char SYSTEM_GUID = 7;
    return record(MANAGEMENT_ACCESS, {SYSTEM_GUID, 0x45, 0x58, 0x41, 0x4D, 0x50, 0x4C, 0x45, 0x40,
                                      0x80, 0x26, 0x11, 0x14, 0x00, 0x00, 0x00, 0x17});
}

/// The internal use area of a system board, in the first of the two layouts: length, serial number,
/// checksum.
std::string internalUse(const Unit& unit)
{
    constexpr unsigned int UNITS_OF_8_BYTES = 14;
    constexpr unsigned int SERIAL = 3;
    Bytes area(UNITS_OF_8_BYTES * 8, 0);
    put(area, 0, {1, UNITS_OF_8_BYTES});
    putText(area, SERIAL, unit.serialNumber);
    area.back() = balanceOf(area);
    return textOf(area);
}

File image(const std::string& name, const inspect::FruContent& content)
{
    const std::string bytes = inspect::buildFruImage(content, DEVICE_SIZE);
    return {"fru/" + name + ".bin", Bytes(bytes.begin(), bytes.end())};
}

}

Files fruImages()
{
    Files files;
    inspect::FruContent server;
    server.areas = {chassisArea(), productArea(SERVER, "A1", "RACK-07-U12")};
    server.records = {systemName("example-server-1"), systemGuid()};
    files.push_back(image("chassis", server));
    for (unsigned int i = 0; i < BOARDS; ++i) {
        inspect::FruContent board;
        board.internalUse = internalUse(SYSTEM_BOARDS[i]);
        board.areas = {boardArea(SYSTEM_BOARDS[i], i), productArea(SYSTEM_BOARDS[i], "B3", "")};
        board.records = {load(40000)};
        files.push_back(image("system-board" + std::to_string(i), board));
    }
    constexpr unsigned int REPLACEMENT_LATER = 190; // It was made in August.
    for (unsigned int i = 0; i < std::size(POWER_SUPPLIES); ++i) {
        inspect::FruContent supply;
        supply.areas = {boardArea(POWER_SUPPLIES[i], i * REPLACEMENT_LATER),
                        productArea(POWER_SUPPLIES[i], "A2", "")};
        supply.records = {powerSupplyInformation(), mainOutput(), standbyOutput()};
        files.push_back(image("power-supply" + std::to_string(i), supply));
    }
    inspect::FruContent tray;
    tray.areas = {boardArea(FAN_TRAY, 3), productArea(FAN_TRAY, "A1", "")};
    tray.records = {load(9000)};
    files.push_back(image("fan-tray", tray));
    inspect::FruContent ioUnit;
    ioUnit.areas = {boardArea(IO_UNIT, 4), productArea(IO_UNIT, "A4", "")};
    ioUnit.records = {load(12000)};
    files.push_back(image("io-unit", ioUnit));
    return files;
}

}
