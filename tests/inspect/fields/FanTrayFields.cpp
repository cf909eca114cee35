// SPDX-License-Identifier: Apache-2.0
// The field table of the invented class, and a registry that has its subsystem too.
#include <fmt/format.h>

#include <recordkit/inspect/fields/Accessors.h>
#include <recordkit/inspect/fields/Registry.h>

#include "FanTrayInfo.h"

namespace recordkit::inspect {

namespace {

using Tray = TAVLib::RecordKit::FanTrayInfo;

std::string asRpm(const Value& speed)
{
    return fmt::format("{} rpm", numberOf(speed));
}

constexpr List FANS = {nullptr, Tray::SPEED, 2, always<Tray::FANS>};
constexpr Field FAN_TRAY_INFO[] = {
    {"installed", bitAt(Tray::FLAGS, 0), ask<&Tray::isInstalled>},
    {"fault", bitAt(Tray::FLAGS, 2), ask<&Tray::isFault>},
    Field{"fan{}_speed", bytesAt(0, 2), askEach<&Tray::getSpeed>, asRpm}.in(FANS),
};

constexpr RecordClass CLASSES[] = {
    describe<Tray>("FanTrayInfo", {10, 10}, "state of a fan tray", FAN_TRAY_INFO),
};
constexpr RecordClasses INVENTED_CLASSES = CLASSES;

constexpr const RecordClasses* SUBSYSTEMS[] = {
    &SERIAL_CLASSES, &HARDWARE_CLASSES, &VERSION_CLASSES,  &SEL_CLASSES,
    &SENSOR_CLASSES, &EEPROM_CLASSES,   &INVENTED_CLASSES,
};

}

std::vector<const RecordClass*> recordClasses()
{
    return classesOf(SUBSYSTEMS);
}

}
