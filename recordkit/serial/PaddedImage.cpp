// SPDX-License-Identifier: Apache-2.0
#include <recordkit/serial/PaddedImage.h>

namespace TAVLib {

namespace {

/// The furthest any class reads past its image is PCIBOXInfo: a last block with 255 slots begins in
/// the image (513 bytes), and 254 blocks of 3 zero bytes follow. GSPBBoardInfo reads up to 1031
/// bytes from the start.
constexpr std::size_t PADDING = 2048;

}

bool setSerializedPadded(SerializableObject& object, const std::vector<unsigned char>& image)
{
    std::vector<unsigned char> padded(image);
    padded.resize(image.size() + PADDING, 0);
    return object.setSerialized(padded.data(), static_cast<unsigned int>(image.size()));
}

}
