// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>

#include <recordkit/inspect/bytes/Hex.h>

#include "../Commands.h"
#include "../Files.h"
#include "../print/Output.h"
#include "../print/Problems.h"
#include "FruOptions.h"
#include "FruValues.h"

namespace recordkit::tool {

namespace {

/// A line of the table of an image's fields.
struct Line {
    std::string name;
    std::string type;
    std::size_t length = 0;
    Cell value;
};

Cell checksumCell(const FruChecksum& checksum)
{
    const std::string stored = fmt::format("{:02X}h", checksum.stored);
    return checkCell(checksum.isRight(), stored.c_str(),
                     fmt::format("{} WRONG, expected {:02X}h", stored, checksum.expected));
}

/// `isRaw`: values as the bytes that they are made of.
std::vector<Line> linesOf(const FruImage& image, bool isRaw)
{
    std::vector<Line> lines;
    for (const FruAreaImage& area : image.areas) {
        const std::string& name = area.extent.name;
        if (area.extent.size == 0) {
            continue;
        }
        for (const FruField& field : area.fields) {
            lines.push_back({name + "." + field.name,
                             field.typeName(),
                             field.bytes.size(),
                             {isRaw ? toHex(field.bytes) : cellText(shownValue(field))}});
        }
        lines.push_back({name + " unused", "", area.unused, {}});
        lines.push_back({name + " checksum", "", 1, checksumCell(area.checksum)});
    }
    for (const FruInternalUse& internal : image.internalUse) {
        constexpr std::size_t SHOWN = 16;
        const std::string rest = internal.bytes.size() > SHOWN ? "..." : "";
        lines.push_back({internal.extent.name,
                         "binary",
                         internal.bytes.size(),
                         {toHex(internal.bytes.substr(0, SHOWN)) + rest}});
    }
    lines.push_back({"header checksum", "", 1, checksumCell(image.header)});
    return lines;
}

constexpr Column<Line> LINES[] = {
    {nullptr, "FIELD", 24, nullptr, [](const Line& line) { return Cell{line.name}; }},
    {nullptr, "TYPE", 8, nullptr, [](const Line& line) { return Cell{line.type}; }},
    {nullptr, "LENGTH", 6, nullptr,
     [](const Line& line) { return Cell{std::to_string(line.length)}; }},
    {nullptr, "VALUE", 0, nullptr, [](const Line& line) { return line.value; }},
};

constexpr Column<FruMultiRecord> RECORDS[] = {
    {nullptr, "MULTIRECORD", 11, nullptr,
     [](const FruMultiRecord& record) { return Cell{fmt::format("type {:02X}h", record.type)}; }},
    {nullptr, "NAME", 24, nullptr,
     [](const FruMultiRecord& record) { return Cell{record.content.name}; }},
    {nullptr, "OFFSET", 6, nullptr,
     [](const FruMultiRecord& record) { return Cell{std::to_string(record.extent.offset)}; }},
    {nullptr, "LENGTH", 6, nullptr,
     [](const FruMultiRecord& record) { return Cell{std::to_string(record.extent.size)}; }},
    {nullptr, "CHECKSUM", 0, nullptr,
     [](const FruMultiRecord& record) { return checksumCell(record.data); }},
};

/// A line of the table of multirecords' fields.
struct RecordLine {
    std::string name;
    std::string place; ///< in the image
    std::string value;
};

std::string placeText(const MultiRecordField& field)
{
    std::string text = std::to_string(field.offset);
    if (field.width > 1) {
        text += fmt::format(" to {}", field.offset + field.width - 1);
    }
    return field.isBits() ? text + " bit " + bitsText(field) : text;
}

std::vector<RecordLine> recordLinesOf(const FruImage& image, bool isRaw)
{
    std::vector<RecordLine> lines;
    for (const FruMultiRecord& record : image.records) {
        for (const MultiRecordField& field : record.content.fields) {
            const bool hasUnit = field.unit[0] != '\0' && !isNone(field.value);
            const std::string text = hasUnit ? field.text + " " + field.unit : field.text;
            lines.push_back({record.content.name + "." + field.name, placeText(field),
                             isRaw ? toHex(rawBytes(record, field)) : cellText(text)});
        }
    }
    return lines;
}

constexpr Column<RecordLine> RECORD_LINES[] = {
    {nullptr, "FIELD", 44, nullptr, [](const RecordLine& line) { return Cell{line.name}; }},
    {nullptr, "BYTES", 22, nullptr, [](const RecordLine& line) { return Cell{line.place}; }},
    {nullptr, "VALUE", 0, nullptr, [](const RecordLine& line) { return Cell{line.value}; }},
};

constexpr Column<FruExtent> MAP[] = {
    {nullptr, "BYTES", 12, nullptr,
     [](const FruExtent& extent) {
         return Cell{fmt::format("{} to {}", extent.offset, extent.end() - 1)};
     }},
    {nullptr, "SIZE", 5, nullptr,
     [](const FruExtent& extent) { return Cell{std::to_string(extent.size)}; }},
    {nullptr, "CONTENT", 0, nullptr, [](const FruExtent& extent) { return Cell{extent.name}; }},
};

void printText(const FruFile& file, bool isOne, bool isRaw)
{
    if (!isOne) {
        print(fmt::format("== {}\n", inputName(file.path)));
    }
    if (!file.image.isFru) {
        return;
    }
    printListing(linesOf(file.image, isRaw), LINES, Format::TABLE);
    if (!file.image.records.empty()) {
        print("\n");
        printListing(file.image.records, RECORDS, Format::TABLE);
        print("\n");
        printListing(recordLinesOf(file.image, isRaw), RECORD_LINES, Format::TABLE);
    }
    print("\n");
    printListing(file.image.map(file.bytes), MAP, Format::TABLE);
    for (const std::string& note : file.image.notes) {
        print(noteLine(file.path, note));
    }
}

void run(const Arguments& arguments)
{
    const Layout layout = arguments.layout();
    const bool isText = layout.format == Format::TABLE;
    const std::vector<std::string>& names = arguments.texts("FILE");
    FruWriter writer(layout);
    Problems problems;
    for (const std::string& name : names) {
        problems.run(inputName(name), [&] {
            FruFile file = {name, readInput(name, FRU_LIMIT), {}};
            file.image = parseFruImage(file.bytes, internalLayoutOf(arguments));
            if (isText) {
                printText(file, names.size() == 1, arguments.has("--raw"));
            } else {
                writer.add(file);
            }
            return file.image.allProblems();
        });
    }
    if (!isText) {
        writer.finish();
    }
    problems.finish();
}

}

Command fruShowCommand()
{
    return {
        "fru show",
        "Show every area, field, multirecord and checksum of FRU images, and their places",
        "recordkit fru show board.bin --json; recordkit fru show "
        "/sys/bus/i2c/devices/0-0050/eeprom",
        {fruFile().many(), internalLayout(), flag("--raw", "Show the bytes of the values in hex")},
        Answer::LISTING,
        run,
        "Damage is reported and the rest is shown; the exit status is then 1. CSV has a line "
        "for each field, JSON an object for each image."};
}

}
