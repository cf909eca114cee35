// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>

#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/memory/Spd.h>

#include "../Commands.h"
#include "../Files.h"
#include "../cli/Arguments.h"
#include "../print/Listing.h"
#include "../print/Output.h"
#include "../print/Problems.h"

namespace recordkit::tool {

namespace {

struct Module {
    std::string path;
    std::string file;
    Spd spd;

    std::string serial() const { return fmt::format("{:08X}", spd.serialNumber); }
};

/// Null for a number that a reserved code does not give.
Value known(unsigned int number)
{
    return valueIf(number != 0, number);
}

Cell numberCell(unsigned int number, const char* unit)
{
    return {number == 0 ? "reserved" : fmt::format("{}{}", number, unit)};
}

Cell crcCell(const Module& module)
{
    return checkCell(module.spd.isCrcRight(), "right", "WRONG");
}

constexpr Column<Module> COLUMNS[] = {
    {"file", nullptr, 0, [](const Module& module) { return Value(module.file); }},
    {"file_bytes", nullptr, 0,
     [](const Module& module) { return textOrNull(inputNameBytes(module.path)); }},
    {"capacity_mb", "CAPACITY", 9, [](const Module& module) { return known(module.spd.megabytes); },
     [](const Module& module) {
         return Cell{module.spd.megabytes == 0 ? "unknown"
                                               : fmt::format("{} MB", module.spd.megabytes)};
     }},
    {"module_type", "MODULE", 12,
     [](const Module& module) { return Value(module.spd.moduleType); }},
    {"ranks", "RANKS", 8, [](const Module& module) { return known(module.spd.ranks); },
     [](const Module& module) { return numberCell(module.spd.ranks, ""); }},
    {"device_width", "DEVICE", 8,
     [](const Module& module) { return known(module.spd.deviceWidth); },
     [](const Module& module) { return numberCell(module.spd.deviceWidth, " bits"); }},
    {"bus_width", "BUS", 11, [](const Module& module) { return known(module.spd.busWidth); },
     [](const Module& module) {
         return numberCell(module.spd.busWidth, module.spd.eccWidth == 0 ? " bits" : " + 8 bits");
     }},
    {"ecc_width", nullptr, 0, [](const Module& module) { return Value(module.spd.eccWidth); }},
    {"density_mbit", "DENSITY", 10,
     [](const Module& module) { return known(module.spd.densityMegabits); },
     [](const Module& module) { return numberCell(module.spd.densityMegabits, " Mbit"); }},
    {"serial_number", "SERIAL", 8,
     [](const Module& module) { return valueIf(module.spd.hasManufacturerData, module.serial()); }},
    {"part_number", "PART NUMBER", 18,
     [](const Module& module) {
         return valueIf(module.spd.hasManufacturerData, module.spd.partNumber);
     }},
    {"rank_field", nullptr, 0, [](const Module& module) { return Value(module.spd.rankField); }},
    {"dimm_size_code", "CODES", 6, [](const Module& module) { return Value(module.spd.dimmSize); },
     [](const Module& module) {
         return Cell{fmt::format("{}/{}", module.spd.dimmSize, module.spd.dramSize)};
     }},
    {"dram_size_code", nullptr, 0, [](const Module& module) { return Value(module.spd.dramSize); }},
    {"crc_stored", nullptr, 0, [](const Module& module) { return Value(module.spd.storedCrc); }},
    {"crc_expected", nullptr, 0,
     [](const Module& module) { return Value(module.spd.expectedCrc); }},
    {"crc_right", "CRC", 5, [](const Module& module) { return Value(module.spd.isCrcRight()); },
     crcCell},
    {nullptr, "FILE", 0, nullptr, [](const Module& module) { return Cell{module.file}; }},
};

/// What a narrow terminal shows first.
std::vector<Wish> wishes()
{
    return {{"file", 16},         {"capacity_mb", 9},   {"part_number", 18},  {"crc_right", 5},
            {"serial_number", 8}, {"module_type", 7},   {"ranks", 5},         {"device_width", 7},
            {"bus_width", 7},     {"density_mbit", 10}, {"dimm_size_code", 6}};
}

void run(const Arguments& arguments)
{
    Listing<Module> listing(COLUMNS, arguments.layout(), wishes());
    Problems problems;
    std::size_t modules = 0;
    unsigned long megabytes = 0;
    for (const std::string& file : arguments.texts("FILE")) {
        const std::string name = inputName(file);
        problems.run(name, [&]() -> std::vector<std::string> {
            const Bytes image = parseImage(name, readInput(file, DUMP_LIMIT));
            if (image.size() > SPD_LIMIT) {
                throw DataError(fmt::format("{} bytes, expected at most {}", image.size(),
                                            std::size_t{SPD_LIMIT}));
            }
            const Spd spd = parseSpd(image);
            listing.add({file, name, spd});
            ++modules;
            megabytes += spd.megabytes;
            if (!spd.isCrcRight()) {
                return {fmt::format("the CRC is {:04X}h, expected {:04X}h", spd.storedCrc,
                                    spd.expectedCrc)};
            }
            return {};
        });
    }
    listing.finish();
    if (arguments.format() == Format::TABLE && modules > 1) {
        print(fmt::format("{}, {} MB\n", counted(modules, "module"), megabytes));
    }
    problems.finish();
}

}

Command spdShowCommand()
{
    return {"spd show",
            "Show DDR3 modules: capacity, ranks, widths, serial, part number",
            "recordkit spd show dimm0.bin; i2cdump -y 0 0x50 | recordkit spd show -",
            {argument("FILE", "SPD image, or a hex dump of one; - for standard input").many()},
            Answer::TABLE,
            run,
            "A hex dump is what i2cdump, xxd or hexdump -C prints. The total follows several "
            "modules. A file that is not a DDR3 module, or has a wrong CRC, is reported."};
}

}
