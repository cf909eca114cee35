// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_SENSOR_SEVERITYMAP_H
#define RECORDKIT_SENSOR_SEVERITYMAP_H

#include <map>

#include <recordkit/platform/Export.h>

/// Classifies discrete sensor events: a pair of event/reading type and sensor type, with the bit
/// set of asserted event offsets (bit n: offset n), maps to a severity and an alarm status. The
/// codes are those of IPMI v2.0, sections 42.1 and 42.2.
///
/// One pair, power unit redundancy (0Bh, 09h), depends on the power supply mode kept in
/// MODE_FILE, one byte: bit 0 psmode, bit 1 psuredmode. With neither set
/// the configuration is not redundant, and losing redundancy (offset 3) is not a warning. The file
/// is read again for every query of that pair; a missing one counts as 0.
///
/// A link in place of the file is not followed for writing, because any user may leave one in /tmp.
///
/// The class has no locks: the first getInstance() must come before other threads use it.
class RECORDKIT_API SeverityMap {
public:
    enum DISCRETESEVERITYSTAT : int {
        SEV_NONE = 0, ///< no severity, or an unknown pair
        SEV_NONCRITICAL = 1,
        SEV_CRITICAL = 2,
        SEV_NONRECOVERABLE = 3,
        SEV_MONITOR = 4,
        SEV_INFORMATIONAL = 5,
    };

    /// The file of the power supply mode, below the system root.
    static constexpr const char* MODE_FILE = "/tmp/psumode";

    /// Alarm status: what an operator's lamp shows.
    enum AlarmStatus : int { ALARM_NONE = 0, ALARM_WARNING = 1, ALARM_ALARM = 2 };

    /// Severity of one event offset; offset 0xFF marks the end of a list and sets nothing.
    struct offsetToSev_t {
        unsigned char offset;
        DISCRETESEVERITYSTAT severity;
    };

    /// The masks of one pair; bit n stands for event offset n.
    struct maskData {
        unsigned short alarm;   ///< critical and non-recoverable
        unsigned short warning; ///< non-critical
        unsigned short sev1;
        unsigned short sev2;
        unsigned short sev3;
        unsigned short sev4;
        unsigned short sev5;
    };

    /// The one map of the process, built by the first call and never freed.
    static SeverityMap* getInstance();

    /// Fills the map; does nothing if it is not empty.
    void initializeSeverityData();

    /// Folds `count` entries into masks and adds them under the pair. An existing pair keeps its
    /// masks. Offsets count modulo 64, and then 16 and above set nothing; severity 0 sets nothing
    /// either.
    void setMasks(unsigned char evtReadType, unsigned char sensorType, const offsetToSev_t* list,
                  int count);

    /// Severity of the asserted offsets: non-recoverable before critical, non-critical, monitor and
    /// informational. SEV_NONE for an unknown pair or if no offset has a severity.
    DISCRETESEVERITYSTAT getSeverity(unsigned char evtReadType, unsigned char sensorType,
                                     unsigned short offsets);

    /// Alarm status of the same.
    int getAlarmStatus(unsigned char evtReadType, unsigned char sensorType, unsigned short offsets);

    /// Alarm status of a severity; ALARM_NONE for a value that is not a severity.
    int severityToAlarmStatus(DISCRETESEVERITYSTAT s);

    /// The offsets of one severity, 1 to 5, whatever the power supply mode; 0 for any other
    /// severity or an unknown pair.
    unsigned short getSeverityMask(unsigned char evtReadType, unsigned char sensorType,
                                   DISCRETESEVERITYSTAT s);

    /// The offsets that raise an alarm and a warning. An unknown pair writes nothing.
    void getAlarmMasks(unsigned char evtReadType, unsigned char sensorType, unsigned short& alarm,
                       unsigned short& warning);

    /// The offsets of severities 1 to 5. An unknown pair writes nothing.
    void getSeverityMasks(unsigned char evtReadType, unsigned char sensorType, unsigned short& sev1,
                          unsigned short& sev2, unsigned short& sev3, unsigned short& sev4,
                          unsigned short& sev5);

    /// Criticality 0 to 3 of a severity event (07h) of a module (15h) or the chassis (18h), by its
    /// asserted offsets; 0 for every other pair. Only these two sensor types have a criticality,
    /// although the map contains more.
    int getDiscreteCriticalityStatus(unsigned char evtReadType, unsigned char sensorType,
                                     unsigned short offsets);

    /// Reads the power supply mode.
    void updatePowerSupplyMode();

    /// Sets and writes the power supply mode; errors are ignored.
    void setPowerSupplyMode(bool psmode, bool psuredmode);

private:
    SeverityMap();

    const maskData* find(unsigned char evtReadType, unsigned char sensorType) const;
    unsigned short withPowerSupplyMode(unsigned char evtReadType, unsigned char sensorType,
                                       unsigned short mask);

    struct severityToAlarm {
        int severity;
        int alarmStatus;
    };

    static std::map<unsigned short, maskData> severityMap;
    static unsigned char psmode;
    static unsigned char psuredmode;
    static SeverityMap* sevMapInstance;
    static const severityToAlarm severitytoalalarmlist[6];
};

#endif
