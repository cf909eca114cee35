// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>
#include <memory>

#include <recordkit/inspect/bytes/Time.h>
#include <recordkit/selfile/SELStoreCheck.h>

#include "../Commands.h"
#include "../Errors.h"
#include "../print/Json.h"

namespace recordkit::tool {

using TAVLib::RecordKit::SELStoreCheck;

namespace {

struct Options {
    BoardsOption boards;
    bool recovers = false;
    bool isJson = false;
};

std::string timeOf(unsigned int seconds)
{
    return Timestamp(seconds).toText();
}

void printFiles(const SELStoreCheck& check)
{
    for (const SELStoreCheck::File& file : check.getFiles()) {
        if (file.isMissing) {
            continue;
        }
        fmt::print("  {}: {} events", file.path, file.count);
        if (file.count != 0) {
            fmt::print(", ids {:04X}h to {:04X}h", file.firstId, file.lastId);
        }
        if (file.hasTimes) {
            fmt::print(", {} to {}", timeOf(file.firstTime), timeOf(file.lastTime));
        }
        fmt::print("\n");
    }
}

void printFindings(unsigned char board, const SELStoreCheck& check)
{
    fmt::print("board {}: {}\n", board, check.isSound() ? "sound" : "not sound");
    printFiles(check);
    for (const SELStoreCheck::Finding& finding : check.getFindings()) {
        fmt::print("  {}: {}\n", finding.isDamage ? "wrong" : "note", finding.text);
    }
}

Json toJson(const SELStoreCheck::File& file)
{
    const bool hasEvents = file.count != 0;
    Json json;
    json["path"] = file.path;
    json["missing"] = file.isMissing;
    json["size"] = file.size < 0 ? Json(nullptr) : Json(file.size);
    json["events"] = file.count;
    json["first_id"] = hasEvents ? Json(file.firstId) : Json(nullptr);
    json["last_id"] = hasEvents ? Json(file.lastId) : Json(nullptr);
    json["first_timestamp"] = file.hasTimes ? Json(file.firstTime) : Json(nullptr);
    json["last_timestamp"] = file.hasTimes ? Json(file.lastTime) : Json(nullptr);
    json["damage"] = file.damage.empty() ? Json(nullptr) : Json(file.damage);
    return json;
}

Json toJson(unsigned char board, const SELStoreCheck& check,
            const std::vector<std::string>& actions)
{
    Json json;
    json["board"] = board;
    json["sound"] = check.isSound();
    json["files"] = Json::array();
    for (const SELStoreCheck::File& file : check.getFiles()) {
        json["files"].push_back(toJson(file));
    }
    json["findings"] = Json::array();
    for (const SELStoreCheck::Finding& finding : check.getFindings()) {
        json["findings"].push_back({{"damage", finding.isDamage}, {"text", finding.text}});
    }
    json["actions"] = actions;
    return json;
}

void check(const Options& options, const Globals& globals)
{
    bool isSound = true;
    bool isRecovered = true;
    Json all = Json::array();
    for (const unsigned char board : options.boards.get(globals)) {
        std::vector<std::string> actions;
        if (options.recovers) {
            isRecovered = SELStoreCheck(board).recover(actions) && isRecovered;
        }
        const SELStoreCheck now(board);
        isSound = now.isSound() && isSound;
        if (options.isJson) {
            all.push_back(toJson(board, now, actions));
            continue;
        }
        for (const std::string& action : actions) {
            fmt::print("board {}: {}\n", board, action);
        }
        printFindings(board, now);
    }
    if (options.isJson) {
        fmt::print("{}", indented(all));
    }
    if (!isRecovered) {
        throw fileError("the recovery could not be finished");
    }
    if (!isSound) {
        throw dataError(options.recovers ? "not everything could be recovered"
                                         : "the event log is not sound; --recover finishes a "
                                           "rotation that was cut off and closes gaps");
    }
}

}

void addSelCheck(CLI::App& sel, Globals& globals)
{
    const auto options = std::make_shared<Options>();
    CLI::App* const command =
        addCommand(sel, "check", "Say what is wrong with the files of a log, as after a power cut",
                   "recordkit sel check --board 1 --recover");
    options->boards.addTo(*command, "all");
    command->add_flag("--recover", options->recovers,
                      "Finish a rotation that was cut off, and close gaps, by renames alone");
    command->add_flag("--json", options->isJson, "One JSON array");
    command->callback([options, &globals] { check(*options, globals); });
}

}
