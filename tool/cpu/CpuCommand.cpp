// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>

#include <recordkit/host/Machine.h>
#include <recordkit/inspect/fru/CpuRom.h>

#include "../Answers.h"
#include "../Commands.h"
#include "../Files.h"
#include "../cli/Arguments.h"
#include "../print/Json.h"
#include "../print/Listing.h"
#include "../print/Output.h"
#include "../print/Problems.h"

namespace recordkit::tool {

namespace {

/// Part numbers depend on the type of the system board.
void setBoardType(unsigned char board, unsigned long type)
{
    TAVLib::host::Machine machine = TAVLib::host::machine();
    machine.systemBoardTypes.resize(board + 1U);
    machine.systemBoardTypes[board] = static_cast<int>(type);
    TAVLib::host::setMachine(machine);
}

template <typename Content> Value orNull(const std::optional<Content>& content)
{
    return content ? Value(*content) : Value();
}

/// What identifies a processor: key in JSON, title, value.
struct Fact {
    const char* key;
    const char* title;
    Value value;
};

std::vector<Fact> factsOf(const CpuRom& rom)
{
    return {{"processor_code", "processor code", orNull(rom.processorCode)},
            {"model_name", "model name", orNull(rom.modelName)},
            {"model_name_markup", "with markup", orNull(rom.modelNameMarkup)},
            {"model_type", "model type", orNull(rom.modelType)},
            {"stepping", "stepping", orNull(rom.stepping)},
            {"part_number", "part number", orNull(rom.partNumber)},
            {"cache_kb", "cache (KB)", orNull(rom.cacheKilobytes)},
            {"speed_mhz", "speed (MHz)", orNull(rom.megahertz)}};
}

constexpr Column<CpuBlock> BLOCKS[] = {
    {"name", "BLOCK", 12, [](const CpuBlock& block) { return Value(block.name); }},
    {"offset", "OFFSET", 6, [](const CpuBlock& block) { return Value(block.offset); }},
    {"size", "SIZE", 6, [](const CpuBlock& block) { return orNull(block.size); }},
    {"checksum_right", "CHECKSUM", 0,
     [](const CpuBlock& block) { return valueIf(block.size.has_value(), block.isRight()); },
     [](const CpuBlock& block) {
         return block.size ? checkCell(block.isRight(), "right", "WRONG") : Cell{"-"};
     }},
};

void printText(const CpuRom& rom)
{
    std::string text;
    for (const Fact& fact : factsOf(rom)) {
        text += factLine(fact.title, cellText(fact.value), 16);
    }
    std::string core;
    for (const CpuCoreField& field : rom.core) {
        core += fmt::format("{}{}={}", core.empty() ? "" : " ", field.name,
                            cellText(orNull(field.bytes)));
    }
    print(text + factLine("core data", core, 16) + "\n");
    printListing(rom.blocks, BLOCKS, Format::TABLE);
}

void run(const Arguments& arguments)
{
    const std::string file = inputName(arguments.text("ROM"));
    setBoardType(arguments.board(), arguments.number("--sb-type"));
    const std::string bytes = readInput(arguments.text("ROM"), ROM_LIMIT);
    const CpuRom rom = naming(file + ": not a processor ROM",
                              [&] { return readCpuRom(bytes, arguments.board()); });
    if (arguments.isJson()) {
        print(indentedJson(processorObject(rom, bytes.size())));
    } else {
        printText(rom);
    }
    Problems problems;
    problems.run(file, [&] { return rom.problems; });
    problems.finish();
}

}

Object processorObject(const CpuRom& rom, std::size_t size)
{
    Object object;
    for (const Fact& fact : factsOf(rom)) {
        object.push_back({fact.key, fact.value});
    }
    Object core;
    for (const CpuCoreField& field : rom.core) {
        core.push_back({field.name, orNull(field.bytes)});
    }
    object.push_back({"core", core});
    object.push_back({"rom_size", size});
    object.push_back({"blocks", listOf(rom.blocks, [](const CpuBlock& block) {
                          return Object{
                              {"name", block.name},
                              {"offset", block.offset},
                              {"size", orNull(block.size)},
                              {"checksum_right", valueIf(block.size.has_value(), block.isRight())}};
                      })});
    object.push_back({"problems", rom.problems});
    return object;
}

Command cpuCommand()
{
    return {"cpu",
            "Identify the processor of an information ROM, and show what the ROM contains",
            "recordkit --root examples/board cpu examples/data/cpu/sample.bin",
            {argument("ROM", "ROM image or kernel node; - for standard input"), board(),
             number("--sb-type", "N", 0, 0xFF,
                    "Type of that board; 2 takes part numbers from cpu_ca_number_sb3.csv")
                 .by("0")},
            Answer::OBJECT,
            run,
            "Name, stepping and part number come from the tables below etc/tav/common of the root, "
            "the other values from the ROM. Wrong checksums are reported; bytes of which the "
            "header and "
            "most blocks have a wrong one are refused, because they are not a processor ROM."};
}

}
