// SPDX-License-Identifier: Apache-2.0
#include "SELSlotSearch.h"

#include <algorithm>

namespace TAVLib::RecordKit {

using namespace SELFileLayout;

namespace {

/// The first of `count` slots with that id; `count` if none has it.
unsigned long indexOf(unsigned short wanted, const unsigned char* slots, unsigned long count)
{
    unsigned long index = 0;
    while (index < count && idOf(slots + index * SLOT_SIZE) != wanted) {
        ++index;
    }
    return index;
}

/// Continues the search slot by slot from `addr` until the file can no longer be read.
BMCSELDataFile::Code searchBySlot(SELSlotSource& source, unsigned short wanted,
                                  unsigned char (&found)[SLOT_SIZE], unsigned long& addr)
{
    if (addr != 0 && !source.seek(addr)) {
        return BMCSELDataFile::POSITION_FAILED;
    }
    for (;;) {
        std::fill_n(found, SLOT_SIZE, static_cast<unsigned char>(0));
        const long count = source.read(found, SLOT_SIZE);
        if (count <= 0) {
            return BMCSELDataFile::NOT_FOUND;
        }
        // A short slot at the end of a file still has a record id if it reaches that far.
        if (count < static_cast<long>(SLOT_SIZE) &&
            !source.hasRecordId(found, static_cast<unsigned int>(count))) {
            return BMCSELDataFile::READ_FAILED;
        }
        if (idOf(found) == wanted) {
            return BMCSELDataFile::SUCCESS;
        }
        addr += SLOT_SIZE;
        if (!source.seek(addr)) {
            return BMCSELDataFile::POSITION_FAILED;
        }
    }
}

}

SELSlotSource::~SELSlotSource() = default;

bool SELSlotSource::hasRecordId(const unsigned char* slot, unsigned int count) const
{
    BMCSELEntryMessage entry;
    entry.setSerialized(slot, count);
    return entry.SELEntry::getSerializedSize() >= RECORD_ID_END;
}

unsigned char* SELSlotBuffer::get()
{
    if (bytes == nullptr) {
        // Not on the stack, because the board's tasks have little of it; not zeroed, which would
        // cost as much as reading.
        bytes.reset(new unsigned char[BYTES_AT_ONCE]);
    }
    return bytes.get();
}

BMCSELDataFile::Code searchSlots(SELSlotSource& source, unsigned short wanted,
                                 unsigned char (&found)[SLOT_SIZE], unsigned long& addr)
{
    addr = 0;
    long count = 0;
    do {
        const unsigned char* slots = nullptr;
        count = source.lookAt(addr, slots);
        const unsigned long whole = count < 0 ? 0 : static_cast<unsigned long>(count) / SLOT_SIZE;
        const unsigned long index = indexOf(wanted, slots, whole);
        addr += index * SLOT_SIZE;
        if (index < whole) {
            std::copy_n(slots + index * SLOT_SIZE, SLOT_SIZE, found);
            return BMCSELDataFile::SUCCESS;
        }
    } while (count == static_cast<long>(BYTES_AT_ONCE));
    // The slot-by-slot search handles everything else: a short last slot, an error, a file that
    // cannot be read at a position.
    return searchBySlot(source, wanted, found, addr);
}

BMCSELDataFile::Code findTail(SELSlotSource& source, unsigned long& addr)
{
    unsigned char slot[SLOT_SIZE];
    const BMCSELDataFile::Code code = searchSlots(source, EMPTY_RECORD_ID, slot, addr);
    if (code == BMCSELDataFile::NOT_FOUND && addr == FILE_SIZE) {
        return BMCSELDataFile::FILE_FULL;
    }
    if (code == BMCSELDataFile::SUCCESS && !isEmpty(slot)) {
        return BMCSELDataFile::DAMAGED_TAIL;
    }
    return code;
}

}
