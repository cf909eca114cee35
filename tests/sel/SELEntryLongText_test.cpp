// SPDX-License-Identifier: Apache-2.0
#include <recordkit/sel/SELEntryLongText.h>

#include <gtest/gtest.h>

#include "support/Bytes.h"
#include "support/Failures.h"

using TAVLib::RecordKit::SELEntryLongText;
using namespace testing_support;

namespace {

const Bytes HEAD = sequence(14, 0x20);

}

TEST(SELEntryLongText, FreshObjectIsEmpty)
{
    EXPECT_EQ(SELEntryLongText().getSerializedSize(), 0U);
    EXPECT_EQ(SELEntryLongText().getLongText(), "");
}

TEST(SELEntryLongText, TextRunsToTheFirstZeroByte)
{
    const auto text = fromBytes<SELEntryLongText>(HEAD + textBytes("fan failed") + Bytes({0, 'x'}));
    EXPECT_EQ(text.getLongText(), "fan failed");
    EXPECT_EQ(imageOf(text), HEAD + textBytes("fan failed") + Bytes({0, 'x'}));
}

TEST(SELEntryLongText, TextWithoutAZeroByteRunsToTheEndOfTheImage)
{
    EXPECT_EQ(fromBytes<SELEntryLongText>(HEAD + textBytes("abc")).getLongText(), "abc");
}

TEST(SELEntryLongText, FifteenBytesWithAZeroGiveAnEmptyText)
{
    SELEntryLongText text;
    EXPECT_TRUE(load(text, HEAD + Bytes({0})));
    EXPECT_EQ(text.getLongText(), "");
    EXPECT_EQ(text.getSerializedSize(), 15U);
}

TEST(SELEntryLongText, FourteenBytesThrowAndStay)
{
    auto text = fromBytes<SELEntryLongText>(HEAD + textBytes("kept"));
    const Bytes shorter = sequence(14, 0x60);
    EXPECT_EQ(thrownBy([&] { load(text, shorter); }),
              "1:83:0x1500 act 1 det 0x0B00 msg 20008 (SELEntryLongText, 14, 15)");
    EXPECT_EQ(imageOf(text), shorter);
    EXPECT_EQ(text.getLongText(), "kept");
    EXPECT_EQ(thrownBy([&] { load(text, {}); }),
              "1:83:0x1500 act 1 det 0x0B00 msg 20008 (SELEntryLongText, 0, 15)");
    EXPECT_EQ(text.getSerializedSize(), 0U);
}

TEST(SELEntryLongText, KeepsSeventyNineBytes)
{
    for (const std::size_t length : {79U, 80U, 200U}) {
        const auto text = fromBytes<SELEntryLongText>(Bytes(length, 'a'));
        EXPECT_EQ(imageOf(text), Bytes(79, 'a'));
        EXPECT_EQ(text.getLongText(), std::string(65, 'a'));
    }
    EXPECT_EQ(fromBytes<SELEntryLongText>(Bytes(78, 'a')).getLongText(), std::string(64, 'a'));
}

TEST(SELEntryLongText, ShorterImageWithoutAZeroShowsTheRestOfTheEarlierText)
{
    auto text = fromBytes<SELEntryLongText>(HEAD + textBytes("power supply 1 lost"));
    EXPECT_TRUE(load(text, HEAD + textBytes("POWER")));
    EXPECT_EQ(text.getLongText(), "POWER supply 1 lost");
    EXPECT_EQ(text.getSerializedSize(), 19U);
}

TEST(SELEntryLongText, NeedsABufferOfItsSize)
{
    const auto text = fromBytes<SELEntryLongText>(HEAD + textBytes("ab"));
    Bytes buffer(16, 0xEE);
    TraceCapture trace;
    EXPECT_EQ(text.getSerialized(buffer.data(), 15), 0U);
    EXPECT_EQ(buffer, Bytes(16, 0xEE));
    EXPECT_EQ(trace.lines(), Lines({"1:83:0x1500 level 0: SELEntryLongText::getSerialized: "
                                    "15 where 16 is needed"}));
    EXPECT_EQ(text.getSerialized(buffer.data(), 16), 16U);
    EXPECT_EQ(buffer, HEAD + textBytes("ab"));
}
