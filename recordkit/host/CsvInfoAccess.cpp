// SPDX-License-Identifier: Apache-2.0
#include <recordkit/platform/CsvInfoAccess.h>

#include <boost/tokenizer.hpp>
#include <fstream>

namespace TAVLib {

namespace {

/// Whether a column of a line, without its quotes and escapes, is the key. A missing column is
/// empty; a line with a wrong escape before the end of the column has no key.
bool hasKey(const std::string& line, int column, const std::string& key)
{
    using Separator = boost::escaped_list_separator<char>;
    try {
        const boost::tokenizer<Separator> values(line, Separator('\\', ',', '"'));
        int current = 0;
        for (const std::string& value : values) {
            if (current == column) {
                return value == key;
            }
            ++current;
        }
        return key.empty();
    } catch (const boost::escaped_list_error&) {
        return false;
    }
}

}

class CsvInfoAccess::State {
public:
    State(const std::string& directory, const std::string& fileName)
        : path(directory + (directory.empty() || directory.back() == '/' ? "" : "/") + fileName),
          fault(!std::ifstream(path).good())
    {
    }

    const std::string path;
    const bool fault;
};

CsvInfoAccess::CsvInfoAccess(const std::string& directory, const std::string& fileName)
    : state(new State(directory, fileName))
{
}

CsvInfoAccess::~CsvInfoAccess()
{
    delete state;
}

bool CsvInfoAccess::isFault() const
{
    return state->fault;
}

bool CsvInfoAccess::searchRecord(int column, const std::string& key, std::string& record)
{
    std::ifstream table(state->path, std::ios::binary);
    for (std::string line; std::getline(table, line);) {
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
