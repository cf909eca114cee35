// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <optional>
#include <unordered_set>

#include <fmt/format.h>

#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/event/EventJudge.h>
#include <recordkit/inspect/log/BoardLog.h>
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
    std::string text = arguments.text(option);
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

/// Throws CommandError (data) if a record does not look like an event.
void judge(const std::string& name, const std::vector<ImportedEvent>& events, bool hasOwnIds)
{
    if (const auto oddity = findOddity(events, hasOwnIds)) {
        throw dataError(fmt::format("{}, {}; this does not look like an event, and nothing was "
                                    "stored; --force stores all records",
                                    name, *oddity));
    }
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
    if (!arguments.has("--force")) {
        judge(name, events, !arguments.has("--renumber"));
    }
    return events;
}

/// Events that a board has, each recognised by all its bytes but the next record id.
class KnownEvents {
public:
    explicit KnownEvents(unsigned char board)
    {
        const BoardLog log(board);
        for (const LogSlot& slot : log.getSlots()) {
            images.insert(textOf(slot.image));
        }
    }
    /// Adds one; false if it was there before.
    bool add(const ImportedEvent& event)
    {
        return images.insert(textOf(decodeEvent(event.message).image.data())).second;
    }

private:
    static std::string textOf(const unsigned char* image)
    {
        return {image + Layout::RECORD_ID_OFFSET, image + Layout::SLOT_SIZE};
    }

    std::unordered_set<std::string> images;
};

/// Stores events on a board, and counts what happens.
class Import {
public:
    Import(unsigned char sb, bool rotatesFullFile) : board(sb), rotates(rotatesFullFile) {}

    /// Rotates a full file if requested; throws CommandError.
    void store(ImportedEvent& event)
    {
        BMCSELDataFile files;
        if (files.writeRecord(board, event.message) != 1) {
            makeRoom();
            const NoWaiting now; // The first trial has waited.
            if (files.writeRecord(board, event.message) != 1) {
                throw storeError(BMCSELDataFile::REWRITE_FAILED, workingFile(board));
            }
        }
        ++stored;
    }
    void skip() { ++skipped; }

    std::string summary() const
    {
        std::string text = fmt::format("{} stored on board {}", counted(stored, "event"), board);
        if (skipped != 0) {
            text += fmt::format(", {} skipped that the board already has", skipped);
        }
        if (rotations != 0) {
            text += ", " + counted(rotations, "rotation");
        }
        return text +
               (dropped == 0 ? "\n" : ", " + counted(dropped, "oldest event") + " dropped\n");
    }
    /// What was done when it failed at an event.
    std::string progress(std::size_t all) const
    {
        return fmt::format("{} of {} events stored{}", stored, all,
                           skipped == 0 ? "" : fmt::format(", {} skipped", skipped));
    }

private:
    void makeRoom()
    {
        if (prepareWorkingFile(board) != BMCSELDataFile::FILE_FULL) {
            return;
        }
        if (!rotates) {
            throw dataError(workingFile(board) + " is full");
        }
        dropped += rotate(board);
        ++rotations;
    }

    unsigned char board;
    bool rotates;
    std::size_t stored = 0;
    std::size_t skipped = 0;
    std::size_t rotations = 0;
    std::size_t dropped = 0;
};

/// Stores the events that the board does not have; of a failure the message says how far it came.
void storeAll(const Arguments& arguments, std::vector<ImportedEvent>& events, Import& import)
{
    const bool isRenumbered = arguments.has("--renumber");
    std::optional<KnownEvents> known;
    if (!isRenumbered && !arguments.has("--duplicates")) {
        known.emplace(arguments.board());
    }
    Numbering numbering(arguments.board());
    Progress progress(events.size());
    for (std::size_t i = 0; i < events.size(); ++i) {
        progress.show(i);
        if (isRenumbered) {
            setRecordId(events[i].message, numbering.next());
        }
        if (known && !known->add(events[i])) {
            import.skip();
            continue;
        }
        try {
            import.store(events[i]);
        } catch (const CommandError& e) {
            throw CommandError(e.getStatus(),
                               fmt::format("{}: {}, the rest begins at {} of {}{}", e.what(),
                                           import.progress(events.size()), events[i].place,
                                           inputName(arguments.text("FILE")),
                                           e.getStatus() != EXIT_DATA || arguments.has("--rotate")
                                               ? ""
                                               : "; rotate the board, or add them with --rotate"));
        }
    }
}

void run(const Arguments& arguments)
{
    std::vector<ImportedEvent> events = readInputEvents(arguments);
    const LogLock lock(arguments.board());
    prepareWorkingFile(arguments.board());
    Import import(arguments.board(), arguments.has("--rotate"));
    storeAll(arguments, events, import);
    print(import.summary());
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
         flag("--rotate", "Rotate a full file and continue"),
         flag("--duplicates", "Store events again that the board already has"),
         flag("--force", "Store records that do not look like events too")},
        Answer::TEXT,
        run,
        "Nothing is stored if any part of the input is damaged, or if a record does not look like "
        "an "
        "event: an unknown record type, a reserved sensor type or event type, record ids that do "
        "not rise. Events that the board already has, with the same id, time and other bytes, are "
        "skipped, unless they are renumbered. auto reads binary input as writeraw, which reverses "
        "the manufacturer id of OEM records C0h to DFh; it is reversed back. Lines of hex may "
        "contain blanks, commas, 0x and # comments; of NDJSON the field image is read. Renumbered "
        "ids go from FFFEh to 1; without --renumber an id FFFFh, which marks an empty slot, is "
        "refused. Partitions, part number and serial number fill the OEM data of records without "
        "them (16 and 18 bytes). Without --rotate a full file ends the command with status 1; the "
        "message of any failure says how many records were stored and where the rest begins."};
}

}
