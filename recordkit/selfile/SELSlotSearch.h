// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_SELFILE_SELSLOTSEARCH_H
#define RECORDKIT_SELFILE_SELSLOTSEARCH_H

#include <recordkit/selfile/SELFileLayout.h>

namespace TAVLib::RecordKit {

/// An open event log file, as a search reads it.
class SELSlotSource {
public:
    SELSlotSource() = default;
    virtual ~SELSlotSource();
    SELSlotSource(const SELSlotSource&) = delete;
    SELSlotSource& operator=(const SELSlotSource&) = delete;

    /// Reads bytes from an offset on, as many as one system call returns; negative if the file
    /// cannot be read at a position. Nothing is traced.
    virtual long readAt(unsigned long offset, unsigned char* buffer, unsigned int size) = 0;
    /// Moves to an offset and reads from there; failures are traced.
    virtual bool seek(unsigned long offset) = 0;
    virtual long read(unsigned char* buffer, unsigned int size) = 0;
};

/// Finds the first slot with a record id in a file that was just opened. Returns the store's code
/// (BMCSELDataFile::Code): SUCCESS with the slot's bytes, POSITION_FAILED or NOT_FOUND; `addr` is
/// the offset of the slot, or where the search ended. Throws PException ("SELEntry", bytes present,
/// 2) for a last slot that is too short for a record id.
unsigned int searchSlots(SELSlotSource& source, unsigned short wanted,
                         unsigned char (&found)[SELFileLayout::SLOT_SIZE], unsigned long& addr);

/// Finds the first empty slot: SUCCESS, FILE_FULL, DAMAGED_TAIL or the code of the search.
unsigned int judgeTail(unsigned int searchCode, unsigned long addr, const unsigned char* found);

}

#endif
