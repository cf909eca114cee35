// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <recordkit/fru/FRUData.h>
#include <recordkit/inspect/bytes/Text.h>
#include <recordkit/inspect/fru/FruImage.h>
#include <recordkit/inspect/fru/FruNames.h>
#include <recordkit/inspect/fru/MfgDate.h>
#include <recordkit/inspect/words/ChassisTypes.h>

#include "fru/MemoryDevice.h"
#include "support/SampleImages.h"
#include "support/ScratchRoot.h"

using namespace recordkit::inspect;
using namespace testing_support;

namespace {

/// English; 2015-01-06 22:01; a field in each coding, an empty one, a custom one.
const Bytes BOARD_FIELDS = Bytes({0x19, 0xC9, 0x9E, 0x98}) + Bytes({0x83, 0x64, 0xC9, 0xB2}) +
                           Bytes({0x42, 0x12, 0xAB}) + Bytes({0xC3, 'S', 0xE9, '1'}) +
                           Bytes({0x02, 0xCA, 0xFE}) + Bytes({0xC0}) + Bytes({0xC2, 'X', 'Y'}) +
                           Bytes({0xC1});
const Bytes BOARD = areaOf(40, BOARD_FIELDS);

/// Offsets of internal, chassis, board, product and multirecord area, in units of 8 bytes.
Bytes header(const Bytes& offsets)
{
    return withChecksum(Bytes({1}) + offsets + Bytes({0}));
}

const Bytes BOARD_IMAGE = header({0, 0, 1, 0, 0}) + BOARD;

FruImage parse(const Bytes& bytes, InternalLayout layout = InternalLayout::STANDARD)
{
    return parseFruImage(text(bytes), layout);
}

Lines fieldsOf(const FruImage& image)
{
    Lines lines;
    for (const FruAreaImage& area : image.areas) {
        for (const FruField& field : area.fields) {
            lines.push_back(area.extent.name + "." + field.name + "@" +
                            std::to_string(field.offset) + " " + field.typeName() + " " +
                            field.value);
        }
    }
    return lines;
}

Lines mapOf(const Bytes& bytes)
{
    Lines lines;
    for (const FruExtent& extent : parse(bytes).map(text(bytes))) {
        lines.push_back(extent.name + " " + std::to_string(extent.offset) + "+" +
                        std::to_string(extent.size));
    }
    return lines;
}

Lines problemsOf(const Bytes& bytes)
{
    return parse(bytes).allProblems();
}

/// A multirecord with right checksums; `format` 82h is the last one.
Bytes record(unsigned char type, unsigned char format, const Bytes& data)
{
    const auto sum = static_cast<unsigned char>(0U - std::accumulate(data.begin(), data.end(), 0U));
    return withChecksum({type, format, static_cast<unsigned char>(data.size()), sum}) + data;
}

}

TEST(FruImage, HasEveryFieldWithItsPlaceAndValue)
{
    const FruImage image = parse(BOARD_IMAGE);
    EXPECT_EQ(fieldsOf(image),
              Lines({"board.language@10 number 25", "board.date@11 date 2015-01-06 22:01",
                     "board.manufacturer@14 6-bit DELL", "board.name@18 BCD plus 12 -",
                     "board.serial@21 text S\xC3\xA9"
                     "1",
                     "board.part-number@25 binary CAFE", "board.file-id@28 text ",
                     "board.custom1@29 text XY"}));
    EXPECT_EQ(image.areas[0].unused, 14U);
    EXPECT_TRUE(image.areas[0].isWhole);
    EXPECT_TRUE(image.areas[0].checksum.isRight());
    EXPECT_EQ(image.allProblems(), Lines());
    ASSERT_NE(image.findField("board.custom1"), nullptr);
    EXPECT_EQ(image.findField("board.custom1")->bytes, "XY");
    EXPECT_EQ(image.findField("board.custom2"), nullptr);
    EXPECT_EQ(image.findField("chassis.type"), nullptr);
}

TEST(FruImage, ProductAreasCountTheirExtraFieldsAsCustom)
{
    Bytes fields = {0x19};
    for (unsigned char i = 0; i < 11; ++i) {
        fields = fields + Bytes({0xC2, 'A', static_cast<unsigned char>('A' + i)});
    }
    const FruImage image = parse(header({0, 0, 0, 1, 0}) + areaOf(48, fields + Bytes({0xC1})));
    Lines names;
    for (const FruField& field : image.areas[0].fields) {
        names.push_back(field.name + "=" + field.value);
    }
    EXPECT_EQ(names, Lines({"language=25", "manufacturer=AA", "name=AB", "part-number=AC",
                            "version=AD", "serial=AE", "asset-tag=AF", "file-id=AG", "custom1=AH",
                            "custom2=AI", "custom3=AJ", "custom4=AK"}));
    EXPECT_EQ(fruFieldNames(FRU_AREA_PRODUCT),
              Lines({"language", "manufacturer", "name", "part-number", "version", "serial",
                     "asset-tag", "file-id"}));
}

TEST(FruImage, TextOfOtherLanguagesHas16BitCharacters)
{
    const auto manufacturer = [](unsigned char language, const Bytes& coded) {
        const Bytes fields =
            Bytes({language, 0, 0, 0}) + coded + Bytes({0xC0, 0xC0, 0xC0, 0xC0, 0xC1});
        return parse(header({0, 0, 1, 0, 0}) + areaOf(32, fields))
            .findField("board.manufacturer")
            ->value;
    };
    // U+65E5, low byte first; English has two characters there.
    EXPECT_EQ(manufacturer(58, {0xC2, 0xE5, 0x65}), "\xE6\x97\xA5");
    EXPECT_EQ(manufacturer(25, {0xC2, 0xE5, 0x65}), "\xC3\xA5"
                                                    "e");
    EXPECT_EQ(manufacturer(0, {0xC2, 0xE5, 0x65}), "\xC3\xA5"
                                                   "e");
    // A surrogate pair, and half a one.
    EXPECT_EQ(manufacturer(58, {0xC4, 0x3D, 0xD8, 0x00, 0xDE}), "\xF0\x9F\x98\x80");
    EXPECT_EQ(manufacturer(58, {0xC4, 0x3D, 0xD8, 'a', 0}), "\xEF\xBF\xBD"
                                                            "a");
    // An odd number of bytes is not 16-bit text.
    EXPECT_EQ(manufacturer(58, {0xC3, 'a', 'b', 'c'}), "abc");
}

TEST(FruImage, MapHasEveryByteOnce)
{
    const Bytes image = BOARD_IMAGE + Bytes(8, 0) + Bytes(4, 0xFF) + Bytes({1, 2});
    EXPECT_EQ(mapOf(image), Lines({"header 0+8", "board 8+40", "other bytes 48+14"}));
    EXPECT_EQ(mapOf(BOARD_IMAGE + Bytes(16, 0xFF) + Bytes(16, 0)),
              Lines({"header 0+8", "board 8+40", "free 48+32"}));
    EXPECT_EQ(mapOf(header({0, 0, 2, 0, 0}) + Bytes(8, 0) + BOARD),
              Lines({"header 0+8", "free 8+8", "board 16+40"}));
    EXPECT_EQ(mapOf(header({0, 0, 2, 0, 0}) + Bytes(8, 7) + BOARD),
              Lines({"header 0+8", "other bytes 8+8", "board 16+40"}));
}

TEST(FruImage, InternalUseAreaReachesToTheNextArea)
{
    const Bytes bytes = header({1, 0, 3, 0, 0}) + Bytes({1, 9, 8, 7}) + Bytes(12, 5) + BOARD;
    const FruImage image = parse(bytes);
    ASSERT_EQ(image.internalUse.size(), 1U);
    EXPECT_EQ(image.internalUse[0].extent.offset, 8U);
    EXPECT_EQ(image.internalUse[0].bytes, text(part(bytes, 8, 16)));
    // The last one reaches to the end.
    EXPECT_EQ(mapOf(header({6, 0, 1, 0, 0}) + BOARD + Bytes(20, 1)),
              Lines({"header 0+8", "board 8+40", "internal 48+20"}));
}

TEST(FruImage, InternalUseAreaCanBeReadByTheSystemsLayouts)
{
    const Bytes a = areaOf(120, Bytes({0x0A}) + textBytes("SERIAL-NUMBER") + Bytes({1, 2, 3, 4}) +
                                    sequence(72) + sequence(19));
    const FruImage image = parse(header({1, 0, 0, 0, 0}) + a, InternalLayout::A);
    EXPECT_EQ(image.allProblems(), Lines());
    ASSERT_NE(image.findField("internal.serial"), nullptr);
    EXPECT_EQ(image.findField("internal.serial")->bytes, "SERIAL-NUMBER");
    EXPECT_EQ(image.findField("internal.a4")->value, "0304");
    EXPECT_EQ(image.areas[0].unused, 8U);
    const Bytes b = areaOf(224, sequence(7) + sequence(24) + sequence(190));
    const FruImage other = parse(header({1, 0, 0, 0, 0}) + b, InternalLayout::B);
    EXPECT_EQ(other.findField("internal.b7")->value, "6");
    EXPECT_EQ(other.findField("internal.b11")->value, "121314151617");
}

TEST(FruImage, RecordsAreWalkedToTheLastOne)
{
    const Bytes bytes = header({0, 0, 0, 0, 1}) + record(0x06, 0x02, {1, 2, 3}) +
                        record(0xBF, 0x82, {}) + record(0x02, 0x02, {4});
    const FruImage image = parse(bytes);
    ASSERT_EQ(image.records.size(), 2U);
    EXPECT_EQ(image.records[0].type, 0x06);
    EXPECT_EQ(image.records[0].extent.size, 8U);
    EXPECT_EQ(image.records[1].extent.offset, 16U);
    EXPECT_TRUE(image.records[1].isLast);
    EXPECT_EQ(image.allProblems(), Lines());
    EXPECT_EQ(mapOf(bytes), Lines({"header 0+8", "multirecord 8+13", "other bytes 21+6"}));
}

TEST(FruImage, DamagedRecordsAreProblems)
{
    const Bytes head = header({0, 0, 0, 0, 1});
    Bytes wrongData = record(6, 2, {1, 2}) + record(7, 0x82, {});
    wrongData[5] = 9;
    EXPECT_EQ(problemsOf(head + wrongData),
              Lines({"multirecord 1: data checksum FDh at offset 11, expected F5h"}));
    EXPECT_EQ(parse(head + wrongData).records.size(), 2U);
    Bytes wrongHeader = record(6, 0x82, {1, 2});
    wrongHeader[4] = 0x11;
    EXPECT_EQ(problemsOf(head + wrongHeader),
              Lines({"multirecord 1: header checksum 11h at offset 12, expected 79h"}));
    EXPECT_EQ(problemsOf(head + Bytes(64, 0)),
              Lines({"multirecord 1: format 0 at offset 9, expected 2"}));
    EXPECT_EQ(problemsOf(head + record(6, 2, {1, 2})),
              Lines({"multirecord 2: no room for its header at offset 15 in 15 bytes"}));
    EXPECT_EQ(problemsOf(head + part(record(6, 0x82, {1, 2}), 0, 6)),
              Lines({"multirecord 1: 7 bytes at offset 8 run past the image of 14 bytes"}));
}

TEST(FruImage, DamagedHeadersAreProblems)
{
    EXPECT_EQ(problemsOf({}),
              Lines({"no FRU image: 0 bytes, expected a common header of 8 at offset 0"}));
    EXPECT_EQ(problemsOf(Bytes(7, 1)),
              Lines({"no FRU image: 7 bytes, expected a common header of 8 at offset 0"}));
    EXPECT_EQ(problemsOf(Bytes(256, 0xFF)),
              Lines({"no FRU image: format version FFh at offset 0, expected 01h"}));
    EXPECT_EQ(problemsOf(Bytes(256, 0)),
              Lines({"no FRU image: format version 00h at offset 0, expected 01h"}));
    EXPECT_FALSE(parse(Bytes(256, 0)).isFru);
    // The areas are returned anyway.
    Bytes wrong = BOARD_IMAGE;
    wrong[7] = 0x42;
    EXPECT_EQ(problemsOf(wrong), Lines({"common header: checksum 42h at offset 7, expected FEh"}));
    EXPECT_EQ(fieldsOf(parse(wrong)), fieldsOf(parse(BOARD_IMAGE)));
    Bytes pad = withChecksum({1, 0, 0, 0, 0, 0, 0x55});
    EXPECT_EQ(problemsOf(pad), Lines({"common header: pad byte 55h at offset 6, expected 00h"}));
}

TEST(FruImage, DamagedAreasAreProblemsAndTheRestIsShown)
{
    const Bytes head = header({0, 6, 1, 0, 0});
    const Bytes chassis = areaOf(8, {0x17, 0xC0, 0xC0, 0xC1});
    const auto board = [&](const Bytes& area) { return head + area + chassis; };
    const auto patched = [](std::size_t at, unsigned char byte) {
        Bytes area = BOARD;
        area[at] = byte;
        return area;
    };
    EXPECT_EQ(problemsOf(board(BOARD)), Lines());
    EXPECT_EQ(problemsOf(board(patched(39, 0x12)))[0].substr(0, 38),
              "board area: checksum 12h at offset 47,");
    EXPECT_EQ(parse(board(patched(39, 0x12))).areas[1].fields.size(), 8U);
    EXPECT_EQ(problemsOf(board(patched(0, 0x02)))[0],
              "board area: format version 02h at offset 8, expected 01h");
    EXPECT_EQ(problemsOf(board(patched(1, 0)))[0], "board area: length byte at offset 9 is 0");
    EXPECT_EQ(problemsOf(board(patched(1, 7)))[0],
              "board area: 56 bytes at offset 8 run past the image of 56 bytes");
    EXPECT_EQ(problemsOf(board(patched(21, 0xFF)))[0],
              "board area: 63 bytes of the field at offset 29 run past the area's end at 47");
    EXPECT_EQ(parse(board(patched(21, 0xFF))).areas[1].fields.size(), 7U);
    EXPECT_EQ(problemsOf(head + areaOf(40, Bytes(37, 0xC0)) + chassis)[0],
              "board area: no end marker C1h before its end at 47");
    EXPECT_EQ(problemsOf(header({0, 0, 9, 0, 0}) + BOARD)[0],
              "board area: starts at offset 72, past the end of the 48-byte image");
    for (const Bytes& bytes : {board(patched(39, 0x12)), board(patched(1, 0))}) {
        EXPECT_EQ(parse(bytes).findField("chassis.type")->value, "Rack Mount Chassis");
    }
}

TEST(FruImage, EndMarkerInTheLastByteIsNone)
{
    // Every byte up to the checksum is a field; the checksum happens to be C1h.
    Bytes area = Bytes({1, 2, 0x17, 0xC0, 0xC0}) + Bytes({0xC9}) + Bytes(9, 0);
    area[6] = static_cast<unsigned char>(0x3F - std::accumulate(area.begin(), area.end(), 0U));
    area.push_back(0xC1);
    const Bytes image = header({0, 1, 0, 0, 0}) + area;
    EXPECT_EQ(problemsOf(image), Lines({"chassis area: no end marker C1h before its end at 23"}));
    EXPECT_FALSE(parse(image).areas[0].isWhole);
}

TEST(FruImage, OverlapsAreProblems)
{
    const Bytes board = part(BOARD, 0, 32) + areaOf(8, {0x17, 0xC0, 0xC0, 0xC1});
    const Lines problems = problemsOf(header({0, 5, 1, 0, 0}) + board);
    EXPECT_EQ(problems.back(), "board (8 to 47) and chassis (40 to 47) overlap");
    EXPECT_EQ(problemsOf(header({0, 1, 1, 0, 0}) + areaOf(8, {0x17, 0xC0, 0xC0, 0xC1})).back(),
              "chassis (8 to 15) and board (8 to 15) overlap");
    // An area of unknown size may begin in another one.
    EXPECT_EQ(problemsOf(header({0, 5, 1, 0, 0}) + BOARD).back(),
              "board (8 to 47) contains the offset 40 of chassis");
    // Adjacent areas do not overlap.
    EXPECT_EQ(problemsOf(header({0, 6, 1, 0, 0}) + BOARD + areaOf(8, {0x17, 0xC0, 0xC0, 0xC1})),
              Lines());
}

TEST(FruImage, AreasOfMoreThan248BytesAreReadWhole)
{
    Bytes fields = {0x19, 0, 0, 0};
    for (int i = 0; i < 10; ++i) {
        fields = fields + Bytes({0xFF}) + sequence(63, 'A');
    }
    const FruImage image = parse(header({0, 0, 1, 0, 0}) + areaOf(1024, fields + Bytes({0xC1})));
    EXPECT_EQ(image.allProblems(), Lines());
    EXPECT_EQ(image.areas[0].fields.size(), 12U);
    EXPECT_EQ(image.findField("board.custom5")->bytes, text(sequence(63, 'A')));
}

TEST(FruImage, FieldsOfTheSamplesAreThoseOfTheLibrary)
{
    const TraceCapture trace;
    unsigned int compared = 0;
    for (const std::string& path : sampleImages()) {
        const Bytes bytes = readFile(path);
        const FruImage image = parse(bytes);
        for (const FruAreaImage& area : image.areas) {
            if (!area.isWhole || !area.problems.empty() || area.extent.size > 248 ||
                !image.header.isRight()) {
                continue;
            }
            MemoryDevice device(bytes);
            FRUData fru(device);
            Lines theirs;
            for (const FRUMember* const member :
                 fru.getAreaObject(area.id, FRUArea::CSUM_CHECK)->getMembers()) {
                if (!fruItemName(member->getItem()).empty()) {
                    theirs.push_back(std::to_string(member->getItem()) + " " +
                                     std::to_string(member->getTypeLength()) + member->getData());
                }
            }
            Lines ours;
            for (const FruField& field : area.fields) {
                ours.push_back(std::to_string(field.item) + " " + std::to_string(field.typeLength) +
                               field.bytes);
            }
            EXPECT_EQ(ours, theirs) << path << " " << area.extent.name;
            ++compared;
        }
    }
    EXPECT_GE(compared, 10U);
}

TEST(MfgDate, CountsMinutesSince1996)
{
    EXPECT_EQ(MfgDate(0x989EC9U).toText(), "2015-01-06 22:01");
    EXPECT_EQ(MfgDate(std::string("\xC9\x9E\x98")).raw(), 0x989EC9U);
    EXPECT_EQ(MfgDate(0x989EC9U).bytes(), "\xC9\x9E\x98");
    EXPECT_EQ(MfgDate(0x989EC9U).toIso(), "2015-01-06T22:01:00Z");
    EXPECT_EQ(MfgDate(0U).toText(), "unspecified");
    EXPECT_EQ(MfgDate(0U).toIso(), "");
}

TEST(MfgDate, RollsOverIn2027)
{
    EXPECT_EQ(MfgDate(0xFFFFFFU).toText(), "2027-11-24 20:15");
    EXPECT_EQ(MfgDate(1U).toText(), "2027-11-24 20:17");
    // 2006 is where the first run of the count begins.
    EXPECT_EQ(MfgDate(5260320U).toText(), "2006-01-01 00:00");
    EXPECT_EQ(MfgDate(5260319U).toText(), "2037-11-24 20:15");
}

TEST(MfgDate, IsReadFromText)
{
    EXPECT_EQ(parseMfgDate("2015-01-06 22:01").value().raw(), 0x989EC9U);
    EXPECT_EQ(parseMfgDate("2006-01-01").value().raw(), 5260320U);
    EXPECT_EQ(parseMfgDate("2027-11-24 20:17").value().raw(), 1U);
    EXPECT_EQ(parseMfgDate("2037-11-24 20:15").value().raw(), 5260319U);
    EXPECT_EQ(parseMfgDate("unspecified").value().raw(), 0U);
    for (const char* const text : {"2005-12-31 23:59", "2037-11-24 20:16", "2027-11-24 20:16",
                                   "2015-01-06 22:01:30", "soon"}) {
        EXPECT_FALSE(parseMfgDate(text)) << text;
    }
}

TEST(MfgDate, ADateInTheFutureHasAnotherReading)
{
    constexpr unsigned int NOW = 1763800000; // 2025-11-22
    EXPECT_EQ(MfgDate(5260319U).otherReading(NOW).value().toText(), "2005-12-31 23:59");
    EXPECT_EQ(MfgDate(5260319U).otherReading(NOW).value().toIso(), "2005-12-31T23:59:00Z");
    EXPECT_EQ(MfgDate(1U).otherReading(NOW).value().toText(), "1996-01-01 00:01");
    EXPECT_FALSE(MfgDate(5260320U).otherReading(NOW));  // 2006-01-01
    EXPECT_FALSE(MfgDate(0xFFFFFFU).otherReading(NOW)); // 2027, which has no other reading
    EXPECT_FALSE(MfgDate(0U).otherReading(NOW));
    EXPECT_FALSE(MfgDate(1U).otherReading(1827087420));
    EXPECT_TRUE(MfgDate(1U).otherReading(1827087419));
}

TEST(FruValue, TextEndsAtTheFirstZeroByte)
{
    const Bytes padded = {'A', 'B', 0, 'C', 0};
    EXPECT_EQ(fruValue(FRU_ITEM_SERIAL_NUMBER, true, 0xC5, 25, padded), "AB");
    EXPECT_EQ(fruValue(FRU_ITEM_SERIAL_NUMBER, true, 0xC1, 25, Bytes({0})), "");
    EXPECT_EQ(fruValue(FRU_ITEM_SERIAL_NUMBER, true, 0x02, 25, Bytes({0, 1})), "0001");
    EXPECT_EQ(fruValue(FRU_ITEM_SERIAL_NUMBER, true, 0xC6, 1, Bytes({'A', 0, 0, 0, 'B', 0})), "A");
}
