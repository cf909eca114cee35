// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/sensor/SdrRecordFields.h>

#include <algorithm>
#include <utility>

#include <fmt/format.h>

#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/bytes/Text.h>
#include <recordkit/inspect/sensor/Sensor.h>
#include <recordkit/inspect/sensor/SensorText.h>
#include <recordkit/inspect/words/Entities.h>
#include <recordkit/sensor/RecordSensorCommon.h>

#include "SdrRow.h"

namespace recordkit::inspect {

using Common = TAVLib::RecordKit::RecordSensorCommon;

namespace {

constexpr std::size_t HEADER = 5;
constexpr unsigned int BITS = 8;

unsigned int bitsOf(const Place& place)
{
    return place.isBits() ? place.high - place.low + 1 : BITS * place.width;
}

unsigned int numberAt(ByteView bytes, const Place& place)
{
    unsigned int number = 0;
    for (unsigned int i = place.width; i > 0; --i) {
        number = number << BITS | bytes[place.offset + i - 1];
    }
    return place.isBits() ? number >> place.low & ((1U << bitsOf(place)) - 1) : number;
}

/// A row's number with the higher bits of its other places, and how many bits it has.
std::pair<unsigned int, unsigned int> wholeNumber(const SdrImage& image, const SdrRow& row,
                                                  unsigned int shift)
{
    unsigned int number = numberAt(image.bytes, row.place.movedBy(shift));
    unsigned int bits = bitsOf(row.place);
    for (unsigned int i = 0; i < row.alsoCount; ++i) {
        number |= numberAt(image.bytes, row.also[i].movedBy(shift)) << bits;
        bits += bitsOf(row.also[i]);
    }
    return {number, bits};
}

std::string typeOf(const SdrImage&, const Place&, const Value& value)
{
    return sdrTypeName(static_cast<unsigned char>(numberOf(value)));
}

constexpr SdrRow HEADER_ROWS[] = {
    {"record_id", bytesAt(0, 2), sdrNumber, sdrHex},
    {"sdr_version", bytesAt(2), sdrNumber, sdrVersion},
    {"record_type", bytesAt(3), sdrNumber, typeOf},
    {"record_length", bytesAt(4), sdrNumber},
};

const SdrLayout* findLayout(unsigned char type)
{
    for (const SdrLayouts* const layouts : {&SENSOR_LAYOUTS, &LOCATOR_LAYOUTS}) {
        for (const SdrLayout& each : *layouts) {
            if (each.type == type) {
                return &each;
            }
        }
    }
    return nullptr;
}

SdrImage imageOf(const SdrRecord& record)
{
    SdrImage image;
    image.bytes = record.bytes;
    const bool isEventOnly = record.type() == SDR_EVENT_ONLY;
    constexpr std::size_t EVENT_ONLY_TYPE = 10;
    const std::size_t type = isEventOnly ? EVENT_ONLY_TYPE : std::size_t{Common::SENSOR_TYPE};
    image.sensorType = image.byteAt(type);
    image.eventType = image.byteAt(type + 1);
    if (record.type() == SDR_FULL || record.type() == SDR_COMPACT) {
        image.conversion = sensorConversion(record);
        image.units = sensorUnits(image.byteAt(Common::UNITS_1), image.byteAt(Common::UNITS_2),
                                  image.byteAt(Common::UNITS_3));
    }
    return image;
}

/// One record, described field by field.
class Description {
public:
    explicit Description(const SdrRecord& of) : record(of), image(imageOf(of)) {}

    SdrDescription take()
    {
        const SdrLayout* const layout = findLayout(record.type());
        addRows(HEADER_ROWS);
        std::size_t fixed = HEADER;
        if (layout != nullptr) {
            fixed = layout->size;
            for (const SdrRows& rows : layout->tables) {
                addRows(rows);
            }
            if (needed > image.bytes.size()) {
                problem(fmt::format("{} bytes, expected at least {} for type {:02X}h",
                                    image.bytes.size() - HEADER, needed - HEADER, record.type()));
            } else if (layout->idLimit != 0) {
                addIdString(*layout);
            }
        }
        addOthers(layout, fixed);
        std::stable_sort(found.fields.begin(), found.fields.end(),
                         [](const DecodedField& left, const DecodedField& right) {
                             return left.place.offset < right.place.offset;
                         });
        return std::move(found);
    }

private:
    void problem(const std::string& text)
    {
        found.problems.push_back(
            fmt::format("record {:04X}h at offset {}: {}", record.id(), record.offset, text));
    }

    bool fits(const Place& place)
    {
        needed = std::max<std::size_t>(needed, place.end());
        return image.bytes.contains(place.offset, place.width);
    }

    void addRows(const SdrRows& rows)
    {
        for (const SdrRow& row : rows) {
            for (unsigned int i = 0; i < row.count; ++i) {
                addRow(row, i);
            }
        }
    }

    void addRow(const SdrRow& row, unsigned int element)
    {
        const unsigned int shift = element * row.step;
        DecodedField field;
        field.place = row.place.movedBy(shift);
        bool isThere = fits(field.place);
        for (unsigned int i = 0; i < row.alsoCount; ++i) {
            field.also.push_back(row.also[i].movedBy(shift));
            isThere = fits(field.also.back()) && isThere;
        }
        if (!isThere || (row.condition != nullptr && !row.condition(image))) {
            return;
        }
        field.name =
            row.count == 1 ? row.name : fmt::format(fmt::runtime(row.name), row.first + element);
        field.value = row.read(image, row, shift);
        field.meaning = row.words == nullptr ? "" : row.words(image, field.place, field.value);
        found.fields.push_back(std::move(field));
    }

    /// Begins where the fixed part ends, whose last byte has its coding and its length.
    void addIdString(const SdrLayout& layout)
    {
        constexpr unsigned char LENGTH = 0x1F;
        const unsigned char typeLength = image.bytes[layout.size - 1];
        const std::size_t length = std::min<std::size_t>(typeLength & LENGTH, layout.idLimit);
        const ByteView text = image.bytes.part(layout.size, length);
        if (text.size() < length) {
            problem(fmt::format("{} of its id string, expected {}", counted(text.size(), "byte"),
                                length));
        }
        const auto last = static_cast<unsigned int>(layout.size - 1);
        found.fields.push_back({"id_string",
                                bytesAt(last + 1, static_cast<unsigned int>(text.size())),
                                {bitsAt(last, 7, 6), bitsAt(last, 4, 0)},
                                idStringText(typeLength, text),
                                "",
                                nullptr});
    }

    /// The bits of each byte that fields have.
    std::vector<unsigned int> coveredBits() const
    {
        std::vector<unsigned int> covered(image.bytes.size());
        const auto cover = [&covered](const Place& place) {
            for (unsigned int at = place.offset; at < place.end(); ++at) {
                for (unsigned int bit = place.low; bit <= place.high; ++bit) {
                    covered[at] |= 1U << bit;
                }
            }
        };
        for (const DecodedField& field : found.fields) {
            cover(field.place);
            std::for_each(field.also.begin(), field.also.end(), cover);
        }
        return covered;
    }

    /// What no field has: whole bytes together, and some bits of a byte where any is set.
    void addOthers(const SdrLayout* layout, std::size_t fixed)
    {
        constexpr unsigned int ALL = 0xFF;
        const auto size = static_cast<unsigned int>(image.bytes.size());
        const std::vector<unsigned int> covered = coveredBits();
        const bool isShort = needed > size;
        for (unsigned int at = 0; at < size;) {
            if (covered[at] != 0) {
                addBits(at, ALL & ~covered[at]);
                ++at;
                continue;
            }
            const bool isReserved = at < fixed && !isShort;
            unsigned int end = at;
            while (end < size && covered[end] == 0 && (end < fixed && !isShort) == isReserved) {
                ++end;
            }
            const std::string name = isReserved          ? fmt::format("reserved_{}", at)
                                     : layout == nullptr ? "data"
                                     : layout->type == SDR_OEM && !isShort ? "oem_data"
                                                                           : "more_bytes";
            found.fields.push_back({name,
                                    bytesAt(at, end - at),
                                    {},
                                    toHex(image.bytes.part(at, end - at)),
                                    "",
                                    nullptr});
            at = end;
        }
    }

    void addBits(unsigned int at, unsigned int bits)
    {
        if ((image.bytes[at] & bits) == 0) {
            return;
        }
        unsigned int low = 0;
        while ((bits >> low & 1) == 0) {
            ++low;
        }
        unsigned int high = BITS - 1;
        while ((bits >> high & 1) == 0) {
            --high;
        }
        const Place place = bitsAt(at, high, low);
        found.fields.push_back({fmt::format("reserved_{}", at),
                                place,
                                {},
                                static_cast<long long>(numberAt(image.bytes, place)),
                                "reserved",
                                nullptr});
    }

    const SdrRecord& record;
    const SdrImage image;
    std::size_t needed = 0; ///< bytes for all fields
    SdrDescription found;
};

}

Value sdrNumber(const SdrImage& image, const SdrRow& row, unsigned int shift)
{
    return static_cast<long long>(wholeNumber(image, row, shift).first);
}

Value sdrSigned(const SdrImage& image, const SdrRow& row, unsigned int shift)
{
    const auto [number, bits] = wholeNumber(image, row, shift);
    const long long value = number;
    return number >> (bits - 1) == 0 ? value : value - (1LL << bits);
}

Value sdrFlag(const SdrImage& image, const SdrRow& row, unsigned int shift)
{
    return wholeNumber(image, row, shift).first != 0;
}

Value sdrBits(const SdrImage& image, const SdrRow& row, unsigned int shift)
{
    const std::vector<unsigned int> set = inspect::bitsOf(wholeNumber(image, row, shift).first);
    return std::vector<long long>(set.begin(), set.end());
}

std::string sdrVersion(const SdrImage&, const Place&, const Value& value)
{
    return fmt::format("{:X}.{:X}", numberOf(value) & 0x0F, numberOf(value) >> 4);
}

std::string sdrHex(const SdrImage&, const Place&, const Value& value)
{
    return fmt::format("{:X}h", numberOf(value));
}

std::string sdrEntity(const SdrImage&, const Place&, const Value& value)
{
    return entityName(static_cast<unsigned char>(numberOf(value)));
}

std::string sdrInstance(const SdrImage&, const Place&, const Value& value)
{
    constexpr unsigned int NUMBER = 0x7F;
    constexpr unsigned int FIRST_RELATIVE = 0x60;
    return (numberOf(value) & NUMBER) < FIRST_RELATIVE ? "system-relative" : "device-relative";
}

SdrDescription describeRecord(const SdrRecord& record)
{
    return Description(record).take();
}

}
