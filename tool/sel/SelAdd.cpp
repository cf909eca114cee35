// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include <fmt/format.h>

#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/selfile/SELFileLayout.h>

#include "../Commands.h"
#include "../Files.h"
#include "../cli/Arguments.h"
#include "../print/Output.h"
#include "../print/Progress.h"
#include "EventInput.h"
#include "Store.h"

namespace recordkit::tool {

namespace {

namespace Layout = TAVLib::RecordKit::SELFileLayout;
using TAVLib::RecordKit::OEMSELEntry;

/// Record ids that continue from the newest record of a board.
class Numbering {
public:
    explicit Numbering(unsigned char board)
    {
        TAVLib::RecordKit::BMCSELEntryMessage newest;
        if (BMCSELDataFile().readLastRecord(board, newest) == 1) {
            last = recordIdOf(newest);
        }
    }
    /// 0000h and FFFFh are not record ids: IPMI uses them to request the first and the last record.
    unsigned short next()
    {
        last = last >= Layout::EMPTY_RECORD_ID - 1 ? 1 : last + 1;
        return static_cast<unsigned short>(last);
    }

private:
    unsigned int last = 0;
};

/// The text of an option for the OEM data; empty if it is not given.
std::string fieldOf(const Arguments& arguments, const char* option, std::size_t longest)
{
    const std::string text = arguments.text(option);
    const bool isPrintable = std::all_of(text.begin(), text.end(), [](char character) {
        return character >= ' ' && character <= '~';
    });
    if (arguments.has(option) && (text.size() < 2 || text.size() > longest || !isPrintable)) {
        throw usageError(
            fmt::format("{}: expected 2 to {} printable ASCII characters", option, longest));
    }
    return text;
}

/// The OEM data for records without them.
OemFields oemFields(const Arguments& arguments)
{
    OemFields fields;
    for (const unsigned long partition : arguments.numbers("--partitions")) {
        fields.partitions = static_cast<unsigned short>(fields.partitions | 1U << partition);
    }
    fields.partNumber = fieldOf(arguments, "--part-number", OEMSELEntry::PART_NUMBER_SIZE);
    fields.serialNumber = fieldOf(arguments, "--serial-number", OEMSELEntry::SERIAL_NUMBER_SIZE);
    fields.areGiven = arguments.has("--partitions") || arguments.has("--part-number") ||
                      arguments.has("--serial-number");
    return fields;
}

void refuseEmptyId(const std::string& name, const std::vector<ImportedEvent>& events)
{
    for (const ImportedEvent& event : events) {
        if (recordIdOf(event.message) == Layout::EMPTY_RECORD_ID) {
            throw dataError(fmt::format("{}, {}: record id FFFFh marks an empty slot; give the "
                                        "records ids with --renumber",
                                        name, event.place));
        }
    }
}

/// Stores one event, rotating a full file if requested; false if the file is full and may not be
/// rotated.
bool store(unsigned char board, ImportedEvent& event, bool rotates, unsigned int& rotations)
{
    BMCSELDataFile files;
    if (files.writeRecord(board, event.message) == 1) {
        return true;
    }
    if (prepareWorkingFile(board) == BMCSELDataFile::FILE_FULL) {
        if (!rotates) {
            return false;
        }
        rotate(board);
        ++rotations;
    }
    if (files.writeRecord(board, event.message) != 1) {
        throw storeError(BMCSELDataFile::REWRITE_FAILED, workingFile(board));
    }
    return true;
}

std::vector<ImportedEvent> readInputEvents(const Arguments& arguments)
{
    const std::string name = inputName(arguments.text("FILE"));
    const auto format = arguments.has("--ndjson")
                            ? ImportFormat::NDJSON
                            : static_cast<ImportFormat>(arguments.number("--format"));
    std::vector<ImportedEvent> events = readEvents(
        name, readInput(arguments.text("FILE"), LARGE_LIMIT), format, oemFields(arguments));
    if (!arguments.has("--renumber")) {
        refuseEmptyId(name, events);
    }
    return events;
}

void run(const Arguments& arguments)
{
    const unsigned char sb = arguments.board();
    std::vector<ImportedEvent> events = readInputEvents(arguments);
    prepareWorkingFile(sb);
    Numbering numbering(sb);
    Progress progress(events.size());
    unsigned int rotations = 0;
    for (std::size_t i = 0; i < events.size(); ++i) {
        progress.show(i);
        if (arguments.has("--renumber")) {
            setRecordId(events[i].message, numbering.next());
        }
        if (!store(sb, events[i], arguments.has("--rotate"), rotations)) {
            throw dataError(fmt::format("{} is full: {} of {} events stored, the rest begins at {} "
                                        "of {}; rotate the board, or add them with --rotate",
                                        workingFile(sb), i, events.size(), events[i].place,
                                        inputName(arguments.text("FILE"))));
        }
    }
    print(fmt::format("{} stored on board {}{}\n", counted(events.size(), "event"), sb,
                      rotations == 0 ? "" : ", " + counted(rotations, "rotation")));
}

}

Command selAddCommand()
{
    return {
        "sel add",
        "Store event records: ipmitool's sel writeraw files, hex text, or NDJSON",
        "ipmitool sel writeraw events.raw && recordkit sel add events.raw --board 1 --rotate",
        {argument("FILE", "File with records, or - for standard input"), board(),
         // In the order of ImportFormat.
         choice("--format", "FORMAT", {"auto", "writeraw", "wire", "hex", "ndjson"},
                "auto, writeraw (16-byte records of ipmitool sel writeraw), wire (16-byte records "
                "as sent), hex (a record of 16, 18, 74, 130 or 138 bytes per line), ndjson (of sel "
                "list --ndjson)")
             .by("auto"),
         flag("--ndjson", "The same as --format ndjson"),
         flag("--renumber",
              "Renumber records to follow the board's last id instead of keeping their own"),
         partitions("Partitions that the events concern, as 0,2"),
         text("--part-number", "TEXT", "Part number of the unit involved"),
         text("--serial-number", "TEXT", "Serial number of the unit involved"),
         flag("--rotate", "Rotate a full file and continue")},
        Answer::TEXT,
        run,
        "Nothing is stored if any part of the input is damaged. auto reads binary input as "
        "writeraw, which reverses the manufacturer id of OEM records C0h to DFh; it is reversed "
        "back. Lines of hex may contain blanks, commas, 0x and # comments; of NDJSON the field "
        "image is read. Renumbered ids go from FFFEh to 1; without --renumber an id FFFFh, which "
        "marks an empty slot, is refused. Partitions, part number and serial number fill the OEM "
        "data of records without them (16 and 18 bytes). Without --rotate a full file ends the "
        "command with status 1; the message says how many records were stored and where the rest "
        "begins."};
}

}
