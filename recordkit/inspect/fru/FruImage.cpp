// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/fru/FruImage.h>

#include <algorithm>
#include <fmt/format.h>
#include <numeric>

#include <recordkit/fru/FRUData.h>
#include <recordkit/fru/FRUTables.h>
#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/bytes/Text.h>
#include <recordkit/inspect/fru/FruFormat.h>
#include <recordkit/inspect/fru/FruNames.h>
#include <recordkit/inspect/fru/ImageDevice.h>
#include <recordkit/inspect/fru/MfgDate.h>
#include <recordkit/inspect/words/ChassisTypes.h>

namespace recordkit::inspect {

namespace {

unsigned char sumOf(ByteView bytes)
{
    return static_cast<unsigned char>(std::accumulate(bytes.begin(), bytes.end(), 0U));
}

std::string wrongChecksum(const FruChecksum& checksum)
{
    return fmt::format("checksum {:02X}h at offset {}, expected {:02X}h", checksum.stored,
                       checksum.offset, checksum.expected);
}

bool isInformationArea(FRU_AREA id)
{
    const auto& all = informationAreas();
    return std::find(all.begin(), all.end(), id) != all.end();
}

/// Takes one area apart.
class AreaParser {
public:
    AreaParser(ByteView imageBytes, FRU_AREA id, unsigned int offset) : bytes(imageBytes)
    {
        area.id = id;
        area.extent.name = fruAreaName(id);
        area.extent.offset = offset;
    }

    FruAreaImage parse()
    {
        if (!findExtent()) {
            return area;
        }
        area.checksum = checksumOf(bytes, area.extent.offset, area.extent.size - 1, last());
        const unsigned char format = bytes[area.extent.offset];
        if ((format & FRU_FORMAT_BITS) != FRU_FORMAT) {
            problem(fmt::format("format version {:02X}h at offset {}, expected 01h", format,
                                area.extent.offset));
        }
        area.isWhole = readFields();
        if (!area.checksum.isRight()) {
            problem(wrongChecksum(area.checksum));
        }
        return area;
    }

private:
    unsigned int last() const { return area.extent.end() - 1; }

    void problem(const std::string& text)
    {
        area.problems.push_back(area.extent.name + " area: " + text);
    }

    bool findExtent()
    {
        FruExtent& extent = area.extent;
        if (extent.offset + FRU_AREA_LENGTH >= bytes.size()) {
            problem(fmt::format("starts at offset {}, past the end of the {}-byte image",
                                extent.offset, bytes.size()));
            return false;
        }
        const unsigned int size = bytes[extent.offset + FRU_AREA_LENGTH] * FRU_LENGTH_UNIT;
        if (size == 0) {
            problem(fmt::format("length byte at offset {} is 0", extent.offset + FRU_AREA_LENGTH));
            return false;
        }
        if (size > bytes.size() - extent.offset) {
            problem(fmt::format("{} bytes at offset {} run past the image of {} bytes", size,
                                extent.offset, bytes.size()));
            return false;
        }
        extent.size = size;
        return true;
    }

    /// Whether all of them are present, with the bytes that follow them.
    bool readFields()
    {
        const FRUMemberTbl* row = findFRUArea(area.id)->members;
        for (; row->item != FRU_ITEM_TERMINATOR; ++row) {
            if (row->size == 0 && bytes[at()] == FRU_END_OF_FIELDS) {
                break;
            }
            if (!addField(row->item, row->size)) {
                return false;
            }
        }
        if (!isInformationArea(area.id)) {
            area.unused = last() - at();
            return true;
        }
        while (bytes[at()] != FRU_END_OF_FIELDS) {
            if (!addField(FRU_ITEM_CUSTOM, 0)) {
                return false;
            }
        }
        if (at() == last()) {
            return noEndMarker();
        }
        area.unused = last() - at() - 1;
        return true;
    }

    unsigned int at() const { return area.extent.offset + position; }

    bool addField(FRU_ITEM item, unsigned int fixedSize)
    {
        if (at() >= last()) {
            return noEndMarker();
        }
        FruField field;
        field.item = item;
        field.offset = at();
        field.isCoded = fixedSize == 0;
        field.typeLength = field.isCoded ? bytes[at()] : 0;
        const unsigned int size = field.isCoded ? field.typeLength & FRU_LENGTH_BITS : fixedSize;
        const unsigned int start = at() + (field.isCoded ? 1 : 0);
        field.name = nameOf(item);
        if (start + size > last()) {
            problem(fmt::format("{} bytes of the field at offset {} run past the area's end at {}",
                                size, field.offset, last()));
            return false;
        }
        field.bytes = bytes.part(start, size).text();
        position = start + size - area.extent.offset;
        if (item == FRU_ITEM_LANGUAGE_CODE) {
            area.language = ByteView(field.bytes)[0];
        }
        if (!field.name.empty()) {
            field.value =
                fruValue(item, field.isCoded, field.typeLength, area.language, field.bytes);
            area.fields.push_back(field);
        }
        return true;
    }

    std::string nameOf(FRU_ITEM item)
    {
        const std::string name = fruItemName(item);
        return name == fruItemName(FRU_ITEM_CUSTOM) ? name + std::to_string(++customFields) : name;
    }

    bool noEndMarker()
    {
        problem(fmt::format("no end marker C1h before its end at {}", last()));
        return false;
    }

    ByteView bytes;
    FruAreaImage area;
    unsigned int position = 0; ///< in the area
    unsigned int customFields = 0;
};

/// Reads an image area by area.
class ImageParser {
public:
    ImageParser(ByteView imageBytes, InternalLayout internalLayout)
        : bytes(imageBytes), layout(internalLayout)
    {
        image.size = static_cast<unsigned int>(bytes.size());
    }

    FruImage parse()
    {
        if (!readHeader()) {
            return image;
        }
        // The library refuses a header with a wrong checksum; given a correct one, it returns the
        // areas' places.
        std::string repaired = bytes.text();
        repaired[image.header.offset] = static_cast<char>(image.header.expected);
        ImageDevice device(repaired);
        FRUData header(device);
        for (const FRU_AREA id : informationAreas()) {
            const unsigned int offset = header.getAreaOffset(id);
            if (offset != 0) {
                addArea(id, offset);
            }
        }
        const unsigned int records = header.getAreaOffset(FRU_AREA_MULTIRECORD);
        if (records != 0) {
            readRecords(records);
        }
        const unsigned int internal = header.getAreaOffset(FRU_AREA_INTERNAL_A);
        if (internal != 0) {
            readInternalUse(internal);
        }
        findOverlaps();
        return image;
    }

private:
    void problem(const std::string& text) { image.problems.push_back(text); }
    void headerProblem(const std::string& text) { image.headerProblems.push_back(text); }

    bool readHeader()
    {
        if (bytes.size() < FRU_HEADER_SIZE) {
            headerProblem(
                fmt::format("no FRU image: {} bytes, expected a common header of {} at offset 0",
                            bytes.size(), FRU_HEADER_SIZE));
            return false;
        }
        if ((bytes[0] & FRU_FORMAT_BITS) != FRU_FORMAT) {
            headerProblem(fmt::format(
                "no FRU image: format version {:02X}h at offset 0, expected 01h", bytes[0]));
            return false;
        }
        image.isFru = true;
        image.header = checksumOf(bytes, 0, FRU_HEADER_SIZE - 1, FRU_HEADER_SIZE - 1);
        if (!image.header.isRight()) {
            headerProblem("common header: " + wrongChecksum(image.header));
        }
        if (bytes[FRU_HEADER_PAD] != 0) {
            headerProblem(fmt::format("common header: pad byte {:02X}h at offset {}, expected 00h",
                                      bytes[FRU_HEADER_PAD], FRU_HEADER_PAD));
        }
        addExtent({"header", 0, FRU_HEADER_SIZE});
        return true;
    }

    void addExtent(const FruExtent& extent)
    {
        const auto place = std::upper_bound(
            image.extents.begin(), image.extents.end(), extent,
            [](const FruExtent& a, const FruExtent& b) { return a.offset < b.offset; });
        image.extents.insert(place, extent);
    }

    void addArea(FRU_AREA id, unsigned int offset)
    {
        image.areas.push_back(AreaParser(bytes, id, offset).parse());
        addExtentOrLost(image.areas.back().extent);
    }

    void addExtentOrLost(const FruExtent& extent)
    {
        if (extent.size != 0) {
            addExtent(extent);
        } else if (extent.offset < bytes.size()) {
            image.lost.push_back({extent.name, extent.offset, 1});
        }
    }

    void readRecords(unsigned int offset)
    {
        unsigned int at = offset;
        for (bool isLast = false; !isLast;) {
            const std::string name = fmt::format("multirecord {}", image.records.size() + 1);
            if (at > bytes.size() || bytes.size() - at < MULTIRECORD_HEADER) {
                problem(fmt::format("{}: no room for its header at offset {} in {} bytes", name, at,
                                    bytes.size()));
                break;
            }
            FruMultiRecord record;
            record.type = bytes[at];
            record.format = bytes[at + MULTIRECORD_FORMAT_BYTE] & FRU_FORMAT_BITS;
            record.isLast = isLast = (bytes[at + MULTIRECORD_FORMAT_BYTE] & MULTIRECORD_LAST) != 0;
            const unsigned int length = bytes[at + MULTIRECORD_LENGTH];
            record.extent = {name, at, MULTIRECORD_HEADER + length};
            record.header = checksumOf(bytes, at, MULTIRECORD_CHECKSUM, at + MULTIRECORD_CHECKSUM);
            if (record.format != MULTIRECORD_FORMAT) {
                problem(fmt::format("{}: format {} at offset {}, expected {}", name, record.format,
                                    at + MULTIRECORD_FORMAT_BYTE, MULTIRECORD_FORMAT));
                break;
            }
            if (!record.header.isRight()) {
                problem(fmt::format("{}: header {}", name, wrongChecksum(record.header)));
                break;
            }
            if (record.extent.end() > bytes.size()) {
                problem(fmt::format("{}: {} bytes at offset {} run past the image of {} bytes",
                                    name, record.extent.size, at, bytes.size()));
                break;
            }
            record.data =
                checksumOf(bytes, at + MULTIRECORD_HEADER, length, at + MULTIRECORD_DATA_CHECKSUM);
            if (!record.data.isRight()) {
                problem(fmt::format("{}: data {}", name, wrongChecksum(record.data)));
            }
            record.bytes = bytes.part(at + MULTIRECORD_HEADER, length).text();
            image.records.push_back(record);
            at = record.extent.end();
        }
        addExtentOrLost({fruAreaName(FRU_AREA_MULTIRECORD), offset, at - offset});
        decodeRecords();
    }

    void decodeRecords()
    {
        std::vector<MultiRecordData> data;
        for (const FruMultiRecord& record : image.records) {
            const auto size = static_cast<unsigned int>(record.bytes.size());
            data.push_back({record.type, record.extent.end() - size, record.bytes});
        }
        const std::vector<MultiRecord> contents = decodeMultiRecords(data);
        for (std::size_t i = 0; i < contents.size(); ++i) {
            FruMultiRecord& record = image.records[i];
            record.content = contents[i];
            if (record.content.missing != 0) {
                image.contentProblems.push_back(
                    fmt::format("{}: {} bytes of {} at offset {}, expected at least {}",
                                record.extent.name, record.bytes.size(), record.content.name,
                                data[i].offset, record.content.missing));
            }
        }
        image.notes = compareLoadAndSupply(contents);
    }

    void readInternalUse(unsigned int offset)
    {
        if (layout != InternalLayout::STANDARD) {
            addArea(layout == InternalLayout::A ? FRU_AREA_INTERNAL_A : FRU_AREA_INTERNAL_B,
                    offset);
            return;
        }
        if (offset >= bytes.size()) {
            problem(fmt::format("internal area: its offset {} is not within {} bytes", offset,
                                bytes.size()));
            return;
        }
        // It has no length of its own.
        unsigned int end = image.size;
        for (const FruExtent& extent : image.extents) {
            if (extent.offset > offset) {
                end = extent.offset;
                break;
            }
        }
        const FruExtent extent = {fruAreaName(FRU_AREA_INTERNAL_A), offset, end - offset};
        image.internalUse.push_back({extent, bytes.part(offset, extent.size).text()});
        addExtent(extent);
    }

    void findOverlaps()
    {
        for (auto later = image.extents.begin(); later != image.extents.end(); ++later) {
            for (auto earlier = image.extents.begin(); earlier != later; ++earlier) {
                if (earlier->end() > later->offset) {
                    problem(fmt::format("{} ({} to {}) and {} ({} to {}) overlap", earlier->name,
                                        earlier->offset, earlier->end() - 1, later->name,
                                        later->offset, later->end() - 1));
                }
            }
        }
        for (const FruExtent& lost : image.lost) {
            for (const FruExtent& extent : image.extents) {
                if (lost.offset >= extent.offset && lost.offset < extent.end()) {
                    problem(fmt::format("{} ({} to {}) contains the offset {} of {}", extent.name,
                                        extent.offset, extent.end() - 1, lost.offset, lost.name));
                }
            }
        }
    }

    ByteView bytes;
    InternalLayout layout;
    FruImage image;
};

}

FruChecksum checksumOf(ByteView bytes, unsigned int offset, unsigned int size, unsigned int at)
{
    FruChecksum checksum;
    checksum.offset = at;
    checksum.stored = bytes[at];
    checksum.expected = static_cast<unsigned char>(0U - sumOf(bytes.part(offset, size)));
    return checksum;
}

const char* FruField::typeName() const
{
    if (isCoded) {
        return codingName(codingOf(typeLength));
    }
    return item == FRU_ITEM_MFG_DATE_TIME ? "date" : bytes.size() == 1 ? "number" : "binary";
}

std::vector<std::string> FruImage::allProblems() const
{
    std::vector<std::string> all = headerProblems;
    for (const FruAreaImage& area : areas) {
        all.insert(all.end(), area.problems.begin(), area.problems.end());
    }
    all.insert(all.end(), problems.begin(), problems.end());
    all.insert(all.end(), contentProblems.begin(), contentProblems.end());
    return all;
}

const FruAreaImage* FruImage::findArea(FRU_AREA id) const
{
    const auto found = std::find_if(areas.begin(), areas.end(),
                                    [id](const FruAreaImage& area) { return area.id == id; });
    return found == areas.end() ? nullptr : &*found;
}

const FruField* FruImage::findField(const std::string& fullName) const
{
    for (const FruAreaImage& area : areas) {
        for (const FruField& field : area.fields) {
            if (area.extent.name + "." + field.name == fullName) {
                return &field;
            }
        }
    }
    return nullptr;
}

const FruMultiRecord* FruImage::findRecord(const std::string& name) const
{
    const auto found =
        std::find_if(records.begin(), records.end(),
                     [&name](const FruMultiRecord& record) { return record.content.name == name; });
    return found == records.end() ? nullptr : &*found;
}

std::vector<FruExtent> FruImage::map(ByteView bytes) const
{
    std::vector<FruExtent> all;
    unsigned int at = 0;
    const auto fill = [&](unsigned int upTo) {
        if (at < upTo) {
            all.push_back(
                {isBlank(bytes.part(at, upTo - at)) ? FREE_BYTES : OTHER_BYTES, at, upTo - at});
        }
    };
    for (const FruExtent& extent : extents) {
        fill(extent.offset);
        all.push_back(extent);
        at = std::max(at, extent.end());
    }
    fill(size);
    return all;
}

FruImage parseFruImage(ByteView bytes, InternalLayout layout)
{
    return ImageParser(bytes, layout).parse();
}

std::string fruValue(FRU_ITEM item, bool isCoded, unsigned char typeLength, unsigned char language,
                     ByteView bytes)
{
    if (!isCoded) {
        switch (item) {
        case FRU_ITEM_CHASSIS_TYPE:
            return chassisTypeName(bytes[0]);
        case FRU_ITEM_MFG_DATE_TIME:
            return MfgDate(bytes).toText();
        default:
            return bytes.size() == 1 ? std::to_string(bytes[0]) : toHex(bytes);
        }
    }
    switch (codingOf(typeLength)) {
    case CODING_BINARY:
        return toHex(bytes);
    case CODING_BCD_PLUS:
        return decodeBcdPlus(bytes);
    case CODING_SIX_BIT:
        return decodeSixBit(bytes);
    default:
        break;
    }
    // An odd number of bytes cannot be 16-bit text, whatever the language.
    const std::string text =
        isEnglish(language) || bytes.size() % 2 != 0 ? toUtf8(bytes) : decodeUtf16(bytes);
    // Boards pad their fields with zero bytes.
    return text.substr(0, text.find('\0'));
}

bool isEnglish(unsigned char language)
{
    constexpr unsigned char DEFAULT_LANGUAGE = 0;
    constexpr unsigned char ENGLISH = 25;
    return language == DEFAULT_LANGUAGE || language == ENGLISH;
}

bool isBlank(ByteView bytes)
{
    return std::all_of(bytes.begin(), bytes.end(),
                       [](unsigned char byte) { return byte == 0x00 || byte == 0xFF; });
}

}
