// SPDX-License-Identifier: Apache-2.0
#include <recordkit/sensor/SeverityMap.h>

#include <fcntl.h>
#include <string>
#include <unistd.h>

#include <recordkit/platform/SystemRoot.h>
#include <recordkit/posix/File.h>
#include <recordkit/serial/BitField.h>

#include "SeverityTable.h"

namespace {

constexpr unsigned int PSMODE_BIT = 0;
constexpr unsigned int PSUREDMODE_BIT = 1;

constexpr unsigned char REDUNDANCY_EVENT = 0x0B;
constexpr unsigned char POWER_UNIT_SENSOR = 0x09;
constexpr unsigned short REDUNDANCY_LOST_BUT_SUFFICIENT = 1U << 3;

constexpr unsigned char SEVERITY_EVENT = 0x07;
constexpr unsigned char MODULE_SENSOR = 0x15;
constexpr unsigned char CHASSIS_SENSOR = 0x18;

bool dependsOnPowerSupplyMode(unsigned char evtReadType, unsigned char sensorType)
{
    return evtReadType == REDUNDANCY_EVENT && sensorType == POWER_UNIT_SENSOR;
}

unsigned short keyOf(unsigned char evtReadType, unsigned char sensorType)
{
    return static_cast<unsigned short>(evtReadType << 8 | sensorType);
}

/// The bit that an offset sets in a mask: as a shift of a 64-bit number whose low 16 bits are kept,
/// so that 64 to 79 set what 0 to 15 set. 16 to 63 and the end mark FFh set nothing.
unsigned short maskBitOf(unsigned char offset)
{
    const unsigned int shift = offset % 64U;
    return static_cast<unsigned short>(shift < 16 ? 1U << shift : 0U);
}

std::string powerSupplyModeFile()
{
    return TAVLib::systemRoot() + SeverityMap::MODE_FILE;
}

}

std::map<unsigned short, SeverityMap::maskData> SeverityMap::severityMap;
unsigned char SeverityMap::psmode = 0;
unsigned char SeverityMap::psuredmode = 0;
SeverityMap* SeverityMap::sevMapInstance = nullptr;

const SeverityMap::severityToAlarm SeverityMap::severitytoalalarmlist[6] = {
    {SEV_NONE, ALARM_NONE},      {SEV_NONCRITICAL, ALARM_WARNING},
    {SEV_CRITICAL, ALARM_ALARM}, {SEV_NONRECOVERABLE, ALARM_ALARM},
    {SEV_MONITOR, ALARM_NONE},   {SEV_INFORMATIONAL, ALARM_NONE},
};

SeverityMap::SeverityMap()
{
    initializeSeverityData();
}

SeverityMap* SeverityMap::getInstance()
{
    if (sevMapInstance == nullptr) {
        sevMapInstance = new SeverityMap;
    }
    return sevMapInstance;
}

void SeverityMap::initializeSeverityData()
{
    if (!severityMap.empty()) {
        return;
    }
    std::size_t count = 0;
    const SeverityRow* const rows = severityRows(count);
    for (std::size_t i = 0; i < count; ++i) {
        setMasks(rows[i].evtReadType, rows[i].sensorType, rows[i].list, rows[i].count);
    }
}

void SeverityMap::setMasks(unsigned char evtReadType, unsigned char sensorType,
                           const offsetToSev_t* list, int count)
{
    unsigned short sev[SEV_INFORMATIONAL + 1] = {};
    for (int i = 0; i < count; ++i) {
        if (list[i].severity > SEV_NONE && list[i].severity <= SEV_INFORMATIONAL) {
            sev[list[i].severity] |= maskBitOf(list[i].offset);
        }
    }
    const auto alarm = static_cast<unsigned short>(sev[SEV_CRITICAL] | sev[SEV_NONRECOVERABLE]);
    severityMap.insert({keyOf(evtReadType, sensorType),
                        {alarm, sev[SEV_NONCRITICAL], sev[SEV_NONCRITICAL], sev[SEV_CRITICAL],
                         sev[SEV_NONRECOVERABLE], sev[SEV_MONITOR], sev[SEV_INFORMATIONAL]}});
}

SeverityMap::DISCRETESEVERITYSTAT SeverityMap::getSeverity(unsigned char evtReadType,
                                                           unsigned char sensorType,
                                                           unsigned short offsets)
{
    const maskData* const masks = find(evtReadType, sensorType);
    if (masks == nullptr) {
        return SEV_NONE;
    }
    // Monitor and informational count only when nothing worse is asserted.
    if ((offsets & masks->sev3) != 0) {
        return SEV_NONRECOVERABLE;
    }
    if ((offsets & masks->sev2) != 0) {
        return SEV_CRITICAL;
    }
    if ((offsets & masks->sev1) != 0) {
        if (!dependsOnPowerSupplyMode(evtReadType, sensorType)) {
            return SEV_NONCRITICAL;
        }
        updatePowerSupplyMode();
        if (psmode != 0 || psuredmode != 0) {
            return SEV_NONCRITICAL;
        }
    }
    if ((offsets & masks->sev4) != 0) {
        return SEV_MONITOR;
    }
    return (offsets & masks->sev5) != 0 ? SEV_INFORMATIONAL : SEV_NONE;
}

int SeverityMap::getAlarmStatus(unsigned char evtReadType, unsigned char sensorType,
                                unsigned short offsets)
{
    return severityToAlarmStatus(getSeverity(evtReadType, sensorType, offsets));
}

int SeverityMap::severityToAlarmStatus(DISCRETESEVERITYSTAT s)
{
    // A caller may pass any number; outside the table there is no alarm.
    const int severity = s;
    return severity >= SEV_NONE && severity <= SEV_INFORMATIONAL
               ? severitytoalalarmlist[severity].alarmStatus
               : ALARM_NONE;
}

unsigned short SeverityMap::getSeverityMask(unsigned char evtReadType, unsigned char sensorType,
                                            DISCRETESEVERITYSTAT s)
{
    const maskData* const masks = find(evtReadType, sensorType);
    if (masks == nullptr) {
        return 0;
    }
    switch (s) {
    case SEV_NONCRITICAL:
        return masks->sev1;
    case SEV_CRITICAL:
        return masks->sev2;
    case SEV_NONRECOVERABLE:
        return masks->sev3;
    case SEV_MONITOR:
        return masks->sev4;
    case SEV_INFORMATIONAL:
        return masks->sev5;
    default:
        return 0;
    }
}

void SeverityMap::getAlarmMasks(unsigned char evtReadType, unsigned char sensorType,
                                unsigned short& alarm, unsigned short& warning)
{
    const maskData* const masks = find(evtReadType, sensorType);
    if (masks != nullptr) {
        alarm = masks->alarm;
        warning = withPowerSupplyMode(evtReadType, sensorType, masks->warning);
    }
}

void SeverityMap::getSeverityMasks(unsigned char evtReadType, unsigned char sensorType,
                                   unsigned short& sev1, unsigned short& sev2, unsigned short& sev3,
                                   unsigned short& sev4, unsigned short& sev5)
{
    const maskData* const masks = find(evtReadType, sensorType);
    if (masks != nullptr) {
        sev1 = withPowerSupplyMode(evtReadType, sensorType, masks->sev1);
        sev2 = masks->sev2;
        sev3 = masks->sev3;
        sev4 = masks->sev4;
        sev5 = masks->sev5;
    }
}

int SeverityMap::getDiscreteCriticalityStatus(unsigned char evtReadType, unsigned char sensorType,
                                              unsigned short offsets)
{
    if (evtReadType != SEVERITY_EVENT ||
        (sensorType != MODULE_SENSOR && sensorType != CHASSIS_SENSOR)) {
        return 0;
    }
    // Each criticality has two offsets: entered from a less and from a more severe state.
    constexpr unsigned int NONRECOVERABLE_OFFSETS = 0x48;
    constexpr unsigned int CRITICAL_OFFSETS = 0x24;
    constexpr unsigned int NONCRITICAL_OFFSETS = 0x12;
    if ((offsets & NONRECOVERABLE_OFFSETS) != 0) {
        return SEV_NONRECOVERABLE;
    }
    if ((offsets & CRITICAL_OFFSETS) != 0) {
        return SEV_CRITICAL;
    }
    return (offsets & NONCRITICAL_OFFSETS) != 0 ? SEV_NONCRITICAL : 0;
}

void SeverityMap::updatePowerSupplyMode()
{
    const TAVLib::posix::File file(powerSupplyModeFile(), O_RDONLY);
    unsigned char mode = 0;
    // Descriptor 0 is never read: a process without standard input would mistake it for this file.
    // A file that cannot be opened or read leaves the mode non-redundant.
    if (file.get() != 0 && TEMP_FAILURE_RETRY(::read(file.get(), &mode, 1)) != 1) {
        mode = 0;
    }
    psmode = TAVLib::get_bit(mode, PSMODE_BIT, 1);
    psuredmode = TAVLib::get_bit(mode, PSUREDMODE_BIT, 1);
}

void SeverityMap::setPowerSupplyMode(bool newPsmode, bool newPsuredmode)
{
    psmode = newPsmode ? 1 : 0;
    psuredmode = newPsuredmode ? 1 : 0;
    // Not truncated: a concurrent reader finds the old byte, not an empty file.
    const TAVLib::posix::File file(powerSupplyModeFile(), O_WRONLY | O_CREAT | O_NOFOLLOW);
    const auto mode =
        static_cast<unsigned char>(psmode << PSMODE_BIT | psuredmode << PSUREDMODE_BIT);
    if (file.get() != 0) {
        // Without the file the flags are still valid until the next query of the power unit.
        static_cast<void>(TEMP_FAILURE_RETRY(::write(file.get(), &mode, 1)));
    }
}

const SeverityMap::maskData* SeverityMap::find(unsigned char evtReadType,
                                               unsigned char sensorType) const
{
    const auto found = severityMap.find(keyOf(evtReadType, sensorType));
    return found == severityMap.end() ? nullptr : &found->second;
}

unsigned short SeverityMap::withPowerSupplyMode(unsigned char evtReadType, unsigned char sensorType,
                                                unsigned short mask)
{
    if (dependsOnPowerSupplyMode(evtReadType, sensorType)) {
        updatePowerSupplyMode();
        if (psmode == 0 && psuredmode == 0) {
            return static_cast<unsigned short>(mask & ~REDUNDANCY_LOST_BUT_SUFFICIENT);
        }
    }
    return mask;
}
