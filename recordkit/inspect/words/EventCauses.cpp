// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/words/EventCauses.h>

#include <fmt/format.h>
#include <iterator>

#include <recordkit/inspect/words/EventTypes.h>
#include <recordkit/inspect/words/EventWords.h>

namespace recordkit::inspect {

namespace {

constexpr unsigned char NOT_PRESENT = 0xFF;
constexpr unsigned char SEVERITY_EVENT = 0x07;
constexpr unsigned char ACPI_SENSOR = 0x22;

/// Words by code: "" for a code that says nothing; nullptr, as after the end, for a reserved one.
struct CodeWords {
    const char* const* words = nullptr;
    std::size_t count = 0;
};

template <std::size_t Count> constexpr CodeWords all(const char* const (&words)[Count])
{
    return {words, Count};
}

// clang-format off
constexpr const char* CONFIGURATION_ERRORS[] = {
    "Vendor mismatch", // 0h
    "Revision mismatch", // 1h
    "Processor missing", // 2h
    "Power Supply rating mismatch", // 3h
    "Voltage rating mismatch", // 4h
};
constexpr const char* FIRMWARE_ERRORS[] = {
    "", // 00h
    "No system memory is physically installed", // 01h
    "No usable system memory", // 02h
    "Unrecoverable hard-disk/ATAPI/IDE device failure", // 03h
    "Unrecoverable system-board failure", // 04h
    "Unrecoverable diskette subsystem failure", // 05h
    "Unrecoverable hard-disk controller failure", // 06h
    "Unrecoverable PS/2 or USB keyboard failure", // 07h
    "Removable boot media not found", // 08h
    "Unrecoverable video controller failure", // 09h
    "No video device detected", // 0Ah
    "Firmware (BIOS) ROM corruption detected", // 0Bh
    "CPU voltage mismatch", // 0Ch
    "CPU speed matching failure", // 0Dh
};
constexpr const char* FIRMWARE_PROGRESS[] = {
    "", // 00h
    "Memory initialization", // 01h
    "Hard-disk initialization", // 02h
    "Secondary processor(s) initialization", // 03h
    "User authentication", // 04h
    "User-initiated system setup", // 05h
    "USB resource configuration", // 06h
    "PCI resource configuration", // 07h
    "Option ROM initialization", // 08h
    "Video initialization", // 09h
    "Cache initialization", // 0Ah
    "SM Bus initialization", // 0Bh
    "Keyboard controller initialization", // 0Ch
    "Embedded controller/management controller initialization", // 0Dh
    "Docking station attachment", // 0Eh
    "Enabling docking station", // 0Fh
    "Docking station ejection", // 10h
    "Disabling docking station", // 11h
    "Calling operating system wake-up vector", // 12h
    "Starting operating system boot process", // 13h
    "Baseboard or motherboard initialization", // 14h
    nullptr, // 15h
    "Floppy initialization", // 16h
    "Keyboard test", // 17h
    "Pointing device test", // 18h
    "Primary processor initialization", // 19h
};
constexpr const char* LOG_ACTIONS[] = {
    "entry added", // 0h
    "entry added because the event has no standard one", // 1h
    "entry added along with SEL entries", // 2h
    "log cleared", // 3h
    "log disabled", // 4h
    "log enabled", // 5h
};
constexpr const char* LOG_TYPES[] = {
    "MCA log", // 0h
    "OEM log 1", // 1h
    "OEM log 2", // 2h
};
constexpr const char* ALERT[] = {"", "alert"};
constexpr const char* POWER_OFF[] = {"", "power off"};
constexpr const char* RESET[] = {"", "reset"};
constexpr const char* POWER_CYCLE[] = {"", "power cycle"};
constexpr const char* OEM_ACTION[] = {"", "OEM action"};
constexpr const char* DIAGNOSTIC_INTERRUPT[] = {"", "diagnostic interrupt (NMI)"};
constexpr const char* PAIR[] = {
    "first of a pair", // 0b
    "second of a pair", // 1b
};
constexpr const char* CLOCKS[] = {
    "SEL clock", // 0h: also where it is the clock of both
    "SDR clock", // 1h
};
constexpr const char* RESTART_CAUSES[] = {
    "", // 0h
    "Chassis Control command", // 1h
    "reset via pushbutton", // 2h
    "power-up via power pushbutton", // 3h
    "Watchdog expiration", // 4h
    "OEM cause", // 5h
    "automatic power-up, policy 'always restore'", // 6h
    "automatic power-up, policy 'restore previous power state'", // 7h
    "reset via PEF", // 8h
    "power-cycle via PEF", // 9h
    "soft reset", // Ah
    "power-up via RTC", // Bh
};
constexpr const char* SLOT_TYPES[] = {
    "PCI", // 00h
    "Drive Array", // 01h
    "External Peripheral Connector", // 02h
    "Docking", // 03h
    "other standard internal expansion slot", // 04h
    "slot of the sensor's entity", // 05h
    "AdvancedTCA", // 06h
    "DIMM/memory device", // 07h
    "FAN", // 08h
    "PCI Express", // 09h
    "SCSI (parallel)", // 0Ah
    "SATA / SAS", // 0Bh
    "USB", // 0Ch
};
constexpr const char* INTERRUPTS[] = {
    "none", // 0h
    "SMI", // 1h
    "NMI", // 2h
    "Messaging Interrupt", // 3h
    nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
    nullptr, nullptr, nullptr, nullptr, nullptr, // 4h to Eh
    "", // Fh
};
constexpr const char* TIMER_USES[] = {
    nullptr, // 0h
    "BIOS FRB2", // 1h
    "BIOS/POST", // 2h
    "OS Load", // 3h
    "SMS/OS", // 4h
    "OEM", // 5h
    nullptr, nullptr, nullptr, nullptr, nullptr,
    nullptr, nullptr, nullptr, nullptr, // 6h to Eh
    "", // Fh
};
constexpr const char* FRU_KINDS[] = {
    "physical FRU device", // 0b
    "logical FRU device", // 1b
};
constexpr const char* DEACTIVATIONS[] = {
    "", // 00b: also of a session that was activated
    "deactivated by Close Session command", // 01b
    "deactivated by timeout", // 10b
    "deactivated by configuration change", // 11b
};
constexpr const char* VERSION_CHANGES[] = {
    "", // 00h
    "management controller device ID", // 01h
    "management controller firmware revision", // 02h
    "management controller device revision", // 03h
    "management controller manufacturer ID", // 04h
    "management controller IPMI version", // 05h
    "management controller auxiliary firmware ID", // 06h
    "management controller firmware boot block", // 07h
    "other management controller firmware", // 08h
    "system firmware (EFI / BIOS) change", // 09h
    "SMBIOS change", // 0Ah
    "operating system change", // 0Bh
    "operating system loader change", // 0Ch
    "service or diagnostic partition change", // 0Dh
    "management software agent change", // 0Eh
    "management software application change", // 0Fh
    "management software middleware change", // 10h
    "programmable hardware change", // 11h
    "board/FRU module change", // 12h
    "board/FRU component change", // 13h
    "board/FRU replaced with equivalent version", // 14h
    "board/FRU replaced with newer version", // 15h
    "board/FRU replaced with older version", // 16h
    "board/FRU hardware configuration change", // 17h
};
constexpr const char* FRU_STATE_CAUSES[] = {
    "Normal State Change", // 0h
    "Change Commanded by software external to FRU", // 1h
    "State Change due to operator changing a Handle latch", // 2h
    "State Change due to operator pressing the hot swap push button", // 3h
    "State Change due to FRU programmatic action", // 4h
    "Communication Lost", // 5h
    "Communication Lost due to local failure", // 6h
    "State Change due to unexpected extraction", // 7h
    "State Change due to operator intervention/update", // 8h
    "Unable to compute IPMB address", // 9h
    "Unexpected Deactivation", // Ah
    nullptr, nullptr, nullptr, nullptr, // Bh to Eh
    "", // Fh
};
// clang-format on

/// A system event, as far as its event data 2 and 3 are concerned.
struct Subject {
    unsigned char eventType;
    unsigned char sensorType;
    const unsigned char (&data)[3];

    unsigned char offset() const { return data[0] & 0x0F; }
    bool hasCode2() const
    {
        return formOfData2(eventType, data[0]) == DataForm::SENSOR_SPECIFIC &&
               data[1] != NOT_PRESENT;
    }
};

/// A group of bits in a sensor-specific code, and what they mean.
struct Part {
    unsigned char sensorType;
    unsigned short offsets; ///< bit n: it is defined for offset n
    unsigned char byte;     ///< 2 or 3: event data 2 or 3
    unsigned char shift;
    unsigned char width;
    /// The text of a value; empty if it adds nothing.
    std::string (*say)(const Part& part, unsigned int value, const Subject& event);
    const char* what; ///< before the value, where it is a number
    CodeWords words = {};

    unsigned int mask() const { return ((1U << width) - 1) << shift; }
};

std::string number(const Part& part, unsigned int value, const Subject&)
{
    return fmt::format("{} {}", part.what, value);
}

std::string numberFromOne(const Part& part, unsigned int value, const Subject& event)
{
    return value == 0 ? "" : number(part, value, event);
}

std::string hexNumber(const Part& part, unsigned int value, const Subject&)
{
    return fmt::format("{} {:0{}X}h", part.what, value, part.width > 4 ? 2 : 1);
}

std::string code(const Part& part, unsigned int value, const Subject& event)
{
    const char* const words = value < part.words.count ? part.words.words[value] : nullptr;
    return words != nullptr ? words : hexNumber(part, value, event);
}

/// With what they are, for words that do not say it.
std::string namedCode(const Part& part, unsigned int value, const Subject& event)
{
    const bool hasWords = value < part.words.count && part.words.words[value] != nullptr;
    const std::string text = code(part, value, event);
    return hasWords && !text.empty() ? fmt::format("{} {}", part.what, text) : text;
}

std::string eventTypeOf(const Part& part, unsigned int value, const Subject& event)
{
    const auto type = static_cast<unsigned char>(value);
    const bool hasName =
        (type >= THRESHOLD_EVENT && type <= LAST_GENERIC_EVENT) || type == SENSOR_SPECIFIC_EVENT;
    return hasName ? fmt::format("{} {}", part.what, eventTypeName(type))
                   : hexNumber(part, value, event);
}

/// The offset of an event that is not logged. Event data 2 has its event type.
std::string unloggedOffset(const Part& part, unsigned int value, const Subject& event)
{
    constexpr unsigned int ALL = 0x20;
    constexpr unsigned int ASSERTION = 0x10;
    if ((value & ALL) != 0) {
        return "all its events";
    }
    const auto offset = static_cast<unsigned char>(value & 0x0F);
    const unsigned char type = event.hasCode2() ? event.data[1] : 0;
    // The event does not name the sensor type of sensor-specific events: they have no words here.
    const char* const words = eventWords(type, 0, offset);
    return fmt::format("{} {}", words != nullptr ? words : fmt::format("{} {}", part.what, offset),
                       (value & ASSERTION) != 0 ? "asserted" : "deasserted");
}

/// Whether the number in event data 2 is that of an entity instance, as without event data 3.
std::string processorNumber(const Part&, unsigned int value, const Subject& event)
{
    return value == 1 && event.hasCode2() ? "vendor-specific number" : "";
}

std::string percentage(const Part& part, unsigned int value, const Subject& event)
{
    constexpr unsigned int FULL = 100;
    return value > FULL ? hexNumber(part, value, event) : fmt::format("{} % full", value);
}

/// The codes are the offsets of an ACPI sensor, without its last one, "unknown", which is 0Dh in
/// event data 3.
std::string powerState(const Part& part, unsigned int value, const Subject& event)
{
    constexpr unsigned int LEGACY_OFF = 0x0C;
    constexpr unsigned int UNKNOWN = 0x0D;
    if (value <= LEGACY_OFF) {
        return fmt::format(
            "{} {}", part.what,
            eventWords(SENSOR_SPECIFIC_EVENT, ACPI_SENSOR, static_cast<unsigned char>(value)));
    }
    return value == UNKNOWN && part.byte == 3 ? "" : hexNumber(part, value, event);
}

/// Event data 2 says whether it is an id or an address.
std::string fruDevice(const Part& part, unsigned int value, const Subject& event)
{
    constexpr unsigned int LOGICAL = 0x80;
    if (!event.hasCode2()) {
        return hexNumber(part, value, event);
    }
    if ((event.data[1] & LOGICAL) != 0) {
        return fmt::format("FRU device id {}", value);
    }
    return fmt::format("slave address {:02X}h{}", value & 0xFE,
                       (value & 1) != 0 ? ", reserved bits 01h" : "");
}

/// "previous state Device Enabled", or with its offset where the standard has no words.
std::string offsetText(const char* what, unsigned char eventType, unsigned char sensorType,
                       unsigned int offset)
{
    const char* const words = eventWords(eventType, sensorType, static_cast<unsigned char>(offset));
    return words != nullptr ? fmt::format("{} {}", what, words)
                            : fmt::format("{} offset {}", what, offset);
}

/// An unknown state is given as the present one.
std::string stateBefore(const Part& part, unsigned int value, const Subject& event)
{
    return value == event.offset()
               ? ""
               : offsetText(part.what, event.eventType, event.sensorType, value);
}

constexpr unsigned short only(unsigned int offset)
{
    return static_cast<unsigned short>(1U << offset);
}
constexpr unsigned short upTo(unsigned int offset)
{
    return static_cast<unsigned short>((2U << offset) - 1);
}

// clang-format off
constexpr Part PARTS[] = {
    {0x05, only(4), 2, 0, 8, number, "network controller"},
    {0x08, only(6), 3, 0, 4, code, "error type", all(CONFIGURATION_ERRORS)},
    {0x0C, upTo(10), 3, 0, 8, number, "memory module"},
    {0x0F, only(0), 2, 0, 8, code, "error", all(FIRMWARE_ERRORS)},
    {0x0F, only(1) | only(2), 2, 0, 8, code, "progress", all(FIRMWARE_PROGRESS)},
    {0x10, only(0), 2, 0, 8, number, "memory module"},
    {0x10, only(1), 2, 0, 8, eventTypeOf, "event type"},
    {0x10, only(1), 3, 0, 6, unloggedOffset, "offset"},
    {0x10, only(5), 3, 0, 8, percentage, "filling"},
    {0x10, only(6), 2, 0, 8, number, "processor"},
    {0x10, only(6), 3, 7, 1, processorNumber, ""},
    {0x12, only(3), 2, 4, 4, code, "action", all(LOG_ACTIONS)},
    {0x12, only(3), 2, 0, 4, code, "log type", all(LOG_TYPES)},
    {0x12, only(4), 2, 0, 1, code, "", all(ALERT)},
    {0x12, only(4), 2, 1, 1, code, "", all(POWER_OFF)},
    {0x12, only(4), 2, 2, 1, code, "", all(RESET)},
    {0x12, only(4), 2, 3, 1, code, "", all(POWER_CYCLE)},
    {0x12, only(4), 2, 4, 1, code, "", all(OEM_ACTION)},
    {0x12, only(4), 2, 5, 1, code, "", all(DIAGNOSTIC_INTERRUPT)},
    {0x12, only(5), 2, 7, 1, code, "", all(PAIR)},
    {0x12, only(5), 2, 0, 4, code, "clock", all(CLOCKS)},
    {0x19, only(0), 2, 0, 8, powerState, "requested power state"},
    {0x19, only(0), 3, 0, 8, powerState, "power state at that time"},
    {0x1D, only(7), 2, 0, 4, code, "restart cause", all(RESTART_CAUSES)},
    {0x1D, only(7), 3, 0, 8, number, "channel"},
    {0x21, upTo(9), 2, 0, 7, code, "slot type", all(SLOT_TYPES)},
    {0x21, upTo(9), 3, 0, 8, number, "slot"},
    {0x23, upTo(8), 2, 4, 4, namedCode, "interrupt", all(INTERRUPTS)},
    {0x23, upTo(8), 2, 0, 4, namedCode, "timer use", all(TIMER_USES)},
    {0x28, only(0) | only(4), 2, 0, 8, hexNumber, "sensor"},
    {0x28, only(5), 2, 7, 1, code, "", all(FRU_KINDS)},
    {0x28, only(5), 2, 3, 2, numberFromOne, "LUN"},
    {0x28, only(5), 2, 0, 3, numberFromOne, "private bus"},
    {0x28, only(5), 3, 0, 8, fruDevice, "FRU device"},
    {0x2A, upTo(3), 2, 0, 6, numberFromOne, "user"},
    {0x2A, upTo(3), 3, 4, 2, code, "", all(DEACTIVATIONS)},
    {0x2A, upTo(3), 3, 0, 4, number, "channel"},
    {0x2B, upTo(7), 2, 0, 8, code, "version change type", all(VERSION_CHANGES)},
    {0x2C, upTo(7), 2, 4, 4, code, "cause", all(FRU_STATE_CAUSES)},
    {0x2C, upTo(7), 2, 0, 4, stateBefore, "previous state"},
};
// clang-format on
static_assert(std::size(PARTS) == 40, "the groups of bits of all sensor types");

void append(std::string& text, const std::string& more)
{
    text += (text.empty() || more.empty() ? "" : ", ") + more;
}

/// The text of event data 2 or 3 of a sensor-specific event.
std::string codeText(const Subject& event, unsigned char byte)
{
    const unsigned int value = event.data[byte - 1];
    std::string text;
    unsigned int defined = 0;
    for (const Part& part : PARTS) {
        if (part.sensorType == event.sensorType && part.byte == byte &&
            (part.offsets >> event.offset() & 1) != 0) {
            defined |= part.mask();
            append(text, part.say(part, (value & part.mask()) >> part.shift, event));
        }
    }
    const unsigned int reserved = value & ~defined;
    if (defined != 0 && reserved != 0) {
        append(text, fmt::format("reserved bits {:02X}h", reserved));
    }
    return text;
}

std::string previousStateText(const Subject& event)
{
    constexpr unsigned int UNSPECIFIED = 0x0F;
    const unsigned int severity = event.data[1] >> 4;
    const unsigned int state = event.data[1] & 0x0F;
    std::string text;
    if (state != UNSPECIFIED) {
        append(text, offsetText("previous state", event.eventType, event.sensorType, state));
    }
    if (severity != UNSPECIFIED) {
        append(text, offsetText("severity", SEVERITY_EVENT, event.sensorType, severity));
    }
    return text;
}

std::string dataText(const Subject& event, unsigned char byte, DataForm form)
{
    if (event.data[byte - 1] == NOT_PRESENT) {
        return "";
    }
    if (form == DataForm::SENSOR_SPECIFIC && event.eventType == SENSOR_SPECIFIC_EVENT) {
        return codeText(event, byte);
    }
    // An OEM's event type gives its own meaning to offsets.
    return form == DataForm::PREVIOUS_STATE && event.eventType < FIRST_OEM_EVENT
               ? previousStateText(event)
               : "";
}

enum class EventClass { THRESHOLD, DISCRETE, OEM };

EventClass classOf(unsigned char eventType)
{
    if (eventType == THRESHOLD_EVENT) {
        return EventClass::THRESHOLD;
    }
    return eventType >= FIRST_OEM_EVENT ? EventClass::OEM : EventClass::DISCRETE;
}

/// Where bits 01b and 11b of the classes differ, they are given by the caller.
DataForm formOf(unsigned int bits, DataForm first, DataForm last)
{
    switch (bits) {
    case 0:
        return DataForm::UNSPECIFIED;
    case 1:
        return first;
    case 2:
        return DataForm::OEM;
    default:
        return last;
    }
}

DataForm lastForm(unsigned char eventType)
{
    return classOf(eventType) == EventClass::OEM ? DataForm::RESERVED : DataForm::SENSOR_SPECIFIC;
}

}

const char* formName(DataForm form)
{
    constexpr const char* NAMES[] = {
        "unspecified", "reading",         "threshold", "previous state and severity",
        "OEM code",    "sensor-specific", "reserved"};
    return NAMES[static_cast<std::size_t>(form)];
}

DataForm formOfData2(unsigned char eventType, unsigned char data1)
{
    const bool isThreshold = classOf(eventType) == EventClass::THRESHOLD;
    return formOf(data1 >> 6, isThreshold ? DataForm::READING : DataForm::PREVIOUS_STATE,
                  lastForm(eventType));
}

DataForm formOfData3(unsigned char eventType, unsigned char data1)
{
    const bool isThreshold = classOf(eventType) == EventClass::THRESHOLD;
    return formOf(data1 >> 4 & 3, isThreshold ? DataForm::THRESHOLD : DataForm::RESERVED,
                  lastForm(eventType));
}

EventCauses eventCauses(unsigned char eventType, unsigned char sensorType,
                        const unsigned char (&data)[3])
{
    const Subject event = {eventType, sensorType, data};
    return {dataText(event, 2, formOfData2(eventType, data[0])),
            dataText(event, 3, formOfData3(eventType, data[0]))};
}

}
