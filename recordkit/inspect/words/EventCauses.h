// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_WORDS_EVENTCAUSES_H
#define RECORDKIT_INSPECT_WORDS_EVENTCAUSES_H

#include <string>

namespace recordkit::inspect {

/// What event data 2 or 3 of a system event contains.
enum class DataForm {
    UNSPECIFIED,     ///< nothing
    READING,         ///< the reading that triggered the event
    THRESHOLD,       ///< the threshold that it crossed
    PREVIOUS_STATE,  ///< bits 7..4: offset of event type 07h; 3..0: the offset before the event
    OEM,             ///< a code of the manufacturer
    SENSOR_SPECIFIC, ///< a code that the standard defines for the sensor type and the offset
    RESERVED,
};

/// "unspecified", "reading", "threshold", "previous state and severity", "OEM code",
/// "sensor-specific" or "reserved".
const char* formName(DataForm form);

/// The forms of event data 2 and 3, by bits 7..6 and 5..4 of event data 1 (IPMI v2.0, table 29-6):
///
/// | bits | threshold, event type 01h | discrete, 02h to 6Fh        | OEM, 70h to 7Fh    |
/// |------|---------------------------|-----------------------------|--------------------|
/// | 00b  | unspecified               | unspecified                 | unspecified        |
/// | 01b  | reading; threshold        | previous state; reserved    | as discrete        |
/// | 10b  | OEM code                  | OEM code                    | OEM code           |
/// | 11b  | sensor-specific           | sensor-specific             | reserved           |
DataForm formOfData2(unsigned char eventType, unsigned char data1);
DataForm formOfData3(unsigned char eventType, unsigned char data1);

/// What event data 2 and 3 say in words; each is empty where the byte adds nothing.
struct EventCauses {
    std::string data2;
    std::string data3;
};

/// The words for sensor-specific codes of sensor-specific events (IPMI v2.0, table 42-3):
///
/// | sensor type | offsets  | event data 2                          | event data 3               |
/// |-------------|----------|---------------------------------------|----------------------------|
/// | 05h         | 4        | network controller                    |                            |
/// | 08h         | 6        |                                       | kind of configuration error |
/// | 0Ch         | all      |                                       | memory module              |
/// | 0Fh         | 0        | error                                 |                            |
/// | 0Fh         | 1, 2     | progress                              |                            |
/// | 10h         | 0        | memory module                         |                            |
/// | 10h         | 1        | event type                            | offset, direction, or all  |
/// | 10h         | 5        |                                       | how full the log is        |
/// | 10h         | 6        | processor                             | who counts the processors  |
/// | 12h         | 3        | what happened to which log            |                            |
/// | 12h         | 4        | actions                               |                            |
/// | 12h         | 5        | first or second of a pair, clock      |                            |
/// | 19h         | 0        | power state that was requested        | power state at that time   |
/// | 1Dh         | 7        | cause of the restart (section 28.11)  | channel                    |
/// | 21h         | all      | kind of slot                          | slot                       |
/// | 23h         | all      | interrupt, use of the timer           |                            |
/// | 28h         | 0, 4     | sensor                                |                            |
/// | 28h         | 5        | kind of FRU device, LUN, private bus  | FRU device or its address  |
/// | 2Ah         | all      | user                                  | cause of the end, channel  |
/// | 2Bh         | all      | what changed                          |                            |
/// | 2Ch         | all      | cause, previous state                 |                            |
///
/// and for the previous state and the severity of discrete events. A code without words is given
/// as a number, as are reserved bits. Codes for something unspecified or unknown add nothing, nor
/// do FFh, which stands for a byte that is not present, and OEM codes.
EventCauses eventCauses(unsigned char eventType, unsigned char sensorType,
                        const unsigned char (&data)[3]);

}

#endif
