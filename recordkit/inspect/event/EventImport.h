// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_EVENT_EVENTIMPORT_H
#define RECORDKIT_INSPECT_EVENT_EVENTIMPORT_H

#include <string>
#include <vector>

#include <recordkit/sel/BMCSELEntryMessage.h>

namespace recordkit::inspect {

/// The accepted forms of event records.
enum class EventForm {
    AUTO,     ///< detected by the content: hexadecimal text, otherwise writeraw
    WRITERAW, ///< 16-byte records as `ipmitool sel writeraw` saves them
    WIRE,     ///< 16-byte records as the controller sends them
    HEX, ///< one record per line: hex digits of 16, 18, 74, 130 or 138 bytes; # starts a comment
};

/// Values for the OEM data of records without any.
struct OemFields {
    bool areGiven = false;
    unsigned short partitions = 0;
    std::string partNumber;   ///< empty, or 2 to 18 characters
    std::string serialNumber; ///< empty, or 2 to 12 characters
};

/// One complete record and where it came from ("line 3", "offset 48").
struct ImportedEvent {
    TAVLib::RecordKit::BMCSELEntryMessage message;
    std::string place;
};

/// Reads every record of an input. `name` is the input's name in messages. Throws DataError that
/// names the place and what was expected there, also for an input without records; it returns all
/// records or none.
std::vector<ImportedEvent> importEvents(const std::string& name, const std::string& content,
                                        EventForm form, const OemFields& fields = {});

/// The record id of a complete message, and a message with another one.
unsigned short recordIdOf(const TAVLib::RecordKit::BMCSELEntryMessage& message);
void setRecordId(TAVLib::RecordKit::BMCSELEntryMessage& message, unsigned short id);

}

#endif
