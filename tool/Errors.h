// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_ERRORS_H
#define RECORDKIT_TOOL_ERRORS_H

#include <stdexcept>
#include <string>

namespace recordkit::tool {

/// Exit statuses of the command.
enum ExitStatus : int {
    EXIT_DONE = 0,
    EXIT_DATA = 1,  ///< data damaged, absent or refused
    EXIT_USAGE = 2, ///< the command line is wrong
    EXIT_FILE = 3,  ///< could not be read or written
};

/// An error that ends the command with its exit status.
class CommandError : public std::runtime_error {
public:
    CommandError(ExitStatus exitStatus, const std::string& text)
        : std::runtime_error(text), status(exitStatus)
    {
    }
    ExitStatus getStatus() const { return status; }

private:
    ExitStatus status;
};

inline CommandError dataError(const std::string& text)
{
    return {EXIT_DATA, text};
}

inline CommandError usageError(const std::string& text)
{
    return {EXIT_USAGE, text};
}

inline CommandError fileError(const std::string& text)
{
    return {EXIT_FILE, text};
}

/// "PATH cannot be read: reason".
CommandError systemError(const std::string& path, const char* what, int error);

}

#endif
