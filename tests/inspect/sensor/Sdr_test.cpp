// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <sstream>

#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/inspect/bytes/Text.h>
#include <recordkit/inspect/sensor/Sensor.h>
#include <recordkit/inspect/sensor/SensorText.h>
#include <recordkit/inspect/words/Entities.h>
#include <recordkit/inspect/words/SensorUnits.h>

#include "support/Answers.h"
#include "support/Bytes.h"
#include "support/Failures.h"
#include "support/Process.h"
#include "support/ScratchRoot.h"
#include "support/SdrRecords.h"

using namespace recordkit::inspect;
using namespace testing_support;

namespace {

SdrFile parse(const Bytes& bytes, SdrFormat format = SdrFormat::AUTO)
{
    return parseSdrFile(std::string(bytes.begin(), bytes.end()), format);
}

Lines idsOf(const SdrFile& file)
{
    Lines ids;
    for (const SdrRecord& each : file.records) {
        ids.push_back(std::to_string(each.id()) + "@" + std::to_string(each.offset));
    }
    return ids;
}

}

TEST(SdrFile, WalksRecordsByTheirLengths)
{
    const SdrFile file =
        parse(compactSdr(1, "PS1") + sdrRecord(2, 0xC0, sequence(7)) + compactSdr(3, ""));
    EXPECT_EQ(idsOf(file), Lines({"1@0", "2@35", "3@47"}));
    EXPECT_EQ(file.problems, Lines());
}

TEST(SdrFile, KnowsAnswersToGetSdr)
{
    const Bytes answers = Bytes({2, 0}) + compactSdr(1, "PS1") + Bytes({3, 0}) +
                          compactSdr(2, "PS2") + Bytes({0xFF, 0xFF}) + compactSdr(3, "PS3");
    EXPECT_EQ(idsOf(parse(answers)), Lines({"1@2", "2@39", "3@76"}));
    EXPECT_EQ(parse(answers).problems, Lines());
    EXPECT_EQ(idsOf(parse(answers, SdrFormat::RESPONSES)), idsOf(parse(answers)));
    EXPECT_FALSE(parse(answers, SdrFormat::DUMP).problems.empty());
}

TEST(SdrFile, DamagedRecordIsNamedAndTheWalkGoesOn)
{
    Bytes version = compactSdr(2, "PS2");
    version[2] = 0x42;
    const SdrFile file = parse(compactSdr(1, "PS1") + version + compactSdr(3, "PS3"));
    EXPECT_EQ(idsOf(file), Lines({"1@0", "3@70"}));
    EXPECT_EQ(file.problems,
              Lines({"record at offset 35: SDR version 42h at offset 37, expected 51h"}));
    const SdrFile tooShort =
        parse(compactSdr(1, "PS1") + sdrRecord(2, SDR_FULL, Bytes(42, 1)) + compactSdr(3, "PS3"));
    EXPECT_EQ(idsOf(tooShort), Lines({"1@0", "3@82"}));
    EXPECT_EQ(tooShort.problems, Lines({"record at offset 35: 42 bytes, expected at least 43 for "
                                        "type 01h"}));
}

TEST(SdrFile, WalksEnd)
{
    // Lengths of 0 and 255.
    const SdrFile zero =
        parse(sdrRecord(1, 0xC0, {}) + sdrRecord(2, 0xC0, {}) + sdrRecord(3, 0xC0, {}));
    EXPECT_EQ(idsOf(zero), Lines({"1@0", "2@5", "3@10"}));
    const SdrFile longest = parse(sdrRecord(1, 0xC0, Bytes(255, 7)) + compactSdr(2, "x1"));
    EXPECT_EQ(idsOf(longest), Lines({"1@0", "2@260"}));
    // A length that runs past the file.
    Bytes cut = compactSdr(1, "PS1") + compactSdr(2, "PS2");
    cut.pop_back();
    EXPECT_EQ(parse(cut).problems,
              Lines({"record at offset 35: length byte 30 at offset 39 runs past the 69 bytes"}));
    EXPECT_EQ(idsOf(parse(cut)), Lines({"1@0"}));
    EXPECT_EQ(parse({1, 0, 0x51, 1}).problems,
              Lines({"record at offset 0: no room for its header in 4 bytes"}));
    // Nothing but zeroes, and nothing at all.
    EXPECT_EQ(parse(Bytes(65536, 0)).problems,
              Lines({"65536 bytes at offset 0 contain no record"}));
    EXPECT_EQ(parse(Bytes(65536, 0)).records.size(), 0U);
    EXPECT_EQ(parse(compactSdr(1, "PS1") + Bytes(100, 0xFF)).problems,
              Lines({"100 bytes at offset 35 contain no record"}));
    EXPECT_EQ(parse({}).problems, Lines());
    // Zeroes in front of a byte are records without a type, none of them any good.
    EXPECT_EQ(parse(Bytes(100000, 0) + Bytes({1})).problems.size(), 20001U);
    // Noise.
    for (unsigned int first = 0; first < 256; ++first) {
        Bytes noise;
        for (unsigned int i = 0; i < 2000; ++i) {
            noise.push_back(static_cast<unsigned char>((first + i) * (first + 7 * i) >> 3));
        }
        const SdrFile file = parse(noise);
        EXPECT_LE(file.records.size() + file.problems.size(), 401U);
    }
}

TEST(Sensor, NamesOfEveryCodingAreDecoded)
{
    EXPECT_EQ(idStringText(0xC3, std::string("abc")), "abc");
    EXPECT_EQ(idStringText(0xC4, std::string("ab\0c", 4)), "ab");
    EXPECT_EQ(idStringText(0xC2, std::string("\xE9z")), "\xC3\xA9z");
    EXPECT_EQ(idStringText(0x83, std::string("\x29\xDC\xA6")), "IPMI");
    EXPECT_EQ(idStringText(0x42, std::string("\x12\xAB")), "12 -");
    EXPECT_EQ(idStringText(0x04, std::string("a\0\xE5\x65", 4)), "a\xE6\x97\xA5");
}

TEST(Sensor, TypeLengthByteOfFFIsBounded)
{
    Bytes body(27, 0);
    body[26] = 0xFF; // 31 bytes of text
    const SdrFile file = parse(sdrRecord(1, SDR_COMPACT, body + Bytes(16, 'x')));
    EXPECT_EQ(readSensor(file.records.at(0)).name, std::string(16, 'x'));
    const SdrFile cut = parse(sdrRecord(1, SDR_COMPACT, body + Bytes(15, 'x')));
    try {
        readSensor(cut.records.at(0));
        ADD_FAILURE() << "read";
    } catch (const DataError& e) {
        EXPECT_STREQ(e.what(), "record at offset 0: 47 bytes, its id string is cut off");
    }
    // And in records that are not sensors.
    Bytes locator(11, 0);
    locator[10] = 0xFF;
    const SdrFile other = parse(sdrRecord(1, SDR_FRU_LOCATOR, locator + textBytes("abc")));
    EXPECT_EQ(readSensor(other.records.at(0)).name, "abc");
}

TEST(Tables, EntitiesAndUnitsHaveNames)
{
    EXPECT_EQ(entityName(0x07), "system board");
    EXPECT_EQ(entityName(0x0A), "power supply");
    EXPECT_EQ(entityName(0x1D), "fan or cooling device");
    EXPECT_EQ(entityName(0x20), "memory device");
    EXPECT_EQ(entityName(0x28), "battery");
    EXPECT_EQ(entityName(0x37), "air inlet");
    EXPECT_EQ(entityName(0x42), "baseboard");
    EXPECT_EQ(entityName(0x43), "entity 67");
    EXPECT_EQ(sensorUnitName(1), "degrees C");
    EXPECT_EQ(sensorUnitName(6), "Watts");
    EXPECT_EQ(sensorUnitName(18), "RPM");
    EXPECT_EQ(sensorUnitName(65), "color temp deg K");
    EXPECT_EQ(sensorUnitName(92), "grams");
    EXPECT_EQ(sensorUnitName(93), "unit 93");
}

namespace {

/// A full record of a threshold sensor with these bytes of its conversion.
Sensor fullSensor(unsigned char linearization, unsigned char m, unsigned char mHigh,
                  unsigned char exponents)
{
    Bytes body(43, 0);
    body[8] = 0x01; // threshold
    body[18] = linearization;
    body[19] = m;
    body[20] = mHigh;
    body[24] = exponents;
    body[42] = 0xC0;
    return readSensor(parse(sdrRecord(1, SDR_FULL, body)).records.at(0));
}

}

TEST(Sensor, CountsOfADifferenceAreConverted)
{
    EXPECT_DOUBLE_EQ(fullSensor(0, 120, 0, 0x00).conversion->differenceOf(1).value(), 120);
    EXPECT_DOUBLE_EQ(fullSensor(0, 0x2C, 0x40, 0x00).conversion->differenceOf(1).value(), 300);
    EXPECT_DOUBLE_EQ(fullSensor(0, 0xFF, 0xC0, 0x00).conversion->differenceOf(1).value(), -1);
    EXPECT_DOUBLE_EQ(fullSensor(0, 5, 0, 0xE0).conversion->differenceOf(1).value(), 0.05);
    EXPECT_DOUBLE_EQ(fullSensor(0, 5, 0, 0x7F).conversion->differenceOf(1).value(), 5e7);
    EXPECT_FALSE(fullSensor(1, 120, 0, 0x00).conversion->differenceOf(1))
        << "a logarithm has no fixed slope";
    EXPECT_FALSE(readSensor(parse(compactSdr(1, "PS1")).records.at(0)).conversion);
}

namespace {

/// A compact record of sensors from 10h on that share it, with these bytes 24 and 25.
Bytes sharedSdr(unsigned char sharing, unsigned char modifier)
{
    Bytes record = compactSdr(0x10, "Slot ");
    record[5] = 0x20;
    record[6] = 0x02;
    record[8] = 7;    // entity
    record[9] = 0x60; // instance
    record[23] = sharing;
    record[24] = modifier;
    return record;
}

std::string sharedName(const Bytes& record, unsigned char number)
{
    SensorNames names;
    addNames({readSensor(parse(record).records.at(0))}, names);
    const NamedSensor* const found = names.find({0x20, 0x02}, number);
    return found == nullptr ? "none" : found->name + "/" + found->entity + " " + found->entityName;
}

}

TEST(Sensor, NamesOfASharedRecordFollowEachOther)
{
    const Bytes numeric = sharedSdr(0x03, 0x09);
    EXPECT_EQ(sharedName(numeric, 0x0F), "none");
    EXPECT_EQ(sharedName(numeric, 0x10), "Slot 9/7.96 system board");
    EXPECT_EQ(sharedName(numeric, 0x12), "Slot 11/7.96 system board");
    EXPECT_EQ(sharedName(numeric, 0x13), "none");
    const Bytes letters = sharedSdr(0x13, 0x80 | 24);
    EXPECT_EQ(sharedName(letters, 0x10), "Slot Y/7.96 system board");
    EXPECT_EQ(sharedName(letters, 0x11), "Slot Z/7.97 system board");
    EXPECT_EQ(sharedName(letters, 0x12), "Slot AA/7.98 system board");
    for (const unsigned char alone : {0x00, 0x01}) {
        EXPECT_EQ(sharedName(sharedSdr(alone, 0x09), 0x10), "Slot /7.96 system board");
        EXPECT_EQ(sharedName(sharedSdr(alone, 0x09), 0x11), "none");
    }
}

TEST(Sensor, EventOnlyRecordsNameSensorsLocatorsDoNot)
{
    Bytes body(12, 0);
    body[0] = 0x20;
    body[2] = 0x30; // number
    body[3] = 7;
    body[6] = 0x6F;
    body[11] = 0xC4;
    const Bytes record = sdrRecord(1, SDR_EVENT_ONLY, body + textBytes("POST"));
    SensorNames names;
    addNames({readSensor(parse(record).records.at(0))}, names);
    ASSERT_NE(names.find({0x20, 0x00}, 0x30), nullptr);
    EXPECT_EQ(names.find({0x20, 0x00}, 0x30)->name, "POST");
    const Bytes locator = sdrRecord(2, SDR_FRU_LOCATOR, Bytes(11, 0));
    SensorNames none;
    addNames({readSensor(parse(locator).records.at(0))}, none);
    EXPECT_EQ(none.find({0, 0}, 0), nullptr);
}
