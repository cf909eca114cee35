// SPDX-License-Identifier: Apache-2.0
#include <recordkit/sensor/SeverityMap.h>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <set>
#include <sys/stat.h>
#include <unistd.h>

#include "support/ScratchRoot.h"

using namespace testing_support;

namespace {

struct Row {
    unsigned char evtReadType;
    unsigned char sensorType;
    unsigned short masks[5]; // severity 1 to 5
};

// clang-format off
const Row ROWS[] = {
    {0x0B, 0x09, {0x000A, 0x0020, 0x0000, 0x0000, 0x0001}}, // Power unit
    {0x0B, 0x08, {0x000A, 0x0020, 0x0000, 0x0000, 0x0001}}, // Power supply
    {0x0B, 0x04, {0x000A, 0x0020, 0x0000, 0x0000, 0x0001}}, // Fan
    {0x0B, 0xC7, {0x000A, 0x0020, 0x0000, 0x0000, 0x0001}}, // OEM
    {0x0B, 0x15, {0x000A, 0x0020, 0x0000, 0x0000, 0x0001}}, // Module/board
    {0x06, 0x02, {0x0000, 0x0002, 0x0000, 0x0000, 0x0000}}, // Voltage
    {0x06, 0x18, {0x0002, 0x0000, 0x0000, 0x0000, 0x0000}}, // Chassis
    {0x07, 0x15, {0x0012, 0x0024, 0x0048, 0x0080, 0x0101}}, // Module/board
    {0x07, 0x18, {0x0012, 0x0024, 0x0048, 0x0080, 0x0101}}, // Chassis
    {0x08, 0x04, {0x0000, 0x0000, 0x0000, 0x0000, 0x0003}}, // Fan
    {0x08, 0x18, {0x0000, 0x0000, 0x0000, 0x0000, 0x0003}}, // Chassis
    {0x6F, 0x06, {0x0000, 0x0000, 0x0000, 0x0000, 0x0000}}, // Platform security violation attempt
    {0x6F, 0x07, {0x4000, 0x183D, 0x0002, 0x2000, 0x0500}}, // Processor
    {0x6F, 0x08, {0x0004, 0x006A, 0x0000, 0x0000, 0x0801}}, // Power supply
    {0x6F, 0x09, {0x0000, 0x0000, 0x0000, 0x0000, 0x0000}}, // Power unit
    {0x6F, 0x0C, {0x4020, 0x0082, 0x0000, 0x0001, 0x0010}}, // Memory
    {0x6F, 0x0E, {0x0000, 0x0000, 0x0000, 0x0000, 0x0000}}, // POST memory resize
    {0x6F, 0x0F, {0x0001, 0x0002, 0x0000, 0x0000, 0x0000}}, // System firmware progress
    {0x6F, 0x10, {0x0003, 0x0000, 0x0000, 0x0000, 0x0000}}, // Event logging disabled
    {0x6F, 0x12, {0x0000, 0x0000, 0x0000, 0x0000, 0x0000}}, // System event
    {0x6F, 0x13, {0x0000, 0x0000, 0x0000, 0x0000, 0x0000}}, // Critical interrupt
    {0x6F, 0x1B, {0x0000, 0x0000, 0x0000, 0x0000, 0x0003}}, // Cable/interconnect
    {0x6F, 0x1D, {0x0000, 0x0000, 0x0000, 0x0000, 0x0000}}, // System boot/restart initiated
    {0x6F, 0x21, {0x0000, 0x0001, 0x0000, 0x0000, 0x0000}}, // Slot/connector
    {0x6F, 0x23, {0x0000, 0x000F, 0x0000, 0x0000, 0x0000}}, // Watchdog 2
    {0x6F, 0x28, {0x0000, 0x0010, 0x0000, 0x0000, 0x0000}}, // Management subsystem health
    {0x6F, 0x29, {0x0000, 0x0000, 0x0000, 0x0000, 0x0000}}, // Battery
    {0x6F, 0x2B, {0x0000, 0x0004, 0x0000, 0x0000, 0x0000}}, // Version change
    {0x6F, 0x2C, {0x0000, 0x0080, 0x0000, 0x0000, 0x007F}}, // FRU state
    {0x6F, 0xC0, {0x0000, 0x0000, 0x0000, 0x0000, 0x0000}}, // OEM
    {0x6F, 0xC1, {0x0000, 0x0000, 0x0000, 0x0000, 0x0000}}, // OEM
    {0x6F, 0xC5, {0x0000, 0x0006, 0x0000, 0x0001, 0x0008}}, // OEM
    {0x6F, 0xC6, {0x0001, 0x0006, 0x0000, 0x0000, 0x0000}}, // OEM
    {0x6F, 0xC7, {0x0000, 0x0002, 0x0000, 0x0000, 0x0000}}, // OEM
    {0x6F, 0xC8, {0x0280, 0x0006, 0x0078, 0x0001, 0x0000}}, // OEM
    {0x6F, 0xC9, {0x0182, 0x0204, 0x0008, 0x0040, 0x0001}}, // OEM
    {0x6F, 0xCA, {0x0000, 0x0001, 0x0000, 0x0000, 0x0000}}, // OEM
    {0x07, 0x28, {0x0012, 0x0024, 0x0048, 0x0080, 0x0101}}, // Management subsystem health
    {0x6F, 0xDB, {0x0020, 0x0018, 0x0000, 0x0000, 0x0000}}, // OEM
    {0x6F, 0xDC, {0x0000, 0x0040, 0x0000, 0x0000, 0x0002}}, // OEM
    {0x6F, 0xDE, {0x0020, 0x0018, 0x0000, 0x0000, 0x0000}}, // OEM
    {0x6F, 0xDF, {0x0000, 0x0040, 0x0000, 0x0000, 0x0002}}, // OEM
};
// clang-format on

constexpr unsigned char REDUNDANCY = 0x0B;
constexpr unsigned char POWER_UNIT = 0x09;
constexpr unsigned char POWER_SUPPLY = 0x08;

SeverityMap::DISCRETESEVERITYSTAT severityOf(int number)
{
    return static_cast<SeverityMap::DISCRETESEVERITYSTAT>(number);
}

class SeverityMapTest : public testing::Test {
protected:
    std::string modeFile() const { return root.at("/tmp/psumode"); }
    void setMode(unsigned char mode) { writeFile(modeFile(), Bytes({mode})); }

    ScratchRoot root;
    SeverityMap& map = *SeverityMap::getInstance();
};

struct FiveMasks {
    unsigned short sev[5] = {0xAAAA, 0xAAAA, 0xAAAA, 0xAAAA, 0xAAAA};
};

FiveMasks severityMasks(SeverityMap& map, unsigned char evtReadType, unsigned char sensorType)
{
    FiveMasks masks;
    map.getSeverityMasks(evtReadType, sensorType, masks.sev[0], masks.sev[1], masks.sev[2],
                         masks.sev[3], masks.sev[4]);
    return masks;
}

}

TEST_F(SeverityMapTest, LinkAtTheModeFileIsNotWrittenThrough)
{
    writeFile(root.at("/tmp/target"), "precious");
    ASSERT_EQ(::symlink(root.at("/tmp/target").c_str(), modeFile().c_str()), 0);
    map.setPowerSupplyMode(true, true);
    EXPECT_EQ(readFile(root.at("/tmp/target")), textBytes("precious"));
}

TEST_F(SeverityMapTest, HasFortyTwoPairs)
{
    std::set<int> pairs;
    for (const Row& row : ROWS) {
        pairs.insert(row.evtReadType << 8 | row.sensorType);
    }
    EXPECT_EQ(pairs.size(), 42U);
    // Every pair of codes is in the table or unknown: an unknown one leaves its outputs unchanged.
    for (int evtReadType = 0; evtReadType < 0x100; ++evtReadType) {
        for (int sensorType = 0; sensorType < 0x100; ++sensorType) {
            unsigned short alarm = 0x5555;
            unsigned short warning = 0x5555;
            map.getAlarmMasks(static_cast<unsigned char>(evtReadType),
                              static_cast<unsigned char>(sensorType), alarm, warning);
            const bool isKnown = pairs.count(evtReadType << 8 | sensorType) != 0;
            ASSERT_EQ(alarm != 0x5555, isKnown) << evtReadType << " " << sensorType;
            ASSERT_EQ(warning != 0x5555, isKnown) << evtReadType << " " << sensorType;
        }
    }
}

TEST_F(SeverityMapTest, EveryRowHasItsMasks)
{
    setMode(1);
    for (const Row& row : ROWS) {
        SCOPED_TRACE(testing::Message() << int(row.evtReadType) << " " << int(row.sensorType));
        const FiveMasks masks = severityMasks(map, row.evtReadType, row.sensorType);
        for (int severity = 1; severity <= 5; ++severity) {
            EXPECT_EQ(masks.sev[severity - 1], row.masks[severity - 1]) << severity;
            EXPECT_EQ(map.getSeverityMask(row.evtReadType, row.sensorType, severityOf(severity)),
                      row.masks[severity - 1])
                << severity;
        }
        unsigned short alarm = 0;
        unsigned short warning = 0;
        map.getAlarmMasks(row.evtReadType, row.sensorType, alarm, warning);
        EXPECT_EQ(alarm, row.masks[1] | row.masks[2]);
        EXPECT_EQ(warning, row.masks[0]);
    }
}

TEST_F(SeverityMapTest, EveryOffsetHasItsSeverityAndAlarm)
{
    setMode(1);
    const int alarms[] = {0, 1, 2, 2, 0, 0};
    for (const Row& row : ROWS) {
        for (int offset = 0; offset < 16; ++offset) {
            int expected = 0;
            for (int severity = 1; severity <= 5; ++severity) {
                expected = (row.masks[severity - 1] >> offset & 1) != 0 ? severity : expected;
            }
            const auto bit = static_cast<unsigned short>(1 << offset);
            EXPECT_EQ(map.getSeverity(row.evtReadType, row.sensorType, bit), expected);
            EXPECT_EQ(map.getAlarmStatus(row.evtReadType, row.sensorType, bit), alarms[expected]);
        }
    }
}

TEST_F(SeverityMapTest, WorseOffsetsComeFirstAndMonitorBeforeInformational)
{
    EXPECT_EQ(map.getSeverity(0x07, 0x15, 0x0048), 3);
    EXPECT_EQ(map.getSeverity(0x07, 0x15, 0x01FF), 3);
    EXPECT_EQ(map.getSeverity(0x07, 0x15, 0x01B7), 2);
    EXPECT_EQ(map.getSeverity(0x07, 0x15, 0x0193), 1);
    EXPECT_EQ(map.getSeverity(0x07, 0x15, 0x0180), 4);
    EXPECT_EQ(map.getSeverity(0x07, 0x15, 0x0100), 5);
    EXPECT_EQ(map.getSeverity(0x07, 0x15, 0xFE00), 0);
    EXPECT_EQ(map.getSeverity(0x07, 0x15, 0x0000), 0);
}

TEST_F(SeverityMapTest, UnknownPairHasNoSeverityAndWritesNothing)
{
    EXPECT_EQ(map.getSeverity(0x6F, 0x05, 0xFFFF), 0);
    EXPECT_EQ(map.getAlarmStatus(0x6F, 0x05, 0xFFFF), 0);
    EXPECT_EQ(map.getSeverityMask(0x6F, 0x05, severityOf(2)), 0);
    const FiveMasks masks = severityMasks(map, 0x6F, 0x05);
    for (const unsigned short mask : masks.sev) {
        EXPECT_EQ(mask, 0xAAAA);
    }
}

TEST_F(SeverityMapTest, KnownPairWithoutOffsetsWritesZeroes)
{
    unsigned short alarm = 0x5555;
    unsigned short warning = 0x5555;
    map.getAlarmMasks(0x6F, 0x12, alarm, warning);
    EXPECT_EQ(alarm, 0);
    EXPECT_EQ(warning, 0);
    EXPECT_EQ(map.getSeverity(0x6F, 0x12, 0xFFFF), 0);
}

TEST_F(SeverityMapTest, SeverityMaskKnowsSeveritiesOneToFive)
{
    for (const int severity : {-1, 0, 6, 255}) {
        EXPECT_EQ(map.getSeverityMask(0x07, 0x18, severityOf(severity)), 0) << severity;
    }
}

TEST_F(SeverityMapTest, SeverityWithoutAnAlarmStatusRaisesNone)
{
    const int alarms[] = {0, 1, 2, 2, 0, 0};
    for (int severity = 0; severity <= 5; ++severity) {
        EXPECT_EQ(map.severityToAlarmStatus(severityOf(severity)), alarms[severity]);
    }
    for (const int severity : {-1, 6, 1000000, -1000000}) {
        EXPECT_EQ(map.severityToAlarmStatus(severityOf(severity)), 0);
    }
}

TEST_F(SeverityMapTest, LosingRedundancyIsAWarningOnlyInARedundantConfiguration)
{
    EXPECT_EQ(map.getSeverity(REDUNDANCY, POWER_UNIT, 0x0008), 0);
    for (unsigned int mode = 0; mode < 0x100; ++mode) {
        setMode(static_cast<unsigned char>(mode));
        const int expected = (mode & 3) != 0 ? 1 : 0;
        EXPECT_EQ(map.getSeverity(REDUNDANCY, POWER_UNIT, 0x0008), expected) << mode;
        EXPECT_EQ(map.getSeverity(REDUNDANCY, POWER_SUPPLY, 0x0008), 1) << mode;
    }
}

TEST_F(SeverityMapTest, NonRedundantConfigurationFallsBackToTheOtherSeverities)
{
    setMode(0);
    EXPECT_EQ(map.getSeverity(REDUNDANCY, POWER_UNIT, 0x0009), 5);
    EXPECT_EQ(map.getSeverity(REDUNDANCY, POWER_UNIT, 0x0002), 0); // offset 1 too
    EXPECT_EQ(map.getSeverity(REDUNDANCY, POWER_UNIT, 0x0028), 2);
    setMode(2);
    EXPECT_EQ(map.getSeverity(REDUNDANCY, POWER_UNIT, 0x0009), 1);
    EXPECT_EQ(map.getSeverity(REDUNDANCY, POWER_UNIT, 0x0002), 1);
}

TEST_F(SeverityMapTest, EmptyModeFileCountsAsZero)
{
    writeFile(modeFile(), Bytes());
    EXPECT_EQ(map.getSeverity(REDUNDANCY, POWER_UNIT, 0x0008), 0);
}

TEST_F(SeverityMapTest, MasksOfThePowerUnitFollowTheMode)
{
    unsigned short alarm = 0;
    unsigned short warning = 0;
    setMode(0);
    map.getAlarmMasks(REDUNDANCY, POWER_UNIT, alarm, warning);
    EXPECT_EQ(alarm, 0x0020);
    EXPECT_EQ(warning, 0x0002);
    EXPECT_EQ(severityMasks(map, REDUNDANCY, POWER_UNIT).sev[0], 0x0002);
    EXPECT_EQ(map.getSeverityMask(REDUNDANCY, POWER_UNIT, severityOf(1)), 0x000A);
    for (const unsigned char mode : {1, 2, 3}) {
        setMode(mode);
        map.getAlarmMasks(REDUNDANCY, POWER_UNIT, alarm, warning);
        EXPECT_EQ(alarm, 0x0020);
        EXPECT_EQ(warning, 0x000A);
        EXPECT_EQ(severityMasks(map, REDUNDANCY, POWER_UNIT).sev[0], 0x000A);
    }
}

TEST_F(SeverityMapTest, MasksOfOtherPairsIgnoreTheMode)
{
    setMode(0);
    unsigned short alarm = 0;
    unsigned short warning = 0;
    map.getAlarmMasks(REDUNDANCY, POWER_SUPPLY, alarm, warning);
    EXPECT_EQ(warning, 0x000A);
    EXPECT_EQ(severityMasks(map, REDUNDANCY, POWER_SUPPLY).sev[0], 0x000A);
}

TEST_F(SeverityMapTest, WritesTheModeAsOneByte)
{
    const struct {
        bool psmode;
        bool psuredmode;
        unsigned char byte;
    } modes[] = {{false, false, 0}, {true, false, 1}, {false, true, 2}, {true, true, 3}};
    for (const auto& mode : modes) {
        map.setPowerSupplyMode(mode.psmode, mode.psuredmode);
        EXPECT_EQ(readFile(modeFile()), Bytes({mode.byte}));
    }
}

TEST_F(SeverityMapTest, WritingTheModeDoesNotTruncateTheFile)
{
    writeFile(modeFile(), Bytes({0x07, 0x08, 0x09}));
    map.setPowerSupplyMode(false, true);
    EXPECT_EQ(readFile(modeFile()), Bytes({0x02, 0x08, 0x09}));
}

TEST_F(SeverityMapTest, ModeFileIsCreatedForItsOwnerToWrite)
{
    const mode_t before = ::umask(0);
    map.setPowerSupplyMode(true, true);
    ::umask(before);
    struct stat status = {};
    ASSERT_EQ(::stat(modeFile().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0644U);
}

TEST_F(SeverityMapTest, ModeThatCannotBeWrittenIsIgnored)
{
    ASSERT_EQ(::mkdir(modeFile().c_str(), 0700), 0);
    map.setPowerSupplyMode(true, true);
    EXPECT_EQ(map.getSeverity(REDUNDANCY, POWER_UNIT, 0x0008), 0);
}

TEST_F(SeverityMapTest, ModeFileIsNotReadOnDescriptorZero)
{
    setMode(3);
    const int saved = ::dup(0);
    ::close(0);
    const auto severity = map.getSeverity(REDUNDANCY, POWER_UNIT, 0x0008);
    const bool isClosedAgain = ::fcntl(0, F_GETFD) == -1;
    map.setPowerSupplyMode(true, false);
    const bool isStillClosed = ::fcntl(0, F_GETFD) == -1;
    if (saved != -1) {
        ::dup2(saved, 0);
        ::close(saved);
    }
    EXPECT_EQ(severity, 0);
    EXPECT_TRUE(isClosedAgain);
    EXPECT_TRUE(isStillClosed);
    EXPECT_EQ(readFile(modeFile()), Bytes({3}));
}

TEST_F(SeverityMapTest, LeavesNoDescriptorOpen)
{
    setMode(3);
    const std::size_t before = openDescriptors();
    map.updatePowerSupplyMode();
    map.setPowerSupplyMode(true, true);
    EXPECT_EQ(openDescriptors(), before);
}

TEST_F(SeverityMapTest, DiscreteCriticalityKnowsModulesAndTheChassisAlone)
{
    for (const unsigned char sensorType : {0x15, 0x18}) {
        for (unsigned int offsets = 0; offsets < 0x200; ++offsets) {
            int expected = 0;
            expected = (offsets & 0x12) != 0 ? 1 : expected;
            expected = (offsets & 0x24) != 0 ? 2 : expected;
            expected = (offsets & 0x48) != 0 ? 3 : expected;
            ASSERT_EQ(map.getDiscreteCriticalityStatus(0x07, sensorType,
                                                       static_cast<unsigned short>(offsets)),
                      expected)
                << offsets;
        }
    }
    EXPECT_EQ(map.getDiscreteCriticalityStatus(0x07, 0x28, 0x0048), 0);
    EXPECT_EQ(map.getSeverity(0x07, 0x28, 0x0048), 3);
    EXPECT_EQ(map.getDiscreteCriticalityStatus(0x6F, 0x15, 0x0048), 0);
    EXPECT_EQ(map.getDiscreteCriticalityStatus(0x07, 0x14, 0x0048), 0);
}

TEST_F(SeverityMapTest, OnlyTheFirstMasksOfAPairAreKept)
{
    const SeverityMap::offsetToSev_t list[] = {{0, SeverityMap::SEV_CRITICAL}};
    map.setMasks(0x6F, 0x21, list, 1);
    EXPECT_EQ(map.getSeverityMask(0x6F, 0x21, severityOf(2)), 0x0001);
    map.setMasks(0x07, 0x18, list, 1);
    EXPECT_EQ(map.getSeverityMask(0x07, 0x18, severityOf(2)), 0x0024);
}

TEST_F(SeverityMapTest, OffsetsCountModuloSixtyFour)
{
    for (unsigned int offset = 0; offset < 256; ++offset) {
        const SeverityMap::offsetToSev_t entry = {static_cast<unsigned char>(offset),
                                                  severityOf(3)};
        // A pair of the test's own for each, as the map of the process keeps them.
        const auto sensorType = static_cast<unsigned char>(offset);
        map.setMasks(0x71, sensorType, &entry, 1);
        const unsigned int expected = offset % 64 < 16 ? 1U << offset % 64 : 0;
        EXPECT_EQ(map.getSeverityMask(0x71, sensorType, severityOf(3)), expected) << offset;
    }
    EXPECT_EQ(map.getSeverityMask(0x71, 64, severityOf(3)), 0x0001);
    EXPECT_EQ(map.getSeverityMask(0x71, 79, severityOf(3)), 0x8000);
    EXPECT_EQ(map.getSeverityMask(0x71, 80, severityOf(3)), 0);
}

TEST_F(SeverityMapTest, OffsetsBeyondFifteenAndOtherSeveritiesSetNothing)
{
    const SeverityMap::offsetToSev_t list[] = {
        {15, severityOf(1)}, {16, severityOf(1)}, {31, severityOf(2)},   {32, severityOf(2)},
        {63, severityOf(3)}, {47, severityOf(3)}, {0xFF, severityOf(4)}, {3, severityOf(0)},
        {4, severityOf(6)},  {5, severityOf(-1)},
    };
    // A pair of the test's own, as the map of the process keeps it.
    map.setMasks(0x70, 0x01, list, 10);
    EXPECT_EQ(map.getSeverityMask(0x70, 0x01, severityOf(1)), 0x8000);
    for (int severity = 2; severity <= 5; ++severity) {
        EXPECT_EQ(map.getSeverityMask(0x70, 0x01, severityOf(severity)), 0) << severity;
    }
}

TEST_F(SeverityMapTest, CountLimitsTheList)
{
    const SeverityMap::offsetToSev_t list[] = {{0, severityOf(1)}, {1, severityOf(1)}};
    map.setMasks(0x70, 0x02, list, 1);
    EXPECT_EQ(map.getSeverityMask(0x70, 0x02, severityOf(1)), 0x0001);
    map.setMasks(0x70, 0x03, nullptr, 0);
    EXPECT_EQ(map.getSeverityMask(0x70, 0x03, severityOf(1)), 0);
}

TEST_F(SeverityMapTest, IsBuiltOnce)
{
    EXPECT_EQ(SeverityMap::getInstance(), &map);
    map.initializeSeverityData();
    EXPECT_EQ(map.getSeverityMask(0x07, 0x18, severityOf(2)), 0x0024);
}
