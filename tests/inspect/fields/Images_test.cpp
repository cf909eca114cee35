// SPDX-License-Identifier: Apache-2.0
// Every class with an image: what is refused, what is taken, what stays untouched.
#include <gtest/gtest.h>
#include <map>

#include <recordkit/inspect/fields/RecordClass.h>
#include <recordkit/platform/PException.h>
#include <recordkit/serial/PaddedImage.h>

#include "Samples.h"
#include "support/Bytes.h"
#include "support/Failures.h"

using namespace recordkit::inspect;
using namespace testing_support;

namespace {

/// Two images that differ, and the length from which on the second one is accepted.
struct Sample {
    Bytes first;
    Bytes second;
    std::size_t least;
    std::size_t most = 1000;         ///< longer ones are refused
    bool isHalfTakenAtLeast = false; ///< refused images may change the object from 32 bytes on
    bool isCutAtWill = false;        ///< any length above the least gives an image of its own
};

const Bytes SLOTS_1 = Bytes(8, 1) + Bytes({2, 1, 2, 3, 4});
const Bytes SLOTS_2 = Bytes(8, 2) + Bytes({3, 9, 8, 7, 6, 5, 4});
const Bytes PORTS_1 = Bytes(8, 1) + Bytes({1, 5, 6, 0, 0});
const Bytes PORTS_2 = Bytes(8, 2) + Bytes({0, 1, 7, 8, 0});
const Bytes BOX_1 = Bytes(8, 1) + Bytes({1, 0, 0, 0, 1}) + Bytes({4, 1, 1, 0x34, 0x12});
const Bytes BOX_2 = Bytes(8, 2) + Bytes({1, 0, 0, 0, 1}) + Bytes({5, 2, 2, 1, 2, 3, 4});

Bytes sensor(std::size_t fixed, unsigned int first, unsigned char string)
{
    Bytes image = sequence(fixed, first);
    image[fixed - 1] = static_cast<unsigned char>(0xC0 | string);
    return image + sequence(string, 'A' + first);
}

Sample entry(std::size_t size)
{
    Sample sample = {sequence(size, 1), sequence(size, 0x55), 2};
    sample.isCutAtWill = true;
    return sample;
}

Sample raw(std::size_t size)
{
    Sample sample = entry(size);
    sample.least = 0;
    return sample;
}

/// The classes whose images are not all of one size.
const std::map<std::string, Sample> SAMPLES = {
    {"PartitionInfo", {{0, 3, 1, 2, 3}, {9, 2, 7, 8}, 2, 14}},
    {"IOUBoardInfo", {SLOTS_1, SLOTS_2, 15}},
    {"SASUBoardInfo", {SLOTS_1, SLOTS_2, 15}},
    {"GSPBBoardInfo", {PORTS_1, PORTS_2, 13}},
    {"PCIBOXInfo", {BOX_1, BOX_2, 18}}, // one byte a slot is enough
    {"SELEntry", entry(18)},
    {"OEMSELEntry", entry(74)},
    {"BMCSELEntry", entry(130)},
    {"BMCSELEntryMessage", entry(138)},
    {"SELEntryLongText",
     {Bytes(14, 1) + textBytes("text"), Bytes(14, 2) + textBytes("other"), 15, 1000, false, true}},
    {"BMCLog", raw(135)},
    {"BMCMemoryImage", raw(131)},
    {"FullSensorRecord", {sensor(48, 1, 3), sensor(48, 7, 5), 53, 1000, true}},
    {"CompactSensorRecord", {sensor(32, 1, 3), sensor(32, 7, 5), 37, 1000, true}},
};

Sample sampleOf(const RecordClass& recordClass)
{
    const auto found = SAMPLES.find(recordClass.name);
    if (found != SAMPLES.end()) {
        return found->second;
    }
    const std::size_t size = recordClass.sizes.least;
    EXPECT_EQ(size, recordClass.sizes.most) << recordClass.name;
    return {sequence(size, 1), sequence(size, 0x55), size};
}

/// False also for a class that throws.
bool take(TAVLib::SerializableObject& object, const Bytes& image)
{
    try {
        return TAVLib::setSerializedPadded(object, image);
    } catch (const TAVLib::PException&) {
        return false;
    }
}

class EveryImage : public testing::TestWithParam<const RecordClass*> {
protected:
    const RecordClass& recordClass = *GetParam();
    const TraceCapture trace;
};

}

TEST_P(EveryImage, TakesNoMoreThanItsLargestSize)
{
    // The largest counts and lengths; PartitionInfo takes at most twelve ids.
    const std::size_t most = recordClass.sizes.most;
    const bool isFilled = take(*recordClass.create(), Bytes(most, 0xFF));
    const unsigned char fill = isFilled ? 0xFF : 12;
    EXPECT_EQ(takenSize(recordClass, Bytes(most, fill)), most);
    const Bytes longer(most + 1, fill);
    if (take(*recordClass.create(), longer)) {
        EXPECT_EQ(takenSize(recordClass, longer), most);
    }
}

TEST_P(EveryImage, RoundTripsItsImage)
{
    const Sample sample = sampleOf(recordClass);
    for (const Bytes& image : {sample.first, sample.second}) {
        const auto object = recordClass.create();
        ASSERT_TRUE(take(*object, image));
        EXPECT_EQ(object->getSerializedSize(), image.size());
        EXPECT_EQ(imageOf(*object), image);
    }
}

TEST_P(EveryImage, TakesWhatIsLongEnoughAndRefusesTheRest)
{
    const Sample sample = sampleOf(recordClass);
    const std::size_t size = sample.second.size();
    for (std::size_t length = 0; length <= size + 3; ++length) {
        const auto object = recordClass.create();
        ASSERT_TRUE(take(*object, sample.first));
        Bytes image = sample.second;
        image.resize(length, 0xEE);
        const bool isTaken = length >= sample.least && length <= sample.most;
        EXPECT_EQ(take(*object, image), isTaken) << length;
        if (isTaken && length >= size) {
            // Bytes after it are ignored.
            const std::size_t kept =
                sample.isCutAtWill && object->getSerializedSize() > size ? length : size;
            EXPECT_EQ(imageOf(*object), part(image, 0, kept)) << length;
        } else if (!isTaken && !(sample.isHalfTakenAtLeast && length >= 32) &&
                   std::string(recordClass.name) != "SELEntryLongText") {
            EXPECT_EQ(imageOf(*object), sample.first) << length;
        }
    }
}

TEST_P(EveryImage, ShortBufferStaysUntouched)
{
    const auto object = recordClass.create();
    const Bytes image = sampleOf(recordClass).first;
    ASSERT_TRUE(take(*object, image));
    for (std::size_t length = 0; length <= image.size() + 3; ++length) {
        Bytes buffer(image.size() + 3, 0xEE);
        const unsigned int written =
            object->getSerialized(buffer.data(), static_cast<unsigned int>(length));
        if (length < image.size()) {
            EXPECT_EQ(written, 0U);
            EXPECT_EQ(buffer, Bytes(image.size() + 3, 0xEE)) << length;
        } else {
            EXPECT_EQ(written, image.size());
            EXPECT_EQ(buffer, image + Bytes(3, 0xEE));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Classes, EveryImage, testing::ValuesIn(recordClasses()),
                         [](const auto& each) { return std::string(each.param->name); });
