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
        "FILE, line 1: expected an object with a text \"image\" of hex digits";
    EXPECT_EQ(refusal("{}"), expected);
    EXPECT_EQ(refusal("{\"image\": 5}"), expected);
    EXPECT_EQ(refusal("{\"image\": \"12\""), expected);
    EXPECT_EQ(refusal("[1]", ImportFormat::NDJSON),
              "FILE, element 1: expected an object with a text \"image\" of hex digits");
    EXPECT_EQ(refusal("{\"image\": \"\"}"), expected);
    EXPECT_EQ(refusal(OBJECT + "\n\n{\"image\": \"12 3\"}"),
              "FILE, line 3: column 5: expected two hex digits for each byte");
    EXPECT_EQ(refusal("{\"image\": \"12#\"}"),
              "FILE, line 1: column 3: expected two hex digits for each byte");
    EXPECT_EQ(refusal("{\"image\": \"12\"}"),
              "FILE, line 1: 1 bytes, expected 16, 18, 74, 130 or 138 bytes");
    EXPECT_EQ(refusal("", ImportFormat::NDJSON), "FILE is empty, expected event records");
    EXPECT_EQ(refusal("\n", ImportFormat::NDJSON), "FILE contains no event record");
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
