// SPDX-License-Identifier: Apache-2.0
#include <recordkit/sel/BMCSELEntryMessage.h>

#include <algorithm>

#include <recordkit/serial/ByteOrder.h>
#include <recordkit/serial/Failure.h>

namespace TAVLib::RecordKit {

namespace {

constexpr unsigned int SERIAL_NUMBER_LIMIT = OEMSELEntry::SERIAL_NUMBER_SIZE;
constexpr unsigned int LONG_SERIAL_NUMBER_LIMIT = BMCSELEntryMessage::LONG_SERIAL_NUMBER_SIZE;
constexpr unsigned char ZERO = 0;

}

void BMCSELEntryMessage::convert()
{
    resetTrailer();
    BMCSELEntry::convert();
}

int BMCSELEntryMessage::convert(OEMSELEntry& src)
{
    resetTrailer();
    return BMCSELEntry::convert(src);
}

unsigned int BMCSELEntryMessage::getSerializedSize() const
{
    return BMCSELEntry::getSerializedSize() + static_cast<unsigned int>(trailerLength);
}

unsigned int BMCSELEntryMessage::getSerialized(unsigned char* buf, unsigned int size) const
{
    const unsigned int needed = getSerializedSize();
    if (needed > size) {
        traceLengthError(BMC_SEL_ENTRY_MESSAGE_LOCATION, "BMCSELEntryMessage::getSerialized", size,
                         needed);
        return 0;
    }
    const unsigned int used = BMCSELEntry::getSerialized(buf, BMCSELEntry::getSerializedSize());
    if (used == 0) {
        return 0;
    }
    appendPart(buf + used, needed - used, trailer, TRAILER_SIZE);
    return needed;
}

bool BMCSELEntryMessage::setSerialized(const unsigned char* data, unsigned int size)
{
    if (!BMCSELEntry::setSerialized(data, size)) {
        traceOperationError(BMC_SEL_ENTRY_MESSAGE_LOCATION,
                            "BMCSELEntryMessage::setSerialized(BMCSELEntry::setSerialized)");
        return false;
    }
    const unsigned int used = BMCSELEntry::getSerializedSize();
    // A record without a block keeps the existing block, so that the object may have more bytes
    // than it was given: then the trailer counts as complete, and nothing is read past the caller's
    // bytes.
    if (size != used) {
        const unsigned int taken =
            size < used ? 0 : std::min<unsigned int>(size - used, TRAILER_SIZE);
        std::copy_n(data + used, taken, trailer);
        trailerLength = static_cast<int>(size < used ? TRAILER_SIZE : taken);
    }
    return true;
}

unsigned short BMCSELEntryMessage::getPartitionBitmask() const
{
    return hasOwnBitmask() ? readLE16(trailer + TRAILER_PARTITION_BITMASK)
                           : BMCSELEntry::getPartitionBitmask();
}

bool BMCSELEntryMessage::isPartitionValid(unsigned char p)
{
    return isPartitionSet(getPartitionBitmask(), p);
}

std::string BMCSELEntryMessage::getSerialNo()
{
    return BMCSELEntry::getSerialNo(hasOwnBitmask() ? LONG_SERIAL_NUMBER_LIMIT
                                                    : SERIAL_NUMBER_LIMIT);
}

unsigned int BMCSELEntryMessage::getEventData(unsigned char* out)
{
    if (hasOwnBitmask()) {
        return BMCSELEntry::getSerialized(out, BMCSELEntry::getSerializedSize());
    }
    // Bytes that the image lacks are zero: the storage may still contain those of an earlier event.
    const unsigned int recordSize = SELEntry::getSerializedSize();
    std::fill(std::copy_n(getImage(), recordSize, out), out + IMAGE_SIZE, ZERO);
    unsigned char held[BMC_BLOCK_SIZE] = {};
    std::copy_n(getBlock(), BMCSELEntry::getSerializedSize() - recordSize, held);
    unsigned char* const oemData = out + IMAGE_SIZE;
    std::copy_n(held + BLOCK_EVENT_DATA, EVENT_DATA_SIZE, oemData);
    std::copy_n(held + BLOCK_PARTITION_BITMASK, BMC_BLOCK_SIZE - BLOCK_PARTITION_BITMASK,
                oemData + EXTENDED_PARTITION_BITMASK);
    return OEM_IMAGE_SIZE;
}

void BMCSELEntryMessage::resetTrailer()
{
    trailerLength = TRAILER_SIZE;
    trailer[TRAILER_KIND] = 0;
}

}
