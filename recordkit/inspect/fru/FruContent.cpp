// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/fru/FruContent.h>

#include <algorithm>
#include <fmt/format.h>

#include <recordkit/fru/FRUTables.h>
#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/inspect/fru/FruLayout.h>
#include <recordkit/inspect/fru/FruNames.h>

namespace recordkit::inspect {

namespace {

constexpr unsigned int AREA_START = 2; ///< format and length
constexpr unsigned char LAST_RECORD = 0x80;

/// The byte that makes all of them add up to 0.
char balanceOf(const std::string& bytes)
{
    unsigned int sum = 0;
    for (const unsigned char byte : ByteView(bytes)) {
        sum += byte;
    }
    return static_cast<char>(0U - sum);
}

/// Where areas are, in their order.
std::vector<FRU_AREA> orderOf(const FruImage& fru)
{
    std::vector<FRU_AREA> order;
    for (const FruExtent& extent : fru.extents) {
        for (const FRU_AREA id : headerAreas()) {
            if (extent.name == fruAreaName(id)) {
                order.push_back(id);
            }
        }
    }
    const auto& all = headerAreas();
    const bool isThatOfHeader =
        std::is_sorted(order.begin(), order.end(), [&all](FRU_AREA a, FRU_AREA b) {
            return std::find(all.begin(), all.end(), a) < std::find(all.begin(), all.end(), b);
        });
    return isThatOfHeader ? std::vector<FRU_AREA>() : order;
}

/// An area's offset as the header has it.
unsigned int checkedUnits(FRU_AREA id, unsigned int offset)
{
    if (offset > MAX_UNIT_BYTES) {
        throw DataError(fmt::format("{} area: it would begin at offset {}, the header can say {} "
                                    "at most",
                                    fruAreaName(id), offset, MAX_UNIT_BYTES));
    }
    return offset / FRU_LENGTH_UNIT;
}

std::string encodeRecord(const FruRecordContent& record, bool isLast)
{
    std::string header;
    header += static_cast<char>(record.type);
    header += static_cast<char>(record.format | (isLast ? LAST_RECORD : 0));
    header += static_cast<char>(record.data.size());
    header += balanceOf(record.data);
    header += balanceOf(header);
    return header + record.data;
}

}

unsigned char FruAreaContent::language() const
{
    return id == FRU_AREA_CHASSIS || start.empty() ? 0 : ByteView(start)[0];
}

unsigned int FruAreaContent::usedSize() const
{
    std::size_t size = AREA_START + start.size() + 1;
    for (const FruText& text : texts) {
        size += 1 + text.bytes.size();
    }
    return static_cast<unsigned int>(size);
}

std::string encodeFruArea(const FruAreaContent& area)
{
    const std::size_t size =
        toLengthUnit(area.usedSize() + static_cast<unsigned int>(area.unused.size()) + 1);
    if (size > MAX_UNIT_BYTES) {
        throw DataError(fmt::format("{} area: {} bytes needed, an area has at most {}",
                                    fruAreaName(area.id), size, MAX_UNIT_BYTES));
    }
    std::string bytes;
    bytes += static_cast<char>(area.format);
    bytes += static_cast<char>(size / FRU_LENGTH_UNIT);
    bytes += area.start;
    for (const FruText& text : area.texts) {
        bytes += text.image();
    }
    bytes += static_cast<char>(FRU_END_OF_FIELDS);
    bytes += area.unused;
    bytes.resize(size - 1, '\0');
    bytes += balanceOf(bytes);
    return bytes;
}

std::string encodeFruRecords(const std::vector<FruRecordContent>& records)
{
    std::string bytes;
    for (const FruRecordContent& record : records) {
        bytes += encodeRecord(record, &record == &records.back());
    }
    return bytes;
}

FruAreaContent contentOf(const FruAreaImage& area, ByteView image)
{
    FruAreaContent content;
    content.id = area.id;
    content.format = image[area.extent.offset];
    const auto coded = std::find_if(area.fields.begin(), area.fields.end(),
                                    [](const FruField& field) { return field.isCoded; });
    const unsigned int end = area.extent.end() - 1 - area.unused;
    const unsigned int from = area.extent.offset + AREA_START;
    const unsigned int to = coded == area.fields.end() ? end - 1 : coded->offset;
    content.start = image.part(from, to - from).text();
    for (auto field = coded; field != area.fields.end(); ++field) {
        content.texts.push_back({field->typeLength, field->bytes});
    }
    content.unused = image.part(end, area.unused).text();
    return content;
}

FruRecordContent contentOf(const FruMultiRecord& record, ByteView image)
{
    const unsigned char format = image[record.extent.offset + 1];
    return {record.type, static_cast<unsigned char>(format & ~LAST_RECORD), record.bytes};
}

FruContent contentOf(const FruImage& fru, ByteView image)
{
    if (!fru.isFru) {
        throw DataError(fru.headerProblems.front());
    }
    FruContent content;
    for (const FruAreaImage& area : fru.areas) {
        if (!area.isWhole) {
            throw DataError(area.problems.front());
        }
        content.areas.push_back(contentOf(area, image));
    }
    const bool isChainWhole = fru.records.empty() || fru.records.back().isLast;
    const bool hasRecords =
        std::any_of(fru.extents.begin(), fru.extents.end(), [](const FruExtent& each) {
            return each.name == fruAreaName(FRU_AREA_MULTIRECORD);
        });
    if (!isChainWhole || !fru.lost.empty() || (hasRecords && fru.records.empty())) {
        throw DataError(fru.problems.front());
    }
    for (const FruMultiRecord& record : fru.records) {
        content.records.push_back(contentOf(record, image));
    }
    for (const FruInternalUse& internal : fru.internalUse) {
        content.internalUse = internal.bytes;
    }
    content.order = orderOf(fru);
    for (const FruExtent& extent : fru.map(image)) {
        if (extent.name == FREE_BYTES) {
            content.blank = image[extent.end() - 1];
        }
    }
    return content;
}

std::string buildFruImage(const FruContent& content, std::size_t size)
{
    FruBlocks blocks;
    if (content.internalUse) {
        blocks[FRU_AREA_INTERNAL_A] = *content.internalUse;
    }
    for (const FruAreaContent& area : content.areas) {
        blocks[area.id] = encodeFruArea(area);
    }
    if (!content.records.empty()) {
        blocks[FRU_AREA_MULTIRECORD] = encodeFruRecords(content.records);
    }
    std::vector<FRU_AREA> order = content.order;
    order.insert(order.end(), headerAreas().begin(), headerAreas().end());
    std::string header(FRU_HEADER_SIZE - 1, '\0');
    header[0] = 1;
    std::string areas;
    for (const FRU_AREA id : order) {
        const auto block = blocks.find(id);
        if (block == blocks.end()) {
            continue;
        }
        const unsigned int offset =
            toLengthUnit(FRU_HEADER_SIZE + static_cast<unsigned int>(areas.size()));
        header[headerOffset(id)] = static_cast<char>(checkedUnits(id, offset));
        areas.resize(offset - FRU_HEADER_SIZE, static_cast<char>(content.blank));
        areas += block->second;
        blocks.erase(block);
    }
    header += balanceOf(header);
    std::string image = header + areas;
    if (size != 0 && image.size() > size) {
        throw DataError(
            fmt::format("the areas would take {} bytes, the image has {}", image.size(), size));
    }
    image.resize(size == 0 ? toLengthUnit(static_cast<unsigned int>(image.size())) : size,
                 static_cast<char>(content.blank));
    return image;
}

}
