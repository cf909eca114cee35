// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/bytes/Text.h>

#include <gtest/gtest.h>

using namespace recordkit::inspect;

TEST(Text, BcdPlusHasTwoCharactersAByte)
{
    EXPECT_EQ(decodeBcdPlus(std::string("\x01\x23\x45\x67\x89")), "0123456789");
    EXPECT_EQ(decodeBcdPlus(std::string("\xAB\xCD\xEF")), " -.:,_");
    EXPECT_EQ(decodeBcdPlus(std::string("")), "");
}

TEST(Text, SixBitTextHasTheWholeCharactersOfItsBytes)
{
    // The standard's own example.
    EXPECT_EQ(decodeSixBit(std::string("\x29\xDC\xA6")), "IPMI");
    for (std::size_t length = 0; length <= 63; ++length) {
        EXPECT_EQ(decodeSixBit(std::string(length, '\0')), std::string(length * 8 / 6, ' '));
        EXPECT_EQ(decodeSixBit(std::string(length, '\xFF')), std::string(length * 8 / 6, '_'));
    }
    // Blanks at the end belong to it.
    EXPECT_EQ(decodeSixBit(std::string("\x29\xDC\x06", 3)), "IPM!");
    EXPECT_EQ(decodeSixBit(std::string("\x29\xDC\x02", 3)), "IPM ");
}

TEST(Text, BcdPlusIsWrittenWithABlankForAnOddCharacter)
{
    EXPECT_EQ(toBcdPlus("0123456789 -."), "\x01\x23\x45\x67\x89\xAB\xCA");
    EXPECT_EQ(toBcdPlus("0123456789 -.0"), "\x01\x23\x45\x67\x89\xAB\xC0");
    EXPECT_EQ(toBcdPlus(""), "");
    // The three characters that FRU images reserve are read, not written.
    for (const char* const text : {":", ",", "_", "A", "1a", "\xC3\xA4", "/"}) {
        EXPECT_FALSE(toBcdPlus(text)) << text;
    }
}

TEST(Text, SixBitTextIsWrittenAsItIsRead)
{
    EXPECT_EQ(toSixBit("IPMI"), "\x29\xDC\xA6");
    EXPECT_EQ(toSixBit("IPM"), std::string("\x29\xDC\x02"));
    EXPECT_EQ(toSixBit(""), "");
    EXPECT_EQ(toSixBit(" _"), std::string("\xC0\x0F", 2));
    for (const char* const text : {"\x1F", "`", "a", "\x7F", "\xC3\xA4"}) {
        EXPECT_FALSE(toSixBit(text)) << text;
    }
    for (std::size_t length = 0; length < 12; ++length) {
        const std::string text = std::string("X-42 _AZ09!?").substr(0, length);
        EXPECT_EQ(decodeSixBit(*toSixBit(text)), length % 4 == 3 ? text + " " : text);
    }
}

TEST(Text, Latin1BecomesUtf16WithTheLowByteFirst)
{
    EXPECT_EQ(toUtf16("A\xE9"), std::string("A\0\xE9\0", 4));
    EXPECT_EQ(toUtf16(""), "");
}

TEST(Text, Latin1IsReadFromUtf8)
{
    EXPECT_EQ(toLatin1("aZ\xC2\x80\xC3\xBF"), "aZ\x80\xFF");
    for (const char* const text : {"\xC4\x80", "\xE2\x82\xAC", "\xC3", "\xC3(", "\x80", "\xFF"}) {
        EXPECT_FALSE(toLatin1(text)) << text;
    }
}

TEST(Text, Utf8HasOnlyWholeCharactersInTheirShortestForm)
{
    for (const char* const text :
         {"", "a\x7F", "\xC2\x80", "\xDF\xBF", "\xE0\xA0\x80", "\xEC\xBF\xBF", "\xED\x9F\xBF",
          "\xEE\x80\x80", "\xEF\xBF\xBF", "\xF0\x90\x80\x80", "\xF3\xBF\xBF\xBF",
          "\xF4\x8F\xBF\xBF", "\xC3\xA9\xE2\x82\xAC"}) {
        EXPECT_TRUE(isUtf8(std::string(text))) << text;
    }
    for (const char* const text :
         {"\x80", "\xBF", "\xC0\x80", "\xC1\xBF", "\xC2", "\xC2\x7F", "\xC2\xC0", "\xE0\x9F\xBF",
          "\xE1\x80", "\xE1\x80\x7F", "\xE1\x80\xC0", "\xED\xA0\x80", "\xF0\x8F\xBF\xBF",
          "\xF1\x80\x80", "\xF1\x80\x80\xC0", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF",
          "a\xC3"}) {
        EXPECT_FALSE(isUtf8(std::string(text))) << text;
    }
}

TEST(Text, ControlCharactersAreMadeVisible)
{
    EXPECT_EQ(printable(std::string("a\0b\x1B[2J\x7F", 8)), "a\\x00b\\x1B[2J\\x7F");
    EXPECT_EQ(printable("\xC2\x9B"
                        "2J \xC2\xA0 \xC3\xA9"),
              "\\x9B2J \xC2\xA0 \xC3\xA9");
}

TEST(Text, Latin1BecomesUtf8)
{
    EXPECT_EQ(toUtf8(std::string("a\xE4\xFF")), "a\xC3\xA4\xC3\xBF");
}

TEST(Text, IsReplacedInEachPlace)
{
    EXPECT_EQ(withReplaced("a/b/a", "a", "xa"), "xa/b/xa");
    EXPECT_EQ(withReplaced("aaa", "aa", "a"), "aa");
    EXPECT_EQ(withReplaced("abc", "bc", ""), "a");
    EXPECT_EQ(withReplaced("abc", "d", "x"), "abc");
    EXPECT_EQ(withReplaced("abc", "", "x"), "abc");
    EXPECT_EQ(withReplaced("", "a", "x"), "");
}
