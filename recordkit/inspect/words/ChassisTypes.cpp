// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/words/ChassisTypes.h>

#include <iterator>
#include <strings.h>

#include <recordkit/inspect/bytes/Numbers.h>

namespace recordkit::inspect {

namespace {

// clang-format off
constexpr const char* NAMES[] = {
    "Unspecified", // 0
    "Other",
    "Unknown",
    "Desktop",
    "Low Profile Desktop",
    "Pizza Box", // 5
    "Mini Tower",
    "Tower",
    "Portable",
    "Laptop",
    "Notebook", // 10
    "Hand Held",
    "Docking Station",
    "All in One",
    "Sub Notebook",
    "Space-saving", // 15
    "Lunch Box",
    "Main Server Chassis",
    "Expansion Chassis",
    "SubChassis",
    "Bus Expansion Chassis", // 20
    "Peripheral Chassis",
    "RAID Chassis",
    "Rack Mount Chassis",
    "Sealed-case PC",
    "Multi-system Chassis", // 25
    "Compact PCI",
    "Advanced TCA",
    "Blade",
    "Blade Enclosure",
    "Tablet", // 30
    "Convertible",
    "Detachable",
    "IoT Gateway",
    "Embedded PC",
    "Mini PC", // 35
    "Stick PC",
};
// clang-format on
static_assert(std::size(NAMES) == 37, "one name for each type up to 36");

}

std::string chassisTypeName(unsigned char type)
{
    return type < std::size(NAMES) ? NAMES[type] : "type " + std::to_string(type);
}

std::optional<unsigned char> findChassisType(const std::string& text)
{
    for (std::size_t i = 0; i < std::size(NAMES); ++i) {
        if (::strcasecmp(text.c_str(), NAMES[i]) == 0) {
            return static_cast<unsigned char>(i);
        }
    }
    return parseNumber(text, 0xFF);
}

}
