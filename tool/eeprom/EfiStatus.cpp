// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>

#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/bytes/Text.h>

#include "../Answers.h"
#include "../Commands.h"
#include "../print/Listing.h"
#include "../print/Output.h"
#include "../print/Problems.h"
#include "EfiStore.h"

namespace recordkit::tool {

namespace {

struct Row {
    std::string serial;
    bool isChecksumRight;
    EfiPlace place;
    std::vector<unsigned int> marked;
};

/// A character for each block: "#" for one that is marked.
Cell blocksCell(const Row& row)
{
    std::string blocks(EfiIndex::BLOCKS, '.');
    for (const unsigned int block : row.marked) {
        blocks[block] = '#';
    }
    return {blocks};
}

constexpr Column<Row> COLUMNS[] = {
    {"serial", nullptr, 0, [](const Row& row) { return Value(row.serial); }},
    {"checksum_right", nullptr, 0, [](const Row& row) { return Value(row.isChecksumRight); }},
    {"eeprom", "EEPROM", 6, [](const Row& row) { return Value(row.place.eeprom()); }},
    {"partition", "PARTITION", 9, [](const Row& row) { return Value(row.place.partition); }},
    {"bank", "BANK", 4, [](const Row& row) { return Value(row.place.bank); }},
    {"pending", "0123456789ABCDEF", 0, [](const Row& row) { return Value(row.marked); },
     blocksCell},
};

std::vector<Row> rowsOf(const EfiIndex& index)
{
    const std::string serial = efiSerialText(index);
    std::vector<Row> rows;
    for (const EfiPlace& place : efiPlaces()) {
        rows.push_back({serial, index.isChecksum(), place, markedBlocks(index, place)});
    }
    return rows;
}

void run(const Arguments& arguments)
{
    const EfiIndex index = readEfiIndex(arguments);
    const std::vector<Row> rows = rowsOf(index);
    const std::string& serial = rows.front().serial;
    std::size_t marked = 0;
    for (const Row& row : rows) {
        marked += row.marked.size();
    }
    const bool isTable = arguments.format() == Format::TABLE;
    if (isTable) {
        print(factLine("owner", serial.empty() ? "none" : printable(serial), 10) +
              factLine("checksum", index.isChecksum() ? "right" : "WRONG", 10) + "\n");
    }
    printListing(rows, COLUMNS, arguments.layout());
    if (isTable) {
        print(counted(marked, "block") + " pending erasure (#)\n");
    }
    Problems problems;
    if (!index.isChecksum()) {
        problems.add("EEPROM 10", "the checksum of the index record is wrong");
    }
    problems.finish();
}

}

List efiObjects(const EfiIndex& index)
{
    return objectsOf(rowsOf(index), COLUMNS);
}

Command efiStatusCommand()
{
    return {"eeprom efi status",
            "Show the owner of the backup, and the blocks pending erasure",
            "recordkit eeprom efi status --images board",
            {images()},
            Answer::LISTING,
            run};
}

}
