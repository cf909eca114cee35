// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_REPORT_EVENTSIGNS_H
#define RECORDKIT_INSPECT_REPORT_EVENTSIGNS_H

#include <string>

#include <recordkit/inspect/bytes/ByteView.h>

namespace recordkit::inspect {

// The rows of ImageKind that are about events.

/// Slots with events, or an event file without any.
bool isEventLog(ByteView content);

/// Records of 16 bytes, one after another; those that all are events, and those with others.
bool areEventRecords(ByteView content);
bool areDamagedEventRecords(ByteView content);

/// Lines of hex digits, or JSON; either of these.
bool isEventText(const std::string& content);

}

#endif
