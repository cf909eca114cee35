// SPDX-License-Identifier: Apache-2.0
#include <recordkit/fru/FRUMember.h>

#include <gtest/gtest.h>

#include "recordkit/fru/FRUTables.h"
#include "support/Bytes.h"

using namespace testing_support;

namespace {

struct Area {
    int id;
    int offsetItem;
    unsigned int size;
    std::vector<std::pair<int, unsigned int>> members;
};

// clang-format off
const Area AREAS[] = {
    {0, 87, 8, {{0, 1}, {19, 1}, {20, 1}, {21, 1}, {22, 1}, {23, 1}}},
    {1, 19, 0, {{0, 1}, {1, 1}, {16, 1}, {6, 13}, {77, 1}, {78, 1}, {79, 2}, {80, 72}, {17, 19}}},
    {2, 19, 0, {{0, 1}, {1, 1}, {25, 1}, {26, 1}, {27, 1}, {28, 1}, {29, 1}, {30, 1}, {31, 1}, {32, 6}, {33, 6}, {34, 6}, {35, 6}, {17, 190}}},
    {3, 20, 0, {{0, 1}, {1, 1}, {8, 1}, {5, 0}, {6, 0}}},
    {4, 21, 0, {{0, 1}, {1, 1}, {2, 1}, {18, 3}, {3, 0}, {4, 0}, {6, 0}, {5, 0}, {10, 0}}},
    {5, 22, 0, {{0, 1}, {1, 1}, {2, 1}, {3, 0}, {4, 0}, {5, 0}, {7, 0}, {6, 0}, {9, 0}, {10, 0}, {38, 0}, {39, 0}, {15, 0}}},
    {50, 87, 14, {{60, 1}, {57, 2}, {50, 1}, {51, 1}, {52, 1}, {53, 1}, {54, 1}, {55, 1}, {56, 1}, {58, 1}, {13, 2}}},
    {51, 50, 13, {{59, 6}, {4, 1}, {13, 1}, {85, 2}, {13, 2}}},
    {52, 51, 15, {{81, 2}, {13, 2}, {64, 2}, {65, 2}, {83, 2}, {84, 2}, {67, 1}, {68, 1}}},
    {53, 52, 34, {{13, 2}, {13, 2}, {13, 4}, {13, 1}, {13, 2}, {13, 2}, {13, 2}, {13, 1}, {13, 1}, {13, 4}, {13, 2}, {69, 2}, {13, 2}, {13, 1}, {13, 1}, {13, 4}}},
    {54, 53, 8, {{60, 4}, {70, 1}, {13, 2}}},
    {55, 54, 18, {{5, 7}, {71, 8}, {13, 2}}},
    {56, 55, 6, {{72, 1}, {73, 1}, {13, 1}, {13, 2}}},
    {57, 56, 11, {{74, 4}, {75, 1}, {13, 1}, {13, 1}, {76, 1}, {13, 2}}},
    {58, 58, 9, {{86, 8}}},
};
// clang-format on

FRUMember coded(const Bytes& bytes)
{
    return FRUMember(bytes.data(), FRU_ITEM_SERIAL_NUMBER, 0);
}

}

TEST(FRUTables, HoldEveryAreaWithItsFields)
{
    for (const Area& area : AREAS) {
        const FRUAreaTbl* const row = findFRUArea(static_cast<FRU_AREA>(area.id));
        ASSERT_NE(row, nullptr) << area.id;
        EXPECT_EQ(row->offsetItem, area.offsetItem) << area.id;
        EXPECT_EQ(row->size, area.size) << area.id;
        const FRUMemberTbl* member = row->members;
        for (const auto& [item, size] : area.members) {
            EXPECT_EQ(member->item, item) << area.id;
            EXPECT_EQ(member->size, size) << area.id;
            ++member;
        }
        EXPECT_EQ(member->item, FRU_ITEM_TERMINATOR) << area.id;
    }
}

TEST(FRUTables, HoldNoOtherArea)
{
    int found = 0;
    for (int id = -2; id < 300; ++id) {
        found += findFRUArea(static_cast<FRU_AREA>(id)) != nullptr ? 1 : 0;
    }
    EXPECT_EQ(found, 15);
    EXPECT_EQ(findFRUArea(FRU_AREA_MULTIRECORD), nullptr);
}

TEST(FRUMember, FixedFieldHasItsBytes)
{
    const unsigned char bytes[] = {1, 0, 3};
    const FRUMember member(bytes, FRU_ITEM_MFG_DATE_TIME, 3);
    EXPECT_EQ(member.getItem(), FRU_ITEM_MFG_DATE_TIME);
    EXPECT_EQ(member.getData(), std::string("\1\0\3", 3));
    EXPECT_EQ(member.getLength(), 3);
    EXPECT_EQ(member.getTypeLength(), 0);
    EXPECT_FALSE(member.getHasTypeLength());
}

TEST(FRUMember, CodedFieldKeepsItsTypeLengthByteAsRead)
{
    const FRUMember member = coded({0x03, 'a', 'b', 'c', 'd'});
    EXPECT_EQ(member.getData(), "abc");
    EXPECT_EQ(member.getLength(), 3);
    EXPECT_EQ(member.getTypeLength(), 0x03);
    EXPECT_TRUE(member.getHasTypeLength());
}

TEST(FRUMember, CodedFieldOfLengthZeroIsEmpty)
{
    const FRUMember member = coded({0xC0, 0xEE});
    EXPECT_EQ(member.getData(), "");
    EXPECT_EQ(member.getLength(), 0);
    EXPECT_TRUE(member.getHasTypeLength());
}

TEST(FRUMember, CodedFieldHasUpToSixtyThreeBytes)
{
    Bytes longest(64, 'x');
    longest[0] = 0xFF;
    EXPECT_EQ(coded(longest).getData(), std::string(63, 'x'));
}

TEST(FRUMember, ReservedFieldIsZero)
{
    const FRUMember member(3U);
    EXPECT_EQ(member.getItem(), FRU_ITEM_RESERVED);
    EXPECT_EQ(member.getData(), std::string(3, '\0'));
    EXPECT_EQ(member.getLength(), 3);
    EXPECT_FALSE(member.getHasTypeLength());
    EXPECT_EQ(FRUMember(0U).getLength(), 0);
}

TEST(FRUMember, RebuiltTypeLengthIsEightBitText)
{
    FRUMember member = coded({0x03, 'a', 'b', 'c'});
    member.setData("vwxyz");
    EXPECT_EQ(member.getTypeLength(), 0x03);
    EXPECT_EQ(member.getLength(), 3);
    member.settypelength();
    EXPECT_EQ(member.getTypeLength(), 0xC5);
    EXPECT_EQ(member.getLength(), 5);
}

TEST(FRUMember, LengthsAboveSixtyThreeRunIntoTheTypeBits)
{
    FRUMember member = coded({0xC1, 'a'});
    member.setData(std::string(70, 'x'));
    member.settypelength();
    EXPECT_EQ(member.getTypeLength(), 0xC6);
    EXPECT_EQ(member.getLength(), 70);
    member.setData(std::string(300, 'x'));
    member.settypelength();
    EXPECT_EQ(member.getTypeLength(), 0xEC);
    EXPECT_EQ(member.getLength(), 300);
}

TEST(FRUMember, FixedFieldKeepsItsLengthUnlessToldOtherwise)
{
    const unsigned char bytes[] = {1, 2};
    FRUMember member(bytes, FRU_ITEM_CUSTOM, 2);
    member.setData("long value");
    member.settypelength();
    EXPECT_EQ(member.getTypeLength(), 0);
    EXPECT_EQ(member.getLength(), 2);
    member.settypelength(9);
    EXPECT_EQ(member.getTypeLength(), 0xC9);
    EXPECT_EQ(member.getLength(), 9);
}

TEST(FRUMember, FixedFieldKeepsAllItsBytesAboveSixtyFourKilobytes)
{
    for (const unsigned int size : {65535U, 65536U, 65539U, 131072U}) {
        const Bytes bytes = sequence(size);
        const FRUMember member(bytes.data(), FRU_ITEM_CUSTOM, size);
        EXPECT_EQ(member.getData(), std::string(bytes.begin(), bytes.end())) << size;
        EXPECT_EQ(member.getLength(), size % 65536);
        const FRUMember reserved(size);
        EXPECT_EQ(reserved.getData(), std::string(size, '\0'));
        EXPECT_EQ(reserved.getLength(), size % 65536);
    }
}
