// SPDX-License-Identifier: Apache-2.0
#include "Bytes.h"

namespace testing_support {

Bytes imageOf(const TAVLib::SerializableObject& object)
{
    Bytes image(object.getSerializedSize());
    image.resize(object.getSerialized(image.data(), static_cast<unsigned int>(image.size())));
    return image;
}

bool load(TAVLib::SerializableObject& object, const Bytes& bytes)
{
    const Bytes exact(bytes);
    return object.setSerialized(exact.data(), static_cast<unsigned int>(exact.size()));
}

}
