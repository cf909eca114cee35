// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/fru/CpuRom.h>

#include <algorithm>

#include <fmt/format.h>

#include <recordkit/fru/FRUData.h>
#include <recordkit/fru/FRUTables.h>
#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/bytes/Text.h>
#include <recordkit/inspect/fru/ImageDevice.h>
#include <recordkit/platform/PException.h>
#include <recordkit/util/Util.h>

namespace recordkit::inspect {

using TAVLib::RecordKit::Util;

namespace {

struct BlockName {
    FRU_AREA area;
    const char* name;
};

struct CoreItem {
    FRU_ITEM item;
    const char* name;
};

constexpr const char* PROCESSOR_BLOCK = "processor";

// clang-format off
constexpr BlockName BLOCKS[] = {
    {FRU_AREA_CPU_PROCESSOR, PROCESSOR_BLOCK},
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

std::string itemOf(FRUData& fru, FRU_AREA area, FRU_ITEM id)
{
    std::string bytes;
    fru.getItem(area, id, bytes, FRUArea::CSUM_IGNORE);
    return bytes;
}

/// What `read` returns, or nothing and a problem.
template <typename Read> auto attempt(CpuRom& rom, const char* what, const Read& read)
    -> std::optional<decltype(read())>
{
    try {
        return read();
    } catch (const TAVLib::PException& e) {
        rom.problems.push_back(fmt::format("{}: {}", what, e.getMessage()));
    } catch (const Error& e) {
        rom.problems.push_back(fmt::format("{}: {}", what, e.what()));
    }
    return std::nullopt;
}

void readIdentity(CpuRom& rom, FRUData& fru, unsigned char board)
{
    const auto item = [&fru](FRU_ITEM id) { return itemOf(fru, FRU_AREA_CPU_PROCESSOR, id); };
    const auto name = [&fru](Util::DISPLAY_MODE mode) {
        return toUtf8(Util::getCPUModelName(fru, mode));
    };
    rom.processorCode =
        attempt(rom, "processor code", [&] { return toUtf8(item(FRU_ITEM_CPU_SIGNATURE)); });
    rom.modelName = attempt(rom, "model name", [&] { return name(Util::DISPLAY_MODE_PLAIN); });
    rom.modelNameMarkup =
        attempt(rom, "with markup", [&] { return name(Util::DISPLAY_MODE_MARKUP); });
    rom.modelType =
        attempt(rom, "model type", [&] { return static_cast<int>(Util::getCPUModelType(fru)); });
    rom.stepping = attempt(rom, "stepping", [&] { return toUtf8(Util::getCPUStepping(fru)); });
    rom.partNumber =
        attempt(rom, "part number", [&] { return toUtf8(Util::getCPUPartNumber(fru, board)); });
    rom.cacheKilobytes =
        attempt(rom, "cache (KB)", [&] { return static_cast<long long>(Util::getCPUCache(fru)); });
    rom.megahertz = attempt(rom, "speed (MHz)", [&] {
        return static_cast<long long>(Util::getBCDtoHexValue(item(FRU_ITEM_CPU_SPEED)));
    });
}

void addProblem(CpuRom& rom, const std::string& what, const FruChecksum& checksum)
{
    if (!checksum.isRight()) {
        rom.problems.push_back(fmt::format("{}: the checksum is {:02X}h, expected {:02X}h", what,
                                           checksum.stored, checksum.expected));
    }
}

FruChecksum checksumOfBlock(const std::string& bytes, unsigned int offset, unsigned int size)
{
    return checksumOf(bytes, offset, size - 1, offset + size - 1);
}

/// The blocks that the header names.
std::vector<CpuBlock> readBlocks(CpuRom& rom, FRUData& fru, const std::string& bytes)
{
    std::vector<CpuBlock> blocks;
    for (const BlockName& block : BLOCKS) {
        const unsigned int offset = fru.getAreaOffset(block.area);
        if (offset == 0) {
            continue;
        }
        blocks.push_back(
            {block.name, offset,
             attempt(rom, block.name,
                     [&] {
                         return static_cast<unsigned int>(
                             fru.getAreaObject(block.area, FRUArea::CSUM_IGNORE)->getSize());
                     }),
             std::nullopt});
        if (blocks.back().size) {
            blocks.back().checksum = checksumOfBlock(bytes, offset, *blocks.back().size);
            addProblem(rom, block.name, *blocks.back().checksum);
        }
    }
    return blocks;
}

/// The byte of the header that contains the offset of a block.
unsigned int offsetByteOf(const FRUAreaTbl& block)
{
    unsigned int at = 0;
    for (const FRUMemberTbl* row = findFRUArea(FRU_AREA_CPU_HEADER)->members;
         row->item != block.offsetItem; ++row) {
        at += row->size;
    }
    return at;
}

/// Throws DataError for bytes that do not look like a ROM.
void requireRom(const FruChecksum& header, const std::vector<CpuBlock>& blocks)
{
    if (blocks.empty() || std::string(blocks.front().name) != PROCESSOR_BLOCK) {
        throw DataError("the header has no processor block");
    }
    const auto wrong = static_cast<std::size_t>(std::count_if(
        blocks.begin(), blocks.end(), [](const CpuBlock& block) { return !block.isRight(); }));
    if (!header.isRight() && wrong * 2 > blocks.size()) {
        throw DataError(fmt::format("the checksum of the header is {:02X}h, expected {:02X}h, and "
                                    "those of {} of {} are wrong",
                                    header.stored, header.expected, wrong,
                                    counted(blocks.size(), "block")));
    }
}

}

CpuRom readCpuRom(const std::string& bytes, unsigned char board)
{
    ImageDevice device(bytes);
    FRUData fru(device, FRU_CPU_ROM);
    CpuRom rom;
    const FruChecksum header = checksumOfBlock(bytes, 0, findFRUArea(FRU_AREA_CPU_HEADER)->size);
    addProblem(rom, "header", header);
    rom.blocks = readBlocks(rom, fru, bytes);
    requireRom(header, rom.blocks);
    readIdentity(rom, fru, board);
    for (const CoreItem& each : CORE_ITEMS) {
        rom.core.push_back({each.name, attempt(rom, each.name, [&] {
                                return toHex(itemOf(fru, FRU_AREA_CPU_CORE, each.item));
                            })});
    }
    return rom;
}

unsigned int countRightCpuBlocks(ByteView bytes)
{
    const unsigned int headerSize = findFRUArea(FRU_AREA_CPU_HEADER)->size;
    if (bytes.size() < headerSize ||
        bytes[offsetByteOf(*findFRUArea(FRU_AREA_CPU_PROCESSOR))] == 0) {
        return 0;
    }
    std::vector<FruExtent> parts = {{"header", 0, headerSize}};
    for (const BlockName& block : BLOCKS) {
        const FRUAreaTbl& row = *findFRUArea(block.area);
        const unsigned int offset = bytes[offsetByteOf(row)];
        if (offset != 0) {
            parts.push_back({block.name, offset, row.size});
        }
    }
    std::sort(parts.begin(), parts.end(),
              [](const FruExtent& a, const FruExtent& b) { return a.offset < b.offset; });
    unsigned int right = 0;
    unsigned int end = 0; // of what counts
    for (const FruExtent& each : parts) {
        const ByteView part = bytes.part(each.offset, each.size);
        if (each.offset >= end && part.size() == each.size &&
            checksumOf(part, 0, each.size - 1, each.size - 1).isRight() &&
            std::any_of(part.begin(), part.end(), [](unsigned char byte) { return byte != 0; })) {
            ++right;
            end = each.end();
        }
    }
    return right;
}

}
