// SPDX-License-Identifier: Apache-2.0
// Full and compact sensor records, by their rules.
#include <algorithm>
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <recordkit/sensor/CompactSensorRecord.h>
#include <recordkit/sensor/FullSensorRecord.h>

#include "Model.h"

namespace {

using namespace testing_support;
using namespace TAVLib::RecordKit;

/// Each works on one of two records of the kind, which the first number names.
enum Operation {
    GET_ALL,        ///< every accessor that reads
    SET_BYTE,       ///< which setter, value
    SET_WORD,       ///< which setter, value
    SET_CHANNEL,    ///< value
    SET_LUN,        ///< value
    SET_ID_TYPE,    ///< value
    SET_ID_LENGTH,  ///< value
    SET_ID_BYTES,   ///< type; the bytes
    GET_ID_BYTES,   ///< room
    POKE_ID_STRING, ///< place from the type/length byte on, value
    GET_SERIALIZED, ///< room, whether through the second base
    SET_SERIALIZED, ///< whether through the second base; the bytes
    LOAD_OWN_IMAGE, ///< length
    ASSIGN,         ///< from the other record
    COPY,           ///< the other record becomes a copy of this one, made by the constructor
    OPERATIONS
};

enum { BYTE_SETTERS = 15, WORD_SETTERS = 4 };

/// What a buffer contains before a call.
constexpr unsigned char UNWRITTEN = 0xB7;

/// The values of the reading accessors, in one order.
using Values = std::vector<unsigned int>;

template <typename Record> class Library : public Subject {
public:
    explicit Library(std::size_t idString) : typeLengthPlace(idString) {}

    Lines perform(const Step& step) override
    {
        const TraceCapture trace;
        Lines seen;
        try {
            seen = call(step, records[step.number(0) & 1], records[(step.number(0) & 1) ^ 1]);
        } catch (const TAVLib::PException& e) {
            seen = {describe(e)};
        }
        return joined(seen, trace.lines());
    }

    const Medium& medium() override
    {
        for (std::size_t i = 0; i < 2; ++i) {
            const unsigned char* const image = imageOfRecord(records[i]);
            images[names[i]].assign(image, image + typeLengthPlace + 1 + 16);
        }
        return images;
    }

private:
    const unsigned char* imageOfRecord(const Record& record) const
    {
        return record.getIDStringStructConst() - typeLengthPlace;
    }

    Lines call(const Step& step, Record& record, Record& other)
    {
        TAVLib::SerializableObject& second = record;
        const auto byte = [&step](std::size_t i) {
            return static_cast<unsigned char>(step.number(i));
        };
        const auto number = [&step](std::size_t i) {
            return static_cast<unsigned int>(step.number(i));
        };
        switch (step.operation) {
        case GET_ALL:
            return {fmt::format("{}", fmt::join(values(record), " "))};
        case SET_BYTE:
            setByte(record, number(1), byte(2));
            return {};
        case SET_WORD:
            setWord(record, number(1), static_cast<unsigned short>(step.number(2)));
            return {};
        case SET_CHANNEL:
            record.setChannelNumber(byte(1));
            return {};
        case SET_LUN:
            record.setSensorOwnerLUN(byte(1));
            return {};
        case SET_ID_TYPE:
            record.setIDStringType(byte(1));
            return {};
        case SET_ID_LENGTH:
            record.setIDStringLength(number(1));
            return {};
        case SET_ID_BYTES:
            record.setIDStringBytes(step.bytes.data(), static_cast<unsigned int>(step.bytes.size()),
                                    byte(1));
            return {};
        case GET_ID_BYTES: {
            Bytes buffer(number(1), UNWRITTEN);
            const unsigned int count = record.getIDStringBytes(buffer.data(), number(1));
            return {fmt::format("{}: {}", count, hex(buffer))};
        }
        case POKE_ID_STRING:
            record.getIDStringStruct()[number(1) % 17] = byte(2);
            return {};
        case GET_SERIALIZED: {
            Bytes buffer(number(1), UNWRITTEN);
            const unsigned int count = number(2) % 2 == 0
                                           ? record.getSerialized(buffer.data(), number(1))
                                           : second.getSerialized(buffer.data(), number(1));
            return {fmt::format("{}: {}", count, hex(buffer))};
        }
        case SET_SERIALIZED: {
            const Bytes exact = step.bytes;
            const auto length = static_cast<unsigned int>(exact.size());
            return {fmt::format("{}", number(1) % 2 == 0
                                          ? record.setSerialized(exact.data(), length)
                                          : second.setSerialized(exact.data(), length))};
        }
        case LOAD_OWN_IMAGE:
            return {fmt::format("{}", second.setSerialized(imageOfRecord(record), number(1)))};
        case ASSIGN:
            record = other;
            return {};
        default: {
            const Record copy(record);
            other = copy;
            return {fmt::format("{}", fmt::join(values(copy), " "))};
        }
        }
    }

    static Values values(const Record& r)
    {
        const TAVLib::SerializableObject& second = r;
        return {r.getRecordID(),
                r.getRecordType(),
                r.getRecordLength(),
                r.getSensorOwnerID(),
                r.getChannelNumber(),
                r.getSensorOwnerLUN(),
                r.getSensorNumber(),
                r.getEntityID(),
                r.getEntityInstance(),
                r.getSensorInitialization(),
                r.getSensorCapabilities(),
                r.getSensorType(),
                r.getEvtReadTypeCode(),
                r.getAssertEventMask(),
                r.getDeassertEventMask(),
                r.getDiscreteReadMask(),
                r.getSensorUnits1(),
                r.getAnalogDataFormat(),
                r.getSensorUnits2(),
                r.getSensorUnits3(),
                r.getPositiveGoingThresholdHyst(),
                r.getNegativeGoingThresholdHyst(),
                r.getIDStringType(),
                r.getIDStringLength(),
                r.getCurrentRecordLength(),
                r.getSerializedSize(),
                second.getSerializedSize()};
    }

    static void setByte(Record& r, unsigned int which, unsigned char value)
    {
        switch (which % BYTE_SETTERS) {
        case 0:
            return r.setRecordType(value);
        case 1:
            return r.setRecordLength(value);
        case 2:
            return r.setSensorOwnerID(value);
        case 3:
            return r.setSensorNumber(value);
        case 4:
            return r.setEntityID(value);
        case 5:
            return r.setEntityInstance(value);
        case 6:
            return r.setSensorInitialization(value);
        case 7:
            return r.setSensorCapabilities(value);
        case 8:
            return r.setSensorType(value);
        case 9:
            return r.setEvtReadTypeCode(value);
        case 10:
            return r.setSensorUnits1(value);
        case 11:
            return r.setSensorUnits2(value);
        case 12:
            return r.setSensorUnits3(value);
        case 13:
            return r.setPositiveGoingThresholdHyst(value);
        default:
            return r.setNegativeGoingThresholdHyst(value);
        }
    }

    static void setWord(Record& r, unsigned int which, unsigned short value)
    {
        switch (which % WORD_SETTERS) {
        case 0:
            return r.setRecordID(value);
        case 1:
            return r.setAssertEventMask(value);
        case 2:
            return r.setDeassertEventMask(value);
        default:
            return r.setDiscreteReadMask(value);
        }
    }

    const std::size_t typeLengthPlace;
    const std::string names[2] = {"record 0", "record 1"};
    Record records[2];
    Medium images;
};

/// Offsets of the fields that the two kinds have at different places.
struct Kind {
    std::size_t positiveHyst;
    std::size_t negativeHyst;
    std::size_t idString;

    std::size_t fixedSize() const { return idString + 1; }
};

constexpr Kind FULL = {42, 43, 47};
constexpr Kind COMPACT = {25, 26, 31};

constexpr std::size_t LONGEST_STRING = 16;

class Rules : public Subject {
public:
    explicit Rules(const Kind& what) : kind(what)
    {
        images["record 0"].resize(kind.fixedSize() + LONGEST_STRING);
        images["record 1"].resize(kind.fixedSize() + LONGEST_STRING);
    }

    Lines perform(const Step& step) override
    {
        const bool odd = (step.number(0) & 1) != 0;
        Bytes& image = images[odd ? "record 1" : "record 0"];
        Bytes& other = images[odd ? "record 0" : "record 1"];
        try {
            return call(step, image, other);
        } catch (const Failure& failed) {
            return {failed.text};
        }
    }
    const Medium& medium() override { return images; }

private:
    Lines call(const Step& step, Bytes& image, Bytes& other)
    {
        unsigned char& typeLength = image[kind.idString];
        const auto byte = [&step](std::size_t i) {
            return static_cast<unsigned char>(step.number(i) & 0xFF);
        };
        const auto number = [&step](std::size_t i) {
            return static_cast<std::size_t>(step.number(i));
        };
        switch (step.operation) {
        case GET_ALL:
            return {fmt::format("{}", fmt::join(values(image), " "))};
        case SET_BYTE: {
            const std::size_t places[BYTE_SETTERS] = {
                3, 4, 5, 7, 8, 9, 10, 11, 12, 13, 20, 21, 22, kind.positiveHyst, kind.negativeHyst};
            image[places[number(1) % BYTE_SETTERS]] = byte(2);
            return {};
        }
        case SET_WORD: {
            const std::size_t places[WORD_SETTERS] = {0, 14, 16, 18};
            const std::size_t place = places[number(1) % WORD_SETTERS];
            image[place] = byte(2);
            image[place + 1] = static_cast<unsigned char>((step.number(2) >> 8) & 0xFF);
            return {};
        }
        case SET_CHANNEL:
            image[6] = static_cast<unsigned char>((byte(1) % 16) * 16 + image[6] % 16);
            return {};
        case SET_LUN:
            image[6] = static_cast<unsigned char>(byte(1) % 4 + image[6] / 4 * 4);
            return {};
        case SET_ID_TYPE:
            typeLength = withType(typeLength, byte(1));
            return {};
        case SET_ID_LENGTH:
            typeLength = withLength(typeLength, number(1));
            return {};
        case SET_ID_BYTES:
            setString(image, step.bytes, byte(1));
            return {};
        case GET_ID_BYTES:
            return {taken(image, kind.fixedSize(), lengthOf(image), number(1), true)};
        case POKE_ID_STRING:
            image[kind.idString + number(1) % 17] = byte(2);
            return {};
        case GET_SERIALIZED:
            return {taken(image, 0, kind.fixedSize() + lengthOf(image), number(1), false)};
        case SET_SERIALIZED:
            return {load(image, step.bytes) ? "true" : "false"};
        case LOAD_OWN_IMAGE: {
            const Bytes own = part(image, 0, number(1));
            return {load(image, own) ? "true" : "false"};
        }
        case ASSIGN:
            image = other;
            return {};
        default:
            other = image;
            return {fmt::format("{}", fmt::join(values(image), " "))};
        }
    }

    std::size_t lengthOf(const Bytes& image) const { return image[kind.idString] % 32; }

    static unsigned char withLength(unsigned char typeLength, std::size_t length)
    {
        return static_cast<unsigned char>(typeLength / 32 * 32 + std::min(length, LONGEST_STRING));
    }

    static unsigned char withType(unsigned char typeLength, unsigned char type)
    {
        return static_cast<unsigned char>(type % 4 * 64 + typeLength % 64);
    }

    void setString(Bytes& image, const Bytes& string, unsigned char type) const
    {
        if (string.size() > LONGEST_STRING) {
            throw failure(83, 0x0700, 1, 0x0B00, 20034,
                          {"setIDStringBytes(len)", std::to_string(string.size())});
        }
        unsigned char& typeLength = image[kind.idString];
        typeLength = withType(withLength(typeLength, string.size()), type);
        for (std::size_t i = 0; i < string.size(); ++i) {
            image[kind.fixedSize() + i] = string[i];
        }
        image[4] = static_cast<unsigned char>(kind.fixedSize() + string.size() - 5);
    }

    /// Bytes of the image from a place on, and zeroes where it has none, in a buffer with that much
    /// room. A buffer that is too small gets what fits, or nothing.
    static std::string taken(const Bytes& image, std::size_t from, std::size_t count,
                             std::size_t room, bool asMuchAsFits)
    {
        Bytes buffer(room, UNWRITTEN);
        if (count > room) {
            count = asMuchAsFits ? room : 0;
        }
        for (std::size_t i = 0; i < count; ++i) {
            buffer[i] = from + i < image.size() ? image[from + i] : 0;
        }
        return fmt::format("{}: {}", count, hex(buffer));
    }

    bool load(Bytes& image, const Bytes& data) const
    {
        if (data.size() < kind.fixedSize()) {
            return false;
        }
        for (std::size_t i = 0; i < kind.fixedSize(); ++i) {
            image[i] = data[i];
        }
        const std::size_t string = std::min(lengthOf(image), LONGEST_STRING);
        if (data.size() < kind.fixedSize() + string) {
            return false;
        }
        for (std::size_t i = 0; i < LONGEST_STRING; ++i) {
            image[kind.fixedSize() + i] = i < string ? data[kind.fixedSize() + i] : 0;
        }
        return true;
    }

    Values values(const Bytes& b) const
    {
        const auto word = [&b](std::size_t place) { return b[place] + 256U * b[place + 1]; };
        const auto size = static_cast<unsigned int>(kind.fixedSize() + lengthOf(b));
        return {word(0),
                b[3],
                b[4],
                b[5],
                b[6] / 16U,
                b[6] % 4U,
                b[7],
                b[8],
                b[9],
                b[10],
                b[11],
                b[12],
                b[13],
                word(14),
                word(16),
                word(18),
                b[20],
                b[20] / 64U,
                b[21],
                b[22],
                b[kind.positiveHyst],
                b[kind.negativeHyst],
                b[kind.idString] / 64U,
                b[kind.idString] % 32U,
                size - 5,
                size,
                size};
    }

    const Kind kind;
    Medium images;
};

Bytes anyImage(Random& random, const Kind& kind)
{
    const std::size_t around = kind.fixedSize();
    Bytes image = random.bytes(random.oneIn(4) ? random.below(90) : around - 2 + random.below(21));
    if (image.size() > kind.idString && !random.oneIn(3)) {
        // Mostly lengths that an image of this size can have.
        image[kind.idString] =
            static_cast<unsigned char>(image[kind.idString] / 32 * 32 + random.below(18));
    }
    return image;
}

Steps generate(Random& random, const Kind& kind)
{
    Steps steps;
    const int count = random.between(2, 12);
    for (int i = 0; i < count; ++i) {
        Step step;
        step.operation = random.oneIn(4) ? SET_SERIALIZED : random.between(0, OPERATIONS - 1);
        const int record = random.between(0, 1);
        switch (step.operation) {
        case SET_BYTE:
            step.numbers = {record, random.below(BYTE_SETTERS), random.byte()};
            break;
        case SET_WORD:
            step.numbers = {record, random.below(WORD_SETTERS), random.below(65536)};
            break;
        case SET_ID_LENGTH:
            step.numbers = {record, random.oneIn(5)
                                        ? random.oneOf({32, 40, 256, 0x7FFFFFFF, 0xFFFFFFFF})
                                        : random.between(0, 20)};
            break;
        case SET_ID_BYTES:
            step.numbers = {record, random.byte()};
            step.bytes = random.bytes(random.below(20));
            break;
        case GET_ID_BYTES:
            step.numbers = {record, random.below(40)};
            break;
        case POKE_ID_STRING:
            step.numbers = {record, random.oneIn(2) ? 0 : random.below(17), random.byte()};
            break;
        case GET_SERIALIZED:
            step.numbers = {record, random.below(100), random.below(2)};
            break;
        case SET_SERIALIZED:
            step.numbers = {record, random.below(2)};
            step.bytes = anyImage(random, kind);
            break;
        case LOAD_OWN_IMAGE:
            step.numbers = {record,
                            static_cast<long long>(kind.fixedSize() + 16) - random.below(20)};
            break;
        default:
            step.numbers = {record, random.byte()};
            break;
        }
        steps.push_back(step);
    }
    return steps;
}

std::string print(const Step& step)
{
    const char* const names[] = {"getAll",
                                 "setByte",
                                 "setWord",
                                 "setChannelNumber",
                                 "setSensorOwnerLUN",
                                 "setIDStringType",
                                 "setIDStringLength",
                                 "setIDStringBytes",
                                 "getIDStringBytes",
                                 "getIDStringStruct()[..] =",
                                 "getSerialized",
                                 "setSerialized",
                                 "setSerialized(own image)",
                                 "assign from the other",
                                 "copy to the other"};
    return callOf(names[step.operation], step);
}

template <typename Record> void compareRecords(const Kind& kind, unsigned int firstSeed)
{
    Comparison comparison;
    comparison.library = [kind] { return std::make_unique<Library<Record>>(kind.idString); };
    comparison.rules = [kind] { return std::make_unique<Rules>(kind); };
    comparison.generate = [kind](Random& random) { return generate(random, kind); };
    comparison.print = print;
    compare(comparison, 20000, firstSeed);
}

TEST(SensorRecordModel, FullRecordsKeepTheirRules)
{
    compareRecords<FullSensorRecord>(FULL, 81000);
}

TEST(SensorRecordModel, CompactRecordsKeepTheirRules)
{
    compareRecords<CompactSensorRecord>(COMPACT, 181000);
}

}
