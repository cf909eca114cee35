// SPDX-License-Identifier: Apache-2.0
#include "Story.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <random>
#include <string>

#include "Bytes.h"
#include "Types.h"
#include "Units.h"

namespace generator {

namespace {

using TAVLib::RecordKit::BMCSELEntryMessage;
using TAVLib::RecordKit::OEMSELEntry;

constexpr unsigned int MINUTE = 60;
constexpr unsigned int HOUR = 60 * MINUTE;
constexpr unsigned int DAY = 24 * HOUR;
constexpr unsigned int DAYS = 7;
constexpr unsigned int START = 1794614400; ///< 2026-11-14 00:00 UTC

/// Seconds since the start of the week; days count from 1.
constexpr unsigned int at(unsigned int day, unsigned int hour, unsigned int minute,
                          unsigned int second = 0)
{
    return (day - 1) * DAY + hour * HOUR + minute * MINUTE + second;
}

// The power cut: the controllers start when the power comes back, and count the seconds from then
// on until their clocks are set.
constexpr unsigned int POWER_CUT = at(4, 3, 12, 40);
constexpr unsigned int POWER_BACK = at(4, 3, 58, 5);
constexpr unsigned int CLOCK_SET = at(4, 4, 6, 11);

// When the fan's speed falls below its lower critical threshold for good, and when the module's
// correctable errors are no longer logged.
constexpr unsigned int FAN_LOST = at(7, 14, 2, 31);
constexpr unsigned int ERRORS_LIMIT = at(6, 18, 22, 7);
constexpr unsigned int ERROR_UNCORRECTABLE = at(7, 20, 45, 52);

enum ThresholdOffset : unsigned char {
    LOWER_NON_CRITICAL = 0,
    LOWER_CRITICAL = 2,
    UPPER_NON_CRITICAL = 7,
    UPPER_CRITICAL = 9,
};
constexpr unsigned char DEASSERTED = 0x80;
constexpr unsigned char UNSPECIFIED = 0xFF;

/// A unit as events name it: partitions, part number and serial number.
struct Involved {
    unsigned short partitions = 0;
    std::string partNumber;
    std::string serialNumber;
};

/// A record without its id, at the time by which records are ordered.
struct Line {
    unsigned int time;
    Bytes record; ///< record bytes 3 to 16
    Involved unit;
};

/// A state of a sensor, and what event data 2 and 3 say about it (IPMI v2.0, table 29-6).
struct State {
    unsigned char generator;
    unsigned char sensorType;
    unsigned char number;
    unsigned char eventType;
    unsigned char offset;
    unsigned char data2 = UNSPECIFIED;
    unsigned char data3 = UNSPECIFIED;
};

/// From a crossing or another state to its end.
struct Span {
    unsigned int from;
    unsigned int to;

    bool touches(const Span& other) const { return from < other.to && other.from < to; }
};

constexpr Span OUTAGE = {POWER_CUT - 10 * MINUTE, CLOCK_SET + 10 * MINUTE};

/// What one board logs.
class Log {
public:
    explicit Log(unsigned int number) : board(number), random(20261114 + number) {}

    std::vector<BMCSELEntryMessage> write();

private:
    // Records.
    unsigned int stampOf(unsigned int time) const;
    Involved unitOf(const Unit& unit) const;
    Involved moduleOf(unsigned int dimm) const;
    unsigned short partition() const { return static_cast<unsigned short>(1U << board); }
    static unsigned short bothPartitions() { return 3; }
    void add(unsigned int time, const State& state, const Involved& unit, bool isDeassertion);
    void assertion(unsigned int time, const State& state, const Involved& unit)
    {
        add(time, state, unit, false);
    }
    void deassertion(unsigned int time, const State& state, const Involved& unit)
    {
        add(time, state, unit, true);
    }
    /// A state that a controller clears by itself.
    void pulse(unsigned int time, unsigned int seconds, const State& state, const Involved& unit)
    {
        assertion(time, state, unit);
        deassertion(time + seconds, state, unit);
    }
    void crossing(const Span& span, State state, const Involved& unit, unsigned char beyond,
                  unsigned char back);
    void oem(unsigned int time, const Bytes& data);
    void console(unsigned int time, const Bytes& data);

    // Noise.
    unsigned int below(unsigned int limit) { return static_cast<unsigned int>(random() % limit); }
    std::vector<Span> spans(unsigned int count, const Span& in, unsigned int longest);

    // The week, by its parts.
    void boot(unsigned int time, unsigned char cause);
    void stop(unsigned int time);
    void restart(unsigned int time);
    void temperatures(unsigned int day);
    void voltages(unsigned int day);
    void fan(unsigned int day);
    void memoryErrors(unsigned int day);
    void restarts(unsigned int day);
    void updates();
    void powerCut();
    void powerSupply();
    void visits();
    void lastFailures();

    unsigned char controller() const { return CONTROLLERS[board]; }
    const Unit& systemBoard() const { return SYSTEM_BOARDS[board]; }
    Involved thisBoard() const { return unitOf(systemBoard()); }
    bool hasChassis() const { return board == 0; }

    unsigned int board;
    std::mt19937 random; ///< its numbers are those of the standard on every machine
    std::vector<Line> lines;
};

/// Until the clock is set, the seconds since the power came back (IPMI v2.0, section 37).
unsigned int Log::stampOf(unsigned int time) const
{
    return time >= POWER_BACK && time < CLOCK_SET ? time - POWER_BACK : START + time;
}

Involved Log::unitOf(const Unit& unit) const
{
    return {partition(), unit.partNumber, unit.serialNumber};
}

Involved Log::moduleOf(unsigned int dimm) const
{
    char serial[9];
    std::snprintf(serial, sizeof serial, "%08X", dimmSerial(board, dimm));
    return {partition(), DIMM_PART_NUMBER, serial};
}

void Log::add(unsigned int time, const State& state, const Involved& unit, bool isDeassertion)
{
    // How event data 2 and 3 are used: reading and threshold, or codes of the sensor type.
    unsigned int use = 0;
    if (state.eventType == THRESHOLD) {
        use = 0x50;
    } else {
        use |= state.data2 != UNSPECIFIED ? 0xC0 : 0;
        use |= state.data3 != UNSPECIFIED ? 0x30 : 0;
    }
    Bytes record = {0x02};
    record = join(record, lowFirst(stampOf(time), 4));
    record = join(record,
                  {state.generator, 0x00, 0x04, state.sensorType, state.number,
                   static_cast<unsigned char>(state.eventType | (isDeassertion ? DEASSERTED : 0)),
                   static_cast<unsigned char>(use | state.offset), state.data2, state.data3});
    lines.push_back({time, record, unit});
}

/// A threshold crossed with the reading `beyond`, until the reading is `back`.
void Log::crossing(const Span& span, State state, const Involved& unit, unsigned char beyond,
                   unsigned char back)
{
    state.data2 = beyond;
    assertion(span.from, state, unit);
    state.data2 = back;
    deassertion(span.to, state, unit);
}

void Log::oem(unsigned int time, const Bytes& data)
{
    Bytes record = {0xC0};
    record = join(record, lowFirst(stampOf(time), 4));
    record = join(record, lowFirst(MANUFACTURER, 3));
    lines.push_back({time, join(record, data), thisBoard()});
}

void Log::console(unsigned int time, const Bytes& data)
{
    Bytes record = join({0xE1}, data);
    record.resize(14, 0);
    lines.push_back({time, record, thisBoard()});
}

/// Spans that do not touch each other or the outage.
std::vector<Span> Log::spans(unsigned int count, const Span& in, unsigned int longest)
{
    std::vector<Span> found;
    const unsigned int step = (in.to - in.from) / count;
    const unsigned int half = step / 2;
    for (unsigned int i = 0; i < count; ++i) {
        const unsigned int from = in.from + i * step + below(half);
        const Span span = {from, from + 5 + below(std::min(longest, half - 6))};
        if (!span.touches(OUTAGE)) {
            found.push_back(span);
        }
    }
    return found;
}

void Log::stop(unsigned int time)
{
    pulse(time, 3, {OPERATING_SYSTEM, OS_STOP_TYPE, OS_STOP, SPECIFIC, 3}, thisBoard());
}

/// A start of the partition: POST, then the operating system.
void Log::boot(unsigned int time, unsigned char cause)
{
    const State initiated = {controller(), BOOT, BOOT_INITIATED, SPECIFIC, cause};
    State progress = {SYSTEM_FIRMWARE, FIRMWARE_PROGRESS, POST_PROGRESS, SPECIFIC, 2};
    struct Step {
        unsigned char code; ///< IPMI v2.0, table 42-3, sensor type 0Fh
        unsigned int after;
    };
    constexpr Step STEPS[] = {{0x01, 18}, {0x03, 41}, {0x07, 63}, {0x02, 80}, {0x13, 97}};
    assertion(time, initiated, thisBoard());
    for (const Step& step : STEPS) {
        progress.data2 = step.code;
        assertion(time + step.after, progress, thisBoard());
    }
    deassertion(time + 99, progress, thisBoard());
    pulse(time + 152 + below(20), 2, {OPERATING_SYSTEM, OS_BOOT_TYPE, OS_BOOT, SPECIFIC, 1},
          thisBoard());
    deassertion(time + 180, initiated, thisBoard());
}

void Log::restart(unsigned int time)
{
    constexpr unsigned char WARM_RESET = 2;
    stop(time);
    boot(time + 25, WARM_RESET);
}

/// Noon is warm, above all on the third day.
void Log::temperatures(unsigned int day)
{
    constexpr unsigned int HOTTEST = 3;
    const unsigned int lessOnBoard1 = board;
    const Span noon = {at(day, 11, 20), at(day, 15, 40)};
    const State inlet = {controller(),       TEMPERATURE, INLET_TEMPERATURE, THRESHOLD,
                         UPPER_NON_CRITICAL, UNSPECIFIED, INLET_WARM};
    const std::vector<Span> warm = spans(7 + below(4) - 2 * lessOnBoard1, noon, 12 * MINUTE);
    for (const Span& span : warm) {
        const auto reading = static_cast<unsigned char>(INLET_WARM + below(3));
        crossing(span, inlet, thisBoard(), reading, INLET_WARM - 2);
    }
    if (day == HOTTEST && hasChassis()) {
        State hot = inlet;
        hot.offset = UPPER_CRITICAL;
        hot.data3 = INLET_HOT;
        const Span& longest =
            *std::max_element(warm.begin(), warm.end(), [](const Span& one, const Span& other) {
                return one.to - one.from < other.to - other.from;
            });
        crossing({longest.from + 1, longest.to - 1}, hot, thisBoard(), INLET_HOT + 1,
                 INLET_HOT - 2);
    }
    for (unsigned int cpu = 0; cpu < CPUS; ++cpu) {
        const auto number = static_cast<unsigned char>(FIRST_CPU_TEMPERATURE + cpu);
        const State warmCpu = {controller(),       TEMPERATURE, number,  THRESHOLD,
                               UPPER_NON_CRITICAL, UNSPECIFIED, CPU_WARM};
        for (const Span& span : spans(5 + below(4) - lessOnBoard1, noon, 9 * MINUTE)) {
            const auto reading = static_cast<unsigned char>(CPU_WARM + below(6));
            crossing(span, warmCpu, unitOf(PROCESSOR), reading, CPU_WARM - 3);
        }
        constexpr unsigned char THROTTLED = 10;
        const State throttled = {controller(), CPU, static_cast<unsigned char>(FIRST_CPU + cpu),
                                 SPECIFIC, THROTTLED};
        for (const Span& span : spans(5 + below(4) - 2 * lessOnBoard1, noon, 4 * MINUTE)) {
            pulse(span.from, span.to - span.from, throttled, unitOf(PROCESSOR));
        }
    }
}

void Log::voltages(unsigned int day)
{
    const State low = {controller(),       VOLTAGE,     VOLTAGE_3_3,    THRESHOLD,
                       LOWER_NON_CRITICAL, UNSPECIFIED, VOLTAGE_3_3_LOW};
    for (const Span& span : spans(3, {at(day, 8, 0), at(day, 19, 0)}, 2 * MINUTE)) {
        crossing(span, low, thisBoard(), VOLTAGE_3_3_LOW - 1, VOLTAGE_3_3_LOW + 3);
    }
    if (!hasChassis()) {
        return;
    }
    for (unsigned int i = 0; i < std::size(POWER_SUPPLIES); ++i) {
        const auto number = static_cast<unsigned char>(FIRST_INPUT_VOLTAGE + i);
        const State dip = {controller(),       VOLTAGE,     number,   THRESHOLD,
                           LOWER_NON_CRITICAL, UNSPECIFIED, INPUT_LOW};
        Involved unit = unitOf(POWER_SUPPLIES[i]);
        if (i == 1 && day < 5) {
            unit = unitOf(FAILED_POWER_SUPPLY);
        }
        unit.partitions = bothPartitions();
        // The evening's load on the mains; the failed supply is replaced by then.
        for (const Span& span : spans(4 + below(3), {at(day, 17, 30), at(day, 22, 30)}, 90)) {
            const auto reading = static_cast<unsigned char>(INPUT_LOW - below(4));
            crossing(span, dip, unit, reading, INPUT_LOW + 2);
        }
    }
}

/// The fan slows down more often from day to day, and deeper.
void Log::fan(unsigned int day)
{
    constexpr unsigned int TIMES[DAYS] = {8, 14, 24, 40, 62, 95, 72};
    const unsigned int end = day == DAYS ? FAN_LOST - 10 * MINUTE : at(day, 23, 58);
    const State slow = {controller(), FAN,     FIRST_FAN + WORN_FAN, THRESHOLD, LOWER_NON_CRITICAL,
                        UNSPECIFIED,  FAN_SLOW};
    const Involved tray = {bothPartitions(), FAN_TRAY.partNumber, FAN_TRAY.serialNumber};
    for (const Span& span : spans(TIMES[day - 1], {at(day, 0, 2), end}, 5 * MINUTE * day)) {
        const auto reading = static_cast<unsigned char>(FAN_SLOW - 2 * day - below(4));
        crossing(span, slow, tray, reading, static_cast<unsigned char>(FAN_SLOW + 8 - day));
    }
}

/// The module's correctable errors, until its logging limit.
void Log::memoryErrors(unsigned int day)
{
    constexpr unsigned int TIMES[] = {1, 4, 9, 20, 52, 92};
    if (day > std::size(TIMES)) {
        return;
    }
    const unsigned int end = day == std::size(TIMES) ? ERRORS_LIMIT - 5 * MINUTE : at(day, 23, 58);
    const State correctable = {controller(), MEMORY,      FIRST_DIMM + FAILING_DIMM, SPECIFIC, 0,
                               UNSPECIFIED,  FAILING_DIMM};
    for (const Span& span : spans(TIMES[day - 1], {at(day, 0, 3), end}, 20)) {
        pulse(span.from, span.to - span.from, correctable, moduleOf(FAILING_DIMM));
    }
}

void Log::restarts(unsigned int day)
{
    if (day == 4) {
        return; // The power cut.
    }
    restart(at(day, 2, 15 + 7 * board, below(MINUTE)));
    if (board == 0 || day % 3 == 0) {
        const unsigned int minute = 5 + below(40);
        restart(at(day, 6, minute, below(MINUTE)));
    }
}

/// New firmware of controllers and system, in the evening of the third day.
void Log::updates()
{
    constexpr unsigned char CHANGED = 1;
    constexpr unsigned char CONTROLLER_FIRMWARE = 0x02; // IPMI v2.0, table 42-3, type 2Bh
    constexpr unsigned char SYSTEM_FIRMWARE_CHANGE = 0x09;
    State change = {controller(), VERSION, generator::VERSION_CHANGE,
                    SPECIFIC,     CHANGED, CONTROLLER_FIRMWARE};
    pulse(at(3, 21, 4 + 6 * board, 10), 5, change, thisBoard());
    change.data2 = SYSTEM_FIRMWARE_CHANGE;
    pulse(at(3, 21, 20 + 6 * board, 48), 5, change, thisBoard());
    restart(at(3, 21, 21 + 6 * board, 30));
}

void Log::powerCut()
{
    constexpr unsigned char INPUT_LOST = 3;
    constexpr unsigned char AC_LOST = 4;
    constexpr unsigned char CLOCK_SYNCHRONISED = 5;
    constexpr unsigned char POWER_UP = 0;
    const State unitOff = {controller(), POWER_UNIT_TYPE, POWER_UNIT, SPECIFIC, AC_LOST};
    if (hasChassis()) {
        const Unit* const supplies[] = {&POWER_SUPPLIES[0], &FAILED_POWER_SUPPLY};
        for (unsigned int i = 0; i < std::size(supplies); ++i) {
            const State lost = {controller(), POWER_SUPPLY,
                                static_cast<unsigned char>(FIRST_POWER_SUPPLY + i), SPECIFIC,
                                INPUT_LOST};
            Involved unit = unitOf(*supplies[i]);
            unit.partitions = bothPartitions();
            assertion(POWER_CUT, lost, unit);
            deassertion(POWER_BACK + 12 + i, lost, unit);
        }
    }
    assertion(POWER_CUT + 1, unitOff, thisBoard());
    deassertion(POWER_BACK + 15, unitOff, thisBoard());
    constexpr unsigned char RESET_BY_POWER = 0x01;
    oem(POWER_BACK + 16, {0x01, static_cast<unsigned char>(board), RESET_BY_POWER, 0, 0, 0});
    boot(POWER_BACK + 31 + board, POWER_UP);
    // The pair of events around the setting of the clock: the first one has the old time.
    State clock = {controller(), SYSTEM_EVENT_TYPE,  SYSTEM_EVENT,
                   SPECIFIC,     CLOCK_SYNCHRONISED, 0x00};
    assertion(CLOCK_SET - 1, clock, thisBoard());
    clock.data2 = 0x80;
    assertion(CLOCK_SET, clock, thisBoard());
    deassertion(CLOCK_SET + 1, clock, thisBoard());
}

/// The second power supply fails on the fifth day, and is replaced two hours later.
void Log::powerSupply()
{
    constexpr unsigned char FAILURE = 1;
    constexpr unsigned char LOST = 1;
    constexpr unsigned char HARDWARE_CHANGED = 0;
    const State failed = {controller(), POWER_SUPPLY, FIRST_POWER_SUPPLY + 1, SPECIFIC, FAILURE};
    const State redundancy = {controller(), POWER_SUPPLY, REDUNDANCY, REDUNDANCY_TYPE, LOST};
    Involved old = unitOf(FAILED_POWER_SUPPLY);
    Involved replacement = unitOf(POWER_SUPPLIES[1]);
    old.partitions = replacement.partitions = bothPartitions();
    assertion(at(5, 15, 20, 18), failed, old);
    assertion(at(5, 15, 20, 19), redundancy, old);
    deassertion(at(5, 17, 21, 2), failed, replacement);
    pulse(at(5, 17, 21, 3), 4,
          {controller(), VERSION, generator::VERSION_CHANGE, SPECIFIC, HARDWARE_CHANGED},
          replacement);
    deassertion(at(5, 17, 21, 9), redundancy, replacement);
}

/// Somebody adds a card on the second day; a program hangs in the evening.
void Log::visits()
{
    constexpr unsigned char INTRUSION = 0;
    constexpr unsigned char INSTALLED = 2;
    constexpr unsigned char HARD_RESET = 1;
    constexpr unsigned char RESET_BY_WATCHDOG = 0x04;
    Involved chassis = unitOf(SERVER);
    chassis.partitions = bothPartitions();
    pulse(at(2, 10, 14, 6), 9 * MINUTE,
          {controller(), PHYSICAL_SECURITY, CHASSIS_INTRUSION, SPECIFIC, INTRUSION}, chassis);
    pulse(at(2, 10, 19, 44), 2, {controller(), SLOT, FIRST_SLOT + 2, SPECIFIC, INSTALLED},
          unitOf(IO_UNIT));
    console(at(2, 10, 25), {0x10, 0x02, 0x01});
    constexpr unsigned char RESET_BY = 1;
    pulse(at(2, 22, 41, 9), 6, {controller(), WATCHDOG_2, WATCHDOG, SPECIFIC, HARD_RESET, 0x03},
          thisBoard());
    oem(at(2, 22, 41, 10), {RESET_BY, 0x00, RESET_BY_WATCHDOG, 0, 0, 0});
    boot(at(2, 22, 41, 16), HARD_RESET);
    console(at(5, 17, 25), {0x10, 0x01, 0x00});
}

/// What is still asserted at the end.
void Log::lastFailures()
{
    if (hasChassis()) {
        const Involved tray = {bothPartitions(), FAN_TRAY.partNumber, FAN_TRAY.serialNumber};
        assertion(FAN_LOST - 3 * MINUTE,
                  {controller(), FAN, FIRST_FAN + WORN_FAN, THRESHOLD, LOWER_NON_CRITICAL,
                   FAN_SLOW - 14, FAN_SLOW},
                  tray);
        assertion(FAN_LOST,
                  {controller(), FAN, FIRST_FAN + WORN_FAN, THRESHOLD, LOWER_CRITICAL,
                   FAN_TOO_SLOW - 1, FAN_TOO_SLOW},
                  tray);
        return;
    }
    constexpr unsigned char UNCORRECTABLE = 1;
    constexpr unsigned char LIMIT_REACHED = 5;
    constexpr unsigned char HARD_RESET = 1;
    constexpr unsigned char RESET_BY_ERROR = 0x07;
    State module = {controller(), MEMORY,      FIRST_DIMM + FAILING_DIMM, SPECIFIC, LIMIT_REACHED,
                    UNSPECIFIED,  FAILING_DIMM};
    assertion(ERRORS_LIMIT, module, moduleOf(FAILING_DIMM));
    module.offset = UNCORRECTABLE;
    assertion(ERROR_UNCORRECTABLE, module, moduleOf(FAILING_DIMM));
    oem(ERROR_UNCORRECTABLE + 2, {0x01, 0x01, RESET_BY_ERROR, 0, 0, 0});
    boot(ERROR_UNCORRECTABLE + 8, HARD_RESET);
}

/// A record as the board's controller sends it: with its OEM data.
BMCSELEntryMessage messageOf(const Line& line, unsigned int id)
{
    constexpr unsigned char TEXT = 0xC0;
    constexpr unsigned int FIXED = 18; // of the record; the extended bytes follow
    Bytes image(OEMSELEntry::OEM_IMAGE_SIZE, 0);
    put(image, 0, {0xFF, 0xFF}); // the newest record when it was read
    put(image, 2, lowFirst(id, 2));
    put(image, 4, line.record);
    put(image, FIXED + OEMSELEntry::EXTENDED_PARTITION_BITMASK, lowFirst(line.unit.partitions, 2));
    put(image, FIXED + OEMSELEntry::EXTENDED_PART_NUMBER_TYPE_LENGTH,
        {TEXT | OEMSELEntry::PART_NUMBER_SIZE});
    putText(image, FIXED + OEMSELEntry::EXTENDED_PART_NUMBER, line.unit.partNumber);
    put(image, FIXED + OEMSELEntry::EXTENDED_SERIAL_NUMBER_TYPE_LENGTH,
        {TEXT | OEMSELEntry::SERIAL_NUMBER_SIZE});
    putText(image, FIXED + OEMSELEntry::EXTENDED_SERIAL_NUMBER, line.unit.serialNumber);
    OEMSELEntry received;
    received.setSerialized(image.data(), static_cast<unsigned int>(image.size()));
    BMCSELEntryMessage message;
    message.convert(received);
    return message;
}

std::vector<BMCSELEntryMessage> Log::write()
{
    for (unsigned int day = 1; day <= DAYS; ++day) {
        restarts(day);
        temperatures(day);
        voltages(day);
        if (hasChassis()) {
            fan(day);
        } else {
            memoryErrors(day);
        }
    }
    updates();
    powerCut();
    if (hasChassis()) {
        visits();
        powerSupply();
    }
    lastFailures();
    std::stable_sort(lines.begin(), lines.end(),
                     [](const Line& one, const Line& other) { return one.time < other.time; });
    std::vector<BMCSELEntryMessage> messages;
    for (const Line& line : lines) {
        messages.push_back(messageOf(line, static_cast<unsigned int>(messages.size()) + 1));
    }
    return messages;
}

}

std::vector<BMCSELEntryMessage> eventsOf(unsigned int board)
{
    return Log(board).write();
}

}
