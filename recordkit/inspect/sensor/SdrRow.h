// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_SENSOR_SDRROW_H
#define RECORDKIT_INSPECT_SENSOR_SDRROW_H

#include <cstddef>
#include <iterator>
#include <optional>
#include <string>

#include <recordkit/inspect/bytes/ByteView.h>
#include <recordkit/inspect/fields/Place.h>
#include <recordkit/inspect/fields/Value.h>
#include <recordkit/inspect/words/Conversion.h>

namespace recordkit::inspect {

/// A sensor data record, and what its other fields depend on.
struct SdrImage {
    /// 0 for a byte that the record is too short for.
    unsigned char byteAt(std::size_t offset) const
    {
        return offset < bytes.size() ? bytes[offset] : static_cast<unsigned char>(0);
    }

    ByteView bytes;
    unsigned char sensorType = 0;
    unsigned char eventType = 0;
    std::optional<Conversion> conversion;
    std::string units;
};

/// A row of the table of a record type (IPMI v2.0, section 43): a field, its place in the record,
/// how it is read and what its value means. A row for several equal elements has {} in its name for
/// their numbers.
struct SdrRow {
    static constexpr unsigned int MAX_ALSO = 3;

    using Read = Value (*)(const SdrImage&, const SdrRow&, unsigned int shift);
    /// What a value means, at its place; empty if there is nothing to add.
    using Words = std::string (*)(const SdrImage&, const Place&, const Value&);

    constexpr SdrRow(const char* rowName, Place rowPlace, Read rowRead, Words rowWords = nullptr)
        : name(rowName), place(rowPlace), read(rowRead), words(rowWords)
    {
    }

    // Each returns a copy that also has what it says.

    /// Higher bits of the value; or, for a value that is not in the record itself, what it comes
    /// from.
    constexpr SdrRow with(Place other) const
    {
        SdrRow copy = *this;
        copy.also[copy.alsoCount++] = other;
        return copy;
    }
    /// The row is one for each of `elements`, `bytes` apart, numbered from `number` on.
    constexpr SdrRow each(unsigned int elements, unsigned int bytes, unsigned int number) const
    {
        SdrRow copy = *this;
        copy.count = elements;
        copy.step = bytes;
        copy.first = number;
        return copy;
    }
    constexpr SdrRow only(bool (*when)(const SdrImage&)) const
    {
        SdrRow copy = *this;
        copy.condition = when;
        return copy;
    }

    const char* name;
    Place place;
    Read read;
    Words words;
    Place also[MAX_ALSO] = {};
    unsigned int alsoCount = 0;
    unsigned int count = 1;
    unsigned int step = 0;
    unsigned int first = 0;
    bool (*condition)(const SdrImage&) = nullptr;
};

/// Rows in the order of the bytes.
class SdrRows {
public:
    constexpr SdrRows() = default;
    template <std::size_t Count> constexpr SdrRows(const SdrRow (&table)[Count])
        : rows(table), length(Count)
    {
    }
    constexpr const SdrRow* begin() const { return rows; }
    constexpr const SdrRow* end() const { return rows + length; }

private:
    const SdrRow* rows = nullptr;
    std::size_t length = 0;
};

/// What a record of a type consists of.
struct SdrLayout {
    static constexpr unsigned int MAX_TABLES = 6;

    unsigned char type;
    std::size_t size;    ///< of the fixed part, with the type/length byte of an id string
    std::size_t idLimit; ///< bytes that count of the id string after it; 0 for a type without one
    SdrRows tables[MAX_TABLES];
};

/// Bytes that a length field of five bits can have; those of sensors count up to 16.
constexpr std::size_t SDR_NAME_LIMIT = 31;

/// The layouts of some types.
class SdrLayouts {
public:
    template <std::size_t Count> constexpr SdrLayouts(const SdrLayout (&layouts)[Count])
        : first(layouts), length(Count)
    {
    }
    constexpr const SdrLayout* begin() const { return first; }
    constexpr const SdrLayout* end() const { return first + length; }

private:
    const SdrLayout* first;
    std::size_t length;
};

extern const SdrLayouts SENSOR_LAYOUTS;
extern const SdrLayouts LOCATOR_LAYOUTS;

// How rows are read: as a number, low byte first; as a two's complement number; as yes or no; as
// the numbers of the set bits.
Value sdrNumber(const SdrImage& image, const SdrRow& row, unsigned int shift);
Value sdrSigned(const SdrImage& image, const SdrRow& row, unsigned int shift);
Value sdrFlag(const SdrImage& image, const SdrRow& row, unsigned int shift);
Value sdrBits(const SdrImage& image, const SdrRow& row, unsigned int shift);

// What values mean.
std::string sdrHex(const SdrImage& image, const Place& place, const Value& value);
/// A version in BCD, the major one in the low half.
std::string sdrVersion(const SdrImage& image, const Place& place, const Value& value);
std::string sdrEntity(const SdrImage& image, const Place& place, const Value& value);
std::string sdrInstance(const SdrImage& image, const Place& place, const Value& value);

/// One of these names; nullptr among them and numbers beyond them are reserved.
template <auto& NAMES> std::string sdrName(const SdrImage&, const Place&, const Value& value)
{
    const unsigned int number = numberOf(value);
    return number < std::size(NAMES) && NAMES[number] != nullptr ? NAMES[number] : "reserved";
}

/// Whether an entity is one, or a container of others.
inline constexpr const char* SDR_INSTANCE_TYPES[] = {"physical entity", "logical container"};
inline constexpr const char* SDR_CODINGS[] = {"16-bit", "BCD plus", "6-bit", "text"};

/// An entity id and its instance.
template <unsigned int AT> constexpr SdrRow SDR_ENTITY[] = {
    {"entity_id", bytesAt(AT), sdrNumber, sdrEntity},
    {"entity_instance", bytesAt(AT + 1), sdrNumber},
    {"entity_instance_type", bitAt(AT + 1, 7), sdrNumber, sdrName<SDR_INSTANCE_TYPES>},
    {"entity_instance_number", bitsAt(AT + 1, 6, 0), sdrNumber, sdrInstance},
};

/// The bytes for OEMs and the type/length byte of the id string, which are always together.
template <unsigned int AT> constexpr SdrRow SDR_OEM_AND_ID[] = {
    {"oem", bytesAt(AT), sdrNumber, sdrHex},
    {"id_string_type", bitsAt(AT + 1, 7, 6), sdrNumber, sdrName<SDR_CODINGS>},
    {"id_string_length", bitsAt(AT + 1, 4, 0), sdrNumber},
};

}

#endif
