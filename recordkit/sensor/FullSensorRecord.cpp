// SPDX-License-Identifier: Apache-2.0
#include <recordkit/sensor/FullSensorRecord.h>

#include <algorithm>

namespace TAVLib::RecordKit {

FullSensorRecord::FullSensorRecord() : RecordSensorCommon(image)
{
}

FullSensorRecord::~FullSensorRecord() = default;

FullSensorRecord::FullSensorRecord(const FullSensorRecord& other)
    : RecordSensorCommon(image), SerializableObject(other)
{
    std::copy_n(other.image, SIZE, image);
}

FullSensorRecord& FullSensorRecord::operator=(const FullSensorRecord& other)
{
    if (this != &other) {
        std::copy_n(other.image, SIZE, image);
    }
    return *this;
}

unsigned char FullSensorRecord::getCurrentRecordLength() const
{
    return static_cast<unsigned char>(getSerializedSize() - HEADER_SIZE);
}

unsigned int FullSensorRecord::getSerialized(unsigned char* buf, unsigned int size) const
{
    return giveImage(buf, size, FIXED_SIZE);
}

}
