// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_SEL_SAVEDEVENTS_H
#define RECORDKIT_TOOL_SEL_SAVEDEVENTS_H

#include <string>
#include <vector>

#include <recordkit/inspect/event/Event.h>

#include "../print/Problems.h"

namespace recordkit::tool {

using namespace inspect;

/// The events of saved files, which need no root: files of a board's log, whole or cut, and what
/// `sel add` takes. Several files are merged by time; files of the store whose names differ only in
/// the index are one log, in its own order. A file that contains none, and what is
/// damaged in one, is reported.
std::vector<Event> readSavedEvents(const std::vector<std::string>& paths, Problems& problems);

/// A file that was read already.
struct SavedFile {
    std::string path;
    std::string content;
};

/// The same of files that were read already.
std::vector<Event> readSavedEvents(const std::vector<SavedFile>& files, Problems& problems);

}

#endif
