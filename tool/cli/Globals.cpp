// SPDX-License-Identifier: Apache-2.0
#include "Globals.h"

#include <filesystem>
#include <system_error>

#include <recordkit/host/HostRoot.h>
#include <recordkit/host/LockTimeout.h>
#include <recordkit/host/Machine.h>
#include <recordkit/host/TraceLog.h>
#include <recordkit/platform/SystemRoot.h>

#include "../Errors.h"
#include "../Files.h"
#include "../Zone.h"
#include "../print/Output.h"

namespace recordkit::tool {

namespace {

/// A board number is one byte.
constexpr int MAX_BOARDS = 256;
/// The partition bitmask of an event has 16 bits.
constexpr int MAX_PARTITIONS = 16;
constexpr int MAX_LOCK_TIMEOUT = 3600; // in seconds

/// Messages have the root's name as it was given, not the one by which the library knows it.
void useRoot(const std::string& root)
{
    TAVLib::host::setSystemRoot(root);
    const std::string name = TAVLib::systemRoot();
    showInsteadOf(name == root ? "" : name, inputName(root));
}

}

std::vector<Option> globalOptions()
{
    Option root =
        text("--root", "DIR", "Folder that replaces the system's root (default: the root itself)");
    root.environment = "RECORDKIT_ROOT";
    return {
        root,
        number("--boards", "N", 1, MAX_BOARDS, "Number of system boards").by("4"),
        number("--partition-count", "N", 1, MAX_PARTITIONS, "Number of partitions").by("4"),
        number("--lock-timeout", "SECONDS", 0, MAX_LOCK_TIMEOUT,
               "How long to wait for a file or log that another program has locked")
            .by("10"),
        number("--max-size", "N", 1, 0xFFFFFFFF,
               "Bytes that an input may have; each kind of input has a smaller limit of its own"),
        choice("--color", "WHEN", {"auto", "always", "never"},
               "Whether tables are in colour: auto (on a terminal, unless NO_COLOR is set), always "
               "or never")
            .by("auto"),
        flag("--local", "Event times in the machine's time zone, with their offset from UTC"),
        text("--tz", "ZONE",
             "Event times in this zone: a name such as Europe/Berlin, or an offset such as +01:00"),
        flag("--verbose", "Show the library's trace lines on standard error"),
    };
}

void chooseRoot(const std::string& folder)
{
    useRoot(folder.empty() ? "" : std::filesystem::absolute(folder).lexically_normal().string());
}

void applyGlobals(const Arguments& arguments)
{
    chooseRoot(arguments.text("--root"));
    setColour(static_cast<Colour>(arguments.number("--color")));
    if (arguments.has("--local") && arguments.has("--tz")) {
        throw usageError("--local and --tz exclude each other");
    }
    if (arguments.has("--local")) {
        chooseLocalZone();
    } else if (arguments.has("--tz")) {
        chooseZone(arguments.text("--tz"));
    }
    constexpr int MILLISECONDS = 1000;
    TAVLib::host::setLockTimeout(static_cast<int>(arguments.number("--lock-timeout")) *
                                 MILLISECONDS);
    setLargestInput(arguments.find("--max-size").value_or(0));
    TAVLib::host::Machine machine;
    machine.systemBoards = static_cast<int>(arguments.number("--boards"));
    machine.partitions = static_cast<int>(arguments.number("--partition-count"));
    TAVLib::host::setMachine(machine);
    if (!arguments.has("--verbose")) {
        // The sub-commands report failures themselves, in their own words.
        TAVLib::host::setTraceSink([](const TAVLib::host::TraceLine&) {});
    }
}

void createRoot()
{
    const std::string root = TAVLib::host::givenSystemRoot();
    std::error_code error;
    if (!root.empty() && !std::filesystem::create_directories(root, error) && error) {
        throw systemError(inputName(root), "created", error.value());
    }
    useRoot(root);
}

}
