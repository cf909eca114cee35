// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/words/SensorUnits.h>

#include <iterator>

namespace recordkit::inspect {

namespace {

// clang-format off
constexpr const char* NAMES[] = {
    "unspecified", // 0
    "degrees C",
    "degrees F",
    "degrees K",
    "Volts",
    "Amps", // 5
    "Watts",
    "Joules",
    "Coulombs",
    "VA",
    "Nits", // 10
    "lumen",
    "lux",
    "Candela",
    "kPa",
    "PSI", // 15
    "Newton",
    "CFM",
    "RPM",
    "Hz",
    "microsecond", // 20
    "millisecond",
    "second",
    "minute",
    "hour",
    "day", // 25
    "week",
    "mil",
    "inches",
    "feet",
    "cu in", // 30
    "cu feet",
    "mm",
    "cm",
    "m",
    "cu cm", // 35
    "cu m",
    "liters",
    "fluid ounce",
    "radians",
    "steradians", // 40
    "revolutions",
    "cycles",
    "gravities",
    "ounce",
    "pound", // 45
    "ft-lb",
    "oz-in",
    "gauss",
    "gilberts",
    "henry", // 50
    "millihenry",
    "farad",
    "microfarad",
    "ohms",
    "siemens", // 55
    "mole",
    "becquerel",
    "PPM",
    "reserved",
    "Decibels", // 60
    "DbA",
    "DbC",
    "gray",
    "sievert",
    "color temp deg K", // 65
    "bit",
    "kilobit",
    "megabit",
    "gigabit",
    "byte", // 70
    "kilobyte",
    "megabyte",
    "gigabyte",
    "word",
    "dword", // 75
    "qword",
    "line",
    "hit",
    "miss",
    "retry", // 80
    "reset",
    "overrun / overflow",
    "underrun",
    "collision",
    "packets", // 85
    "messages",
    "characters",
    "error",
    "correctable error",
    "uncorrectable error", // 90
    "fatal error",
    "grams",
};
// clang-format on
static_assert(std::size(NAMES) == 93, "one name for each unit up to 92");

}

std::string sensorUnitName(unsigned char unit)
{
    return unit < std::size(NAMES) ? NAMES[unit] : "unit " + std::to_string(unit);
}

}
