// SPDX-License-Identifier: Apache-2.0
#include "Samples.h"

#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/platform/PException.h>
#include <recordkit/serial/PaddedImage.h>

#include "support/Bytes.h"

namespace testing_support {

namespace {

/// Enough for the lists of every class while their counts are small.
constexpr std::size_t LENGTH = 2048;
/// The longest image of a class that refuses longer ones.
constexpr std::size_t SHORT_LENGTH = 14;
/// Bytes that an object may keep of an image.
constexpr std::size_t MOST_KEPT = 256;

}

std::optional<DecodedFields> decoded(const RecordClass& recordClass, const Bytes& image)
{
    try {
        return recordkit::inspect::decodeRecord(recordClass, image);
    } catch (const recordkit::inspect::Error&) {
        return std::nullopt;
    }
}

std::size_t keptSize(const RecordClass& recordClass, const Bytes& image)
{
    const auto object = recordClass.create();
    try {
        return TAVLib::setSerializedPadded(*object, image) ? object->getSerializedSize() : 0;
    } catch (const TAVLib::PException&) {
        return 0;
    }
}

Bytes Samples::next()
{
    while (true) {
        Bytes image = candidate();
        ++made;
        if (isTaken(image)) {
            return image;
        }
        image.resize(SHORT_LENGTH);
        if (isTaken(image)) {
            return image;
        }
    }
}

bool Samples::isTaken(const Bytes& image) const
{
    const std::size_t kept = keptSize(recordClass, image);
    return kept != 0 && kept <= MOST_KEPT;
}

Bytes Samples::candidate()
{
    switch (made) {
    case 0:
        return Bytes(LENGTH, 0);
    case 1:
        return Bytes(LENGTH, 0xFF);
    case 2:
        return sequence(LENGTH, 1);
    case 3:
        return sequence(LENGTH, 0x55);
    default:
        break;
    }
    // All bytes small, or one in four; or none.
    const unsigned int kind = random() % 3;
    Bytes image(LENGTH);
    for (unsigned char& byte : image) {
        const unsigned int value = random();
        const bool isSmall = kind == 0 || (kind == 1 && (value >> 8 & 3) == 0);
        byte = static_cast<unsigned char>(isSmall ? value & 3 : value);
    }
    return image;
}

}
