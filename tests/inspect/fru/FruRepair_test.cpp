// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/fru/FruRepair.h>

#include <gtest/gtest.h>

#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/inspect/fru/FruImage.h>

#include "fru/MemoryDevice.h"
#include "support/SampleImages.h"
#include "support/ScratchRoot.h"

using namespace recordkit::inspect;
using namespace testing_support;

namespace {

const Bytes CHASSIS = areaOf(16, {0x17, 0xC2, 'P', 'N', 0xC2, 'S', 'N', 0xC2, 'c', '1', 0xC1});
const Bytes BOARD = areaOf(32, Bytes({0x19, 1, 2, 0x98, 0xC2, 'M', 'A', 0xC2, 'B', 'N', 0xC0}) +
                                   Bytes({0xC0, 0xC0, 0xC2, 'b', '1', 0xC3, 'b', '2', 'x', 0xC1}));
const Bytes RECORD1 = withChecksum({0xC1, 0x02, 3, 0xFA}) + Bytes({1, 2, 3});
const Bytes RECORD2 = withChecksum({0xC2, 0x82, 3, 0xF1}) + Bytes({4, 5, 6});

/// Header, chassis (8 to 23), board (24 to 55), records (56 to 63, 64 to 71), blank up to 87.
const Bytes IMAGE =
    withChecksum({1, 0, 1, 3, 0, 7, 0}) + CHASSIS + BOARD + RECORD1 + RECORD2 + Bytes(16, 0);

FruRepair repair(const Bytes& image)
{
    return repairFruImage(text(image));
}

/// Damages bytes of the image.
Bytes damaged(const std::vector<std::pair<std::size_t, unsigned char>>& changes)
{
    Bytes image = IMAGE;
    for (const auto& [at, value] : changes) {
        image[at] = value;
    }
    return image;
}

/// Expects that the image becomes whole by these repairs.
void expectRepaired(const Bytes& image, const Lines& repairs)
{
    const FruRepair result = repair(image);
    EXPECT_EQ(result.repairs, repairs);
    EXPECT_EQ(result.left, Lines());
    EXPECT_EQ(result.bytes, text(IMAGE));
}

void expectLeft(const Bytes& image, const Lines& repairs, std::size_t left)
{
    const FruRepair result = repair(image);
    EXPECT_EQ(result.repairs, repairs);
    EXPECT_EQ(result.left.size(), left);
    EXPECT_EQ(result.left, parseFruImage(result.bytes).allProblems());
}

}

TEST(FruRepair, SoundImageStaysAsItIs)
{
    expectRepaired(IMAGE, {});
    EXPECT_THROW(repair(Bytes(64, 0xFF)), DataError);
    EXPECT_THROW(repair({1, 0, 0}), DataError);
}

TEST(FruRepair, HeaderIsRepairedWhereItsOffsetsLeadToAreas)
{
    expectRepaired(damaged({{7, 0}}), {"common header: checksum at offset 7: 00h to F4h"});
    expectRepaired(damaged({{6, 9}}), {"common header: pad byte at offset 6: 09h to 00h"});
    expectRepaired(damaged({{6, 9}, {7, 0}}), {"common header: pad byte at offset 6: 09h to 00h",
                                               "common header: checksum at offset 7: 00h to F4h"});
    expectRepaired(damaged({{6, 9}, {55, 0x42}}),
                   {"common header: pad byte at offset 6: 09h to 00h",
                    "board area: checksum at offset 55: 42h to 80h"});
    // An offset that leads to something else: it may be what is damaged, not the checksum.
    expectLeft(damaged({{3, 4}}), {}, 2);
    expectLeft(damaged({{7, 0}, {55, 0x42}}), {}, 2);
    // With a right checksum the pad byte was written on purpose.
    Bytes padded = part(withChecksum({1, 0, 1, 3, 0, 7, 9}), 0, 8) + part(IMAGE, 8, 80);
    EXPECT_EQ(repair(padded).bytes, text(IMAGE));
    padded[55] = 0x42;
    EXPECT_EQ(repair(padded).left, Lines());
    EXPECT_NE(repair(damaged({{3, 0xFF}})).left, Lines());
    EXPECT_EQ(repair(damaged({{3, 0xFF}})).bytes[7], text(IMAGE)[7]);
    EXPECT_EQ(repair(damaged({{5, 0xFF}})).bytes[7], text(IMAGE)[7]);
}

TEST(FruRepair, AreasChecksumIsRepaired)
{
    expectRepaired(damaged({{55, 0x42}}), {"board area: checksum at offset 55: 42h to 80h"});
}

TEST(FruRepair, LengthIsThatWithARightChecksum)
{
    // 0, past the image, over the next area, too short for the fields.
    expectRepaired(damaged({{25, 0}}), {"board area: length byte at offset 25: 00h to 04h"});
    expectRepaired(damaged({{25, 0xFF}}), {"board area: length byte at offset 25: FFh to 04h"});
    expectRepaired(damaged({{25, 5}}), {"board area: length byte at offset 25: 05h to 04h"});
    expectRepaired(damaged({{25, 2}}), {"board area: length byte at offset 25: 02h to 04h"});
    expectRepaired(damaged({{9, 1}}), {"chassis area: length byte at offset 9: 01h to 02h"});
    // An end marker in the place of the checksum is one that the length leaves out.
    const Bytes twenty4 = withChecksum({1, 0, 1, 0, 0, 0, 0}) +
                          areaOf(24, Bytes({0x17, 0xC0, 0xCA}) + Bytes(10, 'x') + Bytes({0xC1}));
    Bytes sixteen = twenty4;
    sixteen[9] = 2;
    ASSERT_EQ(sixteen[23], 0xC1);
    EXPECT_EQ(repair(sixteen).bytes, text(twenty4));
    // An area past the end of the image has none.
    const Bytes outside = withChecksum({1, 0, 0, 9, 0, 0, 0}) + Bytes(8, 0);
    EXPECT_EQ(repair(outside).repairs, Lines());
    EXPECT_EQ(repair(outside).left,
              Lines({"board area: starts at offset 72, past the end of the 16-byte image"}));
    // With a wrong checksum as well, nothing tells the length.
    EXPECT_EQ(repair(damaged({{25, 0}, {55, 0x42}})).repairs, Lines());
    EXPECT_EQ(repair(damaged({{25, 0}, {24, 4}})).repairs, Lines());
    // Without an end marker before the next area there is no length.
    Bytes endless = damaged({{25, 0}});
    std::fill(endless.begin() + 35, endless.begin() + 56, static_cast<unsigned char>(0x01));
    EXPECT_EQ(repair(endless).repairs, Lines());
    EXPECT_EQ(repair(endless).left, Lines({"board area: length byte at offset 25 is 0"}));
}

TEST(FruRepair, EndMarkerIsPutWhereOnlyBlankBytesFollow)
{
    // The area's checksum is right with the marker: only that byte was damaged.
    expectRepaired(damaged({{46, 0}}), {"board area: end marker at offset 46: 00h to C1h"});
    EXPECT_EQ(repair(damaged({{46, 0}, {24, 4}})).repairs, Lines());
    // FFh after the fields.
    const Bytes erased =
        withChecksum({1, 0, 1, 0, 0, 0, 0}) +
        withChecksum(Bytes({1, 2, 0x17, 0xC2, 'P', 'N', 0xC2, 'S', 'N'}) + Bytes(6, 0xFF));
    const FruRepair repaired = repair(erased);
    EXPECT_EQ(repaired.repairs[0], "chassis area: end marker at offset 17: FFh to C1h");
    EXPECT_EQ(repaired.repairs.size(), 2U); // and the checksum
    EXPECT_EQ(repaired.left, Lines());
    EXPECT_EQ(parseFruImage(repaired.bytes).areas[0].unused, 5U);
    // The first zero byte after the texts of the standard is the marker's place, not one before.
    const Bytes zeroes =
        withChecksum({1, 0, 1, 0, 0, 0, 0}) + withChecksum(Bytes({1, 2, 0x17}) + Bytes(12, 0));
    EXPECT_EQ(repair(zeroes).repairs[0], "chassis area: end marker at offset 13: 00h to C1h");
    // Fields up to the checksum leave no room.
    const Bytes full = withChecksum({1, 0, 1, 0, 0, 0, 0}) +
                       withChecksum(Bytes({1, 2, 0x17, 0xCB}) + Bytes(11, 'x'));
    EXPECT_EQ(repair(full).repairs, Lines());
    EXPECT_EQ(repair(full).left, Lines({"chassis area: no end marker C1h before its end at 23"}));
}

TEST(FruRepair, FormatByteIsRepairedWhereTheChecksumIsRightWithIt)
{
    expectRepaired(damaged({{24, 0x04}}), {"board area: format byte at offset 24: 04h to 01h"});
    expectLeft(damaged({{24, 0x04}, {55, 0x42}}), {}, 2);
}

TEST(FruRepair, RecordsAreRepairedWhereHeaderOrDataIsRight)
{
    expectRepaired(damaged({{60, 0}}), {"multirecord 1: header checksum at offset 60: 00h to 40h"});
    expectRepaired(damaged({{68, 0}}), {"multirecord 2: header checksum at offset 68: 00h to C8h"});
    // Without a record after it, unless it is the last one, its length is not certain.
    EXPECT_EQ(repair(damaged({{60, 0}, {65, 3}})).repairs, Lines());
    EXPECT_EQ(repair(damaged({{60, 0}, {68, 0}})).repairs, Lines());
    // The data itself stays.
    const FruRepair data = repair(damaged({{62, 9}}));
    EXPECT_EQ(data.left, Lines());
    EXPECT_EQ(data.repairs, Lines({"multirecord 1: data checksum at offset 59: FAh to F3h",
                                   "multirecord 1: header checksum at offset 60: 40h to 47h"}));
    EXPECT_EQ(data.bytes[62], 9);
    EXPECT_EQ(data.bytes.substr(64), text(IMAGE).substr(64));
    // A right header whose data the area does not have.
    const Bytes tooLong = withChecksum({0xC1, 0x02, 200, 0xFA});
    Bytes cut = IMAGE;
    std::copy(tooLong.begin(), tooLong.end(), cut.begin() + 56);
    EXPECT_EQ(repair(cut).repairs, Lines());
    // Both wrong, another format, a length past the area: not certain enough.
    EXPECT_EQ(repair(damaged({{60, 0}, {62, 9}})).repairs, Lines());
    EXPECT_EQ(repair(damaged({{57, 3}})).repairs, Lines());
    EXPECT_EQ(repair(damaged({{58, 200}})).repairs, Lines());
    for (const auto& image :
         {damaged({{60, 0}, {62, 9}}), damaged({{57, 3}}), damaged({{58, 200}})}) {
        EXPECT_EQ(repair(image).left.size(), 1U);
    }
}

TEST(FruRepair, AreaInAnotherOneStaysAsItIs)
{
    // The board area begins in the chassis area, whose text it is.
    const Bytes outer = areaOf(32, Bytes({0x17, 0xC0, 0xC0, 0xD4, 'x', 'x', 1, 2, 0x19, 0, 0, 0}) +
                                       Bytes({0xC1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x42, 0x43, 0xC1}));
    const Bytes image = withChecksum({1, 0, 1, 2, 0, 0, 0}) + outer;
    EXPECT_EQ(repair(image).repairs, Lines());
    EXPECT_NE(repair(image).left, Lines());
    const Bytes records =
        withChecksum({1, 0, 1, 0, 0, 2, 0}) +
        areaOf(32, Bytes({0x17, 0xC0, 0xC0, 0xD4, 'x', 'x', 0xC1, 0x82, 3, 0xFA}) +
                       Bytes({0, 1, 2, 3, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xC1}));
    EXPECT_EQ(repair(records).repairs, Lines());
}

TEST(FruRepair, ListOfRecordsEndsBeforeBlankBytes)
{
    Bytes open = IMAGE;
    const Bytes unended = withChecksum({0xC2, 0x02, 3, 0xF1});
    std::copy(unended.begin(), unended.end(), open.begin() + 64);
    expectRepaired(open, {"multirecord 2: end of list at offset 65: 02h to 82h",
                          "multirecord 2: header checksum at offset 68: 48h to C8h"});
    // Also at the end of the image.
    open.resize(72);
    EXPECT_EQ(repair(open).left, Lines());
    EXPECT_EQ(repair(open).bytes, text(part(IMAGE, 0, 72)));
    // Bytes that are something else may be the next record, damaged.
    open.resize(80, 0x55);
    EXPECT_EQ(repair(open).repairs, Lines());
    EXPECT_EQ(repair(open).left.size(), 1U);
    // No record at all: there is nothing to end.
    const Bytes none = withChecksum({1, 0, 0, 0, 0, 1, 0}) + Bytes(16, 0);
    EXPECT_EQ(repair(none).repairs, Lines());
    EXPECT_EQ(repair(none).left.size(), 1U);
}

TEST(FruRepair, OneDamagedStructureByteOfAnySampleIsRepairedOrNamed)
{
    unsigned int whole = 0;
    for (const std::string& path : sampleImages()) {
        const Bytes bytes = readFile(path);
        const FruImage image = parseFruImage(text(bytes));
        if (!image.allProblems().empty()) {
            continue;
        }
        std::vector<std::size_t> places = {7};
        for (const FruAreaImage& area : image.areas) {
            places.push_back(area.extent.offset + 1);
            places.push_back(area.extent.end() - 1 - area.unused - 1);
            places.push_back(area.extent.end() - 1);
        }
        for (const std::size_t place : places) {
            Bytes broken = bytes;
            broken[place] = static_cast<unsigned char>(broken[place] ^ 0x5A);
            const FruRepair result = repair(broken);
            const FruImage after = parseFruImage(result.bytes);
            EXPECT_EQ(result.left, after.allProblems());
            EXPECT_EQ(result.bytes.size(), bytes.size());
            whole += result.bytes == text(bytes) ? 1 : 0;
        }
    }
    EXPECT_GE(whole, 20U);
}
