// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>

#include "../Answers.h"
#include "../Commands.h"
#include "../print/Listing.h"
#include "../print/Problems.h"
#include "SettingStore.h"

namespace recordkit::tool {

namespace {

struct Row {
    SettingEntry entry;
    const char* indexFile; ///< how the entry compares with the index file
};

constexpr const char* DIFFERS = "DIFFERS";

Cell textCell(const Row& row)
{
    return checkCell(row.indexFile != DIFFERS, row.indexFile, row.indexFile);
}

constexpr Column<Row> COLUMNS[] = {
    {"number", "AREA", 4, [](const Row& row) { return Value(row.entry.number); }},
    {"valid", "VALID", 5, [](const Row& row) { return Value(row.entry.isValid); }},
    {"eeprom", "EEPROM", 6, [](const Row& row) { return Value(row.entry.eeprom); }},
    {"offset", "OFFSET", 6, [](const Row& row) { return Value(row.entry.offset); }},
    {"size", "SIZE", 5, [](const Row& row) { return Value(row.entry.size); }},
    {"checksum_right", "CHECKSUM", 8,
     [](const Row& row) { return Value(row.entry.isChecksumRight); },
     [](const Row& row) { return checkCell(row.entry.isChecksumRight, "right", "WRONG"); }},
    {"index_file", "INDEX FILE", 0, [](const Row& row) { return Value(row.indexFile); }, textCell},
};

/// How an entry compares with the master copy, apart from being in use.
const char* compare(const SettingEntry& entry, const std::vector<SettingEntry>& file)
{
    const auto at = static_cast<std::size_t>(entry.number);
    if (at >= file.size()) {
        return file.empty() ? "no file" : "missing";
    }
    const SettingEntry& master = file[at];
    const bool isSame = entry.areaNumber == master.areaNumber && entry.eeprom == master.eeprom &&
                        entry.offset == master.offset && entry.size == master.size;
    return isSame ? "same" : DIFFERS;
}

std::vector<Row> rowsOf(const std::vector<SettingEntry>& entries,
                        const std::vector<SettingEntry>& master)
{
    std::vector<Row> rows;
    rows.reserve(entries.size());
    for (const SettingEntry& entry : entries) {
        rows.push_back({entry, compare(entry, master)});
    }
    return rows;
}

void run(const Arguments& arguments)
{
    const std::vector<SettingEntry> entries = readSettingIndex(arguments);
    printListing(rowsOf(entries, readSettingIndexFile()), COLUMNS, arguments.layout());
    Problems problems;
    problems.run("index of the setting areas", [&] { return indexProblems(entries); });
    problems.finish();
}

}

List settingObjects(const std::vector<SettingEntry>& entries,
                    const std::vector<SettingEntry>& master)
{
    return objectsOf(rowsOf(entries, master), COLUMNS);
}

Command settingListCommand()
{
    return {"eeprom setting list",
            "List the entries of the index, and what is wrong with them",
            "recordkit eeprom setting list --images board",
            {images()},
            Answer::TABLE,
            run,
            "Areas that overlap each other or the index, or extend beyond their EEPROM, are "
            "reported, as are entries in use that are damaged."};
}

}
