// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/log/Rescue.h>

#include <algorithm>

#include <recordkit/inspect/event/EventJudge.h>
#include <recordkit/inspect/log/LogFile.h>

namespace recordkit::inspect {

using TAVLib::RecordKit::BMCSELEntry;
using TAVLib::RecordKit::BMCSELEntryMessage;
using TAVLib::RecordKit::OEMSELEntry;
using TAVLib::RecordKit::SELEntry;
using namespace SELFileLayout;

namespace {

constexpr std::size_t COUNT_OFFSET = SELEntry::IMAGE_SIZE + BMCSELEntry::BLOCK_EVENT_DATA_COUNT;
constexpr std::size_t KIND_OFFSET = BMCSELEntry::BMC_IMAGE_SIZE + BMCSELEntryMessage::TRAILER_KIND;

Event eventAt(ByteView bytes, std::size_t offset)
{
    BMCSELEntryMessage message;
    message.setSerialized(bytes.data() + offset, SLOT_SIZE);
    return decodeEvent(message);
}

/// Whether the bytes of a slot are an event: the record looks like one, and the block after it has
/// the number of OEM event data bytes and the trailer kind that every block has.
bool looksLikeEvent(ByteView bytes, std::size_t offset)
{
    const unsigned char* const slot = bytes.data() + offset;
    return slot[COUNT_OFFSET] == OEMSELEntry::EVENT_DATA_SIZE &&
           slot[KIND_OFFSET] <= BMCSELEntryMessage::KIND_WITH_BITMASK &&
           idOf(slot) != EMPTY_RECORD_ID && oddityOf(eventAt(bytes, offset)).empty();
}

/// Adds what looks like an event from `from` to `end`.
void search(ByteView bytes, std::size_t from, std::size_t end, std::vector<RescuedRecord>& found)
{
    while (from + SLOT_SIZE <= end) {
        if (looksLikeEvent(bytes, from)) {
            found.push_back({from, eventAt(bytes, from)});
        }
        ++from; // Bytes that only look like an event must not hide one that begins inside them.
    }
}

}

bool isEventFile(ByteView bytes)
{
    const SlotView view(bytes);
    const auto good =
        std::count_if(view.getEvents().begin(), view.getEvents().end(), [&](unsigned int slot) {
            return looksLikeEvent(bytes, std::size_t{slot} * SLOT_SIZE);
        });
    // A file whose slots are all empty is one, too.
    return bytes.size() >= SLOT_SIZE && view.getBadSlots() <= view.getEvents().size() &&
           static_cast<std::size_t>(good) * 2 >= view.getEvents().size();
}

std::vector<RescuedRecord> rescueRecords(ByteView bytes)
{
    std::vector<RescuedRecord> found;
    std::size_t next = 0;
    if (isEventFile(bytes)) {
        const SlotView view(bytes);
        for (const unsigned int slot : view.getEvents()) {
            const std::size_t offset = std::size_t{slot} * SLOT_SIZE;
            search(bytes, next, offset, found);
            found.push_back({offset, eventAt(bytes, offset)});
            next = offset + SLOT_SIZE;
        }
    }
    search(bytes, next, bytes.size(), found);
    return found;
}

}
