// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TESTS_SUPPORT_SYSTEMEVENTS_H
#define RECORDKIT_TESTS_SUPPORT_SYSTEMEVENTS_H

#include <recordkit/inspect/event/Event.h>

#include "support/Bytes.h"

namespace testing_support {

/// A record with next id FFFFh and record id 1: the bytes from the record type on, then zeroes.
inline recordkit::inspect::Event eventOf(const Bytes& bytes)
{
    const Bytes record = Bytes{0xFF, 0xFF, 1, 0} + bytes;
    return recordkit::inspect::decodeEvent(
        fromBytes<TAVLib::RecordKit::BMCSELEntryMessage>(record + Bytes(138 - record.size(), 0)));
}

/// A system event of the management controller at a time; the bytes from the sensor type on.
inline recordkit::inspect::Event systemEvent(unsigned int seconds, const Bytes& bytes)
{
    Bytes record = {2};
    for (unsigned int shift = 0; shift < 32; shift += 8) {
        record.push_back(static_cast<unsigned char>(seconds >> shift));
    }
    return eventOf(record + Bytes{0x20, 0, 4} + bytes);
}

}

#endif
