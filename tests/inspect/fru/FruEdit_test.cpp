// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/inspect/fru/FruEdit.h>
#include <recordkit/inspect/fru/FruImage.h>

#include "fru/MemoryDevice.h"
#include "support/SampleImages.h"
#include "support/ScratchRoot.h"

using namespace recordkit::inspect;
using namespace testing_support;

namespace {

/// 24 bytes: 7 unused.
const Bytes CHASSIS = areaOf(24, Bytes({0x17, 0xC4, 'C', 'P', 'N', '1', 0xC3, 'C', 'S', 'N'}) +
                                     Bytes({0xC2, 'c', '1', 0xC1}));
/// 40 bytes: 5 unused.
const Bytes BOARD =
    areaOf(40, Bytes({0x19, 1, 2, 0x98}) + Bytes({0xC4, 'M', 'A', 'N', 'U', 0x83, 0x64, 0xC9}) +
                   Bytes({0xB2, 0xC5, 'S', 'N', '-', '0', '1', 0xC2, 'P', 'N', 0xC0, 0xC4, 'b'}) +
                   Bytes({'1', '1', '1', 0xC2, 'b', '2', 0xC1}));
/// Fields up to the part number only: 2 unused.
const Bytes PRODUCT = areaOf(16, {0x19, 0xC2, 'M', 'M', 0xC2, 'N', 'N', 0xC2, 'P', 'P', 0xC1});
const Bytes RECORDS = withChecksum({6, 0x82, 3, 0xFA}) + Bytes({1, 2, 3});

/// Header, chassis, board, product, multirecords, 16 blank bytes.
const Bytes IMAGE =
    withChecksum({1, 0, 1, 4, 9, 11, 0}) + CHASSIS + BOARD + PRODUCT + RECORDS + Bytes(16, 0xFF);

const Bytes PRODUCT_IMAGE = withChecksum({1, 0, 0, 0, 1, 0, 0}) + PRODUCT;

FruEditResult edit(const Bytes& image, const std::vector<FruEdit>& edits, bool mayGrow = false,
                   bool repairs = false)
{
    FruEditOptions options;
    options.mayGrow = mayGrow;
    options.repairsChecksums = repairs;
    return editFruImage(text(image), edits, options);
}

/// What an edit is refused with: "1: text" for data, "2: text" for the request.
std::string refusal(const Bytes& image, const std::vector<FruEdit>& edits, bool mayGrow = false,
                    bool repairs = false)
{
    const TraceCapture trace;
    try {
        edit(image, edits, mayGrow, repairs);
        return "none";
    } catch (const Error& e) {
        const bool isRequest = dynamic_cast<const RequestError*>(&e) != nullptr;
        return std::string(isRequest ? "2: " : "1: ") + e.what();
    }
}

std::string valueOf(const std::string& bytes, const std::string& field)
{
    const FruImage image = parseFruImage(bytes);
    return image.findField(field) == nullptr ? "absent" : image.findField(field)->value;
}

/// Offsets of the bytes that differ.
std::pair<std::size_t, std::size_t> difference(const Bytes& before, const std::string& after)
{
    const std::string old = text(before);
    std::size_t first = 0;
    while (first < old.size() && old[first] == after[first]) {
        ++first;
    }
    std::size_t last = old.size();
    while (last > first && old[last - 1] == after[last - 1]) {
        --last;
    }
    return {first, last};
}

}

TEST(FruEdit, ImageIsAsTheTestsNeedIt)
{
    const FruImage image = parseFruImage(text(IMAGE));
    EXPECT_EQ(image.allProblems(), Lines());
    EXPECT_EQ(image.areas[0].unused, 7U);
    EXPECT_EQ(image.areas[1].unused, 5U);
    EXPECT_EQ(image.areas[2].unused, 2U);
}

TEST(FruEdit, ChangesOneFieldAndItsAreaAlone)
{
    const FruEditResult result = edit(IMAGE, {{"board.serial", "SN-4711"}});
    EXPECT_EQ(valueOf(result.bytes, "board.serial"), "SN-4711");
    EXPECT_EQ(valueOf(result.bytes, "board.name"), "DELL");
    EXPECT_EQ(valueOf(result.bytes, "board.custom2"), "b2");
    EXPECT_EQ(parseFruImage(result.bytes).allProblems(), Lines());
    EXPECT_EQ(parseFruImage(result.bytes).areas[1].unused, 3U);
    const auto [first, last] = difference(IMAGE, result.bytes);
    EXPECT_GE(first, 32U);
    EXPECT_LE(last, 72U);
    ASSERT_EQ(result.changes.size(), 1U);
    EXPECT_EQ(result.changes[0].before, "SN-01");
    EXPECT_EQ(result.changes[0].after, "SN-4711");
    EXPECT_EQ(result.notes, Lines({"board area: 3 bytes free"}));
}

TEST(FruEdit, ChangesFieldsOfEveryKind)
{
    const FruEditResult result = edit(IMAGE, {{"chassis.type", "0x11"},
                                              {"board.date", "2024-11-05 06:07"},
                                              {"board.language", "0"},
                                              {"product.manufacturer", ""},
                                              {"board.custom2", "zwei"},
                                              {"chassis.custom1", "\xC3\xA9\xC3\xBC"}});
    EXPECT_EQ(valueOf(result.bytes, "chassis.type"), "Main Server Chassis");
    EXPECT_EQ(valueOf(result.bytes, "board.date"), "2024-11-05 06:07");
    EXPECT_EQ(valueOf(result.bytes, "board.language"), "0");
    EXPECT_EQ(valueOf(result.bytes, "product.manufacturer"), "");
    EXPECT_EQ(valueOf(result.bytes, "product.name"), "NN");
    EXPECT_EQ(valueOf(result.bytes, "board.custom1"), "b111");
    EXPECT_EQ(valueOf(result.bytes, "board.custom2"), "zwei");
    EXPECT_EQ(valueOf(result.bytes, "chassis.custom1"), "\xC3\xA9\xC3\xBC");
    EXPECT_EQ(parseFruImage(result.bytes).allProblems(), Lines());
    EXPECT_EQ(result.bytes.substr(88), text(IMAGE).substr(88));
}

TEST(FruEdit, FieldsThatShrinkMakeRoomForThoseThatGrow)
{
    // 12 more bytes in one, 4 + 3 fewer in others, 5 unused: in either order.
    const FruEdit grow = {"board.serial", "SN-01-and-more123"};
    const FruEdit shrink = {"board.manufacturer", ""};
    const FruEdit shrinkMore = {"board.name", ""};
    for (const auto& edits : {std::vector<FruEdit>{grow, shrink, shrinkMore},
                              std::vector<FruEdit>{shrinkMore, shrink, grow}}) {
        const FruEditResult result = edit(IMAGE, edits);
        EXPECT_EQ(valueOf(result.bytes, "board.serial"), "SN-01-and-more123");
        EXPECT_EQ(parseFruImage(result.bytes).areas[1].unused, 0U);
        EXPECT_EQ(parseFruImage(result.bytes).allProblems(), Lines());
    }
    EXPECT_EQ(refusal(IMAGE, {grow, shrink}),
              "1: board area: 8 more bytes needed, 5 free (--grow makes room where the image has "
              "some)");
}

TEST(FruEdit, LastUnusedByteCanBeUsedAndNotOneMore)
{
    EXPECT_EQ(refusal(IMAGE, {{"board.serial", "SN-01+2345"}}), "none");
    EXPECT_EQ(refusal(IMAGE, {{"board.serial", "SN-01+23456"}}),
              "1: board area: 6 more bytes needed, 5 free (--grow makes room where the image has "
              "some)");
}

TEST(FruEdit, ValuesThatCannotBeStoredAreRefused)
{
    EXPECT_EQ(refusal(IMAGE, {{"board.serial", "X"}}),
              "1: board.serial: a value of one character cannot be stored, its type/length byte "
              "would end the fields (6-bit text can have one)");
    EXPECT_EQ(refusal(IMAGE, {{"board.serial", "\xC3\xA9"}}).substr(0, 40),
              "1: board.serial: a value of one characte");
    EXPECT_EQ(refusal(IMAGE, {{"board.serial", std::string(64, 'x')}}),
              "1: board.serial: 64 bytes needed, a field has at most 63");
    EXPECT_EQ(refusal(IMAGE, {{"board.serial", std::string(63, 'x')}}).substr(0, 30),
              "1: board area: 58 more bytes n");
    EXPECT_EQ(refusal(IMAGE, {{"board.serial", "10 \xE2\x82\xAC"}}),
              "1: board.serial: \"10 \xE2\x82\xAC\" has characters outside Latin-1");
    EXPECT_EQ(refusal(IMAGE, {{"board.date", "tomorrow"}}).substr(0, 35),
              "1: board.date: \"tomorrow\" is not a ");
    EXPECT_EQ(refusal(IMAGE, {{"chassis.type", "box"}}),
              "1: chassis.type: \"box\" is neither the name nor the number of a chassis type");
    EXPECT_EQ(refusal(IMAGE, {{"board.language", "256"}}),
              "1: board.language: \"256\" is neither a language such as \"en\" nor a number from 0 "
              "to 255");
}

TEST(FruEdit, FieldsThatAreNotThereAreRefused)
{
    EXPECT_EQ(refusal(IMAGE, {{"product.serial", "XY"}}),
              "1: product.serial: the product area at offset 72 has no such field (fru add adds "
              "one)");
    EXPECT_EQ(refusal(IMAGE, {{"board.custom3", "XY"}}),
              "1: board.custom3: the board area at offset 32 has no such field (fru add adds one)");
    const Bytes alone = withChecksum({1, 0, 1, 0, 0, 0, 0}) + CHASSIS;
    EXPECT_EQ(refusal(alone, {{"board.serial", "XY"}}),
              "1: board.serial: the image has no board area (fru add adds one)");
    EXPECT_EQ(
        refusal(IMAGE, {{"boards.serial", "XY"}}),
        "2: \"boards.serial\" is not a field, expected AREA.FIELD with one of the areas chassis, "
        "board, product, or RECORD.FIELD with a record such as dc-output1");
    EXPECT_EQ(refusal(IMAGE, {{"serial", "XY"}}).substr(0, 26), "2: \"serial\" is not a field");
    EXPECT_EQ(refusal(IMAGE, {{".serial", "XY"}}).substr(0, 27), "2: \".serial\" is not a field");
    EXPECT_EQ(refusal(IMAGE, {{"dc-load1.output", "1"}}),
              "1: dc-load1.output: the image has no record dc-load1");
    EXPECT_EQ(refusal(IMAGE, {{"chassis.asset-tag", "XY"}}),
              "2: \"chassis.asset-tag\": the chassis area has no field \"asset-tag\", but type, "
              "part-number, serial and custom1, custom2, ...");
    EXPECT_EQ(refusal(IMAGE, {{"chassis.custom", "XY"}}).substr(0, 2), "2:");
    EXPECT_EQ(refusal(IMAGE, {{"chassis.custom0", "XY"}}).substr(0, 2), "2:");
    EXPECT_EQ(refusal(IMAGE, {{"chassis.", "XY"}}).substr(0, 2), "2:");
    EXPECT_EQ(refusal(IMAGE, {{"board.serial", "AA"}, {"board.serial", "BB"}}),
              "2: board.serial is specified more than once");
}

TEST(FruEdit, WrongChecksumsAreRefusedOrRepaired)
{
    Bytes image = IMAGE;
    image[7] = 0x11;  // of the header
    image[71] = 0x22; // of the board area
    image[87] = 0x33; // of the product area, which is not edited
    EXPECT_EQ(refusal(image, {{"board.serial", "XY"}}),
              "1: common header: checksum 11h at offset 7, expected E6h (--ignore-checksum repairs "
              "it)");
    image[7] = IMAGE[7];
    EXPECT_EQ(refusal(image, {{"board.serial", "XY"}}).substr(0, 46),
              "1: board area: checksum 22h at offset 71, expe");
    image[71] = IMAGE[71];
    EXPECT_EQ(refusal(image, {{"board.serial", "XY"}}).substr(0, 48),
              "1: product area: checksum 33h at offset 87, expe");
    image[7] = 0x11;
    image[71] = 0x22;
    const FruEditResult result = edit(image, {{"board.serial", "XY"}}, false, true);
    EXPECT_EQ(parseFruImage(result.bytes).allProblems(), Lines());
    EXPECT_EQ(result.bytes, edit(IMAGE, {{"board.serial", "XY"}}).bytes);
    EXPECT_EQ(result.notes.size(), 4U);
}

TEST(FruEdit, DamagedAreasAreRefused)
{
    Bytes noEnd = withChecksum({1, 0, 1, 0, 0, 0, 0}) + areaOf(16, Bytes(13, 0xC0));
    EXPECT_EQ(refusal(noEnd, {{"chassis.serial", "XY"}}),
              "1: chassis area: no end marker C1h before its end at 23");
    Bytes runsOut = withChecksum({1, 0, 1, 0, 0, 0, 0}) + areaOf(16, {0x17, 0xC0, 0xFF});
    EXPECT_EQ(refusal(runsOut, {{"chassis.serial", "XY"}}),
              "1: chassis area: 63 bytes of the field at offset 12 run past the area's end at 23");
    EXPECT_EQ(refusal(Bytes(64, 0xFF), {{"chassis.serial", "XY"}}),
              "1: no FRU image: format version FFh at offset 0, expected 01h");
    EXPECT_EQ(refusal(withChecksum({1, 0, 1, 0, 0, 3, 0}) + part(CHASSIS, 0, 16) +
                          withChecksum({1, 0x82, 0, 0}) + Bytes(3, 0),
                      {{"chassis.serial", "XY"}}, false, true),
              "1: chassis (8 to 31) and multirecord (24 to 28) overlap");
}

TEST(FruEdit, AreaThatIsTooLargeForTheLibraryIsEditedAsItIs)
{
    Bytes fields = {0x17, 0xC2, 'A', 'B', 0xC2, 'C', 'D'};
    for (int i = 0; i < 5; ++i) {
        fields = fields + Bytes({0xFF}) + Bytes(63, 'x');
    }
    const Bytes large =
        withChecksum({1, 0, 1, 0, 0, 0, 0}) + areaOf(512, fields + Bytes({0xC1})) + Bytes(64, 0);
    const FruEditResult result = edit(large, {{"chassis.serial", "SN-4711"}});
    EXPECT_EQ(valueOf(result.bytes, "chassis.serial"), "SN-4711");
    EXPECT_EQ(valueOf(result.bytes, "chassis.custom5"), std::string(63, 'x'));
    EXPECT_EQ(parseFruImage(result.bytes).allProblems(), Lines());
    EXPECT_EQ(parseFruImage(result.bytes).areas[0].unused, 176U);
    const Bytes full =
        withChecksum({1, 0, 1, 0, 0, 0, 0}) +
        areaOf(256, Bytes({0x17, 0xC2, 'A', 'B', 0xC2, 'C', 'D', 0xFF}) + Bytes(63, 'x') +
                        Bytes({0xFF}) + Bytes(63, 'x') + Bytes({0xFF}) + Bytes(63, 'x') +
                        Bytes({0xF2}) + Bytes(50, 'x') + Bytes({0xC1})) +
        Bytes(64, 0);
    EXPECT_EQ(refusal(full, {{"chassis.serial", "CSN-4711"}}, true),
              "1: chassis area: 6 more bytes needed, 2 free, and an area has at most 248 bytes");
}

TEST(FruEdit, AreaThatHoldsTheOffsetOfAnUnreadableOneIsRefused)
{
    // The chassis area begins in the board area's fields, which an edit would move.
    const Bytes image = withChecksum({1, 0, 3, 1, 0, 0, 0}) + BOARD;
    EXPECT_EQ(refusal(image, {{"board.serial", "SN-4711"}}, false, true),
              "1: board (8 to 47) and chassis (24 to 24) overlap");
}

TEST(FruEdit, RecordsAndInternalUseInAnAreaAreRefused)
{
    // The records begin in the chassis area's text, the internal use area in the board area.
    const Bytes text1 = {0xC1, 0x82, 3, 0xFA, 0xC0, 1, 2, 3};
    const Bytes chassis = areaOf(24, Bytes({0x17, 0xC0, 0xC0, 0xCA, 'a', 'b'}) + text1);
    const Bytes image = withChecksum({1, 0, 1, 0, 0, 2, 0}) + chassis;
    ASSERT_EQ(parseFruImage(text(image)).records.size(), 1U);
    EXPECT_EQ(refusal(image, {{"oem1.data", ""}}),
              "1: multirecord (16 to 23) and chassis (8 to 31) overlap");
    const Bytes inside = withChecksum({1, 2, 0, 1, 0, 0, 0}) + BOARD;
    EXPECT_EQ(refusal(inside, {{"internal", "x"}}),
              "1: internal (16 to 47) and board (8 to 47) overlap");
    EXPECT_EQ(refusal(IMAGE, {{"internal", "x"}}),
              "1: internal: the image has no internal use area (fru add adds one)");
}

TEST(FruEdit, LanguageChangesWithTheTextsThatDependOnIt)
{
    EXPECT_EQ(
        refusal(PRODUCT_IMAGE, {{"product.language", "ja"}}),
        "1: product.language: product.manufacturer would be read with 16 bits a character, it "
        "must be set at the same time");
    EXPECT_EQ(
        refusal(PRODUCT_IMAGE,
                {{"product.manufacturer", ""}, {"product.name", ""}, {"product.language", "ja"}})
            .substr(0, 40),
        "1: product.language: product.part-number");
    const FruEditResult result = edit(PRODUCT_IMAGE, {{"product.manufacturer", "M"},
                                                      {"product.part-number", ""},
                                                      {"product.language", "ja"},
                                                      {"product.name", "N"}});
    EXPECT_EQ(valueOf(result.bytes, "product.manufacturer"), "M");
    EXPECT_EQ(parseFruImage(result.bytes).findField("product.name")->bytes, std::string("N\0", 2));
    // Empty texts, and those of other codings, are the same in every language.
    const Bytes plain = withChecksum({1, 0, 0, 0, 1, 0, 0}) +
                        areaOf(16, {0x19, 0xC0, 0x82, 0xA1, 0x08, 0x41, 0x12, 0xC1});
    EXPECT_EQ(refusal(plain, {{"product.language", "ja"}}), "none");
}

TEST(FruEdit, NewCodingIsNoted)
{
    const Bytes image = withChecksum({1, 0, 0, 0, 1, 0, 0}) +
                        areaOf(24, {0x19, 0x00, 0x82, 0xA1, 0x08, 0x02, 0xDE, 0xAD, 0xC1});
    EXPECT_EQ(edit(image, {{"product.manufacturer", "AB"}}).notes,
              Lines({"product area: 10 bytes free"}));
    EXPECT_EQ(edit(image, {{"product.name", "ab"}}).notes,
              Lines({"product area: 12 bytes free", "product.name: stored as text, it was 6-bit"}));
    EXPECT_EQ(edit(image, {{"product.part-number", "xy"}}).notes,
              Lines({"product area: 12 bytes free",
                     "product.part-number: stored as text, it was binary"}));
}

TEST(FruEdit, GrowingMovesWhatIsBehind)
{
    const FruEditResult result = edit(IMAGE, {{"board.serial", "SN-01-and-a-long-tail"}}, true);
    const FruImage image = parseFruImage(result.bytes);
    EXPECT_EQ(image.allProblems(), Lines());
    EXPECT_EQ(result.bytes.size(), IMAGE.size());
    EXPECT_EQ(valueOf(result.bytes, "board.serial"), "SN-01-and-a-long-tail");
    EXPECT_EQ(image.areas[1].extent.offset, 32U);
    EXPECT_EQ(image.areas[1].extent.size, 56U); // 16 more, 5 unused, 11 lacked
    EXPECT_EQ(image.areas[1].unused, 5U);
    EXPECT_EQ(image.areas[2].extent.offset, 88U);
    EXPECT_EQ(result.bytes.substr(88, 16), text(PRODUCT));
    EXPECT_EQ(result.bytes.substr(104, 8), text(RECORDS));
    EXPECT_EQ(image.records.size(), 1U);
    EXPECT_EQ(result.bytes.substr(8, 24), text(CHASSIS));
}

TEST(FruEdit, GrowingUsesGapsFirst)
{
    const Bytes image = withChecksum({1, 0, 1, 7, 0, 0, 0}) + CHASSIS + Bytes(24, 0xFF) + BOARD;
    const FruEditResult result = edit(image, {{"chassis.serial", "CSN-4711-0815-1"}}, true);
    const FruImage after = parseFruImage(result.bytes);
    EXPECT_EQ(after.areas[0].extent.size, 32U);
    EXPECT_EQ(after.areas[1].extent.offset, 56U);
    EXPECT_EQ(result.bytes.substr(56), text(BOARD));
    EXPECT_EQ(result.bytes.substr(40, 16), std::string(16, '\xFF'));
}

TEST(FruEdit, SeveralAreasGrowAtOnce)
{
    const Bytes image = IMAGE + Bytes(32, 0);
    const FruEditResult result = edit(image,
                                      {{"chassis.serial", "CSN-4711-0815-1"},
                                       {"board.serial", "SN-01-and-more"},
                                       {"product.name", "NAME-1"}},
                                      true);
    const FruImage after = parseFruImage(result.bytes);
    EXPECT_EQ(after.allProblems(), Lines());
    EXPECT_EQ(after.areas[0].extent.size, 32U);
    EXPECT_EQ(after.areas[1].extent.offset, 40U);
    EXPECT_EQ(after.areas[1].extent.size, 48U);
    EXPECT_EQ(after.areas[2].extent.offset, 88U);
    EXPECT_EQ(after.areas[2].extent.size, 24U);
    EXPECT_EQ(after.records[0].extent.offset, 112U);
    EXPECT_EQ(valueOf(result.bytes, "product.name"), "NAME-1");
}

TEST(FruEdit, InternalUseAreaInBetweenMovesToo)
{
    const Bytes internal = Bytes({1}) + sequence(15, 0x20);
    const Bytes image =
        withChecksum({1, 4, 1, 6, 0, 0, 0}) + CHASSIS + internal + BOARD + Bytes(16, 0);
    const FruEditResult result = edit(image, {{"chassis.serial", "CSN-4711-0815-1"}}, true);
    const FruImage after = parseFruImage(result.bytes);
    EXPECT_EQ(after.allProblems(), Lines());
    EXPECT_EQ(after.internalUse[0].extent.offset, 40U);
    EXPECT_EQ(after.internalUse[0].bytes, text(internal));
    EXPECT_EQ(after.areas[1].extent.offset, 56U);
}

TEST(FruEdit, GrowingIsRefusedWhereThereIsNoRoom)
{
    const std::vector<FruEdit> large = {{"board.serial", std::string(60, 'x')}};
    EXPECT_EQ(refusal(IMAGE, large, true), "1: the areas would take 152 bytes, the image has 112");
    // Bytes outside all areas that are not blank are not overwritten.
    Bytes occupied = IMAGE;
    occupied[111] = 1;
    EXPECT_EQ(
        refusal(occupied, {{"board.serial", "SN-01-and-more"}}, true),
        "1: bytes 96 to 111 would be written over; they belong to no area, but are not blank");
    // An internal use area at the end may reach to the end of the device.
    const Bytes last = withChecksum({1, 4, 1, 0, 0, 0, 0}) + CHASSIS + Bytes(64, 0);
    EXPECT_EQ(refusal(last, {{"chassis.serial", "CSN-4711-0815-1"}}, true),
              "1: the areas would take 104 bytes, the image has 96");
    const Bytes full =
        withChecksum({1, 0, 1, 0, 0, 0, 0}) +
        areaOf(248, Bytes({0x17, 0xC2, 'A', 'B', 0xC2, 'C', 'D'}) + Bytes({0xFF}) + Bytes(63, 'x') +
                        Bytes({0xFF}) + Bytes(63, 'x') + Bytes({0xFF}) + Bytes(63, 'x') +
                        Bytes({0xEA}) + Bytes(42, 'x') + Bytes({0xC1})) +
        Bytes(64, 0);
    EXPECT_EQ(refusal(full, {{"chassis.serial", "CSN-4711"}}, true),
              "1: chassis area: 6 more bytes needed, 2 free, and an area has at most 248 bytes");
    Bytes damaged = IMAGE;
    damaged[93] ^= 1; // a byte of the multirecord's data
    EXPECT_EQ(refusal(damaged, {{"board.serial", "SN-01-and-more"}}, true).substr(0, 44),
              "1: the areas cannot be moved: multirecord 1:");
    EXPECT_EQ(refusal(damaged, {{"board.serial", "SN-4711"}}), "none");
}

TEST(FruEdit, TextIsEncodedForTheAreasLanguage)
{
    Bytes fields = {58, 0, 0, 0, 0xC4, 'M', 0, 'N', 0, 0xC0, 0xC0, 0xC0, 0xC0, 0xC1};
    const Bytes image = withChecksum({1, 0, 0, 1, 0, 0, 0}) + areaOf(40, fields);
    const FruEditResult result = edit(image, {{"board.serial", "S\xC3\xA9"}});
    EXPECT_EQ(valueOf(result.bytes, "board.serial"), "S\xC3\xA9");
    EXPECT_EQ(parseFruImage(result.bytes).findField("board.serial")->bytes,
              std::string("S\0\xE9\0", 4));
    EXPECT_EQ(refusal(image, {{"board.serial", std::string(32, 'x')}}),
              "1: board.serial: 64 bytes needed, a field has at most 63");
    EXPECT_EQ(refusal(image, {{"board.serial", "X"}}), "none");
}

TEST(FruEdit, EditsAreReadFromTheCommandLine)
{
    EXPECT_EQ(parseFruEdit("board.serial=a=b").field, "board.serial");
    EXPECT_EQ(parseFruEdit("board.serial=a=b").value, "a=b");
    EXPECT_EQ(parseFruEdit("board.serial=").value, "");
    for (const char* const text : {"board.serial", "=x", ""}) {
        EXPECT_THROW(parseFruEdit(text), RequestError) << text;
    }
}

TEST(FruEdit, EverySampleKeepsWhatIsNotEdited)
{
    const TraceCapture trace;
    unsigned int edited = 0;
    for (const std::string& path : sampleImages()) {
        const Bytes bytes = readFile(path);
        const FruImage before = parseFruImage(text(bytes));
        for (const FruAreaImage& area : before.areas) {
            for (const FruField& field : area.fields) {
                const std::string name = area.extent.name + "." + field.name;
                for (const bool mayGrow : {false, true}) {
                    std::string after;
                    try {
                        after =
                            edit(bytes, {{name, field.isCoded ? "RECORDKIT-4711" : "2"}}, mayGrow)
                                .bytes;
                    } catch (const Error&) {
                        continue; // no room, or damaged
                    }
                    ++edited;
                    ASSERT_EQ(after.size(), bytes.size());
                    const FruImage image = parseFruImage(after);
                    EXPECT_EQ(image.allProblems(), before.allProblems()) << path << " " << name;
                    for (const FruAreaImage& other : before.areas) {
                        for (const FruField& each : other.fields) {
                            const std::string otherName = other.extent.name + "." + each.name;
                            if (otherName != name) {
                                EXPECT_EQ(image.findField(otherName)->bytes, each.bytes)
                                    << path << " " << name << " changed " << otherName;
                            }
                        }
                    }
                    if (!mayGrow) {
                        const auto [first, last] = difference(bytes, after);
                        EXPECT_GE(first, area.extent.offset) << path << " " << name;
                        EXPECT_LE(last, area.extent.end()) << path << " " << name;
                    }
                }
            }
        }
    }
    EXPECT_GE(edited, 20U);
}
