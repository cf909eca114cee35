// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_LOG_LOGFILE_H
#define RECORDKIT_INSPECT_LOG_LOGFILE_H

#include <string>
#include <vector>

#include <recordkit/inspect/bytes/ByteView.h>
#include <recordkit/selfile/SELFileLayout.h>

namespace recordkit::inspect {

namespace SELFileLayout = TAVLib::RecordKit::SELFileLayout;

/// The slots of an event file, whole or damaged. Bytes after the last whole slot are in none.
class SlotView {
public:
    explicit SlotView(ByteView content);

    /// Numbers of the slots with an event: neither empty nor with the record id of an empty slot.
    const std::vector<unsigned int>& getEvents() const { return events; }
    const unsigned char* slot(unsigned int number) const
    {
        return bytes.data() + std::size_t{number} * SELFileLayout::SLOT_SIZE;
    }
    /// Slots before the first that is empty or has the record id of an empty one.
    unsigned int getTail() const { return tail; }
    /// Slots that are not empty although they have the record id of an empty one.
    unsigned int getBadSlots() const { return badSlots; }
    /// The bytes after the last whole slot.
    ByteView rest() const;
    /// Whether the store counts the events up to the tail: the tail is an empty slot, or the file
    /// is full.
    bool isCounted() const;
    /// Whether every event is before the tail and every other slot is empty.
    bool isInOrder() const;

private:
    unsigned int slots() const;

    ByteView bytes;
    std::vector<unsigned int> events;
    unsigned int tail = 0;
    unsigned int badSlots = 0;
};

/// One event file of a board as it was found. Of a longer file only the first 65536 slots are read,
/// as many as the store can count.
struct LogFile {
    int index = 0;
    int kind = SELFileLayout::PERSISTENT;
    std::string path;
    int error = 0; ///< errno if the file could not be read
    unsigned long size = 0;
    unsigned long identity = 0; ///< changes when the file is replaced
    Bytes bytes;

    bool isMissing() const;
    bool isRightSize() const { return size == SELFileLayout::FILE_SIZE; }
    /// Readable, of the right size, and in order.
    bool isSound() const;
};

/// The files of a board, read at one moment: working file, rotated files 1 to 7, backup.
std::vector<LogFile> readLogFiles(unsigned char board);

}

#endif
