// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/event/EventImport.h>

#include <gtest/gtest.h>

#include <recordkit/inspect/bytes/Error.h>

#include "support/Bytes.h"

using namespace recordkit::inspect;
using namespace testing_support;

namespace {

const Bytes RECORD = Bytes({0x34, 0x12, 0x02}) + sequence(13, 0x50);
const Bytes OEM_RECORD = Bytes({0x35, 0x12, 0xC0}) + sequence(13, 0x50);

std::string textOf(const Bytes& bytes)
{
    return std::string(bytes.begin(), bytes.end());
}

std::string hexOf(const Bytes& bytes, const char* separator = "")
{
    std::string text;
    for (const unsigned char byte : bytes) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02x", byte);
        text += (text.empty() ? "" : separator) + std::string(digits);
    }
    return text;
}

std::vector<ImportedEvent> import(const std::string& content, EventForm format = EventForm::AUTO,
                                  const OemFields& fields = {})
{
    return importEvents("FILE", content, format, fields);
}

Bytes onlyImage(const std::string& content, EventForm format = EventForm::AUTO,
                const OemFields& fields = {})
{
    const auto events = import(content, format, fields);
    EXPECT_EQ(events.size(), 1U);
    return imageOf(events.at(0).message);
}

/// The image that a record without OEM data becomes.
Bytes completeImage(const Bytes& record)
{
    return Bytes({0xFF, 0xFF}) + record + Bytes({13}) + Bytes(111, 0) + Bytes(8, 0);
}

std::string refusal(const std::string& content, EventForm format = EventForm::AUTO,
                    const OemFields& fields = {})
{
    try {
        import(content, format, fields);
    } catch (const DataError& e) {
        return e.what();
    }
    return "taken";
}

}

TEST(EventImport, WriterawRecordsBecomeCompleteMessages)
{
    const auto events = import(textOf(RECORD + RECORD));
    ASSERT_EQ(events.size(), 2U);
    EXPECT_EQ(imageOf(events[0].message), completeImage(RECORD));
    EXPECT_EQ(events[0].place, "offset 0");
    EXPECT_EQ(events[1].place, "offset 16");
}

TEST(EventImport, WriterawManufacturerIdsAreTurnedBack)
{
    for (const unsigned char type : {0xC0, 0xDF}) {
        Bytes saved = OEM_RECORD;
        saved[2] = type;
        Bytes sent = saved;
        std::swap(sent[7], sent[9]);
        EXPECT_EQ(onlyImage(textOf(saved)), completeImage(sent));
        EXPECT_EQ(onlyImage(textOf(saved), EventForm::WRITERAW), completeImage(sent));
    }
    for (const unsigned char type : {0x02, 0xBF, 0xE0, 0xFF}) {
        Bytes saved = OEM_RECORD;
        saved[2] = type;
        EXPECT_EQ(onlyImage(textOf(saved)), completeImage(saved)) << int(type);
    }
}

TEST(EventImport, WireRecordsStayAsTheyAre)
{
    EXPECT_EQ(onlyImage(textOf(OEM_RECORD), EventForm::WIRE), completeImage(OEM_RECORD));
}

TEST(EventImport, HexRecordsAreInWireOrder)
{
    EXPECT_EQ(onlyImage(hexOf(OEM_RECORD)), completeImage(OEM_RECORD));
}

TEST(EventImport, HexMayHaveBlanksPrefixesAndComments)
{
    const std::string prefixed = "  0x" + hexOf(RECORD, " 0x") + "  # a comment\r";
    const std::string content = "# the first line\n\n" + prefixed + "\n" + hexOf(RECORD, ", ") +
                                "\n" + hexOf(RECORD) + "#end";
    const auto events = import(content);
    ASSERT_EQ(events.size(), 3U);
    for (const ImportedEvent& event : events) {
        EXPECT_EQ(imageOf(event.message), completeImage(RECORD));
    }
    EXPECT_EQ(events[0].place, "line 3");
    EXPECT_EQ(events[2].place, "line 5");
}

TEST(EventImport, ResponseKeepsItsNextRecordId)
{
    EXPECT_EQ(onlyImage("7856" + hexOf(RECORD)),
              Bytes({0x78, 0x56}) + part(completeImage(RECORD), 2, 136));
}

TEST(EventImport, OemImageGivesItsExtendedData)
{
    const Bytes extended = sequence(56, 0x80);
    EXPECT_EQ(onlyImage("7856" + hexOf(RECORD) + hexOf(extended)),
              Bytes({0x78, 0x56}) + RECORD + Bytes({13}) + part(extended, 0, 13) + Bytes(55, 0) +
                  part(extended, 13, 43) + Bytes(8, 0));
}

TEST(EventImport, BmcImageGetsATrailerOfZeroes)
{
    const Bytes image = Bytes({0x78, 0x56}) + RECORD + sequence(112, 9);
    EXPECT_EQ(onlyImage(hexOf(image)), image + Bytes(8, 0));
}

TEST(EventImport, MessageImageIsTakenAsItIs)
{
    const Bytes image = Bytes({0x78, 0x56}) + RECORD + sequence(120, 9);
    EXPECT_EQ(onlyImage(hexOf(image)), image);
}

TEST(EventImport, FieldsFillTheOemDataOfRecordsWithout)
{
    OemFields fields;
    fields.areGiven = true;
    fields.partitions = 0x1005;
    fields.partNumber = "PN-1";
    fields.serialNumber = "SERIAL-12345";
    const Bytes expected = Bytes({0xFF, 0xFF}) + RECORD + Bytes({13}) + Bytes(68, 0) +
                           Bytes({0x05, 0x10, 0xC4, 'P', 'N', '-', '1'}) + Bytes(14, 0) +
                           Bytes({0xCC}) + textBytes("SERIAL-12345") + Bytes(9, 0) + Bytes(8, 0);
    EXPECT_EQ(onlyImage(textOf(RECORD), EventForm::AUTO, fields), expected);
    EXPECT_EQ(refusal(hexOf(sequence(74)), EventForm::AUTO, fields),
              "FILE, line 1: a record of 74 bytes has OEM data of its own, so that partitions, "
              "part number and serial number cannot be given");
}

TEST(EventImport, BadInputIsRefusedWithItsPlace)
{
    EXPECT_EQ(refusal(""), "FILE is empty, expected event records");
    EXPECT_EQ(refusal("\n# only a comment\n"), "FILE contains no event record");
    EXPECT_EQ(refusal(textOf(RECORD) + std::string(1, '\0')),
              "FILE, offset 16: 1 bytes, expected a record of 16");
    EXPECT_EQ(refusal(textOf(RECORD).substr(0, 15)),
              "FILE, offset 0: 15 bytes, expected a record of 16");
    EXPECT_EQ(refusal("0102\n03 0"),
              "FILE, line 1: 2 bytes, expected 16, 18, 74, 130 or 138 bytes");
    EXPECT_EQ(refusal("This is a text file."),
              "FILE, line 1: column 1: expected two hex digits for each byte");
    EXPECT_EQ(refusal(hexOf(RECORD) + "\n12 3"),
              "FILE, line 2: column 5: expected two hex digits for each byte");
    EXPECT_EQ(refusal("12", EventForm::WIRE), "FILE, offset 0: 2 bytes, expected a record of 16");
}

TEST(EventImport, EachHexLengthIsJudgedOnItsOwn)
{
    for (std::size_t length = 1; length <= 140; ++length) {
        const bool isTaken =
            length == 16 || length == 18 || length == 74 || length == 130 || length == 138;
        EXPECT_EQ(refusal(hexOf(sequence(length))) == "taken", isTaken) << length;
    }
}

TEST(EventImport, RecordIdsAreReadAndSet)
{
    auto message = import(textOf(RECORD)).at(0).message;
    EXPECT_EQ(recordIdOf(message), 0x1234);
    setRecordId(message, 0xABCD);
    EXPECT_EQ(recordIdOf(message), 0xABCD);
    Bytes expected = completeImage(RECORD);
    expected[2] = 0xCD;
    expected[3] = 0xAB;
    EXPECT_EQ(imageOf(message), expected);
}
