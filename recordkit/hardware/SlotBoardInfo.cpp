// SPDX-License-Identifier: Apache-2.0
#include <recordkit/hardware/SlotBoardInfo.h>

#include <algorithm>

#include <recordkit/serial/Failure.h>

#include "StatusWords.h"

namespace TAVLib::RecordKit {

unsigned short SlotBoardInfo::getPCISlotStatus(unsigned int slot) const
{
    return statusOf(slotStatus, slot, location, "getPCISlotStatus()", "not found PCISlot");
}

void SlotBoardInfo::getPCISlots(std::vector<int>& slots)
{
    numberElements(slots, slotStatus.size());
}

unsigned int SlotBoardInfo::getSerialized(unsigned char* buffer, unsigned int length) const
{
    const unsigned int size = getSerializedSize();
    if (size > length) {
        traceLengthError(location, "getSerialized", length, size);
        return 0;
    }
    writeWords(slotStatus, std::copy_n(header, HEADER_SIZE, buffer));
    return size;
}

bool SlotBoardInfo::setSerialized(const unsigned char* data, unsigned int length)
{
    const unsigned int needed = HEADER_SIZE + 2U * data[SLOT_COUNT];
    if (needed > length) {
        traceLengthError(location, "setSerialized", length, needed);
        return false;
    }
    // Read first: if that fails, the count still matches the words.
    readWords(data + HEADER_SIZE, data[SLOT_COUNT], slotStatus);
    std::copy_n(data, HEADER_SIZE, header);
    return true;
}

}
