// SPDX-License-Identifier: Apache-2.0
// Objects that allocate memory, when there is none: each keeps its image.
#include <gtest/gtest.h>
#include <new>

#include <recordkit/fru/FRUArea.h>
#include <recordkit/hardware/GSPBBoardInfo.h>
#include <recordkit/hardware/IOUBoardInfo.h>
#include <recordkit/hardware/PCIBOXInfo.h>
#include <recordkit/hardware/SASUBoardInfo.h>

#include "AllocationCount.h"
#include "fru/MemoryDevice.h"

using namespace TAVLib::RecordKit;
using namespace testing_support;

namespace {

/// Loads the second image over the first, with each allocation failing once.
template <typename Object> void expectOldOrNew(const Bytes& first, const Bytes& second)
{
    std::size_t failures = 0;
    for (std::size_t n = 1;; ++n) {
        auto object = fromBytes<Object>(first);
        bool hasFailed = false;
        try {
            failAllocation(n);
            object.setSerialized(second.data(), static_cast<unsigned int>(second.size()));
            failAllocation(0);
        } catch (const std::bad_alloc&) {
            hasFailed = true;
        }
        Bytes image(4096, 0xEE);
        const unsigned int written =
            object.getSerialized(image.data(), static_cast<unsigned int>(image.size()));
        EXPECT_EQ(written, object.getSerializedSize());
        image.resize(written);
        if (!hasFailed) {
            break;
        }
        EXPECT_EQ(image, first) << n;
        ++failures;
        ASSERT_LT(n, 100U);
    }
    EXPECT_GT(failures, 0U);
}

const Bytes HEAD = {0x0F, 1, 2, 3, 0x42, 5, 6, 7};

/// A board image with one list of n words, or n of a GSPB board's lists each.
Bytes slots(unsigned char n)
{
    return HEAD + Bytes({n}) + sequence(2U * n, n);
}

Bytes ports(unsigned char n)
{
    const Bytes list = Bytes({n}) + sequence(2U * n, n);
    return HEAD + list + list + list;
}

Bytes cards(unsigned char n)
{
    Bytes image = Bytes({1, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0}) + Bytes({n});
    for (unsigned char card = 0; card < n; ++card) {
        image = image + Bytes({card, 7, n}) + sequence(2U * n, card);
    }
    return image;
}

}

TEST(FailedAllocation, BoardsKeepTheirImage)
{
    expectOldOrNew<IOUBoardInfo>(slots(2), slots(200));
    expectOldOrNew<SASUBoardInfo>(slots(2), slots(200));
    expectOldOrNew<GSPBBoardInfo>(ports(2), ports(200));
    expectOldOrNew<GSPBBoardInfo>(ports(0), ports(1));
    expectOldOrNew<PCIBOXInfo>(cards(2), cards(9));
}

TEST(FailedAllocation, QueriesAreAnsweredFromTheImageThatWasKept)
{
    for (std::size_t n = 1; n < 10; ++n) {
        auto board = fromBytes<GSPBBoardInfo>(ports(2));
        const Bytes larger = ports(200);
        try {
            failAllocation(n);
            board.setSerialized(larger.data(), static_cast<unsigned int>(larger.size()));
            failAllocation(0);
            break;
        } catch (const std::bad_alloc&) {
            std::vector<int> numbers;
            board.getPCIBoxPorts(numbers);
            EXPECT_EQ(numbers, std::vector<int>({0, 1}));
            EXPECT_EQ(board.getConnectedPCIBox(1), 4);
            EXPECT_EQ(board.getSASPortStatus(1), 0x0504);
            EXPECT_EQ(thrownBy([&] { board.getConnectedPCIBox(2); }).substr(0, 10), "1:83:0x0F0");
        }
    }
}

TEST(FailedAllocation, AreaThatCannotBeSplitLeavesNothingBehind)
{
    // Under the address sanitizer, a field that was created and not stored would be reported.
    MemoryDevice device(areaOf(24, {0x19, 0xC2, 'M', 'F', 0xC2, 'P', 'R', 0xC1}));
    bool isOpened = false;
    for (std::size_t n = 1; n < 200 && !isOpened; ++n) {
        try {
            failAllocation(n);
            const FRUArea area(device, 0, FRU_AREA_PRODUCT, FRUArea::CSUM_CHECK);
            failAllocation(0);
            isOpened = true;
        } catch (const std::bad_alloc&) {
            failAllocation(0);
        }
    }
    EXPECT_TRUE(isOpened);
}
