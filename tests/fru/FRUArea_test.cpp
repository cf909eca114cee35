// SPDX-License-Identifier: Apache-2.0
#include <recordkit/fru/FRUArea.h>
#include <recordkit/fru/FRUTables.h>

#include <gtest/gtest.h>
#include <memory>

#include "MemoryDevice.h"

using namespace testing_support;

namespace {

/// Manufacturer, product, serial number, part number, file id: 32 bytes with 5 unused.
const Bytes BOARD_FIELDS = Bytes({0x19, 0x10, 0x20, 0x30}) + Bytes({0xC3, 'A', 'B', 'C'}) +
                           Bytes({0xC2, 'P', 'R'}) + Bytes({0xC4, 'S', 'N', '-', '1'}) +
                           Bytes({0xC2, 'P', 'N'}) + Bytes({0x02, 0x0A, 0xB0}) +
                           Bytes({0xC1, 0, 0, 0, 0, 0});
const Bytes BOARD = areaOf(32, BOARD_FIELDS);

std::unique_ptr<FRUArea> open(MemoryDevice& device, FRU_AREA id, int offset = 0,
                              FRUArea::CSUM_MODE mode = FRUArea::CSUM_CHECK)
{
    return std::make_unique<FRUArea>(device, offset, id, mode);
}

std::string openFailure(const Bytes& bytes, FRU_AREA id,
                        FRUArea::CSUM_MODE mode = FRUArea::CSUM_CHECK)
{
    const TraceCapture trace;
    MemoryDevice device(bytes);
    return thrownBy([&] { open(device, id, 0, mode); });
}

std::string itemOf(FRUArea& area, FRU_ITEM item)
{
    std::string value = "absent";
    area.getItem(item, value);
    return value;
}

/// The items of an area with the number of their bytes in the image.
std::string layoutOf(const FRUArea& area)
{
    std::string layout;
    for (const FRUMember* const member : area.getMembers()) {
        layout += std::to_string(member->getItem()) + ":" +
                  std::to_string(member->getLength() + (member->getHasTypeLength() ? 1 : 0)) + " ";
    }
    return layout;
}

void update(FRUArea& area, FRU_ITEM item, std::string value)
{
    area.updateItem(item, value);
}

class FRUAreaTest : public testing::Test {
protected:
    MemoryDevice device = MemoryDevice(Bytes(16, 0x77) + BOARD + Bytes(8, 0x77));
    TraceCapture trace;
};

}

TEST_F(FRUAreaTest, SplitsABoardArea)
{
    const auto area = open(device, FRU_AREA_BOARD, 16);
    EXPECT_EQ(device.takeAccesses(), Lines({"r16+2", "r16+32"}));
    EXPECT_EQ(layoutOf(*area), "0:1 1:1 2:1 18:3 3:4 4:3 6:5 5:3 10:3 12:1 13:6 14:1 ");
    EXPECT_EQ(itemOf(*area, FRU_ITEM_MANUFACTURER), "ABC");
    EXPECT_EQ(itemOf(*area, FRU_ITEM_SERIAL_NUMBER), "SN-1");
    EXPECT_EQ(itemOf(*area, FRU_ITEM_MFG_DATE_TIME), "\x10\x20\x30");
    EXPECT_EQ(itemOf(*area, FRU_ITEM_FRU_FILE_ID), "\x0A\xB0");
    EXPECT_EQ(area->getSize(), 32);
    EXPECT_EQ(area->getOffset(), 16);
    EXPECT_EQ(area->getAreaId(), FRU_AREA_BOARD);
    EXPECT_FALSE(area->isDirty());
    EXPECT_EQ(area->calcAreaSize(), 32U);
    EXPECT_EQ(trace.lines(), Lines());
}

TEST_F(FRUAreaTest, CustomFieldsStandBehindThoseOfTheTable)
{
    MemoryDevice chassis(
        areaOf(24, Bytes({0x17, 0xC2, 'P', 'N', 0xC2, 'S', 'N', 0xC3, 'C', 'U', 'S', 0xC1, 9, 8})));
    const auto area = open(chassis, FRU_AREA_CHASSIS);
    EXPECT_EQ(layoutOf(*area), "0:1 1:1 8:1 5:3 6:3 11:4 12:1 13:9 14:1 ");
    EXPECT_EQ(itemOf(*area, FRU_ITEM_RESERVED), std::string("\x09\x08", 2) + std::string(7, '\0'));
}

TEST_F(FRUAreaTest, EndMarkerInThePlaceOfAFieldEndsTheTable)
{
    MemoryDevice product(areaOf(16, {0x19, 0xC2, 'M', 'F', 0xC1}));
    const auto area = open(product, FRU_AREA_PRODUCT);
    EXPECT_EQ(layoutOf(*area), "0:1 1:1 2:1 3:3 12:1 13:8 14:1 ");
}

TEST_F(FRUAreaTest, AreaWithoutUnusedSpaceHasAnEmptyField)
{
    MemoryDevice product(areaOf(8, {0x19, 0xC2, 'M', 'F', 0xC1}));
    EXPECT_EQ(layoutOf(*open(product, FRU_AREA_PRODUCT)), "0:1 1:1 2:1 3:3 12:1 13:0 14:1 ");
}

TEST_F(FRUAreaTest, AreaWithoutAnEndMarkerEndsQuietly)
{
    MemoryDevice chassis(
        areaOf(16, {0x17, 0xC2, 'P', 'N', 0xC9, 'a', 'b', 'c', 'd', 'e', 'f', 'g', 'h'}));
    EXPECT_EQ(layoutOf(*open(chassis, FRU_AREA_CHASSIS)), "0:1 1:1 8:1 5:3 6:10 ");
}

TEST_F(FRUAreaTest, CodedFieldMayClaimBytesBeyondTheArea)
{
    MemoryDevice product(areaOf(8, {0x19, 0xFF, 'a', 'b', 'c'}) + Bytes(80, 'Z'));
    const TraceCapture quiet;
    // The next field begins beyond the area.
    EXPECT_EQ(thrownBy([&] { open(product, FRU_AREA_PRODUCT); }),
              fruError(20003, "Table length Abnormal. area_id=5"));
    MemoryDevice chassis(areaOf(8, {0x17, 0xC1}) + Bytes(80, 'Z'));
    chassis.bytes[6] = 0xFF; // nothing is parsed after the end marker
    EXPECT_EQ(layoutOf(*open(chassis, FRU_AREA_CHASSIS, 0, FRUArea::CSUM_IGNORE)),
              "0:1 1:1 8:1 12:1 13:3 14:1 ");
}

TEST_F(FRUAreaTest, CustomFieldBeyondTheAreaIsZeroThere)
{
    Bytes bytes = areaOf(16, {0x17, 0xC2, 'P', 'N', 0xC2, 'S', 'N', 0xFF, 'x', 'y', 'z'});
    MemoryDevice chassis(bytes + Bytes(80, 'Z'));
    const auto area = open(chassis, FRU_AREA_CHASSIS);
    EXPECT_EQ(layoutOf(*area), "0:1 1:1 8:1 5:3 6:3 11:64 ");
    const std::string custom = itemOf(*area, FRU_ITEM_CUSTOM);
    EXPECT_EQ(custom.substr(0, 3), "xyz");
    EXPECT_EQ(custom.find('Z'), std::string::npos);
    EXPECT_EQ(custom.size(), 63U);
}

TEST_F(FRUAreaTest, LengthByteOfZeroIsRefused)
{
    EXPECT_EQ(openFailure({1, 0, 0, 0, 0, 0, 0, 0}, FRU_AREA_BOARD),
              fruError(20003, "FRUArea::readAreaData area_length is 0 "));
    // 32 times 8 does not fit into eight bits.
    EXPECT_EQ(openFailure({1, 32, 0, 0, 0, 0, 0, 0}, FRU_AREA_BOARD),
              fruError(20003, "FRUArea::readAreaData area_length is 0 "));
}

TEST_F(FRUAreaTest, SizeIsKeptInEightBits)
{
    Bytes bytes = BOARD;
    bytes[1] = 32 + 4;
    MemoryDevice board(bytes);
    EXPECT_EQ(open(board, FRU_AREA_BOARD, 0, FRUArea::CSUM_IGNORE)->getSize(), 32);
}

TEST_F(FRUAreaTest, ChecksumModesAreThoseThatCallersWereCompiledWith)
{
    EXPECT_EQ(FRUArea::CSUM_CHECK, 0);
    EXPECT_EQ(FRUArea::CSUM_IGNORE, 1);
}

TEST_F(FRUAreaTest, WrongChecksumIsRefusedUnlessIgnored)
{
    Bytes bytes = BOARD;
    bytes[20] ^= 1;
    EXPECT_EQ(openFailure(bytes, FRU_AREA_BOARD), fruError(20003, "CheckSum(4)"));
    EXPECT_EQ(openFailure(bytes, FRU_AREA_BOARD, FRUArea::CSUM_IGNORE), "nothing");
    EXPECT_EQ(openFailure({1, 0, 0, 0, 0, 0, 0, 0}, FRU_AREA_COMMON_HEADER),
              fruError(20003, "CheckSum(0)"));
    EXPECT_EQ(openFailure(Bytes(14, 0x5A), FRU_AREA_CPU_HEADER), "nothing");
}

TEST_F(FRUAreaTest, AreaWithoutALayoutIsRefused)
{
    EXPECT_EQ(openFailure(BOARD, FRU_AREA_MULTIRECORD),
              fruError(20004, "FRUArea Constractor :: Not Support alloc table. id=6"));
    EXPECT_EQ(openFailure(BOARD, static_cast<FRU_AREA>(59)),
              fruError(20004, "FRUArea Constractor :: Not Support alloc table. id=59"));
}

TEST_F(FRUAreaTest, FixedFieldBeyondTheAreaIsRefused)
{
    EXPECT_EQ(openFailure(areaOf(8, {}), FRU_AREA_INTERNAL_A),
              fruError(20003, "Table length Abnormal. area_id=1"));
}

TEST_F(FRUAreaTest, EndMarkerInTheLastByteLeavesNoRoom)
{
    Bytes bytes = {1, 1, 0x19, 0xC3, 'a', 'b', 'c', 0xC1};
    EXPECT_EQ(openFailure(bytes, FRU_AREA_PRODUCT, FRUArea::CSUM_IGNORE),
              fruError(20003, "Unused space Area offset Abnormal. area_id=5"));
}

TEST_F(FRUAreaTest, InternalUseAreaDoesNotKeepWhatFollowsItsFields)
{
    Bytes fields(109, 0x11);
    Bytes bytes = areaOf(120, fields + Bytes(8, 0x22));
    MemoryDevice internal(bytes);
    const auto area = open(internal, FRU_AREA_INTERNAL_A);
    EXPECT_EQ(layoutOf(*area), "0:1 1:1 16:1 6:13 77:1 78:1 79:2 80:72 17:19 13:8 14:1 ");
    EXPECT_EQ(itemOf(*area, FRU_ITEM_RESERVED), std::string(8, '\0'));
    EXPECT_EQ(itemOf(*area, FRU_ITEM_CHECKSUM), std::string(1, static_cast<char>(bytes.back())));
}

TEST_F(FRUAreaTest, FieldsBeginAtTheBufferWhateverThePositionWas)
{
    const auto area = open(device, FRU_AREA_BOARD, 16);
    Bytes buffer = BOARD + Bytes(65, 0);
    unsigned short pos = 5;
    area->setAreaData(buffer.data(), &pos, findFRUArea(FRU_AREA_BOARD)->members);
    EXPECT_EQ(pos, 24);
}

TEST_F(FRUAreaTest, EndMarkerBeyondTheAreaIsRefused)
{
    // Only a caller's own buffer has one there: those that are read continue with zeroes.
    const auto area = open(device, FRU_AREA_BOARD, 16);
    Bytes buffer(128, 0);
    buffer[32] = 0xC1;
    EXPECT_EQ(thrownBy([&] { area->setAreaEndData(buffer.data(), 32); }),
              fruError(20003, "End Code Area offset Abnormal. area_id=4"));
}

TEST_F(FRUAreaTest, UnusedSpaceThatIsUsedUpNeedsNoLengthByte)
{
    MemoryDevice rom(Bytes(64, 0));
    const auto area = open(rom, FRU_AREA_CPU_HEADER);
    area->unusedUpdate(2);
    EXPECT_EQ(itemOf(*area, FRU_ITEM_RESERVED), "");
}

TEST_F(FRUAreaTest, DeviceFailuresAreTracedAndThrownOn)
{
    device.failFrom(1);
    EXPECT_EQ(thrownBy([&] { open(device, FRU_AREA_BOARD, 16); }), deviceFailure());
    EXPECT_EQ(trace.take(), Lines({"1:128:0x000D level 0: FRUArea::readAreaData(2Byte read)",
                                   "1:128:0x000D level 0: FRUArea::FRUArea readAreaData"}));
    MemoryDevice second(BOARD);
    second.failFrom(2);
    EXPECT_EQ(thrownBy([&] { open(second, FRU_AREA_BOARD); }), deviceFailure());
    EXPECT_EQ(trace.take(), Lines({"1:128:0x000D level 0: FRUArea::readAreaData read",
                                   "1:128:0x000D level 0: FRUArea::FRUArea readAreaData"}));
}

TEST_F(FRUAreaTest, OtherExceptionsPassThroughUntraced)
{
    device.failOtherwiseFrom(1);
    EXPECT_THROW(open(device, FRU_AREA_BOARD, 16), OtherFailure);
    MemoryDevice second(BOARD);
    second.failOtherwiseFrom(2);
    EXPECT_THROW(open(second, FRU_AREA_BOARD), OtherFailure);
    EXPECT_EQ(trace.take(), Lines());
}

TEST_F(FRUAreaTest, FieldThatIsNotThereLeavesTheOutputAlone)
{
    const auto area = open(device, FRU_AREA_BOARD, 16);
    EXPECT_EQ(itemOf(*area, FRU_ITEM_ASSET_TAG), "absent");
    unsigned char out[2] = {7, 7};
    area->getItemData(FRU_ITEM_ASSET_TAG, out);
    EXPECT_EQ(out[0], 7);
    area->getItemData(FRU_ITEM_PART_NUMBER, out);
    EXPECT_EQ(out[1], 'N');
    EXPECT_EQ(thrownBy([&] { area->getItemMember(FRU_ITEM_ASSET_TAG); }),
              fruError(20004, "FRUData::getItemMember Not Found item. (item9)"));
}

TEST_F(FRUAreaTest, GrowingFieldEatsUnusedSpace)
{
    const auto area = open(device, FRU_AREA_BOARD, 16);
    update(*area, FRU_ITEM_SERIAL_NUMBER, "SN-1234");
    EXPECT_EQ(layoutOf(*area), "0:1 1:1 2:1 18:3 3:4 4:3 6:8 5:3 10:3 12:1 13:3 14:1 ");
    EXPECT_TRUE(area->isDirty());
    EXPECT_EQ(area->calcAreaSize(), 32U);
    area->syncFRU();
    const Bytes expected =
        areaOf(32, Bytes({0x19, 0x10, 0x20, 0x30}) + Bytes({0xC3, 'A', 'B', 'C'}) +
                       Bytes({0xC2, 'P', 'R'}) + Bytes({0xC7, 'S', 'N', '-', '1', '2', '3', '4'}) +
                       Bytes({0xC2, 'P', 'N'}) + Bytes({0x02, 0x0A, 0xB0}) + Bytes({0xC1}));
    EXPECT_EQ(device.bytes, Bytes(16, 0x77) + expected + Bytes(8, 0x77));
}

TEST_F(FRUAreaTest, ShrinkingFieldGivesItsBytesBackAsZeroes)
{
    const auto area = open(device, FRU_AREA_BOARD, 16);
    update(*area, FRU_ITEM_SERIAL_NUMBER, "");
    EXPECT_EQ(layoutOf(*area), "0:1 1:1 2:1 18:3 3:4 4:3 6:1 5:3 10:3 12:1 13:10 14:1 ");
    EXPECT_EQ(itemOf(*area, FRU_ITEM_RESERVED), std::string(10, '\0'));
}

TEST_F(FRUAreaTest, FieldThatOutgrowsTheUnusedSpaceReducesTheLengthByte)
{
    const auto area = open(device, FRU_AREA_BOARD, 16);
    update(*area, FRU_ITEM_SERIAL_NUMBER, std::string(4 + 6 + 2, 'x'));
    EXPECT_EQ(itemOf(*area, FRU_ITEM_RESERVED), "");
    EXPECT_EQ(itemOf(*area, FRU_ITEM_AREA_LENGTH), "\x03"); // (32 - 2) / 8
    EXPECT_EQ(area->calcAreaSize(), 34U);
}

TEST_F(FRUAreaTest, FieldOfOtherTypeBecomesText)
{
    const auto area = open(device, FRU_AREA_BOARD, 16);
    EXPECT_EQ(area->getItemMember(FRU_ITEM_FRU_FILE_ID)->getTypeLength(), 0x02);
    update(*area, FRU_ITEM_FRU_FILE_ID, "id");
    EXPECT_EQ(area->getItemMember(FRU_ITEM_FRU_FILE_ID)->getTypeLength(), 0xC2);
}

TEST_F(FRUAreaTest, FixedFieldPadsTheCallersString)
{
    const auto area = open(device, FRU_AREA_BOARD, 16);
    std::string date = "\x01";
    area->updateItem(FRU_ITEM_MFG_DATE_TIME, date);
    EXPECT_EQ(date, std::string("\x01\0\0", 3));
    EXPECT_EQ(itemOf(*area, FRU_ITEM_MFG_DATE_TIME), std::string("\x01\0\0", 3));
    std::string language;
    area->updateItem(FRU_ITEM_LANGUAGE_CODE, language); // one byte: not padded
    EXPECT_EQ(language, "");
}

TEST_F(FRUAreaTest, FixedFieldDoesNotCutALongerValueButWritesItsOwnLength)
{
    const auto area = open(device, FRU_AREA_BOARD, 16);
    update(*area, FRU_ITEM_MFG_DATE_TIME, "abcdef");
    EXPECT_EQ(itemOf(*area, FRU_ITEM_MFG_DATE_TIME), "abcdef");
    EXPECT_EQ(area->calcAreaSize(), 32U);
    area->syncFRU();
    EXPECT_EQ(part(device.bytes, 16, 7), Bytes({1, 4, 0x19, 'a', 'b', 'c', 0xC3}));
}

TEST_F(FRUAreaTest, UpdateOfAFieldThatIsNotThereStillMarksTheArea)
{
    const auto area = open(device, FRU_AREA_BOARD, 16);
    update(*area, FRU_ITEM_ASSET_TAG, "tag");
    EXPECT_TRUE(area->isDirty());
    EXPECT_EQ(area->calcAreaSize(), 32U);
}

TEST_F(FRUAreaTest, LengthByteRoundsTowardsZero)
{
    const auto area = open(device, FRU_AREA_BOARD, 16);
    const struct {
        short delta;
        int length;
    } steps[] = {{7, 4}, {8, 5}, {-7, 4}, {-8, 3}, {-25, 0}, {-7, 0}};
    for (const auto& step : steps) {
        area->lengthUpdate(step.delta);
        EXPECT_EQ(itemOf(*area, FRU_ITEM_AREA_LENGTH)[0], step.length) << step.delta;
    }
}

TEST_F(FRUAreaTest, LengthUpdateNeedsALengthByte)
{
    MemoryDevice header(withChecksum({1, 0, 0, 2, 0, 0, 0}));
    const auto area = open(header, FRU_AREA_COMMON_HEADER);
    EXPECT_EQ(thrownBy([&] { area->lengthUpdate(8); }),
              "1:128:0x000D act 1 det 0x0001 msg 20004 (FRUArea::lengthUpdate  Not Length on "
              "FRUMember(%d), 19)");
}

TEST_F(FRUAreaTest, CommonHeaderWritesItsFirstSixBytesAlone)
{
    MemoryDevice header(withChecksum({1, 2, 3, 4, 5, 6, 0x55}));
    const auto area = open(header, FRU_AREA_COMMON_HEADER);
    EXPECT_EQ(layoutOf(*area), "0:1 19:1 20:1 21:1 22:1 23:1 ");
    const Bytes before = header.bytes;
    header.takeAccesses();
    area->syncFRU();
    EXPECT_EQ(header.takeAccesses(), Lines({"w0+6"}));
    EXPECT_EQ(header.bytes, before);
}

TEST_F(FRUAreaTest, OneFieldIsWrittenAtItsPlaceWithoutTypeLengthBytes)
{
    MemoryDevice header(withChecksum({1, 2, 3, 4, 5, 6, 0x55}));
    const auto area = open(header, FRU_AREA_COMMON_HEADER);
    update(*area, FRU_ITEM_BOARD_OFFSET, "\x44");
    header.takeAccesses();
    area->syncItem(FRU_ITEM_BOARD_OFFSET);
    EXPECT_EQ(header.takeAccesses(), Lines({"w3+1"}));
    EXPECT_EQ(header.bytes[3], 0x44);

    // In an area with coded fields the place is too low by the type/length bytes before it.
    const auto board = open(device, FRU_AREA_BOARD, 16);
    device.takeAccesses();
    board->syncItem(FRU_ITEM_SERIAL_NUMBER);
    EXPECT_EQ(device.takeAccesses(), Lines({"w27+4"}));
    EXPECT_EQ(thrownBy([&] { board->syncItem(FRU_ITEM_ASSET_TAG); }),
              fruError(20004, "FRUData::getItemMember Not Found item. (item9)"));
}

TEST_F(FRUAreaTest, ChecksumIsTheLowByteOfTheSum)
{
    const auto area = open(device, FRU_AREA_BOARD, 16);
    unsigned char bytes[] = {0xFF, 0x02, 0x10};
    EXPECT_EQ(area->calcChecksum(bytes, 0), 0);
    EXPECT_EQ(area->calcChecksum(bytes, 2), 1);
    EXPECT_EQ(area->calcChecksum(bytes, 3), 0x11);
}

TEST_F(FRUAreaTest, UpdateThatThrowsLeavesTheMarkAsItWas)
{
    MemoryDevice header(withChecksum({1, 0, 0, 2, 0, 0, 0}));
    const auto area = open(header, FRU_AREA_COMMON_HEADER);
    // A coded field in an area without a length byte: its growth has nowhere to go.
    const unsigned char field[] = {0xC1, 'x'};
    *area->getItemMember(FRU_ITEM_BOARD_OFFSET) = FRUMember(field, FRU_ITEM_BOARD_OFFSET, 0);
    EXPECT_EQ(thrownBy([&] { update(*area, FRU_ITEM_BOARD_OFFSET, "xyz"); }),
              "1:128:0x000D act 1 det 0x0001 msg 20004 (FRUArea::lengthUpdate  Not Length on "
              "FRUMember(%d), 19)");
    EXPECT_FALSE(area->isDirty());
    EXPECT_EQ(itemOf(*area, FRU_ITEM_BOARD_OFFSET), "x");
}

TEST_F(FRUAreaTest, WithoutUnusedSpaceTheLengthByteTakesTheChange)
{
    MemoryDevice chassis(
        areaOf(16, {0x17, 0xC2, 'P', 'N', 0xC9, 'a', 'b', 'c', 'd', 'e', 'f', 'g', 'h'}));
    const auto area = open(chassis, FRU_AREA_CHASSIS);
    ASSERT_EQ(layoutOf(*area), "0:1 1:1 8:1 5:3 6:10 ");
    area->unusedUpdate(8);
    EXPECT_EQ(itemOf(*area, FRU_ITEM_AREA_LENGTH), "\x03");
    area->unusedUpdate(-16);
    EXPECT_EQ(itemOf(*area, FRU_ITEM_AREA_LENGTH), "\x01");
    area->unusedUpdate(7);
    EXPECT_EQ(itemOf(*area, FRU_ITEM_AREA_LENGTH), "\x01");
    EXPECT_EQ(layoutOf(*area), "0:1 1:1 8:1 5:3 6:10 ");
}

TEST_F(FRUAreaTest, AreaThatGrewIsWrittenWithItsOwnLengthAndChecksum)
{
    MemoryDevice board(BOARD + Bytes(64, 0x77));
    const auto area = open(board, FRU_AREA_BOARD);
    update(*area, FRU_ITEM_SERIAL_NUMBER, std::string(4 + 6 + 10, 'x')); // ten more than are free
    EXPECT_EQ(area->calcAreaSize(), 42U);
    board.takeAccesses();
    area->syncFRU();
    EXPECT_EQ(board.takeAccesses(), Lines({"w0+42"}));
    const Bytes written = part(board.bytes, 0, 42);
    EXPECT_EQ(written[1], 42 / 8);
    EXPECT_EQ(area->calcChecksum(board.bytes.data(), 42), 0);
    EXPECT_EQ(part(board.bytes, 42, 54), Bytes(54, 0x77));
}

TEST_F(FRUAreaTest, UnusedBytesStayAsTheyAreUntilAFieldChangesItsLength)
{
    Bytes fields = BOARD_FIELDS;
    fields.resize(fields.size() - 5);
    MemoryDevice board(areaOf(32, fields + Bytes({9, 8, 7, 6, 5})));
    const Bytes before = board.bytes;
    const auto area = open(board, FRU_AREA_BOARD);
    update(*area, FRU_ITEM_SERIAL_NUMBER, "SN-2");
    area->syncFRU();
    // The length is the same, and still the space becomes zeroes: it is made again.
    Bytes expected = part(before, 0, 31);
    std::fill(expected.begin() + 25, expected.end(), static_cast<unsigned char>(0));
    expected[17] = '2';
    EXPECT_EQ(board.bytes, withChecksum(expected));

    MemoryDevice second(before);
    const auto untouched = open(second, FRU_AREA_BOARD);
    untouched->syncFRU();
    EXPECT_EQ(second.bytes, before);
}

TEST_F(FRUAreaTest, EveryOtherChecksumModeIgnores)
{
    Bytes bytes = BOARD;
    bytes[20] ^= 1;
    for (const int mode : {1, 2, 3, 255, -1, 1000}) {
        EXPECT_EQ(openFailure(bytes, FRU_AREA_BOARD, static_cast<FRUArea::CSUM_MODE>(mode)),
                  "nothing")
            << mode;
    }
}

TEST_F(FRUAreaTest, EmptyFieldIsWrittenFromAnAddress)
{
    // A device may look at the buffer's address; it must be one, also for no bytes.
    struct Device : MemoryDevice {
        using MemoryDevice::MemoryDevice;
        int write(unsigned int offset, unsigned int length, const unsigned char* buffer) override
        {
            EXPECT_NE(buffer, nullptr);
            return MemoryDevice::write(offset, length, buffer);
        }
    };
    Device product(areaOf(16, {0x19, 0xC0, 0xC2, 'P', 'R', 0xC1}));
    FRUArea area(product, 0, FRU_AREA_PRODUCT, FRUArea::CSUM_CHECK);
    product.takeAccesses();
    area.syncItem(FRU_ITEM_MANUFACTURER);
    EXPECT_EQ(product.takeAccesses(), Lines({"w3+0"}));
}

TEST_F(FRUAreaTest, ValuesAboveSixtyThreeBytesAreNotRefused)
{
    MemoryDevice board(BOARD + Bytes(300, 0));
    const auto area = open(board, FRU_AREA_BOARD);
    for (const std::size_t length : {64U, 70U, 130U, 260U}) {
        update(*area, FRU_ITEM_SERIAL_NUMBER, std::string(length, 'x'));
        const FRUMember* const member = area->getItemMember(FRU_ITEM_SERIAL_NUMBER);
        EXPECT_EQ(member->getLength(), length);
        EXPECT_EQ(member->getTypeLength(), ((length & 0xFF) | 0xC0));
        EXPECT_EQ(itemOf(*area, FRU_ITEM_SERIAL_NUMBER), std::string(length, 'x'));
    }
    EXPECT_EQ(area->calcAreaSize(), 32U - 6 - 4 + 260);
}
