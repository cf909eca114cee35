// SPDX-License-Identifier: Apache-2.0
#include <recordkit/sensor/CompactSensorRecord.h>

#include <algorithm>

namespace TAVLib::RecordKit {

CompactSensorRecord::CompactSensorRecord() : RecordSensorCommon(image)
{
}

CompactSensorRecord::~CompactSensorRecord() = default;

CompactSensorRecord::CompactSensorRecord(const CompactSensorRecord& other)
    : RecordSensorCommon(image), SerializableObject(other)
{
    std::copy_n(other.image, SIZE, image);
}

CompactSensorRecord& CompactSensorRecord::operator=(const CompactSensorRecord& other)
{
    if (this != &other) {
        std::copy_n(other.image, SIZE, image);
    }
    return *this;
}

unsigned char CompactSensorRecord::getCurrentRecordLength() const
{
    return static_cast<unsigned char>(getSerializedSize() - HEADER_SIZE);
}

unsigned int CompactSensorRecord::getSerialized(unsigned char* buf, unsigned int size) const
{
    return giveImage(buf, size, FIXED_SIZE);
}

}
