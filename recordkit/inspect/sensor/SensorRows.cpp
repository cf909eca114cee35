// SPDX-License-Identifier: Apache-2.0
// The records of sensors (IPMI v2.0, sections 43.1 to 43.3).
#include <cmath>

#include <fmt/format.h>
#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/sensor/SdrFile.h>
#include <recordkit/inspect/sensor/SensorText.h>
#include <recordkit/inspect/words/EventTypes.h>
#include <recordkit/inspect/words/EventWords.h>
#include <recordkit/inspect/words/SensorTypes.h>
#include <recordkit/inspect/words/SensorUnits.h>
#include <recordkit/sensor/CompactSensorRecord.h>
#include <recordkit/sensor/FullSensorRecord.h>

#include "SdrRow.h"

namespace recordkit::inspect {

using TAVLib::RecordKit::CompactSensorRecord;
using TAVLib::RecordKit::FullSensorRecord;
using Common = TAVLib::RecordKit::RecordSensorCommon;

namespace {

/// Bytes of a full record only.
enum Offset : unsigned int {
    LINEARIZATION = 23,
    M = 24,
    M_AND_TOLERANCE = 25,
    B = 26,
    B_AND_ACCURACY = 27,
    ACCURACY_AND_DIRECTION = 28,
    EXPONENTS = 29,
    ANALOG_FLAGS = 30,
    NOMINAL = 31,
    NORMAL_MAXIMUM = 32,
    NORMAL_MINIMUM = 33,
    MAXIMUM = 34,
    MINIMUM = 35,
    THRESHOLDS_AT = 36, ///< from upper non-recoverable down
    FULL_OEM = 46,
    COMPACT_SHARING = 23,
    COMPACT_OEM = 30,
    EVENT_ONLY_TYPE = 10,
    EVENT_ONLY_EVENT_TYPE = 11,
    EVENT_ONLY_SHARING = 12,
    EVENT_ONLY_OEM = 15,
};
constexpr Place ACCURACY_EXPONENT = bitsAt(ACCURACY_AND_DIRECTION, 3, 2);

constexpr const char* OWNERS[] = {"IPMB slave address", "system software ID"};
constexpr const char* REARMS[] = {"manual", "auto"};
constexpr const char* HYSTERESES[] = {"none", "readable", "readable and settable",
                                      "fixed, unreadable"};
constexpr const char* EVENT_CONTROLS[] = {"per threshold or state", "entire sensor only",
                                          "global disable only", "no events"};
constexpr const char* FORMATS[] = {"unsigned", "1's complement", "2's complement", "no analog"};
constexpr const char* RATES[] = {"none",       "per us",   "per ms",  "per s",
                                 "per minute", "per hour", "per day", nullptr};
constexpr const char* MODIFIERS[] = {"none", "base / modifier", "base * modifier", nullptr};
constexpr const char* DIRECTIONS[] = {"unspecified", "input", "output", nullptr};
constexpr const char* ENDINGS[] = {"numeric", "alphabetic", nullptr, nullptr};
constexpr const char* SHARED_INSTANCES[] = {"same for all", "increments"};
/// By the bits of the masks; the records have them the other way round.
constexpr const char* THRESHOLD_NAMES[] = {"lower non-critical",    "lower critical",
                                           "lower non-recoverable", "upper non-critical",
                                           "upper critical",        "upper non-recoverable"};
constexpr const char* LINEARIZATIONS[] = {"linear", "ln",  "log10", "log2", "e",    "exp10",
                                          "exp2",   "1/x", "sqr",   "cube", "sqrt", "cube root"};

bool hasThresholds(const SdrImage& image)
{
    return image.eventType == THRESHOLD_EVENT;
}
bool hasStates(const SdrImage& image)
{
    return !hasThresholds(image);
}
bool isLinear(const SdrImage& image)
{
    return image.conversion && image.conversion->differenceOf(1).has_value();
}

std::string joined(const Value& numbers, std::string (*nameOf)(const SdrImage&, unsigned int),
                   const SdrImage& image)
{
    std::string text;
    for (const long long each : std::get<std::vector<long long>>(numbers)) {
        text += (text.empty() ? "" : "; ") + nameOf(image, static_cast<unsigned int>(each));
    }
    return text.empty() ? "none" : text;
}

std::string eventNames(const SdrImage& image, const Place&, const Value& offsets)
{
    const auto nameOf = [](const SdrImage& sensor, unsigned int offset) {
        const char* const words =
            eventWords(sensor.eventType, sensor.sensorType, static_cast<unsigned char>(offset));
        return words != nullptr ? std::string(words) : fmt::format("offset {}", offset);
    };
    return joined(offsets, nameOf, image);
}

std::string thresholdNames(const SdrImage& image, const Place&, const Value& bits)
{
    return joined(
        bits, [](const SdrImage&, unsigned int bit) { return std::string(THRESHOLD_NAMES[bit]); },
        image);
}

/// Of bits 14..12 of the event masks: lower thresholds first, then upper ones.
std::string comparedNames(const SdrImage& image, const Place& place, const Value& bits)
{
    constexpr unsigned int UPPER = 3;
    const bool isUpper = place.offset > Common::ASSERTION_MASK + 1;
    return joined(
        bits,
        isUpper
            ? +[](const SdrImage&,
                  unsigned int bit) { return std::string(THRESHOLD_NAMES[bit + UPPER]); }
            : +[](const SdrImage&, unsigned int bit) { return std::string(THRESHOLD_NAMES[bit]); },
        image);
}

std::string sensorTypeOf(const SdrImage&, const Place&, const Value& type)
{
    return sensorTypeName(static_cast<unsigned char>(numberOf(type)));
}
std::string eventTypeOf(const SdrImage&, const Place&, const Value& type)
{
    return eventTypeName(static_cast<unsigned char>(numberOf(type)));
}
std::string unitOf(const SdrImage&, const Place&, const Value& unit)
{
    return sensorUnitName(static_cast<unsigned char>(numberOf(unit)));
}

Value unitsOf(const SdrImage& image, const SdrRow&, unsigned int)
{
    return image.units;
}

std::string withUnits(const SdrImage& image, const std::string& number)
{
    return image.units.empty() ? number : number + " " + image.units;
}

std::string linearizationOf(const SdrImage&, const Place&, const Value& code)
{
    constexpr unsigned int NON_LINEAR = 0x70;
    const unsigned int number = numberOf(code);
    if (number < std::size(LINEARIZATIONS)) {
        return LINEARIZATIONS[number];
    }
    if (number == NON_LINEAR) {
        return "non-linear";
    }
    return number > NON_LINEAR ? "non-linear, OEM" : "reserved";
}

/// A reading in units.
std::string readingOf(const SdrImage& image, const Place&, const Value& raw)
{
    return image.conversion
               ? withUnits(image,
                           readingText(image.conversion, static_cast<unsigned char>(numberOf(raw))))
               : "";
}

/// A reading that a flag of the record says to be specified.
template <unsigned int FLAG>
std::string specifiedReadingOf(const SdrImage& image, const Place& place, const Value& raw)
{
    return (image.byteAt(ANALOG_FLAGS) >> FLAG & 1) == 0 ? "not specified"
                                                         : readingOf(image, place, raw);
}

/// A threshold in units, and whether the sensor has it.
std::string thresholdOf(const SdrImage& image, const Place& place, const Value& raw)
{
    if (!hasThresholds(image)) {
        return "";
    }
    const bool isAny = (image.byteAt(Common::CAPABILITIES) >> 2 & 3) != 0;
    const unsigned int bit = THRESHOLDS_AT + std::size(THRESHOLD_NAMES) - 1 - place.offset;
    const bool isReadable = isAny && (image.byteAt(Common::READING_MASK) >> bit & 1) != 0;
    const std::string reading = readingOf(image, place, raw);
    return isReadable ? reading : reading + (reading.empty() ? "" : ", ") + "not readable";
}

/// A difference of so many counts, in units where a count always has as many.
std::string differenceOf(const SdrImage& image, double counts)
{
    return isLinear(image)
               ? withUnits(
                     image,
                     fmt::format("{:g}", std::fabs(counts * *image.conversion->differenceOf(1))))
               : "";
}

std::string hysteresisOf(const SdrImage& image, const Place&, const Value& counts)
{
    return differenceOf(image, numberOf(counts));
}

/// The record has it in halves of a count.
std::string toleranceOf(const SdrImage& image, const Place&, const Value& halves)
{
    const double counts = numberOf(halves) / 2.0;
    const std::string units = differenceOf(image, counts);
    return fmt::format("+/- {:g} counts{}", counts, units.empty() ? "" : ", +/- " + units);
}

/// The record has it in hundredths of a percent, with an exponent of its own.
std::string accuracyOf(const SdrImage& image, const Place&, const Value& hundredths)
{
    const int exponent = image.byteAt(ACCURACY_AND_DIRECTION) >> ACCURACY_EXPONENT.low & 3;
    return fmt::format("+/- {:g} %", numberOf(hundredths) * std::pow(10.0, exponent) / 100);
}

/// The units of a count.
Value resolution(const SdrImage& image, const SdrRow&, unsigned int)
{
    return std::fabs(*image.conversion->differenceOf(1));
}
std::string resolutionOf(const SdrImage& image, const Place&, const Value&)
{
    return image.units;
}

// clang-format off
constexpr SdrRow KEY[] = {
    {"sensor_owner_id", bytesAt(Common::OWNER_ID), sdrNumber, sdrHex},
    {"sensor_owner_type", bitAt(Common::OWNER_ID, 0), sdrNumber, sdrName<OWNERS>},
    {"sensor_owner_address", bitsAt(Common::OWNER_ID, 7, 1), sdrNumber, sdrHex},
    {"channel_number", bitsAt(Common::OWNER_LUN, 7, 4), sdrNumber},
    {"sensor_owner_lun", bitsAt(Common::OWNER_LUN, 1, 0), sdrNumber},
    {"sensor_number", bytesAt(Common::SENSOR_NUMBER), sdrNumber, sdrHex},
};

constexpr SdrRow SENSOR[] = {
    {"sensor_initialization", bytesAt(Common::INITIALIZATION), sdrNumber, sdrHex},
    {"is_settable", bitAt(Common::INITIALIZATION, 7), sdrFlag},
    {"init_scanning", bitAt(Common::INITIALIZATION, 6), sdrFlag},
    {"init_events", bitAt(Common::INITIALIZATION, 5), sdrFlag},
    {"init_thresholds", bitAt(Common::INITIALIZATION, 4), sdrFlag},
    {"init_hysteresis", bitAt(Common::INITIALIZATION, 3), sdrFlag},
    {"init_sensor_type", bitAt(Common::INITIALIZATION, 2), sdrFlag},
    {"default_events", bitAt(Common::INITIALIZATION, 1), sdrFlag},
    {"default_scanning", bitAt(Common::INITIALIZATION, 0), sdrFlag},
    {"sensor_capabilities", bytesAt(Common::CAPABILITIES), sdrNumber, sdrHex},
    {"ignore_if_entity_absent", bitAt(Common::CAPABILITIES, 7), sdrFlag},
    {"rearm", bitAt(Common::CAPABILITIES, 6), sdrNumber, sdrName<REARMS>},
    {"hysteresis_support", bitsAt(Common::CAPABILITIES, 5, 4), sdrNumber, sdrName<HYSTERESES>},
    {"threshold_access", bitsAt(Common::CAPABILITIES, 3, 2), sdrNumber, sdrName<HYSTERESES>},
    {"event_message_control", bitsAt(Common::CAPABILITIES, 1, 0), sdrNumber, sdrName<EVENT_CONTROLS>},
    {"sensor_type", bytesAt(Common::SENSOR_TYPE), sdrNumber, sensorTypeOf},
    {"event_type", bytesAt(Common::EVENT_TYPE), sdrNumber, eventTypeOf},
    {"assertion_mask", bytesAt(Common::ASSERTION_MASK, 2), sdrNumber, sdrHex},
    SdrRow{"assertion_events", bytesAt(Common::ASSERTION_MASK), sdrBits, eventNames}.with(bitsAt(Common::ASSERTION_MASK + 1, 3, 0)).only(hasThresholds),
    SdrRow{"assertion_events", bytesAt(Common::ASSERTION_MASK), sdrBits, eventNames}.with(bitsAt(Common::ASSERTION_MASK + 1, 6, 0)).only(hasStates),
    SdrRow{"lower_comparisons", bitsAt(Common::ASSERTION_MASK + 1, 6, 4), sdrBits, comparedNames}.only(hasThresholds),
    {"deassertion_mask", bytesAt(Common::DEASSERTION_MASK, 2), sdrNumber, sdrHex},
    SdrRow{"deassertion_events", bytesAt(Common::DEASSERTION_MASK), sdrBits, eventNames}.with(bitsAt(Common::DEASSERTION_MASK + 1, 3, 0)).only(hasThresholds),
    SdrRow{"deassertion_events", bytesAt(Common::DEASSERTION_MASK), sdrBits, eventNames}.with(bitsAt(Common::DEASSERTION_MASK + 1, 6, 0)).only(hasStates),
    SdrRow{"upper_comparisons", bitsAt(Common::DEASSERTION_MASK + 1, 6, 4), sdrBits, comparedNames}.only(hasThresholds),
    {"reading_mask", bytesAt(Common::READING_MASK, 2), sdrNumber, sdrHex},
    SdrRow{"readable_thresholds", bitsAt(Common::READING_MASK, 5, 0), sdrBits, thresholdNames}.only(hasThresholds),
    SdrRow{"settable_thresholds", bitsAt(Common::READING_MASK + 1, 5, 0), sdrBits, thresholdNames}.only(hasThresholds),
    SdrRow{"readable_states", bytesAt(Common::READING_MASK), sdrBits, eventNames}.with(bitsAt(Common::READING_MASK + 1, 6, 0)).only(hasStates),
    {"units_1", bytesAt(Common::UNITS_1), sdrNumber, sdrHex},
    {"analog_data_format", bitsAt(Common::UNITS_1, 7, 6), sdrNumber, sdrName<FORMATS>},
    {"rate_unit", bitsAt(Common::UNITS_1, 5, 3), sdrNumber, sdrName<RATES>},
    {"modifier_use", bitsAt(Common::UNITS_1, 2, 1), sdrNumber, sdrName<MODIFIERS>},
    {"is_percentage", bitAt(Common::UNITS_1, 0), sdrFlag},
    {"base_unit", bytesAt(Common::UNITS_2), sdrNumber, unitOf},
    {"modifier_unit", bytesAt(Common::UNITS_3), sdrNumber, unitOf},
    SdrRow{"units", bytesAt(Common::UNITS_3, 0), unitsOf}.with(bitsAt(Common::UNITS_1, 5, 0)).with(bytesAt(Common::UNITS_2)).with(bytesAt(Common::UNITS_3)),
};

constexpr SdrRow FULL[] = {
    {"linearization", bitsAt(LINEARIZATION, 6, 0), sdrNumber, linearizationOf},
    SdrRow{"m", bytesAt(M), sdrSigned}.with(bitsAt(M_AND_TOLERANCE, 7, 6)),
    {"tolerance", bitsAt(M_AND_TOLERANCE, 5, 0), sdrNumber, toleranceOf},
    SdrRow{"b", bytesAt(B), sdrSigned}.with(bitsAt(B_AND_ACCURACY, 7, 6)),
    SdrRow{"accuracy", bitsAt(B_AND_ACCURACY, 5, 0), sdrNumber, accuracyOf}.with(bitsAt(ACCURACY_AND_DIRECTION, 7, 4)),
    {"accuracy_exponent", ACCURACY_EXPONENT, sdrNumber},
    {"sensor_direction", bitsAt(ACCURACY_AND_DIRECTION, 1, 0), sdrNumber, sdrName<DIRECTIONS>},
    {"r_exponent", bitsAt(EXPONENTS, 7, 4), sdrSigned},
    {"b_exponent", bitsAt(EXPONENTS, 3, 0), sdrSigned},
    SdrRow{"resolution", bytesAt(EXPONENTS, 0), resolution, resolutionOf}.with(bytesAt(M)).with(bitsAt(M_AND_TOLERANCE, 7, 6)).with(bitsAt(EXPONENTS, 7, 4)).only(isLinear),
    {"normal_minimum_specified", bitAt(ANALOG_FLAGS, 2), sdrFlag},
    {"normal_maximum_specified", bitAt(ANALOG_FLAGS, 1), sdrFlag},
    {"nominal_specified", bitAt(ANALOG_FLAGS, 0), sdrFlag},
    {"nominal", bytesAt(NOMINAL), sdrNumber, specifiedReadingOf<0>},
    {"normal_maximum", bytesAt(NORMAL_MAXIMUM), sdrNumber, specifiedReadingOf<1>},
    {"normal_minimum", bytesAt(NORMAL_MINIMUM), sdrNumber, specifiedReadingOf<2>},
    {"sensor_maximum", bytesAt(MAXIMUM), sdrNumber, readingOf},
    {"sensor_minimum", bytesAt(MINIMUM), sdrNumber, readingOf},
    {"upper_non_recoverable", bytesAt(THRESHOLDS_AT), sdrNumber, thresholdOf},
    {"upper_critical", bytesAt(THRESHOLDS_AT + 1), sdrNumber, thresholdOf},
    {"upper_non_critical", bytesAt(THRESHOLDS_AT + 2), sdrNumber, thresholdOf},
    {"lower_non_recoverable", bytesAt(THRESHOLDS_AT + 3), sdrNumber, thresholdOf},
    {"lower_critical", bytesAt(THRESHOLDS_AT + 4), sdrNumber, thresholdOf},
    {"lower_non_critical", bytesAt(THRESHOLDS_AT + 5), sdrNumber, thresholdOf},
    {"positive_hysteresis", bytesAt(FullSensorRecord::POSITIVE_HYST), sdrNumber, hysteresisOf},
    {"negative_hysteresis", bytesAt(FullSensorRecord::NEGATIVE_HYST), sdrNumber, hysteresisOf},
};

template <unsigned int AT> constexpr SdrRow SHARING[] = {
    {"sensor_direction", bitsAt(AT, 7, 6), sdrNumber, sdrName<DIRECTIONS>},
    {"id_modifier_type", bitsAt(AT, 5, 4), sdrNumber, sdrName<ENDINGS>},
    {"share_count", bitsAt(AT, 3, 0), sdrNumber},
    {"entity_instance_sharing", bitAt(AT + 1, 7), sdrNumber, sdrName<SHARED_INSTANCES>},
    {"id_modifier_offset", bitsAt(AT + 1, 6, 0), sdrNumber},
};

constexpr SdrRow HYSTERESIS[] = {
    {"positive_hysteresis", bytesAt(CompactSensorRecord::POSITIVE_HYST), sdrNumber},
    {"negative_hysteresis", bytesAt(CompactSensorRecord::NEGATIVE_HYST), sdrNumber},
};

constexpr SdrRow EVENT_ONLY[] = {
    {"sensor_type", bytesAt(EVENT_ONLY_TYPE), sdrNumber, sensorTypeOf},
    {"event_type", bytesAt(EVENT_ONLY_EVENT_TYPE), sdrNumber, eventTypeOf},
};

constexpr unsigned int NAME_LIMIT = Common::VARIABLE_FIELD_LENGTH;
constexpr SdrLayout LAYOUTS[] = {
    {SDR_FULL, FullSensorRecord::FIXED_SIZE, NAME_LIMIT,
     {KEY, SDR_ENTITY<Common::ENTITY_ID>, SENSOR, FULL, SDR_OEM_AND_ID<FULL_OEM>}},
    {SDR_COMPACT, CompactSensorRecord::FIXED_SIZE, NAME_LIMIT,
     {KEY, SDR_ENTITY<Common::ENTITY_ID>, SENSOR, SHARING<COMPACT_SHARING>, HYSTERESIS, SDR_OEM_AND_ID<COMPACT_OEM>}},
    {SDR_EVENT_ONLY, EVENT_ONLY_OEM + 2, SDR_NAME_LIMIT,
     {KEY, SDR_ENTITY<Common::ENTITY_ID>, EVENT_ONLY, SHARING<EVENT_ONLY_SHARING>, SDR_OEM_AND_ID<EVENT_ONLY_OEM>}},
};
// clang-format on

}

constexpr SdrLayouts SENSOR_LAYOUTS = LAYOUTS;

}
