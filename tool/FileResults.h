// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_FILERESULTS_H
#define RECORDKIT_TOOL_FILERESULTS_H

#include <functional>
#include <string>
#include <vector>

#include "Errors.h"

namespace recordkit::tool {

/// Collects the results of processing several files: one bad file does not stop the rest, and the
/// worst outcome becomes the exit status.
class FileResults {
public:
    /// Runs the work for one file, which returns what is wrong with the file; a CommandError is
    /// written to standard error.
    void add(const std::string& file, const std::function<std::vector<std::string>()>& work);

    /// Throws CommandError if a file was damaged or could not be read.
    void finish() const;

private:
    std::size_t files = 0;
    std::size_t damaged = 0;
    std::size_t unread = 0;
    std::string last; ///< the last one that was damaged or unreadable
};

}

#endif
