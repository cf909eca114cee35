// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/bytes/ByteView.h>

#include <gtest/gtest.h>

using namespace recordkit::inspect;

namespace {

const Bytes BYTES = {0x01, 0x82, 0x03, 0x84, 0x05};

}

TEST(ByteView, SeesWhatItsOwnerHas)
{
    const ByteView view = BYTES;
    EXPECT_EQ(view.size(), 5U);
    EXPECT_EQ(view.data(), BYTES.data());
    EXPECT_EQ(view[1], 0x82);
    EXPECT_EQ(view.copy(), BYTES);
    EXPECT_EQ(view.text(), "\x01\x82\x03\x84\x05");
    EXPECT_TRUE(ByteView().empty());
    EXPECT_EQ(ByteView(std::string("\xFF"))[0], 0xFF);
    EXPECT_EQ(ByteView(std::array<unsigned char, 2>{7, 8}).size(), 2U);
}

TEST(ByteView, PartsEndWithTheView)
{
    const ByteView view = BYTES;
    EXPECT_EQ(view.part(1, 2).copy(), Bytes({0x82, 0x03}));
    EXPECT_EQ(view.part(3).copy(), Bytes({0x84, 0x05}));
    EXPECT_EQ(view.part(4, 9).copy(), Bytes({0x05}));
    EXPECT_TRUE(view.part(5).empty());
    EXPECT_TRUE(view.part(~std::size_t{0}, ~std::size_t{0}).empty());
    EXPECT_EQ(view.part(0, ~std::size_t{0}).size(), 5U);
}

TEST(ByteView, ContainsWhatLiesInItWhateverTheNumbers)
{
    const ByteView view = BYTES;
    EXPECT_TRUE(view.contains(0, 5));
    EXPECT_TRUE(view.contains(5, 0));
    EXPECT_FALSE(view.contains(0, 6));
    EXPECT_FALSE(view.contains(5, 1));
    EXPECT_FALSE(view.contains(6, 0));
    EXPECT_FALSE(view.contains(1, ~std::size_t{0}));
    EXPECT_FALSE(view.contains(~std::size_t{0}, 1));
}

TEST(ByteView, NumbersHaveTheirLowByteFirstAndZeroesBeyondTheEnd)
{
    const ByteView view = BYTES;
    EXPECT_EQ(view.le16(0), 0x8201U);
    EXPECT_EQ(view.le24(1), 0x840382U);
    EXPECT_EQ(view.le32(1), 0x05840382U);
    EXPECT_EQ(view.le16(4), 0x0005U);
    EXPECT_EQ(view.le32(3), 0x0584U);
    EXPECT_EQ(view.le32(5), 0U);
    EXPECT_EQ(view.le16(~std::size_t{0}), 0U);
}

TEST(ByteView, ViewsAreEqualWhenTheirBytesAre)
{
    const Bytes other = BYTES;
    EXPECT_TRUE(ByteView(BYTES) == ByteView(other));
    EXPECT_TRUE(ByteView(BYTES) != ByteView(other).part(1));
    EXPECT_TRUE(ByteView() == ByteView(BYTES).part(5));
}
