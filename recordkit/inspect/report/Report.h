// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_REPORT_REPORT_H
#define RECORDKIT_INSPECT_REPORT_REPORT_H

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <recordkit/eeprom/EFIBackupEEPROMIndex.h>
#include <recordkit/inspect/eeprom/SettingIndex.h>
#include <recordkit/inspect/event/EventSummary.h>
#include <recordkit/inspect/event/Failures.h>
#include <recordkit/inspect/fields/RecordClass.h>
#include <recordkit/inspect/fru/CpuRom.h>
#include <recordkit/inspect/log/LogMarks.h>
#include <recordkit/inspect/log/LogStatus.h>
#include <recordkit/inspect/memory/Spd.h>
#include <recordkit/inspect/sensor/Sensor.h>
#include <recordkit/selfile/SELStoreCheck.h>

namespace recordkit::inspect {

/// A log of a report: that of a board, or a saved one.
struct ReportLog {
    std::string name;
    std::string root; ///< empty for saved files
    // The next four are those of a board's log.
    std::optional<unsigned int> board;
    std::optional<LogStatus> status;
    std::vector<TAVLib::RecordKit::SELStoreCheck::File> files;
    std::vector<TAVLib::RecordKit::SELStoreCheck::Finding> findings;

    const SensorNames* names = nullptr; ///< that name the sensors of its events, if any do
    EventCount count;
    SeverityCounts severities;

    bool isSound() const;
};

/// Where something of a report was found.
struct ReportPlace {
    std::string path;
    std::string root; ///< empty for a file that is in none
};

/// A file or a root that was read, or could not be.
struct ReportInput {
    ReportPlace place;
    std::string kind;
    bool isLeftOut = false; ///< the report does not contain it
    std::vector<std::string> problems;
};

struct ReportFru {
    ReportPlace place;
    std::string bytes;
    FruImage image;
};
struct ReportModule {
    ReportPlace place;
    Spd spd;
};
struct ReportRepository {
    ReportPlace place;
    SdrFile file;
    std::vector<Sensor> sensors;
};
struct ReportProcessor {
    ReportPlace place;
    CpuRom rom;
    std::size_t size = 0;
};
struct ReportRecord {
    ReportPlace place;
    const RecordClass* recordClass = nullptr;
    DecodedFields fields;
};
struct ReportSettings {
    ReportPlace place;
    std::vector<SettingEntry> entries;
    std::vector<SettingEntry> master; ///< of the index file, if there is one
};
struct ReportEfi {
    ReportPlace place;
    TAVLib::RecordKit::EFIBackupEEPROMIndex index;
};

/// Why a verdict is not "good".
struct ReportReason {
    enum Kind { ASSERTED, DAMAGED, ODD, LEFT_OUT };

    Kind kind = ASSERTED;
    std::size_t state = 0; ///< ASSERTED: position among the summary's asserted states
    std::string where;     ///< the others: the log, root or file
    std::string text;
};

/// "asserted", "damaged", "odd" or "left out".
const char* reasonName(ReportReason::Kind kind);

/// The health of what a report is about.
struct ReportVerdict {
    std::string level; ///< "good", "warning", "critical" or "non-recoverable"
    std::string text;
    std::vector<ReportReason> reasons; ///< the worst first
};

/// Everything that was saved of one or several boards. Whoever fills it reads the files; the events
/// are merged, marked and named.
struct Report {
    std::vector<ReportInput> inputs;
    std::vector<ReportLog> logs; ///< the log of an event is its position here
    std::vector<Event> events;
    std::size_t leftOut = 0; ///< events that a filter left out
    EventSummary summary;    ///< of the events
    std::vector<ReportFru> fru;
    std::vector<ReportModule> memory;
    std::vector<ReportRepository> repositories;
    std::vector<ReportProcessor> processors;
    std::vector<ReportRecord> records;
    std::vector<ReportSettings> settings;
    std::vector<ReportEfi> efi;
};

/// Counts the events and the states of each log by those of the whole report.
void countLogs(Report& report);

/// Judges a report at `now`, in seconds since 1970. It is good only if no state of severity warning
/// or worse is still asserted, nothing is damaged or odd, and nothing was left out.
///
/// Odd is what auditFruImages and auditSpdModules find among the images of one folder, and
/// checkRepository in a repository.
ReportVerdict judge(const Report& report, unsigned int now);

}

#endif
