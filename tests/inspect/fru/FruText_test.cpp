// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/fru/FruText.h>

#include <gtest/gtest.h>

#include <recordkit/inspect/bytes/Error.h>

using namespace recordkit::inspect;

namespace {

constexpr unsigned char ENGLISH = 25;
constexpr unsigned char JAPANESE = 53;

/// The bytes of a text, or why there are none.
std::string encoded(const std::string& value, Coding coding, unsigned char language = ENGLISH)
{
    try {
        return encodeFruText("board.name", value, language, coding).image();
    } catch (const DataError& e) {
        return e.what();
    }
}

std::string replaced(const FruText& old, const std::string& value)
{
    return replaceFruText("board.name", value, ENGLISH, old).image();
}

}

TEST(FruText, EachCodingHasItsTypeAndLength)
{
    EXPECT_EQ(encoded("Ab\xC3\xA9", CODING_TEXT), "\xC3"
                                                  "Ab\xE9");
    EXPECT_EQ(encoded("IPMI", CODING_SIX_BIT), "\x83\x29\xDC\xA6");
    EXPECT_EQ(encoded("12-3", CODING_BCD_PLUS), "\x42\x12\xB3");
    EXPECT_EQ(encoded("DE 0xAD", CODING_BINARY), "\x02\xDE\xAD");
    EXPECT_EQ(encoded("", CODING_TEXT), "\xC0");
    EXPECT_EQ(encoded("", CODING_BINARY), std::string(1, '\0'));
    EXPECT_EQ(encoded("Ab", CODING_TEXT, JAPANESE), std::string("\xC4"
                                                                "A\0b\0",
                                                                5));
    EXPECT_EQ(encoded("AB", CODING_SIX_BIT, JAPANESE), "\x82\xA1\x08");
}

TEST(FruText, CharactersThatACodingDoesNotHaveAreRefused)
{
    EXPECT_EQ(encoded("10 \xE2\x82\xAC", CODING_TEXT),
              "board.name: \"10 \xE2\x82\xAC\" has characters outside Latin-1");
    EXPECT_EQ(encoded("Ab", CODING_SIX_BIT),
              "board.name: \"Ab\" has characters that 6-bit text does not have, such as small "
              "letters");
    EXPECT_EQ(encoded("1A", CODING_BCD_PLUS),
              "board.name: \"1A\" has other characters than digits, blanks, \"-\" and \".\"");
    EXPECT_EQ(encoded("ABC", CODING_BINARY),
              "board.name: \"ABC\" has other characters than pairs of hex digits");
}

TEST(FruText, LengthIsLimitedFromBothSides)
{
    EXPECT_EQ(encoded(std::string(63, 'x'), CODING_TEXT), "\xFF" + std::string(63, 'x'));
    EXPECT_EQ(encoded(std::string(64, 'x'), CODING_TEXT),
              "board.name: 64 bytes needed, a field has at most 63");
    EXPECT_EQ(encoded(std::string(84, ' '), CODING_SIX_BIT), "\xBF" + std::string(63, '\0'));
    EXPECT_EQ(encoded(std::string(85, ' '), CODING_SIX_BIT),
              "board.name: 64 bytes needed, a field has at most 63");
    EXPECT_EQ(encoded(std::string(126, '0'), CODING_BCD_PLUS), "\x7F" + std::string(63, '\0'));
    EXPECT_EQ(encoded(std::string(127, '0'), CODING_BCD_PLUS),
              "board.name: 64 bytes needed, a field has at most 63");
    // One character as text is the end marker C1h; in other codings it is not.
    EXPECT_EQ(encoded("X", CODING_TEXT),
              "board.name: a value of one character cannot be stored, its type/length byte would "
              "end the fields (6-bit text can have one)");
    EXPECT_EQ(encoded("x", CODING_TEXT),
              "board.name: a value of one character cannot be stored, its type/length byte would "
              "end the fields");
    EXPECT_EQ(encoded("X", CODING_SIX_BIT), "\x81\x38");
    EXPECT_EQ(encoded("X", CODING_TEXT, JAPANESE), std::string("\xC2X\0", 3));
}

TEST(FruText, NewValueKeepsTheCodingOfTheOldOneWhereItFits)
{
    const FruText sixBit = {0x83, "\x29\xDC\xA6"};
    EXPECT_EQ(replaced(sixBit, "SN-1"), encoded("SN-1", CODING_SIX_BIT));
    EXPECT_EQ(replaced(sixBit, "sn-1"), encoded("sn-1", CODING_TEXT));
    EXPECT_EQ(replaced(sixBit, std::string(84, 'X')).front(), '\xBF');
    EXPECT_EQ(replaced(sixBit, "SN1"), encoded("SN1", CODING_SIX_BIT)); // a blank more
    const FruText bcd = {0x42, "\x12\xB3"};
    EXPECT_EQ(replaced(bcd, "99.5"), encoded("99.5", CODING_BCD_PLUS));
    EXPECT_EQ(replaced(bcd, "99,5"), encoded("99,5", CODING_TEXT));
    const FruText binary = {0x02, "\xDE\xAD"};
    EXPECT_EQ(replaced(binary, "BEEF01"), encoded("BEEF01", CODING_BINARY));
    EXPECT_EQ(replaced(binary, "BEEF0"), encoded("BEEF0", CODING_TEXT));
    const FruText text = {0xC2, "12"};
    EXPECT_EQ(replaced(text, "34"), encoded("34", CODING_TEXT));
    // An empty 6-bit field keeps its coding; an empty binary one is a field that nobody filled in.
    EXPECT_EQ(replaced({0x80, ""}, "AB"), encoded("AB", CODING_SIX_BIT));
    EXPECT_EQ(replaced({0x00, ""}, "1234"), encoded("1234", CODING_TEXT));
    EXPECT_EQ(replaced(sixBit, ""), "\x80");
    // What does not fit a coding by its length becomes text, or is refused as text.
    EXPECT_THROW(replaced(sixBit, std::string(85, 'X')), DataError);
}
