// SPDX-License-Identifier: Apache-2.0
#include <filesystem>

#include <fmt/format.h>

#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/log/Rescue.h>

#include "../Commands.h"
#include "../Errors.h"
#include "../Files.h"
#include "../OutputFile.h"
#include "../Zone.h"
#include "../cli/Arguments.h"
#include "../print/Output.h"
#include "../print/Problems.h"

namespace recordkit::tool {

namespace {

/// A line that sel add and sel list read again.
std::string lineOf(const std::string& name, const RescuedRecord& record)
{
    const Event& event = record.event;
    return fmt::format("{} # {}, offset {}: {:04X}h {} {}\n", toLowerHex(event.image), name,
                       record.offset, event.recordId,
                       event.hasTime ? event.time.toText(chosenZone()) : "-", eventText(event));
}

void refuseInputAsOutput(const Arguments& arguments)
{
    for (const std::string& input : arguments.texts("FILE")) {
        std::error_code ignored;
        if (std::filesystem::equivalent(input, arguments.text("-o"), ignored)) {
            throw usageError("-o: " + inputName(input) + " is an input and would be replaced");
        }
    }
}

void run(const Arguments& arguments)
{
    refuseInputAsOutput(arguments);
    std::string lines;
    std::size_t all = 0;
    Problems problems;
    for (const std::string& path : arguments.texts("FILE")) {
        const std::string name = inputName(path);
        problems.run(name, [&]() -> std::vector<std::string> {
            const std::vector<RescuedRecord> records = rescueRecords(readInput(path, LARGE_LIMIT));
            for (const RescuedRecord& record : records) {
                lines += lineOf(name, record);
            }
            all += records.size();
            print(fmt::format("{}: {}\n", name, counted(records.size(), "event")));
            if (records.empty()) {
                return {"no whole event record"};
            }
            return {};
        });
    }
    writeOutput(arguments.text("-o"), lines);
    print(
        fmt::format("{} written to {}\n", counted(all, "event"), inputName(arguments.text("-o"))));
    problems.finish();
}

}

Command selRescueCommand()
{
    return {
        "sel rescue",
        "Write every whole event record that any bytes contain",
        "recordkit sel rescue sb1_bmc_sel3.damaged-1 memory.dump -o events.hex",
        {argument("FILE", "Event files, fragments of them or memory dumps; - for standard input")
             .many(),
         text("-o", "OUT", "File for the events, which is replaced").required()},
        Answer::TEXT,
        run,
        "Records of 138 bytes are found at any offset. Each becomes a line of hex digits, as sel "
        "add and sel list read it, with a comment: file, offset, record id, time and event. Of an "
        "event file every slot that is not empty counts as a record; elsewhere only what looks "
        "like an event."};
}

}
