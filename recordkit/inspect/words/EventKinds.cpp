// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/words/EventKinds.h>

#include <recordkit/sel/SELEntry.h>

namespace recordkit::inspect {

using TAVLib::RecordKit::SELEntry;

EventKind eventKind(unsigned char recordType)
{
    if (recordType == SELEntry::SYSTEM_EVENT_RECORD) {
        return EventKind::SYSTEM_EVENT;
    }
    if (recordType >= SELEntry::FIRST_OEM_UNTIMESTAMPED_RECORD) {
        return EventKind::OEM_UNTIMESTAMPED;
    }
    return recordType >= SELEntry::FIRST_OEM_TIMESTAMPED_RECORD ? EventKind::OEM_TIMESTAMPED
                                                                : EventKind::OTHER;
}

const char* kindName(EventKind kind)
{
    switch (kind) {
    case EventKind::SYSTEM_EVENT:
        return "system-event";
    case EventKind::OEM_TIMESTAMPED:
        return "oem-timestamped";
    case EventKind::OEM_UNTIMESTAMPED:
        return "oem-untimestamped";
    case EventKind::OTHER:
        break;
    }
    return "other";
}

}
