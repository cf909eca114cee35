// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/fru/FruParts.h>

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
/// Two loads, of outputs 1 and 2.
const Bytes LOAD1 = withChecksum({2, 0x02, 13, 0xFF}) + Bytes({1}) + Bytes(12, 0);
const Bytes LOAD2 = withChecksum({2, 0x82, 13, 0xFE}) + Bytes({2}) + Bytes(12, 0);

/// Header, chassis (8 to 23), board (24 to 55), records (56 to 91), blank up to 127.
const Bytes IMAGE =
    withChecksum({1, 0, 1, 3, 0, 7, 0}) + CHASSIS + BOARD + LOAD1 + LOAD2 + Bytes(36, 0xFF);

Bytes bytesOf(const std::string& image)
{
    return {image.begin(), image.end()};
}

FruEditResult add(const Bytes& image, const std::vector<FruEdit>& parts,
                  const FruEditOptions& options = {})
{
    return addToFruImage(text(image), parts, options);
}

FruEditResult remove(const Bytes& image, const std::vector<std::string>& parts)
{
    return removeFromFruImage(text(image), parts, {});
}

template <typename Work> std::string refusalOf(const Work& work)
{
    try {
        work();
        return "none";
    } catch (const RequestError& e) {
        return std::string("2: ") + e.what();
    } catch (const DataError& e) {
        return std::string("1: ") + e.what();
    }
}

std::string addRefusal(const Bytes& image, const std::vector<FruEdit>& parts)
{
    return refusalOf([&] { add(image, parts); });
}

std::string removeRefusal(const Bytes& image, const std::vector<std::string>& parts)
{
    return refusalOf([&] { remove(image, parts); });
}

std::string valueOf(const std::string& image, const std::string& field)
{
    const FruImage fru = parseFruImage(image);
    return fru.findField(field) == nullptr ? "absent" : fru.findField(field)->value;
}

}

TEST(FruParts, ImageIsAsTheTestsNeedIt)
{
    const FruImage image = parseFruImage(text(IMAGE));
    EXPECT_EQ(image.allProblems(), Lines());
    EXPECT_EQ(image.areas[0].unused, 2U);
    EXPECT_EQ(image.areas[1].unused, 8U);
    EXPECT_EQ(image.records.size(), 2U);
}

TEST(FruParts, CustomFieldIsAddedAfterTheLastOne)
{
    const FruEditResult result = add(IMAGE, {{"board.custom", "new"}});
    EXPECT_EQ(
        bytesOf(result.bytes),
        part(IMAGE, 0, 24) +
            areaOf(32, Bytes({0x19, 1, 2, 0x98, 0xC2, 'M', 'A', 0xC2, 'B', 'N', 0xC0, 0xC0}) +
                           Bytes({0xC0, 0xC2, 'b', '1', 0xC3, 'b', '2', 'x', 0xC3, 'n', 'e'}) +
                           Bytes({'w', 0xC1})) +
            part(IMAGE, 56, 72));
    EXPECT_EQ(result.notes, Lines({"board area: 4 bytes free"}));
    ASSERT_EQ(result.changes.size(), 1U);
    EXPECT_EQ(result.changes[0].field, "board.custom");
    EXPECT_FALSE(result.changes[0].before);
    EXPECT_EQ(result.changes[0].after, "new");
    EXPECT_EQ(add(IMAGE, {{"board.custom3", "new"}}).bytes, result.bytes);
    EXPECT_EQ(addRefusal(IMAGE, {{"board.custom4", "new"}}),
              "1: board.custom4: the next custom field is custom3");
    EXPECT_EQ(addRefusal(IMAGE, {{"board.custom2", "new"}}),
              "1: board.custom2: the area already has this field (fru set changes it)");
    const FruEditResult two = add(IMAGE, {{"board.custom", ""}, {"board.custom", "ab"}});
    EXPECT_EQ(valueOf(two.bytes, "board.custom4"), "ab");
}

TEST(FruParts, FieldIsAddedInItsCodingAndTheAreaGrows)
{
    FruEditOptions options;
    options.coding = CODING_SIX_BIT;
    const FruEditResult result = add(IMAGE, {{"chassis.custom2", "IPMI"}}, options);
    const FruImage image = parseFruImage(result.bytes);
    EXPECT_EQ(image.allProblems(), Lines());
    EXPECT_EQ(part(bytesOf(result.bytes), 0, 32),
              withChecksum({1, 0, 1, 4, 0, 8, 0}) +
                  areaOf(24, Bytes({0x17, 0xC2, 'P', 'N', 0xC2, 'S', 'N', 0xC2, 'c', '1', 0x83}) +
                                 Bytes({0x29, 0xDC, 0xA6, 0xC1})));
    EXPECT_EQ(part(bytesOf(result.bytes), 32, 32), BOARD);
    EXPECT_EQ(part(bytesOf(result.bytes), 64, 36), LOAD1 + LOAD2);
    EXPECT_EQ(part(bytesOf(result.bytes), 100, 28), Bytes(28, 0xFF));
    EXPECT_EQ(result.notes,
              Lines({"chassis area: 8 bytes larger, 24 in all", "chassis area: 6 bytes free"}));
}

TEST(FruParts, FieldThatAnAreaEndsBeforeIsAddedWithThoseInBetween)
{
    const Bytes board = areaOf(16, {0x19, 0, 0, 0, 0xC2, 'M', 'A', 0xC1});
    const Bytes image = withChecksum({1, 0, 0, 1, 0, 0, 0}) + board;
    EXPECT_EQ(bytesOf(add(image, {{"board.part-number", "PN"}}).bytes),
              withChecksum({1, 0, 0, 1, 0, 0, 0}) +
                  areaOf(16, {0x19, 0, 0, 0, 0xC2, 'M', 'A', 0xC0, 0xC0, 0xC2, 'P', 'N', 0xC1}));
    EXPECT_EQ(addRefusal(image, {{"board.manufacturer", "PN"}}),
              "1: board.manufacturer: the area already has this field (fru set changes it)");
    EXPECT_EQ(addRefusal(image, {{"board.date", "now"}}),
              "1: board.date: the area already has this field (fru set changes it)");
    // A custom field of an area without all of its others comes after these.
    const FruEditResult custom = add(image + Bytes(16, 0), {{"board.custom", "cc"}});
    EXPECT_EQ(valueOf(custom.bytes, "board.custom1"), "cc");
    EXPECT_EQ(valueOf(custom.bytes, "board.file-id"), "");
}

TEST(FruParts, AreasAreAddedInTheFirstGap)
{
    const FruEditResult result = add(IMAGE, {{"product", ""}});
    EXPECT_EQ(part(bytesOf(result.bytes), 0, 8), withChecksum({1, 0, 1, 3, 12, 7, 0}));
    EXPECT_EQ(part(bytesOf(result.bytes), 96, 16),
              areaOf(16, {0x19, 0xC0, 0xC0, 0xC0, 0xC0, 0xC0, 0xC0, 0xC0, 0xC1}));
    EXPECT_EQ(part(bytesOf(result.bytes), 8, 88), part(IMAGE, 8, 88));
    EXPECT_EQ(part(bytesOf(result.bytes), 112, 16), Bytes(16, 0xFF));
    const Bytes gap = withChecksum({1, 0, 0, 4, 0, 0, 0}) + Bytes(24, 0xFF) + BOARD;
    const FruEditResult chassis = add(gap, {{"chassis", ""}});
    EXPECT_EQ(part(bytesOf(chassis.bytes), 0, 16),
              withChecksum({1, 0, 1, 4, 0, 0, 0}) + areaOf(8, {0x02, 0xC0, 0xC0, 0xC1}));
    const Bytes empty = withChecksum({1, 0, 0, 0, 0, 0, 0}) + Bytes(16, 0);
    EXPECT_EQ(bytesOf(add(empty, {{"board", ""}}).bytes),
              withChecksum({1, 0, 0, 1, 0, 0, 0}) +
                  areaOf(16, {0x19, 0, 0, 0, 0xC0, 0xC0, 0xC0, 0xC0, 0xC0, 0xC1}));
    EXPECT_EQ(addRefusal(withChecksum({1, 0, 0, 0, 0, 0, 0}) + Bytes(15, 0), {{"board", ""}}),
              "1: the areas would take 24 bytes, the image has 23");
    EXPECT_EQ(addRefusal(IMAGE, {{"board", ""}}), "1: the image already has a board area");
    EXPECT_EQ(addRefusal(IMAGE, {{"product", ""}, {"product", ""}}),
              "1: the image already has a product area");
    EXPECT_EQ(addRefusal(IMAGE, {{"product", "x"}}), "2: product: expected no value");
    // And filled in at once.
    EXPECT_EQ(
        valueOf(add(IMAGE, {{"product", ""}, {"product.custom", "p1"}}).bytes, "product.custom1"),
        "p1");
}

TEST(FruParts, NewAreaHasAtMostTheBytesThatTheLibraryReads)
{
    // 3 + 7 + 1 + 1 bytes, and four texts.
    std::vector<FruEdit> parts = {{"product", ""}};
    for (int i = 0; i < 3; ++i) {
        parts.push_back({"product.custom", std::string(63, 'x')});
    }
    parts.push_back({"product.custom", std::string(43, 'x')});
    const FruEditResult result = add(IMAGE + Bytes(300, 0), parts);
    EXPECT_EQ(parseFruImage(result.bytes).areas[2].extent.size, 248U);
    EXPECT_EQ(parseFruImage(result.bytes).areas[2].unused, 0U);
    parts.back().value += 'x';
    EXPECT_EQ(addRefusal(IMAGE + Bytes(300, 0), parts),
              "1: product area: 256 bytes needed, and an area has at most 248 bytes");
}

TEST(FruParts, RecordsAreAddedAtTheEndOfTheList)
{
    const FruEditResult result =
        add(IMAGE, {{"record:C1h", "5A310007"}, {"dc-load", ""}, {"dc-load.output", "3"}});
    EXPECT_EQ(part(bytesOf(result.bytes), 56, 63),
              LOAD1 + withChecksum({2, 0x02, 13, 0xFE}) + Bytes({2}) + Bytes(12, 0) +
                  withChecksum({0xC1, 0x02, 4, 0x6E}) + Bytes({0x5A, 0x31, 0x00, 0x07}) +
                  withChecksum({2, 0x82, 13, 0xFD}) + Bytes({3}) + Bytes(12, 0));
    EXPECT_EQ(part(bytesOf(result.bytes), 0, 56), part(IMAGE, 0, 56));
    // A field without its record before it adds one; a second one is another record.
    const FruEditResult more = add(IMAGE + Bytes(64, 0xFF), {{"dc-output.output", "5"},
                                                             {"dc-output.ripple", "7"},
                                                             {"dc-output", ""},
                                                             {"dc-output.output", "6"}});
    const FruImage image = parseFruImage(more.bytes);
    EXPECT_EQ(image.findRecord("dc-output1")->bytes,
              text(Bytes({5, 0, 0, 0, 0, 0, 0, 7}) + Bytes(5, 0)));
    EXPECT_EQ(image.findRecord("dc-output2")->bytes, text(Bytes({6}) + Bytes(12, 0)));
    // An image without records gets an area for them.
    const Bytes none = withChecksum({1, 0, 1, 0, 0, 0, 0}) + CHASSIS + Bytes(24, 0);
    EXPECT_EQ(bytesOf(add(none, {{"record:0x00", ""}}).bytes),
              withChecksum({1, 0, 1, 0, 0, 3, 0}) + CHASSIS + withChecksum({0, 0x82, 0, 0}) +
                  Bytes(19, 0));
    EXPECT_EQ(addRefusal(IMAGE, {{"record:100h", "00"}}),
              "2: \"record:100h\": expected record: and a type from 00h to FFh");
    EXPECT_EQ(addRefusal(IMAGE, {{"record:C1h", "0"}}),
              "1: record:C1h: expected at most 255 bytes in hex digits");
    EXPECT_EQ(addRefusal(IMAGE + Bytes(400, 0), {{"record:C1h", std::string(510, '0')}}), "none");
    EXPECT_EQ(addRefusal(IMAGE + Bytes(400, 0), {{"record:C1h", std::string(512, '0')}}),
              "1: record:C1h: expected at most 255 bytes in hex digits");
    EXPECT_EQ(addRefusal(IMAGE, {{"dc-loads", ""}}),
              "2: \"dc-loads\" cannot be added, expected an area, a field of one, a kind of record "
              "such as dc-load, or record:TYPE=HEX");
    EXPECT_EQ(addRefusal(IMAGE, {{"dc-load", "3"}}), "2: dc-load: expected no value");
    EXPECT_EQ(addRefusal(IMAGE, {{"dc-load.output", "16"}}),
              "1: dc-load.output: \"16\", expected 0 to 15");
}

TEST(FruParts, InternalUseAreaIsAdded)
{
    const FruEditResult result = add(IMAGE, {{"internal", "\x01-secret"}});
    EXPECT_EQ(part(bytesOf(result.bytes), 0, 8), withChecksum({1, 12, 1, 3, 0, 7, 0}));
    EXPECT_EQ(part(bytesOf(result.bytes), 96, 8), textBytes("\x01-secret"));
    EXPECT_EQ(
        result.notes,
        Lines(
            {"internal area: extends 24 bytes further, to the next area or the end of the image"}));
    EXPECT_EQ(result.changes[0].after, "8 bytes");
    EXPECT_EQ(addRefusal(bytesOf(result.bytes), {{"internal", "x"}}),
              "1: the image already has an internal use area");
    EXPECT_EQ(addRefusal(IMAGE, {{"internal", ""}}),
              "1: internal: no bytes, expected at least one");
    EXPECT_EQ(addRefusal(IMAGE, {{"internal", std::string(33, 'x')}}),
              "1: the areas would take 129 bytes, the image has 128");
}

TEST(FruParts, EverythingIsAddedOrNothing)
{
    EXPECT_EQ(addRefusal(IMAGE, {{"board.custom", "ok"}, {"dc-load.output", "x"}}),
              "1: dc-load.output: \"x\", expected 0 to 15");
    Bytes occupied = IMAGE;
    occupied[100] = 0x42;
    EXPECT_EQ(addRefusal(occupied, {{"product", ""}}),
              "1: bytes 92 to 127 would be written over; they belong to no area, but are not "
              "blank");
    Bytes damaged = IMAGE;
    damaged[61] ^= 1;
    EXPECT_EQ(addRefusal(damaged, {{"dc-load", ""}}).substr(0, 31),
              "1: multirecord 1: data checksum");
    EXPECT_EQ(addRefusal(damaged, {{"product", ""}}).substr(0, 44),
              "1: the areas cannot be moved: multirecord 1:");
    EXPECT_EQ(addRefusal(damaged, {{"board.custom", "ok"}}), "none");
}

TEST(FruParts, CustomFieldsAreRemoved)
{
    const FruEditResult result = remove(IMAGE, {"board.custom1"});
    EXPECT_EQ(bytesOf(result.bytes),
              part(IMAGE, 0, 24) +
                  areaOf(32, Bytes({0x19, 1, 2, 0x98, 0xC2, 'M', 'A', 0xC2, 'B', 'N', 0xC0}) +
                                 Bytes({0xC0, 0xC0, 0xC3, 'b', '2', 'x', 0xC1})) +
                  part(IMAGE, 56, 72));
    EXPECT_EQ(result.notes, Lines({"board area: 11 bytes free"}));
    EXPECT_EQ(result.changes[0].before, "b1");
    EXPECT_FALSE(result.changes[0].after);
    // Both, in any order.
    for (const auto& parts : {std::vector<std::string>{"board.custom1", "board.custom2"},
                              std::vector<std::string>{"board.custom2", "board.custom1"}}) {
        const FruEditResult both = remove(IMAGE, parts);
        EXPECT_EQ(parseFruImage(both.bytes).areas[1].unused, 15U);
        EXPECT_EQ(valueOf(both.bytes, "board.custom1"), "absent");
    }
    EXPECT_EQ(removeRefusal(IMAGE, {"board.custom3"}),
              "1: board.custom3: the area has no such field");
    EXPECT_EQ(removeRefusal(IMAGE, {"board.serial"}),
              "2: \"board.serial\" cannot be removed, only areas, records and custom fields can "
              "(fru set FIELD= empties a text)");
    EXPECT_EQ(removeRefusal(IMAGE, {"dc-load1.output"}).substr(0, 38),
              "2: \"dc-load1.output\" cannot be removed");
    EXPECT_EQ(removeRefusal(IMAGE, {"board.custom1", "board.custom1"}),
              "2: board.custom1 is specified more than once");
}

TEST(FruParts, UnusedBytesKeepTheirPlaces)
{
    Bytes used = IMAGE;
    used[53] = 0x77; // the second last unused byte of the board area
    used = part(used, 0, 24) + withChecksum(part(used, 24, 31)) + part(used, 56, 72);
    EXPECT_EQ(part(bytesOf(remove(used, {"board.custom1"}).bytes), 53, 2), (Bytes{0x77, 0}));
    EXPECT_EQ(part(bytesOf(add(used, {{"board.custom", "abcde"}}).bytes), 53, 2), (Bytes{0x77, 0}));
    EXPECT_EQ(part(bytesOf(add(used, {{"board.custom", "abcdef"}}).bytes), 53, 2),
              (Bytes{0xC1, 0}));
}

TEST(FruParts, RecordsAreRemoved)
{
    const Bytes last2 = withChecksum({2, 0x82, 13, 0xFE}) + Bytes({2}) + Bytes(12, 0);
    EXPECT_EQ(bytesOf(remove(IMAGE, {"dc-load1"}).bytes),
              part(IMAGE, 0, 56) + last2 + Bytes(18, 0) + part(IMAGE, 92, 36));
    // The list ends with the one before.
    const Bytes last1 = withChecksum({2, 0x82, 13, 0xFF}) + Bytes({1}) + Bytes(12, 0);
    EXPECT_EQ(bytesOf(remove(IMAGE, {"dc-load2"}).bytes),
              part(IMAGE, 0, 56) + last1 + Bytes(18, 0) + part(IMAGE, 92, 36));
    // Without a record there is no area.
    EXPECT_EQ(bytesOf(remove(IMAGE, {"dc-load2", "dc-load1"}).bytes),
              withChecksum({1, 0, 1, 3, 0, 0, 0}) + part(IMAGE, 8, 48) + Bytes(36, 0) +
                  part(IMAGE, 92, 36));
    EXPECT_EQ(removeRefusal(IMAGE, {"dc-load3"}),
              "1: dc-load3: the image has neither such an area nor such a record");
}

TEST(FruParts, AreasAreRemoved)
{
    EXPECT_EQ(bytesOf(remove(IMAGE, {"chassis"}).bytes),
              withChecksum({1, 0, 0, 3, 0, 7, 0}) + Bytes(16, 0) + part(IMAGE, 24, 104));
    EXPECT_EQ(removeRefusal(IMAGE, {"product"}), "1: the image has no product area");
    EXPECT_EQ(removeRefusal(IMAGE, {"internal"}), "1: the image has no internal area");
    const Bytes internal = Bytes({1}) + sequence(15, 0x20);
    const Bytes with = withChecksum({1, 1, 0, 3, 0, 0, 0}) + internal + BOARD;
    EXPECT_EQ(bytesOf(remove(with, {"internal"}).bytes),
              withChecksum({1, 0, 0, 3, 0, 0, 0}) + Bytes(16, 0) + BOARD);
    const Bytes overlap = withChecksum({1, 0, 1, 2, 0, 0, 0}) + CHASSIS + Bytes(32, 0);
    EXPECT_NE(removeRefusal(overlap, {"chassis"}), "none");
    // The internal use area would reach over an area of unknown size.
    const Bytes unknown =
        withChecksum({1, 1, 0, 2, 9, 0, 0}) + sequence(8, 1) + BOARD + Bytes(40, 0);
    EXPECT_EQ(removeRefusal(unknown, {"board"}),
              "1: no area can be removed: product area: length byte at offset 73 is 0");
    EXPECT_EQ(removeRefusal(unknown, {"board.custom1"}), "none");
}

TEST(FruParts, WhatIsAddedAndRemovedAgainLeavesEverySampleAsItWas)
{
    unsigned int tried = 0;
    for (const std::string& path : sampleImages()) {
        const Bytes bytes = readFile(path);
        const FruImage before = parseFruImage(text(bytes));
        for (const FruAreaImage& area : before.areas) {
            try {
                const std::string name = area.extent.name + ".custom";
                const std::string with = add(bytes, {{name, "xy"}}).bytes;
                const std::size_t customs = static_cast<std::size_t>(std::count_if(
                    area.fields.begin(), area.fields.end(),
                    [](const FruField& field) { return field.name.compare(0, 6, "custom") == 0; }));
                const FruImage image = parseFruImage(with);
                const std::string added = name + std::to_string(customs + 1);
                ASSERT_NE(image.findField(added), nullptr) << path;
                EXPECT_EQ(image.findField(added)->value, "xy");
                EXPECT_EQ(image.allProblems(), before.allProblems()) << path;
                if (image.areas[0].extent.size == before.areas[0].extent.size && area.unused >= 4 &&
                    isBlank(
                        ByteView(bytes).part(area.extent.end() - 1 - area.unused, area.unused)) &&
                    bytes[area.extent.end() - 2] == 0) {
                    ++tried;
                    EXPECT_EQ(bytesOf(remove(bytesOf(with), {added}).bytes), bytes)
                        << path << " " << added;
                }
            } catch (const Error&) {
                continue; // no room, or damaged
            }
        }
    }
    EXPECT_GE(tried, 10U);
}
