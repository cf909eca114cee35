// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/fru/FruRepair.h>

#include <algorithm>
#include <fmt/format.h>
#include <numeric>
#include <optional>

#include <recordkit/fru/FRUTables.h>
#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/inspect/fru/FruImage.h>
#include <recordkit/inspect/fru/FruLayout.h>
#include <recordkit/inspect/fru/FruNames.h>

namespace recordkit::inspect {

namespace {

constexpr unsigned int HEADER_PAD = 6;
constexpr unsigned char FORMAT_BITS = 0x0F;
constexpr unsigned char AREA_FORMAT = 1;
constexpr unsigned char RECORD_FORMAT = 2;
constexpr unsigned char LAST_RECORD = 0x80;
constexpr unsigned int RECORD_HEADER = 5;
constexpr unsigned int RECORD_DATA_CHECKSUM = 3;

bool isAll(ByteView bytes, unsigned char value)
{
    return std::all_of(bytes.begin(), bytes.end(),
                       [value](unsigned char byte) { return byte == value; });
}

/// Works on one image.
class Repairer {
public:
    explicit Repairer(const std::string& image) : bytes(image) {}

    FruRepair run()
    {
        const FruImage before = parseFruImage(bytes);
        if (!before.isFru) {
            throw DataError(before.headerProblems.front());
        }
        if (repairHeader(before)) {
            for (const FRU_AREA id : informationAreas()) {
                repairArea(id);
            }
            repairRecords();
        }
        return {bytes, repairs, parseFruImage(bytes).allProblems()};
    }

private:
    unsigned char at(std::size_t offset) const { return ByteView(bytes)[offset]; }

    void set(const std::string& what, unsigned int offset, unsigned char value)
    {
        if (at(offset) != value) {
            repairs.push_back(fmt::format("{} at offset {}: {:02X}h to {:02X}h", what, offset,
                                          at(offset), value));
            bytes[offset] = static_cast<char>(value);
        }
    }

    /// Whether the header's offsets can be relied on then.
    bool repairHeader(const FruImage& image)
    {
        const auto pad = at(HEADER_PAD);
        const unsigned char withoutPad = static_cast<unsigned char>(image.header.expected + pad);
        if (!image.header.isRight() && image.header.stored != withoutPad && !areAllRight(image)) {
            return false; // an offset may be what is wrong
        }
        set("common header: pad byte", HEADER_PAD, 0);
        set("common header: checksum", image.header.offset, withoutPad);
        return true;
    }

    /// Whether everything that the header leads to is as it should be.
    static bool areAllRight(const FruImage& image)
    {
        return image.problems.empty() &&
               std::all_of(image.areas.begin(), image.areas.end(),
                           [](const FruAreaImage& area) { return area.problems.empty(); });
    }

    /// Where the next area begins, or the image ends.
    unsigned int limitOf(const FruImage& image, unsigned int offset) const
    {
        auto limit = static_cast<unsigned int>(bytes.size());
        for (const auto* const extents : {&image.extents, &image.lost}) {
            for (const FruExtent& extent : *extents) {
                limit = extent.offset > offset ? std::min(limit, extent.offset) : limit;
            }
        }
        return limit;
    }

    /// Whether an area begins in another one.
    static bool isInside(const FruImage& image, unsigned int offset)
    {
        return std::any_of(image.extents.begin(), image.extents.end(),
                           [offset](const FruExtent& extent) {
                               return extent.offset < offset && offset < extent.end();
                           });
    }

    /// Where the texts of an area begin.
    static unsigned int startOfTexts(FRU_AREA id, unsigned int offset)
    {
        for (const FRUMemberTbl* row = findFRUArea(id)->members; row->item != FRU_ITEM_TERMINATOR;
             ++row) {
            offset += row->size;
        }
        return offset;
    }

    /// The texts' end marker before a limit.
    std::optional<unsigned int> findEnd(FRU_AREA id, unsigned int offset, unsigned int limit) const
    {
        unsigned int text = startOfTexts(id, offset);
        while (text < limit && at(text) != FRU_END_OF_FIELDS) {
            text += 1 + (at(text) & FRU_LENGTH_BITS);
        }
        return text < limit ? std::optional<unsigned int>(text) : std::nullopt;
    }

    bool isBalanced(unsigned int offset, unsigned int size) const
    {
        const ByteView area = ByteView(bytes).part(offset, size);
        const unsigned int sum = std::accumulate(area.begin(), area.end(), 0U);
        const unsigned int length = size / FRU_LENGTH_UNIT;
        return ((sum - at(offset + 1) + length) & 0xFF) == 0;
    }

    /// The smallest size by which the area's checksum is right; 0 if there is none.
    unsigned int sizeWith(unsigned int offset, unsigned int end, unsigned int limit) const
    {
        const unsigned int largest = std::min(limit - offset, MAX_UNIT_BYTES);
        unsigned int size = toLengthUnit(end + 2 - offset); // marker and checksum
        while (size <= largest && !isBalanced(offset, size)) {
            size += FRU_LENGTH_UNIT;
        }
        return size <= largest ? size : 0;
    }

    void repairArea(FRU_AREA id)
    {
        const FruImage image = parseFruImage(bytes);
        const FruAreaImage* const area = image.findArea(id);
        if (area == nullptr || area->extent.offset + 1 >= bytes.size() ||
            isInside(image, area->extent.offset)) {
            return;
        }
        const std::string name = area->extent.name + " area: ";
        const unsigned int offset = area->extent.offset;
        const unsigned int limit = limitOf(image, offset);
        const unsigned int size = area->extent.size;
        const bool isCut = size == 0 || offset + size > limit;
        const bool isArea = (at(offset) & FORMAT_BITS) == AREA_FORMAT;
        const auto end = findEnd(id, offset, limit);
        if (end && (isCut || *end + 1 >= offset + size)) {
            if (const unsigned int right = sizeWith(offset, *end, limit)) {
                set(name + "length byte", offset + 1,
                    static_cast<unsigned char>(right / FRU_LENGTH_UNIT));
            }
        } else if (isArea && !end && !isCut) {
            addEndMarker(name, id, offset, offset + size - 1);
        }
        repairAreaBytes(name, id);
    }

    /// After the last text, where only blank bytes follow up to the checksum.
    void addEndMarker(const std::string& name, FRU_AREA id, unsigned int offset, unsigned int last)
    {
        constexpr unsigned char ERASED = 0xFF;
        std::size_t texts = 0;
        for (unsigned int text = startOfTexts(id, offset); text < last; ++texts) {
            const ByteView rest = ByteView(bytes).part(text, last - text);
            // A zero byte is also the type/length byte of an empty text.
            if (isAll(rest, ERASED) || (texts >= fruTextCount(id) && isAll(rest, 0))) {
                set(name + "end marker", text, FRU_END_OF_FIELDS);
                return;
            }
            text += 1 + (at(text) & FRU_LENGTH_BITS);
        }
    }

    void repairAreaBytes(const std::string& name, FRU_AREA id)
    {
        const FruImage image = parseFruImage(bytes);
        const FruAreaImage& area = *image.findArea(id);
        if (!area.isWhole) {
            return;
        }
        const unsigned char format = at(area.extent.offset);
        if ((format & FORMAT_BITS) != AREA_FORMAT) {
            const auto change = static_cast<unsigned char>(AREA_FORMAT - format);
            if (static_cast<unsigned char>(area.checksum.expected - change) !=
                area.checksum.stored) {
                return; // what it is remains unknown
            }
            set(name + "format byte", area.extent.offset, AREA_FORMAT);
            return;
        }
        set(name + "checksum", area.checksum.offset, area.checksum.expected);
    }

    void repairRecords()
    {
        const FruImage image = parseFruImage(bytes);
        for (const auto* const extents : {&image.extents, &image.lost}) {
            for (const FruExtent& extent : *extents) {
                if (extent.name == fruAreaName(FRU_AREA_MULTIRECORD) &&
                    !isInside(image, extent.offset)) {
                    repairRecordsAt(extent.offset, limitOf(image, extent.offset));
                }
            }
        }
    }

    void repairRecordsAt(unsigned int offset, unsigned int limit)
    {
        std::optional<unsigned int> last;
        for (unsigned int number = 1;; ++number) {
            const std::string name = fmt::format("multirecord {}: ", number);
            if (isBlank(ByteView(bytes).part(offset, limit - offset))) {
                if (last) {
                    set(fmt::format("multirecord {}: end of list", number - 1), *last + 1,
                        at(*last + 1) | LAST_RECORD);
                    setHeaderChecksum(fmt::format("multirecord {}: ", number - 1), *last);
                }
                return;
            }
            if (!repairRecord(name, offset, limit) || (at(offset + 1) & LAST_RECORD) != 0) {
                return;
            }
            last = offset;
            offset += RECORD_HEADER + at(offset + 2);
        }
    }

    /// Whether it is a record now.
    bool repairRecord(const std::string& name, unsigned int offset, unsigned int limit)
    {
        if (limit - offset < RECORD_HEADER || (at(offset + 1) & FORMAT_BITS) != RECORD_FORMAT ||
            limit - offset - RECORD_HEADER < at(offset + 2)) {
            return false;
        }
        const FruChecksum header = headerChecksum(offset);
        const FruChecksum data = checksumOf(bytes, offset + RECORD_HEADER, at(offset + 2),
                                            offset + RECORD_DATA_CHECKSUM);
        const bool isLast = (at(offset + 1) & LAST_RECORD) != 0;
        const unsigned int next = offset + RECORD_HEADER + at(offset + 2);
        if (!header.isRight() && (!data.isRight() || !(isLast || isRecord(next, limit)))) {
            return false;
        }
        set(name + "data checksum", data.offset, data.expected);
        setHeaderChecksum(name, offset);
        return true;
    }

    /// Whether there is a record's header, which is right.
    bool isRecord(unsigned int offset, unsigned int limit) const
    {
        return offset <= limit && limit - offset >= RECORD_HEADER &&
               (at(offset + 1) & FORMAT_BITS) == RECORD_FORMAT && headerChecksum(offset).isRight();
    }

    FruChecksum headerChecksum(unsigned int record) const
    {
        return checksumOf(bytes, record, RECORD_HEADER - 1, record + RECORD_HEADER - 1);
    }

    void setHeaderChecksum(const std::string& name, unsigned int record)
    {
        const FruChecksum checksum = headerChecksum(record);
        set(name + "header checksum", checksum.offset, checksum.expected);
    }

    std::string bytes;
    std::vector<std::string> repairs;
};

}

FruRepair repairFruImage(const std::string& bytes)
{
    return Repairer(bytes).run();
}

}
