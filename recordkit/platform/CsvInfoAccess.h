// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_PLATFORM_CSVINFOACCESS_H
#define RECORDKIT_PLATFORM_CSVINFOACCESS_H

#include <string>

#include <recordkit/platform/Export.h>

namespace TAVLib {

/// One CSV table, opened for reading.
///
/// The layout is one pointer; an implementation's own header must not differ (see Export.h).
class RECORDKIT_API CsvInfoAccess {
public:
    CsvInfoAccess(const std::string& directory, const std::string& fileName);
    ~CsvInfoAccess();

    CsvInfoAccess(const CsvInfoAccess&) = delete;
    CsvInfoAccess& operator=(const CsvInfoAccess&) = delete;

    /// True when the table could not be opened.
    bool isFault() const;

    /// Finds the first record whose column (from 0) equals the key and returns its line in
    /// `record`, without the line end; false and an untouched `record` if none is found.
    bool searchRecord(int column, const std::string& key, std::string& record);

private:
    class State;
    State* state;
};

}

#endif
