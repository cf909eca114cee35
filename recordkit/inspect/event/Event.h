// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_EVENT_EVENT_H
#define RECORDKIT_INSPECT_EVENT_EVENT_H

#include <array>
#include <optional>
#include <string>
#include <vector>

#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/bytes/Time.h>
#include <recordkit/inspect/words/EventKinds.h>
#include <recordkit/inspect/words/SensorNames.h>
#include <recordkit/inspect/words/Severities.h>
#include <recordkit/sel/BMCSELEntryMessage.h>
#include <recordkit/selfile/SELChainReader.h>
#include <recordkit/selfile/SELFileLayout.h>

namespace recordkit::inspect {

namespace SELFileLayout = TAVLib::RecordKit::SELFileLayout;

/// Where an event was found.
enum class EventState {
    REGULAR,     ///< where the store counts it
    UNREACHABLE, ///< in a sound file that the store does not reach
    DAMAGED,     ///< in a damaged file
    BACKUP,      ///< only in the backup of the working file
};

/// "regular", "unreachable", "damaged" or "backup".
const char* stateName(EventState state);

/// One record of an event log, decoded.
struct Event {
    unsigned int board = 0;
    unsigned int logNumber = 0; ///< 0: has none
    int fileIndex = 0;
    unsigned int slot = 0;
    EventState state = EventState::REGULAR;
    std::string source;   ///< the saved file, or the input, of an event that is in no board's log
    std::string onlyIn;   ///< which of two compared logs it is in, if it is not in both
    unsigned int log = 0; ///< numbers the logs that were read together; of a board's log its board

    unsigned int recordId = 0;
    unsigned char recordType = 0;
    EventKind kind = EventKind::OTHER;
    Timestamp time = Timestamp(0);
    bool hasTime = false;

    // System events.
    Severity severity = SeverityMap::SEV_NONE;
    unsigned char generatorId[2] = {};
    unsigned char sensorType = 0;
    unsigned char sensorNumber = 0;
    unsigned char eventType = 0;
    unsigned char offset = 0;
    bool isDeassertion = false;
    unsigned char data[3] = {};
    bool isStillAsserted = false; ///< as markAsserted found
    /// The sensor, where a repository names it; valid as long as the names.
    const NamedSensor* sensor = nullptr;

    // OEM records: the manufacturer (timestamped ones only), and the OEM's own bytes.
    unsigned int manufacturer = 0;
    std::vector<unsigned char> oemData;

    std::string siteText; ///< of a rule of the site (EventRules); empty if there is none

    unsigned int partitions = 0; ///< bit p: partition p is concerned
    std::string partNumber;
    std::string serialNumber;

    std::array<unsigned char, SELFileLayout::SLOT_SIZE> image = {};
};

/// Decodes a record that is in no log.
Event decodeEvent(const TAVLib::RecordKit::BMCSELEntryMessage& message);

/// Decodes the record of a slot.
Event decodeEvent(unsigned int board, const TAVLib::RecordKit::SELChainReader::Record& record);

/// Finds the sensors of events in repositories.
void nameSensors(std::vector<Event>& events, const SensorNames& names);

/// The reading that triggered the event of a threshold sensor, and the threshold, as raw values
/// (IPMI v2.0, table 29-6); none where the event does not contain them.
std::optional<unsigned char> triggerReading(const Event& event);
std::optional<unsigned char> triggerThreshold(const Event& event);

/// What event data 2 and 3 add to a system event in words, such as "memory module 3"; empty where
/// they add nothing. `eventCauses` has the words for each byte.
std::string eventCause(const Event& event);

/// The event as text: that of the site's rules, or that of the standard with its cause; for an
/// offset without a text, and for OEM records, what they are. With its sensor, the reading and the
/// threshold in the sensor's units.
std::string eventText(const Event& event);

}

#endif
