// SPDX-License-Identifier: Apache-2.0
// Rules with texts for events, applied to events of every kind.
#include <recordkit/inspect/bytes/Text.h>
#include <recordkit/inspect/event/EventRules.h>

#include "Fuzz.h"
#include "support/SystemEvents.h"

using namespace recordkit::inspect;
using namespace testing_support;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    std::vector<std::string> problems;
    const EventRules rules(std::string(data, data + size), problems);
    std::vector<Event> events = {
        systemEvent(1000000000, {0xC7, 0x71, 0x6F, 0xA3, 0x5C, 0x80}),
        eventOf({0xC1, 1, 2, 3, 4, 0x7C, 0x2A, 0x00, 10, 20, 30, 40, 50, 60}),
        eventOf({0xE1, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13}),
        eventOf({0x55}),
    };
    rules.apply(events);
    for (const Event& event : events) {
        fuzz::expect(isUtf8(event.siteText));
        fuzz::expect(printable(event.siteText) == event.siteText);
        fuzz::expect(event.kind != EventKind::OTHER || event.siteText.empty());
    }
    for (const std::string& problem : problems) {
        fuzz::expect(problem.rfind("line ", 0) == 0);
    }
    return 0;
}
