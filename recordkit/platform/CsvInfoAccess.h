// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_PLATFORM_CSVINFOACCESS_H
#define RECORDKIT_PLATFORM_CSVINFOACCESS_H

#include <string>

#include <recordkit/platform/Export.h>

namespace TAVLib {

/// One CSV table, opened for reading.
///
/// Its records are lines, which end with LF or with any number of CR and one LF; the last line
/// needs no LF. Empty lines are not records. A record's columns are separated by commas. In a part
/// of a column between two double quotes, a comma belongs to the column, and the quotes do not.
/// Within quotes or not, \\ is a backslash, \" a double quote, and \n a line feed; \, is a comma.
///
/// The layout is one pointer; an implementation's own header must not differ (see Export.h).
class RECORDKIT_API CsvInfoAccess {
public:
    /// Opens the file in the directory, whose name may end with a slash or not.
    CsvInfoAccess(const std::string& directory, const std::string& fileName);
    ~CsvInfoAccess();

    CsvInfoAccess(const CsvInfoAccess&) = delete;
    CsvInfoAccess& operator=(const CsvInfoAccess&) = delete;

    /// True when the table could not be opened.
    bool isFault() const;

    /// Finds the first record whose column (from 0) equals the key and returns its line in
    /// `record`, with all quotes and backslashes, but without the CR and LF at its end; false and
    /// an untouched `record` if none is found, or the table could not be opened.
    ///
    /// The key is compared with the whole column, in which quotes and backslashes have been
    /// resolved. A column that a record does not have is empty. A record that has a backslash with
    /// another meaning before the end of the column is not found.
    ///
    /// Every search begins at the first record.
    bool searchRecord(int column, const std::string& key, std::string& record);

private:
    class State;
    State* state;
};

}

#endif
