// SPDX-License-Identifier: Apache-2.0
// Public repositories as ipmitool and freeipmi describe them, value by value.
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fmt/format.h>
#include <gtest/gtest.h>
#include <map>
#include <sstream>

#include <recordkit/inspect/sensor/SdrRecordFields.h>

#include "support/Answers.h"
#include "support/PeerNames.h"
#include "support/ScratchRoot.h"

using namespace recordkit::inspect;
using namespace testing_support;

namespace {

const std::string FOLDER = RECORDKIT_PUBLIC_DATA "/sdr/";

/// What we say of a record.
class Ours {
public:
    explicit Ours(const SdrRecord& record) : recordType(record.type())
    {
        for (const DecodedField& field : describeRecord(record).fields) {
            fields.emplace(field.name, field);
        }
    }

    unsigned char type() const { return recordType; }
    bool has(const std::string& name) const { return fields.count(name) != 0; }
    long long number(const std::string& name) const
    {
        return std::get<long long>(fields.at(name).value);
    }
    bool flag(const std::string& name) const { return std::get<bool>(fields.at(name).value); }
    std::string text(const std::string& name) const
    {
        return std::get<std::string>(fields.at(name).value);
    }
    std::vector<long long> bits(const std::string& name) const
    {
        return std::get<std::vector<long long>>(fields.at(name).value);
    }
    std::string fraction(const std::string& name) const
    {
        return fmt::format("{:f}", std::get<double>(fields.at(name).value));
    }
    const std::string& words(const std::string& name) const { return fields.at(name).meaning; }

    bool isThreshold() const { return number("event_type") == 1; }

private:
    unsigned char recordType;
    std::map<std::string, DecodedField> fields;
};

std::string trimmed(const std::string& text)
{
    const std::size_t first = text.find_first_not_of(' ');
    return first == std::string::npos ? ""
                                      : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::vector<std::string> split(const std::string& text, const std::string& separator)
{
    std::vector<std::string> parts;
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t end = std::min(text.find(separator, at), text.size());
        if (end > at) {
            parts.push_back(text.substr(at, end - at));
        }
        at = end + separator.size();
    }
    return parts;
}

std::string joined(const std::vector<std::string>& parts, const std::string& separator)
{
    std::string text;
    for (const std::string& part : parts) {
        text += (text.empty() ? "" : separator) + part;
    }
    return text;
}

/// The places after the point of a number that a text begins with.
int placesOf(const std::string& text)
{
    const std::size_t end = text.find_first_not_of("-0123456789.");
    const std::size_t point = text.substr(0, end).find('.');
    return point == std::string::npos ? 0
                                      : static_cast<int>(std::min(end, text.size()) - point) - 1;
}

/// Theirs if it begins with the same number as ours, as precisely as either is written.
std::string ifNear(const std::string& theirs, const std::string& ours)
{
    try {
        const double limit = 0.5 * std::pow(10.0, -std::min(placesOf(theirs), placesOf(ours)));
        return std::fabs(std::stod(theirs) - std::stod(ours)) <= limit * 1.0001 ? theirs : ours;
    } catch (const std::invalid_argument&) {
        return ours;
    }
}

/// Theirs if it is one of ours, apart from case and what is known to be called differently.
std::string ifSameEntity(const std::string& theirs, const std::string& ours)
{
    const std::map<std::string, std::string> others = {
        {"bios", "system firmware"},
        {"fan device", "fan or cooling device"},
        {"fan/cooling device", "fan or cooling device"},
        {"power management", "power management board"},
        {"unknown (0x90)", "entity 144"},
        {"power management/power distribution board", "power management board"},
    };
    const auto lower = [](std::string text) {
        std::transform(text.begin(), text.end(), text.begin(),
                       [](unsigned char each) { return static_cast<char>(std::tolower(each)); });
        return text;
    };
    const auto other = others.find(lower(theirs));
    return (other == others.end() ? lower(theirs) : other->second) == lower(ours) ? theirs : ours;
}

std::string yesNo(bool isSet)
{
    return isSet ? "Yes" : "No";
}

/// How a peer writes one value, in its own words.
using Write = std::string (*)(const Ours& ours, const std::string& theirs);
using Writers = std::map<std::string, Write>;

/// A value that a peer writes otherwise, and why ours is right.
struct Deviation {
    const char* name; ///< of the value
    bool (*is)(const Ours& ours, const std::string& theirs);
    const char* reason;
    unsigned int times; ///< in all answers
    unsigned int count = 0;
};

/// Compares values, and counts them by name.
class Comparison {
public:
    Comparison(const Writers& peerWriters, std::vector<Deviation> peerDeviations)
        : writers(peerWriters), deviations(std::move(peerDeviations))
    {
    }

    void compare(const std::string& where, const Ours& ours, const std::string& name,
                 const std::string& theirs)
    {
        const auto writer = writers.find(name);
        if (writer == writers.end()) {
            ADD_FAILURE() << where << ": nothing is compared with " << name << ": " << theirs;
            return;
        }
        if (writer->second == nullptr) {
            return;
        }
        ++counts[name];
        for (Deviation& deviation : deviations) {
            if (name == deviation.name && writer->second(ours, theirs) != theirs &&
                deviation.is(ours, theirs)) {
                ++deviation.count;
                return;
            }
        }
        EXPECT_EQ(writer->second(ours, theirs), theirs) << where << ": " << name;
    }

    /// Every value was compared, and there are exactly the known deviations.
    void finish() const
    {
        for (const auto& [name, writer] : writers) {
            if (writer != nullptr) {
                EXPECT_GT(counts.count(name) == 0 ? 0U : counts.at(name), 0U) << name;
            }
        }
        for (const Deviation& deviation : deviations) {
            EXPECT_EQ(deviation.count, deviation.times)
                << deviation.name << ": " << deviation.reason;
        }
    }
    unsigned int total() const
    {
        unsigned int sum = 0;
        for (const auto& each : counts) {
            sum += each.second;
        }
        return sum;
    }

private:
    const Writers& writers;
    std::vector<Deviation> deviations;
    std::map<std::string, unsigned int> counts;
};

/// The names of a block of an answer and their values, in order.
using Block = std::vector<std::pair<std::string, std::string>>;

/// Blocks with an empty line after each. A value goes on in lines without a colon.
std::vector<Block> blocksOf(const std::string& answer)
{
    std::vector<Block> blocks(1);
    std::istringstream lines(answer);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t colon = line.find(':');
        if (trimmed(line).empty()) {
            blocks.emplace_back();
        } else if (trimmed(line)[0] == '[' && !blocks.back().empty()) {
            blocks.back().back().second += "\n" + trimmed(line);
        } else if (colon != std::string::npos) {
            blocks.back().emplace_back(trimmed(line.substr(0, colon)),
                                       trimmed(line.substr(colon + 1)));
        }
    }
    blocks.erase(std::remove_if(blocks.begin(), blocks.end(),
                                [](const Block& block) { return block.empty(); }),
                 blocks.end());
    return blocks;
}

std::vector<std::string> answersOf(const std::string& suffix)
{
    std::vector<std::string> servers;
    if (std::filesystem::exists(FOLDER + "ref")) {
        for (const auto& entry : std::filesystem::directory_iterator(FOLDER + "ref")) {
            const std::string name = entry.path().filename().string();
            const std::size_t at = name.find(suffix);
            if (at != std::string::npos) {
                servers.push_back(name.substr(0, at));
            }
        }
    }
    std::sort(servers.begin(), servers.end());
    return servers;
}

std::vector<SdrRecord> recordsOf(const std::string& server)
{
    for (const std::string& path :
         {FOLDER + server + ".sdr", FOLDER + "ipmitool-dump/" + server + ".dump.sdr"}) {
        if (std::filesystem::exists(path)) {
            return parseSdrFile(readFile(path)).records;
        }
    }
    ADD_FAILURE() << server << " has no repository";
    return {};
}

// ipmitool sdr list all -v

constexpr const char* SHORT_THRESHOLDS[] = {"lnc", "lcr", "lnr", "unc", "ucr", "unr"};
/// As it lists them.
constexpr unsigned int LISTED_THRESHOLDS[] = {2, 1, 0, 3, 4, 5};

std::string shortThresholds(const std::vector<long long>& bits)
{
    std::vector<std::string> names;
    for (const unsigned int bit : LISTED_THRESHOLDS) {
        if (std::find(bits.begin(), bits.end(), bit) != bits.end()) {
            names.emplace_back(SHORT_THRESHOLDS[bit]);
        }
    }
    return joined(names, " ");
}

template <const char* const& FIELD> std::string thresholdsOf(const Ours& ours, const std::string&)
{
    return ours.number("threshold_access") == 0 ? "No Thresholds"
                                                : shortThresholds(ours.bits(FIELD));
}
constexpr const char* READABLE = "readable_thresholds";
constexpr const char* SETTABLE = "settable_thresholds";

std::string readMask(const Ours& ours, const std::string&)
{
    std::vector<long long> bits = ours.bits("lower_comparisons");
    for (const long long bit : ours.bits("upper_comparisons")) {
        bits.push_back(bit + 3);
    }
    return shortThresholds(bits);
}

/// The standard names these (IPMI v2.0, table 42-3, sensor types 07h, 10h and 2Bh), the peers do
/// not.
constexpr const char* UNNAMED_BY_IPMITOOL[] = {
    "Correctable Machine Check Error", "Correctable Machine Check Error Logging Disabled",
    "Software or F/W Change detected with associated Entity was successful"};
constexpr const char* UNNAMED_BY_FREEIPMI[] = {"Correctable Machine Check Error"};

/// The names of a list, without offsets that the standard or the peer does not name.
template <std::size_t Count> std::vector<std::string>
namedOffsets(const Ours& ours, const char* field, const char* const (&unnamed)[Count])
{
    std::vector<std::string> names = split(ours.words(field), "; ");
    names.erase(std::remove_if(names.begin(), names.end(),
                               [&unnamed](const std::string& name) {
                                   return name.rfind("offset ", 0) == 0 || name == "none" ||
                                          name == "reserved" ||
                                          std::find(std::begin(unnamed), std::end(unnamed), name) !=
                                              std::end(unnamed);
                               }),
                names.end());
    return names;
}

template <const char* const& FIELD>
std::string eventsOf(const Ours& ours, const std::string& theirs)
{
    if (ours.isThreshold()) {
        std::vector<std::string> crossings;
        const std::vector<long long> offsets = ours.bits(FIELD);
        for (unsigned int threshold = 0; threshold < std::size(SHORT_THRESHOLDS); ++threshold) {
            for (const unsigned int direction : {0U, 1U}) {
                if (std::find(offsets.begin(), offsets.end(), 2 * threshold + direction) !=
                    offsets.end()) {
                    crossings.push_back(SHORT_THRESHOLDS[threshold] +
                                        std::string(direction == 0 ? "-" : "+"));
                }
            }
        }
        return joined(crossings, " ");
    }
    const std::vector<std::string> names = namedOffsets(ours, FIELD, UNNAMED_BY_IPMITOOL);
    const std::vector<std::string> lines = split(theirs, "\n");
    bool isSame = !lines.empty() && lines.size() == names.size() + 1;
    for (std::size_t i = 0; isSame && i < names.size(); ++i) {
        isSame = isSameEvent(lines[i + 1].substr(1, lines[i + 1].size() - 2),
                             static_cast<unsigned char>(ours.number("event_type")),
                             static_cast<unsigned char>(ours.number("sensor_type")), names[i]);
    }
    return isSame ? theirs : joined(names, "\n");
}
constexpr const char* ASSERTION = "assertion_events";
constexpr const char* DEASSERTION = "deassertion_events";

template <const char* const& FIELD>
std::string readingOf(const Ours& ours, const std::string& theirs)
{
    return ifNear(theirs, ours.words(FIELD));
}
constexpr const char* NOMINAL = "nominal";
constexpr const char* NORMAL_MINIMUM = "normal_minimum";
constexpr const char* NORMAL_MAXIMUM = "normal_maximum";
constexpr const char* MINIMUM = "sensor_minimum";
constexpr const char* MAXIMUM = "sensor_maximum";
constexpr const char* UNR = "upper_non_recoverable";
constexpr const char* UCR = "upper_critical";
constexpr const char* UNC = "upper_non_critical";
constexpr const char* LNR = "lower_non_recoverable";
constexpr const char* LCR = "lower_critical";
constexpr const char* LNC = "lower_non_critical";
constexpr const char* POSITIVE = "positive_hysteresis";
constexpr const char* NEGATIVE = "negative_hysteresis";

template <const char* const& FIELD>
std::string notReadable(const Ours& ours, const std::string& theirs)
{
    const bool isReadable = ours.words(FIELD).find("not readable") == std::string::npos;
    return isReadable ? ifNear(theirs, ours.words(FIELD)) : "N/A";
}

template <const char* const& FIELD> std::string yesNoOf(const Ours& ours, const std::string&)
{
    return yesNo(ours.flag(FIELD));
}
constexpr const char* CHASSIS = "is_chassis_device";
constexpr const char* BRIDGE = "is_bridge";
constexpr const char* GENERATOR = "is_event_generator";
constexpr const char* RECEIVER = "is_event_receiver";
constexpr const char* FRU_DEVICE = "is_fru_inventory_device";
constexpr const char* SEL_DEVICE = "is_sel_device";
constexpr const char* SDR_DEVICE = "is_sdr_repository";
constexpr const char* SENSOR_DEVICE = "is_sensor_device";
constexpr const char* LOGS_ERRORS = "logs_init_errors";

std::string entityOf(const Ours& ours, const std::string& theirs)
{
    const std::size_t open = theirs.find(" (");
    const std::string name =
        open == std::string::npos ? "" : theirs.substr(open + 2, theirs.size() - open - 3);
    return fmt::format("{}.{} ({})", ours.number("entity_id"), ours.number("entity_instance"),
                       ifSameEntity(name, ours.words("entity_id")));
}

std::string sensorTypeOf(const Ours& ours, const std::string& theirs)
{
    const auto type = static_cast<unsigned char>(ours.number("sensor_type"));
    const std::string name = theirs.substr(0, theirs.find(" (0x"));
    return fmt::format("{} (0x{:02x})",
                       isSameSensorType(name, type) ? name : ours.words("sensor_type"), type);
}

std::string discreteTypeOf(const Ours& ours, const std::string& theirs)
{
    return ours.isThreshold() ? "a threshold sensor" : sensorTypeOf(ours, theirs);
}
std::string thresholdTypeOf(const Ours& ours, const std::string& theirs)
{
    return ours.isThreshold() ? sensorTypeOf(ours, theirs) : "a discrete sensor";
}

/// "3840 (+/- 120) RPM": a reading, which no record has, with its tolerance and its units.
std::string sensorReadingOf(const Ours& ours, const std::string& theirs)
{
    const std::size_t open = theirs.find("(+/- ");
    if (open == std::string::npos) {
        return theirs;
    }
    const std::size_t close = theirs.find(") ");
    const std::string tolerance = theirs.substr(open + 5, close - open - 5);
    const std::vector<std::string> parts = split(ours.words("tolerance"), ", +/- ");
    const std::string units = ours.text("units");
    return fmt::format("{}(+/- {}) {}", theirs.substr(0, open),
                       ifNear(tolerance, parts.size() < 2 ? "none" : parts[1]),
                       units == "%" ? "percent" : units);
}

std::string controlOf(const Ours& ours, const std::string&)
{
    constexpr const char* NAMES[] = {"Per-threshold", "Entire Sensor Only", "Global Disable Only",
                                     "No Events From Sensor"};
    return NAMES[ours.number("event_message_control")];
}

std::string sensorIdOf(const Ours& ours, const std::string&)
{
    return fmt::format("{} (0x{:x})", ours.text("id_string"), ours.number("sensor_number"));
}

const Writers IPMITOOL = {
    {"Sensor ID", sensorIdOf},
    {"Entity ID", entityOf},
    {"Sensor Type", sensorTypeOf},
    {"Sensor Type (Discrete)", discreteTypeOf},
    {"Sensor Type (Threshold)", thresholdTypeOf},
    {"Sensor Reading", sensorReadingOf},
    {"Nominal Reading", readingOf<NOMINAL>},
    {"Normal Minimum", readingOf<NORMAL_MINIMUM>},
    {"Normal Maximum", readingOf<NORMAL_MAXIMUM>},
    {"Upper non-recoverable", notReadable<UNR>},
    {"Upper critical", notReadable<UCR>},
    {"Upper non-critical", notReadable<UNC>},
    {"Lower critical", notReadable<LCR>},
    {"Lower non-critical", notReadable<LNC>},
    {"Positive Hysteresis", readingOf<POSITIVE>},
    {"Negative Hysteresis", readingOf<NEGATIVE>},
    {"Minimum sensor range", readingOf<MINIMUM>},
    {"Maximum sensor range", readingOf<MAXIMUM>},
    {"Event Message Control", controlOf},
    {"Readable Thresholds", thresholdsOf<READABLE>},
    {"Settable Thresholds", thresholdsOf<SETTABLE>},
    {"Threshold Read Mask", readMask},
    {"Assertions Enabled", eventsOf<ASSERTION>},
    {"Deassertions Enabled", eventsOf<DEASSERTION>},
    {"OEM",
     [](const Ours& o, const std::string&) {
         return o.type() == SDR_FULL || o.type() == SDR_COMPACT || o.type() == SDR_EVENT_ONLY
                    ? fmt::format("{:X}", o.number("oem"))
                    : fmt::format("{:02X}h", o.number("oem"));
     }},
    {"Device ID", [](const Ours& o, const std::string&) { return trimmed(o.text("id_string")); }},
    {"Device Slave Address",
     [](const Ours& o, const std::string&) {
         return fmt::format("{:02X}h", o.number("device_slave_address") << 1);
     }},
    {"Device Access Address",
     [](const Ours& o, const std::string&) {
         return fmt::format("{:02X}h", o.number("device_access_address") << 1);
     }},
    {"Slave Address",
     [](const Ours& o, const std::string&) {
         return fmt::format("{:02X}h", o.number("device_slave_address") << 1);
     }},
    {"Logical FRU Device",
     [](const Ours& o, const std::string&) {
         return fmt::format("{:02X}h", o.number("fru_device_id"));
     }},
    {"Channel Number",
     [](const Ours& o, const std::string&) {
         return fmt::format("{:X}h", o.number("channel_number"));
     }},
    {"LUN.Bus",
     [](const Ours& o, const std::string&) {
         return fmt::format("{:X}h.{:X}h", o.number("access_lun"), o.number("private_bus_id"));
     }},
    {"Device Type.Modifier",
     [](const Ours& o, const std::string& theirs) {
         return fmt::format("{:X}h.{:X}h", o.number("device_type"),
                            o.number("device_type_modifier")) +
                theirs.substr(std::min(theirs.find(" ("), theirs.size()));
     }},
    {"ACPI System P/S Notif",
     [](const Ours& o, const std::string&) {
         return std::string(o.number("acpi_system_notification") != 0 ? "Required"
                                                                      : "Not Required");
     }},
    {"ACPI Device P/S Notif",
     [](const Ours& o, const std::string&) {
         return std::string(o.number("acpi_device_notification") != 0 ? "Required"
                                                                      : "Not Required");
     }},
    {"Controller Presence",
     [](const Ours& o, const std::string&) {
         return std::string(o.number("controller_presence") != 0 ? "Static" : "Dynamic");
     }},
    {"Logs Init Agent Errors", yesNoOf<LOGS_ERRORS>},
    {"Event Message Gen",
     [](const Ours& o, const std::string&) {
         constexpr const char* NAMES[] = {"Enable", "Disable", "Do Not Init Controller",
                                          "Reserved"};
         return std::string(NAMES[o.number("event_generation")]);
     }},
    {"Chassis Device", yesNoOf<CHASSIS>},
    {"Bridge", yesNoOf<BRIDGE>},
    {"IPMB Event Generator", yesNoOf<GENERATOR>},
    {"IPMB Event Receiver", yesNoOf<RECEIVER>},
    {"FRU Inventory Device", yesNoOf<FRU_DEVICE>},
    {"SEL Device", yesNoOf<SEL_DEVICE>},
    {"SDR Repository", yesNoOf<SDR_DEVICE>},
    {"Sensor Device", yesNoOf<SENSOR_DEVICE>},
    // What the controller answered, not the record.
    {"Status", nullptr},
    {"States Asserted", nullptr},
    {"Event Enable", nullptr},
};

// ipmi-sensors -vv

std::string freeipmiUnits(const Ours& ours)
{
    const std::map<std::string, std::string> others = {
        {"degrees C", "C"}, {"Volts", "V"}, {"Amps", "A"}, {"Watts", "W"}};
    const std::string units = ours.text("units");
    const auto other = others.find(units);
    return other == others.end() ? units : other->second;
}

/// "360.000000 RPM".
std::string freeipmiValue(const Ours& ours, const std::string& theirs, const std::string& value)
{
    const std::size_t blank = theirs.find(' ');
    const std::string number = theirs.substr(0, blank);
    const std::string same = ifNear(number, value);
    return same == number ? number + " " + freeipmiUnits(ours) : value;
}

template <const char* const& FIELD>
std::string freeipmiReading(const Ours& ours, const std::string& theirs)
{
    return ours.words(FIELD) == "not specified" ? "N/A"
                                                : freeipmiValue(ours, theirs, ours.words(FIELD));
}

template <const char* const& FIELD>
std::string freeipmiThreshold(const Ours& ours, const std::string& theirs)
{
    const bool isReadable = ours.words(FIELD).find("not readable") == std::string::npos;
    return isReadable ? freeipmiValue(ours, theirs, ours.words(FIELD)) : "N/A";
}

/// Small letters and digits, without what is in parentheses: the rest is a matter of style.
std::string essenceOf(const std::string& text)
{
    std::string essence;
    int depth = 0;
    for (const char each : text) {
        depth += each == '(' ? 1 : each == ')' ? -1 : 0;
        if (depth == 0 && std::isalnum(static_cast<unsigned char>(each)) != 0) {
            essence += static_cast<char>(std::tolower(static_cast<unsigned char>(each)));
        }
    }
    return essence;
}

template <const char* const& FIELD, const char* const& MASK>
std::string freeipmiEvents(const Ours& ours, const std::string& theirs)
{
    constexpr long long STATES = 0x7FFF;
    const std::string oem = fmt::format("'OEM Event = {:04X}h'", ours.number(MASK) & STATES);
    if (theirs == oem) {
        return oem;
    }
    std::vector<std::string> names;
    for (const std::string& name : namedOffsets(ours, FIELD, UNNAMED_BY_FREEIPMI)) {
        names.push_back("'" + name + "'");
    }
    if (names.empty()) {
        names.emplace_back("'NONE'");
    }
    const std::vector<std::string> lines = split(theirs, "\n");
    const bool isSame = std::equal(lines.begin(), lines.end(), names.begin(), names.end(),
                                   [](const std::string& line, const std::string& name) {
                                       return essenceOf(line) == essenceOf(name);
                                   });
    return isSame ? theirs : joined(names, "\n");
}
constexpr const char* ASSERTION_MASK = "assertion_mask";
constexpr const char* DEASSERTION_MASK = "deassertion_mask";

template <const char* const& FIELD> std::string numberOf(const Ours& ours, const std::string&)
{
    return std::to_string(ours.number(FIELD));
}
template <const char* const& FIELD> std::string hexOf(const Ours& ours, const std::string&)
{
    return fmt::format("{:X}h", ours.number(FIELD));
}
/// "NAME (9h)": their name, our number.
template <const char* const& FIELD> std::string codeOf(const Ours& ours, const std::string& theirs)
{
    const std::string code = fmt::format("{:X}h", ours.number(FIELD));
    const std::size_t open = theirs.rfind(" (");
    return open == std::string::npos ? code : theirs.substr(0, open) + " (" + code + ")";
}
constexpr const char* RECORD_TYPE = "record_type";
constexpr const char* NUMBER = "sensor_number";
constexpr const char* OWNER = "sensor_owner_id";
constexpr const char* OWNER_ADDRESS = "sensor_owner_address";
constexpr const char* OWNER_LUN = "sensor_owner_lun";
constexpr const char* CHANNEL = "channel_number";
constexpr const char* INSTANCE = "entity_instance_number";
constexpr const char* EVENT_TYPE = "event_type";
constexpr const char* M = "m";
constexpr const char* B = "b";
constexpr const char* R_EXPONENT = "r_exponent";
constexpr const char* B_EXPONENT = "b_exponent";
constexpr const char* SHARE_COUNT = "share_count";
constexpr const char* MODIFIER_OFFSET = "id_modifier_offset";
constexpr const char* ACCESS_ADDRESS = "device_access_address";
constexpr const char* SLAVE_ADDRESS = "device_slave_address";
constexpr const char* FRU_ID = "fru_device_id";
constexpr const char* BUS = "private_bus_id";
constexpr const char* LUN = "access_lun";
constexpr const char* DEVICE_TYPE = "device_type";
constexpr const char* MODIFIER = "device_type_modifier";

std::string freeipmiEntity(const Ours& ours, const std::string& theirs)
{
    const std::string name = theirs.substr(0, theirs.rfind(" ("));
    return fmt::format("{} ({})", ifSameEntity(name, ours.words("entity_id")),
                       ours.number("entity_id"));
}

std::string freeipmiSensorType(const Ours& ours, const std::string& theirs)
{
    const auto type = static_cast<unsigned char>(ours.number("sensor_type"));
    const std::string name = theirs.substr(0, theirs.rfind(" ("));
    const bool isSame = isSameSensorType(name, type) || (type >= 0xC0 && name == "OEM Reserved") ||
                        (type == 0x0D && name == "Drive Slot");
    return fmt::format("{} ({:X}h)", isSame ? name : ours.words("sensor_type"), type);
}

/// The name after those of the standard: "2's complement (signed) (2h)".
template <const char* const& FIELD>
std::string namedCode(const Ours& ours, const std::string& theirs)
{
    const bool begins = theirs.rfind(ours.words(FIELD), 0) == 0;
    return begins ? codeOf<FIELD>(ours, theirs) : ours.words(FIELD);
}
constexpr const char* LINEARIZATION = "linearization";
constexpr const char* FORMAT = "analog_data_format";

/// Theirs begins with a capital letter.
template <const char* const& FIELD> std::string capitalOf(const Ours& ours, const std::string&)
{
    std::string words = ours.words(FIELD);
    words[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(words[0])));
    return words;
}
constexpr const char* DIRECTION = "sensor_direction";

const Writers FREEIPMI = {
    {"Record Type", codeOf<RECORD_TYPE>},
    {"ID String", [](const Ours& o, const std::string&) { return trimmed(o.text("id_string")); }},
    {"Device ID String",
     [](const Ours& o, const std::string&) { return trimmed(o.text("id_string")); }},
    {"Sensor Type", freeipmiSensorType},
    {"Sensor Number", numberOf<NUMBER>},
    {"IPMB Slave Address",
     [](const Ours& o, const std::string& theirs) {
         return o.number("sensor_owner_type") == 0 ? hexOf<OWNER_ADDRESS>(o, theirs) : "none";
     }},
    {"System Software ID",
     [](const Ours& o, const std::string& theirs) {
         return o.number("sensor_owner_type") == 1 ? hexOf<OWNER_ADDRESS>(o, theirs) : "none";
     }},
    {"Sensor Owner ID", hexOf<OWNER>},
    {"Sensor Owner LUN", hexOf<OWNER_LUN>},
    {"Channel Number", hexOf<CHANNEL>},
    {"Entity ID", freeipmiEntity},
    {"Entity Instance", numberOf<INSTANCE>},
    {"Entity Instance Type",
     [](const Ours& o, const std::string&) {
         return std::string(o.number("entity_instance_type") == 0 ? "Physical Entity"
                                                                  : "Logical Container Entity");
     }},
    {"FRU Entity ID", freeipmiEntity},
    {"FRU Entity Instance", numberOf<INSTANCE>},
    {"Event/Reading Type Code", hexOf<EVENT_TYPE>},
    {"M", numberOf<M>},
    {"B", numberOf<B>},
    {"R Exponent", numberOf<R_EXPONENT>},
    {"B Exponent", numberOf<B_EXPONENT>},
    {"Linearization", namedCode<LINEARIZATION>},
    {"Analog Data Format", namedCode<FORMAT>},
    {"Tolerance",
     [](const Ours& o, const std::string& theirs) {
         const std::vector<std::string> parts = split(o.words("tolerance"), ", +/- ");
         return freeipmiValue(o, theirs, parts.size() < 2 ? "none" : parts[1]);
     }},
    {"Resolution",
     [](const Ours& o, const std::string& theirs) {
         return freeipmiValue(o, theirs, o.fraction("resolution"));
     }},
    {"Accuracy",
     [](const Ours& o, const std::string& theirs) {
         return ifNear(theirs, o.words("accuracy").substr(4));
     }},
    {"Upper Non-Recoverable Threshold", freeipmiThreshold<UNR>},
    {"Upper Critical Threshold", freeipmiThreshold<UCR>},
    {"Upper Non-Critical Threshold", freeipmiThreshold<UNC>},
    {"Lower Non-Recoverable Threshold", freeipmiThreshold<LNR>},
    {"Lower Critical Threshold", freeipmiThreshold<LCR>},
    {"Lower Non-Critical Threshold", freeipmiThreshold<LNC>},
    {"Nominal Reading", freeipmiReading<NOMINAL>},
    {"Normal Min.", freeipmiReading<NORMAL_MINIMUM>},
    {"Normal Max.", freeipmiReading<NORMAL_MAXIMUM>},
    {"Sensor Min. Reading", freeipmiReading<MINIMUM>},
    {"Sensor Max. Reading", freeipmiReading<MAXIMUM>},
    {"Sensor Direction", capitalOf<DIRECTION>},
    {"Assertion Event Enabled", freeipmiEvents<ASSERTION, ASSERTION_MASK>},
    {"Deassertion Event Enabled", freeipmiEvents<DEASSERTION, DEASSERTION_MASK>},
    {"Share Count", numberOf<SHARE_COUNT>},
    {"ID String Instance Modifier Type",
     [](const Ours& o, const std::string&) {
         return std::string(o.number("id_modifier_type") == 0 ? "Numeric" : "Alpha");
     }},
    {"ID String Instance Modifier Offset", numberOf<MODIFIER_OFFSET>},
    {"Entity Instance Sharing",
     [](const Ours& o, const std::string&) {
         return std::string(o.number("entity_instance_sharing") == 0
                                ? "Same for all records"
                                : "Increments for each shared record");
     }},
    {"Device Access Address", hexOf<ACCESS_ADDRESS>},
    {"Device Slave Address", hexOf<SLAVE_ADDRESS>},
    {"FRU Device ID", hexOf<FRU_ID>},
    {"Private Bus ID", hexOf<BUS>},
    {"LUN for Master Write-Read or FRU Command", hexOf<LUN>},
    {"Device Type", codeOf<DEVICE_TYPE>},
    {"Device Type Modifier", codeOf<MODIFIER>},
    {"Chassis Device", yesNoOf<CHASSIS>},
    {"Bridge Support", yesNoOf<BRIDGE>},
    {"IPMB Event Generator", yesNoOf<GENERATOR>},
    {"IPMB Event Receiver", yesNoOf<RECEIVER>},
    {"FRU Inventory Device", yesNoOf<FRU_DEVICE>},
    {"SEL Device", yesNoOf<SEL_DEVICE>},
    {"SDR Repository Device", yesNoOf<SDR_DEVICE>},
    {"Sensor Device", yesNoOf<SENSOR_DEVICE>},
    // What the controller answered, not the record; and ids that the simulated controller gave
    // them.
    {"Sensor Reading", nullptr},
    {"Sensor Event", nullptr},
    {"Positive Hysteresis", nullptr},
    {"Negative Hysteresis", nullptr},
    {"Record ID", nullptr},
};

/// One value for each name: those of lines with the same name follow each other.
Block withoutRepetition(const Block& block)
{
    Block once;
    for (const auto& [name, value] : block) {
        if (!once.empty() && once.back().first == name) {
            once.back().second += "\n" + value;
        } else {
            once.emplace_back(name, value);
        }
    }
    return once;
}

std::string valueOf(const Block& block, const std::string& name)
{
    for (const auto& [each, value] : block) {
        if (each == name) {
            return value;
        }
    }
    return "";
}

/// Whether a block describes a record: the controller that answered has its own record ids.
bool describes(const Block& block, const Ours& ours)
{
    const std::string type = valueOf(block, "Record Type");
    const std::string number = valueOf(block, "Sensor Number");
    const std::string name = valueOf(block, "ID String") + valueOf(block, "Device ID String");
    return codeOf<RECORD_TYPE>(ours, type) == type && ours.has("id_string") &&
           trimmed(ours.text("id_string")) == name &&
           (number.empty() || numberOf<NUMBER>(ours, number) == number);
}

/// A reading has a line where the record specifies it, a threshold where the sensor has it; some
/// sensors that answered no reading have lines for neither.
void expectSpecified(const std::string& where, const Block& block, const Ours& ours)
{
    if (ours.type() != SDR_FULL || !ours.isThreshold() || ours.number("threshold_access") == 0 ||
        valueOf(block, "Sensor Reading") == "No Reading") {
        return;
    }
    const std::pair<const char*, const char*> rows[] = {{"Nominal Reading", NOMINAL},
                                                        {"Normal Minimum", NORMAL_MINIMUM},
                                                        {"Normal Maximum", NORMAL_MAXIMUM},
                                                        {"Upper non-recoverable", UNR},
                                                        {"Upper critical", UCR},
                                                        {"Upper non-critical", UNC},
                                                        {"Lower non-recoverable", LNR},
                                                        {"Lower critical", LCR},
                                                        {"Lower non-critical", LNC}};
    for (const auto& [name, field] : rows) {
        const std::string& words = ours.words(field);
        const bool isSpecified = words.find("not specified") == std::string::npos &&
                                 words.find("not readable") == std::string::npos;
        EXPECT_EQ(!valueOf(block, name).empty(), isSpecified) << where << ": " << name;
    }
}

}

TEST(SdrPeers, RecordsSayWhatIpmitoolSays)
{
    const std::vector<std::string> servers = answersOf(".ipmitool-v-sdr-list-all.txt");
    if (servers.empty()) {
        GTEST_SKIP() << "the public samples are not here";
    }
    const auto isUnspecified = [](const Ours&, const std::string& theirs) {
        return theirs == "Unspecified";
    };
    const auto hasNoThresholds = [](const Ours& ours, const std::string&) {
        return ours.number("threshold_access") == 0;
    };
    const char* const limits = "only nominal and normal readings can be unspecified (IPMI v2.0, "
                               "section 43.1, byte 31): FFh is a limit like any other";
    const char* const access = "a sensor whose capabilities say so has no thresholds, whatever "
                               "its mask says (section 43.1, byte 12)";
    Comparison comparison(
        IPMITOOL, {{"Minimum sensor range", isUnspecified, limits, 206},
                   {"Maximum sensor range", isUnspecified, limits, 199},
                   {"Positive Hysteresis",
                    [](const Ours& ours, const std::string& theirs) {
                        return theirs == "Unspecified" && ours.number(POSITIVE) == 0;
                    },
                    "0 is no hysteresis (section 43.1, byte 43)", 32},
                   {"Negative Hysteresis",
                    [](const Ours& ours, const std::string& theirs) {
                        return theirs == "Unspecified" && ours.number(NEGATIVE) == 0;
                    },
                    "0 is no hysteresis (section 43.1, byte 44)", 32},
                   {"Upper critical", hasNoThresholds, access, 8},
                   {"Upper non-critical", hasNoThresholds, access, 4},
                   {"Lower critical", hasNoThresholds, access, 8},
                   {"Lower non-critical", hasNoThresholds, access, 4},
                   {"Slave Address",
                    [](const Ours& ours, const std::string& theirs) {
                        return std::stol(theirs, nullptr, 16) ==
                               (ours.number("device_slave_address") << 1 | 1);
                    },
                    "bit 0 of the byte is not a part of the address (section 43.8, byte 7)", 8}});
    for (const std::string& server : servers) {
        // It leaves out OEM records and associations.
        std::vector<Ours> records;
        for (const SdrRecord& record : recordsOf(server)) {
            const unsigned char type = record.type();
            if (type <= SDR_EVENT_ONLY ||
                (type >= SDR_DEVICE_LOCATOR && type <= SDR_CONTROLLER_LOCATOR)) {
                records.emplace_back(record);
            }
        }
        const std::vector<Block> blocks =
            blocksOf(contentOf(FOLDER + "ref/" + server + ".ipmitool-v-sdr-list-all.txt"));
        ASSERT_EQ(blocks.size(), records.size()) << server;
        for (std::size_t i = 0; i < blocks.size(); ++i) {
            expectSpecified(server + " block " + std::to_string(i + 1), blocks[i], records[i]);
            for (const auto& [name, value] : blocks[i]) {
                comparison.compare(server + " block " + std::to_string(i + 1), records[i], name,
                                   value);
            }
        }
    }
    comparison.finish();
    EXPECT_GT(comparison.total(), 5000U);
}

TEST(SdrPeers, RecordsSayWhatFreeipmiSays)
{
    const std::vector<std::string> servers = answersOf(".ipmi-sensors-vv.txt");
    if (servers.empty()) {
        GTEST_SKIP() << "the public samples are not here";
    }
    constexpr long long READABLE_ACCESS = 1; // 2: also settable
    const auto isNow = [](const Ours& ours, const std::string&) {
        return ours.number("threshold_access") >= READABLE_ACCESS;
    };
    const char* const now = "readable thresholds are asked of the controller, which has others by "
                            "now (IPMI v2.0, sections 35.9 and 43.1, byte 12); ipmitool shows "
                            "those of the record";
    const auto isEnabled = [](const Ours&, const std::string& theirs) {
        return theirs == "All Event Messages Disabled" ||
               theirs == "'Parity'\n'Memory Automatically Throttled'" ||
               theirs == "'OEM Event = 0005h'";
    };
    const char* const enabled = "the record has the events that the sensor can be enabled for "
                                "(section 43.1, bytes 15 to 18); it shows the enabled ones";
    Comparison comparison(
        FREEIPMI,
        {{"Tolerance",
          [](const Ours& ours, const std::string& theirs) {
              const std::vector<std::string> parts = split(ours.words("tolerance"), ", +/- ");
              return parts.size() == 2 &&
                     ifNear(theirs, fmt::format("{:f}", 2 * std::stod(parts[1]))) == theirs;
          },
          "it is in halves of a count (section 43.1, byte 26)", 35},
         {"Resolution",
          [](const Ours& ours, const std::string& theirs) {
              return std::stod(theirs) == 0 && ours.number("r_exponent") < 0;
          },
          "a count is M 10^K2 units, also for a negative exponent (section 36.4)", 20},
         {"Device Slave Address",
          [](const Ours& ours, const std::string& theirs) {
              return ours.type() == SDR_FRU_LOCATOR &&
                     std::stol(theirs, nullptr, 16) / 2 == ours.number("device_slave_address");
          },
          "bits 7..1 of the byte are the address (section 43.8, byte 7)", 16},
         {"Upper Critical Threshold", isNow, now, 8},
         {"Upper Non-Critical Threshold", isNow, now, 7},
         {"Lower Critical Threshold", isNow, now, 10},
         {"Lower Non-Critical Threshold", isNow, now, 8},
         {"Assertion Event Enabled", isEnabled, enabled, 29},
         {"Deassertion Event Enabled", isEnabled, enabled, 29}});
    for (const std::string& server : servers) {
        const std::vector<SdrRecord> records = recordsOf(server);
        std::size_t at = 0;
        for (const Block& block :
             blocksOf(contentOf(FOLDER + "ref/" + server + ".ipmi-sensors-vv.txt"))) {
            while (at < records.size() && !describes(block, Ours(records[at]))) {
                ++at;
            }
            ASSERT_LT(at, records.size()) << server << " " << valueOf(block, "Record ID");
            const Ours ours(records[at]);
            for (const auto& [name, value] : withoutRepetition(block)) {
                comparison.compare(fmt::format("{} record {:04X}h", server, records[at].id()), ours,
                                   name, value);
            }
            ++at;
        }
    }
    comparison.finish();
    EXPECT_GT(comparison.total(), 5000U);
}
