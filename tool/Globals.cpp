// SPDX-License-Identifier: Apache-2.0
#include "Globals.h"

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <unistd.h>

#include <recordkit/host/HostRoot.h>
#include <recordkit/host/Machine.h>
#include <recordkit/host/TraceLog.h>

#include "Errors.h"

namespace recordkit::tool {

namespace {

/// A board number is one byte.
constexpr int MAX_BOARDS = 256;
/// The partition bitmask of an event has 16 bits.
constexpr int MAX_PARTITIONS = 16;

}

void Globals::addTo(CLI::App& app)
{
    app.add_option("--root", root, "Folder that stands for the system's root (default: /)")
        ->envname("RECORDKIT_ROOT")
        ->type_name("DIR");
    app.add_option("--boards", boards, "Number of system boards")
        ->check(CLI::Range(1, MAX_BOARDS))
        ->capture_default_str()
        ->type_name("N");
    app.add_option("--partition-count", partitions, "Number of partitions")
        ->check(CLI::Range(1, MAX_PARTITIONS))
        ->capture_default_str()
        ->type_name("N");
    app.add_flag("--verbose", isVerbose, "Show the library's trace lines on standard error");
}

void Globals::apply()
{
    try {
        const std::string absolute =
            root.empty() ? "" : std::filesystem::absolute(root).lexically_normal().string();
        TAVLib::host::setSystemRoot(absolute);
    } catch (const std::invalid_argument& e) {
        throw usageError(std::string("--root: ") + e.what());
    }
    TAVLib::host::Machine machine;
    machine.systemBoards = boards;
    machine.partitions = partitions;
    TAVLib::host::setMachine(machine);
    if (!isVerbose) {
        // The sub-commands report failures themselves, in their own words.
        TAVLib::host::setTraceSink([](const TAVLib::host::TraceLine&) {});
    }
}

bool Globals::wantsColour() const
{
    const char* const noColour = std::getenv("NO_COLOR");
    return ::isatty(STDOUT_FILENO) != 0 && (noColour == nullptr || *noColour == '\0');
}

bool Globals::wantsProgress() const
{
    return ::isatty(STDERR_FILENO) != 0;
}

}
