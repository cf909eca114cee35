// SPDX-License-Identifier: Apache-2.0
#include <cstdio>
#include <fmt/format.h>
#include <map>
#include <memory>

#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/selfile/SELFileLayout.h>

#include "../Commands.h"
#include "../Files.h"
#include "../print/Progress.h"
#include "EventInput.h"
#include "Store.h"

namespace recordkit::tool {

namespace {

namespace Layout = TAVLib::RecordKit::SELFileLayout;
using TAVLib::RecordKit::OEMSELEntry;

struct Options {
    std::string file;
    BoardOption board;
    ImportFormat format = ImportFormat::AUTO;
    bool isNdjson = false;
    bool renumbers = false;
    bool rotates = false;
    std::string partitions;
    OemFields fields;
};

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

void checkField(const char* option, const std::string& text, std::size_t longest)
{
    const bool isPrintable =
        text.find_first_not_of(" !\"#$%&'()*+,-./0123456789:;<=>?@"
                               "ABCDEFGHIJKLMNOPQRSTUVWXYZ[\\]^_`"
                               "abcdefghijklmnopqrstuvwxyz{|}~") == std::string::npos;
    if (text.size() < 2 || text.size() > longest || !isPrintable) {
        throw usageError(
            fmt::format("{}: expected 2 to {} printable ASCII characters", option, longest));
    }
}

/// Checks the values for the OEM data and puts the partitions into their bitmask.
OemFields oemFields(const CLI::App& command, const Options& options, const Globals& globals)
{
    OemFields fields = options.fields;
    if (command.count("--partitions") != 0) {
        const auto last = static_cast<unsigned long>(globals.getPartitions() - 1);
        const std::vector<unsigned long> partitions = orThrow(
            parseNumberList(options.partitions, last),
            usageError(fmt::format("--partitions: \"{}\" is not a list of partitions 0 to {}",
                                   options.partitions, last)));
        for (const unsigned long partition : partitions) {
            fields.partitions = static_cast<unsigned short>(fields.partitions | 1U << partition);
        }
        fields.areGiven = true;
    }
    if (command.count("--part-number") != 0) {
        checkField("--part-number", fields.partNumber, OEMSELEntry::PART_NUMBER_SIZE);
        fields.areGiven = true;
    }
    if (command.count("--serial-number") != 0) {
        checkField("--serial-number", fields.serialNumber, OEMSELEntry::SERIAL_NUMBER_SIZE);
        fields.areGiven = true;
    }
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

void add(const CLI::App& command, const Options& options, const Globals& globals)
{
    const unsigned char board = options.board.get(globals);
    const OemFields fields = oemFields(command, options, globals);
    const std::string name = inputName(options.file);
    const ImportFormat format = options.isNdjson ? ImportFormat::NDJSON : options.format;
    std::vector<ImportedEvent> events = readEvents(name, readInput(options.file), format, fields);
    if (!options.renumbers) {
        refuseEmptyId(name, events);
    }

    prepareWorkingFile(board);
    Numbering numbering(board);
    Progress progress(events.size(), globals.wantsProgress());
    unsigned int rotations = 0;
    for (std::size_t i = 0; i < events.size(); ++i) {
        progress.show(i);
        if (options.renumbers) {
            setRecordId(events[i].message, numbering.next());
        }
        if (!store(board, events[i], options.rotates, rotations)) {
            throw dataError(fmt::format("{} is full: {} of {} events stored, the rest begins at {} "
                                        "of {}; rotate the board, or add them with --rotate",
                                        workingFile(board), i, events.size(), events[i].place,
                                        name));
        }
    }
    fmt::print(
        "{} event{} stored on board {}{}\n", events.size(), events.size() == 1 ? "" : "s", board,
        rotations == 0 ? "" : fmt::format(", {} rotation{}", rotations, rotations == 1 ? "" : "s"));
}

}

void addSelAdd(CLI::App& sel, Globals& globals)
{
    const auto options = std::make_shared<Options>();
    CLI::App* const command = addCommand(
        sel, "add", "Store event records: ipmitool's sel writeraw files, hex text, or ndjson",
        "ipmitool sel writeraw events.raw && recordkit sel add events.raw --board 1 --rotate");
    command->add_option("FILE", options->file, "File with records, or - for standard input")
        ->required();
    options->board.addTo(*command);
    const std::map<std::string, ImportFormat> formats = {{"auto", ImportFormat::AUTO},
                                                         {"writeraw", ImportFormat::WRITERAW},
                                                         {"wire", ImportFormat::WIRE},
                                                         {"hex", ImportFormat::HEX},
                                                         {"ndjson", ImportFormat::NDJSON}};
    command
        ->add_option("--format", options->format,
                     "auto, writeraw (16-byte records of ipmitool sel writeraw), wire (16-byte "
                     "records as sent), hex (a record of 16, 18, 74, 130 or 138 bytes a line), "
                     "ndjson (of sel list --ndjson); default: auto")
        ->transform(CLI::CheckedTransformer(formats).description(""))
        ->type_name("FORMAT");
    command->add_flag("--ndjson", options->isNdjson, "The same as --format ndjson");
    command->add_flag("--renumber", options->renumbers,
                      "Number the records on from the board's last one, instead of keeping ids");
    command
        ->add_option("--partitions", options->partitions,
                     "Partitions that the events concern, as 0,2")
        ->type_name("LIST");
    command
        ->add_option("--part-number", options->fields.partNumber,
                     "Part number of the unit involved")
        ->type_name("TEXT");
    command
        ->add_option("--serial-number", options->fields.serialNumber,
                     "Serial number of the unit involved")
        ->type_name("TEXT");
    command->add_flag("--rotate", options->rotates, "Rotate a full file and go on");
    command->callback([command, options, &globals] { add(*command, *options, globals); });
}

}
