// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_SELFILE_SELSLOTSEARCH_H
#define RECORDKIT_SELFILE_SELSLOTSEARCH_H

#include <memory>

#include <recordkit/selfile/BMCSELDataFile.h>
#include <recordkit/selfile/SELFileLayout.h>

namespace TAVLib::RecordKit {

/// Slots that a search reads at a time. One at a time costs seventy times as much; with many more,
/// most would be read in vain while a file is short.
constexpr unsigned int SLOTS_AT_ONCE = 100;
constexpr unsigned int BYTES_AT_ONCE = SLOTS_AT_ONCE * SELFileLayout::SLOT_SIZE;

/// An event log file as a search reads it: open, and positioned at its first byte.
class SELSlotSource {
public:
    SELSlotSource() = default;
    virtual ~SELSlotSource();
    SELSlotSource(const SELSlotSource&) = delete;
    SELSlotSource& operator=(const SELSlotSource&) = delete;

    /// The bytes from an offset on, at most BYTES_AT_ONCE and as many as one system call returns,
    /// valid until the next call; negative if the file cannot be read at a position. Nothing is
    /// traced.
    virtual long lookAt(unsigned long offset, const unsigned char*& bytes) = 0;
    /// Moves to an offset and reads from there; failures are traced.
    virtual bool seek(unsigned long offset) = 0;
    virtual long read(unsigned char* buffer, unsigned int size) = 0;
    /// Whether a short last slot of `count` bytes contains a record id. It is parsed as the record
    /// that it should be, which is traced.
    virtual bool hasRecordId(const unsigned char* slot, unsigned int count) const;
};

/// The memory that a source reads slots into, allocated by the first use.
class SELSlotBuffer {
public:
    unsigned char* get();

private:
    std::unique_ptr<unsigned char[]> bytes;
};

/// Finds the first slot with a record id: SUCCESS with the slot's bytes, POSITION_FAILED,
/// NOT_FOUND, or READ_FAILED for a last slot that is too short for a record id. `addr` is the
/// offset of the slot, or where the search ended.
BMCSELDataFile::Code searchSlots(SELSlotSource& source, unsigned short wanted,
                                 unsigned char (&found)[SELFileLayout::SLOT_SIZE],
                                 unsigned long& addr);

/// Finds the first empty slot: SUCCESS, FILE_FULL, DAMAGED_TAIL or the code of the search.
BMCSELDataFile::Code findTail(SELSlotSource& source, unsigned long& addr);

}

#endif
