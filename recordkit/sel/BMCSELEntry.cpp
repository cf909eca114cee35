// SPDX-License-Identifier: Apache-2.0
#include <recordkit/sel/BMCSELEntry.h>

#include <algorithm>

#include <recordkit/serial/ByteOrder.h>
#include <recordkit/serial/Failure.h>

namespace TAVLib::RecordKit {

namespace {

constexpr const char* CLASS_NAME = "BMCSELEntry";

/// Block bytes that the accessors need.
constexpr int BITMASK_NEEDS = 71;
constexpr int PART_NUMBER_NEEDS = 90;
constexpr int SERIAL_NUMBER_NEEDS = 103;

/// 8-bit text of 18 bytes.
constexpr unsigned char PART_NUMBER_TYPE_LENGTH = 0xD2;

/// Extended bytes that follow the OEM event data.
constexpr unsigned int EXTENDED_REST =
    OEMSELEntry::EXTENDED_SIZE - OEMSELEntry::EXTENDED_PARTITION_BITMASK;

}

void BMCSELEntry::convert()
{
    fillBlock(getExtendedData());
}

int BMCSELEntry::convert(OEMSELEntry& src)
{
    unsigned char scratch[256] = {};
    std::fill_n(block, BMC_BLOCK_SIZE, static_cast<unsigned char>(0));

    const unsigned int size = src.getSerializedSize();
    if (size > sizeof scratch || src.getSerialized(scratch, size) == 0) {
        traceOperationError(BMC_SEL_ENTRY_LOCATION, "convert from OEMSELEntry to BMCSELEntry");
        return 0;
    }
    // Copy only the record here; OEM data are expected only after a complete record.
    const SELEntry& record = src;
    if (!SELEntry::setSerialized(scratch, record.SELEntry::getSerializedSize())) {
        traceOperationError(BMC_SEL_ENTRY_LOCATION, "convert from OEMSELEntry to BMCSELEntry");
        return 0;
    }
    fillBlock(scratch + IMAGE_SIZE);
    return 1;
}

void BMCSELEntry::setPartNo(std::string& partNo)
{
    if (partNo.size() > PART_NUMBER_SIZE) {
        traceOperationError(BMC_SEL_ENTRY_LOCATION, "set New Part Number because of length over.");
        return;
    }
    block[BLOCK_PART_NUMBER_TYPE_LENGTH] = PART_NUMBER_TYPE_LENGTH;
    unsigned char* const field = block + BLOCK_PART_NUMBER;
    std::fill_n(field, PART_NUMBER_SIZE, static_cast<unsigned char>(0));
    std::copy(partNo.begin(), partNo.end(), field);
}

unsigned int BMCSELEntry::getSerializedSize() const
{
    return SELEntry::getSerializedSize() + static_cast<unsigned int>(blockLength);
}

unsigned int BMCSELEntry::getSerialized(unsigned char* buf, unsigned int size) const
{
    const unsigned int needed = BMCSELEntry::getSerializedSize();
    if (needed > size) {
        traceLengthError(BMC_SEL_ENTRY_LOCATION, "BMCSELEntry::getSerialized", size, needed);
        return 0;
    }
    const unsigned int used = SELEntry::getSerialized(buf, SELEntry::getSerializedSize());
    if (used == 0) {
        traceOperationError(BMC_SEL_ENTRY_LOCATION,
                            "BMCSELEntry::getSerialized(SELEntry::getSerialized)");
        return 0;
    }
    std::copy_n(block, needed - used, buf + used);
    return needed;
}

bool BMCSELEntry::setSerialized(const unsigned char* data, unsigned int size)
{
    if (!SELEntry::setSerialized(data, size)) {
        traceOperationError(BMC_SEL_ENTRY_LOCATION,
                            "BMCSELEntry::setSerialized(SELEntry::setSerialized)");
        return false;
    }
    const unsigned int used = SELEntry::getSerializedSize();
    const unsigned int rest = size - used;
    if (rest != 0) {
        const unsigned int taken = std::min<unsigned int>(rest, BMC_BLOCK_SIZE);
        std::copy_n(data + used, taken, block);
        blockLength = static_cast<int>(taken);
    }
    return true;
}

unsigned short BMCSELEntry::getPartitionBitmask() const
{
    requireBlockLength(BITMASK_NEEDS);
    return readLE16(block + BLOCK_PARTITION_BITMASK);
}

bool BMCSELEntry::isPartitionValid(unsigned char p)
{
    return isPartitionSet(getPartitionBitmask(), p);
}

std::string BMCSELEntry::getPartNo()
{
    requireBlockLength(PART_NUMBER_NEEDS);
    return getFRUData(block[BLOCK_PART_NUMBER_TYPE_LENGTH], block + BLOCK_PART_NUMBER,
                      PART_NUMBER_SIZE);
}

std::string BMCSELEntry::getSerialNo(unsigned int maxLength)
{
    requireBlockLength(SERIAL_NUMBER_NEEDS);
    return getFRUData(block[BLOCK_SERIAL_NUMBER_TYPE_LENGTH], block + BLOCK_SERIAL_NUMBER,
                      std::min<unsigned int>(maxLength, BMC_BLOCK_SIZE - BLOCK_SERIAL_NUMBER));
}

void BMCSELEntry::fillBlock(const unsigned char* extendedData)
{
    std::fill_n(block, BMC_BLOCK_SIZE, static_cast<unsigned char>(0));
    block[BLOCK_EVENT_DATA_COUNT] = EVENT_DATA_SIZE;
    std::copy_n(extendedData, EVENT_DATA_SIZE, block + BLOCK_EVENT_DATA);
    std::copy_n(extendedData + EXTENDED_PARTITION_BITMASK, EXTENDED_REST,
                block + BLOCK_PARTITION_BITMASK);
    blockLength = BMC_BLOCK_SIZE;
}

void BMCSELEntry::requireBlockLength(int needed) const
{
    if (needed > blockLength) {
        throwLengthError(BMC_SEL_ENTRY_LOCATION, CLASS_NAME, blockLength, needed);
    }
}

}
