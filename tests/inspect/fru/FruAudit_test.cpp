// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/fru/FruAudit.h>

#include <gtest/gtest.h>

#include "support/FruImages.h"

using namespace recordkit::inspect;
using namespace testing_support;

namespace {

using Lines = std::vector<std::string>;

constexpr unsigned int NOW = 1418142780; // 2014-12-09 16:33, a minute after the images' date

Bytes board(const std::string& serial, const std::string& part = "PN1",
            const std::string& fileId = "AA", const std::string& maker = "Acme")
{
    return fruImage(boardArea({maker, "Mezz", serial, part, fileId}));
}

Bytes product(const std::string& serial, const std::string& version,
              const std::string& name = "Box")
{
    return fruImage(boardArea({"Acme", "Mezz", "B" + serial, "PN1", "AA"}),
                    productArea({"Acme", name, "P1", version, serial, "tag " + serial, ""}));
}

/// "NUMBER FIELD: TEXT".
Lines audited(const std::vector<Bytes>& fleet, unsigned int now = NOW)
{
    std::vector<FruImage> images;
    for (const Bytes& bytes : fleet) {
        images.push_back(parseFruImage(bytes));
    }
    Lines lines;
    for (const FruFinding& finding : auditFruImages(images, now)) {
        lines.push_back(std::to_string(finding.image) + " " + finding.field + ": " + finding.text);
    }
    return lines;
}

}

TEST(FruAudit, FindsNothingInASoundFleet)
{
    EXPECT_EQ(audited({}), Lines());
    EXPECT_EQ(audited({board("SN1"), board("SN2"), product("SN3", "1.0"), product("SN4", "1.0")}),
              Lines());
}

TEST(FruAudit, FindsSerialNumbersThatWereNeverGiven)
{
    EXPECT_EQ(audited({board("")}), Lines{"0 board.serial: is blank"});
    for (const char* const serial :
         {"00", "00000000", "XXXX", "xxx", "--", "   ", "N/A", "na", "None", "TBD", "NULL",
          "To be filled by O.E.M.", "Default string", "Not Specified", "Unknown", "0123456789",
          "123456789", "1234567890", "Board Serial Number"}) {
        EXPECT_EQ(audited({board(serial)}),
                  Lines{"0 board.serial: \"" + std::string(serial) + "\" is a placeholder"});
    }
    for (const char* const serial :
         {"11", "0001", "X1", "NA1", "TBD2", "12345678", "none2", "NB"}) {
        EXPECT_EQ(audited({board(serial)}), Lines()) << serial;
    }
    EXPECT_EQ(audited({product("00", "1.0")}),
              (Lines{"0 product.serial: \"00\" is a placeholder"}));
}

TEST(FruAudit, FindsTheSameSerialNumberInSeveralImages)
{
    EXPECT_EQ(audited({board("SN1"), board("SN2"), board("SN1")}),
              (Lines{"0 board.serial: \"SN1\" is in 2 images",
                     "2 board.serial: \"SN1\" is in 2 images"}));
    EXPECT_EQ(audited({board("SN1"), board("SN1", "PN2")}), Lines()) << "another part";
    EXPECT_EQ(audited({board("SN1"), board("SN1", "PN1", "AA", "Other")}), Lines())
        << "another manufacturer";
    EXPECT_EQ(audited({board("00"), board("00")}).size(), 2U) << "a placeholder is one finding";
    EXPECT_EQ(audited({product("PS7", "1.0"), product("PS7", "1.0")}).size(), 4U)
        << "of board and product";
}

TEST(FruAudit, FindsDatesInTheFuture)
{
    EXPECT_EQ(audited({board("SN1")}, NOW - 60), Lines());
    EXPECT_EQ(audited({board("SN1")}, NOW - 61),
              Lines{"0 board.date: 2014-12-09 16:32 is in the future"});
    // Unspecified; and a count that may mean 1996 or 2027.
    for (const Bytes& date : {Bytes{0, 0, 0}, Bytes{1, 0, 0}}) {
        EXPECT_EQ(audited({fruImage(boardArea({"Acme", "Mezz", "SN1", "PN1", "AA"}, date))}),
                  Lines());
    }
}

TEST(FruAudit, FindsWhatDiffersFromTheMajorityOfAProduct)
{
    EXPECT_EQ(audited({product("PS1", "AA"), product("PS2", "BB"), product("PS3", "AA")}),
              Lines{"1 product.version: is \"BB\", \"AA\" in 2 of 3 images of Box"});
    EXPECT_EQ(audited({product("PS1", "AA"), product("PS2", "BB")}), Lines()) << "too few";
    EXPECT_EQ(audited({product("PS1", "AA"), product("PS2", "BB"), product("PS3", "AA"),
                       product("PS4", "BB")}),
              Lines())
        << "half is not a majority";
    EXPECT_EQ(audited({product("PS1", "AA"), product("PS2", "BB", "Bag"), product("PS3", "AA"),
                       product("PS4", "AA")}),
              Lines())
        << "another product";
    EXPECT_EQ(audited({board("S1"), board("S2", "PN1", "BB"), board("S3")}),
              Lines{"1 board.file-id: is \"BB\", \"AA\" in 2 of 3 images of Mezz"});
}

TEST(FruAudit, FindsFieldsThatAnImageLacks)
{
    const Bytes without = fruImage(boardArea({"Acme", "Mezz", "S3", "PN1"}));
    const Lines lines = audited({board("S1"), board("S2"), without});
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.back(), "2 board.file-id: is missing, \"AA\" in 2 of 3 images of Mezz");
}

TEST(FruAudit, SerialNumbersDatesAndCustomFieldsMayDiffer)
{
    const auto one = [](const std::string& serial, unsigned char date, const std::string& custom) {
        return fruImage(boardArea({"Acme", "Mezz", serial, "PN1", "AA", custom}, {date, 0, 0x90}));
    };
    EXPECT_EQ(audited({one("S1", 1, "xx"), one("S2", 1, "xx"), one("S3", 2, "yy")}), Lines());
}

TEST(FruAudit, AssetTagsMayDiffer)
{
    const auto tagged = [](const std::string& serial, const std::string& tag) {
        return fruImage(boardArea({"Acme", "Mezz", "B" + serial, "PN1", "AA"}),
                        productArea({"Acme", "Box", "P1", "1.0", serial, tag, ""}));
    };
    EXPECT_EQ(audited({tagged("S1", "mine"), tagged("S2", "mine"), tagged("S3", "yours")}),
              Lines());
}

TEST(FruAudit, FindsThePlaceholderOfAChassis)
{
    // A chassis area at offset 8: type, part number, serial number.
    const Bytes chassis = fruArea({0x17}, {"CH-1", "00"});
    EXPECT_EQ(audited({summed({1, 0, 1, 0, 0, 0, 0}) + chassis}),
              Lines{"0 chassis.serial: \"00\" is a placeholder"});
}

TEST(FruAudit, HasWhatIsDamagedInTheOrderOfTheImages)
{
    Bytes damaged = board("");
    damaged[20] ^= 1;
    const Lines lines = audited({board("SN1"), damaged, board("SN1")});
    ASSERT_EQ(lines.size(), 4U);
    EXPECT_EQ(lines[0], "0 board.serial: \"SN1\" is in 2 images");
    EXPECT_EQ(lines[1].find("1 : board area: "), 0U) << lines[1];
    EXPECT_EQ(lines[2], "1 board.serial: is blank");
    EXPECT_EQ(lines[3], "2 board.serial: \"SN1\" is in 2 images");
}

TEST(FruAudit, ShowsControlCharactersEscaped)
{
    const std::string nasty = "SN\x1B[2J";
    for (const std::string& line : audited({board(nasty), board(nasty)})) {
        EXPECT_NE(line.find("SN\\x1B[2J\" is in"), std::string::npos) << line;
    }
}
