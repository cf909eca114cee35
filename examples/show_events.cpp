// SPDX-License-Identifier: Apache-2.0
// What happened, by an event log as `ipmitool sel writeraw` saves it?
#include <cstdio>
#include <fstream>
#include <iterator>

#include <recordkit/inspect/event/Event.h>
#include <recordkit/inspect/event/EventImport.h>

using namespace recordkit::inspect;

int main(int argc, char** argv)
{
    std::ifstream file(argc == 2 ? argv[1] : "events.raw", std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    for (const ImportedEvent& imported : importEvents("events", bytes, EventForm::AUTO)) {
        const Event event = decodeEvent(imported.message);
        std::printf("%04Xh %s\n", event.recordId, eventText(event).c_str());
    }
}
