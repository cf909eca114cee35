// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/event/EventRules.h>

#include <algorithm>
#include <fmt/format.h>
#include <sstream>

#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/bytes/Text.h>
#include <recordkit/inspect/words/EventTypes.h>
#include <recordkit/inspect/words/SensorTypes.h>

namespace recordkit::inspect {

namespace {

constexpr unsigned long LAST_BYTE = 0xFF;
constexpr unsigned int LAST_BIT = 7;
/// Bytes of their own that records have.
constexpr unsigned int EVENT_DATA = 3;
constexpr unsigned int TIMESTAMPED_DATA = 6;
constexpr unsigned int UNTIMESTAMPED_DATA = 13;

/// A byte that an event has of its own, N from 1; nothing beyond the last.
std::optional<unsigned char> byteOf(const Event& event, unsigned int number)
{
    if (event.kind == EventKind::SYSTEM_EVENT) {
        return event.data[number - 1];
    }
    return number <= event.oemData.size() ? std::optional(event.oemData[number - 1]) : std::nullopt;
}

DataError expected(const std::string& what, const std::string& found)
{
    return DataError(fmt::format("expected {}, found \"{}\"", what, printable(found)));
}

unsigned long numberIn(const std::string& text, unsigned long last)
{
    return orThrow(parseNumber(text, last),
                   expected(fmt::format("a number from 0 to {}", last), text));
}

/// N of "dataN", if it is that.
std::optional<unsigned int> dataNumber(const std::string& name)
{
    const std::string data = "data";
    if (name.compare(0, data.size(), data) != 0) {
        return std::nullopt;
    }
    const unsigned long number =
        parseNumber(name.substr(data.size()), UNTIMESTAMPED_DATA).value_or(0);
    if (number == 0) {
        return std::nullopt;
    }
    return static_cast<unsigned int>(number);
}

}

/// Reads one line.
class RuleReader {
public:
    explicit RuleReader(const std::string& ruleLine) : line(ruleLine) {}

    /// Nothing for an empty line. Throws DataError.
    std::optional<EventRules::Rule> read()
    {
        skipBlanks();
        if (isAtEnd()) {
            return std::nullopt;
        }
        while (!isAtEnd() && line[at] != '"') {
            readCondition();
            skipBlanks();
        }
        if (isAtEnd()) {
            throw DataError("expected a text in quotation marks at the end");
        }
        readText();
        skipBlanks();
        if (!isAtEnd()) {
            throw expected("nothing after the text", line.substr(at));
        }
        checkWhole();
        return rule;
    }

private:
    bool isAtEnd() const { return at == line.size() || line[at] == '#'; }

    void skipBlanks() { at = std::min(line.find_first_not_of(' ', at), line.size()); }

    void readCondition()
    {
        const std::size_t end = std::min(line.find_first_of(" \"#", at), line.size());
        const std::string word = line.substr(at, end - at);
        const std::size_t equals = word.find('=');
        if (equals == std::string::npos) {
            throw expected("CONDITION=VALUE without blanks, or a text in quotation marks", word);
        }
        at = end;
        apply(word.substr(0, equals), word.substr(equals + 1));
    }

    void apply(const std::string& name, const std::string& value)
    {
        if (name == "sensor-type") {
            rule.sensorType = orThrow(findSensorType(value), expected("a sensor type", value));
        } else if (name == "manufacturer") {
            constexpr unsigned long LAST_MANUFACTURER = 0xFFFFFF;
            rule.manufacturer = numberIn(value, LAST_MANUFACTURER);
        } else if (name == "record-type") {
            rule.recordType = numberIn(value, LAST_BYTE);
            if (eventKind(static_cast<unsigned char>(*rule.recordType)) !=
                    EventKind::OEM_TIMESTAMPED &&
                eventKind(static_cast<unsigned char>(*rule.recordType)) !=
                    EventKind::OEM_UNTIMESTAMPED) {
                throw expected("a record type from C0h to FFh", value);
            }
        } else if (name == "sensor") {
            rule.sensor = numberIn(value, LAST_BYTE);
        } else if (name == "event-type") {
            rule.eventType = orThrow(findEventType(value), expected("an event type", value));
        } else if (name == "offset") {
            constexpr unsigned long LAST_OFFSET = 15;
            rule.offset = numberIn(value, LAST_OFFSET);
        } else if (name == "direction") {
            if (value != "asserted" && value != "deasserted") {
                throw expected("asserted or deasserted", value);
            }
            rule.isDeassertion = value == "deasserted";
        } else if (name == "severity") {
            rule.severity = orThrow(findSeverity(value), expected("a severity", value));
        } else if (const auto number = dataNumber(name)) {
            readByte(*number, value);
        } else {
            throw expected("sensor-type, manufacturer, record-type, sensor, event-type, offset, "
                           "direction, severity or data1 to data13",
                           name);
        }
    }

    void readByte(unsigned int number, const std::string& value)
    {
        const std::size_t slash = value.find('/');
        const unsigned long mask =
            slash == std::string::npos ? LAST_BYTE : numberIn(value.substr(slash + 1), LAST_BYTE);
        const unsigned long bits = numberIn(value.substr(0, slash), LAST_BYTE);
        if ((bits & ~mask) != 0) {
            throw expected("a value within its mask", value);
        }
        rule.bytes.push_back(
            {number, static_cast<unsigned int>(bits), static_cast<unsigned int>(mask)});
    }

    void readText()
    {
        const std::size_t end = line.find('"', at + 1);
        if (end == std::string::npos) {
            throw DataError("the text has no quotation mark at its end");
        }
        const std::string text = line.substr(at + 1, end - at - 1);
        at = end + 1;
        if (text.empty()) {
            throw DataError("the text is empty");
        }
        for (std::size_t from = 0; from <= text.size();) {
            const std::size_t brace = text.find_first_of("{}", from);
            EventRules::Piece piece;
            piece.text = text.substr(from, brace - from);
            from = text.size() + 1;
            if (brace != std::string::npos) {
                const std::size_t close = text.find('}', brace);
                if (text[brace] == '}' || close == std::string::npos) {
                    throw expected("{ and } around a field", text.substr(brace));
                }
                readField(text.substr(brace + 1, close - brace - 1), piece);
                from = close + 1;
            }
            rule.text.push_back(piece);
        }
    }

    /// "data2[7:4]:h" or "sensor".
    static void readField(const std::string& field, EventRules::Piece& piece)
    {
        const auto failure = [&field] {
            return expected("a field such as data2, data2[7:4], data2:h or sensor", field);
        };
        if (field == "sensor") {
            piece.content = EventRules::Piece::SENSOR;
            return;
        }
        std::string rest = field;
        const std::string hex = ":h";
        if (rest.size() > hex.size() &&
            rest.compare(rest.size() - hex.size(), hex.size(), hex) == 0) {
            piece.isHex = true;
            rest.erase(rest.size() - hex.size());
        }
        const std::size_t bracket = rest.find('[');
        if (bracket != std::string::npos) {
            if (rest.back() != ']') {
                throw failure();
            }
            const std::string bits = rest.substr(bracket + 1, rest.size() - bracket - 2);
            const std::size_t colon = bits.find(':');
            piece.high = bitIn(bits.substr(0, colon), failure());
            piece.low =
                colon == std::string::npos ? piece.high : bitIn(bits.substr(colon + 1), failure());
            rest.erase(bracket);
        }
        piece.content = EventRules::Piece::BITS;
        piece.number = orThrow(dataNumber(rest), failure());
        if (piece.high < piece.low) {
            throw failure();
        }
    }

    static unsigned int bitIn(const std::string& text, const DataError& failure)
    {
        return static_cast<unsigned int>(orThrow(parseNumber(text, LAST_BIT), failure));
    }

    /// Whether conditions and fields go together.
    void checkWhole() const
    {
        const bool isOem = rule.manufacturer || rule.recordType;
        if (isOem == rule.sensorType.has_value()) {
            throw DataError("expected either sensor-type, or manufacturer or record-type");
        }
        if (isOem &&
            (rule.sensor || rule.eventType || rule.offset || rule.isDeassertion || rule.severity)) {
            throw DataError("sensor, event-type, offset, direction and severity are for events of "
                            "a sensor type");
        }
        const bool isUntimestamped =
            rule.recordType &&
            eventKind(static_cast<unsigned char>(*rule.recordType)) == EventKind::OEM_UNTIMESTAMPED;
        if (isUntimestamped && rule.manufacturer) {
            throw DataError("records of types E0h to FFh have no manufacturer");
        }
        const unsigned int last = !isOem             ? EVENT_DATA
                                  : !isUntimestamped ? TIMESTAMPED_DATA
                                                     : UNTIMESTAMPED_DATA;
        const auto check = [last](unsigned int number) {
            if (number > last) {
                throw DataError(fmt::format("data{} does not exist: such records have data1 to "
                                            "data{}",
                                            number, last));
            }
        };
        for (const auto& byte : rule.bytes) {
            check(byte.number);
        }
        for (const auto& piece : rule.text) {
            check(piece.number);
            if (isOem && piece.content == EventRules::Piece::SENSOR) {
                throw DataError("{sensor} is for events of a sensor type");
            }
        }
    }

    const std::string& line;
    std::size_t at = 0;
    EventRules::Rule rule;
};

EventRules::EventRules(const std::string& content, std::vector<std::string>& problems)
{
    std::istringstream lines(content);
    std::string line;
    for (unsigned int number = 1; std::getline(lines, line); ++number) {
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        try {
            std::replace(line.begin(), line.end(), '\t', ' ');
            if (!isUtf8(line) || printable(line) != line) {
                throw DataError("expected UTF-8 without control characters");
            }
            if (auto rule = RuleReader(line).read()) {
                rules.push_back(std::move(*rule));
            }
        } catch (const DataError& e) {
            problems.push_back(fmt::format("line {}: {}", number, e.what()));
        }
    }
}

bool EventRules::Rule::isMetBy(const Event& event) const
{
    const auto isOther = [](const std::optional<unsigned long>& wanted, unsigned long found) {
        return wanted && *wanted != found;
    };
    const bool isSystemEvent = event.kind == EventKind::SYSTEM_EVENT;
    if (isSystemEvent != sensorType.has_value() ||
        (manufacturer && event.kind != EventKind::OEM_TIMESTAMPED) ||
        isOther(recordType, event.recordType) || isOther(manufacturer, event.manufacturer)) {
        return false;
    }
    if (isSystemEvent &&
        (isOther(sensorType, event.sensorType) || isOther(sensor, event.sensorNumber) ||
         isOther(eventType, event.eventType) || isOther(offset, event.offset) ||
         (isDeassertion && *isDeassertion != event.isDeassertion))) {
        return false;
    }
    return std::all_of(bytes.begin(), bytes.end(), [&event](const ByteCondition& condition) {
        const auto byte = byteOf(event, condition.number);
        return byte && (*byte & condition.mask) == condition.value;
    });
}

std::string EventRules::Rule::textOf(const Event& event) const
{
    std::string result;
    for (const Piece& piece : text) {
        result += piece.text;
        if (piece.content == Piece::SENSOR) {
            result += event.sensor != nullptr && !event.sensor->name.empty()
                          ? printable(event.sensor->name)
                          : fmt::format("{:02X}h", event.sensorNumber);
        } else if (piece.content == Piece::BITS) {
            const unsigned int byte = byteOf(event, piece.number).value_or(0);
            const unsigned int bits = byte >> piece.low & ((2U << (piece.high - piece.low)) - 1U);
            result += piece.isHex ? fmt::format("{:02X}h", bits) : std::to_string(bits);
        }
    }
    return result;
}

void EventRules::apply(std::vector<Event>& events) const
{
    for (Event& event : events) {
        const auto rule = std::find_if(rules.begin(), rules.end(),
                                       [&event](const Rule& each) { return each.isMetBy(event); });
        if (rule != rules.end()) {
            event.siteText = rule->textOf(event);
            event.severity = rule->severity.value_or(event.severity);
        }
    }
}

}
