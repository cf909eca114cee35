// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>
#include <functional>
#include <memory>

#include <recordkit/fru/FRUData.h>
#include <recordkit/host/Machine.h>
#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/bytes/Text.h>
#include <recordkit/inspect/fru/ImageDevice.h>
#include <recordkit/platform/PException.h>
#include <recordkit/util/Util.h>

#include "../Commands.h"
#include "../Errors.h"
#include "../Files.h"
#include "../print/Json.h"
#include "../print/Table.h"

namespace recordkit::tool {

using TAVLib::RecordKit::Util;

namespace {

struct Options {
    std::string file;
    BoardOption board;
    int boardType = 0;
    bool isJson = false;
};

struct Fact {
    const char* key; ///< in JSON
    const char* title;
    std::function<Json()> read;
};

struct BlockName {
    FRU_AREA area;
    const char* name;
};

struct CoreItem {
    FRU_ITEM item;
    const char* name;
};

// clang-format off
constexpr BlockName BLOCKS[] = {
    {FRU_AREA_CPU_PROCESSOR, "processor"},
    {FRU_AREA_CPU_CORE, "core"},
    {FRU_AREA_CPU_CACHE, "cache"},
    {FRU_AREA_CPU_PACKAGE, "package"},
    {FRU_AREA_CPU_PART_NUMBER, "part-number"},
    {FRU_AREA_CPU_THERMAL, "thermal"},
    {FRU_AREA_CPU_FEATURE, "feature"},
    {FRU_AREA_CPU_OTHER, "other"},
};
constexpr CoreItem CORE_ITEMS[] = {
    {FRU_ITEM_CPU_CORE0, "core0"},
    {FRU_ITEM_CPU_MODEL, "model"},
    {FRU_ITEM_CPU_CORE_FLAG, "flag"},
    {FRU_ITEM_CPU_CORE_HIGH, "high"},
    {FRU_ITEM_CPU_CORE_LOW2, "low2"},
    {FRU_ITEM_CPU_CORE1, "core1"},
    {FRU_ITEM_CPU_CORE2, "core2"},
    {FRU_ITEM_CPU_CORE3, "core3"},
    {FRU_ITEM_CPU_CORE4, "core4"},
    {FRU_ITEM_CPU_CORE5, "core5"},
    {FRU_ITEM_CPU_CORE6, "core6"},
};
// clang-format on

/// One processor ROM, read through the library.
class Rom {
public:
    Rom(const Options& options, unsigned char boardNumber)
        : device(readInput(options.file)), fru(device, FRU_CPU_ROM), board(boardNumber)
    {
    }

    std::vector<Fact> facts()
    {
        return {
            {"processor_code", "processor code", [this] { return Json(toUtf8(code())); }},
            {"model_name", "model name", [this] { return name(Util::DISPLAY_MODE_PLAIN); }},
            {"model_name_markup", "with markup",
             [this] { return name(Util::DISPLAY_MODE_MARKUP); }},
            {"model_type", "model type", [this] { return Json(Util::getCPUModelType(fru)); }},
            {"stepping", "stepping", [this] { return Json(toUtf8(Util::getCPUStepping(fru))); }},
            {"part_number", "part number",
             [this] { return Json(toUtf8(Util::getCPUPartNumber(fru, board))); }},
            {"cache_kb", "cache (KB)", [this] { return Json(Util::getCPUCache(fru)); }},
            {"speed_mhz", "speed (MHz)",
             [this] {
                 return Json(
                     Util::getBCDtoHexValue(item(FRU_AREA_CPU_PROCESSOR, FRU_ITEM_CPU_SPEED)));
             }},
        };
    }

    std::vector<Fact> coreFacts()
    {
        std::vector<Fact> all;
        for (const CoreItem& each : CORE_ITEMS) {
            all.push_back({each.name, each.name,
                           [this, each] { return toHex(item(FRU_AREA_CPU_CORE, each.item)); }});
        }
        return all;
    }

    /// Offset of a block; 0 for one that the ROM does not have.
    unsigned int offsetOf(FRU_AREA area) { return fru.getAreaOffset(area); }

    unsigned int sizeOf(FRU_AREA area)
    {
        return fru.getAreaObject(area, FRUArea::CSUM_IGNORE)->getSize();
    }

    std::size_t romSize() const { return device.getBytes().size(); }

private:
    std::string item(FRU_AREA area, FRU_ITEM id)
    {
        std::string bytes;
        fru.getItem(area, id, bytes, FRUArea::CSUM_IGNORE);
        return bytes;
    }
    std::string code() { return item(FRU_AREA_CPU_PROCESSOR, FRU_ITEM_CPU_SIGNATURE); }
    Json name(Util::DISPLAY_MODE mode) { return toUtf8(Util::getCPUModelName(fru, mode)); }

    ImageDevice device;
    FRUData fru;
    unsigned char board;
};

/// The value that is read, or null and the reason why it cannot be read.
Json valueOf(const Fact& fact, std::vector<std::string>& problems)
{
    try {
        return fact.read();
    } catch (const TAVLib::PException& e) {
        problems.push_back(fmt::format("{}: {}", fact.title, e.getMessage()));
    } catch (const Error& e) {
        problems.push_back(fmt::format("{}: {}", fact.title, e.what()));
    }
    return nullptr;
}

Json readAll(const std::vector<Fact>& facts, std::vector<std::string>& problems)
{
    Json json;
    for (const Fact& fact : facts) {
        json[fact.key] = valueOf(fact, problems);
    }
    return json;
}

Json blocksOf(Rom& rom, std::vector<std::string>& problems)
{
    Json blocks = Json::array();
    for (const BlockName& block : BLOCKS) {
        const unsigned int offset = rom.offsetOf(block.area);
        if (offset == 0) {
            continue;
        }
        Json json;
        json["name"] = block.name;
        json["offset"] = offset;
        json["size"] = valueOf(
            {block.name, block.name, [&] { return Json(rom.sizeOf(block.area)); }}, problems);
        blocks.push_back(json);
    }
    return blocks;
}

void printText(const Json& json, const std::vector<Fact>& facts, bool hasColour)
{
    for (const Fact& fact : facts) {
        fmt::print("{:<15} {}\n", fact.title, cellText(json[fact.key]));
    }
    fmt::print("{:<15}", "core data");
    for (const auto& [name, value] : json["core"].items()) {
        fmt::print(" {}={}", name, cellText(value));
    }
    const Table table({{"BLOCK", 12}, {"OFFSET", 6}, {"SIZE", 0}}, hasColour);
    std::string text = "\n\n" + table.header();
    for (const Json& block : json["blocks"]) {
        table.append({{block["name"].get<std::string>()},
                      {cellText(block["offset"])},
                      {cellText(block["size"])}},
                     text);
    }
    fmt::print("{}", text);
}

void show(const Options& options, const Globals& globals)
{
    const unsigned char board = options.board.get(globals);
    TAVLib::host::Machine machine = TAVLib::host::machine();
    machine.systemBoardTypes.resize(board + 1U);
    machine.systemBoardTypes[board] = options.boardType;
    TAVLib::host::setMachine(machine);

    std::unique_ptr<Rom> rom;
    const std::string file = inputName(options.file);
    try {
        rom = std::make_unique<Rom>(options, board);
    } catch (const TAVLib::PException& e) {
        throw dataError(fmt::format("{}: {}", file, e.getMessage()));
    } catch (const Error& e) {
        if (statusOf(e) != EXIT_DATA) {
            throw;
        }
        throw dataError(fmt::format("{}: no processor ROM: {}", file, e.what()));
    }
    std::vector<std::string> problems;
    const std::vector<Fact> facts = rom->facts();
    Json json = readAll(facts, problems);
    json["core"] = readAll(rom->coreFacts(), problems);
    json["rom_size"] = rom->romSize();
    json["blocks"] = blocksOf(*rom, problems);
    json["problems"] = problems;
    if (options.isJson) {
        fmt::print("{}", indented(json));
    } else {
        printText(json, facts, globals.wantsColour());
        for (const std::string& problem : problems) {
            fmt::print("PROBLEM  {}\n", problem);
        }
    }
    if (!problems.empty()) {
        throw dataError(file + ": damaged, or not a whole processor ROM");
    }
}

}

void addCpuCommand(CLI::App& app, Globals& globals)
{
    const auto options = std::make_shared<Options>();
    CLI::App* const command = addCommand(
        app, "cpu", "Name the processor of an information ROM, and show what the ROM holds",
        "recordkit --root examples/board cpu examples/data/cpu/sample.bin");
    command->add_option("ROM", options->file, "ROM image or kernel node; - for standard input")
        ->required();
    options->board.addTo(*command);
    constexpr int LARGEST_TYPE = 255;
    command
        ->add_option("--sb-type", options->boardType,
                     "Type of that board; 2 takes part numbers from cpu_ca_number_sb3.csv")
        ->check(CLI::Range(0, LARGEST_TYPE))
        ->capture_default_str()
        ->type_name("N");
    command->add_flag("--json", options->isJson, "One JSON object");
    command->callback([options, &globals] { show(*options, globals); });
}

}
