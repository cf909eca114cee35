// SPDX-License-Identifier: Apache-2.0
#include "tool/sel/EventInput.h"

#include <gtest/gtest.h>

#include <recordkit/inspect/bytes/Hex.h>

#include "support/Bytes.h"
#include "tool/Errors.h"

using namespace recordkit::tool;
using namespace testing_support;

namespace {

const testing_support::Bytes IMAGE = sequence(138, 9);
const std::string OBJECT = "{\"id\": 1, \"image\": \"" + toLowerHex(IMAGE) + "\"}";

std::vector<ImportedEvent> read(const std::string& content,
                                ImportFormat format = ImportFormat::AUTO)
{
    return readEvents("FILE", content, format, {});
}

std::string refusal(const std::string& content, ImportFormat format = ImportFormat::AUTO)
{
    try {
        read(content, format);
    } catch (const Error& e) {
        EXPECT_EQ(statusOf(e), EXIT_DATA);
        return e.what();
    }
    return "taken";
}

}

TEST(EventInput, NdjsonGivesTheImage)
{
    const auto events = read("\n " + OBJECT + "\n\n" + OBJECT);
    ASSERT_EQ(events.size(), 2U);
    EXPECT_EQ(imageOf(events[1].message), IMAGE);
    EXPECT_EQ(events[0].place, "line 2");
    EXPECT_EQ(events[1].place, "line 4");
}

TEST(EventInput, BadNdjsonIsRefusedWithItsPlace)
{
    const std::string expected =
        "expected an object with \"image\", or with \"record\" of 16 bytes, in hex digits";
    EXPECT_EQ(refusal("{}"), "FILE, line 1: " + expected);
    EXPECT_EQ(refusal("{\"image\": \"12\""), "FILE, line 1: " + expected);
    EXPECT_EQ(refusal("[1]", ImportFormat::NDJSON), "FILE, element 1: " + expected);
    EXPECT_EQ(refusal("{\"image\": \"\"}"), "FILE, line 1: " + expected);
    const std::string digits = ": expected two hex digits for each byte";
    EXPECT_EQ(refusal("{\"image\": 5}"), "FILE, line 1: \"image\", column 1" + digits);
    EXPECT_EQ(refusal(OBJECT + "\n\n{\"image\": \"12 3\"}"),
              "FILE, line 3: \"image\", column 5" + digits);
    EXPECT_EQ(refusal("{\"image\": \"12#\"}"), "FILE, line 1: \"image\", column 3" + digits);
    EXPECT_EQ(refusal("{\"image\": \"12\"}"),
              "FILE, line 1: 1 bytes, expected 16, 18, 74, 130 or 138 bytes");
    EXPECT_EQ(refusal("", ImportFormat::NDJSON), "FILE is empty, expected event records");
    EXPECT_EQ(refusal("\n", ImportFormat::NDJSON), "FILE contains no event record");
}

TEST(EventInput, AnEventIsMadeOfItsRecordAndWhatFollowsIt)
{
    const std::string record = "0100020cb62967200004041001500102";
    const auto imageOfObject = [](const std::string& object) {
        return imageOf(read(object, ImportFormat::NDJSON).at(0).message);
    };
    testing_support::Bytes expected = {0x34, 0x12, 0x01, 0x00, 0x02, 0x0C, 0xB6, 0x29, 0x67, 0x20,
                                       0x00, 0x04, 0x04, 0x10, 0x01, 0x50, 0x01, 0x02, 0xAA, 0xBB};
    expected.resize(138, 0);
    EXPECT_EQ(
        imageOfObject(R"({"next_id": 4660, "record": ")" + record + R"(", "extended": "aabb"})"),
        expected);
    expected[0] = expected[1] = 0xFF;
    expected[18] = expected[19] = 0;
    EXPECT_EQ(imageOfObject(R"({"record": ")" + record + R"(", "extended": null})"), expected);
    EXPECT_EQ(imageOfObject(R"({"record": ")" + record + R"(", "next_id": 65535, "image": null})"),
              expected);
    expected.back() = 7;
    EXPECT_EQ(imageOfObject(R"({"record": ")" + record + R"(", "extended": ")" +
                            std::string(238, '0') + R"(07"})"),
              expected);
}

TEST(EventInput, ABadRecordIsRefusedWithItsPlace)
{
    const std::string record = R"("record": "0100020cb62967200004041001500102")";
    const std::string expected =
        "FILE, line 1: expected an object with \"image\", or with \"record\" of 16 bytes, in hex "
        "digits";
    EXPECT_EQ(refusal(R"({"record": "0100020cb629672000040410015001"})"), expected);
    EXPECT_EQ(refusal(R"({"record": "0100020cb6296720000404100150010203"})"), expected);
    EXPECT_EQ(refusal("{" + record + R"(, "extended": ")" + std::string(242, '0') + "\"}"),
              "FILE, line 1: \"extended\": 1 byte too long");
    EXPECT_EQ(refusal("{" + record + R"(, "extended": "0g"})"),
              "FILE, line 1: \"extended\", column 2: expected two hex digits for each byte");
    for (const char* const id : {"-1", "65536", "\"1\"", "null"}) {
        EXPECT_EQ(refusal("{" + record + ", \"next_id\": " + id + "}"),
                  "FILE, line 1: \"next_id\": expected 0 to 65535")
            << id;
    }
}

TEST(EventInput, FormsAreThoseOfTheLayerBelow)
{
    // A manufacturer id tells writeraw from the order on the wire.
    const std::string record("\x01\x02\xC0\0\0\0\0\x11\x22\x33\0\0\0\0\0\0", 16);
    const auto manufacturer = [&](const std::string& content, ImportFormat format) {
        return part(imageOf(read(content, format).at(0).message), 9, 3);
    };
    const testing_support::Bytes sent = {0x11, 0x22, 0x33};
    const testing_support::Bytes turned = {0x33, 0x22, 0x11};
    EXPECT_EQ(manufacturer(record, ImportFormat::AUTO), turned);
    EXPECT_EQ(manufacturer(record, ImportFormat::WRITERAW), turned);
    EXPECT_EQ(manufacturer(record, ImportFormat::WIRE), sent);
    const std::string digits = "0102C000000000112233000000000000";
    EXPECT_EQ(manufacturer(digits, ImportFormat::AUTO), sent);
    EXPECT_EQ(manufacturer(digits, ImportFormat::HEX), sent);
    EXPECT_EQ(refusal(digits, ImportFormat::WIRE), "taken"); // 32 characters: two records
}
