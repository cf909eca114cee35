// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>
#include <memory>

#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/bytes/Text.h>

#include "../Commands.h"
#include "../FileResults.h"
#include "../Files.h"
#include "../print/Table.h"
#include "SpdJson.h"

namespace recordkit::tool {

namespace {

struct Options {
    std::vector<std::string> files;
    bool isJson = false;
};

std::string numberText(unsigned int number, const char* unit)
{
    return number == 0 ? "reserved" : fmt::format("{}{}", number, unit);
}

std::string capacityText(const Spd& spd)
{
    return spd.megabytes == 0 ? "unknown" : fmt::format("{} MB", spd.megabytes);
}

std::string crcText(const Spd& spd)
{
    return spd.isCrcRight()
               ? fmt::format("{:04X}h", spd.storedCrc)
               : fmt::format("{:04X}h WRONG, expected {:04X}h", spd.storedCrc, spd.expectedCrc);
}

std::string busText(const Spd& spd)
{
    return numberText(spd.busWidth, spd.eccWidth == 0 ? " bits" : " + 8 bits");
}

void printOne(const Spd& spd)
{
    fmt::print("capacity      {}\n", capacityText(spd));
    fmt::print("module        {}\n", spd.moduleType);
    fmt::print("ranks         {}\n", numberText(spd.ranks, ""));
    fmt::print("device width  {}\n", numberText(spd.deviceWidth, " bits"));
    fmt::print("bus width     {}\n", busText(spd));
    fmt::print("density       {}\n", numberText(spd.densityMegabits, " Mbit"));
    if (spd.hasManufacturerData) {
        fmt::print("serial        {:08X}\n", spd.serialNumber);
        fmt::print("part number   {}\n", printable(spd.partNumber));
    } else {
        fmt::print("serial        -\npart number   -\n");
    }
    fmt::print("codes         DIMM size {}, DRAM size {}, rank field {}\n", spd.dimmSize,
               spd.dramSize, spd.rankField);
    fmt::print("CRC           {}\n", crcText(spd));
}

/// Modules in a table, followed by the total.
class ModuleTable {
public:
    explicit ModuleTable(bool hasColour)
        : table({{"CAPACITY", 9},
                 {"MODULE", 12},
                 {"RANKS", 5},
                 {"DEVICE", 8},
                 {"BUS", 11},
                 {"DENSITY", 10},
                 {"SERIAL", 8},
                 {"PART NUMBER", 18},
                 {"CODES", 6},
                 {"CRC", 5},
                 {"FILE", 0}},
                hasColour)
    {
    }

    void add(const Spd& spd, const std::string& file)
    {
        ++modules;
        megabytes += spd.megabytes;
        table.append(
            {{capacityText(spd)},
             {spd.moduleType},
             {numberText(spd.ranks, "")},
             {numberText(spd.deviceWidth, " bits")},
             {busText(spd)},
             {numberText(spd.densityMegabits, " Mbit")},
             {spd.hasManufacturerData ? fmt::format("{:08X}", spd.serialNumber) : "-"},
             {spd.hasManufacturerData ? printable(spd.partNumber) : "-"},
             {fmt::format("{}/{}", spd.dimmSize, spd.dramSize)},
             {spd.isCrcRight() ? "right" : "WRONG", spd.isCrcRight() ? Style::PLAIN : Style::ALARM},
             {file}},
            lines);
    }

    std::string text() const
    {
        return table.header() + lines + fmt::format("{} modules, {} MB\n", modules, megabytes);
    }

private:
    Table table;
    std::string lines;
    unsigned int modules = 0;
    unsigned long megabytes = 0;
};

void show(const Options& options, bool hasColour)
{
    const bool hasSeveral = options.files.size() > 1;
    ModuleTable table(hasColour);
    Json all = Json::array();
    FileResults results;
    for (const std::string& file : options.files) {
        results.add(file, [&]() -> std::vector<std::string> {
            Spd spd;
            const std::vector<unsigned char> bytes = parseImage(inputName(file), readInput(file));
            try {
                spd = parseSpd(bytes);
            } catch (const Error& e) {
                throw dataError(inputName(file) + ": " + e.what());
            }
            if (options.isJson) {
                Json json;
                json["file"] = inputName(file);
                json.update(toJson(spd));
                all.push_back(json);
            } else if (hasSeveral) {
                table.add(spd, inputName(file));
            } else {
                printOne(spd);
            }
            if (!spd.isCrcRight()) {
                return {"CRC"};
            }
            return {};
        });
    }
    if (options.isJson) {
        fmt::print("{}", indented(hasSeveral || all.empty() ? all : all[0]));
    } else if (hasSeveral) {
        fmt::print("{}", table.text());
    }
    results.finish();
}

}

void addSpdCommands(CLI::App& app, Globals& globals)
{
    CLI::App* const spd = addCommand(app, "spd", "Show memory modules by their SPD data",
                                     "recordkit spd show dimm0.bin dimm1.bin");
    spd->require_subcommand(1);
    const auto options = std::make_shared<Options>();
    CLI::App* const command =
        addCommand(*spd, "show", "Show DDR3 modules: capacity, ranks, widths, serial, part number",
                   "recordkit spd show dimm0.bin; i2cdump -y 0 0x50 | recordkit spd show -");
    command
        ->add_option("FILE", options->files,
                     "SPD image, or a hex dump of one; - for standard input")
        ->required();
    command->add_flag("--json", options->isJson, "One JSON object; an array for several files");
    command->callback([options, &globals] { show(*options, globals.wantsColour()); });
}

}
