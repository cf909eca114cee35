// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <fmt/format.h>
#include <memory>

#include <recordkit/inspect/bytes/Time.h>
#include <recordkit/selfile/SELFileLayout.h>
#include <recordkit/selfile/SELStoreCheck.h>

#include "../Commands.h"
#include "../print/Json.h"
#include "../print/Table.h"
#include "Store.h"

namespace recordkit::tool {

namespace Layout = TAVLib::RecordKit::SELFileLayout;
using TAVLib::RecordKit::SELStoreCheck;

namespace {

struct Options {
    BoardsOption boards;
    bool isJson = false;
};

/// One board's log at a glance.
struct Status {
    unsigned int board = 0;
    bool hasWorkingFile = false;
    unsigned int inWorkingFile = 0;
    unsigned int rotatedFiles = 0;
    unsigned int total = 0;
    bool hasBackup = false;
    unsigned int inBackup = 0;
    bool hasTimes = false;   ///< whether any event has a timestamp
    unsigned int oldest = 0; ///< IPMI timestamps
    unsigned int newest = 0;
    std::size_t findings = 0;
};

Status statusOf(unsigned char board)
{
    const SELStoreCheck check(board);
    const auto& files = check.getFiles();
    Status status;
    status.board = board;
    status.hasWorkingFile = !files[0].isMissing;
    status.inWorkingFile = files[0].count;
    status.hasBackup = !files[1].isMissing;
    status.inBackup = files[1].count;
    status.findings = static_cast<std::size_t>(
        std::count_if(check.getFindings().begin(), check.getFindings().end(),
                      [](const SELStoreCheck::Finding& finding) { return finding.isDamage; }));
    // From the newest file to the oldest of the chain: the last one seen contains the oldest event.
    for (const SELStoreCheck::File& file : files) {
        const bool isBackup = file.index == 0 && file.kind == Layout::PERSISTENT;
        if (isBackup) {
            continue;
        }
        if (file.index != 0 && file.isMissing) {
            break;
        }
        status.rotatedFiles += file.index != 0 ? 1 : 0;
        status.total += file.count;
        if (file.hasTimes) {
            status.newest = status.hasTimes ? status.newest : file.lastTime;
            status.oldest = file.firstTime;
            status.hasTimes = true;
        }
    }
    return status;
}

Json toJson(const Status& status)
{
    const auto time = [&status](unsigned int seconds) {
        const std::string iso = Timestamp(seconds).toIso();
        return !status.hasTimes || iso.empty() ? Json(nullptr) : Json(iso);
    };
    Json json;
    json["board"] = status.board;
    json["working_file"] = status.hasWorkingFile;
    json["events_in_working_file"] = status.inWorkingFile;
    json["free_slots"] = status.hasWorkingFile ? Layout::SLOTS - status.inWorkingFile : 0;
    json["rotated_files"] = status.rotatedFiles;
    json["events"] = status.total;
    json["oldest"] = time(status.oldest);
    json["newest"] = time(status.newest);
    json["events_in_backup"] = status.hasBackup ? Json(status.inBackup) : Json(nullptr);
    json["findings"] = status.findings;
    return json;
}

std::vector<Cell> toCells(const Status& status)
{
    const auto time = [&status](unsigned int seconds) {
        return !status.hasTimes ? "-" : Timestamp(seconds).toText();
    };
    const bool isSound = status.findings == 0;
    return {{std::to_string(status.board)},
            {status.hasWorkingFile ? fmt::format("{}/{}", status.inWorkingFile, Layout::SLOTS)
                                   : "missing"},
            {std::to_string(status.rotatedFiles)},
            {std::to_string(status.total)},
            {time(status.oldest)},
            {time(status.newest)},
            {status.hasBackup ? fmt::format("{} events", status.inBackup) : "none"},
            {isSound ? "sound" : fmt::format("{} to check", status.findings),
             isSound ? Style::GOOD : Style::ALARM}};
}

void printTable(const std::vector<Status>& all, bool hasColour)
{
    const Table table({{"BOARD", 5},
                       {"WORKING", 8},
                       {"ROTATED", 7},
                       {"EVENTS", 6},
                       {"OLDEST (UTC)", 22},
                       {"NEWEST (UTC)", 22},
                       {"BACKUP", 10},
                       {"STATE", 0}},
                      hasColour);
    std::string text = table.header();
    for (const Status& status : all) {
        table.append(toCells(status), text);
    }
    fmt::print("{}", text);
}

void show(const Options& options, const Globals& globals)
{
    std::vector<Status> all;
    for (const unsigned char board : options.boards.get(globals)) {
        all.push_back(statusOf(board));
    }
    if (!options.isJson) {
        printTable(all, globals.wantsColour());
        return;
    }
    Json json = Json::array();
    for (const Status& status : all) {
        json.push_back(toJson(status));
    }
    fmt::print("{}", indented(json));
}

}

void addSelStatus(CLI::App& sel, Globals& globals)
{
    const auto options = std::make_shared<Options>();
    CLI::App* const command = addCommand(sel, "status", "Show each board's log at a glance",
                                         "recordkit sel status --board all");
    options->boards.addTo(*command, "all");
    command->add_flag("--json", options->isJson, "One JSON array");
    command->callback([options, &globals] { show(*options, globals); });
}

}
