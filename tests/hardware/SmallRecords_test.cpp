// SPDX-License-Identifier: Apache-2.0
#include <functional>
#include <gtest/gtest.h>

#include <recordkit/hardware/BMC_BootFlagsClearData.h>
#include <recordkit/hardware/BootFlagsData.h>
#include <recordkit/hardware/DeviceInfo.h>
#include <recordkit/hardware/EventFilterTable.h>
#include <recordkit/hardware/IOUPortConfiguration.h>
#include <recordkit/hardware/ManufacturingTestOn.h>
#include <recordkit/hardware/OSBootWatchdogData.h>
#include <recordkit/hardware/PCICardInfo.h>
#include <recordkit/hardware/PCISlotLocation.h>
#include <recordkit/hardware/PSUStatus.h>
#include <recordkit/hardware/UserAccess.h>

#include "support/Bytes.h"
#include "support/Failures.h"

using namespace TAVLib::RecordKit;
using namespace testing_support;

namespace {

/// A query and the one bit of the image that it reads; -1 for none.
template <typename Record> struct Flag {
    bool (Record::*query)() const;
    unsigned int byte;
    unsigned int bit;
};

/// Sets each bit of the image by itself: exactly the query of that bit is true.
template <typename Record>
void expectFlags(const std::vector<Flag<Record>>& flags, std::size_t size)
{
    for (std::size_t byte = 0; byte < size; ++byte) {
        for (unsigned int bit = 0; bit < 8; ++bit) {
            Bytes image(size, 0);
            image[byte] = static_cast<unsigned char>(1U << bit);
            const auto record = fromBytes<Record>(image);
            for (const Flag<Record>& flag : flags) {
                EXPECT_EQ((record.*flag.query)(), flag.byte == byte && flag.bit == bit)
                    << "byte " << byte << " bit " << bit;
            }
        }
    }
}

}

TEST(PSUStatus, EachConditionHasItsBit)
{
    expectFlags<PSUStatus>({{&PSUStatus::isPowerOn, 0, 0},
                            {&PSUStatus::isInstalled, 1, 0},
                            {&PSUStatus::isFailure, 1, 1},
                            {&PSUStatus::isPredictiveFailure, 1, 2},
                            {&PSUStatus::isACLost, 1, 3},
                            {&PSUStatus::isOutOfRange, 1, 5},
                            {&PSUStatus::isConfigError, 1, 6}},
                           2);
}

TEST(UserAccess, ReadsCountsAndRights)
{
    const auto access = fromBytes<UserAccess>({0xC1, 0xC2, 0xC3, 0xF4});
    EXPECT_EQ(access.getMaxUsrNum(), 0xC1);
    EXPECT_EQ(access.getEnabledUsrCount(), 0xC2);
    EXPECT_EQ(access.getFixedNameUsrCount(), 0xC3);
    EXPECT_EQ(access.getPrivilegeLevel(), 4);
    expectFlags<UserAccess>(
        {{&UserAccess::isMessagingEnabled, 3, 4}, {&UserAccess::isAuthEnabled, 3, 5}}, 4);
}

TEST(EventFilterTable, ReadsTheFieldsOfAnEntry)
{
    const auto entry = fromBytes<EventFilterTable>(sequence(20));
    EXPECT_EQ(entry.getGeneratorIdByte1(), 4);
    EXPECT_EQ(entry.getSensorType(), 6);
    EXPECT_EQ(entry.getSensorNumber(), 7);
    EXPECT_EQ(entry.getEventOffsetMask(), 0x0A09);
    EXPECT_EQ(entry.getSerializedSize(), 20U);
    expectFlags<EventFilterTable>({{&EventFilterTable::isFilterEnabled, 0, 7}}, 20);
}

TEST(EventFilterTable, TakesItsSizeAndRefusesLess)
{
    EventFilterTable entry;
    EXPECT_EQ(imageOf(entry), Bytes(20, 0));
    ASSERT_TRUE(load(entry, sequence(25, 1)));
    EXPECT_EQ(imageOf(entry), sequence(20, 1));
    EXPECT_FALSE(load(entry, Bytes(19, 0xEE)));
    EXPECT_EQ(imageOf(entry), sequence(20, 1));
}

TEST(OSBootWatchdogData, TakesItsBytes)
{
    OSBootWatchdogData data;
    Bytes bytes = {1, 2, 3, 4, 5};
    data.setOSBootWatchdogData(bytes.data());
    EXPECT_EQ(imageOf(data), bytes);
    EXPECT_EQ(data.getBootWatchdogData1(), 1);
    data.setBootWatchdogData1(0x99);
    EXPECT_EQ(imageOf(data), Bytes({0x99, 2, 3, 4, 5}));
}

TEST(BootFlagsData, SettersChangeTheirBitAlone)
{
    const auto after = [](unsigned char byte, const std::function<void(BootFlagsData&)>& set) {
        auto flags = fromBytes<BootFlagsData>({byte, 2, 3, 4, 5});
        set(flags);
        const Bytes image = imageOf(flags);
        EXPECT_EQ(part(image, 1, 4), Bytes({2, 3, 4, 5}));
        return image[0];
    };
    EXPECT_EQ(after(0x00, [](BootFlagsData& flags) { flags.setBootFlagsValid(true); }), 0x80);
    EXPECT_EQ(after(0xFF, [](BootFlagsData& flags) { flags.setBootFlagsValid(false); }), 0x7F);
    // The senses of these two are inverted.
    EXPECT_EQ(after(0xFF, [](BootFlagsData& flags) { flags.setNextBootOnly(true); }), 0xBF);
    EXPECT_EQ(after(0x00, [](BootFlagsData& flags) { flags.setNextBootOnly(false); }), 0x40);
    EXPECT_EQ(after(0xFF, [](BootFlagsData& flags) { flags.setBiosBootType(true); }), 0xDF);
    EXPECT_EQ(after(0x00, [](BootFlagsData& flags) { flags.setBiosBootType(false); }), 0x20);
    BootFlagsData flags;
    EXPECT_EQ(imageOf(flags), Bytes(5, 0));
    flags.setBootFlagsValid(true);
    flags.setNextBootOnly(false);
    EXPECT_EQ(imageOf(flags), Bytes({0xC0, 0, 0, 0, 0}));
}

TEST(BootFlagsData, BootDeviceIsAddedWithAllItsBits)
{
    const auto after = [](unsigned char byte, unsigned char value) {
        auto flags = fromBytes<BootFlagsData>({0x80, byte, 0, 0, 0});
        flags.setBootFlagsData2(value);
        return imageOf(flags)[1];
    };
    EXPECT_EQ(after(0xFF, 0x04), 0xC7);
    EXPECT_EQ(after(0x00, 0x01), 0x01);
    EXPECT_EQ(after(0x3C, 0x00), 0x00);
    EXPECT_EQ(after(0x00, 0xFF), 0xFF);
}

TEST(BootFlagsData, BootDeviceIsZeroWhileTheFlagsAreNotValid)
{
    EXPECT_EQ(fromBytes<BootFlagsData>({0x7F, 0x3C, 0, 0, 0}).getBootFlagsData2(), 0);
    EXPECT_EQ(fromBytes<BootFlagsData>({0x80, 0x3C, 0, 0, 0}).getBootFlagsData2(), 0x3C);
    EXPECT_EQ(fromBytes<BootFlagsData>({0x80, 0xFF, 0, 0, 0}).getBootFlagsData2(), 0x3C);
    EXPECT_EQ(fromBytes<BootFlagsData>({0x80, 0xC3, 0, 0, 0}).getBootFlagsData2(), 0);
}

TEST(BMC_BootFlagsClearData, SetsItsBit)
{
    BMC_BootFlagsClearData data;
    EXPECT_EQ(imageOf(data), Bytes({0}));
    data.setBootFlagsClearValid(true);
    EXPECT_EQ(imageOf(data), Bytes({0x08}));
    load(data, {0xFF});
    data.setBootFlagsClearValid(false);
    EXPECT_EQ(imageOf(data), Bytes({0xF7}));
}

TEST(DeviceInfo, HandsOutTwelveBytes)
{
    const auto info = fromBytes<DeviceInfo>(sequence(12, 3));
    DeviceInfo::UnitID unit = {};
    std::fill_n(unit.data, 12, static_cast<unsigned char>(0xEE));
    info.getDeviceInfo(&unit);
    EXPECT_EQ(Bytes(unit.data, unit.data + 12), sequence(12, 3));
}

TEST(ManufacturingTestOn, EachSwitchHasItsBit)
{
    expectFlags<ManufacturingTestOn>(
        {{&ManufacturingTestOn::isSBBothUpdate, 0, 1}, {&ManufacturingTestOn::isDebugMode, 0, 3}},
        1);
}

TEST(IOUPortConfiguration, SetsThePortsBitAlone)
{
    for (unsigned int port = 2; port <= 7; ++port) {
        IOUPortConfiguration ports;
        ports.setLIOUA_PCIExp(port, true);
        EXPECT_EQ(imageOf(ports), Bytes({static_cast<unsigned char>(1U << port)}));
        EXPECT_TRUE(ports.isLIOUA_PCIExp(port));
        load(ports, {0xFF});
        ports.setLIOUA_PCIExp(port, false);
        EXPECT_EQ(imageOf(ports), Bytes({static_cast<unsigned char>(~(1U << port))}));
        EXPECT_FALSE(ports.isLIOUA_PCIExp(port));
    }
}

TEST(IOUPortConfiguration, OtherPortsThrow)
{
    IOUPortConfiguration ports;
    for (const unsigned int port : {0U, 1U, 8U, 32U}) {
        const std::string index = ", " + std::to_string(port) + ")";
        EXPECT_EQ(thrownBy([&] { ports.setLIOUA_PCIExp(port, true); }),
                  "1:83:0x0800 act 1 det 0x0B00 msg 20034 (IOUPortConfiguration::setLIOUA_PCIExp" +
                      (port == 0 ? ")" : index));
        EXPECT_EQ(thrownBy([&] { ports.isLIOUA_PCIExp(port); }),
                  "1:83:0x0800 act 1 det 0x0B00 msg 20034 (IOUPortConfiguration::isLIOUA_PCIExp" +
                      (port == 0 ? ")" : index));
    }
    EXPECT_EQ(imageOf(ports), Bytes({0}));
}

namespace {

struct Location {
    unsigned int boardType;
    unsigned char kind;  ///< in place
    unsigned char field; ///< bits of the position and the flag
    unsigned char set;   ///< what position 3 and flag 1 give there
};

const Location LOCATIONS[] = {
    {8, 0x40, 0x01, 0x01},
    {35, 0x00, 0x01, 0x01},
    {38, 0x80, 0x05, 0x05},
    {40, 0xC0, 0x03, 0x03},
};

}

TEST(PCISlotLocation, PacksByTheTypeOfTheBoard)
{
    for (const Location& location : LOCATIONS) {
        PCISlotLocation slot;
        slot.setPCISlotLocation(location.boardType, 3, 0xAB, 1);
        EXPECT_EQ(imageOf(slot),
                  Bytes({static_cast<unsigned char>(location.kind | location.set), 0xAB}));
        // Bits that the kind does not use stay, set or not.
        load(slot, {0xFF, 0xFF});
        slot.setPCISlotLocation(location.boardType, 0, 0, 0);
        EXPECT_EQ(imageOf(slot),
                  Bytes({static_cast<unsigned char>(location.kind | (0x3F & ~location.field)), 0}));
    }
    PCISlotLocation slot;
    slot.setPCISlotLocation(38, 1, 5, 1);
    EXPECT_EQ(imageOf(slot), Bytes({0x85, 5}));
    load(slot, {0, 0});
    slot.setPCISlotLocation(38, 1, 5, 0xFE);
    EXPECT_EQ(imageOf(slot), Bytes({0x84, 5}));
    load(slot, {0, 0});
    slot.setPCISlotLocation(8, 2, 5, 1);
    EXPECT_EQ(imageOf(slot), Bytes({0x40, 5}));
}

TEST(PCISlotLocation, OtherBoardsChangeNothing)
{
    for (const unsigned int type : {0U, 7U, 9U, 12U, 34U, 36U, 37U, 39U, 41U, 0xFFFFFFFFU}) {
        auto slot = fromBytes<PCISlotLocation>({0x12, 0x34});
        slot.setPCISlotLocation(type, 3, 0xAB, 1);
        EXPECT_EQ(imageOf(slot), Bytes({0x12, 0x34})) << type;
    }
}

TEST(PCICardInfo, ReadsTheIdentity)
{
    auto card = fromBytes<PCICardInfo>({1, 2, 3, 0x34, 0x12, 0x78, 0x56, 0x0B, 0xFF});
    EXPECT_EQ(card.getSegmentNum(), 1);
    EXPECT_EQ(card.getBusNum(), 2);
    EXPECT_EQ(card.getDevFun(), 3);
    EXPECT_EQ(card.getVendorId(), 0x1234);
    EXPECT_EQ(card.getDeviceId(), 0x5678);
    EXPECT_FALSE(card.isUnknownPCICard());
    EXPECT_EQ(card.getPCIFrequency(), 3);
}

TEST(PCICardInfo, UnknownCardsHaveBothIdsFFFF)
{
    const auto isUnknown = [](const Bytes& ids) {
        return fromBytes<PCICardInfo>(Bytes(3, 0) + ids + Bytes(2, 0)).isUnknownPCICard();
    };
    EXPECT_TRUE(isUnknown({0xFF, 0xFF, 0xFF, 0xFF}));
    EXPECT_FALSE(isUnknown({0xFE, 0xFF, 0xFF, 0xFF}));
    EXPECT_FALSE(isUnknown({0xFF, 0xFF, 0xFF, 0x7F}));
}

TEST(PCICardInfo, FrequencyHasTwoForms)
{
    const auto frequency = [](unsigned char code, unsigned char extended) {
        return fromBytes<PCICardInfo>(Bytes(7, 0) + Bytes({code, extended})).getPCIFrequency();
    };
    EXPECT_EQ(frequency(0x83, 0xFF), 0xBF);
    EXPECT_EQ(frequency(0x80, 0xC0), 0x80);
    EXPECT_EQ(frequency(0x7F, 0xFF), 7);
    EXPECT_EQ(frequency(0x0B, 0x3F), 3);
}
