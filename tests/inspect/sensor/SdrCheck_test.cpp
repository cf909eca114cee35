// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/sensor/SdrCheck.h>

#include <gtest/gtest.h>

#include "support/Failures.h"
#include "support/SdrRecords.h"

using namespace recordkit::inspect;
using namespace testing_support;

namespace {

/// A compact record without any oddity.
Bytes sound(unsigned char id)
{
    Bytes record = compactSdr(id, "PS");
    record[8] = 10; // entity
    return record;
}

/// A full record of sensor 50h with these thresholds from the lowest to the highest, all of them
/// readable.
Bytes withThresholds(const Bytes& raw)
{
    Bytes body(43, 0);
    body[2] = 0x50;
    body[3] = 10;
    body[6] = 0x0C; // thresholds are readable and settable
    body[7] = 0x04;
    body[8] = 0x01;
    body[13] = 0x3F;
    body[19] = 1; // M
    for (std::size_t i = 0; i < 3; ++i) {
        body[34 + i] = raw[i];
        body[31 + i] = raw[5 - i];
    }
    body[42] = 0xC0;
    return sdrRecord(9, SDR_FULL, body);
}

Lines odditiesOf(const Bytes& content)
{
    Lines lines;
    for (const SdrOddity& oddity : checkRepository(parseSdrFile(content).records)) {
        lines.push_back(std::to_string(oddity.id) + "@" + std::to_string(oddity.offset) + " " +
                        oddity.name + ": " + oddity.text);
    }
    return lines;
}

}

TEST(SdrCheck, FindsNothingInSoundRecords)
{
    EXPECT_EQ(odditiesOf(sound(1) + sound(2)), Lines());
    EXPECT_EQ(odditiesOf(withThresholds({1, 2, 3, 4, 5, 6})), Lines());
    EXPECT_EQ(odditiesOf(withThresholds({3, 3, 3, 3, 3, 3})), Lines());
}

TEST(SdrCheck, FindsIdsAndSensorsThatOccurTwice)
{
    Bytes same = sound(2);
    same[0] = 1;
    EXPECT_EQ(odditiesOf(sound(1) + same),
              Lines({"1@34 PS: the record at offset 0 has the same id"}));
    Bytes number = sound(2);
    number[7] = 1;
    EXPECT_EQ(odditiesOf(sound(1) + number),
              Lines({"2@34 PS: the record at offset 0 describes sensor 01h too"}));
    // Another owner or LUN has sensors of its own.
    number[5] = 0x22;
    EXPECT_EQ(odditiesOf(sound(1) + number), Lines());
    number[5] = 0;
    number[6] = 1;
    EXPECT_EQ(odditiesOf(sound(1) + number), Lines());
    // A shared record has the numbers after its own, too.
    Bytes shared = sound(1);
    shared[23] = 2;
    EXPECT_EQ(odditiesOf(shared + sound(2)),
              Lines({"2@34 PS: the record at offset 0 describes sensor 02h too"}));
    EXPECT_EQ(odditiesOf(shared + sound(3)), Lines());
}

TEST(SdrCheck, FindsThresholdsThatDoNotRise)
{
    for (std::size_t i = 0; i < 5; ++i) {
        Bytes raw = {10, 20, 30, 40, 50, 60};
        raw[i + 1] = static_cast<unsigned char>(raw[i] - 1);
        EXPECT_EQ(odditiesOf(withThresholds(raw)), Lines({"9@0 : its thresholds do not rise"}))
            << i;
    }
    // A threshold whose bit the mask lacks is not compared.
    Bytes two = withThresholds({10, 20, 30, 40, 5, 60});
    two[18] = 0x2F;
    EXPECT_EQ(odditiesOf(two), Lines());
}

TEST(SdrCheck, FindsWhatTheStandardDoesNotKnow)
{
    Bytes entity = sound(1);
    entity[8] = 0;
    EXPECT_EQ(odditiesOf(entity), Lines({"1@0 PS: its entity is unspecified"}));
    const auto withTypes = [](unsigned char sensorType, unsigned char eventType) {
        Bytes record = sound(1);
        record[12] = sensorType;
        record[13] = eventType;
        return odditiesOf(record);
    };
    for (const unsigned char type : {0x01, 0x2C, 0xC0, 0xFF}) {
        EXPECT_EQ(withTypes(type, 0x6F), Lines()) << int{type};
    }
    for (const unsigned char type : {0x00, 0x2D, 0xBF}) {
        EXPECT_EQ(withTypes(type, 0x6F).size(), 1U) << int{type};
    }
    for (const unsigned char type : {0x00, 0x01, 0x0C, 0x6F, 0x70, 0x7F}) {
        EXPECT_EQ(withTypes(0x08, type), Lines()) << int{type};
    }
    EXPECT_EQ(withTypes(0x08, 0x0D), Lines({"1@0 PS: event/reading type 0Dh is reserved"}));
    for (const unsigned char type : {0x6E, 0x80, 0xFF}) {
        EXPECT_EQ(withTypes(0x08, type).size(), 1U) << int{type};
    }
    EXPECT_EQ(odditiesOf(sdrRecord(3, 0x2A, Bytes(4, 1))),
              Lines({"3@0 : record type 2Ah is not one of the standard"}));
    EXPECT_EQ(odditiesOf(sdrRecord(3, 0xC0, Bytes(4, 1))), Lines());
}

TEST(SdrCheck, FindsNamesThatAreCutOff)
{
    Bytes body(11, 0);
    body[10] = 0xC5;
    const Bytes locator = sdrRecord(4, SDR_FRU_LOCATOR, body + textBytes("Main"));
    EXPECT_EQ(odditiesOf(locator),
              Lines({"4@0 Main: its name is cut off: 4 of 5 bytes are there"}));
    const Bytes whole = sdrRecord(4, SDR_FRU_LOCATOR, body + textBytes("Main1"));
    EXPECT_EQ(odditiesOf(whole), Lines());
}
