// SPDX-License-Identifier: Apache-2.0
#include <recordkit/fru/FRUData.h>

#include <gtest/gtest.h>

#include "MemoryDevice.h"

using namespace testing_support;

namespace {

/// Header, board area at 8, product area at 40, no chassis area.
const Bytes BOARD = areaOf(32, Bytes({0x19, 0, 0, 0, 0xC2, 'M', 'F', 0xC1}));
const Bytes PRODUCT = areaOf(24, Bytes({0x19, 0xC2, 'M', 'F', 0xC2, 'P', 'R', 0xC1}));
const Bytes IMAGE = withChecksum({1, 0, 0, 1, 5, 8, 0}) + BOARD + PRODUCT + Bytes(16, 0x66);

/// Header of 14 bytes, processor data at 14, core data at 27, cache data at 42.
const Bytes ROM =
    Bytes({0x11, 0x00, 0x60, 14, 27, 42, 0, 0, 0, 0, 0, 0, 0, 0}) +
    Bytes({1, 2, 3, 4, 5, 6, 9, 0, 0x34, 0x12, 0, 0, 0}) +
    Bytes({0x36, 0x12, 0, 0, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08, 7, 8, 0}) +
    Bytes(23, 0) + Bytes({0x00, 0x30}) + Bytes(9, 0);

class FRUDataTest : public testing::Test {
protected:
    std::string item(FRUData& data, FRU_AREA area, FRU_ITEM fruItem)
    {
        std::string value = "absent";
        data.getItem(area, fruItem, value, FRUArea::CSUM_CHECK);
        return value;
    }

    MemoryDevice device = MemoryDevice(IMAGE);
    MemoryDevice rom = MemoryDevice(ROM);
    TraceCapture trace;
};

}

TEST_F(FRUDataTest, ReadsTheHeaderAndThenEachAreaOnce)
{
    FRUData data(device);
    EXPECT_EQ(device.takeAccesses(), Lines({"r0+8"}));
    EXPECT_EQ(item(data, FRU_AREA_PRODUCT, FRU_ITEM_PRODUCT_NAME), "PR");
    EXPECT_EQ(device.takeAccesses(), Lines({"r40+2", "r40+24"}));
    EXPECT_EQ(item(data, FRU_AREA_PRODUCT, FRU_ITEM_MANUFACTURER), "MF");
    EXPECT_EQ(device.takeAccesses(), Lines());
    EXPECT_EQ(item(data, FRU_AREA_COMMON_HEADER, FRU_ITEM_PRODUCT_OFFSET), "\x05");
}

TEST_F(FRUDataTest, KnowsTheOffsetOfEveryArea)
{
    MemoryDevice header(withChecksum({1, 2, 3, 4, 5, 6, 0}));
    FRUData data(header);
    const unsigned int expected[] = {0, 16, 16, 24, 32, 40, 48, 0, 0};
    for (int id = 0; id < 9; ++id) {
        EXPECT_EQ(data.getAreaOffset(static_cast<FRU_AREA>(id)), expected[id]) << id;
    }
    for (const int id : {-1, 49, 50, 59, 1000}) {
        EXPECT_EQ(data.getAreaOffset(static_cast<FRU_AREA>(id)), 0U) << id;
    }
    MemoryDevice romHeader(Bytes({0x11, 0, 0, 101, 102, 103, 104, 105, 106, 107, 108, 0, 0, 0}));
    FRUData cpu(romHeader, FRU_CPU_ROM);
    for (int id = 51; id <= 58; ++id) {
        EXPECT_EQ(cpu.getAreaOffset(static_cast<FRU_AREA>(id)), static_cast<unsigned>(id + 50));
    }
}

TEST_F(FRUDataTest, AreaWithoutAnOffsetIsRefused)
{
    FRUData data(device);
    EXPECT_EQ(thrownBy([&] { item(data, FRU_AREA_CHASSIS, FRU_ITEM_PART_NUMBER); }),
              fruError(20019, "FRUData::getAreaObject. parameter=3"));
    EXPECT_EQ(thrownBy([&] { item(data, FRU_AREA_MULTIRECORD, FRU_ITEM_CUSTOM); }),
              fruError(20004, "FRUArea Constractor :: Not Support alloc table. id=6"));
    EXPECT_EQ(thrownBy([&] { item(data, FRU_AREA_CPU_PROCESSOR, FRU_ITEM_CPU_SPEED); }),
              fruError(20004, "FRUData::getItemMember Not Found item. (item50)"));
}

TEST_F(FRUDataTest, AreaThatCouldNotBeReadIsTriedAgain)
{
    device.bytes[20] ^= 1;
    FRUData data(device);
    EXPECT_EQ(thrownBy([&] { item(data, FRU_AREA_BOARD, FRU_ITEM_MANUFACTURER); }),
              fruError(20003, "CheckSum(4)"));
    device.bytes[20] ^= 1;
    EXPECT_EQ(item(data, FRU_AREA_BOARD, FRU_ITEM_MANUFACTURER), "MF");
}

TEST_F(FRUDataTest, HeaderThatCannotBeReadIsTracedAndThrownOn)
{
    device.failFrom(1);
    EXPECT_EQ(thrownBy([&] { FRUData data(device); }), deviceFailure());
    EXPECT_EQ(trace.take(), Lines({"1:128:0x000D level 0: FRUArea::readAreaData read",
                                   "1:128:0x000D level 0: FRUArea::FRUArea readAreaData",
                                   "1:128:0x000D level 100: FRURWif::read CommonHeader read"}));
}

TEST_F(FRUDataTest, OtherExceptionsPassThroughUntraced)
{
    device.failOtherwiseFrom(1);
    EXPECT_THROW(FRUData data(device), OtherFailure);
    EXPECT_EQ(trace.take(), Lines());
}

TEST_F(FRUDataTest, WritesBackOnlyAreasThatWereEdited)
{
    FRUData data(device);
    item(data, FRU_AREA_BOARD, FRU_ITEM_MANUFACTURER);
    data.syncFRU();
    std::string name = "NEW";
    data.updateItem(FRU_AREA_PRODUCT, FRU_ITEM_PRODUCT_NAME, name);
    device.takeAccesses();
    data.syncFRU();
    EXPECT_EQ(device.takeAccesses(), Lines({"w40+24"}));
    EXPECT_EQ(device.bytes,
              part(IMAGE, 0, 40) +
                  areaOf(24, Bytes({0x19, 0xC2, 'M', 'F', 0xC3, 'N', 'E', 'W', 0xC1})) +
                  Bytes(16, 0x66));
    data.syncFRU();
    EXPECT_EQ(device.takeAccesses(), Lines());
    MemoryDevice again(device.bytes);
    FRUData fresh(again);
    EXPECT_EQ(item(fresh, FRU_AREA_PRODUCT, FRU_ITEM_PRODUCT_NAME), "NEW");
}

TEST_F(FRUDataTest, WriteThatFailsMidwayLeavesTheLaterAreasToBeWritten)
{
    FRUData data(device);
    std::string maker = "AB";
    std::string name = "NEW";
    // Edited in the other order: areas are written in ascending order of their ids.
    data.updateItem(FRU_AREA_PRODUCT, FRU_ITEM_PRODUCT_NAME, name);
    data.updateItem(FRU_AREA_BOARD, FRU_ITEM_MANUFACTURER, maker);
    EXPECT_EQ(device.takeAccesses(), Lines({"r0+8", "r40+2", "r40+24", "r8+2", "r8+32"}));
    device.failFrom(7); // the header, two areas in two reads each, one write
    EXPECT_EQ(thrownBy([&] { data.syncFRU(); }), deviceFailure());
    EXPECT_EQ(device.takeAccesses(), Lines({"w8+32", "w40+24"}));
    EXPECT_EQ(part(device.bytes, 8, 8), Bytes({1, 4, 0x19, 0, 0, 0, 0xC2, 'A'}));
    EXPECT_EQ(part(device.bytes, 40, 24), PRODUCT);
    device.failFrom(~std::size_t{0});
    data.syncFRU();
    EXPECT_EQ(device.takeAccesses(), Lines({"w40+24"}));
    EXPECT_EQ(part(device.bytes, 40, 10), Bytes({1, 3, 0x19, 0xC2, 'M', 'F', 0xC3, 'N', 'E', 'W'}));
}

TEST_F(FRUDataTest, OperationsWithoutAModeCheckTheChecksum)
{
    device.bytes[20] ^= 1;
    FRUData data(device);
    std::string value = "x";
    unsigned char out[8] = {7};
    const std::string refused = fruError(20003, "CheckSum(4)");
    EXPECT_EQ(thrownBy([&] { data.getItemData(FRU_AREA_BOARD, FRU_ITEM_MANUFACTURER, out); }),
              refused);
    EXPECT_EQ(thrownBy([&] { data.updateItem(FRU_AREA_BOARD, FRU_ITEM_MANUFACTURER, value); }),
              refused);
    EXPECT_EQ(thrownBy([&] { data.syncItem(FRU_AREA_BOARD, FRU_ITEM_MANUFACTURER); }), refused);
    EXPECT_EQ(out[0], 7);
    // The mode of the first call decides for all later ones.
    data.getItem(FRU_AREA_BOARD, FRU_ITEM_MANUFACTURER, value, FRUArea::CSUM_IGNORE);
    EXPECT_EQ(value, "MF");
    data.getItemData(FRU_AREA_BOARD, FRU_ITEM_MANUFACTURER, out);
    EXPECT_EQ(out[0], 'M');
    data.updateItem(FRU_AREA_BOARD, FRU_ITEM_MANUFACTURER, value);
    data.syncItem(FRU_AREA_BOARD, FRU_ITEM_MANUFACTURER);
    device.takeAccesses();
    data.syncFRU();
    EXPECT_EQ(device.takeAccesses(), Lines({"w8+32"}));
}

TEST_F(FRUDataTest, TwoByteItemsOfAnotherLengthAreTwoZeroBytes)
{
    for (const FRU_ITEM each : {FRU_ITEM_CPU_CORE1, FRU_ITEM_CPU_CORE2, FRU_ITEM_CPU_CORE3,
                                FRU_ITEM_CPU_CORE4, FRU_ITEM_CPU_CACHE_SIZE, FRU_ITEM_CPU_SPEED}) {
        FRUData data(rom, FRU_CPU_ROM);
        const FRU_AREA area = each == FRU_ITEM_CPU_CACHE_SIZE ? FRU_AREA_CPU_CACHE
                              : each == FRU_ITEM_CPU_SPEED    ? FRU_AREA_CPU_PROCESSOR
                                                              : FRU_AREA_CPU_CORE;
        FRUMember* const member =
            data.getAreaObject(area, FRUArea::CSUM_CHECK)->getItemMember(each);
        for (const char* value : {"", "a", "abc"}) {
            member->setData(value);
            EXPECT_EQ(item(data, area, each), std::string(2, '\0')) << each << value;
        }
        member->setData("ab");
        EXPECT_EQ(item(data, area, each), "ba") << each;
    }
}

TEST_F(FRUDataTest, GivesTheTypeLengthByteOfAField)
{
    FRUData data(device);
    std::string value;
    unsigned char typelength = 0x55;
    data.getItem(FRU_AREA_PRODUCT, FRU_ITEM_PRODUCT_NAME, value, typelength, FRUArea::CSUM_CHECK);
    EXPECT_EQ(value, "PR");
    EXPECT_EQ(typelength, 0xC2);
    data.getItem(FRU_AREA_PRODUCT, FRU_ITEM_LANGUAGE_CODE, value, typelength, FRUArea::CSUM_CHECK);
    EXPECT_EQ(typelength, 0);
    EXPECT_EQ(thrownBy([&] {
                  data.getItem(FRU_AREA_PRODUCT, FRU_ITEM_ASSET_TAG, value, typelength,
                               FRUArea::CSUM_CHECK);
              }),
              fruError(20004, "FRUData::getItemMember Not Found item. (item9)"));
}

TEST_F(FRUDataTest, TwoByteItemsOfARomComeHighByteFirst)
{
    FRUData data(rom, FRU_CPU_ROM);
    EXPECT_EQ(item(data, FRU_AREA_CPU_CACHE, FRU_ITEM_CPU_CACHE_SIZE), std::string("\x30\0", 2));
    EXPECT_EQ(item(data, FRU_AREA_CPU_PROCESSOR, FRU_ITEM_CPU_SPEED), "\x12\x34");
    EXPECT_EQ(item(data, FRU_AREA_CPU_CORE, FRU_ITEM_CPU_CORE1), "\x02\x01");
    EXPECT_EQ(item(data, FRU_AREA_CPU_CORE, FRU_ITEM_CPU_CORE2), "\x04\x03");
    EXPECT_EQ(item(data, FRU_AREA_CPU_CORE, FRU_ITEM_CPU_CORE3), "\x06\x05");
    EXPECT_EQ(item(data, FRU_AREA_CPU_CORE, FRU_ITEM_CPU_CORE4), "\x08\x07");
    // An area without the field returns two zero bytes.
    EXPECT_EQ(item(data, FRU_AREA_CPU_CORE, FRU_ITEM_CPU_SPEED), std::string(2, '\0'));
    unsigned char raw[2] = {};
    data.getItemData(FRU_AREA_CPU_CACHE, FRU_ITEM_CPU_CACHE_SIZE, raw);
    EXPECT_EQ(raw[0], 0x00);
    EXPECT_EQ(raw[1], 0x30);
}

TEST_F(FRUDataTest, BitsOfTheCoreDataAreItemsOfTheirOwn)
{
    FRUData data(rom, FRU_CPU_ROM);
    EXPECT_EQ(item(data, FRU_AREA_CPU_CORE, FRU_ITEM_CPU_MODEL), "\x06");
    EXPECT_EQ(item(data, FRU_AREA_CPU_CORE, FRU_ITEM_CPU_CORE_HIGH), "\x01");
    EXPECT_EQ(item(data, FRU_AREA_CPU_CORE, FRU_ITEM_CPU_CORE_LOW2), "\x02");
    EXPECT_EQ(item(data, FRU_AREA_CPU_CORE, FRU_ITEM_CPU_CORE_FLAG), "\x01");
    EXPECT_EQ(item(data, FRU_AREA_CPU_CACHE, FRU_ITEM_CPU_MODEL), std::string(1, '\0'));
}

TEST_F(FRUDataTest, RomIsNotEditedAndStaysUntouched)
{
    FRUData data(rom, FRU_CPU_ROM);
    std::string value = "x";
    rom.takeAccesses();
    EXPECT_EQ(thrownBy([&] { data.updateItem(FRU_AREA_CPU_CORE, FRU_ITEM_CPU_CORE5, value); }),
              fruError(20003, "Not Support CPU Write"));
    EXPECT_EQ(rom.takeAccesses(), Lines());
    data.syncItem(FRU_AREA_CPU_PROCESSOR, FRU_ITEM_CPU_SPEED);
    EXPECT_EQ(rom.takeAccesses(), Lines({"r14+13", "w22+2"}));
    EXPECT_EQ(rom.bytes, ROM);
}

TEST_F(FRUDataTest, LayoutIsThatOfAnOrdinaryImageUnlessItIsARom)
{
    FRUData none(device, FRU_CPU_NONE);
    EXPECT_EQ(item(none, FRU_AREA_PRODUCT, FRU_ITEM_PRODUCT_NAME), "PR");
    FRUData other(device, static_cast<FRU_CPU>(7));
    EXPECT_EQ(item(other, FRU_AREA_PRODUCT, FRU_ITEM_PRODUCT_NAME), "PR");
    EXPECT_EQ(other.getFSB(), 0);
    EXPECT_EQ(other.getModelCode(), 0);
    EXPECT_FALSE(other.isDivideEnabled());
}
