// SPDX-License-Identifier: Apache-2.0
// openipmi's simulated controller on loopback: records of every sensor type and offset with every
// form of event data 2 and 3 and every code, as freeipmi's ipmi-sel and as ipmitool explain them,
// compared with this project. Where they differ, the standard decides (IPMI v2.0, tables 29-6 and
// 42-3); each difference is one of the rules below, with its reason.
#include <algorithm>
#include <fmt/format.h>
#include <gtest/gtest.h>
#include <map>
#include <optional>
#include <sstream>

#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/event/Event.h>
#include <recordkit/inspect/words/EventCauses.h>
#include <recordkit/inspect/words/EventTypes.h>
#include <recordkit/inspect/words/EventWords.h>

#include "interop/Simulator.h"
#include "support/PeerNames.h"
#include "support/ScratchRoot.h"

using namespace recordkit::inspect;
using namespace testing_support;

namespace {

/// The fields of a system event that say what happened.
struct Sent {
    unsigned char sensorType;
    unsigned char eventType;
    unsigned char data[3];

    unsigned char offset() const { return data[0] & 0x0F; }
    bool isOf(unsigned char type, unsigned int offsets) const
    {
        return eventType == SENSOR_SPECIFIC_EVENT && sensorType == type &&
               (offsets >> offset() & 1) != 0;
    }
    DataForm form2() const { return formOfData2(eventType, data[0]); }
    DataForm form3() const { return formOfData3(eventType, data[0]); }
};

constexpr unsigned int ALL_OFFSETS = 0xFFFF;

/// The lowest offset of each definition of event data 2 or 3, one bit for each.
struct Definition {
    unsigned char sensorType;
    unsigned int offsets;
};

constexpr Definition DEFINITIONS[] = {
    {0x05, 0x10}, {0x08, 0x40}, {0x0C, 0x01}, {0x0C, 0x100}, {0x0F, 0x07},
    {0x10, 0x63}, {0x12, 0x38}, {0x19, 0x01}, {0x1D, 0x80},  {0x21, 0x01},
    {0x23, 0x01}, {0x28, 0x31}, {0x2A, 0x03}, {0x2B, 0x81},  {0x2C, 0x21},
};

/// Every code of four bits and of five, either half of a byte, and the bounds of numbers.
std::vector<unsigned char> codes()
{
    std::vector<unsigned char> values = {0x64, 0x65, 0x6F, 0x81, 0xFE};
    for (unsigned int half = 0; half < 16; ++half) {
        values.push_back(static_cast<unsigned char>(half));
        values.push_back(static_cast<unsigned char>(0x10 | half));
        values.push_back(static_cast<unsigned char>(half << 4));
        values.push_back(static_cast<unsigned char>(half << 4 | 0x0F));
    }
    return values;
}

/// Every sensor type and offset with every form of event data 2 and 3, and every definition with
/// every code.
class Events {
public:
    Events()
    {
        for (const EventWordsRow& row : sensorEvents()) {
            addForms(row.code, SENSOR_SPECIFIC_EVENT, row.offset);
        }
        for (const EventWordsRow& row : genericEvents()) {
            addForms(0x08, row.code, row.offset);
        }
        // These sensor types have no offsets of their own.
        for (const unsigned char type :
             {0x01, 0x02, 0x03, 0x04, 0x0A, 0x0B, 0x0E, 0x15, 0x16, 0x17, 0x18, 0x1A, 0x1C, 0x26}) {
            addForms(type, SENSOR_SPECIFIC_EVENT, 0);
        }
        for (const Definition& definition : DEFINITIONS) {
            for (unsigned int offset = 0; offset < 16; ++offset) {
                if ((definition.offsets >> offset & 1) != 0) {
                    addCodes(definition.sensorType, 0xF0 | offset);
                }
            }
        }
        for (unsigned char type = THRESHOLD_EVENT + 1; type <= LAST_GENERIC_EVENT; ++type) {
            for (unsigned int half = 0; half < 16; ++half) {
                add(0x08, type, 0x40, 0xF0 | half, 0xFF);
                add(0x08, type, 0x40, half << 4 | 0x0F, 0xFF);
            }
        }
    }
    const std::vector<Sent>& all() const { return events; }

private:
    void add(unsigned char sensorType, unsigned char eventType, unsigned int data1,
             unsigned int data2, unsigned int data3)
    {
        events.push_back({sensorType,
                          eventType,
                          {static_cast<unsigned char>(data1), static_cast<unsigned char>(data2),
                           static_cast<unsigned char>(data3)}});
    }
    void addForms(unsigned char sensorType, unsigned char eventType, unsigned int offset)
    {
        for (unsigned int forms = 0; forms < 16; ++forms) {
            add(sensorType, eventType, forms << 4 | offset, 0x12, 0x21);
        }
        add(sensorType, eventType, 0xF0 | offset, 0xFF, 0xFF);
    }
    void addCodes(unsigned char sensorType, unsigned int data1)
    {
        const std::vector<unsigned char> values = codes();
        for (std::size_t i = 0; i < values.size(); ++i) {
            add(sensorType, SENSOR_SPECIFIC_EVENT, data1, values[i], values[i]);
            add(sensorType, SENSOR_SPECIFIC_EVENT, data1, values[i],
                values[(i + 5) % values.size()]);
        }
    }

    std::vector<Sent> events;
};

/// Only letters and digits, in lower case: the rest is a matter of style.
std::string essence(const std::string& text)
{
    std::string result;
    for (const char character : text) {
        if (std::isalnum(static_cast<unsigned char>(character)) != 0) {
            result += static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
        }
    }
    return result;
}

bool startsWith(const std::string& text, const std::string& start)
{
    return text.compare(0, start.size(), start) == 0;
}

/// Words of a peer that mean the same as ours.
struct Phrase {
    const char* theirs;
    const char* ours;
};

// clang-format off
/// Beginnings, of which the rest is the same.
constexpr Phrase BEGINNINGS[] = {
    {"Cause of state change = ", ""},
    {"Channel Number used to deliver command that generated restart #", "channel "},
    {"Channel number that session was activated/deactivated = ", "channel "},
    {"Entity Instance Number = #", "processor "},
    {"Instance ID #", "processor "},
    {"Interrupt type = ", "interrupt "},
    {"LUN for Master Write-Read command or FRU Command #", "LUN "},
    {"Log Type = OEM", "OEM log "},
    {"Log Type = ", ""},
    {"Log entry action = ", ""},
    {"Memory module/device #", "memory module "},
    {"Network controller #", "network controller "},
    {"Power state at time of request = ", "power state at that time "},
    {"Previous State = ", "previous state "},
    {"Private bus ID #", "private bus "},
    {"Requested power state = ", "requested power state "},
    {"Session deactivated ", "deactivated "},
    {"Severity State = ", "severity "},
    {"Slot/Connector #", "slot "},
    {"Slot/Connector Type = ", ""},
    {"Timer use at expiration = ", "timer use "},
    {"User ID for user that activated session #", "user "},
    {"Version change type = ", ""},
};
constexpr Phrase PHRASES[] = {
    {"CPU voltage mismatch (processors that share same supply have mismatched voltage requirements)", "CPU voltage mismatch"},
    {"No system memory is physically installed in the system", "No system memory is physically installed"},
    {"No usable system memory, all installed memory has experienced an unrecoverable failure", "No usable system memory"},
    {"Processor missing or unexpected/unsupported condition", "Processor missing"},
    {"OEM", "OEM cause"},
    {"SDR Timestamp Clock updated", "SDR clock"},
    {"SEL Timestamp Clock updated (Also used when both SEL and SDR Timestamp clocks are linked together)", "SEL clock"},
    {"Starting operating system boot process, e.g. calling Unsigned Int 19h", "Starting operating system boot process"},
    {"automatic power-up on AC being applied due to 'always restore' power restore policy", "automatic power-up, policy 'always restore'"},
    {"automatic power-up on AC being applied due to 'restore previous power state' power restore policy", "automatic power-up, policy 'restore previous power state'"},
    {"board/FRU component change (addition or removal of a replaceable component on the board/FRU that is not tracked as a FRU)", "board/FRU component change"},
    {"board/FRU hardware configuration change (e.g. strap, jumper, cable change, etc.)", "board/FRU hardware configuration change"},
    {"board/FRU module change (change of a module plugged into associated entity)", "board/FRU module change"},
    {"device is logical FRU Device (accessed via FRU commands to mgmt. controller", "logical FRU device"},
    {"device is not a logical FRU Device", "physical FRU device"},
    {"entry added along with one or more corresponding SEL entries", "entry added along with SEL entries"},
    {"entry added because event did not be map to standard IPMI event", "entry added because the event has no standard one"},
    {"event is first of pair", "first of a pair"},
    {"event is second of pair", "second of a pair"},
    {"management controller device ID (change in one or more fields from `Get Device ID')", "management controller device ID"},
    {"power state at that time G1 sleeping (S1-S4 state cannot be determined)", "power state at that time G1 sleeping"},
    {"power state at that time Sleeping in an S1, S2, or S3 states (used when particular S1, S2, S3 state cannot be determined)", "power state at that time Sleeping in an S1, S2, or S3 state"},
    {"power-up via RTC (system real time clock) wakeup", "power-up via RTC"},
    {"previous state FRU Inactive (in standby or `hot spare' state)", "previous state FRU Inactive"},
    {"programmable hardware change (e.g. FPGA)", "programmable hardware change"},
    {"requested power state G1 sleeping (S1-S4 state cannot be determined)", "requested power state G1 sleeping"},
    {"requested power state Sleeping in an S1, S2, or S3 states (used when particular S1, S2, S3 state cannot be determined)", "requested power state Sleeping in an S1, S2, or S3 state"},
    {"slot associated with entity specified by Entity ID for sensor", "slot of the sensor's entity"},
    {"soft reset (e.g. CTRL-ALT-DEL)", "soft reset"},
};
/// Parts that say only that something is unspecified, unknown, reserved or 0, where ours say nothing
/// or give the number.
const std::string SAYS_NOTHING[] = {
    "", "LUN 0", "State Change, Cause Unknown", "Unspecified", "User ID for user that activated session = Unspecified",
    "interrupt unspecified", "power state at that time unknown", "previous state ", "private bus 0", "reserved",
    "Session deactivatation cause unspecified. This value is also used for Session Activated events", "timer use unspecified", "unknown", "unspecified",
};
// clang-format on

std::string translated(const std::string& part)
{
    std::string result = part;
    for (const Phrase& phrase : BEGINNINGS) {
        if (startsWith(result, phrase.theirs)) {
            result = phrase.ours + result.substr(std::string(phrase.theirs).size());
            break;
        }
    }
    for (const Phrase& phrase : PHRASES) {
        if (result == phrase.theirs) {
            return phrase.ours;
        }
    }
    return result;
}

/// The number after a "#" in the part that begins with `start`; none without such a part, which is
/// taken out.
std::optional<unsigned int> takeNumber(std::vector<std::string>& parts, const std::string& start)
{
    const auto found = std::find_if(parts.begin(), parts.end(), [&start](const std::string& part) {
        return startsWith(part, start + "#");
    });
    if (found == parts.end()) {
        return std::nullopt;
    }
    const auto number = static_cast<unsigned int>(std::stoul(found->substr(start.size() + 1)));
    parts.erase(found);
    return number;
}

bool takePart(std::vector<std::string>& parts, const std::string& part)
{
    const auto found = std::find(parts.begin(), parts.end(), part);
    const bool isThere = found != parts.end();
    if (isThere) {
        parts.erase(found);
    }
    return isThere;
}

/// freeipmi gives numbers where ours have words or hex.
void wordNumbers(std::vector<std::string>& parts, const std::string& ours)
{
    if (const auto number = takeNumber(parts, "Sensor Number ")) {
        parts.push_back(fmt::format("sensor {:02X}h", *number));
    }
    if (const auto number = takeNumber(parts, "FRU Device ID/Slave Address ")) {
        parts.push_back(ours.find("FRU device id") != std::string::npos
                            ? fmt::format("FRU device id {}", *number)
                        : ours.find("slave address") != std::string::npos
                            ? fmt::format("slave address {:02X}h", *number & 0xFE)
                            : fmt::format("FRU device {:02X}h", *number));
    }
    if (const auto number = takeNumber(parts, "Vendor-specific Processor Number = ")) {
        parts.push_back(fmt::format("processor {}", *number));
        parts.push_back("vendor-specific number");
    }
    const auto type = takeNumber(parts, "Event/Reading Type Code ");
    if (type) {
        const std::string name = eventTypeName(static_cast<unsigned char>(*type));
        if (name != "reserved" && name != "OEM" && name != "unspecified") {
            parts.push_back("event type " + name);
        }
    }
    if (const auto offset = takeNumber(parts, "Event Offset ")) {
        const char* const words = type && *type <= LAST_GENERIC_EVENT
                                      ? eventWords(static_cast<unsigned char>(*type), 0,
                                                   static_cast<unsigned char>(*offset))
                                      : nullptr;
        const bool isAssertion = takePart(parts, "assertion event");
        takePart(parts, "deassertion event");
        parts.push_back(
            takePart(parts, "logging has been disabled for all events of given type")
                ? "all its events"
                : fmt::format("{} {}", words != nullptr ? words : fmt::format("offset {}", *offset),
                              isAssertion ? "asserted" : "deasserted"));
    }
}

/// Whether a part of our words is the number of a reserved code, or reserved bits: freeipmi gives
/// the whole byte, or nothing.
bool isReserved(const std::string& part)
{
    static constexpr const char* NAMES[] = {"action ",
                                            "cause ",
                                            "clock ",
                                            "error ",
                                            "error type ",
                                            "event type ",
                                            "filling ",
                                            "interrupt ",
                                            "log type ",
                                            "power state at that time ",
                                            "previous state offset ",
                                            "progress ",
                                            "requested power state ",
                                            "reserved bits ",
                                            "restart cause ",
                                            "severity offset ",
                                            "slot type ",
                                            "timer use ",
                                            "version change type "};
    return std::any_of(std::begin(NAMES), std::end(NAMES), [&part](const char* name) {
        const std::string number =
            startsWith(part, name) ? part.substr(std::string(name).size()) : "";
        return !number.empty() &&
               number.find_first_not_of("0123456789ABCDEFh") == std::string::npos;
    });
}

std::vector<std::string> split(const std::string& text, const std::string& separator)
{
    std::vector<std::string> parts;
    std::size_t from = 0;
    for (std::size_t to = 0; to != std::string::npos; from = to + separator.size()) {
        to = text.find(separator, from);
        parts.push_back(text.substr(from, to == std::string::npos ? to : to - from));
    }
    return parts;
}

std::string withoutReserved(const std::string& ours)
{
    std::string result;
    for (const std::string& part : split(ours, ", ")) {
        result += isReserved(part) ? "" : part;
    }
    return result;
}

/// What freeipmi adds to the words of an inactive FRU.
const std::string HOT_SPARE = " (in standby or `hot spare' state)";

struct Ours {
    std::string data2;
    std::string data3;
};

/// Where freeipmi says less than the standard, or something else. `apply` makes ours what it says.
struct Difference {
    const char* reason;
    bool (*applies)(const Sent& event);
    void (*apply)(const Sent& event, Ours& ours, std::vector<std::string>& theirs);
};

const Difference DIFFERENCES[] = {
    {"it has no words for the previous state: it gives a number, or takes it for a sensor-specific "
     "code; the severity comes last",
     [](const Sent& e) { return e.form2() == DataForm::PREVIOUS_STATE; },
     [](const Sent&, Ours& ours, std::vector<std::string>& theirs) {
         const std::size_t at = ours.data2.find("severity ");
         ours.data2 = at == std::string::npos ? "" : ours.data2.substr(at);
         const auto severity =
             std::find_if(theirs.begin(), theirs.end(), [](const std::string& part) {
                 return startsWith(part, "Severity State = ");
             });
         if (severity != theirs.end()) {
             theirs.erase(theirs.begin(), severity);
         }
     }},
    {"memory: it names the module only for offset 8, in whose row of the table the definition is; "
     "version 1.5 of the standard, which has no offset 8, gives it for the sensor type",
     [](const Sent& e) { return e.isOf(0x0C, ALL_OFFSETS & ~0x100U); },
     [](const Sent&, Ours& ours, std::vector<std::string>&) { ours.data3 = ""; }},
    {"processors without logging: it gives their number also where event data 1 says that event "
     "data 2 is not there, or where this is FFh",
     [](const Sent& e) {
         return e.isOf(0x10, 0x40) && (e.form2() != DataForm::SENSOR_SPECIFIC || e.data[1] == 0xFF);
     },
     [](const Sent&, Ours&, std::vector<std::string>& theirs) {
         takeNumber(theirs, "Entity Instance Number = ");
         takeNumber(theirs, "Vendor-specific Processor Number = ");
     }},
    {"processors without logging: it does not give their number where event data 3 is FFh",
     [](const Sent& e) { return e.isOf(0x10, 0x40) && e.data[2] == 0xFF; },
     [](const Sent&, Ours& ours, std::vector<std::string>&) { ours.data2 = ""; }},
    {"log almost full: more than 100 % is a reserved value",
     [](const Sent& e) { return e.isOf(0x10, 0x20) && e.data[2] > 100; },
     [](const Sent& e, Ours&, std::vector<std::string>& theirs) {
         takePart(theirs, fmt::format("{}% full", e.data[2]));
     }},
    {"auxiliary log: it exchanges the action, which is in bits 7..4, and the log",
     [](const Sent& e) { return e.isOf(0x12, 0x08) && e.form2() == DataForm::SENSOR_SPECIFIC; },
     [](const Sent& e, Ours& ours, std::vector<std::string>&) {
         const unsigned char exchanged[3] = {
             e.data[0], static_cast<unsigned char>(e.data[1] << 4 | e.data[1] >> 4), e.data[2]};
         ours.data2 = eventCauses(e.eventType, e.sensorType, exchanged).data2;
     }},
    {"PEF actions: it has no words for them",
     [](const Sent& e) { return e.isOf(0x12, 0x10) && e.form2() == DataForm::SENSOR_SPECIFIC; },
     [](const Sent&, Ours& ours, std::vector<std::string>&) { ours.data2 = ""; }},
    {"session audit: it names the user only for an activated session, and the cause of the end "
     "only for a deactivated one; the standard defines both for all offsets",
     [](const Sent& e) { return e.isOf(0x2A, ALL_OFFSETS); },
     [](const Sent& e, Ours& ours, std::vector<std::string>&) {
         if (e.offset() != 0 && e.form2() == DataForm::SENSOR_SPECIFIC) {
             ours.data2 = "";
         }
         const std::size_t channel = ours.data3.find("channel ");
         if (e.offset() != 1 && channel != std::string::npos) {
             ours.data3 = ours.data3.substr(channel);
         }
     }},
    {"power supply: the codes of offset 6 belong to sensor-specific events; it reads them in every "
     "event of the sensor type",
     [](const Sent& e) { return e.sensorType == 0x08 && e.eventType != SENSOR_SPECIFIC_EVENT; },
     [](const Sent&, Ours&, std::vector<std::string>& theirs) {
         takePart(theirs, "Revision mismatch");
     }},
    {"FRU state: the present state as the previous one means that this is unknown",
     [](const Sent& e) {
         return e.isOf(0x2C, ALL_OFFSETS) && e.form2() == DataForm::SENSOR_SPECIFIC &&
                (e.data[1] & 0x0F) == e.offset();
     },
     [](const Sent& e, Ours&, std::vector<std::string>& theirs) {
         const std::string part =
             fmt::format("Previous State = {}", eventWords(0x6F, 0x2C, e.offset()));
         takePart(theirs, part) || takePart(theirs, part + HOT_SPARE);
     }},
};

/// Bytes without words, and OEM codes, of which ours say nothing in words.
bool isNumber(const std::string& part)
{
    return part.find("Event Data2 ") != std::string::npos ||
           part.find("Event Data3 ") != std::string::npos;
}

/// What is left when the words of freeipmi are taken from ours, and the other way round; empty if
/// they are the same.
std::string comparison(const Sent& event, std::vector<std::string> theirs, bool withDifferences)
{
    const EventCauses causes = eventCauses(event.eventType, event.sensorType, event.data);
    Ours ours = {causes.data2, causes.data3};
    theirs.erase(std::remove_if(theirs.begin(), theirs.end(), isNumber), theirs.end());
    if (takePart(theirs, fmt::format("Sensor Reading = {:02X}h", event.data[1])) !=
            (event.form2() == DataForm::READING) ||
        takePart(theirs, fmt::format("Threshold = {:02X}h", event.data[2])) !=
            (event.form3() == DataForm::THRESHOLD)) {
        return "the reading or the threshold";
    }
    for (const Difference& each : DIFFERENCES) {
        if (withDifferences && each.applies(event)) {
            each.apply(event, ours, theirs);
        }
    }
    wordNumbers(theirs, ours.data3);
    std::string rest = essence(withoutReserved(ours.data2) + withoutReserved(ours.data3));
    std::vector<std::string> words;
    for (const std::string& part : theirs) {
        const std::string translation = translated(part);
        if (std::find(std::begin(SAYS_NOTHING), std::end(SAYS_NOTHING), translation) ==
            std::end(SAYS_NOTHING)) {
            words.push_back(essence(translation));
        }
    }
    // The longest first: a shorter one may be a part of it.
    std::sort(words.begin(), words.end(), [](const std::string& one, const std::string& other) {
        return one.size() > other.size();
    });
    std::string more;
    for (const std::string& word : words) {
        const std::size_t at = rest.find(word);
        if (at == std::string::npos) {
            more += word + " ";
        } else {
            rest.erase(at, word.size());
        }
    }
    return rest.empty() && more.empty() ? "" : "only ours: " + rest + ", only theirs: " + more;
}

std::string described(const Sent& event)
{
    return fmt::format("sensor type {:02X}h, event type {:02X}h, data {}", event.sensorType,
                       event.eventType, toLowerHex(event.data));
}

std::string wordsOf(const Sent& event)
{
    const char* const words = eventWords(event.eventType, event.sensorType, event.offset());
    return words == nullptr ? "" : words;
}

// clang-format off
/// freeipmi's words for offsets; the others are ours.
constexpr Phrase FREEIPMI_EVENTS[] = {
    {"Configuration Error - Incorrect cable connected", "Configuration Error - Incorrect cable connected / Incorrect interconnection"},
    {"Correctable memory error logging limit reached", "Correctable ECC / other correctable memory error logging limit reached"},
    {"Correctable memory error", "Correctable ECC / other correctable memory error"},
    {"Critical stop during OS load", "Critical stop during OS load / initialization"},
    {"Event Offset = 00h", ""},
    {"Event Offset = 01h", "Thermal Trip"}, // of a chip set: it has no words
    {"Machine Check Exception", "Machine Check Exception (Uncorrectable)"},
    {"Memory Scrub Failed", "Memory Scrub Failed (stuck bit)"},
    {"Power Supply Inactive", "Power Supply Inactive (in standby state)"},
    {"Pre-boot Password Violation - setup password", "Pre-boot Password Violation attempt - setup password"},
    {"S0/G0", "S0/G0 working"},
    {"S1", "S1 sleeping with system h/w & processor context maintained"},
    {"S2", "S2 sleeping, processor context lost"},
    {"S3", "S3 sleeping, processor & h/w context lost, memory retained"},
    {"S4", "S4 non-volatile sleep / suspend-to-disk"},
    {"S4/S5 soft-off", "S4/S5 soft-off, particular S4/S5 state cannot be determined"},
    {"S5/G2", "S5/G2 soft-off"},
    {"Secure Mode Violation attempt", "Secure Mode (Front Panel Lockout) Violation attempt"},
    {"Sleeping in an S1, S2, or S3 states", "Sleeping in an S1, S2, or S3 state"},
    {"System Firmware Error", "System Firmware Error (POST Error)"},
    {"Uncorrectable memory error", "Uncorrectable ECC / other uncorrectable memory error"},
    {"battery low", "Battery low (predictive failure)"},
};
/// ipmitool's words for event data 2; those of firmware take the place of the words for the offset,
/// those of version changes follow them.
constexpr Phrase IPMITOOL_DATA[] = {
    {"BIOS corruption detected", "Firmware (BIOS) ROM corruption detected"},
    {"BIOS/EFI change", "system firmware (EFI / BIOS) change"},
    {"CPU speed mismatch failure", "CPU speed matching failure"},
    {"Management controller initialization", "Embedded controller/management controller initialization"},
    {"Mngmt Ctrl Aux Firm Id", "management controller auxiliary firmware ID"},
    {"Mngmt Ctrl Dev Id", "management controller device ID"},
    {"Mngmt Ctrl Dev Rev", "management controller device revision"},
    {"Mngmt Ctrl Firm Boot Block", "management controller firmware boot block"},
    {"Mngmt Ctrl Firm Rev", "management controller firmware revision"},
    {"Mngmt Ctrl IPMI Vers", "management controller IPMI version"},
    {"Mngmt Ctrl Manuf Id", "management controller manufacturer ID"},
    {"Mngmt Ctrl Other", "other management controller firmware"},
    {"Mngmt SW App change", "management software application change"},
    {"Mngmt SW Middle", "management software middleware change"},
    {"Mngmt SW agent change", "management software agent change"},
    {"Motherboard initialization", "Baseboard or motherboard initialization"},
    {"No system memory installed", "No system memory is physically installed"},
    {"No video device selected", "No video device detected"},
    {"O/S change", "operating system change"},
    {"O/S loader change", "operating system loader change"},
    {"Primary CPU initialization", "Primary processor initialization"},
    {"Prog HW Change (FPGA)", "programmable hardware change"},
    {"Secondary CPU Initialization", "Secondary processor(s) initialization"},
    {"Service Diag change", "service or diagnostic partition change"},
    {"System boot initiated", "Starting operating system boot process"},
    {"Unrecoverable IDE device failure", "Unrecoverable hard-disk/ATAPI/IDE device failure"},
    {"Unrecoverable diskette failure", "Unrecoverable diskette subsystem failure"},
    {"Unspecified", ""},
    {"board/FRU HW conf change", "board/FRU hardware configuration change"},
    {"board/FRU replace equ ver", "board/FRU replaced with equivalent version"},
    {"board/FRU replace new ver", "board/FRU replaced with newer version"},
    {"board/FRU replace old ver", "board/FRU replaced with older version"},
    {"reserved", "progress 15h"},
};
// clang-format on

template <std::size_t Count>
bool isSame(const Phrase (&phrases)[Count], const std::string& theirs, const std::string& ours)
{
    return essence(theirs) == essence(ours) ||
           std::any_of(std::begin(phrases), std::end(phrases), [&](const Phrase& phrase) {
               return theirs == phrase.theirs && ours == phrase.ours;
           });
}

/// What the peers say of events, compared with ours.
class EventData : public testing::Test {
protected:
    void compareWithFreeipmi(const std::string& line, const Sent& event)
    {
        std::vector<std::string> theirs = split(line.substr(line.rfind("| ") + 2), " ; ");
        EXPECT_TRUE(isSame(FREEIPMI_EVENTS, theirs[0], wordsOf(event)))
            << theirs[0] << " is not " << wordsOf(event);
        theirs.erase(theirs.begin());
        EXPECT_EQ(comparison(event, theirs, true), "") << line << "\n" << described(event);
        if (comparison(event, theirs, false) != "") {
            for (std::size_t i = 0; i < std::size(DIFFERENCES); ++i) {
                needed[i] = needed[i] || DIFFERENCES[i].applies(event);
            }
        }
    }

    /// It has no words for some offsets, and for most of event data 2 and 3 none at all.
    void compareWithIpmitool(const std::string& description, const Sent& event)
    {
        constexpr unsigned int FIRMWARE_OFFSETS = 0x07;
        constexpr unsigned int SUPPLY_CONFIGURATION = 0x40;
        constexpr unsigned int VERSION_OFFSETS = 0x82;
        const std::string words = wordsOf(event);
        const std::string data2 = eventCauses(event.eventType, event.sensorType, event.data).data2;
        if (description.empty()) {
            return;
        }
        // It reads event data 2 also where event data 1 says that this is something else.
        const bool isCode = event.form2() == DataForm::SENSOR_SPECIFIC;
        const std::vector<std::string> parts = split(description, ", ");
        if (event.isOf(0x0F, FIRMWARE_OFFSETS)) {
            if (isCode && !startsWith(description, "Unknown ")) {
                EXPECT_TRUE(isSame(IPMITOOL_DATA, description, data2))
                    << description << " is not " << data2;
                ++codesOfIpmitool;
            }
            return;
        }
        if (event.isOf(0x08, SUPPLY_CONFIGURATION)) {
            // It reads the error from event data 2, the standard defines it in event data 3.
            if (isCode && event.data[1] < 5) {
                const unsigned char moved[3] = {event.data[0], 0xFF, event.data[1]};
                EXPECT_EQ(essence(description),
                          essence("Config Error " + eventCauses(0x6F, 0x08, moved).data3));
                ++codesOfIpmitool;
            }
            return;
        }
        if (event.isOf(0x2B, VERSION_OFFSETS)) {
            EXPECT_TRUE(isSameEvent(parts[0], event.eventType, event.sensorType, words))
                << parts[0] << " is not " << words;
            if (isCode && parts.size() > 1) {
                EXPECT_TRUE(isSame(IPMITOOL_DATA, parts[1], data2))
                    << parts[1] << " is not " << data2;
                ++codesOfIpmitool;
            }
            return;
        }
        EXPECT_TRUE(isSameEvent(description, event.eventType, event.sensorType, words))
            << description << " is not " << words;
    }

    bool needed[std::size(DIFFERENCES)] = {};
    std::size_t codesOfIpmitool = 0;
};

std::string eventFile(const std::vector<Sent>& events)
{
    std::string text;
    for (const Sent& event : events) {
        text += fmt::format("0x04 {:#04x} 0x33 {:#04x} {:#04x} {:#04x} {:#04x}\n", event.sensorType,
                            event.eventType, event.data[0], event.data[1], event.data[2]);
    }
    return text;
}

std::vector<std::string> linesWith(const std::string& text, const std::string& word)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        if (line.find(word) != std::string::npos) {
            lines.push_back(line);
        }
    }
    return lines;
}

/// What follows the colon of a line of ipmitool.
std::string valueOf(const std::string& line)
{
    const std::string value = line.substr(line.find(": ") + 2);
    return value.substr(0, value.find_last_not_of(' ') + 1);
}

/// Without what the simulator logs when it is cleared.
std::vector<std::string> lastOf(const std::vector<std::string>& lines, std::size_t count)
{
    return {lines.end() - static_cast<long>(std::min(count, lines.size())), lines.end()};
}

}

TEST_F(EventData, MeansWhatIpmiSelAndIpmitoolSay)
{
    if (!hasPrograms({"ipmi_sim", "ipmitool", "ipmi-sel"})) {
        GTEST_SKIP() << "ipmi_sim, ipmitool and ipmi-sel are not all here";
    }
    const ScratchRoot root;
    const Simulator simulator(root.path());
    const Events events;
    const std::vector<Sent>& sent = events.all();
    writeFile(root.at("/events.txt"), eventFile(sent));
    ASSERT_EQ(simulator.ipmitool({"sel", "clear"}).status, 0);
    const Outcome added = simulator.ipmitool({"sel", "add", root.at("/events.txt")});
    ASSERT_EQ(added.status, 0) << added.err;

    const Outcome listed = simulator.ipmiSel({"-v", "--no-header-output"});
    ASSERT_EQ(listed.status, 0) << listed.err;
    const auto lines = lastOf(linesWith(listed.out, " | "), sent.size());
    // What `sel get` says of each record, in one go; it is compared for a part of them.
    const Outcome verbose = simulator.ipmitool({"sel", "list", "-v"});
    ASSERT_EQ(verbose.status, 0) << verbose.err;
    const auto descriptions = lastOf(linesWith(verbose.out, " Description "), sent.size());
    const auto data = lastOf(linesWith(verbose.out, " Event Data "), sent.size());
    const auto ids = lastOf(linesWith(verbose.out, "SEL Record ID "), sent.size());
    ASSERT_EQ(lines.size(), sent.size());
    ASSERT_EQ(ids.size(), sent.size());
    ASSERT_EQ(descriptions.size(), sent.size());
    ASSERT_EQ(data.size(), sent.size());

    constexpr std::size_t STEP = 97;
    Arguments words = {"sel", "get"};
    std::vector<std::string> some;
    for (std::size_t i = 0; i < sent.size(); i += STEP) {
        words.push_back("0x" + valueOf(ids[i]));
        some.push_back(descriptions[i]);
    }
    EXPECT_EQ(linesWith(simulator.ipmitool(words).out, " Description "), some);

    for (std::size_t i = 0; i < sent.size(); ++i) {
        SCOPED_TRACE(described(sent[i]));
        ASSERT_NE(data[i].find(toLowerHex(sent[i].data)), std::string::npos) << data[i];
        compareWithFreeipmi(lines[i], sent[i]);
        compareWithIpmitool(valueOf(descriptions[i]), sent[i]);
    }
    for (std::size_t i = 0; i < std::size(DIFFERENCES); ++i) {
        EXPECT_TRUE(needed[i]) << "there is no such difference: " << DIFFERENCES[i].reason;
    }
    EXPECT_GT(codesOfIpmitool, 200U);
}
