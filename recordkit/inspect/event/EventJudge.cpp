// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/event/EventJudge.h>

#include <fmt/format.h>

#include <recordkit/inspect/words/EventTypes.h>
#include <recordkit/inspect/words/EventWords.h>
#include <recordkit/inspect/words/SensorTypes.h>

namespace recordkit::inspect {

namespace {

/// Event message formats of IPMI v1.0, and of v1.5 and later.
constexpr unsigned char FIRST_REVISION = 0x03;
constexpr unsigned char LATER_REVISION = 0x04;
constexpr std::size_t REVISION_OFFSET = TAVLib::RecordKit::SELEntry::EVM_REVISION + 1;

std::string oddityOfSystemEvent(const Event& event)
{
    const unsigned char revision = event.image[REVISION_OFFSET];
    if (revision != FIRST_REVISION && revision != LATER_REVISION) {
        return fmt::format("event message revision {:02X}h is unknown", revision);
    }
    if (isReservedSensorType(event.sensorType)) {
        return fmt::format("sensor type {:02X}h is reserved", event.sensorType);
    }
    const bool isGeneric = event.eventType <= LAST_GENERIC_EVENT;
    if (isReservedEventType(event.eventType)) {
        return fmt::format("event type {:02X}h is reserved", event.eventType);
    }
    // Controllers send the unspecified type 00h, and sensor-specific offsets of later standards.
    if (isGeneric && event.eventType != 0 &&
        eventWords(event.eventType, event.sensorType, event.offset) == nullptr) {
        return fmt::format("event type {:02X}h has no offset {}", event.eventType, event.offset);
    }
    return "";
}

bool isInOrder(unsigned int before, unsigned int id)
{
    constexpr unsigned int LAST_IDS = 0xFF00;
    return id > before || (before >= LAST_IDS && id <= 0xFFFF - LAST_IDS);
}

}

std::string oddityOf(const Event& event)
{
    switch (event.kind) {
    case EventKind::SYSTEM_EVENT:
        return oddityOfSystemEvent(event);
    case EventKind::OTHER:
        return fmt::format("record type {:02X}h is unknown", event.recordType);
    case EventKind::OEM_TIMESTAMPED:
    case EventKind::OEM_UNTIMESTAMPED:
        break;
    }
    return "";
}

std::optional<std::string> findOddity(const std::vector<ImportedEvent>& events, bool hasOwnIds)
{
    std::optional<Event> before;
    for (const ImportedEvent& imported : events) {
        const Event event = decodeEvent(imported.message);
        std::string oddity = oddityOf(event);
        if (oddity.empty() && hasOwnIds && before && before->image != event.image &&
            !isInOrder(before->recordId, event.recordId)) {
            oddity = fmt::format("record id {:04X}h comes after {:04X}h", event.recordId,
                                 before->recordId);
        }
        if (!oddity.empty()) {
            return fmt::format("{}: {}", imported.place, oddity);
        }
        before = event;
    }
    return std::nullopt;
}

}
