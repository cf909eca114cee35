// SPDX-License-Identifier: Apache-2.0
#include <recordkit/sensor/RecordSensorCommon.h>

#include <algorithm>

#include <recordkit/serial/Failure.h>

namespace TAVLib::RecordKit {

namespace {

/// Copies `count` bytes of a string that has 16; bytes beyond these are 0.
void copyString(const unsigned char* string, unsigned int count, unsigned char* out)
{
    const unsigned int held = std::min(count, RecordSensorCommon::VARIABLE_FIELD_LENGTH);
    std::fill_n(std::copy_n(string, held, out), count - held, static_cast<unsigned char>(0));
}

}

RecordSensorCommon::~RecordSensorCommon() = default;

void RecordSensorCommon::setChannelNumber(unsigned char channel)
{
    common[OWNER_LUN] =
        static_cast<unsigned char>(get_bit(channel, 0, 4) << 4 | (common[OWNER_LUN] & 0x0F));
}

void RecordSensorCommon::setSensorOwnerLUN(unsigned char lun)
{
    common[OWNER_LUN] = static_cast<unsigned char>(get_bit(lun, 0, 2) | (common[OWNER_LUN] & 0xFC));
}

void RecordSensorCommon::setIDStringBytes(const unsigned char* bytes, unsigned int len,
                                          unsigned char type)
{
    if (len > VARIABLE_FIELD_LENGTH) {
        throwIndexError(RECORD_SENSOR_COMMON_LOCATION, "setIDStringBytes(len)",
                        static_cast<long>(len));
    }
    setIDStringLength(len);
    setIDStringType(type);
    std::copy_n(bytes, len, getIDStringStruct() + 1);
    setRecordLength(getCurrentRecordLength());
}

unsigned int RecordSensorCommon::getIDStringBytes(unsigned char* buf, unsigned int size) const
{
    const unsigned int count = std::min(getIDStringLength(), size);
    copyString(getIDStringStructConst() + 1, count, buf);
    return count;
}

unsigned char RecordSensorCommon::getIDStringType() const
{
    return get_bit(*getIDStringStructConst(), 6, 2);
}

unsigned int RecordSensorCommon::getIDStringLength() const
{
    return *getIDStringStructConst() & LENGTH_BITS;
}

void RecordSensorCommon::setIDStringType(unsigned char type)
{
    unsigned char& byte = *getIDStringStruct();
    byte = static_cast<unsigned char>(get_bit(type, 0, 2) << 6 | (byte & 0x3F));
}

void RecordSensorCommon::setIDStringLength(unsigned int length)
{
    unsigned char& byte = *getIDStringStruct();
    byte =
        static_cast<unsigned char>(std::min(length, VARIABLE_FIELD_LENGTH) | (byte & ~LENGTH_BITS));
}

unsigned int RecordSensorCommon::giveImage(unsigned char* buffer, unsigned int length,
                                           unsigned int fixedSize) const
{
    const unsigned int size = fixedSize + getIDStringLength();
    if (size > length) {
        return 0;
    }
    copyString(common + fixedSize, getIDStringLength(), std::copy_n(common, fixedSize, buffer));
    return size;
}

}
