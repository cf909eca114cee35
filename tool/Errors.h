// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_ERRORS_H
#define RECORDKIT_TOOL_ERRORS_H

#include <string>

#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/platform/PException.h>

namespace recordkit::tool {

// The command uses the names of the layer below it.
using namespace inspect;

/// Exit statuses of the command.
enum ExitStatus : int {
    EXIT_DONE = 0,
    EXIT_DATA = 1,  ///< data damaged, absent or refused
    EXIT_USAGE = 2, ///< the command line is wrong
    EXIT_FILE = 3,  ///< could not be read or written
};

/// An error that terminates the command with the given exit status.
class CommandError : public Error {
public:
    CommandError(ExitStatus exitStatus, const std::string& text) : Error(text), status(exitStatus)
    {
    }
    ExitStatus getStatus() const { return status; }

private:
    ExitStatus status;
};

/// Terminates the command with the given exit status, after everything was reported.
class Reported {
public:
    explicit Reported(ExitStatus exitStatus) : status(exitStatus) {}
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

/// The exit status of an error, the command's own or one of the layer below.
ExitStatus statusOf(const Error& error);

/// "PATH cannot be read: reason".
CommandError systemError(const std::string& path, const char* what, int error);

/// Works on an input; errors of the layers below become a CommandError that begins with its name.
template <typename Work> auto naming(const std::string& input, const Work& work)
{
    try {
        return work();
    } catch (const CommandError&) {
        throw;
    } catch (const Error& e) {
        throw CommandError(statusOf(e), input + ": " + e.what());
    } catch (const TAVLib::PException& e) {
        throw dataError(input + ": " + e.getMessage());
    }
}

}

#endif
