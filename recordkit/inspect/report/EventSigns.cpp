// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/report/EventSigns.h>

#include <algorithm>
#include <cstddef>

#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/inspect/event/Event.h>
#include <recordkit/inspect/event/EventImport.h>
#include <recordkit/inspect/event/EventJudge.h>
#include <recordkit/inspect/log/LogFile.h>
#include <recordkit/inspect/log/Rescue.h>

namespace recordkit::inspect {

namespace {

constexpr std::size_t MOST_RECORDS = 65535;
constexpr std::size_t MOST_SLOTS = 65536;
constexpr std::size_t RECORD_SIZE = TAVLib::RecordKit::SELEntry::RECORD_SIZE;
constexpr const char* BLANKS = " \t\r\n\f\v";

/// Records that are taken one after another, as long as they look like events.
class EventSeries {
public:
    bool take(const std::string& content, EventForm form)
    {
        try {
            for (const ImportedEvent& imported : importEvents("", content, form)) {
                if (!take(decodeEvent(imported.message))) {
                    return false;
                }
            }
        } catch (const DataError&) {
            return false;
        }
        return true;
    }

    /// Every fourth record of any bytes has the type of an OEM record, in which nothing else is
    /// known.
    bool isConvincing() const
    {
        constexpr std::size_t OEM_RECORDS = 4;
        return hasSystemEvent || (count >= OEM_RECORDS && isRising);
    }

private:
    bool take(const Event& event)
    {
        if (count == MOST_RECORDS || !oddityOf(event).empty()) {
            return false;
        }
        isRising = isRising && (count == 0 || event.recordId > last);
        last = event.recordId;
        hasSystemEvent = hasSystemEvent || event.kind == EventKind::SYSTEM_EVENT;
        ++count;
        return true;
    }

    std::size_t count = 0;
    unsigned int last = 0;
    bool isRising = true;
    bool hasSystemEvent = false;
};

bool areEventLines(const std::string& content)
{
    EventSeries series;
    for (std::size_t at = 0; at < content.size();) {
        const std::size_t end = std::min(content.find('\n', at), content.size());
        const std::string line = content.substr(at, end - at);
        const std::size_t first = line.find_first_not_of(BLANKS);
        const bool hasRecord = first != std::string::npos && line[first] != '#';
        if (hasRecord && !series.take(line, EventForm::HEX)) {
            return false;
        }
        at = end + 1;
    }
    return series.isConvincing();
}

/// Takes every member of that name, wherever it is in JSON.
bool areEventMembers(const std::string& json, const std::string& member)
{
    EventSeries series;
    for (std::size_t at = json.find(member); at != std::string::npos; at = json.find(member, at)) {
        at = json.find_first_not_of(BLANKS, at + member.size());
        if (at == std::string::npos || json[at] != ':') {
            return false;
        }
        at = json.find_first_not_of(BLANKS, at + 1);
        if (at == std::string::npos || json[at] != '"') {
            return false;
        }
        const std::size_t end = std::min(json.find('"', at + 1), json.size());
        if (!series.take(json.substr(at + 1, end - at - 1), EventForm::HEX)) {
            return false;
        }
        at = end;
    }
    return series.isConvincing();
}

}

bool isEventLog(ByteView content)
{
    if (content.size() > MOST_SLOTS * SELFileLayout::SLOT_SIZE || !isEventFile(content)) {
        return false;
    }
    return !SlotView(content).getEvents().empty() ||
           (content.size() == SELFileLayout::FILE_SIZE &&
            SELFileLayout::isEmpty(content.data() + SELFileLayout::LAST_SLOT));
}

bool areEventRecords(ByteView content)
{
    if (content.size() % RECORD_SIZE != 0 || content.size() > MOST_RECORDS * RECORD_SIZE) {
        return false;
    }
    EventSeries series;
    for (std::size_t at = 0; at < content.size(); at += RECORD_SIZE) {
        if (!series.take(content.part(at, RECORD_SIZE).text(), EventForm::WRITERAW)) {
            return false;
        }
    }
    return series.isConvincing();
}

bool isEventText(const std::string& content)
{
    const std::size_t first = content.find_first_not_of(BLANKS);
    if (first == std::string::npos) {
        return false;
    }
    if (content[first] == '{' || content[first] == '[') {
        return areEventMembers(content, "\"image\"") || areEventMembers(content, "\"record\"");
    }
    return areEventLines(content);
}

}
