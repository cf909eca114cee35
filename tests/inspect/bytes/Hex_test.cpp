// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/bytes/Hex.h>

#include <gtest/gtest.h>

#include <recordkit/inspect/bytes/Error.h>

#include "support/HexDumps.h"

using namespace recordkit::inspect;
using namespace testing_support;

namespace {

/// 256 bytes with a long run of equal lines.
testing_support::Bytes module()
{
    return sequence(48, 0x92) + testing_support::Bytes(128, 0) + sequence(80, 7);
}

std::string dumpRefusal(const std::string& text)
{
    try {
        parseImage("f", text);
        return "none";
    } catch (const DataError& e) {
        return e.what();
    }
}

}

TEST(Hex, DigitsAreUpperOrLowerCase)
{
    EXPECT_EQ(toHex(Bytes({0x01, 0xAB})), "01AB");
    EXPECT_EQ(toLowerHex(Bytes({0x01, 0xAB})), "01ab");
    EXPECT_EQ(toHex(ByteView()), "");
}

TEST(HexDump, IsReadAsToolsPrintIt)
{
    const Bytes image = module();
    EXPECT_EQ(parseImage("f", i2cdump(image)), image);
    EXPECT_EQ(parseImage("f", xxd(image)), image);
    EXPECT_EQ(parseImage("f", hexdump(image)), image);
    EXPECT_EQ(parseImage("f", std::string(image.begin(), image.end())), image);
    EXPECT_EQ(parseImage("f", "92 10 0B\n0b 02\n"), Bytes({0x92, 0x10, 0x0B, 0x0B, 0x02}));
    EXPECT_EQ(parseImage("f", "0x92, 0x10,0x0b"), Bytes({0x92, 0x10, 0x0B}));
    EXPECT_EQ(parseImage("f", "92100b02"), Bytes({0x92, 0x10, 0x0B, 0x02}));
    EXPECT_EQ(parseImage("f", "\n00000000: 9210 0b\r\n\r\n"), Bytes({0x92, 0x10, 0x0B}));
}

TEST(HexDump, PagesOfI2cdumpFollowEachOther)
{
    Bytes first(256, 1);
    Bytes second(256, 2);
    second[16] = 3;
    Bytes both = first;
    both.insert(both.end(), second.begin(), second.end());
    EXPECT_EQ(parseImage("f", i2cdump(first) + i2cdump(second)), both);
    both.insert(both.end(), first.begin(), first.begin() + 16);
    EXPECT_EQ(parseImage("f", i2cdump(first) + i2cdump(second) + i2cdump(Bytes(16, 1))), both);
    // Only a whole page can be followed by another one.
    EXPECT_EQ(dumpRefusal(i2cdump(Bytes(240, 1)) + i2cdump(second)).substr(0, 12), "f, line 17: ");
    // Without a heading, offsets go on.
    const std::string page = i2cdump(second);
    EXPECT_EQ(dumpRefusal(i2cdump(first) + page.substr(page.find('\n') + 1)),
              "f, line 18: offset 0h, expected 100h");
}

TEST(HexDump, LineThatCannotBeReadIsNamed)
{
    EXPECT_EQ(dumpRefusal("00: 92 10 0b 0b 03 04 21 02 09 03 52 01 08 0a 00 fc\n10: XX 00\n"),
              "f, line 2: \"10: XX 00\" is not a line of a hex dump");
    EXPECT_EQ(dumpRefusal("00: 92 10 0b 0b 03 04 21 02 09 03 52 01 08 0a 00 fc\n20: 00 00\n"),
              "f, line 2: offset 20h, expected 10h");
    EXPECT_EQ(dumpRefusal("00: 92 10\nend of dump\n"),
              "f, line 2: \"end of dump\" is not a line of a hex dump");
    EXPECT_EQ(dumpRefusal("00: 92 10\n" + std::string(300, '0') + "\n").substr(0, 12),
              "f, line 2: \"");
    EXPECT_EQ(dumpRefusal("hello world"), "f: neither an image nor a hex dump");
    EXPECT_EQ(dumpRefusal("921"), "f: neither an image nor a hex dump");
    EXPECT_EQ(parseImage("f", ""), Bytes());
}
