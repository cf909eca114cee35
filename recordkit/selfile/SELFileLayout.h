// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_SELFILE_SELFILELAYOUT_H
#define RECORDKIT_SELFILE_SELFILELAYOUT_H

#include <algorithm>

#include <recordkit/platform/BoardFiles.h>
#include <recordkit/sel/BMCSELEntryMessage.h>
#include <recordkit/serial/ByteOrder.h>

namespace TAVLib::RecordKit {

/// The layout of every event log file: 800 slots of one BMCSELEntryMessage image each, neither
/// header nor trailer. An empty slot is all 0xFF; slots are filled from the first one upward.
namespace SELFileLayout {

constexpr unsigned int SLOT_SIZE = BMCSELEntryMessage::MESSAGE_IMAGE_SIZE;
constexpr unsigned int SLOTS = 800;
constexpr unsigned int FILE_SIZE = SLOTS * SLOT_SIZE;
constexpr unsigned int LAST_SLOT = FILE_SIZE - SLOT_SIZE;
constexpr unsigned int RECORD_ID_OFFSET = 2;
constexpr unsigned int RECORD_ID_END = RECORD_ID_OFFSET + 2;

using BoardFiles::OLDEST_FILE;

/// Selects one of the two files of index 0.
enum FileKind : int { TEMPORARY = 0, PERSISTENT = 1 };

constexpr unsigned char EMPTY_BYTE = 0xFF;

/// A slot with this record id is empty, or damaged if its other bytes are not all 0xFF too.
constexpr unsigned short EMPTY_RECORD_ID = 0xFFFF;

static_assert(SLOT_SIZE == 138 && FILE_SIZE == 110400 && LAST_SLOT == 110262,
              "the sizes of files in the field");

/// Record id of the record in a slot.
inline unsigned short idOf(const unsigned char* slot)
{
    return readLE16(slot + RECORD_ID_OFFSET);
}

/// Whether all bytes of a slot are those of an empty one.
inline bool isEmpty(const unsigned char* slot)
{
    return slot[0] == EMPTY_BYTE && std::equal(slot, slot + SLOT_SIZE - 1, slot + 1);
}

}

}

#endif
