// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_EXITCASES_H
#define RECORDKIT_TOOL_EXITCASES_H

#include "Errors.h"

namespace recordkit::tool {

/// A case with the exit status of every sub-command in it. The table in the manual is made from
/// these; tests produce each.
struct ExitCase {
    const char* name;
    ExitStatus status;
    const char* text;
};

constexpr ExitCase EXIT_CASES[] = {
    {"done", EXIT_DONE, "Everything asked for was shown or done."},
    {"empty", EXIT_DATA, "An input is empty."},
    {"text", EXIT_DATA, "An input is not what the sub-command reads."},
    {"partly", EXIT_DATA, "One of several inputs is damaged; the others are shown."},
    {"endless", EXIT_DATA, "An input is a device without an end: reading ends at the limit."},
    {"huge", EXIT_DATA, "An input is longer than its limit."},
    {"absent", EXIT_DATA, "What was asked for, such as an event or a field, is not there."},
    {"usage", EXIT_USAGE, "A word, an option or a value is wrong."},
    {"directory", EXIT_FILE, "An input is a folder."},
    {"unreadable", EXIT_FILE, "An input cannot be read."},
    {"missing", EXIT_FILE, "An input, or the root, does not exist."},
    {"closed", EXIT_FILE, "Standard output is closed."},
    {"full", EXIT_FILE, "Standard output is full."},
    {"read-only", EXIT_FILE, "A file to write is in a folder that cannot be written."},
};

}

#endif
