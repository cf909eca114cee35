// SPDX-License-Identifier: Apache-2.0
#include <recordkit/sel/SELEntry.h>

#include <algorithm>
#include <cstdio>

#include <recordkit/serial/BitField.h>
#include <recordkit/serial/Failure.h>
#include <recordkit/serial/ImageCopy.h>

namespace TAVLib::RecordKit {

namespace {

constexpr const char* CLASS_NAME = "SELEntry";

constexpr unsigned char FIRST_CONTROLLER = 0x20;
constexpr unsigned char SECOND_CONTROLLER = 0x24;
constexpr unsigned char UNKNOWN_GENERATOR = 0;

/// The generator id byte whose events always come from LUN 1.
constexpr unsigned char PINNED_GENERATOR_ID = 0x5F;
constexpr unsigned char PINNED_LUN = 1;

bool isSlaveAddress(unsigned char generatorId1)
{
    return get_bit(generatorId1, 0, 1) == 0;
}

/// The controller that a generator id maps to, UNKNOWN_GENERATOR for an unlisted byte of system
/// software.
unsigned char controllerOf(unsigned char generatorId1)
{
    if (isSlaveAddress(generatorId1)) {
        return generatorId1;
    }
    switch (generatorId1) {
    case PINNED_GENERATOR_ID:
    case 0x71:
    case 0x81:
        return SECOND_CONTROLLER;
    case 0x01:
    case 0x37:
    case 0x41:
        return FIRST_CONTROLLER;
    default:
        return UNKNOWN_GENERATOR;
    }
}

bool isKnownGenerator(unsigned char generatorId1)
{
    return isSlaveAddress(generatorId1) || controllerOf(generatorId1) != UNKNOWN_GENERATOR;
}

}

unsigned int SELEntry::getSerialized(unsigned char* buf, unsigned int size) const
{
    // Not the virtual size: derived classes use this for this class's part of their image.
    return copyImage(SEL_ENTRY_LOCATION, "SELEntry::getSerialized", image,
                     SELEntry::getSerializedSize(), buf, size);
}

bool SELEntry::setSerialized(const unsigned char* data, unsigned int size)
{
    if (size < HEADER_SIZE) {
        traceLengthError(SEL_ENTRY_LOCATION, "SELEntry::setSerialized", size, HEADER_SIZE);
        return false;
    }
    const unsigned int taken = std::min<unsigned int>(size, IMAGE_SIZE);
    std::copy_n(data, taken, image);
    recordLength = static_cast<int>(taken - HEADER_SIZE);
    return true;
}

std::string SELEntry::printSELData() const
{
    requireRecordLength(RECORD_SIZE);
    char digits[2 * RECORD_SIZE + 1] = {};
    for (unsigned int i = 0; i < RECORD_SIZE; ++i) {
        std::snprintf(digits + 2 * i, 3, "%02x", image[HEADER_SIZE + i]);
    }
    return digits;
}

unsigned char SELEntry::getSpecifiedBytePosData(int pos) const
{
    requireRecordLength(pos);
    return pos < -1 ? 0 : image[pos + 1];
}

unsigned char SELEntry::getSlaveAddress() const
{
    requireRecordLength(GENERATOR_ID_1);
    const unsigned char generatorId1 = at(GENERATOR_ID_1);
    if (!isKnownGenerator(generatorId1)) {
        throwFieldError(SEL_ENTRY_LOCATION, "Get Slave Address", "GeneratorID_byte1", generatorId1);
    }
    return controllerOf(generatorId1);
}

unsigned char SELEntry::getLUN() const
{
    requireRecordLength(GENERATOR_ID_2);
    const unsigned char generatorId1 = at(GENERATOR_ID_1);
    const unsigned char generatorId2 = at(GENERATOR_ID_2);
    if (!isKnownGenerator(generatorId1)) {
        // Callers know this report by the second byte, though its label names the first.
        throwFieldError(SEL_ENTRY_LOCATION, "Get LUN", "GeneratorID_byte1", generatorId2);
    }
    return generatorId1 == PINNED_GENERATOR_ID ? PINNED_LUN : get_bit(generatorId2, 0, 2);
}

void SELEntry::appendPart(unsigned char* end, unsigned int rest, const unsigned char* part,
                          unsigned int partSize)
{
    const unsigned int held = std::min(rest, partSize);
    std::copy_n(part, held, end);
    std::fill_n(end + held, rest - held, static_cast<unsigned char>(0));
}

void SELEntry::requireRecordLength(int needed) const
{
    if (needed > recordLength) {
        throwLengthError(SEL_ENTRY_LOCATION, CLASS_NAME, recordLength, needed);
    }
}

}
