// SPDX-License-Identifier: Apache-2.0
#include <recordkit/platform/CsvInfoAccess.h>

#include <fstream>
#include <sstream>

namespace TAVLib {

namespace {

/// Takes the next column of a record, without its quotes and backslashes. False for a backslash
/// that means nothing.
bool takeColumn(const std::string& record, std::size_t& at, std::string& column)
{
    column.clear();
    bool isQuoted = false;
    for (; at < record.size(); ++at) {
        const char character = record[at];
        if (character == ',' && !isQuoted) {
            return true;
        }
        if (character == '"') {
            isQuoted = !isQuoted;
        } else if (character == '\\') {
            ++at;
            const char escaped = at < record.size() ? record[at] : '\0';
            if (escaped == 'n') {
                column += '\n';
            } else if (escaped == '\\' || escaped == '"' || escaped == ',') {
                column += escaped;
            } else {
                return false;
            }
        } else {
            column += character;
        }
    }
    return true;
}

bool hasKey(const std::string& record, int column, const std::string& key)
{
    std::size_t at = 0;
    std::string value;
    for (int current = 0;; ++current) {
        if (!takeColumn(record, at, value)) {
            return false;
        }
        if (current == column) {
            return value == key;
        }
        if (at == record.size()) {
            return key.empty(); // a column that is not there is empty
        }
        ++at; // the comma
    }
}

}

/// The whole table, read once.
class CsvInfoAccess::State {
public:
    bool isFault;
    std::string contents;
};

CsvInfoAccess::CsvInfoAccess(const std::string& directory, const std::string& fileName)
    : state(nullptr)
{
    std::ifstream file(directory + "/" + fileName, std::ios::binary);
    std::ostringstream contents;
    const bool isOpen = file.is_open();
    contents << file.rdbuf();
    state = new State{!isOpen, contents.str()};
}

CsvInfoAccess::~CsvInfoAccess()
{
    delete state;
}

bool CsvInfoAccess::isFault() const
{
    return state->isFault;
}

bool CsvInfoAccess::searchRecord(int column, const std::string& key, std::string& record)
{
    std::istringstream lines(state->contents);
    for (std::string line; std::getline(lines, line);) {
        while (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        if (!line.empty() && hasKey(line, column, key)) {
            record = line;
            return true;
        }
    }
    return false;
}

}
