// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_SEL_EVENTINPUT_H
#define RECORDKIT_TOOL_SEL_EVENTINPUT_H

#include <string>
#include <vector>

#include <recordkit/inspect/event/EventImport.h>

namespace recordkit::tool {

using namespace inspect;

/// The forms in which `sel add` takes event records: EventForm, and the command's own.
enum class ImportFormat {
    AUTO, ///< by the content: NDJSON begins with a brace
    WRITERAW,
    WIRE,
    HEX,
    NDJSON, ///< what `sel list --ndjson` writes; its field "image" is taken
};

/// As importEvents.
std::vector<ImportedEvent> readEvents(const std::string& name, const std::string& content,
                                      ImportFormat format, const OemFields& fields);

}

#endif
