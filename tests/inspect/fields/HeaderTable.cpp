// SPDX-License-Identifier: Apache-2.0
#include "HeaderTable.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <regex>

namespace testing_support {

using recordkit::inspect::bitsAt;
using recordkit::inspect::bytesAt;
using recordkit::inspect::DecodedField;
using recordkit::inspect::DecodedFields;
using recordkit::inspect::Place;

namespace {

const std::string CARRIED = "carried unchanged";
const std::string AS = "as ";

/// The cells of a row of a comment's table; none for any other line.
std::vector<std::string> cellsOf(const std::string& line)
{
    std::vector<std::string> cells;
    const std::size_t first = line.find("/// |");
    if (first == std::string::npos) {
        return cells;
    }
    for (std::size_t at = first + 5; at < line.size();) {
        const std::size_t end = std::min(line.find('|', at), line.size());
        const std::string cell = line.substr(at, end - at);
        const std::size_t from = cell.find_first_not_of(' ');
        cells.push_back(from == std::string::npos
                            ? ""
                            : cell.substr(from, cell.find_last_not_of(' ') - from + 1));
        at = end + 1;
    }
    return cells;
}

bool startsWith(const std::string& text, const std::string& start)
{
    return text.compare(0, start.size(), start) == 0;
}

/// "10 + 2g + 2s", "n" or "13" with the letters' values.
unsigned int valueOf(const std::string& expression, const std::map<char, unsigned int>& letters)
{
    static const std::regex TERM("([0-9]*)([a-z]?)(?: \\+ |$)");
    unsigned int value = 0;
    for (std::sregex_iterator at(expression.begin(), expression.end(), TERM), end; at != end;
         ++at) {
        const std::string number = (*at)[1];
        const std::string letter = (*at)[2];
        if (number.empty() && letter.empty()) {
            continue;
        }
        const unsigned int factor =
            number.empty() ? 1 : static_cast<unsigned int>(std::stoul(number));
        value += letter.empty() ? factor : factor * letters.at(letter[0]);
    }
    return value;
}

/// The number in the field at a place; 0 if there is none.
unsigned int numberAt(const DecodedFields& fields, const Place& place)
{
    for (const DecodedField& field : fields) {
        if (field.place == place && std::holds_alternative<long long>(field.value)) {
            return recordkit::inspect::numberOf(field.value);
        }
    }
    ADD_FAILURE() << "there is no number at " << place.text();
    return 0;
}

}

HeaderTables::HeaderTables()
{
    for (const char* const folder :
         {RECORDKIT_SOURCE "/recordkit", RECORDKIT_SOURCE "/tests/inspect/fields"}) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
            if (entry.path().extension() == ".h") {
                read(entry.path().string());
            }
        }
    }
}

void HeaderTables::read(const std::string& path)
{
    std::ifstream file(path);
    Table table;
    std::vector<Row>* rows = nullptr;
    for (std::string line; std::getline(file, line);) {
        const std::vector<std::string> cells = cellsOf(line);
        if (cells.size() < 3) {
            rows = nullptr;
        } else if (cells[0] == "byte") {
            rows = &table.rows;
        } else if (cells[0] == "byte of a block") {
            rows = &table.block;
        } else if (rows != nullptr && cells[0].empty() && cells[1].empty() && !rows->empty()) {
            rows->back().meaning += " " + cells[2];
        } else if (rows != nullptr && cells[0][0] != '-') {
            rows->push_back({cells[0], cells[1], cells[2]});
        }
    }
    if (!table.rows.empty()) {
        tables[std::filesystem::path(path).stem().string()] = table;
    }
}

std::set<std::string> HeaderTables::names() const
{
    std::set<std::string> names;
    for (const auto& [name, table] : tables) {
        names.insert(name);
    }
    return names;
}

std::set<std::string> HeaderTables::bases() const
{
    std::set<std::string> bases;
    for (const auto& [name, table] : tables) {
        for (const Row& row : table.rows) {
            if (startsWith(row.meaning, AS)) {
                bases.insert(row.meaning.substr(AS.size()));
            }
        }
    }
    return bases;
}

DocumentedImage HeaderTables::of(const std::string& name, const DecodedFields& fields,
                                 std::size_t size) const
{
    Image image = {fields, static_cast<unsigned int>(size), {}};
    const Table& table = tables.at(name);
    add(table, table.rows, 0, image);
    return image.documented;
}

/// Adds the rows of a table, or of a block, that begins at `start`; returns where it ends.
unsigned int HeaderTables::add(const Table& table, const std::vector<Row>& rows, unsigned int start,
                               Image& image) const
{
    static const std::regex REPEATED("(\\w+) (?:x ([0-9]+)|blocks)");
    static const std::regex UP_TO("up to ([0-9]+)");
    static const std::regex LETTER("([a-z]), the number of .*");
    std::map<char, unsigned int> letters;
    unsigned int end = start;
    for (const Row& row : rows) {
        if (row.byte == "other") {
            EXPECT_EQ(row.meaning, CARRIED);
            addRest(image);
            continue;
        }
        unsigned int at = start + valueOf(row.byte, letters);
        std::smatch match;
        if (startsWith(row.meaning, AS)) {
            const Table& base = tables.at(row.meaning.substr(AS.size()));
            at = add(base, base.rows, at, image);
        } else if (std::regex_match(row.width, match, REPEATED)) {
            const unsigned int width = match[2].matched ? valueOf(match[2], {}) : 0;
            EXPECT_TRUE(width != 0 || !startsWith(row.meaning, CARRIED)) << row.meaning;
            for (unsigned int left = valueOf(match[1], letters); left > 0; --left) {
                if (width == 0) {
                    at = add(table, table.block, at, image);
                } else {
                    addRow(row, bytesAt(at, width), image);
                    at += width;
                }
            }
        } else {
            const bool isCut = std::regex_match(row.width, match, UP_TO);
            const unsigned int width = valueOf(isCut ? match[1].str() : row.width, {});
            const unsigned int left = image.size - std::min(image.size, at);
            const Place place = bytesAt(at, isCut ? std::min(width, left) : width);
            if (isCut) {
                image.documented.most[row.meaning] = {width, place.width};
            }
            addRow(row, place, image);
            if (std::regex_match(row.meaning, match, LETTER)) {
                letters[match[1].str()[0]] = numberAt(image.fields, place);
            }
            at = place.end();
        }
        end = std::max(end, at);
    }
    return end;
}

/// Bytes that no row mentions are carried.
void HeaderTables::addRest(Image& image)
{
    for (unsigned int byte = 0; byte < image.size; ++byte) {
        if (image.documented.bytes.insert(byte).second) {
            image.documented.carried.push_back(bytesAt(byte));
        }
    }
}

/// Adds what one row says: nothing, the whole place, or bits of it. A text before the first bits
/// gives the whole byte a meaning too.
void HeaderTables::addRow(const Row& row, const Place& place, Image& image)
{
    static const std::regex BITS("bits? ([0-7])(?:\\.\\.([0-7]))?:");
    DocumentedImage& documented = image.documented;
    for (unsigned int byte = place.offset; byte < place.end(); ++byte) {
        documented.bytes.insert(byte);
    }
    if (startsWith(row.meaning, CARRIED)) {
        documented.carried.push_back(place);
        return;
    }
    const std::string text = row.byte + " | " + row.width + " | " + row.meaning;
    const std::sregex_iterator first(row.meaning.begin(), row.meaning.end(), BITS);
    if ((first == std::sregex_iterator() || first->position() != 0) && place.width != 0) {
        documented.items.push_back({place, text});
    }
    for (std::sregex_iterator at = first; at != std::sregex_iterator(); ++at) {
        EXPECT_EQ(place.width, 1U) << text;
        const unsigned int high = valueOf((*at)[1], {});
        const unsigned int low = (*at)[2].matched ? valueOf((*at)[2], {}) : high;
        documented.items.push_back({bitsAt(place.offset, high, low), text + at->str()});
    }
}

}
