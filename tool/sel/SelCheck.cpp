// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>

#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/bytes/Text.h>
#include <recordkit/inspect/bytes/Time.h>
#include <recordkit/inspect/log/LogRepair.h>
#include <recordkit/selfile/SELStoreCheck.h>

#include "../Answers.h"
#include "../Commands.h"
#include "../Errors.h"
#include "../Zone.h"
#include "../cli/Arguments.h"
#include "../print/Listing.h"
#include "../print/Output.h"
#include "Store.h"

namespace recordkit::tool {

using TAVLib::RecordKit::SELStoreCheck;

namespace {

/// A board's files, and what was done to them.
struct Checked {
    unsigned char board;
    SELStoreCheck check;
    std::vector<std::string> actions;
};

constexpr Column<Checked> COLUMNS[] = {
    {"board", nullptr, 0, [](const Checked& c) { return Value(c.board); }},
    {"sound", nullptr, 0, [](const Checked& c) { return Value(c.check.isSound()); }},
    {"files", nullptr, 0,
     [](const Checked& c) { return Value(listOf(c.check.getFiles(), logFileObject)); }},
    {"findings", nullptr, 0,
     [](const Checked& c) { return Value(listOf(c.check.getFindings(), logFindingObject)); }},
    {"actions", nullptr, 0, [](const Checked& c) { return Value(c.actions); }},
};

std::string fileText(const SELStoreCheck::File& file)
{
    std::string text = fmt::format("  {}: {}", file.path, counted(file.count, "event"));
    if (file.count != 0) {
        text += fmt::format(", ids {:04X}h to {:04X}h", file.firstId, file.lastId);
    }
    if (file.hasTimes) {
        text += fmt::format(", {} to {}", Timestamp(file.firstTime).toText(chosenZone()),
                            Timestamp(file.lastTime).toText(chosenZone()));
    }
    return text + "\n";
}

std::string describe(const Checked& checked)
{
    std::string text;
    for (const std::string& action : checked.actions) {
        text += fmt::format("board {}: {}\n", checked.board, action);
    }
    text += fmt::format("board {}: {}\n", checked.board,
                        checked.check.isSound() ? "sound" : "not sound");
    for (const SELStoreCheck::File& file : checked.check.getFiles()) {
        text += file.isMissing ? "" : fileText(file);
    }
    for (const SELStoreCheck::Finding& finding : checked.check.getFindings()) {
        text +=
            fmt::format("  {}: {}\n", finding.isDamage ? "wrong" : "note", printable(finding.text));
    }
    return text;
}

void run(const Arguments& arguments)
{
    requireLogs();
    const bool recovers = arguments.has("--recover");
    const Layout layout = arguments.layout();
    const bool isText = layout.format == Format::TABLE;
    bool isSound = true;
    bool isRecovered = true;
    std::vector<Checked> all;
    for (const unsigned char board : arguments.boards()) {
        std::vector<std::string> actions;
        if (recovers) {
            isRecovered = repairLog(board, actions) && isRecovered;
        }
        all.push_back({board, SELStoreCheck(board), actions});
        isSound = all.back().check.isSound() && isSound;
        if (isText) {
            print(describe(all.back()));
        }
    }
    if (!isText) {
        printListing(all, COLUMNS, layout);
    }
    if (!isRecovered) {
        throw fileError("the recovery could not be finished");
    }
    if (!isSound) {
        throw dataError(recovers ? "not everything could be recovered"
                                 : "the event log is not sound; --recover repairs it and deletes "
                                   "nothing");
    }
}

}

Object logFileObject(const SELStoreCheck::File& file)
{
    const bool hasEvents = file.count != 0;
    return {{"path", file.path},
            {"missing", file.isMissing},
            {"size", valueIf(file.size >= 0, file.size)},
            {"events", file.count},
            {"first_id", valueIf(hasEvents, file.firstId)},
            {"last_id", valueIf(hasEvents, file.lastId)},
            {"first_timestamp", valueIf(file.hasTimes, file.firstTime)},
            {"last_timestamp", valueIf(file.hasTimes, file.lastTime)},
            {"damage", textOrNull(file.damage)}};
}

Object logFindingObject(const SELStoreCheck::Finding& finding)
{
    return {{"damage", finding.isDamage}, {"text", finding.text}};
}

Command selCheckCommand()
{
    return {
        "sel check",
        "Report what is wrong with the files of a log, for example after a power cut",
        "recordkit sel check --board 1 --recover",
        {boards("all"),
         flag("--recover", "Repair the log: finish an interrupted rotation, close gaps, complete "
                           "damaged files; nothing is deleted")},
        Answer::LISTING,
        run,
        "For each file: missing, of the wrong size, a damaged tail, records after it, how many "
        "events from when to when. For the set: a gap in the chain, an interrupted rotation, a "
        "shift request that was left. --recover writes damaged files again with the whole events "
        "that "
        "they contain, and restores a missing working file; what else a file contained stays in "
        "NAME.damaged-N, which sel rescue reads. It changes nothing "
        "while another program holds the log's lock; a firmware that does not take the lock must "
        "store no event meanwhile."};
}

}
