// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <iterator>
#include <utility>

#include <fmt/format.h>

#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/memory/Spd.h>

#include "../Answers.h"
#include "../Commands.h"
#include "../Files.h"
#include "../cli/Arguments.h"
#include "../print/Listing.h"
#include "../print/Output.h"
#include "../print/Problems.h"
#include "SpdFile.h"

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
    return checkCell(module.spd.areCrcsRight(), "right", "WRONG");
}

/// The part number without its padding.
Cell partCell(const Module& module)
{
    const std::string& part = module.spd.partNumber;
    return {module.spd.hasManufacturerData
                ? cellText(Value(part.substr(0, part.find_last_not_of(' ') + 1)))
                : "-"};
}

template <SpdFact FACT> Cell factCell(const Module& module)
{
    return {cellText(Value(module.spd.get(FACT)))};
}

/// "DDR4" of "DDR4 SDRAM".
Cell typeCell(const Module& module)
{
    const std::string name = cellText(Value(module.spd.get(SpdFact::MEMORY_TYPE)));
    return {name.substr(0, name.find(' '))};
}

Cell speedCell(const Module& module)
{
    const Value speed = module.spd.get(SpdFact::SPEED);
    return {speed.isNull() ? "-" : cellText(speed) + " MT/s"};
}

template <unsigned short SpdCrc::*NUMBER> Value moduleCrc(const Module& module)
{
    return module.spd.moduleCrc ? Value((*module.spd.moduleCrc).*NUMBER) : Value();
}

constexpr Column<Module> OWN_COLUMNS[] = {
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
         const unsigned int ecc = module.spd.eccWidth;
         return numberCell(module.spd.busWidth,
                           ecc == 0 ? " bits" : fmt::format(" + {} bits", ecc).c_str());
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
     },
     partCell},
    {"rank_field", nullptr, 0,
     [](const Module& module) { return valueIf(module.spd.hasCodes, module.spd.rankField); }},
    {"dimm_size_code", "CODES", 6,
     [](const Module& module) { return valueIf(module.spd.hasCodes, module.spd.dimmSize); },
     [](const Module& module) {
         return Cell{module.spd.hasCodes
                         ? fmt::format("{}/{}", module.spd.dimmSize, module.spd.dramSize)
                         : "-"};
     }},
    {"dram_size_code", nullptr, 0,
     [](const Module& module) { return valueIf(module.spd.hasCodes, module.spd.dramSize); }},
    {"crc_stored", nullptr, 0, [](const Module& module) { return Value(module.spd.storedCrc); }},
    {"crc_expected", nullptr, 0,
     [](const Module& module) { return Value(module.spd.expectedCrc); }},
    {"crc_right", "CRC", 5, [](const Module& module) { return Value(module.spd.isCrcRight()); },
     crcCell},
    {"module_crc_stored", nullptr, 0, moduleCrc<&SpdCrc::stored>},
    {"module_crc_expected", nullptr, 0, moduleCrc<&SpdCrc::expected>},
    {"module_crc_right", nullptr, 0,
     [](const Module& module) {
         return module.spd.moduleCrc ? Value(module.spd.moduleCrc->isRight()) : Value();
     }},
    {nullptr, "TYPE", 7, nullptr, typeCell},
    {nullptr, "SPEED", 9, nullptr, speedCell},
    {nullptr, "MAKER", 17, nullptr, factCell<SpdFact::MODULE_MAKER>},
};

constexpr Column<Module> FILE_COLUMN = {nullptr, "FILE", 0, nullptr,
                                        [](const Module& module) { return Cell{module.file}; }};

constexpr std::size_t FACTS = static_cast<std::size_t>(SpdFact::COUNT);
constexpr std::size_t COUNT = std::size(OWN_COLUMNS) + FACTS + 1;

/// Every column: a fact's key is that of its table, so it must be known when the table is made.
struct Columns {
    Column<Module> all[COUNT] = {};

    template <std::size_t... INDEX> explicit Columns(std::index_sequence<INDEX...> /*facts*/)
    {
        std::copy(std::begin(OWN_COLUMNS), std::end(OWN_COLUMNS), std::begin(all));
        const Column<Module> facts[] = {
            {spdFactKey(static_cast<SpdFact>(INDEX)), nullptr, 0, [](const Module& module) {
                 return Value(module.spd.get(static_cast<SpdFact>(INDEX)));
             }}...};
        std::copy(std::begin(facts), std::end(facts), std::begin(all) + std::size(OWN_COLUMNS));
        all[COUNT - 1] = FILE_COLUMN;
    }
};

Columns allColumns()
{
    return Columns{std::make_index_sequence<FACTS>()};
}

/// What a narrow terminal shows first.
std::vector<Wish> wishes()
{
    return {{"file", 16},         {"capacity_mb", 9},   {"part_number", 18},   {"crc_right", 5},
            {"serial_number", 8}, {"module_type", 7},   {"ranks", 5},          {"device_width", 7},
            {"bus_width", 7},     {"density_mbit", 10}, {"dimm_size_code", 6}, {"type", 5},
            {"speed", 9},         {"maker", 8}};
}

void run(const Arguments& arguments)
{
    const Columns columns = allColumns();
    Listing<Module> listing(columns.all, arguments.layout(), wishes());
    Problems problems;
    std::size_t modules = 0;
    unsigned long megabytes = 0;
    for (const std::string& file : arguments.texts("FILE")) {
        const std::string name = inputName(file);
        problems.run(name, [&]() -> std::vector<std::string> {
            const Spd spd = parseSpd(readSpdFile(file));
            listing.add({file, name, spd});
            ++modules;
            megabytes += spd.megabytes;
            return spdProblems(spd);
        });
    }
    listing.finish();
    if (arguments.format() == Format::TABLE && modules > 1) {
        print(fmt::format("{}, {} MB\n", counted(modules, "module"), megabytes));
    }
    problems.finish();
}

}

Object moduleObject(const std::string& path, const Spd& spd)
{
    static const Columns COLUMNS = allColumns();
    return objectOf(Module{path, inputName(path), spd}, COLUMNS.all);
}

Command spdShowCommand()
{
    return {
        "spd show",
        "Show DDR3 to DDR5 and LPDDR3 to LPDDR5X modules: capacity, ranks, speed, maker, part",
        "recordkit spd show dimm0.bin; i2cdump -y 0 0x50 | recordkit spd show -",
        {argument("FILE", "SPD image, or a hex dump of one; - for standard input").many()},
        Answer::TABLE,
        run,
        "A hex dump is what i2cdump, xxd or hexdump -C prints; outputs of i2cdump may follow "
        "each other, a page each. The total follows several "
        "modules. --json has a key for every other fact of a module, among them times in ps and "
        "in clocks; --columns takes them too. A file that is not such a module, has a wrong "
        "CRC, or repeats its first 256 bytes, is reported."};
}

}
