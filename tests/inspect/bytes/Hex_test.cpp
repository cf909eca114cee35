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
