// SPDX-License-Identifier: Apache-2.0
#include <recordkit/serial/FixedSizeSerializableObject.h>

#include <gtest/gtest.h>

#include "support/Bytes.h"
#include "support/Failures.h"

using namespace testing_support;

namespace {

class FourBytes : public TAVLib::FixedSizeSerializableObject {
public:
    unsigned int getSerializedSize() const override { return sizeof image; }

protected:
    unsigned char* getInternalData() const override { return image; }

private:
    mutable unsigned char image[4] = {};
};

}

TEST(FixedSizeSerializableObject, NewObjectIsAllZero)
{
    EXPECT_EQ(imageOf(FourBytes()), Bytes({0, 0, 0, 0}));
}

TEST(FixedSizeSerializableObject, TakesAnImageOfItsSize)
{
    EXPECT_EQ(imageOf(fromBytes<FourBytes>({1, 2, 3, 4})), Bytes({1, 2, 3, 4}));
}

TEST(FixedSizeSerializableObject, TakesTheLeadingBytesOfALongerImage)
{
    FourBytes object;
    EXPECT_TRUE(load(object, {1, 2, 3, 4, 5}));
    EXPECT_EQ(imageOf(object), Bytes({1, 2, 3, 4}));
}

TEST(FixedSizeSerializableObject, RefusesAShorterImageAndStaysAsItWas)
{
    TraceCapture trace;
    auto object = fromBytes<FourBytes>({1, 2, 3, 4});
    EXPECT_FALSE(load(object, {9, 9, 9}));
    EXPECT_FALSE(load(object, {}));
    EXPECT_EQ(imageOf(object), Bytes({1, 2, 3, 4}));
    EXPECT_EQ(trace.lines(), Lines());
}

TEST(FixedSizeSerializableObject, RefusesAShorterBufferAndLeavesItUntouched)
{
    TraceCapture trace;
    const auto object = fromBytes<FourBytes>({1, 2, 3, 4});
    Bytes buffer(6, 0xEE);
    EXPECT_EQ(object.getSerialized(buffer.data(), 3), 0U);
    EXPECT_EQ(buffer, Bytes(6, 0xEE));
    unsigned char* volatile nowhere = nullptr;
    EXPECT_EQ(object.getSerialized(nowhere, 0), 0U);
    EXPECT_EQ(trace.lines(), Lines());
}

TEST(FixedSizeSerializableObject, WritesExactlyItsSizeIntoALongerBuffer)
{
    const auto object = fromBytes<FourBytes>({1, 2, 3, 4});
    Bytes buffer(6, 0xEE);
    EXPECT_EQ(object.getSerialized(buffer.data(), 6), 4U);
    EXPECT_EQ(buffer, Bytes({1, 2, 3, 4, 0xEE, 0xEE}));
}
