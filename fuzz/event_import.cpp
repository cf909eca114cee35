// SPDX-License-Identifier: Apache-2.0
// Event records in every form that can be imported, each of them judged and decoded, and those that
// any bytes contain. The first byte selects
// the form, and whether OEM data are given.
#include <recordkit/inspect/event/Event.h>
#include <recordkit/inspect/event/EventImport.h>
#include <recordkit/inspect/event/EventJudge.h>
#include <recordkit/inspect/log/Rescue.h>
#include <recordkit/selfile/SELChainReader.h>

#include "Fuzz.h"

using namespace recordkit::inspect;
namespace Layout = TAVLib::RecordKit::SELFileLayout;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    fuzz::dropTraces();
    if (size == 0) {
        return 0;
    }
    OemFields fields;
    if ((data[0] & 0x80) != 0) {
        fields = {true, 0x8001, "PN-0123456789ABCDE", "SN4711"};
    }
    const auto format = static_cast<EventForm>(data[0] % 4);
    const std::string content(data + 1, data + size);
    for (const RescuedRecord& record : rescueRecords(content)) {
        fuzz::expect(record.offset + Layout::SLOT_SIZE <= content.size());
        eventText(record.event);
    }
    fuzz::attempt([&] {
        std::vector<ImportedEvent> events = importEvents("input", content, format, fields);
        findOddity(events, true);
        for (ImportedEvent& event : events) {
            setRecordId(event.message, 0x1234);
            fuzz::expect(recordIdOf(event.message) == 0x1234);
            unsigned char image[Layout::SLOT_SIZE];
            fuzz::expect(event.message.getSerialized(image, sizeof image) == sizeof image);
            TAVLib::RecordKit::SELChainReader::Record record = {1, 0, 0, image};
            const Event decoded = decodeEvent(0, record);
            eventText(decoded);
        }
    });
    return 0;
}
