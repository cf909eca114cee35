// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/words/DeviceTypes.h>

#include <algorithm>
#include <iterator>

#include <fmt/format.h>

namespace recordkit::inspect {

namespace {

struct Row {
    unsigned char type;
    const char* name;
};

// clang-format off
constexpr Row ROWS[] = {
    {0x02, "DS1624 temperature sensor"},
    {0x03, "DS1621 temperature sensor"},
    {0x04, "LM75 temperature sensor"},
    {0x05, "Heceta ASIC"},
    {0x08, "EEPROM 24C01"},
    {0x09, "EEPROM 24C02"},
    {0x0A, "EEPROM 24C04"},
    {0x0B, "EEPROM 24C08"},
    {0x0C, "EEPROM 24C16"},
    {0x0D, "EEPROM 24C17"},
    {0x0E, "EEPROM 24C32"},
    {0x0F, "EEPROM 24C64"},
    {0x10, "FRU inventory device of a controller"},
    {0x14, "PCF8570 RAM"},
    {0x15, "PCF8573 clock and calendar"},
    {0x16, "PCF8574A I/O port"},
    {0x17, "PCF8583 clock and calendar"},
    {0x18, "PCF8593 clock and calendar"},
    {0x19, "clock and calendar"},
    {0x1A, "PCF8591 A/D and D/A converter"},
    {0x1B, "I/O port"},
    {0x1C, "A/D converter"},
    {0x1D, "D/A converter"},
    {0x1E, "A/D and D/A converter"},
    {0x1F, "LCD controller"},
    {0x20, "core logic"},
    {0x21, "LMC6874 intelligent battery controller"},
    {0x22, "intelligent battery controller"},
    {0x23, "combo management ASIC"},
    {0x24, "Maxim 1617 temperature sensor"},
    {0xBF, "other device"},
};
// clang-format on

constexpr const char* CONTENTS[] = {"unspecified", "DIMM memory ID", "IPMI FRU inventory",
                                    "system processor cartridge FRU or PIROM"};
constexpr unsigned char FIRST_EEPROM = 0x08;
constexpr unsigned char LAST_EEPROM = 0x0F;
constexpr unsigned char FRU_OF_CONTROLLER = 0x10;
constexpr unsigned char FIRST_OEM = 0xC0;

}

std::string deviceTypeName(unsigned char type)
{
    if (type >= FIRST_OEM) {
        return fmt::format("OEM {:02X}h", type);
    }
    const Row* const found =
        std::lower_bound(std::begin(ROWS), std::end(ROWS), type,
                         [](const Row& row, unsigned char wanted) { return row.type < wanted; });
    return found != std::end(ROWS) && found->type == type ? found->name : "reserved";
}

std::string deviceModifierName(unsigned char type, unsigned char modifier)
{
    if (type == FRU_OF_CONTROLLER && modifier == 0) {
        return CONTENTS[2];
    }
    if (type < FIRST_EEPROM || (type > LAST_EEPROM && type != FRU_OF_CONTROLLER)) {
        return "";
    }
    if (type == FRU_OF_CONTROLLER && modifier == 0xFF) {
        return CONTENTS[0];
    }
    return modifier < std::size(CONTENTS) ? CONTENTS[modifier] : "reserved";
}

}
