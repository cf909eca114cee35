// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/fru/FruLayout.h>

#include <gtest/gtest.h>

#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/inspect/fru/FruContent.h>
#include <recordkit/inspect/fru/FruImage.h>

#include "fru/MemoryDevice.h"

using namespace recordkit::inspect;
using namespace testing_support;

namespace {

const Bytes CHASSIS = areaOf(16, {0x17, 0xC2, 'P', 'N', 0xC2, 'S', 'N', 0xC1});

const std::string RECORD = text(withChecksum({0xC1, 0x82, 3, 0xFA}) + Bytes({1, 2, 3}));

std::string resized(const Bytes& image, std::size_t size)
{
    try {
        return resizeFruImage(text(image), size);
    } catch (const DataError& e) {
        return e.what();
    }
}

}

TEST(FruLayout, ImageGrowsInTheValueOfItsBlankBytes)
{
    const Bytes image = withChecksum({1, 0, 1, 0, 0, 0, 0}) + CHASSIS;
    EXPECT_EQ(resized(image + Bytes(8, 0xFF), 40), text(image + Bytes(16, 0xFF)));
    EXPECT_EQ(resized(image + Bytes(8, 0), 40), text(image + Bytes(16, 0)));
    EXPECT_EQ(resized(image, 32), text(image + Bytes(8, 0)));
    EXPECT_EQ(resized(image, 24), text(image));
}

TEST(FruLayout, ImageIsCutWhereItIsBlank)
{
    const Bytes image = withChecksum({1, 0, 1, 0, 0, 0, 0}) + CHASSIS;
    EXPECT_EQ(resized(image + Bytes(8, 0xFF), 24), text(image));
    EXPECT_EQ(resized(image + Bytes(8, 0xFF), 25), text(image + Bytes(1, 0xFF)));
    EXPECT_EQ(resized(image + Bytes(8, 0xFF), 23),
              "chassis (8 to 23) would be cut off at 23 bytes");
    EXPECT_EQ(resized(image + Bytes({0, 0, 7}), 26),
              "other bytes (24 to 26) would be cut off at 26 bytes");
    EXPECT_EQ(resized(Bytes(16, 0xFF), 32), "no FRU image: format version FFh at offset 0, "
                                            "expected 01h");
    // The internal use area extends to the end of the image; its blank end may go.
    const Bytes internal = withChecksum({1, 1, 0, 0, 0, 0, 0}) + Bytes({1, 2, 3, 0, 0, 0, 0, 0});
    EXPECT_EQ(resized(internal, 11), text(part(internal, 0, 11)));
    EXPECT_EQ(resized(internal, 10), "internal (8 to 15) would be cut off at 10 bytes");
    EXPECT_EQ(resized(withChecksum({1, 1, 0, 0, 0, 0, 0}) + Bytes(8, 0), 8),
              "internal (8 to 15) would be cut off at 8 bytes");
}

TEST(FruLayout, AreaThatGoesLeavesItsPlaceToANewOne)
{
    const Bytes image = withChecksum({1, 0, 1, 0, 0, 3, 0}) + CHASSIS + textBytes(RECORD);
    const Bytes product = areaOf(16, {0x19, 0xC0, 0xC0, 0xC0, 0xC0, 0xC0, 0xC0, 0xC0, 0xC1});
    EXPECT_EQ(
        placeFruBlocks(text(image), {{FRU_AREA_CHASSIS, ""}, {FRU_AREA_PRODUCT, text(product)}}),
        text(withChecksum({1, 0, 0, 0, 1, 3, 0}) + product + textBytes(RECORD)));
}

TEST(FruLayout, WhatDoesNotChangeStaysWhereItIsEvenIfItIsDamaged)
{
    // Two areas that overlap, and one that is edited elsewhere.
    const Bytes image = withChecksum({1, 0, 1, 2, 5, 0, 0}) + part(CHASSIS, 0, 8) +
                        Bytes({1, 2, 0x19}) + Bytes(21, 0x55) + CHASSIS;
    ASSERT_EQ(parseFruImage(text(image)).extents.size(), 4U);
    const std::string placed = placeFruBlocks(text(image), {{FRU_AREA_PRODUCT, text(Bytes(8, 7))}});
    EXPECT_EQ(placed, text(part(image, 0, 40) + Bytes(8, 7) + Bytes(8, 0)));
}

TEST(FruLayout, LastOffsetThatTheHeaderCanSayIsUsed)
{
    std::string image = buildFruImage({}, 4096);
    image =
        placeFruBlocks(image, {{FRU_AREA_CHASSIS, text(areaOf(2032, {0x17, 0xC0, 0xC0, 0xC1}))}});
    // 8 + 2032 = 2040 is the largest offset.
    const std::string two = placeFruBlocks(image, {{FRU_AREA_MULTIRECORD, RECORD}});
    EXPECT_EQ(parseFruImage(two).size, 4096U);
    EXPECT_EQ(static_cast<unsigned char>(two[5]), 0xFF);
    EXPECT_EQ(two.substr(2040, 8), RECORD);
    std::string larger = buildFruImage({}, 4096);
    larger = placeFruBlocks(larger, {{FRU_AREA_MULTIRECORD, RECORD}});
    try {
        placeFruBlocks(larger, {{FRU_AREA_MULTIRECORD, RECORD},
                                {FRU_AREA_CHASSIS, std::string(2033, '\x01')},
                                {FRU_AREA_BOARD, std::string(8, '\x01')}});
        FAIL();
    } catch (const DataError& e) {
        EXPECT_STREQ(e.what(), "an area would begin after offset 2040, the last that the common "
                               "header can say");
    }
}
