// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_WORDS_EVENTKINDS_H
#define RECORDKIT_INSPECT_WORDS_EVENTKINDS_H

namespace recordkit::inspect {

/// The kind of a SEL record, by its record type (IPMI v2.0, section 32).
enum class EventKind { SYSTEM_EVENT, OEM_TIMESTAMPED, OEM_UNTIMESTAMPED, OTHER };

EventKind eventKind(unsigned char recordType);

/// "system-event", "oem-timestamped", "oem-untimestamped" or "other".
const char* kindName(EventKind kind);

}

#endif
