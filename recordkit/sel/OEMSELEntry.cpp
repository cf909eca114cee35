// SPDX-License-Identifier: Apache-2.0
#include <recordkit/sel/OEMSELEntry.h>

#include <algorithm>

#include <recordkit/platform/CommonUtil.h>
#include <recordkit/serial/BitField.h>
#include <recordkit/serial/ByteOrder.h>
#include <recordkit/serial/Failure.h>

namespace TAVLib::RecordKit {

namespace {

constexpr const char* CLASS_NAME = "OEMSELEntry";

/// Extended bytes that the accessors need.
constexpr int BITMASK_NEEDS = 15;
constexpr int PART_NUMBER_NEEDS = 34;
constexpr int SERIAL_NUMBER_NEEDS = 45;

/// Encodings in bits 7..6 of a type/length byte.
enum FieldType { BINARY = 0, BCD_PLUS = 1, PACKED_ASCII = 2, TEXT = 3 };

std::string toHex(const unsigned char* data, unsigned int count)
{
    constexpr const char* DIGITS = "0123456789ABCDEF";
    std::string text;
    for (unsigned int i = 0; i < count; ++i) {
        text += DIGITS[data[i] >> 4];
        text += DIGITS[data[i] & 0x0F];
    }
    return text;
}

}

unsigned int OEMSELEntry::getSerializedSize() const
{
    return SELEntry::getSerializedSize() + static_cast<unsigned int>(extendedLength);
}

unsigned int OEMSELEntry::getSerialized(unsigned char* buf, unsigned int size) const
{
    const unsigned int needed = getSerializedSize();
    if (needed > size) {
        traceLengthError(OEM_SEL_ENTRY_LOCATION, "OEMSELEntry::getSerialized", size, needed);
        return 0;
    }
    const unsigned int used = SELEntry::getSerialized(buf, SELEntry::getSerializedSize());
    if (used == 0 || used == needed) {
        return used;
    }
    appendPart(buf + used, needed - used, extended, EXTENDED_SIZE);
    return needed;
}

bool OEMSELEntry::setSerialized(const unsigned char* data, unsigned int size)
{
    if (!SELEntry::setSerialized(data, size)) {
        traceOperationError(OEM_SEL_ENTRY_LOCATION,
                            "OEMSELEntry::setSerialized(SELEntry::setSerialized)");
        return false;
    }
    const unsigned int used = SELEntry::getSerializedSize();
    const unsigned int rest = size - used;
    if (rest != 0) {
        const unsigned int taken = std::min<unsigned int>(rest, EXTENDED_SIZE);
        std::copy_n(data + used, taken, extended);
        extendedLength = static_cast<int>(taken);
    }
    return true;
}

unsigned char OEMSELEntry::getSpecifiedEventData(int n) const
{
    requireExtendedLength(n);
    return n < 1 ? 0 : extended[n - 1];
}

unsigned short OEMSELEntry::getPartitionBitmask() const
{
    requireExtendedLength(BITMASK_NEEDS);
    return readLE16(extended + EXTENDED_PARTITION_BITMASK);
}

bool OEMSELEntry::isPartitionValid(unsigned char p)
{
    return isPartitionSet(getPartitionBitmask(), p);
}

std::string OEMSELEntry::getPartNo()
{
    requireExtendedLength(PART_NUMBER_NEEDS);
    return getFRUData(extended[EXTENDED_PART_NUMBER_TYPE_LENGTH], extended + EXTENDED_PART_NUMBER,
                      PART_NUMBER_SIZE);
}

std::string OEMSELEntry::getSerialNo()
{
    requireExtendedLength(SERIAL_NUMBER_NEEDS);
    return getFRUData(extended[EXTENDED_SERIAL_NUMBER_TYPE_LENGTH],
                      extended + EXTENDED_SERIAL_NUMBER, SERIAL_NUMBER_SIZE);
}

std::string OEMSELEntry::getFRUData(unsigned char typeLength, unsigned char* data,
                                    unsigned int maxLength)
{
    const unsigned int length = get_bit(typeLength, 0, 6);
    if (length <= 1) {
        return "";
    }
    const unsigned int count = std::min(length, maxLength);
    switch (get_bit(typeLength, 6, 2)) {
    case BINARY:
        return toHex(data, count);
    case TEXT:
        return {data, std::find(data, data + count, 0)};
    default:
        return "";
    }
}

bool OEMSELEntry::isPartitionSet(unsigned short bitmask, unsigned char p)
{
    return p < CommonUtil::getMaxPartitionNum() && p < 16 && (bitmask >> p & 1) != 0;
}

void OEMSELEntry::requireExtendedLength(int needed) const
{
    if (needed > extendedLength) {
        throwLengthError(OEM_SEL_ENTRY_LOCATION, CLASS_NAME, extendedLength, needed);
    }
}

}
