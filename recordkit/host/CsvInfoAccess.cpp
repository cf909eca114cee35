// SPDX-License-Identifier: Apache-2.0
#include <recordkit/platform/CsvInfoAccess.h>

#include <fstream>

namespace TAVLib {

namespace {

/// One column of a line, without the quotes around it; empty for a missing column. A quote opens
/// and closes a section in which commas do not separate columns; escapes are left to the reader of
/// the record.
std::string columnOf(const std::string& line, int column)
{
    std::string value;
    bool isQuoted = false;
    int current = 0;
    for (const char character : line) {
        if (character == '"') {
            isQuoted = !isQuoted;
        } else if (character == ',' && !isQuoted) {
            ++current;
        } else if (current == column) {
            value += character;
        }
    }
    return value;
}

}

CsvInfoAccess::CsvInfoAccess(const std::string& directory, const std::string& fileName)
    : path(directory + (directory.empty() || directory.back() == '/' ? "" : "/") + fileName),
      fault(!std::ifstream(path).good())
{
}

bool CsvInfoAccess::isFault() const
{
    return fault;
}

bool CsvInfoAccess::searchRecord(int column, const std::string& key, std::string& record)
{
    std::ifstream table(path, std::ios::binary);
    for (std::string line; std::getline(table, line);) {
        while (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        if (!line.empty() && columnOf(line, column) == key) {
            record = line;
            return true;
        }
    }
    return false;
}

}
