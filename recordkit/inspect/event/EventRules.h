// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_EVENT_EVENTRULES_H
#define RECORDKIT_INSPECT_EVENT_EVENTRULES_H

#include <optional>
#include <string>
#include <vector>

#include <recordkit/inspect/event/Event.h>

namespace recordkit::inspect {

/// Texts for the events of a site, which no standard has words for.
///
/// A rule is a line of conditions and a text, which each event gets that meets all conditions of
/// the first such rule:
///
///     sensor-type=C7h offset=3 data2=10h/F0h severity=critical "fan tray {data2[3:0]} is missing"
///     manufacturer=007ED9h data1=1 "board {data2} was reset by {data3:h}"
///
/// | condition     | meets it                                                                    |
/// |---------------|-----------------------------------------------------------------------------|
/// | sensor-type=  | a system event of this sensor type: a number, or a name without a blank      |
/// | manufacturer= | an OEM record with a timestamp and this manufacturer id                      |
/// | record-type=  | a record of this type, from C0h                                              |
/// | sensor=       | a system event of the sensor with this number                                |
/// | event-type=   | a system event of this event/reading type                                    |
/// | offset=       | a system event with this event offset                                        |
/// | direction=    | asserted or deasserted                                                       |
/// | dataN=        | byte N has this value; with /MASK, in the bits of the mask                   |
///
/// Numbers are decimal, 0xC7 or C7h. One of the first three is required. N counts event data from 1
/// to 3, and the bytes of an OEM record after its timestamp and manufacturer, or after its type,
/// from 1 to 6 or 13.
///
/// `severity=` is not a condition: it is the severity that the system event gets.
///
/// In the text, {dataN} is the byte in decimal, {dataN[7:4]} and {dataN[0]} some of its bits;
/// {dataN:h} and {dataN[7:4]:h} the same in hexadecimal. {sensor} is the sensor's name or number.
/// Empty lines and what follows a # outside the text are ignored.
class EventRules {
public:
    /// Reads rules. A line that is not one is left out, and added to `problems`:
    /// "line 3: expected ...".
    EventRules(const std::string& content, std::vector<std::string>& problems);

    bool isEmpty() const { return rules.empty(); }

    /// Gives events the text and the severity of the first rule that they meet, if there is one.
    void apply(std::vector<Event>& events) const;

private:
    struct ByteCondition {
        unsigned int number; ///< from 1
        unsigned int value;
        unsigned int mask;
    };
    /// A text, and after it the bits of a byte or the sensor.
    struct Piece {
        enum Content { NOTHING, BITS, SENSOR };
        std::string text;
        Content content = NOTHING;
        unsigned int number = 0;
        unsigned int high = 7;
        unsigned int low = 0;
        bool isHex = false;
    };
    struct Rule {
        std::optional<unsigned long> sensorType;
        std::optional<unsigned long> manufacturer;
        std::optional<unsigned long> recordType;
        std::optional<unsigned long> sensor;
        std::optional<unsigned long> eventType;
        std::optional<unsigned long> offset;
        std::optional<bool> isDeassertion;
        std::vector<ByteCondition> bytes;
        std::optional<Severity> severity;
        std::vector<Piece> text;

        bool isMetBy(const Event& event) const;
        std::string textOf(const Event& event) const;
    };
    friend class RuleReader;

    std::vector<Rule> rules;
};

}

#endif
