// SPDX-License-Identifier: Apache-2.0
#include "SELSlotSearch.h"

#include <algorithm>
#include <memory>

#include <recordkit/selfile/BMCSELDataFile.h>
#include <recordkit/serial/Failure.h>

namespace TAVLib::RecordKit {

using namespace SELFileLayout;

namespace {

/// Slots that a search reads at a time. One at a time costs seventy times as much; with many more,
/// most would be read in vain while a file is short.
constexpr unsigned int SLOTS_AT_ONCE = 100;
constexpr unsigned int BYTES_AT_ONCE = SLOTS_AT_ONCE * SLOT_SIZE;

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
unsigned int searchBySlot(SELSlotSource& source, unsigned short wanted,
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
        BMCSELEntryMessage entry;
        entry.setSerialized(found, static_cast<unsigned int>(count));
        constexpr unsigned int RECORD_ID_SIZE = 2;
        const unsigned int recordLength = entry.SELEntry::getSerializedSize() - RECORD_ID_OFFSET;
        if (recordLength < RECORD_ID_SIZE) {
            throwLengthError(SEL_ENTRY_LOCATION, "SELEntry", recordLength, RECORD_ID_SIZE);
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

unsigned int searchSlots(SELSlotSource& source, unsigned short wanted,
                         unsigned char (&found)[SLOT_SIZE], unsigned long& addr)
{
    // Not on the stack, because the board's tasks have little of it; not zeroed, which would cost
    // as much as reading.
    const std::unique_ptr<unsigned char[]> slots(new unsigned char[BYTES_AT_ONCE]);
    addr = 0;
    long count = 0;
    do {
        count = source.readAt(addr, slots.get(), BYTES_AT_ONCE);
        const unsigned long whole = count < 0 ? 0 : static_cast<unsigned long>(count) / SLOT_SIZE;
        const unsigned long index = indexOf(wanted, slots.get(), whole);
        addr += index * SLOT_SIZE;
        if (index < whole) {
            std::copy_n(slots.get() + index * SLOT_SIZE, SLOT_SIZE, found);
            return BMCSELDataFile::SUCCESS;
        }
    } while (count == static_cast<long>(BYTES_AT_ONCE));
    // The slot-by-slot search handles everything else: a short last slot, an error, a file that
    // cannot be read at a position.
    return searchBySlot(source, wanted, found, addr);
}

unsigned int judgeTail(unsigned int searchCode, unsigned long addr, const unsigned char* found)
{
    if (searchCode == BMCSELDataFile::NOT_FOUND && addr == FILE_SIZE) {
        return BMCSELDataFile::FILE_FULL;
    }
    if (searchCode != BMCSELDataFile::SUCCESS) {
        return searchCode;
    }
    return isEmpty(found) ? BMCSELDataFile::SUCCESS : BMCSELDataFile::DAMAGED_TAIL;
}

}
