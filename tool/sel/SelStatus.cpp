// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>

#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/log/LogStatus.h>
#include <recordkit/selfile/SELFileLayout.h>

#include "../Answers.h"
#include "../Commands.h"
#include "../Errors.h"
#include "../Zone.h"
#include "../cli/Arguments.h"
#include "../print/Listing.h"
#include "LogProblems.h"
#include "Store.h"

namespace recordkit::tool {

namespace {

constexpr unsigned int SLOTS = TAVLib::RecordKit::SELFileLayout::SLOTS;

Value isoTime(const std::optional<Timestamp>& time)
{
    return textOrNull(time ? time->toIso(chosenZone()) : "");
}

Cell timeCell(const std::optional<Timestamp>& time)
{
    return {time ? time->toText(chosenZone()) : "-"};
}

Cell stateCell(const LogStatus& s)
{
    return s.findings == 0 ? Cell{"sound", Style::GOOD}
                           : Cell{fmt::format("{} to check", s.findings), Style::ALARM};
}

constexpr Column<LogStatus> COLUMNS[] = {
    {"board", "BOARD", 5, [](const LogStatus& s) { return Value(s.board); }},
    {"working_file", nullptr, 0,
     [](const LogStatus& s) { return Value(s.inWorkingFile.has_value()); }},
    {"events_in_working_file", "WORKING", 8,
     [](const LogStatus& s) { return Value(s.inWorkingFile.value_or(0)); },
     [](const LogStatus& s) {
         return Cell{s.inWorkingFile ? fmt::format("{}/{}", *s.inWorkingFile, SLOTS) : "missing"};
     }},
    {"free_slots", nullptr, 0,
     [](const LogStatus& s) { return Value(SLOTS - s.inWorkingFile.value_or(SLOTS)); }},
    {"rotated_files", "ROTATED", 7, [](const LogStatus& s) { return Value(s.rotatedFiles); }},
    {"events", "EVENTS", 6, [](const LogStatus& s) { return Value(s.total); }},
    {"events_counted", "COUNTED", 7, [](const LogStatus& s) { return Value(s.counted); }},
    {"oldest", "OLDEST (UTC)", 22, [](const LogStatus& s) { return isoTime(s.oldest); },
     [](const LogStatus& s) { return timeCell(s.oldest); }},
    {"newest", "NEWEST (UTC)", 22, [](const LogStatus& s) { return isoTime(s.newest); },
     [](const LogStatus& s) { return timeCell(s.newest); }},
    {"events_in_backup", "BACKUP", 10,
     [](const LogStatus& s) { return s.inBackup ? Value(*s.inBackup) : Value(); },
     [](const LogStatus& s) { return Cell{s.inBackup ? counted(*s.inBackup, "event") : "none"}; }},
    {"findings", "STATE", 0, [](const LogStatus& s) { return Value(s.findings); }, stateCell},
};

void run(const Arguments& arguments)
{
    requireLogs();
    std::vector<LogStatus> all;
    LogProblems problems;
    for (const unsigned char board : arguments.boards()) {
        all.push_back(readLogStatus(board));
        problems.add(board, all.back().problems);
    }
    printListing(all, COLUMNS, arguments.layout());
    problems.finish(LogProblems::SHOWN);
}

}

Object statusObject(const LogStatus& status)
{
    return objectOf(status, COLUMNS);
}

Command selStatusCommand()
{
    return {"sel status",
            "Show each board's log at a glance",
            "recordkit sel status --board all",
            {boards("all")},
            Answer::TABLE,
            run,
            "EVENTS are all events that the files contain, COUNTED those that the store itself "
            "counts. What makes the difference is reported on standard error, with status 1."};
}

}
