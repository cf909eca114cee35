// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_FILERESULTS_H
#define RECORDKIT_TOOL_FILERESULTS_H

#include <functional>
#include <string>
#include <vector>

#include "Errors.h"

namespace recordkit::tool {

/// Many files in one call: each gets its turn whatever the others hold, and the worst result is
/// the exit status.
class FileResults {
public:
    /// Does the work for one file, which gives back what is wrong in it; a CommandError is written
    /// to standard error.
    void add(const std::string& file, const std::function<std::vector<std::string>()>& work);

    /// Throws CommandError when a file was damaged or could not be read.
    void finish() const;

private:
    std::size_t files = 0;
    std::size_t damaged = 0;
    std::size_t unread = 0;
    std::string last; ///< the last one that was damaged or unread
};

}

#endif
